// Resampling.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

struct Design {
    int nStep;
    Vorn32f window, rollf, alpha;
};
constexpr Design designs[] = {{1, 2.0f, 1.0f, 1.0f}, {32, 13.0f, 0.9f, 6.0f}, {128, 38.5f, 0.92f, 9.0f}};
constexpr Vorn64f factors[] = {0.21, 1.0 / 3, 0.70710678118654752, 1.0, 1.5, 2.7182818284590452};

// At every factor a stream in blocks, the time carried over.
template <class T, class State, auto make, auto run, auto release>
void variable(Source& source, Digest& digest) {
    constexpr int around = 200;
    for (const Design& d : designs) {
        for (int hint : {1, 2}) {
            State* state = nullptr;
            digest.add(make(&state, d.nStep, hint, d.window, d.rollf, d.alpha));
            for (Vorn64f factor : factors) {
                Vorn64f time = 0.3;
                for (int len : {1, 2, 7, 64, 300}) {
                    const auto src = len % 2 ? source.values<T>(static_cast<std::size_t>(len + 2 * around))
                                             : source.patterns<T>(static_cast<std::size_t>(len + 2 * around));
                    std::vector<T> dst(static_cast<std::size_t>(3 * len + 3));
                    int made = 0;
                    digest.add(run(state, src.data() + around, len, dst.data(), factor, 1.0f, &time, &made));
                    digest.add(dst);
                    digest.add(time);
                    digest.add(made);
                    time -= static_cast<int>(time);
                }
            }
            digest.add(release(state));
        }
    }
}

struct Ratio {
    int in, out, len;
};
constexpr Ratio ratios[] = {{48000, 16000, 96}, {44100, 16000, 45}, {8000, 16000, 32},
                            {16000, 8000, 70},  {5, 7, 1},          {100003, 2, 6}};

template <class T, class State, auto run>
void streams(Source& source, Digest& digest, const State* state, int in, int out, int filterLen) {
    Vorn64f time = 0.4;
    for (int len : {1, 2, 7, 64, 300}) {
        const int around = filterLen / 2 + 4;
        const auto samples = static_cast<std::size_t>(len + 2 * around);
        const auto src = len % 2 ? source.values<T>(samples) : source.patterns<T>(samples);
        std::vector<T> dst(
            static_cast<std::size_t>(len) * static_cast<std::size_t>(out) / static_cast<std::size_t>(in) + 3);
        int made = 0;
        digest.add(run(state, src.data() + around, len, dst.data(), 0.9f, &time, &made));
        digest.add(dst);
        digest.add(time);
        digest.add(made);
        time -= static_cast<int>(time);
    }
}

template <class T, class State, auto make, auto run, auto release, auto get>
void allocated(Source& source, Digest& digest) {
    for (const Ratio& r : ratios) {
        for (int hint : {1, 2}) {
            State* state = nullptr;
            digest.add(make(&state, r.in, r.out, r.len, hint, 0.93f, 8.0f));
            std::vector<T> rows(2000);
            digest.add(get(state, rows.data(), 13, 100));
            digest.add(rows);
            streams<T, State, run>(source, digest, state, r.in, r.out, r.len);
            digest.add(release(state));
        }
    }
}

template <class T, class State, auto getSize, auto init, auto set, auto run>
void inBlocks(Source& source, Digest& digest) {
    for (const Ratio& r : ratios) {
        int size = 0, rowLen = 0, rows = 0;
        digest.add(getSize(r.in, r.out, r.len, &size, &rowLen, &rows));
        for (int value : {size, rowLen, rows}) digest.add(value);
        std::vector<std::uint64_t> block(static_cast<std::size_t>(size) / 8 + 1);
        auto* state = reinterpret_cast<State*>(block.data());
        for (int hint : {1, 2}) {
            digest.add(init(state, r.in, r.out, r.len, hint));
            const auto filter = source.values<T>(static_cast<std::size_t>(rowLen) * static_cast<std::size_t>(rows));
            digest.add(set(state, filter.data(), rowLen, rows));
            streams<T, State, run>(source, digest, state, r.in, r.out, r.len);
        }
    }
}

constexpr auto variable_32f = variable<Vorn32f, VornResampleState_32f, vornsResamplePolyphaseInitAlloc_32f,
                                       vornsResamplePolyphase_32f, vornsResamplePolyphaseFree_32f>;
constexpr auto variable_16s = variable<Vorn16s, VornResampleState_16s, vornsResamplePolyphaseInitAlloc_16s,
                                       vornsResamplePolyphase_16s, vornsResamplePolyphaseFree_16s>;
constexpr auto allocated_32f = allocated<Vorn32f, VornResampleFixedState_32f, vornsResamplePolyphaseFixedInitAlloc_32f,
                                         vornsResamplePolyphaseFixed_32f, vornsResamplePolyphaseFixedFree_32f,
                                         vornsResamplePolyphaseGetFixedFilter_32f>;
constexpr auto allocated_16s = allocated<Vorn16s, VornResampleFixedState_16s, vornsResamplePolyphaseFixedInitAlloc_16s,
                                         vornsResamplePolyphaseFixed_16s, vornsResamplePolyphaseFixedFree_16s,
                                         vornsResamplePolyphaseGetFixedFilter_16s>;
constexpr auto inBlocks_32f = inBlocks<Vorn32f, VornResampleFixedState_32f, vornsResamplePolyphaseFixedGetSize_32f,
                                       vornsResamplePolyphaseFixedInit_32f, vornsResamplePolyphaseSetFixedFilter_32f,
                                       vornsResamplePolyphaseFixed_32f>;
constexpr auto inBlocks_16s = inBlocks<Vorn16s, VornResampleFixedState_16s, vornsResamplePolyphaseFixedGetSize_16s,
                                       vornsResamplePolyphaseFixedInit_16s, vornsResamplePolyphaseSetFixedFilter_16s,
                                       vornsResamplePolyphaseFixed_16s>;

const Workload workloads[] = {
    {"vornsResamplePolyphaseInitAlloc_32f", variable_32f},
    {"vornsResamplePolyphase_32f", variable_32f},
    {"vornsResamplePolyphaseFree_32f", variable_32f},
    {"vornsResamplePolyphaseInitAlloc_16s", variable_16s},
    {"vornsResamplePolyphase_16s", variable_16s},
    {"vornsResamplePolyphaseFree_16s", variable_16s},
    {"vornsResamplePolyphaseFixedGetSize_32f", inBlocks_32f},
    {"vornsResamplePolyphaseFixedInit_32f", inBlocks_32f},
    {"vornsResamplePolyphaseFixedInitAlloc_32f", allocated_32f},
    {"vornsResamplePolyphaseFixed_32f", allocated_32f},
    {"vornsResamplePolyphaseFixedFree_32f", allocated_32f},
    {"vornsResamplePolyphaseGetFixedFilter_32f", allocated_32f},
    {"vornsResamplePolyphaseSetFixedFilter_32f", inBlocks_32f},
    {"vornsResamplePolyphaseFixedGetSize_16s", inBlocks_16s},
    {"vornsResamplePolyphaseFixedInit_16s", inBlocks_16s},
    {"vornsResamplePolyphaseFixedInitAlloc_16s", allocated_16s},
    {"vornsResamplePolyphaseFixed_16s", allocated_16s},
    {"vornsResamplePolyphaseFixedFree_16s", allocated_16s},
    {"vornsResamplePolyphaseGetFixedFilter_16s", allocated_16s},
    {"vornsResamplePolyphaseSetFixedFilter_16s", inBlocks_16s},
};

}  // namespace

Family resamplingWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
