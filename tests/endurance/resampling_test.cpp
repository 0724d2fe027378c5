// A day of resampling: the time of every output against its exact rational place, the number of outputs, and, where
// time does not add up roundings, every second bit for bit like the one before.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "endurance/day.h"

namespace {

// A second at a rate, of every tenth sample of the minute, so that it has all kinds of sound; with what a filter reads
// around a block on either side.
template <class T>
class Second {
public:
    Second(int rate, int around) : rate_(rate), around_(around) {
        const std::vector<Vorn16s> minute = test::minuteOfSound();
        for (int n = -around; n < rate + around; ++n) {
            samples_.push_back(static_cast<T>(minute[static_cast<std::size_t>((n % rate + rate) % rate * 10)]));
        }
    }
    // From sample n on of the endless signal, as many as a block has and what stands around them.
    const T* from(std::int64_t n) const { return &samples_[static_cast<std::size_t>(n % rate_ + around_)]; }

private:
    int rate_, around_;
    std::vector<T> samples_;
};

// What a stream of blocks was: the worst time stamp, the outputs, and those that differ from the ones a second earlier.
struct Stream {
    double worstTime = 0;
    std::int64_t made = 0, samples = 0, calls = 0, unlike = 0;
    std::uint64_t digest = 0;
    int allocations = 0;
};

// call(src, len, dst, &time, &made) for hours of blocks of blockLen samples; in and out are the rates in hertz. Seconds
// are compared where repeats is set.
template <class T, class Call>
Stream stream(int hours, int in, int out, int blockLen, bool repeats, const Call& call) {
    constexpr int around = 64;
    const Second<T> sound(in, blockLen + around);
    std::vector<T> block(static_cast<std::size_t>(static_cast<std::int64_t>(blockLen) * out / in + 2));
    std::vector<T> secondBefore(static_cast<std::size_t>(out));
    Stream result;
    test::Digest digest;
    double time = 0;
    const std::int64_t end = std::int64_t{hours} * 3600 * in;
    test::FailAllocation watch(0);
    while (result.samples < end) {
        const int base = static_cast<int>(time);
        int made = 0;
        if (base < blockLen) call(sound.from(result.samples), blockLen - base, block.data(), &time, &made);
        // Output number m belongs at m in/out: the next one, in samples from this block's first one on.
        const std::int64_t exact = (result.made + made) * in - result.samples * out;
        result.worstTime = std::fmax(result.worstTime, std::fabs(time - static_cast<double>(exact) / out));
        for (int i = 0; i < made && repeats;) {
            const std::int64_t at = (result.made + i) % out;
            const int run = static_cast<int>(std::min<std::int64_t>(made - i, out - at));
            T* before = &secondBefore[static_cast<std::size_t>(at)];
            const std::size_t bytes = static_cast<std::size_t>(run) * sizeof(T);
            const T* now = &block[static_cast<std::size_t>(i)];
            if (result.made + i >= out) result.unlike += std::memcmp(before, now, bytes) != 0;
            std::memcpy(before, now, bytes);
            i += run;
        }
        result.made += made;
        time -= blockLen;
        result.samples += blockLen;
        ++result.calls;
    }
    result.allocations = watch.calls();
    digest.add(repeats ? secondBefore : block);
    digest.add(&time, sizeof time);
    digest.add(&result.made, sizeof result.made);
    result.digest = digest.value();
    return result;
}

void expectStream(const Stream& stream, int in, int out, double timeBound, std::uint64_t digest) {
    // As many outputs as have a place before the end, the first one at 0; one at the border may fall on either side
    // where steps are not exact.
    const std::int64_t outputs = (stream.samples * out + in - 1) / in;
    EXPECT_LE(std::llabs(stream.made - outputs), timeBound < 1e-4 ? 0 : 1);
    EXPECT_LE(stream.worstTime, timeBound);
    EXPECT_EQ(stream.unlike, 0);
    EXPECT_EQ(stream.allocations, 0);
    EXPECT_EQ(stream.digest, digest) << std::hex << "0x" << stream.digest;
    char text[32];
    std::snprintf(text, sizeof text, "%.3g", stream.worstTime);
    ::testing::Test::RecordProperty("worst time", text);
}

// The time keeps what a caller's fraction has beside the phases, and with it the roundings of each call, of at most
// 2^-44 below 1024 samples. Outputs take the nearest phase, so that a rounding would have to grow to half a phase,
// which is 0.0125 of a sample here, before any of them changed.
template <class T, class State, class Call>
void expectADayOfFixed(State* state, const Call& resample, std::uint64_t digest) {
    const Stream day =
        stream<T>(24, 44100, 4000, 1000, true, [&](const T* src, int len, T* dst, double* time, int* made) {
            resample(state, src, len, dst, 1.0f, time, made);
        });
    expectStream(day, 44100, 4000, static_cast<double>(day.calls) * 0x1p-44, digest);
}

// Each output adds a rounding to the time, of at most 2^-38 below 65536 samples. For a day at 44100 Hz in blocks of a
// second the header promises 0.01 of a sample: here a day of an eighth as many outputs, in blocks as long.
template <class T, class State, class Call>
void expectVariable(State* state, const Call& resample, int hours, int in, int out, double timeBound,
                    std::uint64_t digest) {
    const double factor = static_cast<double>(out) / in;
    const Stream result =
        stream<T>(hours, in, out, 44100, false, [&](const T* src, int len, T* dst, double* time, int* made) {
            resample(state, src, len, dst, factor, 1.0f, time, made);
        });
    expectStream(result, in, out, timeBound, digest);
}

// Filters are the shortest there are: a day is about time, not about taps.
TEST(FixedResampling, ADayOf32f) {
    if (const char* why = test::whyNoDay()) GTEST_SKIP() << why;
    VornResampleFixedState_32f* state = nullptr;
    ASSERT_EQ(vornsResamplePolyphaseFixedInitAlloc_32f(&state, 44100, 4000, 5, 0, 0.9f, 5.0f), vornStsNoErr);
    expectADayOfFixed<Vorn32f>(state, vornsResamplePolyphaseFixed_32f, 0x22cfc136345eafd8);
    vornsResamplePolyphaseFixedFree_32f(state);
}

TEST(FixedResampling, ADayOf16s) {
    if (const char* why = test::whyNoDay()) GTEST_SKIP() << why;
    VornResampleFixedState_16s* state = nullptr;
    ASSERT_EQ(vornsResamplePolyphaseFixedInitAlloc_16s(&state, 44100, 4000, 5, 0, 0.9f, 5.0f), vornStsNoErr);
    expectADayOfFixed<Vorn16s>(state, vornsResamplePolyphaseFixed_16s, 0xc72603d77d7b3a34);
    vornsResamplePolyphaseFixedFree_16s(state);
}

TEST(VariableResampling, ADayOf32f) {
    if (const char* why = test::whyNoDay()) GTEST_SKIP() << why;
    VornResampleState_32f* state = nullptr;
    ASSERT_EQ(vornsResamplePolyphaseInitAlloc_32f(&state, 2, 0, 1.0f, 1.0f, 1.0f), vornStsNoErr);
    expectVariable<Vorn32f>(state, vornsResamplePolyphase_32f, 24, 11025, 2000, 0.01 / 8, 0xa76166f879e7b74c);
    if (std::getenv("VORNSR_WHOLE_DAYS") != nullptr) {
        expectVariable<Vorn32f>(state, vornsResamplePolyphase_32f, 24, 44100, 16000, 0.01, 0xc2870ecbef93e986);
    }
    vornsResamplePolyphaseFree_32f(state);
}

TEST(VariableResampling, AnHourOf16s) {
    if (const char* why = test::whyNoDay()) GTEST_SKIP() << why;
    VornResampleState_16s* state = nullptr;
    ASSERT_EQ(vornsResamplePolyphaseInitAlloc_16s(&state, 2, 0, 1.0f, 1.0f, 1.0f), vornStsNoErr);
    expectVariable<Vorn16s>(state, vornsResamplePolyphase_16s, 1, 44100, 16000, 0.01 / 24, 0x4a417ee4776ec65f);
    vornsResamplePolyphaseFree_16s(state);
}

// A step of 0.625 is exact, and so are all times: every second is the same, whatever the blocks.
TEST(VariableResampling, AnHourOfExactSteps) {
    if (const char* why = test::whyNoDay()) GTEST_SKIP() << why;
    VornResampleState_32f* state = nullptr;
    ASSERT_EQ(vornsResamplePolyphaseInitAlloc_32f(&state, 32, 0, 16.0f, 0.9f, 6.0f), vornStsNoErr);
    const Stream hour = stream<Vorn32f>(1, 10000, 16000, 333, true,
                                        [&](const Vorn32f* src, int len, Vorn32f* dst, double* time, int* made) {
                                            vornsResamplePolyphase_32f(state, src, len, dst, 1.6, 1.0f, time, made);
                                        });
    expectStream(hour, 10000, 16000, 0.0, 0x7f13c40c1b886a20);
    vornsResamplePolyphaseFree_32f(state);
}

}  // namespace
