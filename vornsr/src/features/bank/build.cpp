#include "features/bank/build.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "elementary/elementary.h"
#include "frame/memory.h"
#include "simd/simd.h"

namespace vorn {
namespace {

// Both sources of memory hand out pieces on 32-byte addresses. A piece that cannot be had is null.

// A caller's block, which has room for all pieces of the reported size.
class BlockPieces {
public:
    explicit BlockPieces(char* first) : next_(first) {}

    template <class T>
    T* take(std::int64_t len) {
        char* piece = alignedUp(next_, 32);
        next_ = piece + len * static_cast<std::int64_t>(sizeof(T));
        return reinterpret_cast<T*>(piece);
    }
    template <class Form>
    VornStatus makeTransform(typename Form::Spec** spec, int order, int specSize, int initSize) {
        auto* specMem = take<Vorn8u>(specSize);
        return Form::initTransform(spec, order, specMem, take<Vorn8u>(initSize));
    }

private:
    char* next_;
};

// Blocks of the library's own, one a piece: freeBank() knows them by the record.
class AllocatedPieces {
public:
    template <class T>
    T* take(std::int64_t len) {
        return Scratch<T>(len).release();
    }
    template <class Form>
    VornStatus makeTransform(typename Form::Spec** spec, int order, int, int) {
        return Form::allocateTransform(spec, order);
    }
};

// A row pointer array with its rows behind it in one piece, all zero; each pointer stands advance elements into its
// row.
template <class Weight, class Pieces>
Weight** makeRows(Pieces& pieces, std::int64_t rows, std::int64_t stride, std::int64_t advance) {
    constexpr std::int64_t pointer = sizeof(Weight*);
    const std::int64_t pointersLen = roundUp(rows * pointer, 32) / static_cast<std::int64_t>(sizeof(Weight));
    auto* piece = pieces.template take<Weight>(pointersLen + rows * stride);
    if (piece == nullptr) return nullptr;
    auto** pointers = reinterpret_cast<Weight**>(piece);
    Weight* row = piece + pointersLen;
    std::fill_n(row, rows * stride, Weight(0));
    for (std::int64_t k = 0; k < rows; ++k, row += stride) pointers[k] = row + advance;
    return pointers;
}

// Everything but centres and weights.
template <class Form, class Pieces>
VornStatus makeBank(typename Form::State& bank, const BankShape& shape, int flags, Pieces& pieces) {
    bank = {};
    bank.flags = flags;
    bank.fftLen = shape.fftLen;
    bank.fftOrder = shape.fftOrder;
    bank.nFilter = shape.nFilter;
    bank.nLinear = shape.nFilter;
    Form::fixRecord(bank);
    using Weight = typename Form::Weight;
    bank.pCenters = pieces.template take<Vorn32s>(shape.rows());
    bank.ppRise = makeRows<Weight>(pieces, shape.rows(), shape.riseStride(), BankShape::riseAdvance);
    bank.ppFall = makeRows<Weight>(pieces, shape.rows(), shape.fallStride(), 0);
    if (bank.pCenters == nullptr || bank.ppRise == nullptr || bank.ppFall == nullptr) return vornStsMemAllocErr;
    if ((flags & vornFBankSamples) == 0) return vornStsNoErr;

    int specSize, initSize, workSize;
    if (const VornStatus status = Form::transformSizes(shape.fftOrder, &specSize, &initSize, &workSize)) return status;
    bank.pWork = pieces.template take<Weight>(shape.spectrumLen() + roundUp(workSize, sizeof(Weight)) /
                                                                        static_cast<std::int64_t>(sizeof(Weight)));
    if (bank.pWork == nullptr) return vornStsMemAllocErr;
    return pieces.template makeTransform<Form>(&bank.pFftSpec, shape.fftOrder, specSize, initSize);
}

Vorn32f melOf(const MelScale& scale, Vorn32f ratioPlusOne) {
    return static_cast<Vorn32f>(scale.melMul * log64(ratioPlusOne));
}

// The mel values of the nFilter + 2 edges and centres, equally spaced, into mel; their bins into centers. The product
// of the two steps stays in single; work has as many elements as mel.
void melCenters(const BankShape& shape, const MelBank& bank, Vorn32f* mel, Vorn32f* work, Vorn32s* centers) {
    const auto& [melMul, melDiv] = bank.scale;
    const Vorn32f low = melOf(bank.scale, bank.lowFreq / melDiv + 1.0f);
    const Vorn32f range = melOf(bank.scale, bank.highFreq / melDiv + 1.0f) - low;
    const Vorn32f binScale = static_cast<Vorn32f>(shape.fftLen) / bank.sampleFreq * melDiv;
    const int count = static_cast<int>(shape.rows());
    for (int i = 0; i < count; ++i) {
        mel[i] = static_cast<Vorn32f>(i) * range / static_cast<Vorn32f>(count - 1) + low;
        work[i] = static_cast<Vorn32f>(exp64(mel[i] / melMul) - 1.0) * binScale;
    }
    vornsConvert_32f32s_Sfs(work, centers, count, bank.flags & vornFBankWeightFreq ? vornRndNear : vornRndZero, 0);
}

// The weights of one filter between its edges. Both say the weight of the rising side at a bin and of the falling one;
// element 0 of a rising row belongs to the left edge itself.

template <class Form>
struct StraightSides {
    const Vorn32s* center;
    typename Form::Weight rise(std::int64_t k, std::int64_t bin) const {
        return Form::fraction(bin - center[k - 1] + 1, std::int64_t{center[k]} - center[k - 1] + 1);
    }
    typename Form::Weight fall(std::int64_t k, std::int64_t bin) const {
        return Form::fraction(center[k + 1] - bin + 1, std::int64_t{center[k + 1]} - center[k] + 1);
    }
};

// Along the mel scale, from the mel values of edges and centre; nothing is clamped, so that truncated centres can give
// weights a little outside 0 to 1.
template <class Form>
struct MelSides {
    const Vorn32s* center;
    const Vorn32f* mel;
    MelScale scale;
    Vorn32f binHz;

    Vorn32f melAt(std::int64_t bin) const {
        const Vorn32f ratio = static_cast<Vorn32f>(bin) * binHz / scale.melDiv;
        return static_cast<Vorn32f>(scale.melMul * log64(static_cast<double>(ratio) + 1.0));
    }
    typename Form::Weight rise(std::int64_t k, std::int64_t bin) const {
        if (bin == center[k - 1]) return 0;
        return Form::quotient(melAt(bin) - mel[k - 1], mel[k] - mel[k - 1]);
    }
    typename Form::Weight fall(std::int64_t k, std::int64_t bin) const {
        return Form::quotient(mel[k + 1] - melAt(bin), mel[k + 1] - mel[k]);
    }
};

// Weights that have no place in their row are left out.
template <class State, class Sides>
void fillWeights(State& bank, const BankShape& shape, const Sides& sides) {
    const Vorn32s* center = bank.pCenters;
    for (std::int64_t k = 1; k <= bank.nFilter; ++k) {
        const std::int64_t left = center[k - 1], middle = center[k], right = center[k + 1];
        const std::int64_t riseEnd = std::min(middle + 1, left + shape.riseCapacity());
        const std::int64_t fallEnd = std::min(right + 1, middle + 1 + shape.fallCapacity());
        for (std::int64_t bin = left; bin < riseEnd; ++bin) bank.ppRise[k - 1][bin - left] = sides.rise(k, bin);
        for (std::int64_t bin = middle + 1; bin < fallEnd; ++bin)
            bank.ppFall[k - 1][bin - middle - 1] = sides.fall(k, bin);
    }
}

// mel and work: shape.rows() elements each.
template <class Form>
void fillMelBank(typename Form::State& bank, const BankShape& shape, const MelBank& mel, Vorn32f* melValues,
                 Vorn32f* work) {
    bank.melMul = mel.scale.melMul;
    bank.melDiv = mel.scale.melDiv;
    melCenters(shape, mel, melValues, work, bank.pCenters);
    if (mel.flags & vornFBankWeightFreq) {
        fillWeights(bank, shape, StraightSides<Form>{bank.pCenters});
    } else {
        const Vorn32f binHz = mel.sampleFreq / static_cast<Vorn32f>(shape.fftLen);
        fillWeights(bank, shape, MelSides<Form>{bank.pCenters, melValues, mel.scale, binHz});
    }
    bank.ready = 1;
}

}  // namespace

Vorn32s FBankForm_16s::quotient(Vorn32f part, Vorn32f whole) {
    return firstLane(truncToInt(splat<f32x4>(part * 16384.0f / whole)));
}

int transformOrder(int len) {
    int order = 1;
    while ((std::int64_t{1} << order) < len) ++order;
    return order;
}

template <class Form>
std::int64_t bankSize(const BankShape& shape, int flags) {
    std::int64_t size = Form::stateSlot + 12 * std::int64_t{shape.nFilter} + 16 * shape.rows() +
                        4 * shape.rows() * (shape.riseStride() + shape.fallStride()) + 244;
    if (flags & vornFBankSamples) {
        int specSize, initSize, workSize;
        if (const VornStatus status = Form::transformSizes(shape.fftOrder, &specSize, &initSize, &workSize))
            return status;
        size += 96 + 40 + 4 * std::int64_t{shape.fftLen} + specSize + initSize + workSize;
    }
    return size;
}

template <class Form>
VornStatus initMelBank(void* block, const BankShape& shape, const MelBank& mel) {
    typename Form::State bank;
    BlockPieces pieces(static_cast<char*>(block) + sizeof bank);
    if (const VornStatus status = makeBank<Form>(bank, shape, mel.flags, pieces)) return status;
    auto* melValues = pieces.take<Vorn32f>(shape.rows());
    fillMelBank<Form>(bank, shape, mel, melValues, pieces.take<Vorn32f>(shape.rows()));
    std::memcpy(block, &bank, sizeof bank);
    return vornStsNoErr;
}

template <class Form>
VornStatus allocateMelBank(typename Form::State** out, const BankShape& shape, const MelBank& mel) {
    *out = nullptr;
    AllocatedPieces pieces;
    auto* bank = pieces.take<typename Form::State>(1);
    if (bank == nullptr) return vornStsMemAllocErr;
    VornStatus status = makeBank<Form>(*bank, shape, mel.flags, pieces);
    const Scratch<Vorn32f> melValues(status ? 0 : 2 * shape.rows());
    if (status == vornStsNoErr && !melValues) status = vornStsMemAllocErr;
    if (status != vornStsNoErr) {
        freeBank<Form>(bank);
        return status;
    }
    fillMelBank<Form>(*bank, shape, mel, melValues.get(), melValues.get() + shape.rows());
    *out = bank;
    return vornStsNoErr;
}

template <class Form>
void freeBank(typename Form::State* bank) {
    bank->ready = 0;
    vornsFree(bank->pCenters);
    vornsFree(bank->ppRise);
    vornsFree(bank->ppFall);
    vornsFree(bank->pWork);
    if (bank->pFftSpec != nullptr) Form::freeTransform(bank->pFftSpec);
    vornsFree(bank);
}

template std::int64_t bankSize<FBankForm_32f>(const BankShape&, int);
template std::int64_t bankSize<FBankForm_16s>(const BankShape&, int);
template VornStatus initMelBank<FBankForm_32f>(void*, const BankShape&, const MelBank&);
template VornStatus initMelBank<FBankForm_16s>(void*, const BankShape&, const MelBank&);
template VornStatus allocateMelBank<FBankForm_32f>(VornFBankState_32f**, const BankShape&, const MelBank&);
template VornStatus allocateMelBank<FBankForm_16s>(VornFBankState_16s**, const BankShape&, const MelBank&);
template void freeBank<FBankForm_32f>(VornFBankState_32f*);
template void freeBank<FBankForm_16s>(VornFBankState_16s*);

}  // namespace vorn
