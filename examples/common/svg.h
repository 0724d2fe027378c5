// Drawing in SVG: a sheet that collects elements, and linear axes with round ticks.
#pragma once

#include <string>
#include <vector>

namespace digits {

std::string format(const char* pattern, ...) __attribute__((format(printf, 1, 2)));
std::string escaped(const std::string& text);
std::string grouped(long long value);  // 1234567 as 1 234 567

// A straight scale from values to places on the sheet.
struct Axis {
    double from, to;
    double placeFrom, placeTo;

    double operator()(double value) const { return placeFrom + (value - from) / (to - from) * (placeTo - placeFrom); }
    // Round values, roughly the given number of them.
    std::vector<double> ticks(int about) const;
};

class Sheet {
public:
    Sheet(double width, std::string title) : width_(width), title_(std::move(title)) {}

    void text(double x, double y, const std::string& content, const char* style, const char* anchor = "start");
    void line(double x1, double y1, double x2, double y2, const char* style);
    void box(double x, double y, double width, double height, const char* style, const std::string& tip = {},
             const std::string& fill = {});
    void curve(const std::vector<double>& x, const std::vector<double>& y, const char* style);
    void area(const std::vector<double>& x, const std::vector<double>& low, const std::vector<double>& high,
              const char* style);
    void picture(double x, double y, double width, double height, const std::string& address, const char* style);

    // The whole element; it scales with the page.
    std::string finish(double height) const;

private:
    double width_;
    std::string title_;
    std::string body_;
};

}  // namespace digits
