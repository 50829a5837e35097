// RGB <-> CIE XYZ: 16 exports over four depths in C3R and AC4R.
//
// 8u is fixed point (the matrices times 65536, fraction dropped); 16u and 16s
// are single precision with the 0.5 added after the first product, except the
// 16u blue row of the inverse, which finishes in double; 32f is plain single
// precision. Of the forward rows only Z can leave the range and only Z is
// clamped; the inverse clamps all three.
#include "cie_common.h"

namespace zil::cie {
namespace {

// Q16 matrices: each coefficient times 65536, truncated.
inline constexpr int32_t kQX[3] = {27030, 23434, 11824}, kQY[3] = {13937, 46868, 4729},
                         kQZ[3] = {1267, 7811, 62274};
inline constexpr int32_t kQR[3] = {212368, -100738, -32671}, kQG[3] = {-63521, 122944, 2723},
                         kQB[3] = {3646, -13372, 69291};
static_assert(int32_t(double(kXR) * 65536) == kQX[0] && int32_t(double(kZB) * 65536) == kQZ[2] &&
                  int32_t(double(kRX) * 65536) == kQR[0] && int32_t(double(kGX) * 65536) == kQG[0],
              "Q16 matrices are the single-precision coefficients, truncated");

template <class T>
constexpr int32_t Q16(const int32_t (&k)[3], T a, T b, T c) {
    return (k[0] * int32_t(a) + k[1] * int32_t(b) + k[2] * int32_t(c)) >> 16;
}

// 8u forward: X and Y sums stay below 65536 per unit and are stored as they
// are; Z's coefficients sum above 65536, so Z is clamped.
struct Fwd8u {
    using S = uint8_t;
    using D = uint8_t;
    static constexpr bool kRgbIn = true;
    static void Px(S r, S g, S b, D* o) {
        o[0] = uint8_t(Q16(kQX, r, g, b));
        o[1] = uint8_t(Q16(kQY, r, g, b));
        o[2] = uint8_t(Clamp255(Q16(kQZ, r, g, b)));
    }
};

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

// 8u inverse: arithmetic shift (negative sums floor), clamp by comparison.
struct Inv8u {
    using S = uint8_t;
    using D = uint8_t;
    static constexpr bool kRgbIn = false;
    static void Px(S x, S y, S z, D* o) {
        o[0] = uint8_t(Clamp255(Q16(kQR, x, y, z)));
        o[1] = uint8_t(Clamp255(Q16(kQG, x, y, z)));
        o[2] = uint8_t(Clamp255(Q16(kQB, x, y, z)));
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

ZIL_CIE_LAYERS(RGBToXYZ_8u_C3R, Fwd8u, 0)
ZIL_CIE_LAYERS(RGBToXYZ_16u_C3R, Fwd16u, 1)
ZIL_CIE_LAYERS(RGBToXYZ_16s_C3R, Fwd16s, 1)
ZIL_CIE_LAYERS(RGBToXYZ_32f_C3R, Fwd32f, 2)
ZIL_CIE_LAYERS(XYZToRGB_8u_C3R, Inv8u, 0)
ZIL_CIE_LAYERS(XYZToRGB_16u_C3R, Inv16u, 1)
ZIL_CIE_LAYERS(XYZToRGB_16s_C3R, Inv16s, 1)
ZIL_CIE_LAYERS(XYZToRGB_32f_C3R, Inv32f, 2)

//              export                   layers              functor  stride swap
ZIL_CIE_EXPORT(ziliRGBToXYZ_8u_C3R,   RGBToXYZ_8u_C3R,  Fwd8u,  3, 0)
ZIL_CIE_EXPORT(ziliRGBToXYZ_8u_AC4R,  RGBToXYZ_8u_C3R,  Fwd8u,  4, 0)
ZIL_CIE_EXPORT(ziliRGBToXYZ_16u_C3R,  RGBToXYZ_16u_C3R, Fwd16u, 3, 0)
ZIL_CIE_EXPORT(ziliRGBToXYZ_16u_AC4R, RGBToXYZ_16u_C3R, Fwd16u, 4, 0)
ZIL_CIE_EXPORT(ziliRGBToXYZ_16s_C3R,  RGBToXYZ_16s_C3R, Fwd16s, 3, 0)
ZIL_CIE_EXPORT(ziliRGBToXYZ_16s_AC4R, RGBToXYZ_16s_C3R, Fwd16s, 4, 0)
ZIL_CIE_EXPORT(ziliRGBToXYZ_32f_C3R,  RGBToXYZ_32f_C3R, Fwd32f, 3, 0)
ZIL_CIE_EXPORT(ziliRGBToXYZ_32f_AC4R, RGBToXYZ_32f_C3R, Fwd32f, 4, 0)
ZIL_CIE_EXPORT(ziliXYZToRGB_8u_C3R,   XYZToRGB_8u_C3R,  Inv8u,  3, 0)
ZIL_CIE_EXPORT(ziliXYZToRGB_8u_AC4R,  XYZToRGB_8u_C3R,  Inv8u,  4, 0)
ZIL_CIE_EXPORT(ziliXYZToRGB_16u_C3R,  XYZToRGB_16u_C3R, Inv16u, 3, 0)
ZIL_CIE_EXPORT(ziliXYZToRGB_16u_AC4R, XYZToRGB_16u_C3R, Inv16u, 4, 0)
ZIL_CIE_EXPORT(ziliXYZToRGB_16s_C3R,  XYZToRGB_16s_C3R, Inv16s, 3, 0)
ZIL_CIE_EXPORT(ziliXYZToRGB_16s_AC4R, XYZToRGB_16s_C3R, Inv16s, 4, 0)
ZIL_CIE_EXPORT(ziliXYZToRGB_32f_C3R,  XYZToRGB_32f_C3R, Inv32f, 3, 0)
ZIL_CIE_EXPORT(ziliXYZToRGB_32f_AC4R, XYZToRGB_32f_C3R, Inv32f, 4, 0)
