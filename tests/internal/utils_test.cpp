// The internal utilities: statuses and their order, the sum's order of
// additions, the maximum's rules for ties and NaN, overlapping copies, floor.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <vector>

#include "primitives/utils.h"

namespace {

constexpr double k2p53 = 9007199254740992.0;  // 2^53: adding 1 to it rounds away

uint32_t Bits(float f) {
    uint32_t u;
    std::memcpy(&u, &f, 4);
    return u;
}

// Each call with a null argument and a bad size, then with the size alone bad.
TEST(Utils, NullOutranksSizeAndNothingIsWritten) {
    float f[1] = {1}, m = 7;
    double d = 7;
    uint8_t b[1] = {9};
    using Call = std::function<ZilStatus(bool nullArg, ZilSize)>;
    const Call calls[] = {
        [&](bool n, ZilSize z) { return mx_ziliSet_8u_C1R(1, n ? nullptr : b, 1, z); },
        [&](bool n, ZilSize z) { return mx_ziliCopy_8u_C1R(n ? nullptr : b, 1, b, 1, z); },
        [&](bool n, ZilSize z) { return mx_ziliCopy_8u_C1R(b, 1, n ? nullptr : b, 1, z); },
        [&](bool n, ZilSize z) { return mx_ziliMax_32f_C1R(f, 4, z, n ? nullptr : &m); },
        [&](bool n, ZilSize z) { return mx_ziliSum_32f_C1R(n ? nullptr : f, 4, z, &d); },
        [&](bool n, ZilSize z) { return mx_ziliMean_32f_C1R(n ? nullptr : f, 4, z, &d, 0); },
        [&](bool n, ZilSize z) { return mx_ziliMean_32f_C1R(f, 4, z, n ? nullptr : &d, 0); },
        [&](bool n, ZilSize z) { return mx_zilsMax_32f(n ? nullptr : f, z.width * z.height, &m); },
        [&](bool n, ZilSize z) { return mx_zilsAddC_32f(f, n ? nullptr : f, z.width * z.height, 2); },
        [&](bool n, ZilSize z) { return mx_zilsSubC_32f(n ? nullptr : f, f, z.width * z.height, 2); },
    };
    for (const Call& c : calls) {
        EXPECT_EQ(c(true, {0, 1}), zilStatusNullPointer);
        EXPECT_EQ(c(false, {0, 1}), zilStatusBadSize);
        EXPECT_EQ(c(false, {1, -1}), zilStatusBadSize);
    }
    EXPECT_EQ(b[0], 9);
    EXPECT_EQ(f[0], 1.0f);
    EXPECT_EQ(m, 7.0f);
    EXPECT_EQ(d, 7.0);
}

TEST(Utils, SetAndCopyGoRowByRowForward) {
    std::vector<uint8_t> img(3 * 5, 0xEE);
    ASSERT_EQ(mx_ziliSet_8u_C1R(0x1C3, img.data(), 5, ZilSize{3, 3}), zilStatusOk);
    EXPECT_EQ(img, (std::vector<uint8_t>{0xC3, 0xC3, 0xC3, 0xEE, 0xEE, 0xC3, 0xC3, 0xC3, 0xEE, 0xEE, 0xC3, 0xC3,
                                         0xC3, 0xEE, 0xEE}));
    // Destination one byte behind the source within a row: the first byte runs on.
    char row[] = "abcdefghijkl";
    mx_ziliCopy_8u_C1R(reinterpret_cast<uint8_t*>(row), 12, reinterpret_cast<uint8_t*>(row) + 1, 12, {10, 1});
    EXPECT_STREQ(row, "aaaaaaaaaaal");
    // Destination ahead of the source: an ordinary shift.
    char back[] = "12345678";
    mx_ziliCopy_8u_C1R(reinterpret_cast<uint8_t*>(back) + 1, 8, reinterpret_cast<uint8_t*>(back), 8, {7, 1});
    EXPECT_STREQ(back, "23456788");
    // Rows a row apart take the block path; row 1, already overwritten, reaches row 2.
    std::vector<uint8_t> rows(27);
    for (int i = 0; i < 27; ++i) rows[i] = uint8_t(i);
    mx_ziliCopy_8u_C1R(rows.data(), 9, rows.data() + 9, 9, ZilSize{9, 2});
    for (int i = 9; i < 27; ++i) EXPECT_EQ(rows[i], i % 9) << i;
    uint8_t one = 5, two = 6;
    mx_ownsCopy_8u(&one, &two, 0);  // a count below 1 does nothing
    EXPECT_EQ(two, 6);
}

TEST(Utils, MaxKeepsTheFirstOfEqualsAndSkipsNaN) {
    const float nan = std::nanf("");
    float m = 0;
    const float a[3] = {1, nan, 3}, b[3] = {nan, 4, 5};
    mx_zilsMax_32f(a, 3, &m);
    EXPECT_EQ(m, 3.0f);
    mx_zilsMax_32f(b, 3, &m);  // a NaN first sample stays
    EXPECT_TRUE(std::isnan(m));
    // Long rows: the maximum amid NaN; zeros of both signs, where the first seen wins.
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

TEST(Utils, SumKeepsItsOrderOfAdditionsAndMeanDividesByCount) {
    double s = 0;
    // 16 wide: the even samples run in four lane pairs, summed as
    // ((2^53 + 0) + (1 + 1)) + ((0 + 1) + (0 + 1)); in plain order each 1 rounds away.
    float row[16] = {};
    row[0] = float(k2p53), row[8] = 1, row[12] = 1, row[6] = 1, row[14] = 1;
    ASSERT_EQ(mx_ziliSum_32f_C1R(row, 64, ZilSize{16, 1}, &s), zilStatusOk);
    EXPECT_EQ(s, k2p53 + 4);
    // Short rows: even and odd columns are two sums across rows; an odd last
    // sample goes to the even sum, and so does every sample at width 1.
    const float img[2][3] = {{float(k2p53), 1, 1}, {0, 1, 1}};
    mx_ziliSum_32f_C1R(&img[0][0], 12, ZilSize{3, 2}, &s);
    EXPECT_EQ(s, k2p53 + 2);
    mx_ziliSum_32f_C1R(&img[0][0], 4, ZilSize{1, 3}, &s);
    EXPECT_EQ(s, k2p53);
    double mean = -1;
    ASSERT_EQ(mx_ziliMean_32f_C1R(&img[0][0], 12, ZilSize{2, 2}, &mean, 12345), zilStatusOk);
    EXPECT_EQ(mean, 2251799813685248.5);  // (2^53 + 2) / 4
}

TEST(Utils, AddSubConstantAndZeroCopiesBits) {
    uint32_t snan = 0x7FA00001u;  // signalling NaN with a payload
    float src[5] = {-0.0f, 1.0f, 16777216.0f, 0, -2.5f}, dst[5];
    std::memcpy(&src[3], &snan, 4);
    ASSERT_EQ(mx_zilsAddC_32f(src, dst, 5, 0.0f), zilStatusOk);
    EXPECT_EQ(0, std::memcmp(src, dst, sizeof src));  // -0 + 0 would be +0, the NaN quieted
    ASSERT_EQ(mx_zilsSubC_32f(src, src, 5, -0.0f), zilStatusOk);
    EXPECT_EQ(0, std::memcmp(src, dst, sizeof src));
    mx_zilsAddC_32f(src, dst, 5, 1.0f);
    EXPECT_EQ(Bits(dst[0]), Bits(1.0f));
    EXPECT_EQ(dst[2], 16777216.0f);  // single precision: the 1 rounds away
    mx_zilsSubC_32f(src, src, 5, 0.75f);  // in place
    EXPECT_EQ(src[1], 0.25f);
    EXPECT_EQ(src[4], -3.25f);
}

TEST(Utils, FloorByExponent) {
    const float cases[][2] = {
        {0.5f, 0.0f},   {-0.5f, -1.0f},  {1e-45f, 0.0f},  {-1e-45f, -1.0f},  // below 1
        {1.0f, 1.0f},   {-1.0f, -1.0f},  {2.5f, 2.0f},    {-2.5f, -3.0f},    // ties rounded to even
        {3.5f, 3.0f},   {-3.5f, -4.0f},  {4194303.75f, 4194303.0f},           // e = 148
        {8388607.5f, 8388607.0f}, {-8388607.5f, -8388608.0f},               // e = 149, half bit set
        {8388606.0f, 8388606.0f}, {-4194305.0f, -4194305.0f},
        {8388609.0f, 8388609.0f}, {-1e30f, -1e30f}, {INFINITY, INFINITY},   // no fraction
        {-0.0f, -0.0f}, {0.0f, 0.0f},
    };
    for (const auto& c : cases) EXPECT_EQ(Bits(mx_zilsFloorOneF(c[0])), Bits(c[1])) << c[0];
    EXPECT_TRUE(std::isnan(mx_zilsFloorOneF(std::nanf(""))));
}

}  // namespace
