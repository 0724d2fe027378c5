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

// One utterance in blocks of 9 frames, and its end in a call of its own.
template <int lookback, int parts, class Member>
void deltas(Source& source, Digest& digest, Member member) {
    for (int width : {1, 4, 13, 39, 70}) {
        for (bool hard : {false, true}) {
            const int frames = 45, step = parts * width + width % 3;
            const auto src = hard ? source.patterns<Vorn32f>(static_cast<std::size_t>(frames) * width)
                                  : source.values<Vorn32f>(static_cast<std::size_t>(frames) * width);
            std::vector<Vorn32f> dst(static_cast<std::size_t>(frames) * step);
            for (int row = 0; row <= frames; row += 9) {
                const int mode = row == 0 ? vornDeltaFirst : row == frames ? vornDeltaLast : 0;
                Vorn32f* at = dst.data() + static_cast<std::ptrdiff_t>(row == 0 ? 0 : row - lookback) * step;
                const Vorn32f* block =
                    row == frames ? src.data() : src.data() + static_cast<std::ptrdiff_t>(row) * width;
                digest.add(member(block, width, at, step, row == frames ? 0 : 9, mode));
            }
            digest.add(dst);
        }
    }
}

struct LifterShape {
    int lenDCT, lenCep, nLifter;
};
const LifterShape lifterShapes[] = {{1, 1, 1}, {7, 7, 5}, {20, 12, 22}, {23, 12, 22}, {26, 13, 22}, {64, 30, 22}};

// Coefficients of ordinary and of hard vectors under each context.
template <class Init>
void lifter(Source& source, Digest& digest, Init init) {
    for (const LifterShape& shape : lifterShapes) {
        VornDCTLifterState_32f* state = nullptr;
        digest.add(init(&state, shape));
        for (bool hard : {false, true}) {
            const auto src =
                hard ? source.patterns<Vorn32f>(shape.lenDCT) : source.values<Vorn32f>(shape.lenDCT, -20.0, 20.0);
            std::vector<Vorn32f> dst(shape.lenCep + 1);
            digest.add(vornsDCTLifter_32f(src.data(), dst.data(), state));
            digest.add(dst);
        }
        digest.add(vornsDCTLifterFree_32f(state));
    }
}
void plainLifter(Source& source, Digest& digest) {
    lifter(source, digest, [](VornDCTLifterState_32f** state, const LifterShape& shape) {
        return vornsDCTLifterInitAlloc_32f(state, shape.lenDCT, shape.lenCep, shape.nLifter, 0.9f);
    });
}

struct BankShape {
    int fftLen, nFilter;
    Vorn32f sampleFreq, lowFreq, highFreq, melMul, melDiv;
};
const BankShape bankShapes[] = {{256, 23, 8000, 64, 4000, 1127, 700},
                                {512, 26, 16000, 20, 8000, 2595, 700},
                                {64, 20, 8000, 100, 4000, 1127, 700},
                                {2, 1, 8000, 64, 4000, 1127, 700}};
constexpr int bankFlags[] = {vornFBankWeightMel, vornFBankWeightFreq, vornFBankWeightMel | vornFBankSamples,
                             vornFBankWeightFreq | vornFBankSamples};

// Runs evaluate(bank, N or N/2 + 1 values, shape, flags) on each bank; init makes one and says the order, release drops
// it.
template <class State, class Init, class Release, class Evaluate>
void banks(Digest& digest, Init init, Release release, Evaluate evaluate) {
    for (const BankShape& shape : bankShapes) {
        for (int flags : bankFlags) {
            State* bank = nullptr;
            int order = 0;
            digest.add(init(&bank, &order, shape, flags));
            digest.add(order);
            const int len = flags & vornFBankSamples ? 1 << order : (1 << order) / 2 + 1;
            evaluate(bank, len, shape);
            release(bank);
        }
    }
}

void evaluateSingles(Source& source, Digest& digest, const VornFBankState_32f* bank, int len, const BankShape& shape) {
    for (bool hard : {false, true}) {
        const auto src = hard ? source.patterns<Vorn32f>(len) : source.values<Vorn32f>(len);
        std::vector<Vorn32f> dst(shape.nFilter);
        digest.add(vornsEvalFBank_32f(src.data(), dst.data(), bank));
        digest.add(dst);
    }
}
template <class Result, auto evaluate>
void evaluateFixed(Source& source, Digest& digest, const VornFBankState_16s* bank, int len, const BankShape& shape) {
    const auto src = source.values<Vorn16s>(len);
    for (int scale : {-40, -14, -3, 0, 1, 5, 40}) {
        std::vector<Result> dst(shape.nFilter);
        digest.add(evaluate(src.data(), dst.data(), bank, scale));
        digest.add(dst);
    }
}

// Banks that the library allocates.
void allocatedBanks_32f(Source& source, Digest& digest) {
    banks<VornFBankState_32f>(
        digest,
        [](VornFBankState_32f** bank, int* order, const BankShape& s, int flags) {
            return vornsMelFBankInitAlloc_32f(bank, order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter,
                                              s.melMul, s.melDiv, flags);
        },
        [&](VornFBankState_32f* bank) { digest.add(vornsFBankFree_32f(bank)); },
        [&](auto* bank, int len, const BankShape& shape) { evaluateSingles(source, digest, bank, len, shape); });
}
template <class Result, auto evaluate>
void allocatedBanks_16s(Source& source, Digest& digest) {
    banks<VornFBankState_16s>(
        digest,
        [](VornFBankState_16s** bank, int* order, const BankShape& s, int flags) {
            return vornsMelFBankInitAlloc_16s(bank, order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter,
                                              s.melMul, s.melDiv, flags);
        },
        [&](VornFBankState_16s* bank) { digest.add(vornsFBankFree_16s(bank)); },
        [&](auto* bank, int len, const BankShape& shape) {
            evaluateFixed<Result, evaluate>(source, digest, bank, len, shape);
        });
}

// Banks in memory of the caller, as large as the library says.
template <class State, auto getSize, auto initIn, class Evaluate>
void banksInBlocks(Digest& digest, Evaluate evaluate) {
    std::vector<std::uint64_t> block;
    banks<State>(
        digest,
        [&](State** bank, int* order, const BankShape& s, int flags) {
            int size = 0;
            digest.add(getSize(s.fftLen, s.nFilter, flags, &size));
            digest.add(size);
            block.assign(static_cast<std::size_t>(size) / 8 + 1, 0);
            *bank = reinterpret_cast<State*>(block.data());
            return initIn(*bank, order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter, s.melMul, s.melDiv,
                          flags);
        },
        [](State*) {}, evaluate);
}
void blockBanks_32f(Source& source, Digest& digest) {
    banksInBlocks<VornFBankState_32f, vornsMelFBankGetSize_32f, vornsMelFBankInit_32f>(
        digest,
        [&](auto* bank, int len, const BankShape& shape) { evaluateSingles(source, digest, bank, len, shape); });
}
void blockBanks_16s(Source& source, Digest& digest) {
    banksInBlocks<VornFBankState_16s, vornsMelFBankGetSize_16s, vornsMelFBankInit_16s>(
        digest, [&](auto* bank, int len, const BankShape& shape) {
            evaluateFixed<Vorn32s, vornsEvalFBank_16s32s_Sfs>(source, digest, bank, len, shape);
        });
}

const Workload workloads[] = {
    {"vornsMelFBankGetSize_32f", blockBanks_32f},
    {"vornsMelFBankGetSize_16s", blockBanks_16s},
    {"vornsMelFBankInit_32f", blockBanks_32f},
    {"vornsMelFBankInit_16s", blockBanks_16s},
    {"vornsMelFBankInitAlloc_32f", allocatedBanks_32f},
    {"vornsMelFBankInitAlloc_16s", allocatedBanks_16s<Vorn32s, vornsEvalFBank_16s32s_Sfs>},
    {"vornsFBankFree_32f", allocatedBanks_32f},
    {"vornsFBankFree_16s", allocatedBanks_16s<Vorn32s, vornsEvalFBank_16s32s_Sfs>},
    {"vornsEvalFBank_32f", allocatedBanks_32f},
    {"vornsEvalFBank_16s_Sfs", allocatedBanks_16s<Vorn16s, vornsEvalFBank_16s_Sfs>},
    {"vornsEvalFBank_16s32s_Sfs", allocatedBanks_16s<Vorn32s, vornsEvalFBank_16s32s_Sfs>},
    {"vornsDCTLifterInitAlloc_32f", plainLifter},
    {"vornsDCTLifterInitAlloc_C0_32f",
     [](Source& source, Digest& digest) {
         lifter(source, digest, [](VornDCTLifterState_32f** state, const LifterShape& shape) {
             return vornsDCTLifterInitAlloc_C0_32f(state, shape.lenDCT, shape.lenCep, shape.nLifter, 0.9f, 0.1f);
         });
     }},
    {"vornsDCTLifterFree_32f", plainLifter},
    {"vornsDCTLifter_32f", plainLifter},
    {"vornsDelta_Win2_32f_D2",
     [](Source& source, Digest& digest) {
         deltas<4, 2>(source, digest, [](const Vorn32f* src, int width, Vorn32f* dst, int step, int height, int mode) {
             return vornsDelta_Win2_32f_D2(src, width, dst, step, height, 0.1f, mode);
         });
     }},
    {"vornsDeltaDelta_Win2_32f_D2",
     [](Source& source, Digest& digest) {
         deltas<6, 3>(source, digest, [](const Vorn32f* src, int width, Vorn32f* dst, int step, int height, int mode) {
             return vornsDeltaDelta_Win2_32f_D2(src, width, dst, step, height, 0.1f, 0.3f, mode);
         });
     }},
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

Family featureWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
