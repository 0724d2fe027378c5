// Rows of vectors on their way into a search.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "frame/memory.h"
#include "move/convert_kernels.h"
#include "vq/codebook/state.h"

namespace vorn::vq {

// Singles as they stand, 16-bit integers converted into memory for as many as the codebook's vectors have.
template <class T>
class AsSingles {
public:
    explicit AsSingles(int width) : memory_(std::is_same_v<T, Vorn32f> ? 0 : width) {}
    explicit operator bool() const { return static_cast<bool>(memory_); }
    const Vorn32f* of(const T* vector, int width) const {
        if constexpr (std::is_same_v<T, Vorn32f>) {
            return vector;
        } else {
            convert(vector, memory_.get(), width);
            return memory_.get();
        }
    }

private:
    ShortScratch<Vorn32f, 128> memory_;
};

// What the search for a vector converts: the vector, and the weights beside it. Test it before anything is written.
template <class T>
struct SearchRoom {
    explicit SearchRoom(int width) : vector(width), weights(width) {}
    explicit operator bool() const { return vector && weights; }

    // Null where all are 1.
    const Vorn32f* weightsOf(const VornCdbkState& book) const {
        if (!(book.mode & isWeighted)) return nullptr;
        return weights.of(static_cast<const T*>(book.weights), book.vecLen);
    }

    AsSingles<T> vector, weights;
};

}  // namespace vorn::vq
