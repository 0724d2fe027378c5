// Conversions beside the plain loop and VOLK's kernels.
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "plain/convert.h"
#include "support/bench.h"
#include "vornsr.h"

#ifdef VORNSR_HAVE_VOLK
#include <volk/volk.h>
#endif
#ifdef __F16C__
#include <immintrin.h>
#endif

namespace {

struct Size {
    const char* name;
    std::size_t bytes;
};
constexpr Size sizes[] = {{"L1", bench::inL1}, {"LLC", bench::inLastLevel}, {"memory", bench::inMemory}};

// Values of the size of speech samples in a unit that the destination holds: no overflow, no half below the smallest
// normal one.
template <class S>
std::shared_ptr<S[]> samples(std::size_t len, double amplitude) {
    auto block = bench::buffer<S>(len);
    for (std::size_t i = 0; i < len; ++i) {
        block[i] = static_cast<S>(amplitude * std::sin(0.1 + 0.37 * static_cast<double>(i % 8191)));
    }
    return block;
}
// Halves from 2^-4 to just below 16, both signs; this is their amplitude.
constexpr double halves = 0;
std::shared_ptr<Vorn16f[]> halfSamples(std::size_t len) {
    auto block = bench::buffer<Vorn16f>(len);
    for (std::size_t i = 0; i < len; ++i)
        block[i] = static_cast<Vorn16f>((0x2C00 + i * 37 % 0x2000) | (i % 3 == 0 ? 0x8000 : 0));
    return block;
}

template <class S, class D>
struct Peer {
    const char* name;
    std::function<void(const S*, D*, int)> call;
};

template <class S, class D>
using Peers = std::vector<Peer<S, D>>;

// ours and plain take the same arguments.
template <class S, class D, class... More>
void add(const char* name, double amplitude, VornStatus (*ours)(const S*, D*, int, More...),
         void (*plain)(const S*, D*, int, More...), std::type_identity_t<Peers<S, D>> peers,
         std::type_identity_t<More>... more) {
    peers.insert(peers.begin(), {bench::ours, [=](const S* src, D* dst, int len) { ours(src, dst, len, more...); }});
    peers.push_back({"plain", [=](const S* src, D* dst, int len) { plain(src, dst, len, more...); }});
    for (const Size& size : sizes) {
        const int len = static_cast<int>(size.bytes / (sizeof(S) + sizeof(D)));
        struct Buffers {
            std::shared_ptr<S[]> src;
            std::shared_ptr<D[]> dst;
        };
        // Made by the first run that needs them and shared by the peers.
        const auto buffers = std::make_shared<Buffers>();
        for (const Peer<S, D>& peer : peers) {
            bench::add(std::string("vornsConvert_") + name, size.name, peer.name, len, [=, call = peer.call] {
                if (!buffers->src) {
                    const auto n = static_cast<std::size_t>(len);
                    if constexpr (std::is_same_v<S, Vorn16f>) {
                        buffers->src = amplitude == halves ? halfSamples(n) : samples<S>(n, amplitude);
                    } else {
                        buffers->src = samples<S>(n, amplitude);
                    }
                    buffers->dst = bench::buffer<D>(n);
                }
                call(buffers->src.get(), buffers->dst.get(), len);
                bench::keep(buffers->dst.get());
            });
        }
    }
}

#ifdef VORNSR_HAVE_VOLK
#define VOLK(call)                                  \
    {                                               \
        "volk", [](auto s, auto d, int n) { call; } \
    }
#else
#define VOLK(call)
#endif
#ifdef __F16C__
// The processor's own conversions, which round subnormal halves once and have not-a-numbers of their own.
void f16c(const Vorn32f* src, Vorn16f* dst, int len) {
    for (int i = 0; i + 8 <= len; i += 8) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i),
                         _mm256_cvtps_ph(_mm256_loadu_ps(src + i), _MM_FROUND_TO_NEAREST_INT));
    }
}
void f16c(const Vorn16f* src, Vorn32f* dst, int len) {
    for (int i = 0; i + 8 <= len; i += 8) {
        _mm256_storeu_ps(dst + i, _mm256_cvtph_ps(_mm_loadu_si128(reinterpret_cast<const __m128i*>(src + i))));
    }
}
#define F16C                                                 \
    {                                                        \
        "f16c", [](auto s, auto d, int n) { f16c(s, d, n); } \
    }
#else
#define F16C
#endif

const bench::Family family([] {
    add("8s16s", 127, vornsConvert_8s16s, plain::convert_8s16s, {});
    add("16s32s", 32767, vornsConvert_16s32s, plain::convert_16s32s, {});
    add("8s32f", 127, vornsConvert_8s32f, plain::convert_8s32f,
        {VOLK(volk_8i_s32f_convert_32f(d, s, 1.0f, unsigned(n)))});
    add("8u32f", 127, vornsConvert_8u32f, plain::convert_8u32f, {});
    add("16s32f", 32767, vornsConvert_16s32f, plain::convert_16s32f,
        {VOLK(volk_16i_s32f_convert_32f(d, s, 1.0f, unsigned(n)))});
    add("16u32f", 32767, vornsConvert_16u32f, plain::convert_16u32f, {});
    add("32s64f", 1e9, vornsConvert_32s64f, plain::convert_32s64f, {});
    add("32f64f", 1, vornsConvert_32f64f, plain::convert_32f64f, {VOLK(volk_32f_convert_64f(d, s, unsigned(n)))});
    add("32s32f", 1e9, vornsConvert_32s32f, plain::convert_32s32f,
        {VOLK(volk_32i_s32f_convert_32f(d, s, 1.0f, unsigned(n)))});
    add("32s16s", 40000, vornsConvert_32s16s, plain::convert_32s16s, {});
    add("64f32f", 1, vornsConvert_64f32f, plain::convert_64f32f, {VOLK(volk_64f_convert_32f(d, s, unsigned(n)))});
    add("16s32f_Sfs", 32767, vornsConvert_16s32f_Sfs, plain::convert_16s32f_Sfs,
        {VOLK(volk_16i_s32f_convert_32f(d, s, 32768.0f, unsigned(n)))}, 15);
    add("16s64f_Sfs", 32767, vornsConvert_16s64f_Sfs, plain::convert_16s64f_Sfs, {}, 15);
    add("32s32f_Sfs", 1e9, vornsConvert_32s32f_Sfs, plain::convert_32s32f_Sfs,
        {VOLK(volk_32i_s32f_convert_32f(d, s, 32768.0f, unsigned(n)))}, 15);
    add("32s64f_Sfs", 1e9, vornsConvert_32s64f_Sfs, plain::convert_32s64f_Sfs, {}, 15);
    add("32s16s_Sfs_right", 1e9, vornsConvert_32s16s_Sfs, plain::convert_32s16s_Sfs, {}, 15);
    add("32s16s_Sfs_left", 10000, vornsConvert_32s16s_Sfs, plain::convert_32s16s_Sfs, {}, -2);
    add("32f8s_Sfs", 1, vornsConvert_32f8s_Sfs, plain::convert_32f8s_Sfs,
        {VOLK(volk_32f_s32f_convert_8i(d, s, 128.0f, unsigned(n)))}, vornRndNear, -7);
    add("32f8u_Sfs", 1, vornsConvert_32f8u_Sfs, plain::convert_32f8u_Sfs, {}, vornRndNear, -7);
    add("32f16s_Sfs", 1, vornsConvert_32f16s_Sfs, plain::convert_32f16s_Sfs,
        {VOLK(volk_32f_s32f_convert_16i(d, s, 32768.0f, unsigned(n)))}, vornRndNear, -15);
    add("32f16s_Sfs_zero", 1, vornsConvert_32f16s_Sfs, plain::convert_32f16s_Sfs, {}, vornRndZero, -15);
    add("32f16u_Sfs", 1, vornsConvert_32f16u_Sfs, plain::convert_32f16u_Sfs, {}, vornRndNear, -15);
    add("32f32s_Sfs", 1, vornsConvert_32f32s_Sfs, plain::convert_32f32s_Sfs,
        {VOLK(volk_32f_s32f_convert_32i(d, s, 2147483648.0f, unsigned(n)))}, vornRndNear, -31);
    add("64f32s_Sfs", 1, vornsConvert_64f32s_Sfs, plain::convert_64f32s_Sfs, {}, vornRndNear, -31);
    add("16f16s_Sfs", halves, vornsConvert_16f16s_Sfs, plain::convert_16f16s_Sfs, {}, vornRndNear, -10);
    add("16f16s_Sfs_byValue", halves, vornsConvert_16f16s_Sfs, plain::convert_16f16s_Sfs, {}, vornRndNear, -15);
    add("16s16f", 32767, vornsConvert_16s16f, plain::convert_16s16f, {}, vornRndNear);
    add("32f16f", 1, vornsConvert_32f16f, plain::convert_32f16f, {F16C}, vornRndNear);
    // Silence: values whose halves are subnormal. The plain loop meets subnormal products, which the processor takes
    // its time for.
    add("32f16f_quiet", 0x1p-15, vornsConvert_32f16f, plain::convert_32f16f, {F16C}, vornRndNear);
    add("16f32f", halves, vornsConvert_16f32f, plain::convert_16f32f, {F16C});
});

}  // namespace
