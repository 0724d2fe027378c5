// Extrema against a plain scan, bit for bit.
#include <limits>
#include <type_traits>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/vectors.h"
#include "vornsr.h"

namespace {

using test::data, test::lengths;

// Few different values, so that there are ties; zeros of both signs; not-a-numbers behind the first element.
template <class T>
std::vector<T> tiedData(test::Random& random, std::size_t len) {
    std::vector<T> x = data<T>(random, len);
    const auto kind = random.integer(0, 3);
    for (std::size_t i = 0; i < len; ++i) {
        if (kind == 0) x[i] = static_cast<T>(random.integer(0, 3));
        if constexpr (std::is_floating_point_v<T>) {
            if (kind == 1) x[i] = random.integer(0, 1) == 0 ? T(0) : -T(0);
            if (kind == 2 && random.integer(0, 4) == 0) x[i] = std::numeric_limits<T>::quiet_NaN();
        }
    }
    return x;
}
template <class T, class Better>
std::size_t scan(const test::Guarded<T>& x, Better better) {
    std::size_t best = 0;
    for (std::size_t i = 1; i < x.size(); ++i) {
        if (better(x[i], x[best])) best = i;
    }
    return best;
}
constexpr auto larger = [](auto a, auto b) { return a > b; };
constexpr auto smaller = [](auto a, auto b) { return a < b; };

template <class T, class Better, class Call, class CallIndex>
void expectExtreme(Better better, Call call, CallIndex callIndex) {
    test::Random random(7);
    for (std::size_t len : lengths()) {
        test::Guarded<T> x(tiedData<T>(random, len));
        const std::size_t at = scan(x, better);
        T value, indexed, unindexed;
        int index = -1;
        EXPECT_EQ(call(x, static_cast<int>(len), &value), vornStsNoErr);
        EXPECT_EQ(callIndex(x, static_cast<int>(len), &indexed, &index), vornStsNoErr);
        EXPECT_EQ(callIndex(x, static_cast<int>(len), &unindexed, nullptr), vornStsNoErr);
        EXPECT_TRUE(test::same(value, x[at])) << len;
        EXPECT_TRUE(test::same(indexed, x[at])) << len;
        EXPECT_TRUE(test::same(unindexed, x[at])) << len;
        EXPECT_EQ(index, static_cast<int>(at)) << len;
    }
}
template <class T, class Call>
void expectMinMax(Call call) {
    test::Random random(8);
    for (std::size_t len : lengths()) {
        test::Guarded<T> x(tiedData<T>(random, len));
        T low, high;
        EXPECT_EQ(call(x, static_cast<int>(len), &low, &high), vornStsNoErr);
        EXPECT_TRUE(test::same(low, x[scan(x, smaller)])) << len;
        EXPECT_TRUE(test::same(high, x[scan(x, larger)])) << len;
    }
}
template <class T, class Better, class Call>
void expectEvery(Better better, Call call) {
    test::Random random(9);
    for (std::size_t len : lengths()) {
        test::Guarded<T> x(tiedData<T>(random, len)), y(tiedData<T>(random, len));
        std::vector<T> expected = y.values();
        for (std::size_t i = 0; i < len; ++i) {
            if (better(x[i], y[i])) expected[i] = x[i];
        }
        EXPECT_EQ(call(x, y, static_cast<int>(len)), vornStsNoErr);
        EXPECT_TRUE(test::sameBits(y.data(), expected.data(), len));
        EXPECT_TRUE(y.surroundingsUntouched());
    }
}

TEST(Extrema, EqualAPlainScan) {
    expectExtreme<Vorn16s>(larger, vornsMax_16s, vornsMaxIndx_16s);
    expectExtreme<Vorn32f>(larger, vornsMax_32f, vornsMaxIndx_32f);
    expectExtreme<Vorn64f>(larger, vornsMax_64f, vornsMaxIndx_64f);
    expectExtreme<Vorn16s>(smaller, vornsMin_16s, vornsMinIndx_16s);
    expectExtreme<Vorn32f>(smaller, vornsMin_32f, vornsMinIndx_32f);
    expectExtreme<Vorn64f>(smaller, vornsMin_64f, vornsMinIndx_64f);
    expectMinMax<Vorn8u>(vornsMinMax_8u);
    expectMinMax<Vorn16u>(vornsMinMax_16u);
    expectMinMax<Vorn16s>(vornsMinMax_16s);
    expectMinMax<Vorn32u>(vornsMinMax_32u);
    expectMinMax<Vorn32s>(vornsMinMax_32s);
    expectMinMax<Vorn32f>(vornsMinMax_32f);
    expectMinMax<Vorn64f>(vornsMinMax_64f);
    expectEvery<Vorn16s>(larger, vornsMaxEvery_16s_I);
    expectEvery<Vorn32s>(larger, vornsMaxEvery_32s_I);
    expectEvery<Vorn32f>(larger, vornsMaxEvery_32f_I);
    expectEvery<Vorn16s>(smaller, vornsMinEvery_16s_I);
    expectEvery<Vorn32s>(smaller, vornsMinEvery_32s_I);
    expectEvery<Vorn32f>(smaller, vornsMinEvery_32f_I);
}

TEST(Extrema, TheFirstOfEqualsIsFound) {
    std::vector<float> tied(100, 3.0f);
    tied[0] = 1.0f;
    float value = 0;
    int index = -1;
    EXPECT_EQ(vornsMaxIndx_32f(tied.data(), 100, &value, &index), vornStsNoErr);
    EXPECT_EQ(value, 3.0f);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(vornsMaxIndx_32f(tied.data(), 100, &value, nullptr), vornStsNoErr);
    EXPECT_EQ(value, 3.0f);
}

}  // namespace
