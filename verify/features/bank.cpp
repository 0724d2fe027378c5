// Mel filter banks.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

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
};

}  // namespace

Family bankWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
