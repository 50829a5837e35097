// ReduceBits: the arithmetic, one template per formula, parameterised by the
// element pair (reduce_members.h). All quantiser arithmetic is single precision
// and keeps the order of operations written here; float to integer truncates.
#pragma once

#include <emmintrin.h>

#include "primitives/random.h"
#include "reduce_members.h"

namespace zil::reduce {

// Truncation toward zero. A float source can hold any value, so its pairs use
// the processor's conversion, whose result out of range is INT32_MIN; the
// integer sources never leave the range and use the plain conversion.
template <const Pair& P>
inline int32_t Trunc(float x) {
    if constexpr (P.src == Src::F32) {
        return _mm_cvttss_si32(_mm_set_ss(x));
    } else {
        return int32_t(x);
    }
}

// Working value on the source's own scale.
template <const Pair& P>
inline float Value(SrcT<P> s) {
    if constexpr (P.src == Src::S16) {
        return float(int32_t(s) + 32768);
    } else {
        return float(s);
    }
}

// Offset of a signed destination, taken in unsigned arithmetic so that any
// converted value keeps its low bits.
inline int32_t Less32768(int32_t r) { return int32_t(uint32_t(r) - 32768u); }

// The scale values of the dithering workers. quantStep and quantScale are each
// computed on their own, not as reciprocals of one another.
struct Scales {
    float step;        // distance of two levels on the scale of v
    float scale;       // levels per unit of v
    int32_t levelMul;  // 8u only: output byte = bits 8..15 of level * levelMul
    float top;         // diffusion: t at or above saturates high
    float bottom;      // diffusion: t below saturates low
};

template <const Pair& P>
inline Scales MakeScales(uint32_t levelsMax) {
    const float L = float(levelsMax);
    Scales k{};
    if constexpr (P.src == Src::U8) {
        const float q = 65280.0f / L;
        k.step = q * 0.00390625f;
        k.scale = L / 255.0f;
        // The added 0.000009 lets a whole quotient survive the truncation.
        k.levelMul = int32_t(double(q) + 0.000009);
        k.top = 255.0f, k.bottom = 0.0f;
    } else if constexpr (P.src == Src::F32) {
        k.step = 1.0f / L;
        k.scale = L;
        k.top = 1.0f, k.bottom = 1.1920929e-7f;  // 2^-23, not 0
    } else {
        k.step = 65535.0f / L;
        k.scale = L / 65535.0f;
        k.top = 65535.0f, k.bottom = 0.0f;
    }
    return k;
}

// Destination value of level a, whose value on the scale of v is b. The
// ordered dither clamps the integer routes; error diffusion stores unclamped.
template <const Pair& P, bool Clamp>
inline int32_t LevelOut(int32_t a, float b, int32_t levelMul) {
    if constexpr (P.dst == Dst::U8Mul) {
        return (a * levelMul) >> 8;
    } else if constexpr (P.dst == Dst::U16 || P.dst == Dst::S16) {
        int32_t r = Trunc<P>(b + 0.5f);
        if constexpr (Clamp) r = r < 0 ? 0 : (r > 65535 ? 65535 : r);
        return P.dst == Dst::S16 ? Less32768(r) : r;
    } else if constexpr (P.dst == Dst::U8Shr) {
        int32_t r = Trunc<P>(b + 0.5f) >> 8;
        if constexpr (Clamp) r = Clamp255(r);
        return r;
    } else if constexpr (P.dst == Dst::F8) {
        return Trunc<P>(b * 255.0f + 0.5f);
    } else if constexpr (P.dst == Dst::F16) {
        return Trunc<P>(b * 65535.0f + 0.5f);
    } else {
        return Less32768(Trunc<P>(b * 65535.0f + 0.5f));
    }
}

// Saturated destination values of error diffusion.
template <const Pair& P>
inline constexpr int32_t kTopOut = P.dst8 ? 255 : (P.dst == Dst::S16 || P.dst == Dst::F16S) ? 32767 : 65535;
template <const Pair& P>
inline constexpr int32_t kBottomOut = (P.dst == Dst::S16 || P.dst == Dst::F16S) ? -32768 : 0;

// ---- plain quantiser ---------------------------------------------------------------
// Works on the normalised scale 0..1.
struct PlainK { float L, inv, half; };
inline PlainK MakePlain(uint32_t levelsMax) {
    const float L = float(levelsMax);
    const float inv = 1.0f / L;
    return {L, inv, 0.5f * inv};
}

template <const Pair& P>
inline int32_t PlainOne(SrcT<P> s, const PlainK& k) {
    float v;
    if constexpr (P.src == Src::U8) {
        v = float(s) / 255.0f;
    } else if constexpr (P.src == Src::U16) {
        v = float(s) / 65535.0f;
    } else if constexpr (P.src == Src::S16) {
        v = float(int32_t(s) + 32768) / 65535.0f;
    } else {
        v = s;
    }
    // 8u and the float sources round the first index; the 16-bit sources
    // truncate it and rely on the correction below to reach the nearest level.
    int32_t i;
    if constexpr (P.src == Src::U8 || P.src == Src::F32) {
        i = Trunc<P>(k.L * v + 0.5f);
    } else {
        i = Trunc<P>(k.L * v);
    }
    float q = float(i) * k.inv;
    if (v - q > k.half) q = q + k.inv;
    constexpr int32_t M = P.dst8 ? 255 : 65535;
    int32_t r = Trunc<P>(q * float(M) + 0.5f);
    r = r < M ? r : M;  // no lower clamp: a negative float source wraps
    return (P.dst == Dst::S16 || P.dst == Dst::F16S) ? Less32768(r) : r;
}

// ---- ordered dither ------------------------------------------------------------------
// One element: down to the level below, up one level if the remainder is
// strictly greater than the threshold (already on the scale of v).
template <const Pair& P>
inline int32_t BayerOne(SrcT<P> s, float thr, const Scales& k) {
    const float v = Value<P>(s);
    int32_t a = Trunc<P>(k.scale * v);
    float b = float(a) * k.step;
    if (v - b > thr) {
        a = a + 1;
        b = b + k.step;
    }
    return LevelOut<P, true>(a, b, k.levelMul);
}

// Noise lookup of pixel column x in pass row y: a random offset per column,
// shifted by two entries per row.
struct NoiseTab {
    const float* thr;      // 1024 values
    const int16_t* index;  // 1024 offsets, 0..1024
    float at(int x, int y) const { return thr[(int32_t(index[x & 1023]) + 2 * y + x) & 1023]; }
};

// C channels of a pixel share the threshold of column x; pixels lie S apart.
template <const Pair& P, int C, int S>
inline void BayerRow(const SrcT<P>* __restrict s, DstT<P>* __restrict d, int width, const float* thr,
                     const Scales& k) {
    for (int x = 0; x < width; ++x) {
        const float t = thr[x & 3];
        for (int c = 0; c < C; ++c) St(d + x * S + c, BayerOne<P>(Ld(s + x * S + c), t, k));
    }
}

template <const Pair& P, int C, int S>
inline void BayerNoiseRow(const SrcT<P>* __restrict s, DstT<P>* __restrict d, int width, const NoiseTab& nz,
                          int y, const Scales& k) {
    const float* m = bayer_thresh.v[y & 3];
    for (int x = 0; x < width; ++x) {
        const float t = (m[x & 3] + nz.at(x, y)) * k.step;
        for (int c = 0; c < C; ++c) St(d + x * S + c, BayerOne<P>(Ld(s + x * S + c), t, k));
    }
}

// 8-bit sources: each element depends on its byte and its matrix entry only, so
// a large image goes through a table of all 16 x 256 results, built with the
// same arithmetic; small images compute directly.
struct ByteLut { uint8_t v[16][256]; };
template <const Pair& P>
inline void BuildBayerLut(ByteLut& t, const float (&m)[4][4], const Scales& k) {
    for (int e = 0; e < 16; ++e)
        for (int s = 0; s < 256; ++s) t.v[e][s] = uint8_t(BayerOne<P>(SrcT<P>(s), m[e >> 2][e & 3], k));
}
template <int C, int S>
inline void BayerLutRow(const uint8_t* __restrict s, uint8_t* __restrict d, int width, const ByteLut& t, int y) {
    const uint8_t* r0 = t.v[(y & 3) * 4 + 0];
    const uint8_t* r1 = t.v[(y & 3) * 4 + 1];
    const uint8_t* r2 = t.v[(y & 3) * 4 + 2];
    const uint8_t* r3 = t.v[(y & 3) * 4 + 3];
    int x = 0;
    for (; x + 4 <= width; x += 4) {
        for (int c = 0; c < C; ++c) d[(x + 0) * S + c] = r0[s[(x + 0) * S + c]];
        for (int c = 0; c < C; ++c) d[(x + 1) * S + c] = r1[s[(x + 1) * S + c]];
        for (int c = 0; c < C; ++c) d[(x + 2) * S + c] = r2[s[(x + 2) * S + c]];
        for (int c = 0; c < C; ++c) d[(x + 3) * S + c] = r3[s[(x + 3) * S + c]];
    }
    const uint8_t* rr[4] = {r0, r1, r2, r3};
    for (; x < width; ++x)
        for (int c = 0; c < C; ++c) d[x * S + c] = rr[x & 3][s[x * S + c]];
}

// ---- error diffusion ---------------------------------------------------------------
// Pairs with an integer source and an 8-bit destination have at most 256
// levels, and t stays in [0, top) where it is quantised, so the level index is
// 0..levelsMax: the two candidate bases float(a) * step and that plus step can
// be looked up in place of being computed, with the same float operations.
template <const Pair& P>
inline constexpr bool kBaseTables = P.dst8 && P.src != Src::F32;
struct BaseTabs { float b0[257], b1[257]; };
inline void BuildBaseTabs(BaseTabs& t, uint32_t levelsMax, float step) {
    for (uint32_t a = 0; a <= levelsMax && a < 257; ++a) {
        t.b0[a] = float(int32_t(a)) * step;
        t.b1[a] = t.b0[a] + step;
    }
}

// One element: t = v + e; saturated values drop their error; otherwise the
// level below, or the one above when the remainder exceeds the limit, and the
// signed remainder that goes on to the neighbours.
template <const Pair& P>
inline float DiffuseOne(float v, float e, float limit, const Scales& k, const BaseTabs* tabs, DstT<P>* out) {
    const float t = v + e;
    if (t >= k.top) {
        St(out, kTopOut<P>);
        return 0.0f;
    }
    if (t < k.bottom) {
        St(out, kBottomOut<P>);
        return 0.0f;
    }
    const int32_t a0 = Trunc<P>(k.scale * t);
    float b0, b1;
    if constexpr (kBaseTables<P>) {
        b0 = tabs->b0[a0];
        b1 = tabs->b1[a0];
    } else {
        b0 = float(a0) * k.step;
        b1 = b0 + k.step;
    }
    const float d0 = t - b0;
    const float d1 = t - b1;
    // The choice is data dependent: a mask select keeps it off the branch
    // predictor, which would miss about half the time.
    const __m128 up = _mm_cmpgt_ss(_mm_set_ss(d0), _mm_set_ss(limit));
    const float d = _mm_cvtss_f32(_mm_or_ps(_mm_and_ps(up, _mm_set_ss(d1)), _mm_andnot_ps(up, _mm_set_ss(d0))));
    const int32_t isUp = _mm_movemask_ps(up) & 1;
    St(out, LevelOut<P, false>(a0 + isUp, isUp ? b1 : b0, k.levelMul));
    return d;
}

// Error rows of one channel row; element 0 of each, with zero margins around.
struct FsRows { const float* prev; float* cur; };
struct StRows { const float* prev2; const float* prev1; float* cur; };

// Floyd-Steinberg: 7 to the right, 3, 5, 1 to the row below (seen from the
// receiving pixel: 1, 5, 3 from the row above, 7 from the left).
template <const Pair& P, int S, bool Noise>
inline void FsRow(const SrcT<P>* __restrict s, DstT<P>* __restrict d, FsRows r, int width, const Scales& kIn,
                  const BaseTabs* tabs, const NoiseTab& nz, int y) {
    const Scales k = kIn;
    const float* __restrict prev = r.prev;
    float* __restrict cur = r.cur;
    const float half = 0.5f * k.step;
    float left = cur[-1];
    for (int x = 0; x < width; ++x) {
        const float e = (((prev[x + 1] * 3.0f + prev[x] * 5.0f) + prev[x - 1]) + left * 7.0f) * 0.0625f;
        const float limit = Noise ? nz.at(x, y) : half;
        left = DiffuseOne<P>(Value<P>(Ld(s + x * S)), e, limit, k, tabs, d + x * S);
        cur[x] = left;
    }
}

// Twelve neighbours: weights 1 w3 w5 w3 1 two rows up, w3 w5 w7 w5 w3 one row
// up, w5 w7 from the left, grouped and summed in this order.
template <const Pair& P, int S, bool Noise>
inline void StRow(const SrcT<P>* __restrict s, DstT<P>* __restrict d, StRows r, int width, const Scales& kIn,
                  const BaseTabs* tabs, const Weights12& wt, const NoiseTab& nz, int y) {
    const Scales k = kIn;
    const float* __restrict p2 = r.prev2;
    const float* __restrict p1 = r.prev1;
    float* __restrict cur = r.cur;
    const float half = 0.5f * k.step;
    float l2 = cur[-2], l1 = cur[-1];
    for (int x = 0; x < width; ++x) {
        const float A = ((p2[x] + p1[x - 1]) + p1[x + 1]) + l2;
        const float B = p1[x] + l1;
        const float C = p2[x - 2] + p2[x + 2];
        const float D = ((p2[x - 1] + p2[x + 1]) + p1[x - 2]) + p1[x + 2];
        const float e = (D * wt.w3 + (A * wt.w5 + (B * wt.w7 + C))) * wt.wInv;
        const float limit = Noise ? nz.at(x, y) : half;
        const float err = DiffuseOne<P>(Value<P>(Ld(s + x * S)), e, limit, k, tabs, d + x * S);
        cur[x] = err;
        l2 = l1, l1 = err;
    }
}

// ---- noise set-up ------------------------------------------------------------------
// Seed 0 every call: a random column offset table of 0..1024 and 1024 values
// uniform in [low, high].
inline NoiseTab SetupNoise(uint8_t* A, float low, float high) {
    int32_t size16 = 0, size32 = 0;
    mx_zilsRandUniformGetSize_16s(&size16);
    void* st16 = A + kOffState16;
    mx_zilsRandUniformInit_16s(st16, 0, 1024, 0);
    int16_t* index = reinterpret_cast<int16_t*>(A + kOffIndex);
    mx_zilsRandUniform_16s(index, 1024, st16);
    mx_zilsRandUniformGetSize_32f(&size32);
    void* st32 = A + kOffState16 + size16;
    mx_zilsRandUniformInit_32f(st32, low, high, 0);
    float* thr = reinterpret_cast<float*>(A + kOffThreshold);
    mx_zilsRandUniform_32f(thr, 1024, st32);
    return {thr, index};
}

}  // namespace zil::reduce
