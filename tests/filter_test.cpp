// Filtered 4:2:0 upsampling: slice modes worked by hand, slicings that must
// agree, crossed chroma steps, the four-tap interpolator and the BGRA member.
#include <gtest/gtest.h>

#include <vector>

#include "reformat_img.h"

namespace {

using namespace reftest;

// Luma column 0 and Cb of pair column 0 (Cr = Cb + 1) of a 2 x 6 image.
const int kY[6] = {0, 4, 8, 255, 100, 1};
const int kC[3] = {10, 21, 254};
void Column(Img& s) {
    for (int r = 0; r < 6; ++r) s.Y(0, r) = s.Y(1, r) = uint8_t(kY[r]);
    for (int k = 0; k < 3; ++k) s.C(0, k, 0) = uint8_t(kC[k]), s.C(1, k, 0) = uint8_t(kC[k] + 1);
}

ZilStatus ToC2(Img& s, Img& d, int row, ZilSize z, uint32_t layout) {
    return ziliYCbCr420ToYCbCr422_Filter_8u_P2C2R(&s.Y(0, row), s.s[0], &s.C(0, row / 2, 0), s.s[1], &d.Y(0, row),
                                                 d.s[0], z, layout);
}
ZilStatus To420(Img& s, Img& d, int row, ZilSize z, uint32_t layout) {
    uint8_t* planes[3] = {&d.Y(0, row), &d.C(0, row / 2, 0), &d.C(1, row / 2, 0)};
    return ziliYCbCr420ToYCrCb420_Filter_8u_P2P3R(&s.Y(0, row), s.s[0], &s.C(0, row / 2, 0), s.s[1], planes, d.s, z,
                                                 layout);
}

// Whole image: first and last pairs round chroma, the interior does not (137
// against 138); luma 1:2:1 with 4 added, 3:1 at the ends.
TEST(SliceFilter, WholeAndTopWorkedByHand) {
    Img s(N420, 2, 6), c2(YUYV, 2, 6), top(YUYV, 2, 6), p3(P420, 2, 6, 3, true), p3top(P420, 2, 6, 3, true);
    Column(s);
    ASSERT_EQ(ToC2(s, c2, 0, {2, 6}, 21), zilStatusOk);
    ASSERT_EQ(ToC2(s, top, 0, {2, 6}, 1), zilStatusOk);
    ASSERT_EQ(To420(s, p3, 0, {2, 6}, 0x15), zilStatusOk);
    ASSERT_EQ(To420(s, p3top, 0, {2, 6}, 1), zilStatusOk);
    const int wholeY[6] = {2, 5, 69, 155, 115, 26}, wholeC[6] = {16, 16, 137, 137, 138, 138};
    const int topY[4] = {2, 4, 69, 155}, topC[4] = {16, 16, 138, 138};  // row 1 without the 4; chroma + 2
    for (int r = 0; r < 6; ++r) {
        EXPECT_EQ(c2.Y(0, r), wholeY[r]) << r;
        EXPECT_EQ(c2.C(0, r, 0), wholeC[r]) << r;
        EXPECT_EQ(c2.C(1, r, 0), wholeC[r] + 1) << r;
        EXPECT_EQ(p3.Y(0, r), wholeY[r]) << r;
        EXPECT_EQ(top.Y(0, r), r < 4 ? topY[r] : 0xE5) << r;
        EXPECT_EQ(top.C(0, r, 0), r < 4 ? topC[r] : 0xE5) << r;
    }
    // 4:2:0 out: chroma (c[i] + c[i+1] + 2) >> 1, the last row repeating the one above.
    const int p3C[3] = {16, 138, 138}, p3TopY[6] = {1, 4, 68, 154, 0xE5, 0xE5}, p3TopC[3] = {15, 137, 0xE5};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(p3.C(0, i, 0), p3C[i]) << i;
        EXPECT_EQ(p3top.C(0, i, 0), p3TopC[i]) << i;
    }
    for (int r = 0; r < 6; ++r) EXPECT_EQ(p3top.Y(0, r), p3TopY[r]) << r;
}

// Successive slices of one image give the same bytes however the image is cut,
// and they cover every row.
TEST(SliceFilter, SlicingsAgree) {
    for (bool packed : {true, false}) {
        Img s(N420, 6, 16);
        Fill(s, 6, 16);
        auto run = [&](std::vector<int> cuts) {
            Img d(packed ? YUYV : P420, 6, 16, 3, true);
            int row = 0;
            for (size_t k = 0; k < cuts.size(); ++k) {
                const uint32_t layout = k == 0 ? 1 : k + 1 == cuts.size() ? 16 : 4;
                EXPECT_EQ((packed ? ToC2 : To420)(s, d, row, {6, cuts[k]}, layout), zilStatusOk);
                row += cuts[k];
            }
            return d.Bytes();
        };
        const auto a = run({8, 8}), b = run({4, 4, 2, 6}), c = run({6, 10});
        EXPECT_EQ(a, b) << packed;
        EXPECT_EQ(a, c) << packed;
        Img w(packed ? YUYV : P420, 6, 16, 3, true);
        ASSERT_EQ((packed ? ToC2 : To420)(s, w, 0, {6, 16}, 21), zilStatusOk);
        int untouched = 0;
        for (int r = 0; r < 16; ++r) untouched += w.Y(0, r) == 0xE5 && w.Y(5, r) == 0xE5;
        EXPECT_EQ(untouched, 0);
    }
}

// Bottom slice of rows 4 and 5, worked from the rows above its base: its
// middle rows round, its last two rows do not.
TEST(SliceFilter, BottomRowsByHand) {
    Img s(N420, 2, 6), d(YUYV, 2, 6);
    Column(s);
    ASSERT_EQ(ToC2(s, d, 4, {2, 2}, 16), zilStatusOk);
    const int y[6] = {0xE5, 0xE5, 69, 155, (255 + 200 + 1) >> 2, (100 + 3) >> 2};
    const int c[6] = {0xE5, 0xE5, 138, 138, (254 + 21) >> 1, (254 + 21) >> 1};
    for (int r = 0; r < 6; ++r) {
        EXPECT_EQ(d.Y(0, r), y[r]) << r;
        EXPECT_EQ(d.C(0, r, 0), c[r]) << r;
    }
}

// Whole-image 4:2:0 out advances plane 1 by the step of plane 2 and back.
TEST(SliceFilter, CrossedChromaStepsAndIdleLayouts) {
    Img s(N420, 4, 8), d(P420, 4, 8, 10), t(P420, 4, 8, 3, true);
    Fill(s, 4, 8);
    const int steps[3] = {d.s[0], 5, 9};
    uint8_t* planes[3] = {d.p[0], d.p[1], d.p[2]};
    ASSERT_EQ(ziliYCbCr420ToYCrCb420_Filter_8u_P2P3R(s.p[0], s.s[0], s.p[1], s.s[1], planes, steps, {4, 8}, 21), 0);
    const int equal[3] = {t.s[0], 5, 5};
    uint8_t* tp[3] = {t.p[0], t.p[1], t.p[2]};
    ASSERT_EQ(ziliYCbCr420ToYCrCb420_Filter_8u_P2P3R(s.p[0], s.s[0], s.p[1], s.s[1], tp, equal, {4, 8}, 21), 0);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 2; ++j) {
            EXPECT_EQ(d.p[1][9 * i + j], t.p[1][5 * i + j]);
            EXPECT_EQ(d.p[2][5 * i + j], t.p[2][5 * i + j]);
        }
    const auto before = t.Bytes();
    for (uint32_t idle : {0u, 2u, 5u, 17u, 20u, 0x10000u}) {
        EXPECT_EQ(ziliYCbCr420ToYCrCb420_Filter_8u_P2P3R(s.p[0], s.s[0], s.p[1], s.s[1], tp, t.s, {4, 8}, idle), 0);
        EXPECT_EQ(ziliYCbCr420ToYCbCr422_Filter_8u_P2C2R(s.p[0], s.s[0], s.p[1], s.s[1], t.p[0], t.s[0], {4, 8}, idle), 0);
    }
    EXPECT_EQ(t.Bytes(), before);
    EXPECT_EQ(ziliYCbCr420ToYCrCb420_Filter_8u_P2P3R(s.p[0], s.s[0], s.p[1], s.s[1], tp, t.s, {4, 1}, 21), zilStatusBadSize);
    tp[1] = nullptr;
    EXPECT_EQ(ziliYCbCr420ToYCrCb420_Filter_8u_P2P3R(s.p[0], s.s[0], s.p[1], s.s[1], tp, t.s, {0, 8}, 21), zilStatusBadSize);
    EXPECT_EQ(ziliYCbCr420ToYCrCb420_Filter_8u_P2P3R(s.p[0], s.s[0], s.p[1], s.s[1], tp, t.s, {1, 8}, 21), zilStatusNullPointer);
    EXPECT_EQ(ziliYCbCr420ToYCbCr422_Filter_8u_P2C2R(s.p[0], s.s[0], s.p[1], s.s[1], t.p[0], t.s[0], {4, 1}, 21), zilStatusBadSize);
    EXPECT_EQ(t.Bytes(), before);
}

// Odd rows (-1, 9, 9, -1) / 16 over the even rows, nearest even row at the borders.
TEST(FourTapFilter, ThreeMembersWorkedByHand) {
    const int col0[4] = {0, 100, 200, 255}, col1[4] = {0, 0, 255, 0};
    const int want0[8] = {0, 44, 100, 153, 200, 234, 255, 255}, want1[8] = {0, 0, 0, 143, 255, 143, 0, 0};
    for (int m = 0; m < 3; ++m) {
        Img s(m == 1 ? N420 : m == 2 ? P420CrCb : P420, 5, 15), d(P422, 5, 15);
        Fill(s, 5, 15);
        for (int i = 0; i < 4; ++i) s.C(1, i, 0) = uint8_t(col0[i]), s.C(1, i, 1) = uint8_t(col1[i]);
        const ZilSize z{5, 15};
        const ZilStatus st = m == 0   ? ziliYCbCr420ToYCbCr422_Filter_8u_P3R(s.p, s.s, d.p, d.s, z)
                             : m == 1 ? ziliYCbCr420ToYCbCr422_Filter_8u_P2P3R(s.p[0], s.s[0], s.p[1], s.s[1], d.p, d.s, z)
                                      : ziliYCrCb420ToYCbCr422_Filter_8u_P3R(s.p, s.s, d.p, d.s, z);
        ASSERT_EQ(st, zilStatusOk) << m;
        for (int r = 0; r < 8; ++r) {
            EXPECT_EQ(d.C(1, r, 0), want0[r]) << m << " row " << r;
            EXPECT_EQ(d.C(1, r, 1), want1[r]) << m << " row " << r;
            if (r % 2 == 0) EXPECT_EQ(d.C(0, r, 0), s.C(0, r / 2, 0)) << m;
        }
        EXPECT_EQ(d.C(1, 8, 0), 0xE5);  // rows from 8 on untouched
        EXPECT_EQ(d.Y(3, 7), s.Y(3, 7));
        EXPECT_EQ(d.Y(4, 0), 0xE5);  // odd last column
    }
    Img s(P420, 2, 8), d(P422, 2, 8);
    const auto before = d.Bytes();
    EXPECT_EQ(ziliYCbCr420ToYCbCr422_Filter_8u_P3R(s.p, s.s, d.p, d.s, {2, 7}), zilStatusBadSize);
    EXPECT_EQ(ziliYCbCr420ToYCbCr422_Filter_8u_P2P3R(s.p[0], s.s[0], s.p[1], s.s[1], d.p, d.s, {1, 8}), zilStatusBadSize);
    d.nullArr = true;
    EXPECT_EQ(ziliYCrCb420ToYCbCr422_Filter_8u_P3R(s.p, s.s, d.arr(), d.s, {0, 0}), zilStatusNullPointer);
    EXPECT_EQ(d.Bytes(), before);
}

// BGRA: left pixel from its own chroma, right pixel from the rounded mean with
// the next block; the last block of a row uses its own chroma for both.
TEST(BgrFilter, WorkedByHandAndOddExtents) {
    Img s(P420CrCb, 4, 3);
    const int y[4] = {100, 100, 50, 50}, cr[2] = {200, 100}, cb[2] = {50, 150};
    for (int r = 0; r < 3; ++r)
        for (int x = 0; x < 4; ++x) s.Y(x, r) = uint8_t(y[x]);
    for (int j = 0; j < 2; ++j) s.C(1, 0, j) = uint8_t(cr[j]), s.C(0, 0, j) = uint8_t(cb[j]);
    GuardBuf d(3 * 16, 0xE5);
    ASSERT_EQ(ziliYCrCb420ToBGR_Filter_8u_P3C4R(s.p, s.s, d.data(), 16, {4, 3}, 7), zilStatusOddSize);
    const std::vector<uint8_t> row{0, 69, 212, 7, 41, 90, 132, 7, 83, 53, 0, 7, 83, 53, 0, 7};
    EXPECT_EQ(std::vector<uint8_t>(d.data(), d.data() + 16), row);
    EXPECT_EQ(std::vector<uint8_t>(d.data() + 16, d.data() + 32), row);
    EXPECT_TRUE(std::vector<uint8_t>(d.data() + 32, d.data() + 48) == std::vector<uint8_t>(16, 0xE5));
    GuardBuf one(2 * 8, 0xE5);  // width 1 writes two pixels a row
    EXPECT_EQ(ziliYCrCb420ToBGR_Filter_8u_P3C4R(s.p, s.s, one.data(), 8, {1, 2}, 9), zilStatusOddSize);
    EXPECT_EQ(one[15], 9);
    EXPECT_EQ(ziliYCrCb420ToBGR_Filter_8u_P3C4R(s.p, s.s, one.data(), 8, {1, 0}, 9), zilStatusBadSize);
    uint8_t* const nul[3] = {s.p[0], nullptr, s.p[2]};
    EXPECT_EQ(ziliYCrCb420ToBGR_Filter_8u_P3C4R(nul, s.s, one.data(), 8, {0, 2}, 9), zilStatusBadSize);
    EXPECT_EQ(ziliYCrCb420ToBGR_Filter_8u_P3C4R(nul, s.s, one.data(), 8, {1, 2}, 9), zilStatusNullPointer);
}

}  // namespace
