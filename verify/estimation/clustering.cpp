// Clustering of Gaussians.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

// Ordinary values in the first turns; in the last one, any bit patterns in every seventh element.
template <class T>
std::vector<T> drawn(Source& source, std::size_t len, bool hard, double low, double high) {
    auto x = source.values<T>(len, low, high);
    if (hard) {
        const auto patterns = source.patterns<T>(len);
        for (std::size_t i = 3; i < len; i += 7) x[i] = patterns[i];
    }
    return x;
}
// The first element of a block stands on 16 bytes, the second does not.
constexpr struct {
    int shift;
    bool hard;
} turns[] = {{0, false}, {1, false}, {0, true}};

template <auto accumulate, class T>
void statistics(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (const auto& turn : turns) {
            const std::size_t room = static_cast<std::size_t>(len) + 1;
            const auto mean = drawn<T>(source, room, turn.hard, -5.0, 5.0),
                       var = drawn<T>(source, room, turn.hard, 0.1, 9.0);
            std::vector<T> sum(room), sqr(room);
            digest.add(accumulate(mean.data(), var.data() + turn.shift, sum.data(), sqr.data(), len, T(12.5)));
            digest.add(sum);
            digest.add(sqr);
        }
    }
}

template <auto compute, class T>
void likelihoods(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (double occ : {0.0, -1.0, 1.0, 1000.5}) {
            for (const auto& turn : turns) {
                const auto room = static_cast<std::size_t>(len) + 1;
                const auto sum = drawn<T>(source, room, turn.hard, -5.0, 5.0);
                auto sqr = drawn<T>(source, room, turn.hard, 30.0, 90.0);
                Vorn64f dst = 0;
                digest.add(compute(sum.data() + turn.shift, sqr.data(), len, &dst, static_cast<T>(occ)));
                digest.add(dst);
            }
        }
    }
}

template <class T>
struct Pair {
    std::vector<T> mean1, var1, mean2, var2;
    Pair(Source& source, int len, bool hard)
        : mean1(drawn<T>(source, len, false, -3.0, 3.0)),
          var1(drawn<T>(source, len, hard, 0.2, 5.0)),
          mean2(drawn<T>(source, len, hard, -3.0, 3.0)),
          var2(drawn<T>(source, len, false, 0.2, 5.0)) {}
};

template <auto merge, class T>
void merges(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (const auto& turn : turns) {
            const Pair<T> pair(source, len, turn.hard);
            std::vector<T> mean(pair.mean1.size()), var(mean.size());
            T gconst = 0;
            digest.add(merge(pair.mean1.data(), pair.var1.data(), pair.mean2.data(), pair.var2.data(), mean.data(),
                             var.data(), len, &gconst, T(3.5), T(1.25)));
            digest.add(mean);
            digest.add(var);
            digest.add(gconst);
        }
    }
}

template <auto distance, class T>
void distances(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (const auto& turn : turns) {
            const Pair<T> pair(source, len, turn.hard);
            T dst = 0;
            digest.add(distance(pair.mean1.data(), pair.var1.data(), pair.mean2.data(), pair.var2.data(), len, &dst,
                                T(3.5), T(40.25), T(1.25), T(-7.125)));
            digest.add(dst);
        }
    }
}

template <auto split, class T>
void splits(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (const auto& turn : turns) {
            const std::size_t room = static_cast<std::size_t>(len) + 1;
            auto up = drawn<T>(source, room, turn.hard, -3.0, 3.0);
            const auto var = drawn<T>(source, room, turn.hard, 0.2, 5.0);
            std::vector<T> down(room), dstVar(room);
            digest.add(split(up.data() + turn.shift, var.data(), down.data(), dstVar.data(), len, T(0.2)));
            digest.add(up);
            digest.add(down);
            digest.add(dstVar);
        }
    }
}

// clang-format off
const Workload workloads[] = {
    {"vornsDcsClustLAccumulate_32f", statistics<vornsDcsClustLAccumulate_32f, Vorn32f>},
    {"vornsDcsClustLAccumulate_64f", statistics<vornsDcsClustLAccumulate_64f, Vorn64f>},
    {"vornsDcsClustLAccumulate_DirectVar_32f", statistics<vornsDcsClustLAccumulate_DirectVar_32f, Vorn32f>},
    {"vornsDcsClustLAccumulate_DirectVar_64f", statistics<vornsDcsClustLAccumulate_DirectVar_64f, Vorn64f>},
    {"vornsDcsClustLCompute_32f64f", likelihoods<vornsDcsClustLCompute_32f64f, Vorn32f>},
    {"vornsDcsClustLCompute_64f", likelihoods<vornsDcsClustLCompute_64f, Vorn64f>},
    {"vornsGaussianMerge_32f", merges<vornsGaussianMerge_32f, Vorn32f>},
    {"vornsGaussianMerge_64f", merges<vornsGaussianMerge_64f, Vorn64f>},
    {"vornsGaussianDist_32f", distances<vornsGaussianDist_32f, Vorn32f>},
    {"vornsGaussianDist_64f", distances<vornsGaussianDist_64f, Vorn64f>},
    {"vornsGaussianSplit_32f", splits<vornsGaussianSplit_32f, Vorn32f>},
    {"vornsGaussianSplit_64f", splits<vornsGaussianSplit_64f, Vorn64f>},
};
// clang-format on

}  // namespace

Family clusteringWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
