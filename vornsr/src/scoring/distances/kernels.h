// Distances: the kernels. They check nothing; any address will do.
#pragma once

#include "vornsr/types.h"

VORN_BEGIN_DECLS

// S of one vector, summed as for aligned vectors wherever these stand.
void sMahDistSingle_32f_M7(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, Vorn64s len, Vorn32f* result);
void sMahDistSingle_32f_M7_Al(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, Vorn64s len,
                              Vorn32f* result);
void sMahDistSingle_64f_M7(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var, Vorn64s len, Vorn64f* result);
void sMahDistSingle_64f_M7_Al(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var, Vorn64s len,
                              Vorn64f* result);
void vornsMahDistSingle_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, Vorn64s len,
                                  Vorn32f* result);

// The exact sum x 2^-scaleFactor, not rounded but saturated.
void vornsMahDistSingle_16s32s_Sfs_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, Vorn64s len,
                                      Vorn32s* result, int scaleFactor);

// Many vectors, one Gaussian.
void sMahDist_32f_D2_M7(const Vorn32f* src, Vorn64s step, const Vorn32f* mean, const Vorn32f* var, Vorn64s len,
                        Vorn32f* result, Vorn64s height);
void sMahDist_32f_D2_M7_Al(const Vorn32f* src, Vorn64s step, const Vorn32f* mean, const Vorn32f* var, Vorn64s len,
                           Vorn32f* result, Vorn64s height);
void sMahDist_32f_D2L_M7(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var, Vorn64s len,
                         Vorn32f* result, Vorn64s height);
void sMahDist_32f_D2L_M7_Al(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var, Vorn64s len,
                            Vorn32f* result, Vorn64s height);
void sMahDist_64f_D2_M7(const Vorn64f* src, Vorn64s step, const Vorn64f* mean, const Vorn64f* var, Vorn64s len,
                        Vorn64f* result, Vorn64s height);
void sMahDist_64f_D2_M7_Al(const Vorn64f* src, Vorn64s step, const Vorn64f* mean, const Vorn64f* var, Vorn64s len,
                           Vorn64f* result, Vorn64s height);
void sMahDist_64f_D2L_M7(const Vorn64f* const* src, const Vorn64f* mean, const Vorn64f* var, Vorn64s len,
                         Vorn64f* result, Vorn64s height);
void sMahDist_64f_D2L_M7_Al(const Vorn64f* const* src, const Vorn64f* mean, const Vorn64f* var, Vorn64s len,
                            Vorn64f* result, Vorn64s height);

// One vector, many Gaussians.
void sMahDist2_32f_D2_M7(const Vorn32f* mean, const Vorn32f* var, Vorn64s step, const Vorn32f* src, Vorn64s len,
                         Vorn32f* result, Vorn64s height);
void sMahDist2_32f_D2_M7_Al(const Vorn32f* mean, const Vorn32f* var, Vorn64s step, const Vorn32f* src, Vorn64s len,
                            Vorn32f* result, Vorn64s height);
void sMahDist2_32f_D2L_M7(const Vorn32f* const* mean, const Vorn32f* const* var, const Vorn32f* src, Vorn64s len,
                          Vorn32f* result, Vorn64s height);
void sMahDist2_32f_D2L_M7_Al(const Vorn32f* const* mean, const Vorn32f* const* var, const Vorn32f* src, Vorn64s len,
                             Vorn32f* result, Vorn64s height);
void sMahDist2_64f_D2_M7(const Vorn64f* mean, const Vorn64f* var, Vorn64s step, const Vorn64f* src, Vorn64s len,
                         Vorn64f* result, Vorn64s height);
void sMahDist2_64f_D2_M7_Al(const Vorn64f* mean, const Vorn64f* var, Vorn64s step, const Vorn64f* src, Vorn64s len,
                            Vorn64f* result, Vorn64s height);
void sMahDist2_64f_D2L_M7(const Vorn64f* const* mean, const Vorn64f* const* var, const Vorn64f* src, Vorn64s len,
                          Vorn64f* result, Vorn64s height);
void sMahDist2_64f_D2L_M7_Al(const Vorn64f* const* mean, const Vorn64f* const* var, const Vorn64f* src, Vorn64s len,
                             Vorn64f* result, Vorn64s height);

// The scan of the four vectors: 1 if the first group with a fault has a negative value, 2 if it has zeros only, 0 if
// there is none.
int vornsBhatDistCmp_32f_M7(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                            Vorn64s len);
int vornsBhatDistCmp_32f_M7_Al(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                               Vorn64s len);

// K, and the terms whose logarithms are summed: one a column in single; in double one for every four columns, with
// those behind them in the last one, and one alone for fewer than four.
void vornsBhatDist_32f_M7(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                          Vorn64s len, Vorn32f* terms, Vorn32f* k);
void vornsBhatDist_32f_M7_Al(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                             Vorn64s len, Vorn32f* terms, Vorn32f* k);
void vornsBhatDistSLog_32f_M7(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                              Vorn64s len, Vorn32f* terms, Vorn32f* k);
void vornsBhatDistSLog_32f_M7_Al(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                                 Vorn64s len, Vorn32f* terms, Vorn32f* k);
void vornsBhatDist_32f64f_M7(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                             Vorn64s len, Vorn64f* products, Vorn64f* k);
void vornsBhatDist_32f64f_M7_Al(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                                Vorn64s len, Vorn64f* products, Vorn64f* k);
void vornsBhatDistSLog_32f64f_M7(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                                 Vorn64s len, Vorn64f* products, Vorn64f* k);
void vornsBhatDistSLog_32f64f_M7_Al(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2,
                                    const Vorn32f* var2, Vorn64s len, Vorn64f* products, Vorn64f* k);

VORN_END_DECLS
