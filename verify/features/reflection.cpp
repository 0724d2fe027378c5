// Features of reflection coefficients.
#include "families.h"

namespace verify {

Family reflectionWorkloads() { return {nullptr, 0}; }

}  // namespace verify
