// Linear prediction as formulas and textbooks write it, as any compiler takes it.
#pragma once

#include <cstdint>

namespace plain {

// False where the energy of the error is not above zero.
bool durbin(const float* r, float* a, int order, float* error);
void schur(const float* r, float* k, int order, float* error);
bool predictFromAutocorrelation(const float* x, int len, float* a, int order);
void predictFromCovariance(const float* x, int len, float* a, int order);

// 16 bits by way of singles.
bool durbin(const std::int16_t* r, std::int16_t* a, int order, float* error, int scale);
void schur(const std::int16_t* r, std::int16_t* k, int order, float* error, int scale);
bool predictFromAutocorrelation(const std::int16_t* x, int len, std::int16_t* a, int order, int scale);
void predictFromCovariance(const std::int16_t* x, int len, std::int16_t* a, int order, int scale);

}  // namespace plain
