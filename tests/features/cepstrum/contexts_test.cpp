// Contexts of the DCT lifter: their sizes, their memory, what they hold.
#include <climits>

#include "lifters.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"

namespace {

using test::Allocated;
using test::Guarded;
using test::LifterForm;
using test::LifterSetting;
using test::Offset;
using test::sameBits;
using test::Weights;

const LifterSetting settings[] = {{1, 1, 1},    {2, 1},      {2, 2, 5},    {3, 3},          {7, 7, 5},
                                  {8, 4},       {9, 1},      {9, 2},       {20, 12, 22},    {23, 12},
                                  {26, 13, 22}, {33, 32, 7}, {64, 30, 11}, {100, 100, 1000}};

template <class State>
long long bytesOf(const LifterForm<State>& form, int lenDCT, int lenCep) {
    if (form.ofBlock == Weights::integers) return model::lifterBytesMulC0_16s(lenDCT, lenCep);
    return std::is_same_v<State, VornDCTLifterState_32f> ? model::lifterBytes32f(lenDCT, lenCep)
                                                         : model::lifterBytes16s(lenDCT, lenCep);
}
template <class State>
long long bytesOf(const LifterForm<State>& form, const LifterSetting& s) {
    return bytesOf(form, s.lenDCT, s.lenCep);
}

TEST(DCTLifterContexts, SizeIsTheFormula) {
    test::eachLifterForm([](const auto& form) {
        for (const LifterSetting& s : settings) {
            int size = -1;
            ASSERT_EQ(form.getSize(s.lenDCT, s.lenCep, &size), vornStsNoErr) << form.name;
            EXPECT_EQ(size, bytesOf(form, s)) << form.name;
        }
    });
}

TEST(DCTLifterContexts, LiteralSizes) {
    const auto sizeOf = [](auto getSize) {
        int size = -1;
        EXPECT_EQ(getSize(23, 12, &size), vornStsNoErr);
        return size;
    };
    EXPECT_EQ(sizeOf(vornsDCTLifterGetSize_32f), 1528);        // 4 (13 x 24 + 7) + 144 + 108
    EXPECT_EQ(sizeOf(vornsDCTLifterGetSize_16s), 1620);        // ... + 192 + 152
    EXPECT_EQ(sizeOf(vornsDCTLifterGetSize_MulC0_16s), 1956);  // 96 + 144 + 13 (92 + 40)
}

TEST(DCTLifterContexts, SizesBeyondAnInt) {
    test::eachLifterForm([](const auto& form) {
        Guarded<int> size(1);
        EXPECT_EQ(form.getSize(8192, 8192, size), vornStsNoErr) << "4 x 8192 x 8192 is 2^28";
        size.fillPattern();
        for (int lenCep : {1, 8193, INT_MAX}) {
            EXPECT_EQ(form.getSize(INT_MAX, lenCep, size), vornStsSizeErr) << form.name;
            EXPECT_TRUE(size.untouched());
        }
        // The last shape that fits, and the first that does not.
        if (form.ofBlock == Weights::integers) return;
        int most = 17000;
        while (bytesOf(form, 30000, most + 1) <= INT_MAX) ++most;
        int last = -1;
        EXPECT_EQ(form.getSize(30000, most, &last), vornStsNoErr);
        EXPECT_EQ(last, bytesOf(form, 30000, most));
        EXPECT_EQ(form.getSize(30000, most + 1, size), vornStsSizeErr) << form.name;
        EXPECT_TRUE(size.untouched());
    });
}

TEST(DCTLifterContexts, OneSizeFunctionHasALimit) {
    for (int lenDCT : {8192, 8193, 30000}) {
        test::eachLifterForm([=](const auto& form) {
            Guarded<int> size(1);
            const bool refused = form.ofBlock == Weights::integers && lenDCT > 8192;
            EXPECT_EQ(form.getSize(lenDCT, 3, size), refused ? vornStsSizeErr : vornStsNoErr) << form.name;
            EXPECT_EQ(size.untouched(), refused);
        });
    }
    // Its initialiser has none but that of an int: 4 x 23168 + 40 bytes a row are too much, 4 x 23168 would not be.
    Guarded<Vorn8u> tooSmall(64);
    const LifterSetting large(23168, 23162);
    EXPECT_EQ(test::shortLifters[3].init(reinterpret_cast<VornDCTLifterState_16s*>(tooSmall.data()), large),
              vornStsSizeErr);
    EXPECT_TRUE(tooSmall.untouched());
    const LifterSetting s = {8200, 2};
    const auto& form = test::shortLifters[3];
    Guarded<Vorn8u> block(static_cast<std::size_t>(bytesOf(form, s)));
    auto* state = reinterpret_cast<VornDCTLifterState_16s*>(block.data());
    ASSERT_EQ(form.init(state, s), vornStsNoErr);
    EXPECT_TRUE(sameBits(test::weightsOf(state), form.weights(form.ofBlock, s)));
    EXPECT_TRUE(block.surroundingsUntouched());
}

TEST(DCTLifterContexts, ShapesBeyondAnIntAreRefusedUnwritten) {
    const LifterSetting s(50000, 50000);
    test::eachLifterForm([&]<class State>(const LifterForm<State>& form) {
        Guarded<Vorn8u> block(64);
        EXPECT_EQ(form.init(reinterpret_cast<State*>(block.data()), s), vornStsSizeErr) << form.name;
        EXPECT_TRUE(block.untouched());
        State* state = reinterpret_cast<State*>(block.data());
        EXPECT_EQ(form.initAlloc(&state, s), vornStsMemAllocErr) << form.name;
        EXPECT_EQ(state, nullptr);
    });
}

// What a context holds, wherever it stands.
template <class State>
void expectContents(const State* state, const LifterForm<State>& form, Weights from, const LifterSetting& s) {
    const State record = test::recordOf(state);
    EXPECT_EQ(record.nLifter, from == Weights::raisedSine ? s.nLifter : -1);
    EXPECT_EQ(record.lenDCT, s.lenDCT);
    EXPECT_EQ(record.lenCep, s.lenCep);
    EXPECT_EQ(record.withC0, form.withC0 ? 1 : 0);
    const auto weights = test::weightsOf(state), expected = form.weights(from, s);
    if (from != Weights::raisedSine) {
        EXPECT_TRUE(sameBits(weights, expected)) << form.name;
    } else {
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_NEAR(weights[i], expected[i], (std::fabs(expected[i]) + s.nLifter) * 0x1p-23f) << form.name;
        EXPECT_EQ(weights[0], form.withC0 ? s.val0 : s.val);
    }
    for (int i = 0; i <= s.lenCep; ++i) {
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(record.ppCos[i]) % 32, 0u);
        if (i > 0) {
            EXPECT_EQ(record.ppCos[i] - record.ppCos[i - 1], (s.lenDCT + 7) / 8 * 8);
        }
        for (int j = 1; j <= s.lenDCT; ++j) {
            const float cosine = model::cosine(i, j, s.lenDCT);
            EXPECT_NEAR(record.ppCos[i][j - 1], cosine, std::fabs(cosine) * 0x1p-23f + 1e-30f);
        }
        for (int j = s.lenDCT; j < (s.lenDCT + 7) / 8 * 8; ++j) EXPECT_EQ(record.ppCos[i][j], 0.0f) << "padding";
    }
}

TEST(DCTLifterContexts, AllocatedOnesHoldWhatTheyShould) {
    test::eachLifterForm([]<class State>(const LifterForm<State>& form) {
        for (const LifterSetting& s : settings) {
            const Allocated<State> state(form, s);
            expectContents<State>(state, form, form.ofAllocated, s);
        }
    });
}

// A block of exactly the reported size, at every address, against pages that cannot be touched.
TEST(DCTLifterContexts, BlocksHoldWhatTheyShouldAndStayInside) {
    test::eachLifterForm([]<class State>(const LifterForm<State>& form) {
        for (const LifterSetting& s : settings) {
            const auto bytes = static_cast<std::size_t>(bytesOf(form, s));
            const bool all = s.lenCep < 5;
            for (std::size_t shift = 0; shift < 64; shift += all ? 1 : 9) {
                Offset<Vorn8u> block(bytes, shift);
                auto* state = reinterpret_cast<State*>(block.data());
                ASSERT_EQ(form.init(state, s), vornStsNoErr) << form.name;
                EXPECT_TRUE(block.surroundingsUntouched()) << form.name << " " << shift;
                expectContents<State>(state, form, form.ofBlock, s);
                const State record = test::recordOf(state);
                const auto inside = [&](const void* p, std::size_t size) {
                    const auto* first = static_cast<const Vorn8u*>(p);
                    return first >= block.data() + sizeof record && first + size <= block.data() + bytes;
                };
                const auto rows = static_cast<std::size_t>(s.lenCep + 1);
                EXPECT_TRUE(inside(record.ppCos[rows - 1], 4 * static_cast<std::size_t>((s.lenDCT + 7) / 8 * 8)));
                EXPECT_TRUE(inside(record.ppCos, 8 * rows));
                EXPECT_TRUE(inside(record.pLifter, 4 * rows));
            }
            Guarded<Vorn8u> block(bytes);
            auto* state = reinterpret_cast<State*>(block.data());
            ASSERT_EQ(form.init(state, s), vornStsNoErr) << form.name;
            EXPECT_TRUE(block.surroundingsUntouched());
            expectContents<State>(state, form, form.ofBlock, s);
        }
    });
}

TEST(DCTLifterContexts, TheSameInEveryRoundingMode) {
    test::eachLifterForm([]<class State>(const LifterForm<State>& form) {
        const LifterSetting s = {23, 12};
        const auto bytes = static_cast<std::size_t>(bytesOf(form, s));
        Offset<Vorn8u> nearest(bytes, 0), directed(bytes, 0);
        auto* inNearest = reinterpret_cast<State*>(nearest.data());
        auto* inDirected = reinterpret_cast<State*>(directed.data());
        ASSERT_EQ(form.init(inNearest, s), vornStsNoErr);
        for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
            {
                const test::RoundingMode callers(mode);
                ASSERT_EQ(form.init(inDirected, s), vornStsNoErr);
            }
            EXPECT_TRUE(sameBits(test::weightsOf(inDirected), test::weightsOf(inNearest))) << form.name;
            EXPECT_EQ(test::rowsOf(inDirected), test::rowsOf(inNearest));
        }
    });
}

TEST(DCTLifterContexts, CallersWeights) {
    const float given[] = {1, 2, 3};
    VornDCTLifterState_32f* state = nullptr;
    ASSERT_EQ(vornsDCTLifterInitAlloc_MulC0_32f(&state, 8, given, 3), vornStsNoErr);
    EXPECT_EQ(test::weightsOf(state), (std::vector<float>{3, 1, 2, 3}));
    vornsDCTLifterFree_32f(state);
    ASSERT_EQ(vornsDCTLifterInitAlloc_Mul_32f(&state, 8, given, 3), vornStsNoErr);
    EXPECT_EQ(test::weightsOf(state), (std::vector<float>{0, 1, 2, 3}));
    vornsDCTLifterFree_32f(state);
    // The one array of integers, in the one block form.
    const Vorn32s integers[] = {-7, 16777217, INT_MAX};
    std::vector<double> block(200);
    auto* fixed = reinterpret_cast<VornDCTLifterState_16s*>(block.data());
    ASSERT_EQ(vornsDCTLifterInit_MulC0_16s(fixed, 8, integers, 3), vornStsNoErr);
    EXPECT_EQ(test::weightsOf(fixed), (std::vector<float>{2147483648.0f, -7, 16777216, 2147483648.0f}));
}

TEST(DCTLifterContexts, AllocationFailureLeavesNothingBehind) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    const LifterSetting s(23, 12);
    test::eachLifterForm([&]<class State>(const LifterForm<State>& form) {
        int calls;
        {
            test::FailAllocation count(0);
            State* state = nullptr;
            ASSERT_EQ(form.initAlloc(&state, s), vornStsNoErr);
            calls = count.calls();
            ASSERT_EQ(test::release(state), vornStsNoErr);
            EXPECT_EQ(count.outstanding(), 0);
        }
        ASSERT_EQ(calls, (std::is_same_v<State, VornDCTLifterState_32f> ? 3 : 4)) << form.name;
        for (int n = 1; n <= calls; ++n) {
            test::FailAllocation fail(n);
            auto* state = reinterpret_cast<State*>(&fail);
            const VornStatus status = form.initAlloc(&state, s);
            EXPECT_EQ(status, vornStsMemAllocErr) << form.name << ", allocation " << n;
            EXPECT_EQ(state, nullptr);
            EXPECT_EQ(fail.outstanding(), 0) << form.name << ", allocation " << n;
        }
    });
}

TEST(DCTLifterContexts, FreeSkipsWhatIsMissing) {
    EXPECT_EQ(vornsDCTLifterFree_32f(nullptr), vornStsNullPtrErr);
    EXPECT_EQ(vornsDCTLifterFree_16s(nullptr), vornStsNullPtrErr);
    test::eachLifterForm([]<class State>(const LifterForm<State>&) {
        auto* state = reinterpret_cast<State*>(vornsMalloc_8u(sizeof(State)));
        *state = State();
        EXPECT_EQ(test::release(state), vornStsNoErr);
    });
}

// Checks.

TEST(DCTLifterContexts, SizeChecksInOrder) {
    test::eachLifterForm([](const auto& form) {
        struct Arguments {
            Guarded<int> out = Guarded<int>(1);
            int lenDCT = 8, lenCep = 4;
            int* size = out.data();
        };
        using A = Arguments;
        std::vector<test::Rule<A>> rules = {
            {"pSize", vornStsNullPtrErr, [](A& a) { a.size = nullptr; }},
            {"lenDCT 0", vornStsSizeErr, [](A& a) { a.lenDCT = 0; }},
            {"lenCep 0", vornStsSizeErr, [](A& a) { a.lenCep = 0; }},
            {"lenCep INT_MIN", vornStsSizeErr, [](A& a) { a.lenCep = INT_MIN; }},
            {"lenCep above lenDCT", vornStsSizeErr, [](A& a) { a.lenCep = a.lenDCT + 1; }}};
        test::expectCheckOrder<A>([] { return A(); }, [&](A& a) { return form.getSize(a.lenDCT, a.lenCep, a.size); },
                                  [](A& a) { return a.out.untouched(); }, rules);
    });
}

// All sixteen through one face: block or out, lenDCT, weights, lenCep, nLifter. Those of the caller's weights have no
// nLifter.
struct InitArguments {
    Guarded<Vorn8u> block = Guarded<Vorn8u>(2000);
    void* const marker = &block;
    void* made = marker;
    bool noContext = false, noWeights = false;
    int lenDCT = 8, lenCep = 4, nLifter = 22;
    const float weights[8] = {};

    template <class State>
    State* state() {
        return noContext ? nullptr : reinterpret_cast<State*>(block.data());
    }
    template <class State>
    State** out() {
        return noContext ? nullptr : reinterpret_cast<State**>(&made);
    }
    const float* pLifter() const { return noWeights ? nullptr : weights; }
    const Vorn32s* pIntegers() const { return reinterpret_cast<const Vorn32s*>(pLifter()); }
    // What an allocating form made goes back.
    template <class State>
    VornStatus returned(VornStatus status) {
        if (status == vornStsNoErr) test::release(static_cast<State*>(made));
        return status;
    }
    bool untouched() const { return block.untouched() && made == marker; }
};
struct Initialiser {
    bool takesWeights;
    std::function<VornStatus(InitArguments&)> call;
};

using S = VornDCTLifterState_32f;
using F = VornDCTLifterState_16s;
using A = InitArguments;
const Initialiser initialisers[] = {
    {false, [](A& a) { return vornsDCTLifterInit_32f(a.state<S>(), a.lenDCT, a.lenCep, a.nLifter, 1); }},
    {false, [](A& a) { return vornsDCTLifterInit_C0_32f(a.state<S>(), a.lenDCT, a.lenCep, a.nLifter, 1, 1); }},
    {true, [](A& a) { return vornsDCTLifterInit_Mul_32f(a.state<S>(), a.lenDCT, a.pLifter(), a.lenCep); }},
    {true, [](A& a) { return vornsDCTLifterInit_MulC0_32f(a.state<S>(), a.lenDCT, a.pLifter(), a.lenCep); }},
    {false, [](A& a) { return vornsDCTLifterInit_16s(a.state<F>(), a.lenDCT, a.lenCep, a.nLifter, 1); }},
    {false, [](A& a) { return vornsDCTLifterInit_C0_16s(a.state<F>(), a.lenDCT, a.lenCep, a.nLifter, 1, 1); }},
    {true, [](A& a) { return vornsDCTLifterInit_Mul_16s(a.state<F>(), a.lenDCT, a.pLifter(), a.lenCep); }},
    {true, [](A& a) { return vornsDCTLifterInit_MulC0_16s(a.state<F>(), a.lenDCT, a.pIntegers(), a.lenCep); }},
    {false,
     [](A& a) { return a.returned<S>(vornsDCTLifterInitAlloc_32f(a.out<S>(), a.lenDCT, a.lenCep, a.nLifter, 1)); }},
    {false,
     [](A& a) {
         return a.returned<S>(vornsDCTLifterInitAlloc_C0_32f(a.out<S>(), a.lenDCT, a.lenCep, a.nLifter, 1, 1));
     }},
    {true,
     [](A& a) { return a.returned<S>(vornsDCTLifterInitAlloc_Mul_32f(a.out<S>(), a.lenDCT, a.pLifter(), a.lenCep)); }},
    {true,
     [](A& a) {
         return a.returned<S>(vornsDCTLifterInitAlloc_MulC0_32f(a.out<S>(), a.lenDCT, a.pLifter(), a.lenCep));
     }},
    {false,
     [](A& a) { return a.returned<F>(vornsDCTLifterInitAlloc_16s(a.out<F>(), a.lenDCT, a.lenCep, a.nLifter, 1)); }},
    {false,
     [](A& a) {
         return a.returned<F>(vornsDCTLifterInitAlloc_C0_16s(a.out<F>(), a.lenDCT, a.lenCep, a.nLifter, 1, 1));
     }},
    {true,
     [](A& a) { return a.returned<F>(vornsDCTLifterInitAlloc_Mul_16s(a.out<F>(), a.lenDCT, a.pLifter(), a.lenCep)); }},
    {true,
     [](A& a) {
         return a.returned<F>(vornsDCTLifterInitAlloc_MulC0_16s(a.out<F>(), a.lenDCT, a.pLifter(), a.lenCep));
     }},
};

TEST(DCTLifterContexts, InitChecksInOrder) {
    for (const Initialiser& initialiser : initialisers) {
        std::vector<test::Rule<A>> rules = {{"context", vornStsNullPtrErr, [](A& a) { a.noContext = true; }}};
        if (initialiser.takesWeights) rules.push_back({"pLifter", vornStsNullPtrErr, [](A& a) { a.noWeights = true; }});
        rules.push_back({"lenDCT 0", vornStsSizeErr, [](A& a) { a.lenDCT = 0; }});
        rules.push_back({"lenDCT -1", vornStsSizeErr, [](A& a) { a.lenDCT = -1; }});
        rules.push_back({"lenCep 0", vornStsSizeErr, [](A& a) { a.lenCep = 0; }});
        if (!initialiser.takesWeights) rules.push_back({"nLifter 0", vornStsSizeErr, [](A& a) { a.nLifter = 0; }});
        rules.push_back({"lenCep above lenDCT", vornStsSizeErr, [](A& a) { a.lenCep = a.lenDCT + 1; }});
        test::expectCheckOrder<A>([] { return A(); }, initialiser.call, [](A& a) { return a.untouched(); }, rules);
    }
}

}  // namespace
