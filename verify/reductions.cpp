// Reductions and elementary functions.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

// Ordinary values, and any bit pattern.
template <class T, class Use>
void eachVector(Source& source, double low, double high, Use use) {
    for (int len : lengths) {
        use(source.values<T>(static_cast<std::size_t>(len), low, high), len);
        use(source.patterns<T>(static_cast<std::size_t>(len)), len);
    }
}

// Sum-like functions: one result a vector.
template <class T, class Result, class Call>
void reduce(Source& source, Digest& digest, double low, double high, Call call) {
    eachVector<T>(source, low, high, [&](const std::vector<T>& src, int len) {
        Result result{};
        digest.add(call(src.data(), len, &result));
        digest.add(result);
    });
}

// Element-wise functions.
template <class T, class Result, class Call>
void map(Source& source, Digest& digest, double low, double high, Call call) {
    eachVector<T>(source, low, high, [&](const std::vector<T>& src, int len) {
        std::vector<Result> dst(src.size());
        digest.add(call(src.data(), dst.data(), len));
        digest.add(dst);
    });
}
template <class T, class Call>
void mapInPlace(Source& source, Digest& digest, double low, double high, Call call) {
    eachVector<T>(source, low, high, [&](std::vector<T> srcDst, int len) {
        digest.add(call(srcDst.data(), len));
        digest.add(srcDst);
    });
}

const Workload workloads[] = {
    {"vornsSum_32f",
     [](Source& source, Digest& digest) {
         for (int hint : {0, 1, 2}) {
             reduce<Vorn32f, Vorn32f>(source, digest, -1000, 1000, [hint](const Vorn32f* src, int len, Vorn32f* sum) {
                 return vornsSum_32f(src, len, sum, hint);
             });
         }
     }},
    {"vornsLn_32f", [](Source& source, Digest& digest) { map<Vorn32f, Vorn32f>(source, digest, 0, 1e4, vornsLn_32f); }},
    {"vornsLn_32f_I", [](Source& source, Digest& digest) { mapInPlace<Vorn32f>(source, digest, 0, 2, vornsLn_32f_I); }},
    {"vornsSumLn_32f",
     [](Source& source, Digest& digest) { reduce<Vorn32f, Vorn32f>(source, digest, 0, 1e4, vornsSumLn_32f); }},
    {"vornsMagnitude_32fc",
     [](Source& source, Digest& digest) { map<Vorn32fc, Vorn32f>(source, digest, -1e4, 1e4, vornsMagnitude_32fc); }},
    {"vornsMagnitude_32sc_Sfs",
     [](Source& source, Digest& digest) {
         for (int sf : {0, 1, 9, 31, -3, -40}) {
             map<Vorn32sc, Vorn32s>(source, digest, 0, 0, [sf](const Vorn32sc* src, Vorn32s* dst, int len) {
                 return vornsMagnitude_32sc_Sfs(src, dst, len, sf);
             });
         }
     }},
};

}  // namespace

Family reductionWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
