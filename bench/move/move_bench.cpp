// Copies and fills beside the C library, fills and conjugation beside the plain loop and VOLK.
#include <cstring>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "calls/signature.h"
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

template <class T>
struct Peer {
    const char* name;
    std::function<void(const T*, T*, std::size_t)> call;
};

// One function beside its peers; a fill, with 5, has one buffer, the others two.
template <class... P, class Of = calls::Signature<calls::elementWiseShapes, P...>,
          class T = typename Of::template Pointee<void, calls::Role::dst>>
void add(const char* name, VornStatus (*function)(P...), std::type_identity_t<std::vector<Peer<T>>> peers) {
    using calls::Role;
    peers.insert(peers.begin(), {bench::ours, [=](const T* src, T* dst, std::size_t len) {
                                     Of::call(function, [&]<Role role, class Argument>() -> Argument {
                                         if constexpr (role == Role::src1) {
                                             return src;
                                         } else if constexpr (role == Role::dst) {
                                             return dst;
                                         } else if constexpr (role != Role::val) {
                                             return static_cast<int>(len);
                                         } else if constexpr (requires(Argument val) { val.re; }) {
                                             return {5, 0};
                                         } else {
                                             return 5;
                                         }
                                     });
                                 }});
    for (const Size& size : sizes()) {
        const std::size_t buffers = Of::shape.has(Role::src1) ? 2 : 1;
        const std::size_t len = size.bytes / sizeof(T) / buffers;
        if (len == 0) continue;
        for (const Peer<T>& peer : peers) {
            bench::add(name, size.name, peer.name, static_cast<std::int64_t>(len), [=, call = peer.call] {
                T* dst = reinterpret_cast<T*>(arena());
                const T* src = buffers == 2 ? dst + (len * sizeof(T) + 63) / 64 * 64 / sizeof(T) : dst;
                call(src, dst, len);
                bench::keep(dst);
            });
        }
    }
}

#ifdef VORNSR_HAVE_VOLK
void volkConjugate(const Vorn32fc* src, Vorn32fc* dst, std::size_t len) {
    volk_32fc_conjugate_32fc(reinterpret_cast<lv_32fc_t*>(dst), reinterpret_cast<const lv_32fc_t*>(src),
                             static_cast<unsigned>(len));
}
#endif

void registerAll() {
    add("Copy_8u", vornsCopy_8u, {{"memcpy", [](auto* s, auto* d, auto n) { std::memcpy(d, s, n); }}});
    add("Move_8u", vornsMove_8u, {{"memmove", [](auto* s, auto* d, auto n) { std::memmove(d, s, n); }}});
    add("Set_8u", vornsSet_8u, {{"memset", [](auto*, auto* d, auto n) { std::memset(d, 5, n); }}});
    add("Zero_32f", vornsZero_32f, {{"memset", [](auto*, auto* d, auto n) { std::memset(d, 0, 4 * n); }}});
    add("Set_16s", vornsSet_16s, {{"plain", [](auto*, auto* d, auto n) { plain::set(Vorn16s{5}, d, n); }}});
    add("Set_32f", vornsSet_32f, {{"plain", [](auto*, auto* d, auto n) { plain::set(5.0f, d, n); }}});
    add("Set_64f", vornsSet_64f, {{"plain", [](auto*, auto* d, auto n) { plain::set(5.0, d, n); }}});
    add("Set_64fc", vornsSet_64fc, {{"plain", [](auto*, auto* d, auto n) { plain::set(Vorn64fc{5, 0}, d, n); }}});
    add("Conj_16sc", vornsConj_16sc, {{"plain", [](auto* s, auto* d, auto n) { plain::conj(s, d, n); }}});
    std::vector<Peer<Vorn32fc>> conjugations = {{"plain", [](auto* s, auto* d, auto n) { plain::conj(s, d, n); }}};
#ifdef VORNSR_HAVE_VOLK
    conjugations.push_back({"volk", volkConjugate});
#endif
    add("Conj_32fc", vornsConj_32fc, conjugations);
    add("Conj_64fc", vornsConj_64fc, {{"plain", [](auto* s, auto* d, auto n) { plain::conj(s, d, n); }}});
    add("ConjFlip_16sc", vornsConjFlip_16sc, {{"plain", [](auto* s, auto* d, auto n) { plain::conjFlip(s, d, n); }}});
    add("ConjFlip_32fc", vornsConjFlip_32fc, {{"plain", [](auto* s, auto* d, auto n) { plain::conjFlip(s, d, n); }}});
    add("ConjFlip_64fc", vornsConjFlip_64fc, {{"plain", [](auto* s, auto* d, auto n) { plain::conjFlip(s, d, n); }}});
}

const bench::Family family(registerAll);

}  // namespace
