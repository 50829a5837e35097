// RGB <-> full-resolution YCbCr: the shared plane checks over the member
// table (with the members that test plane entries before the size), and
// hand-worked pixels per coefficient set, channel order and alpha rule.
#include "planes.h"

namespace {

using namespace zilplanes;

#define ZIL_PL(fn) [](const Args& a) { return fn(a.S(), a.ss[0], a.d[0], a.ds[0], a.sz); }
const Member kMembers[] = {
    // clang-format off
    //  name                            call                                                                       src  dst  arrays             dense  420    min   entries first, dst array untested
    {"RGBToYCbCr_C3R",    ZIL_P(ziliRGBToYCbCr_8u_C3R),                                               kC3, kC3, kNone,            false, false, 1, 1},
    {"RGBToYCbCr_AC4R",   ZIL_P(ziliRGBToYCbCr_8u_AC4R),                                              kC4, kC4, kNone,            false, false, 1, 1},
    {"RGBToYCbCr_C3P3R",  ZIL_F(ziliRGBToYCbCr_8u_C3P3R, a.s[0], a.ss[0], a.D(), a.ds[0], a.sz),        kC3, kP3, kDstArr,          false, false, 1, 1, true},
    {"RGBToYCbCr_AC4P3R", ZIL_F(ziliRGBToYCbCr_8u_AC4P3R, a.s[0], a.ss[0], a.D(), a.ds[0], a.sz),       kC4, kP3, kDstArr,          false, false, 1, 1, true, true},
    {"RGBToYCbCr_P3R",    ZIL_F(ziliRGBToYCbCr_8u_P3R, a.S(), a.ss[0], a.D(), a.ds[0], a.sz),           kP3, kP3, kSrcArr | kDstArr, false, false, 1, 1},
    {"YCbCrToRGB_C3R",    ZIL_P(ziliYCbCrToRGB_8u_C3R),                                               kC3, kC3, kNone,            false, false, 1, 1},
    {"YCbCrToRGB_AC4R",   ZIL_P(ziliYCbCrToRGB_8u_AC4R),                                              kC4, kC4, kNone,            false, false, 1, 1},
    {"YCbCrToRGB_P3C3R",  ZIL_PL(ziliYCbCrToRGB_8u_P3C3R),                                            kP3, kC3, kSrcArr,          false, false, 1, 1, true},
    {"YCbCrToBGR_P3C3R",  ZIL_PL(ziliYCbCrToBGR_8u_P3C3R),                                            kP3, kC3, kSrcArr,          false, false, 1, 1, true},
    {"YCbCrToRGB_P3C4R",  ZIL_F(ziliYCbCrToRGB_8u_P3C4R, a.S(), a.ss[0], a.d[0], a.ds[0], a.sz, a.alpha), kP3, kC4, kSrcArr,       false, false, 1, 1},
    {"YCbCrToBGR_P3C4R",  ZIL_F(ziliYCbCrToBGR_8u_P3C4R, a.S(), a.ss[0], a.d[0], a.ds[0], a.sz, a.alpha), kP3, kC4, kSrcArr,       false, false, 1, 1, true},
    {"YCbCrToRGB_P3R",    ZIL_F(ziliYCbCrToRGB_8u_P3R, a.S(), a.ss[0], a.D(), a.ds[0], a.sz),           kP3, kP3, kSrcArr | kDstArr, false, false, 1, 1},
    // clang-format on
};
#undef ZIL_PL
#undef ZIL_F
#undef ZIL_P

INSTANTIATE_TEST_SUITE_P(RgbYcbcr, PlaneMember, ::testing::ValuesIn(kMembers),
                         [](const auto& info) { return std::string(info.param.name); });

struct PixelCase {
    uint8_t in[3], want[3];
};

// Converts rows of 40 equal pixels (blocks of sixteen and a rest) with every
// named member; BGR members hold the wanted R, G, B at bytes 2, 1, 0.
void ExpectPixels(std::initializer_list<const char*> names, std::initializer_list<PixelCase> cases) {
    for (const char* name : names) {
        const Member& m = FindIn(kMembers, name);
        const bool bgr = std::strstr(name, "BGR") != nullptr;
        for (const PixelCase& c : cases) {
            Image img(m, 40, 2, 0, 1);
            for (int x = 0; x < 40; ++x)
                for (int ch = 0; ch < 3; ++ch) At(img.src, m.src, x, ch) = c.in[ch];
            ASSERT_EQ(m.call(img.args), zilStatusOk) << name;
            for (int x : {0, 21, 39})
                for (int ch = 0; ch < 3; ++ch)
                    EXPECT_EQ(At(img.dst, m.dst, x, bgr ? 2 - ch : ch), c.want[ch])
                        << name << " (" << int(c.in[0]) << "," << int(c.in[1]) << "," << int(c.in[2]) << ") pixel "
                        << x << " channel " << ch;
        }
    }
}

// (32, 205, 14): L = 538976 + 6771150 + 89922 = 7400048, + 1081344 = 129.42 x 65536: Y 129.
// P = -310368 - 3909555 + 402780 = -3817143, - 8355840 = -185.74 x 65536: -186, low byte 70.
// Q = 920640 - 4943985 - 65142 = -4088487, - 8355840 = -189.89 x 65536: -190, low byte 66.
// Pure blue: P - 8355840 = 7336350 - 8355840 = -15.56 x 65536, -16: Cb 240; yellow:
// -7336350 - 8355840 = -239.44 x 65536, -240: Cb 16 (low bytes of negative sums).
TEST(YcbcrForward, OneFormulaInEveryMember) {
    ExpectPixels({"RGBToYCbCr_C3R", "RGBToYCbCr_AC4R", "RGBToYCbCr_C3P3R", "RGBToYCbCr_AC4P3R", "RGBToYCbCr_P3R"},
                 {{{0, 0, 0}, {16, 128, 128}},
                  {{255, 255, 255}, {235, 128, 128}},
                  {{32, 205, 14}, {129, 70, 66}},
                  {{0, 0, 255}, {41, 240, 110}},
                  {{255, 255, 0}, {210, 16, 146}}});
}

// (Y, Cb, Cr) = (138, 157, 154): u = 29, v = 26.
//  76282 set, + 32768:  R 10526916 + 2719418 - 1187744 = 12058590 = 184 x 65536 - 34: 183
//                       G 10526916 - 744981 - 1385254 - 1187744 = 7208937 = 110 x 65536 - 23: 109
//                       B 10526916 + 3833336 - 1187744 = 13172508 = 201 x 65536 - 228: 200
//  76284 set, + 32768:  R 12058886 = 184 x 65536 + 262, G 7209100 = 110 x 65536 + 140,
//                       B 13172810 = 201 x 65536 + 74: 184, 110, 201
//  76284 set, floored:  each 32768 lower: 183, 109, 200
// (16, 128, 128) is black and (235, 128, 128) white (255.5 before the clamp).
TEST(YcbcrReverse, CoefficientSetsAndRounding) {
    ExpectPixels({"YCbCrToRGB_C3R", "YCbCrToRGB_P3C3R", "YCbCrToBGR_P3C3R", "YCbCrToRGB_P3C4R", "YCbCrToBGR_P3C4R"},
                 {{{16, 128, 128}, {0, 0, 0}}, {{235, 128, 128}, {255, 255, 255}}, {{138, 157, 154}, {183, 109, 200}}});
    ExpectPixels({"YCbCrToRGB_P3R"},
                 {{{16, 128, 128}, {0, 0, 0}}, {{235, 128, 128}, {255, 255, 255}}, {{138, 157, 154}, {184, 110, 201}}});
    // Flooring, white falls short: 76284 x 235 - 1220544 = 16706196 = 254.9 x 65536.
    ExpectPixels({"YCbCrToRGB_AC4R"},
                 {{{16, 128, 128}, {0, 0, 0}}, {{235, 128, 128}, {254, 254, 254}}, {{138, 157, 154}, {183, 109, 200}}});
    // Clamp at both ends. (16, 128, 16): R = (1220512 - 11714416 - 1187744) >> 16 = -179 -> 0,
    // G = (1220512 + 5967248 - 1187744) >> 16 = 91.55 -> 91. (235, 240, 128): B = 31543134 >> 16 =
    // 481 -> 255; R = 16738526 >> 16 = 255.4 -> 255, but floored in the 76284 set R = 16706196
    // >> 16 = 254.9 -> 254; G = 13861358 >> 16 = 211.5 -> 211 (13828916 floored: 211.01).
    ExpectPixels({"YCbCrToRGB_C3R", "YCbCrToRGB_P3R"}, {{{16, 128, 16}, {0, 91, 0}}, {{235, 240, 128}, {255, 211, 255}}});
    ExpectPixels({"YCbCrToRGB_AC4R"}, {{{16, 128, 16}, {0, 91, 0}}, {{235, 240, 128}, {254, 211, 255}}});
}

// The fourth byte: untouched in both AC4R forms, alpha in the P3C4R forms;
// AC4 sources are read in bytes 0..2 only.
TEST(YcbcrAlpha, FourthByteRules) {
    for (const char* name : {"RGBToYCbCr_AC4R", "YCbCrToRGB_AC4R", "YCbCrToRGB_P3C4R", "YCbCrToBGR_P3C4R"}) {
        const Member& m = FindIn(kMembers, name);
        Image img(m, 67, 2, 0, 5, 0x77);  // one chunk and a rest
        img.args.alpha = 0xC3;
        ASSERT_EQ(m.call(img.args), zilStatusOk);
        const uint8_t want = m.src.size() == 3 ? 0xC3 : 0x77;
        for (int i = 0; i < 134; ++i) ASSERT_EQ((*img.dst[0])[4 * i + 3], want) << name << " pixel " << i;
    }
    for (const char* name : {"RGBToYCbCr_AC4P3R", "RGBToYCbCr_AC4R"}) {
        const Member& m = FindIn(kMembers, name);
        Image a(m, 70, 1, 0, 9), b(m, 70, 1, 0, 9);
        for (int i = 0; i < 70; ++i) (*b.src[0])[4 * i + 3] ^= 0xFF;
        ASSERT_EQ(m.call(a.args), zilStatusOk);
        ASSERT_EQ(m.call(b.args), zilStatusOk);
        for (size_t p = 0; p < a.dst.size(); ++p) EXPECT_TRUE(a.dst[p]->copy() == b.dst[p]->copy()) << name;
    }
}

}  // namespace
