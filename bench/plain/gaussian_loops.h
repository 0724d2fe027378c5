// The plain loops of the Gaussian scores, as anybody would write them. Included twice: see gaussian.h.
template <class T>
static void multiMixOf(const T* mean, const T* var, int step, const T* src, int len, T* srcDst, int height) {
    for (int g = 0; g < height; ++g) {
        const T* m = mean + static_cast<long>(g) * step;
        const T* v = var + static_cast<long>(g) * step;
        T sum = 0;
        for (int j = 0; j < len; ++j) sum += (src[j] - m[j]) * (src[j] - m[j]) * v[j];
        srcDst[g] -= T(0.5) * sum;
    }
}

void multiMix(const float* mean, const float* var, int step, const float* src, int len, float* srcDst, int height) {
    multiMixOf(mean, var, step, src, len, srcDst, height);
}

float mixture(const float* src, const float* mean, const float* var, int height, int step, int len, const float* val) {
    float total = 0;
    for (int g = 0; g < height; ++g) {
        const float* m = mean + static_cast<long>(g) * step;
        const float* v = var + static_cast<long>(g) * step;
        float sum = 0;
        for (int j = 0; j < len; ++j) sum += (src[j] - m[j]) * (src[j] - m[j]) * v[j];
        const float score = val[g] - 0.5f * sum;
        const float high = g == 0 || score > total ? score : total, low = high == score ? total : score;
        total = g == 0 ? score : high + std::log1p(std::exp(low - high));
    }
    return total;
}
