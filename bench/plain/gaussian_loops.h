// The plain loops of the Gaussian scores, as anybody would write them. Included twice: see gaussian.h.
template <class T, class Sum>
static Sum squaredDistance(const T* x, const T* m, const T* v, int len) {
    Sum sum = 0;
    for (int j = 0; j < len; ++j) {
        const Sum d = static_cast<Sum>(x[j]) - static_cast<Sum>(m[j]);
        sum += d * d * static_cast<Sum>(v[j]);
    }
    return sum;
}
template <class T, class Sum>
static void gaussians(const T* mean, const T* var, int step, const T* src, int len, Sum* srcDst, int height) {
    for (int g = 0; g < height; ++g) {
        const long row = static_cast<long>(g) * step;
        srcDst[g] -= Sum(0.5) * squaredDistance<T, Sum>(src, mean + row, var + row, len);
    }
}

void multiMix(const float* mean, const float* var, int step, const float* src, int len, float* srcDst, int height) {
    gaussians(mean, var, step, src, len, srcDst, height);
}
void multiMix(const double* mean, const double* var, int step, const double* src, int len, double* srcDst, int height) {
    gaussians(mean, var, step, src, len, srcDst, height);
}
void multiMix(const short* mean, const short* var, int step, const short* src, int len, float* srcDst, int height) {
    gaussians(mean, var, step, src, len, srcDst, height);
}

// Low precision: saturated differences, squares without their lowest bit, sums that wrap in 32 bits.
static int lowScore(const short* x, const short* m, const short* v, int len) {
    unsigned sum = 0;
    for (int j = 0; j < len; ++j) {
        int d = x[j] - m[j];
        d = d < -32768 ? -32768 : d > 32767 ? 32767 : d;
        sum -= static_cast<unsigned>((d * d) >> 1) * static_cast<unsigned>(v[j]);
    }
    return static_cast<int>(sum);
}
void multiMixLow(const short* mean, const short* var, int step, const short* src, int len, int* srcDst, int height) {
    for (int g = 0; g < height; ++g) {
        const long row = static_cast<long>(g) * step;
        srcDst[g] += lowScore(src, mean + row, var + row, len);
    }
}

template <class T>
static float frameScore(const T* src, const T* mean, const T* var, int len, float val) {
    return val - 0.5f * squaredDistance<T, float>(src, mean, var, len);
}
void frames(const float* src, int step, const float* mean, const float* var, int len, float* result, int height,
            float val) {
    for (int i = 0; i < height; ++i) result[i] = frameScore(src + static_cast<long>(i) * step, mean, var, len, val);
}
void frames(const short* src, int step, const short* mean, const short* var, int len, float* result, int height,
            float val) {
    for (int i = 0; i < height; ++i) result[i] = frameScore(src + static_cast<long>(i) * step, mean, var, len, val);
}
void framesMax(const float* src, int step, const float* mean, const float* var, int len, float* srcDst, int height,
               float val) {
    for (int i = 0; i < height; ++i) {
        const float score = frameScore(src + static_cast<long>(i) * step, mean, var, len, val);
        if (score > srcDst[i]) srcDst[i] = score;
    }
}
void framesLow(const short* src, int step, const short* mean, const short* var, int len, int* result, int height,
               int val) {
    for (int i = 0; i < height; ++i) result[i] = val + lowScore(src + static_cast<long>(i) * step, mean, var, len);
}

float mixture(const float* src, const float* mean, const float* var, int height, int step, int len, const float* val) {
    float total = 0;
    for (int g = 0; g < height; ++g) {
        const long row = static_cast<long>(g) * step;
        const float score = val[g] - 0.5f * squaredDistance<float, float>(src, mean + row, var + row, len);
        const float high = g == 0 || score > total ? score : total, low = high == score ? total : score;
        total = g == 0 ? score : high + std::log1p(std::exp(low - high));
    }
    return total;
}
