// Row layers of the RGB <-> YUV family: a turn is one image row (two for
// 4:2:0); each channel row pointer advances by its own byte step per turn.
#pragma once

#include "yuv_kernels.h"

namespace zil::yuv {

struct Walk {
    Rows at;           // the first turn's channel rows
    ptrdiff_t ss[6];   // per-turn advance of each source channel row
    ptrdiff_t ds[8];   // per-turn advance of each destination channel row
};

template <RowKernel K>
void WalkRows(const Walk& wk, int width, int turns, uint8_t alpha) {
    Rows rw = wk.at;
    for (int t = 0; t < turns; ++t) {
        K(rw, width, alpha);
        for (int i = 0; i < 6; ++i) rw.s[i] += wk.ss[i];
        for (int i = 0; i < 8; ++i) rw.d[i] += wk.ds[i];
    }
}

// Binds a row kernel (a member row applied to a kernel template) to the named
// kernel INNER and its row layer MY, which walks it over the rows.
#define ZIL_ROW_LAYERS(MY, INNER, ...)                                                 \
    ZIL_IMPL void INNER(const Rows& rw, int width, uint8_t alpha) { __VA_ARGS__(rw, width, alpha); } \
    ZIL_IMPL void MY(const Walk& wk, int width, int turns, uint8_t alpha) {            \
        WalkRows<INNER>(wk, width, turns, alpha);                                      \
    }

// Three channel rows starting at `slot`: the lanes of an interleaved image
// (layout L) or three planes, each advancing by `step` per turn.
inline void SrcLanes(Walk& w, int slot, const uint8_t* base, ptrdiff_t step, const Layout& L) {
    const int8_t off[3] = {L.c0, L.c1, L.c2};
    for (int c = 0; c < 3; ++c) w.at.s[slot + c] = base + off[c], w.ss[slot + c] = step;
}
inline void SrcPlanes(Walk& w, int slot, const uint8_t* const* p, ptrdiff_t step, ptrdiff_t offset = 0) {
    for (int c = 0; c < 3; ++c) w.at.s[slot + c] = p[c] + offset, w.ss[slot + c] = step;
}
inline void DstLanes(Walk& w, int slot, uint8_t* base, ptrdiff_t step, const Layout& L) {
    const int8_t off[4] = {L.c0, L.c1, L.c2, L.a};
    for (int c = 0; c < 4; ++c)
        if (off[c] >= 0) w.at.d[slot + c] = base + off[c], w.ds[slot + c] = step;
}
inline void DstPlanes(Walk& w, int slot, uint8_t* const* p, ptrdiff_t step) {
    for (int c = 0; c < 3; ++c) w.at.d[slot + c] = p[c], w.ds[slot + c] = step;
}

// The tail of a full-resolution check layer: given the status of the
// member's checks, sets up the walk over interleaved pixels (layout S or D)
// or planes on either side and runs the row layer My over the image.
using RowLayer = void (*)(const Walk&, int width, int turns, uint8_t alpha);
template <const Layout& S, const Layout& D, RowLayer My>
ZilStatus RunPixels(ZilStatus st, const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz,
                    uint8_t alpha = 0) {
    if (st) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, S);
    DstLanes(w, 0, dst, dstStep, D);
    My(w, sz.width, sz.height, alpha);
    return zilStatusOk;
}
template <const Layout& S, RowLayer My>
ZilStatus RunPixelsToPlanes(ZilStatus st, const uint8_t* src, int srcStep, uint8_t* const* dst, int dstStep,
                            ZilSize sz) {
    if (st) return st;
    Walk w{};
    SrcLanes(w, 0, src, srcStep, S);
    DstPlanes(w, 0, dst, dstStep);
    My(w, sz.width, sz.height, 0);
    return zilStatusOk;
}
template <const Layout& D, RowLayer My>
ZilStatus RunPlanesToPixels(ZilStatus st, const uint8_t* const* src, int srcStep, uint8_t* dst, int dstStep,
                            ZilSize sz, uint8_t alpha = 0) {
    if (st) return st;
    Walk w{};
    SrcPlanes(w, 0, src, srcStep);
    DstLanes(w, 0, dst, dstStep, D);
    My(w, sz.width, sz.height, alpha);
    return zilStatusOk;
}
template <RowLayer My>
ZilStatus RunPlanes(ZilStatus st, const uint8_t* const* src, int srcStep, uint8_t* const* dst, int dstStep,
                    ZilSize sz) {
    if (st) return st;
    Walk w{};
    SrcPlanes(w, 0, src, srcStep);
    DstPlanes(w, 0, dst, dstStep);
    My(w, sz.width, sz.height, 0);
    return zilStatusOk;
}

// 4:2:0 walks: the luma (or RGB) rows of a turn are rows 2t and 2t + 1.
inline void Src420Lanes(Walk& w, const uint8_t* base, ptrdiff_t step, const Layout& L) {
    SrcLanes(w, 0, base, 2 * step, L);
    SrcLanes(w, 3, base + step, 2 * step, L);
}
inline void Src420Planes(Walk& w, const uint8_t* const* p, ptrdiff_t step) {
    SrcPlanes(w, 0, p, 2 * step);
    SrcPlanes(w, 3, p, 2 * step, step);
}
inline void Dst420Yuv(Walk& w, uint8_t* const* p, const int* step) {
    w.at.d[0] = p[0], w.ds[0] = 2 * ptrdiff_t(step[0]);
    w.at.d[1] = p[0] + step[0], w.ds[1] = 2 * ptrdiff_t(step[0]);
    w.at.d[2] = p[1], w.ds[2] = step[1];
    w.at.d[3] = p[2], w.ds[3] = step[2];
}
inline void Src420Yuv(Walk& w, const uint8_t* const* p, const int* step) {
    w.at.s[0] = p[0], w.ss[0] = 2 * ptrdiff_t(step[0]);
    w.at.s[1] = p[0] + step[0], w.ss[1] = 2 * ptrdiff_t(step[0]);
    w.at.s[2] = p[1], w.ss[2] = step[1];
    w.at.s[3] = p[2], w.ss[3] = step[2];
}
inline void Dst420Lanes(Walk& w, uint8_t* base, ptrdiff_t step, const Layout& L) {
    DstLanes(w, 0, base, 2 * step, L);
    DstLanes(w, 4, base + step, 2 * step, L);
}
inline void Dst420Planes(Walk& w, uint8_t* const* p, ptrdiff_t step) {
    for (int c = 0; c < 3; ++c) {
        w.at.d[c] = p[c], w.ds[c] = 2 * step;
        w.at.d[4 + c] = p[c] + step, w.ds[4 + c] = 2 * step;
    }
}

// The 4:2:2 forms without steps may treat a dense image of even width and at
// least 256 pixels as one row of width * height pixels: the kernel runs over
// the pixel count with its low three bits cleared, then over the rest, at the
// matching offsets. Same bytes as the row walk, without a call per row.
inline bool FlatPath(ZilSize sz) { return int64_t(sz.width) * sz.height >= 256 && (sz.width & 1) == 0; }

// Runs kernel K over n pixels of a dense image as one row: first n with its
// low three bits cleared, then the rest. Channel rows advance per pixel by
// half[c] / 2 bytes (half[c] = 2 x pixel size; 1 for a 4:2:2 chroma plane).
template <RowKernel K>
void RunFlat(const Walk& wk, int n, const int (&sHalf)[3], const int (&dHalf)[3]) {
    const int head = n & ~7;
    K(wk.at, head, 0);
    if (n > head) {
        Rows rest = wk.at;
        for (int c = 0; c < 3; ++c) {
            rest.s[c] += ptrdiff_t(head / 2) * sHalf[c];
            rest.d[c] += ptrdiff_t(head / 2) * dHalf[c];
        }
        K(rest, n - head, 0);
    }
}

// ---- checks ------------------------------------------------------------------------
// Form A: the pointers, then the size. Form B: the pointer arguments (plane and
// step arrays themselves), then the size, then the plane entries.
inline ZilStatus FormA(bool null, ZilSize sz) {
    if (null) return zilStatusNullPointer;
    if (TooSmall(sz)) return zilStatusBadSize;
    return zilStatusOk;
}
template <class Entries>
ZilStatus FormB(bool null, ZilSize sz, Entries entriesNull, int32_t minW = 1, int32_t minH = 1) {
    if (null) return zilStatusNullPointer;
    if (TooSmall(sz, minW, minH)) return zilStatusBadSize;
    if (entriesNull()) return zilStatusNullPointer;
    return zilStatusOk;
}
inline bool Null3(const uint8_t* const* p) { return AnyNull(p[0], p[1], p[2]); }

// 4:2:0 forms convert whole cells and warn when a row or column is left over.
inline ZilStatus CellStatus(ZilSize sz) { return ((sz.width | sz.height) & 1) ? zilStatusOddSize : zilStatusOk; }

}  // namespace zil::yuv
