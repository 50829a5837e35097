// Adaptive homogeneity-directed demosaicing: the one kernel behind all phases
// and both depths.
//
// The region is extended by three samples on every side: extended column i
// (0 .. w + 5) is image column x - 3 + i, extended row j (0 .. h + 5) image row
// y - 3 + j; output pixels are i = 3 .. w + 2, j = 3 .. h + 2. Rows run through
// a four-stage pipeline, one row at a time, so the work area is 30 lines
// whatever the height:
//
//   read r       raw samples of row r, and the horizontal and vertical green
//                estimates at its red and blue sites (the only stage that
//                touches the source, and the only one that folds coordinates);
//   complete r-1 red and blue of both candidates, from colour differences
//                against each candidate's own green;
//   judge r-2    homogeneity difference E = h[H] - h[V] in a luma-chroma space;
//   select r-3   3x3 sum of E, tie carried along the row, copy of the winner.
//
// All arithmetic is signed 32-bit; >> is arithmetic and floors.
#pragma once

#include "ahd_members.h"
#include "cfa_simd.h"

namespace zil::ahd {

// Reflection about the edge sample, once: -c below 0, 2 m - c above m. It keeps
// parity, so a folded sample has the colour its site expects.
constexpr int32_t Fold(int32_t c, int32_t m) { return c < 0 ? -c : (c > m ? 2 * m - c : c); }

constexpr int32_t Min(int32_t a, int32_t b) { return a < b ? a : b; }
constexpr int32_t Max(int32_t a, int32_t b) { return a < b ? b : a; }

// Green at a red or blue site p along one direction, neighbours a, b at
// distance 1 and u, v at distance 2: half the second difference, floored by
// itself, plus the floored mean of the neighbours, held between a and b.
constexpr int32_t GreenEstimate(int32_t p, int32_t a, int32_t b, int32_t u, int32_t v) {
    const int32_t t = (((p - u) + (p - v)) >> 2) + ((a + b) >> 1);
    return Min(Max(t, Min(a, b)), Max(a, b));
}

template <class T>
constexpr T ClampSample(int32_t v) {
    return static_cast<T>(Min(Max(v, 0), AhdDepth<T>::kMax));
}

// Luma and signed chroma of one candidate pixel; the same weights at both
// depths. Each sum is formed in the depth's own lane type, which holds it
// exactly (see AhdDepth), and then shifted: >> 8 floors.
template <class T>
inline void ToYcc(int32_t r, int32_t g, int32_t b, typename AhdDepth<T>::Luma& y,
                  typename AhdDepth<T>::Chroma& cb, typename AhdDepth<T>::Chroma& cr) {
    using L = typename AhdDepth<T>::Luma;
    using C = typename AhdDepth<T>::Chroma;
    y = static_cast<L>(static_cast<L>(66 * r + 129 * g + 25 * b + 128) >> 8);
    cb = static_cast<C>(static_cast<C>(-38 * r - 74 * g + 112 * b + 128) >> 8);
    cr = static_cast<C>(static_cast<C>(112 * r - 94 * g - 18 * b + 128) >> 8);
}

// Squared chroma distance between (cb0, cr0) and (cb1, cr1), with 32-bit
// two's-complement wrap: at 16 bits a strong edge squares past the positive
// range, and the judgement follows the wrapped value. At 8 bits each
// difference fits 16 bits and the sum never wraps.
template <class T, class C>
inline int32_t ChromaDist(C cb0, C cb1, C cr0, C cr1) {
    if constexpr (sizeof(T) == 1) {
        const int16_t a = static_cast<int16_t>(cb0 - cb1), b = static_cast<int16_t>(cr0 - cr1);
        return int32_t(a) * a + int32_t(b) * b;
    } else {
        const uint32_t a = static_cast<uint32_t>(int32_t(cb0) - int32_t(cb1));
        const uint32_t b = static_cast<uint32_t>(int32_t(cr0) - int32_t(cr1));
        return static_cast<int32_t>(a * a + b * b);
    }
}

constexpr int32_t Abs(int32_t v) { return v < 0 ? -v : v; }

// Four 32-bit lanes, loaded and stored at any alignment. Baseline x86-64 has
// no 32-bit minimum or maximum, so they are masks.
typedef int32_t I4 __attribute__((vector_size(16)));
typedef I4 I4Unaligned __attribute__((aligned(4), may_alias));
inline I4 LoadI4(const int32_t* p) { return *reinterpret_cast<const I4Unaligned*>(p); }
inline void StoreI4(int32_t* p, I4 v) { *reinterpret_cast<I4Unaligned*>(p) = v; }
inline I4 MaxI4(I4 a, I4 b) {
    const I4 m = a > b;
    return (a & m) | (b & ~m);
}
inline I4 MinI4(I4 a, I4 b) {
    const I4 m = a < b;
    return (a & m) | (b & ~m);
}

// Columns per chunk of the judging and selecting stages, whose intermediates
// live in fixed local arrays.
inline constexpr int kChunk = 64;

template <class T>
struct AhdJob {
    const T* src;
    ptrdiff_t srcStep;  // bytes
    int32_t x, y, w, h;
    T* dst;
    ptrdiff_t dstStep;  // bytes
    T* buf;
    ptrdiff_t line;  // elements
    int32_t maxX, maxY;

    T* Line(int n) const { return buf + n * line; }
    const T* SrcRow(int32_t r) const { return AdvanceT(src, ptrdiff_t(Fold(r, maxY)) * srcStep); }
};

// The row type of extended row j (row type 0 holds the region's first row).
struct RowType {
    bool red;      // the row carries red, else blue
    int32_t gpar;  // parity of the extended columns i of its green sites
};
template <const AhdPhase& P>
constexpr RowType TypeOf(int32_t j) {
    const int t = (j + 1) & 1;  // (j - 3) & 1
    // Offset i - 3 is odd exactly when i is even.
    return {P.red[t], P.greenOdd[t] ? 0 : 1};
}

constexpr int GreenSlot(int32_t j) { return j % 5; }
constexpr int ColourSlot(int32_t j) { return (j + 3) & 3; }

// ---- read -----------------------------------------------------------------------
// Raw samples go to the vertical line of the row's own colour: at its own sites
// that line keeps them, and completion overwrites only its green sites.
// Positions lo .. hi of a row whose neighbour columns need no folding: both
// site rules at every position and the column parity picks, a straight loop
// the vectoriser takes whole. The five rows are the row itself and the rows
// 1 and 2 above and below, each offset to the row's first extended column.
template <class T>
void ReadInside(const T* __restrict s0, const T* __restrict su1, const T* __restrict sd1, const T* __restrict su2,
                const T* __restrict sd2, T* __restrict raw, T* __restrict gh, T* __restrict gv, int32_t lo,
                int32_t hi, int32_t gpar) {
    for (int32_t i = lo; i <= hi; ++i) {
        const int32_t p = s0[i];
        const int32_t g = -int32_t((i & 1) == gpar), o = ~g;  // all ones at green sites
        const int32_t eh = GreenEstimate(p, s0[i - 1], s0[i + 1], s0[i - 2], s0[i + 2]);
        const int32_t ev = GreenEstimate(p, su1[i], sd1[i], su2[i], sd2[i]);
        raw[i] = static_cast<T>(p);
        gh[i] = static_cast<T>((p & g) | (eh & o));
        gv[i] = static_cast<T>((p & g) | (ev & o));
    }
}

template <class T>
void ReadRow(const AhdJob<T>& J, int32_t j, RowType rt) {
    const int32_t r = J.y - 3 + j;
    const T* __restrict s0 = J.SrcRow(r);
    const T* __restrict su1 = J.SrcRow(r - 1);
    const T* __restrict sd1 = J.SrcRow(r + 1);
    const T* __restrict su2 = J.SrcRow(r - 2);
    const T* __restrict sd2 = J.SrcRow(r + 2);
    const int gs = GreenSlot(j), cs = ColourSlot(j);
    T* __restrict gv = J.Line(GreenV(gs));
    T* __restrict gh = J.Line(GreenH(gs));
    T* __restrict raw = J.Line(rt.red ? RedV(cs) : BlueV(cs));
    const int32_t c0 = J.x - 3, n = J.w + 6, mx = J.maxX;

    auto green = [&](int32_t i, int32_t c) { gv[i] = gh[i] = raw[i] = s0[c]; };
    auto colour = [&](int32_t i, int32_t c, int32_t cl1, int32_t cr1, int32_t cl2, int32_t cr2) {
        const int32_t p = s0[c];
        raw[i] = static_cast<T>(p);
        gh[i] = static_cast<T>(GreenEstimate(p, s0[cl1], s0[cr1], s0[cl2], s0[cr2]));
        gv[i] = static_cast<T>(GreenEstimate(p, su1[c], sd1[c], su2[c], sd2[c]));
    };
    // Every neighbour column folded on its own.
    auto folded = [&](int32_t i) {
        const int32_t c = c0 + i;
        if ((i & 1) == rt.gpar)
            green(i, Fold(c, mx));
        else
            colour(i, Fold(c, mx), Fold(c - 1, mx), Fold(c + 1, mx), Fold(c - 2, mx), Fold(c + 2, mx));
    };

    // Positions whose columns c - 2 .. c + 2 all lie inside the image need no fold.
    const int32_t lo = Max(0, 5 - J.x);
    const int32_t hi = Max(lo - 1, Min(n - 1, mx + 1 - J.x));
    for (int32_t i = 0; i < Min(lo, n); ++i) folded(i);
    if (lo <= hi) ReadInside(s0 + c0, su1 + c0, sd1 + c0, su2 + c0, sd2 + c0, raw, gh, gv, lo, hi, rt.gpar);
    for (int32_t i = hi + 1; i < n; ++i) folded(i);
}

// ---- complete ---------------------------------------------------------------------
// Red and blue of row j for both candidates, positions 1 .. w + 4. C is the
// row's own colour, D the other one, native to rows j - 1 and j + 1, whose raw
// samples sit at D sites of their own vertical line.
template <class T>
void CompleteRow(const AhdJob<T>& J, int32_t j, RowType rt) {
    const int cs = ColourSlot(j), cu = ColourSlot(j - 1), cd = ColourSlot(j + 1);
    const int g = GreenSlot(j), gu = GreenSlot(j - 1), gd = GreenSlot(j + 1);
    const T* __restrict gh = J.Line(GreenH(g));
    const T* __restrict gv = J.Line(GreenV(g));
    const T* __restrict ghu = J.Line(GreenH(gu));
    const T* __restrict gvu = J.Line(GreenV(gu));
    const T* __restrict ghd = J.Line(GreenH(gd));
    const T* __restrict gvd = J.Line(GreenV(gd));
    const T* __restrict rawU = J.Line(rt.red ? BlueV(cu) : RedV(cu));
    const T* __restrict rawD = J.Line(rt.red ? BlueV(cd) : RedV(cd));
    T* cv = J.Line(rt.red ? RedV(cs) : BlueV(cs));  // holds the raw samples; updated in place
    T* __restrict ch = J.Line(rt.red ? RedH(cs) : BlueH(cs));
    T* __restrict dv = J.Line(rt.red ? BlueV(cs) : RedV(cs));
    T* __restrict dh = J.Line(rt.red ? BlueH(cs) : RedH(cs));

    // Both site rules are worked out at every position of a chunk, straight
    // loops the vectoriser takes whole, and the row's column parity picks one.
    // Results wait in the chunk arrays, since the C line is read around each
    // position while it is updated: its values at C sites, the ones read, never
    // change, so the order of the updates does not matter.
    //   green site: C from the row neighbours (C sites), D from the column
    //               neighbours (D sites of rows j -+ 1);
    //   C site:     C is the raw sample, D from the four diagonal D sites.
    const int32_t last = J.w + 4;  // positions 1 .. last
    for (int32_t i0 = 1; i0 <= last; i0 += kChunk) {
        const int32_t n = Min(kChunk, last + 1 - i0);
        T oCh[kChunk], oCv[kChunk], oDh[kChunk], oDv[kChunk];
        for (int32_t t = 0; t < n; ++t) {
            const int32_t i = i0 + t;
            const int32_t own = cv[i], cl = cv[i - 1], cr = cv[i + 1];
            const int32_t ru = rawU[i], rd = rawD[i];
            const int32_t sr = rawU[i - 1] + rawU[i + 1] + rawD[i - 1] + rawD[i + 1];
            const int32_t g = -int32_t((i & 1) == rt.gpar), c = ~g;  // all ones at green sites
            const int32_t gCh = ClampSample<T>(gh[i] + (((cl - gh[i - 1]) + (cr - gh[i + 1])) >> 1));
            const int32_t gCv = ClampSample<T>(gv[i] + (((cl - gv[i - 1]) + (cr - gv[i + 1])) >> 1));
            const int32_t gDh = ClampSample<T>(gh[i] + (((ru + rd) - (ghu[i] + ghd[i])) >> 1));
            const int32_t gDv = ClampSample<T>(gv[i] + (((ru + rd) - (gvu[i] + gvd[i])) >> 1));
            const int32_t cDh =
                ClampSample<T>(gh[i] + ((sr - (ghu[i - 1] + ghu[i + 1] + ghd[i - 1] + ghd[i + 1])) >> 2));
            const int32_t cDv =
                ClampSample<T>(gv[i] + ((sr - (gvu[i - 1] + gvu[i + 1] + gvd[i - 1] + gvd[i + 1])) >> 2));
            oCh[t] = static_cast<T>((gCh & g) | (own & c));
            oCv[t] = static_cast<T>((gCv & g) | (own & c));
            oDh[t] = static_cast<T>((gDh & g) | (cDh & c));
            oDv[t] = static_cast<T>((gDv & g) | (cDv & c));
        }
        for (int32_t t = 0; t < n; ++t) {
            ch[i0 + t] = oCh[t];
            cv[i0 + t] = oCv[t];
            dh[i0 + t] = oDh[t];
            dv[i0 + t] = oDv[t];
        }
    }
}

// ---- judge ----------------------------------------------------------------------
// E of row j for positions 2 .. w + 3 (entry 0 is i = 2), from the candidates
// of rows j - 1, j, j + 1, stored as a small signed value in the sample type.
template <class T>
void JudgeRow(const AhdJob<T>& J, int32_t j) {
    const T* rgb[3][2][3];  // [row][candidate H, V][R, G, B]
    for (int q = 0; q < 3; ++q) {
        const int cs = ColourSlot(j - 1 + q), gs = GreenSlot(j - 1 + q);
        rgb[q][0][0] = J.Line(RedH(cs));
        rgb[q][0][1] = J.Line(GreenH(gs));
        rgb[q][0][2] = J.Line(BlueH(cs));
        rgb[q][1][0] = J.Line(RedV(cs));
        rgb[q][1][1] = J.Line(GreenV(gs));
        rgb[q][1][2] = J.Line(BlueV(cs));
    }
    T* __restrict e = J.Line(Diff(ColourSlot(j + 1)));

    using L = typename AhdDepth<T>::Luma;
    using C = typename AhdDepth<T>::Chroma;
    L Y[2][3][kChunk + 2];
    C U[2][3][kChunk + 2], V[2][3][kChunk + 2];
    const int32_t end = J.w + 4;  // one past the last judged position
    for (int32_t i0 = 2; i0 < end; i0 += kChunk) {
        const int32_t n = Min(kChunk, end - i0);
        for (int q = 0; q < 3; ++q)
            for (int d = 0; d < 2; ++d) {
                const T* __restrict r = rgb[q][d][0] + (i0 - 1);
                const T* __restrict g = rgb[q][d][1] + (i0 - 1);
                const T* __restrict b = rgb[q][d][2] + (i0 - 1);
                L* __restrict y = Y[d][q];
                C* __restrict u = U[d][q];
                C* __restrict v = V[d][q];
                for (int32_t t = 0; t < n + 2; ++t) ToYcc<T>(r[t], g[t], b[t], y[t], u[t], v[t]);
            }
        // Distances to the right-hand and lower neighbours of each column; the
        // left-hand distance of column t is the right-hand one of t - 1.
        // Sized for the 4-lane reads, which run up to three columns past n
        // (values there are never stored).
        int32_t yR[2][kChunk + 4], cR[2][kChunk + 4], yU[2][kChunk + 4], cU[2][kChunk + 4], yD[2][kChunk + 4],
            cD[2][kChunk + 4];
        for (int d = 0; d < 2; ++d) {
            for (int32_t t = 0; t <= n; ++t) {
                yR[d][t] = Abs(int32_t(Y[d][1][t + 1]) - int32_t(Y[d][1][t]));
                cR[d][t] = ChromaDist<T>(U[d][1][t + 1], U[d][1][t], V[d][1][t + 1], V[d][1][t]);
            }
            for (int32_t t = 1; t <= n; ++t) {
                yU[d][t] = Abs(int32_t(Y[d][0][t]) - int32_t(Y[d][1][t]));
                cU[d][t] = ChromaDist<T>(U[d][0][t], U[d][1][t], V[d][0][t], V[d][1][t]);
                yD[d][t] = Abs(int32_t(Y[d][2][t]) - int32_t(Y[d][1][t]));
                cD[d][t] = ChromaDist<T>(U[d][2][t], U[d][1][t], V[d][2][t], V[d][1][t]);
            }
        }
        // Four columns a step in 32-bit lanes. A comparison gives -1 where it
        // holds, so each candidate's sum of failed neighbourhood tests is minus
        // the count of failures, and h[H] - h[V] = (4 - failures of H) - (4 -
        // failures of V) is the difference of the two sums.
        int32_t eTmp[kChunk + 4];
        for (int32_t t = 1; t <= n; t += 4) {
            const I4 yL0 = LoadI4(&yR[0][t - 1]), yR0 = LoadI4(&yR[0][t]);
            const I4 cL0 = LoadI4(&cR[0][t - 1]), cR0 = LoadI4(&cR[0][t]);
            const I4 yU1 = LoadI4(&yU[1][t]), yD1 = LoadI4(&yD[1][t]);
            const I4 cU1 = LoadI4(&cU[1][t]), cD1 = LoadI4(&cD[1][t]);
            // Thresholds from each candidate's own direction: H along the row, V along the column.
            const I4 epsY = MinI4(MaxI4(yL0, yR0), MaxI4(yU1, yD1));
            const I4 epsC = MinI4(MaxI4(cL0, cR0), MaxI4(cU1, cD1));
            auto fails = [&](int d) {
                const I4 yl = d ? LoadI4(&yR[1][t - 1]) : yL0, cl = d ? LoadI4(&cR[1][t - 1]) : cL0;
                const I4 yr = d ? LoadI4(&yR[1][t]) : yR0, cr = d ? LoadI4(&cR[1][t]) : cR0;
                const I4 yu = d ? yU1 : LoadI4(&yU[0][t]), cu = d ? cU1 : LoadI4(&cU[0][t]);
                const I4 yd = d ? yD1 : LoadI4(&yD[0][t]), cd = d ? cD1 : LoadI4(&cD[0][t]);
                const I4 fl = (yl > epsY) | (cl > epsC), fr = (yr > epsY) | (cr > epsC);
                const I4 fu = (yu > epsY) | (cu > epsC), fd = (yd > epsY) | (cd > epsC);
                return (fl + fr) + (fu + fd);
            };
            StoreI4(&eTmp[t], fails(0) - fails(1));
        }
        T* __restrict eo = e + (i0 - 2);
        for (int32_t t = 1; t <= n; ++t) eo[t - 1] = static_cast<T>(eTmp[t]);
    }
}

// ---- select -----------------------------------------------------------------------
// Output row j - 3: S = sum of E over the 3x3 box; a zero S takes the value
// kept from the pixel to the left (1 at the row's first pixel); S >= 0 picks
// the horizontal candidate, all three channels from it.
template <class T>
void SelectRow(const AhdJob<T>& J, int32_t j) {
    const T* __restrict e0 = J.Line(Diff(ColourSlot(j)));      // E of row j - 1
    const T* __restrict e1 = J.Line(Diff(ColourSlot(j + 1)));  // E of row j
    const T* __restrict e2 = J.Line(Diff(ColourSlot(j + 2)));  // E of row j + 1
    const int cs = ColourSlot(j), gs = GreenSlot(j);
    const T* __restrict rh = J.Line(RedH(cs)) + 3;
    const T* __restrict rv = J.Line(RedV(cs)) + 3;
    const T* __restrict bh = J.Line(BlueH(cs)) + 3;
    const T* __restrict bv = J.Line(BlueV(cs)) + 3;
    const T* __restrict gh = J.Line(GreenH(gs)) + 3;
    const T* __restrict gv = J.Line(GreenV(gs)) + 3;
    T* __restrict out = AdvanceT(J.dst, ptrdiff_t(j - 3) * J.dstStep);

    int32_t col[kChunk + 2];
    T pickH[kChunk];  // all ones where the horizontal candidate wins, else 0
    int32_t kept = 1;
    for (int32_t k0 = 0; k0 < J.w; k0 += kChunk) {
        const int32_t n = Min(kChunk, J.w - k0);
        // E is read as its signed low byte, which holds the whole value (-4 .. 4).
        for (int32_t t = 0; t < n + 2; ++t)
            col[t] = int32_t(int8_t(e0[k0 + t])) + int32_t(int8_t(e1[k0 + t])) + int32_t(int8_t(e2[k0 + t]));
        for (int32_t t = 0; t < n; ++t) {
            const int32_t s = col[t] + col[t + 1] + col[t + 2];
            kept = s != 0 ? s : kept;
            pickH[t] = static_cast<T>(kept >= 0 ? ~0u : 0u);
        }
        T* __restrict o = out + 3 * k0;
        // Whole groups of pixels in lanes, split into even and odd columns,
        // while a pixel of the row follows the group: its store runs two
        // elements into that pixel, which its own store then overwrites.
        using V = typename cfa::Lanes<T>::V;
        constexpr int32_t kGroup = 2 * cfa::Lanes<T>::kPairs;
        int32_t t = 0;
        for (; t + kGroup <= n && k0 + t + kGroup < J.w; t += kGroup) {
            const int32_t k = k0 + t;
            const cfa::Split<T> m = cfa::LoadSplit(pickH + t);
            const V mE = V(m.even != 0), mO = V(m.odd != 0);
            const cfa::Split<T> r0 = cfa::LoadSplit(rh + k), r1 = cfa::LoadSplit(rv + k);
            const cfa::Split<T> g0 = cfa::LoadSplit(gh + k), g1 = cfa::LoadSplit(gv + k);
            const cfa::Split<T> b0 = cfa::LoadSplit(bh + k), b1 = cfa::LoadSplit(bv + k);
            const cfa::Rgb<V> pE{(r0.even & mE) | (r1.even & ~mE), (g0.even & mE) | (g1.even & ~mE),
                                 (b0.even & mE) | (b1.even & ~mE)};
            const cfa::Rgb<V> pO{(r0.odd & mO) | (r1.odd & ~mO), (g0.odd & mO) | (g1.odd & ~mO),
                                 (b0.odd & mO) | (b1.odd & ~mO)};
            cfa::StorePairs(o + 3 * t, pE, pO);
        }
        for (; t < n; ++t) {
            const int32_t k = k0 + t;
            const T m = pickH[t], nm = static_cast<T>(~m);
            o[3 * t + 0] = static_cast<T>((rh[k] & m) | (rv[k] & nm));
            o[3 * t + 1] = static_cast<T>((gh[k] & m) | (gv[k] & nm));
            o[3 * t + 2] = static_cast<T>((bh[k] & m) | (bv[k] & nm));
        }
    }
}

// ---- the pipeline ---------------------------------------------------------------------
template <class T, const AhdPhase& P>
void AhdRegion(const AhdJob<T>& J) {
    const int32_t last = J.h + 5;
    for (int32_t r = 0; r <= last; ++r) {
        ReadRow(J, r, TypeOf<P>(r));
        if (r >= 2) CompleteRow(J, r - 1, TypeOf<P>(r - 1));
        if (r >= 4) JudgeRow(J, r - 2);
        if (r >= 6) SelectRow(J, r - 3);
    }
}

}  // namespace zil::ahd
