// Row kernels of the subsampled YCbCr and BT.709 members. A kernel converts
// one row (a row pair for 4:2:0) of a given width, through the channel-row
// pointers of a Rows turn and compile-time strides, so one body serves packed
// streams, planes and the interleaved chroma of two-plane images.
#pragma once

#include "curves/gamma_tables.h"
#include "sub_members.h"
#include "ycbcr_kernels.h"
#include "yuv_rows.h"

namespace zil::sub {

using yuv::Rows;

template <Store S>
inline uint8_t Put(int32_t x) {
    if constexpr (S == Store::Limit) return uint8_t(x < 1 ? 1 : (x > 254 ? 254 : x));
    else return uint8_t(x);
}

// ---- forward, integer -----------------------------------------------------------
// Rows: s[0..2] R, G, B of the first row, s[3..5] of the second (CH = 2), each
// SB bytes a pixel; d[0], d[1] luma of the two rows, DY bytes a pixel; d[2] Cb,
// d[3] Cr, DC bytes a cell. CW pixels by CH rows form a cell. FirstCr: in a
// packed stream the cell's first chroma byte is Cr (the odd column's target).
//
// Whole chunks of kChunkCells cells go through FwdChunk: the channels of each
// position in the cell are gathered into 16-bit arrays and the sums taken with
// 16-bit constants (ycbcr::DotQ16, exact over these ranges); (x >> 16) >> 2
// equals x >> 18. The rest of the row takes the per-pixel loop.
template <const FwdMember& M, int SB, int DY, int DC, int CW, int CH>
inline void FwdChunk(const Rows& rw, int i0) {
    constexpr FwdSet k = M.k;
    constexpr int N = yuv::kChunkCells;
    uint16_t R[CH][CW][N], G[CH][CW][N], B[CH][CW][N];
    for (int y = 0; y < CH; ++y)
        for (int p = 0; p < CW; ++p) {
            const int at = (i0 * CW + p) * SB;
            yuv::Gather3<CW * SB, N>(rw.s[3 * y] + at, rw.s[3 * y + 1] + at, rw.s[3 * y + 2] + at, R[y][p], G[y][p],
                                     B[y][p]);
        }
    uint8_t Yo[CH][CW][N], Cb[N], Cr[N];
    for (int j = 0; j < N; ++j) {
        int16_t sr = 0, sg = 0, sb = 0;
        for (int y = 0; y < CH; ++y)
            for (int p = 0; p < CW; ++p) {
                const int16_t r = int16_t(R[y][p][j]), g = int16_t(G[y][p][j]), b = int16_t(B[y][p][j]);
                sr = int16_t(sr + r), sg = int16_t(sg + g), sb = int16_t(sb + b);
                const int16_t l = p ? ycbcr::DotQ16<k.yr, k.yg, k.yb, M.y1>(r, g, b)
                                    : ycbcr::DotQ16<k.yr, k.yg, k.yb, M.y0>(r, g, b);
                Yo[y][p][j] = Put<M.store>(l);
            }
        Cb[j] = Put<M.store>(ycbcr::DotQ16<k.ur, k.ug, k.ub, M.cb>(sr, sg, sb) >> (M.shift - 16));
        Cr[j] = Put<M.store>(ycbcr::DotQ16<k.vr, k.vg, k.vb, M.cr>(sr, sg, sb) >> (M.shift - 16));
    }
    for (int y = 0; y < CH; ++y) {
        uint8_t* __restrict py = rw.d[y] + i0 * CW * DY;
        for (int j = 0; j < N; ++j)
            for (int p = 0; p < CW; ++p) py[(j * CW + p) * DY] = Yo[y][p][j];
    }
    uint8_t* __restrict cb = rw.d[2] + i0 * DC;
    uint8_t* __restrict cr = rw.d[3] + i0 * DC;
    for (int j = 0; j < N; ++j) cb[j * DC] = Cb[j], cr[j * DC] = Cr[j];
}

template <const FwdMember& M, int SB, int DY, int DC, int CW, int CH, bool FirstCr = false>
void FwdRow(const Rows& rw, int width, uint8_t) {
    constexpr FwdSet k = M.k;
    const int cells = width / CW;
    uint8_t* __restrict cb = rw.d[2];
    uint8_t* __restrict cr = rw.d[3];
    int i = 0;
    for (; i + yuv::kChunkCells <= cells; i += yuv::kChunkCells) FwdChunk<M, SB, DY, DC, CW, CH>(rw, i);
    for (; i < cells; ++i) {
        int32_t sr = 0, sg = 0, sb = 0;
        for (int y = 0; y < CH; ++y) {
            const uint8_t* __restrict pr = rw.s[3 * y];
            const uint8_t* __restrict pg = rw.s[3 * y + 1];
            const uint8_t* __restrict pb = rw.s[3 * y + 2];
            uint8_t* __restrict py = rw.d[y];
            for (int j = 0; j < CW; ++j) {
                const int x = i * CW + j;
                const int32_t r = pr[x * SB], g = pg[x * SB], b = pb[x * SB];
                sr += r, sg += g, sb += b;
                py[x * DY] = Put<M.store>((k.yr * r + k.yg * g + k.yb * b + (j ? M.y1 : M.y0)) >> 16);
            }
        }
        cb[i * DC] = Put<M.store>((k.ur * sr + k.ug * sg + k.ub * sb + M.cb) >> M.shift);
        cr[i * DC] = Put<M.store>((k.vr * sr + k.vg * sg + k.vb * sb + M.cr) >> M.shift);
    }
    if constexpr (M.odd != Odd::None) {
        if (width % CW) {
            const int x = width - 1;
            int32_t r = rw.s[0][x * SB], g = rw.s[1][x * SB], b = rw.s[2][x * SB];
            if constexpr (M.oddSwap) {
                const int32_t t = r;
                r = b, b = t;
            }
            rw.d[0][x * DY] = Put<M.store>((k.yr * r + k.yg * g + k.yb * b + M.y0) >> 16);
            uint8_t* first = FirstCr ? cr : cb;
            if constexpr (M.odd == Odd::YP)
                first[cells * DC] = Put<M.store>((k.ur * r + k.ug * g + k.ub * b + M.oddC) >> 16);
            if constexpr (M.odd == Odd::YQ)
                first[cells * DC] = Put<M.store>((k.vr * r + k.vg * g + k.vb * b + M.oddC) >> 16);
        }
    }
}

// ---- forward CbYCr with the 1, 2, 1 chroma filter ------------------------------
// Rows: s[0..2] R, G, B (3 bytes a pixel); d[0] luma (2 bytes a pixel), d[1]
// Cb, d[2] Cr (4 bytes a pair). Chroma of pair i is the filter over the second
// pixel of pair i - 1, both weighted 1/4, and the first of pair i, weighted
// 1/2; the left neighbour of a row's first pair counts as neutral (0). Gamma:
// each input byte first passes the forward 8-bit gamma table.
template <bool Gamma>
void CbYCrFilterRow(const Rows& rw, int width, uint8_t) {
    constexpr FwdSet k = k601;
    const uint8_t *__restrict pr = rw.s[0], *__restrict pg = rw.s[1], *__restrict pb = rw.s[2];
    uint8_t *__restrict py = rw.d[0], *__restrict cb = rw.d[1], *__restrict cr = rw.d[2];
    auto in = [](uint8_t v) -> int32_t {
        if constexpr (Gamma) return ZIL_GOT_ADDRESS(const uint8_t, tableFwd8u)[v];
        else return v;
    };
    int32_t pp = 0, qq = 0;
    const int pairs = width / 2;
    for (int i = 0; i < pairs; ++i) {
        const int x = 2 * i;
        const int32_t r0 = in(pr[3 * x]), g0 = in(pg[3 * x]), b0 = in(pb[3 * x]);
        const int32_t r1 = in(pr[3 * x + 3]), g1 = in(pg[3 * x + 3]), b1 = in(pb[3 * x + 3]);
        py[2 * x] = uint8_t((k.yr * r0 + k.yg * g0 + k.yb * b0 + 1081344) >> 16);
        py[2 * x + 2] = uint8_t((k.yr * r1 + k.yg * g1 + k.yb * b1 + 1081344) >> 16);
        const int32_t p1 = (k.ur * r1 + k.ug * g1 + k.ub * b1) >> 2;
        const int32_t q1 = (k.vr * r1 + k.vg * g1 + k.vb * b1) >> 2;
        cb[4 * i] = uint8_t((((k.ur * r0 + k.ug * g0 + k.ub * b0) >> 1) + pp + p1 + kFilterRound) >> 16);
        cr[4 * i] = uint8_t((((k.vr * r0 + k.vg * g0 + k.vb * b0) >> 1) + qq + q1 + kFilterRound) >> 16);
        pp = p1, qq = q1;
    }
    if (width & 1) {
        const int x = width - 1;
        const int32_t r = in(pr[3 * x]), g = in(pg[3 * x]), b = in(pb[3 * x]);
        py[2 * x] = uint8_t((k.yr * r + k.yg * g + k.yb * b + 1081344) >> 16);
        cb[4 * pairs] = uint8_t((k.ur * r + k.ug * g + k.ub * b + kFilterOdd) >> 16);
    }
}

// ---- reverse ------------------------------------------------------------------
struct Terms {
    int32_t r, g, b;
};
inline Terms ChromaTerms(const InvSet& K, int32_t cb, int32_t cr) {
    const int32_t u = cb - 128, v = cr - 128;
    return {K.a * v + K.oR, K.oG - K.b * u - K.c * v, K.d * u + K.oB};
}
// One pixel: channel lanes r, g, b (and a) at byte x * DB.
template <int DB, bool Alpha>
inline void PutRgb(const InvSet& K, uint8_t* const* d, int x, int32_t y, Terms t, uint8_t alpha, bool swap = false) {
    const int32_t yy = K.k * y;
    const uint8_t r = uint8_t(Clamp255((yy + t.r) >> 16));
    const uint8_t g = uint8_t(Clamp255((yy + t.g) >> 16));
    const uint8_t b = uint8_t(Clamp255((yy + t.b) >> 16));
    d[0][x * DB] = swap ? b : r;
    d[1][x * DB] = g;
    d[2][x * DB] = swap ? r : b;
    if constexpr (Alpha) d[3][x * DB] = alpha;
}

// Rows: s[0], s[1] luma of the cell rows (SY bytes a pixel), s[2] Cb, s[3] Cr
// (SC bytes a cell); d[0..3] R, G, B, A of the first row and d[4..7] of the
// second, DB bytes a pixel. OwnCr: in a packed stream the half cell's own
// chroma byte is Cr.
//
// Whole chunks of kChunkCells cells go through InvChunk, in 16-bit lanes: with
// k = 65536 + kL and a cell's chroma term C = cH 2^16 + cL (0 <= cL < 2^16),
//   (k Y + C) >> 16 = Y + cH + hi + carry,
// where kL Y = hi 2^16 + lo and carry = 1 when lo + cL reaches 2^16.
template <const InvMember& M, int SY, int SC, int CW, int CH, int DB, bool Alpha>
inline void InvChunk(const Rows& rw, int i0, uint8_t alpha) {
    constexpr InvSet K = M.k;
    constexpr int NC = yuv::kChunkCells, N = NC * CW;
    constexpr int32_t kL = K.k - 65536;
    static_assert(kL >= 0 && kL < 65536, "luma weight 1 + kL / 2^16");
    int16_t h[3][N];
    uint16_t l[3][N];
    const uint8_t* __restrict cb = rw.s[2] + i0 * SC;
    const uint8_t* __restrict cr = rw.s[3] + i0 * SC;
    uint8_t U[NC], V[NC];
    for (int j = 0; j < NC; ++j) U[j] = cb[j * SC], V[j] = cr[j * SC];
    for (int j = 0; j < NC; ++j) {
        const Terms t = ChromaTerms(K, U[j], V[j]);
        const int32_t c[3] = {t.r, t.g, t.b};
        for (int ch = 0; ch < 3; ++ch)
            for (int p = 0; p < CW; ++p) h[ch][j * CW + p] = int16_t(c[ch] >> 16), l[ch][j * CW + p] = uint16_t(c[ch]);
    }
    for (int y = 0; y < CH; ++y) {
        const uint8_t* __restrict ys = rw.s[y] + i0 * CW * SY;
        uint8_t Yb[N], o[3][N];
        for (int j = 0; j < N; ++j) Yb[j] = ys[j * SY];
        for (int j = 0; j < N; ++j) {
            const uint16_t Y = Yb[j];
            const uint32_t prod = uint32_t(Y) * uint32_t(kL);
            const uint16_t hi = uint16_t(prod >> 16), lo = uint16_t(prod);
            for (int ch = 0; ch < 3; ++ch) {
                const uint16_t sum = uint16_t(lo + l[ch][j]);
                const int16_t carry = sum < lo ? 1 : 0;
                o[ch][j] = yuv::Clamp16(int16_t(Y + hi + carry + h[ch][j]));
            }
        }
        const int x = i0 * CW * DB;
        uint8_t* const* d = rw.d + 4 * y;
        yuv::Scatter3<DB, N, Alpha>(d[0] + x, d[1] + x, d[2] + x, Alpha ? d[3] + x : nullptr, o[0], o[1], o[2], alpha);
    }
}

// Cells of two pixels, sixteen pixels a step in 16-bit lanes (ycbcr::InvWide),
// each cell's chroma terms formed once for its CH rows. Sources: luma planes
// (SY 1) with Cb, Cr planes (SC 1) or interleaved pairs (SC 2, either order),
// or the Y0 Cb Y1 Cr stream (SY 2, SC 4); destinations of three bytes, or four
// with the alpha byte after them. Blocks stop where a three-byte store's two
// bytes of junk would pass the row's whole cells, which the cell loop then
// writes over. Returns the first cell left, or 0 where the layout does not fit.
template <const InvMember& M, int SY, int SC, int CH, int DB, bool Alpha>
inline int InvBlocks(const Rows& rw, int cells, uint8_t alpha) {
    constexpr InvSet K = M.k;
    using W = ycbcr::InvWide<K.k, K.a, K.b, K.c, K.d, K.oR, K.oG, K.oB>;
    if constexpr (DB == 1 || (DB == 4 && !Alpha) || !((SY == 1 && SC <= 2) || (SY == 2 && SC == 4))) {
        return 0;
    } else {
        const uint8_t* cb = rw.s[2];
        const uint8_t* cr = rw.s[3];
        bool swapUV = false;
        if constexpr (SC == 2) {
            if (cr == cb + 1) swapUV = false;
            else if (cb == cr + 1) swapUV = true, cb = cr;
            else return 0;
        }
        if constexpr (SY == 2)
            if (cb != rw.s[0] + 1 || cr != rw.s[0] + 3) return 0;
        px4::Place<uint8_t*> dp[CH];
        for (int y = 0; y < CH; ++y) {
            uint8_t* const* d = rw.d + 4 * y;
            if (!px4::Locate<3>(d[0], d[1], d[2], &dp[y]) || (DB == 4 && d[3] != dp[y].base[0] + 3)) return 0;
        }
        const __m128i z = _mm_setzero_si128(), a = _mm_set1_epi8(char(alpha)), bytes = _mm_set1_epi16(0xFF);
        int i = 0;
        for (; 2 * i + (DB == 3 ? 17 : 16) <= 2 * cells; i += 8) {
            __m128i c[2];  // Cb | Cr << 16 pairs of cells 0-3 and 4-7
            __m128i y16[CH][2];
            if constexpr (SY == 2) {
                const uint8_t* p = rw.s[0] + 4 * i;
                const __m128i v0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
                const __m128i v1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16));
                y16[0][0] = _mm_and_si128(v0, bytes), y16[0][1] = _mm_and_si128(v1, bytes);
                c[0] = _mm_srli_epi16(v0, 8), c[1] = _mm_srli_epi16(v1, 8);
            } else {
                for (int y = 0; y < CH; ++y) {
                    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rw.s[y] + 2 * i));
                    y16[y][0] = _mm_unpacklo_epi8(v, z), y16[y][1] = _mm_unpackhi_epi8(v, z);
                }
                __m128i uv;
                if constexpr (SC == 1)
                    uv = _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(cb + i)),
                                           _mm_loadl_epi64(reinterpret_cast<const __m128i*>(cr + i)));
                else
                    uv = _mm_loadu_si128(reinterpret_cast<const __m128i*>(cb + 2 * i));
                c[0] = _mm_unpacklo_epi8(uv, z), c[1] = _mm_unpackhi_epi8(uv, z);
                if (swapUV)
                    for (int h = 0; h < 2; ++h) c[h] = _mm_or_si128(_mm_srli_epi32(c[h], 16), _mm_slli_epi32(c[h], 16));
            }
            __m128i out[CH][2][3];
            for (int h = 0; h < 2; ++h) {
                const auto t = W::Terms(_mm_unpacklo_epi32(c[h], c[h]), _mm_unpackhi_epi32(c[h], c[h]));
                for (int y = 0; y < CH; ++y) W::Apply(t, y16[y][h], out[y][h]);
            }
            for (int y = 0; y < CH; ++y)
                ycbcr::StoreRgb16<DB>(dp[y].base[0] + 2 * i * DB, dp[y].order, out[y][0], out[y][1], a);
        }
        return i;
    }
}

template <const InvMember& M, int SY, int SC, int CW, int CH, int DB, bool Alpha, bool OwnCr = false>
void InvRow(const Rows& rw, int width, uint8_t alpha) {
    constexpr InvSet K = M.k;
    const uint8_t* __restrict cb = rw.s[2];
    const uint8_t* __restrict cr = rw.s[3];
    const int cells = width / CW;
    int i = 0;
    if constexpr (CW == 2) i = InvBlocks<M, SY, SC, CH, DB, Alpha>(rw, cells, alpha);
    for (; i + yuv::kChunkCells <= cells; i += yuv::kChunkCells) InvChunk<M, SY, SC, CW, CH, DB, Alpha>(rw, i, alpha);
    for (; i < cells; ++i) {
        const Terms t = ChromaTerms(K, cb[i * SC], cr[i * SC]);
        for (int y = 0; y < CH; ++y)
            for (int j = 0; j < CW; ++j) {
                const int x = i * CW + j;
                PutRgb<DB, Alpha>(K, rw.d + 4 * y, x, rw.s[y][x * SY], t, alpha);
            }
    }
    if constexpr (M.tail == Tail::Reuse) {
        const Terms t = ChromaTerms(K, cb[(cells - 1) * SC], cr[(cells - 1) * SC]);
        for (int x = cells * CW; x < width; ++x) PutRgb<DB, Alpha>(K, rw.d, x, rw.s[0][x * SY], t, alpha);
    }
    if constexpr (M.tail == Tail::Stream) {
        if (width & 1) {
            const int x = width - 1;
            const int32_t own = (OwnCr ? cr : cb)[cells * SC];
            int32_t other = own;
            if (!M.single || width > 1) other = (OwnCr ? cb : cr)[(cells - 1) * SC];
            const Terms t = OwnCr ? ChromaTerms(K, other, own) : ChromaTerms(K, own, other);
            PutRgb<DB, Alpha>(K, rw.d, x, rw.s[0][x * SY], t, alpha, M.swapOdd);
        }
    }
}

// ---- forward in float, 4:2:0 to two planes ----------------------------------
inline int32_t Trunc(float v, bool clamp) {
    if (clamp) v = v < 0.0f ? 0.0f : (v > 255.0f ? 255.0f : v);
    return int32_t(v);
}
template <const FltSet& F>
inline float FltLuma(float r, float g, float b) {
    return ((F.yr * r + 16.5f) + F.yg * g) + F.yb * b;
}
template <const FltSet& F>
inline float FltChroma(const float (&w)[3], const int8_t (&x)[3], const float (&s)[3]) {
    return (((w[0] * s[x[0]] + 512.0f) + w[1] * s[x[1]]) + w[2] * s[x[2]]) * 0.25f + 0.5f;
}

// Rows: s[0..2], s[3..5] R, G, B of the two rows (SB bytes a pixel); d[0], d[1]
// the two luma rows; d[2] the chroma plane's row (Cb, Cr pairs). Width in
// pixels, 64-bit for the one member with a 64-bit extent.
template <const FltSet& F, int SB>
void Flt420Row(const Rows& rw, ptrdiff_t width) {
    const ptrdiff_t cells = width / 2;
    uint8_t* __restrict c = rw.d[2];
    for (ptrdiff_t i = 0; i < cells; ++i) {
        float s[3] = {0.0f, 0.0f, 0.0f};
        for (int y = 0; y < 2; ++y)
            for (int j = 0; j < 2; ++j) {
                const ptrdiff_t x = 2 * i + j;
                const int32_t r = rw.s[3 * y][x * SB], g = rw.s[3 * y + 1][x * SB], b = rw.s[3 * y + 2][x * SB];
                s[0] += float(r), s[1] += float(g), s[2] += float(b);
                rw.d[y][x] = uint8_t(Trunc(FltLuma<F>(float(r), float(g), float(b)), F.clamp));
            }
        c[2 * i] = uint8_t(Trunc(FltChroma<F>(F.cbW, F.cbX, s), F.clamp));
        c[2 * i + 1] = uint8_t(Trunc(FltChroma<F>(F.crW, F.crX, s), F.clamp));
    }
}

}  // namespace zil::sub
