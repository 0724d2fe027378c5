// Quantisation of vectors.
#include <iterator>
#include <memory>
#include <type_traits>

#include "families.h"

namespace verify {
namespace {

using Book = std::shared_ptr<VornCdbkState>;

struct Shape {
    int width, height, words, hint;
};
// Scans, both grids, and trees of either hint.
constexpr Shape shapes[] = {{1, 200, 200, 1}, {2, 150, 150, 1}, {3, 60, 60, 1}, {13, 120, 120, 1},
                            {140, 20, 20, 1}, {2, 80, 16, 2},   {5, 70, 9, 3},  {13, 120, 40, 2}};

template <class T>
Book makeBook(Source& source, const Shape& shape, bool weighted) {
    const auto src =
        source.values<T>(static_cast<std::size_t>(shape.width) * static_cast<std::size_t>(shape.height), -300.0, 300.0);
    std::vector<T> weights(static_cast<std::size_t>(shape.width), T(1));
    if (weighted) {
        for (T& w : weights) w = static_cast<T>(source.bits() % 10);
    }
    VornCdbkState* made = nullptr;
    if constexpr (std::is_same_v<T, Vorn32f>) {
        vornsCdbkInitAlloc_WgtL2_32f(&made, src.data(), weights.data(), shape.width, shape.width, shape.height,
                                     shape.words, shape.hint);
        return Book(made, vornsCdbkFree_32f);
    } else {
        vornsCdbkInitAlloc_WgtL2_16s(&made, src.data(), weights.data(), shape.width, shape.width, shape.height,
                                     shape.words, shape.hint);
        return Book(made, vornsCdbkFree_16s);
    }
}

template <class T, class Use>
void overBooks(Source& source, const Use& use) {
    for (const Shape& shape : shapes) {
        for (const bool weighted : {false, true}) use(makeBook<T>(source, shape, weighted), shape.width);
    }
}

// Blocks: put(src, step, index, distances, height, book).
template <class T, class Distance, class Put>
void blocks(Source& source, Digest& digest, const Put& put) {
    overBooks<T>(source, [&](const Book& book, int width) {
        for (const int height : {1, 5, 90}) {
            const int step = width + height % 2;
            const auto elements = static_cast<std::size_t>(step) * static_cast<std::size_t>(height);
            const auto src = height == 5 ? source.patterns<T>(elements) : source.values<T>(elements, -400.0, 400.0);
            std::vector<Vorn32s> index(static_cast<std::size_t>(height));
            std::vector<Distance> distance(static_cast<std::size_t>(height));
            digest.add(put(src.data(), step, index.data(), distance.data(), height, book.get()));
            digest.add(index);
            digest.add(distance);
        }
    });
}
template <class T, auto quantise>
void indices(Source& source, Digest& digest) {
    blocks<T, Vorn32s>(source, digest, [](const T* src, int step, Vorn32s* index, Vorn32s*, int height, auto* book) {
        return quantise(src, step, index, height, book);
    });
}

template <class T, class Index, auto split, bool packed>
void streams(Source& source, Digest& digest) {
    const Shape parts[] = {{2, 64, 64, 1}, {1, 40, 40, 1}, {3, 60, 20, 2}, {13, 90, 33, 3}};
    std::vector<Book> books;
    std::vector<const VornCdbkState*> pointers;
    for (const Shape& part : parts) {
        books.push_back(makeBook<T>(source, part, part.width == 3));
        pointers.push_back(books.back().get());
    }
    constexpr int width = 2 + 1 + 3 + 13;
    for (const int height : {1, 2, 70}) {
        const int dstStep = packed ? 25 : 5;
        const auto src = source.values<T>(static_cast<std::size_t>(width * height), -400.0, 400.0);
        std::vector<Index> dst(static_cast<std::size_t>(packed ? (dstStep * height + 7) / 8 : dstStep * height));
        digest.add(split(src.data(), width, dst.data(), dstStep, height, pointers.data(), 4));
        digest.add(dst);
    }
}

// One vector: put(src, index, distances, book, value) says how many words it found.
template <class T, class Distance, class Put>
void singles(Source& source, Digest& digest, const Put& put) {
    overBooks<T>(source, [&](const Book& book, int width) {
        for (int i = 0; i < 4; ++i) {
            const auto src = source.values<T>(static_cast<std::size_t>(width), -400.0, 400.0);
            int size = 0;
            if constexpr (std::is_same_v<T, Vorn32f>) {
                vornsGetCdbkSize_32f(book.get(), &size);
            } else {
                vornsGetCdbkSize_16s(book.get(), &size);
            }
            std::vector<Vorn32s> index(static_cast<std::size_t>(size));
            std::vector<Distance> distance(static_cast<std::size_t>(size));
            digest.add(put(src.data(), index.data(), distance.data(), book.get(), size, i));
            digest.add(index);
            digest.add(distance);
        }
    });
}
constexpr int countOf(int size, int round) { return round == 0 ? 1 : round == 1 ? size : 1 + size / 2; }
constexpr Vorn32f factors[] = {1.0f, 1.3f, 2.0f, 5.0f};

const Workload workloads[] = {
    {"vornsVQ_32f", indices<Vorn32f, vornsVQ_32f>},
    {"vornsVQ_16s", indices<Vorn16s, vornsVQ_16s>},
    {"vornsVQDist_32f",
     [](Source& source, Digest& digest) { blocks<Vorn32f, Vorn32f>(source, digest, vornsVQDist_32f); }},
    {"vornsVQDist_16s32s_Sfs",
     [](Source& source, Digest& digest) {
         blocks<Vorn16s, Vorn32s>(source, digest,
                                  [](auto* src, int step, auto* index, auto* dist, int height, auto* book) {
                                      return vornsVQDist_16s32s_Sfs(src, step, index, dist, height, book, -2);
                                  });
     }},
    {"vornsSplitVQ_32f16s", streams<Vorn32f, Vorn16s, vornsSplitVQ_32f16s, false>},
    {"vornsSplitVQ_32f8u", streams<Vorn32f, Vorn8u, vornsSplitVQ_32f8u, false>},
    {"vornsSplitVQ_16s16s", streams<Vorn16s, Vorn16s, vornsSplitVQ_16s16s, false>},
    {"vornsSplitVQ_16s8u", streams<Vorn16s, Vorn8u, vornsSplitVQ_16s8u, false>},
    {"vornsSplitVQ_32f1u", streams<Vorn32f, Vorn8u, vornsSplitVQ_32f1u, true>},
    {"vornsSplitVQ_16s1u", streams<Vorn16s, Vorn8u, vornsSplitVQ_16s1u, true>},
    {"vornsVQSingle_Sort_32f",
     [](Source& source, Digest& digest) {
         singles<Vorn32f, Vorn32f>(source, digest, [](auto* x, auto* index, auto*, auto* book, int size, int round) {
             return vornsVQSingle_Sort_32f(x, index, book, countOf(size, round));
         });
     }},
    {"vornsVQSingle_Sort_16s",
     [](Source& source, Digest& digest) {
         singles<Vorn16s, Vorn32s>(source, digest, [](auto* x, auto* index, auto*, auto* book, int size, int round) {
             return vornsVQSingle_Sort_16s(x, index, book, countOf(size, round));
         });
     }},
    {"vornsVQDistSingle_Sort_32f",
     [](Source& source, Digest& digest) {
         singles<Vorn32f, Vorn32f>(source, digest,
                                   [](auto* x, auto* index, auto* dist, auto* book, int size, int round) {
                                       return vornsVQDistSingle_Sort_32f(x, index, dist, book, countOf(size, round));
                                   });
     }},
    {"vornsVQDistSingle_Sort_16s32s_Sfs",
     [](Source& source, Digest& digest) {
         singles<Vorn16s, Vorn32s>(
             source, digest, [](auto* x, auto* index, auto* dist, auto* book, int size, int round) {
                 return vornsVQDistSingle_Sort_16s32s_Sfs(x, index, dist, book, countOf(size, round), 1);
             });
     }},
    {"vornsVQSingle_Thresh_32f",
     [](Source& source, Digest& digest) {
         singles<Vorn32f, Vorn32f>(source, digest, [](auto* x, auto* index, auto*, auto* book, int, int round) {
             int count = -1;
             return vornsVQSingle_Thresh_32f(x, index, book, &count, factors[round]) + 2 * count;
         });
     }},
    {"vornsVQSingle_Thresh_16s",
     [](Source& source, Digest& digest) {
         singles<Vorn16s, Vorn32s>(source, digest, [](auto* x, auto* index, auto*, auto* book, int, int round) {
             int count = -1;
             return vornsVQSingle_Thresh_16s(x, index, book, &count, factors[round]) + 2 * count;
         });
     }},
    {"vornsVQDistSingle_Thresh_32f",
     [](Source& source, Digest& digest) {
         singles<Vorn32f, Vorn32f>(source, digest, [](auto* x, auto* index, auto* dist, auto* book, int, int round) {
             int count = -1;
             return vornsVQDistSingle_Thresh_32f(x, index, dist, book, &count, factors[round]) + 2 * count;
         });
     }},
    {"vornsVQDistSingle_Thresh_16s32s_Sfs",
     [](Source& source, Digest& digest) {
         singles<Vorn16s, Vorn32s>(source, digest, [](auto* x, auto* index, auto* dist, auto* book, int, int round) {
             int count = -1;
             return vornsVQDistSingle_Thresh_16s32s_Sfs(x, index, dist, book, &count, -1, factors[round]) + 2 * count;
         });
     }},
};

}  // namespace

Family quantisationWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
