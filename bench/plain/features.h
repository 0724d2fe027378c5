// Plain loops of feature extraction and column statistics, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {
void compensateOffset(const float* src, float* dst, int len, float* srcLast, float dstLast, float val);
void compensateOffset(const std::int16_t* src, std::int16_t* dst, int len, std::int16_t* srcLast, std::int16_t dstLast,
                      float val);
// The factor in Q15; and in single, rounded.
void compensateOffsetQ15(const std::int16_t* src, std::int16_t* dst, int len, std::int16_t* srcLast,
                         std::int16_t dstLast, std::int16_t val);
void compensateOffsetRounded(const std::int16_t* src, std::int16_t* dst, int len, std::int16_t* srcLast,
                             std::int16_t dstLast, float val);
int signChanges(const std::int16_t* src, int len);
int signChanges(const float* src, int len);
int signBits(const float* src, int len);
// Twice the count: a step onto zero or off it counts one half.
int signSteps(const std::int16_t* src, int len);
int signSteps(const float* src, int len);
void normEnergy(float* x, int step, int height, float minDb, float val);
void normEnergy(float* x, int step, int height, float minDb, float maxE, float val);
void normEnergy(std::int16_t* x, int step, int height, float minDb, float top, float val);
void normEnergy(std::int16_t* x, int step, int height, float minDb, float maxE, float top, float val);
void zeroMean(std::int16_t* x, int len);
float gaussConstant(const float* var, int len);
// rows: lenCep rows of lenDCT cosines, stride elements apart.
void dctLifter(const float* x, float* dst, const float* rows, int stride, const float* weight, int lenDCT, int lenCep);
// Its table and weights, row 0 first.
void cosines(float* rows, int stride, float* weight, int lenDCT, int lenCep, int nLifter, float val);
// rises and falls: one row of weights a filter, stride elements apart.
void filterBank(const float* spectrum, float* dst, const int* center, const float* rises, const float* falls,
                int stride, int nFilter);
void filterBank(const std::int16_t* spectrum, std::int16_t* dst, const int* center, const int* rises, const int* falls,
                int stride, int nFilter, int shift);
void filterBank(const std::int16_t* spectrum, std::int32_t* dst, const int* center, const int* rises, const int* falls,
                int stride, int nFilter, int shift);
// Centres and weights in hertz of a straight bank; one is the weight of a peak.
void melBank(int* center, float* rises, float* falls, int stride, int fftLen, int nFilter, float one);
void melBank(int* center, int* rises, int* falls, int stride, int fftLen, int nFilter, int one);
}  // namespace plain
