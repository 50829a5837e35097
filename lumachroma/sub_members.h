// RGB <-> subsampled YCbCr (4:2:2, 4:2:0, 4:1:1) and the BT.709 forms: the
// members as table rows.
//
// Every integer member is one of two formulas - forward luma and chroma sums,
// or reverse R, G, B from Y and a shared u, v - and what tells members apart
// is data: the weights, the rounding term of each output, the final shift,
// whether the result is stored as its low byte or limited, and the rule for a
// last column that fills no whole cell. Look-alike members differ in single
// cells of these rows; those differences are results and stay.
#pragma once

#include "ycbcr_coeffs.h"

namespace zil::sub {

// ---- Forward weights, Q16 -------------------------------------------------------
// L = yr r + yg g + yb b, P = ur r + ug g + ub b (Cb), Q = vr r + vg g + vb b (Cr).
struct FwdSet {
    int32_t yr, yg, yb, ur, ug, ub, vr, vg, vb;
};
// Video range, the weights of the full-resolution YCbCr members.
inline constexpr FwdSet k601{ycbcr::kYR,  ycbcr::kYG,  ycbcr::kYB,  ycbcr::kCbR, ycbcr::kCbG,
                             ycbcr::kCbB, ycbcr::kCrR, ycbcr::kCrG, ycbcr::kCrB};
// Video range with 0.183 / 0.614 / 0.062 luma.
inline constexpr FwdSet k709Csc{11993, 40239, 4063, -6619, -22151, 28770, 28770, -26149, -2621};
// Unit luma gain with 0.2130 / 0.7150 / 0.0720 luma.
inline constexpr FwdSet k709Hdtv{13959, 46858, 4719, -7668, -25821, 33489, 33489, -30409, -3080};
static_assert(k709Csc.ur + k709Csc.ug + k709Csc.ub == 0 && k709Csc.vr + k709Csc.vg + k709Csc.vb == 0, "709 neutral");
static_assert(k709Hdtv.yr + k709Hdtv.yg + k709Hdtv.yb == 65536 && k709Hdtv.ur + k709Hdtv.ug + k709Hdtv.ub == 0 &&
                  k709Hdtv.vr + k709Hdtv.vg + k709Hdtv.vb == 0,
              "unit luma gain, neutral chroma");

// How a forward result is stored: its low byte (the range cannot leave 0..255),
// or limited to 1..254 so that the codes 0 and 255 never occur.
enum class Store : uint8_t { Low, Limit };

// What the last column of a 4:2:2 row, which fills no pair, receives. Y always
// takes the first pixel's rounding; the chroma byte is the cell's first chroma
// byte (byte 1 of Y-first streams, byte 0 of CbYCr), from the pixel alone with
// a shift of 16.
enum class Odd : uint8_t {
    None,  // nothing is written
    Y,     // luma only
    YP,    // luma and the P (Cb) formula
    YQ,    // luma and the Q (Cr) formula
};

struct FwdMember {
    FwdSet k;
    int32_t y0, y1;    // luma rounding, first and further pixels of a cell row
    int32_t cb, cr;    // chroma rounding terms on the cell sums
    int shift;         // 17: sum of a pair; 18: sum of four
    Store store;
    Odd odd;
    int32_t oddC;      // rounding term of the odd column's chroma
    bool oddSwap;      // the odd pixel's bytes 0 and 2 enter the other way round
};

// Rounding terms: 1081344 = 16.5 x 2^16 (luma 16, rounded), 1048576 = 16 x 2^16
// (floored). On a pair sum (shift 17) -16711680 leaves +128.5 in the low byte,
// -16760832 +128.125; on four pixels (shift 18) -33521664 gives +128.125.
//                                     set        y0       y1       cb         cr       sh store        odd       oddC    swap
inline constexpr FwdMember kA422     {k601,  1081344, 1048576, -16711680, -16711680, 17, Store::Low, Odd::YP, -8355840, false};
inline constexpr FwdMember kA422P3   {k601,  1081344, 1048576, -16711680, -16711680, 17, Store::Low, Odd::YQ,  8421376, false};
inline constexpr FwdMember kB422     {k601,  1081344, 1081344, -16760832, -16760832, 17, Store::Low, Odd::YP, -8380416, false};
inline constexpr FwdMember kC422     {k601,  1081344, 1081344, -16760832, -16760832, 17, Store::Low, Odd::Y,         0, false};
inline constexpr FwdMember kD422     {k601,  1081344, 1081344, -16760832, -16760832, 17, Store::Low, Odd::None,      0, false};
inline constexpr FwdMember kCbYCrAC4 {k601,  1081344, 1081344, -16711680, -16711682, 17, Store::Low, Odd::YP, -8355840, true};
inline constexpr FwdMember k420      {k601,  1081344, 1081344, -33521664, -33521664, 18, Store::Low, Odd::None,      0, false};
inline constexpr FwdMember k420Csc   {k709Csc, 1081344, 1081344, -33521664, -33521664, 18, Store::Low, Odd::None,    0, false};
inline constexpr FwdMember k420Hdtv  {k709Hdtv, 32768, 32768, 33587200, 33587200, 18, Store::Limit, Odd::None,       0, false};
inline constexpr FwdMember k422Hdtv  {k709Hdtv, 32768, 32768, 16842752, 16842750, 17, Store::Limit, Odd::YP,  8421376, false};
inline constexpr FwdMember k422HdtvAC4{k709Hdtv, 32768, 32768, 16842752, 16842750, 17, Store::Limit, Odd::YP, 8421376, true};

// The filtered CbYCr forms: luma with 1081344, chroma through a 1, 2, 1 filter
// with the rounding term -8355841, the odd column's Cb with -8355840.
inline constexpr int32_t kFilterRound = -8355841, kFilterOdd = -8355840;

// ---- Reverse, Q16 ---------------------------------------------------------------
// With u = Cb - 128, v = Cr - 128:
//   R = clamp((k Y + a v + oR) >> 16), G = clamp((k Y - b u - c v + oG) >> 16),
//   B = clamp((k Y + d u + oB) >> 16).
struct InvSet {
    int32_t k, a, b, c, d, oR, oG, oB;
};
// A set of the full-resolution members, with one offset for all three channels.
constexpr InvSet Same(const ycbcr::InvSet& s) { return {s.k, s.a, s.b, s.c, s.d, s.o, s.o, s.o}; }
// Rounded: o = -16 k + 32768.
inline constexpr InvSet kInvE = Same(ycbcr::kInvFine);
inline constexpr InvSet kInvF = Same(ycbcr::kInvRound);
// Floored: o = -16 k exactly.
inline constexpr InvSet kInvH{76294, 104595, 25625, 53281, 132186, -1220704, -1220704, -1220704};
// Floored, written on Cb and Cr without subtracting 128 first:
//   (76284 Y + 104595 Cr - 14608761), (76284 Y - 25690 Cb - 53281 Cr + 8887730),
//   (76284 Y + 132186 Cb - 18140365); moved onto u and v, each channel keeps its
// own offset.
inline constexpr InvSet kInvG{kInvE.k, kInvE.a, kInvE.b, kInvE.c, kInvE.d, -14608761 + kInvE.a * 128,
                              8887730 - (kInvE.b + kInvE.c) * 128, -18140365 + kInvE.d * 128};
static_assert(kInvG.oR == -1220601 && kInvG.oG == -1220558 && kInvG.oB == -1220557, "class G offsets");
static_assert(kInvH.oR == -16 * kInvH.k, "class H floors");
inline constexpr InvSet kInvCsc{76284, 117506, 13959, 34996, 138609, -1187776, -1187776, -1187776};
// Unit gain: yy = Y << 16, rounded.
inline constexpr InvSet kInvHdtv{65536, 100925, 11993, 30081, 119013, 32768, 32768, 32768};

// What follows the whole cells of a reverse row.
enum class Tail : uint8_t {
    None,    // nothing: an odd last column stays unwritten
    Reuse,   // 4:1:1: the last 1..3 pixels take the chroma of the row's last group
    Stream,  // packed 4:2:2: the half cell's own chroma byte and the preceding pair's other
};

struct InvMember {
    InvSet k;
    Tail tail;
    bool single;   // width exactly 1: the own chroma byte serves for u and v
    bool swapOdd;  // the odd last pixel is written with R and B exchanged
};

//                                         set       tail          width 1  exchange
inline constexpr InvMember kE422         {kInvE,    Tail::Stream, true,  false};
inline constexpr InvMember kE422Swap     {kInvE,    Tail::Stream, true,  true};
inline constexpr InvMember kF422         {kInvF,    Tail::Stream, true,  false};
inline constexpr InvMember kG422Planes   {kInvG,    Tail::None,   false, false};
inline constexpr InvMember kG422Stream   {kInvG,    Tail::Stream, true,  false};
inline constexpr InvMember kG422StreamCr {kInvG,    Tail::Stream, false, false};  // width 1 reads the byte before
inline constexpr InvMember kE420         {kInvE,    Tail::None,   false, false};
inline constexpr InvMember kH411         {kInvH,    Tail::Reuse,  false, false};
inline constexpr InvMember kCsc          {kInvCsc,  Tail::None,   false, false};
inline constexpr InvMember kHdtv420      {kInvHdtv, Tail::None,   false, false};
inline constexpr InvMember kHdtv422      {kInvHdtv, Tail::Stream, true,  false};

// ---- Forward in 32-bit float (4:2:0 to two planes) ---------------------------
// Y = ((yr r + 16.5) + yg g) + yb b per pixel; on the block sums
// Cb = (((w0 X0 + 512) + w1 X1) + w2 X2) x 0.25 + 0.5, Cr likewise, with the
// channels X named by index (0 R, 1 G, 2 B) in the order of the terms.
struct FltSet {
    float yr, yg, yb;
    float cbW[3];
    int8_t cbX[3];
    float crW[3];
    int8_t crX[3];
    bool clamp;  // results clamped to 0..255 before the truncation
};
inline constexpr FltSet kFlt601{0.257f, 0.504f, 0.098f, {0.439f, -0.148f, -0.291f}, {2, 0, 1},
                                {0.439f, -0.071f, -0.368f}, {0, 2, 1}, false};
inline constexpr FltSet kFltR6{0.2126f, 0.7152f, 0.0722f, {-0.1146f, 0.5f, -0.3854f}, {0, 2, 1},
                               {0.5f, -0.0458f, -0.4542f}, {0, 2, 1}, true};

}  // namespace zil::sub
