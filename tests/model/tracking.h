// A noise tracker, bin by bin, from what it promises. Intermediate results stand in variables of their own.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "support/precise.h"

namespace model {

// The record's fields as a caller's block holds them: seven integers, four parameters, four addresses from byte 48 on.
template <class T>
struct TrackerFields {
    std::int32_t sampleFreq, fftLen, halfBits, hop, minWindow, frameIdx, firstFrame;
    T alphaD, alphaP, alphaS, delta;
    T* array[4];

    static TrackerFields of(const unsigned char* block) {
        TrackerFields f;
        std::memcpy(&f.sampleFreq, block, 7 * 4);
        std::memcpy(&f.alphaD, block + 28, 4 * 4);
        std::memcpy(f.array, block + 48, 4 * 8);
        return f;
    }
    void into(unsigned char* block) const {
        std::memcpy(block, &sampleFreq, 7 * 4);
        std::memcpy(block + 28, &alphaD, 4 * 4);
        std::memcpy(block + 48, array, 4 * 8);
    }
};

template <class T>
struct Tracker {
    TrackerFields<T> fields{};
    std::vector<T> presence, smoothed, minimum, tempMinimum;

    std::size_t bins() const { return static_cast<std::size_t>(fields.fftLen / 2 + 1); }
};

inline int significantBits(int x) {
    int bits = 0;
    for (; x > 0; x /= 2) ++bits;
    return bits;
}

// hop 0: half of fftLen.
inline TrackerFields<float> trackerOfSingles(int sampleFreq, int fftLen, int hop) {
    TrackerFields<float> f{};
    f.sampleFreq = sampleFreq;
    f.fftLen = fftLen;
    f.halfBits = significantBits(fftLen / 2);
    float inStretch;
    if (hop == 0) {
        f.hop = fftLen / 2;
        const double samples = sampleFreq * 0.008;
        inStretch = (float)(samples / std::ldexp(1.0, f.halfBits - 1));
    } else {
        f.hop = hop;
        const float samples = (float)sampleFreq * 0.008f;
        inStretch = samples / (float)hop;
    }
    const float frames = inStretch * 125.0f;
    f.minWindow = (int)frames;
    f.firstFrame = 1;
    const float advance = (float)f.hop * 125.0f;
    const float x = advance / (float)sampleFreq;
    const auto power = [x](double base) {
        return (float)exp(test::Precise((double)x) * log(test::Precise(base))).toDouble();
    };
    f.alphaD = power(0.7);
    f.alphaS = power(0.8);
    f.alphaP = power(0.2);
    f.delta = 5.0f;
    return f;
}

inline std::int64_t floorDivided(__int128 x, std::int64_t power) {
    __int128 quotient = x / power;
    if (quotient * power > x) --quotient;
    return (std::int64_t)quotient;
}
inline std::int32_t low32Of(std::int64_t x) {
    const std::uint32_t low = (std::uint32_t)(std::uint64_t)x;
    std::int32_t value;
    std::memcpy(&value, &low, 4);
    return value;
}

inline std::int32_t taylorQ31(std::int64_t x, std::int64_t g) {
    const std::int64_t t = floorDivided((__int128)x * g, std::int64_t{1} << 31);
    const std::int64_t q = floorDivided(floorDivided((__int128)t * t, 32768), 2);
    const std::int64_t qt = floorDivided((__int128)q * t, 32768);
    const std::int64_t r = floorDivided((__int128)qt * 715827883, std::int64_t{1} << 31);
    return low32Of((32768 + t + q + r) * 65536);
}

inline TrackerFields<std::int32_t> trackerOfIntegers(int sampleFreq, int fftLen, int hop) {
    TrackerFields<std::int32_t> f{};
    f.sampleFreq = sampleFreq;
    f.fftLen = fftLen;
    f.halfBits = significantBits(fftLen / 2);
    std::int64_t value = std::int64_t{sampleFreq} * 17179869;
    if (hop == 0) {
        f.hop = fftLen / 2;
        value = value / 65536;
        for (int i = 0; i < f.halfBits - 1; ++i) value /= 2;
    } else {
        f.hop = hop;
        value = value / hop / 65536;
    }
    f.minWindow = (int)((value * 125 + 125) / 32768);
    f.firstFrame = 1;
    const std::int64_t x = std::int64_t{f.hop} * 4096000 / sampleFreq;
    f.alphaD = taylorQ31(x, -765953610);
    f.alphaS = taylorQ31(x, -479197128);
    std::int64_t v = taylorQ31(x, -432030200);
    v = v * v >> 31;
    v = v * v >> 31;
    v = v * v >> 31;
    f.alphaP = low32Of(v);
    f.delta = 0x28000;
    return f;
}

// The kept minimum stays where the new power is not below it.
template <class T>
T lowerOf(T power, T kept) {
    return power < kept ? power : kept;
}

template <class T>
bool firstOfTracker(Tracker<T>& t, const std::vector<T>& in, std::vector<T>& noise) {
    if (t.fields.firstFrame != 1) return false;
    t.smoothed = t.minimum = t.tempMinimum = noise = in;
    t.presence.assign(in.size(), T(0));
    return true;
}

// The minima of one frame.
template <class T>
void followMinima(Tracker<T>& t) {
    const bool restarts = t.fields.frameIdx == t.fields.minWindow;
    for (std::size_t k = 0; k < t.bins(); ++k) {
        if (restarts) {
            t.minimum[k] = lowerOf(t.smoothed[k], t.tempMinimum[k]);
            t.tempMinimum[k] = t.smoothed[k];
        } else {
            t.minimum[k] = lowerOf(t.smoothed[k], t.minimum[k]);
            t.tempMinimum[k] = lowerOf(t.smoothed[k], t.tempMinimum[k]);
        }
    }
    if (restarts) t.fields.frameIdx = 0;
}

inline void updateTracker(Tracker<float>& t, const std::vector<float>& in, std::vector<float>& noise) {
    const auto& f = t.fields;
    if (!firstOfTracker(t, in, noise)) {
        volatile float one = 1.0f;
        for (std::size_t k = 0; k < t.bins(); ++k) {
            const float kept = t.smoothed[k] * f.alphaS;
            const float rest = one - f.alphaS;
            const float taken = rest * in[k];
            t.smoothed[k] = kept + taken;
        }
        followMinima(t);
        for (std::size_t k = 0; k < t.bins(); ++k) {
            t.presence[k] = f.alphaP * t.presence[k];
            const float limit = t.minimum[k] * f.delta;
            if (t.smoothed[k] > limit) {
                const float rest = one - f.alphaP;
                t.presence[k] = t.presence[k] + rest;
            }
            const float restD = one - f.alphaD;
            const float weighted = restD * t.presence[k];
            const float a = f.alphaD + weighted;
            const float kept = a * noise[k];
            const float restA = one - a;
            const float taken = restA * in[k];
            noise[k] = kept + taken;
        }
    }
    t.fields.frameIdx += 1;
    t.fields.firstFrame = 0;
}

// The processor's conversion, to nearest even.
inline std::int32_t nearestOrLowest(double x) {
    const double nearest = std::nearbyint(x);
    if (!(nearest >= -2147483648.0 && nearest <= 2147483647.0)) return INT32_MIN;
    return (std::int32_t)nearest;
}

inline void updateTracker(Tracker<std::int32_t>& t, const std::vector<std::int32_t>& in,
                          std::vector<std::int32_t>& noise) {
    const auto& f = t.fields;
    if (!firstOfTracker(t, in, noise)) {
        for (std::size_t k = 0; k < t.bins(); ++k) {
            const __int128 kept = (__int128)t.smoothed[k] * f.alphaS;
            const __int128 taken = ((__int128)0x7FFFFFFF - f.alphaS) * in[k];
            t.smoothed[k] = low32Of(floorDivided(kept + taken, std::int64_t{1} << 31));
        }
        followMinima(t);
        for (std::size_t k = 0; k < t.bins(); ++k) {
            double m = (double)t.minimum[k] * (double)f.delta;
            m = m * 0x1p-15;
            if (m > 2147483647.0) m = 2147483647.0;
            double p = (double)t.presence[k] * (double)f.alphaP;
            p = p * 0x1p-31;
            if (m < (double)t.smoothed[k]) p = p + (2147483647.0 - (double)f.alphaP);
            t.presence[k] = nearestOrLowest(p);
            double weighted = p * (2147483647.0 - (double)f.alphaD);
            weighted = weighted * 0x1p-31;
            const double a = (double)f.alphaD + weighted;
            double kept = a * (double)noise[k];
            kept = kept * 0x1p-31;
            double taken = (2147483647.0 - a) * (double)in[k];
            taken = taken * 0x1p-31;
            noise[k] = nearestOrLowest(kept + taken);
        }
    }
    t.fields.frameIdx += 1;
    t.fields.firstFrame = 0;
}

}  // namespace model
