// The interior rectangle kernels of CFAToRGB: every pixel by the steered rule.
//
// A rectangle row holds two sites that alternate by column; its pairs of
// columns are converted by one row template, specialised by the two sites, so
// that no pixel tests its own site. The four kernels differ only in which
// place of the 2x2 block holds red (RX, RY, counted from the rectangle's first
// sample).
#pragma once

#include "cfa_kernels.h"
#include "cfa_simd.h"

namespace zil::cfa {

// One row of `w` pixels whose even columns are site S0 and odd columns S1.
// s: the row's first sample; st: source step in elements; o: first output pixel.
template <Site S0, Site S1, class T>
inline void RectRow(const T* s, ptrdiff_t st, int w, T* __restrict o) {
    int i = RectRowWide<S0, S1>(s, st, w, o);  // whole groups of pairs, then pairs
    for (; i + 1 < w; i += 2) {
        InteriorPixel<S0>(s + i, st, o + 3 * i);
        InteriorPixel<S1>(s + i + 1, st, o + 3 * i + 3);
    }
    if (i < w) InteriorPixel<S0>(s + i, st, o + 3 * i);
}

// Sites at the even and the odd columns of a red row and of a blue row.
template <int RX>
inline constexpr Site kRedRowEven = RX == 0 ? Site::Red : Site::GreenRedRow;
template <int RX>
inline constexpr Site kRedRowOdd = RX == 0 ? Site::GreenRedRow : Site::Red;
template <int RX>
inline constexpr Site kBlueRowEven = RX == 0 ? Site::GreenBlueRow : Site::Blue;
template <int RX>
inline constexpr Site kBlueRowOdd = RX == 0 ? Site::Blue : Site::GreenBlueRow;

// width x height pixels; src and dst at the first sample and output pixel,
// steps in elements. Reads two samples beyond the rectangle on every side.
template <class T, int RX, int RY>
void BayerRect(const T* src, int srcStep, int width, int height, T* dst, int dstStep) {
    if (width < 1 || height < 1) return;
    const ptrdiff_t ss = srcStep, ds = dstStep;
    for (int j = 0; j < height; ++j) {
        const T* s = src + j * ss;
        T* o = dst + j * ds;
        if ((j & 1) == RY)
            RectRow<kRedRowEven<RX>, kRedRowOdd<RX>>(s, ss, width, o);
        else
            RectRow<kBlueRowEven<RX>, kBlueRowOdd<RX>>(s, ss, width, o);
    }
}

}  // namespace zil::cfa
