// Parameter updates beside plain loops and Eigen.
#include "estimation/elements.h"
#include "plain/updates.h"
#include "vornsr.h"

namespace {

using bench::elements::compare;

#ifdef VORNSR_HAVE_EIGEN
#define EIGEN_CALL(...) , CALL("eigen", __VA_ARGS__)
using bench::vectors::array;
#else
#define EIGEN_CALL(...)
#endif

const bench::Family updates([] {
    compare<Vorn32f>(
        "UpdateMean_32f", 1, 1,
        {OURS(vornsUpdateMean_32f(x[0], z[0], n, 1e6f)),
         BESIDE(plain::updateMean(x[0], z[0], n, 1e6f)) EIGEN_CALL(array(z[0], n) += array(x[0], n) * 1e-6f)});
    compare<Vorn64f>(
        "UpdateMean_64f", 1, 1,
        {OURS(vornsUpdateMean_64f(x[0], z[0], n, 1e6)),
         BESIDE(plain::updateMean(x[0], z[0], n, 1e6)) EIGEN_CALL(array(z[0], n) += array(x[0], n) / 1e6)});
    compare<Vorn32f>("UpdateVar_32f", 3, 1,
                     {OURS(vornsUpdateVar_32f(x[0], x[1], x[2], z[0], n, 2.0f, 0.5f)),
                      BESIDE(plain::updateVar(x[0], x[1], x[2], z[0], n, 2.0f, 0.5f))});
    compare<Vorn64f>("UpdateVar_64f", 3, 1,
                     {OURS(vornsUpdateVar_64f(x[0], x[1], x[2], z[0], n, 2.0, 0.5)),
                      BESIDE(plain::updateVar(x[0], x[1], x[2], z[0], n, 2.0, 0.5))});
    compare<Vorn32f>("UpdateWeight_32f", 1, 2,
                     {OURS(vornsUpdateWeight_32f(x[0], z[0], n, z[1], 2.0f, 0.5f)),
                      BESIDE(plain::updateWeight(x[0], z[0], n, z[1], 2.0f, 0.5f))});
    compare<Vorn64f>("UpdateWeight_64f", 1, 2,
                     {OURS(vornsUpdateWeight_64f(x[0], z[0], n, z[1], 2.0, 0.5)),
                      BESIDE(plain::updateWeight(x[0], z[0], n, z[1], 2.0, 0.5))});
    compare<Vorn32f>(
        "UpdateGConst_32f", 1, 1,
        {OURS(vornsUpdateGConst_32f(x[0], n, z[0])), BESIDE(*z[0] = plain::gaussConstant(x[0], n, -1.0f))});
    compare<Vorn64f>("UpdateGConst_64f", 1, 1,
                     {OURS(vornsUpdateGConst_64f(x[0], n, z[0])), BESIDE(*z[0] = plain::gaussConstant(x[0], n, -1.0))});
    compare<Vorn32f>("OutProbPreCalc_32f", 2, 1,
                     {OURS(vornsOutProbPreCalc_32f(x[0], x[1], z[0], n)),
                      BESIDE(plain::lessHalf(x[0], x[1], z[0], n))
                          EIGEN_CALL(array(z[0], n) = array(x[0], n) - 0.5f * array(x[1], n))});
    compare<Vorn64f>("OutProbPreCalc_64f", 2, 1,
                     {OURS(vornsOutProbPreCalc_64f(x[0], x[1], z[0], n)),
                      BESIDE(plain::lessHalf(x[0], x[1], z[0], n))
                          EIGEN_CALL(array(z[0], n) = array(x[0], n) - 0.5 * array(x[1], n))});
    compare<Vorn32s>(
        "OutProbPreCalc_32s", 2, 1,
        {OURS(vornsOutProbPreCalc_32s(x[0], x[1], z[0], n)), BESIDE(plain::lessHalf(x[0], x[1], z[0], n))});
});

}  // namespace
