// Fourier transforms beside FFTW and kissfft, one thread, out of place.
#include <algorithm>
#include <string>

#ifdef VORNSR_HAVE_FFTW
#include <fftw3.h>
#endif
#ifdef VORNSR_HAVE_KISSFFT
#include <kiss_fft.h>
#include <kiss_fftr.h>
#endif

#include "plain/fft.h"
#include "support/bench.h"
#include "vornsr.h"

namespace {

template <class T>
std::shared_ptr<T[]> noise(std::size_t len) {
    auto values = bench::buffer<T>(len);
    for (std::size_t i = 0; i < len; ++i) values[i] = static_cast<T>(std::rand()) / static_cast<T>(RAND_MAX) - T(0.5);
    return values;
}

std::string orderName(int order) { return "order " + std::to_string(order); }

void realForward(int order) {
    const std::size_t n = std::size_t{1} << order;
    const auto items = static_cast<std::int64_t>(n);
    const auto src = noise<float>(n), dst = bench::buffer<float>(n + 2);
    VornsFFTSpec* context = nullptr;
    vornsFFTInitAlloc_R_32f(&context, order, 8, 0);
    int size = 0;
    vornsFFTGetBufSize_R_32f(context, &size);
    const auto buffer = bench::buffer<Vorn8u>(static_cast<std::size_t>(size) + 1);
    bench::add("vornsFFTFwd_RToCCS_32f", orderName(order), bench::ours, items, [=] {
        vornsFFTFwd_RToCCS_32f(src.get(), dst.get(), context, buffer.get());
        bench::keep(dst.get());
    });
#ifdef VORNSR_HAVE_FFTW
    auto* const in = fftwf_alloc_real(n);
    auto* const out = fftwf_alloc_complex(n / 2 + 1);
    fftwf_plan plan = fftwf_plan_dft_r2c_1d(static_cast<int>(n), in, out, FFTW_MEASURE);
    std::copy(src.get(), src.get() + n, in);
    bench::add("vornsFFTFwd_RToCCS_32f", orderName(order), "FFTW", items, [=] {
        fftwf_execute(plan);
        bench::keep(out);
    });
#endif
#ifdef VORNSR_HAVE_KISSFFT
    if (order > 0) {
        kiss_fftr_cfg kiss = kiss_fftr_alloc(static_cast<int>(n), 0, nullptr, nullptr);
        bench::add("vornsFFTFwd_RToCCS_32f", orderName(order), "kissfft", items, [=] {
            kiss_fftr(kiss, src.get(), reinterpret_cast<kiss_fft_cpx*>(dst.get()));
            bench::keep(dst.get());
        });
    }
#endif
}

// Complex transforms in single precision; kissfft has no other.
void complexForward(int order) {
    const std::size_t n = std::size_t{1} << order;
    const auto items = static_cast<std::int64_t>(n);
    const auto values = noise<float>(2 * n), result = bench::buffer<float>(2 * n);
    const auto* src = reinterpret_cast<const Vorn32fc*>(values.get());
    auto* dst = reinterpret_cast<Vorn32fc*>(result.get());
    VornsFFTSpec *pairs = nullptr, *split = nullptr;
    vornsFFTInitAlloc_C_32fc(&pairs, order, 8, 0);
    vornsFFTInitAlloc_C_32f(&split, order, 8, 0);
    int size = 0;
    vornsFFTGetBufSize_C_32fc(pairs, &size);
    const auto buffer = bench::buffer<Vorn8u>(static_cast<std::size_t>(size) + 1);
    bench::add("vornsFFTFwd_CToC_32fc", orderName(order), bench::ours, items, [=] {
        vornsFFTFwd_CToC_32fc(src, dst, pairs, buffer.get());
        bench::keep(result.get());
        bench::keep(values.get());
    });
    bench::add("vornsFFTFwd_CToC_32f", orderName(order), bench::ours, items, [=] {
        vornsFFTFwd_CToC_32f(values.get(), values.get() + n, result.get(), result.get() + n, split, buffer.get());
        bench::keep(result.get());
    });
#ifdef VORNSR_HAVE_FFTW
    auto* const in = fftwf_alloc_complex(n);
    auto* const out = fftwf_alloc_complex(n);
    fftwf_plan plan = fftwf_plan_dft_1d(static_cast<int>(n), in, out, FFTW_FORWARD, FFTW_MEASURE);
    std::copy(values.get(), values.get() + 2 * n, reinterpret_cast<float*>(in));
    for (const char* function : {"vornsFFTFwd_CToC_32fc", "vornsFFTFwd_CToC_32f"}) {
        bench::add(function, orderName(order), "FFTW", items, [=] {
            fftwf_execute(plan);
            bench::keep(out);
        });
    }
#endif
#ifdef VORNSR_HAVE_KISSFFT
    kiss_fft_cfg kiss = kiss_fft_alloc(static_cast<int>(n), 0, nullptr, nullptr);
    bench::add("vornsFFTFwd_CToC_32fc", orderName(order), "kissfft", items, [=] {
        kiss_fft(kiss, reinterpret_cast<const kiss_fft_cpx*>(src), reinterpret_cast<kiss_fft_cpx*>(dst));
        bench::keep(result.get());
    });
#endif
}

void realInverse(int order) {
    const std::size_t n = std::size_t{1} << order;
    const auto items = static_cast<std::int64_t>(n);
    const auto src = noise<float>(n + 2), dst = bench::buffer<float>(n);
    VornsFFTSpec* context = nullptr;
    vornsFFTInitAlloc_R_32f(&context, order, 8, 0);
    int size = 0;
    vornsFFTGetBufSize_R_32f(context, &size);
    const auto buffer = bench::buffer<Vorn8u>(static_cast<std::size_t>(size) + 1);
    bench::add("vornsFFTInv_CCSToR_32f", orderName(order), bench::ours, items, [=] {
        vornsFFTInv_CCSToR_32f(src.get(), dst.get(), context, buffer.get());
        bench::keep(dst.get());
    });
#ifdef VORNSR_HAVE_FFTW
    auto* const in = fftwf_alloc_complex(n / 2 + 1);
    auto* const out = fftwf_alloc_real(n);
    fftwf_plan plan = fftwf_plan_dft_c2r_1d(static_cast<int>(n), in, out, FFTW_MEASURE | FFTW_PRESERVE_INPUT);
    std::copy(src.get(), src.get() + n + 2, reinterpret_cast<float*>(in));
    bench::add("vornsFFTInv_CCSToR_32f", orderName(order), "FFTW", items, [=] {
        fftwf_execute(plan);
        bench::keep(out);
    });
#endif
}

void multiplyPacked(const char* name, std::size_t len) {
    const auto a = noise<float>(len), b = noise<float>(len), dst = bench::buffer<float>(len);
    const auto items = static_cast<std::int64_t>(len);
    const int n = static_cast<int>(len);
    bench::add("vornsMulPack_32f", name, bench::ours, items, [=] {
        vornsMulPack_32f(a.get(), b.get(), dst.get(), n);
        bench::keep(dst.get());
    });
    bench::add("vornsMulPack_32f", name, "plain", items, [=] {
        plain::multiplyPack(a.get(), b.get(), dst.get(), n);
        bench::keep(dst.get());
    });
    const auto x = bench::buffer<Vorn16s>(len), y = bench::buffer<Vorn16s>(len), z = bench::buffer<Vorn16s>(len);
    for (std::size_t i = 0; i < len; ++i)
        x[i] = static_cast<Vorn16s>(std::rand()), y[i] = static_cast<Vorn16s>(std::rand());
    bench::add("vornsMulPack_16s_Sfs", name, bench::ours, items, [=] {
        vornsMulPack_16s_Sfs(x.get(), y.get(), z.get(), n, 15);
        bench::keep(z.get());
    });
    bench::add("vornsMulPack_16s_Sfs", name, "plain", items, [=] {
        plain::multiplyPack(x.get(), y.get(), z.get(), n, 15);
        bench::keep(z.get());
    });
}

void autoCorrelation(int srcLen, int lags) {
    const auto src = noise<float>(static_cast<std::size_t>(srcLen)),
               dst = bench::buffer<float>(static_cast<std::size_t>(lags));
    const std::string size = std::to_string(srcLen) + "x" + std::to_string(lags);
    bench::add("vornsAutoCorr_32f", size, bench::ours, srcLen, [=] {
        vornsAutoCorr_32f(src.get(), srcLen, dst.get(), lags);
        bench::keep(dst.get());
    });
    bench::add("vornsAutoCorr_32f", size, "plain", srcLen, [=] {
        plain::autoCorrelation(src.get(), srcLen, dst.get(), lags);
        bench::keep(dst.get());
    });
}

void creation(int order) {
    bench::add("vornsFFTInitAlloc_R_32f", orderName(order), bench::ours, 1, [=] {
        VornsFFTSpec* context = nullptr;
        vornsFFTInitAlloc_R_32f(&context, order, 8, 0);
        bench::keep(context);
        vornsFFTFree_R_32f(context);
    });
}

const bench::Family family([] {
    for (int order = 4; order <= 22; ++order) realForward(order);
    for (int order = 4; order <= 22; ++order) complexForward(order);
    for (int order = 4; order <= 22; order += 2) realInverse(order);
    multiplyPacked("L1", 1024);
    multiplyPacked("last level", 524288);
    multiplyPacked("memory", 67108864);
    for (int lags : {5, 13, 17, 100, 400, 1000}) autoCorrelation(std::max(400, lags), lags);
    for (int order : {8, 10, 12}) creation(order);
});

}  // namespace
