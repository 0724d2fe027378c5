// The variable form beside its model, its table, its edges and its memory.
#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <vector>

#include "features/resampling/contexts.h"
#include "model/resampling.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"

namespace {

using namespace resampling;
using test::Guarded;
using test::Random;
using test::sameBits;

constexpr float infinity = std::numeric_limits<float>::infinity(), notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr double infinity64 = std::numeric_limits<double>::infinity(),
                 notANumber64 = std::numeric_limits<double>::quiet_NaN();

template <class Sample>
std::vector<Sample> noise(Random& random, std::size_t len, double amplitude = 30000) {
    std::vector<Sample> x(len);
    for (Sample& sample : x) sample = static_cast<Sample>(random.uniform(-amplitude, amplitude));
    return x;
}

// The samples in front of time 0 and behind time len that a call may read, as promised.
struct Reach {
    int front, behind;
};
Reach reachOf(const Design& design, double factor) {
    const auto L = static_cast<double>(model::resampling::tableLen(design.nStep, design.window));
    const int w = static_cast<int>(std::ceil(L / (design.nStep * std::min(factor, 1.0))));
    return {w - 1, w};
}

template <class Sample>
void compare(const Design& design, double factor, float norm, double time, int len,
             const std::vector<Sample>& samples) {
    const Variable<Sample> state(design);
    const bool sixteenBits = std::is_same_v<Sample, Vorn16s> && design.hint != 2;
    const auto table =
        model::resampling::variable(design.nStep, design.window, design.rollf, design.alpha, sixteenBits);
    const Reach reach = reachOf(design, factor);
    const auto base = static_cast<int>(time);
    // Exactly the samples from base - front to base + len - 1 + behind.
    const Guarded<Sample> src(std::vector<Sample>(samples.begin(), samples.begin() + reach.front + len + reach.behind));
    const Sample* origin = src.data() + reach.front - base;

    std::vector<Sample> expected;
    double expectedTime = time;
    model::resampling::resample(table, origin, len, expected, factor, norm, expectedTime);

    Guarded<Sample> dst(expected.size());
    int made = -1;
    ASSERT_EQ(resample(state.get(), origin, len, dst.data(), factor, norm, &time, &made), vornStsNoErr);
    ASSERT_EQ(made, static_cast<int>(expected.size()));
    EXPECT_TRUE(sameBits(dst.data(), expected.data(), expected.size()))
        << "factor " << factor << ", len " << len << ", nStep " << design.nStep << ", window " << design.window;
    EXPECT_TRUE(test::same(time, expectedTime));
    EXPECT_TRUE(dst.surroundingsUntouched());
}

const Design designs[] = {{1, 1, 2.0f, 1.0f, 1.0f},   {2, 2, 1.0f, 1.0f, 1.0f},    {7, 1, 11.3f, 0.8f, 3.0f},
                          {32, 2, 12.0f, 0.9f, 6.0f}, {64, 1, 40.0f, 0.97f, 9.0f}, {1000, 2, 3.0f, 0.5f, 2.0f},
                          {3, 1, 70.0f, 1.0f, 20.0f}, {100, 1, 0.05f, 1.0f, 1.0f}, {5, 2, 6.8f, 0.001f, 1.5f},
                          {16, 0, 8.5f, 0.7f, 5.0f}};
const double factors[] = {1.0,
                          1.5,
                          2.0,
                          0.5,
                          0.75,
                          1.0 / 3,
                          16000.0 / 44100,
                          44100.0 / 16000,
                          0.9999,
                          std::numbers::sqrt2,
                          1 / std::numbers::pi,
                          1e-1,
                          7.3,
                          1 - 1e-16};

template <class Sample>
class VariableForm : public testing::Test {};
using Samples = testing::Types<Vorn32f, Vorn16s>;
TYPED_TEST_SUITE(VariableForm, Samples);

TYPED_TEST(VariableForm, EqualsTheModelBitForBit) {
    Random random(1);
    const auto samples = noise<TypeParam>(random, 2000);
    for (const Design& design : designs) {
        for (double factor : factors) {
            for (int len : {1, 2, 3, 5, 17, 40}) {
                compare(design, factor, 1.0f, 0.0, len, samples);
                compare(design, factor, -0.7f, random.uniform(0, 1), len, samples);
                compare(design, factor, 1.3f, random.uniform(0, 40), len, samples);
            }
        }
    }
}
}  // namespace
