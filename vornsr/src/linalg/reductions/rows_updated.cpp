// A row subtracted from every row, columns normalised: the exported functions.
#include "linalg/reductions/rows_updated.h"

#include "frame/checks.h"
#include "frame/rows.h"
#include "vornsr/linalg.h"

using namespace vorn;

VornStatus vornsSubRow_32f_D2(const Vorn32f* srcRow, int width, Vorn32f* srcDst, int srcStep, int height) {
    VORN_CHECK(notNull(srcRow, srcDst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    reductions::updateRows(Rows(srcDst, srcStep), height, width, reductions::Subtracted<Vorn32f>{srcRow});
    return vornStsNoErr;
}

VornStatus vornsSubRow_32f_D2L(const Vorn32f* srcRow, Vorn32f* const* srcDst, int width, int height) {
    VORN_CHECK(notNull(srcRow, srcDst));
    VORN_CHECK(positive(height, width));
    reductions::updateRows(Rows(srcDst), height, width, reductions::Subtracted<Vorn32f>{srcRow});
    return vornStsNoErr;
}

VornStatus vornsSubRow_16s_D2(const Vorn16s* srcRow, int width, Vorn16s* srcDst, int srcStep, int height) {
    VORN_CHECK(notNull(srcRow, srcDst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    reductions::updateRows(Rows(srcDst, srcStep), height, width, reductions::Subtracted<Vorn16s>{srcRow});
    return vornStsNoErr;
}

VornStatus vornsSubRow_16s_D2L(const Vorn16s* srcRow, Vorn16s* const* srcDst, int width, int height) {
    VORN_CHECK(notNull(srcRow, srcDst));
    VORN_CHECK(positive(height, width));
    reductions::updateRows(Rows(srcDst), height, width, reductions::Subtracted<Vorn16s>{srcRow});
    return vornStsNoErr;
}

VornStatus vornsNormalizeColumn_32f_D2(Vorn32f* srcDst, int srcStep, int height, const Vorn32f* mean,
                                       const Vorn32f* scale, int width) {
    VORN_CHECK(notNull(srcDst, mean, scale));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    reductions::updateRows(Rows(srcDst, srcStep), height, width, reductions::Normalized{mean, scale});
    return vornStsNoErr;
}

VornStatus vornsNormalizeColumn_32f_D2L(Vorn32f* const* srcDst, int height, const Vorn32f* mean, const Vorn32f* scale,
                                        int width) {
    VORN_CHECK(notNull(srcDst, mean, scale));
    VORN_CHECK(positive(height, width));
    reductions::updateRows(Rows(srcDst), height, width, reductions::Normalized{mean, scale});
    return vornStsNoErr;
}

VornStatus vornsNormalizeColumn_16s_D2Sfs(Vorn16s* srcDst, int srcStep, int height, const Vorn16s* mean,
                                          const Vorn16s* scale, int width, int scaleFactor) {
    VORN_CHECK(notNull(srcDst, mean, scale));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    reductions::updateRows(Rows(srcDst, srcStep), height, width,
                           reductions::NormalizedIntegers(mean, scale, scaleFactor));
    return vornStsNoErr;
}

VornStatus vornsNormalizeColumn_16s_D2LSfs(Vorn16s* const* srcDst, int height, const Vorn16s* mean,
                                           const Vorn16s* scale, int width, int scaleFactor) {
    VORN_CHECK(notNull(srcDst, mean, scale));
    VORN_CHECK(positive(height, width));
    reductions::updateRows(Rows(srcDst), height, width, reductions::NormalizedIntegers(mean, scale, scaleFactor));
    return vornStsNoErr;
}
