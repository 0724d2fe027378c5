// Transforms of 2^23 values and more: 64-bit places, three levels of blocks, tables of hundreds of megabytes. They take
// seconds and up to 0.9 GB, so they run once for each build, not where memory is short, and not at all with
// VORNSR_SKIP_LARGE_TESTS in the environment.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "forms.h"
#include "model/fft.h"
#include "support/values.h"

namespace {

const char* reasonToSkip(double bytes) {
#ifdef VORNSR_SANITIZED
    return "sanitizers make it take minutes";
#endif
    if (std::getenv("VORNSR_SKIP_LARGE_TESTS") != nullptr) return "VORNSR_SKIP_LARGE_TESTS is set";
    const char* guard = std::getenv("VORNSR_GUARD");
    if (guard != nullptr && std::strcmp(guard, "before") == 0) return "has no guarded buffers: once a build is enough";
    if (static_cast<double>(sysconf(_SC_AVPHYS_PAGES)) * static_cast<double>(sysconf(_SC_PAGESIZE)) < 2 * bytes) {
        return "not enough free memory";
    }
    return nullptr;
}

// One impulse at place turns into X[k] = exp(-2 pi i place k / N): every value is on the unit circle, chosen ones are
// where they belong, and the inverse puts all of it back into the place.
template <class T, class Pair, class Transform>
void impulse(const test::FloatForm& form, int order, Transform forward, Transform inverse, double unit) {
    const std::int64_t length = std::int64_t{1} << order;
    if (const char* reason = reasonToSkip(4.5 * sizeof(Pair) * static_cast<double>(length))) GTEST_SKIP() << reason;
    test::Random random(static_cast<unsigned>(order));
    const std::int64_t place = length / 2 + 2 * random.integer(0, (1 << 21) - 1) + 1;
    std::vector<Pair> data(static_cast<std::size_t>(length));
    data[static_cast<std::size_t>(place)].re = 1;
    const test::Context<VornsFFTSpec> context(form, order, 2);
    ASSERT_EQ(forward(data.data(), context, nullptr), vornStsNoErr);
    const double bound = 4 * order * unit;
    double farthest = 0;
    for (const Pair& z : data) {
        const double re = z.re, im = z.im;
        farthest = std::max(farthest, std::abs(re * re + im * im - 1));
    }
    EXPECT_LE(farthest, 2 * bound);
    const model::Circle circle(length);
    for (int round = 0; round < 1000; ++round) {
        const std::int64_t k = (std::int64_t{random.integer(0, 1 << 14)} * 8191 + round) & (length - 1);
        const Pair& z = data[static_cast<std::size_t>(k)];
        const model::Wide difference = model::Wide(z.re, z.im) - circle(place * k);
        ASSERT_LE(static_cast<double>(std::abs(difference)), bound) << "bin " << k;
    }
    ASSERT_EQ(inverse(data.data(), context, nullptr), vornStsNoErr);
    data[static_cast<std::size_t>(place)].re -= 1;
    farthest = 0;
    for (const Pair& z : data) farthest = std::max({farthest, std::abs<double>(z.re), std::abs<double>(z.im)});
    EXPECT_LE(farthest, bound);
}

TEST(LargeFft, SinglePairs) {
    for (int order : {23, 25}) {
        SCOPED_TRACE(order);
        impulse<Vorn32f, Vorn32fc>(test::complex32fc, order, vornsFFTFwd_CToC_32fc_I, vornsFFTInv_CToC_32fc_I, 0x1p-24);
    }
}

TEST(LargeFft, DoublePairs) {
    impulse<Vorn64f, Vorn64fc>(test::complex64fc, 24, vornsFFTFwd_CToC_64fc_I, vornsFFTInv_CToC_64fc_I, 0x1p-53);
}

// A real transform of twice the length on the same complex core, its spectrum in place of the data.
TEST(LargeFft, Real) {
    const int order = 26;
    const std::int64_t length = std::int64_t{1} << order, place = length / 2 + 12345;
    if (const char* reason = reasonToSkip(4.0 * sizeof(Vorn32f) * static_cast<double>(length))) GTEST_SKIP() << reason;
    std::vector<Vorn32f> data(static_cast<std::size_t>(length) + 2);
    data[static_cast<std::size_t>(place)] = 1;
    const test::Context<VornsFFTSpec> context(test::real32f, order, 2);
    ASSERT_EQ(vornsFFTFwd_RToCCS_32f_I(data.data(), context, nullptr), vornStsNoErr);
    const model::Circle circle(length);
    for (std::int64_t k = 1; k < length / 2; k += 16381) {
        const auto at = static_cast<std::size_t>(2 * k);
        const model::Wide difference = model::Wide(data[at], data[at + 1]) - circle(place * k);
        ASSERT_LE(static_cast<double>(std::abs(difference)), 4 * order * 0x1p-24) << "bin " << k;
    }
    ASSERT_EQ(vornsFFTInv_CCSToR_32f_I(data.data(), context, nullptr), vornStsNoErr);
    EXPECT_NEAR(data[static_cast<std::size_t>(place)], 1, 4 * order * 0x1p-24);
    EXPECT_NEAR(data[static_cast<std::size_t>(place) + 1], 0, 4 * order * 0x1p-24);
}

// The merge stages of a long transform need 2^u values of the work area, 256 KiB at most, whatever its size; the rest
// serves the short transforms only.
template <class T, class Pair, class Transform>
void mergesInPart(const test::FloatForm& form, int longOrder, Transform forward) {
    for (int order = longOrder; order <= 22; ++order) {
        const test::Context<VornsFFTSpec> context(form, order, 8);
        std::vector<Pair> data(std::size_t{1} << order);
        std::vector<Vorn8u> work(static_cast<std::size_t>(context.bufSize()), 0xA5);
        const std::size_t used = sizeof(Pair)
                                 << (sizeof(T) == 4 ? model::blockOrders32(order) : model::blockOrders64(order)).buffer;
        ASSERT_LE(used, std::size_t{256} << 10);
        data[1].re = 1;
        ASSERT_EQ(forward(data.data(), context, work.data()), vornStsNoErr);
        for (std::size_t i = used + 16; i < work.size(); ++i) ASSERT_EQ(work[i], 0xA5) << "order " << order;
    }
}

TEST(LargeFft, MergesInAPartOfTheWorkArea) {
    mergesInPart<Vorn32f, Vorn32fc>(test::complex32fc, 17, vornsFFTFwd_CToC_32fc_I);
    mergesInPart<Vorn64f, Vorn64fc>(test::complex64fc, 15, vornsFFTFwd_CToC_64fc_I);
}

}  // namespace
