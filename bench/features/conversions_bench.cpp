// Representations of a prediction filter beside plain loops, and spectra beside FFTW.
#include <cmath>

#include "features/common.h"
#include "plain/conversions.h"
#ifdef VORNSR_HAVE_FFTW
#include <fftw3.h>
#endif

namespace {

using namespace bench::features;

using Convert = VornStatus (*)(const Vorn32f*, Vorn32f*, int);
using ConvertFixed = VornStatus (*)(const Vorn16s*, Vorn16s*, int, int);

std::shared_ptr<float[]> smallCoefficients(int n) {
    const double size = n > 22 ? 0.02 : 0.3;
    return signal<float>(static_cast<std::size_t>(n), -size, size);
}

template <class Plain>
void addConversion(const std::string& name, Convert ours, Plain plain) {
    for (int n : {3, 8, 10, 12, 16, 22, 64, 256}) {
        auto src = smallCoefficients(n), dst = bench::buffer<float>(static_cast<std::size_t>(n));
        compare(name, std::to_string(n), n, dst,
                {{bench::ours, [=] { ours(src.get(), dst.get(), n); }},
                 {"plain", [=] { plain(src.get(), dst.get(), n); }}});
    }
}

// The peer has conversions of its own around the same loop.
template <class Plain>
void addFixed(const std::string& name, ConvertFixed ours, Plain plain) {
    for (int n : {10, 22}) {
        auto src = signal<Vorn16s>(static_cast<std::size_t>(n), -1200, 1200);
        auto dst = bench::buffer<Vorn16s>(static_cast<std::size_t>(n));
        compare(name, std::to_string(n), n, dst,
                {{bench::ours, [=] { ours(src.get(), dst.get(), n, -12); }},
                 {"plain", [=] {
                      float x[64], y[64];
                      for (int i = 0; i < n; ++i) x[i] = static_cast<float>(src[i]) * 0x1p-12f;
                      plain(x, y, n);
                      for (int i = 0; i < n; ++i) {
                          const float scaled = y[i] * 0x1p12f;
                          dst[i] = static_cast<Vorn16s>(static_cast<int>(scaled < 0 ? scaled - 0.5f : scaled + 0.5f));
                      }
                  }}});
    }
}

// Lines at uneven distances; frames in turn, so that no branch can be learned by heart.
constexpr int frames = 64;
std::shared_ptr<float[]> lines(int order) {
    auto moved = signal<float>(static_cast<std::size_t>(frames * order), -0.3, 0.3);
    for (int i = 0; i < frames * order; ++i) {
        moved[i] = static_cast<float>(std::cos(3.14159265 * (i % order + 1 + moved[i]) / (order + 1)));
    }
    return moved;
}

void addLines() {
    for (int order : {10, 11, 12, 16, 22}) {
        const auto x = lines(order);
        const auto a = bench::buffer<float>(static_cast<std::size_t>(frames * order)),
                   dst = bench::buffer<float>(static_cast<std::size_t>(order));
        for (int f = 0; f < frames; ++f) vornsLSPToLP_32f(&x[f * order], &a[f * order], order);
        const auto eachFrame = [](const auto& use) {
            for (int f = 0; f < frames; ++f) use(f);
        };
        for (int nGrid : {60, 128}) {
            for (int nDiv : {4, 8}) {
                const std::string size = std::to_string(order) + ", grid " + std::to_string(nGrid) + ", " +
                                         std::to_string(nDiv) + " divisions";
                compare("vornsLPToLSP_32f", size, frames, dst,
                        {{bench::ours,
                          [=] {
                              eachFrame([&](int f) {
                                  int roots;
                                  vornsLPToLSP_32f(&a[f * order], dst.get(), order, &roots, nGrid, nDiv);
                              });
                          }},
                         {"plain", [=] {
                              eachFrame([&](int f) {
                                  plain::linesOfPrediction(&a[f * order], dst.get(), order, nGrid, nDiv);
                              });
                          }}});
            }
        }
        compare(
            "vornsLSPToLP_32f", std::to_string(order), frames, dst,
            {{bench::ours, [=] { eachFrame([&](int f) { vornsLSPToLP_32f(&x[f * order], dst.get(), order); }); }},
             {"plain", [=] { eachFrame([&](int f) { plain::predictionOfLines(&x[f * order], dst.get(), order); }); }}});
    }
}

// The plain loop has its table made; FFTW has its plan made, or makes one in every call as ours does.
void addSpectra() {
    constexpr int len = 12;
    for (int order : {3, 5, 6, 7, 8, 9, 12}) {
        const int n = 1 << order;
        auto a = smallCoefficients(len), dst = bench::buffer<float>(static_cast<std::size_t>(n));
        auto cosines = bench::buffer<float>(static_cast<std::size_t>(n * len)),
             sines = bench::buffer<float>(static_cast<std::size_t>(n * len));
        for (int i = 0; i < n; ++i) {
            for (int k = 0; k < len; ++k) {
                cosines[i * len + k] = static_cast<float>(std::cos(3.14159265358979 * i * (k + 1) / n));
                sines[i * len + k] = static_cast<float>(std::sin(3.14159265358979 * i * (k + 1) / n));
            }
        }
        std::vector<Call> calls = {
            {bench::ours, [=] { vornsLPToSpectrum_32f(a.get(), len, dst.get(), order, -1.0f); }},
            {"plain", [=] { plain::envelope(a.get(), len, cosines.get(), sines.get(), dst.get(), n, -1.0f); }}};
#ifdef VORNSR_HAVE_FFTW
        auto x = bench::buffer<float>(static_cast<std::size_t>(2 * n));
        auto spectrum = bench::buffer<float>(static_cast<std::size_t>(2 * n + 2));
        // The peer's plan writes to spectrum.
        const auto finish = [=](fftwf_plan plan) {
            std::fill_n(x.get(), 2 * n, 0.0f);
            std::copy_n(a.get(), len, x.get() + 1);
            fftwf_execute(plan);
            float* z = spectrum.get();
            z[0] += 1.0f;
            for (int i = 0; i < n; ++i) dst[i] = 1 / std::sqrt(z[2 * i] * z[2 * i] + z[2 * i + 1] * z[2 * i + 1]);
        };
        const fftwf_plan kept =
            fftwf_plan_dft_r2c_1d(2 * n, x.get(), reinterpret_cast<fftwf_complex*>(spectrum.get()), FFTW_ESTIMATE);
        calls.push_back({"FFTW, plan kept", [=] { finish(kept); }});
        calls.push_back({"FFTW", [=] {
                             const fftwf_plan plan = fftwf_plan_dft_r2c_1d(
                                 2 * n, x.get(), reinterpret_cast<fftwf_complex*>(spectrum.get()), FFTW_ESTIMATE);
                             finish(plan);
                             fftwf_destroy_plan(plan);
                         }});
#endif
        compare("vornsLPToSpectrum_32f", std::to_string(n), n, dst, calls);
    }
}

const bench::Family conversions([] {
    addConversion("vornsLPToCepstrum_32f", vornsLPToCepstrum_32f, plain::cepstrumOfPrediction);
    addConversion("vornsCepstrumToLP_32f", vornsCepstrumToLP_32f, plain::predictionOfCepstrum);
    addConversion("vornsLPToReflection_32f", vornsLPToReflection_32f, plain::reflectionsOfPrediction);
    addConversion("vornsReflectionToLP_32f", vornsReflectionToLP_32f, plain::predictionOfReflections);
    addFixed("vornsLPToCepstrum_16s_Sfs", vornsLPToCepstrum_16s_Sfs, plain::cepstrumOfPrediction);
    addFixed("vornsLPToReflection_16s_Sfs", vornsLPToReflection_16s_Sfs, plain::reflectionsOfPrediction);
    addLines();
    addSpectra();
});

}  // namespace
