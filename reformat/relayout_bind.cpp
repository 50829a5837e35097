// The reformat matrix: 51 members as relayout rows, bound one line each, and
// the three that interpolate, with their kernels.
//
// Checks: every pointer the member tests, then the size rule of its row; the
// work; status 0. Nulls all give the same status, so their order among
// themselves cannot be seen; only their place before the size test matters.
#include "primitives/utils.h"
#include "relayout.h"

namespace zil::refmt {
namespace {

// ---- size rules (see SizeRule) ----------------------------------------------------
//                                    minW  minH        mulW mulH
inline constexpr SizeRule kWide2      {2,   1,          1,   1};  // 4:2:2 both sides
inline constexpr SizeRule kWide2AnyH  {2,   kAnyHeight, 1,   1};  // the two CbCr/CrCb swaps
inline constexpr SizeRule kBlock2     {2,   2,          1,   1};  // a 4:2:0 side
inline constexpr SizeRule kWide4AnyH  {4,   kAnyHeight, 1,   1};  // a 4:1:1 side
inline constexpr SizeRule kWide4      {4,   1,          1,   1};  // 422 C2 to 411 P3
inline constexpr SizeRule kWide4Tall2 {4,   2,          1,   1};  // 4:1:1 against 4:2:0 by reordering
inline constexpr SizeRule kMul4       {4,   4,          4,   4};  // 1620 and 411 to 420 interpolated
inline constexpr SizeRule kMul4Even   {4,   2,          4,   2};  // 420 to 411 interpolated

constexpr Vert Sp = Vert::Spatial;

// ---- members: source side, destination side, row rule, size rule -------------------
#define ZIL_ROW(NAME, SP, SC, DP, DC, V, SZ) inline constexpr Relayout NAME{SP, SC, DP, DC, V, SZ, false};
// Same sampling (A)
ZIL_ROW(kYCbCr422_P3C2,             kPlanes,     k422, kYCbCr422,   k422, Sp, kWide2)
ZIL_ROW(kYCbCr422_C2P3,             kYCbCr422,   k422, kPlanes,     k422, Sp, kWide2)
ZIL_ROW(kYCbCr422ToCbYCr422_P3C2,   kPlanes,     k422, kCbYCr422,   k422, Sp, kWide2)
ZIL_ROW(kYCbCr422ToCbYCr422_C2,     kYCbCr422,   k422, kCbYCr422,   k422, Sp, kWide2)
ZIL_ROW(kCbYCr422ToYCbCr422_C2,     kCbYCr422,   k422, kYCbCr422,   k422, Sp, kWide2)
ZIL_ROW(kCbYCr422ToYCbCr422_C2P3,   kCbYCr422,   k422, kPlanes,     k422, Sp, kWide2)
ZIL_ROW(kYCbCr422ToYCrCb422_C2,     kYCbCr422,   k422, kYCrCb422,   k422, Sp, kWide2AnyH)
ZIL_ROW(kYCbCr422ToYCrCb422_P3C2,   kPlanes,     k422, kYCrCb422,   k422, Sp, kWide2AnyH)
ZIL_ROW(kYCrCb422ToYCbCr422_C2P3,   kYCrCb422,   k422, kPlanes,     k422, Sp, kWide2)
ZIL_ROW(kYCbCr420_P3P2,             kPlanes,     k420, kPairs,      k420, Sp, kBlock2)
ZIL_ROW(kYCbCr420_P2P3,             kPairs,      k420, kPlanes,     k420, Sp, kBlock2)
ZIL_ROW(kYCrCb420ToYCbCr420_P3P2,   kPlanesCrCb, k420, kPairs,      k420, Sp, kBlock2)
// Deliberately no swap: first byte of a pair to plane 1, as kYCbCr420_P2P3.
ZIL_ROW(kYCbCr420ToYCrCb420_P2P3,   kPairs,      k420, kPlanes,     k420, Sp, kBlock2)
ZIL_ROW(kYCbCr411_P3P2,             kPlanes,     k411, kPairs,      k411, Sp, kWide4AnyH)
ZIL_ROW(kYCbCr411_P2P3,             kPairs,      k411, kPlanes,     k411, Sp, kWide4AnyH)
// 422 to 420, dropping rows (B)
ZIL_ROW(kYCbCr422ToYCbCr420_P3,     kPlanes,     k422, kPlanes,     k420, Sp, kBlock2)
ZIL_ROW(kYCbCr422ToYCbCr420_P3P2,   kPlanes,     k422, kPairs,      k420, Sp, kBlock2)
ZIL_ROW(kYCbCr422ToYCbCr420_C2P3,   kYCbCr422,   k422, kPlanes,     k420, Sp, kBlock2)
ZIL_ROW(kYCbCr422ToYCbCr420_C2P2,   kYCbCr422,   k422, kPairs,      k420, Sp, kBlock2)
ZIL_ROW(kYCbCr422ToYCrCb420_C2P3,   kYCbCr422,   k422, kPlanesCrCb, k420, Sp, kBlock2)
ZIL_ROW(kYCbCr422ToYCrCb420_C2P2,   kYCbCr422,   k422, kPairsCrCb,  k420, Sp, kBlock2)
ZIL_ROW(kCbYCr422ToYCbCr420_C2P3,   kCbYCr422,   k422, kPlanes,     k420, Sp, kBlock2)
ZIL_ROW(kCbYCr422ToYCbCr420_C2P2,   kCbYCr422,   k422, kPairs,      k420, Sp, kBlock2)
ZIL_ROW(kCbYCr422ToYCrCb420_C2P3,   kCbYCr422,   k422, kPlanesCrCb, k420, Sp, kBlock2)
ZIL_ROW(kYCrCb422ToYCbCr420_C2P3,   kYCrCb422,   k422, kPlanes,     k420, Sp, kBlock2)
// 420 to 422, repeating rows (C)
ZIL_ROW(kYCbCr420ToYCbCr422_P3,     kPlanes,     k420, kPlanes,     k422, Sp, kBlock2)
ZIL_ROW(kYCbCr420ToYCbCr422_P2P3,   kPairs,      k420, kPlanes,     k422, Sp, kBlock2)
ZIL_ROW(kYCbCr420ToYCbCr422_P2C2,   kPairs,      k420, kYCbCr422,   k422, Sp, kBlock2)
ZIL_ROW(kYCbCr420ToCbYCr422_P2C2,   kPairs,      k420, kCbYCr422,   k422, Sp, kBlock2)
ZIL_ROW(kYCrCb420ToYCbCr422_P3,     kPlanesCrCb, k420, kPlanes,     k422, Sp, kBlock2)
ZIL_ROW(kYCrCb420ToYCbCr422_P3C2,   kPlanesCrCb, k420, kYCbCr422,   k422, Sp, kBlock2)
ZIL_ROW(kYCrCb420ToCbYCr422_P3C2,   kPlanesCrCb, k420, kCbYCr422,   k422, Sp, kBlock2)
// 422 to 411, dropping columns (D)
ZIL_ROW(kYCbCr422ToYCbCr411_P3,     kPlanes,     k422, kPlanes,     k411, Sp, kWide4AnyH)
ZIL_ROW(kYCbCr422ToYCbCr411_P3P2,   kPlanes,     k422, kPairs,      k411, Sp, kWide4AnyH)
ZIL_ROW(kYCbCr422ToYCbCr411_C2P3,   kYCbCr422,   k422, kPlanes,     k411, Sp, kWide4)
ZIL_ROW(kYCbCr422ToYCbCr411_C2P2,   kYCbCr422,   k422, kPairs,      k411, Sp, kWide4AnyH)
ZIL_ROW(kYCrCb422ToYCbCr411_C2P3,   kYCrCb422,   k422, kPlanes,     k411, Sp, kWide4AnyH)
ZIL_ROW(kCbYCr422ToYCbCr411_C2P3,   kCbYCr422,   k422, kPlanes,     k411, Sp, kWide4AnyH)
// 411 to 422, repeating columns (E)
ZIL_ROW(kYCbCr411ToYCbCr422_P3,     kPlanes,     k411, kPlanes,     k422, Sp, kWide4AnyH)
ZIL_ROW(kYCbCr411ToYCbCr422_P2P3,   kPairs,      k411, kPlanes,     k422, Sp, kWide4AnyH)
ZIL_ROW(kYCbCr411ToYCbCr422_P2C2,   kPairs,      k411, kYCbCr422,   k422, Sp, kWide4AnyH)
ZIL_ROW(kYCbCr411ToYCbCr422_P3C2,   kPlanes,     k411, kYCbCr422,   k422, Sp, kWide4AnyH)
ZIL_ROW(kYCbCr411ToYCrCb422_P3,     kPlanes,     k411, kPlanesCrCb, k422, Sp, kWide4AnyH)
ZIL_ROW(kYCbCr411ToYCrCb422_P3C2,   kPlanes,     k411, kYCrCb422,   k422, Sp, kWide4AnyH)
// 420 and 411 exchanged by reordering (F)
ZIL_ROW(kYCbCr411ToYCbCr420_P3,     kPlanes,     k411, kPlanes,     k420, Vert::Pair,  kWide4Tall2)
ZIL_ROW(kYCbCr411ToYCbCr420_P3P2,   kPlanes,     k411, kPairs,      k420, Vert::Pair,  kWide4Tall2)
ZIL_ROW(kYCbCr411ToYCbCr420_P2P3,   kPairs,      k411, kPlanes,     k420, Vert::Pair,  kWide4Tall2)
ZIL_ROW(kYCbCr411ToYCrCb420_P2P3,   kPairs,      k411, kPlanesCrCb, k420, Vert::Pair,  kWide4Tall2)
ZIL_ROW(kYCbCr420ToYCbCr411_P3P2,   kPlanes,     k420, kPairs,      k411, Vert::Split, kWide4Tall2)
ZIL_ROW(kYCbCr420ToYCbCr411_P2P3,   kPairs,      k420, kPlanes,     k411, Vert::Split, kWide4Tall2)
ZIL_ROW(kYCrCb420ToYCbCr411_P3P2,   kPlanesCrCb, k420, kPairs,      k411, Vert::Split, kWide4Tall2)
#undef ZIL_ROW
// Interpolating (G) that only keeps samples: luma through the copy utility.
inline constexpr Relayout kYCbCr420To1620{kPlanes, k420, kPlanes, k1620, Sp, kMul4, true};

// ---- check layer -----------------------------------------------------------------------
inline ZilStatus SizeStatus(const SizeRule& r, ZilSize sz) {
    if (sz.width < r.minW || sz.height < r.minH || sz.width % r.mulW || sz.height % r.mulH) return zilStatusBadSize;
    return zilStatusOk;
}

template <const Relayout& R, class MkS, class MkD>
ZilStatus Run(bool null, ZilSize sz, MkS mkSrc, MkD mkDst) {
    if (null) return zilStatusNullPointer;
    if (ZilStatus st = SizeStatus(R.size, sz)) return st;
    if (sz.height < 1) return zilStatusOk;  // rules that do not test the height
    const SrcSide s = mkSrc();
    const DstSide d = mkDst();
    if constexpr (R.lumaByCopy) mx_ziliCopy_8u_C1R(s.p[0], int(s.s[0]), d.p[0], int(d.s[0]), sz);
    Move<R>(s, d, sz.width, sz.height);
    return zilStatusOk;
}

// ---- 4:1:1 to 4:2:0, interpolated across --------------------------------------------
// Even source rows only. A pair of destination samples is the source sample and
// the floored mean with its right neighbour; the last sample is repeated.
__attribute__((noinline)) void Widen411Row(const uint8_t* __restrict c, uint8_t* __restrict d, int cw) {
    for (int j = 0; j < cw - 1; ++j) {
        d[2 * j] = c[j];
        d[2 * j + 1] = uint8_t((c[j] + c[j + 1]) >> 1);
    }
    d[2 * cw - 2] = d[2 * cw - 1] = c[cw - 1];
}

// ---- 4:2:0 to 4:1:1, interpolated down ----------------------------------------------
// Even source columns only. An odd destination row is the floored mean of its
// source row and the next; the last source row is repeated.
__attribute__((noinline)) void Narrow420Rows(const uint8_t* __restrict c0, const uint8_t* __restrict c1,
                                             uint8_t* __restrict d0, uint8_t* __restrict d1, int n) {
    for (int j = 0; j < n; ++j) {
        d0[j] = c0[2 * j];
        d1[j] = uint8_t((c0[2 * j] + c1[2 * j]) >> 1);
    }
}

// ---- 1620 to 4:2:0, a 2x2 stencil ----------------------------------------------------
// Interior cells add Half (pairs) and Quarter (fours) before the shift; the
// last column and the last row never round.
template <int Half, int Quarter>
__attribute__((noinline)) void Up1620Rows(const uint8_t* __restrict c0, const uint8_t* __restrict c1,
                                          uint8_t* __restrict d0, uint8_t* __restrict d1, int cw, bool lastRow) {
    const int n = cw - 1;
    if (!lastRow) {
        for (int j = 0; j < n; ++j) {
            const int a = c0[j], b = c0[j + 1], c = c1[j], e = c1[j + 1];
            d0[2 * j] = uint8_t(a);
            d0[2 * j + 1] = uint8_t((a + b + Half) >> 1);
            d1[2 * j] = uint8_t((a + c + Half) >> 1);
            d1[2 * j + 1] = uint8_t((a + b + c + e + Quarter) >> 2);
        }
        const int a = c0[n], c = c1[n];
        d0[2 * n] = d0[2 * n + 1] = uint8_t(a);
        d1[2 * n] = d1[2 * n + 1] = uint8_t((a + c) >> 1);
    } else {
        for (int j = 0; j < n; ++j) {
            const int a = c0[j], b = c0[j + 1];
            d0[2 * j] = d1[2 * j] = d1[2 * j + 1] = uint8_t(a);
            d0[2 * j + 1] = uint8_t((a + b) >> 1);
        }
        d0[2 * n] = d0[2 * n + 1] = d1[2 * n] = d1[2 * n + 1] = c0[n];
    }
}

}  // namespace
}  // namespace zil::refmt

using namespace zil;
using namespace zil::refmt;

// ---- one line per export ---------------------------------------------------------------
// NUL is the member's own null test over its argument names.
#define ZIL_RL_P3P3(NAME, M, NUL)                                                                              \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3],   \
                                 const int dstStep[3], ZilSize sz) {                                         \
        return Run<M>(NUL, sz, [&] { return FromP3(src, srcStep); }, [&] { return FromP3(dst, dstStep); }); \
    }
#define ZIL_RL_P3C2(NAME, M, NUL)                                                                                  \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep,   \
                                 ZilSize sz) {                                                                   \
        return Run<M>(NUL, sz, [&] { return FromP3(src, srcStep); }, [&] { return FromC2(dst, dstStep); });     \
    }
#define ZIL_RL_C2P3(NAME, M, NUL)                                                                                 \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3],  \
                                 ZilSize sz) {                                                                  \
        return Run<M>(NUL, sz, [&] { return FromC2(src, srcStep); }, [&] { return FromP3(dst, dstStep); });    \
    }
#define ZIL_RL_C2C2(NAME, M, NUL)                                                                              \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {    \
        return Run<M>(NUL, sz, [&] { return FromC2(src, srcStep); }, [&] { return FromC2(dst, dstStep); }); \
    }
#define ZIL_RL_P3P2(NAME, M, NUL)                                                                                 \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* const src[3], const int srcStep[3], uint8_t* dstY, int dstYStep, \
                                 uint8_t* dstCbCr, int dstCbCrStep, ZilSize sz) {                               \
        return Run<M>(NUL, sz, [&] { return FromP3(src, srcStep); },                                            \
                      [&] { return FromP2(dstY, dstYStep, dstCbCr, dstCbCrStep); });                             \
    }
#define ZIL_RL_P2P3(NAME, M, NUL)                                                                             \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, \
                                 uint8_t* const dst[3], const int dstStep[3], ZilSize sz) {                 \
        return Run<M>(NUL, sz, [&] { return FromP2(srcY, srcYStep, srcCbCr, srcCbCrStep); },                \
                      [&] { return FromP3(dst, dstStep); });                                                 \
    }
#define ZIL_RL_C2P2(NAME, M, NUL)                                                                                    \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* src, int srcStep, uint8_t* dstY, int dstYStep, uint8_t* dstCbCr,   \
                                 int dstCbCrStep, ZilSize sz) {                                                    \
        return Run<M>(NUL, sz, [&] { return FromC2(src, srcStep); },                                               \
                      [&] { return FromP2(dstY, dstYStep, dstCbCr, dstCbCrStep); });                                \
    }
#define ZIL_RL_P2C2(NAME, M, NUL)                                                                             \
    ZIL_IMPL ZilStatus mx_##NAME(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, \
                                 uint8_t* dst, int dstStep, ZilSize sz) {                                    \
        return Run<M>(NUL, sz, [&] { return FromP2(srcY, srcYStep, srcCbCr, srcCbCrStep); },                \
                      [&] { return FromC2(dst, dstStep); });                                                 \
    }

// Same sampling (A)
ZIL_RL_P3C2(ziliYCbCr422_8u_P3C2R, kYCbCr422_P3C2, NullArr3(src) || !dst)
// The only member that also tests its step array.
ZIL_RL_C2P3(ziliYCbCr422_8u_C2P3R, kYCbCr422_C2P3, !src || NullArr3(dst) || !dstStep)
ZIL_RL_P3C2(ziliYCbCr422ToCbYCr422_8u_P3C2R, kYCbCr422ToCbYCr422_P3C2, NullArr3(src) || !dst)
ZIL_RL_C2C2(ziliYCbCr422ToCbYCr422_8u_C2R, kYCbCr422ToCbYCr422_C2, AnyNull(src, dst))
ZIL_RL_C2C2(ziliCbYCr422ToYCbCr422_8u_C2R, kCbYCr422ToYCbCr422_C2, AnyNull(src, dst))
ZIL_RL_C2P3(ziliCbYCr422ToYCbCr422_8u_C2P3R, kCbYCr422ToYCbCr422_C2P3, !src || NullArr3(dst))
ZIL_RL_C2C2(ziliYCbCr422ToYCrCb422_8u_C2R, kYCbCr422ToYCrCb422_C2, AnyNull(src, dst))
ZIL_RL_P3C2(ziliYCbCr422ToYCrCb422_8u_P3C2R, kYCbCr422ToYCrCb422_P3C2, NullArr3(src) || !dst)
ZIL_RL_C2P3(ziliYCrCb422ToYCbCr422_8u_C2P3R, kYCrCb422ToYCbCr422_C2P3, !src || NullArr3(dst))
ZIL_RL_P3P2(ziliYCbCr420_8u_P3P2R, kYCbCr420_P3P2, NullArr3(src) || AnyNull(dstY, dstCbCr))
ZIL_RL_P2P3(ziliYCbCr420_8u_P2P3R, kYCbCr420_P2P3, AnyNull(srcY, srcCbCr) || NullArr3(dst))
ZIL_RL_P3P2(ziliYCrCb420ToYCbCr420_8u_P3P2R, kYCrCb420ToYCbCr420_P3P2, NullArr3(src) || AnyNull(dstY, dstCbCr))
ZIL_RL_P3P2(ziliYCbCr411_8u_P3P2R, kYCbCr411_P3P2, NullArr3(src) || AnyNull(dstY, dstCbCr))
// The destination array itself is not tested, only its entries.
ZIL_RL_P2P3(ziliYCbCr411_8u_P2P3R, kYCbCr411_P2P3, AnyNull(srcY, srcCbCr) || NullEntries3(dst))

// Its own order: pointers and the array, a size below 1, the planes, a size below 2.
ZIL_IMPL ZilStatus mx_ziliYCbCr420ToYCrCb420_8u_P2P3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr,
                                                     int srcCbCrStep, uint8_t* const dst[3], const int dstStep[3],
                                                     ZilSize sz) {
    if (AnyNull(srcY, srcCbCr, dst)) return zilStatusNullPointer;
    if (TooSmall(sz)) return zilStatusBadSize;
    return Run<kYCbCr420ToYCrCb420_P2P3>(NullEntries3(dst), sz,
                                         [&] { return FromP2(srcY, srcYStep, srcCbCr, srcCbCrStep); },
                                         [&] { return FromP3(dst, dstStep); });
}

// 422 to 420 (B)
ZIL_RL_P3P3(ziliYCbCr422ToYCbCr420_8u_P3R, kYCbCr422ToYCbCr420_P3, NullArr3(src) || NullArr3(dst))
ZIL_RL_P3P2(ziliYCbCr422ToYCbCr420_8u_P3P2R, kYCbCr422ToYCbCr420_P3P2, NullArr3(src) || AnyNull(dstY, dstCbCr))
ZIL_RL_C2P3(ziliYCbCr422ToYCbCr420_8u_C2P3R, kYCbCr422ToYCbCr420_C2P3, !src || NullArr3(dst))
ZIL_RL_C2P2(ziliYCbCr422ToYCbCr420_8u_C2P2R, kYCbCr422ToYCbCr420_C2P2, AnyNull(src, dstY, dstCbCr))
ZIL_RL_C2P3(ziliYCbCr422ToYCrCb420_8u_C2P3R, kYCbCr422ToYCrCb420_C2P3, !src || NullArr3(dst))
ZIL_RL_C2P2(ziliYCbCr422ToYCrCb420_8u_C2P2R, kYCbCr422ToYCrCb420_C2P2, AnyNull(src, dstY, dstCbCr))
ZIL_RL_C2P3(ziliCbYCr422ToYCbCr420_8u_C2P3R, kCbYCr422ToYCbCr420_C2P3, !src || NullArr3(dst))
ZIL_RL_C2P2(ziliCbYCr422ToYCbCr420_8u_C2P2R, kCbYCr422ToYCbCr420_C2P2, AnyNull(src, dstY, dstCbCr))
ZIL_RL_C2P3(ziliCbYCr422ToYCrCb420_8u_C2P3R, kCbYCr422ToYCrCb420_C2P3, !src || NullArr3(dst))
ZIL_RL_C2P3(ziliYCrCb422ToYCbCr420_8u_C2P3R, kYCrCb422ToYCbCr420_C2P3, !src || NullArr3(dst))

// 420 to 422 (C)
ZIL_RL_P3P3(ziliYCbCr420ToYCbCr422_8u_P3R, kYCbCr420ToYCbCr422_P3, NullArr3(src) || NullArr3(dst))
ZIL_RL_P2P3(ziliYCbCr420ToYCbCr422_8u_P2P3R, kYCbCr420ToYCbCr422_P2P3, AnyNull(srcY, srcCbCr) || NullArr3(dst))
ZIL_RL_P2C2(ziliYCbCr420ToYCbCr422_8u_P2C2R, kYCbCr420ToYCbCr422_P2C2, AnyNull(srcY, srcCbCr, dst))
ZIL_RL_P2C2(ziliYCbCr420ToCbYCr422_8u_P2C2R, kYCbCr420ToCbYCr422_P2C2, AnyNull(srcY, srcCbCr, dst))
ZIL_RL_P3P3(ziliYCrCb420ToYCbCr422_8u_P3R, kYCrCb420ToYCbCr422_P3, NullArr3(src) || NullArr3(dst))
ZIL_RL_P3C2(ziliYCrCb420ToYCbCr422_8u_P3C2R, kYCrCb420ToYCbCr422_P3C2, NullArr3(src) || !dst)
ZIL_RL_P3C2(ziliYCrCb420ToCbYCr422_8u_P3C2R, kYCrCb420ToCbYCr422_P3C2, NullArr3(src) || !dst)

// 422 to 411 (D)
ZIL_RL_P3P3(ziliYCbCr422ToYCbCr411_8u_P3R, kYCbCr422ToYCbCr411_P3, NullArr3(src) || NullArr3(dst))
ZIL_RL_P3P2(ziliYCbCr422ToYCbCr411_8u_P3P2R, kYCbCr422ToYCbCr411_P3P2, NullArr3(src) || AnyNull(dstY, dstCbCr))
ZIL_RL_C2P3(ziliYCbCr422ToYCbCr411_8u_C2P3R, kYCbCr422ToYCbCr411_C2P3, !src || NullArr3(dst))
ZIL_RL_C2P2(ziliYCbCr422ToYCbCr411_8u_C2P2R, kYCbCr422ToYCbCr411_C2P2, AnyNull(src, dstY, dstCbCr))
ZIL_RL_C2P3(ziliYCrCb422ToYCbCr411_8u_C2P3R, kYCrCb422ToYCbCr411_C2P3, !src || NullArr3(dst))
ZIL_RL_C2P3(ziliCbYCr422ToYCbCr411_8u_C2P3R, kCbYCr422ToYCbCr411_C2P3, !src || NullArr3(dst))

// 411 to 422 (E)
ZIL_RL_P3P3(ziliYCbCr411ToYCbCr422_8u_P3R, kYCbCr411ToYCbCr422_P3, NullArr3(src) || NullArr3(dst))
ZIL_RL_P2P3(ziliYCbCr411ToYCbCr422_8u_P2P3R, kYCbCr411ToYCbCr422_P2P3, AnyNull(srcY, srcCbCr) || NullEntries3(dst))
ZIL_RL_P2C2(ziliYCbCr411ToYCbCr422_8u_P2C2R, kYCbCr411ToYCbCr422_P2C2, AnyNull(srcY, srcCbCr, dst))
ZIL_RL_P3C2(ziliYCbCr411ToYCbCr422_8u_P3C2R, kYCbCr411ToYCbCr422_P3C2, NullArr3(src) || !dst)
ZIL_RL_P3P3(ziliYCbCr411ToYCrCb422_8u_P3R, kYCbCr411ToYCrCb422_P3, NullArr3(src) || NullArr3(dst))
ZIL_RL_P3C2(ziliYCbCr411ToYCrCb422_8u_P3C2R, kYCbCr411ToYCrCb422_P3C2, NullArr3(src) || !dst)

// 420 and 411 exchanged (F)
ZIL_RL_P3P3(ziliYCbCr411ToYCbCr420_8u_P3R, kYCbCr411ToYCbCr420_P3, NullArr3(src) || NullArr3(dst))
ZIL_RL_P3P2(ziliYCbCr411ToYCbCr420_8u_P3P2R, kYCbCr411ToYCbCr420_P3P2, NullArr3(src) || AnyNull(dstY, dstCbCr))
ZIL_RL_P2P3(ziliYCbCr411ToYCbCr420_8u_P2P3R, kYCbCr411ToYCbCr420_P2P3, AnyNull(srcY, srcCbCr) || NullEntries3(dst))
ZIL_RL_P2P3(ziliYCbCr411ToYCrCb420_8u_P2P3R, kYCbCr411ToYCrCb420_P2P3, AnyNull(srcY, srcCbCr) || NullEntries3(dst))
ZIL_RL_P3P2(ziliYCbCr420ToYCbCr411_8u_P3P2R, kYCbCr420ToYCbCr411_P3P2, NullArr3(src) || AnyNull(dstY, dstCbCr))
ZIL_RL_P2P3(ziliYCbCr420ToYCbCr411_8u_P2P3R, kYCbCr420ToYCbCr411_P2P3, AnyNull(srcY, srcCbCr) || NullArr3(dst))
ZIL_RL_P3P2(ziliYCrCb420ToYCbCr411_8u_P3P2R, kYCrCb420ToYCbCr411_P3P2, NullArr3(src) || AnyNull(dstY, dstCbCr))

// Interpolating (G)
ZIL_RL_P3P3(ziliYCbCr420To1620_8u_P3R, kYCbCr420To1620, NullArr3(src) || NullArr3(dst))

namespace {
// The three computing members: checks, the luma copy, then chroma plane by plane.
template <class Chroma>
ZilStatus RunComputed(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3],
                      ZilSize sz, const SizeRule& rule, Chroma chroma) {
    if (NullArr3(src) || NullArr3(dst)) return zilStatusNullPointer;
    if (ZilStatus st = SizeStatus(rule, sz)) return st;
    mx_ziliCopy_8u_C1R(src[0], srcStep[0], dst[0], dstStep[0], sz);
    const SrcSide s = FromP3(src, srcStep);
    const DstSide d = FromP3(dst, dstStep);
    chroma(s, d, 1);
    chroma(s, d, 2);
    return zilStatusOk;
}
}  // namespace

ZIL_IMPL ZilStatus mx_ziliYCbCr411To420_8u_P3R(const uint8_t* const src[3], const int srcStep[3],
                                              uint8_t* const dst[3], const int dstStep[3], ZilSize sz) {
    return RunComputed(src, srcStep, dst, dstStep, sz, kMul4, [&](const SrcSide& s, const DstSide& d, int p) {
        for (int i = 0; i < sz.height / 2; ++i) Widen411Row(s.Row(p, 2 * i), d.Row(p, i), sz.width / 4);
    });
}

ZIL_IMPL ZilStatus mx_ziliYCbCr420To411_8u_P3R(const uint8_t* const src[3], const int srcStep[3],
                                              uint8_t* const dst[3], const int dstStep[3], ZilSize sz) {
    return RunComputed(src, srcStep, dst, dstStep, sz, kMul4Even, [&](const SrcSide& s, const DstSide& d, int p) {
        const int ch = sz.height / 2;
        for (int i = 0; i < ch; ++i)
            Narrow420Rows(s.Row(p, i), s.Row(p, i + 1 < ch ? i + 1 : i), d.Row(p, 2 * i), d.Row(p, 2 * i + 1),
                          sz.width / 4);
    });
}

ZIL_IMPL ZilStatus mx_ziliYCbCr1620To420_8u_P3R(const uint8_t* const src[3], const int srcStep[3],
                                               uint8_t* const dst[3], const int dstStep[3], ZilSize sz) {
    return RunComputed(src, srcStep, dst, dstStep, sz, kMul4, [&](const SrcSide& s, const DstSide& d, int p) {
        const int ch = sz.height / 4, cw = sz.width / 4;
        for (int i = 0; i < ch; ++i) {
            const bool last = i == ch - 1;
            const uint8_t* c1 = s.Row(p, last ? i : i + 1);
            if (p == 1) Up1620Rows<1, 2>(s.Row(p, i), c1, d.Row(p, 2 * i), d.Row(p, 2 * i + 1), cw, last);
            else Up1620Rows<0, 0>(s.Row(p, i), c1, d.Row(p, 2 * i), d.Row(p, 2 * i + 1), cw, last);
        }
    });
}
