// The search of codebooks: nearest words by scan, grid and tree, in streams, and in order.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <set>
#include <vector>

#include "model/codebook_search.h"
#include "model/convert.h"
#include "model/vector_forming.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"
#include "vq/search/grids.h"

namespace {

using test::Guarded;
using test::Random;
using test::same;
using test::sameBits;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

// ---- The two element types, under one name each.

VornStatus create(VornCdbkState** book, const float* src, const float* weights, int width, int height, int words,
                  int hint) {
    return weights ? vornsCdbkInitAlloc_WgtL2_32f(book, src, weights, width, width, height, words, hint)
                   : vornsCdbkInitAlloc_L2_32f(book, src, width, width, height, words, hint);
}
VornStatus create(VornCdbkState** book, const Vorn16s* src, const Vorn16s* weights, int width, int height, int words,
                  int hint) {
    return weights ? vornsCdbkInitAlloc_WgtL2_16s(book, src, weights, width, width, height, words, hint)
                   : vornsCdbkInitAlloc_L2_16s(book, src, width, width, height, words, hint);
}
VornStatus quantise(const float* src, int step, Vorn32s* index, int height, const VornCdbkState* book) {
    return vornsVQ_32f(src, step, index, height, book);
}
VornStatus quantise(const Vorn16s* src, int step, Vorn32s* index, int height, const VornCdbkState* book) {
    return vornsVQ_16s(src, step, index, height, book);
}
VornStatus sorted(const float* src, Vorn32s* index, VornCdbkState* book, int count) {
    return vornsVQSingle_Sort_32f(src, index, book, count);
}
VornStatus sorted(const Vorn16s* src, Vorn32s* index, VornCdbkState* book, int count) {
    return vornsVQSingle_Sort_16s(src, index, book, count);
}
VornStatus within(const float* src, Vorn32s* index, VornCdbkState* book, int* count, float val) {
    return vornsVQSingle_Thresh_32f(src, index, book, count, val);
}
VornStatus within(const Vorn16s* src, Vorn32s* index, VornCdbkState* book, int* count, float val) {
    return vornsVQSingle_Thresh_16s(src, index, book, count, val);
}

using Book = std::shared_ptr<VornCdbkState>;
template <class T>
Book makeBook(const std::vector<T>& vectors, const std::vector<T>& weights, int width, int words, int hint) {
    VornCdbkState* made = nullptr;
    const int height = static_cast<int>(vectors.size()) / width;
    const VornStatus status =
        create(&made, vectors.data(), weights.empty() ? nullptr : weights.data(), width, height, words, hint);
    EXPECT_GE(status, vornStsNoErr);
    return Book(made, [](VornCdbkState* book) {
        if (book != nullptr) sizeof(T) == 2 ? vornsCdbkFree_16s(book) : vornsCdbkFree_32f(book);
    });
}

template <class T>
std::vector<T> vectorsAround(Random& random, int width, int height, double spread) {
    std::vector<T> x;
    for (int r = 0; r < height; ++r) {
        const double centre = spread * static_cast<double>(random.integer(-3, 3));
        for (int i = 0; i < width; ++i)
            x.push_back(static_cast<T>(centre * (i % 2 ? -1 : 1) + random.uniform(-spread, spread)));
    }
    return x;
}
template <class T>
std::vector<T> someWeights(Random& random, int width) {
    std::vector<T> weights;
    for (int i = 0; i < width; ++i) weights.push_back(static_cast<T>(random.uniform(0, 5)));
    weights[0] = T(2);
    return weights;
}

// Queries near the vectors, on words, and far away.
template <class T>
std::vector<T> queriesFor(Random& random, const VornCdbkState& book, int height, double spread) {
    std::vector<T> x = vectorsAround<T>(random, book.vecLen, height, spread * 1.2);
    for (int r = 0; r < height; r += 3) {
        const T* word = model::wordOf<T>(book, static_cast<int>(random.integer(0, book.cdbkSize - 1)));
        std::copy_n(word, book.vecLen, x.begin() + static_cast<std::ptrdiff_t>(r) * book.vecLen);
    }
    return x;
}

struct Shape {
    int width, height, words, hint;
};
constexpr Shape shapes[] = {{1, 9, 9, 1},    {1, 100, 100, 1}, {1, 300, 300, 1}, {2, 40, 40, 1},    {2, 200, 200, 1},
                            {3, 70, 70, 1},  {4, 1, 1, 1},     {7, 130, 130, 1}, {13, 257, 257, 1}, {39, 66, 66, 1},
                            {65, 40, 40, 1}, {130, 20, 20, 1}, {1, 60, 9, 2},    {2, 60, 2, 2},     {2, 90, 16, 3},
                            {5, 120, 33, 2}, {13, 200, 64, 2}, {13, 200, 40, 3}, {39, 90, 17, 2},   {130, 30, 8, 3}};

template <class T>
constexpr double spreadOf = sizeof(T) == 2 ? 900.0 : 4.0;

// All codebooks, with weights and without.
template <class T, class Use>
void overBooks(Use use) {
    Random random(1);
    for (const Shape& shape : shapes) {
        for (const bool weighted : {false, true}) {
            const auto weights = weighted ? someWeights<T>(random, shape.width) : std::vector<T>();
            const auto vectors = vectorsAround<T>(random, shape.width, shape.height, spreadOf<T>);
            const Book book = makeBook(vectors, weights, shape.width, shape.words, shape.hint);
            ASSERT_NE(book, nullptr);
            SCOPED_TRACE(testing::Message() << "width " << shape.width << ", words " << book->cdbkSize << ", hint "
                                            << shape.hint << (weighted ? ", weighted" : "") << ", mode " << book->mode);
            use(random, *book);
            if (testing::Test::HasFatalFailure()) return;
        }
    }
}

// ---- Blocks.

template <class T>
void compareBlocks() {
    int grids = 0;
    overBooks<T>([&](Random& random, VornCdbkState& book) {
        grids += book.mode & 1;
        for (const int height : {1, 3, 17, 70, 150}) {
            const auto queries = queriesFor<T>(random, book, height, spreadOf<T>);
            const int step = book.vecLen + static_cast<int>(random.integer(0, 3));
            Guarded<T> src(static_cast<std::size_t>(step * (height - 1) + book.vecLen));
            for (int r = 0; r < height; ++r) {
                std::copy_n(queries.begin() + static_cast<std::ptrdiff_t>(r) * book.vecLen, book.vecLen,
                            src.data() + static_cast<std::ptrdiff_t>(r) * step);
            }
            Guarded<Vorn32s> index(static_cast<std::size_t>(height)), again(index.size());
            ASSERT_EQ(quantise(src, step, index, height, &book), vornStsNoErr);
            Guarded<float> distance(index.size());
            Guarded<Vorn32s> scaled(index.size());
            if constexpr (sizeof(T) == 4) {
                ASSERT_EQ(vornsVQDist_32f(src, step, again, distance, height, &book), vornStsNoErr);
            } else {
                ASSERT_EQ(vornsVQDist_16s32s_Sfs(src, step, again, scaled, height, &book, -3), vornStsNoErr);
            }
            for (int r = 0; r < height; ++r) {
                const auto at = static_cast<std::size_t>(r);
                const model::Nearest expected =
                    model::nearest(book, src.data() + static_cast<std::ptrdiff_t>(r) * step);
                ASSERT_EQ(index[at], expected.index) << "row " << r << " of " << height;
                ASSERT_EQ(again[at], expected.index) << "row " << r << " of " << height;
                const float root = model::rootOf(expected.distance);
                if constexpr (sizeof(T) == 4) {
                    ASSERT_TRUE(same(distance[at], root)) << "row " << r;
                } else {
                    ASSERT_EQ(scaled[at], static_cast<Vorn32s>(std::nearbyint(static_cast<double>(root) * 8)))
                        << "row " << r;
                }
            }
            EXPECT_TRUE(index.surroundingsUntouched() && again.surroundingsUntouched());
            EXPECT_TRUE(distance.surroundingsUntouched() && scaled.surroundingsUntouched());
        }
    });
    EXPECT_GT(grids, 3) << "some of these codebooks have grids";
}
TEST(VQ, EqualsTheModel_32f) { compareBlocks<float>(); }
TEST(VQ, EqualsTheModel_16s) { compareBlocks<Vorn16s>(); }

// Whatever was misread: no word is clearly nearer than the one that a scan or a grid answers; and a query on a word of
// a tree that has no other word nearby is answered by that word or by one as near.
template <class T>
void expectNearest() {
    overBooks<T>([&](Random& random, VornCdbkState& book) {
        const int height = 60;
        const auto queries = queriesFor<T>(random, book, height, spreadOf<T>);
        std::vector<Vorn32s> index(height);
        ASSERT_EQ(quantise(queries.data(), book.vecLen, index.data(), height, &book), vornStsNoErr);
        int right = 0;
        for (int r = 0; r < height; ++r) {
            const T* x = queries.data() + static_cast<std::ptrdiff_t>(r) * book.vecLen;
            const auto distanceOf = [&](int j) {
                long double sum = 0;
                for (int i = 0; i < book.vecLen; ++i) {
                    const long double d = static_cast<long double>(x[i]) - model::wordOf<T>(book, j)[i];
                    sum += d * d * static_cast<const T*>(book.weights)[i];
                }
                return sum;
            };
            long double least = distanceOf(0);
            for (int j = 1; j < book.cdbkSize; ++j) least = std::min(least, distanceOf(j));
            const long double found = distanceOf(index[static_cast<std::size_t>(r)]);
            right += found <= least * 1.0001L;
            if (book.hint != 1) continue;
            ASSERT_LE(found, least * 1.0001L + 1e-9L) << "row " << r;
        }
        EXPECT_GE(right, height * 7 / 10) << "a tree may miss the nearest word now and then";
    });
}
TEST(VQ, AnswersTheNearestWord_32f) { expectNearest<float>(); }
TEST(VQ, AnswersTheNearestWord_16s) { expectNearest<Vorn16s>(); }

TEST(VQ, OfOneCodewordAndOfTwo) {
    const std::vector<float> vectors = {0, 0, 1, 1, 10, 10, 11, 11};
    const Book one = makeBook<float>(vectors, {}, 2, 1, 2), two = makeBook<float>(vectors, {}, 2, 2, 2);
    ASSERT_EQ(one->cdbkSize, 1);
    ASSERT_EQ(two->cdbkSize, 2);
    EXPECT_EQ(two->root->left->nearCount, 0);
    const float queries[] = {100, 100, 0.4f, 0.5f, 10.6f, 10.5f};
    Vorn32s index[3];
    ASSERT_EQ(vornsVQ_32f(queries, 2, index, 3, one.get()), vornStsNoErr);
    EXPECT_EQ(index[0], 0);
    EXPECT_EQ(index[1], 0);
    float word[4];
    ASSERT_EQ(vornsGetCodebook_32f(two.get(), word, 2), vornStsNoErr);
    ASSERT_EQ(vornsVQ_32f(queries, 2, index, 3, two.get()), vornStsNoErr);
    EXPECT_EQ(word[2 * index[0]], 10.5f);
    EXPECT_EQ(word[2 * index[1]], 0.5f);
    EXPECT_EQ(word[2 * index[2]], 10.5f);
}

TEST(VQ, OfEquidistantWordsAnswersTheLowerIndex) {
    const Book book = makeBook<float>({5, 5, 5, 1, 1, 1, -1, -1, -1, 1, 1, 1}, {}, 3, 4, 1);
    const float query[] = {0, 0, 0};
    Vorn32s index;
    float distance;
    ASSERT_EQ(vornsVQDist_32f(query, 3, &index, &distance, 1, book.get()), vornStsNoErr);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(distance, std::sqrt(3.0f));
}

TEST(VQ, BeyondALineTakesItsEnds) {
    std::vector<float> vectors;
    for (int i = 0; i < 100; ++i) vectors.push_back(static_cast<float>(i));
    const Book book = makeBook<float>(vectors, {}, 1, 100, 1);
    ASSERT_EQ(book->mode & 1, 1);
    const float queries[] = {-1e30f, -infinity, 1e30f, 41.3f, infinity, nan};
    Vorn32s index[6];
    float distance[6];
    ASSERT_EQ(vornsVQDist_32f(queries, 1, index, distance, 6, book.get()), vornStsNoErr);
    EXPECT_EQ(index[3], 41);
    // The distances of the others leave the singles: no candidate comes.
    for (const int i : {0, 1, 2, 4, 5}) {
        EXPECT_EQ(index[i], -1) << i;
        EXPECT_EQ(distance[i], static_cast<float>(std::sqrt(static_cast<double>(model::largest)))) << i;
    }
    const float ends[] = {-500, 1000};
    ASSERT_EQ(vornsVQ_32f(ends, 1, index, 2, book.get()), vornStsNoErr);
    EXPECT_EQ(index[0], 0);
    EXPECT_EQ(index[1], 99);
}

// From 100 to 195 the range is stretched to 90, and the cells end at 90 + 1.1 x 95: the last word is in none of them.
TEST(VQ, BeyondTheCellsOfALineTheLastWordMayBeMissed) {
    std::vector<float> vectors;
    for (int i = 0; i <= 190; ++i) vectors.push_back(100 + 0.5f * static_cast<float>(i));
    const Book book = makeBook<float>(vectors, {}, 1, 191, 1);
    ASSERT_EQ(book->mode & 1, 1);
    EXPECT_EQ(static_cast<vorn::vq::Line*>(book->grid)->cells, 10);
    const float queries[] = {195, 150.1f};
    Vorn32s index[2];
    ASSERT_EQ(vornsVQ_32f(queries, 1, index, 2, book.get()), vornStsNoErr);
    EXPECT_EQ(model::byScan(*book, queries).index, 190);
    EXPECT_LT(index[0], 190);
    EXPECT_GE(index[0], 188);
    EXPECT_EQ(index[1], 100);
}

TEST(VQ, ACellWithoutCandidatesGivesNoWord) {
    std::vector<float> vectors;
    for (int i = 0; i < 100; ++i) vectors.push_back(static_cast<float>(i));
    const Book book = makeBook<float>(vectors, {}, 1, 100, 1);
    ASSERT_EQ(book->mode & 1, 1);
    auto& line = *static_cast<vorn::vq::Line*>(book->grid);
    const int size = line.sizes[1];
    line.sizes[1] = 0;
    Vorn32s index = 7;
    const float query = vectors[0];
    ASSERT_EQ(vornsVQ_32f(&query, 1, &index, 1, book.get()), vornStsNoErr);
    EXPECT_EQ(index, -1);
    line.sizes[1] = size;
}

TEST(VQ, PassesOverACodebookOfAnUnknownHint) {
    Random random(2);
    const Book book = makeBook<float>(vectorsAround<float>(random, 3, 9, 1), {}, 3, 9, 1);
    const Book known = makeBook<float>(vectorsAround<float>(random, 2, 9, 1), {}, 2, 9, 1);
    book->hint = 4;
    Guarded<Vorn32s> index(2);
    Guarded<float> distance(2);
    const float src[10] = {};
    EXPECT_EQ(vornsVQ_32f(src, 3, index, 2, book.get()), vornStsNoErr);
    EXPECT_EQ(vornsVQDist_32f(src, 3, index, distance, 2, book.get()), vornStsNoErr);
    EXPECT_TRUE(index.untouched() && distance.untouched());
    int count = 5;
    EXPECT_EQ(vornsVQSingle_Thresh_32f(src, index, book.get(), &count, 2), vornStsNoErr);
    EXPECT_EQ(count, 0);
    EXPECT_TRUE(index.untouched());
    // Of several streams this one is left out.
    const VornCdbkState* const streams[] = {book.get(), known.get()};
    Guarded<Vorn16s> indices(2);
    EXPECT_EQ(vornsSplitVQ_32f16s(src, 5, indices, 2, 1, streams, 2), vornStsNoErr);
    EXPECT_EQ(static_cast<Vorn16u>(indices[0]), 0xA5A5);
    EXPECT_EQ(indices[1], model::nearest(*known, src + 3).index);
    book->hint = 1;
}

// A caller's block may begin at any address.
TEST(VQ, FindsTheRecordOfACodebookInABlock) {
    Random random(9);
    const auto vectors = vectorsAround<float>(random, 3, 20, 1);
    const Book own = makeBook<float>(vectors, {}, 3, 20, 1);
    int size = 0;
    ASSERT_EQ(vornsCdbkGetSize_32f(3, 3, 20, 20, 1, &size), vornStsNoErr);
    const auto queries = vectorsAround<float>(random, 3, 40, 1.3);
    std::vector<Vorn32s> expected(40), index(40);
    ASSERT_EQ(vornsVQ_32f(queries.data(), 3, expected.data(), 40, own.get()), vornStsNoErr);
    for (const std::size_t offset : {0, 1, 4, 7, 13}) {
        test::Offset<Vorn8u> block(static_cast<std::size_t>(size), offset);
        auto* book = reinterpret_cast<VornCdbkState*>(block.data());
        ASSERT_EQ(vornsCdbkInit_L2_32f(book, vectors.data(), 3, 3, 20, 20, 1), vornStsNoErr);
        std::fill(index.begin(), index.end(), -7);
        ASSERT_EQ(vornsVQ_32f(queries.data(), 3, index.data(), 40, book), vornStsNoErr);
        EXPECT_EQ(index, expected) << offset;
        std::vector<Vorn32s> order(20), expectedOrder(20);
        ASSERT_EQ(vornsVQSingle_Sort_32f(queries.data(), order.data(), book, 20), vornStsNoErr);
        ASSERT_EQ(vornsVQSingle_Sort_32f(queries.data(), expectedOrder.data(), own.get(), 20), vornStsNoErr);
        EXPECT_EQ(order, expectedOrder) << offset;
        int count = 0;
        EXPECT_EQ(vornsVQSingle_Thresh_32f(queries.data(), order.data(), book, &count, 2), vornStsNoErr);
        EXPECT_GE(count, 1);
        // In streams, and on the way back.
        const VornCdbkState* const streams[] = {book};
        Vorn8u bits[25];
        ASSERT_EQ(vornsSplitVQ_32f1u(queries.data(), 3, bits, 5, 40, streams, 1), vornStsNoErr);
        std::vector<float> words(120), expectedWords(120);
        ASSERT_EQ(vornsFormVectorVQ_1u32f(bits, 5, words.data(), 3, 40, streams, 1), vornStsNoErr);
        for (int r = 0; r < 40; ++r) {
            std::copy_n(vectors.begin() + 3 * expected[static_cast<std::size_t>(r)], 3, expectedWords.begin() + 3 * r);
        }
        EXPECT_EQ(words, expectedWords) << offset;
        EXPECT_TRUE(block.surroundingsUntouched()) << offset;
    }
}

// ---- Streams.

template <class T>
struct Streams {
    std::vector<Book> books;
    std::vector<const VornCdbkState*> pointers;
    int width = 0, bits = 0;
    explicit Streams(Random& random) {
        for (const Shape& shape :
             {Shape{2, 64, 64, 1}, Shape{1, 5, 5, 1}, Shape{3, 40, 8, 2}, Shape{4, 1, 1, 1}, Shape{5, 60, 32, 3}}) {
            books.push_back(makeBook(vectorsAround<T>(random, shape.width, shape.height, spreadOf<T>), {}, shape.width,
                                     shape.words, shape.hint));
            pointers.push_back(books.back().get());
            width += shape.width;
            bits += books.back()->indexBits;
        }
    }
    int count() const { return static_cast<int>(books.size()); }
    // The words of a row.
    std::vector<int> expected(const T* row) const {
        std::vector<int> index;
        for (const Book& book : books) {
            index.push_back(model::nearest(*book, row).index);
            row += book->vecLen;
        }
        return index;
    }
};

template <class T, class Index, class Split>
void compareStreams(Split split) {
    Random random(3);
    const Streams<T> streams(random);
    for (const int height : {1, 2, 40, 100}) {
        const int step = streams.width + 2, dstStep = streams.count() + height % 2;
        std::vector<T> values(static_cast<std::size_t>(step * height));
        for (T& x : values) x = static_cast<T>(random.uniform(-3 * spreadOf<T>, 3 * spreadOf<T>));
        values.resize(values.size() - 2);
        Guarded<T> src(values);
        Guarded<Index> dst(static_cast<std::size_t>(dstStep * (height - 1) + streams.count()));
        ASSERT_EQ(split(src, step, dst, dstStep, height, streams.pointers.data(), streams.count()), vornStsNoErr);
        for (int r = 0; r < height; ++r) {
            const auto expected = streams.expected(src.data() + static_cast<std::ptrdiff_t>(r) * step);
            for (int s = 0; s < streams.count(); ++s) {
                ASSERT_EQ(dst[static_cast<std::size_t>(r * dstStep + s)],
                          static_cast<Index>(expected[static_cast<std::size_t>(s)]));
            }
        }
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
}
TEST(SplitVQ, EqualsTheModel) {
    compareStreams<float, Vorn16s>(vornsSplitVQ_32f16s);
    compareStreams<float, Vorn8u>(vornsSplitVQ_32f8u);
    compareStreams<Vorn16s, Vorn16s>(vornsSplitVQ_16s16s);
    compareStreams<Vorn16s, Vorn8u>(vornsSplitVQ_16s8u);
}

template <class T, class Split>
void compareBits(Split split) {
    Random random(4);
    const Streams<T> streams(random);
    ASSERT_EQ(streams.bits, 6 + 3 + 3 + 0 + 5);
    for (const int height : {1, 3, 33}) {
        for (const int bitStep : {17, 18, 24, 29}) {
            std::vector<T> values(static_cast<std::size_t>(streams.width * height));
            for (T& x : values) x = static_cast<T>(random.uniform(-3 * spreadOf<T>, 3 * spreadOf<T>));
            Guarded<T> src(values);
            const std::int64_t area = std::int64_t{bitStep} * height;
            Guarded<Vorn8u> dst(static_cast<std::size_t>((area + 7) / 8));
            ASSERT_EQ(split(src, streams.width, dst, bitStep, height, streams.pointers.data(), streams.count()),
                      vornStsNoErr);
            const auto bytes = dst.values();
            for (int r = 0; r < height; ++r) {
                const auto expected = streams.expected(src.data() + static_cast<std::ptrdiff_t>(r) * streams.width);
                std::int64_t at = std::int64_t{r} * bitStep;
                for (int s = 0; s < streams.count(); ++s) {
                    const int bits = streams.pointers[static_cast<std::size_t>(s)]->indexBits;
                    ASSERT_EQ(model::bitsAt(bytes, at, bits), expected[static_cast<std::size_t>(s)]) << "row " << r;
                    at += bits;
                }
                // What lies between the rows is zero, to the last byte.
                const std::int64_t end =
                    r + 1 == height ? 8 * static_cast<std::int64_t>(bytes.size()) : std::int64_t{r + 1} * bitStep;
                ASSERT_EQ(model::bitsAt(bytes, at, static_cast<int>(end - at)), 0) << "behind row " << r;
            }
            EXPECT_TRUE(dst.surroundingsUntouched());

            // The way back.
            std::vector<T> words(values.size());
            const auto form = [&] {
                if constexpr (sizeof(T) == 4) {
                    return vornsFormVectorVQ_1u32f(dst, bitStep, words.data(), streams.width, height,
                                                   streams.pointers.data(), streams.count());
                } else {
                    return vornsFormVectorVQ_1u16s(dst, bitStep, words.data(), streams.width, height,
                                                   streams.pointers.data(), streams.count());
                }
            };
            ASSERT_EQ(form(), vornStsNoErr);
            const T* word = words.data();
            for (int r = 0; r < height; ++r) {
                const auto expected = streams.expected(src.data() + static_cast<std::ptrdiff_t>(r) * streams.width);
                for (int s = 0; s < streams.count(); ++s) {
                    const VornCdbkState& book = *streams.pointers[static_cast<std::size_t>(s)];
                    EXPECT_TRUE(sameBits(word, model::wordOf<T>(book, expected[static_cast<std::size_t>(s)]),
                                         static_cast<std::size_t>(book.vecLen)));
                    word += book.vecLen;
                }
            }
        }
    }
}
TEST(SplitVQ, PacksBits_32f) { compareBits<float>(vornsSplitVQ_32f1u); }
TEST(SplitVQ, PacksBits_16s) { compareBits<Vorn16s>(vornsSplitVQ_16s1u); }

TEST(SplitVQ, PutsTheFirstStreamIntoTheTopBits) {
    std::vector<float> of8, of32;
    for (int i = 0; i < 8; ++i) of8.insert(of8.end(), {static_cast<float>(i), 0, 0});
    for (int i = 0; i < 32; ++i) of32.insert(of32.end(), {static_cast<float>(i), 0, 0});
    const Book first = makeBook<float>(of8, {}, 3, 8, 1), second = makeBook<float>(of32, {}, 3, 32, 1);
    const VornCdbkState* const streams[] = {first.get(), second.get()};
    const float rows[] = {5, 0, 0, 6, 0, 0, 0.9f, 0, 0, 31, 0, 0};
    Guarded<Vorn8u> dst(2);
    ASSERT_EQ(vornsSplitVQ_32f1u(rows, 6, dst, 8, 2, streams, 2), vornStsNoErr);
    EXPECT_EQ(dst[0], 5 << 5 | 6);
    EXPECT_EQ(dst[1], 1 << 5 | 31);
    // No word: all ones.
    const float none[] = {nan, 0, 0, 0, 0, 0};
    ASSERT_EQ(vornsSplitVQ_32f1u(none, 6, dst, 8, 1, streams, 2), vornStsNoErr);
    EXPECT_EQ(dst[0], 0xE0);
}

// Lists of neighbouring cells overlap so far that no search shows on which side of a border a number falls.
TEST(GridCells, BeginAtTheirQuotient) {
    EXPECT_EQ(vorn::vq::cellOf<float>(3.9999f, 10), 3);
    EXPECT_EQ(vorn::vq::cellOf<float>(4.0f, 10), 4);
    EXPECT_EQ(vorn::vq::cellOf<float>(0.0f, 10), 0);
    EXPECT_EQ(vorn::vq::cellOf<float>(-1e-30f, 10), -1);
    EXPECT_EQ(vorn::vq::cellOf<float>(9.99f, 10), 9);
    EXPECT_EQ(vorn::vq::cellOf<float>(10.0f, 10), 10);
    EXPECT_EQ(vorn::vq::cellOf<float>(infinity, 10), 10);
    EXPECT_EQ(vorn::vq::cellOf<float>(nan, 10), -1);
    // Integers move up by a thousandth, but not those in front of the first cell.
    EXPECT_EQ(vorn::vq::cellOf<Vorn16s>(3.99905f, 10), 4);
    EXPECT_EQ(vorn::vq::cellOf<Vorn16s>(3.99895f, 10), 3);
    EXPECT_EQ(vorn::vq::cellOf<Vorn16s>(9.99905f, 10), 10);
    EXPECT_EQ(vorn::vq::cellOf<Vorn16s>(-0.0005f, 10), -1);
    EXPECT_EQ(vorn::vq::cellOf<Vorn16s>(nan, 10), -1);
}

// Between two words, by a share of the distance that the tolerances of the way down and of the walk take for equal, or
// just do not.
TEST(VQ, DecidesNearTiesAsTheModel) {
    int changed = 0;
    overBooks<float>([&](Random& random, VornCdbkState& book) {
        if (book.hint == 1 || book.cdbkSize < 4) return;
        const auto width = static_cast<std::size_t>(book.vecLen);
        const auto* weights = static_cast<const float*>(book.weights);
        for (int n = 0; n < 400; ++n) {
            const float* a = model::wordOf<float>(book, static_cast<int>(random.integer(0, book.cdbkSize - 1)));
            // The word that is nearest to it.
            const float* b = nullptr;
            float least = model::largest;
            for (int j = 0; j < book.cdbkSize; ++j) {
                const float* word = model::wordOf<float>(book, j);
                const float d = model::squares(a, word, weights, book.vecLen);
                if (d > 0 && d < least) least = d, b = word;
            }
            if (b == nullptr) continue;
            constexpr double shares[] = {3e-7, 6e-7, 2e-6, 5e-5, 8e-5, 2e-4, -6e-7, -5e-5};
            const double at = 0.5 + shares[n % 8] / 8;
            Guarded<float> x(width);
            for (std::size_t i = 0; i < width; ++i) x[i] = static_cast<float>(a[i] + at * (double{b[i]} - a[i]));
            Vorn32s index;
            ASSERT_EQ(vornsVQ_32f(x, book.vecLen, &index, 1, &book), vornStsNoErr);
            ASSERT_EQ(index, model::nearest(book, x.data()).index);
            changed += index != model::byScan(book, x.data()).index;
        }
    });
    EXPECT_GT(changed, 0) << "the tolerances decide on some";
}

// Queries that no word is near to have index -1, among many that have one too.
TEST(VQ, OfNoNumberHasNoIndexAmongManyQueries) {
    Random random(3);
    const auto vectors = vectorsAround<float>(random, 5, 50, 4.0);
    const Book book = makeBook<float>(vectors, {}, 5, 50, 1);
    auto queries = vectorsAround<float>(random, 5, 70, 4.0);
    for (const int row : {0, 7, 31, 64, 69}) queries[static_cast<std::size_t>(row) * 5 + 2] = row % 2 ? nan : infinity;
    Guarded<Vorn32s> index(70);
    Guarded<float> distance(70);
    ASSERT_EQ(vornsVQDist_32f(queries.data(), 5, index, distance, 70, book.get()), vornStsNoErr);
    for (int row = 0; row < 70; ++row) {
        const bool none = row == 0 || row == 7 || row == 31 || row == 64 || row == 69;
        EXPECT_EQ(index[static_cast<std::size_t>(row)] == -1, none) << row;
        if (none) {
            EXPECT_EQ(distance[static_cast<std::size_t>(row)], model::rootOf(model::largest)) << row;
        }
    }
}

// ---- Words in order.

template <class T>
void compareOrder() {
    overBooks<T>([&](Random& random, VornCdbkState& book) {
        const auto queries = queriesFor<T>(random, book, 4, spreadOf<T>);
        for (int r = 0; r < 4; ++r) {
            Guarded<T> x(std::vector<T>(queries.begin() + static_cast<std::ptrdiff_t>(r) * book.vecLen,
                                        queries.begin() + static_cast<std::ptrdiff_t>(r + 1) * book.vecLen));
            for (const int count : {1, std::min(5, book.cdbkSize), book.cdbkSize}) {
                const auto expected = model::ranked(book, x.data(), count);
                Guarded<Vorn32s> index(static_cast<std::size_t>(count)), again(index.size()), scaled(index.size());
                Guarded<float> distance(index.size());
                ASSERT_EQ(sorted(x, index, &book, count), vornStsNoErr);
                if constexpr (sizeof(T) == 4) {
                    ASSERT_EQ(vornsVQDistSingle_Sort_32f(x, again, distance, &book, count), vornStsNoErr);
                } else {
                    ASSERT_EQ(vornsVQDistSingle_Sort_16s32s_Sfs(x, again, scaled, &book, count, 2), vornStsNoErr);
                }
                for (std::size_t k = 0; k < expected.size(); ++k) {
                    ASSERT_EQ(index[k], expected[k].index) << "rank " << k;
                    ASSERT_EQ(again[k], expected[k].index) << "rank " << k;
                    const float root = model::rootOf(expected[k].distance);
                    if constexpr (sizeof(T) == 4) {
                        ASSERT_TRUE(same(distance[k], root)) << "rank " << k;
                    } else {
                        ASSERT_EQ(scaled[k], static_cast<Vorn32s>(std::nearbyint(static_cast<double>(root) / 4)))
                            << "rank " << k;
                    }
                }
                EXPECT_TRUE(index.surroundingsUntouched() && again.surroundingsUntouched());
                // Each word once.
                EXPECT_EQ(std::set<Vorn32s>(index.begin(), index.end()).size(), index.size());
            }
        }
    });
}
TEST(VQSingleSort, EqualsTheModel_32f) { compareOrder<float>(); }
TEST(VQSingleSort, EqualsTheModel_16s) { compareOrder<Vorn16s>(); }

// Many words, so that sorting pays: distances that are clearly apart, chains of near-equals, many that are equal, and
// some that do not qualify.
template <class T>
void compareLongOrder(int words, const std::function<T(Random&)>& firstElement) {
    Random random(7);
    std::vector<T> vectors;
    for (int j = 0; j < words; ++j) vectors.insert(vectors.end(), {firstElement(random), T(0), T(0)});
    const Book book = makeBook<T>(vectors, {}, 3, words, 1);
    ASSERT_NE(book, nullptr);
    const T x[] = {T(0), T(0), T(0)};
    for (const int count : {3, 4, 5, 20, words / 2, words}) {
        const auto expected = model::ranked(*book, x, count);
        Guarded<Vorn32s> index(static_cast<std::size_t>(count));
        ASSERT_EQ(sorted(x, index, book.get(), count), vornStsNoErr);
        for (std::size_t k = 0; k < expected.size(); ++k) {
            ASSERT_EQ(index[k], expected[k].index) << "rank " << k << " of " << count;
        }
    }
}
TEST(VQSingleSort, OfManyWordsEqualsTheModel) {
    constexpr float ulp = 0x1p-23f;
    const auto apart = [](Random& random) { return static_cast<float>(random.uniform(-10, 10)); };
    const auto chained = [](Random& random) { return 1.0f + ulp * static_cast<float>(random.integer(0, 60)); };
    const auto grouped = [](Random& random) {
        return static_cast<float>(random.integer(1, 300)) * (1.0f + 3 * ulp * static_cast<float>(random.integer(0, 3)));
    };
    const auto mixed = [=](Random& random) {
        constexpr float hard[] = {0.0f, -0.0f, 1e-30f, 1e-22f, 3e19f, infinity, nan, 1.8e19f, 2e-20f};
        return random.integer(0, 3) ? grouped(random) : hard[random.integer(0, 8)];
    };
    compareLongOrder<float>(3000, apart);
    compareLongOrder<float>(700, chained);
    compareLongOrder<float>(90, chained);
    compareLongOrder<float>(3000, grouped);
    compareLongOrder<float>(3000, mixed);
    compareLongOrder<float>(600, [](Random&) { return 2.0f; });
    compareLongOrder<Vorn16s>(3000, [](Random& random) { return static_cast<Vorn16s>(random.integer(-32768, 32767)); });
    compareLongOrder<Vorn16s>(3000, [](Random& random) { return static_cast<Vorn16s>(random.integer(-200, 200)); });
}

TEST(VQSingleSort, OfEqualDistancesRisesInIndex) {
    // Distances 4, 0, 1, 1, 0, 4, 1 from 0.
    const Book book = makeBook<float>({2, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0, -2, 0, 0, 0, 0, -1}, {}, 3, 7, 1);
    const float query[] = {0, 0, 0};
    Vorn32s index[7];
    float distance[7];
    ASSERT_EQ(vornsVQDistSingle_Sort_32f(query, index, distance, book.get(), 7), vornStsNoErr);
    EXPECT_EQ(std::vector<Vorn32s>(index, index + 7), (std::vector<Vorn32s>{1, 4, 2, 3, 6, 0, 5}));
    EXPECT_EQ(std::vector<float>(distance, distance + 7), (std::vector<float>{0, 0, 1, 1, 1, 2, 2}));
}

TEST(VQSingleSort, NeverTakesAnInfiniteDistance) {
    const Book book = makeBook<float>({infinity, 0, 0, 3, 0, 0, nan, 0, 0, 1, 0, 0}, {}, 3, 4, 1);
    const float query[] = {0, 0, 0};
    Vorn32s index[4];
    float distance[4];
    ASSERT_EQ(vornsVQDistSingle_Sort_32f(query, index, distance, book.get(), 4), vornStsNoErr);
    EXPECT_EQ(std::vector<Vorn32s>(index, index + 4), (std::vector<Vorn32s>{3, 1, -1, -1}));
    EXPECT_EQ(distance[0], 1);
    EXPECT_EQ(distance[1], 3);
    EXPECT_EQ(distance[2], static_cast<float>(std::sqrt(static_cast<double>(model::largest))));
    int count;
    ASSERT_EQ(vornsVQSingle_Thresh_32f(query, index, book.get(), &count, 1e18f), vornStsNoErr);
    EXPECT_EQ(count, 2);
}

template <class T>
void compareThresholds() {
    overBooks<T>([&](Random& random, VornCdbkState& book) {
        const auto queries = queriesFor<T>(random, book, 5, spreadOf<T>);
        for (int r = 0; r < 5; ++r) {
            const T* x = queries.data() + static_cast<std::ptrdiff_t>(r) * book.vecLen;
            for (const float val : {1.0f, 1.5f, 3.0f}) {
                const float root = model::rootOf(model::nearest(book, x).distance);
                volatile float limit = root * root;
                limit = limit * val;
                limit = limit * val;
                volatile float single = limit * 1.000001f;
                std::vector<Vorn32s> expected, kept;
                std::vector<float> distances;
                std::vector<Vorn32s> integers;
                constexpr int scaleFactor = -1;
                const auto scaled = [](float d) {
                    return static_cast<Vorn32s>(std::nearbyint(static_cast<double>(d) * 2));
                };
                const auto most = static_cast<Vorn32s>(static_cast<float>(scaled(root)) * val);
                for (const model::Nearest& each : model::ranked(book, x, book.cdbkSize)) {
                    const bool holds = sizeof(T) == 4 ? each.distance <= limit * 1.000001 : each.distance <= single;
                    if (each.index < 0 || !holds) break;
                    expected.push_back(each.index);
                    distances.push_back(model::rootOf(each.distance));
                    if (scaled(distances.back()) <= most) {
                        kept.push_back(each.index);
                        integers.push_back(scaled(distances.back()));
                    }
                }
                Guarded<Vorn32s> index(static_cast<std::size_t>(book.cdbkSize)), dist(index.size());
                Guarded<float> distance(index.size());
                int count = -1;
                ASSERT_EQ(within(x, index, &book, &count, val), vornStsNoErr);
                ASSERT_EQ(count, static_cast<int>(expected.size()));
                EXPECT_TRUE(std::equal(expected.begin(), expected.end(), index.begin()));
                index.fillPattern();
                if constexpr (sizeof(T) == 4) {
                    ASSERT_EQ(vornsVQDistSingle_Thresh_32f(x, index, distance, &book, &count, val), vornStsNoErr);
                    ASSERT_EQ(count, static_cast<int>(expected.size()));
                    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), index.begin()));
                    EXPECT_TRUE(std::equal(distances.begin(), distances.end(), distance.begin()));
                } else {
                    ASSERT_EQ(vornsVQDistSingle_Thresh_16s32s_Sfs(x, index, dist, &book, &count, scaleFactor, val),
                              vornStsNoErr);
                    ASSERT_EQ(count, static_cast<int>(kept.size()));
                    EXPECT_TRUE(std::equal(kept.begin(), kept.end(), index.begin()));
                    EXPECT_TRUE(std::equal(integers.begin(), integers.end(), dist.begin()));
                }
                // Behind them nothing is written.
                for (auto k = static_cast<std::size_t>(count); k < index.size(); ++k) {
                    ASSERT_EQ(static_cast<Vorn32u>(index[k]), 0xA5A5A5A5u);
                }
            }
        }
    });
}
TEST(VQSingleThresh, EqualsTheModel_32f) { compareThresholds<float>(); }
TEST(VQSingleThresh, EqualsTheModel_16s) { compareThresholds<Vorn16s>(); }

TEST(VQSingleThresh, OfFactorOneTakesTheNearestWordsAlone) {
    const Book book = makeBook<float>({2, 0, 0, 1, 0, 0, 0, 1, 0, 1.1f, 0, 0}, {}, 3, 4, 1);
    const float between[] = {0, 0, 0}, onAWord[] = {2, 0, 0};
    Vorn32s index[4];
    int count;
    ASSERT_EQ(vornsVQSingle_Thresh_32f(between, index, book.get(), &count, 1.0f), vornStsNoErr);
    ASSERT_EQ(count, 2);
    EXPECT_EQ(index[0], 1);
    EXPECT_EQ(index[1], 2);
    ASSERT_EQ(vornsVQSingle_Thresh_32f(onAWord, index, book.get(), &count, 100.0f), vornStsNoErr);
    ASSERT_EQ(count, 1) << "the limit is 0, whatever the factor";
    EXPECT_EQ(index[0], 0);
    ASSERT_EQ(vornsVQSingle_Thresh_32f(between, index, book.get(), &count, 2.0f), vornStsNoErr);
    EXPECT_EQ(count, 4);
    ASSERT_EQ(vornsVQSingle_Thresh_32f(between, index, book.get(), &count, nan), vornStsNoErr);
    EXPECT_EQ(count, 0);
}

// ---- Checks and memory.

struct BlockArguments {
    Book book;
    Guarded<float> src = Guarded<float>(12);
    Guarded<Vorn32s> index = Guarded<Vorn32s>(4);
    Guarded<float> distance = Guarded<float>(4);
    const float* from = src;
    Vorn32s* toIndex = index;
    float* toDistance = distance;
    const VornCdbkState* pBook = nullptr;
    int step = 3, height = 4;
};
TEST(VQ, ChecksInOrder) {
    using A = BlockArguments;
    const std::function<A()> good = [] {
        Random random(5);
        A a;
        a.book = makeBook<float>(vectorsAround<float>(random, 3, 5, 1), {}, 3, 5, 1);
        a.pBook = a.book.get();
        std::fill(a.src.begin(), a.src.end(), 0.5f);
        return a;
    };
    std::vector<test::Rule<A>> rules = {
        {"book", vornStsNullPtrErr, [](A& a) { a.pBook = nullptr; }},
        {"src", vornStsNullPtrErr, [](A& a) { a.from = nullptr; }},
        {"index", vornStsNullPtrErr, [](A& a) { a.toIndex = nullptr; }},
        {"step", vornStsSizeErr, [](A& a) { a.step = 0; }},
        {"height", vornStsSizeErr, [](A& a) { a.height = -1; }},
        {"step below the vector", vornStsSizeErr, [](A& a) { a.step = std::min(a.step, 2); }}};
    const std::function<bool(A&)> untouched = [](A& a) { return a.index.untouched() && a.distance.untouched(); };
    test::expectCheckOrder<A>(
        good, [](A& a) { return vornsVQ_32f(a.from, a.step, a.toIndex, a.height, a.pBook); }, untouched, rules);
    const auto as16 = [](A& a) { return reinterpret_cast<const Vorn16s*>(a.from); };
    rules.insert(rules.begin(), {"distance", vornStsNullPtrErr, [](A& a) { a.toDistance = nullptr; }});
    test::expectCheckOrder<A>(
        good, [](A& a) { return vornsVQDist_32f(a.from, a.step, a.toIndex, a.toDistance, a.height, a.pBook); },
        untouched, rules);
    // The integer forms look at the same things; their codebook would be another, and is not looked into before.
    Vorn32s index = 5;
    const Book none;
    EXPECT_EQ(vornsVQ_16s(nullptr, 0, &index, 0, nullptr), vornStsNullPtrErr);
    A a = good();
    EXPECT_EQ(vornsVQ_16s(as16(a), 2, &index, 1, a.pBook), vornStsSizeErr);
    EXPECT_EQ(vornsVQDist_16s32s_Sfs(as16(a), 3, &index, nullptr, 1, a.pBook, 0), vornStsNullPtrErr);
    EXPECT_EQ(vornsVQDist_16s32s_Sfs(as16(a), 3, &index, &index, 0, a.pBook, 0), vornStsSizeErr);
    EXPECT_EQ(index, 5);
}

struct SplitArguments {
    std::shared_ptr<Streams<float>> streams;
    Guarded<float> src = Guarded<float>(60);
    Guarded<Vorn8u> dst = Guarded<Vorn8u>(40);
    const float* from = src;
    Vorn8u* to = dst;
    const VornCdbkState* const* pointers = nullptr;
    int step = 15, dstStep = 20, height = 2, count = 5;
};
TEST(SplitVQ, ChecksInOrder) {
    using A = SplitArguments;
    const std::function<A()> good = [] {
        Random random(6);
        A a;
        a.streams = std::make_shared<Streams<float>>(random);
        a.pointers = a.streams->pointers.data();
        std::fill(a.src.begin(), a.src.end(), 0.5f);
        return a;
    };
    const std::function<bool(A&)> untouched = [](A& a) { return a.dst.untouched(); };
    std::vector<test::Rule<A>> rules = {{"books", vornStsNullPtrErr, [](A& a) { a.pointers = nullptr; }},
                                        {"src", vornStsNullPtrErr, [](A& a) { a.from = nullptr; }},
                                        {"dst", vornStsNullPtrErr, [](A& a) { a.to = nullptr; }},
                                        {"step", vornStsSizeErr, [](A& a) { a.step = 0; }},
                                        {"step of dst", vornStsSizeErr, [](A& a) { a.dstStep = 0; }},
                                        {"height", vornStsSizeErr, [](A& a) { a.height = 0; }},
                                        {"streams", vornStsSizeErr, [](A& a) { a.count = 0; }}};
    const test::Rule<A> book = {"a book", vornStsNullPtrErr, [](A& a) { a.streams->pointers[0] = nullptr; }};
    const test::Rule<A> row = {"row", vornStsSizeErr, [](A& a) { a.step = std::min(a.step, 14); }};
    auto packed = rules;
    rules.push_back({"more streams than steps", vornStsSizeErr, [](A& a) { a.dstStep = std::min(a.dstStep, 4); }});
    rules.insert(rules.end(), {book, row});
    packed.insert(packed.end(),
                  {book, row, {"bits", vornStsSizeErr, [](A& a) { a.dstStep = std::min(a.dstStep, 16); }}});
    test::expectCheckOrder<A>(
        good, [](A& a) { return vornsSplitVQ_32f8u(a.from, a.step, a.to, a.dstStep, a.height, a.pointers, a.count); },
        untouched, rules);
    test::expectCheckOrder<A>(
        good, [](A& a) { return vornsSplitVQ_32f1u(a.from, a.step, a.to, a.dstStep, a.height, a.pointers, a.count); },
        untouched, packed);
}

TEST(VQSingle, ChecksInOrder) {
    Random random(7);
    const Book book = makeBook<float>(vectorsAround<float>(random, 3, 5, 1), {}, 3, 5, 1);
    const Book shorts = makeBook<Vorn16s>(vectorsAround<Vorn16s>(random, 3, 5, 100), {}, 3, 5, 1);
    const float x[3] = {};
    const Vorn16s n[3] = {};
    Guarded<Vorn32s> index(5), dist(5);
    Guarded<float> distance(5);
    int count = 77;
    for (const int wrong : {0, -1, 6}) {
        EXPECT_EQ(vornsVQSingle_Sort_32f(nullptr, index, book.get(), wrong), vornStsNullPtrErr);
        EXPECT_EQ(vornsVQSingle_Sort_32f(x, nullptr, book.get(), wrong), vornStsNullPtrErr);
        EXPECT_EQ(vornsVQSingle_Sort_32f(x, index, nullptr, wrong), vornStsNullPtrErr);
        EXPECT_EQ(vornsVQSingle_Sort_32f(x, index, book.get(), wrong), vornStsSizeErr);
        EXPECT_EQ(vornsVQSingle_Sort_16s(n, index, shorts.get(), wrong), vornStsSizeErr);
        EXPECT_EQ(vornsVQDistSingle_Sort_32f(x, index, nullptr, book.get(), wrong), vornStsNullPtrErr);
        EXPECT_EQ(vornsVQDistSingle_Sort_32f(x, index, distance, book.get(), wrong), vornStsSizeErr);
        EXPECT_EQ(vornsVQDistSingle_Sort_16s32s_Sfs(n, index, nullptr, shorts.get(), wrong, 0), vornStsNullPtrErr);
        EXPECT_EQ(vornsVQDistSingle_Sort_16s32s_Sfs(n, index, dist, shorts.get(), wrong, 0), vornStsSizeErr);
    }
    for (const float wrong : {0.999999f, 0.0f, -infinity}) {
        EXPECT_EQ(vornsVQSingle_Thresh_32f(x, index, book.get(), nullptr, wrong), vornStsNullPtrErr);
        EXPECT_EQ(vornsVQSingle_Thresh_32f(nullptr, index, book.get(), &count, wrong), vornStsNullPtrErr);
        EXPECT_EQ(vornsVQSingle_Thresh_32f(x, index, book.get(), &count, wrong), vornStsBadArgErr);
        EXPECT_EQ(vornsVQSingle_Thresh_16s(n, index, shorts.get(), &count, wrong), vornStsBadArgErr);
        EXPECT_EQ(vornsVQDistSingle_Thresh_32f(x, index, nullptr, book.get(), &count, wrong), vornStsNullPtrErr);
        EXPECT_EQ(vornsVQDistSingle_Thresh_32f(x, index, distance, book.get(), &count, wrong), vornStsBadArgErr);
        EXPECT_EQ(vornsVQDistSingle_Thresh_16s32s_Sfs(n, index, nullptr, shorts.get(), &count, 0, wrong),
                  vornStsNullPtrErr);
        EXPECT_EQ(vornsVQDistSingle_Thresh_16s32s_Sfs(n, index, dist, shorts.get(), &count, 0, wrong),
                  vornStsBadArgErr);
    }
    EXPECT_EQ(count, 77);
    EXPECT_TRUE(index.untouched() && dist.untouched() && distance.untouched());
}

// Vectors of more than 128 integers become singles in memory; nothing is written where there is none, and none is lost.
TEST(VQ, EveryAllocationMayFail) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer has an allocator of its own";
    Random random(10);
    const Book book =
        makeBook<Vorn16s>(vectorsAround<Vorn16s>(random, 130, 8, 300), someWeights<Vorn16s>(random, 130), 130, 8, 1);
    const auto x = vectorsAround<Vorn16s>(random, 133, 1, 300);
    // The first of the streams takes no memory: its indices, too, wait until there is enough for the second one.
    const Book narrow = makeBook<Vorn16s>(vectorsAround<Vorn16s>(random, 3, 8, 300), {}, 3, 8, 1);
    const VornCdbkState* const streams[] = {narrow.get(), book.get()};
    Guarded<Vorn32s> index(8), distance(8);
    Guarded<Vorn16s> indices(2);
    Guarded<Vorn8u> bytes(2);
    int count = 77;
    const std::function<VornStatus()> calls[] = {
        [&] { return vornsVQ_16s(x.data(), 130, index, 1, book.get()); },
        [&] { return vornsVQDist_16s32s_Sfs(x.data(), 130, index, distance, 1, book.get(), 0); },
        [&] { return vornsSplitVQ_16s16s(x.data(), 133, indices, 2, 1, streams, 2); },
        [&] { return vornsSplitVQ_16s8u(x.data(), 133, bytes, 2, 1, streams, 2); },
        [&] { return vornsSplitVQ_16s1u(x.data(), 133, bytes, 16, 1, streams, 2); },
        [&] { return vornsVQSingle_Sort_16s(x.data(), index, book.get(), 8); },
        [&] { return vornsVQDistSingle_Sort_16s32s_Sfs(x.data(), index, distance, book.get(), 8, 0); },
        [&] { return vornsVQSingle_Thresh_16s(x.data(), index, book.get(), &count, 2); },
        [&] { return vornsVQDistSingle_Thresh_16s32s_Sfs(x.data(), index, distance, book.get(), &count, 0, 2); },
    };
    for (const auto& call : calls) {
        int allocations = 0;
        {
            const test::FailAllocation counted(0);
            ASSERT_EQ(call(), vornStsNoErr);
            allocations = counted.calls();
            EXPECT_EQ(counted.outstanding(), 0);
        }
        ASSERT_GT(allocations, 0);
        for (int n = 1; n <= allocations; ++n) {
            index.fillPattern(), distance.fillPattern(), indices.fillPattern(), bytes.fillPattern();
            count = 77;
            const test::FailAllocation failing(n);
            EXPECT_EQ(call(), vornStsMemAllocErr) << n;
            EXPECT_EQ(failing.outstanding(), 0) << n;
            EXPECT_TRUE(index.untouched() && distance.untouched() && indices.untouched() && bytes.untouched()) << n;
            EXPECT_EQ(count, 77) << n;
        }
    }
}

}  // namespace
