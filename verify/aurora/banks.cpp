// Filter banks of noise reduction.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

constexpr int bins = 65;

// What a bank makes of spectra.
void spectra(Source& source, Digest& digest, const VornFBankState_32f* bank, int filters) {
    for (bool hard : {false, true}) {
        const auto src = hard ? source.patterns<Vorn32f>(bins) : source.values<Vorn32f>(bins, 0, 1e6);
        std::vector<Vorn32f> dst(filters);
        digest.add(vornsEvalFBank_32f(src.data(), dst.data(), bank));
        digest.add(dst);
    }
}
void spectra(Source& source, Digest& digest, const VornFBankState_16s* bank, int filters) {
    const auto src = source.values<Vorn16s>(bins);
    for (int scale : {-14, 0, 3}) {
        std::vector<Vorn32s> dst(filters);
        digest.add(vornsEvalFBank_16s32s_Sfs(src.data(), dst.data(), bank, scale));
        digest.add(dst);
    }
}

// Corners and weights of a bank, and what it makes of spectra.
template <class State, auto getCenters, auto getCoeffs>
void contents(Source& source, Digest& digest, const State* bank, int filters) {
    std::vector<Vorn32s> centers(filters + 2);
    digest.add(getCenters(bank, centers.data()));
    digest.add(centers);
    for (int k = 1; k <= filters; ++k) {
        std::vector<Vorn32f> coeffs(centers[k + 1] - centers[k - 1] + 1);
        digest.add(getCoeffs(bank, k, coeffs.data()));
        digest.add(coeffs);
    }
    spectra(source, digest, bank, filters);
}
void contents(Source& source, Digest& digest, const VornFBankState_32f* bank, int filters) {
    contents<VornFBankState_32f, vornsFBankGetCenters_32f, vornsFBankGetCoeffs_32f>(source, digest, bank, filters);
}
void contents(Source& source, Digest& digest, const VornFBankState_16s* bank, int filters) {
    contents<VornFBankState_16s, vornsFBankGetCenters_16s, vornsFBankGetCoeffs_16s>(source, digest, bank, filters);
}

// In memory of the caller, as large as the library says.
template <class State, auto getSize, auto init, int filters>
void inBlock(Source& source, Digest& digest) {
    int size = 0;
    digest.add(getSize(&size));
    digest.add(size);
    std::vector<std::uint64_t> block(static_cast<std::size_t>(size) / 8);
    digest.add(init(reinterpret_cast<Vorn8u*>(block.data())));
    contents(source, digest, reinterpret_cast<const State*>(block.data()), filters);
}
template <class State, auto initAlloc, auto release, int filters>
void allocated(Source& source, Digest& digest) {
    State* bank = nullptr;
    digest.add(initAlloc(&bank));
    contents(source, digest, bank, filters);
    digest.add(release(bank));
}

constexpr auto blockLow_32f =
    inBlock<VornFBankState_32f, vornsMelFBankGetSizeLow_Aurora_32f, vornsMelFBankInitLow_Aurora_32f, 25>;
constexpr auto blockHigh_32f =
    inBlock<VornFBankState_32f, vornsMelFBankGetSizeHigh_Aurora_32f, vornsMelFBankInitHigh_Aurora_32f, 3>;
constexpr auto blockLow_16s =
    inBlock<VornFBankState_16s, vornsMelFBankGetSizeLow_Aurora_16s, vornsMelFBankInitLow_Aurora_16s, 25>;
constexpr auto blockHigh_16s =
    inBlock<VornFBankState_16s, vornsMelFBankGetSizeHigh_Aurora_16s, vornsMelFBankInitHigh_Aurora_16s, 3>;

const Workload workloads[] = {
    {"vornsMelFBankGetSizeLow_Aurora_32f", blockLow_32f},
    {"vornsMelFBankGetSizeHigh_Aurora_32f", blockHigh_32f},
    {"vornsMelFBankGetSizeLow_Aurora_16s", blockLow_16s},
    {"vornsMelFBankGetSizeHigh_Aurora_16s", blockHigh_16s},
    {"vornsMelFBankInitLow_Aurora_32f", blockLow_32f},
    {"vornsMelFBankInitHigh_Aurora_32f", blockHigh_32f},
    {"vornsMelFBankInitLow_Aurora_16s", blockLow_16s},
    {"vornsMelFBankInitHigh_Aurora_16s", blockHigh_16s},
    {"vornsMelFBankInitAllocLow_Aurora_32f",
     allocated<VornFBankState_32f, vornsMelFBankInitAllocLow_Aurora_32f, vornsFBankFree_32f, 25>},
    {"vornsMelFBankInitAllocHigh_Aurora_32f",
     allocated<VornFBankState_32f, vornsMelFBankInitAllocHigh_Aurora_32f, vornsFBankFree_32f, 3>},
    {"vornsMelFBankInitAllocLow_Aurora_16s",
     allocated<VornFBankState_16s, vornsMelFBankInitAllocLow_Aurora_16s, vornsFBankFree_16s, 25>},
    {"vornsMelFBankInitAllocHigh_Aurora_16s",
     allocated<VornFBankState_16s, vornsMelFBankInitAllocHigh_Aurora_16s, vornsFBankFree_16s, 3>},
};

}  // namespace

Family auroraBankWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
