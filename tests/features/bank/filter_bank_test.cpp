// Mel filter banks: sizes, memory, centres, weights, evaluation.
#include "model/filter_bank.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "features/bank/filter_bank.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Random;
using test::sameBits;

struct Setting {
    int fftLen, N, order, nFilter;
    float sampleFreq, lowFreq, highFreq, melMul, melDiv;
};
const Setting settings[] = {
    {256, 256, 8, 23, 8000, 64, 4000, 1127, 700},      {400, 512, 9, 26, 16000, 20, 8000, 2595, 700},
    {512, 512, 9, 40, 16000, 133.3f, 6855, 1127, 700}, {200, 256, 8, 12, 8000, 1, 3999, 1000, 1000},
    {1024, 1024, 10, 5, 44100, 10, 22050, 1127, 700},  {64, 64, 6, 1, 8000, 500, 3500, 1127, 700},
    {64, 64, 6, 20, 8000, 100, 4000, 1127, 700},       {16, 16, 4, 12, 8000, 100, 4000, 1127, 700},
    {2, 2, 1, 1, 8000, 64, 4000, 1127, 700},           {4, 4, 2, 9, 8000, 3000, 4000, 1127, 700},
    {2048, 2048, 11, 64, 48000, 30, 24000, 500, 300},
};

// The two element forms behind one face.
struct Single {
    using State = VornFBankState_32f;
    using Weight = Vorn32f;
    static constexpr int slot = 104;
    static VornStatus getSize(int fftLen, int nFilter, int flags, int* size) {
        return vornsMelFBankGetSize_32f(fftLen, nFilter, flags, size);
    }
    static VornStatus transformSizes(int order, int* spec, int* init, int* work) {
        return vornsFFTGetSize_R_32f(order, 8, 2, spec, init, work);
    }
    static VornStatus init(State* bank, int* order, const Setting& s, int flags) {
        return vornsMelFBankInit_32f(bank, order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter, s.melMul,
                                     s.melDiv, flags);
    }
    static VornStatus initAlloc(State** bank, int* order, const Setting& s, int flags) {
        return vornsMelFBankInitAlloc_32f(bank, order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter,
                                          s.melMul, s.melDiv, flags);
    }
    static VornStatus release(State* bank) { return vornsFBankFree_32f(bank); }
    static Weight weight(const model::MelBank& bank, model::Fraction f) { return model::weight32f(bank, f); }
};
struct Fixed {
    using State = VornFBankState_16s;
    using Weight = Vorn32s;
    static constexpr int slot = 112;
    static VornStatus getSize(int fftLen, int nFilter, int flags, int* size) {
        return vornsMelFBankGetSize_16s(fftLen, nFilter, flags, size);
    }
    static VornStatus transformSizes(int order, int* spec, int* init, int* work) {
        return vornsFFTGetSize_R_16s32s(order, 8, 2, spec, init, work);
    }
    static VornStatus init(State* bank, int* order, const Setting& s, int flags) {
        return vornsMelFBankInit_16s(bank, order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter, s.melMul,
                                     s.melDiv, flags);
    }
    static VornStatus initAlloc(State** bank, int* order, const Setting& s, int flags) {
        return vornsMelFBankInitAlloc_16s(bank, order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter,
                                          s.melMul, s.melDiv, flags);
    }
    static VornStatus release(State* bank) { return vornsFBankFree_16s(bank); }
    static Weight weight(const model::MelBank& bank, model::Fraction f) { return model::weightQ14(bank, f); }
};

// An allocated bank that leaves with its scope.
template <class Form>
class Bank {
public:
    Bank(const Setting& setting, int flags) {
        EXPECT_EQ(Form::initAlloc(&bank_, &order, setting, flags), vornStsNoErr);
    }
    ~Bank() { EXPECT_EQ(Form::release(bank_), vornStsNoErr); }
    Bank(const Bank&) = delete;
    typename Form::State* operator->() const { return bank_; }
    operator typename Form::State *() const { return bank_; }
    int order = -1;

private:
    typename Form::State* bank_ = nullptr;
};

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
            for (std::size_t shift : {0, 8, 16, 24}) {
                int size = 0, order = -1;
                ASSERT_EQ(TypeParam::getSize(s.fftLen, s.nFilter, flags, &size), vornStsNoErr);
                // The reported size need not be a multiple of 8; the block begins on one and ends at the page.
                test::Offset<Vorn8u> block(static_cast<std::size_t>(size), shift);
                auto* bank = reinterpret_cast<typename TypeParam::State*>(block.data());
                ASSERT_EQ(TypeParam::init(bank, &order, s, flags), vornStsNoErr);
                EXPECT_EQ(order, s.order);
                EXPECT_TRUE(block.surroundingsUntouched()) << size;
                this->expectContents(bank, s, flags);
                EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bank->pCenters) % 32, 0u);
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

std::vector<float> evaluateModel(const VornFBankState_32f* bank, const std::vector<float>& spectrum) {
    std::vector<std::vector<float>> rises, falls;
    const Vorn32s* c = bank->pCenters;
    for (int k = 0; k < bank->nFilter; ++k) {
        rises.emplace_back(bank->ppRise[k], bank->ppRise[k] + (c[k + 1] - c[k] + 1));
        falls.emplace_back(bank->ppFall[k], bank->ppFall[k] + (c[k + 2] - c[k + 1]));
    }
    return model::evaluate(spectrum, {c, c + bank->nFilter + 2}, rises, falls);
}

TEST(EvalFBank, SinglesEqualTheModelBitForBit) {
    Random random(1);
    for (const Setting& s : settings) {
        for (int flags : {vornFBankWeightMel, vornFBankWeightFreq}) {
            const Bank<Single> bank(s, flags);
            for (int turn = 0; turn < 20; ++turn) {
                const auto spectrum = random.floats(static_cast<std::size_t>(s.N / 2 + 1), 0.0, 1e5);
                Guarded<float> src(spectrum), dst(static_cast<std::size_t>(s.nFilter));
                ASSERT_EQ(vornsEvalFBank_32f(src, dst, bank), vornStsNoErr);
                const auto expected = evaluateModel(bank, spectrum);
                EXPECT_TRUE(sameBits(dst.data(), expected.data(), expected.size()))
                    << "N " << s.N << ", K " << s.nFilter;
                EXPECT_TRUE(dst.surroundingsUntouched());
            }
        }
    }
}

TEST(EvalFBank, EveryLengthOfAStretchEqualsTheModel) {
    Random random(2);
    const Bank<Single> bank({256, 256, 8, 5, 8000, 64, 4000, 1127, 700}, vornFBankWeightFreq);
    for (int width = 0; width <= 25; ++width) {
        for (int first : {0, 1, 2, 3}) {
            for (int c = 0; c < 7; ++c) bank->pCenters[c] = std::min(128, first + c * width + (c > 3));
            for (int k = 0; k < 5; ++k) {
                for (int e = 0; e < 128; ++e) bank->ppRise[k][e] = bank->ppFall[k][e] = 0;
                for (int e = 0; e <= width; ++e) bank->ppRise[k][e] = static_cast<float>(random.uniform(0, 1));
                for (int e = 0; e < width; ++e) bank->ppFall[k][e] = static_cast<float>(random.uniform(0, 1));
            }
            for (std::size_t shift = 0; shift < 32; shift += 4) {
                const auto spectrum = random.floats(129, 0.0, 100.0);
                test::Offset<float> src(129, shift), dst(5, 28 - shift);
                src.assign(spectrum);
                ASSERT_EQ(vornsEvalFBank_32f(src, dst, bank), vornStsNoErr);
                const auto expected = evaluateModel(bank, spectrum);
                EXPECT_TRUE(sameBits(dst.data(), expected.data(), 5)) << width << " " << first;
            }
        }
    }
}

// A bank between given edges, with one weight in all places of its rows.
class BankBetween : public Bank<Single> {
public:
    BankBetween(const std::vector<Vorn32s>& edges, float weight)
        : Bank({64, 64, 6, static_cast<int>(edges.size()) - 2, 8000, 500, 3000, 1127, 700}, vornFBankWeightFreq) {
        Bank& bank = *this;
        std::copy(edges.begin(), edges.end(), bank->pCenters);
        for (int k = 0; k < bank->nFilter; ++k) {
            std::fill_n(bank->ppRise[k], 32, weight);
            std::fill_n(bank->ppFall[k], 32, weight);
        }
    }
};

// Bins 0 to 32 that tell apart in a sum which of them were taken: bin n weighs 2^(n - 1).
std::vector<float> powers() {
    std::vector<float> bins(33, 0.0f);
    for (int n = 1; n <= 20; ++n) bins[static_cast<std::size_t>(n)] = std::ldexp(1.0f, n - 1);
    return bins;
}

TEST(EvalFBank, AFirstSideOfOneBinIsNotEmpty) {
    const BankBetween bank({1, 1, 3, 5}, 0);
    bank->ppRise[0][0] = 1;
    bank->ppRise[0][1] = 100;  // belongs to no bin
    bank->ppFall[0][0] = 2, bank->ppFall[0][1] = 3;
    bank->ppRise[1][0] = 5, bank->ppRise[1][1] = 7, bank->ppRise[1][2] = 11;
    bank->ppFall[1][0] = 13, bank->ppFall[1][1] = 17;
    float dst[2];
    ASSERT_EQ(vornsEvalFBank_32f(powers().data(), dst, bank), vornStsNoErr);
    EXPECT_EQ(dst[0], 1 * 1 + 2 * 2 + 3 * 4);
    EXPECT_EQ(dst[1], 5 * 1 + 7 * 2 + 11 * 4 + 13 * 8 + 17 * 16);
}

TEST(EvalFBank, ABankThatBeginsAtBinZeroTwice) {
    // As the banks of noise-robust front-ends begin: the first filter is bin 0 alone.
    const BankBetween bank({0, 0, 1, 2, 4}, 0);
    bank->ppRise[0][0] = 1;
    bank->ppRise[1][1] = 0.5f, bank->ppFall[1][0] = 0.5f;
    bank->ppRise[2][1] = 0.25f, bank->ppFall[2][0] = 0.5f, bank->ppFall[2][1] = 0.125f;
    std::vector<float> src(33, 0.0f);
    src[0] = 3, src[1] = 16, src[2] = 64, src[3] = 1024, src[4] = 65536;
    float dst[3];
    ASSERT_EQ(vornsEvalFBank_32f(src.data(), dst, bank), vornStsNoErr);
    EXPECT_EQ(dst[0], 3);
    EXPECT_EQ(dst[1], 8 + 32);
    EXPECT_EQ(dst[2], 16 + 512 + 8192);
}

TEST(EvalFBank, EqualCentresAtTheBeginningAndFurtherOn) {
    // All weights 1, also the one behind each side that belongs to no bin of it.
    const BankBetween bank({1, 1, 2, 2, 3, 4}, 1);
    float dst[4];
    ASSERT_EQ(vornsEvalFBank_32f(powers().data(), dst, bank), vornStsNoErr);
    EXPECT_EQ(dst[0], 1 + 2);
    EXPECT_EQ(dst[1], 1 + 2 + 4) << "bins 1 and 2, and bin 3 for the empty side";
    EXPECT_EQ(dst[2], 2 + 4 + 8) << "bin 2, bin 3 for the empty side, and the falling side one bin late";
    EXPECT_EQ(dst[3], 4 + 8 + 16) << "all one bin late";
}

TEST(EvalFBank, ASideOfTwoBinsCatchesUpWithAnEmptyOne) {
    const BankBetween bank({1, 2, 2, 4, 6}, 1);
    float dst[3];
    ASSERT_EQ(vornsEvalFBank_32f(powers().data(), dst, bank), vornStsNoErr);
    EXPECT_EQ(dst[0], 1 + 2 + 4) << "bins 1 and 2, and bin 3 for the empty side";
    EXPECT_EQ(dst[1], 2 + 4 + 8) << "bin 2, bin 3 for the empty side, and of bins 3 and 4 the one that is left";
    EXPECT_EQ(dst[2], 4 + 8 + 16 + 32) << "the rising side begins at bin 3, where the counter stood; then bins 4 to 6";
}

TEST(EvalFBank, TwoEqualCentresTakeOneBinMore) {
    // Centres 1 3 3 5: the falling side of the first filter is empty.
    const Bank<Single> bank({16, 16, 4, 2, 8000, 500, 3000, 1127, 700}, vornFBankWeightFreq);
    const Vorn32s centers[] = {1, 3, 3, 5};
    std::copy(centers, centers + 4, bank->pCenters);
    for (int k = 0; k < 2; ++k) {
        for (int e = 0; e < 8; ++e) bank->ppRise[k][e] = bank->ppFall[k][e] = 0;
    }
    const float rise0[] = {1, 2, 4}, rise1[] = {8, 0.5f}, fall1[] = {16, 32};
    std::copy(rise0, rise0 + 3, bank->ppRise[0]);
    std::copy(rise1, rise1 + 2, bank->ppRise[1]);  // element 1 belongs to no bin of the filter
    std::copy(fall1, fall1 + 2, bank->ppFall[1]);
    bank->ppFall[0][0] = 0.25f;  // nor does this one
    const std::vector<float> src = {9, 1, 1, 1, 100, 1000, 10000, 9, 9};
    float dst[2];
    ASSERT_EQ(vornsEvalFBank_32f(src.data(), dst, bank), vornStsNoErr);
    EXPECT_EQ(dst[0], 1 + 2 + 4 + 0.25f * 100);
    // Element 0 at bin 3, element 1 at bin 4, and the falling side one bin late: bin 5 with its first weight, no more.
    EXPECT_EQ(dst[1], 8 + 0.5f * 100 + 16 * 1000);
}

TEST(EvalFBank, FixedFormsAddNothingForAnEmptySide) {
    const Bank<Fixed> bank({16, 16, 4, 2, 8000, 500, 3000, 1127, 700}, vornFBankWeightFreq);
    const Vorn32s centers[] = {1, 3, 3, 5};
    std::copy(centers, centers + 4, bank->pCenters);
    for (int k = 0; k < 2; ++k) {
        for (int e = 0; e < 8; ++e) bank->ppRise[k][e] = bank->ppFall[k][e] = 16384;
    }
    const Vorn16s src[] = {9, 1, 2, 4, 100, 1000, 9, 9, 9};
    Vorn32s dst[2];
    ASSERT_EQ(vornsEvalFBank_16s32s_Sfs(src, dst, bank, 0), vornStsNoErr);
    EXPECT_EQ(dst[0], 7);
    EXPECT_EQ(dst[1], 4 + 100 + 1000);
}

std::vector<std::int64_t> fixedSums(const VornFBankState_16s* bank, const std::vector<Vorn32s>& spectrum) {
    std::vector<std::int64_t> sums;
    const Vorn32s* c = bank->pCenters;
    for (int k = 0; k < bank->nFilter; ++k) {
        sums.push_back(
            model::fixedSum(spectrum, c[k], {bank->ppRise[k], bank->ppRise[k] + (c[k + 1] - c[k] + 1)}) +
            model::fixedSum(spectrum, c[k + 1] + 1, {bank->ppFall[k], bank->ppFall[k] + (c[k + 2] - c[k + 1])}));
    }
    return sums;
}

constexpr int scales[] = {-50, -34, -30, -20, -16, -15, -14, -13, -7, -1,      0,      1,
                          2,   3,   7,   16,  40,  49,  50,  51,  64, INT_MAX, INT_MIN};

template <class Weight>
void setWeights(const Bank<Fixed>& bank, const Setting& s, Weight weight) {
    for (int k = 0; k < s.nFilter; ++k) {
        for (int e = 0; e < s.N / 2; ++e) {
            bank->ppRise[k][e] = weight();
            bank->ppFall[k][e] = weight();
        }
    }
}

// Around the largest weights of 16 bits, with the values that make the largest products and sums of two.
TEST(EvalFBank, FixedFormsWithWeightsOfSixteenBitsAndMore) {
    Random random(7);
    for (const std::vector<Vorn32s>& weights : {std::vector<Vorn32s>{-32768},
                                                {-32769},
                                                {-32767},
                                                {32766},
                                                {32767},
                                                {32768},
                                                {-32767, 32766},
                                                {-32769, -32768, -32767, 0, 16384, 32766, 32767, 32768}}) {
        for (const std::vector<Vorn16s>& values : {std::vector<Vorn16s>{-32768}, {32767}, {-32768, 32767}}) {
            const auto one = [&](const auto& list) {
                return list[static_cast<std::size_t>(random.integer(0, static_cast<int>(list.size()) - 1))];
            };
            for (const Setting& s : settings) {
                const Bank<Fixed> bank(s, vornFBankWeightFreq);
                setWeights(bank, s, [&] { return one(weights); });
                std::vector<Vorn16s> src(static_cast<std::size_t>(s.N / 2 + 1));
                for (Vorn16s& x : src) x = one(values);
                const auto sums = fixedSums(bank, {src.begin(), src.end()});
                std::vector<Vorn32s> dst(static_cast<std::size_t>(s.nFilter));
                ASSERT_EQ(vornsEvalFBank_16s32s_Sfs(src.data(), dst.data(), bank, 0), vornStsNoErr);
                for (int k = 0; k < s.nFilter; ++k) {
                    const std::int64_t x = model::shifted(sums[static_cast<std::size_t>(k)], 14);
                    EXPECT_EQ(dst[static_cast<std::size_t>(k)], std::clamp<std::int64_t>(x, INT_MIN, INT_MAX))
                        << weights[0] << " x " << values[0];
                }
            }
        }
    }
}

TEST(EvalFBank, FixedFormsEqualTheModel) {
    Random random(3);
    for (const Setting& s : settings) {
        for (int flags : {vornFBankWeightMel, vornFBankWeightFreq}) {
            const Bank<Fixed> bank(s, flags);
            for (int turn = 0; turn < 4; ++turn) {
                const auto data = turn % 2 ? random.integers<Vorn16s>(static_cast<std::size_t>(s.N / 2 + 1))
                                           : random.integers<Vorn16s>(static_cast<std::size_t>(s.N / 2 + 1), 0, 300);
                // At last weights at which the products wrap.
                if (turn == 3) setWeights(bank, s, [&] { return random.anyBits<Vorn32s>(); });
                const auto sums = fixedSums(bank, {data.begin(), data.end()});
                for (int scale : scales) {
                    const int T = static_cast<int>(static_cast<unsigned>(scale) + 14u);
                    Guarded<Vorn16s> src(data), narrow(static_cast<std::size_t>(s.nFilter));
                    Guarded<Vorn32s> wide(static_cast<std::size_t>(s.nFilter));
                    ASSERT_EQ(vornsEvalFBank_16s_Sfs(src, narrow, bank, scale), vornStsNoErr);
                    ASSERT_EQ(vornsEvalFBank_16s32s_Sfs(src, wide, bank, scale), vornStsNoErr);
                    for (int k = 0; k < s.nFilter; ++k) {
                        const std::int64_t x = model::shifted(sums[static_cast<std::size_t>(k)], T);
                        EXPECT_EQ(narrow[k], std::clamp<std::int64_t>(x, -32768, 32767)) << scale;
                        EXPECT_EQ(wide[k], std::clamp<std::int64_t>(x, INT_MIN, INT_MAX)) << scale;
                    }
                }
            }
        }
    }
}

TEST(EvalFBank, SamplesGoThroughTransformAndMagnitude_32f) {
    Random random(4);
    for (const Setting& s : settings) {
        const Bank<Single> samples(s, vornFBankWeightMel | vornFBankSamples), bins(s, vornFBankWeightMel);
        VornsFFTSpec* spec;
        ASSERT_EQ(vornsFFTInitAlloc_R_32f(&spec, s.order, 8, 2), vornStsNoErr);
        for (int turn = 0; turn < 3; ++turn) {
            const auto frame = random.floats(static_cast<std::size_t>(s.N), -1000.0, 1000.0);
            Guarded<float> src(frame), dst(static_cast<std::size_t>(s.nFilter));
            ASSERT_EQ(vornsEvalFBank_32f(src, dst, samples), vornStsNoErr);
            std::vector<Vorn32fc> ccs(static_cast<std::size_t>(s.N / 2 + 1));
            std::vector<float> magnitude(ccs.size()), expected(static_cast<std::size_t>(s.nFilter));
            ASSERT_EQ(vornsFFTFwd_RToCCS_32f(frame.data(), &ccs[0].re, spec, nullptr), vornStsNoErr);
            ASSERT_EQ(vornsMagnitude_32fc(ccs.data(), magnitude.data(), s.N / 2 + 1), vornStsNoErr);
            ASSERT_EQ(vornsEvalFBank_32f(magnitude.data(), expected.data(), bins), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.data(), expected.data(), expected.size())) << s.N;
        }
        vornsFFTFree_R_32f(spec);
    }
}

TEST(EvalFBank, SamplesGoThroughTransformAndMagnitude_16s) {
    Random random(5);
    for (const Setting& s : settings) {
        const Bank<Fixed> bank(s, vornFBankWeightMel | vornFBankSamples);
        VornsFFTFixedSpec* spec;
        ASSERT_EQ(vornsFFTInitAlloc_R_16s32s(&spec, s.order, 8, 2), vornStsNoErr);
        for (int scale : {-6, -3, 0, 1, 5, 8}) {
            const auto frame = random.integers<Vorn16s>(static_cast<std::size_t>(s.N));
            Guarded<Vorn16s> src(frame), narrow(static_cast<std::size_t>(s.nFilter));
            Guarded<Vorn32s> wide(static_cast<std::size_t>(s.nFilter));
            ASSERT_EQ(vornsEvalFBank_16s_Sfs(src, narrow, bank, scale), vornStsNoErr);
            ASSERT_EQ(vornsEvalFBank_16s32s_Sfs(src, wide, bank, scale), vornStsNoErr);
            std::vector<Vorn32sc> ccs(static_cast<std::size_t>(s.N / 2 + 1));
            std::vector<Vorn32s> magnitude(ccs.size());
            ASSERT_EQ(vornsFFTFwd_RToCCS_16s32s_Sfs(frame.data(), &ccs[0].re, spec, -3, nullptr), vornStsNoErr);
            ASSERT_EQ(vornsMagnitude_32sc_Sfs(ccs.data(), magnitude.data(), s.N / 2 + 1, -3), vornStsNoErr);
            const auto sums = fixedSums(bank, magnitude);
            for (int k = 0; k < s.nFilter; ++k) {
                const std::int64_t x = model::shifted(sums[static_cast<std::size_t>(k)], scale + 14 + 6);
                EXPECT_EQ(narrow[k], std::clamp<std::int64_t>(x, -32768, 32767));
                EXPECT_EQ(wide[k], std::clamp<std::int64_t>(x, INT_MIN, INT_MAX));
            }
        }
        vornsFFTFree_R_16s32s(spec);
    }
}

TEST(EvalFBank, SamplesInACallersBlock) {
    const Setting& s = settings[0];
    const int flags = vornFBankWeightMel | vornFBankSamples;
    int size = 0, order;
    ASSERT_EQ(vornsMelFBankGetSize_32f(s.fftLen, s.nFilter, flags, &size), vornStsNoErr);
    Random random(6);
    const auto frame = random.floats(256, -1000.0, 1000.0);
    const Bank<Single> allocated(s, flags);
    std::vector<float> expected(23);
    ASSERT_EQ(vornsEvalFBank_32f(frame.data(), expected.data(), allocated), vornStsNoErr);
    for (std::size_t shift : {0, 8, 16, 24}) {
        test::Offset<Vorn8u> block(static_cast<std::size_t>(size), shift);
        auto* bank = reinterpret_cast<VornFBankState_32f*>(block.data());
        ASSERT_EQ(Single::init(bank, &order, s, flags), vornStsNoErr);
        std::vector<float> dst(23);
        ASSERT_EQ(vornsEvalFBank_32f(frame.data(), dst.data(), bank), vornStsNoErr);
        EXPECT_TRUE(sameBits(dst.data(), expected.data(), 23));
        EXPECT_TRUE(block.surroundingsUntouched());
    }
}

TEST(EvalFBank, NoAllocation) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    const int flags = vornFBankWeightMel | vornFBankSamples;
    const Bank<Single> single(settings[1], flags);
    const Bank<Fixed> fixed(settings[1], flags);
    const std::vector<float> singles(512);
    const std::vector<Vorn16s> shorts(512);
    std::vector<float> dst(26);
    std::vector<Vorn32s> fixedDst(26);
    test::FailAllocation count(0);
    EXPECT_EQ(vornsEvalFBank_32f(singles.data(), dst.data(), single), vornStsNoErr);
    EXPECT_EQ(vornsEvalFBank_16s32s_Sfs(shorts.data(), fixedDst.data(), fixed, 0), vornStsNoErr);
    EXPECT_EQ(count.calls(), 0);
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
    EXPECT_EQ(
        TypeParam::initAlloc(&bank, &order, {256, 256, 8, INT_MAX, 8000, 64, 4000, 1127, 700}, vornFBankWeightMel),
        vornStsMemAllocErr);
    EXPECT_EQ(bank, nullptr);
}

TEST(EvalFBank, ChecksInOrder) {
    const Bank<Single> single(settings[0], vornFBankWeightMel);
    const Bank<Fixed> fixed(settings[0], vornFBankWeightMel);
    const std::vector<float> src(129);
    const std::vector<Vorn16s> shorts(129);
    Guarded<float> dst(23);
    Guarded<Vorn16s> narrow(23);
    Guarded<Vorn32s> wide(23);
    EXPECT_EQ(vornsEvalFBank_32f(nullptr, dst, single), vornStsNullPtrErr);
    EXPECT_EQ(vornsEvalFBank_32f(src.data(), nullptr, single), vornStsNullPtrErr);
    EXPECT_EQ(vornsEvalFBank_32f(src.data(), dst, nullptr), vornStsNullPtrErr);
    EXPECT_EQ(vornsEvalFBank_16s_Sfs(nullptr, narrow, fixed, 0), vornStsNullPtrErr);
    EXPECT_EQ(vornsEvalFBank_16s_Sfs(shorts.data(), nullptr, fixed, 0), vornStsNullPtrErr);
    EXPECT_EQ(vornsEvalFBank_16s_Sfs(shorts.data(), narrow, nullptr, 0), vornStsNullPtrErr);
    EXPECT_EQ(vornsEvalFBank_16s32s_Sfs(nullptr, wide, fixed, 0), vornStsNullPtrErr);
    EXPECT_EQ(vornsEvalFBank_16s32s_Sfs(shorts.data(), nullptr, fixed, 0), vornStsNullPtrErr);
    EXPECT_EQ(vornsEvalFBank_16s32s_Sfs(shorts.data(), wide, nullptr, 0), vornStsNullPtrErr);
    Vorn32s* const centers = single->pCenters;
    single->ready = 0;
    fixed->ready = 0;
    EXPECT_EQ(vornsEvalFBank_32f(src.data(), dst, single), vornStsNotInitErr);
    EXPECT_EQ(vornsEvalFBank_16s_Sfs(shorts.data(), narrow, fixed, 0), vornStsNotInitErr);
    EXPECT_EQ(vornsEvalFBank_16s32s_Sfs(shorts.data(), wide, fixed, 0), vornStsNotInitErr);
    EXPECT_EQ(vornsEvalFBank_32f(nullptr, dst, single), vornStsNullPtrErr) << "null comes first";
    single->pCenters = nullptr;
    EXPECT_EQ(vornsEvalFBank_32f(src.data(), dst, single), vornStsNullPtrErr) << "and so do missing centres";
    single->pCenters = centers;
    EXPECT_TRUE(dst.untouched() && narrow.untouched() && wide.untouched());
    EXPECT_EQ(vornsFBankFree_32f(nullptr), vornStsNullPtrErr);
    EXPECT_EQ(vornsFBankFree_16s(nullptr), vornStsNullPtrErr);
}

}  // namespace
