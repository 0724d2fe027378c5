// Fourier transforms.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

constexpr int flags[] = {1, 2, 4, 8};

// The functions of one form of context.
template <class Spec>
struct Form {
    VornStatus (*getSize)(int, int, int, int*, int*, int*);
    VornStatus (*initAlloc)(Spec**, int, int, int);
    VornStatus (*init)(Spec**, int, int, int, Vorn8u*, Vorn8u*);
    VornStatus (*free)(Spec*);
    VornStatus (*getBufSize)(const Spec*, int*);
};

#define VORN_FORM(form)                                                                             \
    {                                                                                               \
        vornsFFTGetSize_##form, vornsFFTInitAlloc_##form, vornsFFTInit_##form, vornsFFTFree_##form, \
            vornsFFTGetBufSize_##form                                                               \
    }
constexpr Form<VornsFFTSpec> real32f = VORN_FORM(R_32f);
constexpr Form<VornsFFTFixedSpec> real16s32s = VORN_FORM(R_16s32s);
#undef VORN_FORM

template <const auto& form>
void getSize(Source&, Digest& digest) {
    for (int order = -1; order <= 31; ++order) {
        int sizes[3] = {};
        digest.add(form.getSize(order, 8, 0, &sizes[0], &sizes[1], &sizes[2]));
        for (int size : sizes) digest.add(size);
    }
}

template <class Spec>
Spec* make(const Form<Spec>& form, int order, int flag) {
    Spec* context = nullptr;
    form.initAlloc(&context, order, flag, 0);
    return context;
}

template <const auto& form>
void initAlloc(Source&, Digest& digest) {
    for (int order : {-1, 0, 3, 4, 9, 31}) {
        for (int flag : {0, 1, 8}) {
            auto* context = make(form, 0, 8);
            form.free(context);
            digest.add(form.initAlloc(&context, order, flag, 0));
            if (order >= 0 && order <= 30 && flag != 0) digest.add(form.free(context));
        }
    }
}

template <const auto& form>
void init(Source&, Digest& digest) {
    for (int order : {0, 4, 9}) {
        int sizes[3];
        form.getSize(order, 1, 0, &sizes[0], &sizes[1], &sizes[2]);
        std::vector<Vorn8u> spec(static_cast<std::size_t>(sizes[0])), buffer(static_cast<std::size_t>(sizes[1]) + 1);
        auto* context = make(form, 0, 8);
        form.free(context);
        digest.add(form.init(&context, order, 1, 0, spec.data(), buffer.data()));
        digest.add(form.free(context));
        digest.add(form.free(context));
    }
}

template <const auto& form>
void release(Source&, Digest& digest) {
    for (int order : {0, 6}) digest.add(form.free(make(form, order, 2)));
    digest.add(form.free(nullptr));
}

template <const auto& form>
void getBufSize(Source&, Digest& digest) {
    for (int order = 0; order <= 12; ++order) {
        auto* context = make(form, order, 4);
        int size = 0;
        digest.add(form.getBufSize(context, &size));
        digest.add(size);
        form.free(context);
    }
}

// Every short order with every flag, and one long order.
template <class Run>
void overOrders(Run run) {
    for (int order = 0; order <= 12; ++order) {
        for (int flag : flags) run(order, flag);
    }
    run(18, 8);
}

std::size_t length(int order) { return std::size_t{1} << order; }

template <const auto& form, auto transform, class T>
void toSpectrum(Source& source, Digest& digest) {
    overOrders([&](int order, int flag) {
        auto* context = make(form, order, flag);
        for (const std::vector<T>& src : {source.values<T>(length(order)), source.patterns<T>(length(order))}) {
            std::vector<T> dst(length(order) + 2);
            digest.add(transform(src.data(), dst.data(), context, nullptr));
            digest.add(dst);
        }
        form.free(context);
    });
}

template <const auto& form, auto transform, class T>
void inPlace(Source& source, Digest& digest) {
    overOrders([&](int order, int flag) {
        auto* context = make(form, order, flag);
        std::vector<T> data = source.values<T>(length(order) + 2);
        digest.add(transform(data.data(), context, nullptr));
        digest.add(data);
        form.free(context);
    });
}

template <const auto& form, auto transform, class Input, class Output>
void fixedPoint(Source& source, Digest& digest) {
    for (int order = 0; order <= 10; ++order) {
        auto* context = make(form, order, flags[order % 4]);
        for (int scale : {0, 1, 7, 40, -3, -20}) {
            const std::vector<Input> src = source.values<Input>(length(order) + 2);
            std::vector<Output> dst(length(order) + 2);
            digest.add(transform(src.data(), dst.data(), context, scale, nullptr));
            digest.add(dst);
        }
        form.free(context);
    }
}

#define VORN_CONTEXT_WORKLOADS(form, name)                                                  \
    {"vornsFFTGetSize_" name, getSize<form>}, {"vornsFFTInitAlloc_" name, initAlloc<form>}, \
        {"vornsFFTInit_" name, init<form>}, {"vornsFFTFree_" name, release<form>}, {        \
        "vornsFFTGetBufSize_" name, getBufSize<form>                                        \
    }

const Workload workloads[] = {
    VORN_CONTEXT_WORKLOADS(real32f, "R_32f"),
    VORN_CONTEXT_WORKLOADS(real16s32s, "R_16s32s"),
    {"vornsFFTFwd_RToCCS_32f", toSpectrum<real32f, vornsFFTFwd_RToCCS_32f, Vorn32f>},
    {"vornsFFTFwd_RToCCS_32f_I", inPlace<real32f, vornsFFTFwd_RToCCS_32f_I, Vorn32f>},
    {"vornsFFTFwd_RToCCS_16s32s_Sfs", fixedPoint<real16s32s, vornsFFTFwd_RToCCS_16s32s_Sfs, Vorn16s, Vorn32s>},
};

#undef VORN_CONTEXT_WORKLOADS

}  // namespace

Family fftWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
