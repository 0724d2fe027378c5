// Mel filter banks: centres and weights from the C library's logarithm and exponential,
// evaluation bin by bin with every lane of the accumulators written out.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "model/convert.h"

namespace model {

struct MelBank {
    int N, nFilter;
    float sampleFreq, lowFreq, highFreq, melMul, melDiv;
    bool straight;  // weights in bin number, centres rounded

    std::vector<float> m;         // nFilter + 2 mel values
    std::vector<std::int32_t> c;  // nFilter + 2 bins
};

inline MelBank melBank(int N, int nFilter, float sampleFreq, float lowFreq, float highFreq, float melMul, float melDiv,
                       bool straight) {
    MelBank bank{N, nFilter, sampleFreq, lowFreq, highFreq, melMul, melDiv, straight, {}, {}};
    const float lowRatio = lowFreq / melDiv, highRatio = highFreq / melDiv;
    const float lowArgument = lowRatio + 1.0f, highArgument = highRatio + 1.0f;
    const float melLow = (float)((double)melMul * std::log((double)lowArgument));
    const float melHigh = (float)((double)melMul * std::log((double)highArgument));
    const float melRange = melHigh - melLow;
    const float perHertz = (float)N / sampleFreq;
    const float binScale = perHertz * melDiv;
    for (int i = 0; i <= nFilter + 1; ++i) {
        const float product = (float)i * melRange;
        const float part = product / (float)(nFilter + 1);
        bank.m.push_back(part + melLow);
        const float exponent = bank.m.back() / melMul;
        const float x = (float)(std::exp((double)exponent) - 1.0);
        bank.c.push_back(to32s(x * binScale, straight ? 1 : 0, 1.0f));
    }
    return bank;
}

inline float melOfBin(const MelBank& bank, int j) {
    const float binHz = bank.sampleFreq / (float)bank.N;
    const float hertz = (float)j * binHz;
    const float ratio = hertz / bank.melDiv;
    return (float)((double)bank.melMul * std::log((double)ratio + 1.0));
}

// The part and the whole of a weight; straight ones are whole numbers.
struct Fraction {
    float part, whole;
};

// Side of filter k (from 1): bins c[k-1] to c[k] rising, c[k]+1 to c[k+1] falling.
inline std::vector<Fraction> rise(const MelBank& bank, int k) {
    std::vector<Fraction> side;
    for (int j = bank.c[k - 1]; j <= bank.c[k]; ++j) {
        if (bank.straight) {
            side.push_back({(float)(j - bank.c[k - 1] + 1), (float)(bank.c[k] - bank.c[k - 1] + 1)});
        } else if (j == bank.c[k - 1]) {
            side.push_back({0.0f, 1.0f});
        } else {
            side.push_back({melOfBin(bank, j) - bank.m[k - 1], bank.m[k] - bank.m[k - 1]});
        }
    }
    return side;
}
inline std::vector<Fraction> fall(const MelBank& bank, int k) {
    std::vector<Fraction> side;
    for (int j = bank.c[k] + 1; j <= bank.c[k + 1]; ++j) {
        if (bank.straight) {
            side.push_back({(float)(bank.c[k + 1] - j + 1), (float)(bank.c[k + 1] - bank.c[k] + 1)});
        } else {
            side.push_back({bank.m[k + 1] - melOfBin(bank, j), bank.m[k + 1] - bank.m[k]});
        }
    }
    return side;
}

inline float weight32f(const MelBank&, Fraction f) { return f.part / f.whole; }
inline std::int32_t weightQ14(const MelBank& bank, Fraction f) {
    if (bank.straight) return ((std::int32_t)f.part << 14) / (std::int32_t)f.whole;
    const float scaled = f.part * 16384.0f;
    return (std::int32_t)std::trunc(scaled / f.whole);
}

// Two accumulators of four lanes and how they are folded.
struct LaneSum {
    float lane[2][4] = {};
    void eight(const float* weight, const float* value) {
        for (int i = 0; i < 8; ++i) {
            const float product = weight[i] * value[i];
            lane[i / 4][i % 4] = lane[i / 4][i % 4] + product;
        }
    }
    void one(float weight, float value) {
        const float product = weight * value;
        lane[0][0] = lane[0][0] + product;
    }
    float fold() const {
        float four[4];
        for (int l = 0; l < 4; ++l) four[l] = lane[0][l] + lane[1][l];
        const float even = four[0] + four[2], odd = four[1] + four[3];
        return even + odd;
    }
};

// rises[k] and falls[k] of filter k from 0, with zeros behind each for the bin that an empty side takes. One counter
// runs over the bins; those behind the spectrum count for nothing. The first side is one loop over c[0] to c[1], both
// included. Each later one feeds the falling side of a filter and the rising side of the next, on the bins behind the
// counter up to the next edge, and one bin at least.
inline std::vector<float> evaluate(const std::vector<float>& s, const std::vector<std::int32_t>& c,
                                   std::vector<std::vector<float>> rises, std::vector<std::vector<float>> falls) {
    const std::size_t K = rises.size();
    for (auto& side : rises) side.resize(side.size() + 2, 0.0f);
    for (auto& side : falls) side.resize(side.size() + 2, 0.0f);
    std::vector<LaneSum> sum(K);
    int bin = c[0];
    const auto add = [&](LaneSum& filter, float weight) {
        if (bin < (int)s.size()) filter.one(weight, s[(std::size_t)bin]);
    };
    const auto eight = [&](LaneSum& filter, const float* weight) { filter.eight(weight, &s[(std::size_t)bin + 1]); };

    add(sum[0], rises[0][0]);
    const float* rise = &rises[0][1];
    for (; c[1] - bin > 8; bin += 8, rise += 8) eight(sum[0], rise);
    while (bin < c[1]) ++bin, add(sum[0], *rise++);

    for (std::size_t k = 0; k < K; ++k) {
        const int end = c[k + 2];
        const bool more = k + 1 < K;
        const float* fall = &falls[k][0];
        if (more) add(sum[k + 1], rises[k + 1][0]), rise = &rises[k + 1][1];
        for (; end - bin > 8; bin += 8, fall += 8, rise += 8) {
            eight(sum[k], fall);
            if (more) eight(sum[k + 1], rise);
        }
        do {
            ++bin;
            add(sum[k], *fall++);
            if (more) add(sum[k + 1], *rise++);
        } while (bin < end);
    }
    std::vector<float> dst;
    for (const LaneSum& filter : sum) dst.push_back(filter.fold());
    return dst;
}

// Sum of the products of one filter, each wrapped to 32 bits.
inline std::int64_t fixedSum(const std::vector<std::int32_t>& s, int firstBin,
                             const std::vector<std::int32_t>& weights) {
    std::int64_t sum = 0;
    for (std::size_t e = 0; e < weights.size(); ++e) {
        sum += wrapTo<std::int32_t>(Big{s[(std::size_t)firstBin + e]} * weights[e]);
    }
    return sum;
}

inline std::int64_t shifted(std::int64_t sum, int T) {
    return T > 0 ? sum >> (T & 63) : (std::int64_t)((std::uint64_t)sum << ((unsigned)-T & 63u));
}

}  // namespace model
