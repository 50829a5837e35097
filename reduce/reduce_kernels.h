// ReduceBits: the arithmetic, one template per formula, parameterised by the
// element pair (reduce_members.h). All quantiser arithmetic is single precision
// and keeps the order of operations written here; float to integer truncates.
#pragma once

#include <emmintrin.h>

#include "primitives/random.h"
#include "reduce_members.h"

// The row-group walk below is forced inline so that the carried errors and the
// row pointers stay in registers between pixels. A sanitized build is for
// checking, not speed: forced inline there takes many minutes to compile, and
// whether a call is inlined changes no result.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ZIL_WALK_INLINE
#else
#define ZIL_WALK_INLINE __attribute__((always_inline))
#endif

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
// Always inlined: the rows in flight are only overlapped within one body.
template <const Pair& P>
__attribute__((always_inline)) inline float DiffuseOne(float v, float e, float limit, const Scales& k, const BaseTabs* tabs, DstT<P>* out) {
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
    // predictor, which would miss about half the time. The values are
    // broadcast, not put in a zeroed vector: baseline code zeroes the other
    // lanes by a round trip through an integer register, on the error chain.
    const __m128 v0 = _mm_set1_ps(d0), v1 = _mm_set1_ps(d1);
    const __m128 up = _mm_cmpgt_ps(v0, _mm_set1_ps(limit));
    const float d = _mm_cvtss_f32(_mm_or_ps(_mm_and_ps(up, v1), _mm_andnot_ps(up, v0)));
    const int32_t isUp = _mm_movemask_ps(up) & 1;
    St(out, LevelOut<P, false>(a0 + isUp, isUp ? b1 : b0, k.levelMul));
    return d;
}

// ---- rows in flight together ---------------------------------------------------
// One row's chain of errors is serial, but pixel x of a row needs the row above
// only up to x + 1 (x + 2 for the twelve-neighbour kernels). So a group of
// consecutive rows of the walk advance together, each Lag pixels behind the
// one above; every value is computed by the same operations in the same order
// as one row at a time, while the processor overlaps the chains. Group sizes,
// as measured best: eight rows of the four-neighbour kernel, five of the
// twelve-neighbour ones (whose rows hold more in registers).
inline constexpr int kFsRows = 8;
inline constexpr int kStRows = 5;
inline constexpr int kGroupMax = kFsRows > kStRows ? kFsRows : kStRows;

// Consecutive rows of the walk: source and destination of each, and its row
// index y in its channel (the noise table is indexed by it).
template <const Pair& P>
struct RowGroup {
    const SrcT<P>* s[kGroupMax];
    DstT<P>* d[kGroupMax];
    int y[kGroupMax];
    int n;
};

// An error row as a row of the group sees it: a whole buffer row (mask all
// ones; its zero margins included) or a ring of the last few errors of a row
// in flight (mask: ring size - 1). A ring's entries for columns -2, -1 start at
// zero, and its row writes zeros for columns w and w + 1 once it is done, so
// the margins read as zero there too. Masks are known when compiling.
template <int32_t M>
struct ErrView {
    float* p;
    float& at(int x) const { return p[x & M]; }
};

// Row r of a group, as a type, so that each row's views are fixed when compiling.
template <int R>
struct RowIx {
    static constexpr int r = R;
};
template <int R, int K, class F>
ZIL_WALK_INLINE inline void ForRows(F&& f) {
    if constexpr (R < K) {
        f(RowIx<R>{});
        ForRows<R + 1, K>(f);
    }
}

// Steps the K rows through the columns, Lag apart: pixel(row, x) does pixel
// x of a row; finish(row) runs once the row has done its last pixel, before
// the row below reads past it. The middle stretch, where every row is inside
// the image, runs without bounds checks.
template <int K, int Lag, class Pixel, class Finish>
ZIL_WALK_INLINE inline void Wavefront(int width, Pixel&& pixel, Finish&& finish) {
    const int a = Lag * (K - 1), b = width > a ? width : a, end = width + Lag * (K - 1);
    auto checked = [&](int X) ZIL_WALK_INLINE {
        ForRows<0, K>([&](auto row) ZIL_WALK_INLINE {
            const int x = X - Lag * decltype(row)::r;
            if (x >= 0 && x < width) pixel(row, x);
            if (x == width) finish(row);
        });
    };
    for (int X = 0; X < a; ++X) checked(X);
    for (int X = a; X < b; ++X)
        ForRows<0, K>([&](auto row) ZIL_WALK_INLINE { pixel(row, X - Lag * decltype(row)::r); });
    for (int X = b; X < end; ++X) checked(X);
}

// Floyd-Steinberg: 7 to the right, 3, 5, 1 to the row below (seen from the
// receiving pixel: 1, 5, 3 from the row above, 7 from the left). The group's
// first row reads the buffer row `prev`; its last row writes its errors back
// into `prev`, two columns behind the first row's reads, for the next group.
// A lone row (the walk's last) keeps its errors in a ring.
template <int K>
constexpr int32_t FsOutMask(int r) { return K > 1 && r == K - 1 ? -1 : 7; }
template <int K>
constexpr int32_t FsInMask(int r) { return r == 0 ? -1 : FsOutMask<K>(r - 1); }

template <const Pair& P, int S, bool Noise, int K>
inline void FsGroup(const RowGroup<P>& gIn, float* prev, int width, const Scales& kIn, const BaseTabs* tabs,
                    const NoiseTab& nzIn) {
    const RowGroup<P> g = gIn;
    const NoiseTab nz = nzIn;
    const Scales k = kIn;
    const float half = 0.5f * k.step;
    float ring[K][8] = {};
    float* out[K];
    for (int r = 0; r < K; ++r) out[r] = K > 1 && r == K - 1 ? prev : ring[r];
    float left[K] = {};
    Wavefront<K, 2>(
        width,
        [&](auto row, int x) ZIL_WALK_INLINE {
            constexpr int r = decltype(row)::r;
            const ErrView<FsInMask<K>(r)> a{r == 0 ? prev : out[r > 0 ? r - 1 : 0]};
            const float e = (((a.at(x + 1) * 3.0f + a.at(x) * 5.0f) + a.at(x - 1)) + left[r] * 7.0f) * 0.0625f;
            const float limit = Noise ? nz.at(x, g.y[r]) : half;
            left[r] = DiffuseOne<P>(Value<P>(Ld(g.s[r] + x * S)), e, limit, k, tabs, g.d[r] + x * S);
            ErrView<FsOutMask<K>(r)>{out[r]}.at(x) = left[r];
        },
        [&](auto row) ZIL_WALK_INLINE { ErrView<FsOutMask<K>(decltype(row)::r)>{out[decltype(row)::r]}.at(width) = 0.0f; });
}

// The buffer rows of the twelve-neighbour kernels: the two rows above the
// group and a spare one.
struct StBufs {
    float* prev2;
    float* prev1;
    float* spare;
};

// Twelve neighbours: weights 1 w3 w5 w3 1 two rows up, w3 w5 w7 w5 w3 one row
// up, w5 w7 from the left, grouped and summed in this order. Of a group of
// two or more, the next-to-last row writes the spare buffer row and the last
// row writes prev2 in place, three columns behind the first row's reads; the
// caller then rotates the rows (spare, prev2, prev1).
template <int K>
constexpr int32_t StOutMask(int r) { return K > 1 && r >= K - 2 ? -1 : 15; }
template <int K>
constexpr int32_t StUp1Mask(int r) { return r == 0 ? -1 : StOutMask<K>(r - 1); }
template <int K>
constexpr int32_t StUp2Mask(int r) { return r <= 1 ? -1 : StOutMask<K>(r - 2); }

template <const Pair& P, int S, bool Noise, int K>
inline void StGroup(const RowGroup<P>& gIn, StBufs b, int width, const Scales& kIn, const BaseTabs* tabs,
                    const Weights12& wtIn, const NoiseTab& nzIn) {
    const RowGroup<P> g = gIn;
    const Weights12 wt = wtIn;
    const NoiseTab nz = nzIn;
    const Scales k = kIn;
    const float half = 0.5f * k.step;
    float ring[K][16] = {};
    float* out[K];
    for (int r = 0; r < K; ++r) out[r] = K > 1 && r == K - 1 ? b.prev2 : K > 1 && r == K - 2 ? b.spare : ring[r];
    float l2[K] = {}, l1[K] = {};
    Wavefront<K, 3>(
        width,
        [&](auto row, int x) ZIL_WALK_INLINE {
            constexpr int r = decltype(row)::r;
            const ErrView<StUp2Mask<K>(r)> p2{r == 0 ? b.prev2 : r == 1 ? b.prev1 : out[r > 1 ? r - 2 : 0]};
            const ErrView<StUp1Mask<K>(r)> p1{r == 0 ? b.prev1 : out[r > 0 ? r - 1 : 0]};
            const float A = ((p2.at(x) + p1.at(x - 1)) + p1.at(x + 1)) + l2[r];
            const float B = p1.at(x) + l1[r];
            const float C = p2.at(x - 2) + p2.at(x + 2);
            const float D = ((p2.at(x - 1) + p2.at(x + 1)) + p1.at(x - 2)) + p1.at(x + 2);
            const float e = (D * wt.w3 + (A * wt.w5 + (B * wt.w7 + C))) * wt.wInv;
            const float limit = Noise ? nz.at(x, g.y[r]) : half;
            const float err = DiffuseOne<P>(Value<P>(Ld(g.s[r] + x * S)), e, limit, k, tabs, g.d[r] + x * S);
            ErrView<StOutMask<K>(r)>{out[r]}.at(x) = err;
            l2[r] = l1[r], l1[r] = err;
        },
        [&](auto row) ZIL_WALK_INLINE {
            const ErrView<StOutMask<K>(decltype(row)::r)> o{out[decltype(row)::r]};
            o.at(width) = o.at(width + 1) = 0.0f;
        });
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
