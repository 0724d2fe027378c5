// Dynamic time warping: bit for bit against the row-by-row model and against every path; what memory it takes.
#include "model/warping.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "model/convert.h"
#include "model/log_arithmetic.h"
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

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float largest = 3.4028235e38f;

// A sequence in both layouts, neither of which can be left unnoticed: a block that ends with the last row's last
// column, and rows without order of which a few stand by themselves and the others at every alignment.
template <class T>
class Sequence {
public:
    Sequence(const std::vector<T>& values, int height, int width, int step)
        : height_(height),
          block_(static_cast<std::size_t>(height - 1) * step + width),
          copy_(static_cast<std::size_t>(height) * (width + 1)) {
        for (int i = 0; i < height; ++i) {
            const T* row = &values[static_cast<std::size_t>(i) * width];
            std::copy_n(row, width, block_.data() + static_cast<std::size_t>(i) * step);
            T* copied = copy_.data() + static_cast<std::size_t>(height - i) * (width + 1) - width;
            std::copy_n(row, width, copied);
            if (i < 3) apart_.emplace_back(std::vector<T>(row, row + width));
            pointers_.push_back(i < 3 ? apart_.back().data() : copied);
        }
        for (std::size_t i = 0; i < apart_.size(); ++i) pointers_[i] = apart_[i].data();
        list_ = std::make_unique<Guarded<const T*>>(pointers_);
    }
    const T* block() const { return block_.data(); }
    const T* const* list() const { return list_->data(); }
    int height() const { return height_; }

private:
    int height_;
    Guarded<T> block_, copy_;
    std::vector<Guarded<T>> apart_;
    std::vector<const T*> pointers_;
    std::unique_ptr<Guarded<const T*>> list_;
};

template <class T>
std::vector<T> randomRows(Random& random, int height, int width) {
    const auto n = static_cast<std::size_t>(height) * width;
    if constexpr (std::is_same_v<T, float>) {
        return random.floats(n, -10, 10);
    } else {
        return random.integers<T>(n);
    }
}
// Rows of two sequences that say the same at different speeds, so that beams and bands matter.
std::vector<float> alike(Random& random, int height, int width) {
    std::vector<float> rows;
    for (int i = 0; i < height; ++i) {
        const double at = (i + 0.5) / height * 6;
        for (int c = 0; c < width; ++c)
            rows.push_back(static_cast<float>(std::sin(at * (1 + c % 5)) * 5 + random.uniform(-1, 1)));
    }
    return rows;
}

float warped(const Sequence<float>& first, const Sequence<float>& second, int width, int delta, float beam) {
    Guarded<float> result(1);
    EXPECT_EQ(
        vornsDTW_L2_32f_D2L(first.list(), first.height(), second.list(), second.height(), width, result, delta, beam),
        vornStsNoErr);
    EXPECT_TRUE(result.surroundingsUntouched());
    return result[0];
}
float warpedBlocks(const Sequence<float>& first, const Sequence<float>& second, int width, int step, int delta,
                   float beam) {
    Guarded<float> result(1);
    EXPECT_EQ(vornsDTW_L2_32f_D2(first.block(), first.height(), second.block(), second.height(), width, step, result,
                                 delta, beam),
              vornStsNoErr);
    EXPECT_TRUE(result.surroundingsUntouched());
    return result[0];
}
// Of columns of one element.
float warpedNumbers(const std::vector<float>& first, const std::vector<float>& second, int delta, float beam) {
    const int height1 = static_cast<int>(first.size()), height2 = static_cast<int>(second.size());
    return warped(Sequence<float>(first, height1, 1, 1), Sequence<float>(second, height2, 1, 1), 1, delta, beam);
}

void expectModel(const Sequence<float>& first, const Sequence<float>& second, int width, int step, int delta,
                 float beam, unsigned mode = RoundingMode::nearest) {
    auto* volatile modelOf = &model::warping;
    float expected, list, block;
    unsigned after;
    {
        const RoundingMode caller(mode);
        expected = modelOf(first.list(), first.height(), second.list(), second.height(), width, delta, beam, nullptr);
        list = warped(first, second, width, delta, beam);
        block = warpedBlocks(first, second, width, step, delta, beam);
        after = RoundingMode::current();
    }
    EXPECT_EQ(after, mode);
    const auto where = [&] {
        return std::to_string(first.height()) + " and " + std::to_string(second.height()) + " rows of " +
               std::to_string(width) + ", delta " + std::to_string(delta) + ", beam " + std::to_string(beam);
    };
    EXPECT_TRUE(sameBits(&list, &expected, 1)) << where();
    EXPECT_TRUE(sameBits(&block, &expected, 1)) << where() << ", blocks";
}

TEST(Warping, EqualsTheModelAtEveryWidth) {
    Random random(1);
    for (int width = 1; width <= 48; ++width) {
        for (const auto& [height1, height2] : {std::pair{17, 13}, {9, 12}, {33, 33}}) {
            const int step = width + static_cast<int>(random.integer(0, 3));
            const Sequence<float> first(randomRows<float>(random, height1, width), height1, width, step);
            const Sequence<float> second(randomRows<float>(random, height2, width), height2, width, step);
            expectModel(first, second, width, step, 100, infinity);
            expectModel(first, second, width, step, 3, 20);
        }
    }
}

TEST(Warping, EqualsTheModelAtEveryHeightAndDelta) {
    Random random(2);
    for (int height1 = 1; height1 <= 40; ++height1) {
        for (int height2 : {1, 2, 3, 5, 15, 16, 17, 31, 33, 40}) {
            const int width = static_cast<int>(random.integer(1, 15));
            const Sequence<float> first(randomRows<float>(random, height1, width), height1, width, width);
            const Sequence<float> second(randomRows<float>(random, height2, width), height2, width, width);
            for (int delta : {0, 1, 2, 5, 14, 15, 16, 39, 40, 1000, INT_MAX})
                expectModel(first, second, width, width, delta, delta % 2 == 0 ? infinity : 30);
        }
    }
}

TEST(Warping, EqualsTheModelUnderEveryBeam) {
    Random random(3);
    for (int turn = 0; turn < 12; ++turn) {
        const int width = turn % 2 == 0 ? 13 : 20, height1 = 50 + 17 * turn, height2 = 150 - 4 * turn;
        const Sequence<float> first(alike(random, height1, width), height1, width, width + 1);
        const Sequence<float> second(alike(random, height2, width), height2, width, width + 1);
        for (float beam : {0.0f, 1e-7f, 0.5f, 2.0f, 5.0f, 10.0f, 30.0f, 100.0f, 1e38f, largest, infinity, -0.0f, -1.0f,
                           -infinity, notANumber}) {
            for (int delta : {1, 4, 20, 200}) expectModel(first, second, width, width + 1, delta, beam);
        }
    }
}

// Rows so wide that few panels, one, or not a whole one fits into what is kept; sequences longer than what is kept.
TEST(Warping, EqualsTheModelForWideRowsAndLongSequences) {
    Random random(4);
    for (int width : {64, 100, 191, 192, 193, 383, 384, 385, 767, 768, 769, 1000}) {
        const Sequence<float> first(alike(random, 45, width), 45, width, width);
        const Sequence<float> second(alike(random, 51, width), 51, width, width);
        expectModel(first, second, width, width, 50, infinity);
        expectModel(first, second, width, width, 5, 3);
    }
    for (int width : {1, 5, 13, 39}) {
        const Sequence<float> first(alike(random, 1300, width), 1300, width, width);
        const Sequence<float> second(alike(random, 1100, width), 1100, width, width);
        expectModel(first, second, width, width, 40, infinity);
        expectModel(first, second, width, width, 500, 4);
        expectModel(second, first, width, width, 1100, 1);
    }
    const Sequence<float> first(alike(random, 420, 39), 420, 39, 39), second(alike(random, 500, 39), 500, 39, 39);
    expectModel(first, second, 39, 39, 500, infinity);
}

TEST(Warping, EqualsTheModelForNumbersOfEverySize) {
    Random random(5);
    for (double size : {1e-45, 1e-40, 1e-30, 1e-20, 1.0, 1e15, 1e18, 5e18, 1e19, 3e19, 1e30, 3e38}) {
        for (int width : {1, 4, 13, 14, 30}) {
            const auto rows = [&](int height) {
                std::vector<float> values(static_cast<std::size_t>(height) * width);
                for (float& x : values) x = static_cast<float>(random.uniform(-size, size));
                return Sequence<float>(values, height, width, width);
            };
            const auto first = rows(20), second = rows(25);
            for (float beam : {0.0f, 1.0f, infinity}) expectModel(first, second, width, width, 25, beam);
        }
    }
}

TEST(Warping, FollowsTheCallersRoundingModeAndKeepsIt) {
    Random random(6);
    for (unsigned mode : {RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        for (int width : {1, 3, 6, 13, 14, 39}) {
            const Sequence<float> first(alike(random, 30, width), 30, width, width);
            const Sequence<float> second(alike(random, 33, width), 33, width, width);
            expectModel(first, second, width, width, 8, 6, mode);
            expectModel(first, first, width, width, 8, 6, mode);
        }
    }
}

// Costs are added along a path, and rounding keeps their order: the least of all sums is the result, bit for bit.
TEST(Warping, FindsTheCheapestOfAllPaths) {
    Random random(7);
    int found = 0;
    for (int turn = 0; turn < 800; ++turn) {
        const int n = static_cast<int>(random.integer(2, 8)), m = static_cast<int>(random.integer(1, n));
        const int width = static_cast<int>(random.integer(1, 17)), delta = static_cast<int>(random.integer(0, m - 1));
        const Sequence<float> longer(randomRows<float>(random, n, width), n, width, width);
        const Sequence<float> shorter(randomRows<float>(random, m, width), m, width, width);
        const float result = warped(longer, shorter, width, delta, infinity);
        const float expected = model::cheapestPath(longer.list(), n, shorter.list(), m, width, delta);
        EXPECT_TRUE(sameBits(&result, &expected, 1)) << n << " and " << m << " rows of " << width << ", " << delta;
        if (expected < largest) ++found;
    }
    EXPECT_GT(found, 400) << "and not only sequences that no path joins";
}

// The literature's distance, of numbers whose squares and roots are exact.
TEST(Warping, MeasuresEuclideanDistances) {
    for (int width = 2; width <= 40; ++width) {
        std::vector<float> apart(2 * static_cast<std::size_t>(width), 7.0f), together(apart);
        for (int i = 0; i < 2; ++i) apart[i * width] += 3, apart[i * width + width - 1] -= 4;
        const Sequence<float> first(apart, 2, width, width), second(together, 2, width, width);
        EXPECT_EQ(warped(first, second, width, 1, infinity), 10.0f) << width;
    }
    EXPECT_EQ(warpedNumbers({1, 2, 4}, {1, 2, 4}, 2, infinity), 0.0f);
    EXPECT_EQ(warpedNumbers({1, 2, 4}, {2, 3, 5}, 0, infinity), 2.0f);
    // Each row of the longer sequence counts once; a row of the shorter one may be stayed on or left out.
    EXPECT_EQ(warpedNumbers({1, 1, 1, 9, 9}, {1, 5, 9}, 3, infinity), 0.0f);
}

TEST(Warping, SwappedSequencesOfUnequalHeightsGiveTheSame) {
    Random random(8);
    for (int turn = 0; turn < 40; ++turn) {
        const int height1 = static_cast<int>(random.integer(1, 30)), height2 = height1 + 1 + turn % 9;
        const Sequence<float> first(alike(random, height1, 5), height1, 5, 5);
        const Sequence<float> second(alike(random, height2, 5), height2, 5, 5);
        const float one = warped(first, second, 5, 4, 6), other = warped(second, first, 5, 4, 6);
        EXPECT_TRUE(sameBits(&one, &other, 1));
    }
    // At equal heights the first is the one whose rows are all met.
    EXPECT_EQ(warpedNumbers({0, 1}, {0, 5}, 1, infinity), 1.0f);
    EXPECT_EQ(warpedNumbers({0, 5}, {0, 1}, 1, infinity), 4.0f);
}

TEST(Warping, OneRowIsNoPath) {
    EXPECT_EQ(warpedNumbers({1}, {1}, 0, 0), largest);
    EXPECT_EQ(warpedNumbers({1}, {1}, 5, infinity), largest);
    // A single row meets two others, and no more: the band ends.
    EXPECT_EQ(warpedNumbers({1}, {1, 2}, 0, infinity), 1.0f);
    EXPECT_EQ(warpedNumbers({3, 2}, {1}, 7, infinity), 3.0f);
    EXPECT_EQ(warpedNumbers({1}, {1, 1, 1, 1, 1}, 0, infinity), largest);
}

TEST(Warping, DeltasFromTheShorterHeightOnAreOneBelowIt) {
    Random random(9);
    for (int height : {2, 7, 20}) {
        const Sequence<float> longer(alike(random, height + 3, 4), height + 3, 4, 4);
        const Sequence<float> shorter(alike(random, height, 4), height, 4, 4);
        const float expected = warped(longer, shorter, 4, height - 1, 9);
        for (int delta : {height, height + 1, 10 * height, INT_MAX}) {
            const float result = warped(longer, shorter, 4, delta, 9);
            EXPECT_TRUE(sameBits(&result, &expected, 1)) << delta;
        }
    }
}

TEST(Warping, NegativeDeltasLeaveNoPath) {
    Random random(10);
    for (int height : {1, 2, 16, 300}) {
        const Sequence<float> longer(alike(random, height + 2, 13), height + 2, 13, 13);
        const Sequence<float> shorter(alike(random, height, 13), height, 13, 13);
        for (int delta : {-1, -2, -17, -1000, INT_MIN}) {
            EXPECT_EQ(warped(longer, shorter, 13, delta, 1), largest);
            EXPECT_EQ(warpedBlocks(shorter, longer, 13, 13, delta, infinity), largest);
        }
    }
}

TEST(Warping, EqualSequencesCostNothing) {
    Random random(11);
    for (int height : {2, 3, 15, 16, 17, 60, 200}) {
        for (int width : {1, 13, 39}) {
            const Sequence<float> rows(alike(random, height, width), height, width, width);
            for (int delta : {0, 1, 10}) {
                const float result = warped(rows, rows, width, delta, infinity), zero = 0;
                EXPECT_TRUE(sameBits(&result, &zero, 1));
            }
        }
    }
}

TEST(Warping, SequencesTooDifferentForTheBandHaveNoPath) {
    Random random(12);
    const Sequence<float> longer(alike(random, 40, 3), 40, 3, 3), shorter(alike(random, 8, 3), 8, 3, 3);
    EXPECT_EQ(warped(longer, shorter, 3, 7, infinity), largest);
    const Sequence<float> half(alike(random, 19, 3), 19, 3, 3);
    EXPECT_EQ(warped(longer, half, 3, 0, infinity), largest);
    EXPECT_LT(warped(longer, half, 3, 1, infinity), 1000.0f);
}

// The cheap second step leads away from the column that the third row wants.
TEST(Warping, BeamsCutPathsThatWouldHaveWon) {
    const std::vector<float> longer = {0, 0, 9, 9}, shorter = {0, 1, 20, 9};
    EXPECT_EQ(warpedNumbers(longer, shorter, 3, infinity), 1.0f);
    EXPECT_EQ(warpedNumbers(longer, shorter, 3, 1.0f), 1.0f);
    for (float beam : {0.5f, 0.0f, -1.0f, -infinity, notANumber})
        EXPECT_EQ(warpedNumbers(longer, shorter, 3, beam), 8.0f) << beam;
    // A beam of nothing still keeps what is within 1.1920929e-07 of the best: the second column lies 2^-23 behind the
    // first one, and is lost one bit farther.
    const float bit = 0x1p-23f;
    EXPECT_EQ(warpedNumbers({0, 0, 9, 9}, {0, bit, 20, 9}, 3, 0), bit);
    EXPECT_EQ(warpedNumbers({0, 0, 9, 9}, {0, 2 * bit, 20, 9}, 3, 0), 9.0f);
}

// An accumulated cost at the end of the singles ends the search; beyond, it is returned as it stands.
TEST(Warping, InfiniteCostsEndTheSearch) {
    EXPECT_EQ(warpedNumbers({0, 0, 0}, {1e30f, 1e30f, 1e30f}, 2, infinity), infinity);
    EXPECT_EQ(warpedNumbers({0, 0, 0}, {infinity, infinity, infinity}, 2, 1), infinity);
    EXPECT_EQ(warpedNumbers({0, 0, 0}, {0, infinity, infinity}, 2, 1), 0.0f);
    // Behind a row of infinities even the border costs less; the third row is not looked at.
    EXPECT_EQ(warpedNumbers({1e30f, 0, 1e30f}, {0, 0, 0}, 2, infinity), largest);
}

// No result is promised; the call ends, and memory is safe.
TEST(Warping, NotANumbersAreSurvived) {
    Random random(13);
    const auto hard = test::hardFloats<float>();
    for (int turn = 0; turn < 200; ++turn) {
        const int height1 = static_cast<int>(random.integer(1, 60)), height2 = static_cast<int>(random.integer(1, 60));
        const int width = static_cast<int>(random.integer(1, 20));
        const auto rows = [&](int height) {
            const auto n = static_cast<std::size_t>(height) * width;
            return Sequence<float>(turn % 3 == 0 ? std::vector<float>(n, notANumber) : random.pick(hard, n), height,
                                   width, width);
        };
        const auto first = rows(height1), second = rows(height2);
        for (float beam : {0.0f, 10.0f, infinity, notANumber}) {
            warped(first, second, width, static_cast<int>(random.integer(-1, 20)), beam);
            warpedBlocks(first, second, width, width, 70, beam);
        }
    }
}

// ---- Integers.

struct Bytes {
    using Element = Vorn8u;
    static constexpr auto list = vornsDTW_L2_8u32s_D2LSfs;
    static constexpr auto block = vornsDTW_L2_8u32s_D2Sfs;
};
struct Shorts {
    using Element = Vorn16s;
    static constexpr auto list = vornsDTW_L2Low_16s32s_D2LSfs;
    static constexpr auto block = vornsDTW_L2Low_16s32s_D2Sfs;
};
template <class Member>
class WarpedIntegers : public testing::Test {};
using IntegerMembers = testing::Types<Bytes, Shorts>;
TYPED_TEST_SUITE(WarpedIntegers, IntegerMembers);

// The same rows as singles, for the model.
template <class T>
struct AsFloats {
    AsFloats(const std::vector<T>& values, int height, int width) : floats(values.begin(), values.end()) {
        for (int i = 0; i < height; ++i) rows.push_back(&floats[static_cast<std::size_t>(i) * width]);
    }
    std::vector<float> floats;
    std::vector<const float*> rows;
};

TYPED_TEST(WarpedIntegers, EqualTheModelRoundedAndScaled) {
    using T = typename TypeParam::Element;
    Random random(14);
    for (int turn = 0; turn < 60; ++turn) {
        const int height1 = static_cast<int>(random.integer(1, 40)), height2 = static_cast<int>(random.integer(1, 40));
        const int width = static_cast<int>(random.integer(1, 45)), step = width + turn % 3;
        const auto values1 = randomRows<T>(random, height1, width), values2 = randomRows<T>(random, height2, width);
        const Sequence<T> first(values1, height1, width, step), second(values2, height2, width, step);
        const AsFloats<T> floats1(values1, height1, width), floats2(values2, height2, width);
        const unsigned modes[] = {RoundingMode::nearest, RoundingMode::down, RoundingMode::up,
                                  RoundingMode::towardZero};
        for (Vorn32s beam : {0, 100, INT_MAX, -1, INT_MIN}) {
            for (int scaleFactor : {0, 3, 12, -2, -30, 31, 200, INT_MAX, INT_MIN}) {
                const int delta = static_cast<int>(random.integer(0, 45));
                const unsigned mode = modes[random.integer(0, 3)];
                auto* volatile modelOf = &model::warping;
                Guarded<Vorn32s> list(1), block(1);
                float cost;
                {
                    const RoundingMode caller(mode);
                    volatile Vorn32s beamNow = beam;
                    const auto floatBeam = static_cast<float>(beamNow);
                    cost = modelOf(floats1.rows.data(), height1, floats2.rows.data(), height2, width, delta, floatBeam,
                                   nullptr);
                    ASSERT_EQ(TypeParam::list(first.list(), height1, second.list(), height2, width, list, delta, beam,
                                              scaleFactor),
                              vornStsNoErr);
                    ASSERT_EQ(TypeParam::block(first.block(), height1, second.block(), height2, width, step, block,
                                               delta, beam, scaleFactor),
                              vornStsNoErr);
                }
                const Vorn32s expected = model::to32s(cost, vornRndNear, model::scaleSingle(scaleFactor));
                EXPECT_EQ(list[0], expected)
                    << height1 << ", " << height2 << ", width " << width << ", " << scaleFactor;
                EXPECT_EQ(block[0], expected) << height1 << ", " << height2 << ", width " << width;
                EXPECT_TRUE(list.surroundingsUntouched() && block.surroundingsUntouched());
            }
        }
    }
}

TYPED_TEST(WarpedIntegers, AreTheRoundedAndScaledResult) {
    using T = typename TypeParam::Element;
    // Each row is at the distance sqrt(3^2 + 4^2) = 5: ten altogether, and 2.5 or 1.25 with scale factors 2 and 3.
    const Sequence<T> first(std::vector<T>{10, 20, 10, 20}, 2, 2, 2), second(std::vector<T>{13, 24, 13, 24}, 2, 2, 2);
    const auto call = [&](int scaleFactor) {
        Vorn32s result = -1;
        EXPECT_EQ(TypeParam::list(first.list(), 2, second.list(), 2, 2, &result, 1, 1000, scaleFactor), vornStsNoErr);
        return result;
    };
    EXPECT_EQ(call(0), 10);
    EXPECT_EQ(call(1), 5);
    EXPECT_EQ(call(2), 2);  // ties to even
    EXPECT_EQ(call(3), 1);
    EXPECT_EQ(call(-4), 160);
    EXPECT_EQ(call(-28), 2147483647);
    // No path: the largest single.
    Vorn32s result = -1;
    EXPECT_EQ(TypeParam::block(first.block(), 1, second.block(), 1, 2, 2, &result, 1, 1000, 0), vornStsNoErr);
    EXPECT_EQ(result, 2147483647);
    EXPECT_EQ(TypeParam::block(first.block(), 1, second.block(), 1, 2, 2, &result, 1, 1000, 127), vornStsNoErr);
    EXPECT_EQ(result, 2);
}

// ---- Checks.

struct Call {
    std::vector<float> values = std::vector<float>(40, 1.0f);
    std::vector<const float*> rows = {values.data(), values.data() + 4, values.data() + 8};
    const float *src1 = values.data(), *src2 = values.data();
    const float *const *list1 = rows.data(), *const *list2 = rows.data();
    int height1 = 3, height2 = 2, width = 4, step = 4;
    float resultValue = -7;
    float* result = &resultValue;
};
using Rule = test::Rule<Call>;
std::vector<Rule> rules(bool ofBlocks) {
    std::vector<Rule> all = {
        {"src1", vornStsNullPtrErr, [](Call& c) { c.src1 = nullptr, c.list1 = nullptr; }},
        {"src2", vornStsNullPtrErr, [](Call& c) { c.src2 = nullptr, c.list2 = nullptr; }},
        {"result", vornStsNullPtrErr, [](Call& c) { c.result = nullptr; }},
        {"height1", vornStsSizeErr, [](Call& c) { c.height1 = 0; }},
        {"height2", vornStsSizeErr, [](Call& c) { c.height2 = -1; }},
        {"width", vornStsSizeErr, [](Call& c) { c.width = 0; }},
    };
    if (ofBlocks) all.push_back({"step", vornStsSizeErr, [](Call& c) { c.step = 3; }});
    return all;
}
const auto untouched = [](Call& c) { return c.resultValue == -7; };

TEST(Warping, ChecksPointersThenSizes) {
    const auto good = [] { return Call(); };
    test::expectCheckOrder<Call>(
        good,
        [](Call& c) { return vornsDTW_L2_32f_D2L(c.list1, c.height1, c.list2, c.height2, c.width, c.result, 1, 1.0f); },
        untouched, rules(false));
    // A stride below the width is an error of size.
    test::expectCheckOrder<Call>(
        good,
        [](Call& c) {
            return vornsDTW_L2_32f_D2(c.src1, c.height1, c.src2, c.height2, c.width, c.step, c.result, 1, 1.0f);
        },
        untouched, rules(true));
}

TYPED_TEST(WarpedIntegers, CheckPointersThenSizes) {
    using T = typename TypeParam::Element;
    const auto good = [] { return Call(); };
    test::expectCheckOrder<Call>(
        good,
        [](Call& c) {
            return TypeParam::list(reinterpret_cast<const T* const*>(c.list1), c.height1,
                                   reinterpret_cast<const T* const*>(c.list2), c.height2, c.width,
                                   reinterpret_cast<Vorn32s*>(c.result), 1, 1, 0);
        },
        untouched, rules(false));
    test::expectCheckOrder<Call>(
        good,
        [](Call& c) {
            return TypeParam::block(reinterpret_cast<const T*>(c.src1), c.height1, reinterpret_cast<const T*>(c.src2),
                                    c.height2, c.width, c.step, reinterpret_cast<Vorn32s*>(c.result), 1, 1, 0);
        },
        untouched, rules(true));
}

// ---- Memory.

// What a call does when the n-th allocation fails: its status, and whether it wrote the result.
struct Outcome {
    VornStatus status;
    bool written;
    int calls;
    bool operator==(const Outcome&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Outcome& o) {
    return out << o.status << (o.written ? ", written, " : ", not written, ") << o.calls << " calls";
}
template <class Result, class Callable>
Outcome outcome(int failing, const Callable& call) {
    Result result = 77;
    const FailAllocation fail(failing);
    const VornStatus status = call(&result);
    EXPECT_EQ(fail.outstanding(), 0);
    return {status, result != 77, fail.calls()};
}

TEST(WarpingMemory, ListsTakeOneBlockFromFiveHundredAndThirteenWordsOn) {
    if (!FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of the test's";
    const std::vector<float> row(3, 1.0f);
    const std::vector<const float*> rows(1000, row.data());
    const auto call = [&](int height1, int height2) {
        return [&rows, height1, height2](float* result) {
            return vornsDTW_L2_32f_D2L(rows.data(), height1, rows.data(), height2, 3, result, 5, 1.0f);
        };
    };
    // 2 x 132 + 2 x 124 words, then four or eight more: heights count in steps of four.
    for (const auto& [height1, height2] : {std::pair{124, 124}, {124, 120}, {4, 244}, {1, 248}, {1, 1}}) {
        EXPECT_EQ(outcome<float>(1, call(height1, height2)), (Outcome{vornStsNoErr, true, 0})) << height1;
    }
    for (const auto& [height1, height2] : {std::pair{125, 124}, {125, 125}, {4, 245}, {1, 249}, {1000, 1000}}) {
        EXPECT_EQ(outcome<float>(0, call(height1, height2)), (Outcome{vornStsNoErr, true, 1})) << height1;
        EXPECT_EQ(outcome<float>(1, call(height1, height2)), (Outcome{vornStsMemAllocErr, false, 1})) << height1;
    }
}

TEST(WarpingMemory, BlocksKeepUpToTwoHundredAndFiftySixRowPointersOnTheStack) {
    if (!FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of the test's";
    const std::vector<float> values(2000, 1.0f);
    const auto call = [&](int height1, int height2) {
        return [&values, height1, height2](float* result) {
            return vornsDTW_L2_32f_D2(values.data(), height1, values.data(), height2, 2, 2, result, 5, 1.0f);
        };
    };
    EXPECT_EQ(outcome<float>(1, call(124, 120)), (Outcome{vornStsNoErr, true, 0}));
    for (const auto& [height1, height2] : {std::pair{128, 128}, {6, 250}, {255, 1}}) {
        EXPECT_EQ(outcome<float>(0, call(height1, height2)), (Outcome{vornStsNoErr, true, 1}));
        // The inner failure does not come out.
        EXPECT_EQ(outcome<float>(1, call(height1, height2)), (Outcome{vornStsNoErr, false, 1}));
    }
    for (const auto& [height1, height2] : {std::pair{129, 128}, {7, 250}, {1, 256}}) {
        EXPECT_EQ(outcome<float>(0, call(height1, height2)), (Outcome{vornStsNoErr, true, 2}));
        EXPECT_EQ(outcome<float>(1, call(height1, height2)), (Outcome{vornStsMemAllocErr, false, 1}));
        EXPECT_EQ(outcome<float>(2, call(height1, height2)), (Outcome{vornStsNoErr, false, 2}));
    }
}

TYPED_TEST(WarpedIntegers, ReportEveryFailedAllocationAndLoseNothing) {
    if (!FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of the test's";
    using T = typename TypeParam::Element;
    const std::vector<T> values(1000, 1);
    std::vector<const T*> rows;
    for (int i = 0; i < 300; ++i) rows.push_back(values.data() + i);
    for (const auto& [height, allocations] : {std::pair{10, 2}, {124, 2}, {125, 3}, {300, 3}}) {
        const auto ofLists = [&, height = height](Vorn32s* result) {
            return TypeParam::list(rows.data(), height, rows.data(), height, 3, result, 5, 1, 0);
        };
        const auto ofBlocks = [&, height = height](Vorn32s* result) {
            return TypeParam::block(values.data(), height, values.data(), height, 3, 3, result, 5, 1, 0);
        };
        EXPECT_EQ(outcome<Vorn32s>(0, ofLists), (Outcome{vornStsNoErr, true, allocations}));
        EXPECT_EQ(outcome<Vorn32s>(0, ofBlocks), (Outcome{vornStsNoErr, true, allocations}));
        for (int n = 1; n <= allocations; ++n) {
            EXPECT_EQ(outcome<Vorn32s>(n, ofLists), (Outcome{vornStsMemAllocErr, false, n}));
            EXPECT_EQ(outcome<Vorn32s>(n, ofBlocks), (Outcome{vornStsMemAllocErr, false, n}));
        }
    }
}

// More memory than an int can say: nothing is asked for, nothing is read.
TYPED_TEST(WarpedIntegers, ReportMoreMemoryThanThereIs) {
    using T = typename TypeParam::Element;
    T one = 1;
    const T* row = &one;
    Vorn32s result = 77;
    EXPECT_EQ(TypeParam::list(&row, INT_MAX, &row, 1, INT_MAX, &result, 5, 1, 0), vornStsMemAllocErr);
    EXPECT_EQ(TypeParam::block(&one, 1, &one, INT_MAX, INT_MAX, INT_MAX, &result, 5, 1, 0), vornStsMemAllocErr);
    EXPECT_EQ(TypeParam::block(&one, 65536, &one, 1, 8192, 8192, &result, 5, 1, 0), vornStsMemAllocErr);
    EXPECT_EQ(result, 77);
}

}  // namespace
