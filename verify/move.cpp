#include "families.h"

namespace verify {

Family moveWorkloads() { return {nullptr, 0}; }

}  // namespace verify
