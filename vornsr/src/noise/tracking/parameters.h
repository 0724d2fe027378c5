// What a tracker's parameters are at a sampling rate and a frame advance, in singles and in integers.
#pragma once

#include <bit>
#include <cstdint>

#include "elementary/elementary.h"
#include "noise/tracking/record.h"

namespace vorn::tracking {

// One window is as many frames as 125 stretches of 8 ms have, about a second; the powers count time in those stretches.

// ---- Singles.

// The logarithm of a base in two parts. The first has no more than 29 bits, so that its product with a single is exact.
struct Logarithm {
    double high, low;
};
// Of the doubles 0.7, 0.2 and 0.8.
namespace bases {
inline constexpr double alphaDHigh = -0x1.6d3c328p-2, alphaDLow = 0x1.8f60580b20829p-29;
inline constexpr double alphaPHigh = -0x1.9c041f8p0, alphaPLow = 0x1.272ccd5020886p-32;
inline constexpr double alphaSHigh = -0x1.c8ff7cp-3, alphaSLow = -0x1.e6a687eb0976p-29;
}  // namespace bases

// base^x for 0 <= x <= 64, within 1.02 units in the last place: exp64 of the exact product, and one rounding. What is
// left out of the second factor is below 2^-68.
inline double power(Logarithm base, float x) {
    const double t = double{x} * base.low;
    const double whole = exp64(double{x} * base.high);
    return whole + whole * (t + t * t * 0.5);
}

struct SingleParameters {
    using Element = Vorn32f;

    // In double and rounded once, over a power of two: not over the advance, where half the length is no power of two.
    static int windowOfHalfLength(int sampleFreq, int halfBits) {
        return window(static_cast<float>(sampleFreq * 0.008 / (1 << (halfBits - 1))));
    }
    // In single.
    static int windowOfHop(int sampleFreq, int hop) {
        return window(static_cast<float>(sampleFreq) * 0.008f / static_cast<float>(hop));
    }
    static void set(Record<Vorn32f>& record) {
        const float stretches = static_cast<float>(record.hop) * 125.0f / static_cast<float>(record.sampleFreq);
        record.alphaD = static_cast<float>(power({bases::alphaDHigh, bases::alphaDLow}, stretches));
        record.alphaP = static_cast<float>(power({bases::alphaPHigh, bases::alphaPLow}, stretches));
        record.alphaS = static_cast<float>(power({bases::alphaSHigh, bases::alphaSLow}, stretches));
        record.delta = 5.0f;
    }

private:
    static int window(float framesInStretch) { return static_cast<int>(framesInStretch * 125.0f); }
};

// ---- Integers: arithmetic of fixed point only, no float anywhere.

struct FixedParameters {
    using Element = Vorn32s;

    static int windowOfHalfLength(int sampleFreq, int halfBits) {
        return window((sampleFreq * stretch >> 16) >> (halfBits - 1));
    }
    static int windowOfHop(int sampleFreq, int hop) { return window((sampleFreq * stretch / hop) >> 16); }
    static void set(Record<Vorn32s>& record) {
        const std::int64_t stretches = record.hop * (std::int64_t{125} << 15) / record.sampleFreq;
        record.alphaD = exponential(stretches, lnOf07);
        record.alphaS = exponential(stretches, lnOf08);
        std::int64_t root = exponential(stretches, eighthOfLnOf02);
        for (int i = 0; i < 3; ++i) root = (root * root) >> 31;
        record.alphaP = low32(root);
        record.delta = 5 << 15;
    }

private:
    // 0.008 in Q31, truncated; in Q31 the logarithms of 0.7 and of 0.8, an eighth of that of 0.2, and a third.
    static constexpr std::int64_t stretch = 17179869;
    static constexpr std::int64_t lnOf07 = -765953610, lnOf08 = -479197128, eighthOfLnOf02 = -432030200;
    static constexpr std::int64_t third = 715827883;

    static int window(std::int64_t framesInStretch) { return static_cast<int>((framesInStretch * 125 + 125) >> 15); }
    static Vorn32s low32(std::int64_t x) { return static_cast<Vorn32s>(static_cast<std::uint32_t>(x)); }

    // 1 + t + t^2/2 + t^3/6 in Q31 of t = x g, x in Q15. Far from 0 it is no exponential any more, and the 32 bits
    // wrap.
    static Vorn32s exponential(std::int64_t x, std::int64_t g) {
        const std::int64_t t = (x * g) >> 31;
        const std::int64_t square = ((t * t) >> 15) >> 1;
        const std::int64_t cube = (((square * t) >> 15) * third) >> 31;
        return low32(static_cast<std::int64_t>(static_cast<std::uint64_t>(32768 + t + square + cube) << 16));
    }
};

}  // namespace vorn::tracking
