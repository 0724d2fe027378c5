// The nearest words of one vector in their order: the exported functions.
#include <cstddef>
#include <type_traits>

#include "frame/checks.h"
#include "move/convert_kernels.h"
#include "simd/simd.h"
#include "vq/search/ranking.h"
#include "vq/search/search.h"

namespace vorn::vq {
namespace {

Vorn32s scaledInteger(Vorn32f x, int scaleFactor) {
    Vorn32s integer;
    convert(&x, &integer, 1, vornRndNear, scaleFactor);
    return integer;
}

// All words' distances from x, in the context's room for them.
template <class T>
void distancesFrom(const T* x, VornCdbkState& book, const SearchRoom<T>& room) {
    const Query query = {room.vector.of(x, book.vecLen), room.weightsOf(book), book.vecLen};
    distancesOfWords(query, static_cast<const T*>(book.words), book.rowStep, book.cdbkSize, book.scratch);
}

// put(rank, found) for count ranks.
template <class T, class Put>
VornStatus inOrder(const T* src, VornCdbkState& book, int count, const Put& put) {
    const SearchRoom<T> room(book.vecLen);
    if (!room) return vornStsMemAllocErr;
    distancesFrom(src, book, room);
    Ranking ranking(book.scratch, book.cdbkSize, count);
    for (int rank = 0; rank < count; ++rank) put(rank, ranking.next());
    return vornStsNoErr;
}

VornStatus checkCount(int count, const VornCdbkState& book) {
    return require(count >= 1 && count <= book.cdbkSize, vornStsSizeErr);
}

template <class T>
VornStatus sortedIndices(const T* src, Vorn32s* dstIndex, VornCdbkState* book, int count) {
    VORN_CHECK(notNull(src, dstIndex, book));
    VORN_CHECK(checkCount(count, *book));
    return inOrder(src, *book, count, [=](int rank, const Found& found) { dstIndex[rank] = found.index; });
}

// The nearest word of one vector, as the search of blocks finds it, and the root of its distance.
struct Nearest {
    bool searched = false;
    Vorn32f root = 0;
};
template <class T>
VornStatus nearestOne(const T* src, const VornCdbkState& book, const SearchRoom<T>& room, Nearest& nearest) {
    const Search<T> search(book, room);
    return search.overRows(src, book.vecLen, 1, [&](std::ptrdiff_t, const Found& found) {
        nearest = {true, search.withDistance(src, found).root()};
    });
}

// A squared limit, and how far above it a distance may be: in double for singles, in single for integers.
class Limit {
public:
    Limit(Vorn32f root, Vorn32f val) : squared_(root * root * val * val) {}
    bool holds(Vorn32f distance, const Vorn32f*) const { return distance <= squared_ * tolerance; }
    bool holds(Vorn32f distance, const Vorn16s*) const {
        const Vorn32f most = squared_ * static_cast<Vorn32f>(tolerance);
        return distance <= most;
    }

private:
    Vorn32f squared_;
};

// Words as long as they hold the limit, up to all; keep(n, found) takes one as number n, or leaves it out.
template <class T, class Keep>
void withinLimit(const T* src, VornCdbkState& book, const SearchRoom<T>& room, const Limit& limit, int& count,
                 const Keep& keep) {
    distancesFrom(src, book, room);
    Ranking ranking(book.scratch, book.cdbkSize, 0);  // mostly few
    count = 0;
    for (int rank = 0; rank < book.cdbkSize; ++rank) {
        const Found found = ranking.next();
        if (found.index < 0 || !limit.holds(found.distance, src)) break;
        if (keep(count, found)) ++count;
    }
}

VornStatus checkFactor(Vorn32f val) { return require(!(val < 1.0f), vornStsBadArgErr); }

// keep(root of the nearest distance) makes what decides on a word.
template <class T, class KeepFor>
VornStatus thresholded(const T* src, VornCdbkState& book, int* pCount, Vorn32f val, const KeepFor& keepFor) {
    const SearchRoom<T> room(book.vecLen);
    if (!room) return vornStsMemAllocErr;
    Nearest nearest;
    VORN_CHECK(nearestOne(src, book, room, nearest));
    if (!nearest.searched) {
        *pCount = 0;
        return vornStsNoErr;
    }
    withinLimit(src, book, room, Limit(nearest.root, val), *pCount, keepFor(nearest.root));
    return vornStsNoErr;
}

template <class T>
VornStatus thresholdedIndices(const T* src, Vorn32s* dstIndex, VornCdbkState* book, int* pCount, Vorn32f val) {
    VORN_CHECK(notNull(src, dstIndex, book, pCount));
    VORN_CHECK(checkFactor(val));
    return thresholded(src, *book, pCount, val, [=](Vorn32f) {
        return [=](int n, const Found& found) {
            dstIndex[n] = found.index;
            return true;
        };
    });
}

}  // namespace
}  // namespace vorn::vq

using namespace vorn;

VornStatus vornsVQSingle_Sort_32f(const Vorn32f* src, Vorn32s* dstIndex, VornCdbkState* pCdbk, int count) {
    return vq::sortedIndices(src, dstIndex, vq::recordAt(pCdbk), count);
}

VornStatus vornsVQSingle_Sort_16s(const Vorn16s* src, Vorn32s* dstIndex, VornCdbkState* pCdbk, int count) {
    return vq::sortedIndices(src, dstIndex, vq::recordAt(pCdbk), count);
}

VornStatus vornsVQDistSingle_Sort_32f(const Vorn32f* src, Vorn32s* dstIndex, Vorn32f* dstDist, VornCdbkState* pCdbk,
                                      int count) {
    VORN_CHECK(notNull(src, dstIndex, dstDist, pCdbk));
    VORN_CHECK(vq::checkCount(count, *vq::recordAt(pCdbk)));
    return vq::inOrder(src, *vq::recordAt(pCdbk), count, [=](int rank, const vq::Found& found) {
        dstIndex[rank] = found.index;
        dstDist[rank] = found.root();
    });
}

VornStatus vornsVQDistSingle_Sort_16s32s_Sfs(const Vorn16s* src, Vorn32s* dstIndex, Vorn32s* dstDist,
                                             VornCdbkState* pCdbk, int count, int scaleFactor) {
    VORN_CHECK(notNull(src, dstIndex, dstDist, pCdbk));
    VORN_CHECK(vq::checkCount(count, *vq::recordAt(pCdbk)));
    auto* singles = reinterpret_cast<Vorn32f*>(dstDist);  // until they are converted
    VORN_CHECK(vq::inOrder(src, *vq::recordAt(pCdbk), count, [=](int rank, const vq::Found& found) {
        dstIndex[rank] = found.index;
        singles[rank] = found.root();
    }));
    convert(singles, dstDist, count, vornRndNear, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsVQSingle_Thresh_32f(const Vorn32f* src, Vorn32s* dstIndex, VornCdbkState* pCdbk, int* pCount,
                                    Vorn32f val) {
    return vq::thresholdedIndices(src, dstIndex, vq::recordAt(pCdbk), pCount, val);
}

VornStatus vornsVQSingle_Thresh_16s(const Vorn16s* src, Vorn32s* dstIndex, VornCdbkState* pCdbk, int* pCount,
                                    Vorn32f val) {
    return vq::thresholdedIndices(src, dstIndex, vq::recordAt(pCdbk), pCount, val);
}

VornStatus vornsVQDistSingle_Thresh_32f(const Vorn32f* src, Vorn32s* dstIndex, Vorn32f* dstDist, VornCdbkState* pCdbk,
                                        int* pCount, Vorn32f val) {
    VORN_CHECK(notNull(src, dstIndex, dstDist, pCdbk, pCount));
    VORN_CHECK(vq::checkFactor(val));
    return vq::thresholded(src, *vq::recordAt(pCdbk), pCount, val, [=](Vorn32f) {
        return [=](int n, const vq::Found& found) {
            dstIndex[n] = found.index;
            dstDist[n] = found.root();
            return true;
        };
    });
}

// Here the scaled integers decide on what is kept: a word may be left out and a later one still come.
VornStatus vornsVQDistSingle_Thresh_16s32s_Sfs(const Vorn16s* src, Vorn32s* dstIndex, Vorn32s* dstDist,
                                               VornCdbkState* pCdbk, int* pCount, int scaleFactor, Vorn32f val) {
    VORN_CHECK(notNull(src, dstIndex, dstDist, pCdbk, pCount));
    VORN_CHECK(vq::checkFactor(val));
    return vq::thresholded(src, *vq::recordAt(pCdbk), pCount, val, [=](Vorn32f root) {
        const Vorn32f scaled = static_cast<Vorn32f>(vq::scaledInteger(root, scaleFactor)) * val;
        const Vorn32s most = firstLane(truncToInt(splat<f32x4>(scaled)));
        return [=](int n, const vq::Found& found) {
            const Vorn32s distance = vq::scaledInteger(found.root(), scaleFactor);
            if (distance > most) return false;
            dstIndex[n] = found.index;
            dstDist[n] = distance;
            return true;
        };
    });
}
