// The file of the word models: a header that says what it holds, the numbers as they stand in memory, a checksum.
#include "model.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>

#include "input_error.h"

namespace digits {
namespace {

namespace fs = std::filesystem;

// Sixteen bytes of name, so that `file` and `head` tell it apart too.
constexpr std::array<char, 16> kMagic{"spoken-digits\r\n"};
constexpr std::uint32_t kVersion = 1;

struct Header {
    std::array<char, 16> magic = kMagic;
    std::uint32_t version = kVersion;
    std::uint32_t sampleRate = kSampleRate;
    std::uint32_t features = kFeatures;
    std::uint32_t words = kWords;
    std::uint32_t states = 0;
    std::uint32_t gaussians = 0;
};
static_assert(sizeof(Header) == 40);

constexpr std::uint32_t kMaxStates = 64, kMaxGaussians = 100;

std::size_t floatsPerState(const Header& header) { return header.gaussians * (2 * std::size_t{kRowStep} + 1) + 2; }

std::size_t bytesOf(const Header& header) {
    return header.words * header.states * floatsPerState(header) * sizeof(Vorn32f);
}

// FNV-1a (Fowler, Noll, Vo, 1991).
std::uint64_t checksum(const char* bytes, std::size_t count) {
    std::uint64_t hash = 14695981039346656037u;
    for (std::size_t i = 0; i < count; ++i) hash = (hash ^ static_cast<unsigned char>(bytes[i])) * 1099511628211u;
    return hash;
}

// Visits the numbers of a state in the order of the file, for writing and for reading alike.
template <typename AnyState, typename Visit>
void visitNumbers(AnyState& state, Visit visit) {
    visit(state.mean.data(), state.mean.size());
    visit(state.inverseVariance.data(), state.inverseVariance.size());
    visit(state.constant.data(), state.constant.size());
    visit(&state.stay, std::size_t{1});
    visit(&state.leave, std::size_t{1});
}

Header checkedHeader(const fs::path& path, const std::string& bytes) {
    Header header;
    if (bytes.size() < sizeof header || std::memcmp(bytes.data(), kMagic.data(), kMagic.size()) != 0) {
        throw InputError(path, "is not a model file of spoken digits");
    }
    std::memcpy(&header, bytes.data(), sizeof header);
    if (header.version != kVersion) {
        throw InputError(path, "is a model file of version " + std::to_string(header.version) + "; version " +
                                   std::to_string(kVersion) + " is needed");
    }
    if (header.sampleRate != kSampleRate || header.features != kFeatures || header.words != kWords ||
        header.states < 1 || header.states > kMaxStates || header.gaussians < 1 || header.gaussians > kMaxGaussians) {
        throw InputError(path, "holds a model of another shape than this program uses");
    }
    const std::size_t needed = sizeof header + bytesOf(header) + sizeof(std::uint64_t);
    if (bytes.size() != needed) {
        throw InputError(
            path, "has " + std::to_string(bytes.size()) + " bytes where its header asks for " + std::to_string(needed));
    }
    return header;
}

}  // namespace

const char* wordOf(int digit) {
    static constexpr const char* kNames[kWords] = {"zero", "one", "two",   "three", "four",
                                                   "five", "six", "seven", "eight", "nine"};
    return kNames[digit];
}

void save(const Models& models, const fs::path& path) {
    Header header;
    header.states = static_cast<std::uint32_t>(models.states());
    header.gaussians = static_cast<std::uint32_t>(models.gaussians());

    std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
    for (const WordModel& word : models.words) {
        for (const State& state : word.states) {
            visitNumbers(state, [&](const Vorn32f* values, std::size_t count) {
                bytes.append(reinterpret_cast<const char*>(values), count * sizeof *values);
            });
        }
    }
    const std::uint64_t sum = checksum(bytes.data(), bytes.size());
    bytes.append(reinterpret_cast<const char*>(&sum), sizeof sum);

    std::ofstream file(path, std::ios::binary);
    if (!file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) {
        throw InputError(path, "cannot be written");
    }
}

Models load(const fs::path& path) {
    std::error_code error;
    if (!fs::exists(path, error)) throw InputError(path, "there is no such model file");
    if (fs::is_directory(path, error)) throw InputError(path, "is a directory, not a model file");
    std::ifstream file(path, std::ios::binary);
    if (!file) throw InputError(path, "cannot be opened for reading");
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const Header header = checkedHeader(path, bytes);

    std::uint64_t sum = 0;
    std::memcpy(&sum, bytes.data() + bytes.size() - sizeof sum, sizeof sum);
    if (sum != checksum(bytes.data(), bytes.size() - sizeof sum)) {
        throw InputError(path, "is damaged: its checksum does not agree with its contents");
    }

    State blank;
    blank.mean.resize(header.gaussians * kRowStep);
    blank.inverseVariance.resize(header.gaussians * kRowStep);
    blank.constant.resize(header.gaussians);
    Models models{std::vector<WordModel>(kWords, WordModel{std::vector<State>(header.states, blank)})};
    const char* at = bytes.data() + sizeof header;
    for (WordModel& word : models.words) {
        for (State& state : word.states) {
            visitNumbers(state, [&](Vorn32f* values, std::size_t count) {
                std::memcpy(values, at, count * sizeof *values);
                at += count * sizeof *values;
            });
        }
    }
    return models;
}

}  // namespace digits
