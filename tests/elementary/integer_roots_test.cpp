// Integer square roots at every scale factor, and at the borders beyond which the result needs no root.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/precise.h"
#include "support/values.h"
#include "vornsr/signal.h"

namespace {

__extension__ using uint128 = unsigned __int128;

// Beyond `upper` every result is 0, whatever the root; below `lower` every positive number gives the largest one.
struct Borders {
    int lower, upper;
};

// sqrt(x) 2^-sf rounded to nearest, ties to even, in integers: 2 r - 1 is twice the tie below r.
template <class Result>
Result rootOf(std::int64_t x, int sf, Borders borders) {
    constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<Result>::max());
    if (x <= 0 || sf > borders.upper) return 0;
    if (sf < borders.lower) return std::numeric_limits<Result>::max();
    const auto reaches = [&](std::uint64_t r) {
        const uint128 tie = 2 * uint128{r} - 1, number = 4 * uint128(static_cast<std::uint64_t>(x));
        const uint128 square = sf > 0 ? (tie * tie) << (2 * sf) : tie * tie;
        const uint128 limit = sf < 0 ? number << (-2 * sf) : number;
        return limit > square || (limit == square && r % 2 == 0);
    };
    // No root is larger; with these, nothing above overflows.
    const std::uint64_t most = sf < 0 ? std::uint64_t{1} << 62 : (std::uint64_t{1} << 33) >> std::min(sf, 33);
    std::uint64_t low = 0, high = std::min(largest, most);
    while (low < high) {
        const std::uint64_t middle = low + (high - low + 1) / 2;
        if (reaches(middle)) {
            low = middle;
        } else {
            high = middle - 1;
        }
    }
    return static_cast<Result>(low);
}

template <class T>
std::vector<T> numbers(test::Random& random, int sf) {
    std::vector<T> x = test::hardIntegers<T>();
    for (int i = 0; i < 20; ++i) x.push_back(random.anyBits<T>());
    // Ties, where there are any, and their neighbours.
    for (int i = 0; i < 20; ++i) {
        const std::int64_t tie = 2 * random.integer(0, 600) + 1;
        const std::int64_t square = sf > 0 && sf < 20 ? tie * tie << 2 * (sf - 1) : tie * tie;
        const std::int64_t number = square + random.integer(-1, 1);
        if (number <= static_cast<std::int64_t>(std::numeric_limits<T>::max())) x.push_back(static_cast<T>(number));
    }
    return x;
}

template <class Source, class Result>
using Roots = std::function<VornStatus(const Source*, Result*, int, int)>;

template <class Source, class Result>
void expectRoots(const Roots<Source, Result>& roots, Borders borders, int lowestFactor) {
    test::Random random(21);
    std::vector<int> factors = {INT_MIN, -1000, 1000, INT_MAX};
    if (lowestFactor > -64) factors.erase(factors.begin(), factors.begin() + 2);
    for (int sf = lowestFactor; sf <= 70; ++sf) factors.push_back(sf);
    for (int sf : factors) {
        const std::vector<Source> x = numbers<Source>(random, sf);
        const bool negative = std::any_of(x.begin(), x.end(), [](Source number) { return number < Source(0); });
        const test::Guarded<Source> src(x);
        const test::Guarded<Result> dst(x.size());
        ASSERT_EQ(roots(src, dst, static_cast<int>(x.size()), sf), negative ? vornStsSqrtNegArg : vornStsNoErr) << sf;
        for (std::size_t i = 0; i < x.size(); ++i) {
            ASSERT_EQ(dst[i], rootOf<Result>(static_cast<std::int64_t>(x[i]), sf, borders))
                << test::show(x[i]) << " sf " << sf;
        }
        ASSERT_TRUE(dst.surroundingsUntouched());
    }
}

template <class T>
Roots<T, T> inPlace(VornStatus (*roots)(T*, int, int)) {
    return [roots](const T* src, T* dst, int len, int sf) {
        std::copy_n(src, len, dst);
        return roots(dst, len, sf);
    };
}

TEST(IntegerRoots, FollowTheScaleFactor) {
    expectRoots<Vorn8u, Vorn8u>(vornsSqrt_8u_Sfs, {-7, 40}, -70);
    expectRoots<Vorn8u, Vorn8u>(inPlace(vornsSqrt_8u_ISfs), {-7, 40}, -70);
    expectRoots<Vorn16u, Vorn16u>(vornsSqrt_16u_Sfs, {-15, 40}, -70);
    expectRoots<Vorn16u, Vorn16u>(inPlace(vornsSqrt_16u_ISfs), {-15, 40}, -70);
    expectRoots<Vorn16s, Vorn16s>(vornsSqrt_16s_Sfs, {-14, 8}, -70);
    expectRoots<Vorn16s, Vorn16s>(inPlace(vornsSqrt_16s_ISfs), {-14, 8}, -70);
    expectRoots<Vorn32s, Vorn16s>(vornsSqrt_32s16s_Sfs, {-14, 16}, -70);
    expectRoots<Vorn64s, Vorn16s>(vornsSqrt_64s16s_Sfs, {-14, 16}, -70);
    expectRoots<Vorn64s, Vorn64s>(vornsSqrt_64s_Sfs, {INT_MIN, 32}, -28);
    expectRoots<Vorn64s, Vorn64s>(inPlace(vornsSqrt_64s_ISfs), {INT_MIN, 32}, -28);
}

// The 16-bit form of 64-bit numbers ends where that of 32-bit numbers does, though its roots are larger.
TEST(IntegerRoots, OfWideNumbersAreZeroAboveSixteen) {
    const Vorn64s largest = 9223372036854775807;
    const Vorn64s x[] = {largest, 1, 0, 4611686018427387904, largest};
    for (int sf : {17, 18, 30, 31, 32, 33, 64, INT_MAX}) {
        Vorn16s root[5] = {1, 1, 1, 1, 1};
        EXPECT_EQ(vornsSqrt_64s16s_Sfs(x, root, 5, sf), vornStsNoErr) << sf;
        for (Vorn16s r : root) EXPECT_EQ(r, 0) << sf;
        const Vorn64s withNegative[] = {largest, largest, -1};
        EXPECT_EQ(vornsSqrt_64s16s_Sfs(withNegative, root, 3, sf), vornStsSqrtNegArg) << sf;
        for (int i = 0; i < 3; ++i) EXPECT_EQ(root[i], 0) << sf;
    }
    Vorn16s root[5];
    EXPECT_EQ(vornsSqrt_64s16s_Sfs(x, root, 5, 16), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(root, (const Vorn16s[]){32767, 0, 0, 32767, 32767}, 5));
}

// The principal root of integers at 200 bits, scaled, rounded to nearest even and saturated. No part of such a root is
// within 2^-53 of a tie that it does not hit.
Vorn16s scaledPart(const test::Precise& part, int sf) {
    const double scaled = std::ldexp(part.toDouble(), -std::clamp(sf, -1000, 1000));
    return static_cast<Vorn16s>(std::clamp(std::nearbyint(scaled), -32768.0, 32767.0));
}
Vorn16sc rootOf(Vorn16sc z, int sf) {
    const test::Precise re(z.re), im(z.im), half(0.5);
    const test::Precise larger = sqrt(half * (sqrt(re * re + im * im) + test::Precise(std::abs(z.re))));
    if (z.re == 0 && z.im == 0) return {0, 0};
    if (z.re >= 0) return {scaledPart(larger, sf), scaledPart(half * im / larger, sf)};
    const test::Precise smaller = half * test::Precise(std::abs(z.im)) / larger;
    return {scaledPart(smaller, sf), scaledPart(z.im < 0 ? test::Precise(0.0) - larger : larger, sf)};
}

TEST(IntegerRoots, OfComplexNumbersAreThePrincipalOnes) {
    test::Random random(22);
    for (int sf : {0, 1, 2, 3, 5, 7, 8, 9, 30, 2000, INT_MAX, -1, -2, -6, -7, -8, -14, -15, -16, -40, -2000, INT_MIN}) {
        for (int len : {1, 2, 3, 7, 16, 33, 600}) {
            std::vector<Vorn16sc> z(static_cast<std::size_t>(len));
            for (std::size_t i = 0; i < z.size(); ++i) {
                switch (i % 4) {
                    case 0:
                        z[i] = {random.anyBits<Vorn16s>(), random.anyBits<Vorn16s>()};
                        break;
                    case 1: {  // a square, whose root may be a tie
                        const auto a = random.integer(-128, 128), b = random.integer(-127, 127);
                        z[i] = {static_cast<Vorn16s>(a * a - b * b), static_cast<Vorn16s>(2 * a * b)};
                        break;
                    }
                    case 2:
                        z[i] = {static_cast<Vorn16s>(random.integer(-40, 40)),
                                static_cast<Vorn16s>(random.integer(-40, 40))};
                        break;
                    default:
                        const Vorn16s hard[] = {-32768, -32767, -1, 0, 1, 32767};
                        z[i] = {hard[random.integer(0, 5)], hard[random.integer(0, 5)]};
                }
            }
            std::vector<Vorn16sc> expected;
            for (const Vorn16sc& x : z) expected.push_back(rootOf(x, sf));
            const test::Guarded<Vorn16sc> src(z), dst(z.size());
            ASSERT_EQ(vornsSqrt_16sc_Sfs(src, dst, len, sf), vornStsNoErr);
            ASSERT_TRUE(test::sameBits(dst.values(), expected)) << "sf " << sf;
            ASSERT_TRUE(dst.surroundingsUntouched());
            ASSERT_EQ(vornsSqrt_16sc_ISfs(src, len, sf), vornStsNoErr);
            ASSERT_TRUE(test::sameBits(src.values(), expected)) << "in place, sf " << sf;
        }
    }
}

}  // namespace
