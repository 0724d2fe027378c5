// Log-domain arithmetic: log-add by polynomials whose coefficients each lane chooses, without a branch per lane.
#include "scoring/log_arithmetic/kernels.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "elementary/lanes.h"
#include "frame/scale.h"
#include "simd/simd.h"

namespace vorn {
namespace {

// ---- The coefficients, laid out for the choice by lane.

template <class T>
constexpr int terms = std::is_same_v<T, float> ? termsFloat : termsDouble;

enum IntervalNumber : int { lowerInterval, middleInterval, upperInterval, intervals };

// Row `terms` holds the shift: the upper end of the interval, which d is counted from.
template <class T>
constexpr T coefficient(int row, int interval) {
    if (row == terms<T>) {
        return interval == upperInterval    ? T(0)
               : interval == middleInterval ? LogLimits<T>::upperSplit
                                            : LogLimits<T>::lowerSplit;
    }
    if constexpr (std::is_same_v<T, float>) {
        return static_cast<float>(interval == upperInterval    ? P1_F[row]
                                  : interval == middleInterval ? P2_F[row]
                                                               : P3_F[row]);
    } else {
        return interval == upperInterval ? P1[row] : interval == middleInterval ? P2[row] : P3[row];
    }
}

// For look-up in registers: the three intervals' coefficients of a row side by side, and a fourth that is not used.
template <class T>
struct IntervalTable {
    alignas(64) T row[terms<T> + 1][4];
};

template <class T>
constexpr IntervalTable<T> makeIntervalTable() {
    IntervalTable<T> table{};
    for (int row = 0; row <= terms<T>; ++row) {
        for (int interval = 0; interval < intervals; ++interval)
            table.row[row][interval] = coefficient<T>(row, interval);
    }
    return table;
}

[[maybe_unused]] constexpr int powerOfThree(int lanes) { return lanes == 0 ? 1 : 3 * powerOfThree(lanes - 1); }

// For loads: one block of rows for each way in which the lanes can lie on the intervals. The block's number has one
// digit of base three a lane, the lane's interval.
template <class V>
struct LaneTable {
    using T = typename V::Element;
    alignas(64) T block[powerOfThree(V::lanes)][terms<T> + 1][V::lanes];
};

template <class V>
constexpr LaneTable<V> makeLaneTable() {
    using T = typename V::Element;
    LaneTable<V> table{};
    for (int number = 0; number < powerOfThree(V::lanes); ++number) {
        for (int lane = 0; lane < V::lanes; ++lane) {
            const int interval = number / powerOfThree(lane) % intervals;
            for (int row = 0; row <= terms<T>; ++row) table.block[number][row][lane] = coefficient<T>(row, interval);
        }
    }
    return table;
}

// The bits of a mask read as digits of base three.
[[maybe_unused]] constexpr std::uint8_t bitsAsDigits[16] = {0, 1, 3, 4, 9, 10, 12, 13, 27, 28, 30, 31, 36, 37, 39, 40};

// ---- The choice of an interval by each lane.

// To which interval a d exactly on a split belongs.
enum class Split { Below, Above };

template <Split split, class V>
auto isAbove(V d, typename V::Element border) {
    if constexpr (split == Split::Below) {
        return d > splat<V>(border);
    } else {
        return d >= splat<V>(border);
    }
}

template <class V>
concept HasLookup = requires(const typename V::Element* four, V v) {
    lookup<V>(four, bitsOf(v));
};

// The chosen coefficients of all lanes, a row at a time.
template <class V>
class Chosen {
public:
    using T = typename V::Element;

    template <class Mask>
    Chosen(Mask aboveLower, Mask aboveUpper)
        : block_(&table_.block[bitsAsDigits[laneBits(aboveLower)] + bitsAsDigits[laneBits(aboveUpper)]][0][0]) {}
    V operator[](int row) const { return load<V>(block_ + row * V::lanes); }

private:
    static constexpr LaneTable<V> table_ = makeLaneTable<V>();
    const T* block_;
};

template <HasLookup V>
class Chosen<V> {
public:
    using T = typename V::Element;
    using Index = decltype(bitsOf(V{}));

    template <class Mask>
    Chosen(Mask aboveLower, Mask aboveUpper)
        : interval_(bitsOf(select(aboveUpper, number(upperInterval),
                                  select(aboveLower, number(middleInterval), number(lowerInterval))))) {}
    V operator[](int row) const { return lookup<V>(table_.row[row], interval_); }

private:
    static constexpr IntervalTable<T> table_ = makeIntervalTable<T>();
    static V number(int interval) { return floatOf(splat<Index>(interval)); }
    Index interval_;
};

// One interval's coefficients for all lanes: whole vectors in memory, which arithmetic takes as they are.
template <class V, IntervalNumber interval>
class Uniform {
public:
    V operator[](int row) const { return load<V>(table_.row[row]); }

private:
    using T = typename V::Element;
    struct Table {
        alignas(sizeof(V)) T row[terms<T> + 1][V::lanes];
    };
    static constexpr Table table_ = [] {
        Table table{};
        for (int row = 0; row <= terms<T>; ++row) {
            for (T& lane : table.row[row]) lane = coefficient<T>(row, interval);
        }
        return table;
    }();
};

// m + f: in single one Horner chain, in double two, over the even and the odd rows in the square of t.
template <class V, class Coefficients>
V addPolynomial(V m, V d, const Coefficients& p) {
    const V t = d - p[terms<typename V::Element>];
    if constexpr (std::is_same_v<typename V::Element, float>) {
        V f = p[0];
        for (int row = 1; row < termsFloat; ++row) f = f * t + p[row];
        return m + f;
    } else {
        const V z = t * t;
        V even = p[0], odd = p[1];
        for (int row = 2; row < termsDouble; row += 2) {
            even = even * z + p[row];
            odd = odd * z + p[row + 1];
        }
        return (m + even * t) + odd;
    }
}

// How the lanes get their polynomials; the values are the same. Element-wise work wants the fewest operations: the
// coefficients are chosen, and one polynomial is evaluated. In a running sum each step waits for the one before: all
// three polynomials are evaluated beside one another, and the choice, which then delays nothing, comes last. Where
// other work fills the waiting, the fewest operations win again, if the choice is a look-up in registers.
enum class Choice { First, Last };
template <class V>
constexpr Choice choiceBesideWork = HasLookup<V> ? Choice::First : Choice::Last;

template <Split split, Choice choice = Choice::First, class V>
V logAdd(V a, V b) {
    using Limits = LogLimits<typename V::Element>;
    // Maximum and minimum give their second operand where the two are not comparable: with the operands the other way
    // round in one of them, d, and with it the result, is not a number if either operand is not.
    const V m = maxOf(a, b);
    const V d = minOf(b, a) - m;
    const auto far = d < splat<V>(Limits::minExp);
    const V leader = select(m < splat<V>(Limits::small), splat<V>(Limits::zero), m);
    if (all(far)) return leader;
    const auto aboveLower = isAbove<split>(d, Limits::lowerSplit), aboveUpper = isAbove<split>(d, Limits::upperSplit);
    if constexpr (choice == Choice::First) {
        return select(far, leader, addPolynomial(m, d, Chosen<V>(aboveLower, aboveUpper)));
    } else {
        const V upper = addPolynomial(m, d, Uniform<V, upperInterval>());
        const V middle = addPolynomial(m, d, Uniform<V, middleInterval>());
        const V lower = addPolynomial(m, d, Uniform<V, lowerInterval>());
        return select(aboveUpper, upper, select(aboveLower, middle, select(far, leader, lower)));
    }
}

// ---- Vectors.

// Group: the vector type of the groups that the rule on splits speaks of.
template <class Group>
void logAddVector(const typename Group::Element* src, typename Group::Element* srcDst, std::ptrdiff_t len) {
    using V = Wide<typename Group::Element>;
    const std::ptrdiff_t grouped = len & ~std::ptrdiff_t{Group::lanes - 1};
    std::ptrdiff_t i = 0;
    for (; i + V::lanes <= grouped; i += V::lanes) {
        store(srcDst + i, logAdd<Split::Below>(load<V>(src + i), load<V>(srcDst + i)));
    }
    if (const std::ptrdiff_t rest = grouped - i; rest > 0) {
        storeFirst(srcDst + i, logAdd<Split::Below>(loadFirst<V>(src + i, rest), loadFirst<V>(srcDst + i, rest)), rest);
    }
    if (const std::ptrdiff_t rest = len - grouped; rest > 0) {
        const auto* tail = src + grouped;
        auto* tailDst = srcDst + grouped;
        storeFirst(tailDst, logAdd<Split::Above>(loadFirst<Group>(tail, rest), loadFirst<Group>(tailDst, rest)), rest);
    }
}

// The running sum of all lanes, with one more element.
template <class V>
V logAddElement(V sum, typename V::Element x) {
    return logAdd<Split::Above, Choice::Last>(sum, splat<V>(x));
}

f32x4 foldLanes(f32x4 sums) {
    const f32x4 pair = logAdd<Split::Below, Choice::Last>(sums, upperToLower(sums));
    return logAdd<Split::Below, Choice::Last>(pair, splatSecond(pair));
}
f64x2 foldLanes(f64x2 sums) { return logAdd<Split::Below, Choice::Last>(sums, upperToLower(sums)); }

// The least length that is summed in lanes.
template <class T>
constexpr std::ptrdiff_t shortestInLanes = std::is_same_v<T, float> ? 8 : 5;

// Takes whole vectors of the first `made` elements.
template <Choice choice, class V>
void addVectors(LogSumSoFar<V>& sum, const typename V::Element* src, std::ptrdiff_t made) {
    std::ptrdiff_t i = sum.taken;
    if (i == 0 && made >= V::lanes) {
        sum.sums = load<V>(src);
        i = V::lanes;
    }
    V sums = sum.sums;
    for (; i + V::lanes <= made; i += V::lanes) sums = logAdd<Split::Below, choice>(sums, load<V>(src + i));
    sum.sums = sums;
    sum.taken = i;
}
// Takes the first `made` elements one by one.
template <class V>
void addElements(LogSumSoFar<V>& sum, const typename V::Element* src, std::ptrdiff_t made) {
    std::ptrdiff_t i = sum.taken;
    V total = i > 0 ? sum.sums : splat<V>(src[i++]);
    for (; i < made; ++i) total = logAddElement(total, src[i]);
    sum.sums = total;
    sum.taken = i;
}

// Sums of single elements wait until all are there: their branches go either way, and one that went wrong would take
// the work beside it along.
template <class V>
void advanceSum(LogSumSoFar<V>& sum, const typename V::Element* src, std::ptrdiff_t made, std::ptrdiff_t len) {
    // The newest elements are on their way to memory: a vector with some of them would have to wait.
    constexpr std::ptrdiff_t newest = 4;
    if (len >= shortestInLanes<typename V::Element>) addVectors<choiceBesideWork<V>>(sum, src, made - newest);
}
template <class V>
typename V::Element finishedSum(LogSumSoFar<V>& sum, const typename V::Element* src, std::ptrdiff_t len) {
    if (len >= shortestInLanes<typename V::Element>) {
        addVectors<Choice::Last>(sum, src, len);
        sum.sums = splat<V>(firstLane(foldLanes(sum.sums)));
    }
    addElements(sum, src, len);
    return firstLane(sum.sums);
}
template <class V>
typename V::Element logSum(const typename V::Element* src, std::ptrdiff_t len) {
    LogSumSoFar<V> sum;
    return finishedSum(sum, src, len);
}

// ---- Fixed point.

constexpr std::ptrdiff_t runLength = 128;

// A run as singles, with room for the last store of a whole vector.
struct Run {
    alignas(64) float value[runLength + f32xN::lanes];
};

void toFloats(const Vorn32s* src, float* dst, std::ptrdiff_t len, float scale) {
    const f32xN factor = splat<f32xN>(scale);
    std::ptrdiff_t i = 0;
    for (; i + i32xN::lanes <= len; i += i32xN::lanes) store(dst + i, toFloat(load<i32xN>(src + i)) * factor);
    if (i < len) store(dst + i, toFloat(loadFirst<i32xN>(src + i, len - i)) * factor);
}

void toFloats(const Vorn16s* src, float* dst, std::ptrdiff_t len, float scale) {
    const f32xN factor = splat<f32xN>(scale);
    const auto convert = [&](i16xN x, float* to) {
        store(to, toFloat(widenLow(x)) * factor);
        store(to + f32xN::lanes, toFloat(widenHigh(x)) * factor);
    };
    std::ptrdiff_t i = 0;
    for (; i + i16xN::lanes <= len; i += i16xN::lanes) convert(load<i16xN>(src + i), dst + i);
    if (i < len) convert(loadFirst<i16xN>(src + i, len - i), dst + i);
}

// Truncated toward zero; above the largest integer that one, below the smallest and for what is not a number that one.
i32xN truncSaturated(f32xN x) {
    const i32xN truncated = truncToInt(x);
    return select(x >= splat<f32xN>(2147483648.0f), splat<i32xN>(INT_MAX), truncated);
}

void fromFloats(const float* src, Vorn32s* dst, std::ptrdiff_t len, float factor) {
    const f32xN unit = splat<f32xN>(factor);
    for (std::ptrdiff_t i = 0; i < len; i += i32xN::lanes) {
        storeFirst(dst + i, truncSaturated(load<f32xN>(src + i) * unit),
                   std::min<std::ptrdiff_t>(len - i, i32xN::lanes));
    }
}

void fromFloats(const float* src, Vorn16s* dst, std::ptrdiff_t len, float factor) {
    const f32xN unit = splat<f32xN>(factor);
    for (std::ptrdiff_t i = 0; i < len; i += i16xN::lanes) {
        const i16xN x = narrowSat(truncSaturated(load<f32xN>(src + i) * unit),
                                  truncSaturated(load<f32xN>(src + i + f32xN::lanes) * unit));
        storeFirst(dst + i, x, std::min<std::ptrdiff_t>(len - i, i16xN::lanes));
    }
}

template <class Integer>
void logAddRuns(const Integer* src, Integer* srcDst, std::ptrdiff_t len, int scaleFactor) {
    const auto scale = static_cast<float>(GetScale_32s64f(scaleFactor));
    const float unit = powerOfTwo_32f(scaleFactor);
    Run a, b;
    for (std::ptrdiff_t i = 0; i < len; i += runLength) {
        const std::ptrdiff_t n = std::min(len - i, runLength);
        toFloats(src + i, a.value, n, scale);
        toFloats(srcDst + i, b.value, n, scale);
        vornsLogAddVec_32f_M7_sp(a.value, b.value, static_cast<int>(n));
        fromFloats(b.value, srcDst + i, n, unit);
    }
}

std::int32_t truncated(double x) {
    const f64x2 both = splat<f64x2>(x);
    return firstLane(truncToInt(both, both));
}

// The result of a fixed-point sum. highest: what r must be above to become the largest Vorn32s.
template <class Integer>
Integer storedSum(double r, double highest) {
    if constexpr (std::is_same_v<Integer, Vorn16s>) highest = SHRT_MAX;
    constexpr auto most = std::numeric_limits<Integer>::max(), least = std::numeric_limits<Integer>::min();
    if (r > highest) return most;
    if (r < least) return least;
    return static_cast<Integer>(truncated(r));
}

// Sums of up to six elements, in double.
template <class Integer>
Integer logSumShort(const Integer* src, std::ptrdiff_t len, double scale) {
    double acc = src[0] * scale;
    for (std::ptrdiff_t i = 1; i < len; ++i) acc = static_cast<float>(logAddConstantFirst(acc, src[i] * scale));
    return storedSum<Integer>(acc / scale, 2147483647.0);
}

template <class Integer>
Integer logSumRuns(const Integer* src, std::ptrdiff_t len, double scale) {
    struct {
        alignas(64) float value[1 + runLength + i16xN::lanes];
    } run;
    const auto single = static_cast<float>(scale);
    float acc;
    std::ptrdiff_t n = std::min(len, runLength);
    toFloats(src, run.value, n, single);
    vornsLogSum_32f_M7(run.value, &acc, static_cast<int>(n));
    for (std::ptrdiff_t i = n; i < len; i += n) {
        n = std::min(len - i, runLength);
        run.value[0] = acc;  // the sum so far is the first element of the next run
        toFloats(src + i, run.value + 1, n, single);
        vornsLogSum_32f_M7(run.value, &acc, static_cast<int>(n + 1));
    }
    // As a single, the largest Vorn32s is 2147483648.0: that value itself is not above it and converts to the smallest.
    return storedSum<Integer>(static_cast<float>(acc / scale), 2147483648.0);
}

template <class Integer>
Integer logSumOf(const Integer* src, std::ptrdiff_t len, int scaleFactor) {
    const double scale = GetScale_32s64f(scaleFactor);
    return len <= 6 ? logSumShort(src, len, scale) : logSumRuns(src, len, scale);
}

// ---- Log-subtract.

template <class V, class AnyAtOrAbove>
int anyElement(const typename V::Element* src, const typename V::Element* srcDst, std::ptrdiff_t len,
               AnyAtOrAbove anyAtOrAbove) {
    std::ptrdiff_t i = 0;
    for (; i + V::lanes <= len; i += V::lanes) {
        if (anyAtOrAbove(load<V>(src + i), load<V>(srcDst + i))) return 1;
    }
    for (; i < len; ++i) {
        if (anyAtOrAbove(splat<V>(src[i]), splat<V>(srcDst[i]))) return 1;
    }
    return 0;
}

// What the forms differ in: where the subtrahend counts as nothing, where the result counts as the logarithm of zero.
struct DoubleSubtraction {
    using Limits = LogLimits<double>;
    static constexpr double zero = Limits::zero, minExp = Limits::minExp, leastRest = 2.45e-308;
    template <class V>
    static VORN_INLINE auto stays(V a) {
        return a >= splat<V>(Limits::small);
    }
};
// In double too, with the limits of the single forms.
struct FloatSubtraction {
    using Limits = LogLimits<float>;
    static constexpr double zero = Limits::zero, minExp = Limits::minExpWide, leastRest = 1.0057e-37;
    template <class V>
    static VORN_INLINE auto stays(V a) {
        return a > splat<V>(zero);
    }
};

// ln(exp(a) - exp(a + d)). A difference of numbers that is not one (of infinities; of integers in an infinite unit)
// counts as far below. Fixed-point differences that wrapped may be above zero: any that leaves nothing stands for them.
template <class Subtraction, class V>
VORN_INLINE V logSubOf(V a, V d) {
    const V zero = splat<V>(Subtraction::zero);
    const V lowest = splat<V>(Subtraction::minExp), highest = splat<V>(700.0);
    const V rest = splat<V>(1.0) - expOfModerate(maxOf(minOf(d, highest), lowest));
    const V nearby = select(rest > splat<V>(Subtraction::leastRest), a + logOfNormal(rest), zero);
    return select(d >= lowest, nearby, select(Subtraction::stays(a), a, zero));
}

// What is not a number leaves none.
template <class V>
VORN_INLINE V ofNumbers(V a, V b, V result) {
    return select(unordered(a, b), a + b, result);
}

VORN_INLINE f64xN logSubOf(f64xN a, f64xN b) { return ofNumbers(a, b, logSubOf<DoubleSubtraction>(a, b - a)); }
VORN_INLINE f32xN logSubOf(f32xN a, f32xN b) {
    const f32xN d = b - a;
    return ofNumbers(a, b,
                     narrow(logSubOf<FloatSubtraction>(widenLow(a), widenLow(d)),
                            logSubOf<FloatSubtraction>(widenHigh(a), widenHigh(d))));
}

// The logarithm is added to the integer without being scaled back, and the floor is an integer value too.
VORN_INLINE i32xN logSubOf(i32xN a, i32xN b, f32xN scale) {
    const auto clamped = [](f64xN x) {
        return minOf(maxOf(x, splat<f64xN>(-2147483648.0)), splat<f64xN>(2147483647.0));
    };
    const f32xN d = (toFloat(b) - toFloat(a)) * scale;
    return truncToInt(clamped(logSubOf<FloatSubtraction>(toDoubleLow(a), widenLow(d))),
                      clamped(logSubOf<FloatSubtraction>(toDoubleHigh(a), widenHigh(d))));
}
VORN_INLINE i16xN logSubOf(i16xN a, i16xN b, f32xN scale) {
    const auto lowBits = [](i32xN x) { return shiftRight<16>(shiftLeft<16>(x)); };  // 16 bits wrap
    return narrowSat(lowBits(logSubOf(widenLow(a), widenLow(b), scale)),
                     lowBits(logSubOf(widenHigh(a), widenHigh(b), scale)));
}

// The fixed forms have a scale, as a number: see Constant for why not as a register.
template <class T, class... Scale>
void logSubElements(const T* src, T* srcDst, std::ptrdiff_t len, Scale... scale) {
    using V = Wide<T>;
    std::ptrdiff_t i = 0;
    for (; i + V::lanes <= len; i += V::lanes)
        store(srcDst + i, logSubOf(load<V>(src + i), load<V>(srcDst + i), splat<f32xN>(scale)...));
    if (i < len) {
        const std::ptrdiff_t n = len - i;
        storeFirst(srcDst + i, logSubOf(loadFirst<V>(src + i, n), loadFirst<V>(srcDst + i, n), splat<f32xN>(scale)...),
                   n);
    }
}

}  // namespace

void advance(LogSumSoFar<f32x4>& sum, const Vorn32f* src, std::ptrdiff_t made, std::ptrdiff_t len) {
    advanceSum(sum, src, made, len);
}
void advance(LogSumSoFar<f64x2>& sum, const Vorn64f* src, std::ptrdiff_t made, std::ptrdiff_t len) {
    advanceSum(sum, src, made, len);
}
Vorn32f finish(LogSumSoFar<f32x4>& sum, const Vorn32f* src, std::ptrdiff_t len) { return finishedSum(sum, src, len); }
Vorn64f finish(LogSumSoFar<f64x2>& sum, const Vorn64f* src, std::ptrdiff_t len) { return finishedSum(sum, src, len); }

int ParamErr64f(const Vorn64f* src, const Vorn64f* srcDst, int len) {
    return anyElement<f64xN>(src, srcDst, len, [](f64xN a, f64xN b) { return any(b - a >= splat<f64xN>(0.0)); });
}
int ParamErr32f(const Vorn32f* src, const Vorn32f* srcDst, int len) {
    return anyElement<f32xN>(src, srcDst, len, [](f32xN a, f32xN b) { return any(b - a >= splat<f32xN>(0.0f)); });
}
int ParamErr32s(const Vorn32s* src, const Vorn32s* srcDst, int len) {
    return anyElement<i32xN>(src, srcDst, len, [](i32xN a, i32xN b) { return any(b - a > splat<i32xN>(-1)); });
}
int ParamErr16s(const Vorn16s* src, const Vorn16s* srcDst, int len) {
    return anyElement<i16xN>(src, srcDst, len, [](i16xN a, i16xN b) { return any(!(a > b)); });
}

void logAddFixed(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor) {
    logAddRuns(src, srcDst, len, scaleFactor);
}
void logAddFixed(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor) {
    logAddRuns(src, srcDst, len, scaleFactor);
}
void logSumFixed(const Vorn32s* src, Vorn32s* dst, int len, int scaleFactor) {
    dst[0] = logSumOf(src, len, scaleFactor);
}
void logSumFixed(const Vorn16s* src, Vorn16s* dst, int len, int scaleFactor) {
    dst[0] = logSumOf(src, len, scaleFactor);
}

void logSub(const Vorn64f* src, Vorn64f* srcDst, int len) { logSubElements(src, srcDst, len); }
void logSub(const Vorn32f* src, Vorn32f* srcDst, int len) { logSubElements(src, srcDst, len); }
void logSubFixed(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor) {
    logSubElements(src, srcDst, len, GetScale_32s32f(scaleFactor));
}
void logSubFixed(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor) {
    logSubElements(src, srcDst, len, GetScale_32s32f(scaleFactor));
}

}  // namespace vorn

using namespace vorn;

void vornsLogAddVec_32f_M7_sp(const Vorn32f* src, Vorn32f* srcDst, int len) { logAddVector<f32x4>(src, srcDst, len); }
void vornsLogAddVec_64f_M7(const Vorn64f* src, Vorn64f* srcDst, int len) { logAddVector<f64x2>(src, srcDst, len); }
void vornsLogSum_32f_M7(const Vorn32f* src, Vorn32f* dst, int len) { dst[0] = logSum<f32x4>(src, len); }
void vornsLogSum_64f_M7(const Vorn64f* src, Vorn64f* dst, int len) { dst[0] = logSum<f64x2>(src, len); }
