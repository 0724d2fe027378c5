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

// Banks that are spaced in hertz up to a frequency, and what the caller reads of them.
template <class State, auto initAlloc, auto release, auto getCenters, auto getCoeffs, class Evaluate>
void mixedBanks(Digest& digest, Evaluate evaluate) {
    for (int part : {1, 2, 3}) {
        banks<State>(
            digest,
            [&](State** bank, int* order, const BankShape& s, int flags) {
                const Vorn32f highLinFreq = s.lowFreq + (s.highFreq - s.lowFreq) * static_cast<Vorn32f>(part) / 3;
                return initAlloc(bank, order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter, highLinFreq,
                                 (s.nFilter * part + 2) / 3, s.melMul, s.melDiv, flags);
            },
            [&](State* bank) { digest.add(release(bank)); },
            [&](State* bank, int len, const BankShape& shape) {
                std::vector<Vorn32s> centers(static_cast<std::size_t>(shape.nFilter) + 2);
                digest.add(getCenters(bank, centers.data()));
                digest.add(centers);
                for (int k = 1; k <= shape.nFilter; ++k) {
                    std::vector<Vorn32f> coeffs(static_cast<std::size_t>(centers[k + 1] - centers[k - 1] + 1));
                    digest.add(getCoeffs(bank, k, coeffs.data()));
                    digest.add(coeffs);
                }
                evaluate(bank, len, shape);
            });
    }
}
void mixedBanks_32f(Source& source, Digest& digest) {
    mixedBanks<VornFBankState_32f, vornsMelLinFBankInitAlloc_32f, vornsFBankFree_32f, vornsFBankGetCenters_32f,
               vornsFBankGetCoeffs_32f>(digest, [&](auto* bank, int len, const BankShape& shape) {
        evaluateSingles(source, digest, bank, len, shape);
    });
}
void mixedBanks_16s(Source& source, Digest& digest) {
    mixedBanks<VornFBankState_16s, vornsMelLinFBankInitAlloc_16s, vornsFBankFree_16s, vornsFBankGetCenters_16s,
               vornsFBankGetCoeffs_16s>(digest, [&](auto* bank, int len, const BankShape& shape) {
        evaluateFixed<Vorn32s, vornsEvalFBank_16s32s_Sfs>(source, digest, bank, len, shape);
    });
}

// Banks that the caller fills.
template <class State, auto initAlloc, auto release, auto setCenters, auto getCenters, auto setCoeffs, auto getCoeffs,
          class Evaluate>
void filledBanks(Source& source, Digest& digest, Evaluate evaluate) {
    for (const auto& edges : {std::vector<Vorn32s>{0, 3, 7, 8, 20, 26, 32}, {0, 0, 1, 1, 1, 31, 32}}) {
        for (int flags : {0, 4}) {
            State* bank = nullptr;
            int order = 0;
            digest.add(initAlloc(&bank, &order, 64, 5, flags));
            digest.add(setCenters(bank, edges.data()));
            std::vector<Vorn32s> centers(edges.size());
            digest.add(getCenters(bank, centers.data()));
            digest.add(centers);
            for (int k = 1; k <= 5; ++k) {
                const auto len = static_cast<std::size_t>(edges[k + 1] - edges[k - 1] + 1);
                const auto given = k == 4 ? source.patterns<Vorn32f>(len) : source.values<Vorn32f>(len, 0, 1);
                std::vector<Vorn32f> read(len);
                digest.add(setCoeffs(bank, k, given.data()));
                digest.add(getCoeffs(bank, k, read.data()));
                digest.add(read);
            }
            evaluate(bank, 33, BankShape{64, 5, 0, 0, 0, 0, 0});
            digest.add(release(bank));
        }
    }
}
void filledBanks_32f(Source& source, Digest& digest) {
    filledBanks<VornFBankState_32f, vornsEmptyFBankInitAlloc_32f, vornsFBankFree_32f, vornsFBankSetCenters_32f,
                vornsFBankGetCenters_32f, vornsFBankSetCoeffs_32f, vornsFBankGetCoeffs_32f>(
        source, digest,
        [&](auto* bank, int len, const BankShape& shape) { evaluateSingles(source, digest, bank, len, shape); });
}
void filledBanks_16s(Source& source, Digest& digest) {
    filledBanks<VornFBankState_16s, vornsEmptyFBankInitAlloc_16s, vornsFBankFree_16s, vornsFBankSetCenters_16s,
                vornsFBankGetCenters_16s, vornsFBankSetCoeffs_16s, vornsFBankGetCoeffs_16s>(
        source, digest, [&](auto* bank, int len, const BankShape& shape) {
            evaluateFixed<Vorn32s, vornsEvalFBank_16s32s_Sfs>(source, digest, bank, len, shape);
        });
}

// Banks in integers: lines of the spectrum show the weights.
void integerBanks(Source& source, Digest& digest) {
    struct Shape {
        int fftLen, sampleFreq, lowFreq, highFreq, nFilter, melMul, melDiv;
    };
    const Shape shapes[] = {{256, 8000, 64, 4000, 23, 1127 << 15, 700 << 15},
                            {400, 16000, 0, 8000, 26, 2595 << 15, 700 << 15},
                            {32, 8000, 0, 4000, 16, 1127 << 15, 700 << 15},
                            {8192, 3, 0, 24000, 7, 1073741823, 268435455},
                            {1024, 48000, 100, 24000, 40, 524289, 524289}};
    for (const Shape& s : shapes) {
        int size = 0, order = 0;
        digest.add(vornsMelFBankGetSize_32s(s.fftLen, s.nFilter, vornFBankWeightFreq, &size));
        digest.add(size);
        std::vector<std::uint64_t> block(static_cast<std::size_t>(size) / 8 + 1);
        auto* bank = reinterpret_cast<VornFBankState_32s*>(block.data());
        digest.add(vornsMelFBankInit_32s(bank, &order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter,
                                         s.melMul, s.melDiv, vornFBankWeightFreq));
        digest.add(order);
        const auto bins = static_cast<std::size_t>((1 << order) / 2 + 1);
        std::vector<Vorn32s> dst(static_cast<std::size_t>(s.nFilter));
        const auto src = source.values<Vorn32s>(bins);
        for (int scale : {-31, -9, -1, 0, 3, 31}) {
            digest.add(vornsEvalFBank_32s_Sfs(src.data(), dst.data(), bank, scale));
            digest.add(dst);
        }
        for (std::size_t bin = 0; bin < bins; bin += 1 + bins / 300) {
            std::vector<Vorn32s> line(bins);
            line[bin] = 1 << 8;
            digest.add(vornsEvalFBank_32s_Sfs(line.data(), dst.data(), bank, -22));
            digest.add(dst);
        }
    }
}

template <auto convert>
void scaleConversion(Source& source, Digest& digest) {
    for (std::size_t len : {1, 2, 7, 16, 70, 1000}) {
        for (bool hard : {false, true}) {
            const auto src = hard ? source.patterns<Vorn32f>(len) : source.values<Vorn32f>(len, 0, 8000);
            std::vector<Vorn32f> dst(len);
            for (Vorn32f melMul : {1127.0f, 1e-3f}) {
                digest.add(convert(src.data(), dst.data(), static_cast<int>(len), melMul, 700.0f));
                digest.add(dst);
            }
        }
    }
}
template <class T, auto copy>
void padding(Source& source, Digest& digest) {
    for (int srcLen : {1, 5, 16, 400}) {
        for (int more : {0, 1, 112}) {
            const auto src = source.patterns<T>(static_cast<std::size_t>(srcLen));
            std::vector<T> dst(static_cast<std::size_t>(srcLen + more));
            digest.add(copy(src.data(), srcLen, dst.data(), srcLen + more));
            digest.bytes(dst.data(), dst.size() * sizeof(T));
        }
    }
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
    {"vornsMelFBankGetSize_32s", integerBanks},
    {"vornsMelFBankInit_32s", integerBanks},
    {"vornsEvalFBank_32s_Sfs", integerBanks},
    {"vornsMelLinFBankInitAlloc_32f", mixedBanks_32f},
    {"vornsMelLinFBankInitAlloc_16s", mixedBanks_16s},
    {"vornsEmptyFBankInitAlloc_32f", filledBanks_32f},
    {"vornsEmptyFBankInitAlloc_16s", filledBanks_16s},
    {"vornsFBankGetCenters_32f", filledBanks_32f},
    {"vornsFBankGetCenters_16s", filledBanks_16s},
    {"vornsFBankSetCenters_32f", filledBanks_32f},
    {"vornsFBankSetCenters_16s", filledBanks_16s},
    {"vornsFBankGetCoeffs_32f", filledBanks_32f},
    {"vornsFBankGetCoeffs_16s", filledBanks_16s},
    {"vornsFBankSetCoeffs_32f", filledBanks_32f},
    {"vornsFBankSetCoeffs_16s", filledBanks_16s},
    {"vornsLinearToMel_32f", scaleConversion<vornsLinearToMel_32f>},
    {"vornsMelToLinear_32f", scaleConversion<vornsMelToLinear_32f>},
    {"vornsCopyWithPadding_32f", padding<Vorn32f, vornsCopyWithPadding_32f>},
    {"vornsCopyWithPadding_16s", padding<Vorn16s, vornsCopyWithPadding_16s>},
};

}  // namespace

Family bankWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
