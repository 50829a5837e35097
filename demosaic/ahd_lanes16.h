// Reading and completing 16-bit rows eight positions a step, in 16-bit lanes
// wherever the value ranges allow it, else in 32-bit lanes.
//
// The sums behind an estimate need 17 or 18 bits, but each one is either
// halved at once or ends in a clamp to 0 .. 65535. Rounding-up averages
// (avg) carry the halving, and the clamp follows from saturating arithmetic
// once the signed term is split into its positive and negative parts (one of
// which is 0).
#pragma once

#include <emmintrin.h>

#include <cstdint>

namespace zil::ahd::lanes16 {

typedef __m128i V;
inline V Ld(const uint16_t* p) { return _mm_loadu_si128(reinterpret_cast<const V*>(p)); }
inline void St(uint16_t* p, V v) { _mm_storeu_si128(reinterpret_cast<V*>(p), v); }
inline V Select(V m, V a, V b) { return _mm_or_si128(_mm_and_si128(m, a), _mm_andnot_si128(m, b)); }
// Unsigned minimum and maximum: a - (a -sat b) and b + (a -sat b).
inline V MinU(V a, V b) { return _mm_sub_epi16(a, _mm_subs_epu16(a, b)); }
inline V MaxU(V a, V b) { return _mm_add_epi16(b, _mm_subs_epu16(a, b)); }
// x + p - n held in 0 .. 65535, where p or n is 0.
inline V AddParts(V x, V p, V n) { return _mm_subs_epu16(_mm_adds_epu16(x, p), n); }
// Mask of the lanes t with t & 1 == odd.
inline V ParityMask(int32_t odd) { return _mm_set1_epi32(odd ? int32_t(0xffff0000u) : 0x0000ffff); }

// Green estimate of eight positions (see GreenEstimate). The floored quarter
// of (p - u) + (p - v) is floor((p - ceil((u + v) / 2)) / 2), that is
// p - ceil((p + ceil((u + v) / 2)) / 2), within 16 signed bits; the floored
// mean of a and b is their rounded-up mean less the low bit of a ^ b.
inline V GreenEstimate(V p, V a, V b, V u, V v) {
    const V q = _mm_sub_epi16(p, _mm_avg_epu16(p, _mm_avg_epu16(u, v)));
    const V pos = _mm_max_epi16(q, _mm_setzero_si128()), neg = _mm_sub_epi16(pos, q);
    const V mean = _mm_sub_epi16(_mm_avg_epu16(a, b), _mm_and_si128(_mm_xor_si128(a, b), _mm_set1_epi16(1)));
    const V t = AddParts(mean, pos, neg);
    return MinU(MaxU(t, MinU(a, b)), MaxU(a, b));
}

// Positions lo .. of ReadInside in whole groups of eight; returns the first
// position left over.
inline int32_t ReadInside(const uint16_t* s0, const uint16_t* su1, const uint16_t* sd1, const uint16_t* su2,
                          const uint16_t* sd2, uint16_t* raw, uint16_t* gh, uint16_t* gv, int32_t lo, int32_t hi,
                          int32_t gpar) {
    const V green = ParityMask((gpar ^ lo) & 1);
    int32_t i = lo;
    for (; i + 7 <= hi; i += 8) {
        const V p = Ld(s0 + i);
        const V eh = GreenEstimate(p, Ld(s0 + i - 1), Ld(s0 + i + 1), Ld(s0 + i - 2), Ld(s0 + i + 2));
        const V ev = GreenEstimate(p, Ld(su1 + i), Ld(sd1 + i), Ld(su2 + i), Ld(sd2 + i));
        St(raw + i, p);
        St(gh + i, Select(green, p, eh));
        St(gv + i, Select(green, p, ev));
    }
    return i;
}

// x + floor((a + b - c - d) / 2) clamped to 0 .. 65535. With A and C the
// rounded-up means of a, b and of c, d, the floored half is A - C, less 1
// where a + b is odd and c + d even.
inline V HalfStep(V x, V a, V b, V c, V d) {
    const V one = _mm_set1_epi16(1);
    const V oddAB = _mm_and_si128(_mm_xor_si128(a, b), one), oddCD = _mm_and_si128(_mm_xor_si128(c, d), one);
    const V A = _mm_sub_epi16(_mm_avg_epu16(a, b), _mm_andnot_si128(oddCD, oddAB)), C = _mm_avg_epu16(c, d);
    return AddParts(x, _mm_subs_epu16(A, C), _mm_subs_epu16(C, A));
}

// Sum of two samples, offset by -65536, in 32-bit lanes (low or high four).
inline V Pair32(V a, V b, bool high) {
    const V bias = _mm_set1_epi16(-32768);
    const V ab = high ? _mm_unpackhi_epi16(_mm_xor_si128(a, bias), _mm_xor_si128(b, bias))
                      : _mm_unpacklo_epi16(_mm_xor_si128(a, bias), _mm_xor_si128(b, bias));
    return _mm_madd_epi16(ab, _mm_set1_epi16(1));
}

// x + floor((s - (e + f + g + h)) / 4) clamped to 0 .. 65535, s given as its
// low and high four 32-bit lanes offset by -131072.
inline V QuarterStep(V x, const V s[2], V e, V f, V g, V h) {
    V r[2];
    for (int k = 0; k < 2; ++k) {
        const V t = _mm_add_epi32(Pair32(e, f, k), Pair32(g, h, k));
        const V xw = k ? _mm_unpackhi_epi16(x, _mm_setzero_si128()) : _mm_unpacklo_epi16(x, _mm_setzero_si128());
        r[k] = _mm_sub_epi32(_mm_add_epi32(xw, _mm_srai_epi32(_mm_sub_epi32(s[k], t), 2)), _mm_set1_epi32(32768));
    }
    return _mm_xor_si128(_mm_packs_epi32(r[0], r[1]), _mm_set1_epi16(-32768));
}

// Lines of CompleteRow, each already offset so that entry i is position i.
struct CompleteLines {
    const uint16_t *gh, *gv, *ghu, *gvu, *ghd, *gvd, *rawU, *rawD;
    uint16_t *cv, *ch, *dv, *dh;
};

// Positions 1 .. last of CompleteRow in whole groups of eight; returns the
// first position left over. The C line is read around each group before the
// group is stored: the values read at C sites never change.
inline int32_t Complete(const CompleteLines& L, int32_t last, int32_t gpar) {
    const V green = ParityMask((gpar ^ 1) & 1);
    int32_t i = 1;
    for (; i + 7 <= last; i += 8) {
        const V own = Ld(L.cv + i), cl = Ld(L.cv + i - 1), cr = Ld(L.cv + i + 1);
        const V ru = Ld(L.rawU + i), rd = Ld(L.rawD + i);
        const V gh = Ld(L.gh + i), gv = Ld(L.gv + i);
        const V ghu = Ld(L.ghu + i), ghd = Ld(L.ghd + i), gvu = Ld(L.gvu + i), gvd = Ld(L.gvd + i);
        const V gCh = HalfStep(gh, cl, cr, Ld(L.gh + i - 1), Ld(L.gh + i + 1));
        const V gCv = HalfStep(gv, cl, cr, Ld(L.gv + i - 1), Ld(L.gv + i + 1));
        const V gDh = HalfStep(gh, ru, rd, ghu, ghd);
        const V gDv = HalfStep(gv, ru, rd, gvu, gvd);
        const V ul = Ld(L.rawU + i - 1), ur = Ld(L.rawU + i + 1), dl = Ld(L.rawD + i - 1), dr = Ld(L.rawD + i + 1);
        const V sr[2] = {_mm_add_epi32(Pair32(ul, ur, false), Pair32(dl, dr, false)),
                         _mm_add_epi32(Pair32(ul, ur, true), Pair32(dl, dr, true))};
        const V cDh = QuarterStep(gh, sr, Ld(L.ghu + i - 1), Ld(L.ghu + i + 1), Ld(L.ghd + i - 1), Ld(L.ghd + i + 1));
        const V cDv = QuarterStep(gv, sr, Ld(L.gvu + i - 1), Ld(L.gvu + i + 1), Ld(L.gvd + i - 1), Ld(L.gvd + i + 1));
        St(L.ch + i, Select(green, gCh, own));
        St(L.cv + i, Select(green, gCv, own));
        St(L.dh + i, Select(green, gDh, cDh));
        St(L.dv + i, Select(green, gDv, cDv));
    }
    return i;
}

}  // namespace zil::ahd::lanes16
