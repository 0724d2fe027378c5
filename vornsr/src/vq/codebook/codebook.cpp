// Codebooks: the exported functions.
#include "vq/codebook/clustering.h"
#include "vq/codebook/context.h"
#include "vq/codebook/grids.h"

using namespace vorn;

namespace vorn::vq {
namespace {

template <class T>
VornStatus givenWordsFit(int width, int step, int height, int nCluster) {
    VORN_CHECK(givenWordsHold(width, step, height, nCluster));
    return require(placedBytes<T>(width, step, nCluster) <= INT_MAX, vornStsSizeErr);
}

template <class T>
VornStatus sizeOf(int width, int step, int height, int nCluster, int* pSize) {
    VORN_CHECK(givenWordsFit<T>(width, step, height, nCluster));
    *pSize = static_cast<int>(placedBytes<T>(width, step, nCluster));
    return vornStsNoErr;
}

template <class T>
void placeWords(VornCdbkState& book, const T* src, int width, int step, int height, int hint) {
    book = {};
    book.maxDepth = height - 1;
    book.cdbkSize = height;
    book.vecLen = width;
    book.rowStep = static_cast<int>(placedWordStep(width, step));
    book.hint = hint;
    book.indexBits = bitsOfIndex(height);
    placeParts<T>(book, height);
    std::fill_n(static_cast<T*>(book.weights), width, T{1});
    copyWords(book, src, step, height);
}

template <class T>
VornStatus takeWords(VornCdbkState& book, const T* src, int step, int height, int nCluster) {
    copyWords(book, src, step, height);
    book.cdbkSize = height;
    book.maxDepth = height - 1;
    if (book.vecLen == 1) VORN_CHECK(LineMaker<T>(book).make());
    if (book.vecLen == 2 && height > 10) VORN_CHECK(SquareMaker<T>(book).make());
    return nCluster == height ? vornStsNoErr : vornStsCdbkSizeReduced;
}

template <class T>
VornStatus growTree(VornCdbkState& book, const T* src, int step, int height, int nCluster) {
    std::memset(book.words, 0, sizeof(T) * static_cast<std::size_t>(nCluster) * static_cast<std::size_t>(book.rowStep));
    Clustering<T> clustering(book, {src, book.vecLen, step, height}, nCluster);
    VORN_CHECK(require(static_cast<bool>(clustering), vornStsMemAllocErr));
    return clustering.grow(nCluster);
}

// Nothing stands at ppCdbk unless the context is complete.
template <class T>
VornStatus build(VornCdbkState** ppCdbk, const T* src, const T* weights, int width, int step, int height, int nCluster,
                 int hint) {
    const std::int64_t rowStep = ownWordStep<T>(width, step, hint);
    const std::int64_t words = hint == wordsAsGiven ? height : nCluster;
    VORN_CHECK(require(height * rowStep <= INT_MAX, vornStsMemAllocErr));
    MixedBlock block(ownBytes<T>(words, rowStep, width));
    VORN_CHECK(require(static_cast<bool>(block), vornStsMemAllocErr));
    VornCdbkState& book = *static_cast<VornCdbkState*>(block.get());
    book = {};
    book.vecLen = width;
    book.rowStep = static_cast<int>(rowStep);
    book.hint = hint;
    placeParts<T>(book, words);
    std::memcpy(book.weights, weights, sizeof(T) * static_cast<std::size_t>(width));
    if (!std::all_of(weights, weights + width, [](T w) { return w == 1; })) book.mode = isWeighted;

    VornStatus status = vornStsCdbkFlagErr;
    if (hint == wordsAsGiven) status = takeWords(book, src, step, height, nCluster);
    if (hint == largestRadius || hint == mostMembers) status = growTree(book, src, step, height, nCluster);
    if (status < 0) return status;
    book.indexBits = bitsOfIndex(book.cdbkSize);
    *ppCdbk = static_cast<VornCdbkState*>(block.release());
    return status;
}

template <class T>
VornStatus buildChecked(VornCdbkState** ppCdbk, const T* src, const T* weights, int width, int step, int height,
                        int nCluster, int hint) {
    VORN_CHECK(notNull(src, weights));
    VORN_CHECK(positive(width, step, height, nCluster));
    VORN_CHECK(require(step >= width && nCluster <= mostWords && height >= nCluster, vornStsSizeErr));
    VORN_CHECK(require(!std::any_of(weights, weights + width, [](T w) { return w < 0; }), vornStsBadArgErr));
    return build(ppCdbk, src, weights, width, step, height, nCluster, hint);
}

// The width is tested before all else: it is that of the ones.
template <class T>
VornStatus buildWithOnes(VornCdbkState** ppCdbk, const T* src, int width, int step, int height, int nCluster,
                         int hint) {
    VORN_CHECK(positive(width));
    Scratch<T> ones(width);
    VORN_CHECK(require(static_cast<bool>(ones), vornStsMemAllocErr));
    std::fill_n(ones.get(), width, T{1});
    return buildChecked<T>(ppCdbk, src, ones.get(), width, step, height, nCluster, hint);
}

VornStatus release(VornCdbkState* pCdbk) {
    VORN_CHECK(notNull(pCdbk));
    VornCdbkState& book = *recordAt(pCdbk);
    VORN_CHECK(notNull(static_cast<char*>(book.words)));
    switch (book.hint) {
        case wordsAsGiven:
            if ((book.mode & hasGrid) != 0) vornsFree(book.grid);
            break;
        case largestRadius:
        case mostMembers:
            vornsFree(book.root);
            break;
        default:
            return vornStsCdbkModeErr;
    }
    vornsFree(&book);
    return vornStsNoErr;
}

template <class T>
void copyOut(const VornCdbkState& book, T* dst, int dstStep) {
    const T* words = static_cast<const T*>(book.words);
    for (std::ptrdiff_t i = 0; i < book.cdbkSize; ++i) {
        std::memcpy(dst + i * dstStep, words + i * book.rowStep, sizeof(T) * static_cast<std::size_t>(book.vecLen));
    }
}

}  // namespace
}  // namespace vorn::vq

VornStatus vornsCdbkGetSize_32f(int width, int step, int height, int nCluster, int hint, int* pSize) {
    VORN_CHECK(vq::needsNoTree(hint));
    VORN_CHECK(notNull(pSize));
    return vq::sizeOf<Vorn32f>(width, step, height, nCluster, pSize);
}

VornStatus vornsCdbkGetSize_16s(int width, int step, int height, int nCluster, int hint, int* pSize) {
    VORN_CHECK(vq::needsNoTree(hint));
    VORN_CHECK(notNull(pSize));
    return vq::sizeOf<Vorn16s>(width, step, height, nCluster, pSize);
}

VornStatus vornsCdbkInit_L2_32f(VornCdbkState* pCdbk, const Vorn32f* src, int width, int step, int height, int nCluster,
                                int hint) {
    VORN_CHECK(vq::needsNoTree(hint));
    VORN_CHECK(notNull(src, pCdbk));
    VORN_CHECK(vq::givenWordsFit<Vorn32f>(width, step, height, nCluster));
    vq::placeWords(*vq::recordAt(pCdbk), src, width, step, height, hint);
    return vornStsNoErr;
}

VornStatus vornsCdbkInit_L2_16s(VornCdbkState* pCdbk, const Vorn16s* src, int width, int step, int height, int nCluster,
                                int hint) {
    VORN_CHECK(vq::needsNoTree(hint));
    VORN_CHECK(notNull(src, pCdbk));
    VORN_CHECK(vq::givenWordsFit<Vorn16s>(width, step, height, nCluster));
    vq::placeWords(*vq::recordAt(pCdbk), src, width, step, height, hint);
    return vornStsNoErr;
}

VornStatus vornsCdbkInitAlloc_L2_32f(VornCdbkState** ppCdbk, const Vorn32f* src, int width, int step, int height,
                                     int nCluster, int hint) {
    return vq::buildWithOnes(ppCdbk, src, width, step, height, nCluster, hint);
}

VornStatus vornsCdbkInitAlloc_L2_16s(VornCdbkState** ppCdbk, const Vorn16s* src, int width, int step, int height,
                                     int nCluster, int hint) {
    return vq::buildWithOnes(ppCdbk, src, width, step, height, nCluster, hint);
}

VornStatus vornsCdbkInitAlloc_WgtL2_32f(VornCdbkState** ppCdbk, const Vorn32f* src, const Vorn32f* weights, int width,
                                        int step, int height, int nCluster, int hint) {
    return vq::buildChecked(ppCdbk, src, weights, width, step, height, nCluster, hint);
}

VornStatus vornsCdbkInitAlloc_WgtL2_16s(VornCdbkState** ppCdbk, const Vorn16s* src, const Vorn16s* weights, int width,
                                        int step, int height, int nCluster, int hint) {
    return vq::buildChecked(ppCdbk, src, weights, width, step, height, nCluster, hint);
}

VornStatus vornsCdbkFree_32f(VornCdbkState* pCdbk) { return vq::release(pCdbk); }
VornStatus vornsCdbkFree_16s(VornCdbkState* pCdbk) { return vq::release(pCdbk); }

VornStatus vornsGetCdbkSize_32f(const VornCdbkState* pCdbk, int* pSize) {
    VORN_CHECK(notNull(pCdbk, pSize));
    *pSize = vq::recordAt(pCdbk)->cdbkSize;
    return vornStsNoErr;
}

VornStatus vornsGetCdbkSize_16s(const VornCdbkState* pCdbk, int* pSize) { return vornsGetCdbkSize_32f(pCdbk, pSize); }

VornStatus vornsGetCodebook_32f(const VornCdbkState* pCdbk, Vorn32f* dst, int dstStep) {
    VORN_CHECK(notNull(pCdbk, dst));
    VORN_CHECK(atLeast(std::max(1, vq::recordAt(pCdbk)->vecLen), dstStep));
    vq::copyOut(*vq::recordAt(pCdbk), dst, dstStep);
    return vornStsNoErr;
}

VornStatus vornsGetCodebook_16s(const VornCdbkState* pCdbk, Vorn16s* dst, int dstStep) {
    VORN_CHECK(notNull(pCdbk, dst));
    VORN_CHECK(atLeast(std::max(1, vq::recordAt(pCdbk)->vecLen), dstStep));
    vq::copyOut(*vq::recordAt(pCdbk), dst, dstStep);
    return vornStsNoErr;
}
