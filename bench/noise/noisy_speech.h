// Recordings one behind another with pauses, and white noise over them.
#pragma once

#include <cmath>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace bench {

inline constexpr int noisySampleRate = 8000;

// Singles of the size of 16-bit samples; empty if a recording cannot be read. Their headers have 44 bytes.
inline std::vector<float> speech(const std::string& folder, int recordings) {
    std::vector<float> wave(noisySampleRate / 2, 0.0f);
    const char* const speakers[] = {"george", "jackson", "lucas", "nicolas", "theo", "yweweler"};
    for (int i = 0; i < recordings; ++i) {
        std::ifstream file(folder + "/" + std::to_string(i % 10) + "_" + speakers[i % 6] + "_0.wav", std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        if (bytes.size() < 44) return {};
        for (std::size_t n = 44; n + 1 < bytes.size(); n += 2) {
            wave.push_back(static_cast<float>(static_cast<short>(static_cast<unsigned char>(bytes[n]) |
                                                                 static_cast<unsigned char>(bytes[n + 1]) << 8)));
        }
        wave.insert(wave.end(), 3 * noisySampleRate / 10, 0.0f);
    }
    return wave;
}

// Where the speech is, the mean of its power over that of the noise is so many decibels.
inline std::vector<float> withNoise(const std::vector<float>& clean, double decibels) {
    double power = 0;
    std::size_t loud = 0;
    for (float x : clean) {
        if (x != 0) power += double{x} * x, ++loud;
    }
    const double sigma = std::sqrt(power / static_cast<double>(loud) * std::pow(10, -decibels / 10));
    std::mt19937 generator(1);
    std::normal_distribution<double> normal(0, sigma);
    std::vector<float> noisy(clean);
    for (float& x : noisy) x += static_cast<float>(normal(generator));
    return noisy;
}

}  // namespace bench
