#include "plain/suppression.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numbers>

namespace plain {

bool wienerGains(const float* x, float* gain, int len) {
    bool negative = false;
    for (int i = 0; i < len; ++i) {
        negative |= x[i] < 0;
        const float limited = x[i] < 0 ? 0 : x[i];
        gain[i] = limited / (1 + limited);
    }
    return negative;
}

bool wienerGains(const std::int32_t* x, std::int32_t* gain, int len) {
    static const auto table = [] {
        std::array<std::int32_t, 88> steps{};
        for (std::int64_t i = 0; i < 87; ++i) {
            const std::int64_t sixteenths = i < 64 ? i : i < 79 ? 64 * (i - 63) : 1024 * (i - 78);
            steps[static_cast<std::size_t>(i)] = static_cast<std::int32_t>((sixteenths << 31) / (16 + sixteenths));
        }
        return steps;
    }();
    bool negative = false;
    for (int i = 0; i < len; ++i) {
        const std::int32_t src = x[i];
        if (src < 0) {
            negative = true;
            gain[i] = 0;
        } else if (src < 1 << 17) {
            gain[i] = table[static_cast<std::size_t>(src >> 11)];
        } else if (src < 1 << 21) {
            gain[i] = table[static_cast<std::size_t>(63 + (src >> 17))];
        } else if (src < 1 << 24) {
            gain[i] = table[static_cast<std::size_t>(78 + (src >> 21))];
        } else {
            gain[i] = src < 1 << 25 ? table[86] : INT32_MAX;
        }
    }
    return negative;
}

namespace {

std::int32_t octaveGain(const GainTables& t, std::int32_t x) {
    const int highest = std::bit_width(static_cast<unsigned>(x)) - 1, i = highest - 7;
    const std::int64_t d = x - (1 << highest);
    return static_cast<std::int32_t>(((((t.bend[i] * d) >> 13) - t.slope[i]) * d >> (i + 5)) + t.start[i]);
}

}  // namespace

bool ephraimMalahGains(const GainTables& t, const float* w, const float* snr, float* gain, int len) {
    for (int i = 0; i < len; ++i) {
        if (!(w[i] >= 0 && w[i] <= 1 && snr[i] >= 3.05176e-05f && snr[i] <= 32768)) return false;
    }
    for (int i = 0; i < len; ++i) {
        const auto x = static_cast<std::int32_t>(std::clamp(snr[i], 3.1e-05f, 100.0f) * w[i] * 4194304);
        gain[i] =
            x <= 128 ? w[i] * static_cast<float>(t.small[x]) : static_cast<float>(octaveGain(t, x)) * w[i] / 4194304;
    }
    return true;
}

bool ephraimMalahGains(const GainTables& t, const std::int32_t* w, const std::int32_t* snr, std::int32_t* gain,
                       int len) {
    for (int i = 0; i < len; ++i) {
        if (w[i] < 0 || snr[i] < 1 || snr[i] > 0x40000000) return false;
    }
    for (int i = 0; i < len; ++i) {
        const std::int64_t share = w[i];
        const auto x = static_cast<std::int32_t>((share * std::min(snr[i], 3276800)) >> 24);
        const std::int64_t product = x <= 128 ? share * t.small[x] : (share * octaveGain(t, x)) >> 22;
        gain[i] = static_cast<std::int32_t>(std::min<std::int64_t>(product, INT32_MAX));
    }
    return true;
}

bool ephraimMalahByBessel(const float* w, const float* snr, float* gain, int len) {
    for (int i = 0; i < len; ++i) {
        const double v = static_cast<double>(w[i]) * static_cast<double>(std::min(snr[i], 100.0f));
        if (!(v > 0)) {
            gain[i] = 0;
            continue;
        }
        const double i0 = std::cyl_bessel_i(0.0, v / 2), i1 = std::cyl_bessel_i(1.0, v / 2);
        const double f = std::sqrt(std::numbers::pi / v) / 2 * std::exp(-v / 2) * ((1 + v) * i0 + v * i1);
        gain[i] = static_cast<float>(w[i] * f);
    }
    return true;
}

}  // namespace plain
