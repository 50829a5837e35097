// Adaptive homogeneity-directed demosaicing: what differs between kernels.
//
// One algorithm serves the four filter phases and both sample depths. A phase
// only decides, for each of the two row types, which of red and blue the row
// carries and in which column parity its green sites stand; a depth only
// decides the sample type, the clamp ceiling and how a buffer line is counted.
#pragma once

#include "zil_common.h"

namespace zil::ahd {

// Phase codes, in the order the kernels are indexed by (not the ZilBayerGrid
// order): the pattern at the region's own first sample.
enum PhaseCode : int32_t { kRGGB = 0, kGBRG = 1, kBGGR = 2, kGRBG = 3 };

// ZilBayerGrid code (0 BGGR, 1 RGGB, 2 GBRG, 3 GRBG) to phase code.
inline constexpr int32_t kGridToPhase[4] = {kBGGR, kRGGB, kGBRG, kGRBG};

// Pattern at the region's first sample, as two row types: row type 0 is the
// region's first row (and every other row after it), row type 1 the rows
// between. For each: does the row carry red (else blue), and is its green at
// an odd offset from the region's first column (else at an even one).
struct AhdPhase {
    bool red[2];
    bool greenOdd[2];
};

//                                         red rows        green at odd offset
inline constexpr AhdPhase kPhaseRGGB{{true, false}, {true, false}};   // R G / G B
inline constexpr AhdPhase kPhaseGBRG{{false, true}, {false, true}};   // G B / R G
inline constexpr AhdPhase kPhaseBGGR{{false, true}, {true, false}};   // B G / G R
inline constexpr AhdPhase kPhaseGRBG{{true, false}, {false, true}};   // G R / B G

// Sample depth: element type and the ceiling of the red and blue clamp.
template <class T>
struct AhdDepth;
template <>
struct AhdDepth<uint8_t> {
    static constexpr int32_t kMax = 255;
    // Y (0 .. 219), Cb and Cr (-112 .. 112) and every weighted sum before the
    // shift (at most 56228 for Y, within -28432 .. 28688 for Cb and Cr) fit 16
    // bits, Y's sum as unsigned: 16-bit lanes give the same values.
    using Luma = uint16_t;
    using Chroma = int16_t;
    // A buffer line is bufferStep bytes, that is bufferStep elements.
    static constexpr ptrdiff_t LineElems(int32_t bufferStep) { return bufferStep; }
};
template <>
struct AhdDepth<uint16_t> {
    static constexpr int32_t kMax = 65535;
    using Luma = int32_t;
    using Chroma = int32_t;
    // Lines are counted in elements: the step's low bit is dropped.
    static constexpr ptrdiff_t LineElems(int32_t bufferStep) { return bufferStep >> 1; }
};

// Use of the 30 work lines. Rows of the extended region rotate through slots:
// green lines of row j in green slot j mod 5, colour lines of row j in colour
// slot (j + 3) mod 4; the homogeneity line of row j sits in the colour slot of
// row j + 1. Within a colour slot the first colour is red, the second blue.
inline constexpr int kLines = 30;
constexpr int GreenV(int slot) { return 2 * slot; }
constexpr int GreenH(int slot) { return 2 * slot + 1; }
constexpr int RedV(int slot) { return 10 + 5 * slot; }
constexpr int RedH(int slot) { return 11 + 5 * slot; }
constexpr int BlueV(int slot) { return 12 + 5 * slot; }
constexpr int BlueH(int slot) { return 13 + 5 * slot; }
constexpr int Diff(int slot) { return 14 + 5 * slot; }
static_assert(Diff(3) == kLines - 1, "the rotation uses exactly 30 lines");

}  // namespace zil::ahd
