// Buffers that a function under test cannot leave unnoticed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <vector>

namespace test {

// The page behind the buffer is unmapped or, with VORNSR_GUARD=before in the environment, the page before it.
bool guardStandsBefore();

// Pages with an unmapped one on both sides.
class GuardedPages {
public:
    explicit GuardedPages(std::size_t bytes);
    ~GuardedPages();
    GuardedPages(const GuardedPages&) = delete;
    GuardedPages& operator=(const GuardedPages&) = delete;
    GuardedPages(GuardedPages&& other) noexcept;
    GuardedPages& operator=(GuardedPages&& other) noexcept;

    std::byte* begin() const { return begin_; }  // right behind the first unmapped page
    std::byte* end() const { return end_; }      // right before the last one

private:
    std::byte* map_ = nullptr;
    std::size_t mapBytes_ = 0;
    std::byte* begin_ = nullptr;
    std::byte* end_ = nullptr;
};

// len elements against the guard page, filled with a pattern. One element read or written too far faults on the guarded
// side; on the other side up to 64 pattern bytes are watched for writes.
template <class T>
class Guarded {
public:
    explicit Guarded(std::size_t len) : len_(len), pages_(len * sizeof(T) + 2 * margin) {
        data_ = reinterpret_cast<T*>(guardStandsBefore() ? pages_.begin() : pages_.end() - len * sizeof(T));
        fillPattern();
    }
    Guarded(std::initializer_list<T> values) : Guarded(std::vector<T>(values)) {}
    explicit Guarded(const std::vector<T>& values) : Guarded(values.size()) { assign(values); }

    T* data() const { return data_; }
    std::size_t size() const { return len_; }
    T& operator[](std::size_t i) const { return data_[i]; }
    operator T*() const { return data_; }
    T* begin() const { return data_; }
    T* end() const { return data_ + len_; }

    void assign(const std::vector<T>& values) {
        if (!values.empty()) std::memcpy(data_, values.data(), values.size() * sizeof(T));
    }
    std::vector<T> values() const { return std::vector<T>(data_, data_ + len_); }

    void fillPattern() {
        std::memset(pages_.begin(), pattern, static_cast<std::size_t>(pages_.end() - pages_.begin()));
    }

    // Nothing was written to the elements since fillPattern().
    bool untouched() const {
        return allPattern(reinterpret_cast<const std::byte*>(data_), reinterpret_cast<const std::byte*>(data_ + len_));
    }
    // Nothing was written outside the elements.
    bool surroundingsUntouched() const {
        return allPattern(pages_.begin(), reinterpret_cast<const std::byte*>(data_)) &&
               allPattern(reinterpret_cast<const std::byte*>(data_ + len_), pages_.end());
    }

private:
    static constexpr int pattern = 0xA5;
    static constexpr std::size_t margin = 64;
    static bool allPattern(const std::byte* from, const std::byte* to) {
        for (; from != to; ++from) {
            if (*from != std::byte{pattern}) return false;
        }
        return true;
    }

    std::size_t len_;
    GuardedPages pages_;
    T* data_;
};

// len elements at a chosen distance in bytes from a 64-byte address, with watched bytes around them.
template <class T>
class Offset {
public:
    Offset(std::size_t len, std::size_t bytes)
        : len_(len), bytes_(bytes), block_(len * sizeof(T) + bytes + 3 * margin, pattern) {}
    T* data() {
        auto address = reinterpret_cast<std::uintptr_t>(block_.data());
        address = (address + margin + 63) / 64 * 64 + bytes_;
        return reinterpret_cast<T*>(address);
    }
    std::size_t size() const { return len_; }
    T& operator[](std::size_t i) { return data()[i]; }
    operator T*() { return data(); }
    void assign(const std::vector<T>& values) {
        if (!values.empty()) std::memcpy(data(), values.data(), values.size() * sizeof(T));
    }
    std::vector<T> values() { return std::vector<T>(data(), data() + len_); }
    bool surroundingsUntouched() {
        const auto* first = reinterpret_cast<unsigned char*>(data());
        const auto* last = reinterpret_cast<unsigned char*>(data() + len_);
        for (const unsigned char& byte : block_) {
            if ((&byte < first || &byte >= last) && byte != pattern) return false;
        }
        return true;
    }

private:
    static constexpr unsigned char pattern = 0xA5;
    static constexpr std::size_t margin = 128;
    std::size_t len_, bytes_;
    std::vector<unsigned char> block_;
};

}  // namespace test
