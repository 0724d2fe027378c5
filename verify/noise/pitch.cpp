// Periodicity and pitch.
#include <initializer_list>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

// Every other signal is ordinary, the others have few values, so that combs tie.
template <class T>
std::vector<T> signal(Source& source, int len, bool ordinary, bool negative) {
    std::vector<T> x = source.values<T>(static_cast<std::size_t>(len));
    for (T& v : x) {
        if (!ordinary) v = static_cast<T>(static_cast<int>(source.bits() % 5) - 2);
        if (!negative && v < 0) v = static_cast<T>(-(v + 1));
    }
    return x;
}

struct Periods {
    int len, low, high;
};

template <auto measure, class T, class Measure, bool negative>
void periodicity(Source& source, Digest& digest, std::initializer_list<Periods> ranges) {
    for (const auto& [len, low, high] : ranges) {
        for (bool ordinary : {true, false}) {
            const auto src = signal<T>(source, len, ordinary, negative);
            Measure result{};
            int period = 0;
            digest.add(measure(src.data(), len, &result, &period, high, low));
            digest.add(result);
            digest.add(period);
        }
    }
}
constexpr std::initializer_list<Periods> combRanges = {{2, 1, 1},      {3, 1, 2},       {50, 1, 49},    {65, 10, 40},
                                                       {240, 20, 160}, {1000, 20, 147}, {4096, 30, 200}};
constexpr std::initializer_list<Periods> squareRanges = {{8, 6, 7},      {65, 6, 40},    {96, 6, 95},
                                                         {240, 20, 160}, {320, 20, 147}, {1024, 64, 200}};

template <auto find, class T>
void peaks(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (int search : {1, 2, 5}) {
            for (int average : {0, 1, 4, 127}) {
                const auto src = signal<T>(source, len, search == 1, true);
                std::vector<Vorn8u> dst(static_cast<std::size_t>(len));
                digest.add(find(src.data(), dst.data(), len, search, average));
                digest.add(dst);
            }
        }
    }
}

std::vector<Vorn16s> shorts(Source& source, int len) { return source.values<Vorn16s>(static_cast<std::size_t>(len)); }

const Workload workloads[] = {
    {"vornsPeriodicity_32f",
     [](Source& s, Digest& d) { periodicity<vornsPeriodicity_32f, Vorn32f, Vorn32f, false>(s, d, combRanges); }},
    {"vornsPeriodicity_32s16s",
     [](Source& s, Digest& d) { periodicity<vornsPeriodicity_32s16s, Vorn32s, Vorn16s, false>(s, d, combRanges); }},
    {"vornsPeriodicityLSPE_32f",
     [](Source& s, Digest& d) { periodicity<vornsPeriodicityLSPE_32f, Vorn32f, Vorn32f, true>(s, d, squareRanges); }},
    {"vornsPeriodicityLSPE_16s",
     [](Source& s, Digest& d) { periodicity<vornsPeriodicityLSPE_16s, Vorn16s, Vorn16s, true>(s, d, squareRanges); }},
    {"vornsFindPeaks_32f8u", peaks<vornsFindPeaks_32f8u, Vorn32f>},
    {"vornsFindPeaks_32s8u", peaks<vornsFindPeaks_32s8u, Vorn32s>},
    {"vornsPitchmarkToF0Cand_32f",
     [](Source& source, Digest& digest) {
         for (int len : lengths) {
             for (bool ordinary : {true, false}) {
                 const auto src = signal<Vorn32f>(source, len, ordinary, true);
                 std::vector<Vorn32f> dst(src.size());
                 digest.add(vornsPitchmarkToF0Cand_32f(src.data(), dst.data(), len));
                 digest.add(dst);
             }
         }
     }},
    {"vornsPitchmarkToF0Cand_16s_Sfs",
     [](Source& source, Digest& digest) {
         for (int len : lengths) {
             for (int scaleFactor : {0, -13, -24, -140, 160}) {
                 const auto src = signal<Vorn16s>(source, len, scaleFactor != 0, true);
                 std::vector<Vorn16s> dst(src.size());
                 digest.add(vornsPitchmarkToF0Cand_16s_Sfs(src.data(), dst.data(), len, scaleFactor));
                 digest.add(dst);
             }
         }
     }},
    {"vornsCrossCorrCoeff_16s32f",
     [](Source& source, Digest& digest) {
         for (int len : lengths) {
             const auto src1 = shorts(source, len), src2 = shorts(source, len);
             Vorn32f result = 0;
             digest.add(vornsCrossCorrCoeff_16s32f(src1.data(), src2.data(), len, &result));
             digest.add(result);
         }
     }},
    {"vornsCrossCorrCoeffPartial_16s32f",
     [](Source& source, Digest& digest) {
         for (int len : lengths) {
             for (Vorn32f energy : {1e-40f, 1e3f, 1e30f}) {
                 const auto src1 = shorts(source, len), src2 = shorts(source, len);
                 Vorn32f result = 0;
                 digest.add(vornsCrossCorrCoeffPartial_16s32f(src1.data(), src2.data(), len, &result, energy));
                 digest.add(result);
             }
         }
     }},
    {"vornsCrossCorrCoeffDecim_16s32f",
     [](Source& source, Digest& digest) {
         for (int maxLen : lengths) {
             for (int dec : {1, 3, 8}) {
                 for (int minLen : {1, maxLen / 3, maxLen}) {
                     if (minLen < 1 || (maxLen > 1000 && dec < 8)) continue;
                     const auto src1 = shorts(source, maxLen), src2 = shorts(source, maxLen);
                     std::vector<Vorn32f> dst(static_cast<std::size_t>((maxLen - minLen) / dec) + 1);
                     digest.add(
                         vornsCrossCorrCoeffDecim_16s32f(src1.data(), src2.data(), maxLen, minLen, dst.data(), dec));
                     digest.add(dst);
                 }
             }
         }
     }},
    {"vornsCrossCorrCoeffInterpolation_16s32f",
     [](Source& source, Digest& digest) {
         for (int len : lengths) {
             const auto src1 = shorts(source, len), src2 = shorts(source, len + 1);
             Vorn32f frac = 0, coeff = 0;
             digest.add(vornsCrossCorrCoeffInterpolation_16s32f(src1.data(), src2.data(), len, &frac, &coeff));
             digest.add(frac);
             digest.add(coeff);
         }
     }},
};

}  // namespace

Family pitchWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
