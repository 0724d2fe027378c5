// The plain loops beside packed spectra.
#include "plain/fft.h"

#include <algorithm>
#include <cstdint>

namespace plain {

void multiplyPack(const Vorn32f* a, const Vorn32f* b, Vorn32f* dst, int len) {
    dst[0] = a[0] * b[0];
    if (len % 2 == 0) dst[len - 1] = a[len - 1] * b[len - 1];
    for (int i = 1; i + 1 < len; i += 2) {
        dst[i] = a[i] * b[i] - a[i + 1] * b[i + 1];
        dst[i + 1] = a[i] * b[i + 1] + a[i + 1] * b[i];
    }
}

void multiplyPack(const Vorn16s* a, const Vorn16s* b, Vorn16s* dst, int len, int scaleFactor) {
    const auto scaled = [&](std::int64_t x) {
        return static_cast<Vorn16s>(std::clamp<std::int64_t>(x >> scaleFactor, -32768, 32767));
    };
    dst[0] = scaled(a[0] * b[0]);
    if (len % 2 == 0) dst[len - 1] = scaled(a[len - 1] * b[len - 1]);
    for (int i = 1; i + 1 < len; i += 2) {
        dst[i] = scaled(std::int64_t{a[i]} * b[i] - std::int64_t{a[i + 1]} * b[i + 1]);
        dst[i + 1] = scaled(std::int64_t{a[i]} * b[i + 1] + std::int64_t{a[i + 1]} * b[i]);
    }
}

}  // namespace plain
