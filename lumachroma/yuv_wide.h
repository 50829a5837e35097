// 256-bit forms of the 4:2:0 row kernels between three-byte pixels and planes,
// compiled only where the target has AVX2. They compute the same integers as
// the chunk arithmetic in yuv_kernels.h (same identities, same rounding), in
// wider lanes, and touch exactly the bytes of the cells they convert. Each
// returns how many cells of the row it converted; the caller finishes the row.
#pragma once

#ifdef __AVX2__
#include <immintrin.h>

namespace zil::yuv::wide {

inline __m128i Load16(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
inline void Store16(uint8_t* p, __m128i x) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), x); }

// Channel offsets inside a three-byte pixel, when the three channel pointers
// are the three adjacent bytes of one.
template <class P>
inline bool Adjacent(P c0, P c1, P c2, P& lo, int (&o)[3]) {
    const P l = Lowest(c0, c1, c2);
    if (Highest(c0, c1, c2) - l != 2) return false;
    lo = l, o[0] = int(c0 - l), o[1] = int(c1 - l), o[2] = int(c2 - l);
    return true;
}

// ---- forward --------------------------------------------------------------------
// Eight pixels (24 bytes): bytes 0..15 in lane 0, bytes 8..23 in lane 1, so
// pixels 0..3 start at 0, 3, 6, 9 of lane 0 and pixels 4..7 at 4, 7, 10, 13 of
// lane 1. Nothing outside the 24 bytes is read.
inline __m256i Load8Px(const uint8_t* p) {
    return _mm256_inserti128_si256(_mm256_castsi128_si256(Load16(p)), Load16(p + 8), 1);
}
// Shuffle giving each pixel's channels at offsets oa and ob as two 16-bit words.
inline __m256i PairMask(int oa, int ob) {
    const __m256i at = _mm256_setr_epi8(0, -128, 0, -128, 3, -128, 3, -128, 6, -128, 6, -128, 9, -128, 9, -128,  //
                                        4, -128, 4, -128, 7, -128, 7, -128, 10, -128, 10, -128, 13, -128, 13, -128);
    return _mm256_add_epi8(at, _mm256_set1_epi32(oa | ob << 16));
}

// The luma sum S = kYR R + kYG G + kYB B of (R, G) and (B, G) word pairs, as
// two signed 16-bit products each: kYG = 32767 + (kYG - 32767).
inline constexpr int32_t kYG1 = 32767, kYG2 = kYG - kYG1;
static_assert(kYG2 > 0 && kYG2 <= 32767 && kYR <= 32767 && kYB <= 32767, "luma weights as int16 pairs");

template <const FwdMember& M>
int RgbToYuv420Cells(const Rows& rw, int cells) {
    const uint8_t *a0, *a1;
    int o0[3], o1[3];
    if (!Adjacent(rw.s[0], rw.s[1], rw.s[2], a0, o0) || !Adjacent(rw.s[3], rw.s[4], rw.s[5], a1, o1) ||
        o0[0] != o1[0] || o0[1] != o1[1] || o0[2] != o1[2])
        return 0;
    const __m256i mRG = PairMask(o0[0], o0[1]), mBG = PairMask(o0[2], o0[1]);
    const __m256i kRG = _mm256_set1_epi32(kYR | kYG1 << 16), kBG = _mm256_set1_epi32(kYB | kYG2 << 16);
    const __m256i yRound = _mm256_set1_epi32(M.yRound), cRound = _mm256_set1_epi32(65535 - M.cCell);
    const __m256i low16 = _mm256_set1_epi32(0xFFFF), half = _mm256_set1_epi32(128);
    const __m256i kU = _mm256_set1_epi32(kUB), kV = _mm256_set1_epi32(kVR);
    // Luma bytes come out of the packs as dwords r0 0-3, r0 8-11, r1 0-3,
    // r1 8-11 (lane 0) and the same for pixels 4-7, 12-15 (lane 1).
    const __m256i yOrder = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    // Chroma bytes: lane 0 holds U then V of cells 0, 1, 4, 5 at even bytes,
    // lane 1 those of cells 2, 3, 6, 7; gathered into U01 U45 V01 V45 words.
    const __m256i cPick = _mm256_setr_epi8(0, 2, 4, 6, 8, 10, 12, 14, -128, -128, -128, -128, -128, -128, -128, -128,
                                           0, 2, 4, 6, 8, 10, 12, 14, -128, -128, -128, -128, -128, -128, -128, -128);
    uint8_t* __restrict y0 = rw.d[0];
    uint8_t* __restrict y1 = rw.d[1];
    uint8_t* __restrict u = rw.d[2];
    uint8_t* __restrict v = rw.d[3];
    int i = 0;
    for (; i + 8 <= cells; i += 8) {
        __m256i A[2][2], B[2][2], Y[2];
        for (int r = 0; r < 2; ++r) {
            __m256i Yg[2];
            for (int g = 0; g < 2; ++g) {
                const __m256i x = Load8Px((r ? a1 : a0) + 3 * (2 * i + 8 * g));
                A[r][g] = _mm256_shuffle_epi8(x, mRG), B[r][g] = _mm256_shuffle_epi8(x, mBG);
                const __m256i S = _mm256_add_epi32(_mm256_madd_epi16(A[r][g], kRG), _mm256_madd_epi16(B[r][g], kBG));
                Yg[g] = _mm256_srai_epi32(_mm256_add_epi32(S, yRound), 16);
            }
            Y[r] = _mm256_packus_epi32(Yg[0], Yg[1]);
        }
        const __m256i yb = _mm256_permutevar8x32_epi32(_mm256_packus_epi16(Y[0], Y[1]), yOrder);
        Store16(y0 + 2 * i, _mm256_castsi256_si128(yb));
        Store16(y1 + 2 * i, _mm256_extracti128_si256(yb, 1));
        // Cell sums: rows added as words, then each pixel pair's words in the
        // low dword of its qword. S is linear, so the cell's luma sum is the
        // luma sum of its channel sums.
        __m256i U[2], V[2];
        for (int g = 0; g < 2; ++g) {
            __m256i ar = _mm256_add_epi16(A[0][g], A[1][g]), bg = _mm256_add_epi16(B[0][g], B[1][g]);
            ar = _mm256_add_epi16(ar, _mm256_srli_epi64(ar, 32)), bg = _mm256_add_epi16(bg, _mm256_srli_epi64(bg, 32));
            const __m256i sS = _mm256_add_epi32(_mm256_madd_epi16(ar, kRG), _mm256_madd_epi16(bg, kBG));
            const __m256i yc = _mm256_srai_epi32(_mm256_add_epi32(sS, cRound), 16);
            const __m256i du = _mm256_sub_epi32(_mm256_and_si256(bg, low16), yc);
            const __m256i dv = _mm256_sub_epi32(_mm256_and_si256(ar, low16), yc);
            U[g] = _mm256_add_epi32(_mm256_srai_epi32(_mm256_mullo_epi32(du, kU), 18), half);
            V[g] = _mm256_add_epi32(_mm256_srai_epi32(_mm256_mullo_epi32(dv, kV), 18), half);
        }
        const __m256i uv = _mm256_packus_epi16(_mm256_packs_epi32(U[0], U[1]), _mm256_packs_epi32(V[0], V[1]));
        const __m256i w = _mm256_shuffle_epi8(uv, cPick);
        const __m128i c = _mm_unpacklo_epi16(_mm256_castsi256_si128(w), _mm256_extracti128_si256(w, 1));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(u + i), c);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(v + i), _mm_unpackhi_epi64(c, c));
    }
    return i;
}

// ---- reverse --------------------------------------------------------------------
// Interleaving shuffles: byte b of the 16-byte block m of 48 output bytes
// (16 pixels) is pixel (16 m + b) / 3, slot (16 m + b) % 3; a channel at slot
// o takes its byte there, others give zero.
struct Interleave {
    uint8_t at[3][3][16];  // [slot][block][byte]
};
constexpr Interleave MakeInterleave() {
    Interleave t{};
    for (int o = 0; o < 3; ++o)
        for (int m = 0; m < 3; ++m)
            for (int b = 0; b < 16; ++b) {
                const int pos = 16 * m + b;
                t.at[o][m][b] = uint8_t(pos % 3 == o ? pos / 3 : 0x80);
            }
    return t;
}
inline constexpr Interleave kInterleave = MakeInterleave();

template <int32_t C, int32_t Round>
inline __m256i Term(__m256i x) {
    using K = Split16<C>;
    __m256i t = _mm256_add_epi16(_mm256_mullo_epi16(x, _mm256_set1_epi16(int16_t(K::H))),
                                 _mm256_mulhi_epi16(x, _mm256_set1_epi16(int16_t(K::L))));
    if constexpr (Round != 0)
        t = _mm256_add_epi16(t, _mm256_srli_epi16(_mm256_mullo_epi16(x, _mm256_set1_epi16(int16_t(K::L))), 15));
    return t;
}
template <int32_t Bc, int32_t Cc, int32_t Round>
inline __m256i TermG(__m256i cu, __m256i cv) {
    using KB = Split16<Bc>;
    using KC = Split16<Cc>;
    static_assert(-KB::L >= -32768 && -KB::L <= 32767 && -KC::L >= -32768 && -KC::L <= 32767, "negated lows");
    const __m256i k = _mm256_set1_epi32(int32_t(uint16_t(int16_t(-KB::L))) | int32_t(uint32_t(uint16_t(int16_t(-KC::L))) << 16));
    const __m256i rnd = _mm256_set1_epi32(Round);
    const __m256i lo = _mm256_srai_epi32(_mm256_add_epi32(_mm256_madd_epi16(_mm256_unpacklo_epi16(cu, cv), k), rnd), 16);
    const __m256i hi = _mm256_srai_epi32(_mm256_add_epi32(_mm256_madd_epi16(_mm256_unpackhi_epi16(cu, cv), k), rnd), 16);
    const __m256i h = _mm256_add_epi16(_mm256_mullo_epi16(cu, _mm256_set1_epi16(int16_t(-KB::H))),
                                       _mm256_mullo_epi16(cv, _mm256_set1_epi16(int16_t(-KC::H))));
    return _mm256_add_epi16(h, _mm256_packs_epi32(lo, hi));
}

template <const InvMember& M>
int Yuv420ToRgbCells(const Rows& rw, int cells) {
    uint8_t *p0, *p1;
    int o0[3], o1[3];
    if (!Adjacent(rw.d[0], rw.d[1], rw.d[2], p0, o0) || !Adjacent(rw.d[4], rw.d[5], rw.d[6], p1, o1) ||
        o0[0] != o1[0] || o0[1] != o1[1] || o0[2] != o1[2])
        return 0;
    __m256i mask[3][3];  // [channel][block]
    for (int c = 0; c < 3; ++c)
        for (int m = 0; m < 3; ++m) mask[c][m] = _mm256_broadcastsi128_si256(Load16(kInterleave.at[o0[c]][m]));
    const __m256i c128 = _mm256_set1_epi16(128), zero = _mm256_setzero_si256();
    const uint8_t* __restrict ys[2] = {rw.s[0], rw.s[1]};
    const uint8_t* __restrict u = rw.s[2];
    const uint8_t* __restrict v = rw.s[3];
    int i = 0;
    for (; i + 16 <= cells; i += 16) {
        const __m256i cu = _mm256_sub_epi16(_mm256_cvtepu8_epi16(Load16(u + i)), c128);
        const __m256i cv = _mm256_sub_epi16(_mm256_cvtepu8_epi16(Load16(v + i)), c128);
        // Terms of cells 0-7 in lane 0 and 8-15 in lane 1; each doubled into
        // the pixels 0-7 and 16-23 (lo), 8-15 and 24-31 (hi), the order of a
        // byte unpack of 32 luma bytes.
        const __m256i t[3] = {Term<M.k.a, M.pix.r>(cv), TermG<M.k.b, M.k.c, M.pix.g>(cu, cv),
                              Term<M.k.d, M.pix.b>(cu)};
        __m256i tl[3], th[3];
        for (int c = 0; c < 3; ++c) tl[c] = _mm256_unpacklo_epi16(t[c], t[c]), th[c] = _mm256_unpackhi_epi16(t[c], t[c]);
        for (int r = 0; r < 2; ++r) {
            const __m256i yy = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(ys[r] + 2 * i));
            const __m256i yl = _mm256_unpacklo_epi8(yy, zero), yh = _mm256_unpackhi_epi8(yy, zero);
            __m256i ch[3];  // pixels 0-15 in lane 0, 16-31 in lane 1
            for (int c = 0; c < 3; ++c)
                ch[c] = _mm256_packus_epi16(_mm256_add_epi16(yl, tl[c]), _mm256_add_epi16(yh, th[c]));
            uint8_t* d = (r ? p1 : p0) + 6 * i;
            for (int m = 0; m < 3; ++m) {
                const __m256i o = _mm256_or_si256(_mm256_or_si256(_mm256_shuffle_epi8(ch[0], mask[0][m]),
                                                                  _mm256_shuffle_epi8(ch[1], mask[1][m])),
                                                  _mm256_shuffle_epi8(ch[2], mask[2][m]));
                Store16(d + 16 * m, _mm256_castsi256_si128(o));
                Store16(d + 48 + 16 * m, _mm256_extracti128_si256(o, 1));
            }
        }
    }
    return i;
}

}  // namespace zil::yuv::wide
#endif
