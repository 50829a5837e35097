// RGB <-> analog YUV: the members as table rows.
//
// One formula serves all 32 exports. What differs from member to member is
// data, kept here side by side: the chroma rounding term per sampling, whether
// Y floors, the reverse rounding per channel, the coefficient set, the rule for
// the odd last 4:2:2 column and what the fourth byte gets. Members that look
// alike differ in single cells of these tables; those differences are results.
#pragma once

#include "zil_common.h"

namespace zil::yuv {

// ---- Forward, Q16 -----------------------------------------------------------
// S = 19595 R + 38470 G + 7471 B (0.299, 0.587, 0.114); U = 0.492 (B - Y),
// V = 0.877 (R - Y), both + 128.
inline constexpr int32_t kYR = 19595, kYG = 38470, kYB = 7471;
inline constexpr int32_t kUB = 32244, kVR = 57475;
static_assert(int32_t(0.299 * 65536 + 0.5) == kYR && int32_t(0.587 * 65536 + 0.5) == kYG &&
              int32_t(0.114 * 65536 + 0.5) == kYB, "luma weights");
static_assert(int32_t(0.492 * 65536 + 0.5) == kUB && int32_t(0.877 * 65536 + 0.5) == kVR, "chroma scales");

// Rounding terms before the >> 16.
inline constexpr int32_t kHalfUp = 32768;    // nearest, halves up
inline constexpr int32_t kHalfDown = 32767;  // nearest, halves down
inline constexpr int32_t kFloor = 0;

// What the last, unpaired column of a 4:2:2 forward row receives.
enum class FwdOdd : uint8_t {
    None,      // not a 4:2:2 member
    YU,        // Y and U from the pixel alone (c of one pixel, shift 16); V not written
    YUV,       // Y, U, V from the pixel alone
    YFloorUV,  // U, V from the pixel alone; Y = S >> 16 without rounding
};

struct FwdMember {
    int32_t cPixel;  // chroma rounding term, one pixel (full resolution, odd 4:2:2 column)
    int32_t cCell;   // chroma rounding term of a 4:2:2 pair or a 4:2:0 block
    int32_t yRound;  // luma rounding term
    FwdOdd odd;
};

//                                              cPixel     cCell   yRound   odd 4:2:2 column
inline constexpr FwdMember kRGBToYUV_C3      {kHalfDown,      0, kHalfUp, FwdOdd::None};
inline constexpr FwdMember kRGBToYUV_AC4     {kHalfUp,        0, kHalfUp, FwdOdd::None};
inline constexpr FwdMember kRGBToYUV422_C2   {kHalfUp,    32768, kHalfUp, FwdOdd::YU};
inline constexpr FwdMember kRGBToYUV422_C3P3 {kHalfDown,  65535, kHalfUp, FwdOdd::YUV};
inline constexpr FwdMember kRGBToYUV422_P3   {kHalfDown,  65535, kHalfUp, FwdOdd::YFloorUV};
inline constexpr FwdMember kRGBToYUV420      {0,         131071, kHalfUp, FwdOdd::None};
inline constexpr FwdMember kBGRToYUV420_AC4  {0,         131071, kFloor,  FwdOdd::None};

// ---- Reverse, Q16 -----------------------------------------------------------
// R = Y + a v, G = Y - b u - c v, B = Y + d u, with u = U - 128, v = V - 128.
struct InvCoeffs { int32_t a, b, c, d; };
inline constexpr InvCoeffs kInv{74711, 25821, 38076, 133169};     // 1.140, 0.394, 0.581, 2.032
inline constexpr InvCoeffs kInvLower{74710, 25820, 38075, 133168};  // the same, each one lower
static_assert(int32_t(1.140 * 65536) == kInv.a && int32_t(0.394 * 65536) == kInv.b &&
              int32_t(0.581 * 65536) == kInv.c && int32_t(2.032 * 65536) == kInv.d, "reverse set");

// Rounding term per output channel: kHalfUp (round) or kFloor.
struct InvRound { int32_t r, g, b; };
inline constexpr InvRound kFFR{kFloor, kFloor, kHalfUp};
inline constexpr InvRound kRFR{kHalfUp, kFloor, kHalfUp};
inline constexpr InvRound kRRR{kHalfUp, kHalfUp, kHalfUp};
inline constexpr InvRound kFFF{kFloor, kFloor, kFloor};

// The fourth byte of a four-byte destination pixel.
enum class Alpha : uint8_t { None, Keep, Value };  // no 4th byte, untouched, written

struct InvMember {
    InvCoeffs k;
    InvRound pix;     // every pixel (of a 4:2:2 pair)
    InvRound odd;     // the odd last 4:2:2 column
    InvRound single;  // packed 4:2:2 row of width exactly 1 (u = v = its one chroma byte)
};

//                                                 set         pixel odd   width 1
inline constexpr InvMember kYUVToRGB_C3         {kInv,      kFFR, kFFR, kFFR};
inline constexpr InvMember kYUVToRGB_AC4        {kInv,      kRFR, kRFR, kRFR};
inline constexpr InvMember kYUVToRGB_C3C4       {kInv,      kRRR, kRRR, kRRR};
inline constexpr InvMember kYUVToRGB_P3         {kInvLower, kRFR, kRFR, kRFR};
inline constexpr InvMember kYUV422ToRGB_P3C3    {kInv,      kRFR, kFFF, kFFF};
inline constexpr InvMember kYUV422ToRGB_P3      {kInv,      kRFR, kRFR, kRFR};
inline constexpr InvMember kYUV422ToRGB_C2C3    {kInv,      kRRR, kRRR, kFFF};
inline constexpr InvMember kYUV422ToRGB_P3AC4   {kInv,      kFFF, kFFF, kFFF};
inline constexpr InvMember kYUV420ToRGB         {kInv,      kRFR, kRFR, kRFR};
inline constexpr InvMember kYUV420ToRGB_P3AC4   {kInv,      kRRR, kRRR, kRRR};
inline constexpr InvMember kYUV420ToBGR         {kInv,      kFFF, kFFF, kFFF};

// ---- Pixel layouts ------------------------------------------------------------
// Byte offsets of R, G, B (or Y, U, V) and A inside one interleaved pixel, in
// memory order; bytes = pixel size. Planar images use one pointer per channel
// and a pixel size of 1.
struct Layout { int8_t c0, c1, c2, a, bytes; };
inline constexpr Layout kRGB3{0, 1, 2, -1, 3};
inline constexpr Layout kBGR3{2, 1, 0, -1, 3};
inline constexpr Layout kRGBA4{0, 1, 2, 3, 4};
inline constexpr Layout kBGRA4{2, 1, 0, 3, 4};

}  // namespace zil::yuv
