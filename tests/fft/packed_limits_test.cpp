// Fixed products of packed spectra at the one sum that 32 bits do not hold.
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "vornsr/fft.h"

namespace {

// Of -32768 four times over the imaginary part is 2^31. It becomes 2147483647, and only then is it shifted.
TEST(PackedFixedProducts, TheLargestSumSaturatesBeforeTheShift) {
    struct {
        int sf;
        Vorn16s sum;
    } const cases[] = {{0, 32767}, {1, 32767}, {15, 32767}, {16, 32767}, {17, 16383}, {18, 8191},
                       {19, 4095}, {20, 2047}, {23, 255},   {29, 3},     {30, 1},     {31, 0},
                       {32, 0},    {64, 0},    {-1, 32767}, {-15, 32767}};
    for (const auto& [sf, sum] : cases) {
        for (int len : {3, 4, 5, 8, 9, 17, 18, 33, 34, 35, 66, 67, 131, 200}) {
            const std::vector<Vorn16s> lowest(static_cast<std::size_t>(len), -32768);
            test::Guarded<Vorn16s> a(lowest), b(lowest), dst(lowest.size());
            const auto expectSums = [&, len = len, sf = sf, sum = sum](const Vorn16s* product, int firstPair) {
                for (int k = 0; k < (len - 1) / 2; ++k) {
                    ASSERT_EQ(product[firstPair + 2 * k], 0) << "length " << len << " sf " << sf;
                    ASSERT_EQ(product[firstPair + 2 * k + 1], sum) << "length " << len << " sf " << sf;
                }
            };
            ASSERT_EQ(vornsMulPack_16s_Sfs(a, b, dst, len, sf), vornStsNoErr);
            expectSums(dst, 1);
            ASSERT_EQ(vornsMulPerm_16s_Sfs(a, b, dst, len, sf), vornStsNoErr);
            expectSums(dst, len % 2 == 0 ? 2 : 1);
            ASSERT_EQ(vornsMulPack_16s_ISfs(a, b, len, sf), vornStsNoErr);
            expectSums(b, 1);
            b.assign(lowest);
            ASSERT_EQ(vornsMulPerm_16s_ISfs(a, b, len, sf), vornStsNoErr);
            expectSums(b, len % 2 == 0 ? 2 : 1);
        }
    }
}

}  // namespace
