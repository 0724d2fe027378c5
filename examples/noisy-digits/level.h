// The loudness of a wave.
#pragma once

#include <cmath>
#include <span>
#include <vector>

#include "checked.h"

namespace digits {

// The root of the mean square.
inline Vorn32f levelOf(std::span<const Vorn32f> wave) {
    Vorn64f squares = 0.0;
    DIGITS_CALL(vornsDotProd_32f64f, wave.data(), wave.data(), static_cast<int>(wave.size()), &squares);
    return static_cast<Vorn32f>(std::sqrt(squares / static_cast<double>(wave.size())));
}

// The recording at the given level; digital silence stays what it is.
inline std::vector<Vorn32f> scaledTo(Vorn32f level, std::span<const Vorn16s> samples) {
    std::vector<Vorn32f> wave(samples.size());
    DIGITS_CALL(vornsConvert_16s32f, samples.data(), wave.data(), static_cast<int>(samples.size()));
    const Vorn32f present = levelOf(wave);
    if (present > 0.0f) DIGITS_CALL(vornsMulC_32f_I, level / present, wave.data(), static_cast<int>(wave.size()));
    return wave;
}

}  // namespace digits
