// Features of reflection coefficients.
#include <climits>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

constexpr int scales[] = {0, 1, 8, 15, -1, -8, -15, 127, -127, 150, -128, INT_MAX, INT_MIN};

// call(a, b, dst, len) on ordinary and on hard coefficients.
template <class Call>
Workload onSingles(const char* name, Call call) {
    return {name, [=](Source& source, Digest& digest) {
                for (int len : lengths) {
                    for (bool hard : {false, true}) {
                        const auto make = [&] {
                            return hard ? source.patterns<Vorn32f>(len) : source.values<Vorn32f>(len, -1.0, 1.0);
                        };
                        auto a = make();
                        const auto b = make();
                        std::vector<Vorn32f> dst(len);
                        digest.add(call(a.data(), b.data(), dst.data(), len));
                        digest.add(dst);
                        a[static_cast<std::size_t>(len) / 2] = -1.0f;
                        digest.add(call(a.data(), b.data(), dst.data(), len));
                        digest.add(dst);
                    }
                }
            }};
}
// call(a, b, dst, len, scaleIn, scaleOut)
template <class Call>
Workload onShorts(const char* name, Call call) {
    return {name, [=](Source& source, Digest& digest) {
                for (int len : lengths) {
                    for (int in : scales) {
                        for (int out : scales) {
                            if (len > 33 && in != out && in != -out) continue;
                            const auto a = source.values<Vorn16s>(len), b = source.values<Vorn16s>(len);
                            std::vector<Vorn16s> dst(len);
                            digest.add(call(a.data(), b.data(), dst.data(), len, in, out));
                            digest.add(dst);
                        }
                    }
                }
            }};
}

const Workload workloads[] = {
    onSingles("vornsReflectionToAR_32f", [](const Vorn32f* a, const Vorn32f*, Vorn32f* dst,
                                            int len) { return vornsReflectionToAR_32f(a, dst, len); }),
    onShorts("vornsReflectionToAR_16s_Sfs", [](const Vorn16s* a, const Vorn16s*, Vorn16s* dst, int len, int in,
                                               int out) { return vornsReflectionToAR_16s_Sfs(a, in, dst, len, out); }),
    onSingles("vornsReflectionToTrueAR_32f", [](const Vorn32f* a, const Vorn32f*, Vorn32f* dst,
                                                int len) { return vornsReflectionToTrueAR_32f(a, dst, len); }),
    onShorts("vornsReflectionToTrueAR_16s_Sfs",
             [](const Vorn16s* a, const Vorn16s*, Vorn16s* dst, int len, int in, int out) {
                 return vornsReflectionToTrueAR_16s_Sfs(a, in, dst, len, out);
             }),
    onSingles("vornsReflectionToLAR_32f", [](const Vorn32f* a, const Vorn32f*, Vorn32f* dst,
                                             int len) { return vornsReflectionToLAR_32f(a, dst, len, 0.95f); }),
    onShorts("vornsReflectionToLAR_16s_Sfs",
             [](const Vorn16s* a, const Vorn16s*, Vorn16s* dst, int len, int in, int out) {
                 return vornsReflectionToLAR_16s_Sfs(a, in, dst, len, out, 0.95f);
             }),
    onSingles("vornsReflectionToTilt_32f", [](const Vorn32f* a, const Vorn32f* b, Vorn32f* dst,
                                              int len) { return vornsReflectionToTilt_32f(a, b, dst, len); }),
    onShorts("vornsReflectionToTilt_16s_Sfs",
             [](const Vorn16s* a, const Vorn16s* b, Vorn16s* dst, int len, int, int out) {
                 return vornsReflectionToTilt_16s_Sfs(a, b, dst, len, out);
             }),
    onSingles("vornsReflectionToAbsTilt_32f", [](const Vorn32f* a, const Vorn32f* b, Vorn32f* dst,
                                                 int len) { return vornsReflectionToAbsTilt_32f(a, b, dst, len); }),
    onShorts("vornsReflectionToAbsTilt_16s_Sfs",
             [](const Vorn16s* a, const Vorn16s* b, Vorn16s* dst, int len, int, int out) {
                 return vornsReflectionToAbsTilt_16s_Sfs(a, b, dst, len, out);
             }),
};

}  // namespace

Family reflectionWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
