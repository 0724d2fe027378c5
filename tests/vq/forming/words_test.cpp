// Rows of codewords formed from rows of indices.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "model/vector_forming.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"
#include "vq/codebook/state.h"

namespace {

using test::Guarded;
using test::Random;

// A context around given words, which end at the guard.
template <class T>
class Codebook {
public:
    Codebook(Random& random, int vecLen, int rowStep, int size)
        : model{vecLen, rowStep, 0, {}},
          words_(static_cast<std::size_t>(rowStep) * static_cast<std::size_t>(size - 1) +
                 static_cast<std::size_t>(vecLen)) {
        for (int rest = size - 1; rest > 0; rest /= 2) ++model.indexBits;
        for (T& x : words_) x = random.anyBits<T>();
        for (int i = 0; i < size; ++i) {
            const T* row = words_.data() + std::ptrdiff_t{i} * rowStep;
            model.word.emplace_back(row, row + vecLen);
        }
        context = VornCdbkState{.maxDepth = size - 1,
                                .cdbkSize = size,
                                .vecLen = vecLen,
                                .rowStep = rowStep,
                                .hint = vorn::vq::wordsAsGiven,
                                .words = words_.data(),
                                .root = nullptr,
                                .mode = 0,
                                .weights = nullptr,
                                .grid = nullptr,
                                .indexBits = model.indexBits,
                                .scratch = nullptr};
    }

    VornCdbkState context{};
    model::Words<T> model;

private:
    Guarded<T> words_;
};

template <class T>
struct Books {
    std::vector<std::unique_ptr<Codebook<T>>> books;
    std::vector<const VornCdbkState*> contexts;
    std::vector<model::Words<T>> models;

    void add(Random& random, int vecLen, int rowStep, int size) {
        books.push_back(std::make_unique<Codebook<T>>(random, vecLen, rowStep, size));
        contexts.push_back(&books.back()->context);
        models.push_back(books.back()->model);
    }
    int streams() const { return static_cast<int>(books.size()); }
    int width() const {
        int sum = 0;
        for (const auto& each : models) sum += each.vecLen;
        return sum;
    }
    int bits() const {
        int sum = 0;
        for (const auto& each : models) sum += each.indexBits;
        return sum;
    }
};

// Words of 1 to 150 elements, the sizes at which copies change their way among them.
template <class T>
Books<T> someBooks(Random& random, int streams, int mostWords) {
    static constexpr int lengths[] = {1, 2, 3, 4, 5, 7, 8, 9, 13, 16, 17, 31, 33, 39, 64, 65, 128, 150};
    Books<T> books;
    for (int s = 0; s < streams; ++s) {
        const int len = lengths[random.integer(0, std::size(lengths) - 1)];
        books.add(random, len, len + static_cast<int>(random.integer(0, 3)),
                  static_cast<int>(random.integer(1, mostWords)));
    }
    return books;
}

template <class Index, class T>
using FormIndices = VornStatus (*)(const Index*, int, T*, int, int, const VornCdbkState* const*, int);

template <class T>
void expectRows(const Guarded<T>& dst, int dstStep, int height, const Books<T>& books,
                const std::vector<std::vector<std::int64_t>>& indices) {
    const auto width = static_cast<std::size_t>(books.width());
    for (int r = 0; r < height; ++r) {
        const std::vector<T> expected = model::formedRow(books.models, indices[static_cast<std::size_t>(r)]);
        const T* row = dst.data() + std::ptrdiff_t{r} * dstStep;
        ASSERT_EQ(std::memcmp(row, expected.data(), width * sizeof(T)), 0) << "row " << r;
        if (r + 1 == height) continue;
        for (auto j = static_cast<int>(width); j < dstStep; ++j) {
            ASSERT_EQ(*reinterpret_cast<const Vorn8u*>(row + j), 0xA5) << "between the rows, behind row " << r;
        }
    }
    EXPECT_TRUE(dst.surroundingsUntouched());
}

template <class Index, class T>
void compareIndices(FormIndices<Index, T> form, int mostWords) {
    Random random(1);
    for (int round = 0; round < 60; ++round) {
        const Books<T> books = someBooks<T>(random, static_cast<int>(random.integer(1, 6)), mostWords);
        const int height = static_cast<int>(random.integer(1, 5));
        const int srcStep = books.streams() + static_cast<int>(random.integer(0, 2));
        const int dstStep = books.width() + static_cast<int>(random.integer(0, 5));
        Guarded<Index> src(static_cast<std::size_t>(srcStep * (height - 1) + books.streams()));
        std::vector<std::vector<std::int64_t>> indices(static_cast<std::size_t>(height));
        for (int r = 0; r < height; ++r) {
            for (int s = 0; s < books.streams(); ++s) {
                const auto size = static_cast<std::int64_t>(books.models[static_cast<std::size_t>(s)].word.size());
                const auto index = static_cast<Index>(random.integer(0, size - 1));
                src[static_cast<std::size_t>(r * srcStep + s)] = index;
                indices[static_cast<std::size_t>(r)].push_back(index);
            }
        }
        Guarded<T> dst(static_cast<std::size_t>(dstStep * (height - 1) + books.width()));
        ASSERT_EQ(form(src, srcStep, dst, dstStep, height, books.contexts.data(), books.streams()), vornStsNoErr);
        expectRows(dst, dstStep, height, books, indices);
    }
}

TEST(FormVectorVQ, EqualsTheModel) {
    compareIndices(vornsFormVectorVQ_16s32f, 300);
    compareIndices(vornsFormVectorVQ_16s16s, 300);
    compareIndices(vornsFormVectorVQ_8u32f, 256);
    compareIndices(vornsFormVectorVQ_8u16s, 256);
}

// The bits of random bytes are the indices, so that neither writing nor reading of bits is tested by itself.
template <class T>
void compareBits(FormIndices<Vorn8u, T> form) {
    Random random(2);
    for (int round = 0; round < 80; ++round) {
        Books<T> books;
        const int streams = static_cast<int>(random.integer(1, 7));
        for (int s = 0; s < streams; ++s) {
            const int bits = static_cast<int>(random.integer(0, 13));
            books.add(random, static_cast<int>(random.integer(1, 4)), 4, 1 << bits);
        }
        if (books.bits() == 0) continue;
        const int height = static_cast<int>(random.integer(1, 6));
        const int bitStep = books.bits() + static_cast<int>(random.integer(0, 11));
        const std::size_t bits = static_cast<std::size_t>(bitStep) * static_cast<std::size_t>(height - 1) +
                                 static_cast<std::size_t>(books.bits());
        Guarded<Vorn8u> src((bits + 7) / 8);
        for (Vorn8u& byte : src) byte = random.anyBits<Vorn8u>();
        std::vector<std::vector<std::int64_t>> indices(static_cast<std::size_t>(height));
        for (int r = 0; r < height; ++r) {
            std::int64_t at = std::int64_t{r} * bitStep;
            for (const auto& book : books.models) {
                indices[static_cast<std::size_t>(r)].push_back(model::bitsAt(src.values(), at, book.indexBits));
                at += book.indexBits;
            }
        }
        Guarded<T> dst(static_cast<std::size_t>(books.width() * height));
        ASSERT_EQ(form(src, bitStep, dst, books.width(), height, books.contexts.data(), streams), vornStsNoErr);
        expectRows(dst, books.width(), height, books, indices);
    }
}

TEST(FormVectorVQ, ReadsPackedIndices) {
    compareBits(vornsFormVectorVQ_1u32f);
    compareBits(vornsFormVectorVQ_1u16s);
}

TEST(FormVectorVQ, TakesTheFirstStreamFromTheTopBits) {
    Random random(3);
    Books<Vorn32f> books;
    books.add(random, 2, 2, 8);
    books.add(random, 3, 4, 32);
    // 101 00110 is word 5 of the first and word 6 of the second codebook; 011 11111 is 3 and 31.
    Guarded<Vorn8u> src{Vorn8u{0xA6}, Vorn8u{0x7F}};
    Guarded<Vorn32f> dst(10);
    ASSERT_EQ(vornsFormVectorVQ_1u32f(src, 8, dst, 5, 2, books.contexts.data(), 2), vornStsNoErr);
    expectRows(dst, 5, 2, books, {{5, 6}, {3, 31}});
}

TEST(FormVectorVQ, FormsZerosOfAnIndexThatTheCodebookDoesNotHave) {
    Random random(4);
    Books<Vorn16s> books;
    books.add(random, 3, 3, 5);
    Guarded<Vorn16s> src{Vorn16s{-1}, Vorn16s{5}, Vorn16s{32767}, Vorn16s{-32768}, Vorn16s{4}}, dst(15);
    ASSERT_EQ(vornsFormVectorVQ_16s16s(src, 1, dst, 3, 5, books.contexts.data(), 1), vornStsNoErr);
    expectRows(dst, 3, 5, books, {{-1}, {5}, {32767}, {-32768}, {4}});
    for (int j = 0; j < 12; ++j) EXPECT_EQ(dst[static_cast<std::size_t>(j)], 0);
    // Three bits can say 5, 6 and 7, which a codebook of five words does not have.
    Guarded<Vorn8u> bits{Vorn8u{0xE0}};
    Guarded<Vorn16s> one(3);
    ASSERT_EQ(vornsFormVectorVQ_1u16s(bits, 3, one, 3, 1, books.contexts.data(), 1), vornStsNoErr);
    for (const Vorn16s x : one) EXPECT_EQ(x, 0);
}

TEST(FormVectorVQ, TakesAtMost256WordsFromBytes) {
    Random random(5);
    for (const int size : {256, 257}) {
        Books<Vorn32f> books;
        books.add(random, 2, 2, size);
        Guarded<Vorn8u> src{Vorn8u{255}};
        Guarded<Vorn32f> dst(2);
        const VornStatus status = vornsFormVectorVQ_8u32f(src, 1, dst, 2, 1, books.contexts.data(), 1);
        EXPECT_EQ(status, size == 256 ? vornStsNoErr : vornStsSizeErr);
        EXPECT_EQ(dst.untouched(), size == 257);
    }
}

// One byte for a codebook of one word needs no bit of its own: the word comes without one.
TEST(FormVectorVQ, ReadsNothingForACodebookOfOneWord) {
    Random random(6);
    Books<Vorn32f> books;
    books.add(random, 2, 2, 1);
    books.add(random, 1, 1, 256);
    Guarded<Vorn8u> src{Vorn8u{0x80}};
    Guarded<Vorn32f> dst(3);
    ASSERT_EQ(vornsFormVectorVQ_1u32f(src, 8, dst, 3, 1, books.contexts.data(), 2), vornStsNoErr);
    expectRows(dst, 3, 1, books, {{0, 0x80}});
}

template <class Index, class T>
struct Arguments {
    std::shared_ptr<Books<T>> books;
    Guarded<Index> src{std::vector<Index>(8, Index(0))};
    Guarded<T> dst = Guarded<T>(40);  // not the list of one element
    const Index* from = src;
    T* to = dst;
    const VornCdbkState* const* contexts = nullptr;
    int streams = 2, srcStep = 4, dstStep = 10, height = 2;
};

template <class Index, class T>
void expectOrder(FormIndices<Index, T> form, bool packed) {
    using A = Arguments<Index, T>;
    const std::function<A()> good = [] {
        Random random(7);
        A a;
        a.books = std::make_shared<Books<T>>();
        a.books->add(random, 2, 2, 4);
        a.books->add(random, 3, 3, 4);
        a.contexts = a.books->contexts.data();
        return a;
    };
    const std::function<VornStatus(A&)> call = [form](A& a) {
        return form(a.from, a.srcStep, a.to, a.dstStep, a.height, a.contexts, a.streams);
    };
    const std::function<bool(A&)> untouched = [](A& a) { return a.dst.untouched(); };
    std::vector<test::Rule<A>> rules = {{"codebooks", vornStsNullPtrErr, [](A& a) { a.contexts = nullptr; }},
                                        {"src", vornStsNullPtrErr, [](A& a) { a.from = nullptr; }},
                                        {"dst", vornStsNullPtrErr, [](A& a) { a.to = nullptr; }},
                                        {"streams", vornStsSizeErr, [](A& a) { a.streams = 0; }},
                                        {"source step", vornStsSizeErr, [](A& a) { a.srcStep = 0; }},
                                        {"step", vornStsSizeErr, [](A& a) { a.dstStep = -1; }},
                                        {"height", vornStsSizeErr, [](A& a) { a.height = 0; }}};
    if (!packed) rules.push_back({"streams beyond the step", vornStsSizeErr, [](A& a) { a.srcStep = 1; }});
    rules.push_back({"no codebook", vornStsNullPtrErr, [](A& a) { a.books->contexts[0] = nullptr; }});
    rules.push_back({"row", vornStsSizeErr, [](A& a) { a.dstStep = std::min(a.dstStep, 4); }});
    if (packed) rules.push_back({"bits", vornStsSizeErr, [](A& a) { a.srcStep = std::min(a.srcStep, 3); }});
    test::expectCheckOrder(good, call, untouched, rules);
}

TEST(FormVectorVQ, ChecksInOrder) {
    expectOrder(vornsFormVectorVQ_16s32f, false);
    expectOrder(vornsFormVectorVQ_8u32f, false);
    expectOrder(vornsFormVectorVQ_16s16s, false);
    expectOrder(vornsFormVectorVQ_8u16s, false);
    expectOrder(vornsFormVectorVQ_1u32f, true);
    expectOrder(vornsFormVectorVQ_1u16s, true);
}

// Stream by stream: the first one that is at fault decides.
TEST(FormVectorVQ, LooksAtOneCodebookAfterTheOther) {
    Random random(8);
    Guarded<Vorn8u> src(std::vector<Vorn8u>(2, 0));
    Guarded<Vorn32f> dst(4);
    for (const bool nullFirst : {false, true}) {
        Books<Vorn32f> books;
        books.add(random, 2, 2, 257);
        books.add(random, 2, 2, 257);
        books.contexts[nullFirst ? 0 : 1] = nullptr;
        EXPECT_EQ(vornsFormVectorVQ_8u32f(src, 2, dst, 4, 1, books.contexts.data(), 2),
                  nullFirst ? vornStsNullPtrErr : vornStsSizeErr);
        EXPECT_TRUE(dst.untouched());
    }
}

}  // namespace
