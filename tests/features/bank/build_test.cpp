// Construction of mel filter banks: sizes, memory, centres, weights.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <limits>
#include <vector>

#include "banks.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"

namespace {

using test::Bank;
using test::Fixed;
using test::Guarded;
using test::sameBits;
using test::Setting;
using test::settings;
using test::Single;

template <class Form>
class FilterBank : public testing::Test {
protected:
    using State = typename Form::State;
    using Weight = typename Form::Weight;

    static model::MelBank modelOf(const Setting& s, int flags) {
        return model::melBank(s.N, s.nFilter, s.sampleFreq, s.lowFreq, s.highFreq, s.melMul, s.melDiv,
                              (flags & vornFBankWeightFreq) != 0);
    }
    static std::vector<Weight> weights(const model::MelBank& bank, const std::vector<model::Fraction>& side) {
        std::vector<Weight> result;
        for (model::Fraction f : side) result.push_back(Form::weight(bank, f));
        return result;
    }
    static void expectContents(const State* bank, const Setting& s, int flags) {
        const auto expected = modelOf(s, flags);
        EXPECT_EQ(bank->flags, flags);
        EXPECT_EQ(bank->fftLen, s.N);
        EXPECT_EQ(bank->fftOrder, s.order);
        EXPECT_EQ(bank->nFilter, s.nFilter);
        EXPECT_EQ(bank->nLinear, s.nFilter);
        EXPECT_EQ(bank->melMul, s.melMul);
        EXPECT_EQ(bank->melDiv, s.melDiv);
        EXPECT_EQ(bank->ready, 1);
        EXPECT_EQ(bank->pFftSpec != nullptr, (flags & vornFBankSamples) != 0);
        EXPECT_EQ(bank->pWork != nullptr, (flags & vornFBankSamples) != 0);
        EXPECT_TRUE(sameBits(bank->pCenters, expected.c.data(), expected.c.size()));
        for (int k = 1; k <= s.nFilter; ++k) {
            const auto rise = weights(expected, model::rise(expected, k));
            const auto fall = weights(expected, model::fall(expected, k));
            EXPECT_TRUE(sameBits(bank->ppRise[k - 1], rise.data(), rise.size())) << "filter " << k << " of N " << s.N;
            EXPECT_TRUE(sameBits(bank->ppFall[k - 1], fall.data(), fall.size())) << "filter " << k << " of N " << s.N;
            for (int e = static_cast<int>(rise.size()); e < s.N / 2; ++e) EXPECT_EQ(bank->ppRise[k - 1][e], Weight(0));
            for (int e = static_cast<int>(fall.size()); e < s.N / 2; ++e) EXPECT_EQ(bank->ppFall[k - 1][e], Weight(0));
        }
        for (int k = 0; k < s.nFilter + 2; ++k) {
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bank->ppRise[k] + 1) % 16, 0u);
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bank->ppFall[k]) % 16, 0u);
            if (k > 0) {
                EXPECT_EQ(bank->ppRise[k] - bank->ppRise[k - 1], (s.N / 2 + 3 + 7) / 8 * 8);
                EXPECT_EQ(bank->ppFall[k] - bank->ppFall[k - 1], (s.N / 2 + 7) / 8 * 8);
            }
        }
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bank->ppRise[0] - 3) % 32, 0u);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bank->ppFall[0]) % 32, 0u);
    }
};

using Forms = testing::Types<Single, Fixed>;
TYPED_TEST_SUITE(FilterBank, Forms);

constexpr int allFlags[] = {vornFBankWeightMel, vornFBankWeightFreq, vornFBankWeightMel | vornFBankSamples,
                            vornFBankWeightFreq | vornFBankSamples};

TYPED_TEST(FilterBank, SizeIsTheFormula) {
    for (const Setting& s : settings) {
        for (int flags : allFlags) {
            const int K = s.nFilter, R = K + 2, H = s.N / 2, a = (H + 10) / 8 * 8, b = (H + 7) / 8 * 8;
            int expected = TypeParam::slot + 12 * K + 16 * R + 4 * R * (a + b) + 244;
            if (flags & vornFBankSamples) {
                int spec, init, work;
                ASSERT_EQ(TypeParam::transformSizes(s.order, &spec, &init, &work), vornStsNoErr);
                expected += 96 + 40 + 4 * s.N + spec + init + work;
            }
            int size = -1;
            ASSERT_EQ(TypeParam::getSize(s.fftLen, K, flags, &size), vornStsNoErr);
            EXPECT_EQ(size, expected);
        }
    }
}

TYPED_TEST(FilterBank, LiteralSize) {
    int size = -1;
    ASSERT_EQ(TypeParam::getSize(256, 23, vornFBankWeightMel, &size), vornStsNoErr);
    EXPECT_EQ(size, (TypeParam::slot - 104) + 27424);  // 104 + 276 + 400 + 100 x (136 + 128) + 244
}

TYPED_TEST(FilterBank, AllocatedBanksEqualTheModel) {
    for (const Setting& s : settings) {
        for (int flags : allFlags) {
            const Bank<TypeParam> bank(s, flags);
            EXPECT_EQ(bank.order, s.order);
            this->expectContents(bank, s, flags);
        }
    }
}

TYPED_TEST(FilterBank, BanksInACallersBlockStayInside) {
    for (const Setting& s : settings) {
        for (int flags : allFlags) {
            for (std::size_t shift : {0, 1, 2, 4, 7, 8, 16, 24, 31}) {
                int size = 0, order = -1;
                ASSERT_EQ(TypeParam::getSize(s.fftLen, s.nFilter, flags, &size), vornStsNoErr);
                test::Offset<Vorn8u> block(static_cast<std::size_t>(size), shift);
                auto* bank = reinterpret_cast<typename TypeParam::State*>(block.data());
                ASSERT_EQ(TypeParam::init(bank, &order, s, flags), vornStsNoErr);
                EXPECT_EQ(order, s.order);
                EXPECT_TRUE(block.surroundingsUntouched()) << size;
                typename TypeParam::State record;
                std::memcpy(&record, block.data(), sizeof record);
                this->expectContents(&record, s, flags);
                EXPECT_EQ(reinterpret_cast<std::uintptr_t>(record.pCenters) % 32, 0u);
            }
        }
    }
}

TYPED_TEST(FilterBank, LengthsOfTheTransform) {
    const int cases[][3] = {{1, 2, 1}, {2, 2, 1}, {3, 4, 2}, {256, 256, 8}, {257, 512, 9}};
    for (const auto& [fftLen, N, order] : cases) {
        const Bank<TypeParam> bank({fftLen, N, order, 1, 8000, 64, 4000, 1127, 700}, vornFBankWeightFreq);
        EXPECT_EQ(bank->fftLen, N);
        EXPECT_EQ(bank->fftOrder, order);
        EXPECT_EQ(bank.order, order);
    }
}

TYPED_TEST(FilterBank, HighestFrequencyAtHalfTheRate) {
    for (int flags : allFlags) {
        const Bank<TypeParam> bank({256, 256, 8, 23, 8000, 64, 4000, 1127, 700}, flags);
        EXPECT_NEAR(bank->pCenters[24], 128, 1) << "the last edge";
    }
    const Bank<TypeParam> rounded({256, 256, 8, 23, 8000, 64, 4000, 1127, 700}, vornFBankWeightFreq);
    EXPECT_EQ(rounded->pCenters[24], 128);
}

TYPED_TEST(FilterBank, AllocationFailureLeavesNothingBehind) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    for (int flags : allFlags) {
        int calls;
        {
            test::FailAllocation count(0);
            typename TypeParam::State* bank;
            int order;
            ASSERT_EQ(TypeParam::initAlloc(&bank, &order, settings[0], flags), vornStsNoErr);
            calls = count.calls();
            ASSERT_EQ(TypeParam::release(bank), vornStsNoErr);
            EXPECT_EQ(count.outstanding(), 0);
        }
        for (int n = 1; n <= calls; ++n) {
            test::FailAllocation fail(n);
            auto* bank = reinterpret_cast<typename TypeParam::State*>(&fail);
            int order = -1;
            EXPECT_EQ(TypeParam::initAlloc(&bank, &order, settings[0], flags), vornStsMemAllocErr)
                << n << " of " << calls;
            EXPECT_EQ(bank, nullptr);
            EXPECT_EQ(order, 8) << "the order is written before anything is allocated";
            EXPECT_EQ(fail.outstanding(), 0) << n << " of " << calls;
        }
    }
}

// Arguments that pass the checks and give centres anywhere. Whatever the bank is then, nothing outside is touched.
TYPED_TEST(FilterBank, OddMelScalesStayInside) {
    const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    for (int N : {2, 8, 64}) {
        for (int nFilter : {1, 3, 30}) {
            for (float melMul : {0.0f, -0.0f, -1127.0f, 1e-30f, 1e30f, inf, nan}) {
                for (float melDiv : {0.0f, -700.0f, -5000.0f, 1e-30f, 1e30f, -inf, nan}) {
                    for (float high : {4000.0f, nan}) {
                        for (int flags : {vornFBankWeightMel, vornFBankWeightFreq}) {
                            int order = 0;
                            while ((1 << order) < N) ++order;
                            const Bank<TypeParam> bank({N, N, order, nFilter, 8000, 64, high, melMul, melDiv}, flags);
                            Guarded<Vorn32f> singles(static_cast<std::size_t>(N / 2 + 1)),
                                out(static_cast<std::size_t>(nFilter));
                            Guarded<Vorn16s> shorts(static_cast<std::size_t>(N / 2 + 1)),
                                shortOut(static_cast<std::size_t>(nFilter));
                            if constexpr (std::is_same_v<TypeParam, Single>) {
                                EXPECT_EQ(vornsEvalFBank_32f(singles, out, bank), vornStsNoErr);
                            } else {
                                EXPECT_EQ(vornsEvalFBank_16s_Sfs(shorts, shortOut, bank, 0), vornStsNoErr);
                            }
                            EXPECT_TRUE(out.surroundingsUntouched() && shortOut.surroundingsUntouched());
                        }
                    }
                }
            }
        }
    }
}

// Edges that are no numbers: the sign of the first argument that is none decides, otherwise that of 0/0, and not the
// order in which a compiler adds two of them.
TYPED_TEST(FilterBank, MissingEdgesAreTheSameInEveryBuild) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const auto edges = [](float high, float melMul, float melDiv, int flags) {
        const Bank<TypeParam> bank({8, 8, 3, 2, 8000, 64, high, melMul, melDiv}, flags);
        return std::vector<Vorn32s>(bank->pCenters, bank->pCenters + 4);
    };
    const std::vector<Vorn32s> above(4, 2147483647), below(4, -2147483647 - 1);
    for (int flags : {vornFBankWeightMel, vornFBankWeightFreq}) {
        EXPECT_EQ(edges(nan, 1127, 700, flags), above);
        EXPECT_EQ(edges(-nan, 1127, 700, flags), below);
        EXPECT_EQ(edges(nan, 0, 0, flags), above);
        EXPECT_EQ(edges(-nan, 0, 0, flags), below);
        EXPECT_EQ(edges(4000, 0, 700, flags), below);
        EXPECT_EQ(edges(4000, 0, 0, flags), below);
        EXPECT_EQ(edges(4000, nan, -nan, flags), above);
        EXPECT_EQ(edges(4000, -nan, nan, flags), below);
        EXPECT_EQ(edges(4000, 1127, nan, flags), above);
    }
}

template <class Form>
struct InitArguments {
    typename Form::State* made = reinterpret_cast<typename Form::State*>(8);
    typename Form::State** bank = &made;
    Guarded<int> order = Guarded<int>(1);
    int* pOrder = order.data();
    std::vector<double> memory = std::vector<double>(4000);
    Setting setting = settings[0];
    int flags = vornFBankWeightMel;
    VornStatus init() {
        return Form::init(bank ? reinterpret_cast<typename Form::State*>(memory.data()) : nullptr, pOrder, setting,
                          flags);
    }
    VornStatus initAlloc() {
        const VornStatus status = Form::initAlloc(bank, pOrder, setting, flags);
        if (status == vornStsNoErr) Form::release(made);
        return status;
    }
};

TYPED_TEST(FilterBank, InitChecksInOrder) {
    using A = InitArguments<TypeParam>;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::vector<test::Rule<A>> rules = {
        {"bank", vornStsNullPtrErr, [](A& a) { a.bank = nullptr; }},
        {"pOrder", vornStsNullPtrErr, [](A& a) { a.pOrder = nullptr; }},
        {"fftLen 0", vornStsSizeErr, [](A& a) { a.setting.fftLen = 0; }},
        {"nFilter 0", vornStsSizeErr, [](A& a) { a.setting.nFilter = 0; }},
        {"sampleFreq nan", vornStsSizeErr, [=](A& a) { a.setting.sampleFreq = nan; }},
        {"sampleFreq 0", vornStsSizeErr, [](A& a) { a.setting.sampleFreq = 0; }},
        {"lowFreq 0", vornStsSizeErr, [](A& a) { a.setting.lowFreq = 0; }},
        {"highFreq above half", vornStsMelFreqErr, [](A& a) { a.setting.highFreq = 4000.001f; }},
        {"highFreq below low", vornStsMelFreqErr, [](A& a) { a.setting.highFreq = 63.0f; }},
        {"flags 3", vornStsMelFlagErr, [](A& a) { a.flags = 3; }},
        {"flags 4", vornStsMelFlagErr, [](A& a) { a.flags = vornFBankSamples; }},
        {"flags 8", vornStsMelFlagErr, [](A& a) { a.flags = 9; }},
    };
    const auto good = [] { return A(); };
    const auto untouched = [](A& a) {
        return a.made == reinterpret_cast<typename TypeParam::State*>(8) && a.order.untouched() &&
               std::all_of(a.memory.begin(), a.memory.end(), [](double x) { return x == 0; });
    };
    test::expectCheckOrder<A>(
        good, [](A& a) { return a.initAlloc(); }, untouched, rules);
    test::expectCheckOrder<A>(
        good, [](A& a) { return a.init(); }, untouched, rules);
}

TYPED_TEST(FilterBank, GetSizeChecksInOrder) {
    struct Arguments {
        Guarded<int> out = Guarded<int>(1);
        int* size = out.data();
        int fftLen = 256, nFilter = 23, flags = vornFBankWeightMel;
    };
    using A = Arguments;
    test::expectCheckOrder<A>([] { return A(); },
                              [](A& a) { return TypeParam::getSize(a.fftLen, a.nFilter, a.flags, a.size); },
                              [](A& a) { return a.out.untouched(); },
                              {{"pSize", vornStsNullPtrErr, [](A& a) { a.size = nullptr; }},
                               {"fftLen", vornStsSizeErr, [](A& a) { a.fftLen = 0; }},
                               {"nFilter", vornStsSizeErr, [](A& a) { a.nFilter = -1; }},
                               {"flags 0", vornStsMelFlagErr, [](A& a) { a.flags = 0; }},
                               {"flags 7", vornStsMelFlagErr, [](A& a) { a.flags = 7; }}});
    A a;
    for (int fftLen : {INT_MAX, (1 << 30) + 1, 1 << 30}) {
        a.fftLen = fftLen;
        EXPECT_EQ(TypeParam::getSize(a.fftLen, a.nFilter, a.flags, a.size), vornStsSizeErr)
            << "more than an int can say";
    }
    EXPECT_EQ(TypeParam::getSize(256, INT_MAX, a.flags, a.size), vornStsSizeErr);
    EXPECT_TRUE(a.out.untouched());
    typename TypeParam::State* bank = nullptr;
    int order = -1;
    EXPECT_EQ(TypeParam::initAlloc(&bank, &order, Setting{256, 256, 8, INT_MAX, 8000, 64, 4000, 1127, 700},
                                   vornFBankWeightMel),
              vornStsMemAllocErr);
    EXPECT_EQ(bank, nullptr);
}

TYPED_TEST(FilterBank, FreeOfNull) { EXPECT_EQ(TypeParam::release(nullptr), vornStsNullPtrErr); }

}  // namespace
