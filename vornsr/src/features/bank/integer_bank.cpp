#include "features/bank/integer_bank.h"

#include <cstring>

#include "features/bank/integer_scale.h"
#include "features/bank/pieces.h"
#include "features/bank/sides.h"

namespace vorn {
namespace integer_bank {
namespace {

__extension__ using Wide128 = __int128;

// A 64-bit number as its two words.
struct Words {
    std::int64_t high, low;
    explicit Words(std::int64_t x) : high(x >> 32), low(x & 0xFFFFFFFF) {}
};

// mel(frequency) in Q22. Of the ranges of a description, ln is below 7.32 and the product below 2^55.
std::int64_t melQ22(int frequency, const IntegerBank& bank) {
    const std::int64_t divQ22 = std::int64_t{bank.melDiv} << 7;
    const std::int64_t ln = lnQ22((std::int64_t{frequency} << 22) + divQ22) - lnQ22(divQ22);
    return (ln * bank.melMul) >> 15;
}

// Bins for each unit of exp(m / melMul) - 1, Q22, below 2^48. The product with the low word passes 64 bits at sampling
// rates of a few hertz.
std::int64_t binScale(const IntegerBank& bank) {
    const std::int64_t divQ22 = std::int64_t{bank.melDiv} << 7;
    const Words binsPerHz((std::int64_t{bank.fftLen} << 22) / bank.sampleFreq);
    return ((binsPerHz.high * divQ22) << 10) + static_cast<std::int64_t>((Wide128{binsPerHz.low} * divQ22) >> 22);
}

// The nFilter + 2 bins. m is below 2^40, so that it has room for its shift, and no bin passes 2^28.
void placeCenters(const IntegerBank& bank, Vorn32s* center) {
    const std::int64_t mulQ22 = std::int64_t{bank.melMul} << 7;
    const std::int64_t low = melQ22(bank.lowFreq, bank), range = melQ22(bank.highFreq, bank) - low;
    const std::int64_t steps = std::int64_t{bank.nFilter} + 1;
    const Words scale(binScale(bank));
    for (std::int64_t i = 0; i <= steps; ++i) {
        const std::int64_t m = (low * steps + i * range) / steps;
        const std::int64_t ratio = expQ22((m << 22) / mulQ22) - (1 << 22);
        const std::int64_t bins = scale.high * ratio * (1 << 10) + ((ratio * scale.low) >> 22);
        center[i] = static_cast<Vorn32s>((bins >> 22) + ((bins >> 21) & 1));
    }
}

}  // namespace
}  // namespace integer_bank

int integerBankSize(const IntegerBankShape& shape) {
    const std::int64_t half = shape.lastBin();
    return static_cast<int>(2 * shape.rows() * (4 * half + 40) + 4 * std::int64_t{shape.nFilter} + 176);
}

VornStatus initIntegerBank(void* block, const IntegerBankShape& shape, const IntegerBank& description) {
    VornFBankState_32s bank = {};
    bank.flags = vornFBankWeightFreq;
    bank.nFilter = shape.nFilter;
    bank.nBins = shape.nBins;
    BlockPieces pieces(static_cast<char*>(block) + sizeof bank);
    if (const VornStatus status = makeTables(bank, shape, pieces)) return status;
    integer_bank::placeCenters(description, bank.pCenters);
    fillWeights<FBankForm_32s>(bank, shape, StraightSides<FBankForm_32s>{bank.pCenters, {}});
    std::memcpy(block, &bank, sizeof bank);
    return vornStsNoErr;
}

}  // namespace vorn
