// BGR <-> YCoCg exports: one forward and one inverse walker over member rows.
//
// A member is its transform (lossy sums, reversible lifting, or the 8-bit RGB
// pair with chroma biased by 128), its element types, the pixel stride of the
// packed side, and what it does with a width or height below 1. The element
// type of the result decides the store: 16-bit results keep the low 16 bits
// (and the reversible forward wraps every lifting step to 16 bits), 8-bit
// results are clamped after the sum has been wrapped to 16 bits.
#include "ycocg_pack.h"
#include "zil_common.h"

namespace zil::ycocg {
namespace {

enum class Xform : uint8_t { Lossy, Rev, Biased };
// Both: width or height below 1 is zilStatusBadSize. HeightOnly: a height
// below 1 returns zilStatusOk without work, the width is not looked at (a
// width below 1 makes every row empty).
enum class SizeRule : uint8_t { Both, HeightOnly };

struct Member {
    Xform xf;
    SizeRule size;
};

// Pixel formulas over V, one int32_t or a vector of 32- or 16-bit lanes: shifts are
// arithmetic, selections compute both sides. Sums are formed modulo 2^32
// (unsigned lanes would not shift arithmetically, so the 32-bit forms with
// extreme inputs go through Add and Sub below, which wrap explicitly).
typedef int32_t VI __attribute__((vector_size(16)));
typedef uint32_t VU __attribute__((vector_size(16)));

template <class V>
inline V Clamp(V x) {
    x = x < 0 ? V{} + 0 : x;
    return x > 255 ? V{} + 255 : x;
}
// The low 16 bits, sign-extended.
template <class V>
inline V Low16(V x) {
    if constexpr (sizeof(V) == 4) return int32_t(uint32_t(x) << 16) >> 16;
    else return V(__builtin_convertvector(x, VU) << 16) >> 16;
}
template <class V>
inline V Add(V a, V b) {
    if constexpr (sizeof(V) == 4) return int32_t(uint32_t(a) + uint32_t(b));
    else return V(__builtin_convertvector(a, VU) + __builtin_convertvector(b, VU));
}
template <class V>
inline V Sub(V a, V b) {
    if constexpr (sizeof(V) == 4) return int32_t(uint32_t(a) - uint32_t(b));
    else return V(__builtin_convertvector(a, VU) - __builtin_convertvector(b, VU));
}

// Eight 16-bit lanes, for the byte images. With byte inputs every step of the
// forward transforms stays within 16 bits, so wrapping a step to 16 bits does
// nothing there; the inverse from 16-bit planes only adds, subtracts and
// shifts its inputs, so its sums taken modulo 2^16 are the low 16 bits of the
// 32-bit sums, which is what an 8-bit store clamps.
typedef int16_t V8s __attribute__((vector_size(16)));
typedef uint16_t V8u __attribute__((vector_size(16)));
inline V8s Low16(V8s x) { return x; }
inline V8s Add(V8s a, V8s b) { return V8s(V8u(a) + V8u(b)); }
inline V8s Sub(V8s a, V8s b) { return V8s(V8u(a) - V8u(b)); }

template <class V>
struct Three {
    V a, b, c;
};

// (c0, g, c2) = (B, G, R), or (R, G, B) for the biased pair, to (Y, Co, Cg).
// Wide16: the results are 16-bit, so each lifting step wraps to 16 bits.
template <Xform X, bool Wide16, class V>
inline Three<V> FwdPixel(V c0, V g, V c2) {
    if constexpr (X == Xform::Lossy) {
        return {(c2 + 2 * g + c0 + 2) >> 2, (c2 - c0 + 1) >> 1, (2 * g - c2 - c0 + 2) >> 2};
    } else if constexpr (X == Xform::Rev) {
        auto w = [](V v) { return Wide16 ? Low16(v) : v; };
        const V o = w(c2 - c0);
        const V t = w(c0 + (o >> 1));
        const V q = w(g - t);
        return {t + (q >> 1), o, q};
    } else {
        return {(c0 + 2 * g + c2 + 2) >> 2, Clamp(((c0 - c2 + 1) >> 1) + 128), Clamp(((2 * g - c2 - c0 + 2) >> 2) + 128)};
    }
}
// (Y, Co, Cg) to (c0, g, c2) as in FwdPixel, before the store.
template <Xform X, class V>
inline Three<V> InvPixel(V y, V o, V q) {
    if constexpr (X == Xform::Lossy) {
        return {Sub(Sub(y, o), q), Add(y, q), Sub(Add(y, o), q)};
    } else if constexpr (X == Xform::Rev) {
        const V t = Sub(y, q >> 1);
        const V b = Sub(t, o >> 1);
        return {b, Add(q, t), Add(o, b)};
    } else {  // the biases cancel in R
        return {y + o - q, y + q - 128, y - o - q + 256};
    }
}

// Stores: 8-bit results wrap the sum to 16 bits, then clamp; 16- and 32-bit
// results keep their low bits.
template <class T, class V>
inline V Stored(V v) {
    if constexpr (sizeof(T) == 1) return Clamp(Low16(v));
    else return v;
}

ZilStatus Check(bool anyNull, ZilSize sz, SizeRule rule) {
    if (anyNull) return zilStatusNullPointer;
    if (rule == SizeRule::Both && TooSmall(sz)) return zilStatusBadSize;
    return zilStatusOk;
}

// ---- byte images, eight pixels a step ----------------------------------------------
// Eight packed byte pixels to their three channels in 16-bit lanes.
template <int PS>
inline Three<V8s> LoadPixels(const uint8_t* s) {
    __m128i a, b;
    pack::Load8<PS>(s, a, b);
    const __m128i m = _mm_set1_epi32(255);
    auto ch = [m](__m128i u, __m128i v) { return V8s(_mm_packs_epi32(_mm_and_si128(u, m), _mm_and_si128(v, m))); };
    return {ch(a, b), ch(_mm_srli_epi32(a, 8), _mm_srli_epi32(b, 8)), ch(_mm_srli_epi32(a, 16), _mm_srli_epi32(b, 16))};
}
// Eight results to packed byte pixels; packing with unsigned saturation is the
// clamp of a 16-bit sum to 0..255. PS 4 puts alpha in the fourth byte.
template <int PS>
inline void StorePixels(uint8_t* d, const Three<V8s>& o, __m128i alpha) {
    const __m128i b0 = _mm_packus_epi16(__m128i(o.a), __m128i(o.a));
    const __m128i b1 = _mm_packus_epi16(__m128i(o.b), __m128i(o.b));
    const __m128i b2 = _mm_packus_epi16(__m128i(o.c), __m128i(o.c));
    const __m128i p01 = _mm_unpacklo_epi8(b0, b1), p2a = _mm_unpacklo_epi8(b2, alpha);
    const __m128i lo = _mm_unpacklo_epi16(p01, p2a), hi = _mm_unpackhi_epi16(p01, p2a);
    if constexpr (PS == 4) pack::St(d, lo), pack::St(d + 16, hi);
    else pack::Store8x3(d, lo, hi);
}
// Eight plane samples of 8 or 16 bits, to and from 16-bit lanes.
template <class T>
inline V8s LoadPlane(const T* p) {
    if constexpr (sizeof(T) == 1) return V8s(_mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)), _mm_setzero_si128()));
    else return V8s(pack::Ld(p));
}
template <class T>
inline void StorePlane(T* p, V8s v) {
    if constexpr (sizeof(T) == 1) _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_packus_epi16(__m128i(v), __m128i(v)));
    else pack::St(p, __m128i(v));
}
inline constexpr int kStep = 8;

// Packed (B, G, R[, A]) or, for the biased pair, (R, G, B) to three planes.
// Byte pixels go eight at a time in 16-bit lanes.
template <const Member& M, int PS, class TI, class TO>
ZilStatus Forward(const TI* src, int srcStep, TO* const dst[3], int dstStep, ZilSize sz) {
    if (ZilStatus st = Check(AnyNull(src, dst) || AnyNull(dst[0], dst[1], dst[2]), sz, M.size)) return st;
    constexpr bool wide16 = sizeof(TO) == 2;
    TO *y = dst[0], *co = dst[1], *cg = dst[2];
    for (int row = 0; row < sz.height; ++row) {
        const TI* __restrict s = src;
        int x = 0;
        if constexpr (sizeof(TI) == 1) {
            for (; x + kStep <= sz.width; x += kStep) {
                const Three<V8s> i = LoadPixels<PS>(s + PS * x);
                const Three<V8s> o = FwdPixel<M.xf, wide16>(i.a, i.b, i.c);
                StorePlane(y + x, o.a), StorePlane(co + x, o.b), StorePlane(cg + x, o.c);
            }
        }
        for (; x < sz.width; ++x) {
            const Three<int32_t> o = FwdPixel<M.xf, wide16>(int32_t(s[PS * x]), int32_t(s[PS * x + 1]),
                                                            int32_t(s[PS * x + 2]));
            y[x] = TO(o.a), co[x] = TO(o.b), cg[x] = TO(o.c);
        }
        src = AdvanceT(src, srcStep);
        y = AdvanceT(y, dstStep), co = AdvanceT(co, dstStep), cg = AdvanceT(cg, dstStep);
    }
    return zilStatusOk;
}

// Three planes to packed (B, G, R) or (R, G, B); with PS 4 the fourth element
// of every pixel gets the low byte or word of alpha. Byte pixels go eight at a
// time in 16-bit lanes.
template <const Member& M, int PS, class TI, class TO>
ZilStatus Inverse(const TI* const src[3], int srcStep, TO* dst, int dstStep, ZilSize sz, int32_t alpha = 0) {
    if (ZilStatus st = Check(AnyNull(src, dst) || AnyNull(src[0], src[1], src[2]), sz, M.size)) return st;
    const TI *y = src[0], *co = src[1], *cg = src[2];
    const TO a = TO(alpha);
    for (int row = 0; row < sz.height; ++row) {
        TO* __restrict d = dst;
        int x = 0;
        if constexpr (sizeof(TO) == 1) {
            const __m128i av = _mm_set1_epi8(char(a));
            for (; x + kStep <= sz.width; x += kStep) {
                StorePixels<PS>(d + PS * x, InvPixel<M.xf>(LoadPlane(y + x), LoadPlane(co + x), LoadPlane(cg + x)), av);
            }
        }
        for (; x < sz.width; ++x) {
            const Three<int32_t> o = InvPixel<M.xf>(int32_t(y[x]), int32_t(co[x]), int32_t(cg[x]));
            d[PS * x] = TO(Stored<TO>(o.a)), d[PS * x + 1] = TO(Stored<TO>(o.b)), d[PS * x + 2] = TO(Stored<TO>(o.c));
            if constexpr (PS == 4) d[PS * x + 3] = a;
        }
        y = AdvanceT(y, srcStep), co = AdvanceT(co, srcStep), cg = AdvanceT(cg, srcStep);
        dst = AdvanceT(dst, dstStep);
    }
    return zilStatusOk;
}

constexpr Member kLossy{Xform::Lossy, SizeRule::Both}, kLossyH{Xform::Lossy, SizeRule::HeightOnly};
constexpr Member kRev{Xform::Rev, SizeRule::Both}, kRevH{Xform::Rev, SizeRule::HeightOnly};
constexpr Member kBiased{Xform::Biased, SizeRule::Both}, kBiasedH{Xform::Biased, SizeRule::HeightOnly};

}  // namespace

// ---- forward: one line per export (member, stride, image type, plane type) ----------------
#define ZIL_FWD(NAME, M, PS, TI, TO)                                                                     \
    ZIL_IMPL ZilStatus mx_zili##NAME(const TI* src, int srcStep, TO* const dst[3], int dstStep, ZilSize sz) { \
        return Forward<M, PS>(src, srcStep, dst, dstStep, sz);                                           \
    }
ZIL_FWD(BGRToYCoCg_8u16s_C3P3R, kLossy, 3, uint8_t, int16_t)
ZIL_FWD(BGRToYCoCg_8u16s_C4P3R, kLossy, 4, uint8_t, int16_t)
ZIL_FWD(SBGRToYCoCg_16s_C3P3R, kLossy, 3, int16_t, int16_t)
ZIL_FWD(SBGRToYCoCg_16s_C4P3R, kLossy, 4, int16_t, int16_t)
ZIL_FWD(SBGRToYCoCg_16s32s_C3P3R, kLossy, 3, int16_t, int32_t)
ZIL_FWD(SBGRToYCoCg_16s32s_C4P3R, kLossyH, 4, int16_t, int32_t)
ZIL_FWD(BGRToYCoCg_Rev_8u16s_C3P3R, kRev, 3, uint8_t, int16_t)
ZIL_FWD(BGRToYCoCg_Rev_8u16s_C4P3R, kRev, 4, uint8_t, int16_t)
ZIL_FWD(SBGRToYCoCg_Rev_16s_C3P3R, kRevH, 3, int16_t, int16_t)
ZIL_FWD(SBGRToYCoCg_Rev_16s_C4P3R, kRevH, 4, int16_t, int16_t)
ZIL_FWD(SBGRToYCoCg_Rev_16s32s_C3P3R, kRev, 3, int16_t, int32_t)
ZIL_FWD(SBGRToYCoCg_Rev_16s32s_C4P3R, kRevH, 4, int16_t, int32_t)
ZIL_FWD(RGBToYCoCg_8u_C3P3R, kBiased, 3, uint8_t, uint8_t)
#undef ZIL_FWD

// ---- inverse ------------------------------------------------------------------------------
#define ZIL_INV3(NAME, M, TI, TO)                                                                         \
    ZIL_IMPL ZilStatus mx_zili##NAME(const TI* const src[3], int srcStep, TO* dst, int dstStep, ZilSize sz) { \
        return Inverse<M, 3>(src, srcStep, dst, dstStep, sz);                                             \
    }
#define ZIL_INV4(NAME, M, TI, TO)                                                                         \
    ZIL_IMPL ZilStatus mx_zili##NAME(const TI* const src[3], int srcStep, TO* dst, int dstStep, ZilSize sz, \
                                    int32_t alpha) {                                                      \
        return Inverse<M, 4>(src, srcStep, dst, dstStep, sz, alpha);                                      \
    }
ZIL_INV3(YCoCgToBGR_16s8u_P3C3R, kLossyH, int16_t, uint8_t)
ZIL_INV4(YCoCgToBGR_16s8u_P3C4R, kLossyH, int16_t, uint8_t)
ZIL_INV3(YCoCgToSBGR_16s_P3C3R, kLossyH, int16_t, int16_t)
ZIL_INV4(YCoCgToSBGR_16s_P3C4R, kLossy, int16_t, int16_t)
ZIL_INV3(YCoCgToSBGR_32s16s_P3C3R, kLossy, int32_t, int16_t)
ZIL_INV4(YCoCgToSBGR_32s16s_P3C4R, kLossy, int32_t, int16_t)
ZIL_INV3(YCoCgToBGR_Rev_16s8u_P3C3R, kRevH, int16_t, uint8_t)
ZIL_INV4(YCoCgToBGR_Rev_16s8u_P3C4R, kRevH, int16_t, uint8_t)
ZIL_INV3(YCoCgToSBGR_Rev_16s_P3C3R, kRevH, int16_t, int16_t)
ZIL_INV4(YCoCgToSBGR_Rev_16s_P3C4R, kRevH, int16_t, int16_t)
ZIL_INV3(YCoCgToSBGR_Rev_32s16s_P3C3R, kRevH, int32_t, int16_t)
ZIL_INV4(YCoCgToSBGR_Rev_32s16s_P3C4R, kRevH, int32_t, int16_t)
ZIL_INV3(YCoCgToRGB_8u_P3C3R, kBiasedH, uint8_t, uint8_t)
#undef ZIL_INV3
#undef ZIL_INV4

}  // namespace zil::ycocg
