// The adapter of the fixed-point forms: numbers are converted into the start of the work buffer, transformed there in
// place in floats, and converted out with the scale factor. Behind the numbers lies the inner work buffer.
#pragma once

#include <climits>

#include "fft/contexts/context.h"
#include "fft/contexts/work_area.h"
#include "frame/checks.h"
#include "vornsr/signal.h"

namespace vorn::fft {

// 32-bit integers through doubles.
struct Through64f {
    using Inner = Vorn64f;
    static void in(const Vorn32s* src, Inner* numbers, int len) { vornsConvert_32s64f(src, numbers, len); }
    static void out(const Inner* numbers, Vorn32s* dst, int len, int scaleFactor) {
        vornsConvert_64f32s_Sfs(numbers, dst, len, vornRndNear, scaleFactor);
    }
};

// 16-bit integers and their 32-bit spectrum through singles, whose 24 bits round the latter on the way in.
struct Through32f {
    using Inner = Vorn32f;
    static void in(const Vorn16s* src, Inner* numbers, int len) { vornsConvert_16s32f(src, numbers, len); }
    static void in(const Vorn32s* src, Inner* numbers, int len) { vornsConvert_32s32f(src, numbers, len); }
    static void out(const Inner* numbers, Vorn32s* dst, int len, int scaleFactor) {
        vornsConvert_32f32s_Sfs(numbers, dst, len, vornRndNear, scaleFactor);
    }
    static void out(const Inner* numbers, Vorn16s* dst, int len, int scaleFactor) {
        vornsConvert_32f16s_Sfs(numbers, dst, len, vornRndNear, scaleFactor);
    }
};

// The work area of one call. An area that 32 bits cannot say (of contexts of order 27 and above) counts as exhausted
// memory; inner work areas stay below 2^20 bytes.
class FixedWork {
public:
    FixedWork(const FixedSpec& spec, FixedForm form, Vorn8u* buffer)
        : sayable_(form.conversionArea(spec.order) <= INT_MAX - (1 << 20)),
          area_(sayable_ ? spec.workBufSize : 0, buffer) {}

    VornStatus status() const { return sayable_ ? area_.status() : vornStsMemAllocErr; }
    template <class T>
    T* at(std::int64_t bytes = 0) const {
        return area_.at<T>(bytes);
    }

private:
    bool sayable_;
    WorkArea area_;
};

}  // namespace vorn::fft
