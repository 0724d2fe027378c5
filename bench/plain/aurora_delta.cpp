#include "plain/aurora_delta.h"

#include <algorithm>
#include <cstddef>

namespace plain {
namespace {

using std::ptrdiff_t;

constexpr int columns = 13, frameWidth = 14;

float combined(float c0, float logEnergy) { return c0 * 0.6f / 23.0f + logEnergy * 0.4f; }
std::int16_t stored(std::int64_t x, int shift) {
    return static_cast<std::int16_t>(std::clamp<std::int64_t>(x >> shift, -32768, 32767));
}
std::int16_t stored(int x, int shift) { return static_cast<std::int16_t>(std::clamp(x >> shift, -32768, 32767)); }

template <bool mul>
void feature(const float* in, const float* val, float* __restrict out, int) {
    for (int c = 0; c < columns - 1; ++c) out[c] = mul ? in[c] * val[c] : in[c];
    const float x = combined(in[12], in[13]);
    out[12] = mul ? x * val[12] : x;
}
template <bool mul>
void feature(const std::int16_t* in, const std::int16_t* val, std::int16_t* __restrict out, int scale) {
    for (int c = 0; c < columns - 1; ++c) out[c] = stored(mul ? in[c] * val[c] : in[c], scale);
    const float x = combined(in[12], in[13]);
    out[12] = stored(static_cast<int>(mul ? val[12] * x : x), scale);
}

// row[k] is the row of offset k - 4; the results stand behind the features of `to`.
float accelerationOf(const auto* const (&row)[9], int c) {
    return row[0][c] + 0.25f * row[1][c] - 0.285714f * row[2][c] - 0.607143f * row[3][c] - 0.714286f * row[4][c] -
           0.607143f * row[5][c] - 0.285714f * row[6][c] + 0.25f * row[7][c] + row[8][c];
}
template <bool mul>
void derivatives(const float* const (&row)[9], const float* val, float* __restrict out, int) {
    for (int c = 0; c < columns; ++c) {
        const float velocity = -row[0][c] - 0.75f * row[1][c] - 0.5f * row[2][c] - 0.25f * row[3][c] -
                               0.0f * row[4][c] + 0.25f * row[5][c] + 0.5f * row[6][c] + 0.75f * row[7][c] + row[8][c];
        const float acceleration = accelerationOf(row, c);
        out[c] = mul ? velocity * val[columns + c] : velocity;
        out[columns + c] = mul ? acceleration * val[2 * columns + c] : acceleration;
    }
}
template <bool mul>
void derivatives(const std::int16_t* const (&row)[9], const std::int16_t* val, std::int16_t* __restrict out,
                 int scale) {
    for (int c = 0; c < columns; ++c) {
        const int velocity = 4 * (row[8][c] - row[0][c]) + 3 * (row[7][c] - row[1][c]) + 2 * (row[6][c] - row[2][c]) +
                             row[5][c] - row[3][c];
        const float acceleration = accelerationOf(row, c);
        out[c] = mul ? stored(std::int64_t{velocity} * val[columns + c], scale + 2) : stored(velocity, scale + 2);
        out[columns + c] = stored(static_cast<int>(mul ? acceleration * val[2 * columns + c] : acceleration), scale);
    }
}

template <bool mul, class T>
void rows(const T* src, const T* val, T* dst, ptrdiff_t step, int height, int mode, int scale) {
    const ptrdiff_t begin = mode & 1 ? 0 : 8, end = begin + height;
    const auto derive = [&](ptrdiff_t t) {
        const T* row[9];
        for (int k = 0; k < 9; ++k) row[k] = dst + std::clamp<ptrdiff_t>(t + k - 4, 0, end - 1) * step;
        derivatives<mul>(row, val, dst + t * step + columns, scale);
    };
    for (ptrdiff_t newest = begin; newest < end; ++newest, src += frameWidth) {
        feature<mul>(src, val, dst + newest * step, scale);
        if (newest >= 4) derive(newest - 4);
    }
    if (mode & 2) {
        for (ptrdiff_t t = end - 4; t < end; ++t) derive(t);
    }
}

}  // namespace

void auroraDeltas(const float* src, const float* val, float* dst, int dstWidth, int height, int mode, int) {
    val != nullptr ? rows<true>(src, val, dst, dstWidth, height, mode, 0)
                   : rows<false>(src, val, dst, dstWidth, height, mode, 0);
}
void auroraDeltas(const std::int16_t* src, const std::int16_t* val, std::int16_t* dst, int dstWidth, int height,
                  int mode, int scaleFactor) {
    val != nullptr ? rows<true>(src, val, dst, dstWidth, height, mode, scaleFactor)
                   : rows<false>(src, val, dst, dstWidth, height, mode, scaleFactor);
}

}  // namespace plain
