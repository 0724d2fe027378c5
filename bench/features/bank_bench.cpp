// Mel filter banks beside plain loops.
#include <algorithm>
#include <type_traits>

#include "features/common.h"
#include "plain/bank.h"

namespace {

using namespace bench::features;

struct NoWeights {};

// A straight bank for the plain loops.
template <class Weight>
struct PlainBank {
    int stride;
    std::vector<int> center;
    std::vector<Weight> rises, falls;

    PlainBank(int N, int nFilter, NoWeights)
        : stride(N / 2 + 2),
          center(static_cast<std::size_t>(nFilter) + 2),
          rises(static_cast<std::size_t>(nFilter) * static_cast<std::size_t>(stride)),
          falls(rises) {}
    PlainBank(int N, int nFilter) : PlainBank(N, nFilter, NoWeights()) { make(N, nFilter); }
    // What no weight stands on is zero, as in the library's rows.
    void clear() {
        std::fill(rises.begin(), rises.end(), Weight(0));
        std::fill(falls.begin(), falls.end(), Weight(0));
    }
    void make(int N, int nFilter) {
        clear();
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
    static constexpr auto allocateMixed = vornsMelLinFBankInitAlloc_32f;
    static constexpr auto allocateEmpty = vornsEmptyFBankInitAlloc_32f;
    static constexpr auto release = vornsFBankFree_32f;
    static constexpr auto getCenters = vornsFBankGetCenters_32f;
    static constexpr auto setCenters = vornsFBankSetCenters_32f;
    static constexpr auto getCoeffs = vornsFBankGetCoeffs_32f;
    static constexpr auto setCoeffs = vornsFBankSetCoeffs_32f;
};
struct Shorts {
    using State = VornFBankState_16s;
    using Weight = int;
    static constexpr const char* suffix = "_16s";
    static constexpr auto size = vornsMelFBankGetSize_16s;
    static constexpr auto init = vornsMelFBankInit_16s;
    static constexpr auto allocate = vornsMelFBankInitAlloc_16s;
    static constexpr auto allocateMixed = vornsMelLinFBankInitAlloc_16s;
    static constexpr auto allocateEmpty = vornsEmptyFBankInitAlloc_16s;
    static constexpr auto release = vornsFBankFree_16s;
    static constexpr auto getCenters = vornsFBankGetCenters_16s;
    static constexpr auto setCenters = vornsFBankSetCenters_16s;
    static constexpr auto getCoeffs = vornsFBankGetCoeffs_16s;
    static constexpr auto setCoeffs = vornsFBankSetCoeffs_16s;
};

template <class Form>
std::shared_ptr<typename Form::State> makeBank(int N, int nFilter, int flags = vornFBankWeightFreq) {
    typename Form::State* bank = nullptr;
    int order;
    Form::allocate(&bank, &order, N, 8000, 64, 4000, nFilter, 1127, 700, flags);
    return std::shared_ptr<typename Form::State>(bank, Form::release);
}

// In the caller's block, and with blocks of the library's that are given back.
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
            {{bench::ours, [=] { makeBank<Form>(N, nFilter); }}, {"plain", [=] {
                                                                      const PlainBank<typename Form::Weight> made(
                                                                          N, nFilter);
                                                                      bench::keep(made.rises.data());
                                                                  }}});
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

constexpr plain::MelScale melScale = {8000, 64, 4000, 1127, 700};

// Banks with weights along the mel scale, mixed ones and empty ones; the plain ones take new memory as well.
template <class Form>
void addMelContext(int N, int nFilter) {
    using Weight = typename Form::Weight;
    const std::string size = std::to_string(N) + "x" + std::to_string(nFilter) + " mel";
    auto result = bench::buffer<float>(1);
    const float one = std::is_integral_v<Weight> ? 16384.0f : 1.0f;
    compare(std::string("vornsMelFBankInitAlloc") + Form::suffix, size, nFilter, result,
            {{bench::ours, [=] { makeBank<Form>(N, nFilter, vornFBankWeightMel); }},
             {"plain", [=] {
                  PlainBank<Weight> made(N, nFilter, NoWeights());
                  plain::melWeights(made.center.data(), made.rises.data(), made.falls.data(), made.stride, N, nFilter,
                                    melScale, one);
                  bench::keep(made.rises.data());
              }}});
    const int nLinear = nFilter / 3;
    compare(std::string("vornsMelLinFBankInitAlloc") + Form::suffix, size, nFilter, result,
            {{bench::ours,
              [=] {
                  typename Form::State* bank = nullptr;
                  int order;
                  Form::allocateMixed(&bank, &order, N, 8000, 64, 4000, nFilter, 1000, nLinear, 1127, 700,
                                      vornFBankWeightMel);
                  Form::release(bank);
              }},
             {"plain", [=] {
                  PlainBank<Weight> made(N, nFilter, NoWeights());
                  plain::mixedWeights(made.center.data(), made.rises.data(), made.falls.data(), made.stride, N, nFilter,
                                      1000, nLinear, melScale, one);
                  bench::keep(made.rises.data());
              }}});
    compare(std::string("vornsEmptyFBankInitAlloc") + Form::suffix, size, nFilter, result,
            {{bench::ours,
              [=] {
                  typename Form::State* bank = nullptr;
                  int order;
                  Form::allocateEmpty(&bank, &order, N, nFilter, 0);
                  Form::release(bank);
              }},
             {"plain", [=] {
                  const PlainBank<Weight> made(N, nFilter, NoWeights());
                  bench::keep(made.rises.data());
              }}});
}

// All filters' weights there and back, and the centres.
template <class Form>
void addAccess(int N, int nFilter) {
    const std::string size = std::to_string(N) + "x" + std::to_string(nFilter);
    const auto bank = makeBank<Form>(N, nFilter);
    const auto peer = std::make_shared<PlainBank<typename Form::Weight>>(N, nFilter);
    auto coeffs = bench::buffer<float>(static_cast<std::size_t>(N) + 2);
    auto centers = bench::buffer<int>(static_cast<std::size_t>(nFilter) + 2);
    const auto eachPlain = [=](auto use) {
        for (int k = 0; k < nFilter; ++k) {
            const int* c = peer->center.data() + k;
            use(peer->rises.data() + k * peer->stride, c[1] - c[0] + 1, peer->falls.data() + k * peer->stride,
                c[2] - c[1]);
        }
    };
    compare(std::string("vornsFBankGetCoeffs") + Form::suffix, size, nFilter, coeffs,
            {{bench::ours,
              [=] {
                  for (int k = 1; k <= nFilter; ++k) Form::getCoeffs(bank.get(), k, coeffs.get());
              }},
             {"plain", [=] {
                  eachPlain([&](auto* rise, int riseLen, auto* fall, int fallLen) {
                      plain::coeffsToCaller(rise, riseLen, fall, fallLen, coeffs.get());
                  });
              }}});
    compare(std::string("vornsFBankSetCoeffs") + Form::suffix, size, nFilter, coeffs,
            {{bench::ours,
              [=] {
                  for (int k = 1; k <= nFilter; ++k) Form::setCoeffs(bank.get(), k, coeffs.get());
              }},
             {"plain", [=] {
                  eachPlain([&](auto* rise, int riseLen, auto* fall, int fallLen) {
                      plain::coeffsFromCaller(coeffs.get(), rise, riseLen, fall, fallLen);
                  });
              }}});
    const Call plain{"plain", [=] { plain::centersCopied(peer->center.data(), centers.get(), nFilter, N / 2); }};
    compare(std::string("vornsFBankGetCenters") + Form::suffix, size, nFilter, centers,
            {{bench::ours, [=] { Form::getCenters(bank.get(), centers.get()); }}, plain});
    compare(std::string("vornsFBankSetCenters") + Form::suffix, size, nFilter, centers,
            {{bench::ours, [=] { Form::setCenters(bank.get(), peer->center.data()); }}, plain});
}

void addIntegerBank(int N, int nFilter) {
    const auto bins = static_cast<std::size_t>(N / 2 + 1), filters = static_cast<std::size_t>(nFilter);
    const std::string size = std::to_string(N) + "x" + std::to_string(nFilter);
    int bytes = 0;
    vornsMelFBankGetSize_32s(N, nFilter, vornFBankWeightFreq, &bytes);
    auto block = bench::buffer<double>(static_cast<std::size_t>(bytes) / sizeof(double) + 1);
    const auto init = [=] {
        int order;
        vornsMelFBankInit_32s(reinterpret_cast<VornFBankState_32s*>(block.get()), &order, N, 8000, 64, 4000, nFilter,
                              1127 << 15, 700 << 15, vornFBankWeightFreq);
    };
    const auto peer = std::make_shared<PlainBank<int>>(N, nFilter);
    const auto make = [=] {
        peer->clear();
        plain::integerWeights(peer->center.data(), peer->rises.data(), peer->falls.data(), peer->stride, N, nFilter,
                              melScale);
    };
    init();
    make();
    compare("vornsMelFBankInit_32s", size, nFilter, block, {{bench::ours, init}, {"plain", make}});
    auto src = signal<Vorn32s>(bins, -1e6, 1e6), dst = bench::buffer<Vorn32s>(filters);
    compare(
        "vornsEvalFBank_32s_Sfs", size, N / 2 + 1, dst,
        {{bench::ours,
          [=] { vornsEvalFBank_32s_Sfs(src.get(), dst.get(), reinterpret_cast<VornFBankState_32s*>(block.get()), 2); }},
         {"plain", [=] {
              plain::integerBank(src.get(), dst.get(), peer->center.data(), peer->rises.data(), peer->falls.data(),
                                 peer->stride, nFilter, 2);
          }}});
}

void addScale(const char* size, std::size_t bytes) {
    const auto len = bytes / (2 * sizeof(float));
    const auto items = static_cast<std::int64_t>(len);
    const int n = static_cast<int>(len);
    auto src = signal<float>(len, 0, 4000), dst = bench::buffer<float>(len);
    compare("vornsLinearToMel_32f", size, items, dst,
            {{bench::ours, [=] { vornsLinearToMel_32f(src.get(), dst.get(), n, 1127, 700); }},
             {"plain", [=] { plain::linearToMel(src.get(), dst.get(), n, 1127, 700); }}});
    compare("vornsMelToLinear_32f", size, items, dst,
            {{bench::ours, [=] { vornsMelToLinear_32f(src.get(), dst.get(), n, 1127, 700); }},
             {"plain", [=] { plain::melToLinear(src.get(), dst.get(), n, 1127, 700); }}});
}

template <class T>
void addPadding(const char* name, VornStatus (*copy)(const T*, int, T*, int), int srcLen, int dstLen) {
    const std::string size = std::to_string(srcLen) + " to " + std::to_string(dstLen);
    auto src = signal<T>(static_cast<std::size_t>(srcLen), -1000, 1000),
         dst = bench::buffer<T>(static_cast<std::size_t>(dstLen));
    compare(name, size, dstLen, dst,
            {{bench::ours, [=] { copy(src.get(), srcLen, dst.get(), dstLen); }},
             {"plain", [=] { plain::copyWithZeros(src.get(), srcLen, dst.get(), dstLen); }}});
}

const bench::Family banks([] {
    for (int N : {256, 512, 2048}) addFilterBank(N, N == 256 ? 23 : 40);
    addFilterBankOfSamples(512, 40);
    addBankContext<Singles>(512, 40);
    addBankContext<Shorts>(512, 40);
    addMelContext<Singles>(512, 40);
    addMelContext<Shorts>(512, 40);
    for (int N : {256, 512, 2048}) addIntegerBank(N, N == 256 ? 23 : 40);
    addAccess<Singles>(512, 40);
    addAccess<Shorts>(512, 40);
    addScale("frame", 256 * 2 * sizeof(float));
    addScale("L1", bench::inL1);
    addScale("LL", bench::inLastLevel);
    addScale("memory", bench::inMemory);
    for (const auto& [srcLen, dstLen] : {std::pair{200, 256}, {400, 512}, {1 << 20, 1 << 21}, {1 << 26, 1 << 27}}) {
        addPadding<Vorn32f>("vornsCopyWithPadding_32f", vornsCopyWithPadding_32f, srcLen, dstLen);
        addPadding<Vorn16s>("vornsCopyWithPadding_16s", vornsCopyWithPadding_16s, srcLen, dstLen);
    }
});

}  // namespace
