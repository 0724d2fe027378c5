// Memory blocks.
#include <gtest/gtest.h>
#include <malloc.h>

#include <climits>
#include <cstdint>
#include <cstring>

#include "support/allocation.h"
#include "vornsr.h"

namespace {

template <class T>
void expectBlocks(T* (*allocate)(int)) {
    for (int len : {1, 2, 3, 7, 8, 31, 32, 33, 1000, 100000}) {
        T* block = allocate(len);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 32, 0u) << len;
        std::memset(block, 0x5A, static_cast<std::size_t>(len) * sizeof(T));  // all of it is ours
        void* base;
        std::memcpy(&base, reinterpret_cast<char*>(block) - 8, 8);
        const auto slack = reinterpret_cast<char*>(block) - static_cast<char*>(base);
        EXPECT_GE(slack, 8);
        EXPECT_LE(slack, 39);
        EXPECT_GE(malloc_usable_size(base), static_cast<std::size_t>(len) * sizeof(T) + 40);
        if (reinterpret_cast<std::uintptr_t>(base) % 32 == 0) {
            EXPECT_EQ(slack, 32) << "a base on a 32-byte address lands at base + 32";
        }
        vornsFree(block);
    }
}

TEST(Memory, EveryTypeGivesAligned32Blocks) {
    expectBlocks(vornsMalloc_8u);
    expectBlocks(vornsMalloc_8s);
    expectBlocks(vornsMalloc_16u);
    expectBlocks(vornsMalloc_16s);
    expectBlocks(vornsMalloc_8sc);
    expectBlocks(vornsMalloc_32u);
    expectBlocks(vornsMalloc_32s);
    expectBlocks(vornsMalloc_32f);
    expectBlocks(vornsMalloc_16sc);
    expectBlocks(vornsMalloc_64s);
    expectBlocks(vornsMalloc_64f);
    expectBlocks(vornsMalloc_32sc);
    expectBlocks(vornsMalloc_32fc);
    expectBlocks(vornsMalloc_64sc);
    expectBlocks(vornsMalloc_64fc);
}

TEST(Memory, NoLengthBelowOne) {
    test::FailAllocation count(0);
    EXPECT_EQ(vornsMalloc_32f(0), nullptr);
    EXPECT_EQ(vornsMalloc_32f(-1), nullptr);
    EXPECT_EQ(vornsMalloc_64fc(INT_MIN), nullptr);
    EXPECT_EQ(count.calls(), 0) << "malloc must not be asked";
}

TEST(Memory, FreeOfNullDoesNothing) { vornsFree(nullptr); }

TEST(Memory, PassesOnThatMallocFailed) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    test::FailAllocation fail(1);
    EXPECT_EQ(vornsMalloc_64fc(10), nullptr);
    EXPECT_EQ(fail.calls(), 1);
}

TEST(Memory, BlocksGoBackToFree) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    test::FailAllocation count(0);
    void* blocks[] = {vornsMalloc_8u(1), vornsMalloc_16s(5), vornsMalloc_64f(100)};
    EXPECT_EQ(count.outstanding(), 3);
    for (void* block : blocks) vornsFree(block);
    EXPECT_EQ(count.outstanding(), 0);
}

}  // namespace
