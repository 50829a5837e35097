// CFAToRGB (gradient-steered Bayer demosaicing), 8u and 16u.
//
// Expected pixels are worked out by hand from the rules; the wider checks are
// properties: flat stays flat, the mirror images and the transpose of a mosaic
// give the mirrored output, a region equals the same part of a whole-image
// call, and nothing outside the plane is read or outside the region written.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "guard.h"
#include "zilcc.h"

namespace {

using ziltest::GuardBuf;

struct Depth8 {
    using T = uint8_t;
    static constexpr int kMax = 255;
    static ZilStatus Run(const T* s, ZilRect r, ZilSize z, int ss, T* d, int ds, ZilBayerGrid g) {
        return ziliCFAToRGB_8u_C1C3R(s, r, z, ss, d, ds, g);
    }
};
struct Depth16 {
    using T = uint16_t;
    static constexpr int kMax = 65535;
    static ZilStatus Run(const T* s, ZilRect r, ZilSize z, int ss, T* d, int ds, ZilBayerGrid g) {
        return ziliCFAToRGB_16u_C1C3R(s, r, z, ss, d, ds, g);
    }
};

template <class T>
using Plane = std::vector<T>;  // W x H samples, dense
using Px = std::array<int, 3>;

// The grid code whose red sample sits at column parity rx and row parity ry.
int GridOfRed(int rx, int ry) {
    static const int g[2][2] = {{zilBayerRGGB, zilBayerGRBG}, {zilBayerGBRG, zilBayerBGGR}};
    return g[ry & 1][rx & 1];
}
void RedOfGrid(int grid, int& rx, int& ry) {
    for (ry = 0; ry < 2; ++ry)
        for (rx = 0; rx < 2; ++rx)
            if (GridOfRed(rx, ry) == grid) return;
}

template <class T>
Plane<T> RandomPlane(int W, int H, uint32_t seed, int maxv) {
    std::vector<uint8_t> b(size_t(W) * H * 2);
    ziltest::FillRandom(b.data(), b.size(), seed);
    Plane<T> p(size_t(W) * H);
    for (size_t i = 0; i < p.size(); ++i) p[i] = T((b[2 * i] | (b[2 * i + 1] << 8)) % (maxv + 1));
    return p;
}

// Whole-image (or region) call on a dense plane; output dense, 3 w elements a row,
// pre-filled with `fill`.
template <class D>
std::vector<typename D::T> Run(const Plane<typename D::T>& p, int W, int H, int grid, ZilRect r,
                               typename D::T fill = 0x5A) {
    using T = typename D::T;
    std::vector<T> out(size_t(3) * r.width * r.height, fill);
    const ZilStatus st = D::Run(p.data(), r, ZilSize{W, H}, int(W * sizeof(T)), out.data(),
                                int(3 * r.width * sizeof(T)), grid);
    EXPECT_EQ(st, zilStatusOk);
    return out;
}
template <class D>
std::vector<typename D::T> RunAll(const Plane<typename D::T>& p, int W, int H, int grid) {
    return Run<D>(p, W, H, grid, ZilRect{0, 0, W, H});
}

template <class V>
Px At(const V& out, int w, int c, int r) {
    const size_t i = 3 * (size_t(r) * w + c);
    return Px{int(out[i]), int(out[i + 1]), int(out[i + 2])};
}

std::string Show(const Px& p) {
    return "(" + std::to_string(p[0]) + "," + std::to_string(p[1]) + "," + std::to_string(p[2]) + ")";
}

template <class V>
::testing::AssertionResult SameImage(const V& a, const V& b) {
    if (a.size() != b.size()) return ::testing::AssertionFailure() << "sizes differ";
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i])
            return ::testing::AssertionFailure() << "element " << i << ": " << int(a[i]) << " vs " << int(b[i]);
    return ::testing::AssertionSuccess();
}

template <class D>
class Cfa : public ::testing::Test {};
using Depths = ::testing::Types<Depth8, Depth16>;
TYPED_TEST_SUITE(Cfa, Depths);

// ---- statuses and their order ----------------------------------------------------
struct StatusCase {
    const char* name;
    bool nullSrc, nullDst;
    int W, H, grid;
    ZilStatus want;
};
const StatusCase kStatusCases[] = {
    {"null src", true, false, 8, 8, 1, zilStatusNullPointer},
    {"null dst", false, true, 8, 8, 1, zilStatusNullPointer},
    {"null src before bad size and grid", true, false, 1, 0, 4, zilStatusNullPointer},
    {"null dst before bad size", false, true, 8, 1, 1, zilStatusNullPointer},
    {"width 1", false, false, 1, 8, 1, zilStatusBadSize},
    {"height 1", false, false, 8, 1, 1, zilStatusBadSize},
    {"width 0", false, false, 0, 8, 1, zilStatusBadSize},
    {"negative height", false, false, 8, -3, 1, zilStatusBadSize},
    {"bad size before bad grid", false, false, 1, 8, 4, zilStatusBadSize},
    {"grid 4", false, false, 8, 8, 4, zilStatusBadArgument},
    {"grid -1", false, false, 8, 8, -1, zilStatusBadArgument},
    {"grid large", false, false, 2, 2, 0x10001, zilStatusBadArgument},
};

TYPED_TEST(Cfa, StatusesInOrderAndNothingWritten) {
    using T = typename TypeParam::T;
    const Plane<T> p = RandomPlane<T>(8, 8, 7, TypeParam::kMax);
    for (const StatusCase& c : kStatusCases) {
        GuardBuf dst(3 * 8 * 8 * sizeof(T), 0xC3);
        const ZilStatus st =
            TypeParam::Run(c.nullSrc ? nullptr : p.data(), ZilRect{0, 0, 8, 8}, ZilSize{c.W, c.H},
                           int(8 * sizeof(T)), c.nullDst ? nullptr : reinterpret_cast<T*>(dst.data()),
                           int(24 * sizeof(T)), c.grid);
        EXPECT_EQ(st, c.want) << c.name;
        EXPECT_TRUE(dst.all(0xC3)) << c.name;
    }
}

// A region that is empty or lies outside the plane (after the cut) is no error.
TYPED_TEST(Cfa, RegionOutsideOrEmptyWritesNothing) {
    using T = typename TypeParam::T;
    const Plane<T> p = RandomPlane<T>(6, 5, 8, TypeParam::kMax);
    const ZilRect rects[] = {{6, 0, 4, 5}, {0, 5, 6, 2}, {9, 9, 3, 3}, {0, 0, 0, 5}, {2, 2, 3, 0}, {5, 4, 0, 0}};
    for (const ZilRect& r : rects) {
        GuardBuf dst(3 * 6 * 6 * sizeof(T), 0xC3);
        EXPECT_EQ(TypeParam::Run(p.data(), r, ZilSize{6, 5}, int(6 * sizeof(T)), reinterpret_cast<T*>(dst.data()),
                                 int(18 * sizeof(T)), zilBayerRGGB),
                  zilStatusOk);
        EXPECT_TRUE(dst.all(0xC3)) << r.x << "," << r.y << " " << r.width << "x" << r.height;
    }
}

// ---- flat stays flat ---------------------------------------------------------------
TYPED_TEST(Cfa, FlatImageStaysFlat) {
    using T = typename TypeParam::T;
    const int values[] = {0, 1, 2, 3, 128, 254, TypeParam::kMax - 1, TypeParam::kMax};
    const int sizes[][2] = {{2, 2}, {3, 2}, {2, 3}, {3, 3}, {4, 5}, {5, 4}, {9, 6}, {40, 7}};
    for (int v : values)
        for (auto& sz : sizes)
            for (int g = 0; g < 4; ++g) {
                const Plane<T> p(size_t(sz[0]) * sz[1], T(v));
                const auto out = RunAll<TypeParam>(p, sz[0], sz[1], g);
                for (size_t i = 0; i < out.size(); ++i)
                    ASSERT_EQ(int(out[i]), v) << "value " << v << " size " << sz[0] << "x" << sz[1] << " grid " << g
                                              << " element " << i;
            }
}

// ---- hand-worked images, grid RGGB -----------------------------------------------
// 5 x 5: rows 0, 4 by the two-line rule (ends at columns 0 and 4), rows 1, 3 by
// the three-line rule, columns 0, 4 of row 2 by the two-line column rule,
// columns 1, 3 of row 2 by the three-line column rule, (2,2) the interior.
const int kImg5[5][5] = {
    {11, 21, 30, 49, 50},
    {62, 70, 80, 91, 103},
    {11, 33, 55, 78, 99},
    {5, 15, 27, 35, 46},
    {200, 181, 160, 143, 120},
};
// R G R G R / G B G B G / ...
const Px kOut5[5][5] = {
    // row 0. (0,0) R, end: G = (21 + 62 + 1) >> 1 = 42, B = b(1) = 70.
    // (1,0) G: R = (11 + 30 + 1) >> 1 = 21, B = b(0) = 70.
    // (2,0) R: G = (21 + 2*80 + 49 + 2) >> 2 = 58, B = (70 + 91 + 1) >> 1 = 81.
    // (3,0) G: R = (30 + 50 + 1) >> 1 = 40, B = 91.  (4,0) R, end: G = (49 + 103 + 1) >> 1 = 76, B = b(-1) = 91.
    {{11, 42, 70}, {21, 21, 70}, {30, 58, 81}, {40, 49, 91}, {50, 76, 91}},
    // row 1. (0,1) G, end: B = a(1) = 70, R = (11 + 11 + 1) >> 1 = 11.
    // (1,1) B: G = (21 + 62 + 80 + 33 + 2) >> 2 = 49, R = (11 + 30 + 11 + 55 + 2) >> 2 = 27.
    // (2,1) G: B = (70 + 91 + 1) >> 1 = 81, R = (30 + 55 + 1) >> 1 = 43.
    // (3,1) B: G = (49 + 80 + 103 + 78 + 2) >> 2 = 78, R = (30 + 50 + 55 + 99 + 2) >> 2 = 59.
    // (4,1) G, end: B = a(-1) = 91, R = (50 + 99 + 1) >> 1 = 75.
    {{11, 62, 70}, {27, 49, 70}, {43, 80, 81}, {59, 78, 91}, {75, 103, 91}},
    // row 2. (0,2) R, column rule: G = (62 + 2*33 + 5 + 2) >> 2 = 33, B = (70 + 15 + 1) >> 1 = 43.
    // (1,2) G: R = (11 + 55 + 1) >> 1 = 33, B = (70 + 15 + 1) >> 1 = 43.
    // (2,2) R, interior: dV = |30 - 160| = 130 > dH = |11 - 99| = 88, so G = (33 + 78 + 1) >> 1 = 56;
    //       B = (70 + 91 + 15 + 35 + 2) >> 2 = 53.
    // (3,2) G: R = (55 + 99 + 1) >> 1 = 77, B = (91 + 35 + 1) >> 1 = 63.
    // (4,2) R, column rule: G = (103 + 2*78 + 46 + 2) >> 2 = 76, B = (91 + 35 + 1) >> 1 = 63.
    {{11, 33, 43}, {33, 33, 43}, {55, 56, 53}, {77, 78, 63}, {99, 76, 63}},
    // row 3. (0,3) G, end: B = 15, R = (11 + 200 + 1) >> 1 = 106.
    // (1,3) B: G = (33 + 5 + 27 + 181 + 2) >> 2 = 62, R = (11 + 55 + 200 + 160 + 2) >> 2 = 107.
    // (2,3) G: B = (15 + 35 + 1) >> 1 = 25, R = (55 + 160 + 1) >> 1 = 108.
    // (3,3) B: G = (78 + 27 + 46 + 143 + 2) >> 2 = 74, R = (55 + 99 + 160 + 120 + 2) >> 2 = 109.
    // (4,3) G, end: B = 35, R = (99 + 120 + 1) >> 1 = 110.
    {{106, 5, 15}, {107, 62, 15}, {108, 27, 25}, {109, 74, 35}, {110, 46, 35}},
    // row 4. (0,4) R, end: G = (181 + 5 + 1) >> 1 = 93, B = 15.  (1,4) G: R = (200 + 160 + 1) >> 1 = 180, B = 15.
    // (2,4) R: G = (181 + 2*27 + 143 + 2) >> 2 = 95, B = (15 + 35 + 1) >> 1 = 25.
    // (3,4) G: R = (160 + 120 + 1) >> 1 = 140, B = 35.  (4,4) R, end: G = (143 + 46 + 1) >> 1 = 95, B = 35.
    {{200, 93, 15}, {180, 181, 15}, {160, 95, 25}, {140, 143, 35}, {120, 95, 35}},
};

template <class T, size_t N>
Plane<T> FromRows(const int (&rows)[N][N], int add = 0) {
    Plane<T> p;
    for (auto& row : rows)
        for (int v : row) p.push_back(T(v + add));
    return p;
}

// 16u also runs with every sample raised by 1000: all means move by exactly 1000.
TYPED_TEST(Cfa, HandWorked5x5) {
    using T = typename TypeParam::T;
    for (int add : {0, sizeof(T) == 2 ? 1000 : 0}) {
        const auto out = RunAll<TypeParam>(FromRows<T>(kImg5, add), 5, 5, zilBayerRGGB);
        for (int r = 0; r < 5; ++r)
            for (int c = 0; c < 5; ++c) {
                const Px want{kOut5[r][c][0] + add, kOut5[r][c][1] + add, kOut5[r][c][2] + add};
                EXPECT_EQ(Show(At(out, 5, c, r)), Show(want)) << "pixel " << c << "," << r << " add " << add;
            }
    }
}

TYPED_TEST(Cfa, HandWorked2x2And3x3) {
    using T = typename TypeParam::T;
    // 2 x 2, RGGB: every pixel is a line end of a two-line row.
    // (0,0) R: G = (21 + 62 + 1) >> 1 = 42, B = 71.  (1,0) G: R = a(-1) = 10, B = b(0) = 71.
    // (0,1) G (row 1 by its own two-line rule): B = a(1) = 71, R = b(0) = 10.
    // (1,1) B: G = (62 + 21 + 1) >> 1 = 42, R = b(-1) = 10.
    {
        const Plane<T> p{10, 21, 62, 71};
        const auto out = RunAll<TypeParam>(p, 2, 2, zilBayerRGGB);
        const Px want[4] = {{10, 42, 71}, {10, 21, 71}, {10, 62, 71}, {10, 42, 71}};
        for (int i = 0; i < 4; ++i) EXPECT_EQ(Show(At(out, 2, i % 2, i / 2)), Show(want[i])) << i;
    }
    // 3 x 3, RGGB. Row 1 is both the near and the far three-line row.
    // (0,0) R: G = (20 + 40 + 1) >> 1 = 30, B = 51. (1,0) G: R = (10 + 31 + 1) >> 1 = 21. (2,0) R: G = (20 + 60 + 1) >> 1 = 40.
    // (0,1) G: B = 51, R = (10 + 72 + 1) >> 1 = 41. (1,1) B: G = (20 + 40 + 60 + 80 + 2) >> 2 = 50,
    //       R = (10 + 31 + 72 + 91 + 2) >> 2 = 51. (2,1) G: B = 51, R = (31 + 91 + 1) >> 1 = 61.
    // (0,2) R: G = (80 + 40 + 1) >> 1 = 60, B = 51. (1,2) G: R = (72 + 91 + 1) >> 1 = 82. (2,2) R: G = (80 + 60 + 1) >> 1 = 70.
    {
        const Plane<T> p{10, 20, 31, 40, 51, 60, 72, 80, 91};
        const auto out = RunAll<TypeParam>(p, 3, 3, zilBayerRGGB);
        const Px want[9] = {{10, 30, 51}, {21, 20, 51}, {31, 40, 51}, {41, 40, 51}, {51, 50, 51},
                            {61, 60, 51}, {72, 60, 51}, {82, 80, 51}, {91, 70, 51}};
        for (int i = 0; i < 9; ++i) EXPECT_EQ(Show(At(out, 3, i % 3, i / 3)), Show(want[i])) << i;
    }
}

// The interior pixel (2,2) of the 5 x 5 image for every site and steering case.
// Around it: left/right 33, 78; up/down 80, 27; two away left/right 11, 99
// (dH = 88), up 30 (varied below), down 160. Pairs: horizontal (33 + 78 + 1) >> 1
// = 56, vertical (80 + 27 + 1) >> 1 = 54, all four (33 + 78 + 80 + 27 + 2) >> 2 = 55;
// diagonal mean (70 + 91 + 15 + 35 + 2) >> 2 = 53.
struct SiteCase {
    const char* name;
    int up2;  // sample two rows above (2,2)
    int grid;
    Px want;
};
const SiteCase kSiteCases[] = {
    {"red, dH smaller: horizontal pair", 30, zilBayerRGGB, {55, 56, 53}},
    {"red, dV smaller: vertical pair", 150, zilBayerRGGB, {55, 54, 53}},
    {"red, tie: four-neighbour mean", 72, zilBayerRGGB, {55, 55, 53}},
    {"red, tie with opposite signs", 248, zilBayerRGGB, {55, 55, 53}},
    {"blue, dH smaller", 30, zilBayerBGGR, {53, 56, 55}},
    {"blue, dV smaller", 150, zilBayerBGGR, {53, 54, 55}},
    {"blue, tie", 72, zilBayerBGGR, {53, 55, 55}},
    {"green in a blue row", 30, zilBayerGBRG, {54, 55, 56}},
    {"green in a red row", 30, zilBayerGRBG, {56, 55, 54}},
    {"green ignores gradients", 150, zilBayerGRBG, {56, 55, 54}},
};

TYPED_TEST(Cfa, InteriorSites) {
    using T = typename TypeParam::T;
    for (const SiteCase& c : kSiteCases) {
        Plane<T> p = FromRows<T>(kImg5);
        p[2] = T(c.up2);
        const auto out = RunAll<TypeParam>(p, 5, 5, c.grid);
        EXPECT_EQ(Show(At(out, 5, 2, 2)), Show(c.want)) << c.name;
    }
}

// Rows q(r) = 3 r^2, odd columns 7 higher: horizontal second differences are 0,
// vertical ones 24 r, so green at red and blue sites comes from the horizontal
// pair (the vertical pair would give 3r^2 + 10 and 3r^2 + 3). Per site, for an
// interior row r (RGGB), where the two sites of a row agree:
//   red (even c, even r):  R = q, G = q + 7, B = (2 q(r-1) + 2 q(r+1) + 28 + 2) >> 2 = 3r^2 + 10
//   blue (odd c, odd r):   R = (2 q(r-1) + 2 q(r+1) + 2) >> 2 = 3r^2 + 3, G = q, B = q + 7
//   green, red row:        R = q, G = q + 7, B = (q(r-1) + q(r+1) + 14 + 1) >> 1 = 3r^2 + 10
//   green, blue row:       R = (q(r-1) + q(r+1) + 1) >> 1 = 3r^2 + 3, G = q, B = q + 7
TYPED_TEST(Cfa, SteeringAcrossAWideRow) {
    using T = typename TypeParam::T;
    const int W = 53, H = 9;
    Plane<T> p(size_t(W) * H);
    for (int r = 0; r < H; ++r)
        for (int c = 0; c < W; ++c) p[size_t(r) * W + c] = T(3 * r * r + 7 * (c & 1));
    const auto out = RunAll<TypeParam>(p, W, H, zilBayerRGGB);
    for (int r = 2; r < H - 2; ++r)
        for (int c = 2; c < W - 2; ++c) {
            const int q = 3 * r * r;
            const Px want = (r & 1) == 0 ? Px{q, q + 7, q + 10} : Px{q + 3, q, q + 7};
            EXPECT_EQ(Show(At(out, W, c, r)), Show(want)) << c << "," << r;
        }
}

// ---- properties over random images ------------------------------------------------
// Swapping red and blue in the pattern swaps them in the output.
TYPED_TEST(Cfa, RedBlueSwapOfThePattern) {
    using T = typename TypeParam::T;
    const int sizes[][2] = {{2, 2}, {3, 5}, {4, 4}, {7, 6}, {40, 9}};
    for (auto& sz : sizes) {
        const int W = sz[0], H = sz[1];
        const Plane<T> p = RandomPlane<T>(W, H, W * 31 + H, TypeParam::kMax);
        for (auto [g, h] : {std::pair{zilBayerRGGB, zilBayerBGGR}, std::pair{zilBayerGRBG, zilBayerGBRG}}) {
            auto a = RunAll<TypeParam>(p, W, H, g);
            const auto b = RunAll<TypeParam>(p, W, H, h);
            for (size_t i = 0; i < a.size(); i += 3) std::swap(a[i], a[i + 2]);
            EXPECT_TRUE(SameImage(a, b)) << W << "x" << H << " grid " << g;
        }
    }
}

// The rules are the same in every direction, so mirroring or transposing the
// mosaic (and naming its new pattern) mirrors or transposes the output. The
// far edges are computed from codes derived from W and H; the mirror moves
// them to the near edges, so this checks those codes for both parities.
enum class Move { MirrorX, MirrorY, Transpose };

TYPED_TEST(Cfa, MirrorsAndTranspose) {
    using T = typename TypeParam::T;
    const int dims[] = {2, 3, 4, 5, 6, 7, 20, 37};
    for (int W : dims)
        for (int H : dims) {
            if (W > 7 && H > 7) continue;
            // Full-range samples, and samples of 0..3, where gradient ties are common.
            for (int maxv : {TypeParam::kMax, 3})
            for (int g = 0; g < 4; ++g) {
                const Plane<T> p = RandomPlane<T>(W, H, W * 131 + H * 7 + maxv, maxv);
                const auto out = RunAll<TypeParam>(p, W, H, g);
                int rx, ry;
                RedOfGrid(g, rx, ry);
                for (Move m : {Move::MirrorX, Move::MirrorY, Move::Transpose}) {
                    const int W2 = m == Move::Transpose ? H : W, H2 = m == Move::Transpose ? W : H;
                    // Where sample (c, r) of the moved image comes from.
                    auto from = [&](int c, int r) {
                        if (m == Move::MirrorX) return std::pair{W - 1 - c, r};
                        if (m == Move::MirrorY) return std::pair{c, H - 1 - r};
                        return std::pair{r, c};
                    };
                    Plane<T> q(p.size());
                    for (int r = 0; r < H2; ++r)
                        for (int c = 0; c < W2; ++c) {
                            auto [sc, sr] = from(c, r);
                            q[size_t(r) * W2 + c] = p[size_t(sr) * W + sc];
                        }
                    const int g2 = m == Move::MirrorX   ? GridOfRed(rx + W - 1, ry)
                                   : m == Move::MirrorY ? GridOfRed(rx, ry + H - 1)
                                                        : GridOfRed(ry, rx);
                    const auto out2 = RunAll<TypeParam>(q, W2, H2, g2);
                    for (int r = 0; r < H2; ++r)
                        for (int c = 0; c < W2; ++c) {
                            auto [sc, sr] = from(c, r);
                            ASSERT_EQ(Show(At(out2, W2, c, r)), Show(At(out, W, sc, sr)))
                                << W << "x" << H << " grid " << g << " move " << int(m) << " at " << c << "," << r;
                        }
                }
            }
        }
}

// A region at any parity equals the same part of a whole-image call, writes only
// its own pixels (the destination has a margin of pre-filled pixels and rows),
// and a region reaching past the plane is cut with the rest left untouched.
TYPED_TEST(Cfa, RegionsEqualTheWholeImage) {
    using T = typename TypeParam::T;
    const int sizes[][2] = {{2, 2}, {3, 3}, {5, 4}, {11, 9}, {12, 10}, {45, 8}};
    for (auto& sz : sizes) {
        const int W = sz[0], H = sz[1];
        for (int maxv : {TypeParam::kMax, 3})
        for (int g = 0; g < 4; ++g) {
            const Plane<T> p = RandomPlane<T>(W, H, W * 17 + H + maxv, maxv);
            const auto whole = RunAll<TypeParam>(p, W, H, g);
            for (int x = 0; x < W; x += (x < 4 || x >= W - 4) ? 1 : 5)
                for (int y = 0; y < H; y += (y < 4 || y >= H - 4) ? 1 : 3)
                    for (int w : {1, 2, 3, 6, 19, W + 3})
                        for (int h : {1, 2, 3, 5, H + 2}) {
                            // Destination: the region as asked plus a margin of 1 pixel
                            // left and 2 right, 1 row above and 1 below.
                            const int pitch = 3 * (w + 3), rows = h + 2;
                            std::vector<T> buf(size_t(pitch) * rows, T(0x3C));
                            T* d = buf.data() + pitch + 3;
                            ASSERT_EQ(TypeParam::Run(p.data(), ZilRect{x, y, w, h}, ZilSize{W, H},
                                                     int(W * sizeof(T)), d, int(pitch * sizeof(T)), g),
                                      zilStatusOk);
                            const int cw = x + w > W ? W - x : w, ch = y + h > H ? H - y : h;
                            for (int r = 0; r < rows; ++r)
                                for (int c = 0; c < w + 3; ++c) {
                                    const int ic = x + c - 1, ir = y + r - 1;  // image sample of this slot
                                    const bool in = c >= 1 && c <= cw && r >= 1 && r <= ch;
                                    const Px got = At(buf, w + 3, c, r);
                                    const Px want = in ? At(whole, W, ic, ir) : Px{0x3C, 0x3C, 0x3C};
                                    ASSERT_EQ(Show(got), Show(want))
                                        << W << "x" << H << " grid " << g << " region " << x << "," << y << " " << w
                                        << "x" << h << " slot " << c << "," << r;
                                }
                        }
        }
    }
}

// Planes and regions against inaccessible pages, before and after: no read
// outside the plane, no write outside the region, for every grid and parity.
TYPED_TEST(Cfa, GuardPages) {
    using T = typename TypeParam::T;
    const int sizes[][2] = {{2, 2}, {3, 2}, {2, 3}, {5, 5}, {6, 7}, {33, 6}};
    for (auto& sz : sizes) {
        const int W = sz[0], H = sz[1];
        for (auto side : {GuardBuf::After, GuardBuf::Before}) {
            GuardBuf src(size_t(W) * H * sizeof(T), 0, side);
            ziltest::FillRandom(src.data(), src.size(), uint32_t(W * H));
            const T* s = reinterpret_cast<const T*>(src.data());
            const ZilRect rects[] = {{0, 0, W, H}, {1, 1, W - 1, H - 1}, {W - 1, H - 1, 1, 1}, {0, H - 1, W, 1},
                                     {W - 2, 0, 2, H}, {1, 0, W, H + 5}};
            for (const ZilRect& r : rects)
                for (int g = 0; g < 4; ++g) {
                    const int w = r.x + r.width > W ? W - r.x : r.width;
                    const int h = r.y + r.height > H ? H - r.y : r.height;
                    GuardBuf dst(size_t(3) * w * h * sizeof(T), 0x77, side);
                    ASSERT_EQ(TypeParam::Run(s, r, ZilSize{W, H}, int(W * sizeof(T)),
                                             reinterpret_cast<T*>(dst.data()), int(3 * w * sizeof(T)), g),
                              zilStatusOk);
                }
        }
    }
}

// 16u steps are given in bytes and halved: an odd step loses its low bit.
TEST(Cfa16, OddByteStepsAreHalved) {
    const int W = 9, H = 7;
    const Plane<uint16_t> p = RandomPlane<uint16_t>(W, H, 99, 65535);
    const auto want = RunAll<Depth16>(p, W, H, zilBayerGBRG);
    std::vector<uint16_t> out(size_t(3) * W * H, 0);
    ASSERT_EQ(ziliCFAToRGB_16u_C1C3R(p.data(), ZilRect{0, 0, W, H}, ZilSize{W, H}, 2 * W + 1, out.data(),
                                     6 * W + 1, zilBayerGBRG),
              zilStatusOk);
    EXPECT_TRUE(SameImage(out, want));
}

// Sums are 32-bit: means of samples near 65535 are exact.
TEST(Cfa16, LargeSamplesAverageWithoutOverflow) {
    // 5 x 5 RGGB, all 65535 but the diagonal neighbours of (2,2): 65534, 65533, 65535, 65530.
    Plane<uint16_t> p(25, 65535);
    p[1 * 5 + 1] = 65534, p[1 * 5 + 3] = 65533, p[3 * 5 + 3] = 65530;
    const auto out = RunAll<Depth16>(p, 5, 5, zilBayerRGGB);
    // B at (2,2) = (65534 + 65533 + 65535 + 65530 + 2) >> 2 = 262134 >> 2 = 65533.
    EXPECT_EQ(Show(At(out, 5, 2, 2)), Show(Px{65535, 65535, 65533}));
}

}  // namespace
