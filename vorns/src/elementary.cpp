// Elementary functions in double precision.
#include "elementary.h"

#include <cmath>

namespace vorn {

double exp64(double x) { return std::exp(x); }
double log64(double x) { return std::log(x); }
double sin64(double x) { return std::sin(x); }
double cos64(double x) { return std::cos(x); }

}  // namespace vorn
