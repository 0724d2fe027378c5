// The update of a noise tracker's spectra, bin by bin: recursive averages that minima control (Cohen and Berdugo 2002).
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <initializer_list>

#include "frame/rounding.h"
#include "noise/tracking/record.h"
#include "simd/pairs.h"
#include "simd/part.h"
#include "simd/simd.h"

namespace vorn::tracking {

// What a bin keeps, and its noise.
template <class V>
struct Bin {
    V presence, smoothed, minimum, tempMinimum, noise;
};

// A form says how a power is smoothed, and how presence and noise follow from the smoothed power s, its minimum and the
// power y.

struct SingleForm {
    using V = f32xN;
    V alphaD, restD, alphaP, restP, alphaS, restS, delta, one;

    explicit SingleForm(const Record<Vorn32f>& r)
        : alphaD(splat<V>(r.alphaD)),
          restD(splat<V>(1.0f - r.alphaD)),
          alphaP(splat<V>(r.alphaP)),
          restP(splat<V>(1.0f - r.alphaP)),
          alphaS(splat<V>(r.alphaS)),
          restS(splat<V>(1.0f - r.alphaS)),
          delta(splat<V>(r.delta)),
          one(splat<V>(1.0f)) {}

    VORN_INLINE V smooth(V s, V y) const { return s * alphaS + restS * y; }
    VORN_INLINE void follow(V s, V minimum, V y, V& presence, V& noise) const {
        const V fallen = alphaP * presence;
        // Kept in a register, or clang selects what is added, restP or -0, which rounding down turns a presence of 0
        // by.
        const V grown = inRegister(fallen + restP);
        presence = select(s > minimum * delta, grown, fallen);
        const V a = alphaD + restD * presence;
        noise = a * noise + (one - a) * y;
    }
};

// Smoothing in 64-bit integers, the rest in double. Factors of 2^-31 and 2^-15 are exact, so they may stand anywhere in
// a product.
struct FixedForm {
    using V = i32xN;
    using D = f64xN;
    V alphaS, restS, doubled;
    D alphaD, restD, alphaP, restP, delta, most, unit;

    explicit FixedForm(const Record<Vorn32s>& r)
        : alphaS(splat<V>(r.alphaS)),
          restS(splat<V>(static_cast<Vorn32s>(static_cast<std::uint32_t>(rest(r.alphaS))))),
          doubled(splat<V>(rest(r.alphaS) > INT32_MAX ? -1 : 0)),
          alphaD(splat<D>(r.alphaD)),
          restD(splat<D>(static_cast<double>(rest(r.alphaD)) * 0x1p-31)),
          alphaP(splat<D>(r.alphaP * 0x1p-31)),
          restP(splat<D>(static_cast<double>(rest(r.alphaP)))),
          delta(splat<D>(r.delta * 0x1p-15)),
          most(splat<D>(2147483647.0)),
          unit(splat<D>(0x1p-31)) {}

    // The low 32 bits of (s alphaS + (2^31 - 1 - alphaS) y) >> 31. Below an alphaS of 0 the second factor has 33 bits:
    // what 32 bits leave of it is 2^32 too small, and 2^32 y >> 31 is added behind the shift.
    VORN_INLINE V smooth(V s, V y) const {
        const i64xN low = splat<i64xN>(0xFFFFFFFF);
        const i64xN even = mulEven(s, alphaS) + mulEven(y, restS);
        const i64xN odd = mulEven(odds(s), alphaS) + mulEven(odds(y), restS);
        const V shifted = std::bit_cast<V>((shiftRightLogical<31>(even) & low) | andNot(low, shiftLeft<1>(odd)));
        return shifted + ((y + y) & doubled);
    }
    VORN_INLINE void follow(V s, V minimum, V y, V& presence, V& noise) const {
        const Half low =
            half(toDoubleLow(s), toDoubleLow(minimum), toDoubleLow(y), toDoubleLow(presence), toDoubleLow(noise));
        const Half high =
            half(toDoubleHigh(s), toDoubleHigh(minimum), toDoubleHigh(y), toDoubleHigh(presence), toDoubleHigh(noise));
        presence = roundToInt(low.presence, high.presence);
        noise = roundToInt(low.noise, high.noise);
    }

private:
    struct Half {
        D presence, noise;
    };
    static std::int64_t rest(Vorn32s alpha) { return std::int64_t{INT32_MAX} - alpha; }
    VORN_INLINE static V odds(V x) { return std::bit_cast<V>(shiftRightLogical<32>(std::bit_cast<i64xN>(x))); }
    // The presence that weighs the noise is the one before it is rounded.
    VORN_INLINE Half half(D s, D minimum, D y, D presence, D noise) const {
        const D fallen = presence * alphaP;
        // The limit of 2^31 - 1 on the product is not needed: no s is above it.
        const D p = select(minimum * delta < s, fallen + restP, fallen);
        const D a = alphaD + p * restD;
        return {p, (a * noise + (most - a) * y) * unit};
    }
};

// One register of bins. Of two minima that are equal, or where one is not a number, the kept one stays.
template <class Form, bool newWindow>
struct BinKernel {
    using V = typename Form::V;
    using T = typename V::Element;
    static constexpr std::int64_t step = V::lanes;
    const Form& form;
    T *presence, *smoothed, *minimum, *tempMinimum;
    const T* in;
    T* noise;

    BinKernel(const Form& itsForm, const Record<T>& r, const T* power, T* itsNoise)
        : form(itsForm),
          presence(r.presence),
          smoothed(r.smoothed),
          minimum(r.minimum),
          tempMinimum(r.tempMinimum),
          in(power),
          noise(itsNoise) {}

    template <class Load>
    VORN_INLINE Bin<V> bin(Load load) const {
        const V y = load(in), s = form.smooth(load(smoothed), y);
        const V inWindow = minOf(s, load(tempMinimum));
        const V m = newWindow ? inWindow : minOf(s, load(minimum));
        V p = load(presence), n = load(noise);
        form.follow(s, m, y, p, n);
        return {p, s, m, newWindow ? s : inWindow, n};
    }
    template <class Store>
    VORN_INLINE void keep(const Bin<V>& bin, Store store) const {
        store(presence, bin.presence);
        store(smoothed, bin.smoothed);
        store(minimum, bin.minimum);
        store(tempMinimum, bin.tempMinimum);
        store(noise, bin.noise);
    }

    VORN_INLINE Bin<V> at(std::int64_t i) const {
        return bin([i](const T* p) __attribute__((always_inline)) { return load<V>(p + i); });
    }
    VORN_INLINE void put(std::int64_t i, const Bin<V>& bin) const {
        keep(
            bin, [i](T * p, V x) __attribute__((always_inline)) { store(p + i, x); });
    }
    VORN_INLINE void part(std::int64_t n) const {
        keep(
            bin([n](const T* p) __attribute__((always_inline)) { return loadPart<V>(p, n); }), [n](T * p, V x)
                                                                                                   __attribute__((
                                                                                                       always_inline)) {
                                                                                                       storePart(p, x,
                                                                                                                 n);
                                                                                                   });
    }
    T* result() const { return noise; }
};

template <class Form, bool newWindow, class T>
VORN_INLINE void overBins(const Record<T>& record, const T* in, T* noise) {
    const Form form(record);
    const BinKernel<Form, newWindow> kernel(form, record, in, noise);
    const std::int64_t len = bins(record.fftLen);
    if (len < kernel.step) return kernel.part(len);
    // The last register ends at the last bin and overlaps the one before it, whose work it must not see. Nothing is
    // brought to a boundary: of five arrays at most one would stand on it.
    const std::int64_t end = len - kernel.step;
    const auto last = kernel.at(end);
    for (std::int64_t i = 0; i < end; i += kernel.step) kernel.put(i, kernel.at(i));
    kernel.put(end, last);
}

template <class T>
void begin(const Record<T>& record, const T* in, T* noise) {
    const auto bytes = static_cast<std::size_t>(bins(record.fftLen)) * sizeof(T);
    for (T* taken : {record.smoothed, record.minimum, record.tempMinimum, noise}) std::memmove(taken, in, bytes);
    std::memset(record.presence, 0, bytes);
}

template <class Form, class T>
VORN_NOINLINE void update(const T* in, VornsMCRAState* state, T* noise) {
    Record<T> record = read<T>(state);
    if (record.firstFrame == 1) {
        begin(record, in, noise);
    } else if (record.frameIdx == record.minWindow) {
        overBins<Form, true>(record, in, noise);
        record.frameIdx = 0;
    } else {
        overBins<Form, false>(record, in, noise);
    }
    ++record.frameIdx;
    record.firstFrame = 0;
    writeCounts(record, state);
}

}  // namespace vorn::tracking
