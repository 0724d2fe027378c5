// Calls that crash or do not end come back.
#pragma once

#include <csetjmp>
#include <string>

namespace fuzz::trap {

extern sigjmp_buf jump;
extern volatile bool inside;
extern volatile unsigned long calls;  // so far

// A call that takes so many seconds of the processor is stopped. Sanitizers keep their own signals: nothing is caught.
void install(double patience);
std::string nameOf(int signal);
inline constexpr int hang = -1;

// 0, or the signal that ended it.
template <class Function>
int guarded(const Function& function) {
    if (const int signal = sigsetjmp(jump, 0); signal != 0) return signal;
    calls = calls + 1;
    inside = true;
    function();
    inside = false;
    return 0;
}

}  // namespace fuzz::trap
