// Sums, dot products and extrema beside plain loops and, where they have the like, VOLK, OpenBLAS and Eigen. One member
// stands for all that run through the same kernel. Floating-point sums of the peers add in orders of their own, in as
// many lanes as they like; ours are fixed, and Sum_32f/fast and DotProd_32f have them stated lane by lane.
#include "plain/reductions.h"

#include <cstdint>

#include "support/vectors.h"
#include "vornsr.h"

namespace {

using namespace bench::vectors;

void addSums() {
    add("Sum_32f/fast", vornsSum_32f,
        {PLAIN(plain::sum<float>(x, z, n)) VOLK(volk_32f_accumulator_s32f(z, x, count(n)))
             EIGEN(*z = array(x, n).sum())},
        1);
    add("Sum_32f/accurate", vornsSum_32f,
        {PLAIN(plain::sum<double>(x, z, n)) EIGEN(*z = static_cast<float>(array(x, n).template cast<double>().sum()))},
        2);
    add("Sum_64f", vornsSum_64f, {PLAIN(plain::sum<double>(x, z, n)) EIGEN(*z = array(x, n).sum())});
    add("Sum_32fc/fast", vornsSum_32fc,
        {PLAIN(plain::sumComplex<float>(x, z, n)) VOLK(
            volk_32fc_accumulator_s32fc(volkComplex(z), volkComplex(x), count(n))) EIGEN(put(z, array(x, n).sum()))},
        1);
    add("Sum_32fc/accurate", vornsSum_32fc, {PLAIN(plain::sumComplex<double>(x, z, n))}, 2);
    add("Sum_64fc", vornsSum_64fc, {PLAIN(plain::sumComplex<double>(x, z, n)) EIGEN(put(z, array(x, n).sum()))});
    add("Sum_16s32s_Sfs", vornsSum_16s32s_Sfs, {PLAIN(plain::sum<std::int64_t>(x, z, n))}, 4);
    add("Sum_16sc32sc_Sfs", vornsSum_16sc32sc_Sfs, {PLAIN(plain::sumComplex<std::int64_t>(x, z, n))}, 4);
    add("Sum_32s_Sfs", vornsSum_32s_Sfs, {PLAIN(plain::sum<std::int64_t>(x, z, n))}, 4);
}

void addDotProducts() {
    add("DotProd_32f", vornsDotProd_32f,
        {PLAIN(plain::dot<float>(x, y, z, n)) VOLK(volk_32f_x2_dot_prod_32f(z, x, y, count(n)))
             OPENBLAS(*z = cblas_sdot(n, x, 1, y, 1)) EIGEN(*z = dot(x, y, n))});
    add("DotProd_64f", vornsDotProd_64f,
        {PLAIN(plain::dot<double>(x, y, z, n)) OPENBLAS(*z = cblas_ddot(n, x, 1, y, 1)) EIGEN(*z = dot(x, y, n))});
    add("DotProd_32f64f", vornsDotProd_32f64f,
        {PLAIN(plain::dot<double>(x, y, z, n)) OPENBLAS(*z = cblas_dsdot(n, x, 1, y, 1))});
    add("DotProd_32fc", vornsDotProd_32fc,
        {PLAIN(plain::dotComplex<float>(x, y, z, n))
             VOLK(volk_32fc_x2_dot_prod_32fc(volkComplex(z), volkComplex(x), volkComplex(y), count(n)))
                 OPENBLAS(cblas_cdotu_sub(n, x, 1, y, 1, z)) EIGEN(put(z, dot(x, y, n)))});
    add("DotProd_64fc", vornsDotProd_64fc,
        {PLAIN(plain::dotComplex<double>(x, y, z, n)) OPENBLAS(cblas_zdotu_sub(n, x, 1, y, 1, z))
             EIGEN(put(z, dot(x, y, n)))});
    add("DotProd_32fc64fc", vornsDotProd_32fc64fc, {PLAIN(plain::dotComplex<double>(x, y, z, n))});
    add("DotProd_32f32fc", vornsDotProd_32f32fc,
        {PLAIN(plain::dotRealComplex<float>(x, y, z, n))
             VOLK(volk_32fc_32f_dot_prod_32fc(volkComplex(z), volkComplex(y), x, count(n)))});
    add("DotProd_64f64fc", vornsDotProd_64f64fc, {PLAIN(plain::dotRealComplex<double>(x, y, z, n))});
    add("DotProd_32f32fc64fc", vornsDotProd_32f32fc64fc, {PLAIN(plain::dotRealComplex<double>(x, y, z, n))});
    add("DotProd_16s64s", vornsDotProd_16s64s, {PLAIN(plain::dot<std::int64_t>(x, y, z, n))});
    add("DotProd_16sc64sc", vornsDotProd_16sc64sc, {PLAIN(plain::dotComplex<std::int64_t>(x, y, z, n))});
    add("DotProd_16s16sc64sc", vornsDotProd_16s16sc64sc, {PLAIN(plain::dotRealComplex<std::int64_t>(x, y, z, n))});
    add("DotProd_32s_Sfs", vornsDotProd_32s_Sfs, {PLAIN(plain::dot<double>(x, y, z, n))}, 40);
    add("DotProd_32sc_Sfs", vornsDotProd_32sc_Sfs, {PLAIN(plain::dotComplex<double>(x, y, z, n))}, 40);
    add("DotProd_32s32sc_Sfs", vornsDotProd_32s32sc_Sfs, {PLAIN(plain::dotRealComplex<double>(x, y, z, n))}, 40);
    add("DotProd_16s32s32s_Sfs", vornsDotProd_16s32s32s_Sfs, {PLAIN(plain::dot<double>(x, y, z, n))}, 40);
}

template <class T>
void addMinMax(const char* name, VornStatus (*function)(const T*, int, T*, T*)) {
    add(name, function,
        {PLAIN(plain::minMax(x, z, z + 1, n)) EIGEN(z[0] = array(x, n).minCoeff(), z[1] = array(x, n).maxCoeff())});
}

void addExtrema() {
    add("Max_16s", vornsMax_16s, {PLAIN(plain::max(x, z, n)) EIGEN(*z = array(x, n).maxCoeff())});
    add("Min_16s", vornsMin_16s, {PLAIN(plain::min(x, z, n)) EIGEN(*z = array(x, n).minCoeff())});
    add("Max_32f", vornsMax_32f, {PLAIN(plain::max(x, z, n)) EIGEN(*z = array(x, n).maxCoeff())});
    add("Max_64f", vornsMax_64f, {PLAIN(plain::max(x, z, n)) EIGEN(*z = array(x, n).maxCoeff())});
    addMinMax("MinMax_8u", vornsMinMax_8u);
    addMinMax("MinMax_16u", vornsMinMax_16u);
    addMinMax("MinMax_16s", vornsMinMax_16s);
    addMinMax("MinMax_32u", vornsMinMax_32u);
    addMinMax("MinMax_32s", vornsMinMax_32s);
    addMinMax("MinMax_32f", vornsMinMax_32f);
    addMinMax("MinMax_64f", vornsMinMax_64f);
    add("MaxIndx_16s", vornsMaxIndx_16s,
        {PLAIN(plain::maxIndex(x, z, indexBehind(z), n)) EIGEN(*z = array(x, n).maxCoeff(indexBehind(z)))});
    // VOLK's finds the index and not the value.
    add("MaxIndx_32f", vornsMaxIndx_32f,
        {PLAIN(plain::maxIndex(x, z, indexBehind(z), n)) VOLK(volk_32f_index_max_32u(
            reinterpret_cast<std::uint32_t*>(z + 1), x, count(n))) EIGEN(*z = array(x, n).maxCoeff(indexBehind(z)))});
    add("MaxIndx_64f", vornsMaxIndx_64f,
        {PLAIN(plain::maxIndex(x, z, indexBehind(z), n)) EIGEN(*z = array(x, n).maxCoeff(indexBehind(z)))});
    add("MaxEvery_16s_I", vornsMaxEvery_16s_I,
        {PLAIN(plain::maxEvery(x, z, n)) EIGEN(array(z, n) = array(z, n).max(array(x, n)))});
    add("MaxEvery_32s_I", vornsMaxEvery_32s_I,
        {PLAIN(plain::maxEvery(x, z, n)) EIGEN(array(z, n) = array(z, n).max(array(x, n)))});
    add("MaxEvery_32f_I", vornsMaxEvery_32f_I,
        {PLAIN(plain::maxEvery(x, z, n)) VOLK(volk_32f_x2_max_32f(z, x, z, count(n)))
             EIGEN(array(z, n) = array(z, n).max(array(x, n)))});
}

void addSumsOfLogarithms() {
    add("SumLn_32f", vornsSumLn_32f, {PLAIN(plain::sumLn(x, z, n)) EIGEN(*z = array(x, n).log().sum())});
    add("SumLn_64f", vornsSumLn_64f, {PLAIN(plain::sumLn(x, z, n)) EIGEN(*z = array(x, n).log().sum())});
    add("SumLn_16s32f", vornsSumLn_16s32f, {PLAIN(plain::sumLn(x, z, n))});
}

const bench::Family reductions([] {
#ifdef VORNSR_HAVE_OPENBLAS
    openblas_set_num_threads(1);
#endif
    addSums();
    addDotProducts();
    addExtrema();
    addSumsOfLogarithms();
});

}  // namespace
