// Four doubles in every build.
#include "simd/quad.h"

#include <vector>

#include "simd/lanes.h"
#include "support/guarded.h"

namespace {

using namespace vorn;
using test::Guarded;

std::vector<double> lanes(f64x4 a) {
    std::vector<double> x(4);
    store(x.data(), a);
    return x;
}
using Four = std::vector<double>;

TEST(Quad, LoadsAndStores) {
    const Guarded<double> x({1.5, -2.5, 3.25, 4e300});
    EXPECT_EQ(lanes(load<f64x4>(x.data())), x.values());
    EXPECT_EQ(lanes(splat<f64x4>(-7.0)), Four(4, -7.0));
    EXPECT_EQ(lanes(quadOfLanes(1, 2, 3, 4)), (Four{1, 2, 3, 4}));
    EXPECT_EQ(test::lanesOf<f64x2>(pairOf(5, 6))[0], 5.0);
    EXPECT_EQ(test::lanesOf<f64x2>(pairOf(5, 6))[1], 6.0);
    const Guarded<float> singles({1.5f, -2.5f, 3.25f, 1e30f});
    EXPECT_EQ(lanes(loadQuad(singles.data())), (Four{1.5, -2.5, 3.25, double(1e30f)}));
    EXPECT_EQ(lanes(loadQuadBackwards(singles.data() + 3)), (Four{double(1e30f), 3.25, -2.5, 1.5}));
    const Guarded<std::int16_t> shorts({1, -2, 32767, -32768});
    EXPECT_EQ(lanes(loadQuad(shorts.data())), (Four{1, -2, 32767, -32768}));
    EXPECT_EQ(lanes(loadQuadBackwards(shorts.data() + 3)), (Four{-32768, 32767, -2, 1}));
    const auto backwards = test::lanesOf<i32x4>(loadBackwards(shorts.data() + 3));
    EXPECT_EQ(backwards[0], -32768);
    EXPECT_EQ(test::lanesOf<f32x4>(loadBackwards(singles.data() + 3))[3], 1.5f);
    const Guarded<float> narrowed(4);
    storeNarrowed(narrowed.data(), quadOfLanes(0.1, -0.5, 1e40, 3));
    EXPECT_EQ(narrowed.values(), (std::vector<float>{0.1f, -0.5f, std::numeric_limits<float>::infinity(), 3.0f}));
}

TEST(Quad, Arithmetic) {
    const f64x4 a = quadOfLanes(1, 2, 3, 4), b = quadOfLanes(0.5, -1, 8, 0.25);
    EXPECT_EQ(lanes(a + b), (Four{1.5, 1, 11, 4.25}));
    EXPECT_EQ(lanes(a - b), (Four{0.5, 3, -5, 3.75}));
    EXPECT_EQ(lanes(a * b), (Four{0.5, -2, 24, 1}));
    EXPECT_EQ(sumLanes(quadOfLanes(1, 0x1p-53, 1, 0x1p-53)), 2 + 0x1p-52) << "(0 + 2) + (1 + 3)";
    const auto q = test::lanesOf<i32x4>(truncToInt(quadOfLanes(1.9, -1.9, 0, 268435455.5)));
    EXPECT_EQ(q[0], 1);
    EXPECT_EQ(q[1], -1);
    EXPECT_EQ(q[2], 0);
    EXPECT_EQ(q[3], 268435455);
    EXPECT_EQ(lanes(toQuad(truncToInt(quadOfLanes(1.9, -1.9, 0, 7.5)))), (Four{1, -1, 0, 7}));
    EXPECT_EQ(lanes(toQuad(test::vectorOf<f32x4>({1.5f, 2.5f, -3.5f, 0.0f}))), (Four{1.5, 2.5, -3.5, 0}));
    for (int n = 0; n <= 4; ++n) {
        const Four first = lanes(firstLanes(quadOfLanes(-1, -2, -3, -4), n));
        for (int j = 0; j < 4; ++j) {
            EXPECT_TRUE(test::same(first[static_cast<std::size_t>(j)], j < n ? -1.0 - j : 0.0)) << n;
        }
    }
}

TEST(Quad, Order) {
    f64x4 firsts, seconds;
    transposed(pairOf(1, 2), pairOf(3, 4), pairOf(5, 6), pairOf(7, 8), firsts, seconds);
    EXPECT_EQ(lanes(firsts), (Four{1, 3, 5, 7}));
    EXPECT_EQ(lanes(seconds), (Four{2, 4, 6, 8}));
    const Guarded<double> table({10, 11, 12, 13, 14});
    loadNeighbours(table.data(), truncToInt(quadOfLanes(3, 0, 2, 2)), firsts, seconds);
    EXPECT_EQ(lanes(firsts), (Four{13, 10, 12, 12}));
    EXPECT_EQ(lanes(seconds), (Four{14, 11, 13, 13}));
}

}  // namespace
