// Log spectra of real speech: a matrix as a front-end meets it, with one row a frame of 25 ms every 10 ms and one
// column a bin. From the recordings beside the example, whose header has 44 bytes.
#pragma once

#include <cstddef>
#include <fstream>
#include <string>
#include <vector>

#include "vornsr.h"

namespace test {

struct RecordedFrames {
    int height = 0, width = 0;
    std::vector<double> rows;  // width a row
};

// Of so many recordings of the folder, one digit after the other; without rows if one of them cannot be read.
inline RecordedFrames recordedFrames(const std::string& folder, int recordings, int width) {
    constexpr int length = 200, step = 80, order = 8;
    RecordedFrames frames{0, width, {}};
    VornsFFTSpec* spec = nullptr;
    if (vornsFFTInitAlloc_R_32f(&spec, order, 8, 0) != vornStsNoErr) return frames;
    std::vector<Vorn32f> padded(1 << order), magnitudes((1 << order) / 2 + 1);
    std::vector<Vorn32fc> spectrum(magnitudes.size());
    for (int i = 0; i < recordings; ++i) {
        std::ifstream file(folder + "/" + std::to_string(i % 10) + "_george_" + std::to_string(i / 10) + ".wav",
                           std::ios::binary);
        std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        if (bytes.size() < 44 + 2 * length) {
            frames = {0, width, {}};
            break;
        }
        std::vector<Vorn16s> samples((bytes.size() - 44) / 2);
        for (std::size_t n = 0; n < samples.size(); ++n) {
            samples[n] = static_cast<Vorn16s>(static_cast<unsigned char>(bytes[44 + 2 * n]) | bytes[45 + 2 * n] * 256);
        }
        for (std::size_t begin = 0; begin + length <= samples.size(); begin += step) {
            vornsConvert_16s32f(samples.data() + begin, padded.data(), length);
            vornsFFTFwd_RToCCS_32f(padded.data(), &spectrum[0].re, spec, nullptr);
            vornsMagnitude_32fc(spectrum.data(), magnitudes.data(), static_cast<int>(magnitudes.size()));
            vornsAddC_32f_I(1.0f, magnitudes.data(), static_cast<int>(magnitudes.size()));
            vornsLn_32f_I(magnitudes.data(), static_cast<int>(magnitudes.size()));
            frames.rows.insert(frames.rows.end(), magnitudes.begin(), magnitudes.begin() + width);
            ++frames.height;
        }
    }
    vornsFFTFree_R_32f(spec);
    return frames;
}

}  // namespace test
