// Blind equalisation of cepstra: a bias that pulls the mean towards a reference is taken off and follows. The exported
// functions, and their arithmetic.
#include <algorithm>
#include <cstdint>

#include "frame/checks.h"
#include "loops/elementwise.h"
#include "simd/part.h"
#include "simd/simd.h"
#include "vornsr/aurora.h"

namespace vorn::equalisation {
namespace {

// A register of both results.
template <class V>
struct Equalised {
    V value, bias;
};

// How far the bias moves: less in quiet frames, and not at all in silence. An energy that is none is silence.
Vorn32f stepOf(Vorn32f energy) {
    const Vorn32f above = energy - 211.0f / 64;
    const Vorn32f notBelow = above > 0 ? above : 0;
    return (notBelow < 1 ? notBelow : 1) * (9.0f / 1024);
}

struct SingleStep {
    f32xN step;
    VORN_INLINE explicit SingleStep(Vorn32f energy) : step(splat<f32xN>(stepOf(energy))) {}
    VORN_INLINE Equalised<f32xN> operator()(f32xN ref, f32xN x, f32xN bias) const {
        const f32xN value = x - bias;
        return {value, (value - ref) * step + bias};
    }
};

// The difference c - ref has 18 bits: its product with the step is formed of those of x, bias and ref, in 32 bits. Each
// result saturates by itself.
struct ShortStep {
    i16xN ofValue, ofRef;  // the factors of the pairs x, bias and ref, 0
    VORN_INLINE explicit ShortStep(int energy) {
        const auto loudness = std::clamp<std::int64_t>(std::int64_t{energy} - 211, 0, 64);
        const auto step = static_cast<std::uint32_t>(9 * loudness), opposite = (0 - step) & 0xFFFFu;
        ofValue = shortsOf(splat<i32xN>(static_cast<std::int32_t>(opposite << 16 | step)));
        ofRef = shortsOf(splat<i32xN>(static_cast<std::int32_t>(opposite)));
    }
    VORN_INLINE Equalised<i16xN> operator()(i16xN ref, i16xN x, i16xN bias) const {
        const Halves<i32xN> value = zip(x, bias), reference = zip(ref, splat<i16xN>(0));
        const i16xN change = joinSat(Halves<i32xN>{changeOf(value.low, reference.low),  //
                                                   changeOf(value.high, reference.high)});
        return {subSat(x, bias), addSat(bias, change)};
    }

private:
    VORN_INLINE i32xN changeOf(i32xN value, i32xN ref) const {
        return shiftRight<16>(mulAddPairs(shortsOf(value), ofValue) + mulAddPairs(shortsOf(ref), ofRef));
    }
};

// The element loop's kernel. Cepstra are short, and are used again at once: the cache is never passed by.
template <class T, class Step>
struct EqualiseLoop {
    using V = Wide<T>;
    static constexpr std::int64_t step = V::lanes;
    static constexpr bool unrolled = false;
    Step equalised;
    const T* ref;
    T *srcDst, *bias;

    VORN_INLINE auto at(std::int64_t i) const {
        return equalised(load<V>(ref + i), load<V>(srcDst + i), load<V>(bias + i));
    }
    VORN_INLINE void put(std::int64_t i, const Equalised<V>& x) const {
        store(srcDst + i, x.value);
        store(bias + i, x.bias);
    }
    VORN_INLINE void part(std::int64_t n) const {
        const auto x = equalised(loadPart<V>(ref, n), loadPart<V>(srcDst, n), loadPart<V>(bias, n));
        storePart(srcDst, x.value, n);
        storePart(bias, x.bias, n);
    }
    T* result() const { return srcDst; }
};

template <class Step, class T>
void equalise(const T* ref, T* srcDst, T* bias, std::int64_t len, const Step& step) {
    const EqualiseLoop<T, Step> loop{step, ref, srcDst, bias};
    if (len < loop.step) {
        loop.part(len);
    } else {
        stepsInCache(len, loop);
    }
}

}  // namespace
}  // namespace vorn::equalisation

using namespace vorn;

VornStatus vornsBlindEqualization_Aurora_32f(const Vorn32f* ref, Vorn32f* srcDst, Vorn32f* bias, int len,
                                             Vorn32f energy) {
    VORN_CHECK(notNull(ref, srcDst, bias));
    VORN_CHECK(positive(len));
    equalisation::equalise(ref, srcDst, bias, len, equalisation::SingleStep(energy));
    return vornStsNoErr;
}

VornStatus vornsBlindEqualization_Aurora_16s(const Vorn16s* ref, Vorn16s* srcDst, Vorn16s* bias, int len, int energy) {
    VORN_CHECK(notNull(ref, srcDst, bias));
    VORN_CHECK(positive(len));
    equalisation::equalise(ref, srcDst, bias, len, equalisation::ShortStep(energy));
    return vornStsNoErr;
}
