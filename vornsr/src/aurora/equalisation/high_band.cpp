// Coding of the energies of a high band as corrections of the low one: the exported functions, and their arithmetic.
#include <algorithm>
#include <cstdint>

#include "features/bank/sides.h"
#include "frame/checks.h"
#include "reductions/scaled_result.h"
#include "vornsr/aurora.h"
#include "vornsr/signal.h"

namespace vorn::equalisation {
namespace {

// Bins of a spectrum, the last one included.
struct Bins {
    int first, last;
    constexpr int count() const { return last - first + 1; }
};
constexpr int codes = 3;
constexpr Bins lowReferences[codes] = {{33, 38}, {39, 48}, {49, 64}};
constexpr Bins highReferences[codes] = {{66, 76}, {78, 96}, {98, 128}};

// What is coded: the energies, then their logarithms. The references of the two spectra, and the high bands.
template <class T>
struct Nine {
    static constexpr int count = 3 * codes;
    T of[count];
    T& low(int j) { return of[j]; }
    T& band(int i) { return of[codes + i]; }
    T& high(int j) { return of[2 * codes + j]; }
};

struct Singles {
    using Element = Vorn32f;

    // The first two are added up in order, in single; all other sums are made in double.
    static Vorn32f lowEnergy(const Vorn32f* spectrum, int j) {
        if (j == 2) return accurateSum(spectrum, lowReferences[j]);
        const auto [first, last] = lowReferences[j];
        Vorn32f sum = spectrum[first];
        for (int i = first + 1; i <= last; ++i) sum += spectrum[i];
        return sum;
    }
    static Vorn32f highEnergy(const Vorn32f* spectrum, int j) {
        return 0.5f * accurateSum(spectrum, highReferences[j]);
    }

    // Made in double and rounded to single. Up to the least energy, and where there is no number, they are -10.
    static void takeLogarithms(Nine<Vorn32f>& values) {
        constexpr double leastEnergy = 0x1.7cd79b5647c9bp-15;  // exp(-10)
        constexpr int lanes = f64xN::lanes, rounded = (Nine<Vorn32f>::count + lanes - 1) / lanes * lanes;
        double x[rounded];
        for (int k = 0; k < rounded; ++k) x[k] = k < values.count && values.of[k] > leastEnergy ? values.of[k] : 1.0;
        bank::logarithms(x, rounded);
        for (int k = 0; k < values.count; ++k) {
            values.of[k] = values.of[k] > leastEnergy ? static_cast<Vorn32f>(x[k]) : -10.0f;
        }
    }

    static Vorn32f code(const Vorn32f (&excess)[codes]) {
        return excess[2] * 0.7f + excess[1] * 0.2f + excess[0] * 0.1f;
    }

private:
    static Vorn32f accurateSum(const Vorn32f* spectrum, Bins bins) {
        constexpr int accurately = 2;
        Vorn32f sum;
        vornsSum_32f(spectrum + bins.first, bins.count(), &sum, accurately);
        return sum;
    }
};

// Logarithms in Q7.
struct Integers {
    using Element = Vorn32s;
    static constexpr int fractionBits = 7, highShift = 3;

    static Vorn32s lowEnergy(const Vorn32s* spectrum, int j) { return sum(spectrum, lowReferences[j], 0); }
    static Vorn32s highEnergy(const Vorn32s* spectrum, int j) { return sum(spectrum, highReferences[j], highShift); }

    // Those of high energies get ln 4, for their scale and the half that they were not multiplied by. Below 1 there is
    // no logarithm: -10.
    static void takeLogarithms(Nine<Vorn32s>& energies) {
        constexpr Vorn32s least = -10 * (1 << fractionBits), lnOfFour = 177;
        Nine<Vorn32s> x;
        for (int k = 0; k < x.count; ++k) x.of[k] = std::max(energies.of[k], 1);
        vornsLn_32s_ISfs(x.of, x.count, -fractionBits);
        for (int j = 0; j < codes; ++j) x.high(j) += lnOfFour;
        for (int k = 0; k < x.count; ++k) energies.of[k] = energies.of[k] > 0 ? x.of[k] : least;
    }

    // The weights 0.1, 0.2, 0.7 in Q10; each product is rounded down by itself.
    static Vorn32s code(const Vorn32s (&excess)[codes]) {
        return (102 * excess[0] >> 10) + (205 * excess[1] >> 10) + (717 * excess[2] >> 10);
    }

    // From Q7: to the left by -(scaleFactor + 7), or to the right by scaleFactor + 7; modulo 32.
    static Vorn32s scaled(Vorn32s value, int scaleFactor) {
        const std::uint32_t count = static_cast<std::uint32_t>(scaleFactor) + fractionBits;
        if (scaleFactor < -fractionBits)
            return static_cast<Vorn32s>(static_cast<std::uint32_t>(value) << (-count & 31));
        return value >> (count & 31);
    }

private:
    // As vornsSum_32s_Sfs, for sums that are short.
    static Vorn32s sum(const Vorn32s* spectrum, Bins bins, int scaleFactor) {
        std::int64_t total = 0;
        for (int i = bins.first; i <= bins.last; ++i) total += spectrum[i];
        return scaledSum<Vorn32s>(total, scaleFactor, -31, 63);
    }
};

// How far the logarithms of the high spectrum stand above the low spectrum less the band, weighted. All is read before
// anything is written: dst may be any of the sources.
template <class Family, class T>
void codeHighBand(const T* highBands, const T* lowSpec, const T* highSpec, T (&code)[codes]) {
    Nine<T> logarithm;
    for (int i = 0; i < codes; ++i) {
        logarithm.low(i) = Family::lowEnergy(lowSpec, i);
        logarithm.band(i) = highBands[i];
        logarithm.high(i) = Family::highEnergy(highSpec, i);
    }
    Family::takeLogarithms(logarithm);
    for (int i = 0; i < codes; ++i) {
        T excess[codes];
        for (int j = 0; j < codes; ++j) {
            excess[j] = logarithm.high(j) - (logarithm.low(j) - logarithm.band(i));
        }
        code[i] = Family::code(excess);
    }
}

}  // namespace
}  // namespace vorn::equalisation

using namespace vorn;

VornStatus vornsHighBandCoding_Aurora_32f(const Vorn32f* highBands, const Vorn32f* lowSpec, const Vorn32f* highSpec,
                                          Vorn32f* dst) {
    VORN_CHECK(notNull(highBands, lowSpec, highSpec, dst));
    Vorn32f code[equalisation::codes];
    equalisation::codeHighBand<equalisation::Singles>(highBands, lowSpec, highSpec, code);
    std::copy_n(code, equalisation::codes, dst);
    return vornStsNoErr;
}

VornStatus vornsHighBandCoding_Aurora_32s_Sfs(const Vorn32s* highBands, const Vorn32s* lowSpec, const Vorn32s* highSpec,
                                              Vorn32s* dst, int scaleFactor) {
    VORN_CHECK(notNull(highBands, lowSpec, highSpec, dst));
    Vorn32s code[equalisation::codes];
    equalisation::codeHighBand<equalisation::Integers>(highBands, lowSpec, highSpec, code);
    for (int i = 0; i < equalisation::codes; ++i) dst[i] = equalisation::Integers::scaled(code[i], scaleFactor);
    return vornStsNoErr;
}
