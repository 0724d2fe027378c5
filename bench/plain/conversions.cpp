#include "plain/conversions.h"

#include <cmath>
#include <vector>

namespace plain {

void cepstrumOfPrediction(const float* __restrict a, float* __restrict c, int n) {
    for (int i = 0; i < n; ++i) {
        float acc = 0;
        for (int j = 0; j < i; ++j) acc += static_cast<float>(i - j) * a[j] * c[i - 1 - j];
        c[i] = -(acc / static_cast<float>(i + 1) + a[i]);
    }
}

void predictionOfCepstrum(const float* __restrict c, float* __restrict a, int n) {
    for (int i = 0; i < n; ++i) {
        float acc = 0;
        for (int j = 0; j < i; ++j) acc += static_cast<float>(i - j) * c[i - 1 - j] * a[j];
        a[i] = -(acc / static_cast<float>(i + 1) + c[i]);
    }
}

namespace {
constexpr int most = 1024;
}

bool reflectionsOfPrediction(const float* __restrict a, float* __restrict dst, int n) {
    float w[most], t[most];
    for (int i = 0; i < n; ++i) w[i] = a[i];
    for (int m = n - 1; m >= 0; --m) {
        const float k = -w[m], d = 1 / (1 - k * k);
        if (k == 1 || k == -1 || std::isnan(k)) return false;
        dst[m] = k;
        for (int i = 0; i < m; ++i) t[i] = (w[m - 1 - i] * k + w[i]) * d;
        for (int i = 0; i < m; ++i) w[i] = t[i];
    }
    return true;
}

void predictionOfReflections(const float* __restrict src, float* __restrict a, int n) {
    float t[most];
    for (int i = 0; i < n; ++i) {
        const float k = src[i];
        for (int j = 0; j < i; ++j) t[j] = a[j] - a[i - 1 - j] * k;
        for (int j = 0; j < i; ++j) a[j] = t[j];
        a[i] = -k;
    }
}

namespace {

float chebyshev(const float* c, int m, float x) {
    if (m == 1) return c[1] + x + x;
    float b2 = 1, b1 = c[1] + 2 * x;
    for (int k = 2; k < m; ++k) {
        const float t = 2 * x * b1 - b2;
        b2 = b1;
        b1 = t + c[k];
    }
    return 0.5f * c[m] - b2 + b1 * x;
}

}  // namespace

int linesOfPrediction(const float* a, float* dst, int order, int nGrid, int nDiv) {
    float p[32], q[32];
    const int nP = (order + 1) / 2, nQ = order / 2;
    p[0] = q[0] = 1;
    if (nP == nQ) {
        for (int i = 0; i < nP; ++i) {
            p[i + 1] = a[i] - p[i] + a[order - 1 - i];
            q[i + 1] = a[i] + q[i] - a[order - 1 - i];
        }
    } else {
        if (nQ > 0) q[1] = a[order - 1] - a[0];
        for (int i = 2; i <= nQ; ++i) q[i] = q[i - 2] + a[order - i] - a[i - 1];
        for (int i = 1; i < nP; ++i) p[i] = -a[i - 1] - a[order - i];
        p[nP] = -2 * a[nP - 1];
    }
    const float* c = p;
    int m = nP, roots = 0;
    const float g = 2.0f / static_cast<float>(nGrid);
    float xa = 1, fa = chebyshev(c, m, xa);
    for (int i = 0; i < nGrid && roots < order;) {
        float xb = 1 - static_cast<float>(i + 1) * g, fb = chebyshev(c, m, xb);
        if (fa * fb > 0) {
            xa = xb, fa = fb, ++i;
            continue;
        }
        for (int d = 0; d < nDiv; ++d) {
            const float mid = (xa + xb) * 0.5f, f = chebyshev(c, m, mid);
            if (fb * f > 0) {
                xb = mid, fb = f;
            } else {
                xa = mid, fa = f;
            }
        }
        const float root = xb - fb * (xa - xb) / (fa - fb);
        dst[roots++] = root;
        c = c == p ? q : p;
        m = c == p ? nP : nQ;
        xa = root, fa = chebyshev(c, m, root);
    }
    return roots;
}

namespace {

void expand(const float* x, int degree, float* c) {
    c[0] = 1;
    c[1] = degree > 0 ? -2 * x[0] : 0;
    for (int m = 2; m <= degree; ++m) {
        const float g = -2 * x[2 * m - 2];
        c[m] = g * c[m - 1] + 2 * c[m - 2];
        for (int j = m - 1; j >= 2; --j) c[j] += g * c[j - 1] + c[j - 2];
        c[1] += g;
    }
}

}  // namespace

void predictionOfLines(const float* x, float* dst, int order) {
    float p[33], q[33];
    const int nP = (order + 1) / 2, nQ = order / 2;
    expand(x, nP, p);
    expand(x + 1, nQ, q);
    if (nP == nQ) {
        for (int i = nP; i >= 1; --i) {
            p[i] += p[i - 1];
            q[i] -= q[i - 1];
        }
        for (int i = 1; i <= nP; ++i) {
            dst[i - 1] = (p[i] + q[i]) * 0.5f;
            dst[order - i] = (p[i] - q[i]) * 0.5f;
        }
    } else {
        dst[0] = (p[1] + q[1]) * -0.5f;
        for (int i = 2; i < nP; ++i) dst[i - 1] = (p[i] + q[i] - q[i - 2]) * -0.5f;
        dst[nP - 1] = p[nP] * -0.5f;
        dst[order - 1] = (p[1] - q[1]) * -0.5f;
        for (int i = 2; i <= nQ; ++i) dst[order - i] = (p[i] - q[i] + q[i - 2]) * -0.5f;
    }
}

void envelope(const float* a, int len, const float* cosines, const float* sines, float* dst, int n, float val) {
    for (int i = 0; i < n; ++i) {
        float re = i == 0 ? -val : 0, im = 0;
        for (int k = 0; k < len; ++k) {
            re += a[k] * cosines[i * len + k];
            im += a[k] * sines[i * len + k];
        }
        dst[i] = 1 / std::sqrt(re * re + im * im);
    }
}

}  // namespace plain
