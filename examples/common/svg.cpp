// SVG elements as text. The looks of the styles are in the page's own sheet, so that light and dark work alike.
#include "svg.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>

namespace digits {

std::string format(const char* pattern, ...) {
    va_list arguments, again;
    va_start(arguments, pattern);
    va_copy(again, arguments);
    std::string text(static_cast<std::size_t>(std::vsnprintf(nullptr, 0, pattern, arguments)), '\0');
    std::vsnprintf(text.data(), text.size() + 1, pattern, again);
    va_end(again);
    va_end(arguments);
    return text;
}

std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += c;
        }
    }
    return result;
}

std::string grouped(long long value) {
    std::string digits = std::to_string(value);
    for (std::size_t at = digits.size(); at > 3;) digits.insert(at -= 3, "&thinsp;");
    return digits;
}

std::vector<double> Axis::ticks(int about) const {
    const double low = std::min(from, to), high = std::max(from, to);
    const double rough = (high - low) / about;
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    const double step = power * (rough < 1.5 * power ? 1 : rough < 3.5 * power ? 2 : rough < 7.5 * power ? 5 : 10);
    std::vector<double> values;
    for (double k = std::ceil(low / step - 1e-9); k * step <= high + 1e-9 * step; ++k)
        values.push_back(k * step + 0.0);  // no minus before a zero
    return values;
}

void Sheet::text(double x, double y, const std::string& content, const char* style, const char* anchor) {
    body_ += format("<text x='%.1f' y='%.1f' class='%s' text-anchor='%s'>", x, y, style, anchor) + escaped(content) +
             "</text>\n";
}

void Sheet::line(double x1, double y1, double x2, double y2, const char* style) {
    body_ += format("<line x1='%.1f' y1='%.1f' x2='%.1f' y2='%.1f' class='%s'/>\n", x1, y1, x2, y2, style);
}

void Sheet::box(double x, double y, double width, double height, const char* style, const std::string& tip,
                const std::string& fill) {
    body_ += format("<rect x='%.1f' y='%.1f' width='%.1f' height='%.1f' class='%s'", x, y, width, height, style);
    if (!fill.empty()) body_ += " style='fill:" + fill + "'";
    body_ += tip.empty() ? "/>\n" : "><title>" + escaped(tip) + "</title></rect>\n";
}

void Sheet::curve(const std::vector<double>& x, const std::vector<double>& y, const char* style) {
    body_ += format("<polyline class='%s' points='", style);
    for (std::size_t i = 0; i < x.size(); ++i) body_ += format("%.1f,%.1f ", x[i], y[i]);
    body_ += "'/>\n";
}

void Sheet::area(const std::vector<double>& x, const std::vector<double>& low, const std::vector<double>& high,
                 const char* style) {
    body_ += format("<polygon class='%s' points='", style);
    for (std::size_t i = 0; i < x.size(); ++i) body_ += format("%.1f,%.1f ", x[i], high[i]);
    for (std::size_t i = x.size(); i-- > 0;) body_ += format("%.1f,%.1f ", x[i], low[i]);
    body_ += "'/>\n";
}

void Sheet::picture(double x, double y, double width, double height, const std::string& address, const char* style) {
    body_ += format("<image x='%.1f' y='%.1f' width='%.1f' height='%.1f' preserveAspectRatio='none' class='%s' href='",
                    x, y, width, height, style) +
             address + "'/>\n";
}

std::string Sheet::finish(double height) const {
    return format("<svg viewBox='0 0 %.0f %.0f' role='img' aria-label='", width_, height) + escaped(title_) + "'>\n" +
           body_ + "</svg>\n";
}

}  // namespace digits
