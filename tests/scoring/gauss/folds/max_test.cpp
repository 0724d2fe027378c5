// The best score so far, in every arithmetic.
#include "scoring/gauss/scores_model.h"

namespace gauss {
namespace {

constexpr Shape frames{}, framesId{.identity = true}, framesSf{.scaled = true},
    framesIdSf{.identity = true, .scaled = true}, gaussians{.gaussians = true, .separateVal = true},
    gaussiansSf{.gaussians = true, .scaled = true, .separateVal = true},
    gaussiansSfStrideLast{.gaussians = true, .scaled = true, .separateVal = true, .order = Order::NullSizeStride};

template <class T>
T greater(T score, T old) {
    return score > old ? score : old;
}

template <Shape shape, class T, class Val, class Out, class D2, class D2L, class Score>
void maxima(const char* name, D2 d2, D2L d2l, Score score) {
    sweep<shape, T, Val, Out>(name, d2, d2l, [=](const auto& p, std::vector<Out> out, auto) {
        const auto scores = scoresOf<shape>(p, score);
        for (std::size_t r = 0; r < out.size(); ++r) out[r] = greater<Out>(scores[r], out[r]);
        return out;
    });
}
#define MAXIMA(shape, T, Val, Out, stem, d2, d2l, score) \
    maxima<shape, T, Val, Out>(#stem, stem##d2, stem##d2l, [](const auto& place) { return score(place); })

// The integer maximum: everything truncates, save the conversion of the one val of many frames.
template <Shape shape, class D2, class D2L>
void integerMaxima(const char* name, D2 d2, D2L d2l) {
    sweep<shape, Vorn16s, Vorn32s, Vorn32s>(name, d2, d2l, [](const auto& p, std::vector<Vorn32s> out, auto) {
        const float oneVal = static_cast<float>(p.val[0]);
        const test::RoundingMode truncating(test::RoundingMode::towardZero);
        const auto scores = scoresOf<shape>(
            p, [&](const Integer& place) __attribute__((noinline)) {
                const float val = shape.gaussians ? static_cast<float>(place.val) : oneVal;
                const float scale = model::scaleSingle(place.scaleFactor + 1L);
                const float score = model::negatedSum(place.row) * scale + val;
                return model::maxOf(model::minOf(score, 2147483648.0f), -2147483648.0f);
            });
        for (std::size_t r = 0; r < out.size(); ++r) {
            out[r] = model::toInt(greater(scores[r], static_cast<float>(out[r])));
        }
        return out;
    });
}

// At low precision with variances: integers are compared as such, save where a negative scale factor works in single,
// to nearest.
template <Shape shape, class D2, class D2L>
void lowMaxima(const char* name, D2 d2, D2L d2l) {
    sweep<shape, Vorn16s, Vorn32s, Vorn32s>(name, d2, d2l, [](const auto& p, std::vector<Vorn32s> out, auto) {
        const test::RoundingMode nearest(test::RoundingMode::nearest);
        const auto totals = scoresOf<shape>(p, lowTotal);
        const auto singles = scoresOf<shape>(p, integerInFloat);
        for (std::size_t r = 0; r < out.size(); ++r) {
            out[r] = p.scaleFactor < 0 ? model::toInt(greater(singles[r], static_cast<float>(out[r])))
                                       : greater(totals[r], out[r]);
        }
        return out;
    });
}

TEST(LogGaussMax, Floats) {
    MAXIMA(frames, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussMax_32f, _D2, _D2L, doubledVal);
    MAXIMA(framesId, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussMax_IdVar_32f, _D2, _D2L, doubledVal);
    MAXIMA(frames, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussMax_64f, _D2, _D2L, halvedSum);
    MAXIMA(framesId, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussMax_IdVar_64f, _D2, _D2L, tallSum);
    MAXIMA(gaussians, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussMaxMultiMix_32f, _D2, _D2L, halvedSum);
    MAXIMA(gaussians, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussMaxMultiMix_64f, _D2, _D2L, tallSum);
}
TEST(LogGaussMax, SixteenBits) {
    MAXIMA(framesSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMax_Scaled_16s32f, _D2, _D2L, scaled);
    MAXIMA(framesIdSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMax_IdVarScaled_16s32f, _D2, _D2L, scaled);
    MAXIMA(gaussiansSfStrideLast, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMaxMultiMix_Scaled_16s32f, _D2, _D2L, scaled);
}
TEST(LogGaussMax, Integers) {
    integerMaxima<framesSf>("vornsLogGaussMax_16s32s", vornsLogGaussMax_16s32s_D2Sfs, vornsLogGaussMax_16s32s_D2LSfs);
    integerMaxima<framesIdSf>("vornsLogGaussMax_IdVar_16s32s", vornsLogGaussMax_IdVar_16s32s_D2Sfs,
                              vornsLogGaussMax_IdVar_16s32s_D2LSfs);
    integerMaxima<gaussiansSf>("vornsLogGaussMaxMultiMix_16s32s", vornsLogGaussMaxMultiMix_16s32s_D2Sfs,
                               vornsLogGaussMaxMultiMix_16s32s_D2LSfs);
}
TEST(LogGaussMax, LowPrecision) {
    MAXIMA(framesSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMax_LowScaled_16s32f, _D2, _D2L, lowScaled);
    MAXIMA(framesIdSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMax_IdVarLowScaled_16s32f, _D2, _D2L, identityLowScaled);
    MAXIMA(gaussiansSfStrideLast, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMaxMultiMix_LowScaled_16s32f, _D2, _D2L,
           lowScaled);
    MAXIMA(framesIdSf, Vorn16s, Vorn32s, Vorn32s, vornsLogGaussMax_IdVarLow_16s32s, _D2Sfs, _D2LSfs, lowTotal);
    lowMaxima<framesSf>("vornsLogGaussMax_Low_16s32s", vornsLogGaussMax_Low_16s32s_D2Sfs,
                        vornsLogGaussMax_Low_16s32s_D2LSfs);
    lowMaxima<gaussiansSf>("vornsLogGaussMaxMultiMix_Low_16s32s", vornsLogGaussMaxMultiMix_Low_16s32s_D2Sfs,
                           vornsLogGaussMaxMultiMix_Low_16s32s_D2LSfs);
}

TEST(LogGaussMax, TakesTheScoresOverTheFloor) {
    Guarded<float> src{3, 4, 5}, mean{1}, var{2}, srcDst{-4500000.0f, -4500000.0f, -4500000.0f};
    ASSERT_EQ(vornsLogGaussMax_32f_D2(src, 1, mean, var, 1, srcDst, 3, 10.0f), vornStsNoErr);
    EXPECT_EQ(srcDst[0], 6.0f);
    EXPECT_EQ(srcDst[1], 1.0f);
    EXPECT_EQ(srcDst[2], -6.0f);
}

// The maximum in single rounds an old value that stays; the one in integers keeps it.
TEST(LogGaussMax, OldValueOfMoreThan24Bits) {
    Guarded<Vorn16s> src{3, 3}, mean{1}, var{2};
    for (int scaleFactor : {0, 5}) {
        Guarded<Vorn32s> single{16777217, 16777219}, low{16777217, 16777219};
        ASSERT_EQ(vornsLogGaussMax_16s32s_D2Sfs(src, 1, mean, var, 1, single, 2, 0, scaleFactor), vornStsNoErr);
        EXPECT_EQ(single[0], 16777216);
        EXPECT_EQ(single[1], 16777218) << "truncated, not rounded";
        ASSERT_EQ(vornsLogGaussMax_Low_16s32s_D2Sfs(src, 1, mean, var, 1, low, 2, 0, scaleFactor), vornStsNoErr);
        EXPECT_EQ(low[0], 16777217);
        EXPECT_EQ(low[1], 16777219);
    }
}

// With a negative scale factor the old value goes through a single, to nearest in every mode of the caller's.
TEST(LogGaussMax, LowPrecisionInSingleRoundsToNearest) {
    Guarded<Vorn16s> src{3}, mean{1}, var{2};
    for (unsigned mode : {test::RoundingMode::nearest, test::RoundingMode::down, test::RoundingMode::up,
                          test::RoundingMode::towardZero}) {
        Guarded<Vorn32s> frames{16777219}, gaussians{16777219}, val{0};
        {
            const test::RoundingMode rounding(mode);
            EXPECT_EQ(vornsLogGaussMax_Low_16s32s_D2Sfs(src, 1, mean, var, 1, frames, 1, 0, -1), vornStsNoErr);
            EXPECT_EQ(vornsLogGaussMaxMultiMix_Low_16s32s_D2Sfs(mean, var, 1, src, 1, val, gaussians, 1, -1),
                      vornStsNoErr);
            EXPECT_EQ(test::RoundingMode::current(), mode) << "the caller's mode comes back";
        }
        EXPECT_EQ(frames[0], 16777220) << mode;
        EXPECT_EQ(gaussians[0], 16777220) << mode;
    }
}

TEST(LogGaussMax, IntegerFormsIgnoreTheCallersRounding) {
    const auto p = makeProblem<Vorn16s, Vorn32s>(9, 39, 12, 1, 3);
    const std::vector<Vorn32s> old = oldValues<gaussiansSf, Vorn16s, Vorn32s, Vorn32s>(p, 1, 4);
    Guarded<Vorn32s> wanted(old);
    ASSERT_EQ(call(vornsLogGaussMaxMultiMix_16s32s_D2Sfs, argumentsOf(p, wanted.data())), vornStsNoErr);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        Guarded<Vorn32s> out(old);
        {
            const test::RoundingMode rounding(mode);
            EXPECT_EQ(call(vornsLogGaussMaxMultiMix_16s32s_D2Sfs, argumentsOf(p, out.data())), vornStsNoErr);
            EXPECT_EQ(test::RoundingMode::current(), mode) << "the caller's mode comes back";
        }
        EXPECT_TRUE(test::sameBits(out.data(), wanted.data(), old.size())) << mode;
    }
}

TEST(LogGaussMax, NotANumberLeavesTheOldValue) {
    for (int height = 1; height <= 9; ++height) {
        for (int r = 0; r < height; ++r) {
            Guarded<float> src(std::vector<float>(at(height), 1.0f)), mean{1}, var{2},
                srcDst(std::vector<float>(at(height), -7.0f)), old(srcDst.values());
            src[at(r)] = std::nanf("");
            ASSERT_EQ(vornsLogGaussMax_32f_D2(src, 1, mean, var, 1, srcDst, height, 3.0f), vornStsNoErr);
            for (int i = 0; i < height; ++i) EXPECT_EQ(srcDst[at(i)], i == r ? -7.0f : 3.0f) << height << " " << r;
            src[at(r)] = 1.0f, old[at(r)] = std::nanf("");
            ASSERT_EQ(vornsLogGaussMax_32f_D2(src, 1, mean, var, 1, old, height, 3.0f), vornStsNoErr);
            EXPECT_TRUE(std::isnan(old[at(r)])) << "an old value that is none stays";
        }
    }
}

// A zero sum in an infinite unit is no number: the clamp of the integer form takes it for the upper border, which no
// integer holds.
TEST(LogGaussMax, IntegerFormStoresTheSmallestForNoNumber) {
    for (int height = 1; height <= 9; ++height) {
        Guarded<Vorn16s> src(std::vector<Vorn16s>(at(height), 1)), mean{1}, var{2};
        Guarded<Vorn32s> srcDst(std::vector<Vorn32s>(at(height), 5));
        ASSERT_EQ(vornsLogGaussMax_16s32s_D2Sfs(src, 1, mean, var, 1, srcDst, height, 3, -129), vornStsNoErr);
        for (Vorn32s score : srcDst) EXPECT_EQ(score, INT32_MIN);
    }
}

}  // namespace
}  // namespace gauss
