// The checks every table row of the luma-chroma families gets: statuses and
// their order, extents against guard pages, untouched row padding, negative
// steps and chunked rows against column strips.
#include "planes.h"

namespace zilplanes {
namespace {

// ---- statuses and the order of checks ------------------------------------------
TEST_P(PlaneMember, NullPointersAndSizesGiveStatusesInOrderAndWriteNothing) {
    const Member& m = GetParam();
    struct Case { const char* what; std::function<void(Args&)> spoil; bool badSize; ZilStatus want; };
    std::vector<Case> cases;
    const bool srcArr = m.arrays & kSrcArr, dstArr = m.arrays & kDstArr;
    for (int bad = 0; bad < 2; ++bad) {
        const bool bs = bad != 0;
        // Pointers passed directly, and the arrays themselves, outrank the size
        // (unless the member tests the size first).
        const ZilStatus direct = bs && m.sizeFirst ? zilStatusBadSize : zilStatusNullPointer;
        if (!srcArr) cases.push_back({"src", [](Args& a) { a.s[0] = nullptr; }, bs, direct});
        if (!dstArr) cases.push_back({"dst", [](Args& a) { a.d[0] = nullptr; }, bs, direct});
        if (srcArr) cases.push_back({"src array", [](Args& a) { a.nullSrcArr = true; }, bs, zilStatusNullPointer});
        if (dstArr && !m.dstArrUntested)
            cases.push_back({"dst array", [](Args& a) { a.nullDstArr = true; }, bs, zilStatusNullPointer});
        if (m.arrays & kSrcSteps)
            cases.push_back({"src steps", [](Args& a) { a.nullSrcSteps = true; }, bs, zilStatusNullPointer});
        if (m.arrays & kDstSteps)
            cases.push_back({"dst steps", [](Args& a) { a.nullDstSteps = true; }, bs, zilStatusNullPointer});
        // Entries of plane arrays come after the size, unless the member
        // tests them first.
        const ZilStatus entry = bs && !m.entriesFirst ? zilStatusBadSize : zilStatusNullPointer;
        for (int i = 0; i < 3; ++i) {
            if (srcArr) cases.push_back({"src entry", [i](Args& a) { a.s[i] = nullptr; }, bs, entry});
            if (dstArr) cases.push_back({"dst entry", [i](Args& a) { a.d[i] = nullptr; }, bs, entry});
        }
    }
    for (const Case& c : cases) {
        Image img(m, 4, 4, 0, 7);
        Args a = img.args;
        c.spoil(a);
        if (c.badSize) a.sz = {0, 4};
        EXPECT_EQ(m.call(a), c.want) << m.name << ": null " << c.what << (c.badSize ? " with bad size" : "");
        EXPECT_TRUE(img.DstUntouched(0x5A)) << m.name << ": null " << c.what;
    }
    const ZilSize bad[] = {{0, 4}, {4, 0}, {-1, 4}, {4, -3}, {m.minW - 1, 4}, {4, m.minH - 1}};
    for (ZilSize s : bad) {
        Image img(m, 4, 4, 0, 7);
        Args a = img.args;
        a.sz = s;
        EXPECT_EQ(m.call(a), zilStatusBadSize) << m.name << " " << s.width << "x" << s.height;
        EXPECT_TRUE(img.DstUntouched(0x5A)) << m.name;
    }
}

// ---- extents: exact buffers against guard pages on both sides -------------------
TEST_P(PlaneMember, EveryExtentStaysInsideItsPlanes) {
    const Member& m = GetParam();
    for (auto side : {GuardBuf::After, GuardBuf::Before})
        for (int w : {1, 2, 3, 5, 17})
            for (int h : {1, 2, 3}) {
                if (w < m.minW || h < m.minH || (m.readsBefore && w == 1 && side == GuardBuf::Before)) continue;
                Image img(m, w, h, 0, uint32_t(w * 31 + h), 0x5A, side);
                EXPECT_EQ(m.call(img.args), WantStatus(m, w, h)) << m.name << " " << w << "x" << h;
            }
}

// Padding between rows is never written; rows are reached only through steps.
TEST_P(PlaneMember, RowPaddingIsUntouched) {
    const Member& m = GetParam();
    if (m.dense) GTEST_SKIP() << "dense planes have no padding";
    const int w = 5, h = 4, pad = 9;
    Image img(m, w, h, pad, 11);
    ASSERT_EQ(m.call(img.args), WantStatus(m, w, h));
    for (size_t i = 0; i < m.dst.size(); ++i) {
        const int rb = RowBytes(m.dst[i], w), step = rb + pad;
        for (int y = 0; y + 1 < Rows(m.dst[i], h); ++y)
            for (int x = rb; x < step; ++x) EXPECT_EQ((*img.dst[i])[size_t(y) * step + x], 0x5A) << m.name;
    }
}

// A negative step walks upwards: the image stored bottom-up with negative
// steps converts to the same rows as the top-down image with positive steps.
TEST_P(PlaneMember, NegativeStepsWalkUpwards) {
    const Member& m = GetParam();
    if (m.dense) GTEST_SKIP() << "no steps";
    const int w = 6, h = 4;
    Image down(m, w, h, 3, 21), up(m, w, h, 3, 99);
    auto flip = [&](const std::vector<std::unique_ptr<GuardBuf>>& from, std::vector<std::unique_ptr<GuardBuf>>& to,
                    const std::vector<Ext>& ext, const int* step) {
        for (size_t i = 0; i < ext.size(); ++i) {
            const int rows = Rows(ext[i], h), rb = RowBytes(ext[i], w), st = i < 3 ? step[i] : step[0];
            for (int y = 0; y < rows; ++y)
                std::memcpy(to[i]->data() + size_t(rows - 1 - y) * st, from[i]->data() + size_t(y) * st, rb);
        }
    };
    flip(down.src, up.src, m.src, down.args.ss);
    Args a = up.args;
    for (size_t i = 0; i < m.src.size(); ++i) {
        const int st = i < 3 ? up.args.ss[i] : up.args.ss[0];
        a.s[i] += size_t(Rows(m.src[i], h) - 1) * st;
        if (i < 3) a.ss[i] = -st;
    }
    for (size_t i = 0; i < m.dst.size(); ++i) {
        const int st = i < 3 ? up.args.ds[i] : up.args.ds[0];
        a.d[i] += size_t(Rows(m.dst[i], h) - 1) * st;
        if (i < 3) a.ds[i] = -st;
    }
    ASSERT_EQ(m.call(down.args), WantStatus(m, w, h));
    ASSERT_EQ(m.call(a), WantStatus(m, w, h));
    for (size_t i = 0; i < m.dst.size(); ++i) {
        const int rows = Rows(m.dst[i], h), rb = RowBytes(m.dst[i], w), st = i < 3 ? down.args.ds[i] : down.args.ds[0];
        for (int y = 0; y < rows; ++y)
            EXPECT_EQ(0, std::memcmp(down.dst[i]->data() + size_t(y) * st,
                                     up.dst[i]->data() + size_t(rows - 1 - y) * st, rb))
                << m.name << " plane " << i << " row " << y;
    }
}

// Wide rows converted whole equal the same rows converted as column strips
// (each starting at an even column, chroma planes at half the offset): chunked
// row loops, their tails and narrow rows agree.
TEST_P(PlaneMember, WideRowsEqualTheirColumnStrips) {
    const Member& m = GetParam();
    if (m.dense) GTEST_SKIP() << "no steps";
    if (m.wholeRows) GTEST_SKIP() << "strips are no independent parts of a row";
    for (int w : {255, 256, 257, 1000, 1921})
        for (int h : {2, 3}) {
            Image whole(m, w, h, 5, uint32_t(w + h)), strips(m, w, h, 5, uint32_t(w + h));
            ASSERT_EQ(m.call(whole.args), WantStatus(m, w, h)) << m.name << " " << w << "x" << h;
            const int cycle[3] = {2, 6, 64};
            for (int x = 0, k = 0; x < w; ++k) {
                int sw = cycle[k % 3];
                if (w - x - sw < 8) sw = w - x;  // no strip narrower than 8 at the end
                Args a = strips.args;
                a.sz = {sw, h};
                for (size_t i = 0; i < m.src.size(); ++i) a.s[i] += RowBytes(m.src[i], x);
                for (size_t i = 0; i < m.dst.size(); ++i) a.d[i] += RowBytes(m.dst[i], x);
                m.call(a);
                x += sw;
            }
            for (size_t i = 0; i < m.dst.size(); ++i)
                EXPECT_TRUE(whole.dst[i]->copy() == strips.dst[i]->copy())
                    << m.name << " plane " << i << " " << w << "x" << h;
        }
}

}  // namespace
}  // namespace zilplanes
