// The fixed form beside its model, its rows, its sizes and its memory.
#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <numeric>
#include <tuple>
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

TYPED_TEST(FixedForm, HardValues) {
    Random random(3);
    std::vector<TypeParam> hard;
    if constexpr (std::is_same_v<TypeParam, float>) {
        hard = test::hardFloats<float>();
    } else {
        hard = test::hardIntegers<Vorn16s>();
    }
    for (Ratio ratio : ratios) {
        for (int hint : {1, 2}) {
            ratio.hint = hint;
            const Fixed<TypeParam> state(ratio);
            const auto phases = filled<TypeParam>(ratio);
            for (float norm : {1.0f, 1e30f, -3e-20f}) {
                compare<TypeParam>(state, phases, ratio, norm, 0.7, 9, random.pick(hard, 3000));
            }
        }
    }
}

TYPED_TEST(FixedForm, DirectedRoundingModes) {
    Random random(4);
    const auto samples = noise<TypeParam>(random, 300);
    for (int hint : {1, 2}) {
        const Ratio ratio = {7, 3, 33, hint, 0.9f, 6.0f};
        const auto phases = filled<TypeParam>(ratio);
        for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
            test::RoundingMode scope(mode);
            const Fixed<TypeParam> state(ratio);  // rows as in round-to-nearest mode
            compare<TypeParam>(state, phases, ratio, 1.1f, 1.3, 50, samples);
            EXPECT_EQ(test::RoundingMode::current(), mode);
        }
    }
}

// Rows of the caller's own, at every address; without room for the last tap of phase 0 that counts as 0.
TYPED_TEST(FixedForm, CallersBlocks) {
    Random random(5);
    const auto samples = noise<TypeParam>(random, 400, 300);
    for (const auto& [in, out] : {std::pair(3, 2), std::pair(2, 1), std::pair(1, 3), std::pair(441, 160)}) {
        for (int len : {1, 2, 3, 4, 8, 21, 24, 64}) {
            int size, rowLen, rows;
            ASSERT_EQ(sizeOf(TypeParam(), in, out, len, &size, &rowLen, &rows), vornStsNoErr);
            const int halfLen = (len + 3) / 4 * 2;
            ASSERT_EQ(rows, out);
            ASSERT_EQ(rowLen, (len + 4) / 4 * 4);
            for (std::size_t offset : {0, 1, 2, 8, 19}) {
                const Guarded<char> block(static_cast<std::size_t>(size) + offset + 64);
                char* at = test::guardStandsBefore()
                               ? block.data() + offset
                               : block.data() + block.size() - static_cast<std::size_t>(size) - offset;
                auto* state = reinterpret_cast<typename StatesOf<TypeParam>::Fixed*>(at);
                const int hint = offset % 2 ? 1 : 2;
                ASSERT_EQ(init(state, in, out, len, hint), vornStsNoErr);
                for (const char* p = block.begin(); p != block.end(); ++p) {
                    ASSERT_TRUE((p >= at && p < at + size) || static_cast<unsigned char>(*p) == 0xA5) << "outside";
                }
                std::vector<TypeParam> matrix(static_cast<std::size_t>(rowLen * rows)),
                    got(matrix.size(), TypeParam(9));
                ASSERT_EQ(getFilter(state, got.data(), rowLen, rows), vornStsNoErr);
                EXPECT_TRUE(sameBits(got, std::vector<TypeParam>(matrix.size()))) << "rows begin as zeros";

                auto phases = model::resampling::phases(in, out, len);
                for (int s = 0; s < rows; ++s) {
                    auto& row = phases.rows[static_cast<std::size_t>(s)];
                    for (std::size_t m = 0; m < row.size(); ++m) {
                        const bool exists = static_cast<int>(m) < rowLen;
                        const auto tap = static_cast<TypeParam>(random.uniform(-30000, 30000));
                        row[m] = exists ? static_cast<double>(tap) : 0.0;
                        if (exists) matrix[static_cast<std::size_t>(s * rowLen) + m] = tap;
                    }
                    if (static_cast<int>(row.size()) > rowLen) row.pop_back();
                }
                ASSERT_EQ(setFilter(state, matrix.data(), rowLen, rows), vornStsNoErr);
                ASSERT_EQ(getFilter(state, got.data(), rowLen, rows), vornStsNoErr);
                EXPECT_TRUE(sameBits(got, matrix));

                const bool shorts = std::is_same_v<TypeParam, Vorn16s>;
                const Ratio kind = {in, out, len, shorts ? 1 : hint, 1, 1};
                std::vector<TypeParam> expected, dst(3 * 40);
                double time = 1.4, expectedTime = time;
                modelRun(phases, kind, samples.data() + halfLen + 2, 40, expected, 1e-4f, expectedTime);
                int made;
                ASSERT_EQ(resample(state, samples.data() + halfLen + 2, 40, dst.data(), 1e-4f, &time, &made), 0);
                dst.resize(static_cast<std::size_t>(made));
                EXPECT_TRUE(sameBits(dst, expected)) << in << " to " << out << ", filter " << len;
                EXPECT_TRUE(test::same(time, expectedTime));
            }
        }
    }
}

// Sixteen-bit sums at their largest, which no 32 bits hold.
TEST(ResampleFixed, TheLargestSumsAreExact_16s) {
    for (int len : {16, 64, 200}) {
        int size, rowLen, rows;
        ASSERT_EQ(vornsResamplePolyphaseFixedGetSize_16s(1, 1, len, &size, &rowLen, &rows), vornStsNoErr);
        std::vector<double> block(static_cast<std::size_t>(size) / 8 + 1);
        auto* state = reinterpret_cast<VornResampleFixedState_16s*>(block.data());
        ASSERT_EQ(vornsResamplePolyphaseFixedInit_16s(state, 1, 1, len, 1), vornStsNoErr);
        const std::vector<Vorn16s> samples(static_cast<std::size_t>(len + 8), -32768);
        for (const int tap : {-32768, 32767, -16384, 16384, 8192, 1000}) {
            const std::vector<Vorn16s> row(static_cast<std::size_t>(rowLen), static_cast<Vorn16s>(tap));
            ASSERT_EQ(setFilter(state, row.data(), rowLen, 1), vornStsNoErr);
            // A sum of -32768 tap (len + 1) / 16384, brought to 12345 by norm; off by one unit it would be 12346.
            const double sum = -2.0 * tap * (len + 1);
            Vorn16s dst[5];
            double time = 0;
            int made;
            ASSERT_EQ(resample(state, samples.data() + len / 2, 5, dst, static_cast<float>(12345 / sum), &time, &made),
                      0);
            ASSERT_EQ(made, 5);
            for (Vorn16s x : dst) EXPECT_EQ(x, 12345) << tap << " x " << len;
        }
    }
}

// The rows of all phases together are one windowed sinc (in extended precision), each tap where its distance puts it.
TEST(ResampleRows, AreTheFilterOfTheFormula) {
    for (const Ratio& ratio : ratios) {
        const Fixed<Vorn32f> singles(ratio);
        const auto fields = singles.fields<FixedFields>();
        const int H = fields.halfLen, in = fields.inRate, out = fields.outRate, n = std::max(in, out);
        const int rowLen = 2 * H + 4;
        if (n >= 200000) continue;  // the window then ends behind the taps, by what the formula of its length adds
        EXPECT_EQ(H, (ratio.len + 3) / 4 * 2);
        EXPECT_EQ(std::gcd(in, out), 1);
        EXPECT_EQ(fields.filterNorm, 1.0f);
        const long double pi = 3.14159265358979323846264L, edge = std::cyl_bessel_il(0, ratio.alpha);
        // The window ends at tap H, but for what is rounded: its length goes through singles.
        const auto weight = [&](std::int64_t i) {
            const long double x = static_cast<long double>(i) / n, u = i / (static_cast<long double>(H) * out);
            if (i == 0) return static_cast<long double>(ratio.rollf);
            return std::sin(pi * ratio.rollf * x) / (pi * x) *
                   std::cyl_bessel_il(0, ratio.alpha * std::sqrt(std::max(0.0L, 1 - u * u))) / edge;
        };
        long double sum = weight(0);
        for (std::int64_t i = n; i <= static_cast<std::int64_t>(H) * out; i += n) sum += 2 * weight(i);
        std::vector<float> rows(static_cast<std::size_t>(rowLen * out));
        ASSERT_EQ(getFilter(singles.get(), rows.data(), rowLen, out), vornStsNoErr);
        const double tolerance = 2e-6;
        for (int s = 0; s < out; ++s) {
            for (int m = 0; m < rowLen; ++m) {
                // Position of the tap's sample, less that of the output, in steps of 1/out.
                const std::int64_t at = static_cast<std::int64_t>(m - H + (s != 0)) * out - s;
                const bool isTap = m < 2 * H + (s == 0);
                EXPECT_NEAR(rows[static_cast<std::size_t>(s * rowLen + m)],
                            isTap ? static_cast<double>(weight(std::llabs(at)) / sum) : 0.0, tolerance)
                    << in << " to " << out << ", phase " << s << ", tap " << m;
            }
        }
        Ratio ordinary = ratio;
        ordinary.hint = 1;
        const Fixed<Vorn16s> shorts(ordinary);
        EXPECT_EQ(shorts.fields<FixedFields>().filterNorm, 1.0f / 16384);
        std::vector<Vorn16s> rows16(rows.size());
        ASSERT_EQ(getFilter(shorts.get(), rows16.data(), rowLen, out), vornStsNoErr);
        for (std::size_t i = 0; i < rows.size(); ++i) EXPECT_NEAR(rows16[i], rows[i] * 16384, 0.501);
    }
}

TEST(ResampleRows, StepsAndFields) {
    const Fixed<Vorn32f> one(Ratio{16000, 16000, 8, 2, 1.0f, 1.0f});
    auto fields = one.fields<FixedFields>();
    EXPECT_EQ(fields.inRate, 1);
    EXPECT_EQ(fields.outRate, 1);
    EXPECT_EQ(fields.pStep[0], 1);  // 1 + 1 - 1
    EXPECT_EQ(fields.flags, 1);
    const Fixed<Vorn32f> half(Ratio{16000, 8000, 8, 1, 1.0f, 1.0f});
    fields = half.fields<FixedFields>();
    EXPECT_EQ(fields.inRate, 2);
    EXPECT_EQ(fields.outRate, 1);
    EXPECT_EQ(fields.flags, 2);
    for (const auto& [in, out] :
         {std::pair(441, 160), std::pair(3, 7), std::pair(7, 3), std::pair(1, 5), std::pair(2, 1)}) {
        const Fixed<Vorn32f> state(Ratio{in, out, 12, 1, 0.9f, 2.0f});
        fields = state.fields<FixedFields>();
        // From the beginning of the window of one phase to that of the next: phase 0 begins a sample early.
        for (int i = 0; i < out; ++i) {
            const int phase = i * in % out, next = (i + 1) * in % out;
            EXPECT_EQ(fields.pStep[phase], (i + 1) * in / out - (next == 0) - (i * in / out - (phase == 0)));
        }
    }
    // The reduction is by common factors.
    const Fixed<Vorn32f> state(Ratio{48000, 44100, 12, 1, 0.9f, 2.0f});
    EXPECT_EQ(state.fields<FixedFields>().inRate, 160);
    EXPECT_EQ(state.fields<FixedFields>().outRate, 147);
}

// Steps that no 16 bits hold.
TEST(ResampleFixed, FarApart) {
    const int in = 100003, out = 2;
    const Fixed<Vorn32f> state(Ratio{in, out, 4, 1, 1.0f, 1.0f});
    std::vector<float> samples(1000000);
    for (std::size_t i = 0; i < samples.size(); ++i) samples[i] = static_cast<float>(i);
    std::vector<float> dst(64);
    double time = 0;
    int made;
    ASSERT_EQ(resample(state.get(), samples.data() + 10, 900000, dst.data(), 1.0f, &time, &made), vornStsNoErr);
    EXPECT_EQ(made, 18);
    // Over a straight line a symmetric filter gives its own sum times the value in its middle.
    for (int i = 2; i < made; ++i) {
        const double sum = dst[static_cast<std::size_t>(i % 2 + 2)] / (10 + (i % 2 + 2) * in / 2.0);
        EXPECT_NEAR(dst[static_cast<std::size_t>(i)] / sum, 10 + i * in / 2.0, 0.3);
    }
    EXPECT_EQ(time, 18 * in / 2.0);
}

// A stream in blocks, as in the example of the header.
TYPED_TEST(FixedForm, BlocksOfAStreamAreTheWhole) {
    Random random(6);
    for (Ratio ratio : ratios) {
        for (int hint : {1, 2}) {
            ratio.hint = hint;
            const Fixed<TypeParam> state(ratio);
            const int H = (ratio.len + 3) / 4 * 2, total = 2000;
            const auto stream = noise<TypeParam>(random, static_cast<std::size_t>(total + 2 * H));
            std::vector<TypeParam> whole(static_cast<std::size_t>(static_cast<double>(total) * ratio.out / ratio.in) +
                                         2);
            std::vector<TypeParam> dst(whole.size());
            double time = 0, carried = 0;
            int made;
            ASSERT_EQ(resample(state.get(), stream.data() + H, total, whole.data(), 1.0f, &time, &made), vornStsNoErr);
            EXPECT_EQ(made, (static_cast<std::int64_t>(total) * ratio.out + ratio.in - 1) / ratio.in);
            int at = 0;
            for (int begin = 0; begin < total;) {
                const int block = std::min(static_cast<int>(random.integer(1, 90)), total - begin);
                const Guarded<TypeParam> window(
                    std::vector<TypeParam>(stream.begin() + begin, stream.begin() + begin + block + 2 * H));
                const int base = static_cast<int>(carried);
                if (base < block) {
                    int n;
                    ASSERT_EQ(
                        resample(state.get(), window.data() + H, block - base, dst.data() + at, 1.0f, &carried, &n), 0);
                    at += n;
                }
                carried -= block;
                begin += block;
            }
            EXPECT_EQ(at, made);
            dst.resize(whole.size());
            EXPECT_TRUE(sameBits(dst.data(), whole.data(), static_cast<std::size_t>(made)))
                << ratio.in << " to " << ratio.out;
            EXPECT_NEAR(carried, time - total, 1e-9);
        }
    }
}

// Hours of a stream: the phases are whole numbers, so that roundings of the time are forgotten, and the count is exact.
TEST(ResampleFixed, TheCountIsExactForHours) {
    const Fixed<Vorn32f> state(Ratio{44100, 16000, 1, 1, 1.0f, 1.0f});
    const std::vector<float> zeros(1000);
    std::vector<float> dst(1000);
    double time = 0;
    std::int64_t made = 0, used = 0;
    Random random(8);
    while (used < 10 * 60 * 44100LL) {
        const int block = static_cast<int>(random.integer(1, 900)), base = static_cast<int>(time);
        if (base < block) {
            int n;
            ASSERT_EQ(resample(state.get(), zeros.data() + 10, block - base, dst.data(), 1.0f, &time, &n),
                      vornStsNoErr);
            made += n;
        }
        time -= block;
        used += block;
    }
    EXPECT_EQ(made, (used * 160 + 440) / 441);
    EXPECT_NEAR(time, static_cast<double>(made * 441 - used * 160) / 160, 1e-6);
}

// A time is taken to the nearest position of a phase, which may be the next sample's first, or, where roundings left it
// a little in front of 0, 0 itself.
TEST(ResampleFixed, TimesBesidePhases) {
    Random random(9);
    const auto samples = random.floats(100, -1, 1);
    const Ratio ratio = {7, 5, 12, 1, 0.9f, 5.0f};
    const Fixed<Vorn32f> state(ratio);
    const auto run = [&](double time, int len) {
        std::vector<float> dst(40);
        int made;
        EXPECT_EQ(resample(state.get(), samples.data() + 20, len, dst.data(), 1.0f, &time, &made), vornStsNoErr);
        dst.resize(static_cast<std::size_t>(made));
        return dst;
    };
    EXPECT_TRUE(sameBits(run(3.0 - 1e-9, 10), run(3.0, 9)));
    EXPECT_TRUE(sameBits(run(2.91, 10), run(3.0, 9)));
    EXPECT_TRUE(sameBits(run(2.89, 10), run(2.8, 10)));
    EXPECT_TRUE(sameBits(run(-1e-12, 10), run(0.0, 10)));
    EXPECT_TRUE(sameBits(run(-0.099, 10), run(0.0, 10)));
    EXPECT_TRUE(run(0.95, 1).empty());
    // 0 is the end as well as the beginning.
    double time = 4.0;
    int made = -1;
    float dst = 5;
    ASSERT_EQ(resample(state.get(), samples.data() + 20, 1, &dst, 1.0f, &time, &made), vornStsNoErr);
    EXPECT_EQ(made, 1);
    EXPECT_EQ(time, 4 + 7.0 / 5);
}

TYPED_TEST(FixedForm, MovingFilters) {
    Random random(10);
    for (int hint : {1, 2}) {
        const Ratio ratio = {3, 4, 12, hint, 0.9f, 5.0f};
        const Fixed<TypeParam> state(ratio);
        const int rowLen = 16, rows = 4;
        const auto set = noise<TypeParam>(random, 200);
        std::vector<TypeParam> start(rowLen * rows);
        ASSERT_EQ(getFilter(state.get(), start.data(), rowLen, rows), vornStsNoErr);
        // A matrix of any stride: no more than a row has, and no more rows than there are.
        for (int step : {1, 5, 15, 16, 17, 30}) {
            for (int height : {1, 3, 4, 6}) {
                std::vector<TypeParam> held(rowLen * rows),
                    expected(static_cast<std::size_t>(step * height), TypeParam(55));
                ASSERT_EQ(setFilter(state.get(), start.data(), rowLen, rows), vornStsNoErr);
                ASSERT_EQ(setFilter(state.get(), set.data(), step, height), vornStsNoErr);
                ASSERT_EQ(getFilter(state.get(), held.data(), rowLen, rows), vornStsNoErr);
                for (int r = 0; r < rows; ++r) {
                    for (int c = 0; c < rowLen; ++c) {
                        const bool moved = r < height && c < step;
                        EXPECT_EQ(held[static_cast<std::size_t>(r * rowLen + c)],
                                  moved ? set[static_cast<std::size_t>(r * step + c)]
                                        : start[static_cast<std::size_t>(r * rowLen + c)]);
                        if (moved)
                            expected[static_cast<std::size_t>(r * step + c)] =
                                set[static_cast<std::size_t>(r * step + c)];
                    }
                }
                Guarded<TypeParam> got(std::vector<TypeParam>(expected.size(), TypeParam(55)));
                ASSERT_EQ(getFilter(state.get(), got.data(), step, height), vornStsNoErr);
                EXPECT_TRUE(sameBits(got.values(), expected)) << step << " x " << height;
            }
        }
    }
}

// Rows of singles behind a 16-bit form count as Q14: exact on the way in, to nearest and saturated on the way out.
TEST(ResampleFixed, RowsOfSinglesInQ14) {
    const Fixed<Vorn16s> state(Ratio{3, 4, 12, 2, 0.9f, 5.0f});
    const auto fields = state.fields<FixedFields>();
    EXPECT_EQ(fields.filterNorm, 1.0f);
    const Vorn16s taps[] = {1, -1, 32767, -32768};
    ASSERT_EQ(setFilter(state.get(), taps, 4, 1), vornStsNoErr);
    auto* row = const_cast<float*>(static_cast<const float*>(fields.ppFilter[0]));
    EXPECT_EQ(row[0], 1.0f / 16384);
    EXPECT_EQ(row[2], 32767.0f / 16384);
    EXPECT_EQ(row[3], -2.0f);
    row[0] = 0.5f / 16384;
    row[1] = 1.5f / 16384;
    row[2] = 3.0f;
    row[3] = -3.0f;
    Vorn16s got[4];
    ASSERT_EQ(getFilter(state.get(), got, 4, 1), vornStsNoErr);
    EXPECT_EQ(got[0], 0);
    EXPECT_EQ(got[1], 2);
    EXPECT_EQ(got[2], 32767);
    EXPECT_EQ(got[3], -32768);
}

TYPED_TEST(FixedForm, Sizes) {
    const int bytes = sizeof(TypeParam), beside = std::is_same_v<TypeParam, float> ? 40 : 48;
    int size, rowLen, rows;
    for (int out : {1, 3, 4, 7, 8, 9, 160}) {
        for (int len : {1, 3, 4, 5, 64}) {
            ASSERT_EQ(sizeOf(TypeParam(), 11 * 13 * 17, out, len, &size, &rowLen, &rows), vornStsNoErr);
            const int E = (len + 4) & ~3;
            EXPECT_EQ(rowLen, E);
            EXPECT_EQ(rows, out);
            EXPECT_EQ(size, ((out + 7) & ~7) * 2 + ((out + 4) & ~3) * 8 + E * out * bytes + beside);
        }
    }
    ASSERT_EQ(sizeOf(TypeParam(), 16000, 8000, 4, &size, &rowLen, &rows), vornStsNoErr);
    EXPECT_EQ(rows, 1);

    // Around the limit: E such that the sum is just below 2^31.
    const int fixed = 8 * 2 + 4 * 8 + beside;
    const int largest = (0x7FFFFFFE - fixed) / bytes / 4 * 4;
    EXPECT_EQ(sizeOf(TypeParam(), 1, 1, largest - 4, &size, &rowLen, &rows), vornStsNoErr);
    EXPECT_EQ(rowLen, largest);
    size = rowLen = rows = -3;
    EXPECT_EQ(sizeOf(TypeParam(), 1, 1, largest, &size, &rowLen, &rows), vornStsSizeErr);
    EXPECT_EQ(sizeOf(TypeParam(), 1, INT_MAX, INT_MAX, &size, &rowLen, &rows), vornStsSizeErr);
    EXPECT_EQ(sizeOf(TypeParam(), INT_MAX, INT_MAX - 1, 1, &size, &rowLen, &rows), vornStsSizeErr);
    for (const auto& [in, out, len] : {std::tuple(0, 1, 1), std::tuple(1, 0, 1), std::tuple(1, 1, 0),
                                       std::tuple(-5, 1, 1), std::tuple(1, INT_MIN, 1), std::tuple(1, 1, -1)}) {
        EXPECT_EQ(sizeOf(TypeParam(), in, out, len, &size, &rowLen, &rows), vornStsSizeErr);
        EXPECT_EQ(sizeOf(TypeParam(), in, out, len, nullptr, &rowLen, &rows), vornStsNullPtrErr);
        EXPECT_EQ(sizeOf(TypeParam(), in, out, len, &size, nullptr, &rows), vornStsNullPtrErr);
        EXPECT_EQ(sizeOf(TypeParam(), in, out, len, &size, &rowLen, nullptr), vornStsNullPtrErr);

        using State = typename StatesOf<TypeParam>::Fixed;
        const Guarded<char> block(256);
        EXPECT_EQ(init(reinterpret_cast<State*>(block.data()), in, out, len, 1), vornStsSizeErr);
        EXPECT_TRUE(block.untouched());
        State* state = nullptr;
        EXPECT_EQ(make(&state, in, out, len, 1, -1.0f, -1.0f), vornStsSizeErr);
        EXPECT_EQ(make(static_cast<State**>(nullptr), in, out, len, 1, -1.0f, -1.0f), vornStsNullPtrErr);
        EXPECT_EQ(state, nullptr);
        EXPECT_EQ(init(static_cast<State*>(nullptr), in, out, len, 1), vornStsNullPtrErr);
    }
    EXPECT_EQ(size, -3);
    EXPECT_EQ(rowLen, -3);
    EXPECT_EQ(rows, -3);
    const Guarded<char> block(256);
    EXPECT_EQ(init(reinterpret_cast<typename StatesOf<TypeParam>::Fixed*>(block.data()), 1, INT_MAX, INT_MAX, 1),
              vornStsSizeErr);
    EXPECT_TRUE(block.untouched());
}

TYPED_TEST(FixedForm, ChecksOfTheDesign) {
    using State = typename StatesOf<TypeParam>::Fixed;
    const float notANumber = std::numeric_limits<float>::quiet_NaN(), infinity = std::numeric_limits<float>::infinity();
    State* state = nullptr;
    for (int hint : {1, 2}) {
        for (float rollf : {0.0f, -1.0f, 1.0000001f, notANumber, infinity}) {
            EXPECT_EQ(make(&state, 3, 2, 8, hint, rollf, 1.0f), vornStsBadArgErr);
        }
        for (float alpha : {0.99f, notANumber, infinity, 720.0f}) {
            EXPECT_EQ(make(&state, 3, 2, 8, hint, 1.0f, alpha), vornStsBadArgErr);
        }
        EXPECT_EQ(make(&state, 1, 1000003, 2000, hint, 1.0f, 1.0f), vornStsBadArgErr) << "2^31 bytes and more";
        EXPECT_EQ(make(&state, 1, INT_MAX, INT_MAX, hint, 1.0f, 1.0f), vornStsBadArgErr);
    }
    EXPECT_EQ(state, nullptr);
    EXPECT_EQ(release(static_cast<State*>(nullptr)), vornStsNullPtrErr);
}

TYPED_TEST(FixedForm, ChecksOfTheCalls) {
    const Fixed<TypeParam> state(Ratio{3, 2, 8, 1, 0.9f, 2.0f});
    const std::vector<TypeParam> samples(40);
    const Guarded<TypeParam> dst(20);
    const double notANumber = std::numeric_limits<double>::quiet_NaN(),
                 infinity = std::numeric_limits<double>::infinity();
    for (int len : {5, 0, -1, INT_MIN}) {
        double time = 0.5;
        int made = -4;
        const auto call = [&](const auto* s, const TypeParam* src, TypeParam* to, double* t, int* n) {
            return resample(s, src, len, to, 1.0f, t, n);
        };
        const auto* src = samples.data() + 10;
        EXPECT_EQ(call(static_cast<decltype(state.get())>(nullptr), src, dst.data(), &time, &made), vornStsNullPtrErr);
        EXPECT_EQ(call(state.get(), nullptr, dst.data(), &time, &made), vornStsNullPtrErr);
        EXPECT_EQ(call(state.get(), src, nullptr, &time, &made), vornStsNullPtrErr);
        EXPECT_EQ(call(state.get(), src, dst.data(), nullptr, &made), vornStsNullPtrErr);
        EXPECT_EQ(call(state.get(), src, dst.data(), &time, nullptr), vornStsNullPtrErr);
        if (len < 1) {
            EXPECT_EQ(call(state.get(), src, dst.data(), &time, &made), vornStsSizeErr);
        }
        for (double bad : {notANumber, infinity, -infinity, 0x1p53, -0x1p53, 1e300}) {
            time = bad;
            EXPECT_EQ(call(state.get(), src, dst.data(), &time, &made), vornStsSizeErr);
            EXPECT_TRUE(test::same(time, bad));
        }
        EXPECT_EQ(made, -4);
        EXPECT_TRUE(dst.untouched());
    }
    TypeParam matrix[64] = {};
    for (const auto& [step, height] : {std::pair(0, 1), std::pair(1, 0), std::pair(-1, 1), std::pair(1, INT_MIN)}) {
        EXPECT_EQ(getFilter(state.get(), matrix, step, height), vornStsSizeErr);
        EXPECT_EQ(setFilter(state.get(), matrix, step, height), vornStsSizeErr);
        EXPECT_EQ(getFilter(state.get(), nullptr, step, height), vornStsNullPtrErr);
        EXPECT_EQ(setFilter(state.get(), nullptr, step, height), vornStsNullPtrErr);
        EXPECT_EQ(getFilter(static_cast<decltype(state.get())>(nullptr), matrix, step, height), vornStsNullPtrErr);
        EXPECT_EQ(setFilter(static_cast<decltype(state.get())>(nullptr), matrix, step, height), vornStsNullPtrErr);
    }
}

TYPED_TEST(FixedForm, MemoryFailure) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer has its own allocator";
    using State = typename StatesOf<TypeParam>::Fixed;
    for (int hint : {1, 2}) {
        State* state = nullptr;
        int calls;
        {
            test::FailAllocation count(0);
            ASSERT_EQ(make(&state, 8, 3, 6, hint, 0.9f, 4.0f), vornStsNoErr);
            release(state);
            calls = count.calls();
            EXPECT_EQ(count.outstanding(), 0);
        }
        EXPECT_GE(calls, 1);
        for (int n = 1; n <= calls; ++n) {
            state = nullptr;
            test::FailAllocation fail(n);
            EXPECT_EQ(make(&state, 8, 3, 6, hint, 0.9f, 4.0f), vornStsMemAllocErr);
            EXPECT_EQ(state, nullptr);
            EXPECT_EQ(fail.outstanding(), 0);
        }
    }
}

}  // namespace
