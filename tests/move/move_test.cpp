// Block operations and conjugation, bit for bit: all eleven types, every short length, every address, every overlap.
#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <numeric>
#include <vector>

#include "model/move.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

extern "C" {
void ownsMove_8u_M7(const Vorn8u* src, Vorn8u* dst, std::int64_t len);
void ownsSet_8u_M7(Vorn8u val, Vorn8u* dst, std::int64_t len);
void ownsSet_16u_M7(Vorn16u val, Vorn16u* dst, std::int64_t len);
void ownsSet_32s_M7(Vorn32s val, Vorn32s* dst, std::int64_t len);
void ownsSet_64s_M7(Vorn64s val, Vorn64s* dst, std::int64_t len);
void ownsSet_64sc_M7(Vorn64sc val, Vorn64sc* dst, std::int64_t len);
void ownsConjExtend_16sc_M7(const Vorn16sc* src, Vorn16sc* dst, std::int64_t len);
}

namespace {

template <class T>
std::vector<T> anything(test::Random& random, std::size_t len) {
    std::vector<T> values(len);
    auto* bytes = reinterpret_cast<unsigned char*>(values.data());
    for (std::size_t i = 0; i < len * sizeof(T); ++i) bytes[i] = static_cast<unsigned char>(random.next());
    return values;
}

template <class T>
bool sameBytes(const T* a, const T* b, std::size_t len) {
    return std::memcmp(a, b, len * sizeof(T)) == 0;
}

// Short lengths, and lengths around the borders of the paths: 64 bytes, eight registers, the string store of each
// build.
std::vector<std::size_t> lengths() {
    std::vector<std::size_t> result(140);
    std::iota(result.begin(), result.end(), 1u);
    for (std::size_t border : {256u, 512u, 1024u, 2048u, 4096u, 8192u}) {
        for (int d = -2; d <= 2; ++d) result.push_back(border + static_cast<std::size_t>(d));
    }
    return result;
}

template <class T>
struct Operations {
    VornStatus (*copy)(const T*, T*, int);
    VornStatus (*move)(const T*, T*, int);
    VornStatus (*zero)(T*, int);
    VornStatus (*set)(T, T*, int);
};

#define OPERATIONS(type)                                                                \
    template <>                                                                         \
    Operations<Vorn##type> operations<Vorn##type>() {                                   \
        return {vornsCopy_##type, vornsMove_##type, vornsZero_##type, vornsSet_##type}; \
    }
template <class T>
Operations<T> operations();
OPERATIONS(8u)
OPERATIONS(16s)
OPERATIONS(16sc)
OPERATIONS(32f)
OPERATIONS(32fc)
OPERATIONS(64f)
OPERATIONS(64fc)
OPERATIONS(32s)
OPERATIONS(32sc)
OPERATIONS(64s)
OPERATIONS(64sc)
#undef OPERATIONS

template <class T>
class Block : public testing::Test {
protected:
    const Operations<T> op = operations<T>();
    test::Random random{7};
};
using Types = testing::Types<Vorn8u, Vorn16s, Vorn16sc, Vorn32f, Vorn32fc, Vorn64f, Vorn64fc, Vorn32s, Vorn32sc,
                             Vorn64s, Vorn64sc>;
TYPED_TEST_SUITE(Block, Types);

TYPED_TEST(Block, CopyAndMoveEveryLength) {
    for (std::size_t len : lengths()) {
        const test::Guarded<TypeParam> src(anything<TypeParam>(this->random, len));
        const std::vector<TypeParam> expected = src.values();
        for (auto* transfer : {this->op.copy, this->op.move}) {
            test::Guarded<TypeParam> dst(len);
            ASSERT_EQ(transfer(src, dst, static_cast<int>(len)), vornStsNoErr);
            ASSERT_TRUE(sameBytes(dst.data(), expected.data(), len)) << len;
            ASSERT_TRUE(dst.surroundingsUntouched()) << len;
            ASSERT_TRUE(sameBytes(src.data(), expected.data(), len)) << "source, " << len;
        }
    }
}

TYPED_TEST(Block, FillEveryLength) {
    for (std::size_t len : lengths()) {
        const TypeParam val = anything<TypeParam>(this->random, 1)[0];
        const std::vector<TypeParam> expected(len, val);
        test::Guarded<TypeParam> dst(len);
        ASSERT_EQ(this->op.set(val, dst, static_cast<int>(len)), vornStsNoErr);
        ASSERT_TRUE(sameBytes(dst.data(), expected.data(), len)) << len;
        ASSERT_TRUE(dst.surroundingsUntouched()) << len;
        ASSERT_EQ(this->op.zero(dst, static_cast<int>(len)), vornStsNoErr);
        const std::vector<unsigned char> zeros(len * sizeof(TypeParam));
        ASSERT_EQ(std::memcmp(dst.data(), zeros.data(), zeros.size()), 0) << len;
        ASSERT_TRUE(dst.surroundingsUntouched()) << len;
    }
}

// Any byte address, also one that is no multiple of the element's size.
TYPED_TEST(Block, EveryAddress) {
    for (std::size_t from = 0; from < 64; from += 3) {
        for (std::size_t to = 0; to < 64; ++to) {
            for (std::size_t len : {3u, 37u, 300u, 1500u}) {
                const auto values = anything<TypeParam>(this->random, len);
                test::Offset<TypeParam> src(len, from), dst(len, to);
                src.assign(values);
                ASSERT_EQ(this->op.copy(src, dst, static_cast<int>(len)), vornStsNoErr);
                ASSERT_TRUE(sameBytes(dst.values().data(), values.data(), len)) << from << ' ' << to << ' ' << len;
                ASSERT_TRUE(dst.surroundingsUntouched());
                const std::vector<TypeParam> filled(len, values[0]);
                ASSERT_EQ(this->op.set(values[0], dst, static_cast<int>(len)), vornStsNoErr);
                ASSERT_TRUE(sameBytes(dst.values().data(), filled.data(), len)) << to << ' ' << len;
                ASSERT_TRUE(dst.surroundingsUntouched());
            }
        }
    }
}

TYPED_TEST(Block, MoveAnyOverlap) {
    for (std::size_t len : {1u, 2u, 3u, 5u, 8u, 15u, 16u, 17u, 31u, 33u, 63u, 64u, 65u, 66u, 100u, 129u, 700u}) {
        for (int shift : {-65, -64, -33, -16, -7, -2, -1, 0, 1, 2, 7, 16, 33, 64, 65}) {
            const std::size_t room = len + 65, from = shift < 0 ? 65 : 0;
            test::Guarded<TypeParam> block(anything<TypeParam>(this->random, room));
            std::vector<TypeParam> expected = block.values();
            const std::vector<TypeParam> before = expected;
            const std::size_t to = from + static_cast<std::size_t>(shift);
            for (std::size_t i = 0; i < len; ++i) expected[to + i] = before[from + i];
            ASSERT_EQ(this->op.move(block + from, block + to, static_cast<int>(len)), vornStsNoErr);
            ASSERT_TRUE(sameBytes(block.data(), expected.data(), room)) << len << " by " << shift;
        }
    }
}

// Blocks at which the cache's size is asked for, and larger ones.
TYPED_TEST(Block, LargeBlocks) {
    for (std::size_t bytes : {std::size_t{512} << 10, (std::size_t{512} << 10) + 160, std::size_t{3} << 20}) {
        const std::size_t len = bytes / sizeof(TypeParam) + 1;
        const auto values = anything<TypeParam>(this->random, len);
        test::Guarded<TypeParam> dst(len);
        ASSERT_EQ(this->op.copy(values.data(), dst, static_cast<int>(len)), vornStsNoErr);
        ASSERT_TRUE(sameBytes(dst.data(), values.data(), len));
        ASSERT_EQ(this->op.set(values[1], dst, static_cast<int>(len)), vornStsNoErr);
        ASSERT_TRUE(sameBytes(dst.data(), std::vector<TypeParam>(len, values[1]).data(), len));
        ASSERT_TRUE(dst.surroundingsUntouched());
        ASSERT_EQ(this->op.zero(dst, static_cast<int>(len)), vornStsNoErr);
        ASSERT_EQ(std::count(reinterpret_cast<char*>(dst.begin()), reinterpret_cast<char*>(dst.end()), 0),
                  static_cast<std::ptrdiff_t>(len * sizeof(TypeParam)));
    }
}

TYPED_TEST(Block, OrderOfChecks) {
    struct Arguments {
        std::shared_ptr<test::Guarded<TypeParam>> src, dst;
        const TypeParam* from;
        TypeParam* to;
        int len;
    };
    const std::function<Arguments()> good = [] {
        Arguments a{std::make_shared<test::Guarded<TypeParam>>(9), std::make_shared<test::Guarded<TypeParam>>(9),
                    nullptr, nullptr, 9};
        a.from = a.src->data();
        a.to = a.dst->data();
        return a;
    };
    const std::function<bool(Arguments&)> untouched = [](Arguments& a) { return a.dst->untouched(); };
    const test::Rule<Arguments> noSource{"src", vornStsNullPtrErr, [](Arguments& a) { a.from = nullptr; }};
    const test::Rule<Arguments> noResult{"dst", vornStsNullPtrErr, [](Arguments& a) { a.to = nullptr; }};
    const test::Rule<Arguments> empty{"len 0", vornStsSizeErr, [](Arguments& a) { a.len = 0; }};
    const test::Rule<Arguments> negative{"len -1", vornStsSizeErr, [](Arguments& a) { a.len = -1; }};
    const auto op = this->op;
    using Call = std::function<VornStatus(Arguments&)>;
    for (auto* transfer : {op.copy, op.move}) {
        test::expectCheckOrder<Arguments>(good, Call([=](Arguments& a) { return transfer(a.from, a.to, a.len); }),
                                          untouched, {noSource, noResult, empty, negative});
    }
    test::expectCheckOrder<Arguments>(good, Call([=](Arguments& a) { return op.zero(a.to, a.len); }), untouched,
                                      {noResult, empty, negative});
    test::expectCheckOrder<Arguments>(good, Call([=](Arguments& a) { return op.set(TypeParam{}, a.to, a.len); }),
                                      untouched, {noResult, empty, negative});
}

TEST(Set, KeepsSignOfZeroAndPayloadOfNan) {
    const float negativeZero = -0.0f, signalling = std::bit_cast<float>(0x7FA12345u);
    for (float val : {negativeZero, signalling}) {
        float dst[21];
        ASSERT_EQ(vornsSet_32f(val, dst, 21), vornStsNoErr);
        for (const float& x : dst) EXPECT_EQ(std::bit_cast<std::uint32_t>(x), std::bit_cast<std::uint32_t>(val));
    }
    const double payload = std::bit_cast<double>(0xFFF4000000001234u);
    double dst[11];
    ASSERT_EQ(vornsSet_64f(payload, dst, 11), vornStsNoErr);
    for (const double& x : dst) EXPECT_EQ(std::bit_cast<std::uint64_t>(x), 0xFFF4000000001234u);
}

TEST(Move, OneUpAndOneDownAcrossTheShortPath) {
    for (int len = 1; len <= 140; ++len) {
        for (int shift : {-1, 1}) {
            std::vector<Vorn8u> block(static_cast<std::size_t>(len) + 2);
            std::iota(block.begin(), block.end(), Vorn8u{3});
            const std::vector<Vorn8u> before = block;
            ASSERT_EQ(vornsMove_8u(block.data() + 1, block.data() + 1 + shift, len), vornStsNoErr);
            for (int i = 0; i < len; ++i)
                ASSERT_EQ(block[static_cast<std::size_t>(1 + shift + i)], before[1 + static_cast<std::size_t>(i)]);
        }
    }
}

// Kernels take lengths in 64 bits and are reached by their own names.
TEST(Kernels, ByName) {
    Vorn64sc wide[70];
    ownsSet_64sc_M7({-1, 2}, wide, 70);
    for (const Vorn64sc& x : wide) EXPECT_TRUE(x.re == -1 && x.im == 2);
    Vorn64s quads[70];
    ownsSet_64s_M7(-3, quads, 70);
    for (Vorn64s x : quads) EXPECT_EQ(x, -3);
    Vorn32s words[70];
    ownsSet_32s_M7(-4, words, 70);
    for (Vorn32s x : words) EXPECT_EQ(x, -4);
    Vorn16u halves[70];
    ownsSet_16u_M7(0xFFFE, halves, 70);
    for (Vorn16u x : halves) EXPECT_EQ(x, 0xFFFE);
    Vorn8u bytes[70];
    ownsSet_8u_M7(0xFD, bytes, 70);
    for (Vorn8u x : bytes) EXPECT_EQ(x, 0xFD);
    bytes[0] = 1;
    ownsMove_8u_M7(bytes, bytes + 1, 69);
    EXPECT_EQ(bytes[1], 1);
    EXPECT_EQ(bytes[69], 0xFD);
}

TEST(Kernels, ConjExtend) {
    test::Random random(3);
    for (std::size_t len = 1; len <= 150; ++len) {
        test::Guarded<Vorn16sc> lower(anything<Vorn16sc>(random, len / 2 + 1));
        lower[0].im = -32768;
        const auto expected = model::conjExtend(lower.values(), len);
        test::Guarded<Vorn16sc> dst(len);
        ownsConjExtend_16sc_M7(lower, dst, static_cast<std::int64_t>(len));
        ASSERT_TRUE(test::sameBits(dst, expected)) << len;
        dst.fillPattern();
        std::memcpy(dst.data(), lower.data(), lower.size() * sizeof(Vorn16sc));
        ownsConjExtend_16sc_M7(dst, dst, static_cast<std::int64_t>(len));
        ASSERT_TRUE(test::sameBits(dst, expected)) << len << " in place";
    }
}

template <class T>
struct Conjugation {
    VornStatus (*conj)(const T*, T*, int);
    VornStatus (*inPlace)(T*, int);
    VornStatus (*flip)(const T*, T*, int);
};
template <class T>
Conjugation<T> conjugation();
template <>
Conjugation<Vorn32fc> conjugation<Vorn32fc>() {
    return {vornsConj_32fc, vornsConj_32fc_I, vornsConjFlip_32fc};
}
template <>
Conjugation<Vorn64fc> conjugation<Vorn64fc>() {
    return {vornsConj_64fc, vornsConj_64fc_I, vornsConjFlip_64fc};
}
template <>
Conjugation<Vorn16sc> conjugation<Vorn16sc>() {
    return {vornsConj_16sc, vornsConj_16sc_I, vornsConjFlip_16sc};
}

template <class T>
class Conj : public testing::Test {
protected:
    const Conjugation<T> op = conjugation<T>();
    test::Random random{11};
    std::vector<T> values(std::size_t len) {
        auto result = anything<T>(random, len);
        if constexpr (std::is_same_v<T, Vorn16sc>) {
            for (std::size_t i = 0; i < len; i += 3) result[i].im = -32768;
        } else {
            const decltype(T::im) hard[] = {0, -0.0f, std::numeric_limits<float>::infinity(),
                                            std::numeric_limits<float>::quiet_NaN(), 1};
            for (std::size_t i = 0; i < len; i += 2) result[i].im = hard[i / 2 % 5];
        }
        return result;
    }
};
using ComplexTypes = testing::Types<Vorn32fc, Vorn64fc, Vorn16sc>;
TYPED_TEST_SUITE(Conj, ComplexTypes);

TYPED_TEST(Conj, EveryLength) {
    for (std::size_t len : lengths()) {
        const test::Guarded<TypeParam> src(this->values(len));
        const int n = static_cast<int>(len);
        const auto expected = model::conj(src.values()), flipped = model::conjFlip(src.values());
        test::Guarded<TypeParam> dst(len);
        ASSERT_EQ(this->op.conj(src, dst, n), vornStsNoErr);
        ASSERT_TRUE(sameBytes(dst.data(), expected.data(), len)) << len;
        ASSERT_TRUE(dst.surroundingsUntouched());
        dst.fillPattern();
        ASSERT_EQ(this->op.flip(src, dst, n), vornStsNoErr);
        ASSERT_TRUE(sameBytes(dst.data(), flipped.data(), len)) << len << " flipped";
        ASSERT_TRUE(dst.surroundingsUntouched());
        ASSERT_EQ(this->op.conj(src, src, n), vornStsNoErr);
        ASSERT_TRUE(sameBytes(src.data(), expected.data(), len)) << len << " onto itself";
        ASSERT_EQ(this->op.inPlace(src, n), vornStsNoErr);
        if constexpr (!std::is_same_v<TypeParam, Vorn16sc>) {
            ASSERT_EQ(this->op.inPlace(src, n), vornStsNoErr);
            ASSERT_TRUE(sameBytes(src.data(), expected.data(), len)) << len << " in place, three times in all";
        }
    }
}

TYPED_TEST(Conj, EveryAddress) {
    for (std::size_t address = 0; address < 64; address += alignof(TypeParam)) {
        for (std::size_t len : {5u, 129u, 400u}) {
            const auto values = this->values(len);
            const auto expected = model::conj(values), flipped = model::conjFlip(values);
            test::Offset<TypeParam> src(len, 64 - alignof(TypeParam) - address), dst(len, address);
            src.assign(values);
            ASSERT_EQ(this->op.conj(src, dst, static_cast<int>(len)), vornStsNoErr);
            ASSERT_TRUE(sameBytes(dst.values().data(), expected.data(), len)) << address << ' ' << len;
            ASSERT_EQ(this->op.flip(src, dst, static_cast<int>(len)), vornStsNoErr);
            ASSERT_TRUE(sameBytes(dst.values().data(), flipped.data(), len)) << address << ' ' << len;
            ASSERT_TRUE(dst.surroundingsUntouched());
            ASSERT_EQ(this->op.inPlace(src, static_cast<int>(len)), vornStsNoErr);
            ASSERT_TRUE(sameBytes(src.values().data(), expected.data(), len)) << address << ' ' << len;
            ASSERT_TRUE(src.surroundingsUntouched());
        }
    }
}

TYPED_TEST(Conj, OrderOfChecks) {
    struct Arguments {
        test::Guarded<TypeParam> src = test::Guarded<TypeParam>(3), dst = test::Guarded<TypeParam>(3);
        const TypeParam* from = src.data();
        TypeParam* to = dst.data();
        int len = 3;
    };
    using A = Arguments;
    const auto untouched = [](A& a) { return a.dst.untouched(); };
    const std::vector<test::Rule<A>> inPlace = {{"dst", vornStsNullPtrErr, [](A& a) { a.to = nullptr; }},
                                                {"len 0", vornStsSizeErr, [](A& a) { a.len = 0; }},
                                                {"len -5", vornStsSizeErr, [](A& a) { a.len = -5; }}};
    auto apart = inPlace;
    apart.insert(apart.begin(), {"src", vornStsNullPtrErr, [](A& a) { a.from = nullptr; }});
    for (auto* call : {this->op.conj, this->op.flip}) {
        test::expectCheckOrder<A>([] { return A(); }, [=](A& a) { return call(a.from, a.to, a.len); }, untouched,
                                  apart);
    }
    test::expectCheckOrder<A>([] { return A(); }, [this](A& a) { return this->op.inPlace(a.to, a.len); }, untouched,
                              inPlace);
}

TEST(ConjExamples, ImaginaryMinimumSaturates) {
    const Vorn16sc src[] = {{-32768, -32768}, {5, 32767}, {-7, -32767}, {0, 0}};
    Vorn16sc dst[4];
    ASSERT_EQ(vornsConj_16sc(src, dst, 4), vornStsNoErr);
    EXPECT_EQ(dst[0].re, -32768);
    EXPECT_EQ(dst[0].im, 32767);
    EXPECT_EQ(dst[1].im, -32767);
    EXPECT_EQ(dst[2].im, 32767);
    EXPECT_EQ(dst[3].im, 0);
}

TEST(ConjExamples, FlipOfOneIsAPlainConjugate) {
    const Vorn32fc src = {1.5f, -2.5f};
    Vorn32fc dst;
    ASSERT_EQ(vornsConjFlip_32fc(&src, &dst, 1), vornStsNoErr);
    EXPECT_EQ(dst.re, 1.5f);
    EXPECT_EQ(dst.im, 2.5f);
}

}  // namespace
