// The memory that filter banks are made in: pieces of a caller's block, or blocks of the library's own.
#pragma once

#include <algorithm>
#include <cstdint>
#include <type_traits>

#include "features/bank/build.h"
#include "features/bank/filter_bank.h"
#include "features/pieces.h"
#include "frame/align.h"

namespace vorn {

// The pieces of a context, and the context of a transform, which is one more of them.
class BlockPieces : public context::BlockPieces {
public:
    using context::BlockPieces::BlockPieces;
    template <class Form>
    VornStatus makeTransform(typename Form::Spec** spec, int order, int specSize, int initSize) {
        auto* specMem = take<Vorn8u>(specSize);
        return Form::initTransform(spec, order, specMem, take<Vorn8u>(initSize));
    }
};
class AllocatedPieces : public context::AllocatedPieces {
public:
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

// Centres and rows of a bank whose shape says how many there are and how long.
template <class State, class Shape, class Pieces>
VornStatus makeTables(State& bank, const Shape& shape, Pieces& pieces) {
    using Weight = std::remove_reference_t<decltype(**bank.ppRise)>;
    bank.pCenters = pieces.template take<Vorn32s>(shape.centers());
    bank.ppRise = makeRows<Weight>(pieces, shape.rows(), shape.riseStride(), Shape::riseAdvance);
    bank.ppFall = makeRows<Weight>(pieces, shape.rows(), shape.fallStride(), 0);
    const bool made = bank.pCenters != nullptr && bank.ppRise != nullptr && bank.ppFall != nullptr;
    return made ? vornStsNoErr : vornStsMemAllocErr;
}

// A record that says how long the tables are and what they hold, with no tables yet.
template <class Form>
typename Form::State bankRecord(const BankShape& shape, int flags) {
    typename Form::State bank = {};
    bank.flags = flags;
    bank.fftLen = shape.fftLen;
    bank.fftOrder = shape.fftOrder;
    bank.nFilter = shape.nFilter;
    bank.nLinear = shape.nFilter;
    Form::fixRecord(bank);
    return bank;
}

// make(bank, pieces) makes everything that a record says and names. A bank at the start of a block, which begins at any
// address:
template <class Form, class Make>
VornStatus bankInBlock(void* block, const Make& make) {
    typename Form::State bank;
    BlockPieces pieces(static_cast<char*>(block) + sizeof bank);
    if (const VornStatus status = make(bank, pieces)) return status;
    context::putRecord(static_cast<typename Form::State*>(block), bank);
    return vornStsNoErr;
}
// and one that the library allocates; on failure nothing stays allocated and *out is null.
template <class Form, class Make>
VornStatus allocatedBank(typename Form::State** out, const Make& make) {
    *out = nullptr;
    AllocatedPieces pieces;
    auto* bank = pieces.take<typename Form::State>(1);
    if (bank == nullptr) return vornStsMemAllocErr;
    if (const VornStatus status = make(*bank, pieces)) {
        freeBank<Form>(bank);
        return status;
    }
    *out = bank;
    return vornStsNoErr;
}

}  // namespace vorn
