// Conversions between the element types.
#include <climits>
#include <iterator>
#include <limits>

#include "families.h"

namespace verify {
namespace {

// Ordinary values, any bit patterns, and floats on both sides of what an integer can hold.
template <class S, class Call>
void onEveryKindOfData(Source& source, Call call) {
    for (int len : lengths) {
        call(source.patterns<S>(static_cast<std::size_t>(len)), len);
        if constexpr (std::is_floating_point_v<S>) {
            call(source.values<S>(static_cast<std::size_t>(len), -40000.0, 70000.0), len);
        }
    }
    if constexpr (std::is_floating_point_v<S>) {
        using L = std::numeric_limits<S>;
        std::vector<S> hard;
        for (double x : {0.0, 0.5, 1.5, 2.5, 127.5, 255.5, 32767.5, 65519.0, 65520.0, 65535.5, 65536.0, 2147483647.5,
                         2147483648.0}) {
            hard.push_back(static_cast<S>(x));
        }
        for (S x : {L::infinity(), L::quiet_NaN(), L::max(), L::min(), L::denorm_min()}) hard.push_back(x);
        for (std::size_t i = 0, n = hard.size(); i < n; ++i) hard.push_back(-hard[i]);
        call(hard, static_cast<int>(hard.size()));
    }
}

template <class S, class D, class... More>
void run(VornStatus (*function)(const S*, D*, int, More...), Source& source, Digest& digest, More... more) {
    onEveryKindOfData<S>(source, [&](const std::vector<S>& src, int len) {
        std::vector<D> dst(src.size());
        digest.add(function(src.data(), dst.data(), len, more...));
        digest.add(dst);
    });
}

template <auto function>
void plain(Source& source, Digest& digest) {
    run(function, source, digest);
}

template <auto function>
void withScale(Source& source, Digest& digest) {
    for (int scale : {0, 1, 7, 16, 40, -3, -15, -130, INT_MAX, INT_MIN}) run(function, source, digest, scale);
}

template <auto function>
void withMode(Source& source, Digest& digest) {
    for (VornRoundMode mode : {vornRndZero, vornRndNear}) run(function, source, digest, mode);
}

template <auto function>
void withModeAndScale(Source& source, Digest& digest) {
    for (VornRoundMode mode : {vornRndZero, vornRndNear}) {
        for (int scale : {0, 3, 17, -4, -16, 150, -128}) run(function, source, digest, mode, scale);
    }
}

const Workload workloads[] = {
    {"vornsConvert_8s16s", plain<vornsConvert_8s16s>},
    {"vornsConvert_16s32s", plain<vornsConvert_16s32s>},
    {"vornsConvert_8s32f", plain<vornsConvert_8s32f>},
    {"vornsConvert_8u32f", plain<vornsConvert_8u32f>},
    {"vornsConvert_16s32f", plain<vornsConvert_16s32f>},
    {"vornsConvert_16u32f", plain<vornsConvert_16u32f>},
    {"vornsConvert_32s64f", plain<vornsConvert_32s64f>},
    {"vornsConvert_32f64f", plain<vornsConvert_32f64f>},
    {"vornsConvert_32s32f", plain<vornsConvert_32s32f>},
    {"vornsConvert_32s16s", plain<vornsConvert_32s16s>},
    {"vornsConvert_64f32f", plain<vornsConvert_64f32f>},
    {"vornsConvert_16s32f_Sfs", withScale<vornsConvert_16s32f_Sfs>},
    {"vornsConvert_16s64f_Sfs", withScale<vornsConvert_16s64f_Sfs>},
    {"vornsConvert_32s32f_Sfs", withScale<vornsConvert_32s32f_Sfs>},
    {"vornsConvert_32s64f_Sfs", withScale<vornsConvert_32s64f_Sfs>},
    {"vornsConvert_32s16s_Sfs", withScale<vornsConvert_32s16s_Sfs>},
    {"vornsConvert_32f8s_Sfs", withModeAndScale<vornsConvert_32f8s_Sfs>},
    {"vornsConvert_32f8u_Sfs", withModeAndScale<vornsConvert_32f8u_Sfs>},
    {"vornsConvert_32f16s_Sfs", withModeAndScale<vornsConvert_32f16s_Sfs>},
    {"vornsConvert_32f16u_Sfs", withModeAndScale<vornsConvert_32f16u_Sfs>},
    {"vornsConvert_32f32s_Sfs", withModeAndScale<vornsConvert_32f32s_Sfs>},
    {"vornsConvert_64f32s_Sfs", withModeAndScale<vornsConvert_64f32s_Sfs>},
    {"vornsConvert_16f16s_Sfs", withModeAndScale<vornsConvert_16f16s_Sfs>},
    {"vornsConvert_16s16f", withMode<vornsConvert_16s16f>},
    {"vornsConvert_32f16f", withMode<vornsConvert_32f16f>},
    {"vornsConvert_16f32f", plain<vornsConvert_16f32f>},
};

}  // namespace

Family convertWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
