// Prints a digest of what each function of the installed library computes on a fixed workload, and one digest of all.
// The same digests mean the same bits.
#include <cstdio>
#include <cstring>
#include <string>

#include "families.h"

namespace {

std::uint64_t nameDigest(const char* name) {
    verify::Digest digest;
    digest.bytes(name, std::strlen(name));
    return digest.value();
}

int usage(std::FILE* out) {
    std::fprintf(out,
                 "vornsr-verify: one digest of what each function of the library computes, and one of all\n"
                 "  vornsr-verify            all functions\n"
                 "  vornsr-verify NAME ...   only these\n"
                 "  vornsr-verify --list     the names\n");
    return out == stdout ? 0 : 2;
}

}  // namespace

int main(int argc, char** argv) {
    bool list = false;
    if (argc > 1 && argv[1][0] == '-') {
        list = std::strcmp(argv[1], "--list") == 0;
        if (!list) return usage(std::strcmp(argv[1], "--help") == 0 ? stdout : stderr);
    }
    verify::Digest all;
    int run = 0;
    for (const auto& family : verify::families) {
        for (std::size_t i = 0; i < family.count; ++i) {
            const verify::Workload& workload = family.workloads[i];
            bool chosen = list || argc == 1;
            for (int a = 1; a < argc && !chosen; ++a) chosen = std::strcmp(argv[a], workload.function) == 0;
            if (!chosen) continue;
            ++run;
            if (list) {
                std::printf("%s\n", workload.function);
                continue;
            }
            verify::Source source(nameDigest(workload.function));
            verify::Digest digest;
            workload.run(source, digest);
            const std::uint64_t value = digest.value();
            all.add(value);
            std::printf("%016llx  %s\n", static_cast<unsigned long long>(value), workload.function);
        }
    }
    if (run == 0) {
        std::fprintf(stderr, "vornsr-verify: no such function\n");
        return 2;
    }
    if (!list) std::printf("%016llx  all %d functions\n", static_cast<unsigned long long>(all.value()), run);
    return 0;
}
