#include "plain/waveform.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace plain {
namespace {

float magnitude(float x) { return std::fabs(x); }
int magnitude(int x) { return std::abs(x); }
int raisedLen(int spacing, float) { return static_cast<int>(static_cast<float>(spacing) * 0.8f); }
int raisedLen(int spacing, int) { return spacing * 27 >> 5; }

template <class Sum>
int largest(const Sum* s, int from, int to) {
    int best = from;
    for (int n = from + 1; n < to; ++n) {
        if (s[n] > s[best]) best = n;
    }
    return best;
}

// The energies wrap in unsigned arithmetic, which costs nothing.
float add(float a, float b) { return a + b; }
int add(int a, int b) { return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b)); }
float sub(float a, float b) { return a - b; }
int sub(int a, int b) { return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b)); }

template <class Energy, class Sample, class Scale>
void process(const Sample* x, Sample* y, Sample lowered, Sample kept, Sample raised, Scale scale) {
    Energy e[200], s[200];
    e[0] = magnitude(static_cast<Energy>(x[0]) * x[0] - static_cast<Energy>(x[0]) * x[1]);
    for (int n = 1; n < 199; ++n) {
        e[n] = magnitude(static_cast<Energy>(x[n]) * x[n] - static_cast<Energy>(x[n - 1]) * x[n + 1]);
    }
    e[199] = magnitude(static_cast<Energy>(x[199]) * x[199] - static_cast<Energy>(x[198]) * x[199]);
    s[0] = 0;
    for (int k = 0; k < 5; ++k) s[0] = add(s[0], e[0]);
    for (int n = 1; n < 5; ++n) s[0] = add(s[0], e[n]);
    for (int n = 1; n < 5; ++n) s[n] = add(sub(s[n - 1], e[0]), e[n + 4]);
    for (int n = 5; n < 196; ++n) s[n] = add(sub(s[n - 1], e[n - 5]), e[n + 4]);
    for (int n = 196; n < 200; ++n) s[n] = add(sub(s[n - 1], e[n - 5]), e[199]);

    int back[20], peaks[40], count = 0, backs = 0;
    const int main = largest(s, 0, 200);
    for (int q = main; q > 25;) back[backs++] = q = largest(s, std::max(q - 79, 0), q - 24);
    while (backs > 0) peaks[count++] = back[--backs];
    peaks[count++] = main;
    for (int p = main; p < 175;) peaks[count++] = p = largest(s, p + 25, std::min(p + 80, 200));

    Sample w[200];
    for (Sample& v : w) v = lowered;
    for (int i = 0; i < count; ++i) {
        const int spacing = i + 1 < count ? peaks[i + 1] - peaks[i] : peaks[i] - peaks[i - 1];
        const int begin = std::max(peaks[i] - 4, 0);
        const int end = std::min(peaks[i] - 4 + raisedLen(spacing, Energy()), 200);
        for (int n = begin; n < end; ++n) w[n] = raised;
        if (begin > 0) w[begin - 1] = w[begin] = kept;
        if (end < 200) w[end - 1] = w[end] = kept;
    }
    for (int n = 0; n < 200; ++n) y[n] = scale(w[n], x[n]);
}

}  // namespace

void processWaveform(const float* x, float* y) {
    process<float>(x, y, 0.8f, 1.0f, 1.2f, [](float w, float v) { return w * v; });
}
void processWaveform(const std::int16_t* x, std::int16_t* y) {
    using Short = std::int16_t;
    process<int>(x, y, Short(27), Short(32), Short(38), [](int w, int v) {
        const int product = w * v;
        return static_cast<Short>(std::clamp((product + 15 + ((product >> 5) & 1)) >> 5, -32768, 32767));
    });
}

}  // namespace plain
