#include "cepstrum.h"

#include <algorithm>
#include <array>

#include "checked.h"

namespace digits {
namespace {

constexpr int kRobustFilters = 23;
constexpr Vorn32f kRobustLow = 64.0f;  // hertz
constexpr Vorn32f kMelMul = 1127.0f, kMelDiv = 700.0f;
constexpr Vorn32f kPreEmphasis = 0.9f;

}  // namespace

Cepstrum::Cepstrum(const Least& least) : least_(least), window_(FrontEnd().window()) {
    VornFBankState_32f* bank = nullptr;
    int order = 0;
    DIGITS_CALL(vornsMelFBankInitAlloc_32f, &bank, &order, kFftLength, static_cast<Vorn32f>(kSampleRate), kRobustLow,
                kHighFrequency, kRobustFilters, kMelMul, kMelDiv, vornFBankWeightFreq);
    bank_.reset(bank);

    const std::vector<Vorn32f> unliftered(kCepstra, 1.0f);
    VornDCTLifterState_32f* cosine = nullptr;
    DIGITS_CALL(vornsDCTLifterInitAlloc_MulC0_32f, &cosine, kRobustFilters, unliftered.data(), kCepstra);
    cosine_.reset(cosine);
}

void Cepstrum::of(const Vorn32f* frame, Transform& transform, Vorn32f* row) const {
    std::vector<Vorn32f> padded(kFftLength, 0.0f);
    for (int n = 0; n < kFrameLength; ++n) {
        padded[n] = window_[n] * (frame[n] - kPreEmphasis * frame[n > 0 ? n - 1 : 0]);
    }
    transform.forward(padded);
    std::array<Vorn32f, kBins> powers{};
    std::array<Vorn32f, kRobustFilters> bands{};
    powersOf(padded, powers.data());
    DIGITS_CALL(vornsEvalFBank_32f, powers.data(), bands.data(), bank_.get());
    for (Vorn32f& band : bands) band = std::max(band, least_.band);
    DIGITS_CALL(vornsLn_32f_I, bands.data(), kRobustFilters);
    DIGITS_CALL(vornsDCTLifter_32f, bands.data(), row, cosine_.get());

    Vorn32f& energy = row[kRobustStatic - 1];
    DIGITS_CALL(vornsDotProd_32f, frame, frame, kFrameLength, &energy);
    energy = std::max(energy, least_.energy);
    DIGITS_CALL(vornsLn_32f_I, &energy, 1);
}

}  // namespace digits
