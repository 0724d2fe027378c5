// How clean resampled signals are: sines through the usual conversions, with bounds in decibels. Nothing here looks at
// taps.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include "features/resampling/contexts.h"

namespace {

using namespace resampling;

// Takes samples from position `around` on, with as many around them, and gives what it makes of len of them.
using Converter = std::function<std::vector<float>(const std::vector<float>& x, int len)>;
constexpr int around = 3000;

double decibels(double ratio) { return 20 * std::log10(std::max(ratio, 1e-12)); }

struct Tone {
    double gain, rest;  // of the sine itself, and the root of the mean square of all else, by that of the sine
};
// A sine of amplitude 1, of `cycles` per input sample.
Tone toneThrough(const Converter& convert, double cycles, double factor, bool survives) {
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

struct Quality {
    double ripple = 0;      // largest |gain in dB| in the pass band
    double images = -400;   // loudest rest of a tone of the pass band, in dB
    double aliases = -400;  // loudest tone of the stop band, in dB
};
// Bands by half the lower of the two rates: what lies up to `pass` is kept, what lies from `stop` on is not.
Quality measure(const Converter& convert, double factor, double pass, double stop) {
    Quality q;
    const double lower = 0.5 * std::min(factor, 1.0);
    for (int i = 1; i <= 8; ++i) {
        const Tone tone = toneThrough(convert, lower * pass * i / 8.013, factor, true);
        q.ripple = std::max(q.ripple, std::fabs(decibels(tone.gain)));
        q.images = std::max(q.images, decibels(tone.rest));
    }
    for (int i = 0; i < 16 && lower * stop < 0.5; ++i) {
        const double cycles = lower * stop + (0.499 - lower * stop) * i / 15.0;
        q.aliases = std::max(q.aliases, decibels(toneThrough(convert, cycles, factor, false).rest));
    }
    return q;
}

Converter fixedForm(int in, int out, int taps, int hint, float rollf, float alpha) {
    const auto state = std::make_shared<Fixed<Vorn32f>>(Ratio{in, out, taps, hint, rollf, alpha});
    return [=](const std::vector<float>& x, int len) {
        std::vector<float> y(static_cast<std::size_t>(static_cast<double>(len) * out / in) + 2);
        double time = 0;
        int made;
        EXPECT_EQ(resample(state->get(), x.data() + around, len, y.data(), 1.0f, &time, &made), vornStsNoErr);
        y.resize(static_cast<std::size_t>(made));
        return y;
    };
}
Converter variableForm(double factor, int nStep, float window, float rollf, float alpha) {
    const auto state = std::make_shared<Variable<Vorn32f>>(Design{nStep, 1, window, rollf, alpha});
    return [=](const std::vector<float>& x, int len) {
        std::vector<float> y(static_cast<std::size_t>(len * factor) + 2);
        double time = 0;
        int made;
        EXPECT_EQ(resample(state->get(), x.data() + around, len, y.data(), factor, 1.0f, &time, &made), vornStsNoErr);
        y.resize(static_cast<std::size_t>(made));
        return y;
    };
}
// Samples of 16 bits, at full scale.
Converter fixedForm16(int in, int out, int taps, int hint, float rollf, float alpha) {
    const auto state = std::make_shared<Fixed<Vorn16s>>(Ratio{in, out, taps, hint, rollf, alpha});
    return [=](const std::vector<float>& x, int len) {
        std::vector<Vorn16s> samples(x.size()), y(static_cast<std::size_t>(static_cast<double>(len) * out / in) + 2);
        for (std::size_t i = 0; i < x.size(); ++i) samples[i] = static_cast<Vorn16s>(std::lrint(30000 * x[i]));
        double time = 0;
        int made;
        EXPECT_EQ(resample(state->get(), samples.data() + around, len, y.data(), 1.0f, &time, &made), vornStsNoErr);
        std::vector<float> result(static_cast<std::size_t>(made));
        for (std::size_t i = 0; i < result.size(); ++i) result[i] = static_cast<float>(y[i]) / 30000;
        return result;
    };
}

void expectQuality(const std::string& name, const Quality& q, double ripple, double images, double aliases) {
    if (std::getenv("VORNSR_SHOW_QUALITY") != nullptr) {
        std::printf("%-52s ripple %7.4f dB, images %7.1f dB, aliases %7.1f dB\n", name.c_str(), q.ripple, q.images,
                    q.aliases);
    }
    EXPECT_LT(q.ripple, ripple) << name;
    EXPECT_LT(q.images, images) << name;
    EXPECT_LT(q.aliases, aliases) << name;
}

// Taps at the lower rate, edge and window, and the bands that they separate, by half the lower rate.
struct Filter {
    int taps;
    float rollf, alpha;
    double pass, stop, ripple, images, aliases;
};
const Filter filters[] = {{32, 0.86f, 6.0f, 0.70, 1.02, 0.006, -79, -68},
                          {64, 0.92f, 9.0f, 0.80, 1.03, 0.0004, -104, -88.5},
                          {128, 0.95f, 10.0f, 0.89, 1.01, 0.0003, -110, -100},
                          {256, 0.97f, 12.0f, 0.93, 1.01, 0.0003, -130, -122}};
struct Conversion {
    int in, out;
};
const Conversion conversions[] = {{48000, 16000}, {44100, 16000}, {8000, 16000}, {16000, 8000}};

TEST(ResampleQuality, FixedForm) {
    for (const Conversion& c : conversions) {
        const double factor = static_cast<double>(c.out) / c.in;
        for (const Filter& f : filters) {
            const int taps = static_cast<int>(std::lround(f.taps / std::min(factor, 1.0)));
            const std::string name =
                std::to_string(c.in) + " to " + std::to_string(c.out) + ", " + std::to_string(f.taps);
            expectQuality(name, measure(fixedForm(c.in, c.out, taps, 1, f.rollf, f.alpha), factor, f.pass, f.stop),
                          f.ripple, f.images, f.aliases);
            if (f.taps != 64) continue;
            expectQuality(name + ", accurate",
                          measure(fixedForm(c.in, c.out, taps, 2, f.rollf, f.alpha), factor, f.pass, f.stop), f.ripple,
                          f.images, f.aliases);
            expectQuality(name + ", 16 bits",
                          measure(fixedForm16(c.in, c.out, taps, 1, f.rollf, f.alpha), factor, f.pass, f.stop), 0.003,
                          -72, -71);
            expectQuality(name + ", 16 bits, accurate",
                          measure(fixedForm16(c.in, c.out, taps, 2, f.rollf, f.alpha), factor, f.pass, f.stop), 0.0004,
                          -93, -87);
        }
    }
}

TEST(ResampleQuality, VariableForm) {
    // The interpolation between the points of the table is heard first.
    struct Fineness {
        int nStep;
        double ripple, images, aliases;
    };
    const Filter& f = filters[1];
    for (const Fineness& fine :
         {Fineness{32, 0.006, -71, -71}, Fineness{128, 0.0004, -95, -89}, Fineness{512, 0.0003, -100, -90}}) {
        for (double factor : {1.0 / 3, 160.0 / 441, 2.0, 0.5, 1 / std::numbers::sqrt2, std::numbers::pi / 2}) {
            expectQuality("factor " + std::to_string(factor) + ", nStep " + std::to_string(fine.nStep),
                          measure(variableForm(factor, fine.nStep, static_cast<float>(f.taps), f.rollf, f.alpha),
                                  factor, f.pass, f.stop),
                          fine.ripple, fine.images, fine.aliases);
        }
    }
}

}  // namespace
