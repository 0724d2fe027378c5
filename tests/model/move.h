// Plain models of the block operations and of conjugation: what each element of the result is.
#pragma once

#include <bit>
#include <cstdint>
#include <vector>

#include "vornsr/types.h"

namespace model {

inline Vorn32f negatedSign(Vorn32f x) { return std::bit_cast<Vorn32f>(std::bit_cast<std::uint32_t>(x) + 0x80000000u); }
inline Vorn64f negatedSign(Vorn64f x) {
    return std::bit_cast<Vorn64f>(std::bit_cast<std::uint64_t>(x) + 0x8000000000000000u);
}

inline Vorn32fc conj(Vorn32fc x) { return {x.re, negatedSign(x.im)}; }
inline Vorn64fc conj(Vorn64fc x) { return {x.re, negatedSign(x.im)}; }
inline Vorn16sc conj(Vorn16sc x) {
    const int negated = -static_cast<int>(x.im);
    return {x.re, static_cast<Vorn16s>(negated == 32768 ? 32767 : negated)};
}

template <class T>
std::vector<T> conj(const std::vector<T>& src) {
    std::vector<T> dst;
    for (const T& x : src) dst.push_back(conj(x));
    return dst;
}

template <class T>
std::vector<T> conjFlip(const std::vector<T>& src) {
    std::vector<T> dst;
    for (std::size_t n = 0; n < src.size(); ++n) dst.push_back(conj(src[src.size() - 1 - n]));
    return dst;
}

// len points from the values 0 to len/2.
template <class T>
std::vector<T> conjExtend(const std::vector<T>& lower, std::size_t len) {
    std::vector<T> dst(len);
    for (std::size_t k = 0; k < len; ++k) dst[k] = k <= len / 2 ? lower[k] : conj(lower[len - k]);
    return dst;
}

}  // namespace model
