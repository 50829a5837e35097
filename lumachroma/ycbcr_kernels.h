// RGB <-> full-resolution YCbCr row kernels. They share the channel-row walk
// and the gather / scatter chunks of the RGB <-> YUV family: a row is
// converted in chunks whose arithmetic runs on small planar arrays, and the
// rest of the row pixel by pixel with the plain formula.
#pragma once

#include "px4.h"
#include "ycbcr_coeffs.h"
#include "yuv_rows.h"

namespace zil::ycbcr {

using yuv::Alpha;
using yuv::Clamp16;
using yuv::Rows;
using yuv::Walk;

// (K0 x0 + K1 x1 + K2 x2 + O) >> 16 for samples in -255..255, exactly, with
// 16-bit constants only: each weight is split into H 2^16 + L with L in the
// int16 range, so the sum is 2^16 (H0 x0 + H1 x1 + H2 x2) plus a low sum
// L0 x0 + L1 x1 + L2 x2 + O that fits 32 bits, and its shift by 16 is the
// high part plus the low sum shifted by 16.
template <int32_t K>
struct Split {
    static constexpr int32_t H = (K + 32768) >> 16, L = K - H * 65536;
    static_assert(L >= -32768 && L <= 32767, "low half of the weight");
};
template <int32_t K0, int32_t K1, int32_t K2, int32_t O>
inline int16_t DotQ16(int16_t x0, int16_t x1, int16_t x2) {
    using S0 = Split<K0>;
    using S1 = Split<K1>;
    using S2 = Split<K2>;
    const int32_t low = int32_t(x0) * S0::L + int32_t(x1) * S1::L + int32_t(x2) * S2::L + O;
    return int16_t(int16_t(S0::H * x0 + S1::H * x1 + S2::H * x2) + int16_t(low >> 16));
}

// The same on four lanes: p01 holds the pairs (x0, x1), p2 the pairs (x2, 0);
// a multiply-add of the low halves forms the low sum exactly, one of the high
// halves (where a weight has one) the high part.
template <int32_t K0, int32_t K1, int32_t K2, int32_t O>
inline __m128i DotQ16x4(__m128i p01, __m128i p2) {
    using S0 = Split<K0>;
    using S1 = Split<K1>;
    using S2 = Split<K2>;
    __m128i low = _mm_add_epi32(_mm_madd_epi16(p01, px4::Coeffs(S0::L, S1::L)), _mm_set1_epi32(O));
    if constexpr (K2 != 0) low = _mm_add_epi32(low, _mm_madd_epi16(p2, px4::Coeffs(S2::L, 0)));
    __m128i r = _mm_srai_epi32(low, 16);
    if constexpr (S0::H != 0 || S1::H != 0) r = _mm_add_epi32(r, _mm_madd_epi16(p01, px4::Coeffs(S0::H, S1::H)));
    if constexpr (S2::H != 0) r = _mm_add_epi32(r, _mm_madd_epi16(p2, px4::Coeffs(S2::H, 0)));
    return r;
}

// ---- forward ----------------------------------------------------------------------
// Chunk arithmetic on planar arrays: the low byte of each shifted sum.
struct FwdOp {
    template <int N, class T>
    static void Run(const T* __restrict r, const T* __restrict g, const T* __restrict b, uint8_t* __restrict y,
                    uint8_t* __restrict cb, uint8_t* __restrict cr) {
        for (int j = 0; j < N; ++j) {
            const int16_t R = int16_t(r[j]), G = int16_t(g[j]), B = int16_t(b[j]);
            y[j] = uint8_t(DotQ16<kYR, kYG, kYB, kYOffset>(R, G, B));
            cb[j] = uint8_t(DotQ16<kCbR, kCbG, kCbB, kCOffset>(R, G, B));
            cr[j] = uint8_t(DotQ16<kCrR, kCrG, kCrB, kCOffset>(R, G, B));
        }
    }
};

// Four pixels in registers; the low byte of each shifted sum.
inline void FwdLanes(__m128i r, __m128i g, __m128i b, __m128i* out) {
    const __m128i rg = px4::PairU(r, g), m = _mm_set1_epi32(0xFF);
    out[0] = _mm_and_si128(DotQ16x4<kYR, kYG, kYB, kYOffset>(rg, b), m);
    out[1] = _mm_and_si128(DotQ16x4<kCbR, kCbG, kCbB, kCOffset>(rg, b), m);
    out[2] = _mm_and_si128(DotQ16x4<kCrR, kCrG, kCrB, kCOffset>(rg, b), m);
}

// s: R, G, B (stride SP); d: Y, Cb, Cr (stride DP). A fourth source byte is
// never read, a fourth destination byte never written. Rows whose channels
// are planes or adjacent bytes go sixteen pixels at a time in registers,
// others in gathered chunks; the rest pixel by pixel.
template <int SP, int DP>
void RgbToYcbcrRow(const Rows& rw, int w, uint8_t) {
    const uint8_t* r = rw.s[0];
    const uint8_t* g = rw.s[1];
    const uint8_t* b = rw.s[2];
    uint8_t* y = rw.d[0];
    uint8_t* cb = rw.d[1];
    uint8_t* cr = rw.d[2];
    int i = 0;
    px4::Place<const uint8_t*> sp;
    px4::Place<uint8_t*> dp;
    if (DP != 4 && px4::Locate<SP>(r, g, b, &sp) && px4::Locate<DP>(y, cb, cr, &dp)) {
        i = px4::Blocks<SP, DP, false>(sp, dp, 0, w, _mm_setzero_si128(), FwdLanes);
    } else {
        for (; i + yuv::kChunk <= w; i += yuv::kChunk)
            yuv::Chunk3<SP, DP, FwdOp, false>(r + i * SP, g + i * SP, b + i * SP, y + i * DP, cb + i * DP,
                                              cr + i * DP, nullptr, 0);
    }
    for (; i < w; ++i) {
        const int32_t R = r[i * SP], G = g[i * SP], B = b[i * SP];
        y[i * DP] = FwdY(R, G, B);
        cb[i * DP] = FwdCb(R, G, B);
        cr[i * DP] = FwdCr(R, G, B);
    }
}

// ---- reverse ----------------------------------------------------------------------
template <const InvSet& K>
struct InvOp {
    template <int N, class T>
    static void Run(const T* __restrict y, const T* __restrict cb, const T* __restrict cr, uint8_t* __restrict r,
                    uint8_t* __restrict g, uint8_t* __restrict b) {
        for (int j = 0; j < N; ++j) {
            const int16_t Y = int16_t(y[j]), u = int16_t(int16_t(cb[j]) - 128), v = int16_t(int16_t(cr[j]) - 128);
            r[j] = Clamp16(DotQ16<K.k, K.a, 0, K.o>(Y, v, 0));
            g[j] = Clamp16(DotQ16<K.k, -K.b, -K.c, K.o>(Y, u, v));
            b[j] = Clamp16(DotQ16<K.k, K.d, 0, K.o>(Y, u, 0));
        }
    }
};

inline void YcbcrToRgbPixel(const InvSet& K, int32_t Y, int32_t Cb, int32_t Cr, uint8_t* r, uint8_t* g, uint8_t* b) {
    const int32_t yy = K.k * Y, u = Cb - 128, v = Cr - 128;
    *r = uint8_t(Clamp255((yy + K.a * v + K.o) >> 16));
    *g = uint8_t(Clamp255((yy - K.b * u - K.c * v + K.o) >> 16));
    *b = uint8_t(Clamp255((yy + K.d * u + K.o) >> 16));
}

// Four pixels in registers (clamped when stored). The chroma offset is
// folded into the added constant: a weight c on (C - 128) is c on C plus
// -128 c, so the pairs take the channel bytes as they are.
template <const InvSet& K>
inline void InvLanes(__m128i y, __m128i cb, __m128i cr, __m128i* out) {
    const __m128i ycb = px4::PairU(y, cb), ycr = px4::PairU(y, cr);
    out[0] = DotQ16x4<K.k, K.a, 0, K.o - 128 * K.a>(ycr, cr);
    out[1] = DotQ16x4<K.k, -K.b, -K.c, K.o + 128 * (K.b + K.c)>(ycb, cr);
    out[2] = DotQ16x4<K.k, K.d, 0, K.o - 128 * K.d>(ycb, cr);
}

// s: Y, Cb, Cr (stride SP); d: R, G, B (stride DP), d[3] the alpha byte.
// Blocks of sixteen in registers where the channels allow (a written alpha
// byte must follow the three colour bytes), as in the forward row.
template <int SP, int DP, const InvSet& K, Alpha A>
void YcbcrToRgbRow(const Rows& rw, int w, uint8_t alpha) {
    const uint8_t* y = rw.s[0];
    const uint8_t* cb = rw.s[1];
    const uint8_t* cr = rw.s[2];
    uint8_t* r = rw.d[0];
    uint8_t* g = rw.d[1];
    uint8_t* b = rw.d[2];
    uint8_t* a = rw.d[3];
    constexpr bool withAlpha = A == Alpha::Value;
    int i = 0;
    px4::Place<const uint8_t*> sp;
    px4::Place<uint8_t*> dp;
    if ((DP != 4 || withAlpha) && px4::Locate<SP>(y, cb, cr, &sp) && px4::Locate<DP>(r, g, b, &dp) &&
        (!withAlpha || a == dp.base[0] + 3)) {
        i = px4::Blocks<SP, DP, true>(sp, dp, 0, w, _mm_set1_epi32(alpha), InvLanes<K>);
    } else {
        for (; i + yuv::kChunk <= w; i += yuv::kChunk)
            yuv::Chunk3<SP, DP, InvOp<K>, withAlpha>(y + i * SP, cb + i * SP, cr + i * SP, r + i * DP, g + i * DP,
                                                     b + i * DP, withAlpha ? a + i * DP : a, alpha);
    }
    for (; i < w; ++i) {
        YcbcrToRgbPixel(K, y[i * SP], cb[i * SP], cr[i * SP], r + i * DP, g + i * DP, b + i * DP);
        if constexpr (withAlpha) a[i * DP] = alpha;
    }
}

}  // namespace zil::ycbcr
