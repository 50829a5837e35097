// What the YCbCr families add to the zilcc tool: the --matrix of
// `convert --to/--from LAYOUT` (studio-range BT.601 and BT.709 YCbCr besides
// the analog YUV), and the full-resolution YCbCr 4:4:4 behind yuv444p.
// (The gray colour space and the demo sections register themselves.)
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ops.hpp"

namespace zt {

// The --matrix of convert: Yuv is the analog YUV of the RGB-YUV family,
// Bt601 video-range YCbCr (the default), Bt709 the 709CSC forms.
enum class Matrix { Yuv, Bt601, Bt709 };

// Parses --matrix (null: the default) for a layout and a direction (toRaw:
// --to); a UsageError for an unknown name or a combination the library has
// no export for.
Matrix ParseMatrix(const std::string* value, YuvFormat f, bool toRaw);

// Bytes of a dense raw frame. With the YCbCr matrices the 4:2:0 layouts take
// any extent (chroma ceil(w/2) x ceil(h/2)); Yuv keeps the even-only rule.
size_t RawFrameBytes(YuvFormat f, Matrix m, int w, int h);

// 8-bit RGB to a raw frame and back.
std::vector<uint8_t> EncodeRaw(const Image& rgb, YuvFormat f, Matrix m, int bandRows, Progress* progress);
Image DecodeRaw(const std::vector<uint8_t>& raw, int w, int h, YuvFormat f, Matrix m, int bandRows,
                Progress* progress);

// 8-bit RGB to three dense planes Y, Cb, Cr (video range), and back.
std::vector<uint8_t> RgbToYcbcr444(const Image& rgb, int bandRows, Progress* progress);
Image Ycbcr444ToRgb(const std::vector<uint8_t>& yuv, int w, int h, int bandRows, Progress* progress);

}  // namespace zt
