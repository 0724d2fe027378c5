// Scalar models of the Fourier transforms: the reported sizes recomputed from their formulas, the staged transform in
// plain loops, and a long-double transform for the measure of error.
#pragma once

#include <cmath>
#include <complex>
#include <cstdint>
#include <vector>

#include "elementary/elementary.h"

namespace model {

using Wide = std::complex<long double>;

// ---- Sizes
// -----------------------------------------------------------------------------------------------------------

struct FftSizes {
    std::uint32_t spec, initBuf, workBuf;
    bool operator==(const FftSizes&) const = default;
};

enum class FftForm { C_32, R_32, C_64, R_64, C_32sc, R_32s, R_16s32s };  // split forms report what the pair forms do

struct BlockOrders {
    int block, buffer;
};

inline BlockOrders blockOrders32(int order) {
    switch (order) {
        case 17:
            return {3, 9};
        case 18:
        case 19:
        case 20:
            return {4, 10};
        case 21:
            return {5, 13};
        default:
            return {8, 15};
    }
}
inline BlockOrders blockOrders64(int order) {
    switch (order) {
        case 15:
            return {3, 8};
        case 16:
        case 17:
        case 18:
            return {4, 10};
        case 19:
        case 20:
            return {6, 13};
        case 21:
            return {7, 14};
        default:
            return {8, 14};
    }
}

// The twiddle bytes and the work bytes of a complex transform, in arithmetic that wraps.
inline void twiddleAndWork(bool wide, int order, std::uint32_t& tw, std::uint32_t& work) {
    const std::uint32_t n = 1u << order;
    if (!wide && order <= 16) {
        tw = (8 * n + 23) & ~15u;
        work = (8 * n + 15) & ~15u;
    } else if (wide && order <= 14) {
        tw = 16 * (n + 1);
        work = 16 * n;
    } else {
        const BlockOrders b = wide ? blockOrders64(order) : blockOrders32(order);
        twiddleAndWork(wide, order - b.block, tw, work);
        const std::uint32_t area = (wide ? 16u : 8u) << b.buffer;
        tw += (wide ? 16u : 8u) * n;
        work = work > area ? work : area;
    }
}

inline FftSizes fftSizes(FftForm form, int order) {
    const std::uint32_t n = 1u << order;
    const auto bits = [](std::uint32_t length) { return (length / 4 * 4 + 19) & ~15u; };
    std::uint32_t tw = 0, work = 0;
    switch (form) {
        case FftForm::C_32:
            if (order <= 3) return {144, 0, 0};
            twiddleAndWork(false, order, tw, work);
            return {tw + bits(n) + 144, ((4 * (n / 4) + 19) & ~15u) + 16, work + 16};
        case FftForm::R_32:
            if (order <= 3) return {144, 0, 0};
            twiddleAndWork(false, order - 1, tw, work);
            return {tw + bits(n / 2) + 2 * ((8 * (n / 4) + 15) & ~15u) + 144, ((4 * (n / 4) + 19) & ~15u) + 16,
                    work + 16};
        case FftForm::C_64:
            if (order <= 3) return {152, 0, 0};
            twiddleAndWork(true, order, tw, work);
            return {tw + bits(n) + 160, ((8 * (n / 4) + 23) & ~15u) + 16, work + 16};
        case FftForm::R_64:
            if (order <= 3) return {152, 0, 0};
            twiddleAndWork(true, order - 1, tw, work);
            return {tw + bits(n / 2) + 32 * (n / 4) + 160, ((8 * (n / 4) + 23) & ~15u) + 16, work + 16};
        default:
            break;
    }
    FftSizes sizes = fftSizes(form == FftForm::C_32sc  ? FftForm::C_64
                              : form == FftForm::R_32s ? FftForm::R_64
                                                       : FftForm::R_32,
                              order);
    sizes.workBuf += form == FftForm::C_32sc ? 16 * n : form == FftForm::R_32s ? 8 * n + 16 : 4 * n + 8;
    sizes.spec += 48;
    if (sizes.initBuf != 0) sizes.initBuf += 16;
    if (sizes.workBuf != 0) sizes.workBuf += 16;
    return sizes;
}

// ---- The staged transform
// --------------------------------------------------------------------------------------------

// The radices of a short transform, by the rules.
inline std::vector<int> shortStages(bool wide, int order) {
    std::vector<int> stages;
    int done = 0;
    while (done < order) {
        const int rest = order - done;
        bool eight;
        if (wide) {
            eight = done == 0 ? order != 4 && order != 6 : rest != 2 && rest != 4;
        } else {
            eight =
                done != 0 && (rest == 3 || (rest > 4 && done > 2) ||
                              (done == 2 && (order == 7 || order == 10 || order == 11 || order == 13 || order == 14)));
        }
        stages.push_back(eight ? 8 : 4);
        done += eight ? 3 : 2;
    }
    return stages;
}

inline std::vector<int> mergeStages(int block) {
    std::vector<int> stages;
    for (int done = 0; done < block;) {
        const bool four = block == done + 2 || block == done + 4;
        stages.push_back(four ? 4 : 8);
        done += four ? 2 : 3;
    }
    return stages;
}

// A transform of 2^order complex values whose twiddles are those of a context of waveOrder.
template <class T>
class StagedTransform {
public:
    StagedTransform(int waveOrder, int order) : waveOrder_(waveOrder), order_(order) {
        if (order >= 4) {
            const std::int64_t n = std::int64_t{1} << waveOrder;
            const double step = 6.283185307179586 / static_cast<double>(n);
            for (std::int64_t i = 0; i <= n / 8; ++i)
                s_.push_back(static_cast<T>(vorn::sin64(static_cast<double>(i) * step)));
            for (std::int64_t i = n / 8 + 1; i <= n / 4; ++i) {
                s_.push_back(static_cast<T>(vorn::cos64(static_cast<double>(n / 4 - i) * step)));
            }
        }
        plan(order);
    }

    // re and im hold x; they receive X. normalised multiplies by factor at the stage that takes it.
    void run(std::vector<T>& re, std::vector<T>& im, bool inverse, bool normalised, T factor) const {
        if (inverse) re.swap(im);
        std::vector<T> x(2 * re.size()), y(2 * re.size());
        for (std::size_t i = 0; i < re.size(); ++i) x[2 * i] = re[i], x[2 * i + 1] = im[i];
        if (order_ <= 3) {
            direct(x, y, normalised, factor);
        } else {
            combine(stages_.size(), x.data(), 1, y.data(), normalised, factor);
        }
        for (std::size_t i = 0; i < re.size(); ++i) re[i] = y[2 * i], im[i] = y[2 * i + 1];
        if (inverse) re.swap(im);
    }

    T sine(std::int64_t i) const { return s_[static_cast<std::size_t>(i)]; }

private:
    struct C {
        T re, im;
    };
    static C add(C a, C b) { return {a.re + b.re, a.im + b.im}; }
    static C sub(C a, C b) { return {a.re - b.re, a.im - b.im}; }
    static C times(C a, T f) { return {a.re * f, a.im * f}; }
    static C turn(C a) { return {a.im, -a.re}; }  // -i a

    void plan(int order) {
        const int limit = sizeof(T) == 4 ? 17 : 15;
        if (order < 4) return;
        if (order < limit) {
            stages_ = shortStages(sizeof(T) == 8, order);
            innermost_ = stages_.size();
            return;
        }
        const BlockOrders b = sizeof(T) == 4 ? blockOrders32(order) : blockOrders64(order);
        plan(order - b.block);
        for (int radix : mergeStages(b.block)) stages_.push_back(radix);
    }

    C twiddle(std::int64_t index, std::int64_t length) const {
        const std::int64_t n = std::int64_t{1} << waveOrder_;
        const std::int64_t angle = index * (n / length), quadrant = angle / (n / 4), rest = angle % (n / 4);
        const T sin = sine(rest), cos = sine(n / 4 - rest);
        if (quadrant == 0) return {cos, -sin};
        if (quadrant == 1) return {-sin, -cos};
        if (quadrant == 2) return {-cos, sin};
        return {sin, cos};
    }

    static void butterfly4(C* x, T factor, bool scaled) {
        C a = add(x[0], x[2]), b = sub(x[0], x[2]), c = add(x[1], x[3]), d = sub(x[1], x[3]);
        if (scaled) a = times(a, factor), b = times(b, factor), c = times(c, factor), d = times(d, factor);
        x[0] = add(a, c);
        x[2] = sub(a, c);
        x[1] = {b.re + d.im, b.im - d.re};
        x[3] = {b.re - d.im, b.im + d.re};
    }
    static void butterfly8(C* x, T factor, bool scaled) {
        C even[4] = {x[0], x[2], x[4], x[6]}, odd[4] = {x[1], x[3], x[5], x[7]};
        butterfly4(even, factor, scaled);
        butterfly4(odd, factor, scaled);
        const T r = static_cast<T>(0.7071067811865476);
        const C o1 = {(odd[1].re + odd[1].im) * r, (odd[1].im - odd[1].re) * r};
        const C o3 = {(odd[3].im - odd[3].re) * r, -((odd[3].re + odd[3].im) * r)};
        const C turned[4] = {odd[0], o1, {odd[2].im, -odd[2].re}, o3};
        for (int k = 0; k < 4; ++k) x[k] = add(even[k], turned[k]), x[k + 4] = sub(even[k], turned[k]);
    }

    void direct(const std::vector<T>& x, std::vector<T>& y, bool normalised, T factor) const {
        C z[8];
        const int n = 1 << order_;
        for (int i = 0; i < n; ++i) z[i] = {x[2 * i], x[2 * i + 1]};
        if (order_ == 0 && normalised) z[0] = times(z[0], factor);
        if (order_ == 1) {
            const C a = add(z[0], z[1]), b = sub(z[0], z[1]);
            z[0] = normalised ? times(a, factor) : a;
            z[1] = normalised ? times(b, factor) : b;
        }
        if (order_ == 2) butterfly4(z, factor, normalised);
        if (order_ == 3) butterfly8(z, factor, normalised);
        for (int i = 0; i < n; ++i) y[2 * i] = z[i].re, y[2 * i + 1] = z[i].im;
    }

    // The transform by the first count stages of the values at x, 2 * stride numbers apart.
    void combine(std::size_t count, const T* x, std::int64_t stride, T* y, bool normalised, T factor) const {
        if (count == 0) {
            y[0] = x[0], y[1] = x[1];
            return;
        }
        const int radix = stages_[count - 1];
        std::int64_t span = 1;
        for (std::size_t i = 0; i + 1 < count; ++i) span *= stages_[i];
        for (int n = 0; n < radix; ++n) {
            combine(count - 1, x + 2 * n * stride, stride * radix, y + 2 * n * span, normalised, factor);
        }
        for (std::int64_t k = 0; k < span; ++k) {
            C z[8];
            for (int n = 0; n < radix; ++n) {
                const C a = {y[2 * (n * span + k)], y[2 * (n * span + k) + 1]};
                const C w = twiddle(n * k, radix * span);
                z[n] = n == 0 || count == 1 ? a : C{a.re * w.re - a.im * w.im, a.re * w.im + a.im * w.re};
            }
            if (radix == 4) butterfly4(z, factor, false);
            if (radix == 8) butterfly8(z, factor, false);
            for (int n = 0; n < radix; ++n) {
                if (count == innermost_ && normalised) z[n] = times(z[n], factor);
                y[2 * (n * span + k)] = z[n].re, y[2 * (n * span + k) + 1] = z[n].im;
            }
        }
    }

    int waveOrder_, order_;
    std::vector<T> s_;
    std::vector<int> stages_;
    std::size_t innermost_ = 0;
};

// Real values to their spectrum in Perm layout, order 4 and above: the complex transform of half the length and the
// recombination.
template <class T>
std::vector<T> realToPerm(const std::vector<T>& x, int order, bool normalised, T factor) {
    const std::size_t m = x.size() / 2;
    const StagedTransform<T> half(order, order - 1);
    std::vector<T> zr(m), zi(m), out(x.size());
    for (std::size_t i = 0; i < m; ++i) zr[i] = x[2 * i], zi[i] = x[2 * i + 1];
    half.run(zr, zi, false, normalised, factor);
    const StagedTransform<T> wave(order, 4);
    out[0] = zr[0] + zi[0];
    out[1] = zr[0] - zi[0];
    const auto quarter = static_cast<std::int64_t>(x.size() / 4);
    for (std::size_t j = 1; j < m / 2; ++j) {
        const T a = static_cast<T>(0.5) * wave.sine(quarter - static_cast<std::int64_t>(j));
        const T b = static_cast<T>(0.5 - 0.5 * static_cast<double>(wave.sine(static_cast<std::int64_t>(j))));
        const T dr = zr[j] - zr[m - j], si = zi[j] + zi[m - j];
        const T p = a * si + b * dr, q = b * si - a * dr;
        out[2 * j] = zr[m - j] + p;
        out[2 * j + 1] = q - zi[m - j];
        out[2 * (m - j)] = zr[j] - p;
        out[2 * (m - j) + 1] = q - zi[j];
    }
    out[m] = zr[m / 2];
    out[m + 1] = -zi[m / 2];
    return out;
}

// Back from Perm layout, order 4 and above.
template <class T>
std::vector<T> permToReal(const std::vector<T>& x, int order, bool normalised, T factor) {
    const std::size_t m = x.size() / 2;
    const StagedTransform<T> wave(order, 4);
    std::vector<T> zr(m), zi(m), out(x.size());
    zr[0] = x[0] + x[1];
    zi[0] = x[0] - x[1];
    const auto quarter = static_cast<std::int64_t>(x.size() / 4);
    for (std::size_t j = 1; j < m / 2; ++j) {
        const T a = wave.sine(quarter - static_cast<std::int64_t>(j)), b = -wave.sine(static_cast<std::int64_t>(j));
        const T xr = x[2 * j], xi = x[2 * j + 1], yr = x[2 * (m - j)], yi = x[2 * (m - j) + 1];
        const T dr = xr - yr, sr = xr + yr, si = xi + yi, di = xi - yi;
        const T p = a * dr + b * si, q = b * dr - a * si;
        zr[j] = sr + q;
        zi[j] = di + p;
        zr[m - j] = sr - q;
        zi[m - j] = p - di;
    }
    zr[m / 2] = 2 * x[m];
    zi[m / 2] = -2 * x[m + 1];
    StagedTransform<T>(order, order - 1).run(zr, zi, true, normalised, factor);
    for (std::size_t i = 0; i < m; ++i) out[2 * i] = zr[i], out[2 * i + 1] = zi[i];
    return out;
}

// ---- The definition
// --------------------------------------------------------------------------------------------------

// exp(-2 pi i k / n) for k below n, from two tables of about the root of n entries.
class Circle {
public:
    explicit Circle(std::int64_t n) : n_(n) {
        const long double step = 2 * std::acos(-1.0L) / static_cast<long double>(n);
        for (std::int64_t i = 0; i < fine; ++i) fine_.push_back(std::polar(1.0L, -step * static_cast<long double>(i)));
        for (std::int64_t i = 0; i * fine < n; ++i) {
            coarse_.push_back(std::polar(1.0L, -step * static_cast<long double>(i * fine)));
        }
    }
    Wide operator()(std::int64_t k) const {
        k &= n_ - 1;
        const Wide a = coarse_[static_cast<std::size_t>(k / fine)], b = fine_[static_cast<std::size_t>(k % fine)];
        return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
    }

private:
    static constexpr std::int64_t fine = 1024;
    std::int64_t n_;
    std::vector<Wide> fine_, coarse_;
};

// X[k] of x, not normalised, by the sum.
template <class Value>
Wide dftBin(const std::vector<Value>& x, std::int64_t k, const Circle& circle) {
    Wide sum = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        const Wide w = circle(static_cast<std::int64_t>(i) * k), v = Wide(x[i]);
        sum += Wide(v.real() * w.real() - v.imag() * w.imag(), v.real() * w.imag() + v.imag() * w.real());
    }
    return sum;
}

// The whole spectrum in long double, radix 2 (Cooley, Tukey 1965).
inline void fourier(std::vector<Wide>& x) {
    const std::size_t n = x.size();
    for (std::size_t i = 1, j = 0; i < n; ++i) {
        std::size_t bit = n / 2;
        for (; (j & bit) != 0; bit /= 2) j ^= bit;
        j ^= bit;
        if (i < j) std::swap(x[i], x[j]);
    }
    const Circle circle(static_cast<std::int64_t>(n));
    std::vector<Wide> w(n / 2 + 1);
    for (std::size_t k = 0; k < n / 2; ++k) w[k] = circle(static_cast<std::int64_t>(k));
    for (std::size_t half = 1; half < n; half *= 2) {
        for (std::size_t base = 0; base < n; base += 2 * half) {
            for (std::size_t k = 0; k < half; ++k) {
                const Wide f = w[k * (n / 2 / half)], b = x[base + half + k];
                const Wide t(b.real() * f.real() - b.imag() * f.imag(), b.real() * f.imag() + b.imag() * f.real());
                x[base + half + k] = x[base + k] - t;
                x[base + k] += t;
            }
        }
    }
}

// The root of the mean square of actual - exact over that of exact.
template <class Value>
long double relativeError(const std::vector<Value>& actual, const std::vector<Wide>& exact) {
    long double error = 0, size = 0;
    for (std::size_t i = 0; i < actual.size(); ++i) {
        error += std::norm(Wide(actual[i]) - exact[i]);
        size += std::norm(exact[i]);
    }
    return std::sqrt(error / size);
}

}  // namespace model
