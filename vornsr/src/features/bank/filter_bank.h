// The filter bank context: its records, the layout of its pieces, and what differs between its element forms.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "frame/align.h"
#include "vornsr/features.h"
#include "vornsr/fft.h"
#include "vornsr/signal.h"

struct VornFBankState_32f {
    Vorn32s* pCenters;  // nFilter + 2 bins: the left edge of the first filter, the centres, the right edge of the last
    Vorn32f** ppRise;   // row k: the weights of filter k at its left edge, ..., its centre
    Vorn32f** ppFall;   // row k: the weights of filter k behind its centre, ..., at its right edge
    int flags;
    int fftLen;  // a power of two
    int fftOrder;
    int nFilter;
    int nLinear;
    Vorn32f melMul;
    Vorn32f melDiv;
    Vorn8u ready;
    VornsFFTSpec* pFftSpec;
    Vorn32f* pWork;  // fftLen + 2 elements, and behind them the transform's own work area
};

// Weights in Q14.
struct VornFBankState_16s {
    Vorn32s* pCenters;
    Vorn32s** ppRise;
    Vorn32s** ppFall;
    int flags;
    int fftLen;
    int fftOrder;
    int nFilter;
    int nLinear;
    Vorn32f melMul;
    Vorn32f melDiv;
    Vorn8u ready;
    VornsFFTFixedSpec* pFftSpec;
    Vorn32s* pWork;
    int weightShift;  // 14
};

// Weights in Q30, and nothing that a transform would need.
struct VornFBankState_32s {
    Vorn32s* pCenters;
    Vorn32s** ppRise;
    Vorn32s** ppFall;
    int flags;
    int nFilter;
    int nBins;
};

namespace vorn {

// The sizes that follow from the transform length N and the number of filters.
struct BankShape {
    int fftLen, fftOrder, nFilter;
    int spareCenters = 0;  // elements of pCenters behind the last edge

    constexpr std::int64_t rows() const { return std::int64_t{nFilter} + 2; }
    constexpr std::int64_t centers() const { return rows() + spareCenters; }
    constexpr std::int64_t lastBin() const { return fftLen / 2; }
    // Rising rows begin 3 elements late: their element 1 and element 0 of a falling row stand at the same bin, and so
    // both are aligned there.
    static constexpr std::int64_t riseAdvance = 3;
    constexpr std::int64_t riseStride() const { return roundUp(lastBin() + riseAdvance, 8); }
    constexpr std::int64_t fallStride() const { return roundUp(lastBin(), 8); }
    constexpr std::int64_t riseCapacity() const { return riseStride() - riseAdvance; }
    constexpr std::int64_t fallCapacity() const { return fallStride(); }
    // Elements of pWork before the transform's work area.
    constexpr std::int64_t spectrumLen() const { return roundUp(std::int64_t{fftLen} + 2, 8); }
};

// The same of the integer bank: rows of N/2 elements, which hold every weight but one, that of the last bin on a side
// that rises from bin 0.
struct IntegerBankShape {
    int nBins, nFilter;

    std::int64_t rows() const { return std::int64_t{nFilter} + 2; }
    std::int64_t centers() const { return rows(); }
    std::int64_t lastBin() const { return nBins - 1; }
    static constexpr std::int64_t riseAdvance = 0;
    std::int64_t riseStride() const { return nBins - 1; }
    std::int64_t fallStride() const { return nBins - 1; }
    std::int64_t riseCapacity() const { return riseStride(); }
    std::int64_t fallCapacity() const { return fallStride(); }
};

// The element forms.

// What a form says of weights: fractions() makes (part + slope i) / whole, which is 0 to 1; unit is the factor of other
// quotients before their division, and weights() stores those.

// Integer quotients with so many fraction bits, truncated.
void fixedFractions(std::int64_t part, std::int64_t slope, std::int64_t whole, int count, int bits, Vorn32s* weight);
// Truncated; what no integer holds, and not-a-numbers, become the smallest one.
void truncatedWeights(const double* quotient, int count, Vorn32s* weight);

struct FBankForm_32f {
    using State = VornFBankState_32f;
    using Weight = Vorn32f;
    using Spec = VornsFFTSpec;
    static constexpr int stateSlot = 104;  // the record and its share of the alignment, in the reported size

    static VornStatus transformSizes(int order, int* spec, int* init, int* work) {
        return vornsFFTGetSize_R_32f(order, 8, 2, spec, init, work);
    }
    static VornStatus initTransform(Spec** spec, int order, Vorn8u* specMem, Vorn8u* initBuf) {
        return vornsFFTInit_R_32f(spec, order, 8, 2, specMem, initBuf);
    }
    static VornStatus allocateTransform(Spec** spec, int order) { return vornsFFTInitAlloc_R_32f(spec, order, 8, 2); }
    static void freeTransform(Spec* spec) { vornsFFTFree_R_32f(spec); }

    static void fixRecord(State&) {}
    static constexpr Vorn32f unit = 1.0f;
    static void fractions(std::int64_t part, std::int64_t slope, std::int64_t whole, int count, Weight* weight);
    static void weights(const double* quotient, int count, Weight* weight);
};

struct FBankForm_16s {
    using State = VornFBankState_16s;
    using Weight = Vorn32s;
    using Spec = VornsFFTFixedSpec;
    static constexpr int stateSlot = 112;
    static constexpr int weightShift = 14;

    static VornStatus transformSizes(int order, int* spec, int* init, int* work) {
        return vornsFFTGetSize_R_16s32s(order, 8, 2, spec, init, work);
    }
    static VornStatus initTransform(Spec** spec, int order, Vorn8u* specMem, Vorn8u* initBuf) {
        return vornsFFTInit_R_16s32s(spec, order, 8, 2, specMem, initBuf);
    }
    static VornStatus allocateTransform(Spec** spec, int order) {
        return vornsFFTInitAlloc_R_16s32s(spec, order, 8, 2);
    }
    static void freeTransform(Spec* spec) { vornsFFTFree_R_16s32s(spec); }

    static void fixRecord(State& bank) { bank.weightShift = weightShift; }
    static constexpr Vorn32f unit = 1 << weightShift;
    static void fractions(std::int64_t part, std::int64_t slope, std::int64_t whole, int count, Weight* weight) {
        fixedFractions(part, slope, whole, count, weightShift, weight);
    }
    static void weights(const double* quotient, int count, Weight* weight) {
        truncatedWeights(quotient, count, weight);
    }
};

// The integer bank knows straight sides alone.
struct FBankForm_32s {
    using State = VornFBankState_32s;
    using Weight = Vorn32s;
    static constexpr int weightShift = 30;

    static void fractions(std::int64_t part, std::int64_t slope, std::int64_t whole, int count, Weight* weight) {
        fixedFractions(part, slope, whole, count, weightShift, weight);
    }
};

}  // namespace vorn
