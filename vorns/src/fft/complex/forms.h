// The bodies of the complex transforms behind their checks: pairs or split arrays, and for fixed point the conversions.
#pragma once

#include "fft/contexts/work_area.h"
#include "fft/core/complex.h"
#include "fft/core/fixed.h"
#include "frame/checks.h"

namespace vorn::fft {

template <class T, class Pair>
VornStatus transform(Direction direction, const FloatSpec<T>& spec, const Pair* src, Pair* dst, Vorn8u* buffer) {
    static_assert(sizeof(Pair) == 2 * sizeof(T));
    const WorkArea work(spec.workBufSize, buffer);
    VORN_CHECK(work.status());
    transformPairs(spec, spec.order, direction, reinterpret_cast<const T*>(src), reinterpret_cast<T*>(dst),
                   work.at<T>());
    return vornStsNoErr;
}

template <class T>
VornStatus transform(Direction direction, const FloatSpec<T>& spec, const T* srcRe, const T* srcIm, T* dstRe, T* dstIm,
                     Vorn8u* buffer) {
    const WorkArea work(spec.workBufSize, buffer);
    VORN_CHECK(work.status());
    transformSplit(spec, spec.order, direction, srcRe, srcIm, dstRe, dstIm, work.at<T>());
    return vornStsNoErr;
}

// Fixed point: 2N numbers as they stand, or the two arrays one behind the other.

inline VornStatus transform(Direction direction, const FixedSpec& spec, const Vorn32sc* src, Vorn32sc* dst,
                            int scaleFactor, Vorn8u* buffer) {
    const FixedWork work(spec, complex32sc, buffer);
    VORN_CHECK(work.status());
    const int count = 2 << spec.order;
    auto* numbers = work.at<Vorn64f>();
    auto* pairs = reinterpret_cast<Vorn64fc*>(numbers);
    Through64f::in(reinterpret_cast<const Vorn32s*>(src), numbers, count);
    VORN_CHECK(
        transform(direction, *recordOf<Vorn64f>(spec.inner), pairs, pairs, reinterpret_cast<Vorn8u*>(numbers + count)));
    Through64f::out(numbers, reinterpret_cast<Vorn32s*>(dst), count, scaleFactor);
    return vornStsNoErr;
}

inline VornStatus transform(Direction direction, const FixedSpec& spec, const Vorn32s* srcRe, const Vorn32s* srcIm,
                            Vorn32s* dstRe, Vorn32s* dstIm, int scaleFactor, Vorn8u* buffer) {
    const FixedWork work(spec, complex32s, buffer);
    VORN_CHECK(work.status());
    const int count = 1 << spec.order;
    Vorn64f *re = work.at<Vorn64f>(), *im = re + count;
    Through64f::in(srcRe, re, count);
    Through64f::in(srcIm, im, count);
    VORN_CHECK(
        transform(direction, *recordOf<Vorn64f>(spec.inner), re, im, re, im, reinterpret_cast<Vorn8u*>(im + count)));
    Through64f::out(re, dstRe, count, scaleFactor);
    Through64f::out(im, dstIm, count, scaleFactor);
    return vornStsNoErr;
}

}  // namespace vorn::fft
