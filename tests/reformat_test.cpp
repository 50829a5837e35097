// Reformat matrix and interlaced conversions: where every sample goes, group by
// group; working extents and untouched bytes; statuses in their order;
// hand-worked interpolations.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "reformat_img.h"

namespace {

using namespace reftest;

#define SRC_P(m) m.arr(), m.s
#define SRC_2(m) m.p[0], m.s[0], m.p[1], m.s[1]
#define SRC_C(m) m.p[0], m.s[0]
using Call = std::function<ZilStatus(Img&, Img&, ZilSize)>;

// ---- the members ---------------------------------------------------------------------------
// Where destination chroma (i, j) comes from.
enum Rule { Same, DropRows, RepRows, DropCols, RepCols, To420, To411, Keep1620 };
struct Size { int minW, minH; bool zeroHeightOk; int mulW, mulH; };
constexpr Size R1{2, 1, false, 1, 1}, R2{2, 1, true, 1, 1}, R3{2, 2, false, 1, 1}, R4{4, 1, true, 1, 1},
    R5{4, 1, false, 1, 1}, R6{4, 2, false, 1, 1}, R7{4, 4, false, 4, 4};
enum Quirk { None, DstArrayUntested, OwnOrder };
struct RL { const char* name; Call call; Fmt s, d; Rule rule; Size size; Quirk quirk = None; };
void PrintTo(const RL& m, std::ostream* os) { *os << m.name; }

#define M(NAME, SK, SF, DK, DF, ...) RL{#NAME, [](Img& s, Img& d, ZilSize z) { return NAME(SRC_##SK(s), SRC_##DK(d), z); }, SF, DF, __VA_ARGS__}
const RL kMembers[] = {
    M(ziliYCbCr422_8u_P3C2R, P, P422, C, YUYV, Same, R1),
    M(ziliYCbCr422_8u_C2P3R, C, YUYV, P, P422, Same, R1),
    M(ziliYCbCr422ToCbYCr422_8u_P3C2R, P, P422, C, UYVY, Same, R1),
    M(ziliYCbCr422ToCbYCr422_8u_C2R, C, YUYV, C, UYVY, Same, R1),
    M(ziliCbYCr422ToYCbCr422_8u_C2R, C, UYVY, C, YUYV, Same, R1),
    M(ziliCbYCr422ToYCbCr422_8u_C2P3R, C, UYVY, P, P422, Same, R1),
    M(ziliYCbCr422ToYCrCb422_8u_C2R, C, YUYV, C, YVYU, Same, R2),
    M(ziliYCbCr422ToYCrCb422_8u_P3C2R, P, P422, C, YVYU, Same, R2),
    M(ziliYCrCb422ToYCbCr422_8u_C2P3R, C, YVYU, P, P422, Same, R1),
    M(ziliYCbCr420_8u_P3P2R, P, P420, 2, N420, Same, R3),
    M(ziliYCbCr420_8u_P2P3R, 2, N420, P, P420, Same, R3),
    M(ziliYCrCb420ToYCbCr420_8u_P3P2R, P, P420CrCb, 2, N420, Same, R3),
    // No swap despite its name: the first byte of a pair lands in plane 1.
    M(ziliYCbCr420ToYCrCb420_8u_P2P3R, 2, N420, P, P420, Same, R3, OwnOrder),
    M(ziliYCbCr411_8u_P3P2R, P, P411, 2, N411, Same, R4),
    M(ziliYCbCr411_8u_P2P3R, 2, N411, P, P411, Same, R4, DstArrayUntested),
    M(ziliYCbCr422ToYCbCr420_8u_P3R, P, P422, P, P420, DropRows, R3),
    M(ziliYCbCr422ToYCbCr420_8u_P3P2R, P, P422, 2, N420, DropRows, R3),
    M(ziliYCbCr422ToYCbCr420_8u_C2P3R, C, YUYV, P, P420, DropRows, R3),
    M(ziliYCbCr422ToYCbCr420_8u_C2P2R, C, YUYV, 2, N420, DropRows, R3),
    M(ziliYCbCr422ToYCrCb420_8u_C2P3R, C, YUYV, P, P420CrCb, DropRows, R3),
    M(ziliYCbCr422ToYCrCb420_8u_C2P2R, C, YUYV, 2, N420CrCb, DropRows, R3),
    M(ziliCbYCr422ToYCbCr420_8u_C2P3R, C, UYVY, P, P420, DropRows, R3),
    M(ziliCbYCr422ToYCbCr420_8u_C2P2R, C, UYVY, 2, N420, DropRows, R3),
    M(ziliCbYCr422ToYCrCb420_8u_C2P3R, C, UYVY, P, P420CrCb, DropRows, R3),
    M(ziliYCrCb422ToYCbCr420_8u_C2P3R, C, YVYU, P, P420, DropRows, R3),
    M(ziliYCbCr420ToYCbCr422_8u_P3R, P, P420, P, P422, RepRows, R3),
    M(ziliYCbCr420ToYCbCr422_8u_P2P3R, 2, N420, P, P422, RepRows, R3),
    M(ziliYCbCr420ToYCbCr422_8u_P2C2R, 2, N420, C, YUYV, RepRows, R3),
    M(ziliYCbCr420ToCbYCr422_8u_P2C2R, 2, N420, C, UYVY, RepRows, R3),
    M(ziliYCrCb420ToYCbCr422_8u_P3R, P, P420CrCb, P, P422, RepRows, R3),
    M(ziliYCrCb420ToYCbCr422_8u_P3C2R, P, P420CrCb, C, YUYV, RepRows, R3),
    M(ziliYCrCb420ToCbYCr422_8u_P3C2R, P, P420CrCb, C, UYVY, RepRows, R3),
    M(ziliYCbCr422ToYCbCr411_8u_P3R, P, P422, P, P411, DropCols, R4),
    M(ziliYCbCr422ToYCbCr411_8u_P3P2R, P, P422, 2, N411, DropCols, R4),
    M(ziliYCbCr422ToYCbCr411_8u_C2P3R, C, YUYV, P, P411, DropCols, R5),
    M(ziliYCbCr422ToYCbCr411_8u_C2P2R, C, YUYV, 2, N411, DropCols, R4),
    M(ziliYCrCb422ToYCbCr411_8u_C2P3R, C, YVYU, P, P411, DropCols, R4),
    M(ziliCbYCr422ToYCbCr411_8u_C2P3R, C, UYVY, P, P411, DropCols, R4),
    M(ziliYCbCr411ToYCbCr422_8u_P3R, P, P411, P, P422, RepCols, R4),
    M(ziliYCbCr411ToYCbCr422_8u_P2P3R, 2, N411, P, P422, RepCols, R4, DstArrayUntested),
    M(ziliYCbCr411ToYCbCr422_8u_P2C2R, 2, N411, C, YUYV, RepCols, R4),
    M(ziliYCbCr411ToYCbCr422_8u_P3C2R, P, P411, C, YUYV, RepCols, R4),
    M(ziliYCbCr411ToYCrCb422_8u_P3R, P, P411, P, P422CrCb, RepCols, R4),
    M(ziliYCbCr411ToYCrCb422_8u_P3C2R, P, P411, C, YVYU, RepCols, R4),
    M(ziliYCbCr411ToYCbCr420_8u_P3R, P, P411, P, P420, To420, R6),
    M(ziliYCbCr411ToYCbCr420_8u_P3P2R, P, P411, 2, N420, To420, R6),
    M(ziliYCbCr411ToYCbCr420_8u_P2P3R, 2, N411, P, P420, To420, R6, DstArrayUntested),
    M(ziliYCbCr411ToYCrCb420_8u_P2P3R, 2, N411, P, P420CrCb, To420, R6, DstArrayUntested),
    M(ziliYCbCr420ToYCbCr411_8u_P3P2R, P, P420, 2, N411, To411, R6),
    M(ziliYCbCr420ToYCbCr411_8u_P2P3R, 2, N420, P, P411, To411, R6),
    M(ziliYCrCb420ToYCbCr411_8u_P3P2R, P, P420CrCb, 2, N411, To411, R6),
    M(ziliYCbCr420To1620_8u_P3R, P, P420, P, P1620, Keep1620, R7),
};

class Relayout : public ::testing::TestWithParam<RL> {};

// Every luma and chroma sample of the working extent at its place, everything
// else (odd last column and row, padding) as it was.
TEST_P(Relayout, SamplesLandWhereTheGroupRuleSays) {
    const RL& m = GetParam();
    const bool four = m.s.cw == 4 || m.d.cw == 4;
    for (ZilSize z : {ZilSize{13, 7}, ZilSize{16, 8}, ZilSize{4, 4}}) {
        if (z.width % m.size.mulW || z.height % m.size.mulH) continue;
        const int W = z.width & (four ? ~3 : ~1), H = z.height & (m.s.ch == 2 || m.d.ch == 2 ? ~1 : ~0);
        Img s(m.s, z.width, z.height), d(m.d, z.width, z.height), want(m.d, z.width, z.height);
        Fill(s, z.width, z.height);
        ASSERT_EQ(m.call(s, d, z), zilStatusOk) << z.width << "x" << z.height;
        for (int r = 0; r < H; ++r)
            for (int x = 0; x < W; ++x) want.Y(x, r) = s.Y(x, r);
        for (int i = 0; i < H / m.d.ch; ++i)
            for (int j = 0; j < W / m.d.cw; ++j)
                for (int c = 0; c < 2; ++c) {
                    int si = i, sj = j;
                    switch (m.rule) {
                        case Same: break;
                        case DropRows: si = 2 * i; break;
                        case RepRows: si = i / 2; break;
                        case DropCols: sj = 2 * j; break;
                        case RepCols: sj = j / 2; break;
                        case To420: si = 2 * i + (j & 1), sj = j / 2; break;
                        case To411: si = i / 2, sj = 2 * j + (i & 1); break;
                        case Keep1620: si = 2 * i, sj = 2 * j; break;
                    }
                    want.C(c, i, j) = s.C(c, si, sj);
                }
        EXPECT_EQ(d.Bytes(), want.Bytes()) << z.width << "x" << z.height;
    }
}

// Null pointers before sizes (except the own-order member's planes), then the
// size rule; nothing written on any failure.
TEST_P(Relayout, StatusesInOrderWriteNothing) {
    const RL& m = GetParam();
    const Size& r = m.size;
    Img s(m.s, 8, 8), d(m.d, 8, 8);
    Fill(s, 8, 8);
    const auto before = d.Bytes();
    auto run = [&](int w, int h) { return m.call(s, d, ZilSize{w, h}); };
    EXPECT_EQ(run(r.minW - 1, 8), zilStatusBadSize);
    EXPECT_EQ(run(r.minW, 0), r.zeroHeightOk ? zilStatusOk : zilStatusBadSize);
    EXPECT_EQ(run(r.minW, -1), r.zeroHeightOk ? zilStatusOk : zilStatusBadSize);
    if (r.minH > 1) EXPECT_EQ(run(8, r.minH - 1), zilStatusBadSize);
    if (r.mulW > 1) EXPECT_EQ(run(r.minW + 1, 8), zilStatusBadSize);
    if (r.mulH > 1) EXPECT_EQ(run(8, r.minH + 1), zilStatusBadSize);
    for (Img* img : {&s, &d}) {
        const bool isDst = img == &d;
        const int n = img->f.pack == 'C' ? 1 : img->f.pack == '2' ? 2 : 3;
        for (int k = -1; k < n; ++k) {
            if (k < 0 && (img->f.pack != 'P' || (isDst && m.quirk == DstArrayUntested))) continue;
            uint8_t* keep = k < 0 ? nullptr : img->p[k];
            img->nullArr = k < 0;
            if (k >= 0) img->p[k] = nullptr;
            const bool sizeFirst = m.quirk == OwnOrder && isDst && k >= 0;
            EXPECT_EQ(run(0, 8), sizeFirst ? zilStatusBadSize : zilStatusNullPointer) << (isDst ? "dst " : "src ") << k;
            if (sizeFirst) EXPECT_EQ(run(1, 1), zilStatusNullPointer);
            img->nullArr = false;
            if (k >= 0) img->p[k] = keep;
        }
    }
    EXPECT_EQ(d.Bytes(), before);
}
INSTANTIATE_TEST_SUITE_P(Reformat, Relayout, ::testing::ValuesIn(kMembers),
                         [](const auto& i) { return std::string(i.param.name); });

// The non-swapping member and its swapping sibling are no inverses: a trip
// through both exchanges Cb and Cr.
TEST(ReformatQuirks, NoSwapMemberIsNoInverseOfItsSibling) {
    Img s(P420CrCb, 4, 2), mid(N420, 4, 2), back(P420, 4, 2);
    Fill(s, 4, 2);
    ASSERT_EQ(ziliYCrCb420ToYCbCr420_8u_P3P2R(s.p, s.s, mid.p[0], mid.s[0], mid.p[1], mid.s[1], {4, 2}), 0);
    ASSERT_EQ(ziliYCbCr420ToYCrCb420_8u_P2P3R(mid.p[0], mid.s[0], mid.p[1], mid.s[1], back.p, back.s, {4, 2}), 0);
    for (int j = 0; j < 2; ++j) {
        EXPECT_EQ(back.p[1][j], s.p[2][j]);
        EXPECT_EQ(back.p[2][j], s.p[1][j]);
    }
}

// 4:1:1 -> 4:2:0 -> 4:1:1 by reordering restores every sample; by interpolation it does not.
TEST(ReformatQuirks, ReorderRoundTripIsExactInterpolationIsNot) {
    Img a(P411, 8, 4), mid(P420, 8, 4), back(N411, 8, 4), lossy(P411, 8, 4);
    Fill(a, 8, 4);
    ASSERT_EQ(ziliYCbCr411ToYCbCr420_8u_P3R(a.p, a.s, mid.p, mid.s, {8, 4}), 0);
    ASSERT_EQ(ziliYCbCr420ToYCbCr411_8u_P3P2R(mid.p, mid.s, back.p[0], back.s[0], back.p[1], back.s[1], {8, 4}), 0);
    ASSERT_EQ(ziliYCbCr420To411_8u_P3R(mid.p, mid.s, lossy.p, lossy.s, {8, 4}), 0);
    int lost = 0;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 2; ++j)
            for (int c = 0; c < 2; ++c) {
                EXPECT_EQ(back.C(c, i, j), a.C(c, i, j));
                lost += lossy.C(c, i, j) != a.C(c, i, j);
            }
    EXPECT_GT(lost, 0);
}

// ---- interpolating members, worked by hand ----------------------------------------------------
// One chroma plane pair from rows of numbers (Cb and Cr alike).
void SetChroma(Img& m, std::vector<std::vector<int>> rows) {
    for (size_t i = 0; i < rows.size(); ++i)
        for (size_t j = 0; j < rows[i].size(); ++j) m.C(0, int(i), int(j)) = m.C(1, int(i), int(j)) = uint8_t(rows[i][j]);
}
std::vector<int> Row(Img& m, int c, int i, int n) {
    std::vector<int> v;
    for (int j = 0; j < n; ++j) v.push_back(m.C(c, i, j));
    return v;
}

TEST(ReformatInterpolated, Widen411To420) {
    Img s(P411, 12, 4), d(P420, 12, 4);
    Fill(s, 12, 4);
    SetChroma(s, {{10, 21, 255}, {99, 99, 99}, {0, 1, 3}, {7, 7, 7}});  // odd rows dropped
    ASSERT_EQ(ziliYCbCr411To420_8u_P3R(s.p, s.s, d.p, d.s, {12, 4}), 0);
    for (int c = 0; c < 2; ++c) {
        EXPECT_EQ(Row(d, c, 0, 6), (std::vector<int>{10, 15, 21, 138, 255, 255}));
        EXPECT_EQ(Row(d, c, 1, 6), (std::vector<int>{0, 0, 1, 2, 3, 3}));
    }
    EXPECT_EQ(d.Y(11, 3), s.Y(11, 3));
}

TEST(ReformatInterpolated, Narrow420To411) {
    Img s(P420, 8, 6), d(P411, 8, 6);
    SetChroma(s, {{10, 99, 20, 99}, {13, 0, 255, 0}, {4, 0, 8, 0}});  // odd columns dropped
    ASSERT_EQ(ziliYCbCr420To411_8u_P3R(s.p, s.s, d.p, d.s, {8, 6}), 0);
    const std::vector<std::vector<int>> want{{10, 20}, {11, 137}, {13, 255}, {8, 131}, {4, 8}, {4, 8}};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(Row(d, 1, i, 2), want[i]) << i;
}

// Cb rounds in the interior, Cr truncates; the last column and row never round.
TEST(ReformatInterpolated, Up1620To420StencilAndBorders) {
    Img s(P1620, 8, 8), d(P420, 8, 8);
    s.C(0, 0, 0) = s.C(1, 0, 0) = 0, s.C(0, 0, 1) = s.C(1, 0, 1) = 1;
    s.C(0, 1, 0) = s.C(1, 1, 0) = 4, s.C(0, 1, 1) = s.C(1, 1, 1) = 255;
    ASSERT_EQ(ziliYCbCr1620To420_8u_P3R(s.p, s.s, d.p, d.s, {8, 8}), 0);
    const std::vector<std::vector<int>> cb{{0, 1, 1, 1}, {2, 65, 128, 128}, {4, 129, 255, 255}, {4, 4, 255, 255}};
    const std::vector<std::vector<int>> cr{{0, 0, 1, 1}, {2, 65, 128, 128}, {4, 129, 255, 255}, {4, 4, 255, 255}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(Row(d, 0, i, 4), cb[i]) << i;
        EXPECT_EQ(Row(d, 1, i, 4), cr[i]) << i;
    }
}

TEST(ReformatInterpolated, SizeRulesAndCopyOfLuma) {
    Img s(P420, 8, 8), d(P411, 8, 8);
    EXPECT_EQ(ziliYCbCr1620To420_8u_P3R(s.p, s.s, d.p, d.s, {5, 8}), zilStatusBadSize);
    EXPECT_EQ(ziliYCbCr411To420_8u_P3R(s.p, s.s, d.p, d.s, {8, 6}), zilStatusBadSize);
    EXPECT_EQ(ziliYCbCr420To411_8u_P3R(s.p, s.s, d.p, d.s, {8, 3}), zilStatusBadSize);
    EXPECT_EQ(ziliYCbCr420To411_8u_P3R(s.p, s.s, nullptr, d.s, {0, 3}), zilStatusNullPointer);
    EXPECT_EQ(ziliYCbCr420ToYCbCr411_8u_P3P2R(s.p, s.s, d.p[0], d.s[0], d.p[1], d.s[1], {5, 5}), zilStatusOk);
}

// ---- interlaced ---------------------------------------------------------------------------------
// Rows of one chroma plane in value v per source row: s[k] = 8 k + 8 (k < 8).
TEST(Interlace, Up420To422WeighsRowsOfOneField) {
    for (bool packed : {false, true}) {
        Img s(P420, 5, 13), d(packed ? UYVY : P422, 5, 13);
        Fill(s, 5, 13);
        for (int k = 0; k < 6; ++k) s.C(0, k, 0) = s.C(1, k, 1) = uint8_t(8 * k + 8);
        const ZilSize z{5, 13};
        const ZilStatus st = packed ? ziliYCbCr420ToCbYCr422_Interlace_8u_P3C2R(s.p, s.s, d.p[0], d.s[0], z)
                                    : ziliYCbCr420To422_Interlace_8u_P3R(s.p, s.s, d.p, d.s, z);
        EXPECT_EQ(st, zilStatusOddSize);
        // Rows 0, 1 copied; 2..9 from (5a+3c+4)>>3, (7b+e+4)>>3, (a+7c+4)>>3, (3b+5e+4)>>3; 10, 11 copied.
        const std::vector<int> want{8, 16, 14, 18, 22, 26, 30, 34, 38, 42, 40, 48};
        for (int r = 0; r < 12; ++r) {
            EXPECT_EQ(d.C(0, r, 0), want[r]) << r;
            EXPECT_EQ(d.C(1, r, 1), want[r]) << r;
        }
        EXPECT_EQ(d.Y(3, 11), s.Y(3, 11));
        EXPECT_EQ(d.Y(4, 0), 0xE5);  // fifth column
        EXPECT_EQ(d.Y(0, 12), 0xE5);  // thirteenth row
    }
}

TEST(Interlace, Down422To420ThreeToOne) {
    for (bool packed : {false, true}) {
        Img s(packed ? UYVY : P422, 4, 8), d(P420, 4, 8);
        Fill(s, 4, 8);
        const int v[8] = {0, 255, 100, 1, 9, 0, 255, 255};
        for (int r = 0; r < 8; ++r) s.C(0, r, 1) = s.C(1, r, 1) = uint8_t(v[r]);
        const ZilStatus st = packed ? ziliCbYCr422ToYCbCr420_Interlace_8u_C2P3R(s.p[0], s.s[0], d.p, d.s, {4, 8})
                                    : ziliYCbCr422To420_Interlace_8u_P3R(s.p, s.s, d.p, d.s, {4, 8});
        EXPECT_EQ(st, zilStatusOk);
        const std::vector<int> want{25, 65, 71, 191};  // (3*0+100+2)>>2, (255+3+2)>>2, (27+255+2)>>2, (0+765+2)>>2
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(d.C(0, i, 1), want[i]) << i;
            EXPECT_EQ(d.C(1, i, 1), want[i]) << i;
        }
        EXPECT_EQ(d.Y(3, 7), s.Y(3, 7));
    }
}

TEST(Interlace, HeightFourCopiesAndChecks) {
    Img s(P420, 2, 4), d(P422, 2, 4);
    SetChroma(s, {{3}, {200}});
    ASSERT_EQ(ziliYCbCr420To422_Interlace_8u_P3R(s.p, s.s, d.p, d.s, {2, 4}), zilStatusOk);
    for (int r = 0; r < 4; ++r) EXPECT_EQ(d.C(0, r, 0), r & 1 ? 200 : 3);
    const auto before = d.Bytes();
    EXPECT_EQ(ziliYCbCr420To422_Interlace_8u_P3R(s.p, s.s, d.p, d.s, {2, 3}), zilStatusBadSize);
    EXPECT_EQ(ziliYCbCr420To422_Interlace_8u_P3R(s.p, s.s, d.p, d.s, {1, 4}), zilStatusBadSize);
    EXPECT_EQ(ziliYCbCr422To420_Interlace_8u_P3R(nullptr, s.s, d.p, d.s, {0, 0}), zilStatusNullPointer);
    d.p[2] = nullptr;
    EXPECT_EQ(ziliYCbCr420To422_Interlace_8u_P3R(s.p, s.s, d.p, d.s, {0, 0}), zilStatusNullPointer);
    d.p[2] = d.b[2]->data();
    EXPECT_EQ(d.Bytes(), before);
}

}  // namespace
