// Gray family exports. Every member tests src and dst for null, then the
// size; caller weights are not tested (null selects the defaults). The 16u,
// 16s and 32f check layers turn the byte steps into element counts by an
// arithmetic shift, so a step's remainder is dropped; 8u and 64f walk in
// bytes. RGBToGray is ColorToGray without weights: both reach one row layer
// per element type, which prepares the weights once and walks the rows with
// a channel stride of 3 or 4 (the fourth channel is passed over).
#include "gray_kernels.h"
#include "yuv_rows.h"

namespace zil::gray {

using yuv::FormA;

namespace {

// Row layer mx_myRGBToGray_<E>_C3C1R (steps in elements) and its kernel
// mx_innerRGBToGray_<E>_C3C1R; KERNEL<PS> converts one row.
#define ZIL_GRAY_LAYERS(MY, INNER, T, W, PREP, KERNEL)                                              \
    ZIL_IMPL void INNER(const T* s, T* d, int w, int stride, const Weights<W>& k) {                       \
        if (stride == 4)                                                                                  \
            KERNEL<4>(s, d, w, k);                                                                  \
        else                                                                                              \
            KERNEL<3>(s, d, w, k);                                                                  \
    }                                                                                                     \
    ZIL_IMPL void MY(const T* s, T* d, int w, int h, int ss, int ds, int stride, const float* coeffs) { \
        const Weights<W> k = PREP(coeffs);                                                                \
        WalkGray<false>(s, d, h, ss, ds, [&](const T* a, T* b) { INNER(a, b, w, stride, k); });          \
    }

ZIL_GRAY_LAYERS(mx_myRGBToGray_8u_C3C1R, mx_innerRGBToGray_8u_C3C1R, uint8_t, int32_t, PrepareQ15, GrayRowQ15)
ZIL_GRAY_LAYERS(mx_myRGBToGray_16u_C3C1R, mx_innerRGBToGray_16u_C3C1R, uint16_t, float, Prepare<float>, GrayRowRounded)
ZIL_GRAY_LAYERS(mx_myRGBToGray_16s_C3C1R, mx_innerRGBToGray_16s_C3C1R, int16_t, float, Prepare<float>, GrayRowRounded)
ZIL_GRAY_LAYERS(mx_myRGBToGray_32f_C3C1R, mx_innerRGBToGray_32f_C3C1R, float, float, Prepare<float>, GrayRowLinear)
#undef ZIL_GRAY_LAYERS

template <int Shift, class T, class My>
inline ZilStatus ToGray(const T* src, int srcStep, T* dst, int dstStep, ZilSize sz, int stride, const float* coeffs,
                        My my) {
    if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;
    my(src, dst, sz.width, sz.height, srcStep >> Shift, dstStep >> Shift, stride, coeffs);
    return zilStatusOk;
}

}  // namespace

// One line per export: the fixed-weight name and the caller-weight name of a
// layout, with the element type, the step shift and the channel stride.
#define ZIL_TO_GRAY(FIXED, WEIGHTED, T, SHIFT, STRIDE, MY)                                                   \
    ZIL_IMPL ZilStatus mx_##FIXED(const T* src, int srcStep, T* dst, int dstStep, ZilSize sz) {              \
        return ToGray<SHIFT>(src, srcStep, dst, dstStep, sz, STRIDE, nullptr, MY);                         \
    }                                                                                                      \
    ZIL_IMPL ZilStatus mx_##WEIGHTED(const T* src, int srcStep, T* dst, int dstStep, ZilSize sz,             \
                                     const float* coeffs) {                                                 \
        return ToGray<SHIFT>(src, srcStep, dst, dstStep, sz, STRIDE, coeffs, MY);                          \
    }
ZIL_TO_GRAY(ziliRGBToGray_8u_C3C1R, ziliColorToGray_8u_C3C1R, uint8_t, 0, 3, mx_myRGBToGray_8u_C3C1R)
ZIL_TO_GRAY(ziliRGBToGray_8u_AC4C1R, ziliColorToGray_8u_AC4C1R, uint8_t, 0, 4, mx_myRGBToGray_8u_C3C1R)
ZIL_TO_GRAY(ziliRGBToGray_16u_C3C1R, ziliColorToGray_16u_C3C1R, uint16_t, 1, 3, mx_myRGBToGray_16u_C3C1R)
ZIL_TO_GRAY(ziliRGBToGray_16u_AC4C1R, ziliColorToGray_16u_AC4C1R, uint16_t, 1, 4, mx_myRGBToGray_16u_C3C1R)
ZIL_TO_GRAY(ziliRGBToGray_16s_C3C1R, ziliColorToGray_16s_C3C1R, int16_t, 1, 3, mx_myRGBToGray_16s_C3C1R)
ZIL_TO_GRAY(ziliRGBToGray_16s_AC4C1R, ziliColorToGray_16s_AC4C1R, int16_t, 1, 4, mx_myRGBToGray_16s_C3C1R)
ZIL_TO_GRAY(ziliRGBToGray_32f_C3C1R, ziliColorToGray_32f_C3C1R, float, 2, 3, mx_myRGBToGray_32f_C3C1R)
ZIL_TO_GRAY(ziliRGBToGray_32f_AC4C1R, ziliColorToGray_32f_AC4C1R, float, 2, 4, mx_myRGBToGray_32f_C3C1R)
#undef ZIL_TO_GRAY

// ---- 64f: double weights, steps in bytes ----------------------------------------------
#define ZIL_GRAY_64F(NAME, OWN, INNER, PS)                                                                 \
    ZIL_IMPL void INNER(const double* s, double* d, int w, const Weights<double>& k) {                     \
        GrayRowLinear<PS>(s, d, w, k);                                                                     \
    }                                                                                                      \
    ZIL_IMPL void OWN(const double* s, int ss, double* d, int ds, ZilSize sz, const double* coeffs) {      \
        const Weights<double> k = Prepare(coeffs);                                                         \
        WalkGray<true>(s, d, sz.height, ss, ds, [&](const double* a, double* b) { INNER(a, b, sz.width, k); }); \
    }                                                                                                      \
    ZIL_IMPL ZilStatus mx_##NAME(const double* src, int srcStep, double* dst, int dstStep, ZilSize sz,      \
                                 const double* coeffs) {                                                    \
        if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;                                        \
        OWN(src, srcStep, dst, dstStep, sz, coeffs);                                                       \
        return zilStatusOk;                                                                                \
    }
ZIL_GRAY_64F(ziliColorToGray_64f_C3C1R, mx_ownColorToGray_64f_C3C1R, mx_innerColorToGray_64f_C3C1R, 3)
ZIL_GRAY_64F(ziliColorToGray_64f_AC4C1R, mx_ownColorToGray_64f_AC4C1R, mx_innerColorToGray_64f_AC4C1R, 4)
#undef ZIL_GRAY_64F

// ---- gray to colour ---------------------------------------------------------------
namespace {
// Float samples travel as their bit patterns.
typedef uint32_t Bits32 __attribute__((may_alias));

template <int PS, int Shift, class U>
inline ZilStatus GrayToColor(const U* src, int srcStep, U* dst, int dstStep, ZilSize sz, U alpha) {
    if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;
    WalkGray<false>(src, dst, sz.height, srcStep >> Shift, dstStep >> Shift,
                    [&](const U* a, U* b) { GrayToColorRow<PS>(a, b, sz.width, alpha); });
    return zilStatusOk;
}
inline Bits32 BitsOf(float f) {
    Bits32 u;
    __builtin_memcpy(&u, &f, 4);
    return u;
}
}  // namespace

ZIL_IMPL ZilStatus mx_ziliGrayToRGB_8u_C1C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    return GrayToColor<3, 0>(src, srcStep, dst, dstStep, sz, uint8_t(0));
}
ZIL_IMPL ZilStatus mx_ziliGrayToRGB_16u_C1C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep,
                                             ZilSize sz) {
    return GrayToColor<3, 1>(src, srcStep, dst, dstStep, sz, uint16_t(0));
}
ZIL_IMPL ZilStatus mx_ziliGrayToRGB_32f_C1C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize sz) {
    return GrayToColor<3, 2>(reinterpret_cast<const Bits32*>(src), srcStep, reinterpret_cast<Bits32*>(dst), dstStep,
                             sz, Bits32(0));
}
ZIL_IMPL ZilStatus mx_ziliGrayToRGB_8u_C1C4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz,
                                            uint8_t alpha) {
    return GrayToColor<4, 0>(src, srcStep, dst, dstStep, sz, alpha);
}
ZIL_IMPL ZilStatus mx_ziliGrayToRGB_16u_C1C4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep,
                                             ZilSize sz, uint16_t alpha) {
    return GrayToColor<4, 1>(src, srcStep, dst, dstStep, sz, alpha);
}
ZIL_IMPL ZilStatus mx_ziliGrayToRGB_32f_C1C4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize sz,
                                             float alpha) {
    return GrayToColor<4, 2>(reinterpret_cast<const Bits32*>(src), srcStep, reinterpret_cast<Bits32*>(dst), dstStep,
                             sz, BitsOf(alpha));
}

// ---- luma of packed 4:2:2 -----------------------------------------------------------
// Pixel x is byte 2x of the Y0 Cb Y1 Cr stream; any width, chroma passed over.
ZIL_IMPL ZilStatus mx_ziliYCbCr422ToGray_8u_C2C1R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep,
                                                 ZilSize sz) {
    if (ZilStatus st = FormA(AnyNull(src, dst), sz)) return st;
    WalkGray<true>(src, dst, sz.height, srcStep, dstStep, [&](const uint8_t* __restrict a, uint8_t* __restrict b) {
        for (int x = 0; x < sz.width; ++x) b[x] = a[2 * x];
    });
    return zilStatusOk;
}

}  // namespace zil::gray
