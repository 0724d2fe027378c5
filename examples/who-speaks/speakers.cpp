// Training and recognition are both of the library; the file is here.
#include "speakers.h"

#include <algorithm>
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
constexpr std::array<char, 16> kMagic{"who-speaks\r\n"};
constexpr std::uint32_t kVersion = 1;
constexpr std::uint32_t kMostSpeakers = 10000;
constexpr double kLeastDistortion = 1e-9;  // keeps a quotient finite where frames are codewords

struct Header {
    std::array<char, 16> magic = kMagic;
    std::uint32_t version = kVersion;
    std::uint32_t sampleRate = kSampleRate;
    std::uint32_t features = kVoiceFeatures;
    std::uint32_t speakers = 0;
};
static_assert(sizeof(Header) == 32);

// One a speaker, behind the header; the words of all speakers follow.
struct Entry {
    std::array<char, kLongestName + 1> name{};
    std::uint32_t words = 0;
};
static_assert(sizeof(Entry) == 36);

Header checkedHeader(const fs::path& path, const std::string& bytes) {
    Header header;
    if (bytes.size() < sizeof header || std::memcmp(bytes.data(), kMagic.data(), kMagic.size()) != 0) {
        throw InputError(path, "is not a model file of speakers");
    }
    std::memcpy(&header, bytes.data(), sizeof header);
    if (header.version != kVersion) {
        throw InputError(path, "is a model file of version " + std::to_string(header.version) + "; version " +
                                   std::to_string(kVersion) + " is needed");
    }
    if (header.sampleRate != kSampleRate || header.features != kVoiceFeatures || header.speakers < 2 ||
        header.speakers > kMostSpeakers) {
        throw InputError(path, "holds a model of another shape than this program uses");
    }
    return header;
}

std::vector<Entry> checkedEntries(const fs::path& path, const std::string& bytes, const Header& header) {
    std::size_t size = sizeof header + header.speakers * sizeof(Entry);
    if (bytes.size() < size) checkSize(path, bytes, size);
    std::vector<Entry> entries(header.speakers);
    std::memcpy(entries.data(), bytes.data() + sizeof header, entries.size() * sizeof(Entry));
    for (const Entry& entry : entries) {
        if (entry.words < 1 || entry.words > kMostCodewords || entry.name[0] == '\0' || entry.name.back() != '\0') {
            throw InputError(path, "holds a model of another shape than this program uses");
        }
        size += entry.words * kVoiceFeatures * sizeof(Vorn32f);
    }
    checkSize(path, bytes, size);
    return entries;
}

}  // namespace

VoiceFrames voiceFrames(const std::vector<Labelled>& recordings) {
    VoiceFrames frames;
    for (const Labelled& recording : recordings) {
        std::vector<Vorn32f>& rows = frames[speaker(recording.path)];
        const std::vector<Vorn32f>& more = recording.analysis.features;
        rows.insert(rows.end(), more.begin(), more.end());
    }
    return frames;
}

Speakers trainSpeakers(const VoiceFrames& frames, int codewords, const std::function<void()>& step) {
    Speakers speakers;
    for (const auto& [name, rows] : frames) {
        const Codebook grown = Codebook::grown(rows, kVoiceFeatures, kRowStep, codewords);
        speakers.push_back({name, Codebook::of(grown.words(), kVoiceFeatures)});
        step();
    }
    return speakers;
}

void saveSpeakers(const Speakers& speakers, const fs::path& path) {
    Header header;
    header.speakers = static_cast<std::uint32_t>(speakers.size());
    std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
    for (const Speaker& speaker : speakers) {
        Entry entry;
        speaker.name.copy(entry.name.data(), kLongestName);
        entry.words = static_cast<std::uint32_t>(speaker.codebook.size());
        bytes.append(reinterpret_cast<const char*>(&entry), sizeof entry);
    }
    for (const Speaker& speaker : speakers) {
        const std::vector<Vorn32f> words = speaker.codebook.words();
        bytes.append(reinterpret_cast<const char*>(words.data()), words.size() * sizeof words[0]);
    }
    writeSealed(path, std::move(bytes));
}

Speakers loadSpeakers(const fs::path& path) {
    const std::string bytes = readModelFile(path);
    const Header header = checkedHeader(path, bytes);
    const std::vector<Entry> entries = checkedEntries(path, bytes, header);
    checkSeal(path, bytes);

    Speakers speakers;
    const char* at = bytes.data() + sizeof header + entries.size() * sizeof(Entry);
    for (const Entry& entry : entries) {
        std::vector<Vorn32f> words(entry.words * std::size_t{kVoiceFeatures});
        std::memcpy(words.data(), at, words.size() * sizeof words[0]);
        at += words.size() * sizeof words[0];
        speakers.push_back({entry.name.data(), Codebook::of(words, kVoiceFeatures)});
    }
    return speakers;
}

std::optional<int> indexOf(const Speakers& speakers, const std::string& name) {
    for (std::size_t i = 0; i < speakers.size(); ++i) {
        if (speakers[i].name == name) return static_cast<int>(i);
    }
    return std::nullopt;
}

Verdict::Verdict(std::vector<double> distortions) : distortion(std::move(distortions)) {
    best = static_cast<int>(std::min_element(distortion.begin(), distortion.end()) - distortion.begin());
}

int Verdict::bestBut(int speaker) const {
    int other = speaker == 0 ? 1 : 0;
    for (int i = 0; i < static_cast<int>(distortion.size()); ++i) {
        if (i != speaker && distortion[i] < distortion[other]) other = i;
    }
    return other;
}

double Verdict::ratio(int far, int near) const {
    return std::max(distortion[far], kLeastDistortion) / std::max(distortion[near], kLeastDistortion);
}

Verdict judge(const Speakers& speakers, const Stretch& frames) {
    std::vector<double> distortions;
    for (const Speaker& speaker : speakers) {
        distortions.push_back(sumOfSquares(speaker.codebook.nearest(frames).distance) / frames.height);
    }
    return Verdict(std::move(distortions));
}

}  // namespace digits
