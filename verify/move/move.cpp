// Block operations and conjugation.
#include <cstddef>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

// Moves go by one element up, then by one down; fills take the element behind the block.
void transfer(const calls::Function& function, Source& source, Digest& digest) {
    const Role written = function.has(Role::srcDst) ? Role::srcDst : Role::dst;
    const Element element = function.element(written);
    const auto call = [&](const unsigned char* src, unsigned char* dst, const unsigned char* val, int len) {
        calls::Arguments arguments;
        arguments[Role::src1] = src, arguments[written] = dst, arguments[Role::val] = val, arguments[Role::len] = len;
        digest.add(function(arguments));
    };
    const auto addBytes = [&](const Array& block) { digest.bytes(block.data(), block.bytes()); };
    const bool moves = function.nameHas("Move_"), copies = function.has(Role::src1) && !moves;
    for (int len : lengths) {
        const auto n = static_cast<std::size_t>(len);
        Array block = source.patterns(element, copies || written == Role::srcDst ? n : n + 1);
        if (copies) {
            Array dst(element, n);
            call(block.data(), dst.data(), nullptr, len);
            addBytes(dst);
            continue;
        }
        unsigned char* second = block.data() + calls::sizeOf(element);
        call(block.data(), moves ? second : block.data(), block.at(n), len);
        addBytes(block);
        if (moves) {
            call(second, block.data(), nullptr, len);
            addBytes(block);
        }
    }
    if (copies) call(nullptr, nullptr, nullptr, 0);
}
Workload workload(const calls::Function& function) {
    return {function.name(), [=](Source& source, Digest& digest) { transfer(function, source, digest); }};
}

#define ROW(function) workload({VORN_NAMED(function), calls::elementWiseShapes})

// clang-format off
const Workload workloads[] = {
    ROW(vornsCopy_8u),
    ROW(vornsMove_8u),
    ROW(vornsZero_8u),
    ROW(vornsSet_8u),
    ROW(vornsCopy_16s),
    ROW(vornsMove_16s),
    ROW(vornsZero_16s),
    ROW(vornsSet_16s),
    ROW(vornsCopy_16sc),
    ROW(vornsMove_16sc),
    ROW(vornsZero_16sc),
    ROW(vornsSet_16sc),
    ROW(vornsCopy_32f),
    ROW(vornsMove_32f),
    ROW(vornsZero_32f),
    ROW(vornsSet_32f),
    ROW(vornsCopy_32fc),
    ROW(vornsMove_32fc),
    ROW(vornsZero_32fc),
    ROW(vornsSet_32fc),
    ROW(vornsCopy_64f),
    ROW(vornsMove_64f),
    ROW(vornsZero_64f),
    ROW(vornsSet_64f),
    ROW(vornsCopy_64fc),
    ROW(vornsMove_64fc),
    ROW(vornsZero_64fc),
    ROW(vornsSet_64fc),
    ROW(vornsCopy_32s),
    ROW(vornsMove_32s),
    ROW(vornsZero_32s),
    ROW(vornsSet_32s),
    ROW(vornsCopy_32sc),
    ROW(vornsMove_32sc),
    ROW(vornsZero_32sc),
    ROW(vornsSet_32sc),
    ROW(vornsCopy_64s),
    ROW(vornsMove_64s),
    ROW(vornsZero_64s),
    ROW(vornsSet_64s),
    ROW(vornsCopy_64sc),
    ROW(vornsMove_64sc),
    ROW(vornsZero_64sc),
    ROW(vornsSet_64sc),
    ROW(vornsConj_64fc_I),
    ROW(vornsConj_64fc),
    ROW(vornsConjFlip_64fc),
    ROW(vornsConj_32fc_I),
    ROW(vornsConj_32fc),
    ROW(vornsConjFlip_32fc),
    ROW(vornsConj_16sc_I),
    ROW(vornsConj_16sc),
    ROW(vornsConjFlip_16sc),
};
// clang-format on

}  // namespace

Family moveWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
