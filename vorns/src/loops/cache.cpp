// The size of the last-level cache, asked for anew in each call: the library keeps no state.
#ifndef _GNU_SOURCE
#define _GNU_SOURCE
#endif
#include "loops/cache.h"

#include <sched.h>
#include <unistd.h>

namespace vorn {

// The C library read the cache's size when the program started and hands it out in two nanoseconds; the processors that
// this thread may run on cost one light system call. Asking the processor itself (cpuid) is the worse source: under
// virtualisation each such instruction is trapped and takes microseconds, as long as filling the smallest block that
// comes here.
std::int64_t cachePerCore() {
    std::int64_t bytes = sysconf(_SC_LEVEL3_CACHE_SIZE);
    if (bytes <= 0) bytes = sysconf(_SC_LEVEL2_CACHE_SIZE);
    cpu_set_t processors;
    if (bytes <= 0 || sched_getaffinity(0, sizeof processors, &processors) != 0) return 0;
    const int count = CPU_COUNT(&processors);
    return count > 0 ? bytes / count : 0;
}

}  // namespace vorn
