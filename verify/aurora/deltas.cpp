// Band splitting and deltas of the noise-robust front-end.
#include "families.h"

namespace verify {

Family auroraDeltaWorkloads() { return {nullptr, 0}; }

}  // namespace verify
