// Fourier transforms beside FFTW and kissfft, one thread, out of place.
#include <algorithm>
#include <string>

#ifdef VORNSR_HAVE_FFTW
#include <fftw3.h>
#endif
#ifdef VORNSR_HAVE_KISSFFT
#include <kiss_fftr.h>
#endif

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
    for (int order : {8, 10, 12}) creation(order);
});

}  // namespace
