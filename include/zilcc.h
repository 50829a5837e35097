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
/* (end of Subsampled YCbCr and BT.709) */

/* ---- Chroma reformatting, filters and interlace ---------------------------------------------------------- */
/* (end of Chroma reformatting, filters and interlace) */

/* ---- XYZ, LUV, Lab and YCC ---------------------------------------------------------- */
/* (end of XYZ, LUV, Lab and YCC) */

/* ---- HLS, HSV and YCoCg ---------------------------------------------------------- */
/* (end of HLS, HSV and YCoCg) */

#ifdef __cplusplus
}
#endif

#endif /* ZILCC_H */
