// Which stages a transform of each order runs, and how long transforms are cut into blocks: fixed tables.
#pragma once

#include <cstdint>

#include "simd/simd.h"

namespace vorn::fft {

inline constexpr int maxOrder = 30;
// Below this order there is no table and no work buffer.
inline constexpr int firstTableOrder = 4;
inline constexpr int maxStages = 6;

// The radices of the decimation-in-time stages, first stage first; 0 ends the list.
struct Plan {
    int radix[maxStages];

    constexpr int stages() const {
        int n = 0;
        while (n < maxStages && radix[n] != 0) ++n;
        return n;
    }
};

// A transform of 2^block sub-blocks, merged in chunks of 2^buffer elements.
struct Blocking {
    int block;
    int buffer;
};

// The narrow vector of a precision, for transforms with few columns: four lanes, where the build has them.
template <class T>
struct Precision;

template <>
struct Precision<float> {
    using Narrow = f32x4;
    static constexpr int longOrder = 17;  // from here on a transform is cut into blocks
    static constexpr Plan plans[] = {
        {4, 4},              // order 4
        {4, 8},              // 5
        {4, 4, 4},           // 6
        {4, 8, 4},           // 7
        {4, 4, 4, 4},        // 8
        {4, 4, 8, 4},        // 9
        {4, 8, 8, 4},        // 10
        {4, 8, 8, 8},        // 11
        {4, 4, 8, 8, 4},     // 12
        {4, 8, 8, 8, 4},     // 13
        {4, 8, 8, 8, 8},     // 14
        {4, 4, 8, 8, 8, 4},  // 15
        {4, 4, 8, 8, 8, 8},  // 16
    };
    static constexpr Blocking blockings[] = {{3, 9}, {4, 10}, {4, 10}, {4, 10}, {5, 13}};  // orders 17 to 21
    static constexpr Blocking lastBlocking = {8, 15};                                      // 22 to 30
};

template <>
struct Precision<double> {
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
    using Narrow = f64x4;
#else
    using Narrow = f64x2;
#endif
    static constexpr int longOrder = 15;
    static constexpr Plan plans[] = {
        {4, 4},           // order 4
        {8, 4},           // 5
        {4, 4, 4},        // 6
        {8, 4, 4},        // 7
        {8, 8, 4},        // 8
        {8, 8, 8},        // 9
        {8, 8, 4, 4},     // 10
        {8, 8, 8, 4},     // 11
        {8, 8, 8, 8},     // 12
        {8, 8, 8, 4, 4},  // 13
        {8, 8, 8, 8, 4},  // 14
    };
    static constexpr Blocking blockings[] = {{3, 8},  {4, 10}, {4, 10}, {4, 10},
                                             {6, 13}, {6, 13}, {7, 14}};  // orders 15 to 21
    static constexpr Blocking lastBlocking = {8, 14};                     // 22 to 30
};

// order from firstTableOrder to below longOrder.
template <class T>
constexpr const Plan& planOf(int order) {
    return Precision<T>::plans[order - firstTableOrder];
}

// order from longOrder on.
template <class T>
constexpr Blocking blockingOf(int order) {
    return order < 22 ? Precision<T>::blockings[order - Precision<T>::longOrder] : Precision<T>::lastBlocking;
}

// The radices that merge 2^block sub-blocks.
constexpr Plan mergePlan(int block) {
    Plan plan{};
    for (int done = 0, stage = 0; done < block; ++stage) {
        const bool four = block == done + 2 || block == done + 4;
        plan.radix[stage] = four ? 4 : 8;
        done += four ? 2 : 3;
    }
    return plan;
}

constexpr int log2OfRadix(int radix) { return radix == 4 ? 2 : 3; }

}  // namespace vorn::fft
