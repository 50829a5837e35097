// Colour twist: a caller's 3 by 4 affine matrix (4 by 4 without offset for the
// four-channel float form) applied to every pixel in single precision.
//
// One row template serves all members. What differs between them is data:
// the sample type (and with it the rule that stores a float result), the
// distance between two pixels of a channel (3 interleaved, 4 with alpha, 1 in
// planes) and whether source and destination are one image. Four pixels are
// evaluated at once in the lanes of a vector; the products and sums are the
// scalar grouping lane by lane, so every lane gives the scalar result.
#include <emmintrin.h>

#include <type_traits>

#include "zil_common.h"

namespace zil::twist {
namespace {

// The matrix in locals, each entry broadcast to four lanes.
struct Mat {
    __m128 m[16];
    Mat(const float* t, int n) {
        for (int i = 0; i < n; ++i) m[i] = _mm_set1_ps(t[i]);
    }
};

// ((m[r] x + m[r+3]) + m[r+1] y) + m[r+2] z for output channel r/4.
inline __m128 Affine(const Mat& M, int r, __m128 x, __m128 y, __m128 z) {
    __m128 o = _mm_add_ps(_mm_mul_ps(M.m[r], x), M.m[r + 3]);
    o = _mm_add_ps(o, _mm_mul_ps(M.m[r + 1], y));
    return _mm_add_ps(o, _mm_mul_ps(M.m[r + 2], z));
}

// Integer result of rounding s to an integer by truncation, then taking a
// tie (t odd and t == s) down by one step towards zero: t - sign.
inline __m128i TruncTiesEven(__m128 s, __m128i towardZero) {
    const __m128i t = _mm_cvttps_epi32(s);
    const __m128i tie = _mm_and_si128(_mm_castps_si128(_mm_cmpeq_ps(_mm_cvtepi32_ps(t), s)),
                                      _mm_and_si128(t, _mm_set1_epi32(1)));
    // towardZero is 0 for positive s, -1 for negative: (tie ^ tz) - tz negates.
    return _mm_sub_epi32(t, _mm_sub_epi32(_mm_xor_si128(tie, towardZero), towardZero));
}

// Stores of a float result o by sample type. Unsigned: 0 at or below 0 and for
// NaN (whose truncation has a zero low part), the top at or above it, else
// trunc(0.5 + o) with a tie taken to the even neighbour. Clamping first gives
// the same: 0 becomes 0, the top stays the top.
template <int kTop>
inline __m128i StoreUnsigned(__m128 o) {
    const __m128 c = _mm_min_ps(_mm_max_ps(o, _mm_setzero_ps()), _mm_set1_ps(float(kTop)));
    return TruncTiesEven(_mm_add_ps(_mm_set1_ps(0.5f), c), _mm_setzero_si128());
}
// Signed 16-bit: the same about 0 on both sides (o - 0.5 below 0), clamped to
// -32768..32767; NaN gives 0 as its truncation does in the low 16 bits.
inline __m128i StoreSigned16(__m128 o) {
    const __m128 c = _mm_min_ps(_mm_max_ps(o, _mm_set1_ps(-32768.0f)), _mm_set1_ps(32767.0f));
    const __m128 neg = _mm_cmplt_ps(c, _mm_setzero_ps());
    const __m128 half = _mm_or_ps(_mm_set1_ps(0.5f), _mm_and_ps(neg, _mm_set1_ps(-0.0f)));
    const __m128i r = TruncTiesEven(_mm_add_ps(c, half), _mm_castps_si128(neg));
    return _mm_and_si128(r, _mm_castps_si128(_mm_cmpord_ps(o, o)));
}

// Sample types as rows: element, how four samples become floats and how four
// results are stored.
template <class T>
struct Elem;
template <>
struct Elem<uint8_t> {
    static __m128i Out(__m128 o) { return StoreUnsigned<255>(o); }
};
template <>
struct Elem<uint16_t> {
    static __m128i Out(__m128 o) { return StoreUnsigned<65535>(o); }
};
template <>
struct Elem<int16_t> {
    static __m128i Out(__m128 o) { return StoreSigned16(o); }
};
template <>
struct Elem<float> {
    static __m128 Out(__m128 o) { return o; }
};

// Four (or n < 4) samples of one channel, kStep elements apart.
template <class T, int kStep>
inline __m128 Load4(const T* p) {
    if constexpr (sizeof(T) == 4)
        return kStep == 1 ? _mm_loadu_ps(p) : _mm_setr_ps(p[0], p[kStep], p[2 * kStep], p[3 * kStep]);
    else
        return _mm_cvtepi32_ps(_mm_setr_epi32(p[0], p[kStep], p[2 * kStep], p[3 * kStep]));
}
template <class T, int kStep>
inline __m128 LoadN(const T* p, int n) {
    float v[4] = {0, 0, 0, 0};
    for (int j = 0; j < n; ++j) v[j] = float(p[j * kStep]);
    return _mm_loadu_ps(v);
}
template <class T, int kStep>
inline void StoreN(T* p, __m128 o, int n) {
    float v[4];
    _mm_storeu_ps(v, o);
    for (int j = 0; j < n; ++j) p[j * kStep] = v[j];
}
template <class T, int kStep>
inline void StoreN(T* p, __m128i o, int n) {
    int32_t v[4];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(v), o);
    for (int j = 0; j < n; ++j) p[j * kStep] = T(v[j]);
}

// One channel pointer per colour channel, for a row of source and destination.
template <class T>
struct Chans {
    const T* s[3];
    T* d[3];
};

// Whether a destination row of `span` bytes at d can be written after its
// source row at s has been read whole, with the same result as pixel after
// pixel: the two are the same row, or share no byte.
inline bool Apart(const void* d, const void* s, intptr_t span) {
    const intptr_t gap = reinterpret_cast<intptr_t>(d) - reinterpret_cast<intptr_t>(s);
    return gap == 0 || gap >= span || -gap >= span;
}

// Whether four pixels can be read before any of them is written. Interleaved
// rows are compared pixel by pixel; planes each with each, since a destination
// plane may be any source plane at the same place. Otherwise pixels go one at a
// time, each read whole before it is stored, which overlapping rows need.
template <class T, int kStep>
bool BlockSafe(const Chans<T>& c, int w) {
    const intptr_t span = intptr_t(w) * kStep * intptr_t(sizeof(T));
    if constexpr (kStep > 1) {
        return Apart(c.d[0], c.s[0], span);
    } else {
        for (const T* d : c.d)
            for (const T* s : c.s)
                if (!Apart(d, s, span)) return false;
        return true;
    }
}

// Interleaved 8-bit rows, four pixels a step. 16 bytes are loaded (12 used)
// and widened to three vectors of samples in pixel order; each output vector
// holds the outputs of those same 12 places, so its lanes take the rows of the
// matrix in turn (0 1 2 0, 1 2 0 1, 2 0 1 2) and their pixel's x, y, z gathered
// by shuffles. Needs 16 readable bytes, so stops 6 pixels before the end.
struct Rotated {
    __m128 m[3][4];  // [output vector][x, y, z multiplier, offset]
    explicit Rotated(const float* t) {
        static constexpr int kRow[3][4] = {{0, 1, 2, 0}, {1, 2, 0, 1}, {2, 0, 1, 2}};
        static constexpr int kCol[4] = {0, 1, 2, 3};
        for (int v = 0; v < 3; ++v)
            for (int k = 0; k < 4; ++k)
                m[v][k] = _mm_setr_ps(t[4 * kRow[v][0] + kCol[k]], t[4 * kRow[v][1] + kCol[k]],
                                      t[4 * kRow[v][2] + kCol[k]], t[4 * kRow[v][3] + kCol[k]]);
    }
};
inline __m128 Affine(const __m128* m, __m128 x, __m128 y, __m128 z) {
    __m128 o = _mm_add_ps(_mm_mul_ps(m[0], x), m[3]);
    o = _mm_add_ps(o, _mm_mul_ps(m[1], y));
    return _mm_add_ps(o, _mm_mul_ps(m[2], z));
}
// The 8u store rule before two saturating packs: clamping the top first, the
// packs then turn every negative result, and the 0x80000000 of a NaN or of a
// value beyond the 32-bit range, into 0; values from -1.5 up truncate to 0 anyway.
inline __m128i Out8(__m128 o) {
    const __m128 s = _mm_add_ps(_mm_set1_ps(0.5f), _mm_min_ps(_mm_set1_ps(255.0f), o));
    const __m128i t = _mm_cvttps_epi32(s);
    const __m128i tie = _mm_and_si128(_mm_castps_si128(_mm_cmpeq_ps(_mm_cvtepi32_ps(t), s)),
                                      _mm_and_si128(t, _mm_set1_epi32(1)));
    return _mm_sub_epi32(t, tie);
}
#define ZIL_SEL(a, b, c, d) _MM_SHUFFLE(d, c, b, a)
inline int TwistRow8uC3(const uint8_t* s, uint8_t* d, int w, const Rotated& R) {
    const __m128i zero = _mm_setzero_si128();
    int i = 0;
    for (; i + 6 <= w; i += 4, s += 12, d += 12) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s));
        const __m128i lo = _mm_unpacklo_epi8(v, zero), hi = _mm_unpackhi_epi8(v, zero);
        const __m128 a = _mm_cvtepi32_ps(_mm_unpacklo_epi16(lo, zero));  // x0 y0 z0 x1
        const __m128 b = _mm_cvtepi32_ps(_mm_unpackhi_epi16(lo, zero));  // y1 z1 x2 y2
        const __m128 c = _mm_cvtepi32_ps(_mm_unpacklo_epi16(hi, zero));  // z2 x3 y3 z3
        const __m128 y01 = _mm_shuffle_ps(a, b, ZIL_SEL(1, 1, 0, 0)), z01 = _mm_shuffle_ps(a, b, ZIL_SEL(2, 2, 1, 1));
        const __m128 x23 = _mm_shuffle_ps(b, c, ZIL_SEL(2, 2, 1, 1)), y23 = _mm_shuffle_ps(b, c, ZIL_SEL(3, 3, 2, 2));
        const __m128 o0 = Affine(R.m[0], _mm_shuffle_ps(a, a, ZIL_SEL(0, 0, 0, 3)),
                                 _mm_shuffle_ps(y01, y01, ZIL_SEL(0, 0, 0, 2)),
                                 _mm_shuffle_ps(z01, z01, ZIL_SEL(0, 0, 0, 2)));
        const __m128 o1 = Affine(R.m[1], _mm_shuffle_ps(a, b, ZIL_SEL(3, 3, 2, 2)),
                                 _mm_shuffle_ps(b, b, ZIL_SEL(0, 0, 3, 3)), _mm_shuffle_ps(b, c, ZIL_SEL(1, 1, 0, 0)));
        const __m128 o2 = Affine(R.m[2], _mm_shuffle_ps(x23, x23, ZIL_SEL(0, 2, 2, 2)),
                                 _mm_shuffle_ps(y23, y23, ZIL_SEL(0, 2, 2, 2)), _mm_shuffle_ps(c, c, ZIL_SEL(0, 3, 3, 3)));
        const __m128i t2 = Out8(o2);
        const __m128i o = _mm_packus_epi16(_mm_packs_epi32(Out8(o0), Out8(o1)), _mm_packs_epi32(t2, t2));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(d), o);
        const int32_t last = _mm_cvtsi128_si32(_mm_srli_si128(o, 8));
        __builtin_memcpy(d + 8, &last, 4);
    }
    return i;
}
#undef ZIL_SEL

template <class T, int kStep>
void TwistRow(const Chans<T>& c, int w, const Mat& M, const Rotated* R) {
    int i = 0;
    const int step = BlockSafe<T, kStep>(c, w) ? 4 : 1;
    if constexpr (std::is_same_v<T, uint8_t> && kStep == 3)
        if (step == 4) i = TwistRow8uC3(c.s[0], c.d[0], w, *R);
    if (step == 4) {
        for (; i + 4 <= w; i += 4) {
            const int k = i * kStep;
            const __m128 x = Load4<T, kStep>(c.s[0] + k), y = Load4<T, kStep>(c.s[1] + k),
                         z = Load4<T, kStep>(c.s[2] + k);
            const auto o0 = Elem<T>::Out(Affine(M, 0, x, y, z));
            const auto o1 = Elem<T>::Out(Affine(M, 4, x, y, z));
            const auto o2 = Elem<T>::Out(Affine(M, 8, x, y, z));
            StoreN<T, kStep>(c.d[0] + k, o0, 4), StoreN<T, kStep>(c.d[1] + k, o1, 4);
            StoreN<T, kStep>(c.d[2] + k, o2, 4);
        }
    }
    for (; i < w; i += step) {
        const int n = w - i < step ? w - i : step, k = i * kStep;
        const __m128 x = LoadN<T, kStep>(c.s[0] + k, n), y = LoadN<T, kStep>(c.s[1] + k, n),
                     z = LoadN<T, kStep>(c.s[2] + k, n);
        const auto o0 = Elem<T>::Out(Affine(M, 0, x, y, z));
        const auto o1 = Elem<T>::Out(Affine(M, 4, x, y, z));
        const auto o2 = Elem<T>::Out(Affine(M, 8, x, y, z));
        StoreN<T, kStep>(c.d[0] + k, o0, n), StoreN<T, kStep>(c.d[1] + k, o1, n);
        StoreN<T, kStep>(c.d[2] + k, o2, n);
    }
}

// The four-channel float form: ((a x + b y) + c z) + d w per output channel.
void Twist4Row(const float* s, float* d, int w, const Mat& M) {
    const bool block = Apart(d, s, 16 * intptr_t(w));
    for (int i = 0; i < w;) {
        const int n = block && w - i >= 4 ? 4 : 1;
        const __m128 x = LoadN<float, 4>(s + 4 * i, n), y = LoadN<float, 4>(s + 4 * i + 1, n),
                     z = LoadN<float, 4>(s + 4 * i + 2, n), a = LoadN<float, 4>(s + 4 * i + 3, n);
        __m128 o[4];
        for (int r = 0; r < 4; ++r) {
            __m128 v = _mm_add_ps(_mm_mul_ps(M.m[4 * r], x), _mm_mul_ps(M.m[4 * r + 1], y));
            v = _mm_add_ps(v, _mm_mul_ps(M.m[4 * r + 2], z));
            o[r] = _mm_add_ps(v, _mm_mul_ps(M.m[4 * r + 3], a));
        }
        for (int r = 0; r < 4; ++r) StoreN<float, 4>(d + 4 * i + r, o[r], n);
        i += n;
    }
}

// Layouts as rows: distance between pixels of a channel, channels per pixel.
enum class Lay { C3, AC4, P3 };
template <Lay L>
constexpr int kPixel = L == Lay::C3 ? 3 : L == Lay::AC4 ? 4 : 1;

// Check layer shared by every member: pointers (twist and all plane entries),
// then the size, then the steps.
template <class T, Lay L, class S, class D>
ZilStatus Run(S src, int srcStep, D dst, int dstStep, ZilSize roi, const float* twist) {
    if (AnyNull(src, dst, twist)) return zilStatusNullPointer;
    if constexpr (L == Lay::P3) {
        for (int i = 0; i < 3; ++i)
            if (AnyNull(src[i], dst[i])) return zilStatusNullPointer;
    }
    if (TooSmall(roi)) return zilStatusBadSize;
    if (srcStep < 1 || dstStep < 1) return zilStatusBadStep;
    const Mat M(twist, 12);
    const Rotated R(twist);
    Chans<T> c;
    for (int i = 0; i < 3; ++i) {
        if constexpr (L == Lay::P3) c.s[i] = src[i], c.d[i] = dst[i];
        else c.s[i] = src + i, c.d[i] = dst + i;
    }
    for (int y = 0; y < roi.height; ++y) {
        TwistRow<T, kPixel<L>>(c, roi.width, M, &R);
        for (int i = 0; i < 3; ++i) c.s[i] = AdvanceT(c.s[i], srcStep), c.d[i] = AdvanceT(c.d[i], dstStep);
    }
    return zilStatusOk;
}

}  // namespace
}  // namespace zil::twist

using zil::twist::Lay;
using zil::twist::Run;

// One line per member: element type, layout; in-place forms pass their one
// image as both source and destination.
#define ZIL_TWIST(NAME, T, L)                                                                                     \
    ZIL_IMPL ZilStatus mx_ziliColorTwist##NAME(const T* src, int srcStep, T* dst, int dstStep, ZilSize roi,        \
                                               const float* twist) {                                              \
        return Run<T, Lay::L>(src, srcStep, dst, dstStep, roi, twist);                                            \
    }
#define ZIL_TWIST_I(NAME, T, L)                                                                                   \
    ZIL_IMPL ZilStatus mx_ziliColorTwist##NAME(T* srcDst, int srcDstStep, ZilSize roi, const float* twist) {      \
        return Run<T, Lay::L>(srcDst, srcDstStep, srcDst, srcDstStep, roi, twist);                                \
    }
#define ZIL_TWIST_P(NAME, T)                                                                                      \
    ZIL_IMPL ZilStatus mx_ziliColorTwist##NAME(const T* const src[3], int srcStep, T* const dst[3], int dstStep,  \
                                               ZilSize roi, const float* twist) {                                 \
        return Run<T, Lay::P3>(src, srcStep, dst, dstStep, roi, twist);                                           \
    }
#define ZIL_TWIST_IP(NAME, T)                                                                                     \
    ZIL_IMPL ZilStatus mx_ziliColorTwist##NAME(T* const srcDst[3], int srcDstStep, ZilSize roi,                   \
                                               const float* twist) {                                              \
        return Run<T, Lay::P3>(srcDst, srcDstStep, srcDst, srcDstStep, roi, twist);                               \
    }
#define ZIL_TWIST_TYPE(PFX, T)                                                                                    \
    ZIL_TWIST(PFX##_C3R, T, C3)                                                                                   \
    ZIL_TWIST(PFX##_AC4R, T, AC4)                                                                                 \
    ZIL_TWIST_I(PFX##_C3IR, T, C3)                                                                                \
    ZIL_TWIST_I(PFX##_AC4IR, T, AC4)                                                                              \
    ZIL_TWIST_P(PFX##_P3R, T)                                                                                     \
    ZIL_TWIST_IP(PFX##_IP3R, T)

ZIL_TWIST_TYPE(_32f, float)
ZIL_TWIST_TYPE(32f_8u, uint8_t)
ZIL_TWIST_TYPE(32f_16u, uint16_t)
ZIL_TWIST_TYPE(32f_16s, int16_t)

ZIL_IMPL ZilStatus mx_ziliColorTwist_32f_C4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roi,
                                             const float* twist) {
    if (zil::AnyNull(src, dst, twist)) return zilStatusNullPointer;
    if (zil::TooSmall(roi)) return zilStatusBadSize;
    if (srcStep < 1 || dstStep < 1) return zilStatusBadStep;
    const zil::twist::Mat M(twist, 16);
    for (int y = 0; y < roi.height; ++y, src = zil::AdvanceT(src, srcStep), dst = zil::AdvanceT(dst, dstStep))
        zil::twist::Twist4Row(src, dst, roi.width, M);
    return zilStatusOk;
}
