// Frame conditioning beside plain loops.
#include <algorithm>
#include <type_traits>
#include <utility>

#include "features/common.h"

namespace {

using namespace bench::features;

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

const bench::Family conditioning([] {
    addOffsets();
    addSignChanges();
    addEnergies<1>("");
    addEnergies<39>(", a column of 39");
    addOverSamples<Vorn16s>("vornsZeroMean_16s", vornsZeroMean_16s, plain::zeroMean);
});

}  // namespace
