// Filter banks of noise reduction: the exported functions.
#include "aurora/banks/fixed_bank.h"
#include "frame/checks.h"
#include "vornsr/aurora.h"

using namespace vorn;

namespace vorn::aurora_bank {
namespace {

template <class Form, class Bank>
VornStatus reportSize(int* size) {
    VORN_CHECK(notNull(size));
    *size = static_cast<int>(tablesSize<Form>(Bank::shape));
    return vornStsNoErr;
}

template <class Form, class Bank>
VornStatus init(Vorn8u* ctxMem) {
    VORN_CHECK(notNull(ctxMem));
    return bankInBlock<Form>(ctxMem, makeFixedBank<Form, Bank, BlockPieces>);
}

template <class Form, class Bank>
VornStatus initAlloc(typename Form::State** ctxOut) {
    VORN_CHECK(notNull(ctxOut));
    return allocatedBank<Form>(ctxOut, makeFixedBank<Form, Bank, AllocatedPieces>);
}

}  // namespace
}  // namespace vorn::aurora_bank

VornStatus vornsMelFBankGetSizeLow_Aurora_32f(int* size) {
    return aurora_bank::reportSize<FBankForm_32f, aurora_bank::LowBank>(size);
}

VornStatus vornsMelFBankGetSizeHigh_Aurora_32f(int* size) {
    return aurora_bank::reportSize<FBankForm_32f, aurora_bank::HighBank>(size);
}

VornStatus vornsMelFBankGetSizeLow_Aurora_16s(int* size) {
    return aurora_bank::reportSize<FBankForm_16s, aurora_bank::LowBank>(size);
}

VornStatus vornsMelFBankGetSizeHigh_Aurora_16s(int* size) {
    return aurora_bank::reportSize<FBankForm_16s, aurora_bank::HighBank>(size);
}

VornStatus vornsMelFBankInitLow_Aurora_32f(Vorn8u* ctxMem) {
    return aurora_bank::init<FBankForm_32f, aurora_bank::LowBank>(ctxMem);
}

VornStatus vornsMelFBankInitHigh_Aurora_32f(Vorn8u* ctxMem) {
    return aurora_bank::init<FBankForm_32f, aurora_bank::HighBank>(ctxMem);
}

VornStatus vornsMelFBankInitLow_Aurora_16s(Vorn8u* ctxMem) {
    return aurora_bank::init<FBankForm_16s, aurora_bank::LowBank>(ctxMem);
}

VornStatus vornsMelFBankInitHigh_Aurora_16s(Vorn8u* ctxMem) {
    return aurora_bank::init<FBankForm_16s, aurora_bank::HighBank>(ctxMem);
}

VornStatus vornsMelFBankInitAllocLow_Aurora_32f(VornFBankState_32f** ctxOut) {
    return aurora_bank::initAlloc<FBankForm_32f, aurora_bank::LowBank>(ctxOut);
}

VornStatus vornsMelFBankInitAllocHigh_Aurora_32f(VornFBankState_32f** ctxOut) {
    return aurora_bank::initAlloc<FBankForm_32f, aurora_bank::HighBank>(ctxOut);
}

VornStatus vornsMelFBankInitAllocLow_Aurora_16s(VornFBankState_16s** ctxOut) {
    return aurora_bank::initAlloc<FBankForm_16s, aurora_bank::LowBank>(ctxOut);
}

VornStatus vornsMelFBankInitAllocHigh_Aurora_16s(VornFBankState_16s** ctxOut) {
    return aurora_bank::initAlloc<FBankForm_16s, aurora_bank::HighBank>(ctxOut);
}
