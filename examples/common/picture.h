// Pictures of matrices as PNG data in a page: colour maps, the PNG format, base64.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace digits {

struct Colour {
    std::uint8_t red, green, blue;
};

// For values from 0 (dark) to 1 (bright); what lies outside takes the colour of the end.
Colour heat(double value);

// For values from -1 (blue) over 0 (near white) to 1 (red).
Colour balance(double value);

std::string base64(std::string_view bytes);

// A picture of width by height pixels as a "data:" address. pixel(x, y) has y = 0 at the top.
std::string pngAddress(int width, int height, const std::function<Colour(int x, int y)>& pixel);

}  // namespace digits
