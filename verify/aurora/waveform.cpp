// Waveform processing.
#include "families.h"

namespace verify {

Family waveformWorkloads() { return {nullptr, 0}; }

}  // namespace verify
