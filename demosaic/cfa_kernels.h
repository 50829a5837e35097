// Gradient-steered Bayer demosaicing (CFAToRGB): the site model and the
// per-pixel formulas shared by the interior kernels and the border routines.
//
// One source serves both depths (T = uint8_t or uint16_t) and all four filter
// phases. A phase is the position of the red sample inside a 2x2 block; blue
// sits diagonally opposite, greens on the other two places. Every sum is formed
// in 32 bits, so 16-bit samples cannot overflow; every result is a mean of
// samples and is stored without clamping.
#pragma once

#include "zil_common.h"

namespace zil::cfa {

// Where red lies in the 2x2 block that starts at an even column and row of
// whatever the pattern describes: rx, ry in {0, 1}.
struct Phase {
    int rx, ry;
};

// The four grid codes, by the letters top-left, top-right, bottom-left, bottom-right.
inline constexpr Phase kPhaseOfGrid[4] = {
    {1, 1},  // 0 BGGR
    {0, 0},  // 1 RGGB
    {0, 1},  // 2 GBRG
    {1, 0},  // 3 GRBG
};
inline constexpr bool GridOk(int32_t g) { return g >= 0 && g <= 3; }
inline constexpr Phase PhaseOf(int32_t g) { return kPhaseOfGrid[g]; }

enum class Site : uint8_t { Red, Blue, GreenRedRow, GreenBlueRow };

// The site of sample (c, r) counted from where the phase holds.
inline constexpr Site SiteAt(Phase p, int c, int r) {
    const bool redRow = (r & 1) == p.ry, redCol = (c & 1) == p.rx;
    return redRow ? (redCol ? Site::Red : Site::GreenRedRow) : (redCol ? Site::GreenBlueRow : Site::Blue);
}

// Stores one output pixel, channel order R, G, B. For a red or blue site `own`
// is its own colour, `x` green and `y` the other of red and blue; for a green
// site `own` is green, `x` the colour of its horizontal neighbours and `y` that
// of its vertical neighbours.
template <Site S, class T>
inline void Put(T* __restrict o, int32_t own, int32_t x, int32_t y) {
    if constexpr (S == Site::Red) o[0] = T(own), o[1] = T(x), o[2] = T(y);
    if constexpr (S == Site::Blue) o[0] = T(y), o[1] = T(x), o[2] = T(own);
    if constexpr (S == Site::GreenRedRow) o[0] = T(x), o[1] = T(own), o[2] = T(y);
    if constexpr (S == Site::GreenBlueRow) o[0] = T(y), o[1] = T(own), o[2] = T(x);
}
template <class T>
inline void PutAny(Site s, T* __restrict o, int32_t own, int32_t x, int32_t y) {
    switch (s) {
        case Site::Red: Put<Site::Red>(o, own, x, y); break;
        case Site::Blue: Put<Site::Blue>(o, own, x, y); break;
        case Site::GreenRedRow: Put<Site::GreenRedRow>(o, own, x, y); break;
        case Site::GreenBlueRow: Put<Site::GreenBlueRow>(o, own, x, y); break;
    }
}

inline constexpr bool IsGreen(Site s) { return s == Site::GreenRedRow || s == Site::GreenBlueRow; }

// Means with their rounding: two values (+1) >> 1, four weights (+2) >> 2.
inline constexpr int32_t Mean2(int32_t a, int32_t b) { return (a + b + 1) >> 1; }
inline constexpr int32_t Mean4(int32_t a, int32_t b, int32_t c, int32_t d) { return (a + b + c + d + 2) >> 2; }
inline constexpr int32_t Abs(int32_t v) { return v < 0 ? -v : v; }

// ---- interior rule ------------------------------------------------------------
// s points at the pixel's own sample, st is the row step in elements. Reads
// two samples each way.

// Green at a red or blue site: the pair along the smaller same-colour second
// difference; on a tie the mean of all four neighbours.
template <class T>
inline int32_t SteeredGreen(const T* s, ptrdiff_t st) {
    const int32_t dV = Abs(int32_t(s[-2 * st]) - int32_t(s[2 * st]));
    const int32_t dH = Abs(int32_t(s[-2]) - int32_t(s[2]));
    const int32_t l = s[-1], r = s[1], u = s[-st], d = s[st];
    if (dV < dH) return Mean2(u, d);
    if (dH < dV) return Mean2(l, r);
    return Mean4(l, r, u, d);
}

template <Site S, class T>
inline void InteriorPixel(const T* s, ptrdiff_t st, T* __restrict o) {
    if constexpr (IsGreen(S)) {
        Put<S>(o, s[0], Mean2(s[-1], s[1]), Mean2(s[-st], s[st]));
    } else {
        Put<S>(o, s[0], SteeredGreen(s, st), Mean4(s[-st - 1], s[-st + 1], s[st - 1], s[st + 1]));
    }
}

}  // namespace zil::cfa
