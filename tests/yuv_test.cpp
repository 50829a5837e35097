// RGB <-> YUV family: hand-worked pixels per member class, statuses and the
// order of checks, untouched bytes, odd extents, guard pages and step walks.
#include "planes.h"

namespace {

using namespace zilplanes;

const Member kMembers[] = {
    // clang-format off
    {"RGBToYUV_C3R", ZIL_P(ziliRGBToYUV_8u_C3R), kC3, kC3, kNone, false, false, 1, 1},
    {"RGBToYUV_AC4R", ZIL_P(ziliRGBToYUV_8u_AC4R), kC4, kC4, kNone, false, false, 1, 1},
    {"RGBToYUV_C3P3R", ZIL_F(ziliRGBToYUV_8u_C3P3R, a.s[0], a.ss[0], a.D(), a.ds[0], a.sz), kC3, kP3, kDstArr, false, false, 1, 1},
    {"RGBToYUV_P3R", ZIL_F(ziliRGBToYUV_8u_P3R, a.S(), a.ss[0], a.D(), a.ds[0], a.sz), kP3, kP3, kSrcArr | kDstArr, false, false, 1, 1},
    {"RGBToYUV_AC4P4R", ZIL_F(ziliRGBToYUV_8u_AC4P4R, a.s[0], a.ss[0], a.D(), a.ds[0], a.sz), kC4, kP4, kDstArr, false, false, 1, 1},
    {"YUVToRGB_C3R", ZIL_P(ziliYUVToRGB_8u_C3R), kC3, kC3, kNone, false, false, 1, 1},
    {"YUVToRGB_AC4R", ZIL_P(ziliYUVToRGB_8u_AC4R), kC4, kC4, kNone, false, false, 1, 1},
    {"YUVToRGB_C3C4R", ZIL_F(ziliYUVToRGB_8u_C3C4R, a.s[0], a.ss[0], a.d[0], a.ds[0], a.sz, a.alpha), kC3, kC4, kNone, false, false, 1, 1},
    {"YUVToRGB_P3C3R", ZIL_F(ziliYUVToRGB_8u_P3C3R, a.S(), a.ss[0], a.d[0], a.ds[0], a.sz), kP3, kC3, kSrcArr, false, false, 1, 1},
    {"YUVToRGB_P3R", ZIL_F(ziliYUVToRGB_8u_P3R, a.S(), a.ss[0], a.D(), a.ds[0], a.sz), kP3, kP3, kSrcArr | kDstArr, false, false, 1, 1},
    {"RGBToYUV422_C3C2R", ZIL_P(ziliRGBToYUV422_8u_C3C2R), kC3, kC2, kNone, false, false, 1, 1},
    {"RGBToYUV422_C3P3R", ZIL_F(ziliRGBToYUV422_8u_C3P3R, a.s[0], a.ss[0], a.D(), a.DS(), a.sz), kC3, k422, kDstArr | kDstSteps, false, false, 1, 1},
    {"RGBToYUV422_P3R", ZIL_F(ziliRGBToYUV422_8u_P3R, a.S(), a.ss[0], a.D(), a.DS(), a.sz), kP3, k422, kSrcArr | kDstArr | kDstSteps, false, false, 1, 1},
    {"RGBToYUV422_C3P3", ZIL_F(ziliRGBToYUV422_8u_C3P3, a.s[0], a.D(), a.sz), kC3, k422, kDstArr, true, false, 1, 1},
    {"RGBToYUV422_P3", ZIL_F(ziliRGBToYUV422_8u_P3, a.S(), a.D(), a.sz), kP3, k422, kSrcArr | kDstArr, true, false, 1, 1},
    {"YUV422ToRGB_C2C3R", ZIL_P(ziliYUV422ToRGB_8u_C2C3R), kC2, kC3, kNone, false, false, 1, 1},
    {"YUV422ToRGB_P3C3R", ZIL_F(ziliYUV422ToRGB_8u_P3C3R, a.S(), a.SS(), a.d[0], a.ds[0], a.sz), k422, kC3, kSrcArr | kSrcSteps, false, false, 1, 1},
    {"YUV422ToRGB_P3R", ZIL_F(ziliYUV422ToRGB_8u_P3R, a.S(), a.SS(), a.D(), a.ds[0], a.sz), k422, kP3, kSrcArr | kSrcSteps | kDstArr, false, false, 1, 1},
    {"YUV422ToRGB_P3AC4R", ZIL_F(ziliYUV422ToRGB_8u_P3AC4R, a.S(), a.SS(), a.d[0], a.ds[0], a.sz), k422, kC4, kSrcArr | kSrcSteps, false, false, 1, 1},
    {"YUV422ToRGB_P3C3", ZIL_F(ziliYUV422ToRGB_8u_P3C3, a.S(), a.d[0], a.sz), k422, kC3, kSrcArr, true, false, 1, 1},
    {"YUV422ToRGB_P3", ZIL_F(ziliYUV422ToRGB_8u_P3, a.S(), a.D(), a.sz), k422, kP3, kSrcArr | kDstArr, true, false, 1, 1},
    {"RGBToYUV420_C3P3R", ZIL_F(ziliRGBToYUV420_8u_C3P3R, a.s[0], a.ss[0], a.D(), a.DS(), a.sz), kC3, k420, kDstArr | kDstSteps, false, true, 1, 1},
    {"RGBToYUV420_P3R", ZIL_F(ziliRGBToYUV420_8u_P3R, a.S(), a.ss[0], a.D(), a.DS(), a.sz), kP3, k420, kSrcArr | kDstArr | kDstSteps, false, true, 1, 1},
    {"RGBToYUV420_C3P3", ZIL_F(ziliRGBToYUV420_8u_C3P3, a.s[0], a.D(), a.sz), kC3, k420, kDstArr, true, true, 1, 1},
    {"RGBToYUV420_P3", ZIL_F(ziliRGBToYUV420_8u_P3, a.S(), a.D(), a.sz), kP3, k420, kSrcArr | kDstArr, true, true, 1, 1},
    {"BGRToYUV420_AC4P3R", ZIL_F(ziliBGRToYUV420_8u_AC4P3R, a.s[0], a.ss[0], a.D(), a.DS(), a.sz), kC4, k420, kDstArr | kDstSteps, false, true, 1, 1},
    {"YUV420ToRGB_P3C3R", ZIL_F(ziliYUV420ToRGB_8u_P3C3R, a.S(), a.SS(), a.d[0], a.ds[0], a.sz), k420, kC3, kSrcArr | kSrcSteps, false, true, 1, 1},
    {"YUV420ToRGB_P3R", ZIL_F(ziliYUV420ToRGB_8u_P3R, a.S(), a.SS(), a.D(), a.ds[0], a.sz), k420, kP3, kSrcArr | kSrcSteps | kDstArr, false, true, 1, 1},
    {"YUV420ToRGB_P3AC4R", ZIL_F(ziliYUV420ToRGB_8u_P3AC4R, a.S(), a.SS(), a.d[0], a.ds[0], a.sz), k420, kC4, kSrcArr | kSrcSteps, false, true, 1, 1},
    {"YUV420ToRGB_P3C3", ZIL_F(ziliYUV420ToRGB_8u_P3C3, a.S(), a.d[0], a.sz), k420, kC3, kSrcArr, true, true, 1, 1},
    {"YUV420ToRGB_P3", ZIL_F(ziliYUV420ToRGB_8u_P3, a.S(), a.D(), a.sz), k420, kP3, kSrcArr | kDstArr, true, true, 1, 1},
    {"YUV420ToBGR_P3C3R", ZIL_F(ziliYUV420ToBGR_8u_P3C3R, a.S(), a.SS(), a.d[0], a.ds[0], a.sz), k420, kC3, kSrcArr | kSrcSteps, false, true, 2, 2},
    // clang-format on
};
#undef ZIL_F
#undef ZIL_P

INSTANTIATE_TEST_SUITE_P(RgbYuv, PlaneMember, ::testing::ValuesIn(kMembers),
                         [](const auto& info) { return std::string(info.param.name); });

// ---- hand-worked pixels ------------------------------------------------------------
const Member& Find(const std::string& name) { return FindIn(kMembers, name); }

struct PixelCase {
    const char* member;
    uint8_t in[3];
    uint8_t want[3];
};

// S = 19595 R + 38470 G + 7471 B. For (32, 205, 14): S = 8617984 = 131.5 x 65536,
// so Y = 132; (B << 16) - S = -117.5 x 65536 and (R << 16) - S = -99.5 x 65536:
// with the term 32767 du = -118, dv = -100, U = (-118 x 32244 >> 16) + 128 = 69,
// V = (-100 x 57475 >> 16) + 128 = 40; with 32768 du = -117, dv = -99, U = 70, V = 41.
// (255, 0, 0): dv = 179, 179 x 57475 >> 16 = 156, 156 + 128 = 284 clamps to 255.
const PixelCase kForward[] = {
    {"RGBToYUV_C3R", {32, 205, 14}, {132, 69, 40}},    {"RGBToYUV_C3P3R", {32, 205, 14}, {132, 69, 40}},
    {"RGBToYUV_P3R", {32, 205, 14}, {132, 69, 40}},    {"RGBToYUV_AC4P4R", {32, 205, 14}, {132, 69, 40}},
    {"RGBToYUV_AC4R", {32, 205, 14}, {132, 70, 41}},   {"RGBToYUV_C3R", {255, 0, 0}, {76, 90, 255}},
    {"RGBToYUV_AC4R", {255, 0, 0}, {76, 90, 255}},     {"RGBToYUV_C3R", {255, 255, 255}, {255, 128, 128}},
    {"RGBToYUV_P3R", {0, 0, 0}, {0, 128, 128}},
};

// (Y, U, V) = (100, 93, 154): u = -35, v = 26, Y << 16 = 6553600.
//   R: 6553600 + 74711 x 26 = 8496086 = 129.64 x 65536: floor 129, round 130
//   G: 6553600 + 25821 x 35 - 38076 x 26 = 6467359 = 98.68 x 65536: 98 / 99
//   B: 6553600 - 133169 x 35 = 1892685 = 28.88 x 65536: 28 / 29
// (215, 195, 191): u = 67, v = 63; G numerator 9961445 = 151 x 65536 + 65509
// floors to 151; with the lower set (25820, 38075) it is 9961575, which reaches 152.
const PixelCase kReverse[] = {
    {"YUVToRGB_C3R", {100, 93, 154}, {129, 98, 29}},     // floor, floor, round
    {"YUVToRGB_AC4R", {100, 93, 154}, {130, 98, 29}},    // round, floor, round
    {"YUVToRGB_C3C4R", {100, 93, 154}, {130, 99, 29}},   // round, round, round
    {"YUVToRGB_P3C3R", {100, 93, 154}, {130, 98, 29}},   // round, floor, round
    {"YUVToRGB_P3R", {100, 93, 154}, {130, 98, 29}},
    {"YUVToRGB_AC4R", {215, 195, 191}, {255, 151, 255}},
    {"YUVToRGB_P3C3R", {215, 195, 191}, {255, 152, 255}},  // the lower coefficient set
    {"YUVToRGB_P3R", {215, 195, 191}, {255, 152, 255}},
};

void PrintTo(const PixelCase& c, std::ostream* os) { *os << c.member; }

class YuvPixel : public ::testing::TestWithParam<PixelCase> {};
TEST_P(YuvPixel, OnePixel) {
    const PixelCase& c = GetParam();
    const Member& m = Find(c.member);
    Image img(m, 1, 1, 0, 1);
    for (int ch = 0; ch < 3; ++ch) At(img.src, m.src, 0, ch) = c.in[ch];
    ASSERT_EQ(m.call(img.args), zilStatusOk);
    for (int ch = 0; ch < 3; ++ch) EXPECT_EQ(At(img.dst, m.dst, 0, ch), c.want[ch]) << c.member << " channel " << ch;
}
INSTANTIATE_TEST_SUITE_P(Forward, YuvPixel, ::testing::ValuesIn(kForward));
INSTANTIATE_TEST_SUITE_P(Reverse, YuvPixel, ::testing::ValuesIn(kReverse));

// What the fourth byte gets: kept, the alpha argument, 0, or copied to a plane.
TEST(YuvAlpha, FourthByteRules) {
    for (const char* name : {"RGBToYUV_AC4R", "YUVToRGB_AC4R"}) {
        Image img(Find(name), 3, 2, 0, 5, 0x77);
        ASSERT_EQ(Find(name).call(img.args), zilStatusOk);
        for (int i = 0; i < 6; ++i) EXPECT_EQ((*img.dst[0])[4 * i + 3], 0x77) << name;
    }
    for (const char* name : {"YUV422ToRGB_P3AC4R", "YUV420ToRGB_P3AC4R"}) {
        Image img(Find(name), 4, 2, 0, 5, 0x77);
        ASSERT_EQ(Find(name).call(img.args), zilStatusOk);
        for (int i = 0; i < 8; ++i) EXPECT_EQ((*img.dst[0])[4 * i + 3], 0) << name;
    }
    {
        Image img(Find("YUVToRGB_C3C4R"), 3, 2, 0, 5, 0x77);
        img.args.alpha = 0xC3;
        ASSERT_EQ(Find("YUVToRGB_C3C4R").call(img.args), zilStatusOk);
        for (int i = 0; i < 6; ++i) EXPECT_EQ((*img.dst[0])[4 * i + 3], 0xC3);
    }
    {
        Image img(Find("RGBToYUV_AC4P4R"), 3, 2, 0, 5, 0x77);
        ASSERT_EQ(Find("RGBToYUV_AC4P4R").call(img.args), zilStatusOk);
        for (int i = 0; i < 6; ++i) EXPECT_EQ((*img.dst[3])[i], (*img.src[0])[4 * i + 3]);
    }
}

// Pair [(154, 201, 149), (51, 37, 87)], then (32, 205, 14) alone in the odd column.
// Pair sums: B 236, R 205, S 14935991. With the term 65535:
//   du = (15466496 - 14935991 + 65535) >> 16 = 9,  U = (9 x 32244 >> 17) + 128 = 130
//   dv = (13434880 - 14935991 + 65535) >> 16 = -22, V = (-22 x 57475 >> 17) + 128 = 118
// with 32768: du = 8, U = 129; dv = -23, V = 117. Y0 = 181, Y1 = 47 (rounded).
TEST(Yuv422, PairsAndTheOddLastColumn) {
    const uint8_t rgb[9] = {154, 201, 149, 51, 37, 87, 32, 205, 14};
    {   // packed: Y0 U Y1 V | Y U of the odd pixel (c = 32768); its V byte is not written
        const Member& m = Find("RGBToYUV422_C3C2R");
        Image img(m, 3, 1, 0, 1);
        GuardBuf wide(8, 0xEE);
        std::memcpy(img.src[0]->data(), rgb, 9);
        img.args.d[0] = wide.data();
        ASSERT_EQ(m.call(img.args), zilStatusOk);
        const uint8_t want[8] = {181, 129, 47, 117, 132, 70, 0xEE, 0xEE};
        EXPECT_EQ(0, std::memcmp(wide.data(), want, 8));
    }
    struct Planar { const char* name; uint8_t y[3], u[2], v[2]; };
    const Planar cases[] = {
        {"RGBToYUV422_C3P3R", {181, 47, 132}, {130, 69}, {118, 40}},
        {"RGBToYUV422_C3P3", {181, 47, 132}, {130, 69}, {118, 40}},
        {"RGBToYUV422_P3R", {181, 47, 131}, {130, 69}, {118, 40}},  // the odd Y floors: S / 65536 = 131.5
        {"RGBToYUV422_P3", {181, 47, 131}, {130, 69}, {118, 40}},
    };
    for (const Planar& c : cases) {
        const Member& m = Find(c.name);
        Image img(m, 3, 1, 0, 1);
        for (int x = 0; x < 3; ++x)
            for (int ch = 0; ch < 3; ++ch) At(img.src, m.src, x, ch) = rgb[3 * x + ch];
        ASSERT_EQ(m.call(img.args), zilStatusOk);
        EXPECT_EQ(0, std::memcmp(img.dst[0]->data(), c.y, 3)) << c.name;
        EXPECT_EQ(0, std::memcmp(img.dst[1]->data(), c.u, 2)) << c.name;
        EXPECT_EQ(0, std::memcmp(img.dst[2]->data(), c.v, 2)) << c.name;
    }
}

// Y = 100 everywhere; pair chroma (60, 154), odd column chroma (93, 154).
// (100, 60, 154): RFR (130, 111, 0), RRR (130, 112, 0), FFF (129, 111, 0).
// (100, 93, 154): see kReverse: FFF (129, 98, 28), RFR (130, 98, 29), RRR (130, 99, 29).
TEST(Yuv422, ReverseOddColumnRules) {
    struct Case { const char* name; uint8_t want[9]; };
    const Case cases[] = {
        {"YUV422ToRGB_P3C3R", {130, 111, 0, 130, 111, 0, 129, 98, 28}},  // odd column floors
        {"YUV422ToRGB_P3C3", {130, 111, 0, 130, 111, 0, 129, 98, 28}},
        {"YUV422ToRGB_P3R", {130, 111, 0, 130, 111, 0, 130, 98, 29}},
        {"YUV422ToRGB_P3", {130, 111, 0, 130, 111, 0, 130, 98, 29}},
        {"YUV422ToRGB_P3AC4R", {129, 111, 0, 129, 111, 0, 129, 98, 28}},
    };
    for (const Case& c : cases) {
        const Member& m = Find(c.name);
        Image img(m, 3, 1, 0, 1);
        const uint8_t y[3] = {100, 100, 100}, u[2] = {60, 93}, v[2] = {154, 154};
        std::memcpy(img.src[0]->data(), y, 3);
        std::memcpy(img.src[1]->data(), u, 2);
        std::memcpy(img.src[2]->data(), v, 2);
        ASSERT_EQ(m.call(img.args), zilStatusOk);
        for (int x = 0; x < 3; ++x)
            for (int ch = 0; ch < 3; ++ch) EXPECT_EQ(At(img.dst, m.dst, x, ch), c.want[3 * x + ch]) << c.name;
    }
    // Packed: the odd pixel takes U after its Y and V from the pair before.
    const Member& m = Find("YUV422ToRGB_C2C3R");
    Image img(m, 3, 1, 0, 1);
    const uint8_t packed[6] = {100, 60, 100, 154, 100, 93};
    std::memcpy(img.src[0]->data(), packed, 6);
    ASSERT_EQ(m.call(img.args), zilStatusOk);
    const uint8_t want[9] = {130, 112, 0, 130, 112, 0, 130, 99, 29};
    EXPECT_EQ(0, std::memcmp(img.dst[0]->data(), want, 9));
    // Width 1: the one chroma byte 93 is u and v (-35), all floored:
    // R = (6553600 - 74711 x 35) >> 16 = 60, G = (6553600 + 63897 x 35) >> 16 = 134,
    // B = (6553600 - 133169 x 35) >> 16 = 28. A chroma byte of 128 gives R = G = B = Y.
    Image one(m, 1, 2, 0, 1);
    const uint8_t two[4] = {100, 93, 77, 128};
    std::memcpy(one.src[0]->data(), two, 4);
    ASSERT_EQ(m.call(one.args), zilStatusOk);
    const uint8_t want1[6] = {60, 134, 28, 77, 77, 77};
    EXPECT_EQ(0, std::memcmp(one.dst[0]->data(), want1, 6));
}

// Block [(250, 209, 177), (71, 234, 77) / (177, 254, 169), (14, 180, 182)]:
// S = 14261347, 10968492, 14502294, 8558652 (217.6, 167.4, 221.3, 130.6 x 65536),
// sums S 48290785, B 605, R 512. With 131071 and shift 18:
//   du = (39649280 - 48290785 + 131071) >> 16 = -130, U = (-130 x 32244 >> 18) + 128 = 112
//   dv = (33554432 - 48290785 + 131071) >> 16 = -223, V = (-223 x 57475 >> 18) + 128 = 79
TEST(Yuv420, BlockAndOddExtents) {
    const uint8_t px[4][3] = {{250, 209, 177}, {71, 234, 77}, {177, 254, 169}, {14, 180, 182}};
    struct Case { const char* name; bool bgra; uint8_t y[4]; };
    const Case cases[] = {
        {"RGBToYUV420_C3P3R", false, {218, 167, 221, 131}}, {"RGBToYUV420_P3R", false, {218, 167, 221, 131}},
        {"RGBToYUV420_C3P3", false, {218, 167, 221, 131}},  {"RGBToYUV420_P3", false, {218, 167, 221, 131}},
        {"BGRToYUV420_AC4P3R", true, {217, 167, 221, 130}},  // its luma floors
    };
    for (const Case& c : cases) {
        const Member& m = Find(c.name);
        for (int w : {2, 3})
            for (int h : {2, 3}) {
                Image img(m, w, h, 0, 3, 0x5A);
                for (int y = 0; y < 2; ++y)
                    for (int x = 0; x < 2; ++x)
                        for (int ch = 0; ch < 3; ++ch) {
                            const size_t rowOff = size_t(y) * img.args.ss[0];
                            const uint8_t v = px[2 * y + x][ch];
                            if (m.src.size() == 1)
                                (*img.src[0])[rowOff + size_t(x) * (c.bgra ? 4 : 3) + (c.bgra ? 2 - ch : ch)] = v;
                            else
                                (*img.src[ch])[rowOff + x] = v;
                        }
                const ZilStatus want = ((w | h) & 1) ? zilStatusOddSize : zilStatusOk;
                ASSERT_EQ(m.call(img.args), want) << c.name << " " << w << "x" << h;
                const int ys = img.args.ds[0];
                for (int i = 0; i < 4; ++i) EXPECT_EQ((*img.dst[0])[(i / 2) * ys + i % 2], c.y[i]) << c.name;
                EXPECT_EQ((*img.dst[1])[0], 112) << c.name;
                EXPECT_EQ((*img.dst[2])[0], 79) << c.name;
                // The odd last column and row stay as they were.
                for (int y = 0; y < h; ++y)
                    for (int x = 0; x < w; ++x)
                        if (x >= 2 || y >= 2) EXPECT_EQ((*img.dst[0])[y * ys + x], 0x5A) << c.name;
            }
    }
    // Reverse: Y 100 everywhere, U 93, V 154 (see kReverse for the three roundings).
    struct Rev { const char* name; uint8_t want[3]; int bytes; };
    const Rev revs[] = {
        {"YUV420ToRGB_P3C3R", {130, 98, 29}, 3}, {"YUV420ToRGB_P3C3", {130, 98, 29}, 3},
        {"YUV420ToRGB_P3R", {130, 98, 29}, 1},   {"YUV420ToRGB_P3", {130, 98, 29}, 1},
        {"YUV420ToRGB_P3AC4R", {130, 99, 29}, 4}, {"YUV420ToBGR_P3C3R", {28, 98, 129}, 3},  // B, G, R; floored
    };
    for (const Rev& r : revs) {
        const Member& m = Find(r.name);
        Image img(m, 3, 3, 0, 3, 0x5A);
        std::memset(img.src[0]->data(), 100, img.src[0]->size());
        std::memset(img.src[1]->data(), 93, img.src[1]->size());
        std::memset(img.src[2]->data(), 154, img.src[2]->size());
        ASSERT_EQ(m.call(img.args), zilStatusOddSize) << r.name;
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 3; ++x)
                for (int ch = 0; ch < 3; ++ch) {
                    const uint8_t got = r.bytes == 1 ? (*img.dst[ch])[y * img.args.ds[0] + x]
                                                     : (*img.dst[0])[y * img.args.ds[0] + x * r.bytes + ch];
                    EXPECT_EQ(got, (x < 2 && y < 2) ? r.want[ch] : 0x5A) << r.name << " " << x << "," << y;
                }
    }
}

// Below one cell: nothing written and the warning; the BGR member rejects it.
TEST(Yuv420, SmallerThanOneCell) {
    for (const Member& m : kMembers) {
        if (!m.cells420) continue;
        for (ZilSize s : {ZilSize{1, 1}, ZilSize{1, 8}, ZilSize{8, 1}}) {
            Image img(m, s.width, s.height, 0, 3, 0x5A);
            const ZilStatus want = m.minW == 2 ? zilStatusBadSize : zilStatusOddSize;
            EXPECT_EQ(m.call(img.args), want) << m.name;
            EXPECT_TRUE(img.DstUntouched(0x5A)) << m.name;
        }
    }
}

// The step-less forms equal their R forms at dense steps, on the row path and,
// for 4:2:2 images of even width and at least 256 pixels, the flat path.
TEST(YuvDense, StepLessFormsEqualDenseRForms) {
    const std::pair<const char*, const char*> pairs[] = {
        {"RGBToYUV422_C3P3", "RGBToYUV422_C3P3R"}, {"RGBToYUV422_P3", "RGBToYUV422_P3R"},
        {"YUV422ToRGB_P3C3", "YUV422ToRGB_P3C3R"}, {"YUV422ToRGB_P3", "YUV422ToRGB_P3R"},
        {"RGBToYUV420_C3P3", "RGBToYUV420_C3P3R"}, {"RGBToYUV420_P3", "RGBToYUV420_P3R"},
        {"YUV420ToRGB_P3C3", "YUV420ToRGB_P3C3R"}, {"YUV420ToRGB_P3", "YUV420ToRGB_P3R"},
    };
    for (auto [dense, stepped] : pairs)
        for (ZilSize s : {ZilSize{16, 16}, ZilSize{2, 130}, ZilSize{18, 15}, ZilSize{17, 16}, ZilSize{6, 5}}) {
            Image a(Find(dense), s.width, s.height, 0, 42), b(Find(stepped), s.width, s.height, 0, 42);
            EXPECT_EQ(Find(dense).call(a.args), Find(stepped).call(b.args)) << dense;
            for (size_t i = 0; i < a.dst.size(); ++i)
                EXPECT_TRUE(a.dst[i]->copy() == b.dst[i]->copy()) << dense << " plane " << i << " " << s.width << "x"
                                                                  << s.height;
        }
}

// Flat input stays flat, and grey maps to neutral chroma and back.
TEST(YuvProperties, GreyRoundTrip) {
    for (int g : {0, 1, 77, 128, 254, 255}) {
        const Member& f = Find("RGBToYUV_C3R");
        const Member& r = Find("YUVToRGB_C3C4R");
        Image a(f, 5, 3, 0, 1), b(r, 5, 3, 0, 1);
        std::memset(a.src[0]->data(), g, a.src[0]->size());
        ASSERT_EQ(f.call(a.args), zilStatusOk);
        for (int i = 0; i < 15; ++i) {
            EXPECT_EQ((*a.dst[0])[3 * i], g);
            EXPECT_EQ((*a.dst[0])[3 * i + 1], 128);
            EXPECT_EQ((*a.dst[0])[3 * i + 2], 128);
        }
        std::memcpy(b.src[0]->data(), a.dst[0]->data(), 45);
        ASSERT_EQ(r.call(b.args), zilStatusOk);
        for (int i = 0; i < 15; ++i)
            for (int ch = 0; ch < 3; ++ch) EXPECT_EQ((*b.dst[0])[4 * i + ch], g);
    }
}
}  // namespace
