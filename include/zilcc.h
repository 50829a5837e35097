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
/* Gamma correction with the Rec. 709 transfer curve, on x normalised to 0..1:
 *   forward  g(x) = 4.5 x below 0.018, else 1.099 x^0.45 - 0.099;
 *   inverse  h(x) = x / 4.5 below 0.0812, else ((x + 0.099) / 1.099)^(1/0.45).
 * 8u and 16u: every colour sample is replaced by its entry of a constant table
 * (N = 255 or 65535: N * g(i / N) in double, rounded to single, then to the
 * nearest integer, ties to even). 0 maps to 0 and N to N.
 * 32f: samples are taken on the range [vMin, vMax]: x = s - vMin, range =
 * vMax - vMin, both in single precision; the result is the curve times the
 * range, plus vMin. Samples outside the range are not clamped (the lower branch
 * goes negative, the upper one is unbounded). The members differ on purpose in
 * the last bits and more:
 *   - C3 forms use 1/range in single, planar and AC4 inverse forms in double;
 *     GammaFwd_32f_AC4IR tests the lower branch in double;
 *   - GammaFwd_32f_AC4R and _AC4IR add vMin twice on the upper branch, so
 *     with vMin other than 0 they lie above the other forms by vMin;
 *   - GammaInv_32f_C3R, _P3R and _IP3R do not scale the upper branch by the
 *     range (right for a range of 1 only); _C3IR, _AC4R and _AC4IR do;
 *   - the AC4 and inverse forms compute the power on blocks of 384 samples
 *     (128 AC4 pixels) with a vector routine whose accuracy is about 21 bits.
 * AC4: the fourth sample of a pixel is neither read nor written. IR/IP3R: in
 * place. P3R: three planes sharing one step.
 * Checks, in order: (32f) 0 >= vMax - vMin in single: -49 (before pointers);
 * any image pointer null, including the plane arrays and their entries: -8;
 * width or height < 1: -6; any step < 1: -14. Nothing is written on an error. */
ZilStatus ziliGammaFwd_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliGammaFwd_8u_C3IR(uint8_t* srcDst, int srcDstStep, ZilSize roiSize);
ZilStatus ziliGammaFwd_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliGammaFwd_8u_AC4IR(uint8_t* srcDst, int srcDstStep, ZilSize roiSize);
ZilStatus ziliGammaFwd_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliGammaFwd_8u_IP3R(uint8_t* const srcDst[3], int srcDstStep, ZilSize roiSize);
ZilStatus ziliGammaFwd_16u_C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliGammaFwd_16u_C3IR(uint16_t* srcDst, int srcDstStep, ZilSize roiSize);
ZilStatus ziliGammaFwd_16u_AC4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliGammaFwd_16u_AC4IR(uint16_t* srcDst, int srcDstStep, ZilSize roiSize);
ZilStatus ziliGammaFwd_16u_P3R(const uint16_t* const src[3], int srcStep, uint16_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliGammaFwd_16u_IP3R(uint16_t* const srcDst[3], int srcDstStep, ZilSize roiSize);
ZilStatus ziliGammaFwd_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize, float vMin, float vMax);
ZilStatus ziliGammaFwd_32f_C3IR(float* srcDst, int srcDstStep, ZilSize roiSize, float vMin, float vMax);
ZilStatus ziliGammaFwd_32f_AC4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize, float vMin, float vMax);
ZilStatus ziliGammaFwd_32f_AC4IR(float* srcDst, int srcDstStep, ZilSize roiSize, float vMin, float vMax);
ZilStatus ziliGammaFwd_32f_P3R(const float* const src[3], int srcStep, float* const dst[3], int dstStep,
    ZilSize roiSize, float vMin, float vMax);
ZilStatus ziliGammaFwd_32f_IP3R(float* const srcDst[3], int srcDstStep, ZilSize roiSize, float vMin, float vMax);
ZilStatus ziliGammaInv_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliGammaInv_8u_C3IR(uint8_t* srcDst, int srcDstStep, ZilSize roiSize);
ZilStatus ziliGammaInv_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliGammaInv_8u_AC4IR(uint8_t* srcDst, int srcDstStep, ZilSize roiSize);
ZilStatus ziliGammaInv_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliGammaInv_8u_IP3R(uint8_t* const srcDst[3], int srcDstStep, ZilSize roiSize);
ZilStatus ziliGammaInv_16u_C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliGammaInv_16u_C3IR(uint16_t* srcDst, int srcDstStep, ZilSize roiSize);
ZilStatus ziliGammaInv_16u_AC4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliGammaInv_16u_AC4IR(uint16_t* srcDst, int srcDstStep, ZilSize roiSize);
ZilStatus ziliGammaInv_16u_P3R(const uint16_t* const src[3], int srcStep, uint16_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliGammaInv_16u_IP3R(uint16_t* const srcDst[3], int srcDstStep, ZilSize roiSize);
ZilStatus ziliGammaInv_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize, float vMin, float vMax);
ZilStatus ziliGammaInv_32f_C3IR(float* srcDst, int srcDstStep, ZilSize roiSize, float vMin, float vMax);
ZilStatus ziliGammaInv_32f_AC4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize, float vMin, float vMax);
ZilStatus ziliGammaInv_32f_AC4IR(float* srcDst, int srcDstStep, ZilSize roiSize, float vMin, float vMax);
ZilStatus ziliGammaInv_32f_P3R(const float* const src[3], int srcStep, float* const dst[3], int dstStep,
    ZilSize roiSize, float vMin, float vMax);
ZilStatus ziliGammaInv_32f_IP3R(float* const srcDst[3], int srcDstStep, ZilSize roiSize, float vMin, float vMax);
/* (end of Gamma) */

/* ---- Colour twist and tone mapping ---------------------------------------------------------- */
/* Colour twist: an affine 3x4 colour matrix applied to every pixel.
 * twist points to 12 floats, row-major: output channel i is
 *   ((t[4i] x + t[4i+3]) + t[4i+1] y) + t[4i+2] z
 * evaluated in single precision in exactly that grouping, from the pixel's
 * three channels x, y, z as floats; the fourth entry of a row is an offset in
 * sample units. All three outputs of a pixel are computed before any is
 * stored, so in-place forms and overlapping rows are safe. Results:
 *   32f  stored as computed, no clamp;
 *   8u   255 at or above 255.0, 0 at or below 0.0 and for NaN, else
 *        t = trunc(0.5f + o), less 1 if t is odd and equal to 0.5f + o (so a
 *        tie goes to the even neighbour: 2.5 -> 2, 3.5 -> 4);
 *   16u  the same with 65535;
 *   16s  -32768 at or below -32768.0, 32767 at or above 32767.0, else
 *        trunc(o - 0.5) below 0 and trunc(o + 0.5) from 0 on, a tie taken to
 *        the even neighbour (-2.5 -> -2, -3.5 -> -4); NaN gives 0.
 * AC4 forms read and write the first three channels and leave the fourth
 * untouched. ziliColorTwist_32f_C4R takes 16 floats, a 4x4 matrix without
 * offset: output i = ((t[4i] x + t[4i+1] y) + t[4i+2] z) + t[4i+3] w, all four
 * channels stored. P3 arrays hold the three planes in channel order.
 * Checks, in order: any pointer null, twist and every plane entry included
 * -8; width or height < 1 -6; a step < 1 -14. Steps are in bytes and are not
 * compared with the width. Nothing is written on an error.               */
ZilStatus ziliColorTwist_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist_32f_AC4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist_32f_C4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist_32f_P3R(const float* const src[3], int srcStep, float* const dst[3], int dstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist_32f_C3IR(float* srcDst, int srcDstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist_32f_AC4IR(float* srcDst, int srcDstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist_32f_IP3R(float* const srcDst[3], int srcDstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], int dstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_8u_C3IR(uint8_t* srcDst, int srcDstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_8u_AC4IR(uint8_t* srcDst, int srcDstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_8u_IP3R(uint8_t* const srcDst[3], int srcDstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_16u_C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_16u_AC4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_16u_P3R(const uint16_t* const src[3], int srcStep, uint16_t* const dst[3], int dstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_16u_C3IR(uint16_t* srcDst, int srcDstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_16u_AC4IR(uint16_t* srcDst, int srcDstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_16u_IP3R(uint16_t* const srcDst[3], int srcDstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_16s_C3R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_16s_AC4R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_16s_P3R(const int16_t* const src[3], int srcStep, int16_t* const dst[3], int dstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_16s_C3IR(int16_t* srcDst, int srcDstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_16s_AC4IR(int16_t* srcDst, int srcDstStep, ZilSize roiSize, const float* twist);
ZilStatus ziliColorTwist32f_16s_IP3R(int16_t* const srcDst[3], int srcDstStep, ZilSize roiSize, const float* twist);

/* Tone mapping: a single-channel float image to 8 bits by one global scale.
 * ziliToneMapLinear_32f8u_C1R: m = the region's maximum (single precision; a
 *   row whose first sample is NaN does not count, a NaN elsewhere is passed
 *   over); m < 0: zilStatusNegativeMaximum, dst not written; m not above
 *   1.1754944e-38 (also NaN): dst filled with 0; else k = 255 / m and each
 *   sample becomes the low 8 bits of trunc(s * k), with no clamp (a negative
 *   sample wraps).
 * ziliToneMapMean_32f8u_C1R: t = twice the region's mean (double); t < 0:
 *   zilStatusNegativeMaximum, dst not written; t not above the same limit:
 *   dst filled with 0; else k = 255.0 / t rounded to single precision and each
 *   sample becomes trunc(s * k) clamped to 0..255.
 * Checks, in order: src or dst null -8; width or height < 1 -6. Steps in
 * bytes, not checked.                                                      */
ZilStatus ziliToneMapLinear_32f8u_C1R(const float* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliToneMapMean_32f8u_C1R(const float* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* (end of Colour twist and tone mapping) */

/* ---- Full-resolution YCbCr and gray ---------------------------------------------------------- */
/* RGB <-> full-resolution YCbCr (video range: Y = 0.257 R + 0.504 G + 0.098 B
 * + 16 on 16..235, Cb and Cr on 16..240 around 128; 16 fraction bits).
 * Plane arrays: Y, Cb, Cr; all three planes have the full extent and share
 * one step. Minimum size 1x1. Forward results are stored without a clamp
 * (they cannot leave their ranges); reverse results are clamped to 0..255.
 * Order of checks: pointer arguments (src, dst or the arrays), then the size,
 * then the plane entries - except where noted "entries first", where the
 * plane entries are tested with the pointers, before the size. Steps are not
 * tested; negative steps walk upwards. Nothing is written on an error.     */
ZilStatus ziliRGBToYCbCr_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* Fourth destination byte is left untouched. */
ZilStatus ziliRGBToYCbCr_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* Entries first. */
ZilStatus ziliRGBToYCbCr_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep, ZilSize roiSize);
/* Entries first; the dst array itself is not tested and must be valid. */
ZilStatus ziliRGBToYCbCr_8u_AC4P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep, ZilSize roiSize);
/* Source entries are tested before destination entries. */
ZilStatus ziliRGBToYCbCr_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], int dstStep, ZilSize roiSize);
/* Reverse, rounding: R = (76282 Y + 104593 v - 1187744) >> 16 and alike,
 * u = Cb - 128, v = Cr - 128. */
ZilStatus ziliYCbCrToRGB_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* Finer coefficients (76284, ...), flooring; fourth byte left untouched. */
ZilStatus ziliYCbCrToRGB_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* Entries first. */
ZilStatus ziliYCbCrToRGB_8u_P3C3R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* Entries first; B, G, R at bytes 0, 1, 2. */
ZilStatus ziliYCbCrToBGR_8u_P3C3R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* R, G, B, alpha. */
ZilStatus ziliYCbCrToRGB_8u_P3C4R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
/* Entries first; B, G, R, alpha. */
ZilStatus ziliYCbCrToBGR_8u_P3C4R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
/* Finer coefficients, rounding; destination entries are tested before source
 * entries. */
ZilStatus ziliYCbCrToRGB_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], int dstStep, ZilSize roiSize);
/* Gray. RGBToGray and ColorToGray: dst = c0 w0 + c1 w1 + c2 w2 over the first
 * three channels in memory order (AC4: the fourth is skipped). ColorToGray
 * takes the weights (null selects the defaults); RGBToGray uses the defaults:
 *   8u   Q15 weights 9798, 19235, 3736 (they sum to 32769); caller weights
 *        become (int)((double)w * 32768.0 + 0.5); dst = low byte of
 *        (c0 w0 + c1 w1 + c2 w2 + 16384) >> 15 in 32-bit integers
 *   16u  float weights 0.299f, 0.587f, 0.114f; dst = low 16 bits of the
 *        truncated ((c0 w0 + 0.5f) + c1 w1) + c2 w2
 *   16s  as 16u on samples biased by +32768, the bias taken off the result
 *   32f  (w0 c0 + w1 c1) + w2 c2 in float; 64f the same in double (weights
 *        double; the defaults are the float values widened)
 * Nothing is clamped: weights summing above one wrap in the integer types.
 * GrayToRGB copies each sample bit for bit into three channels (C1C4R: the
 * fourth gets alpha). YCbCr422ToGray takes the Y bytes (byte 2x of a row) of
 * a Y0 Cb Y1 Cr stream; any width.
 * Checks: src, dst null, then the size (minimum 1x1); weights are not tested.
 * Steps are in bytes; the 16u, 16s and 32f members drop a step's remainder
 * modulo the element size (step >> 1, step >> 2 elements).                */
ZilStatus ziliRGBToGray_8u_C3C1R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToGray_8u_AC4C1R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToGray_16u_C3C1R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToGray_16u_AC4C1R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToGray_16s_C3C1R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToGray_16s_AC4C1R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToGray_32f_C3C1R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToGray_32f_AC4C1R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliColorToGray_8u_C3C1R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, const float coeffs[3]);
ZilStatus ziliColorToGray_8u_AC4C1R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, const float coeffs[3]);
ZilStatus ziliColorToGray_16u_C3C1R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize, const float coeffs[3]);
ZilStatus ziliColorToGray_16u_AC4C1R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize, const float coeffs[3]);
ZilStatus ziliColorToGray_16s_C3C1R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize, const float coeffs[3]);
ZilStatus ziliColorToGray_16s_AC4C1R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize, const float coeffs[3]);
ZilStatus ziliColorToGray_32f_C3C1R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize, const float coeffs[3]);
ZilStatus ziliColorToGray_32f_AC4C1R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize, const float coeffs[3]);
ZilStatus ziliColorToGray_64f_C3C1R(const double* src, int srcStep, double* dst, int dstStep, ZilSize roiSize, const double coeffs[3]);
ZilStatus ziliColorToGray_64f_AC4C1R(const double* src, int srcStep, double* dst, int dstStep, ZilSize roiSize, const double coeffs[3]);
ZilStatus ziliGrayToRGB_8u_C1C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliGrayToRGB_16u_C1C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliGrayToRGB_32f_C1C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliGrayToRGB_8u_C1C4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
ZilStatus ziliGrayToRGB_16u_C1C4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize, uint16_t alpha);
ZilStatus ziliGrayToRGB_32f_C1C4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize, float alpha);
ZilStatus ziliYCbCr422ToGray_8u_C2C1R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* (end of Full-resolution YCbCr and gray) */

/* ---- Subsampled YCbCr and BT.709 ---------------------------------------------------------- */
/* Video-range YCbCr with subsampled chroma (16 fraction bits):
 * Y = (16843 R + 33030 G + 6423 B + 1081344) >> 16 (16..235); Cb and Cr from
 * -9699 R - 19071 G + 28770 B and 28770 R - 24117 G - 4653 B on the channel
 * sums of a cell (pair: >> 17, four pixels: >> 18), 16..240 around 128; the low
 * byte is stored. Packed 4:2:2 pairs: YCbCr422 Y0 Cb Y1 Cr, YCrCb422 Y0 Cr Y1 Cb,
 * CbYCr422 Cb Y0 Cr Y1. Plane arrays Y, Cb, Cr (YCrCb: Y, Cr, Cb); 4:2:2 chroma
 * planes width/2 samples a row, 4:2:0 width/2 by height/2, 4:1:1 width/4.
 * Two-plane (P2) forms: a luma plane and one plane of Cb, Cr pairs (YCrCb:
 * Cr, Cb), each with its own pointer and step.
 * Statuses: 4:2:0 forms convert width/2 by height/2 cells and return
 * zilStatusOddSize (+35) when width or height is odd, leaving the odd last row
 * and column untouched; a height of 1 writes nothing. Forward 4:1:1 converts
 * groups of four on every row and returns zilStatusOddSize when the width is
 * no multiple of 4. 4:2:2 and reverse 4:1:1 forms return zilStatusOk.
 * Null pointer -8, size below the minimum -6; steps are not checked. Nothing
 * is written on a negative status. */
/* Forward 4:2:2 to packed streams. Checks: pointers, then size. RGB sources:
 * Y0 rounds, Y1 floors, chroma offset +128.5, minimum 1x1; an odd last column
 * gets Y in byte 0 and in byte 1 the pixel's own Cb (-8355840, >> 16), also
 * in the YCrCb stream. BGR sources: both lumas round, chroma +128.125, minimum
 * 2x1; an odd last column gets Y and Cb ((P - 8380416) >> 16). Bytes 2, 3 of
 * an odd last cell are not written. */
ZilStatus ziliRGBToYCbCr422_8u_C3C2R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToYCrCb422_8u_C3C2R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliBGRToYCbCr422_8u_C3C2R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* Source B, G, R, A; A is not read. */
ZilStatus ziliBGRToYCbCr422_8u_AC4C2R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* Three full planes R, G, B with one step. Checks: pointers, size, plane
 * entries. As the RGB C3C2R forms, except that byte 1 of an odd last cell is
 * the pixel's own Cr ((Q + 8421376) >> 16), also in the YCbCr stream. */
ZilStatus ziliRGBToYCbCr422_8u_P3C2R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToYCrCb422_8u_P3C2R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* To three planes. Checks: pointers and plane entries, then size; minimum
 * 2x1; chroma +128.125. An odd last column gets Y only (BGR forms) or nothing
 * (RGB form). */
ZilStatus ziliBGRToYCbCr422_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliBGRToYCbCr422_8u_AC4P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliRGBToYCbCr422_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
/* To Cb Y0 Cr Y1. Checks: pointers, size; minimum 1x1.
 * BGRToCbYCr422_8u_AC4C2R: pair sums, Cb +128.5, Cr two units lower before
 * the shift; an odd last column reads source byte 0 as R and byte 2 as B and
 * writes Y (byte 1) and Cb (byte 0).
 * RGBToCbYCr422_8u_C3C2R: chroma through a 1, 2, 1 filter over the preceding
 * pixel, the pair's first and its second; a row's first pair sees a neutral
 * left neighbour. Odd last column: Y and the pixel's own Cb.
 * RGBToCbYCr422Gamma_8u_C3C2R: the same after each source byte has passed
 * the library's forward 8-bit gamma table. */
ZilStatus ziliBGRToCbYCr422_8u_AC4C2R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToCbYCr422_8u_C3C2R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToCbYCr422Gamma_8u_C3C2R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* Reverse (u = Cb - 128, v = Cr - 128, clamped to 0..255):
 * R = (76284 Y + 104595 v - 1187776) >> 16, G = (76284 Y - 25690 u - 53281 v
 * - 1187776) >> 16, B = (76284 Y + 132186 u - 1187776) >> 16, rounded; chroma
 * is repeated over its cell. From packed streams: checks pointers, then size.
 * An odd last column takes its own Y, the chroma byte of its half cell and the
 * other chroma of the preceding pair; with a width of 1 the one chroma byte
 * serves for both. YCbCr422ToRGB_8u_C2C3R writes that last pixel as B, G, R.
 * ToBGR forms of the YCbCr422 stream need a width of at least 2. C4 forms
 * write alpha to the fourth byte. */
ZilStatus ziliYCbCr422ToRGB_8u_C2C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr422ToRGB_8u_C2C4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
ZilStatus ziliYCbCr422ToBGR_8u_C2C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr422ToBGR_8u_C2C4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
ZilStatus ziliYCrCb422ToRGB_8u_C2C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCrCb422ToRGB_8u_C2C4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
ZilStatus ziliYCrCb422ToBGR_8u_C2C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCrCb422ToBGR_8u_C2C4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
/* The CbYCr forms use 76282, 104593, 25689, 53279, 132184 and -1187744. */
ZilStatus ziliCbYCr422ToRGB_8u_C2C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliCbYCr422ToBGR_8u_C2C4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
/* Floored, on Cb and Cr as stored: R = (76284 Y + 104595 Cr - 14608761) >> 16,
 * G = (76284 Y - 25690 Cb - 53281 Cr + 8887730) >> 16,
 * B = (76284 Y + 132186 Cb - 18140365) >> 16, clamped.
 * C2P3R: three full planes R, G, B with one step; checks pointers, size,
 * plane entries; minimum 1x1; odd last column as for the streams above.
 * YCrCb422ToRGB_8u_C2P3R with a width of 1 reads the byte before each row as
 * Cb. P3C3R: checks pointers and plane entries, then size; minimum 2x1; an
 * odd last column is not written. */
ZilStatus ziliYCbCr422ToRGB_8u_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep, ZilSize roiSize);
ZilStatus ziliYCrCb422ToRGB_8u_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr422ToRGB_8u_P3C3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr422ToBGR_8u_P3C3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
/* Forward 4:2:0 to planes: Y per pixel as above, Cb and Cr
 * ((sum over the block) - 33521664) >> 18. RGBToYCbCr420_8u_C3P3R checks
 * pointers, size, plane entries, minimum 1x1; the others check pointers and
 * plane entries, then size, minimum 2x2. */
ZilStatus ziliRGBToYCbCr420_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliBGRToYCbCr420_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliBGRToYCbCr420_8u_AC4P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliBGRToYCrCb420_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliBGRToYCrCb420_8u_AC4P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliRGBToYCrCb420_8u_AC4P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
/* Forward 4:2:0 to two planes in 32-bit float, each result truncated:
 * Y = 0.257 r + 16.5 + 0.504 g + 0.098 b, Cb = (0.439 B + 512 - 0.148 R
 * - 0.291 G) x 0.25 + 0.5, Cr = (0.439 R + 512 - 0.071 B - 0.368 G) x 0.25
 * + 0.5 on the block sums. Checks: pointers, size; minimum 1x1. */
ZilStatus ziliRGBToYCbCr420_8u_C3P2R(const uint8_t* src, int srcStep, uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
ZilStatus ziliRGBToYCbCr420_8u_C4P2R(const uint8_t* src, int srcStep, uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
ZilStatus ziliBGRToYCbCr420_8u_C3P2R(const uint8_t* src, int srcStep, uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
ZilStatus ziliBGRToYCbCr420_8u_AC4P2R(const uint8_t* src, int srcStep, uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
/* Reverse 4:2:0, rounded as the reverse streams; minimum 1x1. From planes:
 * checks pointers, size, plane entries. From two planes: pointers, then size,
 * except YCrCb420To..._P2C4R, which check the size first. */
ZilStatus ziliYCbCr420ToRGB_8u_P3C3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr420ToBGR_8u_P3C3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr420ToBGR_8u_P3C4R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
ZilStatus ziliYCrCb420ToRGB_8u_P3C4R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
ZilStatus ziliYCbCr420ToRGB_8u_P2C3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr420ToRGB_8u_P2C4R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
ZilStatus ziliYCbCr420ToBGR_8u_P2C3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr420ToBGR_8u_P2C4R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
ZilStatus ziliYCrCb420ToRGB_8u_P2C3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCrCb420ToBGR_8u_P2C3R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCrCb420ToRGB_8u_P2C4R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
ZilStatus ziliYCrCb420ToBGR_8u_P2C4R(const uint8_t* srcY, int srcYStep, const uint8_t* srcCbCr, int srcCbCrStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
/* 4:1:1. Checks: pointers and plane entries, then size; minimum 4x1. Forward:
 * as 4:2:0 over groups of four; the last 1 to 3 columns are not written.
 * Reverse, floored: R = (76294 Y + 104595 v - 1220704) >> 16,
 * G = (76294 Y - 25625 u - 53281 v - 1220704) >> 16,
 * B = (76294 Y + 132186 u - 1220704) >> 16; the last 1 to 3 columns reuse
 * the chroma of the row's last whole group. */
ZilStatus ziliBGRToYCbCr411_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliBGRToYCbCr411_8u_AC4P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr411ToBGR_8u_P3C3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCr411ToBGR_8u_P3C4R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
/* BT.709, video range (709CSC): Y = (11993 R + 40239 G + 4063 B + 1081344)
 * >> 16, Cb and Cr from -6619 R - 22151 G + 28770 B and 28770 R - 26149 G
 * - 2621 B on the block sums, - 33521664, >> 18. Forward checks: pointers
 * (and plane entries), then size; minimum 2x2. Reverse: R = (76284 Y +
 * 117506 v - 1187776) >> 16, G = (76284 Y - 13959 u - 34996 v - 1187776) >> 16,
 * B = (76284 Y + 138609 u - 1187776) >> 16, clamped; minimum 1x1; the P3
 * forms with one step have full-resolution chroma and check pointers and plane
 * entries, then size; the 4:2:0 form checks pointers, size, plane entries. */
ZilStatus ziliBGRToYCbCr420_709CSC_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliBGRToYCbCr420_709CSC_8u_AC4P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliBGRToYCrCb420_709CSC_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliBGRToYCrCb420_709CSC_8u_AC4P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliBGRToYCbCr420_709CSC_8u_C3P2R(const uint8_t* src, int srcStep, uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
ZilStatus ziliBGRToYCbCr420_709CSC_8u_AC4P2R(const uint8_t* src, int srcStep, uint8_t* dstY, int dstYStep, uint8_t* dstCbCr, int dstCbCrStep, ZilSize roiSize);
ZilStatus ziliYCbCrToBGR_709CSC_8u_P3C3R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCbCrToBGR_709CSC_8u_P3C4R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
ZilStatus ziliYCbCr420ToBGR_709CSC_8u_P3C3R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize);
/* BT.709 with unit luma gain (709HDTV): Y = (13959 R + 46858 G + 4719 B +
 * 32768) >> 16; Cb, Cr from -7668 R - 25821 G + 33489 B and 33489 R
 * - 30409 G - 3080 B, on a pair + 16842752 (Cb) or + 16842750 (Cr), >> 17,
 * on a 2x2 block + 33587200, >> 18; every forward result is limited to
 * 1..254. Packed forward: an odd last column gets Y and its own Cb
 * ((P + 8421376) >> 16); the AC4 form reads that pixel's byte 0 as R and
 * byte 2 as B. Reverse, rounded: R = ((Y << 16) + 100925 v + 32768) >> 16,
 * G with - 11993 u - 30081 v, B with + 119013 u, clamped; the streams treat
 * an odd last column and a width of 1 as the reverse 4:2:2 forms above.
 * Checks as their 709CSC or subsampled counterparts; minimum 2x2 for the
 * forward 4:2:0 form, 1x1 for the others. */
ZilStatus ziliBGRToYCbCr420_709HDTV_8u_AC4P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], ZilSize roiSize);
ZilStatus ziliYCbCr420ToBGR_709HDTV_8u_P3C4R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
ZilStatus ziliBGRToCbYCr422_709HDTV_8u_C3C2R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliBGRToCbYCr422_709HDTV_8u_AC4C2R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliCbYCr422ToBGR_709HDTV_8u_C2C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliCbYCr422ToBGR_709HDTV_8u_C2C4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize, uint8_t alpha);
/* R, G, B to a luma plane and Cb, Cr pairs in 32-bit float with a 64-bit
 * extent and 64-bit steps, each result clamped to 0..255, then truncated:
 * Y = 0.2126 r + 16.5 + 0.7152 g + 0.0722 b (bright pixels saturate at 255),
 * Cb = (-0.1146 R + 512 + 0.5 B - 0.3854 G) x 0.25 + 0.5,
 * Cr = (0.5 R + 512 - 0.0458 B - 0.4542 G) x 0.25 + 0.5 on the block sums.
 * Checks: pointers, size; minimum 1x1; zilStatusOddSize as 4:2:0. */
ZilStatus ziliRGBToYCbCr420_HDTV709r6_8u_C3P2R_L(const uint8_t* src, int64_t srcStep, uint8_t* dstY, int64_t dstYStep, uint8_t* dstCbCr, int64_t dstCbCrStep, ZilSizeL roiSize);
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
/* RGB <-> CIE XYZ (reference white D65, 3x3 matrix). C3R: three interleaved
 * samples a pixel; AC4R: four, the fourth neither read nor written.
 * 8u: fixed point, matrix x 65536 truncated, no rounding; X and Y stored as
 * they are, Z clamped to 0..255; the inverse floors and clamps 0..255.
 * 16u/16s: single precision with 0.5 added after the first product (the 16u
 * inverse's B finishes in double); forward Z and all inverse channels clamped
 * to 0..65535; 16s samples are those values less 32768. 16u, 16s and 32f
 * steps are taken in whole samples (byte step >> 1, >> 2).
 * 32f: RGB nominally 0..1; forward Z and all inverse channels limited to 0..1.
 * Checks: src or dst null -8, then width or height < 1 -6. Steps unchecked. */
ZilStatus ziliRGBToXYZ_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToXYZ_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToXYZ_16u_C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToXYZ_16u_AC4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToXYZ_16s_C3R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToXYZ_16s_AC4R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToXYZ_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToXYZ_32f_AC4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliXYZToRGB_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliXYZToRGB_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliXYZToRGB_16u_C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliXYZToRGB_16u_AC4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliXYZToRGB_16s_C3R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliXYZToRGB_16s_AC4R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliXYZToRGB_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliXYZToRGB_32f_AC4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
/* RGB (BGR: channels 0 and 2 exchanged) <-> CIE LUV. L 0..100, U, V about
 * -134..220 and -140..122. Encodings: 8u L*255/100, (U+134)*255/354,
 * (V+140)*255/262; 16u the same on 65535; 16s the 16u value less 32768; 32f
 * L, U, V themselves. Forward: Y > 0.008856 takes the cube root (L = 116
 * Y^(1/3) - 16), else L = 903.3 Y; Y = 0 gives u' = v' = 0. The 8u forward
 * truncates L and rounds U and V; integer forward outputs are not clamped
 * (low bits stored). Inverse: L < 9e-5 gives black (16s: -32768 in all
 * three); L >= 7.9996247 cubes, else Y = L/903.3; outputs clamped. The
 * integer inverses use the white u' = 0.19783941, v' = 0.4683422, the rest
 * 0.197839, 0.468342: the pair is not an exact round trip.
 * Steps: 8u and RGBToLUV 32f use byte steps as given; the other 16u, 16s and
 * 32f forms take them in whole samples. AC4R: the fourth sample untouched.
 * Checks: src or dst null -8, then width or height < 1 -6. Steps unchecked. */
ZilStatus ziliRGBToLUV_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToLUV_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliBGRToLUV_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToLUV_16u_C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToLUV_16u_AC4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToLUV_16s_C3R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToLUV_16s_AC4R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToLUV_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToLUV_32f_AC4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliBGRToLUV_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLUVToRGB_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLUVToRGB_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLUVToBGR_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLUVToRGB_16u_C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLUVToRGB_16u_AC4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLUVToRGB_16s_C3R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLUVToRGB_16s_AC4R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLUVToRGB_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLUVToRGB_32f_AC4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLUVToBGR_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
/* RGB or BGR <-> CIE Lab, C3 on both sides, byte steps as given.
 * Encodings: 8u L*255/100, a+128, b+128; 16u (BGRToLab_8u16u, LabToBGR_16u8u)
 * L*65535/100, (a+128)*255, (b+128)*255; 32f L, a, b themselves.
 * Forward: f(t) = t^(1/3) for t > 0.008856, else 7.787 t + 16/116; L = 116 f(y)
 * - 16 or 903.3 y. 8u rounds (0.5 on L, 128.5 on a and b), 8u16u truncates;
 * integer outputs are not clamped (low bits stored). 32f forward limits x, y,
 * z to at most 1. Inverse: always the cube (no linear branch, so Lab 8u
 * (0,128,128) gives RGB (1,1,1)); 8u rounds and 16u8u truncates, both clamp
 * to 0..255; 32f is not clamped.
 * Checks: src or dst null -8, then width or height < 1 -6. Steps unchecked. */
ZilStatus ziliRGBToLab_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliBGRToLab_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLabToRGB_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLabToBGR_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToLab_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliBGRToLab_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLabToRGB_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLabToBGR_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliBGRToLab_8u16u_C3R(const uint8_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliLabToBGR_16u8u_C3R(const uint16_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
/* RGB <-> photographic YCC: Y = 0.713 luma, C1 = 0.437 (B - luma) + 156/255,
 * C2 = 0.532 (R - luma) + 137/255 (scaled by 255 at 8u, 65535 at 16u, less
 * 32768 at 16s, themselves at 32f). 8u is fixed point without rounding, so
 * white goes to (181,156,137) and back to (245,245,245). The forward
 * direction stores low bits without a clamp; the inverse clamps (32f to 0..1).
 * 16u, 16s and 32f steps are taken in whole samples (byte step >> 1, >> 2).
 * AC4R: the fourth sample neither read nor written.
 * Checks: src or dst null -8, then width or height < 1 -6. Steps unchecked. */
ZilStatus ziliRGBToYCC_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToYCC_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToYCC_16u_C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToYCC_16u_AC4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToYCC_16s_C3R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToYCC_16s_AC4R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToYCC_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToYCC_32f_AC4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCCToRGB_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCCToRGB_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCCToRGB_16u_C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCCToRGB_16u_AC4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCCToRGB_16s_C3R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCCToRGB_16s_AC4R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCCToRGB_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliYCCToRGB_32f_AC4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
/* (end of XYZ, LUV, Lab and YCC) */

/* ---- HLS, HSV and YCoCg ---------------------------------------------------------- */
/* RGB <-> HLS and HSV, in single-precision float for every depth.
 * Channels: HLS images hold H, L, S; HSV images H, S, V (channel or plane 0, 1, 2).
 * Encoding: 8u and 16u use the full range for every channel, H included
 * (0..255 or 0..65535 for 0..360 degrees); 16s is the 16u scale shifted down
 * by 32768; 32f holds H, L, S on 0..1 (not checked: any value is processed,
 * non-finite ones too). Results truncate after the rounding add of the member;
 * nothing is clamped. Forward and inverse are not exact inverses.
 *
 * RGB group (RGB order, all depths of HLS, 8u and 16u of HSV):
 *   - C3R and AC4R differ only in the pixel stride; AC4R never writes the
 *     fourth channel of the destination.
 *   - Steps are not tested. They are taken in elements: a byte step is
 *     shifted right by 1 (16u, 16s) or by 2 (32f), so a remainder is dropped.
 *   - Checks: src or dst null -8, then width or height < 1 -6.
 *   - Rounding: + 0.5 before truncation. RGB to HSV: S and H rounded, V exact.
 *     HLS ties: red wins over green and blue, green over blue; HSV ties: blue
 *     wins, then green. 32f HLS treats max - min <= 2^-23 as grey.
 *     HSV to RGB: a hue of full scale (255 / 65535) equals a hue of 0. */
ZilStatus ziliRGBToHLS_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToHLS_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToHLS_16u_C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToHLS_16u_AC4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToHLS_16s_C3R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToHLS_16s_AC4R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToHLS_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToHLS_32f_AC4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliHLSToRGB_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliHLSToRGB_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliHLSToRGB_16u_C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliHLSToRGB_16u_AC4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliHLSToRGB_16s_C3R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliHLSToRGB_16s_AC4R(const int16_t* src, int srcStep, int16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliHLSToRGB_32f_C3R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliHLSToRGB_32f_AC4R(const float* src, int srcStep, float* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToHSV_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToHSV_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToHSV_16u_C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliRGBToHSV_16u_AC4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliHSVToRGB_8u_C3R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliHSVToRGB_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliHSVToRGB_16u_C3R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliHSVToRGB_16u_AC4R(const uint16_t* src, int srcStep, uint16_t* dst, int dstStep, ZilSize roiSize);

/* BGR group: 8-bit BGR <-> HLS, packed and planar. Plane arrays: B, G, R or
 * H, L, S, and a fourth plane of alpha in AP4 and AC4P4 forms. One step per
 * side (all planes share it), in bytes.
 *   - Alpha: every four-channel member copies the alpha (channel 3 or plane 3)
 *     from source to destination, except ziliBGRToHLS_8u_AC4R, which leaves
 *     the destination's fourth bytes untouched.
 *   - Rounding: ziliBGRToHLS_8u_AC4R adds 0.499999 in single precision (a
 *     fraction of exactly one half goes down); all others widen to double and
 *     add 1e-7, which truncates. So the same bytes give different results
 *     here and through ziliRGBToHLS_8u_AC4R with swapped channels.
 *   - Checks: the plane arrays and src/dst null -8, then each plane (source
 *     planes first, all 3 or 4) -8; then a step < 1 -14 and then width or
 *     height < 1 -6, except ziliBGRToHLS_8u_AC4R: size -6 before step -14. */
ZilStatus ziliBGRToHLS_8u_AC4R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize roiSize);
ZilStatus ziliBGRToHLS_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliBGRToHLS_8u_AC4P4R(const uint8_t* src, int srcStep, uint8_t* const dst[4], int dstStep,
    ZilSize roiSize);
ZilStatus ziliBGRToHLS_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliBGRToHLS_8u_AP4R(const uint8_t* const src[4], int srcStep, uint8_t* const dst[4], int dstStep,
    ZilSize roiSize);
ZilStatus ziliBGRToHLS_8u_P3C3R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep,
    ZilSize roiSize);
ZilStatus ziliBGRToHLS_8u_AP4C4R(const uint8_t* const src[4], int srcStep, uint8_t* dst, int dstStep,
    ZilSize roiSize);
ZilStatus ziliHLSToBGR_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliHLSToBGR_8u_AC4P4R(const uint8_t* src, int srcStep, uint8_t* const dst[4], int dstStep,
    ZilSize roiSize);
ZilStatus ziliHLSToBGR_8u_P3R(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliHLSToBGR_8u_AP4R(const uint8_t* const src[4], int srcStep, uint8_t* const dst[4], int dstStep,
    ZilSize roiSize);
ZilStatus ziliHLSToBGR_8u_P3C3R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep,
    ZilSize roiSize);
ZilStatus ziliHLSToBGR_8u_AP4C4R(const uint8_t* const src[4], int srcStep, uint8_t* dst, int dstStep,
    ZilSize roiSize);

/* BGR (or signed "SBGR") <-> YCoCg, integer only. The YCoCg side is three
 * planes Y, Co, Cg with one step; the image side is packed B, G, R (C4: a
 * fourth channel, ignored on input, set to the low byte or word of alpha on
 * output). Shifts floor.
 *   Lossy:  Y = (R + 2G + B + 2) >> 2, Co = (R - B + 1) >> 1,
 *           Cg = (2G - R - B + 2) >> 2; back R = Y + Co - Cg, G = Y + Cg,
 *           B = Y - Co - Cg (an inverse in real numbers only).
 *   _Rev:   Co = R - B, t = B + (Co >> 1), Cg = G - t, Y = t + (Cg >> 1), and
 *           its exact inverse. _Rev_16s wraps every step to 16 bits, so it is
 *           reversible modulo 65536; _Rev_16s32s keeps the exact values.
 *   Stores: 16-bit results keep the low 16 bits; 8-bit results wrap the sum to
 *   16 bits and then clamp it to 0..255.
 *   ziliRGBToYCoCg_8u_C3P3R / ziliYCoCgToRGB_8u_P3C3R: RGB order, 8-bit planes
 *   with Co and Cg offset by 128 and clamped to 0..255.
 * Checks: any null pointer (plane array, planes, image) -8. Then, per member:
 * "size" members give -6 for width or height < 1; "height" members return 0
 * without work for a height < 1 and do not test the width (a width < 1
 * converts nothing). Steps are not tested. */
/* size: */
ZilStatus ziliBGRToYCoCg_8u16s_C3P3R(const uint8_t* src, int srcStep, int16_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliBGRToYCoCg_8u16s_C4P3R(const uint8_t* src, int srcStep, int16_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliSBGRToYCoCg_16s_C3P3R(const int16_t* src, int srcStep, int16_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliSBGRToYCoCg_16s_C4P3R(const int16_t* src, int srcStep, int16_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliSBGRToYCoCg_16s32s_C3P3R(const int16_t* src, int srcStep, int32_t* const dst[3], int dstStep,
    ZilSize roiSize);
/* height: */
ZilStatus ziliSBGRToYCoCg_16s32s_C4P3R(const int16_t* src, int srcStep, int32_t* const dst[3], int dstStep,
    ZilSize roiSize);
/* size: */
ZilStatus ziliBGRToYCoCg_Rev_8u16s_C3P3R(const uint8_t* src, int srcStep, int16_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliBGRToYCoCg_Rev_8u16s_C4P3R(const uint8_t* src, int srcStep, int16_t* const dst[3], int dstStep,
    ZilSize roiSize);
/* height: */
ZilStatus ziliSBGRToYCoCg_Rev_16s_C3P3R(const int16_t* src, int srcStep, int16_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliSBGRToYCoCg_Rev_16s_C4P3R(const int16_t* src, int srcStep, int16_t* const dst[3], int dstStep,
    ZilSize roiSize);
/* size: */
ZilStatus ziliSBGRToYCoCg_Rev_16s32s_C3P3R(const int16_t* src, int srcStep, int32_t* const dst[3], int dstStep,
    ZilSize roiSize);
/* height: */
ZilStatus ziliSBGRToYCoCg_Rev_16s32s_C4P3R(const int16_t* src, int srcStep, int32_t* const dst[3], int dstStep,
    ZilSize roiSize);
ZilStatus ziliYCoCgToBGR_16s8u_P3C3R(const int16_t* const src[3], int srcStep, uint8_t* dst, int dstStep,
    ZilSize roiSize);
ZilStatus ziliYCoCgToBGR_16s8u_P3C4R(const int16_t* const src[3], int srcStep, uint8_t* dst, int dstStep,
    ZilSize roiSize, int32_t alpha);
ZilStatus ziliYCoCgToSBGR_16s_P3C3R(const int16_t* const src[3], int srcStep, int16_t* dst, int dstStep,
    ZilSize roiSize);
/* size: */
ZilStatus ziliYCoCgToSBGR_16s_P3C4R(const int16_t* const src[3], int srcStep, int16_t* dst, int dstStep,
    ZilSize roiSize, int32_t alpha);
ZilStatus ziliYCoCgToSBGR_32s16s_P3C3R(const int32_t* const src[3], int srcStep, int16_t* dst, int dstStep,
    ZilSize roiSize);
ZilStatus ziliYCoCgToSBGR_32s16s_P3C4R(const int32_t* const src[3], int srcStep, int16_t* dst, int dstStep,
    ZilSize roiSize, int32_t alpha);
/* height: */
ZilStatus ziliYCoCgToBGR_Rev_16s8u_P3C3R(const int16_t* const src[3], int srcStep, uint8_t* dst, int dstStep,
    ZilSize roiSize);
ZilStatus ziliYCoCgToBGR_Rev_16s8u_P3C4R(const int16_t* const src[3], int srcStep, uint8_t* dst, int dstStep,
    ZilSize roiSize, int32_t alpha);
ZilStatus ziliYCoCgToSBGR_Rev_16s_P3C3R(const int16_t* const src[3], int srcStep, int16_t* dst, int dstStep,
    ZilSize roiSize);
ZilStatus ziliYCoCgToSBGR_Rev_16s_P3C4R(const int16_t* const src[3], int srcStep, int16_t* dst, int dstStep,
    ZilSize roiSize, int32_t alpha);
ZilStatus ziliYCoCgToSBGR_Rev_32s16s_P3C3R(const int32_t* const src[3], int srcStep, int16_t* dst, int dstStep,
    ZilSize roiSize);
ZilStatus ziliYCoCgToSBGR_Rev_32s16s_P3C4R(const int32_t* const src[3], int srcStep, int16_t* dst, int dstStep,
    ZilSize roiSize, int32_t alpha);
/* size: */
ZilStatus ziliRGBToYCoCg_8u_C3P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], int dstStep,
    ZilSize roiSize);
/* height: */
ZilStatus ziliYCoCgToRGB_8u_P3C3R(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep,
    ZilSize roiSize);
/* (end of HLS, HSV and YCoCg) */

#ifdef __cplusplus
}
#endif

#endif /* ZILCC_H */
