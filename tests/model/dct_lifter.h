// The DCT lifter, sum by sum, its weights and the bytes of its contexts. The table comes from the C library's double
// functions; singles rounded from doubles that are right to half a unit and from doubles that are right to a little
// more agree but in rare cases, so a test compares tables with a bound and products bit for bit.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "model/convert.h"

namespace model {

inline float cosine(int i, int j, int lenDCT) {
    return (float)std::cos((double)((float)j - 0.5f) * (i * 3.141592653589793) / lenDCT);
}

inline float raisedSine(int i, int L, float val) {
    const float half = (float)L * 0.5f;
    const float w = (float)(std::sin((double)i * 3.141592653589793 / L) * half + 1.0);
    return w * val;
}

// The sum of x[j] c[j]: accumulators of four lanes, the elements behind the last one counting as zeros.
inline float laneSum(const std::vector<float>& x, const std::vector<float>& c, int accumulators) {
    float lane[2][4] = {};
    for (std::size_t j = 0; j < x.size(); ++j) {
        const float product = x[j] * c[j];
        float& sum = lane[j / 4 % (std::size_t)accumulators][j % 4];
        sum = sum + product;
    }
    float total[4];
    for (int l = 0; l < 4; ++l) total[l] = accumulators == 2 ? lane[0][l] + lane[1][l] : lane[0][l];
    const float low = total[0] + total[1], high = total[2] + total[3];
    return low + high;
}

// rows[i] and weight[i] for i from 0 to lenCep.
inline std::vector<float> dctLifter(const std::vector<float>& x, const std::vector<std::vector<float>>& rows,
                                    const std::vector<float>& weight, bool withC0) {
    const int lenCep = (int)rows.size() - 1;
    std::vector<float> dst;
    for (int i = 1; i <= lenCep; ++i) {
        const bool inRound = i <= lenCep / 4 * 4;
        dst.push_back(weight[(std::size_t)i] * laneSum(x, rows[(std::size_t)i], inRound ? 1 : 2));
    }
    if (withC0) dst.push_back(weight[0] * laneSum(x, rows[0], 2));
    return dst;
}

// The lenCep + 1 weights of a lifter that the caller has: none of coefficient zero, or that of the last coefficient.
template <class Weight>
std::vector<float> callersWeights(const std::vector<Weight>& given, bool withC0) {
    std::vector<float> weight;
    weight.push_back(withC0 ? (float)given.back() : 0.0f);
    for (Weight w : given) weight.push_back((float)w);
    return weight;
}

// The coefficients as integers: each rounded to nearest and saturated by itself.
template <class Element>
std::vector<Vorn16s> dctLifterFixed(const std::vector<Element>& x, const std::vector<std::vector<float>>& rows,
                                    const std::vector<float>& weight, bool withC0, int scale) {
    std::vector<float> singles;
    for (Element e : x) singles.push_back((float)e);
    std::vector<Vorn16s> dst;
    for (float c : dctLifter(singles, rows, weight, withC0)) dst.push_back(to16s(c, vornRndNear, singleOfScale(scale)));
    return dst;
}

// Bytes, by the formulas: D inputs, M coefficients.
inline long long lifterBytes32f(long long D, long long M) {
    const long long E = (D + 7) / 8 * 8;
    return 4 * ((M + 1) * E + 7) + 12 * M + 108;
}
inline long long lifterBytes16s(long long D, long long M) {
    const long long E = (D + 7) / 8 * 8;
    return 4 * ((M + 1) * E + 7) + 16 * M + 152;
}
inline long long lifterBytesMulC0_16s(long long D, long long M) { return 8 * M + 144 + (M + 1) * (4 * D + 40); }

}  // namespace model
