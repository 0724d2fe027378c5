// Reciprocals of a vector, as the library's own functions take them.
#include <cmath>
#include <cstdint>
#include <limits>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/vectors.h"
#include "vornsr.h"

extern "C" void vornsReciprocal_32f_M7(const Vorn32f* src, Vorn32f* dst, std::int64_t len, VornStatus* status);

namespace {

using test::data, test::lengths;

TEST(Reciprocal, DividesAndReplaces) {
    test::Random random(15);
    for (std::size_t len : lengths()) {
        test::Guarded<float> x(data<float>(random, len)), y(len);
        for (float& value : x) value = value == 0.0f ? 1.0f : value;
        VornStatus status = vornStsNoErr;
        vornsReciprocal_32f_M7(x, y, static_cast<std::int64_t>(len), &status);
        EXPECT_EQ(status, vornStsNoErr);
        for (std::size_t i = 0; i < len; ++i) ASSERT_EQ(y[i], 1.0f / x[i]);
        // A zero or an infinity anywhere: the status, and an infinity with the sign of its source.
        const float inf = std::numeric_limits<float>::infinity();
        const std::size_t at = len / 2;
        for (float bad : {0.0f, -0.0f, inf, -inf}) {
            x[at] = bad;
            status = vornStsNoErr;
            vornsReciprocal_32f_M7(x, y, static_cast<std::int64_t>(len), &status);
            EXPECT_EQ(status, vornStsDivByZero);
            EXPECT_EQ(y[at], std::signbit(bad) ? -inf : inf);
            EXPECT_TRUE(at == 0 || y[0] == 1.0f / x[0]);
        }
        EXPECT_TRUE(y.surroundingsUntouched());
    }
}

}  // namespace
