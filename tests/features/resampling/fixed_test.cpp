// The fixed form beside its model, its rows, its sizes and its memory.
#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
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

template <class Sample>
std::vector<Sample> noise(Random& random, std::size_t len, double amplitude = 30000) {
    std::vector<Sample> x(len);
    for (Sample& sample : x) sample = static_cast<Sample>(random.uniform(-amplitude, amplitude));
    return x;
}

// The kind of rows and products that a context has.
template <class Sample>
bool q14(const Ratio& ratio) {
    return std::is_same_v<Sample, Vorn16s> && ratio.hint != 2;
}
inline void modelRun(const model::resampling::Phases& phases, const Ratio& ratio, const Vorn32f* src, int len,
                     std::vector<Vorn32f>& dst, float norm, double& time) {
    model::resampling::resampleFixed(phases, src, len, dst, 1.0f, norm, time,
                                     ratio.hint == 2 ? model::resampling::dotDouble : model::resampling::dotSingle);
}
inline void modelRun(const model::resampling::Phases& phases, const Ratio& ratio, const Vorn16s* src, int len,
                     std::vector<Vorn16s>& dst, float norm, double& time) {
    model::resampling::resampleFixed(phases, src, len, dst, ratio.hint == 2 ? 1.0f : 1.0f / 16384, norm, time,
                                     ratio.hint == 2 ? model::resampling::dotRounded : model::resampling::dotExact);
}

template <class Sample>
model::resampling::Phases filled(const Ratio& ratio) {
    auto phases = model::resampling::phases(ratio.in, ratio.out, ratio.len);
    model::resampling::fill(phases, ratio.rollf, ratio.alpha, q14<Sample>(ratio));
    return phases;
}

template <class Sample>
void compare(const Owned<typename StatesOf<Sample>::Fixed>& state, const model::resampling::Phases& phases,
             const Ratio& ratio, float norm, double time, int len, const std::vector<Sample>& samples) {
    const int base = static_cast<int>(time), halfLen = phases.halfLen;
    const Guarded<Sample> src(std::vector<Sample>(samples.begin(), samples.begin() + len + 2 * halfLen));
    const Sample* origin = src.data() + halfLen - base;
    std::vector<Sample> expected;
    double expectedTime = time;
    modelRun(phases, ratio, origin, len, expected, norm, expectedTime);

    Guarded<Sample> dst(expected.size());
    int made = -1;
    ASSERT_EQ(resample(state.get(), origin, len, dst.data(), norm, &time, &made), vornStsNoErr);
    ASSERT_EQ(made, static_cast<int>(expected.size()));
    EXPECT_TRUE(sameBits(dst.data(), expected.data(), expected.size()))
        << ratio.in << " to " << ratio.out << ", filter " << ratio.len << ", hint " << ratio.hint << ", len " << len;
    EXPECT_TRUE(test::same(time, expectedTime)) << time << " for " << expectedTime;
    EXPECT_TRUE(dst.surroundingsUntouched());
}

const Ratio ratios[] = {{48000, 16000, 64, 1, 0.9f, 9.0f}, {44100, 16000, 96, 2, 0.95f, 10.0f},
                        {8000, 16000, 31, 1, 0.8f, 5.0f},  {16000, 8000, 50, 2, 0.9f, 8.0f},
                        {1, 1, 1, 1, 1.0f, 1.0f},          {7, 5, 4, 2, 0.7f, 2.0f},
                        {5, 7, 9, 1, 0.99f, 3.0f},         {16000, 44100, 24, 2, 0.9f, 6.0f},
                        {3, 100, 12, 1, 0.5f, 4.0f},       {100, 3, 200, 2, 1.0f, 7.0f},
                        {1000000, 1, 8, 1, 0.9f, 2.0f},    {11025, 8000, 20, 1, 0.9f, 7.0f}};

template <class Sample>
class FixedForm : public testing::Test {};
using Samples = testing::Types<Vorn32f, Vorn16s>;
TYPED_TEST_SUITE(FixedForm, Samples);

TYPED_TEST(FixedForm, EqualsTheModelBitForBit) {
    Random random(1);
    const auto samples = noise<TypeParam>(random, 3000);
    for (Ratio ratio : ratios) {
        for (int hint : {1, 2}) {
            ratio.hint = hint;
            const Fixed<TypeParam> state(ratio);
            const auto phases = filled<TypeParam>(ratio);
            for (int len : {1, 2, 3, 10, 33}) {
                compare<TypeParam>(state, phases, ratio, 1.0f, 0.0, len, samples);
                compare<TypeParam>(state, phases, ratio, -1.7f, random.uniform(0, 1), len, samples);
                compare<TypeParam>(state, phases, ratio, 0.3f, random.uniform(0, 30), len, samples);
            }
        }
    }
}

TYPED_TEST(FixedForm, EveryLengthOfFilter) {
    Random random(2);
    const auto samples = noise<TypeParam>(random, 3000);
    for (int len = 1; len <= 70; ++len) {
        for (int hint : {1, 2}) {
            const Ratio ratio = {3, 2, len, hint, 0.9f, 5.0f};
            const Fixed<TypeParam> state(ratio);
            compare<TypeParam>(state, filled<TypeParam>(ratio), ratio, 1.0f, 0.4, 12, samples);
        }
    }
}
}  // namespace
