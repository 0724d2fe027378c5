// Making and releasing transform contexts, for all forms.
#pragma once

#include "fft/contexts/spec.h"

namespace vorn::fft {

// A form of float context: its tag, and whether it is for real data.
struct Form {
    Tag tag;
    bool real;
};

// A fixed-point form: its own tag, its inner form, and the work area that its numbers take in the inner precision.
struct FixedForm {
    Tag tag;
    Form inner;
    int bytesPerLength;  // conversion area: bytesPerLength x N + bytesBeside
    int bytesBeside;

    constexpr std::int64_t conversionArea(int order) const {
        return (std::int64_t{bytesPerLength} << order) + bytesBeside;
    }
};

inline constexpr Form complex32fc{tagC32fc, false}, complex32f{tagC32f, false}, real32f{tagR32f, true};
inline constexpr Form complex64fc{tagC64fc, false}, complex64f{tagC64f, false}, real64f{tagR64f, true};
inline constexpr FixedForm complex32sc{tagC32sc, complex64fc, 16, 0}, complex32s{tagC32s, complex64f, 16, 0};
inline constexpr FixedForm real32s{tagR32s, real64f, 8, 16}, real16s32s{tagR16s32s, real32f, 4, 8};

// The bodies of the exported functions behind their checks; T is the precision of the (inner) float context.

template <class T>
VornStatus getSize(Form form, int order, int* specSize, int* initBufSize, int* workBufSize);
template <class T>
VornStatus getSize(FixedForm form, int order, int* specSize, int* initBufSize, int* workBufSize);

template <class T>
VornStatus initAlloc(Form form, VornsFFTSpec** ctxOut, int order, int flag, int hint);
template <class T>
VornStatus initAlloc(FixedForm form, VornsFFTFixedSpec** ctxOut, int order, int flag, int hint);

template <class T>
VornStatus init(Form form, VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf);
template <class T>
VornStatus init(FixedForm form, VornsFFTFixedSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem,
                Vorn8u* initBuf);

template <class T>
void release(VornsFFTSpec* ctx);
template <class T>
void release(VornsFFTFixedSpec* ctx);

}  // namespace vorn::fft
