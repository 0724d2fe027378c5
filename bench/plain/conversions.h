// Plain loops of the representations of a prediction filter, compiled for this very processor.
#pragma once

namespace plain {
void cepstrumOfPrediction(const float* a, float* c, int n);
void predictionOfCepstrum(const float* c, float* a, int n);
bool reflectionsOfPrediction(const float* a, float* k, int n);
void predictionOfReflections(const float* k, float* a, int n);
// Orders up to 62.
int linesOfPrediction(const float* a, float* x, int order, int nGrid, int nDiv);
void predictionOfLines(const float* x, float* a, int order);
// One over the magnitude at n points; cosines and sines are tables of n rows of len factors.
void envelope(const float* a, int len, const float* cosines, const float* sines, float* dst, int n, float val);
}  // namespace plain
