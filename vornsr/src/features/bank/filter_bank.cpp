// Mel filter banks: the exported functions.
#include <climits>

#include "features/bank/build.h"
#include "features/bank/kernels.h"
#include "frame/checks.h"

using namespace vorn;

namespace {

// Numbers above zero; not-a-numbers are none.
template <class... Number>
VornStatus aboveZero(Number... number) {
    return require((... && (number > 0)), vornStsSizeErr);
}

VornStatus allowedFlags(int flags) {
    const int weights = flags & ~vornFBankSamples;
    return require(weights == vornFBankWeightMel || weights == vornFBankWeightFreq, vornStsMelFlagErr);
}

VornStatus allowedRange(Vorn32f sampleFreq, Vorn32f lowFreq, Vorn32f highFreq) {
    return require(!(lowFreq > highFreq || highFreq > 0.5f * sampleFreq), vornStsMelFreqErr);
}

// The checks of the mel banks behind the null check.
VornStatus checkMelBank(int fftLen, int nFilter, const MelBank& mel) {
    VORN_CHECK(aboveZero(fftLen, nFilter, mel.sampleFreq, mel.lowFreq));
    VORN_CHECK(allowedRange(mel.sampleFreq, mel.lowFreq, mel.highFreq));
    return allowedFlags(mel.flags);
}

BankShape shapeOf(int fftLen, int nFilter) {
    const int order = transformOrder(fftLen);
    return {order < 31 ? 1 << order : INT_MAX, order, nFilter};
}

// A size that an int cannot say counts as out of range.
template <class Form>
VornStatus reportSize(int fftLen, int nFilter, int flags, int* pSize) {
    const BankShape shape = shapeOf(fftLen, nFilter);
    const std::int64_t size = shape.fftOrder < 31 ? bankSize<Form>(shape, flags) : INT64_MAX;
    if (size < 0) return static_cast<VornStatus>(size);
    VORN_CHECK(require(size <= INT_MAX, vornStsSizeErr));
    *pSize = static_cast<int>(size);
    return vornStsNoErr;
}

template <class Form>
VornStatus initBank(typename Form::State* pFBank, int* pOrder, int fftLen, int nFilter, const MelBank& mel) {
    VORN_CHECK(notNull(pFBank, pOrder));
    VORN_CHECK(checkMelBank(fftLen, nFilter, mel));
    int size;
    VORN_CHECK(reportSize<Form>(fftLen, nFilter, mel.flags, &size));
    const BankShape shape = shapeOf(fftLen, nFilter);
    *pOrder = shape.fftOrder;
    return initMelBank<Form>(pFBank, shape, mel);
}

template <class Form>
VornStatus allocateBank(typename Form::State** ppFBank, int* pOrder, int fftLen, int nFilter, const MelBank& mel) {
    VORN_CHECK(notNull(ppFBank, pOrder));
    VORN_CHECK(checkMelBank(fftLen, nFilter, mel));
    const BankShape shape = shapeOf(fftLen, nFilter);
    VORN_CHECK(require(shape.fftOrder < 31, vornStsSizeErr));
    *pOrder = shape.fftOrder;
    return allocateMelBank<Form>(ppFBank, shape, mel);
}

// The checks of an evaluation behind the null check.
template <class State>
VornStatus checkFilled(const State& bank) {
    VORN_CHECK(notNull(bank.pCenters));
    return require(bank.ready != 0, vornStsNotInitErr);
}

// The work area of the transform lies behind the spectrum.
template <class State>
Vorn8u* transformBuffer(const State& bank) {
    return reinterpret_cast<Vorn8u*>(bank.pWork + BankShape{bank.fftLen, bank.fftOrder, bank.nFilter}.spectrumLen());
}

template <class Result>
VornStatus evalFixed(const Vorn16s* src, Result* dst, const VornFBankState_16s* pFBank, int scale) {
    VORN_CHECK(notNull(src, dst, pFBank));
    const auto bank = recordAt<VornFBankState_16s>(pFBank);
    VORN_CHECK(checkFilled(bank));
    const int shift = wrapAdd(scale, bank.weightShift);
    if ((bank.flags & vornFBankSamples) == 0) {
        evalFilters(src, dst, bank, shift);
        return vornStsNoErr;
    }
    // Transform and magnitude each keep three bits more than their exact value has.
    VORN_CHECK(vornsFFTFwd_RToCCS_16s32s_Sfs(src, bank.pWork, bank.pFftSpec, -3, transformBuffer(bank)));
    VORN_CHECK(
        vornsMagnitude_32sc_Sfs(reinterpret_cast<const Vorn32sc*>(bank.pWork), bank.pWork, bank.fftLen / 2 + 1, -3));
    evalFilters(bank.pWork, dst, bank, wrapAdd(shift, 6));
    return vornStsNoErr;
}

}  // namespace

VornStatus vornsMelFBankGetSize_32f(int fftLen, int nFilter, int flags, int* pSize) {
    VORN_CHECK(notNull(pSize));
    VORN_CHECK(positive(fftLen, nFilter));
    VORN_CHECK(allowedFlags(flags));
    return reportSize<FBankForm_32f>(fftLen, nFilter, flags, pSize);
}

VornStatus vornsMelFBankGetSize_16s(int fftLen, int nFilter, int flags, int* pSize) {
    VORN_CHECK(notNull(pSize));
    VORN_CHECK(positive(fftLen, nFilter));
    VORN_CHECK(allowedFlags(flags));
    return reportSize<FBankForm_16s>(fftLen, nFilter, flags, pSize);
}

VornStatus vornsMelFBankInit_32f(VornFBankState_32f* pFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                 Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv,
                                 int flags) {
    return initBank<FBankForm_32f>(pFBank, pOrder, fftLen, nFilter,
                                   {sampleFreq, lowFreq, highFreq, {melMul, melDiv}, flags});
}

VornStatus vornsMelFBankInit_16s(VornFBankState_16s* pFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                 Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv,
                                 int flags) {
    return initBank<FBankForm_16s>(pFBank, pOrder, fftLen, nFilter,
                                   {sampleFreq, lowFreq, highFreq, {melMul, melDiv}, flags});
}

VornStatus vornsMelFBankInitAlloc_32f(VornFBankState_32f** ppFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                      Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv,
                                      int flags) {
    return allocateBank<FBankForm_32f>(ppFBank, pOrder, fftLen, nFilter,
                                       {sampleFreq, lowFreq, highFreq, {melMul, melDiv}, flags});
}

VornStatus vornsMelFBankInitAlloc_16s(VornFBankState_16s** ppFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                      Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv,
                                      int flags) {
    return allocateBank<FBankForm_16s>(ppFBank, pOrder, fftLen, nFilter,
                                       {sampleFreq, lowFreq, highFreq, {melMul, melDiv}, flags});
}

VornStatus vornsFBankFree_32f(VornFBankState_32f* pFBank) {
    VORN_CHECK(notNull(pFBank));
    freeBank<FBankForm_32f>(pFBank);
    return vornStsNoErr;
}

VornStatus vornsFBankFree_16s(VornFBankState_16s* pFBank) {
    VORN_CHECK(notNull(pFBank));
    freeBank<FBankForm_16s>(pFBank);
    return vornStsNoErr;
}

VornStatus vornsEvalFBank_32f(const Vorn32f* src, Vorn32f* dst, const VornFBankState_32f* pFBank) {
    VORN_CHECK(notNull(src, dst, pFBank));
    const auto bank = recordAt<VornFBankState_32f>(pFBank);
    VORN_CHECK(checkFilled(bank));
    if ((bank.flags & vornFBankSamples) == 0) {
        evalFilters(src, dst, bank);
        return vornStsNoErr;
    }
    VORN_CHECK(vornsFFTFwd_RToCCS_32f(src, bank.pWork, bank.pFftSpec, transformBuffer(bank)));
    VORN_CHECK(vornsMagnitude_32fc(reinterpret_cast<const Vorn32fc*>(bank.pWork), bank.pWork, bank.fftLen / 2 + 1));
    evalFilters(bank.pWork, dst, bank);
    return vornStsNoErr;
}

VornStatus vornsEvalFBank_16s_Sfs(const Vorn16s* src, Vorn16s* dst, const VornFBankState_16s* pFBank, int scale) {
    return evalFixed(src, dst, pFBank, scale);
}

VornStatus vornsEvalFBank_16s32s_Sfs(const Vorn16s* src, Vorn32s* dst, const VornFBankState_16s* pFBank, int scale) {
    return evalFixed(src, dst, pFBank, scale);
}
