// The search of codebooks beside plain loops, the expanded form through a matrix product, and a tree of boxes.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <vector>

#include "plain/vq_search.h"
#include "support/bench.h"
#include "vornsr.h"

#ifdef VORNSR_HAVE_OPENBLAS
#include <cblas.h>
#endif
#ifdef VORNSR_HAVE_NANOFLANN
#include <nanoflann.hpp>
#endif

namespace {

constexpr int height = 1000;  // vectors a call

template <class T>
struct Calls;
template <>
struct Calls<Vorn32f> {
    static constexpr const char *search = "VQDist_32f", *split = "SplitVQ_32f8u";
    static constexpr auto build = vornsCdbkInitAlloc_L2_32f;
    static constexpr auto free = vornsCdbkFree_32f;
    static constexpr auto words = vornsGetCodebook_32f;
    static constexpr auto size = vornsGetCdbkSize_32f;
    static constexpr auto streams = vornsSplitVQ_32f8u;
    static void find(const Vorn32f* src, int width, Vorn32s* index, float* distance, const VornCdbkState* book) {
        vornsVQDist_32f(src, width, index, distance, height, book);
    }
};
template <>
struct Calls<Vorn16s> {
    static constexpr const char *search = "VQDist_16s32s_Sfs", *split = "SplitVQ_16s8u";
    static constexpr auto build = vornsCdbkInitAlloc_L2_16s;
    static constexpr auto free = vornsCdbkFree_16s;
    static constexpr auto words = vornsGetCodebook_16s;
    static constexpr auto size = vornsGetCdbkSize_16s;
    static constexpr auto streams = vornsSplitVQ_16s8u;
    static void find(const Vorn16s* src, int width, Vorn32s* index, float* distance, const VornCdbkState* book) {
        vornsVQDist_16s32s_Sfs(src, width, index, reinterpret_cast<Vorn32s*>(distance), height, book, 0);
    }
};

// Clouds that overlap, as features of speech do.
template <class T>
std::shared_ptr<T[]> vectors(int count, int width, unsigned seed) {
    auto x = bench::buffer<T>(static_cast<std::size_t>(count) * static_cast<std::size_t>(width));
    std::mt19937 clouds(static_cast<unsigned>(width)), generator(seed);
    std::normal_distribution<float> normal(0, 400);
    std::vector<float> centres(static_cast<std::size_t>(50 * width));
    for (float& c : centres) c = 2 * normal(clouds);
    for (int v = 0; v < count; ++v) {
        const int cloud = static_cast<int>(generator() % 50);
        for (int i = 0; i < width; ++i) {
            x[static_cast<std::size_t>(v * width + i)] =
                static_cast<T>(centres[static_cast<std::size_t>(cloud * width + i)] + normal(generator));
        }
    }
    return x;
}

// A codebook, what it is searched for, and what the searches leave. Made by the first call that needs it: a tree of
// many words takes seconds.
template <class T>
struct Search {
    int width, count, hint;
    std::once_flag once;
    std::shared_ptr<VornCdbkState> book;
    std::shared_ptr<T[]> words, src;
    std::shared_ptr<int[]> index;
    std::shared_ptr<float[]> distance;

    Search(int w, int c, int h) : width(w), count(c), hint(h) {}

    Search& ready() {
        std::call_once(once, [this] {
            const int training = hint == 1 ? count : 2 * count;
            const auto from = vectors<T>(training, width, 1);
            VornCdbkState* made = nullptr;
            Calls<T>::build(&made, from.get(), width, width, training, count, hint);
            book = std::shared_ptr<VornCdbkState>(made, Calls<T>::free);
            Calls<T>::size(made, &count);
            words = bench::buffer<T>(static_cast<std::size_t>(count * width));
            Calls<T>::words(made, words.get(), width);
            src = vectors<T>(height, width, 2);
            index = bench::buffer<int>(height);
            distance = bench::buffer<float>(height);
            std::vector<int> found(height), nearest(height);
            std::vector<float> scratch(height);
            Calls<T>::find(src.get(), width, found.data(), scratch.data(), made);
            plain::nearestWords(src.get(), width, height, words.get(), count, nearest.data(), scratch.data());
            int hits = 0;
            for (int v = 0; v < height; ++v)
                hits += found[static_cast<std::size_t>(v)] == nearest[static_cast<std::size_t>(v)];
            std::fprintf(stderr, "%s, hint %d, %d words of %d: the nearest one for %d of %d vectors\n",
                         Calls<T>::search, hint, count, width, hits, height);
        });
        return *this;
    }
};

#ifdef VORNSR_HAVE_OPENBLAS
// |w|^2 - 2 x.w: the product of all vectors with all words first, then the least of each row.
void expanded(Search<Vorn32f>& s, std::vector<float>& squares, std::vector<float>& products) {
    if (squares.empty()) {
        squares.resize(static_cast<std::size_t>(s.count));
        products.resize(static_cast<std::size_t>(s.count) * height);
        for (int w = 0; w < s.count; ++w) {
            const float* word = s.words.get() + w * s.width;
            squares[static_cast<std::size_t>(w)] = cblas_sdot(s.width, word, 1, word, 1);
        }
    }
    cblas_sgemm(CblasRowMajor, CblasNoTrans, CblasTrans, height, s.count, s.width, -2.0f, s.src.get(), s.width,
                s.words.get(), s.width, 0.0f, products.data(), s.count);
    for (int v = 0; v < height; ++v) {
        const float* row = products.data() + static_cast<std::ptrdiff_t>(v) * s.count;
        float least = row[0] + squares[0];
        int best = 0;
        for (int w = 1; w < s.count; ++w) {
            const float d = row[w] + squares[static_cast<std::size_t>(w)];
            if (d < least) least = d, best = w;
        }
        const float* x = s.src.get() + v * s.width;
        s.index[static_cast<std::size_t>(v)] = best;
        s.distance[static_cast<std::size_t>(v)] = std::sqrt(std::max(0.0f, least + cblas_sdot(s.width, x, 1, x, 1)));
    }
}
#endif

#ifdef VORNSR_HAVE_NANOFLANN
// The words as the tree of boxes reads them.
struct Points {
    const float* words;
    int width, count;
    std::size_t kdtree_get_point_count() const { return static_cast<std::size_t>(count); }
    float kdtree_get_pt(std::size_t w, std::size_t i) const { return words[w * static_cast<std::size_t>(width) + i]; }
    template <class Box>
    bool kdtree_get_bbox(Box&) const {
        return false;
    }
};
using Boxes = nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<float, Points>, Points>;
#endif

template <class T>
void addSearch(int width, int count, int hint, const char* structure) {
    auto s = std::make_shared<Search<T>>(width, count, hint);
    const std::string name = std::string(Calls<T>::search) + ", " + structure;
    const std::string size = std::to_string(count) + " words of " + std::to_string(width);
    bench::add(name, size, bench::ours, height, [=] {
        s->ready();
        Calls<T>::find(s->src.get(), s->width, s->index.get(), s->distance.get(), s->book.get());
        bench::keep(s->index.get());
    });
    bench::add(name, size, "plain", height, [=] {
        s->ready();
        plain::nearestWords(s->src.get(), width, height, s->words.get(), s->count, s->index.get(), s->distance.get());
        bench::keep(s->index.get());
    });
    if constexpr (std::is_same_v<T, Vorn32f>) {
#ifdef VORNSR_HAVE_OPENBLAS
        auto squares = std::make_shared<std::vector<float>>(), products = std::make_shared<std::vector<float>>();
        bench::add(name, size, "openblas", height, [=] {
            expanded(s->ready(), *squares, *products);
            bench::keep(s->index.get());
        });
#endif
#ifdef VORNSR_HAVE_NANOFLANN
        struct Tree {
            Points points;
            std::unique_ptr<Boxes> boxes;
        };
        auto tree = std::make_shared<Tree>();
        bench::add(name, size, "nanoflann", height, [=] {
            s->ready();
            if (!tree->boxes) {
                tree->points = {s->words.get(), width, s->count};
                tree->boxes = std::make_unique<Boxes>(static_cast<std::size_t>(width), tree->points);
            }
            for (int v = 0; v < height; ++v) {
                std::uint32_t found = 0;
                float d = 0;
                tree->boxes->knnSearch(s->src.get() + v * width, 1, &found, &d);
                s->index[static_cast<std::size_t>(v)] = static_cast<int>(found);
                s->distance[static_cast<std::size_t>(v)] = std::sqrt(d);
            }
            bench::keep(s->index.get());
        });
#endif
    }
}

// Seven streams of pairs, 64 words each, as distributed recognition sends the features of a frame.
template <class T>
void addStreams() {
    constexpr int streams = 7, width = 2, words = 64;
    auto s = std::make_shared<Search<T>>(width, words, 1);
    auto books = std::make_shared<std::vector<const VornCdbkState*>>();
    auto src = vectors<T>(height, streams * width, 3);
    auto packed = bench::buffer<Vorn8u>(height * streams);
    auto index = bench::buffer<int>(height * streams);
    auto distance = bench::buffer<float>(height * streams);
    const std::string size = "7 streams, 64 words of 2";
    bench::add(Calls<T>::split, size, bench::ours, height, [=] {
        books->assign(streams, s->ready().book.get());
        Calls<T>::streams(src.get(), streams * width, packed.get(), streams, height, books->data(), streams);
        bench::keep(packed.get());
    });
    // Streams one behind another, each vector a row of its own: what one codebook for all makes of it.
    bench::add(Calls<T>::split, size, "plain", height, [=] {
        s->ready();
        plain::nearestWords(src.get(), width, height * streams, s->words.get(), s->count, index.get(), distance.get());
        for (int i = 0; i < height * streams; ++i)
            packed[static_cast<std::size_t>(i)] = static_cast<Vorn8u>(index[static_cast<std::size_t>(i)]);
        bench::keep(packed.get());
    });
}

void addOrder(int width, int words, int most) {
    auto s = std::make_shared<Search<Vorn32f>>(width, words, 1);
    auto index = bench::buffer<int>(static_cast<std::size_t>(words));
    auto distance = bench::buffer<float>(static_cast<std::size_t>(words));
    auto scratch = bench::buffer<float>(static_cast<std::size_t>(words));
    const std::string size =
        std::to_string(most) + " of " + std::to_string(words) + " words of " + std::to_string(width);
    bench::add("VQDistSingle_Sort_32f", size, bench::ours, 1, [=] {
        s->ready();
        vornsVQDistSingle_Sort_32f(s->src.get(), index.get(), distance.get(), s->book.get(), most);
        bench::keep(index.get());
    });
    bench::add("VQDistSingle_Sort_32f", size, "plain", 1, [=] {
        s->ready();
        plain::wordsInOrder(s->src.get(), width, s->words.get(), words, most, index.get(), distance.get(),
                            scratch.get());
        bench::keep(index.get());
    });
}

const bench::Family search([] {
    for (int width : {13, 39}) {
        for (int words : {256, 1024}) {
            addSearch<Vorn32f>(width, words, 1, "scan");
            addSearch<Vorn16s>(width, words, 1, "scan");
            addSearch<Vorn32f>(width, words, 2, "tree");
            addSearch<Vorn16s>(width, words, 2, "tree");
        }
    }
    for (int words : {256, 1024}) {
        addSearch<Vorn32f>(1, words, 1, "grid");
        addSearch<Vorn32f>(2, words, 1, "grid");
        addSearch<Vorn16s>(2, words, 1, "grid");
    }
    addStreams<Vorn32f>();
    addStreams<Vorn16s>();
    for (int words : {256, 1024}) {
        for (int most : {1, 8, words}) addOrder(13, words, most);
    }
});

}  // namespace
