// The outer two-pixel frame of CFAToRGB: rows 0, 1, H-2, H-1 and columns 0,
// 1, W-2, W-1. No gradient test here, and nothing is read outside the image: a
// neighbour that does not exist is replaced by the one on the other side.
//
// Each routine gets a grid code read at its own first row or column (see the
// driver for which code each call gets); columns and rows are counted in
// absolute image coordinates for every parity test.
#pragma once

#include "cfa_kernels.h"

namespace zil::cfa {

struct Origin {
    int32_t x, y;
};

inline constexpr int32_t Min(int32_t a, int32_t b) { return a < b ? a : b; }
inline constexpr int32_t Max(int32_t a, int32_t b) { return a > b ? a : b; }

// ---- three lines: rows 1 and H-2, columns 1 and W-2 ---------------------------
// Away from a line end this is the interior rule without steering: green at a
// red or blue site is the mean of all four neighbours. s at the pixel's own
// sample, st the step between the three lines.
template <class T>
inline void ThreeLineMid(Site site, const T* s, ptrdiff_t st, T* o) {
    if (IsGreen(site))
        PutAny(site, o, s[0], Mean2(s[-1], s[1]), Mean2(s[-st], s[st]));
    else
        PutAny(site, o, s[0], Mean4(s[-st], s[-1], s[1], s[st]),
               Mean4(s[-st - 1], s[-st + 1], s[st - 1], s[st + 1]));
}

// At column 0 (d = +1) or W-1 (d = -1) of row 1 or H-2: the missing side is
// replaced by the existing one, which then weighs double in green.
template <class T>
inline void ThreeLineEnd(Site site, const T* s, ptrdiff_t st, int d, T* o) {
    if (IsGreen(site))
        PutAny(site, o, s[0], s[d], Mean2(s[-st], s[st]));
    else
        PutAny(site, o, s[0], (s[-st] + 2 * s[d] + s[st] + 2) >> 2, Mean2(s[-st + d], s[st + d]));
}

// Output row: columns x .. min(x + w - 1, W - 1) of the row below `src`
// (column 0 of the row above). `code` holds at src's row and an even column.
template <class T>
void BrdHrz3(const T* src, ZilSize srcSize, int srcStep, Origin roiOrigin, ZilSize roiSize, T* dst, int code) {
    const int W = srcSize.width;
    const ptrdiff_t st = srcStep;
    const Phase ph = PhaseOf(code);
    const T* a = src + st;
    const int c1 = Min(roiOrigin.x + roiSize.width - 1, W - 1);
    for (int c = roiOrigin.x; c <= c1; ++c) {
        const Site site = SiteAt(ph, c, 1);
        T* o = dst + 3 * (c - roiOrigin.x);
        if (c == 0)
            ThreeLineEnd(site, a + c, st, +1, o);
        else if (c == W - 1)
            ThreeLineEnd(site, a + c, st, -1, o);
        else
            ThreeLineMid(site, a + c, st, o);
    }
}

// Output column: the column after `src`'s, rows max(y, 2) .. min(y + h - 1, H - 3);
// src is in row max(y, 2). `code` holds at src's column and an even row. Never
// at a line end.
template <class T>
void BrdVrt3(const T* src, ZilSize srcSize, int srcStep, Origin roiOrigin, ZilSize roiSize, T* dst, int dstStep,
             int code) {
    const ptrdiff_t st = srcStep, ds = dstStep;
    const Phase ph = PhaseOf(code);
    const int r0 = Max(roiOrigin.y, 2), r1 = Min(roiOrigin.y + roiSize.height - 1, srcSize.height - 3);
    for (int r = r0; r <= r1; ++r) ThreeLineMid(SiteAt(ph, 1, r), src + (r - r0) * st + 1, st, dst + (r - r0) * ds);
}

// ---- two lines along a row: rows 0 and H-1 ------------------------------------
// a: column 0 of the outermost row, b: column 0 of the row next to it; `rel`
// is the outer row's parity relative to where `ph` holds. Columns x .. min(x + w - 1, W - 1).
template <class T>
void TwoLineRow(const T* a, const T* b, int W, Phase ph, int rel, int x, int w, T* dst) {
    const int c1 = Min(x + w - 1, W - 1);
    for (int c = x; c <= c1; ++c) {
        const Site site = SiteAt(ph, c, rel);
        T* o = dst + 3 * (c - x);
        const int d = c == 0 ? +1 : (c == W - 1 ? -1 : 0);  // column 0 first
        if (IsGreen(site)) {
            PutAny(site, o, a[c], d ? int32_t(a[c + d]) : Mean2(a[c - 1], a[c + 1]), b[c]);
        } else if (d) {
            PutAny(site, o, a[c], Mean2(a[c + d], b[c]), b[c + d]);
        } else {
            PutAny(site, o, a[c], (a[c - 1] + 2 * b[c] + a[c + 1] + 2) >> 2, Mean2(b[c - 1], b[c + 1]));
        }
    }
}

// Row H-1: src at column 0 of row H-2, `code` holding at row H-2 and an even column.
template <class T>
void BrdHrz2D(const T* src, ZilSize srcSize, int srcStep, Origin roiOrigin, ZilSize roiSize, T* dst, int code) {
    TwoLineRow(src + ptrdiff_t(srcStep), src, srcSize.width, PhaseOf(code), 1, roiOrigin.x, roiSize.width, dst);
}

// ---- two lines along a column: columns 0 and W-1, rows r0 .. r1 ----------------
// a: the outermost column's sample in row r0, e: +1 or -1 towards the adjacent
// column; column `c` and phase `ph` absolute.
template <class T>
void TwoLineCol(const T* a, int e, ptrdiff_t st, Phase ph, int c, int r0, int r1, T* dst, ptrdiff_t ds) {
    for (int r = r0; r <= r1; ++r, a += st, dst += ds) {
        const Site site = SiteAt(ph, c, r);
        if (IsGreen(site))
            PutAny(site, dst, a[0], a[e], Mean2(a[-st], a[st]));
        else
            PutAny(site, dst, a[0], (a[-st] + 2 * a[e] + a[st] + 2) >> 2, Mean2(a[e - st], a[e + st]));
    }
}

// ---- codes for the far side -----------------------------------------------------
// A pattern read one column further on swaps 0 and 2, 1 and 3 (BGGR <-> GBRG,
// RGGB <-> GRBG); one row further on swaps 0 and 3, 1 and 2 (BGGR <-> GRBG,
// RGGB <-> GBRG).
inline constexpr int NextColumn(int g) { return g ^ 2; }
inline constexpr int NextRow(int g) { return g ^ 3; }
static_assert(NextColumn(0) == 2 && NextColumn(1) == 3 && NextColumn(2) == 0 && NextColumn(3) == 1);
static_assert(NextRow(0) == 3 && NextRow(1) == 2 && NextRow(2) == 1 && NextRow(3) == 0);

// ---- the driver -----------------------------------------------------------------
// src at image sample (0,0); dst at the output pixel of the clipped region's
// first sample; the region x, y, w, h already clipped and not empty. Steps in
// elements. Writes the frame's pixels inside the region, nothing else.
template <class T, auto Hrz3, auto Hrz2D, auto Vrt3>
void BayerBorder(const T* src, ZilSize srcSize, int srcStep, Origin roiOrigin, ZilSize roiSize, T* dst, int dstStep,
                 int grid) {
    const int W = srcSize.width, H = srcSize.height;
    const int x = roiOrigin.x, y = roiOrigin.y, w = roiSize.width, h = roiSize.height;
    const ptrdiff_t st = srcStep, ds = dstStep;
    const Phase ph = PhaseOf(grid);
    T* const dst0 = dst;

    // Top: rows 0 and 1; dst ends at row max(y, 2).
    if (y == 0) {
        TwoLineRow(src, src + st, W, ph, 0, x, w, dst);
        dst += ds;
        if (H >= 3 && h >= 2) {
            Hrz3(src, srcSize, srcStep, roiOrigin, roiSize, dst, grid);
            dst += ds;
        }
    } else if (y == 1 && H >= 3) {
        Hrz3(src, srcSize, srcStep, roiOrigin, roiSize, dst, grid);
        dst += ds;
    }

    // Left and right: rows max(y, 2) .. min(y + h - 1, H - 3).
    const int r0 = Max(y, 2), r1 = Min(y + h - 1, H - 3);
    const T* s0 = src + r0 * st;
    if (x == 0) {
        TwoLineCol(s0, +1, st, ph, 0, r0, r1, dst, ds);
        if (W >= 3 && w >= 2) Vrt3(s0, srcSize, srcStep, roiOrigin, roiSize, dst + 3, dstStep, grid);
    } else if (x == 1 && W >= 3) {
        Vrt3(s0, srcSize, srcStep, roiOrigin, roiSize, dst, dstStep, grid);
    }
    if (W >= 3 && W - 1 <= x + w && x < W - 1) {
        const int code = (W & 1) ? grid : NextColumn(grid);
        Vrt3(s0 + (W - 3), srcSize, srcStep, roiOrigin, roiSize, dst + 3 * (W - x - 2), dstStep, code);
    }
    if (x + w == W) TwoLineCol(s0 + (W - 1), -1, st, ph, W - 1, r0, r1, dst + 3 * (W - x - 1), ds);

    // Bottom: rows H-2 and H-1, placed from the region's first output row.
    if (H >= 3 && H - 1 <= y + h && y < H - 1) {
        const int code = (H & 1) ? grid : NextRow(grid);
        Hrz3(src + (H - 3) * st, srcSize, srcStep, roiOrigin, roiSize, dst0 + (H - y - 2) * ds, code);
    }
    if (y + h == H) {
        const int code = (H & 1) ? NextRow(grid) : grid;
        Hrz2D(src + (H - 2) * st, srcSize, srcStep, roiOrigin, roiSize, dst0 + (H - y - 1) * ds, code);
    }
}

}  // namespace zil::cfa
