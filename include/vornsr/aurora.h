/* Speech in noise: noise reduction, waveform processing, voice activity detection and equalisation of a front-end of
 * distributed recognition. */
#ifndef VORNSR_AURORA_H
#define VORNSR_AURORA_H

#include "features.h"
#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_noise_reduction Noise reduction
 * @brief Steps of a two-stage Wiener filter: spectra, noise estimate, gain, impulse response.
 * @{
 */
VornStatus vornsSmoothedPowerSpectrumAurora_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsSmoothedPowerSpectrumAurora_16s(const Vorn16s* src, Vorn16s* dst, int len);
VornStatus vornsSmoothedPowerSpectrumAurora_32s_Sfs(const Vorn32s* src, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsSmoothedPowerSpectrumAurora_32s64s_Sfs(const Vorn32s* src, Vorn64s* dst, int len, int scaleFactor);
VornStatus vornsNoiseSpectrumUpdate_Aurora_32f(const Vorn32f* in, const Vorn32f* noise, Vorn32f* dst, int len);
VornStatus vornsNoiseSpectrumUpdate_Aurora_16s_Sfs(const Vorn16s* in, const Vorn16s* noise, Vorn16s* dst, int len,
                                                   int scaleFactor);
VornStatus vornsNoiseSpectrumUpdate_Aurora_32s_Sfs(const Vorn32s* in, const Vorn32s* noise, Vorn32s* dst, int len,
                                                   int scaleFactor);
VornStatus vornsWienerFilterDesign_Aurora_32f(const Vorn32f* in, const Vorn32f* noise, const Vorn32f* den, Vorn32f* dst,
                                              int len);
VornStatus vornsWienerFilterDesign_Aurora_16s(const Vorn16s* in, const Vorn16s* noise, const Vorn16s* den, Vorn16s* dst,
                                              int len);
VornStatus vornsTabsCalculation_Aurora_32f(const Vorn32f* src, Vorn32f* dst);
VornStatus vornsTabsCalculation_Aurora_16s(const Vorn16s* src, Vorn16s* dst);
VornStatus vornsResidualFilter_Aurora_32f(const Vorn32f* src, Vorn32f* dst, const Vorn32f* taps);
VornStatus vornsResidualFilter_Aurora_16s_Sfs(const Vorn16s* src, Vorn16s* dst, const Vorn16s* taps, int scaleFactor);
/** @} */

/**
 * @defgroup vornsr_aurora_banks Filter banks of noise reduction
 * @brief Filter banks whose every value is fixed: 25 bands to 4 kHz, and 3 bands of the band above.
 * @{
 */
VornStatus vornsMelFBankGetSizeLow_Aurora_32f(int* size);
VornStatus vornsMelFBankGetSizeHigh_Aurora_32f(int* size);
VornStatus vornsMelFBankGetSizeLow_Aurora_16s(int* size);
VornStatus vornsMelFBankGetSizeHigh_Aurora_16s(int* size);
VornStatus vornsMelFBankInitLow_Aurora_32f(Vorn8u* ctxMem);
VornStatus vornsMelFBankInitHigh_Aurora_32f(Vorn8u* ctxMem);
VornStatus vornsMelFBankInitLow_Aurora_16s(Vorn8u* ctxMem);
VornStatus vornsMelFBankInitHigh_Aurora_16s(Vorn8u* ctxMem);
VornStatus vornsMelFBankInitAllocLow_Aurora_32f(VornFBankState_32f** ctxOut);
VornStatus vornsMelFBankInitAllocHigh_Aurora_32f(VornFBankState_32f** ctxOut);
VornStatus vornsMelFBankInitAllocLow_Aurora_16s(VornFBankState_16s** ctxOut);
VornStatus vornsMelFBankInitAllocHigh_Aurora_16s(VornFBankState_16s** ctxOut);
/** @} */

/**
 * @defgroup vornsr_waveform Waveform processing
 * @brief The high-energy stretch behind each pitch period is raised, the rest lowered.
 * @{
 */
VornStatus vornsWaveProcessing_Aurora_32f(const Vorn32f* src, Vorn32f* dst);
VornStatus vornsWaveProcessing_Aurora_16s(const Vorn16s* src, Vorn16s* dst);
/** @} */

/**
 * @defgroup vornsr_detection Voice activity detection
 * @brief A decision a frame, from three measures and a ring of seven frames.
 * @{
 */
/** What a detector keeps between frames. */
typedef struct VornsVADState VornsVADState;

/** What a detector decides. */
typedef enum {
    vornVADSpeech = 1,    /**< speech */
    vornVADNonSpeech = 2, /**< no speech */
    vornVADUndecided = 4  /**< no decision for this call */
} VornVADDecision;

VornStatus vornsVADGetBufSize_Aurora_32f(int* size);
VornStatus vornsVADInit_Aurora_32f(VornsVADState* state);
VornStatus vornsVADDecision_Aurora_32f(const Vorn32f* bands, const Vorn32f* spectrum, int activity, int* result,
                                       VornsVADState* state);
VornStatus vornsVADFlush_Aurora_32f(int* result, VornsVADState* state);
VornStatus vornsVADGetBufSize_Aurora_16s(int* size);
VornStatus vornsVADInit_Aurora_16s(VornsVADState* state);
VornStatus vornsVADDecision_Aurora_16s(const Vorn16s* bands, const Vorn16s* spectrum, int activity, int* result,
                                       VornsVADState* state);
VornStatus vornsVADFlush_Aurora_16s(int* result, VornsVADState* state);
/** @} */

/**
 * @defgroup vornsr_equalisation Equalisation, bands and deltas
 * @brief Blind equalisation of cepstra, the split into two bands, coding of the high one, deltas.
 * @{
 */
VornStatus vornsBlindEqualization_Aurora_32f(const Vorn32f* ref, Vorn32f* srcDst, Vorn32f* bias, int len,
                                             Vorn32f energy);
VornStatus vornsBlindEqualization_Aurora_16s(const Vorn16s* ref, Vorn16s* srcDst, Vorn16s* bias, int len, int energy);
VornStatus vornsLowHighFilter_Aurora_32f(const Vorn32f* src, Vorn32f* dstLow, Vorn32f* dstHigh, int len,
                                         const Vorn32f* taps, int tapsLen);
VornStatus vornsLowHighFilter_Aurora_16s_Sfs(const Vorn16s* src, Vorn16s* dstLow, Vorn16s* dstHigh, int len,
                                             const Vorn16s* taps, int tapsLen, int scaleFactor);
VornStatus vornsHighBandCoding_Aurora_32f(const Vorn32f* highBands, const Vorn32f* lowSpec, const Vorn32f* highSpec,
                                          Vorn32f* dst);
VornStatus vornsHighBandCoding_Aurora_32s_Sfs(const Vorn32s* highBands, const Vorn32s* lowSpec, const Vorn32s* highSpec,
                                              Vorn32s* dst, int scaleFactor);
VornStatus vornsDeltaDelta_Aurora_32f_D2(const Vorn32f* src, Vorn32f* dst, int dstWidth, int height, int mode);
VornStatus vornsDeltaDeltaMul_Aurora_32f_D2(const Vorn32f* src, const Vorn32f* val, Vorn32f* dst, int dstWidth,
                                            int height, int mode);
VornStatus vornsDeltaDelta_Aurora_16s_D2Sfs(const Vorn16s* src, Vorn16s* dst, int dstWidth, int height, int mode,
                                            int scaleFactor);
VornStatus vornsDeltaDeltaMul_Aurora_16s_D2Sfs(const Vorn16s* src, const Vorn16s* val, Vorn16s* dst, int dstWidth,
                                               int height, int mode, int scaleFactor);
/** @} */

VORN_END_DECLS

#endif
