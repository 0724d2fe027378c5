// The n-th largest element: the exported functions.
#include <bit>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include "frame/checks.h"
#include "frame/memory.h"
#include "vornsr/linalg.h"

namespace vorn {
namespace {

// Integers in the order of the elements: what is not a number has its place in it too, so that no comparison surprises.
inline Vorn32s keyOf(Vorn32s x) { return x; }
inline std::int32_t keyOf(Vorn32f x) {
    const auto bits = std::bit_cast<std::int32_t>(x);
    return bits ^ ((bits >> 31) & INT32_MAX);
}
inline std::int64_t keyOf(Vorn64f x) {
    const auto bits = std::bit_cast<std::int64_t>(x);
    return bits ^ ((bits >> 63) & INT64_MAX);
}
template <class T, class Key>
T elementOf(Key key) {
    if constexpr (std::is_same_v<T, Key>) {
        return key;
    } else {
        return std::bit_cast<T>(keyOf(std::bit_cast<T>(key)));  // the way there is the way back
    }
}

template <class Key>
Key middleOf(Key a, Key b, Key c) {
    if (a > b) std::swap(a, b);
    if (b > c) std::swap(b, c);
    return a > b ? a : b;
}
// Of three, in a long run of three times three, so that no usual order of the elements is a bad one.
template <class Key>
Key pivotOf(const Key* key, int len) {
    const int half = len / 2, last = len - 1;
    if (len < 128) return middleOf(key[0], key[half], key[last]);
    const int eighth = len / 8;
    return middleOf(middleOf(key[0], key[eighth], key[2 * eighth]),
                    middleOf(key[half - eighth], key[half], key[half + eighth]),
                    middleOf(key[last - 2 * eighth], key[last - eighth], key[last]));
}

// How many keys pass the test.
template <class Key, class Test>
int countOf(const Key* key, int len, const Test& test) {
    int count = 0;
    for (int i = 0; i < len; ++i) count += test(key[i]) ? 1 : 0;
    return count;
}

// Moves the keys that pass the test to the front, over those that do not; the processor has no branch to guess.
template <class Key, class Test>
void keepThose(Key* key, int len, const Test& test) {
    std::ptrdiff_t front = 0;
    for (int i = 0; i < len; ++i) {
        const Key x = key[i];
        key[front] = x;
        front += test(x) ? 1 : 0;
    }
}

// The n-th largest by its bits, from the top one down: so many runs over the keys as they have bits, whatever they are.
template <class Key>
Key nthByBits(const Key* key, int len, int n) {
    using Unsigned = std::make_unsigned_t<Key>;
    constexpr Unsigned top = Unsigned{1} << (8 * sizeof(Key) - 1);
    Unsigned least = 0;  // more than n keys, with the sign bit turned, are at or above it
    for (Unsigned bit = top; bit != 0; bit >>= 1) {
        const Unsigned candidate = least | bit;
        const auto reaches = [=](Key x) { return (static_cast<Unsigned>(x) ^ top) >= candidate; };
        if (countOf(key, len, reaches) > n) least = candidate;
    }
    return static_cast<Key>(least ^ top);
}

// Quickselect (Hoare 1961): of the keys above and below the pivot only those stay among which the n-th is. A pivot that
// leaves more than seven eighths is a bad one; after a few of them the bits decide.
template <class Key>
Key nthLargest(Key* key, int len, int n) {
    for (int badOnes = 0; badOnes < 8;) {
        const Key pivot = pivotOf(key, len);
        const int before = len;
        const int above = countOf(key, len, [=](Key x) { return x > pivot; });
        if (n < above) {
            keepThose(key, len, [=](Key x) { return x > pivot; });
            len = above;
        } else {
            const int aboveOrEqual = above + countOf(key, len, [=](Key x) { return x == pivot; });
            if (n < aboveOrEqual) return pivot;
            keepThose(key, len, [=](Key x) { return x < pivot; });
            len -= aboveOrEqual;
            n -= aboveOrEqual;
        }
        if (len > before - before / 8) ++badOnes;
    }
    return nthByBits(key, len, n);
}

template <class T>
VornStatus nthMax(const T* src, int len, int n, T* dst) {
    using Key = decltype(keyOf(T()));
    Scratch<Key> keys(len);
    VORN_CHECK(require(static_cast<bool>(keys), vornStsMemAllocErr));
    for (int i = 0; i < len; ++i) keys[i] = keyOf(src[i]);
    *dst = elementOf<T>(nthLargest(keys.get(), len, n));
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsNthMaxElement_32s(const Vorn32s* src, int len, int n, Vorn32s* dst) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(require(n >= 0 && n < len, vornStsBadArgErr));
    return nthMax(src, len, n, dst);
}

VornStatus vornsNthMaxElement_32f(const Vorn32f* src, int len, int n, Vorn32f* dst) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(require(n >= 0 && n < len, vornStsBadArgErr));
    return nthMax(src, len, n, dst);
}

VornStatus vornsNthMaxElement_64f(const Vorn64f* src, int len, int n, Vorn64f* dst) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(require(n >= 0 && n < len, vornStsBadArgErr));
    return nthMax(src, len, n, dst);
}
