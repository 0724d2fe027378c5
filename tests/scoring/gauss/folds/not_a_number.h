// What is not a number never becomes a score: with one anywhere among the scores, the vals or the old values, the
// log-add of that row, or the log-sum of all rows, is none. Literal expectations; no model.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "scoring/gauss/call.h"

namespace gauss {

// Every row scores its val, 5, and meets an old value of 5: together 5 + ln 2. n rows sum up to 5 + ln n.
template <Shape shape, class T, class Val>
class RowsOfFive {
public:
    RowsOfFive(int height, int len)
        : p_{height,
             len,
             Matrix<T>(height, len, len, std::vector<T>(at(height) * at(len), T(1))),
             Matrix<T>(height, len, len, std::vector<T>(at(height) * at(len), T(1))),
             Guarded<T>(std::vector<T>(at(len), T(1))),
             Guarded<T>(std::vector<T>(at(len), T(1))),
             Guarded<Val>(std::vector<Val>(at(height), Val(5))),
             0},
          out_(shape.oneResult ? 1 : at(height)) {}

    // What the function makes of these rows when spoil(rows) names the place of a not-a-number.
    template <bool list, class Function, class Spoil>
    std::vector<Val> with(Function function, const Spoil& spoil) {
        for (Val& old : out_) old = Val(5);
        Val& spoilt = spoil(*this);
        const Val before = spoilt;
        spoilt = std::numeric_limits<Val>::quiet_NaN();
        EXPECT_EQ(call(function, argumentsOf(p_, out_.data())), vornStsNoErr);
        const std::vector<Val> results = out_.values();
        spoilt = before;
        return results;
    }
    Val& val(std::size_t row) { return p_.val[row]; }
    Val& old(std::size_t row) { return out_[row]; }
    Val& element(std::size_t row, std::size_t column) { return p_.many.block[row * at(p_.len) + column]; }

private:
    Problem<T, Val> p_;
    Guarded<Val> out_;
};

template <Shape shape, bool list, class T, class Val, class Function>
void expectNoScoreInOneLayout(Function function) {
    // Up to 40, and around the ends of the runs.
    std::vector<int> heights = {99, 100, 101, 102, 128, 129, 130};
    for (int height = 1; height <= 40; ++height) heights.push_back(height);
    for (int len : {1, 3, 4, 9}) {
        for (int height : heights) {
            RowsOfFive<shape, T, Val> rows(height, len);
            for (std::size_t r = 0; r < at(height); ++r) {
                const auto expectNone = [&](const char* what, const auto& spoil) {
                    const std::vector<Val> out = rows.template with<list>(function, spoil);
                    for (std::size_t i = 0; i < out.size(); ++i) {
                        if (shape.oneResult || i == r) {
                            EXPECT_TRUE(std::isnan(out[i])) << what << " of row " << r << " of " << height;
                        } else {
                            EXPECT_NEAR(out[i], 5.693147, 1e-6) << i << " beside row " << r << " of " << height;
                        }
                    }
                };
                if (shape.gaussians) {
                    expectNone("the val", [r](auto& of) -> Val& { return of.val(r); });
                } else if (r == 0 && height == 1) {
                    expectNone("the one val", [](auto& of) -> Val& { return of.val(0); });
                }
                if (!shape.oneResult) expectNone("the old value", [r](auto& of) -> Val& { return of.old(r); });
                if constexpr (std::is_same_v<T, Val>) {
                    expectNone("the first column", [r](auto& of) -> Val& { return of.element(r, 0); });
                    expectNone("the last column", [r, len](auto& of) -> Val& { return of.element(r, at(len) - 1); });
                }
                if (testing::Test::HasFailure()) return;
            }
        }
    }
}
template <Shape shape, class T, class Val, class D2, class D2L>
void expectNoScore(const char* name, D2 d2, D2L d2l) {
    SCOPED_TRACE(name);
    expectNoScoreInOneLayout<shape, false, T, Val>(d2);
    expectNoScoreInOneLayout<shape, true, T, Val>(d2l);
}
#define NO_SCORE(shape, T, Val, stem) expectNoScore<shape, T, Val>(#stem, stem##_D2, stem##_D2L)

}  // namespace gauss
