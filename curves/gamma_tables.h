// The gamma look-up tables, laid down at build time in read-only data.
// tableFwd8u also serves the luma-chroma family's gamma member.
#pragma once

#include "zil_common.h"

extern "C" ZIL_HIDDEN const uint8_t tableFwd8u[256];
extern "C" ZIL_HIDDEN const uint8_t tableInv8u[256];
extern "C" ZIL_HIDDEN const uint16_t tableFwd16u[65536];
extern "C" ZIL_HIDDEN const uint16_t tableInv16u[65536];
