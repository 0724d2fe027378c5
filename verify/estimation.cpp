#include "families.h"

namespace verify {

Family estimationWorkloads() { return {nullptr, 0}; }

}  // namespace verify
