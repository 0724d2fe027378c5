// Compares both layouts of a member of the Gaussian score families with a scalar model, over lengths, heights, strides,
// scale factors and kinds of data.
#pragma once

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>
#include <vector>

#include "model/gauss.h"
#include "scoring/gauss/call.h"
#include "support/expect.h"
#include "support/rounding_mode.h"

namespace gauss {

// Data that stay small, that reach saturation, and that consist of the extremes.
template <class T>
std::vector<T> data(test::Random& random, std::size_t n, int flavour) {
    std::vector<T> values(n);
    for (T& x : values) {
        if constexpr (std::is_floating_point_v<T>) {
            const double amplitude[] = {0.3, 3, 30, 1e4};
            x = static_cast<T>(random.uniform(-amplitude[flavour], amplitude[flavour]));
        } else {
            const int extremes[] = {-32768, -32767, -1, 0, 1, 32766, 32767};
            const int amplitude[] = {20, 900, 32768, 0};
            x = static_cast<T>(flavour == 3 ? extremes[random.next() % 7]
                                            : random.integer(-amplitude[flavour], amplitude[flavour] - 1));
        }
    }
    return values;
}
template <class T>
std::vector<T> inverseVariances(test::Random& random, std::size_t n, int flavour) {
    std::vector<T> values(n);
    for (T& v : values) {
        if constexpr (std::is_floating_point_v<T>) {
            v = static_cast<T>(random.uniform(0.05, 3));
        } else {
            v = static_cast<T>(flavour == 0 ? random.integer(0, 30) : random.integer(-32768, 32767));
        }
    }
    return values;
}

template <class T, class Val>
Problem<T, Val> makeProblem(int height, int len, int scaleFactor, int flavour, std::uint64_t seed) {
    test::Random random(seed);
    const std::size_t n = at(height) * at(len);
    const int step = len + static_cast<int>(random.next() % 3) * 3;
    Problem<T, Val> p{height,
                      len,
                      Matrix<T>(height, len, step, data<T>(random, n, flavour)),
                      Matrix<T>(height, len, step, inverseVariances<T>(random, n, flavour)),
                      Guarded<T>(data<T>(random, at(len), flavour)),
                      Guarded<T>(inverseVariances<T>(random, at(len), flavour)),
                      Guarded<Val>(at(height)),
                      scaleFactor};
    for (Val& val : p.val) {
        if constexpr (std::is_integral_v<Val>) {
            val = static_cast<Val>(flavour == 0 ? random.integer(-5000, 5000) : random.anyBits<std::int32_t>());
        } else {
            val = static_cast<Val>(random.uniform(-20, 5));
        }
    }
    return p;
}

template <Shape shape, class T, class Val>
model::Row<T> rowOf(const Problem<T, Val>& p, int r) {
    if (shape.gaussians) return {p.one, p.many.row(r), shape.identity ? nullptr : p.manyVar.row(r), p.len};
    return {p.many.row(r), p.one, shape.identity ? nullptr : p.oneVar.data(), p.len};
}

// One row of a problem, as a score of the model takes it.
template <class T, class Val>
struct Place {
    model::Row<T> row;
    Val val;
    int scaleFactor, height;
    bool lastOdd;
};

template <Shape shape, class T, class Val, class Score>
auto scoresOf(const Problem<T, Val>& p, const Score& score) {
    std::vector<decltype(score(std::declval<Place<T, Val>>()))> scores;
    for (int r = 0; r < p.height; ++r) {
        scores.push_back(score(Place<T, Val>{rowOf<shape>(p, r), p.val[shape.gaussians ? at(r) : 0], p.scaleFactor,
                                             p.height, p.height % 2 == 1 && r == p.height - 1}));
    }
    return scores;
}

// The sizes of one sweep: every length of 1 to 70 and the longer ones, heights 1 to 9, and the borders of the runs.
struct Size {
    int height, len;
};
inline std::vector<Size> sweepSizes() {
    std::vector<Size> sizes;
    std::vector<int> lengths = {100, 112, 127, 255};
    for (int len = 1; len <= 70; ++len) lengths.push_back(len);
    for (int len : lengths) {
        sizes.push_back({1 + len % 9, len});
        sizes.push_back({1 + (len + 4) % 9, len});
    }
    for (int len : {1, 3, 5, 7, 8, 13, 39}) {
        for (int height = 1; height <= 9; ++height) sizes.push_back({height, len});
    }
    for (int height : {99, 100, 101, 127, 128, 129, 200, 201, 256, 257}) {
        for (int len : {2, 5, 13}) sizes.push_back({height, len});
    }
    for (int height : {999, 1000, 1001}) {
        for (int len : {1, 3, 4, 9}) sizes.push_back({height, len});
    }
    return sizes;
}

// What srcDst holds before the call: vals where it gives them, values about as large as the scores otherwise.
template <Shape shape, class T, class Val, class Out>
std::vector<Out> oldValues(const Problem<T, Val>& p, int flavour, std::uint64_t seed) {
    test::Random random(seed);
    std::vector<Out> old(shape.oneResult ? 1 : at(p.height));
    for (std::size_t r = 0; r < old.size(); ++r) {
        if constexpr (shape.gaussians && !shape.separateVal) {
            old[r] = p.val[r];
        } else if constexpr (std::is_integral_v<Out>) {
            old[r] = static_cast<Out>(flavour == 0 ? random.integer(-9000, 9000) : random.anyBits<std::int32_t>());
        } else {
            old[r] = static_cast<Out>(random.uniform(-30, 10));
        }
    }
    return old;
}

// The same data at every alignment give the same bits.
template <Shape shape, bool list, class T, class Val, class Out, class Function>
void expectEveryAlignment(const char* name, Function function) {
    const auto p = makeProblem<T, Val>(7, 43, 3, 1, 7);
    const std::vector<Out> old = oldValues<shape, T, Val, Out>(p, 1, 8);
    Guarded<Out> wanted(old);
    ASSERT_EQ(call(function, argumentsOf(p, wanted.data())), vornStsNoErr);
    for (std::size_t shift = 0; shift < 64 / sizeof(T); ++shift) {
        const auto bytes = [&](std::size_t multiple, std::size_t size) { return shift * multiple * size % 64; };
        test::Offset<T> many(p.many.block.size(), bytes(1, sizeof(T))),
            manyVar(p.many.block.size(), bytes(3, sizeof(T))), one(p.one.size(), bytes(5, sizeof(T))),
            oneVar(p.one.size(), bytes(7, sizeof(T)));
        test::Offset<Val> val(p.val.size(), bytes(1, sizeof(Val)));
        test::Offset<Out> out(old.size(), bytes(3, sizeof(Out)));
        many.assign(p.many.block.values()), manyVar.assign(p.manyVar.block.values()), one.assign(p.one.values());
        oneVar.assign(p.oneVar.values()), val.assign(p.val.values()), out.assign(old);
        std::vector<const T*> manyRows, manyVarRows;
        for (int r = 0; r < p.height; ++r) {
            manyRows.push_back(many.data() + at(r) * at(p.many.step));
            manyVarRows.push_back(manyVar.data() + at(r) * at(p.many.step));
        }
        const Arguments<T, Val, Out> a{many.data(), manyVar.data(), manyRows.data(), manyVarRows.data(), p.many.step,
                                       one.data(),  oneVar.data(),  val.data(),      p.val[0],           out.data(),
                                       p.len,       p.height,       p.scaleFactor};
        ASSERT_EQ(call(function, a), vornStsNoErr);
        EXPECT_TRUE(test::sameBits(out.data(), wanted.data(), old.size())) << name << " shift " << shift;
        EXPECT_TRUE(out.surroundingsUntouched()) << name;
    }
}

template <Shape shape, bool list, class T, class Val, class Out, class Function>
void expectChecks(const char* name, Function function) {
    SCOPED_TRACE(name);
    static const auto p = makeProblem<T, Val>(3, 5, 0, 0, 9);
    static Guarded<Out> out(shape.oneResult ? 1 : 3);
    using A = Arguments<T, Val, Out>;
    std::vector<test::Rule<A>> stride, null, size, rules;
    if (!list) stride.push_back({"step", vornStsStrideErr, [](A& a) { a.step = a.len - 1; }});
    null.push_back({"the rows", vornStsNullPtrErr, [](A& a) { a.many = nullptr, a.manyRows = nullptr; }});
    null.push_back({"the shared vector", vornStsNullPtrErr, [](A& a) { a.one = nullptr; }});
    null.push_back({"the result", vornStsNullPtrErr, [](A& a) { a.out = nullptr; }});
    if (!shape.identity) {
        null.push_back(
            {"var", vornStsNullPtrErr, [](A& a) { a.manyVar = a.oneVar = nullptr, a.manyVarRows = nullptr; }});
    }
    if (shape.separateVal) null.push_back({"val", vornStsNullPtrErr, [](A& a) { a.val = nullptr; }});
    size.push_back({"len", vornStsSizeErr, [](A& a) { a.len = 0; }});
    size.push_back({"a negative len", vornStsSizeErr, [](A& a) { a.len = -1; }});
    size.push_back({"height", vornStsSizeErr, [](A& a) { a.height = 0; }});
    const auto append = [&](const auto& more) { rules.insert(rules.end(), more.begin(), more.end()); };
    switch (shape.order) {
        case Order::StrideNullSize:
            append(stride), append(null), append(size);
            break;
        case Order::NullStrideSize:
            append(null), append(stride), append(size);
            break;
        case Order::NullSizeStride:
            append(null), append(size), append(stride);
            break;
    }
    test::expectCheckOrder<A>(
        [] {
            out.fillPattern();
            return argumentsOf(p, out.data());
        },
        [&](A& a) {
            const VornStatus status = call(function, a);
            if (status == vornStsNoErr) out.fillPattern();
            return status;
        },
        [](A&) { return out.untouched(); }, rules);
}

// Both layouts of a member against the model, in the default rounding mode and in another: expected(p, old, list) is
// what out must become.
template <Shape shape, class T, class Val, class Out, class D2, class D2L, class Expected>
void sweep(const char* name, D2 d2, D2L d2l, const Expected& expected) {
    // Among them the ends of the shifts and of the exponents of a single, and what has no successor.
    static constexpr int scaleFactors[] = {
        0,   1,    7,    14,   15,  16,  20,  31,  40,   -1,   -2,    -7,      -15,     -16,         -20,        3,
        29,  -130, 140,  46,   47,  62,  63,  64,  -17,  -18,  -32,   -63,     -64,     -65,         126,        127,
        128, -127, -128, -129, 148, 149, 150, 200, -200, 1000, -1000, INT_MAX, INT_MIN, INT_MAX - 1, INT_MIN + 1};
    expectChecks<shape, false, T, Val, Out>(name, d2);
    expectChecks<shape, true, T, Val, Out>(name, d2l);
    expectEveryAlignment<shape, false, T, Val, Out>(name, d2);
    expectEveryAlignment<shape, true, T, Val, Out>(name, d2l);
    unsigned turn = 0;
    for (const Size& size : sweepSizes()) {
        for (int flavour = 0; flavour < (size.height > 9 ? 1 : 4); ++flavour) {
            const int scaleFactor = shape.scaled ? scaleFactors[turn % std::size(scaleFactors)] : 0;
            const auto p = makeProblem<T, Val>(size.height, size.len, scaleFactor, flavour, ++turn);
            const auto check = [&](auto list, auto function, unsigned mode) {
                const std::vector<Out> old = oldValues<shape, T, Val, Out>(p, flavour, turn);
                Guarded<Out> out(old);
                const test::RoundingMode rounding(mode);
                ASSERT_EQ(call(function, argumentsOf(p, out.data())), vornStsNoErr);
                EXPECT_EQ(test::RoundingMode::current(), mode);
                const std::vector<Out> wanted = expected(p, old, list);
                EXPECT_TRUE(test::sameBits(out.data(), wanted.data(), wanted.size()))
                    << name << (list.value ? "_D2L" : "_D2") << " len " << size.len << " height " << size.height
                    << " scaleFactor " << scaleFactor << " flavour " << flavour << " mode " << mode;
                EXPECT_TRUE(out.surroundingsUntouched());
            };
            const unsigned directed = (1 + test::Random(turn).next() % 3) * test::RoundingMode::down;
            for (unsigned mode : {test::RoundingMode::nearest, directed}) {
                check(std::false_type(), d2, mode);
                check(std::true_type(), d2l, mode);
            }
            if (testing::Test::HasFailure()) return;
        }
    }
}

}  // namespace gauss
