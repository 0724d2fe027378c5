// Elementary functions in double precision that give the same bits on every processor: fixed polynomials in a fixed
// order, no multiply-add, no call of the C library (whose functions round differently from processor to processor).
#pragma once

namespace vorn {

double exp64(double x);
double log64(double x);
double sin64(double x);
double cos64(double x);

}  // namespace vorn
