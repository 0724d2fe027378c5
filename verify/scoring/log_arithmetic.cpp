// Log-domain arithmetic.
#include <algorithm>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

const int scaleFactors[] = {0, 4, 9, 16, -3, -30, 160};

void call(Digest& digest, const calls::Function& function, const void* src, void* dst, int len, int scaleFactor) {
    calls::Arguments arguments;
    arguments[Role::src1] = src, arguments[Role::srcDst] = arguments[Role::result] = dst;
    arguments[Role::len] = len, arguments[Role::scaleFactor] = scaleFactor;
    digest.add(function(arguments));
}

// Integers with `bits` bits and a sign.
Array integers(Source& source, Element element, int len, int bits) {
    Array values(element, static_cast<std::size_t>(len));
    values.eachPart(
        [&]<class T>(T& x) { x = static_cast<T>(static_cast<std::int64_t>(source.bits()) >> (63 - bits)); });
    return values;
}

// Runs of values near one another, so that all intervals of the polynomial and the dropped terms occur; of integers
// also large ones, and those of sums of 12 bits.
void sweep(const calls::Function& function, Source& source, Digest& digest) {
    const Element element = function.element(Role::src1);
    const bool isSum = function.has(Role::result);
    const auto run = [&](int len, int scaleFactor, const auto& draw) {
        const Array src = draw();
        Array dst = isSum ? Array(element, 1) : draw();
        call(digest, function, src.data(), dst.data(), len, scaleFactor);
        digest.add(dst);
    };
    for (int len : lengths) {
        if (calls::isFloat(element)) {
            for (double spread : {2.0, 12.0, 50.0}) {
                run(len, 0,
                    [&] { return source.values(element, static_cast<std::size_t>(len), -900.0 - spread, -900.0); });
            }
            continue;
        }
        for (int scaleFactor : scaleFactors) {
            const int most = static_cast<int>(8 * calls::sizeOf(element)) - 1;
            for (int bits : isSum ? std::vector{12} : std::vector{8, most}) {
                run(len, scaleFactor, [&] { return integers(source, element, len, bits); });
            }
        }
    }
    if (calls::isFloat(element) && !isSum) run(500, 0, [&] { return source.patterns(element, 500); });
}

// The subtrahend lies below its minuend by 1 to `most` in the element type.
template <class T>
void subtract(const calls::Function& function, Source& source, Digest& digest, double most) {
    for (int len : lengths) {
        std::vector<T> src(len), srcDst(len);
        for (int i = 0; i < len; ++i) {
            src[i] = static_cast<T>(source.uniform(-20000.0, 20000.0));
            const T least = std::is_integral_v<T> ? T(1) : static_cast<T>(0.01);
            srcDst[i] = static_cast<T>(src[i] - std::max(least, static_cast<T>(source.uniform(0.0, most))));
        }
        call(digest, function, src.data(), srcDst.data(), len, 3);
        digest.add(srcDst);
    }
}
void differences(const calls::Function& function, Source& source, Digest& digest) {
    calls::withPart(function.element(Role::src1),
                    [&]<class T>() { subtract<T>(function, source, digest, std::is_integral_v<T> ? 60.0 : 20.0); });
}

Workload workload(void (*run)(const calls::Function&, Source&, Digest&), const calls::Function& function) {
    return {function.name(), [=](Source& source, Digest& digest) { run(function, source, digest); }};
}

#define ADD(function) workload(sweep, {VORN_NAMED(function), calls::logArithmeticShapes})
#define SUM(function) workload(sweep, {VORN_NAMED(function), calls::logSumShapes})
#define SUBTRACT(function) workload(differences, {VORN_NAMED(function), calls::logArithmeticShapes})

// clang-format off
const Workload workloads[] = {
    ADD(vornsLogAdd_64f),
    ADD(vornsLogAdd_32f),
    ADD(vornsLogAdd_32s_Sfs),
    ADD(vornsLogAdd_16s_Sfs),
    SUM(vornsLogSum_64f),
    SUM(vornsLogSum_32f),
    SUM(vornsLogSum_32s_Sfs),
    SUM(vornsLogSum_16s_Sfs),
    SUBTRACT(vornsLogSub_64f),
    SUBTRACT(vornsLogSub_32f),
    SUBTRACT(vornsLogSub_32s_Sfs),
    SUBTRACT(vornsLogSub_16s_Sfs),
};
// clang-format on

}  // namespace

Family logArithmeticWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
