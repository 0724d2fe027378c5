// What holds for every member of the reductions and elementary functions: the order of the checks, and results that no
// alignment of any pointer changes.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using Byte = std::uint8_t;

// A pointer argument: what it points to, and whether the call writes there.
struct Argument {
    std::size_t elementBytes, alignment;
    bool isVector, isResult, mayBeNull;
    void (*fill)(test::Random&, Byte* bytes, std::size_t elements);
};
struct Member {
    std::string name;
    std::vector<Argument> arguments;
    std::function<VornStatus(const std::vector<Byte*>&, int len)> call;
};

template <class T, class = void>
struct PartOf {
    using type = T;
};
template <class T>
struct PartOf<T, std::void_t<decltype(T::re)>> {
    using type = decltype(T::re);
};

// Integers over their range, floats of ordinary size; every fourth one negative.
template <class T>
void fill(test::Random& random, Byte* bytes, std::size_t elements) {
    using Part = typename PartOf<T>::type;
    for (std::size_t i = 0; i < elements * sizeof(T) / sizeof(Part); ++i) {
        Part x;
        if constexpr (std::is_integral_v<Part>) {
            x = random.anyBits<Part>();
        } else {
            x = static_cast<Part>(random.uniform(i % 4 == 0 ? -100.0 : 0.01, 100.0));
        }
        std::memcpy(bytes + i * sizeof x, &x, sizeof x);
    }
}
template <class Pointer>
Argument argument(bool isVector) {
    using T = std::remove_const_t<std::remove_pointer_t<Pointer>>;
    return {sizeof(T), alignof(T), isVector, !std::is_const_v<std::remove_pointer_t<Pointer>>, false, fill<T>};
}
template <class Pointer>
Pointer as(Byte* p) {
    return reinterpret_cast<Pointer>(p);
}

// Members by the shape of their arguments; extra is a hint or a scale factor.
template <class T, class R, class... Extra>
Member member(const char* name, VornStatus (*f)(const T*, int, R*, Extra...), Extra... extra) {
    return {name, {argument<const T*>(true), argument<R*>(false)}, [=](const std::vector<Byte*>& p, int len) {
                return f(as<const T*>(p[0]), len, as<R*>(p[1]), extra...);
            }};
}
template <class T, class R>
Member member(const char* name, VornStatus (*f)(const T*, int, T*, R*)) {
    Member all = {
        name,
        {argument<const T*>(true), argument<T*>(false), argument<R*>(false)},
        [=](const std::vector<Byte*>& p, int len) { return f(as<const T*>(p[0]), len, as<T*>(p[1]), as<R*>(p[2])); }};
    all.arguments[2].mayBeNull = !std::is_same_v<T, R>;  // the index
    return all;
}
template <class A, class B, class R, class... Extra>
Member member(const char* name, VornStatus (*f)(const A*, const B*, int, R*, Extra...), Extra... extra) {
    return {name,
            {argument<const A*>(true), argument<const B*>(true), argument<R*>(false)},
            [=](const std::vector<Byte*>& p, int len) {
                return f(as<const A*>(p[0]), as<const B*>(p[1]), len, as<R*>(p[2]), extra...);
            }};
}
template <class T, class R, class... Extra>
Member member(const char* name, VornStatus (*f)(const T*, R*, int, Extra...), Extra... extra) {
    return {name, {argument<const T*>(true), argument<R*>(true)}, [=](const std::vector<Byte*>& p, int len) {
                return f(as<const T*>(p[0]), as<R*>(p[1]), len, extra...);
            }};
}
template <class T, class R, class... Extra>
Member member(const char* name, VornStatus (*f)(const T*, const T*, R*, int, Extra...), Extra... extra) {
    return {name,
            {argument<const T*>(true), argument<const T*>(true), argument<R*>(true)},
            [=](const std::vector<Byte*>& p, int len) {
                return f(as<const T*>(p[0]), as<const T*>(p[1]), as<R*>(p[2]), len, extra...);
            }};
}
template <class T, class... Extra>
Member member(const char* name, VornStatus (*f)(T*, int, Extra...), Extra... extra) {
    return {name, {argument<T*>(true)}, [=](const std::vector<Byte*>& p, int len) {
                return f(as<T*>(p[0]), len, extra...);
            }};
}

#define MEMBER(function, ...) member(#function, function __VA_OPT__(, ) __VA_ARGS__)

const std::vector<Member>& members() {
    static const std::vector<Member> all = {
        MEMBER(vornsSum_32f, 1),
        MEMBER(vornsSum_32f, 2),
        MEMBER(vornsSum_64f),
        MEMBER(vornsSum_32fc, 1),
        MEMBER(vornsSum_32fc, 2),
        MEMBER(vornsSum_64fc),
        MEMBER(vornsSum_16s_Sfs, 3),
        MEMBER(vornsSum_16s32s_Sfs, 3),
        MEMBER(vornsSum_16sc_Sfs, 3),
        MEMBER(vornsSum_16sc32sc_Sfs, 3),
        MEMBER(vornsSum_32s_Sfs, 3),
        MEMBER(vornsDotProd_32f),
        MEMBER(vornsDotProd_32fc),
        MEMBER(vornsDotProd_32f32fc),
        MEMBER(vornsDotProd_64f),
        MEMBER(vornsDotProd_64fc),
        MEMBER(vornsDotProd_64f64fc),
        MEMBER(vornsDotProd_32f64f),
        MEMBER(vornsDotProd_32fc64fc),
        MEMBER(vornsDotProd_32f32fc64fc),
        MEMBER(vornsDotProd_16s32f),
        MEMBER(vornsDotProd_16sc32fc),
        MEMBER(vornsDotProd_16s16sc32fc),
        MEMBER(vornsDotProd_16s64s),
        MEMBER(vornsDotProd_16sc64sc),
        MEMBER(vornsDotProd_16s16sc64sc),
        MEMBER(vornsDotProd_16s_Sfs, 17),
        MEMBER(vornsDotProd_16sc_Sfs, 17),
        MEMBER(vornsDotProd_16s16sc_Sfs, 17),
        MEMBER(vornsDotProd_16s32s_Sfs, 4),
        MEMBER(vornsDotProd_16sc32sc_Sfs, 4),
        MEMBER(vornsDotProd_16s16sc32sc_Sfs, 4),
        MEMBER(vornsDotProd_32s_Sfs, 35),
        MEMBER(vornsDotProd_32sc_Sfs, 35),
        MEMBER(vornsDotProd_32s32sc_Sfs, 35),
        MEMBER(vornsDotProd_16s32s32s_Sfs, 20),
        MEMBER(vornsMax_16s),
        MEMBER(vornsMax_32f),
        MEMBER(vornsMax_64f),
        MEMBER(vornsMin_16s),
        MEMBER(vornsMin_32f),
        MEMBER(vornsMin_64f),
        MEMBER(vornsMinMax_8u),
        MEMBER(vornsMinMax_16u),
        MEMBER(vornsMinMax_16s),
        MEMBER(vornsMinMax_32u),
        MEMBER(vornsMinMax_32s),
        MEMBER(vornsMinMax_32f),
        MEMBER(vornsMinMax_64f),
        MEMBER(vornsMaxIndx_16s),
        MEMBER(vornsMaxIndx_32f),
        MEMBER(vornsMaxIndx_64f),
        MEMBER(vornsMinIndx_16s),
        MEMBER(vornsMinIndx_32f),
        MEMBER(vornsMinIndx_64f),
        MEMBER(vornsMaxEvery_16s_I),
        MEMBER(vornsMaxEvery_32s_I),
        MEMBER(vornsMaxEvery_32f_I),
        MEMBER(vornsMinEvery_16s_I),
        MEMBER(vornsMinEvery_32s_I),
        MEMBER(vornsMinEvery_32f_I),
        MEMBER(vornsLn_32f),
        MEMBER(vornsLn_32f_I),
        MEMBER(vornsLn_64f),
        MEMBER(vornsLn_64f_I),
        MEMBER(vornsLn_64f32f),
        MEMBER(vornsLn_32s_Sfs, 0),
        MEMBER(vornsLn_32s_Sfs, -9),
        MEMBER(vornsLn_32s_ISfs, 0),
        MEMBER(vornsSumLn_32f),
        MEMBER(vornsSumLn_64f),
        MEMBER(vornsSumLn_32f64f),
        MEMBER(vornsSumLn_16s32f),
        MEMBER(vornsSqrt_32f),
        MEMBER(vornsSqrt_32f_I),
        MEMBER(vornsSqrt_64f),
        MEMBER(vornsSqrt_64f_I),
        MEMBER(vornsSqrt_32fc),
        MEMBER(vornsSqrt_32fc_I),
        MEMBER(vornsSqrt_64fc),
        MEMBER(vornsSqrt_64fc_I),
        MEMBER(vornsSqrt_8u_Sfs, -3),
        MEMBER(vornsSqrt_8u_ISfs, -3),
        MEMBER(vornsSqrt_16u_Sfs, -3),
        MEMBER(vornsSqrt_16u_Sfs, -6),
        MEMBER(vornsSqrt_16u_ISfs, -3),
        MEMBER(vornsSqrt_16s_Sfs, -3),
        MEMBER(vornsSqrt_16s_Sfs, -6),
        MEMBER(vornsSqrt_16s_ISfs, -3),
        MEMBER(vornsSqrt_16sc_Sfs, -3),
        MEMBER(vornsSqrt_16sc_ISfs, -3),
        MEMBER(vornsSqrt_64s_Sfs, 2),
        MEMBER(vornsSqrt_64s_ISfs, 2),
        MEMBER(vornsSqrt_32s16s_Sfs, 2),
        MEMBER(vornsSqrt_64s16s_Sfs, 17),
        MEMBER(vornsMagnitude_32fc),
        MEMBER(vornsMagnitude_64fc),
        MEMBER(vornsMagnitude_16sc32f),
        MEMBER(vornsMagnitude_16sc_Sfs, 1),
        MEMBER(vornsMagnitude_32sc_Sfs, 1),
        MEMBER(vornsMagnitude_32f),
        MEMBER(vornsMagnitude_64f),
        MEMBER(vornsMagnitude_16s32f),
        MEMBER(vornsMagnitude_16s_Sfs, 1),
        MEMBER(vornsAbs_16s),
        MEMBER(vornsAbs_16s_I),
        MEMBER(vornsAbs_32s),
        MEMBER(vornsAbs_32s_I),
        MEMBER(vornsAbs_32f),
        MEMBER(vornsAbs_32f_I),
        MEMBER(vornsAbs_64f),
        MEMBER(vornsAbs_64f_I),
    };
    return all;
}

std::size_t elements(const Argument& argument, int len) {
    return argument.isVector ? static_cast<std::size_t>(len) : 1;
}

// One set of arguments of a member, good until a rule breaks it.
struct Arguments {
    explicit Arguments(const Member& member) {
        test::Random random(1);
        for (const Argument& argument : member.arguments) {
            blocks.emplace_back(elements(argument, len) * argument.elementBytes);
            if (!argument.isResult) argument.fill(random, blocks.back(), elements(argument, len));
            pointers.push_back(blocks.back());
        }
    }
    std::vector<test::Guarded<Byte>> blocks;
    std::vector<Byte*> pointers;
    int len = 5;
};

TEST(ReductionMembers, CheckPointersThenLength) {
    using State = std::shared_ptr<Arguments>;
    for (const Member& member : members()) {
        SCOPED_TRACE(member.name);
        std::vector<test::Rule<State>> rules;
        for (std::size_t i = 0; i < member.arguments.size(); ++i) {
            if (member.arguments[i].mayBeNull) continue;
            rules.push_back({"null", vornStsNullPtrErr, [i](State& state) { state->pointers[i] = nullptr; }});
        }
        for (int len : {0, -1, std::numeric_limits<int>::min()}) {
            rules.push_back({"len", vornStsSizeErr, [len](State& state) { state->len = len; }});
        }
        test::expectCheckOrder<State>([&] { return std::make_shared<Arguments>(member); },
                                      [&](State& state) { return member.call(state->pointers, state->len); },
                                      [&](State& state) {
                                          for (std::size_t i = 0; i < member.arguments.size(); ++i) {
                                              if (member.arguments[i].isResult && !state->blocks[i].untouched())
                                                  return false;
                                          }
                                          return true;
                                      },
                                      rules);
    }
}

// Results at any offset of any pointer, against those at 64-byte addresses, which the models check.
class Aligned {
public:
    Aligned(const Member& member, int len, const std::vector<std::size_t>& offsets) {
        test::Random random(2);
        std::vector<Byte*> pointers;
        for (std::size_t i = 0; i < member.arguments.size(); ++i) {
            const Argument& argument = member.arguments[i];
            blocks_.emplace_back(elements(argument, len) * argument.elementBytes, offsets[i]);
        }
        for (std::size_t i = 0; i < member.arguments.size(); ++i) {
            member.arguments[i].fill(random, blocks_[i].data(), elements(member.arguments[i], len));
            pointers.push_back(blocks_[i].data());
        }
        status_ = member.call(pointers, len);
    }
    // The status and the contents of all vectors: sources must stay as they were, too.
    void expectSame(Aligned& other) {
        EXPECT_EQ(status_, other.status_);
        for (std::size_t i = 0; i < blocks_.size(); ++i) {
            EXPECT_EQ(blocks_[i].values(), other.blocks_[i].values()) << "argument " << i;
            EXPECT_TRUE(blocks_[i].surroundingsUntouched()) << "argument " << i;
        }
    }

private:
    std::vector<test::Offset<Byte>> blocks_;
    VornStatus status_;
};

TEST(ReductionMembers, NoAlignmentChangesAResult) {
    for (const Member& member : members()) {
        const std::size_t count = member.arguments.size();
        for (int len : {5, 39, 83}) {
            Aligned expected(member, len, std::vector<std::size_t>(count, 0));
            for (std::size_t i = 0; i < count; ++i) {
                for (std::size_t bytes = 0; bytes < 64; bytes += member.arguments[i].alignment) {
                    SCOPED_TRACE(member.name + " len " + std::to_string(len) + " offset " + std::to_string(bytes));
                    std::vector<std::size_t> offsets(count, 0);
                    offsets[i] = bytes;
                    Aligned(member, len, offsets).expectSame(expected);
                }
            }
        }
    }
}

}  // namespace
