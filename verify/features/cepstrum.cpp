// DCT lifters.
#include <climits>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

struct LifterShape {
    int lenDCT, lenCep, nLifter;
};
const LifterShape lifterShapes[] = {{1, 1, 1}, {7, 7, 5}, {20, 12, 22}, {23, 12, 22}, {26, 13, 22}, {64, 30, 22}};

// Coefficients of ordinary and of hard vectors under one context.
void lift(Source& source, Digest& digest, const LifterShape& shape, const VornDCTLifterState_32f* state) {
    for (bool hard : {false, true}) {
        const auto src =
            hard ? source.patterns<Vorn32f>(shape.lenDCT) : source.values<Vorn32f>(shape.lenDCT, -20.0, 20.0);
        std::vector<Vorn32f> dst(shape.lenCep + 1);
        digest.add(vornsDCTLifter_32f(src.data(), dst.data(), state));
        digest.add(dst);
    }
}
template <class Element>
void liftIntegers(Source& source, Digest& digest, const LifterShape& shape, const VornDCTLifterState_16s* state,
                  VornStatus (*transform)(const Element*, Vorn16s*, const VornDCTLifterState_16s*, int), int most) {
    for (int scale : {0, most / 2, most, -3, 200, INT_MIN}) {
        const auto src = source.values<Element>(shape.lenDCT);
        std::vector<Vorn16s> dst(shape.lenCep + 1);
        digest.add(transform(src.data(), dst.data(), state, scale));
        digest.add(dst);
    }
}
void liftShorts(Source& source, Digest& digest, const LifterShape& shape, const VornDCTLifterState_16s* state) {
    liftIntegers(source, digest, shape, state, vornsDCTLifter_16s_Sfs, 8);
}
void liftLongs(Source& source, Digest& digest, const LifterShape& shape, const VornDCTLifterState_16s* state) {
    liftIntegers(source, digest, shape, state, vornsDCTLifter_32s16s_Sfs, 24);
}
void lift(Source& source, Digest& digest, const LifterShape& shape, const VornDCTLifterState_16s* state) {
    liftShorts(source, digest, shape, state);
}

// Under each allocated context.
template <class Init, class Release, class Lift>
void lifter(Source& source, Digest& digest, Init init, Release release, Lift use) {
    for (const LifterShape& shape : lifterShapes) {
        auto* state = init(source, digest, shape);
        use(source, digest, shape, state);
        digest.add(release(state));
    }
}
const auto useAny = [](Source& source, Digest& digest, const LifterShape& shape, const auto* state) {
    lift(source, digest, shape, state);
};
void plainLifter(Source& source, Digest& digest) {
    lifter(
        source, digest,
        [](Source&, Digest& into, const LifterShape& shape) {
            VornDCTLifterState_32f* state = nullptr;
            into.add(vornsDCTLifterInitAlloc_32f(&state, shape.lenDCT, shape.lenCep, shape.nLifter, 0.9f));
            return state;
        },
        vornsDCTLifterFree_32f, useAny);
}
template <class Lift>
void plainIntegerLifter(Source& source, Digest& digest, Lift use) {
    lifter(
        source, digest,
        [](Source&, Digest& into, const LifterShape& shape) {
            VornDCTLifterState_16s* state = nullptr;
            into.add(vornsDCTLifterInitAlloc_16s(&state, shape.lenDCT, shape.lenCep, shape.nLifter, 0.9f));
            return state;
        },
        vornsDCTLifterFree_16s, use);
}

// A form: its allocating function, or its size function and the one that fills a block.

template <class State>
Workload allocated(const char* name, VornStatus (*init)(State**, int, int, int, Vorn32f),
                   VornStatus (*release)(State*)) {
    return {name, [=](Source& source, Digest& digest) {
                lifter(
                    source, digest,
                    [=](Source&, Digest& into, const LifterShape& shape) {
                        State* state = nullptr;
                        into.add(init(&state, shape.lenDCT, shape.lenCep, shape.nLifter, 0.9f));
                        return state;
                    },
                    release, useAny);
            }};
}
template <class State>
Workload allocated(const char* name, VornStatus (*init)(State**, int, int, int, Vorn32f, Vorn32f),
                   VornStatus (*release)(State*)) {
    return {name, [=](Source& source, Digest& digest) {
                lifter(
                    source, digest,
                    [=](Source&, Digest& into, const LifterShape& shape) {
                        State* state = nullptr;
                        into.add(init(&state, shape.lenDCT, shape.lenCep, shape.nLifter, 0.9f, 0.1f));
                        return state;
                    },
                    release, useAny);
            }};
}
template <class State>
Workload allocated(const char* name, VornStatus (*init)(State**, int, const Vorn32f*, int),
                   VornStatus (*release)(State*)) {
    return {name, [=](Source& source, Digest& digest) {
                lifter(
                    source, digest,
                    [=](Source& from, Digest& into, const LifterShape& shape) {
                        const auto weights = from.values<Vorn32f>(shape.lenCep, -2.0, 9.0);
                        State* state = nullptr;
                        into.add(init(&state, shape.lenDCT, weights.data(), shape.lenCep));
                        return state;
                    },
                    release, useAny);
            }};
}

using GetSize = VornStatus (*)(int, int, int*);

void sizes(Digest& digest, GetSize getSize) {
    for (const LifterShape& shape : lifterShapes) {
        int size = 0;
        digest.add(getSize(shape.lenDCT, shape.lenCep, &size));
        digest.add(size);
    }
    for (int lenDCT : {8192, 8193, 1000000, INT_MAX}) {
        int size = 0;
        digest.add(getSize(lenDCT, 1000, &size));
        digest.add(size);
    }
}
Workload sizeOf(const char* name, GetSize getSize) {
    return {name, [=](Source&, Digest& digest) { sizes(digest, getSize); }};
}
// make(state, shape) in a block of the reported size.
template <class State, class Make>
void inBlocks(Source& source, Digest& digest, GetSize getSize, Make make) {
    for (const LifterShape& shape : lifterShapes) {
        int size = 0;
        digest.add(getSize(shape.lenDCT, shape.lenCep, &size));
        std::vector<unsigned char> block(static_cast<std::size_t>(size) + 1);
        auto* state = reinterpret_cast<State*>(block.data() + 1);
        digest.add(make(state, shape));
        lift(source, digest, shape, state);
    }
}
template <class State>
Workload inBlock(const char* name, GetSize getSize, VornStatus (*init)(State*, int, int, int, Vorn32f)) {
    return {name, [=](Source& source, Digest& digest) {
                inBlocks<State>(source, digest, getSize, [=](State* state, const LifterShape& shape) {
                    return init(state, shape.lenDCT, shape.lenCep, shape.nLifter, 0.9f);
                });
            }};
}
template <class State>
Workload inBlock(const char* name, GetSize getSize, VornStatus (*init)(State*, int, int, int, Vorn32f, Vorn32f)) {
    return {name, [=](Source& source, Digest& digest) {
                inBlocks<State>(source, digest, getSize, [=](State* state, const LifterShape& shape) {
                    return init(state, shape.lenDCT, shape.lenCep, shape.nLifter, 0.9f, 0.1f);
                });
            }};
}
template <class State, class Weight>
Workload inBlock(const char* name, GetSize getSize, VornStatus (*init)(State*, int, const Weight*, int)) {
    return {name, [=](Source& source, Digest& digest) {
                inBlocks<State>(source, digest, getSize, [&](State* state, const LifterShape& shape) {
                    const auto weights = source.values<Weight>(shape.lenCep, -2.0, 9.0);
                    return init(state, shape.lenDCT, weights.data(), shape.lenCep);
                });
            }};
}

const Workload workloads[] = {
    {"vornsDCTLifterInitAlloc_32f", plainLifter},
    allocated("vornsDCTLifterInitAlloc_C0_32f", vornsDCTLifterInitAlloc_C0_32f, vornsDCTLifterFree_32f),
    {"vornsDCTLifterFree_32f", plainLifter},
    {"vornsDCTLifter_32f", plainLifter},
    sizeOf("vornsDCTLifterGetSize_32f", vornsDCTLifterGetSize_32f),
    sizeOf("vornsDCTLifterGetSize_C0_32f", vornsDCTLifterGetSize_C0_32f),
    sizeOf("vornsDCTLifterGetSize_Mul_32f", vornsDCTLifterGetSize_Mul_32f),
    sizeOf("vornsDCTLifterGetSize_MulC0_32f", vornsDCTLifterGetSize_MulC0_32f),
    sizeOf("vornsDCTLifterGetSize_16s", vornsDCTLifterGetSize_16s),
    sizeOf("vornsDCTLifterGetSize_C0_16s", vornsDCTLifterGetSize_C0_16s),
    sizeOf("vornsDCTLifterGetSize_Mul_16s", vornsDCTLifterGetSize_Mul_16s),
    sizeOf("vornsDCTLifterGetSize_MulC0_16s", vornsDCTLifterGetSize_MulC0_16s),
    inBlock("vornsDCTLifterInit_32f", vornsDCTLifterGetSize_32f, vornsDCTLifterInit_32f),
    inBlock("vornsDCTLifterInit_C0_32f", vornsDCTLifterGetSize_C0_32f, vornsDCTLifterInit_C0_32f),
    inBlock("vornsDCTLifterInit_Mul_32f", vornsDCTLifterGetSize_Mul_32f, vornsDCTLifterInit_Mul_32f),
    inBlock("vornsDCTLifterInit_MulC0_32f", vornsDCTLifterGetSize_MulC0_32f, vornsDCTLifterInit_MulC0_32f),
    inBlock("vornsDCTLifterInit_16s", vornsDCTLifterGetSize_16s, vornsDCTLifterInit_16s),
    inBlock("vornsDCTLifterInit_C0_16s", vornsDCTLifterGetSize_C0_16s, vornsDCTLifterInit_C0_16s),
    inBlock("vornsDCTLifterInit_Mul_16s", vornsDCTLifterGetSize_Mul_16s, vornsDCTLifterInit_Mul_16s),
    inBlock("vornsDCTLifterInit_MulC0_16s", vornsDCTLifterGetSize_MulC0_16s, vornsDCTLifterInit_MulC0_16s),
    allocated("vornsDCTLifterInitAlloc_Mul_32f", vornsDCTLifterInitAlloc_Mul_32f, vornsDCTLifterFree_32f),
    allocated("vornsDCTLifterInitAlloc_MulC0_32f", vornsDCTLifterInitAlloc_MulC0_32f, vornsDCTLifterFree_32f),
    allocated("vornsDCTLifterInitAlloc_16s", vornsDCTLifterInitAlloc_16s, vornsDCTLifterFree_16s),
    allocated("vornsDCTLifterInitAlloc_C0_16s", vornsDCTLifterInitAlloc_C0_16s, vornsDCTLifterFree_16s),
    allocated("vornsDCTLifterInitAlloc_Mul_16s", vornsDCTLifterInitAlloc_Mul_16s, vornsDCTLifterFree_16s),
    allocated("vornsDCTLifterInitAlloc_MulC0_16s", vornsDCTLifterInitAlloc_MulC0_16s, vornsDCTLifterFree_16s),
    {"vornsDCTLifterFree_16s", [](Source& source, Digest& digest) { plainIntegerLifter(source, digest, liftShorts); }},
    {"vornsDCTLifter_16s_Sfs", [](Source& source, Digest& digest) { plainIntegerLifter(source, digest, liftShorts); }},
    {"vornsDCTLifter_32s16s_Sfs",
     [](Source& source, Digest& digest) { plainIntegerLifter(source, digest, liftLongs); }},
};

}  // namespace

Family lifterWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
