// Gaussian scores of one vector: the kernels. They check nothing; any address will do.
#pragma once

#include "vornsr/types.h"

VORN_BEGIN_DECLS

// 0.5 x (2 x val - S).
void vornsLGaussSingle_32f_M7(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len, Vorn32f* result,
                              const Vorn32f* val);
void vornsLGaussSingle_32f_M7_Al(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len, Vorn32f* result,
                                 const Vorn32f* val);
void vornsLGaussSingle_IdVar_32f_M7(const Vorn32f* src, const Vorn32f* mean, int len, Vorn32f* result,
                                    const Vorn32f* val);
void vornsLGaussSingle_IdVar_32f_M7_Al(const Vorn32f* src, const Vorn32f* mean, int len, Vorn32f* result,
                                       const Vorn32f* val);

// val - S x 0.5, S in two pairs of lanes whatever the addresses; DirectVar divides.
void ownvornsLogGaussSingle_IdVar_64f_W7(const Vorn64f* src, const Vorn64f* mean, int len, Vorn64f* result,
                                         const Vorn64f* val);
void ownvornsLogGaussSingle_IdVar_64f_W7Al(const Vorn64f* src, const Vorn64f* mean, int len, Vorn64f* result,
                                           const Vorn64f* val);
void ownvornsLogGaussSingle_DirectVar_64f_W7(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                             Vorn64f* result, const Vorn64f* val);
void ownvornsLogGaussSingle_DirectVar_64f_W7Al(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                               Vorn64f* result, const Vorn64f* val);

// val - S x scale.
void vornsLGaussSingle_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len, Vorn32f* result,
                                 const Vorn32f* val, const Vorn32f* scale);
void vornsLGaussSingle_16s32f_M7_Al(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                    Vorn32f* result, const Vorn32f* val, const Vorn32f* scale);
void vornsLGaussSingle_IdVar_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32f* result,
                                       const Vorn32f* val, const Vorn32f* scale);
void vornsLGaussSingle_IdVar_16s32f_M7_Al(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32f* result,
                                          const Vorn32f* val, const Vorn32f* scale);

// val - (S x 0.5) x scale, over the inverses of the variances.
void vornsLGaussSingle_DirectVarScaled_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn32f* inverse,
                                                 int len, Vorn32f* result, const Vorn32f* val, const Vorn32f* scale);
void vornsLGaussSingle_DirectVarScaled_16s32f_M7_Al(const Vorn16s* src, const Vorn16s* mean, const Vorn32f* inverse,
                                                    int len, Vorn32f* result, const Vorn32f* val, const Vorn32f* scale);

// val - S / 2 x 2^-scaleFactor, rounded in the current mode; out of range either way -2147483648.
void vornsLGaussSingle_16s32s_Sfs_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                     Vorn32s* result, Vorn32s val, int scaleFactor);
void vornsLGaussSingle_16s32s_Sfs_M7_Al(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                        Vorn32s* result, Vorn32s val, int scaleFactor);
void vornsLGaussSingle_IdVar_16s32s_Sfs_M7(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32s* result,
                                           Vorn32s val, int scaleFactor);
void vornsLGaussSingle_IdVar_16s32s_Sfs_M7_Al(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32s* result,
                                              Vorn32s val, int scaleFactor);

// Low precision: S in integers, unless variances meet a negative scale factor.
void vornsLGaussSingleLow_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                    Vorn32f* result, const Vorn32f* val, int scaleFactor);
void vornsLGaussSingleLow_16s32f_M7_Al(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                       Vorn32f* result, const Vorn32f* val, int scaleFactor);
void vornsLGaussSingleLow_16s32s_Sfs_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                        Vorn32s* result, Vorn32s val, int scaleFactor);
void vornsLGaussSingleLow_16s32s_Sfs_M7_Al(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                           Vorn32s* result, Vorn32s val, int scaleFactor);
void vornsLGaussSingleLow_IdVar_16s32s_Sfs_M7(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32s* result,
                                              Vorn32s val, int scaleFactor);
void vornsLGaussSingleLow_IdVar_16s32s_Sfs_M7_Al(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32s* result,
                                                 Vorn32s val, int scaleFactor);

// The identity covariance in low precision with a float score: S in single over sums of two squares.
void vornsLGaussSingle_IdVarLow_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32f* result,
                                          const Vorn32f* val, int scaleFactor);
void vornsLGaussSingle_IdVarLow_16s32f_M7_Al(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32f* result,
                                             const Vorn32f* val, int scaleFactor);

VORN_END_DECLS
