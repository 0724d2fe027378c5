// How often the measures of periodicity miss the pitch, ours and the peer's: voices of known period, and spoken digits,
// on which the peer's answer is taken for comparison. Rates are of 8000 samples a second.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "vornsr.h"
#if defined(VORNSR_HAVE_AUBIO)
#include <aubio/aubio.h>
#endif

namespace {

constexpr int shortest = 20, longest = 160, frame = 320, step = 80;

using Samples = std::vector<float>;
// The period of a frame, 0 if there is none.
using Estimate = std::function<double(const float*)>;
struct Form {
    std::string name;
    Estimate of;
};

// Pulses through a two-pole filter with its resonance at 600 Hz, with noise so many decibels below. `truth` holds the
// period at each sample.
struct Voice {
    Samples x;
    std::vector<double> truth;
};
Voice voice(double from, double to, double snr, unsigned seed) {
    std::mt19937 generator(seed);
    std::normal_distribution<double> noise(0, 1);
    constexpr int len = 8000;
    const double radius = 0.95, angle = 2 * M_PI * 600 / 8000;
    std::vector<double> clean;
    Voice v;
    double next = 10, before = 0, twoBefore = 0, energy = 0;
    for (int i = 0; i < len; ++i) {
        const double period = from + (to - from) * i / len;
        double pulse = 0;
        if (i + 1 > next) {  // a pulse between two samples is shared by them
            pulse = next - i;
            next += period;
        } else if (i > 0 && i > next - period && i <= next - period + 1) {
            pulse = 1 - (next - period - (i - 1));
        }
        const double y = pulse + 2 * radius * std::cos(angle) * before - radius * radius * twoBefore;
        twoBefore = before;
        before = y;
        clean.push_back(y);
        v.truth.push_back(period);
        energy += y * y;
    }
    const double level = std::sqrt(energy / len) * std::pow(10, -snr / 20);
    for (double y : clean) v.x.push_back(static_cast<float>(y + level * noise(generator)));
    return v;
}

Form leastSquares() {
    return {"least squares, 32f", [](const float* x) {
                float measure = 0;
                int period = 0;
                vornsPeriodicityLSPE_32f(x, frame, &measure, &period, longest, shortest);
                return static_cast<double>(period);
            }};
}
// A multiple of the period explains the signal as well. So the parts of the winner are asked again, from the shortest
// on, and the first one that explains nearly as much is taken.
Form leastSquaresOfParts() {
    return {"least squares, parts", [](const float* x) {
                float best = 0;
                int period = 0;
                vornsPeriodicityLSPE_32f(x, frame, &best, &period, longest, shortest);
                for (int part = period / shortest; part > 1; --part) {
                    const int low = std::max(period / part - 1, shortest);
                    float measure = 0;
                    int found = 0;
                    vornsPeriodicityLSPE_32f(x, frame, &measure, &found, period / part + 2, low);
                    if (measure > 0.85f * best) return static_cast<double>(found);
                }
                return static_cast<double>(period);
            }};
}
Form leastSquaresFixed() {
    return {"least squares, 16s", [](const float* x) {
                std::array<Vorn16s, frame> fixed;
                float top = 1e-9f;
                for (int i = 0; i < frame; ++i) top = std::max(top, std::fabs(x[i]));
                for (int i = 0; i < frame; ++i)
                    fixed[static_cast<std::size_t>(i)] = static_cast<Vorn16s>(x[i] / top * 16000);
                Vorn16s measure = 0;
                int period = 0;
                vornsPeriodicityLSPE_16s(fixed.data(), frame, &measure, &period, longest, shortest);
                return static_cast<double>(period);
            }};
}
// Of the squares of the samples.
Form combs() {
    return {"pulse train, 32f", [](const float* x) {
                std::array<float, frame> power;
                for (int i = 0; i < frame; ++i) power[static_cast<std::size_t>(i)] = x[i] * x[i];
                float measure = 0;
                int period = 0;
                vornsPeriodicity_32f(power.data(), frame, &measure, &period, longest, shortest);
                return static_cast<double>(period);
            }};
}
#if defined(VORNSR_HAVE_AUBIO)
Form aubio(const char* method) {
    const std::shared_ptr<aubio_pitch_t> pitch(new_aubio_pitch(method, frame, frame, 8000), del_aubio_pitch);
    const std::shared_ptr<fvec_t> in(new_fvec(frame), del_fvec), out(new_fvec(1), del_fvec);
    aubio_pitch_set_unit(pitch.get(), "Hz");
    aubio_pitch_set_silence(pitch.get(), -200);
    return {std::string("aubio ") + method, [=](const float* x) {
                std::copy_n(x, frame, in->data);
                aubio_pitch_do(pitch.get(), in.get(), out.get());
                return out->data[0] > 0 ? 8000.0 / static_cast<double>(out->data[0]) : 0.0;
            }};
}
#endif
std::vector<Form> forms() {
    std::vector<Form> all = {leastSquares(), leastSquaresFixed(), leastSquaresOfParts(), combs()};
#if defined(VORNSR_HAVE_AUBIO)
    all.push_back(aubio("yin"));
#endif
    return all;
}

// Frames by what became of them, in per cent: within 1/20 of the true period; on a multiple or a part of it; elsewhere.
// And the mean of the errors of the first, in per cent of the period.
struct Score {
    int frames = 0, right = 0, octave = 0;
    double error = 0;
    void add(double found, double truth) {
        ++frames;
        const double ratio = found / truth;
        if (std::fabs(ratio - 1) < 0.05) {
            ++right;
            error += std::fabs(ratio - 1);
        } else if (found > 0) {
            const double inverse = 1 / ratio;
            octave += (ratio > 1.5 && std::fabs(ratio / std::round(ratio) - 1) < 0.05) ||
                      (inverse > 1.5 && std::fabs(inverse / std::round(inverse) - 1) < 0.05);
        }
    }
    void print() const {
        const auto share = [&](int n) { return 100.0 * n / std::max(frames, 1); };
        std::printf(" | %5.1f %5.1f %5.1f %5.2f", share(right), share(octave), share(frames - right - octave),
                    100 * error / std::max(right, 1));
    }
};
void score(const Form& form, const Voice& v, Score& result) {
    for (int i = 0; i + frame <= static_cast<int>(v.x.size()); i += step) {
        result.add(form.of(v.x.data() + i), v.truth[static_cast<std::size_t>(i + frame / 2)]);
    }
}

// 16-bit samples behind a header of 44 bytes.
Samples recording(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    Samples x;
    for (std::size_t n = 44; n + 1 < bytes.size(); n += 2) {
        x.push_back(
            static_cast<float>(static_cast<Vorn16s>(static_cast<unsigned char>(bytes[n]) | bytes[n + 1] * 256)) /
            32768);
    }
    return x;
}

void syntheticVoices(const std::vector<Form>& all) {
    std::printf(
        "Voices of known period: frames right, on a multiple or a part, elsewhere, in %%; mean error of the right "
        "ones, in %%\n%-22s",
        "form");
    const double levels[] = {100, 20, 10, 0};
    for (const char* head : {"clean", "20 dB", "10 dB", "0 dB", "20 dB, glides"}) std::printf(" | %23s", head);
    std::printf("\n");
    for (const Form& form : all) {
        std::printf("%-22s", form.name.c_str());
        for (double snr : levels) {
            Score result;
            for (double period = 21.3; period < 155; period *= 1.13) score(form, voice(period, period, snr, 1), result);
            result.print();
        }
        Score glides;
        for (double period = 25; period < 100; period *= 1.2) score(form, voice(period, 1.5 * period, 20, 2), glides);
        glides.print();
        std::printf("\n");
    }
}

// Frames that are loud and periodic in the eyes of the first form; the share on which each agrees with the last.
void spokenDigits(const std::vector<Form>& all) {
    std::vector<Score> results(all.size());
    for (int digit = 0; digit < 10; ++digit) {
        for (int take = 0; take < 4; ++take) {
            const Samples x = recording(std::string(VORNSR_RECORDINGS) + "/test/" + std::to_string(digit) + "_george_" +
                                        std::to_string(take) + ".wav");
            for (int i = 0; i + frame <= static_cast<int>(x.size()); i += step) {
                float measure = 0, energy = 0;
                int period = 0;
                vornsDotProd_32f(&x[static_cast<std::size_t>(i)], &x[static_cast<std::size_t>(i)], frame, &energy);
                vornsPeriodicityLSPE_32f(&x[static_cast<std::size_t>(i)], frame, &measure, &period, longest, shortest);
                if (energy < 1e-3f * frame || measure < 0.8f) continue;
                const double reference = all.back().of(&x[static_cast<std::size_t>(i)]);
                if (reference < shortest || reference > longest) continue;
                for (std::size_t k = 0; k < all.size(); ++k) {
                    results[k].add(all[k].of(&x[static_cast<std::size_t>(i)]), reference);
                }
            }
        }
    }
    std::printf(
        "Spoken digits, %d voiced frames: like %s, on a multiple or a part, elsewhere, mean difference, in %%\n",
        results[0].frames, all.back().name.c_str());
    for (std::size_t k = 0; k + 1 < all.size(); ++k) {
        std::printf("%-22s", all[k].name.c_str());
        results[k].print();
        std::printf("\n");
    }
}

}  // namespace

int main() {
    const auto all = forms();
    syntheticVoices(all);
    spokenDigits(all);
}
