// Waveform processing: the stretch behind each pitch pulse of a frame is raised, the rest lowered.
#include <algorithm>
#include <bit>
#include <cstdint>

#include "frame/checks.h"
#include "frame/wrap.h"
#include "simd/fold.h"
#include "simd/simd.h"
#include "vornsr/aurora.h"
#include "vornsr/signal.h"

using namespace vorn;

namespace vorn::waveform {
namespace {

constexpr int frameLen = 200;
// How far the next peak lies from one: pitch periods of 25 to 79 samples.
constexpr int closest = 25, farthest = 79;
// Half of the nine samples over which energies are summed, and how early a raised stretch begins.
constexpr int reach = 4;

// Energies with their ends repeated, and room for whole registers behind them.
template <class Energy>
struct Energies {
    static constexpr int slack = Wide<Energy>::lanes;
    alignas(64) Energy padded[reach + frameLen + reach + slack];

    Energy* sample() { return padded + reach; }
    void repeatEnds() {
        std::fill_n(padded, reach, sample()[0]);
        std::fill_n(sample() + frameLen, reach + slack, sample()[frameLen - 1]);
    }
};
// Their sums, with that room.
template <class Energy>
struct Sums {
    static constexpr int slack = Wide<Energy>::lanes;
    alignas(64) Energy at[frameLen + slack];

    Sums() { std::fill_n(at + frameLen, slack, Energy(0)); }
};

// What differs between the element forms. energies(): the energy of each sample, |x[n] x[n] - x[n-1] x[n+1]| (Kaiser
// 1990), with the ends of x repeated. sums(): over nine energies around each.

// In single precision. The sums are one running sum, which rounds as it goes.
struct Singles {
    using Sample = Vorn32f;
    using Energy = Vorn32f;
    static constexpr Sample background = 0.8f, raised = 1.2f, edge = 1.0f;
    // 0.8 of the spacing: a product of singles, truncated, gives the same integers in every rounding mode.
    static int raisedLen(int spacing) { return spacing * 4 / 5; }

    static void energies(const Sample* x, Energies<Energy>& energies) {
        using V = f32xN;
        Energy* e = energies.sample();
        constexpr int last = frameLen - 1;
        e[0] = absolute(x[0] * x[0] - x[0] * x[1]);
        // The last register ends at the last sample that has two neighbours.
        for (int n = 1; n < last; n += V::lanes) {
            const int i = std::min(n, last - V::lanes);
            const V middle = load<V>(x + i);
            store(e + i, absOf(middle * middle - load<V>(x + i - 1) * load<V>(x + i + 1)));
        }
        e[last] = absolute(x[last] * x[last] - x[last - 1] * x[last]);
        energies.repeatEnds();
    }
    static void sums(const Energies<Energy>& energies, Energy* s) {
        const Energy* e = energies.padded;
        Energy sum = 5 * e[reach];
        for (int n = 1; n <= reach; ++n) sum += e[reach + n];
        s[0] = sum;
        for (int n = 1; n < frameLen; ++n) {
            sum = sum - e[n - 1] + e[n + 2 * reach];
            s[n] = sum;
        }
    }
    static void weigh(const Sample* weight, const Sample* src, Sample* dst) {
        vornsMul_32f(weight, src, dst, frameLen);
    }

private:
    static Energy absolute(Energy x) { return __builtin_fabsf(x); }
};

// Energies are exact: the difference is -2^30 to 2^31 - 2^15. The sums wrap, so that any order of additions gives those
// of a running sum. Weights have five fraction bits; they are not those of singles, rounded.
struct Shorts {
    using Sample = Vorn16s;
    using Energy = Vorn32s;
    static constexpr Sample background = 27, raised = 38, edge = 32;
    static int raisedLen(int spacing) { return spacing * 27 >> 5; }

    static void energies(const Sample* x, Energies<Energy>& energies) {
        using V = i16x8;
        Energy* e = energies.sample();
        constexpr int last = frameLen - 1;
        e[0] = energy(x[0], x[0], x[1]);
        for (int n = 1; n < last; n += V::lanes) {
            const int i = std::min(n, last - V::lanes);
            const V before = load<V>(x + i - 1), middle = load<V>(x + i), behind = load<V>(x + i + 1);
            store(e + i, absSat(productsLow(middle, middle) - productsLow(before, behind)));
            store(e + i + V::lanes / 2, absSat(productsHigh(middle, middle) - productsHigh(before, behind)));
        }
        e[last] = energy(x[last - 1], x[last], x[last]);
        energies.repeatEnds();
    }
    static void sums(const Energies<Energy>& energies, Energy* s) {
        using V = i32xN;
        for (int n = 0; n < frameLen; n += V::lanes) {
            const Energy* e = energies.padded + n;
            V sum = load<V>(e);
            for (int k = 1; k <= 2 * reach; ++k) sum = sum + load<V>(e + k);
            store(s + n, sum);
        }
    }
    static void weigh(const Sample* weight, const Sample* src, Sample* dst) {
        vornsMul_16s_Sfs(weight, src, dst, frameLen, 5);
    }

private:
    static Energy energy(int before, int middle, int behind) {
        const int difference = middle * middle - before * behind;
        return difference < 0 ? -difference : difference;
    }
};

// The first of the largest, as a scan finds it that keeps its first element until a strictly larger one comes: what is
// not a number is passed over, and stays if it stands in front. The sums may be read up to a register behind their
// stretch.
template <class T>
int firstLargest(const T* s, int len) {
    using V = Wide<T>;
    T largest = s[0];
    if (len >= V::lanes) {
        V best = splat<V>(largest);
        for (int n = 0; n < len; n += V::lanes) best = maxOf(load<V>(s + std::min(n, len - V::lanes)), best);
        largest = folded(best, [](auto a, auto b) { return maxOf(a, b); });
    } else {
        for (int n = 1; n < len; ++n) largest = s[n] > largest ? s[n] : largest;
    }
    for (int n = 0; n < len; n += V::lanes) {
        const unsigned equal = laneBits(load<V>(s + n) == splat<V>(largest));
        if (equal != 0) return n + std::countr_zero(equal);
    }
    return 0;
}

// Peaks in rising order, with the main one, the largest of all, at[main].
class Peaks {
public:
    template <class Energy>
    explicit Peaks(const Energy* s) {
        int peak = at_[first_] = at_[last_] = firstLargest(s, frameLen);
        while (peak < frameLen - closest) {
            const int from = peak + closest;
            peak = from + firstLargest(s + from, std::min(peak + farthest, frameLen - 1) - from + 1);
            at_[++last_] = peak;
        }
        peak = at_[first_];
        while (peak > closest) {
            const int from = std::max(peak - farthest, 0);
            peak = from + firstLargest(s + from, peak - closest - from + 1);
            at_[--first_] = peak;
        }
    }
    int count() const { return last_ - first_ + 1; }  // two at least: no peak has no room on either side
    int operator[](int i) const { return at_[first_ + i]; }

private:
    static constexpr int mostOnASide = (frameLen - 1) / closest;
    int at_[2 * mostOnASide + 1];
    int first_ = mostOnASide, last_ = mostOnASide;
};

// Between two peaks so many samples are raised; behind the last peak as many as behind the one before it. No raised
// stretch is empty or touches the next one, since peaks are at least 25 apart. Where it begins and where it ends two
// samples keep their level.
template <class Form>
void makeWeights(const Peaks& peaks, typename Form::Sample* w) {
    std::fill_n(w, frameLen, Form::background);
    for (int i = 0; i < peaks.count(); ++i) {
        const bool last = i + 1 == peaks.count();
        const int spacing = last ? peaks[i] - peaks[i - 1] : peaks[i + 1] - peaks[i];
        const int first = peaks[i] - reach, begin = std::max(first, 0);
        const int end = std::min(first + Form::raisedLen(spacing), frameLen);
        std::fill(w + begin, w + end, Form::raised);
        if (begin > 0) w[begin - 1] = w[begin] = Form::edge;
        if (end < frameLen) w[end - 1] = w[end] = Form::edge;
    }
}

template <class Form>
void process(const typename Form::Sample* src, typename Form::Sample* dst) {
    using Energy = typename Form::Energy;
    Energies<Energy> energies;
    Form::energies(src, energies);
    Sums<Energy> sums;
    Form::sums(energies, sums.at);
    alignas(64) typename Form::Sample weight[frameLen];
    makeWeights<Form>(Peaks(sums.at), weight);
    Form::weigh(weight, src, dst);
}

}  // namespace
}  // namespace vorn::waveform

VornStatus vornsWaveProcessing_Aurora_32f(const Vorn32f* src, Vorn32f* dst) {
    VORN_CHECK(notNull(src, dst));
    waveform::process<waveform::Singles>(src, dst);
    return vornStsNoErr;
}

VornStatus vornsWaveProcessing_Aurora_16s(const Vorn16s* src, Vorn16s* dst) {
    VORN_CHECK(notNull(src, dst));
    waveform::process<waveform::Shorts>(src, dst);
    return vornStsNoErr;
}
