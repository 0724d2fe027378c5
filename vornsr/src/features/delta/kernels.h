// First and second differences of feature vectors along time, block by block of an utterance.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>

#include "loops/stripes.h"
#include "vornsr/features.h"

namespace vorn {

// Factors shared by all columns.
template <class T>
struct SharedFactors {
    T val[2];  // of the delta, of the acceleration

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

// One operator with the rows that it remembers: each new row gives the result of the row lag before it. The loops must
// be unrolled before anything else, or the rows live on the stack.
template <int lag, class Value, class Scale>
class DeltaStage {
public:
    VORN_INLINE explicit DeltaStage(Scale scale) : scale_(scale) {}

    // As if the row x had always stood before the first one.
    VORN_INLINE void repeat(Value x) {
#pragma GCC unroll 8
        for (int i = 0; i < 2 * lag; ++i) past_[i] = x;
    }
    // Continues behind the 2 lag rows that end before the given one.
    template <class Stripe, class T>
    VORN_INLINE void resume(const Stripe& stripe, const T* behind, std::ptrdiff_t step) {
#pragma GCC unroll 8
        for (int i = 0; i < 2 * lag; ++i) past_[i] = stripe.load(behind + (i - 2 * lag) * step);
    }
    VORN_INLINE Value newest() const { return past_[2 * lag - 1]; }
    VORN_INLINE Value push(Value x) {
        const Value result = scale_(differences(past_, x));
#pragma GCC unroll 8
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

    const auto deltaScale = factors.template scale<0>(stripe, column);
    const auto accelerationScale = factors.template scale<1>(stripe, column);
    DeltaStage<lag, Value, decltype(deltaScale)> frames(deltaScale);
    DeltaStage<lag, Value, decltype(accelerationScale)> deltas(accelerationScale);

    const T* in = block.src + column;
    T* frame = block.dst + column + (first ? 0 : Form::lookback * step);  // where the next frame goes
    const auto deltaAt = [&] { return frame - lag * step + block.width; };
    const auto accelerationAt = [&] { return frame - 2 * lag * step + 2 * block.width; };
    const auto takeFrame = [&] {
        const Value x = stripe.load(in);
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
        frames.repeat(stripe.load(in));
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

// Stripe by stripe. The same frames in any blocks give the same rows, so a long call runs as calls that fit the
// first-level cache.
template <class Form, class T, class Factors>
void deltaStripes(DeltaStream<T> call, const Factors& factors) {
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

// The rows t - lag to t + lag, in the order of time.
template <class T, int count>
struct RowsAround {
    const T* row[count];
};
template <class T, int lag, class RowAt>
VORN_INLINE RowsAround<T, 2 * lag + 1> rowsFrom(RowAt rowAt) {
    return [&]<int... i>(std::integer_sequence<int, i...>) __attribute__((always_inline))->RowsAround<T, 2 * lag + 1> {
        return {{rowAt(i)...}};
    }
    (std::make_integer_sequence<int, 2 * lag + 1>());
}

// One row of differences, times the factor; copies: the newest row also goes to copy.
template <bool copies, class T, int count, class Scaling>
VORN_INLINE void differencesRow(RowsAround<T, count> rows, std::ptrdiff_t width, T* result, T* copy, Scaling scaling) {
    overVectors<T>(width, [=](auto stripe, std::ptrdiff_t column) {
        [&]<int... i>(std::integer_sequence<int, i...>) __attribute__((always_inline)) {
            using Value = typename decltype(stripe)::Value;
            const Value past[count - 1] = {stripe.load(rows.row[i] + column)...};
            const Value newest = stripe.load(rows.row[count - 1] + column);
            if constexpr (copies) stripe.store(copy + column, newest);
            stripe.store(result + column, scaling(stripe, column)(differences(past, newest)));
        }
        (std::make_integer_sequence<int, count - 1>());
    });
}

// Row by row: memory is read and written in its order. Rows are counted in dst; beyond the ends of the utterance the
// rows at the ends stand for themselves.
template <class Form, class T, class Factors>
void deltaRows(const DeltaStream<T>& call, const Factors& factors) {
    constexpr int lag = Form::lag;
    const std::ptrdiff_t begin = call.mode & vornDeltaFirst ? 0 : Form::lookback, end = begin + call.height;
    const std::ptrdiff_t pending = call.mode & vornDeltaLast ? (Form::accelerates ? 2 * lag : lag) : 0;

    const auto existing = [=](std::ptrdiff_t t) { return std::clamp<std::ptrdiff_t>(t, 0, end - 1); };
    // The frames of this call are read where they come from, not where they have just been stored.
    const auto framesAround = [=](std::ptrdiff_t t) {
        if (t - lag >= begin && t + lag < end) {
            const T* first = call.src + (t - lag - begin) * call.width;
            return rowsFrom<T, lag>([=](int i) { return first + i * call.width; });
        }
        return rowsFrom<T, lag>([=](int i) {
            const std::ptrdiff_t at = existing(t + i - lag);
            return at < begin ? call.dst + at * call.step : call.src + (at - begin) * call.width;
        });
    };
    const auto deltasAround = [=, deltas = call.dst + call.width](std::ptrdiff_t t) {
        if (t >= lag && t + lag < end) {
            const T* first = deltas + (t - lag) * call.step;
            return rowsFrom<T, lag>([=](int i) { return first + i * call.step; });
        }
        return rowsFrom<T, lag>([=](int i) { return deltas + existing(t + i - lag) * call.step; });
    };
    const auto deltaScaling = [factors](auto stripe, auto column) { return factors.template scale<0>(stripe, column); };
    const auto accelerationScaling = [factors](auto stripe, auto column) {
        return factors.template scale<1>(stripe, column);
    };

    for (std::ptrdiff_t newest = begin; newest < end + pending; ++newest) {
        const std::ptrdiff_t t = newest - lag;
        if (t < 0) {
            std::copy_n(call.src + newest * call.width, call.width, call.dst + newest * call.step);
        } else if (t < end) {
            T* delta = call.dst + t * call.step + call.width;
            if (newest < end) {
                differencesRow<true>(framesAround(t), call.width, delta, call.dst + newest * call.step, deltaScaling);
            } else {
                differencesRow<false>(framesAround(t), call.width, delta, delta, deltaScaling);
            }
        }
        if (Form::accelerates && t >= lag) {
            T* acceleration = call.dst + (t - lag) * call.step + 2 * call.width;
            differencesRow<false>(deltasAround(t - lag), call.width, acceleration, acceleration, accelerationScaling);
        }
    }
}

template <class Form, class T, class Factors>
void deltaStream(const DeltaStream<T>& call, const Factors& factors) {
    // Such rows stay in registers. The accelerations of narrow ones would also wait for deltas on their way to the
    // cache.
    constexpr std::ptrdiff_t lanes = Wide<T>::lanes;
    constexpr std::ptrdiff_t narrow = Form::accelerates ? std::max<std::ptrdiff_t>(16, 2 * lanes) : lanes;
    if (call.width <= narrow) {
        deltaStripes<Form>(call, factors);
    } else {
        deltaRows<Form>(call, factors);
    }
}

}  // namespace vorn
