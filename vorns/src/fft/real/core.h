// Transforms of N = 2^order real values on a complex transform of half the length.
#pragma once

#include "fft/contexts/spec.h"

namespace vorn::fft {

// The spectrum in Perm layout; src may be dst.
template <class T>
void realForward(const FloatSpec<T>& spec, const T* src, T* dst, T* work);

// From a spectrum whose pair k stands at spectrum[2k], spectrum[2k + 1], with Xr[0] at spectrum[0] and Xr[N/2] given;
// spectrum may be dst.
template <class T>
void realInverse(const FloatSpec<T>& spec, const T* spectrum, T nyquist, T* dst, T* work);

}  // namespace vorn::fft
