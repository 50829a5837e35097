// Tone mapping: a single-channel float image to 8 bits by one global scale,
// taken from the image's maximum (linear) or from twice its mean (mean).
//
// Both forms read the image twice: once for the statistic, through the
// internal utilities, and once to convert. They differ in the statistic, its
// precision and limit, and in the store: the linear form keeps the low 8 bits
// of the truncated product, the mean form clamps it to 0..255.
#include <emmintrin.h>

#include "primitives/utils.h"

namespace zil::tone {
namespace {

enum class Store { LowByte, Clamp };

// trunc(s * k) of 16 samples as 16 bytes. The truncation of a product beyond
// the 32-bit range (or NaN) is the integer 0x80000000, as for one sample.
template <Store kStore>
inline __m128i Map16(const float* s, __m128 k) {
    __m128i t[4];
    for (int j = 0; j < 4; ++j) t[j] = _mm_cvttps_epi32(_mm_mul_ps(_mm_loadu_ps(s + 4 * j), k));
    if constexpr (kStore == Store::LowByte) {
        const __m128i low = _mm_set1_epi32(0xFF);
        for (__m128i& v : t) v = _mm_and_si128(v, low);
    }
    // Two saturating packs clamp a 32-bit value to 0..255 (and leave 0..255 as is).
    return _mm_packus_epi16(_mm_packs_epi32(t[0], t[1]), _mm_packs_epi32(t[2], t[3]));
}

template <Store kStore>
inline uint8_t Map1(float s, float k) {
    const int32_t t = _mm_cvttss_si32(_mm_set_ss(s * k));
    if constexpr (kStore == Store::LowByte) return uint8_t(t);
    else return uint8_t(Clamp255(t));
}

template <Store kStore>
void MapImage(const float* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roi, float k) {
    const int w = roi.width;
    const __m128 kv = _mm_set1_ps(k);
    for (int y = 0; y < roi.height; ++y, src = AdvanceT(src, srcStep), dst = Advance(dst, dstStep)) {
        // Rows that share bytes go sample after sample, each read before its store.
        const intptr_t gap = reinterpret_cast<intptr_t>(dst) - reinterpret_cast<intptr_t>(src);
        const bool apart = gap >= 4 * intptr_t(w) || -gap >= intptr_t(w);
        int x = 0;
        if (apart)
            for (; x + 16 <= w; x += 16)
                _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + x), Map16<kStore>(src + x, kv));
        for (; x < w; ++x) dst[x] = Map1<kStore>(src[x], k);
    }
}

// Bad pointers and sizes; the statistics calls cannot fail after these.
inline ZilStatus Check(const float* src, const uint8_t* dst, ZilSize roi) {
    if (AnyNull(src, dst)) return zilStatusNullPointer;
    if (TooSmall(roi)) return zilStatusBadSize;
    return zilStatusOk;
}

}  // namespace
}  // namespace zil::tone

using zil::tone::Store;

ZIL_IMPL ZilStatus mx_ziliToneMapLinear_32f8u_C1R(const float* src, int srcStep, uint8_t* dst, int dstStep,
                                                  ZilSize roiSize) {
    if (const ZilStatus st = zil::tone::Check(src, dst, roiSize)) return st;
    float m = 0;
    mx_ziliMax_32f_C1R(src, srcStep, roiSize, &m);
    if (m < 0.0f) return zilStatusNegativeMaximum;
    if (!(m > 1.1754944e-38f)) return mx_ziliSet_8u_C1R(0, dst, dstStep, roiSize);  // also NaN
    zil::tone::MapImage<Store::LowByte>(src, srcStep, dst, dstStep, roiSize, 255.0f / m);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliToneMapMean_32f8u_C1R(const float* src, int srcStep, uint8_t* dst, int dstStep,
                                                ZilSize roiSize) {
    if (const ZilStatus st = zil::tone::Check(src, dst, roiSize)) return st;
    double mean = 0;
    mx_ziliMean_32f_C1R(src, srcStep, roiSize, &mean, 0);
    const double t = mean + mean;
    if (t < 0.0) return zilStatusNegativeMaximum;
    if (!(t > 1.1754943508222875e-38)) return mx_ziliSet_8u_C1R(0, dst, dstStep, roiSize);
    zil::tone::MapImage<Store::Clamp>(src, srcStep, dst, dstStep, roiSize, float(255.0 / t));
    return zilStatusOk;
}
