// Numbers of a few bits in a stream of bytes.
#include "vq/forming/bits.h"

#include <gtest/gtest.h>

#include <vector>

#include "model/vector_forming.h"
#include "support/guarded.h"
#include "support/values.h"

namespace {

using test::Guarded;
using test::Random;

TEST(Bits, AreReadAndJoinedFromTheTopOfEachByte) {
    Random random(1);
    for (int round = 0; round < 2000; ++round) {
        // Numbers of all sizes without a gap, up to the last byte.
        std::vector<int> sizes;
        std::vector<std::uint32_t> values;
        std::int64_t total = random.integer(0, 7);
        const std::int64_t first = total;
        for (int i = 0; i < 6; ++i) {
            sizes.push_back(static_cast<int>(random.integer(0, 32)));
            values.push_back(random.anyBits<std::uint32_t>());
            total += sizes.back();
        }
        Guarded<Vorn8u> stream(static_cast<std::size_t>((total + 7) / 8));
        for (Vorn8u& byte : stream) byte = 0;
        std::int64_t at = first;
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            vorn::vq::joinBits(stream, at, sizes[i], values[i]);
            at += sizes[i];
        }
        at = first;
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            const std::uint64_t low = values[i] & ((std::uint64_t{1} << sizes[i]) - 1);
            ASSERT_EQ(static_cast<std::uint64_t>(model::bitsAt(stream.values(), at, sizes[i])), low);
            ASSERT_EQ(vorn::vq::readBits(stream, at, sizes[i]), low);
            at += sizes[i];
        }
        // Nothing but the numbers.
        EXPECT_EQ(model::bitsAt(stream.values(), 0, static_cast<int>(first)), 0);
        const auto end = static_cast<std::int64_t>(8 * stream.size());
        EXPECT_EQ(model::bitsAt(stream.values(), total, static_cast<int>(end - total)), 0);
        EXPECT_TRUE(stream.surroundingsUntouched());
    }
}

TEST(Bits, OfKnownBytes) {
    Guarded<Vorn8u> stream{Vorn8u{0}, Vorn8u{0}};
    vorn::vq::joinBits(stream, 0, 3, 5);           // 101
    vorn::vq::joinBits(stream, 3, 5, 6);           // 00110
    vorn::vq::joinBits(stream, 9, 2, 0xFFFFFFFF);  // 11, of all ones
    EXPECT_EQ(stream[0], 0xA6);
    EXPECT_EQ(stream[1], 0x60);
    EXPECT_EQ(vorn::vq::readBits(stream, 2, 9), 0x133u);  // 1 00110 011
}

}  // namespace
