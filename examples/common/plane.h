// Rows of numbers as points of a plane: their first two principal components.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "vornsr.h"

namespace digits {

struct Plane {
    // The place of another row. It has as many elements as those that the plane is made of.
    std::array<double, 2> place(const Vorn32f* row) const;

    std::vector<std::array<double, 2>> places;  // one a row
    std::array<double, 2> shares;               // of the whole variance, along each direction

    std::vector<Vorn32f> mean, scale;               // of each element: it is (row - mean) scale
    std::array<std::vector<double>, 2> directions;  // of length one
};

// The plane in which the rows, brought to mean 0 and deviation 1 in every element, vary most: the first two columns of
// U W, where U W V' is their singular value decomposition. None for fewer than three rows, or where nothing varies.
//
// H. Hotelling, "Analysis of a complex of statistical variables into principal components", 1933.
std::optional<Plane> principalPlane(std::vector<Vorn32f> rows, int width);

}  // namespace digits
