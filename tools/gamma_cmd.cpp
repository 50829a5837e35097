// `zilcc gamma IN OUT [--inverse]`: the Rec. 709 transfer curve on an image,
// and the demo section with a forward and inverse pair.
#include <cstdio>
#include <string>

#include "args.hpp"
#include "image_io.hpp"
#include "registry.hpp"

namespace zt {
namespace {

const char kGammaHelp[] =
    "usage: zilcc gamma IN OUT [--inverse]\n"
    "\n"
    "Applies the Rec. 709 transfer curve to every colour sample: forward (linear\n"
    "light to gamma-corrected signal) by default, the inverse with --inverse.\n"
    "IN: PNG, PGM or PPM of 8 or 16 bits (grey or RGB; an alpha channel is\n"
    "dropped), or PFM with samples on the range 0..1. OUT: .png, .pgm, .ppm,\n"
    ".pnm or .pfm; the result keeps the input's depth and channels.\n";

// The image through the library: RGB as C3, grey as three equal planes.
Image ApplyGamma(const Image& src, bool inverse) {
    Image out;
    out.Allocate(src.width, src.height, src.channels, src.depth);
    const ZilSize roi{src.width, src.height};
    const int step = src.Step();
    const char* fn = nullptr;
    ZilStatus st = 0;
    auto run = [&](auto c3, auto p3, auto* s, auto* d, auto... range) {
        if (src.channels == 3) return c3(s, step, d, step, roi, range...);
        decltype(s) sp[3] = {s, s, s};
        decltype(d) dp[3] = {d, d, d};
        return p3(sp, step, dp, step, roi, range...);
    };
    if (src.depth == 8) {
        fn = inverse ? "ziliGammaInv_8u" : "ziliGammaFwd_8u";
        st = inverse ? run(ziliGammaInv_8u_C3R, ziliGammaInv_8u_P3R, src.Row(0), out.Row(0))
                     : run(ziliGammaFwd_8u_C3R, ziliGammaFwd_8u_P3R, src.Row(0), out.Row(0));
    } else if (src.depth == 16) {
        fn = inverse ? "ziliGammaInv_16u" : "ziliGammaFwd_16u";
        st = inverse ? run(ziliGammaInv_16u_C3R, ziliGammaInv_16u_P3R, src.Row16(0), out.Row16(0))
                     : run(ziliGammaFwd_16u_C3R, ziliGammaFwd_16u_P3R, src.Row16(0), out.Row16(0));
    } else {
        fn = inverse ? "ziliGammaInv_32f" : "ziliGammaFwd_32f";
        st = inverse ? run(ziliGammaInv_32f_C3R, ziliGammaInv_32f_P3R, src.RowF(0), out.RowF(0), 0.0f, 1.0f)
                     : run(ziliGammaFwd_32f_C3R, ziliGammaFwd_32f_P3R, src.RowF(0), out.RowF(0), 0.0f, 1.0f);
    }
    CheckStatus(st, fn);
    return out;
}

int RunGamma(int argc, char** argv, int first) {
    const Args a = ParseArgs("gamma", argc, argv, first, {{"inverse", false}});
    if (a.help) {
        std::fputs(kGammaHelp, stdout);
        return 0;
    }
    RequirePositional(a, {"IN", "OUT"});
    const std::string& in = a.positional[0];
    const std::string& out = a.positional[1];
    OutputFormatFor(out);
    bool droppedAlpha = false;
    const Image src = ReadImage(in, &droppedAlpha, true);
    if (droppedAlpha) std::fprintf(stderr, "zilcc: note: %s: the alpha channel is ignored\n", DisplayName(in).c_str());
    CheckImageOutput(out, src.channels, src.depth);
    const Image img = ApplyGamma(src, a.Has("inverse"));
    WriteImage(out, img, 6, true);
    return 0;
}

void GammaDemo(DemoKit& kit) {
    const Image fwd = ApplyGamma(kit.scene8, false);
    const Image inv = ApplyGamma(kit.scene8, true);
    const double ms = DemoBestMs([&] { ApplyGamma(kit.scene8, false); });
    DemoSection s;
    s.title = "Gamma";
    s.intro = "The Rec. 709 transfer curve by table look-up: forward gamma brightens the "
              "shadows of linear light, the inverse darkens a gamma-corrected signal back.";
    s.figures.push_back({kit.write("gamma_fwd.png", fwd), "Forward gamma (ziliGammaFwd_8u_C3R)",
                         "linear 4.5x below 0.018, 1.099 x^0.45 - 0.099 above"});
    s.figures.push_back({kit.write("gamma_inv.png", inv), "Inverse gamma (ziliGammaInv_8u_C3R)",
                         "x / 4.5 below 0.0812, ((x + 0.099) / 1.099)^(1/0.45) above"});
    kit.add(std::move(s));
    kit.summary << "  gamma         forward and inverse 8-bit, " << DemoFmt("%.1f", kit.mp / ms * 1000.0)
                << " Mpix/s forward\n";
}

}  // namespace
}  // namespace zt

ZT_REGISTER(zt::CommandDef{"gamma", "apply the Rec. 709 gamma curve or its inverse", zt::RunGamma, 50})
ZT_REGISTER(zt::DemoDef{"gamma", 110, zt::GammaDemo})
