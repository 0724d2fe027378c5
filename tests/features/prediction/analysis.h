// What the tests of both methods of linear prediction share: the forms of an analysis of a frame.
#pragma once

#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "vornsr/types.h"

namespace test {

template <class T>
using Analysis = VornStatus (*)(const T* src, int len, T* dst, int order);

inline constexpr int extremeScales[] = {
    INT_MIN, INT_MIN + 1, -151, -150, -149, -129, -128, -127, -32, -31, -30, -17, -16, -15, -1,          0,      1,
    15,      16,          17,   30,   31,   32,   126,  127,  128, 129, 148, 149, 150, 151, INT_MAX - 1, INT_MAX};

template <class T>
void expectAnalysisOrder(Analysis<T> call) {
    struct Arguments {
        Guarded<T> in = Guarded<T>({4, 2, -1}), out = Guarded<T>(3);
        const T* src = in.data();
        T* dst = out.data();
        int len = 3, order = 2;
    };
    using A = Arguments;
    expectCheckOrder<A>([] { return A(); }, [call](A& a) { return call(a.src, a.len, a.dst, a.order); },
                        [](A& a) { return a.out.untouched(); },
                        {{"src", vornStsNullPtrErr, [](A& a) { a.src = nullptr; }},
                         {"dst", vornStsNullPtrErr, [](A& a) { a.dst = nullptr; }},
                         {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
                         {"len -1", vornStsSizeErr, [](A& a) { a.len = -1; }},
                         {"least len", vornStsSizeErr, [](A& a) { a.len = INT_MIN; }},
                         {"order 0", vornStsSizeErr, [](A& a) { a.order = 0; }},
                         {"least order", vornStsSizeErr, [](A& a) { a.order = INT_MIN; }},
                         {"order above len", vornStsSizeErr, [](A& a) { a.order = a.len + 1; }},
                         {"largest order", vornStsSizeErr, [](A& a) { a.order = INT_MAX; }}});
}

// The call on a frame, with every allocation failing in turn; returns how many there are.
template <class T>
int expectFailedAnalysis(Analysis<T> call, const std::vector<T>& frame, int order) {
    for (int n = 1;; ++n) {
        Guarded<T> src(frame), dst(static_cast<std::size_t>(order));
        int calls, outstanding;
        VornStatus status;
        {
            const FailAllocation failing(n);
            status = call(src, static_cast<int>(frame.size()), dst, order);
            calls = failing.calls();
            outstanding = failing.outstanding();
        }
        EXPECT_EQ(outstanding, 0);
        if (calls < n) {
            EXPECT_EQ(status, vornStsNoErr);
            return calls;
        }
        EXPECT_EQ(status, vornStsMemAllocErr) << "allocation " << n << ", order " << order;
        EXPECT_TRUE(dst.untouched()) << "allocation " << n << ", order " << order;
    }
}

}  // namespace test
