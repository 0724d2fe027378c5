// The growth of codebooks beside a plain loop of the same rounds, and the making of grids.
#include <random>
#include <string>

#include "plain/vq_codebook.h"
#include "support/bench.h"
#include "vornsr.h"

namespace {

template <class T>
struct Calls;
template <>
struct Calls<Vorn32f> {
    static constexpr const char* code = "32f";
    static constexpr auto build = vornsCdbkInitAlloc_L2_32f;
    static constexpr auto free = vornsCdbkFree_32f;
};
template <>
struct Calls<Vorn16s> {
    static constexpr const char* code = "16s";
    static constexpr auto build = vornsCdbkInitAlloc_L2_16s;
    static constexpr auto free = vornsCdbkFree_16s;
};

// Clouds that overlap, as features of speech do.
template <class T>
std::shared_ptr<T[]> vectors(int height, int width) {
    auto x = bench::buffer<T>(static_cast<std::size_t>(height) * static_cast<std::size_t>(width));
    std::mt19937 generator(static_cast<unsigned>(width));
    std::normal_distribution<float> normal(0, 400);
    std::vector<float> centres(static_cast<std::size_t>(50 * width));
    for (float& c : centres) c = 2 * normal(generator);
    for (int v = 0; v < height; ++v) {
        const auto cloud = static_cast<std::size_t>(generator() % 50) * static_cast<std::size_t>(width);
        for (std::size_t i = 0; i < static_cast<std::size_t>(width); ++i) {
            x[static_cast<std::size_t>(v * width) + i] = static_cast<T>(centres[cloud + i] + normal(generator));
        }
    }
    return x;
}

template <class T>
void addBuild(const std::string& peer, const std::shared_ptr<T[]>& src, int height, int width, int words, int hint) {
    const std::string size = std::to_string(height) + "x" + std::to_string(width) + " to " + std::to_string(words);
    const auto items = static_cast<std::int64_t>(height) * width;
    bench::add(std::string("CdbkInitAlloc_L2_") + Calls<T>::code + (hint == 1 ? ", grid" : ", tree"), size, peer, items,
               [=] {
                   VornCdbkState* book = nullptr;
                   Calls<T>::build(&book, src.get(), width, width, height, words, hint);
                   bench::keep(book);
                   Calls<T>::free(book);
               });
}

template <class T>
void growth() {
    for (int height : {2000, 100000}) {
        for (int width : {2, 13, 39, 256}) {
            for (int words : {4, 16}) {
                const auto src = vectors<T>(height, width);
                addBuild(bench::ours, src, height, width, words, 2);
                auto centres = bench::buffer<float>(static_cast<std::size_t>(words * width));
                const std::string size =
                    std::to_string(height) + "x" + std::to_string(width) + " to " + std::to_string(words);
                bench::add(std::string("CdbkInitAlloc_L2_") + Calls<T>::code + ", tree", size, "plain",
                           static_cast<std::int64_t>(height) * width, [=] {
                               plain::growCodebook(src.get(), height, width, words, centres.get());
                               bench::keep(centres.get());
                           });
            }
        }
    }
}

const bench::Family codebooks([] {
    growth<Vorn32f>();
    growth<Vorn16s>();
    // What the search for a grid and its lists cost; nobody else makes them.
    for (int width : {1, 2}) addBuild(bench::ours, vectors<Vorn32f>(10000, width), 10000, width, 10000, 1);
});

}  // namespace
