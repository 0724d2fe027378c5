// The squared distance of two vectors, in singles. The terms enter one sum in the order of the elements, so vectors of
// lanes pay across words or across queries, never along the elements.
#pragma once

#include "vornsr/types.h"

namespace vorn::vq {

// One more element of a sum that starts at 0: of a single number, or of as many distances as V has lanes.
template <class V>
inline V plusSquare(V sum, V a, V b) {
    const V difference = a - b;
    return sum + difference * difference;
}
template <class V>
inline V plusSquare(V sum, V a, V b, V weight) {
    const V difference = a - b;
    return sum + difference * difference * weight;
}

// Integers are widened first. Weights that are all 1 and no weights give the same bits.
template <class A, class B>
inline Vorn32f squaredDistance(const A* a, const B* b, int len) {
    Vorn32f sum = 0;
    for (int i = 0; i < len; ++i) sum = plusSquare(sum, static_cast<Vorn32f>(a[i]), static_cast<Vorn32f>(b[i]));
    return sum;
}
template <class A, class B, class W>
inline Vorn32f squaredDistance(const A* a, const B* b, const W* weight, int len) {
    Vorn32f sum = 0;
    for (int i = 0; i < len; ++i) {
        sum = plusSquare(sum, static_cast<Vorn32f>(a[i]), static_cast<Vorn32f>(b[i]), static_cast<Vorn32f>(weight[i]));
    }
    return sum;
}

}  // namespace vorn::vq
