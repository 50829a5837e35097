// The logarithm-exponential steps of the float power, shared by the scalar
// routine and by callers that have already ruled out every special value: for a
// positive finite x (denormals included) and a y that is neither an integer nor
// special, PowOneF(x, y) is LogExpF(bits of x, y, false) bit for bit.
#pragma once

#include "power.h"
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

}  // namespace zil::pw
