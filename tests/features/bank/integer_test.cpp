// The bank that is made and evaluated in integers.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <vector>

#include "features/bank/filter_bank.h"
#include "features/bank/integer_scale.h"
#include "model/filter_bank_integer.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Random;

struct Setting {
    int fftLen, sampleFreq, lowFreq, highFreq, nFilter, melMul, melDiv;
};
constexpr int Q15 = 32768;
const Setting settings[] = {
    {256, 8000, 64, 4000, 23, 1127 * Q15, 700 * Q15},
    {400, 16000, 0, 8000, 26, 2595 * Q15, 700 * Q15},
    {512, 16000, 133, 6855, 40, 1127 * Q15, 700 * Q15},
    {8192, 48000, 20, 24000, 24, 1127 * Q15, 700 * Q15},
    {8192, 44100, 0, 22050, 1, 1127 * Q15, 700 * Q15},
    {32, 8000, 0, 4000, 16, 1127 * Q15, 700 * Q15},
    {32, 8000, 0, 4000, 17, 1127 * Q15, 700 * Q15},
    {33, 8000, 100, 4000, 32, 1000 * Q15, 1000 * Q15},
    {64, 8000, 0, 1, 5, 1127 * Q15, 700 * Q15},
    // The ends of what is allowed, and centres far behind the spectrum.
    {32, 48000, 0, 1, 1, 524289, 524289},
    {1024, 48000, 0, 24000, 300, 1073741823, 524289},
    {512, 48000, 0, 24000, 257, 524289, 268435455},
    {8192, 1, 0, 24000, 6, 1073741823, 268435455},
    {8192, 1, 23999, 24000, 3, 524289, 524289},
    {8192, 7, 1, 24000, 9, 1127 * Q15, 268435455},
    {64, 1, 0, 24000, 12, 1127 * Q15, 524289},
    {64, 100, 30, 60, 12, 1127 * Q15, 700 * Q15},
};

int sizeFormula(int N, int nFilter) { return 2 * (nFilter + 2) * (4 * (N / 2) + 40) + 4 * nFilter + 176; }

model::IntegerBank modelOf(const Setting& s) {
    model::IntegerBank bank{s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter, s.melMul, s.melDiv, 0, {}};
    model::placeCenters(bank);
    return bank;
}

// A bank in a block of the size of the formula, some bytes away from an aligned address, with watched bytes around it.
class Bank {
public:
    explicit Bank(const Setting& s, std::size_t shift = 0) : Bank(s, modelOf(s).N, shift) {}
    operator const VornFBankState_32s*() { return reinterpret_cast<VornFBankState_32s*>(block_.data()); }
    VornFBankState_32s record() {
        VornFBankState_32s record;
        std::memcpy(&record, block_.data(), sizeof record);
        return record;
    }
    bool surroundingsUntouched() { return block_.surroundingsUntouched(); }
    int order = -1;

private:
    Bank(const Setting& s, int N, std::size_t shift)
        : block_(static_cast<std::size_t>(sizeFormula(N, s.nFilter)), shift) {
        EXPECT_EQ(
            vornsMelFBankInit_32s(reinterpret_cast<VornFBankState_32s*>(block_.data()), &order, s.fftLen, s.sampleFreq,
                                  s.lowFreq, s.highFreq, s.nFilter, s.melMul, s.melDiv, vornFBankWeightFreq),
            vornStsNoErr);
    }
    test::Offset<Vorn8u> block_;
};

// Centres show the scale only where one of them comes near the middle between two bins, so it is looked at itself.
TEST(IntegerScale, TablesAreTheirDefinitions) {
    for (int i = 0; i < 32; ++i) {
        EXPECT_EQ(vorn::integer_bank::lnOfOneAndPower[i], model::expTable1(i)) << i;
        EXPECT_EQ(vorn::integer_bank::lnOfOneLessPower[i], model::expTable2(i)) << i;
    }
}

TEST(IntegerScale, LogarithmAndExponentialEqualTheModel) {
    Random random(19);
    for (int bits = 0; bits < 62; ++bits) {
        for (int turn = 0; turn < 200; ++turn) {
            const std::int64_t least = std::int64_t{1} << bits;
            const std::int64_t x = turn == 0 ? least : least + random.integer(0, least - 1);
            ASSERT_EQ(vorn::integer_bank::lnQ22(x), static_cast<std::int64_t>(model::lnQ22(x))) << x;
        }
    }
    for (int turn = 0; turn < 20000; ++turn) {
        const std::int64_t q = turn < 2 ? turn * ((1 << 27) - 1) : random.integer(0, (1 << 27) - 1);
        const auto expected = static_cast<std::int64_t>(model::expLessOneQ22(q)) + (1 << 22);
        ASSERT_EQ(vorn::integer_bank::expQ22(q), expected) << q;
    }
}

TEST(IntegerBank, SizeIsTheFormula) {
    int size = -1;
    for (const auto& [fftLen, N] : {std::pair{32, 32}, {33, 64}, {256, 256}, {257, 512}, {8192, 8192}}) {
        for (int nFilter : {1, 5, N / 2}) {
            ASSERT_EQ(vornsMelFBankGetSize_32s(fftLen, nFilter, 2, &size), vornStsNoErr);
            EXPECT_EQ(size, sizeFormula(N, nFilter));
        }
    }
    ASSERT_EQ(vornsMelFBankGetSize_32s(256, 23, 2, &size), vornStsNoErr);
    EXPECT_EQ(size, 27868);  // 2 x 25 x 552 + 92 + 176
}

TEST(IntegerBank, EqualsTheModelAndStaysInItsBlock) {
    for (const Setting& s : settings) {
        const auto expected = modelOf(s);
        for (std::size_t shift : {0, 1, 31}) {
            Bank bank(s, shift);
            const auto record = bank.record();
            EXPECT_EQ(1 << bank.order, expected.N);
            EXPECT_EQ(record.flags, 2);
            EXPECT_EQ(record.nFilter, s.nFilter);
            EXPECT_EQ(record.nBins, expected.N / 2 + 1);
            EXPECT_TRUE(test::sameBits(record.pCenters, expected.c.data(), expected.c.size())) << s.sampleFreq;
            EXPECT_TRUE(bank.surroundingsUntouched());
            const int half = expected.N / 2;
            for (int k = 1; k <= s.nFilter; ++k) {
                std::vector<Vorn32s> rise(static_cast<std::size_t>(half)), fall(rise);
                const int left = expected.c[k - 1], centre = expected.c[k], right = expected.c[k + 1];
                for (int e = 0; e < half; ++e) {
                    if (left + e <= centre) rise[e] = model::integerRise(expected, k, left + e);
                    if (centre + 1 + e <= right) fall[e] = model::integerFall(expected, k, centre + 1 + e);
                }
                EXPECT_TRUE(test::sameBits(record.ppRise[k - 1], rise.data(), rise.size())) << k;
                EXPECT_TRUE(test::sameBits(record.ppFall[k - 1], fall.data(), fall.size())) << k;
            }
            for (int k = 0; k < s.nFilter + 2; ++k) {
                EXPECT_EQ(reinterpret_cast<std::uintptr_t>(record.ppRise[k]) % 32, 0u);
                EXPECT_EQ(reinterpret_cast<std::uintptr_t>(record.ppFall[k]) % 32, 0u);
                EXPECT_EQ(record.ppRise[k] - record.ppRise[0], std::int64_t{k} * half);
                EXPECT_EQ(record.ppFall[k] - record.ppFall[0], std::int64_t{k} * half);
            }
        }
    }
}

TEST(IntegerBank, TheBlockMayEndAndBeginAtAPage) {
    Setting s = settings[0];
    for (int nFilter : {1, 23, 129}) {  // one more than the size is told for
        s.nFilter = nFilter;
        Guarded<Vorn8u> block(static_cast<std::size_t>(sizeFormula(256, nFilter)));
        auto* bank = reinterpret_cast<VornFBankState_32s*>(block.data());
        int order;
        ASSERT_EQ(vornsMelFBankInit_32s(bank, &order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter,
                                        s.melMul, s.melDiv, 2),
                  vornStsNoErr);
        EXPECT_TRUE(block.surroundingsUntouched());
        Guarded<Vorn32s> src(129), dst(static_cast<std::size_t>(nFilter));
        EXPECT_EQ(vornsEvalFBank_32s_Sfs(src, dst, bank, 0), vornStsNoErr);
    }
}

// Centres where the mel scale has them: neither steps nor fixed-point numbers are asked, only their definition.
TEST(IntegerBank, CentresStandOnTheMelScale) {
    for (const Setting& s : {settings[0], settings[1], settings[2], settings[3], settings[7]}) {
        Bank bank(s);
        const double div = s.melDiv / 32768.0, binHz = double(s.sampleFreq) / (1 << bank.order);
        const double span = std::log((div + s.highFreq) / (div + s.lowFreq));
        for (int i = 0; i <= s.nFilter + 1; ++i) {
            const double hertz = (div + s.lowFreq) * std::exp(span * i / (s.nFilter + 1)) - div;
            EXPECT_NEAR(bank.record().pCenters[i], hertz / binHz, 0.51) << i << " of " << s.nFilter;
        }
    }
}

// The same bank in single: the same centres but for ties, and where they are the same, the same weights to 2^-24.
TEST(IntegerBank, IsTheBankOfSingles) {
    for (const Setting& s : {settings[0], settings[2], settings[3], settings[7]}) {
        Bank bank(s);
        VornFBankState_32f* single;
        int order;
        ASSERT_EQ(vornsMelFBankInitAlloc_32f(&single, &order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter,
                                             s.melMul / 32768.0f, s.melDiv / 32768.0f, 2),
                  vornStsNoErr);
        const auto record = bank.record();
        int compared = 0;
        for (int i = 0; i < s.nFilter + 2; ++i) EXPECT_NEAR(record.pCenters[i], single->pCenters[i], 1) << i;
        for (int k = 1; k <= s.nFilter; ++k) {
            const Vorn32s* c = record.pCenters + k;
            if (!std::equal(c - 1, c + 2, single->pCenters + k - 1)) continue;
            ++compared;
            for (int e = 0; e <= c[0] - c[-1]; ++e)
                EXPECT_NEAR(record.ppRise[k - 1][e] * 0x1p-30, single->ppRise[k - 1][e], 0x1p-24);
            for (int e = 0; e < c[1] - c[0]; ++e)
                EXPECT_NEAR(record.ppFall[k - 1][e] * 0x1p-30, single->ppFall[k - 1][e], 0x1p-24);
        }
        EXPECT_GT(compared, s.nFilter * 3 / 4);
        EXPECT_EQ(vornsFBankFree_32f(single), vornStsNoErr);
    }
}

std::vector<Vorn32s> evaluateModel(const VornFBankState_32s& bank, const std::vector<Vorn32s>& spectrum, int scale) {
    std::vector<Vorn32s> results;
    const int half = bank.nBins - 1;
    const auto side = [&](const Vorn32s* row, int first, int last) {
        std::vector<Vorn32s> weights;
        for (int j = first; j <= last && j <= half && j - first < half; ++j) weights.push_back(row[j - first]);
        return model::integerSum(spectrum, first, weights);
    };
    for (int k = 0; k < bank.nFilter; ++k) {
        const Vorn32s* c = bank.pCenters + k;
        const std::int64_t rise = side(bank.ppRise[k], c[0], c[1]), fall = side(bank.ppFall[k], c[1] + 1, c[2]);
        results.push_back(model::integerResult(model::wrapTo<std::int64_t>(model::Big{rise} + fall), scale));
    }
    return results;
}

TEST(IntegerBank, EvaluationEqualsTheModel) {
    Random random(1);
    for (const Setting& s : settings) {
        Bank bank(s, 3);
        const auto record = bank.record();
        const auto bins = static_cast<std::size_t>(record.nBins);
        const std::vector<std::vector<Vorn32s>> spectra = {
            random.integers<Vorn32s>(bins),
            random.integers<Vorn32s>(bins, 0, 1 << 22),
            random.pick(test::hardIntegers<Vorn32s>(), bins),
            std::vector<Vorn32s>(bins, INT_MAX),
            std::vector<Vorn32s>(bins, INT_MIN),
            std::vector<Vorn32s>(bins, -1),
        };
        for (const auto& spectrum : spectra) {
            for (int scale : {-31, -30, -20, -9, -8, -1, 0, 1, 8, 9, 20, 31}) {
                Guarded<Vorn32s> src(spectrum), dst(static_cast<std::size_t>(s.nFilter));
                ASSERT_EQ(vornsEvalFBank_32s_Sfs(src, dst, bank, scale), vornStsNoErr);
                const auto expected = evaluateModel(record, spectrum, scale);
                EXPECT_TRUE(test::sameBits(dst.data(), expected.data(), expected.size()))
                    << s.fftLen << "x" << s.nFilter << " scale " << scale;
                EXPECT_TRUE(dst.surroundingsUntouched());
            }
        }
    }
}

// Rows with edges and weights of our own.
TEST(IntegerBank, EveryLengthOfAStretchEqualsTheModel) {
    Random random(2);
    Bank bank({256, 8000, 64, 4000, 5, 1127 * Q15, 700 * Q15});
    const auto record = bank.record();
    for (int width = 0; width <= 25; ++width) {
        for (int first : {0, 1, 2, 3, -2}) {
            for (int c = 0; c < 7; ++c) record.pCenters[c] = std::min(128, first + c * width + (c > 3));
            for (int k = 0; k < 5; ++k) {
                for (int e = 0; e < 128; ++e) {
                    record.ppRise[k][e] = static_cast<Vorn32s>(random.integer(0, 1 << 30));
                    record.ppFall[k][e] = static_cast<Vorn32s>(random.integer((1 << 30) - 3, 1 << 30));
                }
            }
            for (std::size_t shift = 0; shift < 32; shift += 4) {
                const auto spectrum = random.integers<Vorn32s>(129);
                test::Offset<Vorn32s> src(129, shift), dst(5, 28 - shift);
                src.assign(spectrum);
                ASSERT_EQ(vornsEvalFBank_32s_Sfs(src, dst, bank, -8), vornStsNoErr);
                if (first < 0) continue;  // bins before the spectrum: nothing but reads in bounds is asked
                const auto expected = evaluateModel(record, spectrum, -8);
                EXPECT_TRUE(test::sameBits(dst.data(), expected.data(), 5)) << width << " " << first;
            }
        }
    }
}

// A side that rises from bin 0 to N/2 has one bin more than its row has weights: that bin is not read.
TEST(IntegerBank, ASideAcrossTheWholeSpectrum) {
    Bank bank({32, 8000, 0, 4000, 1, 1127 * Q15, 700 * Q15});
    const auto record = bank.record();
    const Vorn32s edges[] = {0, 16, 16};
    std::copy_n(edges, 3, record.pCenters);
    for (int e = 0; e < 16; ++e) record.ppRise[0][e] = 1 << 30, record.ppFall[0][e] = 1 << 30;
    Guarded<Vorn32s> src(std::vector<Vorn32s>(17, 1 << 10)), dst(1);
    ASSERT_EQ(vornsEvalFBank_32s_Sfs(src, dst, bank, -8), vornStsNoErr);
    EXPECT_EQ(dst[0], 16 * (1 << 18)) << "bins 0 to 15, in units of 2^-8";
}

TEST(IntegerBank, ScalesAndRounding) {
    Bank bank({32, 8000, 0, 4000, 1, 1127 * Q15, 700 * Q15});
    const auto record = bank.record();
    const Vorn32s edges[] = {2, 2, 3};
    std::copy_n(edges, 3, record.pCenters);
    record.ppRise[0][0] = 1 << 30;
    record.ppFall[0][0] = 1 << 7;
    std::vector<Vorn32s> src(17);
    Vorn32s dst;
    const auto eval = [&](Vorn32s x, Vorn32s y, int scale) {
        src[2] = x, src[3] = y;
        EXPECT_EQ(vornsEvalFBank_32s_Sfs(src.data(), &dst, bank, scale), vornStsNoErr);
        return dst;
    };
    EXPECT_EQ(eval(1000, 0, 0), 1000);
    EXPECT_EQ(eval(1000, 0, 3), 125);
    EXPECT_EQ(eval(1004, 0, 3), 126) << "125.5, a half is rounded up";
    EXPECT_EQ(eval(-1004, 0, 3), -125) << "-125.5";
    EXPECT_EQ(eval(1000, 0, -3), 8000);
    EXPECT_EQ(eval(1, 0, -30), 1 << 30);
    EXPECT_EQ(eval(1, 0, -31), INT_MAX);
    EXPECT_EQ(eval(1 << 30, 0, -31), INT_MAX) << "a sum that has no room for the shift";
    EXPECT_EQ(eval(INT_MAX, 0, 0), INT_MAX);
    EXPECT_EQ(eval(INT_MIN, 0, 0), INT_MIN);
    EXPECT_EQ(eval(-3, 0, -30), 1 << 30) << "no lower limit: the low 32 bits of -3 x 2^30";
    EXPECT_EQ(eval(-1, 0, -31), INT_MIN);
    EXPECT_EQ(eval(0, 1, -31), 0) << "a product below 2^8 is 0";
    EXPECT_EQ(eval(0, -1, -31), -512) << "and -1 below zero";
    EXPECT_EQ(eval(0, 2, -31), 512) << "1";
}

// A spectrum of one line gives, scaled up, the weights of its bin.
TEST(IntegerBank, ALineGivesTheWeightsOfItsBin) {
    const Setting& s = settings[0];
    Bank bank(s);
    const auto record = bank.record();
    for (int j = 0; j <= 128; ++j) {
        std::vector<Vorn32s> src(129), dst(23);
        src[static_cast<std::size_t>(j)] = 1 << 8;
        ASSERT_EQ(vornsEvalFBank_32s_Sfs(src.data(), dst.data(), bank, -22), vornStsNoErr);
        for (int k = 0; k < 23; ++k) {
            const Vorn32s* c = record.pCenters + k;
            Vorn32s weight = 0;
            if (j >= c[0] && j <= c[1]) weight = record.ppRise[k][j - c[0]];
            if (j > c[1] && j <= c[2]) weight = record.ppFall[k][j - c[1] - 1];
            EXPECT_EQ(dst[static_cast<std::size_t>(k)], weight) << k << " at " << j;
        }
    }
}

struct SizeArguments {
    Guarded<int> out = Guarded<int>(1);
    int* size = out.data();
    int fftLen = 256, nFilter = 23, flags = 2;
};

TEST(IntegerBank, GetSizeChecksInOrder) {
    using A = SizeArguments;
    test::expectCheckOrder<A>([] { return A(); },
                              [](A& a) { return vornsMelFBankGetSize_32s(a.fftLen, a.nFilter, a.flags, a.size); },
                              [](A& a) { return a.out.untouched(); },
                              {{"pSize", vornStsNullPtrErr, [](A& a) { a.size = nullptr; }},
                               {"nFilter 0", vornStsSizeErr, [](A& a) { a.nFilter = 0; }},
                               {"fftLen 31", vornStsSizeErr, [](A& a) { a.fftLen = 31; }},
                               {"fftLen 8193", vornStsSizeErr, [](A& a) { a.fftLen = 8193; }},
                               {"flags 1", vornStsMelFlagErr, [](A& a) { a.flags = 1; }},
                               {"flags 6", vornStsMelFlagErr, [](A& a) { a.flags = 6; }},
                               {"nFilter 129", vornStsSizeErr, [](A& a) { a.nFilter = 129; }}});
    int size;
    EXPECT_EQ(vornsMelFBankGetSize_32s(256, 128, 2, &size), vornStsNoErr);
}

struct InitArguments {
    Guarded<int> order = Guarded<int>(1);
    Guarded<Vorn8u> memory = Guarded<Vorn8u>(200000);
    Vorn8u* bank = memory.data();
    int* pOrder = order.data();
    Setting s = settings[0];
    int flags = 2;
};

TEST(IntegerBank, InitChecksInOrder) {
    using A = InitArguments;
    test::expectCheckOrder<A>(
        [] { return A(); },
        [](A& a) {
            return vornsMelFBankInit_32s(reinterpret_cast<VornFBankState_32s*>(a.bank), a.pOrder, a.s.fftLen,
                                         a.s.sampleFreq, a.s.lowFreq, a.s.highFreq, a.s.nFilter, a.s.melMul, a.s.melDiv,
                                         a.flags);
        },
        [](A& a) { return a.order.untouched() && a.memory.untouched(); },
        {{"bank", vornStsNullPtrErr, [](A& a) { a.bank = nullptr; }},
         {"pOrder", vornStsNullPtrErr, [](A& a) { a.pOrder = nullptr; }},
         {"nFilter 0", vornStsSizeErr, [](A& a) { a.s.nFilter = 0; }},
         {"highFreq 0", vornStsSizeErr, [](A& a) { a.s.highFreq = 0; }},
         {"fftLen 31", vornStsSizeErr, [](A& a) { a.s.fftLen = 31; }},
         {"fftLen 8193", vornStsSizeErr, [](A& a) { a.s.fftLen = 8193; }},
         {"flags 0", vornStsMelFlagErr, [](A& a) { a.flags = 0; }},
         {"sampleFreq 0", vornStsSizeErr, [](A& a) { a.s.sampleFreq = 0; }},
         {"sampleFreq 48001", vornStsSizeErr, [](A& a) { a.s.sampleFreq = 48001; }},
         {"lowFreq -1", vornStsSizeErr, [](A& a) { a.s.lowFreq = -1; }},
         {"lowFreq at high", vornStsMelFreqErr,
          [](A& a) { a.s.highFreq = std::max(a.s.highFreq, 1), a.s.lowFreq = std::max(a.s.lowFreq, 24000); }},
         {"highFreq 24001", vornStsMelFreqErr,
          [](A& a) {
              if (a.s.highFreq > 0) a.s.highFreq = 24001;
          }},
         {"melDiv small", vornStsBadArgErr, [](A& a) { a.s.melDiv = 524288; }},
         {"melDiv large", vornStsBadArgErr, [](A& a) { a.s.melDiv = 268435456; }},
         {"melMul small", vornStsBadArgErr, [](A& a) { a.s.melMul = 524288; }},
         {"melMul large", vornStsBadArgErr, [](A& a) { a.s.melMul = 1073741824; }},
         {"nFilter 130", vornStsSizeErr, [](A& a) { a.s.nFilter = 130; }}});
    A a;
    const auto init = [&](int low, int high) {
        return vornsMelFBankInit_32s(reinterpret_cast<VornFBankState_32s*>(a.bank), a.pOrder, 256, 8000, low, high, 23,
                                     1127 * Q15, 700 * Q15, 2);
    };
    EXPECT_EQ(init(4000, 4000), vornStsMelFreqErr);
    EXPECT_EQ(init(INT_MAX, 4000), vornStsMelFreqErr);
    EXPECT_EQ(init(0, 24001), vornStsMelFreqErr);
    EXPECT_EQ(init(0, 24000), vornStsNoErr) << "also above half the sampling rate";
    EXPECT_EQ(init(3999, 4000), vornStsNoErr);
}

struct EvalArguments {
    Bank bank = Bank(settings[0]);
    std::vector<Vorn32s> spectrum = std::vector<Vorn32s>(129);
    Guarded<Vorn32s> out = Guarded<Vorn32s>(23);
    const Vorn32s* src = spectrum.data();
    Vorn32s* dst = out.data();
    const VornFBankState_32s* context = bank;
    int scale = 0;
};

TEST(IntegerBank, EvaluationChecksInOrder) {
    using A = EvalArguments;
    test::expectCheckOrder<A>([] { return A(); },
                              [](A& a) { return vornsEvalFBank_32s_Sfs(a.src, a.dst, a.context, a.scale); },
                              [](A& a) { return a.out.untouched(); },
                              {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                               {"bank", vornStsNullPtrErr, [](A& a) { a.context = nullptr; }},
                               {"scale 32", vornStsBadArgErr, [](A& a) { a.scale = 32; }},
                               {"scale -32", vornStsBadArgErr, [](A& a) { a.scale = -32; }}});
}

}  // namespace
