// What the voice activity detector decides from flags, counted by hand.
#include <climits>
#include <string>

#include "aurora/detection/detectors.h"
#include "support/values.h"

namespace {

using namespace test::detectors;
using test::Random;

template <class T>
class DetectionDecisions : public ::testing::Test {};
TYPED_TEST_SUITE(DetectionDecisions, Families);

const std::string zeros10 = times(10, '0'), undecided10 = times(10, '.');

TYPED_TEST(DetectionDecisions, TheFirstTenFramesAreUndecidedWhateverTheyHold) {
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

TYPED_TEST(DetectionDecisions, QuietIsNoSpeechFromTheEleventhFrameOn) {
    Detector<TypeParam> detector;
    EXPECT_EQ(decisions(detector, times(200, '0')), undecided10 + times(190, '-'));
}

TYPED_TEST(DetectionDecisions, ActivityIsSpeechFromTheThirteenthFrameOn) {
    Detector<TypeParam> detector;
    EXPECT_EQ(decisions(detector, times(60, '1')), undecided10 + "--" + times(48, 'S'));
    // Four is not activity, five is.
    Detector<TypeParam> atFour;
    for (int n = 0; n < 30; ++n) {
        EXPECT_EQ(atFour.decide(quiet<TypeParam>(25), quiet<TypeParam>(64), 4), n < 10 ? U : N);
    }
    Detector<TypeParam> huge;
    for (int n = 0; n < 30; ++n) {
        EXPECT_EQ(huge.decide(quiet<TypeParam>(25), quiet<TypeParam>(64), INT_MAX), n < 10 ? U : n < 12 ? N : S);
    }
    Detector<TypeParam> negative;
    for (int n = 0; n < 30; ++n) {
        EXPECT_EQ(negative.decide(quiet<TypeParam>(25), quiet<TypeParam>(64), INT_MIN), n < 10 ? U : N);
    }
}

TYPED_TEST(DetectionDecisions, ActivityOfTheFirstTenFramesLeavesNoTrace) {
    Detector<TypeParam> detector;
    EXPECT_EQ(decisions(detector, times(10, '1') + times(30, '0')), undecided10 + times(30, '-'));
}

// A run of three is whole in the ring from its last frame to the fourth one behind it; then the counter falls from 5,
// and the frame that brings it to 0 is no speech.
TYPED_TEST(DetectionDecisions, ThreeFramesHoldOnShortly) {
    Detector<TypeParam> detector;
    // Frames 11, 12, 13 active. The run of 3 is whole in frames 13 to 17; frames 18 to 21 count 4, 3, 2, 1.
    EXPECT_EQ(decisions(detector, zeros10 + "111" + times(20, '0')), undecided10 + "--SSSSSSSSS" + times(12, '-'));
    const auto r = detector.record();
    EXPECT_EQ(r.hangCount, 0);
    EXPECT_EQ(r.hangReload, 23) << "a run of three reloads nothing";
}

TYPED_TEST(DetectionDecisions, TwoFramesOrScatteredOnesAreNoSpeech) {
    Detector<TypeParam> detector;
    EXPECT_EQ(decisions(detector, zeros10 + "11011011011" + times(10, '0')), undecided10 + times(21, '-'));
}

// Frames 11 to 14 active: four in a row are in the ring of frames 14 to 17, three in that of 18. Frame 14, before frame
// 36, loads 23 and sets the reload to 40, which the next three frames load.
TYPED_TEST(DetectionDecisions, ALongRunBeforeFrame36LoadsFortyAtOnce) {
    Detector<TypeParam> detector;
    // Frames 19 to 57 count 39 to 1, frame 58 reaches 0.
    const std::string expected = undecided10 + "--" + times(57 - 12, 'S') + times(12, '-');
    EXPECT_EQ(decisions(detector, zeros10 + "1111" + times(55, '0')), expected);
    EXPECT_EQ(detector.record().hangReload, 40);
}

// The same from frame 36 on: the reload stays 23.
TYPED_TEST(DetectionDecisions, ALongRunAfterFrame35LoadsTwentyThree) {
    Detector<TypeParam> detector;
    // Frames 33 to 36 active: four in a row in frames 36 to 39, three in frame 40; 41 to 62 count 22 to 1.
    const std::string expected = undecided10 + times(24, '-') + times(62 - 34, 'S') + times(10, '-');
    EXPECT_EQ(decisions(detector, times(32, '0') + "1111" + times(36, '0')), expected);
    EXPECT_EQ(detector.record().hangReload, 23);
    // One frame earlier the reload changes in frame 35, and frames 36 to 38 load it: 40 to 78 count 39 to 1.
    Detector<TypeParam> earlier;
    const std::string longer = undecided10 + times(23, '-') + times(78 - 33, 'S') + times(10, '-');
    EXPECT_EQ(decisions(earlier, times(31, '0') + "1111" + times(53, '0')), longer);
}

// The oldest entry of the ring stands behind the newest one: a run does not go on from the newest to the oldest.
TYPED_TEST(DetectionDecisions, ARunDoesNotWrapFromTheNewestToTheOldestFrame) {
    Detector<TypeParam> detector;
    // Frames 11, 12 and 16, 17 active: in frame 17 the ring reads 1100011, in a circle four in a row.
    EXPECT_EQ(decisions(detector, zeros10 + "1100011" + times(10, '0')), undecided10 + times(17, '-'));
}

// Each measure of its own sets a speech bit.
TYPED_TEST(DetectionDecisions, EachMeasureFlagsAFrame) {
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

// The energy of a frame of zeros is -3, which lies above 1.65 times -3: the frame counts as one with speech.
TYPED_TEST(DetectionDecisions, ZerosSetTheFlagOfTheBands) {
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

TYPED_TEST(DetectionDecisions, FlushesAfterQuiet) {
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

TYPED_TEST(DetectionDecisions, FlushesAfterActivity) {
    Detector<TypeParam> detector;
    decisions(detector, times(40, '1'));
    EXPECT_EQ(flushes(detector, 7), "SSSSSS.");
    const auto r = detector.record();
    EXPECT_EQ(r.hangCount, 39) << "the ring stays as it is, and each flush loads 40 less one";
    EXPECT_EQ(r.shortHang, 4);
}

// Each flush reads the ring from one entry further on.
TYPED_TEST(DetectionDecisions, FlushesTurnTheRing) {
    Detector<TypeParam> detector;
    decisions(detector, times(20, '0') + "0000111");
    // 0001110, 0011100, 0111000 and 1110000 have the run of three, which leaves 5 - 1 each time; 1100001 and 1000011
    // have two, with 3 and 2 left.
    EXPECT_EQ(flushes(detector, 7), "SSSSSS.");
    EXPECT_EQ(detector.record().shortHang, 2);
    EXPECT_EQ(detector.record().hangCount, -6);
    // The next round is the same again.
    EXPECT_EQ(flushes(detector, 7), "SSSSSS.");
    EXPECT_EQ(detector.record().shortHang, 2);
    // Two in a row are no speech, and the counters fall from zero.
    Detector<TypeParam> two;
    decisions(two, times(20, '0') + "0000011");
    EXPECT_EQ(flushes(two, 7), "------.");
    EXPECT_EQ(two.record().shortHang, -6);
}

TYPED_TEST(DetectionDecisions, AHangOverEndsDuringTheFlush) {
    Detector<TypeParam> detector;
    // The run of three is whole for four frames behind it; the fifth has 1100000, and 4 left.
    decisions(detector, times(20, '0') + "111" + "00000");
    EXPECT_EQ(detector.record().shortHang, 4);
    // Never three in a row: 3, 2, 1, and 0 ends it.
    EXPECT_EQ(flushes(detector, 7), "SSS---.");
}

// Before frame 36 a long run in the flush sets the reload to 40 behind its use, and the next one loads that.
TYPED_TEST(DetectionDecisions, TheReloadChangesInTheFlushAsWell) {
    Detector<TypeParam> detector;
    decisions(detector, zeros10 + "1111");  // frame 14 has the run of 4 and loads 23
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

// Counters that a flush has left below zero are not zero: frames behind it fall on, and are speech.
TYPED_TEST(DetectionDecisions, FramesBehindAFlushWithoutInit) {
    Detector<TypeParam> detector;
    decisions(detector, times(20, '0'));
    flushes(detector, 7);
    EXPECT_EQ(decisions(detector, "000"), "SSS");
    EXPECT_EQ(detector.record().shortHang, -9);
    EXPECT_EQ(detector.record().hangCount, -9);
}

TYPED_TEST(DetectionDecisions, AFlushBeforeFrameElevenIsUndecided) {
    Detector<TypeParam> detector;
    decisions(detector, "1111");
    EXPECT_EQ(flushes(detector, 6), "......");  // frames 5 to 10
    EXPECT_EQ(detector.record().ringHead, 6);
    EXPECT_EQ(detector.record().ringTail, 0);
    EXPECT_EQ(detector.record().shortHang, 0) << "it ends before the counters";
    EXPECT_EQ(flushes(detector, 8), ".------.");  // the tail, six decisions, the tail
}

TYPED_TEST(DetectionDecisions, InitRestartsEverything) {
    Detector<TypeParam> detector, fresh;
    decisions(detector, times(50, '1'));
    flushes(detector, 9);
    EXPECT_EQ(Calls<TypeParam>::init(detector.state()), vornStsNoErr);
    EXPECT_TRUE(sameRecord(detector.record(), fresh.record()));
    EXPECT_EQ(decisions(detector, times(30, '1')), decisions(fresh, times(30, '1')));
    EXPECT_TRUE(sameRecord(detector.record(), fresh.record()));
}

TYPED_TEST(DetectionDecisions, InitByHand) {
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

}  // namespace
