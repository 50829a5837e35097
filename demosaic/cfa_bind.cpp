// CFAToRGB exports: the frame (checks, clipping, interior rectangle, kernel
// choice) and the named border routines and rectangle kernels of both depths.
#include "cfa_border.h"
#include "cfa_rect.h"

using namespace zil::cfa;

// ---- rectangle kernels: the name is the pattern at the rectangle's first sample ----
#define ZIL_CFA_RECT(NAME, T, RX, RY)                                                            \
    ZIL_IMPL void mx_ownBayerRect##NAME(const T* src, int srcStep, int width, int height, T* dst, \
                                        int dstStep) {                                           \
        BayerRect<T, RX, RY>(src, srcStep, width, height, dst, dstStep);                         \
    }
ZIL_CFA_RECT(RGGB_8u, uint8_t, 0, 0)
ZIL_CFA_RECT(GRBG_8u, uint8_t, 1, 0)
ZIL_CFA_RECT(GBRG_8u, uint8_t, 0, 1)
ZIL_CFA_RECT(BGGR_8u, uint8_t, 1, 1)
ZIL_CFA_RECT(RGGB_16u, uint16_t, 0, 0)
ZIL_CFA_RECT(GRBG_16u, uint16_t, 1, 0)
ZIL_CFA_RECT(GBRG_16u, uint16_t, 0, 1)
ZIL_CFA_RECT(BGGR_16u, uint16_t, 1, 1)
#undef ZIL_CFA_RECT

// ---- border routines ----------------------------------------------------------------
#define ZIL_CFA_BORDER(D, T)                                                                          \
    ZIL_IMPL void mx_ownBayerBrdHrz3_##D(const T* src, ZilSize srcSize, int srcStep, Origin roiOrigin,   \
                                         ZilSize roiSize, T* dst, int code) {                          \
        BrdHrz3(src, srcSize, srcStep, roiOrigin, roiSize, dst, code);                                 \
    }                                                                                                  \
    ZIL_IMPL void mx_ownBayerBrdHrz2D_##D(const T* src, ZilSize srcSize, int srcStep, Origin roiOrigin,  \
                                          ZilSize roiSize, T* dst, int code) {                         \
        BrdHrz2D(src, srcSize, srcStep, roiOrigin, roiSize, dst, code);                                \
    }                                                                                                  \
    ZIL_IMPL void mx_ownBayerBrdVrt3_##D(const T* src, ZilSize srcSize, int srcStep, Origin roiOrigin,   \
                                         ZilSize roiSize, T* dst, int dstStep, int code) {             \
        BrdVrt3(src, srcSize, srcStep, roiOrigin, roiSize, dst, dstStep, code);                        \
    }                                                                                                  \
    ZIL_IMPL void mx_ownBayerBorder_##D(const T* src, ZilSize srcSize, int srcStep, Origin roiOrigin,   \
                                        ZilSize roiSize, T* dst, int dstStep, int grid) {              \
        BayerBorder<T, mx_ownBayerBrdHrz3_##D, mx_ownBayerBrdHrz2D_##D, mx_ownBayerBrdVrt3_##D>(       \
            src, srcSize, srcStep, roiOrigin, roiSize, dst, dstStep, grid);                            \
    }
ZIL_CFA_BORDER(8u, uint8_t)
ZIL_CFA_BORDER(16u, uint16_t)
#undef ZIL_CFA_BORDER

namespace {

// The frame of both depths; steps are in elements from here on.
template <class T, auto Border, auto RectRGGB, auto RectGRBG, auto RectGBRG, auto RectBGGR>
ZilStatus CfaToRgb(const T* src, ZilRect r, ZilSize size, int srcStep, T* dst, int dstStep, int32_t grid) {
    if (zil::AnyNull(src, dst)) return zilStatusNullPointer;
    if (size.width < 2 || size.height < 2) return zilStatusBadSize;
    if (!GridOk(grid)) return zilStatusBadArgument;

    const int32_t W = size.width, H = size.height;
    // Clip at the right and the bottom only (64-bit sums: no overflow on any input).
    int32_t w = r.width, h = r.height;
    if (int64_t(r.x) + w > W) w = W - r.x;
    if (int64_t(r.y) + h > H) h = H - r.y;
    if (w < 1 || h < 1) return zilStatusOk;  // empty, or wholly outside the image

    // Interior rectangle: two samples clear of every image edge.
    const int32_t x0 = Max(r.x, 2), y0 = Max(r.y, 2);
    const int32_t x1 = r.x + w < W - 2 ? r.x + w - 1 : W - 3;
    const int32_t y1 = r.y + h < H - 2 ? r.y + h - 1 : H - 3;

    Border(src, size, srcStep, Origin{r.x, r.y}, ZilSize{w, h}, dst, dstStep, grid);

    // Kernel by the pattern at the interior's first sample (x0, y0), which is
    // absolute: red moves one place with each odd coordinate. So grid 0 (BGGR)
    // gives BGGR at (even, even), GRBG at (even, odd), GBRG at (odd, even) and
    // RGGB at (odd, odd), and the other grids alike.
    const Phase g = PhaseOf(grid);
    const int rx = g.rx ^ (x0 & 1), ry = g.ry ^ (y0 & 1);
    const auto* s = zil::AdvanceT(src, (ptrdiff_t(y0) * srcStep + x0) * ptrdiff_t(sizeof(T)));
    auto* d = zil::AdvanceT(dst, (ptrdiff_t(y0 - r.y) * dstStep + 3 * ptrdiff_t(x0 - r.x)) * ptrdiff_t(sizeof(T)));
    const int iw = x1 - x0 + 1, ih = y1 - y0 + 1;
    if (ry == 0)
        (rx == 0 ? RectRGGB : RectGRBG)(s, srcStep, iw, ih, d, dstStep);
    else
        (rx == 0 ? RectGBRG : RectBGGR)(s, srcStep, iw, ih, d, dstStep);
    return zilStatusOk;
}

}  // namespace

ZIL_IMPL ZilStatus mx_ziliCFAToRGB_8u_C1C3R(const uint8_t* src, ZilRect srcRect, ZilSize srcSize, int srcStep,
                                           uint8_t* dst, int dstStep, ZilBayerGrid grid) {
    return CfaToRgb<uint8_t, mx_ownBayerBorder_8u, mx_ownBayerRectRGGB_8u, mx_ownBayerRectGRBG_8u,
                    mx_ownBayerRectGBRG_8u, mx_ownBayerRectBGGR_8u>(src, srcRect, srcSize, srcStep, dst, dstStep,
                                                                    grid);
}

// Steps arrive in bytes and are halved at once (arithmetic shift): the low bit
// of an odd step is dropped.
ZIL_IMPL ZilStatus mx_ziliCFAToRGB_16u_C1C3R(const uint16_t* src, ZilRect srcRect, ZilSize srcSize, int srcStep,
                                            uint16_t* dst, int dstStep, ZilBayerGrid grid) {
    return CfaToRgb<uint16_t, mx_ownBayerBorder_16u, mx_ownBayerRectRGGB_16u, mx_ownBayerRectGRBG_16u,
                    mx_ownBayerRectGBRG_16u, mx_ownBayerRectBGGR_16u>(src, srcRect, srcSize, srcStep >> 1, dst,
                                                                      dstStep >> 1, grid);
}
