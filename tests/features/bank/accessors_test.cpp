// Centres and weights of filter banks, read and set by the caller.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "banks.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"

namespace {

using test::Bank;
using test::EmptySetting;
using test::Fixed;
using test::Guarded;
using test::Random;
using test::sameBits;
using test::Setting;
using test::settings;
using test::Single;

template <class Form>
class BankAccess : public testing::Test {
protected:
    // The weights of a filter as their definition has them.
    static std::vector<float> coeffs(const typename Form::State* bank, int filter) {
        const Vorn32s* c = bank->pCenters + filter;
        std::vector<float> values;
        const double unit = std::is_same_v<Form, Single> ? 1.0 : 16384.0;
        for (int e = 0; e < c[0] - c[-1] + 1; ++e)
            values.push_back(static_cast<float>(bank->ppRise[filter - 1][e] / unit));
        for (int e = 0; e < c[1] - c[0]; ++e) values.push_back(static_cast<float>(bank->ppFall[filter - 1][e] / unit));
        return values;
    }
};

using Forms = testing::Types<Single, Fixed>;
TYPED_TEST_SUITE(BankAccess, Forms);

TYPED_TEST(BankAccess, CentresOfMadeBanks) {
    for (const Setting& s : settings) {
        const Bank<TypeParam> bank(s, vornFBankWeightFreq);
        const auto len = static_cast<std::size_t>(s.nFilter + 2);
        Guarded<Vorn32s> centers(len);
        ASSERT_EQ(TypeParam::getCenters(bank, centers), vornStsNoErr);
        EXPECT_TRUE(sameBits(centers.data(), bank->pCenters, len));
        EXPECT_TRUE(centers.surroundingsUntouched());
        ASSERT_EQ(TypeParam::setCenters(bank, centers), vornStsNoErr);
        EXPECT_TRUE(sameBits(centers.data(), bank->pCenters, len));
    }
}

TYPED_TEST(BankAccess, CoefficientsOfMadeBanks) {
    for (const Setting& s : settings) {
        const Bank<TypeParam> bank(s, vornFBankWeightMel);
        for (int k = 1; k <= s.nFilter; ++k) {
            const auto expected = this->coeffs(bank, k);
            Guarded<float> coeffs(expected.size());
            ASSERT_EQ(TypeParam::getCoeffs(bank, k, coeffs), vornStsNoErr);
            EXPECT_TRUE(sameBits(coeffs.data(), expected.data(), expected.size())) << k;
            EXPECT_TRUE(coeffs.surroundingsUntouched());
        }
    }
}

// A spectrum of one line gives the weights of its bin, as the caller reads them.
TYPED_TEST(BankAccess, ALineGivesTheCoefficientsOfItsBin) {
    const Setting& s = settings[0];
    for (int flags : {vornFBankWeightMel, vornFBankWeightFreq}) {
        const Bank<TypeParam> bank(s, flags);
        std::vector<Vorn32s> c(25);
        ASSERT_EQ(TypeParam::getCenters(bank, c.data()), vornStsNoErr);
        const int line = 1 << 14;
        const float unit = std::is_same_v<TypeParam, Single> ? 1.0f / line : 1.0f / 16384;
        std::vector<std::vector<float>> coeffs(24);
        for (int k = 1; k <= 23; ++k) {
            coeffs[k].resize(static_cast<std::size_t>(c[k + 1] - c[k - 1] + 1));
            ASSERT_EQ(TypeParam::getCoeffs(bank, k, coeffs[k].data()), vornStsNoErr);
        }
        for (int j = 0; j <= 128; ++j) {
            std::vector<test::ValueOf<TypeParam>> src(129);
            std::vector<test::ResultOf<TypeParam>> dst(23);
            src[static_cast<std::size_t>(j)] = line;
            ASSERT_EQ(test::evaluate(src.data(), dst.data(), bank), vornStsNoErr);
            for (int k = 1; k <= 23; ++k) {
                const bool inside = j >= c[k - 1] && j <= c[k + 1];
                EXPECT_EQ(static_cast<float>(dst[k - 1]) * unit, inside ? coeffs[k][j - c[k - 1]] : 0.0f)
                    << k << " at " << j;
            }
        }
    }
}

TYPED_TEST(BankAccess, WhatIsSetIsRead) {
    Random random(1);
    for (int samples : {0, 4}) {
        const Bank<TypeParam> bank(EmptySetting{64, 6}, samples);
        for (const std::vector<Vorn32s>& centers : {std::vector<Vorn32s>{0, 3, 7, 8, 8, 8, 20, 32},
                                                    {0, 0, 0, 0, 0, 0, 0, 0},
                                                    {0, 0, 0, 0, 0, 0, 0, 32},
                                                    {0, 32, 32, 32, 32, 32, 32, 32},
                                                    {32, 32, 32, 32, 32, 32, 32, 32}}) {
            ASSERT_EQ(TypeParam::setCenters(bank, centers.data()), vornStsNoErr);
            std::vector<Vorn32s> read(8);
            ASSERT_EQ(TypeParam::getCenters(bank, read.data()), vornStsNoErr);
            EXPECT_EQ(read, centers);
            for (int turn = 0; turn < 3; ++turn) {
                std::vector<std::vector<float>> given(7);
                for (int k = 1; k <= 6; ++k) {
                    for (int j = centers[k - 1]; j <= centers[k + 1]; ++j) {
                        given[k].push_back(static_cast<float>(random.integer(-40000, 40000)) / 16384.0f);
                    }
                    const Guarded<float> coeffs(given[k]);
                    ASSERT_EQ(TypeParam::setCoeffs(bank, k, coeffs), vornStsNoErr);
                }
                for (int k = 1; k <= 6; ++k) {
                    Guarded<float> coeffs(given[k].size());
                    ASSERT_EQ(TypeParam::getCoeffs(bank, k, coeffs), vornStsNoErr);
                    EXPECT_EQ(coeffs.values(), given[k]) << k;
                }
            }
        }
    }
}

TEST(BankAccessFixed, ConversionOfCoefficients) {
    const Bank<Fixed> bank(EmptySetting{16, 1}, 0);
    const Vorn32s centers[] = {0, 2, 8};
    ASSERT_EQ(Fixed::setCenters(bank, centers), vornStsNoErr);
    const float inf = std::numeric_limits<float>::infinity();
    const float given[] = {
        1.0f, -1.0f, 0.99999f, -0.99999f, 131071.99f, 131072.0f, -1e30f, inf, std::numeric_limits<float>::quiet_NaN()};
    ASSERT_EQ(Fixed::setCoeffs(bank, 1, given), vornStsNoErr);
    const Vorn32s stored[] = {16384, -16384, 16383, -16383, 2147483520, INT_MIN, INT_MIN, INT_MIN, INT_MIN};
    EXPECT_TRUE(sameBits(bank->ppRise[0], stored, 3));
    EXPECT_TRUE(sameBits(bank->ppFall[0], stored + 3, 6));
    float read[9];
    ASSERT_EQ(Fixed::getCoeffs(bank, 1, read), vornStsNoErr);
    EXPECT_EQ(read[0], 1.0f);
    EXPECT_EQ(read[2], 16383.0f / 16384);
    EXPECT_EQ(read[5], -131072.0f);
    bank->ppRise[0][0] = INT_MAX;
    ASSERT_EQ(Fixed::getCoeffs(bank, 1, read), vornStsNoErr);
    EXPECT_EQ(read[0], 131072.0f) << "rounded to single once";
}

TYPED_TEST(BankAccess, LastEdgeAtTheEndOfTheSpectrumAndBehind) {
    const Bank<TypeParam> bank(EmptySetting{16, 3}, 0);
    Vorn32s centers[] = {0, 2, 4, 6, 9};
    EXPECT_EQ(TypeParam::setCenters(bank, centers), vornStsNotInitErr);
    EXPECT_EQ(bank->ready, 0);
    centers[4] = 8;
    EXPECT_EQ(TypeParam::setCenters(bank, centers), vornStsNoErr);
    EXPECT_EQ(bank->ready, 1);
    centers[4] = 9;
    EXPECT_EQ(TypeParam::setCenters(bank, centers), vornStsNotInitErr);
    EXPECT_EQ(bank->ready, 1);
    EXPECT_EQ(bank->pCenters[4], 8);
}

TYPED_TEST(BankAccess, CentresThatAreNotAllowed) {
    const Bank<TypeParam> bank(EmptySetting{64, 4}, 0);
    const std::vector<Vorn32s> bad[] = {{-1, 2, 4, 6, 8, 10},      {5, 4, 6, 7, 8, 10},      {0, 5, 4, 6, 8, 10},
                                        {0, 2, 6, 5, 8, 10},       {0, 2, 4, 9, 8, 10},      {0, 2, 4, 6, 8, 33},
                                        {INT_MIN, 2, 4, 6, 8, 10}, {0, 2, INT_MAX, 6, 8, 10}};
    for (const auto& centers : bad) {
        EXPECT_EQ(TypeParam::setCenters(bank, centers.data()), vornStsNotInitErr);
        EXPECT_EQ(bank->ready, 0);
    }
    // Not asked for: where the last edge stands beside the last centre.
    const std::vector<Vorn32s> good[] = {{0, 2, 4, 6, 8, 7}, {0, 2, 4, 6, 1000, 7}, {0, 0, 0, 0, 0, -5}};
    for (const auto& centers : good) EXPECT_EQ(TypeParam::setCenters(bank, centers.data()), vornStsNoErr);
    // The same is asked when centres are read.
    bank->pCenters[2] = -3;
    Guarded<Vorn32s> read(6);
    EXPECT_EQ(TypeParam::getCenters(bank, read), vornStsNotInitErr);
    EXPECT_TRUE(read.untouched());
}

// Centres that pass and stand anywhere: whatever follows stays in the bank and in the caller's buffers, which have room
// for a side of a whole spectrum.
TYPED_TEST(BankAccess, CentresAnywhereStayInside) {
    Random random(3);
    for (int N : {2, 4, 8, 64}) {
        for (int nFilter : {1, 2, 5}) {
            int passed = 0;
            for (int turn = 0; turn < 400; ++turn) {
                const Bank<TypeParam> bank(EmptySetting{N, nFilter}, 0);
                std::vector<Vorn32s> centers;
                for (int i = 0; i < nFilter + 2; ++i) {
                    const Vorn32s choice[] = {static_cast<Vorn32s>(random.integer(0, N / 2)),
                                              static_cast<Vorn32s>(random.integer(0, 2 * N)),
                                              INT_MAX,
                                              INT_MAX - 1,
                                              INT_MIN,
                                              -1};
                    centers.push_back(choice[random.integer(0, 5)]);
                }
                centers[0] = std::max(centers[0], 0);
                centers.back() = std::min(centers.back(), N / 2);
                if (turn % 2) std::sort(centers.begin(), centers.end() - 1);
                if (TypeParam::setCenters(bank, centers.data()) != vornStsNoErr) continue;
                ++passed;
                Guarded<test::ValueOf<TypeParam>> src(static_cast<std::size_t>(N / 2 + 1));
                Guarded<test::ResultOf<TypeParam>> dst(static_cast<std::size_t>(nFilter));
                EXPECT_EQ(test::evaluate(src.data(), dst.data(), bank), vornStsNoErr);
                Guarded<float> coeffs(static_cast<std::size_t>(N + 1));
                std::fill(coeffs.begin(), coeffs.end(), 0.5f);
                for (int k = 1; k <= nFilter; ++k) EXPECT_EQ(TypeParam::setCoeffs(bank, k, coeffs), vornStsNoErr);
                for (int k = 1; k <= nFilter + 1; ++k) EXPECT_EQ(TypeParam::getCoeffs(bank, k, coeffs), vornStsNoErr);
                EXPECT_TRUE(coeffs.surroundingsUntouched());
                EXPECT_EQ(test::evaluate(src.data(), dst.data(), bank), vornStsNoErr);
            }
            EXPECT_GT(passed, 3) << N << " " << nFilter;
        }
    }
}

TYPED_TEST(BankAccess, TheFilterBehindTheLast) {
    const Bank<TypeParam> bank(settings[0], vornFBankWeightMel);
    const int nFilter = settings[0].nFilter;
    const auto rising = static_cast<std::size_t>(bank->pCenters[nFilter + 1] - bank->pCenters[nFilter] + 1);
    Guarded<float> coeffs(rising);
    EXPECT_EQ(TypeParam::getCoeffs(bank, nFilter + 1, coeffs), vornStsNoErr);
    for (float x : coeffs) EXPECT_EQ(x, 0.0f) << "a side that was never filled, and no falling one";
    EXPECT_EQ(TypeParam::getCoeffs(bank, nFilter + 2, coeffs), vornStsSizeErr);
    EXPECT_EQ(TypeParam::setCoeffs(bank, nFilter + 1, coeffs), vornStsSizeErr);
}

TYPED_TEST(BankAccess, InACallersBlockAtAnyAddress) {
    const Setting& s = settings[0];
    for (std::size_t shift : {0, 1, 3, 8, 30}) {
        int size = 0, order;
        ASSERT_EQ(TypeParam::getSize(s.fftLen, s.nFilter, vornFBankWeightMel, &size), vornStsNoErr);
        test::Offset<Vorn8u> block(static_cast<std::size_t>(size), shift);
        auto* bank = reinterpret_cast<typename TypeParam::State*>(block.data());
        ASSERT_EQ(TypeParam::init(bank, &order, s, vornFBankWeightMel), vornStsNoErr);
        std::vector<Vorn32s> centers(25);
        ASSERT_EQ(TypeParam::getCenters(bank, centers.data()), vornStsNoErr);
        for (Vorn32s& c : centers) c = std::max(c - 1, 0);
        ASSERT_EQ(TypeParam::setCenters(bank, centers.data()), vornStsNoErr);
        std::vector<float> coeffs(129, 0.25f), read(129, 0.0f);
        ASSERT_EQ(TypeParam::setCoeffs(bank, 5, coeffs.data()), vornStsNoErr);
        ASSERT_EQ(TypeParam::getCoeffs(bank, 5, read.data()), vornStsNoErr);
        EXPECT_EQ(read[0], 0.25f);
        EXPECT_TRUE(block.surroundingsUntouched());
    }
}

TYPED_TEST(BankAccess, ChecksInOrder) {
    struct Arguments {
        typename TypeParam::State* owned = nullptr;
        typename TypeParam::State* bank = nullptr;
        Guarded<Vorn32s> centers = Guarded<Vorn32s>(25);
        Guarded<float> coeffs = Guarded<float>(129);
        Vorn32s* pCenters = centers.data();
        float* pCoeffs = coeffs.data();
        int filter = 3;
        Arguments() {
            int order;
            EXPECT_EQ(TypeParam::initAlloc(&owned, &order, settings[0], vornFBankWeightMel), vornStsNoErr);
            bank = owned;
        }
        Arguments(Arguments&& other) noexcept
            : owned(std::exchange(other.owned, nullptr)),
              bank(other.bank),
              centers(std::move(other.centers)),
              coeffs(std::move(other.coeffs)) {}
        ~Arguments() {
            if (owned != nullptr) TypeParam::release(owned);
        }
    };
    using A = Arguments;
    const auto untouched = [](A& a) { return a.centers.untouched() && a.coeffs.untouched(); };
    const test::Rule<A> noBank = {"bank", vornStsNullPtrErr, [](A&a) { a.bank = nullptr; }},
                        noCenters = {"pCenters", vornStsNullPtrErr, [](A&a) { a.pCenters = nullptr; }},
                        noCoeffs = {"pCoeffs", vornStsNullPtrErr, [](A&a) { a.pCoeffs = nullptr; }},
                        notReady = {"ready", vornStsNotInitErr, [](A&a) { a.owned->ready = 0; }},
                        unordered = {"centres", vornStsNotInitErr, [](A&a) { a.owned->pCenters[0] = 90; }},
                        first = {"filter 0", vornStsSizeErr, [](A&a) { a.filter = 0; }},
                        behind = {"filter 24", vornStsSizeErr, [](A&a) { a.filter = 24; }},
                        farBehind = {"filter 25", vornStsSizeErr, [](A&a) { a.filter = 25; }},
                        farthest = {"filter INT_MAX", vornStsSizeErr, [](A&a) { a.filter = INT_MAX; }};
    const std::function<A()> good = [] { return A(); };
    test::expectCheckOrder<A>(good, [](A& a) { return TypeParam::getCenters(a.bank, a.pCenters); }, untouched,
                              {noBank, noCenters, notReady, unordered});
    test::expectCheckOrder<A>(good, [](A& a) { return TypeParam::getCoeffs(a.bank, a.filter, a.pCoeffs); }, untouched,
                              {noBank, noCoeffs, notReady, first, farBehind, farthest});
    test::expectCheckOrder<A>(good,
                              [](A& a) {
                                  if (a.pCoeffs == nullptr) return TypeParam::setCoeffs(a.bank, a.filter, nullptr);
                                  const std::vector<float> coeffs(129);
                                  return TypeParam::setCoeffs(a.bank, a.filter, coeffs.data());
                              },
                              untouched, {noBank, noCoeffs, notReady, first, behind, farthest});
    EXPECT_EQ(TypeParam::setCenters(nullptr, A().pCenters), vornStsNullPtrErr);
    EXPECT_EQ(TypeParam::setCenters(A().bank, nullptr), vornStsNullPtrErr);
    EXPECT_EQ(TypeParam::getCoeffs(A().bank, 24, A().pCoeffs), vornStsNoErr);
}

}  // namespace
