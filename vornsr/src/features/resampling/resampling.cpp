// Resampling: the exported functions.
#include <climits>
#include <cmath>
#include <limits>

#include "features/resampling/design.h"
#include "features/resampling/fixed.h"
#include "features/resampling/variable.h"
#include "frame/checks.h"
#include "frame/memory.h"
#include "frame/rounding.h"

namespace vorn::resampling {
namespace {

constexpr int accurate = 1, ordinary = 2;
constexpr int flagsOf(int hint) { return hint == 2 ? accurate : ordinary; }

// Written so that not-a-numbers fail.
VornStatus checkFilter(Vorn32f rollf, Vorn32f alpha) {
    return require(rollf > 0 && rollf <= 1 && alpha >= 1, vornStsBadArgErr);
}
VornStatus checkWindow(Vorn32f alpha) {
    return require(bessel(alpha) <= std::numeric_limits<double>::max(), vornStsBadArgErr);
}

// A time that has parts of a sample left, in a number of 64 bits.
VornStatus checkTime(double time) { return require(std::fabs(time) < 0x1p53, vornStsSizeErr); }

// Filters are made in round-to-nearest mode, behind the guard of those who call these.

template <class State>
VORN_NOINLINE VornStatus makeVariableState(State** ppState, int nStep, int hint, Vorn32f window, Vorn32f rollf,
                                           Vorn32f alpha, Table table, VornStatus noMemory) {
    const std::int64_t tableLen = tableLength(nStep, window);
    VORN_CHECK(require(tableLen > 0, vornStsBadArgErr));
    VORN_CHECK(checkFilter(rollf, alpha));
    VORN_CHECK(checkWindow(alpha));
    void* state = makeVariable(nStep, tableLen, rollf, alpha, table, flagsOf(hint));
    VORN_CHECK(require(state != nullptr, noMemory));
    *ppState = static_cast<State*>(state);
    return vornStsNoErr;
}

constexpr Vorn32f ofSingles = 1.0f, ofQ14 = 1.0f / 16384;

template <class Tap, class State>
VORN_NOINLINE VornStatus makeFixedState(State** ppState, const FixedShape& shape, int hint, Vorn32f rollf,
                                        Vorn32f alpha) {
    const std::int64_t bytes = shape.bytes(shape.ownRow(), sizeof(Tap), 48);
    VORN_CHECK(require(bytes <= INT_MAX, vornStsBadArgErr));
    VORN_CHECK(checkWindow(alpha));
    Scratch<Vorn8u> block(bytes);
    VORN_CHECK(require(bool(block), vornStsMemAllocErr));
    layOutFixed(block.get(), bytes, shape, shape.ownRow(), sizeof(Tap),
                sizeof(Tap) == sizeof(Vorn32f) ? ofSingles : ofQ14, flagsOf(hint));
    fillFixed(block.get(), rollf, alpha);
    *ppState = reinterpret_cast<State*>(block.release());
    return vornStsNoErr;
}

// A caller's block: its size, and what beside steps, pointers and rows it has.
template <class Tap>
std::int64_t callersBytes(const FixedShape& shape, int len) {
    return shape.bytes(shape.callersRow(len), sizeof(Tap), sizeof(Tap) == sizeof(Vorn32f) ? 40 : 48);
}

template <class Tap>
VornStatus reportSize(int inRate, int outRate, int len, int* pSize, int* pLen, int* pHeight) {
    VORN_CHECK(notNull(pSize, pLen, pHeight));
    VORN_CHECK(positive(inRate, outRate, len));
    const FixedShape shape(inRate, outRate, len);
    const std::int64_t bytes = callersBytes<Tap>(shape, len);
    VORN_CHECK(require(bytes <= 0x7FFFFFFE, vornStsSizeErr));
    *pSize = static_cast<int>(bytes);
    *pLen = static_cast<int>(shape.callersRow(len));
    *pHeight = shape.outRate;
    return vornStsNoErr;
}

template <class Tap, class State>
VornStatus initFixed(State* pState, int inRate, int outRate, int len, int hint) {
    VORN_CHECK(notNull(pState));
    VORN_CHECK(positive(inRate, outRate, len));
    const FixedShape shape(inRate, outRate, len);
    const std::int64_t bytes = callersBytes<Tap>(shape, len);
    VORN_CHECK(require(bytes <= 0x7FFFFFFE, vornStsSizeErr));
    layOutFixed(pState, bytes, shape, shape.callersRow(len), sizeof(Tap),
                sizeof(Tap) == sizeof(Vorn32f) ? ofSingles : ofQ14, flagsOf(hint));
    return vornStsNoErr;
}

VornStatus checkFixed(int inRate, int outRate, int len, Vorn32f rollf, Vorn32f alpha) {
    VORN_CHECK(positive(inRate, outRate, len));
    return checkFilter(rollf, alpha);
}

// A step that is lost beside the time would never end.
VornStatus checkFactor(Vorn64f factor, int len, double time) {
    VORN_CHECK(require(factor > 0, vornStsSizeErr));
    VORN_CHECK(positive(len));
    VORN_CHECK(checkTime(time));
    return require(time + 1 / factor > time, vornStsSizeErr);
}

VornStatus release(void* state) {
    VORN_CHECK(notNull(state));
    vornsFree(state);
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::resampling

using namespace vorn;

VornStatus vornsResamplePolyphaseInitAlloc_32f(VornResampleState_32f** ppState, int nStep, int hint, Vorn32f window,
                                               Vorn32f rollf, Vorn32f alpha) {
    VORN_CHECK(notNull(ppState));
    VORN_CHECK(positive(nStep));
    RoundingGuard guard(Rounding::Nearest);
    return resampling::makeVariableState(ppState, nStep, hint, window, rollf, alpha, resampling::Table::single,
                                         vornStsMemAllocErr);
}

// Without memory for its first block this one reports a null pointer.
VornStatus vornsResamplePolyphaseInitAlloc_16s(VornResampleState_16s** ppState, int nStep, int hint, Vorn32f window,
                                               Vorn32f rollf, Vorn32f alpha) {
    VORN_CHECK(notNull(ppState));
    VORN_CHECK(positive(nStep));
    const auto table =
        resampling::flagsOf(hint) == resampling::accurate ? resampling::Table::single : resampling::Table::sixteenBits;
    RoundingGuard guard(Rounding::Nearest);
    return resampling::makeVariableState(ppState, nStep, hint, window, rollf, alpha, table, vornStsNullPtrErr);
}

VornStatus vornsResamplePolyphase_32f(const VornResampleState_32f* pState, const Vorn32f* src, int len, Vorn32f* dst,
                                      Vorn64f factor, Vorn32f norm, Vorn64f* pTime, int* pOutLen) {
    VORN_CHECK(notNull(pState, pTime, src, dst, pOutLen));
    VORN_CHECK(resampling::checkFactor(factor, len, *pTime));
    *pOutLen = static_cast<int>(resampling::resample(*pState, src, len, dst, factor, norm, *pTime));
    return vornStsNoErr;
}

VornStatus vornsResamplePolyphase_16s(const VornResampleState_16s* pState, const Vorn16s* src, int len, Vorn16s* dst,
                                      Vorn64f factor, Vorn32f norm, Vorn64f* pTime, int* pOutLen) {
    VORN_CHECK(notNull(pState, pTime, src, dst, pOutLen));
    VORN_CHECK(resampling::checkFactor(factor, len, *pTime));
    *pOutLen = static_cast<int>(resampling::resample(*pState, src, len, dst, factor, norm, *pTime));
    return vornStsNoErr;
}

VornStatus vornsResamplePolyphaseFree_32f(VornResampleState_32f* pState) { return resampling::release(pState); }
VornStatus vornsResamplePolyphaseFree_16s(VornResampleState_16s* pState) { return resampling::release(pState); }
VornStatus vornsResamplePolyphaseFixedFree_32f(VornResampleFixedState_32f* pState) {
    return resampling::release(pState);
}
VornStatus vornsResamplePolyphaseFixedFree_16s(VornResampleFixedState_16s* pState) {
    return resampling::release(pState);
}

VornStatus vornsResamplePolyphaseFixedGetSize_32f(int inRate, int outRate, int len, int* pSize, int* pLen,
                                                  int* pHeight) {
    return resampling::reportSize<Vorn32f>(inRate, outRate, len, pSize, pLen, pHeight);
}
VornStatus vornsResamplePolyphaseFixedGetSize_16s(int inRate, int outRate, int len, int* pSize, int* pLen,
                                                  int* pHeight) {
    return resampling::reportSize<Vorn16s>(inRate, outRate, len, pSize, pLen, pHeight);
}

VornStatus vornsResamplePolyphaseFixedInit_32f(VornResampleFixedState_32f* pState, int inRate, int outRate, int len,
                                               int hint) {
    return resampling::initFixed<Vorn32f>(pState, inRate, outRate, len, hint);
}
// The rows are in Q14 whatever the hint, as the block has room for no others.
VornStatus vornsResamplePolyphaseFixedInit_16s(VornResampleFixedState_16s* pState, int inRate, int outRate, int len,
                                               int hint) {
    return resampling::initFixed<Vorn16s>(pState, inRate, outRate, len, hint);
}

VornStatus vornsResamplePolyphaseFixedInitAlloc_32f(VornResampleFixedState_32f** ppState, int inRate, int outRate,
                                                    int len, int hint, Vorn32f rollf, Vorn32f alpha) {
    VORN_CHECK(notNull(ppState));
    VORN_CHECK(resampling::checkFixed(inRate, outRate, len, rollf, alpha));
    RoundingGuard guard(Rounding::Nearest);
    return resampling::makeFixedState<Vorn32f>(ppState, {inRate, outRate, len}, hint, rollf, alpha);
}
VornStatus vornsResamplePolyphaseFixedInitAlloc_16s(VornResampleFixedState_16s** ppState, int inRate, int outRate,
                                                    int len, int hint, Vorn32f rollf, Vorn32f alpha) {
    VORN_CHECK(notNull(ppState));
    VORN_CHECK(resampling::checkFixed(inRate, outRate, len, rollf, alpha));
    const bool singles = resampling::flagsOf(hint) == resampling::accurate;
    RoundingGuard guard(Rounding::Nearest);
    return singles ? resampling::makeFixedState<Vorn32f>(ppState, {inRate, outRate, len}, hint, rollf, alpha)
                   : resampling::makeFixedState<Vorn16s>(ppState, {inRate, outRate, len}, hint, rollf, alpha);
}

VornStatus vornsResamplePolyphaseFixed_32f(const VornResampleFixedState_32f* pState, const Vorn32f* src, int len,
                                           Vorn32f* dst, Vorn32f norm, Vorn64f* pTime, int* pOutLen) {
    VORN_CHECK(notNull(pState, src, dst, pOutLen, pTime));
    VORN_CHECK(positive(len));
    VORN_CHECK(resampling::checkTime(*pTime));
    const auto state = resampling::recordAt(pState);
    *pOutLen = static_cast<int>(resampling::resampleFixed(state, src, len, dst, norm, *pTime));
    return vornStsNoErr;
}
VornStatus vornsResamplePolyphaseFixed_16s(const VornResampleFixedState_16s* pState, const Vorn16s* src, int len,
                                           Vorn16s* dst, Vorn32f norm, Vorn64f* pTime, int* pOutLen) {
    VORN_CHECK(notNull(pState, src, dst, pOutLen, pTime));
    VORN_CHECK(positive(len));
    VORN_CHECK(resampling::checkTime(*pTime));
    const auto state = resampling::recordAt(pState);
    *pOutLen = static_cast<int>(resampling::resampleFixed(state, src, len, dst, norm, *pTime));
    return vornStsNoErr;
}

VornStatus vornsResamplePolyphaseGetFixedFilter_32f(const VornResampleFixedState_32f* pState, Vorn32f* pDst, int step,
                                                    int height) {
    VORN_CHECK(notNull(pState, pDst));
    VORN_CHECK(positive(step, height));
    resampling::takeRows(resampling::recordAt(pState), pDst, step, height);
    return vornStsNoErr;
}
VornStatus vornsResamplePolyphaseGetFixedFilter_16s(const VornResampleFixedState_16s* pState, Vorn16s* pDst, int step,
                                                    int height) {
    VORN_CHECK(notNull(pState, pDst));
    VORN_CHECK(positive(step, height));
    resampling::takeRows(resampling::recordAt(pState), pDst, step, height);
    return vornStsNoErr;
}
VornStatus vornsResamplePolyphaseSetFixedFilter_32f(VornResampleFixedState_32f* pState, const Vorn32f* pSrc, int step,
                                                    int height) {
    VORN_CHECK(notNull(pState, pSrc));
    VORN_CHECK(positive(step, height));
    resampling::putRows(pState, pSrc, step, height);
    return vornStsNoErr;
}
VornStatus vornsResamplePolyphaseSetFixedFilter_16s(VornResampleFixedState_16s* pState, const Vorn16s* pSrc, int step,
                                                    int height) {
    VORN_CHECK(notNull(pState, pSrc));
    VORN_CHECK(positive(step, height));
    resampling::putRows(pState, pSrc, step, height);
    return vornStsNoErr;
}
