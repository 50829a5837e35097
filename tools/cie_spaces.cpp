// The CIE spaces and YCC in the tool: `zilcc convert IN OUT --to xyz|luv|lab|ycc`
// and `--from` the same, and a demo section showing each space's channels.
//
// The input's depth picks the library form: 8-bit files the 8u forms, 16-bit
// files the 16u forms, PFM the 32f forms. Lab has no 16-bit RGB form: a 16-bit
// Lab file (L*65535/100, (a+128)*255, (b+128)*255) converts back to 8-bit RGB.
#include <cmath>
#include <string>

#include "ops.hpp"
#include "registry.hpp"

namespace zt {
namespace {

template <class T>
using Conv = ZilStatus (*)(const T*, int, T*, int, ZilSize);

// The three forms of one direction of a space; null where there is none.
struct Forms {
    Conv<uint8_t> u8;
    Conv<uint16_t> u16;
    Conv<float> f32;
};

template <class T>
Image Run(const Image& in, Conv<T> fn, const char* fnName, Progress* progress) {
    Image out;
    out.Allocate(in.width, in.height, 3, in.depth);
    CheckStatus(fn(reinterpret_cast<const T*>(in.data.data()), in.Step(), reinterpret_cast<T*>(out.data.data()),
                   out.Step(), {in.width, in.height}),
                fnName);
    if (progress) progress->Update(in.height);
    return out;
}

Image Apply(const char* space, const char* dir, const Image& in, const Forms& f, Progress* progress) {
    if (in.channels != 3)
        throw UsageError(std::string(space) + " needs a three-channel image (RGB or encoded " + space + ")");
    const std::string name = std::string(dir) + " " + space;
    if (in.depth == 8 && f.u8) return Run(in, f.u8, name.c_str(), progress);
    if (in.depth == 16 && f.u16) return Run(in, f.u16, name.c_str(), progress);
    if (in.depth == 32 && f.f32) return Run(in, f.f32, name.c_str(), progress);
    throw UsageError(std::string(space) + " takes " + (f.u16 ? "8- or 16-bit PNG/PNM or PFM" : "8-bit PNG/PNM or PFM") +
                     " input, not " + (in.depth == 32 ? "PFM" : std::to_string(in.depth) + "-bit samples"));
}

constexpr Forms kToXyz{ziliRGBToXYZ_8u_C3R, ziliRGBToXYZ_16u_C3R, ziliRGBToXYZ_32f_C3R};
constexpr Forms kFromXyz{ziliXYZToRGB_8u_C3R, ziliXYZToRGB_16u_C3R, ziliXYZToRGB_32f_C3R};
constexpr Forms kToLuv{ziliRGBToLUV_8u_C3R, ziliRGBToLUV_16u_C3R, ziliRGBToLUV_32f_C3R};
constexpr Forms kFromLuv{ziliLUVToRGB_8u_C3R, ziliLUVToRGB_16u_C3R, ziliLUVToRGB_32f_C3R};
constexpr Forms kToLab{ziliRGBToLab_8u_C3R, nullptr, ziliRGBToLab_32f_C3R};
constexpr Forms kFromLab{ziliLabToRGB_8u_C3R, nullptr, ziliLabToRGB_32f_C3R};
constexpr Forms kToYcc{ziliRGBToYCC_8u_C3R, ziliRGBToYCC_16u_C3R, ziliRGBToYCC_32f_C3R};
constexpr Forms kFromYcc{ziliYCCToRGB_8u_C3R, ziliYCCToRGB_16u_C3R, ziliYCCToRGB_32f_C3R};

Image ToXyz(const Image& in, Progress* p) { return Apply("xyz", "to", in, kToXyz, p); }
Image FromXyz(const Image& in, Progress* p) { return Apply("xyz", "from", in, kFromXyz, p); }
Image ToLuv(const Image& in, Progress* p) { return Apply("luv", "to", in, kToLuv, p); }
Image FromLuv(const Image& in, Progress* p) { return Apply("luv", "from", in, kFromLuv, p); }
Image ToYcc(const Image& in, Progress* p) { return Apply("ycc", "to", in, kToYcc, p); }
Image FromYcc(const Image& in, Progress* p) { return Apply("ycc", "from", in, kFromYcc, p); }
Image ToLab(const Image& in, Progress* p) { return Apply("lab", "to", in, kToLab, p); }

// 16-bit Lab goes back through the one 16-bit inverse, which writes B, G, R
// on 8 bits; the channels are then put in R, G, B order.
Image FromLab(const Image& in, Progress* p) {
    if (in.depth != 16 || in.channels != 3) return Apply("lab", "from", in, kFromLab, p);
    Image out;
    out.Allocate(in.width, in.height, 3, 8);
    CheckStatus(ziliLabToBGR_16u8u_C3R(reinterpret_cast<const uint16_t*>(in.data.data()), in.Step(), out.data.data(),
                                       out.Step(), {in.width, in.height}),
                "from lab");
    for (size_t i = 0; i + 2 < out.data.size(); i += 3) std::swap(out.data[i], out.data[i + 2]);
    if (p) p->Update(in.height);
    return out;
}

ZT_REGISTER(SpaceDef{"lab", "CIE Lab: L*255/100, a+128, b+128 (8-bit), L, a, b (PFM); 16-bit Lab back to 8-bit RGB",
                     ToLab, FromLab})
ZT_REGISTER(SpaceDef{"luv", "CIE LUV: L*255/100, (U+134)*255/354, (V+140)*255/262 (8/16-bit), L, U, V (PFM)",
                     ToLuv, FromLuv})
ZT_REGISTER(SpaceDef{"xyz", "CIE XYZ (D65) on the depth's range (8/16-bit), nominally 0..1 (PFM)", ToXyz, FromXyz})
ZT_REGISTER(SpaceDef{"ycc", "photographic YCC: Y, C1 (offset 156/255), C2 (offset 137/255)", ToYcc, FromYcc})

// ---- demo ---------------------------------------------------------------------------
// Each space's three channels of the 8-bit scene as grey pictures side by
// side, and the PSNR of the scene sent there and back.
void RunDemo(DemoKit& kit) {
    struct Sp { const char* name; const char* channels[3]; Image (*to)(const Image&, Progress*);
                Image (*from)(const Image&, Progress*); };
    const Sp spaces[] = {{"xyz", {"X", "Y", "Z"}, ToXyz, FromXyz},
                         {"luv", {"L", "U", "V"}, ToLuv, FromLuv},
                         {"lab", {"L", "a", "b"}, ToLab, FromLab},
                         {"ycc", {"Y", "C1", "C2"}, ToYcc, FromYcc}};
    DemoSection s{"CIE spaces and YCC",
                  "The scene in XYZ, LUV, Lab and YCC, 8-bit forms: each channel as a grey picture (left to right "
                  "in the order of the space's name), and the round trip back to RGB.",
                  {}};
    kit.summary << "CIE spaces and YCC, 8-bit round trip PSNR (R, G, B):\n";
    for (const Sp& sp : spaces) {
        Image enc, back;
        const double ms = DemoBestMs([&] { enc = sp.to(kit.scene8, nullptr); });
        back = sp.from(enc, nullptr);
        Image strip;
        strip.Allocate(3 * kit.w, kit.h, 1, 8);
        for (int y = 0; y < kit.h; ++y)
            for (int x = 0; x < kit.w; ++x)
                for (int c = 0; c < 3; ++c) strip.Row(y)[c * kit.w + x] = enc.Row(y)[3 * x + c];
        double p[3];
        for (int c = 0; c < 3; ++c) p[c] = Psnr(back, kit.scene8, c);
        const std::string psnr = DemoDb(p[0]) + ", " + DemoDb(p[1]) + ", " + DemoDb(p[2]);
        s.figures.push_back({kit.write(std::string("cie-") + sp.name + ".png", strip),
                             std::string(sp.name) + ": " + sp.channels[0] + ", " + sp.channels[1] + ", " + sp.channels[2],
                             "round trip PSNR " + psnr + " dB; " + DemoFmt("%.2f", ms / kit.mp) + " ms/MP"});
        kit.summary << "  " << sp.name << "  " << psnr << " dB\n";
    }
    kit.add(std::move(s));
}

ZT_REGISTER(DemoDef{"cie", 120, RunDemo})

}  // namespace
}  // namespace zt
