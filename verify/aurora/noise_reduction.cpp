// Noise reduction.
#include "families.h"

namespace verify {

Family noiseReductionWorkloads() { return {nullptr, 0}; }

}  // namespace verify
