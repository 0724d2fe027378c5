// Copies of columns.
#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::sameBits;

std::size_t at(int row, int step, int column) {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(step) + static_cast<std::size_t>(column);
}

VornStatus copy(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height) {
    return vornsCopyColumn_32f_D2(src, width, dst, dstStep, height);
}
VornStatus copy(const Vorn16s* src, int width, Vorn16s* dst, int dstStep, int height) {
    return vornsCopyColumn_16s_D2(src, width, dst, dstStep, height);
}
#define PICK(T, type)                                                                                              \
    VornStatus pick(const T* src, int srcLen, int srcStep, T* dst, const Vorn32s* pIndex, int dstLen, int dstStep, \
                    int height) {                                                                                  \
        return vornsCopyColumn_Indirect_##type##_D2(src, srcLen, srcStep, dst, pIndex, dstLen, dstStep, height);   \
    }                                                                                                              \
    VornStatus pick(const T* const* ppSrc, int srcLen, T* const* ppDst, const Vorn32s* pIndex, int dstLen,         \
                    int height) {                                                                                  \
        return vornsCopyColumn_Indirect_##type##_D2L(ppSrc, srcLen, ppDst, pIndex, dstLen, height);                \
    }
PICK(Vorn32f, 32f)
PICK(Vorn64f, 64f)
PICK(Vorn16s, 16s)
#undef PICK

// Any bits: a copy keeps them, those of a not-a-number too.
template <class T>
std::vector<T> anyBits(Random& random, std::size_t n) {
    std::vector<T> values(n);
    for (T& x : values) x = random.anyBits<T>();
    return values;
}
template <class T>
testing::AssertionResult sameBytes(const T* actual, const T* expected, std::size_t len) {
    for (std::size_t i = 0; i < len; ++i) {
        if (std::memcmp(actual + i, expected + i, sizeof(T)) != 0)
            return testing::AssertionFailure() << "element " << i << " of " << len;
    }
    return testing::AssertionSuccess();
}

template <class T>
class CopyColumn : public testing::Test {};
using Copied = testing::Types<Vorn32f, Vorn16s>;
TYPED_TEST_SUITE(CopyColumn, Copied);

TYPED_TEST(CopyColumn, RowsStandStepApart) {
    Random random(1);
    for (int width = 1; width <= 140; width += width < 70 ? 1 : 23) {
        for (int height : {1, 2, 5}) {
            for (int extra : {0, 1, 8}) {
                const int step = width + extra;
                const Guarded<TypeParam> src(anyBits<TypeParam>(random, at(height, width, 0)));
                const std::size_t len = at(height - 1, step, width);
                const Guarded<TypeParam> dst(std::vector<TypeParam>(len, TypeParam(77)));
                ASSERT_EQ(copy(src, width, dst, step, height), vornStsNoErr);
                std::vector<TypeParam> expected(len, TypeParam(77));
                for (int r = 0; r < height; ++r)
                    std::memcpy(&expected[at(r, step, 0)], &src[at(r, width, 0)], width * sizeof(TypeParam));
                EXPECT_TRUE(sameBytes(dst.data(), expected.data(), len)) << width << " " << height << " " << step;
                EXPECT_TRUE(dst.surroundingsUntouched());
            }
        }
    }
}

TYPED_TEST(CopyColumn, LargeBlocksAndAnyAlignment) {
    Random random(2);
    for (int step : {39, 40, 48}) {
        for (std::size_t a = 0; a < 32; a += 2 * sizeof(TypeParam)) {
            const int width = 39, height = 300;
            const auto values = anyBits<TypeParam>(random, at(height, width, 0));
            Offset<TypeParam> src(values.size(), a), dst(at(height, step, 0), (3 * a) % 32);
            src.assign(values);
            ASSERT_EQ(copy(src.data(), width, dst.data(), step, height), vornStsNoErr);
            for (int r = 0; r < height; ++r)
                ASSERT_TRUE(sameBytes(&dst[at(r, step, 0)], &values[at(r, width, 0)], width)) << step << " " << r;
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
}

TYPED_TEST(CopyColumn, ChecksInOrder) {
    struct A {
        std::vector<TypeParam> data = std::vector<TypeParam>(64, TypeParam(1));
        Guarded<TypeParam> out = Guarded<TypeParam>(64);
        const TypeParam* src = data.data();
        TypeParam* dst = out.data();
        int width = 5, step = 6, height = 4;
    };
    test::expectCheckOrder<A>([] { return A(); }, [](A& a) { return copy(a.src, a.width, a.dst, a.step, a.height); },
                              [](A& a) { return a.out.untouched(); },
                              {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                               {"height 0", vornStsSizeErr, [](A& a) { a.height = 0; }},
                               {"width -1", vornStsSizeErr, [](A& a) { a.width = -1; }},
                               {"short step", vornStsStrideErr, [](A& a) { a.step = 4; }}});
}

template <class T>
class CopyColumnIndirect : public testing::Test {};
using Picked = testing::Types<Vorn32f, Vorn64f, Vorn16s>;
TYPED_TEST_SUITE(CopyColumnIndirect, Picked);

// Both layouts, each row in a buffer of its own in one of them.
TYPED_TEST(CopyColumnIndirect, PicksByIndex) {
    Random random(3);
    for (int dstLen = 1; dstLen <= 140; dstLen += dstLen < 40 ? 1 : 17) {
        for (int height = 1; height <= 10; height += dstLen < 20 ? 1 : 3) {
            const int srcLen = 1 + dstLen % 50, srcStep = srcLen + dstLen % 3, dstStep = dstLen + height % 3;
            std::vector<Vorn32s> chosen(static_cast<std::size_t>(dstLen));
            for (auto& i : chosen) i = static_cast<Vorn32s>(random.integer(0, srcLen - 1));
            chosen[0] = srcLen - 1;
            const Guarded<Vorn32s> index(chosen);
            const Guarded<TypeParam> src(anyBits<TypeParam>(random, at(height - 1, srcStep, srcLen)));
            const std::size_t len = at(height - 1, dstStep, dstLen);
            const Guarded<TypeParam> dst(std::vector<TypeParam>(len, TypeParam(77)));
            std::vector<TypeParam> expected(len, TypeParam(77));
            std::vector<Guarded<TypeParam>> srcRows, dstRows;
            std::vector<const TypeParam*> ppSrc;
            std::vector<TypeParam*> ppDst;
            for (int r = 0; r < height; ++r) {
                const TypeParam* row = src + at(r, srcStep, 0);
                for (int j = 0; j < dstLen; ++j)
                    std::memcpy(&expected[at(r, dstStep, j)], row + index[static_cast<std::size_t>(j)],
                                sizeof(TypeParam));
                srcRows.emplace_back(std::vector<TypeParam>(row, row + srcLen));
                dstRows.emplace_back(static_cast<std::size_t>(dstLen));
                ppSrc.push_back(srcRows.back());
                ppDst.push_back(dstRows.back());
            }
            ASSERT_EQ(pick(src, srcLen, srcStep, dst, index, dstLen, dstStep, height), vornStsNoErr);
            EXPECT_TRUE(sameBytes(dst.data(), expected.data(), len)) << dstLen << " " << height;
            EXPECT_TRUE(dst.surroundingsUntouched());
            ASSERT_EQ(pick(ppSrc.data(), srcLen, ppDst.data(), index, dstLen, height), vornStsNoErr);
            for (int r = 0; r < height; ++r) {
                EXPECT_TRUE(sameBytes(ppDst[static_cast<std::size_t>(r)], &expected[at(r, dstStep, 0)], dstLen))
                    << dstLen << " " << r;
                EXPECT_TRUE(dstRows[static_cast<std::size_t>(r)].surroundingsUntouched());
            }
        }
    }
}

// What stands before a bad index is written, and nothing else.
TYPED_TEST(CopyColumnIndirect, ABadIndexEndsTheFirstRow) {
    const std::vector<TypeParam> src = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    for (Vorn32s bad : {3, 4, -1, INT_MAX, INT_MIN}) {
        for (int place = 0; place < 5; ++place) {
            std::vector<Vorn32s> index = {2, 0, 1, 1, 2};
            index[static_cast<std::size_t>(place)] = bad;
            std::vector<TypeParam> expected(15, TypeParam(77));
            for (int j = 0; j < place; ++j)
                expected[static_cast<std::size_t>(j)] =
                    src[static_cast<std::size_t>(index[static_cast<std::size_t>(j)])];
            Guarded<TypeParam> dst(std::vector<TypeParam>(15, TypeParam(77)));
            EXPECT_EQ(pick(src.data(), 3, 3, dst, index.data(), 5, 5, 3), vornStsSizeErr);
            EXPECT_TRUE(sameBits(dst.values(), expected)) << bad << " " << place;

            dst.assign(std::vector<TypeParam>(15, TypeParam(77)));
            const TypeParam* ppSrc[] = {&src[0], &src[3], &src[6]};
            TypeParam* ppDst[] = {&dst[0], &dst[5], &dst[10]};
            EXPECT_EQ(pick(ppSrc, 3, ppDst, index.data(), 5, 3), vornStsSizeErr);
            EXPECT_TRUE(sameBits(dst.values(), expected)) << bad << " " << place;
        }
    }
}

TYPED_TEST(CopyColumnIndirect, ChecksInOrder) {
    using T = TypeParam;
    struct A {
        std::vector<T> data = std::vector<T>(64, T(1));
        std::vector<Vorn32s> indices = std::vector<Vorn32s>(8, 0);
        Guarded<T> out = Guarded<T>(64);
        std::vector<const T*> srcRows = {data.data(), data.data() + 5};
        std::vector<T*> dstRows = {out.data(), out.data() + 8};
        const T* src = data.data();
        T* dst = out.data();
        const T* const* ppSrc = srcRows.data();
        T* const* ppDst = dstRows.data();
        const Vorn32s* index = indices.data();
        int srcLen = 5, srcStep = 6, dstLen = 7, dstStep = 8, height = 2;
    };
    test::expectCheckOrder<A>(
        [] { return A(); },
        [](A& a) { return pick(a.src, a.srcLen, a.srcStep, a.dst, a.index, a.dstLen, a.dstStep, a.height); },
        [](A& a) { return a.out.untouched(); },
        {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
         {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
         {"pIndex", vornStsNullPtrErr, [](A& a) { a.index = nullptr; }},
         {"srcLen 0", vornStsSizeErr, [](A& a) { a.srcLen = 0; }},
         {"short srcStep", vornStsStrideErr, [](A& a) { a.srcStep = 4; }},
         {"dstLen 0", vornStsSizeErr, [](A& a) { a.dstLen = 0; }},
         {"short dstStep", vornStsStrideErr, [](A& a) { a.dstStep = 6; }},
         {"height 0", vornStsSizeErr, [](A& a) { a.height = 0; }},
         {"index", vornStsSizeErr, [](A& a) { a.indices[0] = 5; }}});
    test::expectCheckOrder<A>([] { return A(); },
                              [](A& a) { return pick(a.ppSrc, a.srcLen, a.ppDst, a.index, a.dstLen, a.height); },
                              [](A& a) { return a.out.untouched(); },
                              {{"ppSrc", vornStsNullPtrErr, [](A& a) { a.ppSrc = nullptr; }},
                               {"ppDst", vornStsNullPtrErr, [](A& a) { a.ppDst = nullptr; }},
                               {"pIndex", vornStsNullPtrErr, [](A& a) { a.index = nullptr; }},
                               {"srcLen 0", vornStsSizeErr, [](A& a) { a.srcLen = 0; }},
                               {"dstLen 0", vornStsSizeErr, [](A& a) { a.dstLen = 0; }},
                               {"height -1", vornStsSizeErr, [](A& a) { a.height = -1; }},
                               {"index", vornStsSizeErr, [](A& a) { a.indices[0] = 5; }}});
}

}  // namespace
