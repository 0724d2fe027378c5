// Noise tracking: the exported functions.
#include <bit>

#include "frame/checks.h"
#include "frame/rounding.h"
#include "noise/tracking/parameters.h"
#include "noise/tracking/update.h"
#include "vornsr/noise.h"

using namespace vorn;

namespace {
namespace tracker {

VornStatus rateHolds(int sampleFreq) { return require(sampleFreq >= 8000 && sampleFreq <= 48000, vornStsRangeErr); }
VornStatus hopHolds(int hop, int fftLen) { return require(hop >= 1 && hop <= fftLen / 2, vornStsRangeErr); }
VornStatus lengthHolds(int fftLen) { return require(fftLen >= 8 && fftLen <= 8192, vornStsSizeErr); }

// The frame advance is given, or half the length of the transform.
enum class Advance { Given, HalfLength };

// The arrays are the first update's.
template <class Parameters, Advance advance>
VORN_NOINLINE void initialise(int sampleFreq, int fftLen, int hop, VornsMCRAState* state) {
    tracking::Record<typename Parameters::Element> record{};
    record.sampleFreq = sampleFreq;
    record.fftLen = fftLen;
    record.halfBits = std::bit_width(static_cast<unsigned>(fftLen / 2));
    record.hop = hop;
    record.minWindow = advance == Advance::Given ? Parameters::windowOfHop(sampleFreq, hop)
                                                 : Parameters::windowOfHalfLength(sampleFreq, record.halfBits);
    record.firstFrame = 1;
    Parameters::set(record);
    tracking::placeArrays(record, state);
    tracking::write(record, state);
}

// Parameters and integer spectra are rounded to nearest whatever the caller's mode.
template <class Parameters, Advance advance>
void initialiseToNearest(int sampleFreq, int fftLen, int hop, VornsMCRAState* state) {
    const RoundingGuard guard(Rounding::Nearest);
    initialise<Parameters, advance>(sampleFreq, fftLen, hop, state);
}

}  // namespace tracker
}  // namespace

VornStatus vornsGetSizeMCRA_32f(int fftLen, int* size) {
    VORN_CHECK(notNull(size));
    VORN_CHECK(tracker::lengthHolds(fftLen));
    *size = tracking::sizeOf(fftLen);
    return vornStsNoErr;
}

VornStatus vornsGetSizeMCRA_32s(int fftLen, int* size) { return vornsGetSizeMCRA_32f(fftLen, size); }

VornStatus vornsInitMCRA_32f(int sampleFreq, int fftLen, VornsMCRAState* state) {
    VORN_CHECK(notNull(state));
    VORN_CHECK(tracker::rateHolds(sampleFreq));
    VORN_CHECK(tracker::lengthHolds(fftLen));
    tracker::initialiseToNearest<tracking::SingleParameters, tracker::Advance::HalfLength>(sampleFreq, fftLen,
                                                                                           fftLen / 2, state);
    return vornStsNoErr;
}

VornStatus vornsInitMCRA_32s(int sampleFreq, int fftLen, VornsMCRAState* state) {
    VORN_CHECK(notNull(state));
    VORN_CHECK(tracker::rateHolds(sampleFreq));
    VORN_CHECK(tracker::lengthHolds(fftLen));
    tracker::initialiseToNearest<tracking::FixedParameters, tracker::Advance::HalfLength>(sampleFreq, fftLen,
                                                                                          fftLen / 2, state);
    return vornStsNoErr;
}

VornStatus vornsAltInitMCRA_32f(int sampleFreq, int fftLen, int hop, VornsMCRAState* state) {
    VORN_CHECK(notNull(state));
    VORN_CHECK(tracker::rateHolds(sampleFreq));
    VORN_CHECK(tracker::hopHolds(hop, fftLen));
    VORN_CHECK(tracker::lengthHolds(fftLen));
    tracker::initialiseToNearest<tracking::SingleParameters, tracker::Advance::Given>(sampleFreq, fftLen, hop, state);
    return vornStsNoErr;
}

VornStatus vornsAltInitMCRA_32s(int sampleFreq, int fftLen, int hop, VornsMCRAState* state) {
    VORN_CHECK(notNull(state));
    VORN_CHECK(tracker::rateHolds(sampleFreq));
    VORN_CHECK(tracker::hopHolds(hop, fftLen));
    VORN_CHECK(tracker::lengthHolds(fftLen));
    tracker::initialiseToNearest<tracking::FixedParameters, tracker::Advance::Given>(sampleFreq, fftLen, hop, state);
    return vornStsNoErr;
}

VornStatus vornsUpdateNoisePSDMCRA_32f_I(const Vorn32f* in, VornsMCRAState* state, Vorn32f* noise) {
    VORN_CHECK(notNull(in, state, noise));
    tracking::update<tracking::SingleForm>(in, state, noise);
    return vornStsNoErr;
}

VornStatus vornsUpdateNoisePSDMCRA_32s_I(const Vorn32s* in, VornsMCRAState* state, Vorn32s* noise) {
    VORN_CHECK(notNull(in, state, noise));
    const RoundingGuard guard(Rounding::Nearest);
    tracking::update<tracking::FixedForm>(in, state, noise);
    return vornStsNoErr;
}
