#include "features/resampling/variable.h"

#include <algorithm>
#include <cmath>

#include "features/resampling/design.h"
#include "features/resampling/store.h"
#include "frame/align.h"
#include "frame/memory.h"
#include "simd/quad.h"

namespace vorn::resampling {
namespace {

// What a record needs behind it, in doubles; loads of four may begin at any entry.
struct VariableLayout {
    std::int64_t phases, phaseLen, table, points, rows, total;
    VariableLayout(std::int64_t nStep, std::int64_t tableLen)
        : phases(std::min(nStep, tableLen) + 1),
          phaseLen(tableLen / nStep + 1),
          table(roundUp(static_cast<std::int64_t>(sizeof(Variable)), 64) / 8),
          points(table + roundUp((tableLen + 2) / 2, 8)),
          rows(points + roundUp(tableLen + 1, 8)),
          total(rows + phases * phaseLen + 4) {}
};

// The points in the unit of the table, as its entries are: singles, or 16-bit integers up to 16383 in magnitude.
void storeTable(Vorn32f* table, double* points, std::int64_t tableLen, Vorn32f& norm) {
    norm = 1;
    for (std::int64_t i = 0; i < tableLen; ++i) points[i] = table[i] = static_cast<Vorn32f>(points[i]);
    points[tableLen] = table[tableLen] = table[tableLen - 1];
}
void storeTable(Vorn16s* table, double* points, std::int64_t tableLen, Vorn32f& norm) {
    double most = 0;
    for (std::int64_t i = 0; i < tableLen; ++i) most = std::max(most, std::fabs(points[i]));
    const double scale = 16383 / most;
    norm = static_cast<Vorn32f>(most / 16383);
    for (std::int64_t i = 0; i < tableLen; ++i) {
        const double scaled = points[i] * scale;
        points[i] = table[i] = static_cast<Vorn16s>(static_cast<int>(scaled + (scaled < 0 ? -0.5 : 0.5)));
    }
    points[tableLen] = table[tableLen] = table[tableLen - 1];
}

void storePhases(const double* points, std::int64_t nStep, std::int64_t tableLen, const VariableLayout& layout,
                 double* rows) {
    for (std::int64_t q = 0; q < layout.phases; ++q) {
        for (std::int64_t k = 0; k < layout.phaseLen; ++k) {
            const std::int64_t i = q + k * nStep;
            rows[q * layout.phaseLen + k] = i <= tableLen ? points[i] : 0.0;
        }
    }
    std::fill_n(rows + layout.phases * layout.phaseLen, 4, 0.0);
}

// One part of a filter at work: taps k = 0, 1, ... outwards from the position, tap k in lane k mod 4.
template <class Sample, int direction>
struct Side {
    const Sample* src;  // sample of tap 0
    f64x4 sum = splat<f64x4>(0.0);

    // The taps k to k + 3.
    VORN_INLINE void add(std::int64_t k, f64x4 weight) {
        const Sample* p = src + direction * k;
        if constexpr (direction > 0) {
            sum = sum + weight * loadQuad(p);
        } else {
            sum = sum + weight * loadQuadBackwards(p);
        }
    }
    // The taps k to k + n - 1, n from 1 to 4; no other sample is read.
    VORN_INLINE void addFirst(std::int64_t k, f64x4 weight, std::int64_t n) {
        const auto at = [&](std::int64_t j) __attribute__((always_inline)) {
            return static_cast<double>(src[direction * (k + std::min(j, n - 1))]);
        };
        sum = sum + firstLanes(weight * quadOfLanes(at(0), at(1), at(2), at(3)), n);
    }
};

// Linear interpolation between entries.
VORN_INLINE f64x4 between(f64x4 here, f64x4 next, f64x4 rest, f64x4 r) { return here * rest + next * r; }

// The filter as it is: its points are read a sample apart, all at the same distance r from the entries.
class Comb {
public:
    Comb(const Variable& state)
        : rows_(state.phases),
          rowLen_(state.phaseLen),
          nStep_(state.nStep),
          steps_(state.nStep),
          count_((state.tableLen - 1) / state.nStep),
          last_((state.tableLen - 1) % state.nStep) {}

    template <class Side>
    VORN_INLINE void addTo(Side& side, double fraction) const {
        std::int64_t q = static_cast<std::int64_t>(1e-5 + steps_ * fraction);
        const double r = steps_ * fraction - static_cast<double>(q);
        const bool whole = q >= nStep_;  // a sample on, which only shifts the row
        if (whole) q -= nStep_;
        const std::int64_t taps = count_ + (q <= last_) - whole;
        const double* here = rows_ + q * rowLen_ + whole;
        const double* next = here + rowLen_;
        const f64x4 rs = splat<f64x4>(r), rest = splat<f64x4>(1 - r);
        std::int64_t k = 0;
        for (; k + 4 <= taps; k += 4) side.add(k, between(load<f64x4>(here + k), load<f64x4>(next + k), rest, rs));
        if (k < taps) {
            side.addFirst(k, between(load<f64x4>(here + k), load<f64x4>(next + k), rest, rs), taps - k);
        }
    }

private:
    const double* rows_;
    std::ptrdiff_t rowLen_;
    std::int64_t nStep_;
    double steps_;
    std::int64_t count_, last_;  // a row q has count_ points, and one more up to the row last_
};

// The filter stretched: it is read h points apart, anywhere between its points.
class Stretched {
public:
    Stretched(const Variable& state, double factor)
        : points_(state.points),
          factor_(factor),
          steps_(state.nStep),
          h_(factor * steps_),
          perH_((1 - 1e-9) / h_),
          end_(state.tableLen - 1e-5) {}

    // Both parts at once, since what one waits for is its position.
    template <class Left, class Right>
    VORN_INLINE void addTo(Left& left, Right& right, double fraction) const {
        const f64x2 h = splat<f64x2>(h_), end = splat<f64x2>(end_);
        f64x2 p = pairOf(factor_ * fraction * steps_, (1 - fraction) * factor_ * steps_);
        // How many taps there are in any case can be told early, so that the next sample need not wait for the last
        // position of this one.
        const double least = (end_ - std::max(factor_ * fraction, (1 - fraction) * factor_) * steps_) * perH_;
        std::int64_t k = 0;
        if (least < taps16) {
            for (const auto whole = static_cast<std::int64_t>(least) - 2; k < whole; k += 4) {
                const f64x2 p1 = p + h, p2 = p1 + h, p3 = p2 + h;
                f64x4 leftAt, rightAt;
                transposed(p, p1, p2, p3, leftAt, rightAt);
                left.add(k, weights(leftAt));
                right.add(k, weights(rightAt));
                p = p3 + h;
            }
        }
        for (;; k += 4) {
            const f64x2 p1 = p + h, p2 = p1 + h, p3 = p2 + h;
            const unsigned in[] = {laneBits(p < end), laneBits(p1 < end), laneBits(p2 < end), laneBits(p3 < end)};
            const std::int64_t leftTaps = (in[0] & 1) + (in[1] & 1) + (in[2] & 1) + (in[3] & 1);
            const std::int64_t rightTaps = in[0] / 2 + in[1] / 2 + in[2] / 2 + in[3] / 2;
            f64x4 leftAt, rightAt;
            transposed(p, p1, p2, p3, leftAt, rightAt);
            if (leftTaps > 0) left.addFirst(k, firstWeights(leftAt, leftTaps), leftTaps);
            if (rightTaps > 0) right.addFirst(k, firstWeights(rightAt, rightTaps), rightTaps);
            if (leftTaps < 4 && rightTaps < 4) return;
            p = p3 + h;
        }
    }

private:
    VORN_INLINE f64x4 weights(f64x4 p) const {
        const i32x4 q = truncToInt(p);
        const f64x4 r = p - toQuad(q);
        f64x4 here, next;
        loadNeighbours(points_, q, here, next);
        return between(here, next, splat<f64x4>(1.0) - r, r);
    }
    // Positions behind the end read at 0 instead.
    VORN_INLINE f64x4 firstWeights(f64x4 p, std::int64_t taps) const { return weights(firstLanes(p, taps)); }

    const double* points_;
    double factor_, steps_, h_;
    double perH_;  // less than 1/h by more than roundings can make of so few taps
    double end_;
    static constexpr double taps16 = 65536;
};

// The next whole number downwards.
VORN_INLINE std::int64_t floorOf(double t) {
    const auto i = static_cast<std::int64_t>(t);
    return i - (t < static_cast<double>(i));
}

template <class Sample, class Add>
VORN_INLINE std::int64_t overTime(const Sample* src, int len, Sample* dst, double step, double gain, double& time,
                                  const Add& add) {
    double t = time;
    const auto end = static_cast<double>(static_cast<std::int64_t>(t) + len);
    std::int64_t made = 0;
    while (t < end) {
        const std::int64_t i = floorOf(t);
        Side<Sample, -1> left{src + i};
        Side<Sample, 1> right{src + i + 1};
        add(left, right, t - static_cast<double>(i));
        store((sumLanes(left.sum) + sumLanes(right.sum)) * gain, dst + made);
        ++made;
        const double before = t;
        t += step;
        if (t == before) break;  // so late that a step is lost in rounding
    }
    time = t;
    return made;
}

template <class Sample>
std::int64_t resampleSamples(const Variable& state, const Sample* src, int len, Sample* dst, double factor, double norm,
                             double& time) {
    const double step = 1 / factor;
    if (factor < 1) {
        const Stretched stretched(state, factor);
        const auto add = [&](auto& left, auto& right, double f) __attribute__((always_inline)) {
            stretched.addTo(left, right, f);
        };
        return overTime(src, len, dst, step, norm * factor * state.tableNorm, time, add);
    }
    const Comb comb(state);
    const auto add = [&](auto& left, auto& right, double f) __attribute__((always_inline)) {
        comb.addTo(left, f);
        comb.addTo(right, 1 - f);
    };
    return overTime(src, len, dst, step, norm * state.tableNorm, time, add);
}

}  // namespace

std::int64_t tableLength(int nStep, Vorn32f window) {
    if (!(window >= 2.0f / static_cast<Vorn32f>(nStep))) return 0;
    const Vorn32f half = window * 0.5f * static_cast<Vorn32f>(nStep);
    return half < 0x1p28f ? static_cast<std::int64_t>(half) + 1 : 0;  // no single lies between 0xFFFFFFD and 2^28
}

void* makeVariable(int nStep, std::int64_t tableLen, Vorn32f cutOff, Vorn32f alpha, Table table, int flags) {
    const VariableLayout layout(nStep, tableLen);
    Scratch<double> block(layout.total);
    if (!block) return nullptr;
    double* points = &block[layout.points];
    const WindowedSinc filter(nStep, tableLen, cutOff, alpha);
    for (std::int64_t i = 0; i < tableLen; ++i) points[i] = filter.at(i);
    auto* state = reinterpret_cast<Variable*>(block.get());
    state->invStep = 1.0 / nStep;
    state->nStep = nStep;
    state->tableLen = static_cast<int>(tableLen);
    state->flags = flags;
    state->pTable = &block[layout.table];
    if (table == Table::single) {
        storeTable(static_cast<Vorn32f*>(state->pTable), points, tableLen, state->tableNorm);
    } else {
        storeTable(static_cast<Vorn16s*>(state->pTable), points, tableLen, state->tableNorm);
    }
    storePhases(points, nStep, tableLen, layout, &block[layout.rows]);
    state->points = points;
    state->phases = &block[layout.rows];
    state->phaseLen = layout.phaseLen;
    return block.release();
}

std::int64_t resample(const Variable& state, const Vorn32f* src, int len, Vorn32f* dst, double factor, double norm,
                      double& time) {
    return resampleSamples(state, src, len, dst, factor, norm, time);
}
std::int64_t resample(const Variable& state, const Vorn16s* src, int len, Vorn16s* dst, double factor, double norm,
                      double& time) {
    return resampleSamples(state, src, len, dst, factor, norm, time);
}

}  // namespace vorn::resampling
