// RGB/BGR <-> HLS exports.
//
// The RGB group: per depth one row kernel mx_inner... (shared by the C3R and
// the AC4R member, which differ only in the pixel stride) and its row layer
// mx_my..., which takes steps in elements. The BGR group (8 bits): one walker
// over channel pointers, with each member's layout, alpha rule, rounding and
// order of checks as data.
#include "hls8_rows.h"
#include "hue_kernels.h"

namespace zil::hue {
namespace {

// ---- formulas bound to depths --------------------------------------------------------
template <const Depth& D>
struct ToHls {
    template <class V>
    Px<V> operator()(V r, V g, V b) const { return RgbToHlsInt<D>(r, g, b); }
};
struct ToHlsFloat {
    template <class V>
    Px<V> operator()(V r, V g, V b) const { return RgbToHlsFloat(r, g, b); }
};
// Integer HLS samples to R, G, B times the scale.
template <const Depth& D>
struct FromHls {
    template <class V>
    Px<V> operator()(V h, V l, V s) const {
        const Px<V> o = HlsToRgbUnit((h * 360.0f) / D.scale, l / D.scale, s / D.scale);
        return {o.c0 * D.scale, o.c1 * D.scale, o.c2 * D.scale};
    }
};
struct FromHlsFloat {
    template <class V>
    Px<V> operator()(V h, V l, V s) const { return HlsToRgbUnit(h * 360.0f, l, s); }
};
struct ToHlsNorm {
    template <class V>
    Px<V> operator()(V r, V g, V b) const { return BgrToHlsNorm(r, g, b); }
};

// One RGB-group row: channels 0, 1, 2 of pixels `stride` elements apart; the
// fourth element of a four-element pixel is never touched.
template <class T, class F, class Q, int32_t Bias = 0>
inline void RgbRow(const T* s, T* d, int width, int stride) {
    Row(Packed(s, stride), Packed(d, stride), width, Bias, F{}, Q{});
}

// Row layer: steps in elements.
template <class T, void (*K)(const T*, T*, int, int)>
inline void WalkElems(const T* s, int ss, T* d, int ds, ZilSize sz, int stride) {
    for (int y = 0; y < sz.height; ++y, s += ss, d += ds) K(s, d, sz.width, stride);
}

}  // namespace

// ---- RGB group: kernels, row layers, check layers ------------------------------------------
// ROW: the row kernel (source, destination, width, pixel stride).
#define ZIL_HLS_LAYERS(STEM, T, ROW)                                                                   \
    ZIL_IMPL void mx_inner##STEM##_C3R(const T* s, T* d, int width, int stride) {                      \
        if (width < 1) return;                                                                         \
        ROW(s, d, width, stride);                                                                      \
    }                                                                                                  \
    ZIL_IMPL void mx_my##STEM##_C3R(const T* s, int ss, T* d, int ds, ZilSize sz, int stride) {        \
        WalkElems<T, mx_inner##STEM##_C3R>(s, ss, d, ds, sz, stride);                                  \
    }                                                                                                  \
    ZIL_IMPL ZilStatus mx_zili##STEM##_C3R(const T* src, int srcStep, T* dst, int dstStep, ZilSize sz) { \
        return RgbGroupCall<T, mx_my##STEM##_C3R>(src, srcStep, dst, dstStep, sz, 3);                  \
    }                                                                                                  \
    ZIL_IMPL ZilStatus mx_zili##STEM##_AC4R(const T* src, int srcStep, T* dst, int dstStep, ZilSize sz) { \
        return RgbGroupCall<T, mx_my##STEM##_C3R>(src, srcStep, dst, dstStep, sz, 4);                  \
    }

ZIL_HLS_LAYERS(RGBToHLS_8u, uint8_t, Hls8FromRgbRow)
ZIL_HLS_LAYERS(RGBToHLS_16u, uint16_t, (RgbRow<uint16_t, ToHls<k16u>, Quantise<Round::Half>>))
ZIL_HLS_LAYERS(RGBToHLS_16s, int16_t, (RgbRow<int16_t, ToHls<k16s>, Quantise<Round::Half>, k16s.bias>))
ZIL_HLS_LAYERS(RGBToHLS_32f, float, (RgbRow<float, ToHlsFloat, Keep>))
ZIL_HLS_LAYERS(HLSToRGB_8u, uint8_t, Hls8ToRgbRow)
ZIL_HLS_LAYERS(HLSToRGB_16u, uint16_t, (RgbRow<uint16_t, FromHls<k16u>, Quantise<Round::Half>>))
ZIL_HLS_LAYERS(HLSToRGB_16s, int16_t, (RgbRow<int16_t, FromHls<k16s>, Quantise<Round::Half>, k16s.bias>))
ZIL_HLS_LAYERS(HLSToRGB_32f, float, (RgbRow<float, FromHlsFloat, Keep>))
#undef ZIL_HLS_LAYERS

// ---- BGR group ------------------------------------------------------------------------------
namespace {

enum class Checks : uint8_t { NullStepSize, NullSizeStep };

ZilStatus BgrChecks(bool anyNull, int srcStep, int dstStep, ZilSize sz, Checks order) {
    if (anyNull) return zilStatusNullPointer;
    const bool badStep = srcStep < 1 || dstStep < 1;
    if (order == Checks::NullStepSize && badStep) return zilStatusBadStep;
    if (TooSmall(sz)) return zilStatusBadSize;
    if (badStep) return zilStatusBadStep;
    return zilStatusOk;
}

template <int N>
bool NullPlanes(const uint8_t* const* p) {
    for (int i = 0; i < N; ++i)
        if (p[i] == nullptr) return true;
    return false;
}

// An image side of a BGR-group call: B, G, R or H, L, S channel pointers of
// row 0 (in the order the formula takes them), the pixel stride, the alpha
// channel (null if none, or if the member leaves it alone) and the byte step
// of all planes.
template <class T>
struct Side {
    Chan<T> ch;
    T* alpha;
    int step;
};

// Argument kinds: K > 0 packed with K channels, K < 0 an array of -K planes.
constexpr int kPk3 = 3, kPk4 = 4, kPl3 = -3, kPl4 = -4;
template <int K>
bool NullArg(const uint8_t* p) { return p == nullptr; }
template <int K>
bool NullArg(const uint8_t* const* p) { return p == nullptr || NullPlanes<-K>(p); }

template <int K, class T>
Side<T> SideOf(T* p, int step, bool bgr, bool alpha) {
    return {bgr ? Packed(p, K, 2, 1, 0) : Packed(p, K), K == 4 && alpha ? p + 3 : nullptr, step};
}
template <int K, class T>
Side<T> SideOf(T* const* p, int step, bool bgr, bool) {
    const Chan<T> c = bgr ? Chan<T>{{p[2], p[1], p[0]}, 1} : Chan<T>{{p[0], p[1], p[2]}, 1};
    return {c, K == kPl4 ? p[3] : nullptr, step};
}

// ToHlsDir: BGR to HLS with rounding R; otherwise HLS to BGR.
template <bool ToHlsDir, Round R>
void BgrWalk(Side<const uint8_t> in, Side<uint8_t> out, ZilSize sz) {
    const int as = in.ch.stride, ad = out.ch.stride;
    for (int y = 0; y < sz.height; ++y) {
        if constexpr (ToHlsDir)
            Row(in.ch, out.ch, sz.width, 0, ToHlsNorm{}, Quantise<R>{});
        else
            Row(in.ch, out.ch, sz.width, 0, FromHls<k8u>{}, Quantise<R>{});
        if (out.alpha)
            for (int x = 0; x < sz.width; ++x) out.alpha[x * ad] = in.alpha[x * as];
        for (int k = 0; k < 3; ++k) in.ch.c[k] += in.step, out.ch.c[k] += out.step;
        if (in.alpha) in.alpha += in.step;
        if (out.alpha) out.alpha += out.step;
    }
}

}  // namespace

// One line per export: argument types and kinds, order of checks, direction,
// rounding, and whether a four-channel destination receives the alpha. The
// packed four-channel BGR to HLS member alone rounds to nearest, checks the
// size before the steps and leaves the destination alpha alone.
#define ZIL_BGR(NAME, ST, SK, DT, DK, ORDER, TOHLS, R, ALPHA)                                        \
    ZIL_IMPL ZilStatus mx_zili##NAME(ST src, int srcStep, DT dst, int dstStep, ZilSize sz) {         \
        if (ZilStatus st = BgrChecks(NullArg<SK>(src) || NullArg<DK>(dst), srcStep, dstStep, sz, ORDER)) \
            return st;                                                                               \
        BgrWalk<TOHLS, R>(SideOf<SK>(src, srcStep, TOHLS, true), SideOf<DK>(dst, dstStep, !TOHLS, ALPHA), sz); \
        return zilStatusOk;                                                                          \
    }
using P = const uint8_t*;
using PP = const uint8_t* const*;
using D = uint8_t*;
using DD = uint8_t* const*;
constexpr Checks kSS = Checks::NullStepSize;
constexpr Round kTrunc = Round::Tiny;
ZIL_BGR(BGRToHLS_8u_AC4R, P, kPk4, D, kPk4, Checks::NullSizeStep, true, Round::AlmostHalf, false)
ZIL_BGR(BGRToHLS_8u_C3P3R, P, kPk3, DD, kPl3, kSS, true, kTrunc, true)
ZIL_BGR(BGRToHLS_8u_AC4P4R, P, kPk4, DD, kPl4, kSS, true, kTrunc, true)
ZIL_BGR(BGRToHLS_8u_P3R, PP, kPl3, DD, kPl3, kSS, true, kTrunc, true)
ZIL_BGR(BGRToHLS_8u_AP4R, PP, kPl4, DD, kPl4, kSS, true, kTrunc, true)
ZIL_BGR(BGRToHLS_8u_P3C3R, PP, kPl3, D, kPk3, kSS, true, kTrunc, true)
ZIL_BGR(BGRToHLS_8u_AP4C4R, PP, kPl4, D, kPk4, kSS, true, kTrunc, true)
ZIL_BGR(HLSToBGR_8u_C3P3R, P, kPk3, DD, kPl3, kSS, false, kTrunc, true)
ZIL_BGR(HLSToBGR_8u_AC4P4R, P, kPk4, DD, kPl4, kSS, false, kTrunc, true)
ZIL_BGR(HLSToBGR_8u_P3R, PP, kPl3, DD, kPl3, kSS, false, kTrunc, true)
ZIL_BGR(HLSToBGR_8u_AP4R, PP, kPl4, DD, kPl4, kSS, false, kTrunc, true)
ZIL_BGR(HLSToBGR_8u_P3C3R, PP, kPl3, D, kPk3, kSS, false, kTrunc, true)
ZIL_BGR(HLSToBGR_8u_AP4C4R, PP, kPl4, D, kPk4, kSS, false, kTrunc, true)
#undef ZIL_BGR

}  // namespace zil::hue
