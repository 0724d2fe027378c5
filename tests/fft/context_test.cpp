// Transform contexts: reported sizes, checks, records and tables, life and death.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <set>
#include <vector>

#include "fft/contexts/plan.h"
#include "fft/contexts/tables.h"
#include "forms.h"
#include "support/allocation.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"

namespace {

template <class Run>
void forEveryForm(Run run) {
    for (const test::FloatForm& form : test::floatForms) {
        SCOPED_TRACE(form.name);
        run(form);
    }
    for (const test::FixedForm& form : test::fixedForms) {
        SCOPED_TRACE(form.name);
        run(form);
    }
}

TEST(FftContext, ReportsTheSizesOfTheFormulas) {
    forEveryForm([](const auto& form) {
        for (int order = 0; order <= 30; ++order) {
            for (int flag : {1, 2, 4, 8, 0, 3, -7}) {  // the flag is not examined
                int spec = -1, initBuf = -1, work = -1;
                ASSERT_EQ(form.getSize(order, flag, 12345, &spec, &initBuf, &work), vornStsNoErr);
                const model::FftSizes expected = model::fftSizes(form.sizes, order);
                EXPECT_EQ(static_cast<std::uint32_t>(spec), expected.spec) << order;
                EXPECT_EQ(static_cast<std::uint32_t>(initBuf), expected.initBuf) << order;
                EXPECT_EQ(static_cast<std::uint32_t>(work), expected.workBuf) << order;
            }
        }
    });
}

TEST(FftContext, SizesInNumbers) {
    const auto expectSizes = [](const auto& form, int order, int spec, int initBuf, int work) {
        int sizes[3];
        form.getSize(order, 8, 0, &sizes[0], &sizes[1], &sizes[2]);
        EXPECT_EQ(sizes[0], spec) << form.name << " " << order;
        EXPECT_EQ(sizes[1], initBuf) << form.name << " " << order;
        EXPECT_EQ(sizes[2], work) << form.name << " " << order;
    };
    expectSizes(test::real32f, 0, 144, 0, 0);
    expectSizes(test::real32f, 3, 144, 0, 0);
    expectSizes(test::real32f, 4, 80 + 16 + 2 * 32 + 144, 32 + 16, 64 + 16);
    expectSizes(test::real32f, 10, 4112 + 528 + 2 * 2048 + 144, 1040 + 16, 4096 + 16);
    // Half length 2^17: sub-blocks of 2^14, one level of merge tables, the work area of a sub-block.
    expectSizes(test::real32f, 18, 131088 + 1048576 + 131088 + 2 * 524288 + 144, 262160 + 16, 131072 + 16);
    expectSizes(test::complex32fc, 4, 144 + 32 + 144, 32 + 16, 128 + 16);
    expectSizes(test::complex32f, 16, 524304 + 65552 + 144, 65552 + 16, 524288 + 16);
    expectSizes(test::complex64fc, 3, 152, 0, 0);
    expectSizes(test::complex64fc, 4, 272 + 32 + 160, 48 + 16, 256 + 16);
    // 2^15 doubles: sub-blocks of 2^12, one level of merge tables, the work area of a sub-block.
    expectSizes(test::complex64f, 15, 65552 + 524288 + 32784 + 160, 65552 + 16, 65536 + 16);
    expectSizes(test::real64f, 10, 8208 + 528 + 32 * 256 + 160, 2064 + 16, 8192 + 16);
    expectSizes(test::complex32sc, 0, 152 + 48, 0, 16 + 16);
    expectSizes(test::complex32s, 4, 464 + 48, 64 + 16, 272 + 256 + 16);
    expectSizes(test::real32s, 0, 152 + 48, 0, 24 + 16);
    expectSizes(test::real16s32s, 0, 144 + 48, 0, 12 + 16);
    expectSizes(test::real16s32s, 10, 8880 + 48, 1056 + 16, 4112 + 4104 + 16);
}

TEST(FftContext, GetSizeChecksTheOrderFirst) {
    struct Arguments {
        test::Guarded<int> sizes = test::Guarded<int>(3);
        int order = 5;
        int *spec = sizes.data(), *initBuf = spec + 1, *work = spec + 2;
    };
    using A = Arguments;
    forEveryForm([](const auto& form) {
        test::expectCheckOrder<A>([] { return A(); },
                                  [&](A& a) { return form.getSize(a.order, 8, 0, a.spec, a.initBuf, a.work); },
                                  [](A& a) { return a.sizes.untouched(); },
                                  {{"order -1", vornStsFftOrderErr, [](A& a) { a.order = -1; }},
                                   {"order 31", vornStsFftOrderErr, [](A& a) { a.order = 31; }},
                                   {"order 2^20", vornStsFftOrderErr, [](A& a) { a.order = 1 << 20; }},
                                   {"order -2^30", vornStsFftOrderErr, [](A& a) { a.order = -(1 << 30); }},
                                   {"specSize", vornStsNullPtrErr, [](A& a) { a.spec = nullptr; }},
                                   {"initBufSize", vornStsNullPtrErr, [](A& a) { a.initBuf = nullptr; }},
                                   {"workBufSize", vornStsNullPtrErr, [](A& a) { a.work = nullptr; }}});
    });
}

template <class Spec>
struct CreateArguments {
    Spec* marker = reinterpret_cast<Spec*>(8);
    Spec* context = marker;
    int order = 6, flag = 8;
    std::shared_ptr<test::Guarded<Vorn8u>> spec = std::make_shared<test::Guarded<Vorn8u>>(8192);
    std::shared_ptr<test::Guarded<Vorn8u>> initBuf = std::make_shared<test::Guarded<Vorn8u>>(4096);
    Vorn8u *specMem = spec->data(), *init = initBuf->data();
    bool outIsNull = false;
};

TEST(FftContext, InitAllocChecksInOrder) {
    forEveryForm([]<class Spec>(const test::ContextForm<Spec>& form) {
        using A = CreateArguments<Spec>;
        test::expectCheckOrder<A>([] { return A(); },
                                  [&](A& a) {
                                      const VornStatus status =
                                          form.initAlloc(a.outIsNull ? nullptr : &a.context, a.order, a.flag, 0);
                                      if (status == vornStsNoErr) form.free(a.context);
                                      return status;
                                  },
                                  [](A& a) { return a.context == a.marker; },
                                  {{"ctxOut", vornStsNullPtrErr, [](A& a) { a.outIsNull = true; }},
                                   {"order", vornStsFftOrderErr, [](A& a) { a.order = 31; }},
                                   {"flag", vornStsFftFlagErr, [](A& a) { a.flag = 3; }}});
        for (int order : {0, 3, 4, 30}) {
            for (int flag : {-1, 0, 3, 5, 6, 7, 9, 12, 16, 1 << 30}) {
                Spec* context = nullptr;
                test::FailAllocation count(0);
                EXPECT_EQ(form.initAlloc(&context, order, flag, 0), vornStsFftFlagErr);
                EXPECT_EQ(context, nullptr);
                EXPECT_EQ(count.outstanding(), 0) << "the record is released again";
            }
        }
    });
}

TEST(FftContext, InitChecksInOrder) {
    forEveryForm([]<class Spec>(const test::ContextForm<Spec>& form) {
        using A = CreateArguments<Spec>;
        test::expectCheckOrder<A>(
            [] { return A(); },
            [&](A& a) { return form.init(a.outIsNull ? nullptr : &a.context, a.order, a.flag, 0, a.specMem, a.init); },
            [](A& a) { return a.context == a.marker && a.spec->untouched() && a.initBuf->untouched(); },
            {{"ctxOut", vornStsNullPtrErr, [](A& a) { a.outIsNull = true; }},
             {"order", vornStsFftOrderErr, [](A& a) { a.order = -1; }},
             {"specMem", vornStsNullPtrErr, [](A& a) { a.specMem = nullptr; }},
             {"flag", vornStsFftFlagErr, [](A& a) { a.flag = 16; }},
             {"initBuf", vornStsNullPtrErr, [](A& a) { a.init = nullptr; }}});
        for (int order = 0; order <= 4; ++order) {  // below order 4 no table is built
            A a;
            EXPECT_EQ(form.init(&a.context, order, 8, 0, a.specMem, nullptr),
                      order < 4 ? vornStsNoErr : vornStsNullPtrErr);
        }
    });
}

TEST(FftContext, FreeAndBufSizeCheckPointersThenTheTag) {
    forEveryForm([]<class Spec>(const test::ContextForm<Spec>& form) {
        // A context of its own, freed by the call or with the arguments, and memory with another tag.
        struct Arguments {
            std::shared_ptr<test::Context<Spec>> made;
            alignas(16) std::int32_t other[64] = {};
            test::Guarded<int> out = test::Guarded<int>(1);
            Spec* context = *made;
            int* size = out.data();
        };
        using A = Arguments;
        const test::Rule<A> noContext{"ctx", vornStsNullPtrErr, [](A& a) { a.context = nullptr; }};
        const test::Rule<A> noSize{"size", vornStsNullPtrErr, [](A& a) { a.size = nullptr; }};
        const auto good = [&] { return A{std::make_shared<test::Context<Spec>>(form, 7, 2)}; };
        for (std::int32_t tag : {0, 1, 4, 5, 6, 7, 8, 9, 0x4C4D5364, 0x4C4D5365, 0x4C4D5366, 0x4C4D5367}) {
            if (tag == form.tag) continue;
            const test::Rule<A> otherTag{"tag", vornStsContextMatchErr, [=](A& a) {
                                             a.other[0] = tag;
                                             a.context = reinterpret_cast<Spec*>(a.other);
                                         }};
            const auto untouched = [=](A& a) {
                return a.out.untouched() && (a.context != reinterpret_cast<Spec*>(a.other) || a.other[0] == tag);
            };
            test::expectCheckOrder<A>(good, [&](A& a) { return form.getBufSize(a.context, a.size); }, untouched,
                                      {noContext, noSize, otherTag});
            test::expectCheckOrder<A>(good,
                                      [&](A& a) {
                                          const bool isMade = a.context == static_cast<Spec*>(*a.made);
                                          const VornStatus status = form.free(a.context);
                                          if (isMade && status == vornStsNoErr) a.made->released();
                                          return status;
                                      },
                                      untouched, {noContext, otherTag});
        }
    });
}

TEST(FftContext, BufSizeIsWhatGetSizeReports) {
    forEveryForm([]<class Spec>(const test::ContextForm<Spec>& form) {
        for (int order = 0; order <= 18; ++order) {
            const test::Context<Spec> context(form, order, 1);
            int spec, initBuf, work;
            form.getSize(order, 1, 0, &spec, &initBuf, &work);
            EXPECT_EQ(context.bufSize(), work) << order;
        }
    });
}

TEST(FftContext, EveryAllocationMayFail) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "malloc belongs to the sanitizer";
    forEveryForm([]<class Spec>(const test::ContextForm<Spec>& form) {
        for (int order : {0, 2, 4, 9, 18}) {
            int calls;
            {
                test::FailAllocation count(0);
                Spec* context = nullptr;
                ASSERT_EQ(form.initAlloc(&context, order, 4, 0), vornStsNoErr);
                calls = count.calls();
                EXPECT_EQ(form.free(context), vornStsNoErr);
                EXPECT_EQ(count.outstanding(), 0);
            }
            EXPECT_EQ(calls, order < 4 ? 1 : form.real ? 6 : 4);  // the record, the sines, and the tables
            for (int n = 1; n <= calls; ++n) {
                test::FailAllocation fail(n);
                Spec* const marker = reinterpret_cast<Spec*>(8);
                Spec* context = marker;
                EXPECT_EQ(form.initAlloc(&context, order, 4, 0), vornStsMemAllocErr);
                EXPECT_EQ(context, marker);
                EXPECT_EQ(fail.outstanding(), 0) << "allocation " << n;
            }
        }
    });
}

TEST(FftContext, LivesInCallerMemoryAtAnyAddress) {
    forEveryForm([]<class Spec>(const test::ContextForm<Spec>& form) {
        for (int order : {0, 3, 4, 5, 6, 8, 10, 15, 18}) {
            int specSize, initSize, work;
            form.getSize(order, 1, 0, &specSize, &initSize, &work);
            for (std::size_t shift = 0; shift < 16; shift += order < 10 ? 1 : 5) {
                // The reported size is enough wherever the block begins: the bytes beside it stay as they were.
                test::Guarded<Vorn8u> spec(static_cast<std::size_t>(specSize) + shift);
                test::Guarded<Vorn8u> init(static_cast<std::size_t>(initSize) + shift);
                const std::size_t before = test::guardStandsBefore() ? shift : 0;
                const std::size_t behind = test::guardStandsBefore() ? 0 : shift;
                Vorn8u *const specMem = spec.data() + before, *const initBuf = init.data() + before;
                Spec* context = nullptr;
                ASSERT_EQ(form.init(&context, order, 1, 77, specMem, initBuf), vornStsNoErr);
                EXPECT_EQ(reinterpret_cast<std::uintptr_t>(context),
                          (reinterpret_cast<std::uintptr_t>(specMem) + 15) / 16 * 16);
                for (const test::Guarded<Vorn8u>* block : {&spec, &init}) {
                    for (std::size_t i = 0; i < before; ++i) ASSERT_EQ((*block)[i], 0xA5) << order;
                    for (std::size_t i = 0; i < behind; ++i) ASSERT_EQ((*block)[block->size() - 1 - i], 0xA5) << order;
                    ASSERT_TRUE(block->surroundingsUntouched());
                }
                // Release only clears the tag; the memory stays the caller's.
                EXPECT_EQ(form.free(context), vornStsNoErr);
                EXPECT_EQ(*reinterpret_cast<std::int32_t*>(context), 0);
                int size = -1;
                EXPECT_EQ(form.getBufSize(context, &size), vornStsContextMatchErr);
                EXPECT_EQ(form.free(context), vornStsContextMatchErr);
            }
        }
    });
}

template <class T>
void expectRecord(const VornsFFTSpec* context, const test::FloatForm& form, int order, int flag, int hint) {
    const vorn::fft::FloatSpec<T>& spec = *vorn::fft::recordOf<T>(context);
    const double length = std::ldexp(1.0, order);
    EXPECT_EQ(spec.idCtx, form.tag);
    EXPECT_EQ(spec.order, order);
    EXPECT_EQ(spec.normFwd, flag == 1 || flag == 4);
    EXPECT_EQ(spec.normInv, flag == 2 || flag == 4);
    EXPECT_EQ(spec.normFactor, flag == 8   ? T(0)
                               : flag == 4 ? static_cast<T>(1.0 / std::sqrt(length))
                                           : T(1) / static_cast<T>(length));
    EXPECT_EQ(spec.hint, hint);
    EXPECT_EQ(spec.allocated, 1);
    EXPECT_EQ(spec.twdTabL2a, nullptr);
    EXPECT_EQ(spec.twdTabL2b, nullptr);
    EXPECT_EQ(spec.realRecTab != nullptr, form.real && order >= 4);
    EXPECT_EQ(spec.ccsRecTab != nullptr, form.real && order >= 4);
    for (const void* table : {static_cast<const void*>(spec.bitRevTab), static_cast<const void*>(spec.twdTab),
                              static_cast<const void*>(spec.realRecTab), static_cast<const void*>(spec.ccsRecTab)}) {
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(table) % 16, 0u);
        EXPECT_TRUE(order >= 4 || table == nullptr);
    }
}

TEST(FftContext, RecordHoldsWhatWasAsked) {
    for (const test::FloatForm& form : test::floatForms) {
        SCOPED_TRACE(form.name);
        for (int order : {0, 1, 3, 4, 7, 12}) {
            for (int flag : {1, 2, 4, 8}) {
                const test::Context<VornsFFTSpec> context(form, order, flag, -5);
                if (form.wide) {
                    expectRecord<double>(context, form, order, flag, -5);
                } else {
                    expectRecord<float>(context, form, order, flag, -5);
                }
            }
        }
    }
    for (const test::FixedForm& form : test::fixedForms) {
        SCOPED_TRACE(form.name);
        for (int order : {0, 3, 4, 11}) {
            const test::Context<VornsFFTFixedSpec> context(form, order, 2, 9);
            const vorn::fft::FixedSpec& spec = *vorn::fft::recordOf(static_cast<VornsFFTFixedSpec*>(context));
            EXPECT_EQ(spec.idCtx, form.tag);
            EXPECT_EQ(spec.order, order);
            EXPECT_EQ(spec.hint, 9);
            EXPECT_EQ(spec.allocated, 1);
            EXPECT_EQ(static_cast<const void*>(spec.inner), static_cast<const void*>(&spec + 1));
            EXPECT_EQ(reinterpret_cast<const std::int32_t*>(spec.inner)[1], order);
        }
    }
}

// Every twiddle is a value of the quarter wave with a sign, and every recombination value follows from one.
template <class T>
void expectTables(const VornsFFTSpec* context, bool real) {
    const vorn::fft::FloatSpec<T>& spec = *vorn::fft::recordOf<T>(context);
    const int order = spec.order, complexOrder = real ? order - 1 : order;
    const model::StagedTransform<T> wave(order, 4);
    const std::int64_t quarter = std::int64_t{1} << (order - 2);
    std::set<T> sines;
    for (std::int64_t i = 0; i <= quarter; ++i) sines.insert(wave.sine(i));
    if (complexOrder >= 4) {
        const int first = model::shortStages(sizeof(T) == 8, complexOrder)[0];
        const std::int64_t twiddles = (std::int64_t{1} << complexOrder) - first;
        const T* table = vorn::fft::firstTwiddle(spec.twdTab);
        for (std::int64_t i = 0; i < 2 * twiddles; ++i) ASSERT_TRUE(sines.count(std::abs(table[i]))) << i;
    }
    for (std::int64_t i = 0; i < (std::int64_t{1} << complexOrder) / 4; ++i) {
        std::int64_t reversed = 0;
        for (int bit = 0; bit < complexOrder - 2; ++bit) reversed |= ((i >> bit) & 1) << (complexOrder - 3 - bit);
        ASSERT_EQ(spec.bitRevTab[i], 2 * reversed) << i;
    }
    ASSERT_EQ(spec.bitRevTab[(std::int64_t{1} << complexOrder) / 4], 0);
    if (!real) return;
    std::multiset<T> found, expected;
    for (std::int64_t j = 1; j <= quarter; ++j) {
        expected.insert(static_cast<T>(0.5 * static_cast<double>(wave.sine(quarter - j))));
        expected.insert(static_cast<T>(0.5 - 0.5 * static_cast<double>(wave.sine(j))));
        expected.insert(wave.sine(quarter - j));
        expected.insert(-wave.sine(j));
    }
    for (std::int64_t i = 0; i < 2 * quarter; ++i) {
        found.insert(spec.realRecTab[i]);
        found.insert(spec.ccsRecTab[i]);
    }
    EXPECT_EQ(found, expected);
}

TEST(FftContext, TablesComeFromTheQuarterWave) {
    for (const test::FloatForm& form : test::floatForms) {
        SCOPED_TRACE(form.name);
        for (int order = 4; order <= 12; ++order) {
            const test::Context<VornsFFTSpec> context(form, order, 8);
            if (form.wide) {
                expectTables<double>(context, form.real);
            } else {
                expectTables<float>(context, form.real);
            }
        }
    }
}

// The tables of stages against the rules that make them.
template <class T>
void expectPlans(int firstLong) {
    EXPECT_EQ(vorn::fft::Precision<T>::longOrder, firstLong);
    for (int order = 4; order < firstLong; ++order) {
        const vorn::fft::Plan& plan = vorn::fft::planOf<T>(order);
        EXPECT_EQ(std::vector<int>(plan.radix, plan.radix + plan.stages()), model::shortStages(sizeof(T) == 8, order));
    }
    for (int order = firstLong; order <= 30; ++order) {
        const model::BlockOrders expected = sizeof(T) == 8 ? model::blockOrders64(order) : model::blockOrders32(order);
        EXPECT_EQ(vorn::fft::blockingOf<T>(order).block, expected.block) << order;
        EXPECT_EQ(vorn::fft::blockingOf<T>(order).buffer, expected.buffer) << order;
    }
}

TEST(FftContext, TablesAreTheSameInEveryRoundingMode) {
    constexpr int order = 9, length = 1 << order;
    std::vector<Vorn64fc> src(length), expected(length), found(length);
    for (int i = 0; i < length; ++i) src[i] = {i % 7 - 3.0, i % 11 - 5.0};
    const auto transform = [&](VornsFFTSpec* spec, std::vector<Vorn64fc>& dst) {
        EXPECT_EQ(vornsFFTFwd_CToC_64fc(src.data(), dst.data(), spec, nullptr), vornStsNoErr);
        EXPECT_EQ(vornsFFTFree_C_64fc(spec), vornStsNoErr);
    };
    VornsFFTSpec* spec = nullptr;
    ASSERT_EQ(vornsFFTInitAlloc_C_64fc(&spec, order, 4, 0), vornStsNoErr);
    transform(spec, expected);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        {
            const test::RoundingMode directed(mode);
            ASSERT_EQ(vornsFFTInitAlloc_C_64fc(&spec, order, 4, 0), vornStsNoErr);
        }
        transform(spec, found);
        EXPECT_EQ(std::memcmp(found.data(), expected.data(), length * sizeof(Vorn64fc)), 0) << mode;
    }
}

TEST(FftContext, StagePlansFollowTheirRules) {
    expectPlans<float>(17);
    expectPlans<double>(15);
    const std::vector<std::pair<int, std::vector<int>>> merges = {{3, {8}},    {4, {4, 4}},    {5, {8, 4}},
                                                                  {6, {8, 8}}, {7, {8, 4, 4}}, {8, {8, 8, 4}}};
    for (const auto& [block, stages] : merges) {
        const vorn::fft::Plan plan = vorn::fft::mergePlan(block);
        EXPECT_EQ(std::vector<int>(plan.radix, plan.radix + plan.stages()), stages);
    }
}

}  // namespace
