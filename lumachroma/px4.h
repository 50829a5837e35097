// Groups of four 8-bit pixels in 128-bit registers (baseline SSE2): loading
// interleaved or planar channels as 32-bit lanes, splitting a lane into its
// channel bytes and pairing them for 16 x 16-bit multiply-adds, and storing
// the lanes back as three-byte pixels. The arithmetic built on these is the
// exact integer formula of each kernel: a multiply-add of 16-bit pairs forms
// the same 32-bit sum as the scalar code.
#pragma once

#include <emmintrin.h>

#include "zil_common.h"

namespace zil::px4 {

// Four pixels of PS bytes (3 or 4) at p, pixel j in lane j, its bytes in
// memory order from the lane's low byte; for PS 3 the lane's top byte is
// the next pixel's first. Reads 16 bytes.
template <int PS>
inline __m128i Load(const uint8_t* p) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    if constexpr (PS == 4) {
        return v;
    } else {
        static_assert(PS == 3, "three- or four-byte pixels");
        const __m128i a = _mm_unpacklo_epi32(v, _mm_srli_si128(v, 3));
        const __m128i b = _mm_unpacklo_epi32(_mm_srli_si128(v, 6), _mm_srli_si128(v, 9));
        return _mm_unpacklo_epi64(a, b);
    }
}

// The byte of each lane at bit offset `shift` (a count for _mm_srl_epi32).
inline __m128i Byte(__m128i w, __m128i shift) {
    return _mm_and_si128(_mm_srl_epi32(w, shift), _mm_set1_epi32(0xFF));
}

// Lanes (x, y) as the 16-bit pair x | y << 16 of a multiply-add (x and y in
// the int16 range).
inline __m128i Pair(__m128i x, __m128i y) {
    return _mm_or_si128(_mm_and_si128(x, _mm_set1_epi32(0xFFFF)), _mm_slli_epi32(y, 16));
}
// The same for x already in 0..65535 (a channel byte).
inline __m128i PairU(__m128i x, __m128i y) { return _mm_or_si128(x, _mm_slli_epi32(y, 16)); }
// A multiply-add constant: (a, b) in every lane pair.
inline __m128i Coeffs(int32_t a, int32_t b) { return _mm_set1_epi32(int32_t(uint32_t(a & 0xFFFF) | uint32_t(b) << 16)); }

// Pixels a block of sixteen needs in its row: for SP 3 the last group's
// 16-byte load reaches 4 bytes past the 16th pixel, and a DP 3 store writes
// two bytes past it (see Store3).
template <int SP, int DP>
inline constexpr int kBlockReach = SP == 3 ? 18 : DP == 3 ? 17 : 16;

// Lanes holding three bytes each to 12 bytes at p: per 64-bit half two
// pixels are joined into six bytes, and the halves are stored 6 bytes apart.
// Two bytes past the 12 are written with junk, which the row's next pixels
// then overwrite, so a caller stores pixels in increasing order and leaves
// two bytes of row after the last group.
inline void Store3(uint8_t* p, __m128i w) {
    const __m128i m0 = _mm_set1_epi64x(0xFFFFFF), m1 = _mm_set1_epi64x(0xFFFFFF000000);
    const __m128i t = _mm_or_si128(_mm_and_si128(w, m0), _mm_and_si128(_mm_srli_epi64(w, 8), m1));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(p), t);
    _mm_storeh_pi(reinterpret_cast<__m64*>(p + 6), _mm_castsi128_ps(t));
}

// Where a row's three channels are: planes (pixel size 1), or the three
// adjacent bytes of interleaved pixels, base[0] pointing at the first, in
// channel order (order 0) or reversed (order 1), with the bit offset of each
// channel inside a pixel's lane.
template <class P>
struct Place {
    P base[3];
    int order = 0;
    __m128i shift[3];
};
template <int PS, class P>
inline bool Locate(P c0, P c1, P c2, Place<P>* pl) {
    if constexpr (PS == 1) {
        pl->base[0] = c0, pl->base[1] = c1, pl->base[2] = c2;
        return true;
    } else {
        if (c1 == c0 + 1 && c2 == c0 + 2) pl->base[0] = c0, pl->order = 0;
        else if (c1 == c2 + 1 && c0 == c2 + 2) pl->base[0] = c2, pl->order = 1;
        else return false;
        const int o = pl->order ? 16 : 0;
        pl->shift[0] = _mm_cvtsi32_si128(o), pl->shift[1] = _mm_cvtsi32_si128(8);
        pl->shift[2] = _mm_cvtsi32_si128(16 - o);
        return true;
    }
}

// Runs `conv` over sixteen-pixel blocks of a row from pixel i on, while the
// row holds them, and returns the first pixel left. conv(c0, c1, c2, out)
// turns four pixels' channel lanes into three output lanes (int32, clamped
// to 0..255 when stored; Clamp false promises values in 0..255 already).
// Sources and destinations are planar (1) or interleaved (SP 3 or 4; DP 3,
// or DP 4 with the alpha lanes `a`).
template <int SP, int DP, bool Clamp, class Conv>
inline int Blocks(const Place<const uint8_t*>& s, const Place<uint8_t*>& d, int i, int w, __m128i a, Conv conv) {
    const __m128i z = _mm_setzero_si128();
    for (; i + kBlockReach<SP, DP> <= w; i += 16) {
        __m128i wide[3][2];  // planar source: 16-bit samples
        if constexpr (SP == 1)
            for (int c = 0; c < 3; ++c) {
                const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s.base[c] + i));
                wide[c][0] = _mm_unpacklo_epi8(v, z), wide[c][1] = _mm_unpackhi_epi8(v, z);
            }
        __m128i half[3][2];  // planar destination: 16-bit results of groups 0-1 and 2-3
        __m128i prev[3];
        for (int k = 0; k < 4; ++k) {
            __m128i in[3], out[3];
            if constexpr (SP == 1) {
                for (int c = 0; c < 3; ++c)
                    in[c] = (k & 1) ? _mm_unpackhi_epi16(wide[c][k >> 1], z) : _mm_unpacklo_epi16(wide[c][k >> 1], z);
            } else {
                const __m128i px = Load<SP>(s.base[0] + (i + 4 * k) * SP);
                for (int c = 0; c < 3; ++c) in[c] = Byte(px, s.shift[c]);
            }
            conv(in[0], in[1], in[2], out);
            if constexpr (DP == 1) {
                for (int c = 0; c < 3; ++c) {
                    if (k & 1) half[c][k >> 1] = _mm_packs_epi32(prev[c], out[c]);
                    else prev[c] = out[c];
                }
            } else if constexpr (Clamp) {
                // Eight pixels at once: the saturating packs clamp, then the
                // bytes are interleaved into pixel words.
                for (int c = 0; c < 3; ++c) {
                    if (k & 1) half[c][0] = _mm_packs_epi32(prev[c], out[c]);
                    else prev[c] = out[c];
                }
                if (k & 1) {
                    const __m128i c01 = _mm_packus_epi16(half[d.order ? 2 : 0][0], half[1][0]);
                    const __m128i c23 = _mm_packus_epi16(half[d.order ? 0 : 2][0], _mm_packs_epi32(a, a));
                    const __m128i p01 = _mm_unpacklo_epi8(c01, _mm_unpackhi_epi64(c01, c01));
                    const __m128i p23 = _mm_unpacklo_epi8(c23, _mm_unpackhi_epi64(c23, c23));
                    const __m128i w0 = _mm_unpacklo_epi16(p01, p23), w1 = _mm_unpackhi_epi16(p01, p23);
                    uint8_t* o = d.base[0] + (i + 4 * (k - 1)) * DP;
                    if constexpr (DP == 3) {
                        Store3(o, w0), Store3(o + 12, w1);
                    } else {
                        _mm_storeu_si128(reinterpret_cast<__m128i*>(o), w0);
                        _mm_storeu_si128(reinterpret_cast<__m128i*>(o + 16), w1);
                    }
                }
            } else {
                const __m128i& b0 = d.order ? out[2] : out[0];
                const __m128i& b2 = d.order ? out[0] : out[2];
                const __m128i px = _mm_or_si128(_mm_or_si128(b0, _mm_slli_epi32(out[1], 8)),
                                                _mm_or_si128(_mm_slli_epi32(b2, 16), _mm_slli_epi32(a, 24)));
                if constexpr (DP == 3) Store3(d.base[0] + (i + 4 * k) * 3, px);
                else _mm_storeu_si128(reinterpret_cast<__m128i*>(d.base[0] + (i + 4 * k) * 4), px);
            }
        }
        if constexpr (DP == 1)
            for (int c = 0; c < 3; ++c)
                _mm_storeu_si128(reinterpret_cast<__m128i*>(d.base[c] + i), _mm_packus_epi16(half[c][0], half[c][1]));
    }
    return i;
}

}  // namespace zil::px4
