// RGB <-> CIE XYZ: 16 exports over four depths in C3R and AC4R.
//
// 8u is fixed point (the matrices times 65536, fraction dropped); 16u and 16s
// are single precision with the 0.5 added after the first product, except the
// 16u blue row of the inverse, which finishes in double; 32f is plain single
// precision. Of the forward rows only Z can leave the range and only Z is
// clamped; the inverse clamps all three.
#include "xyz_walk16.h"

namespace zil::cie {
namespace {

// Q16 matrices: each coefficient times 65536, truncated.
using Q16Matrix = int32_t[3][3];
inline constexpr Q16Matrix kQFwd = {{27030, 23434, 11824}, {13937, 46868, 4729}, {1267, 7811, 62274}};
inline constexpr Q16Matrix kQInv = {{212368, -100738, -32671}, {-63521, 122944, 2723}, {3646, -13372, 69291}};
static_assert(int32_t(double(kXR) * 65536) == kQFwd[0][0] && int32_t(double(kZB) * 65536) == kQFwd[2][2] &&
                  int32_t(double(kRX) * 65536) == kQInv[0][0] && int32_t(double(kGX) * 65536) == kQInv[1][0],
              "Q16 matrices are the single-precision coefficients, truncated");

// 8u: sums of products shifted right by 16 (arithmetic: negative sums floor),
// no rounding add. Channels from ClampFrom on are clamped to 0..255, the others
// stored as their low byte: forward X and Y stay below 256 (their coefficients
// sum below 65536) and only Z is clamped; the inverse clamps all three.
template <const Q16Matrix& K, int ClampFrom, bool RgbIn>
struct Fixed8u {
    using S = uint8_t;
    using D = uint8_t;
    static constexpr bool kRgbIn = RgbIn;
    static void Px(S a, S b, S c, D* o) {
        for (int i = 0; i < 3; ++i) {
            const int32_t v = (K[i][0] * a + K[i][1] * b + K[i][2] * c) >> 16;
            o[i] = uint8_t(i >= ClampFrom ? Clamp255(v) : v);
        }
    }
    // Four pixels: the same sums, each weight split into a multiple of 65536
    // and a 16-bit rest (ycbcr::DotQ16x4). Stored clamped: the channels Px
    // keeps as their low byte lie within 0..255.
    static void Four(__m128i ac, __m128i bx, __m128i* sum) {
        sum[0] = ycbcr::DotQ16x4<K[0][0], K[0][2], K[0][1], 0>(ac, bx);
        sum[1] = ycbcr::DotQ16x4<K[1][0], K[1][2], K[1][1], 0>(ac, bx);
        sum[2] = ycbcr::DotQ16x4<K[2][0], K[2][2], K[2][1], 0>(ac, bx);
    }
    static constexpr auto Narrow = Pack32;
};
using Fwd8u = Fixed8u<kQFwd, 2, true>;
using Inv8u = Fixed8u<kQInv, 0, false>;

// 16-bit forward on the 0..65535 scale; Bias is 32768 for 16s, else 0.
template <class T, int32_t Bias>
struct Fwd16 {
    using S = T;
    using D = T;
    static constexpr bool kRgbIn = true;
    static void Px(S r0, S g0, S b0, D* o) {
        const float r = float(int32_t(r0) + Bias), g = float(int32_t(g0) + Bias), b = float(int32_t(b0) + Bias);
        const int32_t x = Trunc(kXR * r + 0.5f + kXG * g + kXB * b);
        const int32_t y = Trunc(kYR * r + 0.5f + kYG * g + kYB * b);
        const int32_t z = Clamp(Trunc(kZR * r + 0.5f + kZG * g + kZB * b), 0, 65535);
        o[0] = T(x - Bias), o[1] = T(y - Bias), o[2] = T(z - Bias);
    }
};

struct Fwd32f {
    using S = float;
    using D = float;
    static constexpr bool kRgbIn = true;
    static void Px(S r, S g, S b, D* o) {
        o[0] = kXR * r + kXG * g + kXB * b;
        o[1] = kYR * r + kYG * g + kYB * b;
        o[2] = Unit(kZR * r + kZG * g + kZB * b);
    }
};

// 16-bit inverse. R and G: single precision, 0.5 after the first product.
// B of 16u: the single (0.055648 X - 0.204043 Y) widened, 0.5 and the double
// product of Z added in double; 16s keeps B in single like R and G.
template <class T, int32_t Bias>
struct Inv16 {
    using S = T;
    using D = T;
    static constexpr bool kRgbIn = false;
    static void Px(S x0, S y0, S z0, D* o) {
        const float x = float(int32_t(x0) + Bias), y = float(int32_t(y0) + Bias), z = float(int32_t(z0) + Bias);
        const int32_t r = Trunc(kRX * x + 0.5f + kRY * y + kRZ * z);
        const int32_t g = Trunc(kGX * x + 0.5f + kGY * y + kGZ * z);
        int32_t b;
        if constexpr (Bias == 0) b = Trunc(double(kBX * x + kBY * y) + 0.5 + double(z) * kBZd);
        else b = Trunc(kBX * x + 0.5f + kBY * y + kBZ * z);
        o[0] = T(Clamp(r, 0, 65535) - Bias), o[1] = T(Clamp(g, 0, 65535) - Bias), o[2] = T(Clamp(b, 0, 65535) - Bias);
    }
};

struct Inv32f {
    using S = float;
    using D = float;
    static constexpr bool kRgbIn = false;
    static void Px(S x, S y, S z, D* o) {
        o[0] = Unit(kRX * x + kRY * y + kRZ * z);
        o[1] = Unit(kGX * x + kGY * y + kGZ * z);
        o[2] = Unit(kBX * x + kBY * y + kBZ * z);
    }
};

using Fwd16u = Fwd16<uint16_t, 0>;
using Fwd16s = Fwd16<int16_t, 32768>;
using Inv16u = Inv16<uint16_t, 0>;
using Inv16s = Inv16<int16_t, 32768>;

}  // namespace
}  // namespace zil::cie

using namespace zil::cie;

ZIL_CIE_ROW16(Fwd8u)
ZIL_CIE_ROW16(Inv8u)

// Row layers step in whole samples (SHIFT 1 or 2) except where SHIFT is 0.
//            conversion depth functor SHIFT
ZIL_CIE_DEPTH(RGBToXYZ, 8u, Fwd8u, 0)
ZIL_CIE_DEPTH(RGBToXYZ, 16u, Fwd16u, 1)
ZIL_CIE_DEPTH(RGBToXYZ, 16s, Fwd16s, 1)
ZIL_CIE_DEPTH(RGBToXYZ, 32f, Fwd32f, 2)
ZIL_CIE_DEPTH(XYZToRGB, 8u, Inv8u, 0)
ZIL_CIE_DEPTH(XYZToRGB, 16u, Inv16u, 1)
ZIL_CIE_DEPTH(XYZToRGB, 16s, Inv16s, 1)
ZIL_CIE_DEPTH(XYZToRGB, 32f, Inv32f, 2)
