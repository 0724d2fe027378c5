// The variable form beside its model, its table, its edges and its memory.
#include <climits>
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

TYPED_TEST(VariableForm, HardValues) {
    Random random(2);
    std::vector<TypeParam> hard;
    if constexpr (std::is_same_v<TypeParam, float>) {
        hard = test::hardFloats<float>();
    } else {
        hard = test::hardIntegers<Vorn16s>();
    }
    for (double factor : {0.6, 1.0, 1.7}) {
        for (int turn = 0; turn < 40; ++turn) {
            compare(designs[static_cast<std::size_t>(turn) % std::size(designs)], factor, turn % 2 ? 1.0f : 1e30f,
                    random.uniform(0, 2), 6, random.pick(hard, 2000));
        }
    }
}

TYPED_TEST(VariableForm, DirectedRoundingModes) {
    Random random(3);
    const auto samples = noise<TypeParam>(random, 200);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (double factor : {0.4, 1.0, 2.5}) {
            const Design design = {32, 1, 12.0f, 0.9f, 6.0f};
            // The table is that of round-to-nearest mode, whoever asks for it.
            const Variable<TypeParam> nearest(design);
            test::RoundingMode scope(mode);
            const Variable<TypeParam> directed(design);
            const auto a = nearest.template fields<VariableFields>(), b = directed.template fields<VariableFields>();
            ASSERT_EQ(a.tableLen, b.tableLen);
            EXPECT_EQ(std::memcmp(a.pTable, b.pTable, sizeof(TypeParam) * static_cast<std::size_t>(a.tableLen + 1)), 0);
            EXPECT_EQ(test::RoundingMode::current(), mode);

            const bool sixteenBits = std::is_same_v<TypeParam, Vorn16s>;
            model::resampling::Table table;
            {
                test::RoundingMode back(test::RoundingMode::nearest);
                table = model::resampling::variable(32, 12.0f, 0.9f, 6.0f, sixteenBits);
            }
            std::vector<TypeParam> expected;
            volatile double time = 0.3;
            double expectedTime = time, made = time;
            model::resampling::resample(table, samples.data() + 50, 20, expected, factor, 1.1f, expectedTime);
            std::vector<TypeParam> dst(expected.size());
            int n;
            ASSERT_EQ(resample(directed.get(), samples.data() + 50, 20, dst.data(), factor, 1.1f, &made, &n), 0);
            EXPECT_TRUE(sameBits(dst, expected)) << "mode " << mode << ", factor " << factor;
            EXPECT_TRUE(test::same(made, expectedTime));
        }
    }
}

// The record begins with what is promised, and the table is that of the formula (here in extended precision).
TEST(ResampleTable, FieldsAndFormula) {
    for (const Design& design : designs) {
        const Variable<Vorn32f> singles(design);
        const auto fields = singles.fields<VariableFields>();
        EXPECT_EQ(fields.invStep, 1.0 / design.nStep);
        EXPECT_EQ(fields.nStep, design.nStep);
        EXPECT_EQ(fields.tableNorm, 1.0f);
        EXPECT_EQ(fields.flags, design.hint == 2 ? 1 : 2);
        const int L = fields.tableLen;
        EXPECT_EQ(L, static_cast<int>(design.window * 0.5f * static_cast<float>(design.nStep)) + 1);
        const auto* table = static_cast<const float*>(fields.pTable);
        EXPECT_EQ(table[L], table[L - 1]);
        std::vector<long double> t(static_cast<std::size_t>(L));
        const long double pi = std::numbers::pi_v<long double>, edge = std::cyl_bessel_il(0, design.alpha);
        long double sum = 0;
        for (int i = 0; i < L; ++i) {
            const long double x = static_cast<long double>(i) / design.nStep, u = i == 0 ? 0.0L : i / (L - 1.0L);
            t[static_cast<std::size_t>(i)] =
                i == 0 ? static_cast<long double>(design.rollf)
                       : std::sin(pi * design.rollf * x) / (pi * x) *
                             std::cyl_bessel_il(0, design.alpha * std::sqrt(std::max(0.0L, 1 - u * u))) / edge;
            if (i % design.nStep == 0) sum += (i == 0 ? 1 : 2) * t[static_cast<std::size_t>(i)];
        }
        long double most = 0;
        for (long double x : t) most = std::max(most, std::fabs(x / sum));
        for (int i = 0; i < L; ++i) {
            EXPECT_NEAR(table[i], static_cast<double>(t[static_cast<std::size_t>(i)] / sum),
                        6e-8 * static_cast<double>(most));
        }

        Design ordinary = design;
        ordinary.hint = 1;
        const Variable<Vorn16s> shorts(ordinary);
        const auto fields16 = shorts.fields<VariableFields>();
        EXPECT_NEAR(fields16.tableNorm, static_cast<double>(most / 16383), 1e-7 * static_cast<double>(most));
        EXPECT_EQ(fields16.flags, 2);
        const auto* table16 = static_cast<const Vorn16s*>(fields16.pTable);
        int largest = 0;
        for (int i = 0; i < L; ++i) {
            EXPECT_NEAR(table16[i], static_cast<double>(t[static_cast<std::size_t>(i)] / sum / most * 16383), 0.5001);
            largest = std::max(largest, std::abs(table16[i]));
        }
        EXPECT_EQ(largest, 16383);
        EXPECT_EQ(table16[L], table16[L - 1]);
    }
}

TEST(ResampleTable, TheSmallestWindow) {
    VornResampleState_32f* state = nullptr;
    ASSERT_EQ(vornsResamplePolyphaseInitAlloc_32f(&state, 1, 1, 2.0f, 1.0f, 1.0f), vornStsNoErr);
    VariableFields fields;
    std::memcpy(&fields, static_cast<void*>(state), sizeof fields);
    EXPECT_EQ(fields.tableLen, 2);
    vornsResamplePolyphaseFree_32f(state);
    state = nullptr;
    EXPECT_EQ(vornsResamplePolyphaseInitAlloc_32f(&state, 1, 1, std::nextafter(2.0f, 0.0f), 1.0f, 1.0f),
              vornStsBadArgErr);
    // 2/3 as a single, times 0.5, times 3 rounds to 1; one point is left where the product falls below.
    for (int nStep : {3, 7, 49, 1000003}) {
        ASSERT_EQ(vornsResamplePolyphaseInitAlloc_32f(&state, nStep, 1, 2.0f / static_cast<float>(nStep), 1.0f, 1.0f),
                  vornStsNoErr);
        std::memcpy(&fields, static_cast<void*>(state), sizeof fields);
        EXPECT_EQ(fields.tableLen, model::resampling::tableLen(nStep, 2.0f / static_cast<float>(nStep)));
        EXPECT_GE(fields.tableLen, 1);
        vornsResamplePolyphaseFree_32f(state);
    }
}

TEST(ResampleVariable, AFactorOfOneKeepsSamples) {
    Random random(5);
    const auto samples = random.floats(100, -1, 1);
    const Variable<Vorn32f> state(Design{16, 1, 20.0f, 1.0f, 8.0f});
    const auto fields = state.fields<VariableFields>();
    const auto* table = static_cast<const float*>(fields.pTable);
    std::vector<float> dst(50);
    double time = 0;
    int made;
    ASSERT_EQ(resample(state.get(), samples.data() + 25, 50, dst.data(), 1.0, 1.0f, &time, &made), vornStsNoErr);
    EXPECT_EQ(made, 50);
    EXPECT_EQ(time, 50.0);
    // The sinc is zero at all other samples, so that the gain is that of the centre.
    for (int i = 0; i < 50; ++i)
        EXPECT_NEAR(dst[static_cast<std::size_t>(i)], table[0] * samples[static_cast<std::size_t>(25 + i)], 1e-6);
    EXPECT_NEAR(table[0], 1.0, 1e-6);
}

TEST(ResampleVariable, StoresSixteenBits) {
    // One tap of weight 1: the output is norm times the input.
    const Variable<Vorn16s> state(Design{1, 2, 2.0f, 1.0f, 700.0f});
    const auto one = [&](Vorn16s x, float norm) {
        const Vorn16s src[] = {0, 0, x, 0, 0};
        Vorn16s dst = 99;
        double time = 0;
        int made = 0;
        EXPECT_EQ(resample(state.get(), src + 2, 1, &dst, 1.0, norm, &time, &made), vornStsNoErr);
        EXPECT_EQ(made, 1);
        return dst;
    };
    EXPECT_EQ(one(10000, 3.27674f), 32767);    // 32767.4
    EXPECT_EQ(one(10000, -3.27686f), -32768);  // -32768.6
    EXPECT_EQ(one(10000, 3.27668f), 32767);    // 32766.8
    EXPECT_EQ(one(1, 2.5f), 3);
    EXPECT_EQ(one(1, -2.5f), -3);
    EXPECT_EQ(one(1, 0.4999f), 0);
    EXPECT_EQ(one(1, -0.5f), -1);
    EXPECT_EQ(one(1, notANumber), 0);
    EXPECT_EQ(one(1, infinity), 32767);
    EXPECT_EQ(one(-1, infinity), -32768);
    EXPECT_EQ(one(0, infinity), 0) << "not a number";
}

// A constant keeps its value at any factor, to within the ripple of the design.
TYPED_TEST(VariableForm, AConstantKeepsItsValue) {
    const Variable<TypeParam> state(Design{512, 2, 40.0f, 0.9f, 9.0f});
    const std::vector<TypeParam> samples(2000, TypeParam(10000));
    for (double factor : {0.21, 1.0 / 3, 0.77, 1.0, 1.3, 4.0}) {
        std::vector<TypeParam> dst(2000);
        double time = 0.37;
        int made;
        ASSERT_EQ(resample(state.get(), samples.data() + 600, 100, dst.data(), factor, 1.0f, &time, &made), 0);
        EXPECT_GE(made, static_cast<int>(100 * factor) - 1);
        for (int i = 0; i < made; ++i) EXPECT_NEAR(dst[static_cast<std::size_t>(i)], 10000, 1.0) << factor;
    }
}

// A stream in blocks, as in the example of the header; the steps of these factors are exact.
TYPED_TEST(VariableForm, BlocksOfAStreamAreTheWhole) {
    Random random(6);
    const Design design = {64, 1, 14.0f, 0.9f, 7.0f};
    const Variable<TypeParam> state(design);
    for (double factor : {0.5, 0.25, 0.8, 1.0, 1.6, 2.0, 4.0, 0.125}) {
        const Reach reach = reachOf(design, factor);
        const int total = 3000;
        const auto stream = noise<TypeParam>(random, static_cast<std::size_t>(reach.front + total + reach.behind));
        std::vector<TypeParam> whole(static_cast<std::size_t>(total * factor) + 8), dst(whole.size());
        double time = 0.25;
        int made;
        ASSERT_EQ(resample(state.get(), stream.data() + reach.front, total, whole.data(), factor, 1.0f, &time, &made),
                  0);
        whole.resize(static_cast<std::size_t>(made));

        double carried = 0.25;
        std::size_t at = 0;
        for (int begin = 0; begin < total;) {
            const int block = std::min(static_cast<int>(random.integer(1, 90)), total - begin);
            const Guarded<TypeParam> window(std::vector<TypeParam>(
                stream.begin() + begin, stream.begin() + begin + reach.front + block + reach.behind));
            const int base = static_cast<int>(carried);
            if (base < block) {
                ASSERT_EQ(resample(state.get(), window.data() + reach.front, block - base, dst.data() + at, factor,
                                   1.0f, &carried, &made),
                          0);
                at += static_cast<std::size_t>(made);
            }
            carried -= block;
            begin += block;
        }
        dst.resize(at);
        EXPECT_TRUE(sameBits(dst, whole)) << "factor " << factor;
        EXPECT_TRUE(test::same(carried, time - total));
    }
}

// With any factor, where the source stays and the time goes on.
TYPED_TEST(VariableForm, TheTimeGoesOnWhereTheSourceStays) {
    Random random(7);
    const Variable<TypeParam> state(Design{64, 1, 14.0f, 0.9f, 7.0f});
    const auto stream = noise<TypeParam>(random, 4000);
    for (double factor : factors) {
        std::vector<TypeParam> whole(20000), dst(20000);
        double time = 0.1, carried = 0.1;
        int made, n;
        ASSERT_EQ(resample(state.get(), stream.data() + 500, 2000, whole.data(), factor, 1.0f, &time, &made), 0);
        int at = 0;
        while (carried < 2000) {
            const int base = static_cast<int>(carried);
            const int block = std::min(static_cast<int>(random.integer(1, 200)), 2000 - base);
            ASSERT_EQ(resample(state.get(), stream.data() + 500, block, dst.data() + at, factor, 1.0f, &carried, &n),
                      0);
            at += n;
        }
        EXPECT_EQ(at, made);
        EXPECT_TRUE(sameBits(dst, whole)) << "factor " << factor;
        EXPECT_TRUE(test::same(carried, time));
    }
}

// The time is a sum of steps that a double does not have, so it drifts by at most half a unit of the largest time with
// each of them: 2^-38 in blocks of one second at 44100 Hz, a hundredth of a sample in a day.
TEST(ResampleVariable, Drift) {
    const double factor = 16000.0 / 44100;
    const Variable<Vorn32f> state(Design{1, 1, 2.0f, 1.0f, 1.0f});
    const std::vector<float> zeros(44100 + 100);
    std::vector<float> dst(20000);
    double time = 0;
    std::int64_t made = 0;
    const int seconds = 100;
    for (int second = 0; second < seconds; ++second) {
        const int base = static_cast<int>(time);
        int n;
        ASSERT_EQ(resample(state.get(), zeros.data() + 50, 44100 - base, dst.data(), factor, 1.0f, &time, &n), 0);
        made += n;
        time -= 44100;
    }
    EXPECT_NEAR(time, static_cast<double>(made * 44100 - std::int64_t{seconds} * 44100 * 16000) / 16000,
                static_cast<double>(made) * 0x1p-38);
}

template <class Sample>
struct Arguments {
    typename StatesOf<Sample>::Variable* state;
    const Sample* src;
    int len = 3;
    std::vector<Sample> dst = std::vector<Sample>(16, Sample(77));
    Sample* to = dst.data();
    double factor = 1.0, time = 0.5;
    double* pTime = &time;
    int made = -5;
    int* pMade = &made;
    Arguments() = default;
    Arguments(const Arguments&) = delete;
};

TYPED_TEST(VariableForm, OrderOfChecks) {
    const Variable<TypeParam> state(Design{2, 1, 4.0f, 1.0f, 1.0f});
    const std::vector<TypeParam> samples(100);
    struct Case {
        const char* name;
        VornStatus status;
        void (*breakIt)(Arguments<TypeParam>&);
    };
    using A = Arguments<TypeParam>;
    const Case cases[] = {{"state", vornStsNullPtrErr, [](A& a) { a.state = nullptr; }},
                          {"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                          {"dst", vornStsNullPtrErr, [](A& a) { a.to = nullptr; }},
                          {"time", vornStsNullPtrErr, [](A& a) { a.pTime = nullptr; }},
                          {"made", vornStsNullPtrErr, [](A& a) { a.pMade = nullptr; }},
                          {"factor 0", vornStsSizeErr, [](A& a) { a.factor = 0; }},
                          {"factor below 0", vornStsSizeErr, [](A& a) { a.factor = -1; }},
                          {"factor no number", vornStsSizeErr, [](A& a) { a.factor = notANumber64; }},
                          {"factor infinite", vornStsSizeErr, [](A& a) { a.factor = infinity64; }},
                          {"factor too large", vornStsSizeErr, [](A& a) { a.factor = 1e17; }},
                          {"len", vornStsSizeErr, [](A& a) { a.len = 0; }},
                          {"len below 0", vornStsSizeErr, [](A& a) { a.len = INT_MIN; }},
                          {"time no number", vornStsSizeErr, [](A& a) { a.time = notANumber64; }},
                          {"time infinite", vornStsSizeErr, [](A& a) { a.time = infinity64; }},
                          {"time -infinite", vornStsSizeErr, [](A& a) { a.time = -infinity64; }},
                          {"time too late", vornStsSizeErr, [](A& a) { a.time = 0x1p53; }}};
    for (const Case& first : cases) {
        for (const Case& second : cases) {
            A a;
            a.state = state.get();
            a.src = samples.data() + 50;
            second.breakIt(a);
            first.breakIt(a);
            const double before = a.time;
            const VornStatus expected = std::min(first.status, second.status);  // null comes first
            EXPECT_EQ(resample(a.state, a.src, a.len, a.to, a.factor, 1.0f, a.pTime, a.pMade), expected)
                << first.name << " and " << second.name;
            EXPECT_EQ(a.made, -5);
            EXPECT_TRUE(test::same(a.time, before));
            for (TypeParam x : a.dst) EXPECT_EQ(x, TypeParam(77));
        }
    }
}

// A time so late that steps are lost ends the run, and does not write on.
TEST(ResampleVariable, StepsThatAreLostEnd) {
#ifdef VORNSR_SANITIZED
    GTEST_SKIP() << "no buffer reaches so far, and the sanitizer refuses a pointer that goes around the address space";
#endif
    const Variable<Vorn32f> state(Design{1, 1, 2.0f, 1.0f, 1.0f});
    const std::vector<float> samples(64);
    std::vector<float> dst(64);
    double time = 0x1p52 - 8;
    int made = -1;
    const auto origin = reinterpret_cast<const float*>(reinterpret_cast<std::uintptr_t>(samples.data() + 16) -
                                                       4 * static_cast<std::uintptr_t>(time));
    ASSERT_EQ(resample(state.get(), origin, 16, dst.data(), 2.0, 1.0f, &time, &made), vornStsNoErr);
    EXPECT_EQ(made, 17) << "halves up to 2^52, there a half is lost";
    EXPECT_EQ(time, 0x1p52);
}

TYPED_TEST(VariableForm, ChecksOfTheDesign) {
    using State = typename StatesOf<TypeParam>::Variable;
    State* const untouched = reinterpret_cast<State*>(16);
    const auto expect = [&](VornStatus status, int nStep, float window, float rollf, float alpha) {
        State* state = untouched;
        EXPECT_EQ(make(&state, nStep, 1, window, rollf, alpha), status)
            << nStep << ", " << window << ", " << rollf << ", " << alpha;
        EXPECT_EQ(state, untouched);
    };
    EXPECT_EQ(make(static_cast<State**>(nullptr), 0, 1, 0.0f, 0.0f, 0.0f), vornStsNullPtrErr);
    for (int nStep : {0, -1, INT_MIN}) expect(vornStsSizeErr, nStep, 0.0f, 0.0f, 0.0f);
    for (float window : {0.0f, -8.0f, 0.4f, notANumber, infinity, 3e8f})
        expect(vornStsBadArgErr, 4, window, 1.0f, 1.0f);
    for (float rollf : {0.0f, -0.0f, -1.0f, 1.0000001f, notANumber, infinity}) {
        expect(vornStsBadArgErr, 4, 8.0f, rollf, 1.0f);
    }
    for (float alpha : {0.99999994f, -2.0f, notANumber, infinity, 1e5f, 720.0f}) {
        expect(vornStsBadArgErr, 4, 8.0f, 1.0f, alpha);
    }
    // L is 0xFFFFFFE at most, and no single gives just that.
    expect(vornStsBadArgErr, 2, 268435456.0f, 1.0f, 1.0f);
    expect(vornStsBadArgErr, INT_MAX, 1.0f, 1.0f, 1.0f);
    State* state = nullptr;
    ASSERT_EQ(make(&state, INT_MAX, 1, 1e-9f, 1.0f, 700.0f), vornStsNoErr) << "few points of many a sample";
    EXPECT_EQ(release(state), vornStsNoErr);
    EXPECT_EQ(release(static_cast<State*>(nullptr)), vornStsNullPtrErr);
}

TYPED_TEST(VariableForm, MemoryFailure) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer has its own allocator";
    using State = typename StatesOf<TypeParam>::Variable;
    const VornStatus first = std::is_same_v<TypeParam, Vorn16s> ? vornStsNullPtrErr : vornStsMemAllocErr;
    for (int hint : {1, 2}) {
        State* state = nullptr;
        int calls;
        {
            test::FailAllocation count(0);
            ASSERT_EQ(make(&state, 8, hint, 6.0f, 0.9f, 4.0f), vornStsNoErr);
            release(state);
            calls = count.calls();
            EXPECT_EQ(count.outstanding(), 0);
        }
        EXPECT_GE(calls, 1);
        for (int n = 1; n <= calls; ++n) {
            state = nullptr;
            test::FailAllocation fail(n);
            EXPECT_EQ(make(&state, 8, hint, 6.0f, 0.9f, 4.0f), n == 1 ? first : vornStsMemAllocErr);
            EXPECT_EQ(state, nullptr);
            EXPECT_EQ(fail.outstanding(), 0);
        }
    }
}

}  // namespace
