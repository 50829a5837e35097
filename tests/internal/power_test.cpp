// Values of the internal power routines, by hand from their special-value
// rules and exact cases, and their accuracy against the host's mathematics.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "power.h"

extern "C" __float128 powq(__float128, __float128);

namespace {

constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

uint32_t Bits(float v) { uint32_t b; std::memcpy(&b, &v, 4); return b; }
float FromBits(uint32_t b) { float v; std::memcpy(&v, &b, 4); return v; }

struct Case { float x, y, want; };

// Special values and exact powers, compared bit for bit (signs of zeros too).
TEST(PowOneF, StatedValues) {
    const Case cases[] = {
        {-8.0f, 1.0f / 3.0f, 0.0f},  // negative base, fractional power: +0
        {3.0f, 2.0f, 9.0f},          {1.5f, 4.0f, 5.0625f},  {-2.0f, 3.0f, -8.0f},
        {-2.0f, 2.0f, 4.0f},         {-0.0f, 3.0f, -0.0f},   {-0.0f, -3.0f, -kInf},
        {-0.0f, -2.0f, kInf},        {2.0f, 200.0f, kInf},   {2.0f, -200.0f, 0.0f},
        {kNaN, 0.0f, 1.0f},          {kNaN, -0.0f, 1.0f},    {1.0f, kNaN, 1.0f},
        {1.0f, -kInf, 1.0f},         {-kInf, 3.0f, -kInf},   {-kInf, -3.0f, -0.0f},
        {-kInf, 2.0f, kInf},         {-1.0f, 3.0f, -1.0f},   {-1.0f, kInf, 1.0f},
        {0.5f, kInf, 0.0f},          {0.5f, -kInf, kInf},    {4.0f, -kInf, 0.0f},
        {-0.0f, kInf, 0.0f},         {-3.0f, -1.0f, -1.0f / 3.0f},
        {0.25f, 0.5f, 0.5f},         {2.0f, -3.0f, 0.125f},  {-2.0f, 16777216.0f, kInf},
        {0x1p-80f, 2.0f, 0.0f},      {1.0f + 0x1p-23f, 0x1p-30f, 1.0f},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Bits(mx_zilsPowOneF(c.x, c.y)), Bits(c.want)) << c.x << " ^ " << c.y;
    EXPECT_TRUE(std::isnan(mx_zilsPowOneF(kNaN, 2.0f)));
    EXPECT_TRUE(std::isnan(mx_zilsPowOneF(2.0f, kNaN)));
}

// The log-exp path stays within one unit of the last place of the correctly
// rounded result, across the near-1 polynomial, the table path and denormals.
TEST(PowOneF, AccuracyOfLogExpPath) {
    const float ys[] = {0.45f, 2.2222223f, -0.45f, 1.0f / 3.0f, 7.5f, 3.0f};
    for (float y : ys) {
        for (float x = 0x1p-140f; x < 1e30f; x *= 1.0137f) {
            const double want = std::pow(double(x), double(y));
            if (!(want < 3e38 && want > 1e-37)) continue;
            const float got = mx_zilsPowOneF(x, y);
            EXPECT_LE(std::fabs(got - want), std::nextafter(float(want), kInf) - float(want))
                << x << " ^ " << y;
        }
    }
}

TEST(PowOne, StatedValues) {
    EXPECT_TRUE(std::isnan(mx_zilsPowOne(-8.0, 1.0 / 3.0)));
    EXPECT_EQ(mx_zilsPowOne(8.0, 0.3333333333333333), 2.0);
    EXPECT_EQ(mx_zilsPowOne(27.0, 0.3333333333333333), 3.0);
    EXPECT_EQ(mx_zilsPowOne(-2.0, 3.0), -8.0);
    EXPECT_EQ(mx_zilsPowOne(std::nan(""), 0.0), 1.0);
    EXPECT_EQ(std::signbit(mx_zilsPowOne(-0.0, 3.0)), true);
    EXPECT_EQ(mx_zilsPowOne(-0.0, -3.0), -HUGE_VAL);
    EXPECT_EQ(mx_zilsPowOne(2.0, 2000.0), HUGE_VAL);
    EXPECT_EQ(mx_zilsPowOne(2.0, -2000.0), 0.0);
    EXPECT_EQ(mx_zilsPowOne(2.0, -1074.0), 0x1p-1074);
}

// Full double accuracy: cube roots agree with the correctly rounded value
// (113-bit host arithmetic) but for rare last-bit cases, and the x87
// precision control is as before.
TEST(PowOne, CubeRootsAndControlWord) {
    uint16_t before, after;
    __asm__ volatile("fnstcw %0" : "=m"(before));
    int off = 0, n = 0;
    for (double x = 1e-300; x < 1e300; x *= 1.0731, ++n) {
        const double want = double(powq(x, 0.3333333333333333));
        const double got = mx_zilsPowOne(x, 0.3333333333333333);
        off += got != want;
        ASSERT_LE(std::fabs(got - want), want * 0x1p-52) << x;
    }
    EXPECT_LE(off, n / 2000);
    __asm__ volatile("fnstcw %0" : "=m"(after));
    EXPECT_EQ(before, after);
}

struct PowxRun { std::vector<float> out; ZilStatus status; };
PowxRun Powx(std::vector<float> in, float power) {
    PowxRun r{std::vector<float>(in.size(), -7.0f), 0};
    r.status = mx_zilsPowx_32f_A21(in.data(), r.out.data(), int(in.size()), power);
    return r;
}

TEST(Powx, StatusesAndSpecialElements) {
    float v = 1.0f;
    EXPECT_EQ(mx_zilsPowx_32f_A21(nullptr, &v, 1, 0.45f), zilStatusNullPointer);
    EXPECT_EQ(mx_zilsPowx_32f_A21(&v, nullptr, 1, 0.45f), zilStatusNullPointer);
    EXPECT_EQ(mx_zilsPowx_32f_A21(&v, &v, 0, 0.45f), zilStatusBadSize);
    EXPECT_EQ(v, 1.0f);

    PowxRun sq = Powx({kNaN, -kInf, -3.0f}, 2.0f);  // the power-2 shortcut squares anything
    EXPECT_TRUE(std::isnan(sq.out[0]));
    EXPECT_EQ(sq.out[1], kInf);
    EXPECT_EQ(sq.out[2], 9.0f);
    EXPECT_EQ(sq.status, zilStatusOk);

    PowxRun z = Powx({0.0f, 4.0f, 1.0f}, 0.45f);
    EXPECT_EQ(Bits(z.out[0]), 0u);
    EXPECT_EQ(z.out[2], 1.0f);
    EXPECT_EQ(z.status, zilStatusOk);

    PowxRun neg = Powx({-8.0f}, 0.45f);
    EXPECT_EQ(Bits(neg.out[0]), 0xFFC00000u);
    EXPECT_EQ(neg.status, 19);
    PowxRun third = Powx({-8.0f}, 1.0f / 3.0f);
    EXPECT_EQ(Bits(third.out[0]), 0xFFC00000u);
    PowxRun pole = Powx({-0.0f, 2.0f}, -2.2222223f);
    EXPECT_EQ(pole.out[0], kInf);
    EXPECT_EQ(pole.status, 19);
    PowxRun odd = Powx({-2.0f}, 3.0f);  // negative base, odd integer power
    EXPECT_EQ(odd.out[0], -8.0f);
}

// The fast path (groups of four positive normals) keeps about 21 bits; the
// scalar path, which a group takes whole when one element is special, keeps
// double accuracy. The tail after the last multiple of 8 goes element-wise.
TEST(Powx, GroupsAndAccuracy) {
    const float x = 0.3f, power = 2.2222223f;
    const float exact = float(std::pow(double(x), double(power)));
    PowxRun fast = Powx(std::vector<float>(16, x), power);
    for (float f : fast.out) EXPECT_NEAR(f, exact, exact * 0x1p-20);
    PowxRun mixed = Powx({x, x, x, 0.0f, x, x, x, x, x, x, x, 0.0f}, power);
    for (int i : {0, 1, 2}) EXPECT_EQ(mixed.out[i], exact) << i;       // scalar, whole group
    for (int i : {4, 5, 6, 7}) EXPECT_EQ(mixed.out[i], fast.out[i]);  // fast group
    for (int i : {8, 9, 10}) EXPECT_EQ(mixed.out[i], fast.out[i]);    // tail, one by one
    EXPECT_EQ(Powx({4.0f}, 0.5f).out[0], 2.0f);

    int off = 0;
    for (float b = 0.01f; b < 4.0f; b *= 1.001f) {
        const float want = float(std::pow(double(b), 0.45));
        const float got = Powx(std::vector<float>(8, b), 0.45f).out[5];
        EXPECT_NEAR(got, want, want * 0x1p-21) << b;
        off += got != want;
    }
    EXPECT_GT(off, 0);  // single-precision exponential: not always the nearest float
}

}  // namespace
