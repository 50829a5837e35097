// Scalar power routines: mx_zilsPowOneF (float) and mx_zilsPowOne (double).
#include "power.h"

#include "power_tables.inc"

using namespace zil::pw;

extern "C" {
ZIL_HIDDEN uint32_t ps_get_cw_fpu();
ZIL_HIDDEN uint32_t ps_set_cw_fpu(uint32_t value, uint32_t mask);
ZIL_HIDDEN float mx_ownsPowOneF(float x, float y);
ZIL_HIDDEN double mx_ownsPowOne(double x, double y);
}

// The x87 control word. The setter stores the word, returns the old one and
// loads (old AND NOT mask) OR (value AND mask).
uint32_t ps_get_cw_fpu() {
    uint16_t cw;
    __asm__ volatile("fnstcw %0" : "=m"(cw) : : "memory");
    return cw;
}
uint32_t ps_set_cw_fpu(uint32_t value, uint32_t mask) {
    uint16_t old;
    __asm__ volatile("fnstcw %0" : "=m"(old) : : "memory");
    const uint16_t word = static_cast<uint16_t>((old & ~mask) | (value & mask));
    __asm__ volatile("fldcw %0" : : "m"(word) : "memory");
    return old;
}

namespace {

// Integer class of y from its magnitude bits: below 1 it is a fraction; from
// the bit pattern of 2^(mantBits + 1) up it is an even integer.
template <class U, int kMant, int kBias>
void Classify(U ay, bool& frac, bool& odd) {
    constexpr U kOne = U(kBias) << kMant;
    constexpr U kEven = U(kBias + kMant + 1) << kMant;
    if (ay < kOne) {
        frac = true, odd = false;
    } else if (ay < kEven) {
        const int fracBits = kMant - int(ay >> kMant) + kBias;
        const U sig = (ay & ((U(1) << kMant) - 1)) | (U(1) << kMant);
        frac = (sig & ((U(1) << fracBits) - 1)) != 0;
        odd = ((sig >> fracBits) & 1) != 0;
    } else {
        frac = false, odd = false;
    }
}

}  // namespace

// Steps in the order of the tests: special values, exact integer powers, then
// logarithm, range test and exponential, all in double precision.
float mx_ownsPowOneF(float x, float y) {
    const uint32_t bx = FBits(x), by = FBits(y);
    const uint32_t ax = bx & 0x7FFFFFFFu, ay = by & 0x7FFFFFFFu;
    const bool xNeg = (bx >> 31) != 0, yNeg = (by >> 31) != 0;
    if (ay == 0 || bx == 0x3F800000u) return 1.0f;
    bool frac, odd;
    Classify<uint32_t, 23, 127>(ay, frac, odd);
    const bool neg = odd && xNeg;
    if (ax > 0x7F800000u || ay > 0x7F800000u) return x * y;
    if (ax == 0x7F800000u) return _infs_zeros[int(yNeg) + 2 * int(neg && !frac)];
    if (ay == 0x7F800000u) {
        if (ax > 0x3F800000u) return yNeg ? 0.0f : _infs_zeros[0];
        if (ax == 0x3F800000u) return _ones[odd];
        if (ax != 0) return yNeg ? _infs_zeros[0] : 0.0f;
        return yNeg ? _infs_zeros[0] : _zeros[neg];
    }
    if (ax == 0) {
        const int n = neg && !frac;
        return yNeg ? _ones[n] / _zeros[0] : _zeros[n];
    }
    if (xNeg) {
        // A negative base with a fractional exponent gives +0 here (the double
        // routine gives a NaN).
        if (ay < 0x4B000000u && frac) return 0.0f;
        if (ax == 0x3F800000u) return _ones[odd];
    }
    if (ay == 0x3F800000u) return yNeg ? 1.0f / x : x;

    const float absX = AsF(ax);
    if (!frac && ay < 0x4B000000u) {
        const uint32_t n = static_cast<uint32_t>(AsF(ay));
        if ((ax & _exact_masks[n < 25 ? n - 2 : 25]) == 0) {
            // Few significant bits: square and multiply is exact in double.
            double b = absX, r = 1.0;
            for (uint32_t k = n;;) {
                if (k & 1) r *= b;
                k >>= 1;
                if (k == 0) break;
                b *= b;
            }
            if (yNeg) r = 1.0 / r;
            r *= static_cast<double>(_ones[neg]);
            const float out = static_cast<float>(r);
            if ((FBits(out) & 0x7FFFFFFFu) == 0x7F800000u) return 0x1p100f * _large_value_32[neg];
            return out;
        }
    }

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

float mx_zilsPowOneF(float x, float y) { return mx_ownsPowOneF(x, y); }

namespace {

using ld = long double;

// Coefficients (-1)^(k+1) / k of the series of ln(1 + u), k = 1..15.
struct Log1pCoeffs { ld c[16]; };
constexpr Log1pCoeffs MakeLog1p() {
    Log1pCoeffs t{};
    for (int k = 1; k < 16; ++k) t.c[k] = (k & 1 ? 1.0L : -1.0L) / ld(k);
    return t;
}
constexpr Log1pCoeffs kLog1p = MakeLog1p();

// ln(1 + u) from the first `terms` terms of its series, by Horner.
inline ld Log1pSeries(ld u, int terms) {
    ld p = 0.0L;
    for (int k = terms; k >= 1; --k) p = kLog1p.c[k] + u * p;
    return u * p;
}

// ln 2 in two parts, the high one with 32 bits so that e times it is exact and
// adds exactly to the 32-bit high parts of log_table_256. ln2/128 in two parts,
// the high one with 40 bits so that k times it is exact for every k that occurs.
constexpr double kLn2Hi = 0x1.62e42fefp-1;
constexpr ld kLn2Lo = 0.693147180559945309417232121458176568L - 0x1.62e42fefp-1L;
constexpr ld kLn2By128Hi = 0x1.62e42fefa38p-8L;
constexpr ld kLn2By128Lo = 0.693147180559945309417232121458176568L / 128 - 0x1.62e42fefa38p-8L;

// Exact product of two extended numbers as a rounded product and its error,
// by splitting each factor into two halves of 32 bits.
inline void TwoProd(ld a, ld b, ld& p, ld& err) {
    constexpr ld kSplit = 4294967297.0L;  // 2^32 + 1
    const ld ta = kSplit * a, a1 = ta - (ta - a), a2 = a - a1;
    const ld tb = kSplit * b, b1 = tb - (tb - b), b2 = b - b1;
    p = a * b;
    err = ((a1 * b1 - p) + a1 * b2 + a2 * b1) + a2 * b2;
}

// |x|^y for a finite |x| other than 0 and 1 and an exponent without special
// value. The logarithm is carried as an exact high part and a small low part,
// the product with y as an exact pair; rounded once to double at the end. Kept
// out of line so the precision control set by the caller brackets all of it.
__attribute__((noinline)) double PowCore(double ax, double y, bool neg) {
    ld Lhi, Llo;
    if (ax >= 0.984375 && ax <= 1.015625) {
        Lhi = Log1pSeries(ld(ax - 1.0), 15);  // x - 1 is exact here
        Llo = 0.0L;
    } else {
        int bias = 0;
        if (ax < 0x1p-1022) ax *= 0x1p64, bias = 64;  // denormals first scaled
        const uint64_t db = DBits(ax);
        const int e = int(db >> 52) - 1023 - bias;
        const double m = AsD((db & 0xFFFFFFFFFFFFFull) | 0x3FF0000000000000ull);
        const int i = int(db >> 44) & 0xFF;
        const ld u = ld(rcp_table_256.v[i]) * ld(m) - 1.0L;
        Lhi = ld(e * kLn2Hi) + ld(log_table_256[i].hi);
        Llo = (ld(e) * kLn2Lo + ld(log_table_256[i].lo)) + Log1pSeries(u, 10);
    }
    ld w, wlo;
    TwoProd(ld(y), Lhi, w, wlo);
    wlo += ld(y) * Llo;
    const double wd = static_cast<double>(w + wlo);
    if (wd > 709.782712893384) return _large_value_64[neg] * 1.0715086071862673e301;
    if (wd < -745.1332191019411) return _small_value_64[neg] * 9.332636185032189e-302;
    const double kd = (wd * 184.6649652337873 + 6755399441055744.0) - 6755399441055744.0;
    const int32_t k = static_cast<int32_t>(kd);
    const int32_t j = ((k & 127) ^ 64) - 64;
    const ld r = ((w - ld(kd) * kLn2By128Hi) + wlo) - ld(kd) * kLn2By128Lo;
    const ld p = r * (1.0L + r * (0.5L + r * (1.0L / 6 + r * (1.0L / 24 + r * (1.0L / 120 + r * (1.0L / 720))))));
    const ld T = ld(exp_table_128[64 + j].hi) + ld(exp_table_128[64 + j].lo);
    ld R = T + T * p;
    // 2^((k - j) / 128) in two steps that stay inside the double range.
    const int32_t e = (k - j) / 128, e1 = e / 2, e2 = e - e1;
    R *= ld(AsD(static_cast<uint64_t>(e1 + 1023) << 52));
    R *= ld(AsD(static_cast<uint64_t>(e2 + 1023) << 52));
    return static_cast<double>(neg ? -R : R);
}

}  // namespace

double mx_ownsPowOne(double x, double y) {
    const uint64_t bx = DBits(x), by = DBits(y);
    const uint64_t ax = bx & 0x7FFFFFFFFFFFFFFFull, ay = by & 0x7FFFFFFFFFFFFFFFull;
    const bool xNeg = (bx >> 63) != 0, yNeg = (by >> 63) != 0;
    constexpr uint64_t kOne = 0x3FF0000000000000ull, kInf = 0x7FF0000000000000ull;
    if (ay == 0 || bx == kOne) return 1.0;
    bool frac, odd;
    Classify<uint64_t, 52, 1023>(ay, frac, odd);
    const bool neg = odd && xNeg;
    if (ax > kInf || ay > kInf) return x * y;
    if (ax == kInf) return _infs_zeros64[int(yNeg) + 2 * int(neg && !frac)];
    if (ay == kInf) {
        if (ax > kOne) return yNeg ? 0.0 : _infs_zeros64[0];
        if (ax == kOne) return _ones64[odd];
        if (ax != 0) return yNeg ? _infs_zeros64[0] : 0.0;
        return yNeg ? _infs_zeros64[0] : _zeros64[neg];
    }
    if (ax == 0) {
        const int n = neg && !frac;
        return yNeg ? _ones64[n] / _zeros64[0] : _zeros64[n];
    }
    if (xNeg) {
        if (frac) return _infs_zeros64[0] * _zeros64[0];  // a NaN, with the invalid flag
        if (ax == kOne) return _ones64[odd];
    }
    if (ay == kOne) return yNeg ? 1.0 / x : x;

    const uint32_t saved = ps_get_cw_fpu();
    ps_set_cw_fpu(0x300, 0x300);  // precision control: extended
    const double out = PowCore(AsD(ax), y, neg);
    ps_set_cw_fpu(saved, 0xF3F);
    return out;
}

double mx_zilsPowOne(double x, double y) { return mx_ownsPowOne(x, y); }
