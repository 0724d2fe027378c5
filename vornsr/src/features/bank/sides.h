// The weights of filters between their edges. Each kind of bank says how a weight follows from its bin, or from the mel
// value of its bin, on the rising and on the falling side of filter k, counted from 1.
#pragma once

#include <algorithm>
#include <cstdint>

#include "elementary/elementary.h"
#include "elementary/lanes.h"
#include "features/bank/filter_bank.h"

namespace vorn {

struct MelScale {
    Vorn32f melMul, melDiv;
};

namespace bank {

// exp64 and log64 of count numbers, where a register of them is ordinary all at once; count rounded up to whole
// registers, of which all are there.
VORN_INLINE bool allOrdinary(f64xN x, double lowest, double bound) {
    return all((x >= splat<f64xN>(lowest)) & (x < splat<f64xN>(bound)));
}
inline void logarithms(double* x, int count) {
    for (int i = 0; i < count; i += f64xN::lanes) {
        const f64xN argument = load<f64xN>(x + i);
        if (allOrdinary(argument, 0x1p-1022, 0x1p1000)) [[likely]] {
            store(x + i, logOfNormal(argument));
        } else {
            for (int k = i; k < i + f64xN::lanes; ++k) x[k] = log64(x[k]);
        }
    }
}
inline void exponentials(double* x, int count) {
    for (int i = 0; i < count; i += f64xN::lanes) {
        const f64xN argument = load<f64xN>(x + i);
        if (allOrdinary(argument, -700.0, 700.0)) [[likely]] {
            store(x + i, expOfModerate(argument));
        } else {
            for (int k = i; k < i + f64xN::lanes; ++k) x[k] = exp64(x[k]);
        }
    }
}

}  // namespace bank

// Bins in a row whose weights are made at once.
inline constexpr int weightRun = 64;

// The mel values of the bins, in double: melMul ln(bin binHz / melDiv + 1), the ratio in single. They are made in runs;
// whoever asks for rising bins meets each once.
class BinMels {
public:
    BinMels(const MelScale& scale, Vorn32f binHz) : scale_(scale), binHz_(binHz) {}

    // count values, up to weightRun; they stay until the next call.
    const double* at(std::int64_t bin, int count) {
        if (bin < first_ || bin + count > end_) make(bin);
        return mel_ + (bin - first_);
    }

private:
    void make(std::int64_t bin) {
        first_ = bin;
        end_ = bin + weightRun;
        for (int i = 0; i < weightRun; ++i) {
            mel_[i] = static_cast<double>(static_cast<Vorn32f>(bin + i) * binHz_ / scale_.melDiv) + 1.0;
        }
        bank::logarithms(mel_, weightRun);
        for (double& mel : mel_) mel = scale_.melMul * mel;
    }

    MelScale scale_;
    Vorn32f binHz_;
    std::int64_t first_ = 0, end_ = 0;
    alignas(64) double mel_[weightRun];
};

// What a side of a filter is: fill() makes count weights, up to weightRun, from element `element` of the side on, which
// stands at bin. Quotients in double keep what was computed in single.

// (first + slope e) / whole.
template <class Form>
struct StraightSide {
    std::int64_t first, slope, whole;
    template <class Mels>
    void fill(Mels&, std::int64_t, std::int64_t element, int count, typename Form::Weight* row) const {
        Form::fractions(first + slope * element, slope, whole, count, row);
    }
};
// The signed distance of the mel value from an edge, over the distance of edge and centre; in single or in double.
template <class Form, class Float>
struct MelSide {
    Float edge, whole;
    bool falls;
    void fill(BinMels& mels, std::int64_t bin, std::int64_t, int count, typename Form::Weight* row) const {
        const double* mel = mels.at(bin, count);
        double quotient[weightRun];
        for (int i = 0; i < count; ++i) {
            const auto at = static_cast<Float>(mel[i]);
            quotient[i] = (falls ? edge - at : at - edge) * Float(Form::unit) / whole;
        }
        Form::weights(quotient, count, row);
    }
};
// A mel value taken from a bin number, rounded to single.
template <class Form>
struct BinLessMelSide {
    double edge;
    Vorn32f whole;
    void fill(BinMels& mels, std::int64_t bin, std::int64_t, int count, typename Form::Weight* row) const {
        const double* mel = mels.at(bin, count);
        double quotient[weightRun];
        for (int i = 0; i < count; ++i) quotient[i] = static_cast<Vorn32f>(edge - mel[i]) * Form::unit / whole;
        Form::weights(quotient, count, row);
    }
};

// Straight lines everywhere. use(side) is handed what the side is.
template <class Form>
struct StraightSides {
    static constexpr bool startsAtZero = false, limited = false;
    const Vorn32s* center;
    struct {
    } mels;  // none are asked for

    template <class Use>
    void rising(std::int64_t k, const Use& use) const {
        use(StraightSide<Form>{1, 1, std::int64_t{center[k]} - center[k - 1] + 1});
    }
    template <class Use>
    void falling(std::int64_t k, const Use& use) const {
        const std::int64_t width = std::int64_t{center[k + 1]} - center[k];
        use(StraightSide<Form>{width, -1, width + 1});
    }
};

// Along the mel scale, from the mel values of edges and centre, with 0 at the left edge; nothing is clamped, so that
// truncated centres can give weights a little outside 0 to 1.
template <class Form>
struct MelSides {
    static constexpr bool startsAtZero = true, limited = false;
    const Vorn32f* mel;
    BinMels mels;

    template <class Use>
    void rising(std::int64_t k, const Use& use) const {
        use(MelSide<Form, Vorn32f>{mel[k - 1], mel[k] - mel[k - 1], false});
    }
    template <class Use>
    void falling(std::int64_t k, const Use& use) const {
        use(MelSide<Form, Vorn32f>{mel[k + 1], mel[k + 1] - mel[k], true});
    }
};

// A bank that is spaced in hertz up to an edge and in mel above it. Up to that edge the weights follow the mel scale,
// with quotients in double; above it they are straight lines in bin number. On the way between the two, behind the
// centre at that edge, a mel value is taken from a bin number: that is how these banks are, and it stays. None is below
// zero; a not-a-number and a negative zero pass.
template <class Form>
struct MixedSides {
    static constexpr bool startsAtZero = false, limited = true;
    StraightSides<Form> straight;
    const Vorn32f* mel;  // of the edges 0 to lastEdge
    std::int64_t lastEdge;
    BinMels mels;

    template <class Use>
    void rising(std::int64_t k, const Use& use) const {
        if (k > lastEdge) return straight.rising(k, use);
        use(MelSide<Form, double>{mel[k - 1], mel[k] - mel[k - 1], false});
    }
    template <class Use>
    void falling(std::int64_t k, const Use& use) const {
        if (k > lastEdge) return straight.falling(k, use);
        if (k < lastEdge) return use(MelSide<Form, double>{mel[k + 1], mel[k + 1] - mel[k], true});
        const std::int64_t edge = straight.center[k + 1];
        use(BinLessMelSide<Form>{static_cast<double>(edge), static_cast<Vorn32f>(edge - straight.center[k])});
    }
};

// count weights of a side from its bin on.
template <class Form, class Side, class Sides>
void fillSide(const Side& side, Sides& sides, std::int64_t bin, std::int64_t count, typename Form::Weight* row) {
    for (std::int64_t i = 0; i < count; i += weightRun) {
        const int n = static_cast<int>(std::min<std::int64_t>(count - i, weightRun));
        side.fill(sides.mels, bin + i, i, n, row + i);
        if constexpr (Sides::limited) {
            for (int e = 0; e < n; ++e) row[i + e] = row[i + e] < 0 ? 0 : row[i + e];
        }
    }
}

// All weights. Those that have no place in their row are left out. Each stretch between two edges has a falling and a
// rising side, which ask for the mel values of the same bins.
template <class Form, class State, class Shape, class Sides>
void fillWeights(State& bank, const Shape& shape, Sides sides) {
    for (std::int64_t k = 0; k <= bank.nFilter; ++k) {
        const std::int64_t left = bank.pCenters[k], width = std::int64_t{bank.pCenters[k + 1]} - left;
        if (k < bank.nFilter) {
            typename Form::Weight* row = bank.ppRise[k];
            sides.rising(k + 1, [&](const auto& side) {
                fillSide<Form>(side, sides, left, std::min(width + 1, shape.riseCapacity()), row);
            });
            if (Sides::startsAtZero && width >= 0) row[0] = 0;
        }
        if (k > 0) {
            sides.falling(k, [&](const auto& side) {
                fillSide<Form>(side, sides, left + 1, std::min(width, shape.fallCapacity()), bank.ppFall[k - 1]);
            });
        }
    }
}

}  // namespace vorn
