// Version record, memory blocks, floating-point core.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

template <auto allocate>
void memory(Source&, Digest& digest) {
    for (int len : {-1, 0, 1, 5, 1000}) {
        auto* block = allocate(len);
        digest.add(block == nullptr);
        digest.add(reinterpret_cast<std::uintptr_t>(block) % 32);
        vornsFree(block);
    }
}

const Workload workloads[] = {
    {"vornsrGetLibVersion",
     [](Source&, Digest& digest) {
         const VornLibraryVersion* version = vornsrGetLibVersion();
         for (int x : {version->major, version->minor, version->majorBuild, version->build}) digest.add(x);
         for (const char* text : {version->name, version->version, version->buildDate})
             digest.bytes(text, std::strlen(text));
         digest.bytes(version->targetCpu, sizeof version->targetCpu);
     }},
    {"vornsMalloc_8u", memory<vornsMalloc_8u>},
    {"vornsMalloc_8s", memory<vornsMalloc_8s>},
    {"vornsMalloc_16u", memory<vornsMalloc_16u>},
    {"vornsMalloc_16s", memory<vornsMalloc_16s>},
    {"vornsMalloc_8sc", memory<vornsMalloc_8sc>},
    {"vornsMalloc_32u", memory<vornsMalloc_32u>},
    {"vornsMalloc_32s", memory<vornsMalloc_32s>},
    {"vornsMalloc_32f", memory<vornsMalloc_32f>},
    {"vornsMalloc_16sc", memory<vornsMalloc_16sc>},
    {"vornsMalloc_64s", memory<vornsMalloc_64s>},
    {"vornsMalloc_64f", memory<vornsMalloc_64f>},
    {"vornsMalloc_32sc", memory<vornsMalloc_32sc>},
    {"vornsMalloc_32fc", memory<vornsMalloc_32fc>},
    {"vornsMalloc_64sc", memory<vornsMalloc_64sc>},
    {"vornsMalloc_64fc", memory<vornsMalloc_64fc>},
    {"vornsFree",
     [](Source&, Digest& digest) {
         vornsFree(nullptr);
         digest.add(1);
     }},
};

}  // namespace

Family frameWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
