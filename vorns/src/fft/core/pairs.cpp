// The path that a transform of interleaved values takes.
#include "fft/core/path.h"

namespace vorn::fft {
namespace {

template <class T, Parts parts>
void pairs(const FloatSpec<T>& spec, int order, Direction direction, const T* src, T* dst, T* work) {
    const Interleaved<const T, parts> source{src};
    const Interleaved<T, parts> target{dst};
    withFactor(spec, direction, [&](auto level, auto scaled) {
        if (order < firstTableOrder) {
            directTransform<T>(order, level, source, target);
        } else if (order < Precision<T>::longOrder) {
            // Between its stages the values lie in the target, or where that would split cache lines, in the work area.
            const bool inTarget = src != dst && (liesWell(dst) || !liesWell(work));
            shortTransform(tablesOf(spec), order, source, scaled(target), inTarget ? dst : work);
        } else {
            const Tables<T> tables = tablesOf(spec);
            const WideBlocks<T> blocks{dst};
            if (src == dst) {
                auto* const values = reinterpret_cast<Complex<T>*>(dst);
                bitReverse(spec.bitRevTab, order, values, values);
                longTransform(tables, 0, order, scaled, target, blocks, target, work);
            } else {
                longTransform(tables, 0, order, scaled, firstPassOfAll(tables, order, source, blocks), blocks, target,
                              work);
            }
        }
    });
}

}  // namespace

template <class T>
void transformPairs(const FloatSpec<T>& spec, int order, Direction direction, const T* src, T* dst, T* work) {
    if (direction == Direction::Forward) {
        pairs<T, Parts::RealFirst>(spec, order, direction, src, dst, work);
    } else {
        pairs<T, Parts::ImaginaryFirst>(spec, order, direction, src, dst, work);
    }
}

template void transformPairs(const FloatSpec<float>&, int, Direction, const float*, float*, float*);
template void transformPairs(const FloatSpec<double>&, int, Direction, const double*, double*, double*);

}  // namespace vorn::fft
