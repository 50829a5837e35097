// RGB to HSV for byte pixels, sixteen at a time (baseline SSE2).
//
// The channel bytes give, in 16-bit lanes, v = max, d = v - min, the winning
// channel (blue wins every tie, then green, then red) and the two other
// channels' distances below v; those index the build-time tables of the S
// and H bytes (hsv8_tables.h), which hold the per-pixel formula's own
// results. V is the max itself. The 16 results are interleaved back into
// pixels of 3 bytes, or of 4 bytes whose fourth byte is kept.
#pragma once

#include <emmintrin.h>

#include "hsv8_tables.h"
#include "zil_common.h"

namespace zil::hue {

// The 12 bytes of four three-byte pixels (low 96 bits of g) as one 32-bit
// lane each; a lane's top byte is junk.
inline __m128i Hsv8Spread(__m128i g) {
    const __m128i a = _mm_unpacklo_epi32(g, _mm_srli_si128(g, 3));
    const __m128i b = _mm_unpacklo_epi32(_mm_srli_si128(g, 6), _mm_srli_si128(g, 9));
    return _mm_unpacklo_epi64(a, b);
}
// The reverse: the low three bytes of each lane as 12 bytes, the top 4 zero.
inline __m128i Hsv8Compact(__m128i w) {
    const __m128i m0 = _mm_set1_epi64x(0xFFFFFF), m1 = _mm_set1_epi64x(0xFFFFFF000000);
    const __m128i t = _mm_or_si128(_mm_and_si128(w, m0), _mm_and_si128(_mm_srli_epi64(w, 8), m1));
    return _mm_or_si128(_mm_move_epi64(t), _mm_slli_si128(_mm_srli_si128(t, 8), 6));
}

// Sixteen pixel words, each pixel in its low three bytes, stored as pixels of
// PS bytes: three-byte pixels as three whole vectors, four-byte ones keeping
// their fourth byte.
template <int PS>
inline void Hsv8Put16(uint8_t* d, const __m128i* o) {
    if constexpr (PS == 4) {
        const __m128i keep = _mm_set1_epi32(int32_t(0xFF000000u));
        for (int k = 0; k < 4; ++k) {
            __m128i* p = reinterpret_cast<__m128i*>(d + 16 * k);
            _mm_storeu_si128(p, _mm_or_si128(o[k], _mm_and_si128(_mm_loadu_si128(p), keep)));
        }
    } else {
        const __m128i c0 = Hsv8Compact(o[0]), c1 = Hsv8Compact(o[1]);
        const __m128i c2 = Hsv8Compact(o[2]), c3 = Hsv8Compact(o[3]);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(d), _mm_or_si128(c0, _mm_slli_si128(c1, 12)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 16),
                         _mm_or_si128(_mm_srli_si128(c1, 4), _mm_slli_si128(c2, 8)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 32),
                         _mm_or_si128(_mm_srli_si128(c2, 8), _mm_slli_si128(c3, 4)));
    }
}

// Converts the whole blocks of sixteen pixels of PS bytes (3 or 4) and
// returns the pixels done. Each block is read in full before it is written.
template <int PS>
inline int RgbToHsv8Blocks(const uint8_t* s, uint8_t* d, int width) {
    const __m128i m8 = _mm_set1_epi32(0xFF), z = _mm_setzero_si128();
    int x = 0;
    for (; x + 16 <= width; x += 16, s += 16 * PS, d += 16 * PS) {
        __m128i w[4];
        if constexpr (PS == 4) {
            for (int k = 0; k < 4; ++k) w[k] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 16 * k));
        } else {
            const __m128i v0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s));
            const __m128i v1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 16));
            const __m128i v2 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 32));
            w[0] = Hsv8Spread(v0);
            w[1] = Hsv8Spread(_mm_or_si128(_mm_srli_si128(v0, 12), _mm_slli_si128(v1, 4)));
            w[2] = Hsv8Spread(_mm_or_si128(_mm_srli_si128(v1, 8), _mm_slli_si128(v2, 8)));
            w[3] = Hsv8Spread(_mm_srli_si128(v2, 4));
        }
        alignas(16) uint32_t hueAt[16];
        alignas(16) uint16_t satAt[16];
        __m128i vmax[2];
        for (int h = 0; h < 2; ++h) {
            const __m128i a = w[2 * h], b2 = w[2 * h + 1];
            const __m128i r = _mm_packs_epi32(_mm_and_si128(a, m8), _mm_and_si128(b2, m8));
            const __m128i g = _mm_packs_epi32(_mm_and_si128(_mm_srli_epi32(a, 8), m8),
                                              _mm_and_si128(_mm_srli_epi32(b2, 8), m8));
            const __m128i b = _mm_packs_epi32(_mm_and_si128(_mm_srli_epi32(a, 16), m8),
                                              _mm_and_si128(_mm_srli_epi32(b2, 16), m8));
            const __m128i v = _mm_max_epi16(_mm_max_epi16(r, g), b);
            const __m128i dd = _mm_sub_epi16(v, _mm_min_epi16(_mm_min_epi16(r, g), b));
            const __m128i isB = _mm_cmpeq_epi16(b, v);
            const __m128i isG = _mm_andnot_si128(isB, _mm_cmpeq_epi16(g, v));
            const __m128i isR = _mm_cmpeq_epi16(_mm_or_si128(isB, isG), z);
            const __m128i dr = _mm_sub_epi16(v, r), dg = _mm_sub_epi16(v, g), db = _mm_sub_epi16(v, b);
            // Red wins: (dg, db); green: (dr, db); blue: (dr, dg).
            const __m128i hx = _mm_or_si128(_mm_and_si128(isR, dg), _mm_andnot_si128(isR, dr));
            const __m128i hy = _mm_or_si128(_mm_and_si128(isB, dg), _mm_andnot_si128(isB, db));
            const __m128i win = _mm_or_si128(_mm_and_si128(isB, _mm_set1_epi16(2)), _mm_and_si128(isG, _mm_set1_epi16(1)));
            const __m128i hxy = _mm_or_si128(_mm_slli_epi16(hx, 8), hy);
            _mm_store_si128(reinterpret_cast<__m128i*>(hueAt + 8 * h), _mm_unpacklo_epi16(hxy, win));
            _mm_store_si128(reinterpret_cast<__m128i*>(hueAt + 8 * h + 4), _mm_unpackhi_epi16(hxy, win));
            _mm_store_si128(reinterpret_cast<__m128i*>(satAt + 8 * h), _mm_or_si128(_mm_slli_epi16(v, 8), dd));
            vmax[h] = v;
        }
        // Indices are read back as scalars from memory, cheaper than lane
        // extractions; the empty asm keeps the compiler from choosing those.
        __asm__("" : : "r"(hueAt), "r"(satAt) : "memory");
        // V goes out with the pixels' vector stores, H and S after them
        // byte by byte, straight from the tables.
        const __m128i V = _mm_packus_epi16(vmax[0], vmax[1]);
        const __m128i v0 = _mm_unpacklo_epi8(V, z), v1 = _mm_unpackhi_epi8(V, z);
        const __m128i o[4] = {_mm_unpacklo_epi16(z, v0), _mm_unpackhi_epi16(z, v0), _mm_unpacklo_epi16(z, v1),
                              _mm_unpackhi_epi16(z, v1)};
        Hsv8Put16<PS>(d, o);
        for (int k = 0; k < 16; ++k) d[PS * k] = hsv8Hue[hueAt[k]], d[PS * k + 1] = hsv8Sat[satAt[k]];
    }
    return x;
}

// HSV to RGB for byte pixels, in quads. In sector i the pixel takes V,
// P = (1 - S) V and one of Q = (1 - S f) V (odd i) or T = (1 - S (1 - f)) V
// (even i), so with g = f or 1 - f the one product X = (1 - S g) V serves
// both. Where the three go depends on the hue byte only: its entry holds g
// and the place values 1, 256 or 65536 of the channels taking V, X and P
// (a pixel word of integers below 2^24 is exact in a float). With S = 0
// both X and P are V itself.
struct alignas(16) Hsv8Sector {
    float g, kv, kx, kp;
};
// Built per call: the sector of each hue byte, and S = c1 / 255 of each S
// byte (the quotients themselves, read instead of divided).
struct Hsv8Tables {
    Hsv8Sector sec[256];
    float sat[256];
};

// The pixel words (channel bytes at place values 1, 256, 65536) of the four
// pixels of PS bytes (3 or 4) at s; a three-byte pixel is read as 32 bits.
template <int PS>
inline __m128i Hsv8QuadWords(const uint8_t* s, const Hsv8Tables* tab) {
    const __m128i m8 = _mm_set1_epi32(0xFF);
    const __m128 one = _mm_set1_ps(1.0f), half = _mm_set1_ps(0.5f);
    __m128i w;
    if constexpr (PS == 4) {
        w = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s));
    } else {
        uint32_t u[4];
        for (int k = 0; k < 4; ++k) __builtin_memcpy(&u[k], s + 3 * k, 4);
        w = _mm_set_epi32(int32_t(u[3]), int32_t(u[2]), int32_t(u[1]), int32_t(u[0]));
    }
    const Hsv8Sector* sec = tab->sec;
    const __m128 e0 = _mm_load_ps(&sec[s[0]].g), e1 = _mm_load_ps(&sec[s[PS]].g);
    const __m128 e2 = _mm_load_ps(&sec[s[2 * PS]].g), e3 = _mm_load_ps(&sec[s[3 * PS]].g);
    const __m128 a = _mm_unpacklo_ps(e0, e1), b = _mm_unpacklo_ps(e2, e3);
    const __m128 c = _mm_unpackhi_ps(e0, e1), e = _mm_unpackhi_ps(e2, e3);
    const __m128 g = _mm_movelh_ps(a, b);
    const __m128 kv = _mm_movehl_ps(b, a), kx = _mm_movelh_ps(c, e), kp = _mm_movehl_ps(e, c);
    const __m128 v = _mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(w, 16), m8));
    const float* st = tab->sat;
    const __m128 sat = _mm_set_ps(st[s[3 * PS + 1]], st[s[2 * PS + 1]], st[s[PS + 1]], st[s[1]]);
    const __m128 xf = _mm_mul_ps(_mm_sub_ps(one, _mm_mul_ps(sat, g)), v);
    const __m128 pf = _mm_mul_ps(_mm_sub_ps(one, sat), v);
    const __m128i xi = _mm_cvttps_epi32(_mm_add_ps(xf, half));
    const __m128i pi = _mm_cvttps_epi32(_mm_add_ps(pf, half));
    const __m128 word = _mm_add_ps(_mm_add_ps(_mm_mul_ps(v, kv), _mm_mul_ps(_mm_cvtepi32_ps(xi), kx)),
                                   _mm_mul_ps(_mm_cvtepi32_ps(pi), kp));
    return _mm_cvttps_epi32(word);
}

// Writes four pixel words; a four-byte pixel keeps its fourth byte.
template <int PS>
inline void Hsv8PutQuad(uint8_t* d, __m128i o) {
    if constexpr (PS == 4) {
        __m128i* q = reinterpret_cast<__m128i*>(d);
        _mm_storeu_si128(q, _mm_or_si128(o, _mm_andnot_si128(_mm_set1_epi32(0xFFFFFF), _mm_loadu_si128(q))));
    } else {
        const __m128i c12 = Hsv8Compact(o);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(d), c12);
        const uint32_t tail = uint32_t(_mm_cvtsi128_si32(_mm_srli_si128(c12, 8)));
        __builtin_memcpy(d + 8, &tail, 4);
    }
}

// Converts the pixels of PS bytes (3 or 4) sixteen, then four at a time and
// returns the pixels done; a three-byte row stops one pixel early (its
// 32-bit reads). All quads of a step are read before any is written, so
// three-byte pixels go out as three whole vectors.
template <int PS>
inline int HsvToRgb8Quads(const uint8_t* s, uint8_t* d, int width, const Hsv8Tables* tab) {
    int x = 0;
    for (; x + 16 + (PS == 3) <= width; x += 16, s += 16 * PS, d += 16 * PS) {
        __m128i o[4];
        for (int k = 0; k < 4; ++k) o[k] = Hsv8QuadWords<PS>(s + 4 * PS * k, tab);
        Hsv8Put16<PS>(d, o);
    }
    for (; x + 4 + (PS == 3) <= width; x += 4, s += 4 * PS, d += 4 * PS) Hsv8PutQuad<PS>(d, Hsv8QuadWords<PS>(s, tab));
    return x;
}

}  // namespace zil::hue
