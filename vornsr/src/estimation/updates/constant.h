// The normalising constant of a Gaussian.
#pragma once

#include "vornsr/frame.h"
#include "vornsr/types.h"

namespace vorn {

// len times the natural logarithm of two pi, to the digits that the header states.
template <class T>
T logTwoPi(int len) {
    return static_cast<T>(static_cast<double>(len) * 1.8378770664093);
}

// Stores the constant, or its replacement when the sum of logarithms met a zero or a negative element. The replacement
// is the single-precision constant in either precision. Any other status of the sum is passed over.
template <class T>
VornStatus gaussianConstant(T constant, VornStatus sumStatus, T* dst) {
    switch (sumStatus) {
        case vornStsLnZeroArg:
            *dst = vornConstantOfINF_32f;
            return sumStatus;
        case vornStsLnNegArg:
            *dst = vornConstantOfNAN_32f;
            return sumStatus;
        default:
            *dst = constant;
            return vornStsNoErr;
    }
}

}  // namespace vorn
