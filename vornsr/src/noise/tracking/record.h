// The record of a noise tracker.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "vornsr/noise.h"

namespace vorn::tracking {

// T is the type of the parameters and of the spectra: singles, or integers with parameters in Q31 and delta in Q15.
template <class T>
struct Record {
    std::int32_t sampleFreq, fftLen, halfBits, hop, minWindow, frameIdx, firstFrame;
    T alphaD, alphaP, alphaS, delta;
    T *presence, *smoothed, *minimum, *tempMinimum;
};

// The arrays stand right behind the record's bytes, of which the last eight are spare.
inline constexpr std::int64_t recordBytes = 88;
static_assert(sizeof(Record<float>) + 8 == recordBytes && offsetof(Record<float>, presence) == 48);

constexpr std::int64_t bins(int fftLen) { return fftLen / 2 + 1; }
constexpr int sizeOf(int fftLen) {
    return static_cast<int>(recordBytes + 4 * bins(fftLen) * static_cast<std::int64_t>(sizeof(float)));
}

// A caller's block may stand at any address, so the record is worked on in a copy.
template <class T>
Record<T> read(const VornsMCRAState* state) {
    Record<T> record;
    std::memcpy(&record, static_cast<const void*>(state), sizeof record);
    return record;
}
template <class T>
void write(const Record<T>& record, VornsMCRAState* state) {
    std::memcpy(static_cast<void*>(state), &record, sizeof record);
}
// What an update changes of it.
template <class T>
void writeCounts(const Record<T>& record, VornsMCRAState* state) {
    static_assert(offsetof(Record<T>, firstFrame) == offsetof(Record<T>, frameIdx) + 4);
    const std::int32_t counts[2] = {record.frameIdx, record.firstFrame};
    std::memcpy(reinterpret_cast<std::byte*>(state) + offsetof(Record<T>, frameIdx), counts, sizeof counts);
}

// The four arrays of a block in their order.
template <class T>
void placeArrays(Record<T>& record, VornsMCRAState* state) {
    auto* const behind = reinterpret_cast<T*>(reinterpret_cast<std::byte*>(state) + recordBytes);
    const std::int64_t len = bins(record.fftLen);
    record.presence = behind;
    record.smoothed = behind + len;
    record.minimum = behind + 2 * len;
    record.tempMinimum = behind + 3 * len;
}

}  // namespace vorn::tracking
