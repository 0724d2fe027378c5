// Line spectral frequencies, step by step in singles: the polynomials, the grid, the search, and the way back.
// Intermediate singles stand in variables of their own.
#pragma once

#include <algorithm>
#include <vector>

namespace model {

struct LinePolynomials {
    std::vector<float> p, q;
};

inline LinePolynomials linePolynomials(const std::vector<float>& a) {
    const int order = static_cast<int>(a.size());
    const int nP = order % 2 == 0 ? order / 2 : (order + 1) / 2, nQ = order % 2 == 0 ? order / 2 : (order - 1) / 2;
    std::vector<float> p(nP + 1), q(nQ + 1);
    p[0] = q[0] = 1;
    if (order % 2 == 0) {
        for (int i = 0; i < nP; ++i) {
            const float less = a[i] - p[i];
            p[i + 1] = less + a[order - 1 - i];
            const float more = a[i] + q[i];
            q[i + 1] = more - a[order - 1 - i];
        }
    } else {
        for (int i = 1; i <= nQ; ++i) {
            const float from = i == 1 ? a[order - 1] : q[i - 2] + a[order - i];
            q[i] = from - a[i - 1];
        }
        for (int i = 1; i < nP; ++i) {
            const float negative = 0.0f - a[i - 1];
            p[i] = negative - a[order - i];
        }
        p[nP] = -2 * a[nP - 1];
    }
    return {p, q};
}

inline float lineValue(const std::vector<float>& c, float x) {
    const std::size_t m = c.size() - 1;
    if (m == 0) return 0;
    if (m == 1) {
        const float sum = c[1] + x;
        return sum + x;
    }
    const float twice = 2 * x;
    float b2 = 1, b1 = c[1] + twice;
    for (std::size_t k = 2; k <= m - 1; ++k) {
        const float product = twice * b1;
        const float t = product - b2;
        b2 = b1;
        b1 = t + c[k];
    }
    const float half = 0.5f * c[m];
    const float less = half - b2;
    const float product = b1 * x;
    return less + product;
}

inline std::vector<float> lineGrid(int nGrid) {
    std::vector<float> x(nGrid + 4);
    const float g = 2.0f / static_cast<float>(nGrid);
    float base = 1.0f + g;
    for (int first = 0; first <= nGrid; first += 4) {
        for (int j = 0; j < 4; ++j) {
            const float below = static_cast<float>(j + 1) * g;
            if (first + j < static_cast<int>(x.size())) x[first + j] = base - below;
        }
        base = x[std::min<int>(first + 3, static_cast<int>(x.size()) - 1)];
    }
    x.resize(nGrid + 1);
    x[nGrid] = -1.0f;
    return x;
}

// As many roots as were found.
inline std::vector<float> linesOfPrediction(const std::vector<float>& a, int nGrid, int nDiv) {
    const LinePolynomials c = linePolynomials(a);
    const std::vector<float> x = lineGrid(nGrid);
    const float g = 2.0f / static_cast<float>(nGrid);
    const std::vector<float>* active = &c.p;
    std::vector<float> roots;
    float xa = x[0], fa = lineValue(*active, xa);
    int i = 0;
    while (roots.size() < a.size() && i < nGrid) {
        float xb = x[i + 1], fb = lineValue(*active, xb);
        if (fa * fb > 0) {
            xa = xb, fa = fb, ++i;
            continue;
        }
        if (nGrid >= 4 && i < nGrid - 5) {
            float s = g / 4;
            for (long left = nDiv; left > 0; left -= 2) {
                const float start = xa;
                for (int times = 1; times <= 3; ++times) {
                    const float below = static_cast<float>(times) * s;
                    const float point = start - below, value = lineValue(*active, point);
                    if (!(fa * value > 0)) {
                        xb = point, fb = value;
                        break;
                    }
                    xa = point, fa = value;
                }
                s = s / 4;
            }
        } else {
            for (int left = nDiv; left > 0; --left) {
                const float sum = xb + xa, mid = sum * 0.5f, value = lineValue(*active, mid);
                if (fb * value > 0) {
                    xb = mid, fb = value;
                } else {
                    xa = mid, fa = value;
                }
            }
        }
        const float width = xa - xb, height = fa - fb, product = fb * width;
        const float quotient = product / height;
        const float root = xb - quotient;
        roots.push_back(root);
        active = active == &c.p ? &c.q : &c.p;
        xa = root, fa = lineValue(*active, root);
    }
    return roots;
}

// The coefficients of the product of 1 - 2 x z + z^2 over the given lines up to the middle one.
inline std::vector<float> lineProduct(const std::vector<float>& x) {
    std::vector<float> c(x.size() + 1);
    c[0] = 1;
    for (std::size_t m = 1; m <= x.size(); ++m) {
        const float g = -2 * x[m - 1];
        if (m == 1) {
            c[1] = g;
            continue;
        }
        const std::vector<float> old = c;
        const float top = g * old[m - 1];
        c[m] = top + 2 * old[m - 2];
        for (std::size_t j = m - 1; j >= 2; --j) {
            const float product = g * old[j - 1];
            const float sum = product + old[j];
            c[j] = sum + old[j - 2];
        }
        c[1] = old[1] + g;
    }
    return c;
}

inline std::vector<float> predictionOfLines(const std::vector<float>& x) {
    const std::size_t order = x.size();
    std::vector<float> even, odd;
    for (std::size_t i = 0; i < order; ++i) (i % 2 == 0 ? even : odd).push_back(x[i]);
    std::vector<float> p = lineProduct(even), q = lineProduct(odd), a(order);
    if (order % 2 == 0) {
        for (std::size_t i = order / 2; i >= 1; --i) {
            p[i] = p[i] + p[i - 1];
            q[i] = q[i] - q[i - 1];
        }
        for (std::size_t i = 1; i <= order / 2; ++i) {
            const float sum = p[i] + q[i], difference = p[i] - q[i];
            a[i - 1] = sum * 0.5f;
            a[order - i] = difference * 0.5f;
        }
        return a;
    }
    // The middle coefficient is of P alone. Below and above it stand the halves of the sum and of the difference of P
    // and of Q times 1 - z^2.
    const std::size_t nP = (order + 1) / 2, nQ = (order - 1) / 2;
    if (order == 1) return x;
    for (std::size_t i = 1; i <= nQ; ++i) {
        float sum = p[i] + q[i], difference = p[i] - q[i];
        if (i >= 2) {
            sum = sum - q[i - 2];
            if (i == 2) {
                const float more = p[2] + 1.0f;
                difference = more - q[2];
            } else {
                difference = difference + q[i - 2];
            }
        }
        a[i - 1] = sum * -0.5f;
        a[order - i] = difference * -0.5f;
    }
    a[nP - 1] = p[nP] * -0.5f;
    return a;
}

}  // namespace model
