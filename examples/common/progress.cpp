// Progress on the error stream, for a terminal and for a log.
#include "progress.h"

#include <errno.h>
#include <unistd.h>

#include <cstdio>
#include <utility>

namespace digits {

void complain(const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, error.what());
}

Progress::Progress(std::string label, int total)
    : label_(std::move(label)), total_(total), terminal_(isatty(STDERR_FILENO) != 0) {
    show();
}

Progress::~Progress() {
    if (terminal_) std::fputc('\n', stderr);
}

void Progress::step() {
    ++done_;
    show();
}

void Progress::interrupt() {
    if (terminal_) std::fputs("\r\033[K", stderr);
    shown_ = terminal_ ? -1 : shown_;
}

void Progress::show() {
    const int percent = total_ > 0 ? static_cast<int>(100.0 * done_ / total_) : 100;
    const int grain = terminal_ ? 1 : 25;
    if (percent / grain == shown_ / grain && shown_ >= 0) return;
    shown_ = percent;
    std::fprintf(stderr, terminal_ ? "\r%s %3d %%" : "%s %3d %%\n", label_.c_str(), percent);
    std::fflush(stderr);
}

}  // namespace digits
