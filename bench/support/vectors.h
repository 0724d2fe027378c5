// How functions of vectors are measured: one row a function, beside its peers. What is read and written follows from
// its type.
#pragma once

#include <complex>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "calls/signature.h"
#include "support/bench.h"
#include "vornsr/types.h"

#ifdef VORNSR_HAVE_VOLK
#include <volk/volk.h>
#endif
#ifdef VORNSR_HAVE_OPENBLAS
#include <cblas.h>
#endif
#ifdef VORNSR_HAVE_EIGEN
#include <Eigen/Core>
#endif

namespace bench::vectors {

// Far from every cache but the largest shared ones, and short enough for sweeps over many members.
inline constexpr std::size_t most = std::size_t{128} << 20, gap = 4096;
struct Size {
    const char* name;
    std::size_t elements, bytes;  // a fixed length, or the bytes of all vectors together
};
inline constexpr Size sizes[] = {
    {"7", 7, 0}, {"39", 39, 0}, {"L1", 0, inL1}, {"LLC", 0, inLastLevel}, {"memory", 0, most}};

// One block of sources for all types: whatever it is read as, the numbers are positive, random and of ordinary size,
// singles from 1/2 to 2.
inline const std::byte* sources() {
    static const auto block = [] {
        constexpr std::size_t words = (most + gap) / sizeof(std::uint32_t);
        auto made = buffer<std::uint32_t>(words);
        std::minstd_rand generator(1);
        for (std::size_t i = 0; i < words; ++i) {
            made[i] = 0x3F000001u | (static_cast<std::uint32_t>(generator()) & 0x00FF7F7Fu);
        }
        return made;
    }();
    return reinterpret_cast<const std::byte*>(block.get());
}
inline std::byte* results() {
    static const auto block = buffer<std::byte>(most + gap);
    return block.get();
}

template <class A, class B, class R>
struct Peer {
    const char* name;
    std::function<void(const A* x, const B* y, R* z, int n)> call;
};
template <class A, class B, class R>
using Peers = std::vector<Peer<A, B, R>>;

// Behind a result and aligned.
template <class T>
int* indexBehind(T* z) {
    return reinterpret_cast<int*>(z + (sizeof(T) < sizeof(int) ? sizeof(int) / sizeof(T) : 1));
}

// A function beside its peers; extra is its scale factor or hint. What a call reads and writes follows from the type.
template <class... P>
struct Types : calls::Signature<calls::elementWiseShapes, P...> {
    using Signature = calls::Signature<calls::elementWiseShapes, P...>;
    using A = typename Signature::template Pointee<void, calls::Role::src1>;
    using B = typename Signature::template Pointee<A, calls::Role::src2>;
    using R = typename Signature::template Pointee<void, calls::Role::dst, calls::Role::result>;
};

template <class... P, class Of = Types<P...>>
void add(const std::string& function, VornStatus (*ourFunction)(P...),
         Peers<typename Of::A, typename Of::B, typename Of::R> peers, int extra = 0) {
    using calls::Role;
    using A = typename Of::A;
    using B = typename Of::B;
    using R = typename Of::R;
    constexpr bool two = Of::shape.has(Role::src2), maps = Of::shape.has(Role::dst);

    peers.insert(peers.begin(), {ours, [=](const A* x, const B* y, R* z, int n) {
                                     Of::call(ourFunction, [&]<Role role, class Argument>() -> Argument {
                                         if constexpr (role == Role::src1) {
                                             return x;
                                         } else if constexpr (role == Role::src2) {
                                             return y;
                                         } else if constexpr (role == Role::dst || role == Role::result) {
                                             return z;
                                         } else if constexpr (role == Role::result2) {
                                             return z + 1;
                                         } else if constexpr (role == Role::index) {
                                             return indexBehind(z);
                                         } else {
                                             return role == Role::len ? n : extra;
                                         }
                                     });
                                 }});
    for (const Size& size : sizes) {
        const std::size_t perElement = sizeof(A) + (two ? sizeof(B) : 0) + (maps ? sizeof(R) : 0);
        const std::size_t len = size.elements != 0 ? size.elements : size.bytes / perElement;
        const std::size_t second = two ? (len * sizeof(A) + 63) / 64 * 64 : 0;
        for (const Peer<A, B, R>& peer : peers) {
            bench::add(function, size.name, peer.name, static_cast<std::int64_t>(len), [=] {
                auto* dst = reinterpret_cast<R*>(results());
                peer.call(reinterpret_cast<const A*>(sources()), reinterpret_cast<const B*>(sources() + second), dst,
                          static_cast<int>(len));
                keep(dst);
            });
        }
    }
}

// In the calls x and y are the sources, z the result and n the length.
#define PEER(name, ...)                                                                               \
    {                                                                                                 \
        name, [](auto* x, [[maybe_unused]] auto* y, [[maybe_unused]] auto* z, int n) { __VA_ARGS__; } \
    }
#define PLAIN(...) PEER("plain", __VA_ARGS__)
#ifdef VORNSR_HAVE_VOLK
#define VOLK(...) , PEER("volk", __VA_ARGS__)
#else
#define VOLK(...)
#endif
#ifdef VORNSR_HAVE_OPENBLAS
#define OPENBLAS(...) , PEER("openblas", __VA_ARGS__)
#else
#define OPENBLAS(...)
#endif
#ifdef VORNSR_HAVE_EIGEN
#define EIGEN(...) , PEER("eigen", __VA_ARGS__)
template <class T>
struct Standard {
    using type = T;
};
template <>
struct Standard<Vorn32fc> {
    using type = std::complex<float>;
};
template <>
struct Standard<Vorn64fc> {
    using type = std::complex<double>;
};
template <class T>
using Column = Eigen::Array<typename Standard<T>::type, Eigen::Dynamic, 1>;
template <class T>
auto array(const T* x, int n) {
    return Eigen::Map<const Column<T>>(reinterpret_cast<const typename Standard<T>::type*>(x), n);
}
template <class T>
auto array(T* x, int n) {
    return Eigen::Map<Column<T>>(reinterpret_cast<typename Standard<T>::type*>(x), n);
}
template <class T>
auto dot(const T* x, const T* y, int n) {
    return (array(x, n) * array(y, n)).sum();
}
template <class T>
void put(T* z, std::complex<decltype(T::re)> x) {
    *z = {x.real(), x.imag()};
}
#else
#define EIGEN(...)
#endif
#ifdef VORNSR_HAVE_VOLK
inline unsigned count(int n) { return static_cast<unsigned>(n); }
inline lv_32fc_t* volkComplex(Vorn32fc* z) { return reinterpret_cast<lv_32fc_t*>(z); }
inline const lv_32fc_t* volkComplex(const Vorn32fc* z) { return reinterpret_cast<const lv_32fc_t*>(z); }
inline const lv_16sc_t* volkComplex(const Vorn16sc* z) { return reinterpret_cast<const lv_16sc_t*>(z); }
#endif

}  // namespace bench::vectors
