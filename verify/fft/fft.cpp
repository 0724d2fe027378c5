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
constexpr Form<VornsFFTSpec> complex32fc = VORN_FORM(C_32fc);
constexpr Form<VornsFFTSpec> complex32f = VORN_FORM(C_32f);
constexpr Form<VornsFFTSpec> real32f = VORN_FORM(R_32f);
constexpr Form<VornsFFTSpec> complex64fc = VORN_FORM(C_64fc);
constexpr Form<VornsFFTSpec> complex64f = VORN_FORM(C_64f);
constexpr Form<VornsFFTSpec> real64f = VORN_FORM(R_64f);
constexpr Form<VornsFFTFixedSpec> complex32sc = VORN_FORM(C_32sc);
constexpr Form<VornsFFTFixedSpec> complex32s = VORN_FORM(C_32s);
constexpr Form<VornsFFTFixedSpec> real32s = VORN_FORM(R_32s);
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
void outOfPlace(Source& source, Digest& digest) {
    overOrders([&](int order, int flag) {
        auto* context = make(form, order, flag);
        for (const std::vector<T>& src : {source.values<T>(length(order) + 2), source.patterns<T>(length(order) + 2)}) {
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

template <const auto& form, auto transform, class T>
void split(Source& source, Digest& digest) {
    overOrders([&](int order, int flag) {
        auto* context = make(form, order, flag);
        const std::vector<T> re = source.values<T>(length(order)), im = source.patterns<T>(length(order));
        for (const std::vector<T>* second : {&re, &im}) {
            std::vector<T> dstRe(length(order)), dstIm(length(order));
            digest.add(transform(re.data(), second->data(), dstRe.data(), dstIm.data(), context, nullptr));
            digest.add(dstRe);
            digest.add(dstIm);
        }
        form.free(context);
    });
}

template <const auto& form, auto transform, class T>
void splitInPlace(Source& source, Digest& digest) {
    overOrders([&](int order, int flag) {
        auto* context = make(form, order, flag);
        std::vector<T> re = source.values<T>(length(order)), im = source.values<T>(length(order));
        digest.add(transform(re.data(), im.data(), context, nullptr));
        digest.add(re);
        digest.add(im);
        form.free(context);
    });
}

// Every short order with some scale factors.
template <const auto& form, class Run>
void overScales(Run run) {
    for (int order = 0; order <= 10; ++order) {
        auto* context = make(form, order, flags[order % 4]);
        for (int scale : {0, 1, 7, 40, -3, -20}) run(context, order, scale);
        form.free(context);
    }
}

template <class T>
void addAll(Digest& digest, const std::vector<T>& values) {
    digest.bytes(values.data(), values.size() * sizeof(T));
}

template <const auto& form, auto transform, class Input, class Output>
void fixedPoint(Source& source, Digest& digest) {
    overScales<form>([&](auto* context, int order, int scale) {
        const std::vector<Input> src = source.values<Input>(length(order) + 2);
        std::vector<Output> dst(length(order) + 2);
        digest.add(transform(src.data(), dst.data(), context, scale, nullptr));
        addAll(digest, dst);
    });
}

template <const auto& form, auto transform, class T>
void fixedInPlace(Source& source, Digest& digest) {
    overScales<form>([&](auto* context, int order, int scale) {
        std::vector<T> data = source.values<T>(length(order) + 2);
        digest.add(transform(data.data(), context, scale, nullptr));
        addAll(digest, data);
    });
}

template <const auto& form, auto transform>
void fixedSplit(Source& source, Digest& digest) {
    overScales<form>([&](auto* context, int order, int scale) {
        const auto re = source.values<Vorn32s>(length(order)), im = source.values<Vorn32s>(length(order));
        std::vector<Vorn32s> dstRe(length(order)), dstIm(length(order));
        digest.add(transform(re.data(), im.data(), dstRe.data(), dstIm.data(), context, scale, nullptr));
        addAll(digest, dstRe);
        addAll(digest, dstIm);
    });
}

template <const auto& form, auto transform>
void fixedSplitInPlace(Source& source, Digest& digest) {
    overScales<form>([&](auto* context, int order, int scale) {
        auto re = source.values<Vorn32s>(length(order)), im = source.values<Vorn32s>(length(order));
        digest.add(transform(re.data(), im.data(), context, scale, nullptr));
        addAll(digest, re);
        addAll(digest, im);
    });
}

template <auto multiply, class T>
void product(Source& source, Digest& digest) {
    for (int len : lengths) {
        const auto n = static_cast<std::size_t>(len);
        const auto a = source.values<T>(n), b = source.values<T>(n), hard = source.patterns<T>(n);
        for (const std::vector<T>* second : {&b, &hard}) {
            std::vector<T> dst(n);
            digest.add(multiply(a.data(), second->data(), dst.data(), len));
            digest.add(dst);
        }
    }
}

template <auto multiply, class T>
void productInPlace(Source& source, Digest& digest) {
    for (int len : lengths) {
        const auto n = static_cast<std::size_t>(len);
        const auto a = source.values<T>(n);
        auto b = source.patterns<T>(n);
        digest.add(multiply(a.data(), b.data(), len));
        digest.add(b);
    }
}

template <auto multiply, bool inPlace>
void fixedProduct(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (int scale : {0, 3, 16, 40, -2, -20}) {
            const auto n = static_cast<std::size_t>(len);
            const auto a = source.values<Vorn16s>(n);
            auto b = source.values<Vorn16s>(n);
            if constexpr (inPlace) {
                digest.add(multiply(a.data(), b.data(), len, scale));
            } else {
                digest.add(multiply(a.data(), b.data(), b.data(), len, scale));
            }
            digest.add(b);
        }
    }
}

template <auto expand, class Pair, class T>
void expansion(Source& source, Digest& digest) {
    for (int len : lengths) {
        const auto src = source.values<T>(static_cast<std::size_t>(len) + 2);
        std::vector<Pair> dst(static_cast<std::size_t>(len));
        digest.add(expand(src.data(), dst.data(), len));
        addAll(digest, dst);
    }
}

template <auto expand, class Pair>
void expansionInPlace(Source& source, Digest& digest) {
    for (int len : lengths) {
        auto data = source.values<Pair>(static_cast<std::size_t>(len));
        digest.add(expand(data.data(), len));
        addAll(digest, data);
    }
}

#define VORN_CONTEXT_WORKLOADS(form, name)                                                  \
    {"vornsFFTGetSize_" name, getSize<form>}, {"vornsFFTInitAlloc_" name, initAlloc<form>}, \
        {"vornsFFTInit_" name, init<form>}, {"vornsFFTFree_" name, release<form>}, {        \
        "vornsFFTGetBufSize_" name, getBufSize<form>                                        \
    }

const Workload workloads[] = {
    VORN_CONTEXT_WORKLOADS(complex32fc, "C_32fc"),
    VORN_CONTEXT_WORKLOADS(complex32f, "C_32f"),
    VORN_CONTEXT_WORKLOADS(real32f, "R_32f"),
    VORN_CONTEXT_WORKLOADS(complex64fc, "C_64fc"),
    VORN_CONTEXT_WORKLOADS(complex64f, "C_64f"),
    VORN_CONTEXT_WORKLOADS(real64f, "R_64f"),
    VORN_CONTEXT_WORKLOADS(complex32sc, "C_32sc"),
    VORN_CONTEXT_WORKLOADS(complex32s, "C_32s"),
    VORN_CONTEXT_WORKLOADS(real32s, "R_32s"),
    VORN_CONTEXT_WORKLOADS(real16s32s, "R_16s32s"),
    {"vornsFFTFwd_CToC_32fc", outOfPlace<complex32fc, vornsFFTFwd_CToC_32fc, Vorn32fc>},
    {"vornsFFTFwd_CToC_32fc_I", inPlace<complex32fc, vornsFFTFwd_CToC_32fc_I, Vorn32fc>},
    {"vornsFFTFwd_CToC_64fc", outOfPlace<complex64fc, vornsFFTFwd_CToC_64fc, Vorn64fc>},
    {"vornsFFTFwd_CToC_64fc_I", inPlace<complex64fc, vornsFFTFwd_CToC_64fc_I, Vorn64fc>},
    {"vornsFFTFwd_CToC_32f", split<complex32f, vornsFFTFwd_CToC_32f, Vorn32f>},
    {"vornsFFTFwd_CToC_32f_I", splitInPlace<complex32f, vornsFFTFwd_CToC_32f_I, Vorn32f>},
    {"vornsFFTFwd_CToC_64f", split<complex64f, vornsFFTFwd_CToC_64f, Vorn64f>},
    {"vornsFFTFwd_CToC_64f_I", splitInPlace<complex64f, vornsFFTFwd_CToC_64f_I, Vorn64f>},
    {"vornsFFTFwd_CToC_32sc_Sfs", fixedPoint<complex32sc, vornsFFTFwd_CToC_32sc_Sfs, Vorn32sc, Vorn32sc>},
    {"vornsFFTFwd_CToC_32sc_ISfs", fixedInPlace<complex32sc, vornsFFTFwd_CToC_32sc_ISfs, Vorn32sc>},
    {"vornsFFTFwd_CToC_32s_Sfs", fixedSplit<complex32s, vornsFFTFwd_CToC_32s_Sfs>},
    {"vornsFFTFwd_CToC_32s_ISfs", fixedSplitInPlace<complex32s, vornsFFTFwd_CToC_32s_ISfs>},
    {"vornsFFTInv_CToC_32fc", outOfPlace<complex32fc, vornsFFTInv_CToC_32fc, Vorn32fc>},
    {"vornsFFTInv_CToC_32fc_I", inPlace<complex32fc, vornsFFTInv_CToC_32fc_I, Vorn32fc>},
    {"vornsFFTInv_CToC_64fc", outOfPlace<complex64fc, vornsFFTInv_CToC_64fc, Vorn64fc>},
    {"vornsFFTInv_CToC_64fc_I", inPlace<complex64fc, vornsFFTInv_CToC_64fc_I, Vorn64fc>},
    {"vornsFFTInv_CToC_32f", split<complex32f, vornsFFTInv_CToC_32f, Vorn32f>},
    {"vornsFFTInv_CToC_32f_I", splitInPlace<complex32f, vornsFFTInv_CToC_32f_I, Vorn32f>},
    {"vornsFFTInv_CToC_64f", split<complex64f, vornsFFTInv_CToC_64f, Vorn64f>},
    {"vornsFFTInv_CToC_64f_I", splitInPlace<complex64f, vornsFFTInv_CToC_64f_I, Vorn64f>},
    {"vornsFFTInv_CToC_32sc_Sfs", fixedPoint<complex32sc, vornsFFTInv_CToC_32sc_Sfs, Vorn32sc, Vorn32sc>},
    {"vornsFFTInv_CToC_32sc_ISfs", fixedInPlace<complex32sc, vornsFFTInv_CToC_32sc_ISfs, Vorn32sc>},
    {"vornsFFTInv_CToC_32s_Sfs", fixedSplit<complex32s, vornsFFTInv_CToC_32s_Sfs>},
    {"vornsFFTInv_CToC_32s_ISfs", fixedSplitInPlace<complex32s, vornsFFTInv_CToC_32s_ISfs>},
    {"vornsFFTFwd_RToPerm_32f", outOfPlace<real32f, vornsFFTFwd_RToPerm_32f, Vorn32f>},
    {"vornsFFTFwd_RToPerm_32f_I", inPlace<real32f, vornsFFTFwd_RToPerm_32f_I, Vorn32f>},
    {"vornsFFTFwd_RToPerm_64f", outOfPlace<real64f, vornsFFTFwd_RToPerm_64f, Vorn64f>},
    {"vornsFFTFwd_RToPerm_64f_I", inPlace<real64f, vornsFFTFwd_RToPerm_64f_I, Vorn64f>},
    {"vornsFFTFwd_RToPerm_32s_Sfs", fixedPoint<real32s, vornsFFTFwd_RToPerm_32s_Sfs, Vorn32s, Vorn32s>},
    {"vornsFFTFwd_RToPerm_32s_ISfs", fixedInPlace<real32s, vornsFFTFwd_RToPerm_32s_ISfs, Vorn32s>},
    {"vornsFFTInv_PermToR_32f", outOfPlace<real32f, vornsFFTInv_PermToR_32f, Vorn32f>},
    {"vornsFFTInv_PermToR_32f_I", inPlace<real32f, vornsFFTInv_PermToR_32f_I, Vorn32f>},
    {"vornsFFTInv_PermToR_64f", outOfPlace<real64f, vornsFFTInv_PermToR_64f, Vorn64f>},
    {"vornsFFTInv_PermToR_64f_I", inPlace<real64f, vornsFFTInv_PermToR_64f_I, Vorn64f>},
    {"vornsFFTInv_PermToR_32s_Sfs", fixedPoint<real32s, vornsFFTInv_PermToR_32s_Sfs, Vorn32s, Vorn32s>},
    {"vornsFFTInv_PermToR_32s_ISfs", fixedInPlace<real32s, vornsFFTInv_PermToR_32s_ISfs, Vorn32s>},
    {"vornsFFTFwd_RToPack_32f", outOfPlace<real32f, vornsFFTFwd_RToPack_32f, Vorn32f>},
    {"vornsFFTFwd_RToPack_32f_I", inPlace<real32f, vornsFFTFwd_RToPack_32f_I, Vorn32f>},
    {"vornsFFTFwd_RToPack_64f", outOfPlace<real64f, vornsFFTFwd_RToPack_64f, Vorn64f>},
    {"vornsFFTFwd_RToPack_64f_I", inPlace<real64f, vornsFFTFwd_RToPack_64f_I, Vorn64f>},
    {"vornsFFTFwd_RToPack_32s_Sfs", fixedPoint<real32s, vornsFFTFwd_RToPack_32s_Sfs, Vorn32s, Vorn32s>},
    {"vornsFFTFwd_RToPack_32s_ISfs", fixedInPlace<real32s, vornsFFTFwd_RToPack_32s_ISfs, Vorn32s>},
    {"vornsFFTInv_PackToR_32f", outOfPlace<real32f, vornsFFTInv_PackToR_32f, Vorn32f>},
    {"vornsFFTInv_PackToR_32f_I", inPlace<real32f, vornsFFTInv_PackToR_32f_I, Vorn32f>},
    {"vornsFFTInv_PackToR_64f", outOfPlace<real64f, vornsFFTInv_PackToR_64f, Vorn64f>},
    {"vornsFFTInv_PackToR_64f_I", inPlace<real64f, vornsFFTInv_PackToR_64f_I, Vorn64f>},
    {"vornsFFTInv_PackToR_32s_Sfs", fixedPoint<real32s, vornsFFTInv_PackToR_32s_Sfs, Vorn32s, Vorn32s>},
    {"vornsFFTInv_PackToR_32s_ISfs", fixedInPlace<real32s, vornsFFTInv_PackToR_32s_ISfs, Vorn32s>},
    {"vornsFFTFwd_RToCCS_32f", outOfPlace<real32f, vornsFFTFwd_RToCCS_32f, Vorn32f>},
    {"vornsFFTFwd_RToCCS_32f_I", inPlace<real32f, vornsFFTFwd_RToCCS_32f_I, Vorn32f>},
    {"vornsFFTFwd_RToCCS_64f", outOfPlace<real64f, vornsFFTFwd_RToCCS_64f, Vorn64f>},
    {"vornsFFTFwd_RToCCS_64f_I", inPlace<real64f, vornsFFTFwd_RToCCS_64f_I, Vorn64f>},
    {"vornsFFTFwd_RToCCS_32s_Sfs", fixedPoint<real32s, vornsFFTFwd_RToCCS_32s_Sfs, Vorn32s, Vorn32s>},
    {"vornsFFTFwd_RToCCS_32s_ISfs", fixedInPlace<real32s, vornsFFTFwd_RToCCS_32s_ISfs, Vorn32s>},
    {"vornsFFTInv_CCSToR_32f", outOfPlace<real32f, vornsFFTInv_CCSToR_32f, Vorn32f>},
    {"vornsFFTInv_CCSToR_32f_I", inPlace<real32f, vornsFFTInv_CCSToR_32f_I, Vorn32f>},
    {"vornsFFTInv_CCSToR_64f", outOfPlace<real64f, vornsFFTInv_CCSToR_64f, Vorn64f>},
    {"vornsFFTInv_CCSToR_64f_I", inPlace<real64f, vornsFFTInv_CCSToR_64f_I, Vorn64f>},
    {"vornsFFTInv_CCSToR_32s_Sfs", fixedPoint<real32s, vornsFFTInv_CCSToR_32s_Sfs, Vorn32s, Vorn32s>},
    {"vornsFFTInv_CCSToR_32s_ISfs", fixedInPlace<real32s, vornsFFTInv_CCSToR_32s_ISfs, Vorn32s>},
    {"vornsFFTFwd_RToCCS_16s32s_Sfs", fixedPoint<real16s32s, vornsFFTFwd_RToCCS_16s32s_Sfs, Vorn16s, Vorn32s>},
    {"vornsFFTInv_CCSToR_32s16s_Sfs", fixedPoint<real16s32s, vornsFFTInv_CCSToR_32s16s_Sfs, Vorn32s, Vorn16s>},
    {"vornsMulPack_32f", product<vornsMulPack_32f, Vorn32f>},
    {"vornsMulPack_32f_I", productInPlace<vornsMulPack_32f_I, Vorn32f>},
    {"vornsMulPack_64f", product<vornsMulPack_64f, Vorn64f>},
    {"vornsMulPack_64f_I", productInPlace<vornsMulPack_64f_I, Vorn64f>},
    {"vornsMulPack_16s_Sfs", fixedProduct<vornsMulPack_16s_Sfs, false>},
    {"vornsMulPack_16s_ISfs", fixedProduct<vornsMulPack_16s_ISfs, true>},
    {"vornsMulPerm_32f", product<vornsMulPerm_32f, Vorn32f>},
    {"vornsMulPerm_32f_I", productInPlace<vornsMulPerm_32f_I, Vorn32f>},
    {"vornsMulPerm_64f", product<vornsMulPerm_64f, Vorn64f>},
    {"vornsMulPerm_64f_I", productInPlace<vornsMulPerm_64f_I, Vorn64f>},
    {"vornsMulPerm_16s_Sfs", fixedProduct<vornsMulPerm_16s_Sfs, false>},
    {"vornsMulPerm_16s_ISfs", fixedProduct<vornsMulPerm_16s_ISfs, true>},
    {"vornsMulPackConj_32f_I", productInPlace<vornsMulPackConj_32f_I, Vorn32f>},
    {"vornsMulPackConj_64f_I", productInPlace<vornsMulPackConj_64f_I, Vorn64f>},
    {"vornsConjPack_32fc", expansion<vornsConjPack_32fc, Vorn32fc, Vorn32f>},
    {"vornsConjPack_32fc_I", expansionInPlace<vornsConjPack_32fc_I, Vorn32fc>},
    {"vornsConjPack_64fc", expansion<vornsConjPack_64fc, Vorn64fc, Vorn64f>},
    {"vornsConjPack_64fc_I", expansionInPlace<vornsConjPack_64fc_I, Vorn64fc>},
    {"vornsConjPack_16sc", expansion<vornsConjPack_16sc, Vorn16sc, Vorn16s>},
    {"vornsConjPack_16sc_I", expansionInPlace<vornsConjPack_16sc_I, Vorn16sc>},
    {"vornsConjPerm_32fc", expansion<vornsConjPerm_32fc, Vorn32fc, Vorn32f>},
    {"vornsConjPerm_32fc_I", expansionInPlace<vornsConjPerm_32fc_I, Vorn32fc>},
    {"vornsConjPerm_64fc", expansion<vornsConjPerm_64fc, Vorn64fc, Vorn64f>},
    {"vornsConjPerm_64fc_I", expansionInPlace<vornsConjPerm_64fc_I, Vorn64fc>},
    {"vornsConjPerm_16sc", expansion<vornsConjPerm_16sc, Vorn16sc, Vorn16s>},
    {"vornsConjPerm_16sc_I", expansionInPlace<vornsConjPerm_16sc_I, Vorn16sc>},
    {"vornsConjCcs_32fc", expansion<vornsConjCcs_32fc, Vorn32fc, Vorn32f>},
    {"vornsConjCcs_32fc_I", expansionInPlace<vornsConjCcs_32fc_I, Vorn32fc>},
    {"vornsConjCcs_64fc", expansion<vornsConjCcs_64fc, Vorn64fc, Vorn64f>},
    {"vornsConjCcs_64fc_I", expansionInPlace<vornsConjCcs_64fc_I, Vorn64fc>},
    {"vornsConjCcs_16sc", expansion<vornsConjCcs_16sc, Vorn16sc, Vorn16s>},
    {"vornsConjCcs_16sc_I", expansionInPlace<vornsConjCcs_16sc_I, Vorn16sc>},
};

#undef VORN_CONTEXT_WORKLOADS

}  // namespace

Family fftWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
