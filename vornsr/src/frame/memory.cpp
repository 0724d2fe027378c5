// Memory blocks: payloads on 32-byte addresses, with the address that malloc returned kept in the 8 bytes before them.
#include "frame/memory.h"

#include <cstdlib>
#include <cstring>

namespace vorn {
namespace {

// 32 bytes of room for the alignment and 8 for the back-pointer.
constexpr std::uintptr_t overhead = 40;

}  // namespace

void* allocateBlock(int len, std::size_t elementSize) {
    if (len < 1) return nullptr;
    void* base = std::malloc(static_cast<std::size_t>(len) * elementSize + overhead);
    if (base == nullptr) return nullptr;
    const auto address = (reinterpret_cast<std::uintptr_t>(base) + overhead - 1) & ~std::uintptr_t{31};
    auto* payload = static_cast<char*>(base) + (address - reinterpret_cast<std::uintptr_t>(base));
    std::memcpy(payload - sizeof base, &base, sizeof base);
    return payload;
}

namespace {

template <class T>
T* allocate(int len) {
    return static_cast<T*>(allocateBlock(len, sizeof(T)));
}

}  // namespace
}  // namespace vorn

Vorn8u* vornsMalloc_8u(int len) { return vorn::allocate<Vorn8u>(len); }
Vorn8s* vornsMalloc_8s(int len) { return vorn::allocate<Vorn8s>(len); }
Vorn16u* vornsMalloc_16u(int len) { return vorn::allocate<Vorn16u>(len); }
Vorn16s* vornsMalloc_16s(int len) { return vorn::allocate<Vorn16s>(len); }
Vorn8sc* vornsMalloc_8sc(int len) { return vorn::allocate<Vorn8sc>(len); }
Vorn32u* vornsMalloc_32u(int len) { return vorn::allocate<Vorn32u>(len); }
Vorn32s* vornsMalloc_32s(int len) { return vorn::allocate<Vorn32s>(len); }
Vorn32f* vornsMalloc_32f(int len) { return vorn::allocate<Vorn32f>(len); }
Vorn16sc* vornsMalloc_16sc(int len) { return vorn::allocate<Vorn16sc>(len); }
Vorn64s* vornsMalloc_64s(int len) { return vorn::allocate<Vorn64s>(len); }
Vorn64f* vornsMalloc_64f(int len) { return vorn::allocate<Vorn64f>(len); }
Vorn32sc* vornsMalloc_32sc(int len) { return vorn::allocate<Vorn32sc>(len); }
Vorn32fc* vornsMalloc_32fc(int len) { return vorn::allocate<Vorn32fc>(len); }
Vorn64sc* vornsMalloc_64sc(int len) { return vorn::allocate<Vorn64sc>(len); }
Vorn64fc* vornsMalloc_64fc(int len) { return vorn::allocate<Vorn64fc>(len); }

void vornsFree(void* pointer) {
    if (pointer == nullptr) return;
    void* base;
    std::memcpy(&base, static_cast<char*>(pointer) - sizeof base, sizeof base);
    std::free(base);
}
