// Internal image and vector utilities: fill, copy, maximum, sum and mean of
// float images, adding or subtracting a constant, and a float floor that does
// not touch the rounding mode. Not exported; used by the curve and colour
// families.
#pragma once

#include "zil_common.h"

extern "C" {
ZIL_HIDDEN ZilStatus mx_ziliSet_8u_C1R(int value, uint8_t* dst, int dstStep, ZilSize roiSize);
ZIL_HIDDEN ZilStatus mx_ziliCopy_8u_C1R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep,
                                        ZilSize roiSize);
ZIL_HIDDEN ZilStatus mx_ziliMax_32f_C1R(const float* src, int srcStep, ZilSize roiSize, float* max);
ZIL_HIDDEN ZilStatus mx_zilsMax_32f(const float* src, int len, float* max);
ZIL_HIDDEN ZilStatus mx_ziliSum_32f_C1R(const float* src, int srcStep, ZilSize roiSize, double* sum);
// `hint` (an accuracy hint) is accepted and ignored.
ZIL_HIDDEN ZilStatus mx_ziliMean_32f_C1R(const float* src, int srcStep, ZilSize roiSize, double* mean,
                                         int hint);
ZIL_HIDDEN ZilStatus mx_zilsAddC_32f(const float* src, float* dst, int len, float value);
ZIL_HIDDEN ZilStatus mx_zilsSubC_32f(const float* src, float* dst, int len, float value);
ZIL_HIDDEN float mx_zilsFloorOneF(float x);
ZIL_HIDDEN float mx_ownsFloorOneF(float x);
ZIL_HIDDEN void mx_ownsCopy_8u(const uint8_t* src, uint8_t* dst, int len);
}
