// The path that a complex transform takes.
#include "fft/core/complex.h"

#include "fft/core/reversal.h"
#include "fft/core/transform.h"

namespace vorn::fft {
namespace {

// Calls run with the factor of normalisation: what a direct transform does to its first sums, and how a longer one
// wraps the layout that its last stage writes.
template <class T, class Run>
VORN_INLINE void withFactor(const FloatSpec<T>& spec, Direction direction, Run run) {
    const T factor = spec.normFactor;
    if ((direction == Direction::Forward ? spec.normFwd : spec.normInv) != 0) {
        run(TimesFactor<T>{factor}, [factor](auto layout) { return Scaled<decltype(layout), T>{layout, factor}; });
    } else {
        run(AsIs{}, [](auto layout) { return layout; });
    }
}

// Whether the widest vectors at p lie in one cache line each.
template <class T>
bool liesWell(const T* p) {
    return reinterpret_cast<std::uintptr_t>(p) % sizeof(Wide<T>) == 0;
}

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

template void transformPairs(const FloatSpec<float>&, int, Direction, const float*, float*, float*);
template void transformPairs(const FloatSpec<double>&, int, Direction, const double*, double*, double*);
template void transformSplit(const FloatSpec<float>&, int, Direction, const float*, const float*, float*, float*,
                             float*);
template void transformSplit(const FloatSpec<double>&, int, Direction, const double*, const double*, double*, double*,
                             double*);

}  // namespace vorn::fft
