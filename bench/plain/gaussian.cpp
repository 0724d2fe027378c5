#include "plain/gaussian.h"

#include <cmath>

namespace plain {
#include "plain/gaussian_loops.h"
}

// What the compiler makes of them with the instructions of the baseline build only.
#pragma GCC target("no-ssse3")
namespace plain_baseline {
#include "plain/gaussian_loops.h"
}
