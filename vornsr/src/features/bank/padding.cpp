// A frame, copied into a longer one whose rest is zero.
#include "frame/checks.h"
#include "move/move_kernels.h"
#include "vornsr/features.h"

using namespace vorn;

namespace vorn::bank {
namespace {

template <class T>
VornStatus copyWithPadding(const T* src, int srcLen, T* dst, int dstLen) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    VORN_CHECK(atLeast(srcLen, dstLen));
    constexpr std::int64_t size = sizeof(T);
    ownsMove_8u_M7(reinterpret_cast<const Vorn8u*>(src), reinterpret_cast<Vorn8u*>(dst), srcLen * size);
    if (dstLen > srcLen) ownsSet_8u_M7(0, reinterpret_cast<Vorn8u*>(dst + srcLen), (dstLen - srcLen) * size);
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::bank

VornStatus vornsCopyWithPadding_32f(const Vorn32f* src, int srcLen, Vorn32f* dst, int dstLen) {
    return bank::copyWithPadding(src, srcLen, dst, dstLen);
}

VornStatus vornsCopyWithPadding_16s(const Vorn16s* src, int srcLen, Vorn16s* dst, int dstLen) {
    return bank::copyWithPadding(src, srcLen, dst, dstLen);
}
