// Memory with a visible owner: the one allocator, and a scoped block over it.
#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>

#include "vornsr/frame.h"

namespace vorn {

// A block of len elements of elementSize bytes, as vornsMalloc_* hands out; null when len is below 1 or memory is
// short.
void* allocateBlock(int len, std::size_t elementSize);

// Scratch memory that leaves with its scope. Test it before use: a length that an int cannot say counts as exhausted
// memory, and so does a length below 1.
template <class T>
class Scratch {
public:
    explicit Scratch(std::int64_t len)
        : block_(len > INT_MAX ? nullptr : static_cast<T*>(allocateBlock(static_cast<int>(len), sizeof(T)))) {}
    ~Scratch() { vornsFree(block_); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    explicit operator bool() const { return block_ != nullptr; }
    T* get() const { return block_; }
    T& operator[](std::ptrdiff_t i) const { return block_[i]; }

    // Hands the block to a context that frees it itself.
    T* release() {
        T* block = block_;
        block_ = nullptr;
        return block;
    }

private:
    T* block_;
};

// The same on the stack where no more than onStack elements are wanted, so that short calls take no memory.
template <class T, int onStack>
class ShortScratch {
public:
    explicit ShortScratch(std::int64_t len)
        : block_(len > onStack ? len : 0), memory_(len > onStack ? block_.get() : stack_) {}
    ShortScratch(const ShortScratch&) = delete;
    ShortScratch& operator=(const ShortScratch&) = delete;

    explicit operator bool() const { return memory_ != nullptr; }
    T* get() const { return memory_; }
    T& operator[](std::ptrdiff_t i) const { return memory_[i]; }

private:
    Scratch<T> block_;
    T* memory_;
    alignas(64) T stack_[onStack];
};

}  // namespace vorn
