// RGB <-> video-range YCbCr (luma 16..235, chroma 16..240 around 128): the
// forward formula and the reverse coefficient sets, in Q16.
//
// The forward direction has one set of weights for every member that converts
// RGB to this YCbCr, at full resolution or subsampled; only the added offsets
// (rounding and the +16 / +128 shifts) and the final shift differ between
// callers. The reverse direction has three sets that differ in the last places
// and in rounding; they are kept apart as rows.
#pragma once

#include "zil_common.h"

namespace zil::ycbcr {

// ---- Forward ------------------------------------------------------------------
// Y  =  0.257 R + 0.504 G + 0.098 B + 16
// Cb = -0.148 R - 0.291 G + 0.439 B + 128
// Cr =  0.439 R - 0.368 G - 0.071 B + 128
inline constexpr int32_t kYR = 16843, kYG = 33030, kYB = 6423;
inline constexpr int32_t kCbR = -9699, kCbG = -19071, kCbB = 28770;
inline constexpr int32_t kCrR = 28770, kCrG = -24117, kCrB = -4653;
static_assert(int32_t(0.257 * 65536 + 0.5) == kYR && int32_t(0.504 * 65536 + 0.5) == kYG &&
              int32_t(0.098 * 65536 + 0.5) == kYB, "luma weights");
static_assert(int32_t(0.148 * 65536 + 0.5) == -kCbR && int32_t(0.291 * 65536 + 0.5) == -kCbG &&
              int32_t(0.439 * 65536 + 0.5) == kCbB, "Cb weights");
static_assert(kCrR == kCbB && int32_t(0.368 * 65536 + 0.5) == -kCrG && int32_t(0.071 * 65536 + 0.5) == -kCrB,
              "Cr weights");
// The chroma weights of each row sum to 0, so grey has chroma 128 exactly.
static_assert(kCbR + kCbG + kCbB == 0 && kCrR + kCrG + kCrB == 0, "neutral grey");

// The three weighted sums of one pixel, or of channel sums over a cell.
constexpr int32_t L(int32_t r, int32_t g, int32_t b) { return kYR * r + kYG * g + kYB * b; }
constexpr int32_t P(int32_t r, int32_t g, int32_t b) { return kCbR * r + kCbG * g + kCbB * b; }
constexpr int32_t Q(int32_t r, int32_t g, int32_t b) { return kCrR * r + kCrG * g + kCrB * b; }

// Full-resolution offsets: 1081344 = 16.5 x 65536 (the +16 and the rounding
// half); -8355840 = -127.5 x 65536, which in the low byte of the shifted sum
// acts as +128.5. The results stay inside 16..235 and 16..240, so the low
// byte is stored without a clamp; the sums may be negative before the shift.
inline constexpr int32_t kYOffset = 1081344, kCOffset = -8355840;
static_assert(kYOffset == 33 * 32768 && kCOffset == -255 * 32768, "offsets");

constexpr uint8_t FwdY(int32_t r, int32_t g, int32_t b) { return uint8_t((L(r, g, b) + kYOffset) >> 16); }
constexpr uint8_t FwdCb(int32_t r, int32_t g, int32_t b) { return uint8_t((P(r, g, b) + kCOffset) >> 16); }
constexpr uint8_t FwdCr(int32_t r, int32_t g, int32_t b) { return uint8_t((Q(r, g, b) + kCOffset) >> 16); }
static_assert(FwdY(0, 0, 0) == 16 && FwdY(255, 255, 255) == 235, "luma range");
static_assert(FwdCb(0, 0, 0) == 128 && FwdCb(0, 0, 255) == 240 && FwdCb(255, 255, 0) == 16, "Cb range");

// ---- Reverse ------------------------------------------------------------------
// With u = Cb - 128, v = Cr - 128:
//   R = (k Y + a v + o) >> 16, G = (k Y - b u - c v + o) >> 16, B = (k Y + d u + o) >> 16,
// clamped to 0..255. o = -16 k, plus 32768 where the member rounds.
struct InvSet { int32_t k, a, b, c, d, o; };

//                                     k       a      b      c       d         o
inline constexpr InvSet kInvRound   {76282, 104593, 25689, 53279, 132184, -1187744};  // rounds
inline constexpr InvSet kInvFine    {76284, 104595, 25690, 53281, 132186, -1187776};  // rounds
inline constexpr InvSet kInvFloor   {76284, 104595, 25690, 53281, 132186, -1220544};  // floors
// The finer set is 1.164, 1.596, 0.392, 0.813, 2.017 in Q16; the other lies
// two below it in every weight but b, which is one below.
static_assert(int32_t(1.164 * 65536 + 0.5) == kInvFine.k && int32_t(1.596 * 65536 + 0.5) == kInvFine.a &&
              int32_t(0.392 * 65536 + 0.5) == kInvFine.b && int32_t(0.813 * 65536 + 0.5) == kInvFine.c &&
              int32_t(2.017 * 65536 + 0.5) == kInvFine.d, "finer reverse set");
static_assert(kInvRound.o == -16 * kInvRound.k + 32768 && kInvFine.o == -16 * kInvFine.k + 32768 &&
              kInvFloor.o == -16 * kInvFloor.k, "reverse offsets");

}  // namespace zil::ycbcr
