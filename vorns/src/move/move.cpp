// Block operations and conjugation: the exported functions. They turn elements into bytes or bit patterns and leave the
// rest to one kernel for each width.
#include <bit>
#include <cstring>

#include "frame/checks.h"
#include "move/move_kernels.h"
#include "simd/short_block.h"
#include "vornsr/signal.h"

using namespace vorn;

namespace {

// The bytes of len elements, computed in 32 bits: a byte count beyond them is not supported.
template <class T>
int bytesOf(int len) {
    return static_cast<int>(static_cast<unsigned>(len) * static_cast<unsigned>(sizeof(T)));
}

template <class T>
void copy(const T* src, T* dst, int len) {
    const auto* from = reinterpret_cast<const Vorn8u*>(src);
    auto* to = reinterpret_cast<Vorn8u*>(dst);
    const int bytes = bytesOf<T>(len);
    if (bytes <= shortBytes) return moveShort(from, to, bytes);
    std::memcpy(to, from, static_cast<std::size_t>(bytes));
}

template <class T>
void move(const T* src, T* dst, int len) {
    const auto* from = reinterpret_cast<const Vorn8u*>(src);
    auto* to = reinterpret_cast<Vorn8u*>(dst);
    const int bytes = bytesOf<T>(len);
    if (bytes <= shortBytes) return moveShort(from, to, bytes);
    ownsMove_8u_M7(from, to, bytes);
}

template <class T>
void zero(T* dst, int len) {
    auto* to = reinterpret_cast<Vorn8u*>(dst);
    const int bytes = bytesOf<T>(len);
    if (bytes <= shortBytes) return fillShort(0, 0, to, bytes);
    ownsSet_8u_M7(0, to, bytes);
}

// A fill never goes through floating-point arithmetic: it takes the bits of val to the kernel of its width.
template <class T>
void set(T val, T* dst, int len) {
    if constexpr (sizeof(T) == 1) {
        ownsSet_8u_M7(std::bit_cast<Vorn8u>(val), reinterpret_cast<Vorn8u*>(dst), len);
    } else if constexpr (sizeof(T) == 2) {
        ownsSet_16u_M7(std::bit_cast<Vorn16u>(val), reinterpret_cast<Vorn16u*>(dst), len);
    } else if constexpr (sizeof(T) == 4) {
        ownsSet_32s_M7(std::bit_cast<Vorn32s>(val), reinterpret_cast<Vorn32s*>(dst), len);
    } else if constexpr (sizeof(T) == 8) {
        ownsSet_64s_M7(std::bit_cast<Vorn64s>(val), reinterpret_cast<Vorn64s*>(dst), len);
    } else {
        ownsSet_64sc_M7(std::bit_cast<Vorn64sc>(val), reinterpret_cast<Vorn64sc*>(dst), len);
    }
}

}  // namespace

VornStatus vornsCopy_8u(const Vorn8u* src, Vorn8u* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    copy(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsCopy_16s(const Vorn16s* src, Vorn16s* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    copy(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsCopy_16sc(const Vorn16sc* src, Vorn16sc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    copy(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsCopy_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    copy(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsCopy_32fc(const Vorn32fc* src, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    copy(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsCopy_64f(const Vorn64f* src, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    copy(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsCopy_64fc(const Vorn64fc* src, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    copy(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsCopy_32s(const Vorn32s* src, Vorn32s* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    copy(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsCopy_32sc(const Vorn32sc* src, Vorn32sc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    copy(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsCopy_64s(const Vorn64s* src, Vorn64s* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    copy(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsCopy_64sc(const Vorn64sc* src, Vorn64sc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    copy(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsMove_8u(const Vorn8u* src, Vorn8u* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    move(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsMove_16s(const Vorn16s* src, Vorn16s* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    move(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsMove_16sc(const Vorn16sc* src, Vorn16sc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    move(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsMove_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    move(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsMove_32fc(const Vorn32fc* src, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    move(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsMove_64f(const Vorn64f* src, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    move(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsMove_64fc(const Vorn64fc* src, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    move(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsMove_32s(const Vorn32s* src, Vorn32s* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    move(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsMove_32sc(const Vorn32sc* src, Vorn32sc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    move(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsMove_64s(const Vorn64s* src, Vorn64s* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    move(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsMove_64sc(const Vorn64sc* src, Vorn64sc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    move(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsZero_8u(Vorn8u* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    zero(dst, len);
    return vornStsNoErr;
}

VornStatus vornsZero_16s(Vorn16s* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    zero(dst, len);
    return vornStsNoErr;
}

VornStatus vornsZero_16sc(Vorn16sc* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    zero(dst, len);
    return vornStsNoErr;
}

VornStatus vornsZero_32f(Vorn32f* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    zero(dst, len);
    return vornStsNoErr;
}

VornStatus vornsZero_32fc(Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    zero(dst, len);
    return vornStsNoErr;
}

VornStatus vornsZero_64f(Vorn64f* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    zero(dst, len);
    return vornStsNoErr;
}

VornStatus vornsZero_64fc(Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    zero(dst, len);
    return vornStsNoErr;
}

VornStatus vornsZero_32s(Vorn32s* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    zero(dst, len);
    return vornStsNoErr;
}

VornStatus vornsZero_32sc(Vorn32sc* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    zero(dst, len);
    return vornStsNoErr;
}

VornStatus vornsZero_64s(Vorn64s* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    zero(dst, len);
    return vornStsNoErr;
}

VornStatus vornsZero_64sc(Vorn64sc* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    zero(dst, len);
    return vornStsNoErr;
}

VornStatus vornsSet_8u(Vorn8u val, Vorn8u* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    set(val, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSet_16s(Vorn16s val, Vorn16s* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    set(val, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSet_16sc(Vorn16sc val, Vorn16sc* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    set(val, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSet_32f(Vorn32f val, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    set(val, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSet_32fc(Vorn32fc val, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    set(val, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSet_64f(Vorn64f val, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    set(val, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSet_64fc(Vorn64fc val, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    set(val, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSet_32s(Vorn32s val, Vorn32s* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    set(val, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSet_32sc(Vorn32sc val, Vorn32sc* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    set(val, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSet_64s(Vorn64s val, Vorn64s* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    set(val, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSet_64sc(Vorn64sc val, Vorn64sc* dst, int len) {
    VORN_CHECK(notNull(dst));
    VORN_CHECK(positive(len));
    set(val, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConj_64fc(const Vorn64fc* src, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    conjugate(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConj_64fc_I(Vorn64fc* srcDst, int len) { return vornsConj_64fc(srcDst, srcDst, len); }

VornStatus vornsConjFlip_64fc(const Vorn64fc* src, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    conjugateReversed(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConj_32fc(const Vorn32fc* src, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    conjugate(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConj_32fc_I(Vorn32fc* srcDst, int len) { return vornsConj_32fc(srcDst, srcDst, len); }

VornStatus vornsConjFlip_32fc(const Vorn32fc* src, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    conjugateReversed(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConj_16sc(const Vorn16sc* src, Vorn16sc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    conjugate(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsConj_16sc_I(Vorn16sc* srcDst, int len) { return vornsConj_16sc(srcDst, srcDst, len); }

VornStatus vornsConjFlip_16sc(const Vorn16sc* src, Vorn16sc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    conjugateReversed(src, dst, len);
    return vornStsNoErr;
}
