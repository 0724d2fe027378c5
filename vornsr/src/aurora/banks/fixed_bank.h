// Filter banks whose every value is fixed: where their edges stand, and how the weights follow from them.
#pragma once

#include <algorithm>
#include <cstdint>

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
    static constexpr Vorn32s edge[] = {0,  0,  1,  2,  3,  4,  5,  7,  8,  10, 12, 14, 16, 18,
                                       20, 23, 26, 29, 32, 36, 39, 44, 48, 53, 58, 64, 64, 64};
    static constexpr int longestSide = 8;
    static constexpr bool unitArea = true;  // the weights of a filter add up to one
};

// 3 filters, with edges at m0 + i (m1 - m0) / 4, where m0 is 80 Hz. The weight of a centre is one.
struct HighBank {
    static constexpr BankShape shape = {128, 0, 3};
    static constexpr Vorn32s edge[] = {1, 8, 19, 37, 64};
    static constexpr int longestSide = 28;
    static constexpr bool unitArea = false;
};

static_assert(sizeof LowBank::edge == LowBank::shape.centers() * sizeof(Vorn32s));
static_assert(sizeof HighBank::edge == HighBank::shape.centers() * sizeof(Vorn32s));
static_assert(tablesSize<FBankForm_32f>(LowBank::shape) == 15768 && tablesSize<FBankForm_16s>(LowBank::shape) == 15776);
static_assert(tablesSize<FBankForm_32f>(HighBank::shape) == 3184 && tablesSize<FBankForm_16s>(HighBank::shape) == 3192);

// n / d where one is a weight of one, and a weight over the sum of its filter.
constexpr Vorn32f ratio(int n, int d, Vorn32f) { return static_cast<Vorn32f>(n) / static_cast<Vorn32f>(d); }
constexpr Vorn32s ratio(int n, int d, Vorn32s one) { return n * one / d; }
constexpr Vorn32f share(Vorn32f weight, Vorn32f sum, Vorn32f) { return weight / sum; }
constexpr Vorn32s share(Vorn32s weight, Vorn32s sum, Vorn32s one) {
    return static_cast<Vorn32s>(std::int64_t{weight} * one / sum);
}

// All weights, made by the compiler: divisions to nearest. Sides that are shorter end in zeros.
template <class Form, class Bank>
struct Triangles {
    using Weight = typename Form::Weight;
    static constexpr auto one = static_cast<Weight>(Form::unit);
    Weight rise[Bank::shape.nFilter][Bank::longestSide] = {}, fall[Bank::shape.nFilter][Bank::longestSide] = {};

    constexpr Triangles() {
        for (int k = 0; k < Bank::shape.nFilter; ++k) {
            const int up = Bank::edge[k + 1] - Bank::edge[k], down = Bank::edge[k + 2] - Bank::edge[k + 1];
            for (int n = 1; n < up; ++n) rise[k][n] = ratio(n, up, one);
            rise[k][up] = one;
            // What has fallen is taken from the peak, which is rounded otherwise than what is left.
            for (int n = 1; n < down; ++n) fall[k][n - 1] = one - ratio(n, down, one);
            if (Bank::unitArea) {
                Weight sum = 0;
                for (int n = 0; n <= up; ++n) sum += rise[k][n];
                for (int n = 1; n < down; ++n) sum += fall[k][n - 1];
                for (Weight& weight : rise[k]) weight = share(weight, sum, one);
                for (Weight& weight : fall[k]) weight = share(weight, sum, one);
            }
        }
    }
};
template <class Form, class Bank>
inline constexpr Triangles<Form, Bank> triangles;

// The rows behind the last filter stay empty.
template <class Form, class Bank, class Pieces>
VornStatus makeFixedBank(typename Form::State& bank, Pieces& pieces) {
    bank = bankRecord<Form>(Bank::shape, vornFBankWeightFreq);
    if (const VornStatus status = makeTables(bank, Bank::shape, pieces)) return status;
    std::copy_n(Bank::edge, Bank::shape.centers(), bank.pCenters);
    for (int k = 0; k < Bank::shape.nFilter; ++k) {
        std::copy_n(triangles<Form, Bank>.rise[k], Bank::longestSide, bank.ppRise[k]);
        std::copy_n(triangles<Form, Bank>.fall[k], Bank::longestSide, bank.ppFall[k]);
    }
    bank.melMul = 2595.0f;
    bank.melDiv = 700.0f;
    bank.ready = 1;
    return vornStsNoErr;
}

}  // namespace vorn::aurora_bank
