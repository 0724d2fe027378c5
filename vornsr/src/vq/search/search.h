// The search of one codebook for rows of vectors, by whatever structure it has.
#pragma once

#include <algorithm>
#include <cstddef>
#include <type_traits>

#include "frame/checks.h"
#include "vq/codebook/panels.h"
#include "vq/codebook/state.h"
#include "vq/search/distances.h"
#include "vq/search/grids.h"
#include "vq/search/rows.h"
#include "vq/search/scan.h"
#include "vq/search/tree.h"

namespace vorn::vq {

// Codebooks of other hints are passed over.
inline bool isSearched(const VornCdbkState& book) {
    return book.hint == wordsAsGiven || book.hint == largestRadius || book.hint == mostMembers;
}

template <class T>
class Search {
public:
    // room: for as many elements as the codebook's vectors have.
    Search(const VornCdbkState& book, const SearchRoom<T>& room)
        : book_(book), room_(room), weight_(room.weightsOf(book)) {}

    // Calls put(row, found) for the rows in their order; for a codebook of an unknown hint for none. Distances are
    // those that the search goes by, in a tree no number at all.
    template <class Put>
    VornStatus overRows(const T* src, std::ptrdiff_t step, std::ptrdiff_t height, const Put& put) const {
        if (!isSearched(book_)) return vornStsNoErr;
        if (isTree()) return overTree(src, step, height, put);
        if (book_.mode & hasGrid) {
            for (std::ptrdiff_t r = 0; r < height; ++r) put(r, searchGrid<T>(book_, queryOf(src + r * step)));
        } else {
            scanRows(src, step, height, put);
        }
        return vornStsNoErr;
    }

    // With the distance from the word: that of a tree is formed anew, whichever way the search went.
    Found withDistance(const T* vector, Found found) const {
        if (!isTree() || found.index < 0) return found;
        const T* word = static_cast<const T*>(book_.words) + std::ptrdiff_t{found.index} * book_.rowStep;
        return {found.index, squaredDistance(vector, word, static_cast<const T*>(book_.weights), book_.vecLen)};
    }

private:
    Query queryOf(const T* vector) const { return {room_.vector.of(vector, book_.vecLen), weight_, book_.vecLen}; }

    template <class Put>
    void scanRows(const T* src, std::ptrdiff_t step, std::ptrdiff_t height, const Put& put) const {
        std::ptrdiff_t r = 0;
        // So few queries are better off one by one, each with some words at once.
        constexpr std::ptrdiff_t fewest = panelLanes / 4;
        if (height >= fewest && book_.vecLen <= widestPanel) r = scanPanels(src, step, height, put);
        for (; r < height; ++r) put(r, scanWords<T>(book_, queryOf(src + r * step)));
    }
    template <class Put>
    VORN_NOINLINE std::ptrdiff_t scanPanels(const T* src, std::ptrdiff_t step, std::ptrdiff_t height,
                                            const Put& put) const {
        QueryPanel<T> panel(book_, weight_);
        std::ptrdiff_t r = 0;
        while (height - r >= panelLanes / 4) {
            const std::ptrdiff_t count = std::min<std::ptrdiff_t>(height - r, panelLanes);
            panel.search(src + r * step, step, count, r, put);
            r += count;
        }
        return r;
    }

    template <class Put>
    VornStatus overTree(const T* src, std::ptrdiff_t step, std::ptrdiff_t height, const Put& put) const {
        const T* weight = static_cast<const T*>(book_.weights);
        for (std::ptrdiff_t r = 0; r < height; ++r) {
            const T* x = src + r * step;
            const Cluster* leaf = weight_ != nullptr ? searchTree(book_, ByScore<T>{x, weight, book_.vecLen})
                                            : searchTree(book_, ByDistance<T>{queryOf(x)});
            VORN_CHECK(require(leaf != nullptr, vornStsErr));
            put(r, Found{leaf->index});
        }
        return vornStsNoErr;
    }

    bool isTree() const { return book_.hint != wordsAsGiven; }

    const VornCdbkState& book_;
    const SearchRoom<T>& room_;
    const Vorn32f* weight_;
};

}  // namespace vorn::vq
