// The nearest word of each vector: the exported functions.
#include <cstddef>

#include "frame/checks.h"
#include "move/convert_kernels.h"
#include "vq/search/search.h"

namespace vorn::vq {
namespace {

template <class T, class Dst>
VornStatus checkRows(const T* src, int srcStep, const Vorn32s* dstIndex, const Dst* dstDist, int height,
                     const VornCdbkState* book) {
    VORN_CHECK(notNull(book, src, dstIndex, dstDist));
    VORN_CHECK(positive(srcStep, height));
    return require(srcStep >= book->vecLen, vornStsSizeErr);
}

// The distance of a tree's word is computed anew, whichever way the search went.
template <class T>
VornStatus withDistances(const T* src, std::ptrdiff_t srcStep, Vorn32s* dstIndex, Vorn32f* dstDist, int height,
                         const VornCdbkState& book) {
    const SearchRoom<T> room(book.vecLen);
    if (!room) return vornStsMemAllocErr;
    const Search<T> search(book, room);
    return search.overRows(src, srcStep, height, [&](std::ptrdiff_t row, const Found& found) {
        dstIndex[row] = found.index;
        dstDist[row] = search.withDistance(src + row * srcStep, found).root();
    });
}

template <class T>
VornStatus indicesOnly(const T* src, int srcStep, Vorn32s* dstIndex, int height, const VornCdbkState* book) {
    VORN_CHECK(checkRows(src, srcStep, dstIndex, dstIndex, height, book));
    const SearchRoom<T> room(book->vecLen);
    if (!room) return vornStsMemAllocErr;
    const Search<T> search(*book, room);
    return search.overRows(src, srcStep, height,
                           [=](std::ptrdiff_t row, const Found& found) { dstIndex[row] = found.index; });
}

}  // namespace
}  // namespace vorn::vq

using namespace vorn;

VornStatus vornsVQ_32f(const Vorn32f* src, int srcStep, Vorn32s* dstIndex, int height, const VornCdbkState* pCdbk) {
    return vq::indicesOnly(src, srcStep, dstIndex, height, vq::recordAt(pCdbk));
}

VornStatus vornsVQ_16s(const Vorn16s* src, int srcStep, Vorn32s* dstIndex, int height, const VornCdbkState* pCdbk) {
    return vq::indicesOnly(src, srcStep, dstIndex, height, vq::recordAt(pCdbk));
}

VornStatus vornsVQDist_32f(const Vorn32f* src, int srcStep, Vorn32s* dstIndex, Vorn32f* dstDist, int height,
                           const VornCdbkState* pCdbk) {
    VORN_CHECK(vq::checkRows(src, srcStep, dstIndex, dstDist, height, vq::recordAt(pCdbk)));
    return vq::withDistances(src, srcStep, dstIndex, dstDist, height, *vq::recordAt(pCdbk));
}

// The distances stand as singles where the integers are to stand.
VornStatus vornsVQDist_16s32s_Sfs(const Vorn16s* src, int srcStep, Vorn32s* dstIndex, Vorn32s* dstDist, int height,
                                  const VornCdbkState* pCdbk, int scaleFactor) {
    VORN_CHECK(vq::checkRows(src, srcStep, dstIndex, dstDist, height, vq::recordAt(pCdbk)));
    auto* singles = reinterpret_cast<Vorn32f*>(dstDist);
    VORN_CHECK(vq::withDistances(src, srcStep, dstIndex, singles, height, *vq::recordAt(pCdbk)));
    if (vq::isSearched(*vq::recordAt(pCdbk))) convert(singles, dstDist, height, vornRndNear, scaleFactor);
    return vornStsNoErr;
}
