// Accumulators.
#include "families.h"

namespace verify {

Family accumulatorWorkloads() { return {nullptr, 0}; }

}  // namespace verify
