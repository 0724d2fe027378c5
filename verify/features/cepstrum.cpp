// DCT lifters.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

struct LifterShape {
    int lenDCT, lenCep, nLifter;
};
const LifterShape lifterShapes[] = {{1, 1, 1}, {7, 7, 5}, {20, 12, 22}, {23, 12, 22}, {26, 13, 22}, {64, 30, 22}};

// Coefficients of ordinary and of hard vectors under each context.
template <class Init>
void lifter(Source& source, Digest& digest, Init init) {
    for (const LifterShape& shape : lifterShapes) {
        VornDCTLifterState_32f* state = nullptr;
        digest.add(init(&state, shape));
        for (bool hard : {false, true}) {
            const auto src =
                hard ? source.patterns<Vorn32f>(shape.lenDCT) : source.values<Vorn32f>(shape.lenDCT, -20.0, 20.0);
            std::vector<Vorn32f> dst(shape.lenCep + 1);
            digest.add(vornsDCTLifter_32f(src.data(), dst.data(), state));
            digest.add(dst);
        }
        digest.add(vornsDCTLifterFree_32f(state));
    }
}
void plainLifter(Source& source, Digest& digest) {
    lifter(source, digest, [](VornDCTLifterState_32f** state, const LifterShape& shape) {
        return vornsDCTLifterInitAlloc_32f(state, shape.lenDCT, shape.lenCep, shape.nLifter, 0.9f);
    });
}

const Workload workloads[] = {
    {"vornsDCTLifterInitAlloc_32f", plainLifter},
    {"vornsDCTLifterInitAlloc_C0_32f",
     [](Source& source, Digest& digest) {
         lifter(source, digest, [](VornDCTLifterState_32f** state, const LifterShape& shape) {
             return vornsDCTLifterInitAlloc_C0_32f(state, shape.lenDCT, shape.lenCep, shape.nLifter, 0.9f, 0.1f);
         });
     }},
    {"vornsDCTLifterFree_32f", plainLifter},
    {"vornsDCTLifter_32f", plainLifter},
};

}  // namespace

Family lifterWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
