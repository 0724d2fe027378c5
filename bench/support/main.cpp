// Runs the benchmarks and prints, after the times, the ratio of each peer to the library.
#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <map>

#include "support/bench.h"
#include "vornsr.h"

namespace bench {
namespace {

std::vector<void (*)()>& families() {
    static std::vector<void (*)()> list;
    return list;
}

// Keeps the best time of each run of "function/size/peer"; repetitions are interleaved, so that drift hits all alike.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    RatioReporter() : ConsoleReporter(OO_Tabular) {}
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
            const std::string& name = run.run_name.function_name;
            const auto slash = name.rfind('/');
            const std::string key = name.substr(0, slash), peer = name.substr(slash + 1);
            if (times_.find(key) == times_.end()) order_.push_back(key);
            auto& time = times_[key][peer];
            const double now = run.GetAdjustedRealTime();
            time = time == 0 ? now : std::min(time, now);
        }
    }
    void printRatios() const {
        std::printf("\nRatio: the peer's time over ours (above 1: we are faster)\n");
        for (const std::string& key : order_) {
            const auto& peers = times_.at(key);
            const auto own = peers.find(ours);
            if (own == peers.end()) continue;
            std::printf("%-56s %12.1f ns ", key.c_str(), own->second);
            for (const auto& [peer, time] : peers) {
                if (peer != ours) std::printf("  %s %.2f", peer.c_str(), time / own->second);
            }
            std::printf("\n");
        }
    }

private:
    std::map<std::string, std::map<std::string, double>> times_;
    std::vector<std::string> order_;
};

}  // namespace

Family::Family(void (*registerAll)()) { families().push_back(registerAll); }

void add(const std::string& function, const std::string& size, const std::string& peer, std::int64_t items,
         std::function<void()> call) {
    benchmark::RegisterBenchmark((function + "/" + size + "/" + peer).c_str(), [=](benchmark::State& state) {
        call();  // not timed: what a benchmark prepares at its first call
        for (auto _ : state) call();
        state.SetItemsProcessed(state.iterations() * items);
    });
}

}  // namespace bench

int main(int argc, char** argv) {
    Dl_info loaded;
    if (dladdr(reinterpret_cast<const void*>(vornsrGetLibVersion()), &loaded) != 0) {
        std::printf("library: %s\n", loaded.dli_fname);
    }
    for (const char* peer : {
#ifdef VORNSR_SKIPPED_FFTW
             "fftw3f",
#endif
#ifdef VORNSR_SKIPPED_FFTW64
             "fftw3",
#endif
#ifdef VORNSR_SKIPPED_KISSFFT
             "kissfft",
#endif
#ifdef VORNSR_SKIPPED_VOLK
             "volk",
#endif
#ifdef VORNSR_SKIPPED_OPENBLAS
             "openblas",
#endif
#ifdef VORNSR_SKIPPED_EIGEN
             "eigen3",
#endif
#ifdef VORNSR_SKIPPED_SLEEF
             "sleef",
#endif
             static_cast<const char*>(nullptr)}) {
        if (peer != nullptr) std::printf("peer not installed, skipped: %s\n", peer);
    }
    for (auto* registerAll : bench::families()) registerAll();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    return 0;
}
