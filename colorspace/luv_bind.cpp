// RGB <-> CIE LUV: 20 exports. 8u and 32f have BGR twins (the same kernels
// with the swap flag set); 16u and 16s have none.
//
// All arithmetic is single precision except the cube root (the double power
// routine, narrowed) and the blue row of the integer inverses, which finishes
// in double. The forward kernels and the 32f inverse use the chroma reference
// (0.197839, 0.468342); the integer inverses a reference a few units of the
// last place away. Forward and inverse therefore do not round-trip exactly.
#include "cie_common.h"

namespace zil::cie {
namespace {

// Chroma references u', v' of the white point.
struct Ref { float u, v; };
inline constexpr Ref kRefFwd{Fb(0x3E4A964F), Fb(0x3EEFCA86)};  // 0.197839, 0.468342
inline constexpr Ref kRefInt{Fb(0x3E4A966A), Fb(0x3EEFCA8D)};  // 0.19783941, 0.4683422

inline constexpr float kLMin = Fb(0x38BCBE62);     // 9e-5: below it the inverse gives black
inline constexpr float kLCube = Fb(0x40FFFCED);    // 7.9996247: from here up Y is cubed
inline constexpr float kVGuard = Fb(0x34000000);   // 1.1920929e-7 (8u, 32f)
inline constexpr float kVGuard16 = Fb(0x37480000); // 1.1920929e-5 (16u, 16s)
inline constexpr float kVBump = 9e-5f;

// L (0..100) from y on 0..1. Lin is the linear branch's value.
inline float Lightness(float y, float lin) {
    return y > kThresh ? CubeRootF(y) * 116.f - 16.f : lin;
}

// u', v' from X, Y, Z of any common scale; both 0 for Y = 0.
struct Chroma { float u, v; };
inline Chroma UV(float x, float y, float z) {
    if (y == 0.f) return {0.f, 0.f};
    const float den = z * 3.f + x + 15.f * y;
    return {4.f * x / den, 9.f * y / den};
}

// ---- forward -------------------------------------------------------------------
struct Fwd32f {
    using S = float;
    using D = float;
    static constexpr bool kRgbIn = true;
    static void Px(S r, S g, S b, D* o) {
        const float x = kXR * r + kXG * g + kXB * b, y = kYR * r + kYG * g + kYB * b, z = kZR * r + kZG * g + kZB * b;
        const float l = Lightness(y, kSlopeL * y);
        const Chroma c = UV(x, y, z);
        const float t = l * 13.f;
        o[0] = l, o[1] = (c.u - kRefFwd.u) * t, o[2] = t * (c.v - kRefFwd.v);
    }
};

// 8u: X, Y, Z on 0..1 by division by 255; L stored without a rounding add,
// U and V with one; the low byte of each is stored.
struct Fwd8u {
    using S = uint8_t;
    using D = uint8_t;
    static constexpr bool kRgbIn = true;
    static void Px(S r0, S g0, S b0, D* o) {
        const float r = r0, g = g0, b = b0;
        const float x = (kXR * r + kXG * g + kXB * b) / 255.f, y = (kYR * r + kYG * g + kYB * b) / 255.f;
        const float z = (kZR * r + kZG * g + kZB * b) / 255.f;
        const float l = Lightness(y, kSlopeL * y);
        const Chroma c = UV(x, y, z);
        const float t = l * 13.f;
        o[0] = uint8_t(Trunc(255.f * l / 100.f));
        o[1] = uint8_t(Trunc(((c.u - kRefFwd.u) * t + 134.f) * 255.f / 354.f + 0.5f));
        o[2] = uint8_t(Trunc((t * (c.v - kRefFwd.v) + 140.f) * 255.f / 262.f + 0.5f));
    }
};

// 16u and 16s: sums on 0..65535; the threshold is tested on y = Y / 65535
// and u', v' come from the unscaled sums. All three channels round.
template <class T, int32_t Bias>
struct Fwd16 {
    using S = T;
    using D = T;
    static constexpr bool kRgbIn = true;
    static void Px(S r0, S g0, S b0, D* o) {
        const float r = float(int32_t(r0) + Bias), g = float(int32_t(g0) + Bias), b = float(int32_t(b0) + Bias);
        const float x = kXR * r + kXG * g + kXB * b, y = kYR * r + kYG * g + kYB * b, z = kZR * r + kZG * g + kZB * b;
        const float l = Lightness(y / 65535.f, kSlopeL * y / 65535.f);
        const Chroma c = UV(x, y, z);
        const float t = l * 13.f;
        o[0] = T(Trunc(65535.f * l / 100.f + 0.5f) - Bias);
        o[1] = T(Trunc(((c.u - kRefFwd.u) * t + 134.f) * 65535.f / 354.f + 0.5f) - Bias);
        o[2] = T(Trunc((t * (c.v - kRefFwd.v) + 140.f) * 65535.f / 262.f + 0.5f) - Bias);
    }
};

// ---- inverse -------------------------------------------------------------------
// Y on 0..1 from L: cubed from 7.9996247 up, else the linear branch.
inline float YFromL(float l) {
    if (l >= kLCube) {
        const float f = (16.f + l) / 116.f;
        return f * f * f;
    }
    return l / kSlopeL;
}
// v' with its guard against a vanishing denominator.
inline float VPrime(float v, float l13, float ref, float guard) {
    float vp = v / l13 + ref;
    if ((vp < 0.f ? -vp : vp) < guard) vp += kVBump;
    return vp;
}

struct Inv32f {
    using S = float;
    using D = float;
    static constexpr bool kRgbIn = false;
    static void Px(S l, S u, S v, D* o) {
        if (l < kLMin) {
            o[0] = o[1] = o[2] = 0.f;
            return;
        }
        const float y = YFromL(l), l13 = 13.f * l;
        const float vp = VPrime(v, l13, kRefFwd.v, kVGuard);
        const float s = y / vp;
        const float x = (u / l13 + kRefFwd.u) * 2.25f * s;
        const float z = s * 3.f - 5.f * y - x / 3.f;
        o[0] = Unit(kRX * x + kRY * y + kRZ * z);
        o[1] = Unit(kGY * y + kGX * x + kGZ * z);
        o[2] = Unit(kBX * x + kBY * y + kBZ * z);
    }
};

// The integer inverses. Black below the L threshold (-32768 in 16s).
// 8u: Y, X, Z on 0..255, Z = 3 s - X / 3 - 5 Y, the rounding 0.5 inside the
// sums. 16u: X, Y, Z on 0..1, the sums scaled by 65535 before the 0.5.
// 16s: Y, X, Z on 0..65535 like 8u, Z as 16u, the 0.5 first in the sums.
inline double BlueD(float x, float y, float z) { return double(kBX * x + kBY * y) + 0.5 + double(z) * kBZd; }

struct Inv8u {
    using S = uint8_t;
    using D = uint8_t;
    static constexpr bool kRgbIn = false;
    static void Px(S l0, S u0, S v0, D* o) {
        const float l = float(l0) * 100.f / 255.f;
        if (l < kLMin) {
            o[0] = o[1] = o[2] = 0;
            return;
        }
        const float y = YFromL(l) * 255.f, l13 = 13.f * l;
        const float vv = float(v0) * 262.f / 255.f - 140.f, uv = float(u0) * 354.f / 255.f - 134.f;
        const float vp = VPrime(vv, l13, kRefInt.v, kVGuard), up = uv / l13 + kRefInt.u;
        const float s = y / vp;
        const float x = up * 2.25f * s;
        const float z = s * 3.f - x / 3.f - 5.f * y;
        o[0] = uint8_t(Clamp(Trunc(kRX * x + 0.5f + kRY * y + kRZ * z), 0, 255));
        o[1] = uint8_t(Clamp(Trunc(0.5f + kGX * x + kGY * y + kGZ * z), 0, 255));
        o[2] = uint8_t(Clamp(Trunc(BlueD(x, y, z)), 0, 255));
    }
};

struct Inv16u {
    using S = uint16_t;
    using D = uint16_t;
    static constexpr bool kRgbIn = false;
    static void Px(S l0, S u0, S v0, D* o) {
        const float l = float(l0) * 100.f / 65535.f;
        if (l < kLMin) {
            o[0] = o[1] = o[2] = 0;
            return;
        }
        const float y = YFromL(l), l13 = 13.f * l;
        const float vv = float(v0) * 262.f / 65535.f - 140.f, uv = float(u0) * 354.f / 65535.f - 134.f;
        const float vp = VPrime(vv, l13, kRefInt.v, kVGuard16), up = uv / l13 + kRefInt.u;
        const float s = y / vp;
        const float x = up * 2.25f * s;
        const float z = s * 3.f - 5.f * y - x / 3.f;
        const float bd = float((double(kBX * x + kBY * y) + double(z) * kBZd) * 65535.0);
        o[0] = uint16_t(Clamp(Trunc((kRX * x + kRY * y + kRZ * z) * 65535.f + 0.5f), 0, 65535));
        o[1] = uint16_t(Clamp(Trunc((kGY * y + kGX * x + kGZ * z) * 65535.f + 0.5f), 0, 65535));
        o[2] = uint16_t(Clamp(Trunc(bd + 0.5f), 0, 65535));
    }
};

struct Inv16s {
    using S = int16_t;
    using D = int16_t;
    static constexpr bool kRgbIn = false;
    static void Px(S l0, S u0, S v0, D* o) {
        const float l = float(l0 + 32768) * 100.f / 65535.f;
        if (l < kLMin) {
            o[0] = o[1] = o[2] = -32768;
            return;
        }
        const float y = YFromL(l) * 65535.f, l13 = 13.f * l;
        const float vv = float(v0 + 32768) * 262.f / 65535.f - 140.f;
        const float uv = float(u0 + 32768) * 354.f / 65535.f - 134.f;
        const float vp = VPrime(vv, l13, kRefInt.v, kVGuard16), up = uv / l13 + kRefInt.u;
        const float s = y / vp;
        const float x = up * 2.25f * s;
        const float z = s * 3.f - 5.f * y - x / 3.f;
        o[0] = int16_t(Clamp(Trunc(0.5f + kRY * y + kRX * x + kRZ * z), 0, 65535) - 32768);
        o[1] = int16_t(Clamp(Trunc(0.5f + kGY * y + kGX * x + kGZ * z), 0, 65535) - 32768);
        o[2] = int16_t(Clamp(Trunc(BlueD(x, y, z)), 0, 65535) - 32768);
    }
};

using Fwd16u = Fwd16<uint16_t, 0>;
using Fwd16s = Fwd16<int16_t, 32768>;

}  // namespace
}  // namespace zil::cie

using namespace zil::cie;

// The 32f forward layer alone walks byte steps as given; the other 16- and
// 32-bit layers step in whole samples.
ZIL_CIE_LAYERS(RGBToLUV_8u_C3R, Fwd8u, 0)
ZIL_CIE_LAYERS(RGBToLUV_16u_C3R, Fwd16u, 1)
ZIL_CIE_LAYERS(RGBToLUV_16s_C3R, Fwd16s, 1)
ZIL_CIE_LAYERS(RGBToLUV_32f_C3R, Fwd32f, 0)
ZIL_CIE_LAYERS(LUVToRGB_8u_C3R, Inv8u, 0)
ZIL_CIE_LAYERS(LUVToRGB_16u_C3R, Inv16u, 1)
ZIL_CIE_LAYERS(LUVToRGB_16s_C3R, Inv16s, 1)
ZIL_CIE_LAYERS(LUVToRGB_32f_C3R, Inv32f, 2)

//              export                   layers              functor  stride swap
ZIL_CIE_EXPORT(ziliRGBToLUV_8u_C3R,   RGBToLUV_8u_C3R,  Fwd8u,  3, 0)
ZIL_CIE_EXPORT(ziliRGBToLUV_8u_AC4R,  RGBToLUV_8u_C3R,  Fwd8u,  4, 0)
ZIL_CIE_EXPORT(ziliBGRToLUV_8u_C3R,   RGBToLUV_8u_C3R,  Fwd8u,  3, 1)
ZIL_CIE_EXPORT(ziliRGBToLUV_16u_C3R,  RGBToLUV_16u_C3R, Fwd16u, 3, 0)
ZIL_CIE_EXPORT(ziliRGBToLUV_16u_AC4R, RGBToLUV_16u_C3R, Fwd16u, 4, 0)
ZIL_CIE_EXPORT(ziliRGBToLUV_16s_C3R,  RGBToLUV_16s_C3R, Fwd16s, 3, 0)
ZIL_CIE_EXPORT(ziliRGBToLUV_16s_AC4R, RGBToLUV_16s_C3R, Fwd16s, 4, 0)
ZIL_CIE_EXPORT(ziliRGBToLUV_32f_C3R,  RGBToLUV_32f_C3R, Fwd32f, 3, 0)
ZIL_CIE_EXPORT(ziliRGBToLUV_32f_AC4R, RGBToLUV_32f_C3R, Fwd32f, 4, 0)
ZIL_CIE_EXPORT(ziliBGRToLUV_32f_C3R,  RGBToLUV_32f_C3R, Fwd32f, 3, 1)
ZIL_CIE_EXPORT(ziliLUVToRGB_8u_C3R,   LUVToRGB_8u_C3R,  Inv8u,  3, 0)
ZIL_CIE_EXPORT(ziliLUVToRGB_8u_AC4R,  LUVToRGB_8u_C3R,  Inv8u,  4, 0)
ZIL_CIE_EXPORT(ziliLUVToBGR_8u_C3R,   LUVToRGB_8u_C3R,  Inv8u,  3, 1)
ZIL_CIE_EXPORT(ziliLUVToRGB_16u_C3R,  LUVToRGB_16u_C3R, Inv16u, 3, 0)
ZIL_CIE_EXPORT(ziliLUVToRGB_16u_AC4R, LUVToRGB_16u_C3R, Inv16u, 4, 0)
ZIL_CIE_EXPORT(ziliLUVToRGB_16s_C3R,  LUVToRGB_16s_C3R, Inv16s, 3, 0)
ZIL_CIE_EXPORT(ziliLUVToRGB_16s_AC4R, LUVToRGB_16s_C3R, Inv16s, 4, 0)
ZIL_CIE_EXPORT(ziliLUVToRGB_32f_C3R,  LUVToRGB_32f_C3R, Inv32f, 3, 0)
ZIL_CIE_EXPORT(ziliLUVToRGB_32f_AC4R, LUVToRGB_32f_C3R, Inv32f, 4, 0)
ZIL_CIE_EXPORT(ziliLUVToBGR_32f_C3R,  LUVToRGB_32f_C3R, Inv32f, 3, 1)
