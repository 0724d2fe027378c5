// Plain loops of deltas and of copies of columns, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {

// f: factors of the frames, of the deltas and of the accelerations, width of them each; shared by all columns: those of
// the deltas and of the accelerations are f[width] and f[2 width].
template <class T>
struct Deltas {
    int window;
    bool acceleration, mul, wraps;
    const T* src;
    const T* f;
    int width;
    T* dst;
    int step, height, scale;
};
void deltas(const Deltas<float>& call);
void deltas(const Deltas<std::int16_t>& call);

// f: one factor, or one a column.
void evalDelta(float* x, int height, int step, const float* f, bool mul, int width, int offset, int window, int scale);
void evalDelta(std::int16_t* x, int height, int step, const std::int16_t* f, bool mul, int width, int offset,
               int window, int scale);

void copyColumns(const float* src, int width, float* dst, int step, int height);
void copyColumns(const std::int16_t* src, int width, std::int16_t* dst, int step, int height);
void pickColumns(const float* src, int srcStep, float* dst, const int* index, int len, int step, int height);
void pickColumns(const double* src, int srcStep, double* dst, const int* index, int len, int step, int height);
void pickColumns(const std::int16_t* src, int srcStep, std::int16_t* dst, const int* index, int len, int step,
                 int height);

}  // namespace plain
