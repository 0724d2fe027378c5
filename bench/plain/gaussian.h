// Plain loops of the Gaussian scores: compiled for this very processor, and once more for the baseline.
#pragma once

namespace plain {
void multiMix(const float* mean, const float* var, int step, const float* src, int len, float* srcDst, int height);
float mixture(const float* src, const float* mean, const float* var, int height, int step, int len, const float* val);
}  // namespace plain
namespace plain_baseline {
void multiMix(const float* mean, const float* var, int step, const float* src, int len, float* srcDst, int height);
float mixture(const float* src, const float* mean, const float* var, int height, int step, int len, const float* val);
}  // namespace plain_baseline
