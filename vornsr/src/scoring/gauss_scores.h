// Gaussian scores put together: an arithmetic (which sum), a pairing (which vectors meet) and an end (what becomes of
// the sum).
#pragma once

#include <cstddef>

#include "scoring/gauss_ends.h"
#include "scoring/gauss_rows.h"
#include "scoring/gauss_sums.h"

namespace vorn {

// The score of each row, four rows at a time.
template <class Sums, class Src, class Mean, class Var, class End>
void scoreRows(const Pairing<Src, Mean, Var>& vectors, std::ptrdiff_t len, std::ptrdiff_t height, const End end) {
    auto src = walk(vectors.src, height);
    auto mean = walk(vectors.mean, height);
    auto var = walk(vectors.var, height);
    for (std::ptrdiff_t row = 0, left = height; left > 0; row += 4, left -= 4) {
        end(row, left < 4 ? left : 4, Sums::negated(Pairing{src.four(), mean.four(), var.four()}, len));
        src.next(left - 4);
        mean.next(left - 4);
        var.next(left - 4);
    }
}

// One frame against many Gaussians; srcDst[g] is the val of a Gaussian on entry and its score on return.
template <class Means, class Vars>
void multiMix(const Vorn32f* src, Means mean, Vars var, std::ptrdiff_t len, Vorn32f* srcDst, std::ptrdiff_t height) {
    scoreRows<SingleSums>(gaussians(src, mean, var), len, height,
                          End{ValOfRow<Vorn32f>{srcDst}, HalvedSum{}, Store<Vorn32f>{srcDst}});
}

}  // namespace vorn
