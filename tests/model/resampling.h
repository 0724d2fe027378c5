// Plain models of resampling: filters from their formulas, samples as sums over the taps of both sides, the phases of a
// rational ratio from the distances of taps to positions.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <vector>

#include "elementary/elementary.h"
#include "vornsr/signal.h"

namespace model::resampling {

inline double bessel(double x) {
    double s = 1, term = 1, k = 1;
    for (;;) {
        const double t = (x * 0.5) / k;
        term = (term * t) * t;
        k += 1;
        s += term;
        if (term < 1e-21 * s) return s;
    }
}

// Points 0 to L - 1 of a sinc with n points a sample, under a Kaiser window, normalised at whole samples.
inline std::vector<double> design(std::int64_t n, std::int64_t L, float rollf, float alpha) {
    std::vector<double> t(static_cast<std::size_t>(L));
    const double w = 3.14159265358979323846 / static_cast<double>(n), b = 1 / bessel(alpha),
                 d = 1 / static_cast<double>(L - 1);
    t[0] = rollf;
    for (std::int64_t i = 1; i < L; ++i) {
        const auto x = static_cast<double>(i);
        const double sinc = vorn::sin64(static_cast<double>(rollf) * w * x) / (x * w), u = x * d;
        t[static_cast<std::size_t>(i)] = bessel(std::sqrt(1 - u * u) * static_cast<double>(alpha)) * b * sinc;
    }
    double s = 0;
    for (std::int64_t i = n; i < L; i += n) s += t[static_cast<std::size_t>(i)];
    double g = 1 / (2 * s + t[0]);
    if (t[0] < 0) g = -g;
    for (double& x : t) x *= g;
    return t;
}

// What a table or row holds, as numbers, and the factor that undoes its scaling.
struct Table {
    int nStep;
    std::vector<double> points;  // L and one more
    float norm;
    double L() const { return static_cast<double>(points.size() - 1); }
};
inline std::int64_t tableLen(int nStep, float window) {
    const float product = window * 0.5f * static_cast<float>(nStep);
    return static_cast<std::int64_t>(std::trunc(product)) + 1;
}
inline Table variable(int nStep, float window, float rollf, float alpha, bool sixteenBits) {
    Table table = {nStep, design(nStep, tableLen(nStep, window), rollf, alpha), 1.0f};
    if (!sixteenBits) {
        for (double& x : table.points) x = static_cast<float>(x);
    } else {
        double m = 0;
        for (double x : table.points) m = std::max(m, std::fabs(x));
        for (double& x : table.points) {
            const double y = x * (16383 / m);
            x = std::trunc(y + std::copysign(0.5, y));
        }
        table.norm = static_cast<float>(m / 16383);
    }
    table.points.push_back(table.points.back());
    return table;
}

inline void storeSample(double y, float& dst) { dst = static_cast<float>(y); }
inline void storeSample(double y, Vorn16s& dst) {
    if (std::isnan(y)) {
        dst = 0;
    } else if (y > 32767.0) {
        dst = 32767;
    } else if (y < -32768.0) {
        dst = -32768;
    } else {
        dst = static_cast<Vorn16s>(std::trunc(y + std::copysign(0.5, y)));
    }
}

// Numbers added in turn to four sums, which are added up as (0 + 2) + (1 + 3).
class FourSums {
public:
    void add(double x) { sum_[next_++ % 4] += x; }
    double total() const { return (sum_[0] + sum_[2]) + (sum_[1] + sum_[3]); }

private:
    double sum_[4] = {};
    int next_ = 0;
};

inline double interpolate(const Table& table, std::int64_t q, double r) {
    return table.points[static_cast<std::size_t>(q)] * (1 - r) + table.points[static_cast<std::size_t>(q + 1)] * r;
}

// src points at the sample of time 0. Appends to dst; time moves on.
template <class Sample>
void resample(const Table& table, const Sample* src, int len, std::vector<Sample>& dst, double factor, float norm,
              double& time) {
    const double n = table.nStep, L = table.L(), end = std::trunc(time) + len;
    for (; time < end; time += 1 / factor) {
        const auto i = static_cast<std::int64_t>(time);
        const double f = time - static_cast<double>(i);
        FourSums left, right;
        double gain;
        if (factor < 1) {
            const double h = factor * n;
            double p = factor * f * n;
            for (std::int64_t k = 0; p < L - 1e-5; ++k, p += h) {
                const auto q = static_cast<std::int64_t>(p);
                left.add(interpolate(table, q, p - static_cast<double>(q)) * static_cast<double>(src[i - k]));
            }
            p = (1 - f) * factor * n;
            for (std::int64_t k = 0; p < L - 1e-5; ++k, p += h) {
                const auto q = static_cast<std::int64_t>(p);
                right.add(interpolate(table, q, p - static_cast<double>(q)) * static_cast<double>(src[i + 1 + k]));
            }
            gain = static_cast<double>(norm) * factor * static_cast<double>(table.norm);
        } else {
            for (const bool isLeft : {true, false}) {
                const double at = n * (isLeft ? f : 1 - f);
                auto q = static_cast<std::int64_t>(1e-5 + at);
                const double r = at - static_cast<double>(q);
                for (std::int64_t k = 0; static_cast<double>(q) < L; ++k, q += table.nStep) {
                    const double sample = src[isLeft ? i - k : i + 1 + k];
                    (isLeft ? left : right).add(interpolate(table, q, r) * sample);
                }
            }
            gain = static_cast<double>(norm) * static_cast<double>(table.norm);
        }
        Sample y;
        storeSample((left.total() + right.total()) * gain, y);
        dst.push_back(y);
    }
}

// A rational ratio: one row of taps a phase.
struct Phases {
    int in, out, halfLen;
    std::vector<std::vector<double>> rows;  // 2H taps, in phase 0 one more
};

inline Phases phases(int inRate, int outRate, int len) {
    Phases p = {inRate, outRate, ((len + 3) & ~3) / 2, {}};
    for (int d = 2; d <= std::min(p.in, p.out);) {
        if (p.in % d == 0 && p.out % d == 0) {
            p.in /= d;
            p.out /= d;
        } else {
            ++d;
        }
    }
    for (int s = 0; s < p.out; ++s) p.rows.emplace_back(static_cast<std::size_t>(2 * p.halfLen + (s == 0)));
    return p;
}
// Tap m of phase s stands so far from the position s/out, in steps of 1/out of a sample.
inline std::int64_t distance(const Phases& p, int s, int m) {
    const int sample = m - p.halfLen + (s != 0);
    return std::llabs(static_cast<std::int64_t>(sample) * p.out - s);
}
inline void fill(Phases& p, float rollf, float alpha, bool q14) {
    const double taps = 2 * p.halfLen;
    const int n = std::max(p.in, p.out);
    const auto reach = static_cast<float>(p.out >= p.in ? taps : taps * (static_cast<double>(p.out) / p.in));
    const auto T = static_cast<std::int64_t>((static_cast<double>(reach) + 1e-5) * 0.5 * n) + 1;
    const auto points = design(n, T, rollf, alpha);
    for (int s = 0; s < p.out; ++s) {
        auto& row = p.rows[static_cast<std::size_t>(s)];
        for (std::size_t m = 0; m < row.size(); ++m) {
            const double x = points[static_cast<std::size_t>(distance(p, s, static_cast<int>(m)))];
            row[m] = q14 ? std::clamp(std::nearbyint(x * 16384), -32768.0, 32767.0) : static_cast<float>(x);
        }
    }
}

// The rules of the four kinds of dot products.
inline double dotSingle(const float* src, const std::vector<double>& row) {
    const std::vector<float> taps(row.begin(), row.end());
    float result;
    vornsDotProd_32f(src, taps.data(), static_cast<int>(taps.size()), &result);
    return static_cast<double>(result);
}
inline double dotDouble(const float* src, const std::vector<double>& row) {
    const std::vector<float> taps(row.begin(), row.end());
    double result;
    vornsDotProd_32f64f(src, taps.data(), static_cast<int>(taps.size()), &result);
    return result;
}
inline double dotExact(const Vorn16s* src, const std::vector<double>& row) {
    std::int64_t sum = 0;
    for (std::size_t m = 0; m < row.size(); ++m) sum += std::int64_t{src[m]} * static_cast<std::int64_t>(row[m]);
    return static_cast<double>(sum);
}
inline double dotRounded(const Vorn16s* src, const std::vector<double>& row) {
    double lane[16] = {};
    for (std::size_t m = 0; m < row.size(); ++m) {
        lane[m % 16] += static_cast<double>(static_cast<float>(src[m]) * static_cast<float>(row[m]));
    }
    for (int half = 8; half > 0; half /= 2) {
        for (int j = 0; j < half; ++j) lane[j] += lane[j + half];
    }
    return static_cast<double>(static_cast<float>(lane[0]));
}

template <class Sample, class Dot>
void resampleFixed(const Phases& p, const Sample* src, int len, std::vector<Sample>& dst, float filterNorm, float norm,
                   double& time, Dot dot) {
    const auto base = static_cast<std::int64_t>(time);
    const double f = time - static_cast<double>(base);
    const auto s0 = static_cast<std::int64_t>(p.out * f + 0.5);
    const double G =
        std::min(static_cast<double>(p.out) / p.in, 1.0) * static_cast<double>(filterNorm) * static_cast<double>(norm);
    std::int64_t pos = s0 + base * p.out;
    for (; pos < (base + len) * p.out; pos += p.in) {
        const auto phase = static_cast<std::size_t>(pos % p.out);
        const Sample* window = src + pos / p.out + 1 - p.halfLen - (phase == 0);
        Sample y;
        storeSample(dot(window, p.rows[phase]) * G, y);
        dst.push_back(y);
    }
    time = f + static_cast<double>(pos - s0) / p.out;
}

}  // namespace model::resampling
