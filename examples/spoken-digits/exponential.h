// exp(x) for the shares of training, in plain arithmetic, so that a model has the same bits with every run-time
// library.
#pragma once

namespace digits {

// For x from -87 to 87; relative error below 1e-7. Below -87 the result is 0.
float exponential(float x);

}  // namespace digits
