// A detector of either family in the caller's memory, alone or beside the model, for the tests of its parts.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "model/detection.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "vornsr.h"

namespace test::detectors {

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
    // misaligned: bytes between the record and the border of a page.
    explicit Detector(std::size_t misaligned = 0)
        : memory_(64 + misaligned), at_(guardStandsBefore() ? misaligned : 0) {
        EXPECT_EQ(Calls<T>::init(state()), vornStsNoErr);
    }
    VornsVADState* state() { return reinterpret_cast<VornsVADState*>(memory_.data() + at_); }
    int decide(const T* bands, const T* spectrum, int activity) {
        int result = 77;
        EXPECT_EQ(Calls<T>::decision(bands, spectrum, activity, &result, state()), vornStsNoErr);
        return result;
    }
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
#define SAME(field)                    \
    if (!test::same(a.field, b.field)) \
    return ::testing::AssertionFailure() << #field << ": " << show(a.field) << ", expected " << show(b.field)
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
        return agree(detector_.decide(bands_, spectrum_, activity),
                     model::decideFrame(model_, bands.data(), spectrum.data(), activity));
    }
    bool flush() { return agree(detector_.flush(), model::flushDetector(model_)); }
    int count(int decision) const { return counts_[decision]; }
    const Record<T>& record() const { return model_; }

private:
    bool agree(int decision, int expected) {
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

using Families = ::testing::Types<Vorn32f, Vorn16s>;

// A number as an element: rounded and saturated where those are integers.
template <class T>
T element(double x) {
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(x);
    } else {
        return static_cast<T>(std::lround(std::min(std::max(x, -32768.0), 32767.0)));
    }
}

// Elements of frames that set no flag: all measures stay what they are from the first frame on.
template <class T>
std::vector<T> quiet(int len) {
    return std::vector<T>(static_cast<std::size_t>(len), T(10));
}

inline char letter(int decision) { return decision == U ? '.' : decision == S ? 'S' : decision == N ? '-' : '?'; }

// The decisions on such frames, with activity where the text has a 1: '.' is undecided, 'S' speech, '-' no speech.
template <class T>
std::string decisions(Detector<T>& detector, const std::string& activity) {
    const auto bands = quiet<T>(numberOfBands), spectrum = quiet<T>(spectrumLength);
    std::string told;
    for (char active : activity) {
        told += letter(detector.decide(bands, spectrum, active == '1' ? 5 : 4));
        const auto r = detector.record();
        EXPECT_EQ(r.flagBands + r.flagLow + r.flagVar, 0) << "frame " << r.frameCount;
    }
    return told;
}
template <class T>
std::string flushes(Detector<T>& detector, int count) {
    std::string told;
    for (int n = 0; n < count; ++n) told += letter(detector.flush());
    return told;
}
inline std::string times(std::size_t n, char c) { return std::string(n, c); }

// The record behind one frame from a record that a test makes up.
template <class T>
Record<T> afterFrame(Record<T> before, const std::vector<T>& bands, const std::vector<T>& spectrum) {
    Detector<T> detector;
    detector.setRecord(before);
    detector.decide(bands, spectrum, 0);
    return detector.record();
}
// A record behind the first frames.
template <class T>
Record<T> late() {
    auto r = model::newDetector<typename Calls<T>::Tracker>();
    r.frameCount = 100;
    return r;
}

}  // namespace test::detectors
