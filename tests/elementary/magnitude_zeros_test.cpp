// Magnitudes of 16-bit parts at scale factors that leave nothing of them.
#include <climits>

#include "support/expect.h"
#include "support/guarded.h"
#include "vornsr/signal.h"

namespace {

TEST(ScaledMagnitudes, AreZeroAboveSixteenWithoutReading) {
    const test::GuardedPages pages(sizeof(Vorn16sc));
    const auto* unreadable = reinterpret_cast<const Vorn16s*>(pages.end());
    const auto* unreadablePairs = reinterpret_cast<const Vorn16sc*>(pages.end());
    for (int sf : {17, 18, 31, 32, 1000, INT_MAX}) {
        for (int len : {1, 7, 40, 200}) {
            test::Guarded<Vorn16s> dst(static_cast<std::size_t>(len));
            const std::vector<Vorn16s> zeros(dst.size(), 0);
            EXPECT_EQ(vornsMagnitude_16s_Sfs(unreadable, unreadable, dst, len, sf), vornStsNoErr);
            EXPECT_TRUE(test::sameBits(dst.values(), zeros)) << sf;
            dst.fillPattern();
            EXPECT_EQ(vornsMagnitude_16sc_Sfs(unreadablePairs, dst, len, sf), vornStsNoErr);
            EXPECT_TRUE(test::sameBits(dst.values(), zeros)) << sf;
            EXPECT_TRUE(dst.surroundingsUntouched());
        }
    }
}

}  // namespace
