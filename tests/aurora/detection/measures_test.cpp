// Measures, trackers and the record of the voice activity detector.
#include <climits>
#include <vector>

#include "aurora/detection/detectors.h"
#include "support/values.h"

namespace {

using namespace test::detectors;
using test::Guarded;
using test::Random;

template <class T>
class DetectionMeasures : public ::testing::Test {};
TYPED_TEST_SUITE(DetectionMeasures, Families);

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
    // Frame 3, ten times as loud: e = 999997 is 2.67 times the mean 1.1 (2 x 11546.5 + e) / 3, and ends the build-up.
    r = detector.record();
    detector.decide(std::vector<float>(25, 40.0f), spectrum, 0);
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
    // 1032782446.
    Detector<Vorn16s> loud;
    loud.decide(std::vector<Vorn16s>(25, 32767), spectrum, 0);
    EXPECT_EQ(loud.record().bandTrack, 1032782446);
    EXPECT_EQ(loud.record().bandMean, 466585773);  // 141 e >> 7 = 172 x 2^32 and that
    EXPECT_EQ(loud.record().onsetSeen, 0) << "the mean of the test has 64 bits";
}

// Two squares of -32768 make 2^31: S = -65536, D = 2^31, v = 2^37 - 2^32.
TEST(DetectionOfShorts, TheLargestSquares) {
    const std::vector<Vorn16s> bands(25, 4);
    for (std::size_t i = 0; i + 1 < spectrumLength; ++i) {
        std::vector<Vorn16s> spectrum(64, 0);
        spectrum[i] = spectrum[i + 1] = -32768;
        auto r = late<Vorn16s>();
        EXPECT_EQ(afterFrame<Vorn16s>(r, bands, spectrum).flagVar, 1) << i;
        r.frameCount = 5;
        spectrum[i + 1] = -32767;  // D = 2^31 - 65535, S = -65535: v = 2^37 - 2^32 - 4063169
        EXPECT_EQ(afterFrame<Vorn16s>(r, bands, spectrum).varTrack, -4063169) << i;
    }
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

// ---- The record

TYPED_TEST(DetectionMeasures, TheSizeIs64) {
    Guarded<int> size(1);
    EXPECT_EQ(Calls<TypeParam>::size(size), vornStsNoErr);
    EXPECT_EQ(size[0], 64);
    EXPECT_EQ(Calls<TypeParam>::size(nullptr), vornStsNullPtrErr);
}

TYPED_TEST(DetectionMeasures, TheRecordMayStandAnywhere) {
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

TYPED_TEST(DetectionMeasures, NoAddressOfAFrameMatters) {
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
TYPED_TEST(DetectionMeasures, FramesBeyondTheCount) {
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
TYPED_TEST(DetectionMeasures, ARecordOfAnyBytesHarmsNothingElse) {
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

TYPED_TEST(DetectionMeasures, Checks) {
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
