// Frame conditioning.
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

template <auto compensate, class T, class Factor>
void offsetInPlace(Source& source, Digest& digest) {
    for (Factor val : {static_cast<Factor>(0.98), static_cast<Factor>(1.5), static_cast<Factor>(32000)}) {
        T last = 3;
        for (int len : lengths) {
            auto srcDst = len % 2 ? source.values<T>(len) : source.patterns<T>(len);
            digest.add(compensate(srcDst.data(), len, &last, T(-9), val));
            digest.add(srcDst);
            digest.add(last);
        }
    }
}

// Ordinary signals, and all of the signs.
template <auto rate, class T, class Result>
void signChanges(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (bool small : {false, true}) {
            auto src = source.patterns<T>(len);
            if (small) {
                for (T& x : src) x = static_cast<T>(static_cast<int>(source.bits() % 3) - 1);
            }
            Result result{};
            digest.add(rate(src.data(), len, &result));
            digest.add(result);
        }
    }
}

template <class T, class Normalise>
void energies(Source& source, Digest& digest, Normalise normalise) {
    for (int height : {1, 2, 9, 100}) {
        for (int step : {1, 13}) {
            for (Vorn32f val : {0.1f, 2.0f}) {
                auto x = source.values<T>(static_cast<std::size_t>(height) * step);
                digest.add(normalise(x.data(), step, height, val));
                digest.add(x);
            }
        }
    }
}

const Workload workloads[] = {
    {"vornsCompensateOffset_32f_I", offsetInPlace<vornsCompensateOffset_32f_I, Vorn32f, Vorn32f>},
    {"vornsCompensateOffset_16s_I", offsetInPlace<vornsCompensateOffset_16s_I, Vorn16s, Vorn32f>},
    {"vornsCompensateOffsetQ15_16s",
     [](Source& source, Digest& digest) {
         for (int len : lengths) {
             const auto src = source.values<Vorn16s>(len);
             std::vector<Vorn16s> dst(len);
             Vorn16s last = -5;
             digest.add(vornsCompensateOffsetQ15_16s(src.data(), dst.data(), len, &last, 77, 32440));
             digest.add(dst);
             digest.add(last);
         }
     }},
    {"vornsCompensateOffsetQ15_16s_I", offsetInPlace<vornsCompensateOffsetQ15_16s_I, Vorn16s, Vorn16s>},
    {"vornsSignChangeRate_16s", signChanges<vornsSignChangeRate_16s, Vorn16s, Vorn32s>},
    {"vornsSignChangeRate_32f", signChanges<vornsSignChangeRate_32f, Vorn32f, Vorn32f>},
    {"vornsSignChangeRateXor_32f", signChanges<vornsSignChangeRateXor_32f, Vorn32f, int>},
    {"vornsSignChangeRate_Count0_16s", signChanges<vornsSignChangeRate_Count0_16s, Vorn16s, Vorn32s>},
    {"vornsSignChangeRate_Count0_32f", signChanges<vornsSignChangeRate_Count0_32f, Vorn32f, Vorn32f>},
    {"vornsNormEnergy_32f",
     [](Source& source, Digest& digest) {
         energies<Vorn32f>(source, digest, [](Vorn32f* x, int step, int height, Vorn32f val) {
             return vornsNormEnergy_32f(x, step, height, 50.0f, val);
         });
     }},
    {"vornsNormEnergy_16s",
     [](Source& source, Digest& digest) {
         energies<Vorn16s>(source, digest, [](Vorn16s* x, int step, int height, Vorn32f val) {
             return vornsNormEnergy_16s(x, step, height, 30000, 20000, val);
         });
     }},
    {"vornsNormEnergy_RT_32f",
     [](Source& source, Digest& digest) {
         energies<Vorn32f>(source, digest, [](Vorn32f* x, int step, int height, Vorn32f val) {
             return vornsNormEnergy_RT_32f(x, step, height, 50.0f, 100.0f, val);
         });
     }},
    {"vornsNormEnergy_RT_16s",
     [](Source& source, Digest& digest) {
         energies<Vorn16s>(source, digest, [](Vorn16s* x, int step, int height, Vorn32f val) {
             return vornsNormEnergy_RT_16s(x, step, height, 30000, 32000, 20000, val);
         });
     }},
    {"vornsZeroMean_16s",
     [](Source& source, Digest& digest) {
         for (int len : lengths) {
             auto x = source.values<Vorn16s>(len);
             digest.add(vornsZeroMean_16s(x.data(), len));
             digest.add(x);
         }
     }},
    {"vornsCompensateOffset_32f", offset<vornsCompensateOffset_32f, Vorn32f>},
    {"vornsCompensateOffset_16s", offset<vornsCompensateOffset_16s, Vorn16s>},
};

}  // namespace

Family conditioningWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
