// Conversions between the element types.
#include <climits>
#include <iterator>
#include <limits>

#include "families.h"

namespace verify {
namespace {

// Floats on both sides of what an integer can hold.
Array hardFloats(Element element) {
    Array result(element, 36);
    std::size_t i = 0;
    result.eachPart([&]<class S>(S& x) {
        using L = std::numeric_limits<S>;
        constexpr double borders[] = {0.0,     0.5,     1.5,     2.5,     127.5,        255.5,       32767.5,
                                      65519.0, 65520.0, 65535.5, 65536.0, 2147483647.5, 2147483648.0};
        const S others[] = {L::infinity(), L::quiet_NaN(), L::max(), L::min(), L::denorm_min()};
        const std::size_t k = i % 18;
        x = k < 13 ? static_cast<S>(borders[k]) : others[k - 13];
        if (i++ >= 18) x = static_cast<S>(-x);
    });
    return result;
}

// Any bit patterns and, of floats, ordinary values and hard ones.
void onEveryKindOfData(Source& source, Digest& digest, const calls::Function& function, int mode, int scale) {
    const auto call = [&](const Array& src) {
        Array dst(function.element(Role::dst), src.size());
        calls::Arguments arguments;
        arguments[Role::src1] = src.data(), arguments[Role::dst] = dst.data();
        arguments[Role::len] = static_cast<int>(src.size());
        arguments[Role::mode] = mode, arguments[Role::scaleFactor] = scale;
        digest.add(function(arguments));
        digest.add(dst);
    };
    const Element element = function.element(Role::src1);
    for (int len : lengths) {
        call(source.patterns(element, static_cast<std::size_t>(len)));
        if (calls::isFloat(element)) call(source.values(element, static_cast<std::size_t>(len), -40000.0, 70000.0));
    }
    if (calls::isFloat(element)) call(hardFloats(element));
}

// With every rounding mode and scale factor that the function takes.
Workload workload(const calls::Function& function) {
    return {function.name(), [=](Source& source, Digest& digest) {
                const bool moded = function.has(Role::mode), scaled = function.has(Role::scaleFactor);
                for (int mode : moded ? std::vector<int>{vornRndZero, vornRndNear} : std::vector{0}) {
                    const auto scales = !scaled ? std::vector{0}
                                        : moded ? std::vector{0, 3, 17, -4, -16, 150, -128}
                                                : std::vector{0, 1, 7, 16, 40, -3, -15, -130, INT_MAX, INT_MIN};
                    for (int scale : scales) onEveryKindOfData(source, digest, function, mode, scale);
                }
            }};
}

#define ROW(function) workload({VORN_NAMED(function), calls::conversionShapes})

// clang-format off
const Workload workloads[] = {
    ROW(vornsConvert_8s16s),
    ROW(vornsConvert_16s32s),
    ROW(vornsConvert_8s32f),
    ROW(vornsConvert_8u32f),
    ROW(vornsConvert_16s32f),
    ROW(vornsConvert_16u32f),
    ROW(vornsConvert_32s64f),
    ROW(vornsConvert_32f64f),
    ROW(vornsConvert_32s32f),
    ROW(vornsConvert_32s16s),
    ROW(vornsConvert_64f32f),
    ROW(vornsConvert_16s32f_Sfs),
    ROW(vornsConvert_16s64f_Sfs),
    ROW(vornsConvert_32s32f_Sfs),
    ROW(vornsConvert_32s64f_Sfs),
    ROW(vornsConvert_32s16s_Sfs),
    ROW(vornsConvert_32f8s_Sfs),
    ROW(vornsConvert_32f8u_Sfs),
    ROW(vornsConvert_32f16s_Sfs),
    ROW(vornsConvert_32f16u_Sfs),
    ROW(vornsConvert_32f32s_Sfs),
    ROW(vornsConvert_64f32s_Sfs),
    ROW(vornsConvert_16f16s_Sfs),
    ROW(vornsConvert_16s16f),
    ROW(vornsConvert_32f16f),
    ROW(vornsConvert_16f32f),
};
// clang-format on

}  // namespace

Family convertWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
