// Element-wise arithmetic: every member against exact integers or the float formula, bit for bit.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "arithmetic/members.h"
#include "support/cache_size.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/members.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

constexpr int extremeScales[] = {INT_MIN, INT_MIN + 1, -1000, -129, 129, 1000, INT_MAX - 1, INT_MAX};

std::vector<int> allScales(int reach) {
    std::vector<int> scales(std::begin(extremeScales), std::end(extremeScales));
    for (int sf = -reach; sf <= reach; ++sf) scales.push_back(sf);
    return scales;
}

// Hard values, small ones, and any others, in turn.
template <class T>
T someValue(test::Random& random) {
    if constexpr (std::is_floating_point_v<T>) {
        static const std::vector<T> hard = test::hardFloats<T>();
        switch (random.next() % 4) {
            case 0:
                return hard[random.next() % hard.size()];
            case 1:
                return random.anyBits<T>();
            default:
                return static_cast<T>(random.uniform(-300, 300));
        }
    } else if constexpr (std::is_integral_v<T>) {
        static const std::vector<T> hard = test::hardIntegers<T>();
        switch (random.next() % 4) {
            case 0:
                return hard[random.next() % hard.size()];
            case 1:
                return static_cast<T>(random.integer(std::is_signed_v<T> ? -9 : 0, 9));
            default:
                return random.anyBits<T>();
        }
    } else {
        using P = decltype(T::re);
        if (random.next() % 16 == 0) return {};
        return {someValue<P>(random), someValue<P>(random)};
    }
}
template <class T>
std::vector<T> someValues(test::Random& random, std::size_t len) {
    std::vector<T> values(len);
    for (T& x : values) x = someValue<T>(random);
    return values;
}

template <class T>
bool isZero(T x) {
    if constexpr (std::is_arithmetic_v<T>) {
        return x == 0;
    } else {
        return x.re == 0 && x.im == 0;
    }
}
template <class T>
bool hasZero(const std::vector<T>& values) {
    for (T x : values) {
        if (isZero(x)) return true;
    }
    return false;
}

// The expected results and status of one call.
template <class D>
struct Expected {
    std::vector<D> values;
    VornStatus status;
};
template <class A, class B, class D>
Expected<D> expectedOf(const members::Member<A, B, D>& member, const std::vector<A>& a, const std::vector<B>& b,
                       int sf) {
    Expected<D> result;
    for (std::size_t i = 0; i < a.size(); ++i) result.values.push_back(member.model(a[i], b[i], sf));
    result.status = member.dividesByVector() && hasZero(a) ? vornStsDivByZero : vornStsNoErr;
    return result;
}
// The types of the member that a lambda is called with.
#define TYPES_OF(member)                                               \
    using Of [[maybe_unused]] = std::remove_cvref_t<decltype(member)>; \
    using A [[maybe_unused]] = typename Of::A;                         \
    using B [[maybe_unused]] = typename Of::B;                         \
    using D [[maybe_unused]] = typename Of::D

// The same bits, but for complex quotients of floats.
template <class D>
::testing::AssertionResult agree(const std::string& name, const D* actual, const std::vector<D>& expected) {
    if constexpr (std::is_same_v<D, Vorn32fc> || std::is_same_v<D, Vorn64fc>) {
        if (name.find("Div") != std::string::npos) {
            return members::areQuotients(actual, expected.data(), expected.size());
        }
    }
    return test::sameBits(actual, expected.data(), expected.size());
}
template <class Actual, class D>
requires requires(const Actual& actual) { actual.begin(); }
::testing::AssertionResult agree(const std::string& name, const Actual& actual, const std::vector<D>& expected) {
    return agree(name, &*actual.begin(), expected);
}

std::vector<int> scalesFor(bool scaled, std::size_t len, test::Random& random) {
    if (!scaled) return {0};
    if (len == 300) return allScales(75);
    std::vector<int> scales = {0, 1, static_cast<int>(random.integer(2, 9)), static_cast<int>(random.integer(-7, -1))};
    scales.push_back(static_cast<int>(random.integer(-40, 70)));
    return scales;
}

std::vector<std::size_t> lengths() {
    std::vector<std::size_t> result;
    for (std::size_t len = 1; len <= 70; ++len) result.push_back(len);
    for (std::size_t len : {127u, 128u, 129u, 257u, 300u, 600u, 1025u}) result.push_back(len);
    return result;
}

TEST(Arithmetic, VectorsEveryLengthAndScale) {
    members::forAll([](const auto& member) {
        TYPES_OF(member);
        if (member.constant()) return;
        test::Random random(std::hash<std::string>{}(member.name()));
        for (std::size_t len : lengths()) {
            const test::Guarded<A> a(someValues<A>(random, len));
            const test::Guarded<B> b(someValues<B>(random, len));
            const int n = static_cast<int>(len);
            for (int sf : scalesFor(member.scaled(), len, random)) {
                const auto expected = expectedOf(member, a.values(), b.values(), sf);
                test::Guarded<D> d(len);
                ASSERT_EQ(member(a, b, d, n, sf), expected.status) << member.name() << ' ' << len << ' ' << sf;
                ASSERT_TRUE(agree(member.name(), d, expected.values)) << member.name() << ' ' << len << " sf " << sf;
                ASSERT_TRUE(d.surroundingsUntouched()) << member.name() << ' ' << len;
                if (member.inPlace()) continue;
                if constexpr (std::is_same_v<A, D>) {
                    const test::Guarded<A> own(a.values());
                    ASSERT_EQ(member(own, b, own, n, sf), expected.status);
                    ASSERT_TRUE(agree(member.name(), own, expected.values))
                        << member.name() << " onto src1 " << len << ' ' << sf;
                }
                if constexpr (std::is_same_v<B, D>) {
                    const test::Guarded<B> own(b.values());
                    ASSERT_EQ(member(a, own, own, n, sf), expected.status);
                    ASSERT_TRUE(agree(member.name(), own, expected.values))
                        << member.name() << " onto src2 " << len << ' ' << sf;
                }
            }
        }
    });
}

// Constants: 0, 1 and -1 for the short cuts, and others.
template <class T>
std::vector<T> constants(test::Random& random) {
    std::vector<T> result = {T{}};
    if constexpr (std::is_arithmetic_v<T>) {
        for (int x : {1, -1, 2}) result.push_back(static_cast<T>(x));
        if constexpr (std::is_floating_point_v<T>) {
            for (T x : {T(-0.0), std::numeric_limits<T>::infinity(), std::numeric_limits<T>::quiet_NaN()})
                result.push_back(x);
        } else {
            result.push_back(std::numeric_limits<T>::min());
            result.push_back(std::numeric_limits<T>::max());
        }
    } else {
        using P = decltype(T::re);
        result.push_back({1, 0});
        result.push_back({0, 1});
        result.push_back({std::numeric_limits<P>::lowest(), std::numeric_limits<P>::lowest()});
    }
    for (int i = 0; i < 3; ++i) result.push_back(someValue<T>(random));
    return result;
}

TEST(Arithmetic, ConstantsEveryLengthAndScale) {
    members::forAll([](const auto& member) {
        TYPES_OF(member);
        if (!member.constant()) return;
        test::Random random(std::hash<std::string>{}(member.name()));
        for (std::size_t len : lengths()) {
            const auto a = someValues<A>(random, len);
            for (B val : constants<B>(random)) {
                if (len > 40 && len != 300 && random.next() % 3 != 0) continue;
                const std::vector<B> vals(len, val);
                std::vector<int> scales = scalesFor(member.scaled(), len, random);
                if (len == 300 && member.scaled() && !isZero(val) && random.next() % 2 == 0) scales = {0, 1, 5, -5};
                for (int sf : scales) {
                    const test::Guarded<A> src(a);
                    test::Guarded<D> dst(len);
                    const VornStatus status = member(src, &val, dst, static_cast<int>(len), sf);
                    ASSERT_EQ(std::memcmp(src.data(), a.data(), len * sizeof(A)), 0) << member.name();
                    if (member.dividesByConstant() && isZero(val)) {
                        ASSERT_EQ(status, vornStsDivByZeroErr) << member.name();
                        ASSERT_TRUE(member.inPlace() ? std::memcmp(dst.data(), a.data(), len * sizeof(A)) == 0
                                                     : dst.untouched())
                            << member.name();
                        continue;
                    }
                    const auto expected = expectedOf(member, a, vals, sf);
                    ASSERT_EQ(status, expected.status) << member.name() << " val " << test::show(val);
                    ASSERT_TRUE(agree(member.name(), dst, expected.values))
                        << member.name() << ' ' << len << " val " << test::show(val) << " sf " << sf;
                    ASSERT_TRUE(dst.surroundingsUntouched()) << member.name();
                }
            }
        }
    });
}

// Any values, or one that is not zero for all elements.
template <class T>
std::vector<T> secondOperand(test::Random& random, std::size_t len, bool constant) {
    auto values = someValues<T>(random, len);
    if (!constant) return values;
    T val = values[0];
    while (isZero(val)) val = someValue<T>(random);
    return std::vector<T>(len, val);
}

// Every address of the result, those of the operands in other orders.
TEST(Arithmetic, EveryAddress) {
    members::forAll([](const auto& member) {
        TYPES_OF(member);
        const int sf = member.scaled() ? 3 : 0;
        test::Random random(5);
        for (std::size_t address = 0; address < 64; address += alignof(D)) {
            for (std::size_t len : {50u, 700u}) {
                test::Offset<A> a(len, address * 3 % 64 / alignof(A) * alignof(A));
                test::Offset<B> b(len, address * 5 % 64 / alignof(B) * alignof(B));
                test::Offset<D> d(len, address);
                a.assign(someValues<A>(random, len));
                b.assign(secondOperand<B>(random, len, member.constant()));
                const auto expected = expectedOf(member, a.values(), b.values(), sf);
                ASSERT_EQ(member(a, b, d, static_cast<int>(len), sf), expected.status) << member.name();
                ASSERT_TRUE(agree(member.name(), d.values(), expected.values)) << member.name() << " at " << address;
                ASSERT_TRUE(d.surroundingsUntouched()) << member.name() << " at " << address;
                if constexpr (std::is_same_v<B, D>) {
                    if (member.constant() || member.inPlace()) continue;
                    ASSERT_EQ(member(a, b, b, static_cast<int>(len), sf), expected.status);
                    ASSERT_TRUE(agree(member.name(), b.values(), expected.values))
                        << member.name() << " onto src2 at " << address;
                }
            }
        }
    });
}

TEST(Arithmetic, AllPairsOf8BitOperands) {
    std::vector<Vorn8u> a(65536), b(65536);
    for (std::size_t i = 0; i < 65536; ++i) a[i] = static_cast<Vorn8u>(i), b[i] = static_cast<Vorn8u>(i >> 8);
    members::forAll([&](const auto& member) {
        TYPES_OF(member);
        if (member.inPlace() || member.constant()) return;
        if constexpr (std::is_same_v<A, Vorn8u> && std::is_same_v<B, Vorn8u>) {
            for (int sf = member.scaled() ? -18 : 0; sf <= (member.scaled() ? 18 : 0); ++sf) {
                std::vector<D> d(65536);
                ASSERT_GE(member(a.data(), b.data(), d.data(), 65536, sf), vornStsNoErr);
                for (std::size_t i = 0; i < 65536; ++i) {
                    const D expected = member.model(a[i], b[i], sf);
                    ASSERT_EQ(d[i], expected) << member.name() << ' ' << int{a[i]} << ' ' << int{b[i]} << " sf " << sf;
                }
            }
        }
    });
}

// Ten hard values at the scale factors where something changes, one of them at every other, in turn.
TEST(Arithmetic, All16BitOperandsAgainstHardValues) {
    std::vector<Vorn16s> all(65536);
    for (std::size_t i = 0; i < 65536; ++i) all[i] = static_cast<Vorn16s>(static_cast<Vorn16u>(i));
    const Vorn16s hard[] = {1, -1, 2, 3, 7, -10, 255, 32767, -32768, 20011};
    members::forAll([&](const auto& member) {
        TYPES_OF(member);
        if (member.inPlace() || member.constant()) return;
        if constexpr (sizeof(A) == 2 && std::is_same_v<B, Vorn16s>) {
            const std::set<int> turning = {-31, -16, -8, -7, -1, 0, 1, 2, 9, 16, 17, 30, 31};
            for (int sf = member.scaled() ? -36 : 0; sf <= (member.scaled() ? 36 : 0); ++sf) {
                for (int k = 0; k < 10; ++k) {
                    if (k != (sf + 40) % 10 && turning.count(sf) == 0) continue;
                    const Vorn16s h = hard[k];
                    const std::vector<Vorn16s> other(65536, h);
                    std::vector<D> d(65536), e(65536);
                    ASSERT_GE(member(reinterpret_cast<const A*>(all.data()), other.data(), d.data(), 65536, sf),
                              vornStsNoErr);
                    ASSERT_GE(member(reinterpret_cast<const A*>(other.data()), all.data(), e.data(), 65536, sf),
                              vornStsNoErr);
                    for (std::size_t i = 0; i < 65536; ++i) {
                        ASSERT_EQ(d[i], member.model(static_cast<A>(all[i]), h, sf))
                            << member.name() << ' ' << all[i] << ' ' << h << " sf " << sf;
                        ASSERT_EQ(e[i], member.model(static_cast<A>(h), all[i], sf))
                            << member.name() << ' ' << h << ' ' << all[i] << " sf " << sf;
                    }
                }
            }
        }
    });
}

// Quotients beside a tie, where a division in double precision alone would fall onto it.
TEST(Arithmetic, Quotients32sBesideTies) {
    test::Random random(77);
    std::vector<Vorn32s> divisor, dividend;
    std::vector<int> scale;
    for (int i = 0; i < 40000; ++i) {
        // a 2^k = (m + 1/2) b + 1/2 ...: draw b odd and m, and take the a that comes nearest to the tie.
        const int k = static_cast<int>(random.integer(20, 40));
        const auto b = static_cast<std::int64_t>(random.integer(1 << 29, INT_MAX) | 1);
        const auto m = random.integer(1 << 20, 1 << 30);
        const model::Big tie = (model::Big{2} * m + 1) * b;
        const model::Big a = tie >> (k + 1);
        if (a <= 0 || a > INT_MAX) continue;
        for (int step : {0, 1}) {
            for (int sign : {1, -1}) {
                divisor.push_back(static_cast<Vorn32s>(b));
                dividend.push_back(static_cast<Vorn32s>(sign * (static_cast<std::int64_t>(a) + step)));
                scale.push_back(-k);
            }
        }
    }
    ASSERT_GT(scale.size(), 10000u);
    for (std::size_t i = 0; i < scale.size(); ++i) {
        Vorn32s result;
        ASSERT_EQ(vornsDiv_32s_Sfs(&divisor[i], &dividend[i], &result, 1, scale[i]), vornStsNoErr);
        ASSERT_EQ(result, model::quotient<Vorn32s>(dividend[i], divisor[i], scale[i]))
            << dividend[i] << " / " << divisor[i] << " sf " << scale[i];
    }
}

// Exact ties of the corrected division: a 2^k / 2^30 = (2 m + 1) / 2 with a = (2 m + 1) 2^(29 - k).
TEST(Arithmetic, Quotients32sOnTies) {
    for (int k = 21; k <= 29; ++k) {
        for (int m = -9; m <= 9; ++m) {
            for (int sign : {1, -1}) {
                const Vorn32s divisor = sign * (1 << 30), dividend = (2 * m + 1) * (1 << (29 - k));
                Vorn32s result;
                ASSERT_EQ(vornsDiv_32s_Sfs(&divisor, &dividend, &result, 1, -k), vornStsNoErr);
                ASSERT_EQ(result, model::quotient<Vorn32s>(dividend, divisor, -k))
                    << dividend << ' ' << divisor << ' ' << k;
            }
        }
    }
}

TEST(Arithmetic, OrderOfChecks) {
    members::forAll([](const auto& member) {
        test::expectPointersThenLength(member, 99, member.dividesByConstant() ? vornStsDivByZeroErr : vornStsNoErr);
    });
}

// Where every result is zero, the operands are not read: they may lie on an unmapped page.
TEST(Arithmetic, ZeroResultsReadNoOperand) {
    const test::GuardedPages pages(4096);
    members::forAll([&](const auto& member) {
        TYPES_OF(member);
        if (member.inPlace() || member.constant()) return;
        if (!member.scaled() || member.dividesByVector()) return;
        std::vector<D> d(50), zeros(50);
        std::memset(d.data(), 1, d.size() * sizeof d[0]);
        ASSERT_EQ(
            member(reinterpret_cast<const A*>(pages.end()), reinterpret_cast<const B*>(pages.end()), d.data(), 50, 64),
            vornStsNoErr);
        EXPECT_TRUE(test::sameBits(d, zeros)) << member.name();
    });
}

// The caller's rounding mode stays, and integer results are the same in every one.
TEST(Arithmetic, CallersRoundingMode) {
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        members::forAll([mode](const auto& member) {
            TYPES_OF(member);
            test::Random random(9);
            const auto a = someValues<A>(random, 100);
            const auto b = secondOperand<B>(random, 100, member.constant());
            for (int sf : {-30, -9, -3, 0, 1, 4, 12}) {
                const auto expected = expectedOf(member, a, b, sf);
                std::vector<D> d(100);
                unsigned after;
                {
                    const test::RoundingMode rounding(mode);
                    member(a.data(), b.data(), d.data(), 100, sf);
                    after = test::RoundingMode::current();
                }
                ASSERT_EQ(after, mode) << member.name();
                if (!member.scaled()) break;
                ASSERT_TRUE(agree(member.name(), d, expected.values)) << member.name() << " sf " << sf;
            }
        });
    }
}

// Results of 32 MiB and more are written past the cache.
TEST(Arithmetic, PastTheCache) {
    const int n = (17 << 20) + 1;
    const std::unique_ptr<Vorn16s[]> block(new Vorn16s[n + 1]);
    Vorn16s* dst = block.get() + 1;
    ASSERT_EQ(vornsSet_16s(1234, dst, n), vornStsNoErr);
    ASSERT_EQ(std::count(dst, dst + n, 1234), n);
    ASSERT_EQ(vornsAddC_16s_ISfs(766, dst, n, 1), vornStsNoErr);
    ASSERT_EQ(std::count(dst, dst + n, 1000), n);
    ASSERT_EQ(vornsZero_16s(dst, n), vornStsNoErr);
    ASSERT_EQ(std::count(dst, dst + n, 0), n);
}

// The same values again and again, up to so many.
template <class T>
std::vector<T> repeated(const std::vector<T>& values, std::size_t len) {
    std::vector<T> result(len);
    for (std::size_t i = 0; i < len; ++i) result[i] = values[i % values.size()];
    return result;
}

// Beside a small cache less is enough. What goes past it begins and ends where the wide stores want it, and the rest is
// added at both ends: all of it is what many small calls give.
TEST(Arithmetic, PiecesPastASmallCache) {
    const test::CacheSize small(1 << 17);
    members::forAll([](const auto& member) {
        TYPES_OF(member);
        constexpr std::size_t piece = 1000;
        test::Random random(31);
        const std::size_t len = (std::size_t{600} << 10) / sizeof(D) + 7;
        const auto a = repeated(someValues<A>(random, 997), len);
        const auto b = repeated(secondOperand<B>(random, 997, member.constant()), len);
        for (const std::size_t ahead : {0u, 1u, 5u}) {
            const int sf = member.scaled() ? 3 : 0;
            std::vector<D> whole(len + ahead), pieces(len);
            const VornStatus status = member(a.data(), b.data(), whole.data() + ahead, static_cast<int>(len), sf);
            ASSERT_GE(status, vornStsNoErr) << member.name();
            for (std::size_t i = 0; i < len; i += piece) {
                const int n = static_cast<int>(std::min(piece, len - i));
                ASSERT_GE(member(a.data() + i, b.data() + i, pieces.data() + i, n, sf), vornStsNoErr) << member.name();
            }
            ASSERT_TRUE(test::sameBits(whole.data() + ahead, pieces.data(), len)) << member.name() << " at " << ahead;
        }
    });
}

template <class T, class Call>
T of(Call call) {
    T result{};
    EXPECT_GE(call(&result), vornStsNoErr);
    return result;
}

TEST(Examples, OperandOrder) {
    const float one = 1, two = 2, three = 3, six = 6;
    EXPECT_EQ(of<float>([&](float* d) { return vornsSub_32f(&one, &three, d, 1); }), 2.0f);
    EXPECT_EQ(of<float>([&](float* d) { return vornsDiv_32f(&two, &six, d, 1); }), 3.0f);
    float srcDst = 6;
    EXPECT_EQ(vornsDiv_32f_I(&two, &srcDst, 1), vornStsNoErr);
    EXPECT_EQ(srcDst, 3.0f);
    srcDst = 3;
    EXPECT_EQ(vornsSub_32f_I(&one, &srcDst, 1), vornStsNoErr);
    EXPECT_EQ(srcDst, 2.0f);
    EXPECT_EQ(of<float>([&](float* d) { return vornsSubC_32f(&three, 1, d, 1); }), 2.0f);
    EXPECT_EQ(of<float>([&](float* d) { return vornsSubCRev_32f(&three, 1, d, 1); }), -2.0f);
    EXPECT_EQ(of<float>([&](float* d) { return vornsDivCRev_32f(&two, 6, d, 1); }), 3.0f);
}

TEST(Examples, ScaledSums) {
    auto add16s = [](Vorn16s a, Vorn16s b, int sf) {
        return int{of<Vorn16s>([&](Vorn16s* d) { return vornsAdd_16s_Sfs(&a, &b, d, 1, sf); })};
    };
    EXPECT_EQ(add16s(1, 2, 1), 2) << "1.5 to even";
    EXPECT_EQ(add16s(2, 3, 1), 2) << "2.5 to even";
    EXPECT_EQ(add16s(32767, 32767, 16), 1);
    EXPECT_EQ(add16s(-32768, -32768, 16), -1);
    EXPECT_EQ(add16s(-32768, -32768, 17), 0);
    EXPECT_EQ(add16s(1, 0, -16), 32767);
    EXPECT_EQ(add16s(-1, 0, -16), -32768);
    EXPECT_EQ(add16s(1, -1, -16), 0);
    EXPECT_EQ(add16s(1, 0, -15), 32767);
    EXPECT_EQ(add16s(-1, 0, -15), -32768);
    const Vorn8u a = 200, b = 100, five = 5, three = 3;
    EXPECT_EQ(of<Vorn8u>([&](Vorn8u* d) { return vornsAdd_8u_Sfs(&a, &b, d, 1, 0); }), 255);
    EXPECT_EQ(of<Vorn8u>([&](Vorn8u* d) { return vornsSub_8u_Sfs(&five, &three, d, 1, 0); }), 0);
}

TEST(Examples, Products) {
    const Vorn16s low = -32768;
    EXPECT_EQ(of<Vorn16s>([&](Vorn16s* d) { return vornsMul_16s(&low, &low, d, 1); }), 32767);
    EXPECT_EQ(of<Vorn16s>([&](Vorn16s* d) { return vornsMul_16s_Sfs(&low, &low, d, 1, 30); }), 1);
    EXPECT_EQ(of<Vorn16s>([&](Vorn16s* d) { return vornsMul_16s_Sfs(&low, &low, d, 1, 31); }), 0);
    // Four times -32768: the imaginary part is 2^31.
    const Vorn16sc lowC = {-32768, -32768};
    for (int sf : {17, 18, 31, 32}) {
        const Vorn16sc p = of<Vorn16sc>([&](Vorn16sc* d) { return vornsMul_16sc_Sfs(&lowC, &lowC, d, 1, sf); });
        EXPECT_EQ(p.re, 0);
        EXPECT_EQ(p.im, sf == 17 ? 16384 : sf == 18 ? 8192 : sf == 31 ? 1 : 0);
    }
    const Vorn32sc low32 = {INT_MIN, INT_MIN};
    const Vorn32sc p = of<Vorn32sc>([&](Vorn32sc* d) { return vornsMul_32sc_Sfs(&low32, &low32, d, 1, 62); });
    EXPECT_EQ(p.re, 0);
    EXPECT_EQ(p.im, 2);
    // The product of 32-bit integers goes through a double: (2^31 - 1) (2^31 - 5) = 2^62 - 3 2^32 + 5 loses its 5, and
    // times 2^-33 that falls onto a tie, which goes to the even number below.
    const Vorn32s high = INT_MAX, lower = INT_MAX - 4;
    EXPECT_EQ(of<Vorn32s>([&](Vorn32s* d) { return vornsMul_32s_Sfs(&high, &lower, d, 1, 33); }), 536870910);
    EXPECT_EQ(of<Vorn32s>([&](Vorn32s* d) { return vornsMul_32s_Sfs(&high, &high, d, 1, 62); }), 1);
    EXPECT_EQ(of<Vorn32s>([&](Vorn32s* d) { return vornsMul_32s_Sfs(&high, &high, d, 1, 63); }), 0);
}

TEST(Examples, ConstantShortCuts) {
    const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    const float signalling = std::bit_cast<float>(0x7FA00001u);
    const float src[] = {inf, nan, -0.0f, signalling, 2};
    float dst[5];
    ASSERT_EQ(vornsMulC_32f(src, 0, dst, 5), vornStsNoErr);
    for (float x : dst) EXPECT_EQ(std::bit_cast<unsigned>(x), 0u);
    for (auto* keep : {+[](const float*s, float*d) { return vornsMulC_32f(s, 1, d, 5); },
                       +[](const float*s, float*d) { return vornsAddC_32f(s, 0, d, 5); },
                       +[](const float*s, float*d) { return vornsAddC_32f(s, -0.0f, d, 5); },
                       +[](const float*s, float*d) { return vornsSubC_32f(s, 0, d, 5); },
                       +[](const float*s, float*d) { return vornsDivC_32f(s, 1, d, 5); }}) {
        std::memset(dst, 1, sizeof dst);
        ASSERT_EQ(keep(src, dst), vornStsNoErr);
        EXPECT_EQ(std::memcmp(dst, src, sizeof src), 0);
    }
    float own[5];
    std::memcpy(own, src, sizeof own);
    EXPECT_EQ(vornsAddC_32f_I(0, own, 5), vornStsNoErr);
    EXPECT_EQ(vornsSubC_32f_I(0, own, 5), vornStsNoErr);
    EXPECT_EQ(vornsMulC_32f_I(1, own, 5), vornStsNoErr);
    EXPECT_EQ(vornsDivC_32f_I(1, own, 5), vornStsNoErr);
    EXPECT_EQ(std::memcmp(own, src, sizeof src), 0);
    EXPECT_EQ(vornsMulC_32f_I(-0.0f, own, 5), vornStsNoErr);
    for (float x : own) EXPECT_EQ(std::bit_cast<unsigned>(x), 0u);
    // The other types have no short cut: an infinity times 0 is not a number, -0 + 0 is +0.
    const double wide[] = {std::numeric_limits<double>::infinity(), -0.0};
    double result[2];
    ASSERT_EQ(vornsMulC_64f(wide, 0, result, 2), vornStsNoErr);
    EXPECT_TRUE(std::isnan(result[0]));
    ASSERT_EQ(vornsAddC_64f(wide, 0, result, 2), vornStsNoErr);
    EXPECT_FALSE(std::signbit(result[1]));
}

TEST(Examples, DivisionByZero) {
    const float divisor[] = {1, 0, 2, 0, -0.0f, 0}, dividend[] = {5, 5, 6, 0, 3, -1};
    float dst[6];
    ASSERT_EQ(vornsDiv_32f(divisor, dividend, dst, 6), vornStsDivByZero);
    EXPECT_EQ(dst[0], 5);
    EXPECT_EQ(dst[1], std::numeric_limits<float>::infinity());
    EXPECT_EQ(dst[2], 3);
    EXPECT_TRUE(std::isnan(dst[3]));
    EXPECT_EQ(dst[4], -std::numeric_limits<float>::infinity());
    EXPECT_EQ(dst[5], -std::numeric_limits<float>::infinity());
    const float untouched[] = {7, 7, 7, 7, 7, 7};
    std::memcpy(dst, untouched, sizeof dst);
    EXPECT_EQ(vornsDivC_32f(dividend, 0, dst, 6), vornStsDivByZeroErr);
    EXPECT_EQ(std::memcmp(dst, untouched, sizeof dst), 0);

    const Vorn16s zero[] = {0, 0, 0}, values[] = {9, -9, 0};
    for (int sf : {-40, -31, -8, 0, 5, 16, 40}) {
        Vorn16s result[3];
        ASSERT_EQ(vornsDiv_16s_Sfs(zero, values, result, 3, sf), vornStsDivByZero) << sf;
        EXPECT_EQ(result[0], 32767) << sf;
        EXPECT_EQ(result[1], -32768) << sf;
        EXPECT_EQ(result[2], 0) << sf;
    }
    const Vorn16u divisors[] = {0, 3, 7};
    Vorn16u quotients[3];
    ASSERT_EQ(vornsDivCRev_16u(divisors, 0, quotients, 3), vornStsDivByZero);
    for (Vorn16u x : quotients) EXPECT_EQ(x, 0);
    ASSERT_EQ(vornsDivCRev_16u(divisors, 10, quotients, 3), vornStsDivByZero);
    EXPECT_EQ(quotients[0], 65535);
    EXPECT_EQ(quotients[1], 3);
    EXPECT_EQ(quotients[2], 1);
    // A complex zero: each part as a real number.
    const Vorn32fc zeroC = {0, 0}, mixed = {3, -2};
    Vorn32fc q;
    ASSERT_EQ(vornsDiv_32fc(&zeroC, &mixed, &q, 1), vornStsDivByZero);
    EXPECT_EQ(q.re, std::numeric_limits<float>::infinity());
    EXPECT_EQ(q.im, -std::numeric_limits<float>::infinity());
    const Vorn16sc zero16 = {0, 0}, mixed16 = {-3, 0};
    Vorn16sc q16;
    ASSERT_EQ(vornsDiv_16sc_Sfs(&zero16, &mixed16, &q16, 1, 0), vornStsDivByZero);
    EXPECT_EQ(q16.re, -32768);
    EXPECT_EQ(q16.im, 0);
}

}  // namespace
