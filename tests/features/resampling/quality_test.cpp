// How clean resampled signals are: sines through the usual conversions, with bounds in decibels.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include "features/resampling/contexts.h"
#include "features/resampling/tones.h"

namespace {

using namespace resampling;

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

// What each of the filters keeps.
const Quality bounds[] = {{0.006, -79, -68}, {0.0004, -104, -88.5}, {0.0003, -110, -100}, {0.0003, -130, -122}};
static_assert(std::size(bounds) == std::size(filters));

TEST(ResampleQuality, FixedForm) {
    for (const Conversion& c : conversions) {
        const double factor = c.factor();
        for (std::size_t i = 0; i < std::size(filters); ++i) {
            const Filter& f = filters[i];
            const Quality& bound = bounds[i];
            const int taps = static_cast<int>(std::lround(f.taps / std::min(factor, 1.0)));
            const std::string name =
                std::to_string(c.in) + " to " + std::to_string(c.out) + ", " + std::to_string(f.taps);
            expectQuality(name, measure(fixedForm(c.in, c.out, taps, 1, f.rollf, f.alpha), factor, f.pass, f.stop),
                          bound.ripple, bound.images, bound.aliases);
            if (f.taps != 64) continue;
            expectQuality(name + ", accurate",
                          measure(fixedForm(c.in, c.out, taps, 2, f.rollf, f.alpha), factor, f.pass, f.stop),
                          bound.ripple, bound.images, bound.aliases);
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

// Two tones at once leave what both leave alone, 3 dB more than one (rounding to 16 bits 6 dB more, beside tones of half
// the size): nothing in the conversion depends on what else is there.
void expectTwoTones(const std::string& name, const Converter& convert, double factor, double pass, double bound) {
    const double lower = 0.5 * std::min(factor, 1.0) * pass;
    const double pairs[][2] = {{0.050, 0.0513}, {0.31, 0.37}, {0.83, 0.871}, {0.09, 0.93}};
    for (const auto& pair : pairs) {
        const double rest = decibels(restOfTwoTones(convert, lower * pair[0], lower * pair[1], factor));
        if (std::getenv("VORNSR_SHOW_QUALITY") != nullptr) {
            std::printf("%-44s two tones at %.4f and %.4f: rest %7.1f dB\n", name.c_str(), pair[0], pair[1], rest);
        }
        EXPECT_LT(rest, bound) << name << " at " << pair[0] << " and " << pair[1];
    }
}

TEST(ResampleQuality, TwoTones) {
    for (const Conversion& c : conversions) {
        const Filter& f = filters[1];
        const double factor = c.factor();
        const int taps = static_cast<int>(std::lround(f.taps / std::min(factor, 1.0)));
        const std::string name = std::to_string(c.in) + " to " + std::to_string(c.out);
        expectTwoTones(name, fixedForm(c.in, c.out, taps, 1, f.rollf, f.alpha), factor, f.pass, -101);
        expectTwoTones(name + ", 16 bits", fixedForm16(c.in, c.out, taps, 1, f.rollf, f.alpha), factor, f.pass, -69);
        expectTwoTones(name + ", 16 bits, accurate", fixedForm16(c.in, c.out, taps, 2, f.rollf, f.alpha), factor,
                       f.pass, -87);
    }
    for (double factor : {1.0 / 3, 2.0, std::numbers::pi / 2}) {
        const Filter& f = filters[1];
        expectTwoTones("factor " + std::to_string(factor),
                       variableForm(factor, 512, static_cast<float>(f.taps), f.rollf, f.alpha), factor, f.pass, -97);
    }
}

}  // namespace
