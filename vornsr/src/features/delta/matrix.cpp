// Deltas of all rows of a matrix, in place: the exported functions.
#include "features/delta/matrix_kernels.h"
#include "frame/checks.h"
#include "vornsr/features.h"

using namespace vorn;

namespace vorn::delta {
namespace {

// What stands behind the null check: the other checks, in their order, and the work.
template <class T, class Arithmetic, class Factors>
VornStatus checkedDeltas(T* srcDst, int height, int step, int width, int offset, int winSize, Arithmetic arithmetic,
                         Factors factors) {
    VORN_CHECK(positive(height, width, winSize));
    VORN_CHECK(atLeast(0, offset));
    VORN_CHECK(require(height >= 2 * std::int64_t{winSize}, vornStsSizeErr));
    VORN_CHECK(strideHolds(step, offset + 2 * std::int64_t{width}));
    deltasOfMatrix(Matrix<T>{srcDst + offset, height, step, width}, winSize,
                   Rule<Arithmetic, Factors>{arithmetic, factors});
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::delta

VornStatus vornsEvalDelta_32f_D2(Vorn32f* srcDst, int height, int step, int width, int offset, int winSize,
                                 Vorn32f val) {
    VORN_CHECK(notNull(srcDst));
    return delta::checkedDeltas(srcDst, height, step, width, offset, winSize, delta::Singles(),
                                delta::SharedFactors<Vorn32f>{{val}});
}

VornStatus vornsEvalDeltaMul_32f_D2(Vorn32f* srcDst, int height, int step, const Vorn32f* pVal, int width, int offset,
                                    int winSize) {
    VORN_CHECK(notNull(srcDst, pVal));
    return delta::checkedDeltas(srcDst, height, step, width, offset, winSize, delta::Singles(),
                                delta::ColumnFactors<Vorn32f>{pVal, width});
}

VornStatus vornsEvalDelta_16s_D2Sfs(Vorn16s* srcDst, int height, int step, int width, int offset, int winSize,
                                    Vorn16s val, int scale) {
    VORN_CHECK(notNull(srcDst));
    return delta::checkedDeltas(srcDst, height, step, width, offset, winSize,
                                delta::WrappedDifferences{delta::Shift(scale)}, delta::SharedFactors<Vorn16s>{{val}});
}

VornStatus vornsEvalDeltaMul_16s_D2Sfs(Vorn16s* srcDst, int height, int step, const Vorn16s* pVal, int width,
                                       int offset, int winSize, int scale) {
    VORN_CHECK(notNull(srcDst, pVal));
    return delta::checkedDeltas(srcDst, height, step, width, offset, winSize,
                                delta::WrappedDifferences{delta::Shift(scale)},
                                delta::ColumnFactors<Vorn16s>{pVal, width});
}
