// The weights of filters between their edges. Each kind of bank says the weight of a rising side at a bin and of a
// falling one, of filter k from 1 on; element 0 of a rising row belongs to the left edge itself.
#pragma once

#include <algorithm>
#include <cstdint>

#include "elementary/elementary.h"
#include "features/bank/filter_bank.h"

namespace vorn {

struct MelScale {
    Vorn32f melMul, melDiv;

    // The mel value of a frequency in units of melDiv, which is a single.
    double at(Vorn32f ratio) const { return melMul * log64(static_cast<double>(ratio) + 1.0); }
    double atBin(std::int64_t bin, Vorn32f binHz) const { return at(static_cast<Vorn32f>(bin) * binHz / melDiv); }
};

// Straight lines in bin number.
template <class Form>
struct StraightSides {
    const Vorn32s* center;
    typename Form::Weight rise(std::int64_t k, std::int64_t bin) const {
        return Form::fraction(bin - center[k - 1] + 1, std::int64_t{center[k]} - center[k - 1] + 1);
    }
    typename Form::Weight fall(std::int64_t k, std::int64_t bin) const {
        return Form::fraction(center[k + 1] - bin + 1, std::int64_t{center[k + 1]} - center[k] + 1);
    }
};

// Along the mel scale, from the mel values of edges and centre; nothing is clamped, so that truncated centres can give
// weights a little outside 0 to 1.
template <class Form>
struct MelSides {
    const Vorn32s* center;
    const Vorn32f* mel;
    MelScale scale;
    Vorn32f binHz;

    Vorn32f melAt(std::int64_t bin) const { return static_cast<Vorn32f>(scale.atBin(bin, binHz)); }
    typename Form::Weight rise(std::int64_t k, std::int64_t bin) const {
        if (bin == center[k - 1]) return 0;
        return Form::quotient(melAt(bin) - mel[k - 1], mel[k] - mel[k - 1]);
    }
    typename Form::Weight fall(std::int64_t k, std::int64_t bin) const {
        return Form::quotient(mel[k + 1] - melAt(bin), mel[k + 1] - mel[k]);
    }
};

// A bank that is spaced in hertz up to an edge and in mel above it. Up to that edge the weights follow the mel scale,
// with quotients in double; above it they are straight lines in bin number. On the way between the two, behind the
// centre at that edge, a mel value is taken from a bin number: that is how these banks are, and it stays. None is below
// zero; a not-a-number and a negative zero pass.
template <class Form>
struct MixedSides {
    using Weight = typename Form::Weight;
    StraightSides<Form> straight;
    const Vorn32f* mel;  // of the edges 0 to lastEdge
    std::int64_t lastEdge;
    MelScale scale;
    Vorn32f binHz;

    Weight rise(std::int64_t k, std::int64_t bin) const {
        if (k > lastEdge) return straight.rise(k, bin);
        return notNegative(Form::quotient(scale.atBin(bin, binHz) - mel[k - 1], double{mel[k] - mel[k - 1]}));
    }
    Weight fall(std::int64_t k, std::int64_t bin) const {
        if (k > lastEdge) return straight.fall(k, bin);
        if (k == lastEdge) return notNegative(fallFromBinToMel(k, bin));
        return notNegative(Form::quotient(mel[k + 1] - scale.atBin(bin, binHz), double{mel[k + 1] - mel[k]}));
    }

private:
    Weight fallFromBinToMel(std::int64_t k, std::int64_t bin) const {
        const std::int64_t edge = straight.center[k + 1];
        const auto part = static_cast<Vorn32f>(static_cast<double>(edge) - scale.atBin(bin, binHz));
        return Form::quotient(part, static_cast<Vorn32f>(edge - straight.center[k]));
    }
    static Weight notNegative(Weight weight) { return weight < 0 ? Weight(0) : weight; }
};

// Weights that have no place in their row are left out.
template <class State, class Shape, class Sides>
void fillWeights(State& bank, const Shape& shape, const Sides& sides) {
    const Vorn32s* center = bank.pCenters;
    for (std::int64_t k = 1; k <= bank.nFilter; ++k) {
        const std::int64_t left = center[k - 1], middle = center[k], right = center[k + 1];
        const std::int64_t riseEnd = std::min(middle + 1, left + shape.riseCapacity());
        const std::int64_t fallEnd = std::min(right + 1, middle + 1 + shape.fallCapacity());
        for (std::int64_t bin = left; bin < riseEnd; ++bin) bank.ppRise[k - 1][bin - left] = sides.rise(k, bin);
        for (std::int64_t bin = middle + 1; bin < fallEnd; ++bin)
            bank.ppFall[k - 1][bin - middle - 1] = sides.fall(k, bin);
    }
}

}  // namespace vorn
