// Row kernels of the subsampled YCbCr and BT.709 members. A kernel converts
// one row (a row pair for 4:2:0) of a given width, through the channel-row
// pointers of a Rows turn and compile-time strides, so one body serves packed
// streams, planes and the interleaved chroma of two-plane images.
#pragma once

#include "sub_members.h"
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
template <const FwdMember& M, int SB, int DY, int DC, int CW, int CH, bool FirstCr = false>
void FwdRow(const Rows& rw, int width, uint8_t) {
    constexpr FwdSet k = M.k;
    const int cells = width / CW;
    uint8_t* __restrict cb = rw.d[2];
    uint8_t* __restrict cr = rw.d[3];
    for (int i = 0; i < cells; ++i) {
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
            if constexpr (M.odd == Odd::YP) first[cells * DC] = Put<M.store>((k.ur * r + k.ug * g + k.ub * b + M.oddC) >> 16);
            if constexpr (M.odd == Odd::YQ) first[cells * DC] = Put<M.store>((k.vr * r + k.vg * g + k.vb * b + M.oddC) >> 16);
        }
    }
}

// ---- forward CbYCr with the 1, 2, 1 chroma filter ------------------------------
// Rows: s[0..2] R, G, B (3 bytes a pixel); d[0] luma (2 bytes a pixel), d[1]
// Cb, d[2] Cr (4 bytes a pair). Chroma of pair i is the filter over the second
// pixel of pair i - 1, both weighted 1/4, and the first of pair i, weighted
// 1/2; the left neighbour of a row's first pair counts as neutral (0). Curve:
// a 256-byte table each input byte passes first, or null.
template <const uint8_t* Curve>
void CbYCrFilterRow(const Rows& rw, int width, uint8_t) {
    constexpr FwdSet k = k601;
    const uint8_t* __restrict pr = rw.s[0];
    const uint8_t* __restrict pg = rw.s[1];
    const uint8_t* __restrict pb = rw.s[2];
    uint8_t* __restrict py = rw.d[0];
    uint8_t* __restrict cb = rw.d[1];
    uint8_t* __restrict cr = rw.d[2];
    auto in = [](uint8_t v) -> int32_t {
        if constexpr (Curve != nullptr) return Curve[v];
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
template <const InvMember& M, int SY, int SC, int CW, int CH, int DB, bool Alpha, bool OwnCr = false>
void InvRow(const Rows& rw, int width, uint8_t alpha) {
    constexpr InvSet K = M.k;
    const uint8_t* __restrict cb = rw.s[2];
    const uint8_t* __restrict cr = rw.s[3];
    const int cells = width / CW;
    for (int i = 0; i < cells; ++i) {
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
