// Vertical chroma (and luma) filters of the interlaced and slice-filtered
// 4:2:0 conversions. Each output row is a short weighted sum of source rows;
// which rows and which rounding term is data chosen per row by a schedule,
// and one kernel per output shape applies it across the row.
#pragma once

#include "reformat_common.h"

namespace zil::refmt {

// ---- two rows of one field: (wa a + wb b + 2^(Sh-1)) >> Sh ----------------------------
struct Blend {
    int a, wa, b, wb;  // source rows and their weights (summing to 2^Sh)
};

// One destination row with luma from row `sy` (when the destination carries
// luma in the same row) and chroma blended from source rows A and B.
template <const Pack& S, const Pack& D, int Sh, bool Luma>
__attribute__((noinline)) void BlendRow(const uint8_t* __restrict sy, const uint8_t* __restrict aB,
                                        const uint8_t* __restrict aR, const uint8_t* __restrict bB,
                                        const uint8_t* __restrict bR, uint8_t* __restrict dy,
                                        uint8_t* __restrict dB, uint8_t* __restrict dR, int pairs, int wa, int wb) {
    constexpr int scs = CStride(S), sbo = CbOff(S), sro = CrOff(S), dcs = CStride(D), dbo = CbOff(D), dro = CrOff(D);
    constexpr int sys = YStride(S), syo = YOff(S), dys = YStride(D), dyo = YOff(D);
    constexpr int rnd = 1 << (Sh - 1);
    const uint8_t* const ar = S.kind == Pk::C2 ? aB : aR;
    const uint8_t* const br = S.kind == Pk::C2 ? bB : bR;
    uint8_t* const db = D.kind == Pk::C2 ? dy : dB;
    uint8_t* const dr = D.kind == Pk::C2 ? dy : dR;
    for (int j = 0; j < pairs; ++j) {
        if constexpr (Luma) {
            dy[2 * j * dys + dyo] = sy[2 * j * sys + syo];
            dy[(2 * j + 1) * dys + dyo] = sy[(2 * j + 1) * sys + syo];
        }
        db[j * dcs + dbo] = uint8_t((wa * aB[j * scs + sbo] + wb * bB[j * scs + sbo] + rnd) >> Sh);
        dr[j * dcs + dro] = uint8_t((wa * ar[j * scs + sro] + wb * br[j * scs + sro] + rnd) >> Sh);
    }
}

// Luma of one row moved from one packing to another.
template <const Pack& S, const Pack& D>
__attribute__((noinline)) void CopyLumaRow(const uint8_t* __restrict sy, uint8_t* __restrict dy, int n) {
    constexpr int sys = YStride(S), syo = YOff(S), dys = YStride(D), dyo = YOff(D);
    for (int x = 0; x < n; ++x) dy[x * dys + dyo] = sy[x * sys + syo];
}

// ---- slice filters: luma (y[a] + 2 y[b] + y[c] + rnd) >> 2, chroma (c[a] + c[b] + rnd) >> 1,
// both limited to 255 (only a rounding term can reach 256).
struct YTaps {
    int a, b, c, rnd;
};
struct CTaps {
    int a, b, rnd;
};

enum class Slice : uint8_t { None, Top, Middle, Bottom, Whole };
// Exact values 1, 4 and 16 in that order, then the whole image: bits 1, 4 and 16 all set.
constexpr Slice SliceOf(uint32_t layout) {
    return layout == 1    ? Slice::Top
           : layout == 4  ? Slice::Middle
           : layout == 16 ? Slice::Bottom
           : ((layout & 17) == 17 && (layout & 4)) ? Slice::Whole
                                                  : Slice::None;
}

// A P2 image seen from a slice's moved bases: row k of each plane is at
// base + (off + k) * step, off being -2 (luma) or -1 (chroma) for the middle
// and bottom slices and 0 otherwise.
struct SliceSrc {
    const uint8_t* y;
    ptrdiff_t ys;
    const uint8_t* c;
    ptrdiff_t cs;
    int yOff, cOff;
    const uint8_t* Y(int r) const { return y + (yOff + r) * ys; }
    const uint8_t* C(int k) const { return c + (cOff + k) * cs; }
};

// One packed YCbCr422 output row (Y0 Cb Y1 Cr) from three luma rows and two
// pair rows.
__attribute__((noinline)) inline void FilterRowC2(const uint8_t* __restrict ya, const uint8_t* __restrict yb,
                                                  const uint8_t* __restrict yc, int yr,
                                                  const uint8_t* __restrict ca, const uint8_t* __restrict cb,
                                                  int cr, uint8_t* __restrict d, int pairs) {
    for (int j = 0; j < pairs; ++j) {
        d[4 * j] = Min255((ya[2 * j] + 2 * yb[2 * j] + yc[2 * j] + yr) >> 2);
        d[4 * j + 1] = Min255((ca[2 * j] + cb[2 * j] + cr) >> 1);
        d[4 * j + 2] = Min255((ya[2 * j + 1] + 2 * yb[2 * j + 1] + yc[2 * j + 1] + yr) >> 2);
        d[4 * j + 3] = Min255((ca[2 * j + 1] + cb[2 * j + 1] + cr) >> 1);
    }
}

inline void FilterRowC2(const SliceSrc& s, YTaps t, CTaps c, uint8_t* d, int pairs) {
    FilterRowC2(s.Y(t.a), s.Y(t.b), s.Y(t.c), t.rnd, s.C(c.a), s.C(c.b), c.rnd, d, pairs);
}

// Taps of output row r of a YCbCr422 slice of rounded height h, counted from
// the slice's (moved) bases. The top and bottom slices are the two
// deinterlacing edge routines; the middle and whole forms are the filter's own.
struct C2Taps {
    YTaps y;
    CTaps c;
};
constexpr C2Taps TapsC2(Slice s, int r, int h) {
    const int k = r / 2;
    const C2Taps inner{{r - 1, r, r + 1, 4}, {k, k + 1, 2}};
    switch (s) {
        case Slice::Whole:
            if (h == 2) return r == 0 ? C2Taps{{0, 0, 1, 4}, {0, 0, 0}} : C2Taps{{0, 1, 1, 4}, {0, 0, 0}};
            if (r == 0) return {{0, 0, 1, 4}, {0, 1, 2}};
            if (r == 1) return {{0, 1, 2, 4}, {0, 1, 2}};
            if (r < h - 2) return {{r - 1, r, r + 1, 4}, {k, k + 1, 0}};
            if (r == h - 2) return {{r - 1, r, r + 1, 4}, {h / 2 - 1, h / 2 - 2, 2}};
            return {{h - 2, h - 1, h - 1, 4}, {h / 2 - 1, h / 2 - 2, 2}};
        case Slice::Top:
            if (r == 0) return {{0, 0, 1, 4}, {0, 1, 2}};
            if (r == 1) return {{0, 1, 2, 0}, {0, 1, 2}};
            return inner;
        case Slice::Bottom:
            if (r == h) return {{h - 1, h, h + 1, 0}, {h / 2, h / 2 - 1, 0}};
            if (r == h + 1) return {{h, h + 1, h + 1, 0}, {h / 2, h / 2 - 1, 0}};
            return inner;
        default:
            return inner;
    }
}

}  // namespace zil::refmt

// The two NV12-to-YUY2 deinterlacing row routines, entered by the slice filter
// for its top (bases as given) and bottom (bases moved back) slices.
ZIL_IMPL void mx_myNV12ToYUY2Deinterlace_edge_top_P2C2R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr,
                                                        int srcCbCrStep, uint8_t* dst, int dstStep, ZilSize roi);
ZIL_IMPL void mx_myNV12ToYUY2Deinterlace_edge_bottom_P2C2R(const uint8_t* srcY, int srcYStep,
                                                           const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst,
                                                           int dstStep, ZilSize roi);
