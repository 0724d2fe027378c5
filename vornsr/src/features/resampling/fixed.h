// The fixed form: a row of taps for each phase of a rational ratio.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "vornsr/features.h"

namespace vorn::resampling {

// Behind ppFilter's rows stands one more pointer, to the end of the last row.
struct Fixed {
    int inRate, outRate;  // without a common factor; outRate is the number of phases
    Vorn32f filterNorm;   // 1 for rows of singles, 1/16384 for rows in Q14
    int halfLen;          // H: taps on either side
    int flags;            // 1 accurate, 2 otherwise
    int smallTaps;        // in room that the compiler leaves: rows in Q14 whose sums fit lanes of 32 bits
    Vorn16s* pStep;       // the input samples from the window of a phase to that of the next one made, in 16 bits
    void** ppFilter;
};

// A caller's block may begin at any address, so the record and its pointers are copied byte by byte.
inline Fixed recordAt(const void* state) {
    Fixed record;
    std::memcpy(&record, state, sizeof record);
    return record;
}
inline char* rowAt(const Fixed& state, std::int64_t phase) {
    void* row;
    std::memcpy(&row, state.ppFilter + phase, sizeof row);
    return static_cast<char*>(row);
}
inline std::int64_t rowBytes(const Fixed& state) { return rowAt(state, 1) - rowAt(state, 0); }
inline bool hasSingleRows(const Fixed& state) { return state.filterNorm == 1.0f; }

// The sizes that follow from the rates and the length of the filter.
struct FixedShape {
    int inRate, outRate;  // reduced
    std::int64_t halfLen;
    FixedShape(int in, int out, int len);

    std::int64_t callersRow(int len) const { return (std::int64_t{len} + 4) / 4 * 4; }
    std::int64_t ownRow() const { return 2 * halfLen + 4; }
    // Of a block with rows of rowLen elements.
    std::int64_t bytes(std::int64_t rowLen, std::int64_t elementBytes, std::int64_t beside) const;
};

// Lays a context out in a block of so many bytes, its rows zero.
void layOutFixed(void* block, std::int64_t bytes, const FixedShape& shape, std::int64_t rowLen,
                 std::int64_t elementBytes, Vorn32f filterNorm, int flags);

// Makes the rows.
void fillFixed(void* state, Vorn32f cutOff, Vorn32f alpha);

// As for the variable form.
std::int64_t resampleFixed(const Fixed& state, const Vorn32f* src, int len, Vorn32f* dst, double norm, double& time);
std::int64_t resampleFixed(const Fixed& state, const Vorn16s* src, int len, Vorn16s* dst, double norm, double& time);

// The first elements of the first rows, to and from a matrix; rows of singles count as Q14 in 16 bits.
void takeRows(const Fixed& state, Vorn32f* dst, std::int64_t step, std::int64_t height);
void takeRows(const Fixed& state, Vorn16s* dst, std::int64_t step, std::int64_t height);
void putRows(void* state, const Vorn32f* src, std::int64_t step, std::int64_t height);
void putRows(void* state, const Vorn16s* src, std::int64_t step, std::int64_t height);

}  // namespace vorn::resampling

struct VornResampleFixedState_32f : vorn::resampling::Fixed {};
struct VornResampleFixedState_16s : vorn::resampling::Fixed {};
