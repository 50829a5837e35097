// The gamma look-up tables, laid down at build time in read-only data.
// tableFwd8u also serves the luma-chroma family's gamma member.
#pragma once

#include "zil_common.h"

extern "C" ZIL_HIDDEN const uint8_t tableFwd8u[256];
extern "C" ZIL_HIDDEN const uint8_t tableInv8u[256];
extern "C" ZIL_HIDDEN const uint16_t tableFwd16u[65536];
extern "C" ZIL_HIDDEN const uint16_t tableInv16u[65536];

// The forward power at 0.45f on [2^-6, 2), by (exponent + 6) * 256 plus the
// top eight mantissa bits: a reciprocal near the interval's middle mantissa
// and the power of that interval's scale (see gamma_tables_gen.cpp).
struct alignas(16) GammaPowPair { double rcp, scale; };
extern "C" ZIL_HIDDEN const GammaPowPair gammaFwdPow[7 * 256];
