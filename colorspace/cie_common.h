// XYZ, LUV, Lab and YCC: what the four conversions share.
//
// Each conversion is a pixel functor `Px` over three samples, in the order of
// its colour word (R, G, B or X, Y, Z / L, U, V / L, a, b / Y, C1, C2). A row
// kernel applies it along a row of interleaved pixels (3 or 4 samples a
// pixel; a fourth sample is neither read nor written), optionally exchanging
// channels 0 and 2 on the RGB side for the BGR members; a row layer walks the
// rows. What differs between members of a depth is data: the functor, the
// pixel stride, the swap and how the byte step is turned into a row advance.
#pragma once

#include "zil_common.h"

#include "primitives/power.h"

namespace zil::cie {

// A float or double constant given by its bit pattern.
constexpr float Fb(uint32_t bits) { return __builtin_bit_cast(float, bits); }
constexpr double Db(uint64_t bits) { return __builtin_bit_cast(double, bits); }

// Unaligned sample access: byte steps need not be multiples of the sample size.
template <class T>
inline T Ld(const T* p) {
    T v;
    __builtin_memcpy(&v, p, sizeof v);
    return v;
}
template <class T>
inline void St(T* p, T v) { __builtin_memcpy(p, &v, sizeof v); }

// Float to integer by truncation toward zero, as the processor's truncating
// conversion does it: a value outside the 32-bit range, or a NaN, gives the
// integer 0x80000000.
inline int32_t Trunc(float x) {
    return (x >= -2147483648.f && x < 2147483648.f) ? int32_t(x) : INT32_MIN;
}
inline int32_t Trunc(double x) {
    return (x > -2147483649.0 && x < 2147483648.0) ? int32_t(x) : INT32_MIN;
}
constexpr int32_t Clamp(int32_t v, int32_t lo, int32_t hi) { return v < lo ? lo : (v > hi ? hi : v); }
// Limits a float to 0..1 by two comparisons; a NaN passes through.
inline float Unit(float v) { return v < 0.f ? 0.f : (v > 1.f ? 1.f : v); }

// ---- The colour matrices, nearest single of each decimal ------------------------
// Forward, RGB to XYZ.
inline constexpr float kXR = 0.412453f, kXG = 0.35758f, kXB = 0.180423f;
inline constexpr float kYR = 0.212671f, kYG = 0.71516f, kYB = 0.072169f;
inline constexpr float kZR = 0.019334f, kZG = 0.119193f, kZB = 0.950227f;
// Inverse, XYZ to RGB.
inline constexpr float kRX = 3.240479f, kRY = -1.53715f, kRZ = -0.498535f;
inline constexpr float kGX = -0.969256f, kGY = 1.875991f, kGZ = 0.041556f;
inline constexpr float kBX = 0.055648f, kBY = -0.204043f, kBZ = 1.057311f;
// The blue row's Z term where it is formed in double.
inline constexpr double kBZd = 1.057311;

// Cube-root threshold on Y (LUV and Lab) and the CIE linear slope for L.
inline constexpr float kThresh = Fb(0x3C1118C2);  // 0.008856
inline constexpr float kSlopeL = Fb(0x4461D333);  // 903.3
inline constexpr double kThird = Db(0x3FD5555555555555);

// The cube root of a float, as the exact double power routine gives it.
inline double CubeRoot(float v) { return mx_zilsPowOne(double(v), kThird); }

// The same narrowed to single, fast. An estimate e of the cube root within a
// few units in 2^-45 (two Halley steps from a 3% start: 0.032^9 < 2^-44)
// lies well within e (1 +- 2^-40) of the power routine's result, whose error
// is below one unit of the last place, 1/3 being short of a third by 2^-54
// relative and ln v small. When both ends of that interval round to the same
// single, so does the power routine's result, and e's rounding is returned;
// otherwise (about one value in 2^16, and infinities and NaNs) the power
// routine decides. Only for v above the cube-root threshold (v > 0).
inline double CbrtEstimate(float v) {
    const double y = v;
    double r = __builtin_bit_cast(float, __builtin_bit_cast(uint32_t, v) / 3u + 0x2A5137A0u);
    for (int i = 0; i < 2; ++i) {
        const double r3 = r * r * r;
        r = r * (r3 + 2.0 * y) / (2.0 * r3 + y);
    }
    return r;
}
inline float CubeRootF(float v) {
    const double e = CbrtEstimate(v);
    const float lo = float(e * (1.0 - 0x1p-40)), hi = float(e * (1.0 + 0x1p-40));
    return lo == hi ? lo : float(CubeRoot(v));
}

// ---- Row kernel and row layer -----------------------------------------------------
// F::S, F::D: sample types; F::kRgbIn: the RGB side is the source (else the
// destination). Swap exchanges channels 0 and 2 of the RGB side.
// A functor with a static Block (cie_lanes.h) converts eight pixels at a time;
// RunBlocks does whole blocks and returns the pixels done, the rest go singly.
template <class F, int PS, int I0, int O0, class S, class D>
int RunBlocks(const S* s, D* d, int width);
template <class F, class = void>
struct HasBlock { static constexpr bool value = false; };
template <class F>
struct HasBlock<F, decltype(void(&F::Block))> { static constexpr bool value = true; };

template <class F, int PS, bool Swap>
inline void Row(const typename F::S* __restrict s, typename F::D* __restrict d, int width) {
    constexpr int i0 = (Swap && F::kRgbIn) ? 2 : 0, o0 = (Swap && !F::kRgbIn) ? 2 : 0;
    int x = 0;
    if constexpr (HasBlock<F>::value) {
        x = RunBlocks<F, PS, i0, o0>(s, d, width);
        s += ptrdiff_t(x) * PS, d += ptrdiff_t(x) * PS;
    }
    for (; x < width; ++x, s += PS, d += PS) {
        typename F::D o[3];
        F::Px(Ld(s + i0), Ld(s + 1), Ld(s + 2 - i0), o);
        St(d + o0, o[0]);
        St(d + 1, o[1]);
        St(d + 2 - o0, o[2]);
    }
}

// Row kernel with the pixel stride and swap flag as arguments.
template <class F>
inline void RowBy(const typename F::S* s, typename F::D* d, int width, int stride, int swap) {
    if (stride == 3) swap ? Row<F, 3, true>(s, d, width) : Row<F, 3, false>(s, d, width);
    else swap ? Row<F, 4, true>(s, d, width) : Row<F, 4, false>(s, d, width);
}

// Row advance in bytes from a byte step. Shift 0 uses the step as it is; shift
// k takes it in samples (arithmetic shift right by k, so an odd byte step
// loses its remainder) and advances by whole samples.
template <int Shift>
constexpr ptrdiff_t Advance(int step) { return ptrdiff_t(step >> Shift) * (ptrdiff_t(1) << Shift); }

template <class T>
inline T* Bump(T* p, ptrdiff_t bytes) { return AdvanceT(p, bytes); }

// Check layer common to all 62 members: null source or destination, then the
// extent below 1 by 1; steps are not examined.
template <class S, class D>
inline ZilStatus Check(const S* src, const D* dst, ZilSize sz) {
    if (AnyNull(src, dst)) return zilStatusNullPointer;
    if (TooSmall(sz)) return zilStatusBadSize;
    return zilStatusOk;
}

}  // namespace zil::cie

// Named layers of a depth: mx_inner<STEM> converts one row (stride 3 or 4,
// swap 0 or 1), mx_my<STEM> walks the rows, advancing by Advance<SHIFT>.
#define ZIL_CIE_LAYERS(STEM, F, SHIFT)                                                                       \
    ZIL_IMPL void mx_inner##STEM(const F::S* s, F::D* d, int width, int stride, int swap) {                 \
        ::zil::cie::RowBy<F>(s, d, width, stride, swap);                                                  \
    }                                                                                                     \
    ZIL_IMPL void mx_my##STEM(const F::S* s, int srcStep, F::D* d, int dstStep, ZilSize sz, int stride,    \
                              int swap) {                                                                 \
        const ptrdiff_t sa = ::zil::cie::Advance<SHIFT>(srcStep), da = ::zil::cie::Advance<SHIFT>(dstStep); \
        for (int y = 0; y < sz.height; ++y, s = ::zil::cie::Bump(s, sa), d = ::zil::cie::Bump(d, da))       \
            mx_inner##STEM(s, d, sz.width, stride, swap);                                                 \
    }

// One export: checks, then the row layer of STEM with its stride and swap.
#define ZIL_CIE_EXPORT(NAME, STEM, F, STRIDE, SWAP)                                                        \
    ZIL_IMPL ZilStatus mx_##NAME(const F::S* src, int srcStep, F::D* dst, int dstStep, ZilSize sz) {      \
        if (ZilStatus st = ::zil::cie::Check(src, dst, sz)) return st;                                     \
        mx_my##STEM(src, srcStep, dst, dstStep, sz, STRIDE, SWAP);                                        \
        return zilStatusOk;                                                                               \
    }

// One depth of a conversion: its named layers and its C3R and AC4R exports.
#define ZIL_CIE_DEPTH(CONV, DEPTH, F, SHIFT)                                      \
    ZIL_CIE_LAYERS(CONV##_##DEPTH##_C3R, F, SHIFT)                                \
    ZIL_CIE_EXPORT(zili##CONV##_##DEPTH##_C3R, CONV##_##DEPTH##_C3R, F, 3, 0)      \
    ZIL_CIE_EXPORT(zili##CONV##_##DEPTH##_AC4R, CONV##_##DEPTH##_C3R, F, 4, 0)
