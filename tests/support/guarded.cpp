// Pages between two unmapped ones.
#include "support/guarded.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <new>
#include <utility>

namespace test {

bool guardStandsBefore() {
    static const bool before = [] {
        const char* guard = std::getenv("VORNSR_GUARD");
        return guard != nullptr && std::strcmp(guard, "before") == 0;
    }();
    return before;
}

GuardedPages::GuardedPages(std::size_t bytes) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t inner = (bytes + page - 1) / page * page;
    mapBytes_ = inner + 2 * page;
    void* map = mmap(nullptr, mapBytes_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (map == MAP_FAILED) throw std::bad_alloc();
    map_ = static_cast<std::byte*>(map);
    begin_ = map_ + page;
    end_ = begin_ + inner;
    if (mprotect(begin_, inner, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
}

GuardedPages::~GuardedPages() {
    if (map_ != nullptr) munmap(map_, mapBytes_);
}

GuardedPages::GuardedPages(GuardedPages&& other) noexcept { *this = std::move(other); }

GuardedPages& GuardedPages::operator=(GuardedPages&& other) noexcept {
    std::swap(map_, other.map_);
    std::swap(mapBytes_, other.mapBytes_);
    std::swap(begin_, other.begin_);
    std::swap(end_, other.end_);
    return *this;
}

}  // namespace test
