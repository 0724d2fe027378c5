// Time that passes between two points of the program.
#pragma once

#include <chrono>

namespace digits {

class Stopwatch {
public:
    // Seconds since the last lap, or since the start.
    double lap() {
        const auto now = std::chrono::steady_clock::now();
        const std::chrono::duration<double> past = now - since_;
        since_ = now;
        return past.count();
    }

private:
    std::chrono::steady_clock::time_point since_ = std::chrono::steady_clock::now();
};

}  // namespace digits
