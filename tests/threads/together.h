// Calls that share contexts, made by several threads at once, each on buffers of its own: every thread must get, bit
// for bit, what one thread alone gets. A race need not change a result; the thread sanitizer's build reports it all the
// same.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/values.h"
#include "vornsr.h"

namespace test {

// The buffers of one call. What stands in them when it begins depends on the seed alone.
class Buffers {
public:
    explicit Buffers(std::uint64_t seed) : seed_(seed), random_(seed + 1) {}
    std::uint64_t seed() const { return seed_; }
    Random& random() { return random_; }

    // Numbers of a few hundred, in floats with fractions.
    template <class T>
    T* source(std::size_t len) {
        T* elements = room<T>(len, sources_);
        if constexpr (std::is_class_v<T>) {
            fill(&elements->re, 2 * len);
        } else {
            fill(elements, len);
        }
        return elements;
    }
    // Indices from 0 to count - 1.
    template <class T>
    T* indices(std::size_t len, int count) {
        T* elements = room<T>(len, sources_);
        for (std::size_t i = 0; i < len; ++i) elements[i] = static_cast<T>(random_.integer(0, count - 1));
        return elements;
    }
    template <class T>
    T* copy(const std::vector<T>& values) {
        T* elements = room<T>(values.size(), sources_);
        std::memcpy(elements, values.data(), values.size() * sizeof(T));
        return elements;
    }
    // Compared, as is what the call changes.
    template <class T>
    T* result(std::size_t len) {
        return room<T>(len, results_);
    }
    template <class T>
    T* sourceAndResult(std::size_t len) {
        T* elements = room<T>(len, results_);
        if constexpr (std::is_class_v<T>) {
            fill(&elements->re, 2 * len);
        } else {
            fill(elements, len);
        }
        return elements;
    }
    // Scratch: not compared.
    Vorn8u* scratch(int bytes) { return room<Vorn8u>(static_cast<std::size_t>(bytes), sources_); }

    const std::deque<std::vector<unsigned char>>& results() const { return results_; }

private:
    using Blocks = std::deque<std::vector<unsigned char>>;

    template <class T>
    static T* room(std::size_t len, Blocks& blocks) {
        return reinterpret_cast<T*>(blocks.emplace_back(len * sizeof(T) + 1, static_cast<unsigned char>(0xA5)).data());
    }
    template <class T>
    void fill(T* elements, std::size_t len) {
        for (std::size_t i = 0; i < len; ++i) {
            if constexpr (std::is_floating_point_v<T>) {
                elements[i] = static_cast<T>(random_.uniform(-300.0, 300.0));
            } else {
                elements[i] = static_cast<T>(random_.integer(-300, 300));
            }
        }
    }

    std::uint64_t seed_;
    Random random_;
    Blocks sources_, results_;
};

// A context that is released with the last one that holds it.
template <class Context>
std::shared_ptr<Context> owned(Context* context, VornStatus (*release)(Context*)) {
    return std::shared_ptr<Context>(context, [release](Context* c) {
        if (c != nullptr) release(c);
    });
}

// Memory for a context that its caller keeps.
inline std::shared_ptr<std::vector<Vorn8u>> memory(int bytes) {
    return std::make_shared<std::vector<Vorn8u>>(static_cast<std::size_t>(bytes));
}

class Together {
public:
    using Call = std::function<VornStatus(Buffers&)>;

    void add(std::string name, Call call) { calls_.push_back({std::move(name), std::move(call), {}}); }

    // Each thread makes all calls in each round, and begins with another one than its neighbours.
    void expectSameAsAlone(int rounds) {
        ASSERT_FALSE(calls_.empty());
        for (Shared& shared : calls_) {
            for (std::uint64_t seed = 0; seed < seeds; ++seed) {
                shared.alone.push_back(outcome(shared.call, seed));
                ASSERT_GE(shared.alone.back().status, vornStsNoErr) << shared.name;
            }
        }
        std::vector<std::string> wrong(threadCount);
        std::atomic<int> ready{0};
        std::vector<std::thread> threads;
        for (std::size_t t = 0; t < threadCount; ++t) {
            threads.emplace_back([&, t] {
                ++ready;
                while (ready < static_cast<int>(threadCount)) std::this_thread::yield();
                for (std::size_t round = 0; round < static_cast<std::size_t>(rounds); ++round) {
                    for (std::size_t i = 0; i < calls_.size(); ++i) {
                        const Shared& shared = calls_[(i + t * calls_.size() / threadCount) % calls_.size()];
                        const std::uint64_t seed = (round + t) % seeds;
                        if (!(outcome(shared.call, seed) == shared.alone[seed])) wrong[t] = shared.name;
                    }
                }
            });
        }
        for (std::thread& thread : threads) thread.join();
        for (std::size_t t = 0; t < threadCount; ++t) EXPECT_EQ(wrong[t], "") << "thread " << t;
    }

private:
    static constexpr std::size_t threadCount = 4;
    static constexpr std::uint64_t seeds = 3;

    struct Outcome {
        VornStatus status;
        std::deque<std::vector<unsigned char>> results;
        bool operator==(const Outcome&) const = default;
    };
    struct Shared {
        std::string name;
        Call call;
        std::vector<Outcome> alone;
    };

    static Outcome outcome(const Call& call, std::uint64_t seed) {
        Buffers buffers(seed);
        const VornStatus status = call(buffers);
        return {status, buffers.results()};
    }

    std::vector<Shared> calls_;
};

}  // namespace test
