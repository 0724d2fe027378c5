// A plain model of the singular value decomposition and of its row and column primitives, one operation at a time in
// the promised order.
#pragma once

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "vornsr/types.h"

namespace model {

// Row r begins at r * step; what lies behind the columns of a row is carried along.
struct Matrix {
    Matrix(int rowCount, int rowStep) : step(rowStep), elements(static_cast<std::size_t>(rowCount) * rowStep) {}
    double& operator()(int row, int column) { return elements[static_cast<std::size_t>(row) * step + column]; }
    double operator()(int row, int column) const { return elements[static_cast<std::size_t>(row) * step + column]; }

    int step;
    std::vector<double> elements;
};

inline double sumColumnAbs(const Matrix& a, int height, int column, int row) {
    double sum = 0.0;
    for (int r = row; r < height; ++r) sum += std::fabs(a(r, column));
    return sum;
}
inline double sumColumnSqr(Matrix& a, int height, int column, int row, double val) {
    double sum = 0.0;
    for (int r = row; r < height; ++r) {
        a(r, column) *= val;
        sum += a(r, column) * a(r, column);
    }
    return sum;
}
inline double sumRowAbs(const double* x, int len) {
    double sum = 0.0;
    for (int i = 0; i < len; ++i) sum += std::fabs(x[i]);
    return sum;
}
inline double sumRowSqr(double* x, int len, double val) {
    double sum = 0.0;
    for (int i = 0; i < len; ++i) {
        x[i] *= val;
        sum += x[i] * x[i];
    }
    return sum;
}
inline double dotProdColumn(const Matrix& a, int height, int column1, int column2, int row) {
    double sum = 0.0;
    for (int r = row; r < height; ++r) sum += a(r, column1) * a(r, column2);
    return sum;
}
inline void addMulColumn(Matrix& a, int height, int column1, int column2, int row, double val) {
    for (int r = row; r < height; ++r) a(r, column2) += val * a(r, column1);
}
inline void mulColumn(Matrix& a, int height, int column, int row, double val) {
    for (int r = row; r < height; ++r) a(r, column) *= val;
}
// Both new values from the old ones; column1 is stored last.
inline void rotateColumns(Matrix& a, int height, int column1, int column2, double c, double s) {
    for (int r = 0; r < height; ++r) {
        const double p = a(r, column2), q = a(r, column1);
        a(r, column2) = c * p + s * q;
        a(r, column1) = q * c - p * s;
    }
}
inline void addMulRow(const double* src, double* srcDst, int len, double val) {
    for (int i = 0; i < len; ++i) srcDst[i] += val * src[i];
}

// Sixteen lanes, element i in lane i mod 16, folded in halves.
inline double dotProdRow(const double* a, const double* b, int len) {
    double lane[16] = {};
    for (int i = 0; i < len; ++i) lane[i % 16] += a[i] * b[i];
    for (int half = 8; half >= 1; half /= 2) {
        for (int j = 0; j < half; ++j) lane[j] += lane[j + half];
    }
    return lane[0];
}

inline double hypotenuse(double a, double b) {
    const double big = std::ldexp(1.0, 510), small = std::ldexp(1.0, -510);
    const double p = std::fabs(a), q = std::fabs(b);
    const double larger = p > q ? p : q;
    if (larger >= big) {
        const double x = p * small, y = q * small;
        return big * std::sqrt(x * x + y * y);
    }
    if (larger > small) return std::sqrt(p * p + q * q);
    const double x = p * big, y = q * big;
    return small * std::sqrt(x * x + y * y);
}

struct SingularValues {
    SingularValues(const Matrix& a, int rowCount, int columnCount)
        : m(rowCount), n(columnCount), u(a), v(columnCount, a.step), w(columnCount), e(columnCount) {}

    VornStatus decompose(int nIter) {
        reduce();
        accumulateRight();
        accumulateLeft();
        for (int k = n - 1; k >= 0; --k) {
            if (!converge(k, nIter)) return vornStsSvdNoConvergeErr;
        }
        return vornStsNoErr;
    }

    VornStatus decomposeSorted(int nIter) {
        const VornStatus status = decompose(nIter);
        if (status != vornStsNoErr) return status;
        std::vector<double> magnitude;
        std::vector<int> permutation;
        for (int i = 0; i < n; ++i) {
            magnitude.push_back(std::fabs(w[i]));
            permutation.push_back(i);
        }
        for (int i = 0; i < n; ++i) {
            int largest = i;
            for (int j = i + 1; j < n; ++j) {
                if (magnitude[j] > magnitude[largest]) largest = j;
            }
            std::swap(magnitude[i], magnitude[largest]);
            std::swap(w[i], w[largest]);
            std::swap(permutation[i], permutation[largest]);
        }
        permute(v, n, permutation);
        permute(u, m, permutation);
        return vornStsNoErr;
    }

    int m, n;
    Matrix u, v;
    std::vector<double> w, e;
    double norm = 0.0, last = 0.0;
    int sweeps = 0, cancellations = 0;  // what a test may want to have met

private:
    static double householderLength(double f, double s) { return f < 0 ? std::sqrt(s) : -std::sqrt(s); }

    void reduce() {
        double g = 0.0, scale = 0.0;
        for (int i = 0; i < n; ++i) {
            const int l = i + 1;
            e[i] = scale * g;
            g = scale = 0.0;
            if (i < m) {
                scale = sumColumnAbs(u, m, i, i);
                if (scale != 0.0) {
                    const double s = sumColumnSqr(u, m, i, i, 1.0 / scale);
                    const double f = u(i, i);
                    g = householderLength(f, s);
                    const double h = f * g - s;
                    u(i, i) = f - g;
                    for (int j = l; j < n; ++j) {
                        const double product = dotProdColumn(u, m, i, j, i);
                        addMulColumn(u, m, i, j, i, product / h);
                    }
                    mulColumn(u, m, i, i, scale);
                }
            }
            w[i] = scale * g;
            g = scale = 0.0;
            if (i < m && i != n - 1) {
                scale = sumRowAbs(&u(i, l), n - l);
                if (scale != 0.0) {
                    const double s = sumRowSqr(&u(i, l), n - l, 1.0 / scale);
                    const double f = u(i, l);
                    g = householderLength(f, s);
                    const double h = f * g - s;
                    u(i, l) = f - g;
                    for (int k = l; k < n; ++k) e[k] = u(i, k) / h;
                    for (int j = l; j < m; ++j) {
                        const double product = dotProdRow(&u(j, l), &u(i, l), n - l);
                        addMulRow(&e[l], &u(j, l), n - l, product);
                    }
                    for (int k = l; k < n; ++k) u(i, k) *= scale;
                }
            }
            // A not-a-number stays, so that such a matrix does not seem to converge.
            const double size = std::fabs(w[i]) + std::fabs(e[i]);
            if (size > norm || std::isnan(size)) norm = size;
        }
        last = g;
    }

    void accumulateRight() {
        double g = last;
        for (int i = n - 1; i >= 0; --i) {
            const int l = i + 1;
            if (i < n - 1) {
                if (g != 0.0) {
                    for (int j = l; j < n; ++j) v(j, i) = (u(i, j) / u(i, l)) / g;
                    for (int j = l; j < n; ++j) {
                        double s = 0.0;
                        for (int k = l; k < n; ++k) s += u(i, k) * v(k, j);
                        for (int r = l; r < n; ++r) v(r, j) += s * v(r, i);
                    }
                }
                for (int j = l; j < n; ++j) v(i, j) = v(j, i) = 0.0;
            }
            v(i, i) = 1.0;
            g = e[i];
        }
    }

    void accumulateLeft() {
        for (int i = (m < n ? m : n) - 1; i >= 0; --i) {
            const int l = i + 1;
            double g = w[i];
            for (int j = l; j < n; ++j) u(i, j) = 0.0;
            if (g != 0.0) {
                g = 1.0 / g;
                for (int j = l; j < n; ++j) {
                    const double s = dotProdColumn(u, m, i, j, l);
                    const double f = (s / u(i, i)) * g;
                    addMulColumn(u, m, i, j, i, f);
                }
                mulColumn(u, m, i, i, g);
            } else {
                for (int r = i; r < m; ++r) u(r, i) = 0.0;
            }
            u(i, i) += 1.0;
        }
    }

    bool converge(int k, int nIter) {
        for (int its = 1;; ++its) {
            int l = k;
            bool cancels = false;
            while (l > 0 && norm + std::fabs(e[l]) != norm) {
                if (norm + std::fabs(w[l - 1]) == norm) {
                    cancels = true;
                    break;
                }
                --l;
            }
            if (cancels) cancel(l, k);
            if (l == k) {
                if (w[k] < 0.0) {
                    w[k] = -w[k];
                    mulColumn(v, n, k, 0, -1.0);
                }
                return true;
            }
            if (its == nIter) return false;
            sweep(l, k);
        }
    }

    void cancel(int l, int k) {
        ++cancellations;
        double c = 0.0, s = 1.0;
        for (int i = l; i <= k; ++i) {
            const double f = s * e[i];
            e[i] = c * e[i];
            if (norm + std::fabs(f) == norm) break;
            const double g = w[i], h = hypotenuse(f, g);
            w[i] = h;
            c = g / h;
            s = -f / h;
            rotateColumns(u, m, i, l - 1, c, s);
        }
    }

    void sweep(int l, int k) {
        ++sweeps;
        double x = w[l], y = w[k - 1], g = e[k - 1], h = e[k];
        const double z = w[k];
        double f = ((y - z) * (y + z) + (g - h) * (g + h)) / ((h + h) * y);
        g = hypotenuse(f, 1.0);
        if (f < 0.0) g = -g;
        f = ((x - z) * (x + z) + h * (y / (f + g) - h)) / x;
        double c = 1.0, s = 1.0;
        for (int j = l; j < k; ++j) {
            const int i = j + 1;
            g = e[i];
            y = w[i];
            h = s * g;
            g = c * g;
            double length = hypotenuse(f, h);
            e[j] = length;
            if (length != 0.0) {
                c = f / length;
                s = h / length;
            }
            f = x * c + g * s;
            g = g * c - x * s;
            h = y * s;
            y = y * c;
            rotateColumns(v, n, i, j, c, s);
            length = hypotenuse(f, h);
            w[j] = length;
            if (length != 0.0) {
                const double reciprocal = 1.0 / length;
                c = f * reciprocal;
                s = h * reciprocal;
            }
            f = c * g + s * y;
            x = c * y - s * g;
            rotateColumns(u, m, i, j, c, s);
        }
        e[l] = 0.0;
        e[k] = f;
        w[k] = x;
    }

    static void permute(Matrix& a, int height, const std::vector<int>& permutation) {
        for (int r = 0; r < height; ++r) {
            std::vector<double> row;
            for (int column : permutation) row.push_back(a(r, column));
            for (std::size_t j = 0; j < row.size(); ++j) a(r, static_cast<int>(j)) = row[j];
        }
    }
};

}  // namespace model
