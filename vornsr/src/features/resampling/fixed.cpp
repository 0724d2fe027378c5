#include "features/resampling/fixed.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "features/resampling/design.h"
#include "features/resampling/store.h"
#include "frame/align.h"
#include "frame/kernel.h"
#include "frame/wrap.h"
#include "move/convert_kernels.h"
#include "reductions/dot_kernels.h"
#include "simd/quad.h"

namespace vorn::resampling {
namespace {

// How windows of samples and rows are multiplied. A row may stand at any address.

template <class Tap>
VORN_INLINE Tap tapAt(const Tap* row, std::ptrdiff_t i) {
    Tap tap;
    std::memcpy(&tap, reinterpret_cast<const char*>(row) + i * static_cast<std::ptrdiff_t>(sizeof tap), sizeof tap);
    return tap;
}

// Sums that end in one register each, and four of them at once in one.
struct InSingle {
    using Sample = Vorn32f;
    using Tap = Vorn32f;
    using Lanes = f32x4;
    // Of as many windows as one step over a row in common has registers for.
    static constexpr int together = f32xN::lanes == 4 ? 2 : 4;
    static VORN_INLINE Lanes lanes(const Sample* src, const Tap* taps, std::ptrdiff_t len) {
        return dots::lanesInSingle(src, taps, len);
    }
    static VORN_INLINE f64x4 folded(Lanes a, Lanes b, Lanes c, Lanes d) { return toQuad(sumNeighbours(a, b, c, d)); }
    static VORN_INLINE void lanesOfFour(const Sample* const (&src)[4], const Tap* taps, std::ptrdiff_t len,
                                        Lanes (&sums)[4]) {
        for (int first = 0; first < 4; first += together) {
            const Sample* windows[together];
            Sixteen<float> steps[together];
            for (int j = 0; j < together; ++j) {
                windows[j] = src[first + j];
                steps[j] = Sixteen<float>::zero();
            }
            dots::addSixteens<together>(windows, taps, len, steps);
            for (int j = 0; j < together; ++j) {
                sums[first + j] = dots::lanesInSingle(steps[j], windows[j], taps, len);
            }
        }
    }
};
// Other sums end in one number.
template <class Product>
struct OneByOne {
    using Lanes = double;
    static VORN_INLINE f64x4 folded(double a, double b, double c, double d) { return quadOfLanes(a, b, c, d); }
    template <class Sample, class Tap>
    static VORN_INLINE void lanesOfFour(const Sample* const (&src)[4], const Tap* taps, std::ptrdiff_t len,
                                        double (&sums)[4]) {
        for (int j = 0; j < 4; ++j) sums[j] = Product::lanes(src[j], taps, len);
    }
};
struct InDouble : OneByOne<InDouble> {
    using Sample = Vorn32f;
    using Tap = Vorn32f;
    static VORN_INLINE double lanes(const Sample* src, const Tap* taps, std::ptrdiff_t len) {
        return dots::realDot<double>(src, taps, len);
    }
};
struct Exact : OneByOne<Exact> {
    using Sample = Vorn16s;
    using Tap = Vorn16s;
    static VORN_INLINE double lanes(const Sample* src, const Tap* taps, std::ptrdiff_t len) {
        return static_cast<double>(dots::exactDot(src, taps, len));
    }
};
// The same where taps are so small that products can be added in 32 bits: no lane of a 16-byte register, which takes
// two taps of each eight, may leave them. The steps of wider registers add to the same lanes.
struct ExactInLanes : OneByOne<ExactInLanes> {
    using Sample = Vorn16s;
    using Tap = Vorn16s;
    static constexpr int taps = 8, lanesOf32 = 4;
    static constexpr int mostOfLane = 65535;  // magnitudes of the taps of a lane, whose samples reach 32768
    static VORN_INLINE double lanes(const Sample* src, const Tap* row, std::ptrdiff_t len) {
        i32xN wide = splat<i32xN>(0);
        std::ptrdiff_t i = 0;
        for (; i + i16xN::lanes <= len; i += i16xN::lanes) {
            wide = wide + mulAddPairs(load<i16xN>(src + i), load<i16xN>(row + i));
        }
        i32x4 sum = foldedTo<16>(
            wide, [](auto a, auto b) __attribute__((always_inline)) { return a + b; });
        for (; i + taps <= len; i += taps) sum = sum + mulAddPairs(load<i16x8>(src + i), load<i16x8>(row + i));
        if (i + 4 <= len) {
            sum = sum + mulAddPairs(loadFirst<i16x8, 4>(src + i), loadFirst<i16x8, 4>(row + i));
            i += 4;
        }
        double total = sumLanes(toDoubleLow(sum) + toDoubleHigh(sum));
        for (; i < len; ++i) total += src[i] * tapAt(row, i);
        return total;
    }
};
// Each product rounded to single, their sum in double, in the sixteen lanes of the dot products, and rounded to single.
struct RoundedProducts : OneByOne<RoundedProducts> {
    using Sample = Vorn16s;
    using Tap = Vorn32f;
    static VORN_INLINE void add(Sixteen<double>& sum, const Sample* src, const Tap* taps) {
        for (int k = 0; k < 16; k += f32xN::lanes) {
            const f32xN products = toFloat(loadWidened<i32xN>(src + k)) * load<f32xN>(taps + k);
            f64xN* part = sum.part + k / f64xN::lanes;
            part[0] = part[0] + widenLow(products);
            part[1] = part[1] + widenHigh(products);
        }
    }
    static VORN_INLINE double lanes(const Sample* src, const Tap* taps, std::ptrdiff_t len) {
        auto sum = Sixteen<double>::zero();
        std::ptrdiff_t i = 0;
        for (; i + 16 <= len; i += 16) add(sum, src + i, taps + i);
        if (i < len) {
            Block<Sample, 16> lastSamples;
            Block<Tap, 16> lastTaps;
            fillBlock<16>(src + i, len - i, lastSamples);
            fillBlock<16>(taps + i, len - i, lastTaps);
            add(sum, lastSamples, lastTaps);
        }
        return static_cast<Vorn32f>(sum.folded());
    }
};

constexpr std::int64_t floorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0); }

// Four results at once.
VORN_INLINE void storeFour(f64x4 values, Vorn32f* dst) { storeNarrowed(dst, values); }
VORN_INLINE void storeFour(f64x4 values, Vorn16s* dst) {
    double each[4];
    vorn::store(each, values);
    for (int j = 0; j < 4; ++j) store(each[j], dst + j);
}

// Positions count in steps of 1/outRate of a sample from the whole part of the time on. The window of position p lies
// H samples to either side of p/outRate, and holds the sample in the middle as well where that is one.
template <class Product>
std::int64_t overPhases(const Fixed& state, const typename Product::Sample* src, int len, typename Product::Sample* dst,
                        double norm, double& time) {
    using Sample = typename Product::Sample;
    using Tap = typename Product::Tap;
    const std::int64_t in = state.inRate, out = state.outRate, halfLen = state.halfLen;
    const auto base = static_cast<std::int64_t>(time);
    const double fraction = time - static_cast<double>(base);
    const auto start = static_cast<std::int64_t>(static_cast<double>(out) * fraction + 0.5);
    const double gain = std::min(static_cast<double>(out) / static_cast<double>(in), 1.0) * state.filterNorm * norm;
    const f64x4 gains = splat<f64x4>(gain);

    const std::int64_t samples = in / out, phases = in % out, end = len * out;
    const char* rows = rowAt(state, 0);
    const std::int64_t bytes = rowBytes(state), most = bytes / static_cast<std::int64_t>(sizeof(Tap));
    std::int64_t position = start, phase = start - floorDivide(start, out) * out;
    src += base + floorDivide(start, out) + 1 - halfLen;
    const auto window = [&]() __attribute__((always_inline)) { return src - (phase == 0); };
    const auto row = [&]() __attribute__((always_inline)) {
        return reinterpret_cast<const Tap*>(rows + phase * bytes);
    };
    const auto taps = [&]() __attribute__((always_inline)) { return std::min(2 * halfLen + (phase == 0), most); };
    const auto advance = [&]() __attribute__((always_inline)) {
        src += samples;
        phase += phases;
        if (phase >= out) {
            phase -= out;
            ++src;
        }
    };

    std::int64_t count = position < end ? (end - 1 - position) / in + 1 : 0;
    const std::int64_t made = count;
    for (; count >= 4; count -= 4, dst += 4) {
        typename Product::Lanes sums[4];
        if (out == 1) {
            const Sample* const windows[] = {src - 1, src - 1 + in, src - 1 + 2 * in, src - 1 + 3 * in};
            Product::lanesOfFour(windows, row(), taps(), sums);
            src += 4 * in;
        } else {
            for (int j = 0; j < 4; ++j) {
                sums[j] = Product::lanes(window(), row(), taps());
                advance();
            }
        }
        storeFour(Product::folded(sums[0], sums[1], sums[2], sums[3]) * gains, dst);
    }
    for (; count > 0; --count, ++dst) {
        const auto sum = Product::lanes(window(), row(), taps());
        Sample four[4];
        storeFour(Product::folded(sum, sum, sum, sum) * gains, four);
        *dst = four[0];
        advance();
    }
    position += made * in;
    std::int64_t steps;  // from the time's whole part, where its product with the rate is a number
    if (!__builtin_mul_overflow(base, out, &steps) && !__builtin_add_overflow(steps, position - start, &steps)) {
        time = fraction + static_cast<double>(steps) / static_cast<double>(out);
    } else {
        time += static_cast<double>(position - start) / static_cast<double>(out);
    }
    return made;
}

// Steps in 16 bits, as the record has them; the windows follow the positions themselves.
void storeSteps(const FixedShape& shape, char* steps) {
    const std::int64_t in = shape.inRate, out = shape.outRate;
    for (std::int64_t i = 0; i < out; ++i) {
        const std::int64_t phase = i * in % out;
        std::int64_t step = (i + 1) * in / out - i * in / out;
        step += (i == 0) - (i == out - 1);  // the window of phase 0 begins a sample early
        const auto stored = static_cast<Vorn16s>(step);
        std::memcpy(steps + phase * static_cast<std::int64_t>(sizeof stored), &stored, sizeof stored);
    }
}

void storeTap(double value, Vorn32f* tap) { *tap = static_cast<Vorn32f>(value); }
void storeTap(double value, Vorn16s* tap) {
    const f64x2 limited = splat<f64x2>(std::clamp(value * 16384, -32768.0, 32767.0));
    *tap = saturate<Vorn16s>(firstLane(roundToInt(limited, limited)));
}

// Row 0 has the centre in the middle and whole samples on both sides. The points of phase j are the right half of row
// outRate - j and, mirrored, the left half of row j.
template <class Tap>
void storeRows(const Fixed& state, const WindowedSinc& filter) {
    const std::int64_t out = state.outRate, halfLen = state.halfLen;
    const auto row = [&](std::int64_t phase) { return reinterpret_cast<Tap*>(rowAt(state, phase)); };
    Tap* centre = row(0) + halfLen;
    for (std::int64_t k = 0; k <= halfLen; ++k) {
        storeTap(filter.at(k * out), centre + k);
        centre[-k] = centre[k];
    }
    for (std::int64_t j = 1; j < out; ++j) {
        Tap* right = row(out - j) + halfLen;
        Tap* left = row(j) + halfLen - 1;
        for (std::int64_t k = 0; k < halfLen; ++k) {
            storeTap(filter.at(j + k * out), right + k);
            left[-k] = right[k];
        }
    }
}

// Whether the rows are for ExactInLanes.
bool haveSmallTaps(const Fixed& state) {
    const std::int64_t taps = std::min(2 * std::int64_t{state.halfLen} + 1, rowBytes(state) / 2);
    for (std::int64_t phase = 0; phase < state.outRate; ++phase) {
        std::int64_t most[ExactInLanes::lanesOf32] = {};
        for (std::int64_t m = 0; m < taps; ++m) {
            const int tap = tapAt(reinterpret_cast<const Vorn16s*>(rowAt(state, phase)), m);
            most[m % ExactInLanes::taps / 2] += tap < 0 ? -tap : tap;
        }
        for (const std::int64_t lane : most) {
            if (lane > ExactInLanes::mostOfLane) return false;
        }
    }
    return true;
}
void noteSmallTaps(void* state) {
    Fixed record = recordAt(state);
    record.smallTaps = haveSmallTaps(record);
    std::memcpy(state, &record, sizeof record);
}

// Points of the filter up to its edge, in the wider spacing of the two rates.
std::int64_t pointsOf(const Fixed& state) {
    const double taps = 2.0 * state.halfLen;
    if (state.outRate >= state.inRate) {
        return static_cast<std::int64_t>((static_cast<double>(static_cast<Vorn32f>(taps)) + 1e-5) * 0.5 *
                                         state.outRate) +
               1;
    }
    const double stretched = taps * (static_cast<double>(state.outRate) / state.inRate);
    return static_cast<std::int64_t>((static_cast<double>(static_cast<Vorn32f>(stretched)) + 1e-5) * 0.5 *
                                     state.inRate) +
           1;
}

// Moves elements between row and matrix row, for the rows that there are.
template <class Element, class Move>
void overRows(const Fixed& state, std::int64_t step, std::int64_t height, std::int64_t elementBytes, const Move& move) {
    const std::int64_t len = std::min(rowBytes(state) / elementBytes, step);
    for (std::int64_t row = 0; row < std::min<std::int64_t>(height, state.outRate); ++row) {
        move(rowAt(state, row), row * step, len);
    }
}
template <class Element>
void copyRows(const Fixed& state, Element* dst, std::int64_t step, std::int64_t height) {
    overRows<Element>(state, step, height, sizeof(Element), [=](char* row, std::int64_t at, std::int64_t len) {
        std::memcpy(dst + at, row, static_cast<std::size_t>(len) * sizeof(Element));
    });
}
template <class Element>
void copyRowsBack(const Fixed& state, const Element* src, std::int64_t step, std::int64_t height) {
    overRows<Element>(state, step, height, sizeof(Element), [=](char* row, std::int64_t at, std::int64_t len) {
        std::memcpy(row, src + at, static_cast<std::size_t>(len) * sizeof(Element));
    });
}

constexpr int q14 = -14;  // scale factors of Q14 in conversions

}  // namespace

FixedShape::FixedShape(int in, int out, int len) {
    const int common = std::gcd(in, out);
    inRate = in / common;
    outRate = out / common;
    halfLen = (std::int64_t{len} + 3) / 4 * 4 / 2;
}

std::int64_t FixedShape::bytes(std::int64_t rowLen, std::int64_t elementBytes, std::int64_t beside) const {
    const std::int64_t out = outRate;
    const std::int64_t bytesBesideRows = (out + 7) / 8 * 8 * 2 + (out + 4) / 4 * 4 * 8 + beside;
    // A product of three numbers of 31 bits may leave 64.
    return rowLen > INT64_MAX / 4 / out ? INT64_MAX : rowLen * out * elementBytes + bytesBesideRows;
}

void layOutFixed(void* block, std::int64_t bytes, const FixedShape& shape, std::int64_t rowLen,
                 std::int64_t elementBytes, Vorn32f filterNorm, int flags) {
    auto* start = static_cast<char*>(block);
    const std::int64_t out = shape.outRate, rowSize = rowLen * elementBytes;
    char* pointers = start + sizeof(Fixed);
    char* rows = alignedUp(pointers + (out + 1) * static_cast<std::int64_t>(sizeof(void*)), 16);
    if (rows + out * rowSize + out * 2 > start + bytes)
        rows = pointers + (out + 1) * static_cast<std::int64_t>(sizeof(void*));
    char* steps = rows + out * rowSize;
    const Fixed record = {.inRate = shape.inRate,
                          .outRate = shape.outRate,
                          .filterNorm = filterNorm,
                          .halfLen = static_cast<int>(shape.halfLen),
                          .flags = flags,
                          .smallTaps = 1,
                          .pStep = reinterpret_cast<Vorn16s*>(steps),
                          .ppFilter = reinterpret_cast<void**>(pointers)};
    std::memcpy(start, &record, sizeof record);
    for (std::int64_t phase = 0; phase <= out; ++phase) {
        const void* row = rows + phase * rowSize;
        std::memcpy(pointers + phase * static_cast<std::int64_t>(sizeof row), &row, sizeof row);
    }
    std::memset(rows, 0, static_cast<std::size_t>(out * rowSize));
    storeSteps(shape, steps);
}

void fillFixed(void* state, Vorn32f cutOff, Vorn32f alpha) {
    const Fixed record = recordAt(state);
    const WindowedSinc filter(std::max(record.inRate, record.outRate), pointsOf(record), cutOff, alpha);
    if (hasSingleRows(record)) {
        storeRows<Vorn32f>(record, filter);
    } else {
        storeRows<Vorn16s>(record, filter);
        noteSmallTaps(state);
    }
}

std::int64_t resampleFixed(const Fixed& state, const Vorn32f* src, int len, Vorn32f* dst, double norm, double& time) {
    return state.flags == 1 ? overPhases<InDouble>(state, src, len, dst, norm, time)
                            : overPhases<InSingle>(state, src, len, dst, norm, time);
}
std::int64_t resampleFixed(const Fixed& state, const Vorn16s* src, int len, Vorn16s* dst, double norm, double& time) {
    if (hasSingleRows(state)) return overPhases<RoundedProducts>(state, src, len, dst, norm, time);
    return state.smallTaps != 0 ? overPhases<ExactInLanes>(state, src, len, dst, norm, time)
                                : overPhases<Exact>(state, src, len, dst, norm, time);
}

void takeRows(const Fixed& state, Vorn32f* dst, std::int64_t step, std::int64_t height) {
    copyRows(state, dst, step, height);
}
void takeRows(const Fixed& state, Vorn16s* dst, std::int64_t step, std::int64_t height) {
    if (!hasSingleRows(state)) return copyRows(state, dst, step, height);
    overRows<Vorn32f>(state, step, height, sizeof(Vorn32f), [=](char* row, std::int64_t at, std::int64_t len) {
        convert(reinterpret_cast<const Vorn32f*>(row), dst + at, len, vornRndNear, q14);
    });
}
void putRows(void* state, const Vorn32f* src, std::int64_t step, std::int64_t height) {
    copyRowsBack(recordAt(state), src, step, height);
}
void putRows(void* state, const Vorn16s* src, std::int64_t step, std::int64_t height) {
    const Fixed record = recordAt(state);
    if (!hasSingleRows(record)) {
        copyRowsBack(record, src, step, height);
        return noteSmallTaps(state);
    }
    overRows<Vorn32f>(record, step, height, sizeof(Vorn32f), [=](char* row, std::int64_t at, std::int64_t len) {
        convert(src + at, reinterpret_cast<Vorn32f*>(row), len, -q14);
    });
}

}  // namespace vorn::resampling

VORN_KERNEL void ownDotProd16_16s64s_M7(const Vorn16s* src1, const Vorn16s* src2, std::int64_t len, Vorn64s* dp) {
    *dp = vorn::dots::exactDot(src1, src2, len);
}
