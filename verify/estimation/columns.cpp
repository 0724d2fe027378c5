// Column statistics.
#include <iterator>

#include "calls/column_shapes.h"
#include "families.h"

namespace verify {
namespace {

struct Matrix {
    int height, width, step;
};
const Matrix matrices[] = {{2, 1, 1},     {3, 5, 7},      {17, 13, 13}, {40, 39, 40},
                           {100, 64, 64}, {57, 130, 131}, {700, 9, 9}};

// Ordinary frames, then any bit patterns, in one block; or in a list of rows that stand on 16 bytes, then one element
// off.
void columns(const calls::Function& function, Source& source, Digest& digest) {
    const bool isList = function.has(Role::rowList), two = function.has(Role::result);
    const Element element = function.element(isList ? Role::rowList : Role::rows);
    for (const Matrix& matrix : matrices) {
        const std::size_t step =
            isList ? (static_cast<std::size_t>(matrix.step) + 31) / 16 * 16 : static_cast<std::size_t>(matrix.step);
        const std::size_t count = static_cast<std::size_t>(matrix.height) * step;
        for (bool hard : {false, true}) {
            const auto made = [&](Element of, std::size_t n, double low, double high) {
                return hard ? source.patterns(of, n) : source.values(of, n, low, high);
            };
            const Array src = made(element, count, -1000.0, 1000.0);
            Array weight(Element::u8, 0), mean(Element::u8, 0);
            if (function.has(Role::vals)) {
                weight = made(element, static_cast<std::size_t>(matrix.height), 0.0, 0.1);
            }
            if (function.has(Role::src1)) {
                mean = made(function.element(Role::src1), static_cast<std::size_t>(matrix.width), -10.0, 10.0);
            }
            for (std::size_t off : {0, 1}) {
                if (off != 0 && !isList) continue;
                std::vector<const void*> rows;
                for (int i = 0; i < matrix.height; ++i) {
                    rows.push_back(src.at(static_cast<std::size_t>(i) * step + off));
                }
                Array dst(function.element(Role::dst), static_cast<std::size_t>(matrix.width));
                Array result(two ? function.element(Role::result) : Element::u8,
                             two ? static_cast<std::size_t>(matrix.width) : 0);
                calls::Arguments arguments;
                arguments[Role::rows] = src.data();
                arguments[Role::rowList] = rows.data();
                arguments[Role::step] = matrix.step;
                arguments[Role::height] = matrix.height;
                arguments[Role::len] = matrix.width;
                arguments[Role::vals] = weight.data();
                arguments[Role::src1] = mean.data();
                arguments[Role::dst] = dst.data();
                arguments[Role::result] = result.data();
                for (int scaleFactor : {0, 13, -3}) {
                    if (scaleFactor != 0 && !function.has(Role::scaleFactor)) continue;
                    arguments[Role::scaleFactor] = scaleFactor;
                    digest.add(function(arguments));
                    digest.add(dst);
                    if (two) digest.add(result);
                }
            }
        }
    }
}

#define ROW(function)                                                                                               \
    {                                                                                                               \
#function,                                                                                                  \
            [](Source & source,                                                                                     \
               Digest &                                                                                             \
                   digest) { columns(calls::Function(VORN_NAMED(function), calls::columnShapes), source, digest); } \
    }

const Workload workloads[] = {
    ROW(vornsMeanColumn_32f_D2),
    ROW(vornsMeanColumn_32f_D2L),
    ROW(vornsMeanColumn_16s_D2),
    ROW(vornsMeanColumn_16s_D2L),
    ROW(vornsVarColumn_32f_D2),
    ROW(vornsVarColumn_32f_D2L),
    ROW(vornsVarColumn_16s_D2Sfs),
    ROW(vornsVarColumn_16s_D2LSfs),
    ROW(vornsMeanVarColumn_32f_D2),
    ROW(vornsMeanVarColumn_32f_D2L),
    ROW(vornsMeanVarColumn_16s_D2Sfs),
    ROW(vornsMeanVarColumn_16s_D2LSfs),
    ROW(vornsMeanVarColumn_16s32s_D2Sfs),
    ROW(vornsMeanVarColumn_16s32s_D2LSfs),
    ROW(vornsMeanVarColumn_16s16s32s_D2),
    ROW(vornsMeanVarColumn_16s16s32s_D2L),
    ROW(vornsWeightedMeanColumn_32f_D2),
    ROW(vornsWeightedMeanColumn_32f_D2L),
    ROW(vornsWeightedVarColumn_32f_D2),
    ROW(vornsWeightedVarColumn_32f_D2L),
    ROW(vornsWeightedMeanVarColumn_32f_D2),
    ROW(vornsWeightedMeanVarColumn_32f_D2L),
    ROW(vornsWeightedMeanColumn_64f_D2),
    ROW(vornsWeightedMeanColumn_64f_D2L),
    ROW(vornsWeightedVarColumn_64f_D2),
    ROW(vornsWeightedVarColumn_64f_D2L),
    ROW(vornsWeightedMeanVarColumn_64f_D2),
    ROW(vornsWeightedMeanVarColumn_64f_D2L),
};

}  // namespace

Family columnWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
