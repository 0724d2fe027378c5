// The filter banks of noise reduction: memory, corners, weights, and what they make of a spectrum.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "features/bank/filter_bank.h"
#include "model/aurora_banks.h"
#include "model/filter_bank.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/precise.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Random;
using test::sameBits;

// The four banks behind one face.
struct Singles {
    using State = VornFBankState_32f;
    using Weight = Vorn32f;
    static constexpr auto release = vornsFBankFree_32f;
    static constexpr auto getCenters = vornsFBankGetCenters_32f;
    static constexpr auto setCenters = vornsFBankSetCenters_32f;
    static constexpr auto getCoeffs = vornsFBankGetCoeffs_32f;
    static int shift(const State&) { return 14; }
};
struct Fixed {
    using State = VornFBankState_16s;
    using Weight = Vorn32s;
    static constexpr auto release = vornsFBankFree_16s;
    static constexpr auto getCenters = vornsFBankGetCenters_16s;
    static constexpr auto setCenters = vornsFBankSetCenters_16s;
    static constexpr auto getCoeffs = vornsFBankGetCoeffs_16s;
    static int shift(const State& bank) { return bank.weightShift; }
};
template <class Weight>
struct Low {
    static constexpr std::size_t filters = 25, rows = 27, centers = 28;
    static constexpr bool high = false;
    static model::AuroraBank<Weight> expected() { return model::lowAuroraBank<Weight>(); }
};
template <class Weight>
struct High {
    static constexpr std::size_t filters = 3, rows = 5, centers = 5;
    static constexpr bool high = true;
    static model::AuroraBank<Weight> expected() { return model::highAuroraBank<Weight>(); }
};
struct Low32f : Singles, Low<Vorn32f> {
    static constexpr auto getSize = vornsMelFBankGetSizeLow_Aurora_32f;
    static constexpr auto init = vornsMelFBankInitLow_Aurora_32f;
    static constexpr auto initAlloc = vornsMelFBankInitAllocLow_Aurora_32f;
    static constexpr int size = 15768;
};
struct Low16s : Fixed, Low<Vorn32s> {
    static constexpr auto getSize = vornsMelFBankGetSizeLow_Aurora_16s;
    static constexpr auto init = vornsMelFBankInitLow_Aurora_16s;
    static constexpr auto initAlloc = vornsMelFBankInitAllocLow_Aurora_16s;
    static constexpr int size = 15776;
};
struct High32f : Singles, High<Vorn32f> {
    static constexpr auto getSize = vornsMelFBankGetSizeHigh_Aurora_32f;
    static constexpr auto init = vornsMelFBankInitHigh_Aurora_32f;
    static constexpr auto initAlloc = vornsMelFBankInitAllocHigh_Aurora_32f;
    static constexpr int size = 3184;
};
struct High16s : Fixed, High<Vorn32s> {
    static constexpr auto getSize = vornsMelFBankGetSizeHigh_Aurora_16s;
    static constexpr auto init = vornsMelFBankInitHigh_Aurora_16s;
    static constexpr auto initAlloc = vornsMelFBankInitAllocHigh_Aurora_16s;
    static constexpr int size = 3192;
};

template <class Member>
class Allocated {
public:
    Allocated() { EXPECT_EQ(Member::initAlloc(&bank_), vornStsNoErr); }
    ~Allocated() { EXPECT_EQ(Member::release(bank_), vornStsNoErr); }
    Allocated(const Allocated&) = delete;
    typename Member::State* operator->() const { return bank_; }
    operator typename Member::State *() const { return bank_; }

private:
    typename Member::State* bank_ = nullptr;
};

template <class Member>
void expectContents(const typename Member::State& bank, const model::AuroraBank<typename Member::Weight>& expected) {
    EXPECT_EQ(bank.flags, 2);
    EXPECT_EQ(bank.fftLen, 128);
    EXPECT_EQ(bank.nFilter, static_cast<int>(Member::filters));
    EXPECT_EQ(bank.nLinear, static_cast<int>(Member::filters));
    EXPECT_EQ(bank.melMul, 2595.0f);
    EXPECT_EQ(bank.melDiv, 700.0f);
    EXPECT_EQ(bank.ready, 1);
    EXPECT_EQ(bank.pFftSpec, nullptr);
    EXPECT_EQ(bank.pWork, nullptr);
    EXPECT_EQ(Member::shift(bank), 14);
    ASSERT_EQ(expected.c.size(), Member::centers);
    EXPECT_TRUE(sameBits(bank.pCenters, expected.c.data(), Member::centers));
    const auto address = [](const void* p) { return reinterpret_cast<std::uintptr_t>(p); };
    EXPECT_EQ(address(bank.pCenters) % 32, 0u);
    EXPECT_EQ(address(bank.ppRise) % 32, 0u);
    EXPECT_EQ(address(bank.ppFall) % 32, 0u);
    for (std::size_t j = 0; j < Member::rows; ++j) {
        EXPECT_TRUE(sameBits(bank.ppRise[j], expected.rise[j].data(), 64)) << "row " << j;
        EXPECT_TRUE(sameBits(bank.ppFall[j], expected.fall[j].data(), 64)) << "row " << j;
        EXPECT_EQ(address(bank.ppRise[j] - 3) % 32, 0u);
        EXPECT_EQ(address(bank.ppFall[j]) % 32, 0u);
        if (j > 0) {
            EXPECT_EQ(bank.ppRise[j] - bank.ppRise[j - 1], 72);
            EXPECT_EQ(bank.ppFall[j] - bank.ppFall[j - 1], 64);
        }
    }
}

template <class Member>
class AuroraBank : public testing::Test {};
using Members = testing::Types<Low32f, Low16s, High32f, High16s>;
TYPED_TEST_SUITE(AuroraBank, Members);

TYPED_TEST(AuroraBank, Size) {
    Guarded<int> size(1);
    ASSERT_EQ(TypeParam::getSize(size), vornStsNoErr);
    EXPECT_EQ(size[0], TypeParam::size);
}

TYPED_TEST(AuroraBank, AllocatedEqualsTheModel) {
    const Allocated<TypeParam> bank;
    expectContents<TypeParam>(*bank, TypeParam::expected());
}

TYPED_TEST(AuroraBank, InABlockOfTheReportedSizeAtAnyAddress) {
    const auto expected = TypeParam::expected();
    typename TypeParam::State record;
    for (std::size_t shift = 0; shift < 64; ++shift) {
        test::Offset<Vorn8u> block(TypeParam::size, shift);
        ASSERT_EQ(TypeParam::init(block), vornStsNoErr);
        EXPECT_TRUE(block.surroundingsUntouched()) << shift;
        std::memcpy(&record, block.data(), sizeof record);
        expectContents<TypeParam>(record, expected);
        const auto* last = reinterpret_cast<const Vorn8u*>(record.ppFall[TypeParam::rows - 1] + 64);
        EXPECT_LE(last, block.data() + TypeParam::size);
    }
    const Guarded<Vorn8u> block(TypeParam::size);
    ASSERT_EQ(TypeParam::init(block), vornStsNoErr);
    EXPECT_TRUE(block.surroundingsUntouched());
    std::memcpy(&record, block.data(), sizeof record);
    expectContents<TypeParam>(record, expected);
}

// The corners in double or better, without a rounding on the way: none comes near the middle between two bins.
TYPED_TEST(AuroraBank, CornersAreEquallySpacedInMel) {
    const std::vector<int> corners = TypeParam::high
                                         ? std::vector<int>{1, 8, 19, 37, 64}
                                         : std::vector<int>{0,  1,  2,  3,  4,  5,  7,  8,  10, 12, 14, 16, 18, 20,
                                                            23, 26, 29, 32, 36, 39, 44, 48, 53, 58, 64, 64, 64};
    const Allocated<TypeParam> bank;
    const int first = TypeParam::high ? 0 : 1;
    EXPECT_EQ(bank->pCenters[0], TypeParam::high ? 1 : 0);
    EXPECT_TRUE(sameBits(bank->pCenters + first, corners.data(), corners.size()));
    using test::Precise;
    const Precise low = log(Precise(1.0) + Precise(TypeParam::high ? 80.0 : 1.0) / Precise(700.0));
    const Precise high = log(Precise(1.0) + Precise(4000.0) / Precise(700.0));
    const int steps = TypeParam::high ? 4 : 24;
    for (int i = 0; i <= steps; ++i) {
        const Precise mel = low + Precise(i) * (high - low) / Precise(steps);
        const double bin = ((exp(mel) - Precise(1.0)) * Precise(700.0) * Precise(128.0) / Precise(8000.0)).toDouble();
        EXPECT_EQ(corners[static_cast<std::size_t>(i)], std::lround(bin));
        EXPECT_GT(std::abs(bin - std::floor(bin) - 0.5), 1e-3) << i;
    }
}

// A triangle between three edges, in double: the filter's own weights, whatever rows hold them.
TYPED_TEST(AuroraBank, EachFilterIsATriangle) {
    const Allocated<TypeParam> bank;
    const Vorn32s* c = bank->pCenters;
    for (std::size_t k = 0; k < TypeParam::filters; ++k) {
        const double p = c[k], q = c[k + 1], r = c[k + 2];
        const auto height = [=](int j) {
            if (j == q) return 1.0;
            return j < q ? std::max((j - p) / (q - p), 0.0) : std::max((r - j) / (r - q), 0.0);
        };
        double area = 0;
        for (int j = 0; j <= 64; ++j) area += height(j);
        const double unit = TypeParam::high ? 1.0 : area;
        const auto filter = static_cast<int>(k) + 1;
        std::vector<float> coeffs(static_cast<std::size_t>(r - p) + 1);
        ASSERT_EQ(TypeParam::getCoeffs(bank, filter, coeffs.data()), vornStsNoErr);
        for (int j = c[k]; j <= c[k + 2]; ++j) {
            const double weight = static_cast<double>(coeffs[static_cast<std::size_t>(j - c[k])]);
            const bool exact = std::is_same_v<typename TypeParam::Weight, Vorn32f>;
            EXPECT_NEAR(weight, height(j) / unit, exact ? 1.5e-7 : 2.5 / 16384) << "bin " << j << " of " << filter;
        }
    }
}

// With one bank's own weights and a spectrum of one line, evaluation tells the weights as well, and no other filter
// answers.
TEST(AuroraBankEvaluation, ALineIsWeightedByItsTriangles) {
    const Allocated<Low32f> low;
    const Allocated<High32f> high;
    for (int j = 0; j <= 64; ++j) {
        Guarded<float> spectrum(std::vector<float>(65));
        spectrum[static_cast<std::size_t>(j)] = 1.0f;
        for (bool top : {false, true}) {
            const std::size_t filters = top ? 3 : 25;
            const Vorn32s* c = top ? high->pCenters : low->pCenters;
            Guarded<float> energy(filters);
            ASSERT_EQ(vornsEvalFBank_32f(spectrum, energy, top ? high : low), vornStsNoErr);
            EXPECT_TRUE(energy.surroundingsUntouched());
            for (std::size_t k = 0; k < filters; ++k) {
                const bool inside = (j > c[k] || j == c[k + 1]) && (j < c[k + 2] || j == c[k + 1]);
                EXPECT_EQ(energy[k] > 0, inside) << "bin " << j << ", filter " << k;
            }
        }
    }
}

// Of a flat spectrum each filter of unit area makes the level; the others their area, half the distance of their edges.
TEST(AuroraBankEvaluation, FlatSpectrum) {
    const Guarded<float> flat(std::vector<float>(65, 3.0f));
    Guarded<float> bands(25), highBands(3);
    ASSERT_EQ(vornsEvalFBank_32f(flat, bands, Allocated<Low32f>()), vornStsNoErr);
    for (float band : bands) EXPECT_NEAR(band, 3.0f, 1e-6f);
    ASSERT_EQ(vornsEvalFBank_32f(flat, highBands, Allocated<High32f>()), vornStsNoErr);
    EXPECT_NEAR(highBands[0], 3 * 9.0f, 1e-5f);
    EXPECT_NEAR(highBands[1], 3 * 14.5f, 1e-5f);
    EXPECT_NEAR(highBands[2], 3 * 22.5f, 1e-5f);

    const Guarded<Vorn16s> flat16(std::vector<Vorn16s>(65, 16384));
    Guarded<Vorn16s> bands16(25), highBands16(3);
    ASSERT_EQ(vornsEvalFBank_16s_Sfs(flat16, bands16, Allocated<Low16s>(), 0), vornStsNoErr);
    for (Vorn16s band : bands16) {
        EXPECT_LE(band, 16384);
        EXPECT_GE(band, 16384 - 11) << "each of up to eleven weights is truncated";
    }
    ASSERT_EQ(vornsEvalFBank_16s_Sfs(flat16, highBands16, Allocated<High16s>(), 4), vornStsNoErr);
    EXPECT_NEAR(highBands16[0], 9 * 1024, 2);
    EXPECT_NEAR(highBands16[1], 14 * 1024 + 512, 2);
    EXPECT_NEAR(highBands16[2], 22 * 1024 + 512, 3);
}

// The first filter is bin 0 alone, and bin 64 is in the last one.
TEST(AuroraBankEvaluation, FirstAndLastBin) {
    std::vector<float> spectrum(65);
    spectrum[0] = 7.0f;
    spectrum[64] = 5.0f;
    std::vector<float> bands(25);
    const Allocated<Low32f> bank;
    ASSERT_EQ(vornsEvalFBank_32f(spectrum.data(), bands.data(), bank), vornStsNoErr);
    EXPECT_EQ(bands[0], 7.0f);
    for (std::size_t k = 1; k < 24; ++k) EXPECT_EQ(bands[k], 0.0f);
    EXPECT_NEAR(bands[24], 5.0f / 3.5f, 1e-6f) << "1/6 + 2/6 + ... + 1 is 3.5";
    EXPECT_EQ(bank->ppRise[0][0], 1.0f);
    EXPECT_EQ(bank->ppRise[1][1], 1.0f) << "between bins 0 and 2 there is bin 1 alone";
    EXPECT_EQ(bank->ppFall[5][0], 1.0f / 3.0f) << "a half beside a peak of one, over one and a half";
    EXPECT_EQ(bank->ppRise[5][1], 2.0f / 3.0f);

    const Allocated<Low16s> fixed;
    EXPECT_EQ(fixed->ppRise[0][0], 16384);
    EXPECT_EQ(fixed->ppFall[5][0], 5461);
    EXPECT_EQ(fixed->ppRise[5][1], 10922);
    // Up 2730, 5461, 8192, 10922, 13653, 16384: 57342 in all.
    const Vorn32s last[] = {0, 780, 1560, 2340, 3120, 3900, 4681};
    EXPECT_TRUE(sameBits(fixed->ppRise[24], last, 7));
}

TEST(AuroraBankEvaluation, EqualsTheModel) {
    Random random(7);
    const Allocated<Low32f> low;
    const Allocated<High32f> high;
    const auto lowModel = model::lowAuroraBank<float>();
    const auto highModel = model::highAuroraBank<float>();
    const auto expected = [](const std::vector<float>& s, const auto& bank, std::size_t filters) {
        return model::evaluate(s, bank.c, {bank.rise.begin(), bank.rise.begin() + static_cast<int>(filters)},
                               {bank.fall.begin(), bank.fall.begin() + static_cast<int>(filters)});
    };
    for (int turn = 0; turn < 200; ++turn) {
        const auto s = turn % 4 == 3 ? random.pick(test::hardFloats<float>(), 65) : random.floats(65, 0, 1e6);
        const Guarded<float> spectrum(s);
        Guarded<float> bands(25), highBands(3);
        ASSERT_EQ(vornsEvalFBank_32f(spectrum, bands, low), vornStsNoErr);
        ASSERT_EQ(vornsEvalFBank_32f(spectrum, highBands, high), vornStsNoErr);
        EXPECT_TRUE(sameBits(bands.values(), expected(s, lowModel, 25)));
        EXPECT_TRUE(sameBits(highBands.values(), expected(s, highModel, 3)));
    }
}

TEST(AuroraBankEvaluation, FixedEqualsTheModel) {
    Random random(8);
    const auto lowModel = model::lowAuroraBank<std::int32_t>();
    const auto highModel = model::highAuroraBank<std::int32_t>();
    const Allocated<Low16s> low;
    const Allocated<High16s> high;
    for (int turn = 0; turn < 200; ++turn) {
        const auto s = random.integers<Vorn16s>(65);
        std::vector<std::int32_t> wide(s.begin(), s.end());
        wide.resize(200);
        const Guarded<Vorn16s> spectrum(s);
        for (bool top : {false, true}) {
            const std::size_t filters = top ? 3 : 25;
            const auto& bank = top ? highModel : lowModel;
            const int scale = turn % 7 - 3;
            Guarded<Vorn32s> energy(filters);
            ASSERT_EQ(vornsEvalFBank_16s32s_Sfs(spectrum, energy, top ? high : low, scale), vornStsNoErr);
            for (std::size_t k = 0; k < filters; ++k) {
                const std::int64_t sum = model::fixedSum(wide, bank.c[k], bank.rise[k]) +
                                         model::fixedSum(wide, bank.c[k + 1] + 1, bank.fall[k]);
                EXPECT_EQ(energy[k], model::shifted(sum, 14 + scale)) << k;
            }
        }
    }
}

TYPED_TEST(AuroraBank, CentresAreReadAndSet) {
    const Allocated<TypeParam> bank;
    const auto expected = TypeParam::expected();
    Guarded<Vorn32s> centers(TypeParam::filters + 2);
    ASSERT_EQ(TypeParam::getCenters(bank, centers), vornStsNoErr);
    EXPECT_TRUE(sameBits(centers.data(), expected.c.data(), TypeParam::filters + 2));
    ASSERT_EQ(TypeParam::setCenters(bank, centers), vornStsNoErr);
    expectContents<TypeParam>(*bank, expected);
}

TYPED_TEST(AuroraBank, TheSameInEveryRoundingMode) {
    using test::RoundingMode;
    const auto expected = TypeParam::expected();
    for (unsigned mode : {RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        typename TypeParam::State* bank = nullptr;
        {
            const RoundingMode scope(mode);
            ASSERT_EQ(TypeParam::initAlloc(&bank), vornStsNoErr);
        }
        expectContents<TypeParam>(*bank, expected);
        EXPECT_EQ(TypeParam::release(bank), vornStsNoErr);
    }
}

TYPED_TEST(AuroraBank, AllocationFailureLeavesNothingBehind) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    int calls;
    {
        test::FailAllocation count(0);
        typename TypeParam::State* bank;
        ASSERT_EQ(TypeParam::initAlloc(&bank), vornStsNoErr);
        calls = count.calls();
        ASSERT_EQ(TypeParam::release(bank), vornStsNoErr);
        EXPECT_EQ(count.outstanding(), 0);
    }
    EXPECT_GE(calls, 4) << "the record, the corners and the rows of both sides";
    for (int n = 1; n <= calls; ++n) {
        test::FailAllocation fail(n);
        auto* bank = reinterpret_cast<typename TypeParam::State*>(&fail);
        EXPECT_EQ(TypeParam::initAlloc(&bank), vornStsMemAllocErr) << n << " of " << calls;
        EXPECT_EQ(bank, nullptr);
        EXPECT_EQ(fail.outstanding(), 0) << n << " of " << calls;
    }
}

TYPED_TEST(AuroraBank, NullPointers) {
    EXPECT_EQ(TypeParam::getSize(nullptr), vornStsNullPtrErr);
    EXPECT_EQ(TypeParam::init(nullptr), vornStsNullPtrErr);
    EXPECT_EQ(TypeParam::initAlloc(nullptr), vornStsNullPtrErr);
}

}  // namespace
