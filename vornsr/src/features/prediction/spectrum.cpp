// The envelope of a prediction filter: one over the magnitude of its transform.
#include <algorithm>
#include <bit>
#include <cstdint>

#include "features/detour.h"
#include "fft/contexts/spec.h"
#include "frame/checks.h"
#include "frame/memory.h"
#include "simd/block.h"
#include "simd/simd.h"
#include "vornsr/features.h"
#include "vornsr/fft.h"

namespace vorn::conversion {
namespace {

// A real transform's context, for the time of a call.
class Transform {
public:
    explicit Transform(int order) : status_(vornsFFTInitAlloc_R_32f(&context_, order, noDivision, noHint)) {}
    ~Transform() {
        if (status_ == vornStsNoErr) vornsFFTFree_R_32f(context_);
    }
    Transform(const Transform&) = delete;
    Transform& operator=(const Transform&) = delete;

    VornStatus forward(Vorn32f* x) const {
        VORN_CHECK(status_);
        return vornsFFTFwd_RToCCS_32f_I(x, context_, nullptr);
    }

private:
    static constexpr int noDivision = 8, noHint = 2;
    VornsFFTSpec* context_ = nullptr;
    VornStatus status_;
};

// dst = 1 / |z| of n complex numbers; dst may be their memory. The status of a quotient by zero, if there was one.
VornStatus reciprocalMagnitudes(const Vorn32f* z, Vorn32f* dst, std::ptrdiff_t n) {
    constexpr int lanes = f32xN::lanes;
    bool anyZero = false;
    for (std::ptrdiff_t i = 0; i < n; i += lanes) {
        const std::ptrdiff_t count = std::min<std::ptrdiff_t>(n - i, lanes);
        f32xN re, im;
        if (count == lanes) {
            loadPairs(z + 2 * i, re, im);
        } else {
            Block<Vorn32f, 2 * lanes> last;
            fillBlock<2 * lanes>(z + 2 * i, 2 * count, last, 1.0f);
            loadPairs(last, re, im);
        }
        const f32xN magnitude = sqrtOf(re * re + im * im);
        anyZero |= any(magnitude == splat<f32xN>(0));
        storeUpTo(dst + i, splat<f32xN>(1) / magnitude, count);
    }
    return anyZero ? vornStsDivByZero : vornStsNoErr;
}

constexpr std::int64_t transformed(int order) { return (std::int64_t{2} << order) + 2; }
using Spectrum = ShortScratch<Vorn32f, transformed(6)>;  // up to order 6 on the stack

// Room for the spectrum, zeros. Null if there is none.
template <class T>
VornStatus checkSpectrum(const T* src, int len, const T* dst, int order) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(atLeast(0, order));
    VORN_CHECK(positive(len));
    VORN_CHECK(require(order >= 31 || len < std::int64_t{2} << order, vornStsSizeErr));
    return require(order < fft::maxOrder, vornStsFftOrderErr);
}

// x holds zeros and, from element 1 on, coefficients; 2^order results to dst, which may be x.
VornStatus envelope(Vorn32f* x, Vorn32f* dst, int order, Vorn32f val) {
    VORN_CHECK(Transform(order + 1).forward(x));
    x[0] = x[0] - val;  // of all bins this one alone
    return reciprocalMagnitudes(x, dst, std::ptrdiff_t{1} << order);
}

}  // namespace
}  // namespace vorn::conversion

using namespace vorn;
using namespace vorn::conversion;

VornStatus vornsLPToSpectrum_32f(const Vorn32f* src, int len, Vorn32f* dst, int order, Vorn32f val) {
    VORN_CHECK(checkSpectrum(src, len, dst, order));
    const Spectrum x(transformed(order));
    if (!x) return vornStsMemAllocErr;
    std::fill_n(x.get(), transformed(order), 0.0f);
    std::copy_n(src, len, x.get() + 1);
    return envelope(x.get(), dst, order, val);
}

VornStatus vornsLPToSpectrum_16s_Sfs(const Vorn16s* src, int len, Vorn16s* dst, int order, int val, int scale) {
    VORN_CHECK(checkSpectrum(src, len, dst, order));
    const Spectrum x(transformed(order));
    if (!x) return vornStsMemAllocErr;
    std::fill_n(x.get(), transformed(order), 0.0f);
    toSingles(src, x.get() + 1, len, 1.0f);
    const VornStatus status = envelope(x.get(), x.get(), order, static_cast<Vorn32f>(val));
    if (status >= vornStsNoErr) NearestStore{scale}(x.get(), dst, std::ptrdiff_t{1} << order);
    return status;
}
