// ReduceBits: buffer sizes, check order, hand-worked quantiser, ordered and
// diffusion values, region phase, layouts, one-bit packing, guard pages.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "guard.h"
#include "zilcc.h"

namespace {

using ziltest::FillRandom;
using ziltest::GuardBuf;

// ---- the 32 members behind one signature ------------------------------------------
using RB = ZilStatus (*)(const void*, int, void*, int, ZilSize, int, ZilDither, int, uint8_t*);
template <class S, class D, ZilStatus (*F)(const S*, int, D*, int, ZilSize, int, ZilDither, int, uint8_t*)>
ZilStatus Thunk(const void* s, int ss, void* d, int ds, ZilSize r, int n, ZilDither dt, int l, uint8_t* b) {
    return F(static_cast<const S*>(s), ss, static_cast<D*>(d), ds, r, n, dt, l, b);
}

struct Member {
    std::string name;
    RB fn;
    int srcBytes, dstBytes;  // element sizes
    int elems;               // elements a pixel
    bool ac4;                // fourth element left alone
    int maxLevels;
};
// Test names print the member's name, not the struct's bytes (padding included).
void PrintTo(const Member& m, std::ostream* os) { *os << m.name; }

#define ZT_LAYOUTS(PAIR, S, D, MAXL)                                                                             \
    Member{#PAIR "_C1R", Thunk<S, D, ziliReduceBits_##PAIR##_C1R>, int(sizeof(S)), int(sizeof(D)), 1, false, MAXL}, \
    Member{#PAIR "_C3R", Thunk<S, D, ziliReduceBits_##PAIR##_C3R>, int(sizeof(S)), int(sizeof(D)), 3, false, MAXL}, \
    Member{#PAIR "_AC4R", Thunk<S, D, ziliReduceBits_##PAIR##_AC4R>, int(sizeof(S)), int(sizeof(D)), 4, true, MAXL}, \
    Member{#PAIR "_C4R", Thunk<S, D, ziliReduceBits_##PAIR##_C4R>, int(sizeof(S)), int(sizeof(D)), 4, false, MAXL}

const std::vector<Member>& Members() {
    static const std::vector<Member> m = {
        ZT_LAYOUTS(8u, uint8_t, uint8_t, 256),        ZT_LAYOUTS(16u, uint16_t, uint16_t, 65536),
        ZT_LAYOUTS(16s, int16_t, int16_t, 65536),     ZT_LAYOUTS(32f8u, float, uint8_t, 256),
        ZT_LAYOUTS(32f16u, float, uint16_t, 65536),   ZT_LAYOUTS(32f16s, float, int16_t, 65536),
        ZT_LAYOUTS(16u8u, uint16_t, uint8_t, 256),    ZT_LAYOUTS(16s8u, int16_t, uint8_t, 256),
    };
    return m;
}

int BufferSize(int w, int noise, ZilDither d) {
    int size = -1;
    EXPECT_EQ(ziliReduceBitsGetBufferSize(1, ZilSize{w, 1}, noise, d, &size), zilStatusOk);
    return size;
}

// ---- buffer size -------------------------------------------------------------------------
TEST(ReduceBitsBufferSize, SizesPerDitherAndNoise) {
    struct Case { ZilDither d; int noise, w, want; };
    const Case cases[] = {
        {zilDitherNone, 0, 7, 0},   {zilDitherNone, 50, 7, 0},
        {zilDitherBayer, 0, 7, 0},  {zilDitherBayer, 1, 7, 6336},  // 2 x 64 + 6144 tables, + 64
        {zilDitherFloydSteinberg, 0, 10, 160},                      // (2w + 4) x 4 + 64
        {zilDitherFloydSteinberg, 100, 10, 6432},                   // + 6272
        {zilDitherJarvisJudiceNinke, 0, 10, 232},                   // (3w + 12) x 4 + 64
        {zilDitherStucki, 0, 1, 124},  {zilDitherStucki, 5, 10, 6504},
    };
    for (const Case& c : cases) {
        for (int ch : {1, 3, 4, 9}) {
            int size = -1;
            EXPECT_EQ(ziliReduceBitsGetBufferSize(ch, ZilSize{c.w, 0}, c.noise, c.d, &size), zilStatusOk);
            EXPECT_EQ(size, c.want) << "dither " << c.d << " noise " << c.noise << " w " << c.w << " ch " << ch;
        }
    }
}

TEST(ReduceBitsBufferSize, ChecksInOrderWriteNothing) {
    struct Case { int ch, w, noise; ZilDither d; bool nullSize; ZilStatus want; };
    const Case cases[] = {
        {2, 0, 101, 9, true, zilStatusNullPointer},  {2, 0, 101, 9, false, zilStatusBadSize},
        {2, 5, 101, 9, false, zilStatusBadChannelCount}, {0, 5, 0, 0, false, zilStatusBadChannelCount},
        {1, 5, 101, 9, false, zilStatusBadNoise},    {9, 5, -1, 1, false, zilStatusBadNoise},
        {4, 5, 100, 5, false, zilStatusBadDitherType}, {3, 5, 0, -1, false, zilStatusBadDitherType},
    };
    for (const Case& c : cases) {
        int size = 12345;
        EXPECT_EQ(ziliReduceBitsGetBufferSize(c.ch, ZilSize{c.w, 1}, c.noise, c.d, c.nullSize ? nullptr : &size), c.want);
        EXPECT_EQ(size, 12345);
    }
}

// ---- statuses of the 32 members ---------------------------------------------------------
class ReduceBitsMember : public ::testing::TestWithParam<Member> {};

TEST_P(ReduceBitsMember, ChecksInOrderWriteNothing) {
    const Member& m = GetParam();
    const int w = 3, h = 2;
    std::vector<uint8_t> src(size_t(w) * h * m.elems * m.srcBytes, 7);
    const int ss = w * m.elems * m.srcBytes, ds = w * m.elems * m.dstBytes;
    const int bad16 = m.maxLevels + 1;
    std::vector<uint8_t> buf(size_t(BufferSize(w, 100, zilDitherStucki)));
    struct Case { bool nullSrc, nullDst; ZilSize sz; int noise, levels; ZilDither d; bool nullBuf; ZilStatus want; };
    const Case cases[] = {
        {true, false, {0, 0}, 101, 1, 9, true, zilStatusNullPointer},
        {false, true, {w, h}, 0, 2, 0, true, zilStatusNullPointer},
        {false, false, {0, h}, 101, 1, 9, true, zilStatusBadSize},
        {false, false, {w, -1}, 0, 2, 0, true, zilStatusBadSize},
        {false, false, {w, h}, 101, 1, 9, true, zilStatusBadNoise},
        {false, false, {w, h}, -1, 2, 0, true, zilStatusBadNoise},
        {false, false, {w, h}, 100, 1, 9, true, zilStatusBadLevels},
        {false, false, {w, h}, 0, 0, 0, true, zilStatusBadLevels},
        {false, false, {w, h}, 0, bad16, 0, true, zilStatusBadLevels},
        {false, false, {w, h}, 0, 2, 5, false, zilStatusBadDitherType},
        {false, false, {w, h}, 0, 2, -1, false, zilStatusBadDitherType},
        {false, false, {w, h}, 1, 2, zilDitherBayer, true, zilStatusNullPointer},
        {false, false, {w, h}, 0, 2, zilDitherFloydSteinberg, true, zilStatusNullPointer},
        {false, false, {w, h}, 3, 2, zilDitherFloydSteinberg, true, zilStatusNullPointer},
        {false, false, {w, h}, 0, 2, zilDitherJarvisJudiceNinke, true, zilStatusNullPointer},
        {false, false, {w, h}, 9, 2, zilDitherStucki, true, zilStatusNullPointer},
    };
    for (size_t i = 0; i < sizeof cases / sizeof cases[0]; ++i) {
        const Case& c = cases[i];
        std::vector<uint8_t> dst(size_t(w) * h * m.elems * m.dstBytes, 0x5A);
        const ZilStatus st = m.fn(c.nullSrc ? nullptr : src.data(), ss, c.nullDst ? nullptr : dst.data(), ds, c.sz,
                                  c.noise, c.d, c.levels, c.nullBuf ? nullptr : buf.data());
        EXPECT_EQ(st, c.want) << "case " << i;
        for (uint8_t b : dst) ASSERT_EQ(b, 0x5A) << "case " << i;
    }
    // Routes that need no buffer run without one; the top level count is valid.
    std::vector<uint8_t> dst(size_t(w) * h * m.elems * m.dstBytes, 0x5A);
    EXPECT_EQ(m.fn(src.data(), ss, dst.data(), ds, {w, h}, 100, zilDitherNone, 2, nullptr), zilStatusOk);
    EXPECT_EQ(m.fn(src.data(), ss, dst.data(), ds, {w, h}, 0, zilDitherBayer, m.maxLevels, nullptr), zilStatusOk);
}

// Every member, dither and noise on buffers that end (and start) at guard
// pages, the work buffer exactly as large as reported and at an odd address;
// padding between rows and AC4 alpha keep their bytes; the call repeats exactly
// and does not depend on the buffer's prior content.
TEST_P(ReduceBitsMember, GuardPagesUntouchedBytesRepeatable) {
    const Member& m = GetParam();
    for (int w : {1, 2, 5, 9}) {
        const int h = 3, pad = 3;
        const int srcRow = w * m.elems * m.srcBytes, dstRow = w * m.elems * m.dstBytes;
        const int ss = srcRow + pad * m.srcBytes, ds = dstRow + pad * m.dstBytes;
        GuardBuf src(ziltest::ImageBytes(h, srcRow, ss));
        FillRandom(src.data(), src.size(), 11u + w);
        if (m.srcBytes == 4) {  // floats in -0.25 .. 1.25
            for (size_t i = 0; i + 4 <= src.size(); i += 4) {
                const float f = -0.25f + 1.5f * float(src[i] | (src[i + 1] << 8)) / 65535.0f;
                std::memcpy(src.data() + i, &f, 4);
            }
        }
        for (ZilDither d : {zilDitherNone, zilDitherFloydSteinberg, zilDitherJarvisJudiceNinke, zilDitherStucki,
                            zilDitherBayer}) {
            for (int noise : {0, 37, 100}) {
                for (int levels : {2, 7, m.maxLevels}) {
                    const size_t bsize = size_t(BufferSize(w, noise, d));
                    GuardBuf buf(bsize + 1, 0xFF);
                    GuardBuf dst(ziltest::ImageBytes(h, dstRow, ds), 0x3C, GuardBuf::Before);
                    uint8_t* b = bsize ? buf.data() + 1 : nullptr;
                    ASSERT_EQ(m.fn(src.data(), ss, dst.data(), ds, {w, h}, noise, d, levels, b), zilStatusOk)
                        << "dither " << d << " noise " << noise;
                    std::vector<uint8_t> first = dst.copy();
                    for (int y = 0; y < h; ++y) {
                        const uint8_t* row = dst.data() + size_t(y) * ds;
                        if (y + 1 < h)
                            for (int i = dstRow; i < ds; ++i) ASSERT_EQ(row[i], 0x3C) << "padding";
                        if (m.ac4)
                            for (int x = 0; x < w; ++x)
                                for (int k = 0; k < m.dstBytes; ++k)
                                    ASSERT_EQ(row[(x * 4 + 3) * m.dstBytes + k], 0x3C) << "alpha";
                    }
                    std::memset(buf.data(), 0x00, buf.size());
                    ASSERT_EQ(m.fn(src.data(), ss, dst.data(), ds, {w, h}, noise, d, levels, b), zilStatusOk);
                    ASSERT_EQ(dst.copy(), first) << "dither " << d << " noise " << noise << " levels " << levels;
                }
            }
        }
    }
}

// The region's own corner is the origin of the matrix phase and of the noise:
// a region inside a larger image gives what the same pixels give alone.
TEST_P(ReduceBitsMember, RegionResultIndependentOfPlace) {
    const Member& m = GetParam();
    const int W = 23, H = 13, x0 = 5, y0 = 3, w = 14, h = 9;
    const int ss = W * m.elems * m.srcBytes, ds = W * m.elems * m.dstBytes;
    std::vector<uint8_t> big(size_t(ss) * H);
    FillRandom(big.data(), big.size(), 99);
    if (m.srcBytes == 4)
        for (size_t i = 0; i < big.size(); i += 4) {
            const float f = float(big[i]) / 255.0f;
            std::memcpy(&big[i], &f, 4);
        }
    const int ssSmall = w * m.elems * m.srcBytes, dsSmall = w * m.elems * m.dstBytes;
    std::vector<uint8_t> small(size_t(ssSmall) * h);
    for (int y = 0; y < h; ++y)
        std::memcpy(&small[size_t(y) * ssSmall], &big[size_t(y + y0) * ss + size_t(x0) * m.elems * m.srcBytes], ssSmall);
    std::vector<uint8_t> buf(size_t(BufferSize(W, 100, zilDitherStucki)));
    for (ZilDither d : {zilDitherBayer, zilDitherFloydSteinberg, zilDitherStucki}) {
        for (int noise : {0, 60}) {
            std::vector<uint8_t> outBig(size_t(ds) * H, 0), outSmall(size_t(dsSmall) * h, 0);
            const size_t off = size_t(y0) * ss + size_t(x0) * m.elems * m.srcBytes;
            const size_t offD = size_t(y0) * ds + size_t(x0) * m.elems * m.dstBytes;
            ASSERT_EQ(m.fn(big.data() + off, ss, outBig.data() + offD, ds, {w, h}, noise, d, 5, buf.data()), 0);
            ASSERT_EQ(m.fn(small.data(), ssSmall, outSmall.data(), dsSmall, {w, h}, noise, d, 5, buf.data()), 0);
            for (int y = 0; y < h; ++y)
                ASSERT_EQ(0, std::memcmp(&outSmall[size_t(y) * dsSmall], &outBig[offD + size_t(y) * ds], dsSmall))
                    << "dither " << d << " noise " << noise << " row " << y;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, ReduceBitsMember, ::testing::ValuesIn(Members()),
                         [](const auto& i) { return i.param.name; });

// ---- hand-worked values ------------------------------------------------------------------
// Runs an 8u C1 call on a w x h image and returns the output.
std::vector<uint8_t> Run8u(const std::vector<uint8_t>& in, int w, int h, ZilDither d, int levels, int noise = 0) {
    std::vector<uint8_t> out(in.size(), 0x77);
    std::vector<uint8_t> buf(size_t(BufferSize(w, noise, d)) + 1);
    EXPECT_EQ(ziliReduceBits_8u_C1R(in.data(), w, out.data(), w, {w, h}, noise, d, levels, buf.data()), zilStatusOk);
    return out;
}

TEST(ReduceBitsPlain, Levels2And4On8u) {
    // levels 2: the half step lies between 127 and 128. levels 4: 128/255 -> index
    // trunc(3 x 0.50196 + 0.5) = 2 -> 2/3 x 255 + 0.5 = 170.5 -> 170.
    std::vector<uint8_t> in = {0, 127, 128, 255};
    EXPECT_EQ(Run8u(in, 4, 1, zilDitherNone, 2), (std::vector<uint8_t>{0, 0, 255, 255}));
    EXPECT_EQ(Run8u({128}, 1, 1, zilDitherNone, 4), (std::vector<uint8_t>{170}));
}

TEST(ReduceBitsPlain, TopLevelCountIsIdentity) {
    std::vector<uint8_t> in(256 * 20);
    for (size_t i = 0; i < in.size(); ++i) in[i] = uint8_t(i * 7);
    EXPECT_EQ(Run8u(in, 256, 20, zilDitherNone, 256), in);  // large: every value once per row
    std::vector<uint16_t> v = {0, 1, 2, 255, 256, 32767, 32768, 65533, 65534, 65535}, o(v.size());
    ASSERT_EQ(ziliReduceBits_16u_C1R(v.data(), 20, o.data(), 20, {10, 1}, 0, zilDitherNone, 65536, nullptr), 0);
    EXPECT_EQ(o, v);
}

TEST(ReduceBitsPlain, SignedExtremesAndFloatWrap) {
    const int16_t s[2] = {-32768, 32767};
    int16_t d[2] = {0, 0};
    ASSERT_EQ(ziliReduceBits_16s_C1R(s, 4, d, 4, {2, 1}, 0, zilDitherNone, 2, nullptr), 0);
    EXPECT_EQ(d[0], -32768);
    EXPECT_EQ(d[1], 32767);
    // 1.5 is held at the top; -0.002 rounds to 0; -0.01 gives r = trunc(-2/255 x 255 + 0.5) = -1,
    // whose low byte is 255.
    const float f[3] = {1.5f, -0.002f, -0.01f};
    uint8_t o[3] = {0, 0, 0};
    ASSERT_EQ(ziliReduceBits_32f8u_C1R(f, 12, o, 3, {3, 1}, 0, zilDitherNone, 256, nullptr), 0);
    EXPECT_EQ(o[0], 255);
    EXPECT_EQ(o[1], 0);
    EXPECT_EQ(o[2], 255);
}

TEST(ReduceBitsPlain, Ac4KeepsAlphaC4QuantisesIt) {
    const uint8_t s[8] = {200, 100, 20, 200, 0, 255, 128, 127};
    uint8_t a[8], c[8];
    std::memset(a, 9, 8), std::memset(c, 9, 8);
    ASSERT_EQ(ziliReduceBits_8u_AC4R(s, 8, a, 8, {2, 1}, 0, zilDitherNone, 2, nullptr), 0);
    ASSERT_EQ(ziliReduceBits_8u_C4R(s, 8, c, 8, {2, 1}, 0, zilDitherNone, 2, nullptr), 0);
    EXPECT_EQ(std::vector<uint8_t>(a, a + 8), (std::vector<uint8_t>{255, 0, 0, 9, 0, 255, 255, 9}));
    EXPECT_EQ(std::vector<uint8_t>(c, c + 8), (std::vector<uint8_t>{255, 0, 0, 255, 0, 255, 255, 0}));
}

// levels 8 on 8u: levelMul = trunc(65280/7 + 0.000009) = 9325, so the top level
// is bits 8..15 of 7 x 9325 = 65275, that is 254; the plain route reaches 255.
// For 250: step 36.43, index trunc(250 x 7/255) = 6, remainder 31.43.
TEST(ReduceBitsLevelMul, TopLevelIs254AtSevenSteps) {
    EXPECT_EQ(Run8u({250}, 1, 1, zilDitherNone, 8)[0], 255);
    EXPECT_EQ(Run8u({250}, 1, 1, zilDitherFloydSteinberg, 8)[0], 254);  // 31.43 > 18.21: up
    EXPECT_EQ(Run8u({250}, 1, 1, zilDitherStucki, 8)[0], 254);
    // Bayer column 0, thresholds 0, 12/15, 3/15 and 15/15 of a step (0, 29.14,
    // 7.29, 36.43): the remainder 31.43 lifts the first three to 254, not the
    // last (6 x 9325 >> 8 = 218).
    EXPECT_EQ(Run8u({250, 250, 250, 250}, 1, 4, zilDitherBayer, 8), (std::vector<uint8_t>{254, 254, 254, 218}));
    // Saturated white takes the top value 255 in diffusion.
    EXPECT_EQ(Run8u({255}, 1, 1, zilDitherFloydSteinberg, 8)[0], 255);
}

// levels 2, 128 everywhere: step 255, remainder 128 against k/15 x 255, lifted
// where k <= 7 (119 < 128 < 136).
TEST(ReduceBitsBayer, MatrixPatternAllLayouts) {
    const uint8_t want[4][4] = {{255, 0, 255, 0}, {0, 255, 0, 255}, {255, 0, 255, 0}, {0, 255, 0, 255}};
    for (int big : {0, 1}) {  // 8 x 8, and 128 x 80 (a table route for large 8-bit images)
        const int w = big ? 128 : 8, h = big ? 80 : 8;
        for (int elems : {1, 3, 4}) {
            std::vector<uint8_t> in(size_t(w) * h * elems, 128);
            for (int c4 : {0, 1}) {
                if (elems != 4 && c4) continue;
                std::vector<uint8_t> out(in.size(), 1);
                const int st = w * elems;
                ZilStatus s = elems == 1 ? ziliReduceBits_8u_C1R(in.data(), st, out.data(), st, {w, h}, 0, zilDitherBayer, 2, nullptr)
                            : elems == 3 ? ziliReduceBits_8u_C3R(in.data(), st, out.data(), st, {w, h}, 0, zilDitherBayer, 2, nullptr)
                            : c4 ? ziliReduceBits_8u_C4R(in.data(), st, out.data(), st, {w, h}, 0, zilDitherBayer, 2, nullptr)
                                 : ziliReduceBits_8u_AC4R(in.data(), st, out.data(), st, {w, h}, 0, zilDitherBayer, 2, nullptr);
                ASSERT_EQ(s, 0);
                for (int y = 0; y < h; ++y)
                    for (int x = 0; x < w; ++x)
                        for (int c = 0; c < elems; ++c) {
                            const uint8_t expect = (elems == 4 && c == 3 && !c4) ? 1 : want[y & 3][x & 3];
                            ASSERT_EQ(out[(size_t(y) * w + x) * elems + c], expect) << x << "," << y << "," << c;
                        }
            }
        }
    }
}

TEST(ReduceBitsBayer, NoiseLiftsSomeZeroRemainders) {
    // Input 0 has remainder 0: nothing lifts without noise; at noise 100 the
    // threshold (k/15 + n) runs down to -1 step, so some elements lift.
    std::vector<uint8_t> in(64 * 16, 0);
    const auto plain = Run8u(in, 64, 16, zilDitherBayer, 2, 0);
    const auto noisy = Run8u(in, 64, 16, zilDitherBayer, 2, 100);
    int lifted = 0;
    for (size_t i = 0; i < in.size(); ++i) {
        EXPECT_EQ(plain[i], 0);
        ASSERT_TRUE(noisy[i] == 0 || noisy[i] == 255);
        lifted += noisy[i] == 255;
    }
    EXPECT_GT(lifted, 0);
    EXPECT_LT(lifted, int(in.size()) / 2);
}

// ---- error diffusion -----------------------------------------------------------------------
TEST(ReduceBitsDiffusion, TopLevelCountLeavesImageUnchanged) {
    // Step 1 and every value a level: all errors are 0.
    std::vector<uint8_t> in(37 * 5 * 4);
    FillRandom(in.data(), in.size(), 5);
    std::vector<uint8_t> buf(size_t(BufferSize(37, 0, zilDitherStucki)));
    for (ZilDither d : {zilDitherFloydSteinberg, zilDitherJarvisJudiceNinke, zilDitherStucki}) {
        std::vector<uint8_t> out(in.size());
        ASSERT_EQ(ziliReduceBits_8u_C4R(in.data(), 148, out.data(), 148, {37, 5}, 0, d, 256, buf.data()), 0);
        EXPECT_EQ(out, in) << "dither " << d;
        std::vector<uint16_t> in16(37 * 3), out16(in16.size());
        for (size_t i = 0; i < in16.size(); ++i) in16[i] = uint16_t(i * 1777);
        ASSERT_EQ(ziliReduceBits_16u_C3R(in16.data(), 222, out16.data(), 222, {37, 1}, 0, d, 65536, buf.data()), 0);
        EXPECT_EQ(out16, in16) << "dither " << d;
    }
}

TEST(ReduceBitsDiffusion, FloydSteinbergFirstRow) {
    // 128: remainder 128 > 127.5, up to 255, error -127; x = 1: -127 x 7/16 =
    // -55.56, t = 72.44, down; x = 2: 72.44 x 7/16 = 31.69, t = 159.69, up.
    EXPECT_EQ(Run8u({128, 128, 128}, 3, 1, zilDitherFloydSteinberg, 2), (std::vector<uint8_t>{255, 0, 255}));
}

TEST(ReduceBitsDiffusion, WidthOneTakesOnlyTheErrorFromAbove) {
    // Floyd-Steinberg, weight 5/16 from above: 100 -> 0 (error 100); 100 + 31.25 =
    // 131.25 -> 255 (error -123.75); 170 - 38.67 = 131.33 -> 255. Weights 3 or 1
    // would leave the second pixel 0, weight 7 the third.
    EXPECT_EQ(Run8u({100, 100, 170}, 1, 3, zilDitherFloydSteinberg, 2), (std::vector<uint8_t>{0, 255, 255}));
    // 12 neighbours, weight w7 from above: Stucki 120 x 8/42 = 22.86, 105 + 22.86 =
    // 127.86 -> 255; Jarvis-Judice-Ninke 120 x 7/48 = 17.5, 122.5 -> 0.
    EXPECT_EQ(Run8u({120, 105}, 1, 2, zilDitherStucki, 2), (std::vector<uint8_t>{0, 255}));
    EXPECT_EQ(Run8u({120, 105}, 1, 2, zilDitherJarvisJudiceNinke, 2), (std::vector<uint8_t>{0, 0}));
}

TEST(ReduceBitsDiffusion, ErrorCarriesFromChannelToChannel) {
    std::vector<uint8_t> buf(size_t(BufferSize(1, 0, zilDitherFloydSteinberg)));
    // One pixel: R 100 -> 0 leaves 100; G sees it from "above": 131.25 -> 255,
    // error -123.75; B: 100 - 38.67 -> 0. Without the carry-over G would be 0.
    const uint8_t px[3] = {100, 100, 100};
    uint8_t out[3] = {1, 1, 1};
    ASSERT_EQ(ziliReduceBits_8u_C3R(px, 3, out, 3, {1, 1}, 0, zilDitherFloydSteinberg, 2, buf.data()), 0);
    EXPECT_EQ(std::vector<uint8_t>(out, out + 3), (std::vector<uint8_t>{0, 255, 0}));
    // Two rows: channel 1 starts below the LAST row of channel 0. R column 100, 0:
    // 0 (error 100), then 31.25 -> 0 (error 31.25). G 110 + 9.77 = 119.77 -> 0;
    // from the first row instead it would be 141.25 -> 255.
    const uint8_t col[6] = {100, 110, 110, 0, 0, 0};
    uint8_t o2[6];
    ASSERT_EQ(ziliReduceBits_8u_C3R(col, 3, o2, 3, {1, 2}, 0, zilDitherFloydSteinberg, 2, buf.data()), 0);
    EXPECT_EQ(o2[0], 0);
    EXPECT_EQ(o2[1], 0);
}

TEST(ReduceBitsDiffusion, FloatSaturationLimits) {
    // 0 lies below the bottom limit 2^-23 and 1 at the top: both saturate.
    const float f[4] = {0.0f, 1.0f, 0.0f, 1.0f};
    uint8_t o[4] = {7, 7, 7, 7};
    std::vector<uint8_t> buf(size_t(BufferSize(4, 0, zilDitherFloydSteinberg)));
    ASSERT_EQ(ziliReduceBits_32f8u_C1R(f, 16, o, 4, {4, 1}, 0, zilDitherFloydSteinberg, 4, buf.data()), 0);
    EXPECT_EQ(std::vector<uint8_t>(o, o + 4), (std::vector<uint8_t>{0, 255, 0, 255}));
    int16_t s[4];
    ASSERT_EQ(ziliReduceBits_32f16s_C1R(f, 16, s, 8, {4, 1}, 0, zilDitherFloydSteinberg, 4, buf.data()), 0);
    EXPECT_EQ(s[0], -32768);
    EXPECT_EQ(s[1], 32767);
}

TEST(ReduceBitsDiffusion, NoiseChangesLevelsOfAnExactImage) {
    // At 256 levels without noise every error is 0; with noise 100 the limit
    // runs from -0.5 to 1.5 steps, so some zero remainders go up a level.
    std::vector<uint8_t> in(64 * 8, 100);
    EXPECT_EQ(Run8u(in, 64, 8, zilDitherFloydSteinberg, 256, 0), in);
    const auto noisy = Run8u(in, 64, 8, zilDitherFloydSteinberg, 256, 100);
    EXPECT_NE(noisy, in);
    for (uint8_t v : noisy) ASSERT_TRUE(v >= 99 && v <= 102) << int(v);
}

// ---- one bit ---------------------------------------------------------------------------------
ZilStatus OneBit(const uint8_t* s, uint8_t* d, int off, ZilSize sz, ZilDither dt, uint8_t thr, uint8_t* buf,
                 int ss = 0, int ds = 0) {
    return ziliReduceBits_8u1u_C1R(s, ss ? ss : sz.width, d, ds ? ds : 8, off, sz, 0, 0, dt, thr, buf);
}

TEST(ReduceBitsOneBit, StatedPackingCases) {
    const uint8_t zeros[16] = {0};
    uint8_t d[3];
    std::memset(d, 0xFF, 3);  // offset 3, width 2: 3 bits kept, 2 new, 3 cleared
    ASSERT_EQ(OneBit(zeros, d, 3, {2, 1}, zilDitherNone, 0, nullptr), 0);
    EXPECT_EQ(d[0], 0xE0);
    EXPECT_EQ(d[1], 0xFF);
    std::memset(d, 0xFF, 3);  // offset 11 = 3, width 10: 5 + 5 pixels, low 3 bits of byte 1 kept
    ASSERT_EQ(OneBit(zeros, d, 11, {10, 1}, zilDitherNone, 0, nullptr), 0);
    EXPECT_EQ(d[0], 0xE0);
    EXPECT_EQ(d[1], 0x07);
    EXPECT_EQ(d[2], 0xFF);
    const uint8_t whites[8] = {255, 255, 255, 255, 255, 255, 255, 255};
    std::memset(d, 0x00, 3);
    ASSERT_EQ(OneBit(whites, d, 0, {8, 1}, zilDitherNone, 254, nullptr), 0);
    EXPECT_EQ(d[0], 0xFF);
    EXPECT_EQ(d[1], 0x00);
    ASSERT_EQ(OneBit(whites, d, 0, {8, 1}, zilDitherNone, 255, nullptr), 0);
    EXPECT_EQ(d[0], 0x00);  // nothing is above 255
}

// Offsets 0..11 and widths within one byte and over several: every output bit
// is the pixel's decision, bits before the row are kept, bits after it kept
// unless the whole row sits inside the first byte (then cleared).
TEST(ReduceBitsOneBit, PackingGridAgainstBitRules) {
    for (int off = 0; off < 12; ++off) {
        for (int w : {1, 2, 3, 4, 5, 7, 8, 9, 10, 13, 16, 17, 30}) {
            std::vector<uint8_t> src(static_cast<size_t>(w));
            FillRandom(src.data(), src.size(), uint32_t(off * 100 + w));
            GuardBuf dst(6, 0xA5);
            ASSERT_EQ(OneBit(src.data(), dst.data(), off, {w, 1}, zilDitherNone, 127, nullptr), 0);
            const int o = off & 7;
            const bool fitsFirst = o != 0 && 8 - o >= w;
            for (int bit = 0; bit < 48; ++bit) {
                const int got = (dst[size_t(bit / 8)] >> (7 - bit % 8)) & 1;
                const int old = (0xA5 >> (7 - bit % 8)) & 1;
                int want;
                if (bit < o) want = old;
                else if (bit < o + w) want = src[size_t(bit - o)] > 127;
                else if (bit < 8 && fitsFirst) want = 0;
                else if (bit < (o + w + 7) / 8 * 8) want = old;
                else want = old;  // bytes beyond the row are not touched
                ASSERT_EQ(got, want) << "offset " << off << " width " << w << " bit " << bit;
            }
        }
    }
}

TEST(ReduceBitsOneBit, StuckiHandValues) {
    std::vector<uint8_t> buf(size_t(BufferSize(9, 0, zilDitherStucki)));
    // Column 128, 128 at threshold 128: v = 128 x 8192 is not above the limit:
    // 0, error 1024; next v = 1048576 + 8 x 1024 x 23 = 1236992 > limit: 1.
    const uint8_t col[2] = {128, 128};
    uint8_t d[2] = {0, 0};
    ASSERT_EQ(OneBit(col, d, 0, {1, 2}, zilDitherStucki, 128, buf.data(), 1, 1), 0);
    EXPECT_EQ(d[0] & 0x80, 0);
    EXPECT_EQ(d[1] & 0x80, 0x80);
    EXPECT_EQ(d[0] & 0x7F, 0);  // the partial byte keeps its (zero) low bits
    // The same along a row, from the left with weight 8.
    d[0] = 0;
    ASSERT_EQ(OneBit(col, d, 0, {2, 1}, zilDitherStucki, 128, buf.data()), 0);
    EXPECT_EQ(d[0], 0x40);
    // Flat 0 at threshold 0: v = 0 is not above 0.
    const uint8_t zeros[9] = {0};
    uint8_t z[4] = {0xFF, 0xFF, 0xFF, 0xFF};
    ASSERT_EQ(OneBit(zeros, z, 0, {9, 1}, zilDitherStucki, 0, buf.data()), 0);
    EXPECT_EQ(z[0], 0x00);
    EXPECT_EQ(z[1], 0x7F);
}

TEST(ReduceBitsOneBit, ChecksInOrderWriteNothing) {
    const uint8_t s[4] = {1, 2, 3, 4};
    uint8_t buf[256];
    struct Case { bool nullSrc, nullDst; ZilSize sz; int off; ZilDither d; bool nullBuf; ZilStatus want; };
    const Case cases[] = {
        {true, false, {0, 0}, -1, 9, true, zilStatusNullPointer},
        {false, true, {4, 1}, 0, 0, true, zilStatusNullPointer},
        {false, false, {0, 1}, 0, 9, true, zilStatusBadSize},
        {false, false, {4, 0}, 0, 9, true, zilStatusBadSize},
        {false, false, {4, 1}, -1, 9, true, zilStatusBadSize},
        {false, false, {4, 1}, 0, zilDitherFloydSteinberg, true, zilStatusBadDitherType},
        {false, false, {4, 1}, 0, zilDitherJarvisJudiceNinke, false, zilStatusBadDitherType},
        {false, false, {4, 1}, 0, zilDitherBayer, false, zilStatusBadDitherType},
        {false, false, {4, 1}, 0, zilDitherStucki, true, zilStatusNullPointer},
    };
    for (const Case& c : cases) {
        uint8_t d[2] = {0x5A, 0x5A};
        EXPECT_EQ(OneBit(c.nullSrc ? nullptr : s, c.nullDst ? nullptr : d, c.off, c.sz, c.d, 1, c.nullBuf ? nullptr : buf),
                  c.want);
        EXPECT_EQ(d[0], 0x5A);
    }
    uint8_t d[2] = {0, 0};
    EXPECT_EQ(OneBit(s, d, 0, {4, 1}, zilDitherNone, 1, nullptr), zilStatusOk);
}

TEST(ReduceBitsOneBit, StuckiGuardedExactBuffer) {
    for (int w : {1, 3, 11, 40}) {
        const int h = 4;
        GuardBuf src(size_t(w) * h);
        FillRandom(src.data(), src.size(), uint32_t(w));
        const int ds = (w + 7) / 8 + 1;
        GuardBuf dst(size_t(ds) * h, 0);
        GuardBuf buf(size_t(BufferSize(w, 0, zilDitherStucki)), 0xEE);
        ASSERT_EQ(ziliReduceBits_8u1u_C1R(src.data(), w, dst.data(), ds, 5, {w, h}, 0, 0, zilDitherStucki, 128,
                                          buf.data()),
                  0);
        const auto first = dst.copy();
        std::memset(buf.data(), 0x11, buf.size());
        ASSERT_EQ(ziliReduceBits_8u1u_C1R(src.data(), w, dst.data(), ds, 5, {w, h}, 0, 0, zilDitherStucki, 128,
                                          buf.data()),
                  0);
        EXPECT_EQ(dst.copy(), first);
    }
}

}  // namespace
