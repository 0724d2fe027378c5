// Functions that map each element of a vector to another, in place and not.
#pragma once

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/vectors.h"
#include "vornsr/types.h"

namespace test {

// negative: the status where any element is below zero.
template <class T, class Call, class CallInPlace, class Model>
void expectMap(Call call, CallInPlace callInPlace, Model model, VornStatus negative) {
    Random random(10);
    for (std::size_t len : lengths()) {
        std::vector<T> x = data<T>(random, len), expected(len);
        if constexpr (std::is_floating_point_v<T>) {
            for (T& value : x) {
                if (len % 3 == 0) value = random.anyBits<T>();
                if (len % 3 == 1) value = std::fabs(value);
            }
            if (len % 6 == 1) x[len / 2] = T(-2);  // the only one
        }
        for (std::size_t i = 0; i < len; ++i) expected[i] = model(x[i]);
        const VornStatus status =
            std::any_of(x.begin(), x.end(), [](T value) { return value < 0; }) ? negative : vornStsNoErr;
        Guarded<T> src(x), dst(len);
        EXPECT_EQ(call(src, dst, static_cast<int>(len)), status) << len;
        EXPECT_TRUE(sameBits(dst.data(), expected.data(), len));
        EXPECT_TRUE(dst.surroundingsUntouched());
        EXPECT_EQ(callInPlace(src, static_cast<int>(len)), status) << len;
        EXPECT_TRUE(sameBits(src.data(), expected.data(), len));
    }
}

}  // namespace test
