// Plain loops of the filter banks of noise reduction.
#pragma once

namespace plain {

// Rows of 64 weights a filter and their addresses. edge: the bins of corners, one more than a filter beside its centre
// on either side. With unitArea the weights of a filter are divided by their sum.
template <class Weight>
struct TriangleBank {
    Weight rise[27][64], fall[27][64];
    Weight *riseRow[27], *fallRow[27];
    int center[28];
};
void triangleBank(TriangleBank<float>& bank, const int* edge, int edges, int filters, bool unitArea);
void triangleBank(TriangleBank<int>& bank, const int* edge, int edges, int filters, bool unitArea);

}  // namespace plain
