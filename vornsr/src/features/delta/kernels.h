// First and second differences of feature vectors along time, block by block of an utterance.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>

#include "features/delta/arithmetic.h"
#include "loops/stripes.h"
#include "vornsr/features.h"

namespace vorn::delta {

// One operator with the rows that it remembers: each new row gives the result of the row lag before it. The loops must
// be unrolled before anything else, or the rows live on the stack.
template <int lag, class Value, class Differences>
class Stage {
public:
    VORN_INLINE explicit Stage(Differences differences) : differences_(differences) {}

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
    VORN_INLINE auto push(Value x) {
        const auto result = differences_(past_, x);
#pragma GCC unroll 8
        for (int i = 0; i + 1 < 2 * lag; ++i) past_[i] = past_[i + 1];
        past_[2 * lag - 1] = x;
        return result;
    }

private:
    Value past_[2 * lag];
    Differences differences_;
};

// What the streaming forms have in common: a call with vornDeltaFirst begins at row 0 of dst, any other one finds the
// last lookback rows there. The newest row stands complete lag rows later, its acceleration twice as many.
template <int lag_, bool accelerates_>
struct Form {
    static constexpr int lag = lag_;
    static constexpr bool accelerates = accelerates_;
    static constexpr int lookback = (accelerates ? 3 : 2) * lag;
    static constexpr int columns = accelerates ? 3 : 2;  // of the output, in widths of a frame
};

template <class T>
struct Block {
    const T* src;
    std::ptrdiff_t width;
    T* dst;
    std::ptrdiff_t step;
    std::ptrdiff_t height;
    int mode;
};

// One block, one stripe of columns: the rows that the operators look at stay in registers.
template <class Form, class T, class Rule, class Stripe>
VORN_INLINE void blockStripe(const Block<T>& block, const Rule& rule, Stripe stripe, std::ptrdiff_t column) {
    using Value = typename Stripe::Value;
    constexpr int lag = Form::lag;
    const std::ptrdiff_t step = block.step;
    const bool first = block.mode & vornDeltaFirst;
    const bool last = block.mode & vornDeltaLast;

    const auto stored = rule.frame(stripe, column);
    const auto frameDifferences = rule.template differences<lag, 1>(stripe, column);
    const auto deltaDifferences = rule.template differences < lag, Form::accelerates ? 2 : 1 > (stripe, column);
    Stage<lag, Value, decltype(frameDifferences)> frames(frameDifferences);
    Stage<lag, Value, decltype(deltaDifferences)> deltas(deltaDifferences);

    const T* in = block.src + column;
    T* frame = block.dst + column + (first ? 0 : Form::lookback * step);  // where the next frame goes
    const auto deltaAt = [&] { return frame - lag * step + block.width; };
    const auto accelerationAt = [&] { return frame - 2 * lag * step + 2 * block.width; };
    const auto takeFrame = [&] {
        const Value x = stored(stripe.load(in));
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
        frames.repeat(stored(stripe.load(in)));
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
template <class Form, class T, class Rule>
void streamByStripes(Block<T> call, const Rule& rule) {
    constexpr std::ptrdiff_t blockBytes = 24 << 10;
    const std::ptrdiff_t blockRows =
        std::max<std::ptrdiff_t>(16, blockBytes / static_cast<std::ptrdiff_t>(sizeof(T)) / call.step);
    std::ptrdiff_t left = call.height;
    do {
        Block<T> block = call;
        block.height = std::min(left, blockRows);
        left -= block.height;
        if (left > 0) block.mode &= ~vornDeltaLast;
        overVectors<T>(call.width,
                       [&](auto stripe, std::ptrdiff_t column) { blockStripe<Form>(block, rule, stripe, column); });
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

// What the newest row of a window is: a frame as it comes, which may still have to be stored.
enum class Newest { stored, incoming, incomingToStore };

// One row of results; an incoming frame goes to frame as it is stored.
template <int result, Newest kind, class T, int count, class Rule>
VORN_INLINE void differencesRow(RowsAround<T, count> rows, std::ptrdiff_t width, T* to, T* frame, const Rule& rule) {
    overVectors<T>(
        width, [=](auto stripe, std::ptrdiff_t column) __attribute__((always_inline)) {
            [&]<int... i>(std::integer_sequence<int, i...>) __attribute__((always_inline)) {
                using Value = typename decltype(stripe)::Value;
                const Value past[count - 1] = {stripe.load(rows.row[i] + column)...};
                Value newest = stripe.load(rows.row[count - 1] + column);
                if constexpr (kind != Newest::stored) newest = rule.frame(stripe, column)(newest);
                if constexpr (kind == Newest::incomingToStore) stripe.store(frame + column, newest);
                stripe.store(to + column, rule.template differences<count / 2, result>(stripe, column)(past, newest));
            }
            (std::make_integer_sequence<int, count - 1>());
        });
}

// A frame as it is stored.
template <class T, class Rule>
VORN_INLINE void frameRow(const T* in, std::ptrdiff_t width, T* to, const Rule& rule) {
    overVectors<T>(
        width, [=](auto stripe, std::ptrdiff_t column) __attribute__((always_inline)) {
            stripe.store(to + column, rule.frame(stripe, column)(stripe.load(in + column)));
        });
}

// Row by row: memory is read and written in its order. Rows are counted in dst; beyond the ends of the utterance the
// rows at the ends stand for themselves.
template <class Form, class T, class Rule>
void streamByRows(const Block<T>& call, const Rule& rule) {
    constexpr int lag = Form::lag;
    const std::ptrdiff_t begin = call.mode & vornDeltaFirst ? 0 : Form::lookback, end = begin + call.height;
    const std::ptrdiff_t pending = call.mode & vornDeltaLast ? (Form::accelerates ? 2 * lag : lag) : 0;
    // In the first-level cache a frame is stored while its values are at hand. What does not fit there is written
    // faster one row after the other. Integers have enough to do in between.
    constexpr std::ptrdiff_t firstLevelBytes = 48 << 10;
    const bool atOnce = sizeof(T) < 4 || call.height * (call.width + call.step) <=
                                             firstLevelBytes / static_cast<std::ptrdiff_t>(sizeof(T));

    const auto existing = [=](std::ptrdiff_t t) { return std::clamp<std::ptrdiff_t>(t, 0, end - 1); };
    const auto storedAround = [=](const T* columns, std::ptrdiff_t t) {
        if (t >= lag && t + lag < end) {
            const T* first = columns + (t - lag) * call.step;
            return rowsFrom<T, lag>([=](int i) { return first + i * call.step; });
        }
        return rowsFrom<T, lag>([=](int i) { return columns + existing(t + i - lag) * call.step; });
    };
    // The frames of this call are read where they come from, not where they have just been stored; if they are stored
    // as they come.
    const auto framesAround = [=](std::ptrdiff_t t) {
        if constexpr (Rule::scalesFrames) return storedAround(call.dst, t);
        if (t - lag >= begin && t + lag < end) {
            const T* first = call.src + (t - lag - begin) * call.width;
            return rowsFrom<T, lag>([=](int i) { return first + i * call.width; });
        }
        return rowsFrom<T, lag>([=](int i) {
            const std::ptrdiff_t at = existing(t + i - lag);
            return at < begin ? call.dst + at * call.step : call.src + (at - begin) * call.width;
        });
    };

    for (std::ptrdiff_t newest = begin; newest < end + pending; ++newest) {
        const std::ptrdiff_t t = newest - lag;
        const T* in = call.src + (newest - begin) * call.width;
        T* frame = call.dst + newest * call.step;
        T* delta = call.dst + t * call.step + call.width;
        if (newest < end && (t < 0 || !atOnce)) frameRow(in, call.width, frame, rule);
        if (t >= 0 && t < end) {
            auto rows = framesAround(t);
            if (newest >= end) {
                differencesRow<1, Newest::stored>(rows, call.width, delta, frame, rule);
            } else {
                rows.row[2 * lag] = in;
                if (atOnce) {
                    differencesRow<1, Newest::incomingToStore>(rows, call.width, delta, frame, rule);
                } else {
                    differencesRow<1, Newest::incoming>(rows, call.width, delta, frame, rule);
                }
            }
        }
        if constexpr (Form::accelerates) {
            if (t < lag) continue;
            T* acceleration = call.dst + (t - lag) * call.step + 2 * call.width;
            differencesRow<2, Newest::stored>(storedAround(call.dst + call.width, t - lag), call.width, acceleration,
                                              acceleration, rule);
        }
    }
}

template <class Form, class T, class Rule>
void stream(const Block<T>& call, const Rule& rule) {
    // Such rows stay in registers. The accelerations of narrow ones would also wait for deltas on their way to the
    // cache.
    constexpr std::ptrdiff_t lanes = Wide<T>::lanes;
    constexpr std::ptrdiff_t narrow = Form::accelerates ? std::max<std::ptrdiff_t>(16, 2 * lanes) : lanes;
    if (call.width <= narrow) {
        streamByStripes<Form>(call, rule);
    } else {
        streamByRows<Form>(call, rule);
    }
}

}  // namespace vorn::delta
