// The loop over cases.
#include "session.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "numbers.h"
#include "random.h"
#include "report.h"
#include "shrink.h"

namespace fuzz {
namespace {

// Microseconds a case: above, sizes become smaller; far below, larger. Many functions allocate only when sizes are large.
constexpr double longCase = 400;
constexpr double longCaseOfAllocations = 20000;
// Cases of a function in which every allocation failed: from then on the time is for the others.
constexpr std::uint64_t enoughFailures = 8;

double secondsSince(std::chrono::steady_clock::time_point begin) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

}  // namespace

Session::Session(Engine& engine, const Options& options) : engine_(engine), options_(options), random_(options.seed) {
    const auto& functions = engine.table().functions();
    records_.resize(functions.size());
    for (std::size_t i = 0; i < functions.size(); ++i) {
        if (options.allocations && !functions[i].memory) continue;
        if (options.chosen(functions[i].name)) functions_.push_back(static_cast<int>(i));
    }
    longCase_ = options.allocations ? longCaseOfAllocations : longCase;
    for (Record& record : records_) record.largest = options.allocations ? sizeClasses - 1 : 5;
    terminal_ = isatty(STDERR_FILENO) && !options.quiet;
    engine.failEachAllocation(options.allocations);
}

int Session::run() {
    if (functions_.empty()) {
        std::fprintf(stderr, "vornsr-fuzz: no such function\n");
        return 2;
    }
    if (!options_.quiet) {
        std::printf("%zu functions, %zu builds, seed %llu\n", functions_.size(), engine_.libraries().size(),
                    static_cast<unsigned long long>(options_.seed));
        std::fflush(stdout);
    }
    std::vector<int> order = functions_;
    double shown = 0;
    for (std::size_t next = 0;; ++next) {
        if (next % order.size() == 0) {
            for (std::size_t i = order.size(); i > 1; --i) std::swap(order[i - 1], order[nextRandom(random_) % i]);
        }
        if (options_.cases != 0 && cases_ >= options_.cases) break;
        const double seconds = secondsSince(begin_);
        if (options_.seconds > 0 && seconds >= options_.seconds) break;
        if (terminal_ && seconds >= shown + 1) {
            shown = seconds;
            progress();
        }
        const int function = order[next % order.size()];
        if (done_.count(function) == 0) {
            oneCase(function);
        } else if (done_.size() == order.size()) {
            break;
        }
    }
    return summary();
}

void Session::oneCase(int function) {
    Record& record = records_[function];
    const std::uint64_t seed = nextRandom(random_);
    // The first decision is the size: drawn here, so that slow functions get small ones.
    const unsigned least = options_.allocations && record.cases % 4 != 0 ? record.largest : 0;
    const std::uint8_t size =
        static_cast<std::uint8_t>(least + nextRandom(random_) % (record.largest - least + 1));
    Decisions decisions;
    decisions.draw(seed, size);
    const auto begin = std::chrono::steady_clock::now();
    const Outcome outcome = engine_.check(function, decisions);
    const double microseconds = 1e6 * secondsSince(begin);
    ++cases_;
    ++record.cases;
    calls_ += outcome.calls;
    if (!outcome.planned) ++record.unplanned;
    if (outcome.planned && !outcome.finding) {
        if (outcome.success && !outcome.broken) ++record.successes;
        if (!outcome.success) ++record.errors;
    }
    record.failures += outcome.failed;
    if (options_.allocations && record.failures >= enoughFailures) done_.insert(function);
    record.microseconds += (microseconds - record.microseconds) / 8;
    if (record.microseconds > longCase_ && record.largest > 1) {
        --record.largest;
        record.microseconds = longCase_ / 2;
    } else if (record.microseconds < longCase_ / 8 && record.largest + 1 < sizeClasses && record.cases % 64 == 0) {
        ++record.largest;
    }
    if (outcome.finding) found(function, decisions.used(), outcome.finding);
}

void Session::found(int function, const std::vector<std::uint8_t>& bytes, const Finding& finding) {
    if (finding.wrong == Wrong::hang) done_.insert(function);
    if (!found_.emplace(finding.function, finding.wrong).second) return;
    const std::vector<std::uint8_t> small = shrink(engine_, function, bytes, finding);
    Decisions decisions;
    decisions.replay(small);
    Outcome outcome = engine_.check(function, decisions);
    // What does not come again is shown as it was.
    const bool again = outcome.finding.sameKind(finding);
    if (!again) {
        decisions.replay(bytes);
        outcome = engine_.check(function, decisions);
    }
    const Finding& shown = outcome.finding ? outcome.finding : finding;
    if (terminal_) std::fprintf(stderr, "\r\033[K");
    std::printf("%s%s\n  vornsr-fuzz%s --replay %s\n", lineOf(engine_.table(), shown).c_str(),
                outcome.finding ? "" : " (not again)", options_.allocations ? " --allocations" : "",
                replayOf(engine_.table(), function, again ? small : bytes).c_str());
    if (options_.show) {
        show(stdout, engine_.table(), engine_.lastCase());
        show(stdout, engine_.table(), shown);
    }
    std::fflush(stdout);
}

int Session::replay(const std::string& line) {
    const std::size_t colon = line.find(':');
    std::vector<std::uint8_t> bytes;
    const int function = colon == std::string::npos ? -1 : engine_.table().find(line.substr(0, colon));
    if (function < 0 || !bytesOf(line.substr(colon + 1), bytes)) {
        std::fprintf(stderr, "vornsr-fuzz: %s is no NAME:HEX\n", line.c_str());
        return 2;
    }
    Decisions decisions;
    decisions.replay(bytes);
    const Outcome outcome = engine_.check(function, decisions);
    if (!outcome.planned) {
        std::printf("no arguments were found\n");
        return 0;
    }
    if (options_.show) show(stdout, engine_.table(), engine_.lastCase());
    if (!outcome.finding) {
        std::printf("nothing is wrong\n");
        return 0;
    }
    if (options_.show) {
        show(stdout, engine_.table(), outcome.finding);
    } else {
        std::printf("%s\n", lineOf(engine_.table(), outcome.finding).c_str());
    }
    return 1;
}

void Session::progress() {
    const double seconds = secondsSince(begin_);
    std::fprintf(stderr, "\r\033[K%.0f s: %.1f million calls, %.2f us each, %zu findings", seconds, calls_ / 1e6,
                 calls_ == 0 ? 0 : 1e6 * seconds / calls_, found_.size());
    std::fflush(stderr);
}

int Session::summary() {
    if (terminal_) std::fprintf(stderr, "\r\033[K");
    std::size_t called = 0, successful = 0, refused = 0;
    std::uint64_t failures = 0;  // of allocations
    std::vector<std::string> never, withoutFailure;
    for (const int function : functions_) {
        const Record& record = records_[function];
        called += record.cases > record.unplanned;
        successful += record.successes > 0;
        refused += record.errors > 0;
        if (record.successes == 0) never.push_back(engine_.table().at(function).name);
        failures += record.failures;
        if (record.failures == 0) withoutFailure.push_back(engine_.table().at(function).name);
    }
    if (options_.list) {
        for (const int function : functions_) {
            const Record& record = records_[function];
            std::printf("%-60s %8llu cases %8llu without arguments %8llu successes %8llu errors %8llu failed allocations %8.1f us, size %u\n",
                        engine_.table().at(function).name.c_str(), static_cast<unsigned long long>(record.cases),
                        static_cast<unsigned long long>(record.unplanned),
                        static_cast<unsigned long long>(record.successes),
                        static_cast<unsigned long long>(record.errors),
                        static_cast<unsigned long long>(record.failures), record.microseconds, record.largest);
        }
    }
    if (!options_.quiet) {
        const double seconds = secondsSince(begin_);
        std::printf("cases                    %llu\ncalls                    %llu, %.2f us each\n",
                    static_cast<unsigned long long>(cases_), static_cast<unsigned long long>(calls_),
                    calls_ == 0 ? 0 : 1e6 * seconds / static_cast<double>(calls_));
        std::printf(
            "functions called         %zu of %zu\nof them with success     %zu\nof them with errors      %zu\nfindings "
            "                %zu\n",
            called, functions_.size(), successful, refused, found_.size());
        for (const std::string& name : never) std::printf("never with success: %s\n", name.c_str());
        if (options_.allocations) {
            std::printf("allocations that failed  %llu, of %zu functions\n", static_cast<unsigned long long>(failures),
                        functions_.size() - withoutFailure.size());
            for (const std::string& name : withoutFailure) std::printf("never allocated: %s\n", name.c_str());
        }
    }
    const bool all = options_.allocations ? withoutFailure.empty() : never.empty();
    return found_.empty() && (all || !options_.functions.empty()) ? 0 : 1;
}

}  // namespace fuzz
