// The 8-bit RGB to HSV tables, laid down at build time in read-only data
// (see gen/hsv8_tables_gen.cpp for the indexing).
#pragma once

#include "zil_common.h"

extern "C" ZIL_HIDDEN const uint8_t hsv8Sat[65536];
extern "C" ZIL_HIDDEN const uint8_t hsv8Hue[3 * 65536];
