// Element-wise work on several vectors, with one result or several, in the one loop of such work.
#pragma once

#include <cstdint>

#include "frame/align.h"
#include "frame/rounding.h"
#include "loops/elementwise.h"
#include "simd/part.h"
#include "simd/simd.h"

namespace vorn {

// The lanes that a formula is worked out in: a register's, or the first n of one; or a register's that is stored past
// the cache.
template <class V>
struct WholeRegister {
    using Element = typename V::Element;
    VORN_INLINE V load(const Element* p) const { return vorn::load<V>(p); }
    VORN_INLINE void store(Element* p, V x) const { vorn::store(p, x); }
};
template <class V>
struct FirstLanes {
    using Element = typename V::Element;
    std::int64_t n;
    VORN_INLINE V load(const Element* p) const { return loadPart<V>(p, n); }
    VORN_INLINE void store(Element* p, V x) const { storePart(p, x, n); }
};
template <class V>
struct RegisterPastCache {
    VORN_INLINE void store(typename V::Element* p, V x) const { storeStream(p, x); }
};

// A formula says:
//   Element            what its vectors consist of
//   light              its loop is worth unrolling
//   at(lanes, i)       the results of the elements from i on, as a value
//   put(lanes, i, r)   stores them
//   result()           the vector that it stores to, or one of them
// Lanes that are loaded behind a vector's end are 0.
template <class Formula>
struct FormulaKernel {
    using V = Wide<typename Formula::Element>;
    static constexpr std::int64_t step = V::lanes;
    static constexpr bool unrolled = Formula::light;
    const Formula& formula;

    VORN_INLINE auto at(std::int64_t i) const { return formula.at(WholeRegister<V>(), i); }
    template <class Results>
    VORN_INLINE void put(std::int64_t i, const Results& results) const {
        formula.put(WholeRegister<V>(), i, results);
    }
    template <class Results>
    VORN_INLINE void putPastCache(std::int64_t i, const Results& results) const {
        formula.put(RegisterPastCache<V>(), i, results);
    }
    VORN_INLINE void part(std::int64_t n) const {
        const FirstLanes<V> lanes{n};
        formula.put(lanes, 0, formula.at(lanes, 0));
    }
    auto* result() const { return formula.result(); }
};

// Operands may be results: of elements that are met twice, everything is read before anything is written over it.
template <class Formula>
VORN_INLINE void forElementsInCache(std::int64_t len, const Formula& formula) {
    const FormulaKernel<Formula> kernel{formula};
    if (len < kernel.step) return kernel.part(len);
    stepsInCache(len, kernel);
}

// The same for one result, which goes past the cache where it is large. That one is found out apart: it would cost a
// small vector as much as its work.
template <class Formula>
VORN_NOINLINE void forManyElements(std::int64_t len, const Formula& formula) {
    const Formula own = formula;
    forEachStep(len, FormulaKernel<Formula>{own});
}
template <class Formula>
VORN_INLINE void forElementsOf(std::int64_t len, const Formula& formula) {
    if (isSmall<typename Formula::Element>(len)) return forElementsInCache(len, formula);
    const Formula copy = formula;  // so that only this one need stand in memory
    forManyElements(len, copy);
}

// Whether all stand on 16-byte addresses, by which some functions choose their roundings.
template <class... Vector>
bool allAligned(const Vector*... vector) {
    return (... && isAligned(vector, 16));
}

}  // namespace vorn
