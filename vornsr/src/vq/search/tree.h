// The way down a tree of clusters, and the walk among near leaves that mends a wrong turn.
#pragma once

#include <bit>
#include <cstddef>

#include "frame/checks.h"
#include "simd/simd.h"
#include "vornsr/scoring.h"
#include "vq/codebook/state.h"
#include "vq/search/distances.h"

namespace vorn::vq {

// How near a query is to centroids: four of them at a time where the way divides, or all that a leaf knows. below(a, b)
// says that a is nearer than b by more than the tolerance. Both return false if a score cannot be had.

template <class T>
const T* centroidOf(const Cluster& cluster) {
    return static_cast<const T*>(cluster.centroid);
}

// By distance.
template <class T>
struct ByDistance {
    Query query;

    bool four(const Cluster* const (&node)[4], Vorn32f (&near)[4]) const {
        store(near, fourDistances(query, centroidOf<T>(*node[0]), centroidOf<T>(*node[1]), centroidOf<T>(*node[2]),
                                  centroidOf<T>(*node[3])));
        return true;
    }
    bool one(const Cluster& leaf, Vorn32f& near) const {
        near = squaredDistance(query.x, centroidOf<T>(leaf), query.width);
        return true;
    }
    static bool below(Vorn32f a, Vorn32f b) { return isBelow(a, b); }
    // Ties go to the right.
    static bool goesLeft(const Vorn32f (&d)[4]) {
        return (below(d[0], d[2]) && below(d[0], d[3])) || (below(d[1], d[2]) && below(d[1], d[3]));
    }
};

// By the scores of Gaussians around the centroids, which are minus half the weighted distances: the larger is nearer,
// and the rules are turned round.
template <class T>
struct ByScore {
    const T* x;
    const T* weight;
    int width;

    bool four(const Cluster* const (&node)[4], Vorn32f (&near)[4]) const {
        const T* const rows[] = {centroidOf<T>(*node[0]), centroidOf<T>(*node[1]), centroidOf<T>(*node[2]),
                                 centroidOf<T>(*node[3])};
        return scores(rows, near);
    }
    bool one(const Cluster& leaf, Vorn32f& near) const { return score(centroidOf<T>(leaf), near); }
    static bool below(Vorn32f a, Vorn32f b) { return b * tolerance < a; }
    static bool goesLeft(const Vorn32f (&s)[4]) {
        return (below(s[0], s[2]) && below(s[0], s[3])) || (below(s[1], s[2]) && below(s[1], s[3]));
    }

private:
    int scaleFactor() const { return std::bit_width(static_cast<unsigned>(width)); }

    bool scores(const Vorn32f* const (&rows)[4], Vorn32f (&near)[4]) const {
        return vornsLogGauss_32f_D2L(rows, x, weight, width, near, 4, 0) == vornStsNoErr;
    }
    bool scores(const Vorn16s* const (&rows)[4], Vorn32f (&near)[4]) const {
        Vorn32s integers[4];
        const VornStatus status = vornsLogGauss_16s32s_D2LSfs(rows, x, weight, width, integers, 4, 0, scaleFactor());
        store(near, toFloat(load<i32x4>(integers)));
        return status == vornStsNoErr;
    }
    bool score(const Vorn32f* centroid, Vorn32f& near) const {
        return vornsLogGaussSingle_32f(centroid, x, weight, width, &near, 0) == vornStsNoErr;
    }
    bool score(const Vorn16s* centroid, Vorn32f& near) const {
        Vorn32s integer;
        const VornStatus status =
            vornsLogGaussSingle_16s32s_Sfs(centroid, x, weight, width, &integer, 0, scaleFactor());
        near = static_cast<Vorn32f>(integer);
        return status == vornStsNoErr;
    }
};

// Where the way divides, the grandchildren decide; a child that is a leaf stands for both of its places. Null if a
// score cannot be had.
template <class Nearness>
const Cluster* descend(const Cluster* node, const Nearness& nearness) {
    while (!node->isLeaf) {
        const Cluster *left = node->left, *right = node->right;
        const Cluster* const grandchildren[4] = {left->isLeaf ? left : left->left, left->isLeaf ? left : left->right,
                                                 right->isLeaf ? right : right->left,
                                                 right->isLeaf ? right : right->right};
        Vorn32f near[4];
        if (!nearness.four(grandchildren, near)) return nullptr;
        node = Nearness::goesLeft(near) ? left : right;
    }
    return node;
}

// Goes to the first of a leaf's neighbours that is clearly nearer, and on from there, until none is. Every step comes
// nearer by more than the tolerance, so that the walk ends on any data.
template <class Nearness>
const Cluster* walk(const Cluster* leaf, const Nearness& nearness) {
    Vorn32f d;
    if (!nearness.one(*leaf, d)) return nullptr;
    for (int first = 0; first < leaf->nearCount;) {
        const int count = leaf->nearCount - first;
        Cluster* const* near = leaf->near + first;
        const Cluster* const four[4] = {near[0], near[count > 1 ? 1 : 0], near[count > 2 ? 2 : 0],
                                        near[count > 3 ? 3 : 0]};
        Vorn32f distance[4];
        if (!nearness.four(four, distance)) return nullptr;
        int k = 0;
        const int most = count < 4 ? count : 4;
        while (k < most && !(Nearness::below(distance[k], d) && !nearlyEqual(distance[k], d))) ++k;
        if (k < most) {
            leaf = four[k];
            d = distance[k];
            first = 0;
        } else {
            first += most;
        }
    }
    return leaf;
}

// Null if a score cannot be had.
template <class Nearness>
const Cluster* searchTree(const VornCdbkState& book, const Nearness& nearness) {
    const Cluster* leaf = descend<Nearness>(book.root, nearness);
    return leaf == nullptr ? nullptr : walk(leaf, nearness);
}

}  // namespace vorn::vq
