// Values mapped into a range: the exported functions and the kernel that keeps its name.
#include "linalg/reductions/range_mapping.h"

#include "frame/kernel.h"
#include "vornsr/linalg.h"

using namespace vorn;

VORN_KERNEL void vornsNormalizeInRangeMM_16s8u_M7(const Vorn16s* src, Vorn8u* dst, std::int64_t len, std::int64_t min,
                                                  std::int64_t max, std::int64_t range, Vorn32f lower, Vorn32f upper) {
    reductions::mapInMode(src, dst, len, static_cast<int>(min), static_cast<int>(max), static_cast<int>(range), lower,
                          upper);
}

VornStatus vornsNormalizeInRange_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f lower, Vorn32f upper,
                                     Vorn32f range) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(reductions::fractionsHold(lower, upper));
    VORN_CHECK(reductions::notNegative(range));
    return reductions::mapInOwnRange(src, dst, len, range, lower, upper);
}

VornStatus vornsNormalizeInRange_32f_I(Vorn32f* srcDst, int len, Vorn32f lower, Vorn32f upper, Vorn32f range) {
    return vornsNormalizeInRange_32f(srcDst, srcDst, len, lower, upper, range);
}

VornStatus vornsNormalizeInRange_16s(const Vorn16s* src, Vorn16s* dst, int len, int range, Vorn32f lower,
                                     Vorn32f upper) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(reductions::fractionsHold(lower, upper));
    VORN_CHECK(reductions::notNegative(range));
    return reductions::mapInOwnRange(src, dst, len, range, lower, upper);
}

VornStatus vornsNormalizeInRange_16s_I(Vorn16s* srcDst, int len, int range, Vorn32f lower, Vorn32f upper) {
    return vornsNormalizeInRange_16s(srcDst, srcDst, len, range, lower, upper);
}

VornStatus vornsNormalizeInRange_16s8u(const Vorn16s* src, Vorn8u* dst, int len, int range, Vorn32f lower,
                                       Vorn32f upper) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(reductions::fractionsHold(lower, upper));
    VORN_CHECK(reductions::notNegative(range));
    return reductions::mapInOwnRange(src, dst, len, range, lower, upper);
}

VornStatus vornsNormalizeInRange_32f16s(const Vorn32f* src, Vorn16s* dst, int len, int range, Vorn32f lower,
                                        Vorn32f upper) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(reductions::fractionsHold(lower, upper));
    VORN_CHECK(reductions::notNegative(range));
    return reductions::mapInOwnRange(src, dst, len, range, lower, upper);
}

VornStatus vornsNormalizeInRange_32f8u(const Vorn32f* src, Vorn8u* dst, int len, int range, Vorn32f lower,
                                       Vorn32f upper) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(reductions::fractionsHold(lower, upper));
    VORN_CHECK(reductions::notNegative(range));
    return reductions::mapInOwnRange(src, dst, len, range, lower, upper);
}

VornStatus vornsNormalizeInRangeMinMax_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f min, Vorn32f max,
                                           Vorn32f lower, Vorn32f upper, Vorn32f range) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(reductions::fractionsHold(lower, upper));
    VORN_CHECK(reductions::notNegative(range));
    VORN_CHECK(reductions::boundsHold(min, max));
    return reductions::mapInRange(src, dst, len, min, max, range, lower, upper);
}

VornStatus vornsNormalizeInRangeMinMax_32f_I(Vorn32f* srcDst, int len, Vorn32f min, Vorn32f max, Vorn32f lower,
                                             Vorn32f upper, Vorn32f range) {
    return vornsNormalizeInRangeMinMax_32f(srcDst, srcDst, len, min, max, lower, upper, range);
}

VornStatus vornsNormalizeInRangeMinMax_16s(const Vorn16s* src, Vorn16s* dst, int len, int min, int max, int range,
                                           Vorn32f lower, Vorn32f upper) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(reductions::fractionsHold(lower, upper));
    VORN_CHECK(reductions::notNegative(range));
    VORN_CHECK(reductions::boundsHold(min, max));
    return reductions::mapInRange(src, dst, len, min, max, range, lower, upper);
}

VornStatus vornsNormalizeInRangeMinMax_16s_I(Vorn16s* srcDst, int len, int min, int max, int range, Vorn32f lower,
                                             Vorn32f upper) {
    return vornsNormalizeInRangeMinMax_16s(srcDst, srcDst, len, min, max, range, lower, upper);
}

VornStatus vornsNormalizeInRangeMinMax_16s8u(const Vorn16s* src, Vorn8u* dst, int len, int min, int max, int range,
                                             Vorn32f lower, Vorn32f upper) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(reductions::fractionsHold(lower, upper));
    VORN_CHECK(reductions::notNegative(range));
    VORN_CHECK(reductions::boundsHold(min, max));
    return reductions::mapInRange(src, dst, len, min, max, range, lower, upper);
}

VornStatus vornsNormalizeInRangeMinMax_32f16s(const Vorn32f* src, Vorn16s* dst, int len, int range, Vorn32f min,
                                              Vorn32f max, Vorn32f lower, Vorn32f upper) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(reductions::fractionsHold(lower, upper));
    VORN_CHECK(reductions::notNegative(range));
    VORN_CHECK(reductions::boundsHold(min, max));
    return reductions::mapInRange(src, dst, len, min, max, range, lower, upper);
}

VornStatus vornsNormalizeInRangeMinMax_32f8u(const Vorn32f* src, Vorn8u* dst, int len, int range, Vorn32f min,
                                             Vorn32f max, Vorn32f lower, Vorn32f upper) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(reductions::fractionsHold(lower, upper));
    VORN_CHECK(reductions::notNegative(range));
    VORN_CHECK(reductions::boundsHold(min, max));
    return reductions::mapInRange(src, dst, len, min, max, range, lower, upper);
}
