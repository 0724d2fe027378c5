#include "plain/aurora_bank.h"

#include <algorithm>
#include <cstring>

namespace plain {
namespace {

float ratio(int n, int d, float) { return static_cast<float>(n) / static_cast<float>(d); }
int ratio(int n, int d, int) { return (n << 14) / d; }
float share(float w, float sum) { return w / sum; }
int share(int w, int sum) { return static_cast<int>((static_cast<long long>(w) << 14) / sum); }

template <class Weight>
void make(TriangleBank<Weight>& bank, const int* edge, int edges, int filters, bool unitArea, Weight one) {
    std::memset(bank.rise, 0, sizeof bank.rise[0] * static_cast<std::size_t>(filters + 2));
    std::memset(bank.fall, 0, sizeof bank.fall[0] * static_cast<std::size_t>(filters + 2));
    for (int k = 0; k < filters + 2; ++k) {
        bank.riseRow[k] = bank.rise[k];
        bank.fallRow[k] = bank.fall[k];
    }
    std::copy(edge, edge + edges, bank.center);
    for (int k = 0; k < filters; ++k) {
        const int p = edge[k], q = edge[k + 1], r = edge[k + 2];
        for (int n = p + 1; n <= q; ++n) bank.rise[k][n - p] = ratio(n - p, q - p, one);
        if (p == q) bank.rise[k][0] = one;
        for (int n = q + 1; n < r; ++n) bank.fall[k][n - q - 1] = one - ratio(n - q, r - q, one);
        if (!unitArea) continue;
        Weight sum = 0;
        for (int n = p; n <= q; ++n) sum += bank.rise[k][n - p];
        for (int n = q + 1; n < r; ++n) sum += bank.fall[k][n - q - 1];
        for (int n = p; n <= q; ++n) bank.rise[k][n - p] = share(bank.rise[k][n - p], sum);
        for (int n = q + 1; n < r; ++n) bank.fall[k][n - q - 1] = share(bank.fall[k][n - q - 1], sum);
    }
}

}  // namespace

void triangleBank(TriangleBank<float>& bank, const int* edge, int edges, int filters, bool unitArea) {
    make(bank, edge, edges, filters, unitArea, 1.0f);
}
void triangleBank(TriangleBank<int>& bank, const int* edge, int edges, int filters, bool unitArea) {
    make(bank, edge, edges, filters, unitArea, 1 << 14);
}

}  // namespace plain
