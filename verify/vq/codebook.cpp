// Codebooks.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

// A width, a step, vectors, words.
constexpr struct {
    int width, step, height, nCluster;
} shapes[] = {{1, 1, 60, 9}, {2, 2, 90, 12}, {3, 5, 70, 20}, {8, 8, 40, 7}, {13, 13, 150, 33}, {17, 20, 50, 50}};

template <class T>
std::vector<T> drawn(Source& source, const std::size_t len, bool few) {
    auto x = source.values<T>(len, few ? 0.0 : -500.0, few ? 3.0 : 500.0);
    if constexpr (std::is_integral_v<T>) {
        for (T& value : x) value = static_cast<T>(few ? value & 3 : value / 8);
    } else if (few) {
        for (T& value : x) value = static_cast<T>(static_cast<int>(value));
    }
    return x;
}

template <auto copy, class T>
void addWords(Digest& digest, const VornCdbkState* book, int words, int width) {
    std::vector<T> all(static_cast<std::size_t>(words) * width);
    digest.add(copy(book, all.data(), width));
    digest.add(all);
}

// The words, once the status says that there are any.
template <class T, auto size, auto copy, auto free>
void digestAndFree(Digest& digest, VornStatus status, VornCdbkState* book, int width) {
    digest.add(status);
    if (status < 0) return;
    int words = 0;
    digest.add(size(book, &words));
    digest.add(words);
    addWords<copy, T>(digest, book, words, width);
    digest.add(free(book));
}

template <class T, auto build, auto size, auto copy, auto free>
void trees(Source& source, Digest& digest) {
    for (const auto& shape : shapes) {
        for (int hint : {1, 2, 3}) {
            for (bool few : {false, true}) {
                const auto src = drawn<T>(source, static_cast<std::size_t>(shape.step) * shape.height, few);
                VornCdbkState* book = nullptr;
                const VornStatus status =
                    build(&book, src.data(), shape.width, shape.step, shape.height, shape.nCluster, hint);
                digestAndFree<T, size, copy, free>(digest, status, book, shape.width);
            }
        }
    }
}

template <class T, auto build, auto size, auto copy, auto free>
void weightedTrees(Source& source, Digest& digest) {
    for (const auto& shape : shapes) {
        for (int hint : {1, 2, 3}) {
            const auto src = drawn<T>(source, static_cast<std::size_t>(shape.step) * shape.height, false);
            auto weights = source.values<T>(static_cast<std::size_t>(shape.width), 0.0, 4.0);
            for (T& w : weights) w = static_cast<T>(w < 0 ? 2 : w);
            VornCdbkState* book = nullptr;
            const VornStatus status =
                build(&book, src.data(), weights.data(), shape.width, shape.step, shape.height, shape.nCluster, hint);
            digestAndFree<T, size, copy, free>(digest, status, book, shape.width);
        }
    }
}

template <auto getSize>
void sizes(Source&, Digest& digest) {
    for (const auto& shape : shapes) {
        for (int hint : {1, 2}) {
            int size = 0;
            digest.add(getSize(shape.width, shape.step, shape.height, shape.height, hint, &size));
            digest.add(size);
        }
    }
}

template <class T, auto getSize, auto init, auto copy>
void placed(Source& source, Digest& digest) {
    for (const auto& shape : shapes) {
        const auto src = drawn<T>(source, static_cast<std::size_t>(shape.step) * shape.height, false);
        int size = 0;
        digest.add(getSize(shape.width, shape.step, shape.height, shape.height, 1, &size));
        std::vector<Vorn64f> block(static_cast<std::size_t>(size) / 8 + 1);
        auto* book = reinterpret_cast<VornCdbkState*>(block.data());
        digest.add(init(book, src.data(), shape.width, shape.step, shape.height, shape.height, 1));
        addWords<copy, T>(digest, book, shape.height, shape.width);
    }
}

// clang-format off
constexpr auto size32 = vornsGetCdbkSize_32f, size16 = vornsGetCdbkSize_16s;
constexpr auto copy32 = vornsGetCodebook_32f;
constexpr auto copy16 = vornsGetCodebook_16s;
constexpr auto free32 = vornsCdbkFree_32f, free16 = vornsCdbkFree_16s;
const Workload workloads[] = {
    {"vornsCdbkGetSize_32f", sizes<vornsCdbkGetSize_32f>},
    {"vornsCdbkGetSize_16s", sizes<vornsCdbkGetSize_16s>},
    {"vornsCdbkInit_L2_32f", placed<Vorn32f, vornsCdbkGetSize_32f, vornsCdbkInit_L2_32f, vornsGetCodebook_32f>},
    {"vornsCdbkInit_L2_16s", placed<Vorn16s, vornsCdbkGetSize_16s, vornsCdbkInit_L2_16s, vornsGetCodebook_16s>},
    {"vornsCdbkInitAlloc_L2_32f", trees<Vorn32f, vornsCdbkInitAlloc_L2_32f, size32, copy32, free32>},
    {"vornsCdbkInitAlloc_L2_16s", trees<Vorn16s, vornsCdbkInitAlloc_L2_16s, size16, copy16, free16>},
    {"vornsCdbkInitAlloc_WgtL2_32f", weightedTrees<Vorn32f, vornsCdbkInitAlloc_WgtL2_32f, size32, copy32, free32>},
    {"vornsCdbkInitAlloc_WgtL2_16s", weightedTrees<Vorn16s, vornsCdbkInitAlloc_WgtL2_16s, size16, copy16, free16>},
    {"vornsGetCdbkSize_32f", trees<Vorn32f, vornsCdbkInitAlloc_L2_32f, vornsGetCdbkSize_32f, copy32, free32>},
    {"vornsGetCdbkSize_16s", trees<Vorn16s, vornsCdbkInitAlloc_L2_16s, vornsGetCdbkSize_16s, copy16, free16>},
    {"vornsGetCodebook_32f", trees<Vorn32f, vornsCdbkInitAlloc_L2_32f, size32, vornsGetCodebook_32f, free32>},
    {"vornsGetCodebook_16s", trees<Vorn16s, vornsCdbkInitAlloc_L2_16s, size16, vornsGetCodebook_16s, free16>},
    {"vornsCdbkFree_32f", trees<Vorn32f, vornsCdbkInitAlloc_L2_32f, size32, copy32, vornsCdbkFree_32f>},
    {"vornsCdbkFree_16s", trees<Vorn16s, vornsCdbkInitAlloc_L2_16s, size16, copy16, vornsCdbkFree_16s>},
};
// clang-format on

}  // namespace

Family codebookWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
