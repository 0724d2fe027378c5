// The path that a transform of split values takes.
#include <cstddef>
#include <utility>

#include "fft/core/path.h"

namespace vorn::fft {

template <class T>
void transformSplit(const FloatSpec<T>& spec, int order, Direction direction, const T* srcRe, const T* srcIm, T* dstRe,
                    T* dstIm, T* work) {
    if (direction == Direction::Inverse) {
        std::swap(srcRe, srcIm);
        std::swap(dstRe, dstIm);
    }
    const Split<const T> source{srcRe, srcIm};
    const Split<T> target{dstRe, dstIm};
    const bool apart = srcRe != dstRe && srcRe != dstIm && srcIm != dstRe && srcIm != dstIm;
    withFactor(spec, direction, [&](auto level, auto scaled) {
        if (order < firstTableOrder) {
            directTransform<T>(order, level, source, target);
        } else if (order < Precision<T>::longOrder) {
            // Arrays of 8 or 16 KiB: source and target fill the first-level cache, and the work area would not fit
            // beside.
            const std::size_t bytes = sizeof(T) << order;
            if (apart && (bytes == 8192 || bytes == 16384) && liesWell(dstRe) && liesWell(dstIm)) {
                shortTransform(tablesOf(spec), order, source, scaled(target), target);
            } else {
                shortTransform(tablesOf(spec), order, source, scaled(target), work);
            }
        } else {
            const Tables<T> tables = tablesOf(spec);
            if (apart) {
                longTransform(tables, 0, order, scaled, firstPassOfAll(tables, order, source, target), target, target,
                              work);
                return;
            }
            bitReverse(spec.bitRevTab, order, srcRe, dstRe);
            bitReverse(spec.bitRevTab, order, srcIm, dstIm);
            longTransform(tables, 0, order, scaled, target, target, target, work);
        }
    });
}

template void transformSplit(const FloatSpec<float>&, int, Direction, const float*, const float*, float*, float*,
                             float*);
template void transformSplit(const FloatSpec<double>&, int, Direction, const double*, const double*, double*, double*,
                             double*);

}  // namespace vorn::fft
