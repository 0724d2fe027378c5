// Plain loops of the reductions and elementary functions: what a compiler makes of the formula. Results go to an array,
// of one element in the reductions.
#pragma once

#include "vornsr/types.h"

namespace plain {

// Sums and dot products run in the type Sum.
template <class Sum, class T, class R>
void sum(const T* src, R* dst, int len);
template <class Sum, class T, class R>
void sumComplex(const T* src, R* dst, int len);
template <class Sum, class A, class B, class R>
void dot(const A* a, const B* b, R* dst, int len);
template <class Sum, class A, class B, class R>
void dotRealComplex(const A* a, const B* b, R* dst, int len);
template <class Sum, class T, class R>
void dotComplex(const T* a, const T* b, R* dst, int len);

template <class T>
void max(const T* src, T* dst, int len);
template <class T>
void min(const T* src, T* dst, int len);
template <class T>
void minMax(const T* src, T* min, T* max, int len);
template <class T>
void maxIndex(const T* src, T* dst, int* index, int len);
template <class T>
void maxEvery(const T* src, T* srcDst, int len);

template <class T, class R>
void ln(const T* src, R* dst, int len);
void lnScaled(const Vorn32s* src, Vorn32s* dst, int len, int scaleFactor);
template <class T, class R>
void sumLn(const T* src, R* dst, int len);

template <class T>
void root(const T* src, T* dst, int len);
template <class Complex>
void rootComplex(const Complex* src, Complex* dst, int len);
// Through Number, rounded and saturated.
template <class Number, class T, class R>
void rootScaled(const T* src, R* dst, int len, int scaleFactor);
void rootComplexScaled(const Vorn16sc* src, Vorn16sc* dst, int len, int scaleFactor);

// Complex numbers, and their parts in two arrays.
template <class Number, class Complex, class R>
void magnitude(const Complex* src, R* dst, int len);
template <class Number, class T, class R>
void magnitude(const T* re, const T* im, R* dst, int len);
template <class Complex, class R>
void magnitudeScaled(const Complex* src, R* dst, int len, int scaleFactor);
template <class T>
void magnitudeScaled(const T* re, const T* im, T* dst, int len, int scaleFactor);

template <class T>
void absolute(const T* src, T* dst, int len);

}  // namespace plain
