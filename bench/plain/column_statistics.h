// Plain loops of column statistics, compiled for this very processor: row by row into sums of all columns.
#pragma once

#include <cstdint>

namespace plain {

inline constexpr int mostColumns = 4096;  // of those that sum 16-bit integers aside

void meanColumn(const float* src, int height, int step, float* mean, int width);
void varColumn(const float* src, int height, int step, const float* mean, float* var, int width);
void meanVarColumn(const float* src, int height, int step, float* mean, float* var, int width);

void weightedMeanColumn(const float* src, int step, const float* weight, int height, float* mean, int width);
void weightedVarColumn(const float* src, int step, const float* weight, int height, const float* mean, float* var,
                       int width);
void weightedMeanVarColumn(const float* src, int step, const float* weight, int height, float* mean, float* var,
                           int width);
void weightedMeanColumn(const double* src, int step, const double* weight, int height, double* mean, int width);
void weightedVarColumn(const double* src, int step, const double* weight, int height, const double* mean, double* var,
                       int width);
void weightedMeanVarColumn(const double* src, int step, const double* weight, int height, double* mean, double* var,
                           int width);

// Sums in single; the results rounded and saturated.
void meanColumn(const std::int16_t* src, int height, int step, std::int16_t* mean, int width);
void varColumn(const std::int16_t* src, int height, int step, const std::int16_t* mean, std::int16_t* var, int width);
void meanVarColumn(const std::int16_t* src, int height, int step, std::int16_t* mean, std::int16_t* var, int width);
// Sums in 64-bit integers, squares of the last one in single; the results truncated and saturated.
void meanColumnExact(const std::int16_t* src, int height, int step, std::int16_t* mean, int width);
void varColumnExact(const std::int16_t* src, int height, int step, const std::int16_t* mean, std::int16_t* var,
                    int width);
void meanVarColumnExact(const std::int16_t* src, int height, int step, std::int16_t* mean, std::int16_t* var,
                        int width);
// Sums in double.
void meanVarColumn(const std::int16_t* src, int height, int step, std::int32_t* mean, std::int32_t* var, int width);
void meanVarColumn(const std::int16_t* src, int height, int step, std::int16_t* mean, std::int32_t* var, int width);

}  // namespace plain
