// The centres of the clusters while they form, in the arithmetic of each element type: sums and means in singles, or in
// doubles that 16-bit words are made from.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "frame/memory.h"
#include "frame/wrap.h"
#include "move/convert_kernels.h"
#include "simd/simd.h"
#include "vornsr/signal.h"
#include "vq/codebook/context.h"
#include "vq/codebook/tolerance.h"

namespace vorn::vq {

// The training vectors.
template <class T>
struct Vectors {
    const T* base;
    int width;
    std::ptrdiff_t step;
    int count;
    const T* operator[](int v) const { return base + v * step; }
};

// The sum of the numbered vectors, in their order, each element for itself. The last registers may overlap those before
// them, and then sum the same elements once more.
template <class V>
void sumWithin(const Vectors<Vorn32f>& vectors, const int* numbers, int count, Vorn32f* sum) {
    const int last = vectors.width - V::lanes;
    for (int i = 0; i < vectors.width; i += 4 * V::lanes) {
        const int at0 = std::min(i, last), at1 = std::min(i + V::lanes, last), at2 = std::min(i + 2 * V::lanes, last),
                  at3 = std::min(i + 3 * V::lanes, last);
        V s0 = splat<V>(0.0f), s1 = s0, s2 = s0, s3 = s0;
        for (int m = 0; m < count; ++m) {
            const Vorn32f* vector = vectors[numbers[m]];
            s0 = s0 + load<V>(vector + at0);
            s1 = s1 + load<V>(vector + at1);
            s2 = s2 + load<V>(vector + at2);
            s3 = s3 + load<V>(vector + at3);
        }
        store(sum + at0, s0), store(sum + at1, s1), store(sum + at2, s2), store(sum + at3, s3);
    }
}

template <class Sum, class T>
inline void addVector(Sum* __restrict sums, const T* __restrict vector, int width) {
    for (int i = 0; i < width; ++i) sums[i] += vector[i];
}

// s hundredths of half the way to a vector.
template <class Real, class T>
inline void stepTowards(Real* centre, const T* vector, int width, int s) {
    const Real part = static_cast<Real>(s) / 100;
    for (int i = 0; i < width; ++i) {
        const Real u = (centre[i] + static_cast<Real>(vector[i])) / 2 - centre[i];
        centre[i] += u * part;
    }
}

template <class Real>
inline Vorn16s truncatedTo16(Real x) {
    return static_cast<Vorn16s>(std::clamp(x, static_cast<Real>(-32768), static_cast<Real>(32767)));
}

template <class T>
class Centres;

// Singles: a sum and its mean take the place of the word.
template <>
class Centres<Vorn32f> {
public:
    // Two clusters that are no farther apart came out alike; a vector that is nearer has been reached.
    static bool alike(Vorn32f distance) { return distance <= 1e-06; }
    static bool reached(Vorn32f distance) { return !(distance >= 1e-05); }
    // How far the members' distances from two centres must differ before the two count as apart.
    static Vorn64f leastSpread(int count) { return count * 1e-06; }

    Centres(VornCdbkState& book, int)
        : words_(static_cast<Vorn32f*>(book.words)), step_(book.rowStep), width_(book.vecLen) {}
    explicit operator bool() const { return true; }

    const Vorn32f* operator[](int j) const { return words_ + j * step_; }
    std::ptrdiff_t step() const { return step_; }

    void takeOnly(const Vorn32f* vector) {
        std::memcpy(row(0), vector, sizeof *vector * static_cast<std::size_t>(width_));
    }
    void sum(int j, const Vectors<Vorn32f>& vectors, const int* numbers, int count) {
        if (width_ >= f32xN::lanes) {
            sumWithin<f32xN>(vectors, numbers, count, row(j));
        } else if (width_ >= f32x4::lanes) {
            sumWithin<f32x4>(vectors, numbers, count, row(j));
        } else {
            std::fill_n(row(j), width_, 0.0f);
            for (int m = 0; m < count; ++m) addVector(row(j), vectors[numbers[m]], width_);
        }
    }
    void divide(int j, int count) { vornsDivC_32f_I(static_cast<Vorn32f>(count), row(j), width_); }
    void divideAll(int height) { divide(0, height); }
    void moveTowards(int j, const Vorn32f* vector, int s) { stepTowards(row(j), vector, width_, s); }

    // What of a distance from the first centre is rounding, in comparison with the largest element.
    Vorn64f nothing() const {
        const auto [min, max] = std::minmax_element(row(0), row(0) + width_);
        const auto e = static_cast<Vorn32f>(std::max(-*min * 1e-06, *max * 1e-06));
        return e * tolerance;
    }

private:
    Vorn32f* row(int j) const { return words_ + j * step_; }
    Vorn32f* words_;
    std::ptrdiff_t step_;
    int width_;
};

// 16-bit integers: a shadow row of doubles behind each word, and the word as singles for the distances.
template <>
class Centres<Vorn16s> {
public:
    static bool alike(Vorn32f distance) { return distance == 0; }
    static bool reached(Vorn32f distance) { return distance == 0; }
    static Vorn64f leastSpread(int) { return 0; }

    Centres(VornCdbkState& book, int clusters)
        : words_(static_cast<Vorn16s*>(book.words)),
          step_(book.rowStep),
          width_(book.vecLen),
          shadows_(static_cast<std::int64_t>(clusters) * width_),
          singles_(static_cast<std::int64_t>(clusters) * width_),
          rounded_(width_) {}
    explicit operator bool() const { return shadows_ && singles_ && rounded_; }

    const Vorn32f* operator[](int j) const { return single(j); }
    std::ptrdiff_t step() const { return width_; }

    void takeOnly(const Vorn16s* vector) {
        std::memcpy(words_, vector, sizeof *vector * static_cast<std::size_t>(width_));
        widen(0);
    }
    void sum(int j, const Vectors<Vorn16s>& vectors, const int* numbers, int count) {
        std::fill_n(shadow(j), width_, 0.0);
        for (int m = 0; m < count; ++m) addVector(shadow(j), vectors[numbers[m]], width_);
    }
    void divide(int j, int count) {
        vornsDivC_64f_I(count, shadow(j), width_);
        convert(shadow(j), rounded_.get(), width_, vornRndNear, 0);
        convert(rounded_.get(), word(j), width_);
        widen(j);
    }
    // The centre of all vectors is rounded twice, to singles first.
    void divideAll(int height) {
        vornsDivC_64f_I(height, shadow(0), width_);
        convert(shadow(0), single(0), width_);
        convert(single(0), word(0), width_, vornRndNear, 0);
        widen(0);
    }
    void moveTowards(int j, const Vorn16s* vector, int s) {
        stepTowards(shadow(j), vector, width_, s);
        for (int i = 0; i < width_; ++i) word(j)[i] = truncatedTo16(shadow(j)[i]);
        widen(j);
    }

    Vorn64f nothing() const { return -1; }

private:
    Vorn16s* word(int j) const { return words_ + j * step_; }
    Vorn64f* shadow(int j) const { return shadows_.get() + j * std::ptrdiff_t{width_}; }
    Vorn32f* single(int j) const { return singles_.get() + j * std::ptrdiff_t{width_}; }
    void widen(int j) { convert(word(j), single(j), width_); }

    Vorn16s* words_;
    std::ptrdiff_t step_;
    int width_;
    Scratch<Vorn64f> shadows_;
    Scratch<Vorn32f> singles_;
    Scratch<Vorn32s> rounded_;
};

}  // namespace vorn::vq
