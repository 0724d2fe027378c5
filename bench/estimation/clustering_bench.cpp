// Clustering of Gaussians beside plain loops over the C library's logarithm.
#include "estimation/elements.h"
#include "plain/clustering.h"
#include "vornsr.h"

namespace {

using bench::elements::compare;

// The functions of one element type. Some choose another grouping where a vector stands off its address.
template <class T>
struct Calls;
template <>
struct Calls<Vorn32f> {
    static constexpr auto accumulate = vornsDcsClustLAccumulate_32f, direct = vornsDcsClustLAccumulate_DirectVar_32f;
    static constexpr auto compute = vornsDcsClustLCompute_32f64f;
    static constexpr auto merge = vornsGaussianMerge_32f;
    static constexpr auto distance = vornsGaussianDist_32f;
    static constexpr auto split = vornsGaussianSplit_32f;
};
template <>
struct Calls<Vorn64f> {
    static constexpr auto accumulate = vornsDcsClustLAccumulate_64f, direct = vornsDcsClustLAccumulate_DirectVar_64f;
    static constexpr auto compute = vornsDcsClustLCompute_64f;
    static constexpr auto merge = vornsGaussianMerge_64f;
    static constexpr auto distance = vornsGaussianDist_64f;
    static constexpr auto split = vornsGaussianSplit_64f;
};

template <class T>
void clustering(const std::string& type, const std::string& computed) {
    using C = Calls<T>;
    compare<T>("DcsClustLAccumulate_" + type, 2, 2,
               {OURS(C::accumulate(x[0], x[1], z[0], z[1], n, T(3))),
                CALL("vornsr, one element off", C::accumulate(x[0] + 1, x[1], z[0], z[1], n, T(3))),
                BESIDE(plain::accumulate(x[0], x[1], z[0], z[1], n, T(3)))});
    compare<T>("DcsClustLAccumulate_DirectVar_" + type, 2, 2,
               {OURS(C::direct(x[0], x[1], z[0], z[1], n, T(3))),
                BESIDE(plain::accumulateDirect(x[0], x[1], z[0], z[1], n, T(3)))});
    compare<T>("DcsClustLCompute_" + computed, 2, 1,
               {OURS(C::compute(x[0], x[1], n, reinterpret_cast<Vorn64f*>(z[0]), T(1e6))),
                BESIDE(*reinterpret_cast<Vorn64f*>(z[0]) = plain::likelihood(x[0], x[1], n, 1e6))});
    compare<T>("GaussianMerge_" + type, 4, 3,
               {OURS(C::merge(x[0], x[1], x[2], x[3], z[0], z[1], n, z[2], T(2), T(3))),
                BESIDE(*z[2] = static_cast<T>(plain::merge(x[0], x[1], x[2], x[3], z[0], z[1], n, T(2), T(3))))});
    compare<T>("GaussianDist_" + type, 4, 1,
               {OURS(C::distance(x[0], x[1], x[2], x[3], n, z[0], T(2), T(1), T(3), T(1))),
                BESIDE(*z[0] = static_cast<T>(plain::mergeLogarithms(x[0], x[1], x[2], x[3], n, 2, 3)))});
    compare<T>("GaussianSplit_" + type, 1, 3,
               {OURS(C::split(z[0], x[0], z[1], z[2], n, T(1e-6))),
                CALL("vornsr, one element off", C::split(z[0] + 1, x[0], z[1], z[2], n - 1, T(1e-6))),
                BESIDE(plain::split(z[0], x[0], z[1], z[2], n, T(1e-6)))});
}

const bench::Family gaussians([] {
    clustering<Vorn32f>("32f", "32f64f");
    clustering<Vorn64f>("64f", "64f");
});

}  // namespace
