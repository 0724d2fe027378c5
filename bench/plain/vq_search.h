// Plain loops of the search of codebooks, compiled for this very processor.
#pragma once

namespace plain {

// The nearest of words for each vector, and its distance.
void nearestWords(const float* src, int width, int height, const float* words, int count, int* index, float* distance);
void nearestWords(const short* src, int width, int height, const short* words, int count, int* index, float* distance);

// The most nearest words of one vector in order, and their distances; room for count indices and numbers of scratch.
void wordsInOrder(const float* src, int width, const float* words, int count, int most, int* index, float* distance,
                  float* scratch);

}  // namespace plain
