// Features of reflection coefficients beside plain loops.
#include "features/common.h"
#include "plain/reflection.h"

namespace {

using namespace bench::features;

// Coefficients in opposite pairs: their running product comes back to 1 instead of leaving the normal numbers.
template <class T>
std::shared_ptr<T[]> oppositePairs(std::size_t len, double most) {
    auto k = signal<T>(len, -most, most);
    for (std::size_t i = 1; i < len; i += 2) k[i] = static_cast<T>(-k[i - 1]);
    return k;
}

void addSingles(int len) {
    const auto n = static_cast<std::size_t>(len);
    const auto a = oppositePairs<float>(n, 0.9), b = signal<float>(n + 1, -0.9, 0.9), dst = bench::buffer<float>(n);
    const std::string size = std::to_string(len);
    compare("vornsReflectionToAR_32f", size, len, dst,
            {{bench::ours, [=] { vornsReflectionToAR_32f(a.get(), dst.get(), len); }},
             {"plain", [=] { plain::areaRatios(a.get(), dst.get(), len); }}});
    compare("vornsReflectionToTrueAR_32f", size, len, dst,
            {{bench::ours, [=] { vornsReflectionToTrueAR_32f(a.get(), dst.get(), len); }},
             {"plain", [=] { plain::runningAreaRatios(a.get(), dst.get(), len); }}});
    compare("vornsReflectionToLAR_32f", size, len, dst,
            {{bench::ours, [=] { vornsReflectionToLAR_32f(a.get(), dst.get(), len, 0.99f); }},
             {"plain", [=] { plain::logAreaRatios(a.get(), dst.get(), len, 0.99f); }}});
    compare("vornsReflectionToTilt_32f", size, len, dst,
            {{bench::ours, [=] { vornsReflectionToTilt_32f(a.get(), b.get(), dst.get(), len); }},
             {"plain", [=] { plain::tilts(a.get(), b.get(), dst.get(), len); }}});
    compare("vornsReflectionToAbsTilt_32f", size, len, dst,
            {{bench::ours, [=] { vornsReflectionToAbsTilt_32f(a.get(), b.get(), dst.get(), len); }},
             {"plain", [=] { plain::absTilts(a.get(), b.get(), dst.get(), len); }}});
}

void addIntegers(int len) {
    const auto n = static_cast<std::size_t>(len);
    const auto a = oppositePairs<std::int16_t>(n, 30000), b = signal<std::int16_t>(n + 1, -30000, 30000),
               dst = bench::buffer<std::int16_t>(n);
    const std::string size = std::to_string(len);
    compare("vornsReflectionToAR_16s_Sfs", size, len, dst,
            {{bench::ours, [=] { vornsReflectionToAR_16s_Sfs(a.get(), -15, dst.get(), len, -10); }},
             {"plain", [=] { plain::areaRatios(a.get(), -15, dst.get(), len, -10); }}});
    compare("vornsReflectionToTrueAR_16s_Sfs", size, len, dst,
            {{bench::ours, [=] { vornsReflectionToTrueAR_16s_Sfs(a.get(), -15, dst.get(), len, -10); }},
             {"plain", [=] { plain::runningAreaRatios(a.get(), -15, dst.get(), len, -10); }}});
    compare("vornsReflectionToLAR_16s_Sfs", size, len, dst,
            {{bench::ours, [=] { vornsReflectionToLAR_16s_Sfs(a.get(), 15, dst.get(), len, -12, 0.99f); }},
             {"plain", [=] { plain::logAreaRatios(a.get(), -15, dst.get(), len, -12, 0.99f); }}});
    compare("vornsReflectionToTilt_16s_Sfs", size, len, dst,
            {{bench::ours, [=] { vornsReflectionToTilt_16s_Sfs(a.get(), b.get(), dst.get(), len, -14); }},
             {"plain", [=] { plain::tilts(a.get(), b.get(), dst.get(), len, -14); }}});
    compare("vornsReflectionToAbsTilt_16s_Sfs", size, len, dst,
            {{bench::ours, [=] { vornsReflectionToAbsTilt_16s_Sfs(a.get(), b.get(), dst.get(), len, -14); }},
             {"plain", [=] { plain::absTilts(a.get(), b.get(), dst.get(), len, -14); }}});
}

const bench::Family features([] {
    for (int len : {12, 1000, 100000, 16000000}) {
        addSingles(len);
        addIntegers(len);
    }
});

}  // namespace
