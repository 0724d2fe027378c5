// Covariance-like matrices.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "model/accumulators.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::RoundingMode;
using test::same;
using test::sameBits;

extern "C" {
void vornsAccCovarianceMatrix_32f64f_D2_M7(const Vorn32f* src, std::int64_t srcStep, std::int64_t height,
                                           const Vorn32f* mean, Vorn64f* dst, std::int64_t width, std::int64_t dstStep,
                                           Vorn64f val);
void vornsAccCovarianceMatrix_16s64f_D2_M7(const Vorn16s* src, std::int64_t srcStep, std::int64_t height,
                                           const Vorn16s* mean, Vorn64f* dst, std::int64_t width, std::int64_t dstStep,
                                           Vorn64f val);
void vornsAccCovarianceMatrix_32f64f_D2L_M7(const Vorn32f* const* src, std::int64_t height, const Vorn32f* mean,
                                            Vorn64f* const* dst, std::int64_t width, Vorn64f val);
void vornsAccCovarianceMatrix_16s64f_D2L_M7(const Vorn16s* const* src, std::int64_t height, const Vorn16s* mean,
                                            Vorn64f* const* dst, std::int64_t width, Vorn64f val);
}

// The two element types behind one face. large: from so many elements on, in a block and in a list of rows, the frames
// are added one by one.
struct Singles {
    using Source = float;
    static constexpr int largeBlock = 140000, largeList = 134000;
    static constexpr auto* block = vornsAccCovarianceMatrix_32f64f_D2;
    static constexpr auto* list = vornsAccCovarianceMatrix_32f64f_D2L;
    static constexpr auto* blockKernel = vornsAccCovarianceMatrix_32f64f_D2_M7;
    static constexpr auto* listKernel = vornsAccCovarianceMatrix_32f64f_D2L_M7;
    static std::vector<float> ordinary(Random& random, std::size_t n) { return random.floats(n, -20, 30); }
    static std::vector<float> hard(Random& random, std::size_t n) { return random.pick(test::hardFloats<float>(), n); }
    static std::vector<float> means(Random& random, std::size_t n) { return random.floats(n, -7, 12); }
};
struct Shorts {
    using Source = Vorn16s;
    static constexpr int largeBlock = 270000, largeList = 260000;
    static constexpr auto* block = vornsAccCovarianceMatrix_16s64f_D2;
    static constexpr auto* list = vornsAccCovarianceMatrix_16s64f_D2L;
    static constexpr auto* blockKernel = vornsAccCovarianceMatrix_16s64f_D2_M7;
    static constexpr auto* listKernel = vornsAccCovarianceMatrix_16s64f_D2L_M7;
    static std::vector<Vorn16s> ordinary(Random& random, std::size_t n) { return random.integers<Vorn16s>(n); }
    static std::vector<Vorn16s> hard(Random& random, std::size_t n) {
        return random.pick(test::hardIntegers<Vorn16s>(), n);
    }
    static std::vector<Vorn16s> means(Random& random, std::size_t n) {
        return random.integers<Vorn16s>(n, -9000, 11000);
    }
};

// The matrix of a test: rows by their pointers.
class Square {
public:
    explicit Square(const std::vector<double>& values, int width) : values_(values) {
        for (int i = 0; i < width; ++i) rows_.push_back(values_.data() + static_cast<std::ptrdiff_t>(i) * width);
    }
    double* const* rows() const { return rows_.data(); }
    const std::vector<double>& values() const { return values_; }

private:
    std::vector<double> values_;
    std::vector<double*> rows_;
};

template <class Source>
std::vector<const Source*> rowsOf(const std::vector<Source>& frames, int height, int width) {
    std::vector<const Source*> rows;
    for (int f = 0; f < height; ++f) rows.push_back(frames.data() + static_cast<std::ptrdiff_t>(f) * width);
    return rows;
}

enum class Way { whole, byFrame };
template <class Source>
std::vector<double> modelOf(Way way, const std::vector<Source>& frames, int height, const std::vector<Source>& mean,
                            const std::vector<double>& before, int width, double val) {
    const Square dst(before, width);
    const auto rows = rowsOf(frames, height, width);
    // Not known to the compiler, which else moves arithmetic out of a rounding mode.
    using Model = void (*)(const Source* const*, int, const Source*, double* const*, int, double);
    const volatile Model whole = model::accCovarianceWhole<Source>;
    const volatile Model byFrame = model::accCovarianceByFrame;
    (way == Way::whole ? whole : byFrame)(rows.data(), height, mean.data(), dst.rows(), width, val);
    return dst.values();
}

template <class Member>
class AccCovariance : public testing::Test {
protected:
    using Source = typename Member::Source;

    // A block, of which nothing stands behind the last row's columns, and rows that stand each by itself, a page of
    // their own behind them, or, where they are many, in a block as well. Kernels are called under their own names.
    static void compare(Way way, const std::vector<Source>& frames, int height, const std::vector<Source>& mean,
                        const std::vector<double>& before, int width, int extra, double val) {
        const std::vector<double> expected = modelOf(way, frames, height, mean, before, width, val);
        const int step = width + extra;
        Guarded<Source> src(static_cast<std::size_t>(height - 1) * step + width), m(mean);
        Guarded<double> dst(static_cast<std::size_t>(width - 1) * step + width);
        for (int f = 0; f < height; ++f) {
            std::copy_n(&frames[static_cast<std::size_t>(f) * width], width,
                        src.data() + static_cast<std::ptrdiff_t>(f) * step);
        }
        for (int i = 0; i < width; ++i) {
            std::copy_n(&before[static_cast<std::size_t>(i) * width], width,
                        dst.data() + static_cast<std::ptrdiff_t>(i) * step);
        }
        if (way == Way::whole) {
            ASSERT_EQ(Member::block(src, step, height, m, dst, width, step, val), vornStsNoErr);
        } else {
            Member::blockKernel(src, step, height, m, dst, width, step, val);
        }
        for (int i = 0; i < width; ++i) {
            EXPECT_TRUE(sameBits(dst.data() + static_cast<std::ptrdiff_t>(i) * step,
                                 &expected[static_cast<std::size_t>(i) * width], static_cast<std::size_t>(width)))
                << "row " << i << " of " << width << ", " << height << " frames, step " << step;
            if (i + 1 == width) break;
            const auto* gap = reinterpret_cast<const unsigned char*>(dst.data() + std::ptrdiff_t{i} * step + width);
            EXPECT_TRUE(std::all_of(gap, gap + extra * sizeof(double), [](unsigned char x) { return x == 0xA5; }));
        }
        EXPECT_TRUE(dst.surroundingsUntouched());

        if (height > 20) return;
        std::vector<Guarded<Source>> rows;
        std::vector<const Source*> pointers;
        for (int f = 0; f < height; ++f) {
            const auto row = frames.begin() + static_cast<std::ptrdiff_t>(f) * width;
            rows.emplace_back(std::vector<Source>(row, row + width));
        }
        for (const auto& row : rows) pointers.push_back(row.data());
        const Square list(before, width);
        if (way == Way::whole) {
            ASSERT_EQ(Member::list(pointers.data(), height, m, list.rows(), width, val), vornStsNoErr);
        } else {
            Member::listKernel(pointers.data(), height, m, list.rows(), width, val);
        }
        EXPECT_TRUE(sameBits(list.values(), expected)) << "list, " << width << ", " << height << " frames";
    }
    static void compareBoth(const std::vector<Source>& frames, int height, const std::vector<Source>& mean,
                            const std::vector<double>& before, int width, int extra, double val) {
        compare(Way::whole, frames, height, mean, before, width, extra, val);
        compare(Way::byFrame, frames, height, mean, before, width, extra, val);
    }
    static std::size_t size(int height, int width) { return static_cast<std::size_t>(height) * width; }
};
using Members = testing::Types<Singles, Shorts>;
TYPED_TEST_SUITE(AccCovariance, Members);

TYPED_TEST(AccCovariance, EqualsTheModelBitForBit) {
    Random random(1);
    for (int width = 1; width <= 70; ++width) {
        for (int height : {1, 3, 16, 19}) {
            if (width > 20 && (height == 3 || height == 16)) continue;
            const double val = height % 2 == 0 ? random.uniform(0, 2) : static_cast<float>(random.uniform(0, 2));
            this->compareBoth(TypeParam::ordinary(random, this->size(height, width)), height,
                              TypeParam::means(random, width), random.doubles(this->size(width, width), -100, 100),
                              width, height % 5, val);
        }
    }
}

TYPED_TEST(AccCovariance, EqualsTheModelOverSeveralBlocks) {
    Random random(2);
    for (int width : {63, 64, 65, 66, 67, 68, 79, 127, 128, 131, 150}) {
        const int height = 33;
        this->compareBoth(TypeParam::ordinary(random, this->size(height, width)), height,
                          TypeParam::means(random, width), random.doubles(this->size(width, width), -100, 100), width,
                          1, 0.3);
    }
}

TYPED_TEST(AccCovariance, HardValuesPassThrough) {
    Random random(3);
    const auto values = test::hardFloats<double>();
    for (int turn = 0; turn < 200; ++turn) {
        const int width = static_cast<int>(random.integer(1, 25)), height = static_cast<int>(random.integer(1, 9));
        const double val = turn % 3 == 0   ? random.pick(values, 1)[0]
                           : turn % 3 == 1 ? static_cast<double>(random.pick(test::hardFloats<float>(), 1)[0])
                                           : 1.0;
        this->compareBoth(TypeParam::hard(random, this->size(height, width)), height, TypeParam::hard(random, width),
                          random.pick(values, this->size(width, width)), width, 0, val);
    }
}

// Deviations of every exponent, and constants that are singles, denormal and huge ones among them, or no singles.
TYPED_TEST(AccCovariance, EveryMagnitudeOfVal) {
    Random random(4);
    if constexpr (std::is_same_v<typename TypeParam::Source, float>) {
        for (int turn = 0; turn < 200; ++turn) {
            std::vector<float> frames(5 * 9), mean(9);
            for (float& x : frames) x = random.anyBits<float>();
            for (float& x : mean) x = random.anyBits<float>();
            const double val = turn % 2 == 0 ? static_cast<double>(random.anyBits<float>()) : random.anyBits<double>();
            this->compareBoth(frames, 5, mean, std::vector<double>(81), 9, 0, val);
        }
    }
}

TYPED_TEST(AccCovariance, AlignmentChangesNothingInSmallCalls) {
    using Source = typename TypeParam::Source;
    Random random(5);
    for (int width : {3, 8, 21, 66}) {
        const int height = 20, step = 72;
        const auto frames = TypeParam::ordinary(random, this->size(height, width));
        const auto mean = TypeParam::means(random, width);
        const auto before = random.doubles(this->size(width, width), -100, 100);
        const auto expected = modelOf(Way::whole, frames, height, mean, before, width, 0.7);
        for (int moved = 0; moved < 3; ++moved) {
            for (std::size_t bytes = 0; bytes < 64; bytes += moved == 2 ? 8 : sizeof(Source)) {
                const auto offset = [&](int which) { return which == moved ? bytes : 0; };
                Offset<Source> src(this->size(height, step), offset(0)), m(mean.size(), offset(1));
                Offset<double> dst(this->size(width, step), offset(2));
                m.assign(mean);
                for (int f = 0; f < height; ++f) std::copy_n(&frames[this->size(f, width)], width, src + f * step);
                for (int i = 0; i < width; ++i) std::copy_n(&before[this->size(i, width)], width, dst + i * step);
                ASSERT_EQ(TypeParam::block(src, step, height, m, dst, width, step, 0.7), vornStsNoErr);
                for (int i = 0; i < width; ++i) {
                    EXPECT_TRUE(sameBits(dst + i * step, &expected[this->size(i, width)], width)) << moved << bytes;
                }
            }
        }
    }
}

TYPED_TEST(AccCovariance, FollowsTheCallersRoundingModeAndKeepsIt) {
    Random random(6);
    const int height = 19, width = 21;
    const auto frames = TypeParam::ordinary(random, this->size(height, width));
    const auto mean = TypeParam::means(random, width);
    const auto before = random.doubles(this->size(width, width), -100, 100);
    for (double val : {0.7, 1.0}) {
        for (unsigned mode : {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
            for (Way way : {Way::whole, Way::byFrame}) {
                std::vector<double> expected, dst = before;
                unsigned after;
                {
                    const RoundingMode caller(mode);
                    expected = modelOf(way, frames, height, mean, before, width, val);
                    if (way == Way::whole) {
                        TypeParam::block(frames.data(), width, height, mean.data(), dst.data(), width, width, val);
                    } else {
                        TypeParam::blockKernel(frames.data(), width, height, mean.data(), dst.data(), width, width,
                                               val);
                    }
                    after = RoundingMode::current();
                }
                EXPECT_EQ(after, mode);
                EXPECT_TRUE(sameBits(dst, expected)) << mode << (way == Way::whole ? " whole" : " by frame");
            }
        }
    }
}

// ---- Which way a call takes. Data on which the ways differ: differences that a single rounds and a double keeps, and
// differences that leave 16 bits.

template <class Source>
Source telling();
template <>
float telling<float>() {
    return 1.0f;
}
template <>
Vorn16s telling<Vorn16s>() {
    return 32767;
}
template <class Source>
Source tellingMean();
template <>
float tellingMean<float>() {
    return 0x1p-30f;
}
template <>
Vorn16s tellingMean<Vorn16s>() {
    return -32768;
}

// A call on such data; the entry in the corner tells its way.
template <class Member>
struct Telling {
    using Source = typename Member::Source;
    int height, width, step;
    int dstStep = 0;
    std::size_t srcAt = 0, meanAt = 0, dstAt = 0;
    bool list = false;
    int oddRow = -1, oddDstRow = -1;  // of a list: not on a multiple of 16 bytes

    Way way() const {
        const int dstStride = dstStep == 0 ? step : dstStep;
        const std::size_t rows = static_cast<std::size_t>(height);
        Offset<Source> src(rows * step + 8, srcAt), mean(width, meanAt);
        Offset<double> dst(static_cast<std::size_t>(width) * dstStride + 2, dstAt);
        std::fill_n(src.data(), src.size(), telling<Source>());
        std::fill_n(mean.data(), width, tellingMean<Source>());
        std::fill_n(dst.data(), dst.size(), 0.0);
        double corner;
        if (list) {
            std::vector<const Source*> pointers;
            std::vector<double*> results;
            for (int f = 0; f < height; ++f) pointers.push_back(src + f * step + (f == oddRow ? 1 : 0));
            for (int i = 0; i < width; ++i) results.push_back(dst + i * dstStride + (i == oddDstRow ? 1 : 0));
            EXPECT_EQ(Member::list(pointers.data(), height, mean, results.data(), width, 1.0), vornStsNoErr);
            corner = results[0][0];
        } else {
            EXPECT_EQ(Member::block(src, step, height, mean, dst, width, dstStride, 1.0), vornStsNoErr);
            corner = dst[0];
        }
        const double e = std::is_integral_v<Source> ? 32767.0 : 1.0;
        const double frame = std::is_integral_v<Source> ? 65535.0 : 1.0 - 0x1p-30;
        double whole = 0, single = 0;
        for (int f = 0; f < height; ++f) whole += frame * frame, single += e * e;
        EXPECT_NE(whole, single);
        EXPECT_TRUE(corner == whole || corner == single) << corner;
        return corner == whole ? Way::whole : Way::byFrame;
    }
};

TYPED_TEST(AccCovariance, LargeAlignedBlocksGoFrameByFrame) {
    using T = Telling<TypeParam>;
    const int large = TypeParam::largeBlock, height = large / 8;
    EXPECT_EQ((T{height, 8, 8}.way()), Way::byFrame) << "on the limit";
    EXPECT_EQ((T{height - 1, 8, 8}.way()), Way::whole) << "below it";
    EXPECT_EQ((T{height, 5, 8}.way()), Way::byFrame) << "the step counts, not the width";
    EXPECT_EQ((T{height, 8, 9}.way()), Way::whole) << "the rows' step is no multiple of four";
    EXPECT_EQ((T{height * 2, 8, 10}.way()), Way::whole);
    EXPECT_EQ((T{height, 8, 12, 8}.way()), Way::byFrame);
    EXPECT_EQ((T{height, 8, 8, 9}.way()), Way::whole) << "the matrix's step is no multiple of four";
    EXPECT_EQ((T{height, 8, 8, 10}.way()), Way::whole);
    EXPECT_EQ((T{height, 8, 8, 0, sizeof(typename T::Source)}.way()), Way::whole);
    EXPECT_EQ((T{height, 8, 8, 0, 8}.way()), Way::whole);
    EXPECT_EQ((T{height, 8, 8, 0, 16, 16, 16}.way()), Way::byFrame);
    EXPECT_EQ((T{height, 8, 8, 0, 0, sizeof(typename T::Source)}.way()), Way::whole);
    EXPECT_EQ((T{height, 8, 8, 0, 0, 8}.way()), Way::whole);
    EXPECT_EQ((T{height, 8, 8, 0, 0, 0, 8}.way()), Way::whole);
    EXPECT_EQ((T{large / 4, 4, 4}.way()), Way::byFrame) << "four shorts are half of 16 bytes: enough";
    EXPECT_EQ((T{large / 4 - 1, 4, 4}.way()), Way::whole);
}

TYPED_TEST(AccCovariance, LargeAlignedListsGoFrameByFrame) {
    using T = Telling<TypeParam>;
    const int large = TypeParam::largeList, height = large / 8;
    const auto list = [](int rows, int width, int step, int dstStep, std::size_t meanAt, int oddRow, int oddDstRow) {
        return T{rows, width, step, dstStep, 0, meanAt, 0, true, oddRow, oddDstRow}.way();
    };
    EXPECT_EQ(list(height, 8, 8, 0, 0, -1, -1), Way::byFrame) << "on the limit";
    EXPECT_EQ(list(height - 1, 8, 8, 0, 0, -1, -1), Way::whole) << "below it";
    EXPECT_EQ(list(height, 7, 8, 0, 0, -1, -1), Way::whole) << "the width counts";
    EXPECT_EQ(list(height, 8, 16, 10, 0, -1, -1), Way::byFrame) << "steps do not";
    EXPECT_EQ(list(height, 8, 8, 0, sizeof(typename T::Source), -1, -1), Way::whole);
    EXPECT_EQ(list(height, 8, 16, 0, 0, 0, -1), Way::whole);
    EXPECT_EQ(list(height, 8, 16, 0, 0, height - 1, -1), Way::whole);
    EXPECT_EQ(list(height, 8, 8, 10, 0, -1, 7), Way::whole);
}

// 2^20 elements a row: the number of elements is taken at 32 bits. (Of a list, height times width cannot wrap in a
// test: that would take 2^31 products a frame or gigabytes of pointers.)
TYPED_TEST(AccCovariance, TheNumberOfElementsWraps) {
    using Source = typename TypeParam::Source;
    const int step = 1 << 20;
    for (const auto& [height, way] : {std::pair{4096, Way::whole}, {2048, Way::whole}, {4097, Way::byFrame}}) {
        const std::size_t bytes = (static_cast<std::size_t>(height - 1) * step + 4) * sizeof(Source);
        void* room = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        ASSERT_NE(room, MAP_FAILED);
        auto* src = static_cast<Source*>(room);
        src[0] = telling<Source>();
        alignas(16) Source mean[4] = {};
        mean[0] = tellingMean<Source>();
        alignas(16) double dst[16] = {};
        EXPECT_EQ(TypeParam::block(src, step, height, mean, dst, 4, 4, 1.0), vornStsNoErr);
        // One frame of the telling data; in the others 0 less the mean, which both ways hold, or does not show.
        const bool integers = std::is_integral_v<Source>;
        const double rest = integers ? (height - 1) * (way == Way::whole ? 32768.0 * 32768 : 32767.0 * 32767) : 0;
        const double first = integers ? (way == Way::whole ? 65535.0 * 65535 : 32767.0 * 32767)
                                      : (way == Way::whole ? 1 - 0x1p-29 : 1.0);
        EXPECT_EQ(dst[0], first + rest) << height;
        munmap(room, bytes);
    }
}

TYPED_TEST(AccCovariance, LargeCallsEqualTheModel) {
    using Source = typename TypeParam::Source;
    Random random(7);
    for (int width : {13, 40}) {
        const int step = (width + 3) / 4 * 4, height = TypeParam::largeBlock / (width - width % 4) + 1;
        const auto frames = TypeParam::ordinary(random, this->size(height, width));
        const auto mean = TypeParam::means(random, width);
        const auto before = random.doubles(this->size(width, width), -100, 100);
        for (Way way : {Way::byFrame, Way::whole}) {
            const auto expected = modelOf(way, frames, height, mean, before, width, 0.7);
            Offset<Source> src(this->size(height, step) + 1, way == Way::byFrame ? 0 : sizeof(Source)),
                m(mean.size(), 0);
            Offset<double> dst(this->size(width, step), 0);
            m.assign(mean);
            for (int f = 0; f < height; ++f) {
                std::copy_n(&frames[this->size(f, width)], width, src + this->size(f, step));
            }
            for (int i = 0; i < width; ++i) std::copy_n(&before[this->size(i, width)], width, dst + i * step);
            ASSERT_EQ(TypeParam::block(src, step, height, m, dst, width, step, 0.7), vornStsNoErr);
            for (int i = 0; i < width; ++i) {
                EXPECT_TRUE(sameBits(dst + i * step, &expected[this->size(i, width)], width)) << width << " " << i;
            }
        }
    }
}

// ---- What the definition says.

TYPED_TEST(AccCovariance, TheMeanOfTheLargerIndexServesBoth) {
    using Source = typename TypeParam::Source;
    const Source src[] = {3, 5};
    for (Source firstMean : {0, 100, -7}) {
        const Source mean[] = {firstMean, 2};
        double dst[] = {0, 0, 0, 0};
        ASSERT_EQ(TypeParam::block(src, 2, 1, mean, dst, 2, 2, 0.5), vornStsNoErr);
        const double d = 3.0 - firstMean;
        EXPECT_EQ(dst[0], 0.5 * d * d);
        EXPECT_EQ(dst[1], 1.5) << "(3 - 2) (5 - 2) / 2";
        EXPECT_EQ(dst[2], 1.5);
        EXPECT_EQ(dst[3], 4.5);
    }
}

TYPED_TEST(AccCovariance, OnlyTheUpperTriangleIsKept) {
    using Source = typename TypeParam::Source;
    const Source src[] = {1, 2, 3}, mean[] = {0, 0, 0};
    double dst[] = {10, 20, 30, -1e300, 40, 50, std::nan(""), 777, 60};
    double* const rows[] = {dst, dst + 3, dst + 6};
    ASSERT_EQ(TypeParam::block(src, 3, 1, mean, dst, 3, 3, 1.0), vornStsNoErr);
    const std::vector<double> expected = {11, 22, 33, 22, 44, 56, 33, 56, 69};
    EXPECT_EQ(std::vector<double>(dst, dst + 9), expected);
    const Source* const frames[] = {src};
    ASSERT_EQ(TypeParam::list(frames, 1, mean, rows, 3, -1.0), vornStsNoErr);
    EXPECT_EQ(std::vector<double>(dst, dst + 9), (std::vector<double>{10, 20, 30, 20, 40, 50, 30, 50, 60}));
}

// Small integers and a val of one half: all partial sums are exact, in any grouping, so that random calls one after the
// other must give the very sums of the definition.
TYPED_TEST(AccCovariance, SplitOverCallsItGivesTheExactSums) {
    using Source = typename TypeParam::Source;
    Random random(8);
    for (int width : {2, 13, 39, 70}) {
        const int height = 300;
        std::vector<Source> frames(this->size(height, width)), mean(width);
        for (Source& x : frames) x = static_cast<Source>(random.integer(-100, 100));
        for (Source& x : mean) x = static_cast<Source>(random.integer(-20, 30));
        Square dst(std::vector<double>(this->size(width, width)), width);
        const auto rows = rowsOf(frames, height, width);
        for (int f = 0; f < height;) {
            const int count = std::min(static_cast<int>(random.integer(1, 40)), height - f);
            const VornStatus status =
                f % 2 == 0 ? TypeParam::block(rows[f], width, count, mean.data(), dst.rows()[0], width, width, 0.5)
                           : TypeParam::list(&rows[f], count, mean.data(), dst.rows(), width, 0.5);
            ASSERT_EQ(status, vornStsNoErr);
            f += count;
        }
        for (int i = 0; i < width; ++i) {
            for (int j = i; j < width; ++j) {
                std::int64_t sum = 0;
                for (int f = 0; f < height; ++f) {
                    const auto m = static_cast<std::int64_t>(mean[j]);
                    sum += (static_cast<std::int64_t>(rows[f][i]) - m) * (static_cast<std::int64_t>(rows[f][j]) - m);
                }
                ASSERT_EQ(dst.rows()[i][j], 0.5 * static_cast<double>(sum)) << i << " " << j;
                ASSERT_EQ(dst.rows()[j][i], dst.rows()[i][j]);
            }
        }
    }
}

// Frames in pairs around the means: these are the frames' own, and then the matrix is the covariance with each column's
// own mean.
TYPED_TEST(AccCovariance, WithTheFramesOwnMeansItIsTheCovariance) {
    using Source = typename TypeParam::Source;
    Random random(10);
    const int height = 200, width = 39;
    std::vector<Source> frames(this->size(height, width)), mean(width);
    for (Source& x : mean) x = static_cast<Source>(random.integer(-90, 90));
    std::vector<std::int64_t> deviations(frames.size());
    for (int f = 0; f < height; ++f) {
        for (int j = 0; j < width; ++j) {
            const std::size_t at = this->size(f, width) + j;
            deviations[at] = f % 2 == 0 ? random.integer(-100, 100) : -deviations[at - width];
            frames[at] = static_cast<Source>(static_cast<std::int64_t>(mean[j]) + deviations[at]);
        }
    }
    std::vector<double> dst(this->size(width, width));
    ASSERT_EQ(TypeParam::block(frames.data(), width, height, mean.data(), dst.data(), width, width, 1.0), vornStsNoErr);
    for (int i = 0; i < width; ++i) {
        for (int j = 0; j < width; ++j) {
            std::int64_t sum = 0;
            for (int f = 0; f < height; ++f) {
                sum += deviations[this->size(f, width) + i] * deviations[this->size(f, width) + j];
            }
            EXPECT_EQ(dst[this->size(i, width) + j], static_cast<double>(sum)) << i << " " << j;
        }
    }
}

// Against extended precision: h additions and three roundings a term, each of half a unit of what they round.
TYPED_TEST(AccCovariance, StaysNearTheDefinition) {
    Random random(9);
    const int height = 500, width = 30;
    const auto frames = TypeParam::ordinary(random, this->size(height, width));
    const auto mean = TypeParam::means(random, width);
    std::vector<double> dst(this->size(width, width));
    const double val = 0.3;
    ASSERT_EQ(TypeParam::block(frames.data(), width, height, mean.data(), dst.data(), width, width, val), vornStsNoErr);
    for (int i = 0; i < width; ++i) {
        for (int j = i; j < width; ++j) {
            long double sum = 0, magnitude = 0;
            for (int f = 0; f < height; ++f) {
                const long double m = mean[j];
                const long double term =
                    (frames[this->size(f, width) + i] - m) * (frames[this->size(f, width) + j] - m);
                sum += term;
                magnitude += std::fabs(term);
            }
            const double entry = dst[this->size(i, width) + j];
            EXPECT_LE(std::fabs(entry - val * sum), (height + 5) * 0x1p-53 * val * magnitude) << i << " " << j;
        }
    }
}

// In groups of four columns that begin on the diagonal differences stay within 16 bits; behind them they do not.
TEST(AccCovarianceOfShorts, DifferencesSaturateInGroupsOfFour) {
    const int height = 67500, step = 4;
    const std::vector<Vorn16s> frames(static_cast<std::size_t>(height) * step, -32768);
    Offset<Vorn16s> src(frames.size(), 0), mean(4, 0);
    Offset<double> dst(16, 0);
    src.assign(frames);
    mean.assign({32767, 32767, 32767, 32767});
    dst.assign(std::vector<double>(16));
    const double saturated = height * 1073741824.0, exact = height * 4294836225.0;  // 32768^2, 65535^2
    ASSERT_EQ(vornsAccCovarianceMatrix_16s64f_D2(src, step, height, mean, dst, 4, 4, 1.0), vornStsNoErr);
    for (int i = 0; i < 4; ++i) {
        for (int j = i; j < 4; ++j) EXPECT_EQ(dst[i * 4 + j], i == 0 ? saturated : exact) << i << " " << j;
    }
    dst.assign(std::vector<double>(16));
    ASSERT_EQ(vornsAccCovarianceMatrix_16s64f_D2(src, step, height - 1, mean, dst, 4, 4, 1.0), vornStsNoErr);
    for (int k = 0; k < 16; ++k) EXPECT_EQ(dst[k], exact - 4294836225.0) << k;
}

TYPED_TEST(AccCovariance, OffsetsBeyondAnIntAreReached) {
    using Source = typename TypeParam::Source;
    const int step = 1 << 30, width = 3;
    const std::size_t bytes = (std::size_t{3} * step + width) * sizeof(Source);
    void* room = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(room, MAP_FAILED);
    auto* src = static_cast<Source*>(room);
    for (int f = 0; f < 4; ++f) src[static_cast<std::size_t>(f) * step + 1] = static_cast<Source>(f + 1);
    const Source mean[3] = {};
    double dst[9] = {};
    EXPECT_EQ(TypeParam::block(src, step, 4, mean, dst, width, 3, 1.0), vornStsNoErr);
    EXPECT_EQ(std::vector<double>(dst, dst + 9), (std::vector<double>{0, 0, 0, 0, 30, 0, 0, 0, 0}));
    munmap(room, bytes);
    const std::size_t dstBytes = (std::size_t{2} * step + width) * sizeof(double);
    room = mmap(nullptr, dstBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(room, MAP_FAILED);
    auto* far = static_cast<double*>(room);
    const Source one[] = {1, 2, 3};
    EXPECT_EQ(TypeParam::block(one, 3, 1, mean, far, width, step, 1.0), vornStsNoErr);
    EXPECT_EQ(far[std::size_t{2} * step], 3.0);
    EXPECT_EQ(far[std::size_t{2} * step + 2], 9.0);
    munmap(room, dstBytes);
}

// ---- Checks.

template <class Member>
struct Arguments {
    using Source = typename Member::Source;
    std::vector<Source> data = std::vector<Source>(12, Source(1));
    std::vector<const Source*> dataRows = {data.data(), data.data() + 3, data.data() + 6, data.data() + 9};
    Guarded<double> out = Guarded<double>(9);
    std::vector<double*> outRows = {out.data(), out.data() + 3, out.data() + 6};
    const Source *src = data.data(), *mean = data.data();
    const Source* const* rows = dataRows.data();
    double* dst = out.data();
    double* const* dstRows = outRows.data();
    int srcStep = 3, height = 4, width = 3, dstStep = 3;
};

TYPED_TEST(AccCovariance, ChecksInOrder) {
    using A = Arguments<TypeParam>;
    using Rule = test::Rule<A>;
    const auto untouched = [](A& a) { return a.out.untouched(); };
    const Rule noMean{"mean", vornStsNullPtrErr, [](A& a) { a.mean = nullptr; }};
    const Rule noHeight{"height 0", vornStsSizeErr, [](A& a) { a.height = 0; }};
    const Rule noWidth{"width 0", vornStsSizeErr, [](A& a) { a.width = 0; }};
    const Rule negative{"width -3", vornStsSizeErr, [](A& a) { a.width = -3; }};
    test::expectCheckOrder<A>(
        [] { return A(); },
        [](A& a) { return TypeParam::block(a.src, a.srcStep, a.height, a.mean, a.dst, a.width, a.dstStep, 1.0); },
        untouched,
        {Rule{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }}, noMean,
         Rule{"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }}, noHeight, noWidth, negative,
         Rule{"srcStep", vornStsStrideErr, [](A& a) { a.srcStep = 2; }},
         Rule{"dstStep", vornStsStrideErr, [](A& a) { a.dstStep = 2; }},
         Rule{"srcStep INT_MIN", vornStsStrideErr, [](A& a) { a.srcStep = INT_MIN; }}});
    test::expectCheckOrder<A>(
        [] { return A(); }, [](A& a) { return TypeParam::list(a.rows, a.height, a.mean, a.dstRows, a.width, 1.0); },
        untouched,
        {Rule{"src", vornStsNullPtrErr, [](A& a) { a.rows = nullptr; }}, noMean,
         Rule{"dst", vornStsNullPtrErr, [](A& a) { a.dstRows = nullptr; }}, noHeight, noWidth, negative});
}

}  // namespace
