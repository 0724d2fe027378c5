/* Noise and pitch: tracking of noise, suppression gains, periodicity and pitch. */
#ifndef VORNSR_NOISE_H
#define VORNSR_NOISE_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_noise_tracking Noise tracking
 * @brief The power spectrum of the noise, tracked by averages that minima control.
 * @{
 */
/** What a noise tracker keeps between frames. */
typedef struct VornsMCRAState VornsMCRAState;

VornStatus vornsGetSizeMCRA_32f(int fftLen, int* size);
VornStatus vornsInitMCRA_32f(int sampleFreq, int fftLen, VornsMCRAState* state);
VornStatus vornsAltInitMCRA_32f(int sampleFreq, int fftLen, int hop, VornsMCRAState* state);
VornStatus vornsUpdateNoisePSDMCRA_32f_I(const Vorn32f* in, VornsMCRAState* state, Vorn32f* noise);
VornStatus vornsGetSizeMCRA_32s(int fftLen, int* size);
VornStatus vornsInitMCRA_32s(int sampleFreq, int fftLen, VornsMCRAState* state);
VornStatus vornsAltInitMCRA_32s(int sampleFreq, int fftLen, int hop, VornsMCRAState* state);
VornStatus vornsUpdateNoisePSDMCRA_32s_I(const Vorn32s* in, VornsMCRAState* state, Vorn32s* noise);
/** @} */

/**
 * @defgroup vornsr_suppression Noise suppression gains
 * @brief Gains of spectra by the Wiener rule and by the rule of Ephraim and Malah.
 * @{
 */
VornStatus vornsFilterUpdateWiener_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsFilterUpdateEMNS_32f(const Vorn32f* wiener, const Vorn32f* postSNR, Vorn32f* dst, int len);
VornStatus vornsFilterUpdateWiener_32s(const Vorn32s* src, Vorn32s* dst, int len);
VornStatus vornsFilterUpdateEMNS_32s(const Vorn32s* wiener, const Vorn32s* postSNR, Vorn32s* dst, int len);
/** @} */

/**
 * @defgroup vornsr_periodicity Periodicity and pitch
 * @brief Periods, peaks, pitch marks and correlations of lags.
 * @{
 */
VornStatus vornsPeriodicity_32f(const Vorn32f* src, int len, Vorn32f* periodicity, int* period, int maxPeriod,
                                int minPeriod);
VornStatus vornsPeriodicity_32s16s(const Vorn32s* src, int len, Vorn16s* periodicity, int* period, int maxPeriod,
                                   int minPeriod);
VornStatus vornsPeriodicityLSPE_32f(const Vorn32f* src, int len, Vorn32f* periodicity, int* period, int maxPeriod,
                                    int minPeriod);
VornStatus vornsPeriodicityLSPE_16s(const Vorn16s* src, int len, Vorn16s* periodicity, int* period, int maxPeriod,
                                    int minPeriod);
VornStatus vornsFindPeaks_32f8u(const Vorn32f* src, Vorn8u* dst, int len, int searchSize, int movingAvgSize);
VornStatus vornsFindPeaks_32s8u(const Vorn32s* src, Vorn8u* dst, int len, int searchSize, int movingAvgSize);
VornStatus vornsPitchmarkToF0Cand_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsPitchmarkToF0Cand_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsCrossCorrCoeff_16s32f(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn32f* dst);
VornStatus vornsCrossCorrCoeffPartial_16s32f(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn32f* dst,
                                             Vorn32f energy);
VornStatus vornsCrossCorrCoeffDecim_16s32f(const Vorn16s* src1, const Vorn16s* src2, int maxLen, int minLen,
                                           Vorn32f* dst, int dec);
VornStatus vornsCrossCorrCoeffInterpolation_16s32f(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn32f* frac,
                                                   Vorn32f* coeff);
/** @} */

VORN_END_DECLS

#endif
