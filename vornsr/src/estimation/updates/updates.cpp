// Parameter updates: the exported functions.
#include "estimation/updates/kernels.h"
#include "frame/checks.h"
#include "vornsr/estimation.h"
#include "vornsr/signal.h"

using namespace vorn;

VornStatus vornsUpdateGConst_DirectVar_32f(const Vorn32f* src, int len, Vorn32f* dst) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    Vorn32f logarithms = 0;
    const VornStatus status = vornsSumLn_32f(src, len, &logarithms);
    return gaussianConstant(logTwoPi<Vorn32f>(len) + logarithms, status, dst);
}
