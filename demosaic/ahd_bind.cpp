// Adaptive homogeneity-directed demosaicing: the exports, the phase dispatch
// and the eight kernels, each a phase and a depth applied to one template.
#include "ahd_kernels.h"

namespace zil::ahd {
namespace {

struct Point {
    int32_t x, y;
};

#define ZIL_AHD_KERNEL(PH, T, SUF)                                                                     \
    ZIL_IMPL void mx_localAHD_##PH##_##SUF(const T* src, int32_t srcStep, Point roiOrigin, ZilSize roiSize, \
                                          T* dst, int32_t dstStep, T* buffer, int32_t bufferStep,        \
                                          int32_t maxX, int32_t maxY) {                                  \
        const AhdJob<T> job{src,    srcStep,    roiOrigin.x, roiOrigin.y,                                \
                            roiSize.width, roiSize.height, dst, dstStep,                                 \
                            buffer, AhdDepth<T>::LineElems(bufferStep), maxX, maxY};                     \
        AhdRegion<T, kPhase##PH>(job);                                                                   \
    }

ZIL_AHD_KERNEL(RGGB, uint8_t, 8u)
ZIL_AHD_KERNEL(GBRG, uint8_t, 8u)
ZIL_AHD_KERNEL(BGGR, uint8_t, 8u)
ZIL_AHD_KERNEL(GRBG, uint8_t, 8u)
ZIL_AHD_KERNEL(RGGB, uint16_t, 16u)
ZIL_AHD_KERNEL(GBRG, uint16_t, 16u)
ZIL_AHD_KERNEL(BGGR, uint16_t, 16u)
ZIL_AHD_KERNEL(GRBG, uint16_t, 16u)
#undef ZIL_AHD_KERNEL

// Kernel for a phase code; a code outside 0 .. 3 does nothing.
#define ZIL_AHD_DISPATCH(T, SUF)                                                                       \
    ZIL_IMPL void mx_localAHD_##SUF(const T* src, int32_t srcStep, Point roiOrigin, ZilSize roiSize,    \
                                    T* dst, int32_t dstStep, T* buffer, int32_t bufferStep,              \
                                    int32_t phase, int32_t maxX, int32_t maxY) {                         \
        switch (phase) {                                                                               \
            case kRGGB:                                                                                \
                return mx_localAHD_RGGB_##SUF(src, srcStep, roiOrigin, roiSize, dst, dstStep, buffer,  \
                                              bufferStep, maxX, maxY);                                 \
            case kGBRG:                                                                                \
                return mx_localAHD_GBRG_##SUF(src, srcStep, roiOrigin, roiSize, dst, dstStep, buffer,  \
                                              bufferStep, maxX, maxY);                                 \
            case kBGGR:                                                                                \
                return mx_localAHD_BGGR_##SUF(src, srcStep, roiOrigin, roiSize, dst, dstStep, buffer,  \
                                              bufferStep, maxX, maxY);                                 \
            case kGRBG:                                                                                \
                return mx_localAHD_GRBG_##SUF(src, srcStep, roiOrigin, roiSize, dst, dstStep, buffer,  \
                                              bufferStep, maxX, maxY);                                 \
            default:                                                                                   \
                return;                                                                                \
        }                                                                                              \
    }

ZIL_AHD_DISPATCH(uint8_t, 8u)
ZIL_AHD_DISPATCH(uint16_t, 16u)
#undef ZIL_AHD_DISPATCH

// The frame: checks in order (pointers, plane size, grid), clip, phase of the
// region's first sample, then one kernel call. Nothing is written before the
// checks pass; buffer and bufferStep are not examined.
template <class T, void (*Local)(const T*, int32_t, Point, ZilSize, T*, int32_t, T*, int32_t, int32_t, int32_t,
                                 int32_t)>
ZilStatus Frame(const T* src, ZilRect rect, ZilSize size, int32_t srcStep, T* dst, int32_t dstStep,
                ZilBayerGrid grid, T* buffer, int32_t bufferStep) {
    if (AnyNull(src, dst)) return zilStatusNullPointer;
    if (TooSmall(size, 5, 5)) return zilStatusBadSize;
    if (grid < 0 || grid > 3) return zilStatusBadArgument;

    // A negative origin is read as 0 without shortening the region; the far
    // side is cut at the plane's edge.
    const int64_t x = Max(rect.x, 0), y = Max(rect.y, 0);
    const int64_t w = rect.width + (size.width - x - rect.width < 0 ? size.width - x - rect.width : 0);
    const int64_t h = rect.height + (size.height - y - rect.height < 0 ? size.height - y - rect.height : 0);

    // Odd x swaps the columns of the pattern (code ^ 3), odd y its rows (code ^ 1).
    int32_t phase = kGridToPhase[grid];
    if (x & 1) phase ^= 3;
    if (y & 1) phase ^= 1;

    if (w <= 0 || h <= 0) return zilStatusOk;
    Local(src, srcStep, Point{int32_t(x), int32_t(y)}, ZilSize{int32_t(w), int32_t(h)}, dst, dstStep, buffer,
          bufferStep, phase, size.width - 1, size.height - 1);
    return zilStatusOk;
}

}  // namespace
}  // namespace zil::ahd

using namespace zil::ahd;

ZIL_IMPL ZilStatus mx_ziliDemosaicAHD_8u_C1C3R(const uint8_t* src, ZilRect srcRect, ZilSize srcSize, int srcStep,
                                              uint8_t* dst, int dstStep, ZilBayerGrid grid, uint8_t* buffer,
                                              int bufferStep) {
    return Frame<uint8_t, mx_localAHD_8u>(src, srcRect, srcSize, srcStep, dst, dstStep, grid, buffer, bufferStep);
}

ZIL_IMPL ZilStatus mx_ziliDemosaicAHD_16u_C1C3R(const uint16_t* src, ZilRect srcRect, ZilSize srcSize, int srcStep,
                                               uint16_t* dst, int dstStep, ZilBayerGrid grid, uint16_t* buffer,
                                               int bufferStep) {
    return Frame<uint16_t, mx_localAHD_16u>(src, srcRect, srcSize, srcStep, dst, dstStep, grid, buffer,
                                            bufferStep);
}
