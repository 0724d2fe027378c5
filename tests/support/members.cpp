#include "support/members.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"

namespace test {
namespace {

using calls::Role;
using Byte = std::uint8_t;

// Integers over their range, floats of ordinary size; every fourth one negative.
void fill(Random& random, calls::Element element, Byte* bytes, std::size_t size) {
    calls::withPart(element, [&]<class T>() {
        for (std::size_t i = 0; i < size / sizeof(T); ++i) {
            T x;
            if constexpr (std::is_integral_v<T>) {
                x = random.anyBits<T>();
            } else {
                x = static_cast<T>(random.uniform(i % 4 == 0 ? -100.0 : 0.01, 100.0));
            }
            std::memcpy(bytes + i * sizeof x, &x, sizeof x);
        }
    });
}

// The pointers of a member, constants among them, in their order.
std::vector<Role> pointersOf(const calls::Function& member) {
    std::vector<Role> roles;
    for (std::size_t i = 0; i < member.shape().count; ++i) {
        const Role role = member.shape().roles[i];
        if (calls::isPointer(role) || role == Role::val) roles.push_back(role);
    }
    return roles;
}
std::size_t bytesOf(const calls::Function& member, Role role, int len) {
    const bool one = calls::isOneElement(role) || role == Role::val;
    return (one ? 1 : static_cast<std::size_t>(len)) * calls::sizeOf(member.element(role));
}
calls::Arguments numbersOf(int len, int extra) {
    calls::Arguments arguments;
    arguments[Role::len] = len;
    arguments[Role::scaleFactor] = arguments[Role::hint] = extra;
    return arguments;
}

// One set of arguments of a member, good until a rule breaks it.
struct GoodArguments {
    static constexpr int len = 5;

    GoodArguments(const calls::Function& member, int extra) : arguments(numbersOf(len, extra)) {
        Random random(1);
        for (Role role : pointersOf(member)) {
            blocks.emplace_back(bytesOf(member, role, len));
            if (!calls::isWritten(role)) fill(random, member.element(role), blocks.back(), blocks.back().size());
            arguments[role] = blocks.back().data();
        }
    }
    std::vector<Guarded<Byte>> blocks;
    calls::Arguments arguments;
};

// Results at any offset of any pointer, against those at 64-byte addresses, which the models check.
class Aligned {
public:
    Aligned(const calls::Function& member, int extra, int len, Role moved, std::size_t bytes)
        : roles_(pointersOf(member)) {
        Random random(2);
        calls::Arguments arguments = numbersOf(len, extra);
        blocks_.reserve(roles_.size());
        for (Role role : roles_) {
            blocks_.emplace_back(bytesOf(member, role, len), role == moved ? bytes : 0);
            fill(random, member.element(role), blocks_.back(), blocks_.back().size());
            arguments[role] = blocks_.back().data();
        }
        status_ = member(arguments);
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
    std::vector<Role> roles_;
    std::vector<Offset<Byte>> blocks_;
    VornStatus status_;
};

}  // namespace

void expectPointersThenLength(const calls::Function& member, int extra, VornStatus zeroConstant) {
    using State = std::shared_ptr<GoodArguments>;
    SCOPED_TRACE(member.name());
    const std::vector<Role> pointers = pointersOf(member);
    std::vector<Rule<State>> rules;
    for (Role role : pointers) {
        if (role == Role::index || role == Role::val) continue;
        rules.push_back(
            {"null", vornStsNullPtrErr, [role](State& state) { state->arguments[role].pointer = nullptr; }});
    }
    for (int len : {0, -1, std::numeric_limits<int>::min()}) {
        rules.push_back({"len", vornStsSizeErr, [len](State& state) { state->arguments[Role::len] = len; }});
    }
    if (zeroConstant != vornStsNoErr) {
        static const Byte zero[16] = {};
        rules.push_back({"zero", zeroConstant, [](State& state) { state->arguments[Role::val] = zero; }});
    }
    expectCheckOrder<State>([&] { return std::make_shared<GoodArguments>(member, extra); },
                            [&](State& state) { return member(state->arguments); },
                            [&](State& state) {
                                for (std::size_t i = 0; i < pointers.size(); ++i) {
                                    if (calls::isWritten(pointers[i]) && !state->blocks[i].untouched()) return false;
                                }
                                return true;
                            },
                            rules);
}

void expectNoAlignmentChangesAResult(const calls::Function& member, int extra) {
    for (int len : {5, 39, 83}) {
        Aligned expected(member, extra, len, Role::len, 0);
        for (Role role : pointersOf(member)) {
            if (role == Role::val) continue;
            for (std::size_t bytes = 0; bytes < 64; bytes += calls::alignmentOf(member.element(role))) {
                SCOPED_TRACE(std::string(member.name()) + " len " + std::to_string(len) + " offset " +
                             std::to_string(bytes));
                Aligned(member, extra, len, role, bytes).expectSame(expected);
            }
        }
    }
}

}  // namespace test
