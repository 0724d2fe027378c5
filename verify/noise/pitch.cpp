// Periodicity and pitch.
#include "families.h"

namespace verify {

Family pitchWorkloads() { return {nullptr, 0}; }

}  // namespace verify
