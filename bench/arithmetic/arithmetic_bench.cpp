// Element-wise arithmetic beside the plain loop, VOLK, Eigen and OpenBLAS where they have the like, and memcpy for what
// memory can give. A line measures a kernel: forms in place and complex forms of the same kernel are not repeated.
#include <bit>
#include <complex>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <type_traits>

#include "calls/signature.h"
#include "plain/arithmetic.h"
#include "support/bench.h"
#include "vornsr.h"
#ifdef VORNSR_HAVE_VOLK
#include <volk/volk.h>
#endif
#ifdef VORNSR_HAVE_OPENBLAS
#include <cblas.h>
#endif
#ifdef VORNSR_HAVE_EIGEN
#include <Eigen/Core>
#endif

namespace {

template <class T>
struct NumberOf {
    using type = T;
};
template <>
struct NumberOf<Vorn16sc> : NumberOf<Vorn16s> {};
template <>
struct NumberOf<Vorn32sc> : NumberOf<Vorn32s> {};
template <>
struct NumberOf<Vorn32fc> : NumberOf<Vorn32f> {};
template <>
struct NumberOf<Vorn64fc> : NumberOf<Vorn64f> {};

// Floats from 1 to 2, integers over their range, no zero.
template <class T>
T someNumber(std::minstd_rand& generator) {
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(1 + static_cast<double>(generator()) / 2147483648.0);
    } else {
        const auto x = static_cast<T>(static_cast<std::uint32_t>(generator()) << 1 >> (32 - 8 * sizeof(T)));
        return x == 0 ? T{1} : x;
    }
}

// len ordinary elements in one of the blocks of each type of number. Nothing but work in place writes to them: what one
// benchmark leaves behind, such as subnormal numbers, must not slow the next. They are filled as far as anybody asked.
template <class T, int which>
T* operand(std::size_t len) {
    using Number = typename NumberOf<T>::type;
    static const std::unique_ptr<Number[], decltype(&std::free)> block(
        static_cast<Number*>(std::aligned_alloc(64, bench::inMemory)), std::free);
    static std::minstd_rand generator(which);
    static std::size_t filled = 0;
    for (; filled < len * (sizeof(T) / sizeof(Number)); ++filled) block[filled] = someNumber<Number>(generator);
    return reinterpret_cast<T*>(block.get());
}
template <class T>
T* result() {
    static const auto block = bench::buffer<std::byte>(bench::inMemory);
    return reinterpret_cast<T*>(block.get());
}

template <class A, class B, class D>
struct Peer {
    const char* name;
    std::function<void(const A*, const B*, D*, std::size_t)> call;
};
template <class A, class B, class D>
using Peers = std::vector<Peer<A, B, D>>;

enum class Sizes { L1, caches, all };

// bytes: what the buffers of a call hold for each element.
template <class A, class B, class D>
void add(const std::string& function, std::size_t bytes, Sizes sizes, Peers<A, B, D> peers) {
    auto addSize = [&](const std::string& size, std::size_t len) {
        for (const auto& peer : peers) {
            bench::add(function, size, peer.name, static_cast<std::int64_t>(len),
                       [len, call = peer.call, a = (A*){}, b = (B*){}, dst = (D*){}]() mutable {
                           if (dst == nullptr) a = operand<A, 1>(len), b = operand<B, 2>(len), dst = result<D>();
                           call(a, b, dst, len);
                           bench::keep(dst);
                       });
        }
    };
    addSize("L1", bench::inL1 / bytes);
    if (sizes == Sizes::L1) return;
    for (std::size_t len : {7u, 39u}) addSize(std::to_string(len), len);
    addSize("LLC", bench::inLastLevel / bytes);
    if (sizes == Sizes::caches) return;
    // A copy of half the bytes moves as many.
    peers.push_back({"memcpy", [bytes](const A* a, const B*, D* dst, std::size_t len) {
                         const std::size_t all = bytes * len / 2, first = std::min(all, sizeof(A) * len);
                         auto* to = reinterpret_cast<std::byte*>(dst);
                         std::memcpy(to, a, first);
                         std::memcpy(to + first, a, all - first);
                     }});
    addSize("memory", bench::inMemory / bytes);
}

#ifdef VORNSR_HAVE_EIGEN
template <class T>
struct EigenNumber {
    using type = T;
};
template <>
struct EigenNumber<Vorn32fc> {
    using type = std::complex<float>;
};
template <>
struct EigenNumber<Vorn64fc> {
    using type = std::complex<double>;
};
template <class T>
auto eigen(T val) {
    return std::bit_cast<typename EigenNumber<T>::type>(val);
}
template <class T>
auto eigen(const T* p, std::size_t len) {
    using E = typename EigenNumber<T>::type;
    return Eigen::Map<const Eigen::Array<E, Eigen::Dynamic, 1>>(reinterpret_cast<const E*>(p),
                                                                static_cast<Eigen::Index>(len));
}
template <class T>
auto eigen(T* p, std::size_t len) {
    using E = typename EigenNumber<T>::type;
    return Eigen::Map<Eigen::Array<E, Eigen::Dynamic, 1>>(reinterpret_cast<E*>(p), static_cast<Eigen::Index>(len));
}
#endif

// Functions of two vectors. What Eigen does with op is measured for floats.
template <class A, class B, class D, class Op>
void vectors(const std::string& name, VornStatus (*ours)(const A*, const B*, D*, int), Op op,
             std::type_identity_t<Peers<A, B, D>> others = {}, Sizes sizes = Sizes::caches) {
    Peers<A, B, D> peers = {
        {bench::ours, [=](auto* a, auto* b, auto* d, std::size_t len) { ours(a, b, d, static_cast<int>(len)); }},
        {"plain", [=](auto* a, auto* b, auto* d, std::size_t len) { plain::each(op, a, b, d, len); }}};
#ifdef VORNSR_HAVE_EIGEN
    if constexpr (std::is_floating_point_v<typename NumberOf<A>::type>) {
        peers.push_back({"eigen", [=](auto* a, auto* b, auto* d, std::size_t len) {
                             eigen(d, len) = op(eigen(a, len), eigen(b, len));
                         }});
    }
#endif
    peers.insert(peers.end(), others.begin(), others.end());
    add(name, sizeof(A) + sizeof(B) + sizeof(D), sizes, peers);
}

// Functions of a vector and a constant.
template <class T, class D, class Op>
void constants(const std::string& name, VornStatus (*ours)(const T*, T, D*, int), T val, Op op,
               std::type_identity_t<Peers<T, T, D>> others = {}, Sizes sizes = Sizes::caches) {
    Peers<T, T, D> peers = {
        {bench::ours, [=](auto* a, auto*, auto* d, std::size_t len) { ours(a, val, d, static_cast<int>(len)); }},
        {"plain", [=](auto* a, auto*, auto* d, std::size_t len) { plain::each(op, a, val, d, len); }}};
#ifdef VORNSR_HAVE_EIGEN
    if constexpr (std::is_floating_point_v<typename NumberOf<T>::type>) {
        peers.push_back({"eigen", [=](auto* a, auto*, auto* d, std::size_t len) {
                             eigen(d, len) = op(eigen(a, len), eigen(val));
                         }});
    }
#endif
    peers.insert(peers.end(), others.begin(), others.end());
    add(name, sizeof(T) + sizeof(D), sizes, peers);
}

// The kernels of VOLK: result, operand, operand or constant, length.
#ifdef VORNSR_HAVE_VOLK
#define VOLK(call)                                                                                 \
    {                                                                                              \
        "volk", []([[maybe_unused]] auto* a, [[maybe_unused]] auto* b, auto* d, std::size_t len) { \
            const auto n = static_cast<unsigned>(len);                                             \
            call;                                                                                  \
        }                                                                                          \
    }
#else
#define VOLK(call)
#endif
// VOLK's complex numbers.
[[maybe_unused]] auto* cc(const Vorn32fc* p) { return reinterpret_cast<const std::complex<float>*>(p); }
[[maybe_unused]] auto* cc(Vorn32fc* p) { return reinterpret_cast<std::complex<float>*>(p); }

// One scale factor of each kind: shifted left, none, 1, rounded, all zero.
constexpr int scaleFactors[] = {-4, 0, 1, 5, 64};

// Integer functions with a scale factor; loop(a, b, dst, len, sf) is the plain one.
template <class A, class B, class D, class Loop>
void scaled(const std::string& name, VornStatus (*ours)(const A*, const B*, D*, int, int), Loop loop) {
    for (int sf : scaleFactors) {
        add<A, B, D>(name + "_sf" + std::to_string(sf), sizeof(A) + sizeof(B) + sizeof(D),
                     sf == 5 ? Sizes::caches : Sizes::L1,
                     {{bench::ours,
                       [=](auto* a, auto* b, auto* d, std::size_t len) { ours(a, b, d, static_cast<int>(len), sf); }},
                      {"plain", [=](auto* a, auto* b, auto* d, std::size_t len) { loop(a, b, d, len, sf); }}});
    }
}
template <class T, class D, class Loop>
void scaled(const std::string& name, VornStatus (*ours)(const T*, T, D*, int, int), T val, Loop loop) {
    for (int sf : scaleFactors) {
        add<T, T, D>(name + "_sf" + std::to_string(sf), sizeof(T) + sizeof(D), Sizes::L1,
                     {{bench::ours,
                       [=](auto* a, auto*, auto* d, std::size_t len) { ours(a, val, d, static_cast<int>(len), sf); }},
                      {"plain", [=](auto* a, auto*, auto* d, std::size_t len) { loop(a, val, d, len, sf); }}});
    }
}

template <class Op>
auto scaling(Op op) {
    return [op](auto a, auto b, auto* dst, std::size_t len, int sf) { plain::eachScaled(op, a, b, dst, len, sf); };
}
constexpr auto dividing = [](auto a, auto b, auto* dst, std::size_t len, int sf) {
    plain::quotients(a, b, dst, len, sf);
};
// The functions of two vectors take the subtrahend and the divisor first.
constexpr auto dividingReversed = [](auto a, auto b, auto* dst, std::size_t len, int sf) {
    plain::quotients(b, a, dst, len, sf);
};
using plain::Product, plain::Sum;
using DifferenceReversed = plain::Reversed<plain::Difference>;
using QuotientReversed = plain::Reversed<plain::Quotient>;

#ifdef VORNSR_HAVE_OPENBLAS
// Scaling in place, which linear algebra has too. By -1: the numbers keep their size.
template <class T>
void inPlace(const char* name, VornStatus (*ours)(T, T*, int), void (*blas)(int, T, T*, int)) {
    auto on = [](auto call) {
        return [=](auto*, auto*, auto*, std::size_t len) { call(operand<T, 3>(len), static_cast<int>(len)); };
    };
    add<T, T, T>(name, sizeof(T), Sizes::caches,
                 {{bench::ours, on([=](T* x, int n) { ours(-1, x, n); })},
                  {"plain", on([](T* x, int n) { plain::each(Product{}, x, T{-1}, static_cast<std::size_t>(n)); })},
                  {"openblas", on([=](T* x, int n) { blas(n, -1, x, 1); })}});
}
#endif

void floats() {
    vectors(VORN_NAMED(vornsAdd_32f), Sum{}, {VOLK(volk_32f_x2_add_32f(d, a, b, n))}, Sizes::all);
    vectors(VORN_NAMED(vornsAdd_64f), Sum{}, {VOLK(volk_64f_x2_add_64f(d, a, b, n))});
    vectors(VORN_NAMED(vornsSub_32f), DifferenceReversed{}, {VOLK(volk_32f_x2_subtract_32f(d, b, a, n))});
    vectors(VORN_NAMED(vornsMul_32f), Product{}, {VOLK(volk_32f_x2_multiply_32f(d, a, b, n))});
    vectors(VORN_NAMED(vornsMul_64f), Product{}, {VOLK(volk_64f_x2_multiply_64f(d, a, b, n))});
    vectors(VORN_NAMED(vornsMul_32fc), Product{}, {VOLK(volk_32fc_x2_multiply_32fc(cc(d), cc(a), cc(b), n))},
            Sizes::all);
    vectors(VORN_NAMED(vornsMul_64fc), Product{});
    vectors(VORN_NAMED(vornsDiv_32f), QuotientReversed{}, {VOLK(volk_32f_x2_divide_32f(d, b, a, n))});
    vectors(VORN_NAMED(vornsDiv_64f), QuotientReversed{});
    vectors(VORN_NAMED(vornsDiv_32fc), QuotientReversed{}, {VOLK(volk_32fc_x2_divide_32fc(cc(d), cc(b), cc(a), n))});
    vectors(VORN_NAMED(vornsDiv_64fc), QuotientReversed{});

    constexpr Vorn32fc complex{3, -5};
    constants(VORN_NAMED(vornsAddC_32f), 3.0f, Sum{}, {VOLK(volk_32f_s32f_add_32f(d, a, 3, n))});
    constants(VORN_NAMED(vornsAddC_32fc), complex, Sum{});
    constants(VORN_NAMED(vornsSubCRev_32f), 3.0f, DifferenceReversed{});
    constants(VORN_NAMED(vornsMulC_32f), 3.0f, Product{}, {VOLK(volk_32f_s32f_multiply_32f(d, a, 3, n))}, Sizes::all);
    constants(VORN_NAMED(vornsMulC_64f), 3.0, Product{});
    constants(VORN_NAMED(vornsMulC_32fc), complex, Product{},
              {VOLK(volk_32fc_s32fc_multiply_32fc(cc(d), cc(a), {3, -5}, n))});
    constants(VORN_NAMED(vornsDivC_32f), 3.0f, plain::Quotient{});
    constants(VORN_NAMED(vornsDivC_64f), 3.0, plain::Quotient{});
    constants(VORN_NAMED(vornsDivC_32fc), complex, plain::Quotient{});
    constants(VORN_NAMED(vornsDivCRev_32f), 3.0f, QuotientReversed{});
#ifdef VORNSR_HAVE_OPENBLAS
    openblas_set_num_threads(1);
    inPlace(VORN_NAMED(vornsMulC_32f_I), cblas_sscal);
    inPlace(VORN_NAMED(vornsMulC_64f_I), cblas_dscal);
#endif
}

void integers() {
    vectors(VORN_NAMED(vornsAdd_16s), Sum{}, {}, Sizes::all);
    vectors(VORN_NAMED(vornsAdd_16u), Sum{});
    vectors(VORN_NAMED(vornsAdd_32u), Sum{});
    vectors(VORN_NAMED(vornsAdd_8u16u), Sum{});
    vectors(VORN_NAMED(vornsMul_8u16u), Product{});
    vectors(VORN_NAMED(vornsAdd_16s32f), Sum{});
    vectors(VORN_NAMED(vornsMul_16s32f), Product{});
    constants(VORN_NAMED(vornsDivCRev_16u), Vorn16u{30000}, QuotientReversed{});

    scaled(VORN_NAMED(vornsAdd_8u_Sfs), scaling(Sum{}));
    scaled(VORN_NAMED(vornsAdd_16s_Sfs), scaling(Sum{}));
    scaled(VORN_NAMED(vornsAdd_32s_Sfs), scaling(Sum{}));
    scaled(VORN_NAMED(vornsSub_8u_Sfs), scaling(DifferenceReversed{}));
    scaled(VORN_NAMED(vornsSub_16s_Sfs), scaling(DifferenceReversed{}));
    scaled(VORN_NAMED(vornsSub_32s_Sfs), scaling(DifferenceReversed{}));
    scaled(VORN_NAMED(vornsMul_8u_Sfs), scaling(Product{}));
    scaled(VORN_NAMED(vornsMul_16s_Sfs), scaling(Product{}));
    scaled(VORN_NAMED(vornsMul_16s32s_Sfs), scaling(Product{}));
    scaled(VORN_NAMED(vornsMul_16u16s_Sfs), scaling(Product{}));
    scaled(VORN_NAMED(vornsMul_16sc_Sfs), scaling(Product{}));
    scaled(VORN_NAMED(vornsMul_32s_Sfs), scaling(Product{}));
    scaled(VORN_NAMED(vornsMul_32sc_Sfs), scaling(Product{}));
    scaled(VORN_NAMED(vornsMul_32s32sc_Sfs), scaling(Product{}));
    scaled(VORN_NAMED(vornsDiv_8u_Sfs), dividingReversed);
    scaled(VORN_NAMED(vornsDiv_16s_Sfs), dividingReversed);
    scaled(VORN_NAMED(vornsDiv_16sc_Sfs), dividingReversed);
    scaled(VORN_NAMED(vornsDiv_32s_Sfs), dividingReversed);
    scaled(VORN_NAMED(vornsDiv_32s16s_Sfs), dividingReversed);

    scaled(VORN_NAMED(vornsAddC_16s_Sfs), Vorn16s{77}, scaling(Sum{}));
    scaled(VORN_NAMED(vornsMulC_16s_Sfs), Vorn16s{77}, scaling(Product{}));
    scaled(VORN_NAMED(vornsMulC_32s_Sfs), Vorn32s{77}, scaling(Product{}));
    scaled(VORN_NAMED(vornsMulC_16sc_Sfs), Vorn16sc{77, -5}, scaling(Product{}));
    scaled(VORN_NAMED(vornsDivC_16s_Sfs), Vorn16s{77}, dividing);
    scaled(VORN_NAMED(vornsMulC_32f16s_Sfs), 3000.0f, plain::multiplyToShort);
}

const bench::Family family([] {
    floats();
    integers();
});

}  // namespace
