// A day of offset compensation: the filter settles, and the constant is gone.
#include <cmath>
#include <type_traits>

#include "endurance/day.h"

namespace {

constexpr int block = 160;

// All forms as one: the last input and the last output go from block to block.
template <class T>
using Filter = VornStatus (*)(const T*, T*, int, T*, T, float);

VornStatus inPlace32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f* last, Vorn32f dstLast, float val) {
    std::memcpy(dst, src, static_cast<std::size_t>(len) * sizeof *dst);
    return vornsCompensateOffset_32f_I(dst, len, last, dstLast, val);
}
VornStatus inPlace16s(const Vorn16s* src, Vorn16s* dst, int len, Vorn16s* last, Vorn16s dstLast, float val) {
    std::memcpy(dst, src, static_cast<std::size_t>(len) * sizeof *dst);
    return vornsCompensateOffset_16s_I(dst, len, last, dstLast, val);
}
VornStatus q15(const Vorn16s* src, Vorn16s* dst, int len, Vorn16s* last, Vorn16s dstLast, float val) {
    return vornsCompensateOffsetQ15_16s(src, dst, len, last, dstLast, static_cast<Vorn16s>(val * 32768.0f));
}
VornStatus inPlaceQ15(const Vorn16s* src, Vorn16s* dst, int len, Vorn16s* last, Vorn16s dstLast, float val) {
    std::memcpy(dst, src, static_cast<std::size_t>(len) * sizeof *dst);
    return vornsCompensateOffsetQ15_16s_I(dst, len, last, dstLast, static_cast<Vorn16s>(val * 32768.0f));
}

// What the last minute of so many is.
template <class T>
std::vector<T> lastMinute(const std::string& about, Filter<T> filter, const std::vector<T>& src, int minutes) {
    std::vector<T> dst(src.size());
    T srcLast = 0, dstLast = 0;
    test::expectEachMinuteTheSame(about, minutes, 2, dst, [&] {
        for (std::size_t at = 0; at < src.size(); at += block) {
            filter(&src[at], &dst[at], block, &srcLast, dstLast, 0.999f);
            dstLast = dst[at + block - 1];
        }
    });
    return dst;
}

template <class T>
double mean(const std::vector<T>& x) {
    double sum = 0;
    for (const T value : x) sum += static_cast<double>(value);
    return sum / static_cast<double>(x.size());
}

// A constant of 3000 below a signal of a quarter's amplitude, so that nothing saturates; then full scale, for an hour.
// Of a settled minute the filter's formula leaves (1 - val) (sum of y) = sum of what each step rounds away: the mean is
// within lowest and highest, the bounds of one step's rounding, over 1 - val.
template <class T>
void expectSettled(const std::string& about, Filter<T> filter, int minutes, double lowest, double highest,
                   std::uint64_t digest) {
    if (const char* why = test::whyNoDay()) GTEST_SKIP() << why;
    const std::vector<Vorn16s> sound = test::minuteOfSound();
    const std::vector<T> loud(sound.begin(), sound.end());
    std::vector<T> quiet;
    for (const Vorn16s x : sound) quiet.push_back(static_cast<T>(x / 4 + 3000));
    ASSERT_GT(mean(quiet), 3000.0);
    const std::vector<T> settled = lastMinute(about, filter, quiet, minutes);
    const double offset = mean(settled);
    EXPECT_GE(offset, lowest) << about;
    EXPECT_LE(offset, highest) << about;
    ::testing::Test::RecordProperty("mean", std::to_string(offset));
    const std::vector<T> fullScale = lastMinute(about + ", full scale", filter, loud, test::minutesOfAnHour);
    test::Digest all;
    all.add(settled);
    all.add(fullScale);
    EXPECT_EQ(all.value(), digest) << about << std::hex << ": 0x" << all.value();
}

// In single: two roundings by at most half a unit, which is 2^-9 below 2^15.
constexpr double single = 2 * 0x1p-10 / 0.001;
// Q12, 4091 of 4096: rounds down by less than 1.
constexpr double q12 = 1.0 / (1 - 4091.0 / 4096);
// Towards the nearest integer, and a few roundings of single that it does not see.
constexpr double nearest = 0.501 / 0.001;
// Q15, 32735 of 32768: towards zero by less than 1, but for the first sample of a block.
constexpr double towardsZero = 1.0 / (1 - 32735.0 / 32768);

constexpr int day = test::minutesOfADay, hour = test::minutesOfAnHour;
TEST(Offset, Of32f) {
    expectSettled<Vorn32f>("32f", vornsCompensateOffset_32f, day, -single, single, 0x118f1947a69e5b8f);
}
TEST(Offset, InPlace32f) { expectSettled<Vorn32f>("32f_I", inPlace32f, hour, -single, single, 0x118f1947a69e5b8f); }
TEST(Offset, Of16s) { expectSettled<Vorn16s>("16s", vornsCompensateOffset_16s, day, -q12, 1.0, 0xaf00566dcc7fb093); }
TEST(Offset, InPlace16s) { expectSettled<Vorn16s>("16s_I", inPlace16s, day, -nearest, nearest, 0xa97367f778080efd); }
TEST(Offset, Q15) { expectSettled<Vorn16s>("Q15_16s", q15, day, -towardsZero, towardsZero, 0x3022094794daa381); }
TEST(Offset, InPlaceQ15) {
    expectSettled<Vorn16s>("Q15_16s_I", inPlaceQ15, hour, -towardsZero, towardsZero, 0x3022094794daa381);
}

}  // namespace
