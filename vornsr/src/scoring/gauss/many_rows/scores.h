// Gaussian scores put together. A score function has an arithmetic, named by its type, and is given a pairing (which
// vectors meet), where val comes from and a fold (what becomes of a score). A member of the families is a line that
// names these pieces.
#pragma once

#include <cstddef>
#include <type_traits>

#include "scoring/gauss/ends.h"
#include "scoring/gauss/many_rows/low_sums.h"
#include "scoring/gauss/many_rows/sums.h"
#include "scoring/gauss/rows.h"

namespace vorn {

// Runs over the rows, the first `inFours` four at a time and the others one by one.
template <class Vectors, class OfFour, class OfOne>
VORN_INLINE void forRows(const Vectors& vectors, std::ptrdiff_t inFours, std::ptrdiff_t height, const OfFour& four,
                         const OfOne& one) {
    auto src = walk(vectors.src);
    auto mean = walk(vectors.mean);
    auto var = walk(vectors.var);
    std::ptrdiff_t row = 0;
    for (; row < inFours; row += 4) {
        four(RowsFrom{row}, Pairing{src.four(), mean.four(), var.four()});
        src.next(), mean.next(), var.next();
    }
    for (; row < height; ++row) one(RowAlone{row, row + 1 == height && height % 2 != 0}, oneRow(vectors, row));
}

// How many rows advance in fours.
template <class Sums>
VORN_INLINE std::ptrdiff_t rowsInFours(std::ptrdiff_t len, std::ptrdiff_t height) {
    return len < Sums::group ? 0 : height & ~std::ptrdiff_t{3};
}

template <class Sums, class Vectors, class End>
void scoreRows(const Vectors& vectors, std::ptrdiff_t len, std::ptrdiff_t height, const End end) {
    const auto four = [&](RowsFrom at, const auto& rows) __attribute__((always_inline)) {
        end(at, Sums::ofFour(rows, len));
    };
    const auto one = [&](RowAlone at, const auto& row) __attribute__((always_inline)) {
        end(at, Sums::ofOne(row, len));
    };
    forRows(vectors, rowsInFours<Sums>(len, height), height, four, one);
}

// At low precision a last odd row has a sum of its own, which shows where shifts truncate.
template <class Vectors, class End>
void scoreRowsLow(const Vectors& vectors, std::ptrdiff_t len, std::ptrdiff_t height, int scaleFactor, const End end) {
    const LowShifts shift(scaleFactor);
    const auto four = [&](RowsFrom at, const auto& rows) __attribute__((always_inline)) {
        end(at, LowSums::ofFour(rows, len, shift));
    };
    const auto one = [&](RowAlone at, const auto& row) __attribute__((always_inline)) {
        end(at, at.isOdd && shift.truncate() ? LowOddSum::ofOne(row, len, shift) : LowSums::ofOne(row, len, shift));
    };
    forRows(vectors, rowsInFours<LowSums>(len, height), height, four, one);
}

template <class Vectors>
inline constexpr bool isIdentity = isUnit<decltype(Vectors::var)>;

// Data and sums in single. Many frames double val, many Gaussians halve the sum.
struct FloatScores {
    std::ptrdiff_t len;

    template <class Vectors, class Val, class Fold>
    void operator()(const Vectors& vectors, std::ptrdiff_t height, Val val, Fold fold) const {
        using Form = std::conditional_t<Vectors::frameIsShared, HalvedSum, DoubledVal>;
        scoreRows<FloatSums>(vectors, len, height, End{val, Form{}, fold});
    }
};

// Data and sums in double.
struct DoubleScores {
    std::ptrdiff_t len;

    template <class Vectors, class Val, class Fold>
    void operator()(const Vectors& vectors, std::ptrdiff_t height, Val val, Fold fold) const {
        scoreRows<DoubleSums>(vectors, len, height, End{val, HalvedSum{}, fold});
    }
};

// Data and sums in double, summed in plain column order, with val doubled.
struct InOrderDoubleScores {
    std::ptrdiff_t len;

    template <class Vectors, class Val, class Fold>
    void operator()(const Vectors& vectors, std::ptrdiff_t height, Val val, Fold fold) const {
        scoreRows<DoubleSumsInOrder>(vectors, len, height, End{val, DoubledVal{}, fold});
    }
};

// The height from which some double forms take the plain column order.
inline constexpr std::ptrdiff_t tall = 1000;
struct TallDoubleScores {
    std::ptrdiff_t len;

    template <class Vectors, class Val, class Fold>
    void operator()(const Vectors& vectors, std::ptrdiff_t height, Val val, Fold fold) const {
        if (height < tall) {
            DoubleScores{len}(vectors, height, val, fold);
        } else {
            InOrderDoubleScores{len}(vectors, height, val, fold);
        }
    }
};

// 16-bit data, sums in single, the score a single in units of 2^-scaleFactor.
struct ScaledScores {
    std::ptrdiff_t len;
    int scaleFactor;

    template <class Vectors, class Val, class Fold>
    void operator()(const Vectors& vectors, std::ptrdiff_t height, Val val, Fold fold) const {
        scoreRows<ShortSums>(vectors, len, height, End{val, ScaledSum(scaleFactor), fold});
    }
};

// 16-bit data, sums in single, val and score integers.
struct IntegerScores {
    std::ptrdiff_t len;
    int scaleFactor;

    template <class Vectors, class Val, class Fold>
    void operator()(const Vectors& vectors, std::ptrdiff_t height, Val val, Fold fold) const {
        scoreRows<ShortSums>(vectors, len, height, End{val, PowerOfTwoSum(scaleFactor), fold});
    }
};

// Low precision, the score a single. A negative scale factor takes the sums of ScaledScores; the identity covariance
// works in single throughout.
struct LowScaledScores {
    std::ptrdiff_t len;
    int scaleFactor;

    template <class Vectors, class Val, class Fold>
    void operator()(const Vectors& vectors, std::ptrdiff_t height, Val val, Fold fold) const {
        if constexpr (isIdentity<Vectors>) {
            scoreRows<ShortPassSums>(vectors, len, height, End{val, PowerOfTwoSum(scaleFactor), fold});
        } else if (scaleFactor < 0) {
            ScaledScores{len, scaleFactor}(vectors, height, val, fold);
        } else {
            scoreRowsLow(vectors, len, height, scaleFactor, End{val, TotalAndVal{}, fold});
        }
    }
};

// Low precision, val and score integers. A negative scale factor takes the sums of IntegerScores, save with the
// identity covariance, which stays in integers.
struct LowIntegerScores {
    std::ptrdiff_t len;
    int scaleFactor;

    template <class Vectors, class Val, class Fold>
    void operator()(const Vectors& vectors, std::ptrdiff_t height, Val val, Fold fold) const {
        if constexpr (!isIdentity<Vectors>) {
            if (scaleFactor < 0) return inFloat(vectors, height, val, fold);
        }
        scoreRowsLow(vectors, len, height, scaleFactor, End{val, TotalAndVal{}, fold});
    }

private:
    template <class Vectors, class Val, class Fold>
    void inFloat(const Vectors& vectors, std::ptrdiff_t height, Val val, Fold fold) const {
        if constexpr (Vectors::frameIsShared && std::is_same_v<Fold, Store<Vorn32s>>) {
            scoreRows<ShortSums>(vectors, len, height, OddRowAddsValLast{val, PowerOfTwoSum(scaleFactor), fold});
        } else {
            IntegerScores{len, scaleFactor}(vectors, height, val, fold);
        }
    }
};

}  // namespace vorn
