// Reading and completing 16-bit rows eight positions a step in 16-bit lanes.
//
// The sums behind an estimate need 17 or 18 bits, but each one is either
// halved at once or ends in a clamp to 0 .. 65535. Rounding-up averages
// (avg) carry the halving, and the clamp follows from saturating arithmetic
// once the signed term is split into its positive and negative parts (one of
// which is 0). Every value stays within 16 bits.
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

// A sum of four samples s as q = ceil(s / 4) and its shortfall 4 q - s
// (0 .. 3). With p and r the rounded-up means of the two pairs, q is the
// rounded-up mean of p and r, less 1 where both pairs and p + r are odd; the
// shortfall is the low two bits of -s, which the wrapped 16-bit sum keeps.
struct Quarter {
    V q, rest;
};
inline Quarter QuarterOf(V a, V b, V c, V d) {
    const V one = _mm_set1_epi16(1);
    const V p = _mm_avg_epu16(a, b), r = _mm_avg_epu16(c, d);
    const V odd = _mm_and_si128(_mm_and_si128(_mm_xor_si128(a, b), _mm_xor_si128(c, d)),
                                _mm_and_si128(_mm_xor_si128(p, r), one));
    const V neg = _mm_sub_epi16(_mm_sub_epi16(_mm_setzero_si128(), _mm_add_epi16(a, b)), _mm_add_epi16(c, d));
    return {_mm_sub_epi16(_mm_avg_epu16(p, r), odd), _mm_and_si128(neg, _mm_set1_epi16(3))};
}

// x + floor((s - t) / 4) clamped to 0 .. 65535, for sums s and t of four
// samples: the floored quarter is q(s) - q(t), less 1 where s falls short of
// its q by more than t does.
inline V QuarterStep(V x, const Quarter& s, const Quarter& t) {
    const V q = _mm_add_epi16(s.q, _mm_cmpgt_epi16(s.rest, t.rest));
    return AddParts(x, _mm_subs_epu16(q, t.q), _mm_subs_epu16(t.q, q));
}

// Lines of CompleteRow, each already offset so that entry i is position i.
struct CompleteLines {
    const uint16_t *gh, *gv, *ghu, *gvu, *ghd, *gvd, *rawU, *rawD;
    uint16_t *cv, *ch, *dv, *dh;
};

// Positions 1 .. last of CompleteRow in whole groups of eight; returns the
// first position left over. The C line is read around each group before the
// group is stored, the left neighbours of the next group included (a load
// overlapping the store just made would wait for it): the values read at C
// sites never change.
inline int32_t Complete(const CompleteLines& L, int32_t last, int32_t gpar) {
    const V green = ParityMask((gpar ^ 1) & 1);
    int32_t i = 1;
    V cl = Ld(L.cv);
    for (; i + 7 <= last; i += 8) {
        const V own = Ld(L.cv + i), cr = Ld(L.cv + i + 1), clNext = Ld(L.cv + i + 7);
        const V ru = Ld(L.rawU + i), rd = Ld(L.rawD + i);
        const V gh = Ld(L.gh + i), gv = Ld(L.gv + i);
        const V ghu = Ld(L.ghu + i), ghd = Ld(L.ghd + i), gvu = Ld(L.gvu + i), gvd = Ld(L.gvd + i);
        const V gCh = HalfStep(gh, cl, cr, Ld(L.gh + i - 1), Ld(L.gh + i + 1));
        const V gCv = HalfStep(gv, cl, cr, Ld(L.gv + i - 1), Ld(L.gv + i + 1));
        const V gDh = HalfStep(gh, ru, rd, ghu, ghd);
        const V gDv = HalfStep(gv, ru, rd, gvu, gvd);
        const V ul = Ld(L.rawU + i - 1), ur = Ld(L.rawU + i + 1), dl = Ld(L.rawD + i - 1), dr = Ld(L.rawD + i + 1);
        const Quarter sr = QuarterOf(ul, ur, dl, dr);
        const V cDh = QuarterStep(
            gh, sr, QuarterOf(Ld(L.ghu + i - 1), Ld(L.ghu + i + 1), Ld(L.ghd + i - 1), Ld(L.ghd + i + 1)));
        const V cDv = QuarterStep(
            gv, sr, QuarterOf(Ld(L.gvu + i - 1), Ld(L.gvu + i + 1), Ld(L.gvd + i - 1), Ld(L.gvd + i + 1)));
        St(L.ch + i, Select(green, gCh, own));
        St(L.cv + i, Select(green, gCv, own));
        St(L.dh + i, Select(green, gDh, cDh));
        St(L.dv + i, Select(green, gDv, cDv));
        cl = clNext;
    }
    return i;
}

}  // namespace zil::ahd::lanes16
