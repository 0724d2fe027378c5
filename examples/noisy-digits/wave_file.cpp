#include "wave_file.h"

#include <cstdint>
#include <fstream>

#include "front_end.h"
#include "input_error.h"

namespace digits {
namespace {

void append(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> 8 * i & 255);
}

}  // namespace

std::string wavOf(std::span<const Vorn16s> samples) {
    constexpr int kBytes = 2;
    const auto length = static_cast<std::uint32_t>(kBytes * samples.size());
    std::string bytes = "RIFF";
    append(bytes, 36 + length, 4);
    bytes += "WAVEfmt ";
    append(bytes, 16, 4);
    append(bytes, 1, 2);  // integer samples
    append(bytes, 1, 2);  // one channel
    append(bytes, kSampleRate, 4);
    append(bytes, kSampleRate * kBytes, 4);
    append(bytes, kBytes, 2);
    append(bytes, 8 * kBytes, 2);
    bytes += "data";
    append(bytes, length, 4);
    for (const Vorn16s sample : samples) append(bytes, static_cast<std::uint16_t>(sample), kBytes);
    return bytes;
}

void writeWav(const std::filesystem::path& path, std::span<const Vorn16s> samples) {
    const std::string bytes = wavOf(samples);
    std::ofstream file(path, std::ios::binary);
    if (!file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) {
        throw InputError(path, "cannot be written");
    }
}

}  // namespace digits
