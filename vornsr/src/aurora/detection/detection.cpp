// Voice activity detection: the exported functions.
#include "aurora/detection/detector.h"
#include "frame/checks.h"
#include "vornsr/aurora.h"

using namespace vorn;
using detection::recordAt, detection::Shorts, detection::Singles;

VornStatus vornsVADGetBufSize_Aurora_32f(int* size) {
    VORN_CHECK(notNull(size));
    *size = detection::recordBytes;
    return vornStsNoErr;
}

VornStatus vornsVADInit_Aurora_32f(VornsVADState* state) {
    VORN_CHECK(notNull(state));
    recordAt<Singles>(state) = {};
    return vornStsNoErr;
}

VornStatus vornsVADDecision_Aurora_32f(const Vorn32f* bands, const Vorn32f* spectrum, int activity, int* result,
                                       VornsVADState* state) {
    VORN_CHECK(notNull(state, bands, spectrum, result));
    *result = detection::Frame<Singles>(recordAt<Singles>(state)).decide(bands, spectrum, activity);
    return vornStsNoErr;
}

VornStatus vornsVADFlush_Aurora_32f(int* result, VornsVADState* state) {
    VORN_CHECK(notNull(result, state));
    *result = recordAt<Singles>(state).hangover.flush();
    return vornStsNoErr;
}

VornStatus vornsVADGetBufSize_Aurora_16s(int* size) { return vornsVADGetBufSize_Aurora_32f(size); }

VornStatus vornsVADInit_Aurora_16s(VornsVADState* state) {
    VORN_CHECK(notNull(state));
    recordAt<Shorts>(state) = {};
    return vornStsNoErr;
}

VornStatus vornsVADDecision_Aurora_16s(const Vorn16s* bands, const Vorn16s* spectrum, int activity, int* result,
                                       VornsVADState* state) {
    VORN_CHECK(notNull(state, bands, spectrum, result));
    *result = detection::Frame<Shorts>(recordAt<Shorts>(state)).decide(bands, spectrum, activity);
    return vornStsNoErr;
}

// The record's integers are all that it touches.
VornStatus vornsVADFlush_Aurora_16s(int* result, VornsVADState* state) {
    return vornsVADFlush_Aurora_32f(result, state);
}
