#include "plain/vq_search.h"

#include <algorithm>
#include <cmath>

namespace plain {
namespace {

template <class T>
float squaredDistance(const T* a, const T* b, int width) {
    float sum = 0;
    for (int i = 0; i < width; ++i) {
        const float d = static_cast<float>(a[i]) - static_cast<float>(b[i]);
        sum += d * d;
    }
    return sum;
}

template <class T>
void nearest(const T* src, int width, int height, const T* words, int count, int* index, float* distance) {
    for (int v = 0; v < height; ++v) {
        int best = -1;
        float least = 3.4028235e38f;
        for (int w = 0; w < count; ++w) {
            const float d = squaredDistance(src + v * width, words + w * width, width);
            if (d < least) least = d, best = w;
        }
        index[v] = best;
        distance[v] = std::sqrt(least);
    }
}

}  // namespace

void nearestWords(const float* src, int width, int height, const float* words, int count, int* index, float* distance) {
    nearest(src, width, height, words, count, index, distance);
}

void nearestWords(const short* src, int width, int height, const short* words, int count, int* index, float* distance) {
    nearest(src, width, height, words, count, index, distance);
}

void wordsInOrder(const float* src, int width, const float* words, int count, int most, int* index, float* distance,
                  float* scratch) {
    for (int w = 0; w < count; ++w) {
        index[w] = w;
        scratch[w] = squaredDistance(src, words + w * width, width);
    }
    std::partial_sort(index, index + most, index + count, [=](int a, int b) { return scratch[a] < scratch[b]; });
    for (int k = 0; k < most; ++k) distance[k] = std::sqrt(scratch[index[k]]);
}

}  // namespace plain
