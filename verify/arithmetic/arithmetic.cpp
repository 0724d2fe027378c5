// Element-wise arithmetic.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

// Far beyond the limits, at them, and between.
constexpr int scales[] = {-70, -31, -16, -15, -8, -7, -3, -1, 0, 1, 2, 7, 9, 10, 15, 16, 17, 30, 31, 32, 33, 62, 70};

template <bool scaled, class Work>
void overLengths(const Work& work) {
    for (int len : lengths) {
        if (len > 1000) continue;
        work(len, 0);
        if (scaled && len % 2 != 0) {
            for (int sf : scales) work(len, sf);
        }
    }
}

// Ordinary values and, for odd lengths, any bit patterns.
template <class T>
std::vector<T> operand(Source& source, int len) {
    const auto n = static_cast<std::size_t>(len);
    return len % 2 != 0 ? source.patterns<T>(n) : source.values<T>(n);
}

template <class A, class B, class D>
void vectors(Source& source, Digest& digest, int len, const auto& call) {
    const auto a = operand<A>(source, len);
    const auto b = operand<B>(source, len);
    std::vector<D> dst(a.size());
    digest.add(call(a.data(), b.data(), dst.data()));
    digest.add(dst);
}

template <class A, class D>
void vectorsInPlace(Source& source, Digest& digest, int len, const auto& call) {
    const auto a = operand<A>(source, len);
    auto srcDst = operand<D>(source, len);
    digest.add(call(a.data(), srcDst.data()));
    digest.add(srcDst);
}

template <class A, class D>
void constant(Source& source, Digest& digest, int len, const auto& call) {
    const auto a = operand<A>(source, len);
    const A val = len == 1 ? A{} : operand<A>(source, len)[0];
    std::vector<D> dst(a.size());
    digest.add(call(a.data(), val, dst.data()));
    digest.add(dst);
}

template <class D>
void constantInPlace(Source& source, Digest& digest, int len, const auto& call) {
    auto srcDst = operand<D>(source, len);
    const D val = len == 1 ? D{} : operand<D>(source, len)[0];
    digest.add(call(val, srcDst.data()));
    digest.add(srcDst);
}

// What a function is run on follows from its type.

template <class A, class B, class D>
void run(Source& source, Digest& digest, VornStatus (*call)(const A*, const B*, D*, int, int)) {
    overLengths<true>([&](int len, int sf) {
        vectors<A, B, D>(source, digest, len, [&](auto* a, auto* b, auto* d) { return call(a, b, d, len, sf); });
    });
}
template <class A, class B, class D>
void run(Source& source, Digest& digest, VornStatus (*call)(const A*, const B*, D*, int)) {
    overLengths<false>([&](int len, int) {
        vectors<A, B, D>(source, digest, len, [&](auto* a, auto* b, auto* d) { return call(a, b, d, len); });
    });
}
template <class A, class D>
void run(Source& source, Digest& digest, VornStatus (*call)(const A*, D*, int, int)) {
    overLengths<true>([&](int len, int sf) {
        vectorsInPlace<A, D>(source, digest, len, [&](auto* a, auto* d) { return call(a, d, len, sf); });
    });
}
template <class A, class D>
void run(Source& source, Digest& digest, VornStatus (*call)(const A*, D*, int)) {
    overLengths<false>([&](int len, int) {
        vectorsInPlace<A, D>(source, digest, len, [&](auto* a, auto* d) { return call(a, d, len); });
    });
}
template <class A, class D>
void run(Source& source, Digest& digest, VornStatus (*call)(const A*, A, D*, int, int)) {
    overLengths<true>([&](int len, int sf) {
        constant<A, D>(source, digest, len, [&](auto* a, A val, auto* d) { return call(a, val, d, len, sf); });
    });
}
template <class A, class D>
void run(Source& source, Digest& digest, VornStatus (*call)(const A*, A, D*, int)) {
    overLengths<false>([&](int len, int) {
        constant<A, D>(source, digest, len, [&](auto* a, A val, auto* d) { return call(a, val, d, len); });
    });
}
template <class D>
void run(Source& source, Digest& digest, VornStatus (*call)(D, D*, int, int)) {
    overLengths<true>([&](int len, int sf) {
        constantInPlace<D>(source, digest, len, [&](D val, auto* d) { return call(val, d, len, sf); });
    });
}
template <class D>
void run(Source& source, Digest& digest, VornStatus (*call)(D, D*, int)) {
    overLengths<false>([&](int len, int) {
        constantInPlace<D>(source, digest, len, [&](D val, auto* d) { return call(val, d, len); });
    });
}

template <auto function>
void work(Source& source, Digest& digest) {
    run(source, digest, function);
}

const Workload workloads[] = {
    {"vornsAdd_8u_Sfs", work<vornsAdd_8u_Sfs>},
    {"vornsAdd_8u_ISfs", work<vornsAdd_8u_ISfs>},
    {"vornsAdd_8u16u", work<vornsAdd_8u16u>},
    {"vornsAdd_16u", work<vornsAdd_16u>},
    {"vornsAdd_16s", work<vornsAdd_16s>},
    {"vornsAdd_16s_I", work<vornsAdd_16s_I>},
    {"vornsAdd_16s_Sfs", work<vornsAdd_16s_Sfs>},
    {"vornsAdd_16s_ISfs", work<vornsAdd_16s_ISfs>},
    {"vornsAdd_16s32f", work<vornsAdd_16s32f>},
    {"vornsAdd_16s32s_I", work<vornsAdd_16s32s_I>},
    {"vornsAdd_16sc_Sfs", work<vornsAdd_16sc_Sfs>},
    {"vornsAdd_16sc_ISfs", work<vornsAdd_16sc_ISfs>},
    {"vornsAdd_32u", work<vornsAdd_32u>},
    {"vornsAdd_32s_Sfs", work<vornsAdd_32s_Sfs>},
    {"vornsAdd_32s_ISfs", work<vornsAdd_32s_ISfs>},
    {"vornsAdd_32sc_Sfs", work<vornsAdd_32sc_Sfs>},
    {"vornsAdd_32sc_ISfs", work<vornsAdd_32sc_ISfs>},
    {"vornsAdd_32f", work<vornsAdd_32f>},
    {"vornsAdd_32f_I", work<vornsAdd_32f_I>},
    {"vornsAdd_32fc", work<vornsAdd_32fc>},
    {"vornsAdd_32fc_I", work<vornsAdd_32fc_I>},
    {"vornsAdd_64f", work<vornsAdd_64f>},
    {"vornsAdd_64f_I", work<vornsAdd_64f_I>},
    {"vornsAdd_64fc", work<vornsAdd_64fc>},
    {"vornsAdd_64fc_I", work<vornsAdd_64fc_I>},
    {"vornsSub_8u_Sfs", work<vornsSub_8u_Sfs>},
    {"vornsSub_8u_ISfs", work<vornsSub_8u_ISfs>},
    {"vornsSub_16s", work<vornsSub_16s>},
    {"vornsSub_16s_I", work<vornsSub_16s_I>},
    {"vornsSub_16s_Sfs", work<vornsSub_16s_Sfs>},
    {"vornsSub_16s_ISfs", work<vornsSub_16s_ISfs>},
    {"vornsSub_16s32f", work<vornsSub_16s32f>},
    {"vornsSub_16sc_Sfs", work<vornsSub_16sc_Sfs>},
    {"vornsSub_16sc_ISfs", work<vornsSub_16sc_ISfs>},
    {"vornsSub_32s_Sfs", work<vornsSub_32s_Sfs>},
    {"vornsSub_32s_ISfs", work<vornsSub_32s_ISfs>},
    {"vornsSub_32sc_Sfs", work<vornsSub_32sc_Sfs>},
    {"vornsSub_32sc_ISfs", work<vornsSub_32sc_ISfs>},
    {"vornsSub_32f", work<vornsSub_32f>},
    {"vornsSub_32f_I", work<vornsSub_32f_I>},
    {"vornsSub_32fc", work<vornsSub_32fc>},
    {"vornsSub_32fc_I", work<vornsSub_32fc_I>},
    {"vornsSub_64f", work<vornsSub_64f>},
    {"vornsSub_64f_I", work<vornsSub_64f_I>},
    {"vornsSub_64fc", work<vornsSub_64fc>},
    {"vornsSub_64fc_I", work<vornsSub_64fc_I>},
    {"vornsMul_8u_Sfs", work<vornsMul_8u_Sfs>},
    {"vornsMul_8u_ISfs", work<vornsMul_8u_ISfs>},
    {"vornsMul_8u16u", work<vornsMul_8u16u>},
    {"vornsMul_16s", work<vornsMul_16s>},
    {"vornsMul_16s_I", work<vornsMul_16s_I>},
    {"vornsMul_16s_Sfs", work<vornsMul_16s_Sfs>},
    {"vornsMul_16s_ISfs", work<vornsMul_16s_ISfs>},
    {"vornsMul_16s32f", work<vornsMul_16s32f>},
    {"vornsMul_16s32s_Sfs", work<vornsMul_16s32s_Sfs>},
    {"vornsMul_16u16s_Sfs", work<vornsMul_16u16s_Sfs>},
    {"vornsMul_16sc_Sfs", work<vornsMul_16sc_Sfs>},
    {"vornsMul_16sc_ISfs", work<vornsMul_16sc_ISfs>},
    {"vornsMul_32s_Sfs", work<vornsMul_32s_Sfs>},
    {"vornsMul_32s_ISfs", work<vornsMul_32s_ISfs>},
    {"vornsMul_32sc_Sfs", work<vornsMul_32sc_Sfs>},
    {"vornsMul_32sc_ISfs", work<vornsMul_32sc_ISfs>},
    {"vornsMul_32s32sc_Sfs", work<vornsMul_32s32sc_Sfs>},
    {"vornsMul_32s32sc_ISfs", work<vornsMul_32s32sc_ISfs>},
    {"vornsMul_32f", work<vornsMul_32f>},
    {"vornsMul_32f_I", work<vornsMul_32f_I>},
    {"vornsMul_32fc", work<vornsMul_32fc>},
    {"vornsMul_32fc_I", work<vornsMul_32fc_I>},
    {"vornsMul_64f", work<vornsMul_64f>},
    {"vornsMul_64f_I", work<vornsMul_64f_I>},
    {"vornsMul_64fc", work<vornsMul_64fc>},
    {"vornsMul_64fc_I", work<vornsMul_64fc_I>},
    {"vornsDiv_8u_Sfs", work<vornsDiv_8u_Sfs>},
    {"vornsDiv_8u_ISfs", work<vornsDiv_8u_ISfs>},
    {"vornsDiv_16s_Sfs", work<vornsDiv_16s_Sfs>},
    {"vornsDiv_16s_ISfs", work<vornsDiv_16s_ISfs>},
    {"vornsDiv_16sc_Sfs", work<vornsDiv_16sc_Sfs>},
    {"vornsDiv_16sc_ISfs", work<vornsDiv_16sc_ISfs>},
    {"vornsDiv_32s_Sfs", work<vornsDiv_32s_Sfs>},
    {"vornsDiv_32s_ISfs", work<vornsDiv_32s_ISfs>},
    {"vornsDiv_32s16s_Sfs", work<vornsDiv_32s16s_Sfs>},
    {"vornsDiv_32f", work<vornsDiv_32f>},
    {"vornsDiv_32f_I", work<vornsDiv_32f_I>},
    {"vornsDiv_32fc", work<vornsDiv_32fc>},
    {"vornsDiv_32fc_I", work<vornsDiv_32fc_I>},
    {"vornsDiv_64f", work<vornsDiv_64f>},
    {"vornsDiv_64f_I", work<vornsDiv_64f_I>},
    {"vornsDiv_64fc", work<vornsDiv_64fc>},
    {"vornsDiv_64fc_I", work<vornsDiv_64fc_I>},
    {"vornsAddC_8u_Sfs", work<vornsAddC_8u_Sfs>},
    {"vornsAddC_8u_ISfs", work<vornsAddC_8u_ISfs>},
    {"vornsAddC_16s_I", work<vornsAddC_16s_I>},
    {"vornsAddC_16s_Sfs", work<vornsAddC_16s_Sfs>},
    {"vornsAddC_16s_ISfs", work<vornsAddC_16s_ISfs>},
    {"vornsAddC_16sc_Sfs", work<vornsAddC_16sc_Sfs>},
    {"vornsAddC_16sc_ISfs", work<vornsAddC_16sc_ISfs>},
    {"vornsAddC_32s_Sfs", work<vornsAddC_32s_Sfs>},
    {"vornsAddC_32s_ISfs", work<vornsAddC_32s_ISfs>},
    {"vornsAddC_32sc_Sfs", work<vornsAddC_32sc_Sfs>},
    {"vornsAddC_32sc_ISfs", work<vornsAddC_32sc_ISfs>},
    {"vornsAddC_32f", work<vornsAddC_32f>},
    {"vornsAddC_32f_I", work<vornsAddC_32f_I>},
    {"vornsAddC_32fc", work<vornsAddC_32fc>},
    {"vornsAddC_32fc_I", work<vornsAddC_32fc_I>},
    {"vornsAddC_64f", work<vornsAddC_64f>},
    {"vornsAddC_64f_I", work<vornsAddC_64f_I>},
    {"vornsAddC_64fc", work<vornsAddC_64fc>},
    {"vornsAddC_64fc_I", work<vornsAddC_64fc_I>},
    {"vornsSubC_8u_Sfs", work<vornsSubC_8u_Sfs>},
    {"vornsSubC_8u_ISfs", work<vornsSubC_8u_ISfs>},
    {"vornsSubC_16s_I", work<vornsSubC_16s_I>},
    {"vornsSubC_16s_Sfs", work<vornsSubC_16s_Sfs>},
    {"vornsSubC_16s_ISfs", work<vornsSubC_16s_ISfs>},
    {"vornsSubC_16sc_Sfs", work<vornsSubC_16sc_Sfs>},
    {"vornsSubC_16sc_ISfs", work<vornsSubC_16sc_ISfs>},
    {"vornsSubC_32s_Sfs", work<vornsSubC_32s_Sfs>},
    {"vornsSubC_32s_ISfs", work<vornsSubC_32s_ISfs>},
    {"vornsSubC_32sc_Sfs", work<vornsSubC_32sc_Sfs>},
    {"vornsSubC_32sc_ISfs", work<vornsSubC_32sc_ISfs>},
    {"vornsSubC_32f", work<vornsSubC_32f>},
    {"vornsSubC_32f_I", work<vornsSubC_32f_I>},
    {"vornsSubC_32fc", work<vornsSubC_32fc>},
    {"vornsSubC_32fc_I", work<vornsSubC_32fc_I>},
    {"vornsSubC_64f", work<vornsSubC_64f>},
    {"vornsSubC_64f_I", work<vornsSubC_64f_I>},
    {"vornsSubC_64fc", work<vornsSubC_64fc>},
    {"vornsSubC_64fc_I", work<vornsSubC_64fc_I>},
    {"vornsSubCRev_8u_Sfs", work<vornsSubCRev_8u_Sfs>},
    {"vornsSubCRev_8u_ISfs", work<vornsSubCRev_8u_ISfs>},
    {"vornsSubCRev_16s_Sfs", work<vornsSubCRev_16s_Sfs>},
    {"vornsSubCRev_16s_ISfs", work<vornsSubCRev_16s_ISfs>},
    {"vornsSubCRev_16sc_Sfs", work<vornsSubCRev_16sc_Sfs>},
    {"vornsSubCRev_16sc_ISfs", work<vornsSubCRev_16sc_ISfs>},
    {"vornsSubCRev_32s_Sfs", work<vornsSubCRev_32s_Sfs>},
    {"vornsSubCRev_32s_ISfs", work<vornsSubCRev_32s_ISfs>},
    {"vornsSubCRev_32sc_Sfs", work<vornsSubCRev_32sc_Sfs>},
    {"vornsSubCRev_32sc_ISfs", work<vornsSubCRev_32sc_ISfs>},
    {"vornsSubCRev_32f", work<vornsSubCRev_32f>},
    {"vornsSubCRev_32f_I", work<vornsSubCRev_32f_I>},
    {"vornsSubCRev_32fc", work<vornsSubCRev_32fc>},
    {"vornsSubCRev_32fc_I", work<vornsSubCRev_32fc_I>},
    {"vornsSubCRev_64f", work<vornsSubCRev_64f>},
    {"vornsSubCRev_64f_I", work<vornsSubCRev_64f_I>},
    {"vornsSubCRev_64fc", work<vornsSubCRev_64fc>},
    {"vornsSubCRev_64fc_I", work<vornsSubCRev_64fc_I>},
    {"vornsMulC_8u_Sfs", work<vornsMulC_8u_Sfs>},
    {"vornsMulC_8u_ISfs", work<vornsMulC_8u_ISfs>},
    {"vornsMulC_16s_I", work<vornsMulC_16s_I>},
    {"vornsMulC_16s_Sfs", work<vornsMulC_16s_Sfs>},
    {"vornsMulC_16s_ISfs", work<vornsMulC_16s_ISfs>},
    {"vornsMulC_16sc_Sfs", work<vornsMulC_16sc_Sfs>},
    {"vornsMulC_16sc_ISfs", work<vornsMulC_16sc_ISfs>},
    {"vornsMulC_32s_Sfs", work<vornsMulC_32s_Sfs>},
    {"vornsMulC_32s_ISfs", work<vornsMulC_32s_ISfs>},
    {"vornsMulC_32sc_Sfs", work<vornsMulC_32sc_Sfs>},
    {"vornsMulC_32sc_ISfs", work<vornsMulC_32sc_ISfs>},
    {"vornsMulC_32f", work<vornsMulC_32f>},
    {"vornsMulC_32f_I", work<vornsMulC_32f_I>},
    {"vornsMulC_32fc", work<vornsMulC_32fc>},
    {"vornsMulC_32fc_I", work<vornsMulC_32fc_I>},
    {"vornsMulC_64f", work<vornsMulC_64f>},
    {"vornsMulC_64f_I", work<vornsMulC_64f_I>},
    {"vornsMulC_64fc", work<vornsMulC_64fc>},
    {"vornsMulC_64fc_I", work<vornsMulC_64fc_I>},
    {"vornsMulC_32f16s_Sfs", work<vornsMulC_32f16s_Sfs>},
    {"vornsMulC_Low_32f16s", work<vornsMulC_Low_32f16s>},
    {"vornsDivC_8u_Sfs", work<vornsDivC_8u_Sfs>},
    {"vornsDivC_8u_ISfs", work<vornsDivC_8u_ISfs>},
    {"vornsDivC_16s_Sfs", work<vornsDivC_16s_Sfs>},
    {"vornsDivC_16s_ISfs", work<vornsDivC_16s_ISfs>},
    {"vornsDivC_16sc_Sfs", work<vornsDivC_16sc_Sfs>},
    {"vornsDivC_16sc_ISfs", work<vornsDivC_16sc_ISfs>},
    {"vornsDivC_32f", work<vornsDivC_32f>},
    {"vornsDivC_32f_I", work<vornsDivC_32f_I>},
    {"vornsDivC_32fc", work<vornsDivC_32fc>},
    {"vornsDivC_32fc_I", work<vornsDivC_32fc_I>},
    {"vornsDivC_64f", work<vornsDivC_64f>},
    {"vornsDivC_64f_I", work<vornsDivC_64f_I>},
    {"vornsDivC_64fc", work<vornsDivC_64fc>},
    {"vornsDivC_64fc_I", work<vornsDivC_64fc_I>},
    {"vornsDivCRev_16u", work<vornsDivCRev_16u>},
    {"vornsDivCRev_16u_I", work<vornsDivCRev_16u_I>},
    {"vornsDivCRev_32f", work<vornsDivCRev_32f>},
    {"vornsDivCRev_32f_I", work<vornsDivCRev_32f_I>},
};

}  // namespace

Family arithmeticWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
