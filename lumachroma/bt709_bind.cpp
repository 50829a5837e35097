// BT.709 exports: the video-range 709CSC forms, the unit-gain 709HDTV forms and
// the float 4:2:0 form with a 64-bit extent. Same kernels as the subsampled
// family, other rows.
#include "sub_bind.h"

namespace zil::sub {
namespace {

template <int SB> constexpr RowKernel kCsc420 = FwdRow<k420Csc, SB, 1, 1, 2, 2>;
template <int SB> constexpr RowKernel kCsc420Pairs = FwdRow<k420Csc, SB, 1, 2, 2, 2>;
constexpr RowKernel kHdtv420Fwd = FwdRow<k420Hdtv, 4, 1, 1, 2, 2>;
template <int SB> constexpr RowKernel kHdtv422Fwd = FwdRow<k422Hdtv, SB, 2, 4, 2, 1>;
constexpr RowKernel kHdtv422FwdAC4 = FwdRow<k422HdtvAC4, 4, 2, 4, 2, 1>;
template <int DB> constexpr RowKernel kCscFull = InvRow<kCsc, 1, 1, 1, 1, DB, DB == 4>;
constexpr RowKernel kCscPlanes420 = InvRow<kCsc, 1, 1, 2, 2, 3, false>;
constexpr RowKernel kHdtvPlanes420 = InvRow<kHdtv420, 1, 1, 2, 2, 4, true>;
template <int DB> constexpr RowKernel kHdtvStream = InvRow<kHdtv422, 2, 4, 2, 1, DB, DB == 4>;

}  // namespace

ZIL_SUB_CPS(ziliBGRToYCbCr420_709CSC_8u_C3P3R, ToPlanes<kCsc420<3>, kAll22Cells, kBGR3, 2>)
ZIL_SUB_CPS(ziliBGRToYCbCr420_709CSC_8u_AC4P3R, ToPlanes<kCsc420<4>, kAll22Cells, kBGRA4, 2>)
ZIL_SUB_CPS(ziliBGRToYCrCb420_709CSC_8u_C3P3R, ToPlanes<kCsc420<3>, kAll22Cells, kBGR3, 2, true>)
ZIL_SUB_CPS(ziliBGRToYCrCb420_709CSC_8u_AC4P3R, ToPlanes<kCsc420<4>, kAll22Cells, kBGRA4, 2, true>)
ZIL_SUB_CPS(ziliBGRToYCbCr420_709HDTV_8u_AC4P3R, ToPlanes<kHdtv420Fwd, kAll22Cells, kBGRA4, 2>)
ZIL_SUB_CP2(ziliBGRToYCbCr420_709CSC_8u_C3P2R, ToTwoPlanes<kCsc420Pairs<3>, kPtr22Cells, kBGR3>)
ZIL_SUB_CP2(ziliBGRToYCbCr420_709CSC_8u_AC4P2R, ToTwoPlanes<kCsc420Pairs<4>, kPtr22Cells, kBGRA4>)
ZIL_SUB_PC3(ziliYCbCrToBGR_709CSC_8u_P3C3R, FromFullPlanes<kCscFull<3>, kAll11, kBGR3>)
ZIL_SUB_PC4(ziliYCbCrToBGR_709CSC_8u_P3C4R, FromFullPlanes<kCscFull<4>, kAll11, kBGRA4>)
ZIL_SUB_PSC(ziliYCbCr420ToBGR_709CSC_8u_P3C3R, FromPlanes<kCscPlanes420, kEntries11Cells, kBGR3, 2>)
ZIL_SUB_PSC4(ziliYCbCr420ToBGR_709HDTV_8u_P3C4R, FromPlanes<kHdtvPlanes420, kEntries11Cells, kBGRA4, 2>)
ZIL_SUB_C(ziliBGRToCbYCr422_709HDTV_8u_C3C2R, ToPacked<kHdtv422Fwd<3>, kPtr11, kBGR3, kCbYCr>)
ZIL_SUB_C(ziliBGRToCbYCr422_709HDTV_8u_AC4C2R, ToPacked<kHdtv422FwdAC4, kPtr11, kBGRA4, kCbYCr>)
ZIL_SUB_CC(ziliCbYCr422ToBGR_709HDTV_8u_C2C3R, FromPacked<kHdtvStream<3>, kPtr11, kCbYCr, kBGR3>)
ZIL_SUB_CC4(ziliCbYCr422ToBGR_709HDTV_8u_C2C4R, FromPacked<kHdtvStream<4>, kPtr11, kCbYCr, kBGRA4>)

// 64-bit extent and steps: rows are reached by 64-bit offsets, so an image may
// lie anywhere in the address space and a step may exceed 2^31 bytes.
ZIL_IMPL ZilStatus mx_ziliRGBToYCbCr420_HDTV709r6_8u_C3P2R_L(const uint8_t* src, int64_t srcStep, uint8_t* dstY,
                                                            int64_t dstYStep, uint8_t* dstC, int64_t dstCStep,
                                                            ZilSizeL sz) {
    if (AnyNull(src, dstY, dstC)) return zilStatusNullPointer;
    if (sz.width < 1 || sz.height < 1) return zilStatusBadSize;
    Rows rw{};
    for (int64_t t = 0; t < sz.height / 2; ++t) {
        const uint8_t* s = src + 2 * t * srcStep;
        for (int c = 0; c < 3; ++c) rw.s[c] = s + c, rw.s[3 + c] = s + srcStep + c;
        rw.d[0] = dstY + 2 * t * dstYStep, rw.d[1] = rw.d[0] + dstYStep, rw.d[2] = dstC + t * dstCStep;
        Flt420Row<kFltR6, 3>(rw, ptrdiff_t(sz.width));
    }
    return ((sz.width | sz.height) & 1) ? zilStatusOddSize : zilStatusOk;
}

}  // namespace zil::sub
