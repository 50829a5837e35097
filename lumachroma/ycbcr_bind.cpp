// RGB <-> full-resolution YCbCr exports: the check layers, bound to their
// kernels. One forward formula serves all five forward members; the reverse
// members differ in their coefficient set (ycbcr_coeffs.h), in channel order
// and in what the fourth byte gets. The order of checks differs by member and
// is spelled out at each: "entries first" members test the plane entries
// before the size, the others after it.
#include "ycbcr_kernels.h"

namespace zil::ycbcr {

using yuv::DstLanes;
using yuv::DstPlanes;
using yuv::FormA;
using yuv::FormB;
using yuv::Null3;
using yuv::SrcLanes;
using yuv::SrcPlanes;
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
    if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGB3);
    DstLanes(w, 0, dst, dstStep, kRGB3);
    mx_myRGBToYCbCr_C3_C3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

// The destination's fourth byte is left as it was.
ZIL_IMPL ZilStatus mx_ziliRGBToYCbCr_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGBA4);
    DstLanes(w, 0, dst, dstStep, kRGB3);
    mx_myRGBToYCbCr_AC4R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

// Entries first: a null plane outranks a bad size.
ZIL_IMPL ZilStatus mx_ziliRGBToYCbCr_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep,
                                             ZilSize sz) {
    if (ZilStatus st = FormA(AnyNull(src, dst) || Null3(dst), sz)) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGB3);
    DstPlanes(w, 0, dst, dstStep);
    mx_myRGBToYCbCr_8u_C3P3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

// Entries first; the array itself is read without a test, so a caller must
// pass a valid one.
ZIL_IMPL ZilStatus mx_ziliRGBToYCbCr_8u_AC4P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep,
                                              ZilSize sz) {
    if (ZilStatus st = FormA(AnyNull(src) || Null3(dst), sz)) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGBA4);
    DstPlanes(w, 0, dst, dstStep);
    mx_myRGBToYCbCr_8u_AC4P3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliRGBToYCbCr_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3],
                                           int dstStep, ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(src) || Null3(dst); })) return st;
    Walk w{};
    SrcPlanes(w, 0, src, srcStep);
    DstPlanes(w, 0, dst, dstStep);
    WalkRows<RgbToYcbcrRow<1, 1>>(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

// ---- reverse ----------------------------------------------------------------------
ZIL_IMPL ZilStatus mx_ziliYCbCrToRGB_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGB3);
    DstLanes(w, 0, dst, dstStep, kRGB3);
    WalkRows<YcbcrToRgbRow<3, 3, kInvRound, Alpha::None>>(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

// Floors; the destination's fourth byte is left as it was.
ZIL_IMPL ZilStatus mx_ziliYCbCrToRGB_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGBA4);
    DstLanes(w, 0, dst, dstStep, kRGB3);
    mx_myYCbCrToRGBA_AC4R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

namespace {
// Planes to interleaved pixels of layout L, entries first.
template <const yuv::Layout& L, const InvSet& K, Alpha A>
ZilStatus PlanesToPixels(const uint8_t* const* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz,
                         uint8_t alpha) {
    if (ZilStatus st = FormA(AnyNull(src, dst) || Null3(src), sz)) return st;
    Walk w{};
    SrcPlanes(w, 0, src, srcStep);
    DstLanes(w, 0, dst, dstStep, L);
    WalkRows<YcbcrToRgbRow<1, L.bytes, K, A>>(w, sz.width, sz.height, alpha);
    return zilStatusOk;
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
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(src); })) return st;
    Walk w{};
    SrcPlanes(w, 0, src, srcStep);
    DstLanes(w, 0, dst, dstStep, kRGBA4);
    mx_myYCbCrToRGB_8u_P3C4R(w, sz.width, sz.height, alpha);
    return zilStatusOk;
}

// Arrays, size, destination entries, source entries; the finer coefficient set.
ZIL_IMPL ZilStatus mx_ziliYCbCrToRGB_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3],
                                           int dstStep, ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(dst) || Null3(src); })) return st;
    Walk w{};
    SrcPlanes(w, 0, src, srcStep);
    DstPlanes(w, 0, dst, dstStep);
    WalkRows<YcbcrToRgbRow<1, 1, kInvFine, Alpha::None>>(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

}  // namespace zil::ycbcr
