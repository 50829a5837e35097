// Interlaced 4:2:0 <-> 4:2:2: chroma rows of one field weighted together, and
// the two NV12 deinterlacing edge routines of the slice filter.
#include "vertical.h"

namespace zil::refmt {
namespace {

// 420 to 422, destination chroma row r of H (H a multiple of 4), over source
// rows of one field: rows 0, 1 and the last two are copies (8:0), the rest pair
// the field sites 5:3, 7:1, 1:7, 3:5 with 4 added before the shift by 3.
constexpr Blend Up(int r, int H) {
    if (r < 2) return {r, 8, r, 0};
    if (r >= H - 2) {
        const int s = H / 2 - 2 + (r - (H - 2));
        return {s, 8, s, 0};
    }
    const int k = (r - 2) / 4, a = 2 * k;
    switch ((r - 2) % 4) {
        case 0: return {a, 5, a + 2, 3};
        case 1: return {a + 1, 7, a + 3, 1};
        case 2: return {a, 1, a + 2, 7};
        default: return {a + 1, 3, a + 3, 5};
    }
}
static_assert(Up(2, 8).wa == 5 && Up(5, 8).b == 3 && Up(6, 8).a == 2 && Up(7, 8).a == 3, "row schedule");

// 422 to 420, destination chroma row i: 3:1 within the top field (rows 4g,
// 4g+2), 1:3 within the bottom field (rows 4g+1, 4g+3), 2 added before >> 2.
constexpr Blend Down(int i) {
    const int g = 4 * (i / 2);
    return (i & 1) ? Blend{g + 1, 1, g + 3, 3} : Blend{g, 3, g + 2, 1};
}

template <const Pack& S, const Pack& D>
void Up420To422(const SrcSide& s, const DstSide& d, int w, int H, int top, int bottom) {
    for (int r = 0; r < H; ++r) {
        if ((r < 2 && !top) || (r >= H - 2 && !bottom)) continue;
        const Blend b = Up(r, H);
        BlendRow<S, D, 3, true>(s.Row(0, r), s.Row(1, b.a), s.Row(2, b.a), s.Row(1, b.b), s.Row(2, b.b), d.Row(0, r),
                                d.Row(CbBase(D), r), d.Row(CrBase(D), r), w / 2, b.wa, b.wb);
    }
}

template <const Pack& S, const Pack& D>
void Down422To420(const SrcSide& s, const DstSide& d, int w, int H) {
    for (int r = 0; r < H; ++r) CopyLumaRow<S, D>(s.Row(0, r), d.Row(0, r), w);
    for (int i = 0; i < H / 2; ++i) {
        const Blend b = Down(i);
        BlendRow<S, D, 2, false>(nullptr, s.Row(CbBase(S), b.a), s.Row(CrBase(S), b.a), s.Row(CbBase(S), b.b),
                                 s.Row(CrBase(S), b.b), nullptr, d.Row(1, i), d.Row(2, i), w / 2, b.wa, b.wb);
    }
}

// Checks of all four: pointers, then width < 2 or height < 4; after the work,
// zilStatusOddSize when a column or up to three rows were left over.
inline ZilStatus Checks(bool null, ZilSize sz) {
    if (null) return zilStatusNullPointer;
    if (TooSmall(sz, 2, 4)) return zilStatusBadSize;
    return zilStatusOk;
}
inline ZilStatus Leftover(ZilSize sz) { return ((sz.width & 1) || (sz.height & 3)) ? zilStatusOddSize : zilStatusOk; }

}  // namespace
}  // namespace zil::refmt

using namespace zil;
using namespace zil::refmt;

// ---- row work of the 420-to-422 direction ----------------------------------------------
ZIL_IMPL void mx_ownYCbCr420To422_Interlace_P3R(const SrcSide& s, const DstSide& d, int w, int h, int top,
                                                int bottom) {
    Up420To422<kPlanes, kPlanes>(s, d, w, h, top, bottom);
}
ZIL_IMPL void mx_ownYCbCr420ToCbYCr422_Interlace_P3C2R(const SrcSide& s, const DstSide& d, int w, int h, int top,
                                                       int bottom) {
    Up420To422<kPlanes, kCbYCr422>(s, d, w, h, top, bottom);
}

// ---- row layers: width rounded down to even, height to a multiple of 4 -------------------
ZIL_IMPL void mx_myYCbCr420To422_Interlace_P3R(const SrcSide& s, const DstSide& d, int w, int h) {
    mx_ownYCbCr420To422_Interlace_P3R(s, d, w & ~1, h & ~3, 1, 1);
}
ZIL_IMPL void mx_myYCbCr420ToCbYCr422_Interlace_P3C2R(const SrcSide& s, const DstSide& d, int w, int h) {
    mx_ownYCbCr420ToCbYCr422_Interlace_P3C2R(s, d, w & ~1, h & ~3, 1, 1);
}
ZIL_IMPL void mx_myYCbCr422To420_Interlace_P3R(const SrcSide& s, const DstSide& d, int w, int h) {
    Down422To420<kPlanes, kPlanes>(s, d, w & ~1, h & ~3);
}
ZIL_IMPL void mx_myCbYCr422ToYCbCr420_Interlace_C2P3R(const SrcSide& s, const DstSide& d, int w, int h) {
    Down422To420<kCbYCr422, kPlanes>(s, d, w & ~1, h & ~3);
}

// ---- exports ------------------------------------------------------------------------------
ZIL_IMPL ZilStatus mx_ziliYCbCr420To422_Interlace_8u_P3R(const uint8_t* const src[3], const int srcStep[3],
                                                        uint8_t* const dst[3], const int dstStep[3], ZilSize sz) {
    if (ZilStatus st = Checks(NullArr3(src) || NullArr3(dst), sz)) return st;
    mx_myYCbCr420To422_Interlace_P3R(FromP3(src, srcStep), FromP3(dst, dstStep), sz.width, sz.height);
    return Leftover(sz);
}
ZIL_IMPL ZilStatus mx_ziliYCbCr420ToCbYCr422_Interlace_8u_P3C2R(const uint8_t* const src[3], const int srcStep[3],
                                                               uint8_t* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = Checks(NullArr3(src) || !dst, sz)) return st;
    mx_myYCbCr420ToCbYCr422_Interlace_P3C2R(FromP3(src, srcStep), FromC2(dst, dstStep), sz.width, sz.height);
    return Leftover(sz);
}
ZIL_IMPL ZilStatus mx_ziliYCbCr422To420_Interlace_8u_P3R(const uint8_t* const src[3], const int srcStep[3],
                                                        uint8_t* const dst[3], const int dstStep[3], ZilSize sz) {
    if (ZilStatus st = Checks(NullArr3(src) || NullArr3(dst), sz)) return st;
    mx_myYCbCr422To420_Interlace_P3R(FromP3(src, srcStep), FromP3(dst, dstStep), sz.width, sz.height);
    return Leftover(sz);
}
ZIL_IMPL ZilStatus mx_ziliCbYCr422ToYCbCr420_Interlace_8u_C2P3R(const uint8_t* src, int srcStep,
                                                               uint8_t* const dst[3], const int dstStep[3],
                                                               ZilSize sz) {
    if (ZilStatus st = Checks(!src || NullArr3(dst), sz)) return st;
    mx_myCbYCr422ToYCbCr420_Interlace_C2P3R(FromC2(src, srcStep), FromP3(dst, dstStep), sz.width, sz.height);
    return Leftover(sz);
}

// ---- NV12 to YUY2 deinterlacing edges ----------------------------------------------------
// Top: rows 0 and 1 and then pairs up to row h-3 (rows 0 and 1 also when h is 2).
ZIL_IMPL void mx_myNV12ToYUY2Deinterlace_edge_top_P2C2R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr,
                                                        int srcCbCrStep, uint8_t* dst, int dstStep, ZilSize roi) {
    const SliceSrc s{srcY, srcYStep, srcCbCr, srcCbCrStep, 0, 0};
    const int h = roi.height, rows = h > 4 ? h - 2 : 2;
    for (int r = 0; r < rows; ++r) {
        const C2Taps t = TapsC2(Slice::Top, r, h);
        FilterRowC2(s, t.y, t.c, dst + ptrdiff_t(r) * dstStep, roi.width / 2);
    }
}
// Bottom, from bases moved back two luma rows and one chroma row: h rows of the
// interior formulas, then the region's last two rows.
ZIL_IMPL void mx_myNV12ToYUY2Deinterlace_edge_bottom_P2C2R(const uint8_t* srcY, int srcYStep,
                                                           const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst,
                                                           int dstStep, ZilSize roi) {
    const SliceSrc s{srcY, srcYStep, srcCbCr, srcCbCrStep, 0, 0};
    const int h = roi.height;
    for (int r = 0; r < h + 2; ++r) {
        const C2Taps t = TapsC2(Slice::Bottom, r, h);
        FilterRowC2(s, t.y, t.c, dst + ptrdiff_t(r) * dstStep, roi.width / 2);
    }
}
