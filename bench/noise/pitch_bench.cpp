// Periods, peaks, pitch marks and correlations beside plain loops; the periods beside aubio's, too.
#include <cmath>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "plain/pitch.h"
#include "support/bench.h"
#include "vornsr.h"
#if defined(VORNSR_HAVE_AUBIO)
#include <aubio/aubio.h>
#endif

namespace {

// A voice of 8000 samples a second: pulses every 63.7 samples, resonance, and noise.
std::vector<double> voice(std::size_t len) {
    std::mt19937 generator(7);
    std::normal_distribution<double> noise(0, 0.05);
    std::vector<double> x(len);
    double before = 0, twoBefore = 0, next = 0;
    for (std::size_t i = 0; i < len; ++i) {
        double in = noise(generator);
        if (static_cast<double>(i) >= next) in += 1, next += 63.7;
        x[i] = in + 1.6 * before - 0.81 * twoBefore;
        twoBefore = before;
        before = x[i];
    }
    return x;
}
template <class T>
std::shared_ptr<T[]> samples(std::size_t len, double scale, bool negative = true) {
    auto block = bench::buffer<T>(len);
    const auto x = voice(len);
    for (std::size_t i = 0; i < len; ++i) {
        block[i] = static_cast<T>(scale * (negative ? x[i] : std::fabs(x[i])));
    }
    return block;
}

void add(const std::string& name, const std::string& size, std::int64_t items, std::function<void()> ours,
         std::function<void()> plain) {
    bench::add(name, size, bench::ours, items, std::move(ours));
    bench::add(name, size, "plain", items, std::move(plain));
}

struct Range {
    int len, low, high;
    std::string text() const {
        return std::to_string(len) + ", " + std::to_string(low) + " to " + std::to_string(high);
    }
};
constexpr Range combRanges[] = {{240, 20, 160}, {320, 20, 147}, {1000, 20, 160}, {4096, 50, 800}, {4096, 1000, 4000}};
constexpr Range squareRanges[] = {{100, 20, 50}, {240, 20, 160}, {320, 20, 147}, {1024, 64, 400}};

template <class T, class Measure>
void addPeriods(const std::string& name, VornStatus (*ours)(const T*, int, Measure*, int*, int, int),
                Measure (*plain)(const T*, int, int, int, int*), const std::shared_ptr<T[]>& x, const Range& range) {
    add(
        name, range.text(), range.len,
        [=] {
            Measure measure;
            int period;
            ours(x.get(), range.len, &measure, &period, range.high, range.low);
            bench::keep(&period);
        },
        [=] {
            int period;
            benchmark::DoNotOptimize(plain(x.get(), range.len, range.low, range.high, &period));
            bench::keep(&period);
        });
}

#if defined(VORNSR_HAVE_AUBIO)
// A frame of so many samples, one after the other.
void addAubio(const std::string& name, const Range& range, const char* method) {
    const std::shared_ptr<aubio_pitch_t> pitch(
        new_aubio_pitch(method, static_cast<uint_t>(range.len), static_cast<uint_t>(range.len), 8000), del_aubio_pitch);
    const std::shared_ptr<fvec_t> in(new_fvec(static_cast<uint_t>(range.len)), del_fvec), out(new_fvec(1), del_fvec);
    if (!pitch) return;
    const auto x = samples<float>(static_cast<std::size_t>(range.len), 0.1);
    for (int i = 0; i < range.len; ++i) in->data[i] = x[static_cast<std::size_t>(i)];
    bench::add(name, range.text(), std::string("aubio ") + method, range.len, [=] {
        aubio_pitch_do(pitch.get(), in.get(), out.get());
        bench::keep(out->data);
    });
}
#endif

void addPeriods() {
    const auto positive = samples<float>(4096, 1, false), wave = samples<float>(4096, 1);
    const auto positive32 = samples<std::int32_t>(4096, 1e8, false);
    const auto wave16 = samples<std::int16_t>(4096, 5000);
    for (const Range& range : combRanges) {
        addPeriods<Vorn32f, Vorn32f>("vornsPeriodicity_32f", vornsPeriodicity_32f, plain::combs, positive, range);
        addPeriods<Vorn32s, Vorn16s>("vornsPeriodicity_32s16s", vornsPeriodicity_32s16s, plain::combs, positive32,
                                     range);
    }
    for (const Range& range : squareRanges) {
        addPeriods<Vorn32f, Vorn32f>("vornsPeriodicityLSPE_32f", vornsPeriodicityLSPE_32f, plain::leastSquaresPeriod,
                                     wave, range);
        addPeriods<Vorn16s, Vorn16s>("vornsPeriodicityLSPE_16s", vornsPeriodicityLSPE_16s, plain::leastSquaresPeriod,
                                     wave16, range);
#if defined(VORNSR_HAVE_AUBIO)
        for (const char* method : {"yin", "yinfast"}) addAubio("vornsPeriodicityLSPE_32f", range, method);
#endif
    }
}

template <class T>
void addPeaks(const std::string& name, VornStatus (*ours)(const T*, Vorn8u*, int, int, int),
              void (*plain)(const T*, Vorn8u*, int, int, int), double scale) {
    const auto x = samples<T>(65535, scale);
    const auto flags = bench::buffer<Vorn8u>(65535);
    for (int len : {240, 4096, 65535}) {
        for (int average : {0, 2, 20, 127}) {
            if (average == 127 && len == 240) continue;
            add(
                name + ", average " + std::to_string(average), std::to_string(len), len,
                [=] {
                    ours(x.get(), flags.get(), len, 5, average);
                    bench::keep(flags.get());
                },
                [=] {
                    plain(x.get(), flags.get(), len, 5, average);
                    bench::keep(flags.get());
                });
        }
    }
}

struct Size {
    const char* name;
    std::size_t elements, bytes;  // a fixed length, or the bytes of all vectors
    int of(std::size_t vectors, std::size_t element) const {
        return static_cast<int>(elements != 0 ? elements : bytes / vectors / element);
    }
};
constexpr std::size_t memory = std::size_t{128} << 20;
constexpr Size sizes[] = {{"20", 20, 0},
                          {"160", 160, 0},
                          {"L1", 0, bench::inL1},
                          {"last level", 0, bench::inLastLevel},
                          {"memory", 0, memory}};

void addMarks() {
    for (const Size& size : sizes) {
        const int len = size.of(2, 4), len16 = size.of(2, 2);
        const auto src = bench::buffer<float>(static_cast<std::size_t>(len)),
                   dst = bench::buffer<float>(static_cast<std::size_t>(len));
        for (int i = 0; i < len; ++i) src[i] = static_cast<float>(70 * i + i % 9);
        add(
            "vornsPitchmarkToF0Cand_32f", size.name, len,
            [=] {
                vornsPitchmarkToF0Cand_32f(src.get(), dst.get(), len);
                bench::keep(dst.get());
            },
            [=] {
                benchmark::DoNotOptimize(plain::markCandidates(src.get(), dst.get(), len));
                bench::keep(dst.get());
            });
        const auto src16 = bench::buffer<Vorn16s>(static_cast<std::size_t>(len16)),
                   dst16 = bench::buffer<Vorn16s>(static_cast<std::size_t>(len16));
        for (int i = 0; i < len16; ++i) src16[i] = static_cast<Vorn16s>(70 * i + i % 9);
        add(
            "vornsPitchmarkToF0Cand_16s_Sfs", size.name, len16,
            [=] {
                vornsPitchmarkToF0Cand_16s_Sfs(src16.get(), dst16.get(), len16, -13);
                bench::keep(dst16.get());
            },
            [=] {
                benchmark::DoNotOptimize(plain::markCandidates(src16.get(), dst16.get(), len16, 8192.0f));
                bench::keep(dst16.get());
            });
    }
}

void addCorrelations() {
    const auto result = bench::buffer<float>(4096);
    for (const Size& size : sizes) {
        const int len = size.of(2, 2);
        const auto n = static_cast<std::size_t>(len) + 1;
        const auto a = samples<Vorn16s>(n, 5000), b = samples<Vorn16s>(n, 4000);
        add(
            "vornsCrossCorrCoeff_16s32f", size.name, len,
            [=] {
                vornsCrossCorrCoeff_16s32f(a.get(), b.get(), len, result.get());
                bench::keep(result.get());
            },
            [=] {
                result[0] = plain::correlation(a.get(), b.get(), len);
                bench::keep(result.get());
            });
        add(
            "vornsCrossCorrCoeffPartial_16s32f", size.name, len,
            [=] {
                vornsCrossCorrCoeffPartial_16s32f(a.get(), b.get(), len, result.get(), 1e9f);
                bench::keep(result.get());
            },
            [=] {
                result[0] = plain::correlation(a.get(), b.get(), len, 1e9f);
                bench::keep(result.get());
            });
        add(
            "vornsCrossCorrCoeffInterpolation_16s32f", size.name, len,
            [=] {
                vornsCrossCorrCoeffInterpolation_16s32f(a.get(), b.get(), len, result.get(), result.get() + 1);
                bench::keep(result.get());
            },
            [=] {
                plain::interpolatedCorrelation(a.get(), b.get(), len, result.get(), result.get() + 1);
                bench::keep(result.get());
            });
    }
    const auto a = samples<Vorn16s>(5000, 5000), b = samples<Vorn16s>(5000, 4000);
    struct Lags {
        int maxLen, minLen, dec;
    };
    for (const Lags& l :
         {Lags{50, 40, 1}, {160, 80, 1}, {320, 160, 1}, {320, 160, 4}, {1000, 200, 1}, {5000, 4000, 1}}) {
        add(
            "vornsCrossCorrCoeffDecim_16s32f",
            std::to_string(l.maxLen) + ", " + std::to_string(l.minLen) + ", " + std::to_string(l.dec), l.maxLen,
            [=] {
                vornsCrossCorrCoeffDecim_16s32f(a.get(), b.get(), l.maxLen, l.minLen, result.get(), l.dec);
                bench::keep(result.get());
            },
            [=] {
                plain::decimatedCorrelations(a.get(), b.get(), l.maxLen, l.minLen, result.get(), l.dec);
                bench::keep(result.get());
            });
    }
}

const bench::Family pitch([] {
    addPeriods();
    addPeaks<Vorn32f>("vornsFindPeaks_32f8u", vornsFindPeaks_32f8u, plain::peaks, 1);
    addPeaks<Vorn32s>("vornsFindPeaks_32s8u", vornsFindPeaks_32s8u, plain::peaks, 1e8);
    addMarks();
    addCorrelations();
});

}  // namespace
