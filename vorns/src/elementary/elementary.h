// Elementary functions in double precision that give the same bits on every processor: tables and polynomials in a
// fixed order, no multiply-add, no call of the C library (whose functions round differently from processor to
// processor).
//
// Accuracy in round-to-nearest mode, over the whole range of arguments, in units in the last place of the result:
//   exp64   0.511   denormal results included; overflow gives infinity, underflow 0
//   log64   0.502   0 of either sign gives -infinity, an argument below 0 a not-a-number
//   sin64   0.521   arguments of any size, reduced with as many bits of pi as they need
//   cos64   0.521
// sin64 and cos64 are called in that mode only: a quadrant that is not the nearest would lead them out of their table.
// A not-a-number gives a quiet one, an infinity under a sine or a cosine the processor's default one. Nothing is
// reported through errno.
#pragma once

namespace vorn {

double exp64(double x);
double log64(double x);
double sin64(double x);
double cos64(double x);

}  // namespace vorn
