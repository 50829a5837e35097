// XYZ, LUV, Lab and YCC: statuses and their order, guard pages, untouched
// alpha, step walks, hand-worked pixels, branch thresholds hit exactly, BGR
// twins and round-trip bounds.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "guard.h"
#include "zilcc.h"

namespace {

using ziltest::GuardBuf;
using Fn = ZilStatus (*)(const void*, int, void*, int, ZilSize);

template <class S, class D, ZilStatus (*F)(const S*, int, D*, int, ZilSize)>
ZilStatus Thunk(const void* s, int ss, void* d, int ds, ZilSize z) {
    return F(static_cast<const S*>(s), ss, static_cast<D*>(d), ds, z);
}

// ch: samples a pixel; se, de: bytes a sample; shift: how the row layer takes
// a byte step (0 as given, k: in whole samples of 2^k bytes).
struct Member {
    const char* name;
    Fn fn;
    int ch, se, de, shift;
};
#define M(f, S, D, ch, shift) Member{#f, &Thunk<S, D, f>, ch, int(sizeof(S)), int(sizeof(D)), shift}
#define M4(stem, S, sh) M(stem##_C3R, S, S, 3, sh), M(stem##_AC4R, S, S, 4, sh)
#define DEPTHS(conv, s32)                                                                            \
    M4(zili##conv##_8u, uint8_t, 0), M4(zili##conv##_16u, uint16_t, 1), M4(zili##conv##_16s, int16_t, 1), \
        M4(zili##conv##_32f, float, s32)
const Member kMembers[] = {
    DEPTHS(RGBToXYZ, 2), DEPTHS(XYZToRGB, 2), DEPTHS(RGBToLUV, 0), DEPTHS(LUVToRGB, 2),
    M(ziliBGRToLUV_8u_C3R, uint8_t, uint8_t, 3, 0), M(ziliBGRToLUV_32f_C3R, float, float, 3, 0),
    M(ziliLUVToBGR_8u_C3R, uint8_t, uint8_t, 3, 0), M(ziliLUVToBGR_32f_C3R, float, float, 3, 2),
    M(ziliRGBToLab_8u_C3R, uint8_t, uint8_t, 3, 0), M(ziliBGRToLab_8u_C3R, uint8_t, uint8_t, 3, 0),
    M(ziliLabToRGB_8u_C3R, uint8_t, uint8_t, 3, 0), M(ziliLabToBGR_8u_C3R, uint8_t, uint8_t, 3, 0),
    M(ziliRGBToLab_32f_C3R, float, float, 3, 0), M(ziliBGRToLab_32f_C3R, float, float, 3, 0),
    M(ziliLabToRGB_32f_C3R, float, float, 3, 0), M(ziliLabToBGR_32f_C3R, float, float, 3, 0),
    M(ziliBGRToLab_8u16u_C3R, uint8_t, uint16_t, 3, 0), M(ziliLabToBGR_16u8u_C3R, uint16_t, uint8_t, 3, 0),
    DEPTHS(RGBToYCC, 2), DEPTHS(YCCToRGB, 2),
};
static_assert(sizeof kMembers / sizeof kMembers[0] == 62, "every export of the family");

class CieMember : public ::testing::TestWithParam<Member> {};

TEST_P(CieMember, NullsOutrankTheSizeAndNothingIsWritten) {
    const Member& m = GetParam();
    GuardBuf src(64, 0x11), dst(64, 0x5A);
    struct Case { bool nullSrc, nullDst; ZilSize sz; ZilStatus want; };
    const Case cases[] = {{true, false, {0, 0}, zilStatusNullPointer}, {false, true, {-1, 2}, zilStatusNullPointer},
                          {true, true, {2, 2}, zilStatusNullPointer},  {false, false, {0, 2}, zilStatusBadSize},
                          {false, false, {2, 0}, zilStatusBadSize},    {false, false, {2, -5}, zilStatusBadSize}};
    for (const Case& c : cases) {
        EXPECT_EQ(m.fn(c.nullSrc ? nullptr : src.data(), 8, c.nullDst ? nullptr : dst.data(), 8, c.sz), c.want)
            << m.name << " " << c.sz.width << "x" << c.sz.height;
        EXPECT_TRUE(dst.all(0x5A)) << m.name;
    }
}

// Exact buffers against guard pages; random samples (NaNs and infinities among
// the floats) must not crash; the fourth sample of AC4 pixels keeps its bytes.
TEST_P(CieMember, StaysInsideItsRowsAndKeepsAlpha) {
    const Member& m = GetParam();
    for (int w : {1, 2, 15, 16, 17, 33})
        for (auto side : {GuardBuf::After, GuardBuf::Before}) {
            const int h = 3, sRow = w * m.ch * m.se, dRow = w * m.ch * m.de;
            GuardBuf src(size_t(sRow) * h, 0, side), dst(size_t(dRow) * h, 0x5A, side);
            ziltest::FillRandom(src.data(), src.size(), uint32_t(w));
            ASSERT_EQ(m.fn(src.data(), sRow, dst.data(), dRow, {w, h}), zilStatusOk) << m.name;
            if (m.ch == 4)
                for (size_t p = 3 * size_t(m.de); p < dst.size(); p += 4 * size_t(m.de))
                    for (int b = 0; b < m.de; ++b) ASSERT_EQ(dst[p + b], 0x5A) << m.name << " alpha";
        }
}

// A byte step that is not a whole number of samples: the 16- and 32-bit row
// layers that count in samples drop the remainder; byte-step members do not.
TEST_P(CieMember, OddStepsWalkAsTheRowLayerCountsThem) {
    const Member& m = GetParam();
    const int w = 3, sRow = w * m.ch * m.se, dRow = w * m.ch * m.de;
    std::vector<uint8_t> src(size_t(sRow) * 2), one(dRow, 0x5A);
    ziltest::FillRandom(src.data(), sRow, 7);
    std::memcpy(src.data() + sRow, src.data(), sRow);  // both rows alike at a whole-row step
    ASSERT_EQ(m.fn(src.data(), sRow, one.data(), dRow, {w, 1}), zilStatusOk);
    const int ds = dRow + (m.de > 1 ? m.de - 1 : 3), at = int((ds >> m.shift) << m.shift);
    std::vector<uint8_t> dst(size_t(at + dRow) + 8, 0x5A);
    ASSERT_EQ(m.fn(src.data(), sRow, dst.data(), ds, {w, 2}), zilStatusOk);
    EXPECT_EQ(std::memcmp(dst.data() + at, one.data(), dRow), 0) << m.name << " second row at " << at;
    for (int i = dRow; i < at; ++i) EXPECT_EQ(dst[i], 0x5A) << m.name << " gap byte " << i;
}

INSTANTIATE_TEST_SUITE_P(Cie, CieMember, ::testing::ValuesIn(kMembers),
                         [](const auto& info) { return std::string(info.param.name); });

// ---- hand-worked pixels ------------------------------------------------------------
// One pixel through the C3 member, its AC4 sibling (alpha kept) and, where
// given, its BGR twin with channels 0 and 2 of the RGB side reversed.
struct Pixel {
    const char* what;
    Fn c3, ac4, bgr;
    bool rgbIn;
    double in[3], out[3];
};
template <class T>
std::vector<uint8_t> Bytes(const double (&v)[3], int ch) {
    std::vector<uint8_t> b(ch * sizeof(T), 0xC7);
    for (int i = 0; i < 3; ++i) {
        const T t = T(v[i]);
        std::memcpy(b.data() + i * sizeof(T), &t, sizeof t);
    }
    return b;
}
template <class S, class D>
void CheckPixel(const Pixel& p) {
    struct Run { Fn fn; int ch; bool swap; } runs[] = {{p.c3, 3, false}, {p.ac4, 4, false}, {p.bgr, 3, true}};
    for (const Run& r : runs) {
        if (!r.fn) continue;
        double in[3] = {p.in[0], p.in[1], p.in[2]}, out[3] = {p.out[0], p.out[1], p.out[2]};
        if (r.swap) std::swap(p.rgbIn ? in[0] : out[0], p.rgbIn ? in[2] : out[2]);
        const std::vector<uint8_t> s = Bytes<S>(in, r.ch), want = Bytes<D>(out, r.ch);
        std::vector<uint8_t> d(want.size(), 0xC7);
        ASSERT_EQ(r.fn(s.data(), 64, d.data(), 64, {1, 1}), zilStatusOk);
        EXPECT_EQ(d, want) << p.what << (r.ch == 4 ? " AC4" : r.swap ? " BGR" : "");
    }
}
#define P(conv, d) &Thunk<d, d, zili##conv##_C3R>, &Thunk<d, d, zili##conv##_AC4R>
#define PB(conv, bgr, d) P(conv, d), &Thunk<d, d, zili##bgr##_C3R>

TEST(CiePixels, StatedAndHandWorkedValues) {
    const Pixel k8u[] = {
        {"XYZ white, Z clamped", P(RGBToXYZ_8u, uint8_t), nullptr, true, {255, 255, 255}, {242, 254, 255}},
        {"XYZ red", P(RGBToXYZ_8u, uint8_t), nullptr, true, {255, 0, 0}, {105, 54, 4}},
        {"XYZ inverse, negative R clamped", P(XYZToRGB_8u, uint8_t), nullptr, false, {0, 255, 0}, {0, 255, 0}},
        {"XYZ inverse, B floored then clamped", P(XYZToRGB_8u, uint8_t), nullptr, false, {0, 0, 255}, {0, 10, 255}},
        {"LUV black", PB(RGBToLUV_8u, BGRToLUV_8u, uint8_t), true, {0, 0, 0}, {0, 97, 136}},
        {"LUV L 0 is black", PB(LUVToRGB_8u, LUVToBGR_8u, uint8_t), false, {0, 200, 13}, {0, 0, 0}},
        {"YCC black", P(RGBToYCC_8u, uint8_t), nullptr, true, {0, 0, 0}, {0, 156, 137}},
        {"YCC white", P(RGBToYCC_8u, uint8_t), nullptr, true, {255, 255, 255}, {181, 156, 137}},
        {"YCC blue", P(RGBToYCC_8u, uint8_t), nullptr, true, {0, 0, 255}, {20, 254, 121}},
        {"YCC red", P(RGBToYCC_8u, uint8_t), nullptr, true, {255, 0, 0}, {54, 122, 232}},
        {"YCC white back", P(YCCToRGB_8u, uint8_t), nullptr, false, {181, 156, 137}, {245, 245, 245}},
        {"Lab black", &Thunk<uint8_t, uint8_t, ziliRGBToLab_8u_C3R>, nullptr,
         &Thunk<uint8_t, uint8_t, ziliBGRToLab_8u_C3R>, true, {0, 0, 0}, {0, 128, 128}},
        {"Lab white", &Thunk<uint8_t, uint8_t, ziliRGBToLab_8u_C3R>, nullptr,
         &Thunk<uint8_t, uint8_t, ziliBGRToLab_8u_C3R>, true, {255, 255, 255}, {255, 128, 128}},
        {"Lab black back: no linear branch", &Thunk<uint8_t, uint8_t, ziliLabToRGB_8u_C3R>, nullptr,
         &Thunk<uint8_t, uint8_t, ziliLabToBGR_8u_C3R>, false, {0, 128, 128}, {1, 1, 1}},
    };
    for (const Pixel& p : k8u) CheckPixel<uint8_t, uint8_t>(p);
    const Pixel k16u[] = {
        {"XYZ red", P(RGBToXYZ_16u, uint16_t), nullptr, true, {65535, 0, 0}, {27030, 13937, 1267}},
        {"XYZ white", P(RGBToXYZ_16u, uint16_t), nullptr, true, {65535, 65535, 65535}, {62288, 65535, 65535}},
        {"XYZ inverse", P(XYZToRGB_16u, uint16_t), nullptr, false, {1000, 0, 0}, {3240, 0, 56}},
        {"LUV black", P(RGBToLUV_16u, uint16_t), nullptr, true, {0, 0, 0}, {0, 24807, 35019}},
        {"LUV L 0 is black", P(LUVToRGB_16u, uint16_t), nullptr, false, {0, 9000, 60000}, {0, 0, 0}},
        {"YCC black", P(RGBToYCC_16u, uint16_t), nullptr, true, {0, 0, 0}, {0, 40092, 35209}},
        {"YCC white", P(RGBToYCC_16u, uint16_t), nullptr, true, {65535, 65535, 65535}, {46744, 40092, 35209}},
        {"YCC neutral back", P(YCCToRGB_16u, uint16_t), nullptr, false, {0, 40092, 35209}, {0, 0, 0}},
    };
    for (const Pixel& p : k16u) CheckPixel<uint16_t, uint16_t>(p);
    const Pixel k16s[] = {
        {"XYZ red", P(RGBToXYZ_16s, int16_t), nullptr, true, {32767, -32768, -32768}, {-5738, -18831, -31501}},
        {"XYZ inverse", P(XYZToRGB_16s, int16_t), nullptr, false, {-31768, -32768, -32768}, {-29528, -32768, -32712}},
        {"LUV black", P(RGBToLUV_16s, int16_t), nullptr, true, {-32768, -32768, -32768}, {-32768, -7961, 2251}},
        {"LUV L 0 is -32768", P(LUVToRGB_16s, int16_t), nullptr, false, {-32768, 5, 5}, {-32768, -32768, -32768}},
        {"YCC black", P(RGBToYCC_16s, int16_t), nullptr, true, {-32768, -32768, -32768}, {-32768, 7324, 2441}},
    };
    for (const Pixel& p : k16s) CheckPixel<int16_t, int16_t>(p);
    const Pixel k32f[] = {
        {"LUV black (U, V are -0)", PB(RGBToLUV_32f, BGRToLUV_32f, float), true, {0, 0, 0}, {0, -0.0, -0.0}},
    };
    for (const Pixel& p : k32f) CheckPixel<float, float>(p);
    // Y and C2 of 0: R = -0.5372549 * 1.8215 is clamped to 0; B = 0 exactly.
    const float ycc[3] = {0, 0.6117647f, 0};
    float rgb[3];
    ASSERT_EQ(ziliYCCToRGB_32f_C3R(ycc, 12, rgb, 12, {1, 1}), zilStatusOk);
    EXPECT_EQ(rgb[0], 0.f);
    EXPECT_NEAR(rgb[1], 0.4981, 1e-4);
    EXPECT_EQ(rgb[2], 0.f);
    // The mixed Lab pair truncates where the 8u pair rounds.
    CheckPixel<uint8_t, uint16_t>({"Lab 8u16u black", nullptr, nullptr, &Thunk<uint8_t, uint16_t, ziliBGRToLab_8u16u_C3R>,
                                   true, {0, 0, 0}, {0, 32640, 32640}});
    CheckPixel<uint16_t, uint8_t>({"Lab 16u8u black back", nullptr, nullptr,
                                   &Thunk<uint16_t, uint8_t, ziliLabToBGR_16u8u_C3R>, false, {0, 32640, 32640}, {0, 0, 0}});
}

// ---- thresholds hit exactly --------------------------------------------------------
// 0.71516f * g is exactly the threshold 0.008856f for this g (and R = B = 0
// leaves Y that one product): Y equal to the threshold takes the linear branch.
TEST(CieThresholds, YAtTheThresholdIsLinearAndAboveIsTheCubeRoot) {
    const float g = 0.012383243069052696f, above = std::nextafter(g, 1.f);
    ASSERT_EQ(0.71516f * g, 0.008856f);
    using F = ZilStatus (*)(const float*, int, float*, int, ZilSize);
    for (F fn : {F(ziliRGBToLUV_32f_C3R), F(ziliRGBToLab_32f_C3R)}) {
        float in[6] = {0, g, 0, 0, above, 0}, out[6];
        ASSERT_EQ(fn(in, 24, out, 24, {2, 1}), zilStatusOk);
        EXPECT_EQ(out[0], 903.3f * 0.008856f);
        EXPECT_NEAR(out[3], 116 * std::cbrt(double(0.71516f * above)) - 16, 1e-5);
    }
}

// L = 7.9996247f cubes, one step below divides by 903.3: the cube is larger
// there by about 4e-6 relative, far above the one-step change of L.
TEST(CieThresholds, LuvInverseLThresholds) {
    const float at = 7.9996247f, below = std::nextafter(at, 0.f);
    float in[6] = {at, 0, 0, below, 0, 0}, out[6];
    ASSERT_EQ(ziliLUVToRGB_32f_C3R(in, 24, out, 24, {2, 1}), zilStatusOk);
    EXPECT_GT(out[1] / out[4] - 1, 2e-6) << out[1] << " " << out[4];
    // Below 9e-5 the result is black, whatever U and V say; at 9e-5 it is not.
    const float lmin = 9e-5f;
    float in2[6] = {lmin, 0, 0, std::nextafter(lmin, 0.f), 50, -30}, out2[6];
    ASSERT_EQ(ziliLUVToRGB_32f_C3R(in2, 24, out2, 24, {2, 1}), zilStatusOk);
    EXPECT_GT(out2[1], 0.f);
    for (int c = 3; c < 6; ++c) EXPECT_EQ(out2[c], 0.f);
}

// A 32f x above 1 is limited to 1 before the cube root: more red than the
// white holds gives the same a as exactly the white's red share.
TEST(CieThresholds, Lab32fLimitsXAtOne) {
    float in[6] = {3, 0, 0, 2.5f, 0, 0}, out[6];
    ASSERT_EQ(ziliRGBToLab_32f_C3R(in, 24, out, 24, {2, 1}), zilStatusOk);
    EXPECT_NEAR(out[1] + (out[0] + 16) / 116 * 500, 500, 1e-3);  // fx = 1 in both
    EXPECT_NEAR(out[4] + (out[3] + 16) / 116 * 500, 500, 1e-3);
}

// ---- round trips -----------------------------------------------------------------
// There and back over a grid of colours, worst difference within the bound.
// Blue up to 225 (0.9) keeps Z, and Lab's x and z, below their clamps. XYZ 8u:
// three truncations of up to one unit through inverse rows whose weights sum
// to at most 5.3; LUV and Lab 8u: the quantisation of their encodings. Lab
// 32f: black comes back as (16/116)^3 = 0.00262, the inverse having no linear
// branch.
template <class T>
struct Trip { const char* name; ZilStatus (*fwd)(const T*, int, T*, int, ZilSize), (*inv)(const T*, int, T*, int, ZilSize); double bound; };
template <class T>
void RoundTrips(std::initializer_list<Trip<T>> trips, double top) {
    std::vector<T> rgb;
    for (int r = 0; r < 18; ++r)
        for (int g = 0; g < 18; ++g)
            for (int b = 0; b < 16; ++b) rgb.insert(rgb.end(), {T(r * top / 17), T(g * top / 17), T(b * top / 17)});
    const int n = int(rgb.size() / 3);
    for (const Trip<T>& t : trips) {
        std::vector<T> mid(rgb.size()), back(rgb.size());
        ASSERT_EQ(t.fwd(rgb.data(), 0, mid.data(), 0, {n, 1}), zilStatusOk);
        ASSERT_EQ(t.inv(mid.data(), 0, back.data(), 0, {n, 1}), zilStatusOk);
        double worst = 0;
        for (size_t i = 0; i < rgb.size(); ++i) worst = std::max(worst, std::abs(double(rgb[i]) - double(back[i])));
        EXPECT_LE(worst, t.bound) << t.name;
    }
}
TEST(CieRoundTrip, PairsStayWithinTheirBounds) {
    RoundTrips<uint8_t>({{"XYZ", ziliRGBToXYZ_8u_C3R, ziliXYZToRGB_8u_C3R, 5},
                         {"LUV", ziliRGBToLUV_8u_C3R, ziliLUVToRGB_8u_C3R, 4},
                         {"Lab", ziliRGBToLab_8u_C3R, ziliLabToRGB_8u_C3R, 4}}, 255);
    RoundTrips<float>({{"XYZ", ziliRGBToXYZ_32f_C3R, ziliXYZToRGB_32f_C3R, 1e-5},
                       {"LUV", ziliRGBToLUV_32f_C3R, ziliLUVToRGB_32f_C3R, 1e-4},
                       {"Lab", ziliRGBToLab_32f_C3R, ziliLabToRGB_32f_C3R, 2.7e-3}}, 1.0);
}

}  // namespace
