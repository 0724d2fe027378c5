// Distances.
#include "families.h"

namespace verify {

Family distanceWorkloads() { return {nullptr, 0}; }

}  // namespace verify
