// The fast single-precision cube root of the LUV and Lab kernels against the
// double power routine narrowed to single: same bits over a sweep of the
// inputs the kernels pass (above the threshold, in 0..1 and far beyond; the
// lane form up to 64) and at inputs whose cube roots lie next to the midpoint
// of two singles; the eight-lane form against the scalar one where its lanes
// fall back singly.
#include <gtest/gtest.h>

#include <cstring>

#include "colorspace/cie_lanes.h"

namespace {

using zil::cie::CbrtEstimate;
using zil::cie::CubeRoot;
using zil::cie::CubeRootF;
using zil::cie::VF;
using zil::cie::VI;

uint32_t Bits(float v) { uint32_t b; std::memcpy(&b, &v, 4); return b; }
float FromBits(uint32_t b) { float v; std::memcpy(&v, &b, 4); return v; }

// Same bits as the power routine, and the estimate inside the interval that
// the fast path relies on.
void Expect(float v, int& fallbacks) {
    const double p = CubeRoot(v), e = CbrtEstimate(v);
    ASSERT_EQ(Bits(CubeRootF(v)), Bits(float(p))) << v;
    ASSERT_LE(std::abs(e - p), p * 0x1p-42) << v;  // the fast path needs 2^-40
    if (v < 64.f) {
        ASSERT_EQ(Bits(zil::cie::CubeRootFV(VF{} + v, VI{} - 1)[5]), Bits(float(p))) << v;
    }
    fallbacks += float(e * (1 - 0x1p-40)) != float(e * (1 + 0x1p-40));
}

TEST(CieCubeRoot, SweepAgreesWithThePowerRoutine) {
    int fallbacks = 0, n = 0;
    const uint32_t lo = Bits(0.008856f) + 1, one = Bits(1.0f), top = Bits(3.0e38f);
    for (uint32_t b = lo; b <= one; b += 13, ++n) Expect(FromBits(b), fallbacks);
    for (uint32_t b = one; b <= top; b += 997, ++n) Expect(FromBits(b), fallbacks);
    EXPECT_LT(fallbacks, n / 1000) << fallbacks << " of " << n;
}

// v near m^3, m the midpoint of two adjacent singles: the estimate cannot
// decide there, and the power routine must.
TEST(CieCubeRoot, NearRoundingBoundaries) {
    int fallbacks = 0;
    for (uint32_t b = Bits(0.2f); b < Bits(40.0f); b += 4099) {
        const float f = FromBits(b);
        const double m = (double(f) + double(FromBits(b + 1))) / 2;
        const uint32_t c = Bits(float(m * m * m));
        for (uint32_t d = c - 3; d <= c + 3; ++d) Expect(FromBits(d), fallbacks);
    }
    EXPECT_GT(fallbacks, 0);
}

// Inputs the estimate cannot decide, each in a different lane among inputs it
// decides; lane 5 is not in use and may hold anything.
TEST(CieCubeRoot, LanesAgreeWithTheScalarForm) {
    const VI use = {-1, -1, -1, -1, -1, 0, -1, -1};
    int undecided = 0;
    for (uint32_t b = Bits(0.2f); b < Bits(40.0f); b += 1031) {
        const double m = (double(FromBits(b)) + double(FromBits(b + 1))) / 2;
        const uint32_t c = Bits(float(m * m * m));
        for (uint32_t d = c - 3; d <= c + 3; ++d) {
            const double e = CbrtEstimate(FromBits(d));
            if (float(e * (1 - 0x1p-40)) == float(e * (1 + 0x1p-40))) continue;
            VF v = {0.5f, 0.7f, 1.1f, 2.f, 3.f, 5.f, 7.f, 11.f};
            v[undecided++ % 8] = FromBits(d);
            const VF r = zil::cie::CubeRootFV(v, use);
            for (int j = 0; j < 8; ++j)
                if (use[j]) ASSERT_EQ(Bits(r[j]), Bits(CubeRootF(v[j]))) << v[j];
        }
    }
    EXPECT_GT(undecided, 8);
}

}  // namespace
