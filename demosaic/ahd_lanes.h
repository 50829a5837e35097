// Reading and completing rows sixteen (8 bits) or eight (16 bits) positions a
// step, in lanes of the sample width.
//
// The sums behind an estimate need one or two bits more than a sample, but
// each one is either halved at once or ends in a clamp to the sample range.
// Rounding-up averages (avg) carry the halving, and the clamp follows from
// saturating arithmetic once the signed term is split into its positive and
// negative parts (one of which is 0). Every value stays within the lane.
#pragma once

#include <emmintrin.h>

#include <cstdint>

namespace zil::ahd::lanes {

typedef __m128i V;

// Lane operations of a sample width: wrapping Add and Sub, saturating
// unsigned AddS and SubS, rounding-up unsigned Avg, signed Gt, a constant in
// every lane, and the mask of the lanes t with t & 1 == odd.
template <class T>
struct Ops;
template <>
struct Ops<uint8_t> {
    static constexpr int kLanes = 16;
    static V Add(V a, V b) { return _mm_add_epi8(a, b); }
    static V Sub(V a, V b) { return _mm_sub_epi8(a, b); }
    static V AddS(V a, V b) { return _mm_adds_epu8(a, b); }
    static V SubS(V a, V b) { return _mm_subs_epu8(a, b); }
    static V Avg(V a, V b) { return _mm_avg_epu8(a, b); }
    static V Gt(V a, V b) { return _mm_cmpgt_epi8(a, b); }
    static V Set(int8_t k) { return _mm_set1_epi8(k); }
    static V ParityMask(int32_t odd) { return _mm_set1_epi16(odd ? int16_t(0xff00) : 0x00ff); }
};
template <>
struct Ops<uint16_t> {
    static constexpr int kLanes = 8;
    static V Add(V a, V b) { return _mm_add_epi16(a, b); }
    static V Sub(V a, V b) { return _mm_sub_epi16(a, b); }
    static V AddS(V a, V b) { return _mm_adds_epu16(a, b); }
    static V SubS(V a, V b) { return _mm_subs_epu16(a, b); }
    static V Avg(V a, V b) { return _mm_avg_epu16(a, b); }
    static V Gt(V a, V b) { return _mm_cmpgt_epi16(a, b); }
    static V Set(int16_t k) { return _mm_set1_epi16(k); }
    static V ParityMask(int32_t odd) { return _mm_set1_epi32(odd ? int32_t(0xffff0000u) : 0x0000ffff); }
};

template <class T>
inline V Ld(const T* p) { return _mm_loadu_si128(reinterpret_cast<const V*>(p)); }
template <class T>
inline void St(T* p, V v) { _mm_storeu_si128(reinterpret_cast<V*>(p), v); }
inline V Select(V m, V a, V b) { return _mm_or_si128(_mm_and_si128(m, a), _mm_andnot_si128(m, b)); }
// Unsigned minimum and maximum: a - (a -sat b) and b + (a -sat b).
template <class O>
inline V MinU(V a, V b) { return O::Sub(a, O::SubS(a, b)); }
template <class O>
inline V MaxU(V a, V b) { return O::Add(b, O::SubS(a, b)); }
// x + p - n held in the sample range, where p or n is 0.
template <class O>
inline V AddParts(V x, V p, V n) { return O::SubS(O::AddS(x, p), n); }

// Green estimate of a lane group (see GreenEstimate). The floored quarter of
// (p - u) + (p - v) is floor((p - ceil((u + v) / 2)) / 2), that is
// p - ceil((p + ceil((u + v) / 2)) / 2), within the signed lane; the floored
// mean of a and b is their rounded-up mean less the low bit of a ^ b.
template <class O>
inline V GreenEstimate(V p, V a, V b, V u, V v) {
    const V q = O::Sub(p, O::Avg(p, O::Avg(u, v)));
    const V pos = _mm_andnot_si128(O::Gt(_mm_setzero_si128(), q), q), neg = O::Sub(pos, q);
    const V mean = O::Sub(O::Avg(a, b), _mm_and_si128(_mm_xor_si128(a, b), O::Set(1)));
    const V t = AddParts<O>(mean, pos, neg);
    return MinU<O>(MaxU<O>(t, MinU<O>(a, b)), MaxU<O>(a, b));
}

// Positions lo .. of ReadInside in whole lane groups; returns the first
// position left over.
template <class T>
inline int32_t ReadInside(const T* s0, const T* su1, const T* sd1, const T* su2, const T* sd2, T* raw, T* gh, T* gv,
                          int32_t lo, int32_t hi, int32_t gpar) {
    using O = Ops<T>;
    constexpr int kN = O::kLanes;
    const V green = O::ParityMask((gpar ^ lo) & 1);
    int32_t i = lo;
    for (; i + kN - 1 <= hi; i += kN) {
        const V p = Ld(s0 + i);
        const V eh = GreenEstimate<O>(p, Ld(s0 + i - 1), Ld(s0 + i + 1), Ld(s0 + i - 2), Ld(s0 + i + 2));
        const V ev = GreenEstimate<O>(p, Ld(su1 + i), Ld(sd1 + i), Ld(su2 + i), Ld(sd2 + i));
        St(raw + i, p);
        St(gh + i, Select(green, p, eh));
        St(gv + i, Select(green, p, ev));
    }
    return i;
}

// x + floor((a + b - c - d) / 2) clamped to the sample range. With A and C
// the rounded-up means of a, b and of c, d, the floored half is A - C, less 1
// where a + b is odd and c + d even.
template <class O>
inline V HalfStep(V x, V a, V b, V c, V d) {
    const V one = O::Set(1);
    const V oddAB = _mm_and_si128(_mm_xor_si128(a, b), one), oddCD = _mm_and_si128(_mm_xor_si128(c, d), one);
    const V A = O::Sub(O::Avg(a, b), _mm_andnot_si128(oddCD, oddAB)), C = O::Avg(c, d);
    return AddParts<O>(x, O::SubS(A, C), O::SubS(C, A));
}

// A sum of four samples s as q = ceil(s / 4) and its shortfall 4 q - s
// (0 .. 3). With p and r the rounded-up means of the two pairs, q is the
// rounded-up mean of p and r, less 1 where both pairs and p + r are odd; the
// shortfall is the low two bits of -s, which the wrapped sum keeps.
struct Quarter {
    V q, rest;
};
template <class O>
inline Quarter QuarterOf(V a, V b, V c, V d) {
    const V p = O::Avg(a, b), r = O::Avg(c, d);
    const V odd = _mm_and_si128(_mm_and_si128(_mm_xor_si128(a, b), _mm_xor_si128(c, d)),
                                _mm_and_si128(_mm_xor_si128(p, r), O::Set(1)));
    const V neg = O::Sub(O::Sub(_mm_setzero_si128(), O::Add(a, b)), O::Add(c, d));
    return {O::Sub(O::Avg(p, r), odd), _mm_and_si128(neg, O::Set(3))};
}

// x + floor((s - t) / 4) clamped to the sample range, for sums s and t of
// four samples: the floored quarter is q(s) - q(t), less 1 where s falls
// short of its q by more than t does.
template <class O>
inline V QuarterStep(V x, const Quarter& s, const Quarter& t) {
    const V q = O::Add(s.q, O::Gt(s.rest, t.rest));
    return AddParts<O>(x, O::SubS(q, t.q), O::SubS(t.q, q));
}

// Lines of CompleteRow, each already offset so that entry i is position i.
template <class T>
struct CompleteLines {
    const T *gh, *gv, *ghu, *gvu, *ghd, *gvd, *rawU, *rawD;
    T *cv, *ch, *dv, *dh;
};

// Positions 1 .. last of CompleteRow in whole lane groups; returns the
// first position left over. The C line is read around each group before the
// group is stored, the left neighbours of the next group included (a load
// overlapping the store just made would wait for it): the values read at C
// sites never change.
template <class T>
inline int32_t Complete(const CompleteLines<T>& L, int32_t last, int32_t gpar) {
    using O = Ops<T>;
    constexpr int kN = O::kLanes;
    const V green = O::ParityMask((gpar ^ 1) & 1);
    int32_t i = 1;
    V cl = Ld(L.cv);
    for (; i + kN - 1 <= last; i += kN) {
        const V own = Ld(L.cv + i), cr = Ld(L.cv + i + 1), clNext = Ld(L.cv + i + kN - 1);
        const V ru = Ld(L.rawU + i), rd = Ld(L.rawD + i);
        const V gh = Ld(L.gh + i), gv = Ld(L.gv + i);
        const V ghu = Ld(L.ghu + i), ghd = Ld(L.ghd + i), gvu = Ld(L.gvu + i), gvd = Ld(L.gvd + i);
        const V gCh = HalfStep<O>(gh, cl, cr, Ld(L.gh + i - 1), Ld(L.gh + i + 1));
        const V gCv = HalfStep<O>(gv, cl, cr, Ld(L.gv + i - 1), Ld(L.gv + i + 1));
        const V gDh = HalfStep<O>(gh, ru, rd, ghu, ghd);
        const V gDv = HalfStep<O>(gv, ru, rd, gvu, gvd);
        const V ul = Ld(L.rawU + i - 1), ur = Ld(L.rawU + i + 1), dl = Ld(L.rawD + i - 1), dr = Ld(L.rawD + i + 1);
        const Quarter sr = QuarterOf<O>(ul, ur, dl, dr);
        const V cDh = QuarterStep<O>(
            gh, sr, QuarterOf<O>(Ld(L.ghu + i - 1), Ld(L.ghu + i + 1), Ld(L.ghd + i - 1), Ld(L.ghd + i + 1)));
        const V cDv = QuarterStep<O>(
            gv, sr, QuarterOf<O>(Ld(L.gvu + i - 1), Ld(L.gvu + i + 1), Ld(L.gvd + i - 1), Ld(L.gvd + i + 1)));
        St(L.ch + i, Select(green, gCh, own));
        St(L.cv + i, Select(green, gCv, own));
        St(L.dh + i, Select(green, gDh, cDh));
        St(L.dv + i, Select(green, gDv, cDv));
        cl = clNext;
    }
    return i;
}

}  // namespace zil::ahd::lanes
