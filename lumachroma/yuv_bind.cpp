// RGB <-> YUV exports: the check layers, bound to their member rows.
//
// For each export X with its own layers, mx_innerX is the row kernel (a member
// row applied to a kernel template) and mx_myX the row layer that walks it.
#include "yuv_rows.h"

namespace zil::yuv {
namespace {

#define ZIL_YUV_LAYERS(STEM, ...) ZIL_ROW_LAYERS(mx_my##STEM, mx_inner##STEM, __VA_ARGS__)

// ---- layers ----------------------------------------------------------------------
ZIL_YUV_LAYERS(RGBToYUV_8u_C3R, RgbToYuvRow<3, 3, kRGBToYUV_C3, false>)
ZIL_YUV_LAYERS(RGBToYUV_8u_AC4R, RgbToYuvRow<4, 4, kRGBToYUV_AC4, false>)
ZIL_YUV_LAYERS(RGBToYUV_8u_C3P3R, RgbToYuvRow<3, 1, kRGBToYUV_C3, false>)
ZIL_YUV_LAYERS(RGBToYUV_8u_P3R, RgbToYuvRow<1, 1, kRGBToYUV_C3, false>)
ZIL_YUV_LAYERS(YUVToRGB_8u_C3R, YuvToRgbRow<3, 3, kYUVToRGB_C3, Alpha::None>)
ZIL_YUV_LAYERS(YUVToRGB_8u_AC4R, YuvToRgbRow<4, 4, kYUVToRGB_AC4, Alpha::Keep>)
ZIL_YUV_LAYERS(YUVToRGB_8u_P3C3R, YuvToRgbRow<1, 3, kYUVToRGB_P3, Alpha::None>)
ZIL_YUV_LAYERS(YUVToRGB_8u_P3R, YuvToRgbRow<1, 1, kYUVToRGB_P3, Alpha::None>)
ZIL_YUV_LAYERS(RGBToYUV422_8u_C3C2R, RgbToYuv422Row<3, 2, 4, kRGBToYUV422_C2>)
ZIL_YUV_LAYERS(RGBToYUV422_8u_C3P3R, RgbToYuv422Row<3, 1, 1, kRGBToYUV422_C3P3>)
ZIL_YUV_LAYERS(RGBToYUV422_8u_P3R, RgbToYuv422Row<1, 1, 1, kRGBToYUV422_P3>)
ZIL_YUV_LAYERS(YUV422ToRGB_8u_C2C3R, Yuv422ToRgbRow<2, 4, 3, kYUV422ToRGB_C2C3, Alpha::None, true>)
ZIL_YUV_LAYERS(YUV422ToRGB_8u_P3C3R, Yuv422ToRgbRow<1, 1, 3, kYUV422ToRGB_P3C3, Alpha::None, false>)
ZIL_YUV_LAYERS(YUV422ToRGB_8u_P3R, Yuv422ToRgbRow<1, 1, 1, kYUV422ToRGB_P3, Alpha::None, false>)
ZIL_YUV_LAYERS(RGBToYUV420_8u_C3P3R, RgbToYuv420Row<3, kRGBToYUV420>)
ZIL_YUV_LAYERS(RGBToYUV420_8u_P3R, RgbToYuv420Row<1, kRGBToYUV420>)
ZIL_YUV_LAYERS(YUV420ToRGB_8u_P3C3R, Yuv420ToRgbRow<3, kYUV420ToRGB, Alpha::None>)
ZIL_YUV_LAYERS(YUV420ToRGB_8u_P3R, Yuv420ToRgbRow<1, kYUV420ToRGB, Alpha::None>)
#undef ZIL_YUV_LAYERS

// 4:2:2 to four-byte pixels with alpha 0 has a row layer but shares the
// 4:2:2 kernel template rather than having a named kernel of its own.
ZIL_IMPL void mx_myYUV422ToRGB_8u_P3AC4R(const Walk& wk, int width, int turns, uint8_t alpha) {
    WalkRows<Yuv422ToRgbRow<1, 1, 4, kYUV422ToRGB_P3AC4, Alpha::Value, false>>(wk, width, turns, alpha);
}

}  // namespace

// ---- forward, full resolution ---------------------------------------------------
ZIL_IMPL ZilStatus mx_ziliRGBToYUV_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGB3);
    DstLanes(w, 0, dst, dstStep, kRGB3);
    mx_myRGBToYUV_8u_C3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliRGBToYUV_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGBA4);
    DstLanes(w, 0, dst, dstStep, kRGB3);  // lanes 0..2 of four-byte pixels; byte 3 untouched
    mx_myRGBToYUV_8u_AC4R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliRGBToYUV_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep,
                                           ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(dst); })) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGB3);
    DstPlanes(w, 0, dst, dstStep);
    mx_myRGBToYUV_8u_C3P3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliRGBToYUV_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], int dstStep,
                                         ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(src) || Null3(dst); })) return st;
    Walk w{};
    SrcPlanes(w, 0, src, srcStep);
    DstPlanes(w, 0, dst, dstStep);
    mx_myRGBToYUV_8u_P3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

// Only planes 0..2 are tested; the alpha plane receives the source alpha.
ZIL_IMPL ZilStatus mx_ziliRGBToYUV_8u_AC4P4R(const uint8_t* src, int srcStep, uint8_t* const dst[4], int dstStep,
                                            ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(dst); })) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGBA4);
    w.at.s[3] = src + 3, w.ss[3] = srcStep;
    DstPlanes(w, 0, dst, dstStep);
    w.at.d[3] = dst[3], w.ds[3] = dstStep;
    WalkRows<RgbToYuvRow<4, 1, kRGBToYUV_C3, true>>(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

// ---- reverse, full resolution ---------------------------------------------------
ZIL_IMPL ZilStatus mx_ziliYUVToRGB_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGB3);
    DstLanes(w, 0, dst, dstStep, kRGB3);
    mx_myYUVToRGB_8u_C3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliYUVToRGB_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGBA4);
    DstLanes(w, 0, dst, dstStep, kRGB3);
    mx_myYUVToRGB_8u_AC4R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliYUVToRGB_8u_C3C4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz,
                                           uint8_t alpha) {
    if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGB3);
    DstLanes(w, 0, dst, dstStep, kRGBA4);
    WalkRows<YuvToRgbRow<3, 4, kYUVToRGB_C3C4, Alpha::Value>>(w, sz.width, sz.height, alpha);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliYUVToRGB_8u_P3C3R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep,
                                           ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(src); })) return st;
    Walk w{};
    SrcPlanes(w, 0, src, srcStep);
    DstLanes(w, 0, dst, dstStep, kRGB3);
    mx_myYUVToRGB_8u_P3C3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

// Destination entries are tested before source entries.
ZIL_IMPL ZilStatus mx_ziliYUVToRGB_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], int dstStep,
                                         ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(dst) || Null3(src); })) return st;
    Walk w{};
    SrcPlanes(w, 0, src, srcStep);
    DstPlanes(w, 0, dst, dstStep);
    mx_myYUVToRGB_8u_P3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

// ---- forward 4:2:2 ----------------------------------------------------------------
ZIL_IMPL ZilStatus mx_ziliRGBToYUV422_8u_C3C2R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGB3);
    w.at.d[0] = dst, w.at.d[1] = dst + 1, w.at.d[2] = dst + 3;  // Y0 U Y1 V
    w.ds[0] = w.ds[1] = w.ds[2] = dstStep;
    mx_myRGBToYUV422_8u_C3C2R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

namespace {
inline void Dst422Planes(Walk& w, uint8_t* const* dst, const int* step) {
    for (int c = 0; c < 3; ++c) w.at.d[c] = dst[c], w.ds[c] = step[c];
}
inline void Src422Planes(Walk& w, const uint8_t* const* src, const int* step) {
    for (int c = 0; c < 3; ++c) w.at.s[c] = src[c], w.ss[c] = step[c];
}
// Dense steps of the step-less forms: luma planes `width`, 4:2:2 chroma planes
// (width + 1) / 2, 4:2:0 chroma planes width / 2.
struct Dense {
    int plane[3];
    Dense(ZilSize sz, bool is420) : plane{sz.width, is420 ? sz.width / 2 : (sz.width + 1) / 2, 0} {
        plane[2] = plane[1];
    }
};
// Per-pixel advance, in half bytes, of 4:2:2 channel rows on the flat path.
constexpr int kHalfC3[3] = {6, 6, 6}, kHalfP1[3] = {2, 2, 2}, kHalfYuv[3] = {2, 1, 1};
}  // namespace

ZIL_IMPL ZilStatus mx_ziliRGBToYUV422_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3],
                                              const int dstStep[3], ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst, dstStep), sz, [&] { return Null3(dst); })) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, kRGB3);
    Dst422Planes(w, dst, dstStep);
    mx_myRGBToYUV422_8u_C3P3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliRGBToYUV422_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3],
                                            const int dstStep[3], ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst, dstStep), sz, [&] { return Null3(src) || Null3(dst); })) return st;
    Walk w{};
    SrcPlanes(w, 0, src, srcStep);
    Dst422Planes(w, dst, dstStep);
    mx_myRGBToYUV422_8u_P3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

// Flat layers of the step-less 4:2:2 forms (see RunFlat).
ZIL_IMPL void mx_myRGBToYUV422_8u_C3P3(const Walk& wk, int n) {
    RunFlat<mx_innerRGBToYUV422_8u_C3P3R>(wk, n, kHalfC3, kHalfYuv);
}
ZIL_IMPL void mx_myRGBToYUV422_8u_P3(const Walk& wk, int n) {
    RunFlat<mx_innerRGBToYUV422_8u_P3R>(wk, n, kHalfP1, kHalfYuv);
}
ZIL_IMPL void mx_myYUV422ToRGB_8u_P3C3(const Walk& wk, int n) {
    RunFlat<mx_innerYUV422ToRGB_8u_P3C3R>(wk, n, kHalfYuv, kHalfC3);
}
ZIL_IMPL void mx_myYUV422ToRGB_8u_P3(const Walk& wk, int n) {
    RunFlat<mx_innerYUV422ToRGB_8u_P3R>(wk, n, kHalfYuv, kHalfP1);
}

ZIL_IMPL ZilStatus mx_ziliRGBToYUV422_8u_C3P3(const uint8_t* src, uint8_t* const dst[3], ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(dst); })) return st;
    const Dense d(sz, false);
    Walk w{};
    SrcLanes(w, 0, src, 3 * sz.width, kRGB3);
    Dst422Planes(w, dst, d.plane);
    if (FlatPath(sz))
        mx_myRGBToYUV422_8u_C3P3(w, sz.width * sz.height);
    else
        mx_myRGBToYUV422_8u_C3P3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliRGBToYUV422_8u_P3(const uint8_t* const src[3], uint8_t* const dst[3], ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(src) || Null3(dst); })) return st;
    const Dense d(sz, false);
    Walk w{};
    SrcPlanes(w, 0, src, sz.width);
    Dst422Planes(w, dst, d.plane);
    if (FlatPath(sz))
        mx_myRGBToYUV422_8u_P3(w, sz.width * sz.height);
    else
        mx_myRGBToYUV422_8u_P3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

// ---- reverse 4:2:2 ----------------------------------------------------------------
ZIL_IMPL ZilStatus mx_ziliYUV422ToRGB_8u_C2C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;
    Walk w{};
    w.at.s[0] = src, w.at.s[1] = src + 1, w.at.s[2] = src + 3;  // Y0 U Y1 V
    w.ss[0] = w.ss[1] = w.ss[2] = srcStep;
    DstLanes(w, 0, dst, dstStep, kRGB3);
    mx_myYUV422ToRGB_8u_C2C3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliYUV422ToRGB_8u_P3C3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst,
                                              int dstStep, ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, srcStep, dst), sz, [&] { return Null3(src); })) return st;
    Walk w{};
    Src422Planes(w, src, srcStep);
    DstLanes(w, 0, dst, dstStep, kRGB3);
    mx_myYUV422ToRGB_8u_P3C3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliYUV422ToRGB_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3],
                                            int dstStep, ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, srcStep, dst), sz, [&] { return Null3(src) || Null3(dst); })) return st;
    Walk w{};
    Src422Planes(w, src, srcStep);
    DstPlanes(w, 0, dst, dstStep);
    mx_myYUV422ToRGB_8u_P3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

// The fourth byte of every destination pixel is set to 0.
ZIL_IMPL ZilStatus mx_ziliYUV422ToRGB_8u_P3AC4R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst,
                                               int dstStep, ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, srcStep, dst), sz, [&] { return Null3(src); })) return st;
    Walk w{};
    Src422Planes(w, src, srcStep);
    DstLanes(w, 0, dst, dstStep, kRGBA4);
    mx_myYUV422ToRGB_8u_P3AC4R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliYUV422ToRGB_8u_P3C3(const uint8_t* const src[3], uint8_t* dst, ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(src); })) return st;
    const Dense d(sz, false);
    Walk w{};
    Src422Planes(w, src, d.plane);
    DstLanes(w, 0, dst, 3 * sz.width, kRGB3);
    if (FlatPath(sz))
        mx_myYUV422ToRGB_8u_P3C3(w, sz.width * sz.height);
    else
        mx_myYUV422ToRGB_8u_P3C3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliYUV422ToRGB_8u_P3(const uint8_t* const src[3], uint8_t* const dst[3], ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(src) || Null3(dst); })) return st;
    const Dense d(sz, false);
    Walk w{};
    Src422Planes(w, src, d.plane);
    DstPlanes(w, 0, dst, sz.width);
    if (FlatPath(sz))
        mx_myYUV422ToRGB_8u_P3(w, sz.width * sz.height);
    else
        mx_myYUV422ToRGB_8u_P3R(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

// ---- forward 4:2:0: whole 2x2 cells ------------------------------------------------
ZIL_IMPL ZilStatus mx_ziliRGBToYUV420_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3],
                                              const int dstStep[3], ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst, dstStep), sz, [&] { return Null3(dst); })) return st;
    Walk w{};
    Src420Lanes(w, src, srcStep, kRGB3);
    Dst420Yuv(w, dst, dstStep);
    mx_myRGBToYUV420_8u_C3P3R(w, sz.width, sz.height / 2, 0);
    return CellStatus(sz);
}

ZIL_IMPL ZilStatus mx_ziliRGBToYUV420_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3],
                                            const int dstStep[3], ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst, dstStep), sz, [&] { return Null3(src) || Null3(dst); })) return st;
    Walk w{};
    Src420Planes(w, src, srcStep);
    Dst420Yuv(w, dst, dstStep);
    mx_myRGBToYUV420_8u_P3R(w, sz.width, sz.height / 2, 0);
    return CellStatus(sz);
}

ZIL_IMPL ZilStatus mx_ziliRGBToYUV420_8u_C3P3(const uint8_t* src, uint8_t* const dst[3], ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(dst); })) return st;
    const Dense d(sz, true);
    Walk w{};
    Src420Lanes(w, src, 3 * sz.width, kRGB3);
    Dst420Yuv(w, dst, d.plane);
    mx_myRGBToYUV420_8u_C3P3R(w, sz.width, sz.height / 2, 0);
    return CellStatus(sz);
}

ZIL_IMPL ZilStatus mx_ziliRGBToYUV420_8u_P3(const uint8_t* const src[3], uint8_t* const dst[3], ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(src) || Null3(dst); })) return st;
    const Dense d(sz, true);
    Walk w{};
    Src420Planes(w, src, sz.width);
    Dst420Yuv(w, dst, d.plane);
    mx_myRGBToYUV420_8u_P3R(w, sz.width, sz.height / 2, 0);
    return CellStatus(sz);
}

// B, G, R, A source; the only forward member whose luma floors.
ZIL_IMPL ZilStatus mx_ziliBGRToYUV420_8u_AC4P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3],
                                               const int dstStep[3], ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst, dstStep), sz, [&] { return Null3(dst); })) return st;
    Walk w{};
    Src420Lanes(w, src, srcStep, kBGRA4);
    Dst420Yuv(w, dst, dstStep);
    WalkRows<RgbToYuv420Row<4, kBGRToYUV420_AC4>>(w, sz.width, sz.height / 2, 0);
    return CellStatus(sz);
}

// ---- reverse 4:2:0 ----------------------------------------------------------------
ZIL_IMPL ZilStatus mx_ziliYUV420ToRGB_8u_P3C3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst,
                                              int dstStep, ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, srcStep, dst), sz, [&] { return Null3(src); })) return st;
    Walk w{};
    Src420Yuv(w, src, srcStep);
    Dst420Lanes(w, dst, dstStep, kRGB3);
    mx_myYUV420ToRGB_8u_P3C3R(w, sz.width, sz.height / 2, 0);
    return CellStatus(sz);
}

ZIL_IMPL ZilStatus mx_ziliYUV420ToRGB_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3],
                                            int dstStep, ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, srcStep, dst), sz, [&] { return Null3(src) || Null3(dst); })) return st;
    Walk w{};
    Src420Yuv(w, src, srcStep);
    Dst420Planes(w, dst, dstStep);
    mx_myYUV420ToRGB_8u_P3R(w, sz.width, sz.height / 2, 0);
    return CellStatus(sz);
}

// The fourth byte of every destination pixel is set to 0.
ZIL_IMPL ZilStatus mx_ziliYUV420ToRGB_8u_P3AC4R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst,
                                               int dstStep, ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, srcStep, dst), sz, [&] { return Null3(src); })) return st;
    Walk w{};
    Src420Yuv(w, src, srcStep);
    Dst420Lanes(w, dst, dstStep, kRGBA4);
    WalkRows<Yuv420ToRgbRow<4, kYUV420ToRGB_P3AC4, Alpha::Value>>(w, sz.width, sz.height / 2, 0);
    return CellStatus(sz);
}

ZIL_IMPL ZilStatus mx_ziliYUV420ToRGB_8u_P3C3(const uint8_t* const src[3], uint8_t* dst, ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(src); })) return st;
    const Dense d(sz, true);
    Walk w{};
    Src420Yuv(w, src, d.plane);
    Dst420Lanes(w, dst, 3 * sz.width, kRGB3);
    mx_myYUV420ToRGB_8u_P3C3R(w, sz.width, sz.height / 2, 0);
    return CellStatus(sz);
}

ZIL_IMPL ZilStatus mx_ziliYUV420ToRGB_8u_P3(const uint8_t* const src[3], uint8_t* const dst[3], ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, dst), sz, [&] { return Null3(src) || Null3(dst); })) return st;
    const Dense d(sz, true);
    Walk w{};
    Src420Yuv(w, src, d.plane);
    Dst420Planes(w, dst, sz.width);
    mx_myYUV420ToRGB_8u_P3R(w, sz.width, sz.height / 2, 0);
    return CellStatus(sz);
}

// B, G, R destination; all three channels floor; at least 2x2.
ZIL_IMPL ZilStatus mx_ziliYUV420ToBGR_8u_P3C3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst,
                                              int dstStep, ZilSize sz) {
    if (ZilStatus st = FormB(AnyNull(src, srcStep, dst), sz, [&] { return Null3(src); }, 2, 2)) return st;
    Walk w{};
    Src420Yuv(w, src, srcStep);
    Dst420Lanes(w, dst, dstStep, kBGR3);
    WalkRows<Yuv420ToRgbRow<3, kYUV420ToBGR, Alpha::None>>(w, sz.width, sz.height / 2, 0);
    return CellStatus(sz);
}

}  // namespace zil::yuv
