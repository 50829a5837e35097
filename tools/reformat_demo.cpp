// Demo section of the chroma reformatting family: 4:2:0 chroma brought to
// 4:2:2 by the four-tap filter beside plain row repetition, close up; and the
// speed of two pure relayouts.
#include <algorithm>
#include <cstring>

#include "ops.hpp"
#include "registry.hpp"

namespace zt {
namespace {

// A grey close-up of one plane: the window (x, y, w, h), each sample f x f.
Image CloseUp(const uint8_t* plane, int step, int x0, int y0, int w, int h, int fx, int fy) {
    Image z;
    z.Allocate(w * fx, h * fy, 1, 8);
    for (int y = 0; y < z.height; ++y)
        for (int x = 0; x < z.width; ++x) z.Row(y)[x] = plane[size_t(y0 + y / fy) * size_t(step) + size_t(x0 + x / fx)];
    return z;
}

void Run(DemoKit& kit) {
    const int w = kit.w & ~1, h = kit.h & ~7;
    if (w < 16 || h < 16) return;
    Image rgb;
    rgb.Allocate(w, h, 3, 8);
    for (int y = 0; y < h; ++y) std::memcpy(rgb.Row(y), kit.scene8.Row(y), rgb.RowBytes());
    // I420 of the scene: Y, U, V planes, chroma w/2 x h/2.
    std::vector<uint8_t> i420 = RgbToYuv(rgb, YuvFormat::I420, 0, nullptr);
    const int cw = w / 2;
    const uint8_t* src[3] = {i420.data(), i420.data() + size_t(w) * h, i420.data() + size_t(w) * h + size_t(cw) * (h / 2)};
    const int srcStep[3] = {w, cw, cw};
    std::vector<uint8_t> rep(size_t(w) * h * 2), tap(size_t(w) * h * 2);
    auto planes = [&](std::vector<uint8_t>& b, uint8_t* p[3]) {
        p[0] = b.data(), p[1] = b.data() + size_t(w) * h, p[2] = p[1] + size_t(cw) * h;
    };
    uint8_t *pr[3], *pt[3];
    planes(rep, pr), planes(tap, pt);
    const int dstStep[3] = {w, cw, cw};
    CheckStatus(ziliYCbCr420ToYCbCr422_8u_P3R(src, srcStep, pr, dstStep, {w, h}), "ziliYCbCr420ToYCbCr422_8u_P3R");
    CheckStatus(ziliYCbCr420ToYCbCr422_Filter_8u_P3R(src, srcStep, pt, dstStep, {w, h}),
                "ziliYCbCr420ToYCbCr422_Filter_8u_P3R");

    // The close-up: a window of the V plane at the scene's centre, each 4:2:2
    // sample drawn over the 2x1 pixels it stands for, magnified twice.
    const int ww = std::min(48, cw), wh = std::min(48, h), x0 = (cw - ww) / 2, y0 = (h - wh) / 2 & ~1;
    DemoSection s{"Chroma 4:2:0 to 4:2:2",
                  "The V plane of the scene's 4:2:0 form brought to 4:2:2, close up at the centre of the scene: "
                  "left by repeating each chroma row, right by the four-tap filter (-1, 9, 9, -1) / 16 that "
                  "interpolates the missing rows. Then the two 4:2:2 results back to RGB.",
                  {}};
    s.figures.push_back({kit.write("chroma-repeat.png", CloseUp(pr[2], cw, x0, y0, ww, wh, 4, 2)),
                         "rows repeated", "ziliYCbCr420ToYCbCr422_8u_P3R, V plane"});
    s.figures.push_back({kit.write("chroma-fourtap.png", CloseUp(pt[2], cw, x0, y0, ww, wh, 4, 2)),
                         "four-tap filter", "ziliYCbCr420ToYCbCr422_Filter_8u_P3R, V plane"});
    for (int k = 0; k < 2; ++k) {
        const Image back = YuvToRgb(k ? tap : rep, w, h, YuvFormat::YUV422P, 0, nullptr);
        Image crop;
        crop.Allocate(2 * ww * 2, wh * 2, 3, 8);
        for (int y = 0; y < crop.height; ++y)
            for (int x = 0; x < crop.width; ++x)
                for (int c = 0; c < 3; ++c) crop.Row(y)[3 * x + c] = back.Row(y0 + y / 2)[3 * (2 * x0 + x / 2) + c];
        s.figures.push_back({kit.write(k ? "chroma-fourtap-rgb.png" : "chroma-repeat-rgb.png", crop),
                             k ? "four-tap, as RGB" : "repeated, as RGB", "the same window, 2x"});
    }
    kit.add(std::move(s));

    // Speed of two relayouts against copying the same bytes.
    std::vector<uint8_t> yuy2(size_t(w) * h * 2), i420b(i420.size()), nv12(i420.size());
    for (size_t k = 0; k < yuy2.size(); ++k) yuy2[k] = uint8_t(k * 7);
    uint8_t* d420[3];
    d420[0] = i420b.data(), d420[1] = i420b.data() + size_t(w) * h, d420[2] = d420[1] + size_t(cw) * (h / 2);
    const int d420Step[3] = {w, cw, cw};
    const double msPack = DemoBestMs([&] { ziliYCbCr422ToYCbCr420_8u_C2P3R(yuy2.data(), 2 * w, d420, d420Step, {w, h}); });
    const double msCopyPack = DemoBestMs([&] { std::memcpy(nv12.data(), yuy2.data(), nv12.size()); });
    CheckStatus(ziliYCbCr420_8u_P3P2R(src, srcStep, nv12.data(), w, nv12.data() + size_t(w) * h, w, {w, h}),
                "ziliYCbCr420_8u_P3P2R");
    const double msNv12 = DemoBestMs(
        [&] { ziliYCbCr420_8u_P2P3R(nv12.data(), w, nv12.data() + size_t(w) * h, w, d420, d420Step, {w, h}); });
    const double msCopy = DemoBestMs([&] { std::memcpy(i420b.data(), nv12.data(), nv12.size()); });
    kit.summary << "chroma reformatting, ms/MP (memcpy of the written bytes)\n"
                << "  4:2:2 YUY2 -> 4:2:0 I420                 " << DemoFmt("%8.3f", msPack / kit.mp) << "  ("
                << DemoFmt("%.3f", msCopyPack / kit.mp) << ")\n"
                << "  NV12 -> I420                             " << DemoFmt("%8.3f", msNv12 / kit.mp) << "  ("
                << DemoFmt("%.3f", msCopy / kit.mp) << ")\n";
}

}  // namespace

ZT_REGISTER(DemoDef{"chroma reformatting", 130, Run})

}  // namespace zt
