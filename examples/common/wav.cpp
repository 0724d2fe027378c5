// Reads recordings by libsndfile, and tells what is wrong with those that it will not take.
#include "wav.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>

#include "input_error.h"
#include "resample.h"

namespace digits {
namespace {

namespace fs = std::filesystem;

constexpr int kMostSeconds = 60;

std::uint32_t number(const unsigned char* bytes, bool bigEndian) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8 | bytes[bigEndian ? i : 3 - i];
    return value;
}

// The number of bytes that the header of a WAV file promises behind it and that the file does not have. libsndfile
// mends such a header silently, and half a word would then be recognised as if it were whole.
std::optional<std::uint64_t> missingBytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::uint64_t size = fs::file_size(path);
    std::array<unsigned char, 8> head{};
    file.read(reinterpret_cast<char*>(head.data()), head.size());
    const bool bigEndian = std::memcmp(head.data(), "RIFX", 4) == 0;
    std::uint64_t at = 12;  // behind "RIFF" or "RIFX", the size, "WAVE"
    while (at + head.size() <= size) {
        file.seekg(static_cast<std::streamoff>(at));
        if (!file.read(reinterpret_cast<char*>(head.data()), head.size())) break;
        at += head.size();
        const std::uint64_t length = number(head.data() + 4, bigEndian);
        if (std::memcmp(head.data(), "data", 4) == 0) {
            return at + length > size ? std::optional(at + length - size) : std::nullopt;
        }
        at += length + (length & 1);
    }
    return std::nullopt;
}

void refuseUnlessReadable(const fs::path& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) throw InputError(path, "there is no such file");
    if (status.type() != fs::file_type::regular) throw InputError(path, "is not a regular file");
    if (!std::ifstream(path, std::ios::binary)) throw InputError(path, "cannot be opened for reading");
    if (fs::file_size(path) == 0) throw InputError(path, "is empty");
}

// "8000, 11025 or 16000"
std::string listedRates() {
    std::string text;
    for (std::size_t i = 0; i < std::size(kRates); ++i) {
        text += (i == 0 ? "" : i + 1 == std::size(kRates) ? " or " : ", ") + std::to_string(kRates[i]);
    }
    return text;
}

void refuseUnlessExpected(const fs::path& path, const SF_INFO& info) {
    const int container = info.format & SF_FORMAT_TYPEMASK;
    if (container != SF_FORMAT_WAV && container != SF_FORMAT_WAVEX) throw InputError(path, "is not a WAV file");
    if (info.channels != 1) {
        throw InputError(path, "has " + std::to_string(info.channels) + " channels; a mono recording is needed");
    }
    if ((info.format & SF_FORMAT_SUBMASK) != SF_FORMAT_PCM_16) throw InputError(path, "does not hold 16-bit samples");
    if (std::find(std::begin(kRates), std::end(kRates), info.samplerate) == std::end(kRates)) {
        throw InputError(path,
                         "has " + std::to_string(info.samplerate) + " samples a second; it may have " + listedRates());
    }
}

}  // namespace

std::vector<Vorn16s> readWav(const fs::path& path, int sampleRate) {
    refuseUnlessReadable(path);

    SF_INFO info{};
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> file(sf_open(path.c_str(), SFM_READ, &info), sf_close);
    if (!file) throw InputError(path, std::string("is not a readable WAV file (") + sf_strerror(nullptr) + ")");
    refuseUnlessExpected(path, info);
    if (const auto missing = missingBytes(path)) {
        throw InputError(path, "is cut short: " + std::to_string(*missing) + " bytes of its samples are missing");
    }
    if (info.frames == 0) throw InputError(path, "holds no samples");
    if (info.frames > sf_count_t{kMostSeconds} * info.samplerate) {
        throw InputError(path, "is longer than " + std::to_string(kMostSeconds) + " seconds, which no digit is");
    }

    std::vector<Vorn16s> samples(static_cast<std::size_t>(info.frames));
    if (sf_read_short(file.get(), samples.data(), info.frames) != info.frames) {
        throw InputError(path, "could not be read to its end");
    }
    return resampled(samples, info.samplerate, sampleRate);
}

}  // namespace digits
