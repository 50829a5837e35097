// Internal image and vector utilities (see utils.h).
#include "utils.h"

#include <emmintrin.h>

namespace zil::utl {
namespace {

// One row of a copy. Rows at least a row's length apart (and of 7 bytes or
// more) are copied in blocks; every other case walks forward byte by byte, so
// that a destination just behind its source repeats the leading bytes.
void CopyRow(const uint8_t* src, uint8_t* dst, int len) {
    const intptr_t gap = reinterpret_cast<intptr_t>(dst) - reinterpret_cast<intptr_t>(src);
    if (len >= 7 && (gap >= len || gap <= -len)) {
        int i = 0;
        for (; i + 16 <= len; i += 16)
            _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i),
                             _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + i)));
        for (; i < len; ++i) dst[i] = src[i];
        return;
    }
    for (int i = 0; i < len; ++i) dst[i] = src[i];
}

// The larger of the current maximum and the next sample: a sample equal to the
// maximum or a not-a-number sample keeps the current value. maxps is exactly
// this rule, lane by lane.
inline float Larger(float cur, float s) { return s > cur ? s : cur; }

// Walk of one row from its first sample. Four accumulators of four lanes each
// start at the first sample and see every 16th sample; they are then folded.
// That gives the walk's value except for the sign of a zero maximum, which
// depends on which zero came first: then the row is walked again in order.
float RowMax(const float* s, int len) {
    float cur = s[0];
    int i = 1;
    if (len >= 33) {
        const __m128 first = _mm_set1_ps(s[0]);
        __m128 a = first, b = first, c = first, d = first;
        for (; i + 16 <= len; i += 16) {
            a = _mm_max_ps(_mm_loadu_ps(s + i), a);
            b = _mm_max_ps(_mm_loadu_ps(s + i + 4), b);
            c = _mm_max_ps(_mm_loadu_ps(s + i + 8), c);
            d = _mm_max_ps(_mm_loadu_ps(s + i + 12), d);
        }
        float lanes[16];
        _mm_storeu_ps(lanes, a), _mm_storeu_ps(lanes + 4, b);
        _mm_storeu_ps(lanes + 8, c), _mm_storeu_ps(lanes + 12, d);
        for (float v : lanes) cur = Larger(cur, v);
        for (; i < len; ++i) cur = Larger(cur, s[i]);
        if (cur != 0.0f) return cur;
        cur = s[0], i = 1;
    }
    for (; i < len; ++i) cur = Larger(cur, s[i]);
    return cur;
}

// Sum of one row into the two running sums, in the order whose rounding the
// result keeps: blocks of 16 samples through four even pairs and one odd
// pair, then the remaining pairs, then an odd last sample.
void RowSum(const float* s, int width, double& even, double& odd) {
    const int pairs = width / 2;
    const int blocks = pairs >= 8 ? pairs / 8 : 0;
    int i = 0;  // pair index
    if (blocks > 0) {
        double a0 = even, a1 = 0, b0 = 0, b1 = 0, c0 = 0, c1 = 0, d0 = 0, d1 = 0;
        double o0 = odd, o1 = 0;
        for (int k = 0; k < blocks; ++k) {
            const float* p = s + 16 * k;
            a0 += double(p[0]), a1 += double(p[2]);
            o0 += double(p[1]), o1 += double(p[3]);
            b0 += double(p[4]), b1 += double(p[6]);
            o0 += double(p[5]), o1 += double(p[7]);
            c0 += double(p[8]), c1 += double(p[10]);
            o0 += double(p[9]), o1 += double(p[11]);
            d0 += double(p[12]), d1 += double(p[14]);
            o0 += double(p[13]), o1 += double(p[15]);
        }
        const double e0 = (a0 + b0) + (c0 + d0);
        const double e1 = (a1 + b1) + (c1 + d1);
        even = e0 + e1;
        odd = o0 + o1;
        i = 8 * blocks;
    }
    for (; i < pairs; ++i) {
        even += double(s[2 * i]);
        odd += double(s[2 * i + 1]);
    }
    if (width & 1) even += double(s[width - 1]);
}

template <bool kSub>
ZilStatus AddOrSubC(const float* src, float* dst, int len, float value) {
    if (AnyNull(src, dst)) return zilStatusNullPointer;
    if (len < 1) return zilStatusBadSize;
    if (value == 0.0f) {
        // A zero constant copies the bits, keeping the sign of zeros and NaN payloads.
        mx_ownsCopy_8u(reinterpret_cast<const uint8_t*>(src), reinterpret_cast<uint8_t*>(dst), 4 * len);
        return zilStatusOk;
    }
    for (int i = 0; i < len; ++i) dst[i] = kSub ? src[i] - value : src[i] + value;
    return zilStatusOk;
}

inline uint32_t Bits(float x) {
    uint32_t u;
    __builtin_memcpy(&u, &x, 4);
    return u;
}

}  // namespace
}  // namespace zil::utl

using namespace zil::utl;

ZIL_IMPL void mx_ownsCopy_8u(const uint8_t* src, uint8_t* dst, int len) {
    if (len < 1 || src == dst) return;
    CopyRow(src, dst, len);
}

ZIL_IMPL ZilStatus mx_ziliSet_8u_C1R(int value, uint8_t* dst, int dstStep, ZilSize roiSize) {
    if (dst == nullptr) return zilStatusNullPointer;
    if (zil::TooSmall(roiSize)) return zilStatusBadSize;
    const uint8_t v = uint8_t(value);
    for (int y = 0; y < roiSize.height; ++y, dst = zil::Advance(dst, dstStep))
        for (int x = 0; x < roiSize.width; ++x) dst[x] = v;
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliCopy_8u_C1R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep,
                                      ZilSize roiSize) {
    if (zil::AnyNull(src, dst)) return zilStatusNullPointer;
    if (zil::TooSmall(roiSize)) return zilStatusBadSize;
    for (int y = 0; y < roiSize.height; ++y) {
        CopyRow(src, dst, roiSize.width);
        src = zil::Advance(src, srcStep), dst = zil::Advance(dst, dstStep);
    }
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_zilsMax_32f(const float* src, int len, float* max) {
    if (zil::AnyNull(src, max)) return zilStatusNullPointer;
    if (len < 1) return zilStatusBadSize;
    *max = RowMax(src, len);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliMax_32f_C1R(const float* src, int srcStep, ZilSize roiSize, float* max) {
    if (zil::AnyNull(src, max)) return zilStatusNullPointer;
    if (zil::TooSmall(roiSize)) return zilStatusBadSize;
    float cur = src[0];
    for (int y = 0; y < roiSize.height; ++y, src = zil::AdvanceT(src, srcStep))
        cur = Larger(cur, RowMax(src, roiSize.width));
    *max = cur;
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliSum_32f_C1R(const float* src, int srcStep, ZilSize roiSize, double* sum) {
    if (zil::AnyNull(src, sum)) return zilStatusNullPointer;
    if (zil::TooSmall(roiSize)) return zilStatusBadSize;
    double even = 0, odd = 0;
    for (int y = 0; y < roiSize.height; ++y, src = zil::AdvanceT(src, srcStep))
        RowSum(src, roiSize.width, even, odd);
    *sum = odd + even;
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_ziliMean_32f_C1R(const float* src, int srcStep, ZilSize roiSize, double* mean,
                                       int /*hint*/) {
    if (mean == nullptr) return zilStatusNullPointer;
    double sum = 0;
    const ZilStatus st = mx_ziliSum_32f_C1R(src, srcStep, roiSize, &sum);
    if (st != zilStatusOk) return st;
    // The sample count is a 32-bit product, which wraps for 2^31 samples or more.
    const int32_t count = int32_t(uint32_t(roiSize.width) * uint32_t(roiSize.height));
    *mean = sum / double(count);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_zilsAddC_32f(const float* src, float* dst, int len, float value) {
    return AddOrSubC<false>(src, dst, len, value);
}

ZIL_IMPL ZilStatus mx_zilsSubC_32f(const float* src, float* dst, int len, float value) {
    return AddOrSubC<true>(src, dst, len, value);
}

// Floor by the biased exponent e, in the default rounding mode throughout.
ZIL_IMPL float mx_ownsFloorOneF(float x) {
    const uint32_t u = Bits(x);
    const uint32_t e = (u >> 23) & 0xFF;
    if (e >= 150) return x;                         // no fraction bits (also inf, NaN)
    if (e == 149) return (u & 1) ? x - 0.5f : x;    // the lowest bit is the half
    if (e >= 127) {
        // Adding and taking off 1.5 * 2^23 rounds to an integer, nearest-even.
        const float v = (12582912.0f + x) - 12582912.0f;
        return v > x ? v - 1.0f : v;
    }
    if ((u & 0x7FFFFFFFu) == 0) return x;           // a zero keeps its sign
    static constexpr float kSmall[2] = {0.0f, -1.0f};
    return kSmall[u >> 31];
}

ZIL_IMPL float mx_zilsFloorOneF(float x) { return mx_ownsFloorOneF(x); }
