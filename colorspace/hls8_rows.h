// RGB <-> HLS row kernels of the 8-bit RGB group (pixel stride 3 or 4; a
// fourth byte is never touched).
//
// RGB to HLS: the hue and the saturation bytes depend on a few small integers
// only, so they are read from the tables the same formula filled at build
// time; the lightness (0.5 (max + min) + 0.5, truncated) is (max + min + 1) / 2.
// HLS to RGB: the lightness and saturation quotients by 255 come from a float
// table of the very same quotients, the hue's part from a record per hue
// byte; the rest is the float formula's steps on four lanes. The last pixels
// of a row run the formula itself.
#pragma once

#include <emmintrin.h>

#include "hls8_tables.h"
#include "hue_kernels.h"

namespace zil::hue {

// Table indices of a pixel (or of kLanes pixels): the hue's, the
// saturation's, and max + min. The selects are masks, not branches: the tie
// winner of random pixels is not predictable.
// Samples of 0..255 in 32-bit lanes have their upper 16 bits clear, so the
// 16-bit signed max and min of the baseline set give the 32-bit ones.
inline int Hls8Max(int a, int b) { return a > b ? a : b; }
inline int Hls8Min(int a, int b) { return a < b ? a : b; }
inline VI Hls8Max(VI a, VI b) { return VI(_mm_max_epi16(__m128i(a), __m128i(b))); }
inline VI Hls8Min(VI a, VI b) { return VI(_mm_min_epi16(__m128i(a), __m128i(b))); }

template <class V>
inline Px<V> Hls8Index(V r, V g, V b) {
    const V rg = r - g, gb = g - b, br = b - r;
    const V mx = Hls8Max(Hls8Max(r, g), b), mn = Hls8Min(Hls8Min(r, g), b);
    // The winner's leads over the other two channels, in r, g, b order.
    const V zero{};
    const V hue = r == mx ? rg << 8 | -br : (g == mx ? (zero + (1 << 16)) | -rg << 8 | gb : (zero + (2 << 16)) | br << 8 | -gb);
    return {hue, mx << 8 | mn, mx + mn};
}

// kLanes pixels of PS bytes, each read as one little-endian word (a fourth
// byte, of the next pixel or of alpha, is dropped by the caller), and three
// bytes per pixel written from the low three bytes of a word: a three-byte
// pixel takes a whole word but the last, whose fourth byte is the next
// pixel's, written after it.
template <int PS>
inline VI Hls8Words(const uint8_t* s) {
    uint32_t w[kLanes];
    for (int k = 0; k < kLanes; ++k) __builtin_memcpy(&w[k], s + k * PS, 4);
    return VI{int32_t(w[0]), int32_t(w[1]), int32_t(w[2]), int32_t(w[3])};
}
template <int PS>
inline void Hls8Put3(uint8_t* d, int k, uint32_t u) {
    if (PS == 3 && k + 1 < kLanes) {
        __builtin_memcpy(d + k * PS, &u, 4);
    } else {
        const uint16_t lo = uint16_t(u);
        __builtin_memcpy(d + k * PS, &lo, 2);
        d[k * PS + 2] = uint8_t(u >> 16);
    }
}

// Returns the pixels done: a three-byte row stops one pixel early, so that
// no word reaches past the row.
template <int PS>
inline int Hls8FromRgbWords(const uint8_t* s, uint8_t* d, int width) {
    int x = 0;
    for (; x + kLanes + (PS == 3) <= width; x += kLanes, s += kLanes * PS, d += kLanes * PS) {
        const VI w = Hls8Words<PS>(s), m = VI{} + 255;
        const Px<VI> i = Hls8Index(w & m, (w >> 8) & m, (w >> 16) & m);
        const VI l = (i.c2 + 1) >> 1 << 8;
        for (int k = 0; k < kLanes; ++k)
            Hls8Put3<PS>(d, k, hls8Hue[uint32_t(i.c0[k])] | uint32_t(l[k]) | hls8Sat[uint32_t(i.c1[k])] << 16);
    }
    return x;
}

inline void Hls8FromRgbRow(const uint8_t* s, uint8_t* d, int width, int stride) {
    const int x = stride == 3 ? Hls8FromRgbWords<3>(s, d, width) : Hls8FromRgbWords<4>(s, d, width);
    s += x * stride, d += x * stride;
    for (int n = x; n < width; ++n, s += stride, d += stride) {
        const Px<int> i = Hls8Index<int>(s[0], s[1], s[2]);
        d[0] = hls8Hue[i.c0], d[1] = uint8_t((i.c2 + 1) >> 1), d[2] = hls8Sat[i.c1];
    }
}

template <class V>
inline Px<V> Hls8ToRgb(V h, V l, V s) {
    const Px<V> o = HlsToRgbUnit(h, l, s);
    return {o.c0 * k8u.scale, o.c1 * k8u.scale, o.c2 * k8u.scale};
}

// Four pixels a step. The hue's part of the formula (the channel hues
// wrapped into 0..360, where each lies on its ramp, the distance from the
// nearer end) depends on the hue byte alone and comes from its record; the
// remaining steps are the formula's own, in its order. A channel at the
// bottom has distance 0: ((m2 - m1) x 0) / 60 + m1 is a zero (of either
// sign) added to m1, which is m1 itself, also when m1 is +0.
template <int PS>
inline int Hls8ToRgbLanes(const uint8_t* s, uint8_t* d, int width) {
    int x = 0;
    for (; x + kLanes <= width; x += kLanes, s += kLanes * PS, d += kLanes * PS) {
        VI a[kLanes];
        for (int k = 0; k < kLanes; ++k) __builtin_memcpy(&a[k], hls8Ramp + 4 * s[k * PS], sizeof(VI));
        const VI t0 = ZIL_SHUFFLE(a[0], a[1], VI, 0, 4, 1, 5), t1 = ZIL_SHUFFLE(a[2], a[3], VI, 0, 4, 1, 5);
        const VI t2 = ZIL_SHUFFLE(a[0], a[1], VI, 2, 6, 3, 7), t3 = ZIL_SHUFFLE(a[2], a[3], VI, 2, 6, 3, 7);
        const VI dist[3] = {ZIL_SHUFFLE(t0, t1, VI, 0, 1, 4, 5), ZIL_SHUFFLE(t0, t1, VI, 2, 3, 6, 7),
                            ZIL_SHUFFLE(t2, t3, VI, 0, 1, 4, 5)};
        const VI top = ZIL_SHUFFLE(t2, t3, VI, 2, 3, 6, 7);
        const uint8_t *p = s, *q = s + PS, *r = s + 2 * PS, *u = s + 3 * PS;
        const VF l = VF{hls8Unit[p[1]], hls8Unit[q[1]], hls8Unit[r[1]], hls8Unit[u[1]]};
        const VF sa = VF{hls8Unit[p[2]], hls8Unit[q[2]], hls8Unit[r[2]], hls8Unit[u[2]]};
        const VF m2 = 0.5f >= l ? (1.0f + sa) * l : (l + sa) - (sa * l);
        const VF m1 = (l + l) - m2;
        const VI grey = sa == 0.0f, m = VI{} + 255;
        VI out = VI{};
        for (int c = 0; c < 3; ++c) {
            const VF ramp = ((m2 - m1) * __builtin_bit_cast(VF, dist[c])) / 60.0f + m1;
            const VF v = grey ? l : ((top >> c & 1) != 0 ? m2 : ramp);
            out |= (Quant<Round::Half>(v * k8u.scale) & m) << 8 * c;
        }
        for (int k = 0; k < kLanes; ++k) Hls8Put3<PS>(d, k, uint32_t(out[k]));
    }
    return x;
}

inline void Hls8ToRgbRow(const uint8_t* s, uint8_t* d, int width, int stride) {
    const int x = stride == 3 ? Hls8ToRgbLanes<3>(s, d, width) : Hls8ToRgbLanes<4>(s, d, width);
    s += x * stride, d += x * stride;
    for (int n = x; n < width; ++n, s += stride, d += stride) {
        const Px<float> o = Hls8ToRgb(hls8Degrees[s[0]], hls8Unit[s[1]], hls8Unit[s[2]]);
        d[0] = uint8_t(Quant<Round::Half>(o.c0)), d[1] = uint8_t(Quant<Round::Half>(o.c1));
        d[2] = uint8_t(Quant<Round::Half>(o.c2));
    }
}

}  // namespace zil::hue
