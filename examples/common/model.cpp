// The file of the word models: a header that says what it holds, the numbers as they stand in memory, a checksum.
#include "model.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

#include "input_error.h"
#include "sealed.h"

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
    checkSize(path, bytes, sizeof header + bytesOf(header));
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
    writeSealed(path, std::move(bytes));
}

Models load(const fs::path& path) {
    const std::string bytes = readModelFile(path);
    const Header header = checkedHeader(path, bytes);
    checkSeal(path, bytes);

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
