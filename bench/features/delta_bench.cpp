// Deltas and copies of columns beside plain loops.
#include "plain/delta.h"

#include <algorithm>
#include <map>

#include "features/common.h"

namespace {

using namespace bench::features;

constexpr int whole = vornDeltaFirst | vornDeltaLast;
constexpr int scale = 3;

std::string sizeOf(int width, int height) { return std::to_string(width) + "x" + std::to_string(height); }

struct Rules {
    int window;
    bool acceleration, mul, wraps;
};

// What all lines of one size share: there are too many of them for buffers of their own.
template <class T>
struct Buffers {
    explicit Buffers(std::size_t len) : src(signal<T>(len, -1000, 1000)), dst(signal<T>(3 * len, -1000, 1000)) {}
    std::shared_ptr<T[]> src, dst;
};
template <class T>
const Buffers<T>& buffers(int width, int height) {
    static std::map<std::size_t, Buffers<T>> all;
    return all
        .try_emplace(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                     static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
        .first->second;
}

template <class T, class Call>
void addStream(const char* name, Rules rules, int width, int height, Call call) {
    const auto len = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    const int step = (rules.acceleration ? 3 : 2) * width;
    const auto src = buffers<T>(width, height).src, dst = buffers<T>(width, height).dst;
    auto f = bench::buffer<T>(static_cast<std::size_t>(3 * width));
    std::fill_n(f.get(), 3 * width, T(2));
    compare(name, sizeOf(width, height), static_cast<std::int64_t>(len), dst,
            {{bench::ours, [=] { call(src.get(), f.get(), width, dst.get(), step, height); }},
             {"plain", [=] {
                  plain::deltas({rules.window, rules.acceleration, rules.mul, rules.wraps, src.get(), f.get(), width,
                                 dst.get(), step, height, scale});
              }}});
}

template <class T, class Call>
void addMatrix(const char* name, bool mul, int width, int height, int window, Call call) {
    const auto len = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    auto x = buffers<T>(width, height).dst, f = bench::buffer<T>(static_cast<std::size_t>(2 * width));
    std::fill_n(f.get(), 2 * width, T(2));
    compare(name, sizeOf(width, height) + "w" + std::to_string(window), static_cast<std::int64_t>(len), x,
            {{bench::ours, [=] { call(x.get(), height, 2 * width, f.get(), width, window); }},
             {"plain", [=] {
                  plain::evalDelta(x.get(), height, 2 * width, f.get() + (mul ? width : 0), mul, width, 0, window,
                                   scale);
              }}});
}

template <class T, class Call>
void addCopy(const char* name, int width, int height, int step, Call call) {
    const auto src = buffers<T>(width, height).src, dst = buffers<T>(width, height).dst;
    compare(name, sizeOf(width, height) + "of" + std::to_string(step), static_cast<std::int64_t>(height) * width, dst,
            {{bench::ours, [=] { call(src.get(), width, dst.get(), step, height); }},
             {"plain", [=] { plain::copyColumns(src.get(), width, dst.get(), step, height); }}});
}

// Every column of an order shuffled by a step that shares no factor with the width.
template <class T, class Call>
void addPick(const char* name, int width, int height, Call call) {
    const auto len = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    const auto src = buffers<T>(width, height).src, dst = buffers<T>(width, height).dst;
    auto index = bench::buffer<Vorn32s>(static_cast<std::size_t>(width));
    for (int j = 0; j < width; ++j) index[j] = j * 5 % width;
    compare(name, sizeOf(width, height), static_cast<std::int64_t>(len), dst,
            {{bench::ours, [=] { call(src.get(), width, dst.get(), index.get(), height); }},
             {"plain", [=] { plain::pickColumns(src.get(), width, dst.get(), index.get(), width, width, height); }}});
}

// Rows by their pointers; the plain loop has a block.
template <class T, class Call>
void addPickOfList(const char* name, int width, int height, Call call) {
    auto from = std::make_shared<std::vector<const T*>>();
    auto to = std::make_shared<std::vector<T*>>();
    addPick<T>(name, width, height, [=](const T* src, int, T* dst, const Vorn32s* index, int) {
        if (from->empty()) {
            for (int r = 0; r < height; ++r) {
                from->push_back(src + static_cast<std::ptrdiff_t>(r) * width);
                to->push_back(dst + static_cast<std::ptrdiff_t>(r) * width);
            }
        }
        call(from->data(), width, to->data(), index, width, height);
    });
}

void addSize(int width, int height) {
    addStream<Vorn32f>("vornsDelta_Win1_32f_D2", {1, false, false, false}, width, height,
                       [](const Vorn32f* src, const Vorn32f* f, int width, Vorn32f* dst, int step, int height) {
                           vornsDelta_Win1_32f_D2(src, width, dst, step, height, f[width], whole);
                       });
    addStream<Vorn32f>("vornsDelta_Win2_32f_D2", {2, false, false, false}, width, height,
                       [](const Vorn32f* src, const Vorn32f* f, int width, Vorn32f* dst, int step, int height) {
                           vornsDelta_Win2_32f_D2(src, width, dst, step, height, f[width], whole);
                       });
    addStream<Vorn32f>("vornsDeltaDelta_Win1_32f_D2", {1, true, false, false}, width, height,
                       [](const Vorn32f* src, const Vorn32f* f, int width, Vorn32f* dst, int step, int height) {
                           vornsDeltaDelta_Win1_32f_D2(src, width, dst, step, height, f[width], f[2 * width], whole);
                       });
    addStream<Vorn32f>("vornsDeltaDelta_Win2_32f_D2", {2, true, false, false}, width, height,
                       [](const Vorn32f* src, const Vorn32f* f, int width, Vorn32f* dst, int step, int height) {
                           vornsDeltaDelta_Win2_32f_D2(src, width, dst, step, height, f[width], f[2 * width], whole);
                       });
    addStream<Vorn32f>("vornsDeltaMul_Win1_32f_D2", {1, false, true, false}, width, height,
                       [](const Vorn32f* src, const Vorn32f* f, int width, Vorn32f* dst, int step, int height) {
                           vornsDeltaMul_Win1_32f_D2(src, f, width, dst, step, height, whole);
                       });
    addStream<Vorn32f>("vornsDeltaMul_Win2_32f_D2", {2, false, true, false}, width, height,
                       [](const Vorn32f* src, const Vorn32f* f, int width, Vorn32f* dst, int step, int height) {
                           vornsDeltaMul_Win2_32f_D2(src, f, width, dst, step, height, whole);
                       });
    addStream<Vorn32f>("vornsDeltaDeltaMul_Win1_32f_D2", {1, true, true, false}, width, height,
                       [](const Vorn32f* src, const Vorn32f* f, int width, Vorn32f* dst, int step, int height) {
                           vornsDeltaDeltaMul_Win1_32f_D2(src, f, width, dst, step, height, whole);
                       });
    addStream<Vorn32f>("vornsDeltaDeltaMul_Win2_32f_D2", {2, true, true, false}, width, height,
                       [](const Vorn32f* src, const Vorn32f* f, int width, Vorn32f* dst, int step, int height) {
                           vornsDeltaDeltaMul_Win2_32f_D2(src, f, width, dst, step, height, whole);
                       });
    addStream<Vorn16s>("vornsDelta_Win1_16s_D2Sfs", {1, false, false, false}, width, height,
                       [](const Vorn16s* src, const Vorn16s* f, int width, Vorn16s* dst, int step, int height) {
                           vornsDelta_Win1_16s_D2Sfs(src, width, dst, step, height, f[width], whole, scale);
                       });
    addStream<Vorn16s>("vornsDelta_Win2_16s_D2Sfs", {2, false, false, false}, width, height,
                       [](const Vorn16s* src, const Vorn16s* f, int width, Vorn16s* dst, int step, int height) {
                           vornsDelta_Win2_16s_D2Sfs(src, width, dst, step, height, f[width], whole, scale);
                       });
    addStream<Vorn16s>("vornsDeltaDelta_Win1_16s_D2Sfs", {1, true, false, false}, width, height,
                       [](const Vorn16s* src, const Vorn16s* f, int width, Vorn16s* dst, int step, int height) {
                           vornsDeltaDelta_Win1_16s_D2Sfs(src, width, dst, step, height, f[width], f[2 * width], whole,
                                                          scale);
                       });
    addStream<Vorn16s>("vornsDeltaDelta_Win2_16s_D2Sfs", {2, true, false, true}, width, height,
                       [](const Vorn16s* src, const Vorn16s* f, int width, Vorn16s* dst, int step, int height) {
                           vornsDeltaDelta_Win2_16s_D2Sfs(src, width, dst, step, height, f[width], f[2 * width], whole,
                                                          scale);
                       });
    addStream<Vorn16s>("vornsDeltaMul_Win1_16s_D2Sfs", {1, false, true, true}, width, height,
                       [](const Vorn16s* src, const Vorn16s* f, int width, Vorn16s* dst, int step, int height) {
                           vornsDeltaMul_Win1_16s_D2Sfs(src, f, width, dst, step, height, whole, scale);
                       });
    addStream<Vorn16s>("vornsDeltaMul_Win2_16s_D2Sfs", {2, false, true, true}, width, height,
                       [](const Vorn16s* src, const Vorn16s* f, int width, Vorn16s* dst, int step, int height) {
                           vornsDeltaMul_Win2_16s_D2Sfs(src, f, width, dst, step, height, whole, scale);
                       });
    addStream<Vorn16s>("vornsDeltaDeltaMul_Win1_16s_D2Sfs", {1, true, true, true}, width, height,
                       [](const Vorn16s* src, const Vorn16s* f, int width, Vorn16s* dst, int step, int height) {
                           vornsDeltaDeltaMul_Win1_16s_D2Sfs(src, f, width, dst, step, height, whole, scale);
                       });
    addStream<Vorn16s>("vornsDeltaDeltaMul_Win2_16s_D2Sfs", {2, true, true, true}, width, height,
                       [](const Vorn16s* src, const Vorn16s* f, int width, Vorn16s* dst, int step, int height) {
                           vornsDeltaDeltaMul_Win2_16s_D2Sfs(src, f, width, dst, step, height, whole, scale);
                       });

    for (int window : {1, 2, 3, 9}) {
        if (height < 2 * window) continue;
        addMatrix<Vorn32f>("vornsEvalDelta_32f_D2", false, width, height, window,
                           [](Vorn32f* x, int height, int step, const Vorn32f* f, int width, int window) {
                               vornsEvalDelta_32f_D2(x, height, step, width, 0, window, f[0]);
                           });
        addMatrix<Vorn32f>("vornsEvalDeltaMul_32f_D2", true, width, height, window,
                           [](Vorn32f* x, int height, int step, const Vorn32f* f, int width, int window) {
                               vornsEvalDeltaMul_32f_D2(x, height, step, f, width, 0, window);
                           });
        addMatrix<Vorn16s>("vornsEvalDelta_16s_D2Sfs", false, width, height, window,
                           [](Vorn16s* x, int height, int step, const Vorn16s* f, int width, int window) {
                               vornsEvalDelta_16s_D2Sfs(x, height, step, width, 0, window, f[0], scale);
                           });
        addMatrix<Vorn16s>("vornsEvalDeltaMul_16s_D2Sfs", true, width, height, window,
                           [](Vorn16s* x, int height, int step, const Vorn16s* f, int width, int window) {
                               vornsEvalDeltaMul_16s_D2Sfs(x, height, step, f, width, 0, window, scale);
                           });
    }
    for (int step : {width, 3 * width}) {
        addCopy<Vorn32f>("vornsCopyColumn_32f_D2", width, height, step, vornsCopyColumn_32f_D2);
        addCopy<Vorn16s>("vornsCopyColumn_16s_D2", width, height, step, vornsCopyColumn_16s_D2);
    }
    addPick<Vorn32f>("vornsCopyColumn_Indirect_32f_D2", width, height,
                     [](const Vorn32f* src, int width, Vorn32f* dst, const Vorn32s* index, int height) {
                         vornsCopyColumn_Indirect_32f_D2(src, width, width, dst, index, width, width, height);
                     });
    addPickOfList<Vorn32f>("vornsCopyColumn_Indirect_32f_D2L", width, height, vornsCopyColumn_Indirect_32f_D2L);
    addPick<Vorn64f>("vornsCopyColumn_Indirect_64f_D2", width, height,
                     [](const Vorn64f* src, int width, Vorn64f* dst, const Vorn32s* index, int height) {
                         vornsCopyColumn_Indirect_64f_D2(src, width, width, dst, index, width, width, height);
                     });
    addPickOfList<Vorn64f>("vornsCopyColumn_Indirect_64f_D2L", width, height, vornsCopyColumn_Indirect_64f_D2L);
    addPick<Vorn16s>("vornsCopyColumn_Indirect_16s_D2", width, height,
                     [](const Vorn16s* src, int width, Vorn16s* dst, const Vorn32s* index, int height) {
                         vornsCopyColumn_Indirect_16s_D2(src, width, width, dst, index, width, width, height);
                     });
    addPickOfList<Vorn16s>("vornsCopyColumn_Indirect_16s_D2L", width, height, vornsCopyColumn_Indirect_16s_D2L);
}

const bench::Family deltas([] {
    for (int width : {13, 39, 64}) {
        for (int height : {10, 100, 1000, 100000}) addSize(width, height);
    }
});

}  // namespace
