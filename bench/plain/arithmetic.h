// Plain loops of element-wise arithmetic, with the same results where these are integers.
#pragma once

#include <cstddef>

#include "vornsr/types.h"

namespace plain {

template <class T>
void add(const T* a, const T* b, T* dst, std::size_t len);
template <class T>
void multiply(const T* a, const T* b, T* dst, std::size_t len);
template <class T>
void divide(const T* a, const T* b, T* dst, std::size_t len);
void multiplyComplex(const Vorn32fc* a, const Vorn32fc* b, Vorn32fc* dst, std::size_t len);
void divideComplex(const Vorn32fc* a, const Vorn32fc* b, Vorn32fc* dst, std::size_t len);
void multiplyConstant(const Vorn32f* a, Vorn32f val, Vorn32f* dst, std::size_t len);

// Integers with a scale factor.
template <class T>
void addScaled(const T* a, const T* b, T* dst, std::size_t len, int sf);
template <class T>
void multiplyScaled(const T* a, const T* b, T* dst, std::size_t len, int sf);
template <class T>
void divideScaled(const T* dividend, const T* divisor, T* dst, std::size_t len, int sf);
template <class C>
void multiplyComplexScaled(const C* a, const C* b, C* dst, std::size_t len, int sf);

}  // namespace plain
