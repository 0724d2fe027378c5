// Conversions beside the plain loop and VOLK's kernels.
#include <cmath>
#include <type_traits>

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
// Halves from 2^-4 to just below 16, both signs.
std::shared_ptr<Vorn16f[]> halves(std::size_t len) {
    auto block = bench::buffer<Vorn16f>(len);
    for (std::size_t i = 0; i < len; ++i)
        block[i] = static_cast<Vorn16f>((0x2C00 + i * 37 % 0x2000) | (i % 3 == 0 ? 0x8000 : 0));
    return block;
}

template <class S, class D>
struct Peer {
    const char* name;
    void (*call)(const S*, D*, int);
};

template <class S, class D>
void addSizes(const char* name, double amplitude, std::initializer_list<Peer<S, D>> peers, bool isHalf = false) {
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
                    if constexpr (std::is_same_v<S, Vorn16f>) {
                        buffers->src = isHalf ? halves(static_cast<std::size_t>(len))
                                              : samples<S>(static_cast<std::size_t>(len), amplitude);
                    } else {
                        buffers->src = samples<S>(static_cast<std::size_t>(len), amplitude);
                    }
                    buffers->dst = bench::buffer<D>(static_cast<std::size_t>(len));
                }
                call(buffers->src.get(), buffers->dst.get(), len);
                bench::keep(buffers->dst.get());
            });
        }
    }
}

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
#endif

const bench::Family family([] {
    addSizes<Vorn8s, Vorn16s>(
        "8s16s", 127,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_8s16s(s, d, n); }}, {"plain", plain::convert_8s16s}});
    addSizes<Vorn16s, Vorn32s>(
        "16s32s", 32767,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_16s32s(s, d, n); }}, {"plain", plain::convert_16s32s}});
    addSizes<Vorn8s, Vorn32f>(
        "8s32f", 127,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_8s32f(s, d, n); }},
#ifdef VORNSR_HAVE_VOLK
         {"volk", [](auto s, auto d, int n) { volk_8i_s32f_convert_32f(d, s, 1.0f, unsigned(n)); }},
#endif
         {"plain", plain::convert_8s32f}});
    addSizes<Vorn8u, Vorn32f>(
        "8u32f", 127,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_8u32f(s, d, n); }}, {"plain", plain::convert_8u32f}});
    addSizes<Vorn16s, Vorn32f>(
        "16s32f", 32767,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_16s32f(s, d, n); }},
#ifdef VORNSR_HAVE_VOLK
         {"volk", [](auto s, auto d, int n) { volk_16i_s32f_convert_32f(d, s, 1.0f, unsigned(n)); }},
#endif
         {"plain", plain::convert_16s32f}});
    addSizes<Vorn16u, Vorn32f>(
        "16u32f", 32767,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_16u32f(s, d, n); }}, {"plain", plain::convert_16u32f}});
    addSizes<Vorn32s, Vorn64f>(
        "32s64f", 1e9,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32s64f(s, d, n); }}, {"plain", plain::convert_32s64f}});
    addSizes<Vorn32f, Vorn64f>("32f64f", 1,
                               {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32f64f(s, d, n); }},
#ifdef VORNSR_HAVE_VOLK
                                {"volk", [](auto s, auto d, int n) { volk_32f_convert_64f(d, s, unsigned(n)); }},
#endif
                                {"plain", plain::convert_32f64f}});
    addSizes<Vorn32s, Vorn32f>(
        "32s32f", 1e9,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32s32f(s, d, n); }},
#ifdef VORNSR_HAVE_VOLK
         {"volk", [](auto s, auto d, int n) { volk_32i_s32f_convert_32f(d, s, 1.0f, unsigned(n)); }},
#endif
         {"plain", plain::convert_32s32f}});
    addSizes<Vorn32s, Vorn16s>(
        "32s16s", 40000,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32s16s(s, d, n); }}, {"plain", plain::convert_32s16s}});
    addSizes<Vorn64f, Vorn32f>("64f32f", 1,
                               {{bench::ours, [](auto s, auto d, int n) { vornsConvert_64f32f(s, d, n); }},
#ifdef VORNSR_HAVE_VOLK
                                {"volk", [](auto s, auto d, int n) { volk_64f_convert_32f(d, s, unsigned(n)); }},
#endif
                                {"plain", plain::convert_64f32f}});
    addSizes<Vorn16s, Vorn32f>(
        "16s32f_Sfs", 32767,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_16s32f_Sfs(s, d, n, 15); }},
#ifdef VORNSR_HAVE_VOLK
         {"volk", [](auto s, auto d, int n) { volk_16i_s32f_convert_32f(d, s, 32768.0f, unsigned(n)); }},
#endif
         {"plain", [](auto s, auto d, int n) { plain::convert_16s32f_Sfs(s, d, n, 15); }}});
    addSizes<Vorn16s, Vorn64f>("16s64f_Sfs", 32767,
                               {{bench::ours, [](auto s, auto d, int n) { vornsConvert_16s64f_Sfs(s, d, n, 15); }},
                                {"plain", [](auto s, auto d, int n) { plain::convert_16s64f_Sfs(s, d, n, 15); }}});
    addSizes<Vorn32s, Vorn32f>(
        "32s32f_Sfs", 1e9,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32s32f_Sfs(s, d, n, 15); }},
#ifdef VORNSR_HAVE_VOLK
         {"volk", [](auto s, auto d, int n) { volk_32i_s32f_convert_32f(d, s, 32768.0f, unsigned(n)); }},
#endif
         {"plain", [](auto s, auto d, int n) { plain::convert_32s32f_Sfs(s, d, n, 15); }}});
    addSizes<Vorn32s, Vorn64f>("32s64f_Sfs", 1e9,
                               {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32s64f_Sfs(s, d, n, 15); }},
                                {"plain", [](auto s, auto d, int n) { plain::convert_32s64f_Sfs(s, d, n, 15); }}});
    addSizes<Vorn32s, Vorn16s>("32s16s_Sfs_right", 1e9,
                               {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32s16s_Sfs(s, d, n, 15); }},
                                {"plain", [](auto s, auto d, int n) { plain::convert_32s16s_Sfs(s, d, n, 15); }}});
    addSizes<Vorn32s, Vorn16s>("32s16s_Sfs_left", 10000,
                               {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32s16s_Sfs(s, d, n, -2); }},
                                {"plain", [](auto s, auto d, int n) { plain::convert_32s16s_Sfs(s, d, n, -2); }}});
    addSizes<Vorn32f, Vorn8s>(
        "32f8s_Sfs", 1,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32f8s_Sfs(s, d, n, vornRndNear, -7); }},
#ifdef VORNSR_HAVE_VOLK
         {"volk", [](auto s, auto d, int n) { volk_32f_s32f_convert_8i(d, s, 128.0f, unsigned(n)); }},
#endif
         {"plain", [](auto s, auto d, int n) { plain::convert_32f8s_Sfs(s, d, n, vornRndNear, -7); }}});
    addSizes<Vorn32f, Vorn8u>(
        "32f8u_Sfs", 1,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32f8u_Sfs(s, d, n, vornRndNear, -7); }},
         {"plain", [](auto s, auto d, int n) { plain::convert_32f8u_Sfs(s, d, n, vornRndNear, -7); }}});
    addSizes<Vorn32f, Vorn16s>(
        "32f16s_Sfs", 1,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32f16s_Sfs(s, d, n, vornRndNear, -15); }},
#ifdef VORNSR_HAVE_VOLK
         {"volk", [](auto s, auto d, int n) { volk_32f_s32f_convert_16i(d, s, 32768.0f, unsigned(n)); }},
#endif
         {"plain", [](auto s, auto d, int n) { plain::convert_32f16s_Sfs(s, d, n, vornRndNear, -15); }}});
    addSizes<Vorn32f, Vorn16s>(
        "32f16s_Sfs_zero", 1,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32f16s_Sfs(s, d, n, vornRndZero, -15); }},
         {"plain", [](auto s, auto d, int n) { plain::convert_32f16s_Sfs(s, d, n, vornRndZero, -15); }}});
    addSizes<Vorn32f, Vorn16u>(
        "32f16u_Sfs", 1,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32f16u_Sfs(s, d, n, vornRndNear, -15); }},
         {"plain", [](auto s, auto d, int n) { plain::convert_32f16u_Sfs(s, d, n, vornRndNear, -15); }}});
    addSizes<Vorn32f, Vorn32s>(
        "32f32s_Sfs", 1,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32f32s_Sfs(s, d, n, vornRndNear, -31); }},
#ifdef VORNSR_HAVE_VOLK
         {"volk", [](auto s, auto d, int n) { volk_32f_s32f_convert_32i(d, s, 2147483648.0f, unsigned(n)); }},
#endif
         {"plain", [](auto s, auto d, int n) { plain::convert_32f32s_Sfs(s, d, n, vornRndNear, -31); }}});
    addSizes<Vorn64f, Vorn32s>(
        "64f32s_Sfs", 1,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_64f32s_Sfs(s, d, n, vornRndNear, -31); }},
         {"plain", [](auto s, auto d, int n) { plain::convert_64f32s_Sfs(s, d, n, vornRndNear, -31); }}});
    addSizes<Vorn16f, Vorn16s>(
        "16f16s_Sfs", 0,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_16f16s_Sfs(s, d, n, vornRndNear, -10); }},
         {"plain", [](auto s, auto d, int n) { plain::convert_16f16s_Sfs(s, d, n, vornRndNear, -10); }}},
        true);
    addSizes<Vorn16f, Vorn16s>(
        "16f16s_Sfs_byValue", 0,
        {{bench::ours, [](auto s, auto d, int n) { vornsConvert_16f16s_Sfs(s, d, n, vornRndNear, -15); }},
         {"plain", [](auto s, auto d, int n) { plain::convert_16f16s_Sfs(s, d, n, vornRndNear, -15); }}},
        true);
    addSizes<Vorn16s, Vorn16f>("16s16f", 32767,
                               {{bench::ours, [](auto s, auto d, int n) { vornsConvert_16s16f(s, d, n, vornRndNear); }},
                                {"plain", [](auto s, auto d, int n) { plain::convert_16s16f(s, d, n, vornRndNear); }}});
    addSizes<Vorn32f, Vorn16f>("32f16f", 1,
                               {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32f16f(s, d, n, vornRndNear); }},
#ifdef __F16C__
                                {"f16c", f16c},
#endif
                                {"plain", [](auto s, auto d, int n) { plain::convert_32f16f(s, d, n, vornRndNear); }}});
    // Silence: values whose halves are subnormal. The plain loop meets subnormal products, which the processor takes
    // its time for.
    addSizes<Vorn32f, Vorn16f>("32f16f_quiet", 0x1p-15,
                               {{bench::ours, [](auto s, auto d, int n) { vornsConvert_32f16f(s, d, n, vornRndNear); }},
#ifdef __F16C__
                                {"f16c", f16c},
#endif
                                {"plain", [](auto s, auto d, int n) { plain::convert_32f16f(s, d, n, vornRndNear); }}});
    addSizes<Vorn16f, Vorn32f>("16f32f", 0,
                               {{bench::ours, [](auto s, auto d, int n) { vornsConvert_16f32f(s, d, n); }},
#ifdef __F16C__
                                {"f16c", f16c},
#endif
                                {"plain", plain::convert_16f32f}},
                               true);
});

}  // namespace
