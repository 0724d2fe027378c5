// The contexts of resampling as objects, and their functions under one name for both types of samples.
#pragma once

#include <cstring>

#include "support/expect.h"
#include "vornsr.h"

namespace resampling {

inline VornStatus make(VornResampleState_32f** p, int nStep, int hint, float window, float rollf, float alpha) {
    return vornsResamplePolyphaseInitAlloc_32f(p, nStep, hint, window, rollf, alpha);
}
inline VornStatus make(VornResampleState_16s** p, int nStep, int hint, float window, float rollf, float alpha) {
    return vornsResamplePolyphaseInitAlloc_16s(p, nStep, hint, window, rollf, alpha);
}
inline VornStatus release(VornResampleState_32f* p) { return vornsResamplePolyphaseFree_32f(p); }
inline VornStatus release(VornResampleState_16s* p) { return vornsResamplePolyphaseFree_16s(p); }
inline VornStatus resample(const VornResampleState_32f* state, const Vorn32f* src, int len, Vorn32f* dst, double factor,
                           float norm, double* time, int* made) {
    return vornsResamplePolyphase_32f(state, src, len, dst, factor, norm, time, made);
}
inline VornStatus resample(const VornResampleState_16s* state, const Vorn16s* src, int len, Vorn16s* dst, double factor,
                           float norm, double* time, int* made) {
    return vornsResamplePolyphase_16s(state, src, len, dst, factor, norm, time, made);
}

inline VornStatus make(VornResampleFixedState_32f** p, int in, int out, int len, int hint, float rollf, float alpha) {
    return vornsResamplePolyphaseFixedInitAlloc_32f(p, in, out, len, hint, rollf, alpha);
}
inline VornStatus make(VornResampleFixedState_16s** p, int in, int out, int len, int hint, float rollf, float alpha) {
    return vornsResamplePolyphaseFixedInitAlloc_16s(p, in, out, len, hint, rollf, alpha);
}
inline VornStatus release(VornResampleFixedState_32f* p) { return vornsResamplePolyphaseFixedFree_32f(p); }
inline VornStatus release(VornResampleFixedState_16s* p) { return vornsResamplePolyphaseFixedFree_16s(p); }
inline VornStatus resample(const VornResampleFixedState_32f* state, const Vorn32f* src, int len, Vorn32f* dst,
                           float norm, double* time, int* made) {
    return vornsResamplePolyphaseFixed_32f(state, src, len, dst, norm, time, made);
}
inline VornStatus resample(const VornResampleFixedState_16s* state, const Vorn16s* src, int len, Vorn16s* dst,
                           float norm, double* time, int* made) {
    return vornsResamplePolyphaseFixed_16s(state, src, len, dst, norm, time, made);
}
inline VornStatus sizeOf(Vorn32f, int in, int out, int len, int* size, int* rowLen, int* rows) {
    return vornsResamplePolyphaseFixedGetSize_32f(in, out, len, size, rowLen, rows);
}
inline VornStatus sizeOf(Vorn16s, int in, int out, int len, int* size, int* rowLen, int* rows) {
    return vornsResamplePolyphaseFixedGetSize_16s(in, out, len, size, rowLen, rows);
}
inline VornStatus init(VornResampleFixedState_32f* p, int in, int out, int len, int hint) {
    return vornsResamplePolyphaseFixedInit_32f(p, in, out, len, hint);
}
inline VornStatus init(VornResampleFixedState_16s* p, int in, int out, int len, int hint) {
    return vornsResamplePolyphaseFixedInit_16s(p, in, out, len, hint);
}
inline VornStatus getFilter(const VornResampleFixedState_32f* p, Vorn32f* dst, int step, int height) {
    return vornsResamplePolyphaseGetFixedFilter_32f(p, dst, step, height);
}
inline VornStatus getFilter(const VornResampleFixedState_16s* p, Vorn16s* dst, int step, int height) {
    return vornsResamplePolyphaseGetFixedFilter_16s(p, dst, step, height);
}
inline VornStatus setFilter(VornResampleFixedState_32f* p, const Vorn32f* src, int step, int height) {
    return vornsResamplePolyphaseSetFixedFilter_32f(p, src, step, height);
}
inline VornStatus setFilter(VornResampleFixedState_16s* p, const Vorn16s* src, int step, int height) {
    return vornsResamplePolyphaseSetFixedFilter_16s(p, src, step, height);
}

template <class Sample>
struct StatesOf;
template <>
struct StatesOf<Vorn32f> {
    using Variable = VornResampleState_32f;
    using Fixed = VornResampleFixedState_32f;
};
template <>
struct StatesOf<Vorn16s> {
    using Variable = VornResampleState_16s;
    using Fixed = VornResampleFixedState_16s;
};

// The promised beginnings of the records.
struct VariableFields {
    double invStep;
    int nStep, tableLen;
    float tableNorm;
    int flags;
    const void* pTable;
};
struct FixedFields {
    int inRate, outRate;
    float filterNorm;
    int halfLen, flags;
    const Vorn16s* pStep;
    const void* const* ppFilter;
};

template <class State>
class Owned {
public:
    Owned() = default;
    ~Owned() {
        if (state_ == nullptr) return;
        EXPECT_EQ(release(state_), vornStsNoErr);
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    State** out() { return &state_; }
    State* get() const { return state_; }
    template <class Fields>
    Fields fields() const {
        Fields fields;
        std::memcpy(&fields, static_cast<const void*>(state_), sizeof fields);
        return fields;
    }

private:
    State* state_ = nullptr;
};

struct Design {
    int nStep, hint;
    float window, rollf, alpha;
};
template <class Sample>
class Variable : public Owned<typename StatesOf<Sample>::Variable> {
public:
    explicit Variable(const Design& d) {
        EXPECT_EQ(make(this->out(), d.nStep, d.hint, d.window, d.rollf, d.alpha), vornStsNoErr);
    }
};

struct Ratio {
    int in, out, len, hint;
    float rollf, alpha;
};
template <class Sample>
class Fixed : public Owned<typename StatesOf<Sample>::Fixed> {
public:
    explicit Fixed(const Ratio& r) {
        EXPECT_EQ(make(this->out(), r.in, r.out, r.len, r.hint, r.rollf, r.alpha), vornStsNoErr);
    }
};

}  // namespace resampling
