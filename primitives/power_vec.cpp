// Vector power mx_zilsPowx_32f_A21: a float vector to one float power.
//
// Groups of 4 positive normal elements take a fast path whose exponential is in
// single precision; any other element, and every element of a group that holds
// one, goes through the double-precision scalar path with its special values.
#include "power_core.h"

// Four-lane double vectors are 32 bytes; every function taking them is inlined,
// so the note on how they would be passed without AVX does not apply.
#pragma GCC diagnostic ignored "-Wpsabi"

using namespace zil::pw;

extern "C" {
ZIL_HIDDEN void own_zils_sError() noexcept;
ZIL_HIDDEN void own_zils_dError() noexcept __attribute__((alias("own_zils_sError")));
ZIL_HIDDEN void own_zils_cError() noexcept __attribute__((alias("own_zils_sError")));
ZIL_HIDDEN void own_zils_zError() noexcept __attribute__((alias("own_zils_sError")));
ZIL_HIDDEN ZilStatus own_zils_sPowx_EXHAynn(const float* src, float* dst, int len, float power);
}

// The one place where a domain or pole case could be reported to a caller.
// Nothing is reported.
__attribute__((noinline)) void own_zils_sError() noexcept { __asm__ volatile(""); }

namespace zil::pw {
namespace {

using ScalarFn = float (*)(float, float, int*);
float _spow_scalar(float x, float power, int* status);

// The vector routine, its per-element path and its error hook, reached through
// this constant table.
struct PowxTable {
    ZilStatus (*vector)(const float*, float*, int, float);
    ScalarFn scalar;
    void (*error)();
};

}  // namespace
}  // namespace zil::pw

extern "C" ZIL_HIDDEN __attribute__((used)) const zil::pw::PowxTable own_zils_sPowx_EX_ttab[1] = {
    {own_zils_sPowx_EXHAynn, zil::pw::_spow_scalar, own_zils_sError}};

namespace zil::pw {
namespace {

constexpr double kLn2 = 0.6931471805599453;
constexpr double k128ByLn2 = 184.6649652337873;
constexpr double kLn2By128 = 0.0054152123481245725;
constexpr double kRound = 6755399441055744.0;  // 1.5 * 2^52: adding it rounds to an integer
constexpr double kRound256 = 17592186044416.0;  // 2^44: adding it rounds a mantissa to 1/256

// 0 if y is not an integer, 1 if odd, 2 if even. Below 1, NaN and infinity: 0;
// from 2^24 up: 2.
int _TestInt(float y) {
    const uint32_t ay = FBits(y) & 0x7FFFFFFFu;
    if (ay < 0x3F800000u || ay >= 0x7F800000u) return 0;
    if (ay >= 0x4B800000u) return 2;
    const int fracBits = 150 - int(ay >> 23);
    const uint32_t sig = (ay & 0x7FFFFFu) | 0x800000u;
    if (sig & ((1u << fracBits) - 1)) return 0;
    return ((sig >> fracBits) & 1) ? 1 : 2;
}

// ln of a positive double of mantissa m in [1, 2): table at the mantissa
// rounded to 1/256, whose index `i` the caller derives from the bits.
inline double TableLog(uint64_t db, int i) {
    const int e = int(db >> 52) - 1023;
    const double m = AsD((db & 0xFFFFFFFFFFFFFull) | 0x3FF0000000000000ull);
    const double mr = (m + kRound256) - kRound256;
    const double z = (m - mr) * Table[i].rcp;
    return ((e * kLn2 + Table[i].ln) + z) + ((0.33333333333238757 * z - 0.4999999999992423) * z) * z;
}

// Fast path: w from the log, then 2^(w / ln 2) in single precision.
inline double FastW(float x, float power) {
    const uint32_t bx = FBits(x);
    const int i = int(((bx >> 14) & 0x1FFu) + 1) >> 1;
    return static_cast<double>(power) * TableLog(DBits(static_cast<double>(x)), i);
}
inline float FastExp(double w) {
    const double nr = w * k128ByLn2 + kRound;
    const int32_t n = static_cast<int32_t>(static_cast<uint32_t>(DBits(nr)));
    const float r = static_cast<float>(w - (nr - kRound) * kLn2By128);
    const HiLoF t = exp2f_table[n & 127];
    const float scale = AsF(static_cast<uint32_t>((n >> 7) + 127) << 23);
    return ((r * r * 0.5f + (t.lo + r)) * t.hi + t.hi) * scale;
}
// The fast path holds while 2^(n >> 7) stays a normal float: |w| below 87.
inline bool WInRange(double w) { return (Hi(w) & 0x7FFFFFFFu) < 0x4055C000u; }
inline bool PositiveNormal(float x) { return FBits(x) - 0x00800000u < 0x7F000000u; }

// The group's constants, four lanes each, in read-only memory. FastGroup reads
// them through a pointer the compiler cannot see into, so they stay memory
// operands of the arithmetic instead of being splatted into a register anew
// for every group of the loop.
struct alignas(32) GroupConsts {
    D4 ln2, c3, c2, toN, round, fromN;
    F4 half, round15;
};
constexpr D4 Splat(double v) { return D4{v, v, v, v}; }
inline constexpr GroupConsts kGroup{Splat(kLn2),     Splat(0.33333333333238757), Splat(0.4999999999992423),
                                    Splat(k128ByLn2), Splat(kRound),              Splat(kLn2By128),
                                    F4{0.5f, 0.5f, 0.5f, 0.5f},   F4{32768.0f, 32768.0f, 32768.0f, 32768.0f}};

// The fast path on a group of four, in vector registers: the same operations
// as FastW and FastExp, lane by lane, so the same bits. False (nothing
// written) when an element is not a positive normal or its |w| is too large.
inline bool FastGroup(const float* src, float* dst, const D4& power) {
    const GroupConsts* k = &kGroup;
    __asm__("" : "+r"(k));
    F4 x;
    __builtin_memcpy(&x, src, 16);
    const U4 bx = Bits<U4>(x);
    if (Any(bx - 0x00800000u >= 0x7F000000u)) return false;
    const U4 idx = (((bx >> 14) & 0x1FFu) + 1u) >> 1;
    // Exponent and mantissa straight from the float's fields; a float is a
    // double's exact value, so these are the double's e and m. The mantissa
    // goes to 1/256 in float through 2^15, whose units are 2^-8: the same
    // rounding, ties to even, as through 2^44 in double, and m - mr is exact
    // in either precision since the two are within 2^-9 of each other.
    const D4 e = __builtin_convertvector(Bits<I4>(bx >> 23) - 127, D4);
    const F4 m = Bits<F4>((bx & 0x7FFFFFu) | 0x3F800000u);
    const F4 mr = (m + k->round15) - k->round15;
    // The (ln, rcp) pairs, one 16-byte load a lane, gathered here rather than
    // through Unzip so that they never pass through memory.
    typedef double Pair __attribute__((vector_size(16), may_alias));
    const D2 p0 = *reinterpret_cast<const Pair*>(&Table[idx[0]].ln);
    const D2 p1 = *reinterpret_cast<const Pair*>(&Table[idx[1]].ln);
    const D2 p2 = *reinterpret_cast<const Pair*>(&Table[idx[2]].ln);
    const D2 p3 = *reinterpret_cast<const Pair*>(&Table[idx[3]].ln);
    const D4 ln = {p0[0], p1[0], p2[0], p3[0]}, rcp = {p0[1], p1[1], p2[1], p3[1]};
    const D4 z = __builtin_convertvector(m - mr, D4) * rcp;
    const D4 w = power * (((e * k->ln2 + ln) + z) + ((k->c3 * z - k->c2) * z) * z);
    // |w| at or above 87, read on the upper words (87 has a zero lower word).
    if (Any((HiWords(w) & 0x7FFFFFFFu) >= 0x4055C000u)) return false;
    const D4 nr = w * k->toN + k->round;
    const F4 r = __builtin_convertvector(w - (nr - k->round) * k->fromN, F4);
    const I4 n = Bits<I4>(LoWords(nr));
    const U4 j = Bits<U4>(n) & 127u;
    // The (hi, lo) float pairs of exp2f_table, one 8-byte load a lane.
    const D4 pairs = {Bits<double>(exp2f_table[j[0]]), Bits<double>(exp2f_table[j[1]]),
                      Bits<double>(exp2f_table[j[2]]), Bits<double>(exp2f_table[j[3]])};
    const F4 H = Bits<F4>(LoWords(pairs)), Lo = Bits<F4>(HiWords(pairs));
    const F4 scale = Bits<F4>(((n >> 7) + 127) << 23);
    const F4 R = ((r * r * k->half + (Lo + r)) * H + H) * scale;
    __builtin_memcpy(dst, &R, 16);
    return true;
}

// Per-element path in double precision, special values included.
float _spow_scalar(float x, float power, int* status) {
    const uint32_t bx = FBits(x), bp = FBits(power);
    const uint32_t ax = bx & 0x7FFFFFFFu, ap = bp & 0x7FFFFFFFu;
    const bool xNeg = (bx >> 31) != 0, pNeg = (bp >> 31) != 0;
    const int kind = _TestInt(power);
    const bool finitePower = ap != 0 && ap < 0x7F800000u;
    const bool finiteX = ax != 0 && ax < 0x7F800000u;
    if (finitePower && finiteX && (!xNeg || kind != 0)) {
        double xd = AsF(ax);
        double sub = 0.0;
        if (ax < 0x00800000u) xd *= 9744803446.248903, sub = 23.0;  // e^23
        const uint64_t db = DBits(xd);
        const int i = int(((db >> 43) & 0x1FFu) + 1) >> 1;
        double L = TableLog(db, i);
        if (sub != 0.0) L = L - sub;
        const double w = static_cast<double>(power) * L;
        const bool negOut = xNeg && kind == 1;
        double R;
        if ((Hi(w) & 0x7FFFFFFFu) > 0x4086232Bu) {
            R = w > 0.0 ? __builtin_inf() : 0.0;
        } else {
            const double nr = w * k128ByLn2 + kRound;
            const int32_t n = static_cast<int32_t>(static_cast<uint32_t>(DBits(nr)));
            const double r = w - (nr - kRound) * kLn2By128;
            const double p = ((0.16666666666666666 * r + 0.5) * r) * r;
            const double T = AsD((static_cast<uint64_t>((n >> 7) + 1023) << 52) | s_dwExp2[n & 127]);
            R = (p + r) * T + T;
        }
        return static_cast<float>(negOut ? -R : R);
    }
    // Special values, in the order of the single-precision scalar routine.
    if (ap == 0) return 1.0f;
    const bool frac = kind == 0;
    const bool neg = kind == 1 && xNeg;
    float special;
    if (NanInfRules(x, power, ax, ap, pNeg, false, frac, neg, special)) return special;
    if (ax == 0) {
        if (pNeg) {  // pole
            *status = kStatusDomain;
            own_zils_sPowx_EX_ttab[0].error();
        }
        return ZeroBase<float>(pNeg, neg && !frac);
    }
    // A negative finite base with a non-integer power.
    *status = kStatusDomain;
    own_zils_sPowx_EX_ttab[0].error();
    return AsF(0xFFC00000u);
}

// Saves MXCSR, masks all exceptions and selects round-to-nearest if needed; on
// leaving restores the word, or clears the flags that arose.
struct FpEnv {
    uint32_t saved;
    bool changed;
    FpEnv() {
        __asm__ volatile("stmxcsr %0" : "=m"(saved) : : "memory");
        const uint32_t want = (saved | 0x1F80u) & ~0x6000u;
        changed = want != saved;
        if (changed) __asm__ volatile("ldmxcsr %0" : : "m"(want) : "memory");
    }
    ~FpEnv() {
        if (changed) {
            __asm__ volatile("ldmxcsr %0" : : "m"(saved) : "memory");
        } else {
            uint32_t now;
            __asm__ volatile("stmxcsr %0" : "=m"(now) : : "memory");
            now = (now & ~0x3Fu) | (saved & 0x3Fu);
            __asm__ volatile("ldmxcsr %0" : : "m"(now) : "memory");
        }
        __asm__ volatile("fnclex" : : : "memory");
    }
};

}  // namespace
}  // namespace zil::pw

ZilStatus own_zils_sPowx_EXHAynn(const float* src, float* dst, int len, float power) {
    using namespace zil::pw;
    if (src == nullptr || dst == nullptr) return zilStatusNullPointer;
    if (len < 1) return zilStatusBadSize;
    FpEnv env;
    if (power == 2.0f) {
        for (int i = 0; i < len; ++i) dst[i] = src[i] * src[i];
        return zilStatusOk;
    }
    int status = zilStatusOk;
    const ScalarFn scalar = own_zils_sPowx_EX_ttab[0].scalar;
    const int grouped = len & ~7;
    const D4 powerD = Splat(static_cast<double>(power));
    int i = 0;
    for (; i < grouped; i += 4) {
        if (FastGroup(src + i, dst + i, powerD)) continue;
        const float x0 = src[i], x1 = src[i + 1], x2 = src[i + 2], x3 = src[i + 3];
        dst[i] = scalar(x0, power, &status);
        dst[i + 1] = scalar(x1, power, &status);
        dst[i + 2] = scalar(x2, power, &status);
        dst[i + 3] = scalar(x3, power, &status);
    }
    for (; i < len; ++i) {
        const float x = src[i];
        double w;
        if (PositiveNormal(x) && WInRange(w = FastW(x, power))) {
            dst[i] = FastExp(w);
        } else {
            dst[i] = scalar(x, power, &status);
        }
    }
    return status;
}

ZilStatus mx_zilsPowx_32f_A21(const float* src, float* dst, int len, float power) {
    return own_zils_sPowx_EX_ttab[0].vector(src, dst, len, power);
}
