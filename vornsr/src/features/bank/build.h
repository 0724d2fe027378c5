// Construction of filter banks: memory, centres, weights.
#pragma once

#include "features/bank/filter_bank.h"
#include "features/bank/sides.h"

namespace vorn {

// Banks as their initialisers describe them.
struct MelBank {
    Vorn32f sampleFreq, lowFreq, highFreq;
    MelScale scale;
    int flags;
};

// The edges 0 to nLinear are equally spaced in hertz from lowFreq to highLinFreq, those from nLinear on in mel up to
// highFreq. Where nLinear is the number of filters, all edges lie between lowFreq and highLinFreq.
struct MixedBank {
    Vorn32f sampleFreq, lowFreq, highFreq, highLinFreq;
    int nLinear;
    MelScale scale;
    int flags;
};

// Order of the smallest power of two that is at least len and at least 2.
int transformOrder(int len);

// Bytes of a caller's block: of the record and the tables, and of a whole bank with the transform that its flags ask
// for; negative: the status of a failure.
template <class Form>
constexpr std::int64_t tablesSize(const BankShape& shape) {
    return Form::stateSlot + 12 * std::int64_t{shape.nFilter} + 16 * shape.rows() +
           4 * shape.rows() * (shape.riseStride() + shape.fallStride()) + 244;
}
template <class Form>
std::int64_t bankSize(const BankShape& shape, int flags);

// The block begins at any address.
template <class Form>
VornStatus initMelBank(void* block, const BankShape& shape, const MelBank& mel);

// On failure nothing stays allocated and *out is null.
template <class Form, class Description>
VornStatus allocateBank(typename Form::State** out, const BankShape& shape, const Description& bank);

// On failure behind the allocation of the record, *out is the bare record, which freeBank() takes.
template <class Form>
VornStatus allocateEmptyBank(typename Form::State** out, const BankShape& shape, bool forSamples);

// Releases a bank that the library allocated, as far as it was made.
template <class Form>
void freeBank(typename Form::State* bank);

}  // namespace vorn
