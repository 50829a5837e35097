// The forward power t^0.45f on four lanes, for t in [2^-6, 2): the value the
// scalar float power gives, found without its logarithm and exponential.
//
// For t = 2^e m, with r the table's reciprocal for the top eight mantissa bits,
// t^y = 2^(y e) r^-y (1 + d)^y where d = m r - 1 is below 2^-9 in magnitude; the
// table holds 2^(y e) r^-y, and three terms of the binomial series give the
// rest. The estimate E differs from the double R that the scalar power rounds
// to float by at most kFwdPowSlack units in the last place of E, over every
// float of the interval (a bound found by running through all of them). Where E
// is farther than that from every midpoint between adjacent floats, R rounds to
// the same float as E; a lane nearer to one is marked for the caller to redo.
#pragma once

#include "gamma_tables.h"
#include "primitives/power_core.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpsabi"

namespace zil::gamma {

constexpr double kFwdY = 0.45f;
constexpr double kFwdA1 = kFwdY, kFwdA2 = kFwdA1 * (kFwdY - 1) / 2, kFwdA3 = kFwdA2 * (kFwdY - 2) / 3;
constexpr int32_t kFwdPowSlack = 6144;

// The series' constants, two lanes each, in read-only memory. They are read
// through a pointer the compiler cannot see into, so that they stay memory
// operands instead of being splatted into a register anew for every group.
struct alignas(16) FwdPowConsts { pw::D2 one, a1, a2, a3; };
inline constexpr FwdPowConsts kFwdPowConsts{{1.0, 1.0}, {kFwdA1, kFwdA1}, {kFwdA2, kFwdA2}, {kFwdA3, kFwdA3}};

// The estimate E for four lanes of [2^-6, 2), given as bits, in two halves of
// two lanes: 16-byte vectors, with the conversions in their SSE2 forms, keep
// every step in one register and nothing staged on the stack. Lanes set in
// `outside` read the table's first pair instead of their own.
inline void FwdPowEstimate(pw::U4 bt, pw::U4 outside, pw::D2& e01, pw::D2& e23) {
    using namespace pw;
    const FwdPowConsts* k = &kFwdPowConsts;
    __asm__("" : "+r"(k));
    // Byte offsets of the lanes' pairs: 16 bytes a pair, by (exponent field
    // - 121) * 256 plus the top eight mantissa bits; 121 is the field of 2^-6.
    // They go through memory: four scalar loads are cheaper than taking the
    // lanes out of the register one shuffle and one move at a time.
    alignas(16) uint32_t off[4];
    const U4 offv = (((bt >> 11) & ~15u) - (121u << 12)) & ~outside;
    __builtin_memcpy(off, &offv, 16);
    __asm__("" : "+m"(off));
    const char* base = reinterpret_cast<const char*>(gammaFwdPow);
    typedef double Pair __attribute__((vector_size(16), may_alias));  // pairs are 16-byte aligned
    const D2 p0 = *reinterpret_cast<const Pair*>(base + off[0]), p1 = *reinterpret_cast<const Pair*>(base + off[1]);
    const D2 p2 = *reinterpret_cast<const Pair*>(base + off[2]), p3 = *reinterpret_cast<const Pair*>(base + off[3]);
    const F4 m = Bits<F4>((bt & 0x7FFFFFu) | 0x3F800000u);
    const D2 m01 = Bits<D2>(_mm_cvtps_pd(Bits<__m128>(m)));
    const D2 m23 = Bits<D2>(_mm_cvtps_pd(_mm_movehl_ps(Bits<__m128>(m), Bits<__m128>(m))));
    const auto half = [k](D2 mh, D2 rcp, D2 scale) {
        const D2 d = mh * rcp - k->one;
        return scale + scale * (d * (k->a1 + d * (k->a2 + d * k->a3)));
    };
    e01 = half(m01, __builtin_shufflevector(p0, p1, 0, 2), __builtin_shufflevector(p0, p1, 1, 3));
    e23 = half(m23, __builtin_shufflevector(p2, p3, 0, 2), __builtin_shufflevector(p2, p3, 1, 3));
}

// The power of four lanes of any bits, with no branch: `bad` marks the lanes
// whose result is not the scalar power's, those outside [2^-6, 2) and those
// near a rounding midpoint. The caller redoes them by another route.
inline pw::F4 FwdPow4(pw::U4 bt, pw::I4& bad) {
    using namespace pw;
    const U4 outside = bt - 0x3C800000u >= 0x03800000u;  // 2^-6 and 2 as bits
    D2 e01, e23;
    FwdPowEstimate(bt, outside, e01, e23);
    // The 29 bits below single precision, at the top of the word: y = 8 low
    // against the midpoint 2^31. y + 8 slack wraps the near interval
    // [2^31 - 8 slack, 2^31 + 8 slack] to the bottom of the signed range, so
    // one signed comparison finds it.
    const U4 lo = __builtin_shufflevector(Bits<U4>(e01), Bits<U4>(e23), 0, 2, 4, 6);
    const I4 w = Bits<I4>((lo << 3) + uint32_t(8 * kFwdPowSlack));
    bad = Bits<I4>(outside) | (w <= int32_t(INT32_MIN + 16 * kFwdPowSlack));
    return Bits<F4>(_mm_movelh_ps(_mm_cvtpd_ps(Bits<__m128d>(e01)), _mm_cvtpd_ps(Bits<__m128d>(e23))));
}

}  // namespace zil::gamma

#pragma GCC diagnostic pop
