// Signals, on a stack of their own, and a timer that looks whether the same call is still going on.
#include "trap.h"

#include <sys/time.h>

#include <csignal>
#include <cstdlib>
#include <cstring>

namespace fuzz::trap {

sigjmp_buf jump;
volatile bool inside = false;
volatile unsigned long calls = 0;

#ifndef VORNSR_SANITIZED
namespace {

constexpr int looks = 4;
volatile unsigned long lastCalls = 0;
volatile int unchanged = 0;

[[noreturn]] void leave(int signal) {
    inside = false;
    siglongjmp(jump, signal);
}

void crashed(int signal) {
    if (inside) leave(signal);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void looked(int) {
    if (!inside || calls != lastCalls) {
        lastCalls = calls;
        unchanged = 0;
        return;
    }
    unchanged = unchanged + 1;
    if (unchanged >= looks) {
        unchanged = 0;
        leave(hang);
    }
}

}  // namespace
#endif

void install([[maybe_unused]] double patience) {
#ifndef VORNSR_SANITIZED
    static char stack[1 << 16];
    stack_t alternative{};
    alternative.ss_sp = stack;
    alternative.ss_size = sizeof stack;
    sigaltstack(&alternative, nullptr);
    struct sigaction action {};
    action.sa_flags = SA_ONSTACK | SA_NODEFER;
    action.sa_handler = crashed;
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) sigaction(signal, &action, nullptr);
    action.sa_flags |= SA_RESTART;
    action.sa_handler = looked;
    sigaction(SIGPROF, &action, nullptr);
    // Of the time that the process takes, so that a busy machine stops nothing.
    const long microseconds = static_cast<long>(patience * 1e6 / looks);
    itimerval timer{};
    timer.it_interval = {microseconds / 1000000, microseconds % 1000000};
    timer.it_value = timer.it_interval;
    setitimer(ITIMER_PROF, &timer, nullptr);
#endif
}

std::string nameOf(int signal) { return signal == hang ? "does not end" : std::string("SIG") + sigabbrev_np(signal); }

}  // namespace fuzz::trap
