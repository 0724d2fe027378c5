// Correlation coefficients of 16-bit signals: products over the geometric mean of the energies.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "frame/checks.h"
#include "frame/rounding.h"
#include "reductions/dot_kernels.h"
#include "simd/simd.h"
#include "vornsr/noise.h"

namespace vorn::pitch {
namespace {

constexpr Vorn64f smallestNormal = 0x1p-126;

// 0 where the energies give no divisor. V is a vector of doubles.
template <class V>
VORN_INLINE V coefficient(V energy1, V energy2, V product) {
    const auto above = absOf(energy1 * energy2) > splat<V>(smallestNormal);
    return select(above, product / (sqrtOf(energy1) * sqrtOf(energy2)), splat<V>(0.0));
}
Vorn32f coefficient(Vorn32f energy1, Vorn32f energy2, Vorn32f product) {
    return static_cast<Vorn32f>(
        firstLane(coefficient(splat<f64x2>(energy1), splat<f64x2>(energy2), splat<f64x2>(product))));
}

// The exact sums go over pieces that stay in the cache, so that several of them read memory once.
constexpr std::ptrdiff_t piece = 4096;
constexpr std::ptrdiff_t worthwhile = 32;  // fewer products are sooner added one by one

VORN_NOINLINE std::int64_t exactSum(const Vorn16s* a, const Vorn16s* b, std::ptrdiff_t len) {
    return dots::exactDot(a, b, len);
}

template <bool withEnergy1>
Vorn32f correlate(const Vorn16s* src1, const Vorn16s* src2, std::ptrdiff_t len, Vorn32f energy1) {
    std::int64_t sum11 = 0, sum22 = 0, sum12 = 0;
    std::ptrdiff_t i = 0;
    for (; i < len && len < worthwhile; ++i) {
        const std::int32_t a = src1[i], b = src2[i];
        sum11 += a * a, sum22 += b * b, sum12 += a * b;
    }
    for (; i < len; i += piece) {
        const std::ptrdiff_t n = std::min(len - i, piece);
        if (withEnergy1) sum11 += exactSum(src1 + i, src1 + i, n);
        sum22 += exactSum(src2 + i, src2 + i, n);
        sum12 += exactSum(src1 + i, src2 + i, n);
    }
    return coefficient(withEnergy1 ? static_cast<Vorn32f>(sum11) : energy1, static_cast<Vorn32f>(sum22),
                       static_cast<Vorn32f>(sum12));
}

// Decimated signals. Sample t of src2 is src2[t dec]; src1 is taken backwards from the end of its first overlap, so
// that the products of neighbouring lags stand side by side: lag i is the sum over t of back[count - 1 + i - t] times
// sample t, count + i of them. Each lag keeps the order of its own sum, and stands in a lane.
class Backwards {
public:
    static constexpr int lags = 8 * i32xN::lanes;  // at once
    static constexpr std::ptrdiff_t most = 2048;

    // src1, whose sample of index 0 is `newest`; it has `total` samples.
    Backwards(const Vorn16s* newest, std::ptrdiff_t dec, std::ptrdiff_t total)
        : newest_(newest), dec_(dec), total_(total) {}

    // Samples from `first` on to `first` + n - 1, as 16 bits in lanes of 32; zeros where there are none. n is at most
    // `most`.
    const std::int32_t* from(std::ptrdiff_t first, std::ptrdiff_t n) {
        if (first < begin_ || first + n > begin_ + held_) {
            begin_ = total_ + 2 * lags <= most ? -lags : first;
            held_ = std::min<std::ptrdiff_t>(most, std::max(total_ + lags - begin_, n));
            for (std::ptrdiff_t k = 0; k < held_; ++k) {
                const std::ptrdiff_t at = begin_ + k;
                sample_[k] = at < 0 || at >= total_ ? 0 : static_cast<std::uint16_t>(newest_[-at * dec_]);
            }
        }
        return sample_ + (first - begin_);
    }

private:
    const Vorn16s* newest_;
    std::ptrdiff_t dec_, total_, begin_ = 0, held_ = 0;
    std::int32_t sample_[most];
};

// The sums of the lags from `lag` on, so many vectors of them; the last lag of all is `lastLag`.
template <int vectors>
VORN_NOINLINE void lagSums(Backwards& back, const Vorn16s* src2, std::ptrdiff_t dec, std::ptrdiff_t count,
                           std::ptrdiff_t lag, std::ptrdiff_t lastLag, Vorn32f* sums) {
    constexpr std::ptrdiff_t lags = vectors * f32xN::lanes, step = Backwards::most - lags;
    f32xN sum[vectors];
    for (f32xN& s : sum) s = splat<f32xN>(0.0f);
    const std::ptrdiff_t end = count + std::min<std::ptrdiff_t>(lag + lags - 1, lastLag);
    for (std::ptrdiff_t t = 0; t < end;) {
        const std::ptrdiff_t n = std::min(end - t, step);
        const std::int32_t* x = back.from(count + lag - t - n, n + lags - 1) + (n - 1);
        for (std::ptrdiff_t k = 0; k < n; ++k, ++t) {
            const i16xN sample = shortsOf(splat<i32xN>(static_cast<std::uint16_t>(src2[t * dec])));
            for (int v = 0; v < vectors; ++v) {
                const i32xN products = mulAddPairs(shortsOf(load<i32xN>(x - k + v * i32xN::lanes)), sample);
                sum[v] = sum[v] + toFloat(products);
            }
        }
    }
    for (int v = 0; v < vectors; ++v) store(sums + v * f32xN::lanes, sum[v]);
}

Vorn32f square(Vorn16s x) { return static_cast<Vorn32f>(std::int32_t{x} * x); }

void correlateDecimated(const Vorn16s* src1, const Vorn16s* src2, std::ptrdiff_t maxLen, std::ptrdiff_t minLen,
                        Vorn32f* dst, std::ptrdiff_t dec) {
    constexpr int lags = Backwards::lags;
    const std::ptrdiff_t distance = maxLen - minLen, count = (minLen - 1) / dec + 1, lastLag = distance / dec;
    Backwards back(src1 + distance + (count - 1) * dec, dec, count + lastLag);
    Vorn32f sum11 = 0, sum22 = 0;
    for (std::ptrdiff_t t = 0; t < count; ++t) {
        sum11 += square(src1[distance + t * dec]);
        sum22 += square(src2[t * dec]);
    }
    for (std::ptrdiff_t lag = 0; lag <= lastLag; lag += lags) {
        const std::ptrdiff_t n = std::min<std::ptrdiff_t>(lags, lastLag + 1 - lag);
        Vorn32f energy1[lags] = {}, energy2[lags] = {}, products[lags] = {}, result[lags];
        for (std::ptrdiff_t k = 0; k < n; ++k) {
            const std::ptrdiff_t i = lag + k;
            if (i > 0) {
                sum11 += square(src1[distance - i * dec]);
                sum22 += square(src2[(count + i - 1) * dec]);
            }
            energy1[k] = sum11;
            energy2[k] = sum22;
        }
        const auto sums = n > lags / 2   ? lagSums<8>
                          : n > lags / 4 ? lagSums<4>
                          : n > lags / 8 ? lagSums<2>
                                         : lagSums<1>;
        sums(back, src2, dec, count, lag, lastLag, products);
        for (int k = 0; k < n; k += f64xN::lanes) {
            storeNarrowed(result + k, coefficient(loadWidened<f64xN>(energy1 + k), loadWidened<f64xN>(energy2 + k),
                                                  loadWidened<f64xN>(products + k)));
        }
        std::copy_n(result, n, dst + lag);
    }
}

// The sums of the interpolation, of a = src2[i], b = src2[i + 1] and c = src1[i]. They are sums in double of one
// product after the other: exact up to 2^53, and in their order from where that is not sure.
struct Moments {
    Vorn64f aa = 0, bb = 0, ab = 0, cc = 0, ac = 0, bc = 0;
};
Moments momentsOf(const Vorn16s* src1, const Vorn16s* src2, std::ptrdiff_t len) {
    constexpr std::int64_t exact = std::int64_t{1} << 53;
    std::int64_t aa = 0, bb = 0, ab = 0, cc = 0, ac = 0, bc = 0;
    std::ptrdiff_t i = 0;
    while (len - i >= worthwhile) {
        const std::ptrdiff_t n = std::min(len - i, piece);
        const Vorn16s *a = src2 + i, *b = a + 1, *c = src1 + i;
        const std::int64_t nextAA = aa + exactSum(a, a, n), nextCC = cc + exactSum(c, c, n);
        const std::int64_t nextBB = bb + (nextAA - aa) - std::int32_t{a[0]} * a[0] + std::int32_t{a[n]} * a[n];
        // The mixed sums stay below the larger of the squares.
        if (nextAA > exact || nextBB > exact || nextCC > exact) break;
        aa = nextAA, bb = nextBB, cc = nextCC;
        ab += exactSum(a, b, n), ac += exactSum(a, c, n), bc += exactSum(b, c, n);
        i += n;
    }
    Moments m = {static_cast<Vorn64f>(aa), static_cast<Vorn64f>(bb), static_cast<Vorn64f>(ab),
                 static_cast<Vorn64f>(cc), static_cast<Vorn64f>(ac), static_cast<Vorn64f>(bc)};
    for (; i < len; ++i) {
        const std::int32_t a = src2[i], b = src2[i + 1], c = src1[i];
        m.aa += a * a, m.bb += b * b, m.ab += a * b, m.cc += c * c, m.ac += a * c, m.bc += b * c;
    }
    return m;
}

// The lag between a and b at which the correlation of c with their mixture is stationary, and the coefficient there.
VornStatus interpolate(const Moments& m, Vorn32f* frac, Vorn32f* coeff) {
    const Vorn64f divisor = (m.bb - m.ab) * m.ac + (m.aa - m.ab) * m.bc;
    if (divisor == 0) {
        *frac = 0;
        *coeff = static_cast<Vorn32f>(m.ac);
        return vornStsDivByZero;
    }
    const Vorn64f f = (m.bc * m.aa - m.ac * m.ab) / divisor;
    *frac = static_cast<Vorn32f>(f);
    if (!(f >= 0 && f < 1)) return vornStsNoErr;  // coeff keeps what it holds
    const Vorn64f g = 1 - f;
    const Vorn64f energy = m.cc * (m.aa * g * g + 2 * f * g * m.ab + f * f * m.bb);
    *coeff = static_cast<Vorn32f>(energy != 0 ? (g * m.ac + f * m.bc) / firstLane(sqrtOf(splat<f64x2>(energy))) : m.ac);
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::pitch

using namespace vorn;

VornStatus vornsCrossCorrCoeff_16s32f(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn32f* dst) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    *dst = pitch::correlate<true>(src1, src2, len, 0);
    return vornStsNoErr;
}

VornStatus vornsCrossCorrCoeffPartial_16s32f(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn32f* dst,
                                             Vorn32f energy) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(require(energy != 0, vornStsRangeErr));
    *dst = pitch::correlate<false>(src1, src2, len, energy);
    return vornStsNoErr;
}

VornStatus vornsCrossCorrCoeffDecim_16s32f(const Vorn16s* src1, const Vorn16s* src2, int maxLen, int minLen,
                                           Vorn32f* dst, int dec) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(minLen, dec));
    VORN_CHECK(require(maxLen >= minLen, vornStsSizeErr));
    pitch::correlateDecimated(src1, src2, maxLen, minLen, dst, dec);
    return vornStsNoErr;
}

VornStatus vornsCrossCorrCoeffInterpolation_16s32f(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn32f* frac,
                                                   Vorn32f* coeff) {
    VORN_CHECK(notNull(src1, src2, frac, coeff));
    VORN_CHECK(positive(len));
    return pitch::interpolate(pitch::momentsOf(src1, src2, len), frac, coeff);
}
