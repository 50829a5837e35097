// `zilcc twist` (a 3x4 colour matrix on an RGB image of any depth),
// `zilcc tonemap` (a float image to 8 bits by its maximum or its mean) and
// their demo section.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "args.hpp"
#include "image_io.hpp"
#include "registry.hpp"

namespace zt {
namespace {

const char kTwistHelp[] =
    "usage: zilcc twist IN OUT --matrix \"m00 m01 m02 m03; m10 m11 m12 m13; m20 m21 m22 m23\"\n"
    "\n"
    "Applies an affine colour matrix to every pixel of an RGB image:\n"
    "  R' = m00 R + m01 G + m02 B + m03, and so on for G' and B',\n"
    "computed in single precision; the fourth column is an offset in sample\n"
    "units (0..255 for 8-bit, 0..65535 for 16-bit images). Integer results are\n"
    "rounded to the nearest (ties to even) and saturated; float results are kept\n"
    "as they are.\n"
    "\n"
    "  IN          RGB .png/.ppm of 8 or 16 bits, or a colour .pfm; - for stdin\n"
    "  OUT         same depth: .png, .ppm, .pnm (.pfm for a float image), or -\n"
    "  --matrix M  three rows of four finite numbers, rows separated by ';'\n"
    "\n"
    "Examples: swap red and blue:  --matrix \"0 0 1 0; 0 1 0 0; 1 0 0 0\"\n"
    "          sepia:  --matrix \"0.393 0.769 0.189 0; 0.349 0.686 0.168 0; 0.272 0.534 0.131 0\"\n";

const char kToneHelp[] =
    "usage: zilcc tonemap IN.pfm OUT --method linear|mean\n"
    "\n"
    "Maps a high-range float image to 8 bits with one scale for the whole image:\n"
    "  linear  the image's maximum becomes 255; negative samples wrap around\n"
    "  mean    twice the image's mean becomes 255; samples above it saturate\n"
    "A colour image is mapped as one set of samples, so its colours keep their\n"
    "balance. An image whose maximum (or mean) is negative cannot be mapped.\n"
    "\n"
    "  IN      a .pfm (grey or colour), or - for stdin\n"
    "  OUT     8-bit .png, .pgm/.ppm, .pnm or -\n";

bool Help(const Args& a, const char* text) {
    if (a.help) std::fputs(text, stdout);
    return a.help;
}

// "m00 m01 m02 m03; m10 ...; m20 ..." into 12 floats, row-major. Entries are
// separated by blanks or commas, rows by ';'.
std::vector<float> ParseMatrix(const std::string& text) {
    std::vector<float> m;
    int rows = 0;
    size_t start = 0;
    while (start <= text.size()) {
        size_t end = text.find(';', start);
        if (end == std::string::npos) end = text.size();
        std::string row = text.substr(start, end - start);
        for (char& c : row)
            if (c == ',' || c == '\t') c = ' ';
        int n = 0;
        size_t i = 0;
        while (true) {
            while (i < row.size() && row[i] == ' ') ++i;
            if (i == row.size()) break;
            const size_t j = row.find(' ', i);
            const std::string tok = row.substr(i, j == std::string::npos ? std::string::npos : j - i);
            i = j == std::string::npos ? row.size() : j;
            char* stop = nullptr;
            const double v = std::strtod(tok.c_str(), &stop);
            if (stop == tok.c_str() || *stop != '\0')
                throw UsageError("--matrix: '" + tok + "' is not a number");
            if (!std::isfinite(v) || !std::isfinite(float(v)))
                throw UsageError("--matrix: entry '" + tok + "' is not a finite single-precision number");
            m.push_back(float(v));
            ++n;
        }
        ++rows;
        if (n != 4)
            throw UsageError("--matrix wants 3 rows of 4 numbers separated by ';'; row " + std::to_string(rows) +
                             " has " + std::to_string(n));
        start = end + 1;
    }
    if (rows != 3)
        throw UsageError("--matrix wants 3 rows of 4 numbers separated by ';', not " + std::to_string(rows) + " rows");
    return m;
}

// The matrix on an RGB image of depth 8, 16 or 32, in place on a copy.
Image Twist(const Image& src, const float* m) {
    Image out = src;
    const ZilSize roi{src.width, src.height};
    const int step = src.Step();
    ZilStatus st;
    if (src.depth == 8) st = ziliColorTwist32f_8u_C3IR(out.Row(0), step, roi, m);
    else if (src.depth == 16) st = ziliColorTwist32f_16u_C3IR(out.Row16(0), step, roi, m);
    else st = ziliColorTwist_32f_C3IR(out.RowF(0), step, roi, m);
    CheckStatus(st, "ziliColorTwist");
    return out;
}

// A float image to 8 bits; colour samples are mapped as one wide grey image.
// Returns the status (a positive one: nothing mapped).
ZilStatus ToneMap(const Image& src, bool mean, Image* out) {
    out->Allocate(src.width, src.height, src.channels, 8);
    const ZilSize roi{src.width * src.channels, src.height};
    const ZilStatus st = mean ? ziliToneMapMean_32f8u_C1R(src.RowF(0), src.Step(), out->Row(0), out->Step(), roi)
                              : ziliToneMapLinear_32f8u_C1R(src.RowF(0), src.Step(), out->Row(0), out->Step(), roi);
    return CheckStatus(st, mean ? "ziliToneMapMean_32f8u_C1R" : "ziliToneMapLinear_32f8u_C1R");
}

int RunTwist(int argc, char** argv, int first) {
    const Args a = ParseArgs("twist", argc, argv, first, {{"matrix", true}});
    if (Help(a, kTwistHelp)) return 0;
    RequirePositional(a, {"IN", "OUT"});
    const std::vector<float> m = ParseMatrix(a.Get("matrix"));
    const std::string &in = a.positional[0], &out = a.positional[1];
    OutputFormatFor(out);
    const Image src = ReadImage(in);
    if (src.channels != 3) throw DataError(DisplayName(in) + ": twist takes an RGB image, this one is grey");
    CheckImageOutput(out, 3, src.depth);
    WriteImage(out, Twist(src, m.data()), 6, true);
    return 0;
}

int RunToneMap(int argc, char** argv, int first) {
    const Args a = ParseArgs("tonemap", argc, argv, first, {{"method", true}});
    if (Help(a, kToneHelp)) return 0;
    RequirePositional(a, {"IN", "OUT"});
    const bool mean = ParseChoice("method", a.Get("method"), {"linear", "mean"}) == 1;
    const std::string &in = a.positional[0], &out = a.positional[1];
    OutputFormatFor(out);
    const Image src = ReadImage(in);
    if (src.depth != 32) throw DataError(DisplayName(in) + ": tonemap takes a float (PFM) image");
    CheckImageOutput(out, src.channels, 8);
    Image img;
    if (ToneMap(src, mean, &img) == zilStatusNegativeMaximum)
        throw DataError(DisplayName(in) + (mean ? ": the image's mean is negative" : ": the image's maximum is negative") +
                        ", nothing to map");
    WriteImage(out, img, 6, true);
    return 0;
}

// ---- demo ------------------------------------------------------------------------
const float kSepia[12] = {0.393f, 0.769f, 0.189f, 0, 0.349f, 0.686f, 0.168f, 0, 0.272f, 0.534f, 0.131f, 0};
const float kSwapRB[12] = {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 0};

// A high-range grey scene: the 16-bit scene's luminance raised to a steep
// exponential (about 1 to 4000), with two small bright lamps far above it.
Image HighRange(const Image& rgb16) {
    Image f;
    f.Allocate(rgb16.width, rgb16.height, 1, 32);
    for (int y = 0; y < f.height; ++y) {
        const uint16_t* s = rgb16.Row16(y);
        float* d = f.RowF(y);
        for (int x = 0; x < f.width; ++x) {
            const double l = (0.2126 * s[3 * x] + 0.7152 * s[3 * x + 1] + 0.0722 * s[3 * x + 2]) / 65535.0;
            double v = std::exp(8.3 * l);
            const double dx = x - 0.8 * f.width, dy = y - 0.2 * f.height;
            if (dx * dx + dy * dy < 0.0004 * f.width * f.width) v += 60000.0;
            d[x] = float(v);
        }
    }
    return f;
}

void RunDemoSection(DemoKit& kit) {
    DemoSection sec;
    sec.title = "Colour twist and tone mapping";
    sec.intro = "A colour twist applies a 3x4 matrix to every pixel in single precision; the tone maps bring a "
                "float image of high range to 8 bits with one scale, from its maximum or from its mean.";
    const Image sepia = Twist(kit.scene8, kSepia);
    const double ms = DemoBestMs([&] { Twist(kit.scene8, kSepia); });
    sec.figures.push_back({kit.write("twist_sepia.png", sepia), "Sepia",
                           "ziliColorTwist32f_8u_C3IR with a sepia matrix; " + DemoFmt("%.0f", kit.mp / ms * 1000.0) +
                               " Mpix/s"});
    sec.figures.push_back({kit.write("twist_swap_rb.png", Twist(kit.scene8, kSwapRB)), "Red and blue swapped",
                           "the same call with a permutation matrix"});
    const Image hdr = HighRange(kit.scene16);
    for (bool mean : {false, true}) {
        Image img;
        ToneMap(hdr, mean, &img);
        const double t = DemoBestMs([&] { Image tmp; ToneMap(hdr, mean, &tmp); });
        sec.figures.push_back({kit.write(mean ? "tonemap_mean.png" : "tonemap_linear.png", img),
                               mean ? "Tone map, mean" : "Tone map, linear",
                               std::string(mean ? "twice the mean becomes 255: the scene shows, the lamps saturate"
                                                : "the maximum (the lamps) becomes 255: the scene is nearly black") +
                                   "; " + DemoFmt("%.0f", kit.mp / t * 1000.0) + " Mpix/s"});
    }
    kit.summary << "  colour twist (sepia, 8-bit RGB): " << DemoFmt("%.2f", ms) << " ms\n";
    kit.add(std::move(sec));
}

}  // namespace

ZT_REGISTER(CommandDef{"twist", "apply a 3x4 colour matrix to an RGB image", RunTwist, 50})
ZT_REGISTER(CommandDef{"tonemap", "map a float (PFM) image to 8 bits by its maximum or mean", RunToneMap, 55})
ZT_REGISTER(DemoDef{"colour twist and tone mapping", 150, RunDemoSection})

}  // namespace zt
