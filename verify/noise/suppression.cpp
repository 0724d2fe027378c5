// Noise suppression gains.
#include <algorithm>
#include <bit>
#include <iterator>
#include <type_traits>

#include "families.h"

namespace verify {
namespace {

// Numbers spread over the octaves from 2^low on: of singles, or of integers in a format whose 1 is given.
template <class T>
std::vector<T> octaves(Source& source, int len, int low, int high, double one) {
    std::vector<T> values(static_cast<std::size_t>(len));
    for (T& x : values) {
        const auto exponent = low + static_cast<int>(source.bits() % static_cast<unsigned>(high - low));
        const double number = source.uniform(1.0, 2.0) * std::bit_cast<double>((exponent + 1023LL) << 52);
        x = static_cast<T>(number * one);
    }
    return values;
}

template <class T, auto wiener>
void wieners(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (auto src : {octaves<T>(source, len, -14, 12, std::is_integral_v<T> ? 32768.0 : 1.0),
                         source.patterns<T>(static_cast<std::size_t>(len))}) {
            std::vector<T> dst(src.size());
            digest.add(wiener(src.data(), dst.data(), len));
            digest.add(dst);
        }
    }
}

template <class T, auto gain>
void gains(Source& source, Digest& digest) {
    for (int len : lengths) {
        auto w = octaves<T>(source, len, -30, 0, std::is_integral_v<T> ? 2147483648.0 : 1.0);
        auto snr = octaves<T>(source, len, -14, 14, std::is_integral_v<T> ? 32768.0 : 1.0);
        w[static_cast<std::size_t>(len) / 2] = 0;
        for (bool allowed : {true, false}) {
            if (!allowed) snr[static_cast<std::size_t>(len) - 1] = 0;
            std::vector<T> dst(w.size());
            digest.add(gain(w.data(), snr.data(), dst.data(), len));
            digest.add(dst);
        }
    }
}

const Workload workloads[] = {
    {"vornsFilterUpdateWiener_32f", wieners<Vorn32f, vornsFilterUpdateWiener_32f>},
    {"vornsFilterUpdateWiener_32s", wieners<Vorn32s, vornsFilterUpdateWiener_32s>},
    {"vornsFilterUpdateEMNS_32f", gains<Vorn32f, vornsFilterUpdateEMNS_32f>},
    {"vornsFilterUpdateEMNS_32s", gains<Vorn32s, vornsFilterUpdateEMNS_32s>},
};

}  // namespace

Family suppressionWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
