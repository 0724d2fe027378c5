// How clean a resampler is, whoever wrote it: what it makes of sines, in decibels. Nothing here looks at taps.
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <vector>

namespace resampling {

// Takes samples from position `around` on, with as many around them, and gives what it makes of len of them. A delay
// does no harm if what comes out is of a sine that began long before.
using Converter = std::function<std::vector<float>(const std::vector<float>& x, int len)>;
constexpr int around = 3000;

inline double decibels(double ratio) { return 20 * std::log10(std::max(ratio, 1e-12)); }

struct Tone {
    double gain, rest;  // of the sine itself, and the root of the mean square of all else, by that of the sine
};
// A sine of amplitude 1, of `cycles` per input sample.
inline Tone toneThrough(const Converter& convert, double cycles, double factor, bool survives) {
    const int len = static_cast<int>(1000 / std::min(factor, 1.0));
    std::vector<float> x(static_cast<std::size_t>(len + 2 * around));
    const double w = 2 * std::numbers::pi * cycles;
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<float>(std::sin(w * (static_cast<double>(i) - around) + 0.3));
    }
    const auto y = convert(x, len);
    // Least squares: c cos + s sin.
    double cc = 0, cs = 0, ss = 0, yc = 0, ys = 0, yy = 0;
    for (std::size_t n = 0; n < y.size(); ++n) {
        const double at = w * static_cast<double>(n) / factor, c = std::cos(at), s = std::sin(at), v = y[n];
        cc += c * c;
        cs += c * s;
        ss += s * s;
        yc += v * c;
        ys += v * s;
        yy += v * v;
    }
    if (!survives) return {0, std::sqrt(2 * yy / static_cast<double>(y.size()))};
    const double d = cc * ss - cs * cs, a = (yc * ss - ys * cs) / d, b = (ys * cc - yc * cs) / d;
    double left = 0;
    for (std::size_t n = 0; n < y.size(); ++n) {
        const double at = w * static_cast<double>(n) / factor, v = y[n] - a * std::cos(at) - b * std::sin(at);
        left += v * v;
    }
    return {std::hypot(a, b), std::sqrt(2 * left / static_cast<double>(y.size()))};
}

// Two sines of amplitude 1/2 at once, of so many cycles per input sample: the root of the mean square of all that is
// neither of them, by that of one. What a signal does to another within the converter (intermodulation, a limit that
// clips) shows here and in no single tone.
inline double restOfTwoTones(const Converter& convert, double first, double second, double factor) {
    const int len = static_cast<int>(2000 / std::min(factor, 1.0));
    std::vector<float> x(static_cast<std::size_t>(len + 2 * around));
    const double w[2] = {2 * std::numbers::pi * first, 2 * std::numbers::pi * second};
    for (std::size_t i = 0; i < x.size(); ++i) {
        const double at = static_cast<double>(i) - around;
        x[i] = static_cast<float>(0.5 * std::sin(w[0] * at + 0.3) + 0.5 * std::sin(w[1] * at + 1.1));
    }
    const auto y = convert(x, len);
    // Least squares over both sines, by elimination of the normal equations.
    double a[4][5] = {};
    const auto base = [&](std::size_t n, double(&b)[4]) {
        for (int k = 0; k < 2; ++k) {
            const double at = w[k] * static_cast<double>(n) / factor;
            b[2 * k] = std::cos(at);
            b[2 * k + 1] = std::sin(at);
        }
    };
    for (std::size_t n = 0; n < y.size(); ++n) {
        double b[4];
        base(n, b);
        for (int r = 0; r < 4; ++r) {
            for (int c = 0; c < 4; ++c) a[r][c] += b[r] * b[c];
            a[r][4] += b[r] * y[n];
        }
    }
    for (int r = 0; r < 4; ++r) {
        for (int below = 0; below < 4; ++below) {
            if (below == r) continue;
            const double f = a[below][r] / a[r][r];
            for (int c = r; c < 5; ++c) a[below][c] -= f * a[r][c];
        }
    }
    double left = 0;
    for (std::size_t n = 0; n < y.size(); ++n) {
        double b[4], v = y[n];
        base(n, b);
        for (int r = 0; r < 4; ++r) v -= a[r][4] / a[r][r] * b[r];
        left += v * v;
    }
    return std::sqrt(left / static_cast<double>(y.size())) / std::sqrt(0.125);
}

struct Quality {
    double ripple = 0;      // largest |gain in dB| in the pass band
    double images = -400;   // loudest rest of a tone of the pass band, in dB
    double aliases = -400;  // loudest tone of the stop band, in dB; -400 if the input has no such tones
};
// Bands by half the lower of the two rates: what lies up to `pass` is kept, what lies from `stop` on is not. `fine`
// times as many tones find the peaks between the few.
inline Quality measure(const Converter& convert, double factor, double pass, double stop, int fine = 1) {
    Quality q;
    const double lower = 0.5 * std::min(factor, 1.0);
    for (int i = 1; i <= 8 * fine; ++i) {
        const Tone tone = toneThrough(convert, lower * pass * i / (8 * fine + 0.013), factor, true);
        q.ripple = std::max(q.ripple, std::fabs(decibels(tone.gain)));
        q.images = std::max(q.images, decibels(tone.rest));
    }
    for (int i = 0; i < 16 * fine && lower * stop < 0.5; ++i) {
        const double cycles = lower * stop + (0.499 - lower * stop) * i / (16 * fine - 1.0);
        q.aliases = std::max(q.aliases, decibels(toneThrough(convert, cycles, factor, false).rest));
    }
    return q;
}

// Taps at the lower rate, edge and window, and the bands that they separate, by half the lower rate.
struct Filter {
    int taps;
    float rollf, alpha;
    double pass, stop;
};
constexpr Filter filters[] = {{32, 0.86f, 6.0f, 0.70, 1.02},
                              {64, 0.92f, 9.0f, 0.80, 1.03},
                              {128, 0.95f, 10.0f, 0.89, 1.01},
                              {256, 0.97f, 12.0f, 0.93, 1.01}};
struct Conversion {
    int in, out;
    double factor() const { return static_cast<double>(out) / in; }
};
constexpr Conversion conversions[] = {{48000, 16000}, {44100, 16000}, {8000, 16000}, {16000, 8000}};

}  // namespace resampling
