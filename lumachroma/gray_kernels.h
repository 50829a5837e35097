// Gray family: three channels to one by a weighted sum, gray to three or four
// channels, and the luma of a packed 4:2:2 stream.
//
// The weighted sum has three formulas, one per kind of element:
//   Q15        8u          low byte of (c0 w0 + c1 w1 + c2 w2 + 16384) >> 15, 32-bit wrap
//   rounded    16u, 16s    ((b0 w0 + 0.5) + b1 w1) + b2 w2 in float, b = c + bias,
//                          truncated to an integer, bias taken off, low 16 bits
//   linear     32f, 64f    (w0 c0 + w1 c1) + w2 c2 in the element's own float type
// Nothing is clamped: weights summing above one wrap in the integer types.
#pragma once

#include "px4.h"

namespace zil::gray {

// ---- weights ----------------------------------------------------------------------
// 0.299, 0.587, 0.114 in Q15, rounded; they sum to 32769, and stay so.
inline constexpr int32_t kQ15Default[3] = {9798, 19235, 3736};
inline constexpr float kDefault[3] = {0.299f, 0.587f, 0.114f};
static_assert(int32_t(0.299 * 32768 + 0.5) == kQ15Default[0] && int32_t(0.587 * 32768 + 0.5) == kQ15Default[1] &&
              int32_t(0.114 * 32768 + 0.5) == kQ15Default[2], "Q15 weights");
static_assert(kQ15Default[0] + kQ15Default[1] + kQ15Default[2] == 32769, "the Q15 weights sum to 32769");

// Float to 32-bit integer by truncation, as the processor's truncating
// conversion does it: a value outside the int32 range, or not a number,
// gives INT32_MIN.
template <class F>
inline int32_t TruncInt(F x) {
    return (x >= F(-2147483648.0) && x < F(2147483648.0)) ? int32_t(x) : INT32_MIN;
}

template <class W>
struct Weights { W w[3]; };

// Prepared once per call. 8u: each caller float, widened to double, times
// 32768, plus 0.5, truncated; null selects the Q15 table. Other types: the
// caller's values as they are, or the float defaults (widened for 64f).
inline Weights<int32_t> PrepareQ15(const float* c) {
    if (!c) return {{kQ15Default[0], kQ15Default[1], kQ15Default[2]}};
    Weights<int32_t> q;
    for (int i = 0; i < 3; ++i) q.w[i] = TruncInt(double(c[i]) * 32768.0 + 0.5);
    return q;
}
template <class F>
inline Weights<F> Prepare(const F* c) {
    if (!c) return {{F(kDefault[0]), F(kDefault[1]), F(kDefault[2])}};
    return {{c[0], c[1], c[2]}};
}

// ---- row kernels --------------------------------------------------------------------
// Q15. With all three weights in the int16 range the sums stay far inside
// 32 bits and sixteen pixels at a time go through 16 x 16-bit multiply-adds
// of (c0, c1) and (c2, 0) pairs; any other weights take the plain loop, whose
// 32-bit sums wrap. Both give the same bytes where both apply.
template <int PS>
void GrayRowQ15(const uint8_t* s, uint8_t* d, int w, const Weights<int32_t>& q) {
    const int32_t w0 = q.w[0], w1 = q.w[1], w2 = q.w[2];
    int i = 0;
    auto int16 = [](int32_t v) { return v >= -32768 && v <= 32767; };
    if (int16(w0) && int16(w1) && int16(w2)) {
        const __m128i k01 = px4::Coeffs(w0, w1), k2 = px4::Coeffs(w2, 0), half = _mm_set1_epi32(16384);
        const __m128i m = _mm_set1_epi32(0xFF), at8 = _mm_cvtsi32_si128(8), at16 = _mm_cvtsi32_si128(16);
        for (; i + px4::kBlockReach<PS, 1> <= w; i += 16) {
            __m128i o[4];
            for (int k = 0; k < 4; ++k) {
                const __m128i px = px4::Load<PS>(s + (i + 4 * k) * PS);
                const __m128i c01 = px4::Pair(_mm_and_si128(px, m), px4::Byte(px, at8));
                const __m128i sum = _mm_add_epi32(_mm_madd_epi16(c01, k01), _mm_madd_epi16(px4::Byte(px, at16), k2));
                o[k] = _mm_and_si128(_mm_srai_epi32(_mm_add_epi32(sum, half), 15), m);
            }
            _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i),
                             _mm_packus_epi16(_mm_packs_epi32(o[0], o[1]), _mm_packs_epi32(o[2], o[3])));
        }
    }
    const uint32_t u0 = uint32_t(w0), u1 = uint32_t(w1), u2 = uint32_t(w2);
    for (; i < w; ++i) {
        const uint8_t* p = s + i * PS;
        d[i] = uint8_t((p[0] * u0 + p[1] * u1 + p[2] * u2 + 16384u) >> 15);
    }
}

// Rounded, for 16-bit elements; signed samples are moved to 0..65535 by a
// bias of 32768 first.
template <int PS, class T>
void GrayRowRounded(const T* __restrict s, T* __restrict d, int w, const Weights<float>& k) {
    constexpr int32_t Bias = T(-1) < T(0) ? 32768 : 0;
    const float w0 = k.w[0], w1 = k.w[1], w2 = k.w[2];
    for (int i = 0; i < w; ++i) {
        const T* p = s + i * PS;
        const float b0 = float(int32_t(p[0]) + Bias), b1 = float(int32_t(p[1]) + Bias),
                    b2 = float(int32_t(p[2]) + Bias);
        const float t = ((b0 * w0 + 0.5f) + b1 * w1) + b2 * w2;
        d[i] = T(uint16_t(uint32_t(TruncInt(t)) - uint32_t(Bias)));
    }
}

// Linear, for float elements.
template <int PS, class F>
void GrayRowLinear(const F* __restrict s, F* __restrict d, int w, const Weights<F>& k) {
    const F w0 = k.w[0], w1 = k.w[1], w2 = k.w[2];
    for (int i = 0; i < w; ++i) {
        const F* p = s + i * PS;
        d[i] = (w0 * p[0] + w1 * p[1]) + w2 * p[2];
    }
}

// Gray to three channels, and the fourth set to alpha when PS is 4. Samples
// are moved as bit patterns (U is an unsigned type of the element's size).
template <int PS, class U>
void GrayToColorRow(const U* __restrict s, U* __restrict d, int w, U alpha) {
    for (int i = 0; i < w; ++i) {
        U* p = d + i * PS;
        p[0] = p[1] = p[2] = s[i];
        if constexpr (PS == 4) p[3] = alpha;
    }
}

// ---- row walk ---------------------------------------------------------------------
// Steps in elements (Bytes false) or in bytes (Bytes true).
template <bool Bytes, class S, class D, class Row>
inline void WalkGray(const S* s, D* d, int h, ptrdiff_t ss, ptrdiff_t ds, Row row) {
    for (int y = 0; y < h; ++y) {
        row(s, d);
        if constexpr (Bytes) s = AdvanceT(s, ss), d = AdvanceT(d, ds);
        else s += ss, d += ds;
    }
}

}  // namespace zil::gray
