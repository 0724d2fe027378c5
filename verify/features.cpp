// Feature extraction.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

// A signal in blocks, the last sample and output carried over; the factors reach both paths of the 16-bit form.
template <auto compensate, class T>
void offset(Source& source, Digest& digest) {
    for (Vorn32f val : {0.999f, 0.5f, -1.0f, 0.0f, 1.25f, -2.0f}) {
        T last = 0, out = 0;
        for (int len : lengths) {
            const auto src = len % 2 ? source.values<T>(len) : source.patterns<T>(len);
            std::vector<T> dst(len);
            digest.add(compensate(src.data(), dst.data(), len, &last, out, val));
            digest.add(dst);
            digest.add(last);
            out = dst.back();
        }
    }
}

const Workload workloads[] = {
    {"vornsCompensateOffset_32f", offset<vornsCompensateOffset_32f, Vorn32f>},
    {"vornsCompensateOffset_16s", offset<vornsCompensateOffset_16s, Vorn16s>},
};

}  // namespace

Family featureWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
