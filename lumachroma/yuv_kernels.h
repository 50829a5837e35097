// RGB <-> YUV row kernels. Each converts one row (or a row pair for 4:2:0) of
// a given width; no checks, no steps. Channels are reached through one pointer
// per channel plus a compile-time pixel stride, so the same body serves
// interleaved and planar images.
#pragma once

#include "px4.h"
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

// ---- chunked forms -------------------------------------------------------------
// Rows are converted in chunks of kChunk pixels (4:2:2 and 4:2:0: kChunkCells
// pairs or cells): the channels are gathered into small planar arrays,
// converted there by loops the compiler vectorises, and scattered out; the rest
// of a row, odd last columns included, takes the per-pixel loop. The chunk
// arithmetic below is an exact rewrite of the per-pixel form, so the bytes are
// identical.
inline constexpr int kChunk = 64, kChunkCells = 32;

// ---- chunk arithmetic in 16-bit lanes ----------------------------------------
// The chunk loops compute the same values as the per-pixel form, rewritten so
// that most of the work fits 16-bit lanes; every step below is an identity on
// integers over the operands' ranges.
//
// Forward. S = kYR R + kYG G + kYB B is kept 32-bit (0..16711680). Because
// B << 16 is a multiple of 2^16,
//   du = ((B << 16) - S + c) >> 16 = B + ((c - S) >> 16) = B - ((S + 65535 - c) >> 16),
// using floor((c - S) / 2^16) = -ceil((S - c) / 2^16). The subtracted term is a
// luma with the rounding term 65535 - c (for 4:2:0, c = 131071: (sS - 65536) >> 16),
// so du and dv are 16-bit differences. Then (du kUB) >> 16 is the high half of
// a 16 x 16-bit product, and since kVR = 65536 - 8061,
//   (dv kVR) >> 16 = dv + ((dv (-8061)) >> 16);
// a further shift by Shift - 16 is the same as shifting the product by Shift.
template <int32_t Round>
inline int16_t LumaShift(uint32_t S) { return int16_t((int32_t(S) + Round) >> 16); }
inline uint32_t LumaSum16(uint16_t r, uint16_t g, uint16_t b) {
    return uint32_t(r) * uint32_t(kYR) + uint32_t(g) * uint32_t(kYG) + uint32_t(b) * uint32_t(kYB);
}
inline int16_t MulHigh(int16_t x, int16_t k) { return int16_t((int32_t(x) * int32_t(k)) >> 16); }
static_assert(kVR - 65536 == -8061, "V scale split");
template <int Shift>
inline uint8_t ChromaU16(int16_t du) {
    return static_cast<uint8_t>(int16_t(MulHigh(du, int16_t(kUB)) >> (Shift - 16)) + 128);
}
template <int Shift>
inline uint8_t ChromaV16(int16_t dv) {
    int16_t t = int16_t(int16_t(int16_t(dv + MulHigh(dv, int16_t(kVR - 65536))) >> (Shift - 16)) + 128);
    t = t < 0 ? int16_t(0) : t;
    t = t > 255 ? int16_t(255) : t;
    return static_cast<uint8_t>(t);
}

// Reverse. With a coefficient C = H 2^16 + L (L in the int16 range, H >= 0)
// and a rounding term of 0 or 32768,
//   ((Y << 16) + C x + round) >> 16 = Y + H x + ((L x + round) >> 16),
// and (L x + 32768) >> 16 is the high half of L x plus the top bit of its low
// half. The green term has two products and is summed in 32 bits.
template <int32_t C>
struct Split16 {
    static constexpr int32_t H = (C + 32768) >> 16, L = C - H * 65536;
    static_assert(L >= -32768 && L <= 32767 && H >= 0, "split of the coefficient");
};
template <int32_t C, int32_t Round>
inline int16_t Term16(int16_t x) {
    static_assert(Round == 0 || Round == 32768, "rounding term");
    using K = Split16<C>;
    const int32_t p = int32_t(x) * K::L;
    int16_t t = int16_t(int16_t(K::H * x) + int16_t(p >> 16));
    if constexpr (Round != 0) t = int16_t(t + int16_t(uint16_t(p) >> 15));
    return t;
}
// ((Y << 16) - B cu - C cv + round) >> 16 - Y.
template <int32_t B, int32_t C, int32_t Round>
inline int16_t TermG16(int16_t cu, int16_t cv) {
    using KB = Split16<B>;
    using KC = Split16<C>;
    const int32_t low = Round - int32_t(cu) * KB::L - int32_t(cv) * KC::L;
    return int16_t(int16_t(-KB::H * cu - KC::H * cv) + int16_t(low >> 16));
}
inline uint8_t Clamp16(int16_t t) {
    t = t < 0 ? int16_t(0) : t;
    t = t > 255 ? int16_t(255) : t;
    return static_cast<uint8_t>(t);
}

// Generic 16-byte vectors (baseline instructions only).
typedef uint32_t V4u __attribute__((vector_size(16)));
typedef V4u V4uUnaligned __attribute__((aligned(1), may_alias));
typedef uint16_t V8s __attribute__((vector_size(16)));
typedef V8s V8sUnaligned __attribute__((aligned(1), may_alias));

inline uint32_t Load4(const uint8_t* p) {
    uint32_t w;
    __builtin_memcpy(&w, p, 4);
    return w;
}
inline uint32_t Load3(const uint8_t* p) { return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16; }

// The lowest and highest of three channel pointers; they are the three bytes
// of interleaved pixels when hi - lo is 2.
template <class P>
inline P Lowest(P a, P b, P c) { return a < b ? (a < c ? a : c) : (b < c ? b : c); }
template <class P>
inline P Highest(P a, P b, P c) { return a > b ? (a > c ? a : c) : (b > c ? b : c); }

// Gathers N pixels of three byte channels (pixel j at j * PS bytes from each
// channel pointer) into 16-bit arrays. When the channels are three adjacent
// bytes of interleaved pixels, each pixel is read as one 32-bit word (the last
// one of the N as three bytes, so nothing past its own bytes is read); the
// words of the even and the odd pixels of a group of 8 fill two vectors, and
// channel c of both, joined as the low and high halves of 32-bit lanes, is
// the group's 8 samples in order.
template <int PS, int N>
inline void Gather3(const uint8_t* c0, const uint8_t* c1, const uint8_t* c2, uint16_t* __restrict o0,
                    uint16_t* __restrict o1, uint16_t* __restrict o2) {
    static_assert(N % 8 == 0, "groups of 8");
    if constexpr (PS >= 3) {
        const uint8_t* lo = Lowest(c0, c1, c2);
        if (Highest(c0, c1, c2) - lo == 2) {
            const int s0 = 8 * int(c0 - lo), s1 = 8 * int(c1 - lo), s2 = 8 * int(c2 - lo);
            for (int k = 0; k < N; k += 8) {
                const uint8_t* p = lo + k * PS;
                const V4u ev = {Load4(p), Load4(p + 2 * PS), Load4(p + 4 * PS), Load4(p + 6 * PS)};
                const V4u od = {Load4(p + PS), Load4(p + 3 * PS), Load4(p + 5 * PS),
                                k + 8 < N ? Load4(p + 7 * PS) : Load3(p + 7 * PS)};
                const V8s r0 = V8s(((ev >> s0) & 255) | ((od >> s0) & 255) << 16);
                const V8s r1 = V8s(((ev >> s1) & 255) | ((od >> s1) & 255) << 16);
                const V8s r2 = V8s(((ev >> s2) & 255) | ((od >> s2) & 255) << 16);
                *reinterpret_cast<V8sUnaligned*>(o0 + k) = r0;
                *reinterpret_cast<V8sUnaligned*>(o1 + k) = r1;
                *reinterpret_cast<V8sUnaligned*>(o2 + k) = r2;
            }
            return;
        }
    }
    for (int j = 0; j < N; ++j) o0[j] = c0[j * PS], o1[j] = c1[j * PS], o2[j] = c2[j * PS];
}

// Scatters N pixels of three byte arrays to channels of stride PS. Pixels
// whose three channels are adjacent bytes get one 32-bit word each: 16 bytes
// of an array read as four 32-bit lanes hold pixel 4i + t of lane i in byte t,
// so the words of pixels t, t + 4, ... are built by shifts and masks. Words are
// stored in increasing order; for three-byte pixels a word's fourth byte is
// the next pixel's first and is rewritten by the next word, and the last pixel
// of the N is written as three bytes. Four-byte pixels with a written fourth
// byte (a, value `alpha`) take whole words. Otherwise byte by byte.
template <int PS, int N, bool WithAlpha>
inline void Scatter3(uint8_t* c0, uint8_t* c1, uint8_t* c2, uint8_t* a, const uint8_t* __restrict i0,
                     const uint8_t* __restrict i1, const uint8_t* __restrict i2, uint8_t alpha) {
    static_assert(N % 16 == 0, "groups of 16");
    if constexpr (PS == 3 || (PS == 4 && WithAlpha)) {
        uint8_t* lo = Lowest(c0, c1, c2);
        if (Highest(c0, c1, c2) - lo == 2 && (!WithAlpha || a - lo == 3)) {
            const int s0 = 8 * int(c0 - lo), s1 = 8 * int(c1 - lo), s2 = 8 * int(c2 - lo);
            const uint32_t fourth = WithAlpha ? uint32_t(alpha) << 24 : 0;
            for (int k = 0; k < N; k += 16) {
                const V4u x0 = *reinterpret_cast<const V4uUnaligned*>(i0 + k);
                const V4u x1 = *reinterpret_cast<const V4uUnaligned*>(i1 + k);
                const V4u x2 = *reinterpret_cast<const V4uUnaligned*>(i2 + k);
                uint32_t W[4][4];  // [t][i]: the word of pixel 4i + t
                for (int t = 0; t < 4; ++t) {
                    const V4u w = ((x0 >> (8 * t)) & 255) << s0 | ((x1 >> (8 * t)) & 255) << s1 |
                                  ((x2 >> (8 * t)) & 255) << s2 | fourth;
                    __builtin_memcpy(W[t], &w, 16);
                }
                uint8_t* p = lo + k * PS;
                const int words = (PS == 3 && k + 16 == N) ? 15 : 16;
                for (int j = 0; j < words; ++j) __builtin_memcpy(p + j * PS, &W[j & 3][j >> 2], 4);
                if (words == 15) c0[(N - 1) * PS] = i0[N - 1], c1[(N - 1) * PS] = i1[N - 1], c2[(N - 1) * PS] = i2[N - 1];
            }
            return;
        }
    }
    for (int j = 0; j < N; ++j) {
        c0[j * PS] = i0[j], c1[j * PS] = i1[j], c2[j * PS] = i2[j];
        if constexpr (WithAlpha) a[j * PS] = alpha;
    }
}

// Forward arithmetic of N pixels held in planar arrays.
template <int N, const FwdMember& M, class T>
inline void RgbToYuvPlanar(const T* __restrict R, const T* __restrict G, const T* __restrict B, uint8_t* __restrict Y,
                           uint8_t* __restrict U, uint8_t* __restrict V) {
    for (int j = 0; j < N; ++j) {
        const uint32_t S = LumaSum16(R[j], G[j], B[j]);
        Y[j] = static_cast<uint8_t>(LumaShift<M.yRound>(S));
        const int16_t yc = LumaShift<65535 - M.cPixel>(S);
        U[j] = ChromaU16<16>(int16_t(B[j] - yc));
        V[j] = ChromaV16<16>(int16_t(R[j] - yc));
    }
}

// One full-resolution chunk of a three-channel to three-channel conversion
// whose arithmetic Op::Run<N> works on planar arrays: interleaved sides are
// gathered into (and scattered from) small arrays, planar sides are used in
// place. WithAlpha writes `alpha` to the fourth byte of four-byte pixels.
template <int SP, int DP, class Op, bool WithAlpha>
inline void Chunk3(const uint8_t* s0, const uint8_t* s1, const uint8_t* s2, uint8_t* d0, uint8_t* d1, uint8_t* d2,
                   uint8_t* a, uint8_t alpha) {
    uint8_t O0[kChunk], O1[kChunk], O2[kChunk];
    uint8_t *o0 = O0, *o1 = O1, *o2 = O2;
    if constexpr (DP == 1) o0 = d0, o1 = d1, o2 = d2;
    if constexpr (SP == 1) {
        Op::template Run<kChunk>(s0, s1, s2, o0, o1, o2);
    } else {
        uint16_t I0[kChunk], I1[kChunk], I2[kChunk];
        Gather3<SP, kChunk>(s0, s1, s2, I0, I1, I2);
        Op::template Run<kChunk>(I0, I1, I2, o0, o1, o2);
    }
    if constexpr (DP != 1) Scatter3<DP, kChunk, WithAlpha>(d0, d1, d2, a, O0, O1, O2, alpha);
}

template <const FwdMember& M>
struct FwdOp {
    template <int N, class T>
    static void Run(const T* r, const T* g, const T* b, uint8_t* y, uint8_t* u, uint8_t* v) {
        RgbToYuvPlanar<N, M>(r, g, b, y, u, v);
    }
};

// One 4:2:0 chunk of kChunkCells cells. Planar arrays by quarter of the cell:
// 0 row 0 even column, 1 row 0 odd, 2 row 1 even, 3 row 1 odd.
template <int SP, const FwdMember& M>
inline void RgbToYuv420Chunk(const Rows& rw, int x, uint8_t* __restrict y0, uint8_t* __restrict y1,
                             uint8_t* __restrict u, uint8_t* __restrict v) {
    uint16_t R[4][kChunkCells], G[4][kChunkCells], B[4][kChunkCells];
    for (int q = 0; q < 4; ++q) {
        const int row = 3 * (q >> 1), at = (2 * x + (q & 1)) * SP;
        Gather3<2 * SP, kChunkCells>(rw.s[row] + at, rw.s[row + 1] + at, rw.s[row + 2] + at, R[q], G[q], B[q]);
    }
    for (int j = 0; j < kChunkCells; ++j) {
        uint32_t S[4];
        for (int q = 0; q < 4; ++q) S[q] = LumaSum16(R[q][j], G[q][j], B[q][j]);
        y0[2 * j] = static_cast<uint8_t>(LumaShift<M.yRound>(S[0]));
        y0[2 * j + 1] = static_cast<uint8_t>(LumaShift<M.yRound>(S[1]));
        y1[2 * j] = static_cast<uint8_t>(LumaShift<M.yRound>(S[2]));
        y1[2 * j + 1] = static_cast<uint8_t>(LumaShift<M.yRound>(S[3]));
        const int16_t yc = LumaShift<65535 - M.cCell>(S[0] + S[1] + S[2] + S[3]);
        const int16_t sB = int16_t(B[0][j] + B[1][j] + B[2][j] + B[3][j]);
        const int16_t sR = int16_t(R[0][j] + R[1][j] + R[2][j] + R[3][j]);
        u[j] = ChromaU16<18>(int16_t(sB - yc));
        v[j] = ChromaV16<18>(int16_t(sR - yc));
    }
}

// Reverse arithmetic of N pixels held in planar arrays.
template <int N, const InvMember& M, class T>
inline void YuvToRgbPlanar(const T* __restrict Y, const T* __restrict U, const T* __restrict V, uint8_t* __restrict R,
                           uint8_t* __restrict G, uint8_t* __restrict B) {
    for (int j = 0; j < N; ++j) {
        const int16_t y = int16_t(Y[j]), cu = int16_t(int16_t(U[j]) - 128), cv = int16_t(int16_t(V[j]) - 128);
        R[j] = Clamp16(int16_t(y + Term16<M.k.a, M.pix.r>(cv)));
        G[j] = Clamp16(int16_t(y + TermG16<M.k.b, M.k.c, M.pix.g>(cu, cv)));
        B[j] = Clamp16(int16_t(y + Term16<M.k.d, M.pix.b>(cu)));
    }
}

template <const InvMember& M>
struct InvOp {
    template <int N, class T>
    static void Run(const T* y, const T* u, const T* v, uint8_t* r, uint8_t* g, uint8_t* b) {
        YuvToRgbPlanar<N, M>(y, u, v, r, g, b);
    }
};

// One 4:2:0 reverse chunk of kChunkCells cells; the chroma terms are shared by
// the four pixels of a cell. Output arrays hold each row's pixels in order.
template <int DP, const InvMember& M, Alpha A>
inline void Yuv420ToRgbChunk(const uint8_t* __restrict y0, const uint8_t* __restrict y1,
                             const uint8_t* __restrict u, const uint8_t* __restrict v, uint8_t* const* d,
                             uint8_t alpha) {
    uint8_t Ro[2][2 * kChunkCells], Go[2][2 * kChunkCells], Bo[2][2 * kChunkCells];
    for (int j = 0; j < kChunkCells; ++j) {
        const int16_t cu = int16_t(int16_t(u[j]) - 128), cv = int16_t(int16_t(v[j]) - 128);
        const int16_t tr = Term16<M.k.a, M.pix.r>(cv);
        const int16_t tg = TermG16<M.k.b, M.k.c, M.pix.g>(cu, cv);
        const int16_t tb = Term16<M.k.d, M.pix.b>(cu);
        for (int p = 0; p < 2; ++p) {
            const int16_t ya = y0[2 * j + p], yb = y1[2 * j + p];
            Ro[0][2 * j + p] = Clamp16(int16_t(ya + tr)), Go[0][2 * j + p] = Clamp16(int16_t(ya + tg));
            Bo[0][2 * j + p] = Clamp16(int16_t(ya + tb));
            Ro[1][2 * j + p] = Clamp16(int16_t(yb + tr)), Go[1][2 * j + p] = Clamp16(int16_t(yb + tg));
            Bo[1][2 * j + p] = Clamp16(int16_t(yb + tb));
        }
    }
    for (int row = 0; row < 2; ++row)
        Scatter3<DP, 2 * kChunkCells, A == Alpha::Value>(d[4 * row], d[4 * row + 1], d[4 * row + 2], d[4 * row + 3],
                                                         Ro[row], Go[row], Bo[row], alpha);
}

// Four byte channels of packed 4:2:2 pairs (Y0 U Y1 V, four bytes a pair)
// into 16-bit arrays: the words of the even and the odd pairs of a group of 8
// fill two vectors, joined per channel as the low and high halves of 32-bit
// lanes. Every word lies inside its own pair.
template <int N>
inline void GatherPairs(const uint8_t* p, uint16_t* __restrict y0, uint16_t* __restrict c0,
                        uint16_t* __restrict y1, uint16_t* __restrict c1) {
    static_assert(N % 8 == 0, "groups of 8");
    for (int k = 0; k < N; k += 8, p += 32) {
        const V4u ev = {Load4(p), Load4(p + 8), Load4(p + 16), Load4(p + 24)};
        const V4u od = {Load4(p + 4), Load4(p + 12), Load4(p + 20), Load4(p + 28)};
        uint16_t* const out[4] = {y0, c0, y1, c1};
        for (int c = 0; c < 4; ++c) {
            const V8s x = V8s(((ev >> (8 * c)) & 255) | ((od >> (8 * c)) & 255) << 16);
            *reinterpret_cast<V8sUnaligned*>(out[c] + k) = x;
        }
    }
}

// Packed 4:2:2 pairs from four byte arrays, one 32-bit word a pair (see
// Scatter3 for the lanes).
template <int N>
inline void ScatterPairs(uint8_t* p, const uint8_t* __restrict y0, const uint8_t* __restrict c0,
                         const uint8_t* __restrict y1, const uint8_t* __restrict c1) {
    static_assert(N % 16 == 0, "groups of 16");
    for (int k = 0; k < N; k += 16) {
        const V4u x0 = *reinterpret_cast<const V4uUnaligned*>(y0 + k);
        const V4u x1 = *reinterpret_cast<const V4uUnaligned*>(c0 + k);
        const V4u x2 = *reinterpret_cast<const V4uUnaligned*>(y1 + k);
        const V4u x3 = *reinterpret_cast<const V4uUnaligned*>(c1 + k);
        uint32_t W[4][4];  // [t][i]: the word of pair 4i + t
        for (int t = 0; t < 4; ++t) {
            const V4u w = ((x0 >> (8 * t)) & 255) | ((x1 >> (8 * t)) & 255) << 8 | ((x2 >> (8 * t)) & 255) << 16 |
                          ((x3 >> (8 * t)) & 255) << 24;
            __builtin_memcpy(W[t], &w, 16);
        }
        for (int j = 0; j < 16; ++j) __builtin_memcpy(p + 4 * (k + j), &W[j & 3][j >> 2], 4);
    }
}

// One 4:2:2 chunk of kChunkCells pairs. Y stride YP, U and V stride CP per
// pair; planar (1, 1) or packed (2, 4: Y0 U Y1 V).
template <int SP, int YP, int CP, const FwdMember& M>
inline void RgbToYuv422Chunk(const uint8_t* r, const uint8_t* g, const uint8_t* b, uint8_t* __restrict y,
                             uint8_t* __restrict u, uint8_t* __restrict v) {
    constexpr int N = kChunkCells;
    uint16_t R[2][N], G[2][N], B[2][N];
    for (int q = 0; q < 2; ++q) Gather3<2 * SP, N>(r + q * SP, g + q * SP, b + q * SP, R[q], G[q], B[q]);
    constexpr bool planar = YP == 1 && CP == 1;
    uint8_t Ye[N], Yo[N], U[N], V[N];
    for (int j = 0; j < N; ++j) {
        const uint32_t S0 = LumaSum16(R[0][j], G[0][j], B[0][j]), S1 = LumaSum16(R[1][j], G[1][j], B[1][j]);
        const int16_t yc = LumaShift<65535 - M.cCell>(S0 + S1);
        const uint8_t ye = static_cast<uint8_t>(LumaShift<M.yRound>(S0));
        const uint8_t yo = static_cast<uint8_t>(LumaShift<M.yRound>(S1));
        const uint8_t cu = ChromaU16<17>(int16_t(B[0][j] + B[1][j] - yc));
        const uint8_t cv = ChromaV16<17>(int16_t(R[0][j] + R[1][j] - yc));
        if constexpr (planar) {
            y[2 * j] = ye, y[2 * j + 1] = yo, u[j] = cu, v[j] = cv;
        } else {
            Ye[j] = ye, Yo[j] = yo, U[j] = cu, V[j] = cv;
        }
    }
    if constexpr (!planar) {
        if (YP == 2 && CP == 4 && u == y + 1 && v == y + 3) {
            ScatterPairs<N>(y, Ye, U, Yo, V);
        } else {
            for (int j = 0; j < N; ++j)
                y[2 * j * YP] = Ye[j], y[(2 * j + 1) * YP] = Yo[j], u[j * CP] = U[j], v[j * CP] = V[j];
        }
    }
}

// One reverse 4:2:2 chunk of kChunkCells pairs; output arrays hold the pixels
// in order.
template <int YP, int CP, int DP, const InvMember& M, Alpha A>
inline void Yuv422ToRgbChunk(const uint8_t* y, const uint8_t* u, const uint8_t* v, uint8_t* r, uint8_t* g,
                             uint8_t* b, uint8_t* a, uint8_t alpha) {
    constexpr int N = kChunkCells;
    uint16_t Ye[N], Yo[N], U[N], V[N];
    if (YP == 2 && CP == 4 && u == y + 1 && v == y + 3) {
        GatherPairs<N>(y, Ye, U, Yo, V);
    } else {
        for (int j = 0; j < N; ++j) Ye[j] = y[2 * j * YP], Yo[j] = y[(2 * j + 1) * YP], U[j] = u[j * CP], V[j] = v[j * CP];
    }
    uint8_t Ro[2 * N], Go[2 * N], Bo[2 * N];
    uint8_t *orr = Ro, *og = Go, *ob = Bo;
    if constexpr (DP == 1) orr = r, og = g, ob = b;
    {
        uint8_t* __restrict pr = orr;
        uint8_t* __restrict pg = og;
        uint8_t* __restrict pb = ob;
        for (int j = 0; j < N; ++j) {
            const int16_t cu = int16_t(int16_t(U[j]) - 128), cv = int16_t(int16_t(V[j]) - 128);
            const int16_t tr = Term16<M.k.a, M.pix.r>(cv);
            const int16_t tg = TermG16<M.k.b, M.k.c, M.pix.g>(cu, cv);
            const int16_t tb = Term16<M.k.d, M.pix.b>(cu);
            const int16_t ye = int16_t(Ye[j]), yo = int16_t(Yo[j]);
            pr[2 * j] = Clamp16(int16_t(ye + tr)), pg[2 * j] = Clamp16(int16_t(ye + tg));
            pb[2 * j] = Clamp16(int16_t(ye + tb));
            pr[2 * j + 1] = Clamp16(int16_t(yo + tr)), pg[2 * j + 1] = Clamp16(int16_t(yo + tg));
            pb[2 * j + 1] = Clamp16(int16_t(yo + tb));
        }
    }
    if constexpr (DP != 1) Scatter3<DP, 2 * N, A == Alpha::Value>(r, g, b, a, Ro, Go, Bo, alpha);
}

}  // namespace zil::yuv

#include "yuv_wide.h"

namespace zil::yuv {

// Sixteen three-byte R, G, B pixels a step to three-byte Y, U, V (order 1:
// V, U, Y), while the row holds the loads' and stores' reach; returns the
// first pixel left. Per four pixels the lanes R | B << 16 and G | x << 16
// give S (G's weight, above the int16 range, as twice its half); B << 16 and
// R << 16 are those lanes masked and shifted, so du and dv are the 32-bit
// formulas, and their 16-bit products with the chroma scales (V's as 2^16
// minus 8061) are multiply-adds against a zero high weight. U stays inside
// 16..239, so the store's clamp only acts on V.
template <const FwdMember& M>
inline int RgbToYuvInterleaved16(const uint8_t* s, uint8_t* d, int order, int w) {
    static_assert(kYG % 2 == 0 && kYG / 2 < 32768 && kUB < 32768, "16-bit weights");
    const auto four = [](__m128i rb, __m128i gx, __m128i* c) {
        const __m128i g = _mm_madd_epi16(gx, px4::Coeffs(kYG / 2, 0));
        const __m128i S = _mm_add_epi32(_mm_madd_epi16(rb, px4::Coeffs(kYR, kYB)), _mm_add_epi32(g, g));
        const __m128i Sc = _mm_sub_epi32(S, _mm_set1_epi32(M.cPixel)), mid = _mm_set1_epi32(128);
        const __m128i du = _mm_srai_epi32(_mm_sub_epi32(_mm_and_si128(rb, _mm_set1_epi32(int32_t(0xFFFF0000u))), Sc), 16);
        const __m128i dv = _mm_srai_epi32(_mm_sub_epi32(_mm_slli_epi32(rb, 16), Sc), 16);
        c[0] = _mm_srai_epi32(_mm_add_epi32(S, _mm_set1_epi32(M.yRound)), 16);
        c[1] = _mm_add_epi32(_mm_srai_epi32(_mm_madd_epi16(du, px4::Coeffs(kUB, 0)), 16), mid);
        c[2] = _mm_add_epi32(_mm_add_epi32(_mm_srai_epi32(_mm_madd_epi16(dv, px4::Coeffs(kVR - 65536, 0)), 16), dv), mid);
    };
    return px4::Walk16x3(s, d, order, w, four, [](__m128i a, __m128i b) { return _mm_packs_epi32(a, b); });
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
    int i = 0;
    if constexpr (SP == 3 && DP == 3)
        if (g == r + 1 && b == r + 2) {
            px4::Place<uint8_t*> dp;
            if (px4::Locate<3>(y, u, v, &dp)) i = RgbToYuvInterleaved16<M>(r, dp.base[0], dp.order, w);
        }
    for (; i + kChunk <= w; i += kChunk)
        Chunk3<SP, DP, FwdOp<M>, false>(r + i * SP, g + i * SP, b + i * SP, y + i * DP, u + i * DP, v + i * DP,
                                        nullptr, 0);
    for (; i < w; ++i) {
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
    int i = 0;
    for (; i + kChunkCells <= pairs; i += kChunkCells)
        RgbToYuv422Chunk<SP, YP, CP, M>(r + 2 * i * SP, g + 2 * i * SP, b + 2 * i * SP, y + 2 * i * YP, u + i * CP,
                                        v + i * CP);
    for (; i < pairs; ++i) {
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
    int i = 0;
#ifdef __AVX2__
    if constexpr (SP == 3) i = wide::RgbToYuv420Cells<M>(rw, cells);
#endif
    for (; i + kChunkCells <= cells; i += kChunkCells)
        RgbToYuv420Chunk<SP, M>(rw, i, y0 + 2 * i, y1 + 2 * i, u + i, v + i);
    for (; i < cells; ++i) {
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

// Sixteen three-byte Y, U, V pixels a step to three-byte pixels, while the
// row holds the loads' and stores' reach; returns the first pixel left. Y's
// weight is exactly 2^16, so each channel is Y plus the split chroma terms.
template <const InvMember& M>
inline int Interleaved16(const uint8_t* s, uint8_t* d, int order, int w) {
    const auto four = [](__m128i yv, __m128i ux, __m128i* c) {
        c[0] = px4::InvChannel4<0, 0, M.k.a, M.pix.r>(yv, ux);
        c[1] = px4::InvChannel4<0, -M.k.b, -M.k.c, M.pix.g>(yv, ux);
        c[2] = px4::InvChannel4<0, M.k.d, 0, M.pix.b>(yv, ux);
    };
    return px4::Walk16x3(s, d, order, w, four, [](__m128i a, __m128i b) { return _mm_packs_epi32(a, b); });
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
    int i = 0;
    if constexpr (SP == 3 && DP == 3)
        if (u == y + 1 && v == y + 2) {
            px4::Place<uint8_t*> dp;
            if (px4::Locate<3>(r, g, b, &dp)) i = Interleaved16<M>(y, dp.base[0], dp.order, w);
        }
    for (; i + kChunk <= w; i += kChunk)
        Chunk3<SP, DP, InvOp<M>, A == Alpha::Value>(y + i * SP, u + i * SP, v + i * SP, r + i * DP, g + i * DP, b + i * DP,
                                    A == Alpha::Value ? a + i * DP : a, alpha);
    for (; i < w; ++i) {
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
    int i = 0;
    for (; i + kChunkCells <= pairs; i += kChunkCells)
        Yuv422ToRgbChunk<YP, CP, DP, M, A>(y + 2 * i * YP, u + i * CP, v + i * CP, r + 2 * i * DP, g + 2 * i * DP,
                                           b + 2 * i * DP, A == Alpha::Value ? a + 2 * i * DP : a, alpha);
    for (; i < pairs; ++i) {
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
    int i = 0;
#ifdef __AVX2__
    if constexpr (DP == 3 && A == Alpha::None) i = wide::Yuv420ToRgbCells<M>(rw, cells);
#endif
    for (; i + kChunkCells <= cells; i += kChunkCells) {
        uint8_t* d[8];
        for (int c = 0; c < 8; ++c) d[c] = rw.d[c] ? rw.d[c] + 2 * i * DP : nullptr;
        Yuv420ToRgbChunk<DP, M, A>(y0 + 2 * i, y1 + 2 * i, u + i, v + i, d, alpha);
    }
    for (; i < cells; ++i) {
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
