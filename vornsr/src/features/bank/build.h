// Construction of filter banks: memory, centres, weights.
#pragma once

#include "features/bank/filter_bank.h"

namespace vorn {

struct MelScale {
    Vorn32f melMul, melDiv;
};

// A bank as its initialisers describe it.
struct MelBank {
    Vorn32f sampleFreq, lowFreq, highFreq;
    MelScale scale;
    int flags;
};

// Order of the smallest power of two that is at least len and at least 2.
int transformOrder(int len);

// Bytes of a caller's block; negative: the status of a failure.
template <class Form>
std::int64_t bankSize(const BankShape& shape, int flags);

// The block begins at any address.
template <class Form>
VornStatus initMelBank(void* block, const BankShape& shape, const MelBank& mel);

// On failure nothing stays allocated and *out is null.
template <class Form>
VornStatus allocateMelBank(typename Form::State** out, const BankShape& shape, const MelBank& mel);

// Releases a bank that the library allocated, as far as it was made.
template <class Form>
void freeBank(typename Form::State* bank);

}  // namespace vorn
