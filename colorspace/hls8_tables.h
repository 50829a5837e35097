// The 8-bit HLS tables, laid down at build time by gen/hls8_tables_gen.cpp.
#pragma once

#include "zil_common.h"

// RGB to HLS: the hue byte at [w << 16 | i << 8 | j], w the tie winner (0 red,
// 1 green, 2 blue), i and j its leads over the two other channels in r, g, b
// order; the saturation byte at [max << 8 | min].
extern "C" ZIL_HIDDEN const uint8_t hls8Hue[3 * 65536];
extern "C" ZIL_HIDDEN const uint8_t hls8Sat[65536];
// HLS to RGB: (h x 360) / 255 and v / 255 for every byte v.
extern "C" ZIL_HIDDEN const float hls8Degrees[256];
extern "C" ZIL_HIDDEN const float hls8Unit[256];
// By the hue byte, four words: for red, green and blue the float distance of
// the channel's hue from the nearer end of its ramp (0 at the bottom), then
// bit c set where channel c is at the top.
extern "C" ZIL_HIDDEN const uint32_t hls8Ramp[1024];
