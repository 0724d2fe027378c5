// Element-wise arithmetic beside the plain loop, VOLK where it has the function, and memcpy for what memory can give.
#include <cstring>

#include "plain/arithmetic.h"
#include "support/bench.h"
#include "vornsr.h"
#ifdef VORNSR_HAVE_VOLK
#include <volk/volk.h>
#endif

namespace {

// One block for all benchmarks here, made by the first one that runs; no element is zero, and the floats
// lie near 1.
std::byte* arena() {
    static const auto block = [] {
        auto bytes = bench::buffer<std::byte>(bench::inMemory + 4096);
        for (std::size_t i = 0; i < bench::inMemory + 4096; ++i)
            bytes[i] = static_cast<std::byte>(i % 4 == 3 ? 0x3F : 1 + i % 61);
        return bytes;
    }();
    return block.get();
}

template <class T>
using Call = void (*)(const T* a, const T* b, T* dst, std::size_t len);

template <class T>
void add(const std::string& name, std::vector<std::pair<const char*, Call<T>>> calls) {
    calls.push_back({"memcpy", [](const T* a, const T*, T* dst, std::size_t len) {
                         // As many bytes as two operands and a result have.
                         const std::size_t bytes = 3 * len * sizeof(T) / 2;
                         std::memcpy(dst + 2 * len - bytes / sizeof(T), a, bytes);
                     }});
    const std::pair<const char*, std::size_t> sizes[] = {
        {"39", 3 * 39 * sizeof(T)}, {"L1", bench::inL1}, {"LLC", bench::inLastLevel}, {"memory", bench::inMemory}};
    for (const auto& [size, bytes] : sizes) {
        const std::size_t len = bytes / sizeof(T) / 3, stride = len * sizeof(T) / 64 * 64;
        for (const auto& [peer, call] : calls) {
            if (std::string(peer) == "memcpy" && std::string(size) != "memory") continue;
            bench::add(name, size, peer, static_cast<std::int64_t>(len), [=, call = call, stride = stride + 64] {
                std::byte* block = arena();
                auto* a = reinterpret_cast<T*>(block);
                auto* b = reinterpret_cast<T*>(block + stride);
                auto* dst = reinterpret_cast<T*>(block + 2 * stride);
                call(a, b, dst, len);
                bench::keep(dst);
            });
        }
    }
}

#define OURS(call)                                                    \
    {                                                                 \
        bench::ours, [](auto* a, auto* b, auto* d, std::size_t len) { \
            const int n = static_cast<int>(len);                      \
            call;                                                     \
        }                                                             \
    }
#define PLAIN(call)                                                       \
    {                                                                     \
        "plain", [](auto* a, auto* b, auto* d, std::size_t len) { call; } \
    }
#ifdef VORNSR_HAVE_VOLK
#define VOLK(call)                                               \
    , {                                                          \
        "volk", [](auto* a, auto* b, auto* d, std::size_t len) { \
            const auto n = static_cast<unsigned>(len);           \
            call;                                                \
        }                                                        \
    }
#else
#define VOLK(call)
#endif

template <int sf>
void addIntegers() {
    const std::string at = "_sf" + std::to_string(sf);
    add<Vorn8u>("Add_8u_Sfs" + at, {OURS(vornsAdd_8u_Sfs(a, b, d, n, sf)), PLAIN(plain::addScaled(a, b, d, len, sf))});
    add<Vorn16s>("Add_16s_Sfs" + at,
                 {OURS(vornsAdd_16s_Sfs(a, b, d, n, sf)), PLAIN(plain::addScaled(a, b, d, len, sf))});
    add<Vorn32s>("Add_32s_Sfs" + at,
                 {OURS(vornsAdd_32s_Sfs(a, b, d, n, sf)), PLAIN(plain::addScaled(a, b, d, len, sf))});
    add<Vorn8u>("Mul_8u_Sfs" + at,
                {OURS(vornsMul_8u_Sfs(a, b, d, n, sf)), PLAIN(plain::multiplyScaled(a, b, d, len, sf))});
    add<Vorn16s>("Mul_16s_Sfs" + at,
                 {OURS(vornsMul_16s_Sfs(a, b, d, n, sf)), PLAIN(plain::multiplyScaled(a, b, d, len, sf))});
    add<Vorn32s>("Mul_32s_Sfs" + at,
                 {OURS(vornsMul_32s_Sfs(a, b, d, n, sf)), PLAIN(plain::multiplyScaled(a, b, d, len, sf))});
    add<Vorn8u>("Div_8u_Sfs" + at,
                {OURS(vornsDiv_8u_Sfs(b, a, d, n, sf)), PLAIN(plain::divideScaled(a, b, d, len, sf))});
    add<Vorn16s>("Div_16s_Sfs" + at,
                 {OURS(vornsDiv_16s_Sfs(b, a, d, n, sf)), PLAIN(plain::divideScaled(a, b, d, len, sf))});
    add<Vorn32s>("Div_32s_Sfs" + at,
                 {OURS(vornsDiv_32s_Sfs(b, a, d, n, sf)), PLAIN(plain::divideScaled(a, b, d, len, sf))});
}

void registerAll() {
    add<Vorn32f>("Add_32f", {OURS(vornsAdd_32f(a, b, d, n)),
                             PLAIN(plain::add(a, b, d, len)) VOLK(volk_32f_x2_add_32f(d, a, b, n))});
    add<Vorn64f>("Add_64f", {OURS(vornsAdd_64f(a, b, d, n)),
                             PLAIN(plain::add(a, b, d, len)) VOLK(volk_64f_x2_add_64f(d, a, b, n))});
    add<Vorn32f>("Mul_32f", {OURS(vornsMul_32f(a, b, d, n)),
                             PLAIN(plain::multiply(a, b, d, len)) VOLK(volk_32f_x2_multiply_32f(d, a, b, n))});
    add<Vorn32f>("Div_32f", {OURS(vornsDiv_32f(b, a, d, n)),
                             PLAIN(plain::divide(a, b, d, len)) VOLK(volk_32f_x2_divide_32f(d, a, b, n))});
    add<Vorn64f>("Div_64f", {OURS(vornsDiv_64f(b, a, d, n)), PLAIN(plain::divide(a, b, d, len))});
    add<Vorn32f>("MulC_32f", {
        OURS((void)b; vornsMulC_32f(a, 3, d, n)),
            PLAIN((void)b; plain::multiplyConstant(a, 3, d, len)) VOLK((void)b; volk_32f_s32f_multiply_32f(d, a, 3, n))
    });
    add<Vorn32fc>("Mul_32fc", {OURS(vornsMul_32fc(a, b, d, n)),
                               PLAIN(plain::multiplyComplex(a, b, d, len)) VOLK(volk_32fc_x2_multiply_32fc(
                                   reinterpret_cast<lv_32fc_t*>(d), reinterpret_cast<const lv_32fc_t*>(a),
                                   reinterpret_cast<const lv_32fc_t*>(b), n))});
    add<Vorn32fc>("Div_32fc", {OURS(vornsDiv_32fc(b, a, d, n)),
                               PLAIN(plain::divideComplex(a, b, d, len)) VOLK(volk_32fc_x2_divide_32fc(
                                   reinterpret_cast<lv_32fc_t*>(d), reinterpret_cast<const lv_32fc_t*>(a),
                                   reinterpret_cast<const lv_32fc_t*>(b), n))});
    addIntegers<0>();
    addIntegers<1>();
    addIntegers<5>();
    addIntegers<-4>();
    add<Vorn16sc>("Mul_16sc_Sfs_sf5",
                  {OURS(vornsMul_16sc_Sfs(a, b, d, n, 5)), PLAIN(plain::multiplyComplexScaled(a, b, d, len, 5))});
    add<Vorn32sc>("Mul_32sc_Sfs_sf5",
                  {OURS(vornsMul_32sc_Sfs(a, b, d, n, 5)), PLAIN(plain::multiplyComplexScaled(a, b, d, len, 5))});
}

const bench::Family family(registerAll);

}  // namespace
