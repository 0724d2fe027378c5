// Streaming deltas and accelerations: the exported functions.
#include "features/delta/kernels.h"
#include "frame/checks.h"

using namespace vorn;

namespace vorn::delta {
namespace {

using Delta1 = Form<1, false>;
using Delta2 = Form<2, false>;
using DeltaDelta1 = Form<1, true>;
using DeltaDelta2 = Form<2, true>;

// What stands behind the null check: the other checks, in their order, and the work.
template <class Form, class T, class Arithmetic, class Factors>
VornStatus checkedStream(const Block<T>& call, Arithmetic arithmetic, Factors factors) {
    const int width = static_cast<int>(call.width), height = static_cast<int>(call.height);
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(call.mode & vornDeltaLast ? 0 : 1, height));
    VORN_CHECK(strideHolds(static_cast<int>(call.step), std::int64_t{Form::columns} * width));
    VORN_CHECK(atLeast(call.mode & vornDeltaFirst ? Form::lookback : 0, height));
    stream<Form>(call, Rule<Arithmetic, Factors>{arithmetic, factors});
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::delta

VornStatus vornsDelta_Win1_32f_D2(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height, Vorn32f val,
                                  int mode) {
    VORN_CHECK(notNull(src, dst));
    return delta::checkedStream<delta::Delta1, Vorn32f>({src, width, dst, dstStep, height, mode}, delta::Singles(),
                                                        delta::SharedFactors<Vorn32f>{{val}});
}

VornStatus vornsDelta_Win1_16s_D2Sfs(const Vorn16s* src, int width, Vorn16s* dst, int dstStep, int height, Vorn16s val,
                                     int mode, int scale) {
    VORN_CHECK(notNull(src, dst));
    return delta::checkedStream<delta::Delta1, Vorn16s>({src, width, dst, dstStep, height, mode},
                                                        delta::WholeDifferences{delta::Shift(scale)},
                                                        delta::SharedFactors<Vorn16s>{{val}});
}

VornStatus vornsDelta_Win2_32f_D2(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height, Vorn32f val,
                                  int mode) {
    VORN_CHECK(notNull(src, dst));
    return delta::checkedStream<delta::Delta2, Vorn32f>({src, width, dst, dstStep, height, mode}, delta::Singles(),
                                                        delta::SharedFactors<Vorn32f>{{val}});
}

VornStatus vornsDelta_Win2_16s_D2Sfs(const Vorn16s* src, int width, Vorn16s* dst, int dstStep, int height, Vorn16s val,
                                     int mode, int scale) {
    VORN_CHECK(notNull(src, dst));
    return delta::checkedStream<delta::Delta2, Vorn16s>({src, width, dst, dstStep, height, mode},
                                                        delta::WholeDifferences{delta::Shift(scale)},
                                                        delta::SharedFactors<Vorn16s>{{val}});
}

VornStatus vornsDeltaDelta_Win1_32f_D2(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height,
                                       Vorn32f val1, Vorn32f val2, int mode) {
    VORN_CHECK(notNull(src, dst));
    return delta::checkedStream<delta::DeltaDelta1, Vorn32f>({src, width, dst, dstStep, height, mode}, delta::Singles(),
                                                             delta::SharedFactors<Vorn32f>{{val1, val2}});
}

VornStatus vornsDeltaDelta_Win1_16s_D2Sfs(const Vorn16s* src, int width, Vorn16s* dst, int dstStep, int height,
                                          Vorn16s val1, Vorn16s val2, int mode, int scale) {
    VORN_CHECK(notNull(src, dst));
    return delta::checkedStream<delta::DeltaDelta1, Vorn16s>({src, width, dst, dstStep, height, mode},
                                                             delta::WholeDifferences{delta::Shift(scale)},
                                                             delta::SharedFactors<Vorn16s>{{val1, val2}});
}

VornStatus vornsDeltaDelta_Win2_32f_D2(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height,
                                       Vorn32f val1, Vorn32f val2, int mode) {
    VORN_CHECK(notNull(src, dst));
    return delta::checkedStream<delta::DeltaDelta2, Vorn32f>({src, width, dst, dstStep, height, mode}, delta::Singles(),
                                                             delta::SharedFactors<Vorn32f>{{val1, val2}});
}

VornStatus vornsDeltaDelta_Win2_16s_D2Sfs(const Vorn16s* src, int width, Vorn16s* dst, int dstStep, int height,
                                          Vorn16s val1, Vorn16s val2, int mode, int scale) {
    VORN_CHECK(notNull(src, dst));
    return delta::checkedStream<delta::DeltaDelta2, Vorn16s>({src, width, dst, dstStep, height, mode},
                                                             delta::WrappedDifferences{delta::Shift(scale)},
                                                             delta::SharedFactors<Vorn16s>{{val1, val2}});
}

VornStatus vornsDeltaMul_Win1_32f_D2(const Vorn32f* src, const Vorn32f* pVal, int width, Vorn32f* dst, int dstStep,
                                     int height, int mode) {
    VORN_CHECK(notNull(src, dst, pVal));
    return delta::checkedStream<delta::Delta1, Vorn32f>({src, width, dst, dstStep, height, mode}, delta::Singles(),
                                                        delta::ColumnFactors<Vorn32f>{pVal, width});
}

VornStatus vornsDeltaMul_Win1_16s_D2Sfs(const Vorn16s* src, const Vorn16s* pVal, int width, Vorn16s* dst, int dstStep,
                                        int height, int mode, int scale) {
    VORN_CHECK(notNull(src, dst, pVal));
    return delta::checkedStream<delta::Delta1, Vorn16s>({src, width, dst, dstStep, height, mode},
                                                        delta::WrappedDifferences{delta::Shift(scale)},
                                                        delta::ColumnFactors<Vorn16s>{pVal, width});
}

VornStatus vornsDeltaMul_Win2_32f_D2(const Vorn32f* src, const Vorn32f* pVal, int width, Vorn32f* dst, int dstStep,
                                     int height, int mode) {
    VORN_CHECK(notNull(src, dst, pVal));
    return delta::checkedStream<delta::Delta2, Vorn32f>({src, width, dst, dstStep, height, mode}, delta::Singles(),
                                                        delta::ColumnFactors<Vorn32f>{pVal, width});
}

VornStatus vornsDeltaMul_Win2_16s_D2Sfs(const Vorn16s* src, const Vorn16s* pVal, int width, Vorn16s* dst, int dstStep,
                                        int height, int mode, int scale) {
    VORN_CHECK(notNull(src, dst, pVal));
    return delta::checkedStream<delta::Delta2, Vorn16s>({src, width, dst, dstStep, height, mode},
                                                        delta::WrappedDifferences{delta::Shift(scale)},
                                                        delta::ColumnFactors<Vorn16s>{pVal, width});
}

VornStatus vornsDeltaDeltaMul_Win1_32f_D2(const Vorn32f* src, const Vorn32f* pVal, int width, Vorn32f* dst, int dstStep,
                                          int height, int mode) {
    VORN_CHECK(notNull(src, dst, pVal));
    return delta::checkedStream<delta::DeltaDelta1, Vorn32f>({src, width, dst, dstStep, height, mode}, delta::Singles(),
                                                             delta::ColumnFactors<Vorn32f>{pVal, width});
}

VornStatus vornsDeltaDeltaMul_Win1_16s_D2Sfs(const Vorn16s* src, const Vorn16s* pVal, int width, Vorn16s* dst,
                                             int dstStep, int height, int mode, int scale) {
    VORN_CHECK(notNull(src, dst, pVal));
    return delta::checkedStream<delta::DeltaDelta1, Vorn16s>({src, width, dst, dstStep, height, mode},
                                                             delta::WrappedDifferences{delta::Shift(scale)},
                                                             delta::ColumnFactors<Vorn16s>{pVal, width});
}

VornStatus vornsDeltaDeltaMul_Win2_32f_D2(const Vorn32f* src, const Vorn32f* pVal, int width, Vorn32f* dst, int dstStep,
                                          int height, int mode) {
    VORN_CHECK(notNull(src, dst, pVal));
    return delta::checkedStream<delta::DeltaDelta2, Vorn32f>({src, width, dst, dstStep, height, mode}, delta::Singles(),
                                                             delta::ColumnFactors<Vorn32f>{pVal, width});
}

VornStatus vornsDeltaDeltaMul_Win2_16s_D2Sfs(const Vorn16s* src, const Vorn16s* pVal, int width, Vorn16s* dst,
                                             int dstStep, int height, int mode, int scale) {
    VORN_CHECK(notNull(src, dst, pVal));
    return delta::checkedStream<delta::DeltaDelta2, Vorn16s>({src, width, dst, dstStep, height, mode},
                                                             delta::WrappedDifferences{delta::Shift(scale)},
                                                             delta::ColumnFactors<Vorn16s>{pVal, width});
}
