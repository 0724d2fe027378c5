// A day of deltas: utterances that never end, in blocks of uneven heights. Every row must be that of the same frame a
// minute before, bit for bit.
#include <algorithm>

#include "endurance/day.h"

namespace {

constexpr int framesOfAMinute = 6000, tallest = 997;

// Rows kept from call to call, rows of a delay that are not complete when the newest is written, and the columns.
struct Shape {
    int kept, delay, width, columns;
};

// call(src, dst, height, mode) for a day of frames: rows of dst are shape.columns wide.
template <class T, class Call>
void expectADay(const std::string& about, const Shape& shape, std::uint64_t digest, const Call& call) {
    if (const char* why = test::whyNoDay()) GTEST_SKIP() << why;
    const auto width = static_cast<std::size_t>(shape.width), columns = static_cast<std::size_t>(shape.columns);
    const auto kept = static_cast<std::size_t>(shape.kept), delay = static_cast<std::size_t>(shape.delay);
    test::Random random(17);
    std::vector<T> frames;  // of a minute, and once more so that no block has to be cut where the minute ends
    for (std::size_t i = 0; i < framesOfAMinute * width; ++i) {
        if constexpr (std::is_integral_v<T>) {
            frames.push_back(i / width % 500 < 5 ? random.anyBits<T>() : static_cast<T>(random.integer(-900, 900)));
        } else {
            frames.push_back(static_cast<T>(random.uniform(-30.0, 30.0)));
        }
    }
    frames.insert(frames.end(), frames.begin(), frames.begin() + static_cast<std::ptrdiff_t>(tallest * width));

    // The rows of the minute before, each at the place of its frame.
    std::vector<T> minute(framesOfAMinute * columns), rows((kept + tallest) * columns);
    std::int64_t written = 0, complete = 0, unlike = 0;
    const std::int64_t end = std::int64_t{test::minutesOfADay} * framesOfAMinute;
    // What stands complete from row `first` on moves to the minute; from the second minute on it is compared.
    const auto take = [&](std::size_t first, std::size_t count) {
        for (std::size_t r = 0; r < count; ++r, ++complete) {
            T* before = &minute[static_cast<std::size_t>(complete % framesOfAMinute) * columns];
            const T* now = &rows[(first + r) * columns];
            if (complete >= framesOfAMinute + 8 && complete < end - 8) {
                unlike += std::memcmp(before, now, columns * sizeof(T)) != 0;
            }
            std::memcpy(before, now, columns * sizeof(T));
        }
    };
    test::FailAllocation watch(0);
    constexpr int heights[] = {100, 1, 7, 250, 2, 3, tallest, 40};
    for (std::size_t block = 0; written < end; ++block) {
        const int height = static_cast<int>(std::min<std::int64_t>(heights[block % std::size(heights)], end - written));
        const T* src = &frames[static_cast<std::size_t>(written % framesOfAMinute) * width];
        const std::size_t before = written == 0 ? 0 : kept, count = static_cast<std::size_t>(height);
        ASSERT_EQ(call(src, rows.data(), height, written == 0 ? vornDeltaFirst : 0), vornStsNoErr);
        written += height;
        if (before == 0) {
            take(0, count - delay);
        } else {
            take(before - delay, count);
        }
        std::memmove(rows.data(), &rows[(before + count - kept) * columns], kept * columns * sizeof(T));
    }
    ASSERT_EQ(call(frames.data(), rows.data(), 0, vornDeltaLast), vornStsNoErr);
    take(kept - delay, delay);
    const int allocations = watch.calls();
    EXPECT_EQ(complete, end) << about;
    EXPECT_EQ(unlike, 0) << about;
    EXPECT_EQ(allocations, 0) << about;
    test::Digest all;
    all.add(minute);
    EXPECT_EQ(all.value(), digest) << about << std::hex << " 0x" << all.value();
}

constexpr int width = 6;
constexpr Shape delta1{2, 1, width, 2 * width}, delta2{4, 2, width, 2 * width};
constexpr Shape both1{3, 2, width, 3 * width}, both2{6, 4, width, 3 * width};

// The forms under one shape: of singles, and of 16 bits with a scale.
template <auto f>
void delta32f(const char* about, const Shape& shape, std::uint64_t digest) {
    expectADay<Vorn32f>(about, shape, digest, [&](const Vorn32f* src, Vorn32f* dst, int height, int mode) {
        return f(src, width, dst, shape.columns, height, 0.1f, mode);
    });
}
template <auto f>
void both32f(const char* about, const Shape& shape, std::uint64_t digest) {
    expectADay<Vorn32f>(about, shape, digest, [&](const Vorn32f* src, Vorn32f* dst, int height, int mode) {
        return f(src, width, dst, shape.columns, height, 0.1f, 0.3f, mode);
    });
}
template <auto f>
void delta16s(const char* about, const Shape& shape, std::uint64_t digest) {
    expectADay<Vorn16s>(about, shape, digest, [&](const Vorn16s* src, Vorn16s* dst, int height, int mode) {
        return f(src, width, dst, shape.columns, height, Vorn16s(25), mode, 5);
    });
}
template <auto f>
void both16s(const char* about, const Shape& shape, std::uint64_t digest) {
    expectADay<Vorn16s>(about, shape, digest, [&](const Vorn16s* src, Vorn16s* dst, int height, int mode) {
        return f(src, width, dst, shape.columns, height, Vorn16s(25), Vorn16s(13), mode, 5);
    });
}
template <auto f>
void mul32f(const char* about, const Shape& shape, std::uint64_t digest) {
    test::Random random(3);
    const std::vector<Vorn32f> val = random.floats(static_cast<std::size_t>(shape.columns), 0.1, 2.0);
    expectADay<Vorn32f>(about, shape, digest, [&](const Vorn32f* src, Vorn32f* dst, int height, int mode) {
        return f(src, val.data(), width, dst, shape.columns, height, mode);
    });
}
template <auto f>
void mul16s(const char* about, const Shape& shape, std::uint64_t digest) {
    test::Random random(3);
    const std::vector<Vorn16s> val = random.integers<Vorn16s>(static_cast<std::size_t>(shape.columns), 5, 40);
    expectADay<Vorn16s>(about, shape, digest, [&](const Vorn16s* src, Vorn16s* dst, int height, int mode) {
        return f(src, val.data(), width, dst, shape.columns, height, mode, 4);
    });
}

TEST(Deltas, Of32f) {
    delta32f<vornsDelta_Win1_32f_D2>("Delta_Win1_32f", delta1, 0x8427db2c592a23f);
    delta32f<vornsDelta_Win2_32f_D2>("Delta_Win2_32f", delta2, 0xf31cdf36c83681ae);
    both32f<vornsDeltaDelta_Win1_32f_D2>("DeltaDelta_Win1_32f", both1, 0x1ef135819027f833);
    both32f<vornsDeltaDelta_Win2_32f_D2>("DeltaDelta_Win2_32f", both2, 0x5758f3f1d3b79024);
}

TEST(Deltas, Of16s) {
    delta16s<vornsDelta_Win1_16s_D2Sfs>("Delta_Win1_16s", delta1, 0x37aac86af4aa679a);
    delta16s<vornsDelta_Win2_16s_D2Sfs>("Delta_Win2_16s", delta2, 0x964be89f6c4e41d4);
    both16s<vornsDeltaDelta_Win1_16s_D2Sfs>("DeltaDelta_Win1_16s", both1, 0x370fb3de7767ca9d);
    both16s<vornsDeltaDelta_Win2_16s_D2Sfs>("DeltaDelta_Win2_16s", both2, 0x1a38820389167480);
}

TEST(Deltas, WithFactors32f) {
    mul32f<vornsDeltaMul_Win1_32f_D2>("DeltaMul_Win1_32f", delta1, 0x35e0ea645017d397);
    mul32f<vornsDeltaMul_Win2_32f_D2>("DeltaMul_Win2_32f", delta2, 0xaaed901d80f8664f);
    mul32f<vornsDeltaDeltaMul_Win1_32f_D2>("DeltaDeltaMul_Win1_32f", both1, 0x346bbba7fdd45283);
    mul32f<vornsDeltaDeltaMul_Win2_32f_D2>("DeltaDeltaMul_Win2_32f", both2, 0x39f9fccdc4fed8e1);
}

TEST(Deltas, WithFactors16s) {
    mul16s<vornsDeltaMul_Win1_16s_D2Sfs>("DeltaMul_Win1_16s", delta1, 0xa533a194530b7fd1);
    mul16s<vornsDeltaMul_Win2_16s_D2Sfs>("DeltaMul_Win2_16s", delta2, 0x6fffcb884de03819);
    mul16s<vornsDeltaDeltaMul_Win1_16s_D2Sfs>("DeltaDeltaMul_Win1_16s", both1, 0xb1907f53f59ab96b);
    mul16s<vornsDeltaDeltaMul_Win2_16s_D2Sfs>("DeltaDeltaMul_Win2_16s", both2, 0x854548bd42167f4b);
}

// The feature vectors of the noise-robust front-end: 14 numbers in, 39 out.
constexpr Shape frontEnd{8, 4, 14, 39};

TEST(Deltas, OfTheFrontEnd) {
    test::Random random(3);
    const std::vector<Vorn32f> val = random.floats(39, 0.1, 2.0);
    const std::vector<Vorn16s> val16s = random.integers<Vorn16s>(39, 5, 40);
    expectADay<Vorn32f>("front-end 32f", frontEnd, 0xa27b785eb09ec7fe,
                        [&](const Vorn32f* src, Vorn32f* dst, int height, int mode) {
                            return vornsDeltaDelta_Aurora_32f_D2(src, dst, 39, height, mode);
                        });
    expectADay<Vorn32f>("front-end Mul 32f", frontEnd, 0x3c5c4f257993e54e,
                        [&](const Vorn32f* src, Vorn32f* dst, int height, int mode) {
                            return vornsDeltaDeltaMul_Aurora_32f_D2(src, val.data(), dst, 39, height, mode);
                        });
    expectADay<Vorn16s>("front-end 16s", frontEnd, 0xb0a1176f7b6a11b3,
                        [&](const Vorn16s* src, Vorn16s* dst, int height, int mode) {
                            return vornsDeltaDelta_Aurora_16s_D2Sfs(src, dst, 39, height, mode, 1);
                        });
    expectADay<Vorn16s>("front-end Mul 16s", frontEnd, 0xe9a2c7cdc9f00152,
                        [&](const Vorn16s* src, Vorn16s* dst, int height, int mode) {
                            return vornsDeltaDeltaMul_Aurora_16s_D2Sfs(src, val16s.data(), dst, 39, height, mode, 4);
                        });
}

}  // namespace
