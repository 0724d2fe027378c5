// The bodies of the real transforms behind their checks: a layout, a precision, and for fixed point the conversions.
#pragma once

#include "fft/contexts/work_area.h"
#include "fft/core/fixed.h"
#include "fft/packed/layouts.h"
#include "fft/real/core.h"
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

// Fixed point. The reordering into the layout follows the conversion, so saturation comes before it.
template <class Layout, class Through, class Input, class Output>
VornStatus fixedForwardTo(const FixedSpec& spec, FixedForm form, const Input* src, Output* dst, int scaleFactor,
                          Vorn8u* buffer) {
    const FixedWork work(spec, form, buffer);
    VORN_CHECK(work.status());
    const int length = static_cast<int>(lengthOf(spec.order));
    auto* numbers = work.at<typename Through::Inner>();
    Through::in(src, numbers, length);
    VORN_CHECK(forwardTo<Perm>(*recordOf<typename Through::Inner>(spec.inner), numbers, numbers,
                               reinterpret_cast<Vorn8u*>(numbers + length)));
    Through::out(numbers, dst, length, scaleFactor);
    Layout::fromPerm(dst, spec.order);
    return vornStsNoErr;
}

// CCS brings one value more than the others: the inner work buffer begins behind the whole conversion area.
template <class Layout, class Through, class Input, class Output>
VornStatus fixedInverseFrom(const FixedSpec& spec, FixedForm form, const Input* src, Output* dst, int scaleFactor,
                            Vorn8u* buffer) {
    const FixedWork work(spec, form, buffer);
    VORN_CHECK(work.status());
    const int length = static_cast<int>(lengthOf(spec.order));
    auto* numbers = work.at<typename Through::Inner>();
    Through::in(src, numbers, static_cast<int>(Layout::valuesRead(spec.order)));
    VORN_CHECK(inverseFrom<Layout>(*recordOf<typename Through::Inner>(spec.inner), numbers, numbers,
                                   work.at<Vorn8u>(form.conversionArea(spec.order))));
    Through::out(numbers, dst, length, scaleFactor);
    return vornStsNoErr;
}

}  // namespace vorn::fft
