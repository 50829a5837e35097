// RGB <-> subsampled YCbCr and the BT.709 forms: the shared plane checks over
// the member table, then hand-worked bytes per member class: rounding terms,
// chroma offsets, odd last columns, the width-1 rules, the carried filter,
// the colour exchange, and the 64-bit member across a step beyond 2^31 bytes.
#include <sys/mman.h>

#include <array>

#include "planes.h"

namespace {

using namespace zilplanes;

#define ZIL_C4(fn) ZIL_F(fn, a.s[0], a.ss[0], a.d[0], a.ds[0], a.sz, a.alpha)
#define ZIL_PC(fn) ZIL_F(fn, a.S(), a.ss[0], a.d[0], a.ds[0], a.sz)
#define ZIL_CP(fn) ZIL_F(fn, a.s[0], a.ss[0], a.D(), a.ds[0], a.sz)
#define ZIL_CPS(fn) ZIL_F(fn, a.s[0], a.ss[0], a.D(), a.DS(), a.sz)
#define ZIL_PSC(fn) ZIL_F(fn, a.S(), a.SS(), a.d[0], a.ds[0], a.sz)
#define ZIL_PSC4(fn) ZIL_F(fn, a.S(), a.SS(), a.d[0], a.ds[0], a.sz, a.alpha)
#define ZIL_CP2(fn) ZIL_F(fn, a.s[0], a.ss[0], a.d[0], a.ds[0], a.d[1], a.ds[1], a.sz)
#define ZIL_P2C(fn) ZIL_F(fn, a.s[0], a.ss[0], a.s[1], a.ss[1], a.d[0], a.ds[0], a.sz)
#define ZIL_P2C4(fn) ZIL_F(fn, a.s[0], a.ss[0], a.s[1], a.ss[1], a.d[0], a.ds[0], a.sz, a.alpha)
const std::vector<Ext> k411{Ext::Full, Ext::Quarter411, Ext::Quarter411}, kP2{Ext::Full, Ext::Pairs420};
constexpr uint8_t kPS = kSrcArr | kSrcSteps, kPD = kDstArr | kDstSteps;
constexpr bool T = true, F = false;

const Member kMembers[] = {
    // clang-format off
    // name                      call                                   src   dst   arrays   dense 420 minW minH, then: entries first,
    // dst array untested, size first, 4:1:1 status, reads before a row, whole rows only
    {"RGBToYCbCr422_C3C2R",    ZIL_P(ziliRGBToYCbCr422_8u_C3C2R),                    kC3,  kC2,  kNone,   F, F, 1, 1},
    {"RGBToYCrCb422_C3C2R",    ZIL_P(ziliRGBToYCrCb422_8u_C3C2R),                    kC3,  kC2,  kNone,   F, F, 1, 1},
    {"BGRToYCbCr422_C3C2R",    ZIL_P(ziliBGRToYCbCr422_8u_C3C2R),                    kC3,  kC2,  kNone,   F, F, 2, 1},
    {"BGRToYCbCr422_AC4C2R",   ZIL_P(ziliBGRToYCbCr422_8u_AC4C2R),                   kC4,  kC2,  kNone,   F, F, 2, 1},
    {"RGBToYCbCr422_P3C2R",    ZIL_PC(ziliRGBToYCbCr422_8u_P3C2R),                   kP3,  kC2,  kSrcArr, F, F, 1, 1},
    {"RGBToYCrCb422_P3C2R",    ZIL_PC(ziliRGBToYCrCb422_8u_P3C2R),                   kP3,  kC2,  kSrcArr, F, F, 1, 1},
    {"BGRToYCbCr422_C3P3R",    ZIL_CPS(ziliBGRToYCbCr422_8u_C3P3R),                  kC3,  k422, kPD,     F, F, 2, 1, T},
    {"BGRToYCbCr422_AC4P3R",   ZIL_CPS(ziliBGRToYCbCr422_8u_AC4P3R),                 kC4,  k422, kPD,     F, F, 2, 1, T},
    {"RGBToYCbCr422_C3P3R",    ZIL_CPS(ziliRGBToYCbCr422_8u_C3P3R),                  kC3,  k422, kPD,     F, F, 2, 1, T},
    {"BGRToCbYCr422_AC4C2R",   ZIL_P(ziliBGRToCbYCr422_8u_AC4C2R),                   kC4,  kC2,  kNone,   F, F, 1, 1},
    {"RGBToCbYCr422_C3C2R",    ZIL_P(ziliRGBToCbYCr422_8u_C3C2R),                    kC3,  kC2,  kNone,   F, F, 1, 1, F, F, F, F, F, T},
    {"RGBToCbYCr422Gamma_C3C2R", ZIL_P(ziliRGBToCbYCr422Gamma_8u_C3C2R),             kC3,  kC2,  kNone,   F, F, 1, 1, F, F, F, F, F, T},
    {"YCbCr422ToRGB_C2C3R",    ZIL_P(ziliYCbCr422ToRGB_8u_C2C3R),                    kC2,  kC3,  kNone,   F, F, 1, 1},
    {"YCbCr422ToRGB_C2C4R",    ZIL_C4(ziliYCbCr422ToRGB_8u_C2C4R),                   kC2,  kC4,  kNone,   F, F, 1, 1},
    {"YCbCr422ToBGR_C2C3R",    ZIL_P(ziliYCbCr422ToBGR_8u_C2C3R),                    kC2,  kC3,  kNone,   F, F, 2, 1},
    {"YCbCr422ToBGR_C2C4R",    ZIL_C4(ziliYCbCr422ToBGR_8u_C2C4R),                   kC2,  kC4,  kNone,   F, F, 2, 1},
    {"YCrCb422ToRGB_C2C3R",    ZIL_P(ziliYCrCb422ToRGB_8u_C2C3R),                    kC2,  kC3,  kNone,   F, F, 1, 1},
    {"YCrCb422ToRGB_C2C4R",    ZIL_C4(ziliYCrCb422ToRGB_8u_C2C4R),                   kC2,  kC4,  kNone,   F, F, 1, 1},
    {"YCrCb422ToBGR_C2C3R",    ZIL_P(ziliYCrCb422ToBGR_8u_C2C3R),                    kC2,  kC3,  kNone,   F, F, 1, 1},
    {"YCrCb422ToBGR_C2C4R",    ZIL_C4(ziliYCrCb422ToBGR_8u_C2C4R),                   kC2,  kC4,  kNone,   F, F, 1, 1},
    {"CbYCr422ToRGB_C2C3R",    ZIL_P(ziliCbYCr422ToRGB_8u_C2C3R),                    kC2,  kC3,  kNone,   F, F, 1, 1},
    {"CbYCr422ToBGR_C2C4R",    ZIL_C4(ziliCbYCr422ToBGR_8u_C2C4R),                   kC2,  kC4,  kNone,   F, F, 1, 1},
    {"YCbCr422ToRGB_C2P3R",    ZIL_CP(ziliYCbCr422ToRGB_8u_C2P3R),                   kC2,  kP3,  kDstArr, F, F, 1, 1},
    {"YCrCb422ToRGB_C2P3R",    ZIL_CP(ziliYCrCb422ToRGB_8u_C2P3R),                   kC2,  kP3,  kDstArr, F, F, 1, 1, F, F, F, F, T},
    {"YCbCr422ToRGB_P3C3R",    ZIL_PSC(ziliYCbCr422ToRGB_8u_P3C3R),                  k422, kC3,  kPS,     F, F, 2, 1, T},
    {"YCbCr422ToBGR_P3C3R",    ZIL_PSC(ziliYCbCr422ToBGR_8u_P3C3R),                  k422, kC3,  kPS,     F, F, 2, 1, T},
    {"RGBToYCbCr420_C3P3R",    ZIL_CPS(ziliRGBToYCbCr420_8u_C3P3R),                  kC3,  k420, kPD,     F, T, 1, 1},
    {"BGRToYCbCr420_C3P3R",    ZIL_CPS(ziliBGRToYCbCr420_8u_C3P3R),                  kC3,  k420, kPD,     F, T, 2, 2, T},
    {"BGRToYCbCr420_AC4P3R",   ZIL_CPS(ziliBGRToYCbCr420_8u_AC4P3R),                 kC4,  k420, kPD,     F, T, 2, 2, T},
    {"BGRToYCrCb420_C3P3R",    ZIL_CPS(ziliBGRToYCrCb420_8u_C3P3R),                  kC3,  k420, kPD,     F, T, 2, 2, T},
    {"BGRToYCrCb420_AC4P3R",   ZIL_CPS(ziliBGRToYCrCb420_8u_AC4P3R),                 kC4,  k420, kPD,     F, T, 2, 2, T},
    {"RGBToYCrCb420_AC4P3R",   ZIL_CPS(ziliRGBToYCrCb420_8u_AC4P3R),                 kC4,  k420, kPD,     F, T, 2, 2, T},
    {"RGBToYCbCr420_C3P2R",    ZIL_CP2(ziliRGBToYCbCr420_8u_C3P2R),                  kC3,  kP2,  kNone,   F, T, 1, 1},
    {"RGBToYCbCr420_C4P2R",    ZIL_CP2(ziliRGBToYCbCr420_8u_C4P2R),                  kC4,  kP2,  kNone,   F, T, 1, 1},
    {"BGRToYCbCr420_C3P2R",    ZIL_CP2(ziliBGRToYCbCr420_8u_C3P2R),                  kC3,  kP2,  kNone,   F, T, 1, 1},
    {"BGRToYCbCr420_AC4P2R",   ZIL_CP2(ziliBGRToYCbCr420_8u_AC4P2R),                 kC4,  kP2,  kNone,   F, T, 1, 1},
    {"YCbCr420ToRGB_P3C3R",    ZIL_PSC(ziliYCbCr420ToRGB_8u_P3C3R),                  k420, kC3,  kPS,     F, T, 1, 1},
    {"YCbCr420ToBGR_P3C3R",    ZIL_PSC(ziliYCbCr420ToBGR_8u_P3C3R),                  k420, kC3,  kPS,     F, T, 1, 1},
    {"YCbCr420ToBGR_P3C4R",    ZIL_PSC4(ziliYCbCr420ToBGR_8u_P3C4R),                 k420, kC4,  kPS,     F, T, 1, 1},
    {"YCrCb420ToRGB_P3C4R",    ZIL_PSC4(ziliYCrCb420ToRGB_8u_P3C4R),                 k420, kC4,  kPS,     F, T, 1, 1},
    {"YCbCr420ToRGB_P2C3R",    ZIL_P2C(ziliYCbCr420ToRGB_8u_P2C3R),                  kP2,  kC3,  kNone,   F, T, 1, 1},
    {"YCbCr420ToRGB_P2C4R",    ZIL_P2C4(ziliYCbCr420ToRGB_8u_P2C4R),                 kP2,  kC4,  kNone,   F, T, 1, 1},
    {"YCbCr420ToBGR_P2C3R",    ZIL_P2C(ziliYCbCr420ToBGR_8u_P2C3R),                  kP2,  kC3,  kNone,   F, T, 1, 1},
    {"YCbCr420ToBGR_P2C4R",    ZIL_P2C4(ziliYCbCr420ToBGR_8u_P2C4R),                 kP2,  kC4,  kNone,   F, T, 1, 1},
    {"YCrCb420ToRGB_P2C3R",    ZIL_P2C(ziliYCrCb420ToRGB_8u_P2C3R),                  kP2,  kC3,  kNone,   F, T, 1, 1},
    {"YCrCb420ToBGR_P2C3R",    ZIL_P2C(ziliYCrCb420ToBGR_8u_P2C3R),                  kP2,  kC3,  kNone,   F, T, 1, 1},
    {"YCrCb420ToRGB_P2C4R",    ZIL_P2C4(ziliYCrCb420ToRGB_8u_P2C4R),                 kP2,  kC4,  kNone,   F, T, 1, 1, F, F, T},
    {"YCrCb420ToBGR_P2C4R",    ZIL_P2C4(ziliYCrCb420ToBGR_8u_P2C4R),                 kP2,  kC4,  kNone,   F, T, 1, 1, F, F, T},
    {"BGRToYCbCr411_C3P3R",    ZIL_CPS(ziliBGRToYCbCr411_8u_C3P3R),                  kC3,  k411, kPD,     F, F, 4, 1, T, F, F, T, F, T},
    {"BGRToYCbCr411_AC4P3R",   ZIL_CPS(ziliBGRToYCbCr411_8u_AC4P3R),                 kC4,  k411, kPD,     F, F, 4, 1, T, F, F, T, F, T},
    {"YCbCr411ToBGR_P3C3R",    ZIL_PSC(ziliYCbCr411ToBGR_8u_P3C3R),                  k411, kC3,  kPS,     F, F, 4, 1, T, F, F, F, F, T},
    {"YCbCr411ToBGR_P3C4R",    ZIL_PSC4(ziliYCbCr411ToBGR_8u_P3C4R),                 k411, kC4,  kPS,     F, F, 4, 1, T, F, F, F, F, T},
    {"BGRToYCbCr420_709CSC_C3P3R",  ZIL_CPS(ziliBGRToYCbCr420_709CSC_8u_C3P3R),      kC3,  k420, kPD,     F, T, 2, 2, T},
    {"BGRToYCbCr420_709CSC_AC4P3R", ZIL_CPS(ziliBGRToYCbCr420_709CSC_8u_AC4P3R),     kC4,  k420, kPD,     F, T, 2, 2, T},
    {"BGRToYCrCb420_709CSC_C3P3R",  ZIL_CPS(ziliBGRToYCrCb420_709CSC_8u_C3P3R),      kC3,  k420, kPD,     F, T, 2, 2, T},
    {"BGRToYCrCb420_709CSC_AC4P3R", ZIL_CPS(ziliBGRToYCrCb420_709CSC_8u_AC4P3R),     kC4,  k420, kPD,     F, T, 2, 2, T},
    {"BGRToYCbCr420_709HDTV_AC4P3R", ZIL_CPS(ziliBGRToYCbCr420_709HDTV_8u_AC4P3R),   kC4,  k420, kPD,     F, T, 2, 2, T},
    {"BGRToYCbCr420_709CSC_C3P2R",  ZIL_CP2(ziliBGRToYCbCr420_709CSC_8u_C3P2R),      kC3,  kP2,  kNone,   F, T, 2, 2},
    {"BGRToYCbCr420_709CSC_AC4P2R", ZIL_CP2(ziliBGRToYCbCr420_709CSC_8u_AC4P2R),     kC4,  kP2,  kNone,   F, T, 2, 2},
    {"YCbCrToBGR_709CSC_P3C3R",     ZIL_PC(ziliYCbCrToBGR_709CSC_8u_P3C3R),          kP3,  kC3,  kSrcArr, F, F, 1, 1, T},
    {"YCbCrToBGR_709CSC_P3C4R",     ZIL_F(ziliYCbCrToBGR_709CSC_8u_P3C4R, a.S(), a.ss[0], a.d[0], a.ds[0], a.sz, a.alpha), kP3, kC4, kSrcArr, F, F, 1, 1, T},
    {"YCbCr420ToBGR_709CSC_P3C3R",  ZIL_PSC(ziliYCbCr420ToBGR_709CSC_8u_P3C3R),      k420, kC3,  kPS,     F, T, 1, 1},
    {"YCbCr420ToBGR_709HDTV_P3C4R", ZIL_PSC4(ziliYCbCr420ToBGR_709HDTV_8u_P3C4R),    k420, kC4,  kPS,     F, T, 1, 1},
    {"BGRToCbYCr422_709HDTV_C3C2R", ZIL_P(ziliBGRToCbYCr422_709HDTV_8u_C3C2R),       kC3,  kC2,  kNone,   F, F, 1, 1},
    {"BGRToCbYCr422_709HDTV_AC4C2R", ZIL_P(ziliBGRToCbYCr422_709HDTV_8u_AC4C2R),     kC4,  kC2,  kNone,   F, F, 1, 1},
    {"CbYCr422ToBGR_709HDTV_C2C3R", ZIL_P(ziliCbYCr422ToBGR_709HDTV_8u_C2C3R),       kC2,  kC3,  kNone,   F, F, 1, 1},
    {"CbYCr422ToBGR_709HDTV_C2C4R", ZIL_C4(ziliCbYCr422ToBGR_709HDTV_8u_C2C4R),      kC2,  kC4,  kNone,   F, F, 1, 1},
    {"RGBToYCbCr420_HDTV709r6_C3P2R_L", ZIL_F(ziliRGBToYCbCr420_HDTV709r6_8u_C3P2R_L, a.s[0], a.ss[0], a.d[0], a.ds[0],
                                             a.d[1], a.ds[1], ZilSizeL{a.sz.width, a.sz.height}), kC3, kP2, kNone, F, T, 1, 1},
    // clang-format on
};

INSTANTIATE_TEST_SUITE_P(SubYcbcr, PlaneMember, ::testing::ValuesIn(kMembers),
                         [](const auto& info) { return std::string(info.param.name); });

const Member& M(const char* name) { return FindIn(kMembers, name); }
using Bytes = std::vector<int>;
// Bytes [from, from + n) of a plane (0x5A where the pre-fill is left).
Bytes Got(const GuardBuf& b, size_t from, size_t n) {
    Bytes v;
    for (size_t i = from; i < from + n; ++i) v.push_back(b.data()[i]);
    return v;
}
// Writes pixels (R, G, B) into row y of an interleaved source, in the byte
// order the member's name gives.
void Put(Image& img, const Member& m, int y, std::initializer_list<std::array<uint8_t, 3>> px) {
    const bool bgr = std::strncmp(m.name, "BGR", 3) == 0;
    int x = 0;
    for (const auto& p : px) {
        for (int c = 0; c < 3; ++c) {
            const int ch = bgr ? 2 - c : c;
            if (m.src.size() == 1) (*img.src[0])[size_t(y * img.args.ss[0] + x * RowBytes(m.src[0], 1) + ch)] = p[c];
            else (*img.src[c])[size_t(y * img.args.ss[0] + x)] = p[c];
        }
        ++x;
    }
}

// ---- forward 4:2:2: the classes, width 3 over two rows --------------------------------
// Row 0 (1,1,1), (1,1,2), (1,0,0); row 1 (0,0,1), (0,0,2), (0,0,255).
// Luma: L(1,1,1) = 56296: + 1081344 -> 17.4: 17. L(1,1,2) = 62719: + 1081344 -> 17.46: 17,
//   + 1048576 (class A's second pixel) -> 16.96: 16. L(1,0,0) = 16843 -> 16.76: 16;
//   L(0,0,1), L(0,0,2) -> 16; L(0,0,255) = 1637865 -> 41.49: 41; reversed (255,0,0): 82.
// Pair chroma, >> 17: row 0 P = 28770, Q = -4653: 128 in every class. Row 1 P = 86310:
//   - 16711680 -> -126.84: -127, low byte 129 (class A); - 16760832 -> -127.22: 128.
// Odd column, >> 16: P(1,0,0) = -9699: - 8355840 -> -127.65: 128; - 8380416 -> -128.02: 127.
//   P(0,0,255) = 7336350: - 8355840 or - 8380416 -> 240. Q(0,0,255) = -1186515:
//   + 8421376 -> 110.4: 110; Q(1,0,0) = 28770 -> 128.9: 128.
TEST(SubForward422, ClassesRoundAndFinishRowsMemberByMember) {
    struct Want { const char* name; Bytes row0, row1; };
    const Want packed[] = {
        {"RGBToYCbCr422_C3C2R", {17, 128, 16, 128, 16, 128}, {16, 129, 16, 128, 41, 240}},
        {"RGBToYCrCb422_C3C2R", {17, 128, 16, 128, 16, 128}, {16, 128, 16, 129, 41, 240}},  // Cb in the Cr byte
        {"RGBToYCbCr422_P3C2R", {17, 128, 16, 128, 16, 128}, {16, 129, 16, 128, 41, 110}},  // Cr in the Cb byte
        {"RGBToYCrCb422_P3C2R", {17, 128, 16, 128, 16, 128}, {16, 128, 16, 129, 41, 110}},
        {"BGRToYCbCr422_C3C2R", {17, 128, 17, 128, 16, 127}, {16, 128, 16, 128, 41, 240}},
        {"BGRToYCbCr422_AC4C2R", {17, 128, 17, 128, 16, 127}, {16, 128, 16, 128, 41, 240}},
        // Cb Y0 Cr Y1; the odd pixel's bytes 0 and 2 enter as R and B: (0,0,1) and (255,0,0).
        {"BGRToCbYCr422_AC4C2R", {128, 17, 128, 17, 128, 16}, {129, 16, 128, 16, 90, 82}},
        // 709HDTV, limited to 1..254: every pair luma (L + 32768) >> 16 is 0 or 1: 1. Pair sums:
        // row 0 P = 33489, + 16842752 >> 17 = 128.8: 128, Q = -3080, + 16842750: 128; row 1 P =
        // 100467: 129.3: 129. Odd (0,0,255): Y 1236113 >> 16 = 18, Cb (8539695 + 8421376) >> 16 =
        // 258: 254; read reversed as (255,0,0): Y 3592313 >> 16 = 54, Cb 6466036 >> 16 = 98;
        // (1,0,0) gives Cb (-7668 + 8421376) >> 16 = 128, reversed (0,0,1) 8454865 >> 16 = 129.
        {"BGRToCbYCr422_709HDTV_C3C2R", {128, 1, 128, 1, 128, 1}, {129, 1, 128, 1, 254, 18}},
        {"BGRToCbYCr422_709HDTV_AC4C2R", {128, 1, 128, 1, 129, 1}, {129, 1, 128, 1, 98, 54}},
    };
    for (const Want& w : packed) {
        const Member& m = M(w.name);
        Image img(m, 3, 2, 4, 1);
        Put(img, m, 0, {{1, 1, 1}, {1, 1, 2}, {1, 0, 0}});
        Put(img, m, 1, {{0, 0, 1}, {0, 0, 2}, {0, 0, 255}});
        ASSERT_EQ(m.call(img.args), zilStatusOk) << w.name;
        EXPECT_EQ(Got(*img.dst[0], 0, 6), w.row0) << w.name;
        EXPECT_EQ(Got(*img.dst[0], size_t(img.args.ds[0]), 6), w.row1) << w.name;
    }
    // Planes: the BGR forms write the odd column's Y, the RGB form nothing (0x5A).
    for (const char* name : {"BGRToYCbCr422_C3P3R", "BGRToYCbCr422_AC4P3R", "RGBToYCbCr422_C3P3R"}) {
        const Member& m = M(name);
        Image img(m, 3, 2, 0, 1);
        Put(img, m, 0, {{1, 1, 1}, {1, 1, 2}, {1, 0, 0}});
        Put(img, m, 1, {{0, 0, 1}, {0, 0, 2}, {0, 0, 255}});
        ASSERT_EQ(m.call(img.args), zilStatusOk) << name;
        const int odd0 = name[0] == 'B' ? 16 : 0x5A, odd1 = name[0] == 'B' ? 41 : 0x5A;
        EXPECT_EQ(Got(*img.dst[0], 0, 6), (Bytes{17, 17, odd0, 16, 16, odd1})) << name;
        EXPECT_EQ(Got(*img.dst[1], 0, 4), (Bytes{128, 0x5A, 128, 0x5A})) << name;  // chroma step 2: one sample
        EXPECT_EQ(Got(*img.dst[2], 0, 4), (Bytes{128, 0x5A, 128, 0x5A})) << name;
    }
}

// Filter 1, 2, 1 on blue (0,0,255): P = 7336350, P >> 1 = 3668175, P >> 2 = 1834087;
// Q = -1186515, Q >> 1 = -593258, Q >> 2 = -296629. First pair (neutral left
// neighbour): Cb = (3668175 + 1834087 - 8355841) >> 16 = -43.5: -44, 212; Cr =
// (-593258 - 296629 - 8355841) >> 16 = -141.1: -142, 114. Later pairs add the
// carried quarter: Cb -15.6: 240, Cr -145.6: 110. Odd pixel: Cb 240, Y 41.
TEST(SubForward422, CbYCrFilterCarriesTheLeftNeighbourWithinARow) {
    const Member& m = M("RGBToCbYCr422_C3C2R");
    Image img(m, 5, 2, 0, 1);
    for (int y = 0; y < 2; ++y) Put(img, m, y, {{0, 0, 255}, {0, 0, 255}, {0, 0, 255}, {0, 0, 255}, {0, 0, 255}});
    ASSERT_EQ(m.call(img.args), zilStatusOk);
    const Bytes want{212, 41, 114, 41, 240, 41, 110, 41, 240, 41};
    EXPECT_EQ(Got(*img.dst[0], 0, 10), want);
    EXPECT_EQ(Got(*img.dst[0], 10, 10), want);  // the carry restarts on every row
    // The gamma form first maps each byte: tableFwd8u[3] = 14. Blue 14 alone gives
    // Y (89922 + 1081344) >> 16 = 17.9: 17, Cb (402780 - 8355840) >> 16 = -121.4: 134;
    // blue 3 without the curve Y 1100613 >> 16: 16, Cb -8269530 >> 16 = -126.2: 129.
    for (const char* name : {"RGBToCbYCr422_C3C2R", "RGBToCbYCr422Gamma_C3C2R"}) {
        Image one(M(name), 1, 1, 0, 1);
        Put(one, M(name), 0, {{0, 0, 3}});
        ASSERT_EQ(M(name).call(one.args), zilStatusOk);
        EXPECT_EQ(Got(*one.dst[0], 0, 2), (std::strstr(name, "Gamma") ? Bytes{134, 17} : Bytes{129, 16})) << name;
    }
}

// ---- forward 4:2:0 and 4:1:1 --------------------------------------------------------
// Block of (0,0,2), (0,0,1) over (0,0,1), (0,0,1): P = 143850: - 33521664 >> 18 = -127.3:
// -128, Cb 128 (an offset of +128.5 would give 129); Q = -23265 -> 128. Blue block:
// P = 29345400 -> -15.9: 240, Q = -4746060 -> -146.0: 110. Luma 16 and 41.
// 709CSC white: L = 56295 x 255 + 1081344 -> 235.5: 235. 709HDTV: black 1, white 254.
TEST(SubForward420, BlockChromaAndLumaRanges) {
    struct Want { const char* name; int y00, cb, cr; std::array<uint8_t, 3> a, b; };
    const Want cases[] = {
        {"RGBToYCbCr420_C3P3R", 16, 128, 128, {0, 0, 2}, {0, 0, 1}},
        {"BGRToYCbCr420_AC4P3R", 41, 240, 110, {0, 0, 255}, {0, 0, 255}},
        {"BGRToYCrCb420_C3P3R", 41, 110, 240, {0, 0, 255}, {0, 0, 255}},  // plane 1 is Cr
        {"RGBToYCrCb420_AC4P3R", 41, 110, 240, {0, 0, 255}, {0, 0, 255}},
        {"BGRToYCbCr420_709CSC_C3P3R", 235, 128, 128, {255, 255, 255}, {255, 255, 255}},
        {"BGRToYCrCb420_709CSC_AC4P3R", 16, 128, 128, {0, 0, 0}, {0, 0, 0}},
        {"BGRToYCbCr420_709HDTV_AC4P3R", 254, 128, 128, {255, 255, 255}, {255, 255, 255}},
        {"BGRToYCbCr420_709HDTV_AC4P3R", 1, 128, 128, {0, 0, 0}, {0, 0, 0}},
    };
    for (const Want& w : cases) {
        const Member& m = M(w.name);
        Image img(m, 3, 3, 0, 1);
        Put(img, m, 0, {w.a, w.b, w.a});
        Put(img, m, 1, {w.b, w.b, w.b});
        ASSERT_EQ(m.call(img.args), zilStatusOddSize) << w.name;
        EXPECT_EQ((*img.dst[0])[0], w.y00) << w.name;
        EXPECT_EQ(Got(*img.dst[0], 2, 1), Bytes{0x5A}) << w.name;  // third column
        EXPECT_EQ(Got(*img.dst[0], 6, 3), (Bytes{0x5A, 0x5A, 0x5A})) << w.name;  // third row
        EXPECT_EQ((*img.dst[1])[0], w.cb) << w.name;
        EXPECT_EQ((*img.dst[2])[0], w.cr) << w.name;
    }
}

// Float members, truncated: blue block Y = 0.098 x 255 + 16.5 = 41.5: 41, Cb =
// (0.439 x 1020 + 512) x 0.25 + 0.5 = 240.4: 240, Cr = (512 - 0.071 x 1020) x 0.25 + 0.5 =
// 110.4: 110. The 64-bit member: gray g gives g + 16.5 before the clamp, so 238
// gives 254 and 239 saturates at 255; chroma 512 x 0.25 + 0.5 = 128.5: 128.
TEST(SubForward420, FloatTwoPlaneForms) {
    struct Want { const char* name; uint8_t g; Bytes y, c; };
    const Want cases[] = {
        {"RGBToYCbCr420_C3P2R", 0, {41}, {240, 110}}, {"BGRToYCbCr420_AC4P2R", 0, {41}, {240, 110}},
        {"BGRToYCbCr420_709CSC_C3P2R", 0, {}, {240, 117}},  // integer: Q = -2673420 -> -138.07: 117
        {"RGBToYCbCr420_HDTV709r6_C3P2R_L", 238, {254}, {128, 128}},
        {"RGBToYCbCr420_HDTV709r6_C3P2R_L", 239, {255}, {128, 128}},
    };
    for (const Want& w : cases) {
        const Member& m = M(w.name);
        Image img(m, 2, 2, 0, 1);
        const std::array<uint8_t, 3> px = w.g ? std::array<uint8_t, 3>{w.g, w.g, w.g} : std::array<uint8_t, 3>{0, 0, 255};
        for (int y = 0; y < 2; ++y) Put(img, m, y, {px, px});
        ASSERT_EQ(m.call(img.args), zilStatusOk) << w.name;
        if (!w.y.empty()) EXPECT_EQ(Got(*img.dst[0], 0, 1), w.y) << w.name;
        EXPECT_EQ(Got(*img.dst[1], 0, 2), w.c) << w.name;
    }
}

TEST(SubForward411, GroupsOfFourAndTheRemainder) {
    const Member& m = M("BGRToYCbCr411_C3P3R");
    Image img(m, 6, 1, 0, 1);
    Put(img, m, 0, {{0, 0, 2}, {0, 0, 1}, {0, 0, 1}, {0, 0, 1}, {0, 0, 255}, {0, 0, 255}});
    ASSERT_EQ(m.call(img.args), zilStatusOddSize);
    EXPECT_EQ(Got(*img.dst[0], 0, 6), (Bytes{16, 16, 16, 16, 0x5A, 0x5A}));
    EXPECT_EQ((*img.dst[1])[0], 128);  // same sums as the 4:2:0 block above
}

// ---- reverse: the coefficient classes ---------------------------------------------
// (Y, Cb, Cr) = (91, 142, 177), u = 14, v = 49:
//  E 76284, rounded: R (6941844 + 5125155 - 1187776) >> 16 = 166.00: 166, G 2783639: 42, B 7604672: 116
//  F 76282, rounded: R 10878975 = 166 x 65536 - 1: 165, G 42, B 116
//  G on Cb, Cr, floored: R (6941844 + 18513315 - 14608761) >> 16 = 165.5: 165,
//                        G (6941844 - 3647980 - 9430737 + 8887730) = 41.97: 41, B 7571891: 115
//  H 76294, floored: R 10847205: 165, G 2752531 = 42 x 65536 + 19: 42, B 7572654: 115
//  709CSC: R (6941844 + 5757794 - 1187776): 175, G (6941844 - 195426 - 1714804 - 1187776): 58, B 117
//  709HDTV: R (5963776 + 4945325 + 32768): 166, G (5963776 - 167902 - 1473969 + 32768): 66, B 116
TEST(SubReverse, CoefficientClasses) {
    struct Want { const char* name; int r, g, b; };
    const Want cases[] = {
        {"YCbCr422ToRGB_C2C4R", 166, 42, 116}, {"YCrCb422ToBGR_C2C3R", 166, 42, 116},
        {"YCbCr420ToRGB_P3C3R", 166, 42, 116}, {"YCrCb420ToRGB_P3C4R", 166, 42, 116},
        {"YCbCr420ToBGR_P2C4R", 166, 42, 116}, {"YCrCb420ToBGR_P2C3R", 166, 42, 116},
        {"CbYCr422ToRGB_C2C3R", 165, 42, 116}, {"CbYCr422ToBGR_C2C4R", 165, 42, 116},
        {"YCbCr422ToRGB_P3C3R", 165, 41, 115}, {"YCbCr422ToRGB_C2P3R", 165, 41, 115},
        {"YCrCb422ToRGB_C2P3R", 165, 41, 115}, {"YCbCr411ToBGR_P3C4R", 165, 42, 115},
        {"YCbCrToBGR_709CSC_P3C3R", 175, 58, 117}, {"YCbCr420ToBGR_709CSC_P3C3R", 175, 58, 117},
        {"YCbCr420ToBGR_709HDTV_P3C4R", 166, 66, 116}, {"CbYCr422ToBGR_709HDTV_C2C4R", 166, 66, 116},
    };
    for (const Want& w : cases) {
        const Member& m = M(w.name);
        Image img(m, 4, 2, 0, 1);
        img.args.alpha = 0xC3;
        const bool cr1 = std::strncmp(w.name, "YCrCb", 5) == 0;
        for (size_t p = 0; p < m.src.size(); ++p) {
            GuardBuf& b = *img.src[p];
            for (size_t i = 0; i < b.size(); ++i) {
                const Ext e = m.src[p];
                if (e == Ext::C2) {  // Y0 Cb Y1 Cr, Y0 Cr Y1 Cb, Cb Y0 Cr Y1
                    const int k = int(i % 4), cb = std::strncmp(w.name, "CbYCr", 5) == 0 ? 0 : cr1 ? 3 : 1;
                    const int cr = cb == 0 ? 2 : 4 - cb;
                    b[i] = uint8_t(k == cb ? 142 : k == cr ? 177 : 91);
                } else if (e == Ext::Pairs420) {
                    b[i] = uint8_t((i % 2 == 0) != cr1 ? 142 : 177);
                } else {
                    b[i] = uint8_t(p == 0 ? 91 : (p == 1) != cr1 ? 142 : 177);
                }
            }
        }
        ASSERT_EQ(m.call(img.args), zilStatusOk) << w.name;
        const bool bgr = std::strstr(w.name, "BGR") != nullptr;
        const size_t px = m.dst.size() == 1 ? size_t(RowBytes(m.dst[0], 1)) : 1;
        for (size_t x = 0; x < 4; ++x) {
            Bytes got;
            for (int c = 0; c < 3; ++c)
                got.push_back(m.dst.size() == 1 ? (*img.dst[0])[x * px + size_t(bgr ? 2 - c : c)] : (*img.dst[c])[x]);
            EXPECT_EQ(got, (Bytes{w.r, w.g, w.b})) << w.name << " pixel " << x;
            if (px == 4) EXPECT_EQ((*img.dst[0])[4 * x + 3], 0xC3) << w.name;
        }
    }
}

// ---- reverse 4:2:2 streams: odd last column and width 1 -------------------------------
// Pair (Y, Cb, Cr) = (138, 157, 154): u 29, v 26. Last half cell Y 138 with its own
// chroma 128 and the pair's other chroma:
//  own Cb 0, v 26 (E): R (10527192 + 2719470 - 1187776) = 12058886: 184, G 7954110: 121, B 9339416: 142
//  own Cr 0, u 29 (E): R 9339416: 142, G (10527192 - 745010 - 1187776): 131, B 13172810: 201
//  own Cb 0, v 26 (F): R 12058590 = 184 x 65536 - 34: 183, G 121, B 9339172: 142
// Width 1, own chroma 157 for u and v (E): R 12372671: 188, G 7049257: 107, B 13172810: 201;
// YCbCr422ToRGB_8u_C2P3R (G): R 12339846: 188, G (10527192 - 78971 x 157 + 8887730): 107, B 200.
TEST(SubReverse422, OddColumnTakesItsOwnChromaAndThePairsOther) {
    struct Want { const char* name; Bytes pair; int w; Bytes last; };
    const Bytes yCbCr{138, 157, 138, 154, 138, 128}, yCrCb{138, 154, 138, 157, 138, 128},
        cbYCr{157, 138, 154, 138, 128, 138};
    const Want cases[] = {
        {"YCbCr422ToRGB_C2C3R", yCbCr, 3, {142, 121, 184}},  // the last pixel alone is B, G, R
        {"YCbCr422ToRGB_C2C4R", yCbCr, 3, {184, 121, 142}},
        {"YCbCr422ToBGR_C2C3R", yCbCr, 3, {142, 121, 184}},  // BGR throughout
        {"YCrCb422ToRGB_C2C3R", yCrCb, 3, {142, 131, 201}},
        {"CbYCr422ToRGB_C2C3R", cbYCr, 3, {183, 121, 142}},
        {"YCbCr422ToRGB_C2C3R", {138, 157}, 1, {201, 107, 188}},
        {"YCbCr422ToRGB_C2C4R", {138, 157}, 1, {188, 107, 201}},
        {"YCrCb422ToBGR_C2C4R", {138, 157}, 1, {201, 107, 188}},
        {"CbYCr422ToRGB_C2C3R", {157, 138}, 1, {188, 107, 200}},  // F: 12372369, 7049100, 13172508
    };
    for (const Want& c : cases) {
        const Member& m = M(c.name);
        Image img(m, c.w, 1, 0, 1);
        for (size_t i = 0; i < c.pair.size(); ++i) (*img.src[0])[i] = uint8_t(c.pair[i]);
        ASSERT_EQ(m.call(img.args), zilStatusOk) << c.name;
        const size_t px = size_t(RowBytes(m.dst[0], 1));
        EXPECT_EQ(Got(*img.dst[0], px * size_t(c.w - 1), 3), c.last) << c.name;
    }
    // Planes: YCbCr's width 1 uses its one chroma byte; YCrCb's reads the byte before the row as Cb.
    uint8_t yr[3] = {0, 138, 157}, yc[3] = {157, 138, 154};
    uint8_t r = 0, g = 0, b = 0;
    uint8_t* planes[3] = {&r, &g, &b};
    ASSERT_EQ(ziliYCbCr422ToRGB_8u_C2P3R(yr + 1, 2, planes, 1, {1, 1}), zilStatusOk);
    EXPECT_EQ((Bytes{r, g, b}), (Bytes{188, 107, 200}));
    // (138, Cb 157, Cr 154): R (10527192 + 16107630 - 14608761) = 183.5: 183, G 7176318: 109, B 200.
    ASSERT_EQ(ziliYCrCb422ToRGB_8u_C2P3R(yc + 1, 2, planes, 1, {1, 1}), zilStatusOk);
    EXPECT_EQ((Bytes{r, g, b}), (Bytes{183, 109, 200}));
}

// 4:1:1 reverse on a width of 6: the last two pixels take the first group's
// chroma, no second sample is read (the plane holds one), and the status is Ok.
TEST(SubReverse411, RemainderReusesTheLastGroup) {
    const Member& m = M("YCbCr411ToBGR_P3C3R");
    Image img(m, 6, 1, 0, 1);
    std::memset(img.src[0]->data(), 91, 6);
    (*img.src[1])[0] = 142, (*img.src[2])[0] = 177;
    ASSERT_EQ(m.call(img.args), zilStatusOk);
    for (size_t x = 0; x < 6; ++x) EXPECT_EQ(Got(*img.dst[0], 3 * x, 3), (Bytes{115, 42, 165})) << x;
}

// ---- the 64-bit member: steps beyond 2^31 bytes -------------------------------------
// Address space is reserved without memory (PROT_NONE) and only the rows the call
// touches are mapped, so a 3 GiB step costs a few pages. The result must equal the
// same image converted with dense steps.
TEST(SubLong, StepsBeyond31BitsReachTheRightRows) {
    const int64_t w = 6, h = 4, step = (int64_t(3) << 30) + 4096;
    const size_t pg = size_t(sysconf(_SC_PAGESIZE)), span = size_t(step * (h - 1)) + pg;
    struct Area {
        uint8_t* base;
        size_t n;
        Area(size_t bytes) : n(bytes) {
            void* p = mmap(nullptr, n, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
            base = p == MAP_FAILED ? nullptr : static_cast<uint8_t*>(p);
        }
        ~Area() { if (base) munmap(base, n); }
        uint8_t* Row(int64_t off) {  // maps the page holding a row
            uint8_t* at = base + off;
            mprotect(at, 4096, PROT_READ | PROT_WRITE);
            return at;
        }
    } src(span), dy(span), dc(span);
    if (!src.base || !dy.base || !dc.base) GTEST_SKIP() << "cannot reserve address space";
    uint8_t dense[h][3 * w], wantY[h * w], wantC[h / 2 * w];
    ziltest::FillRandom(&dense[0][0], sizeof dense, 5);
    ASSERT_EQ(ziliRGBToYCbCr420_HDTV709r6_8u_C3P2R_L(&dense[0][0], 3 * w, wantY, w, wantC, w, {w, h}), zilStatusOk);
    for (int64_t y = 0; y < h; ++y) {
        std::memcpy(src.Row(y * step), dense[y], 3 * w);
        dy.Row(y * step);
        if (y < h / 2) dc.Row(y * step);
    }
    ASSERT_EQ(ziliRGBToYCbCr420_HDTV709r6_8u_C3P2R_L(src.base, step, dy.base, step, dc.base, step, {w, h}),
              zilStatusOk);
    for (int64_t y = 0; y < h; ++y) {
        EXPECT_EQ(0, std::memcmp(dy.base + y * step, wantY + y * w, w)) << "luma row " << y;
        if (y < h / 2) EXPECT_EQ(0, std::memcmp(dc.base + y * step, wantC + y * w, w)) << "chroma row " << y;
    }
    // Odd extents warn; a 1 x 4 image converts no block and writes nothing.
    const std::vector<uint8_t> before(wantY, wantY + sizeof wantY);
    EXPECT_EQ(ziliRGBToYCbCr420_HDTV709r6_8u_C3P2R_L(&dense[0][0], 3 * w, wantY, w, wantC, w, {1, 4}),
              zilStatusOddSize);
    EXPECT_TRUE(std::vector<uint8_t>(wantY, wantY + sizeof wantY) == before);
}

}  // namespace
