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
// All values are those of signed 32-bit arithmetic, where >> is arithmetic and
// floors; every stage forms them in narrower lanes wherever every value fits
// (reading and completing in lanes of the sample width, see ahd_lanes.h).
#pragma once

#include "ahd_lanes.h"
#include "ahd_members.h"
#include "cfa_simd.h"

#include <emmintrin.h>

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

// Columns per chunk of the judging and selecting stages, whose intermediates
// live in fixed local arrays.
inline constexpr int kChunk = 64;
// Positions per chunk of the judging stage: with the neighbour on each side a
// chunk is a whole number of eight-lane groups.
inline constexpr int kJudge = 126;

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
    if (lo <= hi) {
        const int32_t from =
            lanes::ReadInside<T>(s0 + c0, su1 + c0, sd1 + c0, su2 + c0, sd2 + c0, raw, gh, gv, lo, hi, rt.gpar);
        if (from <= hi) ReadInside(s0 + c0, su1 + c0, sd1 + c0, su2 + c0, sd2 + c0, raw, gh, gv, from, hi, rt.gpar);
    }
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
    const int32_t first =
        lanes::Complete<T>({gh, gv, ghu, gvu, ghd, gvd, rawU, rawD, cv, ch, dv, dh}, last, rt.gpar);
    for (int32_t i0 = first; i0 <= last; i0 += kChunk) {
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
// Eight columns a step in 16-bit lanes. Y, Cb and Cr of a candidate fit 16 bits
// at both depths (Y within 0 .. 56320, Cb and Cr within -28672 .. 28672 at 16
// bits); Y is kept offset by -32768 so that signed 16-bit order is its order.
// A distance |a - b| is max - min, which as an unsigned 16-bit value is exact;
// chroma distances are the 32-bit wrapped sums of the squared differences,
// each square formed whole from its low and high 16-bit halves.
typedef __m128i W;
inline W LoadSamples(const uint8_t* p) {
    return _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const W*>(p)), _mm_setzero_si128());
}
inline W LoadSamples(const uint16_t* p) { return _mm_loadu_si128(reinterpret_cast<const W*>(p)); }

// Luma (offset) and chroma of eight pixels.
template <class T>
inline void YccW(W r, W g, W b, W& y, W& cb, W& cr) {
    if constexpr (sizeof(T) == 1) {
        // Every weighted sum fits 16 bits (Y's as unsigned), so the lanes wrap
        // exactly as the sums are formed.
        auto sum = [&](int16_t kr, int16_t kg, int16_t kb) {
            return _mm_add_epi16(_mm_add_epi16(_mm_mullo_epi16(r, _mm_set1_epi16(kr)),
                                               _mm_mullo_epi16(g, _mm_set1_epi16(kg))),
                                 _mm_add_epi16(_mm_mullo_epi16(b, _mm_set1_epi16(kb)), _mm_set1_epi16(128)));
        };
        y = _mm_xor_si128(_mm_srli_epi16(sum(66, 129, 25), 8), _mm_set1_epi16(-32768));
        cb = _mm_srai_epi16(sum(-38, -74, 112), 8);
        cr = _mm_srai_epi16(sum(112, -94, -18), 8);
    } else {
        // Samples offset by -32768 into signed lanes, then pairwise products
        // summed in 32 bits: k r + l g + m b + 128 is the offset sum plus
        // 32768 (k + l + m), which is 0 for chroma and 220 * 32768 for luma.
        const W bias = _mm_set1_epi16(-32768), one = _mm_set1_epi16(1);
        const W rs = _mm_xor_si128(r, bias), gs = _mm_xor_si128(g, bias), bs = _mm_xor_si128(b, bias);
        const W rgLo = _mm_unpacklo_epi16(rs, gs), rgHi = _mm_unpackhi_epi16(rs, gs);
        const W b1Lo = _mm_unpacklo_epi16(bs, one), b1Hi = _mm_unpackhi_epi16(bs, one);
        auto sum = [&](int16_t kr, int16_t kg, int16_t kb, int32_t k0) {
            const W krg = _mm_set_epi16(kg, kr, kg, kr, kg, kr, kg, kr);
            const W kb1 = _mm_set_epi16(128, kb, 128, kb, 128, kb, 128, kb);
            const W c = _mm_set1_epi32(k0);
            const W lo = _mm_add_epi32(_mm_add_epi32(_mm_madd_epi16(rgLo, krg), _mm_madd_epi16(b1Lo, kb1)), c);
            const W hi = _mm_add_epi32(_mm_add_epi32(_mm_madd_epi16(rgHi, krg), _mm_madd_epi16(b1Hi, kb1)), c);
            return _mm_packs_epi32(_mm_srai_epi32(lo, 8), _mm_srai_epi32(hi, 8));
        };
        // Luma: adding 220 * 32768 and then taking 32768 * 256 away before the
        // shift leaves the quotient offset by -32768, within 16 signed bits.
        y = sum(66, 129, 25, 220 * 32768 - 256 * 32768);
        cb = sum(-38, -74, 112, 0);
        cr = sum(112, -94, -18, 0);
    }
}

inline W AbsDiffW(W a, W b) { return _mm_sub_epi16(_mm_max_epi16(a, b), _mm_min_epi16(a, b)); }
inline W LoadW(const void* p) { return _mm_loadu_si128(reinterpret_cast<const W*>(p)); }
inline void StoreW(void* p, W v) { _mm_storeu_si128(reinterpret_cast<W*>(p), v); }
inline W Max32(W a, W b) {
    const W m = _mm_cmpgt_epi32(a, b);
    return _mm_or_si128(_mm_and_si128(m, a), _mm_andnot_si128(m, b));
}
inline W Min32(W a, W b) {
    const W m = _mm_cmpgt_epi32(a, b);
    return _mm_or_si128(_mm_and_si128(m, b), _mm_andnot_si128(m, a));
}

// Lanes of the squared chroma distance of eight pixels, formed from the
// absolute differences du and dv (unsigned 16-bit) in kParts vectors.
template <class T>
struct ChromaLanes;
// At 8 bits the sum stays below 57500: each chroma difference is at most its
// unfloored value plus 1, and over the cube of colour differences the largest
// sum, at a corner, is under that. It is held in 16 bits offset by -32768.
template <>
struct ChromaLanes<uint8_t> {
    using C = int16_t;
    static constexpr int kParts = 1;
    static void Dist(W du, W dv, W* out) {
        out[0] = _mm_xor_si128(_mm_add_epi16(_mm_mullo_epi16(du, du), _mm_mullo_epi16(dv, dv)),
                               _mm_set1_epi16(-32768));
    }
    static W Max(W a, W b) { return _mm_max_epi16(a, b); }
    static W Min(W a, W b) { return _mm_min_epi16(a, b); }
    static W Gt(W a, W b) { return _mm_cmpgt_epi16(a, b); }
    static W Mask16(const W* m) { return m[0]; }
};
// At 16 bits each square is formed whole from its low and high 16-bit halves
// and the sum wraps in 32 bits.
template <>
struct ChromaLanes<uint16_t> {
    using C = int32_t;
    static constexpr int kParts = 2;
    static void Dist(W du, W dv, W* out) {
        const W uL = _mm_mullo_epi16(du, du), uH = _mm_mulhi_epu16(du, du);
        const W vL = _mm_mullo_epi16(dv, dv), vH = _mm_mulhi_epu16(dv, dv);
        out[0] = _mm_add_epi32(_mm_unpacklo_epi16(uL, uH), _mm_unpacklo_epi16(vL, vH));
        out[1] = _mm_add_epi32(_mm_unpackhi_epi16(uL, uH), _mm_unpackhi_epi16(vL, vH));
    }
    static W Max(W a, W b) { return Max32(a, b); }
    static W Min(W a, W b) { return Min32(a, b); }
    static W Gt(W a, W b) { return _mm_cmpgt_epi32(a, b); }
    static W Mask16(const W* m) { return _mm_packs_epi32(m[0], m[1]); }
};

// Chroma distance of eight pixels, stored from out on.
template <class T>
inline void StoreChromaDist(W u0, W u1, W v0, W v1, typename ChromaLanes<T>::C* out) {
    using CL = ChromaLanes<T>;
    W c[CL::kParts];
    CL::Dist(AbsDiffW(u0, u1), AbsDiffW(v0, v1), c);
    for (int h = 0; h < CL::kParts; ++h) StoreW(out + h * (8 / CL::kParts), c[h]);
}

// Luma (offset by -32768) and chroma of both candidates along a run of
// positions, one line each per candidate H, V.
struct YccLines {
    int16_t* y[2];
    int16_t* u[2];
    int16_t* v[2];
    YccLines From(int32_t k) const { return {{y[0] + k, y[1] + k}, {u[0] + k, u[1] + k}, {v[0] + k, v[1] + k}}; }
};

// Converts the candidates of row j at positions from .. from + count - 1, in
// whole groups of eight, to entries 0 .. of out. The reads of the last group
// end at most 7 samples past the run.
template <class T>
void ConvertRow(const AhdJob<T>& J, int32_t j, int32_t from, int32_t count, const YccLines& out) {
    const int cs = ColourSlot(j), gs = GreenSlot(j);
    const T* const rgb[2][3] = {{J.Line(RedH(cs)), J.Line(GreenH(gs)), J.Line(BlueH(cs))},
                                {J.Line(RedV(cs)), J.Line(GreenV(gs)), J.Line(BlueV(cs))}};
    for (int d = 0; d < 2; ++d) {
        const T* r = rgb[d][0] + from;
        const T* g = rgb[d][1] + from;
        const T* b = rgb[d][2] + from;
        for (int32_t p = 0; p < count; p += 8) {
            W y, u, v;
            YccW<T>(LoadSamples(r + p), LoadSamples(g + p), LoadSamples(b + p), y, u, v);
            StoreW(out.y[d] + p, y);
            StoreW(out.u[d] + p, u);
            StoreW(out.v[d] + p, v);
        }
    }
}

// Entries of the local luma-chroma arrays of a judging chunk: the chunk, its
// neighbour on each side, and the run-out of whole eight-lane groups.
inline constexpr int kLen = kJudge + 24;

// Converted rows j - 1, j, j + 1 of a row being judged, kept from one row to
// the next so that each row is converted once: row k sits in slot k mod 3,
// entry i of a slot being position i. It serves rows of up to kRingWidth
// pixels.
inline constexpr int kRingLen = 2064;
inline constexpr int32_t kRingWidth = kRingLen - 12;
struct YccRing {
    alignas(16) int16_t y[3][2][kRingLen], u[3][2][kRingLen], v[3][2][kRingLen];
    YccLines Slot(int32_t k) {
        const int s = k % 3;
        return {{y[s][0], y[s][1]}, {u[s][0], u[s][1]}, {v[s][0], v[s][1]}};
    }
};

// Calls group(p) for runs p .. p + 7 that together cover entries 1 .. n, the
// last run overlapping the one before it, or one(p) for each entry when n is
// below 8. Both write the same values to an entry written twice.
template <class Group, class One>
inline void CoverByEights(int32_t n, Group group, One one) {
    if (n < 8) {
        for (int32_t p = 1; p <= n; ++p) one(p);
        return;
    }
    for (int32_t p = 1; p + 7 < n; p += 8) group(p);
    group(n - 7);
}

// Eight E values as signed bytes.
inline void StoreE(uint8_t* p, W v) { _mm_storel_epi64(reinterpret_cast<W*>(p), _mm_packs_epi16(v, v)); }
// The homogeneity line of a colour slot, whatever the depth, holds E (-4 .. 4)
// as signed bytes from its start.
template <class T>
uint8_t* DiffBytes(const AhdJob<T>& J, int slot) {
    return reinterpret_cast<uint8_t*>(J.Line(Diff(slot)));
}

// Distances of each position of the row judged last to its lower neighbour,
// which are those of the next row to its upper neighbour: entry i is position
// i, for rows of up to kRingWidth pixels.
template <class T>
struct UpperCache {
    alignas(16) int16_t y[2][kRingLen];
    alignas(16) typename ChromaLanes<T>::C c[2][kRingLen];
};

// E of row j for positions 2 .. w + 3 (entry 0 is i = 2), stored as signed
// bytes. rowsAt(i0, n, rows) makes rows[0 .. 2] the
// luma-chroma of rows j - 1, j, j + 1 from position i0 - 1 on, entries 0 ..
// n + 1 being converted and the ones after them up to n + 8 defined values.
// With a cache, the upper distances of a row after the first (j = 2) are read
// from it, and the lower ones are left in it.
template <class T, class RowsAt>
void JudgeRow(const AhdJob<T>& J, int32_t j, RowsAt rowsAt, UpperCache<T>* cache = nullptr) {
    uint8_t* __restrict e = DiffBytes(J, ColourSlot(j + 1));

    // Per candidate: Y distance (offset by -32768) and chroma distance of
    // entry p to its right-hand neighbour (p = 0 .. n) and to its upper and
    // lower neighbours (p = 1 .. n). Reads run whole groups of eight, up to 15
    // entries past the chunk (lanes whose results are never used; the arrays
    // start zeroed so every lane is a defined value).
    alignas(16) int16_t yR[2][kLen] = {}, yU[2][kLen], yD[2][kLen];
    using CL = ChromaLanes<T>;
    constexpr int kPart = 8 / CL::kParts;  // lanes of a chroma vector
    alignas(16) typename CL::C cR[2][kLen] = {}, cU[2][kLen], cD[2][kLen];
    alignas(16) int16_t eTmp[kLen];
    const W off = _mm_set1_epi16(-32768);
    const int32_t end = J.w + 4;  // one past the last judged position
    for (int32_t i0 = 2; i0 < end; i0 += kJudge) {
        const int32_t n = Min(kJudge, end - i0);
        YccLines rows[3];
        rowsAt(i0, n, rows);
        const YccLines &up = rows[0], &mid = rows[1], &down = rows[2];
        const bool cached = cache && j > 2;
        const int16_t* yUp[2] = {yU[0], yU[1]};
        const typename CL::C* cUp[2] = {cU[0], cU[1]};
        if (cached)
            for (int d = 0; d < 2; ++d) {
                yUp[d] = cache->y[d] + (i0 - 1);
                cUp[d] = cache->c[d] + (i0 - 1);
            }
        for (int d = 0; d < 2; ++d) {
            for (int32_t p = 0; p <= n; p += 8) {
                const W y0 = LoadW(mid.y[d] + p), y1 = LoadW(mid.y[d] + p + 1);
                StoreW(&yR[d][p], _mm_xor_si128(AbsDiffW(y1, y0), off));
                StoreChromaDist<T>(LoadW(mid.u[d] + p + 1), LoadW(mid.u[d] + p), LoadW(mid.v[d] + p + 1),
                                   LoadW(mid.v[d] + p), &cR[d][p]);
            }
            for (int32_t p = 1; p <= n; p += 8) {
                const W yc = LoadW(mid.y[d] + p), uc = LoadW(mid.u[d] + p), vc = LoadW(mid.v[d] + p);
                if (!cached) {
                    StoreW(&yU[d][p], _mm_xor_si128(AbsDiffW(LoadW(up.y[d] + p), yc), off));
                    StoreChromaDist<T>(LoadW(up.u[d] + p), uc, LoadW(up.v[d] + p), vc, &cU[d][p]);
                }
                StoreW(&yD[d][p], _mm_xor_si128(AbsDiffW(LoadW(down.y[d] + p), yc), off));
                StoreChromaDist<T>(LoadW(down.u[d] + p), uc, LoadW(down.v[d] + p), vc, &cD[d][p]);
            }
        }
        // A comparison gives -1 where it holds, so each candidate's sum of
        // failed neighbourhood tests is minus the count of failures, and
        // h[H] - h[V] = (4 - failures of H) - (4 - failures of V) is the
        // difference of the two sums. Chroma masks are packed to 16 bits.
        for (int32_t p = 1; p <= n; p += 8) {
            // Thresholds from each candidate's own direction: H along the row, V along the column.
            const W epsY = _mm_min_epi16(_mm_max_epi16(LoadW(&yR[0][p - 1]), LoadW(&yR[0][p])),
                                         _mm_max_epi16(LoadW(yUp[1] + p), LoadW(&yD[1][p])));
            W epsC[CL::kParts];
            for (int h = 0; h < CL::kParts; ++h)
                epsC[h] = CL::Min(CL::Max(LoadW(&cR[0][p - 1 + kPart * h]), LoadW(&cR[0][p + kPart * h])),
                                  CL::Max(LoadW(cUp[1] + p + kPart * h), LoadW(&cD[1][p + kPart * h])));
            auto fail = [&](const int16_t* y, const typename CL::C* c) {
                W fc[CL::kParts];
                for (int h = 0; h < CL::kParts; ++h) fc[h] = CL::Gt(LoadW(c + kPart * h), epsC[h]);
                return _mm_or_si128(_mm_cmpgt_epi16(LoadW(y), epsY), CL::Mask16(fc));
            };
            auto fails = [&](int d) {
                const W fl = fail(&yR[d][p - 1], &cR[d][p - 1]), fr = fail(&yR[d][p], &cR[d][p]);
                const W fu = fail(yUp[d] + p, cUp[d] + p), fd = fail(&yD[d][p], &cD[d][p]);
                return _mm_add_epi16(_mm_add_epi16(fl, fr), _mm_add_epi16(fu, fd));
            };
            StoreW(&eTmp[p], _mm_sub_epi16(fails(0), fails(1)));
        }
        uint8_t* __restrict eo = e + (i0 - 2);
        CoverByEights(
            n, [&](int32_t p) { StoreE(eo + p - 1, LoadW(&eTmp[p])); },
            [&](int32_t p) { eo[p - 1] = static_cast<uint8_t>(eTmp[p]); });
        // The lower distances of the chunk's own positions only: the ones
        // after them are still to be read as upper distances of this row.
        if (cache)
            for (int d = 0; d < 2; ++d) {
                int16_t* yc = cache->y[d] + (i0 - 1);
                typename CL::C* cc = cache->c[d] + (i0 - 1);
                CoverByEights(
                    n,
                    [&](int32_t p) {
                        StoreW(yc + p, LoadW(&yD[d][p]));
                        for (int h = 0; h < CL::kParts; ++h)
                            StoreW(cc + p + kPart * h, LoadW(&cD[d][p + kPart * h]));
                    },
                    [&](int32_t p) {
                        yc[p] = yD[d][p];
                        cc[p] = cD[d][p];
                    });
            }
    }
}

// Judging with each row converted once, into the ring: row j + 1 is converted
// as row j is judged (rows 1 and 2 before row 2, the first judged).
template <class T>
void JudgeRowRing(const AhdJob<T>& J, int32_t j, YccRing& ring, UpperCache<T>& upper) {
    // Positions 1 .. w + 4; the reads of the judging stop at w + 11.
    if (j == 2)
        for (int32_t k = 1; k <= 2; ++k) ConvertRow(J, k, 1, J.w + 4, ring.Slot(k).From(1));
    ConvertRow(J, j + 1, 1, J.w + 4, ring.Slot(j + 1).From(1));
    JudgeRow(J, j, [&](int32_t i0, int32_t, YccLines* rows) {
        for (int q = 0; q < 3; ++q) rows[q] = ring.Slot(j - 1 + q).From(i0 - 1);
    }, &upper);
}

// Judging of rows too wide for the ring: the three rows are converted chunk
// by chunk.
template <class T>
void JudgeRowChunked(const AhdJob<T>& J, int32_t j) {
    alignas(16) int16_t Y[3][2][kLen] = {}, U[3][2][kLen] = {}, V[3][2][kLen] = {};
    JudgeRow(J, j, [&](int32_t i0, int32_t n, YccLines* rows) {
        for (int q = 0; q < 3; ++q) {
            rows[q] = {{Y[q][0], Y[q][1]}, {U[q][0], U[q][1]}, {V[q][0], V[q][1]}};
            ConvertRow(J, j - 1 + q, i0 - 1, n + 2, rows[q]);
        }
    });
}

// Sixteen selection masks (all-ones or zero bytes) as masks of the sample type.
inline void StorePick(uint8_t* p, W m) { StoreW(p, m); }
inline void StorePick(uint16_t* p, W m) {
    StoreW(p, _mm_unpacklo_epi8(m, m));
    StoreW(p + 8, _mm_unpackhi_epi8(m, m));
}

// ---- select -----------------------------------------------------------------------
// Output row j - 3: S = sum of E over the 3x3 box; a zero S takes the value
// kept from the pixel to the left (1 at the row's first pixel); S >= 0 picks
// the horizontal candidate, all three channels from it.
template <class T>
void SelectRow(const AhdJob<T>& J, int32_t j) {
    const uint8_t* __restrict e0 = DiffBytes(J, ColourSlot(j));      // E of row j - 1
    const uint8_t* __restrict e1 = DiffBytes(J, ColourSlot(j + 1));  // E of row j
    const uint8_t* __restrict e2 = DiffBytes(J, ColourSlot(j + 2));  // E of row j + 1
    const int cs = ColourSlot(j), gs = GreenSlot(j);
    const T* __restrict rh = J.Line(RedH(cs)) + 3;
    const T* __restrict rv = J.Line(RedV(cs)) + 3;
    const T* __restrict bh = J.Line(BlueH(cs)) + 3;
    const T* __restrict bv = J.Line(BlueV(cs)) + 3;
    const T* __restrict gh = J.Line(GreenH(gs)) + 3;
    const T* __restrict gv = J.Line(GreenV(gs)) + 3;
    T* __restrict out = AdvanceT(J.dst, ptrdiff_t(j - 3) * J.dstStep);

    T pickH[kChunk];  // all ones where the horizontal candidate wins, else 0
    // Only the sign of the value kept from the left matters: it is carried as
    // +1 or -1.
    int32_t kept = 1;
    auto colE = [&](int32_t k) { return int32_t(int8_t(e0[k])) + int32_t(int8_t(e1[k])) + int32_t(int8_t(e2[k])); };
    for (int32_t k0 = 0; k0 < J.w; k0 += kChunk) {
        const int32_t n = Min(kChunk, J.w - k0);
        int32_t t = 0;
        // Sixteen columns a step in signed bytes (S is within -36 .. 36). The
        // decision of a column with S = 0 is that of the nearest column to its
        // left with S != 0: known decisions are spread rightwards over 1, 2, 4
        // and 8 columns, and columns still unknown take the carried one. The
        // reads of a step end 17 columns on, inside the line.
        for (; t + 16 <= n; t += 16) {
            const int32_t k = k0 + t;
            W sum = _mm_setzero_si128();
            for (int c = 0; c < 3; ++c)
                sum = _mm_add_epi8(sum, _mm_add_epi8(_mm_add_epi8(LoadW(e0 + k + c), LoadW(e1 + k + c)),
                                                     LoadW(e2 + k + c)));
            const W zero = _mm_setzero_si128();
            W known = _mm_xor_si128(_mm_cmpeq_epi8(sum, zero), _mm_set1_epi8(-1));
            W pick = _mm_xor_si128(_mm_cmpgt_epi8(zero, sum), _mm_set1_epi8(-1));
            auto spread = [&](W shiftedPick, W shiftedKnown) {
                pick = _mm_or_si128(_mm_and_si128(known, pick), _mm_andnot_si128(known, shiftedPick));
                known = _mm_or_si128(known, shiftedKnown);
            };
            spread(_mm_slli_si128(pick, 1), _mm_slli_si128(known, 1));
            spread(_mm_slli_si128(pick, 2), _mm_slli_si128(known, 2));
            spread(_mm_slli_si128(pick, 4), _mm_slli_si128(known, 4));
            spread(_mm_slli_si128(pick, 8), _mm_slli_si128(known, 8));
            pick = _mm_or_si128(_mm_and_si128(known, pick), _mm_andnot_si128(known, _mm_set1_epi8(kept >= 0 ? -1 : 0)));
            StorePick(pickH + t, pick);
            kept = (_mm_movemask_epi8(pick) & 0x8000) ? 1 : -1;
        }
        for (; t < n; ++t) {
            const int32_t k = k0 + t;
            const int32_t s = colE(k) + colE(k + 1) + colE(k + 2);
            kept = s != 0 ? s : kept;
            pickH[t] = static_cast<T>(kept >= 0 ? ~0u : 0u);
        }
        T* __restrict o = out + 3 * k0;
        // Whole groups of pixels in lanes, split into even and odd columns,
        // while a pixel of the row follows the group: its store runs two
        // elements into that pixel, which its own store then overwrites.
        using V = typename cfa::Lanes<T>::V;
        constexpr int32_t kGroup = 2 * cfa::Lanes<T>::kPairs;
        t = 0;
        // The winner is picked on whole vectors, then split into even and
        // odd columns as lanes twice the sample width.
        using U = typename cfa::Lanes<T>::U;
        constexpr typename cfa::Lanes<T>::E kLow = (1u << cfa::Lanes<T>::kBits) - 1;
        for (; t + kGroup <= n && k0 + t + kGroup < J.w; t += kGroup) {
            const int32_t k = k0 + t;
            const W m = LoadW(pickH + t);
            auto pick = [&](const T* h, const T* v) {
                const U u = U(_mm_or_si128(_mm_and_si128(m, LoadW(h + k)), _mm_andnot_si128(m, LoadW(v + k))));
                return cfa::Split<T>{V(u & kLow), V(u >> cfa::Lanes<T>::kBits)};
            };
            const cfa::Split<T> r = pick(rh, rv), g = pick(gh, gv), b = pick(bh, bv);
            cfa::StorePairs(o + 3 * t, cfa::Rgb<V>{r.even, g.even, b.even}, cfa::Rgb<V>{r.odd, g.odd, b.odd});
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
    auto run = [&](auto judge) {
        const int32_t last = J.h + 5;
        for (int32_t r = 0; r <= last; ++r) {
            ReadRow(J, r, TypeOf<P>(r));
            if (r >= 2) CompleteRow(J, r - 1, TypeOf<P>(r - 1));
            if (r >= 4) judge(r - 2);
            if (r >= 6) SelectRow(J, r - 3);
        }
    };
    if (J.w <= kRingWidth) {
        YccRing ring;
        UpperCache<T> upper;
        // Entries past the converted ones are read as lanes whose results are
        // never used: they start as defined values.
        for (int s = 0; s < 3; ++s)
            for (int d = 0; d < 2; ++d)
                for (int32_t i = 0; i < J.w + 12; ++i) ring.y[s][d][i] = ring.u[s][d][i] = ring.v[s][d][i] = 0;
        for (int d = 0; d < 2; ++d)
            for (int32_t i = 0; i < J.w + 12; ++i) upper.y[d][i] = 0, upper.c[d][i] = 0;
        run([&](int32_t j) { JudgeRowRing(J, j, ring, upper); });
    } else {
        run([&](int32_t j) { JudgeRowChunked(J, j); });
    }
}

}  // namespace zil::ahd
