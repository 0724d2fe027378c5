// Mahalanobis distances of one vector and of many against the scalar model.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

#include "calls/signature.h"
#include "model/distances.h"
#include "scoring/distances/kernels.h"
#include "scoring/gauss/sweep.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using calls::Role;
using gauss::at;
using test::Guarded;
using test::Offset;
using test::Random;
using test::RoundingMode;
using test::sameBits;

constexpr unsigned modes[] = {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero};

// ---- One vector. A member, its model over vectors at any address, and its kernel with the order of aligned ones.

template <class T, class R>
struct Member {
    const char* name;
    VornStatus (*call)(const T*, const T*, const T*, int, R*);
    R (*model)(const T*, const T*, const T*, int);
};
const Member<float, float> single{"32f", vornsMahDistSingle_32f, model::singleDistance<float>};
const Member<double, double> twice{"64f", vornsMahDistSingle_64f, model::doubleDistance<double>};
const Member<float, double> widened{"32f64f", vornsMahDistSingle_32f64f, model::doubleDistance<float>};
const Member<Vorn16s, float> shorts{"16s32f", vornsMahDistSingle_16s32f, model::singleDistance<Vorn16s>};

template <class T>
struct Vectors {
    std::vector<T> x, m, v;
};
// Ordinary data, and those at which arithmetic breaks.
template <class T>
Vectors<T> vectors(Random& random, int len, bool hard) {
    const auto draw = [&](double low, double high) {
        std::vector<T> values(at(len));
        for (T& value : values) value = static_cast<T>(random.uniform(low, high));
        return values;
    };
    if constexpr (std::is_integral_v<T>) {
        if (hard) {
            const auto values = test::hardIntegers<T>();
            return {random.pick(values, at(len)), random.pick(values, at(len)), random.pick(values, at(len))};
        }
        return {draw(-900, 900), draw(-900, 900), draw(-50, 50)};
    } else {
        Vectors<T> all{draw(-20, 20), draw(-20, 20), draw(0.01, 3)};
        if (hard) {
            const auto values = test::hardFloats<T>();
            for (auto* some : {&all.x, &all.m, &all.v})
                (*some)[at(static_cast<int>(random.next() % at(len)))] = random.pick(values, 1)[0];
        }
        return all;
    }
}

template <class T, class R>
void expectEveryLength(const Member<T, R>& member) {
    Random random(1);
    std::vector<int> lengths = {100, 112, 127, 255, 1000};
    for (int len = 1; len <= 70; ++len) lengths.push_back(len);
    for (int len : lengths) {
        for (bool hard : {false, true}) {
            const auto data = vectors<T>(random, len, hard);
            Guarded<T> x(data.x), m(data.m), v(data.v);
            for (unsigned mode : modes) {
                Guarded<R> result(1);
                const RoundingMode rounding(mode);
                ASSERT_EQ(member.call(x, m, v, len, result), vornStsNoErr);
                EXPECT_EQ(RoundingMode::current(), mode);
                const R expected = member.model(x, m, v, len);
                EXPECT_TRUE(sameBits(result.data(), &expected, 1)) << member.name << " len " << len << " mode " << mode;
                EXPECT_TRUE(result.surroundingsUntouched());
            }
        }
    }
}

// Every distance of the three vectors from an address of 16 bytes, those between elements included.
template <class T, class R>
void expectEveryAlignment(const Member<T, R>& member) {
    Random random(2);
    constexpr std::size_t step = sizeof(T) == 8 ? 4 : sizeof(T) / 2;
    for (int len : {9, 10, 11, 12, 17, 18, 26, 39}) {
        const auto data = vectors<T>(random, len, false);
        for (std::size_t a = 0; a < 16; a += 4) {
            for (std::size_t b = 0; b < 16; b += step) {
                for (std::size_t c = 0; c < 16; c += step) {
                    Offset<T> x(at(len), a), m(at(len), b), v(at(len), c);
                    x.assign(data.x), m.assign(data.m), v.assign(data.v);
                    R result;
                    ASSERT_EQ(member.call(x, m, v, len, &result), vornStsNoErr);
                    const R expected = member.model(x, m, v, len);
                    ASSERT_TRUE(sameBits(&result, &expected, 1))
                        << member.name << " len " << len << " at " << a << " " << b << " " << c;
                }
            }
        }
    }
}

template <class T, class R>
void expectChecks(const Member<T, R>& member) {
    SCOPED_TRACE(member.name);
    struct Call {
        const T *x, *m, *v;
        int len;
        R* result;
    };
    const Guarded<T> x{1, 2}, m{3, 4}, v{5, 6};
    Guarded<R> result(1);
    test::expectCheckOrder<Call>(
        [&] {
            result.fillPattern();
            return Call{x, m, v, 2, result};
        },
        [&](Call& c) { return member.call(c.x, c.m, c.v, c.len, c.result); }, [&](Call&) { return result.untouched(); },
        {{"src", vornStsNullPtrErr, [](Call& c) { c.x = nullptr; }},
         {"mean", vornStsNullPtrErr, [](Call& c) { c.m = nullptr; }},
         {"var", vornStsNullPtrErr, [](Call& c) { c.v = nullptr; }},
         {"result", vornStsNullPtrErr, [](Call& c) { c.result = nullptr; }},
         {"len", vornStsSizeErr, [](Call& c) { c.len = 0; }},
         {"a negative len", vornStsSizeErr, [](Call& c) { c.len = INT_MIN; }}});
}

// For any way to sum: the square is symmetric, weights are linear, and a vector is no distance from itself.
template <class T, class R>
void expectDistances(const Member<T, R>& member) {
    Random random(3);
    for (int len : {1, 2, 3, 7, 8, 10, 11, 16, 39, 70}) {
        auto data = vectors<T>(random, len, false);
        Guarded<T> x(data.x), m(data.m), v(data.v);
        R distance, back, itself, doubled;
        ASSERT_EQ(member.call(x, m, v, len, &distance), vornStsNoErr);
        ASSERT_EQ(member.call(x, x, v, len, &itself), vornStsNoErr);
        EXPECT_EQ(itself, R(0));
        EXPECT_FALSE(std::signbit(itself));
        for (T& w : v) w = static_cast<T>(w * 2);
        ASSERT_EQ(member.call(x, m, v, len, &doubled), vornStsNoErr);
        EXPECT_EQ(doubled, 2 * distance) << member.name << " len " << len;
        long double exact = 0, magnitude = 0;
        for (int j = 0; j < len; ++j) {
            const long double d = static_cast<long double>(data.x[at(j)]) - static_cast<long double>(data.m[at(j)]);
            exact += d * d * static_cast<long double>(data.v[at(j)]);
            magnitude += std::fabs(d * d * static_cast<long double>(data.v[at(j)]));
        }
        // Four roundings of a term (the difference counts twice in a square) and one for each addition.
        EXPECT_LE(std::fabs(static_cast<long double>(distance) - exact),
                  magnitude * (len + 4) * std::numeric_limits<R>::epsilon() / 2)
            << member.name << " len " << len;
        // Both ways, at addresses that do not differ.
        Offset<T> a(at(len), 0), b(at(len), 0), w(at(len), 0);
        a.assign(data.x), b.assign(data.m), w.assign(data.v);
        ASSERT_EQ(member.call(a, b, w, len, &distance), vornStsNoErr);
        ASSERT_EQ(member.call(b, a, w, len, &back), vornStsNoErr);
        EXPECT_EQ(back, distance) << member.name << " len " << len;
    }
}

template <class T, class R>
void expectMember(const Member<T, R>& member) {
    expectEveryLength(member);
    expectEveryAlignment(member);
    expectChecks(member);
    expectDistances(member);
}

TEST(MahDistSingle, Single) { expectMember(single); }
TEST(MahDistSingle, Double) { expectMember(twice); }
TEST(MahDistSingle, Widened) { expectMember(widened); }
TEST(MahDistSingle, SixteenBitsInSingle) { expectMember(shorts); }

TEST(MahDistSingle, SmallExamples) {
    Guarded<float> x{3}, m{1}, v{2}, result(1);
    ASSERT_EQ(vornsMahDistSingle_32f(x, m, v, 1, result), vornStsNoErr);
    EXPECT_EQ(result[0], 8.0f);
    // No difference of 16-bit data saturates.
    Guarded<Vorn16s> high{32767, 32767}, low{-32768, -32768}, weights{32767, -32768};
    ASSERT_EQ(vornsMahDistSingle_16s32f(high, low, weights, 1, result), vornStsNoErr);
    EXPECT_EQ(result[0], 140728898420736.0f);  // 65535^2, in single 4294836224, x 32767, in single
    // Widened before they are subtracted: in single the difference would be 2^25.
    Guarded<float> large{33554432.0f}, one{-1.0f}, unit{1.0f};
    Guarded<double> wide(1);
    ASSERT_EQ(vornsMahDistSingle_32f64f(large, one, unit, 1, wide), vornStsNoErr);
    EXPECT_EQ(wide[0], 33554433.0 * 33554433.0);
}

// Beside a first term of 2^24 a single one is lost and two that meet before are not: the result tells who met.
TEST(MahDistSingle, AddressesChooseTheOrder) {
    constexpr int len = 16;
    const auto distance = [&](std::initializer_list<int> ones, std::size_t a, std::size_t b, std::size_t c) {
        std::vector<float> x(len, 0.0f), m(len, 0.0f), v(len, 1.0f);
        x[0] = 4096;
        for (int j : ones) x[at(j)] = 1;
        Offset<float> px(len, a), pm(len, b), pv(len, c);
        px.assign(x), pm.assign(m), pv.assign(v);
        float result;
        EXPECT_EQ(vornsMahDistSingle_32f(px, pm, pv, len, &result), vornStsNoErr);
        return result - 16777216.0f;
    };
    // Aligned, 0 meets 4 and 8 meets 12; with src elsewhere 0 meets 8 and 4 meets 12; between elements all go in order.
    EXPECT_EQ(distance({4, 12}, 0, 0, 0), 0.0f);
    EXPECT_EQ(distance({4, 12}, 4, 0, 0), 2.0f);
    EXPECT_EQ(distance({4, 12}, 1, 0, 0), 2.0f);
    EXPECT_EQ(distance({4, 12}, 0, 0, 4), 2.0f);
    EXPECT_EQ(distance({4, 12}, 0, 1, 0), 0.0f);
    EXPECT_EQ(distance({4, 12}, 0, 0, 2), 0.0f);
    // Two columns lie in front of the mean's 16 bytes: 4 and 5 are then neighbours of one pair of lanes.
    EXPECT_EQ(distance({4, 5}, 0, 8, 0), 2.0f);
    EXPECT_EQ(distance({4, 5}, 0, 0, 4), 0.0f);
    EXPECT_EQ(distance({4, 5}, 0, 4, 0), 0.0f);
    // Three columns: 5 and 6 are.
    EXPECT_EQ(distance({5, 6}, 0, 4, 0), 2.0f);
    EXPECT_EQ(distance({5, 6}, 0, 8, 0), 0.0f);
}

TEST(MahDistSingle, KernelsSumAsForAlignedVectors) {
    Random random(4);
    std::vector<int> lengths = {1, 2, 7, 10, 11, 16, 23, 24, 39, 70};
    // Eight columns are the most that doubles take in order: often enough to tell that from lanes.
    for (int k = 0; k < 25; ++k) lengths.push_back(8), lengths.push_back(9);
    for (int len : lengths) {
        const auto data = vectors<float>(random, len, false);
        const auto wide = vectors<double>(random, len, false);
        const auto fixed = vectors<Vorn16s>(random, len, true);
        Offset<double> ax(at(len), 0), am(at(len), 0), av(at(len), 0);
        ax.assign(wide.x), am.assign(wide.m), av.assign(wide.v);
        const double expectedDouble = model::doubleDistance<double>(ax, am, av, len);
        for (std::size_t shift : {0, 4, 9}) {
            Offset<float> x(at(len), shift), m(at(len), shift), v(at(len), shift);
            x.assign(data.x), m.assign(data.m), v.assign(data.v);
            const float expected = model::alignedDistance(data.x, data.m, data.v);
            for (auto* kernel : {sMahDistSingle_32f_M7, sMahDistSingle_32f_M7_Al}) {
                float result;
                kernel(x, m, v, len, &result);
                EXPECT_TRUE(sameBits(&result, &expected, 1)) << len;
            }
            Offset<double> dx(at(len), shift), dm(at(len), shift), dv(at(len), shift);
            dx.assign(wide.x), dm.assign(wide.m), dv.assign(wide.v);
            for (auto* kernel : {sMahDistSingle_64f_M7, sMahDistSingle_64f_M7_Al}) {
                double result;
                kernel(dx, dm, dv, len, &result);
                EXPECT_TRUE(sameBits(&result, &expectedDouble, 1)) << len;
            }
            Offset<Vorn16s> sx(at(len), shift), sm(at(len), shift), sv(at(len), shift);
            sx.assign(fixed.x), sm.assign(fixed.m), sv.assign(fixed.v);
            const float expectedShort =
                model::alignedDistance(model::singles(fixed.x.data(), len), model::singles(fixed.m.data(), len),
                                       model::singles(fixed.v.data(), len));
            float result;
            vornsMahDistSingle_16s32f_M7(sx, sm, sv, len, &result);
            EXPECT_TRUE(sameBits(&result, &expectedShort, 1)) << len;
            Vorn32s scaled;
            vornsMahDistSingle_16s32s_Sfs_M7(sx, sm, sv, len, &scaled, 20);
            EXPECT_EQ(scaled, model::scaledDistance(fixed.x.data(), fixed.m.data(), fixed.v.data(), len, 20));
        }
    }
}

// ---- One vector, integers.

constexpr int scaleFactors[] = {0,   1,   2,   7,   15,  16,  17,  30,  31,      32,      33,          46,
                                47,  48,  62,  63,  64,  65,  99,  -1,  -2,      -15,     -16,         -30,
                                -31, -32, -33, -62, -63, -64, -65, -99, INT_MAX, INT_MIN, INT_MAX - 1, INT_MIN + 1};

TEST(MahDistSingleInteger, EveryLengthAndScaleFactor) {
    Random random(5);
    unsigned turn = 0;
    for (int len = 1; len <= 140; ++len) {
        for (int flavour = 0; flavour < 3; ++flavour) {
            auto data = flavour == 2
                            ? Vectors<Vorn16s>{random.integers<Vorn16s>(at(len)), random.integers<Vorn16s>(at(len)),
                                               random.integers<Vorn16s>(at(len))}
                            : vectors<Vorn16s>(random, len, flavour == 1);
            Guarded<Vorn16s> x(data.x), m(data.m), v(data.v);
            for (int k = 0; k < 6; ++k) {
                const int scaleFactor = scaleFactors[turn++ % std::size(scaleFactors)];
                Guarded<Vorn32s> result(1);
                ASSERT_EQ(vornsMahDistSingle_16s32s_Sfs(x, m, v, len, result, scaleFactor), vornStsNoErr);
                EXPECT_EQ(result[0], model::scaledDistance(x, m, v, len, scaleFactor))
                    << "len " << len << " scale factor " << scaleFactor;
                EXPECT_TRUE(result.surroundingsUntouched());
            }
        }
    }
}

// The sum of extremes, at lengths where it outgrows 32 bits, and 64, which wrap. Every other column has a small term.
TEST(MahDistSingleInteger, LongSumsAreExactAndWrap) {
    constexpr int longest = 140000;
    Guarded<Vorn16s> x(longest), m(longest), v(longest);
    for (Vorn16s weight : {Vorn16s{-32768}, Vorn16s{32767}}) {
        for (int len : {4096, 16384 + 3, 32768 + 31, 65537, longest}) {
            for (int j = 0; j < len; ++j) {
                x[at(j)] = j % 2 ? Vorn16s{7} : Vorn16s{32767};
                m[at(j)] = j % 2 ? Vorn16s{-5} : Vorn16s{-32768};
                v[at(j)] = weight;
            }
            const auto large = static_cast<unsigned __int128>((len + 1) / 2) * 4294836225u +
                               static_cast<unsigned __int128>(len / 2) * 144u;
            const auto wide = static_cast<__int128>(large) * weight;
            const auto sum = static_cast<std::int64_t>(static_cast<std::uint64_t>(wide));
            EXPECT_EQ(len == longest, wide != sum) << "only the longest leaves 64 bits";
            for (int scaleFactor : {16, 31, 32, 33}) {
                Vorn32s result;
                ASSERT_EQ(vornsMahDistSingle_16s32s_Sfs(x, m, v, len, &result, scaleFactor), vornStsNoErr);
                EXPECT_EQ(result, std::clamp<std::int64_t>(sum >> scaleFactor, INT32_MIN, INT32_MAX))
                    << "len " << len << " scale factor " << scaleFactor;
            }
        }
    }
}

TEST(MahDistSingleInteger, SaturatesAndDoesNotRound) {
    Guarded<Vorn16s> high{32767, 32767}, low{-32768, -32768}, up{32767, 32767}, down{-32768, -32768};
    Guarded<Vorn32s> result(1);
    ASSERT_EQ(vornsMahDistSingle_16s32s_Sfs(high, low, up, 2, result, 0), vornStsNoErr);
    EXPECT_EQ(result[0], 2147483647);
    ASSERT_EQ(vornsMahDistSingle_16s32s_Sfs(high, low, down, 2, result, 0), vornStsNoErr);
    EXPECT_EQ(result[0], INT_MIN);
    Guarded<Vorn16s> one{1}, zero{0}, seven{7}, minusSeven{-7};
    const auto scaled = [&](const Vorn16s* v, int scaleFactor) {
        Vorn32s value;
        EXPECT_EQ(vornsMahDistSingle_16s32s_Sfs(one, zero, v, 1, &value, scaleFactor), vornStsNoErr);
        return value;
    };
    EXPECT_EQ(scaled(seven, 2), 1);
    EXPECT_EQ(scaled(minusSeven, 2), -2);
    EXPECT_EQ(scaled(seven, 63), 0);
    EXPECT_EQ(scaled(minusSeven, 64), -1);
    EXPECT_EQ(scaled(minusSeven, INT_MAX), -1);
    EXPECT_EQ(scaled(seven, -28), 1879048192);
    EXPECT_EQ(scaled(seven, -29), 2147483647);
    EXPECT_EQ(scaled(minusSeven, -28), -1879048192);
    EXPECT_EQ(scaled(minusSeven, -29), INT_MIN);
    EXPECT_EQ(scaled(seven, INT_MIN), 2147483647);
    EXPECT_EQ(scaled(minusSeven, INT_MIN), INT_MIN);
    EXPECT_EQ(scaled(zero, INT_MIN), 0);
    EXPECT_EQ(scaled(one, -30), 1073741824);
    EXPECT_EQ(scaled(one, -31), 2147483647);
    Guarded<Vorn16s> minusOne{-1};
    EXPECT_EQ(scaled(minusOne, -31), INT_MIN);
}

TEST(MahDistSingleInteger, Checks) {
    expectChecks<Vorn16s, Vorn32s>({"16s32s_Sfs",
                                    [](const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, Vorn32s* result) {
                                        return vornsMahDistSingle_16s32s_Sfs(x, m, v, len, result, 3);
                                    },
                                    nullptr});
}

// ---- Many rows.

template <class T>
struct Rows {
    const T *rows, *rowVars;
    const T *const *rowList, *const *rowVarList;
    const T *one, *oneVar;
    int step, len, height;
    T* result;
};
template <class T>
Rows<T> rowsOf(const gauss::Problem<T, T>& p, T* result) {
    return {p.many.block, p.manyVar.block, p.many.rows, p.manyVar.rows, p.one,
            p.oneVar,     p.many.step,     p.len,       p.height,       result};
}
template <class T>
VornStatus call(const calls::Function& function, const Rows<T>& r) {
    calls::Arguments arguments;
    arguments[Role::rows] = r.rows, arguments[Role::rowVars] = r.rowVars;
    arguments[Role::rowList] = r.rowList, arguments[Role::rowVarList] = r.rowVarList;
    arguments[Role::src1] = r.one, arguments[Role::var] = r.oneVar, arguments[Role::dst] = r.result;
    arguments[Role::step] = r.step, arguments[Role::len] = r.len, arguments[Role::height] = r.height;
    return function(arguments);
}

template <class T>
void expectRowChecks(const calls::Function& function) {
    SCOPED_TRACE(function.name());
    static const auto p = gauss::makeProblem<T, T>(3, 5, 0, 0, 9);
    static Guarded<T> result(3);
    using A = Rows<T>;
    std::vector<test::Rule<A>> rules;
    if (function.has(Role::step)) rules.push_back({"step", vornStsStrideErr, [](A& a) { a.step = a.len - 1; }});
    rules.push_back({"the rows", vornStsNullPtrErr, [](A& a) { a.rows = nullptr, a.rowList = nullptr; }});
    rules.push_back({"var", vornStsNullPtrErr, [](A& a) { a.rowVars = a.oneVar = nullptr, a.rowVarList = nullptr; }});
    rules.push_back({"the shared vector", vornStsNullPtrErr, [](A& a) { a.one = nullptr; }});
    rules.push_back({"the result", vornStsNullPtrErr, [](A& a) { a.result = nullptr; }});
    rules.push_back({"len", vornStsSizeErr, [](A& a) { a.len = 0; }});
    rules.push_back({"a negative len", vornStsSizeErr, [](A& a) { a.len = -1; }});
    rules.push_back({"height", vornStsSizeErr, [](A& a) { a.height = 0; }});
    test::expectCheckOrder<A>(
        [] {
            result.fillPattern();
            return rowsOf(p, result.data());
        },
        [&](A& a) {
            const VornStatus status = call(function, a);
            if (status == vornStsNoErr) result.fillPattern();
            return status;
        },
        [](A&) { return result.untouched(); }, rules);
    // A step of exactly len is enough.
    const auto tight = gauss::makeProblem<T, T>(4, 5, 0, 0, 9);
    Rows<T> arguments = rowsOf(tight, result.data());
    arguments.height = 1, arguments.step = arguments.len;
    EXPECT_EQ(call(function, arguments), vornStsNoErr);
}

// Both layouts against the model, at every length and height, in every rounding mode by turns.
template <class T>
void expectRows(bool gaussians, const calls::Function& d2, const calls::Function& d2l) {
    const auto hard = test::hardFloats<T>();
    unsigned turn = 0;
    for (const gauss::Size& size : gauss::sweepSizes()) {
        for (int flavour = 0; flavour < (size.height > 9 ? 1 : 3); ++flavour) {
            const auto p = gauss::makeProblem<T, T>(size.height, size.len, 0, flavour, ++turn);
            Random random(turn);
            if (flavour == 2) {  // values at which arithmetic breaks, one in twenty
                for (const auto* values : {&p.many.block, &p.manyVar.block, &p.one, &p.oneVar}) {
                    for (T& x : *values) {
                        if (random.integer(0, 19) == 0) x = hard[random.next() % hard.size()];
                    }
                }
            } else if (flavour == 1) {  // rows that equal the shared vector: zeros of one sign in every mode
                for (int r = 0; r < p.height; r += 2) {
                    std::copy_n(p.one.data(), p.len, const_cast<T*>(p.many.row(r)));
                }
            }
            const unsigned mode = modes[turn % 4];
            for (const auto* function : {&d2, &d2l}) {
                Guarded<T> result(at(p.height));
                const RoundingMode rounding(mode);
                ASSERT_EQ(call(*function, rowsOf(p, result.data())), vornStsNoErr);
                EXPECT_EQ(RoundingMode::current(), mode);
                std::vector<T> expected;
                for (int r = 0; r < p.height; ++r) {
                    using Row = model::Row<T>;
                    expected.push_back(model::rowDistance(gaussians ? Row{p.one, p.many.row(r), p.manyVar.row(r), p.len}
                                                                    : Row{p.many.row(r), p.one, p.oneVar, p.len}));
                }
                EXPECT_TRUE(sameBits(result.data(), expected.data(), expected.size()))
                    << function->name() << " len " << size.len << " height " << size.height << " flavour " << flavour
                    << " mode " << mode;
                EXPECT_TRUE(result.surroundingsUntouched());
            }
        }
    }
    expectRowChecks<T>(d2);
    expectRowChecks<T>(d2l);
}

// No alignment of any vector changes a bit, nor where it stands between elements.
template <class T>
void expectRowAlignments(const calls::Function& function) {
    const auto p = gauss::makeProblem<T, T>(7, 43, 0, 1, 7);
    Guarded<T> expected(7);
    ASSERT_EQ(call(function, rowsOf(p, expected.data())), vornStsNoErr);
    for (std::size_t shift = 0; shift < 64; shift += sizeof(T)) {
        Offset<T> many(p.many.block.size(), shift), manyVar(p.many.block.size(), 3 * shift % 64),
            one(43, 5 * shift % 64), oneVar(43, 7 * shift % 64), result(7, shift);
        many.assign(p.many.block.values()), manyVar.assign(p.manyVar.block.values());
        one.assign(p.one.values()), oneVar.assign(p.oneVar.values());
        std::vector<const T*> rows, vars;
        for (int r = 0; r < 7; ++r) {
            rows.push_back(many.data() + at(r) * at(p.many.step));
            vars.push_back(manyVar.data() + at(r) * at(p.many.step));
        }
        const Rows<T> arguments{many, manyVar, rows.data(), vars.data(), one, oneVar, p.many.step, 43, 7, result};
        ASSERT_EQ(call(function, arguments), vornStsNoErr);
        EXPECT_TRUE(sameBits(result.data(), expected.data(), 7)) << function.name() << " shift " << shift;
        EXPECT_TRUE(result.surroundingsUntouched());
    }
}

#define FUNCTION(name) calls::Function(VORN_NAMED(name), calls::distanceShapes)

TEST(MahDist, Single) {
    expectRows<float>(false, FUNCTION(vornsMahDist_32f_D2), FUNCTION(vornsMahDist_32f_D2L));
    expectRowAlignments<float>(FUNCTION(vornsMahDist_32f_D2));
    expectRowAlignments<float>(FUNCTION(vornsMahDist_32f_D2L));
}
TEST(MahDist, Double) {
    expectRows<double>(false, FUNCTION(vornsMahDist_64f_D2), FUNCTION(vornsMahDist_64f_D2L));
    expectRowAlignments<double>(FUNCTION(vornsMahDist_64f_D2));
    expectRowAlignments<double>(FUNCTION(vornsMahDist_64f_D2L));
}
TEST(MahDistMultiMix, Single) {
    expectRows<float>(true, FUNCTION(vornsMahDistMultiMix_32f_D2), FUNCTION(vornsMahDistMultiMix_32f_D2L));
    expectRowAlignments<float>(FUNCTION(vornsMahDistMultiMix_32f_D2));
    expectRowAlignments<float>(FUNCTION(vornsMahDistMultiMix_32f_D2L));
}
TEST(MahDistMultiMix, Double) {
    expectRows<double>(true, FUNCTION(vornsMahDistMultiMix_64f_D2), FUNCTION(vornsMahDistMultiMix_64f_D2L));
    expectRowAlignments<double>(FUNCTION(vornsMahDistMultiMix_64f_D2));
    expectRowAlignments<double>(FUNCTION(vornsMahDistMultiMix_64f_D2L));
}

// A distance is the score of a Gaussian without constant, times -2; and the vector and the mean may change places.
TEST(MahDist, IsTheScoreWithoutConstant) {
    for (int len : {1, 3, 4, 7, 13, 39}) {
        for (int height : {1, 4, 7, 1001}) {
            const auto p = gauss::makeProblem<float, float>(height, len, 0, 1, 3);
            std::vector<float> scores(at(height)), distances(at(height)), back(at(height));
            ASSERT_EQ(vornsLogGauss_32f_D2(p.many.block, p.many.step, p.one, p.oneVar, len, scores.data(), height, 0),
                      vornStsNoErr);
            ASSERT_EQ(vornsMahDist_32f_D2(p.many.block, p.many.step, p.one, p.oneVar, len, distances.data(), height),
                      vornStsNoErr);
            const std::vector<const float*> vars(at(height), p.oneVar.data());
            ASSERT_EQ(vornsMahDistMultiMix_32f_D2L(p.many.rows, vars.data(), p.one, len, back.data(), height),
                      vornStsNoErr);
            for (int r = 0; r < height; ++r) EXPECT_EQ(distances[at(r)], -2 * scores[at(r)]);
            EXPECT_TRUE(sameBits(back, distances));
            std::vector<double> x(p.many.block.begin(), p.many.block.end()), m(p.one.begin(), p.one.end()),
                v(p.oneVar.begin(), p.oneVar.end()), wideScores(at(height)), wide(at(height));
            ASSERT_EQ(
                vornsLogGauss_64f_D2(x.data(), p.many.step, m.data(), v.data(), len, wideScores.data(), height, 0),
                vornStsNoErr);
            ASSERT_EQ(vornsMahDist_64f_D2(x.data(), p.many.step, m.data(), v.data(), len, wide.data(), height),
                      vornStsNoErr);
            for (int r = 0; r < height; ++r) {
                EXPECT_EQ(wide[at(r)], -2 * wideScores[at(r)]);
                EXPECT_NEAR(distances[at(r)], wide[at(r)], wide[at(r)] * (len + 4) * 0x1p-24);
            }
        }
    }
}

TEST(MahDist, KernelsUnderTheirNames) {
    const auto p = gauss::makeProblem<float, float>(6, 21, 0, 1, 5);
    const auto q = gauss::makeProblem<double, double>(6, 21, 0, 1, 6);
    const auto check = [](const auto& problem, auto d2, auto d2l, auto mix, auto mixL, auto frames, auto gaussians) {
        using T = std::remove_cvref_t<decltype(problem.one[0])>;
        std::vector<T> expected(6), result(6);
        ASSERT_EQ(frames(problem.many.block, problem.many.step, problem.one, problem.oneVar, 21, expected.data(), 6),
                  vornStsNoErr);
        d2(problem.many.block, problem.many.step, problem.one, problem.oneVar, 21, result.data(), 6);
        EXPECT_TRUE(sameBits(result, expected));
        std::fill(result.begin(), result.end(), T(0));
        d2l(problem.many.rows, problem.one, problem.oneVar, 21, result.data(), 6);
        EXPECT_TRUE(sameBits(result, expected));
        ASSERT_EQ(gaussians(problem.many.block, problem.manyVar.block, problem.many.step, problem.one, 21,
                            expected.data(), 6),
                  vornStsNoErr);
        mix(problem.many.block, problem.manyVar.block, problem.many.step, problem.one, 21, result.data(), 6);
        EXPECT_TRUE(sameBits(result, expected));
        std::fill(result.begin(), result.end(), T(0));
        mixL(problem.many.rows, problem.manyVar.rows, problem.one, 21, result.data(), 6);
        EXPECT_TRUE(sameBits(result, expected));
    };
    check(p, sMahDist_32f_D2_M7, sMahDist_32f_D2L_M7, sMahDist2_32f_D2_M7, sMahDist2_32f_D2L_M7, vornsMahDist_32f_D2,
          vornsMahDistMultiMix_32f_D2);
    check(p, sMahDist_32f_D2_M7_Al, sMahDist_32f_D2L_M7_Al, sMahDist2_32f_D2_M7_Al, sMahDist2_32f_D2L_M7_Al,
          vornsMahDist_32f_D2, vornsMahDistMultiMix_32f_D2);
    check(q, sMahDist_64f_D2_M7, sMahDist_64f_D2L_M7, sMahDist2_64f_D2_M7, sMahDist2_64f_D2L_M7, vornsMahDist_64f_D2,
          vornsMahDistMultiMix_64f_D2);
    check(q, sMahDist_64f_D2_M7_Al, sMahDist_64f_D2L_M7_Al, sMahDist2_64f_D2_M7_Al, sMahDist2_64f_D2L_M7_Al,
          vornsMahDist_64f_D2, vornsMahDistMultiMix_64f_D2);
}

}  // namespace
