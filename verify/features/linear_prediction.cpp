// Linear prediction.
#include "families.h"

namespace verify {

Family linearPredictionWorkloads() { return {nullptr, 0}; }

}  // namespace verify
