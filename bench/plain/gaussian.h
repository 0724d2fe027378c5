// Plain loops of the Gaussian scores: compiled for this very processor, and once more for the baseline.
#pragma once

#define BENCH_PLAIN_GAUSSIANS                                                                                         \
    void multiMix(const float* mean, const float* var, int step, const float* src, int len, float* srcDst,            \
                  int height);                                                                                        \
    void multiMix(const double* mean, const double* var, int step, const double* src, int len, double* srcDst,        \
                  int height);                                                                                        \
    void multiMix(const short* mean, const short* var, int step, const short* src, int len, float* srcDst,            \
                  int height);                                                                                        \
    void multiMixLow(const short* mean, const short* var, int step, const short* src, int len, int* srcDst,           \
                     int height);                                                                                     \
    void frames(const float* src, int step, const float* mean, const float* var, int len, float* result, int height,  \
                float val);                                                                                           \
    void frames(const short* src, int step, const short* mean, const short* var, int len, float* result, int height,  \
                float val);                                                                                           \
    void framesMax(const float* src, int step, const float* mean, const float* var, int len, float* srcDst,           \
                   int height, float val);                                                                            \
    void framesLow(const short* src, int step, const short* mean, const short* var, int len, int* result, int height, \
                   int val);                                                                                          \
    float mixture(const float* src, const float* mean, const float* var, int height, int step, int len,               \
                  const float* val);

namespace plain {
BENCH_PLAIN_GAUSSIANS
}
namespace plain_baseline {
BENCH_PLAIN_GAUSSIANS
}
