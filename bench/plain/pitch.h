// Plain loops of periodicity, peaks, pitch marks and correlations, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {

float combs(const float* x, int len, int low, int high, int* period);
std::int16_t combs(const std::int32_t* x, int len, int low, int high, int* period);
float leastSquaresPeriod(const float* x, int len, int low, int high, int* period);
std::int16_t leastSquaresPeriod(const std::int16_t* x, int len, int low, int high, int* period);

void peaks(const float* src, std::uint8_t* dst, int len, int search, int average);
void peaks(const std::int32_t* src, std::uint8_t* dst, int len, int search, int average);

bool markCandidates(const float* src, float* dst, int len);
bool markCandidates(const std::int16_t* src, std::int16_t* dst, int len, float scale);

float correlation(const std::int16_t* a, const std::int16_t* b, int len);
float correlation(const std::int16_t* a, const std::int16_t* b, int len, float energy);
void decimatedCorrelations(const std::int16_t* a, const std::int16_t* b, int maxLen, int minLen, float* dst, int dec);
void interpolatedCorrelation(const std::int16_t* c, const std::int16_t* ab, int len, float* frac, float* coeff);

}  // namespace plain
