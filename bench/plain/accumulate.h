// Plain loops over accumulators, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {

void meanVarAcc(const float* src, const float* mean, float* meanAcc, float* varAcc, int len, float val);
void meanVarAcc(const double* src, const double* mean, double* meanAcc, double* varAcc, int len, double val);
// Added to what stands in the sums.
void sumMeanVar(const float* src, int step, int height, float* sum, float* sumSq, int width);
void sumMeanVar(const std::int16_t* src, int step, int height, float* sum, float* sumSq, int width);
void newVar(const float* mean, const float* sumSq, float* dst, int len, float val1, float val2);
void newVarInPlace(const float* mean, float* sumSq, int len, float val1, float val2);
// Rounded to nearest and saturated.
void newVar(const std::int32_t* mean, const std::int32_t* sumSq, std::int32_t* dst, int len, float scale, float val1,
            float val2);
// sums has room for width by width doubles, deviations for width.
void accCovariance(const float* src, int step, int height, const float* mean, double* dst, int width, double val,
                   double* sums, double* deviations);
void accCovariance(const std::int16_t* src, int step, int height, const std::int16_t* mean, double* dst, int width,
                   double val, double* sums, double* deviations);
// Deviations of all frames from their means.
void centred(const float* src, int step, int height, const float* mean, double* dst, int width);
void centred(const std::int16_t* src, int step, int height, const std::int16_t* mean, double* dst, int width);

}  // namespace plain
