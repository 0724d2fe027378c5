// Dot products of real vectors, in the orders that the public functions promise: for those functions, and for whoever
// takes many short ones and cannot afford a call for each.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "reductions/sixteen.h"
#include "simd/block.h"
#include "simd/fold.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::dots {

// A vector of real numbers as the operand of a product.
template <class Sum, class Element>
struct Real {
    const Element* src;
    static constexpr int components = 1;
    VORN_INLINE Sixteen<Sum> at(std::ptrdiff_t i) const { return load16<Sum>(src + i); }
};

// Sixteen lanes: lane j takes elements j, j + 16, ... The last group is filled up with zeros.
template <class Total, template <class, class> class Operand1, template <class, class> class Operand2, class Sum,
          class E1, class E2>
VORN_INLINE void accumulate(Operand1<Sum, E1> a, Operand2<Sum, E2> b, std::ptrdiff_t len, Total& total) {
    std::ptrdiff_t i = 0;
    for (; i + 16 <= len; i += 16) addProduct(total, a.at(i), b.at(i));
    if (i < len) {
        constexpr int components1 = Operand1<Sum, E1>::components, components2 = Operand2<Sum, E2>::components;
        Block<E1, 16 * components1> rest1;
        Block<E2, 16 * components2> rest2;
        fillBlock<16 * components1>(a.src + i * components1, (len - i) * components1, rest1);
        fillBlock<16 * components2>(b.src + i * components2, (len - i) * components2, rest2);
        addProduct(total, Operand1<Sum, E1>{rest1}.at(0), Operand2<Sum, E2>{rest2}.at(0));
    }
}

template <class Sum, class E1, class E2>
VORN_INLINE Sum realDot(const E1* src1, const E2* src2, std::ptrdiff_t len) {
    auto sum = Sixteen<Sum>::zero();
    accumulate(Real<Sum, E1>{src1}, Real<Sum, E2>{src2}, len, sum);
    return sum.folded();
}

// Four lanes each.
struct Quarters {
    f32x4 sum[4];
};

// Single precision in its stated order. Below 16 elements two lanes over pairs, the odd last one in the first lane.
// From 16 on four four-lane sums, sixteen elements a step; the pairs and the last one that remain go to the first lanes
// of the first sum; the sums fold as (0 + 1) + (2 + 3), then the lanes likewise.

// The steps of sixteen, of `count` vectors with one other.
template <int count>
VORN_INLINE void addSixteens(const Vorn32f* const (&src)[count], const Vorn32f* other, std::ptrdiff_t len,
                             Sixteen<Vorn32f> (&sums)[count]) {
    for (std::ptrdiff_t i = 0; i + 16 <= len; i += 16) {
        const auto x = load16<Vorn32f>(other + i);
        for (int j = 0; j < count; ++j) addProduct(sums[j], load16<Vorn32f>(src[j] + i), x);
    }
}
// The four lanes, from the sums of the steps.
VORN_INLINE f32x4 lanesInSingle(const Sixteen<Vorn32f>& sums, const Vorn32f* src1, const Vorn32f* src2,
                                std::ptrdiff_t len) {
    const auto quarters = std::bit_cast<Quarters>(sums);
    f32x4 first = quarters.sum[0];
    std::ptrdiff_t i = len & -16;
    for (; i + 2 <= len; i += 2) first = first + loadFirst<f32x4, 2>(src1 + i) * loadFirst<f32x4, 2>(src2 + i);
    if (i < len) first = first + loadFirst<f32x4, 1>(src1 + i) * loadFirst<f32x4, 1>(src2 + i);
    return (first + quarters.sum[1]) + (quarters.sum[2] + quarters.sum[3]);
}
VORN_INLINE f32x4 lanesInSingle(const Vorn32f* src1, const Vorn32f* src2, std::ptrdiff_t len) {
    const Vorn32f* const src[] = {src1};
    Sixteen<Vorn32f> sums[] = {Sixteen<Vorn32f>::zero()};
    addSixteens(src, src2, len, sums);
    return lanesInSingle(sums[0], src1, src2, len);
}
VORN_INLINE Vorn32f dotInSingle(const Vorn32f* src1, const Vorn32f* src2, std::ptrdiff_t len) {
    return sumNeighbours(lanesInSingle(src1, src2, len));
}

// Exact dot products of 16-bit numbers: 32-bit lanes hold two products each, shifted so that none is negative; their
// upper and lower halves are summed apart, so that 32-bit lanes hold many of them.
template <std::uint32_t shift>
class HalfSums {
public:
    VORN_INLINE void add(i32xN pairs) {
        const i32xN shifted = pairs + splat<i32xN>(static_cast<std::int32_t>(shift));
        low_ = low_ + (shifted & splat<i32xN>(0xFFFF));
        high_ = high_ + shiftRightLogical<16>(shifted);
    }
    // The sum of what `count` calls have added, at most 32767; the next one begins at zero.
    VORN_INLINE std::int64_t takeTotal(std::int64_t count) {
        const std::int64_t sum = wideSumOfLanes(low_) + wideSumOfLanes(high_) * 65536;
        *this = HalfSums();
        return sum - count * i32xN::lanes * std::int64_t{shift};
    }

private:
    i32xN low_ = splat<i32xN>(0), high_ = splat<i32xN>(0);
};
// Two products of one sign wrap at most to -2^31, which is then 2^31: the smallest true sum is -2147418112.
using SumOfProducts = HalfSums<2147418112u>;
using DifferenceOfProducts = HalfSums<2147483648u>;

// Walks `step` elements at a time: add(i, n) for whole steps has n == step known to the compiler, and for the rest n <
// step. flush(count) follows after at most atOnce calls.
template <int step, class Add, class Flush>
VORN_INLINE void overSteps(std::ptrdiff_t len, Add add, Flush flush) {
    constexpr std::ptrdiff_t atOnce = 32767;
    for (std::ptrdiff_t i = 0; i < len;) {
        std::ptrdiff_t count = std::min((len - i) / step, atOnce - 1);
        for (const std::ptrdiff_t end = i + count * step; i < end; i += step)
            add(i, std::integral_constant<int, step>());
        if (len - i < step && i < len) {
            add(i, len - i);
            i = len;
            ++count;
        }
        flush(count);
    }
}
// n of `step` numbers.
VORN_INLINE i16xN take(const Vorn16s* p, std::integral_constant<int, i16xN::lanes>) { return load<i16xN>(p); }
VORN_INLINE i16xN take(const Vorn16s* p, std::ptrdiff_t n) { return loadPart<i16xN>(p, n); }

VORN_INLINE std::int64_t exactDot(const Vorn16s* src1, const Vorn16s* src2, std::ptrdiff_t len) {
    std::int64_t sum = 0;
    SumOfProducts sums;
    overSteps<i16xN::lanes>(
        len, [&](std::ptrdiff_t i, auto n) { sums.add(mulAddPairs(take(src1 + i, n), take(src2 + i, n))); },
        [&](std::ptrdiff_t count) { sum += sums.takeTotal(count); });
    return sum;
}

}  // namespace vorn::dots
