#include "plain/detection.h"

#include <algorithm>

namespace plain {
namespace {

template <class T>
int longestRun(const Detector<T>& d) {
    int run = 0, longest = 0, place = d.ringHead;
    for (int k = 0; k < 7; ++k) {
        place = place == 6 ? 0 : place + 1;
        run = d.ring[place] ? run + 1 : 0;
        longest = std::max(longest, run);
    }
    return longest;
}

template <class T>
int fromFlags(Detector<T>& d, int activity) {
    if (d.frameCount < 11) return 4;
    d.ringHead = d.ringHead == 6 ? 0 : d.ringHead + 1;
    d.ring[d.ringHead] = d.flagBands || d.flagLow || d.flagVar || activity >= 5;
    const int run = longestRun(d);
    if (run >= 4) {
        d.hangCount = d.hangReload;
        if (d.frameCount < 36) d.hangReload = 40;
    }
    if (run >= 3) {
        d.shortHang = 5;
    } else {
        if (d.hangCount != 0) --d.hangCount;
        if (d.shortHang != 0) --d.shortHang;
    }
    return d.shortHang == 0 && d.hangCount == 0 && run < 3 ? 2 : 1;
}

std::int64_t ratio(int factor, std::int32_t x, int shift) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(factor) * static_cast<std::uint32_t>(x)) >> shift;
}

}  // namespace

int decide(Detector<float>& d, const float* bands, const float* spectrum, int activity) {
    float sum = 0, squares = 0, all = 0;
    for (int i = 0; i < 64; ++i) sum += spectrum[i];
    for (int i = 0; i < 64; ++i) squares += spectrum[i] * spectrum[i];
    const float v = squares * 0.015625f - sum * sum * 0.00024414063f;
    const bool start = ++d.frameCount < 15;
    if (start) d.varTrack = std::max(d.varTrack, v);
    if (v < 1.5f * d.varTrack && v > 0.85f * d.varTrack) d.varTrack = 0.8f * d.varTrack + 0.2f * v;
    if (v < 0.25f * d.varTrack) d.varTrack = 0.97f * d.varTrack + 0.03f * v;
    d.flagVar = v > 1.65f * d.varTrack;

    for (int i = 0; i < 25; ++i) all += bands[i];
    const float e = all * all - 3;
    if (d.frameCount == 1) d.bandTrack = e;
    if (start) {
        d.bandMean = (static_cast<float>(d.frameCount - 1) * d.bandMean + e) * 1.1f / static_cast<float>(d.frameCount);
        if (e / d.bandMean > 2.5f) d.onsetSeen = 1;
        if (!d.onsetSeen) d.bandTrack = std::max(d.bandTrack, e);
    }
    if (e < 1.5f * d.bandTrack && e > 0.75f * d.bandTrack) d.bandTrack = 0.8f * d.bandTrack + 0.2f * e;
    if (e <= 0.5f * d.bandTrack) d.bandTrack = 0.97f * d.bandTrack + 0.03f * e;
    d.flagBands = e > 1.65f * d.bandTrack;

    const float c = (bands[1] + bands[2] + bands[3]) / 3, l = 0.75f * c + 0.25f * d.lowPrev;
    d.lowPrev = c;
    if (start) d.lowTrack = std::max(d.lowTrack, l);
    if (l < 1.5f * d.lowTrack && l > 0.75f * d.lowTrack) d.lowTrack = 0.8f * d.lowTrack + 0.2f * l;
    if (l <= 0.5f * d.lowTrack) d.lowTrack = 0.97f * d.lowTrack + 0.03f * l;
    d.flagLow = l > 3.25f * d.lowTrack;
    return fromFlags(d, activity);
}

int decide(Detector<std::int32_t>& d, const std::int16_t* bands, const std::int16_t* spectrum, int activity) {
    std::int64_t sum = 0, squares = 0, all = 0;
    for (int i = 0; i < 64; ++i) sum += spectrum[i];
    for (int i = 0; i < 64; ++i) squares += spectrum[i] * spectrum[i];
    const std::int64_t v = 64 * squares - sum * sum;
    const bool start = ++d.frameCount < 15;
    if (start && v > d.varTrack) d.varTrack = static_cast<std::int32_t>(v);
    if (v < ratio(48, d.varTrack, 5) && v > ratio(27, d.varTrack, 5)) {
        d.varTrack = static_cast<std::int32_t>((6 * v >> 5) + ratio(26, d.varTrack, 5));
    }
    if (v < ratio(8, d.varTrack, 5)) d.varTrack = static_cast<std::int32_t>(ratio(31, d.varTrack, 5) + v);
    d.flagVar = v > ratio(53, d.varTrack, 5);

    for (int i = 0; i < 25; ++i) all += bands[i];
    const std::int64_t e = all * all - 3;
    if (d.frameCount == 1) d.bandTrack = static_cast<std::int32_t>(e);
    if (start) {
        const std::int64_t m = (141 * e + 141 * ratio(d.frameCount - 1, d.bandMean, 0)) / d.frameCount >> 7;
        d.bandMean = static_cast<std::int32_t>(m);
        if (m != 0 && e * 128 / m > 320) d.onsetSeen = 1;
        if (!d.onsetSeen && e > d.bandTrack) d.bandTrack = static_cast<std::int32_t>(e);
    }
    if (e < ratio(192, d.bandTrack, 7) && e > ratio(96, d.bandTrack, 7)) {
        d.bandTrack = static_cast<std::int32_t>((26 * e >> 7) + ratio(102, d.bandTrack, 7));
    }
    if (e <= ratio(64, d.bandTrack, 7)) {
        d.bandTrack = static_cast<std::int32_t>((4 * e >> 7) + ratio(124, d.bandTrack, 7));
    }
    d.flagBands = e > ratio(211, d.bandTrack, 7);

    const std::int32_t t = bands[1] + bands[2] + bands[3];
    const std::int64_t l = (8184 * t >> 5) + ratio(8, d.lowPrev, 5);
    d.lowPrev = 341 * t;
    if (start && l > d.lowTrack) d.lowTrack = static_cast<std::int32_t>(l);
    if (l < ratio(48, d.lowTrack, 5) && l > ratio(24, d.lowTrack, 5)) {
        d.lowTrack = static_cast<std::int32_t>((26 * l >> 7) + ratio(102, d.lowTrack, 7));
    }
    if (l <= ratio(16, d.lowTrack, 5)) {
        d.lowTrack = static_cast<std::int32_t>((4 * l >> 7) + ratio(124, d.lowTrack, 7));
    }
    d.flagLow = l > ratio(416, d.lowTrack, 7);
    return fromFlags(d, activity);
}

int flush(Detector<float>& d) {
    ++d.frameCount;
    d.ringHead = d.ringHead == 6 ? 0 : d.ringHead + 1;
    if (d.ringHead == 0 || d.frameCount < 11) return 4;
    const int run = longestRun(d);
    int hang = d.hangCount;
    if (run >= 4) {
        hang = d.hangReload;
        if (d.frameCount < 36) d.hangReload = 40;
    }
    d.hangCount = hang - 1;
    d.shortHang = (run >= 3 ? 5 : d.shortHang) - 1;
    return d.shortHang < 1 && d.hangCount < 1 && run < 3 ? 2 : 1;
}

}  // namespace plain
