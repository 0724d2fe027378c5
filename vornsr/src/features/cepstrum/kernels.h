// The DCT lifter: a table of cosines and a weight for each cepstral coefficient, made once, and their product with a
// vector of filter bank outputs.
#pragma once

#include <cstddef>
#include <cstdint>

#include "elementary/elementary.h"
#include "frame/align.h"
#include "simd/simd.h"
#include "vornsr/features.h"

struct VornDCTLifterState_32f {
    int nLifter;  // -1 when the weights are the caller's
    int lenDCT;
    int lenCep;
    int withC0;
    Vorn32f* pLifter;  // lenCep + 1 weights, entry 0 for coefficient zero
    Vorn32f** ppCos;   // lenCep + 1 rows of lenDCT cosines
};

struct VornDCTLifterState_16s {
    int nLifter;
    int lenDCT;
    int lenCep;
    int withC0;
    Vorn32f* pLifter;
    Vorn32f* pWork;  // lenCep + 1 coefficients before their conversion
    Vorn32f** ppCos;
};

namespace vorn::lifter {

// Rows lie this many elements apart, zero behind lenDCT and each on a 32-byte address.
constexpr std::int64_t cosineStride(int lenDCT) { return roundUp(lenDCT, 8); }

// Room for the rows and behind them their pointers, in singles.
constexpr std::int64_t cosineTableLen(int lenDCT, int lenCep) {
    constexpr std::int64_t pointer = 2;
    static_assert(pointer * sizeof(Vorn32f) == sizeof(void*));
    return (std::int64_t{lenCep} + 1) * (cosineStride(lenDCT) + pointer);
}

// The weights of the lifters. Each says what its record shows of it, and fills lenCep + 1 weights.

// 1 + L/2 sin(i pi / L), times val. i is not limited by L: beyond it the sine goes negative, and the weight with it.
struct RaisedSineLifter {
    int nLifter;
    Vorn32f val;
    static constexpr int withC0 = 0;
    void fill(Vorn32f* weight, int lenCep) const;
};

// The same, with a weight of its own for coefficient zero.
struct RaisedSineLifterC0 {
    int nLifter;
    Vorn32f val, val0;
    static constexpr int withC0 = 1;
    void fill(Vorn32f* weight, int lenCep) const;
};

// The lenCep weights that the caller has, as singles.
template <class Weight>
struct CallersLifter {
    const Weight* weights;
    static constexpr int nLifter = -1;
    static constexpr int withC0 = 0;
    void fill(Vorn32f* weight, int lenCep) const;
};

// The same; coefficient zero shares the weight of the last coefficient, there is none of its own.
template <class Weight>
struct CallersLifterC0 {
    const Weight* weights;
    static constexpr int nLifter = -1;
    static constexpr int withC0 = 1;
    void fill(Vorn32f* weight, int lenCep) const;
};

// The row pointers of a table, in memory of cosineTableLen() singles on a 32-byte address; and its cosines.
Vorn32f** cosineRows(Vorn32f* table, int lenDCT, int lenCep);
void fillCosines(Vorn32f* const* rows, int lenDCT, int lenCep);

// The product of the table and x, each element of which is first converted to single. Each sum runs in lanes of four,
// the elements behind the last one counting as zeros:
//  - rows 1 to lenCep in rounds of four: lane l takes the elements l, l + 4, l + 8, ... in order; the row's sum is
//    (lane 0 + lane 1) + (lane 2 + lane 3);
//  - the rows that are left, and row 0: two such accumulators, for the first and the last four of each eight elements,
//    added lane by lane before the lanes are added.
// dst[i - 1] = weight[i] times the product of x and row i, for i from 1 to lenCep; then row 0 if withC0. Rows are read
// up to cosineStride().
template <class Element>
void dctLifter(const Element* x, Vorn32f* dst, const Vorn32f* weight, const Vorn32f* const* rows, int lenDCT,
               int lenCep, bool withC0);

}  // namespace vorn::lifter
