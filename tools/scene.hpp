// The demo's synthetic scene: four quarters holding a colour chart, a zone
// plate, smooth gradients and sharp colour edges.
#pragma once

#include "common.hpp"

namespace zt {

// The scene as 16-bit RGB, every sample computed from the scene's geometry.
Image RenderScene(int width, int height);

// 16-bit to 8-bit by rounding v * 255 / 65535.
Image To8Bit(const Image& img16);

// Where the zone plate's finest rings are, for a close-up.
struct Crop {
    int x, y, w, h;
};
Crop DetailCrop(int width, int height);

}  // namespace zt
