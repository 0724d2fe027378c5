// Comparison bit for bit, and the order of argument checks.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "vornsr/types.h"

namespace test {

// The same bits; two not-a-numbers count as the same, whatever their payloads (which payload an addition passes on is
// not promised).
template <class T>
bool same(const T& a, const T& b) {
    if constexpr (std::is_floating_point_v<T>) {
        if (std::isnan(a) && std::isnan(b)) return true;
    }
    return std::memcmp(&a, &b, sizeof(T)) == 0;
}
inline bool same(const Vorn32fc& a, const Vorn32fc& b) { return same(a.re, b.re) && same(a.im, b.im); }
inline bool same(const Vorn64fc& a, const Vorn64fc& b) { return same(a.re, b.re) && same(a.im, b.im); }

template <class T>
std::string show(const T& x) {
    char text[96];
    if constexpr (std::is_floating_point_v<T>) {
        std::snprintf(text, sizeof text, "%a (%.9g)", static_cast<double>(x), static_cast<double>(x));
    } else if constexpr (std::is_integral_v<T>) {
        std::snprintf(text, sizeof text, "%lld", static_cast<long long>(x));
    } else {
        return std::string(1, '(').append(show(x.re)).append(", ").append(show(x.im)).append(")");
    }
    return text;
}

// Use: EXPECT_TRUE(sameBits(actual, expected, len)) << context;
template <class T>
::testing::AssertionResult sameBits(const T* actual, const T* expected, std::size_t len) {
    for (std::size_t i = 0; i < len; ++i) {
        if (!same(actual[i], expected[i])) {
            return ::testing::AssertionFailure() << "element " << i << " of " << len << ": got " << show(actual[i])
                                                 << ", expected " << show(expected[i]);
        }
    }
    return ::testing::AssertionSuccess();
}
template <class A, class B>
::testing::AssertionResult sameBits(const A& actual, const B& expected) {
    if (actual.size() != expected.size()) return ::testing::AssertionFailure() << "sizes differ";
    return sameBits(&*actual.begin(), &*expected.begin(), expected.size());
}

// The order of checks. Rules stand in the order in which the function must test them. Each is broken alone, and each
// pair at once: the earlier one decides. Rules with the same status may stand in any order among themselves.
template <class Arguments>
struct Rule {
    const char* name;
    VornStatus status;
    std::function<void(Arguments&)> breakIt;
};

// good() makes a valid set of arguments, call() calls the function and returns its status; untouched() tells that no
// output of these arguments was written.
template <class Arguments>
void expectCheckOrder(const std::function<Arguments()>& good, const std::function<VornStatus(Arguments&)>& call,
                      const std::function<bool(Arguments&)>& untouched, const std::vector<Rule<Arguments>>& rules) {
    {
        Arguments arguments = good();
        EXPECT_GE(call(arguments), vornStsNoErr) << "the unbroken call must pass";
    }
    for (std::size_t i = 0; i < rules.size(); ++i) {
        for (std::size_t j = i; j < rules.size(); ++j) {
            Arguments arguments = good();
            rules[j].breakIt(arguments);
            rules[i].breakIt(arguments);
            EXPECT_EQ(call(arguments), rules[i].status) << "broken: " << rules[i].name << " and " << rules[j].name;
            EXPECT_TRUE(untouched(arguments)) << "broken: " << rules[i].name << " and " << rules[j].name;
        }
    }
}

}  // namespace test
