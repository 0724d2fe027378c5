// Curves and small tools.
#include <climits>
#include <iterator>

#include "families.h"
#include "vectors.h"

namespace verify {
namespace {

constexpr int scales[] = {-129, -40, -31, -16, -10, -2, 0, 1, 3, 15, 150};

// Ordinary values in even lengths, any bit patterns in odd ones.
template <class T>
std::vector<T> drawn(Source& source, int len, double low, double high) {
    return len % 2 == 0 ? source.values<T>(len, low, high) : source.patterns<T>(len);
}

void reciprocalRoots(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (Vorn32f val : {1.0f, 1e-30f, 1000.0f}) {
            auto x = drawn<Vorn32f>(source, len, -1.0, 10.0);
            digest.add(vornsRecSqrt_32f(x.data(), len, val));
            digest.add(x);
        }
    }
}
// Integers of every size. From the first element of the block on, which stands at 16 bytes, and from the second.
std::vector<Vorn32s> integers(Source& source, int len) {
    auto x = source.patterns<Vorn32s>(len);
    for (Vorn32s& element : x) element >>= source.bits() % 31;
    return x;
}
void integerRoots(Source& source, Digest& digest) {
    for (int len : lengths) {
        if (len > 300) continue;
        for (int scale : scales) {
            for (int shift : {0, 1}) {
                const auto x = integers(source, len);
                Array room(Element::s32, x.size() + 1);
                auto* srcDst = reinterpret_cast<Vorn32s*>(room.data()) + shift;
                std::memcpy(srcDst, x.data(), room.bytes() - sizeof *srcDst);
                digest.add(vornsRecSqrt_32s_Sfs(srcDst, len, len % 3 == 0 ? 1000 : 1, scale));
                digest.add(room);
            }
        }
    }
}
void integerRoots16(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (int scale : scales) {
            const auto x = integers(source, len);
            std::vector<Vorn16s> dst(x.size());
            digest.add(vornsRecSqrt_32s16s_Sfs(x.data(), dst.data(), len, len % 3 == 0 ? 1000 : 1, scale));
            digest.add(dst);
        }
    }
}

template <bool inPlace>
void unitCurves(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (int srcQ : {-1, 0, 3, 12, 14, 15}) {
            for (int scale : {-30, -16, -14, 0, 5, INT_MAX, INT_MIN}) {
                auto x = source.patterns<Vorn16s>(len);
                std::vector<Vorn16s> dst(x.size());
                if (inPlace) {
                    digest.add(vornsUnitCurve_16s_ISfs(x.data(), srcQ, len, scale));
                    digest.add(x);
                } else {
                    digest.add(vornsUnitCurve_16s_Sfs(x.data(), srcQ, dst.data(), len, scale));
                    digest.add(dst);
                }
            }
        }
    }
}

void entropyFixed(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (int srcScale : {0, 15, -3, 140, -128}) {
            for (int dstScale : {0, -10, -31, 4}) {
                auto x = source.patterns<Vorn16s>(len);
                for (Vorn16s& element : x) element &= 0x7FFF;
                Vorn32s result = 0;
                digest.add(vornsEntropy_16s32s_Sfs(x.data(), srcScale, len, &result, dstScale));
                digest.add(result);
            }
        }
    }
}

void scores(Source& source, Digest& digest) {
    for (int len : lengths) {
        const auto x = drawn<Vorn32f>(source, len, -50.0, 0.0);
        std::vector<Vorn32f> dst(x.size());
        digest.add(vornsScaleLM_32f(x.data(), dst.data(), len, -20.0f, 12.7f, -0.3f));
        digest.add(dst);
    }
}
void scoresFixed(Source& source, Digest& digest) {
    for (int len : lengths) {
        const auto x = source.patterns<Vorn16s>(len);
        const auto constants = source.patterns<Vorn16s>(2);
        std::vector<Vorn32s> dst(x.size());
        digest.add(
            vornsScaleLM_16s32s(x.data(), dst.data(), len, constants[0], constants[1], source.patterns<Vorn32s>(1)[0]));
        digest.add(dst);
    }
}

// The last two weights cancel each other.
template <auto sum, class T>
void weightedSums(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (int weights : {0, 1, 2, 3}) {
            const auto a = drawn<T>(source, len, -100.0, 100.0), b = drawn<T>(source, len, -100.0, 100.0);
            const T first[] = {T(3), T(-7), T(1), T(5)}, second[] = {T(4), T(2), T(0), T(-5)};
            std::vector<T> dst(a.size());
            digest.add(sum(a.data(), b.data(), dst.data(), len, first[weights], second[weights]));
            digest.add(dst);
        }
    }
}

// Not a number is no element here: which one is given is not promised then.
template <auto nth, class T>
void nthLargest(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (int part : {0, 1, 2, 3}) {
            const auto x = source.values<T>(len);
            T result{};
            digest.add(nth(x.data(), len, (len - 1) * part / 3, &result));
            digest.add(result);
        }
    }
}

// clang-format off
const Workload workloads[] = {
    VECTORS(vornsSinC_32f),
    VECTORS(vornsSinC_32f64f),
    VECTORS(vornsSinC_64f),
    VECTORS(vornsSinC_32f_I),
    VECTORS(vornsSinC_64f_I),
    VECTORS(vornsExpNegSqr_32f, -30.0, 30.0),
    VECTORS(vornsExpNegSqr_32f64f, -30.0, 30.0),
    VECTORS(vornsExpNegSqr_64f, -30.0, 30.0),
    VECTORS(vornsExpNegSqr_32f_I, -30.0, 30.0),
    VECTORS(vornsExpNegSqr_64f_I, -30.0, 30.0),
    {"vornsRecSqrt_32f", reciprocalRoots},
    {"vornsRecSqrt_32s_Sfs", integerRoots},
    {"vornsRecSqrt_32s16s_Sfs", integerRoots16},
    VECTORS(vornsUnitCurve_32f, -1.0, 3.0),
    VECTORS(vornsUnitCurve_32f_I, -1.0, 3.0),
    {"vornsUnitCurve_16s_Sfs", unitCurves<false>},
    {"vornsUnitCurve_16s_ISfs", unitCurves<true>},
    VECTORS(vornsEntropy_32f, 0.0, 2.0),
    {"vornsEntropy_16s32s_Sfs", entropyFixed},
    {"vornsScaleLM_32f", scores},
    {"vornsScaleLM_16s32s", scoresFixed},
    {"vornsWeightedSum_32f", weightedSums<vornsWeightedSum_32f, Vorn32f>},
    {"vornsWeightedSum_64f", weightedSums<vornsWeightedSum_64f, Vorn64f>},
    {"vornsWeightedSum_16s", weightedSums<vornsWeightedSum_16s, Vorn16s>},
    {"vornsWeightedSumHalf_32f", weightedSums<vornsWeightedSumHalf_32f, Vorn32f>},
    {"vornsWeightedSumHalf_64f", weightedSums<vornsWeightedSumHalf_64f, Vorn64f>},
    {"vornsWeightedSumHalf_16s", weightedSums<vornsWeightedSumHalf_16s, Vorn16s>},
    {"vornsNthMaxElement_32s", nthLargest<vornsNthMaxElement_32s, Vorn32s>},
    {"vornsNthMaxElement_32f", nthLargest<vornsNthMaxElement_32f, Vorn32f>},
    {"vornsNthMaxElement_64f", nthLargest<vornsNthMaxElement_64f, Vorn64f>},
};
// clang-format on

}  // namespace

Family curveWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
