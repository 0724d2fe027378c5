// Plain loops of the distances and of the sum of indexed rows.
#pragma once

#include "vornsr/types.h"

namespace plain {

float mahalanobis(const float* x, const float* m, const float* v, int len);
double mahalanobis(const double* x, const double* m, const double* v, int len);
double mahalanobisWidened(const float* x, const float* m, const float* v, int len);
float mahalanobis(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len);
Vorn32s mahalanobis(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, int scaleFactor);

void mahalanobisOfFrames(const float* src, int step, const float* m, const float* v, int len, float* dst, int height);
void mahalanobisOfFrames(const double* src, int step, const double* m, const double* v, int len, double* dst,
                         int height);
void mahalanobisOfGaussians(const float* m, const float* v, int step, const float* x, int len, float* dst, int height);
void mahalanobisOfGaussians(const double* m, const double* v, int step, const double* x, int len, double* dst,
                            int height);

// A logarithm for each element.
float bhattacharyya(const float* mean1, const float* var1, const float* mean2, const float* var2, int len);
double bhattacharyyaWidened(const float* mean1, const float* var1, const float* mean2, const float* var2, int len);
float bhattacharyyaOfSums(const float* mean1, const float* var1, const float* mean2, const float* var2, int len,
                          float sumLogs);
double bhattacharyyaOfSumsWidened(const float* mean1, const float* var1, const float* mean2, const float* var2, int len,
                                  float sumLogs);

void addRows(const float* src, int step, const Vorn32s* ind, const Vorn16u* addInd, int rows, float* dst, int len,
             float weight);

}  // namespace plain
