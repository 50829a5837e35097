// RGB <-> YUV row kernels. Each converts one row (or a row pair for 4:2:0) of
// a given width; no checks, no steps. Channels are reached through one pointer
// per channel plus a compile-time pixel stride, so the same body serves
// interleaved and planar images.
#pragma once

#include "yuv_members.h"

namespace zil::yuv {

// Pointers of one turn of a row layer: up to six source and eight destination
// channel rows (4:2:0 turns cover two image rows).
struct Rows {
    const uint8_t* s[6];
    uint8_t* d[8];
};
using RowKernel = void (*)(const Rows&, int width, uint8_t alpha);

// ---- forward arithmetic ---------------------------------------------------------
constexpr int32_t LumaSum(int32_t r, int32_t g, int32_t b) { return kYR * r + kYG * g + kYB * b; }

// Chroma of n pixels from their channel sums (sB, sR) and luma sums (sS); the
// final shift is 16 + log2(n). U never leaves 2..253 and is stored as its low
// byte; V can, and is clamped.
template <int Shift>
inline uint8_t ChromaU(int32_t sB, int32_t sS, int32_t c) {
    const int32_t du = (sB * 65536 - sS + c) >> 16;
    return static_cast<uint8_t>(((du * kUB) >> Shift) + 128);
}
template <int Shift>
inline uint8_t ChromaV(int32_t sR, int32_t sS, int32_t c) {
    const int32_t dv = (sR * 65536 - sS + c) >> 16;
    return static_cast<uint8_t>(Clamp255(((dv * kVR) >> Shift) + 128));
}

// Full resolution. s: R, G, B (stride SP), s[3] alpha source when copied;
// d: Y, U, V (stride DP), d[3] the alpha plane when CopyAlpha.
template <int SP, int DP, const FwdMember& M, bool CopyAlpha>
void RgbToYuvRow(const Rows& rw, int w, uint8_t) {
    const uint8_t* __restrict r = rw.s[0];
    const uint8_t* __restrict g = rw.s[1];
    const uint8_t* __restrict b = rw.s[2];
    uint8_t* __restrict y = rw.d[0];
    uint8_t* __restrict u = rw.d[1];
    uint8_t* __restrict v = rw.d[2];
    for (int i = 0; i < w; ++i) {
        const int32_t R = r[i * SP], G = g[i * SP], B = b[i * SP];
        const int32_t S = LumaSum(R, G, B);
        y[i * DP] = static_cast<uint8_t>((S + M.yRound) >> 16);
        u[i * DP] = ChromaU<16>(B, S, M.cPixel);
        v[i * DP] = ChromaV<16>(R, S, M.cPixel);
    }
    if constexpr (CopyAlpha) {
        const uint8_t* __restrict as = rw.s[3];
        uint8_t* __restrict ad = rw.d[3];
        for (int i = 0; i < w; ++i) ad[i] = as[i * SP];
    }
}

// 4:2:2. Y stride YP, U and V stride CP per pair.
template <int SP, int YP, int CP, const FwdMember& M>
void RgbToYuv422Row(const Rows& rw, int w, uint8_t) {
    const uint8_t* __restrict r = rw.s[0];
    const uint8_t* __restrict g = rw.s[1];
    const uint8_t* __restrict b = rw.s[2];
    uint8_t* __restrict y = rw.d[0];
    uint8_t* __restrict u = rw.d[1];
    uint8_t* __restrict v = rw.d[2];
    const int pairs = w >> 1;
    for (int i = 0; i < pairs; ++i) {
        const int p = 2 * i * SP;
        const int32_t R0 = r[p], G0 = g[p], B0 = b[p];
        const int32_t R1 = r[p + SP], G1 = g[p + SP], B1 = b[p + SP];
        const int32_t S0 = LumaSum(R0, G0, B0), S1 = LumaSum(R1, G1, B1);
        y[2 * i * YP] = static_cast<uint8_t>((S0 + M.yRound) >> 16);
        y[(2 * i + 1) * YP] = static_cast<uint8_t>((S1 + M.yRound) >> 16);
        u[i * CP] = ChromaU<17>(B0 + B1, S0 + S1, M.cCell);
        v[i * CP] = ChromaV<17>(R0 + R1, S0 + S1, M.cCell);
    }
    if constexpr (M.odd != FwdOdd::None) {
        if (w & 1) {
            const int p = (w - 1) * SP;
            const int32_t R = r[p], G = g[p], B = b[p];
            const int32_t S = LumaSum(R, G, B);
            const int32_t yr = M.odd == FwdOdd::YFloorUV ? kFloor : M.yRound;
            y[(w - 1) * YP] = static_cast<uint8_t>((S + yr) >> 16);
            u[pairs * CP] = ChromaU<16>(B, S, M.cPixel);
            if constexpr (M.odd != FwdOdd::YU) v[pairs * CP] = ChromaV<16>(R, S, M.cPixel);
        }
    }
}

// 4:2:0, one row pair. s: R, G, B of row 0, then of row 1 (stride SP);
// d: Y row 0, Y row 1, U, V (planar).
template <int SP, const FwdMember& M>
void RgbToYuv420Row(const Rows& rw, int w, uint8_t) {
    const uint8_t* __restrict r0 = rw.s[0];
    const uint8_t* __restrict g0 = rw.s[1];
    const uint8_t* __restrict b0 = rw.s[2];
    const uint8_t* __restrict r1 = rw.s[3];
    const uint8_t* __restrict g1 = rw.s[4];
    const uint8_t* __restrict b1 = rw.s[5];
    uint8_t* __restrict y0 = rw.d[0];
    uint8_t* __restrict y1 = rw.d[1];
    uint8_t* __restrict u = rw.d[2];
    uint8_t* __restrict v = rw.d[3];
    const int cells = w >> 1;
    for (int i = 0; i < cells; ++i) {
        const int p = 2 * i * SP, q = p + SP;
        const int32_t S00 = LumaSum(r0[p], g0[p], b0[p]), S01 = LumaSum(r0[q], g0[q], b0[q]);
        const int32_t S10 = LumaSum(r1[p], g1[p], b1[p]), S11 = LumaSum(r1[q], g1[q], b1[q]);
        y0[2 * i] = static_cast<uint8_t>((S00 + M.yRound) >> 16);
        y0[2 * i + 1] = static_cast<uint8_t>((S01 + M.yRound) >> 16);
        y1[2 * i] = static_cast<uint8_t>((S10 + M.yRound) >> 16);
        y1[2 * i + 1] = static_cast<uint8_t>((S11 + M.yRound) >> 16);
        const int32_t sS = S00 + S01 + S10 + S11;
        u[i] = ChromaU<18>(b0[p] + b0[q] + b1[p] + b1[q], sS, M.cCell);
        v[i] = ChromaV<18>(r0[p] + r0[q] + r1[p] + r1[q], sS, M.cCell);
    }
}

// ---- reverse arithmetic ---------------------------------------------------------
inline void YuvToRgbPixel(const InvCoeffs& K, int32_t Y, int32_t U, int32_t V, const InvRound& rr, uint8_t* r,
                          uint8_t* g, uint8_t* b) {
    const int32_t yy = Y << 16, u = U - 128, v = V - 128;
    *r = static_cast<uint8_t>(Clamp255((yy + K.a * v + rr.r) >> 16));
    *g = static_cast<uint8_t>(Clamp255((yy - K.b * u - K.c * v + rr.g) >> 16));
    *b = static_cast<uint8_t>(Clamp255((yy + K.d * u + rr.b) >> 16));
}

// Full resolution. s: Y, U, V (stride SP); d: R, G, B (stride DP), d[3] alpha.
template <int SP, int DP, const InvMember& M, Alpha A>
void YuvToRgbRow(const Rows& rw, int w, uint8_t alpha) {
    const uint8_t* __restrict y = rw.s[0];
    const uint8_t* __restrict u = rw.s[1];
    const uint8_t* __restrict v = rw.s[2];
    uint8_t* __restrict r = rw.d[0];
    uint8_t* __restrict g = rw.d[1];
    uint8_t* __restrict b = rw.d[2];
    uint8_t* __restrict a = rw.d[3];
    for (int i = 0; i < w; ++i) {
        YuvToRgbPixel(M.k, y[i * SP], u[i * SP], v[i * SP], M.pix, r + i * DP, g + i * DP, b + i * DP);
        if constexpr (A == Alpha::Value) a[i * DP] = alpha;
    }
}

// 4:2:2. s: Y (stride YP), U, V (stride CP per pair); d: R, G, B (stride DP),
// d[3] alpha. Packed sources (C2) end an odd row in half a cell, Y then U, and
// take V from the byte before that Y; a packed row of width 1 uses its one
// chroma byte for both.
template <int YP, int CP, int DP, const InvMember& M, Alpha A, bool Packed>
void Yuv422ToRgbRow(const Rows& rw, int w, uint8_t alpha) {
    const uint8_t* __restrict y = rw.s[0];
    const uint8_t* __restrict u = rw.s[1];
    const uint8_t* __restrict v = rw.s[2];
    uint8_t* __restrict r = rw.d[0];
    uint8_t* __restrict g = rw.d[1];
    uint8_t* __restrict b = rw.d[2];
    uint8_t* __restrict a = rw.d[3];
    const int pairs = w >> 1;
    for (int i = 0; i < pairs; ++i) {
        const int32_t U = u[i * CP], V = v[i * CP];
        const int o0 = 2 * i * DP, o1 = o0 + DP;
        YuvToRgbPixel(M.k, y[2 * i * YP], U, V, M.pix, r + o0, g + o0, b + o0);
        YuvToRgbPixel(M.k, y[(2 * i + 1) * YP], U, V, M.pix, r + o1, g + o1, b + o1);
        if constexpr (A == Alpha::Value) a[o0] = a[o1] = alpha;
    }
    if (w & 1) {
        const int o = (w - 1) * DP;
        const int32_t U = u[pairs * CP];
        int32_t V;
        InvRound rr = M.odd;
        if constexpr (Packed) {
            if (w == 1) {
                V = U;
                rr = M.single;
            } else {
                V = v[(pairs - 1) * CP];
            }
        } else {
            V = v[pairs * CP];
        }
        YuvToRgbPixel(M.k, y[(w - 1) * YP], U, V, rr, r + o, g + o, b + o);
        if constexpr (A == Alpha::Value) a[o] = alpha;
    }
}

// 4:2:0, one row pair. s: Y row 0, Y row 1, U, V; d: R, G, B, A of row 0, then
// of row 1 (stride DP).
template <int DP, const InvMember& M, Alpha A>
void Yuv420ToRgbRow(const Rows& rw, int w, uint8_t alpha) {
    const uint8_t* __restrict y0 = rw.s[0];
    const uint8_t* __restrict y1 = rw.s[1];
    const uint8_t* __restrict u = rw.s[2];
    const uint8_t* __restrict v = rw.s[3];
    uint8_t* __restrict r0 = rw.d[0];
    uint8_t* __restrict g0 = rw.d[1];
    uint8_t* __restrict b0 = rw.d[2];
    uint8_t* __restrict a0 = rw.d[3];
    uint8_t* __restrict r1 = rw.d[4];
    uint8_t* __restrict g1 = rw.d[5];
    uint8_t* __restrict b1 = rw.d[6];
    uint8_t* __restrict a1 = rw.d[7];
    const int cells = w >> 1;
    for (int i = 0; i < cells; ++i) {
        const int32_t U = u[i], V = v[i];
        const int o0 = 2 * i * DP, o1 = o0 + DP;
        YuvToRgbPixel(M.k, y0[2 * i], U, V, M.pix, r0 + o0, g0 + o0, b0 + o0);
        YuvToRgbPixel(M.k, y0[2 * i + 1], U, V, M.pix, r0 + o1, g0 + o1, b0 + o1);
        YuvToRgbPixel(M.k, y1[2 * i], U, V, M.pix, r1 + o0, g1 + o0, b1 + o0);
        YuvToRgbPixel(M.k, y1[2 * i + 1], U, V, M.pix, r1 + o1, g1 + o1, b1 + o1);
        if constexpr (A == Alpha::Value) a0[o0] = a0[o1] = a1[o0] = a1[o1] = alpha;
    }
}

}  // namespace zil::yuv
