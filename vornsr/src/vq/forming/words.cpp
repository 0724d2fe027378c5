// Rows of codewords from indices: the exported functions.
#include "vq/forming/words.h"

#include <cstdint>

#include "frame/checks.h"
#include "vq/forming/streams.h"

namespace vorn::vq {
namespace {

struct RowSize {
    std::int64_t elements = 0, bits = 0;
};

// Stream by stream: a codebook, and of no more words than its indices can name. Adds up what a row has.
VornStatus checkCodebooks(const Streams& streams, std::int64_t mostWords, RowSize& size) {
    for (int s = 0; s < streams.count; ++s) {
        VORN_CHECK(notNull(streams.codebooks[s]));
        const VornCdbkState& codebook = streams[s];
        VORN_CHECK(require(codebook.cdbkSize <= mostWords, vornStsSizeErr));
        size.elements += codebook.vecLen;
        size.bits += codebook.indexBits;
    }
    return vornStsNoErr;
}

constexpr std::int64_t anyNumber = INT64_MAX;

template <class Index, class T>
VornStatus formOfIndices(const Index* src, int srcStep, T* dst, int dstStep, int height, const Streams& streams) {
    VORN_CHECK(notNull(streams.codebooks, src, dst));
    VORN_CHECK(positive(streams.count, srcStep, dstStep, height));
    VORN_CHECK(require(streams.count <= srcStep, vornStsSizeErr));
    RowSize size;
    VORN_CHECK(checkCodebooks(streams, sizeof(Index) == 1 ? 256 : anyNumber, size));
    VORN_CHECK(require(size.elements <= dstStep, vornStsSizeErr));
    formRows(StreamOfIndices<Index>{src, srcStep}, dst, dstStep, height, streams);
    return vornStsNoErr;
}

template <class T>
VornStatus formOfBits(const Vorn8u* src, int srcBitStep, T* dst, int dstStep, int height, const Streams& streams) {
    VORN_CHECK(notNull(streams.codebooks, src, dst));
    VORN_CHECK(positive(streams.count, srcBitStep, dstStep, height));
    RowSize size;
    VORN_CHECK(checkCodebooks(streams, anyNumber, size));
    VORN_CHECK(require(size.elements <= dstStep && size.bits <= srcBitStep, vornStsSizeErr));
    formRows(StreamOfBits{src, 0, srcBitStep}, dst, dstStep, height, streams);
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::vq

using namespace vorn;

VornStatus vornsFormVectorVQ_16s32f(const Vorn16s* src, int srcStep, Vorn32f* dst, int dstStep, int height,
                                    const VornCdbkState* const* ppCdbks, int nStream) {
    return vq::formOfIndices(src, srcStep, dst, dstStep, height, {ppCdbks, nStream});
}

VornStatus vornsFormVectorVQ_8u32f(const Vorn8u* src, int srcStep, Vorn32f* dst, int dstStep, int height,
                                   const VornCdbkState* const* ppCdbks, int nStream) {
    return vq::formOfIndices(src, srcStep, dst, dstStep, height, {ppCdbks, nStream});
}

VornStatus vornsFormVectorVQ_16s16s(const Vorn16s* src, int srcStep, Vorn16s* dst, int dstStep, int height,
                                    const VornCdbkState* const* ppCdbks, int nStream) {
    return vq::formOfIndices(src, srcStep, dst, dstStep, height, {ppCdbks, nStream});
}

VornStatus vornsFormVectorVQ_8u16s(const Vorn8u* src, int srcStep, Vorn16s* dst, int dstStep, int height,
                                   const VornCdbkState* const* ppCdbks, int nStream) {
    return vq::formOfIndices(src, srcStep, dst, dstStep, height, {ppCdbks, nStream});
}

VornStatus vornsFormVectorVQ_1u32f(const Vorn8u* src, int srcBitStep, Vorn32f* dst, int dstStep, int height,
                                   const VornCdbkState* const* ppCdbks, int nStream) {
    return vq::formOfBits(src, srcBitStep, dst, dstStep, height, {ppCdbks, nStream});
}

VornStatus vornsFormVectorVQ_1u16s(const Vorn8u* src, int srcBitStep, Vorn16s* dst, int dstStep, int height,
                                   const VornCdbkState* const* ppCdbks, int nStream) {
    return vq::formOfBits(src, srcBitStep, dst, dstStep, height, {ppCdbks, nStream});
}
