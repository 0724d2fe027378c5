// Representations of a prediction filter.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

constexpr int orders[] = {1, 2, 3, 4, 5, 7, 8, 10, 11, 12, 15, 16, 17, 21, 22, 23, 30, 64, 65, 100};

// Ordinary coefficients, and any bits.
template <auto convert>
void singles(Source& source, Digest& digest) {
    for (int n : orders) {
        for (bool hard : {false, true}) {
            const double size = n > 30 ? 0.02 : 0.7;
            const auto src = hard ? source.patterns<Vorn32f>(n) : source.values<Vorn32f>(n, -size, size);
            std::vector<Vorn32f> dst(n);
            digest.add(convert(src.data(), dst.data(), n));
            digest.add(dst);
        }
    }
}

template <auto convert>
void shorts(Source& source, Digest& digest) {
    for (int n : orders) {
        for (int scale : {-200, -15, -12, -1, 0, 3, 130}) {
            const auto src = source.values<Vorn16s>(n);
            std::vector<Vorn16s> dst(n);
            digest.add(convert(src.data(), dst.data(), n, scale));
            digest.add(dst);
        }
    }
}

// Descending, within the limits.
template <class T>
std::vector<T> lines(Source& source, int order, double one) {
    std::vector<T> x(order);
    double place = 1.0;
    for (T& line : x) {
        place -= 2.0 / (order + 1) * source.uniform(0.3, 1.0);
        line = static_cast<T>(one * place);
    }
    return x;
}

// Filters with known lines, of small coefficients, and of any bits.
void search(Source& source, Digest& digest) {
    for (int order : orders) {
        for (int nGrid : {order, order + 3, 60, 128, 200}) {
            for (int nDiv : {1, 4, 7}) {
                for (int kind : {0, 1, 2}) {
                    auto a = kind == 2 ? source.patterns<Vorn32f>(order) : source.values<Vorn32f>(order, -0.3, 0.3);
                    if (kind == 0) {
                        const auto x = lines<Vorn32f>(source, order, 1.0);
                        digest.add(vornsLSPToLP_32f(x.data(), a.data(), order));
                    }
                    std::vector<Vorn32f> dst(order);
                    int roots = 0;
                    digest.add(vornsLPToLSP_32f(a.data(), dst.data(), order, &roots, nGrid, nDiv));
                    digest.add(roots);
                    digest.add(dst);
                }
            }
        }
    }
}

void searchFixed(Source& source, Digest& digest) {
    for (int order : orders) {
        for (int scaleOut : {-17, -15, -14, 0}) {
            auto a = source.values<Vorn16s>(order);
            for (Vorn16s& x : a) x = static_cast<Vorn16s>(x / 16);
            std::vector<Vorn16s> dst(order);
            int roots = 0;
            digest.add(vornsLPToLSP_16s_Sfs(a.data(), 12, dst.data(), order, &roots, 120, 4, scaleOut));
            digest.add(roots);
            digest.add(dst);
        }
    }
}

void coefficients(Source& source, Digest& digest) {
    for (int order : orders) {
        for (double one : {1.0, 0.3, 1.5}) {
            const auto x = lines<Vorn32f>(source, order, one);
            std::vector<Vorn32f> dst(order);
            digest.add(vornsLSPToLP_32f(x.data(), dst.data(), order));
            digest.add(dst);
        }
    }
}

void coefficientsFixed(Source& source, Digest& digest) {
    for (int order : orders) {
        for (int scaleIn : {14, 15}) {
            for (int scaleOut : {-14, -11, 0}) {
                const auto x = lines<Vorn16s>(source, order, 16384.0);
                std::vector<Vorn16s> dst(order);
                digest.add(vornsLSPToLP_16s_Sfs(x.data(), scaleIn, dst.data(), order, scaleOut));
                digest.add(dst);
            }
        }
    }
}

template <class T, class Envelope>
void spectra(Source& source, Digest& digest, Envelope envelope) {
    for (int order = 0; order <= 11; ++order) {
        for (int len : {1, 2, 10, 22, (2 << order) - 1}) {
            if (len >= 2 << order) continue;
            const auto src = source.values<T>(len, -1.0, 1.0);
            std::vector<T> dst(std::size_t{1} << order);
            digest.add(envelope(src.data(), len, dst.data(), order));
            digest.add(dst);
        }
    }
}

const Workload workloads[] = {
    {"vornsLPToCepstrum_32f", singles<vornsLPToCepstrum_32f>},
    {"vornsCepstrumToLP_32f", singles<vornsCepstrumToLP_32f>},
    {"vornsLPToReflection_32f", singles<vornsLPToReflection_32f>},
    {"vornsReflectionToLP_32f", singles<vornsReflectionToLP_32f>},
    {"vornsLPToCepstrum_16s_Sfs", shorts<vornsLPToCepstrum_16s_Sfs>},
    {"vornsCepstrumToLP_16s_Sfs", shorts<vornsCepstrumToLP_16s_Sfs>},
    {"vornsLPToReflection_16s_Sfs", shorts<vornsLPToReflection_16s_Sfs>},
    {"vornsReflectionToLP_16s_Sfs", shorts<vornsReflectionToLP_16s_Sfs>},
    {"vornsLPToLSP_32f", search},
    {"vornsLPToLSP_16s_Sfs", searchFixed},
    {"vornsLSPToLP_32f", coefficients},
    {"vornsLSPToLP_16s_Sfs", coefficientsFixed},
    {"vornsLPToSpectrum_32f",
     [](Source& source, Digest& digest) {
         spectra<Vorn32f>(source, digest, [](const Vorn32f* src, int len, Vorn32f* dst, int order) {
             return vornsLPToSpectrum_32f(src, len, dst, order, -1.0f);
         });
     }},
    {"vornsLPToSpectrum_16s_Sfs",
     [](Source& source, Digest& digest) {
         spectra<Vorn16s>(source, digest, [](const Vorn16s* src, int len, Vorn16s* dst, int order) {
             return vornsLPToSpectrum_16s_Sfs(src, len, dst, order, -4096, -25);
         });
     }},
};

}  // namespace

Family conversionWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
