// The logarithm-exponential steps of the float power, shared by the scalar
// routine and by callers that have already ruled out every special value: for a
// positive finite x (denormals included) and a y that is neither an integer nor
// special, PowOneF(x, y) is LogExpF(bits of x, y, false) bit for bit.
#pragma once

#include "power.h"
#include <emmintrin.h>
#include "power_tables.inc"

namespace zil::pw {

inline float LogExpF(uint32_t ax, float y, bool neg) {
    const float absX = AsF(ax);
    const bool yNeg = (FBits(y) >> 31) != 0;
    double L;
    const double xd = absX;
    if (ax - 0x3F7C0000u <= 0x7FFFFu) {
        const double t = xd - 1.0;
        const double z = t * t;
        L = (((-0.1633915001506169 * z - 0.25000028411244596) * z - 0.4999999999944982) +
             (0.19999720742441346 * z + 0.33333333398284964) * t) * z + t;
    } else {
        const uint64_t db = DBits(xd);
        const int e = int(db >> 52) - 1023;
        const double m = AsD((db & 0xFFFFFFFFFFFFFull) | 0x3FF0000000000000ull);
        const int i = int(db >> 44) & 0xFF;
        const double u = static_cast<double>(rcp_table_256.v[i]) * m - 1.0;
        L = (e * 0.6931471805599453 +
             (u + (((-0.25000121000529846 * u + 0.3333343013364765) * u - 0.49999999999804784) * u) * u)) +
            logf_table_256[i];
    }

    // Quick range test on the sum of the exponent fields of y and L.
    const uint32_t s = (Hi(static_cast<double>(y)) & 0x7FF00000u) + (Hi(L) & 0x7FF00000u);
    const bool sameSign = yNeg == ((Hi(L) >> 31) != 0);
    if (s > 0x80500000u) return sameSign ? 0x1p100f * _large_value_32[neg] : 0x1p-100f * _small_value_32[neg];
    if (s < 0x7E300000u) return 1.0f + _small_value_32[!sameSign];

    // Exponential: k nearest to 64 w / ln 2 from the low 22 bits of a float.
    const double w = static_cast<double>(y) * L;
    const float f = static_cast<float>(92.33248261689366 * w + 12582912.0);
    const int32_t k = static_cast<int32_t>(FBits(f) << 10) >> 10;
    const float kf = f - 12582912.0f;
    const double r = w + static_cast<double>(kf) * -0.010830424696249145;
    const double z = r * r;
    const int32_t j = ((k & 63) ^ 32) - 32;
    const double T = expf_table_64[32 + j];
    const double R0 =
        T + ((0.04177954554005673 * z + 0.5000000010286696) * z + (0.1666661326110934 * z + 0.9999999999993114) * r) * T;
    const double R = AsD(DBits(R0) + (static_cast<uint64_t>(static_cast<int64_t>((k - j) / 64)) << 52));
    if (Hi(R) < 0x36900000u) return 0x1p-100f * _small_value_32[neg];
    if (DBits(R) > 0x47EFFFFFE0000000ull) return 0x1p100f * _large_value_32[neg];
    return static_cast<float>(neg ? -R : R);
}

// Vectors over the compiler's generic types; lanes that do not fit the
// processor's registers are split by the compiler, so the baseline needs SSE2
// only. The helpers below are inlined, so the note on how 32-byte vectors
// would be passed without AVX does not apply.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpsabi"
typedef float F4 __attribute__((vector_size(16)));
typedef int32_t I4 __attribute__((vector_size(16)));
typedef uint32_t U4 __attribute__((vector_size(16)));
typedef double D2 __attribute__((vector_size(16)));
typedef double D4 __attribute__((vector_size(32)));
typedef int64_t L4 __attribute__((vector_size(32)));
typedef uint64_t Q4 __attribute__((vector_size(32)));

// The reciprocal as a double beside its logarithm, so that one 16-byte load
// serves a lane of the four-lane logarithm.
struct RcpLog { double rcp, logf; };
struct RcpLogTable { RcpLog v[256]; };
constexpr RcpLogTable MakeRcpLog() {
    RcpLogTable t{};
    for (int i = 0; i < 256; ++i) t.v[i] = {static_cast<double>(rcp_table_256.v[i]), logf_table_256[i]};
    return t;
}
alignas(16) inline constexpr RcpLogTable rcp_logf_256 = MakeRcpLog();

// Two pairs of doubles, one a lane, to their first and second fields as vectors.
inline void Unzip(const double* a, const double* b, const double* c, const double* d, D4& first, D4& second) {
    typedef double Pair __attribute__((vector_size(16), may_alias));  // pairs are 16-byte aligned
    const D2 pa = *reinterpret_cast<const Pair*>(a), pb = *reinterpret_cast<const Pair*>(b);
    const D2 pc = *reinterpret_cast<const Pair*>(c), pd = *reinterpret_cast<const Pair*>(d);
    first = D4{pa[0], pb[0], pc[0], pd[0]};
    second = D4{pa[1], pb[1], pc[1], pd[1]};
}

// LogExpF on four lanes at once, the same operations in the same order, for
// x positive, finite and normal and y neither special nor an integer: the
// results are those of LogExpF(bits of x, y, false), lane by lane. False, with
// nothing written, when a lane leaves the common path (x outside that domain,
// or the quick range test or the result's range test deciding other than for
// a tiny logarithm); the caller then runs LogExpF per lane.
// Every caller passes a lane mask (all ones or zero), so the sign bits decide;
// one movmskps keeps the test in the vector unit.
inline bool Any(I4 m) { return _mm_movemask_ps(Bits<__m128>(m)) != 0; }
// The upper and the lower 32-bit halves of four doubles, gathered by one
// shuffle of the two register halves.
inline U4 HiWords(D4 v) {
    const U4 a = Bits<U4>(D2(__builtin_shufflevector(v, v, 0, 1))), b = Bits<U4>(D2(__builtin_shufflevector(v, v, 2, 3)));
    return __builtin_shufflevector(a, b, 1, 3, 5, 7);
}
inline U4 LoWords(D4 v) {
    const U4 a = Bits<U4>(D2(__builtin_shufflevector(v, v, 0, 1))), b = Bits<U4>(D2(__builtin_shufflevector(v, v, 2, 3)));
    return __builtin_shufflevector(a, b, 0, 2, 4, 6);
}
inline I4 Narrow(L4 m) { return __builtin_convertvector(m, I4); }
inline L4 Widen(I4 m) { return __builtin_convertvector(m, L4); }
template <class V, class M> inline V Select(M m, V a, V b) {
    return Bits<V>((Bits<M>(a) & m) | (Bits<M>(b) & ~m));
}

inline bool LogExpF4(F4 x, float y, F4& out) {
    const U4 ax = Bits<U4>(x);
    if (Any(Bits<I4>(ax - 0x00800000u >= 0x7F000000u))) return false;
    const D4 xd = __builtin_convertvector(x, D4);

    // Elsewhere: e as a double from 2^52 + field, less 2^52 + 1023.
    const Q4 db = Bits<Q4>(xd);
    const D4 e = Bits<D4>((db >> 52) | 0x4330000000000000ull) - (4503599627370496.0 + 1023.0);
    const D4 m = Bits<D4>((db & 0xFFFFFFFFFFFFFull) | 0x3FF0000000000000ull);
    const Q4 i = (db >> 44) & 0xFF;
    D4 rcp, lg;
    Unzip(&rcp_logf_256.v[i[0]].rcp, &rcp_logf_256.v[i[1]].rcp, &rcp_logf_256.v[i[2]].rcp,
          &rcp_logf_256.v[i[3]].rcp, rcp, lg);
    const D4 u = rcp * m - 1.0;
    const D4 Lt = (e * 0.6931471805599453 +
                   (u + (((-0.25000121000529846 * u + 0.3333343013364765) * u - 0.49999999999804784) * u) * u)) +
                  lg;
    // Near 1 the other polynomial, only where a lane needs it.
    D4 L = Lt;
    const I4 near = ax - 0x3F7C0000u <= 0x7FFFFu;
    if (Any(near)) {
        const D4 t = xd - 1.0;
        const D4 tz = t * t;
        const D4 Ln = (((-0.1633915001506169 * tz - 0.25000028411244596) * tz - 0.4999999999944982) +
                       (0.19999720742441346 * tz + 0.33333333398284964) * t) * tz + t;
        L = Select(Widen(near), Ln, Lt);
    }

    // Quick range test: a sum above the bound leaves the common path, one
    // below it gives 1 plus or minus a tiny value, as in LogExpF.
    const U4 hiL = HiWords(L);
    const U4 s = (Hi(static_cast<double>(y)) & 0x7FF00000u) + (hiL & 0x7FF00000u);
    if (Any(s > 0x80500000u)) return false;
    const I4 tiny = s < 0x7E300000u;
    const I4 sameSign = (hiL >> 31) == (FBits(y) >> 31);
    const F4 tinyOut = 1.0f + Select(sameSign, F4{} + _small_value_32[0], F4{} + _small_value_32[1]);

    // Exponential.
    const D4 w = static_cast<double>(y) * L;
    const F4 f = __builtin_convertvector(92.33248261689366 * w + 12582912.0, F4);
    const I4 k = (Bits<I4>(f) << 10) >> 10;
    const F4 kf = f - 12582912.0f;
    const D4 r = w + __builtin_convertvector(kf, D4) * -0.010830424696249145;
    const D4 z = r * r;
    const I4 j = ((k & 63) ^ 32) - 32;
    const D4 T = {expf_table_64[32 + j[0]], expf_table_64[32 + j[1]], expf_table_64[32 + j[2]],
                  expf_table_64[32 + j[3]]};
    const D4 R0 = T + ((0.04177954554005673 * z + 0.5000000010286696) * z + (0.1666661326110934 * z + 0.9999999999993114) * r) * T;
    const Q4 Rb = Bits<Q4>(R0) + (Bits<Q4>(Widen((k - j) >> 6)) << 52);
    // Below 2^-150 or above the largest float: left to LogExpF.
    const U4 hiR = HiWords(Bits<D4>(Rb)), loR = LoWords(Bits<D4>(Rb));
    const I4 outOfRange = (hiR < 0x36900000u) | (hiR > 0x47EFFFFFu) | ((hiR == 0x47EFFFFFu) & (loR > 0xE0000000u));
    if (Any(outOfRange & ~tiny)) return false;
    out = Select(tiny, tinyOut, __builtin_convertvector(Bits<D4>(Rb), F4));
    return true;
}

#pragma GCC diagnostic pop

}  // namespace zil::pw
