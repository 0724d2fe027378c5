// Shortlists, sign tables and mixtures of selected Gaussians: beside plain loops, and the mixtures beside a loop over
// the library's own scores and log-adds of one pair.
#include <random>
#include <string>
#include <vector>

#include "plain/selection.h"
#include "support/bench.h"
#include "vornsr.h"

namespace {

std::minstd_rand generator(3);

template <class T>
std::shared_ptr<T[]> numbers(std::size_t n, double low, double high) {
    std::uniform_real_distribution<double> uniform(low, high);
    auto block = bench::buffer<T>(n);
    for (std::size_t i = 0; i < n; ++i) block[i] = static_cast<T>(uniform(generator));
    return block;
}

// Shortlists of 256 codewords.
struct Lists {
    static constexpr int rows = 256;
    Lists(int start_, int width_, int slack)
        : start(start_),
          width(width_),
          step((start + width + 7) / 8 + slack),
          bytes(numbers<Vorn8u>(static_cast<std::size_t>(rows) * step, 0, 255.9)),
          pointers(bench::buffer<Vorn8u*>(rows)) {
        for (int r = 0; r < rows; ++r) pointers[r] = bytes.get() + r * step;
    }
    int start, width, step;
    std::shared_ptr<Vorn8u[]> bytes;
    std::shared_ptr<Vorn8u*[]> pointers;
};

const bench::Family tables([] {
    for (int width : {16, 64, 512, 4096}) {
        const Lists lists(3, width, 32);
        const int count = 16;
        const auto ofRows = numbers<Vorn32s>(static_cast<std::size_t>(count) * Lists::rows, 0, width - 0.01);
        const std::string size = std::to_string(width) + "x256";
        bench::add("FillShortlist_Row_1u", size, bench::ours, count * Lists::rows, [=] {
            vornsFillShortlist_Row_1u(ofRows.get(), width, count, lists.pointers.get(), Lists::rows, lists.step, 3);
            bench::keep(lists.bytes.get());
        });
        bench::add("FillShortlist_Row_1u", size, "plain", count * Lists::rows, [=] {
            plain::fillRows(ofRows.get(), width, count, lists.pointers.get(), Lists::rows, 3);
            bench::keep(lists.bytes.get());
        });
        const auto ofColumns = numbers<Vorn32s>(static_cast<std::size_t>(count) * width, 0, Lists::rows - 0.01);
        bench::add("FillShortlist_Column_1u", size, bench::ours, std::int64_t{count} * width, [=] {
            vornsFillShortlist_Column_1u(ofColumns.get(), count, lists.pointers.get(), Lists::rows, lists.step, 3,
                                         width);
            bench::keep(lists.bytes.get());
        });
        bench::add("FillShortlist_Column_1u", size, "plain", std::int64_t{count} * width, [=] {
            plain::fillColumns(ofColumns.get(), count, lists.pointers.get(), Lists::rows, 3, width);
            bench::keep(lists.bytes.get());
        });
        for (const auto& [place, frames] : {std::pair{"L1", 100}, {"LLC", 100000}, {"memory", 1000000}}) {
            if (frames > 100 && width > 64) continue;  // the table alone would not fit
            const int codewords = 4;
            const auto indices = numbers<Vorn32s>(static_cast<std::size_t>(frames) * codewords, 0, Lists::rows - 0.01);
            const auto counts = bench::buffer<Vorn32s>(frames);
            std::fill_n(counts.get(), frames, codewords);
            const auto sign = bench::buffer<Vorn8u>(static_cast<std::size_t>(frames) * ((width + 7) / 8));
            const std::string tableSize = std::to_string(width) + "x4 " + place;
            const std::int64_t items = std::int64_t{frames} * codewords;
            const auto add = [&, frames = frames](const char* name, const char* peer, auto call) {
                bench::add(name, tableSize, peer, items, [=] {
                    call(indices.get(), counts.get(), lists, sign.get(), frames);
                    bench::keep(sign.get());
                });
            };
            using Ints = const Vorn32s*;
            add("BuildSignTable_8u1u", bench::ours, [](Ints i, Ints, const Lists& l, Vorn8u* sign, int frames) {
                vornsBuildSignTable_8u1u(i, codewords, l.pointers.get(), Lists::rows, l.step, 3, sign, frames, l.width);
            });
            add("BuildSignTable_8u1u", "plain", [](Ints i, Ints, const Lists& l, Vorn8u* sign, int frames) {
                plain::signTable(i, codewords, l.pointers.get(), Lists::rows, 3, sign, frames, l.width);
            });
            add("BuildSignTable_Var_8u1u", bench::ours, [](Ints i, Ints n, const Lists& l, Vorn8u* sign, int frames) {
                vornsBuildSignTable_Var_8u1u(i, n, l.pointers.get(), Lists::rows, l.step, 3, sign, frames, l.width);
            });
            add("BuildSignTable_Var_8u1u", "plain", [](Ints i, Ints n, const Lists& l, Vorn8u* sign, int frames) {
                plain::firstSigns(i, n, l.pointers.get(), Lists::rows, 3, sign, frames, l.width);
            });
        }
    }
});

// A mixture of Gaussians of so many columns over many frames, of which a table selects some eighths.
template <class T>
struct Mixture {
    Mixture(int len_, int width_, int frames_, int eighths)
        : len(len_),
          width(width_),
          frames(frames_),
          src(numbers<T>(std::size_t(frames) * len, -30, 30)),
          mean(numbers<T>(std::size_t(width) * len, -30, 30)),
          var(numbers<T>(std::size_t(width) * len, 1, 3)),
          val(numbers<Vorn32f>(std::size_t(width), -3, 3)),
          sign(bench::buffer<Vorn8u>(std::size_t(frames) * ((width + 7) / 8))),
          result(bench::buffer<Vorn32f>(frames)) {
        std::uniform_int_distribution<int> uniform(0, 7);
        for (int f = 0; f < frames; ++f) {
            for (int g = 0; g < width; ++g) {
                if (uniform(generator) < eighths)
                    sign[f * ((width + 7) / 8) + g / 8] |= static_cast<Vorn8u>(128 >> g % 8);
            }
        }
    }
    int len, width, frames;
    std::shared_ptr<T[]> src, mean, var;
    std::shared_ptr<Vorn32f[]> val;
    std::shared_ptr<Vorn8u[]> sign;
    std::shared_ptr<Vorn32f[]> result;
};

// Gaussian by Gaussian, as we do it.
template <class T, class Single>
void overPublicCalls(const Mixture<T>& m, const Single& single) {
    const int rowBytes = (m.width + 7) / 8;
    std::vector<bool> any(static_cast<std::size_t>(m.frames), false);
    for (int g = 0; g < m.width; ++g) {
        for (int f = 0; f < m.frames; ++f) {
            if ((m.sign[f * rowBytes + g / 8] & (128 >> g % 8)) == 0) continue;
            Vorn32f score;
            single(m.src.get() + f * m.len, m.mean.get() + g * m.len, m.var.get() + g * m.len, m.len, &score, m.val[g]);
            if (any[f]) {
                vornsLogAdd_32f(&score, &m.result[f], 1);
            } else {
                m.result[f] = score;
            }
            any[f] = true;
        }
    }
    for (int f = 0; f < m.frames; ++f) {
        if (!any[f]) m.result[f] = 0;
    }
}

template <class T, class Ours, class Single, class Plain>
void addMixture(const char* name, const Ours& ours, const Single& single, const Plain& callPlain) {
    for (int len : {13, 39}) {
        for (const auto& [kind, eighths] : {std::pair{"dense", 8}, {"half", 4}, {"sparse", 1}}) {
            for (const auto& [place, width, frames] :
                 {std::tuple{"L1", 16, 64}, {"LLC", 1024, 1000}, {"memory", 32, 400000}}) {
                if (frames > 64 && (len != 39 || eighths == 4)) continue;
                const Mixture<T> m(len, width, frames, eighths);
                const std::string size = std::to_string(len) + " " + kind + " " + place;
                const std::int64_t items = std::int64_t{width} * frames;
                bench::add(name, size, bench::ours, items, [=] { ours(m), bench::keep(m.result.get()); });
                bench::add(name, size, "calls", items,
                           [=] { overPublicCalls(m, single), bench::keep(m.result.get()); });
                bench::add(name, size, "plain", items, [=] { callPlain(m), bench::keep(m.result.get()); });
            }
        }
    }
}

using Floats = Mixture<Vorn32f>;
using Shorts = Mixture<Vorn16s>;
const bench::Family mixtures([] {
    addMixture<Vorn32f>(
        "LogGaussMixture_Select_32f_D2",
        [](const Floats& m) {
            vornsLogGaussMixture_Select_32f_D2(m.src.get(), m.mean.get(), m.var.get(), m.len, m.len, m.val.get(),
                                               m.sign.get(), m.width, m.result.get(), m.frames, 0);
        },
        [](auto* x, auto* mean, auto* v, int len, Vorn32f* result, Vorn32f val) {
            vornsLogGaussSingle_32f(x, mean, v, len, result, val);
        },
        [](const Floats& m) {
            plain::selectedMixture(m.src.get(), m.mean.get(), m.var.get(), m.len, m.val.get(), m.sign.get(), m.width,
                                   m.result.get(), m.frames, 0);
        });
    addMixture<Vorn32f>(
        "LogGaussMixture_SelectIdVar_32f_D2",
        [](const Floats& m) {
            vornsLogGaussMixture_SelectIdVar_32f_D2(m.src.get(), m.mean.get(), m.len, m.len, m.val.get(), m.sign.get(),
                                                    m.width, m.result.get(), m.frames, 0);
        },
        [](auto* x, auto* mean, auto*, int len, Vorn32f* result, Vorn32f val) {
            vornsLogGaussSingle_IdVar_32f(x, mean, len, result, val);
        },
        [](const Floats& m) {
            plain::selectedMixture(m.src.get(), m.mean.get(), nullptr, m.len, m.val.get(), m.sign.get(), m.width,
                                   m.result.get(), m.frames, 0);
        });
    addMixture<Vorn16s>(
        "LogGaussMixture_SelectScaled_16s32f_D2",
        [](const Shorts& m) {
            vornsLogGaussMixture_SelectScaled_16s32f_D2(m.src.get(), m.mean.get(), m.var.get(), m.len, m.len,
                                                        m.val.get(), m.sign.get(), m.width, m.result.get(), m.frames, 0,
                                                        6);
        },
        [](auto* x, auto* mean, auto* v, int len, Vorn32f* result, Vorn32f val) {
            vornsLogGaussSingle_Scaled_16s32f(x, mean, v, len, result, val, 6);
        },
        [](const Shorts& m) {
            plain::selectedMixture(m.src.get(), m.mean.get(), m.var.get(), m.len, m.val.get(), m.sign.get(), m.width,
                                   m.result.get(), m.frames, 0, 0.0078125f);
        });
    addMixture<Vorn16s>(
        "LogGaussMixture_SelectIdVarScaled_16s32f_D2",
        [](const Shorts& m) {
            vornsLogGaussMixture_SelectIdVarScaled_16s32f_D2(m.src.get(), m.mean.get(), m.len, m.len, m.val.get(),
                                                             m.sign.get(), m.width, m.result.get(), m.frames, 0, 6);
        },
        [](auto* x, auto* mean, auto*, int len, Vorn32f* result, Vorn32f val) {
            vornsLogGaussSingle_IdVarScaled_16s32f(x, mean, len, result, val, 6);
        },
        [](const Shorts& m) {
            plain::selectedMixture(m.src.get(), m.mean.get(), nullptr, m.len, m.val.get(), m.sign.get(), m.width,
                                   m.result.get(), m.frames, 0, 0.0078125f);
        });
});

}  // namespace
