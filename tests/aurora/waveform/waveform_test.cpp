// Waveform processing: frames whose peaks are known, and any frames beside the plain model.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "model/waveform.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Random;
using test::sameBits;

struct Singles {
    using Sample = Vorn32f;
    using Model = model::WaveSingles;
    static constexpr auto process = vornsWaveProcessing_Aurora_32f;
};
struct Shorts {
    using Sample = Vorn16s;
    using Model = model::WaveShorts;
    static constexpr auto process = vornsWaveProcessing_Aurora_16s;
};

template <class Form>
std::vector<typename Form::Sample> processed(const std::vector<typename Form::Sample>& x) {
    const Guarded<typename Form::Sample> src(x);
    Guarded<typename Form::Sample> dst(200);
    EXPECT_EQ(Form::process(src, dst), vornStsNoErr);
    EXPECT_TRUE(dst.surroundingsUntouched());
    return dst.values();
}

// What is done to each sample: lowered '.', kept '-', raised '^'.
template <class Form>
std::string treatment(const std::vector<typename Form::Sample>& x) {
    using M = typename Form::Model;
    const auto y = processed<Form>(x);
    std::string text;
    for (std::size_t n = 0; n < 200; ++n) {
        const char* found = "?";
        if (y[n] == M::weighted(M::background, x[n])) found = ".";
        if (y[n] == M::weighted(M::edge, x[n])) found = "-";
        if (y[n] == M::weighted(M::boosted, x[n])) found = "^";
        text += found;
    }
    return text;
}

// The same from stretches by hand: raised from begin to before end, two samples kept at each border inside the frame.
struct Stretch {
    int begin, end;
};
std::string stretches(const std::vector<Stretch>& raised) {
    std::string text(200, '.');
    for (const auto& [begin, end] : raised) {
        std::fill(text.begin() + begin, text.begin() + end, '^');
        if (begin > 0) text[static_cast<std::size_t>(begin) - 1] = text[static_cast<std::size_t>(begin)] = '-';
        if (end < 200) text[static_cast<std::size_t>(end) - 1] = text[static_cast<std::size_t>(end)] = '-';
    }
    return text;
}

template <class Form>
class Waveform : public testing::Test {
protected:
    using Sample = typename Form::Sample;
    static constexpr bool shorts = std::is_same_v<Sample, Vorn16s>;
    // The raised part of a spacing, in the unit of each form.
    static int span(int spacing) { return shorts ? spacing * 27 / 32 : spacing * 4 / 5; }

    // A level with a pulse on it. The level alone has no energy, the pulse and its two neighbours have: the sums are
    // largest, and equal, from three samples before the pulse on, and so the main peak is at P.
    static std::vector<Sample> pulse(int P) {
        std::vector<Sample> x(200, Sample(100));
        x[static_cast<std::size_t>(P + 3)] = 1000;
        return x;
    }
    static void expectModel(const std::vector<Sample>& x, const char* what, int turn) {
        const auto expected = model::processWave<typename Form::Model>(x);
        EXPECT_TRUE(sameBits(processed<Form>(x), expected.dst)) << what << ", frame " << turn;
    }
};
using Forms = testing::Types<Singles, Shorts>;
TYPED_TEST_SUITE(Waveform, Forms);

TYPED_TEST(Waveform, Silence) {
    using Sample = typename TypeParam::Sample;
    const std::vector<Sample> silence(200);
    EXPECT_EQ(processed<TypeParam>(silence), silence);
    const auto details = model::processWave<typename TypeParam::Model>(silence);
    EXPECT_EQ(details.fwdPeaks, (std::vector<int>{0, 25, 50, 75, 100, 125, 150, 175})) << "NF is 7";
    EXPECT_EQ(details.bwdPeaks, std::vector<int>{0}) << "NB is 0";
}

// A level has no energy either, and shows what is done to a frame whose peaks are 0, 25, ..., 175.
TYPED_TEST(Waveform, Level) {
    const int span = TestFixture::span(25);
    EXPECT_EQ(span, TestFixture::shorts ? 21 : 20);
    std::vector<Stretch> raised = {{0, span - 4}};
    for (int c = 25; c <= 175; c += 25) raised.push_back({c - 4, c - 4 + span});
    EXPECT_EQ(treatment<TypeParam>(std::vector<typename TypeParam::Sample>(200, 100)), stretches(raised));
}

TEST(WaveformLevels, WeightsOfSingles) {
    const auto y = processed<Singles>(std::vector<float>(200, 1.0f));
    EXPECT_EQ(y[0], 1.2f);
    EXPECT_EQ(y[14], 1.2f);
    EXPECT_EQ(y[15], 1.0f);
    EXPECT_EQ(y[16], 1.0f);
    EXPECT_EQ(y[17], 0.8f);
    EXPECT_EQ(y[19], 0.8f);
    EXPECT_EQ(y[20], 1.0f);
    EXPECT_EQ(y[21], 1.0f);
    EXPECT_EQ(y[22], 1.2f);
}

// 27/32, 1 and 38/32, to the nearest integer, ties to even, saturated.
TEST(WaveformLevels, WeightsOfShorts) {
    auto y = processed<Shorts>(std::vector<Vorn16s>(200, 1000));
    EXPECT_EQ(y[0], 1188) << "1187.5";
    EXPECT_EQ(y[15], 1188);
    EXPECT_EQ(y[16], 1000);
    EXPECT_EQ(y[17], 1000);
    EXPECT_EQ(y[18], 844) << "843.75";
    EXPECT_EQ(y[19], 844);
    EXPECT_EQ(y[20], 1000);
    EXPECT_EQ(y[21], 1000);
    EXPECT_EQ(y[22], 1188);
    y = processed<Shorts>(std::vector<Vorn16s>(200, 32767));
    EXPECT_EQ(y[0], 32767) << "saturated";
    EXPECT_EQ(y[16], 32767);
    EXPECT_EQ(y[18], 27647) << "27647.16";
    y = processed<Shorts>(std::vector<Vorn16s>(200, -32768));
    EXPECT_EQ(y[0], -32768) << "saturated";
    EXPECT_EQ(y[18], -27648);
    y = processed<Shorts>(std::vector<Vorn16s>(200, 16));
    EXPECT_EQ(y[18], 14) << "13.5";
    y = processed<Shorts>(std::vector<Vorn16s>(200, 8));
    EXPECT_EQ(y[0], 10) << "9.5";
}

// No peak is looked for before 25: the frame is lowered up to the first stretch.
TYPED_TEST(Waveform, MainPeakAt25) {
    const int span = TestFixture::span(25);
    std::vector<Stretch> raised;
    for (int c = 25; c <= 175; c += 25) raised.push_back({c - 4, c - 4 + span});
    const auto text = treatment<TypeParam>(TestFixture::pulse(25));
    EXPECT_EQ(text, stretches(raised));
    EXPECT_EQ(text.substr(0, 20), std::string(20, '.'));
}

// From 26 back the peak is one of the samples 0 and 1.
TYPED_TEST(Waveform, MainPeakAt26) {
    const int span = TestFixture::span(26), rest = TestFixture::span(25);
    EXPECT_EQ(span, TestFixture::shorts ? 21 : 20);
    std::vector<Stretch> raised = {{0, span - 4}, {22, 22 + rest}};
    for (int c = 51; c <= 176; c += 25) raised.push_back({c - 4, c - 4 + rest});
    EXPECT_EQ(treatment<TypeParam>(TestFixture::pulse(26)), stretches(raised));

    // The sum around sample 1 reaches the slope that begins behind sample 4, the one around sample 0 does not.
    auto x = TestFixture::pulse(26);
    for (std::size_t n = 6; n < 9; ++n) x[n] = 110;
    const auto details = model::processWave<typename TypeParam::Model>(x);
    EXPECT_EQ(details.peaks[0], 1);
    raised[0] = {0, 1 - 4 + TestFixture::span(25)};
    EXPECT_EQ(treatment<TypeParam>(x), stretches(raised));
}

// The next peak would lie at 199, the last sample.
TYPED_TEST(Waveform, MainPeakAt174) {
    const int far = TestFixture::span(79), near = TestFixture::span(25);
    EXPECT_EQ(far, TestFixture::shorts ? 66 : 63);
    // 174, then 79 back to the first of equals: 95, and 16. Behind the last peak the frame ends in the stretch.
    EXPECT_EQ(treatment<TypeParam>(TestFixture::pulse(174)),
              stretches({{12, 12 + far}, {91, 91 + far}, {170, 170 + near}, {195, 200}}));
}

TYPED_TEST(Waveform, MainPeakAt175) {
    const int far = TestFixture::span(79);
    EXPECT_EQ(treatment<TypeParam>(TestFixture::pulse(175)), stretches({{13, 13 + far}, {92, 92 + far}, {171, 200}}));
}

// A first peak so early that its stretch begins with the frame: nothing is kept in front of it.
TYPED_TEST(Waveform, FirstPeakNearTheStart) {
    const int span = TestFixture::span(25);
    for (int P = 0; P <= 25; ++P) {
        std::vector<Stretch> raised;
        int c = P;
        for (; c < 175; c += 25) raised.push_back({std::max(c - 4, 0), c - 4 + span});
        raised.push_back({c - 4, std::min(c - 4 + span, 200)});
        const auto text = treatment<TypeParam>(TestFixture::pulse(P));
        EXPECT_EQ(text, stretches(raised)) << P;
        EXPECT_EQ(text[0], P <= 4 ? '^' : P == 5 ? '-' : '.') << P;
    }
}

// Voiced speech in the simplest shape: the frame is raised from each pulse on over half of the period, and lowered
// before the next one.
TYPED_TEST(Waveform, PulseTrains) {
    using Sample = typename TypeParam::Sample;
    constexpr int lastPulse = 190;
    for (int period = 25; period <= 79; ++period) {
        for (int first = 5; first < 25; first += 3) {
            std::vector<Sample> x(200, Sample(20));
            for (int m = first; m <= lastPulse; m += period) x[static_cast<std::size_t>(m)] = 600;
            const auto text = treatment<TypeParam>(x);
            for (int m = first; m + period <= lastPulse; m += period) {
                const auto length = static_cast<std::size_t>(period / 2 - 2);
                EXPECT_EQ(text.substr(static_cast<std::size_t>(m), length), std::string(length, '^'))
                    << period << " from " << first;
                // The sums are largest from three samples before a pulse on, and the stretch begins four earlier.
                EXPECT_EQ(text.substr(static_cast<std::size_t>(m + period - 10), 5), "..--^")
                    << period << ", " << first;
            }
        }
    }
}

// Frames of the kinds that the search and the sums may meet: signals, numbers over many orders of magnitude, in which a
// running sum keeps what a fresh one would not, and the ends of the range.
std::vector<float> singlesOf(int kind, Random& random) {
    std::vector<float> x(200);
    switch (kind) {
        case 0:
            return random.floats(200, -32768, 32767);
        case 1:
            for (float& v : x) v = static_cast<float>(random.integer(-2, 2));
            return x;
        case 2:
            for (float& v : x) v = static_cast<float>(std::ldexp(random.uniform(-1, 1), int(random.integer(0, 14))));
            return x;
        case 3:
            for (int n = 0; n < 200; ++n) {
                x[static_cast<std::size_t>(n)] = static_cast<float>(random.uniform(-1, 1) * std::exp(-n / 6.0) * 1e4);
            }
            return x;
        case 4:
            return random.floats(200, -1e-20, 1e-20);
        case 5:
            return random.floats(200, -1e18, 1e18);
        default:
            x = random.pick(test::hardFloats<float>(), 200);
            for (float& v : x) v = std::abs(v) < 1e18f ? v : 1.0f;  // nothing overflows
            return x;
    }
}
constexpr int kindsOfSingles = 7;

std::vector<Vorn16s> shortsOf(int kind, Random& random) {
    switch (kind) {
        case 0:
            return random.integers<Vorn16s>(200);
        case 1:
            return random.integers<Vorn16s>(200, -2, 2);
        case 2:
            return random.integers<Vorn16s>(200, -3000, 3000);
        default:
            return random.pick(std::vector<Vorn16s>{-32768, 32767, -32767, 0, 1}, 200);
    }
}
constexpr int kindsOfShorts = 4;

template <class Form>
std::vector<typename Form::Sample> frameOf(int turn, Random& random) {
    if constexpr (std::is_same_v<Form, Singles>) return singlesOf(turn % kindsOfSingles, random);
    if constexpr (std::is_same_v<Form, Shorts>) return shortsOf(turn % kindsOfShorts, random);
}

TYPED_TEST(Waveform, EqualsTheModel) {
    Random random(11);
    for (int turn = 0; turn < 2100; ++turn) {
        TestFixture::expectModel(frameOf<TypeParam>(turn, random), "nearest", turn);
    }
}

// Singles round in the caller's mode, integers know none.
TYPED_TEST(Waveform, EveryRoundingMode) {
    using test::RoundingMode;
    for (unsigned mode : {RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        Random random(12);
        for (int turn = 0; turn < 300; ++turn) {
            const auto x = frameOf<TypeParam>(turn, random);
            const RoundingMode scope(mode);
            TestFixture::expectModel(x, "directed", turn);
        }
    }
}

// Whatever the sums are, every peak stands at least 25 behind the one before it, and each treatment is one of three.
TYPED_TEST(Waveform, AnyFrameIsTreatedInOneOfThreeWays) {
    Random random(13);
    for (int turn = 0; turn < 500; ++turn) {
        auto x = frameOf<TypeParam>(turn, random);
        for (auto& v : x) v = std::abs(v) < 100 || std::abs(v) > 20000 ? 100 : v;  // three ways to be told apart
        const auto text = treatment<TypeParam>(x);
        EXPECT_EQ(text.find('?'), std::string::npos) << text;
        // Two peaks or more, and their stretches keep apart: at least one sample in five is lowered between them.
        std::vector<std::size_t> begins;
        for (std::size_t n = 0; n < 200; ++n) {
            if (text[n] == '^' && (n == 0 || text[n - 1] != '^')) begins.push_back(n);
        }
        EXPECT_GE(begins.size(), 2u) << text;
        for (std::size_t k = 1; k < begins.size(); ++k) {
            const std::size_t spacing = begins[k] - begins[k - 1];
            EXPECT_GE(spacing, k == 1 ? 20u : 25u) << text;
            EXPECT_LE(spacing, 81u) << text;
        }
    }
}

TYPED_TEST(Waveform, InPlaceAndAtAnyAddress) {
    using Sample = typename TypeParam::Sample;
    Random random(14);
    for (std::size_t shift = 0; shift < 64; shift += sizeof(Sample)) {
        const auto x = frameOf<TypeParam>(0, random);
        const auto expected = model::processWave<typename TypeParam::Model>(x).dst;
        test::Offset<Sample> src(200, shift), dst(200, (shift * 5 + sizeof(Sample)) % 64);
        src.assign(x);
        ASSERT_EQ(TypeParam::process(src, dst), vornStsNoErr);
        EXPECT_TRUE(sameBits(dst.values(), expected)) << shift;
        EXPECT_TRUE(dst.surroundingsUntouched());
        EXPECT_TRUE(sameBits(src.values(), x)) << "src is only read";
        ASSERT_EQ(TypeParam::process(src, src), vornStsNoErr);
        EXPECT_TRUE(sameBits(src.values(), expected)) << shift;
        EXPECT_TRUE(src.surroundingsUntouched());
    }
}

// Infinities and not-a-numbers: the call ends and stays inside, and the search is still that of a scan.
TEST(WaveformHardFrames, NotANumber) {
    Random random(15);
    const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    for (int turn = 0; turn < 3000; ++turn) {
        auto x = singlesOf(turn % kindsOfSingles, random);
        if (turn % 3 == 0) {
            for (float& v : x) v = random.anyBits<float>();
        } else if (turn % 3 == 1) {
            x[static_cast<std::size_t>(random.integer(0, 199))] = turn % 2 ? nan : inf;
        } else {
            x = random.pick(std::vector<float>{nan, -nan, inf, -inf, 1e30f, 3e38f, 0.0f, 1.0f}, 200);
        }
        const auto y = processed<Singles>(x);
        for (std::size_t n = 0; n < 200; ++n) {
            const float ways[] = {0.8f * x[n], x[n], 1.2f * x[n]};
            EXPECT_TRUE(std::any_of(ways, ways + 3, [&](float way) { return test::same(y[n], way); })) << turn;
        }
        EXPECT_TRUE(sameBits(y, model::processWave<model::WaveSingles>(x).dst)) << turn;
    }
}

TYPED_TEST(Waveform, ChecksInOrder) {
    using Sample = typename TypeParam::Sample;
    struct Arguments {
        Guarded<Sample> in = Guarded<Sample>(std::vector<Sample>(200)), out = Guarded<Sample>(200);
        const Sample* src = in.data();
        Sample* dst = out.data();
    };
    using A = Arguments;
    test::expectCheckOrder<A>([] { return A(); }, [](A& a) { return TypeParam::process(a.src, a.dst); },
                              [](A& a) { return a.out.untouched(); },
                              {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }}});
}

}  // namespace
