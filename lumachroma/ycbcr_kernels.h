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
using px4::Pairs16x3;
using px4::StoreRgb16;
using px4::StoreWords3;
using px4::Walk16x3;
using px4::HiW;
using px4::LoW;
using px4::InvChannel4;

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

// Sixteen three-byte R, G, B pixels a step to three-byte Y, Cb, Cr (order 1:
// Cr, Cb, Y), while the row holds the loads' and stores' reach; returns the
// first pixel left. Per four pixels the lanes R | B << 16 and G | -1 << 16
// feed the multiply-adds; the luma weight of G, above the int16 range, is
// twice 16515. The -1 lane carries the rounding half: weighted by -32768 (by
// -16384 twice for luma) it adds 32768, so each sum is the pixel's weighted
// sum plus 32768, whose bits 16-23 are the low byte of the shifted value
// without the +16 (luma) or -128 (chroma) of the full offsets. Those bytes
// are masked into pixel words where the +16 is an add (luma stays inside
// 16..235, no carry) and the -128 of a low byte is a flip of its top bit.
template <int Order>
inline int FwdInterleaved16(const uint8_t* s, uint8_t* d, int w) {
    static_assert(kYG == 2 * 16515, "luma weight of G");
    static_assert(kYOffset == 16 * 65536 + 32768 && kCOffset == -128 * 65536 + 32768, "offsets");
    const __m128i minusOne = _mm_set1_epi32(int32_t(0xFFFF0000u));
    const __m128i yRB = px4::Coeffs(kYR, kYB), yG = px4::Coeffs(kYG / 2, -16384);
    const __m128i cbRB = px4::Coeffs(kCbR, kCbB), cbG = px4::Coeffs(kCbG, -32768);
    const __m128i crRB = px4::Coeffs(kCrR, kCrB), crG = px4::Coeffs(kCrG, -32768);
    const __m128i byte0 = _mm_set1_epi32(0xFF), byte1 = _mm_set1_epi32(0xFF00), byte2 = _mm_set1_epi32(0xFF0000);
    const __m128i lumaAdd = _mm_set1_epi32(Order ? 16 << 16 : 16);
    const __m128i chromaFlip = _mm_set1_epi32(Order ? 0x8080 : 0x808000);
    int i = 0;
    for (; i + px4::kBlockReach<3, 3> <= w; i += 16) {
        __m128i c02[4], c1x[4];
        Pairs16x3(s + i * 3, c02, c1x);
        for (int k = 0; k < 4; ++k) {
            const __m128i rb = c02[k], gx = _mm_or_si128(c1x[k], minusOne);
            const __m128i g = _mm_madd_epi16(gx, yG);
            const __m128i sum[3] = {_mm_add_epi32(_mm_madd_epi16(rb, yRB), _mm_add_epi32(g, g)),
                                    _mm_add_epi32(_mm_madd_epi16(rb, cbRB), _mm_madd_epi16(gx, cbG)),
                                    _mm_add_epi32(_mm_madd_epi16(rb, crRB), _mm_madd_epi16(gx, crG))};
            // Luma's sum is below 2^24, so its shift needs no mask.
            __m128i first = _mm_srli_epi32(sum[Order ? 2 : 0], 16);
            if constexpr (Order != 0) first = _mm_and_si128(first, byte0);
            const __m128i word = _mm_or_si128(_mm_or_si128(first, _mm_and_si128(_mm_srli_epi32(sum[1], 8), byte1)),
                                              _mm_and_si128(sum[Order ? 0 : 2], byte2));
            StoreWords3(d + (i + 4 * k) * 3, _mm_xor_si128(_mm_add_epi32(word, lumaAdd), chromaFlip));
        }
    }
    return i;
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
        if constexpr (SP == 3 && DP == 3)
            if (sp.order == 0)
                i = dp.order ? FwdInterleaved16<1>(sp.base[0], dp.base[0], w)
                             : FwdInterleaved16<0>(sp.base[0], dp.base[0], w);
        i = px4::Blocks<SP, DP, false>(sp, dp, i, w, _mm_setzero_si128(), FwdLanes);
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

// Eight pixels in 16-bit lanes. Each weight w splits into wH 2^16 + wL with
// wL in the int16 range, so with the chroma offset folded into the constant
// (weights on the bytes Cb, Cr as they are) and k = 2^16 + kL,
//   k Y + w_u u + w_v v + o = 2^16 (Y + wH_u Cb + wH_v Cr) + (kL Y + wL_u Cb + wL_v Cr + o'),
// where the high part is small, and the low sum is
// formed exactly in 32-bit lanes by multiply-adds of 16-bit pairs. Its shift
// by 16 fits 16 bits, is packed and added to the high part; the unsigned
// saturating pack to bytes is then the clamp to 0..255. The chroma half (one
// per pixel, or per cell and reused over the cell's rows) is Terms, the luma
// half Apply.
template <int32_t K, int32_t A, int32_t B, int32_t C, int32_t D, int32_t OR, int32_t OG, int32_t OB>
struct InvWide {
    static_assert(HiW(K) == 1, "luma weight 1 + kL / 2^16");
    static constexpr int32_t wu[3] = {0, -B, D}, wv[3] = {A, -C, 0}, o[3] = {OR, OG, OB};
    struct Chroma {
        __m128i lo[3][2];  // wL_u Cb + wL_v Cr + o', pixels 0-3 and 4-7
        __m128i hi[3];     // wH_u Cb + wH_v Cr
    };
    template <int ch>
    static void Channel(__m128i uv0, __m128i uv1, Chroma* t) {
        const __m128i l = px4::Coeffs(LoW(wu[ch]), LoW(wv[ch])), h = px4::Coeffs(HiW(wu[ch]), HiW(wv[ch]));
        const __m128i off = _mm_set1_epi32(o[ch] - 128 * (wu[ch] + wv[ch]));
        t->lo[ch][0] = _mm_add_epi32(_mm_madd_epi16(uv0, l), off);
        t->lo[ch][1] = _mm_add_epi32(_mm_madd_epi16(uv1, l), off);
        t->hi[ch] = _mm_packs_epi32(_mm_madd_epi16(uv0, h), _mm_madd_epi16(uv1, h));
    }
    // uv0, uv1: the pairs Cb | Cr << 16 of pixels 0-3 and 4-7.
    static Chroma Terms(__m128i uv0, __m128i uv1) {
        Chroma t;
        Channel<0>(uv0, uv1, &t), Channel<1>(uv0, uv1, &t), Channel<2>(uv0, uv1, &t);
        return t;
    }
    // y0, y1: luma of pixels 0-3 and 4-7 in 32-bit lanes, y16 all eight in
    // 16-bit lanes; out: R, G, B before the clamp.
    static void Apply(const Chroma& t, __m128i y0, __m128i y1, __m128i y16, __m128i* out) {
        const __m128i kl = px4::Coeffs(LoW(K), 0);
        const __m128i k0 = _mm_madd_epi16(y0, kl), k1 = _mm_madd_epi16(y1, kl);
        for (int ch = 0; ch < 3; ++ch) {
            const __m128i s = _mm_packs_epi32(_mm_srai_epi32(_mm_add_epi32(t.lo[ch][0], k0), 16),
                                              _mm_srai_epi32(_mm_add_epi32(t.lo[ch][1], k1), 16));
            out[ch] = _mm_add_epi16(_mm_add_epi16(s, t.hi[ch]), y16);
        }
    }
    static void Apply(const Chroma& t, __m128i y16, __m128i* out) {
        const __m128i z = _mm_setzero_si128();
        Apply(t, _mm_unpacklo_epi16(y16, z), _mm_unpackhi_epi16(y16, z), y16, out);
    }
};

// Sixteen three-byte Y, Cb, Cr pixels a step to three-byte pixels, while the
// row holds the loads' and stores' reach; returns the first pixel left.
template <const InvSet& K>
inline int Interleaved16(const uint8_t* s, uint8_t* d, int order, int w) {
    static_assert(HiW(K.k) == 1, "luma weight 1 + kL / 2^16");
    constexpr int32_t kL = LoW(K.k);
    const auto four = [](__m128i ycr, __m128i cbx, __m128i* c) {
        c[0] = InvChannel4<kL, 0, K.a, K.o>(ycr, cbx);
        c[1] = InvChannel4<kL, -K.b, -K.c, K.o>(ycr, cbx);
        c[2] = InvChannel4<kL, K.d, 0, K.o>(ycr, cbx);
    };
    return Walk16x3(s, d, order, w, four, [](__m128i a, __m128i b) { return _mm_packs_epi32(a, b); });
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
        if constexpr (SP == 3 && DP == 3)
            if (sp.order == 0) i = Interleaved16<K>(sp.base[0], dp.base[0], dp.order, w);
        i = px4::Blocks<SP, DP, true>(sp, dp, i, w, _mm_set1_epi32(alpha), InvLanes<K>);
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
