// Plain loops of the singular value decomposition, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {
// Rows without gaps; 0 when it converged.
int singularValues(const double* src, double* u, int height, double* w, double* v, int width, int nIter, bool sorts);
double sumColumnAbs(const double* const* rows, int height, int column);
double sumColumnSqr(double* const* rows, int height, int column, double val);
double dotProdColumn(const double* const* rows, int height, int column1, int column2);
void addMulColumn(double* const* rows, int height, int column1, int column2, double val);
void mulColumn(double* const* rows, int height, int column, double val);
void rotateColumns(double* const* rows, int height, int column1, int column2, double c, double s);
double sumRowAbs(const double* x, int len);
double sumRowSqr(double* x, int len, double val);
void addMulRow(const double* x, double* y, int len, double val);
}  // namespace plain
