/*
 * zilcc.h - public interface of libzilccmx.so, a library of bit-exact colour
 * conversion primitives for 8-, 16-bit and float images.
 *
 * Usable from C99 and C++. Every image primitive returns a ZilStatus:
 *   0 (zilStatusOk)  the work is done;
 *   > 0              a warning, the work is done (e.g. zilStatusOddSize);
 *   < 0              an error: nothing at all has been written.
 *
 * Argument conventions shared by all image primitives
 *   - Order: source, source step(s), destination, destination step(s), ZilSize,
 *     then any further parameters.
 *   - Steps are the distance in BYTES between the starts of two successive rows,
 *     also for 16-bit and float images. Steps are added as given: a zero step
 *     repeats a row, a negative step walks the image upwards. Only the families
 *     that say so test steps.
 *   - ZilSize is always the extent of the full-resolution (luma or RGB) image,
 *     also in subsampled forms.
 *   - Layout codes at the end of a name: C1/C3 interleaved channels; AC4 four
 *     interleaved bytes whose fourth (alpha) takes no part and, as a destination,
 *     is left untouched unless documented; P3 three planes given as an array
 *     of pointers; C2 a packed 4:2:2 stream of two bytes a pixel. "XY" means
 *     source layout X, destination layout Y. A final R means the function takes
 *     steps; names without it take dense planes (step = plane width).
 *   - The library keeps no state, allocates nothing and may be called from any
 *     number of threads at once on distinct destinations.
 */
#ifndef ZILCC_H
#define ZILCC_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Image extent in pixels (the full-resolution extent in subsampled forms). */
typedef struct ZilSize {
    int32_t width;
    int32_t height;
} ZilSize;

/* The same with 64-bit fields. */
typedef struct ZilSizeL {
    int64_t width;
    int64_t height;
} ZilSizeL;

/* A rectangle of an image: origin and extent in pixels. */
typedef struct ZilRect {
    int32_t x;
    int32_t y;
    int32_t width;
    int32_t height;
} ZilRect;

/* Result of every image primitive (a signed 32-bit value). */
typedef int32_t ZilStatus;
enum {
    zilStatusOk              = 0,    /* done */
    zilStatusNegativeMaximum = 1,    /* warning: image maximum is negative, nothing mapped */
    zilStatusOddSize         = 35,   /* warning: whole cells done, odd last column/row left as it was */
    zilStatusBadArgument     = -5,   /* an enumerated parameter is out of range */
    zilStatusBadSize         = -6,   /* width or height too small */
    zilStatusNullPointer     = -8,   /* a null pointer */
    zilStatusBadStep         = -14,  /* a step less than 1 (only where steps are tested) */
    zilStatusBadContext      = -17,  /* a generator state with the wrong tag */
    zilStatusBadChannelCount = -47,  /* channel count not accepted */
    zilStatusBadRange        = -49,  /* vMax not above vMin */
    zilStatusBadLevels       = -54,  /* level count out of range */
    zilStatusBadNoise        = -55,  /* noise percentage above 100 */
    zilStatusBadDitherType   = -224  /* unknown dither type */
};

/* Constant version record returned by zilccGetLibVersion. */
typedef struct ZilLibVersion {
    int32_t     major;       /* 2017 */
    int32_t     minor;       /* 0 */
    int32_t     majorBuild;  /* 3 */
    int32_t     build;       /* 55431 */
    char        targetCpu[4];/* "mx" and two zero bytes */
    const char* name;        /* "zilCC PX (mx)" */
    const char* version;     /* "2017.0.3 (r55431)" */
    const char* buildDate;   /* "Apr 12 2017" */
} ZilLibVersion;

/* Colour-filter pattern at image sample (0,0), letters in the order
 * top-left, top-right, bottom-left, bottom-right. */
typedef int32_t ZilBayerGrid;
enum {
    zilBayerBGGR = 0,
    zilBayerRGGB = 1,
    zilBayerGBRG = 2,
    zilBayerGRBG = 3
};

/* Selector of the bit-depth reduction. */
typedef int32_t ZilDither;
enum {
    zilDitherNone              = 0, /* plain quantising */
    zilDitherFloydSteinberg    = 1, /* error diffusion, 4 neighbours */
    zilDitherJarvisJudiceNinke = 2, /* error diffusion, 12 neighbours */
    zilDitherStucki            = 3, /* error diffusion, 12 neighbours */
    zilDitherBayer             = 4  /* ordered dither, 4x4 matrix */
};

/* ------------------------------------------------------------------------ */
/* Version query. Never fails; always returns the same constant record.      */
const ZilLibVersion* zilccGetLibVersion(void);

/* ------------------------------------------------------------------------ */
/* RGB <-> YUV (analog YUV: Y = 0.299 R + 0.587 G + 0.114 B on 0..255,
 * U and V scaled B-Y and R-Y offset by 128; 16 fraction bits).
 * Plane arrays: Y, U, V or R, G, B in that order. 4:2:2 chroma planes hold
 * (width+1)/2 samples a row, 4:2:0 chroma planes width/2 by height/2.
 * 4:2:0 forms convert whole 2x2 cells and return zilStatusOddSize when width
 * or height is odd, leaving the last odd row/column untouched.
 * Pointer checks come before the size check, except for the entries of plane
 * arrays, which are checked after the size. Minimum size 1x1 unless noted.
 * Forms without a final R take dense planes: Y/R/G/B step width, C3 step
 * 3*width, 4:2:2 chroma step (width+1)/2, 4:2:0 chroma step width/2.       */
ZilStatus ziliRGBToYUV_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* Fourth destination byte is left untouched. */
ZilStatus ziliRGBToYUV_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToYUV_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToYUV_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], int dstStep, ZilSize roiSize);
/* Copies source alpha to dst[3]; only dst[0..2] are tested for null. */
ZilStatus ziliRGBToYUV_8u_AC4P4R(const uint8_t* src, int srcStep, uint8_t* const dst[4], int dstStep, ZilSize roiSize);
ZilStatus ziliYUVToRGB_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* Fourth destination byte is left untouched. */
ZilStatus ziliYUVToRGB_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* Fourth destination byte of every pixel receives alpha. */
ZilStatus ziliYUVToRGB_8u_C3C4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
ZilStatus ziliYUVToRGB_8u_P3C3R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* Destination plane entries are tested before source plane entries. */
ZilStatus ziliYUVToRGB_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], int dstStep, ZilSize roiSize);
/* Packed Y0 U Y1 V; with an odd width the last cell gets Y and U only. */
ZilStatus ziliRGBToYUV422_8u_C3C2R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToYUV422_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliRGBToYUV422_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliRGBToYUV422_8u_C3P3(const uint8_t* src, uint8_t* const dst[3], ZilSize roiSize);
ZilStatus ziliRGBToYUV422_8u_P3(const uint8_t* const src[3], uint8_t* const dst[3], ZilSize roiSize);
ZilStatus ziliYUV422ToRGB_8u_C2C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYUV422ToRGB_8u_P3C3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYUV422ToRGB_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], int dstStep, ZilSize roiSize);
/* Fourth destination byte is set to 0. */
ZilStatus ziliYUV422ToRGB_8u_P3AC4R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYUV422ToRGB_8u_P3C3(const uint8_t* const src[3], uint8_t* dst, ZilSize roiSize);
ZilStatus ziliYUV422ToRGB_8u_P3(const uint8_t* const src[3], uint8_t* const dst[3], ZilSize roiSize);
ZilStatus ziliRGBToYUV420_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliRGBToYUV420_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliRGBToYUV420_8u_C3P3(const uint8_t* src, uint8_t* const dst[3], ZilSize roiSize);
ZilStatus ziliRGBToYUV420_8u_P3(const uint8_t* const src[3], uint8_t* const dst[3], ZilSize roiSize);
/* Source B, G, R, A bytes; A is ignored. */
ZilStatus ziliBGRToYUV420_8u_AC4P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYUV420ToRGB_8u_P3C3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYUV420ToRGB_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], int dstStep, ZilSize roiSize);
/* Fourth destination byte is set to 0. */
ZilStatus ziliYUV420ToRGB_8u_P3AC4R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYUV420ToRGB_8u_P3C3(const uint8_t* const src[3], uint8_t* dst, ZilSize roiSize);
ZilStatus ziliYUV420ToRGB_8u_P3(const uint8_t* const src[3], uint8_t* const dst[3], ZilSize roiSize);
/* Destination B, G, R bytes; minimum size 2x2. */
ZilStatus ziliYUV420ToBGR_8u_P3C3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);

/* ------------------------------------------------------------------------ */
/* Demosaicing, gradient-steered (CFAToRGB)                                  */
/* One plane of Bayer samples to interleaved R, G, B, by gradient-steered
 * bilinear interpolation (green follows the smaller same-colour second
 * difference; red and blue are plain means). Integer arithmetic only.
 *   src      sample (0,0) of the whole plane of srcSize.width x srcSize.height
 *            samples (W, H); srcStep its row step in bytes.
 *   srcRect  the region to produce, in plane coordinates; it selects output,
 *            the whole plane stays readable. Cut at the right (x + width > W)
 *            and bottom (y + height > H) edges only; x, y must not be negative.
 *   dst      the output pixel of the region's first sample; dstStep in bytes;
 *            needs srcRect.height rows of 3 * srcRect.width elements (after the cut).
 *   grid     pattern at sample (0,0): zilBayerBGGR, zilBayerRGGB, zilBayerGBRG
 *            or zilBayerGRBG. Phases follow absolute coordinates, so a region
 *            equals the same part of a whole-plane call.
 * The outer two rows and columns of the plane use simpler means that read
 * nothing outside it. Source and destination must not overlap.
 * Statuses, in this order: zilStatusNullPointer (src or dst null),
 * zilStatusBadSize (W < 2 or H < 2), zilStatusBadArgument (grid not 0..3);
 * a region empty after the cut, or outside the plane, gives zilStatusOk and
 * writes nothing. 16u: steps in bytes, halved by the call (an odd step loses
 * its low bit). */
ZilStatus ziliCFAToRGB_8u_C1C3R(const uint8_t* src, ZilRect srcRect, ZilSize srcSize, int srcStep,
                                uint8_t* dst, int dstStep, ZilBayerGrid grid);
ZilStatus ziliCFAToRGB_16u_C1C3R(const uint16_t* src, ZilRect srcRect, ZilSize srcSize, int srcStep,
                                 uint16_t* dst, int dstStep, ZilBayerGrid grid);
/* (end of CFAToRGB)                                                         */

/* ------------------------------------------------------------------------ */
/* Demosaicing, adaptive homogeneity-directed (DemosaicAHD)                  */
/* One plane of colour-filter samples to interleaved R, G, B by adaptive
 * homogeneity-directed selection between a horizontal and a vertical
 * reconstruction.
 *   src, srcStep    sample (0,0) of the whole plane of srcSize samples.
 *   srcRect         the region to produce, in plane coordinates. A negative x
 *                   or y is read as 0 without shortening the region; the region
 *                   is cut at the plane's far edges. Samples around the region
 *                   (up to 5 beyond it, reflected about the edge sample at the
 *                   plane's border) are read and used.
 *   dst, dstStep    the output pixel of the region's first sample.
 *   grid            the pattern at plane sample (0,0) (ZilBayerGrid).
 *   buffer          work area of 30 lines, bufferStep bytes from the start of
 *                   one line to the next. With w the region's width after
 *                   cutting, each line must hold w + 6 samples if w is even and
 *                   w + 8 if w is odd, so bufferStep >= that many times the
 *                   sample size (1 or 2 bytes), and the buffer must span
 *                   29 * bufferStep bytes plus one line. Its content on entry
 *                   does not matter and on return has no meaning. The 16u form
 *                   counts lines in 16-bit elements (bufferStep >> 1).
 * Steps are in bytes and are not checked; neither buffer nor bufferStep is.
 * Checks, in order: src or dst null -> zilStatusNullPointer; plane width or
 * height below 5 -> zilStatusBadSize; grid outside 0..3 -> zilStatusBadArgument.
 * A region cut to nothing returns zilStatusOk with nothing written.
 * With a plane width or height of exactly 5, the reflection reaches one sample
 * outside the plane (index -1 or 5 on that axis), which must be readable.    */
ZilStatus ziliDemosaicAHD_8u_C1C3R(const uint8_t* src, ZilRect srcRect, ZilSize srcSize, int srcStep,
                                   uint8_t* dst, int dstStep, ZilBayerGrid grid, uint8_t* buffer, int bufferStep);
ZilStatus ziliDemosaicAHD_16u_C1C3R(const uint16_t* src, ZilRect srcRect, ZilSize srcSize, int srcStep,
                                    uint16_t* dst, int dstStep, ZilBayerGrid grid, uint16_t* buffer, int bufferStep);
/* (end of DemosaicAHD)                                                      */

/* ------------------------------------------------------------------------ */
/* Bit-depth reduction (ReduceBits)                                          */
/*
 * Reduces the number of distinct values of an image to `levels` equally
 * spaced output levels, optionally with a dither that hides the steps:
 *   dither   zilDitherNone (plain), zilDitherFloydSteinberg,
 *            zilDitherJarvisJudiceNinke, zilDitherStucki (error diffusion, one
 *            channel after another, rows top down, pixels left to right),
 *            zilDitherBayer (ordered, 4x4 matrix phased at the region's corner).
 *   noise    0..100 percent of random disturbance of the dither thresholds
 *            (fixed seed: the same call gives the same image); ignored by
 *            zilDitherNone. Read as unsigned.
 *   levels   2..256 for an 8-bit destination, 2..65536 for a 16-bit one.
 *            Read as unsigned.
 *   buffer   work buffer of at least the size that ziliReduceBitsGetBufferSize
 *            reports for the same width, noise and dither; any alignment, any
 *            content. May be null when that size is 0.
 * Steps in bytes. Float sources map 0..1 onto the output range; values
 * outside are not clamped and may wrap. AC4 leaves the destination's fourth
 * element untouched; C4 quantises it like the others.
 * The 8u pair: the plain form gives levels trunc(k * 255 / (levels - 1) + 0.5)
 * with 255 at the top. The dithering forms store level k as bits 8..15 of
 * k * m, m = trunc(65280 / (levels - 1) + 0.000009), so their top level can
 * fall short (levels 8: m = 9325, 7 * m >> 8 = 254); error diffusion still
 * sends saturated white to 255, but the ordered dither can lift white past the
 * top level, whose byte wraps (levels 8: 8 * m >> 8 = 291, stored as 35). For
 * the plain form's levels under every dither, use the 32f8u pair on s / 255.
 * Checks, in order: src/dst null -8; width or height < 1 -6; noise > 100
 * -55; levels out of range -54; dither unknown -224; a null buffer where the
 * route needs one -8. Nothing is written on an error.
 */
/* Work buffer size in bytes for a ReduceBits call on a region `roiSize.width`
 * wide (the height is not read). channels: 1 (C1), 3 (C3), 4 (C4) or 9 (AC4),
 * checked only. Checks: size null -8; width < 1 -6; channels -47; noise > 100
 * -55; dither unknown -224. Sizes: 0 for dither None and for Bayer without
 * noise; Bayer with noise 6336; Floyd-Steinberg 8w + 80 (+ 6272 with noise);
 * Jarvis-Judice-Ninke and Stucki 12w + 112 (+ 6272 with noise). */
ZilStatus ziliReduceBitsGetBufferSize(int channels, ZilSize roiSize, int noise, ZilDither dither, int* size);

ZilStatus ziliReduceBits_8u_C1R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_8u_C4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16u_C1R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16u_C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16u_AC4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16u_C4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16s_C1R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16s_C3R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16s_AC4R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16s_C4R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_32f8u_C1R(const float* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_32f8u_C3R(const float* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_32f8u_AC4R(const float* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_32f8u_C4R(const float* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_32f16u_C1R(const float* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_32f16u_C3R(const float* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_32f16u_AC4R(const float* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_32f16u_C4R(const float* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_32f16s_C1R(const float* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_32f16s_C3R(const float* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_32f16s_AC4R(const float* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_32f16s_C4R(const float* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16u8u_C1R(const uint16_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16u8u_C3R(const uint16_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16u8u_AC4R(const uint16_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16u8u_C4R(const uint16_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16s8u_C1R(const int16_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16s8u_C3R(const int16_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16s8u_AC4R(const int16_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);
ZilStatus ziliReduceBits_16s8u_C4R(const int16_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize,
    int noise, ZilDither dither, int levels, uint8_t* buffer);

/* 8-bit gray to one bit a pixel, most significant bit first; a 1 bit is a
 * pixel above the threshold. dst is the byte holding the first pixel, at bit
 * dstBitOffset AND 7 from the top (higher offsets do not move to a later
 * byte). In the first byte the bits before the row are kept; when the whole row
 * fits in that byte the bits after it are cleared, otherwise the bits after
 * the row's end in its last byte are kept.
 *   dither     zilDitherNone: bit = src > threshold; zilDitherStucki:
 *              integer error diffusion (buffer sized by
 *              ziliReduceBitsGetBufferSize with dither zilDitherStucki).
 *   reserved1, reserved2  ignored.
 * Checks: src/dst null -8; width or height < 1 or dstBitOffset < 0 -6;
 * dither not None or Stucki -224; Stucki with a null buffer -8. */
ZilStatus ziliReduceBits_8u1u_C1R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, int dstBitOffset,
    ZilSize roiSize, int reserved1, int reserved2, ZilDither dither, uint8_t threshold, uint8_t* buffer);
/* (end of ReduceBits)                                                       */

/* ---- Gamma ---------------------------------------------------------- */
/* (end of Gamma) */

/* ---- Colour twist and tone mapping ---------------------------------------------------------- */
/* (end of Colour twist and tone mapping) */

/* ---- Full-resolution YCbCr and gray ---------------------------------------------------------- */
/* (end of Full-resolution YCbCr and gray) */

/* ---- Subsampled YCbCr and BT.709 ---------------------------------------------------------- */
/* (end of Subsampled YCbCr and BT.709) */

/* ---- Chroma reformatting, filters and interlace ---------------------------------------------------------- */
/* Reformat matrix: 8-bit YCbCr between samplings and layouts, no colour
 * arithmetic. Luma always moves unchanged.
 *   P3  planes Y, Cb, Cr (Y, Cr, Cb under a YCrCb name), an array of 3 steps.
 *   P2  a luma plane and a plane of chroma pairs (Cb Cr; Cr Cb for a YCrCb
 *       destination), each with its own pointer and step, luma first.
 *   C2  packed pairs: YCbCr422 Y0 Cb Y1 Cr, YCrCb422 Y0 Cr Y1 Cb, CbYCr422
 *       Cb Y0 Cr Y1.
 *   Chroma planes: 4:2:2 w/2 x h, 4:2:0 w/2 x h/2, 4:1:1 w/4 x h,
 *   1620 w/4 x h/4 (a 4x4 block per sample).
 * Working extent: width rounded down to even (to a multiple of 4 where a
 * 4:1:1 side is involved), height rounded down to even where a 4:2:0 side is;
 * the rest of the destination is not touched. No warning status is returned.
 * Checks: every pointer (a plane array, then its entries) gives
 * zilStatusNullPointer before any size check; then zilStatusBadSize by the
 * rule of the group. Steps are not tested. */
/* Same sampling, relayout only. 4:2:2 both sides: width < 2 or height < 1
 * fails, except the two YCbCr-to-YCrCb422 members, where width < 2 fails and a
 * height below 1 returns zilStatusOk doing nothing. 4:2:0: width or height
 * < 2 fails. 4:1:1: width < 4 fails, height below 1 returns zilStatusOk.
 * ziliYCbCr422_8u_C2P3R also tests dstStep for null. */
ZilStatus ziliYCbCr422_8u_P3C2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr422_8u_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr422ToCbYCr422_8u_P3C2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr422ToCbYCr422_8u_C2R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliCbYCr422ToYCbCr422_8u_C2R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliCbYCr422ToYCbCr422_8u_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr422ToYCrCb422_8u_C2R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr422ToYCrCb422_8u_P3C2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCrCb422ToYCbCr422_8u_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
/* ziliYCrCb420ToYCbCr420_8u_P3P2R swaps: plane 2 (Cb) gives the first byte of a pair. */
ZilStatus ziliYCbCr420_8u_P3P2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
ZilStatus ziliYCbCr420_8u_P2P3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCrCb420ToYCbCr420_8u_P3P2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
/* Does NOT swap: first byte of each pair to dst[1], second to dst[2], as
 * ziliYCbCr420_8u_P2P3R; so it is no inverse of ziliYCrCb420ToYCbCr420_8u_P3P2R.
 * Own order: srcY, srcCbCr, dst null; width or height < 1; dst[0..2] null;
 * width or height < 2. */
ZilStatus ziliYCbCr420ToYCrCb420_8u_P2P3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr411_8u_P3P2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
/* The dst array itself is not tested (must not be null), only its entries. */
ZilStatus ziliYCbCr411_8u_P2P3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
/* 4:2:2 to 4:2:0 dropping rows: chroma row i is source row 2i, odd rows are
 * not read (a packed source gives only luma there). Width or height < 2 fails. */
ZilStatus ziliYCbCr422ToYCbCr420_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr422ToYCbCr420_8u_P3P2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
ZilStatus ziliYCbCr422ToYCbCr420_8u_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr422ToYCbCr420_8u_C2P2R(const uint8_t* src, int srcStep, uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
ZilStatus ziliYCbCr422ToYCrCb420_8u_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr422ToYCrCb420_8u_C2P2R(const uint8_t* src, int srcStep, uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
ZilStatus ziliCbYCr422ToYCbCr420_8u_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliCbYCr422ToYCbCr420_8u_C2P2R(const uint8_t* src, int srcStep, uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
ZilStatus ziliCbYCr422ToYCrCb420_8u_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCrCb422ToYCbCr420_8u_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
/* 4:2:0 to 4:2:2 repeating rows: source chroma row i goes to rows 2i and
 * 2i+1. Width or height < 2 fails. */
ZilStatus ziliYCbCr420ToYCbCr422_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr420ToYCbCr422_8u_P2P3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr420ToYCbCr422_8u_P2C2R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr420ToCbYCr422_8u_P2C2R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCrCb420ToYCbCr422_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCrCb420ToYCbCr422_8u_P3C2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCrCb420ToCbYCr422_8u_P3C2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
/* 4:2:2 to 4:1:1 dropping columns: sample j is source sample 2j, nothing
 * averaged. Width < 4 fails; a height below 1 returns zilStatusOk, except in
 * ziliYCbCr422ToYCbCr411_8u_C2P3R, where it fails. */
ZilStatus ziliYCbCr422ToYCbCr411_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr422ToYCbCr411_8u_P3P2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
ZilStatus ziliYCbCr422ToYCbCr411_8u_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr422ToYCbCr411_8u_C2P2R(const uint8_t* src, int srcStep, uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
ZilStatus ziliYCrCb422ToYCbCr411_8u_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliCbYCr422ToYCbCr411_8u_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
/* 4:1:1 to 4:2:2 repeating columns: sample j becomes samples 2j and 2j+1.
 * Width < 4 fails; a height below 1 returns zilStatusOk. In the P2P3R form the
 * dst array itself is not tested, only its entries. */
ZilStatus ziliYCbCr411ToYCbCr422_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr411ToYCbCr422_8u_P2P3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr411ToYCbCr422_8u_P2C2R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr411ToYCbCr422_8u_P3C2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr411ToYCrCb422_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr411ToYCrCb422_8u_P3C2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
/* 4:1:1 and 4:2:0 exchanged without loss: 420 row i, samples 2j and 2j+1 are
 * 411 rows 2i and 2i+1, sample j (and back). Width < 4 or height < 2 fails.
 * In the P2P3R forms from 4:1:1 the dst array itself is not tested. */
ZilStatus ziliYCbCr411ToYCbCr420_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr411ToYCbCr420_8u_P3P2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
ZilStatus ziliYCbCr411ToYCbCr420_8u_P2P3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr411ToYCrCb420_8u_P2P3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr420ToYCbCr411_8u_P3P2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
ZilStatus ziliYCbCr420ToYCbCr411_8u_P2P3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCrCb420ToYCbCr411_8u_P3P2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
/* Interpolating. Width and height must be multiples of 4 (at least 4), for
 * 420To411 width a multiple of 4 and height even (at least 2); otherwise
 * zilStatusBadSize. Luma is copied.
 * 411To420: even source rows; sample 2j = c[j], 2j+1 = (c[j] + c[j+1]) >> 1,
 * the last source sample repeated.
 * 420To411: even source columns; row 2i = c[i], row 2i+1 = (c[i] + c[i+1]) >> 1,
 * the last source row repeated.
 * 420To1620: every second sample of every second row.
 * 1620To420: 2x2 stencil; interior Cb rounds ((a+b+1)>>1, (a+b+c+d+2)>>2),
 * Cr truncates; the last column and row repeat a and never round. */
ZilStatus ziliYCbCr411To420_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr420To411_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr420To1620_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr1620To420_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
/* Filtered 4:2:0 upsampling.
 * Slice filters with a layout: 1 top slice (from the image's first row; the
 * region's last two rows are left for the next call), 4 middle slice, 16 bottom
 * slice (finishes the image's last rows), any value with bits 1, 4 and 16 all
 * set (e.g. 21) the whole image; any other value does nothing and returns
 * zilStatusOk. A middle or bottom slice reads from two luma rows and one chroma
 * row above its base and writes from two output rows above it: the caller
 * keeps those rows of the previous slice at hand. Luma is filtered vertically
 * 1:2:1 and chroma averaged from the two nearest rows; which rows round
 * depends on the mode. Width and height are rounded down to even.
 * ziliYCbCr420ToYCbCr422_Filter_8u_P2C2R (output Y0 Cb Y1 Cr): null pointers;
 * width or height < 2 fails.
 * ziliYCbCr420ToYCrCb420_Filter_8u_P2P3R: pairs split without a swap (first
 * byte to dst[1]); srcY, srcCbCr, dst null; width or height < 1; dst[0..2]
 * null; width < 2 or even height < 2. Except in the top slice, dst[1] rows
 * advance by dstStep[2] and dst[2] rows by dstStep[1]. */
ZilStatus ziliYCbCr420ToYCrCb420_Filter_8u_P2P3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize, uint32_t layout);
ZilStatus ziliYCbCr420ToYCbCr422_Filter_8u_P2C2R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint32_t layout);
/* Four-tap interpolation: luma copied, even chroma rows copied, odd chroma rows
 * (-1, 9, 9, -1) / 16 over the even rows, the nearest even row standing in at
 * the borders, limited to 0..255. Width rounded down to even, height to a
 * multiple of 8; rows from there on are not touched. Null pointers (arrays,
 * then entries); width < 2 or height < 8 fails. The YCrCb form reads Y, Cr, Cb
 * planes and writes Y, Cb, Cr. */
ZilStatus ziliYCbCr420ToYCbCr422_Filter_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr420ToYCbCr422_Filter_8u_P2P3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCrCb420ToYCbCr422_Filter_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
/* Planes Y, Cr, Cb (4:2:0) to B, G, R, alpha bytes; the right pixel of each
 * 2x2 block takes chroma averaged with the next block's, the last block of a
 * row its own. Blocks per row: width / 2 - 1, then the last block always, so
 * width 1 writes two pixels. src and dst null; width or height < 1; plane
 * entries null. Returns zilStatusOddSize when width or height is odd (an odd
 * last row is not written). */
ZilStatus ziliYCrCb420ToBGR_Filter_8u_P3C4R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
/* Interlaced 4:2:0 <-> 4:2:2: chroma rows of one field weighted together.
 * 420 to 422: rows 0, 1 and the last two copied, the others 5:3, 7:1, 1:7,
 * 3:5 (+4, >> 3). 422 to 420: (3 r0 + r2 + 2) >> 2 and (r1 + 3 r3 + 2) >> 2
 * per group of four rows. Luma copied. Null pointers; width < 2 or height < 4
 * fails. Width rounded down to even, height to a multiple of 4; then
 * zilStatusOddSize if anything was left over. */
ZilStatus ziliYCbCr420To422_Interlace_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr420ToCbYCr422_Interlace_8u_P3C2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr422To420_Interlace_8u_P3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliCbYCr422ToYCbCr420_Interlace_8u_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
/* (end of Chroma reformatting, filters and interlace) */

/* ---- XYZ, LUV, Lab and YCC ---------------------------------------------------------- */
/* (end of XYZ, LUV, Lab and YCC) */

/* ---- HLS, HSV and YCoCg ---------------------------------------------------------- */
/* (end of HLS, HSV and YCoCg) */

#ifdef __cplusplus
}
#endif

#endif /* ZILCC_H */
