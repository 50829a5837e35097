// BGR <-> YCoCg exports: one forward and one inverse walker over member rows.
//
// A member is its transform (lossy sums, reversible lifting, or the 8-bit RGB
// pair with chroma biased by 128), its element types, the pixel stride of the
// packed side, and what it does with a width or height below 1. The element
// type of the result decides the store: 16-bit results keep the low 16 bits
// (and the reversible forward wraps every lifting step to 16 bits), 8-bit
// results are clamped after the sum has been wrapped to 16 bits.
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

template <class T>
inline T Store(int32_t v) {
    if constexpr (sizeof(T) == 1) return T(Clamp255(int16_t(v)));
    else return T(v);  // low 16 or all 32 bits
}
// A lifting step of a member whose results are 16-bit wraps to 16 bits.
template <class T>
inline int32_t Wrap(int32_t v) {
    return sizeof(T) == 2 ? int32_t(int16_t(v)) : v;
}
// Sums of 32-bit planes wrap modulo 2^32 rather than overflow.
inline int32_t Add(int32_t a, int32_t b) { return int32_t(uint32_t(a) + uint32_t(b)); }
inline int32_t Sub(int32_t a, int32_t b) { return int32_t(uint32_t(a) - uint32_t(b)); }

ZilStatus Check(bool anyNull, ZilSize sz, SizeRule rule) {
    if (anyNull) return zilStatusNullPointer;
    if (rule == SizeRule::Both && TooSmall(sz)) return zilStatusBadSize;
    return zilStatusOk;
}

// Packed (B, G, R[, A]) or, for the biased pair, (R, G, B) to three planes.
template <const Member& M, int PS, class TI, class TO>
ZilStatus Forward(const TI* src, int srcStep, TO* const dst[3], int dstStep, ZilSize sz) {
    if (ZilStatus st = Check(AnyNull(src, dst) || AnyNull(dst[0], dst[1], dst[2]), sz, M.size)) return st;
    TO *y = dst[0], *co = dst[1], *cg = dst[2];
    for (int row = 0; row < sz.height; ++row) {
        const TI* __restrict s = src;
        TO* __restrict py = y;
        TO* __restrict pco = co;
        TO* __restrict pcg = cg;
        for (int x = 0; x < sz.width; ++x) {
            const int32_t c0 = s[PS * x], g = s[PS * x + 1], c2 = s[PS * x + 2];
            if constexpr (M.xf == Xform::Lossy) {  // c0 = B, c2 = R
                py[x] = TO((c2 + 2 * g + c0 + 2) >> 2);
                pco[x] = TO((c2 - c0 + 1) >> 1);
                pcg[x] = TO((2 * g - c2 - c0 + 2) >> 2);
            } else if constexpr (M.xf == Xform::Rev) {
                const int32_t o = Wrap<TO>(c2 - c0);
                const int32_t t = Wrap<TO>(c0 + (o >> 1));
                const int32_t q = Wrap<TO>(g - t);
                py[x] = TO(t + (q >> 1));
                pco[x] = TO(o);
                pcg[x] = TO(q);
            } else {  // c0 = R, c2 = B; chroma offset by 128
                py[x] = TO((c0 + 2 * g + c2 + 2) >> 2);
                pco[x] = TO(Clamp255(((c0 - c2 + 1) >> 1) + 128));
                pcg[x] = TO(Clamp255(((2 * g - c2 - c0 + 2) >> 2) + 128));
            }
        }
        src = AdvanceT(src, srcStep);
        y = AdvanceT(y, dstStep), co = AdvanceT(co, dstStep), cg = AdvanceT(cg, dstStep);
    }
    return zilStatusOk;
}

// Three planes to packed (B, G, R) or (R, G, B); with PS 4 the fourth element
// of every pixel gets the low byte or word of alpha.
template <const Member& M, int PS, class TI, class TO>
ZilStatus Inverse(const TI* const src[3], int srcStep, TO* dst, int dstStep, ZilSize sz, int32_t alpha = 0) {
    if (ZilStatus st = Check(AnyNull(src, dst) || AnyNull(src[0], src[1], src[2]), sz, M.size)) return st;
    const TI *y = src[0], *co = src[1], *cg = src[2];
    const TO a = TO(alpha);
    for (int row = 0; row < sz.height; ++row) {
        const TI* __restrict py = y;
        const TI* __restrict pco = co;
        const TI* __restrict pcg = cg;
        TO* __restrict d = dst;
        for (int x = 0; x < sz.width; ++x) {
            const int32_t Y = py[x], o = pco[x], q = pcg[x];
            int32_t c0, g, c2;
            if constexpr (M.xf == Xform::Lossy) {  // c0 = B, c2 = R
                c2 = Sub(Add(Y, o), q);
                g = Add(Y, q);
                c0 = Sub(Sub(Y, o), q);
            } else if constexpr (M.xf == Xform::Rev) {
                const int32_t t = Sub(Y, q >> 1);
                g = Add(q, t);
                c0 = Sub(t, o >> 1);
                c2 = Add(o, c0);
            } else {  // c0 = R, c2 = B; the biases cancel in R
                c0 = Y + o - q;
                g = Y + q - 128;
                c2 = Y - o - q + 256;
            }
            d[PS * x] = Store<TO>(c0), d[PS * x + 1] = Store<TO>(g), d[PS * x + 2] = Store<TO>(c2);
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
