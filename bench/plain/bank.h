// Plain loops of filter banks that are made in other ways, of the integer bank, and of the scale.
#pragma once

#include <cstdint>

namespace plain {

struct MelScale {
    float sampleFreq, lowFreq, highFreq, melMul, melDiv;
};

// Centres and weights along the mel scale; rises and falls: one row a filter, stride elements apart. one is the weight
// of a peak.
void melWeights(int* center, float* rises, float* falls, int stride, int fftLen, int nFilter, const MelScale& scale,
                float one);
void melWeights(int* center, int* rises, int* falls, int stride, int fftLen, int nFilter, const MelScale& scale,
                float one);
// Spaced in hertz up to highLinFreq, where filter nLinear has its centre, with weights along the mel scale; straight
// above it.
void mixedWeights(int* center, float* rises, float* falls, int stride, int fftLen, int nFilter, float highLinFreq,
                  int nLinear, const MelScale& scale, float one);
void mixedWeights(int* center, int* rises, int* falls, int stride, int fftLen, int nFilter, float highLinFreq,
                  int nLinear, const MelScale& scale, float one);
// Centres by the same integer steps, straight weights in Q30, and their evaluation.
void integerWeights(int* center, int* rises, int* falls, int stride, int fftLen, int nFilter, const MelScale& scale);
void integerBank(const std::int32_t* spectrum, std::int32_t* dst, const int* center, const int* rises, const int* falls,
                 int stride, int nFilter, int scale);

// One filter's weights, rising and falling, for the caller.
void coeffsToCaller(const float* rise, int riseLen, const float* fall, int fallLen, float* coeffs);
void coeffsToCaller(const int* rise, int riseLen, const int* fall, int fallLen, float* coeffs);
void coeffsFromCaller(const float* coeffs, float* rise, int riseLen, float* fall, int fallLen);
void coeffsFromCaller(const float* coeffs, int* rise, int riseLen, int* fall, int fallLen);
// Whether centres are in order.
bool centersCopied(const int* center, int* dst, int nFilter, int lastBin);

void linearToMel(const float* src, float* dst, int len, float melMul, float melDiv);
void melToLinear(const float* src, float* dst, int len, float melMul, float melDiv);
void copyWithZeros(const float* src, int srcLen, float* dst, int dstLen);
void copyWithZeros(const std::int16_t* src, int srcLen, std::int16_t* dst, int dstLen);

}  // namespace plain
