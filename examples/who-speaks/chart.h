// Curves over an axis of doublings.
#pragma once

#include <string>
#include <vector>

namespace digits {

struct Series {
    std::string name;
    std::vector<double> values;
};

struct Chart {
    const char* title;
    const char* across;              // what the axis counts
    const char* unit;                // of the values: text behind each number of the axis upward
    std::vector<double> at;          // above 0
    std::vector<std::string> marks;  // under the axis, one at each place
    std::vector<Series> series;      // three at most
    double least, most;              // of the axis upward, before some room around the curves
};

std::string draw(const Chart& chart);

}  // namespace digits
