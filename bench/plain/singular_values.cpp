#include "plain/singular_values.h"

#include <algorithm>
#include <cmath>

#include "../tests/model/singular_values.h"

namespace plain {

int singularValues(const double* src, double* u, int height, double* w, double* v, int width, int nIter, bool sorts) {
    model::Matrix a(height, width);
    std::copy_n(src, a.elements.size(), a.elements.begin());
    model::SingularValues result(a, height, width);
    const VornStatus status = sorts ? result.decomposeSorted(nIter) : result.decompose(nIter);
    std::copy(result.u.elements.begin(), result.u.elements.end(), u);
    std::copy(result.v.elements.begin(), result.v.elements.end(), v);
    std::copy(result.w.begin(), result.w.end(), w);
    return status;
}

double sumColumnAbs(const double* const* rows, int height, int column) {
    double sum = 0.0;
    for (int r = 0; r < height; ++r) sum += std::fabs(rows[r][column]);
    return sum;
}
double sumColumnSqr(double* const* rows, int height, int column, double val) {
    double sum = 0.0;
    for (int r = 0; r < height; ++r) {
        rows[r][column] *= val;
        sum += rows[r][column] * rows[r][column];
    }
    return sum;
}
double dotProdColumn(const double* const* rows, int height, int column1, int column2) {
    double sum = 0.0;
    for (int r = 0; r < height; ++r) sum += rows[r][column1] * rows[r][column2];
    return sum;
}
void addMulColumn(double* const* rows, int height, int column1, int column2, double val) {
    for (int r = 0; r < height; ++r) rows[r][column2] += val * rows[r][column1];
}
void mulColumn(double* const* rows, int height, int column, double val) {
    for (int r = 0; r < height; ++r) rows[r][column] *= val;
}
void rotateColumns(double* const* rows, int height, int column1, int column2, double c, double s) {
    for (int r = 0; r < height; ++r) {
        const double p = rows[r][column2], q = rows[r][column1];
        rows[r][column2] = c * p + s * q;
        rows[r][column1] = q * c - p * s;
    }
}
double sumRowAbs(const double* x, int len) {
    double sum = 0.0;
    for (int i = 0; i < len; ++i) sum += std::fabs(x[i]);
    return sum;
}
double sumRowSqr(double* x, int len, double val) {
    double sum = 0.0;
    for (int i = 0; i < len; ++i) {
        x[i] *= val;
        sum += x[i] * x[i];
    }
    return sum;
}
void addMulRow(const double* x, double* y, int len, double val) {
    for (int i = 0; i < len; ++i) y[i] += val * x[i];
}

}  // namespace plain
