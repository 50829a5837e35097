// zilcc demo: renders the synthetic scene, runs every family the library has
// on it, writes the results as PNG files with an index.html contact sheet, and
// prints a short summary.
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <sstream>

#include "args.hpp"
#include "commands.hpp"
#include "common.hpp"
#include "image_io.hpp"
#include "ops.hpp"
#include "registry.hpp"
#include "scene.hpp"

namespace zt {
namespace {

const char kDemoHelp[] =
    "usage: zilcc demo [--out DIR] [--size WxH]\n"
    "\n"
    "Renders a synthetic scene (colour chart, zone plate, gradients, sharp colour\n"
    "edges; 8- and 16-bit) and runs the library on it:\n"
    "  - mosaics it to each Bayer pattern and demosaics it with the gradient and\n"
    "    AHD methods (PSNR against the scene per channel, time per megapixel);\n"
    "  - converts RGB to YUV 4:4:4, 4:2:2 and 4:2:0 and back (PSNR);\n"
    "  - reduces it to 2, 4 and 8 levels with each dither, with and without noise.\n"
    "Writes PNG files and index.html, a contact sheet of them with their figures,\n"
    "and prints a summary. Families the library lacks are left out.\n"
    "\n"
    "  --out DIR     output folder (default zilcc-demo), created if needed\n"
    "  --size WxH    scene size, even, from 16x16 to 16384x16384 (default\n"
    "                640x480); a progress bar shows on a terminal\n";

constexpr int kNoise = 25;  // percent, for the dithers "with noise"

using Figure = DemoFigure;
using Section = DemoSection;

std::string Fmt(const char* f, double v) { return DemoFmt(f, v); }
std::string Db(double v) { return DemoDb(v); }

std::string Html(const std::string& s) {
    std::string o;
    for (char c : s) {
        if (c == '<') o += "&lt;";
        else if (c == '>') o += "&gt;";
        else if (c == '&') o += "&amp;";
        else o += c;
    }
    return o;
}

void MakeDirs(const std::string& dir) {
    std::string path;
    size_t pos = 0;
    while (pos != std::string::npos) {
        pos = dir.find('/', pos + 1);
        path = dir.substr(0, pos);
        if (path.empty()) continue;
        if (mkdir(path.c_str(), 0777) != 0 && errno != EEXIST)
            throw DataError("cannot create folder " + path + ": " + std::strerror(errno));
    }
    struct stat st;
    if (stat(dir.c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) throw DataError("cannot create folder " + dir + ": not a folder");
}

// Runs f once, and again while it stays quick, and returns its best time in ms.
double BestMs(const std::function<void()>& f) { return DemoBestMs(f); }

// A close-up enlarged 4 times by repeating pixels, as 8-bit.
Image Zoom(const Image& src, Crop c, int factor = 4) {
    const Image s = src.depth == 16 ? To8Bit(src) : src;
    Image z;
    z.Allocate(c.w * factor, c.h * factor, s.channels, 8);
    for (int y = 0; y < z.height; ++y)
        for (int x = 0; x < z.width; ++x)
            for (int k = 0; k < s.channels; ++k)
                z.Row(y)[size_t(x) * s.channels + k] = s.Row(c.y + y / factor)[size_t(c.x + x / factor) * s.channels + k];
    return z;
}

class Demo {
public:
    Demo(std::string dir, int w, int h)
        : dir_(std::move(dir)), w_(w), h_(h), progress_("demo", kBuiltInFiles + 4 * int64_t(DemoSections().size())) {}
    int Run();

private:
    std::string Write(const std::string& name, const Image& img) {
        WriteImage(dir_ + "/" + name, img, 3);
        Wrote();
        return name;
    }
    // The bar advances by files written: each follows a step of the library's
    // work, so it moves with the work on scenes of any size.
    void Wrote() { progress_.Update(++files_); }
    static constexpr int kBuiltInFiles = 60;  // of the built-in sections, with every family present
    void Scene();
    void Demosaicing();
    void Yuv();
    void Reduction();
    void Registered();  // the sections families add from their own files
    void WriteIndex();

    std::string dir_;
    int w_, h_;
    double mp_ = 0;
    int files_ = 0;
    Image scene16_, scene8_, luma_;
    Crop crop_{};
    std::vector<Section> sections_;
    std::ostringstream summary_;
    Progress progress_;
};

void Demo::Scene() {
    scene16_ = RenderScene(w_, h_);
    scene8_ = To8Bit(scene16_);
    crop_ = DetailCrop(w_, h_);
    Section s{"Scene",
              "Top left a colour chart, top right a zone plate whose rings reach half the sampling rate at its "
              "corners, bottom left hue sweeps from white to black over a grey ramp, bottom right a star of sharp "
              "colour sectors and one- and two-pixel colour stripes. Rendered at 16 bits; the 8-bit scene is it "
              "rounded to 8 bits.",
              {}};
    s.figures.push_back({Write("scene.png", scene8_), "scene, 8-bit", SizeText(w_, h_)});
    s.figures.push_back({Write("scene16.png", scene16_), "scene, 16-bit", SizeText(w_, h_)});
    s.figures.push_back({Write("scene-zoom.png", Zoom(scene8_, crop_)), "close-up of the zone plate, 4x",
                         "region " + std::to_string(crop_.x) + "," + std::to_string(crop_.y) + " " +
                             SizeText(crop_.w, crop_.h)});
    sections_.push_back(std::move(s));
}

void Demo::Demosaicing() {
    if (!kHaveCfa && !kHaveAhd) return;
    static const char* kPat[4] = {"bggr", "rggb", "gbrg", "grbg"};
    static const int kOrder[4] = {zilBayerRGGB, zilBayerBGGR, zilBayerGRBG, zilBayerGBRG};
    Section s{"Demosaicing",
              "The scene sampled through each colour-filter pattern, one colour a pixel, then reconstructed. "
              "PSNR of R, G and B against the scene (dB, higher is closer) and the library's time per megapixel. "
              "Watch the zone plate and the stripes for false colour.",
              {}};
    summary_ << "demosaic, PSNR dB (mean of 4 patterns)   R      G      B     ms/MP\n";
    const Image mosaicShown = Mosaic(scene8_, zilBayerRGGB);
    s.figures.push_back({Write("mosaic-rggb.png", mosaicShown), "mosaic, RGGB", "what the sensor records"});
    s.figures.push_back({Write("mosaic-rggb-zoom.png", Zoom(mosaicShown, crop_)), "mosaic close-up, 4x", ""});
    for (int m = 0; m < 2; ++m) {
        const DemosaicMethod method = m == 0 ? DemosaicMethod::Gradient : DemosaicMethod::Ahd;
        if ((m == 0 && !kHaveCfa) || (m == 1 && !kHaveAhd)) continue;
        const char* mname = m == 0 ? "gradient" : "ahd";
        for (int depth : {8, 16}) {
            const Image& ref = depth == 8 ? scene8_ : scene16_;
            double sum[3] = {0, 0, 0}, msSum = 0;
            for (int grid : kOrder) {
                const Image cfa = Mosaic(ref, grid);
                Image rgb;
                const double ms = BestMs([&] { rgb = Demosaic(cfa, grid, method, {0, 0, w_, h_}, h_, nullptr); });
                double p[3];
                for (int c = 0; c < 3; ++c) sum[c] += p[c] = Psnr(rgb, ref, c);
                msSum += ms;
                const std::string base = std::string("demosaic-") + mname + "-" + kPat[grid] + "-" + std::to_string(depth);
                std::string caption = "PSNR R " + Db(p[0]) + ", G " + Db(p[1]) + ", B " + Db(p[2]) + " dB; " +
                                      Fmt("%.2f", ms / mp_) + " ms/MP";
                s.figures.push_back({Write(base + ".png", rgb), std::string(mname) + ", " + kPat[grid] + ", " +
                                                                     std::to_string(depth) + "-bit",
                                     caption});
                if (grid == zilBayerRGGB && depth == 8)
                    s.figures.push_back({Write(base + "-zoom.png", Zoom(rgb, crop_)),
                                         std::string(mname) + " close-up, 4x", ""});
            }
            char line[160];
            std::snprintf(line, sizeof line, "  %-9s %2d-bit                     %6s %6s %6s %8.2f\n", mname, depth,
                          Db(sum[0] / 4).c_str(), Db(sum[1] / 4).c_str(), Db(sum[2] / 4).c_str(), msSum / 4 / mp_);
            summary_ << line;
        }
    }
    sections_.push_back(std::move(s));
}

void Demo::Yuv() {
    Section s{"RGB to YUV and back",
              "The 8-bit scene converted to YUV (Y = 0.299 R + 0.587 G + 0.114 B) at three samplings and back to "
              "RGB. 4:2:2 keeps one chroma pair per two pixels across, 4:2:0 per 2x2 block; the reverse repeats it. "
              "Time per megapixel is for both directions.",
              {}};
    summary_ << "RGB -> YUV -> RGB, PSNR dB                 R      G      B     ms/MP\n";
    struct Case {
        YuvFormat f;
        const char* name;
        const char* file;
    };
    const Case cases[] = {{YuvFormat::YUV444P, "4:4:4", "yuv444"}, {YuvFormat::YUV422P, "4:2:2", "yuv422"},
                          {YuvFormat::I420, "4:2:0", "yuv420"}};
    for (const Case& c : cases) {
        Image back;
        std::vector<uint8_t> yuv;
        const double ms = BestMs([&] {
            yuv = RgbToYuv(scene8_, c.f, h_, nullptr);
            back = YuvToRgb(yuv, w_, h_, c.f, h_, nullptr);
        });
        if (c.f == YuvFormat::YUV444P) {  // the Y plane is the grey scene of the one-bit demo
            luma_.Allocate(w_, h_, 1, 8);
            std::copy(yuv.begin(), yuv.begin() + std::ptrdiff_t(w_) * h_, luma_.data.begin());
        }
        double p[3];
        for (int k = 0; k < 3; ++k) p[k] = Psnr(back, scene8_, k);
        s.figures.push_back({Write(std::string(c.file) + ".png", back), std::string("YUV ") + c.name + " and back",
                             "PSNR R " + Db(p[0]) + ", G " + Db(p[1]) + ", B " + Db(p[2]) + " dB; " +
                                 Fmt("%.2f", ms / mp_) + " ms/MP"});
        char line[160];
        std::snprintf(line, sizeof line, "  %-38s %6s %6s %6s %8.2f\n", c.name, Db(p[0]).c_str(), Db(p[1]).c_str(),
                      Db(p[2]).c_str(), ms / mp_);
        summary_ << line;
    }
    s.figures.push_back({Write("luma.png", luma_), "Y plane", "the scene's luma, 8-bit grey"});
    sections_.push_back(std::move(s));
}

void Demo::Reduction() {
    if (!kHaveReduce && !kHaveReduce1u) return;
    Section s{"Bit-depth reduction",
              "The 8-bit scene reduced to 2, 4 and 8 equally spaced levels per channel, plainly, with error "
              "diffusion (fs: 4 neighbours; jjn and stucki: 12 neighbours) and with a 4x4 ordered dither, then "
              "the same with " + std::to_string(kNoise) + "% noise. PSNR over all three channels against the scene; "
              "dithering trades a little PSNR for the look of the missing levels.",
              {}};
    if (kHaveReduce) {
        static const char* kName[5] = {"none", "fs", "jjn", "stucki", "bayer"};
        static const ZilDither kDither[5] = {zilDitherNone, zilDitherFloydSteinberg, zilDitherJarvisJudiceNinke,
                                             zilDitherStucki, zilDitherBayer};
        summary_ << "reduce, PSNR dB (with " << kNoise << "% noise)     none         fs           jjn          "
                                                        "stucki       bayer\n";
        for (int levels : {2, 4, 8}) {
            char line[256];
            int n = std::snprintf(line, sizeof line, "  %d levels                  ", levels);
            for (int d = 0; d < 5; ++d) {
                double p[2] = {0, 0};
                for (int noisy = 0; noisy < 2; ++noisy) {
                    const int noise = noisy ? kNoise : 0;
                    Image r;
                    const double ms = BestMs([&] { r = Reduce(scene8_, levels, kDither[d], noise, 8, 0, nullptr); });
                    double sum = 0;
                    for (int c = 0; c < 3; ++c) sum += Psnr(r, scene8_, c);
                    p[noisy] = sum / 3;
                    const std::string base = "reduce-" + std::to_string(levels) + "-" + kName[d] + (noisy ? "-noise" : "");
                    s.figures.push_back({Write(base + ".png", r),
                                         std::to_string(levels) + " levels, " + kName[d] +
                                             (noisy ? ", noise " + std::to_string(kNoise) + "%" : ""),
                                         "PSNR " + Db(p[noisy]) + " dB; " + Fmt("%.2f", ms / mp_) + " ms/MP"});
                }
                n += std::snprintf(line + n, sizeof line - size_t(n), " %5s (%5s)", Db(p[0]).c_str(), Db(p[1]).c_str());
            }
            summary_ << line << "\n";
        }
    }
    if (kHaveReduce1u) {
        for (int stucki = 0; stucki < 2; ++stucki) {
            size_t step = 0;
            std::vector<uint8_t> bits;
            const double ms = BestMs([&] { bits = ReduceToBits(luma_, stucki, 127, 0, &step, nullptr); });
            const std::string name = stucki ? "bits1-stucki.png" : "bits1-threshold.png";
            WriteBitmap(dir_ + "/" + name, w_, h_, bits, step);
            Wrote();
            s.figures.push_back({name, stucki ? "one bit, Stucki diffusion" : "one bit, threshold 127",
                                 "from the Y plane; " + Fmt("%.2f", ms / mp_) + " ms/MP"});
        }
    }
    sections_.push_back(std::move(s));
}

void Demo::Registered() {
    DemoKit kit{w_, h_, mp_, scene8_, scene16_, summary_,
                [this](const std::string& name, const Image& img) { return Write(name, img); },
                [this](const std::string& name, const std::vector<uint8_t>& bytes) {
                    WriteBytes(dir_ + "/" + name, bytes);
                    Wrote();
                    return name;
                },
                [this](DemoSection&& s) { sections_.push_back(std::move(s)); }};
    for (const DemoDef& d : DemoSections()) d.run(kit);
}

void Demo::WriteIndex() {
    const ZilLibVersion* v = zilccGetLibVersion();
    std::ostringstream h;
    h << "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n<title>zilcc demo</title>\n<style>\n"
         "body{font-family:sans-serif;margin:1.5em;background:#f4f4f4;color:#222}\n"
         "section{margin-bottom:2em}\n.grid{display:flex;flex-wrap:wrap;gap:12px}\n"
         "figure{margin:0;background:#fff;padding:6px;border:1px solid #ccc;width:330px}\n"
         "figure img{width:320px;height:auto;display:block;image-rendering:pixelated}\n"
         "figcaption{font-size:12px;margin-top:4px}\nfigcaption b{display:block}\n"
         "pre{background:#fff;border:1px solid #ccc;padding:8px;overflow:auto}\n</style></head><body>\n"
      << "<h1>zilcc demo</h1>\n<p>" << Html(std::string(v->name) + " " + v->version) << ", scene "
      << SizeText(w_, h_) << ". Click a picture for full size.</p>\n<pre>" << Html(summary_.str()) << "</pre>\n";
    for (const Section& s : sections_) {
        h << "<section><h2>" << Html(s.title) << "</h2>\n<p>" << Html(s.intro) << "</p>\n<div class=\"grid\">\n";
        for (const Figure& f : s.figures)
            h << "<figure><a href=\"" << f.file << "\"><img src=\"" << f.file << "\" alt=\"" << Html(f.title)
              << "\"></a><figcaption><b>" << Html(f.title) << "</b>" << Html(f.caption) << "</figcaption></figure>\n";
        h << "</div></section>\n";
    }
    h << "</body></html>\n";
    const std::string text = h.str();
    WriteBytes(dir_ + "/index.html", std::vector<uint8_t>(text.begin(), text.end()));
    ++files_;
}

int Demo::Run() {
    MakeDirs(dir_);
    mp_ = double(w_) * double(h_) / 1e6;
    const auto t0 = std::chrono::steady_clock::now();
    Scene();
    Demosaicing();
    Yuv();
    Reduction();
    Registered();
    WriteIndex();
    progress_.Finish();
    const double secs = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
    std::printf("zilcc demo: %s scene, %d files in %s/ (%.1f s); open %s/index.html\n\n%s", SizeText(w_, h_).c_str(),
                files_, dir_.c_str(), secs, dir_.c_str(), summary_.str().c_str());
    if (!kHaveCfa || !kHaveAhd || !kHaveReduce)
        std::printf("not in this library yet:%s%s%s\n", kHaveCfa ? "" : " gradient demosaicing",
                    kHaveAhd ? "" : " AHD demosaicing", kHaveReduce ? "" : " bit-depth reduction");
    return 0;
}

}  // namespace

int RunDemo(int argc, char** argv, int first) {
    const Args a = ParseArgs("demo", argc, argv, first, {{"out", true}, {"size", true}});
    if (a.help) {
        std::fputs(kDemoHelp, stdout);
        return 0;
    }
    RequirePositional(a, {});
    int w = 640, h = 480;
    if (a.Has("size")) ParseSize("size", a.Get("size"), &w, &h);
    if (w < 16 || h < 16 || (w & 1) || (h & 1) || w > 16384 || h > 16384)
        throw UsageError("--size wants an even width and height from 16 to 16384, not " + SizeText(w, h));
    std::string dir = a.Get("out", "zilcc-demo");
    while (dir.size() > 1 && dir.back() == '/') dir.pop_back();
    if (dir.empty()) throw UsageError("--out wants a folder name");
    Demo demo(dir, w, h);
    return demo.Run();
}

}  // namespace zt
