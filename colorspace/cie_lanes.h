// Eight pixels at a time for the 8-bit LUV and Lab kernels.
//
// A block body does, lane by lane, the very operations of its pixel functor
// in the same order and precision: vector add, multiply, divide and the
// conversions between single, double and integer lanes round exactly as
// their scalar forms do. Branches become selects; both sides are computed on
// every lane and the chosen one kept. Truncation to integer uses the
// processor's truncating conversion directly, which gives 0x80000000 for a
// value outside the 32-bit range just as Trunc does.
#pragma once

#include <emmintrin.h>

#include "cie_common.h"

// The lane types only pass between inlined functions of the including file,
// never across the library's interface: their calling convention is moot.
#pragma GCC diagnostic ignored "-Wpsabi"

namespace zil::cie {

inline constexpr int kLanes = 8;
using VF = float __attribute__((vector_size(4 * kLanes)));
using VD = double __attribute__((vector_size(8 * kLanes)));
using VI = int32_t __attribute__((vector_size(4 * kLanes)));

// For the baseline processor the compiler splits eight-lane arithmetic into
// four-lane halves, but comparisons and division by a constant it does lane
// by lane in scalar code. Those go through On4, which applies them to the
// two halves. With 256-bit lanes they are whole-vector operations, and the
// halves only cost a rejoin.
template <class V, class Op>
inline auto On4(V a, V b, Op op) {
#ifdef __AVX2__
    return op(a, b);
#else
    const auto r0 = op(__builtin_shufflevector(a, a, 0, 1, 2, 3), __builtin_shufflevector(b, b, 0, 1, 2, 3));
    const auto r1 = op(__builtin_shufflevector(a, a, 4, 5, 6, 7), __builtin_shufflevector(b, b, 4, 5, 6, 7));
    return __builtin_shufflevector(r0, r1, 0, 1, 2, 3, 4, 5, 6, 7);
#endif
}
template <class V>
inline VI Lt(V a, V b) { return On4(a, b, [](auto x, auto y) { return x < y; }); }
template <class V>
inline VI Eq(V a, V b) { return On4(a, b, [](auto x, auto y) { return x == y; }); }

// m ? a : b lane by lane, m all ones or all zeros.
inline VI Sel(VI m, VI a, VI b) { return (m & a) | (~m & b); }
inline VF Sel(VI m, VF a, VF b) { return (VF)Sel(m, (VI)a, (VI)b); }
inline VD Wide(VF v) { return __builtin_convertvector(v, VD); }
inline VF Float(VI v) { return __builtin_convertvector(v, VF); }
inline VI TruncV(VF v) { return __builtin_convertvector(v, VI); }
inline VI TruncV(VD v) { return __builtin_convertvector(v, VI); }
inline VI ClampV(VI v, int32_t lo, int32_t hi) {
    v = Sel(Lt(v, VI{} + lo), VI{} + lo, v);
    return Sel(Lt(VI{} + hi, v), VI{} + hi, v);
}

// Four-lane forms, one SSE register each: the baseline compiler keeps these
// in registers, where eight-lane forms pass through the stack between halves.
using VF4 = float __attribute__((vector_size(16)));
using VI4 = int32_t __attribute__((vector_size(16)));
using VU4 = uint32_t __attribute__((vector_size(16)));
using VD2 = double __attribute__((vector_size(16)));
inline VI4 Lt(VF4 a, VF4 b) { return a < b; }
inline VI4 Sel(VI4 m, VI4 a, VI4 b) { return (m & a) | (~m & b); }
inline VF4 Sel(VI4 m, VF4 a, VF4 b) { return (VF4)Sel(m, (VI4)a, (VI4)b); }
inline VF4 Float(VI4 v) { return __builtin_convertvector(v, VF4); }
inline VI4 TruncV(VF4 v) { return __builtin_convertvector(v, VI4); }
// CubeRootF on the lanes in `use` (the others give an unused value), for
// lanes below 2^120 (the 8-bit kernels pass at most 1.1). The estimate starts
// from a third of the bit pattern plus a bias, within 3.2%; the third is taken
// in single lanes, off by at most 64 units of the pattern (below 1e-5 of the
// start). Halley's step r (r^3 + 2v) / (2 r^3 + v) turns a relative error e into
// e^3 (2 + e) / (3 + 6e + 6e^2 + 2e^3), about 2e^3/3. The first step runs in
// single lanes: from the 3.2% start it leaves 2.3e-5, plus under 2^-21 of
// rounding; the second, in double, leaves (2/3) (2.4e-5)^3 < 2^-46, plus a
// few units in 2^-53. That is inside the 2^-40 that CubeRootF's interval
// test needs.
inline VF4 CubeRootFV(VF4 v, VI4 use) {
    VF4 s = (VF4)(TruncV(Float((VI4)v) * (1.f / 3)) + 0x2A5137A0);
    const VF4 s3 = s * s * s;
    s = s * (s3 + 2.f * v) / (2.f * s3 + v);
    // The double step on each pair of lanes.
    VD2 e[2];
    for (int h = 0; h < 2; ++h) {
        const VD2 y = _mm_cvtps_pd(h ? _mm_movehl_ps(v, v) : v), r = _mm_cvtps_pd(h ? _mm_movehl_ps(s, s) : s);
        const VD2 r3 = r * r * r;
        e[h] = r * (r3 + 2.0 * y) / (2.0 * r3 + y);
    }
    // Rounding e to single drops the low 29 bits of its significand, m; a
    // midpoint between singles lies at m = 2^28. With e in [2^k, 2^(k+1)),
    // |m - 2^28| >= 2^13 puts the nearest midpoint at least 2^(k-39) > e 2^-40
    // away, so e (1 +- 2^-40) rounds to one single, as CubeRootF requires;
    // the other lanes take the power routine.
    VF4 f = _mm_movelh_ps(_mm_cvtpd_ps(e[0]), _mm_cvtpd_ps(e[1]));
    const VU4 lo32 = (VU4)_mm_shuffle_ps(_mm_castpd_ps(e[0]), _mm_castpd_ps(e[1]), _MM_SHUFFLE(2, 0, 2, 0));
    const VU4 m = (lo32 + ((1u << 13) - (1u << 28))) & ((1u << 29) - 1);  // modulo 2^32, then 2^29
    const VI4 bad = use & (VI4)(m < (1u << 14));
    if (_mm_movemask_epi8((__m128i)bad))
        for (int j = 0; j < 4; ++j)
            if (bad[j]) f[j] = float(CubeRoot(v[j]));
    return f;
}
// CubeRootFV on the two halves of eight lanes.
inline VF CubeRootFV(VF v, VI use) {
    VF4 vh[2], rh[2];
    VI4 uh[2];
    __builtin_memcpy(vh, &v, sizeof v), __builtin_memcpy(uh, &use, sizeof use);
    for (int h = 0; h < 2; ++h) rh[h] = CubeRootFV(vh[h], uh[h]);
    VF r;
    __builtin_memcpy(&r, rh, sizeof r);
    return r;
}

// Four three-byte pixels into integer lanes, channel I0 first: the twelve
// bytes widened to words and then to double words A = p0 p1 p2 p3,
// B = p4 .. p7, C = p8 .. p11, from which pairs of lanes are picked.
template <int I0>
inline void Gather3x4(const uint8_t* s, VI4& a, VI4& b, VI4& c) {
    const __m128i z = _mm_setzero_si128();
    const __m128i v = _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(s)),
                                         _mm_cvtsi32_si128(int32_t(Ld(reinterpret_cast<const uint32_t*>(s + 8)))));
    const __m128i lo = _mm_unpacklo_epi8(v, z), hi = _mm_unpackhi_epi8(v, z);
    const __m128 A = _mm_castsi128_ps(_mm_unpacklo_epi16(lo, z)), B = _mm_castsi128_ps(_mm_unpackhi_epi16(lo, z));
    const __m128 C = _mm_castsi128_ps(_mm_unpacklo_epi16(hi, z));
    // p0 p3 p6 p9, p1 p4 p7 p10, p2 p5 p8 p11.
    const __m128 c0 = _mm_shuffle_ps(A, _mm_shuffle_ps(B, C, _MM_SHUFFLE(0, 1, 0, 2)), _MM_SHUFFLE(2, 0, 3, 0));
    const __m128 c1 = _mm_shuffle_ps(_mm_shuffle_ps(A, B, _MM_SHUFFLE(0, 0, 0, 1)),
                                     _mm_shuffle_ps(B, C, _MM_SHUFFLE(0, 2, 0, 3)), _MM_SHUFFLE(2, 0, 2, 0));
    const __m128 c2 = _mm_shuffle_ps(_mm_shuffle_ps(A, B, _MM_SHUFFLE(0, 1, 0, 2)),
                                     _mm_shuffle_ps(C, C, _MM_SHUFFLE(0, 3, 0, 0)), _MM_SHUFFLE(2, 0, 2, 0));
    a = (VI4)(I0 ? c2 : c0), b = (VI4)c1, c = (VI4)(I0 ? c0 : c2);
}
// The low bytes of four pixels' lanes out as three-byte pixels, a first at
// offset O0: each pixel's word stored in turn, the last one's three bytes
// alone so that nothing past the pixels is written.
template <int O0>
inline void Scatter3x4(uint8_t* d, VI4 a, VI4 b, VI4 c) {
    const VI4 p = ((O0 ? c : a) & 0xFF) | (b & 0xFF) << 8 | ((O0 ? a : c) & 0xFF) << 16;
    uint32_t w[4];
    __builtin_memcpy(w, &p, sizeof p);
    St(reinterpret_cast<uint32_t*>(d), w[0]), St(reinterpret_cast<uint32_t*>(d + 3), w[1]);
    St(reinterpret_cast<uint32_t*>(d + 6), w[2]), St(reinterpret_cast<uint16_t*>(d + 9), uint16_t(w[3]));
    d[11] = uint8_t(w[3] >> 16);
}
// Whole quartets of three-byte pixels through Fn; returns the pixels done.
template <void (*Fn)(VI4, VI4, VI4, VI4*), int I0, int O0>
inline int RunQuads(const uint8_t* s, uint8_t* d, int width) {
    int x = 0;
    for (; x + 4 <= width; x += 4, s += 12, d += 12) {
        VI4 a, b, c, o[3];
        Gather3x4<I0>(s, a, b, c);
        Fn(a, b, c, o);
        Scatter3x4<O0>(d, o[0], o[1], o[2]);
    }
    return x;
}

// Entries of a 256-entry table at the lanes' indices (0..255).
inline VF Look(const float* t, VI i) {
    int32_t k[kLanes];
    float o[kLanes];
    __builtin_memcpy(k, &i, sizeof i);
    for (int j = 0; j < kLanes; ++j) o[j] = t[k[j]];
    VF v;
    __builtin_memcpy(&v, o, sizeof v);
    return v;
}

// Samples of eight pixels (stride PS) into integer lanes, channel I0 first,
// and low bytes of integer lanes back out.
// (Through arrays: element-wise lane access compiles to slow lane inserts.)
template <int PS, int I0, class S>
inline void Gather(const S* s, VI& a, VI& b, VI& c) {
    int32_t t[3][kLanes];
    for (int j = 0; j < kLanes; ++j)
        t[0][j] = Ld(s + j * PS + I0), t[1][j] = Ld(s + j * PS + 1), t[2][j] = Ld(s + j * PS + 2 - I0);
    __builtin_memcpy(&a, t[0], sizeof a), __builtin_memcpy(&b, t[1], sizeof b), __builtin_memcpy(&c, t[2], sizeof c);
}
template <int PS, int O0>
inline void Scatter(uint8_t* d, VI a, VI b, VI c) {
    int32_t t[3][kLanes];
    __builtin_memcpy(t[0], &a, sizeof a), __builtin_memcpy(t[1], &b, sizeof b), __builtin_memcpy(t[2], &c, sizeof c);
    for (int j = 0; j < kLanes; ++j)
        d[j * PS + O0] = uint8_t(t[0][j]), d[j * PS + 1] = uint8_t(t[1][j]), d[j * PS + 2 - O0] = uint8_t(t[2][j]);
}

}  // namespace zil::cie

namespace zil::cie {

template <class F, int PS, int I0, int O0, class S, class D>
int RunBlocks(const S* s, D* d, int width) {
    int x = 0;
    for (; x + kLanes <= width; x += kLanes, s += kLanes * PS, d += kLanes * PS) {
        VI a, b, c, o[3];
        Gather<PS, I0>(s, a, b, c);
        F::Block(a, b, c, o);
        Scatter<PS, O0>(d, o[0], o[1], o[2]);
    }
    return x;
}

}  // namespace zil::cie
