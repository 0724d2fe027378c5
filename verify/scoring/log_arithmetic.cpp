// Log-domain arithmetic.
#include <algorithm>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

const int scaleFactors[] = {0, 4, 9, 16, -3, -30, 160};

// Runs of values near one another, so that all intervals of the polynomial and the dropped terms occur.
template <class T>
std::vector<T> scores(Source& source, int len, double spread) {
    return source.values<T>(len, -900.0 - spread, -900.0);
}

template <class T, class Call>
void pairs(Source& source, Digest& digest, Call call) {
    for (int len : lengths) {
        for (double spread : {2.0, 12.0, 50.0}) {
            const std::vector<T> src = scores<T>(source, len, spread);
            std::vector<T> srcDst = scores<T>(source, len, spread);
            digest.add(call(src.data(), srcDst.data(), len));
            digest.add(srcDst);
        }
    }
    const std::vector<T> src = source.patterns<T>(500);
    std::vector<T> srcDst = source.patterns<T>(500);
    digest.add(call(src.data(), srcDst.data(), 500));
    digest.add(srcDst);
}

template <class T, class Call>
void sums(Source& source, Digest& digest, Call call) {
    for (int len : lengths) {
        for (double spread : {2.0, 12.0, 50.0}) {
            const std::vector<T> src = scores<T>(source, len, spread);
            T dst;
            digest.add(call(src.data(), &dst, len));
            digest.add(dst);
        }
    }
}

// Integers with `bits` bits and a sign.
template <class T>
std::vector<T> integers(Source& source, int len, int bits) {
    std::vector<T> values(len);
    for (T& x : values) x = static_cast<T>(static_cast<std::int64_t>(source.bits()) >> (63 - bits));
    return values;
}

template <class T, auto function>
void fixedPairs(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (int scaleFactor : scaleFactors) {
            for (int bits : {8, static_cast<int>(8 * sizeof(T)) - 1}) {
                const std::vector<T> src = integers<T>(source, len, bits);
                std::vector<T> srcDst = integers<T>(source, len, bits);
                digest.add(function(src.data(), srcDst.data(), len, scaleFactor));
                digest.add(srcDst);
            }
        }
    }
}

template <class T, auto function>
void fixedSums(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (int scaleFactor : scaleFactors) {
            const std::vector<T> src = integers<T>(source, len, 12);
            T dst;
            digest.add(function(src.data(), &dst, len, scaleFactor));
            digest.add(dst);
        }
    }
}

// The subtrahend lies below its minuend by 1 to `most` in the element type.
template <class T, class Call>
void differences(Source& source, Digest& digest, double most, Call call) {
    for (int len : lengths) {
        std::vector<T> src(len), srcDst(len);
        for (int i = 0; i < len; ++i) {
            src[i] = static_cast<T>(source.uniform(-20000.0, 20000.0));
            const T least = std::is_integral_v<T> ? T(1) : static_cast<T>(0.01);
            srcDst[i] = static_cast<T>(src[i] - std::max(least, static_cast<T>(source.uniform(0.0, most))));
        }
        digest.add(call(src.data(), srcDst.data(), len));
        digest.add(srcDst);
    }
}

const Workload workloads[] = {
    {"vornsLogAdd_64f",
     [](Source& source, Digest& digest) {
         pairs<Vorn64f>(source, digest,
                        [](auto* src, auto* srcDst, int len) { return vornsLogAdd_64f(src, srcDst, len, 0); });
     }},
    {"vornsLogAdd_32f",
     [](Source& source, Digest& digest) {
         pairs<Vorn32f>(source, digest,
                        [](auto* src, auto* srcDst, int len) { return vornsLogAdd_32f(src, srcDst, len); });
     }},
    {"vornsLogAdd_32s_Sfs", fixedPairs<Vorn32s, vornsLogAdd_32s_Sfs>},
    {"vornsLogAdd_16s_Sfs", fixedPairs<Vorn16s, vornsLogAdd_16s_Sfs>},
    {"vornsLogSum_64f",
     [](Source& source, Digest& digest) {
         sums<Vorn64f>(source, digest, [](auto* src, auto* dst, int len) { return vornsLogSum_64f(src, dst, len); });
     }},
    {"vornsLogSum_32f",
     [](Source& source, Digest& digest) {
         sums<Vorn32f>(source, digest, [](auto* src, auto* dst, int len) { return vornsLogSum_32f(src, dst, len); });
     }},
    {"vornsLogSum_32s_Sfs", fixedSums<Vorn32s, vornsLogSum_32s_Sfs>},
    {"vornsLogSum_16s_Sfs", fixedSums<Vorn16s, vornsLogSum_16s_Sfs>},
    {"vornsLogSub_64f",
     [](Source& source, Digest& digest) {
         differences<Vorn64f>(source, digest, 20.0,
                              [](auto* src, auto* srcDst, int len) { return vornsLogSub_64f(src, srcDst, len); });
     }},
    {"vornsLogSub_32f",
     [](Source& source, Digest& digest) {
         differences<Vorn32f>(source, digest, 20.0,
                              [](auto* src, auto* srcDst, int len) { return vornsLogSub_32f(src, srcDst, len); });
     }},
    {"vornsLogSub_32s_Sfs",
     [](Source& source, Digest& digest) {
         differences<Vorn32s>(source, digest, 60.0, [](auto* src, auto* srcDst, int len) {
             return vornsLogSub_32s_Sfs(src, srcDst, len, 3);
         });
     }},
    {"vornsLogSub_16s_Sfs",
     [](Source& source, Digest& digest) {
         differences<Vorn16s>(source, digest, 60.0, [](auto* src, auto* srcDst, int len) {
             return vornsLogSub_16s_Sfs(src, srcDst, len, 3);
         });
     }},
};

}  // namespace

Family logArithmeticWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
