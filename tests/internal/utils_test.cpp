// The internal utilities: statuses and their order, the sum's order of
// additions, the maximum's rules for ties and NaN, overlapping copies, floor.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <vector>

#include "primitives/utils.h"

namespace {

const ZilSize k1x1{1, 1};
constexpr double k2p53 = 9007199254740992.0;  // 2^53: adding 1 to it rounds away

uint32_t Bits(float f) {
    uint32_t u;
    std::memcpy(&u, &f, 4);
    return u;
}

TEST(Utils, NullOutranksSizeInEveryCheck) {
    float f[1] = {1}, m = 7;
    double d = 7;
    uint8_t b[1] = {9};
    const ZilSize bad{0, 1}, badH{1, -1};
    struct Case {
        const char* name;
        std::function<ZilStatus(bool nullArg, ZilSize)> call;
        bool image = true;  // takes a height
    };
    const Case cases[] = {
        {"Set", [&](bool n, ZilSize z) { return mx_ziliSet_8u_C1R(1, n ? nullptr : b, 1, z); }},
        {"Copy src", [&](bool n, ZilSize z) { return mx_ziliCopy_8u_C1R(n ? nullptr : b, 1, b, 1, z); }},
        {"Copy dst", [&](bool n, ZilSize z) { return mx_ziliCopy_8u_C1R(b, 1, n ? nullptr : b, 1, z); }},
        {"Max", [&](bool n, ZilSize z) { return mx_ziliMax_32f_C1R(f, 4, z, n ? nullptr : &m); }},
        {"Sum", [&](bool n, ZilSize z) { return mx_ziliSum_32f_C1R(n ? nullptr : f, 4, z, &d); }},
        {"Mean src", [&](bool n, ZilSize z) { return mx_ziliMean_32f_C1R(n ? nullptr : f, 4, z, &d, 0); }},
        {"Mean out", [&](bool n, ZilSize z) { return mx_ziliMean_32f_C1R(f, 4, z, n ? nullptr : &d, 0); }},
        {"sMax", [&](bool n, ZilSize z) { return mx_zilsMax_32f(n ? nullptr : f, z.width, &m); }, false},
        {"AddC", [&](bool n, ZilSize z) { return mx_zilsAddC_32f(f, n ? nullptr : f, z.width, 2); }, false},
        {"SubC", [&](bool n, ZilSize z) { return mx_zilsSubC_32f(n ? nullptr : f, f, z.width, 2); }, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.call(true, bad), zilStatusNullPointer) << c.name;
        EXPECT_EQ(c.call(false, bad), zilStatusBadSize) << c.name;
        if (c.image) EXPECT_EQ(c.call(false, badH), zilStatusBadSize) << c.name;
    }
    // Nothing was written by any failing call.
    EXPECT_EQ(b[0], 9);
    EXPECT_EQ(f[0], 1.0f);
    EXPECT_EQ(m, 7.0f);
    EXPECT_EQ(d, 7.0);
}

TEST(Utils, SetStoresTheLowByteWithinTheRegion) {
    std::vector<uint8_t> img(3 * 5, 0xEE);
    ASSERT_EQ(mx_ziliSet_8u_C1R(0x1C3, img.data(), 5, ZilSize{3, 3}), zilStatusOk);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x) EXPECT_EQ(img[y * 5 + x], x < 3 ? 0xC3 : 0xEE) << x << "," << y;
}

TEST(Utils, CopyOverlapGoesForwardRowAfterRow) {
    // Destination one byte behind the source within a row: the first byte runs on.
    uint8_t row[12] = {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 'i', 'j', 'k', 'l'};
    ASSERT_EQ(mx_ziliCopy_8u_C1R(row, 12, row + 1, 12, ZilSize{10, 1}), zilStatusOk);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(row), 12), "aaaaaaaaaaal");
    // Destination ahead of the source: an ordinary shift.
    uint8_t back[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    mx_ziliCopy_8u_C1R(back + 1, 8, back, 8, ZilSize{7, 1});
    EXPECT_EQ(std::vector<uint8_t>(back, back + 8), (std::vector<uint8_t>{2, 3, 4, 5, 6, 7, 8, 8}));
    // Rows a row apart take the block path, and row 1, already overwritten,
    // is what reaches row 2.
    std::vector<uint8_t> img(3 * 9);
    for (int i = 0; i < 27; ++i) img[i] = uint8_t(i);
    mx_ziliCopy_8u_C1R(img.data(), 9, img.data() + 9, 9, ZilSize{9, 2});
    for (int y = 1; y < 3; ++y)
        for (int x = 0; x < 9; ++x) EXPECT_EQ(img[y * 9 + x], x) << x << "," << y;
    // A count below 1 does nothing.
    uint8_t one = 5, two = 6;
    mx_ownsCopy_8u(&one, &two, 0);
    EXPECT_EQ(two, 6);
}

TEST(Utils, MaxKeepsTheFirstOfEqualsAndSkipsNaN) {
    const float nan = std::nanf("");
    float m = 0;
    // A NaN sample is passed over; a NaN first sample stays.
    const float a[3] = {1, nan, 3};
    mx_zilsMax_32f(a, 3, &m);
    EXPECT_EQ(m, 3.0f);
    const float b[3] = {nan, 4, 5};
    mx_zilsMax_32f(b, 3, &m);
    EXPECT_TRUE(std::isnan(m));
    // Long rows: the maximum in the middle, a NaN elsewhere; and zeros of both
    // signs where the first one seen wins.
    std::vector<float> r(77, -3.0f);
    r[40] = 9.5f, r[41] = nan, r[76] = 9.25f;
    mx_zilsMax_32f(r.data(), 77, &m);
    EXPECT_EQ(m, 9.5f);
    std::vector<float> z(70, -1.0f);
    z[0] = -0.0f, z[17] = 0.0f;
    mx_zilsMax_32f(z.data(), 70, &m);
    EXPECT_EQ(Bits(m), 0x80000000u);
    z[0] = -2.0f, z[5] = 0.0f, z[17] = -0.0f;
    mx_zilsMax_32f(z.data(), 70, &m);
    EXPECT_EQ(Bits(m), 0u);
    // The image form compares row maxima: a row that starts with NaN has a NaN
    // maximum, which never wins, so its 50 is not seen.
    const float img[2][4] = {{1, 2, 0, 0}, {nan, 50, 0, 0}};
    mx_ziliMax_32f_C1R(&img[0][0], 16, ZilSize{2, 2}, &m);
    EXPECT_EQ(m, 2.0f);
    mx_ziliMax_32f_C1R(&img[1][0], -16, ZilSize{2, 2}, &m);  // upwards from the NaN row
    EXPECT_TRUE(std::isnan(m));
}

TEST(Utils, SumKeepsItsOrderOfAdditions) {
    double s = 0;
    // 16 wide: the even samples go through four lanes pairs, so the three
    // ones meet in (0 + 1) + (1 + 1) ... before they reach 2^53; plain order
    // would round each of them away.
    float row[16] = {};
    row[0] = float(k2p53), row[8] = 1, row[12] = 1, row[6] = 1, row[14] = 1;
    ASSERT_EQ(mx_ziliSum_32f_C1R(row, 64, ZilSize{16, 1}, &s), zilStatusOk);
    EXPECT_EQ(s, k2p53 + 4);
    // Short rows: even and odd columns run as two sums across rows; an odd
    // last sample goes to the even sum.
    const float img[2][3] = {{float(k2p53), 1, 1}, {0, 1, 1}};
    mx_ziliSum_32f_C1R(&img[0][0], 12, ZilSize{3, 2}, &s);
    EXPECT_EQ(s, k2p53 + 2);
    // Width 1: every sample is in the even sum, where each 1 rounds away.
    mx_ziliSum_32f_C1R(&img[0][0], 4, ZilSize{1, 3}, &s);
    EXPECT_EQ(s, k2p53);
    mx_ziliSum_32f_C1R(&img[0][1], 4, k1x1, &s);
    EXPECT_EQ(s, 1.0);
}

TEST(Utils, MeanDividesBySampleCountAndPassesStatusOn) {
    const float img[2][3] = {{1, 2, 99}, {3, 4, 99}};
    double mean = -1;
    ASSERT_EQ(mx_ziliMean_32f_C1R(&img[0][0], 12, ZilSize{2, 2}, &mean, 12345), zilStatusOk);
    EXPECT_EQ(mean, 2.5);
    mean = -1;
    EXPECT_EQ(mx_ziliMean_32f_C1R(&img[0][0], 12, ZilSize{2, 0}, &mean, 0), zilStatusBadSize);
    EXPECT_EQ(mean, -1.0);
}

TEST(Utils, AddSubConstantAndZeroCopiesBits) {
    const float nanPayload = [] {
        uint32_t u = 0x7FA00001u;  // signalling NaN with a payload
        float f;
        std::memcpy(&f, &u, 4);
        return f;
    }();
    float src[5] = {-0.0f, 1.0f, 16777216.0f, nanPayload, -2.5f}, dst[5];
    ASSERT_EQ(mx_zilsAddC_32f(src, dst, 5, 0.0f), zilStatusOk);
    EXPECT_EQ(0, std::memcmp(src, dst, sizeof src));  // -0 + 0 would be +0
    ASSERT_EQ(mx_zilsSubC_32f(src, src, 5, -0.0f), zilStatusOk);
    EXPECT_EQ(Bits(src[0]), 0x80000000u);
    EXPECT_EQ(Bits(src[3]), 0x7FA00001u);
    mx_zilsAddC_32f(src, dst, 5, 1.0f);
    EXPECT_EQ(Bits(dst[0]), Bits(1.0f));
    EXPECT_EQ(dst[2], 16777216.0f);  // single precision: the 1 rounds away
    EXPECT_EQ(dst[4], -1.5f);
    mx_zilsSubC_32f(src, src, 5, 0.75f);  // in place
    EXPECT_EQ(src[1], 0.25f);
    EXPECT_EQ(src[4], -3.25f);
}

TEST(Utils, FloorByExponent) {
    struct Case {
        float x, want;
    };
    const Case cases[] = {
        {0.5f, 0.0f},   {-0.5f, -1.0f},  {1e-45f, 0.0f},  {-1e-45f, -1.0f},  // below 1
        {1.0f, 1.0f},   {-1.0f, -1.0f},  {2.5f, 2.0f},    {-2.5f, -3.0f},    // ties rounded to even
        {3.5f, 3.0f},   {-3.5f, -4.0f},  {4194303.75f, 4194303.0f},           // e = 148
        {8388607.5f, 8388607.0f}, {-8388607.5f, -8388608.0f},               // e = 149, half bit set
        {8388606.0f, 8388606.0f}, {-4194305.0f, -4194305.0f},
        {8388609.0f, 8388609.0f}, {-1e30f, -1e30f}, {INFINITY, INFINITY},   // no fraction
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Bits(mx_zilsFloorOneF(c.x)), Bits(c.want)) << c.x;
    }
    EXPECT_EQ(Bits(mx_zilsFloorOneF(-0.0f)), 0x80000000u);
    EXPECT_EQ(Bits(mx_zilsFloorOneF(0.0f)), 0u);
    EXPECT_TRUE(std::isnan(mx_zilsFloorOneF(std::nanf(""))));
}

}  // namespace
