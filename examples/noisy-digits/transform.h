// The real transform of a frame, and back, in the packed form: zero frequency, half the sampling rate, then pairs.
#pragma once

#include <memory>
#include <vector>

#include "checked.h"
#include "front_end.h"

namespace digits {

class Transform {
public:
    Transform() {
        VornsFFTSpec* spec = nullptr;
        DIGITS_CALL(vornsFFTInitAlloc_R_32f, &spec, kFftOrder, kBackward, 0);
        spec_.reset(spec, vornsFFTFree_R_32f);
        int size = 0;
        DIGITS_CALL(vornsFFTGetBufSize_R_32f, spec, &size);
        buffer_.resize(static_cast<std::size_t>(size) + 1);
    }

    // In place: kFftLength samples become as many numbers of the spectrum.
    void forward(std::vector<Vorn32f>& frame) {
        DIGITS_CALL(vornsFFTFwd_RToPerm_32f_I, frame.data(), spec_.get(), buffer_.data());
    }

    void backward(std::vector<Vorn32f>& spectrum) {
        DIGITS_CALL(vornsFFTInv_PermToR_32f_I, spectrum.data(), spec_.get(), buffer_.data());
    }

private:
    static constexpr int kBackward = 2;  // normalisation flag of the transform: 1 / length on the way back

    // A copy shares the tables, which are only read, and has a buffer of its own, so each thread works on a copy.
    std::shared_ptr<VornsFFTSpec> spec_;
    std::vector<Vorn8u> buffer_;
};

// The powers of the kBins frequencies of a packed spectrum.
inline void powersOf(const std::vector<Vorn32f>& spectrum, Vorn32f* powers) {
    powers[0] = spectrum[0] * spectrum[0];
    powers[kBins - 1] = spectrum[1] * spectrum[1];
    for (int k = 1; k < kBins - 1; ++k) {
        const Vorn32f re = spectrum[2 * k], im = spectrum[2 * k + 1];
        powers[k] = re * re + im * im;
    }
}

}  // namespace digits
