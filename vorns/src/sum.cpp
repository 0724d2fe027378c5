// Sums of vectors.
#include <cstddef>

#include "frame/checks.h"
#include "simd.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

constexpr int hintFast = 1;

// Two four-lane sums in single, eight singles a step. What remains is added to the folded lanes in order.
Vorn32f sumInSingle(const Vorn32f* src, std::ptrdiff_t len) {
    f32x4 first = splat<f32x4>(0.0f), second = first;
    std::ptrdiff_t i = 0;
    for (; i + 8 <= len; i += 8) {
        first = first + load<f32x4>(src + i);
        second = second + load<f32x4>(src + i + 4);
    }
    Vorn32f sum = sumNeighbours(first + second);
    for (; i < len; ++i) sum += src[i];
    return sum;
}

// Four two-lane sums in double, eight elements a step, and one rounding to single at the end.
Vorn32f sumInDouble(const Vorn32f* src, std::ptrdiff_t len) {
    f64x2 lanes[4] = {splat<f64x2>(0.0), splat<f64x2>(0.0), splat<f64x2>(0.0), splat<f64x2>(0.0)};
    std::ptrdiff_t i = 0;
    for (; i + 8 <= len; i += 8) {
        const f32x4 low = load<f32x4>(src + i), high = load<f32x4>(src + i + 4);
        lanes[0] = lanes[0] + widenLow(low);
        lanes[1] = lanes[1] + widenHigh(low);
        lanes[2] = lanes[2] + widenLow(high);
        lanes[3] = lanes[3] + widenHigh(high);
    }
    Vorn64f sum = sumLanes((lanes[0] + lanes[1]) + (lanes[2] + lanes[3]));
    for (; i < len; ++i) sum += src[i];
    return static_cast<Vorn32f>(sum);
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsSum_32f(const Vorn32f* src, int len, Vorn32f* sum, int hint) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    *sum = hint == hintFast ? sumInSingle(src, len) : sumInDouble(src, len);
    return vornStsNoErr;
}
