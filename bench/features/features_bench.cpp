// Feature extraction beside plain loops and, for the DCT lifter's matrix product, OpenBLAS and Eigen.
#include <algorithm>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#ifdef VORNSR_HAVE_OPENBLAS
#include <cblas.h>
#endif
#ifdef VORNSR_HAVE_EIGEN
#include <Eigen/Dense>
#endif

#include "plain/features.h"
#include "support/bench.h"
#include "vornsr.h"

namespace {

template <class T>
std::shared_ptr<T[]> signal(std::size_t len, double low, double high) {
    auto block = bench::buffer<T>(len);
    std::mt19937 generator(static_cast<unsigned>(len));
    std::uniform_real_distribution<double> uniform(low, high);
    for (std::size_t i = 0; i < len; ++i) block[i] = static_cast<T>(uniform(generator));
    return block;
}

struct Call {
    const char* peer;
    std::function<void()> run;
};

// All calls of a line write to the one result.
template <class T>
void compare(const std::string& name, const std::string& size, std::int64_t items, const std::shared_ptr<T>& result,
             const std::vector<Call>& calls) {
    for (const Call& call : calls) {
        bench::add(name, size, call.peer, items, [=, run = call.run] {
            run();
            bench::keep(result.get());
        });
    }
}

template <class T, class Factor>
using Filter = VornStatus (*)(const T* src, T* dst, int len, T* last, T dstLast, Factor val);
template <class T, class Factor>
using FilterInPlace = VornStatus (*)(T* srcDst, int len, T* last, T dstLast, Factor val);
template <class T, class Factor>
using PlainFilter = void (*)(const T* src, T* dst, int len, T* last, T dstLast, Factor val);

// In place the filters work on a fresh copy, whose making counts on both sides: what they did to their own results
// would soon be loud, or subnormal.
template <class T, class Factor, class Ours>
void addOffset(const std::string& name, Ours ours, PlainFilter<T, Factor> plain, Factor val,
               std::initializer_list<int> lengths) {
    constexpr bool inPlace = std::is_same_v<Ours, FilterInPlace<T, Factor>>;
    for (int len : lengths) {
        auto src = signal<T>(static_cast<std::size_t>(len), -3000, 3000),
             dst = bench::buffer<T>(static_cast<std::size_t>(len)), last = bench::buffer<T>(1);
        compare(name, std::to_string(len), len, dst,
                {{bench::ours,
                  [=] {
                      if constexpr (inPlace) {
                          std::copy_n(src.get(), len, dst.get());
                          ours(dst.get(), len, last.get(), 0, val);
                      } else {
                          ours(src.get(), dst.get(), len, last.get(), 0, val);
                      }
                  }},
                 {"plain", [=] {
                      if (inPlace) std::copy_n(src.get(), len, dst.get());
                      plain(inPlace ? dst.get() : src.get(), dst.get(), len, last.get(), 0, val);
                  }}});
    }
}

void addOffsets() {
    const auto frames = {200, 4000, 2000000}, shortFrames = {200, 4000, 60000};
    using S = Vorn32f;
    using F = Vorn16s;
    addOffset<S, S>("vornsCompensateOffset_32f", Filter<S, S>(vornsCompensateOffset_32f), plain::compensateOffset,
                    0.98f, frames);
    addOffset<S, S>("vornsCompensateOffset_32f_I", FilterInPlace<S, S>(vornsCompensateOffset_32f_I),
                    plain::compensateOffset, 0.98f, frames);
    addOffset<F, S>("vornsCompensateOffset_16s", Filter<F, S>(vornsCompensateOffset_16s), plain::compensateOffset,
                    0.98f, frames);
    addOffset<F, S>("vornsCompensateOffset_16s_I", FilterInPlace<F, S>(vornsCompensateOffset_16s_I),
                    plain::compensateOffsetRounded, 0.98f, frames);
    addOffset<F, F>("vornsCompensateOffsetQ15_16s", Filter<F, F>(vornsCompensateOffsetQ15_16s),
                    plain::compensateOffsetQ15, 32113, shortFrames);
    addOffset<F, F>("vornsCompensateOffsetQ15_16s_I", FilterInPlace<F, F>(vornsCompensateOffsetQ15_16s_I),
                    plain::compensateOffsetQ15, 32113, shortFrames);
}

constexpr std::size_t inMemory = std::size_t{128} << 20;
struct Size {
    const char* name;
    std::size_t elements, bytes;  // a fixed length, or the bytes of the vector
};
constexpr Size sizes[] = {
    {"400", 400, 0}, {"L1", 0, bench::inL1}, {"last level", 0, bench::inLastLevel}, {"memory", 0, inMemory}};

// One block for all members of an element type that read, and one for those that work in place and leave it ordinary
// but not as it was. They are made when first used.
enum class Use { read, change };
template <class T, Use>
std::shared_ptr<T[]> samples() {
    static const auto block = signal<T>(inMemory / sizeof(T), -3000, 3000);
    return block;
}

// A member takes the samples and their number.
template <class T>
using OverSamples = std::function<void(T* x, int len)>;

template <class T, Use use = Use::change>
void addOverSamples(const std::string& name, OverSamples<T> ours, OverSamples<T> plain) {
    for (const Size& size : sizes) {
        const auto len = static_cast<int>(size.elements != 0 ? size.elements : size.bytes / sizeof(T));
        for (const auto& [peer, call] : {std::pair(bench::ours, ours), std::pair("plain", plain)}) {
            bench::add(name, size.name, peer, len, [=, call = call] {
                call(samples<T, use>().get(), len);
                bench::keep(samples<T, use>().get());
            });
        }
    }
}

template <class T, class Result>
void addRate(const std::string& name, VornStatus (*ours)(const T*, int, Result*), int (*plain)(const T*, int)) {
    addOverSamples<T, Use::read>(
        name,
        [=](const T* x, int len) {
            Result rate;
            ours(x, len, &rate);
            bench::keep(&rate);
        },
        [=](const T* x, int len) { benchmark::DoNotOptimize(plain(x, len)); });
}

// The peers of the last two leave the half to the caller.
void addSignChanges() {
    addRate("vornsSignChangeRate_16s", vornsSignChangeRate_16s, plain::signChanges);
    addRate("vornsSignChangeRate_32f", vornsSignChangeRate_32f, plain::signChanges);
    addRate("vornsSignChangeRateXor_32f", vornsSignChangeRateXor_32f, plain::signBits);
    addRate("vornsSignChangeRate_Count0_16s", vornsSignChangeRate_Count0_16s, plain::signSteps);
    addRate("vornsSignChangeRate_Count0_32f", vornsSignChangeRate_Count0_32f, plain::signSteps);
}

// Normalised energies are normalised again, to the same range.
template <int step>
void addEnergies(const std::string& suffix) {
    addOverSamples<Vorn32f>(
        "vornsNormEnergy_32f" + suffix, [](auto* x, int len) { vornsNormEnergy_32f(x, step, len / step, 50, 0.1f); },
        [](auto* x, int len) { plain::normEnergy(x, step, len / step, 50, 0.1f); });
    addOverSamples<Vorn32f>(
        "vornsNormEnergy_RT_32f" + suffix,
        [](auto* x, int len) { vornsNormEnergy_RT_32f(x, step, len / step, 50, 1, 0.1f); },
        [](auto* x, int len) { plain::normEnergy(x, step, len / step, 50, 1, 0.1f); });
    addOverSamples<Vorn16s>(
        "vornsNormEnergy_16s" + suffix,
        [](auto* x, int len) { vornsNormEnergy_16s(x, step, len / step, 20000, 3000, 1); },
        [](auto* x, int len) { plain::normEnergy(x, step, len / step, 20000, 3000, 1); });
    addOverSamples<Vorn16s>(
        "vornsNormEnergy_RT_16s" + suffix,
        [](auto* x, int len) { vornsNormEnergy_RT_16s(x, step, len / step, 20000, 3000, 3000, 1); },
        [](auto* x, int len) { plain::normEnergy(x, step, len / step, 20000, 3000, 3000, 1); });
}

void addDeltas(int width, int height) {
    const std::size_t len = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    auto src = signal<float>(len, -10, 10), dst = bench::buffer<float>(3 * len);
    const std::string size = std::to_string(width) + "x" + std::to_string(height);
    const auto items = static_cast<std::int64_t>(len);
    const int whole = vornDeltaFirst | vornDeltaLast;
    compare(
        "vornsDelta_Win2_32f_D2", size, items, dst,
        {{bench::ours, [=] { vornsDelta_Win2_32f_D2(src.get(), width, dst.get(), 2 * width, height, 0.1f, whole); }},
         {"plain", [=] { plain::delta2(src.get(), width, dst.get(), 2 * width, height, 0.1f); }}});
    compare("vornsDeltaDelta_Win2_32f_D2", size, items, dst,
            {{bench::ours,
              [=] { vornsDeltaDelta_Win2_32f_D2(src.get(), width, dst.get(), 3 * width, height, 0.1f, 0.1f, whole); }},
             {"plain", [=] { plain::deltaDelta2(src.get(), width, dst.get(), 3 * width, height, 0.1f, 0.1f); }}});
}

// Making a context and giving it back, beside making the table only.
void addLifterContext(int lenDCT, int lenCep) {
    const int stride = (lenDCT + 7) / 8 * 8;
    auto rows = bench::buffer<float>(static_cast<std::size_t>(lenCep + 1) * static_cast<std::size_t>(stride)),
         weight = bench::buffer<float>(static_cast<std::size_t>(lenCep + 1));
    const std::string size = std::to_string(lenDCT) + "x" + std::to_string(lenCep);
    const Call plain{"plain", [=] { plain::cosines(rows.get(), stride, weight.get(), lenDCT, lenCep, 22, 1.0f); }};
    const auto made = [=](auto make) {
        return Call{bench::ours, [=] {
                        VornDCTLifterState_32f* state = nullptr;
                        make(&state);
                        vornsDCTLifterFree_32f(state);
                    }};
    };
    compare("vornsDCTLifterInitAlloc_32f", size, std::int64_t{lenDCT} * lenCep, rows,
            {made([=](auto** state) { vornsDCTLifterInitAlloc_32f(state, lenDCT, lenCep, 22, 1.0f); }), plain});
    compare(
        "vornsDCTLifterInitAlloc_C0_32f", size, std::int64_t{lenDCT} * lenCep, rows,
        {made([=](auto** state) { vornsDCTLifterInitAlloc_C0_32f(state, lenDCT, lenCep, 22, 1.0f, 2.0f); }), plain});
}

void addLifter(int lenDCT, int lenCep) {
    VornDCTLifterState_32f* made = nullptr;
    vornsDCTLifterInitAlloc_32f(&made, lenDCT, lenCep, 22, 1.0f);
    std::shared_ptr<VornDCTLifterState_32f> state(made, vornsDCTLifterFree_32f);
    // The peers get a table of their own, of the same size.
    const int stride = (lenDCT + 7) / 8 * 8;
    auto src = signal<float>(static_cast<std::size_t>(lenDCT), 0, 20),
         weight = signal<float>(static_cast<std::size_t>(lenCep), 1, 12);
    auto table = signal<float>(static_cast<std::size_t>(lenCep) * static_cast<std::size_t>(stride), -1, 1);
    auto dst = bench::buffer<float>(static_cast<std::size_t>(lenCep));
    const std::string name = "vornsDCTLifter_32f", size = std::to_string(lenDCT) + "x" + std::to_string(lenCep);
    const std::int64_t items = std::int64_t{lenDCT} * lenCep;
    bench::add(name, size, bench::ours, items, [=] {
        vornsDCTLifter_32f(src.get(), dst.get(), state.get());
        bench::keep(dst.get());
    });
    bench::add(name, size, "plain", items, [=] {
        plain::dctLifter(src.get(), dst.get(), table.get(), stride, weight.get(), lenDCT, lenCep);
        bench::keep(dst.get());
    });
#ifdef VORNSR_HAVE_OPENBLAS
    bench::add(name, size, "openblas", items, [=] {
        cblas_sgemv(CblasRowMajor, CblasNoTrans, lenCep, lenDCT, 1.0f, table.get(), stride, src.get(), 1, 0.0f,
                    dst.get(), 1);
        for (int i = 0; i < lenCep; ++i) dst[i] *= weight[i];
        bench::keep(dst.get());
    });
#endif
#ifdef VORNSR_HAVE_EIGEN
    bench::add(name, size, "eigen", items, [=] {
        using Rows = Eigen::Matrix<float, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
        const Eigen::Map<const Rows, 0, Eigen::OuterStride<>> rows(table.get(), lenCep, lenDCT,
                                                                   Eigen::OuterStride<>(stride));
        const Eigen::Map<const Eigen::VectorXf> x(src.get(), lenDCT), w(weight.get(), lenCep);
        Eigen::Map<Eigen::VectorXf> y(dst.get(), lenCep);
        y.noalias() = rows * x;
        y.array() *= w.array();
        bench::keep(dst.get());
    });
#endif
}

// A straight bank for the plain loops.
template <class Weight>
struct PlainBank {
    int stride;
    std::vector<int> center;
    std::vector<Weight> rises, falls;

    PlainBank(int N, int nFilter)
        : stride(N / 2 + 2),
          center(static_cast<std::size_t>(nFilter) + 2),
          rises(static_cast<std::size_t>(nFilter) * static_cast<std::size_t>(stride)),
          falls(rises) {
        make(N, nFilter);
    }
    void make(int N, int nFilter) {
        const Weight one = std::is_integral_v<Weight> ? 1 << 14 : 1;
        plain::melBank(center.data(), rises.data(), falls.data(), stride, N, nFilter, one);
    }
    template <class Value, class Result, class... Shift>
    void eval(const Value* spectrum, Result* dst, int nFilter, Shift... shift) const {
        plain::filterBank(spectrum, dst, center.data(), rises.data(), falls.data(), stride, nFilter, shift...);
    }
};

// What differs between the banks of singles and of 16-bit integers.
struct Singles {
    using State = VornFBankState_32f;
    using Weight = float;
    static constexpr const char* suffix = "_32f";
    static constexpr auto size = vornsMelFBankGetSize_32f;
    static constexpr auto init = vornsMelFBankInit_32f;
    static constexpr auto allocate = vornsMelFBankInitAlloc_32f;
    static constexpr auto release = vornsFBankFree_32f;
};
struct Shorts {
    using State = VornFBankState_16s;
    using Weight = int;
    static constexpr const char* suffix = "_16s";
    static constexpr auto size = vornsMelFBankGetSize_16s;
    static constexpr auto init = vornsMelFBankInit_16s;
    static constexpr auto allocate = vornsMelFBankInitAlloc_16s;
    static constexpr auto release = vornsFBankFree_16s;
};

template <class Form>
std::shared_ptr<typename Form::State> makeBank(int N, int nFilter, int flags = vornFBankWeightFreq) {
    typename Form::State* bank = nullptr;
    int order;
    Form::allocate(&bank, &order, N, 8000, 64, 4000, nFilter, 1127, 700, flags);
    return std::shared_ptr<typename Form::State>(bank, Form::release);
}

// In the caller's block, and with a block of the library's that is given back, beside making the weights only.
template <class Form>
void addBankContext(int N, int nFilter) {
    const std::string size = std::to_string(N) + "x" + std::to_string(nFilter);
    const auto peer = std::make_shared<PlainBank<typename Form::Weight>>(N, nFilter);
    int bytes = 0;
    Form::size(N, nFilter, vornFBankWeightFreq, &bytes);
    auto block = bench::buffer<double>(static_cast<std::size_t>(bytes) / sizeof(double) + 1);
    const Call plain{"plain", [=] { peer->make(N, nFilter); }};
    compare(std::string("vornsMelFBankInit") + Form::suffix, size, nFilter, block,
            {{bench::ours,
              [=] {
                  int order;
                  Form::init(reinterpret_cast<typename Form::State*>(block.get()), &order, N, 8000, 64, 4000, nFilter,
                             1127, 700, vornFBankWeightFreq);
              }},
             plain});
    compare(std::string("vornsMelFBankInitAlloc") + Form::suffix, size, nFilter, block,
            {{bench::ours, [=] { makeBank<Form>(N, nFilter); }}, plain});
}

void addFilterBank(int N, int nFilter) {
    const auto bins = static_cast<std::size_t>(N / 2 + 1), filters = static_cast<std::size_t>(nFilter);
    const std::string size = std::to_string(N) + "x" + std::to_string(nFilter);
    const auto bank = makeBank<Singles>(N, nFilter);
    const auto bank16 = makeBank<Shorts>(N, nFilter);
    const auto peer = std::make_shared<PlainBank<float>>(N, nFilter);
    const auto peer16 = std::make_shared<PlainBank<int>>(N, nFilter);
    auto src = signal<float>(bins, 0, 1000), dst = bench::buffer<float>(filters);
    auto src16 = signal<Vorn16s>(bins, 0, 1000), dst16 = bench::buffer<Vorn16s>(filters);
    auto dst32 = bench::buffer<Vorn32s>(filters);
    compare("vornsEvalFBank_32f", size, N / 2 + 1, dst,
            {{bench::ours, [=] { vornsEvalFBank_32f(src.get(), dst.get(), bank.get()); }},
             {"plain", [=] { peer->eval(src.get(), dst.get(), nFilter); }}});
    compare("vornsEvalFBank_16s_Sfs", size, N / 2 + 1, dst16,
            {{bench::ours, [=] { vornsEvalFBank_16s_Sfs(src16.get(), dst16.get(), bank16.get(), 0); }},
             {"plain", [=] { peer16->eval(src16.get(), dst16.get(), nFilter, 14); }}});
    compare("vornsEvalFBank_16s32s_Sfs", size, N / 2 + 1, dst32,
            {{bench::ours, [=] { vornsEvalFBank_16s32s_Sfs(src16.get(), dst32.get(), bank16.get(), 0); }},
             {"plain", [=] { peer16->eval(src16.get(), dst32.get(), nFilter, 14); }}});
}

// A frame of samples, its magnitude spectrum, the bank. What takes the time, the transform, stands beside its peers
// among the transforms.
void addFilterBankOfSamples(int N, int nFilter) {
    const auto len = static_cast<std::size_t>(N), filters = static_cast<std::size_t>(nFilter);
    const std::string size = std::to_string(N) + "x" + std::to_string(nFilter);
    const auto bank = makeBank<Singles>(N, nFilter, vornFBankWeightFreq | vornFBankSamples);
    const auto bank16 = makeBank<Shorts>(N, nFilter, vornFBankWeightFreq | vornFBankSamples);
    auto src = signal<float>(len, -3000, 3000), dst = bench::buffer<float>(filters);
    auto src16 = signal<Vorn16s>(len, -3000, 3000), dst16 = bench::buffer<Vorn16s>(filters);
    compare("vornsEvalFBank_32f of samples", size, N, dst,
            {{bench::ours, [=] { vornsEvalFBank_32f(src.get(), dst.get(), bank.get()); }}});
    compare("vornsEvalFBank_16s_Sfs of samples", size, N, dst16,
            {{bench::ours, [=] { vornsEvalFBank_16s_Sfs(src16.get(), dst16.get(), bank16.get(), 0); }}});
}

const bench::Family features([] {
    addOffsets();
    addSignChanges();
    addEnergies<1>("");
    addEnergies<39>(", a column of 39");
    addOverSamples<Vorn16s>("vornsZeroMean_16s", vornsZeroMean_16s, plain::zeroMean);
    for (int width : {13, 39}) {
        for (int height : {10, 100, 1000, 100000}) addDeltas(width, height);
    }
    addLifter(23, 12);
    addLifter(26, 13);
    addLifter(40, 20);
    addLifter(128, 64);
    addLifterContext(26, 13);
    for (int N : {256, 512, 2048}) addFilterBank(N, N == 256 ? 23 : 40);
    addFilterBankOfSamples(512, 40);
    addBankContext<Singles>(512, 40);
    addBankContext<Shorts>(512, 40);
});

}  // namespace
