// Transforms of real values on a complex transform of half the length.
#include "fft/real/core.h"

#include "fft/contexts/tables.h"
#include "fft/core/butterflies.h"
#include "fft/core/complex.h"

namespace vorn::fft {
namespace {

template <class T>
constexpr T root = static_cast<T>(0.7071067811865476);  // cos(pi / 4)

// Orders 0 to 3: closed forms. The factor falls on the sums in lengths 1 and 2, on the first level of sums in 4 and 8.
template <class T, class Level>
void directForward(int order, Level level, const T* x, T* dst) {
    const auto scaled = [level](T sum) { return level(Complex<T>{sum, T(0)}).re; };
    if (order == 0) {
        dst[0] = scaled(x[0]);
    } else if (order == 1) {
        const T sum = x[0] + x[1], dif = x[0] - x[1];
        dst[0] = scaled(sum);
        dst[1] = scaled(dif);
    } else if (order == 2) {
        const T sum02 = scaled(x[0] + x[2]), dif02 = scaled(x[0] - x[2]);
        const T sum13 = scaled(x[1] + x[3]), dif31 = scaled(x[3] - x[1]);
        dst[0] = sum02 + sum13;
        dst[1] = sum02 - sum13;
        dst[2] = dif02;
        dst[3] = dif31;
    } else {
        const T sum04 = scaled(x[0] + x[4]), dif04 = scaled(x[0] - x[4]);
        const T sum26 = scaled(x[2] + x[6]), dif26 = scaled(x[2] - x[6]);
        const T sum15 = scaled(x[1] + x[5]), dif15 = scaled(x[1] - x[5]);
        const T sum37 = scaled(x[3] + x[7]), dif37 = scaled(x[3] - x[7]);
        const T even = sum04 + sum26, odd = sum15 + sum37;
        const T re = (dif15 - dif37) * root<T>, im = (dif15 + dif37) * root<T>;
        dst[0] = even + odd;
        dst[1] = even - odd;
        dst[2] = dif04 + re;
        dst[3] = -dif26 - im;
        dst[4] = sum04 - sum26;
        dst[5] = sum37 - sum15;
        dst[6] = dif04 - re;
        dst[7] = dif26 - im;
    }
}

template <class T, class Level>
void directInverse(int order, Level level, const T* spectrum, T nyquist, T* dst) {
    const auto scaled = [level](T sum) { return level(Complex<T>{sum, T(0)}).re; };
    if (order == 0) {
        dst[0] = scaled(spectrum[0]);
        return;
    }
    const T sum = scaled(spectrum[0] + nyquist), dif = scaled(spectrum[0] - nyquist);
    if (order == 1) {
        dst[0] = sum;
        dst[1] = dif;
    } else if (order == 2) {
        const T re = scaled(spectrum[2] + spectrum[2]), im = scaled(spectrum[3] + spectrum[3]);
        dst[0] = sum + re;
        dst[1] = dif - im;
        dst[2] = sum - re;
        dst[3] = dif + im;
    } else {
        const T re2 = scaled(spectrum[4] + spectrum[4]), im2 = scaled(spectrum[5] + spectrum[5]);
        const T reSum = scaled(spectrum[2] + spectrum[6]), reDif = scaled(spectrum[2] - spectrum[6]);
        const T imSum = scaled(spectrum[3] + spectrum[7]), imDif = scaled(spectrum[7] - spectrum[3]);
        const T even0 = sum + re2, even2 = sum - re2, odd1 = dif - im2, odd3 = dif + im2;
        const T twice1 = (reDif - imSum) * (root<T> + root<T>), twice3 = (reDif + imSum) * (root<T> + root<T>);
        dst[0] = even0 + (reSum + reSum);
        dst[4] = even0 - (reSum + reSum);
        dst[2] = even2 + (imDif + imDif);
        dst[6] = even2 - (imDif + imDif);
        dst[1] = odd1 + twice1;
        dst[5] = odd1 - twice1;
        dst[3] = odd3 - twice3;
        dst[7] = odd3 + twice3;
    }
}

template <class T, class Run>
void withLevel(bool normalised, T factor, Run run) {
    if (normalised) {
        run(TimesFactor<T>{factor});
    } else {
        run(AsIs{});
    }
}

template <class V>
struct Recombined {
    Complex<V> low, high;
};

// z holds Z[j], mirror holds Z[M - j]; A and B are those of realRecTab.
template <class V>
VORN_INLINE Recombined<V> recombineReal(Complex<V> z, Complex<V> mirror, V a, V b) {
    const V re = z.re - mirror.re, im = z.im + mirror.im;
    const V p = a * im + b * re, q = b * im - a * re;
    return {{mirror.re + p, q - mirror.im}, {z.re - p, q - z.im}};
}

// x holds X[j], mirror holds X[M - j]; A and B are those of ccsRecTab.
template <class V>
VORN_INLINE Recombined<V> recombineCcs(Complex<V> x, Complex<V> mirror, V a, V b) {
    const V difRe = x.re - mirror.re, sumRe = x.re + mirror.re;
    const V sumIm = x.im + mirror.im, difIm = x.im - mirror.im;
    const V p = a * difRe + b * sumIm, q = b * difRe - a * sumIm;
    return {{sumRe + q, difIm + p}, {sumRe - q, p - difIm}};
}

// Runs a recombination over the pairs (j, M - j), j from 1 to M / 2. The last pair is the middle bin with itself, which
// the caller sets afterwards.
template <class V, class T, class Rule>
void recombineLanes(std::ptrdiff_t length, const T* table, const T* src, T* dst, Rule rule) {
    constexpr std::ptrdiff_t lanes = V::lanes;
    for (std::ptrdiff_t j = 1; j <= length / 2; j += lanes, table += 2 * lanes) {
        const std::ptrdiff_t mirror = length - j - lanes + 1;
        Complex<V> low, high;
        loadPairs(src + 2 * j, low.re, low.im);
        loadPairs(src + 2 * mirror, high.re, high.im);
        const Recombined<V> result =
            rule(low, Complex<V>{reverse(high.re), reverse(high.im)}, load<V>(table), load<V>(table + lanes));
        storePairs(dst + 2 * j, result.low.re, result.low.im);
        storePairs(dst + 2 * mirror, reverse(result.high.re), reverse(result.high.im));
    }
}

template <class T, class Rule>
void recombine(int order, const T* table, const T* src, T* dst, Rule rule) {
    const std::ptrdiff_t length = std::ptrdiff_t{1} << (order - 1);
    if (recombinationLanes<T>(order) == Wide<T>::lanes) {
        recombineLanes<Wide<T>>(length, table, src, dst, rule);
    } else {
        recombineLanes<typename Precision<T>::Narrow>(length, table, src, dst, rule);
    }
}

}  // namespace

template <class T>
void realForward(const FloatSpec<T>& spec, const T* src, T* dst, T* work) {
    const int order = spec.order;
    if (order < firstTableOrder) {
        withLevel(spec.normFwd != 0, spec.normFactor, [&](auto level) { directForward(order, level, src, dst); });
        return;
    }
    transformPairs(spec, order - 1, Direction::Forward, src, dst, work);
    const std::ptrdiff_t middle = std::ptrdiff_t{1} << (order - 1);  // Z[M / 2] stands at 2 (M / 2)
    const T re = dst[0], im = dst[1], middleRe = dst[middle], middleIm = dst[middle + 1];
    recombine(order, spec.realRecTab, dst, dst,
              [](auto z, auto mirror, auto a, auto b) { return recombineReal(z, mirror, a, b); });
    dst[0] = re + im;
    dst[1] = re - im;
    dst[middle] = middleRe;
    dst[middle + 1] = -middleIm;
}

template <class T>
void realInverse(const FloatSpec<T>& spec, const T* spectrum, T nyquist, T* dst, T* work) {
    const int order = spec.order;
    if (order < firstTableOrder) {
        withLevel(spec.normInv != 0, spec.normFactor,
                  [&](auto level) { directInverse(order, level, spectrum, nyquist, dst); });
        return;
    }
    const std::ptrdiff_t middle = std::ptrdiff_t{1} << (order - 1);
    const T first = spectrum[0], middleRe = spectrum[middle], middleIm = spectrum[middle + 1];
    recombine(order, spec.ccsRecTab, spectrum, dst,
              [](auto x, auto mirror, auto a, auto b) { return recombineCcs(x, mirror, a, b); });
    dst[0] = first + nyquist;
    dst[1] = first - nyquist;
    dst[middle] = T(2) * middleRe;
    dst[middle + 1] = T(-2) * middleIm;
    transformPairs(spec, order - 1, Direction::Inverse, dst, dst, work);
}

template void realForward(const FloatSpec<float>&, const float*, float*, float*);
template void realForward(const FloatSpec<double>&, const double*, double*, double*);
template void realInverse(const FloatSpec<float>&, const float*, float, float*, float*);
template void realInverse(const FloatSpec<double>&, const double*, double, double*, double*);

}  // namespace vorn::fft
