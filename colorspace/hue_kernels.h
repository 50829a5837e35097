// HLS and HSV: the per-pixel formulas, written once over a lane type.
//
// Every formula is a template over V, which is either one float or a vector of
// four floats (generic vector extensions, baseline instructions). Comparisons,
// selections and the arithmetic read the same for both, so the vector body of a
// row and its scalar tail run the very same single-precision steps in the same
// order; a select computes both sides and keeps one, so there is no branch per
// pixel. Integer samples of 8 and 16 bits are exact in a float, so max, min,
// the equality tests and the differences may be taken on the floats.
//
// What differs between members is data: the depth row (scale, the lightness
// threshold, bias of signed samples) and the rounding of the outputs.
#pragma once

#include "zil_common.h"

namespace zil::hue {

typedef float VF __attribute__((vector_size(16)));
typedef int32_t VI __attribute__((vector_size(16)));
typedef double VD __attribute__((vector_size(32)));
inline constexpr int kLanes = 4;

// ---- depth rows -----------------------------------------------------------------
// scale: full scale of a channel; half: the lightness test of HLS (scale / 2);
// twice: 2 x scale, the complement of a sum; bias: added to a signed sample to
// bring it onto the unsigned scale, taken off again after truncation.
struct Depth {
    float scale, half, twice;
    int32_t bias;
};
inline constexpr Depth k8u{255.0f, 127.5f, 510.0f, 0};
inline constexpr Depth k16u{65535.0f, 32767.5f, 131070.0f, 0};
inline constexpr Depth k16s{65535.0f, 32767.5f, 131070.0f, 32768};

// How a float output becomes an integer sample. All truncate toward zero.
enum class Round : uint8_t {
    Half,       // + 0.5f in single precision
    AlmostHalf, // + 0.499999f (bits 0x3EFFFFDE) in single precision: a half goes down
    Tiny,       // widened to double, + 1e-7 (bits 0x3E7AD7F29ABCAF48): a truncation
};
inline constexpr float kAlmostHalf = 0.499999f;
inline constexpr double kTiny = 1e-7;
static_assert(__builtin_bit_cast(uint32_t, kAlmostHalf) == 0x3EFFFFDEu, "0.499999f");
static_assert(__builtin_bit_cast(uint64_t, kTiny) == 0x3E7AD7F29ABCAF48ull, "1e-7");
// Float achromatic threshold: 2^-23, bits 0x34000000.
inline constexpr float kEps = 1.1920929e-7f;
static_assert(__builtin_bit_cast(uint32_t, kEps) == 0x34000000u, "2^-23");

// ---- lane helpers -----------------------------------------------------------------
inline int32_t Trunc(float x) { return int32_t(x); }
inline VI Trunc(VF x) { return __builtin_convertvector(x, VI); }
inline int32_t TruncD(float x) { return int32_t(double(x) + kTiny); }
inline VI TruncD(VF x) {
    const VD d = __builtin_convertvector(x, VD) + kTiny;
    return __builtin_convertvector(d, VI);
}
template <Round R, class V>
inline auto Quant(V x) {
    if constexpr (R == Round::Half) return Trunc(x + 0.5f);
    else if constexpr (R == Round::AlmostHalf) return Trunc(x + kAlmostHalf);
    else return TruncD(x);
}
// Output rules as function objects for the row walker (value, channel).
template <Round R>
struct Quantise {
    template <class V>
    auto operator()(V v, int) const { return Quant<R>(v); }
};
struct Keep {  // float samples are stored as computed
    template <class V>
    V operator()(V v, int) const { return v; }
};

template <class V>
inline V Max3(V a, V b, V c) {
    const V m = a > b ? a : b;
    return m > c ? m : c;
}
template <class V>
inline V Min3(V a, V b, V c) {
    const V m = a < b ? a : b;
    return m < c ? m : c;
}

// Three channels of one pixel (or of kLanes pixels).
template <class V>
struct Px {
    V c0, c1, c2;
};

// Hue in degrees before the wrap below 0, from the differences g - b, b - r,
// r - g and d = max - min: red wins a tie with green or blue, green wins a
// tie with blue. The winner's difference is chosen before the one division,
// and red's hue takes no offset at all (an added +0 would turn a -0 into +0).
template <class V, class M>
inline V HueDegrees(M isR, M isG, V gb, V br, V rg, V d) {
    const V q = ((isR ? gb : (isG ? br : rg)) * 60.0f) / d;
    const V zero{};
    return isR ? q : q + (isG ? zero + 120.0f : zero + 240.0f);
}

// ---- RGB to HLS, integer depths ---------------------------------------------------------
// Returns H x scale / 360, L and S x scale, each before the rounding add.
template <const Depth& D, class V>
inline Px<V> RgbToHlsInt(V r, V g, V b) {
    const V mx = Max3(r, g, b), mn = Min3(r, g, b);
    const V sum = mx + mn;
    const V l = 0.5f * sum;
    const V d = mx - mn;
    V s = d / (D.half >= l ? sum : D.twice - sum);
    V h = HueDegrees(r == mx, g == mx, g - b, b - r, r - g, d);
    h = h < 0.0f ? h + 360.0f : h;
    const auto grey = mx == mn;
    h = grey ? V{} : h;
    s = grey ? V{} : s;
    return {(h * D.scale) / 360.0f, l, s * D.scale};
}

// ---- RGB to HLS, float ------------------------------------------------------------------
template <class V>
inline Px<V> RgbToHlsFloat(V r, V g, V b) {
    const V mx = Max3(r, g, b), mn = Min3(r, g, b);
    const V d = mx - mn;
    const V l = 0.5f * (mn + mx);
    V s = d / (0.5f >= l ? mx + mn : 2.0f - (mx + mn));
    V h = HueDegrees(r == mx, g == mx, g - b, b - r, r - g, d);
    h = h < 0.0f ? h + 360.0f : h;
    // Differences up to one unit of the last place of 1 count as grey.
    const auto grey = d <= kEps;
    h = grey ? V{} : h;
    s = grey ? V{} : s;
    return {h / 360.0f, l, s};
}

// ---- BGR to HLS, 8 bits on normalised floats ------------------------------------------------
// Returns H x 255 / 360, L x 255 and S x 255, before the rounding of the member.
template <class V>
inline Px<V> BgrToHlsNorm(V r, V g, V b) {
    const V fr = r / 255.0f, fg = g / 255.0f, fb = b / 255.0f;
    const V imx = Max3(r, g, b);
    const V mx = imx / 255.0f;
    const V mn = Min3(fr, fg, fb);
    const V d = mx - mn;
    V s = d / (0.5f >= 0.5f * (mx + mn) ? mx + mn : 2.0f - (mx + mn));
    V h = HueDegrees(r == imx, g == imx, fg - fb, fb - fr, fr - fg, d);
    h = h < 0.0f ? h + 360.0f : h;
    const auto grey = d == 0.0f;
    h = grey ? V{} : h;
    s = grey ? V{} : s;
    return {(h * 255.0f) / 360.0f, (0.5f * (mx + mn)) * 255.0f, s * 255.0f};
}

// ---- HLS to RGB, all depths -------------------------------------------------------------
// h in degrees, l and s on 0..1. Returns R, G, B on 0..1.
template <class V>
inline V HueRamp(V m1, V m2, V h) {
    // Rising below 60 degrees, falling from 180 to 240: one ramp over the
    // distance from the nearer end.
    const V ramp = ((m2 - m1) * (60.0f > h ? h : 240.0f - h)) / 60.0f + m1;
    return 60.0f > h ? ramp : (180.0f > h ? m2 : (240.0f > h ? ramp : m1));
}
template <class V>
inline Px<V> HlsToRgbUnit(V h, V l, V s) {
    const V m2 = 0.5f >= l ? (1.0f + s) * l : (l + s) - (s * l);
    const V m1 = (l + l) - m2;
    V hr = h + 120.0f;
    hr = hr > 360.0f ? hr - 360.0f : hr;
    V hb = h - 120.0f;
    hb = hb < 0.0f ? hb + 360.0f : hb;
    const auto grey = s == 0.0f;
    return {grey ? l : HueRamp(m1, m2, hr), grey ? l : HueRamp(m1, m2, h), grey ? l : HueRamp(m1, m2, hb)};
}

// ---- RGB to HSV ----------------------------------------------------------------------
// The 8-bit and the 16-bit members form the sectors differently; `Wide` picks
// the 16-bit arithmetic. Returns the hue and S, each before the rounding add,
// and V as it stands.
template <bool Wide, class V>
inline Px<V> RgbToHsv(V r, V g, V b) {
    constexpr float scale = Wide ? 65535.0f : 255.0f;
    const V v = Max3(r, g, b), mn = Min3(r, g, b);
    const V d = v - mn;
    const V inv = 1.0f / d;
    V s = (d / v) * scale;
    V h;
    // Successive overwrites: blue wins every tie, then green, then red.
    if constexpr (!Wide) {
        const V rr = (v - r) * inv;
        const V hr = (g - b) * inv;
        const V hg = (2.0f - (v - b) * inv) + rr;
        const V hb = ((v - g) * inv + 4.0f) - rr;
        h = b == v ? hb : (g == v ? hg : hr);
        h = (h * 255.0f) / 6.0f;
        h = h < 0.0f ? h + 255.0f : h;
    } else {
        const V a = (v - r) * inv, c = (v - b) * inv, e = (v - g) * inv;
        const V hr = c - e;
        const V hg = (2.0f + a) - c;
        const V hb = (4.0f - a) + e;
        h = b == v ? hb : (g == v ? hg : hr);
        // The test is made in sixths, with a margin: a hue a hair below 0 stays.
        h = h + kEps < 0.0f ? h + 6.0f : h;
        h = (h * 65535.0f) / 6.0f;
    }
    // Black (v = 0) is also v = min.
    const auto grey = v == mn;
    h = grey ? V{} : h;
    s = grey ? V{} : s;
    return {h, s, v};
}

// ---- HSV to RGB ------------------------------------------------------------------------
// From the sector i (0..5), its fraction f, S on 0..1 and V on the integer scale.
template <class V>
inline Px<V> HsvSector(V i, V f, V s, V v) {
    const V p = (1.0f - s) * v;
    const V q = (1.0f - (s * f)) * v;
    const V t = (1.0f - (s * (1.0f - f))) * v;
    const V r = ((i == 0.0f) | (i == 5.0f)) ? v : (i == 1.0f ? q : (i == 4.0f ? t : p));
    const V g = i == 0.0f ? t : (((i == 1.0f) | (i == 2.0f)) ? v : (i == 3.0f ? q : p));
    const V b = ((i == 0.0f) | (i == 1.0f)) ? p : (i == 2.0f ? t : (i == 5.0f ? q : v));
    const auto grey = s == 0.0f;
    return {grey ? v : r, grey ? v : g, grey ? v : b};
}

// ---- row walking ----------------------------------------------------------------------------
// Three channel pointers and the distance between pixels in elements: an
// interleaved image has adjacent channel pointers, a planar one stride 1.
template <class T>
struct Chan {
    T* c[3];
    int stride;
};

template <class T>
inline float In(const T* p, int32_t bias) { return float(int32_t(*p) + bias); }
inline float In(const float* p, int32_t) { return *p; }

template <class T>
inline VF Gather(const T* p, int stride, int32_t bias) {
    return VF{In(p, bias), In(p + stride, bias), In(p + 2 * stride, bias), In(p + 3 * stride, bias)};
}
template <class T>
inline void Put(T* p, int32_t v, int32_t bias) { *p = T(v - bias); }
inline void Put(float* p, float v, int32_t) { *p = v; }
template <class T>
inline void Scatter(T* p, int stride, VI v, int32_t bias) {
    for (int k = 0; k < kLanes; ++k) Put(p + k * stride, v[k], bias);
}
template <class T>
inline void Scatter(T* p, int stride, VF v, int32_t) {
    for (int k = 0; k < kLanes; ++k) p[k * stride] = v[k];
}

// Byte pixels whose three channels are three adjacent bytes, in any order:
// lo is the lowest of the three, s0..s2 the bit shifts of channels 0..2 in a
// little-endian word read at lo.
struct Adjacent {
    bool ok;
    int s0, s1, s2;
};
template <class T>
inline Adjacent AdjacentBytes(const Chan<T>& c) {
    const uintptr_t a0 = uintptr_t(c.c[0]), a1 = uintptr_t(c.c[1]), a2 = uintptr_t(c.c[2]);
    const uintptr_t lo = a0 < a1 ? (a0 < a2 ? a0 : a2) : (a1 < a2 ? a1 : a2);
    const uintptr_t d0 = a0 - lo, d1 = a1 - lo, d2 = a2 - lo;
    const bool ok = d0 <= 2 && d1 <= 2 && d2 <= 2 && d0 != d1 && d1 != d2 && d0 != d2;
    return {ok, int(8 * d0), int(8 * d1), int(8 * d2)};
}

// Packed byte rows, kLanes pixels at a time: each pixel read as one 32-bit
// word (its fourth byte belongs to the next pixel or to alpha and is
// dropped), and written as its three bytes. Returns the pixels done; a
// three-byte row stops one pixel early, so that no word reaches past the row.
template <int PS, int PD, class F, class Q>
inline int RowWords(const Chan<const uint8_t>& in, const Adjacent& ai, const Chan<uint8_t>& out,
                    const Adjacent& ao, int width, F f, Q q) {
    const uint8_t* s = in.c[0] - ai.s0 / 8;
    uint8_t* d = out.c[0] - ao.s0 / 8;
    constexpr int ps = PS, pd = PD;
    int x = 0;
    for (; x + kLanes + (ps == 3) <= width; x += kLanes, s += kLanes * ps, d += kLanes * pd) {
        uint32_t w[kLanes];
        for (int k = 0; k < kLanes; ++k) __builtin_memcpy(&w[k], s + k * ps, 4);
        const VI v = {int32_t(w[0]), int32_t(w[1]), int32_t(w[2]), int32_t(w[3])};
        const VI m = {255, 255, 255, 255};
        const Px<VF> o = f(__builtin_convertvector((v >> ai.s0) & m, VF), __builtin_convertvector((v >> ai.s1) & m, VF),
                           __builtin_convertvector((v >> ai.s2) & m, VF));
        const VI r = (q(o.c0, 0) & m) << ao.s0 | (q(o.c1, 1) & m) << ao.s1 | (q(o.c2, 2) & m) << ao.s2;
        for (int k = 0; k < kLanes; ++k) {
            const uint32_t u = uint32_t(r[k]);
            if (pd == 3 && k + 1 < kLanes) {
                __builtin_memcpy(d + k * pd, &u, 4);  // the fourth byte is the next pixel's, rewritten next
            } else {
                const uint16_t lo16 = uint16_t(u);
                __builtin_memcpy(d + k * pd, &lo16, 2);
                d[k * pd + 2] = uint8_t(u >> 16);
            }
        }
    }
    return x;
}

// One row: F(pixel of V lanes) -> Px<V> of float results; Q turns a float
// result of channel ch into what is stored (an integer, or the float itself).
// The vector body and the scalar tail call the same F.
template <class TI, class TO, class F, class Q>
inline void Row(const Chan<const TI>& in, const Chan<TO>& out, int width, int32_t bias, F f, Q q) {
    int x = 0;
    if constexpr (sizeof(TI) == 1 && sizeof(TO) == 1) {
        const Adjacent ai = AdjacentBytes(in), ao = AdjacentBytes(out);
        if (ai.ok && ao.ok) {
            // The common pixel strides as constants; channel orders stay data.
            if (in.stride == 3 && out.stride == 3) x = RowWords<3, 3>(in, ai, out, ao, width, f, q);
            else if (in.stride == 4 && out.stride == 4) x = RowWords<4, 4>(in, ai, out, ao, width, f, q);
        }
    }
    for (; x + kLanes <= width; x += kLanes) {
        const int si = x * in.stride, so = x * out.stride;
        const Px<VF> o = f(Gather(in.c[0] + si, in.stride, bias), Gather(in.c[1] + si, in.stride, bias),
                           Gather(in.c[2] + si, in.stride, bias));
        Scatter(out.c[0] + so, out.stride, q(o.c0, 0), bias);
        Scatter(out.c[1] + so, out.stride, q(o.c1, 1), bias);
        Scatter(out.c[2] + so, out.stride, q(o.c2, 2), bias);
    }
    for (; x < width; ++x) {
        const int si = x * in.stride, so = x * out.stride;
        const Px<float> o = f(In(in.c[0] + si, bias), In(in.c[1] + si, bias), In(in.c[2] + si, bias));
        Put(out.c[0] + so, q(o.c0, 0), bias);
        Put(out.c[1] + so, q(o.c1, 1), bias);
        Put(out.c[2] + so, q(o.c2, 2), bias);
    }
}

// ---- the RGB group's check layer -------------------------------------------------------------
// Byte step to element step: an arithmetic shift, so a remainder is dropped.
template <class T>
constexpr int Elems(int byteStep) {
    return sizeof(T) == 1 ? byteStep : sizeof(T) == 2 ? byteStep >> 1 : byteStep >> 2;
}
// Null source or destination, then a width or height below 1; steps are not
// looked at. The row layer takes steps in elements and the pixel stride.
template <class T, void (*My)(const T*, int, T*, int, ZilSize, int)>
inline ZilStatus RgbGroupCall(const T* src, int srcStep, T* dst, int dstStep, ZilSize sz, int stride) {
    if (AnyNull(src, dst)) return zilStatusNullPointer;
    if (TooSmall(sz)) return zilStatusBadSize;
    My(src, Elems<T>(srcStep), dst, Elems<T>(dstStep), sz, stride);
    return zilStatusOk;
}

// Channel pointers of an interleaved row whose channel 0, 1, 2 are at offsets a, b, c.
template <class T>
inline Chan<T> Packed(T* p, int stride, int a = 0, int b = 1, int c = 2) {
    return {{p + a, p + b, p + c}, stride};
}

}  // namespace zil::hue
