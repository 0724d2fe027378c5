// The three packed layouts of the spectrum of N = 2^order real values. The transforms work in Perm; the others are
// reached from it and brought back to it here, for floats and for integers.
//
//           0       1        2       3       ...  N - 1          N        N + 1
//   Perm    Xr[0]   Xr[N/2]  Xr[1]   Xi[1]   ...  Xi[N/2 - 1]
//   Pack    Xr[0]   Xr[1]    Xi[1]   Xr[2]   ...  Xr[N/2]
//   CCS     Xr[0]   0        Xr[1]   Xi[1]   ...  Xi[N/2 - 1]    Xr[N/2]  0
#pragma once

#include <cstddef>
#include <cstring>

namespace vorn::fft {

inline std::ptrdiff_t lengthOf(int order) { return std::ptrdiff_t{1} << order; }

// toPerm gives the spectrum with its pairs in Perm order: the source itself where they stand so already, else dst,
// which may be the source. nyquist gives Xr[N/2] of what toPerm gave (0 for N = 1, which has none).

struct Perm {
    // How many values of a spectrum a transform back reads.
    static std::ptrdiff_t valuesRead(int order) { return lengthOf(order); }
    template <class T>
    static void fromPerm(T*, int) {}
    template <class T>
    static const T* toPerm(const T* src, T*, int) {
        return src;
    }
    template <class T>
    static T nyquist(const T* perm, const T*, int order) {
        return order == 0 ? T(0) : perm[1];
    }
};

struct Pack {
    static std::ptrdiff_t valuesRead(int order) { return lengthOf(order); }
    template <class T>
    static void fromPerm(T* dst, int order) {
        if (order < 2) return;
        const std::ptrdiff_t length = lengthOf(order);
        const T nyquist = dst[1];
        std::memmove(dst + 1, dst + 2, static_cast<std::size_t>(length - 2) * sizeof(T));
        dst[length - 1] = nyquist;
    }
    template <class T>
    static const T* toPerm(const T* src, T* dst, int order) {
        const std::ptrdiff_t length = lengthOf(order);
        const T first = src[0], nyquist = src[length - 1];
        if (length > 2) std::memmove(dst + 2, src + 1, static_cast<std::size_t>(length - 2) * sizeof(T));
        dst[0] = first;
        if (length > 1) dst[1] = nyquist;
        return dst;
    }
    template <class T>
    static T nyquist(const T* perm, const T*, int order) {
        return order == 0 ? T(0) : perm[1];
    }
};

struct Ccs {
    static std::ptrdiff_t valuesRead(int order) { return lengthOf(order) + 1; }
    template <class T>
    static void fromPerm(T* dst, int order) {
        const std::ptrdiff_t length = lengthOf(order);
        if (length > 1) {
            dst[length] = dst[1];
            dst[length + 1] = T(0);
        }
        dst[1] = T(0);
    }
    // The pairs stand in place already; only Xr[N/2] is taken from elsewhere.
    template <class T>
    static const T* toPerm(const T* src, T*, int) {
        return src;
    }
    template <class T>
    static T nyquist(const T*, const T* src, int order) {
        return order == 0 ? T(0) : src[lengthOf(order)];
    }
};

}  // namespace vorn::fft
