// The internal uniform generator: seeding, range, continuation, tags, checks.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "primitives/random.h"

namespace {

TEST(RandUniform, StateSizeAndSeedExpansion) {
    int32_t a = 0, b = 0;
    EXPECT_EQ(mx_zilsRandUniformGetSize_16s(&a), zilStatusOk);
    EXPECT_EQ(mx_zilsRandUniformGetSize_32f(&b), zilStatusOk);
    EXPECT_EQ(a, 56);
    EXPECT_EQ(b, 56);
    EXPECT_EQ(mx_zilsRandUniformGetSize_16s(nullptr), zilStatusNullPointer);
    zil::rnd::State s;
    ASSERT_EQ(mx_zilsRandUniformInit_16s(&s, 0, 1024, 0), zilStatusOk);
    EXPECT_EQ(s.tag, 36);
    EXPECT_EQ(s.x0, 0u);
    EXPECT_EQ(s.x1, 1013904243u);
    EXPECT_EQ(s.x2, 1013904243u * 69069u + 1013904243u);
    EXPECT_EQ(s.lcg, 1131199209u);
    EXPECT_EQ(s.carry, -1);
    EXPECT_EQ(s.mean, 512.0);
    EXPECT_EQ(s.scale, 1024.0 / 4294967296.0);
    EXPECT_EQ(mx_zilsRandUniformInit_16s(nullptr, 0, 1, 0), zilStatusNullPointer);
    EXPECT_EQ(mx_zilsRandUniformInit_32f(nullptr, 0, 1, 0), zilStatusNullPointer);
}

TEST(RandUniform, FirstValuesOfSeedZero) {
    zil::rnd::State s;
    mx_zilsRandUniformInit_16s(&s, 0, 1024, 0);
    int16_t v[8];
    ASSERT_EQ(mx_zilsRandUniform_16s(v, 8, &s), zilStatusOk);
    const int16_t want[8] = {1, 133, 217, 413, 361, 759, 844, 242};
    for (int i = 0; i < 8; ++i) EXPECT_EQ(v[i], want[i]) << i;
}

TEST(RandUniform, StreamContinuesAcrossCalls) {
    zil::rnd::State a, b, c;
    mx_zilsRandUniformInit_32f(&a, -0.5f, 1.5f, 7);
    std::memcpy(&b, &a, sizeof a);
    std::memcpy(&c, &a, sizeof a);
    float whole[8], part[8], one[1];
    mx_zilsRandUniform_32f(whole, 8, &a);
    mx_zilsRandUniform_32f(part, 3, &b);
    mx_zilsRandUniform_32f(part + 3, 5, &b);
    mx_zilsRandUniform_32f(one, 1, &c);
    EXPECT_EQ(0, std::memcmp(whole, part, sizeof whole));
    EXPECT_EQ(one[0], whole[0]);
    EXPECT_EQ(0, std::memcmp(&a, &b, sizeof a));
}

TEST(RandUniform, RangeCoversLowToHighInclusive) {
    zil::rnd::State s;
    mx_zilsRandUniformInit_16s(&s, 0, 1024, 0);
    std::vector<int16_t> v(200000);
    mx_zilsRandUniform_16s(v.data(), int32_t(v.size()), &s);
    int lo = 1 << 20, hi = -1;
    for (int16_t x : v) lo = x < lo ? x : lo, hi = x > hi ? x : hi;
    EXPECT_EQ(lo, 0);
    EXPECT_EQ(hi, 1024);
    zil::rnd::State f;
    mx_zilsRandUniformInit_32f(&f, -0.25f, 0.25f, 0);
    std::vector<float> g(4096);
    mx_zilsRandUniform_32f(g.data(), 4096, &f);
    for (float x : g) ASSERT_TRUE(x >= -0.25f && x <= 0.25f) << x;
    // A degenerate range gives its value throughout.
    mx_zilsRandUniformInit_32f(&f, 0.75f, 0.75f, 3);
    mx_zilsRandUniform_32f(g.data(), 16, &f);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(g[i], 0.75f);
}

TEST(RandUniform, ChecksInOrderChangeNothing) {
    zil::rnd::State s16, s32;
    mx_zilsRandUniformInit_16s(&s16, 0, 10, 1);
    mx_zilsRandUniformInit_32f(&s32, 0, 10, 1);
    zil::rnd::State keep;
    std::memcpy(&keep, &s16, sizeof keep);
    int16_t d16[2] = {-7, -7};
    float d32[2] = {-7, -7};
    EXPECT_EQ(mx_zilsRandUniform_16s(nullptr, 0, &s32), zilStatusNullPointer);
    EXPECT_EQ(mx_zilsRandUniform_16s(d16, 2, nullptr), zilStatusNullPointer);
    EXPECT_EQ(mx_zilsRandUniform_16s(d16, 0, &s32), zilStatusBadSize);
    EXPECT_EQ(mx_zilsRandUniform_16s(d16, 2, &s32), zilStatusBadContext);
    EXPECT_EQ(mx_zilsRandUniform_32f(d32, 2, &s16), zilStatusBadContext);
    EXPECT_EQ(mx_zilsRandUniform_32f(d32, -1, &s16), zilStatusBadSize);
    EXPECT_EQ(d16[0], -7);
    EXPECT_EQ(d32[0], -7.0f);
    EXPECT_EQ(0, std::memcmp(&keep, &s16, sizeof keep));
}

}  // namespace
