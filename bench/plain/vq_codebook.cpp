#include "plain/vq_codebook.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace plain {
namespace {

template <class T>
float distance(const T* a, const float* b, int width) {
    float sum = 0;
    for (int i = 0; i < width; ++i) sum += (a[i] - b[i]) * (a[i] - b[i]);
    return sum;
}

template <class T>
int grow(const T* src, int height, int width, int words, float* dst) {
    std::vector<int> own(height, 0), count(words, 0), members;
    std::vector<float> nearest(height), radius(words, 0.0f);
    const auto recentre = [&](int n) {
        std::fill_n(dst, n * width, 0.0f);
        std::fill_n(count.begin(), n, 0);
        for (int v = 0; v < height; ++v) {
            for (int i = 0; i < width; ++i) dst[own[v] * width + i] += src[v * width + i];
            ++count[own[v]];
        }
        for (int j = 0; j < n; ++j) {
            for (int i = 0; i < width; ++i) dst[j * width + i] /= static_cast<float>(count[j]);
        }
    };
    recentre(1);
    for (int v = 0; v < height; ++v) {
        nearest[v] = distance(src + v * width, dst, width);
        radius[0] = std::max(radius[0], nearest[v]);
    }
    int rounds = 0;
    for (int k = 1; k < words; ++k) {
        const int c = static_cast<int>(std::max_element(radius.begin(), radius.begin() + k) - radius.begin());
        members.clear();
        for (int v = 0; v < height; ++v) {
            if (own[v] == c) members.push_back(v);
        }
        std::nth_element(members.begin(), members.begin() + members.size() / 2, members.end(),
                         [&](int a, int b) { return nearest[a] < nearest[b]; });
        for (std::size_t m = 0; m < members.size() / 2; ++m) own[members[m]] = k;
        float former = 0;
        for (int round = 0; round < 20; ++round, ++rounds) {
            recentre(k + 1);
            float total = 0;
            for (int v = 0; v < height; ++v) {
                float best = std::numeric_limits<float>::max();
                int winner = own[v];
                for (int j = 0; j <= k; ++j) {
                    const float d = distance(src + v * width, dst + j * width, width);
                    if (d < best) best = d, winner = j;
                }
                if (winner != own[v] && count[own[v]] > 1) {
                    --count[own[v]];
                    ++count[winner];
                    own[v] = winner;
                }
                nearest[v] = best;
                total += best;
            }
            if (std::fabs(total - former) <= total * 0.0001f) break;
            former = total;
        }
        std::fill_n(radius.begin(), k + 1, 0.0f);
        for (int v = 0; v < height; ++v) radius[own[v]] = std::max(radius[own[v]], nearest[v]);
    }
    return rounds;
}

}  // namespace

int growCodebook(const float* src, int height, int width, int words, float* dst) {
    return grow(src, height, width, words, dst);
}
int growCodebook(const short* src, int height, int width, int words, float* dst) {
    return grow(src, height, width, words, dst);
}

}  // namespace plain
