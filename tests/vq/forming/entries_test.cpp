// Vectors put together from entries of tables.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "model/vector_forming.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Random;

// One table a piece; each ends at the guard.
template <class T>
struct Tables {
    std::vector<std::unique_ptr<Guarded<T>>> tables;
    std::vector<const T*> pointers;
    void add(Random& random, std::size_t elements) {
        tables.push_back(std::make_unique<Guarded<T>>(elements));
        for (T& x : *tables.back()) x = random.anyBits<T>();
        pointers.push_back(tables.back()->data());
    }
};

template <class Index, class T>
using FormPieces = VornStatus (*)(const Index*, const T* const*, const int*, T*, int);

template <class Index, class T>
void comparePieces(FormPieces<Index, T> form, int piece, int behindLast) {
    Random random(1);
    for (int len = 1; len <= 140; ++len) {
        const int count = len / piece;
        const int most = sizeof(Index) == 1 ? 255 : 400;
        Tables<T> tables;
        std::vector<int> size;
        std::vector<Index> index;
        std::vector<T> expected;
        for (int g = 0; g < count; ++g) {
            size.push_back(static_cast<int>(random.integer(1, 9)));
            if (g == 0) size.back() = most;
            tables.add(random, static_cast<std::size_t>(piece * (size.back() + behindLast)));
            index.push_back(static_cast<Index>(random.integer(0, size.back() - 1 + behindLast)));
            if (g % 3 == 0 && size.back() - 1 + behindLast <= most) {
                index.back() = static_cast<Index>(size.back() - 1 + (sizeof(Index) == 1 ? 0 : behindLast));
            }
            model::appendEntry(expected, tables.tables.back()->values(), index.back(), piece, piece);
        }
        // Behind what is used stand no indices, sizes or tables at all.
        Guarded<Index> srcIndex(index);
        Guarded<int> sizes(size);
        Guarded<const T*> pointers(tables.pointers);
        Guarded<T> dst(static_cast<std::size_t>(len));
        ASSERT_EQ(form(srcIndex, pointers, sizes, dst, len), vornStsNoErr) << len;
        EXPECT_TRUE(std::equal(expected.begin(), expected.end(), dst.begin(), test::same<T>)) << len;
        for (auto j = expected.size(); j < dst.size(); ++j) {
            EXPECT_EQ(*reinterpret_cast<const Vorn8u*>(dst.data() + j), 0xA5) << "the rest of " << len;
        }
        EXPECT_TRUE(dst.surroundingsUntouched());

        // Each index in turn out of range: nothing is stored.
        for (int g = 0; g < count; ++g) {
            const auto at = static_cast<std::size_t>(g);
            const Index good = index[at];
            std::vector<int> bad = {size[at] + behindLast, size[at] + behindLast + 1};
            if (std::is_signed_v<Index>) bad.insert(bad.end(), {-1, -32768, 32767});
            for (const int value : bad) {
                if (static_cast<Index>(value) != value) continue;
                srcIndex[at] = static_cast<Index>(value);
                dst.fillPattern();
                ASSERT_EQ(form(srcIndex, pointers, sizes, dst, len), vornStsSizeErr) << value << " at " << g;
                EXPECT_TRUE(dst.untouched());
            }
            srcIndex[at] = good;
            sizes[at] = -5;
            EXPECT_EQ(form(srcIndex, pointers, sizes, dst, len), vornStsSizeErr) << "a negative size at " << g;
            EXPECT_TRUE(dst.untouched());
            sizes[at] = size[at];
        }
    }
}

TEST(FormVector, OfTwosEqualsTheModel) {
    comparePieces(vornsFormVector_2i_8u16s, 2, 0);
    comparePieces(vornsFormVector_2i_16s16s, 2, 0);
    comparePieces(vornsFormVector_2i_8u32f, 2, 0);
}

// Here alone the index behind the last entry passes.
TEST(FormVector, OfTwosOfSinglesTakesAnIndexAsLargeAsTheSize) { comparePieces(vornsFormVector_2i_16s32f, 2, 1); }

TEST(FormVector, OfFoursEqualsTheModel) {
    comparePieces(vornsFormVector_4i_8u16s, 4, 0);
    comparePieces(vornsFormVector_4i_16s16s, 4, 0);
    comparePieces(vornsFormVector_4i_8u32f, 4, 0);
    comparePieces(vornsFormVector_4i_16s32f, 4, 0);
}

TEST(FormVector, LeavesOutWhatFillsNoPiece) {
    const Guarded<Vorn32f> table{10, 11, 12, 13, 20, 21, 22, 23};
    const Vorn32f* const tables[] = {table.data()};
    Guarded<Vorn16s> index{Vorn16s{1}};
    Guarded<int> sizes{2};
    Guarded<Vorn32f> dst(6);
    ASSERT_EQ(vornsFormVector_4i_16s32f(index, tables, sizes, dst, 6), vornStsNoErr);
    EXPECT_EQ(std::vector<Vorn32f>(dst.begin(), dst.begin() + 4), (std::vector<Vorn32f>{20, 21, 22, 23}));
    EXPECT_EQ(*reinterpret_cast<const Vorn8u*>(dst.data() + 4), 0xA5);
    // Three elements are no piece: the index, which is out of range, is not looked at.
    index[0] = -7;
    dst.fillPattern();
    EXPECT_EQ(vornsFormVector_4i_16s32f(index, tables, sizes, dst, 3), vornStsNoErr);
    EXPECT_TRUE(dst.untouched());
}

template <class Index, class T>
using FormStreams = VornStatus (*)(const Index*, const T* const*, const int*, const int*, const int*, int, T*);

template <class Index, class T>
void compareStreams(FormStreams<Index, T> form) {
    Random random(2);
    for (int streams = 1; streams <= 40; ++streams) {
        Tables<T> tables;
        std::vector<int> size, len, stride;
        std::vector<Index> index;
        std::vector<T> expected;
        for (int s = 0; s < streams; ++s) {
            size.push_back(static_cast<int>(random.integer(1, 20)));
            len.push_back(static_cast<int>(random.integer(1, s % 7 == 0 ? 150 : 9)));
            stride.push_back(static_cast<int>(random.integer(1, 2 * len.back())));
            tables.add(random, static_cast<std::size_t>(stride.back() * (size.back() - 1) + len.back()));
            index.push_back(static_cast<Index>(random.integer(0, size.back() - 1)));
            model::appendEntry(expected, tables.tables.back()->values(), index.back(), stride.back(), len.back());
        }
        Guarded<Index> srcIndex(index);
        Guarded<int> sizes(size), lens(len), strides(stride);
        Guarded<T> dst(expected.size());
        const auto call = [&] { return form(srcIndex, tables.pointers.data(), sizes, lens, strides, streams, dst); };
        ASSERT_EQ(call(), vornStsNoErr);
        EXPECT_EQ(std::memcmp(dst, expected.data(), expected.size() * sizeof(T)), 0) << streams;
        EXPECT_TRUE(dst.surroundingsUntouched());

        const auto refused = [&](const char* what, int s) {
            dst.fillPattern();
            EXPECT_EQ(call(), vornStsSizeErr) << what << " of stream " << s;
            EXPECT_TRUE(dst.untouched()) << what << " of stream " << s;
        };
        for (int s = 0; s < streams; ++s) {
            const auto at = static_cast<std::size_t>(s);
            for (const int value : {0, -1}) {
                lens[at] = value;
                refused("length", s);
                lens[at] = len[at];
                strides[at] = value;
                refused("stride", s);
                strides[at] = stride[at];
            }
            srcIndex[at] = static_cast<Index>(size[at]);
            refused("index", s);
            if (std::is_signed_v<Index>) {
                srcIndex[at] = static_cast<Index>(-1);
                refused("negative index", s);
            }
            srcIndex[at] = index[at];
        }
    }
}

TEST(FormVector, OfStreamsEqualsTheModel) {
    compareStreams(vornsFormVector_8u16s);
    compareStreams(vornsFormVector_16s16s);
    compareStreams(vornsFormVector_8u32f);
    compareStreams(vornsFormVector_16s32f);
}

template <class Index, class T>
void expectChecks(FormPieces<Index, T> form) {
    const T table[4] = {};
    const T* const tables[] = {table};
    const Index index[] = {0};
    const int sizes[] = {1};
    Guarded<T> dst(4);
    EXPECT_EQ(form(nullptr, tables, sizes, dst, 0), vornStsNullPtrErr);
    EXPECT_EQ(form(index, nullptr, sizes, dst, 0), vornStsNullPtrErr);
    EXPECT_EQ(form(index, tables, nullptr, dst, 0), vornStsNullPtrErr);
    EXPECT_EQ(form(index, tables, sizes, nullptr, 0), vornStsNullPtrErr);
    EXPECT_EQ(form(index, tables, sizes, dst, 0), vornStsSizeErr);
    EXPECT_EQ(form(index, tables, sizes, dst, -4), vornStsSizeErr);
    EXPECT_TRUE(dst.untouched());
}
template <class Index, class T>
void expectChecks(FormStreams<Index, T> form) {
    const T table[4] = {};
    const T* const tables[] = {table};
    const Index index[] = {0};
    const int one[] = {1};
    Guarded<T> dst(1);
    EXPECT_EQ(form(nullptr, tables, one, one, one, 0, dst), vornStsNullPtrErr);
    EXPECT_EQ(form(index, nullptr, one, one, one, 0, dst), vornStsNullPtrErr);
    EXPECT_EQ(form(index, tables, nullptr, one, one, 0, dst), vornStsNullPtrErr);
    EXPECT_EQ(form(index, tables, one, nullptr, one, 0, dst), vornStsNullPtrErr);
    EXPECT_EQ(form(index, tables, one, one, nullptr, 0, dst), vornStsNullPtrErr);
    EXPECT_EQ(form(index, tables, one, one, one, 0, nullptr), vornStsNullPtrErr);
    EXPECT_EQ(form(index, tables, one, one, one, 0, dst), vornStsSizeErr);
    EXPECT_TRUE(dst.untouched());
}

TEST(FormVector, ChecksInOrder) {
    expectChecks(vornsFormVector_2i_8u16s);
    expectChecks(vornsFormVector_2i_16s16s);
    expectChecks(vornsFormVector_2i_8u32f);
    expectChecks(vornsFormVector_2i_16s32f);
    expectChecks(vornsFormVector_4i_8u16s);
    expectChecks(vornsFormVector_4i_16s16s);
    expectChecks(vornsFormVector_4i_8u32f);
    expectChecks(vornsFormVector_4i_16s32f);
    expectChecks(vornsFormVector_8u16s);
    expectChecks(vornsFormVector_16s16s);
    expectChecks(vornsFormVector_8u32f);
    expectChecks(vornsFormVector_16s32f);
}

}  // namespace
