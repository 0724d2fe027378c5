// Distances, and the sum of indexed rows.
#include <cmath>
#include <iterator>
#include <vector>

#include "families.h"

namespace verify {
namespace {

const int scaleFactors[] = {-31, -2, 0, 1, 9, 20, 47, 64};

// Values, and any bit pattern.
Array drawn(Source& source, Element element, std::size_t n, bool ordinary, double low, double high) {
    return ordinary ? source.values(element, n, low, high) : source.patterns(element, n);
}

// All vectors on 16 bytes, then one element behind them: some forms look at that.
void oneVector(const calls::Function& function, Source& source, Digest& digest) {
    const Element element = function.element(Role::src1);
    for (int len : lengths) {
        for (bool ordinary : {true, false}) {
            const auto n = static_cast<std::size_t>(len) + 1;
            const Array src = drawn(source, element, n, ordinary, -20, 20),
                        mean = drawn(source, element, n, ordinary, -20, 20),
                        var = drawn(source, element, n, ordinary, 0.01, 4);
            for (std::size_t place : {0, 1}) {
                for (int scaleFactor : scaleFactors) {
                    Array result(function.element(Role::result), 1);
                    calls::Arguments arguments;
                    arguments[Role::src1] = src.data(), arguments[Role::src2] = mean.at(place);
                    arguments[Role::var] = var.at(place), arguments[Role::result] = result.data();
                    arguments[Role::len] = len, arguments[Role::scaleFactor] = scaleFactor;
                    digest.add(function(arguments));
                    digest.add(result);
                    if (!function.has(Role::scaleFactor)) break;
                }
            }
        }
    }
}

void manyVectors(const calls::Function& function, Source& source, Digest& digest) {
    const Element element = function.element(Role::src1);
    for (int len : {1, 2, 3, 4, 5, 7, 8, 13, 26, 39, 40, 70}) {
        for (int height : {1, 2, 3, 4, 9, 1001}) {
            for (bool ordinary : {true, false}) {
                const int step = len + height % 3;
                const auto n = static_cast<std::size_t>(step) * static_cast<std::size_t>(height);
                const Array rows = drawn(source, element, n, ordinary, -20, 20),
                            rowVars = drawn(source, element, n, ordinary, 0.01, 4),
                            one = drawn(source, element, static_cast<std::size_t>(len), ordinary, -20, 20),
                            oneVar = drawn(source, element, static_cast<std::size_t>(len), ordinary, 0.01, 4);
                std::vector<const void*> list, varList;
                for (int r = 0; r < height; ++r) {
                    list.push_back(rows.at(static_cast<std::size_t>(r) * static_cast<std::size_t>(step)));
                    varList.push_back(rowVars.at(static_cast<std::size_t>(r) * static_cast<std::size_t>(step)));
                }
                Array result(element, static_cast<std::size_t>(height));
                calls::Arguments arguments;
                arguments[Role::rows] = rows.data(), arguments[Role::rowVars] = rowVars.data();
                arguments[Role::rowList] = list.data(), arguments[Role::rowVarList] = varList.data();
                arguments[Role::src1] = one.data(), arguments[Role::var] = oneVar.data();
                arguments[Role::dst] = result.data();
                arguments[Role::len] = len, arguments[Role::height] = height, arguments[Role::step] = step;
                digest.add(function(arguments));
                digest.add(result);
            }
        }
    }
}

Workload workload(const calls::Function& function) {
    return {function.name(), [=](Source& source, Digest& digest) {
                (function.has(Role::height) ? manyVectors : oneVector)(function, source, digest);
            }};
}

// Variances of ordinary size, then one of any size, then a zero and a negative value among the means.
template <class T, class Call>
Workload gaussians(const char* name, Call call) {
    return {name, [=](Source& source, Digest& digest) {
                for (int len : lengths) {
                    const auto n = static_cast<std::size_t>(len);
                    auto mean1 = source.values<float>(n, 0.1, 20), mean2 = source.values<float>(n, 0.1, 20),
                         var1 = source.values<float>(n, 0.01, 4), var2 = source.values<float>(n, 0.01, 4);
                    const auto add = [&] {
                        T result;
                        digest.add(call(mean1.data(), var1.data(), mean2.data(), var2.data(), len, &result));
                        digest.add(result);
                    };
                    add();
                    var1[n / 3] = std::fabs(source.patterns<float>(1)[0]);
                    add();
                    mean1[n / 2] = 0;
                    add();
                    mean2[n - 1] = -1;
                    add();
                }
            }};
}

void indexedRows(Source& source, Digest& digest) {
    constexpr int height = 23;
    for (int len : lengths) {
        for (int rows : {1, 2, 3, 7, 8, 20}) {
            const int offset = rows % 4, step = offset + len + rows % 3;
            const auto src = source.values<float>(static_cast<std::size_t>(step) * height, -9, 9);
            std::vector<Vorn32s> ind;
            std::vector<Vorn16u> addInd;
            for (int i = 0; i < rows; ++i) {
                addInd.push_back(static_cast<Vorn16u>(source.bits()));
                ind.push_back(static_cast<Vorn32s>(source.bits() % height) - addInd.back());
            }
            std::vector<float> dst(static_cast<std::size_t>(len));
            const auto add = [&] {
                digest.add(vornsAddNRows_32f_D2(src.data(), height, offset, step, ind.data(), addInd.data(), rows,
                                                dst.data(), len, 0.75f));
                digest.add(dst);
            };
            add();
            ind.back() = height - addInd.back();
            add();
        }
    }
}

#define ROW(function) workload({VORN_NAMED(function), calls::distanceShapes})
#define GAUSSIANS(T, function, ...)                                                                    \
    gaussians<T>(#function, [](auto* mean1, auto* var1, auto* mean2, auto* var2, int len, T* result) { \
        return function(mean1, var1, mean2, var2, len, result __VA_OPT__(, ) __VA_ARGS__);             \
    })

// clang-format off
const Workload workloads[] = {
    ROW(vornsMahDistSingle_32f),
    ROW(vornsMahDistSingle_64f),
    ROW(vornsMahDistSingle_32f64f),
    ROW(vornsMahDistSingle_16s32f),
    ROW(vornsMahDistSingle_16s32s_Sfs),
    ROW(vornsMahDist_32f_D2),
    ROW(vornsMahDist_64f_D2),
    ROW(vornsMahDist_32f_D2L),
    ROW(vornsMahDist_64f_D2L),
    ROW(vornsMahDistMultiMix_32f_D2),
    ROW(vornsMahDistMultiMix_64f_D2),
    ROW(vornsMahDistMultiMix_32f_D2L),
    ROW(vornsMahDistMultiMix_64f_D2L),
    GAUSSIANS(Vorn32f, vornsBhatDist_32f),
    GAUSSIANS(Vorn64f, vornsBhatDist_32f64f),
    GAUSSIANS(Vorn32f, vornsBhatDistSLog_32f, -3.5f, 12.25f),
    GAUSSIANS(Vorn64f, vornsBhatDistSLog_32f64f, -3.5f, 12.25f),
    {"vornsAddNRows_32f_D2", indexedRows},
};
// clang-format on

}  // namespace

Family distanceWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
