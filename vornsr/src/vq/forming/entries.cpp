// Vectors from entries of tables: the exported functions.
#include "vq/forming/entries.h"

#include "frame/checks.h"
#include "vornsr/vq.h"
#include "vq/forming/copy.h"

namespace vorn::vq {
namespace {

// What of len fills no whole piece is left out.
template <int piece, class Rule = BelowSize, class Index, class T>
VornStatus checkedPieces(const Index* srcIndex, const T* const* tables, const int* sizes, T* dst, int len) {
    VORN_CHECK(notNull(srcIndex, tables, sizes, dst));
    VORN_CHECK(positive(len));
    return require(formPieces<piece, Rule>(srcIndex, tables, sizes, dst, len / piece), vornStsSizeErr);
}

template <class Index, class T>
VornStatus checkedStreams(const Index* srcIndex, const T* const* tables, const int* sizes, const int* lens,
                          const int* strides, int nStream, T* dst) {
    VORN_CHECK(notNull(srcIndex, tables, sizes, lens, strides, dst));
    VORN_CHECK(positive(nStream));
    for (int s = 0; s < nStream; ++s) {
        VORN_CHECK(positive(lens[s], strides[s]));
        VORN_CHECK(require(names<BelowSize>(srcIndex[s], sizes[s]), vornStsSizeErr));
    }
    for (int s = 0; s < nStream; ++s) {
        copyElements(tables[s] + std::ptrdiff_t{srcIndex[s]} * strides[s], dst, lens[s]);
        dst += lens[s];
    }
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::vq

using namespace vorn;

VornStatus vornsFormVector_2i_8u16s(const Vorn8u* srcIndex, const Vorn16s* const* tables, const int* sizes,
                                    Vorn16s* dst, int len) {
    return vq::checkedPieces<2>(srcIndex, tables, sizes, dst, len);
}

VornStatus vornsFormVector_2i_16s16s(const Vorn16s* srcIndex, const Vorn16s* const* tables, const int* sizes,
                                     Vorn16s* dst, int len) {
    return vq::checkedPieces<2>(srcIndex, tables, sizes, dst, len);
}

VornStatus vornsFormVector_2i_8u32f(const Vorn8u* srcIndex, const Vorn32f* const* tables, const int* sizes,
                                    Vorn32f* dst, int len) {
    return vq::checkedPieces<2>(srcIndex, tables, sizes, dst, len);
}

VornStatus vornsFormVector_2i_16s32f(const Vorn16s* srcIndex, const Vorn32f* const* tables, const int* sizes,
                                     Vorn32f* dst, int len) {
    return vq::checkedPieces<2, vq::UpToSize>(srcIndex, tables, sizes, dst, len);
}

VornStatus vornsFormVector_4i_8u16s(const Vorn8u* srcIndex, const Vorn16s* const* tables, const int* sizes,
                                    Vorn16s* dst, int len) {
    return vq::checkedPieces<4>(srcIndex, tables, sizes, dst, len);
}

VornStatus vornsFormVector_4i_16s16s(const Vorn16s* srcIndex, const Vorn16s* const* tables, const int* sizes,
                                     Vorn16s* dst, int len) {
    return vq::checkedPieces<4>(srcIndex, tables, sizes, dst, len);
}

VornStatus vornsFormVector_4i_8u32f(const Vorn8u* srcIndex, const Vorn32f* const* tables, const int* sizes,
                                    Vorn32f* dst, int len) {
    return vq::checkedPieces<4>(srcIndex, tables, sizes, dst, len);
}

VornStatus vornsFormVector_4i_16s32f(const Vorn16s* srcIndex, const Vorn32f* const* tables, const int* sizes,
                                     Vorn32f* dst, int len) {
    return vq::checkedPieces<4>(srcIndex, tables, sizes, dst, len);
}

VornStatus vornsFormVector_8u16s(const Vorn8u* srcIndex, const Vorn16s* const* tables, const int* sizes,
                                 const int* lens, const int* strides, int nStream, Vorn16s* dst) {
    return vq::checkedStreams(srcIndex, tables, sizes, lens, strides, nStream, dst);
}

VornStatus vornsFormVector_16s16s(const Vorn16s* srcIndex, const Vorn16s* const* tables, const int* sizes,
                                  const int* lens, const int* strides, int nStream, Vorn16s* dst) {
    return vq::checkedStreams(srcIndex, tables, sizes, lens, strides, nStream, dst);
}

VornStatus vornsFormVector_8u32f(const Vorn8u* srcIndex, const Vorn32f* const* tables, const int* sizes,
                                 const int* lens, const int* strides, int nStream, Vorn32f* dst) {
    return vq::checkedStreams(srcIndex, tables, sizes, lens, strides, nStream, dst);
}

VornStatus vornsFormVector_16s32f(const Vorn16s* srcIndex, const Vorn32f* const* tables, const int* sizes,
                                  const int* lens, const int* strides, int nStream, Vorn32f* dst) {
    return vq::checkedStreams(srcIndex, tables, sizes, lens, strides, nStream, dst);
}
