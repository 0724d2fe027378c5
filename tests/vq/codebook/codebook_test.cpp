// Codebooks: the whole structure beside the model's, its properties, the checks, and the memory.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <set>
#include <string>
#include <vector>

#include "model/codebook.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/recorded_frames.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"
#include "vq/codebook/state.h"

namespace {

using vorn::vq::Cluster, vorn::vq::Line, vorn::vq::Square;

template <class T>
struct Calls;
template <>
struct Calls<Vorn32f> {
    static constexpr auto getSize = vornsCdbkGetSize_32f;
    static constexpr auto init = vornsCdbkInit_L2_32f;
    static constexpr auto build = vornsCdbkInitAlloc_L2_32f;
    static constexpr auto buildWeighted = vornsCdbkInitAlloc_WgtL2_32f;
    static constexpr auto free = vornsCdbkFree_32f;
    static constexpr auto words = vornsGetCdbkSize_32f;
    static constexpr auto copy = vornsGetCodebook_32f;
};
template <>
struct Calls<Vorn16s> {
    static constexpr auto getSize = vornsCdbkGetSize_16s;
    static constexpr auto init = vornsCdbkInit_L2_16s;
    static constexpr auto build = vornsCdbkInitAlloc_L2_16s;
    static constexpr auto buildWeighted = vornsCdbkInitAlloc_WgtL2_16s;
    static constexpr auto free = vornsCdbkFree_16s;
    static constexpr auto words = vornsGetCdbkSize_16s;
    static constexpr auto copy = vornsGetCodebook_16s;
};

template <class T>
using Rows = std::vector<std::vector<T>>;

// Vectors a step apart against a guard page; only their own elements can be read, and the last one ends at the page.
template <class T>
test::Guarded<T> block(const Rows<T>& rows, int step) {
    test::Guarded<T> memory((rows.size() - 1) * static_cast<std::size_t>(step) + rows[0].size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        std::copy(rows[i].begin(), rows[i].end(), memory.data() + i * static_cast<std::size_t>(step));
    }
    return memory;
}

template <class T>
struct Built {
    VornCdbkState* book = nullptr;
    VornStatus status;
    Built(const Rows<T>& rows, const std::vector<T>& weights, int step, int nCluster, int hint) {
        const auto src = block(rows, step);
        const test::Guarded<T> guardedWeights(weights);
        status = Calls<T>::buildWeighted(&book, src.data(), guardedWeights.data(), static_cast<int>(weights.size()),
                                         step, static_cast<int>(rows.size()), nCluster, hint);
    }
    ~Built() {
        if (book != nullptr) {
            EXPECT_EQ(Calls<T>::free(book), vornStsNoErr);
        }
    }
    Built(const Built&) = delete;
};

std::vector<int> listOf(int* const* lists, const int* sizes, std::size_t i) { return {lists[i], lists[i] + sizes[i]}; }

void expectGrid(const VornCdbkState& book, const model::codebook::Grid& grid) {
    ASSERT_EQ(book.grid != nullptr, grid.exists);
    if (!grid.exists) return;
    if (book.vecLen == 1) {
        const Line& line = *static_cast<const Line*>(book.grid);
        ASSERT_EQ(line.cells, grid.across);
        EXPECT_TRUE(test::same(line.cellWidth, grid.cellWidthX));
        EXPECT_TRUE(test::same(line.low, grid.lowX));
        EXPECT_TRUE(test::same(line.high, grid.highX));
        for (std::size_t i = 0; i < grid.lists.size(); ++i) {
            EXPECT_EQ(listOf(line.lists, line.sizes, i), grid.lists[i]) << "entry " << i;
        }
    } else {
        const Square& square = *static_cast<const Square*>(book.grid);
        ASSERT_EQ(square.cellsX, grid.across);
        ASSERT_EQ(square.cellsY, grid.down);
        EXPECT_TRUE(test::same(square.cellWidthX, grid.cellWidthX));
        EXPECT_TRUE(test::same(square.cellWidthY, grid.cellWidthY));
        EXPECT_TRUE(test::same(square.lowX, grid.lowX));
        EXPECT_TRUE(test::same(square.highX, grid.highX));
        EXPECT_TRUE(test::same(square.lowY, grid.lowY));
        EXPECT_TRUE(test::same(square.highY, grid.highY));
        for (std::size_t i = 0; i < grid.lists.size(); ++i) {
            EXPECT_EQ(listOf(square.lists, square.sizes, i), grid.lists[i]) << "entry " << i;
        }
    }
}

template <class T>
void expectNode(const Cluster& node, const model::codebook::Book<T>& expected, int at, int width) {
    const auto& other = expected.nodes[static_cast<std::size_t>(at)];
    EXPECT_TRUE(test::same(node.radius, other.radius)) << node.radius << " for " << other.radius;
    EXPECT_TRUE(
        test::sameBits(static_cast<const T*>(node.centroid), other.centroid.data(), static_cast<std::size_t>(width)))
        << (other.isLeaf ? "leaf " : "inner node ") << at;
    EXPECT_EQ(node.count, other.count);
    EXPECT_EQ(node.isLeaf, other.isLeaf);
    EXPECT_EQ(node.depth, other.depth);
    ASSERT_EQ(node.left != nullptr, other.left >= 0);
    ASSERT_EQ(node.right != nullptr, other.right >= 0);
    ASSERT_EQ(node.nearCount, static_cast<int>(other.near.size()));
    if (other.isLeaf) {
        EXPECT_EQ(node.index, other.index);
    }
    for (int i = 0; i < node.nearCount; ++i) {
        EXPECT_EQ(node.near[i]->isLeaf, 1);
        EXPECT_EQ(node.near[i]->index, other.near[static_cast<std::size_t>(i)]) << "of " << node.index << " slot " << i;
    }
    if (::testing::Test::HasFailure()) return;
    if (node.left != nullptr) expectNode(*node.left, expected, other.left, width);
    if (node.right != nullptr) expectNode(*node.right, expected, other.right, width);
}

template <class T>
void expectLikeModel(const Rows<T>& rows, const std::vector<T>& weights, int step, int nCluster, int hint) {
    const int width = static_cast<int>(weights.size());
    SCOPED_TRACE("width " + std::to_string(width) + ", step " + std::to_string(step) + ", " +
                 std::to_string(rows.size()) + " vectors, " + std::to_string(nCluster) + " words, hint " +
                 std::to_string(hint));
    const auto expected = model::codebook::build(rows, weights, step, nCluster, hint);
    const Built<T> built(rows, weights, step, nCluster, hint);
    ASSERT_EQ(built.status, expected.status);
    ASSERT_EQ(built.book != nullptr, expected.status >= 0);
    if (built.book == nullptr) return;
    const VornCdbkState& book = *built.book;
    EXPECT_EQ(book.maxDepth, expected.maxDepth);
    ASSERT_EQ(book.cdbkSize, expected.cdbkSize);
    EXPECT_EQ(book.vecLen, width);
    EXPECT_EQ(book.rowStep, expected.rowStep);
    EXPECT_EQ(book.hint, hint);
    EXPECT_EQ(book.mode, expected.mode);
    EXPECT_EQ(book.indexBits, expected.indexBits);
    EXPECT_TRUE(test::sameBits(static_cast<const T*>(book.weights), weights.data(), weights.size()));
    for (int i = 0; i < book.cdbkSize; ++i) {
        const T* word = static_cast<const T*>(book.words) + static_cast<std::ptrdiff_t>(i) * book.rowStep;
        EXPECT_TRUE(test::sameBits(word, expected.words[static_cast<std::size_t>(i)].data(), weights.size()))
            << "word " << i;
        book.scratch[i] = 0;  // there is room for a distance a word
    }
    ASSERT_EQ(book.root != nullptr, !expected.nodes.empty());
    if (book.root != nullptr) expectNode(*book.root, expected, 0, width);
    expectGrid(book, expected.grid);
    // What the calls tell.
    int words = 0;
    EXPECT_EQ(Calls<T>::words(&book, &words), vornStsNoErr);
    EXPECT_EQ(words, expected.cdbkSize);
    test::Guarded<T> copy(static_cast<std::size_t>(words - 1) * (weights.size() + 1) + weights.size());
    EXPECT_EQ(Calls<T>::copy(&book, copy.data(), width + 1), vornStsNoErr);
    for (int i = 0; i < words; ++i) {
        EXPECT_TRUE(test::sameBits(copy.data() + static_cast<std::ptrdiff_t>(i) * (width + 1),
                                   expected.words[static_cast<std::size_t>(i)].data(), weights.size()));
    }
}

// Training vectors of several kinds.
enum class Kind { Uniform, Clouds, Few, OnALine, Wide, Tiny };
constexpr Kind kinds[] = {Kind::Uniform, Kind::Clouds, Kind::Few, Kind::OnALine, Kind::Wide, Kind::Tiny};

template <class T>
Rows<T> drawn(test::Random& random, Kind kind, int height, int width) {
    Rows<T> rows(static_cast<std::size_t>(height), std::vector<T>(static_cast<std::size_t>(width)));
    std::vector<double> direction, centres;
    for (int i = 0; i < width; ++i) direction.push_back(random.uniform(-1, 1));
    for (int i = 0; i < 5 * width; ++i) centres.push_back(random.uniform(-900, 900));
    for (auto& row : rows) {
        const double along = random.uniform(-1000, 1000);
        const auto cloud = static_cast<std::size_t>(random.integer(0, 4) * width);
        for (std::size_t i = 0; i < row.size(); ++i) {
            double x = 0;
            switch (kind) {
                case Kind::Uniform:
                    x = random.uniform(-1000, 1000);
                    break;
                case Kind::Clouds:
                    x = centres[cloud + i] + random.uniform(-30, 30);
                    break;
                case Kind::Few:
                    x = static_cast<double>(random.integer(0, 2));
                    break;
                case Kind::OnALine:
                    x = along * direction[i];
                    break;
                case Kind::Wide:
                    x = random.uniform(-32767, 32767);
                    break;
                case Kind::Tiny:
                    x = random.uniform(0.9995, 1.0005);
                    break;
            }
            row[i] = static_cast<T>(x);
        }
    }
    return rows;
}

template <class T>
std::vector<T> ones(int width) {
    return std::vector<T>(static_cast<std::size_t>(width), T(1));
}
template <class T>
std::vector<T> someWeights(test::Random& random, int width) {
    std::vector<T> weights(static_cast<std::size_t>(width));
    for (T& w : weights) w = static_cast<T>(random.integer(0, 3) == 0 ? 0 : random.uniform(0, 5));
    weights.back() = T(2);
    return weights;
}

template <class T>
void sweep(int hint) {
    test::Random random(static_cast<std::uint64_t>(17 + hint));
    for (int width : {1, 2, 3, 4, 5, 8, 13, 16, 17}) {
        for (int height : {1, 2, 3, 4, 10, 11, 31, 65, 129}) {
            const Kind kind = kinds[random.integer(0, 5)];
            const auto rows = drawn<T>(random, kind, height, width);
            const int step = width + static_cast<int>(random.integer(0, 5));
            const int nCluster = static_cast<int>(random.integer(1, std::min(height, 40)));
            expectLikeModel(rows, ones<T>(width), step, nCluster, hint);
            expectLikeModel(rows, someWeights<T>(random, width), step, std::min(height, 9), hint);
            if (::testing::Test::HasFailure()) return;
        }
    }
}

TEST(Codebook, IsTheModelsWordsAsGiven_32f) { sweep<Vorn32f>(1); }
TEST(Codebook, IsTheModelsWordsAsGiven_16s) { sweep<Vorn16s>(1); }
TEST(Codebook, IsTheModelsSplitByRadius_32f) { sweep<Vorn32f>(2); }
TEST(Codebook, IsTheModelsSplitByRadius_16s) { sweep<Vorn16s>(2); }
TEST(Codebook, IsTheModelsSplitByCount_32f) { sweep<Vorn32f>(3); }
TEST(Codebook, IsTheModelsSplitByCount_16s) { sweep<Vorn16s>(3); }

// Every kind of data with enough clusters for long lists of neighbours, equal distances among them.
template <class T>
void manyClusters() {
    test::Random random(5);
    for (Kind kind : kinds) {
        SCOPED_TRACE("kind " + std::to_string(static_cast<int>(kind)));
        for (int hint : {2, 3}) {
            expectLikeModel(drawn<T>(random, kind, 100, 3), ones<T>(3), 3, 50, hint);
            expectLikeModel(drawn<T>(random, kind, 120, 1), someWeights<T>(random, 1), 2, 35, hint);
        }
    }
}
TEST(Codebook, HasTheModelsNeighbours_32f) { manyClusters<Vorn32f>(); }
TEST(Codebook, HasTheModelsNeighbours_16s) { manyClusters<Vorn16s>(); }

// Grids of both shapes over enough words that one is made, and what the ring around them holds.
template <class T>
void grids() {
    test::Random random(23);
    int made[2] = {0, 0};
    for (int width : {1, 2}) {
        for (int height : {40, 110, 170}) {
            for (Kind kind : kinds) {
                const auto rows = drawn<T>(random, kind, height, width);
                expectLikeModel(rows, ones<T>(width), width, height, 1);
                expectLikeModel(rows, someWeights<T>(random, width), width + 1, height, 1);
                const Built<T> built(rows, ones<T>(width), width, height, 1);
                made[width - 1] += built.book != nullptr && built.book->grid != nullptr;
            }
        }
    }
    EXPECT_GE(made[0], 2);
    EXPECT_GE(made[1], 3);
}
TEST(Codebook, HasTheModelsGrid_32f) { grids<Vorn32f>(); }
TEST(Codebook, HasTheModelsGrid_16s) { grids<Vorn16s>(); }

// The nearest word of any point of a cell is in the cell's list: by distances in double over all words.
template <class T>
void everyNearestWordIsACandidate(int width, int height) {
    test::Random random(static_cast<std::uint64_t>(31 + width));
    Rows<T> rows = drawn<T>(random, Kind::Uniform, height, width);
    const Built<T> built(rows, ones<T>(width), width, height, 1);
    ASSERT_EQ(built.status, vornStsNoErr);
    ASSERT_NE(built.book->grid, nullptr);
    const Line& line = *static_cast<const Line*>(built.book->grid);
    const Square& square = *static_cast<const Square*>(built.book->grid);
    std::size_t listed = 0, asked = 0;
    for (int turn = 0; turn < 4000; ++turn) {
        std::vector<double> point;
        for (int i = 0; i < width; ++i) point.push_back(random.uniform(-1090, 1090));
        std::vector<int> candidates;
        if (width == 1) {
            const int cell = static_cast<int>(std::floor((point[0] - line.low) / line.cellWidth));
            candidates = listOf(line.lists, line.sizes, static_cast<std::size_t>(std::clamp(cell, -1, line.cells) + 1));
        } else {
            const int column = static_cast<int>(std::floor((point[0] - square.lowX) / square.cellWidthX));
            const int row = static_cast<int>(std::floor((square.highY - point[1]) / square.cellWidthY));
            if (column < 0 || row < 0 || column >= square.cellsX || row >= square.cellsY) continue;
            candidates = listOf(square.lists, square.sizes,
                                static_cast<std::size_t>((row + 1) * (square.cellsX + 2) + column + 1));
        }
        const auto distance = [&](int v) {
            double sum = 0;
            for (std::size_t i = 0; i < point.size(); ++i) {
                const double d = static_cast<double>(rows[static_cast<std::size_t>(v)][i]) - point[i];
                sum += d * d;
            }
            return sum;
        };
        double nearest = 1e300, nearestListed = 1e300;
        for (int v = 0; v < height; ++v) nearest = std::min(nearest, distance(v));
        for (int v : candidates) nearestListed = std::min(nearestListed, distance(v));
        EXPECT_LE(nearestListed, nearest * 1.0001 + 1e-3) << "at " << point[0];
        listed += candidates.size();
        ++asked;
    }
    EXPECT_GT(asked, 1000u);
    EXPECT_LT(listed, asked * static_cast<std::size_t>(height) / 5);
}
TEST(Codebook, ListsTheNearestWordOfEveryPoint) {
    everyNearestWordIsACandidate<Vorn32f>(1, 1000);
    everyNearestWordIsACandidate<Vorn16s>(1, 1000);
    everyNearestWordIsACandidate<Vorn32f>(2, 500);
    everyNearestWordIsACandidate<Vorn16s>(2, 500);
}

// Features of speech: the model's tree, and what any such tree has.
template <class T>
Rows<T> speech(int height, int width, double unit) {
    const auto frames = test::recordedFrames(VORNSR_RECORDINGS "/test", 10, width);
    Rows<T> rows;
    for (int r = 0; r < std::min(height, frames.height); ++r) {
        rows.emplace_back();
        for (int i = 0; i < width; ++i) {
            rows.back().push_back(static_cast<T>(unit * frames.rows[static_cast<std::size_t>(r * width + i)]));
        }
    }
    return rows;
}

TEST(Codebook, IsTheModelsOnSpeech) {
    const auto singles = speech<Vorn32f>(300, 13, 1.0);
    ASSERT_EQ(singles.size(), 300u) << "recordings in " << VORNSR_RECORDINGS;
    expectLikeModel(singles, ones<Vorn32f>(13), 13, 40, 2);
    expectLikeModel(singles, ones<Vorn32f>(13), 13, 24, 3);
    const auto integers = speech<Vorn16s>(300, 13, 1000.0);
    expectLikeModel(integers, ones<Vorn16s>(13), 13, 40, 2);
    expectLikeModel(integers, ones<Vorn16s>(13), 13, 24, 3);
    test::Random random(2);
    expectLikeModel(singles, someWeights<Vorn32f>(random, 13), 13, 16, 2);
    expectLikeModel(integers, someWeights<Vorn16s>(random, 13), 13, 16, 3);
}

double distortion(const Rows<Vorn32f>& rows, const VornCdbkState& book) {
    double total = 0;
    for (const auto& row : rows) {
        double nearest = 1e300;
        for (int j = 0; j < book.cdbkSize; ++j) {
            const Vorn32f* word =
                static_cast<const Vorn32f*>(book.words) + static_cast<std::ptrdiff_t>(j) * book.rowStep;
            double sum = 0;
            for (std::size_t i = 0; i < row.size(); ++i) sum += std::pow(static_cast<double>(row[i]) - word[i], 2);
            nearest = std::min(nearest, sum);
        }
        total += nearest;
    }
    return total;
}

TEST(Codebook, GetsFinerWithEverySplit) {
    const auto rows = speech<Vorn32f>(600, 13, 1.0);
    ASSERT_GE(rows.size(), 300u) << "recordings in " << VORNSR_RECORDINGS;
    double former = 1e300;
    for (int nCluster = 1; nCluster <= 24; ++nCluster) {
        const Built<Vorn32f> built(rows, ones<Vorn32f>(13), 13, nCluster, 2);
        ASSERT_EQ(built.status, vornStsNoErr);
        const double here = distortion(rows, *built.book);
        EXPECT_LT(here, former) << nCluster << " words";
        former = here;
    }
}

// Clouds far from one another: k-means comes to rest, so that every vector's leaf is its nearest word, every word the
// mean of its vectors, and every radius twice the farthest of them.
TEST(Codebook, FindsTheCloudsAndTheirMeans) {
    test::Random random(77);
    Rows<Vorn32f> rows;
    for (int v = 0; v < 240; ++v) {
        const double centre = 1000.0 * (v % 6) * (v % 2 == 0 ? 1 : -1);
        rows.push_back({});
        for (int i = 0; i < 4; ++i)
            rows.back().push_back(static_cast<Vorn32f>(centre * (i + 1) + random.uniform(-9, 9)));
    }
    for (int hint : {2, 3}) {
        const Built<Vorn32f> built(rows, ones<Vorn32f>(4), 4, 6, hint);
        ASSERT_EQ(built.status, vornStsNoErr);
        std::vector<std::vector<double>> sums(6, std::vector<double>(4, 0.0));
        std::vector<int> counts(6, 0);
        std::vector<double> farthest(6, 0.0);
        const auto* words = static_cast<const Vorn32f*>(built.book->words);
        for (const auto& row : rows) {
            int own = -1;
            double least = 1e300;
            for (int j = 0; j < 6; ++j) {
                double sum = 0;
                for (int i = 0; i < 4; ++i)
                    sum += std::pow(static_cast<double>(row[i]) - words[j * built.book->rowStep + i], 2);
                if (sum < least) least = sum, own = j;
            }
            ++counts[own];
            farthest[own] = std::max(farthest[own], least);
            for (int i = 0; i < 4; ++i) sums[own][i] += row[i];
        }
        std::vector<const Cluster*> leaves(6, nullptr);
        std::vector<const Cluster*> open{built.book->root};
        int members = 0;
        while (!open.empty()) {
            const Cluster* node = open.back();
            open.pop_back();
            if (node->isLeaf) {
                leaves[static_cast<std::size_t>(node->index)] = node;
                members += node->count;
            } else {
                open.push_back(node->left);
                open.push_back(node->right);
            }
        }
        EXPECT_EQ(members, 240);
        for (int j = 0; j < 6; ++j) {
            ASSERT_NE(leaves[j], nullptr);
            EXPECT_EQ(leaves[j]->count, 40);
            EXPECT_EQ(counts[j], 40);
            EXPECT_NEAR(leaves[j]->radius, 2 * farthest[j], 1e-5 * farthest[j]);
            for (int i = 0; i < 4; ++i) {
                // Forty additions of singles below 40 x 20000, and a reciprocal.
                EXPECT_NEAR(words[j * built.book->rowStep + i], sums[j][i] / 40, 20000 * 42 * 0x1p-24);
            }
        }
        EXPECT_EQ(built.book->root->count, 240);
    }
}

// The edges, with their numbers.

TEST(Codebook, KeepsAllVectorsWhereFewerWordsAreAskedFor) {
    const Rows<Vorn32f> rows = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    const Built<Vorn32f> built(rows, ones<Vorn32f>(3), 3, 2, 1);
    EXPECT_EQ(built.status, vornStsCdbkSizeReduced);
    ASSERT_NE(built.book, nullptr);
    EXPECT_EQ(built.book->cdbkSize, 3);
    EXPECT_EQ(built.book->maxDepth, 2);
    EXPECT_EQ(built.book->indexBits, 2);
    EXPECT_EQ(built.book->rowStep, 4);
}

TEST(Codebook, OfIdenticalVectorsHasOneWord) {
    const Rows<Vorn32f> rows(7, {3, -4, 5});
    const Built<Vorn32f> built(rows, ones<Vorn32f>(3), 3, 5, 2);
    EXPECT_EQ(built.status, vornStsCdbkSizeReduced);
    ASSERT_NE(built.book, nullptr);
    EXPECT_EQ(built.book->cdbkSize, 1);
    EXPECT_EQ(built.book->root->isLeaf, 1);
    EXPECT_EQ(built.book->root->radius, 0);
    const Rows<Vorn16s> shorts(7, {3, -4, 5});
    const Built<Vorn16s> other(shorts, ones<Vorn16s>(3), 3, 5, 3);
    EXPECT_EQ(other.status, vornStsCdbkSizeReduced);
    ASSERT_NE(other.book, nullptr);
    EXPECT_EQ(other.book->cdbkSize, 1);
}

TEST(Codebook, OfOneWordIsTheMean) {
    const Rows<Vorn32f> rows = {{1, 10}, {2, 20}, {3, 30}, {6, 60}};
    const Built<Vorn32f> built(rows, ones<Vorn32f>(2), 2, 1, 2);
    EXPECT_EQ(built.status, vornStsNoErr);
    EXPECT_EQ(built.book->indexBits, 0);
    EXPECT_EQ(built.book->maxDepth, 1);
    EXPECT_EQ(static_cast<Vorn32f*>(built.book->words)[0], 3.0f);
    EXPECT_EQ(static_cast<Vorn32f*>(built.book->words)[1], 30.0f);
    EXPECT_EQ(built.book->root->radius, 2 * 909.0f);
    EXPECT_EQ(built.book->root->nearCount, 0);
    // Half a step rounds to even.
    const Rows<Vorn16s> shorts = {{1, 3}, {2, 4}, {-1, -3}, {0, -2}};
    const Built<Vorn16s> other(shorts, ones<Vorn16s>(2), 2, 1, 2);
    EXPECT_EQ(static_cast<Vorn16s*>(other.book->words)[0], 0);  // of 0.5
    EXPECT_EQ(static_cast<Vorn16s*>(other.book->words)[1], 0);  // of 0.5
    const Rows<Vorn16s> up = {{1}, {2}};
    const Built<Vorn16s> third(up, ones<Vorn16s>(1), 1, 1, 2);
    EXPECT_EQ(static_cast<Vorn16s*>(third.book->words)[0], 2);  // of 1.5
}

// The first centre of integers passes through singles: 16384.5005 is 16384.5 there, and that rounds to even.
TEST(Codebook, RoundsTheFirstIntegerCentreTwice) {
    Rows<Vorn16s> rows(1000, {16384});
    rows.insert(rows.end(), 999, {16385});
    rows.push_back({16386});
    const Built<Vorn16s> built(rows, ones<Vorn16s>(1), 1, 1, 2);
    ASSERT_EQ(built.status, vornStsNoErr);
    EXPECT_EQ(static_cast<Vorn16s*>(built.book->words)[0], 16384);
}

TEST(Codebook, CanGiveEveryVectorItsOwnWord) {
    Rows<Vorn32f> rows;
    for (int v = 0; v < 16; ++v) rows.push_back({static_cast<Vorn32f>(v * v * 10), static_cast<Vorn32f>(v * 7 % 16)});
    const Built<Vorn32f> built(rows, ones<Vorn32f>(2), 2, 16, 3);
    ASSERT_EQ(built.status, vornStsNoErr);
    std::set<std::vector<Vorn32f>> words;
    for (int j = 0; j < 16; ++j) {
        const auto* word = static_cast<const Vorn32f*>(built.book->words) + j * built.book->rowStep;
        words.insert({word[0], word[1]});
    }
    EXPECT_EQ(words, std::set<std::vector<Vorn32f>>(rows.begin(), rows.end()));
}

// The two halves of a cross have one centre, and no step along the one axis parts them by distance before the other
// axis is reached; what counts is that it ends, with the model's result.
TEST(Codebook, PartsClustersOfOneCentre) {
    const Rows<Vorn32f> cross = {{1, 0}, {-1, 0}, {0, 2}, {0, -2}};
    expectLikeModel(cross, ones<Vorn32f>(2), 2, 2, 2);
    expectLikeModel(cross, ones<Vorn32f>(2), 2, 3, 3);
    // Here the step moves no vector, so that the next round starts from the same two means and takes the same step.
    const Rows<Vorn32f> still = {{0.00095f, 0.008f}, {0.00095f, -0.008f}, {0, 0.0105f}, {0, -0.0105f}};
    expectLikeModel(still, ones<Vorn32f>(2), 2, 2, 2);
    const Built<Vorn32f> once(still, ones<Vorn32f>(2), 2, 2, 2);
    ASSERT_EQ(once.status, vornStsNoErr);
    EXPECT_NEAR(static_cast<const Vorn32f*>(once.book->words)[once.book->rowStep + 1], 0.008 / 200, 1e-9);
    const Rows<Vorn16s> shorts = {{100, 0}, {-100, 0}, {0, 200}, {0, -200}};
    expectLikeModel(shorts, ones<Vorn16s>(2), 2, 2, 2);
    expectLikeModel(shorts, ones<Vorn16s>(2), 2, 4, 3);
    const Built<Vorn16s> built(shorts, ones<Vorn16s>(2), 2, 2, 2);
    EXPECT_EQ(built.status, vornStsNoErr);
}

// Each half has its mean halfway between two integers, and both round to one centre that is no vector. A step away the
// truncated centre stays until it arrives.
// Two halves with the centre 0 out of 40000 vectors. The first one, (1, 0, 0), pulls the second centre to 0.005 and
// then to 0.01495; of its own and its opposite's distance the steps change shares of 0.020 and 0.060, and of all
// others' too little to count. The first is below a millionth a vector, 0.04 in all, the second above. So the second
// round begins with (0.011, 1, 0) beside the first vector, but not with (0.005, 1, 0), which one step would have taken
// too, nor without the other one, which three steps would have left. Then the sum of all distances, mostly that of
// vectors far away, has settled.
TEST(Codebook, PartsClustersUntilTheirVectorsTellThemApart) {
    std::vector<float> vectors;
    const auto pair = [&](float x, float y, float z) { vectors.insert(vectors.end(), {x, y, z, -x, -y, -z}); };
    pair(1, 0, 0);
    pair(0.011f, 1, 0);
    pair(0.005f, 1, 0);
    for (int i = 0; i < 9997; ++i) pair(0, 0, 500);
    for (int i = 0; i < 10000; ++i) pair(0, 0, 1000);
    VornCdbkState* book = nullptr;
    ASSERT_EQ(vornsCdbkInitAlloc_L2_32f(&book, vectors.data(), 3, 3, 40000, 2, 2), vornStsNoErr);
    float words[6];
    EXPECT_EQ(vornsGetCodebook_32f(book, words, 3), vornStsNoErr);
    EXPECT_EQ(words[3], (1 + 0.011f) / 2);
    EXPECT_EQ(words[4], 0.5f);
    EXPECT_EQ(words[5], 0.0f);
    EXPECT_EQ(vornsCdbkFree_32f(book), vornStsNoErr);
}

TEST(Codebook, PartsIntegersThatRoundToOneCentre) {
    for (int a : {0, 1, 2, -1, -2, 32766, -32768}) {
        const Rows<Vorn16s> rows = {{Vorn16s(a), 5}, {Vorn16s(a + 1), 5}, {Vorn16s(a), 6}, {Vorn16s(a + 1), 6}};
        for (int hint : {2, 3}) expectLikeModel(rows, ones<Vorn16s>(2), 2, 4, hint);
        test::Random random(static_cast<std::uint64_t>(a + 40000));
        Rows<Vorn16s> more;
        for (int v = 0; v < 40; ++v) {
            more.push_back(
                {Vorn16s(a + random.integer(0, 1)), Vorn16s(random.integer(7, 8)), Vorn16s(random.integer(0, 1))});
        }
        for (int nCluster : {2, 5, 8, 12}) expectLikeModel(more, ones<Vorn16s>(3), 3, nCluster, 2);
    }
}

// Weights of zero make any distance zero: nothing is to be split.
TEST(Codebook, TakesWeightsOfZero) {
    test::Random random(3);
    const auto rows = drawn<Vorn32f>(random, Kind::Uniform, 9, 3);
    const Built<Vorn32f> built(rows, {0, 0, 0}, 3, 4, 2);
    EXPECT_EQ(built.status, vornStsCdbkSizeReduced);
    ASSERT_NE(built.book, nullptr);
    EXPECT_EQ(built.book->cdbkSize, 1);
    EXPECT_EQ(built.book->mode, 2);
    VornCdbkState* none = nullptr;
    const std::vector<Vorn32f> negative = {1, -0.5f, 1};
    EXPECT_EQ(vornsCdbkInitAlloc_WgtL2_32f(&none, rows[0].data(), negative.data(), 3, 3, 1, 1, 1), vornStsBadArgErr);
    const std::vector<Vorn32f> zeroes = {1, -0.0f, 1};
    EXPECT_EQ(vornsCdbkInitAlloc_WgtL2_32f(&none, rows[0].data(), zeroes.data(), 3, 3, 1, 1, 1), vornStsNoErr);
    EXPECT_EQ(vornsCdbkFree_32f(none), vornStsNoErr);
}

// Fewer than ten cells never pay, and few values leave cells empty.
TEST(Codebook, MakesNoGridThatDoesNotPay) {
    Rows<Vorn32f> few;
    for (int v = 0; v < 200; ++v) few.push_back({static_cast<Vorn32f>(v % 5)});
    const Built<Vorn32f> a(few, ones<Vorn32f>(1), 1, 200, 1);
    ASSERT_NE(a.book, nullptr);
    EXPECT_EQ(a.book->grid, nullptr);
    EXPECT_EQ(a.book->mode, 0);
    Rows<Vorn32f> even;
    for (int v = 0; v < 200; ++v) even.push_back({static_cast<Vorn32f>(v)});
    const Built<Vorn32f> b(even, ones<Vorn32f>(1), 1, 200, 1);
    ASSERT_NE(b.book->grid, nullptr);
    EXPECT_EQ(b.book->mode, 1);
    const Line& line = *static_cast<const Line*>(b.book->grid);
    EXPECT_EQ(line.low, 0.0f);
    EXPECT_EQ(line.high, 199.0f * 1.1f);
    EXPECT_GE(line.cells, 10);
    // Ten cells whose range ends before the largest words do: those are in no list as members, and the last cell has
    // none of them as a neighbour. With an eleventh cell the first would be empty.
    Rows<Vorn32f> shifted;
    for (int v = 0; v < 201; ++v) shifted.push_back({static_cast<Vorn32f>(1050 + 5 * v)});
    expectLikeModel(shifted, ones<Vorn32f>(1), 1, 201, 1);
    const Built<Vorn32f> d(shifted, ones<Vorn32f>(1), 1, 201, 1);
    ASSERT_NE(d.book->grid, nullptr);
    const Line& ten = *static_cast<const Line*>(d.book->grid);
    EXPECT_EQ(ten.cells, 10);
    EXPECT_EQ(listOf(ten.lists, ten.sizes, 11).back(), 176);  // 1930, the nearest below the cell from 1935 on
    // Ten pairs are too few for a grid of squares.
    test::Random random(8);
    const Built<Vorn32f> c(drawn<Vorn32f>(random, Kind::Uniform, 10, 2), ones<Vorn32f>(2), 2, 10, 1);
    EXPECT_EQ(c.book->grid, nullptr);
}

// Vectors that are no numbers, or infinite: an end, and a status that the caller can act on.
template <class Call>
void hardVectors(const Call& call) {
    test::Random random(91);
    const auto hard = test::hardFloats<Vorn32f>();
    for (int turn = 0; turn < 300; ++turn) {
        const int width = static_cast<int>(random.integer(1, 4)), height = static_cast<int>(random.integer(1, 60));
        auto rows = drawn<Vorn32f>(random, kinds[random.integer(0, 5)], height, width);
        for (auto& row : rows) {
            for (Vorn32f& x : row) {
                if (random.integer(0, turn % 20) == 0)
                    x = hard[static_cast<std::size_t>(random.integer(0, static_cast<std::int64_t>(hard.size()) - 1))];
            }
        }
        const int hint = 1 + turn % 3, nCluster = static_cast<int>(random.integer(1, height));
        call(rows, width, nCluster, hint);
    }
}
TEST(Codebook, EndsOnAnyVectors) {
    hardVectors([](const Rows<Vorn32f>& rows, int width, int nCluster, int hint) {
        const Built<Vorn32f> built(rows, ones<Vorn32f>(width), width, nCluster, hint);
        EXPECT_TRUE(built.status == vornStsNoErr || built.status == vornStsCdbkSizeReduced ||
                    built.status == vornStsBadArgErr || built.status == vornStsSizeErr)
            << built.status;
        EXPECT_EQ(built.book != nullptr, built.status >= 0);
        if (hint > 1) expectLikeModel(rows, ones<Vorn32f>(width), width, nCluster, hint);
    });
}
TEST(Codebook, AcceptsWeightsThatAreNoNumbers) {
    test::Random random(12);
    const auto rows = drawn<Vorn32f>(random, Kind::Uniform, 30, 2);
    const Vorn32f none = std::numeric_limits<Vorn32f>::quiet_NaN();
    for (int hint : {1, 2, 3}) expectLikeModel(rows, {1, none}, 2, 5, hint);
}
TEST(Codebook, FailsWhereNoVectorCanSeed) {
    const Vorn32f far = 3e38f;
    const Rows<Vorn32f> rows = {{far}, {-far}, {far}, {-far}};
    const Built<Vorn32f> built(rows, ones<Vorn32f>(1), 1, 2, 2);
    EXPECT_EQ(built.status, vornStsBadArgErr);
    EXPECT_EQ(built.book, nullptr);
}

// The rounding of centres to integers is to nearest in the caller's directed modes too.
TEST(Codebook, RoundsIntegerCentresToNearestInEveryMode) {
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        const Rows<Vorn16s> rows = {{1, -1, 7}, {2, -2, 8}, {2, -2, 8}};
        VornCdbkState* book = nullptr;
        VornStatus status;
        {
            const test::RoundingMode set(mode);
            status = vornsCdbkInitAlloc_L2_16s(&book, std::vector<Vorn16s>{1, -1, 7, 2, -2, 8, 2, -2, 8}.data(), 3, 3,
                                               3, 1, 2);
            EXPECT_EQ(test::RoundingMode::current(), mode);
        }
        ASSERT_EQ(status, vornStsNoErr);
        const auto* word = static_cast<const Vorn16s*>(book->words);
        EXPECT_EQ(word[0], 2);
        EXPECT_EQ(word[1], -2);
        EXPECT_EQ(word[2], 8);
        vornsCdbkFree_16s(book);
    }
}

// Contexts in the caller's memory.

template <class T>
void inTheCallersBlock() {
    test::Random random(4);
    for (int width : {1, 2, 3, 4, 8, 11}) {
        for (int step : {width, width + 3}) {
            for (int height : {1, 2, 9}) {
                const auto rows = drawn<T>(random, Kind::Uniform, height, width);
                const auto src = block(rows, step);
                int size = -1;
                ASSERT_EQ(Calls<T>::getSize(width, step, height, height, 1, &size), vornStsNoErr);
                const int apart = width == 1 || width == 2 || width == 4 ? width : (step + 7) / 8 * 8;
                const int expected = std::is_same_v<T, Vorn32f> ? 4 * (height + width + height * apart) + 176
                                                                : 2 * width + 4 * height + 2 * height * apart + 208;
                EXPECT_EQ(size, expected);
                for (int shift = 0; shift < 40; ++shift) {
                    test::GuardedPages pages(static_cast<std::size_t>(size) + 64);
                    std::byte* memory = test::guardStandsBefore() ? pages.begin() + shift : pages.end() - size - shift;
                    std::memset(pages.begin(), 0xA5, static_cast<std::size_t>(pages.end() - pages.begin()));
                    auto* given = reinterpret_cast<VornCdbkState*>(memory);
                    ASSERT_EQ(Calls<T>::init(given, src.data(), width, step, height, height, 1), vornStsNoErr);
                    int words = 0;
                    EXPECT_EQ(Calls<T>::words(given, &words), vornStsNoErr);
                    EXPECT_EQ(words, height);
                    std::vector<T> copy(static_cast<std::size_t>(height * width));
                    EXPECT_EQ(Calls<T>::copy(given, copy.data(), width), vornStsNoErr);
                    for (int i = 0; i < height; ++i) {
                        EXPECT_TRUE(test::sameBits(&copy[static_cast<std::size_t>(i * width)],
                                                   rows[static_cast<std::size_t>(i)].data(), rows[0].size()));
                    }
                    const VornCdbkState& book = *vorn::vq::recordAt(given);
                    EXPECT_EQ(book.maxDepth, height - 1);
                    EXPECT_EQ(book.vecLen, width);
                    EXPECT_EQ(book.rowStep, apart);
                    EXPECT_EQ(book.hint, 1);
                    EXPECT_EQ(book.mode, 0);
                    EXPECT_EQ(book.root, nullptr);
                    EXPECT_EQ(book.grid, nullptr);
                    EXPECT_EQ(book.indexBits, model::codebook::halvings(height - 1));
                    for (const void* part : {book.words, book.weights, static_cast<void*>(book.scratch)}) {
                        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(part) % 32, 0u);
                    }
                    for (int i = 0; i < width; ++i) EXPECT_EQ(static_cast<const T*>(book.weights)[i], T(1));
                    for (int i = 0; i < height; ++i) book.scratch[i] = 1;
                    EXPECT_LE(reinterpret_cast<std::byte*>(book.scratch + height), memory + size);
                    for (const std::byte* p = pages.begin(); p != pages.end(); ++p) {
                        if (p < memory || p >= memory + size) {
                            ASSERT_EQ(*p, std::byte{0xA5});
                        }
                    }
                }
            }
        }
    }
}
TEST(Codebook, StandsInTheCallersBlock_32f) { inTheCallersBlock<Vorn32f>(); }
TEST(Codebook, StandsInTheCallersBlock_16s) { inTheCallersBlock<Vorn16s>(); }

TEST(Codebook, SizesBeyondAnIntAreErrors) {
    int size = -1;
    EXPECT_EQ(vornsCdbkGetSize_32f(3, 32769, 16383, 16383, 1, &size), vornStsSizeErr);  // 2147942552 bytes
    EXPECT_EQ(vornsCdbkGetSize_32f(3, std::numeric_limits<int>::max(), 1, 1, 1, &size), vornStsSizeErr);
    EXPECT_EQ(vornsCdbkGetSize_16s(std::numeric_limits<int>::max(), std::numeric_limits<int>::max(), 1, 1, 1, &size),
              vornStsSizeErr);
    EXPECT_EQ(vornsCdbkGetSize_32f(3, 3, 16384, 16384, 1, &size), vornStsSizeErr);
    EXPECT_EQ(size, -1);
    EXPECT_EQ(vornsCdbkGetSize_32f(2, 2, 16383, 16383, 1, &size), vornStsNoErr);
    EXPECT_EQ(size, 196780);
    EXPECT_EQ(vornsCdbkGetSize_32f(3, 32768, 16383, 16383, 1, &size), vornStsNoErr);
    EXPECT_EQ(size, 2147418296);
    // The block of such a size cannot be there, so nothing is put into it.
    const Vorn32f x[4] = {};
    const Vorn16s y[4] = {};
    test::Guarded<Vorn8u> block(300);
    auto* placed = reinterpret_cast<VornCdbkState*>(block.data());
    EXPECT_EQ(vornsCdbkInit_L2_32f(placed, x, 3, 1 << 30, 1, 1, 1), vornStsSizeErr);
    EXPECT_EQ(vornsCdbkInit_L2_32f(placed, x, 3, std::numeric_limits<int>::max(), 1, 1, 1), vornStsSizeErr);
    EXPECT_EQ(vornsCdbkInit_L2_16s(placed, y, 3, 1 << 30, 1, 1, 1), vornStsSizeErr);
    VornCdbkState* book = nullptr;
    EXPECT_EQ(vornsCdbkInitAlloc_L2_32f(&book, x, 3, std::numeric_limits<int>::max(), 1, 1, 1), vornStsMemAllocErr);
    EXPECT_EQ(vornsCdbkInitAlloc_L2_32f(&book, x, 3, 1 << 20, 1 << 11, 1, 1), vornStsMemAllocErr);
    EXPECT_EQ(book, nullptr);
}

// Checks.

template <class T>
struct Arguments {
    VornCdbkState* book = nullptr;
    VornCdbkState* marker = nullptr;
    VornCdbkState** ppCdbk = &book;
    std::vector<T> memory = std::vector<T>(64, T(3));
    std::vector<T> some = std::vector<T>(3, T(1));
    std::vector<Vorn64f> room = std::vector<Vorn64f>(400, 0.0);
    VornCdbkState* place = reinterpret_cast<VornCdbkState*>(room.data());
    const T* src = memory.data();
    const T* weights = some.data();
    int width = 3, step = 4, height = 5, nCluster = 5, hint = 1;
    int size = -7;
    int* pSize = &size;
    Arguments() = default;
    Arguments(const Arguments&) : Arguments() {}
};

template <class T>
void checks() {
    using A = Arguments<T>;
    using R = test::Rule<A>;
    const std::function<A()> good = [] { return A(); };
    const R sizes[] = {{"width", vornStsSizeErr, [](A& a) { a.width = 0; }},
                       {"step", vornStsSizeErr, [](A& a) { a.step = 0; }},
                       {"height", vornStsSizeErr, [](A& a) { a.height = 0; }},
                       {"nCluster", vornStsSizeErr, [](A& a) { a.nCluster = 0; }},
                       {"width above step", vornStsSizeErr, [](A& a) { a.width = 3, a.step = 2; }},
                       {"many words", vornStsSizeErr, [](A& a) { a.nCluster = 16384, a.height = 16384; }}};
    std::vector<R> rules = {{"radius", vornStsCdbkFlagErr, [](A& a) { a.hint = 2; }},
                            {"count", vornStsCdbkFlagErr, [](A& a) { a.hint = 3; }},
                            {"pSize", vornStsNullPtrErr, [](A& a) { a.pSize = nullptr; }}};
    rules.insert(rules.end(), std::begin(sizes), std::end(sizes));
    rules.push_back({"fewer words", vornStsSizeErr, [](A& a) { a.nCluster = 4; }});
    test::expectCheckOrder<A>(
        good, [](A& a) { return Calls<T>::getSize(a.width, a.step, a.height, a.nCluster, a.hint, a.pSize); },
        [](A& a) { return a.size == -7; }, rules);

    rules[2] = {"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }};
    rules.insert(rules.begin() + 3, {"pCdbk", vornStsNullPtrErr, [](A& a) { a.place = nullptr; }});
    test::expectCheckOrder<A>(
        good, [](A& a) { return Calls<T>::init(a.place, a.src, a.width, a.step, a.height, a.nCluster, a.hint); },
        [](A& a) { return std::count(a.room.begin(), a.room.end(), 0.0) == 400; }, rules);

    std::vector<R> building = {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"weights", vornStsNullPtrErr, [](A& a) { a.weights = nullptr; }}};
    building.insert(building.end(), std::begin(sizes), std::end(sizes));
    building.push_back({"more words than vectors", vornStsSizeErr, [](A& a) { a.height = 4; }});
    building.push_back({"negative weight", vornStsBadArgErr, [](A& a) { a.some[1] = T(-1); }});
    building.push_back({"hint", vornStsCdbkFlagErr, [](A& a) { a.hint = 4; }});
    building.push_back({"no hint", vornStsCdbkFlagErr, [](A& a) { a.hint = 0; }});
    const auto nothing = [](A& a) { return a.book == nullptr; };
    test::expectCheckOrder<A>(
        good,
        [](A& a) {
            const VornStatus status =
                Calls<T>::buildWeighted(a.ppCdbk, a.src, a.weights, a.width, a.step, a.height, a.nCluster, a.hint);
            if (status >= 0) {
                EXPECT_EQ(Calls<T>::free(a.book), vornStsNoErr);
            }
            return status;
        },
        nothing, building);

    std::vector<R> plain = {{"width", vornStsSizeErr, [](A& a) { a.width = 0; }},
                            {"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }}};
    plain.insert(plain.end(), std::begin(sizes) + 1, std::end(sizes));
    plain.push_back({"hint", vornStsCdbkFlagErr, [](A& a) { a.hint = 4; }});
    test::expectCheckOrder<A>(
        good,
        [](A& a) {
            const VornStatus status = Calls<T>::build(a.ppCdbk, a.src, a.width, a.step, a.height, a.nCluster, a.hint);
            if (status >= 0) {
                EXPECT_EQ(Calls<T>::free(a.book), vornStsNoErr);
            }
            return status;
        },
        nothing, plain);

    const Rows<T> rows = {{1, 2, 3}, {4, 5, 6}};
    const Built<T> built(rows, ones<T>(3), 3, 2, 1);
    T dst[8];
    int words = -7;
    EXPECT_EQ(Calls<T>::words(nullptr, &words), vornStsNullPtrErr);
    EXPECT_EQ(Calls<T>::words(built.book, nullptr), vornStsNullPtrErr);
    EXPECT_EQ(Calls<T>::copy(nullptr, dst, 0), vornStsNullPtrErr);
    EXPECT_EQ(Calls<T>::copy(built.book, nullptr, 0), vornStsNullPtrErr);
    EXPECT_EQ(Calls<T>::copy(built.book, dst, 0), vornStsSizeErr);
    EXPECT_EQ(Calls<T>::copy(built.book, dst, 2), vornStsSizeErr);
    EXPECT_EQ(Calls<T>::copy(built.book, dst, -3), vornStsSizeErr);
    EXPECT_EQ(Calls<T>::copy(built.book, dst, 3), vornStsNoErr);
    EXPECT_EQ(words, -7);

    EXPECT_EQ(Calls<T>::free(nullptr), vornStsNullPtrErr);
    for (int hint : {0, 4, -1}) {
        built.book->hint = hint;
        EXPECT_EQ(Calls<T>::free(built.book), vornStsCdbkModeErr);
    }
    built.book->hint = 1;
    void* const held = built.book->words;
    built.book->words = nullptr;
    EXPECT_EQ(Calls<T>::free(built.book), vornStsNullPtrErr);
    built.book->words = held;
}
TEST(Codebook, ChecksInOrder_32f) { checks<Vorn32f>(); }
TEST(Codebook, ChecksInOrder_16s) { checks<Vorn16s>(); }

// Every allocation failed once: the status, nothing stored, nothing kept.
template <class T>
void allocations() {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    test::Random random(66);
    const struct {
        int width, height, nCluster, hint;
    } cases[] = {{3, 20, 20, 1}, {1, 300, 300, 1}, {2, 300, 300, 1}, {3, 40, 7, 2}, {5, 40, 2, 3}, {3, 4, 4, 9}};
    for (const auto& c : cases) {
        const auto rows = drawn<T>(random, Kind::Uniform, c.height, c.width);
        std::vector<T> src;
        for (const auto& row : rows) src.insert(src.end(), row.begin(), row.end());
        const auto build = [&](VornCdbkState** book) {
            return Calls<T>::build(book, src.data(), c.width, c.width, c.height, c.nCluster, c.hint);
        };
        int calls;
        {
            const test::FailAllocation count(0);
            VornCdbkState* book = nullptr;
            const VornStatus status = build(&book);
            EXPECT_EQ(status, c.hint == 9 ? vornStsCdbkFlagErr : vornStsNoErr);
            calls = count.calls();
            if (book != nullptr) Calls<T>::free(book);
            EXPECT_EQ(count.outstanding(), 0);
        }
        EXPECT_GE(calls, 2);
        for (int n = 1; n <= calls; ++n) {
            const test::FailAllocation fail(n);
            VornCdbkState* book = nullptr;
            EXPECT_EQ(build(&book), vornStsMemAllocErr) << "allocation " << n << " of " << calls;
            EXPECT_EQ(book, nullptr);
            EXPECT_EQ(fail.outstanding(), 0);
        }
    }
}
TEST(Codebook, SurvivesFailedAllocations_32f) { allocations<Vorn32f>(); }
TEST(Codebook, SurvivesFailedAllocations_16s) { allocations<Vorn16s>(); }

// Alignment of the vectors changes no bit.
TEST(Codebook, IsTheSameForVectorsAtAnyAddress) {
    test::Random random(44);
    const auto rows = drawn<Vorn32f>(random, Kind::Clouds, 50, 5);
    std::vector<Vorn32f> flat;
    for (const auto& row : rows) flat.insert(flat.end(), row.begin(), row.end());
    std::vector<Vorn32f> expected(10 * 5);
    for (std::size_t bytes = 0; bytes < 64; bytes += 4) {
        test::Offset<Vorn32f> src(flat.size(), bytes);
        src.assign(flat);
        VornCdbkState* book = nullptr;
        ASSERT_EQ(vornsCdbkInitAlloc_L2_32f(&book, src.data(), 5, 5, 50, 10, 2), vornStsNoErr);
        std::vector<Vorn32f> words(expected.size());
        EXPECT_EQ(vornsGetCodebook_32f(book, words.data(), 5), vornStsNoErr);
        if (bytes == 0) expected = words;
        EXPECT_TRUE(test::sameBits(words, expected));
        vornsCdbkFree_32f(book);
    }
}

}  // namespace
