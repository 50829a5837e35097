// DemosaicAHD: statuses and their order, hand-worked images (flat, stripes),
// the tie carried along a row, edge reflection, regions against crops of the
// plane, buffer independence and guard pages.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "guard.h"
#include "zilcc.h"

namespace {

using ziltest::FillRandom;
using ziltest::GuardBuf;

inline ZilStatus Ahd(const uint8_t* s, ZilRect r, ZilSize z, int ss, uint8_t* d, int ds, int g, uint8_t* b, int bs) {
    return ziliDemosaicAHD_8u_C1C3R(s, r, z, ss, d, ds, g, b, bs);
}
inline ZilStatus Ahd(const uint16_t* s, ZilRect r, ZilSize z, int ss, uint16_t* d, int ds, int g, uint16_t* b,
                     int bs) {
    return ziliDemosaicAHD_16u_C1C3R(s, r, z, ss, d, ds, g, b, bs);
}

template <class T>
constexpr int kMax = sizeof(T) == 1 ? 255 : 65535;

// Filter letter at plane sample (c, r) for a grid code.
char Letter(int grid, int c, int r) {
    static const char* const kPat[4] = {"BGGR", "RGGB", "GBRG", "GRBG"};
    return kPat[grid][(r & 1) * 2 + (c & 1)];
}
// Grid code of a plane cut out at (x0, y0) of a plane with `grid`.
int GridAt(int grid, int x0, int y0) {
    for (int g = 0; g < 4; ++g) {
        bool same = true;
        for (int k = 0; k < 4; ++k) same = same && Letter(g, k & 1, k >> 1) == Letter(grid, x0 + (k & 1), y0 + (k >> 1));
        if (same) return g;
    }
    return -1;
}

// Samples per work line for a region of width w.
int LineNeed(int w) { return w + ((w & 1) ? 8 : 6); }

template <class T>
struct Plane {
    int w, h;
    std::vector<T> v;
    Plane(int w_, int h_) : w(w_), h(h_), v(size_t(w_) * h_) {}
    T& at(int c, int r) { return v[size_t(r) * w + c]; }
    int step() const { return w * int(sizeof(T)); }
    ZilSize size() const { return {w, h}; }
    void Random(uint32_t seed) {
        FillRandom(reinterpret_cast<uint8_t*>(v.data()), v.size() * sizeof(T), seed);
    }
    // The part from (x0, y0) to the far corner.
    Plane Crop(int x0, int y0) const {
        Plane p(w - x0, h - y0);
        for (int r = 0; r < p.h; ++r)
            for (int c = 0; c < p.w; ++c) p.at(c, r) = v[size_t(r + y0) * w + c + x0];
        return p;
    }
};

// Runs one call with a dense output of ow x oh pixels and a work buffer of
// lines just long enough, filled with `fill`.
template <class T>
std::vector<T> Run(const Plane<T>& p, ZilRect rect, int grid, int ow, int oh, uint8_t fill = 0x5A) {
    const int bs = LineNeed(ow) * int(sizeof(T));
    std::vector<T> buf(size_t(30) * LineNeed(ow), T(0));
    std::memset(buf.data(), fill, buf.size() * sizeof(T));
    std::vector<T> dst(size_t(ow) * oh * 3, T(0x3C));
    EXPECT_EQ(Ahd(p.v.data(), rect, p.size(), p.step(), dst.data(), ow * 3 * int(sizeof(T)), grid, buf.data(), bs),
              zilStatusOk);
    return dst;
}
template <class T>
std::vector<T> RunWhole(const Plane<T>& p, int grid) {
    return Run(p, ZilRect{0, 0, p.w, p.h}, grid, p.w, p.h);
}

// Pixel (c, r) of a dense output of width ow.
template <class T>
struct Px {
    int r, g, b;
};
template <class T>
Px<T> At(const std::vector<T>& d, int ow, int c, int r) {
    const size_t o = (size_t(r) * ow + c) * 3;
    return {d[o], d[o + 1], d[o + 2]};
}

template <class T>
class AhdTest : public ::testing::Test {};
using Depths = ::testing::Types<uint8_t, uint16_t>;
TYPED_TEST_SUITE(AhdTest, Depths);

// ---- statuses -------------------------------------------------------------------------

struct StatusCase {
    const char* what;
    bool nullSrc, nullDst;
    int W, H, grid;
    ZilStatus want;
};
const StatusCase kStatusCases[] = {
    {"null src outranks size and grid", true, false, 4, 4, 9, zilStatusNullPointer},
    {"null dst outranks size", false, true, 3, 8, 0, zilStatusNullPointer},
    {"width 4", false, false, 4, 8, 0, zilStatusBadSize},
    {"height 4, size outranks grid", false, false, 8, 4, 7, zilStatusBadSize},
    {"width 0", false, false, 0, 8, 1, zilStatusBadSize},
    {"negative height", false, false, 8, -1, 1, zilStatusBadSize},
    {"grid 4", false, false, 5, 5, 4, zilStatusBadArgument},
    {"grid -1", false, false, 8, 8, -1, zilStatusBadArgument},
};

TYPED_TEST(AhdTest, StatusesInOrderWriteNothing) {
    using T = TypeParam;
    std::vector<T> src(64 * 64, T(9)), dst(64 * 64 * 3, T(0x77)), buf(30 * 80, T(0x66));
    for (const StatusCase& k : kStatusCases) {
        SCOPED_TRACE(k.what);
        const ZilStatus st = Ahd(k.nullSrc ? nullptr : src.data(), ZilRect{0, 0, 8, 8}, ZilSize{k.W, k.H},
                                 64 * int(sizeof(T)), k.nullDst ? nullptr : dst.data(), 64 * 3 * int(sizeof(T)),
                                 k.grid, buf.data(), 80 * int(sizeof(T)));
        EXPECT_EQ(st, k.want);
        for (T v : dst) ASSERT_EQ(v, T(0x77));
        for (T v : buf) ASSERT_EQ(v, T(0x66));
    }
}

// A region cut to nothing is fine even without a buffer; the buffer is never checked.
TYPED_TEST(AhdTest, EmptyRegionIsOkWithoutBuffer) {
    using T = TypeParam;
    Plane<T> p(8, 8);
    std::vector<T> dst(64 * 3, T(0x21));
    const ZilRect empty[] = {{8, 0, 4, 4}, {0, 8, 4, 4}, {2, 2, 0, 3}, {2, 2, 3, -1}, {-2, 0, -1, 3}};
    for (const ZilRect& r : empty) {
        EXPECT_EQ(Ahd(p.v.data(), r, p.size(), p.step(), dst.data(), 24 * int(sizeof(T)), 1, nullptr, 0), zilStatusOk);
        for (T v : dst) ASSERT_EQ(v, T(0x21));
    }
}

// ---- hand-worked images --------------------------------------------------------------------

// Every estimate of a flat plane is the flat value, whatever the region.
TYPED_TEST(AhdTest, FlatPlaneGivesFlatValue) {
    using T = TypeParam;
    const int values[] = {0, 77, kMax<T>};
    for (int grid = 0; grid < 4; ++grid)
        for (int val : values)
            for (ZilRect r : {ZilRect{0, 0, 11, 7}, ZilRect{3, 2, 5, 1}, ZilRect{1, 1, 1, 6}}) {
                Plane<T> p(11, 7);
                for (T& s : p.v) s = T(val);
                const std::vector<T> d = Run(p, r, grid, r.width, r.height);
                for (T s : d) ASSERT_EQ(int(s), val) << "grid " << grid;
            }
}

// Rows alternate between two values. The horizontal candidate is grey with the
// row's value; the vertical one is not (its green at a red or blue site is the
// other rows' value). Both are judged alike (E = 0), so the tie's start value
// picks the horizontal candidate everywhere.
TYPED_TEST(AhdTest, OneRowStripesTakeHorizontalCandidate) {
    using T = TypeParam;
    const int p0 = 100 * (kMax<T> / 255), p1 = 120 * (kMax<T> / 255);
    for (int grid = 0; grid < 4; ++grid) {
        Plane<T> p(13, 10);
        for (int r = 0; r < p.h; ++r)
            for (int c = 0; c < p.w; ++c) p.at(c, r) = T(r & 1 ? p1 : p0);
        const std::vector<T> d = RunWhole(p, grid);
        for (int r = 0; r < p.h; ++r)
            for (int c = 0; c < p.w; ++c) {
                const Px<T> q = At(d, p.w, c, r);
                const int v = r & 1 ? p1 : p0;
                ASSERT_TRUE(q.r == v && q.g == v && q.b == v) << "grid " << grid << " at " << c << "," << r;
            }
    }
}

// Columns alternate: even columns a, odd columns b. The vertical candidate is
// grey; the horizontal one, in a row whose green sites hold g and whose own
// colour sites hold k: green G[H] = g everywhere (neighbours g, g, second
// difference 0), own colour = g + ((k - g) + (k - g)) >> 1 = k, other colour
// from the rows above and below (their sites hold g, their G[H] is k):
// g + (2g - 2k) >> 1 = 2g - k, clamped. E = 0, so the horizontal one is taken.
TYPED_TEST(AhdTest, OneColumnStripesTakeHorizontalCandidate) {
    using T = TypeParam;
    const int s = kMax<T> / 255;
    const int pairs[][2] = {{100 * s, 120 * s}, {200 * s, 40 * s}};  // the second clamps 360 and -120
    for (auto ab : pairs)
        for (int grid = 0; grid < 4; ++grid) {
            Plane<T> p(12, 9);
            for (int r = 0; r < p.h; ++r)
                for (int c = 0; c < p.w; ++c) p.at(c, r) = T(ab[c & 1]);
            const std::vector<T> d = RunWhole(p, grid);
            for (int r = 0; r < p.h; ++r) {
                const int greenPar = Letter(grid, 0, r) == 'G' ? 0 : 1;
                const char own = Letter(grid, 1 - greenPar, r);
                const int g = ab[greenPar], k = ab[1 - greenPar];
                int other = 2 * g - k;
                other = other < 0 ? 0 : (other > kMax<T> ? kMax<T> : other);
                const int wantR = own == 'R' ? k : other, wantB = own == 'B' ? k : other;
                for (int c = 0; c < p.w; ++c) {
                    const Px<T> q = At(d, p.w, c, r);
                    ASSERT_TRUE(q.r == wantR && q.g == g && q.b == wantB)
                        << "grid " << grid << " at " << c << "," << r << ": " << q.r << " " << q.g << " " << q.b;
                }
            }
        }
}

// Two-row stripes along the rows: the horizontal candidate is grey with the
// row's value (every G[H] equals the raw row value, so all differences are 0)
// and E is never negative, so it is chosen everywhere.
TYPED_TEST(AhdTest, TwoRowStripesTakeHorizontalCandidate) {
    using T = TypeParam;
    const int s = kMax<T> / 255;
    for (int grid = 0; grid < 4; ++grid) {
        Plane<T> p(10, 14);
        for (int r = 0; r < p.h; ++r)
            for (int c = 0; c < p.w; ++c) p.at(c, r) = T((r >> 1) & 1 ? 30 * s : 220 * s);
        const std::vector<T> d = RunWhole(p, grid);
        for (int r = 0; r < p.h; ++r)
            for (int c = 0; c < p.w; ++c) {
                const Px<T> q = At(d, p.w, c, r);
                const int v = p.at(c, r);
                ASSERT_TRUE(q.r == v && q.g == v && q.b == v) << "grid " << grid << " at " << c << "," << r;
            }
    }
}

// ---- the tie along a row ------------------------------------------------------------------

// Left part random, right part one-row stripes (rows alternate v and u). Far
// enough right every E is 0, so each row keeps the last decision made before:
// the whole row is the horizontal candidate (grey, the row's value v) or the
// vertical one, which at a green site is (own colour 2v - u, G v, other u) and
// at a red or blue site (own v, G u, other 2u - v). Where the stripes meet the
// random part the horizontal candidate is disturbed and the vertical one is
// not, so the decision carried along is vertical there. A region that starts
// inside the stripes begins its rows with the start value: horizontal.
TYPED_TEST(AhdTest, TieCarriesDecisionAlongRow) {
    using T = TypeParam;
    const int s = kMax<T> / 255;
    const int W = 48, H = 24, L = 20, first = L + 8;
    const int vals[2] = {100 * s, 130 * s};
    int rowsH = 0, rowsV = 0;
    for (int grid = 0; grid < 4; ++grid) {
        Plane<T> p(W, H);
        p.Random(77 + grid);
        for (int r = 0; r < H; ++r)
            for (int c = L; c < W; ++c) p.at(c, r) = T(vals[r & 1]);
        const std::vector<T> whole = RunWhole(p, grid);
        const std::vector<T> part = Run(p, ZilRect{first, 0, W - first, H}, grid, W - first, H);
        for (int r = 0; r < H; ++r) {
            const int v = vals[r & 1], u = vals[1 - (r & 1)];
            bool allH = true, allV = true;
            for (int c = first; c < W; ++c) {
                const Px<T> q = At(whole, W, c, r);
                const char site = Letter(grid, c, r);
                const char own = site != 'G' ? site : Letter(grid, c ^ 1, r);
                int wantR, wantG, wantB;
                if (site == 'G') {
                    wantG = v;
                    wantR = own == 'R' ? 2 * v - u : u;
                    wantB = own == 'B' ? 2 * v - u : u;
                } else {
                    wantG = u;
                    wantR = own == 'R' ? v : 2 * u - v;
                    wantB = own == 'B' ? v : 2 * u - v;
                }
                allH = allH && q.r == v && q.g == v && q.b == v;
                allV = allV && q.r == wantR && q.g == wantG && q.b == wantB;
                const Px<T> h = At(part, W - first, c - first, r);
                ASSERT_TRUE(h.r == v && h.g == v && h.b == v) << "region pixel " << c << "," << r;
            }
            ASSERT_TRUE(allH || allV) << "grid " << grid << " row " << r;
            rowsH += allH, rowsV += allV;
        }
    }
    // Rows carrying the vertical decision are exactly those where the region call differs.
    EXPECT_GT(rowsV, 0);
    EXPECT_EQ(rowsH + rowsV, 4 * H);
}

// ---- edges and regions --------------------------------------------------------------------

// Reflection about the edge sample: a whole-plane call equals the same region
// of a plane extended by 6 mirrored samples on every side, where no reflection
// is needed.
TYPED_TEST(AhdTest, EdgesReflectAboutEdgeSample) {
    using T = TypeParam;
    const int M = 6;
    const int sizes[][2] = {{7, 7}, {8, 9}, {16, 11}, {33, 20}};
    auto mirror = [](int c, int n) { return c < 0 ? -c : (c > n - 1 ? 2 * (n - 1) - c : c); };
    for (auto wh : sizes)
        for (int grid = 0; grid < 4; ++grid) {
            Plane<T> a(wh[0], wh[1]);
            a.Random(uint32_t(wh[0] * 31 + wh[1] + grid));
            Plane<T> b(a.w + 2 * M, a.h + 2 * M);
            for (int r = 0; r < b.h; ++r)
                for (int c = 0; c < b.w; ++c) b.at(c, r) = a.at(mirror(c - M, a.w), mirror(r - M, a.h));
            EXPECT_EQ(RunWhole(a, grid), Run(b, ZilRect{M, M, a.w, a.h}, grid, a.w, a.h))
                << wh[0] << "x" << wh[1] << " grid " << grid;
        }
}

// A region equals the same region of a plane cut out at (x - mx, y - my) with
// mx, my in {5, 6} (so the cut plane sees the region at another parity and
// through another grid code); the far edges stay where they were. Regions at
// every parity, tiny ones, and ones reaching the far edges.
TYPED_TEST(AhdTest, RegionEqualsRegionOfCutPlane) {
    using T = TypeParam;
    const ZilRect rects[] = {{6, 6, 9, 7}, {7, 6, 8, 5}, {6, 7, 5, 8}, {7, 9, 1, 1}, {8, 6, 2, 1}, {9, 7, 1, 2},
                             {11, 8, 19, 14}, {12, 10, 18, 12}, {13, 6, 100, 100}, {20, 21, 3, 3}};
    for (int grid = 0; grid < 4; ++grid) {
        Plane<T> a(30, 24);
        a.Random(900 + grid);
        for (ZilRect r : rects)
            for (int mx = 5; mx <= 6; ++mx)
                for (int my = 5; my <= 6; ++my) {
                    const int ow = r.width < a.w - r.x ? r.width : a.w - r.x;
                    const int oh = r.height < a.h - r.y ? r.height : a.h - r.y;
                    const Plane<T> b = a.Crop(r.x - mx, r.y - my);
                    const int gb = GridAt(grid, r.x - mx, r.y - my);
                    EXPECT_EQ(Run(a, r, grid, ow, oh), Run(b, ZilRect{mx, my, r.width, r.height}, gb, ow, oh))
                        << "grid " << grid << " rect " << r.x << "," << r.y << " " << r.width << "x" << r.height
                        << " cut " << mx << "," << my;
                }
    }
}

// Regions that start in column 0 start their ties where the whole-plane call
// does, so they equal its pixels exactly; a negative origin is read as 0 with
// the full width, and the far side is cut at the plane's edge.
TYPED_TEST(AhdTest, RegionFromFirstColumnEqualsWholePlane) {
    using T = TypeParam;
    Plane<T> a(21, 17);
    for (int grid = 0; grid < 4; ++grid) {
        a.Random(40 + grid);
        const std::vector<T> whole = RunWhole(a, grid);
        struct Case {
            ZilRect r;
            int y0, ow, oh;  // first plane row, produced extent
        };
        const Case cases[] = {{{0, 0, 21, 17}, 0, 21, 17}, {{0, 5, 9, 4}, 5, 9, 4},   {{0, 16, 21, 5}, 16, 21, 1},
                              {{-3, -2, 8, 6}, 0, 8, 6},   {{0, 3, 1, 1}, 3, 1, 1},   {{-1, 1, 40, 40}, 1, 21, 16},
                              {{0, 1, 20, 2}, 1, 20, 2}};
        for (const Case& k : cases) {
            const std::vector<T> d = Run(a, k.r, grid, k.ow, k.oh);
            for (int r = 0; r < k.oh; ++r)
                for (int c = 0; c < k.ow; ++c)
                    for (int ch = 0; ch < 3; ++ch)
                        ASSERT_EQ(d[(size_t(r) * k.ow + c) * 3 + ch], whole[(size_t(r + k.y0) * a.w + c) * 3 + ch])
                            << "grid " << grid << " rect " << k.r.x << "," << k.r.y << " at " << c << "," << r;
        }
    }
}

// At a plane width or height of 5 the reflection reaches one place outside
// the plane (-5 becomes 5, and 4 + 5 becomes -1), and those samples take part
// like any other: the call equals a region of the plane mirrored through the
// same rule, outside samples included. Over several random planes the outside
// samples must change some output (through a decision, about one plane in
// eight); at 6 samples they never may.
TYPED_TEST(AhdTest, SizeFiveReadsOnePlaceOutside) {
    using T = TypeParam;
    const int M = 6, S = 9;  // S: memory stride in samples, rows and columns
    auto fold = [](int c, int n) { return c < 0 ? -c : (c > n - 1 ? 2 * (n - 1) - c : c); };
    for (int W = 5; W <= 6; ++W)
        for (int H : {5, 6}) {
            int changed = 0;
            for (int seed = 0; seed < 64; ++seed) {
                std::vector<T> mem(size_t(S) * S, T(0));
                FillRandom(reinterpret_cast<uint8_t*>(mem.data()), mem.size() * sizeof(T), 11u + seed);
                T* plane = mem.data() + S + 1;  // row -1 and column -1 are readable
                const int grid = seed & 3;
                auto run = [&] {
                    std::vector<T> dst(size_t(W) * H * 3), buf(30 * LineNeed(W));
                    EXPECT_EQ(Ahd(plane, ZilRect{0, 0, W, H}, ZilSize{W, H}, S * int(sizeof(T)), dst.data(),
                                  W * 3 * int(sizeof(T)), grid, buf.data(), LineNeed(W) * int(sizeof(T))),
                              zilStatusOk);
                    return dst;
                };
                const std::vector<T> d = run();
                Plane<T> b(W + 2 * M, H + 2 * M);
                // Only 5 samples beyond each edge are ever read; the sixth ring stays 0.
                for (int r = 1; r < b.h - 1; ++r)
                    for (int c = 1; c < b.w - 1; ++c)
                        b.at(c, r) = plane[ptrdiff_t(fold(r - M, H)) * S + fold(c - M, W)];
                ASSERT_EQ(d, Run(b, ZilRect{M, M, W, H}, grid, W, H)) << W << "x" << H << " seed " << seed;
                for (int k = 0; k < S; ++k) {  // column W and row H, just outside
                    if (k < S - 1) plane[ptrdiff_t(k - 1) * S + W] ^= T(0x5A5A);
                    if (k < S - 1) plane[ptrdiff_t(H) * S + k - 1] ^= T(0x5A5A);
                    plane[ptrdiff_t(k - 1) * S - 1] ^= T(0x5A5A);  // and column -1
                    if (k < S - 1) plane[-S + k - 1] ^= T(0x5A5A);  // and row -1
                }
                changed += run() != d;
            }
            if (W == 5 || H == 5)
                EXPECT_GT(changed, 0) << W << "x" << H;
            else
                EXPECT_EQ(changed, 0) << W << "x" << H;
        }
}

// ---- memory -------------------------------------------------------------------------

// Source, destination and work lines against guard pages on either side, with
// the tightest buffer (w + 6 or w + 8 samples a line, 30 lines) and a 16u step
// with its low bit set; outside the region the destination keeps its bytes,
// and the buffer's prior content makes no difference.
TYPED_TEST(AhdTest, GuardPagesAndBufferContent) {
    using T = TypeParam;
    const int sz = int(sizeof(T));
    const int W = 23, H = 15;
    const ZilRect rects[] = {{0, 0, W, H}, {3, 2, 7, 5}, {4, 5, 8, 10}, {0, 14, 23, 1}, {22, 0, 1, 15}};
    for (auto side : {GuardBuf::After, GuardBuf::Before})
        for (ZilRect r : rects) {
            const int ow = r.width < W - r.x ? r.width : W - r.x, oh = r.height < H - r.y ? r.height : H - r.y;
            GuardBuf src(size_t(W) * H * sz, 0, side);
            FillRandom(src.data(), src.size(), uint32_t(r.x * 7 + r.y));
            const int dstStep = (ow * 3 + 2) * sz;  // two spare samples a row must stay as they were
            const size_t dstBytes = size_t(oh - 1) * dstStep + size_t(ow) * 3 * sz;
            std::vector<uint8_t> outs[2];
            for (int pass = 0; pass < 2; ++pass) {
                const int bufStep = LineNeed(ow) * sz + (sz == 2 ? pass : 0);
                // Lines are counted in whole samples: an odd 16u step loses its low bit.
                GuardBuf buf((size_t(29) * (bufStep / sz) + size_t(LineNeed(ow))) * sz, 0, side);
                FillRandom(buf.data(), buf.size(), 1000u + pass * 17u);
                GuardBuf dst(dstBytes, 0xE7, side);
                ASSERT_EQ(Ahd(reinterpret_cast<const T*>(src.data()), r, ZilSize{W, H}, W * sz,
                              reinterpret_cast<T*>(dst.data()), dstStep, 3, reinterpret_cast<T*>(buf.data()), bufStep),
                          zilStatusOk);
                for (int y = 0; y + 1 < oh; ++y)
                    for (int k = ow * 3 * sz; k < dstStep; ++k) ASSERT_EQ(dst[size_t(y) * dstStep + k], 0xE7);
                for (int y = 0; y < oh; ++y)
                    outs[pass].insert(outs[pass].end(), dst.data() + size_t(y) * dstStep,
                                      dst.data() + size_t(y) * dstStep + size_t(ow) * 3 * sz);
            }
            EXPECT_EQ(outs[0], outs[1]) << "rect " << r.x << "," << r.y;
        }
}

}  // namespace
