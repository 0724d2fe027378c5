#include "plain/lifter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace plain {
namespace {

template <class T>
void lift(const T* x, std::int16_t* dst, const float* rows, int stride, const float* weight, int lenDCT, int lenCep,
          int scale) {
    const float factor = std::ldexp(1.0f, -scale);
    for (int i = 0; i < lenCep; ++i) {
        float sum = 0;
        for (int j = 0; j < lenDCT; ++j) {
            sum += static_cast<float>(x[j]) * rows[static_cast<std::ptrdiff_t>(i) * stride + j];
        }
        const float y = std::nearbyint(weight[i] * sum * factor);
        dst[i] = static_cast<std::int16_t>(std::clamp(y, -32768.0f, 32767.0f));
    }
}

}  // namespace

void dctLifter(const std::int16_t* x, std::int16_t* dst, const float* rows, int stride, const float* weight, int lenDCT,
               int lenCep, int scale) {
    lift(x, dst, rows, stride, weight, lenDCT, lenCep, scale);
}
void dctLifter(const std::int32_t* x, std::int16_t* dst, const float* rows, int stride, const float* weight, int lenDCT,
               int lenCep, int scale) {
    lift(x, dst, rows, stride, weight, lenDCT, lenCep, scale);
}

}  // namespace plain
