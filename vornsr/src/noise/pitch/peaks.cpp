// Peaks: so many steps up and so many down. First every step of the signal is compared, a bit each; then the rises and
// falls are runs of bits.
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "frame/checks.h"
#include "frame/rounding.h"
#include "simd/block.h"
#include "simd/simd.h"
#include "vornsr/noise.h"

namespace vorn::pitch {
namespace {

constexpr int longest = 65535, largestSearch = 127, largestAverage = 127;

// A bit a step, from one value of the signal to the next.
class Bits {
public:
    std::uint64_t& word(std::ptrdiff_t step) { return words_[step / 64]; }
    bool operator[](std::ptrdiff_t step) const { return (words_[step / 64] >> (step % 64) & 1) != 0; }
    // The first step at or behind `step` whose bit is set, or `end`.
    std::ptrdiff_t next(std::ptrdiff_t step, std::ptrdiff_t end) const {
        if (step >= end) return end;
        std::ptrdiff_t at = step / 64;
        std::uint64_t word = words_[at] >> (step % 64) << (step % 64);
        while (word == 0) {
            if (++at * 64 >= end) return end;
            word = words_[at];
        }
        return std::min<std::ptrdiff_t>(at * 64 + std::countr_zero(word), end);
    }

private:
    std::uint64_t words_[(longest + 63) / 64];
};

// Where the signal does not rise, and where it does not fall. Both hold on the flat, neither beside a not-a-number.
struct Steps {
    Bits notUp, notDown;
    bool flat(std::ptrdiff_t step) const { return notUp[step] && notDown[step]; }
    bool falls(std::ptrdiff_t step) const { return notUp[step] && !notDown[step]; }
};

VORN_INLINE auto notBelow(f32xN a, f32xN b) { return a >= b; }
VORN_INLINE auto notBelow(f64xN a, f64xN b) { return a >= b; }
VORN_INLINE auto notBelow(i32xN a, i32xN b) { return !(b > a); }

// The 64 steps from `step` on, between 65 values.
template <class T>
VORN_INLINE void compareSteps(const T* value, std::ptrdiff_t step, Steps& steps) {
    using V = Wide<T>;
    std::uint64_t notUp = 0, notDown = 0;
    for (int k = 0; k < 64; k += V::lanes) {
        const V now = load<V>(value + k), next = load<V>(value + k + 1);
        notUp |= std::uint64_t{laneBits(notBelow(now, next))} << k;
        notDown |= std::uint64_t{laneBits(notBelow(next, now))} << k;
    }
    steps.notUp.word(step) = notUp;
    steps.notDown.word(step) = notDown;
}

// The signal as it is.
template <class T>
VORN_NOINLINE void stepsOf(const T* src, std::ptrdiff_t len, Steps& steps) {
    std::ptrdiff_t i = 0;
    for (; i + 64 < len; i += 64) compareSteps(src + i, i, steps);
    if (i + 1 < len) {
        T rest[65] = {};
        std::copy(src + i, src + len, rest);
        compareSteps(rest, i, steps);
    }
}

// Means over 2 m + 1 samples, fewer at the ends, a block of the signal at a time. With zeros in the place of the
// missing samples all windows are of one length, and no sum changes.
constexpr int block = 256;
struct Window {
    Vorn64f sample[block + 2 * largestAverage + 4 * f64xN::lanes];
    Vorn64f samples[block];  // how many there are around each
};
template <class T>
void fillWindow(const T* src, std::ptrdiff_t len, int m, std::ptrdiff_t first, Window& window) {
    const std::ptrdiff_t begin = first - m, end = first + block + m;
    const std::ptrdiff_t from = std::max<std::ptrdiff_t>(begin, 0), to = std::min(end, len);
    std::fill(window.sample, window.sample + (from - begin), 0.0);
    std::copy(src + from, src + to, window.sample + (from - begin));
    std::fill(window.sample + (to - begin), window.sample + (end - begin), 0.0);
    for (std::ptrdiff_t k = 0; k < block; ++k) {
        const std::ptrdiff_t i = std::min(first + k, len - 1);
        window.samples[k] =
            static_cast<Vorn64f>(std::min<std::ptrdiff_t>(i + m, len - 1) - std::max<std::ptrdiff_t>(i - m, 0) + 1);
    }
}

// Each mean adds its samples from the first to the last; neighbouring means stand in lanes.
struct Mean_32f {
    using Value = Vorn64f;
    static void of(const Window& window, int m, int count, Vorn64f* mean) {
        constexpr int vectors = 4, lanes = f64xN::lanes;
        for (int k = 0; k < count; k += vectors * lanes) {
            f64xN sum[vectors];
            for (int v = 0; v < vectors; ++v) sum[v] = load<f64xN>(window.sample + k + v * lanes);
            for (int j = 1; j <= 2 * m; ++j) {
                for (int v = 0; v < vectors; ++v) sum[v] = sum[v] + load<f64xN>(window.sample + k + j + v * lanes);
            }
            for (int v = 0; v < vectors; ++v) {
                store(mean + k + v * lanes, sum[v] / load<f64xN>(window.samples + k + v * lanes));
            }
        }
    }
};
// Sums of integers are exact in doubles, in any order, and a quotient comes never so near to an integer that rounding
// could reach it.
struct Mean_32s {
    using Value = Vorn32s;
    static void of(const Window& window, int m, int count, Vorn32s* mean) {
        Vorn64f sum[block] = {}, running = 0;
        for (int k = 0; k < 2 * m; ++k) running += window.sample[k];
        for (int k = 0; k < count; ++k) {
            running += window.sample[k + 2 * m];
            sum[k] = running;
            running -= window.sample[k];
        }
        for (int k = 0; k < count; k += i32xN::lanes) {
            const auto quotient = [&](int i) __attribute__((always_inline)) {
                return load<f64xN>(sum + i) / load<f64xN>(window.samples + i);
            };
            store(mean + k, truncToInt(quotient(k), quotient(k + f64xN::lanes)));
        }
    }
};

template <class Mean, class T>
VORN_NOINLINE void stepsOfMeans(const T* src, std::ptrdiff_t len, int m, Steps& steps) {
    using Value = typename Mean::Value;
    Vorn64f sum = 0;
    for (int i = 0; i <= m; ++i) sum += static_cast<Vorn64f>(src[i]);
    Window window;
    Value mean[1 + block] = {static_cast<Value>(sum / (m + 1))};  // in front of each block stands the value before it
    for (std::ptrdiff_t before = 0; before + 1 < len; before += block) {
        const int count = static_cast<int>(std::min<std::ptrdiff_t>(block, len - 1 - before));
        fillWindow(src, len, m, before + 1, window);
        Mean::of(window, m, count, mean + 1);
        for (int k = 0; k < count; k += 64) compareSteps(mean + k, before + k, steps);
        mean[0] = mean[block];
    }
}

// dst is all zeros. The signal has two values or more.
template <class T>
void markPeaks(const Steps& steps, const T* src, int len, int search, Vorn8u* dst) {
    const std::ptrdiff_t n = len, q = search, last = n - 1;
    std::ptrdiff_t i = 1;
    while (i < n && steps.falls(i - 1)) ++i;
    if (i == n || i - 1 >= q) dst[0] = 1;  // a fall alone makes a peak of the first value
    if (i == n) return;
    if (i == last) {  // one step is left; it is the signal's own, whatever the means do
        if (q == 1 && src[last] > src[last - 1]) dst[last] = 1;
        return;
    }
    for (; i < n; ++i) {
        const std::ptrdiff_t top = steps.notUp.next(i, last);
        const std::ptrdiff_t rise = (steps.flat(i - 1) ? 0 : 1) + top - i;
        if (top == last) {
            if (rise >= std::min(top, q)) dst[top] = 1;
            return;
        }
        i = top;
        if (steps.notDown[top]) continue;  // flat: the count begins again behind it
        i = steps.notDown.next(top + 1, last);
        const std::ptrdiff_t fall = i - top;
        if (rise >= std::min(top, q) && fall >= (top < n - q ? q : last - top)) dst[top] = 1;
    }
}

template <class Mean, class T>
VornStatus findPeaks(const T* src, Vorn8u* dst, int len, int search, int average) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(require(len >= 1 && len <= longest, vornStsLengthLimitErr));
    VORN_CHECK(positive(search));
    VORN_CHECK(require(search <= largestSearch && average >= 0 && average <= largestAverage, vornStsSizeErr));
    std::memset(dst, 0, static_cast<std::size_t>(len));
    if (len == 1) {
        dst[0] = 1;
    } else if (average < len - 1) {
        Steps steps;
        if (average == 0) {
            stepsOf(src, len, steps);
        } else {
            stepsOfMeans<Mean>(src, len, average, steps);
        }
        markPeaks(steps, src, len, search, dst);
    }
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::pitch

using namespace vorn;

VornStatus vornsFindPeaks_32f8u(const Vorn32f* src, Vorn8u* dst, int len, int searchSize, int movingAvgSize) {
    return pitch::findPeaks<pitch::Mean_32f>(src, dst, len, searchSize, movingAvgSize);
}

VornStatus vornsFindPeaks_32s8u(const Vorn32s* src, Vorn8u* dst, int len, int searchSize, int movingAvgSize) {
    return pitch::findPeaks<pitch::Mean_32s>(src, dst, len, searchSize, movingAvgSize);
}
