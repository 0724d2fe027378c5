// Banks that are spaced in hertz below a frequency and in mel above it, and banks that the caller fills.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "banks.h"
#include "model/filter_bank_mixed.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"

namespace {

using test::Bank;
using test::EmptySetting;
using test::Fixed;
using test::Guarded;
using test::MixedSetting;
using test::mixedSettings;
using test::sameBits;
using test::Single;

constexpr int allFlags[] = {vornFBankWeightMel, vornFBankWeightFreq, vornFBankWeightMel | vornFBankSamples,
                            vornFBankWeightFreq | vornFBankSamples};
const float nan = std::numeric_limits<float>::quiet_NaN();

model::MixedBank modelOf(const MixedSetting& s, int flags) {
    model::MixedBank bank{s.N,           s.nFilter, s.nLinear, s.sampleFreq, s.lowFreq, s.highFreq,
                          s.highLinFreq, s.melMul,  s.melDiv,  false,        {},        {}};
    bank.straight = (flags & vornFBankWeightFreq) != 0;
    model::placeCenters(bank);
    return bank;
}

template <class Form>
class MixedFilterBank : public testing::Test {
protected:
    using Weight = typename Form::Weight;
    using Model = std::conditional_t<std::is_same_v<Form, Single>, model::MixedSingle, model::MixedQ14>;

    static std::vector<Weight> rise(const model::MixedBank& bank, int k) {
        std::vector<Weight> side;
        for (int j = bank.c[k - 1]; j <= bank.c[k]; ++j) side.push_back(model::mixedRise<Model>(bank, k, j));
        return side;
    }
    static std::vector<Weight> fall(const model::MixedBank& bank, int k) {
        std::vector<Weight> side;
        for (int j = bank.c[k] + 1; j <= bank.c[k + 1]; ++j) side.push_back(model::mixedFall<Model>(bank, k, j));
        return side;
    }
};

using Forms = testing::Types<Single, Fixed>;
TYPED_TEST_SUITE(MixedFilterBank, Forms);

TYPED_TEST(MixedFilterBank, EqualsTheModel) {
    using Weight = typename TypeParam::Weight;
    for (const MixedSetting& s : mixedSettings) {
        for (int flags : allFlags) {
            const Bank<TypeParam> bank(s, flags);
            const auto expected = modelOf(s, flags);
            EXPECT_EQ(bank.order, s.order);
            EXPECT_EQ(bank->flags, flags);
            EXPECT_EQ(bank->fftLen, s.N);
            EXPECT_EQ(bank->fftOrder, s.order);
            EXPECT_EQ(bank->nFilter, s.nFilter);
            EXPECT_EQ(bank->nLinear, s.nLinear);
            EXPECT_EQ(bank->melMul, s.melMul);
            EXPECT_EQ(bank->melDiv, s.melDiv);
            EXPECT_EQ(bank->ready, 1);
            EXPECT_EQ(bank->pFftSpec != nullptr, (flags & vornFBankSamples) != 0);
            EXPECT_EQ(bank->pWork != nullptr, (flags & vornFBankSamples) != 0);
            EXPECT_TRUE(sameBits(bank->pCenters, expected.c.data(), expected.c.size())) << s.N << " " << s.nLinear;
            for (int k = 1; k <= s.nFilter; ++k) {
                const auto rise = this->rise(expected, k), fall = this->fall(expected, k);
                EXPECT_TRUE(sameBits(bank->ppRise[k - 1], rise.data(), rise.size())) << k << " of N " << s.N;
                EXPECT_TRUE(sameBits(bank->ppFall[k - 1], fall.data(), fall.size())) << k << " of N " << s.N;
                for (int e = (int)rise.size(); e < s.N / 2; ++e) EXPECT_EQ(bank->ppRise[k - 1][e], Weight(0));
                for (int e = (int)fall.size(); e < s.N / 2; ++e) EXPECT_EQ(bank->ppFall[k - 1][e], Weight(0));
            }
        }
    }
}

// Centres: evenly spaced in hertz up to highLinFreq, and from there on with one ratio between neighbours of
// 1 + f / melDiv.
TEST(MixedFilterBankSpacing, LinearThenMel) {
    const MixedSetting s{4096, 4096, 12, 30, 16000, 100, 8000, 1000, 10, 1127, 700};
    const Bank<Single> bank(s, vornFBankWeightFreq);
    const double binHz = 16000.0 / 4096;
    for (int i = 0; i <= 10; ++i) EXPECT_NEAR(bank->pCenters[i] * binHz, 100 + 90 * i, 0.51 * binHz);
    const double ratio = std::pow((700.0 + 8000.0) / (700.0 + 1000.0), 1.0 / 21);
    for (int i = 10; i <= 31; ++i) {
        EXPECT_NEAR(bank->pCenters[i] * binHz, 1700.0 * std::pow(ratio, i - 10) - 700.0, 0.51 * binHz) << i;
    }
}

TEST(MixedFilterBankSpacing, AllLinearEndsAtTheLinearFrequency) {
    const MixedSetting s{512, 512, 9, 9, 16000, 1000, 8000, 6000, 9, 1127, 700};
    const Bank<Fixed> bank(s, vornFBankWeightFreq);
    for (int i = 0; i <= 10; ++i) EXPECT_EQ(bank->pCenters[i], 32 + 16 * i);
}

// Between two centres that are spaced in hertz, what falls and what rises along the mel scale makes one.
TEST(MixedFilterBankWeights, NeighboursMakeOneInTheLinearPart) {
    const MixedSetting s{1024, 1024, 10, 20, 16000, 100, 8000, 3000, 12, 1127, 700};
    const Bank<Single> bank(s, vornFBankWeightMel);
    int compared = 0;
    for (int k = 1; k < s.nLinear; ++k) {
        const int centre = bank->pCenters[k], right = bank->pCenters[k + 1];
        for (int j = centre + 1; j <= right; ++j) {
            const float fall = bank->ppFall[k - 1][j - centre - 1], rise = bank->ppRise[k][j - centre];
            EXPECT_NEAR(fall + rise, 1.0, 2e-6) << k << " at " << j;
            ++compared;
        }
    }
    EXPECT_GT(compared, 100);
}

// Behind the centre of the last filter in hertz a mel value is taken from a bin number, which leaves nothing of it on
// the usual scales.
TEST(MixedFilterBankWeights, TheLastLinearFilterDoesNotFallOnUsualScales) {
    const Bank<Single> bank(mixedSettings[0], vornFBankWeightMel);
    const int k = 10, centre = bank->pCenters[k], right = bank->pCenters[k + 1];
    ASSERT_GT(right, centre);
    for (int j = centre + 1; j <= right; ++j) EXPECT_EQ(bank->ppFall[k - 1][j - centre - 1], 0.0f);
}

TEST(MixedFilterBankWeights, TheLastLinearFilterInNumbers) {
    // Bins of 200 Hz and mel(j) = ln(1 + j): edges at 5.25, 15.25, and from there on at e^((ln 16.25 + ln 31.5)/2) - 1
    // = 21.6 and 30.5.
    const MixedSetting s{64, 64, 6, 2, 12800, 1050, 6100, 3050, 1, 1, 200};
    const Bank<Single> bank(s, vornFBankWeightMel);
    const int expected[] = {5, 15, 21, 30};
    ASSERT_TRUE(sameBits(bank->pCenters, expected, 4)) << bank->pCenters[2];
    for (int j = 16; j <= 21; ++j) {
        EXPECT_NEAR(bank->ppFall[0][j - 16], (21 - std::log(1.0 + j)) / 6, 1e-6);
    }
    const Bank<Fixed> fixed(s, vornFBankWeightMel);
    for (int j = 16; j <= 21; ++j) {
        EXPECT_EQ(fixed->ppFall[0][j - 16], (int)(16384 * (21 - std::log(1.0 + j)) / 6));
    }
    // The filters behind it are straight.
    EXPECT_EQ(bank->ppRise[1][0], 1.0f / 7);
    EXPECT_EQ(bank->ppRise[1][6], 1.0f);
    EXPECT_EQ(bank->ppFall[1][8], 1.0f / 10);
    EXPECT_EQ(fixed->ppRise[1][0], 16384 / 7);
}

// No span at all: every filter has one bin, and quotients by zero.
TEST(MixedFilterBankWeights, NoSpanInHertz) {
    const MixedSetting s{256, 256, 8, 4, 8000, 1000, 4000, 1000, 4, 1127, 700};
    const Bank<Single> bank(s, vornFBankWeightMel);
    const Bank<Fixed> fixed(s, vornFBankWeightMel);
    for (int k = 0; k < 6; ++k) EXPECT_EQ(bank->pCenters[k], 32);
    for (int k = 0; k < 4; ++k) {
        EXPECT_FALSE(bank->ppRise[k][0] < 0.0f) << "infinite, zero or not a number";
        EXPECT_EQ(fixed->ppRise[k][0], 0) << "what no integer holds";
    }
}

TYPED_TEST(MixedFilterBank, OddScalesStayInside) {
    const float inf = std::numeric_limits<float>::infinity();
    for (int N : {2, 8, 64}) {
        for (int nFilter : {1, 3, 30}) {
            for (float melMul : {0.0f, -1127.0f, 1e-30f, 1e30f, inf, nan}) {
                for (float melDiv : {0.0f, -700.0f, -5000.0f, 1e-30f, 1e30f, -inf, nan}) {
                    for (float highLin : {64.0f, 900.0f, nan}) {
                        for (int flags : {vornFBankWeightMel, vornFBankWeightFreq}) {
                            int order = 0;
                            while ((1 << order) < N) ++order;
                            const int nLinear = (nFilter + 1) / 2;
                            const Bank<TypeParam> bank(
                                MixedSetting{N, N, order, nFilter, 8000, 64, 4000, highLin, nLinear, melMul, melDiv},
                                flags);
                            Guarded<test::ValueOf<TypeParam>> src(static_cast<std::size_t>(N / 2 + 1));
                            Guarded<test::ResultOf<TypeParam>> dst(static_cast<std::size_t>(nFilter));
                            EXPECT_EQ(test::evaluate(src.data(), dst.data(), bank), vornStsNoErr);
                            EXPECT_TRUE(dst.surroundingsUntouched());
                        }
                    }
                }
            }
        }
    }
}

// Calls initAlloc with a failure at each of its allocations; after(bank) looks at what is left and releases it.
template <class Form, class Description, class After>
void failEachAllocation(const Description& setting, int flags, After after) {
    int calls;
    {
        test::FailAllocation count(0);
        typename Form::State* bank;
        int order;
        ASSERT_EQ(Form::initAlloc(&bank, &order, setting, flags), vornStsNoErr);
        calls = count.calls();
        ASSERT_EQ(Form::release(bank), vornStsNoErr);
        EXPECT_EQ(count.outstanding(), 0);
    }
    EXPECT_GE(calls, 4);
    for (int n = 1; n <= calls; ++n) {
        test::FailAllocation fail(n);
        auto* bank = reinterpret_cast<typename Form::State*>(&fail);
        int order = -1;
        EXPECT_EQ(Form::initAlloc(&bank, &order, setting, flags), vornStsMemAllocErr) << n << " of " << calls;
        EXPECT_EQ(order, 8) << "the order is written before anything is allocated";
        after(n, bank);
        EXPECT_EQ(fail.outstanding(), 0) << n << " of " << calls;
    }
}

TYPED_TEST(MixedFilterBank, AllocationFailureLeavesNothingBehind) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    for (int flags : allFlags) {
        failEachAllocation<TypeParam>(mixedSettings[0], flags,
                                      [](int, typename TypeParam::State* bank) { EXPECT_EQ(bank, nullptr); });
    }
}

// Behind the first allocation, that of the record, the bank is there and may be freed.
TYPED_TEST(MixedFilterBank, EmptyBanksThatFailAreBareRecords) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    for (int flags : {0, static_cast<int>(vornFBankSamples)}) {
        failEachAllocation<TypeParam>(EmptySetting{256, 23}, flags, [](int n, typename TypeParam::State* bank) {
            EXPECT_EQ(bank != nullptr, n > 1);
            if (bank == nullptr) return;
            test::ValueOf<TypeParam> src[129] = {};
            test::ResultOf<TypeParam> dst[23];
            Vorn32s centers[25] = {};
            EXPECT_EQ(test::evaluate(src, dst, bank), vornStsNullPtrErr);
            EXPECT_EQ(TypeParam::setCenters(bank, centers), vornStsNullPtrErr);
            EXPECT_EQ(TypeParam::getCenters(bank, centers), vornStsNullPtrErr);
            EXPECT_EQ(TypeParam::release(bank), vornStsNoErr);
        });
    }
}

struct MixedArguments {
    Guarded<int> order = Guarded<int>(1);
    MixedSetting setting = mixedSettings[0];
    int flags = vornFBankWeightMel;
};

TYPED_TEST(MixedFilterBank, ChecksInOrder) {
    using A = MixedArguments;
    test::expectCheckOrder<A>([] { return A(); },
                              [](A& a) {
                                  typename TypeParam::State* made = nullptr;
                                  const VornStatus status =
                                      TypeParam::initAlloc(&made, a.order.data(), a.setting, a.flags);
                                  if (status == vornStsNoErr) TypeParam::release(made);
                                  EXPECT_EQ(made != nullptr, status == vornStsNoErr);
                                  return status;
                              },
                              [](A& a) { return a.order.untouched(); },
                              {{"fftLen 0", vornStsSizeErr, [](A& a) { a.setting.fftLen = 0; }},
                               {"nFilter 0", vornStsSizeErr, [](A& a) { a.setting.nFilter = 0; }},
                               {"sampleFreq nan", vornStsSizeErr, [](A& a) { a.setting.sampleFreq = nan; }},
                               {"sampleFreq 0", vornStsSizeErr, [](A& a) { a.setting.sampleFreq = 0; }},
                               {"lowFreq 0", vornStsSizeErr, [](A& a) { a.setting.lowFreq = 0; }},
                               {"lowFreq nan", vornStsSizeErr, [](A& a) { a.setting.lowFreq = nan; }},
                               {"nLinear 0", vornStsSizeErr, [](A& a) { a.setting.nLinear = 0; }},
                               {"nLinear above nFilter", vornStsSizeErr, [](A& a) { a.setting.nLinear = 24; }},
                               {"low above linear", vornStsMelFreqErr, [](A& a) { a.setting.highLinFreq = 63; }},
                               {"linear above high", vornStsMelFreqErr, [](A& a) { a.setting.highFreq = 999; }},
                               {"high above half", vornStsMelFreqErr,
                                [](A& a) {
                                    a.setting.highFreq = 4000.001f;
                                    a.setting.highLinFreq = 1000;
                                }},
                               {"flags 0", vornStsMelFlagErr, [](A& a) { a.flags = 0; }},
                               {"flags 4", vornStsMelFlagErr, [](A& a) { a.flags = 4; }},
                               {"flags 9", vornStsMelFlagErr, [](A& a) { a.flags = 9; }}});
}

TYPED_TEST(MixedFilterBank, EmptyBank) {
    using Weight = typename TypeParam::Weight;
    for (int flags : {0, 1, 2, 3, 4, 6, 8, -1}) {
        for (const auto& [fftLen, N, order] : {std::array{1, 2, 1}, {2, 2, 1}, {3, 4, 2}, {256, 256, 8}}) {
            const Bank<TypeParam> bank(EmptySetting{fftLen, 5}, flags);
            EXPECT_EQ(bank.order, order);
            EXPECT_EQ(bank->flags, 1) << "whatever was asked for";
            EXPECT_EQ(bank->fftLen, N);
            EXPECT_EQ(bank->fftOrder, order);
            EXPECT_EQ(bank->nFilter, 5);
            EXPECT_EQ(bank->nLinear, 5);
            EXPECT_EQ(bank->melMul, 0.0f);
            EXPECT_EQ(bank->melDiv, 1.0f);
            EXPECT_EQ(bank->ready, 0);
            EXPECT_EQ(bank->pFftSpec != nullptr, (flags & 4) != 0);
            EXPECT_EQ(bank->pWork != nullptr, (flags & 4) != 0);
            for (int k = 0; k < 7; ++k) {
                for (int e = 0; e < N / 2; ++e) {
                    EXPECT_EQ(bank->ppRise[k][e], Weight(0));
                    EXPECT_EQ(bank->ppFall[k][e], Weight(0));
                }
            }
            std::vector<test::ValueOf<TypeParam>> src(static_cast<std::size_t>(N / 2 + 1), 7);
            Guarded<test::ResultOf<TypeParam>> dst(5);
            EXPECT_EQ(test::evaluate(src.data(), dst.data(), bank), vornStsNotInitErr);
            EXPECT_TRUE(dst.untouched());
            const Vorn32s centers[7] = {0, 0, 0, 0, 1, 1, 1};
            EXPECT_EQ(TypeParam::setCenters(bank, centers), vornStsNoErr);
            EXPECT_EQ(bank->ready, 1);
            EXPECT_EQ(test::evaluate(src.data(), dst.data(), bank), vornStsNoErr);
            for (const auto& x : dst) EXPECT_EQ(x, 0);
        }
    }
}

TYPED_TEST(MixedFilterBank, EmptyBankChecks) {
    typename TypeParam::State* bank = nullptr;
    int order = -1;
    EXPECT_EQ(TypeParam::initAlloc(&bank, &order, EmptySetting{0, 5}, 0), vornStsSizeErr);
    EXPECT_EQ(TypeParam::initAlloc(&bank, &order, EmptySetting{-7, 5}, 0), vornStsSizeErr);
    EXPECT_EQ(TypeParam::initAlloc(&bank, &order, EmptySetting{16, 0}, 0), vornStsSizeErr);
    EXPECT_EQ(TypeParam::initAlloc(&bank, &order, EmptySetting{INT_MAX, 5}, 0), vornStsSizeErr)
        << "more than an int can say";
    EXPECT_EQ(bank, nullptr);
    EXPECT_EQ(order, -1);
    EXPECT_EQ(TypeParam::initAlloc(&bank, &order, EmptySetting{256, INT_MAX}, 0), vornStsMemAllocErr);
    EXPECT_EQ(TypeParam::release(bank), vornStsNoErr) << "the bare record";
}

}  // namespace
