// A plain loop of the growth of a codebook, compiled for this very processor.
#pragma once

namespace plain {

// Splits the cluster with the largest radius until there are words clusters; the centres go to the rows of dst. Rounds
// and stopping rule are the library's. Returns the rounds.
int growCodebook(const float* src, int height, int width, int words, float* dst);
int growCodebook(const short* src, int height, int width, int words, float* dst);

}  // namespace plain
