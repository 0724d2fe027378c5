// How clean the resampled signals of the benchmarks are, ours and the peers', so that speeds are compared at like
// quality. Sines through each conversion, with the bands that our filters separate; units and terms are those of
// tests/features/resampling/tones.h. Aliases are "-" where the input has no tones above half the lower rate, all three
// where a form has no room for a filter for each phase.
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/features/resampling/tones.h"
#include "vornsr.h"
#if defined(VORNSR_HAVE_SPEEXDSP)
#include <speex/speex_resampler.h>
#endif
#if defined(VORNSR_HAVE_SAMPLERATE)
#include <samplerate.h>
#endif
#if defined(VORNSR_HAVE_SOXR)
#include <soxr.h>
#endif

namespace {

using namespace resampling;

// Too many phases for a filter each: a table must be read between its points, as with an irrational factor.
constexpr Conversion manyPhases = {1000000, 707107};

using Block = std::vector<float>;

struct Form {
    std::string name;
    bool everyRatio;
    std::function<Converter(Conversion)> of;
    // Of a peer: its own bands, where it keeps the level within 0.1 dB, and the shortest of our fixed filters, in steps
    // of 8 taps, that is no worse there in any of the three, taking the worst of the four usual conversions.
    Filter like = {};
};

// From the results for a whole block, the samples that belong to its middle.
[[maybe_unused]] Block middle(const Block& all, int len, double factor) {
    const auto first = all.begin() + std::lround(around * factor);
    return Block(first, first + static_cast<int>(len * factor));
}
std::size_t room(const Block& x, double factor) { return static_cast<std::size_t>(x.size() * factor) + 2; }

Form fixedForm(const Filter& f) {
    return {"fixed, " + std::to_string(f.taps) + " taps", false, [=](Conversion c) -> Converter {
                const int taps = static_cast<int>(std::lround(f.taps / std::min(c.factor(), 1.0)));
                VornResampleFixedState_32f* made = nullptr;
                vornsResamplePolyphaseFixedInitAlloc_32f(&made, c.in, c.out, taps, 1, f.rollf, f.alpha);
                const std::shared_ptr<VornResampleFixedState_32f> state(made, vornsResamplePolyphaseFixedFree_32f);
                return [=](const Block& x, int len) {
                    Block y(room(x, c.factor()));
                    double time = 0;
                    int n = 0;
                    vornsResamplePolyphaseFixed_32f(state.get(), x.data() + around, len, y.data(), 1.0f, &time, &n);
                    y.resize(static_cast<std::size_t>(n));
                    return y;
                };
            }};
}
Form variableForm(const Filter& f, int nStep) {
    return {"variable, " + std::to_string(f.taps) + " taps, nStep " + std::to_string(nStep), true,
            [=](Conversion c) -> Converter {
                VornResampleState_32f* made = nullptr;
                vornsResamplePolyphaseInitAlloc_32f(&made, nStep, 1, static_cast<float>(f.taps), f.rollf, f.alpha);
                const std::shared_ptr<VornResampleState_32f> state(made, vornsResamplePolyphaseFree_32f);
                return [=](const Block& x, int len) {
                    Block y(room(x, c.factor()));
                    double time = 0;
                    int n = 0;
                    vornsResamplePolyphase_32f(state.get(), x.data() + around, len, y.data(), c.factor(), 1.0f, &time,
                                               &n);
                    y.resize(static_cast<std::size_t>(n));
                    return y;
                };
            }};
}

// The peers have their own filters. Each call is a stream of its own, from silence on.
std::vector<Form> peers() {
    std::vector<Form> forms;
#if defined(VORNSR_HAVE_SOXR)
    for (const auto& [name, recipe, like] : {std::tuple("soxr LQ", SOXR_LQ, Filter{48, 0.835f, 11.75f, 0.73, 1.01}),
                                             std::tuple("soxr HQ", SOXR_HQ, Filter{176, 0.96f, 13.25f, 0.93, 1.01})}) {
        forms.push_back({name, true,
                         [recipe = recipe](Conversion c) -> Converter {
                             return [=](const Block& x, int len) {
                                 const soxr_quality_spec_t spec =
                                     soxr_quality_spec(static_cast<unsigned long>(recipe), 0);
                                 Block y(room(x, c.factor()));
                                 std::size_t used = 0, made = 0;
                                 soxr_oneshot(c.in, c.out, 1, x.data(), x.size(), &used, y.data(), y.size(), &made,
                                              nullptr, &spec, nullptr);
                                 return middle(y, len, c.factor());
                             };
                         },
                         like});
    }
#endif
#if defined(VORNSR_HAVE_SPEEXDSP)
    for (const auto& [quality, like] :
         {std::pair(4, Filter{64, 0.925f, 8.5f, 0.86, 1.01}), std::pair(10, Filter{256, 0.975f, 12.0f, 0.955, 1.01})}) {
        forms.push_back({"speexdsp " + std::to_string(quality), true,
                         [quality = quality](Conversion c) -> Converter {
                             return [=](const Block& x, int len) {
                                 int error = 0;
                                 const std::shared_ptr<SpeexResamplerState> state(
                                     speex_resampler_init(1, static_cast<spx_uint32_t>(c.in),
                                                          static_cast<spx_uint32_t>(c.out), quality, &error),
                                     speex_resampler_destroy);
                                 Block y(room(x, c.factor()));
                                 auto used = static_cast<spx_uint32_t>(x.size()),
                                      made = static_cast<spx_uint32_t>(y.size());
                                 speex_resampler_process_float(state.get(), 0, x.data(), &used, y.data(), &made);
                                 return middle(y, len, c.factor());
                             };
                         },
                         like});
    }
#endif
#if defined(VORNSR_HAVE_SAMPLERATE)
    for (const auto& [name, kind, like] :
         {std::tuple("libsamplerate fastest", SRC_SINC_FASTEST, Filter{40, 0.835f, 11.0f, 0.715, 1.01}),
          std::tuple("libsamplerate medium", SRC_SINC_MEDIUM_QUALITY, Filter{88, 0.92f, 11.75f, 0.865, 1.01}),
          std::tuple("libsamplerate best", SRC_SINC_BEST_QUALITY, Filter{240, 0.97f, 15.0f, 0.945, 1.01})}) {
        forms.push_back({name, true,
                         [kind = kind](Conversion c) -> Converter {
                             return [=](const Block& x, int len) {
                                 Block y(room(x, c.factor()));
                                 SRC_DATA data = {};
                                 data.data_in = x.data();
                                 data.data_out = y.data();
                                 data.input_frames = static_cast<long>(x.size());
                                 data.output_frames = static_cast<long>(y.size());
                                 data.src_ratio = c.factor();
                                 src_simple(&data, kind, 1);
                                 return middle(y, len, c.factor());
                             };
                         },
                         like});
    }
#endif
    return forms;
}

void line(double pass, double stop, const Form& form, int fine = 1) {
    std::printf("%-5g %.2f %-31s", pass, stop, form.name.c_str());
    const auto show = [&](const Conversion& c, bool taken) {
        if (!taken) {
            std::printf(" | %8s %6s %6s", "-", "-", "-");
            return;
        }
        const Quality q = measure(form.of(c), c.factor(), pass, stop, fine);
        std::printf(q.aliases > -400 ? " | %8.4f %6.1f %6.1f" : " | %8.4f %6.1f      -", q.ripple, q.images, q.aliases);
    };
    for (const Conversion& c : conversions) show(c, true);
    show(manyPhases, form.everyRatio);
    std::printf("\n");
}

}  // namespace

int main() {
    std::printf("Ripple, images and aliases in dB, with bands by half the lower rate.\n%-42s", "pass  stop form");
    const auto head = [](const Conversion& c) { std::printf(" | %8d to %10d", c.in, c.out); };
    for (const Conversion& c : conversions) head(c);
    head(manyPhases);
    std::printf("\n");
    const std::vector<Form> others = peers();
    for (const Filter& f : filters) {
        line(f.pass, f.stop, fixedForm(f));
        for (int nStep : {128, 512}) line(f.pass, f.stop, variableForm(f, nStep));
        for (const Form& form : others) line(f.pass, f.stop, form);
    }
    // Each peer in its own bands, and the filter of ours that stands beside it; the peaks decide, so with more tones.
    for (const Form& form : others) {
        line(form.like.pass, form.like.stop, form, 8);
        line(form.like.pass, form.like.stop, fixedForm(form.like), 8);
    }
}
