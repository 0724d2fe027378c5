// Smoothed power spectra.
#include <cmath>
#include <cstdint>
#include <type_traits>

#include "aurora/noise_reduction/common.h"
#include "model/noise_reduction.h"

namespace {

using namespace noise_reduction_test;
using test::Guarded;
using test::Offset;
using test::Random;
using test::sameBits;

// One face for all forms; those without a scale factor do not look at it.
VornStatus smooth(const float* src, float* dst, int len, int) {
    return vornsSmoothedPowerSpectrumAurora_32f(src, dst, len);
}
VornStatus smooth(const Vorn16s* src, Vorn16s* dst, int len, int) {
    return vornsSmoothedPowerSpectrumAurora_16s(src, dst, len);
}
VornStatus smooth(const Vorn32s* src, Vorn32s* dst, int len, int sf) {
    return vornsSmoothedPowerSpectrumAurora_32s_Sfs(src, dst, len, sf);
}
VornStatus smooth(const Vorn32s* src, Vorn64s* dst, int len, int sf) {
    return vornsSmoothedPowerSpectrumAurora_32s64s_Sfs(src, dst, len, sf);
}
template <class Result, class T>
std::vector<Result> expectedOf(const std::vector<T>& src, int sf) {
    if constexpr (std::is_same_v<T, Vorn32s>) {
        return model::smoothedPower<Result>(src, sf);
    } else {
        return model::smoothedPower(src);
    }
}

template <class T, class Result>
void expectModel(const std::vector<T>& x, int sf) {
    const auto expected = expectedOf<Result>(x, sf);
    const Guarded<T> src(x);
    const Guarded<Result> dst(expected.size());
    ASSERT_EQ(smooth(src.data(), dst.data(), static_cast<int>(x.size()), sf), vornStsNoErr);
    EXPECT_TRUE(sameBits(dst.data(), expected.data(), expected.size())) << x.size() << " elements, factor " << sf;
    EXPECT_TRUE(dst.surroundingsUntouched());
    EXPECT_EQ(src.values().size(), x.size());
    if constexpr (std::is_same_v<T, Result>) {
        Guarded<T> both(x);
        ASSERT_EQ(smooth(both.data(), both.data(), static_cast<int>(x.size()), sf), vornStsNoErr);
        EXPECT_TRUE(sameBits(both.data(), expected.data(), expected.size())) << "in place, " << x.size();
    }
}

TEST(SmoothedPower, FormsWithoutAScaleEqualTheModel) {
    Random random(1);
    for (std::size_t len = 4; len <= 4 * 150; len += 4) {
        for (int turn = 0; turn < 4; ++turn) {
            expectModel<float, float>(floatsOf(random, len, turn), 0);
            expectModel<Vorn16s, Vorn16s>(integersOf<Vorn16s>(random, len, turn), 0);
        }
        expectModel<Vorn16s, Vorn16s>(random.integers<Vorn16s>(len, -200, 200), 0);
        expectModel<Vorn16s, Vorn16s>(random.pick<Vorn16s>({-128, -127, 127, 128, 129, 181, 182, 255, 256}, len), 0);
    }
}

TEST(SmoothedPower, ScaledFormsEqualTheModel) {
    Random random(2);
    for (std::size_t len = 4; len <= 4 * 75; len += 4) {
        for (int turn = 0; turn < 4; ++turn) {
            const auto x = integersOf<Vorn32s>(random, len, turn);
            for (int sf : {0, 31, -3}) {
                expectModel<Vorn32s, Vorn32s>(x, sf);
                expectModel<Vorn32s, Vorn64s>(x, sf);
            }
        }
    }
    for (int sf : scaleFactors) {
        for (std::size_t len : {4, 8, 68, 132}) {
            for (int turn = 0; turn < 6; ++turn) {
                // The last two turns: one bit and its neighbours, so that every place of the sum is met.
                auto x = integersOf<Vorn32s>(random, len, turn);
                if (turn >= 4) {
                    for (Vorn32s& v : x) v = static_cast<Vorn32s>(1u << random.integer(0, 31)) - (turn - 4);
                }
                expectModel<Vorn32s, Vorn32s>(x, sf);
                expectModel<Vorn32s, Vorn64s>(x, sf);
            }
        }
    }
}

template <class T, class Result>
void expectNoAlignmentMatters() {
    Random random(3);
    for (std::size_t len : {4, 68, 264, 1028}) {
        const auto x = valuesOf(random, len, 0, T());
        const auto expected = expectedOf<Result>(x, 5);
        for (std::size_t bytes = 0; bytes < 64; bytes += sizeof(T)) {
            for (bool moveSource : {false, true}) {
                if (!moveSource && bytes % sizeof(Result) != 0) continue;
                Offset<T> src(len, moveSource ? bytes : 0);
                Offset<Result> dst(expected.size(), moveSource ? 0 : bytes);
                src.assign(x);
                ASSERT_EQ(smooth(src.data(), dst.data(), static_cast<int>(len), 5), vornStsNoErr);
                EXPECT_TRUE(sameBits(dst.data(), expected.data(), expected.size())) << len << " at " << bytes;
                EXPECT_TRUE(dst.surroundingsUntouched());
            }
        }
    }
}
TEST(SmoothedPower, NoAlignmentMatters) {
    expectNoAlignmentMatters<float, float>();
    expectNoAlignmentMatters<Vorn16s, Vorn16s>();
    expectNoAlignmentMatters<Vorn32s, Vorn32s>();
    expectNoAlignmentMatters<Vorn32s, Vorn64s>();
}

TEST(SmoothedPower, LiteralSingles) {
    const Guarded<float> four = {1, 2, 3, 4}, dst(2);
    ASSERT_EQ(vornsSmoothedPowerSpectrumAurora_32f(four, dst, 4), vornStsNoErr);
    EXPECT_EQ(dst[0], 13.0f) << "(1 + 9 + 16) / 2";
    EXPECT_EQ(dst[1], 4.0f) << "the last bin, whole";
    EXPECT_TRUE(dst.surroundingsUntouched());
    const Guarded<float> eight = {1, -2, 3, 4, 5, -6, 7, 8}, three(3);
    ASSERT_EQ(vornsSmoothedPowerSpectrumAurora_32f(eight, three, 8), vornStsNoErr);
    EXPECT_EQ(three[0], 13.0f);
    EXPECT_EQ(three[1], 87.0f) << "(25 + 36 + 49 + 64) / 2";
    EXPECT_EQ(three[2], 4.0f);
}

TEST(SmoothedPower, LiteralIntegers) {
    Vorn16s shorts[4] = {};
    const Vorn16s odd[] = {1, 181, 3, 3, 1, 1, 3, 3, -32768, -32768, -32768, -32768};
    ASSERT_EQ(vornsSmoothedPowerSpectrumAurora_16s(odd, shorts, 12), vornStsNoErr);
    EXPECT_EQ(shorts[0], 8) << "0 + 4 + 4";
    EXPECT_EQ(shorts[1], 8) << "0 + 0 + 4 + 4";
    EXPECT_EQ(shorts[2], 32767) << "2^31, saturated";
    EXPECT_EQ(shorts[3], 32761);
    const Vorn16s loud[] = {0, -32768, 256, 0};
    ASSERT_EQ(vornsSmoothedPowerSpectrumAurora_16s(loud, shorts, 4), vornStsNoErr);
    EXPECT_EQ(shorts[0], 32767) << "32768, saturated";
    EXPECT_EQ(shorts[1], 32767);

    const Vorn32s least = INT32_MIN;
    struct Case {
        int scaleFactor;
        Vorn32s last32, middle32;
        Vorn64s last64, middle64;
    };
    // 46341^2 wraps to -2147479015; the middle is 2^63, which counts as 2^63 - 1.
    for (const Case& c :
         {Case{0, -2147479015, INT32_MAX, -2147479015, INT64_MAX},
          Case{64, -2147479015, INT32_MAX, -2147479015, INT64_MAX},
          Case{4, -134217439, INT32_MAX, -134217439, INT64_MAX >> 4}, Case{32, -1, 2147483647, -1, 2147483647},
          Case{63, -1, 0, -1, 0}, Case{-1, INT32_MIN, -2, -4294958030, -2},
          Case{-64, -2147479015, INT32_MAX, -2147479015, INT64_MAX},
          Case{INT32_MIN, -2147479015, INT32_MAX, -2147479015, INT64_MAX}}) {
        const Vorn32s src[] = {65536, 46341, 0, 0, least, least, least, least};
        Vorn32s dst32[3];
        Vorn64s dst64[3];
        ASSERT_EQ(vornsSmoothedPowerSpectrumAurora_32s_Sfs(src, dst32, 8, c.scaleFactor), vornStsNoErr);
        ASSERT_EQ(vornsSmoothedPowerSpectrumAurora_32s64s_Sfs(src, dst64, 8, c.scaleFactor), vornStsNoErr);
        EXPECT_EQ(dst32[1], c.middle32) << c.scaleFactor;
        EXPECT_EQ(dst32[2], c.last32) << c.scaleFactor;
        EXPECT_EQ(dst64[1], c.middle64) << c.scaleFactor;
        EXPECT_EQ(dst64[2], c.last64) << c.scaleFactor;
    }
    for (Vorn32s other : {0, 7, INT32_MAX}) {
        const Vorn32s src[] = {other, 65536, other, other};
        Vorn32s dst[2];
        ASSERT_EQ(vornsSmoothedPowerSpectrumAurora_32s_Sfs(src, dst, 4, 0), vornStsNoErr);
        EXPECT_EQ(dst[1], 0) << "2^32 wraps, whatever the other bins";
    }
    const Vorn32s wide[] = {65536, 1, 0, 0};  // 2^31
    Vorn32s dst[2];
    ASSERT_EQ(vornsSmoothedPowerSpectrumAurora_32s_Sfs(wide, dst, 4, 0), vornStsNoErr);
    EXPECT_EQ(dst[0], INT32_MAX);
    ASSERT_EQ(vornsSmoothedPowerSpectrumAurora_32s_Sfs(wide, dst, 4, 1), vornStsNoErr);
    EXPECT_EQ(dst[0], 1 << 30);
}

// Twice all values but the last, and the last, are the squares of all elements.
TEST(SmoothedPower, KeepsTheSumOfSquares) {
    Random random(4);
    for (std::size_t len : {4, 64, 256, 1000}) {
        const auto x = random.integers<Vorn32s>(len, -1000, 1000);
        double squares = 0;
        Floats single;
        Longs even;  // even numbers: nothing is lost in the halves
        for (Vorn32s v : x) {
            single.push_back(static_cast<float>(v));
            even.push_back(2 * v);
            squares += static_cast<double>(v) * v;
        }
        Floats power(len / 4 + 1);
        ASSERT_EQ(vornsSmoothedPowerSpectrumAurora_32f(single.data(), power.data(), static_cast<int>(len)),
                  vornStsNoErr);
        std::vector<Vorn64s> exact(len / 4 + 1);
        ASSERT_EQ(vornsSmoothedPowerSpectrumAurora_32s64s_Sfs(even.data(), exact.data(), static_cast<int>(len), 0),
                  vornStsNoErr);
        double sum = power.back();
        Vorn64s exactSum = exact.back();
        for (std::size_t k = 0; k + 1 < power.size(); ++k) {
            sum += 2.0 * power[k];
            exactSum += 2 * exact[k];
        }
        EXPECT_NEAR(sum, squares, 1e-6 * squares);
        EXPECT_EQ(exactSum, static_cast<Vorn64s>(4 * squares));
    }
}

// A sine of the frequency of a bin, through the library's own transform: bins 2 k and 2 k + 1 make value k.
TEST(SmoothedPower, FindsASineInTheTransform) {
    constexpr int order = 8, n = 1 << order;
    VornsFFTSpec* spec = nullptr;
    ASSERT_EQ(vornsFFTInitAlloc_R_32f(&spec, order, 8, 0), vornStsNoErr);
    for (int bin : {1, 2, 40, 41, 126, 127}) {
        float x[n], spectrum[n], power[n / 4 + 1];
        for (int i = 0; i < n; ++i) x[i] = static_cast<float>(std::sin(2 * M_PI * bin * i / n));
        ASSERT_EQ(vornsFFTFwd_RToPerm_32f(x, spectrum, spec, nullptr), vornStsNoErr);
        ASSERT_EQ(vornsSmoothedPowerSpectrumAurora_32f(spectrum, power, n), vornStsNoErr);
        for (int k = 0; k <= n / 4; ++k) {
            EXPECT_NEAR(power[k], k == bin / 2 ? 0.5f * (n / 2) * (n / 2) : 0.0f, 0.1f) << "bin " << bin << " at " << k;
        }
    }
    EXPECT_EQ(vornsFFTFree_R_32f(spec), vornStsNoErr);
}

// What singles give follows the caller's mode; integers know none.
TEST(SmoothedPower, RoundingModes) {
    Random random(5);
    for (unsigned mode : modes) {
        const test::RoundingMode inMode(mode);
        for (std::size_t len : {4, 40, 256}) {
            expectModel<float, float>(random.floats(len, -2.0, 2.0), 0);
            expectModel<Vorn16s, Vorn16s>(random.integers<Vorn16s>(len, -150, 150), 0);
            expectModel<Vorn32s, Vorn32s>(random.integers<Vorn32s>(len), 34);
        }
        EXPECT_EQ(test::RoundingMode::current(), mode);
    }
}

// A result that goes past the cache, against pieces that do not.
TEST(SmoothedPower, LongSpectra) {
    constexpr int values = (33 << 20) / 8, len = 4 * values, piece = 4096;
    std::vector<Vorn32s> src(len);
    for (std::size_t i = 0; i < src.size(); ++i) src[i] = static_cast<Vorn32s>(i * 2654435761u);
    std::vector<Vorn64s> dst(values + 1), part(piece / 4 + 1);
    ASSERT_EQ(vornsSmoothedPowerSpectrumAurora_32s64s_Sfs(src.data(), dst.data(), len, 1), vornStsNoErr);
    for (std::size_t start = 0; start + piece <= src.size(); start += piece - 4) {
        ASSERT_EQ(vornsSmoothedPowerSpectrumAurora_32s64s_Sfs(&src[start], part.data(), piece, 1), vornStsNoErr);
        ASSERT_TRUE(sameBits(&dst[start / 4 + 1], &part[1], piece / 4 - 1)) << start;
    }
}

template <class T, class Result>
void expectChecks() {
    struct Arguments {
        Guarded<T> in = Guarded<T>(std::vector<T>(8));
        Guarded<Result> out = Guarded<Result>(3);
        const T* src = in.data();
        Result* dst = out.data();
        int len = 8;
    };
    using A = Arguments;
    test::expectCheckOrder<A>([] { return A(); }, [](A& a) { return smooth(a.src, a.dst, a.len, 0); },
                              [](A& a) { return a.out.untouched(); },
                              {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                               {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                               {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
                               {"len -4", vornStsSizeErr, [](A& a) { a.len = -4; }},
                               {"len 1", vornStsSizeErr, [](A& a) { a.len = 1; }},
                               {"len 5", vornStsSizeErr, [](A& a) { a.len = 5; }},
                               {"len 6", vornStsSizeErr, [](A& a) { a.len = 6; }},
                               {"least len", vornStsSizeErr, [](A& a) { a.len = INT32_MIN; }}});
}
TEST(SmoothedPower, ChecksInOrder) {
    expectChecks<float, float>();
    expectChecks<Vorn16s, Vorn16s>();
    expectChecks<Vorn32s, Vorn32s>();
    expectChecks<Vorn32s, Vorn64s>();
}

}  // namespace
