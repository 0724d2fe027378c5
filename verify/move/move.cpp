// Block operations and conjugation.
#include <cstddef>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

template <class T>
void addBytes(Digest& digest, const std::vector<T>& values) {
    digest.bytes(values.data(), values.size() * sizeof(T));
}

template <auto transfer, class T>
void copied(Source& source, Digest& digest) {
    for (int len : lengths) {
        const auto src = source.patterns<T>(static_cast<std::size_t>(len));
        std::vector<T> dst(src.size());
        digest.add(transfer(src.data(), dst.data(), len));
        addBytes(digest, dst);
    }
    digest.add(transfer(nullptr, nullptr, 0));
}

// The block moves by one element up, then by one down.
template <auto transfer, class T>
void moved(Source& source, Digest& digest) {
    for (int len : lengths) {
        auto block = source.patterns<T>(static_cast<std::size_t>(len) + 1);
        digest.add(transfer(block.data(), block.data() + 1, len));
        addBytes(digest, block);
        digest.add(transfer(block.data() + 1, block.data(), len));
        addBytes(digest, block);
    }
}

template <auto clear, class T>
void zeroed(Source& source, Digest& digest) {
    for (int len : lengths) {
        auto dst = source.patterns<T>(static_cast<std::size_t>(len) + 1);
        digest.add(clear(dst.data(), len));
        addBytes(digest, dst);
    }
}

template <auto fill, class T>
void filled(Source& source, Digest& digest) {
    for (int len : lengths) {
        auto dst = source.patterns<T>(static_cast<std::size_t>(len) + 1);
        digest.add(fill(dst.back(), dst.data(), len));
        addBytes(digest, dst);
    }
}

template <auto change, class T>
void inPlace(Source& source, Digest& digest) {
    for (int len : lengths) {
        auto srcDst = source.patterns<T>(static_cast<std::size_t>(len));
        digest.add(change(srcDst.data(), len));
        addBytes(digest, srcDst);
    }
}

const Workload workloads[] = {
    {"vornsCopy_8u", copied<vornsCopy_8u, Vorn8u>},
    {"vornsMove_8u", moved<vornsMove_8u, Vorn8u>},
    {"vornsZero_8u", zeroed<vornsZero_8u, Vorn8u>},
    {"vornsSet_8u", filled<vornsSet_8u, Vorn8u>},
    {"vornsCopy_16s", copied<vornsCopy_16s, Vorn16s>},
    {"vornsMove_16s", moved<vornsMove_16s, Vorn16s>},
    {"vornsZero_16s", zeroed<vornsZero_16s, Vorn16s>},
    {"vornsSet_16s", filled<vornsSet_16s, Vorn16s>},
    {"vornsCopy_16sc", copied<vornsCopy_16sc, Vorn16sc>},
    {"vornsMove_16sc", moved<vornsMove_16sc, Vorn16sc>},
    {"vornsZero_16sc", zeroed<vornsZero_16sc, Vorn16sc>},
    {"vornsSet_16sc", filled<vornsSet_16sc, Vorn16sc>},
    {"vornsCopy_32f", copied<vornsCopy_32f, Vorn32f>},
    {"vornsMove_32f", moved<vornsMove_32f, Vorn32f>},
    {"vornsZero_32f", zeroed<vornsZero_32f, Vorn32f>},
    {"vornsSet_32f", filled<vornsSet_32f, Vorn32f>},
    {"vornsCopy_32fc", copied<vornsCopy_32fc, Vorn32fc>},
    {"vornsMove_32fc", moved<vornsMove_32fc, Vorn32fc>},
    {"vornsZero_32fc", zeroed<vornsZero_32fc, Vorn32fc>},
    {"vornsSet_32fc", filled<vornsSet_32fc, Vorn32fc>},
    {"vornsCopy_64f", copied<vornsCopy_64f, Vorn64f>},
    {"vornsMove_64f", moved<vornsMove_64f, Vorn64f>},
    {"vornsZero_64f", zeroed<vornsZero_64f, Vorn64f>},
    {"vornsSet_64f", filled<vornsSet_64f, Vorn64f>},
    {"vornsCopy_64fc", copied<vornsCopy_64fc, Vorn64fc>},
    {"vornsMove_64fc", moved<vornsMove_64fc, Vorn64fc>},
    {"vornsZero_64fc", zeroed<vornsZero_64fc, Vorn64fc>},
    {"vornsSet_64fc", filled<vornsSet_64fc, Vorn64fc>},
    {"vornsCopy_32s", copied<vornsCopy_32s, Vorn32s>},
    {"vornsMove_32s", moved<vornsMove_32s, Vorn32s>},
    {"vornsZero_32s", zeroed<vornsZero_32s, Vorn32s>},
    {"vornsSet_32s", filled<vornsSet_32s, Vorn32s>},
    {"vornsCopy_32sc", copied<vornsCopy_32sc, Vorn32sc>},
    {"vornsMove_32sc", moved<vornsMove_32sc, Vorn32sc>},
    {"vornsZero_32sc", zeroed<vornsZero_32sc, Vorn32sc>},
    {"vornsSet_32sc", filled<vornsSet_32sc, Vorn32sc>},
    {"vornsCopy_64s", copied<vornsCopy_64s, Vorn64s>},
    {"vornsMove_64s", moved<vornsMove_64s, Vorn64s>},
    {"vornsZero_64s", zeroed<vornsZero_64s, Vorn64s>},
    {"vornsSet_64s", filled<vornsSet_64s, Vorn64s>},
    {"vornsCopy_64sc", copied<vornsCopy_64sc, Vorn64sc>},
    {"vornsMove_64sc", moved<vornsMove_64sc, Vorn64sc>},
    {"vornsZero_64sc", zeroed<vornsZero_64sc, Vorn64sc>},
    {"vornsSet_64sc", filled<vornsSet_64sc, Vorn64sc>},
    {"vornsConj_64fc_I", inPlace<vornsConj_64fc_I, Vorn64fc>},
    {"vornsConj_64fc", copied<vornsConj_64fc, Vorn64fc>},
    {"vornsConjFlip_64fc", copied<vornsConjFlip_64fc, Vorn64fc>},
    {"vornsConj_32fc_I", inPlace<vornsConj_32fc_I, Vorn32fc>},
    {"vornsConj_32fc", copied<vornsConj_32fc, Vorn32fc>},
    {"vornsConjFlip_32fc", copied<vornsConjFlip_32fc, Vorn32fc>},
    {"vornsConj_16sc_I", inPlace<vornsConj_16sc_I, Vorn16sc>},
    {"vornsConj_16sc", copied<vornsConj_16sc, Vorn16sc>},
    {"vornsConjFlip_16sc", copied<vornsConjFlip_16sc, Vorn16sc>},
};

}  // namespace

Family moveWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
