// Comparisons, masks, choices by masks, and counts of the vocabulary.
#include <cmath>
#include <cstdint>

#include "simd/complex.h"
#include "simd/count.h"
#include "simd/lanes.h"

namespace {

using namespace vorn;
using test::holds;
using test::Lanes;
using test::lanesOf;
using test::maskOf;
using test::vectorOf;

// compare(a, b) of vectors holds in the lanes in which model does.
template <class V, class Compare, class Model>
void checkCompare(const char* what, Compare compare, Model model) {
    using T = typename V::Element;
    test::forOperands<V>([&](const Lanes<V>& a, const Lanes<V>& b) {
        const auto actual = holds<V>(compare(vectorOf<V>(a), vectorOf<V>(b)));
        for (int i = 0; i < V::lanes; ++i) {
            EXPECT_EQ(actual[i], model(T{a[i]}, T{b[i]}))
                << what << ", lane " << i << " of " << test::show(a[i]) << " and " << test::show(b[i]);
        }
    });
}

template <class V>
class FloatComparisons : public testing::Test {};
TYPED_TEST_SUITE(FloatComparisons, test::Floats);

TYPED_TEST(FloatComparisons, HoldWhereTheScalarsDo) {
    using V = TypeParam;
    using T = typename V::Element;
    checkCompare<V>(
        "<", [](V a, V b) { return a < b; }, [](T a, T b) { return a < b; });
    checkCompare<V>(
        "<=", [](V a, V b) { return a <= b; }, [](T a, T b) { return a <= b; });
    checkCompare<V>(
        ">", [](V a, V b) { return a > b; }, [](T a, T b) { return a > b; });
    checkCompare<V>(
        ">=", [](V a, V b) { return a >= b; }, [](T a, T b) { return a >= b; });
    checkCompare<V>(
        "==", [](V a, V b) { return a == b; }, [](T a, T b) { return a == b; });
    checkCompare<V>(
        "!=", [](V a, V b) { return a != b; }, [](T a, T b) { return a != b; });
    checkCompare<V>(
        "unordered", [](V a, V b) { return unordered(a, b); }, [](T a, T b) { return std::isnan(a) || std::isnan(b); });
}

template <class V>
class SingleComparisons : public testing::Test {};
TYPED_TEST_SUITE(SingleComparisons, test::Singles);

TYPED_TEST(SingleComparisons, NotAtLeastHoldsForWhatIsNotANumber) {
    using V = TypeParam;
    checkCompare<V>(
        "notAtLeast", [](V a, V b) { return notAtLeast(a, b); }, [](float a, float b) { return !(a >= b); });
}

template <class V>
class Comparisons32 : public testing::Test {};
TYPED_TEST_SUITE(Comparisons32, test::Integers32);
template <class V>
class Comparisons16 : public testing::Test {};
TYPED_TEST_SUITE(Comparisons16, test::Integers16);

template <class V>
void checkIntegerComparisons() {
    using T = typename V::Element;
    checkCompare<V>(
        ">", [](V a, V b) { return a > b; }, [](T a, T b) { return a > b; });
    checkCompare<V>(
        "==", [](V a, V b) { return a == b; }, [](T a, T b) { return a == b; });
}
TYPED_TEST(Comparisons32, HoldWhereTheScalarsDo) { checkIntegerComparisons<TypeParam>(); }
TYPED_TEST(Comparisons16, HoldWhereTheScalarsDo) { checkIntegerComparisons<TypeParam>(); }

// Masks of every kind, by the vectors whose lanes they choose among.
template <class V>
class Masks : public testing::Test {};
#if defined(VORN_SIMD_AVX512)
using Chosen = testing::Types<f32x4, f64x2, i32x4, i16x8, f32x8, f64x4, i32x8, i16x16, f32x16, f64x8, i32x16, i16x32>;
#elif defined(VORN_SIMD_AVX2)
using Chosen = testing::Types<f32x4, f64x2, i32x4, i16x8, f32x8, f64x4, i32x8, i16x16>;
#else
using Chosen = testing::Types<f32x4, f64x2, i32x4, i16x8>;
#endif
TYPED_TEST_SUITE(Masks, Chosen);

TYPED_TEST(Masks, ChooseAmongLanes) {
    using V = TypeParam;
    using T = typename V::Element;
    test::Random random(17);
    for (const auto& pattern : test::maskPatterns<V>()) {
        Lanes<V> a, b, expected;
        for (int i = 0; i < V::lanes; ++i) {
            a[i] = random.anyBits<T>(), b[i] = random.anyBits<T>();
            expected[i] = pattern[i] ? a[i] : b[i];
        }
        const V chosen = select(maskOf<V>(pattern), vectorOf<V>(a), vectorOf<V>(b));
        test::expectLanes(lanesOf<V>(chosen), expected, "select");
    }
}

TYPED_TEST(Masks, AreReadAndCombined) {
    using V = TypeParam;
    const auto patterns = test::maskPatterns<V>();
    for (const auto& a : patterns) {
        const auto x = maskOf<V>(a);
        std::uint64_t bits = 0;
        for (int i = 0; i < V::lanes; ++i) bits |= std::uint64_t{a[i]} << i;
        const std::uint64_t full = (std::uint64_t{1} << V::lanes) - 1;
        EXPECT_EQ(any(x), bits != 0);
        if constexpr (requires { all(x); }) {
            EXPECT_EQ(all(x), bits == full);
            EXPECT_EQ(laneBits(x), bits);
        }
        const auto opposite = holds<V>(!x);
        for (int i = 0; i < V::lanes; ++i) EXPECT_EQ(opposite[i], !a[i]) << "!, lane " << i;
        for (const auto& b : patterns) {
            const auto y = maskOf<V>(b);
            const auto both = holds<V>(x & y), either = holds<V>(x | y);
            for (int i = 0; i < V::lanes; ++i) {
                EXPECT_EQ(both[i], a[i] && b[i]) << "&, lane " << i;
                EXPECT_EQ(either[i], a[i] || b[i]) << "|, lane " << i;
            }
            if constexpr (requires { x ^ y; }) {
                const auto one = holds<V>(x ^ y);
                for (int i = 0; i < V::lanes; ++i) EXPECT_EQ(one[i], a[i] != b[i]) << "^, lane " << i;
            }
        }
    }
}

TYPED_TEST(Masks, CountLanes) {
    using V = TypeParam;
    using T = typename V::Element;
    if constexpr (std::is_integral_v<T>) {
        test::Random random(19);
        for (const auto& pattern : test::maskPatterns<V>()) {
            static_assert(
                requires(V count) { maskOf<V>(pattern) ^ maskOf<V>(pattern), countWhere(count, maskOf<V>(pattern)); });
            Lanes<V> count, expected;
            for (int i = 0; i < V::lanes; ++i) {
                count[i] = i % 3 == 0 ? std::numeric_limits<T>::max() : random.anyBits<T>();
                expected[i] = test::wrapped<T>(__int128{count[i]} + pattern[i]);
            }
            test::expectLanes(lanesOf<V>(countWhere(vectorOf<V>(count), maskOf<V>(pattern))), expected, "countWhere");
        }
    }
}

// Complex numbers whose parts are zero, with either sign, in the wide types that products use.
template <class V>
class ComplexZeros : public testing::Test {};
#if defined(VORN_SIMD_AVX512)
using ComplexTypes = testing::Types<f32x16, f64x8>;
#elif defined(VORN_SIMD_AVX2)
using ComplexTypes = testing::Types<f32x8, f64x4>;
#else
using ComplexTypes = testing::Types<f32x4, f64x2>;
#endif
TYPED_TEST_SUITE(ComplexZeros, ComplexTypes);

TYPED_TEST(ComplexZeros, AreFoundAndChosen) {
    using V = TypeParam;
    using T = typename V::Element;
    using L = std::numeric_limits<T>;
    const T parts[] = {T(0),          T(-0.0),        T(1),     L::denorm_min(), -L::denorm_min(),
                       L::infinity(), L::quiet_NaN(), -L::max()};
    constexpr int count = static_cast<int>(std::size(parts));
    for (int first = 0; first < count * count; ++first) {
        Lanes<V> a, other, expected;
        for (int k = 0; k < V::lanes; k += 2) {
            const int pair = (first + k / 2) % (count * count);
            a[k] = parts[pair / count], a[k + 1] = parts[pair % count];
            other[k] = T(k), other[k + 1] = T(k + 1);
            const bool zero = a[k] == 0 && a[k + 1] == 0;
            expected[k] = zero ? other[k] : a[k], expected[k + 1] = zero ? other[k + 1] : a[k + 1];
        }
        const V x = vectorOf<V>(a);
        test::expectLanes(lanesOf<V>(select(zeros(x), vectorOf<V>(other), x)), expected, "zeros");
    }
}

}  // namespace
