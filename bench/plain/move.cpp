#include "plain/move.h"

#include <algorithm>

namespace plain {
namespace {

template <class T>
void fill(T val, T* dst, std::size_t len) {
    for (std::size_t i = 0; i < len; ++i) dst[i] = val;
}

template <class T>
T conjugated(T x) {
    return {x.re, -x.im};
}
template <>
Vorn16sc conjugated(Vorn16sc x) {
    return {x.re, static_cast<Vorn16s>(std::min(-x.im, 32767))};
}

template <class T>
void conjugate(const T* __restrict src, T* __restrict dst, std::size_t len) {
    for (std::size_t i = 0; i < len; ++i) dst[i] = conjugated(src[i]);
}

template <class T>
void flip(const T* __restrict src, T* __restrict dst, std::size_t len) {
    for (std::size_t i = 0; i < len; ++i) dst[i] = conjugated(src[len - 1 - i]);
}

}  // namespace

void set(Vorn16s val, Vorn16s* dst, std::size_t len) { fill(val, dst, len); }
void set(Vorn32f val, Vorn32f* dst, std::size_t len) { fill(val, dst, len); }
void set(Vorn64f val, Vorn64f* dst, std::size_t len) { fill(val, dst, len); }
void set(Vorn64fc val, Vorn64fc* dst, std::size_t len) { fill(val, dst, len); }

void conj(const Vorn16sc* src, Vorn16sc* dst, std::size_t len) { conjugate(src, dst, len); }
void conj(const Vorn32fc* src, Vorn32fc* dst, std::size_t len) { conjugate(src, dst, len); }
void conj(const Vorn64fc* src, Vorn64fc* dst, std::size_t len) { conjugate(src, dst, len); }

void conjFlip(const Vorn16sc* src, Vorn16sc* dst, std::size_t len) { flip(src, dst, len); }
void conjFlip(const Vorn32fc* src, Vorn32fc* dst, std::size_t len) { flip(src, dst, len); }
void conjFlip(const Vorn64fc* src, Vorn64fc* dst, std::size_t len) { flip(src, dst, len); }

}  // namespace plain
