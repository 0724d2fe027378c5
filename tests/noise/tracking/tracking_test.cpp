// Noise tracking.
#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

#include "model/tracking.h"
#include "noise/tracking/parameters.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/recorded_frames.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using model::Tracker;
using model::TrackerFields;
using test::Guarded;
using test::Random;
using test::sameBits;

// The two forms under one name.
template <class T>
struct Form;
template <>
struct Form<Vorn32f> {
    static constexpr auto getSize = vornsGetSizeMCRA_32f;
    static constexpr auto init = vornsInitMCRA_32f;
    static constexpr auto altInit = vornsAltInitMCRA_32f;
    static constexpr auto update = vornsUpdateNoisePSDMCRA_32f_I;
    static TrackerFields<Vorn32f> fields(int rate, int len, int hop) { return model::trackerOfSingles(rate, len, hop); }
};
template <>
struct Form<Vorn32s> {
    static constexpr auto getSize = vornsGetSizeMCRA_32s;
    static constexpr auto init = vornsInitMCRA_32s;
    static constexpr auto altInit = vornsAltInitMCRA_32s;
    static constexpr auto update = vornsUpdateNoisePSDMCRA_32s_I;
    static TrackerFields<Vorn32s> fields(int rate, int len, int hop) {
        return model::trackerOfIntegers(rate, len, hop);
    }
};

template <class T>
class NoiseTracking : public ::testing::Test {};
using Elements = ::testing::Types<Vorn32f, Vorn32s>;
TYPED_TEST_SUITE(NoiseTracking, Elements);

VornsMCRAState* stateAt(unsigned char* block) { return reinterpret_cast<VornsMCRAState*>(block); }

template <class T>
::testing::AssertionResult sameFields(const TrackerFields<T>& a, const TrackerFields<T>& b) {
    const std::vector<std::int32_t> x = {a.sampleFreq, a.fftLen,   a.halfBits,  a.hop,
                                         a.minWindow,  a.frameIdx, a.firstFrame},
                                    y = {b.sampleFreq, b.fftLen,   b.halfBits,  b.hop,
                                         b.minWindow,  b.frameIdx, b.firstFrame};
    if (const auto integers = sameBits(x, y); !integers) return integers;
    return sameBits(&a.alphaD, &b.alphaD, 4) << " (parameters)";
}

// A tracker of the library beside one of the model. The block is guarded; it may begin at any byte.
template <class T>
class Pair {
public:
    Pair(int rate, int fftLen, int hop = 0, std::size_t offset = 0)
        : block_(sizeOf(fftLen) + offset),
          offset_(offset),
          in_(static_cast<std::size_t>(fftLen / 2 + 1)),
          out_(static_cast<std::size_t>(fftLen / 2 + 1)) {
        const VornStatus status =
            hop == 0 ? Form<T>::init(rate, fftLen, state()) : Form<T>::altInit(rate, fftLen, hop, state());
        EXPECT_EQ(status, vornStsNoErr);
        tracker.fields = Form<T>::fields(rate, fftLen, hop);
        noise.resize(tracker.bins());
        EXPECT_TRUE(sameFields(TrackerFields<T>::of(bytes()), tracker.fields)) << rate << ", " << fftLen << ", " << hop;
    }
    VornsMCRAState* state() { return stateAt(bytes()); }
    unsigned char* bytes() { return block_.data() + offset_; }

    // Other parameters for both.
    void take(TrackerFields<T> fields) {
        std::memcpy(fields.array, TrackerFields<T>::of(bytes()).array, sizeof fields.array);
        fields.into(bytes());
        tracker.fields = fields;
    }
    // Other spectra for both.
    void take(const std::vector<T>& presence, const std::vector<T>& smoothed, const std::vector<T>& minimum,
              const std::vector<T>& tempMinimum) {
        tracker.presence = presence, tracker.smoothed = smoothed, tracker.minimum = minimum;
        tracker.tempMinimum = tempMinimum;
        std::size_t array = 0;
        for (const auto* values : {&presence, &smoothed, &minimum, &tempMinimum}) {
            std::memcpy(bytes() + 88 + array++ * values->size() * sizeof(T), values->data(),
                        values->size() * sizeof(T));
        }
    }

    ::testing::AssertionResult frame(const std::vector<T>& power) {
        in_.assign(power);
        out_.assign(noise);
        model::updateTracker(tracker, power, noise);
        if (Form<T>::update(in_, state(), out_) != vornStsNoErr) return ::testing::AssertionFailure() << "a status";
        if (frames_++ % 64 < 8 && !(out_.surroundingsUntouched() && block_.surroundingsUntouched())) {
            return ::testing::AssertionFailure() << "written outside";
        }
        if (std::memcmp(in_.data(), power.data(), power.size() * sizeof(T)) != 0) {
            return ::testing::AssertionFailure() << "the input was written";
        }
        if (const auto same = sameBits(out_.data(), noise.data(), noise.size()); !same) return same;
        return record();
    }

    ::testing::AssertionResult record() {
        const auto fields = TrackerFields<T>::of(bytes());
        if (const auto same = sameFields(fields, tracker.fields); !same) return same;
        const std::vector<T>* expected[] = {&tracker.presence, &tracker.smoothed, &tracker.minimum,
                                            &tracker.tempMinimum};
        for (std::size_t array = 0; array < 4; ++array) {
            const unsigned char* at = bytes() + 88 + array * tracker.bins() * sizeof(T);
            if (reinterpret_cast<const unsigned char*>(fields.array[array]) != at) {
                return ::testing::AssertionFailure() << "array " << array << " stands elsewhere";
            }
            std::vector<T> values(tracker.bins());
            std::memcpy(values.data(), at, values.size() * sizeof(T));
            if (auto same = sameBits(values, *expected[array]); !same) return same << " of array " << array;
        }
        return ::testing::AssertionSuccess();
    }

    Tracker<T> tracker;
    std::vector<T> noise;

private:
    static std::size_t sizeOf(int fftLen) {
        int size = 0;
        EXPECT_EQ(Form<T>::getSize(fftLen, &size), vornStsNoErr);
        return static_cast<std::size_t>(size);
    }
    Guarded<unsigned char> block_;
    std::size_t offset_;
    Guarded<T> in_, out_;
    int frames_ = 0;
};

// Powers of noise: exponentially distributed around a level.
template <class T>
std::vector<T> powers(Random& random, std::size_t bins, double level) {
    std::vector<T> values(bins);
    for (T& x : values) {
        const double power = -level * std::log(1.0 - random.uniform(0.0, 1.0));
        x = static_cast<T>(std::min(power, std::is_integral_v<T> ? 2147483647.0 : power));
    }
    return values;
}

template <class T>
std::vector<T> anyPatterns(Random& random, std::size_t bins) {
    std::vector<T> values(bins);
    for (T& x : values) x = random.anyBits<T>();
    return values;
}

TYPED_TEST(NoiseTracking, EqualsTheModelAtEveryLength) {
    using T = TypeParam;
    Random random(1);
    std::vector<int> lengths = {100, 127, 128, 129, 240, 255, 256, 257, 320, 511, 512, 1000, 4096, 8191, 8192};
    for (int len = 8; len <= 75; ++len) lengths.push_back(len);
    for (int len : lengths) {
        // Windows of five frames and of one.
        for (int hop : {0, std::min(len / 2, 48000 * 8 / 320)}) {
            Pair<T> pair(hop == 0 ? 48000 : 8000, len, hop);
            auto fields = pair.tracker.fields;
            if (hop == 0) fields.minWindow = 5;
            pair.take(fields);
            for (int frame = 0; frame < 14; ++frame) {
                ASSERT_TRUE(pair.frame(powers<T>(random, pair.tracker.bins(), frame % 4 == 3 ? 3e7 : 1e5)))
                    << "length " << len << ", hop " << hop << ", frame " << frame;
            }
        }
    }
}

// Records as no initialisation makes them: parameters, spectra and powers of any bit pattern.
TYPED_TEST(NoiseTracking, EqualsTheModelOnAnyBits) {
    using T = TypeParam;
    Random random(2);
    const auto hard = [] {
        if constexpr (std::is_integral_v<T>) {
            return test::hardIntegers<T>();
        } else {
            return test::hardFloats<T>();
        }
    }();
    for (int turn = 0; turn < 600; ++turn) {
        const int len = static_cast<int>(random.integer(8, 90));
        Pair<T> pair(16000, len);
        const std::size_t bins = pair.tracker.bins();
        const bool picked = turn % 2 == 0;
        const auto some = [&] { return picked ? random.pick(hard, bins) : anyPatterns<T>(random, bins); };
        auto fields = pair.tracker.fields;
        const auto parameters = picked ? random.pick(hard, 4) : anyPatterns<T>(random, 4);
        if (turn % 3 != 0) {
            fields.alphaD = parameters[0];
            fields.alphaP = parameters[1];
            fields.alphaS = parameters[2];
            fields.delta = parameters[3];
        }
        fields.firstFrame = 0;
        fields.minWindow = 3;
        fields.frameIdx = turn % 4;
        pair.take(fields);
        pair.take(some(), some(), some(), some());
        pair.noise = some();
        for (int frame = 0; frame < 3; ++frame) {
            ASSERT_TRUE(pair.frame(some())) << "turn " << turn << ", length " << len << ", frame " << frame;
        }
    }
}

// Over many windows, the whole record after every frame.
template <class T>
void longRun(int rate, int fftLen, const std::function<std::vector<T>(int)>& power, const char* what) {
    Pair<T> pair(rate, fftLen);
    for (int frame = 0; frame < 10000; ++frame) ASSERT_TRUE(pair.frame(power(frame))) << what << ", frame " << frame;
}

TYPED_TEST(NoiseTracking, TenThousandFramesEqualTheModel) {
    using T = TypeParam;
    constexpr int len = 30;
    constexpr std::size_t bins = 16;
    const T most = std::is_integral_v<T> ? std::numeric_limits<T>::max() : T(3e38);
    const auto flat = [&](T x) { return std::vector<T>(bins, x); };
    Random random(3);
    longRun<T>(
        16000, len, [&](int) { return flat(T(0)); }, "silence");
    longRun<T>(
        8000, len, [&](int) { return flat(most); }, "full scale");
    longRun<T>(
        16000, len, [&](int) { return powers<T>(random, bins, 1e6); }, "noise");
    longRun<T>(
        48000, len, [&](int frame) { return powers<T>(random, bins, (frame / 700) % 2 != 0 ? 2e8 : 3e3); }, "steps");
    longRun<T>(
        16000, len, [&](int frame) { return frame < 50 ? flat(T(0)) : flat((frame / 9) % 2 != 0 ? most : T(1)); },
        "silence, then full scale on and off");
    if constexpr (!std::is_integral_v<T>) {
        longRun<T>(
            16000, len,
            [&](int frame) {
                auto in = powers<T>(random, bins, 1e6);
                if (frame % 1000 == 7) in[static_cast<std::size_t>(frame / 1000)] = std::nanf("");
                return in;
            },
            "not-a-numbers on the way");
        longRun<T>(
            16000, len, [&](int) { return flat(std::nanf("")); }, "not-a-numbers");
    }
}

TYPED_TEST(NoiseTracking, RecordingsEqualTheModel) {
    using T = TypeParam;
    const auto frames = test::recordedFrames(VORNSR_RECORDINGS "/test", 10, 129);
    ASSERT_GE(frames.height, 300) << "recordings in " << VORNSR_RECORDINGS;
    Pair<T> pair(8000, 256, 80);
    EXPECT_EQ(pair.tracker.fields.minWindow, 100);
    for (int frame = 0; frame < frames.height; ++frame) {
        std::vector<T> in(129);
        for (std::size_t k = 0; k < in.size(); ++k) {
            const double magnitude = std::exp(frames.rows[static_cast<std::size_t>(frame) * 129 + k]) - 1;
            in[k] = static_cast<T>(std::min(magnitude * magnitude * 0.01, 2e9));
        }
        ASSERT_TRUE(pair.frame(in)) << "frame " << frame;
    }
}

// ---- Parameters.

TYPED_TEST(NoiseTracking, Sizes) {
    using T = TypeParam;
    int size = 0;
    ASSERT_EQ(Form<T>::getSize(8, &size), vornStsNoErr);
    EXPECT_EQ(size, 168);
    ASSERT_EQ(Form<T>::getSize(9, &size), vornStsNoErr);
    EXPECT_EQ(size, 168);
    ASSERT_EQ(Form<T>::getSize(256, &size), vornStsNoErr);
    EXPECT_EQ(size, 2152);
    ASSERT_EQ(Form<T>::getSize(8192, &size), vornStsNoErr);
    EXPECT_EQ(size, 65640);
    size = 77;
    for (int len : {7, 0, -8, 8193, INT_MIN, INT_MAX}) EXPECT_EQ(Form<T>::getSize(len, &size), vornStsSizeErr) << len;
    EXPECT_EQ(size, 77);
    EXPECT_EQ(Form<T>::getSize(7, nullptr), vornStsNullPtrErr);
}

template <class T>
TrackerFields<T> fieldsOf(int rate, int len, int hop) {
    std::vector<unsigned char> block(66000);
    EXPECT_EQ(hop == 0 ? Form<T>::init(rate, len, stateAt(block.data()))
                       : Form<T>::altInit(rate, len, hop, stateAt(block.data())),
              vornStsNoErr);
    return TrackerFields<T>::of(block.data());
}

TEST(NoiseTrackingParameters, OfSingles) {
    const auto f = fieldsOf<Vorn32f>(16000, 256, 0);
    EXPECT_EQ(f.sampleFreq, 16000);
    EXPECT_EQ(f.fftLen, 256);
    EXPECT_EQ(f.halfBits, 8);
    EXPECT_EQ(f.hop, 128);
    EXPECT_EQ(f.minWindow, 125);
    EXPECT_EQ(f.frameIdx, 0);
    EXPECT_EQ(f.firstFrame, 1);
    EXPECT_EQ(f.alphaD, 0.7f) << "one frame is one stretch of 8 ms";
    EXPECT_EQ(f.alphaS, 0.8f);
    EXPECT_EQ(f.alphaP, 0.2f);
    EXPECT_EQ(f.delta, 5.0f);
    EXPECT_EQ(fieldsOf<Vorn32f>(8000, 8, 0).halfBits, 3);
    EXPECT_EQ(fieldsOf<Vorn32f>(44100, 8, 0).minWindow, 11025) << "88.2, rounded to single, times 125 in single";
    EXPECT_EQ(fieldsOf<Vorn32f>(8004, 8, 0).minWindow, 2000) << "the quotient is rounded once, from double";
    // Over 32, not over 50; the other form goes over its advance.
    EXPECT_EQ(fieldsOf<Vorn32f>(16000, 100, 0).minWindow, 500);
    EXPECT_EQ(fieldsOf<Vorn32f>(16000, 100, 0).hop, 50);
    EXPECT_EQ(fieldsOf<Vorn32f>(16000, 100, 50).minWindow, 320);
    EXPECT_EQ(fieldsOf<Vorn32f>(8000, 8192, 0).minWindow, 1);
    EXPECT_EQ(fieldsOf<Vorn32f>(48000, 8192, 1).minWindow, 48000);
    const auto slow = fieldsOf<Vorn32f>(8000, 8192, 4096);
    EXPECT_EQ(slow.alphaP, std::numeric_limits<float>::denorm_min()) << "0.2^64 = 1.3 of the smallest single";
    EXPECT_NEAR(slow.alphaD, 1.2197604e-10, 1e-16);
}

TEST(NoiseTrackingParameters, OfIntegers) {
    const auto f = fieldsOf<Vorn32s>(16000, 256, 0);
    EXPECT_EQ(f.hop, 128);
    EXPECT_EQ(f.minWindow, 125);
    EXPECT_EQ(f.delta, 0x28000);
    // The cubic at ln 0.7, ln 0.8 and ln(0.2)/8 is 0.6993713, 0.7999014 and, to the eighth power, 0.1998793.
    EXPECT_NEAR(f.alphaD * 0x1p-31, 0.69937, 1e-4);
    EXPECT_NEAR(f.alphaS * 0x1p-31, 0.79990, 1e-4);
    EXPECT_NEAR(f.alphaP * 0x1p-31, 0.19988, 2e-4);
    EXPECT_EQ(fieldsOf<Vorn32s>(16000, 100, 0).minWindow, 500);
    EXPECT_EQ(fieldsOf<Vorn32s>(16000, 100, 50).minWindow, 320);
    EXPECT_EQ(fieldsOf<Vorn32s>(8000, 8192, 0).minWindow, 1);
    EXPECT_EQ(fieldsOf<Vorn32s>(48000, 8192, 1).minWindow, 47999 + 1);
}

// Windows of integers are within a frame or two of those of singles, and small advances give nearly the same powers.
TEST(NoiseTrackingParameters, BothFormsSayTheSame) {
    for (int rate : {8000, 11025, 16000, 22050, 32000, 44100, 48000}) {
        for (int len : {8, 64, 100, 256, 400, 512, 1000, 1024, 8192}) {
            for (int hop : {0, 1, len / 5 + 1, len / 2}) {
                const auto a = fieldsOf<Vorn32f>(rate, len, hop);
                const auto b = fieldsOf<Vorn32s>(rate, len, hop);
                EXPECT_NEAR(a.minWindow, b.minWindow, 2 + a.minWindow * 3e-3) << rate << ' ' << len << ' ' << hop;
                if (a.hop * 125.0 / rate > 1.0) continue;
                EXPECT_NEAR(a.alphaD, b.alphaD * 0x1p-31, 1e-3) << rate << ' ' << len << ' ' << hop;
                EXPECT_NEAR(a.alphaS, b.alphaS * 0x1p-31, 1e-3);
                EXPECT_NEAR(a.alphaP, b.alphaP * 0x1p-31, 1e-3);
            }
        }
    }
}

// The powers are the nearest singles. Of all rates and advances five are so near the middle of two singles that the
// last three bits of a double matter; they come first.
TEST(NoiseTrackingParameters, PowersAreTheNearestSingles) {
    using test::Precise;
    const Precise lnD = log(Precise(0.7)), lnS = log(Precise(0.8)), lnP = log(Precise(0.2));
    std::vector<unsigned char> block(66000);
    Random random(7);
    const auto expectNearest = [&](int rate, int hop) {
        ASSERT_EQ(vornsAltInitMCRA_32f(rate, 8192, hop, stateAt(block.data())), vornStsNoErr);
        const auto f = TrackerFields<Vorn32f>::of(block.data());
        const float x = static_cast<float>(hop) * 125.0f / static_cast<float>(rate);
        const Precise exponent(static_cast<double>(x));
        ASSERT_EQ(f.alphaD, exp(exponent * lnD).toFloat()) << rate << ", " << hop;
        ASSERT_EQ(f.alphaS, exp(exponent * lnS).toFloat()) << rate << ", " << hop;
        ASSERT_EQ(f.alphaP, exp(exponent * lnP).toFloat()) << rate << ", " << hop;
    };
    const std::pair<int, int> nearTies[] = {{13144, 397}, {26288, 794}, {39432, 1191}, {29121, 59}, {33424, 289}};
    for (const auto& [rate, hop] : nearTies) expectNearest(rate, hop);
    for (int rate : {8000, 11025, 16000, 44100, 48000}) {
        for (int hop = 1; hop <= 4096; hop += 3) expectNearest(rate, hop);
    }
    for (int i = 0; i < 8000; ++i) {
        expectNearest(static_cast<int>(random.integer(8000, 48000)), static_cast<int>(random.integer(1, 4096)));
    }
}

// Within 1.02 units in the last place of a double, before they are rounded to single.
TEST(NoiseTrackingParameters, PowersInDouble) {
    using test::Precise;
    namespace bases = vorn::tracking::bases;
    const std::pair<double, vorn::tracking::Logarithm> powers[] = {{0.7, {bases::alphaDHigh, bases::alphaDLow}},
                                                                   {0.8, {bases::alphaSHigh, bases::alphaSLow}},
                                                                   {0.2, {bases::alphaPHigh, bases::alphaPLow}}};
    Random random(10);
    test::Worst worst;
    for (const auto& [base, parts] : powers) {
        const Precise logarithm = log(Precise(base));
        for (int i = 0; i < 10000; ++i) {
            const auto x =
                static_cast<float>(i < 5000 ? random.uniform(0.002, 64.0) : std::exp2(random.uniform(-9, 6)));
            const Precise exact = exp(Precise(static_cast<double>(x)) * logarithm);
            worst.meet(exact.distance<double>(vorn::tracking::power(parts, x)), static_cast<double>(x));
        }
    }
    EXPECT_LE(worst.distance, 1.02) << worst.text();
}

TYPED_TEST(NoiseTracking, ParametersEqualTheModel) {
    using T = TypeParam;
    Random random(4);
    std::vector<unsigned char> block(66000);
    for (int i = 0; i < 6000; ++i) {
        const int rate = static_cast<int>(random.integer(8000, 48000)), len = static_cast<int>(random.integer(8, 8192));
        const int hop = i % 3 == 0 ? 0 : static_cast<int>(random.integer(1, i % 3 == 1 ? len / 2 : 4));
        std::fill(block.begin(), block.end(), static_cast<unsigned char>(0xA5));
        const VornStatus status = hop == 0 ? Form<T>::init(rate, len, stateAt(block.data()))
                                           : Form<T>::altInit(rate, len, hop, stateAt(block.data()));
        ASSERT_EQ(status, vornStsNoErr);
        ASSERT_TRUE(sameFields(TrackerFields<T>::of(block.data()), Form<T>::fields(rate, len, hop)))
            << rate << ", " << len << ", " << hop;
    }
}

// ---- What the numbers are for.

TYPED_TEST(NoiseTracking, AConstantIsItsOwnNoise) {
    using T = TypeParam;
    for (double level : {0.0, 1.0, 1000.0, 1e6, 5e8}) {
        std::vector<unsigned char> block(66000);
        ASSERT_EQ(Form<T>::init(16000, 256, stateAt(block.data())), vornStsNoErr);
        const std::vector<T> in(129, static_cast<T>(level));
        std::vector<T> noise(129, T(99));
        for (int frame = 0; frame < 1000; ++frame) {
            ASSERT_EQ(Form<T>::update(in.data(), stateAt(block.data()), noise.data()), vornStsNoErr);
            for (T x : noise) {
                if constexpr (std::is_integral_v<T>) {
                    ASSERT_EQ(x, in[0]) << "frame " << frame;
                } else {
                    ASSERT_NEAR(x, level, level * 2e-6) << "frame " << frame;
                }
            }
        }
    }
}

TYPED_TEST(NoiseTracking, AStepInTheNoiseIsFollowedWithinTwoWindows) {
    using T = TypeParam;
    for (double factor : {0.05, 30.0}) {
        std::vector<unsigned char> block(66000);
        ASSERT_EQ(Form<T>::init(16000, 256, stateAt(block.data())), vornStsNoErr);
        const int window = TrackerFields<T>::of(block.data()).minWindow;
        Random random(5);
        std::vector<T> noise(129);
        const auto meanOver = [&](int frames, double level) {
            double sum = 0;
            for (int frame = 0; frame < frames; ++frame) {
                const auto in = powers<T>(random, 129, level);
                EXPECT_EQ(Form<T>::update(in.data(), stateAt(block.data()), noise.data()), vornStsNoErr);
                for (T x : noise) sum += static_cast<double>(x);
            }
            return sum / (129.0 * frames);
        };
        meanOver(window, 1e6);
        EXPECT_NEAR(meanOver(window, 1e6) / 1e6, 1.0, 0.15);
        meanOver(2 * window, factor * 1e6);
        EXPECT_NEAR(meanOver(window, factor * 1e6) / (factor * 1e6), 1.0, 0.15) << factor;
    }
}

// A burst of one frame far above the minimum counts as speech and moves the noise less than recursive averaging would.
TYPED_TEST(NoiseTracking, ABurstHardlyMovesTheNoise) {
    using T = TypeParam;
    std::vector<unsigned char> block(66000);
    ASSERT_EQ(Form<T>::init(16000, 256, stateAt(block.data())), vornStsNoErr);
    std::vector<T> in(129, T(1000)), noise(129);
    for (int frame = 0; frame < 40; ++frame) Form<T>::update(in.data(), stateAt(block.data()), noise.data());
    in.assign(129, T(1000000));
    for (int frame = 0; frame < 5; ++frame) Form<T>::update(in.data(), stateAt(block.data()), noise.data());
    // Presence 0.8, 0.96, ... leaves 0.3 x (0.2 + 0.04 + 0.008 + ...) of it, plain averaging 0.83.
    EXPECT_GT(noise[0], T(60000));
    EXPECT_LT(noise[0], T(90000));
    Vorn32s bits;
    std::memcpy(&bits, block.data() + 88, 4);
    const double presence = std::is_integral_v<T> ? bits * 0x1p-31 : std::bit_cast<float>(bits);
    EXPECT_NEAR(presence, 1 - std::pow(0.2, 5), 1e-3);
}

TYPED_TEST(NoiseTracking, AWindowRestartsTheMinimum) {
    using T = TypeParam;
    Pair<T> pair(16000, 256);
    auto fields = pair.tracker.fields;
    fields.minWindow = 4;
    pair.take(fields);
    std::vector<int> counts;
    for (int frame = 0; frame < 10; ++frame) {
        ASSERT_TRUE(pair.frame(std::vector<T>(129, frame == 0 ? T(10) : T(1000))));
        counts.push_back(TrackerFields<T>::of(pair.bytes()).frameIdx);
    }
    EXPECT_EQ(counts, (std::vector<int>{1, 2, 3, 4, 1, 2, 3, 4, 1, 2}));
    // The low first frame is forgotten at the second restart, not at the first.
    EXPECT_GT(pair.tracker.minimum[0], T(500));
}

// ---- Addresses and modes.

TYPED_TEST(NoiseTracking, ABlockAtAnyAddress) {
    using T = TypeParam;
    Random random(6);
    for (std::size_t offset = 1; offset <= 16; ++offset) {
        for (int len : {8, 33, 256}) {
            Pair<T> pair(16000, len, 0, offset);
            for (int frame = 0; frame < 5; ++frame) {
                ASSERT_TRUE(pair.frame(powers<T>(random, pair.tracker.bins(), 1e6))) << offset;
            }
        }
    }
}

TYPED_TEST(NoiseTracking, NoiseMayBeTheInput) {
    using T = TypeParam;
    Random random(8);
    for (int len = 8; len < 400; len += len < 80 ? 1 : 37) {
        std::vector<unsigned char> block(66000), other(66000);
        Form<T>::init(16000, len, stateAt(block.data()));
        Form<T>::init(16000, len, stateAt(other.data()));
        for (int frame = 0; frame < 4; ++frame) {
            const auto in = powers<T>(random, static_cast<std::size_t>(len / 2 + 1), 1e6);
            auto apart = in;
            Guarded<T> both(in);
            ASSERT_EQ(Form<T>::update(in.data(), stateAt(block.data()), apart.data()), vornStsNoErr);
            ASSERT_EQ(Form<T>::update(both, stateAt(other.data()), both), vornStsNoErr);
            ASSERT_TRUE(sameBits(both.data(), apart.data(), in.size())) << len;
        }
    }
}

// Powers, windows and integer spectra are those of rounding to nearest; spectra in singles are rounded as the caller
// has it.
TYPED_TEST(NoiseTracking, InEveryRoundingMode) {
    using T = TypeParam;
    using test::RoundingMode;
    Random random(9);
    for (unsigned mode : {RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        for (int rate : {11025, 44100}) {
            for (int hop : {0, 37}) {
                std::vector<unsigned char> block(66000);
                {
                    const RoundingMode directed(mode);
                    ASSERT_EQ(hop == 0 ? Form<T>::init(rate, 300, stateAt(block.data()))
                                       : Form<T>::altInit(rate, 300, hop, stateAt(block.data())),
                              vornStsNoErr);
                    ASSERT_EQ(RoundingMode::current(), mode);
                }
                EXPECT_TRUE(sameFields(TrackerFields<T>::of(block.data()), Form<T>::fields(rate, 300, hop)));
            }
        }
        Pair<T> pair(16000, 70);
        for (int frame = 0; frame < 200; ++frame) {
            const auto power = powers<T>(random, pair.tracker.bins(), frame % 3 == 0 ? 2e9 : 1e6);
            Guarded<T> in(power), out(pair.noise);
            {
                const RoundingMode directed(mode);
                if (!std::is_integral_v<T>) model::updateTracker(pair.tracker, power, pair.noise);
                ASSERT_EQ(Form<T>::update(in, pair.state(), out), vornStsNoErr);
                ASSERT_EQ(RoundingMode::current(), mode);
            }
            if (std::is_integral_v<T>) model::updateTracker(pair.tracker, power, pair.noise);
            ASSERT_TRUE(sameBits(out.data(), pair.noise.data(), pair.noise.size())) << mode << ", frame " << frame;
            ASSERT_TRUE(pair.record()) << mode << ", frame " << frame;
        }
    }
}

// ---- Checks.

struct InitArguments {
    Guarded<unsigned char> block = Guarded<unsigned char>(168);
    VornsMCRAState* state = stateAt(block.data());
    int rate = 16000, len = 8, hop = 4;
    bool untouched() const { return block.untouched(); }
};

TYPED_TEST(NoiseTracking, ChecksOfInitialisationInOrder) {
    using T = TypeParam;
    using A = InitArguments;
    std::vector<test::Rule<A>> rules = {{"state", vornStsNullPtrErr, [](A& a) { a.state = nullptr; }},
                                        {"rate 7999", vornStsRangeErr, [](A& a) { a.rate = 7999; }},
                                        {"rate 48001", vornStsRangeErr, [](A& a) { a.rate = 48001; }},
                                        {"rate -1", vornStsRangeErr, [](A& a) { a.rate = INT_MIN; }},
                                        {"length 7", vornStsSizeErr, [](A& a) { a.len = 7, a.hop = 3; }},
                                        {"length 8193", vornStsSizeErr, [](A& a) { a.len = 8193; }},
                                        {"length huge", vornStsSizeErr, [](A& a) { a.len = INT_MAX; }}};
    const auto fresh = [] { return A(); };
    const auto clean = [](A& a) { return a.untouched(); };
    test::expectCheckOrder<A>(
        fresh, [](A& a) { return Form<T>::init(a.rate, a.len, a.state); }, clean, rules);
    rules.insert(rules.begin() + 4, {{"hop 0", vornStsRangeErr, [](A& a) { a.hop = 0; }},
                                     {"hop -3", vornStsRangeErr, [](A& a) { a.hop = -3; }},
                                     {"hop huge", vornStsRangeErr, [](A& a) { a.hop = INT_MAX; }}});
    rules.pop_back();  // so long that it allows any hop
    test::expectCheckOrder<A>(fresh, [](A& a) { return Form<T>::altInit(a.rate, a.len, a.hop, a.state); }, clean,
                              {rules[0], rules[1], rules[2], rules[3], rules[4], rules[5], rules[7]});
    A a;
    EXPECT_EQ(Form<T>::altInit(16000, 8, 5, a.state), vornStsRangeErr) << "half the length and one";
    EXPECT_EQ(Form<T>::altInit(16000, 9, 5, a.state), vornStsRangeErr);
    EXPECT_EQ(Form<T>::altInit(16000, 6, 4, a.state), vornStsRangeErr) << "the advance first";
    EXPECT_EQ(Form<T>::altInit(16000, 6, 3, a.state), vornStsSizeErr);
    EXPECT_EQ(Form<T>::altInit(16000, INT_MIN, 3, a.state), vornStsRangeErr);
    EXPECT_TRUE(a.untouched());
    EXPECT_EQ(Form<T>::init(8000, 8, a.state), vornStsNoErr);
    EXPECT_EQ(Form<T>::init(48000, 8, a.state), vornStsNoErr);
}

TYPED_TEST(NoiseTracking, ChecksOfUpdate) {
    using T = TypeParam;
    std::vector<unsigned char> block(168);
    ASSERT_EQ(Form<T>::init(16000, 8, stateAt(block.data())), vornStsNoErr);
    const auto before = block;
    std::vector<T> in(5, T(3));
    Guarded<T> noise(5);
    EXPECT_EQ(Form<T>::update(nullptr, stateAt(block.data()), noise), vornStsNullPtrErr);
    EXPECT_EQ(Form<T>::update(in.data(), nullptr, noise), vornStsNullPtrErr);
    EXPECT_EQ(Form<T>::update(in.data(), stateAt(block.data()), nullptr), vornStsNullPtrErr);
    EXPECT_TRUE(noise.untouched());
    EXPECT_EQ(block, before);
}

}  // namespace
