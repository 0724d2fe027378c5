// Codebooks, shared by the searches of blocks and streams and by the way back from indices. Left out is what serves one
// thread at a time: the searches that sort a codebook's words, and write distances into it.
#include <string>

#include "threads/together.h"

namespace {

using test::Buffers, test::Together;
using Book = std::shared_ptr<VornCdbkState>;

// Both types of elements under one name each.
VornStatus make(VornCdbkState** book, const Vorn32f* src, int width, int height, int words, int hint) {
    return vornsCdbkInitAlloc_L2_32f(book, src, width, width, height, words, hint);
}
VornStatus make(VornCdbkState** book, const Vorn16s* src, int width, int height, int words, int hint) {
    return vornsCdbkInitAlloc_L2_16s(book, src, width, width, height, words, hint);
}
VornStatus make(VornCdbkState** book, const Vorn32f* src, const Vorn32f* weights, int width, int height, int words,
                int hint) {
    return vornsCdbkInitAlloc_WgtL2_32f(book, src, weights, width, width, height, words, hint);
}
VornStatus make(VornCdbkState** book, const Vorn16s* src, const Vorn16s* weights, int width, int height, int words,
                int hint) {
    return vornsCdbkInitAlloc_WgtL2_16s(book, src, weights, width, width, height, words, hint);
}
Book owned(VornCdbkState* book, Vorn32f) { return test::owned(book, vornsCdbkFree_32f); }
Book owned(VornCdbkState* book, Vorn16s) { return test::owned(book, vornsCdbkFree_16s); }

template <class T>
Book bookOf(int width, int height, int words, int hint, bool weighted) {
    Buffers buffers(static_cast<std::uint64_t>(width));
    const T* vectors = buffers.source<T>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    std::vector<T> weights;
    for (int i = 0; i < width; ++i) weights.push_back(static_cast<T>(1 + i % 3));
    VornCdbkState* book = nullptr;
    const VornStatus status = weighted ? make(&book, vectors, weights.data(), width, height, words, hint)
                                       : make(&book, vectors, width, height, words, hint);
    EXPECT_GE(status, vornStsNoErr) << width << ' ' << hint;
    return owned(book, T());
}

constexpr int rows = 20;

void addSearches(Together& calls, const std::string& name, const Book& book, int width, Vorn32f) {
    const auto len = static_cast<std::size_t>(rows * width);
    calls.add(name + " VQ", [=](Buffers& b) {
        return vornsVQ_32f(b.source<Vorn32f>(len), width, b.result<Vorn32s>(rows), rows, book.get());
    });
    calls.add(name + " VQDist", [=](Buffers& b) {
        return vornsVQDist_32f(b.source<Vorn32f>(len), width, b.result<Vorn32s>(rows), b.result<Vorn32f>(rows), rows,
                               book.get());
    });
    calls.add(name + " size", [=](Buffers& b) { return vornsGetCdbkSize_32f(book.get(), b.result<int>(1)); });
    calls.add(name + " words", [=](Buffers& b) {
        int words = 0;
        vornsGetCdbkSize_32f(book.get(), &words);
        return vornsGetCodebook_32f(book.get(), b.result<Vorn32f>(static_cast<std::size_t>(words * width + words)),
                                    width + 1);
    });
}
void addSearches(Together& calls, const std::string& name, const Book& book, int width, Vorn16s) {
    const auto len = static_cast<std::size_t>(rows * width);
    calls.add(name + " VQ", [=](Buffers& b) {
        return vornsVQ_16s(b.source<Vorn16s>(len), width, b.result<Vorn32s>(rows), rows, book.get());
    });
    calls.add(name + " VQDist", [=](Buffers& b) {
        return vornsVQDist_16s32s_Sfs(b.source<Vorn16s>(len), width, b.result<Vorn32s>(rows), b.result<Vorn32s>(rows),
                                      rows, book.get(), 0);
    });
    calls.add(name + " size", [=](Buffers& b) { return vornsGetCdbkSize_16s(book.get(), b.result<int>(1)); });
    calls.add(name + " words", [=](Buffers& b) {
        int words = 0;
        vornsGetCdbkSize_16s(book.get(), &words);
        return vornsGetCodebook_16s(book.get(), b.result<Vorn16s>(static_cast<std::size_t>(words * width + words)),
                                    width + 1);
    });
}

// All kinds: scanned, with grids, trees with distances and with scores.
template <class T>
void addKinds(Together& calls, const std::string& type) {
    struct Kind {
        int width, height, words, hint;
        bool weighted;
    };
    for (const Kind& kind : {Kind{6, 40, 40, 1, false}, Kind{1, 100, 100, 1, false}, Kind{2, 100, 100, 1, false},
                             Kind{6, 40, 40, 1, true}, Kind{6, 120, 20, 2, false}, Kind{6, 120, 20, 3, false},
                             Kind{6, 120, 20, 2, true}, Kind{140, 60, 10, 2, true}}) {
        const std::string name = type + " " + std::to_string(kind.width) + " " + std::to_string(kind.hint) +
                                 (kind.weighted ? " weighted" : "");
        addSearches(calls, name, bookOf<T>(kind.width, kind.height, kind.words, kind.hint, kind.weighted), kind.width,
                    T());
    }
}

TEST(ThreadsShareCodebooks, Of32f) {
    Together calls;
    addKinds<Vorn32f>(calls, "32f");
    Buffers buffers(1);
    int size = 0;
    ASSERT_EQ(vornsCdbkGetSize_32f(6, 6, 30, 30, 1, &size), vornStsNoErr);
    const auto block = test::memory(size);
    const Book book(block, reinterpret_cast<VornCdbkState*>(block->data()));
    ASSERT_EQ(vornsCdbkInit_L2_32f(book.get(), buffers.source<Vorn32f>(180), 6, 6, 30, 30, 1), vornStsNoErr);
    addSearches(calls, "32f in memory", book, 6, Vorn32f());
    calls.expectSameAsAlone(20);
}

TEST(ThreadsShareCodebooks, Of16s) {
    Together calls;
    addKinds<Vorn16s>(calls, "16s");
    Buffers buffers(1);
    int size = 0;
    ASSERT_EQ(vornsCdbkGetSize_16s(6, 6, 30, 30, 1, &size), vornStsNoErr);
    const auto block = test::memory(size);
    const Book book(block, reinterpret_cast<VornCdbkState*>(block->data()));
    ASSERT_EQ(vornsCdbkInit_L2_16s(book.get(), buffers.source<Vorn16s>(180), 6, 6, 30, 30, 1), vornStsNoErr);
    addSearches(calls, "16s in memory", book, 6, Vorn16s());
    calls.expectSameAsAlone(20);
}

// Three streams of different widths. A list of pointers is the threads' as well.
struct Streams {
    static constexpr int count = 3, words = 20, width = 6 + 1 + 4, bits = 16;
    std::vector<Book> books;
    std::vector<const VornCdbkState*> list;
};
template <class T>
std::shared_ptr<Streams> streams() {
    const auto made = std::make_shared<Streams>();
    made->books = {bookOf<T>(6, 120, Streams::words, 2, false), bookOf<T>(1, Streams::words, Streams::words, 1, false),
                   bookOf<T>(4, 120, Streams::words, 3, true)};
    for (const Book& book : made->books) made->list.push_back(book.get());
    return made;
}

template <class T, class Index>
void addSplit(Together& calls, const std::string& name, const std::shared_ptr<Streams>& s,
              VornStatus (*f)(const T*, int, Index*, int, int, const VornCdbkState* const*, int)) {
    calls.add(name, [=](Buffers& b) {
        return f(b.source<T>(rows * Streams::width), Streams::width, b.result<Index>(rows * Streams::bits),
                 Streams::bits, rows, s->list.data(), Streams::count);
    });
}
template <class T, class Index>
void addForm(Together& calls, const std::string& name, const std::shared_ptr<Streams>& s,
             VornStatus (*f)(const Index*, int, T*, int, int, const VornCdbkState* const*, int)) {
    calls.add(name, [=](Buffers& b) {
        return f(b.indices<Index>(rows * Streams::bits, Streams::words), Streams::bits,
                 b.result<T>(rows * Streams::width), Streams::width, rows, s->list.data(), Streams::count);
    });
}

TEST(ThreadsShareCodebooks, Streams) {
    Together calls;
    const auto singles = streams<Vorn32f>();
    const auto integers = streams<Vorn16s>();
    addSplit(calls, "split 32f16s", singles, vornsSplitVQ_32f16s);
    addSplit(calls, "split 32f8u", singles, vornsSplitVQ_32f8u);
    addSplit(calls, "split 32f1u", singles, vornsSplitVQ_32f1u);
    addSplit(calls, "split 16s16s", integers, vornsSplitVQ_16s16s);
    addSplit(calls, "split 16s8u", integers, vornsSplitVQ_16s8u);
    addSplit(calls, "split 16s1u", integers, vornsSplitVQ_16s1u);
    addForm(calls, "form 16s32f", singles, vornsFormVectorVQ_16s32f);
    addForm(calls, "form 8u32f", singles, vornsFormVectorVQ_8u32f);
    addForm(calls, "form 1u32f", singles, vornsFormVectorVQ_1u32f);
    addForm(calls, "form 16s16s", integers, vornsFormVectorVQ_16s16s);
    addForm(calls, "form 8u16s", integers, vornsFormVectorVQ_8u16s);
    addForm(calls, "form 1u16s", integers, vornsFormVectorVQ_1u16s);
    calls.expectSameAsAlone(60);
}

}  // namespace
