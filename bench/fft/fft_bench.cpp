// Fourier transforms beside FFTW and kissfft, one thread.
#include <functional>
#include <optional>
#include <string>

#if defined(VORNSR_HAVE_FFTW) || defined(VORNSR_HAVE_FFTW64)
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

constexpr int maxOrder = 22;
using Context = const VornsFFTSpec*;

// All transforms of one precision share their data, on 64-byte addresses: zeros, since no time depends on the values,
// and zeros stay what they are in place.
template <class T>
struct Data {
    std::shared_ptr<T[]> src = bench::buffer<T>(2 * (std::size_t{1} << maxOrder) + 2);
    std::shared_ptr<T[]> dst = bench::buffer<T>(2 * (std::size_t{1} << maxOrder) + 2);
};
template <class T>
const Data<T>& data() {
    static const Data<T> all;
    return all;
}

enum class Form { Forward, Inverse, InPlace, Split, Real, RealBack };

template <class T>
struct Transform {
    Form form;
    const char* function;
    VornStatus (*create)(VornsFFTSpec**, int, int, int);
    VornStatus (*bufferSize)(Context, int*);
    void (*call)(T* src, T* dst, std::size_t length, Context context, Vorn8u* buffer);
};

template <class Pair, class T, VornStatus (*function)(const Pair*, Pair*, Context, Vorn8u*)>
void ofPairs(T* src, T* dst, std::size_t, Context context, Vorn8u* buffer) {
    function(reinterpret_cast<const Pair*>(src), reinterpret_cast<Pair*>(dst), context, buffer);
}
template <class Pair, class T, VornStatus (*function)(Pair*, Context, Vorn8u*)>
void inPlace(T* src, T*, std::size_t, Context context, Vorn8u* buffer) {
    function(reinterpret_cast<Pair*>(src), context, buffer);
}
template <class T, VornStatus (*function)(const T*, const T*, T*, T*, Context, Vorn8u*)>
void ofArrays(T* src, T* dst, std::size_t length, Context context, Vorn8u* buffer) {
    function(src, src + length, dst, dst + length, context, buffer);
}
template <class T, VornStatus (*function)(const T*, T*, Context, Vorn8u*)>
void ofReals(T* src, T* dst, std::size_t, Context context, Vorn8u* buffer) {
    function(src, dst, context, buffer);
}

const Transform<float> singles[] = {
    {Form::Forward, "vornsFFTFwd_CToC_32fc", vornsFFTInitAlloc_C_32fc, vornsFFTGetBufSize_C_32fc,
     ofPairs<Vorn32fc, float, vornsFFTFwd_CToC_32fc>},
    {Form::Inverse, "vornsFFTInv_CToC_32fc", vornsFFTInitAlloc_C_32fc, vornsFFTGetBufSize_C_32fc,
     ofPairs<Vorn32fc, float, vornsFFTInv_CToC_32fc>},
    {Form::InPlace, "vornsFFTFwd_CToC_32fc_I", vornsFFTInitAlloc_C_32fc, vornsFFTGetBufSize_C_32fc,
     inPlace<Vorn32fc, float, vornsFFTFwd_CToC_32fc_I>},
    {Form::Split, "vornsFFTFwd_CToC_32f", vornsFFTInitAlloc_C_32f, vornsFFTGetBufSize_C_32f,
     ofArrays<float, vornsFFTFwd_CToC_32f>},
    {Form::Real, "vornsFFTFwd_RToCCS_32f", vornsFFTInitAlloc_R_32f, vornsFFTGetBufSize_R_32f,
     ofReals<float, vornsFFTFwd_RToCCS_32f>},
    {Form::RealBack, "vornsFFTInv_CCSToR_32f", vornsFFTInitAlloc_R_32f, vornsFFTGetBufSize_R_32f,
     ofReals<float, vornsFFTInv_CCSToR_32f>},
};
const Transform<double> doubles[] = {
    {Form::Forward, "vornsFFTFwd_CToC_64fc", vornsFFTInitAlloc_C_64fc, vornsFFTGetBufSize_C_64fc,
     ofPairs<Vorn64fc, double, vornsFFTFwd_CToC_64fc>},
    {Form::Inverse, "vornsFFTInv_CToC_64fc", vornsFFTInitAlloc_C_64fc, vornsFFTGetBufSize_C_64fc,
     ofPairs<Vorn64fc, double, vornsFFTInv_CToC_64fc>},
    {Form::InPlace, "vornsFFTFwd_CToC_64fc_I", vornsFFTInitAlloc_C_64fc, vornsFFTGetBufSize_C_64fc,
     inPlace<Vorn64fc, double, vornsFFTFwd_CToC_64fc_I>},
    {Form::Split, "vornsFFTFwd_CToC_64f", vornsFFTInitAlloc_C_64f, vornsFFTGetBufSize_C_64f,
     ofArrays<double, vornsFFTFwd_CToC_64f>},
    {Form::Real, "vornsFFTFwd_RToCCS_64f", vornsFFTInitAlloc_R_64f, vornsFFTGetBufSize_R_64f,
     ofReals<double, vornsFFTFwd_RToCCS_64f>},
    {Form::RealBack, "vornsFFTInv_CCSToR_64f", vornsFFTInitAlloc_R_64f, vornsFFTGetBufSize_R_64f,
     ofReals<double, vornsFFTInv_CCSToR_64f>},
};

// make() before the first timed call, then call() with what it gave: no plan and no context is made for a benchmark
// that is not run.
template <class Make, class Call>
std::function<void()> prepared(Make make, Call call) {
    auto state = std::make_shared<std::optional<decltype(make())>>();
    return [=] {
        if (!state->has_value()) state->emplace(make());
        call(**state);
    };
}

#ifdef VORNSR_HAVE_FFTW
fftwf_plan planOf(Form form, int n, float* src, float* dst) {
    auto *from = reinterpret_cast<fftwf_complex*>(src), *to = reinterpret_cast<fftwf_complex*>(dst);
    const fftwf_iodim whole = {n, 1, 1};
    if (form == Form::Forward) return fftwf_plan_dft_1d(n, from, to, FFTW_FORWARD, FFTW_MEASURE);
    if (form == Form::Inverse) return fftwf_plan_dft_1d(n, from, to, FFTW_BACKWARD, FFTW_MEASURE);
    if (form == Form::InPlace) return fftwf_plan_dft_1d(n, from, from, FFTW_FORWARD, FFTW_MEASURE);
    if (form == Form::Real) return fftwf_plan_dft_r2c_1d(n, src, to, FFTW_MEASURE);
    if (form == Form::RealBack) return fftwf_plan_dft_c2r_1d(n, from, dst, FFTW_MEASURE | FFTW_PRESERVE_INPUT);
    return fftwf_plan_guru_split_dft(1, &whole, 0, nullptr, src, src + n, dst, dst + n, FFTW_MEASURE);
}
void execute(fftwf_plan plan) { fftwf_execute(plan); }
#endif
#ifdef VORNSR_HAVE_FFTW64
fftw_plan planOf(Form form, int n, double* src, double* dst) {
    auto *from = reinterpret_cast<fftw_complex*>(src), *to = reinterpret_cast<fftw_complex*>(dst);
    const fftw_iodim whole = {n, 1, 1};
    if (form == Form::Forward) return fftw_plan_dft_1d(n, from, to, FFTW_FORWARD, FFTW_MEASURE);
    if (form == Form::Inverse) return fftw_plan_dft_1d(n, from, to, FFTW_BACKWARD, FFTW_MEASURE);
    if (form == Form::InPlace) return fftw_plan_dft_1d(n, from, from, FFTW_FORWARD, FFTW_MEASURE);
    if (form == Form::Real) return fftw_plan_dft_r2c_1d(n, src, to, FFTW_MEASURE);
    if (form == Form::RealBack) return fftw_plan_dft_c2r_1d(n, from, dst, FFTW_MEASURE | FFTW_PRESERVE_INPUT);
    return fftw_plan_guru_split_dft(1, &whole, 0, nullptr, src, src + n, dst, dst + n, FFTW_MEASURE);
}
void execute(fftw_plan plan) { fftw_execute(plan); }
#endif

template <class T>
void transform(const Transform<T>& t, int order) {
    const std::size_t length = std::size_t{1} << order;
    const auto items = static_cast<std::int64_t>(length);
    struct Ready {
        VornsFFTSpec* context;
        std::shared_ptr<Vorn8u[]> buffer;
    };
    const auto make = [=] {
        Ready ready{};
        int size = 0;
        t.create(&ready.context, order, 8, 0);
        t.bufferSize(ready.context, &size);
        ready.buffer = bench::buffer<Vorn8u>(static_cast<std::size_t>(size) + 1);
        return ready;
    };
    bench::add(t.function, orderName(order), bench::ours, items, prepared(make, [=](const Ready& ready) {
                   t.call(data<T>().src.get(), data<T>().dst.get(), length, ready.context, ready.buffer.get());
                   bench::keep(data<T>().dst.get());
               }));
    if constexpr (requires(T * p) { planOf(t.form, order, p, p); }) {
        const auto plan = [=] {
            return planOf(t.form, static_cast<int>(length), data<T>().src.get(), data<T>().dst.get());
        };
        bench::add(t.function, orderName(order), "FFTW", items, prepared(plan, [](auto ready) {
                       execute(ready);
                       bench::keep(data<T>().dst.get());
                   }));
    }
}

// kissfft has single precision here, from one array to another.
#ifdef VORNSR_HAVE_KISSFFT
void kissfft(const Transform<float>& t, int order) {
    const int n = 1 << order;
    if (t.form == Form::Forward) {
        const auto make = [=] { return kiss_fft_alloc(n, 0, nullptr, nullptr); };
        bench::add(t.function, orderName(order), "kissfft", n, prepared(make, [](kiss_fft_cfg kiss) {
                       kiss_fft(kiss, reinterpret_cast<kiss_fft_cpx*>(data<float>().src.get()),
                                reinterpret_cast<kiss_fft_cpx*>(data<float>().dst.get()));
                       bench::keep(data<float>().dst.get());
                   }));
    }
    if (t.form == Form::Real) {
        const auto make = [=] { return kiss_fftr_alloc(n, 0, nullptr, nullptr); };
        bench::add(t.function, orderName(order), "kissfft", n, prepared(make, [](kiss_fftr_cfg kiss) {
                       kiss_fftr(kiss, data<float>().src.get(),
                                 reinterpret_cast<kiss_fft_cpx*>(data<float>().dst.get()));
                       bench::keep(data<float>().dst.get());
                   }));
    }
}
#endif

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

void creation(int order) {
    bench::add("vornsFFTInitAlloc_R_32f", orderName(order), bench::ours, 1, [=] {
        VornsFFTSpec* context = nullptr;
        vornsFFTInitAlloc_R_32f(&context, order, 8, 0);
        bench::keep(context);
        vornsFFTFree_R_32f(context);
    });
}

const bench::Family family([] {
    // Planning FFTW takes longer than measuring it: every other one of the long orders, and every fourth of the forms
    // that differ little from the forward ones.
    const auto wanted = [](Form form, int order) {
        return form == Form::Forward || form == Form::Real || (order % 4 == 2 && order <= 18);
    };
    for (int order = 4; order <= maxOrder; order += order < 14 ? 1 : 2) {
        for (const auto& t : singles) {
            if (wanted(t.form, order)) transform(t, order);
#ifdef VORNSR_HAVE_KISSFFT
            kissfft(t, order);
#endif
        }
        for (const auto& t : doubles) {
            if (wanted(t.form, order)) transform(t, order);
        }
    }
    multiplyPacked("L1", 1024);
    multiplyPacked("last level", 524288);
    multiplyPacked("memory", 67108864);
    for (int order : {8, 10, 12}) creation(order);
});

}  // namespace
