// DCT lifter.
#include "model/dct_lifter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <type_traits>
#include <vector>

#include "lifters.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::sameBits;

class Lifter {
public:
    Lifter(int lenDCT, int lenCep, int nLifter, float val) {
        EXPECT_EQ(vornsDCTLifterInitAlloc_32f(&state_, lenDCT, lenCep, nLifter, val), vornStsNoErr);
    }
    Lifter(int lenDCT, int lenCep, int nLifter, float val, float val0) {
        EXPECT_EQ(vornsDCTLifterInitAlloc_C0_32f(&state_, lenDCT, lenCep, nLifter, val, val0), vornStsNoErr);
    }
    ~Lifter() { EXPECT_EQ(vornsDCTLifterFree_32f(state_), vornStsNoErr); }
    Lifter(const Lifter&) = delete;
    const VornDCTLifterState_32f* operator->() const { return state_; }
    operator const VornDCTLifterState_32f*() const { return state_; }

    std::vector<float> weights() const { return {state_->pLifter, state_->pLifter + state_->lenCep + 1}; }
    std::vector<std::vector<float>> rows() const {
        std::vector<std::vector<float>> result;
        for (int i = 0; i <= state_->lenCep; ++i)
            result.emplace_back(state_->ppCos[i], state_->ppCos[i] + state_->lenDCT);
        return result;
    }
    std::vector<float> transform(const std::vector<float>& x) const {
        Guarded<float> src(x), dst(static_cast<std::size_t>(state_->lenCep + state_->withC0));
        EXPECT_EQ(vornsDCTLifter_32f(src, dst, state_), vornStsNoErr);
        EXPECT_TRUE(dst.surroundingsUntouched());
        return dst.values();
    }

private:
    VornDCTLifterState_32f* state_ = nullptr;
};

TEST(DCTLifter, Record) {
    const Lifter lifter(23, 12, 22, 2.0f);
    EXPECT_EQ(lifter->nLifter, 22);
    EXPECT_EQ(lifter->lenDCT, 23);
    EXPECT_EQ(lifter->lenCep, 12);
    EXPECT_EQ(lifter->withC0, 0);
    EXPECT_EQ(Lifter(23, 12, 22, 2.0f, 1.0f)->withC0, 1);
    for (int i = 0; i <= 12; ++i) {
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(lifter->ppCos[i]) % 32, 0u);
        if (i > 0) {
            EXPECT_EQ(lifter->ppCos[i] - lifter->ppCos[i - 1], 24);
        }
        EXPECT_EQ(lifter->ppCos[i][23], 0.0f) << "padding";
    }
}

TEST(DCTLifter, TablesAreTheDoubleFormulaRoundedOnce) {
    int differing = 0, all = 0;
    for (int lenDCT : {1, 2, 3, 8, 13, 20, 23, 26, 40, 64, 100}) {
        for (int lenCep : {1, lenDCT / 2, lenDCT}) {
            if (lenCep < 1) continue;
            for (int nLifter : {1, 2, 22, 23, 1000}) {
                const Lifter lifter(lenDCT, lenCep, nLifter, 0.75f);
                for (int i = 0; i <= lenCep; ++i) {
                    for (int j = 1; j <= lenDCT; ++j) {
                        const float cosine = model::cosine(i, j, lenDCT);
                        EXPECT_NEAR(lifter->ppCos[i][j - 1], cosine, std::fabs(cosine) * 0x1p-23f + 1e-30f);
                        differing += lifter->ppCos[i][j - 1] != cosine;
                        ++all;
                    }
                    const float weight = model::raisedSine(i, nLifter, 0.75f);
                    EXPECT_NEAR(lifter->pLifter[i], weight, (std::fabs(weight) + nLifter) * 0x1p-23f);
                }
                for (int j = 0; j < lenDCT; ++j) EXPECT_EQ(lifter->ppCos[0][j], 1.0f);
            }
        }
    }
    EXPECT_LE(differing, all / 10000) << "of " << all;
}

TEST(DCTLifter, TablesAreTheSameInEveryRoundingMode) {
    const Lifter nearest(23, 12, 22, 0.7f);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        std::vector<float> weights;
        std::vector<std::vector<float>> rows;
        {
            const test::RoundingMode directed(mode);
            const Lifter lifter(23, 12, 22, 0.7f);
            weights = lifter.weights();
            rows = lifter.rows();
        }
        EXPECT_EQ(weights, nearest.weights());
        EXPECT_EQ(rows, nearest.rows());
    }
}

TEST(DCTLifter, ProductsEqualTheModelBitForBit) {
    Random random(1);
    for (int lenDCT = 1; lenDCT <= 70; ++lenDCT) {
        for (int lenCep : {1, 2, 3, 4, 5, 7, 8, 12, 13, lenDCT}) {
            if (lenCep > lenDCT) continue;
            const auto x = random.floats(lenDCT, -20.0, 20.0);
            const Lifter plain(lenDCT, lenCep, 22, 0.3f), withC0(lenDCT, lenCep, 22, 0.3f, 1.7f);
            for (const Lifter* lifter : {&plain, &withC0}) {
                const auto got = lifter->transform(x);
                const auto expected = model::dctLifter(x, lifter->rows(), lifter->weights(), (*lifter)->withC0);
                ASSERT_EQ(got.size(), expected.size());
                EXPECT_TRUE(sameBits(got.data(), expected.data(), got.size())) << lenDCT << " " << lenCep;
            }
        }
    }
}

TEST(DCTLifter, HardValues) {
    Random random(2);
    const auto hard = test::hardFloats<float>();
    for (int lenDCT : {1, 3, 4, 5, 8, 12, 16, 23}) {
        const Lifter lifter(lenDCT, std::min(lenDCT, 7), 22, 1.0f, 1.0f);
        for (int turn = 0; turn < 50; ++turn) {
            std::vector<float> x(lenDCT);
            for (float& value : x)
                value = hard[static_cast<std::size_t>(random.integer(0, static_cast<int>(hard.size()) - 1))];
            const auto got = lifter.transform(x);
            const auto expected = model::dctLifter(x, lifter.rows(), lifter.weights(), true);
            EXPECT_TRUE(sameBits(got.data(), expected.data(), got.size())) << lenDCT;
        }
    }
}

TEST(DCTLifter, AlignmentChangesNothing) {
    Random random(3);
    const Lifter lifter(26, 13, 22, 1.0f, 0.5f);
    const auto x = random.floats(26, -20.0, 20.0);
    const auto expected = lifter.transform(x);
    for (std::size_t a = 0; a < 32; a += 4) {
        for (std::size_t b = 0; b < 32; b += 4) {
            Offset<float> src(26, a), dst(14, b);
            src.assign(x);
            ASSERT_EQ(vornsDCTLifter_32f(src, dst, lifter), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.data(), expected.data(), 14)) << a << " " << b;
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
}

TEST(DCTLifter, LiteralLifterWeights) {
    const Lifter lifter(23, 12, 22, 1.0f);
    EXPECT_EQ(lifter->pLifter[0], 1.0f);
    EXPECT_EQ(lifter->pLifter[1], static_cast<float>(1.0 + 11.0 * 0.14231483827328514));  // sin(pi / 22)
    EXPECT_EQ(lifter->pLifter[11], 12.0f);
    const Lifter beyond(64, 40, 22, 1.0f);
    EXPECT_NEAR(beyond->pLifter[33], -10.0f, 1e-5) << "negative beyond L";
    const Lifter withC0(23, 12, 22, 3.0f, 0.25f);
    EXPECT_EQ(withC0->pLifter[0], 0.25f);
    EXPECT_EQ(withC0->pLifter[11], 36.0f);
}

TEST(DCTLifter, OneInput) {
    const Lifter lifter(1, 1, 22, 1.0f);
    EXPECT_EQ(lifter->ppCos[1][0], static_cast<float>(std::cos(0.5 * 3.141592653589793)));
    const auto dst = lifter.transform({8.0f});
    EXPECT_EQ(dst[0], lifter->pLifter[1] * (8.0f * lifter->ppCos[1][0]));
}

TEST(DCTLifter, OnesGiveTheirNumberInCoefficientZero) {
    const Lifter lifter(23, 12, 22, 1.0f, 0.5f);
    const auto dst = lifter.transform(std::vector<float>(23, 1.0f));
    EXPECT_EQ(dst[12], 11.5f);
    for (int i = 0; i < 12; ++i) EXPECT_NEAR(dst[i], 0.0f, 1e-4);
}

TEST(DCTLifter, ChecksInOrder) {
    const Lifter lifter(8, 4, 22, 1.0f);
    struct Arguments {
        const VornDCTLifterState_32f* state;
        std::vector<float> data = std::vector<float>(8, 1.0f);
        Guarded<float> out = Guarded<float>(4);
        const float* src = data.data();
        float* dst = out.data();
    };
    using A = Arguments;
    test::expectCheckOrder<A>([&] { return A{lifter}; }, [](A& a) { return vornsDCTLifter_32f(a.src, a.dst, a.state); },
                              [](A& a) { return a.out.untouched(); },
                              {{"pState", vornStsNullPtrErr, [](A& a) { a.state = nullptr; }},
                               {"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }}});
}

// The integer forms: the same sums of the elements as singles, then one conversion.

template <class Element>
std::vector<Vorn16s> lifted(const std::vector<Element>& x, const VornDCTLifterState_16s* state, int scale) {
    const auto record = test::recordOf(state);
    Guarded<Element> src(x);
    Guarded<Vorn16s> dst(static_cast<std::size_t>(record.lenCep + record.withC0));
    VornStatus status;
    if constexpr (std::is_same_v<Element, Vorn16s>) {
        status = vornsDCTLifter_16s_Sfs(src, dst, state, scale);
    } else {
        status = vornsDCTLifter_32s16s_Sfs(src, dst, state, scale);
    }
    EXPECT_EQ(status, vornStsNoErr);
    EXPECT_TRUE(dst.surroundingsUntouched());
    return dst.values();
}
template <class Element>
void expectLifted(const std::vector<Element>& x, const VornDCTLifterState_16s* state, int scale) {
    const auto got = lifted(x, state, scale);
    const auto expected =
        model::dctLifterFixed(x, test::rowsOf(state), test::weightsOf(state), test::recordOf(state).withC0, scale);
    EXPECT_TRUE(sameBits(got, expected)) << x.size() << " to " << got.size() << ", scale " << scale;
}
using Context16s = test::Allocated<VornDCTLifterState_16s>;

TEST(DCTLifterIntegers, EqualTheModelBitForBit) {
    Random random(4);
    const auto hard = test::hardIntegers<Vorn16s>();
    const auto hardLong = test::hardIntegers<Vorn32s>();
    for (int lenDCT = 1; lenDCT <= 70; ++lenDCT) {
        for (int lenCep : {1, 3, 4, 5, 8, 13, 20, lenDCT}) {
            if (lenCep > lenDCT) continue;
            const auto& form = test::shortLifters[static_cast<std::size_t>(lenDCT + lenCep) % 4];
            const Context16s state(form, {lenDCT, lenCep});
            const auto n = static_cast<std::size_t>(lenDCT);
            expectLifted(random.integers<Vorn16s>(n), state.get(), 5);
            expectLifted(random.integers<Vorn16s>(n, -40, 40), state.get(), -3);
            expectLifted(random.pick(hard, n), state.get(), 8);
            expectLifted(random.integers<Vorn32s>(n), state.get(), 21);
            expectLifted(random.pick(hardLong, n), state.get(), 12);
        }
    }
}

TEST(DCTLifterIntegers, EveryScale) {
    Random random(5);
    const Context16s state(test::shortLifters[1], {23, 12});
    std::vector<int> scales = {INT_MIN, INT_MIN + 1, -1000, INT_MAX - 1, INT_MAX, 1000};
    for (int scale = -152; scale <= 152; ++scale) scales.push_back(scale);
    for (int scale : scales) {
        expectLifted(random.integers<Vorn16s>(23), state.get(), scale);
        expectLifted(random.integers<Vorn32s>(23), state.get(), scale);
        expectLifted(std::vector<Vorn16s>(23, 0), state.get(), scale);
    }
}

TEST(DCTLifterIntegers, ContextsInACallersBlockAtAnyAddress) {
    Random random(6);
    for (const auto& form : test::shortLifters) {
        for (const test::LifterSetting& s : {test::LifterSetting(9, 2), test::LifterSetting(26, 13)}) {
            int size = 0;
            ASSERT_EQ(form.getSize(s.lenDCT, s.lenCep, &size), vornStsNoErr);
            for (std::size_t shift = 0; shift < 32; ++shift) {
                Offset<Vorn8u> block(static_cast<std::size_t>(size), shift);
                auto* state = reinterpret_cast<VornDCTLifterState_16s*>(block.data());
                ASSERT_EQ(form.init(state, s), vornStsNoErr);
                expectLifted(random.integers<Vorn16s>(static_cast<std::size_t>(s.lenDCT)), state, 4);
                expectLifted(random.integers<Vorn32s>(static_cast<std::size_t>(s.lenDCT)), state, 24);
                EXPECT_TRUE(block.surroundingsUntouched());
            }
            // The smallest block there can be, against pages that cannot be touched.
            Guarded<Vorn8u> block(static_cast<std::size_t>(size));
            auto* state = reinterpret_cast<VornDCTLifterState_16s*>(block.data());
            ASSERT_EQ(form.init(state, s), vornStsNoErr);
            expectLifted(random.integers<Vorn16s>(static_cast<std::size_t>(s.lenDCT)), state, 4);
            EXPECT_TRUE(block.surroundingsUntouched());
        }
    }
}

TEST(DCTLifter, ContextsInACallersBlockAtAnyAddress) {
    Random random(7);
    for (const auto& form : test::singleLifters) {
        const test::LifterSetting s(26, 13);
        int size = 0;
        ASSERT_EQ(form.getSize(s.lenDCT, s.lenCep, &size), vornStsNoErr);
        const auto x = random.floats(26, -20.0, 20.0);
        for (std::size_t shift = 0; shift < 32; ++shift) {
            Offset<Vorn8u> block(static_cast<std::size_t>(size), shift);
            auto* state = reinterpret_cast<VornDCTLifterState_32f*>(block.data());
            ASSERT_EQ(form.init(state, s), vornStsNoErr);
            const auto expected =
                model::dctLifter(x, test::rowsOf(state), test::weightsOf(state), test::recordOf(state).withC0);
            Guarded<float> src(x), dst(expected.size());
            EXPECT_EQ(vornsDCTLifter_32f(src, dst, state), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.values(), expected)) << form.name << " " << shift;
            EXPECT_TRUE(block.surroundingsUntouched());
        }
    }
}

TEST(DCTLifterIntegers, LiteralRounding) {
    // One input and row 1 times cos(pi/2), nearly nothing: coefficient zero alone matters, weighted by val0.
    const auto zeroth = [](float val0, Vorn32s x, int scale) {
        VornDCTLifterState_16s* state = nullptr;
        EXPECT_EQ(vornsDCTLifterInitAlloc_C0_16s(&state, 1, 1, 22, 1.0f, val0), vornStsNoErr);
        const auto dst = lifted(std::vector<Vorn32s>{x}, state, scale);
        vornsDCTLifterFree_16s(state);
        return dst[1];
    };
    EXPECT_EQ(zeroth(1.0f, 40000, 0), 32767);
    EXPECT_EQ(zeroth(1.0f, -40000, 0), -32768);
    EXPECT_EQ(zeroth(0.5f, 1, 0), 0) << "ties to even";
    EXPECT_EQ(zeroth(0.5f, 3, 0), 2);
    EXPECT_EQ(zeroth(1.0f, 40000, 1), 20000);
    EXPECT_EQ(zeroth(1.0f, 20000, -1), 32767);
    EXPECT_EQ(zeroth(0x1p-12f, 16777217, 0), 4096) << "2^24 + 1 as a single is 2^24";
}

// The sums run in the caller's mode, and with them the conversion of 32-bit integers; the results are rounded to
// nearest.
TEST(DCTLifterIntegers, CallersRoundingModes) {
    Random random(8);
    const Context16s state(test::shortLifters[1], {26, 13});
    const auto x = random.integers<Vorn16s>(26);
    const auto y = random.integers<Vorn32s>(26);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        const test::RoundingMode directed(mode);
        expectLifted(x, state.get(), 3);
        expectLifted(y, state.get(), 19);
        EXPECT_EQ(test::RoundingMode::current(), mode);
    }
}

// A cosine of the basis gives one coefficient, lenDCT/2 times its weight, and the others next to nothing: each product
// is off by a rounding of table and input and the sum by lenDCT more, of lenDCT products that are at most 1.
TEST(DCTLifter, CosinesOfTheBasisAreTakenApart) {
    for (int lenDCT : {4, 7, 23, 26, 40, 128}) {
        const int lenCep = std::min(lenDCT - 1, 30);
        const std::vector<float> ones(static_cast<std::size_t>(lenCep), 1.0f);
        VornDCTLifterState_32f* state = nullptr;
        ASSERT_EQ(vornsDCTLifterInitAlloc_MulC0_32f(&state, lenDCT, ones.data(), lenCep), vornStsNoErr);
        const double bound = lenDCT * (2 + lenDCT / 4.0 + 3) * 0x1p-24;
        for (int basis = 0; basis <= lenCep; ++basis) {
            std::vector<float> x;
            for (int j = 0; j < lenDCT; ++j) {
                const long double angle = (j + 0.5L) * basis * 3.14159265358979323846264338328L / lenDCT;
                x.push_back(static_cast<float>(std::cos(angle)));
            }
            std::vector<float> dst(static_cast<std::size_t>(lenCep) + 1);
            ASSERT_EQ(vornsDCTLifter_32f(x.data(), dst.data(), state), vornStsNoErr);
            for (int i = 0; i <= lenCep; ++i) {
                const double expected = i != basis ? 0 : i == 0 ? lenDCT : lenDCT / 2.0;
                EXPECT_NEAR(dst[static_cast<std::size_t>(i == 0 ? lenCep : i - 1)], expected, bound)
                    << lenDCT << ", coefficient " << i << " of cosine " << basis;
            }
        }
        vornsDCTLifterFree_32f(state);
    }
}

TEST(DCTLifterIntegers, ChecksInOrder) {
    const Context16s state(test::shortLifters[0], {8, 4});
    struct Arguments {
        const VornDCTLifterState_16s* state;
        std::vector<Vorn32s> data = std::vector<Vorn32s>(8, 1);
        Guarded<Vorn16s> out = Guarded<Vorn16s>(4);
        const Vorn32s* src = data.data();
        Vorn16s* dst = out.data();
    };
    using A = Arguments;
    const std::vector<test::Rule<A>> rules = {{"pState", vornStsNullPtrErr, [](A& a) { a.state = nullptr; }},
                                              {"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                                              {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }}};
    const auto good = [&] { return A{state.get()}; };
    const auto untouched = [](A& a) { return a.out.untouched(); };
    test::expectCheckOrder<A>(
        good, [](A& a) { return vornsDCTLifter_32s16s_Sfs(a.src, a.dst, a.state, 0); }, untouched, rules);
    test::expectCheckOrder<A>(
        good, [](A& a) { return vornsDCTLifter_16s_Sfs(reinterpret_cast<const Vorn16s*>(a.src), a.dst, a.state, 0); },
        untouched, rules);
}

}  // namespace
