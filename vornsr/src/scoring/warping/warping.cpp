// Dynamic time warping: the exported functions. All of them warp rows of singles; what is something else is converted.
#include <climits>
#include <cstddef>
#include <cstdint>

#include "frame/checks.h"
#include "frame/memory.h"
#include "frame/rows.h"
#include "move/convert_kernels.h"
#include "scoring/warping/path.h"
#include "vornsr/scoring.h"

namespace vorn::warping {
namespace {

// Pointers to the rows of two blocks.
class PointersToRows {
public:
    PointersToRows(RowBlock<const Vorn32f> src1, int height1, RowBlock<const Vorn32f> src2, int height2)
        : block_(fits(height1, height2) ? 0 : bytes(height1, height2)),
          first_(fits(height1, height2) ? stack_ : reinterpret_cast<const Vorn32f**>(block_.get())) {
        if (first_ == nullptr) return;
        second_ = first_ + height1;
        for (int r = 0; r < height1; ++r) first_[r] = src1[r];
        for (int r = 0; r < height2; ++r) second_[r] = src2[r];
    }
    PointersToRows(const PointersToRows&) = delete;
    PointersToRows& operator=(const PointersToRows&) = delete;
    explicit operator bool() const { return first_ != nullptr; }
    const Vorn32f* const* first() const { return first_; }
    const Vorn32f* const* second() const { return second_; }

private:
    static constexpr std::int64_t mostBytesOnStack = 2048;
    static std::int64_t bytes(std::int64_t height1, std::int64_t height2) {
        return (height1 + height2) * static_cast<std::int64_t>(sizeof(const Vorn32f*));
    }
    static bool fits(int height1, int height2) { return bytes(height1, height2) <= mostBytesOnStack; }

    const Vorn32f* stack_[mostBytesOnStack / sizeof(const Vorn32f*)];
    Scratch<Vorn8u> block_;
    const Vorn32f** first_;
    const Vorn32f** second_ = nullptr;
};

// Rows of integers as singles, with the pointers to them, in one block.
class ConvertedRows {
public:
    template <class Rows>
    ConvertedRows(Rows src, int height, int width) : block_(bytes(height, width)) {
        if (!block_) return;
        auto* row = reinterpret_cast<Vorn32f*>(pointers() + height);
        for (int r = 0; r < height; ++r, row += width) {
            convert(src[r], row, width);
            pointers()[r] = row;
        }
    }
    explicit operator bool() const { return static_cast<bool>(block_); }
    const Vorn32f* const* rows() const { return pointers(); }

private:
    static std::int64_t bytes(std::int64_t height, std::int64_t width) {
        const std::int64_t elements = height * width;  // of more than an int can say no block is handed out
        return elements > INT_MAX ? elements
                                  : height * static_cast<std::int64_t>(sizeof(const Vorn32f*)) +
                                        elements * static_cast<std::int64_t>(sizeof(Vorn32f));
    }
    const Vorn32f** pointers() const { return reinterpret_cast<const Vorn32f**>(block_.get()); }

    Scratch<Vorn8u> block_;
};

template <class Rows>
VornStatus warpedIntegers(Rows src1, int height1, Rows src2, int height2, int width, Vorn32s* result, int delta,
                          Vorn32s beam, int scaleFactor) {
    const ConvertedRows first(src1, height1, width);
    if (!first) return vornStsMemAllocErr;
    const ConvertedRows second(src2, height2, width);
    if (!second) return vornStsMemAllocErr;
    Vorn32f cost;
    VORN_CHECK(
        warpedDistance(first.rows(), height1, second.rows(), height2, width, &cost, delta, static_cast<Vorn32f>(beam)));
    convert(&cost, result, 1, vornRndNear, scaleFactor);
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::warping

using namespace vorn;
using namespace vorn::warping;

VornStatus vornsDTW_L2_32f_D2L(const Vorn32f* const* src1, int height1, const Vorn32f* const* src2, int height2,
                               int width, Vorn32f* result, int delta, Vorn32f beam) {
    VORN_CHECK(notNull(src1, src2, result));
    VORN_CHECK(positive(height1, height2, width));
    return warpedDistance(src1, height1, src2, height2, width, result, delta, beam);
}

VornStatus vornsDTW_L2_32f_D2(const Vorn32f* src1, int height1, const Vorn32f* src2, int height2, int width, int step,
                              Vorn32f* result, int delta, Vorn32f beam) {
    VORN_CHECK(notNull(src1, src2, result));
    VORN_CHECK(positive(height1, height2, width));
    VORN_CHECK(atLeast(width, step));
    const PointersToRows rows(Rows(src1, step), height1, Rows(src2, step), height2);
    if (!rows) return vornStsMemAllocErr;
    // Memory that this call does not get leaves result as it was and the status good: kept so on purpose.
    warpedDistance(rows.first(), height1, rows.second(), height2, width, result, delta, beam);
    return vornStsNoErr;
}

VornStatus vornsDTW_L2_8u32s_D2LSfs(const Vorn8u* const* src1, int height1, const Vorn8u* const* src2, int height2,
                                    int width, Vorn32s* result, int delta, Vorn32s beam, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, result));
    VORN_CHECK(positive(height1, height2, width));
    return warpedIntegers(Rows(src1), height1, Rows(src2), height2, width, result, delta, beam, scaleFactor);
}

VornStatus vornsDTW_L2_8u32s_D2Sfs(const Vorn8u* src1, int height1, const Vorn8u* src2, int height2, int width,
                                   int step, Vorn32s* result, int delta, Vorn32s beam, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, result));
    VORN_CHECK(positive(height1, height2, width));
    VORN_CHECK(atLeast(width, step));
    return warpedIntegers(Rows(src1, step), height1, Rows(src2, step), height2, width, result, delta, beam,
                          scaleFactor);
}

VornStatus vornsDTW_L2Low_16s32s_D2LSfs(const Vorn16s* const* src1, int height1, const Vorn16s* const* src2,
                                        int height2, int width, Vorn32s* result, int delta, Vorn32s beam,
                                        int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, result));
    VORN_CHECK(positive(height1, height2, width));
    return warpedIntegers(Rows(src1), height1, Rows(src2), height2, width, result, delta, beam, scaleFactor);
}

VornStatus vornsDTW_L2Low_16s32s_D2Sfs(const Vorn16s* src1, int height1, const Vorn16s* src2, int height2, int width,
                                       int step, Vorn32s* result, int delta, Vorn32s beam, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, result));
    VORN_CHECK(positive(height1, height2, width));
    VORN_CHECK(atLeast(width, step));
    return warpedIntegers(Rows(src1, step), height1, Rows(src2, step), height2, width, result, delta, beam,
                          scaleFactor);
}
