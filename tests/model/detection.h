// A plain model of the voice activity detector, step by step as it is promised.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "model/integers.h"
#include "model/reductions.h"
#include "vornsr.h"

namespace model {

// The record of a detector, its fields in their order. T is the type of the trackers.
template <class T>
struct DetectorRecord {
    std::int16_t flagBands, flagLow, flagVar, onsetSeen;
    T bandMean, lowTrack, bandTrack, varTrack, lowPrev, lowLast;
    std::int32_t ringHead, ringTail, hangReload, hangCount, shortHang;
    std::uint8_t ring[7];
    std::int32_t frameCount;
};
static_assert(sizeof(DetectorRecord<float>) == 64 && sizeof(DetectorRecord<std::int32_t>) == 64);

template <class T>
DetectorRecord<T> newDetector() {
    DetectorRecord<T> d{};
    d.ringTail = -1;
    d.hangReload = 23;
    return d;
}

// The longest run of ones in the ring, from the oldest entry, which stands behind the newest one.
template <class T>
int longestRun(const DetectorRecord<T>& d) {
    int longest = 0;
    for (int from = 1; from <= 7; ++from) {
        int run = 0;
        while (from + run <= 7 && d.ring[(d.ringHead + from + run) % 7] == 1) ++run;
        if (run > longest) longest = run;
    }
    return longest;
}

template <class T>
int decideFromFlags(DetectorRecord<T>& d, int activity) {
    if (d.frameCount < 11) return vornVADUndecided;
    d.ringHead = d.ringHead == 6 ? 0 : d.ringHead + 1;
    d.ring[d.ringHead] = 0;
    if (d.flagBands || d.flagLow || d.flagVar || activity >= 5) d.ring[d.ringHead] = 1;
    const int r = longestRun(d);
    if (r >= 4) {
        d.hangCount = d.hangReload;
        if (d.frameCount < 36) d.hangReload = 40;
    }
    if (r >= 3) d.shortHang = 5;
    if (r < 3) {
        if (d.hangCount != 0) --d.hangCount;
        if (d.shortHang != 0) --d.shortHang;
    }
    return d.shortHang == 0 && d.hangCount == 0 && r < 3 ? vornVADNonSpeech : vornVADSpeech;
}

template <class T>
int flushDetector(DetectorRecord<T>& d) {
    ++d.frameCount;
    if (d.ringTail == -1) d.ringTail = d.ringHead;
    d.ringHead = d.ringHead == 6 ? 0 : d.ringHead + 1;
    if (d.ringHead == d.ringTail || d.frameCount < 11) return vornVADUndecided;
    const int r = longestRun(d);
    int h = d.hangCount;
    if (r >= 4) {
        h = d.hangReload;
        if (d.frameCount < 36) d.hangReload = 40;
    }
    d.hangCount = h - 1;
    if (r >= 3) d.shortHang = 5;
    d.shortHang = d.shortHang - 1;
    return d.shortHang < 1 && d.hangCount < 1 && r < 3 ? vornVADNonSpeech : vornVADSpeech;
}

// The sum of the squares of 64 numbers, in the order of the dot product: sixteen lanes as four times four, the sums
// fold as (0 + 1) + (2 + 3), and the lanes likewise.
inline float sumOfSquares64(const float* x) {
    float sum[4][4] = {};
    for (int i = 0; i < 64; ++i) {
        const float square = x[i] * x[i];
        sum[i / 4 % 4][i % 4] += square;
    }
    float lane[4];
    for (int j = 0; j < 4; ++j) lane[j] = (sum[0][j] + sum[1][j]) + (sum[2][j] + sum[3][j]);
    return (lane[0] + lane[1]) + (lane[2] + lane[3]);
}

// A not-a-number on one side of a maximum gives the other side.
inline float maxOfNumbers(float track, float x) {
    if (std::isnan(track)) return x;
    return x > track ? x : track;
}

inline int decideFrame(DetectorRecord<float>& d, const float* bands, const float* spectrum, int activity) {
    // Variance of the spectrum.
    const float S = sumAccurate(std::vector<float>(spectrum, spectrum + 64)), D = sumOfSquares64(spectrum);
    volatile float meanSquare = D * 0.015625f, squaredMean = (S * S) * 0.00024414063f;
    const float v = meanSquare - squaredMean;
    ++d.frameCount;
    if (d.frameCount < 15) d.varTrack = maxOfNumbers(d.varTrack, v);
    if (v < 1.5f * d.varTrack && v > 0.85f * d.varTrack) d.varTrack = 0.8f * d.varTrack + 0.2f * v;
    if (v < 0.25f * d.varTrack) d.varTrack = 0.97f * d.varTrack + 0.03f * v;
    d.flagVar = v > 1.65f * d.varTrack ? 1 : 0;

    // Energy of the bands.
    const float B = sumAccurate(std::vector<float>(bands, bands + 25));
    const float e = B * B - 3.0f;
    if (d.frameCount == 1) d.bandTrack = e;
    if (d.frameCount < 15) {
        const float m =
            ((static_cast<float>(d.frameCount - 1) * d.bandMean + e) * 1.1f) / static_cast<float>(d.frameCount);
        d.bandMean = m;
        if (e / m > 2.5f) d.onsetSeen = 1;
        if (d.onsetSeen == 0) d.bandTrack = maxOfNumbers(d.bandTrack, e);
    }
    if (e < 1.5f * d.bandTrack && e > 0.75f * d.bandTrack) d.bandTrack = 0.8f * d.bandTrack + 0.2f * e;
    if (e <= 0.5f * d.bandTrack) d.bandTrack = 0.97f * d.bandTrack + 0.03f * e;
    d.flagBands = e > 1.65f * d.bandTrack ? 1 : 0;

    // The low bands.
    const float c = (bands[1] + bands[2] + bands[3]) / 3.0f;
    const float l = 0.75f * c + 0.25f * d.lowPrev;
    d.lowPrev = c;
    d.lowLast = c;
    if (d.frameCount < 15) d.lowTrack = maxOfNumbers(d.lowTrack, l);
    if (l < 1.5f * d.lowTrack && l > 0.75f * d.lowTrack) d.lowTrack = 0.8f * d.lowTrack + 0.2f * l;
    if (l <= 0.5f * d.lowTrack) d.lowTrack = 0.97f * d.lowTrack + 0.03f * l;
    d.flagLow = l > 3.25f * d.lowTrack ? 1 : 0;

    return decideFromFlags(d, activity);
}

// x / 2^shift, rounded down.
inline std::int64_t shiftedDown(std::int64_t x, int shift) {
    const std::int64_t divisor = std::int64_t{1} << shift, rest = (x % divisor + divisor) % divisor;
    return (x - rest) / divisor;
}
// a x in 32 bits, wrapped, then shifted.
inline std::int64_t ratioOf(std::int64_t a, std::int32_t x, int shift) {
    return shiftedDown(wrapTo<std::int32_t>(a * x), shift);
}
inline std::int32_t low32(std::int64_t x) { return wrapTo<std::int32_t>(x); }

inline int decideFrame(DetectorRecord<std::int32_t>& d, const std::int16_t* bands, const std::int16_t* spectrum,
                       int activity) {
    std::int64_t S = 0, D = 0;
    for (int i = 0; i < 64; ++i) {
        S += spectrum[i];
        D += std::int64_t{spectrum[i]} * spectrum[i];
    }
    const std::int64_t v = 64 * D - S * S;
    ++d.frameCount;
    if (d.frameCount < 15 && v > d.varTrack) d.varTrack = low32(v);
    if (v < ratioOf(48, d.varTrack, 5) && v > ratioOf(27, d.varTrack, 5)) {
        d.varTrack = low32(shiftedDown(6 * v, 5) + ratioOf(26, d.varTrack, 5));
    }
    if (v < ratioOf(8, d.varTrack, 5)) d.varTrack = low32(ratioOf(31, d.varTrack, 5) + v);
    d.flagVar = v > ratioOf(53, d.varTrack, 5) ? 1 : 0;

    std::int64_t B = 0;
    for (int i = 0; i < 25; ++i) B += bands[i];
    const std::int64_t e = B * B - 3;
    if (d.frameCount == 1) d.bandTrack = low32(e);
    if (d.frameCount < 15) {
        const std::int64_t before = low32(std::int64_t{d.frameCount - 1} * d.bandMean);
        const std::int64_t m = shiftedDown((141 * e + 141 * before) / d.frameCount, 7);
        d.bandMean = low32(m);
        if (m != 0 && (128 * e) / m > 320) d.onsetSeen = 1;
        if (d.onsetSeen == 0 && e > d.bandTrack) d.bandTrack = low32(e);
    }
    if (e < ratioOf(192, d.bandTrack, 7) && e > ratioOf(96, d.bandTrack, 7)) {
        d.bandTrack = low32(shiftedDown(26 * e, 7) + ratioOf(102, d.bandTrack, 7));
    }
    if (e <= ratioOf(64, d.bandTrack, 7)) {
        d.bandTrack = low32(shiftedDown(4 * e, 7) + ratioOf(124, d.bandTrack, 7));
    }
    d.flagBands = e > ratioOf(211, d.bandTrack, 7) ? 1 : 0;

    const std::int32_t t = bands[1] + bands[2] + bands[3];
    const std::int64_t l = low32(ratioOf(8184, t, 5) + ratioOf(8, d.lowPrev, 5));
    d.lowPrev = 341 * t;
    d.lowLast = 341 * t;
    if (d.frameCount < 15 && l > d.lowTrack) d.lowTrack = low32(l);
    if (l < ratioOf(48, d.lowTrack, 5) && l > ratioOf(24, d.lowTrack, 5)) {
        d.lowTrack = low32(shiftedDown(26 * l, 7) + ratioOf(102, d.lowTrack, 7));
    }
    if (l <= ratioOf(16, d.lowTrack, 5)) {
        d.lowTrack = low32(shiftedDown(4 * l, 7) + ratioOf(124, d.lowTrack, 7));
    }
    d.flagLow = l > ratioOf(416, d.lowTrack, 7) ? 1 : 0;

    return decideFromFlags(d, activity);
}

}  // namespace model
