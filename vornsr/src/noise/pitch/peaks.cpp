// Peaks: so many steps up and so many down. First every step of the signal is compared, a bit each; then the rises and
// falls are runs of bits.
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "frame/checks.h"
#include "frame/rounding.h"
#include "simd/block.h"
#include "simd/simd.h"
#include "vornsr/noise.h"

namespace vorn::pitch {
namespace {

constexpr int longest = 65535, largestSearch = 127, largestAverage = 127;

// A bit a step, from one value of the signal to the next; a word before the first bit and one behind the last.
class Bits {
public:
    Bits() { words_[0] = ~std::uint64_t{0}; }
    std::uint64_t& word(std::ptrdiff_t k) { return words_[k + 1]; }
    bool operator[](std::ptrdiff_t step) const { return (words_[step / 64 + 1] >> (step % 64) & 1) != 0; }
    void set(std::ptrdiff_t step) { words_[step / 64 + 1] |= std::uint64_t{1} << (step % 64); }
    // All bits from `step` on to the word behind the last one.
    void setFrom(std::ptrdiff_t step, std::ptrdiff_t words) {
        word(step / 64) |= ~std::uint64_t{0} << (step % 64);
        for (std::ptrdiff_t k = step / 64 + 1; k <= words; ++k) word(k) = ~std::uint64_t{0};
    }

    // Each bit becomes the bit in front of it; what stands before the first one is set.
    void moveUp(std::ptrdiff_t words) {
        for (std::ptrdiff_t k = words - 1; k >= 0; --k) word(k) = word(k) << 1 | word(k - 1) >> 63;
    }
    // Keeps the bits that end a run of `length` set ones, or that begin one. Runs grow by what is known of shorter
    // ones.
    void keepEndsOfRuns(int length, std::ptrdiff_t words) {
        for (int known = 1, more; known < length; known += more) {
            more = std::min(known, length - known);
            for (std::ptrdiff_t k = words - 1; k >= 0; --k) {
                word(k) &= word(k) << more | word(k - 1) >> (64 - more);
            }
        }
    }
    void keepBeginningsOfRuns(int length, std::ptrdiff_t words) {
        for (int known = 1, more; known < length; known += more) {
            more = std::min(known, length - known);
            for (std::ptrdiff_t k = 0; k < words; ++k) word(k) &= word(k) >> more | word(k + 1) << (64 - more);
        }
    }

private:
    std::uint64_t words_[(longest + 63) / 64 + 2];
};
static_assert(largestSearch <= 128);  // no run grows by a whole word

// Where the signal rises and where it falls; and the steps to and from a not-a-number, if there are any.
struct Steps {
    Bits up, down, odd;
    bool anyOdd = false;
};

// The 64 steps from `step` on, between 65 values.
template <class T>
VORN_INLINE void compareSteps(const T* value, std::ptrdiff_t step, Steps& steps) {
    using V = Wide<T>;
    std::uint64_t up = 0, down = 0, odd = 0;
    auto anyOdd = load<V>(value) > load<V>(value);
    for (int k = 0; k < 64; k += V::lanes) {
        const V now = load<V>(value + k), next = load<V>(value + k + 1);
        up |= std::uint64_t{laneBits(next > now)} << k;
        down |= std::uint64_t{laneBits(now > next)} << k;
        if constexpr (std::is_floating_point_v<T>) anyOdd = anyOdd | unordered(now, next);
    }
    if constexpr (std::is_floating_point_v<T>) {
        if (any(anyOdd)) [[unlikely]] {
            for (int k = 0; k < 64; k += V::lanes) {
                odd |= std::uint64_t{laneBits(unordered(load<V>(value + k), load<V>(value + k + 1)))} << k;
            }
            steps.anyOdd = true;
        }
    }
    steps.up.word(step / 64) = up;
    steps.down.word(step / 64) = down;
    steps.odd.word(step / 64) = odd;
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
template <class T>
struct Window {
    T sample[block + 2 * largestAverage + 4 * f64xN::lanes];
    Vorn64f samples[block];  // how many there are around each
};
template <class T, class From>
void fillWindow(const From* src, std::ptrdiff_t len, int m, std::ptrdiff_t first, int count, Window<T>& window) {
    const std::ptrdiff_t begin = first - m, end = first + block + m;
    const std::ptrdiff_t from = std::max<std::ptrdiff_t>(begin, 0), to = std::min(end, len);
    std::fill(window.sample, window.sample + (from - begin), T(0));
    std::copy(src + from, src + to, window.sample + (from - begin));
    std::fill(window.sample + (to - begin), window.sample + (end - begin), T(0));
    std::fill_n(window.samples, block, 2 * m + 1);
    if (begin >= 0 && first + count + m <= len) return;
    for (int k = 0; k < count; ++k) {
        const std::ptrdiff_t i = first + k;
        window.samples[k] =
            static_cast<Vorn64f>(std::min<std::ptrdiff_t>(i + m, len - 1) - std::max<std::ptrdiff_t>(i - m, 0) + 1);
    }
}

// Each mean adds its samples from the first to the last; neighbouring means stand in lanes.
struct Mean_32f {
    using Value = Vorn64f;
    using Sample = Vorn64f;
    static void of(const Window<Sample>& window, int m, int count, Value* mean) {
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
// Sums of integers are exact in any order, here as differences of sums from the first one on, and fit a double. A
// quotient comes never so near to an integer that rounding could reach it.
struct Mean_32s {
    using Value = Vorn32s;
    using Sample = Vorn32s;
    static void of(const Window<Sample>& window, int m, int count, Value* mean) {
        std::int64_t until[block + 2 * largestAverage + 1 + i32xN::lanes], sum = 0;
        for (int k = 0; k < count + 2 * m; ++k) {
            until[k] = sum;
            sum += window.sample[k];
        }
        std::fill_n(until + count + 2 * m, 1 + i32xN::lanes, sum);
        for (int k = 0; k < count; k += i32xN::lanes) {
            const auto quotient = [&](int i) __attribute__((always_inline)) {
                const i64xN difference = load<i64xN>(until + i + 2 * m + 1) - load<i64xN>(until + i);
                const f64xN shift = splat<f64xN>(0x1.8p52);  // whose bits count units
                return (floatOf(difference + bitsOf(shift)) - shift) / load<f64xN>(window.samples + i);
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
    Window<typename Mean::Sample> window;
    Value mean[1 + block] = {static_cast<Value>(sum / (m + 1))};  // in front of each block stands the value before it
    for (std::ptrdiff_t before = 0; before + 1 < len; before += block) {
        const int count = static_cast<int>(std::min<std::ptrdiff_t>(block, len - 1 - before));
        fillWindow(src, len, m, before + 1, count, window);
        Mean::of(window, m, count, mean + 1);
        for (int k = 0; k < count; k += 64) compareSteps(mean + k, before + k, steps);
        mean[0] = mean[block];
    }
}

// At a not-a-number the signal goes on as it came: down behind a fall, and otherwise up. Behind the fall that it begins
// with, up.
void resolve(std::ptrdiff_t len, Steps& steps) {
    std::ptrdiff_t fall = 0;
    while (fall < len - 1 && steps.down[fall]) ++fall;
    for (std::ptrdiff_t step = fall; step < len - 1; ++step) {
        if (steps.odd[step]) (step > fall && steps.down[step - 1] ? steps.down : steps.up).set(step);
    }
}

// A peak has as many steps up before it as the search asks for, or all there are, and down behind it likewise. dst is
// all zeros. The signal has two values or more.
template <class T>
void markPeaks(Steps& steps, const T* src, std::ptrdiff_t len, int search, Vorn8u* dst) {
    const std::ptrdiff_t words = (len + 63) / 64, last = len - 1;
    bool fallsToLastStep = !steps.down[last - 1];
    for (std::ptrdiff_t k = 0; k < last - 1 && fallsToLastStep; ++k) fallsToLastStep = steps.down[k];
    steps.up.moveUp(words);
    steps.up.keepEndsOfRuns(search, words);
    steps.down.setFrom(last, words);
    steps.down.keepBeginningsOfRuns(search, words);
    for (std::ptrdiff_t k = 0; k < words; ++k) {
        std::uint64_t peaks = steps.up.word(k) & steps.down.word(k);
        if (k == words - 1) peaks &= ~std::uint64_t{0} >> (64 * words - len);
        for (; peaks != 0; peaks &= peaks - 1) dst[64 * k + std::countr_zero(peaks)] = 1;
    }
    // Where all falls up to the last step, this step is the signal's own, whatever the means do, and a single one.
    if (fallsToLastStep) dst[last] = search == 1 && src[last] > src[last - 1];
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
        steps.up.word((len - 1) / 64) = 0;  // may hold the bit of the last value alone
        if (average == 0) {
            stepsOf(src, len, steps);
        } else {
            stepsOfMeans<Mean>(src, len, average, steps);
        }
        if (steps.anyOdd) resolve(len, steps);
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
