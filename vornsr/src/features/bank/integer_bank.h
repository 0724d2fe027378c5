// The bank that is made in integer arithmetic alone.
#pragma once

#include "features/bank/filter_bank.h"

namespace vorn {

// A bank as its initialiser describes it: frequencies in hertz, the mel scale in Q15. As the checks leave it:
// 0 <= lowFreq < highFreq <= 24000, 1 <= sampleFreq <= 48000, 2^19 < melMul < 2^30, 2^19 < melDiv < 2^28.
struct IntegerBank {
    int fftLen, sampleFreq, lowFreq, highFreq, nFilter, melMul, melDiv;
};

// Bytes of a caller's block, of transforms up to 8192 and no more filters than half of that and one.
int integerBankSize(const IntegerBankShape& shape);

// The block begins at any address.
VornStatus initIntegerBank(void* block, const IntegerBankShape& shape, const IntegerBank& description);

}  // namespace vorn
