// Copies and fills beside the C library, fills and conjugation beside the plain loop and VOLK.
#include <cstring>

#include "plain/move.h"
#include "support/bench.h"
#include "vornsr.h"
#ifdef VORNSR_HAVE_VOLK
#include <volk/volk.h>
#endif

namespace {

struct Size {
    std::string name;
    std::size_t bytes;  // of all buffers together
};
std::vector<Size> sizes() {
    return {{"16B", 16},
            {"64B", 64},
            {"156B", 156},
            {"1KiB", 1024},
            {"L1", bench::inL1},
            {"L2", std::size_t{1} << 20},
            {"LLC", bench::inLastLevel},
            {"memory", bench::inMemory}};
}

// One block for all benchmarks here, made by the first one that runs.
std::byte* arena() {
    static const auto block = bench::buffer<std::byte>(bench::inMemory + 4096);
    return block.get();
}

// One function beside its peers, each called with (src, dst, len); a fill has one buffer, the others two.
template <class T>
void add(const char* name, std::size_t buffers,
         std::vector<std::pair<const char*, void (*)(const T*, T*, std::size_t)>> calls) {
    for (const Size& size : sizes()) {
        const std::size_t len = size.bytes / sizeof(T) / buffers;
        if (len == 0) continue;
        for (const auto& [peer, call] : calls) {
            bench::add(name, size.name, peer, static_cast<std::int64_t>(len), [=, call = call] {
                T* dst = reinterpret_cast<T*>(arena());
                const T* src = buffers == 2 ? dst + (len * sizeof(T) + 63) / 64 * 64 / sizeof(T) : dst;
                call(src, dst, len);
                bench::keep(dst);
            });
        }
    }
}

void registerAll() {
    add<Vorn8u>("Copy_8u", 2,
                {{bench::ours, [](auto* s, auto* d, auto n) { vornsCopy_8u(s, d, static_cast<int>(n)); }},
                 {"memcpy", [](auto* s, auto* d, auto n) { std::memcpy(d, s, n); }}});
    add<Vorn8u>("Move_8u", 2,
                {{bench::ours, [](auto* s, auto* d, auto n) { vornsMove_8u(s, d, static_cast<int>(n)); }},
                 {"memmove", [](auto* s, auto* d, auto n) { std::memmove(d, s, n); }}});
    add<Vorn8u>("Set_8u", 1,
                {{bench::ours, [](auto*, auto* d, auto n) { vornsSet_8u(5, d, static_cast<int>(n)); }},
                 {"memset", [](auto*, auto* d, auto n) { std::memset(d, 5, n); }}});
    add<Vorn32f>("Zero_32f", 1,
                 {{bench::ours, [](auto*, auto* d, auto n) { vornsZero_32f(d, static_cast<int>(n)); }},
                  {"memset", [](auto*, auto* d, auto n) { std::memset(d, 0, 4 * n); }}});
    add<Vorn16s>("Set_16s", 1,
                 {{bench::ours, [](auto*, auto* d, auto n) { vornsSet_16s(5, d, static_cast<int>(n)); }},
                  {"plain", [](auto*, auto* d, auto n) { plain::set(Vorn16s{5}, d, n); }}});
    add<Vorn32f>("Set_32f", 1,
                 {{bench::ours, [](auto*, auto* d, auto n) { vornsSet_32f(5, d, static_cast<int>(n)); }},
                  {"plain", [](auto*, auto* d, auto n) { plain::set(5.0f, d, n); }}});
    add<Vorn64f>("Set_64f", 1,
                 {{bench::ours, [](auto*, auto* d, auto n) { vornsSet_64f(5, d, static_cast<int>(n)); }},
                  {"plain", [](auto*, auto* d, auto n) { plain::set(5.0, d, n); }}});
    add<Vorn64fc>("Set_64fc", 1,
                  {{bench::ours,
                    [](auto*, auto* d, auto n) {
                        vornsSet_64fc({5, 6}, d, static_cast<int>(n));
                    }},
                   {"plain", [](auto*, auto* d, auto n) {
                        plain::set(Vorn64fc{5, 6}, d, n);
                    }}});
    add<Vorn16sc>("Conj_16sc", 2,
                  {{bench::ours, [](auto* s, auto* d, auto n) { vornsConj_16sc(s, d, static_cast<int>(n)); }},
                   {"plain", [](auto* s, auto* d, auto n) { plain::conj(s, d, n); }}});
    add<Vorn32fc>("Conj_32fc", 2,
                  {{bench::ours, [](auto* s, auto* d, auto n) { vornsConj_32fc(s, d, static_cast<int>(n)); }},
#ifdef VORNSR_HAVE_VOLK
                   {"volk",
                    [](auto* s, auto* d, auto n) {
                        volk_32fc_conjugate_32fc(reinterpret_cast<lv_32fc_t*>(d), reinterpret_cast<const lv_32fc_t*>(s),
                                                 static_cast<unsigned>(n));
                    }},
#endif
                   {"plain", [](auto* s, auto* d, auto n) { plain::conj(s, d, n); }}});
    add<Vorn64fc>("Conj_64fc", 2,
                  {{bench::ours, [](auto* s, auto* d, auto n) { vornsConj_64fc(s, d, static_cast<int>(n)); }},
                   {"plain", [](auto* s, auto* d, auto n) { plain::conj(s, d, n); }}});
    add<Vorn16sc>("ConjFlip_16sc", 2,
                  {{bench::ours, [](auto* s, auto* d, auto n) { vornsConjFlip_16sc(s, d, static_cast<int>(n)); }},
                   {"plain", [](auto* s, auto* d, auto n) { plain::conjFlip(s, d, n); }}});
    add<Vorn32fc>("ConjFlip_32fc", 2,
                  {{bench::ours, [](auto* s, auto* d, auto n) { vornsConjFlip_32fc(s, d, static_cast<int>(n)); }},
                   {"plain", [](auto* s, auto* d, auto n) { plain::conjFlip(s, d, n); }}});
    add<Vorn64fc>("ConjFlip_64fc", 2,
                  {{bench::ours, [](auto* s, auto* d, auto n) { vornsConjFlip_64fc(s, d, static_cast<int>(n)); }},
                   {"plain", [](auto* s, auto* d, auto n) { plain::conjFlip(s, d, n); }}});
}

const bench::Family family(registerAll);

}  // namespace
