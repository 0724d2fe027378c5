// Stands in front of the C library's malloc and free.
#include "support/allocation.h"

#include <cstddef>

namespace {

thread_local bool watching = false;
thread_local int failAt = 0;
thread_local int callCount = 0;
thread_local int live = 0;

}  // namespace

#ifndef VORNSR_SANITIZED
extern "C" {

void* __libc_malloc(std::size_t size);
void __libc_free(void* pointer);

void* malloc(std::size_t size) {
    if (watching) {
        ++callCount;
        if (callCount == failAt) return nullptr;
        ++live;
    }
    return __libc_malloc(size);
}

void free(void* pointer) {
    if (watching && pointer != nullptr) --live;
    __libc_free(pointer);
}
}
#endif

namespace test {

FailAllocation::FailAllocation(int n) {
    failAt = n;
    callCount = 0;
    live = 0;
    watching = true;
}

FailAllocation::~FailAllocation() { watching = false; }

int FailAllocation::calls() const { return callCount; }
int FailAllocation::outstanding() const { return live; }

bool FailAllocation::available() {
#ifdef VORNSR_SANITIZED
    return false;
#else
    return true;
#endif
}

}  // namespace test
