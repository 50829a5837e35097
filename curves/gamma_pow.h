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

// The series' constants, four lanes each, in read-only memory. They are read
// through a pointer the compiler cannot see into, so that they stay memory
// operands instead of being splatted into a register anew for every group.
struct alignas(32) FwdPowConsts { pw::D4 one, a1, a2, a3; };
inline constexpr FwdPowConsts kFwdPowConsts{{1.0, 1.0, 1.0, 1.0},
                                            {kFwdA1, kFwdA1, kFwdA1, kFwdA1},
                                            {kFwdA2, kFwdA2, kFwdA2, kFwdA2},
                                            {kFwdA3, kFwdA3, kFwdA3, kFwdA3}};

// The estimate E for four lanes of [2^-6, 2), given as bits; lanes set in
// `outside` read the table's first pair instead of their own.
inline pw::D4 FwdPowEstimate(pw::U4 bt, pw::U4 outside) {
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
    D4 rcp, scale;
    Unzip(reinterpret_cast<const double*>(base + off[0]), reinterpret_cast<const double*>(base + off[1]),
          reinterpret_cast<const double*>(base + off[2]), reinterpret_cast<const double*>(base + off[3]), rcp, scale);
    const D4 m = __builtin_convertvector(Bits<F4>((bt & 0x7FFFFFu) | 0x3F800000u), D4);
    const D4 d = m * rcp - k->one;
    return scale + scale * (d * (k->a1 + d * (k->a2 + d * k->a3)));
}

// The power of four lanes of any bits, with no branch: `bad` marks the lanes
// whose result is not the scalar power's, those outside [2^-6, 2) and those
// near a rounding midpoint. The caller redoes them by another route.
inline pw::F4 FwdPow4(pw::U4 bt, pw::I4& bad) {
    using namespace pw;
    const U4 outside = bt - 0x3C800000u >= 0x03800000u;  // 2^-6 and 2 as bits
    const D4 E = FwdPowEstimate(bt, outside);
    // The 29 bits below single precision, at the top of the word: y = 8 low
    // against the midpoint 2^31. y + 8 slack wraps the near interval
    // [2^31 - 8 slack, 2^31 + 8 slack] to the bottom of the signed range, so
    // one signed comparison finds it.
    const I4 w = Bits<I4>((LoWords(E) << 3) + uint32_t(8 * kFwdPowSlack));
    bad = Bits<I4>(outside) | (w <= int32_t(INT32_MIN + 16 * kFwdPowSlack));
    return __builtin_convertvector(E, F4);
}

}  // namespace zil::gamma

#pragma GCC diagnostic pop
