// RGB <-> HSV exports, 8 and 16 bits: per depth one row kernel mx_inner...
// (C3R and AC4R differ only in the pixel stride) and its row layer mx_my...,
// which takes steps in elements.
#include "hsv8_walk.h"
#include "hue_kernels.h"
#include "primitives/utils.h"

namespace zil::hue {
namespace {

template <bool Wide>
struct ToHsv {
    template <class V>
    Px<V> operator()(V r, V g, V b) const { return RgbToHsv<Wide>(r, g, b); }
};
// H and S take the rounding add; V is an integer already.
struct HsvQuant {
    template <class V>
    auto operator()(V v, int ch) const { return ch == 2 ? Trunc(v) : Trunc(v + 0.5f); }
};

// Sector and fraction of a hue sample. Full scale wraps to red.
struct Sector {
    float i, f;
};
template <const Depth& D>
Sector SectorOf(float c0) {
    const float h = c0 < D.scale ? ((c0 * 360.0f) / D.scale) / 60.0f : 0.0f;
    const float i = mx_zilsFloorOneF(h);
    return {i, h - i};
}

// Per pixel, or four lanes at a time with the same steps as SectorOf: h is
// never negative, so its floor is its truncation.
template <const Depth& D>
struct FromHsv {
    Px<float> operator()(float c0, float c1, float c2) const {
        const Sector sc = SectorOf<D>(c0);
        return HsvSector(sc.i, sc.f, c1 / D.scale, c2);
    }
    Px<VF> operator()(VF c0, VF c1, VF c2) const {
        const VF h = c0 < D.scale ? ((c0 * 360.0f) / D.scale) / 60.0f : VF{};
        const VF i = __builtin_convertvector(Trunc(h), VF);
        return HsvSector(i, h - i, c1 / D.scale, c2);
    }
};

}  // namespace

ZIL_IMPL void mx_innerRGBToHSV_8u_C3R(const uint8_t* s, uint8_t* d, int width, int stride) {
    if (width < 1) return;
    // Blocks of sixteen by the tables, the rest by the formula.
    const int x = stride == 3 ? RgbToHsv8Blocks<3>(s, d, width) : stride == 4 ? RgbToHsv8Blocks<4>(s, d, width) : 0;
    if (x == width) return;
    Row(Packed(s + x * stride, stride), Packed(d + x * stride, stride), width - x, 0, ToHsv<false>{}, HsvQuant{});
}
ZIL_IMPL void mx_innerRGBToHSV_16u_C3R(const uint16_t* s, uint16_t* d, int width, int stride) {
    if (width < 1) return;
    Row(Packed(s, stride), Packed(d, stride), width, 0, ToHsv<true>{}, HsvQuant{});
}
// tab: the per-call sector and S tables of the 8-bit bytes.
ZIL_IMPL void mx_innerHSVToRGB_8u_C3R(const uint8_t* s, uint8_t* d, int width, int stride, const Hsv8Tables* tab) {
    if (width < 1) return;
    const int x = stride == 3 ? HsvToRgb8Quads<3>(s, d, width, tab) : stride == 4 ? HsvToRgb8Quads<4>(s, d, width, tab) : 0;
    if (x == width) return;
    Row(Packed(s + x * stride, stride), Packed(d + x * stride, stride), width - x, 0, FromHsv<k8u>{},
        Quantise<Round::Half>{});
}
ZIL_IMPL void mx_innerHSVToRGB_16u_C3R(const uint16_t* s, uint16_t* d, int width, int stride) {
    if (width < 1) return;
    Row(Packed(s, stride), Packed(d, stride), width, 0, FromHsv<k16u>{}, Quantise<Round::Half>{});
}

ZIL_IMPL void mx_myRGBToHSV_8u_C3R(const uint8_t* s, int ss, uint8_t* d, int ds, ZilSize sz, int stride) {
    for (int y = 0; y < sz.height; ++y, s += ss, d += ds) mx_innerRGBToHSV_8u_C3R(s, d, sz.width, stride);
}
ZIL_IMPL void mx_myRGBToHSV_16u_C3R(const uint16_t* s, int ss, uint16_t* d, int ds, ZilSize sz, int stride) {
    for (int y = 0; y < sz.height; ++y, s += ss, d += ds) mx_innerRGBToHSV_16u_C3R(s, d, sz.width, stride);
}
// The sector of each hue byte, worked out once a call: even sectors take
// T, odd ones Q; sector 2k puts V in channel k, X in k + 1 and P in k + 2
// (mod 3), sector 2k + 1 X in k, V in k + 1.
ZIL_IMPL void mx_myHSVToRGB_8u_C3R(const uint8_t* s, int ss, uint8_t* d, int ds, ZilSize sz, int stride) {
    Hsv8Tables tab;
    for (int k = 0; k < 256; ++k) {
        const Sector sc = SectorOf<k8u>(float(k));
        const int i = int(sc.i), odd = i & 1, c = i >> 1;
        const auto place = [](int ch) { return float(1 << (8 * (ch % 3))); };
        tab.sat[k] = float(k) / k8u.scale;
        tab.sec[k] = {odd ? sc.f : 1.0f - sc.f, place(c + odd), place(c + 1 - odd), place(c + 2)};
    }
    for (int y = 0; y < sz.height; ++y, s += ss, d += ds) mx_innerHSVToRGB_8u_C3R(s, d, sz.width, stride, &tab);
}
ZIL_IMPL void mx_myHSVToRGB_16u_C3R(const uint16_t* s, int ss, uint16_t* d, int ds, ZilSize sz, int stride) {
    for (int y = 0; y < sz.height; ++y, s += ss, d += ds) mx_innerHSVToRGB_16u_C3R(s, d, sz.width, stride);
}

#define ZIL_HSV_EXPORT(STEM, LAYOUT, T, STRIDE)                                                            \
    ZIL_IMPL ZilStatus mx_zili##STEM##_##LAYOUT(const T* src, int srcStep, T* dst, int dstStep, ZilSize sz) { \
        return RgbGroupCall<T, mx_my##STEM##_C3R>(src, srcStep, dst, dstStep, sz, STRIDE);                 \
    }
ZIL_HSV_EXPORT(RGBToHSV_8u, C3R, uint8_t, 3)
ZIL_HSV_EXPORT(RGBToHSV_8u, AC4R, uint8_t, 4)
ZIL_HSV_EXPORT(RGBToHSV_16u, C3R, uint16_t, 3)
ZIL_HSV_EXPORT(RGBToHSV_16u, AC4R, uint16_t, 4)
ZIL_HSV_EXPORT(HSVToRGB_8u, C3R, uint8_t, 3)
ZIL_HSV_EXPORT(HSVToRGB_8u, AC4R, uint8_t, 4)
ZIL_HSV_EXPORT(HSVToRGB_16u, C3R, uint16_t, 3)
ZIL_HSV_EXPORT(HSVToRGB_16u, AC4R, uint16_t, 4)
#undef ZIL_HSV_EXPORT

}  // namespace zil::hue
