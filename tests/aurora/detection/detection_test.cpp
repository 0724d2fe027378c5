// Voice activity detection.
#include "model/detection.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/recorded_frames.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Random;
using test::RoundingMode;

constexpr int numberOfBands = 25, spectrumLength = 64;
constexpr int S = vornVADSpeech, N = vornVADNonSpeech, U = vornVADUndecided;

template <class T>
struct Calls;
template <>
struct Calls<Vorn32f> {
    using Tracker = Vorn32f;
    static constexpr auto size = vornsVADGetBufSize_Aurora_32f;
    static constexpr auto init = vornsVADInit_Aurora_32f;
    static constexpr auto decision = vornsVADDecision_Aurora_32f;
    static constexpr auto flush = vornsVADFlush_Aurora_32f;
};
template <>
struct Calls<Vorn16s> {
    using Tracker = Vorn32s;
    static constexpr auto size = vornsVADGetBufSize_Aurora_16s;
    static constexpr auto init = vornsVADInit_Aurora_16s;
    static constexpr auto decision = vornsVADDecision_Aurora_16s;
    static constexpr auto flush = vornsVADFlush_Aurora_16s;
};

template <class T>
using Record = model::DetectorRecord<typename Calls<T>::Tracker>;

// A detector in the caller's memory, on its own or beside the model.
template <class T>
class Detector {
public:
    explicit Detector(std::size_t misaligned = 0) : memory_(64 + misaligned), at_(misaligned) {
        EXPECT_EQ(Calls<T>::init(state()), vornStsNoErr);
    }
    VornsVADState* state() { return reinterpret_cast<VornsVADState*>(memory_.data() + at_); }
    int decide(const T* bands, const T* spectrum, int activity) {
        int result = 77;
        EXPECT_EQ(Calls<T>::decision(bands, spectrum, activity, &result, state()), vornStsNoErr);
        return result;
    }
    // Zeros are frames whose energy measure of -3 sets no flag after the first ones; see quiet() where that matters.
    int decide(const std::vector<T>& bands, const std::vector<T>& spectrum, int activity) {
        return decide(bands.data(), spectrum.data(), activity);
    }
    int flush() {
        int result = 77;
        EXPECT_EQ(Calls<T>::flush(&result, state()), vornStsNoErr);
        return result;
    }
    Record<T> record() const {
        Record<T> record;
        std::memcpy(&record, memory_.data() + at_, sizeof record);
        return record;
    }
    void setRecord(const Record<T>& record) { std::memcpy(memory_.data() + at_, &record, sizeof record); }
    bool surroundingsUntouched() const { return memory_.surroundingsUntouched(); }

private:
    Guarded<unsigned char> memory_;
    std::size_t at_;
};

template <class Tracker>
::testing::AssertionResult sameRecord(const model::DetectorRecord<Tracker>& a,
                                      const model::DetectorRecord<Tracker>& b) {
#define SAME(field)                                                                                \
    if (!test::same(a.field, b.field))                                                             \
    return ::testing::AssertionFailure() << #field << ": " << test::show(a.field) << ", expected " \
                                         << test::show(b.field)
    SAME(flagBands);
    SAME(flagLow);
    SAME(flagVar);
    SAME(onsetSeen);
    SAME(bandMean);
    SAME(lowTrack);
    SAME(bandTrack);
    SAME(varTrack);
    SAME(lowPrev);
    SAME(lowLast);
    SAME(ringHead);
    SAME(ringTail);
    SAME(hangReload);
    SAME(hangCount);
    SAME(shortHang);
    for (int place = 0; place < 7; ++place) SAME(ring[place]);
    SAME(frameCount);
#undef SAME
    return ::testing::AssertionSuccess();
}

// The detector and the model see the same frames.
template <class T>
class Both {
public:
    explicit Both(std::string about)
        : about_(std::move(about)), model_(model::newDetector<typename Calls<T>::Tracker>()) {}
    bool decide(const std::vector<T>& bands, const std::vector<T>& spectrum, int activity) {
        bands_.assign(bands), spectrum_.assign(spectrum);
        return same(detector_.decide(bands_, spectrum_, activity),
                    model::decideFrame(model_, bands.data(), spectrum.data(), activity));
    }
    bool flush() { return same(detector_.flush(), model::flushDetector(model_)); }
    int speech() const { return counts_[S]; }
    int count(int decision) const { return counts_[decision]; }
    const Record<T>& record() const { return model_; }

private:
    bool same(int decision, int expected) {
        ++counts_[expected];
        const auto records = sameRecord(detector_.record(), model_);
        EXPECT_EQ(decision, expected) << about_ << ", frame " << model_.frameCount;
        EXPECT_TRUE(records) << about_ << ", frame " << model_.frameCount;
        return decision == expected && records;
    }
    std::string about_;
    Guarded<T> bands_ = Guarded<T>(numberOfBands), spectrum_ = Guarded<T>(spectrumLength);
    Detector<T> detector_;
    Record<T> model_;
    int counts_[5] = {};
};

template <class T>
class Detection : public ::testing::Test {};
using Families = ::testing::Types<Vorn32f, Vorn16s>;
TYPED_TEST_SUITE(Detection, Families);

// ---- Against the model

constexpr int longRun = 10000;

// Frames as make(n) gives them, activity at random, and a flush at the end.
template <class T, class Make>
void run(Both<T>& both, int frames, Make make) {
    Random activity(7);
    std::vector<T> bands(numberOfBands), spectrum(spectrumLength);
    for (int n = 0; n < frames; ++n) {
        make(n, bands, spectrum);
        if (!both.decide(bands, spectrum, activity.next() % 16 == 0 ? 5 : 0)) return;
    }
    for (int n = 0; n < 20; ++n) {
        if (!both.flush()) return;
    }
}

template <class T>
T element(double x) {
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(x);
    } else {
        return static_cast<T>(std::lround(std::min(std::max(x, -32768.0), 32767.0)));
    }
}

TYPED_TEST(Detection, EqualsTheModelOnConstantFrames) {
    for (double value : {0.0, 1.0, 2.0, 7.0, 200.0, 32767.0, -32768.0, -1.0}) {
        Both<TypeParam> both("all " + std::to_string(value));
        run(both, value == 0.0 || value > 30000 ? longRun : 1000, [&](int, auto& bands, auto& spectrum) {
            bands.assign(bands.size(), element<TypeParam>(value));
            spectrum.assign(spectrum.size(), element<TypeParam>(value));
        });
    }
}

// Noise, and bursts of voices over it: stretches of frames with louder, less even spectra.
TYPED_TEST(Detection, EqualsTheModelOnVoicesInNoise) {
    for (double loudness : {1.0, 30.0, 900.0, 8000.0}) {
        Random random(static_cast<std::uint64_t>(loudness));
        Both<TypeParam> both("noise of " + std::to_string(loudness));
        run(both, longRun, [&](int n, auto& bands, auto& spectrum) {
            const double voice = n / 37 % 3 == 1 ? 1.0 + 4.0 * std::abs(std::sin(n * 0.11)) : 1.0;
            for (std::size_t i = 0; i < bands.size(); ++i) {
                const double shape = voice > 1.0 ? 1.0 + std::cos(static_cast<double>(i) * 0.5) : 1.0;
                bands[i] = element<TypeParam>(loudness * voice * shape * random.uniform(0.5, 1.5));
            }
            for (std::size_t i = 0; i < spectrum.size(); ++i) {
                const double shape = voice > 1.0 ? 1.0 + std::cos(static_cast<double>(i) * 0.3) : 1.0;
                spectrum[i] = element<TypeParam>(loudness * voice * shape * random.uniform(0.5, 1.5));
            }
        });
        EXPECT_GT(both.count(S), 500);
        // Louder noise than that wraps the trackers of the 16-bit form.
        if (std::is_floating_point_v<TypeParam> || loudness < 100.0) {
            EXPECT_GT(both.count(N), 100) << loudness;
        }
    }
}

// Every frame of another size, so that each test of a tracker falls on either side again and again.
TYPED_TEST(Detection, EqualsTheModelOnAnything) {
    for (std::uint64_t seed = 1; seed <= 6; ++seed) {
        Random random(seed);
        Both<TypeParam> both("frames of any size, seed " + std::to_string(seed));
        run(both, longRun / 2, [&](int, auto& bands, auto& spectrum) {
            const double exponent = random.uniform(0, seed % 2 == 0 ? 4.5 : 2.0);
            for (auto* x : {&bands, &spectrum}) {
                const double size = std::pow(10.0, exponent) * random.uniform(0.8, 1.2), low = seed < 4 ? 0.0 : -1.0;
                for (auto& v : *x) v = element<TypeParam>(size * random.uniform(low, 1.0));
            }
        });
        EXPECT_GT(both.count(S), 0);
    }
}

// Short lives: the first frames have most of the rules, and the count of the first long run decides the reload.
TYPED_TEST(Detection, EqualsTheModelFromManyStarts) {
    Random random(11);
    for (int life = 0; life < 400; ++life) {
        Both<TypeParam> both("life " + std::to_string(life));
        const int frames = static_cast<int>(random.integer(0, 60));
        const double rise = random.uniform(0.7, 1.5);
        double size = random.uniform(0.1, 50.0);
        run(both, frames, [&](int, auto& bands, auto& spectrum) {
            size *= rise * random.uniform(0.8, 1.25);
            for (auto& v : bands) v = element<TypeParam>(size * random.uniform(-0.2, 1.0));
            for (auto& v : spectrum) v = element<TypeParam>(size * random.uniform(-0.2, 1.0));
        });
    }
}

TYPED_TEST(Detection, EqualsTheModelOnAnyBits) {
    Random random(13);
    for (int life = 0; life < 200; ++life) {
        Both<TypeParam> both("any bits, life " + std::to_string(life));
        run(both, 40, [&](int, auto& bands, auto& spectrum) {
            for (auto& v : bands) v = random.anyBits<TypeParam>();
            for (auto& v : spectrum) v = random.anyBits<TypeParam>();
        });
    }
}

TEST(DetectionOfSingles, EqualsTheModelOnHardValues) {
    Random random(17);
    const auto hard = test::hardFloats<float>();
    const float values[] = {std::numeric_limits<float>::quiet_NaN(),
                            std::numeric_limits<float>::infinity(),
                            -std::numeric_limits<float>::infinity(),
                            3e38f,
                            1e-40f,
                            1e19f,
                            -0.0f};
    for (float value : values) {
        // From the first frame on, and from the twentieth on; all of it, or one element.
        for (int from : {0, 5, 13, 14, 20}) {
            for (bool everywhere : {false, true}) {
                Both<float> both("frames of " + std::to_string(value));
                run(both, from == 0 && everywhere ? longRun : 300, [&](int n, auto& bands, auto& spectrum) {
                    bands = random.floats(bands.size(), 1, 2);
                    spectrum = random.floats(spectrum.size(), 1, 2);
                    if (n < from || (n > from + 8 && from > 0)) return;
                    if (everywhere) {
                        bands.assign(bands.size(), value);
                        spectrum.assign(spectrum.size(), value);
                    } else {
                        bands[static_cast<std::size_t>(random.integer(0, 24))] = value;
                        spectrum[static_cast<std::size_t>(random.integer(0, 63))] = value;
                    }
                });
            }
        }
    }
    for (int life = 0; life < 100; ++life) {
        Both<float> both("hard values");
        run(both, 40, [&](int, auto& bands, auto& spectrum) {
            bands = random.pick(hard, bands.size());
            spectrum = random.pick(hard, spectrum.size());
        });
    }
}

// What is not a number does not stay in a tracker of a maximum: frames behind it are judged as if it had not been.
TEST(DetectionOfSingles, NotANumberLeavesTheTrackers) {
    Random random(19);
    Detector<float> disturbed, clean;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (int n = 0; n < 200; ++n) {
        if (n % 20 == 17) {
            const auto before = disturbed.record();
            disturbed.decide(std::vector<float>(numberOfBands, nan), std::vector<float>(spectrumLength, nan), 0);
            const auto after = disturbed.record();
            EXPECT_EQ(after.varTrack, before.varTrack);
            EXPECT_EQ(after.bandTrack, before.bandTrack);
            EXPECT_EQ(after.lowTrack, before.lowTrack);
            EXPECT_EQ(after.flagBands + after.flagLow + after.flagVar, 0);
            continue;
        }
        const auto bands = random.floats(numberOfBands, 1, 2), spectrum = random.floats(spectrumLength, 1, 2);
        disturbed.decide(bands, spectrum, 0);
        clean.decide(bands, spectrum, 0);
    }
    EXPECT_NEAR(disturbed.record().varTrack, clean.record().varTrack, 0.02);
    EXPECT_NEAR(disturbed.record().bandTrack / clean.record().bandTrack, 1.0, 0.05);
    EXPECT_NEAR(disturbed.record().lowTrack / clean.record().lowTrack, 1.0, 0.2);
}

TEST(DetectionOfSingles, FollowsTheCallersRoundingMode) {
    for (unsigned mode : {RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        for (double size : {1.0, 1e-19, 1e5}) {
            Random random(23);
            RoundingMode scope(mode);
            Both<float> both("mode " + std::to_string(mode));
            run(both, 500, [&](int, auto& bands, auto& spectrum) {
                const double loud = size * std::pow(10.0, random.uniform(0, 1));
                bands = random.floats(bands.size(), 0, loud);
                spectrum = random.floats(spectrum.size(), 0, loud);
            });
        }
    }
}
TEST(DetectionOfShorts, NoRoundingModeMatters) {
    for (unsigned mode : {RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        Random random(29);
        RoundingMode scope(mode);
        Both<Vorn16s> both("mode " + std::to_string(mode));
        run(both, 500, [&](int, auto& bands, auto& spectrum) {
            const auto loud = static_cast<Vorn16s>(random.integer(1, 32767));
            bands = random.integers<Vorn16s>(bands.size(), 0, loud);
            spectrum = random.integers<Vorn16s>(spectrum.size(), 0, loud);
        });
    }
}

// ---- Recordings

// Digits one after the other, with pauses of faint noise between them, as magnitudes in bands and in a spectrum.
struct Utterance {
    std::vector<std::vector<double>> bands, spectra;
    std::vector<bool> spoken;
};
Utterance digits() {
    const auto recorded = test::recordedFrames(VORNSR_RECORDINGS "/test", 30, 128);
    Utterance u;
    Random random(31);
    const auto add = [&](const std::vector<double>& magnitudes, bool spoken) {
        std::vector<double> bands(numberOfBands), spectrum(spectrumLength);
        for (int b = 0; b < numberOfBands; ++b) {
            for (int i = 5 * b; i < 5 * b + 5; ++i) bands[b] += magnitudes[i] / 5;
        }
        for (int i = 0; i < spectrumLength; ++i) spectrum[i] = (magnitudes[2 * i] + magnitudes[2 * i + 1]) / 2;
        u.bands.push_back(bands), u.spectra.push_back(spectrum), u.spoken.push_back(spoken);
    };
    const auto pause = [&](int frames) {
        for (int n = 0; n < frames; ++n) {
            std::vector<double> magnitudes(128);
            for (double& m : magnitudes) m = 400.0 * random.uniform(0.5, 1.5);
            add(magnitudes, false);
        }
    };
    pause(60);
    for (int r = 0; r < recorded.height; ++r) {
        std::vector<double> magnitudes(128);
        for (int i = 0; i < 128; ++i) {
            magnitudes[i] =
                std::exp(recorded.rows[static_cast<std::size_t>(r) * 128 + i]) + 400.0 * random.uniform(0.5, 1.5);
        }
        add(magnitudes, true);
        if (r % 300 == 299) pause(150);
    }
    pause(100);
    return u;
}

TYPED_TEST(Detection, EqualsTheModelOnRecordedDigitsAndHearsThem) {
    const Utterance u = digits();
    ASSERT_GT(u.bands.size(), 1200u) << "recordings in " << VORNSR_RECORDINGS;
    // The 16-bit form takes what fits: loud vowels saturate.
    const double scale = std::is_floating_point_v<TypeParam> ? 1.0 : 1.0 / 64;
    Both<TypeParam> both("digits");
    Detector<TypeParam> detector;
    int heard = 0, spoken = 0, wrong = 0, pauses = 0, sincePause = 0;
    const auto scaled = [&](const std::vector<double>& x) {
        std::vector<TypeParam> y;
        for (double v : x) y.push_back(element<TypeParam>(v * scale));
        return y;
    };
    for (std::size_t n = 0; n < u.bands.size(); ++n) {
        const auto bands = scaled(u.bands[n]), spectrum = scaled(u.spectra[n]);
        ASSERT_TRUE(both.decide(bands, spectrum, 0));
        const int decision = detector.decide(bands, spectrum, 0);
        sincePause = u.spoken[n] ? 0 : sincePause + 1;
        if (u.spoken[n]) {
            ++spoken, heard += decision == S;
        } else if (n >= 20 && (n < 60 || sincePause > 50)) {  // behind the hang-over
            ++pauses, wrong += decision != N;
        }
    }
    for (int n = 0; n < 8; ++n) ASSERT_TRUE(both.flush());
    EXPECT_GT(heard, spoken * 8 / 10);
    EXPECT_LT(wrong, pauses / 20) << "of " << pauses;
    EXPECT_GT(pauses, 80);
}

// ---- Decisions by hand

// Frames without a flag: all measures keep to their trackers, from the first one on.
template <class T>
std::vector<T> quiet(int len) {
    return std::vector<T>(static_cast<std::size_t>(len), T(10));
}

// What a frame with activity '1' or without '0' is told; '.' is undecided, 'S' speech, '-' no speech.
template <class T>
std::string decisions(Detector<T>& detector, const std::string& activity) {
    const auto bands = quiet<T>(numberOfBands), spectrum = quiet<T>(spectrumLength);
    std::string told;
    for (char active : activity) {
        const int decision = detector.decide(bands, spectrum, active == '1' ? 5 : 4);
        told += decision == U ? '.' : decision == S ? 'S' : decision == N ? '-' : '?';
        const auto r = detector.record();
        EXPECT_EQ(r.flagBands + r.flagLow + r.flagVar, 0) << "frame " << r.frameCount;
    }
    return told;
}
template <class T>
std::string flushes(Detector<T>& detector, int count) {
    std::string told;
    for (int n = 0; n < count; ++n) {
        const int decision = detector.flush();
        told += decision == U ? '.' : decision == S ? 'S' : decision == N ? '-' : '?';
    }
    return told;
}
std::string times(std::size_t n, char c) { return std::string(n, c); }
const std::string zeros10 = times(10, '0'), undecided10 = times(10, '.');

TYPED_TEST(Detection, TheFirstTenFramesAreUndecidedWhateverTheyHold) {
    Random random(37);
    for (int life = 0; life < 20; ++life) {
        Detector<TypeParam> detector;
        for (int n = 0; n < 10; ++n) {
            std::vector<TypeParam> bands(numberOfBands), spectrum(spectrumLength);
            for (auto& v : bands) v = element<TypeParam>(random.uniform(-32768, 32767));
            for (auto& v : spectrum) v = element<TypeParam>(random.uniform(-32768, 32767));
            EXPECT_EQ(detector.decide(bands, spectrum, life), U);
        }
        const auto r = detector.record();
        EXPECT_EQ(r.ringHead, 0);
        for (auto bit : r.ring) EXPECT_EQ(bit, 0);
    }
}

TYPED_TEST(Detection, QuietIsNoSpeechFromTheEleventhFrameOn) {
    Detector<TypeParam> detector;
    EXPECT_EQ(decisions(detector, times(200, '0')), undecided10 + times(190, '-'));
}

TYPED_TEST(Detection, ActivityIsSpeechFromTheThirteenthFrameOn) {
    Detector<TypeParam> detector;
    EXPECT_EQ(decisions(detector, times(60, '1')), undecided10 + "--" + times(48, 'S'));
    // Four is not activity, five is.
    Detector<TypeParam> atFour;
    for (int n = 0; n < 30; ++n)
        EXPECT_EQ(atFour.decide(quiet<TypeParam>(25), quiet<TypeParam>(64), 4), n < 10 ? U : N);
    Detector<TypeParam> huge;
    for (int n = 0; n < 30; ++n) {
        EXPECT_EQ(huge.decide(quiet<TypeParam>(25), quiet<TypeParam>(64), INT_MAX), n < 10 ? U : n < 12 ? N : S);
    }
    Detector<TypeParam> negative;
    for (int n = 0; n < 30; ++n) {
        EXPECT_EQ(negative.decide(quiet<TypeParam>(25), quiet<TypeParam>(64), INT_MIN), n < 10 ? U : N);
    }
}

TYPED_TEST(Detection, ActivityOfTheFirstTenFramesLeavesNoTrace) {
    Detector<TypeParam> detector;
    EXPECT_EQ(decisions(detector, times(10, '1') + times(30, '0')), undecided10 + times(30, '-'));
}

// A run of three stays in the ring for five frames (its own last, and four behind it), holds on for five more of the
// counter less the one that reaches zero.
TYPED_TEST(Detection, ThreeFramesHoldOnShortly) {
    Detector<TypeParam> detector;
    // Frames 11, 12, 13 active. The run of 3 is whole in frames 13 to 17; frames 18 to 21 count 4, 3, 2, 1.
    EXPECT_EQ(decisions(detector, zeros10 + "111" + times(20, '0')), undecided10 + "--SSSSSSSSS" + times(12, '-'));
    const auto r = detector.record();
    EXPECT_EQ(r.hangCount, 0);
    EXPECT_EQ(r.hangReload, 23) << "a run of three reloads nothing";
}

TYPED_TEST(Detection, TwoFramesOrScatteredOnesAreNoSpeech) {
    Detector<TypeParam> detector;
    EXPECT_EQ(decisions(detector, zeros10 + "11011011011" + times(10, '0')), undecided10 + times(21, '-'));
}

// Four active frames: the run of 4 is whole in frames 14 to 17, of 3 in 18. The first of them, before frame 36, loads
// 23 and sets the reload to 40, which the next three frames load.
TYPED_TEST(Detection, ALongRunBeforeFrame36LoadsFortyAtOnce) {
    Detector<TypeParam> detector;
    // Frames 19 to 57 count 39 to 1, frame 58 reaches 0.
    const std::string expected = undecided10 + "--" + times(57 - 12, 'S') + times(12, '-');
    EXPECT_EQ(decisions(detector, zeros10 + "1111" + times(55, '0')), expected);
    EXPECT_EQ(detector.record().hangReload, 40);
}

// The same from frame 36 on: the reload stays 23.
TYPED_TEST(Detection, ALongRunAfterFrame35LoadsTwentyThree) {
    Detector<TypeParam> detector;
    // Active 33 to 36: the run of 4 is whole in frames 36 to 39, of 3 in frame 40; 41 to 62 count 22 to 1.
    const std::string expected = undecided10 + times(24, '-') + times(62 - 34, 'S') + times(10, '-');
    EXPECT_EQ(decisions(detector, times(32, '0') + "1111" + times(36, '0')), expected);
    EXPECT_EQ(detector.record().hangReload, 23);
    // One frame earlier the reload changes in frame 35, and frames 36 to 38 load it: 40 to 78 count 39 to 1.
    Detector<TypeParam> earlier;
    const std::string longer = undecided10 + times(23, '-') + times(78 - 33, 'S') + times(10, '-');
    EXPECT_EQ(decisions(earlier, times(31, '0') + "1111" + times(53, '0')), longer);
}

// The oldest entry of the ring stands behind the newest one: a run does not go on from the newest to the oldest.
TYPED_TEST(Detection, ARunDoesNotWrapFromTheNewestToTheOldestFrame) {
    Detector<TypeParam> detector;
    // Frames 11, 12 and 16, 17 active: in frame 17 the ring reads 1100011, in a circle four in a row.
    EXPECT_EQ(decisions(detector, zeros10 + "1100011" + times(10, '0')), undecided10 + times(17, '-'));
}

// Each measure of its own sets a speech bit.
TYPED_TEST(Detection, EachMeasureFlagsAFrame) {
    for (int measure = 0; measure < 3; ++measure) {
        Detector<TypeParam> detector;
        decisions(detector, times(30, '0'));
        auto bands = quiet<TypeParam>(numberOfBands), spectrum = quiet<TypeParam>(spectrumLength);
        if (measure == 0) bands[20] = 110;                                        // sum 350 for 250: e x 1.96
        if (measure == 1) bands[1] = bands[2] = bands[3] = 50, bands[24] = -110;  // the sum stays
        if (measure == 2) spectrum[0] = 100;
        detector.decide(bands, spectrum, 0);
        const auto r = detector.record();
        EXPECT_EQ(r.flagBands, measure == 0);
        EXPECT_EQ(r.flagLow, measure == 1);
        EXPECT_EQ(r.flagVar, measure == 2);
        EXPECT_EQ(r.ring[r.ringHead], 1);
        detector.decide(quiet<TypeParam>(numberOfBands), quiet<TypeParam>(spectrumLength), 0);
        EXPECT_EQ(detector.record().ring[detector.record().ringHead], 0);
    }
}

// The energy of a silent frame is -3, and -3 lies above 1.65 times -3: silence in digits counts as speech.
TYPED_TEST(Detection, ZerosSetTheFlagOfTheBands) {
    Detector<TypeParam> detector;
    const std::vector<TypeParam> bands(numberOfBands, 0), spectrum(spectrumLength, 0);
    for (int n = 1; n <= 300; ++n) {
        EXPECT_EQ(detector.decide(bands, spectrum, 0), n <= 10 ? U : n <= 12 ? N : S);
        EXPECT_EQ(detector.record().flagBands, 1);
        EXPECT_LT(detector.record().bandTrack, 0);
        EXPECT_EQ(detector.record().flagLow + detector.record().flagVar, 0);
    }
}

// ---- Flushes by hand

TYPED_TEST(Detection, FlushesAfterQuiet) {
    Detector<TypeParam> detector;
    decisions(detector, times(20, '0'));
    // Six decisions and then undecided, again and again.
    EXPECT_EQ(flushes(detector, 21), "------.------.------.");
    const auto r = detector.record();
    EXPECT_EQ(r.frameCount, 41);
    EXPECT_EQ(r.ringTail, r.ringHead);
    EXPECT_EQ(r.shortHang, -18) << "counters fall without a check, six times a round";
    EXPECT_EQ(r.hangCount, -18);
}

TYPED_TEST(Detection, FlushesAfterActivity) {
    Detector<TypeParam> detector;
    decisions(detector, times(40, '1'));
    EXPECT_EQ(flushes(detector, 7), "SSSSSS.");
    const auto r = detector.record();
    EXPECT_EQ(r.hangCount, 39) << "the ring stays as it is, and each flush loads 40 less one";
    EXPECT_EQ(r.shortHang, 4);
}

// The ring reads from the place behind its start, which moves: 0000011 turns to 1000001 and so on, never three in a row
// but where they stand together.
TYPED_TEST(Detection, FlushesTurnTheRing) {
    Detector<TypeParam> detector;
    decisions(detector, times(20, '0') + "0000111");
    // The run of 3 was seen in the last frame: 5. Then from the second entry on: 0001110, 0011100, 0111000, 1110000,
    // whole each time, and 1100001, 1000011 with 4 and 3 left of it.
    EXPECT_EQ(flushes(detector, 7), "SSSSSS.");
    EXPECT_EQ(detector.record().shortHang, 2);
    EXPECT_EQ(detector.record().hangCount, -6);
    // A further round begins with the ring as it was: five whole (the first of them 0000111 turned once), then two.
    EXPECT_EQ(flushes(detector, 7), "SSSSSS.");
    // Two in a row are no speech, and the counters are at zero already.
    Detector<TypeParam> two;
    decisions(two, times(20, '0') + "0000011");
    EXPECT_EQ(flushes(two, 7), "------.");
    EXPECT_EQ(two.record().shortHang, -6);
}

// A short hang-over runs out in the middle of the ring.
TYPED_TEST(Detection, AHangOverEndsDuringTheFlush) {
    Detector<TypeParam> detector;
    decisions(detector, times(20, '0') + "111" + "00000");  // whole until four behind it; then 4 is left
    EXPECT_EQ(detector.record().shortHang, 4);
    // The ring 1100000 stands at its newest; turned once it is 1000001, 0000011 and so on, and at the sixth the two are
    // together with nothing beside: 3, 2, 1, 0 ends it.
    EXPECT_EQ(flushes(detector, 7), "SSS---.");
}

// Before frame 36 a long run in the flush sets the reload to 40 behind its use, and the next one loads that.
TYPED_TEST(Detection, TheReloadChangesInTheFlushAsWell) {
    Detector<TypeParam> detector;
    decisions(detector, zeros10 +
                            "111"
                            "1");  // frame 14 has the run of 4 and loads 23
    auto r = detector.record();
    EXPECT_EQ(r.hangCount, 23);
    EXPECT_EQ(r.hangReload, 40);
    r.hangReload = 23;
    detector.setRecord(r);
    detector.flush();
    EXPECT_EQ(detector.record().hangCount, 22);
    EXPECT_EQ(detector.record().hangReload, 40);
    detector.flush();
    EXPECT_EQ(detector.record().hangCount, 39);
    r.frameCount = 35;  // the flush counts it to 36
    detector.setRecord(r);
    detector.flush();
    EXPECT_EQ(detector.record().hangReload, 23);
    r.frameCount = 34;
    detector.setRecord(r);
    detector.flush();
    EXPECT_EQ(detector.record().hangReload, 40);
}

TYPED_TEST(Detection, AFlushBeforeFrameElevenIsUndecided) {
    Detector<TypeParam> detector;
    decisions(detector, "1111");
    EXPECT_EQ(flushes(detector, 6), "......");  // frames 5 to 10
    EXPECT_EQ(detector.record().ringHead, 6);
    EXPECT_EQ(detector.record().ringTail, 0);
    EXPECT_EQ(detector.record().shortHang, 0) << "it ends before the counters";
    EXPECT_EQ(flushes(detector, 8), ".------.");  // the tail, six decisions, the tail
}

TYPED_TEST(Detection, InitRestartsEverything) {
    Detector<TypeParam> detector, fresh;
    decisions(detector, times(50, '1'));
    flushes(detector, 9);
    EXPECT_EQ(Calls<TypeParam>::init(detector.state()), vornStsNoErr);
    EXPECT_TRUE(sameRecord(detector.record(), fresh.record()));
    EXPECT_EQ(decisions(detector, times(30, '1')), decisions(fresh, times(30, '1')));
    EXPECT_TRUE(sameRecord(detector.record(), fresh.record()));
}

TYPED_TEST(Detection, InitByHand) {
    Detector<TypeParam> detector;
    const auto r = detector.record();
    EXPECT_EQ(r.flagBands, 0);
    EXPECT_EQ(r.onsetSeen, 0);
    EXPECT_EQ(r.bandMean, 0);
    EXPECT_EQ(r.lowTrack, 0);
    EXPECT_EQ(r.bandTrack, 0);
    EXPECT_EQ(r.varTrack, 0);
    EXPECT_EQ(r.lowPrev, 0);
    EXPECT_EQ(r.ringHead, 0);
    EXPECT_EQ(r.ringTail, -1);
    EXPECT_EQ(r.hangReload, 23);
    EXPECT_EQ(r.hangCount, 0);
    EXPECT_EQ(r.shortHang, 0);
    for (auto bit : r.ring) EXPECT_EQ(bit, 0);
    EXPECT_EQ(r.frameCount, 0);
    EXPECT_TRUE(detector.surroundingsUntouched());
}

// ---- Measures by hand

// One frame from a record that a test makes up, behind the first frames.
template <class T>
Record<T> afterFrame(Record<T> before, const std::vector<T>& bands, const std::vector<T>& spectrum) {
    Detector<T> detector;
    detector.setRecord(before);
    detector.decide(bands, spectrum, 0);
    return detector.record();
}
template <class T>
Record<T> late() {
    auto r = model::newDetector<typename Calls<T>::Tracker>();
    r.frameCount = 100;
    return r;
}

TEST(DetectionOfSingles, TrackersByHand) {
    // Bands of 4: B = 100, e = 9997. l = 0.75 x 4 + 0.25 lowPrev.
    const std::vector<float> bands(25, 4.0f);
    // Half zeros, half twos: mean square 2, mean 1, v = 1.
    std::vector<float> spectrum(64, 0.0f);
    for (int i = 0; i < 32; ++i) spectrum[i] = 2.0f;
    auto r = late<Vorn32f>();
    r.bandTrack = 9000;  // within 0.75 and 1.5
    r.varTrack = 1.1f;   // v within 0.85 and 1.5
    r.lowTrack = 20;     // l = 3.5 is at most half
    r.lowPrev = 2;
    auto after = afterFrame<Vorn32f>(r, bands, spectrum);
    EXPECT_FLOAT_EQ(after.bandTrack, 0.8f * 9000 + 0.2f * 9997);
    EXPECT_FLOAT_EQ(after.varTrack, 0.8f * 1.1f + 0.2f);
    EXPECT_FLOAT_EQ(after.lowTrack, 0.97f * 20 + 0.03f * 3.5f);
    EXPECT_EQ(after.lowPrev, 4.0f);
    EXPECT_EQ(after.lowLast, 4.0f);
    EXPECT_EQ(after.bandMean, 0.0f) << "of the first 14 frames only";
    EXPECT_EQ(after.flagBands + after.flagLow + after.flagVar, 0);
    // The borders: at 1.5 times the tracker nothing follows, and a quarter and a half differ in what is included.
    r.varTrack = 4;  // v = 1 is a quarter, not below it
    r.lowTrack = 7;  // l = 3.5 is half of it
    r.bandTrack = 9997 * 2;
    after = afterFrame<Vorn32f>(r, bands, spectrum);
    EXPECT_EQ(after.varTrack, 4.0f);
    EXPECT_FLOAT_EQ(after.lowTrack, 0.97f * 7 + 0.03f * 3.5f);
    EXPECT_FLOAT_EQ(after.bandTrack, 0.97f * 2 * 9997 + 0.03f * 9997);
    // Between the lower border of following and the low one trackers rest.
    r.varTrack = 1 / 0.5f, r.lowTrack = 3.5f / 0.6f, r.bandTrack = 9997 / 0.6f;
    after = afterFrame<Vorn32f>(r, bands, spectrum);
    EXPECT_EQ(after.varTrack, r.varTrack);
    EXPECT_EQ(after.lowTrack, r.lowTrack);
    EXPECT_EQ(after.bandTrack, r.bandTrack);
    // Above 1.65, 1.65 and 3.25 frames are flagged, and trackers rest.
    r.varTrack = 1 / 1.7f, r.lowTrack = 3.5f / 3.3f, r.bandTrack = 9997 / 1.7f;
    after = afterFrame<Vorn32f>(r, bands, spectrum);
    EXPECT_EQ(after.varTrack, r.varTrack);
    EXPECT_EQ(after.flagVar + after.flagLow + after.flagBands, 3);
    r.varTrack = 1 / 1.6f, r.lowTrack = 3.5f / 3.2f, r.bandTrack = 9997 / 1.6f;
    after = afterFrame<Vorn32f>(r, bands, spectrum);
    EXPECT_EQ(after.flagVar + after.flagLow + after.flagBands, 0);
}

TEST(DetectionOfSingles, TheFirstFramesByHand) {
    const std::vector<float> bands(25, 4.0f), spectrum(64, 0.0f);
    Detector<float> detector;
    detector.decide(bands, spectrum, 0);
    auto r = detector.record();
    // Frame 1: bandTrack = e, then followed by itself; m = 1.1 e; l = 3, above zero.
    EXPECT_FLOAT_EQ(r.bandMean, 1.1f * 9997);
    EXPECT_FLOAT_EQ(r.bandTrack, 9997);
    EXPECT_FLOAT_EQ(r.lowTrack, 3);
    EXPECT_EQ(r.onsetSeen, 0);
    detector.decide(bands, spectrum, 0);
    EXPECT_FLOAT_EQ(detector.record().bandMean, (1.1f * 9997 + 9997) * 1.1f / 2);
    // Frame 3, three times as loud: e = 89997 is 2.5 times the mean of three and more, and ends the build-up.
    r = detector.record();
    detector.decide(std::vector<float>(25, 40.0f), spectrum, 0);  // e = 999997, m = 1.1 x (2 x 11546.5 + e) / 3
    EXPECT_EQ(detector.record().onsetSeen, 1);
    EXPECT_EQ(detector.record().bandTrack, r.bandTrack);
    EXPECT_EQ(detector.record().flagBands, 1);
    // Below that ratio a louder frame raises the maximum.
    detector.setRecord(r);
    detector.decide(std::vector<float>(25, 8.0f), spectrum, 0);
    EXPECT_EQ(detector.record().onsetSeen, 0);
    EXPECT_FLOAT_EQ(detector.record().bandTrack, 39997);
    // The mean stands still from frame 15 on.
    r.frameCount = 13;
    EXPECT_NE(afterFrame<Vorn32f>(r, bands, spectrum).bandMean, r.bandMean);
    r.frameCount = 14;
    EXPECT_EQ(afterFrame<Vorn32f>(r, bands, spectrum).bandMean, r.bandMean);
}

TEST(DetectionOfShorts, TrackersByHand) {
    // B = 100, e = 9997; t = 12, l = (8184 x 12 >> 5) + (8 x 2728 >> 5) = 3069 + 682 = 3751; v = 4096.
    const std::vector<Vorn16s> bands(25, 4);
    std::vector<Vorn16s> spectrum(64, 0);
    for (int i = 0; i < 32; ++i) spectrum[i] = 2;
    auto r = late<Vorn16s>();
    r.bandTrack = 9000;
    r.varTrack = 4505;
    r.lowTrack = 20000;
    r.lowPrev = 2728;
    auto after = afterFrame<Vorn16s>(r, bands, spectrum);
    EXPECT_EQ(after.bandTrack, 2030 + 7171);  // 26 x 9997 >> 7, 102 x 9000 >> 7
    EXPECT_EQ(after.varTrack, 768 + 3660);    // 6 x 4096 >> 5, 26 x 4505 >> 5
    EXPECT_EQ(after.lowTrack, 117 + 19375);   // 4 x 3751 >> 7, 124 x 20000 >> 7
    EXPECT_EQ(after.lowPrev, 341 * 12);
    EXPECT_EQ(after.lowLast, 341 * 12);
    // A low variance is added whole: 31 x 20000 >> 5 is 19375.
    r.varTrack = 20000;
    r.bandTrack = 19994;  // e is half of it, and included
    r.lowTrack = 7502;    // l as well
    after = afterFrame<Vorn16s>(r, bands, spectrum);
    EXPECT_EQ(after.varTrack, 19375 + 4096);
    EXPECT_EQ(after.bandTrack, 312 + 19369);  // 4 x 9997 >> 7, 124 x 19994 >> 7
    EXPECT_EQ(after.lowTrack, 117 + 7267);    // 124 x 7502 >> 7
    r.varTrack = 4 * 4096;                    // a quarter of it is not below
    EXPECT_EQ(afterFrame<Vorn16s>(r, bands, spectrum).varTrack, 4 * 4096);
    // Flags above 53/32, 211/128, 416/128.
    r.varTrack = 4096 * 32 / 53 - 1, r.bandTrack = 9997 * 128 / 211 - 1, r.lowTrack = 3751 * 128 / 416 - 1;
    after = afterFrame<Vorn16s>(r, bands, spectrum);
    EXPECT_EQ(after.flagVar + after.flagLow + after.flagBands, 3);
    r.varTrack = 4096 * 32 / 53 + 1, r.bandTrack = 9997 * 128 / 211 + 1, r.lowTrack = 3751 * 128 / 416 + 1;
    after = afterFrame<Vorn16s>(r, bands, spectrum);
    EXPECT_EQ(after.flagVar + after.flagLow + after.flagBands, 0);
}

// Products of trackers wrap at 32 bits, comparisons see that, measures have 64 bits.
TEST(DetectionOfShorts, ProductsOfTrackersWrap) {
    const std::vector<Vorn16s> bands(25, 4), spectrum(64, 0);
    auto r = late<Vorn16s>();
    // 192 x 0x01000000 wraps to -0x40000000: nothing lies below; 64 x it is 0x40000000, >> 7 = 0x800000; 124 x wraps to
    // 0x7C000000, >> 7 = 0xF80000.
    r.bandTrack = 0x01000000;
    EXPECT_EQ(afterFrame<Vorn16s>(r, bands, spectrum).bandTrack, 0xF80000 + 312);
    // 64 x 0x02000000 wraps to INT_MIN, >> 7 = -0x1000000: e is above it, the tracker rests; 211 x it is 0x1A6000000,
    // wrapped -0x5A000000: flagged.
    r.bandTrack = 0x02000000;
    const auto after = afterFrame<Vorn16s>(r, bands, spectrum);
    EXPECT_EQ(after.bandTrack, 0x02000000);
    EXPECT_EQ(after.flagBands, 1);
    // A tracker takes the low 32 bits of an energy: B = 25 x 32767 = 819175, e = 671047680622 = 156 x 2^32 +
    // 1032704046.
    Detector<Vorn16s> loud;
    loud.decide(std::vector<Vorn16s>(25, 32767), spectrum, 0);
    auto expected = model::newDetector<Vorn32s>();
    const std::vector<Vorn16s> full(25, 32767);
    model::decideFrame(expected, full.data(), spectrum.data(), 0);
    EXPECT_TRUE(sameRecord(loud.record(), expected));
    EXPECT_NE(loud.record().bandTrack, INT_MAX);
}

// B = 2 gives e = 1; a mean of -1 behind it makes m = (141 - 141) / 2 = 0 in frame 2: no onset, and no trap.
TEST(DetectionOfShorts, AMeanOfZeroIsNoOnset) {
    std::vector<Vorn16s> bands(25, 0), spectrum(64, 0);
    bands[0] = 2;
    for (int frame = 0; frame < 14; ++frame) {
        auto r = model::newDetector<Vorn32s>();
        r.frameCount = frame;
        for (int mean = -40; mean <= 40; ++mean) {
            r.bandMean = mean;
            const auto after = afterFrame<Vorn16s>(r, bands, spectrum);
            const long long sum = 141 + 141LL * frame * mean;
            const long long quotient = sum / (frame + 1);
            const long long m = quotient >> 7;
            EXPECT_EQ(after.bandMean, m) << frame << " " << mean;
            EXPECT_EQ(after.onsetSeen, m > 0 && 128 / m > 320 ? 1 : 0);
        }
    }
    auto r = model::newDetector<Vorn32s>();
    r.frameCount = 1;
    r.bandMean = -1;
    EXPECT_EQ(afterFrame<Vorn16s>(r, bands, spectrum).onsetSeen, 0);
    EXPECT_EQ(afterFrame<Vorn16s>(r, bands, spectrum).bandMean, 0);
}

// A real stream of frames that reaches it: silence, then a little more than silence.
TEST(DetectionOfShorts, AMeanOfZeroIsReachedByFrames) {
    std::vector<Vorn16s> bands(25, 0);
    const std::vector<Vorn16s> spectrum(64, 0);
    bool reached = false;
    for (int third = 0; third < 8 && !reached; ++third) {
        Both<Vorn16s> both("to a mean of zero");
        for (int b : {0, 2, third, 2, 2, 2}) {
            bands[7] = static_cast<Vorn16s>(b);
            ASSERT_TRUE(both.decide(bands, spectrum, 0));
            reached = reached || both.record().bandMean == 0;
        }
    }
    EXPECT_TRUE(reached);
}

// Two families, one logic: where the 16-bit ratios stand for the float constants closely, decisions agree.
TEST(DetectionOfShorts, DecidesMuchAsTheSingles) {
    const Utterance u = digits();
    Detector<float> singles;
    Detector<Vorn16s> shorts;
    int same = 0;
    for (std::size_t n = 0; n < u.bands.size(); ++n) {
        std::vector<float> bands, spectrum;
        std::vector<Vorn16s> b, s;
        for (double v : u.bands[n]) bands.push_back(static_cast<float>(v / 64)), b.push_back(element<Vorn16s>(v / 64));
        for (double v : u.spectra[n]) {
            spectrum.push_back(static_cast<float>(v / 64)), s.push_back(element<Vorn16s>(v / 64));
        }
        same += singles.decide(bands, spectrum, 0) == shorts.decide(b, s, 0);
    }
    EXPECT_GT(same, static_cast<int>(u.bands.size() * 9 / 10));
}

// ---- The record

TYPED_TEST(Detection, TheSizeIs64) {
    Guarded<int> size(1);
    EXPECT_EQ(Calls<TypeParam>::size(size), vornStsNoErr);
    EXPECT_EQ(size[0], 64);
    EXPECT_EQ(Calls<TypeParam>::size(nullptr), vornStsNullPtrErr);
}

TYPED_TEST(Detection, TheRecordMayStandAnywhere) {
    Random random(41);
    std::vector<Detector<TypeParam>> detectors;
    for (std::size_t bytes = 0; bytes < 17; ++bytes) detectors.emplace_back(bytes);
    for (int n = 0; n < 100; ++n) {
        std::vector<TypeParam> bands(numberOfBands), spectrum(spectrumLength);
        for (auto& v : bands) v = element<TypeParam>(random.uniform(0, 20 + n % 30));
        for (auto& v : spectrum) v = element<TypeParam>(random.uniform(0, 20 + n % 30));
        const int decision = detectors[0].decide(bands, spectrum, 0);
        for (auto& detector : detectors) {
            if (&detector != &detectors[0]) {
                EXPECT_EQ(detector.decide(bands, spectrum, 0), decision);
            }
            EXPECT_TRUE(sameRecord(detector.record(), detectors[0].record()));
        }
    }
    for (int n = 0; n < 8; ++n) {
        const int decision = detectors[0].flush();
        for (auto& detector : detectors) {
            if (&detector != &detectors[0]) {
                EXPECT_EQ(detector.flush(), decision);
            }
            EXPECT_TRUE(detector.surroundingsUntouched());
        }
    }
}

TYPED_TEST(Detection, NoAddressOfAFrameMatters) {
    Random random(43);
    Detector<TypeParam> detector;
    std::vector<TypeParam> bands(numberOfBands), spectrum(spectrumLength);
    for (auto& v : bands) v = element<TypeParam>(random.uniform(0, 900));
    for (auto& v : spectrum) v = element<TypeParam>(random.uniform(0, 900));
    const auto before = late<TypeParam>();
    detector.setRecord(before);
    detector.decide(bands, spectrum, 0);
    for (std::size_t bytes = 0; bytes < 64; bytes += sizeof(TypeParam)) {
        test::Offset<TypeParam> b(bands.size(), bytes), s(spectrum.size(), 64 - sizeof(TypeParam) - bytes);
        b.assign(bands), s.assign(spectrum);
        Detector<TypeParam> other;
        other.setRecord(before);
        other.decide(b.data(), s.data(), 0);
        EXPECT_TRUE(sameRecord(other.record(), detector.record()));
    }
}

// The count of frames stays at its end, and the detector goes on.
TYPED_TEST(Detection, FramesBeyondTheCount) {
    Detector<TypeParam> detector;
    decisions(detector, times(40, '0'));
    auto r = detector.record();
    r.frameCount = INT_MAX - 2;
    detector.setRecord(r);
    EXPECT_EQ(decisions(detector, times(5, '0') + "111"), "-------S");
    EXPECT_EQ(detector.record().frameCount, INT_MAX);
    EXPECT_EQ(flushes(detector, 7), "SSSSSS.");
    EXPECT_EQ(detector.record().frameCount, INT_MAX);
}

// A record that nobody has filled is the caller's fault, but nothing outside it is touched.
TYPED_TEST(Detection, ARecordOfAnyBytesHarmsNothingElse) {
    Random random(47);
    const auto bands = quiet<TypeParam>(numberOfBands), spectrum = quiet<TypeParam>(spectrumLength);
    for (int turn = 0; turn < 2000; ++turn) {
        Detector<TypeParam> detector;
        Record<TypeParam> r;
        for (std::size_t i = 0; i < sizeof r; ++i)
            reinterpret_cast<unsigned char*>(&r)[i] = random.anyBits<unsigned char>();
        if (turn % 2 == 0) r.frameCount = static_cast<int>(random.integer(-3, 40));
        detector.setRecord(r);
        for (int n = 0; n < 4; ++n) {
            const int decision = n % 2 == 0 ? detector.decide(bands, spectrum, 0) : detector.flush();
            EXPECT_TRUE(decision == S || decision == N || decision == U);
        }
        EXPECT_TRUE(detector.surroundingsUntouched());
    }
}

// ---- Checks

template <class T>
struct Arguments {
    Guarded<T> bands{std::vector<T>(numberOfBands, T(3))}, spectrum{std::vector<T>(spectrumLength, T(3))};
    Guarded<int> result = Guarded<int>(1);
    Detector<T> detector;
    Record<T> before = detector.record();
    const T *pBands = bands, *pSpectrum = spectrum;
    int* pResult = result;
    VornsVADState* pState = detector.state();
    bool untouched() const { return result.untouched() && sameRecord(detector.record(), before); }
};

TYPED_TEST(Detection, Checks) {
    using A = Arguments<TypeParam>;
    using F = Calls<TypeParam>;
    test::expectCheckOrder<A>([] { return A(); },
                              [](A& a) { return F::decision(a.pBands, a.pSpectrum, 5, a.pResult, a.pState); },
                              [](A& a) { return a.untouched(); },
                              {{"state null", vornStsNullPtrErr, [](A& a) { a.pState = nullptr; }},
                               {"bands null", vornStsNullPtrErr, [](A& a) { a.pBands = nullptr; }},
                               {"spectrum null", vornStsNullPtrErr, [](A& a) { a.pSpectrum = nullptr; }},
                               {"result null", vornStsNullPtrErr, [](A& a) { a.pResult = nullptr; }}});
    test::expectCheckOrder<A>([] { return A(); }, [](A& a) { return F::flush(a.pResult, a.pState); },
                              [](A& a) { return a.untouched(); },
                              {{"result null", vornStsNullPtrErr, [](A& a) { a.pResult = nullptr; }},
                               {"state null", vornStsNullPtrErr, [](A& a) { a.pState = nullptr; }}});
    EXPECT_EQ(F::init(nullptr), vornStsNullPtrErr);
}

}  // namespace
