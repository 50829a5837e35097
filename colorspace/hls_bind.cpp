// RGB/BGR <-> HLS exports.
//
// The RGB group: per depth one row kernel mx_inner... (shared by the C3R and
// the AC4R member, which differ only in the pixel stride) and its row layer
// mx_my..., which takes steps in elements. The BGR group (8 bits): one walker
// over channel pointers, with each member's layout, alpha rule, rounding and
// order of checks as data.
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
template <class T, class F, class Q>
inline void RgbRow(const T* s, T* d, int width, int stride, int32_t bias) {
    Row(Packed(s, stride), Packed(d, stride), width, bias, F{}, Q{});
}

// Row layer: steps in elements.
template <class T, void (*K)(const T*, T*, int, int)>
inline void WalkElems(const T* s, int ss, T* d, int ds, ZilSize sz, int stride) {
    for (int y = 0; y < sz.height; ++y, s += ss, d += ds) K(s, d, sz.width, stride);
}

// Byte step to element step: an arithmetic shift, so a remainder is dropped.
template <class T>
constexpr int Elems(int byteStep) {
    return sizeof(T) == 1 ? byteStep : sizeof(T) == 2 ? byteStep >> 1 : byteStep >> 2;
}

}  // namespace

// ---- RGB group: kernels, row layers, check layers ------------------------------------------
#define ZIL_HLS_LAYERS(STEM, T, F, Q, BIAS)                                                            \
    ZIL_IMPL void mx_inner##STEM##_C3R(const T* s, T* d, int width, int stride) {                      \
        if (width < 1) return;                                                                         \
        RgbRow<T, F, Q>(s, d, width, stride, BIAS);                                                    \
    }                                                                                                  \
    ZIL_IMPL void mx_my##STEM##_C3R(const T* s, int ss, T* d, int ds, ZilSize sz, int stride) {        \
        WalkElems<T, mx_inner##STEM##_C3R>(s, ss, d, ds, sz, stride);                                  \
    }                                                                                                  \
    ZIL_IMPL ZilStatus mx_zili##STEM##_C3R(const T* src, int srcStep, T* dst, int dstStep, ZilSize sz) { \
        if (AnyNull(src, dst)) return zilStatusNullPointer;                                            \
        if (TooSmall(sz)) return zilStatusBadSize;                                                     \
        mx_my##STEM##_C3R(src, Elems<T>(srcStep), dst, Elems<T>(dstStep), sz, 3);                      \
        return zilStatusOk;                                                                            \
    }                                                                                                  \
    ZIL_IMPL ZilStatus mx_zili##STEM##_AC4R(const T* src, int srcStep, T* dst, int dstStep, ZilSize sz) { \
        if (AnyNull(src, dst)) return zilStatusNullPointer;                                            \
        if (TooSmall(sz)) return zilStatusBadSize;                                                     \
        mx_my##STEM##_C3R(src, Elems<T>(srcStep), dst, Elems<T>(dstStep), sz, 4);                      \
        return zilStatusOk;                                                                            \
    }

ZIL_HLS_LAYERS(RGBToHLS_8u, uint8_t, ToHls<k8u>, Quantise<Round::Half>, 0)
ZIL_HLS_LAYERS(RGBToHLS_16u, uint16_t, ToHls<k16u>, Quantise<Round::Half>, 0)
ZIL_HLS_LAYERS(RGBToHLS_16s, int16_t, ToHls<k16s>, Quantise<Round::Half>, k16s.bias)
ZIL_HLS_LAYERS(RGBToHLS_32f, float, ToHlsFloat, Keep, 0)
ZIL_HLS_LAYERS(HLSToRGB_8u, uint8_t, FromHls<k8u>, Quantise<Round::Half>, 0)
ZIL_HLS_LAYERS(HLSToRGB_16u, uint16_t, FromHls<k16u>, Quantise<Round::Half>, 0)
ZIL_HLS_LAYERS(HLSToRGB_16s, int16_t, FromHls<k16s>, Quantise<Round::Half>, k16s.bias)
ZIL_HLS_LAYERS(HLSToRGB_32f, float, FromHlsFloat, Keep, 0)
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
// channel (null if none) and the byte step of all planes.
template <class T>
struct Side {
    Chan<T> ch;
    T* alpha;
    int step;
};
Side<const uint8_t> PackedIn(const uint8_t* p, int step, int stride, bool bgr) {
    return {bgr ? Packed(p, stride, 2, 1, 0) : Packed(p, stride), stride == 4 ? p + 3 : nullptr, step};
}
Side<uint8_t> PackedOut(uint8_t* p, int step, int stride, bool bgr, bool alpha) {
    return {bgr ? Packed(p, stride, 2, 1, 0) : Packed(p, stride), alpha ? p + 3 : nullptr, step};
}
template <int N, class T>
Side<T> PlanarSide(T* const* p, int step, bool bgr) {
    Chan<T> c = bgr ? Chan<T>{{p[2], p[1], p[0]}, 1} : Chan<T>{{p[0], p[1], p[2]}, 1};
    return {c, N == 4 ? p[3] : nullptr, step};
}

// ToHls: BGR to HLS with rounding R; otherwise HLS to BGR (rounding Tiny).
template <bool ToHlsDir, Round R>
void BgrWalk(Side<const uint8_t> in, Side<uint8_t> out, ZilSize sz) {
    const int as = in.alpha ? in.ch.stride : 0, ad = out.ch.stride;
    for (int y = 0; y < sz.height; ++y) {
        if constexpr (ToHlsDir)
            Row(in.ch, out.ch, sz.width, 0, ToHlsNorm{}, Quantise<R>{});
        else
            Row(in.ch, out.ch, sz.width, 0, FromHls<k8u>{}, Quantise<Round::Tiny>{});
        if (out.alpha)
            for (int x = 0; x < sz.width; ++x) out.alpha[x * ad] = in.alpha[x * as];
        for (int k = 0; k < 3; ++k) in.ch.c[k] += in.step, out.ch.c[k] += out.step;
        if (in.alpha) in.alpha += in.step;
        if (out.alpha) out.alpha += out.step;
    }
}

constexpr bool kBgr = true, kHls = false;
constexpr Round kTrunc = Round::Tiny;

}  // namespace

// BGR to HLS. The packed four-channel member alone rounds to nearest, checks
// the size before the steps and leaves the destination alpha alone.
ZIL_IMPL ZilStatus mx_ziliBGRToHLS_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = BgrChecks(AnyNull(src, dst), srcStep, dstStep, sz, Checks::NullSizeStep)) return st;
    BgrWalk<true, Round::AlmostHalf>(PackedIn(src, srcStep, 4, kBgr), PackedOut(dst, dstStep, 4, kHls, false), sz);
    return zilStatusOk;
}
ZIL_IMPL ZilStatus mx_ziliBGRToHLS_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep,
                                           ZilSize sz) {
    if (ZilStatus st = BgrChecks(AnyNull(src, dst) || NullPlanes<3>(dst), srcStep, dstStep, sz, Checks::NullStepSize))
        return st;
    BgrWalk<true, kTrunc>(PackedIn(src, srcStep, 3, kBgr), PlanarSide<3>(dst, dstStep, kHls), sz);
    return zilStatusOk;
}
ZIL_IMPL ZilStatus mx_ziliBGRToHLS_8u_AC4P4R(const uint8_t* src, int srcStep, uint8_t* const dst[4], int dstStep,
                                            ZilSize sz) {
    if (ZilStatus st = BgrChecks(AnyNull(src, dst) || NullPlanes<4>(dst), srcStep, dstStep, sz, Checks::NullStepSize))
        return st;
    BgrWalk<true, kTrunc>(PackedIn(src, srcStep, 4, kBgr), PlanarSide<4>(dst, dstStep, kHls), sz);
    return zilStatusOk;
}
ZIL_IMPL ZilStatus mx_ziliBGRToHLS_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3],
                                         int dstStep, ZilSize sz) {
    if (ZilStatus st = BgrChecks(AnyNull(src, dst) || NullPlanes<3>(src) || NullPlanes<3>(dst), srcStep, dstStep, sz,
                                 Checks::NullStepSize))
        return st;
    BgrWalk<true, kTrunc>(PlanarSide<3>(src, srcStep, kBgr), PlanarSide<3>(dst, dstStep, kHls), sz);
    return zilStatusOk;
}
ZIL_IMPL ZilStatus mx_ziliBGRToHLS_8u_AP4R(const uint8_t* const src[4], int srcStep, uint8_t* const dst[4],
                                          int dstStep, ZilSize sz) {
    if (ZilStatus st = BgrChecks(AnyNull(src, dst) || NullPlanes<4>(src) || NullPlanes<4>(dst), srcStep, dstStep, sz,
                                 Checks::NullStepSize))
        return st;
    BgrWalk<true, kTrunc>(PlanarSide<4>(src, srcStep, kBgr), PlanarSide<4>(dst, dstStep, kHls), sz);
    return zilStatusOk;
}
ZIL_IMPL ZilStatus mx_ziliBGRToHLS_8u_P3C3R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep,
                                           ZilSize sz) {
    if (ZilStatus st = BgrChecks(AnyNull(src, dst) || NullPlanes<3>(src), srcStep, dstStep, sz, Checks::NullStepSize))
        return st;
    BgrWalk<true, kTrunc>(PlanarSide<3>(src, srcStep, kBgr), PackedOut(dst, dstStep, 3, kHls, false), sz);
    return zilStatusOk;
}
ZIL_IMPL ZilStatus mx_ziliBGRToHLS_8u_AP4C4R(const uint8_t* const src[4], int srcStep, uint8_t* dst, int dstStep,
                                            ZilSize sz) {
    if (ZilStatus st = BgrChecks(AnyNull(src, dst) || NullPlanes<4>(src), srcStep, dstStep, sz, Checks::NullStepSize))
        return st;
    BgrWalk<true, kTrunc>(PlanarSide<4>(src, srcStep, kBgr), PackedOut(dst, dstStep, 4, kHls, true), sz);
    return zilStatusOk;
}

// HLS to BGR: all truncate after the tiny add, all check steps before the size.
ZIL_IMPL ZilStatus mx_ziliHLSToBGR_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep,
                                           ZilSize sz) {
    if (ZilStatus st = BgrChecks(AnyNull(src, dst) || NullPlanes<3>(dst), srcStep, dstStep, sz, Checks::NullStepSize))
        return st;
    BgrWalk<false, kTrunc>(PackedIn(src, srcStep, 3, kHls), PlanarSide<3>(dst, dstStep, kBgr), sz);
    return zilStatusOk;
}
ZIL_IMPL ZilStatus mx_ziliHLSToBGR_8u_AC4P4R(const uint8_t* src, int srcStep, uint8_t* const dst[4], int dstStep,
                                            ZilSize sz) {
    if (ZilStatus st = BgrChecks(AnyNull(src, dst) || NullPlanes<4>(dst), srcStep, dstStep, sz, Checks::NullStepSize))
        return st;
    BgrWalk<false, kTrunc>(PackedIn(src, srcStep, 4, kHls), PlanarSide<4>(dst, dstStep, kBgr), sz);
    return zilStatusOk;
}
ZIL_IMPL ZilStatus mx_ziliHLSToBGR_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3],
                                         int dstStep, ZilSize sz) {
    if (ZilStatus st = BgrChecks(AnyNull(src, dst) || NullPlanes<3>(src) || NullPlanes<3>(dst), srcStep, dstStep, sz,
                                 Checks::NullStepSize))
        return st;
    BgrWalk<false, kTrunc>(PlanarSide<3>(src, srcStep, kHls), PlanarSide<3>(dst, dstStep, kBgr), sz);
    return zilStatusOk;
}
ZIL_IMPL ZilStatus mx_ziliHLSToBGR_8u_AP4R(const uint8_t* const src[4], int srcStep, uint8_t* const dst[4],
                                          int dstStep, ZilSize sz) {
    if (ZilStatus st = BgrChecks(AnyNull(src, dst) || NullPlanes<4>(src) || NullPlanes<4>(dst), srcStep, dstStep, sz,
                                 Checks::NullStepSize))
        return st;
    BgrWalk<false, kTrunc>(PlanarSide<4>(src, srcStep, kHls), PlanarSide<4>(dst, dstStep, kBgr), sz);
    return zilStatusOk;
}
ZIL_IMPL ZilStatus mx_ziliHLSToBGR_8u_P3C3R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep,
                                           ZilSize sz) {
    if (ZilStatus st = BgrChecks(AnyNull(src, dst) || NullPlanes<3>(src), srcStep, dstStep, sz, Checks::NullStepSize))
        return st;
    BgrWalk<false, kTrunc>(PlanarSide<3>(src, srcStep, kHls), PackedOut(dst, dstStep, 3, kBgr, false), sz);
    return zilStatusOk;
}
ZIL_IMPL ZilStatus mx_ziliHLSToBGR_8u_AP4C4R(const uint8_t* const src[4], int srcStep, uint8_t* dst, int dstStep,
                                            ZilSize sz) {
    if (ZilStatus st = BgrChecks(AnyNull(src, dst) || NullPlanes<4>(src), srcStep, dstStep, sz, Checks::NullStepSize))
        return st;
    BgrWalk<false, kTrunc>(PlanarSide<4>(src, srcStep, kHls), PackedOut(dst, dstStep, 4, kBgr, true), sz);
    return zilStatusOk;
}

}  // namespace zil::hue
