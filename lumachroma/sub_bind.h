// Check layers of the subsampled YCbCr and BT.709 exports, as templates over
// the argument shape; each export binds its name, in one line, to a member
// row, a kernel and a check row.
#pragma once

#include "sub_kernels.h"

namespace zil::sub {

using yuv::kBGR3;
using yuv::kBGRA4;
using yuv::kRGB3;
using yuv::kRGBA4;
using yuv::Layout;
using yuv::RowKernel;
using yuv::Walk;

// ---- order of checks, minimum size, status ----------------------------------
enum class Form : uint8_t {
    PtrSize,         // the pointer arguments, then the size
    AllSize,         // the pointer arguments and every plane entry, then the size
    PtrSizeEntries,  // the pointer arguments, the size, then the plane entries
    SizePtr,         // the size, then the pointers
};
// Cells: what the status reports about a remainder.
enum class Cells : uint8_t {
    Ok,    // zilStatusOk whatever the extent
    Two,   // 4:2:0: zilStatusOddSize if width or height is odd
    Four,  // 4:1:1 forward: zilStatusOddSize if the width is no multiple of 4
};
struct Check {
    Form form;
    int8_t minW, minH;
    Cells cells;
};
//                                         form                 w  h  status
inline constexpr Check kPtr11           {Form::PtrSize,        1, 1, Cells::Ok};
inline constexpr Check kPtr21           {Form::PtrSize,        2, 1, Cells::Ok};
inline constexpr Check kAll21           {Form::AllSize,        2, 1, Cells::Ok};
inline constexpr Check kEntries11       {Form::PtrSizeEntries, 1, 1, Cells::Ok};
inline constexpr Check kAll11           {Form::AllSize,        1, 1, Cells::Ok};
inline constexpr Check kAll22Cells      {Form::AllSize,        2, 2, Cells::Two};
inline constexpr Check kEntries11Cells  {Form::PtrSizeEntries, 1, 1, Cells::Two};
inline constexpr Check kPtr11Cells      {Form::PtrSize,        1, 1, Cells::Two};
inline constexpr Check kPtr22Cells      {Form::PtrSize,        2, 2, Cells::Two};
inline constexpr Check kSize11Cells     {Form::SizePtr,        1, 1, Cells::Two};
inline constexpr Check kAll41Four       {Form::AllSize,        4, 1, Cells::Four};
inline constexpr Check kAll41           {Form::AllSize,        4, 1, Cells::Ok};

template <const Check& C, class Entries>
ZilStatus Run(bool ptrNull, Entries entriesNull, ZilSize sz) {
    const bool small = TooSmall(sz, C.minW, C.minH);
    if (C.form == Form::SizePtr && small) return zilStatusBadSize;
    if (ptrNull) return zilStatusNullPointer;
    if (C.form == Form::AllSize && entriesNull()) return zilStatusNullPointer;
    if (small) return zilStatusBadSize;
    if (C.form == Form::PtrSizeEntries && entriesNull()) return zilStatusNullPointer;
    return zilStatusOk;
}
template <const Check& C>
ZilStatus Done(ZilSize sz) {
    if (C.cells == Cells::Two && ((sz.width | sz.height) & 1)) return zilStatusOddSize;
    if (C.cells == Cells::Four && (sz.width & 3)) return zilStatusOddSize;
    return zilStatusOk;
}
using yuv::Null3;
constexpr auto kNoEntries = [] { return false; };

// ---- packed 4:2:2 streams: byte offsets inside a 4-byte pixel pair -------------
struct Pack {
    int8_t y, cb, cr;
    bool firstCr;  // the cell's first chroma byte is Cr
};
inline constexpr Pack kYCbCr{0, 1, 3, false};  // Y0 Cb Y1 Cr
inline constexpr Pack kYCrCb{0, 3, 1, true};   // Y0 Cr Y1 Cb
inline constexpr Pack kCbYCr{1, 0, 2, false};  // Cb Y0 Cr Y1

// ---- walks ----------------------------------------------------------------------
// Forward sources: rows 0 (and 1) of R, G, B lanes, CH rows a turn.
inline void SrcPixels(Walk& w, const uint8_t* src, ptrdiff_t step, const Layout& L, int ch) {
    yuv::SrcLanes(w, 0, src, ch * step, L);
    if (ch == 2) yuv::SrcLanes(w, 3, src + step, 2 * step, L);
}
inline void SrcPlanes3(Walk& w, const uint8_t* const* src, ptrdiff_t step) { yuv::SrcPlanes(w, 0, src, step); }
// Forward destinations: luma rows, then the Cb and Cr lanes.
inline void DstLuma(Walk& w, uint8_t* y, ptrdiff_t step, int ch) {
    w.at.d[0] = y, w.ds[0] = ch * step;
    w.at.d[1] = y + step, w.ds[1] = ch * step;
}
inline void DstChroma(Walk& w, uint8_t* cb, uint8_t* cr, ptrdiff_t step) {
    w.at.d[2] = cb, w.ds[2] = step;
    w.at.d[3] = cr, w.ds[3] = step;
}
// Reverse sources: luma rows, then the Cb and Cr lanes.
inline void SrcLuma(Walk& w, const uint8_t* y, ptrdiff_t step, int ch) {
    w.at.s[0] = y, w.ss[0] = ch * step;
    w.at.s[1] = y + step, w.ss[1] = ch * step;
}
inline void SrcChroma(Walk& w, const uint8_t* cb, const uint8_t* cr, ptrdiff_t step) {
    w.at.s[2] = cb, w.ss[2] = step;
    w.at.s[3] = cr, w.ss[3] = step;
}
// Reverse destinations: R, G, B, A lanes of rows 0 (and 1).
inline void DstPixels(Walk& w, uint8_t* dst, ptrdiff_t step, const Layout& L, int ch) {
    yuv::DstLanes(w, 0, dst, ch * step, L);
    if (ch == 2) yuv::DstLanes(w, 4, dst + step, 2 * step, L);
}

// ---- check layers, by argument shape -------------------------------------------
// Forward to a packed 4:2:2 stream: src, srcStep, dst, dstStep.
template <RowKernel K, const Check& C, const Layout& L, const Pack& P>
ZilStatus ToPacked(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = Run<C>(AnyNull(src, dst), kNoEntries, sz)) return st;
    Walk w{};
    SrcPixels(w, src, srcStep, L, 1);
    DstLuma(w, dst + P.y, dstStep, 1);
    DstChroma(w, dst + P.cb, dst + P.cr, dstStep);
    yuv::WalkRows<K>(w, sz.width, sz.height, 0);
    return Done<C>(sz);
}
// Forward from three planes with one step to a packed stream.
template <RowKernel K, const Check& C, const Pack& P>
ZilStatus PlanesToPacked(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = Run<C>(AnyNull(src, dst), [&] { return Null3(src); }, sz)) return st;
    Walk w{};
    SrcPlanes3(w, src, srcStep);
    DstLuma(w, dst + P.y, dstStep, 1);
    DstChroma(w, dst + P.cb, dst + P.cr, dstStep);
    yuv::WalkRows<K>(w, sz.width, sz.height, 0);
    return Done<C>(sz);
}
// Forward to three planes with a step each; CrFirst: plane 1 is Cr.
template <RowKernel K, const Check& C, const Layout& L, int CH, bool CrFirst = false>
ZilStatus ToPlanes(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize sz) {
    if (ZilStatus st = Run<C>(AnyNull(src, dst, dstStep), [&] { return Null3(dst); }, sz)) return st;
    Walk w{};
    SrcPixels(w, src, srcStep, L, CH);
    DstLuma(w, dst[0], dstStep[0], CH);
    w.at.d[2] = dst[CrFirst ? 2 : 1], w.ds[2] = dstStep[CrFirst ? 2 : 1];
    w.at.d[3] = dst[CrFirst ? 1 : 2], w.ds[3] = dstStep[CrFirst ? 1 : 2];
    yuv::WalkRows<K>(w, sz.width, sz.height / CH, 0);
    return Done<C>(sz);
}
// Forward 4:2:0 to a luma plane and a plane of Cb, Cr pairs.
template <RowKernel K, const Check& C, const Layout& L>
ZilStatus ToTwoPlanes(const uint8_t* src, int srcStep, uint8_t* dstY, int dstYStep, uint8_t* dstC, int dstCStep,
                      ZilSize sz) {
    if (ZilStatus st = Run<C>(AnyNull(src, dstY, dstC), kNoEntries, sz)) return st;
    Walk w{};
    SrcPixels(w, src, srcStep, L, 2);
    DstLuma(w, dstY, dstYStep, 2);
    DstChroma(w, dstC, dstC + 1, dstCStep);
    yuv::WalkRows<K>(w, sz.width, sz.height / 2, 0);
    return Done<C>(sz);
}

// Reverse from a packed stream to interleaved pixels.
template <RowKernel K, const Check& C, const Pack& P, const Layout& L>
ZilStatus FromPacked(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz, uint8_t alpha) {
    if (ZilStatus st = Run<C>(AnyNull(src, dst), kNoEntries, sz)) return st;
    Walk w{};
    SrcLuma(w, src + P.y, srcStep, 1);
    SrcChroma(w, src + P.cb, src + P.cr, srcStep);
    DstPixels(w, dst, dstStep, L, 1);
    yuv::WalkRows<K>(w, sz.width, sz.height, alpha);
    return Done<C>(sz);
}
// Reverse from a packed stream to three full planes with one step.
template <RowKernel K, const Check& C, const Pack& P>
ZilStatus PackedToPlanes(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep, ZilSize sz) {
    if (ZilStatus st = Run<C>(AnyNull(src, dst), [&] { return Null3(dst); }, sz)) return st;
    Walk w{};
    SrcLuma(w, src + P.y, srcStep, 1);
    SrcChroma(w, src + P.cb, src + P.cr, srcStep);
    yuv::DstPlanes(w, 0, dst, dstStep);
    yuv::WalkRows<K>(w, sz.width, sz.height, 0);
    return Done<C>(sz);
}
// Reverse from three planes with a step each; CrFirst: plane 1 is Cr.
template <RowKernel K, const Check& C, const Layout& L, int CH, bool CrFirst = false>
ZilStatus FromPlanes(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize sz,
                     uint8_t alpha) {
    if (ZilStatus st = Run<C>(AnyNull(src, srcStep, dst), [&] { return Null3(src); }, sz)) return st;
    Walk w{};
    SrcLuma(w, src[0], srcStep[0], CH);
    SrcChroma(w, src[CrFirst ? 2 : 1], src[CrFirst ? 1 : 2], 0);
    w.ss[2] = srcStep[CrFirst ? 2 : 1], w.ss[3] = srcStep[CrFirst ? 1 : 2];
    DstPixels(w, dst, dstStep, L, CH);
    yuv::WalkRows<K>(w, sz.width, sz.height / CH, alpha);
    return Done<C>(sz);
}
// Reverse from three full planes with one step.
template <RowKernel K, const Check& C, const Layout& L>
ZilStatus FromFullPlanes(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep, ZilSize sz,
                         uint8_t alpha) {
    if (ZilStatus st = Run<C>(AnyNull(src, dst), [&] { return Null3(src); }, sz)) return st;
    Walk w{};
    SrcLuma(w, src[0], srcStep, 1);
    SrcChroma(w, src[1], src[2], srcStep);
    DstPixels(w, dst, dstStep, L, 1);
    yuv::WalkRows<K>(w, sz.width, sz.height, alpha);
    return Done<C>(sz);
}
// Reverse 4:2:0 from a luma plane and a plane of chroma pairs; CrFirst: the
// pairs are Cr, Cb.
template <RowKernel K, const Check& C, const Layout& L, bool CrFirst = false>
ZilStatus FromTwoPlanes(const uint8_t* srcY, int srcYStep, const uint8_t* srcC, int srcCStep, uint8_t* dst,
                        int dstStep, ZilSize sz, uint8_t alpha) {
    if (ZilStatus st = Run<C>(AnyNull(srcY, srcC, dst), kNoEntries, sz)) return st;
    Walk w{};
    SrcLuma(w, srcY, srcYStep, 2);
    SrcChroma(w, srcC + (CrFirst ? 1 : 0), srcC + (CrFirst ? 0 : 1), srcCStep);
    DstPixels(w, dst, dstStep, L, 2);
    yuv::WalkRows<K>(w, sz.width, sz.height / 2, alpha);
    return Done<C>(sz);
}

// One line per export: the signature of its shape around a check layer.
#define ZIL_SUB_C(NAME, ...)                                                                             \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* s, int ss, uint8_t* d, int ds, ZilSize z) {              \
        return __VA_ARGS__(s, ss, d, ds, z);                                                             \
    }
#define ZIL_SUB_CC(NAME, ...)                                                                            \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* s, int ss, uint8_t* d, int ds, ZilSize z) {              \
        return __VA_ARGS__(s, ss, d, ds, z, 0);                                                          \
    }
#define ZIL_SUB_CC4(NAME, ...)                                                                           \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* s, int ss, uint8_t* d, int ds, ZilSize z, uint8_t a) {   \
        return __VA_ARGS__(s, ss, d, ds, z, a);                                                          \
    }
#define ZIL_SUB_PC(NAME, ...)                                                                            \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* const s[3], int ss, uint8_t* d, int ds, ZilSize z) {     \
        return __VA_ARGS__(s, ss, d, ds, z);                                                             \
    }
#define ZIL_SUB_CP(NAME, ...)                                                                            \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* s, int ss, uint8_t* const d[3], int ds, ZilSize z) {     \
        return __VA_ARGS__(s, ss, d, ds, z);                                                             \
    }
#define ZIL_SUB_CPS(NAME, ...)                                                                           \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* s, int ss, uint8_t* const d[3], const int ds[3], ZilSize z) { \
        return __VA_ARGS__(s, ss, d, ds, z);                                                             \
    }
#define ZIL_SUB_PSC(NAME, ...)                                                                           \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* const s[3], const int ss[3], uint8_t* d, int ds, ZilSize z) { \
        return __VA_ARGS__(s, ss, d, ds, z, 0);                                                          \
    }
#define ZIL_SUB_PSC4(NAME, ...)                                                                          \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* const s[3], const int ss[3], uint8_t* d, int ds, ZilSize z, \
                                 uint8_t a) {                                                            \
        return __VA_ARGS__(s, ss, d, ds, z, a);                                                          \
    }
#define ZIL_SUB_PC3(NAME, ...)                                                                           \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* const s[3], int ss, uint8_t* d, int ds, ZilSize z) {     \
        return __VA_ARGS__(s, ss, d, ds, z, 0);                                                          \
    }
#define ZIL_SUB_PC4(NAME, ...)                                                                           \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* const s[3], int ss, uint8_t* d, int ds, ZilSize z, uint8_t a) { \
        return __VA_ARGS__(s, ss, d, ds, z, a);                                                          \
    }
#define ZIL_SUB_CP2(NAME, ...)                                                                           \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* s, int ss, uint8_t* y, int ys, uint8_t* c, int cs, ZilSize z) { \
        return __VA_ARGS__(s, ss, y, ys, c, cs, z);                                                      \
    }
#define ZIL_SUB_P2C(NAME, ...)                                                                           \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* y, int ys, const uint8_t* c, int cs, uint8_t* d, int ds, ZilSize z) { \
        return __VA_ARGS__(y, ys, c, cs, d, ds, z, 0);                                                   \
    }
#define ZIL_SUB_P2C4(NAME, ...)                                                                          \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* y, int ys, const uint8_t* c, int cs, uint8_t* d, int ds, ZilSize z, \
                                 uint8_t a) {                                                            \
        return __VA_ARGS__(y, ys, c, cs, d, ds, z, a);                                                   \
    }

}  // namespace zil::sub
