// Bhattacharyya distances against the scalar model and against the formula.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "model/distances.h"
#include "scoring/distances/kernels.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using model::Gaussians;
using test::FailAllocation;
using test::Guarded;
using test::Offset;
using test::Random;
using test::RoundingMode;
using test::sameBits;

constexpr float infinity = std::numeric_limits<float>::infinity(), none = std::numeric_limits<float>::quiet_NaN();
std::size_t at(int n) { return static_cast<std::size_t>(n); }

// Members under one signature; those without sums of logarithms ignore them.
template <class T>
struct Member {
    const char* name;
    bool takesSums;
    VornStatus (*call)(const Gaussians& g, T* result, float sumLog1, float sumLog2);
    model::Result<T> (*model)(const Gaussians& g, float sumLog1, float sumLog2);
};
const Member<float> whole32{"BhatDist_32f", false,
                            [](const Gaussians& g, float* result, float, float) {
                                return vornsBhatDist_32f(g.mean1, g.var1, g.mean2, g.var2, g.len, result);
                            },
                            [](const Gaussians& g, float, float) { return model::bhattacharyya32(g); }};
const Member<double> whole64{"BhatDist_32f64f", false,
                             [](const Gaussians& g, double* result, float, float) {
                                 return vornsBhatDist_32f64f(g.mean1, g.var1, g.mean2, g.var2, g.len, result);
                             },
                             [](const Gaussians& g, float, float) { return model::bhattacharyya64(g); }};
const Member<float> sums32{"BhatDistSLog_32f", true,
                           [](const Gaussians& g, float* result, float sumLog1, float sumLog2) {
                               return vornsBhatDistSLog_32f(g.mean1, g.var1, g.mean2, g.var2, g.len, result, sumLog1,
                                                            sumLog2);
                           },
                           model::bhattacharyyaSums32};
const Member<double> sums64{"BhatDistSLog_32f64f", true,
                            [](const Gaussians& g, double* result, float sumLog1, float sumLog2) {
                                return vornsBhatDistSLog_32f64f(g.mean1, g.var1, g.mean2, g.var2, g.len, result,
                                                                sumLog1, sumLog2);
                            },
                            model::bhattacharyyaSums64};

template <class Use>
void forMembers(const Use& use) {
    use(whole32), use(whole64), use(sums32), use(sums64);
}

struct Data {
    std::vector<float> mean1, var1, mean2, var2;
};
// Values of both Gaussians, all above zero; spread: the powers of two that variances reach, to either side.
Data positive(Random& random, int len, double spread) {
    const auto means = [&] { return random.floats(at(len), 0.1, 20); };
    const auto variances = [&] {
        std::vector<float> values(at(len));
        for (float& v : values) v = static_cast<float>(std::exp2(random.uniform(-spread, spread)));
        return values;
    };
    return {means(), variances(), means(), variances()};
}

// The data between guard pages.
struct Buffers {
    explicit Buffers(const Data& data) : mean1(data.mean1), var1(data.var1), mean2(data.mean2), var2(data.var2) {}
    Gaussians gaussians() const { return {mean1, var1, mean2, var2, static_cast<int>(mean1.size())}; }
    Guarded<float> mean1, var1, mean2, var2;
};

template <class T>
void expectModel(const Member<T>& member, const Buffers& buffers, float sumLog1, float sumLog2, const char* what) {
    const Gaussians g = buffers.gaussians();
    Guarded<T> result(1);
    const VornStatus status = member.call(g, result, sumLog1, sumLog2);
    const auto expected = member.model(g, sumLog1, sumLog2);
    EXPECT_EQ(status, expected.status) << member.name << " len " << g.len << " " << what;
    EXPECT_TRUE(sameBits(result.data(), &expected.value, 1)) << member.name << " len " << g.len << " " << what;
    EXPECT_TRUE(result.surroundingsUntouched());
}

std::vector<int> lengths() {
    std::vector<int> all = {100, 127, 255, 511, 512, 513, 2047, 2048, 2055};
    for (int len = 1; len <= 70; ++len) all.push_back(len);
    return all;
}

TEST(BhatDist, EveryLengthAndRoundingMode) {
    Random random(1);
    for (int len : lengths()) {
        for (double spread : {2.0, 30.0}) {
            const Buffers data(positive(random, len, spread));
            const auto sumLog1 = static_cast<float>(random.uniform(-90, 90)),
                       sumLog2 = static_cast<float>(random.uniform(-90, 90));
            for (unsigned mode :
                 {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
                const RoundingMode rounding(mode);
                forMembers([&](const auto& member) { expectModel(member, data, sumLog1, sumLog2, "in some mode"); });
                EXPECT_EQ(RoundingMode::current(), mode);
            }
        }
    }
}

// Values at which arithmetic breaks, mostly positive, so that the scan lets them pass: quotients that over- and
// underflow, denormal variances, infinities and not-a-numbers in any place.
TEST(BhatDist, HardValues) {
    Random random(2);
    std::vector<float> hard = {1e38f, 1e-38f, 3e-39f, 1e30f, 1e-30f};
    for (float x : test::hardFloats<float>()) {
        if (x > 0 || std::isnan(x)) hard.push_back(x);
    }
    for (int round = 0; round < 1000; ++round) {
        const int len = 1 + round % 37;
        Data data = positive(random, len, 3);
        for (auto* values : {&data.mean1, &data.var1, &data.mean2, &data.var2}) {
            for (float& x : *values) {
                if (random.integer(0, 2 * len) == 0) x = random.pick(hard, 1)[0];
            }
        }
        const auto sums = random.pick(test::hardFloats<float>(), 2);
        const Buffers buffers(data);
        forMembers([&](const auto& member) { expectModel(member, buffers, sums[0], sums[1], "hard"); });
    }
}

// A zero or a negative value in any place of any array, and two of them in any two places: the scan's groups decide.
TEST(BhatDist, FirstGroupWithAFaultDecides) {
    for (int len : {1, 2, 3, 4, 5, 7, 8, 19, 33}) {
        Random random(3);
        const Data good = positive(random, len, 2);
        const auto spoil = [&](Data& data, int place, float value) {
            auto& array = place % 4 == 0   ? data.mean1
                          : place % 4 == 1 ? data.var1
                          : place % 4 == 2 ? data.mean2
                                           : data.var2;
            array[at(place / 4)] = value;
        };
        for (int first = 0; first < 4 * len; ++first) {
            const int second = static_cast<int>(random.next() % at(4 * len));
            for (const float value : {0.0f, -0.0f, -1e-45f, -infinity}) {
                Data data = good;
                spoil(data, second, value < 0 ? 0.0f : -2.0f);
                spoil(data, first, value);
                const Buffers buffers(data);
                const Gaussians g = buffers.gaussians();
                const int expected = model::fault(g);
                EXPECT_EQ(vornsBhatDistCmp_32f_M7(g.mean1, g.var1, g.mean2, g.var2, len), expected);
                EXPECT_EQ(vornsBhatDistCmp_32f_M7_Al(g.mean1, g.var1, g.mean2, g.var2, len), expected);
                forMembers([&](const auto& member) { expectModel(member, buffers, 1, 2, "spoilt"); });
            }
        }
    }
}

// With literals: in one group the negative value comes first wherever it stands; between groups the order decides.
TEST(BhatDist, ScanExamples) {
    const auto scan = [](std::initializer_list<std::pair<int, float>> means) {
        std::vector<float> mean(10, 1.0f), one(10, 1.0f);
        for (auto [j, x] : means) mean[at(j)] = x;
        return vornsBhatDistCmp_32f_M7(one.data(), one.data(), mean.data(), one.data(), 10);
    };
    EXPECT_EQ(scan({}), 0);
    EXPECT_EQ(scan({{0, 0.0f}, {3, -1.0f}}), 1);
    EXPECT_EQ(scan({{3, 0.0f}, {4, -1.0f}}), 2);
    EXPECT_EQ(scan({{7, -1.0f}, {8, 0.0f}}), 1);
    EXPECT_EQ(scan({{8, 0.0f}, {9, -1.0f}}), 2);  // behind the groups each column is one
    EXPECT_EQ(scan({{0, none}, {1, infinity}, {9, none}}), 0);
    EXPECT_EQ(scan({{5, -infinity}}), 1);
    EXPECT_EQ(scan({{5, -0.0f}}), 2);
    // The same column: a negative value in one array and a zero in another.
    const float zero = 0, negative = -1, one = 1;
    EXPECT_EQ(vornsBhatDistCmp_32f_M7(&zero, &one, &one, &negative, 1), 1);
}

template <class T>
void expectWarnings(const Member<T>& member) {
    const Guarded<float> one{1, 1, 1, 1, 1}, zero{1, 1, 0, 1, 1}, negative{1, 1, 1, 1, -1}, number{1, none, 1, 1, 1};
    T result = 0;
    for (int place = 0; place < 4; ++place) {
        const auto gaussians = [&](const Guarded<float>& spoilt) {
            const float* p[4] = {one, one, one, one};
            p[place] = spoilt;
            return Gaussians{p[0], p[1], p[2], p[3], 5};
        };
        EXPECT_EQ(member.call(gaussians(zero), &result, 0, 0), vornStsLnZeroArg) << member.name;
        EXPECT_EQ(result, std::numeric_limits<T>::infinity());
        EXPECT_EQ(member.call(gaussians(negative), &result, 0, 0), vornStsLnNegArg) << member.name;
        EXPECT_TRUE(std::isnan(result));
        result = 0;
        EXPECT_EQ(member.call(gaussians(number), &result, 0, 0), vornStsNoErr) << member.name;
        EXPECT_TRUE(std::isnan(result));
        result = 0;
    }
}
TEST(BhatDist, Warnings) {
    forMembers([](const auto& member) { expectWarnings(member); });
}

// Quotients and sums beyond the singles are infinite: no number, no warning.
TEST(BhatDist, OverflowIsNotANumberWithoutWarning) {
    const float one = 1, tiny = 1e-30f, huge = 1e30f, largest = std::numeric_limits<float>::max();
    float single;
    double wide;
    EXPECT_EQ(vornsBhatDist_32f(&one, &tiny, &one, &huge, 1, &single), vornStsNoErr);
    EXPECT_TRUE(std::isnan(single));
    EXPECT_EQ(vornsBhatDist_32f(&one, &huge, &one, &tiny, 1, &single), vornStsNoErr);
    EXPECT_TRUE(std::isnan(single));
    EXPECT_EQ(vornsBhatDistSLog_32f(&one, &largest, &one, &largest, 1, &single, 0, 0), vornStsNoErr);
    EXPECT_TRUE(std::isnan(single));
    // In double the same are ordinary numbers: 60 powers of ten.
    EXPECT_EQ(vornsBhatDist_32f64f(&one, &tiny, &one, &huge, 1, &wide), vornStsNoErr);
    EXPECT_NEAR(wide, 0.25 * (60 * std::log(10.0) - 1.386294), 1e-6);
    // Four columns share a product: 2^-148 and 2^127 make 2^275 each, and 2^1100 together.
    const std::vector<float> small(5, 0x1p-148f), large(5, 0x1p127f), ones(5, 1.0f);
    EXPECT_EQ(vornsBhatDist_32f64f(ones.data(), small.data(), ones.data(), large.data(), 3, &wide), vornStsNoErr);
    EXPECT_NEAR(wide, 0.25 * 3 * (275 * std::log(2.0) - 1.386294), 1e-6);
    for (int len : {4, 5}) {
        EXPECT_EQ(vornsBhatDist_32f64f(ones.data(), small.data(), ones.data(), large.data(), len, &wide), vornStsNoErr);
        EXPECT_TRUE(std::isnan(wide));
    }
}

TEST(BhatDist, SmallExamples) {
    const Guarded<float> one{1}, three{3}, four{4}, five{5};
    Guarded<float> single(1);
    Guarded<double> wide(1);
    // K = 4 / 2; the logarithms leave ln 4 - 1.386294 = 3.611e-7.
    ASSERT_EQ(vornsBhatDist_32f64f(one, one, three, one, 1, wide), vornStsNoErr);
    EXPECT_NEAR(wide[0], 0.5 + 0.25 * 3.6111989e-7, 1e-14);
    ASSERT_EQ(vornsBhatDist_32f(one, one, three, one, 1, single), vornStsNoErr);
    EXPECT_NEAR(single[0], 0.5, 2e-7);
    // Means alike: (1 + 4)^2 / 4 = 6.25, and ln 6.25 = 1.83258146.
    ASSERT_EQ(vornsBhatDist_32f64f(five, one, five, four, 1, wide), vornStsNoErr);
    EXPECT_NEAR(wide[0], 0.25 * (1.8325814637483102 - 1.386294), 1e-15);
    ASSERT_EQ(vornsBhatDist_32f(five, one, five, four, 1, single), vornStsNoErr);
    EXPECT_NEAR(single[0], 0.1115718659, 6e-8);
    // The sums of logarithms by hand: ln 5 = 1.6094379, ln 1 and ln 4 = 1.3862944.
    ASSERT_EQ(vornsBhatDistSLog_32f64f(five, one, five, four, 1, wide, 0, 1.3862944f), vornStsNoErr);
    EXPECT_NEAR(wide[0], 0.1115718659, 1e-7);
    ASSERT_EQ(vornsBhatDistSLog_32f(five, one, five, four, 1, single, 0, 1.3862944f), vornStsNoErr);
    EXPECT_NEAR(single[0], 0.1115718659, 2e-7);
}

TEST(BhatDist, EqualGaussiansAreAboutZeroApart) {
    Random random(5);
    for (int len : {1, 3, 4, 39, 100}) {
        const Data data = positive(random, len, 4);
        float single;
        double wide;
        ASSERT_EQ(
            vornsBhatDist_32f(data.mean1.data(), data.var1.data(), data.mean1.data(), data.var1.data(), len, &single),
            vornStsNoErr);
        EXPECT_NEAR(single, 0, len * 3e-7);
        ASSERT_EQ(
            vornsBhatDist_32f64f(data.mean1.data(), data.var1.data(), data.mean1.data(), data.var1.data(), len, &wide),
            vornStsNoErr);
        EXPECT_NEAR(wide, len * 0.25 * 3.6111989e-7, len * 1e-14);
    }
}

// The formula, in more precision than any form has. An error of one unit u in a term is as much in its logarithm.
TEST(BhatDist, IsTheFormula) {
    Random random(6);
    for (int len : {1, 2, 3, 4, 5, 6, 7, 13, 39, 64, 520}) {
        for (double spread : {1.0, 12.0}) {
            const Data data = positive(random, len, spread);
            long double k = 0, l = 0, sums = 0, log1 = 0, log2 = 0, sizes = 0;
            for (int j = 0; j < len; ++j) {
                const long double v1 = data.var1[at(j)], v2 = data.var2[at(j)],
                                  d = static_cast<long double>(data.mean1[at(j)]) - data.mean2[at(j)];
                k += d * d / (v1 + v2);
                l += std::log((v1 + v2) * (v1 + v2) / (v1 * v2));
                sums += std::log(v1 + v2), sizes += std::fabs(std::log(v1 + v2));
                log1 += std::log(v1), log2 += std::log(v2);
            }
            const auto sumLog1 = static_cast<float>(log1), sumLog2 = static_cast<float>(log2);
            const long double wholeDistance = 0.25L * k + 0.5L * (0.5L * l - 0.5L * len * 1.386294L);
            const long double fromSums =
                0.5L * (sums - len * 0.693147L) - 0.25L * (static_cast<long double>(sumLog1) + sumLog2) + 0.25L * k;
            const Gaussians g{data.mean1.data(), data.var1.data(), data.mean2.data(), data.var2.data(), len};
            const auto close = [&](const auto& member, long double exact, long double size) {
                auto result = member.model(g, 0, 0).value;
                ASSERT_EQ(member.call(g, &result, sumLog1, sumLog2), vornStsNoErr);
                const long double unit = std::numeric_limits<decltype(result)>::epsilon() / 2;
                EXPECT_NEAR(static_cast<double>(result), static_cast<double>(exact),
                            static_cast<double>(unit * ((len + 6) * k + 6 * len + 4 * size)))
                    << member.name << " len " << len << " spread " << spread;
            };
            close(whole32, wholeDistance, l);
            close(whole64, wholeDistance, l);
            const long double logs = std::fabs(log1) + std::fabs(log2);
            close(sums32, fromSums, sizes + logs);
            // sumLog1 + sumLog2 and its quarter are singles in either form.
            double wide;
            ASSERT_EQ(sums64.call(g, &wide, sumLog1, sumLog2), vornStsNoErr);
            EXPECT_NEAR(wide, static_cast<double>(fromSums), static_cast<double>(0x1p-24L * (logs + 1e-6L)));
            // It does not matter which Gaussian is the first.
            const Gaussians swapped{g.mean2, g.var2, g.mean1, g.var1, len};
            double one, other;
            ASSERT_EQ(whole64.call(g, &one, 0, 0), vornStsNoErr);
            ASSERT_EQ(whole64.call(swapped, &other, 0, 0), vornStsNoErr);
            EXPECT_EQ(one, other);
        }
    }
}

TEST(BhatDist, EveryAlignment) {
    Random random(7);
    for (int len : {3, 21, 39}) {
        const Data data = positive(random, len, 3);
        const Gaussians plain{data.mean1.data(), data.var1.data(), data.mean2.data(), data.var2.data(), len};
        for (std::size_t shift = 0; shift < 64; shift += 4) {
            Offset<float> mean1(at(len), shift), var1(at(len), 3 * shift % 64), mean2(at(len), 5 * shift % 64),
                var2(at(len), 7 * shift % 64);
            mean1.assign(data.mean1), var1.assign(data.var1), mean2.assign(data.mean2), var2.assign(data.var2);
            const Gaussians shifted{mean1, var1, mean2, var2, len};
            forMembers([&](const auto& member) {
                auto expected = member.model(plain, 3, 4).value, result = expected;
                result = 0;
                ASSERT_EQ(member.call(plain, &expected, 3, 4), vornStsNoErr);
                ASSERT_EQ(member.call(shifted, &result, 3, 4), vornStsNoErr);
                EXPECT_TRUE(sameBits(&result, &expected, 1)) << member.name << " shift " << shift;
            });
        }
    }
}

template <class T>
void expectChecks(const Member<T>& member) {
    SCOPED_TRACE(member.name);
    struct Call {
        Gaussians g;
        T* result;
    };
    const Guarded<float> a{1, 2}, b{3, 4}, c{5, 6}, d{7, 8};
    Guarded<T> result(1);
    test::expectCheckOrder<Call>(
        [&] {
            result.fillPattern();
            return Call{{a, b, c, d, 2}, result};
        },
        [&](Call& call) { return member.call(call.g, call.result, 0, 0); }, [&](Call&) { return result.untouched(); },
        {{"mean1", vornStsNullPtrErr, [](Call& call) { call.g.mean1 = nullptr; }},
         {"var1", vornStsNullPtrErr, [](Call& call) { call.g.var1 = nullptr; }},
         {"mean2", vornStsNullPtrErr, [](Call& call) { call.g.mean2 = nullptr; }},
         {"var2", vornStsNullPtrErr, [](Call& call) { call.g.var2 = nullptr; }},
         {"result", vornStsNullPtrErr, [](Call& call) { call.result = nullptr; }},
         {"len", vornStsSizeErr, [](Call& call) { call.g.len = 0; }},
         {"a negative len", vornStsSizeErr, [](Call& call) { call.g.len = INT_MIN; }}});
}
TEST(BhatDist, Checks) {
    forMembers([](const auto& member) { expectChecks(member); });
}

// One block of scratch memory; none where the scan ends the call.
template <class T>
void expectAllocation(const Member<T>& member) {
    const Guarded<float> a{1, 2, 3, 4, 5}, b{3, 4, 5, 6, 7}, zero{1, 1, 0, 1, 1};
    Guarded<T> result(1);
    const Gaussians good{a, b, b, a, 5};
    {
        const FailAllocation counter(0);
        ASSERT_EQ(member.call(good, result, 0, 0), vornStsNoErr);
        EXPECT_EQ(counter.calls(), 1);
        EXPECT_EQ(counter.outstanding(), 0);
    }
    result.fillPattern();
    {
        const FailAllocation failing(1);
        EXPECT_EQ(member.call(good, result, 0, 0), vornStsMemAllocErr) << member.name;
        EXPECT_EQ(failing.outstanding(), 0);
    }
    EXPECT_TRUE(result.untouched());
    const FailAllocation failing(1);
    EXPECT_EQ(member.call({a, b, zero, a, 5}, result, 0, 0), vornStsLnZeroArg) << member.name;
    EXPECT_EQ(failing.calls(), 0);
}
TEST(BhatDist, AllocationFailure) {
    if (!FailAllocation::available()) GTEST_SKIP() << "the sanitizer has an allocator of its own";
    forMembers([](const auto& member) { expectAllocation(member); });
}

// The kernels: K and the terms. In double one product for four columns, and those behind them in the last one.
TEST(BhatDist, Kernels) {
    const std::vector<float> mean1 = {1, 1, 1, 1, 1, 1, 1, 1, 1, 5}, mean2 = {3, 2, 1, 1, 1, 1, 1, 1, 1, 1},
                             var1 = {1, 1, 2, 4, 1, 1, 1, 1, 8, 1}, var2 = {1, 4, 2, 1, 1, 1, 1, 3, 8, 7};
    const auto check = [&](auto kernel, std::vector<float> expected, float wantedK) {
        Guarded<float> terms(10), k(1);
        kernel(mean1.data(), var1.data(), mean2.data(), var2.data(), 10, terms, k);
        EXPECT_TRUE(sameBits(terms.values(), expected));
        EXPECT_EQ(k[0], wantedK);
    };
    const std::vector<float> ratios = {4, 6.25f, 4, 6.25f, 4, 4, 4, (2 + 3.0f) + 1 / 3.0f, 4, (2 + 7.0f) + 1 / 7.0f},
                             sums = {2, 5, 4, 5, 2, 2, 2, 4, 16, 8};
    // 4 / 2 to lane 0, 1 / 5 to lane 1, 16 / 8 to lane 0.
    for (auto* kernel : {vornsBhatDist_32f_M7, vornsBhatDist_32f_M7_Al}) check(kernel, ratios, 4.0f + 0.2f);
    for (auto* kernel : {vornsBhatDistSLog_32f_M7, vornsBhatDistSLog_32f_M7_Al}) check(kernel, sums, 4.0f + 0.2f);
    const auto checkWide = [&](auto kernel, double first, double second) {
        Guarded<double> products(2), k(1);
        kernel(mean1.data(), var1.data(), mean2.data(), var2.data(), 10, products, k);
        EXPECT_EQ(products[0], first);
        EXPECT_EQ(products[1], second);
        EXPECT_EQ(k[0], 2.0 + 0.2 + 2.0);
        Guarded<double> one(1);
        kernel(mean1.data(), var1.data(), mean2.data(), var2.data(), 3, one, k);
        EXPECT_EQ(one[0], first == 200 ? 40.0 : 100.0);
    };
    for (auto* kernel : {vornsBhatDist_32f64f_M7, vornsBhatDist_32f64f_M7_Al}) {
        checkWide(kernel, 625.0, (16.0 * (4.0 * (16.0 / 3.0))) * 4.0 * (64.0 / 7.0));
    }
    for (auto* kernel : {vornsBhatDistSLog_32f64f_M7, vornsBhatDistSLog_32f64f_M7_Al}) {
        checkWide(kernel, 200.0, 32.0 * 16.0 * 8.0);
    }
}

}  // namespace
