// The same step for many things, on several threads.
#pragma once

#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace digits {

// step(i) for each i below count. Steps must not touch what others touch, so the number of threads changes no result.
// The first exception ends the work and is thrown here.
template <typename Step>
void forEach(int count, int threads, Step step) {
    std::atomic<int> next{0};
    std::exception_ptr failure;
    std::mutex failing;
    const auto work = [&] {
        for (int i = next++; i < count; i = next++) {
            try {
                step(i);
            } catch (...) {
                const std::lock_guard lock(failing);
                if (!failure) failure = std::current_exception();
                next = count;
            }
        }
    };
    std::vector<std::thread> others;
    for (int i = 1; i < threads; ++i) others.emplace_back(work);
    work();
    for (std::thread& other : others) other.join();
    if (failure) std::rethrow_exception(failure);
}

}  // namespace digits
