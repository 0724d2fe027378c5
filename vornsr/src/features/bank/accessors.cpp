// Centres and weights of filter banks, read and set by the caller.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>

#include "features/bank/filter_bank.h"
#include "features/pieces.h"
#include "frame/checks.h"
#include "simd/short_block.h"

using namespace vorn;

namespace vorn::bank {
namespace {

// A record where it stands or, in a block that does not begin where records do, a copy.
template <class State>
class Record {
public:
    explicit Record(const State* bank) : bank_(bank) {
        if (!isAligned(bank, alignof(State))) {
            copy_ = context::recordAt(bank);
            bank_ = &copy_;
        }
    }
    const State& operator*() const { return *bank_; }

private:
    const State* bank_;
    State copy_;
};

// Centres rise, if there are several; the last edge, of which nothing else is asked, stands in the spectrum.
VornStatus allowedCenters(const Vorn32s* center, const BankShape& shape) {
    bool wrong = center[0] < 0 || center[shape.nFilter + 1] > shape.lastBin();
    for (int i = 1; shape.nFilter > 1 && i <= shape.nFilter; ++i) wrong |= center[i - 1] > center[i];
    return require(!wrong, vornStsNotInitErr);
}

// The same elements elsewhere; there are few.
template <class T>
void copyElements(const T* src, T* dst, std::int64_t len) {
    const std::int64_t bytes = len * static_cast<std::int64_t>(sizeof(T));
    if (bytes > shortBytes) {
        std::memmove(dst, src, static_cast<std::size_t>(bytes));
    } else if (bytes > 0) {
        moveShort(reinterpret_cast<const Vorn8u*>(src), reinterpret_cast<Vorn8u*>(dst), bytes);
    }
}

template <class State>
BankShape shapeOf(const State& bank) {
    return {bank.fftLen, bank.fftOrder, bank.nFilter};
}

template <class State>
VornStatus getCenters(const State* pFBank, Vorn32s* pCenters) {
    VORN_CHECK(notNull(pCenters, pFBank));
    const Record<State> record(pFBank);
    const State& bank = *record;
    VORN_CHECK(notNull(bank.pCenters));
    VORN_CHECK(require(bank.ready != 0, vornStsNotInitErr));
    const BankShape shape = shapeOf(bank);
    VORN_CHECK(allowedCenters(bank.pCenters, shape));
    copyElements(bank.pCenters, pCenters, shape.rows());
    return vornStsNoErr;
}

template <class State>
VornStatus setCenters(State* pFBank, const Vorn32s* pCenters) {
    VORN_CHECK(notNull(pCenters, pFBank));
    const Record<State> record(pFBank);
    const State& bank = *record;
    VORN_CHECK(notNull(bank.pCenters));
    const BankShape shape = shapeOf(bank);
    VORN_CHECK(allowedCenters(pCenters, shape));
    copyElements(pCenters, bank.pCenters, shape.rows());
    reinterpret_cast<Vorn8u*>(pFBank)[offsetof(State, ready)] = 1;
    return vornStsNoErr;
}

// The weights of a filter, as they follow one another in the caller's vector. Edges that lie far apart or fall give a
// side no more bins than a spectrum has, and not fewer than none. The filter behind the last one has no right edge.
template <class State>
struct FilterSides {
    using Weight = std::remove_reference_t<decltype(**State::ppRise)>;
    Weight *rise, *fall;
    std::int64_t riseLen, fallLen;

    FilterSides(const State& bank, std::int64_t filter) : rise(bank.ppRise[filter - 1]), fall(bank.ppFall[filter - 1]) {
        const std::int64_t bins = shapeOf(bank).lastBin();
        const std::int64_t left = bank.pCenters[filter - 1], middle = bank.pCenters[filter];
        const std::int64_t right = filter <= bank.nFilter ? bank.pCenters[filter + 1] : middle;
        riseLen = std::clamp<std::int64_t>(middle - left + 1, 0, bins + 1);
        fallLen = std::clamp<std::int64_t>(right - middle, 0, bins);
    }
};

// Between weights and the singles of the caller. A power of two rounds nothing: one rounding, that to single.
void toCaller(const Vorn32f* weight, Vorn32f* coeff, std::int64_t len) { copyElements(weight, coeff, len); }
void toCaller(const Vorn32s* weight, Vorn32f* coeff, std::int64_t len) {
    std::int64_t i = 0;
    for (; i + 4 <= len; i += 4) store(coeff + i, toFloat(load<i32x4>(weight + i)) * splat<f32x4>(0x1p-14f));
    for (; i < len; ++i) coeff[i] = static_cast<Vorn32f>(weight[i]) * 0x1p-14f;
}
void fromCaller(const Vorn32f* coeff, Vorn32f* weight, std::int64_t len) { copyElements(coeff, weight, len); }
// Truncated. What is too large for an integer, on either side, and not-a-numbers become the smallest one.
void fromCaller(const Vorn32f* coeff, Vorn32s* weight, std::int64_t len) {
    std::int64_t i = 0;
    for (; i + 4 <= len; i += 4) store(weight + i, truncToInt(load<f32x4>(coeff + i) * splat<f32x4>(16384.0f)));
    for (; i < len; ++i) weight[i] = firstLane(truncToInt(splat<f32x4>(coeff[i] * 16384.0f)));
}

template <class State>
VornStatus checkCoeffs(const State& bank, int filterIdx, int beyondLast) {
    VORN_CHECK(require(bank.ready != 0, vornStsNotInitErr));
    return require(filterIdx >= 1 && filterIdx <= std::int64_t{bank.nFilter} + beyondLast, vornStsSizeErr);
}

template <class State>
VornStatus getCoeffs(const State* pFBank, int filterIdx, Vorn32f* pCoeffs) {
    VORN_CHECK(notNull(pCoeffs, pFBank));
    const Record<State> record(pFBank);
    const State& bank = *record;
    VORN_CHECK(checkCoeffs(bank, filterIdx, 1));
    const FilterSides sides(bank, filterIdx);
    toCaller(sides.rise, pCoeffs, sides.riseLen);
    toCaller(sides.fall, pCoeffs + sides.riseLen, sides.fallLen);
    return vornStsNoErr;
}

template <class State>
VornStatus setCoeffs(const State* pFBank, int filterIdx, const Vorn32f* pCoeffs) {
    VORN_CHECK(notNull(pCoeffs, pFBank));
    const Record<State> record(pFBank);
    const State& bank = *record;
    VORN_CHECK(checkCoeffs(bank, filterIdx, 0));
    const FilterSides sides(bank, filterIdx);
    fromCaller(pCoeffs, sides.rise, sides.riseLen);
    fromCaller(pCoeffs + sides.riseLen, sides.fall, sides.fallLen);
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::bank

VornStatus vornsFBankGetCenters_32f(const VornFBankState_32f* pFBank, Vorn32s* pCenters) {
    return bank::getCenters(pFBank, pCenters);
}

VornStatus vornsFBankGetCenters_16s(const VornFBankState_16s* pFBank, Vorn32s* pCenters) {
    return bank::getCenters(pFBank, pCenters);
}

VornStatus vornsFBankSetCenters_32f(VornFBankState_32f* pFBank, const Vorn32s* pCenters) {
    return bank::setCenters(pFBank, pCenters);
}

VornStatus vornsFBankSetCenters_16s(VornFBankState_16s* pFBank, const Vorn32s* pCenters) {
    return bank::setCenters(pFBank, pCenters);
}

VornStatus vornsFBankGetCoeffs_32f(const VornFBankState_32f* pFBank, int filterIdx, Vorn32f* pCoeffs) {
    return bank::getCoeffs(pFBank, filterIdx, pCoeffs);
}

VornStatus vornsFBankGetCoeffs_16s(const VornFBankState_16s* pFBank, int filterIdx, Vorn32f* pCoeffs) {
    return bank::getCoeffs(pFBank, filterIdx, pCoeffs);
}

VornStatus vornsFBankSetCoeffs_32f(VornFBankState_32f* pFBank, int filterIdx, const Vorn32f* pCoeffs) {
    return bank::setCoeffs(pFBank, filterIdx, pCoeffs);
}

VornStatus vornsFBankSetCoeffs_16s(VornFBankState_16s* pFBank, int filterIdx, const Vorn32f* pCoeffs) {
    return bank::setCoeffs(pFBank, filterIdx, pCoeffs);
}
