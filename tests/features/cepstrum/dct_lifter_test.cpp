// DCT lifter.
#include "model/dct_lifter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "features/cepstrum/kernels.h"
#include "support/allocation.h"
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

TEST(DCTLifter, AllocationFailureLeavesNothingBehind) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    int calls;
    {
        test::FailAllocation count(0);
        VornDCTLifterState_32f* state;
        ASSERT_EQ(vornsDCTLifterInitAlloc_32f(&state, 23, 12, 22, 1.0f), vornStsNoErr);
        calls = count.calls();
        EXPECT_EQ(count.outstanding(), calls);
        ASSERT_EQ(vornsDCTLifterFree_32f(state), vornStsNoErr);
        EXPECT_EQ(count.outstanding(), 0);
    }
    for (int n = 1; n <= calls; ++n) {
        for (bool withC0 : {false, true}) {
            test::FailAllocation fail(n);
            auto* state = reinterpret_cast<VornDCTLifterState_32f*>(&fail);
            EXPECT_EQ(withC0 ? vornsDCTLifterInitAlloc_C0_32f(&state, 23, 12, 22, 1.0f, 1.0f)
                             : vornsDCTLifterInitAlloc_32f(&state, 23, 12, 22, 1.0f),
                      vornStsMemAllocErr);
            EXPECT_EQ(state, nullptr);
            EXPECT_EQ(fail.outstanding(), 0) << "allocation " << n;
        }
    }
}

TEST(DCTLifter, TablesBeyondAnIntAreExhaustedMemory) {
    auto* state = reinterpret_cast<VornDCTLifterState_32f*>(1);
    EXPECT_EQ(
        vornsDCTLifterInitAlloc_32f(&state, std::numeric_limits<int>::max(), std::numeric_limits<int>::max(), 22, 1.0f),
        vornStsMemAllocErr);
    EXPECT_EQ(state, nullptr);
}

struct InitArguments {
    VornDCTLifterState_32f* const marker = reinterpret_cast<VornDCTLifterState_32f*>(8);
    VornDCTLifterState_32f* made = marker;
    bool outIsNull = false;
    int lenDCT = 8, lenCep = 4, nLifter = 22;
    VornDCTLifterState_32f** out() { return outIsNull ? nullptr : &made; }
};

void expectInitOrder(VornStatus (*init)(InitArguments&)) {
    using A = InitArguments;
    test::expectCheckOrder<A>([] { return A(); },
                              [=](A& a) {
                                  const VornStatus status = init(a);
                                  if (status == vornStsNoErr) vornsDCTLifterFree_32f(a.made);
                                  return status;
                              },
                              [](A& a) { return a.made == a.marker; },
                              {{"ppState", vornStsNullPtrErr, [](A& a) { a.outIsNull = true; }},
                               {"lenDCT 0", vornStsSizeErr, [](A& a) { a.lenDCT = 0; }},
                               {"lenCep 0", vornStsSizeErr, [](A& a) { a.lenCep = 0; }},
                               {"nLifter 0", vornStsSizeErr, [](A& a) { a.nLifter = 0; }},
                               {"lenCep above lenDCT", vornStsSizeErr, [](A& a) { a.lenCep = a.lenDCT + 1; }}});
}

TEST(DCTLifter, InitChecksInOrder) {
    using A = InitArguments;
    expectInitOrder([](A& a) { return vornsDCTLifterInitAlloc_32f(a.out(), a.lenDCT, a.lenCep, a.nLifter, 1.0f); });
    expectInitOrder(
        [](A& a) { return vornsDCTLifterInitAlloc_C0_32f(a.out(), a.lenDCT, a.lenCep, a.nLifter, 1.0f, 1.0f); });
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

TEST(DCTLifter, FreeOfNull) { EXPECT_EQ(vornsDCTLifterFree_32f(nullptr), vornStsNullPtrErr); }

}  // namespace
