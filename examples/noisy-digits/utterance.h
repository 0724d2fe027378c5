// Features of a recording that has noise at both ends.
#pragma once

#include <cstddef>

#include "front_end.h"

namespace digits {

struct Utterance {
    Analysis analysis;  // of which only frames and features are used
    int begin, end;     // the frames whose middle lies in the word
};

// The first frame whose middle is not in front of the sample.
inline int frameAt(std::size_t sample) {
    constexpr std::size_t kMiddle = kFrameLength / 2;
    return sample <= kMiddle ? 0 : static_cast<int>((sample - kMiddle + kFrameStep - 1) / kFrameStep);
}

}  // namespace digits
