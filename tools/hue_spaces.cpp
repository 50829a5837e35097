// HLS, HSV and YCoCg in the tool: `zilcc convert --to/--from hls|hsv|ycocg`
// and a demo section (each space's channels as grey pictures, a hue rotation,
// round-trip PSNR, the reversible YCoCg round trip).
#include <cmath>
#include <cstring>

#include "ops.hpp"
#include "registry.hpp"

namespace zt {
namespace {

// Grey becomes RGB with the same value in every channel.
Image AsRgb(const Image& in) {
    if (in.channels == 3) return in;
    Image c;
    c.Allocate(in.width, in.height, 3, in.depth);
    const size_t b = in.SampleBytes();
    for (int y = 0; y < in.height; ++y)
        for (int x = 0; x < in.width; ++x)
            for (int k = 0; k < 3; ++k) std::memcpy(c.Row(y) + (3 * x + k) * b, in.Row(y) + x * b, b);
    return c;
}

// One call per depth: 8u, 16u, 32f (null where the space has no such depth).
struct ByDepth {
    const char* what;
    ZilStatus (*f8)(const uint8_t*, int, uint8_t*, int, ZilSize);
    ZilStatus (*f16)(const uint16_t*, int, uint16_t*, int, ZilSize);
    ZilStatus (*f32)(const float*, int, float*, int, ZilSize);
};

Image Apply(const ByDepth& d, const Image& in, Progress* progress) {
    const Image src = AsRgb(in);
    Image out;
    out.Allocate(src.width, src.height, 3, src.depth);
    const ZilSize sz{src.width, src.height};
    ZilStatus st;
    const char* fn;
    if (src.depth == 8 && d.f8) {
        st = d.f8(src.Row(0), src.Step(), out.Row(0), out.Step(), sz), fn = "8-bit";
    } else if (src.depth == 16 && d.f16) {
        st = d.f16(src.Row16(0), src.Step(), out.Row16(0), out.Step(), sz), fn = "16-bit";
    } else if (src.depth == 32 && d.f32) {
        st = d.f32(src.RowF(0), src.Step(), out.RowF(0), out.Step(), sz), fn = "float";
    } else {
        throw DataError(std::string(d.what) + " takes " + (d.f16 ? "8-bit, 16-bit" : "8-bit") +
                        (d.f32 ? " or float" : "") + " images, not " + std::to_string(src.depth) + "-bit ones");
    }
    CheckStatus(st, d.what, std::string(" (") + fn + ")");
    if (progress) progress->Update(src.height);
    return out;
}

const ByDepth kToHls{"RGB to HLS", ziliRGBToHLS_8u_C3R, ziliRGBToHLS_16u_C3R, ziliRGBToHLS_32f_C3R};
const ByDepth kFromHls{"HLS to RGB", ziliHLSToRGB_8u_C3R, ziliHLSToRGB_16u_C3R, ziliHLSToRGB_32f_C3R};
const ByDepth kToHsv{"RGB to HSV", ziliRGBToHSV_8u_C3R, ziliRGBToHSV_16u_C3R, nullptr};
const ByDepth kFromHsv{"HSV to RGB", ziliHSVToRGB_8u_C3R, ziliHSVToRGB_16u_C3R, nullptr};

Image ToHls(const Image& in, Progress* p) { return Apply(kToHls, in, p); }
Image FromHls(const Image& in, Progress* p) { return Apply(kFromHls, in, p); }
Image ToHsv(const Image& in, Progress* p) { return Apply(kToHsv, in, p); }
Image FromHsv(const Image& in, Progress* p) { return Apply(kFromHsv, in, p); }

// YCoCg as an 8-bit three-channel image Y, Co + 128, Cg + 128: the library's
// biased planes, interleaved.
void NeedEightBit(const Image& in) {
    if (in.depth != 8) throw DataError("ycocg takes 8-bit images, not " + std::to_string(in.depth) + "-bit ones");
}
Image ToYcocg(const Image& in, Progress* p) {
    NeedEightBit(in);
    const Image src = AsRgb(in);
    const int w = src.width, h = src.height;
    std::vector<uint8_t> planes(size_t(w) * size_t(h) * 3);
    uint8_t* pl[3] = {planes.data(), planes.data() + size_t(w) * h, planes.data() + 2 * size_t(w) * h};
    CheckStatus(ziliRGBToYCoCg_8u_C3P3R(src.Row(0), src.Step(), pl, w, {w, h}), "ziliRGBToYCoCg_8u_C3P3R");
    Image out;
    out.Allocate(w, h, 3, 8);
    for (size_t i = 0; i < size_t(w) * h; ++i)
        for (int k = 0; k < 3; ++k) out.data[3 * i + k] = pl[k][i];
    if (p) p->Update(h);
    return out;
}
Image FromYcocg(const Image& in, Progress* p) {
    NeedEightBit(in);
    if (in.channels != 3) throw DataError("ycocg input must have three channels (Y, Co, Cg)");
    const int w = in.width, h = in.height;
    std::vector<uint8_t> planes(size_t(w) * size_t(h) * 3);
    uint8_t* pl[3] = {planes.data(), planes.data() + size_t(w) * h, planes.data() + 2 * size_t(w) * h};
    for (size_t i = 0; i < size_t(w) * h; ++i)
        for (int k = 0; k < 3; ++k) pl[k][i] = in.data[3 * i + k];
    Image out;
    out.Allocate(w, h, 3, 8);
    const uint8_t* const cpl[3] = {pl[0], pl[1], pl[2]};
    CheckStatus(ziliYCoCgToRGB_8u_P3C3R(cpl, w, out.Row(0), out.Step(), {w, h}), "ziliYCoCgToRGB_8u_P3C3R");
    if (p) p->Update(h);
    return out;
}

ZT_REGISTER(SpaceDef{"hls", "hue, lightness, saturation (8/16-bit or float; H scaled to the full range)", ToHls,
                     FromHls});
ZT_REGISTER(SpaceDef{"hsv", "hue, saturation, value (8/16-bit; H scaled to the full range)", ToHsv, FromHsv});
ZT_REGISTER(SpaceDef{"ycocg", "Y, Co + 128, Cg + 128 (8-bit, lossy sums)", ToYcocg, FromYcocg});

// ---- demo -------------------------------------------------------------------------------
// The three channels of an 8-bit image side by side as one grey picture.
Image ChannelStrip(const Image& img) {
    Image g;
    g.Allocate(3 * img.width, img.height, 1, 8);
    for (int y = 0; y < img.height; ++y)
        for (int k = 0; k < 3; ++k)
            for (int x = 0; x < img.width; ++x) g.Row(y)[k * img.width + x] = img.Row(y)[3 * x + k];
    return g;
}

double MeanPsnr(const Image& a, const Image& b) {
    double s = 0;
    for (int c = 0; c < 3; ++c) s += Psnr(a, b, c);
    return s / 3;
}

void HueDemo(DemoKit& kit) {
    const Image& rgb = kit.scene8;
    DemoSection s{"Hue spaces and YCoCg",
                  "Each space's three channels as grey pictures (left to right), a hue rotation through HSV, "
                  "and round trips: HLS and HSV are single-precision and lose a little; reversible YCoCg is exact.",
                  {}};
    Image hls, hsv, ycocg, back;
    const double msHls = DemoBestMs([&] { hls = ToHls(rgb, nullptr); });
    const double msHsv = DemoBestMs([&] { hsv = ToHsv(rgb, nullptr); });
    ycocg = ToYcocg(rgb, nullptr);
    const std::string per = " ms/MP";
    s.figures.push_back({kit.write("hls-channels.png", ChannelStrip(hls)), "HLS: H | L | S",
                         DemoFmt("%.2f", msHls / kit.mp) + per});
    s.figures.push_back({kit.write("hsv-channels.png", ChannelStrip(hsv)), "HSV: H | S | V",
                         DemoFmt("%.2f", msHsv / kit.mp) + per});
    s.figures.push_back({kit.write("ycocg-channels.png", ChannelStrip(ycocg)), "YCoCg: Y | Co | Cg", "chroma + 128"});

    const double pHls = MeanPsnr(FromHls(hls, nullptr), rgb), pHsv = MeanPsnr(FromHsv(hsv, nullptr), rgb),
                 pYcocg = MeanPsnr(FromYcocg(ycocg, nullptr), rgb);

    // Hue rotation by 120 degrees: 85 of the 255 steps of a turn (255 is 0 again).
    Image turned = hsv;
    for (size_t i = 0; i < turned.data.size(); i += 3) turned.data[i] = uint8_t((turned.data[i] % 255 + 85) % 255);
    s.figures.push_back({kit.write("hsv-rotated.png", FromHsv(turned, nullptr)), "hue turned by 120 degrees",
                         "RGB to HSV, H + 85 of 255, back; plain round trip PSNR " + DemoDb(pHsv) + " dB"});

    // Reversible YCoCg on the scene as BGR bytes: back exactly.
    const int w = rgb.width, h = rgb.height;
    std::vector<int16_t> planes(size_t(w) * h * 3);
    int16_t* pl[3] = {planes.data(), planes.data() + size_t(w) * h, planes.data() + 2 * size_t(w) * h};
    back.Allocate(w, h, 3, 8);
    CheckStatus(ziliBGRToYCoCg_Rev_8u16s_C3P3R(rgb.Row(0), rgb.Step(), pl, 2 * w, {w, h}), "ziliBGRToYCoCg_Rev_8u16s_C3P3R");
    const int16_t* const cpl[3] = {pl[0], pl[1], pl[2]};
    CheckStatus(ziliYCoCgToBGR_Rev_16s8u_P3C3R(cpl, 2 * w, back.Row(0), back.Step(), {w, h}), "ziliYCoCgToBGR_Rev_16s8u_P3C3R");
    const bool exact = back.data == rgb.data;
    s.figures.push_back({kit.write("ycocg-rev-roundtrip.png", back), "reversible YCoCg round trip",
                         exact ? "identical to the scene: lossless" : "DIFFERS from the scene"});

    kit.summary << "hue spaces: round trip PSNR HLS " << DemoDb(pHls) << " dB, HSV " << DemoDb(pHsv)
                << " dB, YCoCg " << DemoDb(pYcocg) << " dB, reversible YCoCg "
                << (exact ? "exact" : "NOT EXACT") << "\n";
    kit.add(std::move(s));
}
ZT_REGISTER(DemoDef{"hue", 140, HueDemo});

}  // namespace
}  // namespace zt
