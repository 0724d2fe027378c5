// The bodies of the real transforms behind their checks: a layout, a precision, and for fixed point the conversions.
#pragma once

#include "fft/packed_layouts.h"
#include "fft/real_core.h"
#include "fft/work_area.h"
#include "frame/checks.h"

namespace vorn::fft {

template <class Layout, class T>
VornStatus forwardTo(const FloatSpec<T>& spec, const T* src, T* dst, Vorn8u* buffer) {
    const WorkArea work(spec.workBufSize, buffer);
    VORN_CHECK(work.status());
    realForward(spec, src, dst, work.at<T>());
    Layout::fromPerm(dst, spec.order);
    return vornStsNoErr;
}

template <class Layout, class T>
VornStatus inverseFrom(const FloatSpec<T>& spec, const T* src, T* dst, Vorn8u* buffer) {
    const WorkArea work(spec.workBufSize, buffer);
    VORN_CHECK(work.status());
    const T* spectrum = Layout::toPerm(src, dst, spec.order);
    realInverse(spec, spectrum, Layout::nyquist(spectrum, src, spec.order), dst, work.at<T>());
    return vornStsNoErr;
}

// Fixed point: the numbers are converted into the start of the work buffer, transformed there in place, and converted
// out with the scale factor. The rest of the buffer, from `beside` bytes behind the numbers on, is the inner work
// buffer.

// The reordering into the layout follows the conversion, so saturation comes before it.
template <class Layout, class T, class Input, class Output, class ConvertIn, class ConvertOut>
VornStatus fixedForwardTo(const FixedSpec& spec, const Input* src, Output* dst, int scaleFactor, Vorn8u* buffer,
                          ConvertIn convertIn, ConvertOut convertOut) {
    const WorkArea work(spec.workBufSize, buffer);
    VORN_CHECK(work.status());
    const int length = static_cast<int>(lengthOf(spec.order));
    T* numbers = work.at<T>();
    convertIn(src, numbers, length);
    VORN_CHECK(forwardTo<Perm>(*recordOf<T>(spec.inner), numbers, numbers, work.at<Vorn8u>(length * sizeof(T))));
    convertOut(numbers, dst, length, vornRndNear, scaleFactor);
    Layout::fromPerm(dst, spec.order);
    return vornStsNoErr;
}

template <class Layout, class T, class Input, class Output, class ConvertIn, class ConvertOut>
VornStatus fixedInverseFrom(const FixedSpec& spec, const Input* src, Output* dst, int scaleFactor, Vorn8u* buffer,
                            int beside, ConvertIn convertIn, ConvertOut convertOut) {
    const WorkArea work(spec.workBufSize, buffer);
    VORN_CHECK(work.status());
    const int length = static_cast<int>(lengthOf(spec.order));
    T* numbers = work.at<T>();
    convertIn(src, numbers, static_cast<int>(Layout::valuesRead(spec.order)));
    VORN_CHECK(
        inverseFrom<Layout>(*recordOf<T>(spec.inner), numbers, numbers, work.at<Vorn8u>(length * sizeof(T) + beside)));
    convertOut(numbers, dst, length, vornRndNear, scaleFactor);
    return vornStsNoErr;
}

}  // namespace vorn::fft
