// Deltas and accelerations: the exported functions.
#include "features/delta/kernels.h"
#include "frame/checks.h"

using namespace vorn;

namespace {

// The checks behind the null check, in their order.
template <class Form>
VornStatus checkStream(int width, int dstStep, int height, int mode) {
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(mode & vornDeltaLast ? 0 : 1, height));
    VORN_CHECK(strideHolds(dstStep, std::int64_t{Form::columns} * width));
    return atLeast(mode & vornDeltaFirst ? Form::lookback : 0, height);
}

}  // namespace

VornStatus vornsDelta_Win2_32f_D2(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height, Vorn32f val,
                                  int mode) {
    using Form = DeltaForm<2, false>;
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(checkStream<Form>(width, dstStep, height, mode));
    deltaStream<Form, Vorn32f>({src, width, dst, dstStep, height, mode}, SharedFactors<Vorn32f>{{val, 0}});
    return vornStsNoErr;
}

VornStatus vornsDeltaDelta_Win2_32f_D2(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height,
                                       Vorn32f val1, Vorn32f val2, int mode) {
    using Form = DeltaForm<2, true>;
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(checkStream<Form>(width, dstStep, height, mode));
    deltaStream<Form, Vorn32f>({src, width, dst, dstStep, height, mode}, SharedFactors<Vorn32f>{{val1, val2}});
    return vornStsNoErr;
}
