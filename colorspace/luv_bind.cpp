// RGB <-> CIE LUV: 20 exports. 8u and 32f have BGR twins (the same kernels
// with the swap flag set); 16u and 16s have none.
//
// All arithmetic is single precision except the cube root (the double power
// routine, narrowed) and the blue row of the integer inverses, which finishes
// in double. The forward kernels and the 32f inverse use the chroma reference
// (0.197839, 0.468342); the integer inverses a reference a few units of the
// last place away. Forward and inverse therefore do not round-trip exactly.
#include "cie_lanes.h"

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
    static void Block(VI r0, VI g0, VI b0, VI* o) {
        const VF r = Float(r0), g = Float(g0), b = Float(b0);
        const VF x = (kXR * r + kXG * g + kXB * b) / 255.f, y = (kYR * r + kYG * g + kYB * b) / 255.f;
        const VF z = (kZR * r + kZG * g + kZB * b) / 255.f;
        const VI cube = Lt(VF{} + kThresh, y);
        const VF l = Sel(cube, CubeRootFV(y, cube) * 116.f - 16.f, kSlopeL * y);
        const VI black = Eq(y, VF{});
        const VF den = z * 3.f + x + 15.f * y;
        const VF cu = Sel(black, VF{}, 4.f * x / den), cv = Sel(black, VF{}, 9.f * y / den);
        const VF t = l * 13.f;
        o[0] = TruncV(255.f * l / 100.f);
        o[1] = TruncV(((cu - kRefFwd.u) * t + 134.f) * 255.f / 354.f + 0.5f);
        o[2] = TruncV((t * (cv - kRefFwd.v) + 140.f) * 255.f / 262.f + 0.5f);
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
constexpr float YFromL(float l) {
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

// The integer inverses, one body over three rows. Black below the L
// threshold (-32768 in 16s). Samples decode on a scale of `max`; Y is then
// scaled by yScale. The sums of R, G, B are written in three orders:
//   Round8u:   0.5 inside the sums (8u), Y, X, Z on 0..255;
//   Scaled16u: X, Y, Z on 0..1, each sum times 65535, then 0.5;
//   Half16s:   0.5 first, then the Y term, Y, X, Z on 0..65535.
// B is always finished in double from the single (0.055648 X - 0.204043 Y).
enum class Sums : uint8_t { Round8u, Scaled16u, Half16s };
struct IntInv {
    int32_t bias;
    float max, yScale, guard;
    bool zXFirst;  // Z = 3 s - X / 3 - 5 Y (else 3 s - 5 Y - X / 3)
    Sums sums;
};
//                               bias   max      yScale   v' guard   Z order  sums
inline constexpr IntInv kInv8u {0,     255.f,   255.f,   kVGuard,   true,  Sums::Round8u};
inline constexpr IntInv kInv16u{0,     65535.f, 1.f,     kVGuard16, false, Sums::Scaled16u};
inline constexpr IntInv kInv16s{32768, 65535.f, 65535.f, kVGuard16, false, Sums::Half16s};

inline double BlueD(float x, float y, float z) { return double(kBX * x + kBY * y) + 0.5 + double(z) * kBZd; }

template <class T, const IntInv& M>
struct InvInt {
    using S = T;
    using D = T;
    static constexpr bool kRgbIn = false;
    static constexpr int32_t kHi = int32_t(M.max);
    // The samples decoded: L, Y from L, and the U and V offsets.
    static constexpr float L(int32_t l0) { return float(l0 + M.bias) * 100.f / M.max; }
    static constexpr float Y(float l) { return YFromL(l) * M.yScale; }
    static constexpr float U(int32_t u0) { return float(u0 + M.bias) * 354.f / M.max - 134.f; }
    static constexpr float V(int32_t v0) { return float(v0 + M.bias) * 262.f / M.max - 140.f; }
    static void Px(S l0, S u0, S v0, D* o) {
        const float l = L(l0);
        if (l < kLMin) {
            o[0] = o[1] = o[2] = T(-M.bias);
            return;
        }
        const float y = Y(l), l13 = 13.f * l;
        const float vv = V(v0), uv = U(u0);
        const float vp = VPrime(vv, l13, kRefInt.v, M.guard), up = uv / l13 + kRefInt.u;
        const float s = y / vp;
        const float x = up * 2.25f * s;
        const float z = M.zXFirst ? s * 3.f - x / 3.f - 5.f * y : s * 3.f - 5.f * y - x / 3.f;
        int32_t r, g, b;
        if constexpr (M.sums == Sums::Round8u) {
            r = Trunc(kRX * x + 0.5f + kRY * y + kRZ * z);
            g = Trunc(0.5f + kGX * x + kGY * y + kGZ * z);
            b = Trunc(BlueD(x, y, z));
        } else if constexpr (M.sums == Sums::Scaled16u) {
            r = Trunc((kRX * x + kRY * y + kRZ * z) * 65535.f + 0.5f);
            g = Trunc((kGY * y + kGX * x + kGZ * z) * 65535.f + 0.5f);
            b = Trunc(float((double(kBX * x + kBY * y) + double(z) * kBZd) * 65535.0) + 0.5f);
        } else {
            r = Trunc(0.5f + kRY * y + kRX * x + kRZ * z);
            g = Trunc(0.5f + kGY * y + kGX * x + kGZ * z);
            b = Trunc(BlueD(x, y, z));
        }
        o[0] = T(Clamp(r, 0, kHi) - M.bias), o[1] = T(Clamp(g, 0, kHi) - M.bias), o[2] = T(Clamp(b, 0, kHi) - M.bias);
    }
};

// The 8u inverse eight pixels at a time: InvInt<uint8_t, kInv8u> lane by
// lane, its byte decodings (L, Y, U and V offsets) looked up in tables folded
// at build time.
using InvInt8u = InvInt<uint8_t, kInv8u>;
struct Inv8uTerms { float l[256], y[256], u[256], v[256]; };
constexpr Inv8uTerms MakeInv8uTerms() {
    using I = InvInt8u;
    Inv8uTerms t{};
    for (int i = 0; i < 256; ++i) t.l[i] = I::L(i), t.y[i] = I::Y(t.l[i]), t.u[i] = I::U(i), t.v[i] = I::V(i);
    return t;
}
inline constexpr Inv8uTerms kTerms = MakeInv8uTerms();

struct Inv8u : InvInt8u {
    static void Block(VI l0, VI u0, VI v0, VI* o) {
        constexpr IntInv M = kInv8u;
        const VF l = Look(kTerms.l, l0);
        const VI dark = Lt(l, VF{} + kLMin);
        const VF y = Look(kTerms.y, l0), l13 = 13.f * l;
        const VF vv = Look(kTerms.v, v0), uv = Look(kTerms.u, u0);
        VF vp = vv / l13 + kRefInt.v;
        vp = Sel(Lt(Sel(Lt(vp, VF{}), -vp, vp), VF{} + M.guard), vp + kVBump, vp);
        const VF up = uv / l13 + kRefInt.u;
        const VF s = y / vp;
        const VF x = up * 2.25f * s;
        const VF z = s * 3.f - x / 3.f - 5.f * y;
        static_assert(M.zXFirst && M.sums == Sums::Round8u && M.bias == 0, "the 8u order of operations");
        const VI r = TruncV(kRX * x + 0.5f + kRY * y + kRZ * z);
        const VI g = TruncV(0.5f + kGX * x + kGY * y + kGZ * z);
        const VI b = TruncV(Wide(kBX * x + kBY * y) + 0.5 + Wide(z) * kBZd);
        o[0] = Sel(dark, VI{}, ClampV(r, 0, 255));
        o[1] = Sel(dark, VI{}, ClampV(g, 0, 255));
        o[2] = Sel(dark, VI{}, ClampV(b, 0, 255));
    }
};

using Inv16u = InvInt<uint16_t, kInv16u>;
using Inv16s = InvInt<int16_t, kInv16s>;
using Fwd16u = Fwd16<uint16_t, 0>;
using Fwd16s = Fwd16<int16_t, 32768>;

}  // namespace
}  // namespace zil::cie

using namespace zil::cie;

// The 32f forward layer alone walks byte steps as given (SHIFT 0); the other
// 16- and 32-bit layers step in whole samples.
//            conversion depth functor SHIFT
ZIL_CIE_DEPTH(RGBToLUV, 8u, Fwd8u, 0)
ZIL_CIE_DEPTH(RGBToLUV, 16u, Fwd16u, 1)
ZIL_CIE_DEPTH(RGBToLUV, 16s, Fwd16s, 1)
ZIL_CIE_DEPTH(RGBToLUV, 32f, Fwd32f, 0)
ZIL_CIE_DEPTH(LUVToRGB, 8u, Inv8u, 0)
ZIL_CIE_DEPTH(LUVToRGB, 16u, Inv16u, 1)
ZIL_CIE_DEPTH(LUVToRGB, 16s, Inv16s, 1)
ZIL_CIE_DEPTH(LUVToRGB, 32f, Inv32f, 2)

// The BGR twins: the RGB kernels with the swap flag set.
ZIL_CIE_EXPORT(ziliBGRToLUV_8u_C3R, RGBToLUV_8u_C3R, Fwd8u, 3, 1)
ZIL_CIE_EXPORT(ziliBGRToLUV_32f_C3R, RGBToLUV_32f_C3R, Fwd32f, 3, 1)
ZIL_CIE_EXPORT(ziliLUVToBGR_8u_C3R, LUVToRGB_8u_C3R, Inv8u, 3, 1)
ZIL_CIE_EXPORT(ziliLUVToBGR_32f_C3R, LUVToRGB_32f_C3R, Inv32f, 3, 1)
