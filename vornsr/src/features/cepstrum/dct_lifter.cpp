// DCT lifter: the exported functions and the kernel that keeps its name.
#include <algorithm>
#include <climits>
#include <cstdint>

#include "features/cepstrum/kernels.h"
#include "features/pieces.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "move/convert_kernels.h"

namespace vorn::lifter {
namespace {

// The checks behind the null check.
template <class... Length>
VornStatus checkLengths(int lenDCT, int lenCep, Length... more) {
    VORN_CHECK(positive(lenDCT, lenCep, more...));
    return atLeast(lenCep, lenDCT);
}

// Bytes of a caller's block. It may begin at any address; the formulas leave room for the alignment of the pieces.
struct LifterSize {
    // lenCep + 1 and lenDCT, or so many that no int holds the bytes of two rows.
    std::int64_t rows, columns;
    LifterSize(int lenDCT, int lenCep) : rows(std::min(lenCep, most) + 1), columns(std::min(lenDCT, most)) {}

    std::int64_t singles() const { return 4 * (rows * roundUp(columns, 8) + 7) + 12 * (rows - 1) + 108; }
    std::int64_t shorts() const { return 4 * (rows * roundUp(columns, 8) + 7) + 16 * (rows - 1) + 152; }
    // Counted row by row, each with its own share of the alignment.
    std::int64_t shortsMulC0() const { return 8 * (rows - 1) + 144 + rows * (4 * columns + 40); }

private:
    static constexpr int most = 1 << 29;
};

// The one form with a limit, of its size function alone.
constexpr int mostForSizeMulC0 = 8192;

constexpr VornStatus fitsInt(std::int64_t bytes) { return require(bytes <= INT_MAX, vornStsSizeErr); }

VornStatus getSize(std::int64_t (LifterSize::*bytes)() const, int lenDCT, int lenCep, int* pSize) {
    VORN_CHECK(notNull(pSize));
    VORN_CHECK(checkLengths(lenDCT, lenCep));
    const std::int64_t size = (LifterSize(lenDCT, lenCep).*bytes)();
    VORN_CHECK(fitsInt(size));
    *pSize = static_cast<int>(size);
    return vornStsNoErr;
}

// Everything from the pieces; false if one could not be had.
template <class State, class Lifter, class Pieces>
bool makeState(State& state, int lenDCT, int lenCep, const Lifter& lifter, Pieces& pieces) {
    state = {};
    state.nLifter = lifter.nLifter;
    state.lenDCT = lenDCT;
    state.lenCep = lenCep;
    state.withC0 = lifter.withC0;
    auto* table = pieces.template take<Vorn32f>(cosineTableLen(lenDCT, lenCep));
    if (table == nullptr) return false;
    state.ppCos = cosineRows(table, lenDCT, lenCep);
    state.pLifter = pieces.template take<Vorn32f>(std::int64_t{lenCep} + 1);
    if (state.pLifter == nullptr) return false;
    if constexpr (requires { state.pWork; }) {
        state.pWork = pieces.template take<Vorn32f>(std::int64_t{lenCep} + 1);
        if (state.pWork == nullptr) return false;
    }
    lifter.fill(state.pLifter, lenCep);
    fillCosines(state.ppCos, lenDCT, lenCep);
    return true;
}

// In a caller's block of so many bytes; a size that no size function could report is refused before anything is
// written.
template <class State, class Lifter>
VornStatus initState(State* pState, int lenDCT, int lenCep, const Lifter& lifter, std::int64_t bytes) {
    VORN_CHECK(fitsInt(bytes));
    State state;
    context::BlockPieces pieces(reinterpret_cast<char*>(pState) + sizeof state);
    makeState(state, lenDCT, lenCep, lifter, pieces);
    context::putRecord(pState, state);
    return vornStsNoErr;
}
template <class Lifter>
VornStatus initState(VornDCTLifterState_32f* pState, int lenDCT, int lenCep, const Lifter& lifter) {
    return initState(pState, lenDCT, lenCep, lifter, LifterSize(lenDCT, lenCep).singles());
}
template <class Lifter>
VornStatus initState(VornDCTLifterState_16s* pState, int lenDCT, int lenCep, const Lifter& lifter) {
    return initState(pState, lenDCT, lenCep, lifter, LifterSize(lenDCT, lenCep).shorts());
}

// What there is of an allocated context. The first row begins the table's block.
template <class State>
void releaseState(State* state) {
    if (state->ppCos != nullptr) vornsFree(state->ppCos[0]);
    vornsFree(state->pLifter);
    if constexpr (requires { state->pWork; }) vornsFree(state->pWork);
    vornsFree(state);
}

// Makes a context, or none: on failure what was made goes back and *ppState is null.
template <class State, class Lifter>
VornStatus allocateState(State** ppState, int lenDCT, int lenCep, const Lifter& lifter) {
    *ppState = nullptr;
    context::AllocatedPieces pieces;
    auto* state = pieces.take<State>(1);
    if (state == nullptr) return vornStsMemAllocErr;
    if (!makeState(*state, lenDCT, lenCep, lifter, pieces)) {
        releaseState(state);
        return vornStsMemAllocErr;
    }
    *ppState = state;
    return vornStsNoErr;
}

template <class Element>
void liftFixed(const Element* src, Vorn16s* dst, const VornDCTLifterState_16s* pState, int scale) {
    const auto state = context::recordAt(pState);
    dctLifter(src, state.pWork, state.pLifter, state.ppCos, state.lenDCT, state.lenCep, state.withC0);
    convert(state.pWork, dst, std::int64_t{state.lenCep} + state.withC0, vornRndNear, scale);
}

}  // namespace
}  // namespace vorn::lifter

using namespace vorn;

VORN_KERNEL void vornsDCTLifter_32f_M7(const Vorn32f* src, Vorn32f* dst, const VornDCTLifterState_32f* pState) {
    const auto state = context::recordAt(pState);
    lifter::dctLifter(src, dst, state.pLifter, state.ppCos, state.lenDCT, state.lenCep, state.withC0);
}
VORN_KERNEL_ALIAS(vornsDCTLifter_32f_M7_Al, vornsDCTLifter_32f_M7);

VornStatus vornsDCTLifterGetSize_32f(int lenDCT, int lenCep, int* pSize) {
    return lifter::getSize(&lifter::LifterSize::singles, lenDCT, lenCep, pSize);
}

VornStatus vornsDCTLifterGetSize_C0_32f(int lenDCT, int lenCep, int* pSize) {
    return lifter::getSize(&lifter::LifterSize::singles, lenDCT, lenCep, pSize);
}

VornStatus vornsDCTLifterGetSize_Mul_32f(int lenDCT, int lenCep, int* pSize) {
    return lifter::getSize(&lifter::LifterSize::singles, lenDCT, lenCep, pSize);
}

VornStatus vornsDCTLifterGetSize_MulC0_32f(int lenDCT, int lenCep, int* pSize) {
    return lifter::getSize(&lifter::LifterSize::singles, lenDCT, lenCep, pSize);
}

VornStatus vornsDCTLifterGetSize_16s(int lenDCT, int lenCep, int* pSize) {
    return lifter::getSize(&lifter::LifterSize::shorts, lenDCT, lenCep, pSize);
}

VornStatus vornsDCTLifterGetSize_C0_16s(int lenDCT, int lenCep, int* pSize) {
    return lifter::getSize(&lifter::LifterSize::shorts, lenDCT, lenCep, pSize);
}

VornStatus vornsDCTLifterGetSize_Mul_16s(int lenDCT, int lenCep, int* pSize) {
    return lifter::getSize(&lifter::LifterSize::shorts, lenDCT, lenCep, pSize);
}

VornStatus vornsDCTLifterGetSize_MulC0_16s(int lenDCT, int lenCep, int* pSize) {
    VORN_CHECK(notNull(pSize));
    VORN_CHECK(atLeast(lenDCT, lifter::mostForSizeMulC0));
    return lifter::getSize(&lifter::LifterSize::shortsMulC0, lenDCT, lenCep, pSize);
}

VornStatus vornsDCTLifterInit_32f(VornDCTLifterState_32f* pState, int lenDCT, int lenCep, int nLifter, Vorn32f val) {
    VORN_CHECK(notNull(pState));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep, nLifter));
    return lifter::initState(pState, lenDCT, lenCep, lifter::RaisedSineLifter{nLifter, val});
}

VornStatus vornsDCTLifterInit_C0_32f(VornDCTLifterState_32f* pState, int lenDCT, int lenCep, int nLifter, Vorn32f val,
                                     Vorn32f val0) {
    VORN_CHECK(notNull(pState));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep, nLifter));
    return lifter::initState(pState, lenDCT, lenCep, lifter::RaisedSineLifterC0{nLifter, val, val0});
}

VornStatus vornsDCTLifterInit_Mul_32f(VornDCTLifterState_32f* pState, int lenDCT, const Vorn32f* pLifter, int lenCep) {
    VORN_CHECK(notNull(pState, pLifter));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep));
    return lifter::initState(pState, lenDCT, lenCep, lifter::CallersLifter<Vorn32f>{pLifter});
}

VornStatus vornsDCTLifterInit_MulC0_32f(VornDCTLifterState_32f* pState, int lenDCT, const Vorn32f* pLifter,
                                        int lenCep) {
    VORN_CHECK(notNull(pState, pLifter));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep));
    return lifter::initState(pState, lenDCT, lenCep, lifter::CallersLifterC0<Vorn32f>{pLifter});
}

VornStatus vornsDCTLifterInit_16s(VornDCTLifterState_16s* pState, int lenDCT, int lenCep, int nLifter, Vorn32f val) {
    VORN_CHECK(notNull(pState));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep, nLifter));
    return lifter::initState(pState, lenDCT, lenCep, lifter::RaisedSineLifter{nLifter, val});
}

VornStatus vornsDCTLifterInit_C0_16s(VornDCTLifterState_16s* pState, int lenDCT, int lenCep, int nLifter, Vorn32f val,
                                     Vorn32f val0) {
    VORN_CHECK(notNull(pState));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep, nLifter));
    return lifter::initState(pState, lenDCT, lenCep, lifter::RaisedSineLifterC0{nLifter, val, val0});
}

VornStatus vornsDCTLifterInit_Mul_16s(VornDCTLifterState_16s* pState, int lenDCT, const Vorn32f* pLifter, int lenCep) {
    VORN_CHECK(notNull(pState, pLifter));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep));
    return lifter::initState(pState, lenDCT, lenCep, lifter::CallersLifter<Vorn32f>{pLifter});
}

// The one form whose weights are integers.
VornStatus vornsDCTLifterInit_MulC0_16s(VornDCTLifterState_16s* pState, int lenDCT, const Vorn32s* pLifter,
                                        int lenCep) {
    VORN_CHECK(notNull(pState, pLifter));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep));
    const std::int64_t bytes = lifter::LifterSize(lenDCT, lenCep).shortsMulC0();
    return lifter::initState(pState, lenDCT, lenCep, lifter::CallersLifterC0<Vorn32s>{pLifter}, bytes);
}

VornStatus vornsDCTLifterInitAlloc_32f(VornDCTLifterState_32f** ppState, int lenDCT, int lenCep, int nLifter,
                                       Vorn32f val) {
    VORN_CHECK(notNull(ppState));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep, nLifter));
    return lifter::allocateState(ppState, lenDCT, lenCep, lifter::RaisedSineLifter{nLifter, val});
}

VornStatus vornsDCTLifterInitAlloc_C0_32f(VornDCTLifterState_32f** ppState, int lenDCT, int lenCep, int nLifter,
                                          Vorn32f val, Vorn32f val0) {
    VORN_CHECK(notNull(ppState));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep, nLifter));
    return lifter::allocateState(ppState, lenDCT, lenCep, lifter::RaisedSineLifterC0{nLifter, val, val0});
}

VornStatus vornsDCTLifterInitAlloc_Mul_32f(VornDCTLifterState_32f** ppState, int lenDCT, const Vorn32f* pLifter,
                                           int lenCep) {
    VORN_CHECK(notNull(ppState, pLifter));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep));
    return lifter::allocateState(ppState, lenDCT, lenCep, lifter::CallersLifter<Vorn32f>{pLifter});
}

VornStatus vornsDCTLifterInitAlloc_MulC0_32f(VornDCTLifterState_32f** ppState, int lenDCT, const Vorn32f* pLifter,
                                             int lenCep) {
    VORN_CHECK(notNull(ppState, pLifter));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep));
    return lifter::allocateState(ppState, lenDCT, lenCep, lifter::CallersLifterC0<Vorn32f>{pLifter});
}

VornStatus vornsDCTLifterInitAlloc_16s(VornDCTLifterState_16s** ppState, int lenDCT, int lenCep, int nLifter,
                                       Vorn32f val) {
    VORN_CHECK(notNull(ppState));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep, nLifter));
    return lifter::allocateState(ppState, lenDCT, lenCep, lifter::RaisedSineLifter{nLifter, val});
}

VornStatus vornsDCTLifterInitAlloc_C0_16s(VornDCTLifterState_16s** ppState, int lenDCT, int lenCep, int nLifter,
                                          Vorn32f val, Vorn32f val0) {
    VORN_CHECK(notNull(ppState));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep, nLifter));
    return lifter::allocateState(ppState, lenDCT, lenCep, lifter::RaisedSineLifterC0{nLifter, val, val0});
}

VornStatus vornsDCTLifterInitAlloc_Mul_16s(VornDCTLifterState_16s** ppState, int lenDCT, const Vorn32f* pLifter,
                                           int lenCep) {
    VORN_CHECK(notNull(ppState, pLifter));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep));
    return lifter::allocateState(ppState, lenDCT, lenCep, lifter::CallersLifter<Vorn32f>{pLifter});
}

VornStatus vornsDCTLifterInitAlloc_MulC0_16s(VornDCTLifterState_16s** ppState, int lenDCT, const Vorn32f* pLifter,
                                             int lenCep) {
    VORN_CHECK(notNull(ppState, pLifter));
    VORN_CHECK(lifter::checkLengths(lenDCT, lenCep));
    return lifter::allocateState(ppState, lenDCT, lenCep, lifter::CallersLifterC0<Vorn32f>{pLifter});
}

VornStatus vornsDCTLifterFree_32f(VornDCTLifterState_32f* pState) {
    VORN_CHECK(notNull(pState));
    lifter::releaseState(pState);
    return vornStsNoErr;
}

VornStatus vornsDCTLifterFree_16s(VornDCTLifterState_16s* pState) {
    VORN_CHECK(notNull(pState));
    lifter::releaseState(pState);
    return vornStsNoErr;
}

VornStatus vornsDCTLifter_32f(const Vorn32f* src, Vorn32f* dst, const VornDCTLifterState_32f* pState) {
    VORN_CHECK(notNull(pState, src, dst));
    vornsDCTLifter_32f_M7(src, dst, pState);
    return vornStsNoErr;
}

VornStatus vornsDCTLifter_16s_Sfs(const Vorn16s* src, Vorn16s* dst, const VornDCTLifterState_16s* pState, int scale) {
    VORN_CHECK(notNull(pState, src, dst));
    lifter::liftFixed(src, dst, pState, scale);
    return vornStsNoErr;
}

VornStatus vornsDCTLifter_32s16s_Sfs(const Vorn32s* src, Vorn16s* dst, const VornDCTLifterState_16s* pState,
                                     int scale) {
    VORN_CHECK(notNull(pState, src, dst));
    lifter::liftFixed(src, dst, pState, scale);
    return vornStsNoErr;
}
