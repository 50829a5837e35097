// Groups of four 8-bit pixels in 128-bit registers (baseline SSE2): loading
// interleaved or planar channels as 32-bit lanes, splitting a lane into its
// channel bytes and pairing them for 16 x 16-bit multiply-adds, and storing
// the lanes back as three-byte pixels; and the sixteen-pixel walk of rows
// of three-byte pixels (gather, per-channel multiply-adds, clamping store)
// that the YCbCr, YUV and XYZ rows share. The arithmetic built on these is
// the exact integer formula of each kernel: a multiply-add of 16-bit pairs
// forms the same 32-bit sum as the scalar code.
#pragma once

#include <emmintrin.h>
#ifdef __SSSE3__
#include <tmmintrin.h>
#endif

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

#ifdef __SSSE3__
// Byte shuffles for three-byte pixels: mask[r][c] takes channel c's bytes of
// sixteen pixels to their places in the r-th 16 bytes of the pixels (-128
// leaves a zero); gather[0] the bytes 0 | 2 << 16 of four pixels' 12 bytes
// into their 32-bit lanes, gather[1] byte 1, and compact the low three bytes
// of four 32-bit lanes to 12 bytes.
struct Shuffles3 {
    int8_t mask[3][3][16];
    int8_t gather[2][16];
    int8_t compact[16];
};
constexpr Shuffles3 MakeShuffles3() {
    Shuffles3 t{};
    for (int j = 0; j < 48; ++j)
        for (int c = 0; c < 3; ++c) t.mask[j / 16][c][j % 16] = int8_t(j % 3 == c ? j / 3 : -128);
    for (int b = 0; b < 16; ++b) {
        const int px = b / 4, k = b % 4;
        t.gather[0][b] = int8_t(k == 0 ? 3 * px : k == 2 ? 3 * px + 2 : -128);
        t.gather[1][b] = int8_t(k == 0 ? 3 * px + 1 : -128);
        t.compact[b] = int8_t(b < 12 ? b / 3 * 4 + b % 3 : -128);
    }
    return t;
}
inline constexpr Shuffles3 kShuffles3 = MakeShuffles3();
inline __m128i Shuffle3(const int8_t* m) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(m)); }
#endif

// Sixteen pixels from the 16-bit results of pixels 0-7 (lo) and 8-15 (hi),
// clamped to 0..255 by the pack, to DP (3 or 4, then with the alpha bytes a) bytes a
// pixel at p; order 1 writes the channels reversed. A DP 3 store may write two
// bytes of junk past the 48 (see Store3).
template <int DP>
inline void StoreRgb16(uint8_t* p, int order, const __m128i* lo, const __m128i* hi, __m128i a) {
    const __m128i c0 = _mm_packus_epi16(lo[order ? 2 : 0], hi[order ? 2 : 0]);
    const __m128i c1 = _mm_packus_epi16(lo[1], hi[1]);
    const __m128i c2 = _mm_packus_epi16(lo[order ? 0 : 2], hi[order ? 0 : 2]);
#ifdef __SSSE3__
    if constexpr (DP == 3) {
        for (int r = 0; r < 3; ++r) {
            const __m128i v = _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(c0, Shuffle3(kShuffles3.mask[r][0])),
                                                        _mm_shuffle_epi8(c1, Shuffle3(kShuffles3.mask[r][1]))),
                                           _mm_shuffle_epi8(c2, Shuffle3(kShuffles3.mask[r][2])));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 16 * r), v);
        }
        return;
    }
#endif
    const __m128i p01l = _mm_unpacklo_epi8(c0, c1), p01h = _mm_unpackhi_epi8(c0, c1);
    const __m128i p23l = _mm_unpacklo_epi8(c2, a), p23h = _mm_unpackhi_epi8(c2, a);
    const __m128i w[4] = {_mm_unpacklo_epi16(p01l, p23l), _mm_unpackhi_epi16(p01l, p23l),
                          _mm_unpacklo_epi16(p01h, p23h), _mm_unpackhi_epi16(p01h, p23h)};
    for (int q = 0; q < 4; ++q) {
        if constexpr (DP == 3) Store3(p + 12 * q, w[q]);
        else _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 16 * q), w[q]);
    }
}

// Four 32-bit lanes' low three bytes to 12 bytes at p, in increasing order
// along a row: up to four bytes past the 12 get junk that the row's next
// pixels overwrite.
inline void StoreWords3(uint8_t* p, __m128i w) {
#ifdef __SSSE3__
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm_shuffle_epi8(w, Shuffle3(kShuffles3.compact)));
#else
    Store3(p, w);
#endif
}

// Sixteen three-byte pixels at p as four registers, pixel 4k + j in lane j of
// q[k], its bytes from the lane's low byte (the top byte, the next pixel's
// first, is junk to the callers). A 16-byte load at pixel k holds pixel k in
// its first lane and pixel k + 4 in its last, so four such loads and four
// two-register lane shuffles give eight pixels. Reads 49 bytes.
inline void Load16x3(const uint8_t* p, __m128i* q) {
    for (int h = 0; h < 2; ++h) {
        __m128 l[4];
        for (int k = 0; k < 4; ++k) l[k] = _mm_loadu_ps(reinterpret_cast<const float*>(p + 3 * (8 * h + k)));
        const __m128 a = _mm_shuffle_ps(l[0], l[1], _MM_SHUFFLE(3, 0, 3, 0));  // pixels 0 4 1 5
        const __m128 b = _mm_shuffle_ps(l[2], l[3], _MM_SHUFFLE(3, 0, 3, 0));  // pixels 2 6 3 7
        q[2 * h] = _mm_castps_si128(_mm_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0)));
        q[2 * h + 1] = _mm_castps_si128(_mm_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1)));
    }
}

// Sixteen three-byte pixels at p as four quartets of 16-bit pairs: c02[k]
// holds byte0 | byte2 << 16 of pixels 4k..4k+3, c1x[k] byte1 | x << 16, x
// junk (0, or the next pixel's first byte). Reads at most 52 bytes.
inline void Pairs16x3(const uint8_t* p, __m128i* c02, __m128i* c1x) {
#ifdef __SSSE3__
    const __m128i m02 = Shuffle3(kShuffles3.gather[0]), m1 = Shuffle3(kShuffles3.gather[1]);
    for (int k = 0; k < 4; ++k) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 12 * k));
        c02[k] = _mm_shuffle_epi8(v, m02), c1x[k] = _mm_shuffle_epi8(v, m1);
    }
#else
    __m128i px[4];
    Load16x3(p, px);
    for (int k = 0; k < 4; ++k) c02[k] = _mm_and_si128(px[k], _mm_set1_epi32(0x00FF00FF)), c1x[k] = _mm_srli_epi16(px[k], 8);
#endif
}

// Sixteen three-byte pixels a step to three-byte pixels through 16-bit lanes,
// while the row holds the loads' and stores' reach; returns the first pixel
// left. Each four pixels come as the 16-bit lanes byte0 | byte2 << 16 and
// byte1 | x << 16 (x, the next pixel's first byte); Four forms their three
// 32-bit sums and Narrow packs two such quartets to the 16-bit lanes
// StoreRgb16 clamps and writes.
template <class Four, class Narrow>
inline int Walk16x3(const uint8_t* s, uint8_t* d, int order, int w, Four four, Narrow narrow) {
    int i = 0;
    for (; i + kBlockReach<3, 3> <= w; i += 16) {
        __m128i c02[4], c1x[4], out[2][3];
        Pairs16x3(s + i * 3, c02, c1x);
        for (int h = 0; h < 2; ++h) {
            __m128i sum[2][3];
            for (int q = 0; q < 2; ++q) four(c02[2 * h + q], c1x[2 * h + q], sum[q]);
            for (int c = 0; c < 3; ++c) out[h][c] = narrow(sum[0][c], sum[1][c]);
        }
        StoreRgb16<3>(d + i * 3, order, out[0], out[1], _mm_setzero_si128());
    }
    return i;
}

// A weight w as wH 2^16 + wL with wL in the int16 range.
constexpr int32_t HiW(int32_t w) { return (w + 32768) >> 16; }
constexpr int32_t LoW(int32_t w) { return w - HiW(w) * 65536; }

// (K Y + WU (Cb - 128) + WV (Cr - 128) + O) >> 16 on four pixels, K = 2^16 +
// KL, from the lanes Y | Cr << 16 and Cb | x << 16 (x, the next pixel's byte,
// meets a zero weight). With each weight split as above and the chroma offset
// folded into the constant (weights on the bytes Cb, Cr as they are), the sum
// is 2^16 (Y + wH_u Cb + wH_v Cr) plus the low sum KL Y + wL_u Cb + wL_v Cr +
// O - 128 (WU + WV), which multiply-adds of 16-bit pairs form exactly in
// 32-bit lanes; its shift by 16 is added to the high part. Without a weight
// on Cr but with one on Y beside Cb's, the pair Y | Cb << 16 takes both in
// one multiply-add.
template <int32_t KL, int32_t WU, int32_t WV, int32_t O>
inline __m128i InvChannel4(__m128i ycr, __m128i cbx) {
    if constexpr (WV == 0 && KL != 0) {
        const __m128i ycb = _mm_or_si128(_mm_and_si128(ycr, _mm_set1_epi32(0xFFFF)), _mm_slli_epi32(cbx, 16));
        const __m128i lo = _mm_add_epi32(_mm_madd_epi16(ycb, Coeffs(KL, LoW(WU))), _mm_set1_epi32(O - 128 * WU));
        return _mm_add_epi32(_mm_srai_epi32(lo, 16), _mm_madd_epi16(ycb, Coeffs(1, HiW(WU))));
    }
    __m128i lo = _mm_set1_epi32(O - 128 * (WU + WV));
    if constexpr (KL != 0 || LoW(WV) != 0) lo = _mm_add_epi32(_mm_madd_epi16(ycr, Coeffs(KL, LoW(WV))), lo);
    if constexpr (LoW(WU) != 0) lo = _mm_add_epi32(lo, _mm_madd_epi16(cbx, Coeffs(LoW(WU), 0)));
    __m128i r = _mm_add_epi32(_mm_srai_epi32(lo, 16), _mm_madd_epi16(ycr, Coeffs(1, HiW(WV))));
    if constexpr (HiW(WU) != 0) r = _mm_add_epi32(r, _mm_madd_epi16(cbx, Coeffs(HiW(WU), 0)));
    return r;
}

}  // namespace zil::px4
