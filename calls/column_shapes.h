// How column statistics are called: shapes for calls::Function. The first result is dst, a second one result; src1 is
// the mean that variances are taken about, vals the weights of the rows.
#pragma once

#include "calls/signature.h"

namespace calls {

inline constexpr Shape columnShapes[] = {
    {rows, height, step, dst, len},
    {rows, height, step, src1, dst, len},
    {rows, height, step, src1, dst, len, scaleFactor},
    {rows, height, step, dst, result, len},
    {rows, height, step, dst, result, len, scaleFactor},
    {rowList, height, dst, len},
    {rowList, height, src1, dst, len},
    {rowList, height, src1, dst, len, scaleFactor},
    {rowList, height, dst, result, len},
    {rowList, height, dst, result, len, scaleFactor},

    {rows, step, vals, height, dst, len},
    {rows, step, vals, height, src1, dst, len},
    {rows, step, vals, height, dst, result, len},
    {rowList, vals, height, dst, len},
    {rowList, vals, height, src1, dst, len},
    {rowList, vals, height, dst, result, len},
};

}  // namespace calls
