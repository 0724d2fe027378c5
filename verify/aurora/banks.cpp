// Filter banks of noise reduction.
#include "families.h"

namespace verify {

Family auroraBankWorkloads() { return {nullptr, 0}; }

}  // namespace verify
