// The unit curve, a smooth step from 0 to 2: the exported functions and the kernels that keep their names.
#include <cstdint>

#include "arithmetic/compute.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "vornsr/linalg.h"

namespace vorn {
namespace {

struct UnitCurveSingle : Operation<f32xN::lanes, true> {
    VORN_INLINE f32xN operator()(f32xN x, f32xN) const {
        const f32xN zero = splat<f32xN>(0.0f), one = splat<f32xN>(1.0f), two = splat<f32xN>(2.0f);
        const f32xN square = x * x;
        const f32xN below2 = select(x < one, square, (splat<f32xN>(4.0f) * x - square) - two);
        return select(x < two, select(x < zero, zero, below2), two);  // what is not a number is not below 2
    }
};

// v(x) in 2q fraction bits: m^2 up to one and 2 one^2 - m^2 above, with m the distance to the nearer end of the curve,
// 0 outside. It fits 16 bits: where two is 2^15 it wraps, and so does the difference.
struct CurveValues {
    int q;
    VORN_INLINE Halves<i32xN> operator()(i16xN x) const {
        const i16xN zero = splat<i16xN>(0), two = splat<i16xN>(static_cast<Vorn16s>(2u << q));
        const i16xN positive = maxOf(x, zero);
        const Halves<i32xN> wide = zip(positive, zero), m = zip(minOf(positive, maxOf(two - x, zero)), zero);
        return {value(wide.low, m.low), value(wide.high, m.high)};
    }

private:
    VORN_INLINE i32xN value(i32xN x, i32xN m) const {
        const i32xN square = mulAddPairs(shortsOf(m), shortsOf(m));
        return select(x > splat<i32xN>((1 << q) - 1), splat<i32xN>(2 << (2 * q)) - square, square);
    }
};

// Both counts are taken modulo 32. Nothing is negative before a right shift.
struct UnitCurveShiftedRight : Operation<i16xN::lanes, false> {
    CurveValues values;
    int count;
    UnitCurveShiftedRight(int q, std::int64_t t) : values{q}, count(static_cast<int>(t & 31)) {}
    VORN_INLINE i16xN operator()(i16xN x, i16xN) const {
        const Halves<i32xN> v = values(x);
        return joinSat(Halves<i32xN>{shiftRight(v.low, count), shiftRight(v.high, count)});
    }
};
// A left shift may reach the sign, and there is no lower limit: of what is below 32767 the low 16 bits are stored.
struct UnitCurveShiftedLeft : Operation<i16xN::lanes, false> {
    CurveValues values;
    int count;
    UnitCurveShiftedLeft(int q, std::int64_t t) : values{q}, count(static_cast<int>(-t & 31)) {}
    VORN_INLINE i16xN operator()(i16xN x, i16xN) const {
        const Halves<i32xN> v = values(x);
        return joinSat(Halves<i32xN>{limited(v.low), limited(v.high)});
    }

private:
    VORN_INLINE i32xN limited(i32xN v) const {
        return shiftRight<16>(shiftLeft<16>(minOf(shiftLeft(v, count), splat<i32xN>(32767))));
    }
};

constexpr int fractionBitsEnd = 15;  // from so many fraction bits on the result is zero

void unitCurve(const Vorn16s* src, int srcQ, Vorn16s* dst, std::int64_t len, int scaleFactor) {
    if (srcQ < 0 || srcQ >= fractionBitsEnd) return zeroElements(dst, len);
    const std::int64_t t = std::int64_t{scaleFactor} + 2 * srcQ;
    if (t >= 1) {
        computeWith(UnitCurveShiftedRight(srcQ, t), elements(src), constant(Vorn16s{0}), dst, len);
    } else {
        computeWith(UnitCurveShiftedLeft(srcQ, t), elements(src), constant(Vorn16s{0}), dst, len);
    }
}

}  // namespace
}  // namespace vorn

using namespace vorn;

// dst[i] = the unit curve at src[i] 2^-srcQ, times 2^-scaleFactor.
VORN_KERNEL void vornsUnitCurve_16s_Sfs_M7(const Vorn16s* src, int srcQ, Vorn16s* dst, std::int64_t len,
                                           int scaleFactor) {
    unitCurve(src, srcQ, dst, len, scaleFactor);
}
VORN_KERNEL void vornsUnitCurve_16s_ISfs_M7(Vorn16s* srcDst, int srcQ, std::int64_t len, int scaleFactor) {
    unitCurve(srcDst, srcQ, srcDst, len, scaleFactor);
}

VornStatus vornsUnitCurve_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    compute<UnitCurveSingle>(elements(src), constant(0.0f), dst, len);
    return vornStsNoErr;
}

VornStatus vornsUnitCurve_32f_I(Vorn32f* srcDst, int len) { return vornsUnitCurve_32f(srcDst, srcDst, len); }

VornStatus vornsUnitCurve_16s_Sfs(const Vorn16s* src, int srcQ, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    unitCurve(src, srcQ, dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsUnitCurve_16s_ISfs(Vorn16s* srcDst, int srcQ, int len, int scaleFactor) {
    return vornsUnitCurve_16s_Sfs(srcDst, srcQ, srcDst, len, scaleFactor);
}
