// Evaluation of mel filter banks.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
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
using test::Random;
using test::sameBits;
using test::Setting;
using test::settings;
using test::Single;

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

TEST(EvalFBank, BinsBehindTheSpectrumAreNeverRead) {
    const BankBetween bank({30, 31, 31, 32}, 1);
    Guarded<float> src(std::vector<float>(33, 0.0f));
    src[30] = 1, src[31] = 2, src[32] = 4;
    float dst[2];
    ASSERT_EQ(vornsEvalFBank_32f(src, dst, bank), vornStsNoErr);
    EXPECT_EQ(dst[0], 1 + 2 + 4) << "bins 30 and 31, and the last bin for the empty side";
    EXPECT_EQ(dst[1], 2 + 4) << "and the falling side one bin late finds none";
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

constexpr int scales[] = {-50, -34, -30, -20, -16, -15, -14, -13, -7,           -1,           0,       1,      2,
                          3,   7,   16,  40,  49,  50,  51,  64,  INT_MAX - 14, INT_MAX - 13, INT_MAX, INT_MIN};

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
    for (std::size_t shift : {0, 1, 3, 8, 16, 24, 30}) {
        test::Offset<Vorn8u> block(static_cast<std::size_t>(size), shift);
        auto* bank = reinterpret_cast<VornFBankState_32f*>(block.data());
        ASSERT_EQ(Single::init(bank, &order, s, flags), vornStsNoErr);
        std::vector<float> dst(23);
        ASSERT_EQ(vornsEvalFBank_32f(frame.data(), dst.data(), bank), vornStsNoErr);
        EXPECT_TRUE(sameBits(dst.data(), expected.data(), 23));
        EXPECT_TRUE(block.surroundingsUntouched());
    }
}

TEST(EvalFBank, FixedFormsInACallersBlock) {
    const Setting& s = settings[0];
    Random random(8);
    const auto frame = random.integers<Vorn16s>(256);
    for (int samples : {0, static_cast<int>(vornFBankSamples)}) {
        const int flags = vornFBankWeightMel | samples;
        int size = 0, order;
        ASSERT_EQ(vornsMelFBankGetSize_16s(s.fftLen, s.nFilter, flags, &size), vornStsNoErr);
        const Bank<Fixed> allocated(s, flags);
        std::vector<Vorn32s> expected(23);
        ASSERT_EQ(vornsEvalFBank_16s32s_Sfs(frame.data(), expected.data(), allocated, 0), vornStsNoErr);
        for (std::size_t shift : {0, 1, 3, 8, 30}) {
            test::Offset<Vorn8u> block(static_cast<std::size_t>(size), shift);
            auto* bank = reinterpret_cast<VornFBankState_16s*>(block.data());
            ASSERT_EQ(Fixed::init(bank, &order, s, flags), vornStsNoErr);
            std::vector<Vorn32s> dst(23);
            ASSERT_EQ(vornsEvalFBank_16s32s_Sfs(frame.data(), dst.data(), bank, 0), vornStsNoErr);
            EXPECT_EQ(dst, expected) << shift;
            EXPECT_TRUE(block.surroundingsUntouched());
        }
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

// A bank in a block of its own, so that it may be broken.
template <class Form, class Value, class Result>
struct EvalArguments {
    using State = typename Form::State;
    std::vector<double> memory = std::vector<double>(4000);
    std::vector<Value> spectrum = std::vector<Value>(129);
    Guarded<Result> out = Guarded<Result>(23);
    State* bank = reinterpret_cast<State*>(memory.data());
    const Value* src = spectrum.data();
    Result* dst = out.data();
    EvalArguments() {
        int order;
        EXPECT_EQ(Form::init(bank, &order, settings[0], vornFBankWeightMel), vornStsNoErr);
    }
};

template <class Form, class Value, class Result>
void expectEvalOrder(VornStatus (*evaluate)(const Value*, Result*, const typename Form::State*)) {
    using A = EvalArguments<Form, Value, Result>;
    test::expectCheckOrder<A>([] { return A(); }, [=](A& a) { return evaluate(a.src, a.dst, a.bank); },
                              [](A& a) { return a.out.untouched(); },
                              {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                               {"bank", vornStsNullPtrErr, [](A& a) { a.bank = nullptr; }},
                               {"centres", vornStsNullPtrErr, [](A& a) { a.bank->pCenters = nullptr; }},
                               {"ready", vornStsNotInitErr, [](A& a) { a.bank->ready = 0; }}});
}

TEST(EvalFBank, ChecksInOrder) {
    expectEvalOrder<Single, Vorn32f, Vorn32f>(vornsEvalFBank_32f);
    expectEvalOrder<Fixed, Vorn16s, Vorn16s>([](const Vorn16s* src, Vorn16s* dst, const VornFBankState_16s* bank) {
        return vornsEvalFBank_16s_Sfs(src, dst, bank, 0);
    });
    expectEvalOrder<Fixed, Vorn16s, Vorn32s>([](const Vorn16s* src, Vorn32s* dst, const VornFBankState_16s* bank) {
        return vornsEvalFBank_16s32s_Sfs(src, dst, bank, 0);
    });
}

}  // namespace
