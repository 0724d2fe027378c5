// Parameter updates.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

const Workload workloads[] = {
    {"vornsUpdateGConst_DirectVar_32f",
     [](Source& source, Digest& digest) {
         for (int len : lengths) {
             for (bool hard : {false, true}) {
                 const auto src = hard ? source.patterns<Vorn32f>(len) : source.values<Vorn32f>(len, 0.001, 100.0);
                 Vorn32f dst = 0;
                 digest.add(vornsUpdateGConst_DirectVar_32f(src.data(), len, &dst));
                 digest.add(dst);
             }
         }
     }},
};

}  // namespace

Family updateWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
