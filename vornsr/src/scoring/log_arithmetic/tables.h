// The polynomials of f(d) = ln(1 + exp(d)) for d <= 0 that log-addition is defined by, and its limits.
//
// Three intervals, split at -3.5 and -9 in double and at -2.55 and -6.8 in single; in each a polynomial in the distance
// t of d from the interval's upper end, highest power first. Largest error against f: 3.2e-15 for the double tables,
// 4.6e-9 for the single ones; evaluated in the element type 6e-14 and 1.6e-7.
#pragma once

#include <cstddef>

namespace vorn {

template <class T>
struct LogLimits;

template <>
struct LogLimits<float> {
    static constexpr float zero = -4500000.0f;             // stands for the logarithm of zero
    static constexpr float small = -4500000.0f;            // below this a value counts as the logarithm of zero
    static constexpr float minExp = -15.319587707519531f;  // below this difference the smaller term is dropped
    static constexpr float upperSplit = -2.55f;
    static constexpr float lowerSplit = -6.8f;
    static constexpr double minExpWide = -15.3195879547406;  // minExp where the difference has been widened to double
};

template <>
struct LogLimits<double> {
    static constexpr double zero = -1.0e10;
    static constexpr double small = -9.0e9;
    static constexpr double minExp = -23.0258509299405;
    static constexpr double upperSplit = -3.5;
    static constexpr double lowerSplit = -9.0;
};

inline constexpr int termsFloat = 11;
inline constexpr int termsDouble = 22;

// clang-format off
inline constexpr double P1[termsDouble] = {
    2.4223551556971103e-14, 1.2811707930131747e-12, 2.979508062290527e-11, 4.091290155130968e-10,
    3.717428002038248e-09, 2.3532270503994952e-08, 1.055613856863438e-07, 3.320992500314504e-07,
    7.091358966640867e-07, 1.0406444519836742e-06, 1.6353412792505214e-06, 3.844457955118119e-06,
    1.3867656181255913e-06, -2.5487163524155248e-05, 4.065812849423804e-07, 0.0003473626701744988,
    3.4289110129737e-08, -0.005208327741081266, 5.587714108476228e-10, 0.12500000002958675,
    0.5000000000006226, 0.6931471805599475};

inline constexpr double P2[termsDouble] = {
    1.3708407243051937e-19, 9.601624129865304e-18, 3.191870701452749e-16, 6.702281854356589e-15,
    9.973092519816427e-14, 1.1165229253200852e-12, 9.711578249998531e-12, 6.632489267913665e-11,
    3.487750749690926e-10, 1.277933984587361e-09, 1.6292813548790022e-09, -1.909513758655842e-08,
    -1.8820558187982419e-07, -9.461042535100208e-07, -2.209235331735495e-06, 9.625041106025868e-06,
    0.00014699683220535022, 0.0009831490265710303, 0.004464163447126563, 0.014226511939950807,
    0.0293122307513593, 0.02975041827262059};

inline constexpr double P3[termsDouble] = {
    1.7034225392923792e-27, 3.0781354635598557e-25, 2.6542272637469554e-23, 1.4576061250276504e-21,
    5.745038767733748e-20, 1.73794899924144e-18, 4.217783891653166e-17, 8.4810302862868775e-16,
    1.4486369363407485e-14, 2.1432698000428128e-13, 2.7867099954008822e-12, 3.2140356172044866e-11,
    3.300948845025808e-10, 3.0140517373824124e-09, 2.4295529030919333e-08, 1.7072955802867207e-07,
    1.0263887628748916e-06, 5.137002703123242e-06, 2.0558151089723745e-05, 6.168967511733263e-05,
    0.00012339457601536868, 0.00012340218972425103};

// The tables of the single forms: doubles for the scalar log-add, rounded to single in the single kernels.
inline constexpr double P1_F[termsFloat] = {
    -6.780103715801104e-07, -8.27710395983359e-06, -3.1261214564328406e-05, 2.1955075181092877e-05,
    0.0004062108907165097, 6.910012478334781e-05, -0.005163737400850404, 1.5878560708463796e-05,
    0.125002818406354, 0.5000001923981635, 0.6931471827215062};

inline constexpr double P2_F[termsFloat] = {
    -7.083237702375219e-09, -1.8491608098957698e-07, -2.094649399521823e-06, -1.2793327302109763e-05,
    -3.4842057389070787e-05, 0.00010764583059022215, 0.0016847989052690858, 0.009582361774741538,
    0.033592464138937767, 0.07242669818681209, 0.07518323027822499};

inline constexpr double P3_F[termsFloat] = {
    6.536044962123068e-12, 3.4510675551141127e-10, 8.230386128280675e-09, 1.183290602139997e-07,
    1.157908356720776e-06, 8.25762745567427e-06, 4.458031414389642e-05, 0.00018342101716467817,
    0.0005549481290265323, 0.0011123966452324845, 0.0011131507706311817};
// clang-format on

// Hands out the three tables of the double forms, upper interval first.
inline void GetLogAddConst(const double** p1, const double** p2, const double** p3) {
    *p1 = P1;
    *p2 = P2;
    *p3 = P3;
}

// The same for the single forms.
inline void GetLogAddConst_F(const double** p1, const double** p2, const double** p3) {
    *p1 = P1_F;
    *p2 = P2_F;
    *p3 = P3_F;
}

}  // namespace vorn
