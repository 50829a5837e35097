// The full-resolution YCbCr and gray family in the zilcc tool: the colour
// space "gray" (convert --to gray / --from gray), studio-range YCbCr 4:4:4 for
// the raw yuv444p format, and a demo section.
#include "ycbcr_tool.hpp"

#include <algorithm>
#include <cstdio>

#include "registry.hpp"

namespace zt {

namespace {

// Runs `call(firstRow, rows)` over bands of rows, reporting progress.
template <class F>
void Bands(int h, size_t rowBytes, int bandRows, Progress* progress, F call) {
    if (bandRows < 1) bandRows = BandRows(rowBytes, 1);
    for (int by = 0; by < h; by += bandRows) {
        const int bh = std::min(bandRows, h - by);
        call(by, bh);
        if (progress) progress->Update(by + bh);
    }
}

// ---- gray -----------------------------------------------------------------------
// RGB to one channel with the library's default weights (0.299, 0.587, 0.114):
// 8-bit in Q15 integers, 16-bit and float in single precision. A grey input
// is already what it should be.
Image ToGray(const Image& rgb, Progress* progress) {
    if (rgb.channels == 1) return rgb;
    Image g;
    g.Allocate(rgb.width, rgb.height, 1, rgb.depth);
    Bands(rgb.height, rgb.RowBytes(), 0, progress, [&](int y, int n) {
        const ZilSize sz{rgb.width, n};
        if (rgb.depth == 8)
            CheckStatus(ziliRGBToGray_8u_C3C1R(rgb.Row(y), rgb.Step(), g.Row(y), g.Step(), sz), "ziliRGBToGray_8u_C3C1R");
        else if (rgb.depth == 16)
            CheckStatus(ziliRGBToGray_16u_C3C1R(rgb.Row16(y), rgb.Step(), g.Row16(y), g.Step(), sz),
                        "ziliRGBToGray_16u_C3C1R");
        else
            CheckStatus(ziliRGBToGray_32f_C3C1R(rgb.RowF(y), rgb.Step(), g.RowF(y), g.Step(), sz),
                        "ziliRGBToGray_32f_C3C1R");
    });
    return g;
}

// One channel to three equal ones.
Image FromGray(const Image& gray, Progress* progress) {
    if (gray.channels != 1)
        throw DataError("--from gray takes a one-channel (grey) image, this one has " +
                        std::to_string(gray.channels) + " channels");
    Image rgb;
    rgb.Allocate(gray.width, gray.height, 3, gray.depth);
    rgb.maxval = gray.maxval;
    Bands(gray.height, rgb.RowBytes(), 0, progress, [&](int y, int n) {
        const ZilSize sz{gray.width, n};
        if (gray.depth == 8)
            CheckStatus(ziliGrayToRGB_8u_C1C3R(gray.Row(y), gray.Step(), rgb.Row(y), rgb.Step(), sz),
                        "ziliGrayToRGB_8u_C1C3R");
        else if (gray.depth == 16)
            CheckStatus(ziliGrayToRGB_16u_C1C3R(gray.Row16(y), gray.Step(), rgb.Row16(y), rgb.Step(), sz),
                        "ziliGrayToRGB_16u_C1C3R");
        else
            CheckStatus(ziliGrayToRGB_32f_C1C3R(gray.RowF(y), gray.Step(), rgb.RowF(y), rgb.Step(), sz),
                        "ziliGrayToRGB_32f_C1C3R");
    });
    return rgb;
}

}  // namespace

ZT_REGISTER(SpaceDef{"gray", "one channel, 0.299 R + 0.587 G + 0.114 B (8-bit: Q15 integers, 16-bit and float: "
                             "single precision); --from gray copies it to R, G and B",
                     ToGray, FromGray})

// ---- studio-range YCbCr 4:4:4 -------------------------------------------------------
std::vector<uint8_t> RgbToYcbcr444(const Image& rgb, int bandRows, Progress* progress) {
    if (rgb.channels != 3 || rgb.depth != 8) throw DataError("RGB to YCbCr takes 8-bit RGB");
    const size_t n = size_t(rgb.width) * size_t(rgb.height);
    std::vector<uint8_t> out(3 * n);
    Bands(rgb.height, rgb.RowBytes(), bandRows, progress, [&](int y, int h) {
        const size_t at = size_t(y) * size_t(rgb.width);
        uint8_t* const d[3] = {out.data() + at, out.data() + n + at, out.data() + 2 * n + at};
        CheckStatus(ziliRGBToYCbCr_8u_C3P3R(rgb.Row(y), rgb.Step(), d, rgb.width, ZilSize{rgb.width, h}),
                    "ziliRGBToYCbCr_8u_C3P3R");
    });
    return out;
}

Image Ycbcr444ToRgb(const std::vector<uint8_t>& yuv, int w, int h, int bandRows, Progress* progress) {
    const size_t n = size_t(w) * size_t(h);
    if (yuv.size() != 3 * n) throw DataError("a YCbCr 4:4:4 frame of " + SizeText(w, h) + " needs " +
                                             std::to_string(3 * n) + " bytes");
    Image rgb;
    rgb.Allocate(w, h, 3, 8);
    Bands(h, rgb.RowBytes(), bandRows, progress, [&](int y, int bh) {
        const size_t at = size_t(y) * size_t(w);
        const uint8_t* const s[3] = {yuv.data() + at, yuv.data() + n + at, yuv.data() + 2 * n + at};
        CheckStatus(ziliYCbCrToRGB_8u_P3C3R(s, w, rgb.Row(y), rgb.Step(), ZilSize{w, bh}), "ziliYCbCrToRGB_8u_P3C3R");
    });
    return rgb;
}

// ---- demo ---------------------------------------------------------------------------
namespace {

void DemoGrayYcbcr(DemoKit& kit) {
    DemoSection s{"Gray and studio-range YCbCr",
                  "The scene as one gray channel (0.299 R + 0.587 G + 0.114 B in Q15 integers), and through "
                  "video-range YCbCr 4:4:4 (luma 16..235, chroma 16..240) and back; PSNR per channel against "
                  "the scene, time per megapixel for both directions.",
                  {}};
    Image gray;
    const double gms = DemoBestMs([&] { gray = ToGray(kit.scene8, nullptr); });
    s.figures.push_back({kit.write("gray.png", gray), "gray", DemoFmt("%.2f", gms / kit.mp) + " ms/MP"});

    Image back;
    std::vector<uint8_t> planes;
    const double ms = DemoBestMs([&] {
        planes = RgbToYcbcr444(kit.scene8, kit.h, nullptr);
        back = Ycbcr444ToRgb(planes, kit.w, kit.h, kit.h, nullptr);
    });
    double p[3];
    for (int c = 0; c < 3; ++c) p[c] = Psnr(back, kit.scene8, c);
    s.figures.push_back({kit.write("ycbcr444.png", back), "YCbCr 4:4:4 and back",
                         "PSNR R " + DemoDb(p[0]) + ", G " + DemoDb(p[1]) + ", B " + DemoDb(p[2]) + " dB; " +
                             DemoFmt("%.2f", ms / kit.mp) + " ms/MP"});
    kit.summary << "RGB -> YCbCr -> RGB, PSNR dB               R      G      B     ms/MP\n";
    char line[160];
    std::snprintf(line, sizeof line, "  %-38s %6s %6s %6s %8.2f\n", "YCbCr 4:4:4 (studio range)", DemoDb(p[0]).c_str(),
                  DemoDb(p[1]).c_str(), DemoDb(p[2]).c_str(), ms / kit.mp);
    kit.summary << line;
    kit.add(std::move(s));
}

}  // namespace

ZT_REGISTER(DemoDef{"gray and YCbCr", 110, DemoGrayYcbcr})

}  // namespace zt
