// The search for the roots of P and Q.
#include <algorithm>
#include <bit>
#include <utility>

#include "features/prediction/line_spectrum.h"
#include "simd/neighbours.h"
#include "simd/pairs.h"
#include "simd/simd.h"

namespace vorn::conversion {
namespace {

// Multiples of a step, each rounded once. The compiler must not know the factors: it would subtract their products by
// adding those of the opposite factors, which round to the other side in the caller's directed modes.
VORN_INLINE f32x4 multiplesOf(Vorn32f step, Vorn32f fourth) {
    const Vorn32f factors[4] = {1, 2, 3, fourth};
    return inRegister(load<f32x4>(factors)) * splat<f32x4>(step);
}

// c[0] to c[degree], of which c[0] is 1, as a series of Chebyshev polynomials by Clenshaw's recurrence.
struct ChebyshevSeries {
    const Vorn32f* c;
    std::ptrdiff_t degree;

    // At the lanes of all x, each lane for itself in one order of operations.
    template <class V, int count>
    VORN_INLINE void at(const V (&x)[count], V (&y)[count]) const {
        if (degree < 2) {
            for (int v = 0; v < count; ++v) y[v] = degree == 1 ? splat<V>(c[1]) + x[v] + x[v] : splat<V>(0);
            return;
        }
        V twice[count], b1[count], b2[count];
        for (int v = 0; v < count; ++v) {
            twice[v] = x[v] + x[v];
            b1[v] = splat<V>(c[1]) + twice[v];
            b2[v] = splat<V>(1);
        }
        for (std::ptrdiff_t k = 2; k < degree; ++k) {
            const V ck = splat<V>(c[k]);
            for (int v = 0; v < count; ++v) {
                const V t = twice[v] * b1[v] - b2[v];
                b2[v] = b1[v];
                b1[v] = t + ck;
            }
        }
        const V half = splat<V>(0.5f * c[degree]);
        for (int v = 0; v < count; ++v) y[v] = half - b2[v] + b1[v] * x[v];
    }
    VORN_INLINE f32x4 at(f32x4 x) const {
        const f32x4 points[1] = {x};
        f32x4 values[1];
        at(points, values);
        return values[0];
    }
    VORN_INLINE Vorn32f at(Vorn32f x) const { return firstLane(at(splat<f32x4>(x))); }
};

// For an odd order P and Q come out with the sign of the predictor, for an even one with that of the error filter.
void formSeries(const Vorn32f* a, std::ptrdiff_t order, Vorn32f* p, Vorn32f* q) {
    const std::ptrdiff_t nP = degreeOfP(order), nQ = degreeOfQ(order);
    p[0] = q[0] = 1.0f;
    if (nP == nQ) {
        for (std::ptrdiff_t i = 0; i < nP; ++i) {
            p[i + 1] = a[i] - p[i] + a[order - 1 - i];
            q[i + 1] = a[i] + q[i] - a[order - 1 - i];
        }
    } else {
        if (nQ > 0) q[1] = a[order - 1] - a[0];
        for (std::ptrdiff_t i = 2; i <= nQ; ++i) q[i] = q[i - 2] + a[order - i] - a[i - 1];
        for (std::ptrdiff_t i = 1; i < nP; ++i) p[i] = 0.0f - a[i - 1] - a[order - i];
        p[nP] = -2.0f * a[nP - 1];
    }
}

// Both polynomials on a run of grid points: from the last one of the run before on, `steps` steps further.
class Grid {
public:
    static constexpr int steps = 64;

    Grid(ChebyshevSeries p, ChebyshevSeries q, std::ptrdiff_t nGrid)
        : series_{p, q}, left_(nGrid), step_(2.0f / static_cast<Vorn32f>(nGrid)), base_(1.0f + step_) {
        fillPoints();
        for (int s = 0; s < 2; ++s) y_[s][0] = series_[s].at(x_[0]);
        evaluate();
    }

    Vorn32f step() const { return step_; }
    // How many steps this run has, and the point and the value behind so many of them.
    int count() const { return static_cast<int>(std::min<std::ptrdiff_t>(left_, steps)); }
    Vorn32f x(int i) const { return x_[i]; }
    Vorn32f y(int series, int i) const { return y_[series][i]; }

    // The first step from i on over which the polynomial does not keep its sign; count() if there is none.
    int stepOfChange(int series, int i) const {
        return i < steps ? std::min(i + std::countr_one(keeps_[series] >> i), count()) : count();
    }

    // False behind the last run.
    bool next() {
        left_ -= steps;
        if (left_ <= 0) return false;
        fillPoints();
        for (auto& y : y_) y[0] = y[steps];
        evaluate();
        return true;
    }

private:
    // In groups of four from a base, the last point of the group before; the multiples of the step are rounded once.
    void fillPoints() {
        const f32x4 multiples = multiplesOf(step_, 4);
        const Vorn32f four = 4.0f * step_;
        for (int i = 0; i < steps; i += 4) {
            store(x_ + i, splat<f32x4>(base_) - multiples);
            base_ = base_ - four;
        }
        x_[steps] = base_ - step_;
        if (left_ <= steps) x_[left_] = -1.0f;
    }

    void evaluate() {
        constexpr int atOnce = 4;
        static_assert(steps % (atOnce * f32xN::lanes) == 0);
        const int n = count();
        for (int s = 0; s < 2; ++s) {
            for (int i = 0; i < n; i += atOnce * f32xN::lanes) {
                f32xN x[atOnce], y[atOnce];
                for (int v = 0; v < atOnce; ++v) x[v] = load<f32xN>(x_ + 1 + i + v * f32xN::lanes);
                series_[s].at(x, y);
                for (int v = 0; v < atOnce; ++v) store(y_[s] + 1 + i + v * f32xN::lanes, y[v]);
            }
            // A product that underflows, or is not a number, is a change of the sign as well.
            keeps_[s] = 0;
            for (int i = 0; i < n; i += f32xN::lanes) {
                const f32xN product = load<f32xN>(y_[s] + i) * load<f32xN>(y_[s] + i + 1);
                keeps_[s] |= std::uint64_t{laneBits(product > splat<f32xN>(0))} << i;
            }
        }
    }

    ChebyshevSeries series_[2];
    std::ptrdiff_t left_;
    Vorn32f step_, base_;
    std::uint64_t keeps_[2];  // bit i: over step i
    Vorn32f x_[steps + 1], y_[2][steps + 1];
};

// Two points with the sign change of a polynomial between them, and its values there.
struct Bracket {
    Vorn32f xa, fa, xb, fb;

    // From xa in steps that start at a quarter of the grid's, three at once, each time a quarter as long: a round is
    // worth two bisections.
    void quarter(const ChebyshevSeries& series, Vorn32f step, int nDiv) {
        for (step = step * 0.25f; nDiv > 0; nDiv -= 2, step = step * 0.25f) {
            const f32x4 points = splat<f32x4>(xa) - multiplesOf(step, 3), values = series.at(points);
            const f32x4 before = fromLast(splat<f32x4>(fa), values);
            // So many points keep the sign; what follows the last of them ends the bracket.
            const int kept = std::countr_one(laneBits(before * values > splat<f32x4>(0)) & 7u);
            Vorn32f x[5] = {xa}, f[5] = {fa};
            store(x + 1, points);
            store(f + 1, values);
            x[4] = xb;
            f[4] = fb;
            const bool moves = x[3] < xa;
            xa = x[kept];
            fa = f[kept];
            xb = x[kept + 1];
            fb = f[kept + 1];
            if (!moves) return;  // nor would shorter steps, so no round would change anything any more
        }
    }

    void bisect(const ChebyshevSeries& series, int nDiv) {
        for (; nDiv > 0; --nDiv) {
            const Vorn32f mid = (xb + xa) * 0.5f, value = series.at(mid);
            Bracket next = *this;
            (fb * value > 0 ? next.xb : next.xa) = mid;
            (fb * value > 0 ? next.fb : next.fa) = value;
            if (sameBits(next)) return;  // for good
            *this = next;
        }
    }

    Vorn32f secant() const { return xb - fb * (xa - xb) / (fa - fb); }

private:
    bool sameBits(const Bracket& other) const {
        return all(std::bit_cast<i32x4>(*this) == std::bit_cast<i32x4>(other));
    }
};

// The same for four brackets, each in a lane of its own: of P and Q in turn.
struct FourBrackets {
    // Two series that take turns in the lanes.
    struct InTurn {
        ChebyshevSeries first, second;

        template <int count>
        VORN_INLINE void at(const f32x4 (&x)[count], f32x4 (&y)[count]) const {
            const auto coefficients = [this](std::ptrdiff_t k) __attribute__((always_inline)) {
                return interleaveLow(splat<f32x4>(first.c[k]), splat<f32x4>(second.c[k]));
            };
            const std::ptrdiff_t degree = std::min(first.degree, second.degree);
            f32x4 twice[count], b1[count], b2[count];
            for (int v = 0; v < count; ++v) {
                twice[v] = x[v] + x[v];
                b1[v] = coefficients(1) + twice[v];
                b2[v] = splat<f32x4>(1);
            }
            for (std::ptrdiff_t k = 2; k < degree; ++k) {
                const f32x4 ck = coefficients(k);
                for (int v = 0; v < count; ++v) {
                    const f32x4 t = twice[v] * b1[v] - b2[v];
                    b2[v] = b1[v];
                    b1[v] = t + ck;
                }
            }
            const f32x4 half = splat<f32x4>(0.5f) * coefficients(degree);
            for (int v = 0; v < count; ++v) y[v] = half - b2[v] + b1[v] * x[v];
            if (first.degree == second.degree) return;

            // One is a step ahead of the other.
            const bool firstIsLonger = first.degree > degree;
            const Vorn32f* c = firstIsLonger ? first.c : second.c;
            const Vorn32f no = 0, yes = 1,
                          lanes[4] = {firstIsLonger ? yes : no, firstIsLonger ? no : yes, firstIsLonger ? yes : no,
                                      firstIsLonger ? no : yes};
            const mask32x4 longer = load<f32x4>(lanes) > splat<f32x4>(0);
            for (int v = 0; v < count; ++v) {
                const f32x4 t = twice[v] * b1[v] - b2[v], next = t + splat<f32x4>(c[degree]);
                y[v] = select(longer, splat<f32x4>(0.5f * c[degree + 1]) - b1[v] + next * x[v], y[v]);
            }
        }
    };

    f32x4 xa, fa, xb, fb;

    void quarter(const InTurn& series, Vorn32f step, int nDiv) {
        const Vorn32f factors[4] = {1, 2, 3, 4};
        const f32x4 multiples = inRegister(load<f32x4>(factors));
        for (step = step * 0.25f; nDiv > 0; nDiv -= 2, step = step * 0.25f) {
            const f32x4 s = multiples * splat<f32x4>(step);
            const f32x4 x[3] = {xa - splat<f32x4>(step), xa - splatSecond(s), xa - splatSecond(fromSecond(s, s))};
            f32x4 f[3];
            series.at(x, f);
            const f32x4 zero = splat<f32x4>(0);
            const mask32x4 one = fa * f[0] > zero, two = one & (f[0] * f[1] > zero), three = two & (f[1] * f[2] > zero);
            const bool moves = any(x[2] < xa);
            xb = select(three, xb, select(two, x[2], select(one, x[1], x[0])));
            fb = select(three, fb, select(two, f[2], select(one, f[1], f[0])));
            xa = select(three, x[2], select(two, x[1], select(one, x[0], xa)));
            fa = select(three, f[2], select(two, f[1], select(one, f[0], fa)));
            if (!moves) return;
        }
    }

    f32x4 secant() const { return xb - fb * (xa - xb) / (fa - fb); }
};

}  // namespace

int linesFromCoefficients(const Vorn32f* a, Vorn32f* dst, std::ptrdiff_t order, std::ptrdiff_t nGrid, int nDiv,
                          Vorn32f* polynomials) {
    Vorn32f *p = polynomials, *q = polynomials + degreeOfP(order) + 1;
    formSeries(a, order, p, q);
    const ChebyshevSeries series[2] = {{p, degreeOfP(order)}, {q, degreeOfQ(order)}};

    Grid grid(series[0], series[1], nGrid);
    std::ptrdiff_t roots = 0, before = 0;  // steps of the grid before this run
    int active = 0;
    const auto quarters = [&](int i) { return nGrid >= 4 && before + i < nGrid - 5; };

    // Four roots from step i on, of which each is looked for where it is if the root before leaves the sign of the
    // other polynomial as the next point has it. That is nearly always so, and the roots come out together. Returns how
    // many are right; the bracket then begins at the last of them, in step i.
    const auto fourRoots = [&](int& i, Bracket& bracket) {
        int at[4];
        Vorn32f xa[4], fa[4], xb[4], fb[4], ahead[4];
        for (int l = 0; l < 4; ++l) {
            const int line = active ^ (l & 1);
            at[l] = l == 0 ? i : grid.stepOfChange(line, at[l - 1] + 1);
            if (at[l] >= grid.count() || !quarters(at[l])) return 0;
            xa[l] = grid.x(at[l]), fa[l] = grid.y(line, at[l]);
            xb[l] = grid.x(at[l] + 1), fb[l] = grid.y(line, at[l] + 1);
            ahead[l] = grid.y(1 - line, at[l] + 1);
        }
        FourBrackets four = {load<f32x4>(xa), load<f32x4>(fa), load<f32x4>(xb), load<f32x4>(fb)};
        four.quarter({series[active], series[1 - active]}, grid.step(), nDiv);
        const f32x4 x[1] = {four.secant()};
        f32x4 f[1];
        FourBrackets::InTurn{series[1 - active], series[active]}.at(x, f);
        const int kept = std::countr_one(laneBits(f[0] * load<f32x4>(ahead) > splat<f32x4>(0)));
        const int right = std::min(kept + 1, 4);
        store(xa, x[0]);
        store(fa, f[0]);
        std::copy_n(xa, right, dst + roots);
        roots += right;
        active ^= right & 1;
        i = at[right - 1];
        bracket = {xa[right - 1], fa[right - 1], 0, 0};
        return right;
    };
    do {
        for (int i = 0; (i = grid.stepOfChange(active, i)) < grid.count(); ++i) {
            Bracket bracket = {grid.x(i), grid.y(active, i), 0, 0};
            if (order >= 4 && order - roots >= 4 && fourRoots(i, bracket) > 0) {
                if (roots == order) return static_cast<int>(roots);
                if (bracket.fa * grid.y(active, i + 1) > 0) continue;
            }
            // All roots in this step of the grid: behind one the other polynomial starts from it.
            do {
                bracket.xb = grid.x(i + 1);
                bracket.fb = grid.y(active, i + 1);
                if (quarters(i)) {
                    bracket.quarter(series[active], grid.step(), nDiv);
                } else {
                    bracket.bisect(series[active], nDiv);
                }
                const Vorn32f root = bracket.secant();
                dst[roots++] = root;
                if (roots == order) return static_cast<int>(roots);
                active = 1 - active;
                bracket.xa = root;
                bracket.fa = series[active].at(root);
            } while (!(bracket.fa * grid.y(active, i + 1) > 0));
        }
        before += Grid::steps;
    } while (grid.next());
    return static_cast<int>(roots);
}

}  // namespace vorn::conversion
