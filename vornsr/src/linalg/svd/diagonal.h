// The implicit-shift QR iteration that turns a bidiagonal matrix into a diagonal one (Golub and Reinsch, 1970).
#pragma once

#include <cmath>
#include <cstddef>

#include "linalg/svd/columns.h"
#include "linalg/svd/rotations.h"
#include "vornsr/types.h"

namespace vorn::svd {

// sqrt(a^2 + b^2), scaled where the squares would overflow or vanish.
VORN_INLINE Vorn64f hypotenuse(Vorn64f a, Vorn64f b) {
    constexpr Vorn64f big = 0x1p510, small = 0x1p-510;
    const Vorn64f p = std::fabs(a), q = std::fabs(b), larger = p > q ? p : q;
    const auto scaled = [=](Vorn64f by, Vorn64f back) {
        const Vorn64f x = p * by, y = q * by;
        return back * squareRoot(x * x + y * y);
    };
    if (larger >= big) return scaled(small, big);
    if (larger > small) return squareRoot(p * p + q * q);
    return scaled(big, small);
}

class Diagonalisation {
public:
    // w and e as the reduction left them, norm the largest |w[i]| + |e[i]|.
    Diagonalisation(Matrix u, std::ptrdiff_t m, Vorn64f* w, Matrix v, std::ptrdiff_t n, Vorn64f* e, Vorn64f norm,
                    const Rotations& rotations)
        : u_(u), v_(v), m_(m), n_(n), w_(w), e_(e), norm_(norm), rotations_(rotations) {}

    // At most nIter - 1 sweeps a value. In any case U and V have seen all rotations at the end.
    VornStatus run(int nIter) {
        std::ptrdiff_t k = n_ - 1;
        while (k >= 0 && converges(k, nIter)) --k;
        rotations_.perform();
        applySigns(k + 1);
        return k < 0 ? vornStsNoErr : vornStsSvdNoConvergeErr;
    }

private:
    bool isNegligible(Vorn64f x) const { return norm_ + std::fabs(x) == norm_; }

    VORN_INLINE bool converges(std::ptrdiff_t k, int nIter) {
        std::ptrdiff_t lostAt = -1;
        for (int round = 1;; ++round) {
            std::ptrdiff_t l = k;
            while (l > 0 && !isNegligible(e_[l])) {
                if (isNegligible(w_[l - 1])) {
                    cancel(l, k);
                    break;
                }
                --l;
            }
            if (l == k) {
                // The column waits for its rotations, and keeps its sign where nobody looks any more.
                e_[k] = w_[k] < 0.0 ? -1.0 : 1.0;
                if (w_[k] < 0.0) w_[k] = -w_[k];
                return true;
            }
            if (round == nIter) return false;
            const Vorn64f f = shift(l, k);
            // A sweep over not-a-numbers leaves nothing else, and the next one of the same range changes nothing.
            if (f != f) {
                if (lostAt == l) return false;
                lostAt = l;
            }
            sweep(l, k, f);
        }
    }

    // w[l - 1] is negligible: e[l] is rotated out to the right.
    VORN_NOINLINE void cancel(std::ptrdiff_t l, std::ptrdiff_t k) {
        rotations_.perform();
        Vorn64f c = 0.0, s = 1.0;
        for (std::ptrdiff_t i = l; i <= k; ++i) {
            const Vorn64f f = s * e_[i];
            e_[i] = c * e_[i];
            if (isNegligible(f)) break;
            const Vorn64f g = w_[i], h = hypotenuse(f, g);
            w_[i] = h;
            c = g / h;
            s = -f / h;
            rotate(Column{u_, l - 1}, Column{u_, i}, m_, c, s);
        }
    }

    // From the last two rows and columns: what the sweep begins with.
    Vorn64f shift(std::ptrdiff_t l, std::ptrdiff_t k) const {
        const Vorn64f x = w_[l], y = w_[k - 1], z = w_[k], g = e_[k - 1], h = e_[k];
        const Vorn64f f = ((y - z) * (y + z) + (g - h) * (g + h)) / ((h + h) * y);
        const Vorn64f root = hypotenuse(f, 1.0);
        return ((x - z) * (x + z) + h * (y / (f + (f < 0.0 ? -root : root)) - h)) / x;
    }

    VORN_INLINE void sweep(std::ptrdiff_t l, std::ptrdiff_t k, Vorn64f f) {
        Vorn64f x = w_[l], c = 1.0, s = 1.0;
        for (std::ptrdiff_t j = l; j < k; ++j) {
            Vorn64f g = e_[j + 1], y = w_[j + 1], h = s * g;
            g = c * g;
            Vorn64f z = hypotenuse(f, h);
            e_[j] = z;
            if (z != 0.0) {
                c = f / z;
                s = h / z;
            }
            const Rotation ofV = {c, s};
            f = x * c + g * s;
            g = g * c - x * s;
            h = y * s;
            y = y * c;
            z = hypotenuse(f, h);
            w_[j] = z;
            if (z != 0.0) {
                const Vorn64f reciprocal = 1.0 / z;
                c = f * reciprocal;
                s = h * reciprocal;
            }
            f = c * g + s * y;
            x = c * y - s * g;
            rotations_.add({ofV, {c, s}, j});
        }
        e_[l] = 0.0;
        e_[k] = f;
        w_[k] = x;
    }

    // Columns of V whose values came out negative, from `first` on.
    void applySigns(std::ptrdiff_t first) const {
        for (std::ptrdiff_t row = 0; row < n_; ++row) {
            Vorn64f* const x = v_[row];
            for (std::ptrdiff_t column = first; column < n_; ++column) x[column] *= e_[column];
        }
    }

    Matrix u_, v_;
    std::ptrdiff_t m_, n_;
    Vorn64f *w_, *e_;
    Vorn64f norm_;
    Rotations rotations_;
};

}  // namespace vorn::svd
