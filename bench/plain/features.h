// Plain loops of feature extraction and column statistics, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {
void meanVarColumn(const float* src, int height, int step, float* mean, float* var, int width);
void weightedMeanVarColumn(const float* src, int step, const float* weight, int height, float* mean, float* var,
                           int width);
void compensateOffset(const float* src, float* dst, int len, float* srcLast, float dstLast, float val);
void compensateOffset(const std::int16_t* src, std::int16_t* dst, int len, std::int16_t* srcLast, std::int16_t dstLast,
                      float val);
void delta2(const float* src, int width, float* dst, int step, int height, float val);
void deltaDelta2(const float* src, int width, float* dst, int step, int height, float val1, float val2);
// rows: lenCep rows of lenDCT cosines, stride elements apart.
void dctLifter(const float* x, float* dst, const float* rows, int stride, const float* weight, int lenDCT, int lenCep);
// rises and falls: one row of weights a filter, stride elements apart.
void filterBank(const float* spectrum, float* dst, const int* center, const float* rises, const float* falls,
                int stride, int nFilter);
void filterBank(const std::int16_t* spectrum, std::int16_t* dst, const int* center, const int* rises, const int* falls,
                int stride, int nFilter, int shift);
}  // namespace plain
