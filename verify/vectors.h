// Workloads of the functions of vectors: what a function is run on follows from its type.
#pragma once

#include <functional>

#include "workload.h"

namespace verify {

// Draws the operands, constants last, calls the function and adds its status and what it wrote. extra: the scale factor
// or the hint.
using Draw = std::function<Array(Role, Element)>;
void callOnce(Digest& digest, const calls::Function& function, int len, int extra, const Draw& draw);

// Ordinary values between low and high, and any bit pattern, of each length and with each scale factor or hint.
Workload onVectors(const calls::Function& function, double low = -1000.0, double high = 1000.0);

}  // namespace verify

#define VECTORS(function, ...) onVectors({VORN_NAMED(function), calls::elementWiseShapes} __VA_OPT__(, ) __VA_ARGS__)
