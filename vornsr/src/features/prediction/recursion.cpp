// Durbin's recursion (Durbin 1960) and Schur's (Schur 1917; Le Roux and Gueguen 1977), and the exported functions on
// autocorrelations.
#include "features/prediction/recursion.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "features/detour.h"
#include "frame/checks.h"
#include "frame/memory.h"
#include "move/convert_kernels.h"
#include "simd/simd.h"
#include "vornsr/features.h"

namespace vorn::prediction {
namespace {

// Rounds are short, and read in pieces what the one before has stored: registers of up to eight singles serve them
// best.
template <class Wide>
constexpr auto upToEight() {
    if constexpr (Wide::lanes > 8) {
        return lowHalf(Wide{});
    } else {
        return Wide{};
    }
}
using V = decltype(upToEight<f32xN>());

// One round of Durbin's recursion: what it makes of the i - 1 coefficients so far. The sum has one order, term by term.
struct DurbinRound {
    Vorn32f k;
    bool stable;

    VORN_INLINE DurbinRound(const Vorn32f* r, const Vorn32f* a, int i, Vorn32f& energy) {
        Vorn32f acc = r[i];
        for (int j = 1; j < i; ++j) acc += r[i - j] * a[j - 1];
        k = acc / energy;
        energy *= 1.0f - k * k;
        stable = energy > 0.0f;  // not for a not-a-number
    }
};

// The rounds of common orders have a code each, which takes the coefficients in registers. Both loops return how many
// rounds were completed.
constexpr int shortRounds = 12;

template <int i>
VORN_INLINE int durbinShort(const Vorn32f* r, Vorn32f* a, int order, Vorn32f& energy) {
    const DurbinRound round(r, a, i, energy);
    if (!round.stable) return i - 1;
    for (int low = 0, high = i - 2; low <= high; ++low, --high) {
        Vorn32f first = a[low], second = a[high];
        asm("" : "+x"(first), "+x"(second));  // else the compiler gathers them in registers, which takes longer
        a[low] = first - second * round.k;
        a[high] = second - first * round.k;
    }
    a[i - 1] = 0.0f - round.k;
    if constexpr (i < shortRounds) {
        if (i < order) return durbinShort<i + 1>(r, a, order, energy);
    }
    return i;
}

// mirrored holds a(m) at place order - m, so that each of the two takes the other as it stands. Behind both lies a
// register of zeros, which stay zeros: the k of a completed round is finite.
int durbinLong(const Vorn32f* r, Vorn32f* a, Vorn32f* mirrored, int order, Vorn32f& energy) {
    for (int i = shortRounds + 1; i <= order; ++i) {
        const DurbinRound round(r, a, i, energy);
        if (!round.stable) return i - 1;
        Vorn32f* opposite = mirrored + (order - i + 1);
        const V k = splat<V>(round.k);
        for (int j = 0; j < i - 1; j += V::lanes) {
            const V here = load<V>(a + j), there = load<V>(opposite + j);
            store(a + j, here - there * k);
            store(opposite + j, there - here * k);
        }
        a[i - 1] = opposite[-1] = 0.0f - round.k;
    }
    return order;
}

// Places for arrays of order elements, with a register of zeros behind each; on the stack up to an order.
template <int arrays, int onStack>
class Arrays {
public:
    explicit Arrays(int order) : order_(order), block_(arrays * (std::int64_t{order} + V::lanes)) {}
    explicit operator bool() const { return static_cast<bool>(block_); }

    // With zeros behind it.
    Vorn32f* operator[](int i) const {
        Vorn32f* array = block_.get() + i * (std::ptrdiff_t{order_} + V::lanes);
        store(array + order_, splat<V>(0));
        return array;
    }

private:
    int order_;
    ShortScratch<Vorn32f, arrays*(onStack + V::lanes)> block_;
};

// Round i of Schur's recursion needs g and h from i on, and makes g(j) and h(j+1) of g(j) and h(j). h(j) lies i places
// before its own, so that h(j+1) comes into the place of h(j). Returns the energy of the error.
//
// Registers read across what the round before has stored, and wait for it. So short rounds go element by element; long
// ones go in twos, for which the first two pairs give both coefficients, and g moves down by one place.
constexpr int shortRest = 16;

Vorn32f schur(Vorn32f* g, Vorn32f* h, Vorn32f* k, int order) {
    for (int rest = order - 1;; ++g) {
        Vorn32f first = (0.0f - g[0]) / h[0];
        *k++ = first;
        if (rest == 0) return g[0] * first + h[0];
        if (rest < shortRest) {
            for (int m = 0; m <= rest; ++m) {
                asm("" : "+x"(first));  // else the compiler takes registers after all
                const Vorn32f onceG = first * h[m] + g[m], onceH = first * g[m] + h[m];
                g[m] = onceG;
                h[m] = onceH;
            }
            rest -= 1;
        } else {
            const Vorn32f nextG = first * h[1] + g[1], nextH = first * g[0] + h[0];
            const Vorn32f second = (0.0f - nextG) / nextH;
            *k++ = second;
            const V one = splat<V>(first), two = splat<V>(second);
            for (int m = 0; m < rest; m += V::lanes) {
                const V onceG = one * load<V>(h + m + 1) + load<V>(g + m + 1);
                const V onceH = one * load<V>(g + m) + load<V>(h + m);
                store(g + m, two * onceH + onceG);
                store(h + m, two * onceG + onceH);
            }
            rest -= 2;
        }
    }
}

// The longest orders whose scratch is on the stack.
constexpr int durbinOnStack = 63, schurOnStack = 1023;

}  // namespace

VornStatus durbin(const Vorn32f* r, Vorn32f* dst, int order, Vorn32f* pErr) {
    const Arrays<2, durbinOnStack> arrays(order);
    if (!arrays) return vornStsMemAllocErr;
    Vorn32f energy = r[0];
    if (!(energy > 0.0f)) return vornStsDurbinErr;  // nor with a not-a-number
    Vorn32f* a = arrays[0];
    int rounds = durbinShort<1>(r, a, std::min(order, shortRounds), energy);
    if (rounds == shortRounds && order > shortRounds) {
        Vorn32f* mirrored = arrays[1];
        std::fill(a + rounds, a + order, 0.0f);
        std::reverse_copy(a, a + rounds, mirrored + order - rounds);
        rounds = durbinLong(r, a, mirrored, order, energy);
    }
    std::copy_n(a, rounds, dst);
    if (rounds < order) return vornStsDurbinErr;
    *pErr = energy;
    return vornStsNoErr;
}

}  // namespace vorn::prediction

using namespace vorn;

VornStatus vornsDurbin_32f(const Vorn32f* src, Vorn32f* dst, int order, Vorn32f* pErr) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(order));
    VORN_CHECK(notNull(pErr));
    return prediction::durbin(src, dst, order, pErr);
}

VornStatus vornsDurbin_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int order, Vorn32f* pErr, int scale) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(order));
    VORN_CHECK(notNull(pErr));
    const prediction::Arrays<2, prediction::durbinOnStack> arrays(order);
    if (!arrays) return vornStsMemAllocErr;
    Vorn32f *r = arrays[0], *a = arrays[1];
    convert(src, r, std::ptrdiff_t{order} + 1);  // the last one in the place behind
    VORN_CHECK(prediction::durbin(r, a, order, pErr));
    NearestStore{scale}(a, dst, order);
    return vornStsNoErr;
}

VornStatus vornsSchur_32f(const Vorn32f* src, Vorn32f* dst, int order, Vorn32f* pErr) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(order));
    VORN_CHECK(notNull(pErr));
    const prediction::Arrays<2, prediction::schurOnStack> arrays(order);
    if (!arrays) return vornStsMemAllocErr;
    Vorn32f *g = arrays[0], *h = arrays[1];
    std::copy_n(src + 1, order, g);
    std::copy_n(src, order, h);
    *pErr = prediction::schur(g, h, dst, order);
    return vornStsNoErr;
}

VornStatus vornsSchur_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int order, Vorn32f* pErr, int scale) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(order));
    VORN_CHECK(notNull(pErr));
    const prediction::Arrays<3, prediction::schurOnStack> arrays(order);
    if (!arrays) return vornStsMemAllocErr;
    Vorn32f *g = arrays[0], *h = arrays[1], *k = arrays[2];
    convert(src + 1, g, order);
    convert(src, h, order);
    *pErr = prediction::schur(g, h, k, order);
    NearestStore{scale}(k, dst, order);
    return vornStsNoErr;
}
