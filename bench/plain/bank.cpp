#include "plain/bank.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstring>

namespace plain {
namespace {

double melOf(double hertz, const MelScale& s) { return s.melMul * std::log(hertz / s.melDiv + 1); }
double hertzOf(double mel, const MelScale& s) { return s.melDiv * (std::exp(mel / s.melMul) - 1); }

template <class Weight>
struct Rows {
    Weight *rises, *falls;
    int stride;
    Weight* rise(int k) const { return rises + static_cast<std::ptrdiff_t>(k) * stride; }
    Weight* fall(int k) const { return falls + static_cast<std::ptrdiff_t>(k) * stride; }
};

// Filter k of 0, between the mel values left, peak and right.
template <class Weight>
void melFilter(const int* center, int k, Rows<Weight> rows, double binHz, double left, double peak, double right,
               const MelScale& s, float one) {
    Weight *rise = rows.rise(k), *fall = rows.fall(k);
    for (int j = center[k]; j <= center[k + 1]; ++j) {
        rise[j - center[k]] = static_cast<Weight>((melOf(j * binHz, s) - left) * one / (peak - left));
    }
    for (int j = center[k + 1] + 1; j <= center[k + 2]; ++j) {
        fall[j - center[k + 1] - 1] = static_cast<Weight>((right - melOf(j * binHz, s)) * one / (right - peak));
    }
}
template <class Weight, class Wide>
void straightFilter(const int* center, int k, Rows<Weight> rows, Wide one) {
    Weight *rise = rows.rise(k), *fall = rows.fall(k);
    const int up = center[k + 1] - center[k] + 1, down = center[k + 2] - center[k + 1] + 1;
    for (int j = 0; j < up; ++j) rise[j] = static_cast<Weight>((j + 1) * one / static_cast<Wide>(up));
    for (int j = 1; j < down; ++j) fall[j - 1] = static_cast<Weight>((down - j) * one / static_cast<Wide>(down));
}

template <class Weight>
void melBankOf(int* center, Rows<Weight> rows, int fftLen, int nFilter, const MelScale& s, float one) {
    const double low = melOf(s.lowFreq, s), step = (melOf(s.highFreq, s) - low) / (nFilter + 1);
    const double binHz = s.sampleFreq / fftLen;
    for (int i = 0; i <= nFilter + 1; ++i) center[i] = static_cast<int>(hertzOf(low + i * step, s) / binHz);
    for (int k = 0; k < nFilter; ++k) {
        melFilter(center, k, rows, binHz, low + k * step, low + (k + 1) * step, low + (k + 2) * step, s, one);
    }
}

template <class Weight>
void mixedBankOf(int* center, Rows<Weight> rows, int fftLen, int nFilter, float highLinFreq, int nLinear,
                 const MelScale& s, float one) {
    const double low = melOf(highLinFreq, s), step = (melOf(s.highFreq, s) - low) / (nFilter - nLinear + 1);
    const double step0 = (highLinFreq - s.lowFreq) / nLinear, binHz = s.sampleFreq / fftLen;
    for (int i = 0; i < nLinear; ++i) center[i] = static_cast<int>((s.lowFreq + i * step0) / binHz);
    for (int i = nLinear; i <= nFilter + 1; ++i)
        center[i] = static_cast<int>(hertzOf(low + (i - nLinear) * step, s) / binHz);
    for (int k = 0; k < nFilter; ++k) {
        if (k < nLinear) {
            const double hertz = s.lowFreq + k * step0;
            melFilter(center, k, rows, binHz, melOf(hertz, s), melOf(hertz + step0, s), melOf(hertz + 2 * step0, s), s,
                      one);
        } else {
            straightFilter(center, k, rows, one);
        }
    }
}

}  // namespace

void melWeights(int* center, float* rises, float* falls, int stride, int fftLen, int nFilter, const MelScale& scale,
                float one) {
    melBankOf<float>(center, {rises, falls, stride}, fftLen, nFilter, scale, one);
}
void melWeights(int* center, int* rises, int* falls, int stride, int fftLen, int nFilter, const MelScale& scale,
                float one) {
    melBankOf<int>(center, {rises, falls, stride}, fftLen, nFilter, scale, one);
}
void mixedWeights(int* center, float* rises, float* falls, int stride, int fftLen, int nFilter, float highLinFreq,
                  int nLinear, const MelScale& scale, float one) {
    mixedBankOf<float>(center, {rises, falls, stride}, fftLen, nFilter, highLinFreq, nLinear, scale, one);
}
void mixedWeights(int* center, int* rises, int* falls, int stride, int fftLen, int nFilter, float highLinFreq,
                  int nLinear, const MelScale& scale, float one) {
    mixedBankOf<int>(center, {rises, falls, stride}, fftLen, nFilter, highLinFreq, nLinear, scale, one);
}

namespace {

constexpr std::int64_t ln2 = 1488522236;

std::int64_t integerLn(std::int64_t x) {
    int e = 0;
    while (x >> e > 1) ++e;
    std::int64_t y = e > 29 ? x >> (e - 29) : x << (29 - e), f = 0;
    for (int i = 0; i < 31; ++i) {
        const std::int64_t t = y * y;
        f *= 2;
        y = t >> 29;
        if (y >= 1 << 30) {
            f += 1;
            y = t >> 30;
        }
    }
    return (e * ln2 + ((f * ln2) >> 31) - 22 * ln2) >> 9;
}
std::int64_t integerExp(std::int64_t q, const int* up, const int* down) {
    const std::int64_t p = q * 3098164009, n = p >> 53;
    auto t = static_cast<int>((((p >> 22) - (n << 31)) * ln2) >> 31);
    std::uint64_t v = std::uint64_t{1} << 31, s = v >> 1;
    for (int i = 0; i < 32; ++i, s /= 2) {
        if (t > up[i]) {
            v = ((v << 31) + v * s) >> 31;
            t -= up[i];
        } else if (t < down[i]) {
            v = ((v << 31) - v * s) >> 31;
            t -= down[i];
        }
    }
    return n > 9 ? INT_MAX : std::min<std::int64_t>(static_cast<std::int64_t>(v >> (9 - n)), INT_MAX);
}

}  // namespace

void integerWeights(int* center, int* rises, int* falls, int stride, int fftLen, int nFilter, const MelScale& s) {
    static int up[32], down[32];
    for (int i = 0; i < 32 && down[31] == 0; ++i) {
        up[i] = static_cast<int>(std::llround(std::log1p(std::ldexp(1.0, -i - 1)) * 2147483648.0));
        down[i] = static_cast<int>(std::llround(std::log1p(-std::ldexp(1.0, -i - 1)) * 2147483648.0));
    }
    const auto div = static_cast<std::int64_t>(s.melDiv * 4194304), mul = static_cast<std::int64_t>(s.melMul * 32768);
    const auto mel = [&](float f) {
        return ((integerLn((static_cast<std::int64_t>(f) << 22) + div) - integerLn(div)) * mul) >> 15;
    };
    const std::int64_t low = mel(s.lowFreq), range = mel(s.highFreq) - low, steps = nFilter + 1;
    const std::int64_t scale = (((std::int64_t{fftLen} << 22) / static_cast<int>(s.sampleFreq)) * div) >> 22;
    for (int i = 0; i <= nFilter + 1; ++i) {
        const std::int64_t m = (low * steps + i * range) / steps;
        const std::int64_t x = integerExp((m << 22) / (mul << 7), up, down) - (1 << 22);
        const std::int64_t w = (((scale >> 32) * x) << 10) + ((x * (scale & 0xFFFFFFFF)) >> 22);
        center[i] = static_cast<int>((w >> 22) + ((w >> 21) & 1));
    }
    for (int k = 0; k < nFilter; ++k) {
        straightFilter(center, k, Rows<int>{rises, falls, stride}, std::int64_t{1} << 30);
    }
}

void integerBank(const std::int32_t* spectrum, std::int32_t* dst, const int* center, const int* rises, const int* falls,
                 int stride, int nFilter, int scale) {
    for (int k = 0; k < nFilter; ++k) {
        const int* rise = rises + static_cast<std::ptrdiff_t>(k) * stride - center[k];
        const int* fall = falls + static_cast<std::ptrdiff_t>(k) * stride - center[k + 1] - 1;
        std::int64_t sum = 0;
        for (int j = center[k]; j <= center[k + 1]; ++j) sum += (std::int64_t{rise[j]} * spectrum[j]) >> 8;
        for (int j = center[k + 1] + 1; j <= center[k + 2]; ++j) sum += (std::int64_t{fall[j]} * spectrum[j]) >> 8;
        sum = scale >= 0 ? sum >> scale : sum * (std::int64_t{1} << -scale);
        dst[k] = static_cast<std::int32_t>(std::min<std::int64_t>((sum >> 22) + ((sum >> 21) & 1), INT_MAX));
    }
}

void coeffsToCaller(const float* rise, int riseLen, const float* fall, int fallLen, float* coeffs) {
    for (int i = 0; i < riseLen; ++i) coeffs[i] = rise[i];
    for (int i = 0; i < fallLen; ++i) coeffs[riseLen + i] = fall[i];
}
void coeffsToCaller(const int* rise, int riseLen, const int* fall, int fallLen, float* coeffs) {
    for (int i = 0; i < riseLen; ++i) coeffs[i] = static_cast<float>(rise[i] / 16384.0);
    for (int i = 0; i < fallLen; ++i) coeffs[riseLen + i] = static_cast<float>(fall[i] / 16384.0);
}
void coeffsFromCaller(const float* coeffs, float* rise, int riseLen, float* fall, int fallLen) {
    for (int i = 0; i < riseLen; ++i) rise[i] = coeffs[i];
    for (int i = 0; i < fallLen; ++i) fall[i] = coeffs[riseLen + i];
}
void coeffsFromCaller(const float* coeffs, int* rise, int riseLen, int* fall, int fallLen) {
    for (int i = 0; i < riseLen; ++i) rise[i] = static_cast<int>(coeffs[i] * 16384.0f);
    for (int i = 0; i < fallLen; ++i) fall[i] = static_cast<int>(coeffs[riseLen + i] * 16384.0f);
}
bool centersCopied(const int* center, int* dst, int nFilter, int lastBin) {
    if (center[0] < 0 || center[nFilter + 1] > lastBin) return false;
    for (int i = 1; i < nFilter; ++i) {
        if (center[i] < center[i - 1] || center[i] > center[i + 1]) return false;
    }
    for (int i = 0; i < nFilter + 2; ++i) dst[i] = center[i];
    return true;
}

void linearToMel(const float* src, float* dst, int len, float melMul, float melDiv) {
    const double per = 1.0 / melDiv;
    for (int i = 0; i < len; ++i) dst[i] = static_cast<float>(melMul * std::log(src[i] * per + 1.0));
}
void melToLinear(const float* src, float* dst, int len, float melMul, float melDiv) {
    const double per = 1.0 / melMul;
    for (int i = 0; i < len; ++i) dst[i] = static_cast<float>(melDiv * (std::exp(src[i] * per) - 1.0));
}

void copyWithZeros(const float* src, int srcLen, float* dst, int dstLen) {
    for (int i = 0; i < srcLen; ++i) dst[i] = src[i];
    for (int i = srcLen; i < dstLen; ++i) dst[i] = 0;
}
void copyWithZeros(const std::int16_t* src, int srcLen, std::int16_t* dst, int dstLen) {
    for (int i = 0; i < srcLen; ++i) dst[i] = src[i];
    for (int i = srcLen; i < dstLen; ++i) dst[i] = 0;
}

}  // namespace plain
