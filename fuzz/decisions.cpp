// Where decisions come from.
#include "decisions.h"

#include <cstring>

#include "random.h"

namespace fuzz {

void Decisions::draw(std::uint64_t seed, std::uint8_t first) {
    bytes_.assign(1, first);
    at_ = 0;
    state_ = seed;
    drawn_ = true;
}

void Decisions::replay(std::vector<std::uint8_t> bytes) {
    bytes_ = std::move(bytes);
    at_ = 0;
    drawn_ = false;
}

void Decisions::extend() {
    const std::uint64_t more = drawn_ ? nextRandom(state_) : 0;
    std::uint8_t parts[sizeof more];
    std::memcpy(parts, &more, sizeof more);
    bytes_.insert(bytes_.end(), parts, parts + sizeof parts);
}

std::vector<std::uint8_t> Decisions::used() const { return {bytes_.begin(), bytes_.begin() + at_}; }

std::string hexOf(const std::vector<std::uint8_t>& bytes) {
    std::string hex;
    for (const std::uint8_t byte : bytes) {
        hex += "0123456789abcdef"[byte >> 4];
        hex += "0123456789abcdef"[byte & 15];
    }
    return hex;
}

bool bytesOf(const std::string& hex, std::vector<std::uint8_t>& bytes) {
    if (hex.size() % 2 != 0 || hex.find_first_not_of("0123456789abcdef") != std::string::npos) return false;
    bytes.clear();
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(hex.substr(i, 2), nullptr, 16)));
    }
    return true;
}

}  // namespace fuzz
