// Codebooks by plain loops: words as given with their grids, and trees of clusters.
#pragma once

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "vornsr/types.h"

namespace model::codebook {

template <class T>
struct Node {
    float radius = 0;
    std::vector<T> centroid;
    int index = 0, count = 0, isLeaf = 1, depth = 1, left = -1, right = -1;
    std::vector<int> near;  // numbers of clusters
};

struct Grid {
    bool exists = false;
    int across = 0, down = 0;  // a line has no rows
    float cellWidthX = 0, cellWidthY = 0, lowX = 0, highX = 0, lowY = 0, highY = 0;
    std::vector<std::vector<int>> lists;
};

template <class T>
struct Book {
    VornStatus status = vornStsNoErr;
    int maxDepth = 0, cdbkSize = 0, rowStep = 0, mode = 0, indexBits = 0;
    std::vector<std::vector<T>> words;
    std::vector<Node<T>> nodes;  // the root first
    Grid grid;
    std::vector<double> totals;  // the sum of distances at the end of each split
};

inline bool greater(float a, float b) { return double(a) > double(b) * 1.000001; }
inline bool less(float a, float b) { return !(double(a) * 1.000001 >= double(b)); }
inline bool equal(float a, float b) {
    return std::fabs(double(a) - double(b)) <= 0.0001 * std::fabs(double(std::max(a, b)));
}
inline bool wins(float candidate, float best) { return double(candidate) * 1.000001 < double(best); }

inline int halvings(int x) {
    int n = 0;
    for (; x > 0; x /= 2) ++n;
    return n;
}

inline int nearbyCount(int n) {
    if (n < 3) return 0;
    int t0 = static_cast<int>(std::log(double(n)) / std::log(2.0));
    if (t0 < 5) t0 = 4;
    return std::pow(2.0, t0) < n ? t0 + 1 : t0;
}

template <class T>
class Builder {
public:
    static constexpr bool integer = std::is_same_v<T, Vorn16s>;
    using Real = std::conditional_t<integer, double, float>;

    Builder(const std::vector<std::vector<T>>& vectors, const std::vector<T>& weights, int step, int nCluster, int hint)
        : src(vectors), w(weights), width(static_cast<int>(weights.size())), height(static_cast<int>(vectors.size())) {
        const int multiple = integer ? 8 : 4;
        book.rowStep = (step + multiple - 1) / multiple * multiple;
        if (hint == 1 && (width == 1 || width == 2 || width == 4 || (!integer && width == 8))) book.rowStep = width;
        for (T x : w) {
            if (x != T(1)) book.mode = 2;
        }
        if (hint == 1) {
            direct(nCluster);
        } else {
            tree(nCluster, hint);
        }
        if (book.status >= 0) book.indexBits = halvings(book.cdbkSize - 1);
    }

    Book<T> book;

private:
    float dist(const T* a, const T* b) const {
        float sum = 0;
        for (int i = 0; i < width; ++i) {
            const float d = float(a[i]) - float(b[i]);
            const float square = d * d;
            const float term = square * float(w[i]);
            sum = sum + term;
        }
        return sum;
    }
    float dist(int v, int cluster) const { return dist(src[v].data(), node(cluster).centroid.data()); }

    // The grids.

    void direct(int nCluster) {
        book.words = src;
        book.cdbkSize = height;
        book.maxDepth = height - 1;
        if (nCluster != height) book.status = vornStsCdbkSizeReduced;
        if (width == 1) line();
        if (width == 2 && height > 10) square();
    }

    struct Limits {
        float lo, hi, low, high;
    };
    Limits limits(int i) const {
        Limits l{float(src[0][i]), float(src[0][i]), 0, 0};
        for (const auto& v : src) {
            if (float(v[i]) < l.lo) l.lo = float(v[i]);
            if (float(v[i]) > l.hi) l.hi = float(v[i]);
        }
        l.low = l.lo > 0 ? l.lo * 0.9f : l.lo * 1.1f;
        l.high = l.hi > 0 ? l.hi * 1.1f : l.hi * 0.9f;
        return l;
    }
    static float cellWidth(const Limits& l, int cells) {
        return float(std::fabs(double(l.hi) - double(l.lo)) * 1.1) / float(cells);
    }
    static bool improves(float cost, float next) {
        if (integer) return greater(cost - next, float(cost * 0.05));
        return double(cost) - double(next) > cost * 0.05;
    }

    static int toInt(float x) { return x >= -2147483648.0 && x < 2147483648.0 ? static_cast<int>(x) : INT_MIN; }
    float lineCost(const Limits& l, int cells) const {
        if (std::fabs(double(l.hi) - double(l.lo)) < 1e-05) return FLT_MAX;
        std::vector<bool> marked(cells);
        for (const auto& v : src) {
            const int cell = toInt((float(v[0]) - l.low) / cellWidth(l, cells));
            if (cell >= 0 && cell < cells) marked[cell] = true;
        }
        for (bool mark : marked) {
            if (!mark) return FLT_MAX;
        }
        return 2.0f * float(height) / float(cells);
    }
    void line() {
        const Limits l = limits(0);
        int cells = 4;
        while (improves(lineCost(l, cells), lineCost(l, cells + 1))) ++cells;
        const float cost = lineCost(l, cells), limit = float(height / 5.0);
        if (!less(cost, limit) && !equal(cost, limit)) return;
        Grid& g = book.grid;
        g.exists = true;
        g.across = cells;
        g.cellWidthX = cellWidth(l, cells);
        g.lowX = l.low;
        g.highX = l.high;
        g.lists.resize(cells + 2);
        for (int c = 0; c < cells; ++c) {
            const float lower = l.low + float(c) * g.cellWidthX, upper = l.low + float(c + 1) * g.cellWidthX;
            int below = -1, above = -1;
            for (int v = 0; v < height; ++v) {
                const float x = float(src[v][0]);
                const int own = toInt((x - l.low) / g.cellWidthX);
                if (own == c) g.lists[c + 1].push_back(v);
                if (own < c && (below < 0 || lower - x < lower - float(src[below][0]))) below = v;
                if (own > c && (above < 0 || x - upper < float(src[above][0]) - upper)) above = v;
            }
            if (c > 0) g.lists[c + 1].push_back(below);
            if (c < cells - 1) g.lists[c + 1].push_back(above);
        }
        g.lists[0] = g.lists[1];
        g.lists[cells + 1] = g.lists[cells];
        book.mode |= 1;
    }

    // The smallest and the largest distance from the border of a rectangle.
    void minMaxDist(int v, float left, float right, float top, float bottom, float& smallest, float& largest) const {
        const float x = float(src[v][0]), y = float(src[v][1]);
        float d[8];
        int n = 0;
        const auto across = [&](float to) { return (x - to) * (x - to) * float(w[0]); };
        const auto down = [&](float to) { return (y - to) * (y - to) * float(w[1]); };
        for (float cx : {left, right}) {
            for (float cy : {top, bottom}) d[n++] = across(cx) + down(cy);
        }
        if (bottom <= y && y <= top) d[n++] = across(left), d[n++] = across(right);
        if (left <= x && x <= right) d[n++] = down(top), d[n++] = down(bottom);
        smallest = largest = d[0];
        for (int i = 1; i < n; ++i) {
            if (d[i] < smallest) smallest = d[i];
            if (d[i] > largest) largest = d[i];
        }
    }
    std::vector<int> candidates(const Limits& x, const Limits& y, int column, int row, int across, int down) const {
        const float cx = cellWidth(x, across), cy = cellWidth(y, down);
        const float left = x.low + float(column) * cx, right = x.low + float(column + 1) * cx;
        const float top = y.high - float(row) * cy, bottom = y.high - float(row + 1) * cy;
        float m = FLT_MAX;
        std::vector<float> smallest(height), largest(height);
        for (int v = 0; v < height; ++v) {
            minMaxDist(v, left, right, top, bottom, smallest[v], largest[v]);
            if (largest[v] < m) m = largest[v];
        }
        std::vector<int> list;
        for (int v = 0; v < height; ++v) {
            if (less(smallest[v], m) || equal(smallest[v], m)) list.push_back(v);
        }
        return list;
    }
    float squareCost(const Limits& x, const Limits& y, int across, int down) const {
        if (equal(x.lo, x.hi) || equal(y.lo, y.hi)) return FLT_MAX;
        std::size_t sum = 0;
        for (int row = 0; row < down; ++row) {
            for (int column = 0; column < across; ++column) sum += candidates(x, y, column, row, across, down).size();
        }
        return float(sum) / float(across * down);
    }
    void square() {
        const Limits x = limits(0), y = limits(1);
        int across = 4, down = 4;
        float cost = squareCost(x, y, across, down);
        for (;;) {
            const float first = squareCost(x, y, across + 1, down), second = squareCost(x, y, across, down + 1);
            if (less(first, second)) {
                if (!improves(cost, first)) break;
                ++across, cost = first;
            } else {
                if (!improves(cost, second)) break;
                ++down, cost = second;
            }
        }
        const float limit = float(height / 10.0);
        if (!less(cost, limit) && !equal(cost, limit)) return;
        Grid& g = book.grid;
        g = {true, across, down, cellWidth(x, across), cellWidth(y, down), x.low, x.high, y.low, y.high, {}};
        const int stride = across + 2;
        g.lists.resize(static_cast<std::size_t>(stride) * (down + 2));
        const auto at = [&](int column, int row) -> std::vector<int>& { return g.lists[row * stride + column]; };
        for (int row = 1; row <= down; ++row) {
            for (int column = 1; column <= across; ++column) {
                at(column, row) = candidates(x, y, column - 1, row - 1, across, down);
            }
        }
        const auto join = [](std::vector<int>& into, const std::vector<int>& more) {
            into.insert(into.end(), more.begin(), more.end());
            std::sort(into.begin(), into.end());
            into.erase(std::unique(into.begin(), into.end()), into.end());
        };
        std::vector<int> topmost, lowest, leftmost, rightmost;
        for (int column = 1; column <= across; ++column) join(topmost, at(column, 1)), join(lowest, at(column, down));
        for (int row = 1; row <= down; ++row) join(leftmost, at(1, row)), join(rightmost, at(across, row));
        for (int column = 1; column <= across; ++column) at(column, 0) = topmost, at(column, down + 1) = lowest;
        for (int row = 1; row <= down; ++row) at(0, row) = leftmost, at(across + 1, row) = rightmost;
        const auto corner = [&](int column, int row, const std::vector<int>& a, const std::vector<int>& b) {
            at(column, row) = a;
            join(at(column, row), b);
        };
        corner(0, 0, topmost, leftmost);
        corner(across + 1, 0, topmost, rightmost);
        corner(0, down + 1, lowest, leftmost);
        corner(across + 1, down + 1, lowest, rightmost);
        book.mode |= 1;
    }

    // The tree.

    Node<T>& node(int cluster) { return book.nodes[clusters[cluster]]; }
    const Node<T>& node(int cluster) const { return book.nodes[clusters[cluster]]; }

    void divide(std::vector<Real>& sum, double count) const {
        if (integer) {
            for (Real& x : sum) x = static_cast<Real>(x / count);
        } else {
            const Real reciprocal = 1 / static_cast<Real>(count);
            for (Real& x : sum) x = x * reciprocal;
        }
    }
    std::vector<T> rounded(const std::vector<Real>& mean, bool throughSingle) const {
        std::vector<T> centroid(mean.size());
        for (std::size_t i = 0; i < mean.size(); ++i) {
            if (!integer) {
                centroid[i] = static_cast<T>(mean[i]);
            } else {
                const double x = throughSingle ? static_cast<float>(mean[i]) : mean[i];
                double whole = std::floor(x);  // to nearest, ties to even
                const double rest = x - whole;
                if (rest > 0.5 || (rest == 0.5 && std::fmod(whole, 2.0) != 0)) whole += 1;
                centroid[i] = static_cast<T>(std::clamp(whole, -32768.0, 32767.0));
            }
        }
        return centroid;
    }
    static T truncated(Real x) {
        if (!integer) return static_cast<T>(x);
        return static_cast<T>(std::clamp(std::trunc(double(x)), -32768.0, 32767.0));
    }

    void tree(int nCluster, int hint) {
        first();
        int n = 1;
        for (; n < nCluster; ++n) {
            int chosen = -1;
            float best = 0;
            for (int j = 0; j < n; ++j) {
                if (hint == 3 && !(node(j).radius > 0)) continue;
                const float merit = hint == 2 ? node(j).radius : static_cast<float>(node(j).count);
                if (greater(merit, best)) best = merit, chosen = j;
            }
            if (chosen < 0) {
                book.status = vornStsCdbkSizeReduced;
                break;
            }
            const VornStatus status = split(chosen, n);
            if (status != vornStsNoErr) {
                book.status = status;
                return;
            }
        }
        book.cdbkSize = n;
        for (int i = 0; i < n; ++i) {
            node(i).index = i;
            book.words.push_back(node(i).centroid);
            book.maxDepth = std::max(book.maxDepth, node(i).depth);
        }
        recalculate(0);
        nearest();
    }

    void first() {
        book.nodes.emplace_back();
        clusters = {0};
        assignment.assign(height, 0);
        distances.assign(height, 0);
        Node<T>& root = node(0);
        root.count = height;
        if (height == 1) {
            root.centroid = src[0];
            return;
        }
        std::vector<Real> sum(width, 0);
        for (const auto& v : src) {
            for (int i = 0; i < width; ++i) sum[i] += static_cast<Real>(v[i]);
        }
        divide(sum, height);
        root.centroid = rounded(sum, true);
        double threshold = -1;
        if (!integer) {
            const double min = *std::min_element(sum.begin(), sum.end()),
                         max = *std::max_element(sum.begin(), sum.end());
            const float e = static_cast<float>(std::max(-min * 1e-06, max * 1e-06));
            threshold = e * 1.000001;
        }
        float most = 0;
        for (int v = 0; v < height; ++v) {
            const float d = dist(v, 0);
            if (d <= threshold) continue;
            distances[v] = d;
            if (d > most * 1.000001) most = d;
        }
        root.radius = most + most;
    }

    VornStatus split(int c, int k) {
        const int parent = clusters[c], count = book.nodes[parent].count;
        if (count < 2) return vornStsSizeErr;
        book.nodes[parent].isLeaf = 0;
        for (int child = 0; child < 2; ++child) {
            Node<T> leaf;
            leaf.depth = book.nodes[parent].depth + 1;
            book.nodes.push_back(leaf);
        }
        const int last = static_cast<int>(book.nodes.size());
        clusters.push_back(last - 2);
        clusters[c] = last - 1;
        book.nodes[parent].left = last - 2;
        book.nodes[parent].right = last - 1;
        for (int i = 0; i < count / 2; ++i) {
            float best = FLT_MAX;
            int picked = -1;
            for (int v = 0; v < height; ++v) {
                if (assignment[v] == c && wins(distances[v], best)) best = distances[v], picked = v;
            }
            if (picked < 0) return vornStsBadArgErr;
            assignment[picked] = k;
            distances[picked] = FLT_MAX;
        }
        float former = 0, total = 0;
        for (int round = 0; round < 20; ++round) {
            shadows.assign(k + 1, std::vector<Real>(width, 0));
            for (int j = 0; j <= k; ++j) node(j).count = 0;
            for (int v = 0; v < height; ++v) {
                for (int i = 0; i < width; ++i) shadows[assignment[v]][i] += static_cast<Real>(src[v][i]);
                ++node(assignment[v]).count;
            }
            for (int j = 0; j <= k; ++j) {
                divide(shadows[j], node(j).count);
                node(j).centroid = rounded(shadows[j], false);
            }
            const float apart = dist(node(c).centroid.data(), node(k).centroid.data());
            if (integer ? apart == 0 : apart <= 1e-06) {
                if (!separate(c, k, count)) return vornStsBadArgErr;
            }
            total = 0;
            for (int v = 0; v < height; ++v) {
                int winner = -1;
                float best = FLT_MAX;
                for (int j = 0; j <= k; ++j) {
                    const float d = dist(v, j);
                    if (wins(d, best)) best = d, winner = j;
                }
                const int present = assignment[v];
                if (winner == present) {
                    distances[v] = best;
                } else if (winner < 0 || node(present).count < 2) {
                    distances[v] = dist(v, present);
                } else {
                    --node(present).count;
                    ++node(winner).count;
                    assignment[v] = winner;
                    distances[v] = best;
                }
                total += distances[v];
            }
            const double change = double(total) - double(former);
            if (change <= total * 0.0001 && change >= total * -0.0001) break;
            former = total;
        }
        book.totals.push_back(total);
        for (int j = 0; j <= k; ++j) node(j).radius = 0;
        for (int v = 0; v < height; ++v) {
            float& radius = node(assignment[v]).radius;
            if (wins(radius, distances[v])) radius = distances[v];
        }
        for (int j = 0; j <= k; ++j) node(j).radius *= 2;
        return vornStsNoErr;
    }

    bool separate(int c, int k, int count) {
        const auto member = [&](int v) { return assignment[v] == c || assignment[v] == k; };
        int v = 0;
        for (int s = 1;; ++s) {
            while (v < height && !(member(v) && (integer ? dist(v, k) != 0 : dist(v, k) >= 1e-05))) ++v;
            if (v == height || s > 1000) return false;
            for (int i = 0; i < width; ++i) {
                Real& centroid = shadows[k][i];
                const Real u = (centroid + static_cast<Real>(src[v][i])) / 2 - centroid;
                centroid += u * (static_cast<Real>(s) / 100);
                node(k).centroid[i] = truncated(centroid);
            }
            float sum = 0;
            for (int u = 0; u < height; ++u) {
                if (!member(u)) continue;
                const float a = dist(u, k), b = dist(u, c);
                sum += a > 0 ? std::fabs(a - b) / a : std::fabs(a - b);
            }
            if (integer ? sum > 0 : !(sum <= count * 1e-06)) return true;
        }
    }

    void recalculate(int at) {
        if (book.nodes[at].isLeaf) return;
        const int children[2] = {book.nodes[at].left, book.nodes[at].right};
        std::vector<Real> sum(width, 0);
        double count = 0;
        for (int child : children) recalculate(child);
        for (int child : children) {
            for (int n = 0; n < book.nodes[child].count; ++n) {
                for (int i = 0; i < width; ++i) sum[i] += static_cast<Real>(book.nodes[child].centroid[i]);
            }
            count += book.nodes[child].count;
        }
        divide(sum, count);
        book.nodes[at].centroid.resize(width);
        for (int i = 0; i < width; ++i) book.nodes[at].centroid[i] = truncated(sum[i]);
    }

    void nearest() {
        const int n = book.cdbkSize, t = nearbyCount(n);
        for (int i = 0; t > 0 && i < n; ++i) {
            float p = 0;
            int q = n;
            for (int slot = 0; slot < t; ++slot) {
                float best = FLT_MAX;
                int b = -1;
                for (int j = 0; j < n; ++j) {
                    if (j == i) continue;
                    const float d = dist(node(i).centroid.data(), node(j).centroid.data());
                    if (wins(p, d) && wins(d, best)) best = d, b = j;
                    if (equal(d, p) && j > q) q = n, best = d, b = j;
                }
                if (b == -1) b = q;
                if (b == n) b = i;
                node(i).near.push_back(b);
                p = best;
                q = b;
            }
        }
    }

    const std::vector<std::vector<T>>& src;
    const std::vector<T>& w;
    int width, height;
    std::vector<int> clusters, assignment;
    std::vector<float> distances;
    std::vector<std::vector<Real>> shadows;
};

template <class T>
Book<T> build(const std::vector<std::vector<T>>& vectors, const std::vector<T>& weights, int step, int nCluster,
              int hint) {
    return Builder<T>(vectors, weights, step, nCluster, hint).book;
}

}  // namespace model::codebook
