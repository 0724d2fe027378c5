// DCT lifters for tests: the sixteen ways to make one, and the two element forms behind one face.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <vector>

#include "features/cepstrum/kernels.h"
#include "model/dct_lifter.h"
#include "support/values.h"
#include "vornsr.h"

namespace test {

struct LifterSetting {
    LifterSetting(int lenDCT_, int lenCep_, int nLifter_ = 22) : lenDCT(lenDCT_), lenCep(lenCep_), nLifter(nLifter_) {
        const auto count = static_cast<std::size_t>(lenCep);
        weights = Random(count).floats(count, -3.0, 9.0);
        integers = Random(count).integers<Vorn32s>(count);
        integers[0] = 16777217;  // between two singles
    }
    int lenDCT, lenCep, nLifter;
    float val = 0.7f, val0 = 1.3f;
    // The caller's, for the forms that take them.
    std::vector<float> weights;
    std::vector<Vorn32s> integers;
};

enum class Weights { raisedSine, callers, integers };

template <class State>
struct LifterForm {
    const char* name;
    bool withC0;
    Weights ofBlock, ofAllocated;
    VornStatus (*getSize)(int lenDCT, int lenCep, int* size);
    VornStatus (*init)(State* block, const LifterSetting& s);
    VornStatus (*initAlloc)(State** state, const LifterSetting& s);

    // The weights that a context must hold.
    std::vector<float> weights(Weights from, const LifterSetting& s) const {
        if (from == Weights::callers) return model::callersWeights(s.weights, withC0);
        if (from == Weights::integers) return model::callersWeights(s.integers, withC0);
        std::vector<float> weight;
        for (int i = 0; i <= s.lenCep; ++i) weight.push_back(model::raisedSine(i, s.nLifter, s.val));
        if (withC0) weight[0] = s.val0;
        return weight;
    }
};

inline const std::vector<LifterForm<VornDCTLifterState_32f>> singleLifters = {
    {"32f", false, Weights::raisedSine, Weights::raisedSine, vornsDCTLifterGetSize_32f,
     [](auto* block, const LifterSetting& s) {
         return vornsDCTLifterInit_32f(block, s.lenDCT, s.lenCep, s.nLifter, s.val);
     },
     [](auto** state, const LifterSetting& s) {
         return vornsDCTLifterInitAlloc_32f(state, s.lenDCT, s.lenCep, s.nLifter, s.val);
     }},
    {"C0_32f", true, Weights::raisedSine, Weights::raisedSine, vornsDCTLifterGetSize_C0_32f,
     [](auto* block, const LifterSetting& s) {
         return vornsDCTLifterInit_C0_32f(block, s.lenDCT, s.lenCep, s.nLifter, s.val, s.val0);
     },
     [](auto** state, const LifterSetting& s) {
         return vornsDCTLifterInitAlloc_C0_32f(state, s.lenDCT, s.lenCep, s.nLifter, s.val, s.val0);
     }},
    {"Mul_32f", false, Weights::callers, Weights::callers, vornsDCTLifterGetSize_Mul_32f,
     [](auto* block, const LifterSetting& s) {
         return vornsDCTLifterInit_Mul_32f(block, s.lenDCT, s.weights.data(), s.lenCep);
     },
     [](auto** state, const LifterSetting& s) {
         return vornsDCTLifterInitAlloc_Mul_32f(state, s.lenDCT, s.weights.data(), s.lenCep);
     }},
    {"MulC0_32f", true, Weights::callers, Weights::callers, vornsDCTLifterGetSize_MulC0_32f,
     [](auto* block, const LifterSetting& s) {
         return vornsDCTLifterInit_MulC0_32f(block, s.lenDCT, s.weights.data(), s.lenCep);
     },
     [](auto** state, const LifterSetting& s) {
         return vornsDCTLifterInitAlloc_MulC0_32f(state, s.lenDCT, s.weights.data(), s.lenCep);
     }},
};

inline const std::vector<LifterForm<VornDCTLifterState_16s>> shortLifters = {
    {"16s", false, Weights::raisedSine, Weights::raisedSine, vornsDCTLifterGetSize_16s,
     [](auto* block, const LifterSetting& s) {
         return vornsDCTLifterInit_16s(block, s.lenDCT, s.lenCep, s.nLifter, s.val);
     },
     [](auto** state, const LifterSetting& s) {
         return vornsDCTLifterInitAlloc_16s(state, s.lenDCT, s.lenCep, s.nLifter, s.val);
     }},
    {"C0_16s", true, Weights::raisedSine, Weights::raisedSine, vornsDCTLifterGetSize_C0_16s,
     [](auto* block, const LifterSetting& s) {
         return vornsDCTLifterInit_C0_16s(block, s.lenDCT, s.lenCep, s.nLifter, s.val, s.val0);
     },
     [](auto** state, const LifterSetting& s) {
         return vornsDCTLifterInitAlloc_C0_16s(state, s.lenDCT, s.lenCep, s.nLifter, s.val, s.val0);
     }},
    {"Mul_16s", false, Weights::callers, Weights::callers, vornsDCTLifterGetSize_Mul_16s,
     [](auto* block, const LifterSetting& s) {
         return vornsDCTLifterInit_Mul_16s(block, s.lenDCT, s.weights.data(), s.lenCep);
     },
     [](auto** state, const LifterSetting& s) {
         return vornsDCTLifterInitAlloc_Mul_16s(state, s.lenDCT, s.weights.data(), s.lenCep);
     }},
    {"MulC0_16s", true, Weights::integers, Weights::callers, vornsDCTLifterGetSize_MulC0_16s,
     [](auto* block, const LifterSetting& s) {
         return vornsDCTLifterInit_MulC0_16s(block, s.lenDCT, s.integers.data(), s.lenCep);
     },
     [](auto** state, const LifterSetting& s) {
         return vornsDCTLifterInitAlloc_MulC0_16s(state, s.lenDCT, s.weights.data(), s.lenCep);
     }},
};

// use(form) for all of both.
template <class Use>
void eachLifterForm(const Use& use) {
    for (const auto& form : singleLifters) use(form);
    for (const auto& form : shortLifters) use(form);
}

inline VornStatus release(VornDCTLifterState_32f* state) { return vornsDCTLifterFree_32f(state); }
inline VornStatus release(VornDCTLifterState_16s* state) { return vornsDCTLifterFree_16s(state); }

// The record, wherever the context stands.
template <class State>
State recordOf(const State* state) {
    State record;
    std::memcpy(&record, static_cast<const void*>(state), sizeof record);
    return record;
}
template <class State>
std::vector<float> weightsOf(const State* state) {
    const State record = recordOf(state);
    return {record.pLifter, record.pLifter + record.lenCep + 1};
}
template <class State>
std::vector<std::vector<float>> rowsOf(const State* state) {
    const State record = recordOf(state);
    std::vector<std::vector<float>> rows;
    for (int i = 0; i <= record.lenCep; ++i) rows.emplace_back(record.ppCos[i], record.ppCos[i] + record.lenDCT);
    return rows;
}

// An allocated context that leaves with its scope.
template <class State>
class Allocated {
public:
    Allocated(const LifterForm<State>& form, const LifterSetting& s) {
        EXPECT_EQ(form.initAlloc(&state_, s), vornStsNoErr) << form.name;
    }
    ~Allocated() { EXPECT_EQ(release(state_), vornStsNoErr); }
    Allocated(const Allocated&) = delete;
    State* get() const { return state_; }
    State* operator->() const { return state_; }
    operator const State*() const { return state_; }

private:
    State* state_ = nullptr;
};

}  // namespace test
