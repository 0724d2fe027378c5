// The transform core: forward complex transforms of 2^order values, over any precision and layout. The inverse is the
// same transform with the real and the imaginary parts exchanged at both ends, which gives exactly the conjugate
// butterflies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "fft/contexts/plan.h"
#include "fft/contexts/tables.h"
#include "fft/core/butterflies.h"
#include "fft/core/layouts.h"

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

// Eight pairs in registers of 16 bytes: one double pair each, or two neighbouring single pairs. The two of these run
// through the transforms of the even and of the odd values side by side.
template <Parts parts, class Level>
VORN_INLINE void eightPairs(Level level, Interleaved<const double, parts> src, Interleaved<double, parts> dst) {
    using Point = Pairs<f64x2, parts>;
    transform<8>([&](int n) { return src.template loadPoint<f64x2>(n); },
                 [&](int k, Point z) { store(dst.data + 2 * k, z.v); }, level);
}
template <Parts parts, class Level>
VORN_INLINE void eightPairs(Level level, Interleaved<const float, parts> src, Interleaved<float, parts> dst) {
    using Point = Pairs<f32x4, parts>;
    Point x[4];
    transform<4>([&](int n) { return src.template loadPoint<f32x4>(2 * n); }, [&](int k, Point z) { x[k] = z; }, level);
    const f32x4 root = splat<f32x4>(0.7071067811865476F);
    for (int k = 0; k < 4; k += 2) {
        f32x4 halves[2] = {x[k].v, x[k + 1].v};
        transposePairs(halves);
        const Point even = {halves[0]}, odd = {halves[1]}, turn = turned(odd);
        const Point whole = k == 0 ? odd : turn;
        const Point eighth = {(k == 0 ? odd + turn : turn - odd).v * root};
        const Point factored = {firstAndSecondPair(whole.v, eighth.v)};
        store(dst.data + 2 * k, (even + factored).v);
        store(dst.data + 2 * k + 8, (even - factored).v);
    }
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
    if constexpr (requires { eightPairs(level, src, dst); }) {
        if (order == 3) return eightPairs(level, src, dst);
    }
    const auto run = [&]<int length>() {
        Complex<T> x[length], result[length];
        for (int n = 0; n < length; ++n) x[n] = src.template load<T>(n);
        transform<length>([&](int n) { return x[n]; }, [&](int k, Complex<T> z) { result[k] = z; }, level);
        for (int n = 0; n < length; ++n) dst.store(n, result[n]);
    };
    if (order == 2) run.template operator()<4>();
    if (order == 3) run.template operator()<8>();
}

// Whether columns of this length keep the registers so busy that their values had better be loaded all before the
// second stage and stored all behind it. The two-operand instructions of the baseline never gain by that.
template <int n1, int n2>
inline constexpr bool longColumns =
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
    n1* n2 > 16;
#else
    false;
#endif

// The runs of several legs that lie side by side in the parts of vectors, put leg by leg.
template <int legsAtOnce, int runs, class V>
VORN_INLINE void legsApart(const Complex<V>* all, Complex<V> (*legs)[runs]) {
    for (int run = 0; run < runs; ++run) {
        V re[legsAtOnce], im[legsAtOnce];
        for (int j = 0; j < legsAtOnce; ++j) {
            re[j] = all[legsAtOnce * run + j].re;
            im[j] = all[legsAtOnce * run + j].im;
        }
        turnParts(re);
        turnParts(im);
        for (int j = 0; j < legsAtOnce; ++j) legs[j][run] = {re[j], im[j]};
    }
}

// The first two stages of as many columns as a vector of points covers; the twiddles of the second are the same for
// every column. legs(i, x) gives the values i, i + n2, i + 2 n2 ... of the columns, and block(c) tells where the
// transform of column c goes. With several legs at once the vectors cover fewer columns: legs(i, x) gives the values of
// leg i in their first parts, those of leg i + 1 in the next ones.
template <int n1, int n2, int legsAtOnce, class Point, class T, class Legs, class Block, class Target>
VORN_INLINE void transformColumns(const T* twiddles, Legs legs, Block block, Target dst) {
    using Turn = Runs<Point>;
    using V = typename Turn::Vector;
    constexpr int groups = Turn::columns / Turn::perGroup, together = Turn::perGroup / legsAtOnce;
    constexpr int runs = n1 / Turn::length * together;
    Complex<V> first[n2][runs];
    for (int i = 0; i < n2; i += legsAtOnce) {
        Point x[n1];
        legs(i, x);
        transform(x);
        if constexpr (legsAtOnce == 1) {
            Turn::from(x, first[i]);
        } else {
            Complex<V> all[legsAtOnce * runs];
            Turn::from(x, all);
            legsApart<legsAtOnce, runs>(all, first + i);
        }
    }
    constexpr int part = groups / legsAtOnce, runsOfColumn = runs / together;
    constexpr bool whole = groups == 4 && Target::template takes<V>;
    for (int q = 0; q < together; ++q) {
        const auto place = [&](int g, int k) {
            return dst.place(block(Turn::perGroup * (g % part) + q * legsAtOnce + g / part), k);
        };
        const auto second = [&](int run, auto store) {
            const T* const factors = keepApart(twiddles + run * Turn::length);
            const auto load = [&](int i) {
                const T* factor = factors + (i - 1) * 2 * n1;
                const Complex<V>& x = first[i][run * together + q];
                const Complex<V> z = {x.re, x.im};
                return i == 0 ? z : z * Complex<V>{repeatGroup<V>(factor), repeatGroup<V>(factor + n1)};
            };
            if constexpr (longColumns<n1, n2> && !whole) {
                transformInRegisters<n2>(load, store);
            } else {
                transform<n2>(load, store);
            }
        };
        if constexpr (whole) {
            // Four neighbouring runs of each column make up a register, and one store to each line does instead of
            // four.
            Complex<V> x[runsOfColumn][n2];
            for (int run = 0; run < runsOfColumn; ++run) {
                second(run, [&](int n, Complex<V> z) { x[run][n] = z; });
            }
            Target places[groups];
            for (int g = 0; g < groups; ++g) places[g] = place(g, 0);
            for (int n = 0; n < n2; n += groups / runsOfColumn) {
                V re[groups], im[groups];
                for (int i = 0; i < groups; ++i) {
                    const Complex<V>& z = x[i % runsOfColumn][n + i / runsOfColumn];
                    re[i] = z.re, im[i] = z.im;
                }
                turnGroups(re);
                turnGroups(im);
                for (int g = 0; g < groups; ++g) Target::storeWhole(places[g], n * n1, Complex<V>{re[g], im[g]});
            }
        } else {
            for (int run = 0; run < runsOfColumn; ++run) {
                Target places[groups];
                for (int g = 0; g < groups; ++g) places[g] = place(g, run * Turn::length);
                second(run, [&](int n, Complex<V> z) { Target::storeGroups(places, n * n1, z); });
            }
        }
    }
}

// The first pass over data in natural order: column c, its values 2^order / (n1 n2) apart, becomes a block of the
// bit-reversed order, at 2 * bitReversal[c]. It runs in the widest vectors that the columns of one leg, of two or of
// four fill.
template <int n1, int n2, class V, class T, class Source, class Target>
void firstPass(const std::int32_t* bitReversal, const T* twiddles, int order, Source src, Target dst) {
    using Point = typename Source::template Point<V>;
    using Turn = Runs<Point>;
    const std::ptrdiff_t columns = (std::ptrdiff_t{1} << order) / (n1 * n2);
    const auto run = [&]<int legsAtOnce>() __attribute__((always_inline)) {
        for (std::ptrdiff_t column = 0; column < columns; column += Turn::columns / legsAtOnce) {
            const auto legs = [&](int i, Point(&x)[n1]) {
                for (int n = 0; n < n1; ++n) x[n] = src.template loadPoint<V>((n * n2 + i) * columns + column);
            };
            const auto block = [&](int c) { return std::ptrdiff_t{2} * bitReversal[column + c]; };
            transformColumns<n1, n2, legsAtOnce, Point>(twiddles, legs, block, dst);
        }
    };
    if constexpr (V::lanes > Precision<T>::Narrow::lanes) {
        if (columns < Turn::columns) {
            if constexpr (Turn::perGroup >= 2) {
                if (columns == Turn::columns / 2) return run.template operator()<2>();
            }
            if constexpr (Turn::perGroup >= 4 && Turn::columns >= 16) {
                if (columns == Turn::columns / 4) return run.template operator()<4>();
            }
            return firstPass<n1, n2, decltype(lowHalf(V{}))>(bitReversal, twiddles, order, src, dst);
        }
    }
    run.template operator()<1>();
}

// The first pass over data that has been put into bit-reversed order; src and dst may be the same memory.
template <int n1, int n2, class V, class T, class Source, class Target>
void firstPassReversed(const T* twiddles, int order, Source src, Target dst) {
    using Point = typename Source::template Point<V>;
    constexpr int count = n1 * n2;
    for (std::ptrdiff_t first = 0; first < std::ptrdiff_t{1} << order; first += Runs<Point>::columns * count) {
        const auto legs = [&](int i, Point(&x)[n1]) {
            src.template loadReversed<V>(first + bitReversed(i, n2) * n1, count, x);
        };
        const auto block = [&](int c) { return first + c * count; };
        transformColumns<n1, n2, 1, Point>(twiddles, legs, block, dst);
    }
}

// One stage over 2^order values: butterflies whose legs are span apart. Twiddles are read in order, from the start
// again for every sub-transform. in and out may be the same memory.
template <int radix, class V, class In, class Out>
void stage(const Element<V>* twiddles, int order, std::ptrdiff_t span, In in, Out out) {
    for (std::ptrdiff_t sub = 0; sub < std::ptrdiff_t{1} << order; sub += radix * span) {
        const Element<V>* factor = twiddles;
        for (std::ptrdiff_t k = sub; k < sub + span; k += V::lanes) {
            const auto load = [&](int n) {
                const Element<V>* at = factor + (n - 1) * 2 * V::lanes;
                const Complex<V> x = in.template load<V>(k + bitReversed(n, radix) * span);
                return n == 0 ? x : x * Complex<V>{vorn::load<V>(at), vorn::load<V>(at + V::lanes)};
            };
            transform<radix>(load, [&](int n, Complex<V> z) { out.store(k + n * span, z); });
            factor += (radix - 1) * 2 * V::lanes;
        }
    }
}

// The same where the cache lines of the legs have to share a few places of the first-level cache, and one would be gone
// before the last of its values is due: each line is taken and given back as a whole, the butterflies run between.
template <int radix, class V, class In, class Out>
void stageByLines(const Element<V>* twiddles, int order, std::ptrdiff_t span, In in, Out out) {
    constexpr int length = 64 / sizeof(Element<V>);
    constexpr int lineOrder = log2OfRadix(radix) + (length == 8 ? 3 : 4);
    static_assert(1 << lineOrder == radix * length);
    alignas(64) Element<V> re[radix * length], im[radix * length];
    const Split<Element<V>> lines{re, im};
    for (std::ptrdiff_t sub = 0; sub < std::ptrdiff_t{1} << order; sub += radix * span) {
        const Element<V>* factor = twiddles;
        for (std::ptrdiff_t k = sub; k < sub + span; k += length) {
            for (int i = 0; i < radix * length; i += V::lanes) {
                lines.store(i, in.template load<V>(k + i / length * span + i % length));
            }
            stage<radix, V>(factor, lineOrder, length, lines, lines);
            for (int i = 0; i < radix * length; i += V::lanes) {
                out.store(k + i / length * span + i % length, lines.template load<V>(i));
            }
            factor += 2 * (radix - 1) * length;
        }
    }
}

// Runs a stage of either radix and leaves the twiddles at the next stage's.
template <class V, class In, class Out>
VORN_INLINE void runStage(const Element<V>*& twiddles, int radix, int order, std::ptrdiff_t span, In in, Out out) {
    constexpr bool coversLines = V::lanes * sizeof(Element<V>) >= 64;
    if (radix == 4) {
        stage<4, V>(twiddles, order, span, in, out);
    } else if (coversLines || !out.linesCollide(span)) {
        stage<8, V>(twiddles, order, span, in, out);
    } else {
        stageByLines<8, V>(twiddles, order, span, in, out);
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

// Calls run<n1, n2>() with the first two radices of a plan.
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

// A transform of two stages, in narrow registers: the values between its stages need no memory.
template <int n1, int n2, class T, class Source, class Target>
void twoStages(const T* twiddles, Source src, Target dst) {
    using V = typename Precision<T>::Narrow;
    using Point = typename Source::template Point<V>;
    using Turn = Runs<Point>;
    constexpr int runs = n1 / Turn::length * Turn::perGroup;
    Complex<V> first[n1 / V::lanes][n2];
    for (int column = 0; column < n2; column += Turn::columns) {
        Point x[n1];
        Complex<V> run[runs];
        transform<n1>([&](int n) { return src.template loadPoint<V>(n * n2 + column); },
                      [&](int k, Point z) { x[k] = z; });
        Turn::from(x, run);
        if constexpr (V::lanes == 2 * Turn::length) {
            // The neighbouring runs of one column become one.
            for (int i = 0; i < runs; ++i) {
                if (i / Turn::perGroup % 2 != 0) continue;
                exchangeGroups(run[i].re, run[i + Turn::perGroup].re);
                exchangeGroups(run[i].im, run[i + Turn::perGroup].im);
            }
        }
        for (int i = 0; i < runs; ++i) first[i / Turn::columns][column + i % Turn::columns] = run[i];
    }
    for (int k = 0; k < n1; k += V::lanes) {
        const Complex<V>(&x)[n2] = first[k / V::lanes];
        const auto load = [&](int i) {
            const T* factor = twiddles + (k / V::lanes * (n2 - 1) + i - 1) * 2 * V::lanes;
            const Complex<V> z = {x[i].re, x[i].im};
            return i == 0 ? z : z * Complex<V>{vorn::load<V>(factor), vorn::load<V>(factor + V::lanes)};
        };
        transform<n2>(load, [&](int n, Complex<V> z) { dst.store(k + n * n1, z); });
    }
}

// An order below longOrder, from data in natural order. mid is memory for 2^order values, or a layout of it; it must
// not be src's, but may be dst's.
template <class T, class Source, class Target, class Mid>
void shortTransform(const Tables<T>& tables, int order, Source src, Target dst, Mid mid) {
    const Plan& plan = planOf<T>(order);
    if (plan.stages() == 2) {
        return withFirstRadices<T>(plan, [&]<int n1, int n2>() { twoStages<n1, n2>(tables.twiddles, src, dst); });
    }
    withFirstRadices<T>(plan, [&]<int n1, int n2>() {
        const auto between = layoutBetween(mid);
        firstPass<n1, n2, Wide<T>>(tables.bitReversal, tables.twiddles, order, src, between);
        laterStages<Wide<T>>(tables.twiddles + 2 * (n2 - 1) * n1, plan, 2, n1 * n2, order, between, dst);
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
        firstPass<n1, n2, Wide<T>>(tables.bitReversal, tables.twiddles, order, src, mid);
    });
    return {};
}

// A sub-transform inside a long one: from bit-reversed data, all in place. mid and dst are layouts of the same memory.
template <class T, class Source, class Mid, class Target>
void subTransform(const Tables<T>& tables, int order, Source src, Mid mid, Target dst) {
    const Plan& plan = planOf<T>(order);
    withFirstRadices<T>(plan, [&]<int n1, int n2>() {
        if constexpr (!std::is_same_v<Source, FirstPassDone>) {
            firstPassReversed<n1, n2, Wide<T>>(tables.twiddles, order, src, mid);
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
