// The functions of every form of transform context, for tests that run over all of them.
#pragma once

#include <ostream>

#include "fft/spec.h"
#include "model/fft_model.h"
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
    VORN_FORM(R_32f, 6, R_32, false, true),
};
inline const FixedForm fixedForms[] = {
    VORN_FORM(R_16s32s, 0x4C4D5367, R_16s32s, false, true),
};

#undef VORN_FORM

inline const FloatForm& real32f = floatForms[0];
inline const FixedForm& real16s32s = fixedForms[0];

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
