// Filter banks, cosine lifters and resamplers, shared. Left out is what serves one thread at a time: banks that take
// samples, and the integer lifters, whose sums stand in their context.
#include <cmath>
#include <string>

#include "threads/together.h"

namespace {

using test::Buffers, test::Together;
using Bank32f = VornFBankState_32f;
using Bank16s = VornFBankState_16s;
using Bank32s = VornFBankState_32s;
using Lifter = VornDCTLifterState_32f;

constexpr int fftLen = 512, filters = 24;
constexpr std::size_t bins = fftLen / 2 + 1;
constexpr float sampleFreq = 16000.0f, lowFreq = 80.0f, highFreq = 7600.0f, melMul = 1127.0f, melDiv = 700.0f;

void addAccess(Together& calls, const std::string& name, const std::shared_ptr<Bank32f>& bank) {
    calls.add(name + " centres",
              [=](Buffers& b) { return vornsFBankGetCenters_32f(bank.get(), b.result<Vorn32s>(filters + 2)); });
    calls.add(name + " weights",
              [=](Buffers& b) { return vornsFBankGetCoeffs_32f(bank.get(), 3, b.result<Vorn32f>(2 * bins)); });
}
void addAccess(Together& calls, const std::string& name, const std::shared_ptr<Bank16s>& bank) {
    calls.add(name + " centres",
              [=](Buffers& b) { return vornsFBankGetCenters_16s(bank.get(), b.result<Vorn32s>(filters + 2)); });
    calls.add(name + " weights",
              [=](Buffers& b) { return vornsFBankGetCoeffs_16s(bank.get(), 3, b.result<Vorn32f>(2 * bins)); });
}
void add(Together& calls, const std::string& name, const std::shared_ptr<Bank32f>& bank) {
    ASSERT_NE(bank, nullptr) << name;
    calls.add(name + " 32f", [=](Buffers& b) {
        return vornsEvalFBank_32f(b.source<Vorn32f>(bins), b.result<Vorn32f>(filters), bank.get());
    });
    addAccess(calls, name + " 32f", bank);
}
void add(Together& calls, const std::string& name, const std::shared_ptr<Bank16s>& bank) {
    ASSERT_NE(bank, nullptr) << name;
    calls.add(name + " 16s", [=](Buffers& b) {
        return vornsEvalFBank_16s_Sfs(b.source<Vorn16s>(bins), b.result<Vorn16s>(filters), bank.get(), 2);
    });
    calls.add(name + " 16s32s", [=](Buffers& b) {
        return vornsEvalFBank_16s32s_Sfs(b.source<Vorn16s>(bins), b.result<Vorn32s>(filters), bank.get(), 0);
    });
    addAccess(calls, name + " 16s", bank);
}

// What Init writes into the caller's memory, which stays as long as the bank.
template <class Bank>
std::shared_ptr<Bank> within(const std::shared_ptr<std::vector<Vorn8u>>& block) {
    return std::shared_ptr<Bank>(block, reinterpret_cast<Bank*>(block->data()));
}

TEST(ThreadsShareBanks, Mel) {
    Together calls;
    for (int flags : {static_cast<int>(vornFBankWeightFreq), static_cast<int>(vornFBankWeightMel)}) {
        int order = 0, size = 0;
        const std::string name = "mel " + std::to_string(flags);
        Bank32f* single = nullptr;
        ASSERT_EQ(vornsMelFBankInitAlloc_32f(&single, &order, fftLen, sampleFreq, lowFreq, highFreq, filters, melMul,
                                             melDiv, flags),
                  vornStsNoErr);
        add(calls, name, test::owned(single, vornsFBankFree_32f));
        Bank16s* fixed = nullptr;
        ASSERT_EQ(vornsMelFBankInitAlloc_16s(&fixed, &order, fftLen, sampleFreq, lowFreq, highFreq, filters, melMul,
                                             melDiv, flags),
                  vornStsNoErr);
        add(calls, name, test::owned(fixed, vornsFBankFree_16s));

        ASSERT_EQ(vornsMelFBankGetSize_32f(fftLen, filters, flags, &size), vornStsNoErr);
        const auto single2 = within<Bank32f>(test::memory(size));
        ASSERT_EQ(vornsMelFBankInit_32f(single2.get(), &order, fftLen, sampleFreq, lowFreq, highFreq, filters, melMul,
                                        melDiv, flags),
                  vornStsNoErr);
        add(calls, name + " in memory", single2);
        ASSERT_EQ(vornsMelFBankGetSize_16s(fftLen, filters, flags, &size), vornStsNoErr);
        const auto fixed2 = within<Bank16s>(test::memory(size));
        ASSERT_EQ(vornsMelFBankInit_16s(fixed2.get(), &order, fftLen, sampleFreq, lowFreq, highFreq, filters, melMul,
                                        melDiv, flags),
                  vornStsNoErr);
        add(calls, name + " in memory", fixed2);
    }
    calls.expectSameAsAlone(100);
}

TEST(ThreadsShareBanks, Mixed) {
    Together calls;
    int order = 0;
    for (int flags : {static_cast<int>(vornFBankWeightFreq), static_cast<int>(vornFBankWeightMel)}) {
        Bank32f* single = nullptr;
        ASSERT_EQ(vornsMelLinFBankInitAlloc_32f(&single, &order, fftLen, sampleFreq, lowFreq, highFreq, filters,
                                                1000.0f, 8, melMul, melDiv, flags),
                  vornStsNoErr);
        add(calls, "mixed " + std::to_string(flags), test::owned(single, vornsFBankFree_32f));
        Bank16s* fixed = nullptr;
        ASSERT_EQ(vornsMelLinFBankInitAlloc_16s(&fixed, &order, fftLen, sampleFreq, lowFreq, highFreq, filters, 1000.0f,
                                                8, melMul, melDiv, flags),
                  vornStsNoErr);
        add(calls, "mixed " + std::to_string(flags), test::owned(fixed, vornsFBankFree_16s));
    }
    calls.expectSameAsAlone(100);
}

// Filled before the threads begin.
TEST(ThreadsShareBanks, OfTheCaller) {
    Together calls;
    int order = 0;
    std::vector<Vorn32s> centres;
    std::vector<Vorn32f> weights;
    for (int i = 0; i < filters + 2; ++i) centres.push_back(3 + 9 * i);
    for (int i = 0; i < 19; ++i) weights.push_back(0.05f * static_cast<float>(i));
    Bank32f* single = nullptr;
    Bank16s* fixed = nullptr;
    ASSERT_EQ(vornsEmptyFBankInitAlloc_32f(&single, &order, fftLen, filters, vornFBankWeightFreq), vornStsNoErr);
    ASSERT_EQ(vornsEmptyFBankInitAlloc_16s(&fixed, &order, fftLen, filters, vornFBankWeightFreq), vornStsNoErr);
    const auto single2 = test::owned(single, vornsFBankFree_32f);
    const auto fixed2 = test::owned(fixed, vornsFBankFree_16s);
    ASSERT_EQ(vornsFBankSetCenters_32f(single, centres.data()), vornStsNoErr);
    ASSERT_EQ(vornsFBankSetCenters_16s(fixed, centres.data()), vornStsNoErr);
    for (int filter = 1; filter <= filters; ++filter) {
        ASSERT_EQ(vornsFBankSetCoeffs_32f(single, filter, weights.data()), vornStsNoErr);
        ASSERT_EQ(vornsFBankSetCoeffs_16s(fixed, filter, weights.data()), vornStsNoErr);
    }
    add(calls, "filled", single2);
    add(calls, "filled", fixed2);
    calls.expectSameAsAlone(200);
}

TEST(ThreadsShareBanks, Integer) {
    Together calls;
    int order = 0, size = 0;
    ASSERT_EQ(vornsMelFBankGetSize_32s(fftLen, filters, vornFBankWeightFreq, &size), vornStsNoErr);
    const auto bank = within<Bank32s>(test::memory(size));
    ASSERT_EQ(vornsMelFBankInit_32s(bank.get(), &order, fftLen, 16000, 80, 7600, filters, 1127 << 15, 700 << 15,
                                    vornFBankWeightFreq),
              vornStsNoErr);
    calls.add("32s", [=](Buffers& b) {
        return vornsEvalFBank_32s_Sfs(b.source<Vorn32s>(bins), b.result<Vorn32s>(filters), bank.get(), 0);
    });
    calls.expectSameAsAlone(300);
}

TEST(ThreadsShareBanks, OfNoiseReduction) {
    Together calls;
    Bank32f* single = nullptr;
    Bank16s* fixed = nullptr;
    int size = 0;
    ASSERT_EQ(vornsMelFBankInitAllocLow_Aurora_32f(&single), vornStsNoErr);
    const auto low32f = test::owned(single, vornsFBankFree_32f);
    ASSERT_EQ(vornsMelFBankInitAllocHigh_Aurora_32f(&single), vornStsNoErr);
    const auto high32f = test::owned(single, vornsFBankFree_32f);
    ASSERT_EQ(vornsMelFBankInitAllocLow_Aurora_16s(&fixed), vornStsNoErr);
    const auto low16s = test::owned(fixed, vornsFBankFree_16s);
    ASSERT_EQ(vornsMelFBankInitAllocHigh_Aurora_16s(&fixed), vornStsNoErr);
    const auto high16s = test::owned(fixed, vornsFBankFree_16s);
    ASSERT_EQ(vornsMelFBankGetSizeLow_Aurora_32f(&size), vornStsNoErr);
    const auto lowHere32f = within<Bank32f>(test::memory(size));
    ASSERT_EQ(vornsMelFBankInitLow_Aurora_32f(reinterpret_cast<Vorn8u*>(lowHere32f.get())), vornStsNoErr);
    ASSERT_EQ(vornsMelFBankGetSizeHigh_Aurora_16s(&size), vornStsNoErr);
    const auto highHere16s = within<Bank16s>(test::memory(size));
    ASSERT_EQ(vornsMelFBankInitHigh_Aurora_16s(reinterpret_cast<Vorn8u*>(highHere16s.get())), vornStsNoErr);
    for (const auto& bank : {low32f, high32f, lowHere32f}) {
        calls.add("32f", [=](Buffers& b) {
            return vornsEvalFBank_32f(b.source<Vorn32f>(65), b.result<Vorn32f>(25), bank.get());
        });
    }
    for (const auto& bank : {low16s, high16s, highHere16s}) {
        calls.add("16s", [=](Buffers& b) {
            return vornsEvalFBank_16s_Sfs(b.source<Vorn16s>(65), b.result<Vorn16s>(25), bank.get(), 0);
        });
        calls.add("16s32s", [=](Buffers& b) {
            return vornsEvalFBank_16s32s_Sfs(b.source<Vorn16s>(65), b.result<Vorn32s>(25), bank.get(), 0);
        });
    }
    addAccess(calls, "low", low32f);
    addAccess(calls, "low", low16s);
    calls.expectSameAsAlone(200);
}

TEST(ThreadsShareLifters, OfSingles) {
    constexpr int lenDCT = 24, lenCep = 12;
    Together calls;
    std::vector<float> weights;
    for (int i = 0; i < lenCep; ++i) weights.push_back(1.0f + 0.25f * static_cast<float>(i));
    std::vector<std::shared_ptr<Lifter>> lifters;
    Lifter* made = nullptr;
    ASSERT_EQ(vornsDCTLifterInitAlloc_32f(&made, lenDCT, lenCep, 22, 0.5f), vornStsNoErr);
    lifters.push_back(test::owned(made, vornsDCTLifterFree_32f));
    ASSERT_EQ(vornsDCTLifterInitAlloc_C0_32f(&made, lenDCT, lenCep, 22, 0.5f, 2.0f), vornStsNoErr);
    lifters.push_back(test::owned(made, vornsDCTLifterFree_32f));
    ASSERT_EQ(vornsDCTLifterInitAlloc_Mul_32f(&made, lenDCT, weights.data(), lenCep), vornStsNoErr);
    lifters.push_back(test::owned(made, vornsDCTLifterFree_32f));
    ASSERT_EQ(vornsDCTLifterInitAlloc_MulC0_32f(&made, lenDCT, weights.data(), lenCep), vornStsNoErr);
    lifters.push_back(test::owned(made, vornsDCTLifterFree_32f));
    int size = 0;
    ASSERT_EQ(vornsDCTLifterGetSize_C0_32f(lenDCT, lenCep, &size), vornStsNoErr);
    lifters.push_back(within<Lifter>(test::memory(size)));
    ASSERT_EQ(vornsDCTLifterInit_C0_32f(lifters.back().get(), lenDCT, lenCep, 22, 0.5f, 2.0f), vornStsNoErr);
    for (const auto& lifter : lifters) {
        calls.add("lifter", [=](Buffers& b) {
            return vornsDCTLifter_32f(b.source<Vorn32f>(lenDCT), b.result<Vorn32f>(lenCep + 1), lifter.get());
        });
    }
    calls.expectSameAsAlone(500);
}

// The variable form of both types under one name. The factor is the call's, not the context's.
VornStatus resample(const VornResampleState_32f* state, const Vorn32f* src, int len, Vorn32f* dst, double factor,
                    double* time, int* made) {
    return vornsResamplePolyphase_32f(state, src, len, dst, factor, 0.9f, time, made);
}
VornStatus resample(const VornResampleState_16s* state, const Vorn16s* src, int len, Vorn16s* dst, double factor,
                    double* time, int* made) {
    return vornsResamplePolyphase_16s(state, src, len, dst, factor, 0.9f, time, made);
}
VornStatus resample(const VornResampleFixedState_32f* state, const Vorn32f* src, int len, Vorn32f* dst, double* time,
                    int* made) {
    return vornsResamplePolyphaseFixed_32f(state, src, len, dst, 0.9f, time, made);
}
VornStatus resample(const VornResampleFixedState_16s* state, const Vorn16s* src, int len, Vorn16s* dst, double* time,
                    int* made) {
    return vornsResamplePolyphaseFixed_16s(state, src, len, dst, 0.9f, time, made);
}

// How far a filter may read around the samples that it is given.
constexpr std::size_t around = 400;

template <class T, class State>
void addVariable(Together& calls, const std::string& name, const std::shared_ptr<State>& state) {
    for (double factor : {0.37, 1.0, 2.5}) {
        calls.add(name, [=](Buffers& b) {
            constexpr int len = 200;
            const T* src = b.source<T>(len + 2 * around) + around;
            double* time = b.result<double>(1);
            *time = 0.25 * static_cast<double>(b.seed());
            return resample(state.get(), src, len, b.result<T>(static_cast<std::size_t>(len * factor) + 2), factor,
                            time, b.result<int>(1));
        });
    }
}

template <class T, class State>
void addFixed(Together& calls, const std::string& name, const std::shared_ptr<State>& state, int in, int out,
              VornStatus (*getFilter)(const State*, T*, int, int)) {
    calls.add(name, [=](Buffers& b) {
        constexpr int len = 200;
        const T* src = b.source<T>(len + 2 * around) + around;
        double* time = b.result<double>(1);
        *time = static_cast<double>(b.seed()) * in / out;
        return resample(state.get(), src, len, b.result<T>(static_cast<std::size_t>(len) * out / in + 2), time,
                        b.result<int>(1));
    });
    calls.add(name + " rows", [=](Buffers& b) { return getFilter(state.get(), b.result<T>(300), 30, 10); });
}

TEST(ThreadsShareResamplers, Variable) {
    Together calls;
    for (int hint : {0, 2}) {
        VornResampleState_32f* single = nullptr;
        VornResampleState_16s* fixed = nullptr;
        ASSERT_EQ(vornsResamplePolyphaseInitAlloc_32f(&single, 32, hint, 24.0f, 0.9f, 8.0f), vornStsNoErr);
        addVariable<Vorn32f>(calls, "32f", test::owned(single, vornsResamplePolyphaseFree_32f));
        ASSERT_EQ(vornsResamplePolyphaseInitAlloc_16s(&fixed, 32, hint, 24.0f, 0.9f, 8.0f), vornStsNoErr);
        addVariable<Vorn16s>(calls, "16s", test::owned(fixed, vornsResamplePolyphaseFree_16s));
    }
    calls.expectSameAsAlone(30);
}

TEST(ThreadsShareResamplers, Fixed) {
    constexpr int in = 441, out = 160, len = 48;
    Together calls;
    for (int hint : {0, 2}) {
        VornResampleFixedState_32f* single = nullptr;
        VornResampleFixedState_16s* fixed = nullptr;
        ASSERT_EQ(vornsResamplePolyphaseFixedInitAlloc_32f(&single, in, out, len, hint, 0.9f, 8.0f), vornStsNoErr);
        const auto owned32f = test::owned(single, vornsResamplePolyphaseFixedFree_32f);
        addFixed(calls, "32f", owned32f, in, out, vornsResamplePolyphaseGetFixedFilter_32f);
        ASSERT_EQ(vornsResamplePolyphaseFixedInitAlloc_16s(&fixed, in, out, len, hint, 0.9f, 8.0f), vornStsNoErr);
        const auto owned16s = test::owned(fixed, vornsResamplePolyphaseFixedFree_16s);
        addFixed(calls, "16s", owned16s, in, out, vornsResamplePolyphaseGetFixedFilter_16s);

        // In the caller's memory, with rows that were copied before the threads begin.
        int size = 0, rowLen = 0, rows = 0;
        ASSERT_EQ(vornsResamplePolyphaseFixedGetSize_32f(in, out, len, &size, &rowLen, &rows), vornStsNoErr);
        std::vector<float> taps(static_cast<std::size_t>(rowLen) * static_cast<std::size_t>(rows));
        ASSERT_EQ(vornsResamplePolyphaseGetFixedFilter_32f(single, taps.data(), rowLen, rows), vornStsNoErr);
        const auto here = within<VornResampleFixedState_32f>(test::memory(size));
        ASSERT_EQ(vornsResamplePolyphaseFixedInit_32f(here.get(), in, out, len, hint), vornStsNoErr);
        ASSERT_EQ(vornsResamplePolyphaseSetFixedFilter_32f(here.get(), taps.data(), rowLen, rows), vornStsNoErr);
        addFixed(calls, "32f in memory", here, in, out, vornsResamplePolyphaseGetFixedFilter_32f);
    }
    calls.expectSameAsAlone(100);
}

}  // namespace
