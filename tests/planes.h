// Shared test frame of the 8-bit luma-chroma families: a table row per
// export (its argument shape, check order and extents), buffers for one call
// against guard pages, and the parameterised suite PlaneMember whose tests
// (planes_test.cpp) every family instantiates over its own table.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "guard.h"
#include "zilcc.h"

namespace zilplanes {

using ziltest::GuardBuf;

// ---- one table of every export's argument shape ---------------------------------
// Plane extents: bytes a row and rows, as functions of the full image size.
// Quarter411: w/4 by h; Pairs420: w/2 Cb, Cr pairs by h/2.
enum class Ext { C3, C4, C2, Full, Half422, Half420, Quarter411, Pairs420 };
inline int RowBytes(Ext e, int w) {
    switch (e) {
        case Ext::C3: return 3 * w;
        case Ext::C4: return 4 * w;
        case Ext::C2: return 2 * w;
        case Ext::Full: return w;
        case Ext::Half422: return (w + 1) / 2;
        case Ext::Half420: return w / 2;
        case Ext::Quarter411: return w / 4;
        case Ext::Pairs420: return 2 * (w / 2);
    }
    return 0;
}
inline int Rows(Ext e, int h) { return e == Ext::Half420 || e == Ext::Pairs420 ? h / 2 : h; }

// Uniform arguments; the adapter passes what its export takes. The null*
// flags replace a plane array or step array by a null pointer.
struct Args {
    const uint8_t* s[4] = {};
    int ss[3] = {};
    uint8_t* d[4] = {};
    int ds[3] = {};
    ZilSize sz{};
    uint8_t alpha = 0;
    bool nullSrcArr = false, nullDstArr = false, nullSrcSteps = false, nullDstSteps = false;
    const uint8_t* const* S() const { return nullSrcArr ? nullptr : s; }
    uint8_t* const* D() const { return nullDstArr ? nullptr : d; }
    const int* SS() const { return nullSrcSteps ? nullptr : ss; }
    const int* DS() const { return nullDstSteps ? nullptr : ds; }
};
using Call = std::function<ZilStatus(const Args&)>;

enum Arr : uint8_t { kNone = 0, kSrcArr = 1, kDstArr = 2, kSrcSteps = 4, kDstSteps = 8 };

struct Member {
    const char* name;
    Call call;
    std::vector<Ext> src, dst;
    uint8_t arrays;      // which arguments are arrays (Arr bits)
    bool dense;          // no steps: planes are dense
    bool cells420;       // whole 2x2 cells, zilStatusOddSize on odd extents
    int minW, minH;
    bool entriesFirst = false;    // plane entries are tested before the size
    bool dstArrUntested = false;  // the dst array itself is read without a test
    bool sizeFirst = false;       // the size is tested before the pointers
    bool cells411 = false;        // groups of four, zilStatusOddSize when the width is no multiple of 4
    bool readsBefore = false;     // a width of 1 reads the byte before each source row
    bool wholeRows = false;       // column strips differ from whole rows: a filter carries its left
                                  // neighbour, or cells are groups of four
};
// The status of a call that passes every check.
inline ZilStatus WantStatus(const Member& m, int w, int h) {
    if (m.cells420 && ((w | h) & 1)) return zilStatusOddSize;
    if (m.cells411 && (w & 3)) return zilStatusOddSize;
    return zilStatusOk;
}

#define ZIL_P(fn) [](const Args& a) { return fn(a.s[0], a.ss[0], a.d[0], a.ds[0], a.sz); }
// Plane lists of the shapes.
inline const std::vector<Ext> kC3{Ext::C3}, kC4{Ext::C4}, kC2{Ext::C2}, kP3{Ext::Full, Ext::Full, Ext::Full},
    kP4{Ext::Full, Ext::Full, Ext::Full, Ext::Full}, k422{Ext::Full, Ext::Half422, Ext::Half422},
    k420{Ext::Full, Ext::Half420, Ext::Half420};

#define ZIL_F(fn, ...) [](const Args& a) { return fn(__VA_ARGS__); }

inline void PrintTo(const Member& m, std::ostream* os) { *os << m.name; }
// Buffers for one call: every plane exactly as large as the call may touch,
// ending at a guard page; `pad` extra bytes a row between rows.
struct Image {
    std::vector<std::unique_ptr<GuardBuf>> src, dst;
    Args args;
    Image(const Member& m, int w, int h, int pad, uint32_t seed, uint8_t fill = 0x5A,
          GuardBuf::Side side = GuardBuf::After) {
        args.sz = {w, h};
        for (size_t i = 0; i < m.src.size(); ++i) {
            const int step = RowBytes(m.src[i], w) + (m.dense ? 0 : pad);
            src.push_back(std::make_unique<GuardBuf>(
                std::max<size_t>(1, ziltest::ImageBytes(Rows(m.src[i], h), RowBytes(m.src[i], w), step)), 0, side));
            ziltest::FillRandom(src.back()->data(), src.back()->size(), seed + uint32_t(i));
            args.s[i] = src.back()->data();
            if (i < 3) args.ss[i] = step;
        }
        for (size_t i = 0; i < m.dst.size(); ++i) {
            const int step = RowBytes(m.dst[i], w) + (m.dense ? 0 : pad);
            dst.push_back(std::make_unique<GuardBuf>(
                std::max<size_t>(1, ziltest::ImageBytes(Rows(m.dst[i], h), RowBytes(m.dst[i], w), step)), fill,
                side));
            args.d[i] = dst.back()->data();
            if (i < 3) args.ds[i] = step;
        }
    }
    bool DstUntouched(uint8_t fill) const {
        for (const auto& b : dst)
            if (!b->all(fill)) return false;
        return true;
    }
};

class PlaneMember : public ::testing::TestWithParam<Member> {};

template <size_t N>
const Member& FindIn(const Member (&table)[N], const std::string& name) {
    for (const Member& m : table)
        if (name == m.name) return m;
    throw std::runtime_error("no member " + name);
}

// Channel c of pixel x in row 0 of a full-resolution image: interleaved (one
// C3/C4 plane) or planar (one plane per channel).
inline uint8_t& At(std::vector<std::unique_ptr<GuardBuf>>& planes, const std::vector<Ext>& ext, int x, int c) {
    if (ext.size() == 1) return (*planes[0])[size_t(x) * (ext[0] == Ext::C4 ? 4 : 3) + c];
    return (*planes[c])[x];
}

}  // namespace zilplanes
