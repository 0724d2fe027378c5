// The functions of every form of transform context, for tests that run over all of them.
#pragma once

#include <ostream>

#include "fft/contexts/spec.h"
#include "model/fft.h"
#include "vornsr.h"

namespace test {

template <class Spec>
struct ContextForm {
    const char* name;
    std::int32_t tag;
    model::FftForm sizes;
    bool wide;  // the (inner) tables are in double
    bool real;
    VornStatus (*getSize)(int, int, int, int*, int*, int*);
    VornStatus (*initAlloc)(Spec**, int, int, int);
    VornStatus (*init)(Spec**, int, int, int, Vorn8u*, Vorn8u*);
    VornStatus (*free)(Spec*);
    VornStatus (*getBufSize)(const Spec*, int*);
};

template <class Spec>
std::ostream& operator<<(std::ostream& out, const ContextForm<Spec>& form) {
    return out << form.name;
}

using FloatForm = ContextForm<VornsFFTSpec>;
using FixedForm = ContextForm<VornsFFTFixedSpec>;

#define VORN_FORM(form, tag, sizes, wide, real)                                                          \
    {                                                                                                    \
#form, tag, model::FftForm::sizes, wide, real, vornsFFTGetSize_##form, vornsFFTInitAlloc_##form, \
            vornsFFTInit_##form, vornsFFTFree_##form, vornsFFTGetBufSize_##form                          \
    }

inline const FloatForm floatForms[] = {
    VORN_FORM(C_32fc, 4, C_32, false, false), VORN_FORM(C_32f, 5, C_32, false, false),
    VORN_FORM(R_32f, 6, R_32, false, true),   VORN_FORM(C_64fc, 7, C_64, true, false),
    VORN_FORM(C_64f, 8, C_64, true, false),   VORN_FORM(R_64f, 9, R_64, true, true),
};
inline const FixedForm fixedForms[] = {
    VORN_FORM(C_32sc, 0x4C4D5364, C_32sc, true, false),
    VORN_FORM(C_32s, 0x4C4D5365, C_32sc, true, false),
    VORN_FORM(R_32s, 0x4C4D5366, R_32s, true, true),
    VORN_FORM(R_16s32s, 0x4C4D5367, R_16s32s, false, true),
};

#undef VORN_FORM

inline constexpr const FloatForm &complex32fc = floatForms[0], &complex32f = floatForms[1], &real32f = floatForms[2];
inline constexpr const FloatForm &complex64fc = floatForms[3], &complex64f = floatForms[4], &real64f = floatForms[5];
inline constexpr const FixedForm &complex32sc = fixedForms[0], &complex32s = fixedForms[1];
inline constexpr const FixedForm &real32s = fixedForms[2], &real16s32s = fixedForms[3];

// A context that leaves with its scope.
template <class Spec>
class Context {
public:
    Context(const ContextForm<Spec>& form, int order, int flag, int hint = 0) : form_(form) {
        if (form.initAlloc(&spec_, order, flag, hint) != vornStsNoErr) spec_ = nullptr;
    }
    ~Context() {
        if (spec_ != nullptr) form_.free(spec_);
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    operator Spec*() const { return spec_; }
    void released() { spec_ = nullptr; }  // by somebody else
    int bufSize() const {
        int size = -1;
        form_.getBufSize(spec_, &size);
        return size;
    }

private:
    const ContextForm<Spec>& form_;
    Spec* spec_ = nullptr;
};

}  // namespace test
