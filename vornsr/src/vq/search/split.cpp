// Vectors in several streams, a codebook for each: the exported functions.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "frame/checks.h"
#include "move/move_kernels.h"
#include "vq/forming/bits.h"
#include "vq/forming/streams.h"
#include "vq/search/search.h"

namespace vorn::vq {
namespace {

// Where the indices of a stream go.

template <class Index>
struct IndexColumn {
    Index* first;
    std::ptrdiff_t step;
    void put(std::ptrdiff_t row, int index) const { first[row * step] = static_cast<Index>(index); }
};
struct BitColumn {
    Vorn8u* stream;
    std::int64_t first, step;
    int bits;
    void put(std::ptrdiff_t row, int index) const {
        joinBits(stream, first + row * step, bits, static_cast<std::uint32_t>(index));
    }
};

// One stream after the other, so that each codebook stays in the cache.
template <class T, class ColumnOf>
VornStatus quantise(const T* src, std::ptrdiff_t srcStep, std::ptrdiff_t height, const Streams& streams,
                    const SearchRoom<T>& room, ColumnOf columnOf) {
    for (int s = 0; s < streams.count; ++s) {
        const VornCdbkState& book = streams[s];
        const Search<T> search(book, room);
        const auto column = columnOf(s, book);
        VORN_CHECK(search.overRows(src, srcStep, height,
                                   [&](std::ptrdiff_t row, const Found& found) { column.put(row, found.index); }));
        src += book.vecLen;
    }
    return vornStsNoErr;
}

VornStatus checkWidths(const Streams& streams, int srcStep) {
    VORN_CHECK(streams.allThere());
    return require(streams.sumOf(&VornCdbkState::vecLen) <= srcStep, vornStsSizeErr);
}

template <class T, class Index>
VornStatus toIndices(const T* src, int srcStep, Index* dst, int dstStep, int height, const Streams& streams) {
    VORN_CHECK(notNull(streams.codebooks, src, dst));
    VORN_CHECK(positive(srcStep, dstStep, height, streams.count));
    VORN_CHECK(require(streams.count <= dstStep, vornStsSizeErr));
    VORN_CHECK(checkWidths(streams, srcStep));
    const SearchRoom<T> room(streams.widest());
    if (!room) return vornStsMemAllocErr;
    return quantise(src, srcStep, height, streams, room, [=](int s, const VornCdbkState&) {
        return IndexColumn<Index>{dst + s, dstStep};
    });
}

template <class T>
VornStatus toBits(const T* src, int srcStep, Vorn8u* dst, int dstBitStep, int height, const Streams& streams) {
    VORN_CHECK(notNull(streams.codebooks, src, dst));
    VORN_CHECK(positive(srcStep, dstBitStep, height, streams.count));
    VORN_CHECK(checkWidths(streams, srcStep));
    VORN_CHECK(require(streams.sumOf(&VornCdbkState::indexBits) <= dstBitStep, vornStsSizeErr));
    const SearchRoom<T> room(streams.widest());
    if (!room) return vornStsMemAllocErr;
    ownsSet_8u_M7(0, dst, (std::int64_t{dstBitStep} * height + 7) / 8);
    std::int64_t at = 0;
    return quantise(src, srcStep, height, streams, room, [=](int, const VornCdbkState& book) mutable {
        const BitColumn column = {dst, at, dstBitStep, book.indexBits};
        at += book.indexBits;
        return column;
    });
}

}  // namespace
}  // namespace vorn::vq

using namespace vorn;

VornStatus vornsSplitVQ_32f16s(const Vorn32f* src, int srcStep, Vorn16s* dst, int dstStep, int height,
                               const VornCdbkState* const* ppCdbks, int nStream) {
    return vq::toIndices(src, srcStep, dst, dstStep, height, {ppCdbks, nStream});
}

VornStatus vornsSplitVQ_32f8u(const Vorn32f* src, int srcStep, Vorn8u* dst, int dstStep, int height,
                              const VornCdbkState* const* ppCdbks, int nStream) {
    return vq::toIndices(src, srcStep, dst, dstStep, height, {ppCdbks, nStream});
}

VornStatus vornsSplitVQ_16s16s(const Vorn16s* src, int srcStep, Vorn16s* dst, int dstStep, int height,
                               const VornCdbkState* const* ppCdbks, int nStream) {
    return vq::toIndices(src, srcStep, dst, dstStep, height, {ppCdbks, nStream});
}

VornStatus vornsSplitVQ_16s8u(const Vorn16s* src, int srcStep, Vorn8u* dst, int dstStep, int height,
                              const VornCdbkState* const* ppCdbks, int nStream) {
    return vq::toIndices(src, srcStep, dst, dstStep, height, {ppCdbks, nStream});
}

VornStatus vornsSplitVQ_32f1u(const Vorn32f* src, int srcStep, Vorn8u* dst, int dstBitStep, int height,
                              const VornCdbkState* const* ppCdbks, int nStream) {
    return vq::toBits(src, srcStep, dst, dstBitStep, height, {ppCdbks, nStream});
}

VornStatus vornsSplitVQ_16s1u(const Vorn16s* src, int srcStep, Vorn8u* dst, int dstBitStep, int height,
                              const VornCdbkState* const* ppCdbks, int nStream) {
    return vq::toBits(src, srcStep, dst, dstBitStep, height, {ppCdbks, nStream});
}
