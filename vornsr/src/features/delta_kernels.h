// First and second differences of feature vectors along time, block by block of an utterance.
#pragma once

#include <algorithm>
#include <cstddef>

#include "stripes.h"
#include "vornsr/features.h"

namespace vorn {

// Factors shared by all columns. Frames are stored as they come.
template <class T>
struct SharedFactors {
    T val[2];  // of the delta, of the acceleration

    template <class Stripe>
    VORN_INLINE auto frame(const Stripe&, std::ptrdiff_t) const {
        return [](auto x) { return x; };
    }
    template <int result, class Stripe>
    VORN_INLINE auto scale(const Stripe& stripe, std::ptrdiff_t) const {
        return [factor = stripe.all(val[result])](auto sum) { return sum * factor; };
    }
};

// The difference operator over the rows t - lag to t + lag: past holds the rows t - lag to t + lag - 1.
template <class Value>
VORN_INLINE Value differences(const Value (&past)[2], Value newest) {
    return newest - past[0];
}
template <class Value>
VORN_INLINE Value differences(const Value (&past)[4], Value newest) {
    const Value near = past[3] - past[1];
    const Value far = newest - past[0];
    return near + far + far;
}

// One operator with the rows that it remembers: each new row gives the result of the row lag before it.
template <int lag, class Value, class Scale>
class DeltaStage {
public:
    VORN_INLINE explicit DeltaStage(Scale scale) : scale_(scale) {}

    // As if the row x had always stood before the first one.
    VORN_INLINE void repeat(Value x) {
        for (Value& row : past_) row = x;
    }
    // Continues behind the 2 lag rows that end before the given one.
    template <class Stripe, class T>
    VORN_INLINE void resume(const Stripe& stripe, const T* behind, std::ptrdiff_t step) {
        for (int i = 0; i < 2 * lag; ++i) past_[i] = stripe.load(behind + (i - 2 * lag) * step);
    }
    VORN_INLINE Value newest() const { return past_[2 * lag - 1]; }
    VORN_INLINE Value push(Value x) {
        const Value result = scale_(differences(past_, x));
        for (int i = 0; i + 1 < 2 * lag; ++i) past_[i] = past_[i + 1];
        past_[2 * lag - 1] = x;
        return result;
    }

private:
    Value past_[2 * lag];
    Scale scale_;
};

// What the streaming forms have in common: a call with vornDeltaFirst begins at row 0 of dst, any other one finds the
// last lookback rows there. The newest row stands complete lag rows later, its acceleration twice as many.
template <int lag_, bool accelerates_>
struct DeltaForm {
    static constexpr int lag = lag_;
    static constexpr bool accelerates = accelerates_;
    static constexpr int lookback = (accelerates ? 3 : 2) * lag;
    static constexpr int columns = accelerates ? 3 : 2;  // of the output, in widths of a frame
};

template <class T>
struct DeltaStream {
    const T* src;
    std::ptrdiff_t width;
    T* dst;
    std::ptrdiff_t step;
    std::ptrdiff_t height;
    int mode;
};

// One block, one stripe of columns: the rows that the operators look at stay in registers.
template <class Form, class T, class Factors, class Stripe>
VORN_INLINE void deltaStripe(const DeltaStream<T>& block, const Factors& factors, Stripe stripe,
                             std::ptrdiff_t column) {
    using Value = typename Stripe::Value;
    constexpr int lag = Form::lag;
    const std::ptrdiff_t step = block.step;
    const bool first = block.mode & vornDeltaFirst;
    const bool last = block.mode & vornDeltaLast;

    const auto frameOf = factors.frame(stripe, column);
    const auto deltaScale = factors.template scale<0>(stripe, column);
    const auto accelerationScale = factors.template scale<1>(stripe, column);
    DeltaStage<lag, Value, decltype(deltaScale)> frames(deltaScale);
    DeltaStage<lag, Value, decltype(accelerationScale)> deltas(accelerationScale);

    const T* in = block.src + column;
    T* frame = block.dst + column + (first ? 0 : Form::lookback * step);  // where the next frame goes
    const auto deltaAt = [&] { return frame - lag * step + block.width; };
    const auto accelerationAt = [&] { return frame - 2 * lag * step + 2 * block.width; };
    const auto takeFrame = [&] {
        const Value x = frameOf(stripe.load(in));
        stripe.store(frame, x);
        in += block.width;
        return x;
    };
    const auto takeDelta = [&](Value x) {
        const Value delta = frames.push(x);
        stripe.store(deltaAt(), delta);
        return delta;
    };
    const auto finishRow = [&](Value x) {
        const Value delta = takeDelta(x);
        if constexpr (Form::accelerates) stripe.store(accelerationAt(), deltas.push(delta));
        frame += step;
    };

    std::ptrdiff_t rows = block.height;
    if (first) {
        frames.repeat(frameOf(stripe.load(in)));
        for (int i = 0; i < lag; ++i, --rows, frame += step) frames.push(takeFrame());
        if constexpr (Form::accelerates) {
            for (int i = 0; i < lag; ++i, --rows, frame += step) {
                const Value delta = takeDelta(takeFrame());
                if (i == 0) deltas.repeat(delta);
                deltas.push(delta);
            }
        }
    } else {
        frames.resume(stripe, frame, step);
        if constexpr (Form::accelerates) deltas.resume(stripe, deltaAt(), step);
    }
    for (; rows > 0; --rows) finishRow(takeFrame());
    if (last) {
        const Value lastFrame = frames.newest();
        for (int i = 0; i < lag; ++i) finishRow(lastFrame);
        if constexpr (Form::accelerates) {
            const Value lastDelta = deltas.newest();
            for (int i = 0; i < lag; ++i, frame += step) stripe.store(accelerationAt(), deltas.push(lastDelta));
        }
    }
}

// The same frames in any blocks give the same rows, so a long call runs as calls that fit the first-level cache.
template <class Form, class T, class Factors>
void deltaStream(DeltaStream<T> call, const Factors& factors) {
    constexpr std::ptrdiff_t blockBytes = 24 << 10;
    const std::ptrdiff_t blockRows =
        std::max<std::ptrdiff_t>(16, blockBytes / static_cast<std::ptrdiff_t>(sizeof(T)) / call.step);
    std::ptrdiff_t left = call.height;
    do {
        DeltaStream<T> block = call;
        block.height = std::min(left, blockRows);
        left -= block.height;
        if (left > 0) block.mode &= ~vornDeltaLast;
        overVectors<T>(call.width,
                       [&](auto stripe, std::ptrdiff_t column) { deltaStripe<Form>(block, factors, stripe, column); });
        call.src += block.height * call.width;
        call.dst += (call.mode & vornDeltaFirst ? block.height - Form::lookback : block.height) * call.step;
        call.mode &= ~vornDeltaFirst;
    } while (left > 0);
}

}  // namespace vorn
