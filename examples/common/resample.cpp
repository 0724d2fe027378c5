// A windowed sinc, with a row of taps for each place that a new sample can have between two old ones.
#include "resample.h"

#include <algorithm>
#include <memory>

#include "checked.h"

namespace digits {
namespace {

constexpr int kZeros = 128;           // of the sinc, in samples of the lower of the two rates
constexpr Vorn32f kRolloff = 0.95f;   // middle of the filter's slope, as a part of half the lower rate
constexpr Vorn32f kSteepness = 9.0f;  // of the Kaiser window: 90 dB down where frequencies would fold back
constexpr int kAccurate = 2;          // hint: taps in single precision, sums in double

using Filter = std::unique_ptr<VornResampleFixedState_16s, VornStatus (*)(VornResampleFixedState_16s*)>;

Filter makeFilter(int from, int to, int taps) {
    VornResampleFixedState_16s* state = nullptr;
    DIGITS_CALL(vornsResamplePolyphaseFixedInitAlloc_16s, &state, from, to, taps, kAccurate, kRolloff, kSteepness);
    return {state, vornsResamplePolyphaseFixedFree_16s};
}

}  // namespace

std::vector<Vorn16s> resampled(std::span<const Vorn16s> samples, int from, int to) {
    if (from == to || samples.empty()) return {samples.begin(), samples.end()};
    const int taps = kZeros * std::max(from, to) / to;
    const Filter filter = makeFilter(from, to, taps);

    // The filter looks at samples in front of the first one and behind the last one.
    const int margin = taps / 2 + 4, length = static_cast<int>(samples.size());
    std::vector<Vorn16s> padded(samples.size() + 2 * static_cast<std::size_t>(margin));
    std::copy(samples.begin(), samples.end(), padded.begin() + margin);

    std::vector<Vorn16s> result((samples.size() * static_cast<std::size_t>(to) - 1) / static_cast<std::size_t>(from) +
                                1);
    Vorn64f time = 0.0;
    int made = 0;
    DIGITS_CALL(vornsResamplePolyphaseFixed_16s, filter.get(), padded.data() + margin, length, result.data(), 1.0f,
                &time, &made);
    result.resize(static_cast<std::size_t>(made));
    return result;
}

}  // namespace digits
