// Autocorrelation of a frame: direct sums for few lags, the Fourier transform for many.
#include <algorithm>

#include "autocorrelation/kernels.h"
#include "fft/packed/kernels.h"
#include "frame/checks.h"
#include "frame/memory.h"
#include "vornsr/fft.h"
#include "vornsr/signal.h"

using namespace vorn;

namespace {

// What differs between the element types: from how many lags on the transform is taken, and its functions. The spectrum
// is multiplied by its own conjugate in place.
struct Singles : RealTerms<Vorn32f> {
    static constexpr int transformFrom = 856;
    static constexpr auto* initAlloc = vornsFFTInitAlloc_R_32f;
    static constexpr auto* getBufSize = vornsFFTGetBufSize_R_32f;
    static constexpr auto* free = vornsFFTFree_R_32f;
    static constexpr auto* forward = vornsFFTFwd_RToPack_32f_I;
    static constexpr auto* inverse = vornsFFTInv_PackToR_32f_I;
    static void square(Vorn32f* spectrum, int len) { vornsMulPackConj_32f_I(spectrum, spectrum, len); }
};
struct Doubles : RealTerms<Vorn64f> {
    static constexpr int transformFrom = 856;
    static constexpr auto* initAlloc = vornsFFTInitAlloc_R_64f;
    static constexpr auto* getBufSize = vornsFFTGetBufSize_R_64f;
    static constexpr auto* free = vornsFFTFree_R_64f;
    static constexpr auto* forward = vornsFFTFwd_RToPack_64f_I;
    static constexpr auto* inverse = vornsFFTInv_PackToR_64f_I;
    static void square(Vorn64f* spectrum, int len) { vornsMulPackConj_64f_I(spectrum, spectrum, len); }
};
struct SinglePairs : PairTerms<Vorn32fc, Vorn32f> {
    static constexpr int transformFrom = 152;
    static constexpr auto* initAlloc = vornsFFTInitAlloc_C_32fc;
    static constexpr auto* getBufSize = vornsFFTGetBufSize_C_32fc;
    static constexpr auto* free = vornsFFTFree_C_32fc;
    static constexpr auto* forward = vornsFFTFwd_CToC_32fc_I;
    static constexpr auto* inverse = vornsFFTInv_CToC_32fc_I;
    static void square(Vorn32fc* spectrum, int len) {
        fft::multiplyPairs(&spectrum->re, &spectrum->re, &spectrum->re, len,
                           fft::FloatProduct<Vorn32f, fft::Second::Conjugated>());
    }
};
struct DoublePairs : PairTerms<Vorn64fc, Vorn64f> {
    static constexpr int transformFrom = 368;
    static constexpr auto* initAlloc = vornsFFTInitAlloc_C_64fc;
    static constexpr auto* getBufSize = vornsFFTGetBufSize_C_64fc;
    static constexpr auto* free = vornsFFTFree_C_64fc;
    static constexpr auto* forward = vornsFFTFwd_CToC_64fc_I;
    static constexpr auto* inverse = vornsFFTInv_CToC_64fc_I;
    static void square(Vorn64fc* spectrum, int len) {
        fft::multiplyPairs(&spectrum->re, &spectrum->re, &spectrum->re, len,
                           fft::FloatProduct<Vorn64f, fft::Second::Conjugated>());
    }
};

// The smallest order of at least 1 whose length holds the samples and as many zeros.
int transformOrder(int srcLen) {
    int order = 1;
    while (std::int64_t{1} << order < 2 * std::int64_t{srcLen}) ++order;
    return order;
}

// fill(data) puts the samples at the start of data.
template <class Form, class Fill>
VornStatus correlateByTransform(Fill fill, int srcLen, typename Form::Element* dst, int lags) {
    const int order = transformOrder(srcLen);
    VornsFFTSpec* made = nullptr;
    VORN_CHECK(Form::initAlloc(&made, order, 2, 0));
    struct Owner {
        VornsFFTSpec* context;
        ~Owner() { Form::free(context); }
    } const owner{made};
    int bufSize = 0;
    VORN_CHECK(Form::getBufSize(made, &bufSize));
    const int length = 1 << order;
    const Scratch<Vorn8u> buffer(bufSize);
    const Scratch<typename Form::Element> data(length);
    if (!buffer || !data) return vornStsMemAllocErr;
    fill(data.get());
    std::fill(data.get() + srcLen, data.get() + length, typename Form::Element{});
    VORN_CHECK(Form::forward(data.get(), made, buffer.get()));
    Form::square(data.get(), length);
    VORN_CHECK(Form::inverse(data.get(), made, buffer.get()));
    std::copy(data.get(), data.get() + lags, dst);
    return vornStsNoErr;
}

// How a lag of srcLen - k terms is normalised.
struct Plain {
    template <class T>
    T operator()(T sum, int, int) const {
        return sum;
    }
};
struct TimesInverseLength {
    template <class T>
    T operator()(T sum, int srcLen, int) const {
        return sum * (T(1) / static_cast<T>(srcLen));
    }
};
struct OverTerms {
    template <class T>
    T operator()(T sum, int srcLen, int k) const {
        return sum / static_cast<T>(srcLen - k);
    }
};

template <class Number, class Element, class Norm>
void normalise(Element* lag, int lags, int srcLen, Norm norm) {
    constexpr int parts = sizeof(Element) / sizeof(Number);
    auto* number = reinterpret_cast<Number*>(lag);
    for (int k = 0; k < lags; ++k) {
        for (int part = 0; part < parts; ++part, ++number) *number = norm(*number, srcLen, k);
    }
}

// Lags at and above srcLen are zero.
template <class Form, class Norm>
VornStatus autoCorr(const typename Form::Element* src, int srcLen, typename Form::Element* dst, int dstLen, Norm norm) {
    const int lags = std::min(srcLen, dstLen);
    if (lags < Form::transformFrom) {
        correlate<Form>(src, srcLen, dst, lags);
    } else {
        VORN_CHECK(
            correlateByTransform<Form>([&](auto* data) { std::copy(src, src + srcLen, data); }, srcLen, dst, lags));
    }
    normalise<typename Form::Number>(dst, lags, srcLen, norm);
    std::fill(dst + lags, dst + dstLen, typename Form::Element{});
    return vornStsNoErr;
}

// 16-bit samples: singles all the way, converted with the scale factor at the end.
template <class Norm>
VornStatus autoCorrFixed(const Vorn16s* src, int srcLen, Vorn16s* dst, int dstLen, int scaleFactor, Norm norm) {
    const int lags = std::min(srcLen, dstLen);
    const Scratch<Vorn32f> sums(lags);
    if (!sums) return vornStsMemAllocErr;
    if (lags < Singles::transformFrom) {
        correlate(src, srcLen, sums.get(), lags);
    } else {
        VORN_CHECK(correlateByTransform<Singles>([&](Vorn32f* data) { vornsConvert_16s32f(src, data, srcLen); }, srcLen,
                                                 sums.get(), lags));
    }
    normalise<Vorn32f>(sums.get(), lags, srcLen, norm);
    vornsConvert_32f16s_Sfs(sums.get(), dst, lags, vornRndNear, scaleFactor);
    if (dstLen > lags) vornsZero_16s(dst + lags, dstLen - lags);
    return vornStsNoErr;
}

}  // namespace

VornStatus vornsAutoCorr_32f(const Vorn32f* src, int srcLen, Vorn32f* dst, int dstLen) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorr<Singles>(src, srcLen, dst, dstLen, Plain{});
}

VornStatus vornsAutoCorr_64f(const Vorn64f* src, int srcLen, Vorn64f* dst, int dstLen) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorr<Doubles>(src, srcLen, dst, dstLen, Plain{});
}

VornStatus vornsAutoCorr_32fc(const Vorn32fc* src, int srcLen, Vorn32fc* dst, int dstLen) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorr<SinglePairs>(src, srcLen, dst, dstLen, Plain{});
}

VornStatus vornsAutoCorr_64fc(const Vorn64fc* src, int srcLen, Vorn64fc* dst, int dstLen) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorr<DoublePairs>(src, srcLen, dst, dstLen, Plain{});
}

VornStatus vornsAutoCorr_16s_Sfs(const Vorn16s* src, int srcLen, Vorn16s* dst, int dstLen, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorrFixed(src, srcLen, dst, dstLen, scaleFactor, Plain{});
}

VornStatus vornsAutoCorr_NormA_32f(const Vorn32f* src, int srcLen, Vorn32f* dst, int dstLen) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorr<Singles>(src, srcLen, dst, dstLen, TimesInverseLength{});
}

VornStatus vornsAutoCorr_NormA_64f(const Vorn64f* src, int srcLen, Vorn64f* dst, int dstLen) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorr<Doubles>(src, srcLen, dst, dstLen, TimesInverseLength{});
}

VornStatus vornsAutoCorr_NormA_32fc(const Vorn32fc* src, int srcLen, Vorn32fc* dst, int dstLen) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorr<SinglePairs>(src, srcLen, dst, dstLen, TimesInverseLength{});
}

VornStatus vornsAutoCorr_NormA_64fc(const Vorn64fc* src, int srcLen, Vorn64fc* dst, int dstLen) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorr<DoublePairs>(src, srcLen, dst, dstLen, TimesInverseLength{});
}

VornStatus vornsAutoCorr_NormA_16s_Sfs(const Vorn16s* src, int srcLen, Vorn16s* dst, int dstLen, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorrFixed(src, srcLen, dst, dstLen, scaleFactor, TimesInverseLength{});
}

VornStatus vornsAutoCorr_NormB_32f(const Vorn32f* src, int srcLen, Vorn32f* dst, int dstLen) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorr<Singles>(src, srcLen, dst, dstLen, OverTerms{});
}

VornStatus vornsAutoCorr_NormB_64f(const Vorn64f* src, int srcLen, Vorn64f* dst, int dstLen) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorr<Doubles>(src, srcLen, dst, dstLen, OverTerms{});
}

VornStatus vornsAutoCorr_NormB_32fc(const Vorn32fc* src, int srcLen, Vorn32fc* dst, int dstLen) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorr<SinglePairs>(src, srcLen, dst, dstLen, OverTerms{});
}

VornStatus vornsAutoCorr_NormB_64fc(const Vorn64fc* src, int srcLen, Vorn64fc* dst, int dstLen) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorr<DoublePairs>(src, srcLen, dst, dstLen, OverTerms{});
}

VornStatus vornsAutoCorr_NormB_16s_Sfs(const Vorn16s* src, int srcLen, Vorn16s* dst, int dstLen, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(srcLen, dstLen));
    return autoCorrFixed(src, srcLen, dst, dstLen, scaleFactor, OverTerms{});
}
