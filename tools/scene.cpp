#include "scene.hpp"

#include <algorithm>
#include <cmath>

namespace zt {
namespace {

struct Rgb {
    double r, g, b;
};

Rgb Hsv(double hueDeg, double s, double v) {
    const double h = std::fmod(hueDeg / 60.0 + 6.0, 6.0);
    const int i = int(h);
    const double f = h - i;
    const double p = v * (1 - s), q = v * (1 - s * f), t = v * (1 - s * (1 - f));
    switch (i) {
        case 0: return {v, t, p};
        case 1: return {q, v, p};
        case 2: return {p, v, t};
        case 3: return {p, q, v};
        case 4: return {t, p, v};
        default: return {v, p, q};
    }
}

Rgb Grey(double v) { return {v, v, v}; }

// Colour chart: 6 x 4 patches: saturated hues, lighter tints, dark tones, greys.
Rgb Chart(double u, double v) {
    const int col = std::min(5, int(u * 6)), row = std::min(3, int(v * 4));
    const double pu = u * 6 - col, pv = v * 4 - row;
    if (pu < 0.08 || pu > 0.92 || pv < 0.08 || pv > 0.92) return Grey(0.12);  // dark gaps between patches
    static const double kDark[6] = {15, 45, 100, 200, 250, 340};
    static const double kGrey[6] = {0.04, 0.18, 0.34, 0.52, 0.72, 0.96};
    switch (row) {
        case 0: return Hsv(col * 60.0, 1.0, 1.0);
        case 1: return Hsv(30.0 + col * 60.0, 0.45, 0.92);
        case 2: return Hsv(kDark[col], 0.7, 0.45);
        default: return Grey(kGrey[col]);
    }
}

// Zone plate: grey rings whose frequency rises with the radius to half the
// sampling rate at `rmax`.
Rgb ZonePlate(double x, double y, double cx, double cy, double rmax) {
    const double r2 = (x - cx) * (x - cx) + (y - cy) * (y - cy);
    const double k = 3.14159265358979323846 / (2.0 * rmax);
    return Grey(0.5 + 0.45 * std::cos(k * r2));
}

// Hue sweep across, from white through the pure hue to black down; a grey
// ramp along the bottom fifth.
Rgb Gradients(double u, double v) {
    if (v > 0.8) return Grey(u);
    const double t = v / 0.8;
    if (t < 0.5) return Hsv(u * 360.0, t * 2.0, 1.0);
    return Hsv(u * 360.0, 1.0, 1.0 - (t - 0.5) * 1.9);
}

// Sharp colour edges: a star of 16 coloured sectors on mid grey, and at the
// left one-pixel and two-pixel stripes of complementary colours.
Rgb Edges(int px, int py, double u, double v, double cx, double cy, double radius) {
    if (u < 0.2) {
        const int width = v < 0.5 ? 1 : 2;
        const bool odd = (px / width) & 1;
        if (v < 0.5) return odd ? Rgb{1.0, 0.1, 0.1} : Rgb{0.1, 0.9, 0.9};
        return odd ? Rgb{0.1, 0.8, 0.1} : Rgb{0.85, 0.1, 0.85};
    }
    const double dx = px - cx, dy = py - cy;
    if (dx * dx + dy * dy > radius * radius) return Grey(0.5);
    static const Rgb kSector[4] = {{0.95, 0.1, 0.1}, {0.1, 0.3, 0.95}, {0.95, 0.9, 0.1}, {0.05, 0.6, 0.2}};
    const double angle = std::atan2(dy, dx) + 3.14159265358979323846;
    const int sector = int(angle / (2 * 3.14159265358979323846) * 16) & 15;
    return kSector[sector & 3];
}

uint16_t To16(double v) {
    v = std::min(1.0, std::max(0.0, v));
    return uint16_t(std::lround(v * 65535.0));
}

}  // namespace

Image RenderScene(int width, int height) {
    Image img;
    img.Allocate(width, height, 3, 16);
    const int hw = width / 2, hh = height / 2;
    const double zcx = hw + (width - hw) / 2.0 - 0.5, zcy = hh / 2.0 - 0.5;
    const double zr = std::hypot(width - hw, hh) / 2.0;  // half the sampling rate at the corners
    const double ecx = hw + (width - hw) * 0.6, ecy = hh + (height - hh) / 2.0;
    const double er = std::min(width - hw, height - hh) * 0.45;
    for (int y = 0; y < height; ++y) {
        uint16_t* row = img.Row16(y);
        for (int x = 0; x < width; ++x) {
            Rgb c;
            const bool left = x < hw, top = y < hh;
            const double u = left ? (x + 0.5) / hw : (x - hw + 0.5) / (width - hw);
            const double v = top ? (y + 0.5) / hh : (y - hh + 0.5) / (height - hh);
            if (left && top)
                c = Chart(u, v);
            else if (top)
                c = ZonePlate(x, y, zcx, zcy, zr);
            else if (left)
                c = Gradients(u, v);
            else
                c = Edges(x - hw, y, u, v, ecx - hw, ecy, er);
            row[3 * x] = To16(c.r);
            row[3 * x + 1] = To16(c.g);
            row[3 * x + 2] = To16(c.b);
        }
    }
    return img;
}

Image To8Bit(const Image& img16) {
    Image out;
    out.Allocate(img16.width, img16.height, img16.channels, 8);
    const size_t n = size_t(img16.width) * size_t(img16.channels);
    for (int y = 0; y < img16.height; ++y)
        for (size_t i = 0; i < n; ++i) out.Row(y)[i] = uint8_t((uint32_t(img16.Row16(y)[i]) * 255u + 32767u) / 65535u);
    return out;
}

Crop DetailCrop(int width, int height) {
    const int hw = width / 2, hh = height / 2;
    const int zr = int(std::hypot(width - hw, hh) / 2);
    const int w = std::max(8, std::min(96, width / 5)), h = std::max(8, std::min(64, height / 5));
    const int cx = hw + (width - hw) / 2, cy = hh / 2;
    int x = cx + zr / 3, y = cy - zr * 2 / 3;
    x = std::max(0, std::min(x, width - w));
    y = std::max(0, std::min(y, height - h));
    return {x, y, w, h};
}

}  // namespace zt
