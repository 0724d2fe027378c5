// Block-diagonal covariances: the context, and the Gaussian scores of one vector.
#include "scoring/gauss/one_vector/block_diagonal.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>

#include "frame/checks.h"
#include "frame/memory.h"
#include "frame/opaque.h"
#include "frame/scale.h"
#include "scoring/gauss/forms.h"
#include "scoring/gauss/one_vector/block_diagonal_sums.h"

using namespace vorn;

namespace {

constexpr std::int64_t roundedTo16(std::int64_t bytes) { return (bytes + 15) & ~std::int64_t{15}; }

VornStatus sizesPositive(const int* blockSizes, int numBlocks) {
    return require(std::all_of(blockSizes, blockSizes + numBlocks, [](int size) { return size > 0; }), vornStsSizeErr);
}

// What is asked for a context, or more than an int can say. A block counts with the square of its padded row bytes,
// which is more than its rows take.
template <class T>
std::int64_t contextBytes(const int* blockSizes, int numBlocks) {
    constexpr std::int64_t tooMuch = std::int64_t{INT_MAX} + 1;
    std::int64_t rows = 0, squares = 0;
    for (int block = 0; block < numBlocks; ++block) {
        const std::int64_t rowBytes = roundedTo16(std::int64_t{blockSizes[block]} * static_cast<int>(sizeof(T)));
        if (rowBytes >= 65536) return tooMuch;
        rows += blockSizes[block];
        squares += rowBytes * rowBytes;
        if (squares > INT_MAX) return tooMuch;
    }
    return std::min(tooMuch, roundedTo16(std::int64_t{numBlocks} * static_cast<int>(sizeof(int))) +
                                 roundedTo16(rows * static_cast<int>(sizeof(T*))) + 47 + squares);
}

// Record, block sizes, row pointers, rows: each at the next address that is a multiple of 16.
template <class Matrix, class T>
VornStatus initAlloc(Matrix** result, const T* const* rows, const int* blockSizes, int numBlocks) {
    VORN_CHECK(notNull(result, rows, blockSizes));
    VORN_CHECK(positive(numBlocks));
    VORN_CHECK(sizesPositive(blockSizes, numBlocks));
    Scratch<Vorn8u> memory(contextBytes<T>(blockSizes, numBlocks));
    if (!memory) return vornStsMemAllocErr;
    Vorn8u* const base = memory.release();
    Vorn8u* next = base;
    const auto take = [&next](std::int64_t bytes) {
        Vorn8u* const taken = next;
        next += roundedTo16(bytes);
        return taken;
    };

    auto* const matrix = reinterpret_cast<Matrix*>(take(sizeof(Matrix)));
    matrix->allocBase = base;
    matrix->numBlocks = numBlocks;
    matrix->totalSize = 0;
    for (int block = 0; block < numBlocks; ++block) matrix->totalSize += blockSizes[block];
    const std::size_t sizesBytes = static_cast<std::size_t>(numBlocks) * sizeof(int);
    matrix->blockSizes = reinterpret_cast<int*>(take(static_cast<std::int64_t>(sizesBytes)));
    std::memcpy(matrix->blockSizes, blockSizes, sizesBytes);
    matrix->rows = reinterpret_cast<T**>(take(std::int64_t{matrix->totalSize} * static_cast<int>(sizeof(T*))));
    std::ptrdiff_t row = 0;
    for (int block = 0; block < numBlocks; ++block) {
        const std::size_t rowBytes = static_cast<std::size_t>(blockSizes[block]) * sizeof(T);
        for (int r = 0; r < blockSizes[block]; ++r, ++row) {
            matrix->rows[row] = reinterpret_cast<T*>(take(static_cast<std::int64_t>(rowBytes)));
            std::memcpy(matrix->rows[row], rows[row], rowBytes);
        }
    }
    *result = matrix;
    return vornStsNoErr;
}

// The three forms are one: what is freed does not depend on the element type.
template <class Matrix>
VornStatus release(Matrix* context) {
    VORN_CHECK(notNull(context));
    vornsFree(context->allocBase);
    return vornStsNoErr;
}

template <class Matrix>
VornStatus fits(const Matrix* context, int len) {
    return require(len > 0 && len == context->totalSize, vornStsSizeErr);
}

// The differences of a vector: on the stack for up to 111 columns, above that in a block of len + extra elements.
template <class T>
class Differences {
public:
    Differences(const T* src, const T* mean, int len, int extra = 0)
        : block_(len > onStack ? std::int64_t{len} + extra : 0), d_(len > onStack ? block_.get() : stack_) {
        if (d_ != nullptr) differences(src, mean, d_, len);
    }
    explicit operator bool() const { return d_ != nullptr; }
    const T* get() const { return d_; }

private:
    static constexpr int onStack = 111;
    alignas(64) T stack_[onStack + 1];
    Scratch<T> block_;
    T* d_;
};

}  // namespace

VornStatus vornsBlockDMatrixInitAlloc_32f(VornBlockDMatrix_32f** result, const Vorn32f* const* rows,
                                          const int* blockSizes, int numBlocks) {
    return initAlloc(result, rows, blockSizes, numBlocks);
}
VornStatus vornsBlockDMatrixInitAlloc_64f(VornBlockDMatrix_64f** result, const Vorn64f* const* rows,
                                          const int* blockSizes, int numBlocks) {
    return initAlloc(result, rows, blockSizes, numBlocks);
}
VornStatus vornsBlockDMatrixInitAlloc_16s(VornBlockDMatrix_16s** result, const Vorn16s* const* rows,
                                          const int* blockSizes, int numBlocks) {
    return initAlloc(result, rows, blockSizes, numBlocks);
}

VornStatus vornsBlockDMatrixFree_32f(VornBlockDMatrix_32f* context) { return release(context); }
VornStatus vornsBlockDMatrixFree_64f(VornBlockDMatrix_64f* context) { return release(context); }
VornStatus vornsBlockDMatrixFree_16s(VornBlockDMatrix_16s* context) { return release(context); }

VornStatus vornsLogGaussSingle_BlockDVar_32f(const Vorn32f* src, const Vorn32f* mean,
                                             const VornBlockDMatrix_32f* context, int len, Vorn32f* result,
                                             Vorn32f val) {
    VORN_CHECK(notNull(src, mean, context, result));
    VORN_CHECK(fits(context, len));
    const Differences<Vorn32f> d(src, mean, len);
    if (!d) return vornStsMemAllocErr;
    const Vorn32f sum = sumHalves(quadraticForm<SumInFloat>(*context, d.get()));
    *result = static_cast<Vorn32f>(Vorn64f{val} - Vorn64f{sum} * 0.5);
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_BlockDVar_64f(const Vorn64f* src, const Vorn64f* mean,
                                             const VornBlockDMatrix_64f* context, int len, Vorn64f* result,
                                             Vorn64f val) {
    VORN_CHECK(notNull(src, mean, context, result));
    VORN_CHECK(fits(context, len));
    const Differences<Vorn64f> d(src, mean, len);
    if (!d) return vornStsMemAllocErr;
    *result = lessHalf(val, sumLanes(quadraticForm<SumInDouble>(*context, d.get())));
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_BlockDVar_32f64f(const Vorn32f* src, const Vorn32f* mean,
                                                const VornBlockDMatrix_32f* context, int len, Vorn64f* result,
                                                Vorn64f val) {
    VORN_CHECK(notNull(src, mean, context, result));
    VORN_CHECK(fits(context, len));
    const Differences<Vorn32f> d(src, mean, len);
    if (!d) return vornStsMemAllocErr;
    const FourDoubles lanes = quadraticForm<SumWidened>(*context, d.get());
    *result = lessHalf(val, sumLanes(lanes.low + lanes.high));
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_BlockDVarScaled_16s32f(const Vorn16s* src, const Vorn16s* mean,
                                                      const VornBlockDMatrix_16s* context, int len, Vorn32f* result,
                                                      Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, context, result));
    VORN_CHECK(fits(context, len));
    const Differences<Vorn16s> d(src, mean, len);
    if (!d) return vornStsMemAllocErr;
    const Vorn32f sum = sumHalves(quadraticForm<SumInFloat>(*context, d.get()));
    *result = val - opaque(sum * 0.5f) * GetScale_32s32f(scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_BlockDVar_16s32s_Sfs(const Vorn16s* src, const Vorn16s* mean,
                                                    const VornBlockDMatrix_16s* context, int len, Vorn32s* result,
                                                    Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, context, result));
    VORN_CHECK(fits(context, len));
    const Differences<Vorn16s> d(src, mean, len, 1);
    if (!d) return vornStsMemAllocErr;
    // Here the lanes are scaled before they are added.
    const f32x4 lanes = quadraticForm<SumInFloat>(*context, d.get()) * splat<f32x4>(GetScale_32s32f(scaleFactor));
    const Vorn32f r = lessHalf(static_cast<Vorn32f>(val), sumHalves(lanes));
    // Exactly 2147483648 is not above the limit, and converts to the smallest integer.
    *result = r > 2147483648.0f ? INT_MAX : truncated(r);
    return vornStsNoErr;
}
