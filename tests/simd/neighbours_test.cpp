// Two registers as neighbours in a run of elements.
#include "simd/neighbours.h"

#include "simd/lanes.h"

namespace {

using namespace vorn;

TEST(Neighbours, RunsAcrossThem) {
    const auto a = test::vectorOf<f32x4>({1, 2, 3, 4}), b = test::vectorOf<f32x4>({5, 6, 7, 8});
    test::expectLanes(test::lanesOf<f32x4>(fromSecond(a, b)), test::Lanes<f32x4>{2, 3, 4, 5}, "fromSecond");
    test::expectLanes(test::lanesOf<f32x4>(fromThird(a, b)), test::Lanes<f32x4>{3, 4, 5, 6}, "fromThird");
    test::expectLanes(test::lanesOf<f32x4>(fromLast(a, b)), test::Lanes<f32x4>{4, 5, 6, 7}, "fromLast");
}

}  // namespace
