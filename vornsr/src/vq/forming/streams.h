// The codebooks of vectors that are cut into several streams.
#pragma once

#include <algorithm>
#include <cstdint>

#include "frame/checks.h"
#include "vq/codebook/state.h"

namespace vorn::vq {

struct Streams {
    const VornCdbkState* const* codebooks;
    int count;

    const VornCdbkState& operator[](int s) const { return *recordAt(codebooks[s]); }

    VornStatus allThere() const {
        for (int s = 0; s < count; ++s) VORN_CHECK(notNull(codebooks[s]));
        return vornStsNoErr;
    }
    std::int64_t sumOf(int VornCdbkState::*field) const {
        std::int64_t sum = 0;
        for (int s = 0; s < count; ++s) sum += (*this)[s].*field;
        return sum;
    }
    int widest() const {
        int widest = 0;
        for (int s = 0; s < count; ++s) widest = std::max(widest, (*this)[s].vecLen);
        return widest;
    }
};

}  // namespace vorn::vq
