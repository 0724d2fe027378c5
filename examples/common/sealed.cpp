#include "sealed.h"

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>

#include "input_error.h"

namespace digits {
namespace {

namespace fs = std::filesystem;

using Seal = std::uint64_t;
static_assert(sizeof(Seal) == kSealSize);

// FNV-1a (Fowler, Noll, Vo, 1991).
Seal checksum(const char* bytes, std::size_t count) {
    Seal hash = 14695981039346656037u;
    for (std::size_t i = 0; i < count; ++i) hash = (hash ^ static_cast<unsigned char>(bytes[i])) * 1099511628211u;
    return hash;
}

}  // namespace

void writeSealed(const fs::path& path, std::string bytes) {
    const Seal seal = checksum(bytes.data(), bytes.size());
    bytes.append(reinterpret_cast<const char*>(&seal), sizeof seal);
    std::ofstream file(path, std::ios::binary);
    if (!file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) {
        throw InputError(path, "cannot be written");
    }
}

std::string readModelFile(const fs::path& path) {
    std::error_code error;
    if (!fs::exists(path, error)) throw InputError(path, "there is no such model file");
    if (fs::is_directory(path, error)) throw InputError(path, "is a directory, not a model file");
    std::ifstream file(path, std::ios::binary);
    if (!file) throw InputError(path, "cannot be opened for reading");
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void checkSize(const fs::path& path, const std::string& bytes, std::size_t unsealed) {
    const std::size_t needed = unsealed + sizeof(Seal);
    if (bytes.size() == needed) return;
    throw InputError(
        path, "has " + std::to_string(bytes.size()) + " bytes where its header asks for " + std::to_string(needed));
}

void checkSeal(const fs::path& path, const std::string& bytes) {
    Seal seal = 0;
    std::memcpy(&seal, bytes.data() + bytes.size() - sizeof seal, sizeof seal);
    if (seal != checksum(bytes.data(), bytes.size() - sizeof seal)) {
        throw InputError(path, "is damaged: its checksum does not agree with its contents");
    }
}

}  // namespace digits
