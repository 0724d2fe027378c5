// The tables of a context.
#include "fft/contexts/tables.h"

#include "elementary/elementary.h"
#include "frame/rounding.h"

namespace vorn::fft {
namespace {

template <class T>
VORN_NOINLINE void fillSines(T* s, int order) {
    const std::int64_t length = std::int64_t{1} << order;
    const double step = 6.283185307179586 / static_cast<double>(length);
    for (std::int64_t i = 0; i <= length / 8; ++i) s[i] = static_cast<T>(sin64(static_cast<double>(i) * step));
    for (std::int64_t i = length / 8 + 1; i <= length / 4; ++i) {
        s[i] = static_cast<T>(cos64(static_cast<double>(length / 4 - i) * step));
    }
}

}  // namespace

template <class T>
void QuarterWave<T>::fill(T* s, int order) {
    const RoundingGuard nearest(Rounding::Nearest);
    fillSines(s, order);
}

template <class T>
void QuarterWave<T>::factor(std::int64_t index, int indexOrder, T& cosine, T& negatedSine) const {
    const std::int64_t quarter = std::int64_t{1} << (order - 2);
    const std::int64_t angle = index << (order - indexOrder);
    const T rising = s[angle & (quarter - 1)], falling = s[quarter - (angle & (quarter - 1))];
    switch ((angle >> (order - 2)) & 3) {
        case 0:
            cosine = falling, negatedSine = -rising;
            break;
        case 1:
            cosine = -rising, negatedSine = -falling;
            break;
        case 2:
            cosine = -falling, negatedSine = rising;
            break;
        default:
            cosine = rising, negatedSine = falling;
            break;
    }
}

// Counts by carrying from the top bit.
void fillBitReversal(std::int32_t* table, int order) {
    const std::int64_t count = std::int64_t{1} << (order - 2);
    std::int64_t reversed = 0;
    for (std::int64_t i = 0; i < count; ++i) {
        table[i] = static_cast<std::int32_t>(2 * reversed);
        std::int64_t bit = count / 2;
        for (; bit != 0 && (reversed & bit) != 0; bit /= 2) reversed -= bit;
        reversed += bit;
    }
    table[count] = 0;
}

namespace {

// The radix - 1 factors of the butterflies first to first + lanes - 1 of a stage whose sub-length is 2^doneAfter: lanes
// cosines, then lanes negated sines, factor after factor.
template <class T>
T* appendGroup(const QuarterWave<T>& wave, T* to, int radix, int doneAfter, std::int64_t first, int lanes) {
    for (int n = 1; n < radix; ++n, to += 2 * lanes) {
        for (int lane = 0; lane < lanes; ++lane) {
            wave.factor(n * (first + lane), doneAfter, to[lane], to[lanes + lane]);
        }
    }
    return to;
}

// The stages of a short transform behind its first. The second runs across columns and has one factor for all lanes,
// unless the transform ends with it.
template <class T>
T* fillShort(const QuarterWave<T>& wave, int order, T* to) {
    const Plan& plan = planOf<T>(order);
    const int stages = plan.stages();
    int done = log2OfRadix(plan.radix[0]);
    for (int stage = 1; stage < stages; ++stage) {
        const std::int64_t butterflies = std::int64_t{1} << done;
        const int lanes = stages == 2  ? Precision<T>::Narrow::lanes
                          : stage == 1 ? static_cast<int>(butterflies)
                                       : Wide<T>::lanes;
        done += log2OfRadix(plan.radix[stage]);
        for (std::int64_t k = 0; k < butterflies; k += lanes) {
            to = appendGroup(wave, to, plan.radix[stage], done, k, lanes);
        }
    }
    return to;
}

// The merge stages of one level: chunk after chunk, stage after stage, in the order of use.
template <class T>
T* fillMerge(const QuarterWave<T>& wave, int order, T* to) {
    const Blocking blocking = blockingOf<T>(order);
    const int subOrder = order - blocking.block;
    const std::int64_t columns = std::int64_t{1} << (blocking.buffer - blocking.block);
    const Plan plan = mergePlan(blocking.block);
    for (std::int64_t chunk = 0; chunk < std::int64_t{1} << subOrder; chunk += columns) {
        int done = 0;
        for (int stage = 0; stage < plan.stages(); ++stage) {
            const std::int64_t rows = std::int64_t{1} << done;
            done += log2OfRadix(plan.radix[stage]);
            for (std::int64_t row = 0; row < rows; ++row) {
                for (std::int64_t column = 0; column < columns; column += Wide<T>::lanes) {
                    to = appendGroup(wave, to, plan.radix[stage], subOrder + done, (row << subOrder) + chunk + column,
                                     Wide<T>::lanes);
                }
            }
        }
    }
    return to;
}

// Levels count from the outermost; the tables are laid down from the innermost.
template <class T>
T* fillLevel(const QuarterWave<T>& wave, int order, int level, T* to, T** blkTwdTab) {
    if (order < Precision<T>::longOrder) return fillShort(wave, order, to);
    to = fillLevel(wave, order - blockingOf<T>(order).block, level + 1, to, blkTwdTab);
    blkTwdTab[level] = to;
    return fillMerge(wave, order, to);
}

}  // namespace

template <class T>
void fillTwiddles(const QuarterWave<T>& wave, int order, T* twdTab, T** blkTwdTab) {
    fillLevel(wave, order, 0, firstTwiddle(twdTab), blkTwdTab);
}

template <class T>
void fillRealRecombination(const QuarterWave<T>& wave, T* table) {
    const std::int64_t quarter = std::int64_t{1} << (wave.order - 2);
    const int lanes = recombinationLanes<T>(wave.order);
    for (std::int64_t j = 1; j <= quarter; ++j) {
        T* group = table + (j - 1) / lanes * (2 * lanes) + (j - 1) % lanes;
        group[0] = static_cast<T>(0.5) * wave.s[quarter - j];
        group[lanes] = static_cast<T>(0.5 - 0.5 * static_cast<double>(wave.s[j]));
    }
}

template <class T>
void fillCcsRecombination(const QuarterWave<T>& wave, T* table) {
    const std::int64_t quarter = std::int64_t{1} << (wave.order - 2);
    const int lanes = recombinationLanes<T>(wave.order);
    for (std::int64_t j = 1; j <= quarter; ++j) {
        T* group = table + (j - 1) / lanes * (2 * lanes) + (j - 1) % lanes;
        group[0] = wave.s[quarter - j];
        group[lanes] = -wave.s[j];
    }
}

template struct QuarterWave<float>;
template struct QuarterWave<double>;
template void fillTwiddles(const QuarterWave<float>&, int, float*, float**);
template void fillTwiddles(const QuarterWave<double>&, int, double*, double**);
template void fillRealRecombination(const QuarterWave<float>&, float*);
template void fillRealRecombination(const QuarterWave<double>&, double*);
template void fillCcsRecombination(const QuarterWave<float>&, float*);
template void fillCcsRecombination(const QuarterWave<double>&, double*);

}  // namespace vorn::fft
