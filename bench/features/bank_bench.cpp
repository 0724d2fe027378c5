// Mel filter banks beside plain loops.
#include <type_traits>

#include "features/common.h"

namespace {

using namespace bench::features;

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

const bench::Family banks([] {
    for (int N : {256, 512, 2048}) addFilterBank(N, N == 256 ? 23 : 40);
    addFilterBankOfSamples(512, 40);
    addBankContext<Singles>(512, 40);
    addBankContext<Shorts>(512, 40);
});

}  // namespace
