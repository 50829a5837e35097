// RGB <-> CIE Lab: 10 exports, each one function with its own row loop over
// byte steps, C3 on both sides. RGB and BGR twins differ only in the swap.
//
// Forward: the CIE linear branch at or below the threshold, the cube root
// above it (the double power routine). Inverse: always the cube, no linear
// branch, so Lab (0, 128, 128) comes back as (1, 1, 1). The 8-bit forms scale
// the white by 255 (242.366 and 277.632); the 32f forward divides by the white
// in double, the 32f inverse multiplies by it in single.
#include "cie_lanes.h"

namespace zil::cie {
namespace {

inline constexpr float kSlopeF = Fb(0x40F92F1B);   // 7.787
inline constexpr float kOffF = Fb(0x3E0D3DCB);     // 0.13793103 = 16 / 116
inline constexpr float kWhiteX8 = Fb(0x43725DB2);  // 242.366
inline constexpr float kWhiteZ8 = Fb(0x438AD0E5);  // 277.632
inline constexpr double kWhiteXFwd = Db(0x3FEE6A22BFE24777);  // 0.950456023
inline constexpr double kWhiteZFwd = Db(0x3FF16B89405B0EEF);  // 1.08875394
inline constexpr float kWhiteXInv = Fb(0x3F735116);  // 0.950456
inline constexpr float kWhiteZInv = Fb(0x3F8B5C4A);  // 1.0887539

// The rows of the forward matrix summed blue term first.
template <class T>
inline T SumX(T r, T g, T b) { return kXB * b + kXG * g + kXR * r; }
template <class T>
inline T SumY(T r, T g, T b) { return kYB * b + kYG * g + kYR * r; }
template <class T>
inline T SumZ(T r, T g, T b) { return kZB * b + kZG * g + kZR * r; }

// f(t): the cube root above the threshold, 7.787 t + 16/116 at or below it.
inline float F(float t) { return t > kThresh ? CubeRootF(t) : kSlopeF * t + kOffF; }

// Forward kernels: fx, fy, fz and L from x, y, z (white = 1). LDouble: L is
// 116 p - 16 in double from the double power result p, narrowed (the 8u to
// 16u form).
struct LabF { float l, fx, fy, fz; };
template <bool LDouble>
inline LabF Forward(float x, float y, float z) {
    LabF o;
    if (y > kThresh) {
        if constexpr (LDouble) {
            const double p = CubeRoot(y);
            o.fy = float(p), o.l = float(116.0 * p - 16.0);
        } else {
            o.fy = CubeRootF(y), o.l = 116.f * o.fy - 16.f;
        }
    } else {
        o.fy = kSlopeF * y + kOffF, o.l = kSlopeL * y;
    }
    o.fx = F(x), o.fz = F(z);
    return o;
}

// Inverse: the matrix of XYZ to RGB on the cubes; single-precision sums.
template <class T>
struct RgbT { T r, g, b; };
template <class T>
inline RgbT<T> MatrixT(T x, T y, T z) {
    return {kRX * x + kRY * y + kRZ * z, kGX * x + kGY * y + kGZ * z, kBX * x + kBY * y + kBZ * z};
}
template <class T>
inline RgbT<T> Inverse8(T fx, T fy, T fz) {
    return MatrixT(kWhiteX8 * fx * fx * fx, 255.f * fy * fy * fy, kWhiteZ8 * fz * fz * fz);
}

// ---- per-pixel bodies --------------------------------------------------------------
inline void Fwd8u(const uint8_t* s, uint8_t* d) {  // s: R, G, B
    const float r = s[0], g = s[1], b = s[2];
    const LabF f = Forward<false>(SumX(r, g, b) / kWhiteX8, SumY(r, g, b) / 255.f, SumZ(r, g, b) / kWhiteZ8);
    d[0] = uint8_t(Trunc(f.l * 255.f / 100.f + 0.5f));
    d[1] = uint8_t(Trunc((f.fx - f.fy) * 500.f + 128.5f));
    d[2] = uint8_t(Trunc((f.fy - f.fz) * 200.f + 128.5f));
}
// Fwd8u over lanes (four at a time, cie_lanes.h), the branches of F as selects.
inline VF4 FV(VF4 t) {
    const VI4 cube = Lt(VF4{} + kThresh, t);
    return Sel(cube, CubeRootFV(t, cube), kSlopeF * t + kOffF);
}
inline void Fwd8uLanes(VI4 r0, VI4 g0, VI4 b0, VI4* o) {
    const VF4 r = Float(r0), g = Float(g0), b = Float(b0);
    const VF4 x = SumX(r, g, b) / kWhiteX8, y = SumY(r, g, b) / 255.f, z = SumZ(r, g, b) / kWhiteZ8;
    const VI4 cube = Lt(VF4{} + kThresh, y);
    const VF4 root = CubeRootFV(y, cube);
    const VF4 fy = Sel(cube, root, kSlopeF * y + kOffF), l = Sel(cube, 116.f * root - 16.f, kSlopeL * y);
    const VF4 fx = FV(x), fz = FV(z);
    o[0] = TruncV(l * 255.f / 100.f + 0.5f);
    o[1] = TruncV((fx - fy) * 500.f + 128.5f);
    o[2] = TruncV((fy - fz) * 200.f + 128.5f);
}
inline void Fwd8u16u(const uint8_t* s, uint16_t* d) {
    const float r = s[0], g = s[1], b = s[2];
    const LabF f = Forward<true>(SumX(r, g, b) / kWhiteX8, SumY(r, g, b) / 255.f, SumZ(r, g, b) / kWhiteZ8);
    St(d + 0, uint16_t(Trunc(f.l * 65535.f / 100.f)));
    St(d + 1, uint16_t(Trunc(((f.fx - f.fy) * 500.f + 128.f) * 255.f)));
    St(d + 2, uint16_t(Trunc(((f.fy - f.fz) * 200.f + 128.f) * 255.f)));
}
inline void Fwd32f(const float* s, float* d) {
    const float r = Ld(s), g = Ld(s + 1), b = Ld(s + 2);
    float x = float(double(SumX(r, g, b)) / kWhiteXFwd), y = SumY(r, g, b);
    float z = float(double(SumZ(r, g, b)) / kWhiteZFwd);
    x = x > 1.f ? 1.f : x, y = y > 1.f ? 1.f : y, z = z > 1.f ? 1.f : z;
    const LabF f = Forward<false>(x, y, z);
    St(d, f.l), St(d + 1, (f.fx - f.fy) * 500.f), St(d + 2, (f.fy - f.fz) * 200.f);
}

// fy from the L byte and the a and b terms from theirs, each the single
// expression of the 8-bit inverse, folded at build time.
struct InvTerms { float fy[256], a[256], b[256]; };
constexpr InvTerms MakeInvTerms() {
    InvTerms t{};
    for (int i = 0; i < 256; ++i) {
        t.fy[i] = (float(i) * 100.f / 255.f + 16.f) / 116.f;
        t.a[i] = float(i - 128) / 500.f;
        t.b[i] = (float(i) - 128.f) / 200.f;
    }
    return t;
}
inline constexpr InvTerms kInvTerms = MakeInvTerms();

inline void Inv8u(const uint8_t* s, uint8_t* d) {  // d: R, G, B
    const float fy = kInvTerms.fy[s[0]], fx = kInvTerms.a[s[1]] + fy, fz = fy - kInvTerms.b[s[2]];
    const RgbT<float> c = Inverse8(fx, fy, fz);
    d[0] = uint8_t(Clamp(Trunc(double(c.r) + 0.5), 0, 255));
    d[1] = uint8_t(Clamp(Trunc(double(c.g) + 0.5), 0, 255));
    d[2] = uint8_t(Clamp(Trunc(double(c.b) + 0.5), 0, 255));
}
inline void Inv8uBlock(VI l, VI a, VI b, VI* o) {
    const VF fy = Look(kInvTerms.fy, l), fx = Look(kInvTerms.a, a) + fy, fz = fy - Look(kInvTerms.b, b);
    const RgbT<VF> c = Inverse8(fx, fy, fz);
    o[0] = ClampV(TruncV(Wide(c.r) + 0.5), 0, 255);
    o[1] = ClampV(TruncV(Wide(c.g) + 0.5), 0, 255);
    o[2] = ClampV(TruncV(Wide(c.b) + 0.5), 0, 255);
}
inline void Inv16u8u(const uint16_t* s, uint8_t* d) {
    const float fy = (float(Ld(s)) * 100.f / 65535.f + 16.f) / 116.f;
    const float fx = (float(Ld(s + 1)) / 255.f - 128.f) / 500.f + fy;
    const float fz = fy - (float(Ld(s + 2)) / 255.f - 128.f) / 200.f;
    const RgbT<float> c = Inverse8(fx, fy, fz);
    d[0] = uint8_t(Clamp(Trunc(c.r), 0, 255));
    d[1] = uint8_t(Clamp(Trunc(c.g), 0, 255));
    d[2] = uint8_t(Clamp(Trunc(c.b), 0, 255));
}
inline void Inv32f(const float* s, float* d) {
    const float fy = (Ld(s) + 16.f) / 116.f, fx = Ld(s + 1) / 500.f + fy, fz = fy - Ld(s + 2) / 200.f;
    const RgbT<float> c = MatrixT(kWhiteXInv * fx * fx * fx, fy * fy * fy, kWhiteZInv * fz * fz * fz);
    St(d, c.r), St(d + 1, c.g), St(d + 2, c.b);
}

// The one loop of every member. The body sees the RGB side in R, G, B order;
// for a BGR member the three samples are gathered (or scattered) reversed.
// Blocks, where given, converts pixels in blocks first (cie_lanes.h): eight
// at a time, or four in single registers.
struct NoBlocks {
    template <int I0, int O0, class S, class D>
    static int Run(const S*, D*, int) { return 0; }
};
template <void (*Fn)(VI, VI, VI, VI*)>
struct Eights {
    static void Block(VI a, VI b, VI c, VI* o) { Fn(a, b, c, o); }
    template <int I0, int O0>
    static int Run(const uint8_t* s, uint8_t* d, int w) { return RunBlocks<Eights, 3, I0, O0>(s, d, w); }
};
template <void (*Fn)(VI4, VI4, VI4, VI4*)>
struct Quads {
    template <int I0, int O0>
    static int Run(const uint8_t* s, uint8_t* d, int w) { return RunQuads<Fn, I0, O0>(s, d, w); }
};

template <class S, class D, void (*Body)(const S*, D*), bool RgbIn, bool Swap, class Blocks>
ZilStatus Run(const S* src, int srcStep, D* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = Check(src, dst, sz)) return st;
    constexpr int i0 = (Swap && RgbIn) ? 2 : 0, o0 = (Swap && !RgbIn) ? 2 : 0;
    for (int y = 0; y < sz.height; ++y, src = Bump(src, srcStep), dst = Bump(dst, dstStep)) {
        const S* s = src;
        D* d = dst;
        int x = Blocks::template Run<i0, o0>(s, d, sz.width);
        s += 3 * x, d += 3 * x;
        for (; x < sz.width; ++x, s += 3, d += 3) {
            if constexpr (!Swap) {
                Body(s, d);
            } else if constexpr (RgbIn) {
                const S t[3] = {Ld(s + 2), Ld(s + 1), Ld(s)};
                Body(t, d);
            } else {
                D t[3];
                Body(s, t);
                St(d, t[2]), St(d + 1, t[1]), St(d + 2, t[0]);
            }
        }
    }
    return zilStatusOk;
}

}  // namespace
}  // namespace zil::cie

using namespace zil::cie;

#define ZIL_LAB_EXPORT(NAME, S, D, BODY, RGBIN, SWAP, BLOCK)                                   \
    ZIL_IMPL ZilStatus mx_##NAME(const S* src, int srcStep, D* dst, int dstStep, ZilSize sz) { \
        return Run<S, D, BODY, RGBIN, SWAP, BLOCK>(src, srcStep, dst, dstStep, sz);            \
    }

//              export                      source    dest      body      RGB in  BGR    blocks
ZIL_LAB_EXPORT(ziliRGBToLab_8u_C3R,      uint8_t,  uint8_t,  Fwd8u,    true,  false, Quads<Fwd8uLanes>)
ZIL_LAB_EXPORT(ziliBGRToLab_8u_C3R,      uint8_t,  uint8_t,  Fwd8u,    true,  true,  Quads<Fwd8uLanes>)
ZIL_LAB_EXPORT(ziliLabToRGB_8u_C3R,      uint8_t,  uint8_t,  Inv8u,    false, false, Eights<Inv8uBlock>)
ZIL_LAB_EXPORT(ziliLabToBGR_8u_C3R,      uint8_t,  uint8_t,  Inv8u,    false, true,  Eights<Inv8uBlock>)
ZIL_LAB_EXPORT(ziliRGBToLab_32f_C3R,     float,    float,    Fwd32f,   true,  false, NoBlocks)
ZIL_LAB_EXPORT(ziliBGRToLab_32f_C3R,     float,    float,    Fwd32f,   true,  true,  NoBlocks)
ZIL_LAB_EXPORT(ziliLabToRGB_32f_C3R,     float,    float,    Inv32f,   false, false, NoBlocks)
ZIL_LAB_EXPORT(ziliLabToBGR_32f_C3R,     float,    float,    Inv32f,   false, true,  NoBlocks)
ZIL_LAB_EXPORT(ziliBGRToLab_8u16u_C3R,   uint8_t,  uint16_t, Fwd8u16u, true,  true,  NoBlocks)
ZIL_LAB_EXPORT(ziliLabToBGR_16u8u_C3R,   uint16_t, uint8_t,  Inv16u8u, false, true,  NoBlocks)
