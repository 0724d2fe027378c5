// The variable form: one finely sampled filter that is read at any position.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vornsr/features.h"

namespace vorn::resampling {

// Behind the fields that are promised stand two copies of the table in double, in the orders of reading: stretched
// filters take neighbours from anywhere, others a comb of points a sample apart, from its `phase` on.
struct Variable {
    Vorn64f invStep;    // 1 / nStep
    int nStep;          // points of the table per input sample
    int tableLen;       // points; one more stands behind them and repeats the last
    Vorn32f tableNorm;  // undoes the scaling of the table
    int flags;          // 1 accurate, 2 otherwise
    void* pTable;       // singles or 16-bit integers

    const Vorn64f* points;    // the table
    const Vorn64f* phases;    // row q, entry k: the point q + k nStep; min(nStep, tableLen) rows and one more
    std::ptrdiff_t phaseLen;  // entries of a row
};

// The number of points, within 1 to 0xFFFFFFE; 0 where a window is too short or too long for it.
std::int64_t tableLength(int nStep, Vorn32f window);

enum class Table { single, sixteenBits };

// Null where memory is short.
void* makeVariable(int nStep, std::int64_t tableLen, Vorn32f cutOff, Vorn32f alpha, Table table, int flags);

// time is that of the first sample, and becomes that of the first one which is not made.
std::int64_t resample(const Variable& state, const Vorn32f* src, int len, Vorn32f* dst, double factor, double norm,
                      double& time);
std::int64_t resample(const Variable& state, const Vorn16s* src, int len, Vorn16s* dst, double factor, double norm,
                      double& time);

}  // namespace vorn::resampling

struct VornResampleState_32f : vorn::resampling::Variable {};
struct VornResampleState_16s : vorn::resampling::Variable {};
