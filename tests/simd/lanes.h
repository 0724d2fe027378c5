// Vectors as arrays of their lanes, and operations compared with what they mean lane by lane. Nothing here goes through
// the vocabulary under test: registers are read and made by copying their bytes.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

#include "simd/simd.h"
#include "support/expect.h"
#include "support/rounding_mode.h"
#include "support/values.h"

namespace test {

// Every type of floats, or of integers of so many bits, that the build has.
#if defined(VORN_SIMD_AVX512)
using Floats = ::testing::Types<vorn::f32x4, vorn::f64x2, vorn::f32x8, vorn::f64x4, vorn::f32x16, vorn::f64x8>;
using Singles = ::testing::Types<vorn::f32x4, vorn::f32x8, vorn::f32x16>;
using Doubles = ::testing::Types<vorn::f64x2, vorn::f64x4, vorn::f64x8>;
using Integers = ::testing::Types<vorn::i64x2, vorn::i32x4, vorn::i16x8, vorn::i8x16, vorn::i64x4, vorn::i32x8,
                                  vorn::i16x16, vorn::i8x32, vorn::i64x8, vorn::i32x16, vorn::i16x32, vorn::i8x64>;
using Integers64 = ::testing::Types<vorn::i64x2, vorn::i64x4, vorn::i64x8>;
using Integers32 = ::testing::Types<vorn::i32x4, vorn::i32x8, vorn::i32x16>;
using Integers16 = ::testing::Types<vorn::i16x8, vorn::i16x16, vorn::i16x32>;
using Integers8 = ::testing::Types<vorn::i8x16, vorn::i8x32, vorn::i8x64>;
using Bytes = ::testing::Types<vorn::u8x16, vorn::u8x32, vorn::u8x64>;
#elif defined(VORN_SIMD_AVX2)
using Floats = ::testing::Types<vorn::f32x4, vorn::f64x2, vorn::f32x8, vorn::f64x4>;
using Singles = ::testing::Types<vorn::f32x4, vorn::f32x8>;
using Doubles = ::testing::Types<vorn::f64x2, vorn::f64x4>;
using Integers = ::testing::Types<vorn::i64x2, vorn::i32x4, vorn::i16x8, vorn::i8x16, vorn::i64x4, vorn::i32x8,
                                  vorn::i16x16, vorn::i8x32>;
using Integers64 = ::testing::Types<vorn::i64x2, vorn::i64x4>;
using Integers32 = ::testing::Types<vorn::i32x4, vorn::i32x8>;
using Integers16 = ::testing::Types<vorn::i16x8, vorn::i16x16>;
using Integers8 = ::testing::Types<vorn::i8x16, vorn::i8x32>;
using Bytes = ::testing::Types<vorn::u8x16, vorn::u8x32>;
#else
using Floats = ::testing::Types<vorn::f32x4, vorn::f64x2>;
using Singles = ::testing::Types<vorn::f32x4>;
using Doubles = ::testing::Types<vorn::f64x2>;
using Integers = ::testing::Types<vorn::i64x2, vorn::i32x4, vorn::i16x8, vorn::i8x16>;
using Integers64 = ::testing::Types<vorn::i64x2>;
using Integers32 = ::testing::Types<vorn::i32x4>;
using Integers16 = ::testing::Types<vorn::i16x8>;
using Integers8 = ::testing::Types<vorn::i8x16>;
using Bytes = ::testing::Types<vorn::u8x16>;
#endif

// The type of integers, or of floats, in a register of the size of V's.
template <class T, int bytes>
struct OfSize;
#define VORN_TEST_SIZE(bytes, f32, f64, i64, i32, i16, i8, u8) \
    template <>                                                \
    struct OfSize<float, bytes> {                              \
        using type = vorn::f32;                                \
    };                                                         \
    template <>                                                \
    struct OfSize<double, bytes> {                             \
        using type = vorn::f64;                                \
    };                                                         \
    template <>                                                \
    struct OfSize<std::int64_t, bytes> {                       \
        using type = vorn::i64;                                \
    };                                                         \
    template <>                                                \
    struct OfSize<std::int32_t, bytes> {                       \
        using type = vorn::i32;                                \
    };                                                         \
    template <>                                                \
    struct OfSize<std::int16_t, bytes> {                       \
        using type = vorn::i16;                                \
    };                                                         \
    template <>                                                \
    struct OfSize<std::int8_t, bytes> {                        \
        using type = vorn::i8;                                 \
    };                                                         \
    template <>                                                \
    struct OfSize<std::uint8_t, bytes> {                       \
        using type = vorn::u8;                                 \
    };
VORN_TEST_SIZE(16, f32x4, f64x2, i64x2, i32x4, i16x8, i8x16, u8x16)
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
VORN_TEST_SIZE(32, f32x8, f64x4, i64x4, i32x8, i16x16, i8x32, u8x32)
#endif
#if defined(VORN_SIMD_AVX512)
VORN_TEST_SIZE(64, f32x16, f64x8, i64x8, i32x16, i16x32, i8x64, u8x64)
#endif
#undef VORN_TEST_SIZE
template <class T, class V>
using Like = typename OfSize<T, sizeof(V)>::type;

template <class V>
using Element = typename V::Element;
template <class V>
using Lanes = std::array<Element<V>, V::lanes>;

template <class V>
Lanes<V> lanesOf(const V& a) {
    Lanes<V> lanes;
    static_assert(sizeof lanes == sizeof a);
    std::memcpy(lanes.data(), &a, sizeof a);
    return lanes;
}
template <class V>
V vectorOf(const Lanes<V>& lanes) {
    V a;
    std::memcpy(&a, lanes.data(), sizeof a);
    return a;
}
// The lanes of two vectors behind one another.
template <class V>
std::array<Element<V>, 2 * V::lanes> lanesOf(const V& low, const V& high) {
    std::array<Element<V>, 2 * V::lanes> lanes;
    std::memcpy(lanes.data(), &low, sizeof low);
    std::memcpy(lanes.data() + V::lanes, &high, sizeof high);
    return lanes;
}

// Masks: all bits of a lane of V or none, or a bit a lane.
template <class V>
using MaskOf = decltype(std::declval<V>() == std::declval<V>());
template <class V, class Mask>
std::array<bool, V::lanes> holds(const Mask& mask) {
    std::array<bool, V::lanes> lanes{};
    if constexpr (sizeof mask == sizeof(V)) {
        unsigned char bytes[sizeof mask];
        std::memcpy(bytes, &mask, sizeof mask);
        constexpr int size = sizeof(Element<V>);
        for (int i = 0; i < V::lanes; ++i) {
            lanes[i] = bytes[i * size] == 0xFF;
            for (int k = 0; k < size; ++k) {
                EXPECT_EQ(bytes[i * size + k], lanes[i] ? 0xFF : 0) << "byte " << k << " of lane " << i;
            }
        }
    } else {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &mask, sizeof mask);
        for (int i = 0; i < V::lanes; ++i) lanes[i] = (bits >> i & 1) != 0;
    }
    return lanes;
}
template <class V, class Mask = MaskOf<V>>
Mask maskOf(const std::array<bool, V::lanes>& lanes) {
    Mask mask;
    if constexpr (sizeof mask == sizeof(V)) {
        unsigned char bytes[sizeof mask];
        for (std::size_t k = 0; k < sizeof mask; ++k) bytes[k] = lanes[k / sizeof(Element<V>)] ? 0xFF : 0;
        std::memcpy(&mask, bytes, sizeof mask);
    } else {
        std::uint64_t bits = 0;
        for (int i = 0; i < V::lanes; ++i) bits |= std::uint64_t{lanes[i]} << i;
        std::memcpy(&mask, &bits, sizeof mask);
    }
    return mask;
}
// No lane, all, each one alone, all but one, and others.
template <class V>
std::vector<std::array<bool, V::lanes>> maskPatterns() {
    std::vector<std::array<bool, V::lanes>> patterns;
    const auto add = [&](auto lane) {
        std::array<bool, V::lanes> pattern;
        for (int i = 0; i < V::lanes; ++i) pattern[i] = lane(i);
        patterns.push_back(pattern);
    };
    add([](int) { return false; });
    add([](int) { return true; });
    for (int one = 0; one < V::lanes; ++one) {
        add([=](int i) { return i == one; });
        add([=](int i) { return i != one; });
    }
    Random random(5);
    for (int n = 0; n < 40; ++n) add([&](int) { return (random.next() & 1) != 0; });
    return patterns;
}

// The same bits, the payload of a not-a-number included.
template <class T>
bool identical(const T& a, const T& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Values at which operations break, and any bits: every pair of them, in whole registers.
template <class T>
std::vector<T> hardValues() {
    if constexpr (std::is_floating_point_v<T>) {
        std::vector<T> values = hardFloats<T>();
        values.push_back(T(-2147483649.0)), values.push_back(T(-2147483648.5)), values.push_back(T(2147483646.5));
        return values;
    } else if constexpr (sizeof(T) == 1) {
        std::vector<T> values;
        for (int x = 0; x < 256; ++x) values.push_back(static_cast<T>(x));
        return values;
    } else {
        return hardIntegers<T>();
    }
}
template <class T>
struct Operands {
    std::vector<T> a, b;
};
template <class T>
const Operands<T>& operands() {
    static const Operands<T> all = [] {
        Operands<T> made;
        const std::vector<T> values = hardValues<T>();
        for (T x : values) {
            for (T y : values) made.a.push_back(x), made.b.push_back(y);
        }
        Random random(7);
        while (made.a.size() < 20000 || made.a.size() % 64 != 0) {
            made.a.push_back(random.anyBits<T>()), made.b.push_back(random.anyBits<T>());
        }
        return made;
    }();
    return all;
}
// work(a, b) for arrays of the lanes of V.
template <class V, class Work>
void forOperands(Work work) {
    const auto& all = operands<Element<V>>();
    for (std::size_t i = 0; i < all.a.size() && !::testing::Test::HasFailure(); i += V::lanes) {
        Lanes<V> a, b;
        std::memcpy(a.data(), all.a.data() + i, sizeof a);
        std::memcpy(b.data(), all.b.data() + i, sizeof b);
        work(a, b);
    }
}

// Not-a-numbers as results of arithmetic may have any payload; everything else is compared bit by bit.
enum class Payload { any, kept };
template <Payload payload, class T>
void expectLane(T actual, T expected, int lane, const char* what) {
    const bool equal = payload == Payload::any ? same(actual, expected) : identical(actual, expected);
    EXPECT_TRUE(equal) << what << ", lane " << lane << ": got " << show(actual) << ", expected " << show(expected);
}
template <Payload payload = Payload::kept, class A, class B>
void expectLanes(const A& actual, const B& expected, const char* what) {
    static_assert(std::tuple_size_v<A> == std::tuple_size_v<B>);
    for (std::size_t i = 0; i < actual.size(); ++i) {
        expectLane<payload>(actual[i], expected[i], static_cast<int>(i), what);
    }
}

// operation(a, b) and operation(a) of vectors is model of each pair of lanes, and of each lane.
template <class V, Payload payload = Payload::kept, class Operation, class Model>
void checkPairs(const char* what, Operation operation, Model model) {
    forOperands<V>([&](const Lanes<V>& a, const Lanes<V>& b) {
        const Lanes<V> actual = lanesOf<V>(operation(vectorOf<V>(a), vectorOf<V>(b)));
        for (int i = 0; i < V::lanes; ++i) {
            expectLane<payload>(actual[i], static_cast<Element<V>>(model(a[i], b[i])), i, what);
            if (::testing::Test::HasFailure()) {
                ADD_FAILURE() << "of " << show(a[i]) << " and " << show(b[i]);
                return;
            }
        }
    });
}
template <class V, Payload payload = Payload::kept, class Operation, class Model>
void checkLanes(const char* what, Operation operation, Model model) {
    checkPairs<V, payload>(
        what, [&](V a, V) { return operation(a); }, [&](Element<V> a, Element<V>) { return model(a); });
}

// In each rounding mode. The work is done behind a call, so that no arithmetic moves across the change of the mode.
template <class Work>
__attribute__((noinline)) void inEachRoundingMode(Work work) {
    for (unsigned mode : {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        RoundingMode changed(mode);
        work();
    }
}

// Integers that wrap, and that saturate to T.
template <class T>
T wrapped(__int128 x) {
    return static_cast<T>(static_cast<std::uint64_t>(x));
}
template <class T>
T saturated(__int128 x) {
    using L = std::numeric_limits<T>;
    return x < L::min() ? L::min() : x > L::max() ? L::max() : static_cast<T>(x);
}

// n small numbers, each of them different.
template <class V>
Lanes<V> ramp(int from = 0) {
    Lanes<V> lanes;
    for (int i = 0; i < V::lanes; ++i) lanes[i] = static_cast<Element<V>>(from + i);
    return lanes;
}

}  // namespace test
