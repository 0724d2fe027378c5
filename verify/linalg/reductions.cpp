// Row and column reductions, normalisations and range mappings.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

struct MatrixShape {
    int height, width, step;
};
const MatrixShape shapes[] = {{1, 1, 1},   {3, 2, 5},      {8, 3, 3},      {5, 7, 7},     {17, 13, 13},  {40, 39, 40},
                              {9, 64, 64}, {57, 130, 131}, {21, 256, 256}, {7, 600, 601}, {1100, 33, 33}};

// Ordinary frames, then any bit patterns. use(block, rows, shape).
template <class T, class Use>
void overMatrices(Source& source, const Use& use) {
    for (const MatrixShape& shape : shapes) {
        for (bool hard : {false, true}) {
            const std::size_t size = static_cast<std::size_t>(shape.height) * shape.step;
            auto block = hard ? source.patterns<T>(size) : source.values<T>(size);
            std::vector<T*> rows;
            for (int i = 0; i < shape.height; ++i) rows.push_back(&block[static_cast<std::size_t>(i) * shape.step]);
            use(block, rows.data(), shape);
        }
    }
}

// Sums: ofColumns says how many results there are, call(src, rows, shape, dst) makes them.
template <class T, class Result, class Call>
auto sums(bool ofColumns, const Call& call) {
    return [=](Source& source, Digest& digest) {
        overMatrices<T>(source, [&](const std::vector<T>& block, T* const* rows, const MatrixShape& shape) {
            std::vector<Result> dst(ofColumns ? shape.width : shape.height, Result(3));
            digest.add(call(block.data(), rows, shape, dst.data()));
            digest.add(dst);
        });
    };
}
#define SUM(function, T, Result, ofColumns, ...)                                                        \
    {                                                                                                   \
#function, sums < T,                                                                            \
            Result>(ofColumns, []([[maybe_unused]] const T* src, [[maybe_unused]] T* const* rows,       \
                                  const MatrixShape& s, Result* dst) { return function(__VA_ARGS__); }) \
    }
#define SUMS(code, T, Result)                                                                \
    SUM(vornsSumColumn_##code##_D2, T, Result, true, src, s.step, s.height, dst, s.width),   \
        SUM(vornsSumColumn_##code##_D2L, T, Result, true, rows, s.height, dst, s.width),     \
        SUM(vornsSumRow_##code##_D2, T, Result, false, src, s.width, s.step, dst, s.height), \
        SUM(vornsSumRow_##code##_D2L, T, Result, false, rows, s.width, dst, s.height)

const int sumScales[] = {-200, -31, -8, -1, 0, 1, 5, 24, 200};
// Sums as integers: the scale factors in turn.
template <class Call>
auto integerSums(bool ofColumns, const Call& call) {
    return [=](Source& source, Digest& digest) {
        overMatrices<Vorn16s>(source,
                              [&](const std::vector<Vorn16s>& block, Vorn16s* const* rows, const MatrixShape& shape) {
                                  for (int scaleFactor : sumScales) {
                                      std::vector<Vorn32s> dst(ofColumns ? shape.width : shape.height);
                                      digest.add(call(block.data(), rows, shape, dst.data(), scaleFactor));
                                      digest.add(dst);
                                  }
                              });
    };
}
#define INTEGER_SUM(function, ofColumns, ...)                                                                     \
    {                                                                                                             \
#function,                                                                                                \
            integerSums(ofColumns, []([[maybe_unused]] const Vorn16s* src, [[maybe_unused]] Vorn16s* const* rows, \
                                      const MatrixShape& s, Vorn32s* dst,                                         \
                                      int scaleFactor) { return function(__VA_ARGS__, scaleFactor); })            \
    }

// Updates: two vectors of numbers of the columns, and a scale factor that not all take.
template <class T, class Call>
auto updates(const Call& call) {
    return [=](Source& source, Digest& digest) {
        for (int scaleFactor : {-40, -17, -3, 0, 7, 16, 40}) {
            overMatrices<T>(source, [&](std::vector<T>& block, T* const* rows, const MatrixShape& shape) {
                const auto first = source.values<T>(shape.width), scale = source.values<T>(shape.width, 0.1, 2);
                digest.add(call(block.data(), rows, shape, first.data(), scale.data(), scaleFactor));
                digest.add(block);
            });
        }
    };
}
#define UPDATE(function, T, ...)                                                                                      \
    {                                                                                                                 \
#function, updates < T>([]([[maybe_unused]] T* srcDst, [[maybe_unused]] T* const* rows, const MatrixShape& s, \
                                   const T* first, [[maybe_unused]] const T* scale,                                   \
                                   [[maybe_unused]] int scaleFactor) { return function(__VA_ARGS__); })               \
    }

// Mappings: bounds, range and fractions; in place the results are the elements.
struct Bounds {
    double min, max;
    int range;
    float lower, upper;
};
const Bounds bounds[] = {{-600, 700, 1, 0.1f, 0.9f},      {-20000, 30000, 255, 0, 1},   {-900, -100, 1000, 0.25f, 0.5f},
                         {-32768, 32767, 32767, 0, 0.3f}, {0, 1, 2147483647, 0.01f, 1}, {5, 5, 10, 0, 1}};

template <class T, class Result, class Call>
auto mappings(const Call& call) {
    return [=](Source& source, Digest& digest) {
        for (int len : lengths) {
            for (const Bounds& b : bounds) {
                for (bool hard : {false, true}) {
                    auto src = hard ? source.patterns<T>(len) : source.values<T>(len);
                    std::vector<Result> dst(len);
                    digest.add(call(src.data(), dst.data(), len, b));
                    digest.add(src);
                    digest.add(dst);
                }
            }
        }
    };
}
#define MAPPING(function, T, Result, ...)                                                                        \
    {                                                                                                            \
#function, mappings < T, Result>([](T* src, [[maybe_unused]] Result* dst, int len, const Bounds& b) {    \
            [[maybe_unused]] const auto min =                                                                    \
                static_cast<std::conditional_t<std::is_integral_v<T>, int, float>>(b.min);                       \
            [[maybe_unused]] const auto max =                                                                    \
                static_cast<std::conditional_t<std::is_integral_v<T>, int, float>>(b.max);                       \
            const auto range = static_cast<std::conditional_t<std::is_integral_v<Result>, int, float>>(b.range); \
            return function(__VA_ARGS__);                                                                        \
        })                                                                                                       \
    }
#define FRACTIONS b.lower, b.upper

const Workload workloads[] = {
    SUMS(32f, Vorn32f, Vorn32f),
    SUMS(64f, Vorn64f, Vorn64f),
    SUMS(16s32f, Vorn16s, Vorn32f),
    SUM(vornsAddAllRowSum_32f_D2, Vorn32f, Vorn32f, true, src, s.step, s.height, dst, s.width),
    SUM(vornsAddAllRowSum_32f_D2L, Vorn32f, Vorn32f, true, rows, s.height, dst, s.width),
    INTEGER_SUM(vornsSumColumn_16s32s_D2Sfs, true, src, s.step, s.height, dst, s.width),
    INTEGER_SUM(vornsSumColumn_16s32s_D2LSfs, true, rows, s.height, dst, s.width),
    INTEGER_SUM(vornsSumRow_16s32s_D2Sfs, false, src, s.width, s.step, dst, s.height),
    INTEGER_SUM(vornsSumRow_16s32s_D2LSfs, false, rows, s.width, dst, s.height),
    UPDATE(vornsSubRow_32f_D2, Vorn32f, first, s.width, srcDst, s.step, s.height),
    UPDATE(vornsSubRow_32f_D2L, Vorn32f, first, rows, s.width, s.height),
    UPDATE(vornsSubRow_16s_D2, Vorn16s, first, s.width, srcDst, s.step, s.height),
    UPDATE(vornsSubRow_16s_D2L, Vorn16s, first, rows, s.width, s.height),
    UPDATE(vornsNormalizeColumn_32f_D2, Vorn32f, srcDst, s.step, s.height, first, scale, s.width),
    UPDATE(vornsNormalizeColumn_32f_D2L, Vorn32f, rows, s.height, first, scale, s.width),
    UPDATE(vornsNormalizeColumn_16s_D2Sfs, Vorn16s, srcDst, s.step, s.height, first, scale, s.width, scaleFactor),
    UPDATE(vornsNormalizeColumn_16s_D2LSfs, Vorn16s, rows, s.height, first, scale, s.width, scaleFactor),
    MAPPING(vornsNormalizeInRange_32f, Vorn32f, Vorn32f, src, dst, len, FRACTIONS, range),
    MAPPING(vornsNormalizeInRange_32f_I, Vorn32f, Vorn32f, src, len, FRACTIONS, range),
    MAPPING(vornsNormalizeInRange_16s, Vorn16s, Vorn16s, src, dst, len, range, FRACTIONS),
    MAPPING(vornsNormalizeInRange_16s_I, Vorn16s, Vorn16s, src, len, range, FRACTIONS),
    MAPPING(vornsNormalizeInRange_16s8u, Vorn16s, Vorn8u, src, dst, len, range, FRACTIONS),
    MAPPING(vornsNormalizeInRange_32f16s, Vorn32f, Vorn16s, src, dst, len, range, FRACTIONS),
    MAPPING(vornsNormalizeInRange_32f8u, Vorn32f, Vorn8u, src, dst, len, range, FRACTIONS),
    MAPPING(vornsNormalizeInRangeMinMax_32f, Vorn32f, Vorn32f, src, dst, len, min, max, FRACTIONS, range),
    MAPPING(vornsNormalizeInRangeMinMax_32f_I, Vorn32f, Vorn32f, src, len, min, max, FRACTIONS, range),
    MAPPING(vornsNormalizeInRangeMinMax_16s, Vorn16s, Vorn16s, src, dst, len, min, max, range, FRACTIONS),
    MAPPING(vornsNormalizeInRangeMinMax_16s_I, Vorn16s, Vorn16s, src, len, min, max, range, FRACTIONS),
    MAPPING(vornsNormalizeInRangeMinMax_16s8u, Vorn16s, Vorn8u, src, dst, len, min, max, range, FRACTIONS),
    MAPPING(vornsNormalizeInRangeMinMax_32f16s, Vorn32f, Vorn16s, src, dst, len, range, min, max, FRACTIONS),
    MAPPING(vornsNormalizeInRangeMinMax_32f8u, Vorn32f, Vorn8u, src, dst, len, range, min, max, FRACTIONS),
};

}  // namespace

Family rowReductionWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
