// Filtered 4:2:0 conversions: the two slice filters with a `layout`, the
// four-tap chroma interpolators and the 4:2:0 YCrCb to BGRA converter that
// averages chroma across.
#include "primitives/utils.h"
#include "vertical.h"

namespace zil::refmt {
namespace {

// ---- 4:2:0 to 4:2:0 slice filter -----------------------------------------------------------
__attribute__((noinline)) void FilterLumaRow(const uint8_t* __restrict ya, const uint8_t* __restrict yb,
                                             const uint8_t* __restrict yc, int rnd, uint8_t* __restrict d, int n) {
    for (int x = 0; x < n; ++x) d[x] = Min255((ya[x] + 2 * yb[x] + yc[x] + rnd) >> 2);
}
// First byte of each pair to d1, second to d2.
__attribute__((noinline)) void FilterPairRow(const uint8_t* __restrict ca, const uint8_t* __restrict cb, int rnd,
                                             uint8_t* __restrict d1, uint8_t* __restrict d2, int pairs) {
    for (int j = 0; j < pairs; ++j) {
        d1[j] = Min255((ca[2 * j] + cb[2 * j] + rnd) >> 1);
        d2[j] = Min255((ca[2 * j + 1] + cb[2 * j + 1] + rnd) >> 1);
    }
}

// Luma rows written (counted from the moved base) and their taps.
constexpr int LumaRows420(Slice s, int h) {
    return s == Slice::Top ? (h > 2 ? h - 2 : 1) : s == Slice::Bottom ? h + 2 : h;
}
constexpr YTaps LumaTaps420(Slice s, int r, int h) {
    if (s == Slice::Whole) {
        if (r == 0) return {0, 0, 1, 4};
        if (r == h - 1) return {h - 2, h - 1, h - 1, 4};
        return {r - 1, r, r + 1, 4};
    }
    if (s == Slice::Top && r == 0) return {0, 0, 1, 0};
    if (s == Slice::Bottom && r == h + 1) return {h, h + 1, h + 1, 0};
    return {r - 1, r, r + 1, 0};
}
constexpr int ChromaRows420(Slice s, int h) {
    return s == Slice::Top ? (h - 2) / 2 : s == Slice::Bottom ? h / 2 + 1 : h / 2;
}
constexpr CTaps ChromaTaps420(Slice s, int i, int h) {
    if (s == Slice::Whole) {
        if (h == 2) return {0, 0, 0};
        // The last row copies the row above: the same two source rows.
        return i == h / 2 - 1 ? CTaps{i - 1, i, 2} : CTaps{i, i + 1, 2};
    }
    if (s == Slice::Bottom && i == h / 2) return {i, i - 1, 0};
    return {i, i + 1, 0};
}
static_assert(LumaTaps420(Slice::Whole, 1, 2).c == 1 && LumaTaps420(Slice::Whole, 0, 2).c == 1, "h = 2");

// ---- four-tap interpolation of the odd chroma rows ---------------------------------------
// Row 2k+1 from even rows 2k-2, 2k, 2k+2, 2k+4, those outside 0..H-2 replaced
// by the nearest even row: (9 (b + c) - a - d + 8) >> 4, limited to 0..255.
__attribute__((noinline)) void FourTapRow(const uint8_t* __restrict a, const uint8_t* __restrict b,
                                          const uint8_t* __restrict c, const uint8_t* __restrict e,
                                          uint8_t* __restrict d, int n) {
    for (int x = 0; x < n; ++x) d[x] = uint8_t(Clamp255((9 * (b[x] + c[x]) - a[x] - e[x] + 8) >> 4));
}

template <const Pack& S>
__attribute__((noinline)) void ChromaToPlanes(const uint8_t* __restrict s, uint8_t* __restrict db,
                                              uint8_t* __restrict dr, int n) {
    constexpr int cs = CStride(S), bo = CbOff(S), ro = CrOff(S);
    for (int j = 0; j < n; ++j) db[j] = s[j * cs + bo], dr[j] = s[j * cs + ro];
}
template <const Pack& S>
__attribute__((noinline)) void ChromaToPlane(const uint8_t* __restrict s, uint8_t* __restrict d, int n) {
    for (int j = 0; j < n; ++j) d[j] = s[j];
}

template <const Pack& S>
ZilStatus FourTap(bool null, const SrcSide& s, const DstSide& d, ZilSize sz) {
    if (null) return zilStatusNullPointer;
    if (TooSmall(sz, 2, 8)) return zilStatusBadSize;
    const int w = sz.width & ~1, H = sz.height & ~7, cw = w / 2;
    mx_ziliCopy_8u_C1R(s.p[0], int(s.s[0]), d.p[0], int(d.s[0]), ZilSize{w, H});
    for (int i = 0; i < H / 2; ++i) {
        if constexpr (S.kind == Pk::P2) {
            ChromaToPlanes<S>(s.Row(1, i), d.Row(1, 2 * i), d.Row(2, 2 * i), cw);
        } else {
            ChromaToPlane<S>(s.Row(CbBase(S), i), d.Row(1, 2 * i), cw);
            ChromaToPlane<S>(s.Row(CrBase(S), i), d.Row(2, 2 * i), cw);
        }
    }
    auto even = [H](int r) { return r < 0 ? 0 : r > H - 2 ? H - 2 : r; };
    for (int p = 1; p <= 2; ++p)
        for (int k = 0; k < H / 2; ++k)
            FourTapRow(d.Row(p, even(2 * k - 2)), d.Row(p, 2 * k), d.Row(p, even(2 * k + 2)),
                       d.Row(p, even(2 * k + 4)), d.Row(p, 2 * k + 1), cw);
    return zilStatusOk;
}

// ---- 4:2:0 YCrCb to BGRA, chroma averaged across --------------------------------------------
// Left column of a block (and both columns of a row's last block) from the
// block's own chroma with the offsets folded into the constants; the right
// column from the rounded mean with the next block's chroma.
struct Bgr {
    int b, g, r;
};
constexpr Bgr FromOwn(int y, int cr, int cb) {
    return {(132201 * cb + 76309 * y - 18142672) >> 16,
            (-53279 * cr - 25675 * cb + 10106112 + 76309 * y - 1220944) >> 16,
            (104597 * cr + 76309 * y - 14609360) >> 16};
}
constexpr Bgr FromMean(int y, int r, int b) {
    return {(132201 * b + 76309 * y - 1220944) >> 16, (-53279 * r - 25675 * b + 76309 * y - 1220944) >> 16,
            (104597 * r + 76309 * y - 1220944) >> 16};
}
static_assert(14609360 == 76309 * 16 + 104597 * 128 && 18142672 == 76309 * 16 + 132201 * 128 &&
              1220944 == 76309 * 16 && 10106112 == (53279 + 25675) * 128, "folded offsets");

inline void Put(uint8_t* p, Bgr c, uint8_t alpha) {
    p[0] = uint8_t(Clamp255(c.b)), p[1] = uint8_t(Clamp255(c.g)), p[2] = uint8_t(Clamp255(c.r)), p[3] = alpha;
}

__attribute__((noinline)) void BgrFilterRow(const uint8_t* __restrict y, const uint8_t* __restrict cr,
                                            const uint8_t* __restrict cb, uint8_t* __restrict d, int full,
                                            uint8_t alpha) {
    for (int j = 0; j < full; ++j) {
        const int r = ((cr[j] + cr[j + 1] + 1) >> 1) - 128, b = ((cb[j] + cb[j + 1] + 1) >> 1) - 128;
        Put(d + 8 * j, FromOwn(y[2 * j], cr[j], cb[j]), alpha);
        Put(d + 8 * j + 4, FromMean(y[2 * j + 1], r, b), alpha);
    }
    Put(d + 8 * full, FromOwn(y[2 * full], cr[full], cb[full]), alpha);
    Put(d + 8 * full + 4, FromOwn(y[2 * full + 1], cr[full], cb[full]), alpha);
}

}  // namespace
}  // namespace zil::refmt

using namespace zil;
using namespace zil::refmt;

// ---- slice filters --------------------------------------------------------------------------
ZIL_IMPL ZilStatus mx_ziliYCbCr420ToYCbCr422_Filter_8u_P2C2R(const uint8_t* srcY, int srcYStep,
                                                            const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst,
                                                            int dstStep, ZilSize sz, uint32_t layout) {
    if (AnyNull(srcY, srcCbCr, dst)) return zilStatusNullPointer;
    if (TooSmall(sz, 2, 2)) return zilStatusBadSize;
    const ZilSize r{sz.width & ~1, sz.height & ~1};
    const Slice s = SliceOf(layout);
    if (s == Slice::Top) {
        mx_myNV12ToYUY2Deinterlace_edge_top_P2C2R(srcY, srcYStep, srcCbCr, srcCbCrStep, dst, dstStep, r);
    } else if (s == Slice::Middle || s == Slice::Bottom) {
        // Bases moved back: two luma rows, one chroma row, two output rows.
        const uint8_t* y = srcY - 2 * ptrdiff_t(srcYStep);
        const uint8_t* c = srcCbCr - ptrdiff_t(srcCbCrStep);
        uint8_t* d = dst - 2 * ptrdiff_t(dstStep);
        if (s == Slice::Bottom) {
            mx_myNV12ToYUY2Deinterlace_edge_bottom_P2C2R(y, srcYStep, c, srcCbCrStep, d, dstStep, r);
        } else {
            const SliceSrc m{y, srcYStep, c, srcCbCrStep, 0, 0};
            for (int row = 0; row < r.height; ++row) {
                const C2Taps t = TapsC2(Slice::Middle, row, r.height);
                FilterRowC2(m, t.y, t.c, d + ptrdiff_t(row) * dstStep, r.width / 2);
            }
        }
    } else if (s == Slice::Whole) {
        const SliceSrc m{srcY, srcYStep, srcCbCr, srcCbCrStep, 0, 0};
        for (int row = 0; row < r.height; ++row) {
            const C2Taps t = TapsC2(Slice::Whole, row, r.height);
            FilterRowC2(m, t.y, t.c, dst + ptrdiff_t(row) * dstStep, r.width / 2);
        }
    }
    return zilStatusOk;
}

// Chroma pairs split without a swap. Middle, bottom and whole-image modes
// advance destination plane 1 by the step of plane 2 and plane 2 by that of
// plane 1; equal chroma steps make this invisible.
ZIL_IMPL ZilStatus mx_ziliYCbCr420ToYCrCb420_Filter_8u_P2P3R(const uint8_t* srcY, int srcYStep,
                                                            const uint8_t* srcCbCr, int srcCbCrStep,
                                                            uint8_t* const dst[3], const int dstStep[3], ZilSize sz,
                                                            uint32_t layout) {
    if (AnyNull(srcY, srcCbCr, dst)) return zilStatusNullPointer;
    if (TooSmall(sz)) return zilStatusBadSize;
    if (NullEntries3(dst)) return zilStatusNullPointer;
    const int w = sz.width & ~1, h = sz.height & ~1;
    if (sz.width < 2 || h < 2) return zilStatusBadSize;
    const Slice s = SliceOf(layout);
    if (s == Slice::None) return zilStatusOk;
    const bool moved = s == Slice::Middle || s == Slice::Bottom, crossed = s != Slice::Top;
    const SliceSrc m{srcY, srcYStep, srcCbCr, srcCbCrStep, moved ? -2 : 0, moved ? -1 : 0};
    const ptrdiff_t ys = dstStep[0], s1 = crossed ? dstStep[2] : dstStep[1], s2 = crossed ? dstStep[1] : dstStep[2];
    const int yo = moved ? -2 : 0, co = moved ? -1 : 0;
    for (int r = 0; r < LumaRows420(s, h); ++r) {
        const YTaps t = LumaTaps420(s, r, h);
        FilterLumaRow(m.Y(t.a), m.Y(t.b), m.Y(t.c), t.rnd, dst[0] + (yo + r) * ys, w);
    }
    for (int i = 0; i < ChromaRows420(s, h); ++i) {
        const CTaps t = ChromaTaps420(s, i, h);
        FilterPairRow(m.C(t.a), m.C(t.b), t.rnd, dst[1] + (co + i) * s1, dst[2] + (co + i) * s2, w / 2);
    }
    return zilStatusOk;
}

// ---- four-tap interpolators -------------------------------------------------------------------
ZIL_IMPL ZilStatus mx_ziliYCbCr420ToYCbCr422_Filter_8u_P3R(const uint8_t* const src[3], const int srcStep[3],
                                                          uint8_t* const dst[3], const int dstStep[3], ZilSize sz) {
    const bool null = NullArr3(src) || NullArr3(dst);
    return FourTap<kPlanes>(null, null ? SrcSide{} : FromP3(src, srcStep), null ? DstSide{} : FromP3(dst, dstStep),
                            sz);
}
ZIL_IMPL ZilStatus mx_ziliYCbCr420ToYCbCr422_Filter_8u_P2P3R(const uint8_t* srcY, int srcYStep,
                                                            const uint8_t* srcCbCr, int srcCbCrStep,
                                                            uint8_t* const dst[3], const int dstStep[3],
                                                            ZilSize sz) {
    const bool null = AnyNull(srcY, srcCbCr) || NullArr3(dst);
    return FourTap<kPairs>(null, FromP2(srcY, srcYStep, srcCbCr, srcCbCrStep), null ? DstSide{} : FromP3(dst, dstStep),
                           sz);
}
// Source planes Y, Cr, Cb; destination Y, Cb, Cr.
ZIL_IMPL ZilStatus mx_ziliYCrCb420ToYCbCr422_Filter_8u_P3R(const uint8_t* const src[3], const int srcStep[3],
                                                          uint8_t* const dst[3], const int dstStep[3], ZilSize sz) {
    const bool null = NullArr3(src) || NullArr3(dst);
    return FourTap<kPlanesCrCb>(null, null ? SrcSide{} : FromP3(src, srcStep),
                                null ? DstSide{} : FromP3(dst, dstStep), sz);
}

// ---- YCrCb 4:2:0 to BGRA ------------------------------------------------------------------------
// Blocks of 2x2: width / 2 - 1 full blocks and then the last block regardless,
// so a width of 1 writes two pixels; height / 2 row pairs, both on chroma row i.
ZIL_IMPL ZilStatus mx_ziliYCrCb420ToBGR_Filter_8u_P3C4R(const uint8_t* const src[3], const int srcStep[3],
                                                       uint8_t* dst, int dstStep, ZilSize sz, uint8_t alpha) {
    if (AnyNull(src, dst)) return zilStatusNullPointer;
    if (TooSmall(sz)) return zilStatusBadSize;
    if (NullEntries3(src)) return zilStatusNullPointer;
    const int half = sz.width >> 1, full = half > 0 ? half - 1 : 0;
    for (int i = 0; i < sz.height >> 1; ++i) {
        const uint8_t* cr = src[1] + ptrdiff_t(i) * srcStep[1];
        const uint8_t* cb = src[2] + ptrdiff_t(i) * srcStep[2];
        for (int k = 0; k < 2; ++k)
            BgrFilterRow(src[0] + ptrdiff_t(2 * i + k) * srcStep[0], cr, cb, dst + ptrdiff_t(2 * i + k) * dstStep, full,
                         alpha);
    }
    return ((sz.width | sz.height) & 1) ? zilStatusOddSize : zilStatusOk;
}
