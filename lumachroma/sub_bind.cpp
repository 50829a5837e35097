// RGB <-> subsampled YCbCr exports (4:2:2, 4:2:0, 4:1:1), each bound to its
// member row, kernel and check row.
#include "sub_bind.h"

namespace zil::sub {
namespace {

// Forward kernels: member, source pixel bytes, luma and chroma strides, cell.
constexpr RowKernel kA422C2 = FwdRow<kA422, 3, 2, 4, 2, 1>;
constexpr RowKernel kA422C2Cr = FwdRow<kA422, 3, 2, 4, 2, 1, true>;
constexpr RowKernel kA422P3C2 = FwdRow<kA422P3, 1, 2, 4, 2, 1>;
constexpr RowKernel kA422P3C2Cr = FwdRow<kA422P3, 1, 2, 4, 2, 1, true>;
template <int SB> constexpr RowKernel kB422C2 = FwdRow<kB422, SB, 2, 4, 2, 1>;
template <int SB> constexpr RowKernel kC422P3 = FwdRow<kC422, SB, 1, 1, 2, 1>;
constexpr RowKernel kD422P3 = FwdRow<kD422, 3, 1, 1, 2, 1>;
constexpr RowKernel kCbYCrAC4C2 = FwdRow<kCbYCrAC4, 4, 2, 4, 2, 1>;
template <int SB> constexpr RowKernel k420P3 = FwdRow<k420, SB, 1, 1, 2, 2>;
template <int SB> constexpr RowKernel k411P3 = FwdRow<k420, SB, 1, 1, 4, 1>;
template <int SB> constexpr RowKernel kFlt420 = [](const Rows& rw, int width, uint8_t) {
    Flt420Row<kFlt601, SB>(rw, width);
};
// Reverse kernels: member, luma and chroma strides, cell, pixel bytes, alpha.
template <const InvMember& M, int DB, bool OwnCr = false>
constexpr RowKernel kStream = InvRow<M, 2, 4, 2, 1, DB, DB == 4, OwnCr>;
template <int DB> constexpr RowKernel k420Planes = InvRow<kE420, 1, 1, 2, 2, DB, DB == 4>;
template <int DB> constexpr RowKernel k420Pairs = InvRow<kE420, 1, 2, 2, 2, DB, DB == 4>;
template <int DB> constexpr RowKernel k411Planes = InvRow<kH411, 1, 1, 4, 1, DB, DB == 4>;
constexpr RowKernel kG422Planes3 = InvRow<kG422Planes, 1, 1, 2, 1, 3, false>;

}  // namespace

// The layers the family names; others hold their loops in the check layer.
ZIL_IMPL void mx_innerRGBToYCbCr420_8u_C3P3R(const Rows& rw, int width, uint8_t a) { k420P3<3>(rw, width, a); }
ZIL_IMPL void mx_myRGBToYCbCr420_8u_C3P3R(const Walk& w, int width, int turns) {
    yuv::WalkRows<mx_innerRGBToYCbCr420_8u_C3P3R>(w, width, turns, 0);
}
ZIL_IMPL void mx_innerYCbCr422ToRGB_C2_C3P2R(const Rows& rw, int width, uint8_t a) {
    InvRow<kG422Stream, 2, 4, 2, 1, 1, false>(rw, width, a);
}
ZIL_IMPL void mx_innerYCrCb422ToRGB_C2_C3P2R(const Rows& rw, int width, uint8_t a) {
    InvRow<kG422StreamCr, 2, 4, 2, 1, 1, false, true>(rw, width, a);
}
ZIL_IMPL void mx_innerYCrCbToRGB422_C2_C3R(const Rows& rw, int w, uint8_t a) { kStream<kE422, 3, true>(rw, w, a); }
ZIL_IMPL void mx_innerYCrCbToRGB422_C2_C4R(const Rows& rw, int w, uint8_t a) { kStream<kE422, 4, true>(rw, w, a); }
ZIL_IMPL void mx_innerYCrCbToBGR422_C2_C3R(const Rows& rw, int w, uint8_t a) { kStream<kE422, 3, true>(rw, w, a); }
ZIL_IMPL void mx_innerYCrCbToBGR422_C2_C4R(const Rows& rw, int w, uint8_t a) { kStream<kE422, 4, true>(rw, w, a); }
ZIL_IMPL void mx_innerYCrCb420ToRGB_8u_P2C3R(const Rows& rw, int w, uint8_t a) { k420Pairs<3>(rw, w, a); }
ZIL_IMPL void mx_innerYCrCb420ToRGB_8u_P2C4R(const Rows& rw, int w, uint8_t a) { k420Pairs<4>(rw, w, a); }
ZIL_IMPL void mx_innerYCrCb420ToBGR_8u_P2C3R(const Rows& rw, int w, uint8_t a) { k420Pairs<3>(rw, w, a); }
ZIL_IMPL void mx_innerYCrCb420ToBGR_8u_P2C4R(const Rows& rw, int w, uint8_t a) { k420Pairs<4>(rw, w, a); }

// ---- forward 4:2:2 --------------------------------------------------------------
ZIL_SUB_C(ziliRGBToYCbCr422_8u_C3C2R, ToPacked<kA422C2, kPtr11, kRGB3, kYCbCr>)
ZIL_SUB_C(ziliRGBToYCrCb422_8u_C3C2R, ToPacked<kA422C2Cr, kPtr11, kRGB3, kYCrCb>)
ZIL_SUB_PC(ziliRGBToYCbCr422_8u_P3C2R, PlanesToPacked<kA422P3C2, kEntries11, kYCbCr>)
ZIL_SUB_PC(ziliRGBToYCrCb422_8u_P3C2R, PlanesToPacked<kA422P3C2Cr, kEntries11, kYCrCb>)
ZIL_SUB_C(ziliBGRToYCbCr422_8u_C3C2R, ToPacked<kB422C2<3>, kPtr21, kBGR3, kYCbCr>)
ZIL_SUB_C(ziliBGRToYCbCr422_8u_AC4C2R, ToPacked<kB422C2<4>, kPtr21, kBGRA4, kYCbCr>)
ZIL_SUB_CPS(ziliBGRToYCbCr422_8u_C3P3R, ToPlanes<kC422P3<3>, kAll21, kBGR3, 1>)
ZIL_SUB_CPS(ziliBGRToYCbCr422_8u_AC4P3R, ToPlanes<kC422P3<4>, kAll21, kBGRA4, 1>)
ZIL_SUB_CPS(ziliRGBToYCbCr422_8u_C3P3R, ToPlanes<kD422P3, kAll21, kRGB3, 1>)
ZIL_SUB_C(ziliBGRToCbYCr422_8u_AC4C2R, ToPacked<kCbYCrAC4C2, kPtr11, kBGRA4, kCbYCr>)

// The filtered CbYCr forms: luma lanes 2 bytes apart from byte 1, Cb and Cr 4;
// the gamma form first passes every source byte through the forward gamma table.
namespace {
template <bool Gamma>
ZilStatus FilteredCbYCr(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize sz) {
    if (ZilStatus st = Run<kPtr11>(AnyNull(src, dst), kNoEntries, sz)) return st;
    Walk w{};
    SrcPixels(w, src, srcStep, kRGB3, 1);
    w.at.d[0] = dst + 1, w.at.d[1] = dst, w.at.d[2] = dst + 2;
    w.ds[0] = w.ds[1] = w.ds[2] = dstStep;
    yuv::WalkRows<CbYCrFilterRow<Gamma>>(w, sz.width, sz.height, 0);
    return zilStatusOk;
}
}  // namespace
ZIL_SUB_C(ziliRGBToCbYCr422_8u_C3C2R, FilteredCbYCr<false>)
ZIL_SUB_C(ziliRGBToCbYCr422Gamma_8u_C3C2R, FilteredCbYCr<true>)

// ---- reverse 4:2:2 --------------------------------------------------------------
ZIL_SUB_CC(ziliYCbCr422ToRGB_8u_C2C3R, FromPacked<kStream<kE422Swap, 3>, kPtr11, kYCbCr, kRGB3>)
ZIL_SUB_CC4(ziliYCbCr422ToRGB_8u_C2C4R, FromPacked<kStream<kE422, 4>, kPtr11, kYCbCr, kRGBA4>)
ZIL_SUB_CC(ziliYCbCr422ToBGR_8u_C2C3R, FromPacked<kStream<kE422, 3>, kPtr21, kYCbCr, kBGR3>)
ZIL_SUB_CC4(ziliYCbCr422ToBGR_8u_C2C4R, FromPacked<kStream<kE422, 4>, kPtr21, kYCbCr, kBGRA4>)
ZIL_SUB_CC(ziliYCrCb422ToRGB_8u_C2C3R, FromPacked<mx_innerYCrCbToRGB422_C2_C3R, kPtr11, kYCrCb, kRGB3>)
ZIL_SUB_CC4(ziliYCrCb422ToRGB_8u_C2C4R, FromPacked<mx_innerYCrCbToRGB422_C2_C4R, kPtr11, kYCrCb, kRGBA4>)
ZIL_SUB_CC(ziliYCrCb422ToBGR_8u_C2C3R, FromPacked<mx_innerYCrCbToBGR422_C2_C3R, kPtr11, kYCrCb, kBGR3>)
ZIL_SUB_CC4(ziliYCrCb422ToBGR_8u_C2C4R, FromPacked<mx_innerYCrCbToBGR422_C2_C4R, kPtr11, kYCrCb, kBGRA4>)
ZIL_SUB_CC(ziliCbYCr422ToRGB_8u_C2C3R, FromPacked<kStream<kF422, 3>, kPtr11, kCbYCr, kRGB3>)
ZIL_SUB_CC4(ziliCbYCr422ToBGR_8u_C2C4R, FromPacked<kStream<kF422, 4>, kPtr11, kCbYCr, kBGRA4>)
ZIL_SUB_CP(ziliYCbCr422ToRGB_8u_C2P3R, PackedToPlanes<mx_innerYCbCr422ToRGB_C2_C3P2R, kEntries11, kYCbCr>)
ZIL_SUB_CP(ziliYCrCb422ToRGB_8u_C2P3R, PackedToPlanes<mx_innerYCrCb422ToRGB_C2_C3P2R, kEntries11, kYCrCb>)
ZIL_SUB_PSC(ziliYCbCr422ToRGB_8u_P3C3R, FromPlanes<kG422Planes3, kAll21, kRGB3, 1>)
ZIL_SUB_PSC(ziliYCbCr422ToBGR_8u_P3C3R, FromPlanes<kG422Planes3, kAll21, kBGR3, 1>)

// ---- forward 4:2:0 and 4:1:1 ------------------------------------------------------
ZIL_IMPL ZilStatus mx_ziliRGBToYCbCr420_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3],
                                                const int dstStep[3], ZilSize sz) {
    if (ZilStatus st = Run<kEntries11Cells>(AnyNull(src, dst, dstStep), [&] { return Null3(dst); }, sz)) return st;
    Walk w{};
    SrcPixels(w, src, srcStep, kRGB3, 2);
    DstLuma(w, dst[0], dstStep[0], 2);
    DstChroma(w, dst[1], dst[2], 0);
    w.ds[2] = dstStep[1], w.ds[3] = dstStep[2];
    mx_myRGBToYCbCr420_8u_C3P3R(w, sz.width, sz.height / 2);
    return Done<kEntries11Cells>(sz);
}
ZIL_SUB_CPS(ziliBGRToYCbCr420_8u_C3P3R, ToPlanes<k420P3<3>, kAll22Cells, kBGR3, 2>)
ZIL_SUB_CPS(ziliBGRToYCbCr420_8u_AC4P3R, ToPlanes<k420P3<4>, kAll22Cells, kBGRA4, 2>)
ZIL_SUB_CPS(ziliBGRToYCrCb420_8u_C3P3R, ToPlanes<k420P3<3>, kAll22Cells, kBGR3, 2, true>)
ZIL_SUB_CPS(ziliBGRToYCrCb420_8u_AC4P3R, ToPlanes<k420P3<4>, kAll22Cells, kBGRA4, 2, true>)
ZIL_SUB_CPS(ziliRGBToYCrCb420_8u_AC4P3R, ToPlanes<k420P3<4>, kAll22Cells, kRGBA4, 2, true>)
ZIL_SUB_CPS(ziliBGRToYCbCr411_8u_C3P3R, ToPlanes<k411P3<3>, kAll41Four, kBGR3, 1>)
ZIL_SUB_CPS(ziliBGRToYCbCr411_8u_AC4P3R, ToPlanes<k411P3<4>, kAll41Four, kBGRA4, 1>)
// In 32-bit float, to a luma plane and Cb, Cr pairs.
ZIL_SUB_CP2(ziliRGBToYCbCr420_8u_C3P2R, ToTwoPlanes<kFlt420<3>, kPtr11Cells, kRGB3>)
ZIL_SUB_CP2(ziliRGBToYCbCr420_8u_C4P2R, ToTwoPlanes<kFlt420<4>, kPtr11Cells, kRGBA4>)
ZIL_SUB_CP2(ziliBGRToYCbCr420_8u_C3P2R, ToTwoPlanes<kFlt420<3>, kPtr11Cells, kBGR3>)
ZIL_SUB_CP2(ziliBGRToYCbCr420_8u_AC4P2R, ToTwoPlanes<kFlt420<4>, kPtr11Cells, kBGRA4>)

// ---- reverse 4:2:0 and 4:1:1 ------------------------------------------------------
ZIL_SUB_PSC(ziliYCbCr420ToRGB_8u_P3C3R, FromPlanes<k420Planes<3>, kEntries11Cells, kRGB3, 2>)
ZIL_SUB_PSC(ziliYCbCr420ToBGR_8u_P3C3R, FromPlanes<k420Planes<3>, kEntries11Cells, kBGR3, 2>)
ZIL_SUB_PSC4(ziliYCbCr420ToBGR_8u_P3C4R, FromPlanes<k420Planes<4>, kEntries11Cells, kBGRA4, 2>)
ZIL_SUB_PSC4(ziliYCrCb420ToRGB_8u_P3C4R, FromPlanes<k420Planes<4>, kEntries11Cells, kRGBA4, 2, true>)
ZIL_SUB_P2C(ziliYCbCr420ToRGB_8u_P2C3R, FromTwoPlanes<k420Pairs<3>, kPtr11Cells, kRGB3>)
ZIL_SUB_P2C4(ziliYCbCr420ToRGB_8u_P2C4R, FromTwoPlanes<k420Pairs<4>, kPtr11Cells, kRGBA4>)
ZIL_SUB_P2C(ziliYCbCr420ToBGR_8u_P2C3R, FromTwoPlanes<k420Pairs<3>, kPtr11Cells, kBGR3>)
ZIL_SUB_P2C4(ziliYCbCr420ToBGR_8u_P2C4R, FromTwoPlanes<k420Pairs<4>, kPtr11Cells, kBGRA4>)
ZIL_SUB_P2C(ziliYCrCb420ToRGB_8u_P2C3R, FromTwoPlanes<mx_innerYCrCb420ToRGB_8u_P2C3R, kPtr11Cells, kRGB3, true>)
ZIL_SUB_P2C(ziliYCrCb420ToBGR_8u_P2C3R, FromTwoPlanes<mx_innerYCrCb420ToBGR_8u_P2C3R, kPtr11Cells, kBGR3, true>)
ZIL_SUB_P2C4(ziliYCrCb420ToRGB_8u_P2C4R, FromTwoPlanes<mx_innerYCrCb420ToRGB_8u_P2C4R, kSize11Cells, kRGBA4, true>)
ZIL_SUB_P2C4(ziliYCrCb420ToBGR_8u_P2C4R, FromTwoPlanes<mx_innerYCrCb420ToBGR_8u_P2C4R, kSize11Cells, kBGRA4, true>)
ZIL_SUB_PSC(ziliYCbCr411ToBGR_8u_P3C3R, FromPlanes<k411Planes<3>, kAll41, kBGR3, 1>)
ZIL_SUB_PSC4(ziliYCbCr411ToBGR_8u_P3C4R, FromPlanes<k411Planes<4>, kAll41, kBGRA4, 1>)

}  // namespace zil::sub
