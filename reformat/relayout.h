// The reformat matrix as relayout descriptions.
//
// A member is a source side and a destination side, each a packing (see
// reformat_common.h) with a chroma cell: the pixels one chroma sample covers,
// cw across and ch down (4:2:2 is 2x1, 4:2:0 2x2, 4:1:1 4x1, 1620 4x4). One
// generic mover walks the destination and fetches every sample:
//   luma       destination pixel (x, r) is source pixel (x, r);
//   chroma     destination cell row i is fed by a source cell row chosen by
//              the vertical rule, and within a unit of U pixels (U the wider
//              of the two cells) the destination's U/dcw samples come from the
//              source's first sample of the unit, repeated where the
//              destination has more samples than the source:
//     Spatial  source row = the one covering the same luma row (copy, drop
//              or repeat rows; drop or repeat columns);
//     Pair     two source rows 2i and 2i+1 side by side (4:1:1 to 4:2:0);
//     Split    source row i/2, sample 2j + (i & 1) (4:2:0 to 4:1:1).
// Nothing is ever averaged here; the few members that compute have their own
// kernels.
#pragma once

#include "reformat_common.h"

namespace zil::refmt {

struct Cell {
    uint8_t w, h;
};
inline constexpr Cell k422{2, 1}, k420{2, 2}, k411{4, 1}, k1620{4, 4};

enum class Vert : uint8_t { Spatial, Pair, Split };

// Fails with zilStatusBadSize when width < minW, height < minH, or either is
// no multiple of its mul. With minH = kAnyHeight the height is not tested and a
// height below 1 returns zilStatusOk with nothing done.
struct SizeRule {
    int32_t minW, minH;
    uint8_t mulW, mulH;
};
inline constexpr int32_t kAnyHeight = INT32_MIN;

struct Relayout {
    Pack src;
    Cell sc;
    Pack dst;
    Cell dc;
    Vert vert;
    SizeRule size;
    bool lumaByCopy;  // luma goes through the plane copy utility instead
};

constexpr int Unit(const Relayout& r) { return r.sc.w > r.dc.w ? r.sc.w : r.dc.w; }
constexpr int RowsPerPass(const Relayout& r) { return r.sc.h > r.dc.h ? r.sc.h : r.dc.h; }

// Luma of one row only (destination rows that carry no chroma row).
template <const Relayout& R>
__attribute__((noinline)) void LumaRow(const uint8_t* __restrict sy, uint8_t* __restrict dy, int n) {
    constexpr int ss = YStride(R.src), so = YOff(R.src), ds = YStride(R.dst), dof = YOff(R.dst);
    for (int x = 0; x < n; ++x) dy[x * ds + dof] = sy[x * ss + so];
}

// One destination row with its chroma row, unit by unit. For a packed side
// every component is addressed from the one row pointer, and for a pair plane
// both components from the pair row, so the compiler sees whole groups.
template <const Relayout& R>
__attribute__((noinline)) void CellRow(const uint8_t* __restrict sy, const uint8_t* __restrict sb0,
                                       const uint8_t* __restrict sr0, const uint8_t* __restrict sb1,
                                       const uint8_t* __restrict sr1, uint8_t* __restrict dy, uint8_t* __restrict db,
                                       uint8_t* __restrict dr, int units) {
    constexpr Pack S = R.src, D = R.dst;
    constexpr int U = Unit(R), NS = U / R.sc.w, ND = U / R.dc.w;
    constexpr int sys = YStride(S), syo = YOff(S), dys = YStride(D), dyo = YOff(D);
    constexpr int scs = CStride(S), sbo = CbOff(S), sro = CrOff(S);
    constexpr int dcs = CStride(D), dbo = CbOff(D), dro = CrOff(D);
    constexpr bool pair = R.vert == Vert::Pair;
    const uint8_t* const b0 = S.kind == Pk::C2 ? sy : sb0;
    const uint8_t* const r0 = S.kind == Pk::C2 ? sy : S.kind == Pk::P2 ? sb0 : sr0;
    const uint8_t* const b1 = sb1;
    const uint8_t* const r1 = S.kind == Pk::P2 ? sb1 : sr1;
    uint8_t* const B = D.kind == Pk::C2 ? dy : db;
    uint8_t* const Cr = D.kind == Pk::C2 ? dy : D.kind == Pk::P2 ? db : dr;
    for (int u = 0; u < units; ++u) {
        if constexpr (!R.lumaByCopy)
#pragma GCC unroll 4
            for (int p = 0; p < U; ++p) dy[(u * U + p) * dys + dyo] = sy[(u * U + p) * sys + syo];
#pragma GCC unroll 2
        for (int k = 0; k < ND; ++k) {
            const uint8_t* bs = pair && k ? b1 : b0;
            const uint8_t* rs = pair && k ? r1 : r0;
            B[(u * ND + k) * dcs + dbo] = bs[u * NS * scs + sbo];
            Cr[(u * ND + k) * dcs + dro] = rs[u * NS * scs + sro];
        }
    }
}

// The working extent is width rounded down to the unit and height rounded down
// to the taller cell; the rest of the destination is not touched.
template <const Relayout& R>
void Move(const SrcSide& s, const DstSide& d, int w, int h) {
    constexpr Pack S = R.src, D = R.dst;
    constexpr int U = Unit(R), V = RowsPerPass(R);
    const int units = w / U;
    h -= h % V;
    for (int r = 0; r < h; ++r) {
        const uint8_t* sy = s.Row(0, r);
        uint8_t* dy = d.Row(0, r);
        if (r % R.dc.h) {
            if constexpr (!R.lumaByCopy) LumaRow<R>(sy, dy, units * U);
            continue;
        }
        const int i = r / R.dc.h;
        int si = r / R.sc.h, phase = 0;
        if constexpr (R.vert == Vert::Pair) si = 2 * i;
        if constexpr (R.vert == Vert::Split) si = i >> 1, phase = (i & 1) * CStride(S);
        const uint8_t* sb0 = s.Row(CbBase(S), si) + phase;
        const uint8_t* sr0 = s.Row(CrBase(S), si) + phase;
        const uint8_t* sb1 = R.vert == Vert::Pair ? s.Row(CbBase(S), si + 1) : sb0;
        const uint8_t* sr1 = R.vert == Vert::Pair ? s.Row(CrBase(S), si + 1) : sr0;
        CellRow<R>(sy, sb0, sr0, sb1, sr1, dy, d.Row(CbBase(D), i), d.Row(CrBase(D), i), units);
    }
}

}  // namespace zil::refmt
