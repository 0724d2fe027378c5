// The small integers that a case is made from: drawn from a seed, or given as bytes (a replay line, a coverage-guided
// fuzzer). Zero always stands for the plainest choice, and behind the end of given bytes there are only zeros.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace fuzz {

class Decisions {
public:
    // From here on decisions are drawn, behind a first one, and kept so that the same case can be made again.
    void draw(std::uint64_t seed, std::uint8_t first);
    // From here on they are read from the bytes.
    void replay(std::vector<std::uint8_t> bytes);

    // 0..n-1.
    unsigned below(unsigned n) {
        if (n <= 1) return 0;
        const unsigned low = nextByte();
        if (n <= 256) return low % n;
        return (low | nextByte() << 8) % n;
    }
    // True once in n times, and never for a zero.
    bool rarely(unsigned n) { return below(n) == n - 1; }

    // The bytes decided so far.
    std::vector<std::uint8_t> used() const;

private:
    unsigned nextByte() {
        if (at_ == bytes_.size()) extend();
        return bytes_[at_++];
    }
    void extend();

    std::vector<std::uint8_t> bytes_;
    std::size_t at_ = 0;
    std::uint64_t state_ = 0;
    bool drawn_ = false;
};

std::string hexOf(const std::vector<std::uint8_t>& bytes);
// False if the text is not hexadecimal.
bool bytesOf(const std::string& hex, std::vector<std::uint8_t>& bytes);

}  // namespace fuzz
