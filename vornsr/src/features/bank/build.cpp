#include "features/bank/build.h"

#include <algorithm>
#include <bit>
#include <climits>

#include "elementary/elementary.h"
#include "features/bank/pieces.h"
#include "frame/memory.h"
#include "simd/simd.h"

namespace vorn {
namespace {

// Everything but centres and weights.
template <class Form, class Pieces>
VornStatus makeBank(typename Form::State& bank, const BankShape& shape, int flags, Pieces& pieces) {
    bank = bankRecord<Form>(shape, flags);
    if (const VornStatus status = makeTables(bank, shape, pieces)) return status;
    if ((flags & vornFBankSamples) == 0) return vornStsNoErr;

    int specSize, initSize, workSize;
    if (const VornStatus status = Form::transformSizes(shape.fftOrder, &specSize, &initSize, &workSize)) return status;
    using Weight = typename Form::Weight;
    bank.pWork = pieces.template take<Weight>(shape.spectrumLen() + roundUp(workSize, sizeof(Weight)) /
                                                                        static_cast<std::int64_t>(sizeof(Weight)));
    if (bank.pWork == nullptr) return vornStsMemAllocErr;
    return pieces.template makeTransform<Form>(&bank.pFftSpec, shape.fftOrder, specSize, initSize);
}

// What edges become that the arguments say nothing of: the first argument that is not a number, otherwise what the
// processor makes of 0/0. Its sign decides the bin. Which of two not-a-numbers an operation hands on is left to the
// compiler, so it must not be asked.
template <class... Arguments>
Vorn32f missingEdge(Arguments... arguments) {
    const Vorn32f all[] = {arguments...};
    for (Vorn32f argument : all) {
        if (argument != argument) return argument;
    }
    return std::bit_cast<Vorn32f>(0xFFC00000u);
}

// The bins of x in hertz-like units, rounded or truncated.
void toBins(Vorn32f* x, Vorn32f missing, Vorn32s* bins, int count, int flags) {
    for (int i = 0; i < count; ++i) x[i] = x[i] == x[i] ? x[i] : missing;
    vornsConvert_32f32s_Sfs(x, bins, count, flags & vornFBankWeightFreq ? vornRndNear : vornRndZero, 0);
}

Vorn32f melOf(const MelScale& scale, Vorn32f ratioPlusOne) {
    return static_cast<Vorn32f>(scale.melMul * log64(ratioPlusOne));
}

// The mel values of count edges from low to high, equally spaced, into mel; their bins into centers. The product of the
// two steps stays in single; bins has as many elements as mel, and may be it.
void melEdges(int count, Vorn32f low, Vorn32f high, Vorn32f binScale, const MelScale& scale, int flags, Vorn32f* mel,
              Vorn32f* bins, Vorn32s* centers) {
    const Vorn32f melLow = melOf(scale, low / scale.melDiv + 1.0f);
    const Vorn32f range = melOf(scale, high / scale.melDiv + 1.0f) - melLow;
    for (int i = 0; i < count; ++i) {
        mel[i] = static_cast<Vorn32f>(i) * range / static_cast<Vorn32f>(count - 1) + melLow;
    }
    for (int first = 0; first < count; first += weightRun) {
        const int n = std::min(count - first, weightRun);
        alignas(64) double run[weightRun] = {};
        for (int i = 0; i < n; ++i) run[i] = mel[first + i] / scale.melMul;
        bank::exponentials(run, n);
        for (int i = 0; i < n; ++i) bins[first + i] = static_cast<Vorn32f>(run[i] - 1.0) * binScale;
    }
    toBins(bins, missingEdge(low, high, scale.melMul, scale.melDiv), centers, count, flags);
}

// Centres and weights. first and second: shape.rows() elements each to work in.
template <class Form>
void fillBank(typename Form::State& bank, const BankShape& shape, const MelBank& mel, Vorn32f* first, Vorn32f* second) {
    const Vorn32f binScale = static_cast<Vorn32f>(shape.fftLen) / mel.sampleFreq * mel.scale.melDiv;
    melEdges(static_cast<int>(shape.rows()), mel.lowFreq, mel.highFreq, binScale, mel.scale, mel.flags, first, second,
             bank.pCenters);
    if (mel.flags & vornFBankWeightFreq) {
        fillWeights<Form>(bank, shape, StraightSides<Form>{bank.pCenters, {}});
    } else {
        const Vorn32f binHz = mel.sampleFreq / static_cast<Vorn32f>(shape.fftLen);
        fillWeights<Form>(bank, shape, MelSides<Form>{first, BinMels(mel.scale, binHz)});
    }
}

template <class Form>
void fillBank(typename Form::State& bank, const BankShape& shape, const MixedBank& mixed, Vorn32f* first,
              Vorn32f* second) {
    const auto& [sampleFreq, lowFreq, highFreq, highLinFreq, nLinear, scale, flags] = mixed;
    bank.nLinear = nLinear;
    const bool allLinear = nLinear == shape.nFilter;
    const int lastEdge = allLinear ? shape.nFilter + 1 : nLinear;
    const Vorn32f binsPerHz = static_cast<Vorn32f>(shape.fftLen) / sampleFreq, range = highLinFreq - lowFreq;
    Vorn32f* hertz = first;
    for (int i = 0; i <= lastEdge; ++i) {
        hertz[i] = static_cast<Vorn32f>(i) * range / static_cast<Vorn32f>(lastEdge) + lowFreq;
        second[i] = hertz[i] * binsPerHz;
    }
    toBins(second, missingEdge(highLinFreq), bank.pCenters, lastEdge + 1, flags);
    if (!allLinear) {
        melEdges(shape.nFilter - nLinear + 2, highLinFreq, highFreq, binsPerHz * scale.melDiv, scale, flags, second,
                 second, bank.pCenters + nLinear);
    }
    const StraightSides<Form> straight{bank.pCenters, {}};
    if (flags & vornFBankWeightFreq) return fillWeights<Form>(bank, shape, straight);

    Vorn32f* mel = first;
    for (int edge = 0; edge <= lastEdge; edge += weightRun) {
        const int n = std::min(lastEdge + 1 - edge, weightRun);
        alignas(64) double run[weightRun] = {};
        for (int i = 0; i < n; ++i) run[i] = static_cast<double>(hertz[edge + i] / scale.melDiv) + 1.0;
        bank::logarithms(run, n);
        for (int i = 0; i < n; ++i) mel[edge + i] = static_cast<Vorn32f>(run[i]) * scale.melMul;
    }
    const Vorn32f binHz = sampleFreq / static_cast<Vorn32f>(shape.fftLen);
    fillWeights<Form>(bank, shape, MixedSides<Form>{straight, mel, lastEdge, BinMels(scale, binHz)});
}

// The same, and what the record says of it.
template <class Form, class Description>
void completeBank(typename Form::State& bank, const BankShape& shape, const Description& description, Vorn32f* first,
                  Vorn32f* second) {
    fillBank<Form>(bank, shape, description, first, second);
    bank.melMul = description.scale.melMul;
    bank.melDiv = description.scale.melDiv;
    bank.ready = 1;
}

// Releases what a record names.
template <class Form>
void freePieces(typename Form::State& bank) {
    vornsFree(bank.pCenters);
    vornsFree(bank.ppRise);
    vornsFree(bank.ppFall);
    vornsFree(bank.pWork);
    if (bank.pFftSpec != nullptr) Form::freeTransform(bank.pFftSpec);
    bank.pCenters = nullptr;
    bank.ppRise = nullptr;
    bank.ppFall = nullptr;
    bank.pWork = nullptr;
    bank.pFftSpec = nullptr;
}

}  // namespace

void FBankForm_32f::fractions(std::int64_t part, std::int64_t slope, std::int64_t whole, int count, Vorn32f* weight) {
    const auto divisor = static_cast<Vorn32f>(whole);
    if (whole <= INT_MAX) {
        const int first = static_cast<int>(part), step = static_cast<int>(slope);
        for (int i = 0; i < count; ++i) weight[i] = static_cast<Vorn32f>(first + step * i) / divisor;
    } else {
        for (int i = 0; i < count; ++i) weight[i] = static_cast<Vorn32f>(part + slope * i) / divisor;
    }
}
void FBankForm_32f::weights(const double* quotient, int count, Vorn32f* weight) {
    for (int i = 0; i < count; ++i) weight[i] = static_cast<Vorn32f>(quotient[i]);
}

// Up to a whole of 2^23 a quotient in double is truncated to the right integer: one that is not an integer itself stays
// 2^-23 below the next one, which is not above 2^30, and is rounded by less.
void fixedFractions(std::int64_t part, std::int64_t slope, std::int64_t whole, int count, int bits, Vorn32s* weight) {
    const std::int64_t one = std::int64_t{1} << bits;
    if (whole < 1 << 23) {
        const auto first = static_cast<double>(part * one), step = static_cast<double>(slope * one);
        const auto divisor = static_cast<double>(whole);
        for (int i = 0; i < count; ++i) weight[i] = static_cast<Vorn32s>((first + step * i) / divisor);
    } else {
        for (int i = 0; i < count; ++i) weight[i] = static_cast<Vorn32s>((part + slope * i) * one / whole);
    }
}
void truncatedWeights(const double* quotient, int count, Vorn32s* weight) {
    int i = 0;
    for (; i + 4 <= count; i += 4) {
        store(weight + i, truncToInt(load<f64x2>(quotient + i), load<f64x2>(quotient + i + 2)));
    }
    for (; i < count; ++i) {
        const auto single = splat<f64x2>(quotient[i]);
        weight[i] = firstLane(truncToInt(single, single));
    }
}

int transformOrder(int len) {
    int order = 1;
    while ((std::int64_t{1} << order) < len) ++order;
    return order;
}

template <class Form>
std::int64_t bankSize(const BankShape& shape, int flags) {
    std::int64_t size = tablesSize<Form>(shape);
    if (flags & vornFBankSamples) {
        int specSize, initSize, workSize;
        if (const VornStatus status = Form::transformSizes(shape.fftOrder, &specSize, &initSize, &workSize))
            return status;
        size += 96 + 40 + 4 * std::int64_t{shape.fftLen} + specSize + initSize + workSize;
    }
    return size;
}

template <class Form>
VornStatus initMelBank(void* block, const BankShape& shape, const MelBank& mel) {
    return bankInBlock<Form>(block, [&](typename Form::State& bank, BlockPieces& pieces) {
        if (const VornStatus status = makeBank<Form>(bank, shape, mel.flags, pieces)) return status;
        auto* work = pieces.take<Vorn32f>(shape.rows());
        completeBank<Form>(bank, shape, mel, work, pieces.take<Vorn32f>(shape.rows()));
        return VornStatus{vornStsNoErr};
    });
}

template <class Form, class Description>
VornStatus allocateBank(typename Form::State** out, const BankShape& shape, const Description& description) {
    return allocatedBank<Form>(out, [&](typename Form::State& bank, AllocatedPieces& pieces) {
        if (const VornStatus status = makeBank<Form>(bank, shape, description.flags, pieces)) return status;
        const Scratch<Vorn32f> work(2 * shape.rows());
        if (!work) return VornStatus{vornStsMemAllocErr};
        completeBank<Form>(bank, shape, description, work.get(), work.get() + shape.rows());
        return VornStatus{vornStsNoErr};
    });
}

template <class Form>
VornStatus allocateEmptyBank(typename Form::State** out, const BankShape& shape, bool forSamples) {
    AllocatedPieces pieces;
    auto* bank = pieces.take<typename Form::State>(1);
    *out = bank;
    if (bank == nullptr) return vornStsMemAllocErr;
    const VornStatus status = makeBank<Form>(*bank, shape, forSamples ? vornFBankSamples : 0, pieces);
    if (status != vornStsNoErr) freePieces<Form>(*bank);
    // Whatever was asked for, the bank says of itself that it takes spectra: what was made for samples stays unused.
    bank->flags = vornFBankWeightMel;
    bank->melDiv = 1.0f;
    return status;
}

template <class Form>
void freeBank(typename Form::State* bank) {
    bank->ready = 0;
    freePieces<Form>(*bank);
    vornsFree(bank);
}

template std::int64_t bankSize<FBankForm_32f>(const BankShape&, int);
template std::int64_t bankSize<FBankForm_16s>(const BankShape&, int);
template VornStatus initMelBank<FBankForm_32f>(void*, const BankShape&, const MelBank&);
template VornStatus initMelBank<FBankForm_16s>(void*, const BankShape&, const MelBank&);
template VornStatus allocateBank<FBankForm_32f>(VornFBankState_32f**, const BankShape&, const MelBank&);
template VornStatus allocateBank<FBankForm_16s>(VornFBankState_16s**, const BankShape&, const MelBank&);
template VornStatus allocateBank<FBankForm_32f>(VornFBankState_32f**, const BankShape&, const MixedBank&);
template VornStatus allocateBank<FBankForm_16s>(VornFBankState_16s**, const BankShape&, const MixedBank&);
template VornStatus allocateEmptyBank<FBankForm_32f>(VornFBankState_32f**, const BankShape&, bool);
template VornStatus allocateEmptyBank<FBankForm_16s>(VornFBankState_16s**, const BankShape&, bool);
template void freeBank<FBankForm_32f>(VornFBankState_32f*);
template void freeBank<FBankForm_16s>(VornFBankState_16s*);

}  // namespace vorn
