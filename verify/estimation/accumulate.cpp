// Accumulators.
#include <algorithm>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

// ---- Element by element.

template <class T, class Call>
auto deviations(const Call& call) {
    return [=](Source& source, Digest& digest) {
        for (int len : lengths) {
            for (bool hard : {false, true}) {
                const auto of = [&] { return hard ? source.patterns<T>(len) : source.values<T>(len); };
                const auto src = of(), mean = of();
                auto meanAcc = of(), varAcc = of();
                digest.add(call(src.data(), mean.data(), meanAcc.data(), varAcc.data(), len, T(0.3)));
                digest.add(meanAcc);
                digest.add(varAcc);
            }
        }
    };
}

// dst holds the sums of squares as well.
template <class Call>
auto variances(const Call& call) {
    return [=](Source& source, Digest& digest) {
        for (int len : lengths) {
            for (bool hard : {false, true}) {
                const auto mean = hard ? source.patterns<Vorn32f>(len) : source.values<Vorn32f>(len, -10, 30);
                const auto sumSq = hard ? source.patterns<Vorn32f>(len) : source.values<Vorn32f>(len, 0, 1e5);
                auto dst = sumSq;
                digest.add(call(mean.data(), sumSq.data(), dst.data(), len, 57.0f, 0.03f));
                digest.add(dst);
            }
        }
    };
}

// The address chooses the rounding: on a 16-byte address and behind it.
template <class Call>
auto integerVariances(const Call& call) {
    return [=](Source& source, Digest& digest) {
        for (int scaleFactor : {-200, -31, -5, 0, 1, 8, 40, 200}) {
            for (int len : {1, 5, 39, 200}) {
                for (int at : {0, 1}) {
                    const auto sumSq = source.values<Vorn32s>(len + 4);
                    auto mean = source.values<Vorn32s>(len + 4);
                    for (Vorn32s& x : mean) x >>= 18;
                    alignas(16) Vorn32s m[208], s[208], dst[208];
                    std::copy(mean.begin(), mean.end(), m);
                    std::copy(sumSq.begin(), sumSq.end(), s);
                    std::copy(sumSq.begin(), sumSq.end(), dst);
                    digest.add(call(m + at, s + at, dst + at, len, scaleFactor, 57.0f, 0.03f));
                    for (int i = 0; i < len; ++i) digest.add(dst[at + i]);
                }
            }
        }
    };
}

// ---- Over rows.

struct MatrixShape {
    int height, width, step;
};
const MatrixShape shapes[] = {{1, 1, 1},    {3, 2, 5},    {8, 3, 3},      {5, 7, 7},      {17, 13, 13},
                              {40, 39, 40}, {33, 64, 64}, {57, 130, 131}, {21, 256, 256}, {1101, 33, 33}};

template <class T, class Sum, class Call>
auto sums(const Call& call) {
    return [=](Source& source, Digest& digest) {
        for (int scaleFactor : {0, 1, -9, 40}) {
            for (const MatrixShape& shape : shapes) {
                for (bool hard : {false, true}) {
                    const std::size_t size = static_cast<std::size_t>(shape.height) * shape.step;
                    const auto src = hard ? source.patterns<T>(size) : source.values<T>(size);
                    auto sum = source.values<Sum>(shape.width), sumSq = source.values<Sum>(shape.width);
                    digest.add(
                        call(src.data(), shape.step, shape.height, sum.data(), sumSq.data(), shape.width, scaleFactor));
                    digest.add(sum);
                    digest.add(sumSq);
                }
            }
        }
    };
}

// ---- Covariance. Small matrices, and large ones on 16-byte addresses, which are added frame by frame.

const MatrixShape covarianceShapes[] = {{1, 1, 1},    {3, 2, 5},      {8, 3, 3},      {17, 13, 13},   {40, 39, 40},
                                        {33, 70, 71}, {21, 130, 130}, {7000, 39, 40}, {17000, 13, 16}};

template <class T, class Call>
auto covariance(const Call& call) {
    return [=](Source& source, Digest& digest) {
        for (const MatrixShape& shape : covarianceShapes) {
            const bool large = shape.height > 1000;
            for (bool hard : {false, true}) {
                if (hard && large) continue;
                const std::size_t size = static_cast<std::size_t>(shape.height) * shape.step;
                const std::size_t square = static_cast<std::size_t>(shape.width) * shape.step;
                const auto src = hard ? source.patterns<T>(size) : source.values<T>(size);
                const auto mean = hard ? source.patterns<T>(shape.width) : source.values<T>(shape.width);
                for (double val : {0.3, 0.5}) {
                    auto dst = hard ? source.patterns<Vorn64f>(square) : source.values<Vorn64f>(square);
                    std::vector<const T*> rows;
                    std::vector<Vorn64f*> dstRows;
                    for (int f = 0; f < shape.height; ++f) {
                        rows.push_back(&src[static_cast<std::size_t>(f) * shape.step]);
                    }
                    for (int i = 0; i < shape.width; ++i) {
                        dstRows.push_back(&dst[static_cast<std::size_t>(i) * shape.step]);
                    }
                    digest.add(
                        call(rows.data(), shape.step, shape.height, mean.data(), dstRows.data(), shape.width, val));
                    digest.add(dst);
                }
            }
        }
    };
}

const Workload workloads[] = {
    {"vornsMeanVarAcc_32f", deviations<Vorn32f>(vornsMeanVarAcc_32f)},
    {"vornsMeanVarAcc_64f", deviations<Vorn64f>(vornsMeanVarAcc_64f)},
    {"vornsSumMeanVar_32f",
     sums<Vorn32f, Vorn32f>([](const Vorn32f* src, int step, int height, Vorn32f* sum, Vorn32f* sumSq, int width, int) {
         return vornsSumMeanVar_32f(src, step, height, sum, sumSq, width);
     })},
    {"vornsSumMeanVar_32f_I",
     sums<Vorn32f, Vorn32f>([](const Vorn32f* src, int step, int height, Vorn32f* sum, Vorn32f* sumSq, int width, int) {
         return vornsSumMeanVar_32f_I(src, step, height, sum, sumSq, width);
     })},
    {"vornsSumMeanVar_16s32f",
     sums<Vorn16s, Vorn32f>([](const Vorn16s* src, int step, int height, Vorn32f* sum, Vorn32f* sumSq, int width, int) {
         return vornsSumMeanVar_16s32f(src, step, height, sum, sumSq, width);
     })},
    {"vornsSumMeanVar_16s32f_I",
     sums<Vorn16s, Vorn32f>([](const Vorn16s* src, int step, int height, Vorn32f* sum, Vorn32f* sumSq, int width, int) {
         return vornsSumMeanVar_16s32f_I(src, step, height, sum, sumSq, width);
     })},
    {"vornsSumMeanVar_16s32s_Sfs", sums<Vorn16s, Vorn32s>(vornsSumMeanVar_16s32s_Sfs)},
    {"vornsSumMeanVar_16s32s_ISfs", sums<Vorn16s, Vorn32s>(vornsSumMeanVar_16s32s_ISfs)},
    {"vornsNewVar_32f", variances(vornsNewVar_32f)},
    {"vornsNewVar_32f_I", variances([](const Vorn32f* mean, const Vorn32f*, Vorn32f* dst, int len, Vorn32f val1,
                                       Vorn32f val2) { return vornsNewVar_32f_I(mean, dst, len, val1, val2); })},
    {"vornsNewVar_32s_Sfs", integerVariances(vornsNewVar_32s_Sfs)},
    {"vornsNewVar_32s_ISfs",
     integerVariances([](const Vorn32s* mean, const Vorn32s*, Vorn32s* dst, int len, int scaleFactor, Vorn32f val1,
                         Vorn32f val2) { return vornsNewVar_32s_ISfs(mean, dst, len, scaleFactor, val1, val2); })},
    {"vornsAccCovarianceMatrix_32f64f_D2",
     covariance<Vorn32f>([](const Vorn32f* const* src, int step, int height, const Vorn32f* mean, Vorn64f* const* dst,
                            int width, Vorn64f val) {
         return vornsAccCovarianceMatrix_32f64f_D2(src[0], step, height, mean, dst[0], width, step, val);
     })},
    {"vornsAccCovarianceMatrix_32f64f_D2L",
     covariance<Vorn32f>(
         [](const Vorn32f* const* src, int, int height, const Vorn32f* mean, Vorn64f* const* dst, int width,
            Vorn64f val) { return vornsAccCovarianceMatrix_32f64f_D2L(src, height, mean, dst, width, val); })},
    {"vornsAccCovarianceMatrix_16s64f_D2",
     covariance<Vorn16s>([](const Vorn16s* const* src, int step, int height, const Vorn16s* mean, Vorn64f* const* dst,
                            int width, Vorn64f val) {
         return vornsAccCovarianceMatrix_16s64f_D2(src[0], step, height, mean, dst[0], width, step, val);
     })},
    {"vornsAccCovarianceMatrix_16s64f_D2L",
     covariance<Vorn16s>(
         [](const Vorn16s* const* src, int, int height, const Vorn16s* mean, Vorn64f* const* dst, int width,
            Vorn64f val) { return vornsAccCovarianceMatrix_16s64f_D2L(src, height, mean, dst, width, val); })},
};

}  // namespace

Family accumulatorWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
