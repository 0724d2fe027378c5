// The transform core: forward complex transforms of 2^order values, over any precision and layout. The inverse is the
// same transform with the real and the imaginary parts exchanged at both ends, which gives exactly the conjugate
// butterflies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "fft/butterflies.h"
#include "fft/layouts.h"
#include "fft/plan.h"
#include "fft/tables.h"

namespace vorn::fft {

// What a transform of one order reads.
template <class T>
struct Tables {
    const std::int32_t* bitReversal;
    const T* twiddles;
    const T* const* merge;  // one table a level, the outermost first
};

template <class T>
inline Tables<T> tablesOf(const FloatSpec<T>& spec) {
    return {spec.bitRevTab, firstTwiddle(spec.twdTab), spec.blkTwdTab};
}

// Orders 0 to 3, without a table. The factor, where there is one, falls on the first level of sums.
template <class T, class Level, class Source, class Target>
void directTransform(int order, Level level, Source src, Target dst) {
    if (order == 0) {
        dst.store(0, level(src.template load<T>(0)));
        return;
    }
    if (order == 1) {
        const Complex<T> a = src.template load<T>(0), b = src.template load<T>(1);
        dst.store(0, level(a + b));
        dst.store(1, level(a - b));
        return;
    }
    const auto run = [&]<int length>() {
        Complex<T> x[length];
        for (int n = 0; n < length; ++n) x[n] = src.template load<T>(n);
        transform(x, level);
        for (int n = 0; n < length; ++n) dst.store(n, x[n]);
    };
    if (order == 2) run.template operator()<4>();
    if (order == 3) run.template operator()<8>();
}

// The first stage on lanes columns, and with it the second: n1 x n2 points become their transform. The twiddles of the
// second stage are the same for every column; butterfly 0 needs none.
template <int n1, int n2, class V>
VORN_INLINE void transformColumns(Complex<V> (&points)[n1 * n2], const Element<V>* twiddles) {
    Complex<V> first[n2][n1];
    for (int i = 0; i < n2; ++i) {
        Complex<V> x[n1];
        for (int n = 0; n < n1; ++n) x[n] = points[n * n2 + i];
        transform(x);
        for (int k = 0; k < n1; ++k) first[i][k] = x[k];
    }
    for (int k = 0; k < n1; ++k) {
        Complex<V> x[n2];
        for (int i = 0; i < n2; ++i) x[i] = first[i][k];
        if (k > 0) {
            for (int i = 1; i < n2; ++i) {
                const Element<V>* factor = twiddles + (i - 1) * 2 * n1 + k;
                x[i] = x[i] * Complex<V>{splat<V>(factor[0]), splat<V>(factor[n1])};
            }
        }
        transform(x);
        for (int n = 0; n < n2; ++n) points[k + n * n1] = x[n];
    }
}

template <class V>
auto atMostEightLanes(V v) {
    if constexpr (V::lanes > 8) {
        return lowHalf(v);
    } else {
        return v;
    }
}

// The columns that a first pass takes at once. They fill lines of the destination piece by piece; with at most eight of
// them these lines stay in the first-level cache, although those of a long transform share a few sets of it.
template <class T>
using ColumnLanes = decltype(atMostEightLanes(Wide<T>{}));

// The first pass over data in natural order: column c, its values 2^order / points apart, becomes a block of the
// bit-reversed order, at 2 * bitReversal[c].
template <int n1, int n2, class V, class Source, class Target>
void firstPass(const std::int32_t* bitReversal, const Element<V>* twiddles, int order, Source src, Target dst) {
    constexpr int count = n1 * n2;
    const std::ptrdiff_t columns = (std::ptrdiff_t{1} << order) / count;
    for (std::ptrdiff_t column = 0; column < columns; column += V::lanes) {
        Complex<V> points[count];
        for (int n = 0; n < count; ++n) points[n] = src.template load<V>(n * columns + column);
        if constexpr (n2 == 1) {
            transform(points);
        } else {
            transformColumns<n1, n2>(points, twiddles);
        }
        std::ptrdiff_t position[V::lanes];
        for (int lane = 0; lane < V::lanes; ++lane) position[lane] = std::ptrdiff_t{2} * bitReversal[column + lane];
        dst.storeColumns(position, points);
    }
}

// The first pass over data that has been put into bit-reversed order; src and dst may be the same memory.
template <int n1, int n2, class V, class Source, class Target>
void firstPassReversed(const Element<V>* twiddles, int order, Source src, Target dst) {
    constexpr int count = n1 * n2;
    for (std::ptrdiff_t first = 0; first < std::ptrdiff_t{1} << order; first += V::lanes * count) {
        Complex<V> points[count];
        src.loadReversedColumns(first, points);
        transformColumns<n1, n2>(points, twiddles);
        std::ptrdiff_t position[V::lanes];
        for (int lane = 0; lane < V::lanes; ++lane) position[lane] = first + lane * count;
        dst.storeColumns(position, points);
    }
}

// One stage over 2^order values: butterflies whose legs are span apart. Twiddles are read in order, from the start
// again for every sub-transform. in and out may be the same memory.
template <int radix, class V, class In, class Out>
void stage(const Element<V>* twiddles, int order, std::ptrdiff_t span, In in, Out out) {
    for (std::ptrdiff_t sub = 0; sub < std::ptrdiff_t{1} << order; sub += radix * span) {
        const Element<V>* factor = twiddles;
        for (std::ptrdiff_t k = sub; k < sub + span; k += V::lanes) {
            Complex<V> x[radix];
            x[0] = in.template load<V>(k);
            for (int n = 1; n < radix; ++n, factor += 2 * V::lanes) {
                x[n] = in.template load<V>(k + bitReversed(n, radix) * span) *
                       Complex<V>{load<V>(factor), load<V>(factor + V::lanes)};
            }
            transform(x);
            for (int n = 0; n < radix; ++n) out.store(k + n * span, x[n]);
        }
    }
}

// Runs a stage of either radix and leaves the twiddles at the next stage's.
template <class V, class In, class Out>
VORN_INLINE void runStage(const Element<V>*& twiddles, int radix, int order, std::ptrdiff_t span, In in, Out out) {
    if (radix == 4) {
        stage<4, V>(twiddles, order, span, in, out);
    } else {
        stage<8, V>(twiddles, order, span, in, out);
    }
    twiddles += 2 * (radix - 1) * span;
}

// The stages of a plan from a given one on, in mid; the last one writes dst.
template <class V, class Mid, class Target>
void laterStages(const Element<V>* twiddles, const Plan& plan, int from, std::ptrdiff_t span, int order, Mid mid,
                 Target dst) {
    const int last = plan.stages() - 1;
    for (int i = from; i < last; ++i) {
        runStage<V>(twiddles, plan.radix[i], order, span, mid, mid);
        span *= plan.radix[i];
    }
    runStage<V>(twiddles, plan.radix[last], order, span, mid, dst);
}

// Calls run<n1, n2>() with the first two radices of a plan of at least three stages.
template <class T, class Run>
VORN_INLINE void withFirstRadices(const Plan& plan, Run run) {
    if constexpr (sizeof(T) == 8) {
        if (plan.radix[0] == 8 && plan.radix[1] == 8) return run.template operator()<8, 8>();
        if (plan.radix[0] == 8) return run.template operator()<8, 4>();
    } else {
        if (plan.radix[1] == 8) return run.template operator()<4, 8>();
    }
    run.template operator()<4, 4>();
}

// An order below longOrder, from data in natural order. mid has room for 2^order values and must not be src; it may be
// dst.
template <class T, class Source, class Target>
void shortTransform(const Tables<T>& tables, int order, Source src, Target dst, T* mid) {
    using V = Wide<T>;
    using Narrow = typename Precision<T>::Narrow;
    const Plan& plan = planOf<T>(order);
    if (plan.stages() == 2) {
        const Blocks<T, Narrow::lanes> blocks{mid};
        if (plan.radix[0] == 4) {
            firstPass<4, 1, Narrow>(tables.bitReversal, tables.twiddles, order, src, blocks);
        } else if constexpr (sizeof(T) == 8) {
            firstPass<8, 1, Narrow>(tables.bitReversal, tables.twiddles, order, src, blocks);
        }
        laterStages<Narrow>(tables.twiddles, plan, 1, plan.radix[0], order, blocks, dst);
        return;
    }
    withFirstRadices<T>(plan, [&]<int n1, int n2>() {
        const WideBlocks<T> blocks{mid};
        if ((std::ptrdiff_t{1} << order) / (n1 * n2) >= ColumnLanes<T>::lanes) {
            firstPass<n1, n2, ColumnLanes<T>>(tables.bitReversal, tables.twiddles, order, src, blocks);
        } else {
            firstPass<n1, n2, Narrow>(tables.bitReversal, tables.twiddles, order, src, blocks);
        }
        laterStages<V>(tables.twiddles + 2 * (n2 - 1) * n1, plan, 2, n1 * n2, order, blocks, dst);
    });
}

// Stands for the source of a long transform whose first pass has been run.
struct FirstPassDone {
    FirstPassDone from(std::ptrdiff_t) const { return {}; }
};

// The first pass of all sub-transforms of a long transform at once, from data in natural order; it spares the reversal.
template <class T, class Source, class Mid>
FirstPassDone firstPassOfAll(const Tables<T>& tables, int order, Source src, Mid mid) {
    int innermost = order;
    while (innermost >= Precision<T>::longOrder) innermost -= blockingOf<T>(innermost).block;
    withFirstRadices<T>(planOf<T>(innermost), [&]<int n1, int n2>() {
        firstPass<n1, n2, ColumnLanes<T>>(tables.bitReversal, tables.twiddles, order, src, mid);
    });
    return {};
}

// A sub-transform inside a long one: from bit-reversed data, all in place. mid and dst are layouts of the same memory.
template <class T, class Source, class Mid, class Target>
void subTransform(const Tables<T>& tables, int order, Source src, Mid mid, Target dst) {
    const Plan& plan = planOf<T>(order);
    withFirstRadices<T>(plan, [&]<int n1, int n2>() {
        if constexpr (!std::is_same_v<Source, FirstPassDone>) {
            firstPassReversed<n1, n2, typename Precision<T>::Narrow>(tables.twiddles, order, src, mid);
        }
        laterStages<Wide<T>>(tables.twiddles + 2 * (n2 - 1) * n1, plan, 2, n1 * n2, order, mid, dst);
    });
}

// The merge stages of one level. Chunks of columns go through the work buffer: the first stage reads them from their
// place, the last one writes them back.
template <class T, class Mid, class Target>
void mergeBlocks(const T* twiddles, int order, Mid mid, Target dst, T* work) {
    using V = Wide<T>;
    const Blocking blocking = blockingOf<T>(order);
    const Plan plan = mergePlan(blocking.block);
    const int subOrder = order - blocking.block, width = blocking.buffer - blocking.block;
    const int last = plan.stages() - 1;
    const WideBlocks<T> buffer{work};
    for (std::ptrdiff_t column = 0; column < std::ptrdiff_t{1} << subOrder; column += std::ptrdiff_t{1} << width) {
        const Columns<Mid> in{mid.from(column), width, subOrder};
        const Columns<Target> out{dst.from(column), width, subOrder};
        std::ptrdiff_t span = std::ptrdiff_t{1} << width;
        if (last == 0) {
            runStage<V>(twiddles, plan.radix[0], blocking.buffer, span, in, out);
            continue;
        }
        runStage<V>(twiddles, plan.radix[0], blocking.buffer, span, in, buffer);
        span *= plan.radix[0];
        for (int i = 1; i < last; ++i) {
            runStage<V>(twiddles, plan.radix[i], blocking.buffer, span, buffer, buffer);
            span *= plan.radix[i];
        }
        runStage<V>(twiddles, plan.radix[last], blocking.buffer, span, buffer, out);
    }
}

// An order from longOrder on, from bit-reversed data, all in place: src, mid and dst are layouts of the same memory.
// The factor falls on the innermost sub-transforms.
template <class T, class Factor, class Source, class Mid, class Target>
void longTransform(const Tables<T>& tables, int level, int order, Factor scaled, Source src, Mid mid, Target dst,
                   T* work) {
    const int block = blockingOf<T>(order).block, subOrder = order - block;
    for (std::ptrdiff_t sub = 0; sub < std::ptrdiff_t{1} << order; sub += std::ptrdiff_t{1} << subOrder) {
        if (subOrder < Precision<T>::longOrder) {
            subTransform(tables, subOrder, src.from(sub), mid.from(sub), scaled(mid.from(sub)));
        } else {
            longTransform(tables, level + 1, subOrder, scaled, src.from(sub), mid.from(sub), mid.from(sub), work);
        }
    }
    mergeBlocks(tables.merge[level], order, mid, dst, work);
}

}  // namespace vorn::fft
