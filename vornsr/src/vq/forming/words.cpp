// Rows of codewords from indices: the exported functions.
#include "vq/forming/words.h"

#include <cstdint>

#include "frame/checks.h"
#include "vq/forming/streams.h"

namespace vorn::vq {
namespace {

// Stream by stream: a codebook, and of no more words than its indices can name.
VornStatus checkCodebooks(const Streams& streams, std::int64_t mostWords) {
    for (int s = 0; s < streams.count; ++s) {
        VORN_CHECK(notNull(streams.codebooks[s]));
        VORN_CHECK(require(streams[s].cdbkSize <= mostWords, vornStsSizeErr));
    }
    return vornStsNoErr;
}

constexpr std::int64_t anyNumber = INT64_MAX;

template <class Index, class T>
VornStatus formOfIndices(const Index* src, int srcStep, T* dst, int dstStep, int height, const Streams& streams) {
    VORN_CHECK(notNull(streams.codebooks, src, dst));
    VORN_CHECK(positive(streams.count, srcStep, dstStep, height));
    VORN_CHECK(require(streams.count <= srcStep, vornStsSizeErr));
    VORN_CHECK(checkCodebooks(streams, sizeof(Index) == 1 ? 256 : anyNumber));
    VORN_CHECK(require(streams.sumOf(&VornCdbkState::vecLen) <= dstStep, vornStsSizeErr));
    formRows(IndexRows<Index>{src, srcStep}, dst, dstStep, height, streams);
    return vornStsNoErr;
}

template <class T>
VornStatus formOfBits(const Vorn8u* src, int srcBitStep, T* dst, int dstStep, int height, const Streams& streams) {
    VORN_CHECK(notNull(streams.codebooks, src, dst));
    VORN_CHECK(positive(streams.count, srcBitStep, dstStep, height));
    VORN_CHECK(checkCodebooks(streams, anyNumber));
    VORN_CHECK(require(streams.sumOf(&VornCdbkState::vecLen) <= dstStep, vornStsSizeErr));
    VORN_CHECK(require(streams.sumOf(&VornCdbkState::indexBits) <= srcBitStep, vornStsSizeErr));
    formRows(PackedRows{src, srcBitStep}, dst, dstStep, height, streams);
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
