// The covariance method of linear prediction.
#pragma once

#include "vornsr/types.h"

namespace vorn::prediction {

// The predictor of order terms, at most len, that the sums of products of the frame give. dst may overlap src.
VornStatus covariance(const Vorn32f* src, int len, Vorn32f* dst, int order);

}  // namespace vorn::prediction
