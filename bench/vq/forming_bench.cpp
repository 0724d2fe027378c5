// Vectors formed from indices, beside plain loops.
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "plain/vq_forming.h"
#include "support/bench.h"
#include "vornsr.h"

namespace {

template <class T>
std::shared_ptr<T[]> numbers(std::size_t len, int most) {
    auto block = bench::buffer<T>(len);
    std::mt19937 generator(static_cast<unsigned>(len));
    for (std::size_t i = 0; i < len; ++i) block[i] = static_cast<T>(generator() % static_cast<unsigned>(most));
    return block;
}

// Seven streams, as distributed recognition sends the features of a frame: pairs, in codebooks of 64 words.
constexpr int streams = 7, vecLen = 2, bits = 6, words = 1 << bits;

template <class T>
struct Codebooks {
    std::shared_ptr<T[]> tables;
    std::vector<std::shared_ptr<VornCdbkState>> owned;
    std::vector<const VornCdbkState*> contexts;
    std::vector<plain::Book<T>> books;
    Codebooks() : tables(numbers<T>(words * vecLen, 1000)) {
        for (int s = 0; s < streams; ++s) {
            VornCdbkState* made = nullptr;
            if constexpr (std::is_same_v<T, Vorn32f>) {
                vornsCdbkInitAlloc_L2_32f(&made, tables.get(), vecLen, vecLen, words, words, 1);
                owned.emplace_back(made, vornsCdbkFree_32f);
            } else {
                vornsCdbkInitAlloc_L2_16s(&made, tables.get(), vecLen, vecLen, words, words, 1);
                owned.emplace_back(made, vornsCdbkFree_16s);
            }
            contexts.push_back(made);
            books.push_back({tables.get(), vecLen, bits});
        }
    }
};

template <class Index, class T, class Ours, class Plain>
void addRows(const std::string& name, int srcStep, Ours ours, Plain plainly) {
    const auto books = std::make_shared<Codebooks<T>>();
    for (const int height : {1, 100, 100000}) {
        const std::size_t steps = static_cast<std::size_t>(srcStep) * static_cast<std::size_t>(height);
        auto src = numbers<Index>(steps, sizeof(Index) == 1 && srcStep > streams ? 256 : words);
        auto dst = bench::buffer<T>(static_cast<std::size_t>(streams * vecLen) * static_cast<std::size_t>(height));
        const std::string size = std::to_string(height) + " rows";
        const std::int64_t items = std::int64_t{height} * streams * vecLen;
        bench::add(name, size, bench::ours, items, [=] {
            ours(src.get(), srcStep, dst.get(), streams * vecLen, height, books->contexts.data(), streams);
            bench::keep(dst.get());
        });
        bench::add(name, size, "plain", items, [=] {
            plainly(src.get(), srcStep, dst.get(), streams * vecLen, height, books->books.data(), streams);
            bench::keep(dst.get());
        });
    }
}

template <int piece, class Index, class T, class Ours>
void addPieces(const std::string& name, Ours ours) {
    for (const int len : {8, 40, 2000}) {
        const auto count = static_cast<std::size_t>(len);
        auto table = numbers<T>(64 * piece, 1000);
        auto index = numbers<Index>(count, 64);
        auto sizes = bench::buffer<int>(count);
        auto tables = bench::buffer<const T*>(count);
        for (std::size_t i = 0; i < count; ++i) sizes[i] = 64, tables[i] = table.get();
        auto dst = bench::buffer<T>(count);
        bench::add(name, std::to_string(len), bench::ours, len, [=, keep = table] {
            ours(index.get(), tables.get(), sizes.get(), dst.get(), len);
            bench::keep(dst.get());
        });
        bench::add(name, std::to_string(len), "plain", len, [=, keep = table] {
            plain::formPieces<piece>(index.get(), tables.get(), sizes.get(), dst.get(), len);
            bench::keep(dst.get());
        });
    }
}

template <class Index, class T, class Ours>
void addStreams(const std::string& name, Ours ours) {
    for (const int len : {2, 13}) {
        constexpr int count = 7;
        auto table = numbers<T>(static_cast<std::size_t>(64 * len), 1000);
        auto index = numbers<Index>(count, 64);
        auto sizes = bench::buffer<int>(count), lens = bench::buffer<int>(count);
        auto tables = bench::buffer<const T*>(count);
        for (int i = 0; i < count; ++i) sizes[i] = 64, lens[i] = len, tables[i] = table.get();
        auto dst = bench::buffer<T>(static_cast<std::size_t>(count * len));
        const std::string size = "7 of " + std::to_string(len);
        bench::add(name, size, bench::ours, count * len, [=, keep = table] {
            ours(index.get(), tables.get(), sizes.get(), lens.get(), lens.get(), count, dst.get());
            bench::keep(dst.get());
        });
        bench::add(name, size, "plain", count * len, [=, keep = table] {
            plain::formStreams(index.get(), tables.get(), sizes.get(), lens.get(), lens.get(), count, dst.get());
            bench::keep(dst.get());
        });
    }
}

const bench::Family forming([] {
    addRows<Vorn8u, Vorn32f>("vornsFormVectorVQ_8u32f", streams, vornsFormVectorVQ_8u32f,
                             plain::formRows<Vorn8u, Vorn32f>);
    addRows<Vorn16s, Vorn32f>("vornsFormVectorVQ_16s32f", streams, vornsFormVectorVQ_16s32f,
                              plain::formRows<Vorn16s, Vorn32f>);
    addRows<Vorn8u, Vorn16s>("vornsFormVectorVQ_8u16s", streams, vornsFormVectorVQ_8u16s,
                             plain::formRows<Vorn8u, Vorn16s>);
    addRows<Vorn8u, Vorn32f>("vornsFormVectorVQ_1u32f", streams * bits, vornsFormVectorVQ_1u32f,
                             plain::formRowsOfBits<Vorn32f>);
    addRows<Vorn8u, Vorn16s>("vornsFormVectorVQ_1u16s", streams * bits, vornsFormVectorVQ_1u16s,
                             plain::formRowsOfBits<Vorn16s>);
    addPieces<2, Vorn8u, Vorn16s>("vornsFormVector_2i_8u16s", vornsFormVector_2i_8u16s);
    addPieces<2, Vorn16s, Vorn16s>("vornsFormVector_2i_16s16s", vornsFormVector_2i_16s16s);
    addPieces<2, Vorn8u, Vorn32f>("vornsFormVector_2i_8u32f", vornsFormVector_2i_8u32f);
    addPieces<2, Vorn16s, Vorn32f>("vornsFormVector_2i_16s32f", vornsFormVector_2i_16s32f);
    addPieces<4, Vorn8u, Vorn16s>("vornsFormVector_4i_8u16s", vornsFormVector_4i_8u16s);
    addPieces<4, Vorn16s, Vorn16s>("vornsFormVector_4i_16s16s", vornsFormVector_4i_16s16s);
    addPieces<4, Vorn8u, Vorn32f>("vornsFormVector_4i_8u32f", vornsFormVector_4i_8u32f);
    addPieces<4, Vorn16s, Vorn32f>("vornsFormVector_4i_16s32f", vornsFormVector_4i_16s32f);
    addStreams<Vorn8u, Vorn16s>("vornsFormVector_8u16s", vornsFormVector_8u16s);
    addStreams<Vorn16s, Vorn32f>("vornsFormVector_16s32f", vornsFormVector_16s32f);
});

}  // namespace
