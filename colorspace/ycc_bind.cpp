// RGB <-> photographic YCC: 16 exports, one kernel per depth and direction,
// shared by C3R and AC4R through the pixel stride.
//
// Y is luma times about 0.713; C1 = 0.437 (B - luma) and C2 = 0.532 (R - luma)
// offset by 156 and 137 (on 0..255). Each depth has arithmetic of its own:
// fixed point at 8u, coefficients folded into one single-precision row per
// channel at 16u, luma first and then the gains at 16s and 32f. The forward
// direction never clamps (low bits are stored); the inverse always clamps.
#include "xyz_walk16.h"

namespace zil::cie {
namespace {

// Luma weights and gains, single precision.
inline constexpr float kWR = Fb(0x3E991687), kWG = Fb(0x3F1645A2), kWB = Fb(0x3DE978D5);  // 0.299 0.587 0.114
inline constexpr float kGainY = Fb(0x3F3698A7), kGainC1 = Fb(0x3EDFAC78), kGainC2 = Fb(0x3F082BE9);
inline constexpr float kOff1 = Fb(0x471C9C80), kOff2 = Fb(0x47098980);  // 40092.5, 35209.5: offset + 0.5
inline constexpr float kOff1f = Fb(0x3F1C9C9D), kOff2f = Fb(0x3F09898A);  // 156/255, 137/255
// Inverse gains.
inline constexpr float kInvY = Fb(0x3FADE00D), kInvC1 = Fb(0x400DF213), kInvC2 = Fb(0x3FE926E9);
inline constexpr float kG1 = Fb(0x3E46A7F0), kG2 = Fb(0x3F024DD3);  // 0.194, 0.509

// ---- forward ------------------------------------------------------------------
// 8u: t = luma on a scale of 16384; the colour differences are shifted down by
// 10 (arithmetic) before their gains; no rounding add. 156 and 137 are added
// to the low byte, which is what the minus 100 and minus 119 of the byte do.
struct Fwd8u {
    using S = uint8_t;
    using D = uint8_t;
    static constexpr bool kRgbIn = true;
    static void Px(S r, S g, S b, D* o) {
        const int32_t t = 4898 * r + 9617 * g + 1867 * b;
        o[0] = uint8_t(((t >> 10) * 2921) >> 16);
        o[1] = uint8_t(((((int32_t(b) << 14) - t) >> 10) * 1789 >> 16) + 156);
        o[2] = uint8_t(((((int32_t(r) << 14) - t) >> 10) * 2178 >> 16) + 137);
    }
    // Four pixels from R | B << 16 and G | x << 16. The shifted differences
    // fit 16 bits, so a multiply-add with a zero partner forms each gain's
    // product; the offset enters as 2^16 times itself before the shift.
    static void Four(__m128i rb, __m128i gx, __m128i* sum) {
        const __m128i t = _mm_add_epi32(_mm_madd_epi16(rb, px4::Coeffs(4898, 1867)),
                                        _mm_madd_epi16(gx, px4::Coeffs(9617, 0)));
        const __m128i bl = _mm_slli_epi32(_mm_srli_epi32(rb, 16), 14);
        const __m128i rl = _mm_srli_epi32(_mm_slli_epi32(rb, 16), 2);
        sum[0] = _mm_madd_epi16(_mm_srai_epi32(t, 10), px4::Coeffs(2921, 0));
        sum[1] = _mm_add_epi32(_mm_madd_epi16(_mm_srai_epi32(_mm_sub_epi32(bl, t), 10), px4::Coeffs(1789, 0)),
                               _mm_set1_epi32(156 << 16));
        sum[2] = _mm_add_epi32(_mm_madd_epi16(_mm_srai_epi32(_mm_sub_epi32(rl, t), 10), px4::Coeffs(2178, 0)),
                               _mm_set1_epi32(137 << 16));
    }
    // The low byte of each shifted sum.
    static __m128i Narrow(__m128i a, __m128i b) {
        return _mm_and_si128(_mm_packs_epi32(_mm_srai_epi32(a, 16), _mm_srai_epi32(b, 16)), _mm_set1_epi16(0xFF));
    }
};

// 16u: gains folded into the weights; the first product meets the constant
// (offset plus 0.5) before the other two.
struct Fwd16u {
    using S = uint16_t;
    using D = uint16_t;
    static constexpr bool kRgbIn = true;
    static constexpr float kY[3] = {Fb(0x3E5A62AA), Fb(0x3ED65E46), Fb(0x3DA6871E)};
    static constexpr float kC1[3] = {Fb(0xBE05C183), Fb(0x3E834BB6), Fb(0x3EC62C77)};
    static constexpr float kC2[3] = {Fb(0x3EBEE99A), Fb(0x3E9FDD87), Fb(0x3D78607F)};
    static void Px(S r0, S g0, S b0, D* o) {
        const float r = r0, g = g0, b = b0;
        o[0] = uint16_t(Trunc(kY[0] * r + 0.5f + kY[1] * g + kY[2] * b));
        o[1] = uint16_t(Trunc(kC1[0] * r + kOff1 - kC1[1] * g + kC1[2] * b));
        o[2] = uint16_t(Trunc(kC2[0] * r + kOff2 - kC2[1] * g - kC2[2] * b));
    }
};

// 16s: biased to 0..65535, luma first, then the gains.
struct Fwd16s {
    using S = int16_t;
    using D = int16_t;
    static constexpr bool kRgbIn = true;
    static void Px(S r0, S g0, S b0, D* o) {
        const float r = float(r0 + 32768), g = float(g0 + 32768), b = float(b0 + 32768);
        const float l = kWR * r + kWG * g + kWB * b;
        o[0] = int16_t(Trunc(kGainY * l + 0.5f) - 32768);
        o[1] = int16_t(Trunc((b - l) * kGainC1 + kOff1) - 32768);
        o[2] = int16_t(Trunc((r - l) * kGainC2 + kOff2) - 32768);
    }
};

struct Fwd32f {
    using S = float;
    using D = float;
    static constexpr bool kRgbIn = true;
    static void Px(S r, S g, S b, D* o) {
        const float l = kWR * r + kWG * g + kWB * b;
        o[0] = kGainY * l;
        o[1] = (b - l) * kGainC1 + kOff1f;
        o[2] = (r - l) * kGainC2 + kOff2f;
    }
};

// ---- inverse ------------------------------------------------------------------
// 8u: a = 5564 Y, p = 9084 C1, q = 7460 C2; the offsets enter as 9084 * 156
// and 7460 * 137. R and B on a scale of 4096; G on 65536 from the two
// differences shifted down by 8. Every index stays within -250..561.
struct Inv8u {
    using S = uint8_t;
    using D = uint8_t;
    static constexpr bool kRgbIn = false;
    static constexpr int32_t kP0 = 9084 * 156, kQ0 = 7460 * 137;
    static_assert(kP0 == 1417104 && kQ0 == 1022020, "offsets of the colour differences");
    static void Px(S y, S c1, S c2, D* o) {
        const int32_t a = 5564 * y, p = 9084 * c1 - kP0, q = 7460 * c2 - kQ0;
        o[0] = uint8_t(Clamp255((a + q) >> 12));
        o[1] = uint8_t(Clamp255((16 * a - 794 * (p >> 8) - 2084 * (q >> 8)) >> 16));
        o[2] = uint8_t(Clamp255((a + p) >> 12));
    }
    // Four pixels from Y | C2 << 16 and C1 | x << 16; p and q shifted down by
    // 8 fit 16 bits, so multiply-adds with a zero partner form their products.
    static void Four(__m128i yc2, __m128i c1x, __m128i* sum) {
        const __m128i a = _mm_madd_epi16(yc2, px4::Coeffs(5564, 0));
        const __m128i p = _mm_sub_epi32(_mm_madd_epi16(c1x, px4::Coeffs(9084, 0)), _mm_set1_epi32(kP0));
        const __m128i q = _mm_sub_epi32(_mm_madd_epi16(yc2, px4::Coeffs(0, 7460)), _mm_set1_epi32(kQ0));
        const __m128i g = _mm_sub_epi32(_mm_slli_epi32(a, 4), _mm_madd_epi16(_mm_srai_epi32(p, 8), px4::Coeffs(794, 0)));
        sum[0] = _mm_srai_epi32(_mm_add_epi32(a, q), 12);
        sum[1] = _mm_srai_epi32(_mm_sub_epi32(g, _mm_madd_epi16(_mm_srai_epi32(q, 8), px4::Coeffs(2084, 0))), 16);
        sum[2] = _mm_srai_epi32(_mm_add_epi32(a, p), 12);
    }
    static constexpr auto Narrow = Pack32;
};

// 16u and 16s: Bias 32768 folds the 16s bias into the offsets (40092 - 32768
// = 7324, 35209 - 32768 = 2441) and into Y; the result is clamped on the
// unbiased scale and then the bias is taken off again.
template <class T, int32_t Bias>
struct Inv16 {
    using S = T;
    using D = T;
    static constexpr bool kRgbIn = false;
    static void Px(S y0, S c10, S c20, D* o) {
        const float c1 = float(int32_t(c10) - (40092 - Bias)) * kInvC1;
        const float c2 = float(int32_t(c20) - (35209 - Bias)) * kInvC2;
        const float y = float(int32_t(y0) + Bias) * kInvY + 0.5f;
        o[0] = T(Clamp(Trunc(y + c2), 0, 65535) - Bias);
        o[1] = T(Clamp(Trunc(y - kG1 * c1 - kG2 * c2), 0, 65535) - Bias);
        o[2] = T(Clamp(Trunc(y + c1), 0, 65535) - Bias);
    }
};

struct Inv32f {
    using S = float;
    using D = float;
    static constexpr bool kRgbIn = false;
    static void Px(S y0, S c10, S c20, D* o) {
        const float c1 = (c10 - kOff1f) * kInvC1, c2 = (c20 - kOff2f) * kInvC2, y = y0 * kInvY;
        o[0] = Unit(y + c2);
        o[1] = Unit(y - kG1 * c1 - c2 * kG2);
        o[2] = Unit(y + c1);
    }
};

using Inv16u = Inv16<uint16_t, 0>;
using Inv16s = Inv16<int16_t, 32768>;

}  // namespace
}  // namespace zil::cie

using namespace zil::cie;

ZIL_CIE_ROW16(Fwd8u)
ZIL_CIE_ROW16(Inv8u)

// Row layers step in whole samples (SHIFT 1 or 2) except where SHIFT is 0.
//            conversion depth functor SHIFT
ZIL_CIE_DEPTH(RGBToYCC, 8u, Fwd8u, 0)
ZIL_CIE_DEPTH(RGBToYCC, 16u, Fwd16u, 1)
ZIL_CIE_DEPTH(RGBToYCC, 16s, Fwd16s, 1)
ZIL_CIE_DEPTH(RGBToYCC, 32f, Fwd32f, 2)
ZIL_CIE_DEPTH(YCCToRGB, 8u, Inv8u, 0)
ZIL_CIE_DEPTH(YCCToRGB, 16u, Inv16u, 1)
ZIL_CIE_DEPTH(YCCToRGB, 16s, Inv16s, 1)
ZIL_CIE_DEPTH(YCCToRGB, 32f, Inv32f, 2)
