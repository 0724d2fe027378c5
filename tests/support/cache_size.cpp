// Stands in front of the C library's sysconf.
#include "support/cache_size.h"

#include <unistd.h>

namespace {

thread_local long pretended = 0;

}  // namespace

extern "C" {

long __sysconf(int name);

long sysconf(int name) noexcept {
    if (pretended > 0 && (name == _SC_LEVEL2_CACHE_SIZE || name == _SC_LEVEL3_CACHE_SIZE)) return pretended;
    return __sysconf(name);
}
}

namespace test {

CacheSize::CacheSize(long bytes) { pretended = bytes; }
CacheSize::~CacheSize() { pretended = 0; }

}  // namespace test
