// Selection of Gaussians: the exported functions.
#include "frame/checks.h"
#include "frame/rows.h"
#include "scoring/selection/bits.h"
#include "scoring/selection/select.h"
#include "vornsr/scoring.h"

using namespace vorn;
using namespace vorn::selection;

// ---- Shortlists.

VornStatus vornsFillShortlist_Row_1u(const Vorn32s* indices, int width, int count, Vorn8u* const* rows, int numRows,
                                     int step, int start) {
    VORN_CHECK(notNull(indices, rows));
    VORN_CHECK(positive(numRows, width, step, count));
    VORN_CHECK(atLeast(0, start));
    VORN_CHECK(fieldHolds(step, start, width));
    const EqualCounts counts{count};
    VORN_CHECK(eachBelow(indices, totalOf(counts, numRows), width));
    fillShortlist<BitsOfRow>(indices, counts, numRows, rows, start);
    return vornStsNoErr;
}

VornStatus vornsFillShortlist_RowVar_1u(const Vorn32s* indices, const Vorn32s* counts, int width, Vorn8u* const* rows,
                                        int numRows, int step, int start) {
    VORN_CHECK(notNull(indices, counts, rows));
    VORN_CHECK(positive(numRows, width, step));
    VORN_CHECK(atLeast(0, start));
    VORN_CHECK(eachPositive(counts, numRows));
    VORN_CHECK(fieldHolds(step, start, width));
    VORN_CHECK(eachBelow(indices, totalOf(GivenCounts{counts}, numRows), width));
    fillShortlist<BitsOfRow>(indices, GivenCounts{counts}, numRows, rows, start);
    return vornStsNoErr;
}

VornStatus vornsFillShortlist_Column_1u(const Vorn32s* indices, int count, Vorn8u* const* rows, int numRows, int step,
                                        int start, int width) {
    VORN_CHECK(notNull(indices, rows));
    VORN_CHECK(positive(numRows, width, step, count));
    VORN_CHECK(atLeast(0, start));
    VORN_CHECK(fieldHolds(step, start, width));
    const EqualCounts counts{count};
    VORN_CHECK(eachBelow(indices, totalOf(counts, width), numRows));
    fillShortlist<RowsOfBit>(indices, counts, width, rows, start);
    return vornStsNoErr;
}

VornStatus vornsFillShortlist_ColumnVar_1u(const Vorn32s* indices, const Vorn32s* counts, Vorn8u* const* rows,
                                           int numRows, int step, int start, int width) {
    VORN_CHECK(notNull(indices, counts, rows));
    VORN_CHECK(positive(numRows, width, step));
    VORN_CHECK(atLeast(0, start));
    VORN_CHECK(eachPositive(counts, width));
    VORN_CHECK(fieldHolds(step, start, width));
    VORN_CHECK(eachBelow(indices, totalOf(GivenCounts{counts}, width), numRows));
    fillShortlist<RowsOfBit>(indices, GivenCounts{counts}, width, rows, start);
    return vornStsNoErr;
}

// ---- Sign tables.

VornStatus vornsBuildSignTable_8u1u(const Vorn32s* indices, int count, const Vorn8u* const* rows, int numRows, int step,
                                    int start, Vorn8u* sign, int frames, int width) {
    VORN_CHECK(notNull(indices, rows, sign));
    VORN_CHECK(positive(count, numRows, step, width, frames));
    VORN_CHECK(atLeast(0, start));
    VORN_CHECK(fieldHolds(step, start, width));
    VORN_CHECK(eachBelow(indices, totalOf(EqualCounts{count}, frames), numRows));
    buildSignTable(indices, count, rows, step, start, sign, frames, width);
    return vornStsNoErr;
}

VornStatus vornsBuildSignTable_Var_8u1u(const Vorn32s* indices, const Vorn32s* counts, const Vorn8u* const* rows,
                                        int numRows, int step, int start, Vorn8u* sign, int frames, int width) {
    VORN_CHECK(notNull(indices, counts, rows, sign));
    VORN_CHECK(positive(numRows, step, width, frames));
    VORN_CHECK(atLeast(0, start));
    VORN_CHECK(fieldHolds(step, start, width));
    VORN_CHECK(eachPositive(counts, frames));
    VORN_CHECK(eachBelow(indices, totalOf(GivenCounts{counts}, frames), numRows));
    buildFirstSigns(indices, GivenCounts{counts}, rows, start, sign, frames, width);
    return vornStsNoErr;
}

// ---- Mixtures of the selected Gaussians.

VornStatus vornsLogGaussMixture_Select_32f_D2(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int step,
                                              int len, const Vorn32f* val, const Vorn8u* sign, int width,
                                              Vorn32f* result, int frames, Vorn32f floor) {
    VORN_CHECK(notNull(src, mean, sign, var, val, result));
    VORN_CHECK(positive(len, width, frames));
    VORN_CHECK(strideHolds(step, len));
    const FloatScore<AnyRows<const Vorn32f>> score{Rows(src, step), Rows(mean, step), Rows(var, step), len};
    return selectedMixture(score, val, sign, width, result, frames, floor);
}

VornStatus vornsLogGaussMixture_Select_32f_D2L(const Vorn32f* const* src, const Vorn32f* const* mean,
                                               const Vorn32f* const* var, int len, const Vorn32f* val,
                                               const Vorn8u* sign, int width, Vorn32f* result, int frames,
                                               Vorn32f floor) {
    VORN_CHECK(notNull(src, mean, sign, var, val, result));
    VORN_CHECK(positive(len, width, frames));
    VORN_CHECK(rowsNotNull(src, frames));
    VORN_CHECK(rowsNotNull(mean, width));
    VORN_CHECK(rowsNotNull(var, width));
    const FloatScore<AnyRows<const Vorn32f>> score{Rows(src), Rows(mean), Rows(var), len};
    return selectedMixture(score, val, sign, width, result, frames, floor);
}

VornStatus vornsLogGaussMixture_SelectIdVar_32f_D2(const Vorn32f* src, const Vorn32f* mean, int step, int len,
                                                   const Vorn32f* val, const Vorn8u* sign, int width, Vorn32f* result,
                                                   int frames, Vorn32f floor) {
    VORN_CHECK(notNull(src, mean, sign, val, result));
    VORN_CHECK(positive(len, width, frames));
    VORN_CHECK(strideHolds(step, len));
    const FloatScore<UnitVar> score{Rows(src, step), Rows(mean, step), {}, len};
    return selectedMixture(score, val, sign, width, result, frames, floor);
}

VornStatus vornsLogGaussMixture_SelectIdVar_32f_D2L(const Vorn32f* const* src, const Vorn32f* const* mean, int len,
                                                    const Vorn32f* val, const Vorn8u* sign, int width, Vorn32f* result,
                                                    int frames, Vorn32f floor) {
    VORN_CHECK(notNull(src, mean, sign, val, result));
    VORN_CHECK(positive(len, width, frames));
    VORN_CHECK(rowsNotNull(src, frames));
    VORN_CHECK(rowsNotNull(mean, width));
    const FloatScore<UnitVar> score{Rows(src), Rows(mean), {}, len};
    return selectedMixture(score, val, sign, width, result, frames, floor);
}

VornStatus vornsLogGaussMixture_SelectScaled_16s32f_D2(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var,
                                                       int step, int len, const Vorn32f* val, const Vorn8u* sign,
                                                       int width, Vorn32f* result, int frames, Vorn32f floor,
                                                       int scaleFactor) {
    VORN_CHECK(notNull(src, mean, sign, var, val, result));
    VORN_CHECK(positive(len, width, frames));
    VORN_CHECK(strideHolds(step, len));
    const FixedScore<AnyRows<const Vorn16s>> score{Rows(src, step), Rows(mean, step), Rows(var, step), len,
                                                   scaleOfHalf(scaleFactor)};
    return selectedMixture(score, val, sign, width, result, frames, floor);
}

VornStatus vornsLogGaussMixture_SelectScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* const* mean,
                                                        const Vorn16s* const* var, int len, const Vorn32f* val,
                                                        const Vorn8u* sign, int width, Vorn32f* result, int frames,
                                                        Vorn32f floor, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, sign, var, val, result));
    VORN_CHECK(positive(len, width, frames));
    VORN_CHECK(rowsNotNull(src, frames));
    VORN_CHECK(rowsNotNull(mean, width));
    VORN_CHECK(rowsNotNull(var, width));
    const FixedScore<AnyRows<const Vorn16s>> score{Rows(src), Rows(mean), Rows(var), len, scaleOfHalf(scaleFactor)};
    return selectedMixture(score, val, sign, width, result, frames, floor);
}

VornStatus vornsLogGaussMixture_SelectIdVarScaled_16s32f_D2(const Vorn16s* src, const Vorn16s* mean, int step, int len,
                                                            const Vorn32f* val, const Vorn8u* sign, int width,
                                                            Vorn32f* result, int frames, Vorn32f floor,
                                                            int scaleFactor) {
    VORN_CHECK(notNull(src, mean, sign, val, result));
    VORN_CHECK(positive(len, width, frames));
    VORN_CHECK(strideHolds(step, len));
    const FixedScore<UnitVar> score{Rows(src, step), Rows(mean, step), {}, len, scaleOfHalf(scaleFactor)};
    return selectedMixture(score, val, sign, width, result, frames, floor);
}

VornStatus vornsLogGaussMixture_SelectIdVarScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* const* mean,
                                                             int len, const Vorn32f* val, const Vorn8u* sign, int width,
                                                             Vorn32f* result, int frames, Vorn32f floor,
                                                             int scaleFactor) {
    VORN_CHECK(notNull(src, mean, sign, val, result));
    VORN_CHECK(positive(len, width, frames));
    VORN_CHECK(rowsNotNull(src, frames));
    VORN_CHECK(rowsNotNull(mean, width));
    const FixedScore<UnitVar> score{Rows(src), Rows(mean), {}, len, scaleOfHalf(scaleFactor)};
    return selectedMixture(score, val, sign, width, result, frames, floor);
}
