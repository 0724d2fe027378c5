// Stands in front of the C library's allocator.
#include "allocation.h"

#include <cerrno>
#include <cstddef>

namespace fuzz::allocation {

bool watching = false;
unsigned made = 0;
unsigned failAt = 0;
int live = 0;

void reset(unsigned failing) {
    made = 0;
    failAt = failing;
    live = 0;
}

#ifndef VORNSR_SANITIZED
namespace {

// Counts one, and tells whether it is the one that fails.
bool refused() {
    if (!watching) return false;
    if (++made == failAt) return true;
    ++live;
    return false;
}

}  // namespace
#endif
}  // namespace fuzz::allocation

#ifndef VORNSR_SANITIZED
using fuzz::allocation::refused;

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* pointer, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* pointer);

void* malloc(std::size_t size) { return refused() ? nullptr : __libc_malloc(size); }

void* calloc(std::size_t count, std::size_t size) { return refused() ? nullptr : __libc_calloc(count, size); }

void* realloc(void* pointer, std::size_t size) {
    if (refused()) return nullptr;
    if (fuzz::allocation::watching && pointer != nullptr) --fuzz::allocation::live;
    return __libc_realloc(pointer, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return refused() ? nullptr : __libc_memalign(alignment, size);
}

void* memalign(std::size_t alignment, std::size_t size) {
    return refused() ? nullptr : __libc_memalign(alignment, size);
}

int posix_memalign(void** pointer, std::size_t alignment, std::size_t size) {
    if (refused()) return ENOMEM;
    *pointer = __libc_memalign(alignment, size);
    return *pointer == nullptr ? ENOMEM : 0;
}

void free(void* pointer) {
    if (fuzz::allocation::watching && pointer != nullptr) --fuzz::allocation::live;
    __libc_free(pointer);
}
}
#endif
