// The library calls the tool makes, shared by the demo and the subcommands.
// Large images go through the library in bands of rows; each band's call sees
// the same pixels as one call over the whole image would, so the bands leave
// no seams.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common.hpp"
#include "progress.hpp"

namespace zt {

#if defined(ZIL_HAVE_CFA)
constexpr bool kHaveCfa = true;
#else
constexpr bool kHaveCfa = false;
#endif
#if defined(ZIL_HAVE_AHD)
constexpr bool kHaveAhd = true;
#else
constexpr bool kHaveAhd = false;
#endif
#if defined(ZIL_HAVE_REDUCE)
constexpr bool kHaveReduce = true;
#else
constexpr bool kHaveReduce = false;
#endif
#if defined(ZIL_HAVE_REDUCE1U)
constexpr bool kHaveReduce1u = true;
#else
constexpr bool kHaveReduce1u = false;
#endif

// Throws DataError("... is not available in this build of the library").
[[noreturn]] void NotAvailable(const std::string& what);

// ---- demosaicing ----------------------------------------------------------
enum class DemosaicMethod { Gradient, Ahd };

struct Rect {
    int x, y, w, h;
};

// Reconstructs RGB for `rect` (already inside the image) of a one-channel
// 8- or 16-bit mosaic whose sample (0,0) has pattern `grid`.
Image Demosaic(const Image& cfa, ZilBayerGrid grid, DemosaicMethod method, Rect rect, int bandRows,
               Progress* progress);

// The scene sampled through a colour filter of pattern `grid` (tool-side).
Image Mosaic(const Image& rgb, ZilBayerGrid grid);

// ---- RGB <-> YUV ----------------------------------------------------------
enum class YuvFormat { I420, NV12, YUY2, UYVY, YUV422P, YUV444P };

struct YuvFormatInfo {
    YuvFormat format;
    const char* name;         // command-line name, lower case
    const char* description;
    bool evenWidth, evenHeight;
};
const std::vector<YuvFormatInfo>& YuvFormats();
const YuvFormatInfo& YuvInfo(YuvFormat f);

// Bytes of a dense raw frame; throws DataError for extents the layout cannot hold.
size_t YuvFrameBytes(YuvFormat f, int w, int h);

std::vector<uint8_t> RgbToYuv(const Image& rgb, YuvFormat f, int bandRows, Progress* progress);
Image YuvToRgb(const std::vector<uint8_t>& yuv, int w, int h, YuvFormat f, int bandRows, Progress* progress);

// ---- bit-depth reduction --------------------------------------------------
// 8-bit source to 8-bit; 16-bit source to 8-bit (outBits 8) or 16-bit.
Image Reduce(const Image& src, int levels, ZilDither dither, int noise, int outBits, int bandRows,
             Progress* progress);

// One bit a pixel from 8-bit grey, plain threshold or Stucki diffusion. Rows
// of packed bits, first pixel in the top bit, 1 = above the threshold.
std::vector<uint8_t> ReduceToBits(const Image& grey, bool stucki, int threshold, int bandRows, size_t* step,
                                  Progress* progress);

// ---- measures -------------------------------------------------------------
// PSNR in dB of channel `c` (peak 255 or 65535 by depth); infinity if equal.
double Psnr(const Image& a, const Image& b, int c);

}  // namespace zt
