// Reductions and elementary functions.
#include <algorithm>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

// Ordinary values, and any bit pattern.
template <class T, class Use>
void eachVector(Source& source, double low, double high, Use use) {
    for (int len : lengths) {
        use(source.values<T>(static_cast<std::size_t>(len), low, high), len);
        use(source.patterns<T>(static_cast<std::size_t>(len)), len);
    }
}

// Two results of one call, and what an indexed search finds.
template <class T>
struct Extremes {
    T smallest, largest;
};
template <class T>
struct Found {
    T value;
    int index;
};
template <class T>
void addResult(Digest& digest, const T& result) {
    digest.add(result);
}
template <class T>
void addResult(Digest& digest, const Extremes<T>& result) {
    digest.add(result.smallest);
    digest.add(result.largest);
}
template <class T>
void addResult(Digest& digest, const Found<T>& result) {
    digest.add(result.value);
    digest.add(result.index);
}

// Sum-like functions: one result a vector.
template <class T, class Result, class Call>
void reduce(Source& source, Digest& digest, double low, double high, Call call) {
    eachVector<T>(source, low, high, [&](const std::vector<T>& src, int len) {
        Result result{};
        digest.add(call(src.data(), len, &result));
        addResult(digest, result);
    });
}

// Element-wise functions.
template <class T, class Result, class Call>
void map(Source& source, Digest& digest, double low, double high, Call call) {
    eachVector<T>(source, low, high, [&](const std::vector<T>& src, int len) {
        std::vector<Result> dst(src.size());
        digest.add(call(src.data(), dst.data(), len));
        digest.add(dst);
    });
}
template <class T, class Call>
void mapInPlace(Source& source, Digest& digest, double low, double high, Call call) {
    eachVector<T>(source, low, high, [&](std::vector<T> srcDst, int len) {
        digest.add(call(srcDst.data(), len));
        digest.add(srcDst);
    });
}

// Functions of two vectors.
template <class T1, class T2, class Use>
void eachTwo(Source& source, Use use) {
    for (int len : lengths) {
        const auto n = static_cast<std::size_t>(len);
        const auto values1 = source.values<T1>(n);  // one after the other: arguments are evaluated in any order
        const auto values2 = source.values<T2>(n);
        use(values1, values2, len);
        const auto patterns1 = source.patterns<T1>(n);
        const auto patterns2 = source.patterns<T2>(n);
        use(patterns1, patterns2, len);
    }
}
template <class T1, class T2, class Result, class Call>
void reduceTwo(Source& source, Digest& digest, Call call) {
    eachTwo<T1, T2>(source, [&](const std::vector<T1>& src1, const std::vector<T2>& src2, int len) {
        Result result{};
        digest.add(call(src1.data(), src2.data(), len, &result));
        digest.add(result);
    });
}
template <class T, class Result, class Call>
void mapTwo(Source& source, Digest& digest, Call call) {
    eachTwo<T, T>(source, [&](const std::vector<T>& src1, const std::vector<T>& src2, int len) {
        std::vector<Result> dst(src1.size());
        digest.add(call(src1.data(), src2.data(), dst.data(), len));
        digest.add(dst);
    });
}

constexpr int scales[] = {0, 1, 9, 31, -3, -40};
constexpr int hints[] = {0, 1, 2};

const Workload workloads[] = {
    {"vornsSum_32f", [](Source& source, Digest& digest) { for (int extra : hints) { reduce<Vorn32f, Vorn32f>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsSum_32f(x, n, y, extra); }); } }},
    {"vornsSum_64f", [](Source& source, Digest& digest) { reduce<Vorn64f, Vorn64f>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsSum_64f(x, n, y); }); }},
    {"vornsSum_32fc", [](Source& source, Digest& digest) { for (int extra : hints) { reduce<Vorn32fc, Vorn32fc>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsSum_32fc(x, n, y, extra); }); } }},
    {"vornsSum_64fc", [](Source& source, Digest& digest) { reduce<Vorn64fc, Vorn64fc>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsSum_64fc(x, n, y); }); }},
    {"vornsSum_16s_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduce<Vorn16s, Vorn16s>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsSum_16s_Sfs(x, n, y, extra); }); } }},
    {"vornsSum_16s32s_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduce<Vorn16s, Vorn32s>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsSum_16s32s_Sfs(x, n, y, extra); }); } }},
    {"vornsSum_16sc_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduce<Vorn16sc, Vorn16sc>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsSum_16sc_Sfs(x, n, y, extra); }); } }},
    {"vornsSum_16sc32sc_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduce<Vorn16sc, Vorn32sc>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsSum_16sc32sc_Sfs(x, n, y, extra); }); } }},
    {"vornsSum_32s_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduce<Vorn32s, Vorn32s>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsSum_32s_Sfs(x, n, y, extra); }); } }},
    {"vornsDotProd_32f", [](Source& source, Digest& digest) { reduceTwo<Vorn32f, Vorn32f, Vorn32f>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_32f(x, y, n, z); }); }},
    {"vornsDotProd_32fc", [](Source& source, Digest& digest) { reduceTwo<Vorn32fc, Vorn32fc, Vorn32fc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_32fc(x, y, n, z); }); }},
    {"vornsDotProd_32f32fc", [](Source& source, Digest& digest) { reduceTwo<Vorn32f, Vorn32fc, Vorn32fc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_32f32fc(x, y, n, z); }); }},
    {"vornsDotProd_64f", [](Source& source, Digest& digest) { reduceTwo<Vorn64f, Vorn64f, Vorn64f>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_64f(x, y, n, z); }); }},
    {"vornsDotProd_64fc", [](Source& source, Digest& digest) { reduceTwo<Vorn64fc, Vorn64fc, Vorn64fc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_64fc(x, y, n, z); }); }},
    {"vornsDotProd_64f64fc", [](Source& source, Digest& digest) { reduceTwo<Vorn64f, Vorn64fc, Vorn64fc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_64f64fc(x, y, n, z); }); }},
    {"vornsDotProd_32f64f", [](Source& source, Digest& digest) { reduceTwo<Vorn32f, Vorn32f, Vorn64f>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_32f64f(x, y, n, z); }); }},
    {"vornsDotProd_32fc64fc", [](Source& source, Digest& digest) { reduceTwo<Vorn32fc, Vorn32fc, Vorn64fc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_32fc64fc(x, y, n, z); }); }},
    {"vornsDotProd_32f32fc64fc", [](Source& source, Digest& digest) { reduceTwo<Vorn32f, Vorn32fc, Vorn64fc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_32f32fc64fc(x, y, n, z); }); }},
    {"vornsDotProd_16s32f", [](Source& source, Digest& digest) { reduceTwo<Vorn16s, Vorn16s, Vorn32f>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_16s32f(x, y, n, z); }); }},
    {"vornsDotProd_16sc32fc", [](Source& source, Digest& digest) { reduceTwo<Vorn16sc, Vorn16sc, Vorn32fc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_16sc32fc(x, y, n, z); }); }},
    {"vornsDotProd_16s16sc32fc", [](Source& source, Digest& digest) { reduceTwo<Vorn16s, Vorn16sc, Vorn32fc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_16s16sc32fc(x, y, n, z); }); }},
    {"vornsDotProd_16s64s", [](Source& source, Digest& digest) { reduceTwo<Vorn16s, Vorn16s, Vorn64s>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_16s64s(x, y, n, z); }); }},
    {"vornsDotProd_16sc64sc", [](Source& source, Digest& digest) { reduceTwo<Vorn16sc, Vorn16sc, Vorn64sc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_16sc64sc(x, y, n, z); }); }},
    {"vornsDotProd_16s16sc64sc", [](Source& source, Digest& digest) { reduceTwo<Vorn16s, Vorn16sc, Vorn64sc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_16s16sc64sc(x, y, n, z); }); }},
    {"vornsDotProd_16s_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduceTwo<Vorn16s, Vorn16s, Vorn16s>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_16s_Sfs(x, y, n, z, extra); }); } }},
    {"vornsDotProd_16sc_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduceTwo<Vorn16sc, Vorn16sc, Vorn16sc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_16sc_Sfs(x, y, n, z, extra); }); } }},
    {"vornsDotProd_16s16sc_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduceTwo<Vorn16s, Vorn16sc, Vorn16sc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_16s16sc_Sfs(x, y, n, z, extra); }); } }},
    {"vornsDotProd_16s32s_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduceTwo<Vorn16s, Vorn16s, Vorn32s>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_16s32s_Sfs(x, y, n, z, extra); }); } }},
    {"vornsDotProd_16sc32sc_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduceTwo<Vorn16sc, Vorn16sc, Vorn32sc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_16sc32sc_Sfs(x, y, n, z, extra); }); } }},
    {"vornsDotProd_16s16sc32sc_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduceTwo<Vorn16s, Vorn16sc, Vorn32sc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_16s16sc32sc_Sfs(x, y, n, z, extra); }); } }},
    {"vornsDotProd_32s_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduceTwo<Vorn32s, Vorn32s, Vorn32s>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_32s_Sfs(x, y, n, z, extra); }); } }},
    {"vornsDotProd_32sc_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduceTwo<Vorn32sc, Vorn32sc, Vorn32sc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_32sc_Sfs(x, y, n, z, extra); }); } }},
    {"vornsDotProd_32s32sc_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduceTwo<Vorn32s, Vorn32sc, Vorn32sc>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_32s32sc_Sfs(x, y, n, z, extra); }); } }},
    {"vornsDotProd_16s32s32s_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { reduceTwo<Vorn16s, Vorn32s, Vorn32s>(source, digest, [=](auto* x, auto* y, int n, auto* z) { return vornsDotProd_16s32s32s_Sfs(x, y, n, z, extra); }); } }},
    {"vornsMax_16s", [](Source& source, Digest& digest) { reduce<Vorn16s, Vorn16s>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsMax_16s(x, n, y); }); }},
    {"vornsMax_32f", [](Source& source, Digest& digest) { reduce<Vorn32f, Vorn32f>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsMax_32f(x, n, y); }); }},
    {"vornsMax_64f", [](Source& source, Digest& digest) { reduce<Vorn64f, Vorn64f>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsMax_64f(x, n, y); }); }},
    {"vornsMin_16s", [](Source& source, Digest& digest) { reduce<Vorn16s, Vorn16s>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsMin_16s(x, n, y); }); }},
    {"vornsMin_32f", [](Source& source, Digest& digest) { reduce<Vorn32f, Vorn32f>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsMin_32f(x, n, y); }); }},
    {"vornsMin_64f", [](Source& source, Digest& digest) { reduce<Vorn64f, Vorn64f>(source, digest, -1000, 1000, [=](auto* x, int n, auto* y) { return vornsMin_64f(x, n, y); }); }},
    {"vornsMinMax_8u", [](Source& source, Digest& digest) { reduce<Vorn8u, Extremes<Vorn8u>>(source, digest, -1000, 1000, [](auto* x, int n, auto* y) { return vornsMinMax_8u(x, n, &y->smallest, &y->largest); }); }},
    {"vornsMinMax_16u", [](Source& source, Digest& digest) { reduce<Vorn16u, Extremes<Vorn16u>>(source, digest, -1000, 1000, [](auto* x, int n, auto* y) { return vornsMinMax_16u(x, n, &y->smallest, &y->largest); }); }},
    {"vornsMinMax_16s", [](Source& source, Digest& digest) { reduce<Vorn16s, Extremes<Vorn16s>>(source, digest, -1000, 1000, [](auto* x, int n, auto* y) { return vornsMinMax_16s(x, n, &y->smallest, &y->largest); }); }},
    {"vornsMinMax_32u", [](Source& source, Digest& digest) { reduce<Vorn32u, Extremes<Vorn32u>>(source, digest, -1000, 1000, [](auto* x, int n, auto* y) { return vornsMinMax_32u(x, n, &y->smallest, &y->largest); }); }},
    {"vornsMinMax_32s", [](Source& source, Digest& digest) { reduce<Vorn32s, Extremes<Vorn32s>>(source, digest, -1000, 1000, [](auto* x, int n, auto* y) { return vornsMinMax_32s(x, n, &y->smallest, &y->largest); }); }},
    {"vornsMinMax_32f", [](Source& source, Digest& digest) { reduce<Vorn32f, Extremes<Vorn32f>>(source, digest, -1000, 1000, [](auto* x, int n, auto* y) { return vornsMinMax_32f(x, n, &y->smallest, &y->largest); }); }},
    {"vornsMinMax_64f", [](Source& source, Digest& digest) { reduce<Vorn64f, Extremes<Vorn64f>>(source, digest, -1000, 1000, [](auto* x, int n, auto* y) { return vornsMinMax_64f(x, n, &y->smallest, &y->largest); }); }},
    {"vornsMaxIndx_16s", [](Source& source, Digest& digest) { reduce<Vorn16s, Found<Vorn16s>>(source, digest, -1000, 1000, [](auto* x, int n, auto* y) { return vornsMaxIndx_16s(x, n, &y->value, &y->index); }); }},
    {"vornsMaxIndx_32f", [](Source& source, Digest& digest) { reduce<Vorn32f, Found<Vorn32f>>(source, digest, -1000, 1000, [](auto* x, int n, auto* y) { return vornsMaxIndx_32f(x, n, &y->value, &y->index); }); }},
    {"vornsMaxIndx_64f", [](Source& source, Digest& digest) { reduce<Vorn64f, Found<Vorn64f>>(source, digest, -1000, 1000, [](auto* x, int n, auto* y) { return vornsMaxIndx_64f(x, n, &y->value, &y->index); }); }},
    {"vornsMinIndx_16s", [](Source& source, Digest& digest) { reduce<Vorn16s, Found<Vorn16s>>(source, digest, -1000, 1000, [](auto* x, int n, auto* y) { return vornsMinIndx_16s(x, n, &y->value, &y->index); }); }},
    {"vornsMinIndx_32f", [](Source& source, Digest& digest) { reduce<Vorn32f, Found<Vorn32f>>(source, digest, -1000, 1000, [](auto* x, int n, auto* y) { return vornsMinIndx_32f(x, n, &y->value, &y->index); }); }},
    {"vornsMinIndx_64f", [](Source& source, Digest& digest) { reduce<Vorn64f, Found<Vorn64f>>(source, digest, -1000, 1000, [](auto* x, int n, auto* y) { return vornsMinIndx_64f(x, n, &y->value, &y->index); }); }},
    {"vornsMaxEvery_16s_I", [](Source& source, Digest& digest) { mapTwo<Vorn16s, Vorn16s>(source, digest, [](auto* x, auto* y, auto* z, int n) { std::copy_n(y, n, z); return vornsMaxEvery_16s_I(x, z, n); }); }},
    {"vornsMaxEvery_32s_I", [](Source& source, Digest& digest) { mapTwo<Vorn32s, Vorn32s>(source, digest, [](auto* x, auto* y, auto* z, int n) { std::copy_n(y, n, z); return vornsMaxEvery_32s_I(x, z, n); }); }},
    {"vornsMaxEvery_32f_I", [](Source& source, Digest& digest) { mapTwo<Vorn32f, Vorn32f>(source, digest, [](auto* x, auto* y, auto* z, int n) { std::copy_n(y, n, z); return vornsMaxEvery_32f_I(x, z, n); }); }},
    {"vornsMinEvery_16s_I", [](Source& source, Digest& digest) { mapTwo<Vorn16s, Vorn16s>(source, digest, [](auto* x, auto* y, auto* z, int n) { std::copy_n(y, n, z); return vornsMinEvery_16s_I(x, z, n); }); }},
    {"vornsMinEvery_32s_I", [](Source& source, Digest& digest) { mapTwo<Vorn32s, Vorn32s>(source, digest, [](auto* x, auto* y, auto* z, int n) { std::copy_n(y, n, z); return vornsMinEvery_32s_I(x, z, n); }); }},
    {"vornsMinEvery_32f_I", [](Source& source, Digest& digest) { mapTwo<Vorn32f, Vorn32f>(source, digest, [](auto* x, auto* y, auto* z, int n) { std::copy_n(y, n, z); return vornsMinEvery_32f_I(x, z, n); }); }},
    {"vornsLn_32f", [](Source& source, Digest& digest) { map<Vorn32f, Vorn32f>(source, digest, 0, 1e4, [=](auto* x, auto* y, int n) { return vornsLn_32f(x, y, n); }); }},
    {"vornsLn_32f_I", [](Source& source, Digest& digest) { mapInPlace<Vorn32f>(source, digest, 0, 1e4, [=](auto* x, int n) { return vornsLn_32f_I(x, n); }); }},
    {"vornsLn_64f", [](Source& source, Digest& digest) { map<Vorn64f, Vorn64f>(source, digest, 0, 1e4, [=](auto* x, auto* y, int n) { return vornsLn_64f(x, y, n); }); }},
    {"vornsLn_64f_I", [](Source& source, Digest& digest) { mapInPlace<Vorn64f>(source, digest, 0, 1e4, [=](auto* x, int n) { return vornsLn_64f_I(x, n); }); }},
    {"vornsLn_64f32f", [](Source& source, Digest& digest) { map<Vorn64f, Vorn32f>(source, digest, 0, 1e4, [=](auto* x, auto* y, int n) { return vornsLn_64f32f(x, y, n); }); }},
    {"vornsLn_32s_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { map<Vorn32s, Vorn32s>(source, digest, 0, 1e4, [=](auto* x, auto* y, int n) { return vornsLn_32s_Sfs(x, y, n, extra); }); } }},
    {"vornsLn_32s_ISfs", [](Source& source, Digest& digest) { for (int extra : scales) { mapInPlace<Vorn32s>(source, digest, 0, 1e4, [=](auto* x, int n) { return vornsLn_32s_ISfs(x, n, extra); }); } }},
    {"vornsSumLn_32f", [](Source& source, Digest& digest) { reduce<Vorn32f, Vorn32f>(source, digest, 0, 1e4, [=](auto* x, int n, auto* y) { return vornsSumLn_32f(x, n, y); }); }},
    {"vornsSumLn_64f", [](Source& source, Digest& digest) { reduce<Vorn64f, Vorn64f>(source, digest, 0, 1e4, [=](auto* x, int n, auto* y) { return vornsSumLn_64f(x, n, y); }); }},
    {"vornsSumLn_32f64f", [](Source& source, Digest& digest) { reduce<Vorn32f, Vorn64f>(source, digest, 0, 1e4, [=](auto* x, int n, auto* y) { return vornsSumLn_32f64f(x, n, y); }); }},
    {"vornsSumLn_16s32f", [](Source& source, Digest& digest) { reduce<Vorn16s, Vorn32f>(source, digest, 0, 1e4, [=](auto* x, int n, auto* y) { return vornsSumLn_16s32f(x, n, y); }); }},
    {"vornsSqrt_32f", [](Source& source, Digest& digest) { map<Vorn32f, Vorn32f>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsSqrt_32f(x, y, n); }); }},
    {"vornsSqrt_32f_I", [](Source& source, Digest& digest) { mapInPlace<Vorn32f>(source, digest, -1000, 1000, [=](auto* x, int n) { return vornsSqrt_32f_I(x, n); }); }},
    {"vornsSqrt_64f", [](Source& source, Digest& digest) { map<Vorn64f, Vorn64f>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsSqrt_64f(x, y, n); }); }},
    {"vornsSqrt_64f_I", [](Source& source, Digest& digest) { mapInPlace<Vorn64f>(source, digest, -1000, 1000, [=](auto* x, int n) { return vornsSqrt_64f_I(x, n); }); }},
    {"vornsSqrt_32fc", [](Source& source, Digest& digest) { map<Vorn32fc, Vorn32fc>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsSqrt_32fc(x, y, n); }); }},
    {"vornsSqrt_32fc_I", [](Source& source, Digest& digest) { mapInPlace<Vorn32fc>(source, digest, -1000, 1000, [=](auto* x, int n) { return vornsSqrt_32fc_I(x, n); }); }},
    {"vornsSqrt_64fc", [](Source& source, Digest& digest) { map<Vorn64fc, Vorn64fc>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsSqrt_64fc(x, y, n); }); }},
    {"vornsSqrt_64fc_I", [](Source& source, Digest& digest) { mapInPlace<Vorn64fc>(source, digest, -1000, 1000, [=](auto* x, int n) { return vornsSqrt_64fc_I(x, n); }); }},
    {"vornsSqrt_8u_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { map<Vorn8u, Vorn8u>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsSqrt_8u_Sfs(x, y, n, extra); }); } }},
    {"vornsSqrt_8u_ISfs", [](Source& source, Digest& digest) { for (int extra : scales) { mapInPlace<Vorn8u>(source, digest, -1000, 1000, [=](auto* x, int n) { return vornsSqrt_8u_ISfs(x, n, extra); }); } }},
    {"vornsSqrt_16u_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { map<Vorn16u, Vorn16u>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsSqrt_16u_Sfs(x, y, n, extra); }); } }},
    {"vornsSqrt_16u_ISfs", [](Source& source, Digest& digest) { for (int extra : scales) { mapInPlace<Vorn16u>(source, digest, -1000, 1000, [=](auto* x, int n) { return vornsSqrt_16u_ISfs(x, n, extra); }); } }},
    {"vornsSqrt_16s_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { map<Vorn16s, Vorn16s>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsSqrt_16s_Sfs(x, y, n, extra); }); } }},
    {"vornsSqrt_16s_ISfs", [](Source& source, Digest& digest) { for (int extra : scales) { mapInPlace<Vorn16s>(source, digest, -1000, 1000, [=](auto* x, int n) { return vornsSqrt_16s_ISfs(x, n, extra); }); } }},
    {"vornsSqrt_16sc_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { map<Vorn16sc, Vorn16sc>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsSqrt_16sc_Sfs(x, y, n, extra); }); } }},
    {"vornsSqrt_16sc_ISfs", [](Source& source, Digest& digest) { for (int extra : scales) { mapInPlace<Vorn16sc>(source, digest, -1000, 1000, [=](auto* x, int n) { return vornsSqrt_16sc_ISfs(x, n, extra); }); } }},
    {"vornsSqrt_64s_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { map<Vorn64s, Vorn64s>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsSqrt_64s_Sfs(x, y, n, extra); }); } }},
    {"vornsSqrt_64s_ISfs", [](Source& source, Digest& digest) { for (int extra : scales) { mapInPlace<Vorn64s>(source, digest, -1000, 1000, [=](auto* x, int n) { return vornsSqrt_64s_ISfs(x, n, extra); }); } }},
    {"vornsSqrt_32s16s_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { map<Vorn32s, Vorn16s>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsSqrt_32s16s_Sfs(x, y, n, extra); }); } }},
    {"vornsSqrt_64s16s_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { map<Vorn64s, Vorn16s>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsSqrt_64s16s_Sfs(x, y, n, extra); }); } }},
    {"vornsMagnitude_32fc", [](Source& source, Digest& digest) { map<Vorn32fc, Vorn32f>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsMagnitude_32fc(x, y, n); }); }},
    {"vornsMagnitude_64fc", [](Source& source, Digest& digest) { map<Vorn64fc, Vorn64f>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsMagnitude_64fc(x, y, n); }); }},
    {"vornsMagnitude_16sc32f", [](Source& source, Digest& digest) { map<Vorn16sc, Vorn32f>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsMagnitude_16sc32f(x, y, n); }); }},
    {"vornsMagnitude_16sc_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { map<Vorn16sc, Vorn16s>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsMagnitude_16sc_Sfs(x, y, n, extra); }); } }},
    {"vornsMagnitude_32sc_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { map<Vorn32sc, Vorn32s>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsMagnitude_32sc_Sfs(x, y, n, extra); }); } }},
    {"vornsMagnitude_32f", [](Source& source, Digest& digest) { mapTwo<Vorn32f, Vorn32f>(source, digest, [=](auto* x, auto* y, auto* z, int n) { return vornsMagnitude_32f(x, y, z, n); }); }},
    {"vornsMagnitude_64f", [](Source& source, Digest& digest) { mapTwo<Vorn64f, Vorn64f>(source, digest, [=](auto* x, auto* y, auto* z, int n) { return vornsMagnitude_64f(x, y, z, n); }); }},
    {"vornsMagnitude_16s32f", [](Source& source, Digest& digest) { mapTwo<Vorn16s, Vorn32f>(source, digest, [=](auto* x, auto* y, auto* z, int n) { return vornsMagnitude_16s32f(x, y, z, n); }); }},
    {"vornsMagnitude_16s_Sfs", [](Source& source, Digest& digest) { for (int extra : scales) { mapTwo<Vorn16s, Vorn16s>(source, digest, [=](auto* x, auto* y, auto* z, int n) { return vornsMagnitude_16s_Sfs(x, y, z, n, extra); }); } }},
    {"vornsAbs_16s", [](Source& source, Digest& digest) { map<Vorn16s, Vorn16s>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsAbs_16s(x, y, n); }); }},
    {"vornsAbs_16s_I", [](Source& source, Digest& digest) { mapInPlace<Vorn16s>(source, digest, -1000, 1000, [=](auto* x, int n) { return vornsAbs_16s_I(x, n); }); }},
    {"vornsAbs_32s", [](Source& source, Digest& digest) { map<Vorn32s, Vorn32s>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsAbs_32s(x, y, n); }); }},
    {"vornsAbs_32s_I", [](Source& source, Digest& digest) { mapInPlace<Vorn32s>(source, digest, -1000, 1000, [=](auto* x, int n) { return vornsAbs_32s_I(x, n); }); }},
    {"vornsAbs_32f", [](Source& source, Digest& digest) { map<Vorn32f, Vorn32f>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsAbs_32f(x, y, n); }); }},
    {"vornsAbs_32f_I", [](Source& source, Digest& digest) { mapInPlace<Vorn32f>(source, digest, -1000, 1000, [=](auto* x, int n) { return vornsAbs_32f_I(x, n); }); }},
    {"vornsAbs_64f", [](Source& source, Digest& digest) { map<Vorn64f, Vorn64f>(source, digest, -1000, 1000, [=](auto* x, auto* y, int n) { return vornsAbs_64f(x, y, n); }); }},
    {"vornsAbs_64f_I", [](Source& source, Digest& digest) { mapInPlace<Vorn64f>(source, digest, -1000, 1000, [=](auto* x, int n) { return vornsAbs_64f_I(x, n); }); }},
};

}  // namespace

Family reductionWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
