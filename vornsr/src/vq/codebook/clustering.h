// A tree of clusters, grown by splitting one cluster after the other in two, each split followed by rounds of k-means
// over all the clusters so far (Linde, Buzo, Gray 1980).
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "frame/checks.h"
#include "frame/memory.h"
#include "vq/codebook/centres.h"
#include "vq/codebook/near.h"
#include "vq/codebook/panels.h"
#include "vq/codebook/tolerance.h"
#include "vq/codebook/tournament.h"

namespace vorn::vq {

// The nodes in the order of their making, children behind their parents, with the lists of neighbours and the centres
// of the inner nodes. One block, whose first node is the root.
template <class T>
class Tree {
public:
    Tree(int leaves, int width) : leaves_(leaves), width_(width), block_(nearOffset() + nearBytes() + innerBytes()) {}
    explicit operator bool() const { return static_cast<bool>(block_); }

    Cluster& operator[](int i) const { return static_cast<Cluster*>(block_.get())[i]; }
    Cluster* newLeaf(int depth) {
        Cluster& node = (*this)[count_++];
        node = Cluster{};
        node.isLeaf = 1;
        node.depth = depth;
        return &node;
    }
    int count() const { return count_; }
    Cluster** neighbours() const { return reinterpret_cast<Cluster**>(bytes() + nearOffset()); }
    T* innerCentre(int i) const {
        return reinterpret_cast<T*>(bytes() + nearOffset() + nearBytes()) + i * std::ptrdiff_t{width_};
    }
    Cluster* release() { return static_cast<Cluster*>(block_.release()); }

private:
    char* bytes() const { return static_cast<char*>(block_.get()); }
    std::int64_t nearOffset() const { return (2 * leaves_ - 1) * static_cast<std::int64_t>(sizeof(Cluster)); }
    std::int64_t nearBytes() const {
        return static_cast<std::int64_t>(leaves_) * neighboursOf(leaves_) * static_cast<std::int64_t>(sizeof(Cluster*));
    }
    std::int64_t innerBytes() const {
        return static_cast<std::int64_t>(leaves_ - 1) * width_ * static_cast<std::int64_t>(sizeof(T));
    }

    std::int64_t leaves_;
    int width_, count_ = 0;
    MixedBlock block_;
};

// The centre of an inner node: each child's centre as often as its count says, the left one's first, over the sum of
// the counts. A child that is an inner node counts what it had when it was split.
inline void centreOfChildren(const Cluster& node, Vorn32f* centre, int width) {
    const auto* left = static_cast<const Vorn32f*>(node.left->centroid);
    const auto* right = static_cast<const Vorn32f*>(node.right->centroid);
    constexpr int lanes = f32xN::lanes;
    for (int i = 0; i < width; i += lanes) {
        const int n = std::min(width - i, lanes);
        f32xN sum = splat<f32xN>(0.0f);
        const f32xN l = loadFirst<f32xN>(left + i, n), r = loadFirst<f32xN>(right + i, n);
        for (int k = 0; k < node.left->count; ++k) sum = sum + l;
        for (int k = 0; k < node.right->count; ++k) sum = sum + r;
        storeFirst(centre + i, sum, n);
    }
    const std::int64_t count = static_cast<std::int64_t>(node.left->count) + node.right->count;
    vornsDivC_32f_I(static_cast<Vorn32f>(count), centre, width);
}
// The sums of integers are exact in double, so a product is the sum.
inline void centreOfChildren(const Cluster& node, Vorn16s* centre, int width) {
    const auto* left = static_cast<const Vorn16s*>(node.left->centroid);
    const auto* right = static_cast<const Vorn16s*>(node.right->centroid);
    const Vorn64f nLeft = node.left->count, nRight = node.right->count;
    for (int i = 0; i < width; ++i) {
        centre[i] = truncatedTo16((left[i] * nLeft + right[i] * nRight) / (nLeft + nRight));
    }
}

template <class T>
class Clustering {
public:
    Clustering(VornCdbkState& book, Vectors<T> vectors, int clusters)
        : book_(book),
          vectors_(vectors),
          tree_(clusters, vectors.width),
          leaves_(clusters),
          assignment_(vectors.count),
          member_(vectors.count),
          place_(clusters),
          moved_(clusters),
          distance_(vectors.count),
          weights_(vectors.width),
          tournament_(vectors.count),
          panels_(vectors.count, vectors.width),
          centres_(book, clusters) {}
    explicit operator bool() const {
        return tree_ && leaves_ && assignment_ && member_ && place_ && moved_ && distance_ && weights_ && tournament_ &&
               panels_ && centres_;
    }

    // The tree with at most so many leaves becomes the context's.
    VornStatus grow(int clusters) {
        for (int i = 0; i < vectors_.width; ++i) weights_[i] = static_cast<Vorn32f>(static_cast<T*>(book_.weights)[i]);
        panels_.fill(vectors_.base, vectors_.step, vectors_.count);
        VornStatus status = vornStsNoErr;
        makeRoot();
        int n = 1;
        for (; n < clusters; ++n) {
            const int chosen = book_.hint == largestRadius ? widest(n) : fullest(n);
            if (chosen < 0) {
                status = vornStsCdbkSizeReduced;
                break;
            }
            VORN_CHECK(split(chosen, n));
        }
        VORN_CHECK(finish(n));
        return status;
    }

private:
    static constexpr int mostRounds = 20, mostSteps = 1000;

    const Vorn32f* weights() const { return (book_.mode & isWeighted) != 0 ? weights_.get() : nullptr; }
    Vorn32f distanceBetween(int i, int j) const { return distanceOf(centres_[i], j); }
    Vorn32f distanceFrom(int v, int j) const { return distanceOf(vectors_[v], j); }
    template <class A>
    Vorn32f distanceOf(const A* vector, int j) const {
        return weights() == nullptr ? squaredDistance(vector, centres_[j], vectors_.width)
                                    : squaredDistance(vector, centres_[j], weights(), vectors_.width);
    }

    void makeRoot() {
        Cluster* root = leaves_[0] = tree_.newLeaf(1);
        root->count = vectors_.count;
        if (vectors_.count == 1) {
            centres_.takeOnly(vectors_[0]);
            return;
        }
        for (int v = 0; v < vectors_.count; ++v) assignment_[v] = 0;
        sortMembers(1);
        centres_.sum(0, vectors_, member_.get(), vectors_.count);
        centres_.divideAll(vectors_.count);
        const Vorn64f nothing = centres_.nothing();
        Vorn32f most = 0;
        for (int v = 0; v < vectors_.count; ++v) {
            const Vorn32f d = distanceFrom(v, 0);
            const bool counts = !(d <= nothing);
            distance_[v] = counts ? d : 0;
            if (counts && clearlyGreater(d, most)) most = d;
        }
        root->radius = most + most;
    }

    // The cluster to split next, the first of near-equals; -1 where none has a radius.
    int widest(int n) const {
        int chosen = -1;
        Vorn32f best = 0;
        for (int j = 0; j < n; ++j) {
            if (clearlyGreater(leaves_[j]->radius, best)) best = leaves_[j]->radius, chosen = j;
        }
        return chosen;
    }
    int fullest(int n) const {
        int chosen = -1;
        Vorn32f best = 0;
        for (int j = 0; j < n; ++j) {
            const auto count = static_cast<Vorn32f>(leaves_[j]->count);
            if (leaves_[j]->radius > 0 && clearlyGreater(count, best)) best = count, chosen = j;
        }
        return chosen;
    }

    // Cluster c becomes an inner node with two leaves: its closer half is cluster k, its outer half stays c.
    VornStatus split(int c, int k) {
        Cluster* parent = leaves_[c];
        VORN_CHECK(atLeast(2, parent->count));
        parent->isLeaf = 0;
        parent->left = leaves_[k] = tree_.newLeaf(parent->depth + 1);
        parent->right = leaves_[c] = tree_.newLeaf(parent->depth + 1);
        leaves_[c]->count = parent->count;
        VORN_CHECK(seed(c, k, parent->count / 2));
        Vorn32f former = 0;
        for (int round = 1; round <= mostRounds; ++round) {
            recentre(k + 1);
            if (centres_.alike(distanceBetween(c, k))) VORN_CHECK(separate(c, k, parent->count));
            const Vorn32f total = reassign(k + 1);
            const Vorn64f change = static_cast<Vorn64f>(total) - former;
            if (change <= total * equality && change >= total * -equality) break;
            former = total;
        }
        measureRadii(k + 1);
        return vornStsNoErr;
    }

    // So many of the vectors of c that lie closest to its centre go to k.
    VornStatus seed(int c, int k, int count) {
        int members = 0;
        for (int v = 0; v < vectors_.count; ++v) {
            if (assignment_[v] == c) member_[members++] = v;
        }
        tournament_.enter(members, [&](int i) { return distance_[member_[i]]; });
        for (; count > 0; --count) {
            const int picked = tournament_.pick();
            if (picked < 0) return vornStsBadArgErr;
            assignment_[member_[picked]] = k;
            --leaves_[c]->count;
            ++leaves_[k]->count;
        }
        moved_[c] = moved_[k] = 1;
        return vornStsNoErr;
    }

    // The means of the clusters, their vectors added in rising number. The sum of a cluster that has kept its vectors
    // would be the one that it has.
    void recentre(int n) {
        sortMembers(n);
        const int* members = member_.get();
        for (int j = 0; j < n; ++j) {
            const int count = leaves_[j]->count;
            if (moved_[j]) {
                centres_.sum(j, vectors_, members, count);
                centres_.divide(j, count);
            }
            moved_[j] = 0;
            members += count;
        }
    }
    // The numbers of the first cluster's vectors, then those of the second, and so on.
    void sortMembers(int n) {
        int next = 0;
        for (int j = 0; j < n; ++j) {
            place_[j] = next;
            next += leaves_[j]->count;
        }
        for (int v = 0; v < vectors_.count; ++v) member_[place_[assignment_[v]]++] = v;
    }

    // Two clusters with one centre: k's moves towards one of their vectors, by a hundredth more at each step, until the
    // distances of their vectors from the two differ. A vector that has been reached gives way to the next.
    VornStatus separate(int c, int k, int count) {
        const auto isMember = [&](int v) { return assignment_[v] == c || assignment_[v] == k; };
        int v = 0;
        for (int s = 1; s <= mostSteps; ++s) {
            while (v < vectors_.count && !(isMember(v) && !centres_.reached(distanceFrom(v, k)))) ++v;
            if (v == vectors_.count) return vornStsBadArgErr;
            centres_.moveTowards(k, vectors_[v], s);
            moved_[k] = 1;
            Vorn32f spread = 0;
            for (int u = 0; u < vectors_.count; ++u) {
                if (!isMember(u)) continue;
                const Vorn32f a = distanceFrom(u, k), b = distanceFrom(u, c);
                spread += a > 0 ? std::fabs(a - b) / a : std::fabs(a - b);
            }
            if (!(spread <= centres_.leastSpread(count))) return vornStsNoErr;
        }
        return vornStsBadArgErr;
    }

    // Each vector goes to the nearest cluster, but none leaves a cluster empty. The sum of the distances.
    Vorn32f reassign(int n) {
        alignas(64) Vorn32f nearest[panelLanes];
        alignas(64) std::int32_t winner[panelLanes];
        Vorn32f total = 0;
        for (int first = 0; first < vectors_.count;) {
            const Vorn32f* panel = panels_[first / panelLanes];
            if (weights() == nullptr) {
                nearestOf<false>(panel, centres_[0], centres_.step(), n, nullptr, vectors_.width, nearest, winner);
            } else {
                nearestOf<true>(panel, centres_[0], centres_.step(), n, weights(), vectors_.width, nearest, winner);
            }
            const int lanes = std::min(vectors_.count - first, panelLanes);
            for (int lane = 0; lane < lanes; ++lane) {
                distance_[first + lane] = move(first + lane, winner[lane], nearest[lane]);
                total += distance_[first + lane];
            }
            first += lanes;
        }
        return total;
    }
    Vorn32f move(int v, int winner, Vorn32f distance) {
        int& own = assignment_[v];
        if (winner == own) return distance;
        if (winner < 0 || leaves_[own]->count < 2) return distanceFrom(v, own);
        --leaves_[own]->count;
        ++leaves_[winner]->count;
        moved_[own] = moved_[winner] = 1;
        own = winner;
        return distance;
    }

    void measureRadii(int n) {
        for (int j = 0; j < n; ++j) leaves_[j]->radius = 0;
        for (int v = 0; v < vectors_.count; ++v) {
            Vorn32f& radius = leaves_[assignment_[v]]->radius;
            if (isBelow(radius, distance_[v])) radius = distance_[v];
        }
        for (int j = 0; j < n; ++j) leaves_[j]->radius += leaves_[j]->radius;
    }

    // Words, neighbours and the centres of the inner nodes.
    VornStatus finish(int n) {
        const int t = neighboursOf(n);
        for (int j = 0; j < n; ++j) {
            Cluster& leaf = *leaves_[j];
            leaf.index = j;
            leaf.centroid = static_cast<T*>(book_.words) + j * static_cast<std::ptrdiff_t>(book_.rowStep);
            leaf.nearCount = t;
            leaf.near = t > 0 ? tree_.neighbours() + j * static_cast<std::ptrdiff_t>(t) : nullptr;
            book_.maxDepth = std::max(book_.maxDepth, leaf.depth);
        }
        int inner = 0;
        for (int i = tree_.count() - 1; i >= 0; --i) {
            Cluster& node = tree_[i];
            if (node.isLeaf != 0) continue;
            T* centre = tree_.innerCentre(inner++);
            centreOfChildren(node, centre, vectors_.width);
            node.centroid = centre;
        }
        if (t > 0) {
            VORN_CHECK(linkNeighbours(leaves_.get(), n, centres_[0], centres_.step(), weights(), vectors_.width));
        }
        book_.cdbkSize = n;
        book_.root = tree_.release();
        return vornStsNoErr;
    }

    VornCdbkState& book_;
    Vectors<T> vectors_;
    Tree<T> tree_;
    Scratch<Cluster*> leaves_;
    Scratch<int> assignment_, member_, place_;
    Scratch<Vorn8u> moved_;  // whether a cluster has gained or lost a vector since its centre was made
    Scratch<Vorn32f> distance_, weights_;
    Tournament tournament_;
    Panels panels_;
    Centres<T> centres_;
};

}  // namespace vorn::vq
