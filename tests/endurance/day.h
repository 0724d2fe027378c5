// A day of sound: one minute of speech, silence, constant and full scale, 1440 times over. What streams it has to
// settle, and from then on to give every minute what it gave the one before, bit for bit: no drift, no counter that
// runs out, no memory that grows. All numbers here are made without the C library, so that every build has the same
// ones.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "support/allocation.h"
#include "support/values.h"
#include "vornsr.h"

namespace test {

inline constexpr int minutesOfADay = 24 * 60, minutesOfAnHour = 60;
inline constexpr int sampleRate = 8000, minuteLen = 60 * sampleRate;

// Why this run of the tests leaves the days out; null where it does not.
inline const char* whyNoDay() {
#ifdef VORNSR_SANITIZED
    return "a day is too long under a sanitizer, which meets the same calls in the tests of the families";
#endif
    return nullptr;
}

// Voiced syllables, two of every three tenths of a second: pulses of a gliding pitch through two resonances, of some
// 550 and 1600 Hz at 8000 samples a second.
class Voice {
public:
    double next(int n, bool speaks) {
        const int inSyllable = n % 2400;
        double pulse = 0;
        if (--untilPulse_ <= 0) {
            period_ = period_ < 110 ? period_ + 1 : 60;
            untilPulse_ = period_;
            if (inSyllable < 1600 && speaks)
                pulse = 3000.0 * static_cast<double>(800 - std::abs(inSyllable - 800)) / 800.0;
        }
        const double a = pulse + 1.72 * a1_ - 0.9025 * a2_, b = pulse + 0.58 * b1_ - 0.8649 * b2_;
        a2_ = a1_, a1_ = a;
        b2_ = b1_, b1_ = b;
        return a + b;
    }

private:
    double a1_ = 0, a2_ = 0, b1_ = 0, b2_ = 0;
    int untilPulse_ = 0, period_ = 80;
};

inline Vorn16s sampleOf(double x) { return static_cast<Vorn16s>(x < -32768.0 ? -32768.0 : x > 32767.0 ? 32767.0 : x); }

// One minute in 16 bits: 20 s of syllables over faint noise, 6 s of speech and 4 s of pause in turn, 10 s without a
// sound, 5 s of a square of full scale, 5 s of a constant with noise, 20 s of syllables over loud noise.
inline std::vector<Vorn16s> minuteOfSound() {
    Random random(24);
    Voice voice;
    std::vector<Vorn16s> samples;
    for (int n = 0; n < minuteLen; ++n) {
        const int second = n / sampleRate;
        const double noise = random.uniform(-1.0, 1.0), speech = voice.next(n, second % 10 < 6);
        double x = speech + (second < 20 ? 8.0 : 1500.0) * noise;
        if (second >= 20 && second < 30) x = 0;
        if (second >= 30 && second < 35) x = n / 20 % 2 == 0 ? 32767.0 : -32768.0;
        if (second >= 35 && second < 40) x = 12000.0 + 100.0 * noise;
        samples.push_back(sampleOf(x));
    }
    return samples;
}

// One minute of syllables over steady noise, 4 s of speech and 6 s of pause in turn.
inline std::vector<Vorn16s> minuteOfSteadyNoise() {
    Random random(25);
    Voice voice;
    std::vector<Vorn16s> samples;
    for (int n = 0; n < minuteLen; ++n) {
        samples.push_back(sampleOf(voice.next(n, n / sampleRate % 10 < 4) + 300.0 * random.uniform(-1.0, 1.0)));
    }
    return samples;
}

// Of results, 8 bytes at a time. Small enough to stand in the inner loop of a day.
class Digest {
public:
    void add(const void* data, std::size_t bytes) {
        const auto* p = static_cast<const unsigned char*>(data);
        for (; bytes >= 8; bytes -= 8, p += 8) {
            std::uint64_t word;
            std::memcpy(&word, p, 8);
            mix(word);
        }
        std::uint64_t rest = 0;
        std::memcpy(&rest, p, bytes);
        if (bytes != 0) mix(rest);
    }
    template <class T>
    void add(const std::vector<T>& values) {
        add(values.data(), values.size() * sizeof(T));
    }
    std::uint64_t value() const { return value_; }

private:
    void mix(std::uint64_t word) {
        value_ = (value_ ^ word) * 0x9E3779B97F4A7C15ull;
        value_ ^= value_ >> 29;
    }
    std::uint64_t value_ = 0;
};

// Runs one minute after the other and compares what each leaves in output with the minute before, from minute `settled`
// on. Within a minute nothing may be allocated.
template <class T, class RunMinute>
void expectEachMinuteTheSame(const std::string& about, int minutes, int settled, std::vector<T>& output,
                             const RunMinute& runMinute) {
    std::vector<T> before(output.size());
    int changed = 0, lastChanged = -1;
    FailAllocation watch(0);
    for (int minute = 0; minute < minutes; ++minute) {
        runMinute();
        if (minute > settled && std::memcmp(output.data(), before.data(), output.size() * sizeof(T)) != 0) {
            ++changed;
            lastChanged = minute;
        }
        if (minute >= settled) std::memcpy(before.data(), output.data(), output.size() * sizeof(T));
    }
    const int calls = watch.calls(), outstanding = watch.outstanding();
    EXPECT_EQ(changed, 0) << about << ": minutes unlike the one before, of " << minutes << ", the last of them "
                          << lastChanged;
    EXPECT_EQ(calls, 0) << about << ": allocations";
    EXPECT_EQ(outstanding, 0) << about;
}

}  // namespace test
