// Mel filter banks: the exported functions.
#include <climits>

#include "features/bank/build.h"
#include "features/bank/integer_bank.h"
#include "features/bank/kernels.h"
#include "features/pieces.h"
#include "frame/checks.h"

using namespace vorn;

namespace vorn::bank {
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

// No frequency above the one behind it.
VornStatus rising(Vorn32f below, Vorn32f above) { return require(!(below > above), vornStsMelFreqErr); }

// The checks of the mel banks behind the null check.
VornStatus checkMelBank(int fftLen, int nFilter, const MelBank& mel) {
    VORN_CHECK(aboveZero(fftLen, nFilter, mel.sampleFreq, mel.lowFreq));
    VORN_CHECK(rising(mel.lowFreq, mel.highFreq));
    VORN_CHECK(rising(mel.highFreq, 0.5f * mel.sampleFreq));
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

// The shape of an allocated bank, and its order for the caller.
VornStatus allocatedShape(int fftLen, int nFilter, BankShape* shape, int* pOrder) {
    *shape = shapeOf(fftLen, nFilter);
    VORN_CHECK(require(shape->fftOrder < 31, vornStsSizeErr));
    *pOrder = shape->fftOrder;
    return vornStsNoErr;
}

template <class Form>
VornStatus makeMelBank(typename Form::State** ppFBank, int* pOrder, int fftLen, int nFilter, const MelBank& mel) {
    VORN_CHECK(notNull(ppFBank, pOrder));
    VORN_CHECK(checkMelBank(fftLen, nFilter, mel));
    BankShape shape;
    VORN_CHECK(allocatedShape(fftLen, nFilter, &shape, pOrder));
    return allocateBank<Form>(ppFBank, shape, mel);
}

template <class Form>
VornStatus makeMixedBank(typename Form::State** ppFBank, int* pOrder, int fftLen, int nFilter, const MixedBank& mixed) {
    VORN_CHECK(aboveZero(fftLen, nFilter, mixed.sampleFreq, mixed.lowFreq, mixed.nLinear));
    VORN_CHECK(require(mixed.nLinear <= nFilter, vornStsSizeErr));
    VORN_CHECK(rising(mixed.lowFreq, mixed.highLinFreq));
    VORN_CHECK(rising(mixed.highLinFreq, mixed.highFreq));
    VORN_CHECK(rising(mixed.highFreq, 0.5f * mixed.sampleFreq));
    VORN_CHECK(allowedFlags(mixed.flags));
    BankShape shape;
    VORN_CHECK(allocatedShape(fftLen, nFilter, &shape, pOrder));
    return allocateBank<Form>(ppFBank, shape, mixed);
}

template <class Form>
VornStatus makeEmptyBank(typename Form::State** ppFBank, int* pOrder, int fftLen, int nFilter, int flags) {
    VORN_CHECK(positive(fftLen, nFilter));
    BankShape shape;
    VORN_CHECK(allocatedShape(fftLen, nFilter, &shape, pOrder));
    return allocateEmptyBank<Form>(ppFBank, shape, (flags & vornFBankSamples) != 0);
}

// Integer banks: lengths of a transform, and their shape.
VornStatus integerLength(int fftLen) { return require(fftLen >= 32 && fftLen <= 8192, vornStsSizeErr); }

IntegerBankShape integerShapeOf(int fftLen, int nFilter) { return {(1 << transformOrder(fftLen)) / 2 + 1, nFilter}; }

VornStatus within(int value, int lowest, int highest, VornStatus otherwise) {
    return require(value >= lowest && value <= highest, otherwise);
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
    const auto bank = context::recordAt(pFBank);
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
}  // namespace vorn::bank

VornStatus vornsMelFBankGetSize_32f(int fftLen, int nFilter, int flags, int* pSize) {
    VORN_CHECK(notNull(pSize));
    VORN_CHECK(positive(fftLen, nFilter));
    VORN_CHECK(bank::allowedFlags(flags));
    return bank::reportSize<FBankForm_32f>(fftLen, nFilter, flags, pSize);
}

VornStatus vornsMelFBankGetSize_16s(int fftLen, int nFilter, int flags, int* pSize) {
    VORN_CHECK(notNull(pSize));
    VORN_CHECK(positive(fftLen, nFilter));
    VORN_CHECK(bank::allowedFlags(flags));
    return bank::reportSize<FBankForm_16s>(fftLen, nFilter, flags, pSize);
}

// One filter fewer than initialisation takes.
VornStatus vornsMelFBankGetSize_32s(int fftLen, int nFilter, int flags, int* pSize) {
    VORN_CHECK(notNull(pSize));
    VORN_CHECK(positive(nFilter));
    VORN_CHECK(bank::integerLength(fftLen));
    VORN_CHECK(require(flags == vornFBankWeightFreq, vornStsMelFlagErr));
    const IntegerBankShape shape = bank::integerShapeOf(fftLen, nFilter);
    VORN_CHECK(require(nFilter <= shape.lastBin(), vornStsSizeErr));
    *pSize = integerBankSize(shape);
    return vornStsNoErr;
}

VornStatus vornsMelFBankInit_32f(VornFBankState_32f* pFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                 Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv,
                                 int flags) {
    return bank::initBank<FBankForm_32f>(pFBank, pOrder, fftLen, nFilter,
                                         {sampleFreq, lowFreq, highFreq, {melMul, melDiv}, flags});
}

VornStatus vornsMelFBankInit_16s(VornFBankState_16s* pFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                 Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv,
                                 int flags) {
    return bank::initBank<FBankForm_16s>(pFBank, pOrder, fftLen, nFilter,
                                         {sampleFreq, lowFreq, highFreq, {melMul, melDiv}, flags});
}

VornStatus vornsMelFBankInit_32s(VornFBankState_32s* pFBank, int* pOrder, int fftLen, int sampleFreq, int lowFreq,
                                 int highFreq, int nFilter, int melMul, int melDiv, int flags) {
    VORN_CHECK(notNull(pFBank, pOrder));
    VORN_CHECK(positive(nFilter, highFreq));
    VORN_CHECK(bank::integerLength(fftLen));
    VORN_CHECK(require(flags == vornFBankWeightFreq, vornStsMelFlagErr));
    VORN_CHECK(bank::within(sampleFreq, 1, 48000, vornStsSizeErr));
    VORN_CHECK(atLeast(0, lowFreq));
    VORN_CHECK(require(highFreq > lowFreq && highFreq <= 24000, vornStsMelFreqErr));
    VORN_CHECK(bank::within(melDiv, 524289, 268435455, vornStsBadArgErr));
    VORN_CHECK(bank::within(melMul, 524289, 1073741823, vornStsBadArgErr));
    const IntegerBankShape shape = bank::integerShapeOf(fftLen, nFilter);
    VORN_CHECK(require(nFilter <= shape.nBins, vornStsSizeErr));
    *pOrder = transformOrder(fftLen);
    return initIntegerBank(pFBank, shape, {1 << *pOrder, sampleFreq, lowFreq, highFreq, nFilter, melMul, melDiv});
}

VornStatus vornsMelFBankInitAlloc_32f(VornFBankState_32f** ppFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                      Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv,
                                      int flags) {
    return bank::makeMelBank<FBankForm_32f>(ppFBank, pOrder, fftLen, nFilter,
                                            {sampleFreq, lowFreq, highFreq, {melMul, melDiv}, flags});
}

VornStatus vornsMelFBankInitAlloc_16s(VornFBankState_16s** ppFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                      Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv,
                                      int flags) {
    return bank::makeMelBank<FBankForm_16s>(ppFBank, pOrder, fftLen, nFilter,
                                            {sampleFreq, lowFreq, highFreq, {melMul, melDiv}, flags});
}

VornStatus vornsMelLinFBankInitAlloc_32f(VornFBankState_32f** ppFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                         Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f highLinFreq,
                                         int nLinear, Vorn32f melMul, Vorn32f melDiv, int flags) {
    return bank::makeMixedBank<FBankForm_32f>(
        ppFBank, pOrder, fftLen, nFilter,
        {sampleFreq, lowFreq, highFreq, highLinFreq, nLinear, {melMul, melDiv}, flags});
}

VornStatus vornsMelLinFBankInitAlloc_16s(VornFBankState_16s** ppFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                         Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f highLinFreq,
                                         int nLinear, Vorn32f melMul, Vorn32f melDiv, int flags) {
    return bank::makeMixedBank<FBankForm_16s>(
        ppFBank, pOrder, fftLen, nFilter,
        {sampleFreq, lowFreq, highFreq, highLinFreq, nLinear, {melMul, melDiv}, flags});
}

VornStatus vornsEmptyFBankInitAlloc_32f(VornFBankState_32f** ppFBank, int* pOrder, int fftLen, int nFilter, int flags) {
    return bank::makeEmptyBank<FBankForm_32f>(ppFBank, pOrder, fftLen, nFilter, flags);
}

VornStatus vornsEmptyFBankInitAlloc_16s(VornFBankState_16s** ppFBank, int* pOrder, int fftLen, int nFilter, int flags) {
    return bank::makeEmptyBank<FBankForm_16s>(ppFBank, pOrder, fftLen, nFilter, flags);
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
    const auto bank = context::recordAt(pFBank);
    VORN_CHECK(bank::checkFilled(bank));
    if ((bank.flags & vornFBankSamples) == 0) {
        evalFilters(src, dst, bank);
        return vornStsNoErr;
    }
    VORN_CHECK(vornsFFTFwd_RToCCS_32f(src, bank.pWork, bank.pFftSpec, bank::transformBuffer(bank)));
    VORN_CHECK(vornsMagnitude_32fc(reinterpret_cast<const Vorn32fc*>(bank.pWork), bank.pWork, bank.fftLen / 2 + 1));
    evalFilters(bank.pWork, dst, bank);
    return vornStsNoErr;
}

VornStatus vornsEvalFBank_16s_Sfs(const Vorn16s* src, Vorn16s* dst, const VornFBankState_16s* pFBank, int scale) {
    return bank::evalFixed(src, dst, pFBank, scale);
}

VornStatus vornsEvalFBank_16s32s_Sfs(const Vorn16s* src, Vorn32s* dst, const VornFBankState_16s* pFBank, int scale) {
    return bank::evalFixed(src, dst, pFBank, scale);
}

VornStatus vornsEvalFBank_32s_Sfs(const Vorn32s* src, Vorn32s* dst, const VornFBankState_32s* pFBank, int scale) {
    VORN_CHECK(notNull(src, dst, pFBank));
    VORN_CHECK(bank::within(scale, -31, 31, vornStsBadArgErr));
    evalFilters(src, dst, context::recordAt(pFBank), scale);
    return vornStsNoErr;
}
