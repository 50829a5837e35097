// RGB <-> full-resolution YCbCr exports: the check layers, bound to their
// kernels. One forward formula serves all five forward members; the reverse
// members differ in their coefficient set (ycbcr_coeffs.h), in channel order
// and in what the fourth byte gets. The order of checks differs by member and
// is spelled out at each: "entries first" members test the plane entries
// before the size, the others after it.
#include "ycbcr_kernels.h"

namespace zil::ycbcr {

using yuv::FormA;
using yuv::FormB;
using yuv::Null3;
using yuv::RunPixels;
using yuv::RunPixelsToPlanes;
using yuv::RunPlanes;
using yuv::RunPlanesToPixels;
using yuv::WalkRows;
using yuv::kBGR3;
using yuv::kBGRA4;
using yuv::kRGB3;
using yuv::kRGBA4;

namespace {
ZIL_ROW_LAYERS(mx_myRGBToYCbCr_C3_C3R, mx_innerRGBToYCbCr_C3_C3R, RgbToYcbcrRow<3, 3>)
ZIL_ROW_LAYERS(mx_myRGBToYCbCr_AC4R, mx_innerRGBToYCbCr_AC4R, RgbToYcbcrRow<4, 4>)
ZIL_ROW_LAYERS(mx_myRGBToYCbCr_8u_C3P3R, mx_innerRGBToYCbCr_8u_C3P3R, RgbToYcbcrRow<3, 1>)
ZIL_ROW_LAYERS(mx_myRGBToYCbCr_8u_AC4P3R, mx_innerRGBToYCbCr_8u_AC4P3R, RgbToYcbcrRow<4, 1>)
ZIL_ROW_LAYERS(mx_myYCbCrToRGBA_AC4R, mx_innerYCbCrToRGB_AC4R, YcbcrToRgbRow<4, 4, kInvFloor, Alpha::Keep>)
ZIL_ROW_LAYERS(mx_myYCbCrToRGB_8u_P3C4R, mx_innerYCbCrToRGB_8u_P3C4R, YcbcrToRgbRow<1, 4, kInvRound, Alpha::Value>)
}  // namespace

// ---- forward ----------------------------------------------------------------------
ZIL_IMPL ZilStatus mx_ziliRGBToYCbCr_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    return RunPixels<kRGB3, kRGB3, mx_myRGBToYCbCr_C3_C3R>(FormA(AnyNull(src, dst), sz), src, srcStep, dst, dstStep,
                                                            sz);
}

// The destination's fourth byte is left as it was.
ZIL_IMPL ZilStatus mx_ziliRGBToYCbCr_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    return RunPixels<kRGBA4, kRGB3, mx_myRGBToYCbCr_AC4R>(FormA(AnyNull(src, dst), sz), src, srcStep, dst, dstStep,
                                                           sz);
}

// Entries first: a null plane outranks a bad size.
ZIL_IMPL ZilStatus mx_ziliRGBToYCbCr_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep,
                                             ZilSize sz) {
    return RunPixelsToPlanes<kRGB3, mx_myRGBToYCbCr_8u_C3P3R>(FormA(AnyNull(src, dst) || Null3(dst), sz), src,
                                                               srcStep, dst, dstStep, sz);
}

// Entries first; the array itself is read without a test, so a caller must
// pass a valid one.
ZIL_IMPL ZilStatus mx_ziliRGBToYCbCr_8u_AC4P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep,
                                              ZilSize sz) {
    return RunPixelsToPlanes<kRGBA4, mx_myRGBToYCbCr_8u_AC4P3R>(FormA(AnyNull(src) || Null3(dst), sz), src, srcStep,
                                                                 dst, dstStep, sz);
}

ZIL_IMPL ZilStatus mx_ziliRGBToYCbCr_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3],
                                           int dstStep, ZilSize sz) {
    const ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(src) || Null3(dst); });
    return RunPlanes<WalkRows<RgbToYcbcrRow<1, 1>>>(st, src, srcStep, dst, dstStep, sz);
}

// ---- reverse ----------------------------------------------------------------------
ZIL_IMPL ZilStatus mx_ziliYCbCrToRGB_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    return RunPixels<kRGB3, kRGB3, WalkRows<YcbcrToRgbRow<3, 3, kInvRound, Alpha::None>>>(
        FormA(AnyNull(src, dst), sz), src, srcStep, dst, dstStep, sz);
}

// Floors; the destination's fourth byte is left as it was.
ZIL_IMPL ZilStatus mx_ziliYCbCrToRGB_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    return RunPixels<kRGBA4, kRGB3, mx_myYCbCrToRGBA_AC4R>(FormA(AnyNull(src, dst), sz), src, srcStep, dst, dstStep,
                                                            sz);
}

namespace {
// Planes to interleaved pixels of layout L in the check layer, entries first.
template <const yuv::Layout& L, const InvSet& K, Alpha A>
ZilStatus PlanesToPixels(const uint8_t* const* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz,
                         uint8_t alpha) {
    return RunPlanesToPixels<L, WalkRows<YcbcrToRgbRow<1, L.bytes, K, A>>>(
        FormA(AnyNull(src, dst) || Null3(src), sz), src, srcStep, dst, dstStep, sz, alpha);
}
}  // namespace

ZIL_IMPL ZilStatus mx_ziliYCbCrToRGB_8u_P3C3R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep,
                                             ZilSize sz) {
    return PlanesToPixels<kRGB3, kInvRound, Alpha::None>(src, srcStep, dst, dstStep, sz, 0);
}

ZIL_IMPL ZilStatus mx_ziliYCbCrToBGR_8u_P3C3R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep,
                                             ZilSize sz) {
    return PlanesToPixels<kBGR3, kInvRound, Alpha::None>(src, srcStep, dst, dstStep, sz, 0);
}

ZIL_IMPL ZilStatus mx_ziliYCbCrToBGR_8u_P3C4R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep,
                                             ZilSize sz, uint8_t alpha) {
    return PlanesToPixels<kBGRA4, kInvRound, Alpha::Value>(src, srcStep, dst, dstStep, sz, alpha);
}

// Arrays, size, then the entries.
ZIL_IMPL ZilStatus mx_ziliYCbCrToRGB_8u_P3C4R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep,
                                             ZilSize sz, uint8_t alpha) {
    const ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(src); });
    return RunPlanesToPixels<kRGBA4, mx_myYCbCrToRGB_8u_P3C4R>(st, src, srcStep, dst, dstStep, sz, alpha);
}

// Arrays, size, destination entries, source entries; the finer coefficient set.
ZIL_IMPL ZilStatus mx_ziliYCbCrToRGB_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3],
                                           int dstStep, ZilSize sz) {
    const ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(dst) || Null3(src); });
    return RunPlanes<WalkRows<YcbcrToRgbRow<1, 1, kInvFine, Alpha::None>>>(st, src, srcStep, dst, dstStep, sz);
}

}  // namespace zil::ycbcr
