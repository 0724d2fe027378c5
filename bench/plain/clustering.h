// Plain loops of the clustering of Gaussians, compiled for this very processor.
#pragma once

namespace plain {

void accumulate(const float* mean, const float* var, float* sum, float* sqr, int len, float occ);
void accumulate(const double* mean, const double* var, double* sum, double* sqr, int len, double occ);
void accumulateDirect(const float* mean, const float* var, float* sum, float* sqr, int len, float occ);
void accumulateDirect(const double* mean, const double* var, double* sum, double* sqr, int len, double occ);
double likelihood(const float* sum, const float* sqr, int len, double occ);
double likelihood(const double* sum, const double* sqr, int len, double occ);
// The constant of the merged Gaussian.
double merge(const float* m1, const float* v1, const float* m2, const float* v2, float* mean, float* var, int len,
             float w1, float w2);
double merge(const double* m1, const double* v1, const double* m2, const double* v2, double* mean, double* var, int len,
             double w1, double w2);
// The sum of the logarithms of the pooled variances.
double mergeLogarithms(const float* m1, const float* v1, const float* m2, const float* v2, int len, double w1,
                       double w2);
double mergeLogarithms(const double* m1, const double* v1, const double* m2, const double* v2, int len, double w1,
                       double w2);
void split(float* up, const float* var, float* down, float* dstVar, int len, float val);
void split(double* up, const double* var, double* down, double* dstVar, int len, double val);

}  // namespace plain
