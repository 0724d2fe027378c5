// Codebooks.
#include "families.h"

namespace verify {

Family codebookWorkloads() { return {nullptr, 0}; }

}  // namespace verify
