// Matrices to decompose, and the eight functions called alike.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/singular_values.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr/linalg.h"

namespace test {

using model::Matrix;

struct Shape {
    int height, width, step;
};

inline Matrix uniformMatrix(Shape shape, std::uint64_t seed, double low = -1.0, double high = 1.0) {
    Matrix a(shape.height, shape.step);
    a.elements = Random(seed).doubles(a.elements.size(), low, high);
    return a;
}
inline Matrix productOf(const Matrix& a, const Matrix& b, int height, int inner, int width) {
    Matrix c(height, width);
    for (int i = 0; i < height; ++i) {
        for (int j = 0; j < width; ++j) {
            for (int k = 0; k < inner; ++k) c(i, j) += a(i, k) * b(k, j);
        }
    }
    return c;
}
inline Matrix matrixOfRank(int rank, int height, int width, std::uint64_t seed) {
    return productOf(uniformMatrix({height, rank, rank}, seed), uniformMatrix({rank, width, width}, seed + 1), height,
                     rank, width);
}
inline Matrix hilbert(int height, int width) {
    Matrix a(height, width);
    for (int i = 0; i < height; ++i) {
        for (int j = 0; j < width; ++j) a(i, j) = 1.0 / (i + j + 1);
    }
    return a;
}
// What log spectra of speech look like: a slow common level, a smooth tilt and a little noise, so that few directions
// carry nearly all.
inline Matrix frames(int height, int width) {
    Matrix a(height, width);
    Random random(39);
    for (int t = 0; t < height; ++t) {
        const double level = 12.0 + 5.0 * std::sin(0.11 * t) + 2.0 * std::sin(0.031 * t * t / height);
        for (int j = 0; j < width; ++j)
            a(t, j) = level - 0.15 * j + 1.5 * std::sin(0.3 * j + 0.07 * t) + random.uniform(-0.25, 0.25);
    }
    return a;
}
inline Matrix scaled(Matrix a, double by) {
    for (double& x : a.elements) x *= by;
    return a;
}

enum class Layout { Block, List };
struct Form {
    Layout layout;
    bool inPlace, sorts;
    std::string name() const {
        return std::string("vornsSVD") + (sorts ? "Sort" : "") + "_64f_D2" + (layout == Layout::List ? "L" : "") +
               (inPlace ? "_I" : "");
    }
};
inline constexpr Form forms[] = {{Layout::Block, false, false}, {Layout::Block, true, false},
                                 {Layout::List, false, false},  {Layout::List, true, false},
                                 {Layout::Block, false, true},  {Layout::Block, true, true},
                                 {Layout::List, false, true},   {Layout::List, true, true}};
inline constexpr Form blockForm = {Layout::Block, true, false}, sortingForm = {Layout::Block, true, true};

// Buffers of a call that end at unmapped pages: rows of their own for the lists, and the last row without padding where
// the functions leave that alone.
class Decomposition {
public:
    Decomposition(Form form, const Matrix& a, int height, int width)
        : form_(form), height_(height), width_(width), step_(a.step), w(static_cast<std::size_t>(width)) {
        const bool isList = form.layout == Layout::List;
        const std::size_t padded = static_cast<std::size_t>(height) * step_;
        const std::size_t heldByU = isList ? 0 : form.inPlace ? padded - (step_ - width_) : padded;
        uBlock_ = std::make_unique<Guarded<double>>(heldByU);
        vBlock_ = std::make_unique<Guarded<double>>(isList ? 0 : static_cast<std::size_t>(width - 1) * step_ + width);
        sourceBlock_ = std::make_unique<Guarded<double>>(isList || form.inPlace ? 0 : padded);
        if (isList) {
            for (int r = 0; r < height; ++r) {
                uRows_.emplace_back(width);
                sourceRows_.emplace_back(width);
            }
            for (int r = 0; r < width; ++r) vRows_.emplace_back(width);
            for (auto& row : uRows_) u_.push_back(row.data());
            for (auto& row : vRows_) v_.push_back(row.data());
            for (auto& row : sourceRows_) source_.push_back(row.data());
            for (int r = 0; r < height; ++r) {
                double* to = form.inPlace ? u_[r] : sourceRows_[r].data();
                for (int c = 0; c < width; ++c) to[c] = a(r, c);
            }
        } else {
            double* to = form.inPlace ? uBlock_->data() : sourceBlock_->data();
            std::copy_n(a.elements.data(), form.inPlace ? heldByU : padded, to);
        }
    }

    VornStatus run(int nIter = 30) {
        const auto& f = form_;
        if (f.layout == Layout::List) {
            if (f.inPlace) {
                return (f.sorts ? vornsSVDSort_64f_D2L_I : vornsSVD_64f_D2L_I)(u_.data(), height_, w, v_.data(), width_,
                                                                               nIter);
            }
            return (f.sorts ? vornsSVDSort_64f_D2L : vornsSVD_64f_D2L)(source_.data(), u_.data(), height_, w, v_.data(),
                                                                       width_, nIter);
        }
        if (f.inPlace) {
            return (f.sorts ? vornsSVDSort_64f_D2_I : vornsSVD_64f_D2_I)(*uBlock_, height_, w, *vBlock_, width_, step_,
                                                                         nIter);
        }
        return (f.sorts ? vornsSVDSort_64f_D2 : vornsSVD_64f_D2)(*sourceBlock_, *uBlock_, height_, w, *vBlock_, width_,
                                                                 step_, nIter);
    }

    double u(int row, int column) const {
        return form_.layout == Layout::List ? u_[row][column] : (*uBlock_)[row * std::size_t(step_) + column];
    }
    double v(int row, int column) const {
        return form_.layout == Layout::List ? v_[row][column] : (*vBlock_)[row * std::size_t(step_) + column];
    }
    int height() const { return height_; }
    int width() const { return width_; }
    bool surroundingsUntouched() const {
        bool untouched = w.surroundingsUntouched() && uBlock_->surroundingsUntouched() &&
                         vBlock_->surroundingsUntouched() && sourceBlock_->surroundingsUntouched();
        for (const auto* rows : {&uRows_, &vRows_, &sourceRows_}) {
            for (const auto& row : *rows) untouched = untouched && row.surroundingsUntouched();
        }
        return untouched;
    }
    bool resultsUntouched() const {
        bool untouched = w.untouched() && vBlock_->untouched() && (form_.inPlace || uBlock_->untouched());
        for (const auto& row : vRows_) untouched = untouched && row.untouched();
        for (const auto& row : uRows_) untouched = untouched && (form_.inPlace || row.untouched());
        return untouched;
    }
    const Guarded<double>& uBlock() const { return *uBlock_; }
    const Guarded<double>& vBlock() const { return *vBlock_; }
    const Guarded<double>& sourceBlock() const { return *sourceBlock_; }

private:
    Form form_;
    int height_, width_, step_;
    std::unique_ptr<Guarded<double>> uBlock_, vBlock_, sourceBlock_;
    std::vector<Guarded<double>> uRows_, vRows_, sourceRows_;
    std::vector<double*> u_, v_, source_;

public:
    Guarded<double> w;
};

}  // namespace test
