// One feature vector against many Gaussians: scores, and the log-sum of a mixture.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "model/gauss_model.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;

// A model of height Gaussians, rows step elements apart; the last row ends where its len elements end.
struct Gaussians {
    Gaussians(int height_, int len_, int step_, std::uint64_t seed)
        : height(height_), len(len_), step(step_), mean(size()), var(size()), src(at(len_)), val(at(height_)) {
        test::Random random(seed);
        mean.assign(random.floats(size(), -20, 20));
        var.assign(random.floats(size(), 0.01, 4));
        src.assign(random.floats(at(len), -20, 20));
        val.assign(random.floats(at(height), -200, 50));
    }
    static std::size_t at(int n) { return static_cast<std::size_t>(n); }
    std::size_t size() const { return at(height - 1) * at(step) + at(len); }
    std::vector<float> scores() const {
        std::vector<float> result;
        for (int g = 0; g < height; ++g) {
            const std::ptrdiff_t row = static_cast<std::ptrdiff_t>(g) * step;
            result.push_back(model::multiMixScore(src, mean + row, var + row, len, val[at(g)]));
        }
        return result;
    }
    std::string name() const {
        return "len " + std::to_string(len) + ", height " + std::to_string(height) + ", step " + std::to_string(step);
    }

    int height, len, step;
    Guarded<float> mean, var, src, val;
};

std::vector<int> allLengths() {
    std::vector<int> lengths;
    for (int len = 1; len <= 70; ++len) lengths.push_back(len);
    for (int len : {100, 112, 127, 255}) lengths.push_back(len);
    return lengths;
}
const int smallHeights[] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
const int borderHeights[] = {99, 100, 101, 127, 128, 129, 199, 200, 201, 999, 1000, 1001};

void expectScores(const Gaussians& g) {
    const std::vector<float> expected = g.scores();
    Guarded<float> srcDst(g.val.values());
    ASSERT_EQ(vornsLogGaussMultiMix_32f_D2(g.mean, g.var, g.step, g.src, g.len, srcDst, g.height), vornStsNoErr);
    EXPECT_TRUE(test::sameBits(srcDst.data(), expected.data(), expected.size())) << g.name();
    EXPECT_TRUE(srcDst.surroundingsUntouched());

    Guarded<float> result(1);
    ASSERT_EQ(vornsLogGaussMixture_32f_D2(g.src, g.mean, g.var, g.height, g.step, g.len, g.val, result), vornStsNoErr);
    const float sum = model::logSumOfRuns(expected);
    EXPECT_TRUE(test::sameBits(result.data(), &sum, 1)) << g.name();
    EXPECT_TRUE(result.surroundingsUntouched());
}

TEST(LogGaussMultiMix, EveryLengthAndHeight) {
    for (int len : allLengths()) {
        for (int height : smallHeights) expectScores(Gaussians(height, len, len + height % 3 * 5, 1000u + height));
    }
}

TEST(LogGaussMultiMix, AroundTheRuns) {
    for (int height : borderHeights) {
        for (int len : {1, 3, 4, 13, 26, 39, 40}) expectScores(Gaussians(height, len, len, 2000u + height));
    }
}

TEST(LogGaussMultiMix, EveryAlignment) {
    const int len = 39, height = 6, step = 41;
    const Gaussians g(height, len, step, 3);
    const std::vector<float> expected = g.scores();
    for (std::size_t offset = 0; offset < 64; offset += 4) {
        test::Offset<float> mean(g.mean.size(), offset), var(g.mean.size(), (offset * 3 + 4) % 64),
            src(g.src.size(), (offset * 5 + 8) % 64), srcDst(g.val.size(), (offset * 7 + 12) % 64);
        mean.assign(g.mean.values()), var.assign(g.var.values()), src.assign(g.src.values());
        srcDst.assign(g.val.values());
        ASSERT_EQ(vornsLogGaussMultiMix_32f_D2(mean, var, step, src, len, srcDst, height), vornStsNoErr);
        EXPECT_TRUE(test::sameBits(srcDst.data(), expected.data(), expected.size())) << offset;
        EXPECT_TRUE(srcDst.surroundingsUntouched());
    }
}

TEST(LogGaussMultiMix, HardValues) {
    const std::vector<float> hard = test::hardFloats<float>();
    test::Random random(4);
    for (int round = 0; round < 200; ++round) {
        Gaussians g(5, 1 + round % 45, 45, 5u + static_cast<unsigned>(round));
        const auto spoil = [&](Guarded<float>& values) {
            for (float& x : values) {
                if (random.integer(0, 19) == 0) x = hard[static_cast<std::size_t>(random.next() % hard.size())];
            }
        };
        spoil(g.mean), spoil(g.var), spoil(g.src), spoil(g.val);
        expectScores(g);
    }
}

TEST(LogGaussMultiMix, CountsTheValOnceMoreInEveryCall) {
    Guarded<float> mean{1}, var{2}, src{3}, srcDst{10};
    ASSERT_EQ(vornsLogGaussMultiMix_32f_D2(mean, var, 1, src, 1, srcDst, 1), vornStsNoErr);
    EXPECT_EQ(srcDst[0], 6.0f);
    ASSERT_EQ(vornsLogGaussMultiMix_32f_D2(mean, var, 1, src, 1, srcDst, 1), vornStsNoErr);
    EXPECT_EQ(srcDst[0], 2.0f);
}

TEST(LogGaussMixture, OneGaussianIsItsScore) {
    Guarded<float> src{3, 0}, mean{1, 5}, var{2, 4}, val{10}, result(1);
    ASSERT_EQ(vornsLogGaussMixture_32f_D2(src, mean, var, 1, 2, 2, val, result), vornStsNoErr);
    EXPECT_EQ(result[0], -44.0f);
}

// 100 equal scores s in one run, then one more log-add: about s + ln 101.
TEST(LogGaussMixture, HundredAndOneEqualScores) {
    Guarded<float> src{3}, mean(101), var(101), val(101), result(1);
    for (int g = 0; g < 101; ++g)
        mean[static_cast<std::size_t>(g)] = 1, var[static_cast<std::size_t>(g)] = 2,
        val[static_cast<std::size_t>(g)] = -6;
    ASSERT_EQ(vornsLogGaussMixture_32f_D2(src, mean, var, 101, 1, 1, val, result), vornStsNoErr);
    const std::vector<float> run(100, -10.0f);
    const float hundred = model::logSum(run.data(), 100);
    EXPECT_EQ(result[0], model::logAdd(hundred, -10.0f, false));
    EXPECT_NEAR(result[0], -10.0 + 4.61512, 3e-5);
}

struct Call {
    std::vector<float> mean = std::vector<float>(8, 1.0f), var = mean, src = mean, val = mean;
    std::vector<float> out = std::vector<float>(2, 77.0f);
    const float *meanAt = mean.data(), *varAt = var.data(), *srcAt = src.data(), *valAt = val.data();
    float* outAt = out.data();
    int step = 4, len = 4, height = 2;
};

std::function<Call()> good() {
    return [] { return Call(); };
}
bool untouched(Call& call) { return call.out == std::vector<float>(2, 77.0f); }

TEST(LogGaussMultiMix, Checks) {
    test::expectCheckOrder<Call>(good(),
                                 [](Call& c) {
                                     return vornsLogGaussMultiMix_32f_D2(c.meanAt, c.varAt, c.step, c.srcAt, c.len,
                                                                         c.outAt, c.height);
                                 },
                                 untouched,
                                 {{"step", vornStsStrideErr, [](Call& c) { c.step = c.len - 1; }},
                                  {"mean", vornStsNullPtrErr, [](Call& c) { c.meanAt = nullptr; }},
                                  {"var", vornStsNullPtrErr, [](Call& c) { c.varAt = nullptr; }},
                                  {"src", vornStsNullPtrErr, [](Call& c) { c.srcAt = nullptr; }},
                                  {"srcDst", vornStsNullPtrErr, [](Call& c) { c.outAt = nullptr; }},
                                  {"height", vornStsSizeErr, [](Call& c) { c.height = 0; }},
                                  {"len", vornStsSizeErr, [](Call& c) { c.len = 0; }}});
}

TEST(LogGaussMixture, Checks) {
    test::expectCheckOrder<Call>(good(),
                                 [](Call& c) {
                                     return vornsLogGaussMixture_32f_D2(c.srcAt, c.meanAt, c.varAt, c.height, c.step,
                                                                        c.len, c.valAt, c.outAt);
                                 },
                                 untouched,
                                 {{"src", vornStsNullPtrErr, [](Call& c) { c.srcAt = nullptr; }},
                                  {"mean", vornStsNullPtrErr, [](Call& c) { c.meanAt = nullptr; }},
                                  {"var", vornStsNullPtrErr, [](Call& c) { c.varAt = nullptr; }},
                                  {"val", vornStsNullPtrErr, [](Call& c) { c.valAt = nullptr; }},
                                  {"result", vornStsNullPtrErr, [](Call& c) { c.outAt = nullptr; }},
                                  {"step", vornStsStrideErr, [](Call& c) { c.step = c.len - 1; }},
                                  {"height", vornStsSizeErr, [](Call& c) { c.height = 0; }},
                                  {"len", vornStsSizeErr, [](Call& c) { c.len = 0; }}});
}

}  // namespace
