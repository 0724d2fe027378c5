// Log-domain arithmetic beside plain loops over the C library's functions, and beside a vector maths library.
#include <algorithm>
#include <cstring>
#include <random>

#include "plain/log_arithmetic.h"
#include "support/bench.h"
#include "vornsr.h"

#if defined(VORNSR_HAVE_SLEEF) && defined(__AVX512F__)
#include <immintrin.h>
#include <sleef.h>
#endif

namespace {

using bench::buffer;
using bench::keep;
using bench::ours;

struct Size {
    const char* name;
    std::size_t bytes;
};
const Size sizes[] = {{"L1", bench::inL1}, {"L3", bench::inLastLevel}, {"memory", bench::inMemory}};

// Scores of components that compete: differences spread over all three intervals, and some terms dropped.
template <class T>
void fillScores(T* values, std::size_t len, double unit) {
    std::minstd_rand generator(7);
    std::exponential_distribution<double> below(0.25);
    for (std::size_t i = 0; i < len; ++i) values[i] = static_cast<T>((-60.0 - below(generator)) * unit);
}

// The result lands in srcDst, which is set back before each call so that all calls meet the same data.
template <class T>
struct Pair {
    Pair(std::size_t bytes, double unit)
        : len(static_cast<int>(bytes / (3 * sizeof(T)))),
          src(buffer<T>(len)),
          start(buffer<T>(len)),
          srcDst(buffer<T>(len)) {
        fillScores(start.get(), len, unit);
        for (int i = 0; i < len; ++i) src[i] = static_cast<T>(start[(i + len / 3) % len] - T(1));
    }
    void restart() const { std::memcpy(srcDst.get(), start.get(), sizeof(T) * static_cast<std::size_t>(len)); }
    int len;
    std::shared_ptr<T[]> src, start, srcDst;
};

template <class T, class Ours, class Plain>
void addPair(const char* function, double unit, Ours callOurs, Plain callPlain) {
    for (const Size& size : sizes) {
        if (size.bytes == bench::inMemory && sizeof(T) == 2) continue;  // bound by arithmetic at any size
        auto data = std::make_shared<Pair<T>>(size.bytes == bench::inMemory ? size.bytes / 8 : size.bytes, unit);
        bench::add(function, size.name, ours, data->len, [=] {
            data->restart();
            callOurs(data->src.get(), data->srcDst.get(), data->len);
            keep(data->srcDst.get());
        });
        bench::add(function, size.name, "plain", data->len, [=] {
            data->restart();
            callPlain(data->src.get(), data->srcDst.get(), data->len);
            keep(data->srcDst.get());
        });
    }
}

template <class T, class Ours, class Plain>
void addSum(const char* function, double unit, Ours callOurs, Plain callPlain) {
    for (int len : {5, 16, 100, 4096, 1 << 20}) {
        auto src = buffer<T>(static_cast<std::size_t>(len));
        fillScores(src.get(), static_cast<std::size_t>(len), unit);
        bench::add(function, std::to_string(len), ours, len, [=] {
            T dst;
            callOurs(src.get(), &dst, len);
            keep(&dst);
        });
        bench::add(function, std::to_string(len), "plain", len, [=] {
            T dst = callPlain(src.get(), len);
            keep(&dst);
        });
    }
}

// Log-subtract wants src above srcDst.
template <class T, class Ours, class Plain>
void addDifference(const char* function, double unit, Ours callOurs, Plain callPlain) {
    auto data = std::make_shared<Pair<T>>(bench::inL1, unit);
    for (int i = 0; i < data->len; ++i) data->src[i] = static_cast<T>(data->start[i] + T(1) + static_cast<T>(i % 5));
    bench::add(function, "L1", ours, data->len, [=] {
        data->restart();
        callOurs(data->src.get(), data->srcDst.get(), data->len);
        keep(data->srcDst.get());
    });
    bench::add(function, "L1", "plain", data->len, [=] {
        data->restart();
        callPlain(data->src.get(), data->srcDst.get(), data->len);
        keep(data->srcDst.get());
    });
}

#if defined(VORNSR_HAVE_SLEEF) && defined(__AVX512F__)
void sleefLogAdd(const float* src, float* srcDst, int len) {
    for (int i = 0; i < len; i += 16) {
        const auto lanes = static_cast<__mmask16>(len - i < 16 ? (1 << (len - i)) - 1 : 0xFFFF);
        const __m512 a = _mm512_maskz_loadu_ps(lanes, src + i), b = _mm512_maskz_loadu_ps(lanes, srcDst + i);
        const __m512 m = _mm512_max_ps(a, b), d = _mm512_sub_ps(_mm512_min_ps(a, b), m);
        _mm512_mask_storeu_ps(srcDst + i, lanes, _mm512_add_ps(m, Sleef_log1pf16_u10(Sleef_expf16_u10(d))));
    }
}
void addSleef() {
    for (const Size& size : sizes) {
        auto data = std::make_shared<Pair<float>>(size.bytes == bench::inMemory ? size.bytes / 8 : size.bytes, 1.0);
        bench::add("LogAdd_32f", size.name, "sleef", data->len, [=] {
            data->restart();
            sleefLogAdd(data->src.get(), data->srcDst.get(), data->len);
            keep(data->srcDst.get());
        });
    }
}
#else
void addSleef() {}
#endif

constexpr int sf16 = 8, sf32 = 16;
constexpr float scale16 = 1.0f / 256, scale32 = 1.0f / 65536;

const bench::Family family([] {
    addPair<Vorn32f>("LogAdd_32f", 1.0, vornsLogAdd_32f, [](auto* s, auto* d, int n) { plain::logAdd(s, d, n); });
    addSleef();
    addPair<Vorn64f>(
        "LogAdd_64f", 1.0, [](auto* s, auto* d, int n) { vornsLogAdd_64f(s, d, n, 0); },
        [](auto* s, auto* d, int n) { plain::logAdd(s, d, n); });
    addPair<Vorn32s>(
        "LogAdd_32s_Sfs", 65536.0, [](auto* s, auto* d, int n) { vornsLogAdd_32s_Sfs(s, d, n, sf32); },
        [](auto* s, auto* d, int n) { plain::logAdd(s, d, n, scale32); });
    addPair<Vorn16s>(
        "LogAdd_16s_Sfs", 256.0, [](auto* s, auto* d, int n) { vornsLogAdd_16s_Sfs(s, d, n, sf16); },
        [](auto* s, auto* d, int n) { plain::logAdd(s, d, n, scale16); });
    addSum<Vorn32f>("LogSum_32f", 1.0, vornsLogSum_32f, [](auto* s, int n) { return plain::logSum(s, n); });
    addSum<Vorn64f>("LogSum_64f", 1.0, vornsLogSum_64f, [](auto* s, int n) { return plain::logSum(s, n); });
    addSum<Vorn32s>(
        "LogSum_32s_Sfs", 65536.0, [](auto* s, auto* d, int n) { vornsLogSum_32s_Sfs(s, d, n, sf32); },
        [](auto* s, int n) { return plain::logSum(s, n, scale32); });
    addSum<Vorn16s>(
        "LogSum_16s_Sfs", 256.0, [](auto* s, auto* d, int n) { vornsLogSum_16s_Sfs(s, d, n, sf16); },
        [](auto* s, int n) { return plain::logSum(s, n, scale16); });
    addDifference<Vorn32f>("LogSub_32f", 1.0, vornsLogSub_32f, [](auto* s, auto* d, int n) { plain::logSub(s, d, n); });
    addDifference<Vorn64f>("LogSub_64f", 1.0, vornsLogSub_64f, [](auto* s, auto* d, int n) { plain::logSub(s, d, n); });
    addDifference<Vorn32s>(
        "LogSub_32s_Sfs", 65536.0, [](auto* s, auto* d, int n) { vornsLogSub_32s_Sfs(s, d, n, sf32); },
        [](auto* s, auto* d, int n) { plain::logSub(s, d, n, scale32); });
    addDifference<Vorn16s>(
        "LogSub_16s_Sfs", 256.0, [](auto* s, auto* d, int n) { vornsLogSub_16s_Sfs(s, d, n, sf16); },
        [](auto* s, auto* d, int n) { plain::logSub(s, d, n, scale16); });
});

}  // namespace
