// The voice activity detector beside its model, over long runs, and on recorded speech.
#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "aurora/detection/detectors.h"
#include "support/recorded_frames.h"
#include "support/rounding_mode.h"
#include "support/values.h"

namespace {

using namespace test::detectors;
using test::Random;
using test::RoundingMode;

template <class T>
class Detection : public ::testing::Test {};
TYPED_TEST_SUITE(Detection, Families);

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

}  // namespace
