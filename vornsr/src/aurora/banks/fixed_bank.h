// Filter banks whose every value is fixed: where their edges stand, and how the weights follow from them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <numeric>

#include "features/bank/build.h"
#include "features/bank/filter_bank.h"
#include "features/bank/pieces.h"

namespace vorn::aurora_bank {

// The edges are the bins of frequencies that are equally spaced on a mel scale, m = 2595 ln(1 + f / 700), for
// transforms of 128 points at 8000 Hz: bin 128/8000 f, rounded to nearest and at most 64.

// 25 filters from 1 Hz on, with edges at m0 + i (m1 - m0) / 24, where m0 is 1 Hz and m1 is 4000 Hz. From i = 24 on all
// stand at bin 64, so that the last filter ends at its centre. The first filter is the half of one, with its centre at
// bin 0 as its left edge is: that bin stands here twice.
struct LowBank {
    static constexpr BankShape shape = {128, 0, 25, 1};
    static constexpr Vorn8u edge[] = {0,  0,  1,  2,  3,  4,  5,  7,  8,  10, 12, 14, 16, 18,
                                      20, 23, 26, 29, 32, 36, 39, 44, 48, 53, 58, 64, 64, 64};
    static constexpr bool unitArea = true;  // the weights of a filter add up to one
};

// 3 filters, with edges at m0 + i (m1 - m0) / 4, where m0 is 80 Hz. The weight of a centre is one.
struct HighBank {
    static constexpr BankShape shape = {128, 0, 3};
    static constexpr Vorn8u edge[] = {1, 8, 19, 37, 64};
    static constexpr bool unitArea = false;
};

static_assert(std::size(LowBank::edge) == LowBank::shape.centers());
static_assert(std::size(HighBank::edge) == HighBank::shape.centers());
static_assert(tablesSize<FBankForm_32f>(LowBank::shape) == 15768 && tablesSize<FBankForm_16s>(LowBank::shape) == 15776);
static_assert(tablesSize<FBankForm_32f>(HighBank::shape) == 3184 && tablesSize<FBankForm_16s>(HighBank::shape) == 3192);

// A weight over the sum of its filter.
inline Vorn32f share(Vorn32f weight, Vorn32f sum) { return weight / sum; }
inline Vorn32s share(Vorn32s weight, Vorn32s sum) {
    return static_cast<Vorn32s>((std::int64_t{weight} << FBankForm_16s::weightShift) / sum);
}

// A triangle with its peak, one, at the centre, and zero at both edges. Rows start at zero.
template <class Form, bool unitArea>
void fillTriangle(const Vorn8u* edge, typename Form::Weight* rise, typename Form::Weight* fall) {
    using Weight = typename Form::Weight;
    constexpr auto one = static_cast<Weight>(Form::unit);
    const int up = edge[1] - edge[0], down = edge[2] - edge[1];
    const int falling = std::max(down - 1, 0);
    Form::fractions(1, 1, up, up, rise + 1);
    rise[up] = one;
    // What has fallen is taken from the peak: that rounds otherwise than what is left.
    Form::fractions(1, 1, down, falling, fall);
    for (int i = 0; i < falling; ++i) fall[i] = one - fall[i];
    if constexpr (unitArea) {
        const Weight sum = std::accumulate(fall, fall + falling, std::accumulate(rise, rise + up + 1, Weight(0)));
        for (int i = 0; i <= up; ++i) rise[i] = share(rise[i], sum);
        for (int i = 0; i < falling; ++i) fall[i] = share(fall[i], sum);
    }
}

// The rows behind the last filter stay empty.
template <class Form, class Bank, class Pieces>
VornStatus makeFixedBank(typename Form::State& bank, Pieces& pieces) {
    bank = bankRecord<Form>(Bank::shape, vornFBankWeightFreq);
    if (const VornStatus status = makeTables(bank, Bank::shape, pieces)) return status;
    std::copy(std::begin(Bank::edge), std::end(Bank::edge), bank.pCenters);
    for (int k = 0; k < Bank::shape.nFilter; ++k) {
        fillTriangle<Form, Bank::unitArea>(Bank::edge + k, bank.ppRise[k], bank.ppFall[k]);
    }
    bank.melMul = 2595.0f;
    bank.melDiv = 700.0f;
    bank.ready = 1;
    return vornStsNoErr;
}

}  // namespace vorn::aurora_bank
