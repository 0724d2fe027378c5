// The work buffer of a transform: the caller's, rounded up to 16 bytes, or one of the library's for the time of the
// call.
#pragma once

#include "fft/contexts/spec.h"
#include "frame/align.h"
#include "frame/memory.h"

namespace vorn::fft {

class WorkArea {
public:
    WorkArea(int size, Vorn8u* buffer)
        : own_(buffer == nullptr ? size : 0), place_(buffer == nullptr ? own_.get() : alignedUp(buffer, 16)) {
        missing_ = size > 0 && place_ == nullptr;
    }

    VornStatus status() const { return missing_ ? vornStsMemAllocErr : vornStsNoErr; }
    template <class T>
    T* at(std::int64_t bytes = 0) const {
        return place_ == nullptr ? nullptr : reinterpret_cast<T*>(place_ + bytes);
    }

private:
    Scratch<Vorn8u> own_;
    Vorn8u* place_;
    bool missing_;
};

}  // namespace vorn::fft
