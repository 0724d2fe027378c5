// The normalising constant of a Gaussian.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Random;

constexpr float inf = std::numeric_limits<float>::infinity();

// The rounded constant part and one addition in single, from the library's own sum of logarithms: bit for bit.
TEST(UpdateGConstDirectVar, IsTheConstantPlusTheSumOfLogarithms) {
    Random random(1);
    for (int len : {1, 2, 3, 4, 5, 13, 26, 39, 40, 64, 70, 255, 256, 257, 1000}) {
        for (int turn = 0; turn < 10; ++turn) {
            const Guarded<float> src(random.floats(len, 1e-3, 100.0));
            Guarded<float> dst(1);
            ASSERT_EQ(vornsUpdateGConst_DirectVar_32f(src, len, dst), vornStsNoErr);
            float sum = 0;
            ASSERT_EQ(vornsSumLn_32f(src, len, &sum), vornStsNoErr);
            const auto c = static_cast<float>(len * 1.8378770664093);
            const float expected = c + sum;
            EXPECT_EQ(dst[0], expected) << len;
            EXPECT_TRUE(dst.surroundingsUntouched());

            double exact = len * 1.8378770664093453;
            for (float x : src) exact += std::log(static_cast<double>(x));
            EXPECT_NEAR(dst[0], exact, 1e-4 * len) << "the formula itself";
        }
    }
}

TEST(UpdateGConstDirectVar, UnitVariances) {
    const std::vector<float> src(39, 1.0f);
    float dst;
    ASSERT_EQ(vornsUpdateGConst_DirectVar_32f(src.data(), 39, &dst), vornStsNoErr);
    EXPECT_EQ(dst, 71.6772056f);  // 39 ln(2 pi)
}

TEST(UpdateGConstDirectVar, ZerosAndNegativeVariancesWarn) {
    float dst = 0;
    const float zero[] = {1, 2, 0, 3, 4};
    EXPECT_EQ(vornsUpdateGConst_DirectVar_32f(zero, 5, &dst), vornStsLnZeroArg);
    EXPECT_EQ(dst, inf);
    const float minusZero[] = {1, -0.0f};
    EXPECT_EQ(vornsUpdateGConst_DirectVar_32f(minusZero, 2, &dst), vornStsLnZeroArg);
    EXPECT_EQ(dst, inf);
    const float negative[] = {1, 2, 3, -4, 5, 6};
    EXPECT_EQ(vornsUpdateGConst_DirectVar_32f(negative, 6, &dst), vornStsLnNegArg);
    EXPECT_TRUE(std::isnan(dst));
}

TEST(UpdateGConstDirectVar, InfiniteVariances) {
    float dst = 0;
    const float src[] = {1, inf, 3};
    EXPECT_EQ(vornsUpdateGConst_DirectVar_32f(src, 3, &dst), vornStsNoErr);
    EXPECT_TRUE(std::isnan(dst)) << "what the sum of logarithms stores for an infinity";
}

struct Arguments {
    std::vector<float> data = std::vector<float>(3, 1.0f);
    Guarded<float> out = Guarded<float>(1);
    const float* src = data.data();
    float* dst = out.data();
    int len = 3;
};

TEST(UpdateGConstDirectVar, ChecksInOrder) {
    test::expectCheckOrder<Arguments>([] { return Arguments(); },
                                      [](Arguments& a) { return vornsUpdateGConst_DirectVar_32f(a.src, a.len, a.dst); },
                                      [](Arguments& a) { return a.out.untouched(); },
                                      {{"src", vornStsNullPtrErr, [](Arguments& a) { a.src = nullptr; }},
                                       {"dst", vornStsNullPtrErr, [](Arguments& a) { a.dst = nullptr; }},
                                       {"len 0", vornStsSizeErr, [](Arguments& a) { a.len = 0; }},
                                       {"len -1", vornStsSizeErr, [](Arguments& a) { a.len = -1; }}});
}

}  // namespace
