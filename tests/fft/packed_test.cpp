// Packed spectra: products and expansions, bit for bit, at every short length and around the vector borders.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <limits>
#include <memory>

#include "model/packed.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

std::vector<int> lengths() {
    std::vector<int> result;
    for (int len = 1; len <= 70; ++len) result.push_back(len);
    for (int len : {127, 128, 129, 171, 172, 173, 255, 256, 257, 1000, 1023, 4098}) result.push_back(len);
    return result;
}

template <class T>
std::vector<T> numbers(test::Random& random, int len, bool hard) {
    std::vector<T> values(static_cast<std::size_t>(len));
    for (T& x : values) {
        if constexpr (std::is_floating_point_v<T>) {
            const auto all = test::hardFloats<T>();
            x = hard ? all[static_cast<std::size_t>(random.integer(0, static_cast<int>(all.size()) - 1))]
                     : static_cast<T>(random.uniform(-100, 100));
        } else {
            x = hard ? (random.integer(0, 1) ? T(-32768) : T(32767)) : random.anyBits<T>();
        }
    }
    return values;
}

template <class T>
struct Products {
    VornStatus (*multiply[2])(const T*, const T*, T*, int);  // Pack, Perm
    VornStatus (*inPlace[2])(const T*, T*, int);
    VornStatus (*conjugate)(const T*, T*, int);
};
template <class T>
Products<T> products();
template <>
Products<Vorn32f> products() {
    return {{vornsMulPack_32f, vornsMulPerm_32f}, {vornsMulPack_32f_I, vornsMulPerm_32f_I}, vornsMulPackConj_32f_I};
}
template <>
Products<Vorn64f> products() {
    return {{vornsMulPack_64f, vornsMulPerm_64f}, {vornsMulPack_64f_I, vornsMulPerm_64f_I}, vornsMulPackConj_64f_I};
}

template <class T>
class PackedProducts : public ::testing::Test {};
using Floats = ::testing::Types<Vorn32f, Vorn64f>;
TYPED_TEST_SUITE(PackedProducts, Floats);

TYPED_TEST(PackedProducts, BinByBin) {
    using T = TypeParam;
    test::Random random(1);
    for (int len : lengths()) {
        for (int round = 0; round < 8; ++round) {
            const auto a = numbers<T>(random, len, round > 4), b = numbers<T>(random, len, round > 5);
            for (bool perm : {false, true}) {
                const auto expected = model::multiplyPacked(perm, false, a, b);
                test::Guarded<T> x(a), y(b), dst(a.size());
                ASSERT_EQ(products<T>().multiply[perm](x, y, dst, len), vornStsNoErr);
                ASSERT_TRUE(test::sameBits(dst.values(), expected)) << "length " << len << " perm " << perm;
                ASSERT_TRUE(dst.surroundingsUntouched());
                ASSERT_EQ(products<T>().inPlace[perm](x, y, len), vornStsNoErr);
                ASSERT_TRUE(test::sameBits(y.values(), expected)) << "in place, length " << len;
                ASSERT_TRUE(test::sameBits(x.values(), a));
            }
            test::Guarded<T> x(a), y(b);
            ASSERT_EQ(products<T>().conjugate(x, y, len), vornStsNoErr);
            ASSERT_TRUE(test::sameBits(y.values(), model::multiplyPacked(false, true, a, b))) << "conjugate " << len;
        }
    }
}

TYPED_TEST(PackedProducts, AtEveryAddress) {
    using T = TypeParam;
    test::Random random(2);
    const auto a = numbers<T>(random, 67, false), b = numbers<T>(random, 67, false);
    for (bool perm : {false, true}) {
        const auto expected = model::multiplyPacked(perm, false, a, b);
        for (std::size_t shift = 0; shift < 64; shift += sizeof(T)) {
            test::Offset<T> x(67, shift), y(67, 64 - shift), dst(67, shift);
            x.assign(a);
            y.assign(b);
            ASSERT_EQ(products<T>().multiply[perm](x, y, dst, 67), vornStsNoErr);
            ASSERT_TRUE(test::sameBits(dst.values(), expected) && dst.surroundingsUntouched());
        }
    }
}

TYPED_TEST(PackedProducts, InNumbers) {
    using T = TypeParam;
    const auto p = products<T>();
    const T a[] = {2, 3, 5, 7}, b[] = {11, 13, 17, 19};
    T dst[4] = {};
    p.multiply[1](a, b, dst, 1);
    EXPECT_EQ(std::vector<T>(dst, dst + 2), (std::vector<T>{22, 0}));
    for (bool perm : {false, true}) {  // two real bins and no pair
        p.multiply[perm](a, b, dst, 2);
        EXPECT_EQ(std::vector<T>(dst, dst + 3), (std::vector<T>{22, 39, 0}));
    }
    p.multiply[0](a, b, dst, 4);  // (3 + 5i)(13 + 17i)
    EXPECT_EQ(std::vector<T>(dst, dst + 4), (std::vector<T>{22, 39 - 85, 51 + 65, 133}));
    p.multiply[1](a, b, dst, 4);  // (5 + 7i)(17 + 19i)
    EXPECT_EQ(std::vector<T>(dst, dst + 4), (std::vector<T>{22, 39, 85 - 133, 95 + 119}));
    // The conjugate falls on the destination: (3 + 5i)(13 - 17i).
    T d[] = {11, 13, 17, 19};
    p.conjugate(a, d, 4);
    EXPECT_EQ(std::vector<T>(d, d + 4), (std::vector<T>{22, 39 + 85, 65 - 51, 133}));
}

TYPED_TEST(PackedProducts, ChecksInOrder) {
    using T = TypeParam;
    struct A {
        std::shared_ptr<test::Guarded<T>> a = std::make_shared<test::Guarded<T>>(std::vector<T>(9, T(1)));
        std::shared_ptr<test::Guarded<T>> d = std::make_shared<test::Guarded<T>>(9);
        T *src1 = a->data(), *src2 = a->data(), *dst = d->data();
        int len = 9;
    };
    const auto untouched = [](A& a) { return a.d->untouched(); };
    const std::vector<test::Rule<A>> inPlace = {{"src1", vornStsNullPtrErr, [](A& a) { a.src1 = nullptr; }},
                                                {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                                                {"len", vornStsSizeErr, [](A& a) { a.len = 0; }},
                                                {"len -1", vornStsSizeErr, [](A& a) { a.len = -1; }}};
    auto apart = inPlace;
    apart.insert(apart.begin(), {"src2", vornStsNullPtrErr, [](A& a) { a.src2 = nullptr; }});
    for (auto* multiply : products<T>().multiply) {
        test::expectCheckOrder<A>([] { return A(); }, [&](A& a) { return multiply(a.src1, a.src2, a.dst, a.len); },
                                  untouched, apart);
    }
    for (auto* multiply : {products<T>().inPlace[0], products<T>().inPlace[1], products<T>().conjugate}) {
        test::expectCheckOrder<A>([] { return A(); }, [&](A& a) { return multiply(a.src1, a.dst, a.len); }, untouched,
                                  inPlace);
    }
}

TEST(PackedFixedProducts, BinByBin) {
    test::Random random(3);
    for (int len : lengths()) {
        for (int sf : {0,  1,  2,    7,       14, 15, 16, 17,  18,  30,  31,   32,
                       33, 64, 1000, INT_MAX, -1, -2, -8, -15, -16, -31, -100, INT_MIN}) {
            for (bool hard : {false, true}) {
                const auto a = numbers<Vorn16s>(random, len, hard), b = numbers<Vorn16s>(random, len, hard);
                for (bool perm : {false, true}) {
                    const auto expected = model::multiplyPackedFixed(perm, a, b, sf);
                    test::Guarded<Vorn16s> x(a), y(b), dst(a.size());
                    ASSERT_EQ((perm ? vornsMulPerm_16s_Sfs : vornsMulPack_16s_Sfs)(x, y, dst, len, sf), vornStsNoErr);
                    ASSERT_TRUE(test::sameBits(dst.values(), expected)) << len << " sf " << sf << " perm " << perm;
                    ASSERT_EQ((perm ? vornsMulPerm_16s_ISfs : vornsMulPack_16s_ISfs)(x, y, len, sf), vornStsNoErr);
                    ASSERT_TRUE(test::sameBits(y.values(), expected)) << len << " sf " << sf << " perm " << perm;
                }
            }
        }
    }
}

TEST(PackedFixedProducts, DoNotRound) {
    Vorn16s dst[1];
    // -1 shifted right stays -1.
    const Vorn16s one[] = {1}, minus[] = {-1};
    ASSERT_EQ(vornsMulPerm_16s_Sfs(one, minus, dst, 1, 40), vornStsNoErr);
    EXPECT_EQ(dst[0], -1);
}

TEST(PackedFixedProducts, ChecksInOrder) {
    struct Arguments {
        std::vector<Vorn16s> x = std::vector<Vorn16s>(9, 1);
        test::Guarded<Vorn16s> out = test::Guarded<Vorn16s>(9);
        const Vorn16s *src1 = x.data(), *src2 = x.data();
        Vorn16s* dst = out.data();
        int len = 9;
    };
    using A = Arguments;
    const auto untouched = [](A& a) { return a.out.untouched(); };
    const std::vector<test::Rule<A>> inPlace = {{"src1", vornStsNullPtrErr, [](A& a) { a.src1 = nullptr; }},
                                                {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                                                {"len", vornStsSizeErr, [](A& a) { a.len = 0; }},
                                                {"len -1", vornStsSizeErr, [](A& a) { a.len = -1; }}};
    auto apart = inPlace;
    apart.insert(apart.begin(), {"src2", vornStsNullPtrErr, [](A& a) { a.src2 = nullptr; }});
    for (auto* multiply : {vornsMulPack_16s_Sfs, vornsMulPerm_16s_Sfs}) {
        test::expectCheckOrder<A>([] { return A(); }, [=](A& a) { return multiply(a.src1, a.src2, a.dst, a.len, 0); },
                                  untouched, apart);
    }
    for (auto* multiply : {vornsMulPack_16s_ISfs, vornsMulPerm_16s_ISfs}) {
        test::expectCheckOrder<A>([] { return A(); }, [=](A& a) { return multiply(a.src1, a.dst, a.len, 0); },
                                  untouched, inPlace);
    }
}

template <class Pair, class T>
struct Expansions {
    VornStatus (*expand[3])(const T*, Pair*, int);  // Pack, Perm, CCS
    VornStatus (*inPlace[3])(Pair*, int);
};
template <class Pair, class T>
Expansions<Pair, T> expansions();
template <>
Expansions<Vorn32fc, Vorn32f> expansions() {
    return {{vornsConjPack_32fc, vornsConjPerm_32fc, vornsConjCcs_32fc},
            {vornsConjPack_32fc_I, vornsConjPerm_32fc_I, vornsConjCcs_32fc_I}};
}
template <>
Expansions<Vorn64fc, Vorn64f> expansions() {
    return {{vornsConjPack_64fc, vornsConjPerm_64fc, vornsConjCcs_64fc},
            {vornsConjPack_64fc_I, vornsConjPerm_64fc_I, vornsConjCcs_64fc_I}};
}
template <>
Expansions<Vorn16sc, Vorn16s> expansions() {
    return {{vornsConjPack_16sc, vornsConjPerm_16sc, vornsConjCcs_16sc},
            {vornsConjPack_16sc_I, vornsConjPerm_16sc_I, vornsConjCcs_16sc_I}};
}

template <class Pair>
class PackedExpansions : public ::testing::Test {};
using Pairs = ::testing::Types<Vorn32fc, Vorn64fc, Vorn16sc>;
TYPED_TEST_SUITE(PackedExpansions, Pairs);

// CCS copies what stands beside its real bins; Pack and Perm put 0 there.
TYPED_TEST(PackedExpansions, FollowTheSymmetry) {
    using Pair = TypeParam;
    using T = decltype(Pair::re);
    const auto functions = expansions<Pair, T>();
    test::Random random(4);
    for (int len : lengths()) {
        for (int layout = 0; layout < 3; ++layout) {
            const int values = layout == 2 ? 2 * (len / 2 + 1) : len;
            const std::vector<T> a = numbers<T>(random, values, false);
            std::vector<Pair> expected;
            if (layout == 2) {
                std::vector<Pair> pairs;
                for (int i = 0; i < values; i += 2) pairs.push_back({a[i], a[i + 1]});
                expected = model::expandCcs(pairs, len);
            } else {
                expected = model::expandPacked<Pair>(layout == 1, a);
            }
            test::Guarded<T> src(a);
            test::Guarded<Pair> dst(expected.size());
            ASSERT_EQ(functions.expand[layout](src, dst, len), vornStsNoErr);
            ASSERT_EQ(0, std::memcmp(dst.data(), expected.data(), expected.size() * sizeof(Pair)))
                << len << " " << layout;
            ASSERT_TRUE(dst.surroundingsUntouched());
            dst.fillPattern();
            std::memcpy(dst.data(), a.data(), std::min(a.size() * sizeof(T), dst.size() * sizeof(Pair)));
            ASSERT_EQ(functions.inPlace[layout](dst, len), vornStsNoErr);
            ASSERT_EQ(0, std::memcmp(dst.data(), expected.data(), expected.size() * sizeof(Pair)))
                << "in place " << len;
            ASSERT_TRUE(dst.surroundingsUntouched());
        }
    }
}

TYPED_TEST(PackedExpansions, CheckPointersThenLength) {
    using Pair = TypeParam;
    using T = decltype(Pair::re);
    struct Arguments {
        std::vector<T> values = std::vector<T>(8, T(1));
        test::Guarded<Pair> out = test::Guarded<Pair>(6);
        const T* src = values.data();
        Pair* dst = out.data();
        int len = 6;
    };
    using A = Arguments;
    const auto functions = expansions<Pair, T>();
    const auto untouched = [](A& a) { return a.out.untouched(); };
    const std::vector<test::Rule<A>> inPlace = {{"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                                                {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
                                                {"len -1", vornStsSizeErr, [](A& a) { a.len = -1; }}};
    auto apart = inPlace;
    apart.insert(apart.begin(), {"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }});
    for (auto* expand : functions.expand) {
        test::expectCheckOrder<A>([] { return A(); }, [=](A& a) { return expand(a.src, a.dst, a.len); }, untouched,
                                  apart);
    }
    for (auto* expand : functions.inPlace) {
        test::expectCheckOrder<A>([] { return A(); }, [=](A& a) { return expand(a.dst, a.len); }, untouched, inPlace);
    }
}

}  // namespace
