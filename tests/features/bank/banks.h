// Filter banks for tests: the settings they are made from, and their two element forms behind one face.
#pragma once

#include <gtest/gtest.h>

#include <type_traits>

#include "features/bank/filter_bank.h"
#include "model/filter_bank.h"
#include "vornsr.h"

namespace test {

struct Setting {
    int fftLen, N, order, nFilter;
    float sampleFreq, lowFreq, highFreq, melMul, melDiv;
};
inline const Setting settings[] = {
    {256, 256, 8, 23, 8000, 64, 4000, 1127, 700},      {400, 512, 9, 26, 16000, 20, 8000, 2595, 700},
    {512, 512, 9, 40, 16000, 133.3f, 6855, 1127, 700}, {200, 256, 8, 12, 8000, 1, 3999, 1000, 1000},
    {1024, 1024, 10, 5, 44100, 10, 22050, 1127, 700},  {64, 64, 6, 1, 8000, 500, 3500, 1127, 700},
    {64, 64, 6, 20, 8000, 100, 4000, 1127, 700},       {16, 16, 4, 12, 8000, 100, 4000, 1127, 700},
    {2, 2, 1, 1, 8000, 64, 4000, 1127, 700},           {4, 4, 2, 9, 8000, 3000, 4000, 1127, 700},
    {2048, 2048, 11, 64, 48000, 30, 24000, 500, 300},
};

// Banks that are spaced in hertz up to a frequency, and banks to be filled.
struct MixedSetting {
    int fftLen, N, order, nFilter;
    float sampleFreq, lowFreq, highFreq, highLinFreq;
    int nLinear;
    float melMul, melDiv;
};
inline const MixedSetting mixedSettings[] = {
    {256, 256, 8, 23, 8000, 64, 4000, 1000, 10, 1127, 700},   {400, 512, 9, 26, 16000, 20, 8000, 1000, 13, 2595, 700},
    {512, 512, 9, 24, 16000, 100, 8000, 4000, 24, 1127, 700}, {512, 512, 9, 24, 16000, 100, 8000, 4000, 1, 1127, 700},
    {512, 512, 9, 24, 16000, 100, 8000, 4000, 23, 10, 700},   {200, 256, 8, 12, 8000, 1, 3999, 500, 4, 1.5f, 1000},
    {64, 64, 6, 1, 8000, 500, 3500, 2000, 1, 1127, 700},      {64, 64, 6, 20, 8000, 100, 4000, 300, 9, 1127, 700},
    {16, 16, 4, 12, 8000, 100, 4000, 1000, 5, 1127, 700},     {2, 2, 1, 1, 8000, 64, 4000, 500, 1, 1127, 700},
    {4, 4, 2, 9, 8000, 3000, 4000, 3500, 3, 1127, 700},       {2048, 2048, 11, 64, 48000, 30, 24000, 3000, 20, 3, 300},
    // A scale that is nearly straight: of the ratios to melDiv only the last digits count.
    {256, 256, 8, 12, 8000, 64, 4000, 1000, 5, 1e15f, 1e12f},
};
struct EmptySetting {
    int fftLen, nFilter;
};

// The two element forms behind one face.
struct Single {
    using State = VornFBankState_32f;
    using Weight = Vorn32f;
    static constexpr int slot = 104;
    static VornStatus getSize(int fftLen, int nFilter, int flags, int* size) {
        return vornsMelFBankGetSize_32f(fftLen, nFilter, flags, size);
    }
    static VornStatus transformSizes(int order, int* spec, int* init, int* work) {
        return vornsFFTGetSize_R_32f(order, 8, 2, spec, init, work);
    }
    static VornStatus init(State* bank, int* order, const Setting& s, int flags) {
        return vornsMelFBankInit_32f(bank, order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter, s.melMul,
                                     s.melDiv, flags);
    }
    static VornStatus initAlloc(State** bank, int* order, const Setting& s, int flags) {
        return vornsMelFBankInitAlloc_32f(bank, order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter,
                                          s.melMul, s.melDiv, flags);
    }
    static VornStatus initAlloc(State** bank, int* order, const MixedSetting& s, int flags) {
        return vornsMelLinFBankInitAlloc_32f(bank, order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter,
                                             s.highLinFreq, s.nLinear, s.melMul, s.melDiv, flags);
    }
    static VornStatus initAlloc(State** bank, int* order, const EmptySetting& s, int flags) {
        return vornsEmptyFBankInitAlloc_32f(bank, order, s.fftLen, s.nFilter, flags);
    }
    static constexpr auto getCenters = vornsFBankGetCenters_32f;
    static constexpr auto setCenters = vornsFBankSetCenters_32f;
    static constexpr auto getCoeffs = vornsFBankGetCoeffs_32f;
    static constexpr auto setCoeffs = vornsFBankSetCoeffs_32f;
    static VornStatus release(State* bank) { return vornsFBankFree_32f(bank); }
    static Weight weight(const model::MelBank& bank, model::Fraction f) { return model::weight32f(bank, f); }
};
struct Fixed {
    using State = VornFBankState_16s;
    using Weight = Vorn32s;
    static constexpr int slot = 112;
    static VornStatus getSize(int fftLen, int nFilter, int flags, int* size) {
        return vornsMelFBankGetSize_16s(fftLen, nFilter, flags, size);
    }
    static VornStatus transformSizes(int order, int* spec, int* init, int* work) {
        return vornsFFTGetSize_R_16s32s(order, 8, 2, spec, init, work);
    }
    static VornStatus init(State* bank, int* order, const Setting& s, int flags) {
        return vornsMelFBankInit_16s(bank, order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter, s.melMul,
                                     s.melDiv, flags);
    }
    static VornStatus initAlloc(State** bank, int* order, const Setting& s, int flags) {
        return vornsMelFBankInitAlloc_16s(bank, order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter,
                                          s.melMul, s.melDiv, flags);
    }
    static VornStatus initAlloc(State** bank, int* order, const MixedSetting& s, int flags) {
        return vornsMelLinFBankInitAlloc_16s(bank, order, s.fftLen, s.sampleFreq, s.lowFreq, s.highFreq, s.nFilter,
                                             s.highLinFreq, s.nLinear, s.melMul, s.melDiv, flags);
    }
    static VornStatus initAlloc(State** bank, int* order, const EmptySetting& s, int flags) {
        return vornsEmptyFBankInitAlloc_16s(bank, order, s.fftLen, s.nFilter, flags);
    }
    static constexpr auto getCenters = vornsFBankGetCenters_16s;
    static constexpr auto setCenters = vornsFBankSetCenters_16s;
    static constexpr auto getCoeffs = vornsFBankGetCoeffs_16s;
    static constexpr auto setCoeffs = vornsFBankSetCoeffs_16s;
    static VornStatus release(State* bank) { return vornsFBankFree_16s(bank); }
    static Weight weight(const model::MelBank& bank, model::Fraction f) { return model::weightQ14(bank, f); }
};

// Evaluation of a spectrum, in both forms.
inline VornStatus evaluate(const float* src, float* dst, const VornFBankState_32f* bank) {
    return vornsEvalFBank_32f(src, dst, bank);
}
inline VornStatus evaluate(const Vorn16s* src, Vorn32s* dst, const VornFBankState_16s* bank) {
    return vornsEvalFBank_16s32s_Sfs(src, dst, bank, 0);
}
template <class Form>
using ValueOf = std::conditional_t<std::is_same_v<Form, Single>, float, Vorn16s>;
template <class Form>
using ResultOf = std::conditional_t<std::is_same_v<Form, Single>, float, Vorn32s>;

// An allocated bank that leaves with its scope.
template <class Form>
class Bank {
public:
    template <class Description = Setting>
    Bank(const Description& setting, int flags) {
        EXPECT_EQ(Form::initAlloc(&bank_, &order, setting, flags), vornStsNoErr);
    }
    ~Bank() { EXPECT_EQ(Form::release(bank_), vornStsNoErr); }
    Bank(const Bank&) = delete;
    typename Form::State* operator->() const { return bank_; }
    operator typename Form::State *() const { return bank_; }
    int order = -1;

private:
    typename Form::State* bank_ = nullptr;
};

}  // namespace test
