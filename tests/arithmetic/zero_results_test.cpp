// Where the scale factor makes every result zero no operand is read: it may lie in memory that cannot be read.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <limits>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "vornsr.h"

namespace {

constexpr int lengths[] = {1, 7, 50, 1000, 300000};

class ZeroResults : public testing::Test {
protected:
    // Expects zeros of every scale factor above the family's upper limit. work(scale factor, result, length)
    template <class D, class Work>
    void expectZeros(int upper, const Work& work) {
        for (int len : lengths) {
            for (int sf : {upper + 1, upper + 2, 64, 1000, INT_MAX}) {
                const auto n = static_cast<std::size_t>(len);
                std::vector<D> dst(n), zeros(n);
                std::memset(dst.data(), 0xA5, n * sizeof(D));
                ASSERT_EQ(work(sf, dst.data(), len), vornStsNoErr);
                ASSERT_EQ(std::memcmp(dst.data(), zeros.data(), n * sizeof(D)), 0) << "scale factor " << sf;
            }
        }
    }

    // Two vectors.
    template <class A, class B, class D>
    void expectUnread(int upper, VornStatus (*call)(const A*, const B*, D*, int, int)) {
        expectZeros<D>(upper,
                       [&](int sf, D* dst, int len) { return call(unreadable<A>(), unreadable<B>(), dst, len, sf); });
    }
    // A vector and a constant.
    template <class A, class D>
    void expectUnread(int upper, VornStatus (*call)(const A*, A, D*, int, int)) {
        A val;
        std::memset(&val, 0x41, sizeof val);
        expectZeros<D>(upper, [&](int sf, D* dst, int len) { return call(unreadable<A>(), val, dst, len, sf); });
    }

    // Not mapped, however few elements are read.
    template <class T>
    const T* unreadable() const {
        return reinterpret_cast<const T*>(pages_.end());
    }

private:
    const test::GuardedPages pages_{4096};
};

TEST_F(ZeroResults, SumsAndDifferences) {
    expectUnread(9, vornsAdd_8u_Sfs);
    expectUnread(9, vornsSub_8u_Sfs);
    expectUnread(9, vornsAddC_8u_Sfs);
    expectUnread(9, vornsSubC_8u_Sfs);
    expectUnread(9, vornsSubCRev_8u_Sfs);
    expectUnread(16, vornsAdd_16s_Sfs);
    expectUnread(16, vornsSub_16s_Sfs);
    expectUnread(16, vornsAddC_16s_Sfs);
    expectUnread(16, vornsSubC_16s_Sfs);
    expectUnread(16, vornsSubCRev_16s_Sfs);
    expectUnread(16, vornsAdd_16sc_Sfs);
    expectUnread(16, vornsSub_16sc_Sfs);
    expectUnread(16, vornsAddC_16sc_Sfs);
    expectUnread(16, vornsSubC_16sc_Sfs);
    expectUnread(16, vornsSubCRev_16sc_Sfs);
    expectUnread(32, vornsAdd_32s_Sfs);
    expectUnread(32, vornsSub_32s_Sfs);
    expectUnread(32, vornsAddC_32s_Sfs);
    expectUnread(32, vornsSubC_32s_Sfs);
    expectUnread(32, vornsSubCRev_32s_Sfs);
    expectUnread(32, vornsAdd_32sc_Sfs);
    expectUnread(32, vornsSub_32sc_Sfs);
    expectUnread(32, vornsAddC_32sc_Sfs);
    expectUnread(32, vornsSubC_32sc_Sfs);
    expectUnread(32, vornsSubCRev_32sc_Sfs);
}

TEST_F(ZeroResults, Products) {
    expectUnread(16, vornsMul_8u_Sfs);
    expectUnread(16, vornsMulC_8u_Sfs);
    expectUnread(30, vornsMul_16s_Sfs);
    expectUnread(30, vornsMulC_16s_Sfs);
    expectUnread(30, vornsMul_16s32s_Sfs);
    expectUnread(31, vornsMul_16u16s_Sfs);
    expectUnread(31, vornsMul_16sc_Sfs);
    expectUnread(31, vornsMulC_16sc_Sfs);
    expectUnread(62, vornsMul_32s_Sfs);
    expectUnread(62, vornsMulC_32s_Sfs);
    expectUnread(63, vornsMul_32sc_Sfs);
    expectUnread(63, vornsMulC_32sc_Sfs);
    expectUnread(63, vornsMul_32s32sc_Sfs);
}

// A quotient by a vector is never zero throughout unread: a zero divisor saturates under every scale factor.
TEST_F(ZeroResults, QuotientsByConstants) {
    expectUnread(8, vornsDivC_8u_Sfs);
    expectUnread(15, vornsDivC_16s_Sfs);
    expectUnread(15, vornsDivC_16sc_Sfs);
}

// A constant can make every result zero too. In 32f a single whose reciprocal is zero does.
TEST_F(ZeroResults, Constants) {
    const auto expect = [&]<class T>(VornStatus (*call)(const T*, T, T*, int), T val) {
        expectZeros<T>(0, [&](int, T* dst, int len) { return call(unreadable<T>(), val, dst, len); });
    };
    expect(vornsMulC_32f, 0.0f);
    expect(vornsMulC_32f, -0.0f);
    expect(vornsDivC_32f, std::numeric_limits<float>::infinity());
    for (int sf : {-9, 0, 1, 9}) {
        expectZeros<Vorn16s>(
            0, [&](int, Vorn16s* dst, int len) { return vornsMulC_16s_Sfs(unreadable<Vorn16s>(), 0, dst, len, sf); });
        expectZeros<Vorn32s>(
            0, [&](int, Vorn32s* dst, int len) { return vornsMulC_32s_Sfs(unreadable<Vorn32s>(), 0, dst, len, sf); });
    }
}

// One below: there is arithmetic, and the largest operands give something else than zero.
TEST_F(ZeroResults, BelowTheLimits) {
    const Vorn8u highest = 255;
    const Vorn16s lowest = -32768;
    const Vorn16sc lowests = {-32768, -32768};
    Vorn8u d8 = 0;
    Vorn16s d16 = 0;
    Vorn16sc d16c = {0, 0};
    ASSERT_EQ(vornsDivC_8u_Sfs(&highest, 1, &d8, 1, 8), vornStsNoErr);
    EXPECT_EQ(d8, 1);
    ASSERT_EQ(vornsDivC_16s_Sfs(&lowest, 1, &d16, 1, 15), vornStsNoErr);
    EXPECT_EQ(d16, -1);
    ASSERT_EQ(vornsDivC_16sc_Sfs(&lowests, {1, 1}, &d16c, 1, 15), vornStsNoErr);
    EXPECT_EQ(d16c.re, -1);
}

}  // namespace
