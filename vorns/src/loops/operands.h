// Operands and results of element-wise work, and the kernel that joins them with an operation.
#pragma once

#include <bit>
#include <cstdint>
#include <type_traits>

#include "loops/elementwise.h"
#include "simd/complex.h"
#include "simd/pairs.h"
#include "simd/part.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn {

// The real type that an element consists of, as the lanes see it (signed), and how many of them make one element.
template <class T>
struct LaneOf {
    using type = std::make_signed_t<T>;
    static constexpr int count = 1;
};
template <class T>
struct RealLane {
    using type = T;
    static constexpr int count = 1;
};
template <class T>
struct ComplexLanes {
    using type = T;
    static constexpr int count = 2;
};
template <>
struct LaneOf<Vorn32f> : RealLane<Vorn32f> {};
template <>
struct LaneOf<Vorn64f> : RealLane<Vorn64f> {};
template <>
struct LaneOf<Vorn16sc> : ComplexLanes<Vorn16s> {};
template <>
struct LaneOf<Vorn32sc> : ComplexLanes<Vorn32s> {};
template <>
struct LaneOf<Vorn32fc> : ComplexLanes<Vorn32f> {};
template <>
struct LaneOf<Vorn64fc> : ComplexLanes<Vorn64f> {};
template <class T>
using Lane = typename LaneOf<std::remove_const_t<T>>::type;

template <class T>
VORN_INLINE const Lane<T>* lanesAt(const T* p) {
    return reinterpret_cast<const Lane<T>*>(p);
}
template <class T>
VORN_INLINE Lane<T>* lanesAt(T* p) {
    return reinterpret_cast<Lane<T>*>(p);
}

// The first n lanes, rest behind them.
template <class V, int rest>
VORN_INLINE V partOf(const typename V::Element* p, std::int64_t n) {
    const V x = loadPart<V>(p, n);
    if constexpr (rest != 0) return withRest(x, n, rest);
    return x;
}
// Of n lanes in two registers, those in the first.
template <class V>
VORN_INLINE std::int64_t lanesInLow(std::int64_t n) {
    return n < V::lanes ? n : V::lanes;
}

// Where operands come from: from(i) is the rest from element i on, at(i) what a step there needs, fetch(i) asks for
// what later ones do, first<rest>(n) what there is of it where the vector has but n elements, with rest in the lanes
// behind them.

// An array, one register a step.
template <class T>
struct Elements {
    using V = Wide<Lane<T>>;
    const T* p;
    VORN_INLINE Elements from(std::int64_t i) const { return {p + i}; }
    VORN_INLINE V at(std::int64_t i) const { return load<V>(lanesAt(p + i)); }
    VORN_INLINE void fetch(std::int64_t i) const { fetchAhead(p + i); }
    template <int rest>
    VORN_INLINE V first(std::int64_t n) const {
        return partOf<V, rest>(lanesAt(p), n * LaneOf<T>::count);
    }
};

// The same, two registers a step.
template <class T>
struct ElementPairs {
    using V = Wide<Lane<T>>;
    const T* p;
    VORN_INLINE ElementPairs from(std::int64_t i) const { return {p + i}; }
    VORN_INLINE Halves<V> at(std::int64_t i) const {
        return {load<V>(lanesAt(p + i)), load<V>(lanesAt(p + i) + V::lanes)};
    }
    VORN_INLINE void fetch(std::int64_t i) const {
        fetchAhead(lanesAt(p + i));
        fetchAhead(lanesAt(p + i) + V::lanes);
    }
    template <int rest>
    VORN_INLINE Halves<V> first(std::int64_t n) const {
        const std::int64_t inAll = n * LaneOf<T>::count, inLow = lanesInLow<V>(inAll);
        return {partOf<V, rest>(lanesAt(p), inLow), partOf<V, rest>(lanesAt(p) + V::lanes, inAll - inLow)};
    }
};

// The same, one element in each 64-bit lane.
struct Elements32sInto64 {
    const Vorn32s* p;
    VORN_INLINE Elements32sInto64 from(std::int64_t i) const { return {p + i}; }
    VORN_INLINE i64xN at(std::int64_t i) const { return loadInto64<i64xN>(p + i); }
    VORN_INLINE void fetch(std::int64_t i) const { fetchAhead(p + i); }
    template <int rest>
    VORN_INLINE i64xN first(std::int64_t n) const {
        alignas(i32xN) Vorn32s room[i32xN::lanes];
        store(room, partOf<i32xN, rest>(p, n));
        return loadInto64<i64xN>(room);
    }
};

// A register of complex numbers, and their real and imaginary parts twice, as products take them.
template <class Register>
struct ComplexFactor {
    using V = Register;
    V value, re, im;
    VORN_INLINE explicit ComplexFactor(V x) : value(x), re(dupEven(x)), im(dupOdd(x)) {}
    VORN_INLINE explicit ComplexFactor(const typename V::Element* p)
        : value(inRegister(load<V>(p))), re(loadDupEven<V>(p)), im(dupOdd(value)) {}
};

template <class T>
struct ComplexFactors {
    using V = Wide<Lane<T>>;
    const T* p;
    VORN_INLINE ComplexFactors from(std::int64_t i) const { return {p + i}; }
    VORN_INLINE ComplexFactor<V> at(std::int64_t i) const { return ComplexFactor<V>(lanesAt(p + i)); }
    VORN_INLINE void fetch(std::int64_t i) const { fetchAhead(p + i); }
    template <int rest>
    VORN_INLINE ComplexFactor<V> first(std::int64_t n) const {
        return ComplexFactor<V>(partOf<V, rest>(lanesAt(p), 2 * n));
    }
};

// One value for all elements, in a register, or one for each of so many lanes in turn.
template <class V, int lanesInTurn = 1>
struct Repeated {
    V value;
    VORN_INLINE V at(std::int64_t) const { return value; }
    VORN_INLINE void fetch(std::int64_t) const {}
    template <int>
    VORN_INLINE V first(std::int64_t) const {
        return value;
    }
};

// The same as it is handed to a kernel: as a number. A function that takes a wide register by value does not clear the
// upper halves of the registers when it returns, which makes what its callers do next slow where they do not use them.
template <class T>
struct Constant {
    T value;
    VORN_INLINE Constant from(std::int64_t) const { return *this; }
    VORN_INLINE auto inRegister() const {
        using V = Wide<Lane<T>>;
        if constexpr (LaneOf<T>::count == 1) {
            return splat<V>(static_cast<Lane<T>>(value));
        } else if constexpr (sizeof(T) == 16) {
            const auto bits = std::bit_cast<Vorn64sc>(value);
            return std::bit_cast<V>(splatPair<i64xN>(bits.re, bits.im));
        } else if constexpr (sizeof(T) == 8) {
            return std::bit_cast<V>(splat<i64xN>(std::bit_cast<std::int64_t>(value)));
        } else {
            return std::bit_cast<V>(splat<i32xN>(std::bit_cast<std::int32_t>(value)));
        }
    }
};
template <class T>
struct ConstantPair {
    T value;
    VORN_INLINE ConstantPair from(std::int64_t) const { return *this; }
};

// An operand as the loop reads it.
template <class A>
VORN_INLINE A readable(A a) {
    return a;
}
template <class T>
VORN_INLINE auto readable(Constant<T> a) {
    return Repeated<decltype(a.inRegister()), LaneOf<T>::count>{a.inRegister()};
}
template <class T>
VORN_INLINE auto readable(ConstantPair<T> a) {
    auto x = Constant<T>{a.value}.inRegister();
    return Repeated<Halves<decltype(x)>>{{x, x}};
}

template <class T>
VORN_INLINE Elements<T> elements(const T* p) {
    return {p};
}
template <class T>
VORN_INLINE ElementPairs<T> elementPairs(const T* p) {
    return {p};
}
template <class T>
VORN_INLINE ComplexFactors<T> complexFactors(const T* p) {
    return {p};
}
template <class T>
VORN_INLINE Constant<T> constant(T val) {
    return {val};
}
template <class T>
VORN_INLINE ConstantPair<T> constantPair(T val) {
    return {val};
}

// The lanes after which an operand says the same again, as far as it is a constant, and the same in elements of a
// result.
template <class A>
inline constexpr int lanesInTurnOf = 1;
template <class T>
inline constexpr int lanesInTurnOf<Constant<T>> = LaneOf<T>::count;
template <class V, int lanes>
inline constexpr int lanesInTurnOf<Repeated<V, lanes>> = lanes;
template <class A, class B, class D>
inline constexpr int periodOf = (lanesInTurnOf<A> * lanesInTurnOf<B> > LaneOf<D>::count) ? 2 : 1;

// A result of one or two registers.
template <class T, class V>
VORN_INLINE void put(T* p, V x) {
    store(p, x);
}
template <class T, class V>
VORN_INLINE void put(T* p, Halves<V> x) {
    store(p, x.low);
    store(p + V::lanes, x.high);
}
template <class T, class V>
VORN_INLINE void putFirst(T* p, V x, std::int64_t n) {
    storePart(p, x, n);
}
template <class T, class V>
VORN_INLINE void putFirst(T* p, Halves<V> x, std::int64_t n) {
    storePart(p, x.low, lanesInLow<V>(n));
    storePart(p + V::lanes, x.high, n - lanesInLow<V>(n));
}
template <class T, class V>
VORN_INLINE void putPastCache(T* p, V x) {
    storeStream(p, x);
}
template <class T, class V>
VORN_INLINE void putPastCache(T* p, Halves<V> x) {
    storeStream(p, x.low);
    storeStream(p + V::lanes, x.high);
}

// dst[i] = op(a[i], b[i]). An operation says how many lanes of the result it makes at once, and how to fill up operands
// that end before a register does.
template <class Op, class A, class B, class D>
struct ElementKernel {
    static constexpr std::int64_t step = Op::lanes / LaneOf<D>::count;
    static constexpr bool unrolled = Op::light;
    static constexpr int period = periodOf<A, B, D>;
    const Op& op;
    A a;
    B b;
    D* dst;

    VORN_INLINE auto at(std::int64_t i) const { return op(a.at(i), b.at(i)); }
    VORN_INLINE void fetch(std::int64_t i) const {
        a.fetch(i);
        b.fetch(i);
    }
    template <class R>
    VORN_INLINE void put(std::int64_t i, R x) const {
        vorn::put(lanesAt(dst + i), x);
    }
    template <class R>
    VORN_INLINE void putPastCache(std::int64_t i, R x) const {
        vorn::putPastCache(lanesAt(dst + i), x);
    }
    D* result() const { return dst; }

    VORN_INLINE void part(std::int64_t n) const {
        putFirst(lanesAt(dst), op(a.template first<Op::padding>(n), b.template first<Op::padding>(n)),
                 n * LaneOf<D>::count);
    }
};

// The loops over operands as they are handed to a kernel: in cache, and past it between two boundaries.
template <class Op, class A, class B, class D>
VORN_INLINE auto elementKernel(const Op& op, A a, B b, D* dst) {
    auto first = readable(a);
    auto second = readable(b);
    return ElementKernel<Op, decltype(first), decltype(second), D>{op, first, second, dst};
}
template <class Op, class A, class B, class D>
VORN_INLINE void forElements(const Op& op, A a, B b, D* dst, std::int64_t len) {
    const auto kernel = elementKernel(op, a, b, dst);
    if (len < kernel.step) return kernel.part(len);
    stepsInCache(len, kernel);
}
template <class Op, class A, class B, class D>
VORN_INLINE void forElementsPastCache(const Op& op, A a, B b, D* dst, std::int64_t len) {
    stepsPastCache(0, len, elementKernel(op, a, b, dst));
}

// What most operations say of themselves.
template <int lanesAtOnce, bool lightWork>
struct Operation {
    static constexpr int lanes = lanesAtOnce;
    static constexpr bool light = lightWork;  // its loop is worth unrolling
    static constexpr int padding = 0;
};

}  // namespace vorn
