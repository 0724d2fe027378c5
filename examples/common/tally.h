// Counts of what was taken for what, as text and as a picture.
#pragma once

#include <array>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace digits {

struct Tally {
    explicit Tally(std::vector<std::string> names);

    // One that is known. What was recognised as nothing counts as wrong, in no column.
    void count(int truth, const std::optional<int>& recognised);

    double accuracy() const { return known > 0 ? 100.0 * right / known : 0.0; }
    int of(int truth) const;

    std::vector<std::string> names;
    std::vector<std::vector<int>> confusion;  // row: what was true, column: what was recognised
    int known = 0;
    int right = 0;
};

// The interval that holds the true share of right ones with 95 % confidence, in per cent (Wilson, 1927).
std::array<double, 2> confidence(int right, int known);

void printConfusion(std::FILE* to, const Tally& counts, const char* truth);

std::string confusionFigure(const Tally& counts, const char* truth);

}  // namespace digits
