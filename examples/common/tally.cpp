#include "tally.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "svg.h"

namespace digits {
namespace {

std::size_t longestOf(const std::vector<std::string>& names) {
    std::size_t longest = 0;
    for (const std::string& name : names) longest = std::max(longest, name.size());
    return longest;
}

}  // namespace

Tally::Tally(std::vector<std::string> all)
    : names(std::move(all)), confusion(names.size(), std::vector<int>(names.size(), 0)) {}

void Tally::count(int truth, const std::optional<int>& recognised) {
    ++known;
    right += recognised == truth;
    if (recognised) ++confusion[truth][*recognised];
}

int Tally::of(int truth) const { return std::accumulate(confusion[truth].begin(), confusion[truth].end(), 0); }

std::array<double, 2> confidence(int right, int known) {
    const double n = known, p = right / n, z = 1.959964, zz = z * z / n;
    const double middle = p + zz / 2, half = z * std::sqrt(p * (1 - p) / n + zz / (4 * n));
    return {100 * (middle - half) / (1 + zz), 100 * (middle + half) / (1 + zz)};
}

void printConfusion(std::FILE* to, const Tally& counts, const char* truth) {
    const int width = static_cast<int>(longestOf(counts.names)) + 1;
    std::fprintf(to, "confusion matrix (rows: %s, columns: recognised)\n  %*s", truth, width, "");
    for (const std::string& name : counts.names) std::fprintf(to, "%*s", width, name.c_str());
    std::fputc('\n', to);
    for (std::size_t row = 0; row < counts.names.size(); ++row) {
        std::fprintf(to, "  %-*s", width, counts.names[row].c_str());
        for (const int count : counts.confusion[row]) {
            if (count > 0) {
                std::fprintf(to, "%*d", width, count);
            } else {
                std::fprintf(to, "%*s", width, ".");
            }
        }
        std::fputc('\n', to);
    }
}

std::string confusionFigure(const Tally& counts, const char* truth) {
    constexpr double kX = 76, kY = 52;
    const double cell = std::max(46.0, 7.2 * static_cast<double>(longestOf(counts.names)) + 5);
    const int all = static_cast<int>(counts.names.size());
    Sheet sheet(kX + all * cell + 70, "Confusion matrix");
    sheet.text(kX + all * cell / 2, 16, "recognised", "title", "middle");
    sheet.text(8, kY - 10, truth, "title");
    sheet.text(kX + all * cell + 12, kY - 10, "right", "title");
    for (int row = 0; row < all; ++row) {
        const char* const name = counts.names[row].c_str();
        const double middle = (row + 0.5) * cell;
        const int known = counts.of(row);
        sheet.text(kX + middle, kY - 10, name, "label", "middle");
        sheet.text(kX - 10, kY + middle + 4, name, "label", "end");
        if (known > 0) {
            sheet.text(kX + all * cell + 12, kY + middle + 4,
                       format("%.1f %%", 100.0 * counts.confusion[row][row] / known), "label");
        }
        for (int other = 0; other < all; ++other) {
            const int count = counts.confusion[row][other];
            const double x = kX + other * cell, y = kY + row * cell;
            const double share = known > 0 ? double(count) / known : 0.0;
            const char* hue = row == other ? "var(--good)" : "var(--bad)";
            // A single confusion must be seen too: colours begin well above nothing.
            const double strength = count == 0 ? 0.0 : row == other ? 15 + 80 * share : 35 + 60 * share;
            sheet.box(x + 1, y + 1, cell - 2, cell - 2, "cell",
                      format("%s taken for %s: %d of %d", name, counts.names[other].c_str(), count, known),
                      format("color-mix(in srgb, %s %.0f%%, var(--cell))", hue, strength));
            if (count > 0) {
                sheet.text(x + cell / 2, y + cell / 2 + 5, format("%d", count),
                           strength > 70 ? "count bright" : "count", "middle");
            }
        }
    }
    return sheet.finish(kY + all * cell + 6);
}

}  // namespace digits
