// DCT lifter: the exported functions and the kernel that keeps its name.
#include "features/cepstrum/kernels.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "frame/memory.h"

using namespace vorn;

namespace {

// The checks behind the null check.
template <class... Length>
VornStatus checkLengths(int lenDCT, int lenCep, Length... more) {
    VORN_CHECK(positive(lenDCT, lenCep, more...));
    return atLeast(lenCep, lenDCT);
}

// Makes a context, or none: on failure what was made goes back and *ppState is null.
template <class Lifter>
VornStatus allocateState(VornDCTLifterState_32f** ppState, int lenDCT, int lenCep, const Lifter& lifter) {
    *ppState = nullptr;
    Scratch<VornDCTLifterState_32f> state(1);
    Scratch<Vorn32f> weight(std::int64_t{lenCep} + 1);
    Scratch<Vorn32f> table(cosineTableLen(lenDCT, lenCep));
    if (!state || !weight || !table) return vornStsMemAllocErr;
    lifter.fill(weight.get(), lenCep);
    Vorn32f** rows = fillCosines(table.release(), lenDCT, lenCep);
    *state.get() = {lifter.nLifter, lenDCT, lenCep, Lifter::withC0, weight.release(), rows};
    *ppState = state.release();
    return vornStsNoErr;
}

}  // namespace

VORN_KERNEL void vornsDCTLifter_32f_M7(const Vorn32f* src, Vorn32f* dst, const VornDCTLifterState_32f* pState) {
    dctLifter(src, dst, pState->pLifter, pState->ppCos, pState->lenDCT, pState->lenCep, pState->withC0);
}
VORN_KERNEL_ALIAS(vornsDCTLifter_32f_M7_Al, vornsDCTLifter_32f_M7);

VornStatus vornsDCTLifterInitAlloc_32f(VornDCTLifterState_32f** ppState, int lenDCT, int lenCep, int nLifter,
                                       Vorn32f val) {
    VORN_CHECK(notNull(ppState));
    VORN_CHECK(checkLengths(lenDCT, lenCep, nLifter));
    return allocateState(ppState, lenDCT, lenCep, RaisedSineLifter{nLifter, val});
}

VornStatus vornsDCTLifterInitAlloc_C0_32f(VornDCTLifterState_32f** ppState, int lenDCT, int lenCep, int nLifter,
                                          Vorn32f val, Vorn32f val0) {
    VORN_CHECK(notNull(ppState));
    VORN_CHECK(checkLengths(lenDCT, lenCep, nLifter));
    return allocateState(ppState, lenDCT, lenCep, RaisedSineLifterC0{nLifter, val, val0});
}

VornStatus vornsDCTLifterFree_32f(VornDCTLifterState_32f* pState) {
    VORN_CHECK(notNull(pState));
    if (pState->ppCos != nullptr) vornsFree(pState->ppCos[0]);  // the first row begins the table's block
    vornsFree(pState->pLifter);
    vornsFree(pState);
    return vornStsNoErr;
}

VornStatus vornsDCTLifter_32f(const Vorn32f* src, Vorn32f* dst, const VornDCTLifterState_32f* pState) {
    VORN_CHECK(notNull(pState, src, dst));
    vornsDCTLifter_32f_M7(src, dst, pState);
    return vornStsNoErr;
}
