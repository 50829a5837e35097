// Colour twist and tone mapping: check order, store rule per type, evaluation
// order, layouts against each other, overlapping rows, guard pages, tone-map
// statistics and statuses.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "guard.h"
#include "zilcc.h"

namespace {

// ---- the 24 three-channel members behind one signature -----------------------------
enum Kind { K8u, K16u, K16s, K32f };
struct Args {
    void* s[3];
    int ss;
    void* d[3];
    int ds;
    ZilSize roi;
    const float* tw;
};
template <class T, ZilStatus (*F)(const T*, int, T*, int, ZilSize, const float*)>
ZilStatus Pix(const Args& a) { return F(static_cast<const T*>(a.s[0]), a.ss, static_cast<T*>(a.d[0]), a.ds, a.roi, a.tw); }
template <class T, ZilStatus (*F)(T*, int, ZilSize, const float*)>
ZilStatus PixI(const Args& a) { return F(static_cast<T*>(a.s[0]), a.ss, a.roi, a.tw); }
template <class T, ZilStatus (*F)(const T* const*, int, T* const*, int, ZilSize, const float*)>
ZilStatus Pl(const Args& a) {
    const T* s[3] = {static_cast<T*>(a.s[0]), static_cast<T*>(a.s[1]), static_cast<T*>(a.s[2])};
    T* d[3] = {static_cast<T*>(a.d[0]), static_cast<T*>(a.d[1]), static_cast<T*>(a.d[2])};
    return F(s, a.ss, d, a.ds, a.roi, a.tw);
}
template <class T, ZilStatus (*F)(T* const*, int, ZilSize, const float*)>
ZilStatus PlI(const Args& a) {
    T* s[3] = {static_cast<T*>(a.s[0]), static_cast<T*>(a.s[1]), static_cast<T*>(a.s[2])};
    return F(s, a.ss, a.roi, a.tw);
}

struct Member {
    const char* name;
    Kind kind;
    int elem, pix;  // bytes a sample; samples a pixel in the row (1: planes)
    bool inPlace;
    ZilStatus (*fn)(const Args&);
};
#define ZT_TWIST(PFX, T, K)                                                                                        \
    Member{#PFX "_C3R", K, sizeof(T), 3, false, Pix<T, ziliColorTwist##PFX##_C3R>},                             \
    Member{#PFX "_AC4R", K, sizeof(T), 4, false, Pix<T, ziliColorTwist##PFX##_AC4R>},                           \
    Member{#PFX "_P3R", K, sizeof(T), 1, false, Pl<T, ziliColorTwist##PFX##_P3R>},                              \
    Member{#PFX "_C3IR", K, sizeof(T), 3, true, PixI<T, ziliColorTwist##PFX##_C3IR>},                           \
    Member{#PFX "_AC4IR", K, sizeof(T), 4, true, PixI<T, ziliColorTwist##PFX##_AC4IR>},                         \
    Member{#PFX "_IP3R", K, sizeof(T), 1, true, PlI<T, ziliColorTwist##PFX##_IP3R>}
const Member kMembers[] = {ZT_TWIST(_32f, float, K32f), ZT_TWIST(32f_8u, uint8_t, K8u),
                           ZT_TWIST(32f_16u, uint16_t, K16u), ZT_TWIST(32f_16s, int16_t, K16s)};

// An image of a member's layout: one buffer (interleaved) or three planes,
// rows padded by 8 bytes, pre-filled with 0x5A.
struct Image {
    const Member* m;
    int w, h, step;
    std::vector<uint8_t> p[3];
    Image(const Member& mm, int ww, int hh) : m(&mm), w(ww), h(hh), step(ww * mm.pix * mm.elem + 8) {
        for (int c = 0; c < (m->pix == 1 ? 3 : 1); ++c) p[c].assign(size_t(step) * h, 0x5A);
    }
    uint8_t* At(int x, int y, int ch) {
        return m->pix == 1 ? &p[ch][size_t(y) * step + size_t(x) * m->elem]
                           : &p[0][size_t(y) * step + size_t(x * m->pix + ch) * m->elem];
    }
    double Get(int x, int y, int ch) {
        const uint8_t* q = At(x, y, ch);
        switch (m->kind) {
            case K8u: return *q;
            case K16u: { uint16_t v; std::memcpy(&v, q, 2); return v; }
            case K16s: { int16_t v; std::memcpy(&v, q, 2); return v; }
            default: { float v; std::memcpy(&v, q, 4); return v; }
        }
    }
    void Set(int x, int y, int ch, double v) {
        uint8_t* q = At(x, y, ch);
        const uint16_t u = uint16_t(int32_t(v));
        const float f = float(v);
        m->kind == K8u ? void(*q = uint8_t(v)) : m->kind == K32f ? void(std::memcpy(q, &f, 4)) : void(std::memcpy(q, &u, 2));
    }
    void* Ptr(int c) { return m->pix == 1 ? p[c].data() : p[0].data(); }
};

ZilStatus Twist(Image& src, Image& dst, const float* tw, ZilSize roi, int ss, int ds, int nullPlane = -1) {
    Args a{{src.Ptr(0), src.Ptr(1), src.Ptr(2)}, ss, {dst.Ptr(0), dst.Ptr(1), dst.Ptr(2)}, ds, roi, tw};
    if (nullPlane >= 0) (nullPlane < 3 ? a.s[nullPlane] : a.d[nullPlane - 3]) = nullptr;
    return src.m->fn(a);
}
ZilStatus Twist(Image& src, Image& dst, const float* tw) {
    return Twist(src, dst, tw, ZilSize{src.w, src.h}, src.step, dst.step);
}

const float kIdentity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

TEST(ColorTwist, ChecksInOrderWriteNothing) {
    for (const Member& m : kMembers) {
        Image s(m, 3, 2), d(m, 3, 2);
        Image& dst = m.inPlace ? s : d;
        const std::vector<uint8_t> before = dst.p[0];
        const int st = s.step;
        EXPECT_EQ(Twist(s, dst, nullptr, {0, 2}, 0, st), zilStatusNullPointer) << m.name;
        if (m.pix == 1) {
            EXPECT_EQ(Twist(s, dst, kIdentity, {0, 2}, 0, st, 1), zilStatusNullPointer) << m.name;
            if (!m.inPlace) EXPECT_EQ(Twist(s, dst, kIdentity, {0, 2}, 0, st, 5), zilStatusNullPointer) << m.name;
        }
        EXPECT_EQ(Twist(s, dst, kIdentity, {0, 2}, 0, st), zilStatusBadSize) << m.name;
        EXPECT_EQ(Twist(s, dst, kIdentity, {3, -1}, -st, st), zilStatusBadSize) << m.name;
        EXPECT_EQ(Twist(s, dst, kIdentity, {3, 2}, 0, st), zilStatusBadStep) << m.name;
        EXPECT_EQ(Twist(s, dst, kIdentity, {3, 2}, -st, st), zilStatusBadStep) << m.name;
        if (!m.inPlace) EXPECT_EQ(Twist(s, dst, kIdentity, {3, 2}, st, 0), zilStatusBadStep) << m.name;
        EXPECT_EQ(dst.p[0], before) << m.name;
    }
}

// Hand-worked pixels on 9x2 images (the wide path and its tail), every member:
// zero multipliers with offsets leave the store rule of each type alone to
// decide; one row per type checks the matrix's orientation and grouping.
using M12 = std::array<float, 12>;
M12 Off(float a, float b, float c) { return {0, 0, 0, a, 0, 0, 0, b, 0, 0, 0, c}; }

TEST(ColorTwist, HandWorkedPixels) {
    const float nan = std::nanf(""), justAboveHalf = 0.50000006f;  // 0.5 + 2^-24: 0.5 + o ties to 1
    struct Case { Kind k; float in[3]; M12 tw; double want[3]; };
    const Case cases[] = {
        {K8u, {}, Off(2.5f, 3.5f, 254.6f), {2, 4, 255}},            {K8u, {}, Off(255, 300, -5), {255, 255, 0}},
        {K8u, {}, Off(nan, justAboveHalf, 0.49999997f), {0, 0, 0}}, {K8u, {}, Off(1.5f, 0, 128.5f), {2, 0, 128}},
        {K16u, {}, Off(2.5f, 65534.5f, 70000), {2, 65534, 65535}},  {K16u, {}, Off(-1, nan, justAboveHalf), {0, 0, 0}},
        {K16s, {}, Off(-2.5f, -3.5f, 2.5f), {-2, -4, 2}},           {K16s, {}, Off(40000, -40000, -32767.5f), {32767, -32768, -32768}},
        {K16s, {}, Off(nan, -0.5f, 32766.5f), {0, 0, 32766}},       {K32f, {}, Off(2.5f, -3.25f, 1e30f), {2.5, -3.25, 1e30f}},
        // 20.25 -> 20; 60; ((10 - 0.5) + 20) + 30 = 59.5, a tie -> 60.
        {K8u, {10, 20, 30}, {0, 1, 0, 0.25f, 0, 0, 2, 0, 1, 1, 1, -0.5f}, {20, 60, 60}},
        {K16s, {-10, 20, 30}, {0, 1, 0, 0.25f, 0, 0, 2, 0, 1, 1, 1, -0.5f}, {20, 60, 40}},  // 39.5 -> 40
        // x = 2^24: the offset 3 rounds up to 2^24 + 4 before y takes 1 off
        // (rounding to even again); x - 1 + 3 would be exact.
        {K32f, {16777216, 1, 0}, {1, -1, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0}, {16777220, 0, 0}},
    };
    for (const Case& c : cases)
        for (const Member& m : kMembers) {
            if (m.kind != c.k) continue;
            Image s(m, 9, 2), d(m, 9, 2);
            for (int y = 0; y < 2; ++y)
                for (int x = 0; x < 9; ++x)
                    for (int ch = 0; ch < 3; ++ch) s.Set(x, y, ch, c.in[ch]);
            Image& dst = m.inPlace ? s : d;
            ASSERT_EQ(Twist(s, dst, c.tw.data()), zilStatusOk) << m.name;
            for (int y = 0; y < 2; ++y)
                for (int x = 0; x < 9; ++x) {
                    for (int ch = 0; ch < 3; ++ch) EXPECT_EQ(dst.Get(x, y, ch), c.want[ch]) << m.name << " ch " << ch;
                    if (m.pix == 4) EXPECT_EQ(*dst.At(x, y, 3), 0x5A) << m.name << " alpha";
                }
        }
}

// Every layout and the in-place forms give the C3R result, pixel for pixel.
// Odd widths cover the wide paths' tails.
TEST(ColorTwist, LayoutsAndInPlaceAgree) {
    const float tw[12] = {0.8f, 0.3f, -0.2f, 7.25f, -0.41f, 1.3f, 0.11f, -3.5f, 0.25f, 0.25f, 0.5f, 0.5f};
    for (int w : {1, 6, 13}) {
        for (int base = 0; base < 24; base += 6) {
            const Member& ref = kMembers[base];
            Image rs(ref, w, 3), rd(ref, w, 3);
            for (int y = 0; y < 3; ++y)
                for (int x = 0; x < w; ++x)
                    for (int ch = 0; ch < 3; ++ch) rs.Set(x, y, ch, (x * 37 + y * 101 + ch * 53) % 251 - (ref.kind == K16s ? 100 : 0));
            ASSERT_EQ(Twist(rs, rd, tw), zilStatusOk);
            for (int k = 0; k < 6; ++k) {
                const Member& m = kMembers[base + k];
                Image s(m, w, 3), d(m, w, 3);
                for (int y = 0; y < 3; ++y)
                    for (int x = 0; x < w; ++x)
                        for (int ch = 0; ch < 3; ++ch) s.Set(x, y, ch, rs.Get(x, y, ch));
                Image& dst = m.inPlace ? s : d;
                ASSERT_EQ(Twist(s, dst, tw), zilStatusOk) << m.name;
                for (int y = 0; y < 3; ++y)
                    for (int x = 0; x < w; ++x)
                        for (int ch = 0; ch < 3; ++ch)
                            ASSERT_EQ(dst.Get(x, y, ch), rd.Get(x, y, ch)) << m.name << " w " << w << " at " << x;
            }
        }
    }
}

// A destination one pixel behind its source: each pixel reads what the
// previous one wrote, so adding 1 accumulates along the row.
TEST(ColorTwist, OverlappingRowsGoPixelByPixel) {
    const float add1[12] = {1, 0, 0, 1, 0, 1, 0, 1, 0, 0, 1, 1};
    for (int k : {0, 6}) {  // 32f C3R, 8u C3R
        const Member& m = kMembers[k];
        Image img(m, 12, 1);
        for (int ch = 0; ch < 3; ++ch) img.Set(0, 0, ch, 10 * (ch + 1));
        Args a{{img.Ptr(0)}, img.step, {img.At(1, 0, 0)}, img.step, ZilSize{11, 1}, add1};
        ASSERT_EQ(m.fn(a), zilStatusOk);
        for (int x = 1; x <= 11; ++x)
            for (int ch = 0; ch < 3; ++ch) EXPECT_EQ(img.Get(x, 0, ch), 10 * (ch + 1) + x) << m.name << " " << x;
    }
}

TEST(ColorTwist, WidePathStaysInsideTheRow) {
    for (int w = 5; w <= 11; ++w) {
        ziltest::GuardBuf src(size_t(3 * w)), dst(size_t(3 * w), 0x11);
        ziltest::FillRandom(src.data(), src.size(), uint32_t(w));
        ASSERT_EQ(ziliColorTwist32f_8u_C3R(src.data(), 3 * w, dst.data(), 3 * w, {w, 1}, kIdentity), zilStatusOk);
        EXPECT_EQ(0, std::memcmp(src.data(), dst.data(), size_t(3 * w))) << w;
    }
}

TEST(ColorTwist, C4AppliesAFourByFourMatrix) {
    // Row 0: x + w; row 1: y; row 2: 2 z; row 3: (x + y) + 0.5 w. All four stored.
    const float tw[16] = {1, 0, 0, 1, 0, 1, 0, 0, 0, 0, 2, 0, 1, 1, 0, 0.5f};
    float px[2][4] = {{1, 2, 3, 4}, {-1, 0.5f, 8, -2}}, out[2][4];
    ASSERT_EQ(ziliColorTwist_32f_C4R(&px[0][0], 16, &out[0][0], 16, {1, 2}, tw), zilStatusOk);
    EXPECT_EQ(std::vector<float>(&out[0][0], &out[0][0] + 8), (std::vector<float>{5, 2, 6, 5, -3, 0.5f, 16, -1.5f}));
    EXPECT_EQ(ziliColorTwist_32f_C4R(&px[0][0], 16, &out[0][0], 0, {1, 2}, tw), zilStatusBadStep);
    EXPECT_EQ(ziliColorTwist_32f_C4R(&px[0][0], 16, &out[0][0], 16, {1, 2}, nullptr), zilStatusNullPointer);
}

// ---- tone mapping ---------------------------------------------------------------------
using ToneFn = ZilStatus (*)(const float*, int, uint8_t*, int, ZilSize);

std::vector<uint8_t> Tone(ToneFn f, const std::vector<float>& img, int w, ZilStatus want) {
    const int h = int(img.size()) / w;
    std::vector<uint8_t> dst(size_t(w + 3) * h, 0x77);
    EXPECT_EQ(f(img.data(), 4 * w, dst.data(), w + 3, {w, h}), want);
    for (int y = 0; y < h; ++y)
        for (int x = w; x < w + 3; ++x) EXPECT_EQ(dst[size_t(y) * (w + 3) + x], 0x77);  // padding untouched
    std::vector<uint8_t> out;
    for (int y = 0; y < h; ++y) out.insert(out.end(), dst.begin() + y * (w + 3), dst.begin() + y * (w + 3) + w);
    return out;
}
using Bytes = std::vector<uint8_t>;
const ToneFn kLinear = ziliToneMapLinear_32f8u_C1R, kMean = ziliToneMapMean_32f8u_C1R;

TEST(ToneMap, ChecksAndStatuses) {
    float f = 1;
    uint8_t b = 9;
    for (ToneFn fn : {kLinear, kMean}) {
        EXPECT_EQ(fn(nullptr, 4, &b, 1, {0, 1}), zilStatusNullPointer);
        EXPECT_EQ(fn(&f, 4, nullptr, 1, {0, 1}), zilStatusNullPointer);
        EXPECT_EQ(fn(&f, 4, &b, 1, {1, 0}), zilStatusBadSize);
        EXPECT_EQ(b, 9);
        EXPECT_EQ(Tone(fn, {0, 0, 0, 0}, 2, zilStatusOk), Bytes(4, 0));  // all zero: filled with 0
        EXPECT_EQ(Tone(fn, {-1, -2, -3, -0.5f}, 2, zilStatusNegativeMaximum), Bytes(4, 0x77));
    }
    // Maximum 0 with negatives: filled with 0; the mean of the same is negative.
    EXPECT_EQ(Tone(kLinear, {-4, 0, -1, -2}, 2, zilStatusOk), Bytes(4, 0));
    EXPECT_EQ(Tone(kMean, {-4, 0, -1, -2}, 2, zilStatusNegativeMaximum), Bytes(4, 0x77));
    // A first sample NaN makes the maximum NaN: filled with 0.
    EXPECT_EQ(Tone(kLinear, {std::nanf(""), 5, 1, 2}, 2, zilStatusOk), Bytes(4, 0));
}

TEST(ToneMap, ScaleAndStore) {
    // Constant 2: k = 127.5 gives 255; twice the mean is 4, k = 63.75 gives 127.
    EXPECT_EQ(Tone(kLinear, std::vector<float>(6, 2.0f), 3, 0), Bytes(6, 255));
    EXPECT_EQ(Tone(kMean, std::vector<float>(6, 2.0f), 3, 0), Bytes(6, 127));
    // Maximum 255, k = 1: the linear form keeps the low byte of trunc(s)
    // (-1 -> 255, -256.5 -> 0, -257 -> 255), the mean form clamps.
    EXPECT_EQ(Tone(kLinear, {255, -1, -256.5f, -257, 3.99f, 0.5f}, 3, 0), (Bytes{255, 255, 0, 255, 3, 0}));
    // Mean 1, k = 127.5: 4 -> 510 clamps to 255, -0.1 -> trunc(-12.75) clamps to 0.
    EXPECT_EQ(Tone(kMean, {0, 0, 4, 1.1f, -0.1f, 1}, 3, 0), (Bytes{0, 0, 255, 140, 0, 127}));
    // 37 wide: the 16-sample path and its tails. i + 0.75 maps to i under k = 1.
    std::vector<float> ramp(37 * 3);
    for (size_t i = 0; i < ramp.size(); ++i) ramp[i] = float(i) + 0.75f;
    ramp[100] = 255.0f;
    Bytes want(ramp.size());
    for (size_t i = 0; i < want.size(); ++i) want[i] = uint8_t(i == 100 ? 255 : i);
    EXPECT_EQ(Tone(kLinear, ramp, 37, 0), want);
}

}  // namespace
