// HLS and HSV: hand-worked pixels per member class, statuses and the order of
// checks, alpha rules, element steps, and exhaustive 8-bit properties (the
// grey axis, agreement of the RGB and BGR groups, round-trip bounds).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "guard.h"
#include "zilcc.h"

namespace {

using ziltest::GuardBuf;

// Uniform arguments: plane pointers (entry 0 alone for a packed image).
struct Args {
    const void* s[4] = {};
    int ss = 0;
    void* d[4] = {};
    int ds = 0;
    ZilSize sz{};
};
using Call = std::function<ZilStatus(const Args&)>;
// An image side: 0 planes = packed with `ch` channels, else planar.
struct Side {
    int planes, ch;
};
constexpr Side kC3{0, 3}, kC4{0, 4}, kP3{3, 1}, kP4{4, 1};

enum Group { Rgb, BgrStepSize, BgrSizeStep };
enum Alpha { NoAlpha, Kept, Copied };
struct Member {
    const char* name;
    Call call;
    Side src, dst;
    int elem;
    Group group;
    Alpha alpha;
};

template <class T>
auto P(const void* p) { return static_cast<const T*>(p); }
#define PP(fn, T) [](const Args& a) { return fn(P<T>(a.s[0]), a.ss, (T*)a.d[0], a.ds, a.sz); }
#define PA(fn) [](const Args& a) { return fn(P<uint8_t>(a.s[0]), a.ss, (uint8_t* const*)a.d, a.ds, a.sz); }
#define AA(fn) [](const Args& a) { return fn((const uint8_t* const*)a.s, a.ss, (uint8_t* const*)a.d, a.ds, a.sz); }
#define AP(fn) [](const Args& a) { return fn((const uint8_t* const*)a.s, a.ss, (uint8_t*)a.d[0], a.ds, a.sz); }
#define RGB(fn, T, S, A) {#fn, PP(fn, T), S, S, int(sizeof(T)), Rgb, A}
const Member kMembers[] = {
    RGB(ziliRGBToHLS_8u_C3R, uint8_t, kC3, NoAlpha),    RGB(ziliRGBToHLS_8u_AC4R, uint8_t, kC4, Kept),
    RGB(ziliRGBToHLS_16u_C3R, uint16_t, kC3, NoAlpha),  RGB(ziliRGBToHLS_16u_AC4R, uint16_t, kC4, Kept),
    RGB(ziliRGBToHLS_16s_C3R, int16_t, kC3, NoAlpha),   RGB(ziliRGBToHLS_16s_AC4R, int16_t, kC4, Kept),
    RGB(ziliRGBToHLS_32f_C3R, float, kC3, NoAlpha),     RGB(ziliRGBToHLS_32f_AC4R, float, kC4, Kept),
    RGB(ziliHLSToRGB_8u_C3R, uint8_t, kC3, NoAlpha),    RGB(ziliHLSToRGB_8u_AC4R, uint8_t, kC4, Kept),
    RGB(ziliHLSToRGB_16u_C3R, uint16_t, kC3, NoAlpha),  RGB(ziliHLSToRGB_16u_AC4R, uint16_t, kC4, Kept),
    RGB(ziliHLSToRGB_16s_C3R, int16_t, kC3, NoAlpha),   RGB(ziliHLSToRGB_16s_AC4R, int16_t, kC4, Kept),
    RGB(ziliHLSToRGB_32f_C3R, float, kC3, NoAlpha),     RGB(ziliHLSToRGB_32f_AC4R, float, kC4, Kept),
    RGB(ziliRGBToHSV_8u_C3R, uint8_t, kC3, NoAlpha),    RGB(ziliRGBToHSV_8u_AC4R, uint8_t, kC4, Kept),
    RGB(ziliRGBToHSV_16u_C3R, uint16_t, kC3, NoAlpha),  RGB(ziliRGBToHSV_16u_AC4R, uint16_t, kC4, Kept),
    RGB(ziliHSVToRGB_8u_C3R, uint8_t, kC3, NoAlpha),    RGB(ziliHSVToRGB_8u_AC4R, uint8_t, kC4, Kept),
    RGB(ziliHSVToRGB_16u_C3R, uint16_t, kC3, NoAlpha),  RGB(ziliHSVToRGB_16u_AC4R, uint16_t, kC4, Kept),
    {"ziliBGRToHLS_8u_AC4R", PP(ziliBGRToHLS_8u_AC4R, uint8_t), kC4, kC4, 1, BgrSizeStep, Kept},
    {"ziliBGRToHLS_8u_C3P3R", PA(ziliBGRToHLS_8u_C3P3R), kC3, kP3, 1, BgrStepSize, NoAlpha},
    {"ziliBGRToHLS_8u_AC4P4R", PA(ziliBGRToHLS_8u_AC4P4R), kC4, kP4, 1, BgrStepSize, Copied},
    {"ziliBGRToHLS_8u_P3R", AA(ziliBGRToHLS_8u_P3R), kP3, kP3, 1, BgrStepSize, NoAlpha},
    {"ziliBGRToHLS_8u_AP4R", AA(ziliBGRToHLS_8u_AP4R), kP4, kP4, 1, BgrStepSize, Copied},
    {"ziliBGRToHLS_8u_P3C3R", AP(ziliBGRToHLS_8u_P3C3R), kP3, kC3, 1, BgrStepSize, NoAlpha},
    {"ziliBGRToHLS_8u_AP4C4R", AP(ziliBGRToHLS_8u_AP4C4R), kP4, kC4, 1, BgrStepSize, Copied},
    {"ziliHLSToBGR_8u_C3P3R", PA(ziliHLSToBGR_8u_C3P3R), kC3, kP3, 1, BgrStepSize, NoAlpha},
    {"ziliHLSToBGR_8u_AC4P4R", PA(ziliHLSToBGR_8u_AC4P4R), kC4, kP4, 1, BgrStepSize, Copied},
    {"ziliHLSToBGR_8u_P3R", AA(ziliHLSToBGR_8u_P3R), kP3, kP3, 1, BgrStepSize, NoAlpha},
    {"ziliHLSToBGR_8u_AP4R", AA(ziliHLSToBGR_8u_AP4R), kP4, kP4, 1, BgrStepSize, Copied},
    {"ziliHLSToBGR_8u_P3C3R", AP(ziliHLSToBGR_8u_P3C3R), kP3, kC3, 1, BgrStepSize, NoAlpha},
    {"ziliHLSToBGR_8u_AP4C4R", AP(ziliHLSToBGR_8u_AP4C4R), kP4, kC4, 1, BgrStepSize, Copied},
};
#undef RGB
void PrintTo(const Member& m, std::ostream* os) { *os << m.name; }
const Member& Find(const std::string& n) {
    for (const Member& m : kMembers)
        if (n == m.name) return m;
    throw std::runtime_error(n);
}

// Exact buffers against guard pages, `pad` bytes between rows.
struct Image {
    std::vector<std::unique_ptr<GuardBuf>> src, dst;
    Args a;
    Image(const Member& m, int w, int h, int pad = 0, uint8_t fill = 0x5A) {
        a.sz = {w, h};
        auto make = [&](Side s, std::vector<std::unique_ptr<GuardBuf>>& v, int& step, uint8_t f, int seed) {
            const int n = s.planes ? s.planes : 1, rb = w * s.ch * m.elem;
            step = rb + pad;
            for (int i = 0; i < n; ++i) {
                v.push_back(std::make_unique<GuardBuf>(ziltest::ImageBytes(h, rb, step), f));
                if (seed) ziltest::FillRandom(v.back()->data(), v.back()->size(), uint32_t(seed + i));
            }
        };
        make(m.src, src, a.ss, 0, 17);
        make(m.dst, dst, a.ds, fill, 0);
        for (size_t i = 0; i < src.size(); ++i) a.s[i] = src[i]->data();
        for (size_t i = 0; i < dst.size(); ++i) a.d[i] = dst[i]->data();
    }
    bool Untouched(uint8_t fill = 0x5A) const {
        for (const auto& b : dst)
            if (!b->all(fill)) return false;
        return true;
    }
};

class HueMember : public ::testing::TestWithParam<Member> {};

// Nulls (the arrays and every plane) outrank all; then the BGR group's step and
// size checks in the member's order; the RGB group takes any step.
TEST_P(HueMember, ChecksInOrderAndNothingWrittenOnFailure) {
    const Member& m = GetParam();
    struct Case { int nullSrc, nullDst; ZilSize sz; int step; ZilStatus want; };
    const ZilStatus stepFirst = m.group == BgrStepSize ? zilStatusBadStep : zilStatusBadSize;
    std::vector<Case> cases = {{-1, -1, {0, 2}, 6, zilStatusBadSize}, {-1, -1, {3, -1}, 6, zilStatusBadSize}};
    const int ns = m.src.planes ? m.src.planes : 1, nd = m.dst.planes ? m.dst.planes : 1;
    for (int i = 0; i < ns; ++i) cases.push_back({i, -1, {0, 2}, 0, zilStatusNullPointer});
    for (int i = 0; i < nd; ++i) cases.push_back({-1, i, {0, 2}, 0, zilStatusNullPointer});
    if (m.group != Rgb) {
        cases.push_back({-1, -1, {3, 2}, 0, zilStatusBadStep});
        cases.push_back({-1, -1, {3, 2}, -6, zilStatusBadStep});
        cases.push_back({-1, -1, {0, 2}, 0, stepFirst});
    }
    for (const Case& c : cases)
        for (int side = 0; side < 2; ++side) {
            Image img(m, 3, 2);
            Args a = img.a;
            a.sz = c.sz;
            (side ? a.ds : a.ss) = c.step;
            if (c.nullSrc >= 0) a.s[c.nullSrc] = nullptr;
            if (c.nullDst >= 0) a.d[c.nullDst] = nullptr;
            EXPECT_EQ(m.call(a), c.want) << m.name << " null " << c.nullSrc << "/" << c.nullDst << " step " << c.step;
            EXPECT_TRUE(img.Untouched()) << m.name;
        }
    if (m.group == Rgb) {  // a zero step repeats row 0: both rows hold its result
        Image img(m, 3, 2);
        Args a = img.a;
        a.ss = 0;
        ASSERT_EQ(m.call(a), zilStatusOk);
        const size_t rb = size_t(a.ds);
        EXPECT_EQ(0, std::memcmp(img.dst[0]->data(), img.dst[0]->data() + rb, rb)) << m.name;
    }
}

// The fourth channel: untouched, or copied from the source's.
class HueAlpha : public ::testing::TestWithParam<Member> {};
TEST_P(HueAlpha, KeptOrCopied) {
    const Member& m = GetParam();
    Image img(m, 5, 3, 8, 0x77);
    ASSERT_EQ(m.call(img.a), zilStatusOk);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x) {
            auto at = [&](const std::vector<std::unique_ptr<GuardBuf>>& v, Side s, int step) -> uint8_t {
                return s.planes ? (*v[3])[size_t(y) * step + x] : (*v[0])[size_t(y) * step + (4 * x + 3) * m.elem];
            };
            const uint8_t want = m.alpha == Kept ? 0x77 : at(img.src, m.src, img.a.ss);
            EXPECT_EQ(at(img.dst, m.dst, img.a.ds), want) << m.name << " pixel " << x << "," << y;
        }
}
// Rows converted whole (vector bodies) equal the same pixels converted one
// column at a time (the single-pixel path), to the last bit.
TEST_P(HueMember, WholeRowsEqualSingleColumns) {
    const Member& m = GetParam();
    const int w = 37, h = 3;
    Image whole(m, w, h, 4), cols(m, w, h, 4);
    if (m.elem == 4)  // float samples: finite, 0 to 1 and a little beyond
        for (auto* img : {&whole, &cols})
            for (size_t i = 0; i + 4 <= img->src[0]->size(); i += 4) {
                const float v = float((i * 2654435761u) % 1200) / 1000.0f;
                std::memcpy(img->src[0]->data() + i, &v, 4);
            }
    ASSERT_EQ(m.call(whole.a), zilStatusOk);
    for (int x = 0; x < w; ++x) {
        Args a = cols.a;
        a.sz = {1, h};
        for (int i = 0; i < 4; ++i) {
            if (a.s[i]) a.s[i] = static_cast<const uint8_t*>(a.s[i]) + x * (m.src.planes ? 1 : m.src.ch) * m.elem;
            if (a.d[i]) a.d[i] = static_cast<uint8_t*>(a.d[i]) + x * (m.dst.planes ? 1 : m.dst.ch) * m.elem;
        }
        ASSERT_EQ(m.call(a), zilStatusOk);
    }
    for (size_t i = 0; i < whole.dst.size(); ++i) EXPECT_TRUE(whole.dst[i]->copy() == cols.dst[i]->copy()) << m.name;
}

auto Name = [](const auto& i) { return std::string(i.param.name + 4); };
INSTANTIATE_TEST_SUITE_P(Hue, HueMember, ::testing::ValuesIn(kMembers), Name);
std::vector<Member> FourChannel() {
    std::vector<Member> v;
    for (const Member& m : kMembers)
        if (m.alpha != NoAlpha) v.push_back(m);
    return v;
}
INSTANTIATE_TEST_SUITE_P(Hue, HueAlpha, ::testing::ValuesIn(FourChannel()), Name);

// ---- hand-worked pixels ---------------------------------------------------------------
// Channel c of pixel 0, as an integer sample.
int Get(const Member& m, const Image& img, int c) {
    if (m.dst.planes) return (*img.dst[c])[0];
    const uint8_t* p = img.dst[0]->data();
    if (m.elem == 1) return p[c];
    int16_t v;
    std::memcpy(&v, p + 2 * c, 2);
    return std::strstr(m.name, "_16s_") ? v : uint16_t(v);
}
void Set(const Member& m, Image& img, int c, int v) {
    if (m.src.planes) (*img.src[c])[0] = uint8_t(v);
    else if (m.elem == 1) (*img.src[0])[c] = uint8_t(v);
    else { const int16_t s = int16_t(v); std::memcpy(img.src[0]->data() + 2 * c, &s, 2); }
}
struct PixelCase { const char* member; int in[3], want[3]; };
void PrintTo(const PixelCase& c, std::ostream* os) { *os << c.member; }

// (R, G, B) = (17, 99, 230): B is max, d = 213, sum 247, L = 123.5, S = 213 / 247;
// H = -82 x 60 / 213 + 240 = 216.9014 degrees. Bytes: H 153.64, L 123.5, S 219.90:
// rounded (154, 124, 220) in the RGB group and by +0.499999 (123.999999 rounds up
// to 124 in single precision); truncated (153, 123, 219) by +1e-7. BGR images
// hold (230, 99, 17). On 16 bits (x 257): H 39484.9, L 31739.5, S 56514.0.
// (0, 7, 0): L = 3.5 exactly; + 0.5 gives 4, + 0.499999 and + 1e-7 give 3.
// HSV (200, 100, 51): V 200, d 149, S = 149 / 200 x 255 = 189.98 -> 190, red
// sector 49 / 149 x 255 / 6 = 13.98 -> 14. On 16 bits S 48823.6, H 3591.9.
// HSV (41, 41, 0): red and green tie; 41 x f(1/41) = 1 - 2^-24: the red sector
// gives (1 - 2^-24) x 42.5 + 0.5 -> 42, the green one (2 - that) -> 43, and green
// overwrites red.
const PixelCase kForward[] = {
    {"ziliRGBToHLS_8u_C3R", {17, 99, 230}, {154, 124, 220}},
    {"ziliBGRToHLS_8u_AC4R", {230, 99, 17}, {154, 124, 220}},
    {"ziliBGRToHLS_8u_P3R", {230, 99, 17}, {153, 123, 219}},
    {"ziliBGRToHLS_8u_C3P3R", {230, 99, 17}, {153, 123, 219}},
    {"ziliRGBToHLS_16u_C3R", {4369, 25443, 59110}, {39485, 31740, 56514}},
    {"ziliRGBToHLS_16s_C3R", {4369 - 32768, 25443 - 32768, 59110 - 32768}, {39485 - 32768, -1028, 23746}},
    {"ziliRGBToHLS_8u_C3R", {0, 7, 0}, {85, 4, 255}},
    {"ziliBGRToHLS_8u_AC4R", {0, 7, 0}, {85, 3, 255}},
    {"ziliBGRToHLS_8u_AP4R", {0, 7, 0}, {85, 3, 255}},
    {"ziliRGBToHLS_16s_C3R", {-32768, -32768, -32768}, {-32768, -32768, -32768}},
    {"ziliRGBToHSV_8u_C3R", {200, 100, 51}, {14, 190, 200}},
    {"ziliRGBToHSV_16u_C3R", {51400, 25700, 13107}, {3592, 48824, 51400}},
    {"ziliRGBToHSV_8u_C3R", {41, 41, 0}, {43, 255, 41}},
    {"ziliRGBToHSV_8u_C3R", {255, 0, 255}, {213, 255, 255}},
};
// HLS (85, 60, 128): H = 120 degrees, L = 60 / 255, S = 128 / 255;
// m2 = (1 + S) L = 0.35340, m1 = 2L - m2 = 0.11719. Hues: red 240 -> m1,
// green 120 -> m2, blue 0 -> m1; x 255: 29.88, 90.12, 29.88: rounded
// (30, 90, 30), truncated by the BGR group (29, 90, 29), written B, G, R.
// HLS (0, 128, 255): L > 0.5, m2 = (L + 1) - L = 1 - 2^-24: R 254.99998
// rounds to 255 and truncates to 254; m1 x 255 = 1.00003 gives 1 either way.
// HSV (14, 190, 200): h = 0.3294, sector 0, f = 0.3294, S = 0.7451: R = V,
// t = (1 - S (1 - f)) V = 100.07, p = (1 - S) V = 50.98 -> (200, 100, 51).
// 16 bits, hue 65535 (red), S = 48830 / 65535: p = t = 0.254902 x 51400 = 13101.96.
const PixelCase kInverse[] = {
    {"ziliHLSToRGB_8u_C3R", {85, 60, 128}, {30, 90, 30}},
    {"ziliHLSToBGR_8u_P3R", {85, 60, 128}, {29, 90, 29}},
    {"ziliHLSToRGB_16u_C3R", {21845, 15420, 32896}, {7680, 23160, 7680}},
    {"ziliHLSToRGB_16s_C3R", {21845 - 32768, 15420 - 32768, 128}, {7680 - 32768, 23160 - 32768, 7680 - 32768}},
    {"ziliHLSToRGB_8u_C3R", {0, 128, 255}, {255, 1, 1}},
    {"ziliHLSToBGR_8u_C3P3R", {0, 128, 255}, {1, 1, 254}},
    {"ziliHLSToRGB_16s_C3R", {-32768, -32768, -32768}, {-32768, -32768, -32768}},
    {"ziliHSVToRGB_8u_C3R", {14, 190, 200}, {200, 100, 51}},
    {"ziliHSVToRGB_8u_C3R", {255, 190, 200}, {200, 51, 51}},  // full scale is red
    {"ziliHSVToRGB_16u_C3R", {65535, 48830, 51400}, {51400, 13102, 13102}},
};
class HuePixel : public ::testing::TestWithParam<PixelCase> {};
TEST_P(HuePixel, OnePixel) {
    const PixelCase& c = GetParam();
    const Member& m = Find(c.member);
    Image img(m, 1, 1);
    for (int ch = 0; ch < 3; ++ch) Set(m, img, ch, c.in[ch]);
    ASSERT_EQ(m.call(img.a), zilStatusOk);
    for (int ch = 0; ch < 3; ++ch) EXPECT_EQ(Get(m, img, ch), c.want[ch]) << c.member << " channel " << ch;
}
INSTANTIATE_TEST_SUITE_P(Forward, HuePixel, ::testing::ValuesIn(kForward));
INSTANTIATE_TEST_SUITE_P(Inverse, HuePixel, ::testing::ValuesIn(kInverse));

// ---- float forms ---------------------------------------------------------------------------
TEST(HueFloat, GreyMarginAndFullTurn) {
    // 0.5 + 2^-24 rounds to 0.50000006 (one unit at 0.5): d = 2^-24 is grey;
    // three units (d = 1.8e-7) is not.
    float px[6] = {0.5f, 0.50000006f, 0.5f, 0.5f, 0.5000002f, 0.5f}, out[6];
    ASSERT_EQ(ziliRGBToHLS_32f_C3R(px, 24, out, 24, {2, 1}), zilStatusOk);
    EXPECT_EQ(out[0], 0.0f);
    EXPECT_EQ(out[2], 0.0f);
    EXPECT_GT(out[5], 0.0f);
    EXPECT_FLOAT_EQ(out[3], 120.0f / 360.0f);
    // H = 1 is a full turn: the same as H = 0 (hues 120 -> m2, 360 and 240 -> m1).
    float hls[6] = {1.0f, 0.3f, 0.8f, 0.0f, 0.3f, 0.8f}, rgb[6];
    ASSERT_EQ(ziliHLSToRGB_32f_C3R(hls, 24, rgb, 24, {2, 1}), zilStatusOk);
    EXPECT_EQ(0, std::memcmp(rgb, rgb + 3, 12));
    EXPECT_FLOAT_EQ(rgb[0], 0.54f);  // m2 = 1.8 x 0.3
    EXPECT_FLOAT_EQ(rgb[1], 0.06f);  // m1 = 0.6 - 0.54
}

// Steps of 16-bit and float members are taken in elements: an odd byte step
// is one byte shorter.
TEST(HueSteps, ByteRemainderIsDropped) {
    uint16_t src[12], a[12], b[12];
    for (int i = 0; i < 12; ++i) src[i] = uint16_t(5000 * i + 77), a[i] = b[i] = 0;
    ASSERT_EQ(ziliRGBToHLS_16u_C3R(src, 13, a, 13, {2, 2}), zilStatusOk);
    ASSERT_EQ(ziliRGBToHLS_16u_C3R(src, 12, b, 12, {2, 2}), zilStatusOk);
    EXPECT_EQ(0, std::memcmp(a, b, sizeof a));
}

// ---- 8-bit sweeps ------------------------------------------------------------------------------
// Every (R, G) pair with 16 values of B (extremes, neighbours, halves), then a
// row of all greys: 4096 x 257 pixels.
// The BGR group rounds differently from the RGB group, by at most one. Round
// trips stay within what quantising the hue (half of 360 / 255 degrees, at
// most 3 levels at full chroma) and L or S (half a level, at most 1) cost,
// plus the output rounding: 4 levels for HSV, 5 for HLS, where S acts on both
// m1 and m2. Grey is exact everywhere: (0, g, 0) in HLS and back to g.
TEST(HueSweep, RgbAndBgrGroupsRoundTripsAndGrey) {
    const uint8_t kB[16] = {0, 1, 7, 31, 64, 99, 127, 128, 150, 181, 200, 222, 240, 253, 254, 255};
    const size_t px = 4096 * 257, n = 3 * px;
    std::vector<uint8_t> rgb(n), bgr(n), mid(n), back(n), pl(n);
    for (uint32_t i = 0; i < px; ++i) {
        const uint8_t v[3] = {uint8_t(i >> 12), uint8_t(i >> 4), kB[i & 15]};
        for (int c = 0; c < 3; ++c) rgb[3 * i + c] = i < (1u << 20) ? v[c] : uint8_t(i), bgr[3 * i + 2 - c] = rgb[3 * i + c];
    }
    uint8_t* hls[3] = {pl.data(), pl.data() + (n / 3), pl.data() + 2 * (n / 3)};
    ASSERT_EQ(ziliBGRToHLS_8u_C3P3R(bgr.data(), 3 * 4096, hls, 4096, {4096, 257}), zilStatusOk);
    struct Pair { decltype(&ziliRGBToHSV_8u_C3R) fwd, inv; int bound; };
    for (const Pair& p : {Pair{ziliRGBToHLS_8u_C3R, ziliHLSToRGB_8u_C3R, 5}, Pair{ziliRGBToHSV_8u_C3R, ziliHSVToRGB_8u_C3R, 4}}) {
        ASSERT_EQ(p.fwd(rgb.data(), 3 * 4096, mid.data(), 3 * 4096, {4096, 257}), zilStatusOk);
        int groups = 0, trip = 0;
        if (p.bound == 5)
            for (size_t i = 0; i < n; ++i) groups = std::max(groups, std::abs(int(mid[i]) - int(hls[i % 3][i / 3])));
        ASSERT_EQ(p.inv(mid.data(), 3 * 4096, back.data(), 3 * 4096, {4096, 257}), zilStatusOk);
        for (size_t i = 0; i < n; ++i) trip = std::max(trip, std::abs(int(rgb[i]) - int(back[i])));
        EXPECT_LE(groups, 1);
        EXPECT_LE(trip, p.bound);
        for (uint32_t g = 0; g < 256; ++g) {
            const size_t i = 3 * ((1u << 20) + g);
            EXPECT_EQ(back[i], g);
            if (p.bound == 5) EXPECT_TRUE(mid[i] == 0 && mid[i + 1] == g && mid[i + 2] == 0 && hls[1][i / 3] == g) << g;
        }
    }
}

}  // namespace
