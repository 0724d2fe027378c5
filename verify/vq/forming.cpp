// Vectors from indices.
#include <iterator>
#include <memory>
#include <type_traits>

#include "families.h"

namespace verify {
namespace {

// Codebooks of the given words, of the lengths of the streams.
template <class T>
class Codebooks {
public:
    Codebooks(Source& source, int words) {
        for (const int len : {2, 5, 1, 13}) {
            const auto src = source.values<T>(static_cast<std::size_t>(len) * static_cast<std::size_t>(words));
            VornCdbkState* made = nullptr;
            if constexpr (std::is_same_v<T, Vorn32f>) {
                vornsCdbkInitAlloc_L2_32f(&made, src.data(), len, len, words, words, 1);
                owned_.emplace_back(made, vornsCdbkFree_32f);
            } else {
                vornsCdbkInitAlloc_L2_16s(&made, src.data(), len, len, words, words, 1);
                owned_.emplace_back(made, vornsCdbkFree_16s);
            }
            pointers_.push_back(made);
        }
    }
    const VornCdbkState* const* pointers() const { return pointers_.data(); }
    static constexpr int streams = 4, width = 2 + 5 + 1 + 13;

private:
    std::vector<std::shared_ptr<VornCdbkState>> owned_;
    std::vector<const VornCdbkState*> pointers_;
};

// Indices in elements of their own, or as bits: as many bytes either way, at least.
template <class Index, class T, auto form, bool packed = false>
void words(Source& source, Digest& digest) {
    for (const int words : {1, 7, 64, 200}) {
        const Codebooks<T> books(source, words);
        for (const int height : {1, 3, 20}) {
            const int srcStep = packed ? 40 : books.streams + 1, dstStep = books.width + height % 2;
            auto src = source.values<Index>(static_cast<std::size_t>(height) * static_cast<std::size_t>(srcStep));
            if (!packed) {
                for (Index& index : src) index = static_cast<Index>(source.bits() % static_cast<unsigned>(words));
            }
            std::vector<T> dst(static_cast<std::size_t>(height) * static_cast<std::size_t>(dstStep));
            digest.add(form(src.data(), srcStep, dst.data(), dstStep, height, books.pointers(), books.streams));
            digest.add(dst);
        }
    }
}

constexpr int most = 70, entries = 30;
template <class T>
struct Tables {
    std::vector<std::vector<T>> tables;
    std::vector<const T*> pointers;
    std::vector<int> sizes;
    Tables(Source& source, std::size_t entryLen) : sizes(most, entries) {
        for (int i = 0; i < most; ++i) tables.push_back(source.values<T>(entries * entryLen));
        for (const auto& table : tables) pointers.push_back(table.data());
    }
};

// Now and then an index is out of range.
template <class Index>
std::vector<Index> indices(Source& source, bool valid) {
    std::vector<Index> index(most);
    for (Index& i : index) i = static_cast<Index>(source.bits() % (valid ? entries : entries + 2));
    return index;
}

template <int piece, class Index, class T, auto form>
void pieces(Source& source, Digest& digest) {
    const Tables<T> tables(source, piece + 2);
    for (int len = 1; len <= most; ++len) {
        const auto index = indices<Index>(source, len % 8 != 0);
        std::vector<T> dst(static_cast<std::size_t>(len));
        digest.add(form(index.data(), tables.pointers.data(), tables.sizes.data(), dst.data(), len));
        digest.add(dst);
    }
}

template <class Index, class T, auto form>
void streams(Source& source, Digest& digest) {
    const Tables<T> tables(source, 16);
    for (const int count : {1, 2, 9, most}) {
        for (const bool valid : {true, false}) {
            const auto index = indices<Index>(source, valid);
            std::vector<int> lens(most), strides(most);
            std::size_t width = 0;
            for (int s = 0; s < count; ++s) {
                lens[s] = 1 + static_cast<int>(source.bits() % 12);
                strides[s] = 1 + static_cast<int>(source.bits() % 15);
                width += static_cast<std::size_t>(lens[s]);
            }
            std::vector<T> dst(width);
            digest.add(form(index.data(), tables.pointers.data(), tables.sizes.data(), lens.data(), strides.data(),
                            count, dst.data()));
            digest.add(dst);
        }
    }
}

const Workload workloads[] = {
    {"vornsFormVectorVQ_16s32f", words<Vorn16s, Vorn32f, vornsFormVectorVQ_16s32f>},
    {"vornsFormVectorVQ_8u32f", words<Vorn8u, Vorn32f, vornsFormVectorVQ_8u32f>},
    {"vornsFormVectorVQ_16s16s", words<Vorn16s, Vorn16s, vornsFormVectorVQ_16s16s>},
    {"vornsFormVectorVQ_8u16s", words<Vorn8u, Vorn16s, vornsFormVectorVQ_8u16s>},
    {"vornsFormVectorVQ_1u32f", words<Vorn8u, Vorn32f, vornsFormVectorVQ_1u32f, true>},
    {"vornsFormVectorVQ_1u16s", words<Vorn8u, Vorn16s, vornsFormVectorVQ_1u16s, true>},
    {"vornsFormVector_2i_8u16s", pieces<2, Vorn8u, Vorn16s, vornsFormVector_2i_8u16s>},
    {"vornsFormVector_2i_16s16s", pieces<2, Vorn16s, Vorn16s, vornsFormVector_2i_16s16s>},
    {"vornsFormVector_2i_8u32f", pieces<2, Vorn8u, Vorn32f, vornsFormVector_2i_8u32f>},
    {"vornsFormVector_2i_16s32f", pieces<2, Vorn16s, Vorn32f, vornsFormVector_2i_16s32f>},
    {"vornsFormVector_4i_8u16s", pieces<4, Vorn8u, Vorn16s, vornsFormVector_4i_8u16s>},
    {"vornsFormVector_4i_16s16s", pieces<4, Vorn16s, Vorn16s, vornsFormVector_4i_16s16s>},
    {"vornsFormVector_4i_8u32f", pieces<4, Vorn8u, Vorn32f, vornsFormVector_4i_8u32f>},
    {"vornsFormVector_4i_16s32f", pieces<4, Vorn16s, Vorn32f, vornsFormVector_4i_16s32f>},
    {"vornsFormVector_8u16s", streams<Vorn8u, Vorn16s, vornsFormVector_8u16s>},
    {"vornsFormVector_16s16s", streams<Vorn16s, Vorn16s, vornsFormVector_16s16s>},
    {"vornsFormVector_8u32f", streams<Vorn8u, Vorn32f, vornsFormVector_8u32f>},
    {"vornsFormVector_16s32f", streams<Vorn16s, Vorn32f, vornsFormVector_16s32f>},
};

}  // namespace

Family formingWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
