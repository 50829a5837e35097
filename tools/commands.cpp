// The subcommands for the user's own files, and version and list.
#include "commands.hpp"

#include <cctype>
#include <cstdio>

#include "args.hpp"
#include "common.hpp"
#include "image_io.hpp"
#include "ops.hpp"
#include "progress.hpp"
#include "reformat_ops.hpp"
#include "registry.hpp"
#include "ycbcr_tool.hpp"

namespace zt {
namespace {

const char kDemosaicHelp[] =
    "usage: zilcc demosaic IN OUT --pattern rggb|bggr|grbg|gbrg --method gradient|ahd [options]\n"
    "\n"
    "Reconstructs a full RGB image from colour-filter-array (Bayer) samples.\n"
    "\n"
    "  IN                single-channel 8- or 16-bit PGM or PNG of raw sensor samples,\n"
    "                    or - for standard input; at least 2x2 for gradient and\n"
    "                    5x5 for ahd\n"
    "  OUT               RGB .png or .ppm/.pnm, or - for PPM on standard output;\n"
    "                    16-bit input stays 16-bit. A PGM's maximum value (such as\n"
    "                    4095 for 12-bit samples) is kept in PPM output; PNG output\n"
    "                    is scaled to the full range and records the true bits\n"
    "  --pattern P       filter colours of the image's top-left 2x2 cell, read\n"
    "                    left to right, top to bottom\n"
    "  --method M        gradient: gradient-steered bilinear interpolation\n"
    "                    ahd:      adaptive homogeneity-directed selection\n"
    "  --rect x,y,w,h    reconstruct only this region (clipped to the image):\n"
    "                    exactly the pixels of the whole image's result there\n"
    "  --band-rows N     rows handed to the library per call (default: about\n"
    "                    8 MB of input a band); the result does not depend on it\n";

const char kConvertHelp[] =
    "usage: zilcc convert IN OUT --to FORMAT\n"
    "       zilcc convert IN OUT --from FORMAT --size WxH\n"
    "       zilcc convert IN OUT --to SPACE | --from SPACE\n"
    "\n"
    "Converts 8-bit RGB to a raw YCbCr/YUV frame (--to) or back (--from).\n"
    "\n"
    "  --to FORMAT       IN is an RGB (or grey) .png/.ppm/.pgm; OUT a raw YUV file\n"
    "  --from FORMAT     IN is a raw YUV file; OUT an RGB .png or .ppm\n"
    "  --size WxH        the extent of a raw YUV input; exactly the bytes the\n"
    "                    layout needs are read, a longer input is refused\n"
    "  IN or OUT may be - for standard input or output (images as PNM).\n"
    "  --band-rows N     rows handed to the library per call\n"
    "  --matrix M        bt601 (default): video-range YCbCr (Y 16..235, Cb, Cr\n"
    "                    16..240), as video tools write these layouts\n"
    "                    bt709: the same range with BT.709 weights (i420, nv12;\n"
    "                    yuv444p --from only)\n"
    "                    yuv: analog YUV, Y = 0.299 R + 0.587 G + 0.114 B on 0..255\n"
    "\n"
    "FORMAT (raw files are dense, planes one after another):\n"
    "  i420     4:2:0, three planes Y, U, V; chroma ceil(w/2) x ceil(h/2)\n"
    "           (--matrix yuv: even w and h only)\n"
    "  nv12     4:2:0, plane Y then one plane of U,V pairs, likewise\n"
    "  yuy2     4:2:2 packed, bytes Y0 U Y1 V, 4*ceil(w/2) bytes a row (at an\n"
    "           odd width the last pixel is repeated to fill its cell)\n"
    "  uyvy     4:2:2 packed, bytes U Y0 V Y1, likewise\n"
    "  yuv422p  4:2:2, three planes, chroma (w+1)/2 x h\n"
    "  yuv444p  4:4:4, three planes of w x h\n";

// The colour spaces that families register, image file to image file.
std::string ConvertHelp() {
    std::string h = kConvertHelp;
    h += RawConvertHelp();
    const std::vector<SpaceDef> spaces = Spaces();
    if (spaces.empty()) return h;
    h += "\nSPACE (image file to image file: IN and OUT are .png/.pnm/.pfm; the space's\n"
         "channels are stored as the library stores them):\n";
    for (const SpaceDef& s : spaces) {
        std::string name = "  " + std::string(s.name);
        name.resize(11, ' ');
        h += name + s.help + "\n";
    }
    return h;
}


const char kDitherHelp[] =
    "usage: zilcc dither IN OUT --levels N --method none|fs|jjn|stucki|bayer [--noise P]\n"
    "       zilcc dither IN OUT --bits 1 --method threshold|stucki [--threshold T]\n"
    "\n"
    "Reduces the number of grey or colour levels, hiding the steps by dithering.\n"
    "\n"
    "  IN                grey or RGB, 8- or 16-bit .png/.pgm/.ppm, or - (stdin)\n"
    "  OUT               .png, .pgm, .ppm or - (with --bits 1: .pbm or .png)\n"
    "  --levels N        equally spaced output levels per channel: 2..256 for\n"
    "                    8-bit output, 2..65536 for 16-bit output. The levels\n"
    "                    are round(k * 255 / (N-1)) (or 65535) for every method;\n"
    "                    black stays black and white stays white\n"
    "  --method M        none:   plain quantising\n"
    "                    fs:     error diffusion over 4 neighbours\n"
    "                    jjn:    error diffusion over 12 neighbours (7,5,3,1 weights)\n"
    "                    stucki: error diffusion over 12 neighbours (8,4,2,1 weights)\n"
    "                    bayer:  ordered dither with a 4x4 matrix\n"
    "  --noise P         percent (0..100) of random noise added to the dither\n"
    "                    (not with --method none)\n"
    "  --out-bits 8|16   output depth for 16-bit input (default 8; 16 allows\n"
    "                    more than 256 levels)\n"
    "  --bits 1          one bit a pixel from an 8-bit grey image, with\n"
    "                    --method threshold or stucki (error diffusion)\n"
    "  --threshold T     pixels above T (0..255, default 127) become white\n"
    "  --band-rows N     rows handed to the library per call where the result\n"
    "                    does not depend on it (plain and ordered dither)\n";

const char kVersionHelp[] =
    "usage: zilcc version\n"
    "\n"
    "Prints the library's version record.\n";

const char kListHelp[] =
    "usage: zilcc list [TEXT]\n"
    "\n"
    "Lists the functions that the loaded library exports, read from its dynamic\n"
    "symbol table, one a line; with TEXT only the names that contain it.\n";

std::string Upper(std::string s) {
    for (char& c : s) c = char(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

bool Help(const Args& a, const char* text) {
    if (a.help) std::fputs(text, stdout);
    return a.help;
}

int BandRowsOption(const Args& a) {
    if (!a.Has("band-rows")) return 0;
    return int(ParseIntIn("band-rows", a.Get("band-rows"), 1, 1 << 20));
}

// Reads IN; the built-in commands take 8- and 16-bit images only. With
// `keepRange` a PNM's maximum value is kept (and goes to the output).
Image ReadInput(const std::string& path, bool keepRange = false, bool integerOnly = true) {
    bool droppedAlpha = false;
    Image img = ReadImage(path, &droppedAlpha, true, keepRange);
    if (droppedAlpha) std::fprintf(stderr, "zilcc: note: %s: the alpha channel is ignored\n", DisplayName(path).c_str());
    if (integerOnly && img.depth == 32)
        throw DataError(DisplayName(path) + ": this command takes 8- or 16-bit images, not float (PFM) ones");
    return img;
}

// convert --to/--from a registered colour space.
int ConvertSpace(const SpaceDef& space, bool toSpace, const std::string& in, const std::string& out) {
    OutputFormatFor(out);
    const Image src = ReadInput(in, false, false);
    Progress progress("convert", src.height);
    const Image dst = toSpace ? space.toSpace(src, &progress) : space.fromSpace(src, &progress);
    progress.Finish();
    WriteImage(out, dst, 6, true);
    return 0;
}

const std::vector<std::string> kPatterns = {"bggr", "rggb", "gbrg", "grbg"};  // in ZilBayerGrid order

}  // namespace

int RunDemosaic(int argc, char** argv, int first) {
    const Args a = ParseArgs("demosaic", argc, argv, first,
                             {{"pattern", true}, {"method", true}, {"rect", true}, {"band-rows", true}});
    if (Help(a, kDemosaicHelp)) return 0;
    RequirePositional(a, {"IN", "OUT"});
    const ZilBayerGrid grid = ParseChoice("pattern", a.Get("pattern"), kPatterns);
    const DemosaicMethod method =
        ParseChoice("method", a.Get("method"), {"gradient", "ahd"}) == 0 ? DemosaicMethod::Gradient : DemosaicMethod::Ahd;
    Rect rect{0, 0, 0, 0};
    const bool hasRect = a.Has("rect");
    if (hasRect) ParseRect("rect", a.Get("rect"), &rect.x, &rect.y, &rect.w, &rect.h);
    const int bandRows = BandRowsOption(a);
    const std::string& in = a.positional[0];
    const std::string& out = a.positional[1];
    CheckImageOutput(out, 3);
    if (method == DemosaicMethod::Gradient && !kHaveCfa) NotAvailable("the gradient demosaicing method");
    if (method == DemosaicMethod::Ahd && !kHaveAhd) NotAvailable("the AHD demosaicing method");

    const Image cfa = ReadInput(in, true);
    if (cfa.channels != 1)
        throw DataError(DisplayName(in) + ": demosaicing takes a single-channel image of raw samples, this one is RGB");
    if (!hasRect) rect = {0, 0, cfa.width, cfa.height};
    if (rect.x >= cfa.width || rect.y >= cfa.height)
        throw DataError("--rect " + a.Get("rect") + " lies outside the " + SizeText(cfa.width, cfa.height) + " image");
    rect.w = std::min(rect.w, cfa.width - rect.x);
    rect.h = std::min(rect.h, cfa.height - rect.y);
    Progress progress("demosaic", rect.h);
    const Image rgb = Demosaic(cfa, grid, method, rect, bandRows, &progress);
    progress.Finish();
    WriteImage(out, rgb, 6, true);
    return 0;
}

int RunConvert(int argc, char** argv, int first) {
    const Args a = ParseArgs("convert", argc, argv, first,
                             {{"to", true}, {"from", true}, {"size", true}, {"band-rows", true}, {"matrix", true}, {"verbose", false}});
    if (Help(a, ConvertHelp().c_str())) return 0;
    RequirePositional(a, {"IN", "OUT"});
    if (a.Has("to") && a.Has("from")) return ConvertRaw(a);  // raw layout to raw layout
    if (a.Has("to") == a.Has("from"))
        throw UsageError(a.Has("to") ? "give --to or --from, not both" : "missing option --to or --from (see zilcc convert --help)");
    std::vector<std::string> names;
    for (const auto& f : YuvFormats()) names.push_back(f.name);
    for (const SpaceDef& sp : Spaces()) names.push_back(sp.name);
    const bool toYuv = a.Has("to");
    if (const SpaceDef* space = FindSpace(a.Get(toYuv ? "to" : "from"))) {
        for (const char* o : {"size", "band-rows", "matrix"})
            if (a.Has(o)) throw UsageError(std::string("--") + o + " is for raw YUV files, not for --" + (toYuv ? "to " : "from ") + space->name);
        return ConvertSpace(*space, toYuv, a.positional[0], a.positional[1]);
    }
    const YuvFormat fmt = YuvFormats()[size_t(ParseChoice(toYuv ? "to" : "from", a.Get(toYuv ? "to" : "from"), names))].format;
    const int bandRows = BandRowsOption(a);
    const Matrix matrix = ParseMatrix(a.Has("matrix") ? &a.Get("matrix") : nullptr, fmt, toYuv);
    const std::string& in = a.positional[0];
    const std::string& out = a.positional[1];
    if (toYuv) {
        if (a.Has("size")) throw UsageError("--size is for raw YUV input (--from); an image file records its size");
        Image rgb = ReadInput(in);
        if (rgb.depth != 8)
            throw DataError(DisplayName(in) + ": convert takes 8-bit images, this one is 16-bit (reduce it first with "
                                 "'zilcc dither IN OUT --levels 256 --method none')");
        if (rgb.channels == 1) {  // grey: the same value in R, G and B
            Image c;
            c.Allocate(rgb.width, rgb.height, 3, 8);
            for (int y = 0; y < rgb.height; ++y)
                for (int x = 0; x < rgb.width; ++x)
                    for (int k = 0; k < 3; ++k) c.Row(y)[3 * x + k] = rgb.Row(y)[x];
            rgb = std::move(c);
        }
        RawFrameBytes(fmt, matrix, rgb.width, rgb.height);  // refuses extents the layout cannot hold
        WarnRawOutputName(out, "raw " + Upper(YuvInfo(fmt).name) + " data");
        Progress progress("convert", rgb.height);
        const std::vector<uint8_t> yuv = EncodeRaw(rgb, fmt, matrix, bandRows, &progress);
        progress.Finish();
        WriteBytes(out, yuv);
    } else {
        if (!a.Has("size")) throw UsageError("missing option --size WxH: a raw YUV file does not record its size");
        int w = 0, h = 0;
        ParseSize("size", a.Get("size"), &w, &h);
        CheckImageOutput(out, 3);
        const size_t need = RawFrameBytes(fmt, matrix, w, h);
        // At most one byte more than the layout needs is read: enough to tell
        // a longer (or endless) input from one of the right length.
        const std::vector<uint8_t> yuv = ReadFileBytes(in, need);
        if (yuv.size() != need)
            throw DataError(DisplayName(in) + (yuv.size() > need ? " has more than " + std::to_string(need) + " bytes"
                                                                 : " has " + std::to_string(yuv.size()) + " bytes") +
                            ", but " + Upper(YuvInfo(fmt).name) + " at " + SizeText(w, h) + " needs " +
                            std::to_string(need));
        Progress progress("convert", h);
        const Image rgb = DecodeRaw(yuv, w, h, fmt, matrix, bandRows, &progress);
        progress.Finish();
        WriteImage(out, rgb, 6, true);
    }
    return 0;
}

int RunDither(int argc, char** argv, int first) {
    const Args a = ParseArgs("dither", argc, argv, first,
                             {{"levels", true}, {"method", true}, {"noise", true}, {"bits", true}, {"threshold", true},
                              {"out-bits", true}, {"band-rows", true}});
    if (Help(a, kDitherHelp)) return 0;
    RequirePositional(a, {"IN", "OUT"});
    const std::string& in = a.positional[0];
    const std::string& out = a.positional[1];
    const int bandRows = BandRowsOption(a);
    if (a.Has("bits")) {
        if (ParseInt("bits", a.Get("bits")) != 1)
            throw UsageError("--bits takes only 1 (for more levels use --levels)");
        for (const char* o : {"levels", "noise", "out-bits"})
            if (a.Has(o)) throw UsageError(std::string("--") + o + " does not go with --bits 1");
        const bool stucki = ParseChoice("method", a.Get("method"), {"threshold", "stucki"}) == 1;
        const long long t = a.Has("threshold") ? ParseIntIn("threshold", a.Get("threshold"), 0, 255) : 127;
        const OutFormat f = OutputFormatFor(out);
        if (f != OutFormat::Pbm && f != OutFormat::Png && f != OutFormat::Pnm)
            throw UsageError("'" + out + "': a one-bit image goes to .pbm, .pnm or .png");
        if (!kHaveReduce1u) NotAvailable("one-bit reduction");
        const Image grey = ReadInput(in);
        if (grey.channels != 1 || grey.depth != 8)
            throw DataError(DisplayName(in) + ": --bits 1 takes an 8-bit grey image, this one is " +
                            (grey.channels == 3 ? std::string("RGB") : std::string("16-bit")));
        size_t step = 0;
        Progress progress("dither", grey.height);
        const std::vector<uint8_t> bits = ReduceToBits(grey, stucki, int(t), bandRows, &step, &progress);
        progress.Finish();
        WriteBitmap(out, grey.width, grey.height, bits, step);
        return 0;
    }
    if (a.Has("threshold")) throw UsageError("--threshold goes with --bits 1");
    static const ZilDither kDither[] = {zilDitherNone, zilDitherFloydSteinberg, zilDitherJarvisJudiceNinke,
                                        zilDitherStucki, zilDitherBayer};
    const ZilDither dither = kDither[ParseChoice("method", a.Get("method"), {"none", "fs", "jjn", "stucki", "bayer"})];
    int outBits = 8;
    if (a.Has("out-bits")) outBits = ParseChoice("out-bits", a.Get("out-bits"), {"8", "16"}) == 0 ? 8 : 16;
    const int levels = int(ParseIntIn("levels", a.Get("levels"), 2, outBits == 8 ? 256 : 65536,
                                       outBits == 8 ? " for 8-bit output" : " for 16-bit output"));
    if (a.Has("noise") && dither == zilDitherNone)
        throw UsageError("--noise goes with a dithering method, not with --method none");
    const int noise = a.Has("noise") ? int(ParseIntIn("noise", a.Get("noise"), 0, 100, " percent")) : 0;
    OutputFormatFor(out);
    if (!kHaveReduce) NotAvailable("bit-depth reduction");
    const Image src = ReadInput(in);
    if (src.depth == 8 && outBits == 16) throw DataError(DisplayName(in) + ": --out-bits 16 needs a 16-bit image, this one is 8-bit");
    CheckImageOutput(out, src.channels);
    Progress progress("dither", src.height);
    const Image img = Reduce(src, int(levels), dither, int(noise), outBits, bandRows, &progress);
    progress.Finish();
    WriteImage(out, img, 6, true);
    return 0;
}

int RunVersion(int argc, char** argv, int first) {
    const Args a = ParseArgs("version", argc, argv, first, {});
    if (Help(a, kVersionHelp)) return 0;
    RequirePositional(a, {});
    const ZilLibVersion* v = zilccGetLibVersion();
    std::string lib;
    try {
        LibraryExports(&lib);
    } catch (const DataError&) {
        lib = "(unknown)";
    }
    std::printf("%s %s\n", v->name, v->version);
    std::printf("  version     %d.%d.%d, build %d\n", v->major, v->minor, v->majorBuild, v->build);
    std::printf("  target cpu  %.4s\n", v->targetCpu);
    std::printf("  build date  %s\n", v->buildDate);
    std::printf("  library     %s\n", lib.c_str());
    std::printf("  tool has    RGB-YUV%s%s%s%s\n", kHaveCfa ? ", CFAToRGB" : "", kHaveAhd ? ", DemosaicAHD" : "",
                kHaveReduce ? ", ReduceBits" : "", kHaveReduce1u ? ", one-bit ReduceBits" : "");
    return 0;
}

int RunList(int argc, char** argv, int first) {
    const Args a = ParseArgs("list", argc, argv, first, {});
    if (Help(a, kListHelp)) return 0;
    if (a.positional.size() > 1) throw UsageError("unexpected argument '" + a.positional[1] + "' (see zilcc list --help)");
    const std::string filter = a.positional.empty() ? "" : a.positional[0];
    for (const std::string& n : LibraryExports(nullptr))
        if (n.find(filter) != std::string::npos) std::printf("%s\n", n.c_str());
    return 0;
}

}  // namespace zt
