// What the full-resolution YCbCr and gray family adds to the zilcc tool: the
// studio-range YCbCr 4:4:4 behind `convert --to/--from yuv444p --matrix bt601`.
// (The gray colour space and the demo section register themselves.)
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ops.hpp"

namespace zt {

// The --matrix option of convert: false for "analog" (or no option), true
// for "bt601"; a UsageError for another value or a format other than yuv444p.
bool StudioMatrix(const std::string* value, YuvFormat f);

// 8-bit RGB to three dense planes Y, Cb, Cr (video range), and back.
std::vector<uint8_t> RgbToYcbcr444(const Image& rgb, int bandRows, Progress* progress);
Image Ycbcr444ToRgb(const std::vector<uint8_t>& yuv, int w, int h, int bandRows, Progress* progress);

}  // namespace zt
