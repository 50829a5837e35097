// Internal power routines: x to the power y for one float, one double, and a
// float vector at one exponent. Not exported; no mathematics library is used.
//
// All three take the logarithm of |x| from a table and a short polynomial,
// multiply by the exponent and take the exponential from a table and a short
// polynomial, after an ordered list of special cases. The polynomial
// coefficients are fitted, not Taylor terms, and are part of the results.
#pragma once

#include "zil_common.h"

extern "C" {
// float x^y. Special values as the ordered rules in power_one.cpp state;
// overflow and underflow come from a multiplication that raises the flags.
ZIL_HIDDEN float mx_zilsPowOneF(float x, float y);
// double x^y, computed with x87 extended precision for the main steps (the
// precision control is set to extended and restored on every exit).
ZIL_HIDDEN double mx_zilsPowOne(double x, double y);
// dst[i] := src[i]^power for len elements; src may equal dst. Returns
// zilStatusNullPointer, zilStatusBadSize (len < 1), 19 when some element met a
// domain or pole case, else zilStatusOk.
ZIL_HIDDEN ZilStatus mx_zilsPowx_32f_A21(const float* src, float* dst, int len, float power);
}

namespace zil::pw {

// Status of the vector routine when an element met a domain or pole case.
inline constexpr ZilStatus kStatusDomain = 19;

// Also on 32-byte vectors, always inlined: the note on how such vectors would
// be passed without AVX does not apply.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpsabi"
template <class To, class From>
inline To Bits(From v) { return __builtin_bit_cast(To, v); }
#pragma GCC diagnostic pop
inline uint32_t FBits(float v) { return Bits<uint32_t>(v); }
inline uint64_t DBits(double v) { return Bits<uint64_t>(v); }
inline float AsF(uint32_t b) { return Bits<float>(b); }
inline double AsD(uint64_t b) { return Bits<double>(b); }
inline uint32_t Hi(double v) { return static_cast<uint32_t>(DBits(v) >> 32); }

// rcp_table_256[i]: 2048 / (1 + (i + 0.5) / 256) rounded to an integer, over
// 2048. The quotient 2^21 / (513 + 2i) is never a tie, so adding 0.5 rounds it.
struct RcpTable { float v[256]; };
constexpr RcpTable MakeRcp() {
    RcpTable t{};
    for (int i = 0; i < 256; ++i) {
        const double q = 2048.0 / (1.0 + (i + 0.5) / 256.0);
        t.v[i] = static_cast<float>(static_cast<double>(static_cast<int64_t>(q + 0.5)) / 2048.0);
    }
    return t;
}
inline constexpr RcpTable rcp_table_256 = MakeRcp();
static_assert(rcp_table_256.v[0] == 0.998046875f && rcp_table_256.v[1] == 0.994140625f, "reciprocal table");

// Masks of mantissa bits, by integer exponent n: index n - 2 for n below 25,
// index 25 otherwise. A float with no bit under its mask has so few significant
// bits that its n-th power is exact in double precision.
inline constexpr uint32_t _exact_masks[26] = {
    0x1,      0xFF,     0xFFF,    0x7FFF,   0x1FFFF,  0x3FFFF,  0x7FFFF,  0xFFFFF,  0xFFFFF,
    0x1FFFFF, 0x1FFFFF, 0x1FFFFF, 0x3FFFFF, 0x3FFFFF, 0x3FFFFF, 0x3FFFFF, 0x7FFFFF, 0x7FFFFF,
    0x7FFFFF, 0x7FFFFF, 0x7FFFFF, 0x7FFFFF, 0x7FFFFF, 0x7FFFFF, 0x7FFFFF, 0x7FFFFF};

inline constexpr float _ones[2] = {1.0f, -1.0f};
inline constexpr float _zeros[2] = {0.0f, -0.0f};
inline constexpr float _infs_zeros[4] = {__builtin_inff(), 0.0f, -__builtin_inff(), -0.0f};
inline constexpr float _small_value_32[2] = {0x1p-100f, -0x1p-100f};
inline constexpr float _large_value_32[2] = {0x1p100f, -0x1p100f};
inline constexpr double _ones64[2] = {1.0, -1.0};
inline constexpr double _zeros64[2] = {0.0, -0.0};
inline constexpr double _infs_zeros64[4] = {__builtin_inf(), 0.0, -__builtin_inf(), -0.0};
inline constexpr double _small_value_64[2] = {0x1p-1000, -0x1p-1000};
inline constexpr double _large_value_64[2] = {0x1p1000, -0x1p1000};

// The special-value steps that the float, double and vector routines share,
// by element type.
template <class F> struct Kind;
template <> struct Kind<float> {
    using U = uint32_t;
    static constexpr U kInf = 0x7F800000u, kOne = 0x3F800000u;
    static constexpr int kMant = 23, kBias = 127;
    static constexpr const float *ones = _ones, *zeros = _zeros, *infsZeros = _infs_zeros;
};
template <> struct Kind<double> {
    using U = uint64_t;
    static constexpr U kInf = 0x7FF0000000000000ull, kOne = 0x3FF0000000000000ull;
    static constexpr int kMant = 52, kBias = 1023;
    static constexpr const double *ones = _ones64, *zeros = _zeros64, *infsZeros = _infs_zeros64;
};

// NaN, infinite base, infinite power, in this order; true when one decides,
// with the value in `out`. ax, ay: magnitudes as bits; `neg`: y an odd integer
// and x negative.
template <class F, class U = typename Kind<F>::U>
inline bool NanInfRules(F x, F y, U ax, U ay, bool yNeg, bool odd, bool frac, bool neg, F& out) {
    using K = Kind<F>;
    if (ax > K::kInf || ay > K::kInf) return out = x * y, true;
    if (ax == K::kInf) return out = K::infsZeros[int(yNeg) + 2 * int(neg && !frac)], true;
    if (ay != K::kInf) return false;
    if (ax > K::kOne) out = yNeg ? F(0) : K::infsZeros[0];
    else if (ax == K::kOne) out = K::ones[odd];
    else if (ax != 0) out = yNeg ? K::infsZeros[0] : F(0);
    else out = yNeg ? K::infsZeros[0] : K::zeros[neg];
    return true;
}
// A zero base: a signed zero for a positive power, a signed infinity (with the
// divide-by-zero flag) for a negative one; the sign when y is an odd integer.
template <class F>
inline F ZeroBase(bool yNeg, bool negOdd) {
    using K = Kind<F>;
    return yNeg ? K::ones[negOdd] / K::zeros[0] : K::zeros[negOdd];
}

// The operands of the scalar routines: magnitudes as bits, signs, and the
// integer class of y (below 1 a fraction; from 2^(kMant + 1) up an even
// integer); `neg`: the result is negative (y odd, x negative).
template <class F>
struct Operands {
    typename Kind<F>::U ax, ay;
    bool xNeg, yNeg, frac, odd, neg;
};

// The first steps of both scalar routines, in order: y zero or x one gives 1;
// then NaN, infinities and a zero base. True when one decides, value in `out`.
template <class F>
inline bool CommonRules(F x, F y, Operands<F>& o, F& out) {
    using K = Kind<F>;
    using U = typename K::U;
    constexpr U kSign = U(1) << (sizeof(U) * 8 - 1);
    const U bx = Bits<U>(x), by = Bits<U>(y);
    o.ax = bx & ~kSign, o.ay = by & ~kSign;
    o.xNeg = (bx & kSign) != 0, o.yNeg = (by & kSign) != 0;
    if (o.ay == 0 || bx == K::kOne) return out = F(1), true;
    constexpr U kEven = U(K::kBias + K::kMant + 1) << K::kMant;
    if (o.ay < K::kOne) {
        o.frac = true, o.odd = false;
    } else if (o.ay < kEven) {
        const int fracBits = K::kMant - int(o.ay >> K::kMant) + K::kBias;
        const U sig = (o.ay & ((U(1) << K::kMant) - 1)) | (U(1) << K::kMant);
        o.frac = (sig & ((U(1) << fracBits) - 1)) != 0;
        o.odd = ((sig >> fracBits) & 1) != 0;
    } else {
        o.frac = false, o.odd = false;
    }
    o.neg = o.odd && o.xNeg;
    if (NanInfRules(x, y, o.ax, o.ay, o.yNeg, o.odd, o.frac, o.neg, out)) return true;
    if (o.ax == 0) return out = ZeroBase<F>(o.yNeg, o.neg && !o.frac), true;
    return false;
}

}  // namespace zil::pw
