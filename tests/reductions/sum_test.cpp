// Sums of vectors.
#include <cmath>
#include <limits>
#include <vector>

#include "model/reductions.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

float sum32f(const std::vector<float>& x, int hint) {
    test::Guarded<float> src(x), sum(1);
    EXPECT_EQ(vornsSum_32f(src, static_cast<int>(x.size()), sum, hint), vornStsNoErr);
    EXPECT_TRUE(sum.surroundingsUntouched());
    return sum[0];
}

void expectSums(const std::vector<float>& x) {
    EXPECT_TRUE(test::same(sum32f(x, 1), model::sumFast(x))) << x.size();
    for (int hint : {0, 2, -1, 7}) EXPECT_TRUE(test::same(sum32f(x, hint), model::sumAccurate(x))) << x.size();
}

TEST(Sum32f, EqualsTheModel) {
    test::Random random(1);
    const std::vector<float> hard = test::hardFloats<float>();
    for (int len = 1; len <= 70; ++len) {
        const auto n = static_cast<std::size_t>(len);
        expectSums(random.floats(n, -1000.0, 1000.0));
        std::vector<float> x(n);
        for (float& value : x)
            value =
                std::ldexp(static_cast<float>(random.uniform(-1.0, 1.0)), static_cast<int>(random.integer(-60, 60)));
        expectSums(x);
        for (float& value : x)
            value = hard[static_cast<std::size_t>(random.integer(0, static_cast<int>(hard.size()) - 1))];
        expectSums(x);
        expectSums(std::vector<float>(n, -0.0f));
        expectSums(std::vector<float>(n, std::numeric_limits<float>::denorm_min()));
    }
    for (int len : {127, 128, 129, 1000, 65537}) expectSums(random.floats(static_cast<std::size_t>(len), -1.0, 1.0));
}

TEST(Sum32f, EveryAlignment) {
    test::Random random(2);
    const std::vector<float> x = random.floats(45, -1.0, 1.0);
    for (std::size_t offset = 0; offset < 64; offset += 4) {
        test::Offset<float> src(x.size(), offset);
        src.assign(x);
        float fast = 0.0f, accurate = 0.0f;
        EXPECT_EQ(vornsSum_32f(src, 45, &fast, 1), vornStsNoErr);
        EXPECT_EQ(vornsSum_32f(src, 45, &accurate, 2), vornStsNoErr);
        EXPECT_EQ(fast, model::sumFast(x));
        EXPECT_EQ(accurate, model::sumAccurate(x));
    }
}

// 2^24 and 1 in one lane: single loses the ones, double does not.
TEST(Sum32f, HintsDifferOnMixedMagnitudes) {
    std::vector<float> x(80, 0.0f);
    x[0] = 16777216.0f;
    for (std::size_t i = 8; i < 80; i += 8) x[i] = 1.0f;
    EXPECT_EQ(sum32f(x, 1), 16777216.0f);
    EXPECT_EQ(sum32f(x, 2), 16777224.0f);  // 2^24 + 9, rounded once
    x[8] = 2.0f;
    EXPECT_EQ(sum32f(x, 2), 16777226.0f);
}

}  // namespace
