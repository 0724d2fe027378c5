// Mixtures of selected Gaussians: bit for bit against the model, and against a loop over the public functions.
#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "model/selection.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::FailAllocation;
using test::Guarded;
using test::Random;
using test::RoundingMode;
using test::sameBits;

// Everything that a call takes; members without variances or a scale factor leave those.
template <class T>
struct Arguments {
    const T *src, *mean, *var;
    const T *const *srcRows, *const *meanRows, *const *varRows;
    int step, len;
    const Vorn32f* val;
    const Vorn8u* sign;
    int width;
    Vorn32f* result;
    int frames;
    Vorn32f floor;
    int scaleFactor;
};

// block, list: the member in both layouts. single: the public score of one vector. model: the model's.
struct Floats {
    using T = Vorn32f;
    static constexpr bool hasVar = true, isScaled = false;
    static VornStatus block(const Arguments<T>& a) {
        return vornsLogGaussMixture_Select_32f_D2(a.src, a.mean, a.var, a.step, a.len, a.val, a.sign, a.width, a.result,
                                                  a.frames, a.floor);
    }
    static VornStatus list(const Arguments<T>& a) {
        return vornsLogGaussMixture_Select_32f_D2L(a.srcRows, a.meanRows, a.varRows, a.len, a.val, a.sign, a.width,
                                                   a.result, a.frames, a.floor);
    }
    static void single(const T* x, const T* m, const T* v, int len, Vorn32f* result, Vorn32f val, int) {
        vornsLogGaussSingle_32f(x, m, v, len, result, val);
    }
    static float model(const T* x, const T* m, const T* v, int len, float val, int) {
        return model::floatScore(x, m, v, len, val);
    }
};
struct FloatsOfUnitVariance {
    using T = Vorn32f;
    static constexpr bool hasVar = false, isScaled = false;
    static VornStatus block(const Arguments<T>& a) {
        return vornsLogGaussMixture_SelectIdVar_32f_D2(a.src, a.mean, a.step, a.len, a.val, a.sign, a.width, a.result,
                                                       a.frames, a.floor);
    }
    static VornStatus list(const Arguments<T>& a) {
        return vornsLogGaussMixture_SelectIdVar_32f_D2L(a.srcRows, a.meanRows, a.len, a.val, a.sign, a.width, a.result,
                                                        a.frames, a.floor);
    }
    static void single(const T* x, const T* m, const T*, int len, Vorn32f* result, Vorn32f val, int) {
        vornsLogGaussSingle_IdVar_32f(x, m, len, result, val);
    }
    static float model(const T* x, const T* m, const T*, int len, float val, int) {
        return model::floatScore(x, m, nullptr, len, val);
    }
};
struct Shorts {
    using T = Vorn16s;
    static constexpr bool hasVar = true, isScaled = true;
    static VornStatus block(const Arguments<T>& a) {
        return vornsLogGaussMixture_SelectScaled_16s32f_D2(a.src, a.mean, a.var, a.step, a.len, a.val, a.sign, a.width,
                                                           a.result, a.frames, a.floor, a.scaleFactor);
    }
    static VornStatus list(const Arguments<T>& a) {
        return vornsLogGaussMixture_SelectScaled_16s32f_D2L(a.srcRows, a.meanRows, a.varRows, a.len, a.val, a.sign,
                                                            a.width, a.result, a.frames, a.floor, a.scaleFactor);
    }
    static void single(const T* x, const T* m, const T* v, int len, Vorn32f* result, Vorn32f val, int scaleFactor) {
        vornsLogGaussSingle_Scaled_16s32f(x, m, v, len, result, val, scaleFactor);
    }
    static float model(const T* x, const T* m, const T* v, int len, float val, int scaleFactor) {
        return model::scaledScore(x, m, v, len, val, scaleFactor);
    }
};
struct ShortsOfUnitVariance {
    using T = Vorn16s;
    static constexpr bool hasVar = false, isScaled = true;
    static VornStatus block(const Arguments<T>& a) {
        return vornsLogGaussMixture_SelectIdVarScaled_16s32f_D2(a.src, a.mean, a.step, a.len, a.val, a.sign, a.width,
                                                                a.result, a.frames, a.floor, a.scaleFactor);
    }
    static VornStatus list(const Arguments<T>& a) {
        return vornsLogGaussMixture_SelectIdVarScaled_16s32f_D2L(a.srcRows, a.meanRows, a.len, a.val, a.sign, a.width,
                                                                 a.result, a.frames, a.floor, a.scaleFactor);
    }
    static void single(const T* x, const T* m, const T*, int len, Vorn32f* result, Vorn32f val, int scaleFactor) {
        vornsLogGaussSingle_IdVarScaled_16s32f(x, m, len, result, val, scaleFactor);
    }
    static float model(const T* x, const T* m, const T*, int len, float val, int scaleFactor) {
        return model::identityScaled(x, m, len, val, scaleFactor);
    }
};

// A matrix in both layouts: a block that ends with the last row's last column, and rows in no order and at every
// alignment.
template <class T>
class Matrix {
public:
    Matrix(const std::vector<T>& values, int height, int len, int step)
        : block_(static_cast<std::size_t>(height - 1) * step + len),
          copy_(static_cast<std::size_t>(height) * (len + 1)) {
        for (int r = 0; r < height; ++r) {
            const T* row = &values[static_cast<std::size_t>(r) * len];
            std::copy_n(row, len, block_.data() + static_cast<std::size_t>(r) * step);
            T* copied = copy_.data() + static_cast<std::size_t>(height - r) * (len + 1) - len;
            std::copy_n(row, len, copied);
            pointers_.push_back(copied);
        }
        list_ = std::make_unique<Guarded<const T*>>(pointers_);
    }
    const T* block() const { return block_.data(); }
    const T* const* list() const { return list_->data(); }
    const T* operator[](int row) const { return pointers_[static_cast<std::size_t>(row)]; }

private:
    Guarded<T> block_, copy_;
    std::vector<const T*> pointers_;
    std::unique_ptr<Guarded<const T*>> list_;
};

template <class T>
std::vector<T> features(Random& random, std::size_t n, double range) {
    std::vector<T> values(n);
    for (T& x : values) x = static_cast<T>(random.uniform(-range, range));
    return values;
}

template <class Member>
class Selection : public testing::Test {
protected:
    using T = typename Member::T;

    // How many bits of a random table of so many are set: none to all of 8.
    static Guarded<Vorn8u> table(Random& random, int frames, int width, int eighths) {
        const int rowBytes = (width + 7) / 8;
        Guarded<Vorn8u> sign(std::vector<Vorn8u>(static_cast<std::size_t>(frames) * rowBytes, 0));
        for (int f = 0; f < frames; ++f) {
            for (int g = 0; g < 8 * rowBytes; ++g) {  // bits behind the width mean nothing
                if (random.integer(0, 7) < eighths) model::setBit(sign.data() + f * rowBytes, g, true);
            }
        }
        return sign;
    }

    struct Case {
        Case(Random& random, int frames_, int width_, int len_, double range)
            : frames(frames_),
              width(width_),
              len(len_),
              step(len_ + frames_ % 3),
              src(features<T>(random, std::size_t(frames) * len, range), frames, len, step),
              mean(features<T>(random, std::size_t(width) * len, range), width, len, step),
              var(features<T>(random, std::size_t(width) * len, std::is_integral_v<T> ? 90 : 0.1), width, len, step),
              val(random.floats(static_cast<std::size_t>(width), -5, 5)) {}
        Arguments<T> arguments(const Vorn8u* sign, Vorn32f* result, Vorn32f floor, int scaleFactor) const {
            return {src.block(), mean.block(), var.block(), src.list(), mean.list(), var.list(), step,       len,
                    val.data(),  sign,         width,       result,     frames,      floor,      scaleFactor};
        }
        int frames, width, len, step;
        Matrix<T> src, mean, var;
        Guarded<Vorn32f> val;
    };

    static std::vector<float> modelOf(const Case& c, const Vorn8u* sign, float floor, int scaleFactor) {
        const auto score = [&](int f, int g) {
            auto* volatile model = &Member::model;
            return model(c.src[f], c.mean[g], c.var[g], c.len, c.val[static_cast<std::size_t>(g)], scaleFactor);
        };
        return model::selectedMixture(score, sign, c.width, c.frames, floor);
    }

    static void expectModel(const Case& c, const Vorn8u* sign, float floor, int scaleFactor,
                            unsigned mode = RoundingMode::nearest) {
        Guarded<Vorn32f> block(static_cast<std::size_t>(c.frames)), list(static_cast<std::size_t>(c.frames));
        auto* volatile model = &modelOf;
        std::vector<float> expected;
        VornStatus ofBlock, ofList;
        {
            const RoundingMode caller(mode);
            expected = model(c, sign, floor, scaleFactor);
            ofBlock = Member::block(c.arguments(sign, block, floor, scaleFactor));
            ofList = Member::list(c.arguments(sign, list, floor, scaleFactor));
        }
        ASSERT_EQ(ofBlock, vornStsNoErr);
        ASSERT_EQ(ofList, vornStsNoErr);
        const auto where = [&] {
            return std::to_string(c.frames) + " frames, " + std::to_string(c.width) + " Gaussians of " +
                   std::to_string(c.len) + ", scale factor " + std::to_string(scaleFactor);
        };
        EXPECT_TRUE(sameBits(block.values(), expected)) << where();
        EXPECT_TRUE(sameBits(list.values(), expected)) << where() << ", lists";
        EXPECT_TRUE(block.surroundingsUntouched() && list.surroundingsUntouched());
    }
};
using Members = testing::Types<Floats, FloatsOfUnitVariance, Shorts, ShortsOfUnitVariance>;
TYPED_TEST_SUITE(Selection, Members);

TYPED_TEST(Selection, EqualsTheModel) {
    Random random(1);
    for (int len = 1; len <= 40; ++len) {
        for (int eighths : {0, 1, 4, 8}) {
            const typename TestFixture::Case c(random, static_cast<int>(random.integer(1, 20)),
                                               static_cast<int>(random.integer(1, 30)), len, 20);
            const auto sign = this->table(random, c.frames, c.width, eighths);
            this->expectModel(c, sign, -123.5f, 4);
        }
    }
}

TYPED_TEST(Selection, EqualsTheModelForEveryScaleFactor) {
    if (!TypeParam::isScaled) return;  // the others have none
    Random random(2);
    for (int scaleFactor : {-200, -129, -128, -30, -1, 0, 1, 7, 31, 148, 149, 150, 200, INT_MAX, INT_MIN}) {
        for (double range : {100.0, 32767.9}) {
            const typename TestFixture::Case c(random, 9, 11, 21, range);
            const auto sign = this->table(random, c.frames, c.width, 5);
            this->expectModel(c, sign, 0.0f, scaleFactor);
        }
    }
}

// Differences of any size around the limit at which a smaller term is dropped, and the floor of a dropped pair.
TYPED_TEST(Selection, EqualsTheModelForScoresFarApart) {
    Random random(3);
    for (double range : {0.01, 1.0, 3.0, 300.0, 3000.0}) {
        for (int turn = 0; turn < 10; ++turn) {
            const typename TestFixture::Case c(random, 13, 17, 3, range);
            for (std::size_t g = 0; g < c.val.size(); ++g) {
                c.val[g] = static_cast<float>(random.integer(0, 5) == 0 ? -5e6 : random.uniform(-20, 5));
            }
            const auto sign = this->table(random, c.frames, c.width, 6);
            this->expectModel(c, sign, -1e30f, 2);
        }
    }
}

TYPED_TEST(Selection, HardValuesPassThrough) {
    Random random(4);
    const auto hard = test::hardFloats<float>();
    for (int turn = 0; turn < 60; ++turn) {
        const typename TestFixture::Case c(random, 5, 9, 7, 5);
        const auto values = random.pick(hard, c.val.size());
        std::copy(values.begin(), values.end(), c.val.begin());
        const auto sign = this->table(random, c.frames, c.width, 3 + turn % 6);
        this->expectModel(c, sign, random.pick(hard, 1)[0], 1);
    }
}

TYPED_TEST(Selection, FollowsTheCallersRoundingMode) {
    Random random(5);
    for (unsigned mode : {RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        for (int len : {1, 8, 13, 39}) {
            const typename TestFixture::Case c(random, 7, 9, len, 3);
            const auto sign = this->table(random, c.frames, c.width, 6);
            this->expectModel(c, sign, 1.0f, 3, mode);
        }
    }
}

// The same as the public functions give, one score and one log-add after the other, in rising order of the Gaussians.
TYPED_TEST(Selection, EqualsALoopOverSingleScores) {
    Random random(6);
    for (int turn = 0; turn < 30; ++turn) {
        const typename TestFixture::Case c(random, 17, 40, 13, 2);
        const auto sign = this->table(random, c.frames, c.width, 1 + turn % 8);
        std::vector<float> expected(static_cast<std::size_t>(c.frames), 77.0f);
        for (int f = 0; f < c.frames; ++f) {
            bool first = true;
            for (int g = 0; g < c.width; ++g) {
                if (!model::bitOf(sign.data() + f * ((c.width + 7) / 8), g)) continue;
                float score;
                TypeParam::single(c.src[f], c.mean[g], c.var[g], c.len, &score, c.val[static_cast<std::size_t>(g)], 5);
                if (first) {
                    expected[static_cast<std::size_t>(f)] = score;
                } else {
                    ASSERT_EQ(vornsLogAdd_32f(&score, &expected[static_cast<std::size_t>(f)], 1), vornStsNoErr);
                }
                first = false;
            }
        }
        Guarded<Vorn32f> result(static_cast<std::size_t>(c.frames));
        ASSERT_EQ(TypeParam::block(c.arguments(sign, result, 77.0f, 5)), vornStsNoErr);
        EXPECT_TRUE(sameBits(result.values(), expected));
    }
}

TYPED_TEST(Selection, NothingSelectedGivesTheFloorAndOneTheScore) {
    Random random(7);
    const typename TestFixture::Case c(random, 6, 12, 9, 4);
    const auto none = this->table(random, c.frames, c.width, 0);
    for (float floor : {-4500000.0f, 3.5f, -std::numeric_limits<float>::infinity()}) {
        Guarded<Vorn32f> result(6);
        ASSERT_EQ(TypeParam::list(c.arguments(none, result, floor, 0)), vornStsNoErr);
        EXPECT_EQ(result.values(), std::vector<float>(6, floor));
    }
    // A score below the floor of the log-add, which would be lifted to -4500000 if it were added to something.
    for (Vorn32f& val : c.val) val = -6000000.0f;
    auto one = this->table(random, c.frames, c.width, 0);
    for (int f = 0; f < c.frames; ++f) model::setBit(one.data() + 2 * f, 2 * f, true);
    Guarded<Vorn32f> result(6);
    ASSERT_EQ(TypeParam::block(c.arguments(one, result, 0.0f, 0)), vornStsNoErr);
    for (int f = 0; f < c.frames; ++f) {
        float score;
        TypeParam::single(c.src[f], c.mean[2 * f], c.var[2 * f], c.len, &score, -6000000.0f, 0);
        EXPECT_EQ(result[static_cast<std::size_t>(f)], score);
        EXPECT_LT(score, -5900000.0f);
    }
}

// Equal scores of 0: the log-add of n of them is ln n.
TEST(Selection, LogAddsWhatIsSelected) {
    const std::vector<float> zeros(20 * 2, 0.0f), val(20, 0.0f);
    std::vector<float> result(2);
    const Vorn8u sign[] = {0xFF, 0xFF, 0xF0, 0x80, 0x10, 0x10};
    ASSERT_EQ(vornsLogGaussMixture_SelectIdVar_32f_D2(zeros.data(), zeros.data(), 2, 2, val.data(), sign, 20,
                                                      result.data(), 2, -1.0f),
              vornStsNoErr);
    EXPECT_NEAR(result[0], 2.995732f, 1e-4);  // ln 20
    EXPECT_NEAR(result[1], 1.098612f, 1e-5);  // ln 3: bits 0, 11 and 19
}

// A difference exactly on a split of the log-add's polynomials belongs to the upper interval, as it does for a pair by
// itself, in however many frames it comes up; the intervals' bits differ there.
TEST(Selection, DifferencesOnASplitAreThoseOfAPairByItself) {
    for (const float split : {-2.55f, -6.8f}) {
        for (const float leader : {0.0f, 1.0f}) {
            for (int frames = 1; frames <= 150; ++frames) {
                const std::vector<float> zeros(static_cast<std::size_t>(frames), 0.0f);
                const float mean[] = {0, 0}, val[] = {leader, leader + split};
                ASSERT_EQ(val[1] - val[0], split);
                std::vector<float> result(zeros);
                const std::vector<Vorn8u> sign(static_cast<std::size_t>(frames), 0xC0);
                ASSERT_EQ(vornsLogGaussMixture_SelectIdVar_32f_D2(zeros.data(), mean, 1, 1, val, sign.data(), 2,
                                                                  result.data(), frames, 0.0f),
                          vornStsNoErr);
                const float expected = model::logAdd(val[0], val[1], false);
                ASSERT_NE(expected, model::logAdd(val[0], val[1], true));
                EXPECT_EQ(result, std::vector<float>(static_cast<std::size_t>(frames), expected)) << frames;
            }
        }
    }
}

// The number of selections is kept in 16 bits.
TEST(Selection, After65536SelectionsAFrameCountsAsUnselected) {
    for (const int width : {65535, 65536, 65537, 65538}) {
        std::vector<float> mean(static_cast<std::size_t>(width), 0.0f), val(mean);
        val.back() = 7.25f;
        const std::vector<Vorn8u> sign(static_cast<std::size_t>(width + 7) / 8, 0xFF);
        const float x = 0;
        float result = 0;
        ASSERT_EQ(vornsLogGaussMixture_SelectIdVar_32f_D2(&x, mean.data(), 1, 1, val.data(), sign.data(), width,
                                                          &result, 1, -99.0f),
                  vornStsNoErr);
        if (width == 65536) {
            EXPECT_EQ(result, -99.0f);
        } else if (width == 65537) {
            EXPECT_EQ(result, 7.25f) << "the score of the last, without a log-add";
        } else if (width == 65538) {
            float expected = 0.0f;
            const float last = 7.25f;
            vornsLogAdd_32f(&last, &expected, 1);
            EXPECT_EQ(result, expected) << "the last two";
        } else {
            EXPECT_GT(result, 11.0f) << "about the logarithm of 65534";
        }
    }
}

// ---- Checks and memory.

template <class T>
struct Valid {
    std::vector<T> values = std::vector<T>(64, T(1));
    std::vector<const T*> srcRows = {&values[0], &values[4], &values[8]}, meanRows = {&values[0], &values[9]},
                          varRows = {&values[20], &values[30]};
    std::vector<Vorn32f> vals = {0, 1}, results = std::vector<Vorn32f>(3, 55.0f);
    std::vector<Vorn8u> table = {0xC0, 0x40, 0x00};
    Arguments<T> a = {values.data(),
                      values.data(),
                      values.data(),
                      srcRows.data(),
                      meanRows.data(),
                      varRows.data(),
                      4,
                      4,
                      vals.data(),
                      table.data(),
                      2,
                      results.data(),
                      3,
                      -3.0f,
                      2};
    Valid() = default;
    Valid(const Valid&) = delete;
    Valid(Valid&&) = default;
};

TYPED_TEST(Selection, ChecksPointersSizesStrideAndRows) {
    using T = typename TypeParam::T;
    using V = Valid<T>;
    using Rule = test::Rule<V>;
    const auto untouched = [](V& v) { return v.results == std::vector<Vorn32f>(3, 55.0f); };
    std::vector<Rule> common = {
        {"src", vornStsNullPtrErr, [](V& v) { v.a.src = nullptr, v.a.srcRows = nullptr; }},
        {"mean", vornStsNullPtrErr, [](V& v) { v.a.mean = nullptr, v.a.meanRows = nullptr; }},
        {"val", vornStsNullPtrErr, [](V& v) { v.a.val = nullptr; }},
        {"sign", vornStsNullPtrErr, [](V& v) { v.a.sign = nullptr; }},
        {"result", vornStsNullPtrErr, [](V& v) { v.a.result = nullptr; }},
    };
    if (TypeParam::hasVar) {
        common.push_back({"var", vornStsNullPtrErr, [](V& v) { v.a.var = nullptr, v.a.varRows = nullptr; }});
    }
    common.push_back({"len", vornStsSizeErr, [](V& v) { v.a.len = 0; }});
    common.push_back({"width", vornStsSizeErr, [](V& v) { v.a.width = -1; }});
    common.push_back({"frames", vornStsSizeErr, [](V& v) { v.a.frames = 0; }});
    auto ofBlocks = common;
    ofBlocks.push_back({"step", vornStsStrideErr, [](V& v) { v.a.step = 3; }});
    test::expectCheckOrder<V>([] { return V(); }, [](V& v) { return TypeParam::block(v.a); }, untouched, ofBlocks);
    auto ofLists = common;
    ofLists.push_back({"last src row", vornStsNullPtrErr, [](V& v) { v.srcRows[2] = nullptr; }});
    ofLists.push_back({"mean row", vornStsNullPtrErr, [](V& v) { v.meanRows[1] = nullptr; }});
    if (TypeParam::hasVar) {
        ofLists.push_back({"var row", vornStsNullPtrErr, [](V& v) { v.varRows[0] = nullptr; }});
    }
    test::expectCheckOrder<V>([] { return V(); }, [](V& v) { return TypeParam::list(v.a); }, untouched, ofLists);
}

// Rows that no frame selects are tested too.
TYPED_TEST(Selection, RowsOfUnselectedGaussiansMustNotBeNull) {
    Valid<typename TypeParam::T> v;
    v.table = {0x80, 0x80, 0x00};
    EXPECT_EQ(TypeParam::list(v.a), vornStsNoErr);
    v.meanRows[1] = nullptr;
    EXPECT_EQ(TypeParam::list(v.a), vornStsNullPtrErr);
}

TYPED_TEST(Selection, ReportsAFailedAllocationAndWritesNothing) {
    if (!FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of the test's";
    for (bool list : {false, true}) {
        Valid<typename TypeParam::T> v;
        {
            const FailAllocation fail(1);
            EXPECT_EQ(list ? TypeParam::list(v.a) : TypeParam::block(v.a), vornStsMemAllocErr);
            EXPECT_EQ(fail.outstanding(), 0);
        }
        EXPECT_EQ(v.results, std::vector<Vorn32f>(3, 55.0f));
        const FailAllocation count(0);
        EXPECT_EQ(list ? TypeParam::list(v.a) : TypeParam::block(v.a), vornStsNoErr);
        EXPECT_EQ(count.calls(), 1);
        EXPECT_EQ(count.outstanding(), 0);
    }
}

}  // namespace
