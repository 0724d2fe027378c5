// Contexts made, used once and released by several threads at the same time, each its own: what makes them has no
// tables or scratch that the threads would share unseen. And what tells that the thread sanitizer watches the library.
#include <cstdlib>

#include "threads/together.h"

namespace {

using test::Buffers, test::Together;

TEST(ThreadsMakeContexts, Transforms) {
    Together calls;
    calls.add("R_32f", [](Buffers& b) {
        VornsFFTSpec* spec = nullptr;
        if (const VornStatus status = vornsFFTInitAlloc_R_32f(&spec, 8, 8, 0)) return status;
        const VornStatus status = vornsFFTFwd_RToCCS_32f(b.source<Vorn32f>(258), b.result<Vorn32f>(258), spec, nullptr);
        vornsFFTFree_R_32f(spec);
        return status;
    });
    calls.add("C_64fc", [](Buffers& b) {
        VornsFFTSpec* spec = nullptr;
        if (const VornStatus status = vornsFFTInitAlloc_C_64fc(&spec, 8, 8, 0)) return status;
        const VornStatus status =
            vornsFFTFwd_CToC_64fc(b.source<Vorn64fc>(256), b.result<Vorn64fc>(256), spec, nullptr);
        vornsFFTFree_C_64fc(spec);
        return status;
    });
    calls.add("R_32s", [](Buffers& b) {
        VornsFFTFixedSpec* spec = nullptr;
        if (const VornStatus status = vornsFFTInitAlloc_R_32s(&spec, 8, 8, 0)) return status;
        const VornStatus status =
            vornsFFTFwd_RToCCS_32s_Sfs(b.source<Vorn32s>(258), b.result<Vorn32s>(258), spec, 0, nullptr);
        vornsFFTFree_R_32s(spec);
        return status;
    });
    calls.expectSameAsAlone(40);
}

// With flag vornFBankSamples and of integers: the kinds that serve one thread at a time, so each thread has its own.
TEST(ThreadsMakeContexts, Features) {
    Together calls;
    calls.add("bank of samples 32f", [](Buffers& b) {
        VornFBankState_32f* bank = nullptr;
        int order = 0;
        if (const VornStatus status =
                vornsMelFBankInitAlloc_32f(&bank, &order, 256, 8000.0f, 64.0f, 4000.0f, 20, 1127.0f, 700.0f,
                                           vornFBankWeightFreq | vornFBankSamples)) {
            return status;
        }
        const VornStatus status = vornsEvalFBank_32f(b.source<Vorn32f>(256), b.result<Vorn32f>(20), bank);
        vornsFBankFree_32f(bank);
        return status;
    });
    calls.add("bank of samples 16s", [](Buffers& b) {
        VornFBankState_16s* bank = nullptr;
        int order = 0;
        if (const VornStatus status =
                vornsMelFBankInitAlloc_16s(&bank, &order, 256, 8000.0f, 64.0f, 4000.0f, 20, 1127.0f, 700.0f,
                                           vornFBankWeightMel | vornFBankSamples)) {
            return status;
        }
        const VornStatus status = vornsEvalFBank_16s_Sfs(b.source<Vorn16s>(256), b.result<Vorn16s>(20), bank, 0);
        vornsFBankFree_16s(bank);
        return status;
    });
    calls.add("lifter 16s", [](Buffers& b) {
        VornDCTLifterState_16s* lifter = nullptr;
        if (const VornStatus status = vornsDCTLifterInitAlloc_C0_16s(&lifter, 20, 12, 22, 0.5f, 1.0f)) return status;
        const VornStatus status = vornsDCTLifter_16s_Sfs(b.source<Vorn16s>(20), b.result<Vorn16s>(13), lifter, 1);
        vornsDCTLifterFree_16s(lifter);
        return status;
    });
    calls.add("resampler", [](Buffers& b) {
        VornResampleFixedState_32f* state = nullptr;
        if (const VornStatus status = vornsResamplePolyphaseFixedInitAlloc_32f(&state, 3, 2, 16, 0, 0.9f, 8.0f)) {
            return status;
        }
        double time = 0.0;
        const VornStatus status = vornsResamplePolyphaseFixed_32f(state, b.source<Vorn32f>(200) + 50, 99,
                                                                  b.result<Vorn32f>(68), 1.0f, &time, b.result<int>(1));
        vornsResamplePolyphaseFixedFree_32f(state);
        return status;
    });
    calls.expectSameAsAlone(20);
}

TEST(ThreadsMakeContexts, Codebooks) {
    Together calls;
    calls.add("tree, with a sorted search", [](Buffers& b) {
        VornCdbkState* book = nullptr;
        if (const VornStatus status = vornsCdbkInitAlloc_L2_32f(&book, b.source<Vorn32f>(600), 6, 6, 100, 16, 2)) {
            return status;
        }
        const VornStatus status =
            vornsVQDistSingle_Sort_32f(b.source<Vorn32f>(6), b.result<Vorn32s>(10), b.result<Vorn32f>(10), book, 10);
        vornsCdbkFree_32f(book);
        return status;
    });
    calls.add("grid", [](Buffers& b) {
        VornCdbkState* book = nullptr;
        if (const VornStatus status = vornsCdbkInitAlloc_L2_16s(&book, b.source<Vorn16s>(120), 2, 2, 60, 60, 1)) {
            return status;
        }
        const VornStatus status = vornsVQ_16s(b.source<Vorn16s>(40), 2, b.result<Vorn32s>(20), 20, book);
        vornsCdbkFree_16s(book);
        return status;
    });
    calls.expectSameAsAlone(10);
}

#ifdef __SANITIZE_THREAD__
// An integer lifter's sums stand in its context, so threads must not share one: here two do, and are found out.
void shareWhatMustNotBeShared() {
    VornDCTLifterState_16s* lifter = nullptr;
    vornsDCTLifterInitAlloc_16s(&lifter, 20, 12, 22, 0.5f);
    const auto work = [lifter] {
        Buffers buffers(1);
        for (int i = 0; i < 100; ++i) {
            vornsDCTLifter_16s_Sfs(buffers.source<Vorn16s>(20), buffers.result<Vorn16s>(12), lifter, 1);
        }
    };
    std::thread one(work), two(work);
    one.join();
    two.join();
    vornsDCTLifterFree_16s(lifter);
    std::exit(0);  // 66 where the sanitizer has had something to report
}

TEST(ThreadsUnderTheSanitizer, ARaceInTheLibraryIsReported) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(shareWhatMustNotBeShared(), ::testing::ExitedWithCode(66), "data race.*");
}
#endif

}  // namespace
