// YCoCg: size rules and null checks per member, hand-worked pixels (wraps,
// floors, clamps, the alpha argument) and exhaustive reversible round trips.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <functional>
#include <string>
#include <vector>

#include "guard.h"
#include "zilcc.h"

namespace {

using ziltest::GuardBuf;

// Uniform call: packed image, planes, one step each side, alpha.
struct Args {
    void* img;
    int imgStep;
    void* pl[3];
    int plStep;
    ZilSize sz;
    int32_t alpha;
    bool nullArr;
};
struct Member {
    const char* name;
    std::function<ZilStatus(const Args&)> call;
    int ch, imgElem, plElem;
    bool sizeChecked;  // -6 for width or height < 1; else height < 1 returns 0, width unchecked
};
#define F(fn, TI, TO, ch, chk)                                                                                 \
    {#fn, [](const Args& a) { return fn((const TI*)a.img, a.imgStep, a.nullArr ? nullptr : (TO* const*)a.pl, a.plStep, a.sz); }, \
     ch, int(sizeof(TI)), int(sizeof(TO)), chk}
#define I(fn, TI, TO, chk)                                                                                     \
    {#fn, [](const Args& a) { return fn(a.nullArr ? nullptr : (const TI* const*)a.pl, a.plStep, (TO*)a.img, a.imgStep, a.sz); }, \
     3, int(sizeof(TO)), int(sizeof(TI)), chk}
#define I4(fn, TI, TO, chk)                                                                                    \
    {#fn, [](const Args& a) { return fn(a.nullArr ? nullptr : (const TI* const*)a.pl, a.plStep, (TO*)a.img, a.imgStep, a.sz, a.alpha); }, \
     4, int(sizeof(TO)), int(sizeof(TI)), chk}
const Member kMembers[] = {
    F(ziliBGRToYCoCg_8u16s_C3P3R, uint8_t, int16_t, 3, true),
    F(ziliBGRToYCoCg_8u16s_C4P3R, uint8_t, int16_t, 4, true),
    F(ziliSBGRToYCoCg_16s_C3P3R, int16_t, int16_t, 3, true),
    F(ziliSBGRToYCoCg_16s_C4P3R, int16_t, int16_t, 4, true),
    F(ziliSBGRToYCoCg_16s32s_C3P3R, int16_t, int32_t, 3, true),
    F(ziliSBGRToYCoCg_16s32s_C4P3R, int16_t, int32_t, 4, false),
    F(ziliBGRToYCoCg_Rev_8u16s_C3P3R, uint8_t, int16_t, 3, true),
    F(ziliBGRToYCoCg_Rev_8u16s_C4P3R, uint8_t, int16_t, 4, true),
    F(ziliSBGRToYCoCg_Rev_16s_C3P3R, int16_t, int16_t, 3, false),
    F(ziliSBGRToYCoCg_Rev_16s_C4P3R, int16_t, int16_t, 4, false),
    F(ziliSBGRToYCoCg_Rev_16s32s_C3P3R, int16_t, int32_t, 3, true),
    F(ziliSBGRToYCoCg_Rev_16s32s_C4P3R, int16_t, int32_t, 4, false),
    F(ziliRGBToYCoCg_8u_C3P3R, uint8_t, uint8_t, 3, true),
    I(ziliYCoCgToBGR_16s8u_P3C3R, int16_t, uint8_t, false),
    I4(ziliYCoCgToBGR_16s8u_P3C4R, int16_t, uint8_t, false),
    I(ziliYCoCgToSBGR_16s_P3C3R, int16_t, int16_t, false),
    I4(ziliYCoCgToSBGR_16s_P3C4R, int16_t, int16_t, true),
    I(ziliYCoCgToSBGR_32s16s_P3C3R, int32_t, int16_t, true),
    I4(ziliYCoCgToSBGR_32s16s_P3C4R, int32_t, int16_t, true),
    I(ziliYCoCgToBGR_Rev_16s8u_P3C3R, int16_t, uint8_t, false),
    I4(ziliYCoCgToBGR_Rev_16s8u_P3C4R, int16_t, uint8_t, false),
    I(ziliYCoCgToSBGR_Rev_16s_P3C3R, int16_t, int16_t, false),
    I4(ziliYCoCgToSBGR_Rev_16s_P3C4R, int16_t, int16_t, false),
    I(ziliYCoCgToSBGR_Rev_32s16s_P3C3R, int32_t, int16_t, false),
    I4(ziliYCoCgToSBGR_Rev_32s16s_P3C4R, int32_t, int16_t, false),
    I(ziliYCoCgToRGB_8u_P3C3R, uint8_t, uint8_t, false),
};
#undef F
#undef I
#undef I4
void PrintTo(const Member& m, std::ostream* os) { *os << m.name; }
bool Forward(const Member& m) { return std::strstr(m.name, "ToYCoCg") != nullptr; }
const Member& Find(const std::string& n) {
    for (const Member& m : kMembers)
        if (n == m.name) return m;
    throw std::runtime_error(n);
}

// A w x h call with every buffer exact against a guard page, destination
// filled with 0x5A.
struct Bufs {
    const bool fwd;
    GuardBuf img, p0, p1, p2;
    Args a{};
    Bufs(const Member& m, int w, int h)
        : fwd(Forward(m)), img(size_t(w * h * m.ch * m.imgElem), fwd ? 0 : 0x5A),
          p0(size_t(w * h * m.plElem), fwd ? 0x5A : 0), p1(p0.size(), fwd ? 0x5A : 0), p2(p0.size(), fwd ? 0x5A : 0) {
        a = {img.data(), w * m.ch * m.imgElem, {p0.data(), p1.data(), p2.data()}, w * m.plElem, {w, h}, 0, false};
    }
    bool Untouched() const { return fwd ? p0.all(0x5A) && p1.all(0x5A) && p2.all(0x5A) : img.all(0x5A); }
};

class YcocgMember : public ::testing::TestWithParam<Member> {};

// Any null first; then the member's size rule. Nothing written on any of it.
TEST_P(YcocgMember, NullsThenSizeRule) {
    const Member& m = GetParam();
    const ZilSize sizes[] = {{3, 2}, {0, 2}, {-4, 2}, {3, 0}, {3, -1}};
    for (ZilSize s : sizes)
        for (int spoil = -1; spoil < 5; ++spoil) {
            Bufs b(m, 3, 2);
            Args a = b.a;
            a.sz = s;
            if (spoil == 3) a.img = nullptr;
            else if (spoil == 4) a.nullArr = true;
            else if (spoil >= 0) a.pl[spoil] = nullptr;
            const bool empty = s.width < 1 || s.height < 1;
            const ZilStatus want =
                spoil >= 0 ? zilStatusNullPointer : (m.sizeChecked && empty ? zilStatusBadSize : zilStatusOk);
            EXPECT_EQ(m.call(a), want) << m.name << " " << s.width << "x" << s.height << " null " << spoil;
            if (want != zilStatusOk || empty) EXPECT_TRUE(b.Untouched()) << m.name;
        }
}
// Whole rows (four pixels at a time) equal single columns, random samples.
TEST_P(YcocgMember, WholeRowsEqualSingleColumns) {
    const Member& m = GetParam();
    const int w = 23;
    Bufs whole(m, w, 1), cols(m, w, 1);
    for (Bufs* b : {&whole, &cols}) {
        GuardBuf* in[3] = {&b->p0, &b->p1, &b->p2};
        if (Forward(m)) ziltest::FillRandom(b->img.data(), b->img.size(), 5);
        else for (int k = 0; k < 3; ++k) ziltest::FillRandom(in[k]->data(), in[k]->size(), uint32_t(9 + k));
        b->a.alpha = 0x1234;
    }
    ASSERT_EQ(m.call(whole.a), zilStatusOk);
    for (int x = 0; x < w; ++x) {
        Args a = cols.a;
        a.sz = {1, 1};
        a.img = static_cast<uint8_t*>(a.img) + x * m.ch * m.imgElem;
        for (auto& p : a.pl) p = static_cast<uint8_t*>(p) + x * m.plElem;
        ASSERT_EQ(m.call(a), zilStatusOk);
    }
    if (Forward(m))
        EXPECT_TRUE(whole.p0.copy() == cols.p0.copy() && whole.p1.copy() == cols.p1.copy() &&
                    whole.p2.copy() == cols.p2.copy()) << m.name;
    else
        EXPECT_TRUE(whole.img.copy() == cols.img.copy()) << m.name;
}

INSTANTIATE_TEST_SUITE_P(Ycocg, YcocgMember, ::testing::ValuesIn(kMembers),
                         [](const auto& i) { return std::string(i.param.name + 4); });

// ---- hand-worked pixels -------------------------------------------------------------------
// Packed channels (B, G, R[, A]) or (R, G, B) against planes (Y, Co, Cg), as integers.
struct PixelCase { const char* member; int64_t img[4], pl[3]; int32_t alpha; };
void PrintTo(const PixelCase& c, std::ostream* os) { *os << c.member; }
int64_t Read(const uint8_t* p, int elem, bool isSigned) {
    if (elem == 1) return p[0];
    if (elem == 2) { int16_t v; std::memcpy(&v, p, 2); return isSigned ? v : uint16_t(v); }
    int32_t v; std::memcpy(&v, p, 4); return v;
}
void Write(uint8_t* p, int elem, int64_t v) {
    if (elem == 1) p[0] = uint8_t(v);
    else if (elem == 2) { const int16_t s = int16_t(v); std::memcpy(p, &s, 2); }
    else { const int32_t s = int32_t(v); std::memcpy(p, &s, 4); }
}

// Lossy (B, G, R) = (0, 0, 255): Y = 257 >> 2 = 64, Co = 256 >> 1 = 128,
// Cg = -253 >> 2 = -64. (3, 0, 0): Co = -2 >> 1 = -1, Y = 5 >> 2 = 1, Cg = -1 >> 2 = -1.
// SBGR (B, G, R) = (-32768, 0, 32767): Y = 1 >> 2 = 0, Cg = 3 >> 2 = 0, Co = 32768
// stored as -32768 in 16 bits. Reversible, 16 bits: Co = 65535 -> -1,
// t = -32768 + (-1 >> 1) = -32769 -> 32767, Cg = -32767, Y = 32767 - 16384 = 16383;
// in 32 bits Co = 65535, t = -1, Cg = 1, Y = -1.
// Biased RGB (255, 0, 0): Y = 64, Co = 128 + 128 = 256 -> 255, Cg = -64 + 128 = 64;
// (0, 0, 255): Co = (-254 >> 1) + 128 = 1. Back: (64, 255, 64) gives R = 255,
// G = 64 + 64 - 128 = 0, B = 64 - 255 - 64 + 256 = 1.
// Inverse 16s8u (32767, 1, 0): R = 32768 wraps to -32768 and clamps to 0;
// G = 32767 and B = 32766 clamp to 255. Alpha: low byte or low word.
const PixelCase kCases[] = {
    {"ziliBGRToYCoCg_8u16s_C3P3R", {0, 0, 255}, {64, 128, -64}, 0},
    {"ziliBGRToYCoCg_8u16s_C4P3R", {3, 0, 0, 9}, {1, -1, -1}, 0},
    {"ziliSBGRToYCoCg_16s_C3P3R", {-32768, 0, 32767}, {0, -32768, 0}, 0},
    {"ziliSBGRToYCoCg_16s32s_C3P3R", {-32768, 0, 32767}, {0, 32768, 0}, 0},
    {"ziliSBGRToYCoCg_Rev_16s_C3P3R", {-32768, 0, 32767}, {16383, -1, -32767}, 0},
    {"ziliSBGRToYCoCg_Rev_16s32s_C4P3R", {-32768, 0, 32767, 5}, {-1, 65535, 1}, 0},
    {"ziliRGBToYCoCg_8u_C3P3R", {255, 0, 0}, {64, 255, 64}, 0},
    {"ziliRGBToYCoCg_8u_C3P3R", {0, 0, 255}, {64, 1, 64}, 0},
    {"ziliYCoCgToRGB_8u_P3C3R", {255, 0, 1}, {64, 255, 64}, 0},
    {"ziliYCoCgToBGR_16s8u_P3C3R", {255, 255, 0}, {32767, 1, 0}, 0},
    {"ziliYCoCgToBGR_16s8u_P3C4R", {0, 64, 192, 0xFF}, {64, 128, 0}, 0x1FF},  // B = -64 clamps to 0
    {"ziliYCoCgToSBGR_16s_P3C4R", {32766, 32767, -32768, 0x2345}, {32767, 1, 0}, 0x12345},  // R keeps 16 bits
    {"ziliYCoCgToSBGR_Rev_16s_P3C3R", {-32768, 0, 32767}, {16383, -1, -32767}, 0},
    {"ziliYCoCgToSBGR_Rev_32s16s_P3C4R", {-32768, 0, 32767, -1}, {-1, 65535, 1}, -1},
};
class YcocgPixel : public ::testing::TestWithParam<PixelCase> {};
TEST_P(YcocgPixel, OnePixel) {
    const PixelCase& c = GetParam();
    const Member& m = Find(c.member);
    Bufs b(m, 1, 1);
    b.a.alpha = c.alpha;
    const bool fwd = Forward(m);
    uint8_t* pl[3] = {b.p0.data(), b.p1.data(), b.p2.data()};
    const bool imgSigned = std::strstr(m.name, "SBGR") != nullptr, plSigned = m.plElem > 1;
    for (int k = 0; k < m.ch; ++k)
        if (fwd) Write(b.img.data() + k * m.imgElem, m.imgElem, c.img[k]);
    for (int k = 0; k < 3; ++k)
        if (!fwd) Write(pl[k], m.plElem, c.pl[k]);
    ASSERT_EQ(m.call(b.a), zilStatusOk);
    if (fwd)
        for (int k = 0; k < 3; ++k) EXPECT_EQ(Read(pl[k], m.plElem, plSigned), c.pl[k]) << c.member << " plane " << k;
    else
        for (int k = 0; k < m.ch; ++k)
            EXPECT_EQ(Read(b.img.data() + k * m.imgElem, m.imgElem, imgSigned), c.img[k]) << c.member << " channel " << k;
}
INSTANTIATE_TEST_SUITE_P(Ycocg, YcocgPixel, ::testing::ValuesIn(kCases));

// ---- reversible round trips ------------------------------------------------------------------
// Every 8-bit BGR pixel (4096 x 4096, alpha carried by the C4 forms) returns
// exactly, with Co and Cg in -255..255.
TEST(YcocgReversible, EveryEightBitPixel) {
    std::vector<uint8_t> bgra(4u << 24), back(4u << 24);
    for (uint32_t i = 0; i < (1u << 24); ++i) std::memcpy(&bgra[4 * i], &i, 3), bgra[4 * i + 3] = 0x5A;
    std::vector<int16_t> y(1u << 24), co(1u << 24), cg(1u << 24);
    int16_t* pl[3] = {y.data(), co.data(), cg.data()};
    ASSERT_EQ(ziliBGRToYCoCg_Rev_8u16s_C4P3R(bgra.data(), 4 * 4096, pl, 2 * 4096, {4096, 4096}), zilStatusOk);
    for (uint32_t i = 0; i < (1u << 24); ++i)
        ASSERT_TRUE(co[i] >= -255 && co[i] <= 255 && cg[i] >= -255 && cg[i] <= 255 && y[i] >= 0 && y[i] <= 255) << i;
    ASSERT_EQ(ziliYCoCgToBGR_Rev_16s8u_P3C4R(pl, 2 * 4096, back.data(), 4 * 4096, {4096, 4096}, 0x15A), zilStatusOk);
    EXPECT_TRUE(back == bgra);
}

// 16-bit edge values: exact through the 32-bit pair, and modulo 65536 (so
// exactly, as 16-bit samples) through the 16-bit pair.
TEST(YcocgReversible, SixteenBitEdges) {
    const int16_t v[] = {-32768, -32767, -16385, -2, -1, 0, 1, 2, 16384, 32766, 32767};
    std::vector<int16_t> px;
    for (int16_t b : v)
        for (int16_t g : v)
            for (int16_t r : v) px.insert(px.end(), {b, g, r});
    const int n = int(px.size() / 3);
    std::vector<int16_t> back(px.size()), y(n), co(n), cg(n);
    std::vector<int32_t> y32(n), co32(n), cg32(n);
    int16_t* p16[3] = {y.data(), co.data(), cg.data()};
    int32_t* p32[3] = {y32.data(), co32.data(), cg32.data()};
    ASSERT_EQ(ziliSBGRToYCoCg_Rev_16s32s_C3P3R(px.data(), 6 * n, p32, 4 * n, {n, 1}), zilStatusOk);
    ASSERT_EQ(ziliYCoCgToSBGR_Rev_32s16s_P3C3R(p32, 4 * n, back.data(), 6 * n, {n, 1}), zilStatusOk);
    EXPECT_TRUE(back == px);
    std::fill(back.begin(), back.end(), int16_t(0));
    ASSERT_EQ(ziliSBGRToYCoCg_Rev_16s_C3P3R(px.data(), 6 * n, p16, 2 * n, {n, 1}), zilStatusOk);
    ASSERT_EQ(ziliYCoCgToSBGR_Rev_16s_P3C3R(p16, 2 * n, back.data(), 6 * n, {n, 1}), zilStatusOk);
    EXPECT_TRUE(back == px);
}

}  // namespace
