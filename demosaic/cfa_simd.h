// Wide path of the interior rows: the same steered rule on groups of column
// pairs, written with the compiler's generic 16-byte vectors (baseline
// instructions only, no dispatch).
//
// Samples of a row are loaded 16 bytes at a time as lanes twice their width,
// which splits them into the even and the odd columns at once: 8u works in
// 16-bit lanes (the largest sum, 4 * 255 + 2, fits), 16u in 32-bit lanes, as
// the scalar rule does. The interleaved R, G, B pixels of each pair of columns
// are then assembled in lanes and stored with overlapping stores, each store
// running a few bytes into the next pair, which its own store overwrites.
#pragma once

#include "cfa_kernels.h"

namespace zil::cfa {

template <class T>
struct Lanes;
template <>
struct Lanes<uint8_t> {
    typedef int16_t V __attribute__((vector_size(16)));   // computing lanes
    typedef uint16_t U __attribute__((vector_size(16)));  // two samples a lane
    typedef U UnalignedU __attribute__((aligned(1), may_alias));
    using E = uint16_t;
    static constexpr int kPairs = 8, kBits = 8;
};
template <>
struct Lanes<uint16_t> {
    typedef int32_t V __attribute__((vector_size(16)));
    typedef uint32_t U __attribute__((vector_size(16)));
    typedef U UnalignedU __attribute__((aligned(1), may_alias));
    using E = uint32_t;
    static constexpr int kPairs = 4, kBits = 16;
};

// Even and odd columns of the 2 kPairs samples starting at p.
template <class T>
struct Split {
    typename Lanes<T>::V even, odd;
};
template <class T>
inline Split<T> LoadSplit(const T* p) {
    using L = Lanes<T>;
    const typename L::U u = *reinterpret_cast<const typename L::UnalignedU*>(p);
    constexpr typename L::E lowMask = (1u << L::kBits) - 1;
    return {typename L::V(u & lowMask), typename L::V(u >> L::kBits)};
}

template <class V>
inline V Mean2V(V a, V b) { return (a + b + 1) >> 1; }
template <class V>
inline V Mean4V(V a, V b, V c, V d) { return (a + b + c + d + 2) >> 2; }
template <class V>
inline V AbsV(V v) { return v < 0 ? -v : v; }

template <class V>
struct Rgb {
    V r, g, b;
};

// The neighbourhood of one pixel of each lane: s(i, 0) for i = -2..2 in the own
// row (h), s(0, -1), s(0, 1), s(0, -2), s(0, 2) and the four diagonals.
template <class V>
struct Hood {
    V hm2, hm1, h0, hp1, hp2;
    V u1, d1, u2, d2;
    V ul, ur, dl, dr;
};

template <Site S, class V>
inline Rgb<V> PixelV(const Hood<V>& n) {
    V own = n.h0, x, y;
    if constexpr (IsGreen(S)) {
        x = Mean2V(n.hm1, n.hp1);
        y = Mean2V(n.u1, n.d1);
    } else {
        const V dV = AbsV(n.u2 - n.d2), dH = AbsV(n.hm2 - n.hp2);
        const V gv = Mean2V(n.u1, n.d1), gh = Mean2V(n.hm1, n.hp1), g4 = Mean4V(n.hm1, n.hp1, n.u1, n.d1);
        x = dV < dH ? gv : (dH < dV ? gh : g4);
        y = Mean4V(n.ul, n.ur, n.dl, n.dr);
    }
    if constexpr (S == Site::Red)
        return {own, x, y};
    else if constexpr (S == Site::Blue)
        return {y, x, own};
    else if constexpr (S == Site::GreenRedRow)
        return {x, own, y};
    else
        return {y, own, x};
}

// Stores the pairs (p0 at column 2i, p1 at 2i + 1) of all lanes from o on.
// Writes 2 elements past the last pair.
inline void StorePairs(uint8_t* o, const Rgb<Lanes<uint8_t>::V>& p0, const Rgb<Lanes<uint8_t>::V>& p1) {
    typedef uint16_t U16 __attribute__((vector_size(16)));
    typedef uint32_t U32 __attribute__((vector_size(16)));
    typedef uint64_t U64 __attribute__((vector_size(16)));
    typedef uint64_t Word __attribute__((aligned(1), may_alias));
    // Two bytes a lane: R0 G0, B0 R1, G1 B1 - the six bytes of a pair in order.
    const U16 a = U16(p0.r) | U16(p0.g) << 8, b = U16(p0.b) | U16(p1.r) << 8, c = U16(p1.g) | U16(p1.b) << 8;
    const U16 z = {};
    const U32 abLo = U32(ZIL_SHUFFLE(a, b, U16, 0, 8, 1, 9, 2, 10, 3, 11));
    const U32 abHi = U32(ZIL_SHUFFLE(a, b, U16, 4, 12, 5, 13, 6, 14, 7, 15));
    const U32 cLo = U32(ZIL_SHUFFLE(c, z, U16, 0, 8, 1, 9, 2, 10, 3, 11));
    const U32 cHi = U32(ZIL_SHUFFLE(c, z, U16, 4, 12, 5, 13, 6, 14, 7, 15));
    // One pair a 64-bit lane: its six bytes and two zero bytes.
    const U64 q[4] = {U64(ZIL_SHUFFLE(abLo, cLo, U32, 0, 4, 1, 5)),
                      U64(ZIL_SHUFFLE(abLo, cLo, U32, 2, 6, 3, 7)),
                      U64(ZIL_SHUFFLE(abHi, cHi, U32, 0, 4, 1, 5)),
                      U64(ZIL_SHUFFLE(abHi, cHi, U32, 2, 6, 3, 7))};
    for (int k = 0; k < 4; ++k) {
        *reinterpret_cast<Word*>(o + 12 * k) = q[k][0];
        *reinterpret_cast<Word*>(o + 12 * k + 6) = q[k][1];
    }
}

inline void StorePairs(uint16_t* o, const Rgb<Lanes<uint16_t>::V>& p0, const Rgb<Lanes<uint16_t>::V>& p1) {
    typedef uint32_t U32 __attribute__((vector_size(16)));
    typedef U32 Unaligned __attribute__((aligned(1), may_alias));
    // Two samples a lane: R0 G0, B0 R1, G1 B1.
    const U32 a = U32(p0.r) | U32(p0.g) << 16, b = U32(p0.b) | U32(p1.r) << 16, c = U32(p1.g) | U32(p1.b) << 16;
    const U32 abLo = ZIL_SHUFFLE(a, b, U32, 0, 4, 1, 5), abHi = ZIL_SHUFFLE(a, b, U32, 2, 6, 3, 7);
    // Pair i in lanes 0..2 of a 16-byte store at 12 i bytes; lane 3 is overwritten next.
    *reinterpret_cast<Unaligned*>(o + 0) = ZIL_SHUFFLE(abLo, c, U32, 0, 1, 4, 4);
    *reinterpret_cast<Unaligned*>(o + 6) = ZIL_SHUFFLE(abLo, c, U32, 2, 3, 5, 5);
    *reinterpret_cast<Unaligned*>(o + 12) = ZIL_SHUFFLE(abHi, c, U32, 0, 1, 6, 6);
    *reinterpret_cast<Unaligned*>(o + 18) = ZIL_SHUFFLE(abHi, c, U32, 2, 3, 7, 7);
}

// Converts whole groups of kPairs column pairs of a row (even columns site S0,
// odd S1) while at least one pixel of the row follows the group, since the
// last store runs into it; returns the number of pixels done. Reads the same
// samples as the scalar rule: two columns and two rows around each pixel.
template <Site S0, Site S1, class T>
inline int RectRowWide(const T* s, ptrdiff_t st, int w, T* __restrict o) {
    using V = typename Lanes<T>::V;
    constexpr int kStep = 2 * Lanes<T>::kPairs;
    int c = 0;
    for (; c + kStep < w; c += kStep) {
        const T* a = s + c;
        const Split<T> hL = LoadSplit(a - 2), h0 = LoadSplit(a), hR = LoadSplit(a + 2);
        const Split<T> uL = LoadSplit(a - st - 2), u0 = LoadSplit(a - st), uR = LoadSplit(a - st + 2);
        const Split<T> dL = LoadSplit(a + st - 2), d0 = LoadSplit(a + st), dR = LoadSplit(a + st + 2);
        const Split<T> u2 = LoadSplit(a - 2 * st), d2 = LoadSplit(a + 2 * st);
        // Lane i: pixel p0 at column c + 2i, p1 at c + 2i + 1.
        const Hood<V> n0{hL.even, hL.odd, h0.even, h0.odd, hR.even, u0.even, d0.even, u2.even, d2.even,
                         uL.odd,  u0.odd, dL.odd,  d0.odd};
        const Hood<V> n1{hL.odd, h0.even, h0.odd, hR.even, hR.odd, u0.odd, d0.odd, u2.odd, d2.odd,
                         u0.even, uR.even, d0.even, dR.even};
        StorePairs(o + 3 * c, PixelV<S0>(n0), PixelV<S1>(n1));
    }
    return c;
}

}  // namespace zil::cfa
