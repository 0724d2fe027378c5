// Log-domain arithmetic as plain scalar code, one element after the other.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "vornsr/types.h"

namespace model {

// Coefficients of ln(1 + exp(d)) on the three intervals, highest power first: of the double forms, and of the single
// ones.
// clang-format off
inline constexpr double p1[22] = {
    2.4223551556971103e-14, 1.2811707930131747e-12, 2.979508062290527e-11, 4.091290155130968e-10,
    3.717428002038248e-09, 2.3532270503994952e-08, 1.055613856863438e-07, 3.320992500314504e-07,
    7.091358966640867e-07, 1.0406444519836742e-06, 1.6353412792505214e-06, 3.844457955118119e-06,
    1.3867656181255913e-06, -2.5487163524155248e-05, 4.065812849423804e-07, 0.0003473626701744988,
    3.4289110129737e-08, -0.005208327741081266, 5.587714108476228e-10, 0.12500000002958675, 0.5000000000006226,
    0.6931471805599475};
inline constexpr double p2[22] = {
    1.3708407243051937e-19, 9.601624129865304e-18, 3.191870701452749e-16, 6.702281854356589e-15,
    9.973092519816427e-14, 1.1165229253200852e-12, 9.711578249998531e-12, 6.632489267913665e-11,
    3.487750749690926e-10, 1.277933984587361e-09, 1.6292813548790022e-09, -1.909513758655842e-08,
    -1.8820558187982419e-07, -9.461042535100208e-07, -2.209235331735495e-06, 9.625041106025868e-06,
    0.00014699683220535022, 0.0009831490265710303, 0.004464163447126563, 0.014226511939950807, 0.0293122307513593,
    0.02975041827262059};
inline constexpr double p3[22] = {
    1.7034225392923792e-27, 3.0781354635598557e-25, 2.6542272637469554e-23, 1.4576061250276504e-21,
    5.745038767733748e-20, 1.73794899924144e-18, 4.217783891653166e-17, 8.4810302862868775e-16,
    1.4486369363407485e-14, 2.1432698000428128e-13, 2.7867099954008822e-12, 3.2140356172044866e-11,
    3.300948845025808e-10, 3.0140517373824124e-09, 2.4295529030919333e-08, 1.7072955802867207e-07,
    1.0263887628748916e-06, 5.137002703123242e-06, 2.0558151089723745e-05, 6.168967511733263e-05,
    0.00012339457601536868, 0.00012340218972425103};
inline constexpr double p1single[11] = {
    -6.780103715801104e-07, -8.27710395983359e-06, -3.1261214564328406e-05, 2.1955075181092877e-05,
    0.0004062108907165097, 6.910012478334781e-05, -0.005163737400850404, 1.5878560708463796e-05, 0.125002818406354,
    0.5000001923981635, 0.6931471827215062};
inline constexpr double p2single[11] = {
    -7.083237702375219e-09, -1.8491608098957698e-07, -2.094649399521823e-06, -1.2793327302109763e-05,
    -3.4842057389070787e-05, 0.00010764583059022215, 0.0016847989052690858, 0.009582361774741538,
    0.033592464138937767, 0.07242669818681209, 0.07518323027822499};
inline constexpr double p3single[11] = {
    6.536044962123068e-12, 3.4510675551141127e-10, 8.230386128280675e-09, 1.183290602139997e-07,
    1.157908356720776e-06, 8.25762745567427e-06, 4.458031414389642e-05, 0.00018342101716467817, 0.0005549481290265323,
    0.0011123966452324845, 0.0011131507706311817};
// clang-format on

// The same rounded to nearest single, in whatever mode the model runs.
struct SingleTable {
    float p[11];
};
constexpr SingleTable roundedToSingle(const double (&table)[11]) {
    SingleTable rounded{};
    for (int k = 0; k < 11; ++k) rounded.p[k] = static_cast<float>(table[k]);
    return rounded;
}
inline constexpr SingleTable p1rounded = roundedToSingle(p1single), p2rounded = roundedToSingle(p2single),
                             p3rounded = roundedToSingle(p3single);

// What the processor's maximum and minimum give: the second operand when the two are equal or not comparable.
template <class T>
T maxOf(T a, T b) {
    return a > b ? a : b;
}
template <class T>
T minOf(T a, T b) {
    return a < b ? a : b;
}

// Conversion of the processor: out of range is the smallest integer.
inline std::int32_t toInt(double x) {
    return x > -2147483649.0 && x < 2147483648.0 ? static_cast<std::int32_t>(x)
                                                 : std::numeric_limits<std::int32_t>::min();
}

// 2^-sf with infinity and zero at the ends of the single range.
inline float scaleSingle(long sf) {
    if (sf <= -128) return std::numeric_limits<float>::infinity();
    if (sf >= 150) return 0.0f;
    return std::ldexp(1.0f, static_cast<int>(-sf));
}
inline double scaleDouble(long sf) {
    if (sf <= -1024) return std::numeric_limits<double>::infinity();
    if (sf > 1074) return 0.0;
    return std::ldexp(1.0, static_cast<int>(-sf));
}

// inGroup: a difference exactly on a split belongs to the lower interval; outside of groups to the upper one. What is
// not a number gives none.
inline float logAdd(float a, float b, bool inGroup) {
    if (std::isnan(a) || std::isnan(b)) return std::numeric_limits<float>::quiet_NaN();
    const float m = maxOf(a, b);
    const float d = minOf(a, b) - m;
    if (d < -15.319587707519531f) return m < -4500000.0f ? -4500000.0f : m;
    const float s1 = -2.55f, s2 = -6.8f;
    const float* p;
    float t;
    if (inGroup ? d > s1 : d >= s1) {
        p = p1rounded.p, t = d;
    } else if (inGroup ? d > s2 : d >= s2) {
        p = p2rounded.p, t = d - s1;
    } else {
        p = p3rounded.p, t = d - s2;
    }
    float f = p[0];
    for (int k = 1; k < 11; ++k) {
        f = f * t;
        f = f + p[k];
    }
    return m + f;
}

inline double logAdd(double a, double b, bool inGroup) {
    if (std::isnan(a) || std::isnan(b)) return std::numeric_limits<double>::quiet_NaN();
    const double m = maxOf(a, b);
    const double d = minOf(a, b) - m;
    if (d < -23.0258509299405) return m < -9.0e9 ? -1.0e10 : m;
    const double* p;
    double t;
    if (inGroup ? d > -3.5 : d >= -3.5) {
        p = p1, t = d;
    } else if (inGroup ? d > -9.0 : d >= -9.0) {
        p = p2, t = d + 3.5;
    } else {
        p = p3, t = d + 9.0;
    }
    const double z = t * t;
    double even = p[0];
    for (int k = 2; k <= 20; k += 2) even = even * z + p[k];
    double odd = p[1];
    for (int k = 3; k <= 21; k += 2) odd = odd * z + p[k];
    const double withEven = m + even * t;
    return withEven + odd;
}

template <class T>
inline constexpr int groupOf = 4;
template <>
inline constexpr int groupOf<double> = 2;

template <class T>
void logAddVector(const T* src, T* srcDst, int len) {
    const int grouped = len - len % groupOf<T>;
    for (int i = 0; i < len; ++i) srcDst[i] = logAdd(src[i], srcDst[i], i < grouped);
}

inline float logSum(const float* src, int len) {
    float acc = src[0];
    int i = 1;
    if (len >= 8) {
        float lane[4] = {src[0], src[1], src[2], src[3]};
        for (i = 4; i + 4 <= len; i += 4) {
            for (int k = 0; k < 4; ++k) lane[k] = logAdd(lane[k], src[i + k], true);
        }
        lane[0] = logAdd(lane[0], lane[2], true);
        lane[1] = logAdd(lane[1], lane[3], true);
        acc = logAdd(lane[0], lane[1], true);
    }
    for (; i < len; ++i) acc = logAdd(acc, src[i], false);
    return acc;
}

inline double logSum(const double* src, int len) {
    double acc = src[0];
    int i = 1;
    if (len > 4) {
        double lane[2] = {src[0], src[1]};
        for (i = 2; i + 2 <= len; i += 2) {
            for (int k = 0; k < 2; ++k) lane[k] = logAdd(lane[k], src[i + k], true);
        }
        acc = logAdd(lane[0], lane[1], true);
    }
    for (; i < len; ++i) acc = logAdd(acc, src[i], false);
    return acc;
}

template <class Integer>
Integer truncSaturated(float x) {
    if (x > 2147483520.0f) return std::numeric_limits<Integer>::max();
    const std::int32_t i = toInt(x);
    if (i > std::numeric_limits<Integer>::max()) return std::numeric_limits<Integer>::max();
    if (i < std::numeric_limits<Integer>::min()) return std::numeric_limits<Integer>::min();
    return static_cast<Integer>(i);
}

template <class Integer>
void logAddFixed(const Integer* src, Integer* srcDst, int len, int scaleFactor) {
    const float scale = static_cast<float>(scaleDouble(scaleFactor));
    const float unit = scaleSingle(-static_cast<long>(scaleFactor));
    for (int first = 0; first < len; first += 128) {
        const int n = std::min(128, len - first);
        std::vector<float> a(n), b(n);
        for (int i = 0; i < n; ++i) {
            a[i] = static_cast<float>(src[first + i]) * scale;
            b[i] = static_cast<float>(srcDst[first + i]) * scale;
        }
        logAddVector(a.data(), b.data(), n);
        for (int i = 0; i < n; ++i) srcDst[first + i] = truncSaturated<Integer>(b[i] * unit);
    }
}

inline double logAddShort(double acc, double v) {
    if (std::isnan(acc) || std::isnan(v)) return std::numeric_limits<double>::quiet_NaN();
    const double m = maxOf(acc, v);
    const double d = -std::fabs(acc - v);
    if (!(d >= -15.3195879547406)) return maxOf(m, -4500000.0);
    const double* p;
    double t;
    if (d > -2.55) {
        p = p1single, t = d;
    } else if (d > -6.8) {
        p = p2single, t = d + 2.55;
    } else {
        p = p3single, t = d + 6.8;
    }
    double chain = p[0];
    for (int k = 1; k <= 9; ++k) chain = chain * t + p[k];
    return (m + p[10]) + t * chain;
}

template <class Integer>
Integer logSumFixed(const Integer* src, int len, int scaleFactor) {
    if (len == 1) return src[0];
    const double s = scaleDouble(scaleFactor);
    double r, top;
    if (len <= 6) {
        double acc = src[0] * s;
        for (int i = 1; i < len; ++i) acc = static_cast<double>(static_cast<float>(logAddShort(acc, src[i] * s)));
        r = acc / s;
        top = 2147483647.0;
    } else {
        const float single = static_cast<float>(s);
        float acc = 0;
        for (int first = 0; first < len; first += 128) {
            std::vector<float> run;
            if (first > 0) run.push_back(acc);
            for (int i = first; i < std::min(first + 128, len); ++i) run.push_back(static_cast<float>(src[i]) * single);
            acc = logSum(run.data(), static_cast<int>(run.size()));
        }
        r = static_cast<float>(static_cast<double>(acc) / s);
        top = 2147483648.0;
    }
    if (sizeof(Integer) == 2) {
        if (r > 32767) return 32767;
        if (r < -32768) return -32768;
    } else {
        if (r > top) return std::numeric_limits<Integer>::max();
        if (r < -2147483648.0) return std::numeric_limits<Integer>::min();
    }
    return static_cast<Integer>(static_cast<std::uint32_t>(toInt(r)));
}

// Log-subtract takes its exponential and its logarithm from the caller, for their rounding is their own matter.
template <class Integer, class Exp, class Log>
Integer logSubInteger(Integer a, Integer b, int scaleFactor, Exp exponential, Log logarithm) {
    const float scale = scaleSingle(scaleFactor);
    const float narrow = (static_cast<float>(b) - static_cast<float>(a)) * scale;
    const double d = narrow;
    double r;
    if (d >= -15.3195879547406) {
        const double e = exponential(d);
        r = 1 - e > 1.0057e-37 ? a + logarithm(1 - e) : -4500000.0;
    } else {
        r = maxOf<double>(a, -4500000.0);
    }
    r = std::max(-2147483648.0, std::min(2147483647.0, r));
    return static_cast<Integer>(static_cast<std::uint32_t>(toInt(r)));
}

}  // namespace model
