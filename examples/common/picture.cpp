// PNG (ISO/IEC 15948) without compression: the pictures here have a few thousand pixels.
#include "picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace digits {
namespace {

Colour between(std::span<const Colour> stops, double value) {
    const double at = std::clamp(value, 0.0, 1.0) * static_cast<double>(stops.size() - 1);
    const auto i = std::min(static_cast<std::size_t>(at), stops.size() - 2);
    const double share = at - static_cast<double>(i);
    const auto mix = [&](std::uint8_t a, std::uint8_t b) {
        return static_cast<std::uint8_t>(std::lround(a + share * (b - a)));
    };
    const Colour &a = stops[i], &b = stops[i + 1];
    return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue)};
}

std::string bigEndian(std::uint32_t value) {
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
            static_cast<char>(value)};
}

std::uint32_t crc32(std::string_view bytes) {
    std::uint32_t crc = 0xffffffffu;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ (crc & 1 ? 0xedb88320u : 0);
    }
    return ~crc;
}

std::uint32_t adler32(std::string_view bytes) {
    std::uint32_t a = 1, b = 0;
    for (const char byte : bytes) {
        a = (a + static_cast<unsigned char>(byte)) % 65521;
        b = (b + a) % 65521;
    }
    return b << 16 | a;
}

std::string chunk(const char* type, std::string_view data) {
    const std::string body = std::string(type, 4).append(data);
    return bigEndian(static_cast<std::uint32_t>(data.size())) + body + bigEndian(crc32(body));
}

// A zlib stream (RFC 1950) of stored blocks (RFC 1951).
std::string stored(std::string_view bytes) {
    std::string stream = "\x78\x01";
    std::size_t at = 0;
    do {
        const std::size_t length = std::min<std::size_t>(bytes.size() - at, 65535);
        stream += static_cast<char>(at + length == bytes.size());
        for (const std::size_t word : {length, ~length}) {
            stream += static_cast<char>(word & 255);
            stream += static_cast<char>(word >> 8 & 255);
        }
        stream += bytes.substr(at, length);
        at += length;
    } while (at < bytes.size());
    return stream + bigEndian(adler32(bytes));
}

}  // namespace

Colour heat(double value) {
    // Stops of "magma" (Smith and van der Walt, 2015), whose lightness rises evenly.
    static constexpr Colour kStops[] = {{0, 0, 4},      {28, 16, 68},   {79, 18, 123},   {129, 37, 129}, {181, 54, 122},
                                        {229, 80, 100}, {251, 135, 97}, {254, 194, 135}, {252, 253, 191}};
    return between(kStops, value);
}

Colour balance(double value) {
    static constexpr Colour kStops[] = {{24, 56, 120},   {57, 120, 190}, {146, 190, 223}, {240, 241, 242},
                                        {240, 176, 142}, {205, 84, 72},  {122, 16, 40}};
    return between(kStops, 0.5 + 0.5 * value);
}

std::string base64(std::string_view bytes) {
    static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            group = group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0u);
        }
        for (std::size_t k = 0; k < 4; ++k) text += i + k <= bytes.size() ? kDigits[group >> (18 - 6 * k) & 63] : '=';
    }
    return text;
}

std::string pngAddress(int width, int height, const std::function<Colour(int x, int y)>& pixel) {
    std::string rows;
    for (int y = 0; y < height; ++y) {
        rows += '\0';  // no filter
        for (int x = 0; x < width; ++x) {
            const Colour colour = pixel(x, y);
            rows.append(
                {static_cast<char>(colour.red), static_cast<char>(colour.green), static_cast<char>(colour.blue)});
        }
    }
    // Eight bits a channel, red, green and blue, no interlace.
    const std::string header = bigEndian(static_cast<std::uint32_t>(width)) +
                               bigEndian(static_cast<std::uint32_t>(height)) + std::string("\x08\x02\0\0\0", 5);
    const std::string png =
        "\x89PNG\r\n\x1a\n" + chunk("IHDR", header) + chunk("IDAT", stored(rows)) + chunk("IEND", "");
    return "data:image/png;base64," + base64(png);
}

}  // namespace digits
