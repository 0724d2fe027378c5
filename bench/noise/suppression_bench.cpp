// Suppression gains beside plain loops, and beside Bessel functions in place of a table.
#include "plain/suppression.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <type_traits>

#include "support/bench.h"
#include "vornsr.h"

namespace {

struct Size {
    const char* name;
    int len, blocks;  // neighbouring vectors in turn: no length is above 65535
};
constexpr Size sizes[] = {{"129", 129, 1}, {"L1", 1024, 1}, {"LLC", 65535, 8}, {"memory", 65535, 160}};

// Numbers spread evenly in decibels.
template <class T>
std::shared_ptr<T[]> spread(std::size_t len, double lowDb, double highDb, double one) {
    auto block = bench::buffer<T>(len);
    std::mt19937 generator(2);
    std::uniform_real_distribution<double> db(lowDb, highDb);
    for (std::size_t i = 0; i < len; ++i) block[i] = static_cast<T>(std::pow(10, db(generator) / 10) * one);
    return block;
}

using Run = std::function<void(std::size_t at, int len)>;

void compare(const std::string& name, const Size& size, const char* peer, const void* result, Run run) {
    bench::add(name, size.name, peer, std::int64_t{size.len} * size.blocks, [=] {
        for (int block = 0; block < size.blocks; ++block) {
            run(static_cast<std::size_t>(block) * static_cast<std::size_t>(size.len), size.len);
        }
        bench::keep(const_cast<void*>(result));
    });
}

template <class T, class Ours>
void addWiener(const std::string& name, Ours ours) {
    for (const Size& size : sizes) {
        const auto n = static_cast<std::size_t>(size.len) * static_cast<std::size_t>(size.blocks);
        const auto x = spread<T>(n, -30, 32, std::is_integral_v<T> ? 32768 : 1);
        const auto dst = bench::buffer<T>(n);
        compare(name, size, bench::ours, dst.get(),
                [=](std::size_t at, int len) { ours(x.get() + at, dst.get() + at, len); });
        compare(name, size, "plain", dst.get(),
                [=](std::size_t at, int len) { plain::wienerGains(x.get() + at, dst.get() + at, len); });
    }
}

// Tables for the plain loop, of the sizes of ours: the gain at small arguments, and a parabola through three points of
// each octave.
plain::GainTables tables() {
    plain::GainTables t{};
    const auto f = [](double v) {
        return std::sqrt(3.14159265358979 / v) / 2 * std::exp(-v / 2) *
               ((1 + v) * std::cyl_bessel_i(0.0, v / 2) + v * std::cyl_bessel_i(1.0, v / 2));
    };
    t.small[0] = INT32_MAX;
    for (int x = 1; x <= 128; ++x) t.small[x] = static_cast<std::int32_t>(std::lround(f(std::ldexp(x, -22))));
    for (int i = 0; i < 24; ++i) {
        const double low = std::ldexp(1, i - 15), a = f(low), b = f(1.5 * low), c = f(2 * low);
        // Through three points of the octave, u from 0 to 1 along it.
        const double bend = 2 * (a + c - 2 * b), slope = c - a - bend;
        t.start[i] = static_cast<std::int32_t>(a * 0x1p22);
        t.slope[i] = static_cast<std::int32_t>(-slope * 0x1p20);
        t.bend[i] = static_cast<std::int32_t>(std::ldexp(bend, 26 - i));
    }
    return t;
}

template <class T, class Ours>
void addGains(const std::string& name, Ours ours) {
    const auto table = std::make_shared<plain::GainTables>(tables());
    for (const Size& size : sizes) {
        const auto n = static_cast<std::size_t>(size.len) * static_cast<std::size_t>(size.blocks);
        const auto w = spread<T>(n, -25, -0.01, std::is_integral_v<T> ? 2147483647.0 : 1);
        const auto snr = spread<T>(n, -20, 30, std::is_integral_v<T> ? 32768 : 1);
        const auto dst = bench::buffer<T>(n);
        compare(name, size, bench::ours, dst.get(),
                [=](std::size_t at, int len) { ours(w.get() + at, snr.get() + at, dst.get() + at, len); });
        compare(name, size, "plain", dst.get(), [=](std::size_t at, int len) {
            plain::ephraimMalahGains(*table, w.get() + at, snr.get() + at, dst.get() + at, len);
        });
        if constexpr (!std::is_integral_v<T>) {
            if (size.blocks > 1) continue;  // it takes as long for each element wherever that stands
            compare(name, size, "Bessel functions", dst.get(), [=](std::size_t at, int len) {
                plain::ephraimMalahByBessel(w.get() + at, snr.get() + at, dst.get() + at, len);
            });
        }
    }
}

const bench::Family suppression([] {
    addWiener<Vorn32f>("vornsFilterUpdateWiener_32f", vornsFilterUpdateWiener_32f);
    addWiener<Vorn32s>("vornsFilterUpdateWiener_32s", vornsFilterUpdateWiener_32s);
    addGains<Vorn32f>("vornsFilterUpdateEMNS_32f", vornsFilterUpdateEMNS_32f);
    addGains<Vorn32s>("vornsFilterUpdateEMNS_32s", vornsFilterUpdateEMNS_32s);
});

}  // namespace
