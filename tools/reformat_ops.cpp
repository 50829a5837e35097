// `zilcc convert IN OUT --from LAYOUT --to LAYOUT --size WxH`: raw YUV to raw
// YUV. Where one library call does the job, it is that call alone (a planar
// side takes its planes in any order, so one call also serves the U/V-swapped
// file); otherwise a chain of such calls through lossless intermediates, and
// only as a last resort a round trip through RGB.
#include "reformat_ops.hpp"

#include <functional>
#include <iostream>

#include "image_io.hpp"
#include "ops.hpp"

namespace zt {
namespace {

// Packing of a raw side: 'P' planes, '2' luma + interleaved pairs, and the
// packed orders 'Y' (Y0 U Y1 V), 'U' (U Y0 V Y1).
struct Layout {
    const char* name;
    char pack;
    int ch;     // 1: 4:2:2, 2: 4:2:0
    bool vu;    // V before U (plane order, pair order)
    int rgb;    // YuvFormat the RGB path reads and writes, or -1
    const char* help;
};
const Layout kLayouts[] = {
    {"i420", 'P', 2, false, int(YuvFormat::I420), "4:2:0 planes Y, U, V"},
    {"yv12", 'P', 2, true, -1, "4:2:0 planes Y, V, U"},
    {"nv12", '2', 2, false, int(YuvFormat::NV12), "4:2:0 plane Y, then U,V pairs"},
    {"nv21", '2', 2, true, -1, "4:2:0 plane Y, then V,U pairs"},
    {"yuy2", 'Y', 1, false, int(YuvFormat::YUY2), "4:2:2 packed Y0 U Y1 V"},
    {"uyvy", 'U', 1, false, int(YuvFormat::UYVY), "4:2:2 packed U Y0 V Y1"},
    {"yuv422p", 'P', 1, false, int(YuvFormat::YUV422P), "4:2:2 planes Y, U, V"},
    {"yuv444p", 'X', 0, false, int(YuvFormat::YUV444P), "4:4:4 planes (through RGB only)"},
};

// A dense frame in memory: up to three planes with their steps.
struct Frame {
    uint8_t* p[3] = {};
    int s[3] = {};
};
Frame Map(const Layout& l, std::vector<uint8_t>& b, int w, int h) {
    Frame f;
    uint8_t* at = b.data();
    if (l.pack == 'Y' || l.pack == 'U') {
        f.p[0] = at, f.s[0] = 2 * w;
        return f;
    }
    f.p[0] = at, f.s[0] = w;
    at += size_t(w) * h;
    const int ch = h / l.ch;
    if (l.pack == '2') {
        f.p[1] = at, f.s[1] = w;
    } else {
        f.p[1] = at, f.s[1] = f.s[2] = w / 2;
        f.p[2] = at + size_t(w / 2) * ch;
    }
    return f;
}
size_t Bytes(const Layout& l, int w, int h) { return size_t(w) * h + (l.ch ? size_t(w) * (h / l.ch) : 0); }

// One export: its two sides as packing, sampling and U/V order.
struct Side {
    char pack;
    int ch;
    bool vu;
};
using Fn = std::function<ZilStatus(const Frame&, const Frame&, ZilSize)>;
struct Direct {
    const char* name;
    Side s, d;
    Fn call;
};
#define ZT_P3(f) const_cast<const uint8_t* const*>(f.p), f.s
#define ZT_P3D(f) f.p, f.s
#define ZT_P2(f) f.p[0], f.s[0], f.p[1], f.s[1]
#define ZT_C2(f) f.p[0], f.s[0]
#define ZT_D(NAME, SP, SC, SV, DP, DC, DV, SA, DA) \
    Direct{#NAME, {SP, SC, SV}, {DP, DC, DV}, [](const Frame& s, const Frame& d, ZilSize z) { return NAME(SA(s), DA(d), z); }}
const std::vector<Direct>& Directs() {
    static const std::vector<Direct> k = {
        ZT_D(ziliYCbCr422_8u_P3C2R, 'P', 1, false, 'Y', 1, false, ZT_P3, ZT_C2),
        ZT_D(ziliYCbCr422_8u_C2P3R, 'Y', 1, false, 'P', 1, false, ZT_C2, ZT_P3D),
        ZT_D(ziliYCbCr422ToCbYCr422_8u_P3C2R, 'P', 1, false, 'U', 1, false, ZT_P3, ZT_C2),
        ZT_D(ziliYCbCr422ToCbYCr422_8u_C2R, 'Y', 1, false, 'U', 1, false, ZT_C2, ZT_C2),
        ZT_D(ziliCbYCr422ToYCbCr422_8u_C2R, 'U', 1, false, 'Y', 1, false, ZT_C2, ZT_C2),
        ZT_D(ziliCbYCr422ToYCbCr422_8u_C2P3R, 'U', 1, false, 'P', 1, false, ZT_C2, ZT_P3D),
        ZT_D(ziliYCbCr420_8u_P3P2R, 'P', 2, false, '2', 2, false, ZT_P3, ZT_P2),
        ZT_D(ziliYCbCr420_8u_P2P3R, '2', 2, false, 'P', 2, false, ZT_P2, ZT_P3D),
        ZT_D(ziliYCrCb420ToYCbCr420_8u_P3P2R, 'P', 2, true, '2', 2, false, ZT_P3, ZT_P2),
        ZT_D(ziliYCbCr422ToYCbCr420_8u_P3R, 'P', 1, false, 'P', 2, false, ZT_P3, ZT_P3D),
        ZT_D(ziliYCbCr422ToYCbCr420_8u_P3P2R, 'P', 1, false, '2', 2, false, ZT_P3, ZT_P2),
        ZT_D(ziliYCbCr422ToYCbCr420_8u_C2P3R, 'Y', 1, false, 'P', 2, false, ZT_C2, ZT_P3D),
        ZT_D(ziliYCbCr422ToYCbCr420_8u_C2P2R, 'Y', 1, false, '2', 2, false, ZT_C2, ZT_P2),
        ZT_D(ziliYCbCr422ToYCrCb420_8u_C2P2R, 'Y', 1, false, '2', 2, true, ZT_C2, ZT_P2),
        ZT_D(ziliCbYCr422ToYCbCr420_8u_C2P3R, 'U', 1, false, 'P', 2, false, ZT_C2, ZT_P3D),
        ZT_D(ziliCbYCr422ToYCbCr420_8u_C2P2R, 'U', 1, false, '2', 2, false, ZT_C2, ZT_P2),
        ZT_D(ziliYCbCr420ToYCbCr422_8u_P3R, 'P', 2, false, 'P', 1, false, ZT_P3, ZT_P3D),
        ZT_D(ziliYCbCr420ToYCbCr422_8u_P2P3R, '2', 2, false, 'P', 1, false, ZT_P2, ZT_P3D),
        ZT_D(ziliYCbCr420ToYCbCr422_8u_P2C2R, '2', 2, false, 'Y', 1, false, ZT_P2, ZT_C2),
        ZT_D(ziliYCbCr420ToCbYCr422_8u_P2C2R, '2', 2, false, 'U', 1, false, ZT_P2, ZT_C2),
        ZT_D(ziliYCrCb420ToYCbCr422_8u_P3C2R, 'P', 2, true, 'Y', 1, false, ZT_P3, ZT_C2),
        ZT_D(ziliYCrCb420ToCbYCr422_8u_P3C2R, 'P', 2, true, 'U', 1, false, ZT_P3, ZT_C2),
    };
    return k;
}

// How a direct call serves from -> to: planar sides may swap their chroma
// planes; the labels a call reads wrongly on one side must be written wrongly
// on the other.
struct Use {
    const Direct* d = nullptr;
    bool swapS = false, swapD = false;
};
Use Find(const Layout& from, const Layout& to) {
    for (int swaps = 0; swaps < 2; ++swaps)  // calls that take the planes in order first
        for (const Direct& d : Directs()) {
            if (d.s.pack != from.pack || d.s.ch != from.ch || d.d.pack != to.pack || d.d.ch != to.ch) continue;
            for (int ss = 0; ss <= (from.pack == 'P' ? swaps : 0); ++ss)
                for (int sd = 0; sd <= (to.pack == 'P' ? swaps : 0); ++sd)
                    if (((d.s.vu != bool(ss)) != from.vu) == ((d.d.vu != bool(sd)) != to.vu))
                        return {&d, bool(ss), bool(sd)};
        }
    return {};
}

// A route: direct calls from `from` to `in`, RGB round trip from `in` to
// `out` (if rgb), direct calls from `out` to `to`.
struct Route {
    int from, in, out, to;
    bool rgb;
};
constexpr int kCount = int(sizeof kLayouts / sizeof kLayouts[0]);
Route Plan(int from, int to, bool whole) {
    if (whole) {
        if (Find(kLayouts[from], kLayouts[to]).d) return {from, to, to, to, false};
        for (int k = 0; k < kCount; ++k)  // two calls through a lossless intermediate
            if (kLayouts[k].ch && Find(kLayouts[from], kLayouts[k]).d && Find(kLayouts[k], kLayouts[to]).d)
                return {from, k, k, to, false};
    }
    // Through RGB, reaching a layout the RGB path reads (and leaving one it
    // writes) by a direct call where needed.
    Route r{from, from, to, to, true};
    for (int k = 0; k < kCount && kLayouts[r.in].rgb < 0 && whole; ++k)
        if (kLayouts[k].rgb >= 0 && Find(kLayouts[from], kLayouts[k]).d) r.in = k;
    for (int k = 0; k < kCount && kLayouts[r.out].rgb < 0 && whole; ++k)
        if (kLayouts[k].rgb >= 0 && Find(kLayouts[k], kLayouts[to]).d) r.out = k;
    return r;
}

std::vector<uint8_t> Step(const Layout& a, const Layout& b, std::vector<uint8_t>& in, int w, int h, bool verbose) {
    const Use u = Find(a, b);
    std::vector<uint8_t> out(Bytes(b, w, h));
    Frame s = Map(a, in, w, h), d = Map(b, out, w, h);
    if (u.swapS) std::swap(s.p[1], s.p[2]);
    if (u.swapD) std::swap(d.p[1], d.p[2]);
    if (verbose)
        std::cerr << "zilcc convert: " << a.name << " -> " << b.name << " by " << u.d->name
                  << (u.swapS || u.swapD ? " (chroma planes passed in swapped order)" : "") << "\n";
    CheckStatus(u.d->call(s, d, ZilSize{w, h}), u.d->name);
    return out;
}

int Index(const std::string& option, const std::string& text) {
    std::vector<std::string> names;
    for (const Layout& l : kLayouts) names.push_back(l.name);
    return ParseChoice(option, text, names);
}

}  // namespace

std::string RawConvertHelp() {
    std::string h =
        "\n       zilcc convert IN OUT --from LAYOUT --to LAYOUT --size WxH [--verbose]\n"
        "Raw YUV to raw YUV without colour arithmetic, by the library's reformatting\n"
        "calls (4:2:2 to 4:2:0 keeps the even chroma rows; 4:2:0 to 4:2:2 repeats\n"
        "them). --verbose names each call; a conversion no call covers goes through\n"
        "RGB. LAYOUT:\n";
    for (const Layout& l : kLayouts) {
        std::string n = "  " + std::string(l.name);
        n.resize(11, ' ');
        h += n + l.help + "\n";
    }
    return h;
}

int ConvertRaw(const Args& a) {
    if (!a.Has("size")) throw UsageError("missing option --size WxH: a raw YUV file does not record its size");
    const int from = Index("from", a.Get("from")), to = Index("to", a.Get("to"));
    const bool verbose = a.Has("verbose");
    int w = 0, h = 0;
    ParseSize("size", a.Get("size"), &w, &h);
    const Layout& lf = kLayouts[from];
    const Layout& lt = kLayouts[to];
    for (const Layout* l : {&lf, &lt})
        if (l->ch == 2 && ((w | h) & 1))
            throw DataError(std::string(l->name) + " needs an even width and height, not " + SizeText(w, h));
    const std::string& in = a.positional[0];
    const std::string& out = a.positional[1];
    // Direct calls work on whole pixel pairs; an odd width goes through RGB,
    // whose packed rows repeat the last pixel.
    const Route r = Plan(from, to, (w & 1) == 0);
    const Layout& li = kLayouts[r.in];
    const Layout& lo = kLayouts[r.out];
    if (r.rgb && (li.rgb < 0 || lo.rgb < 0))
        throw DataError(std::string("no conversion from ") + lf.name + " to " + lt.name + " at " + SizeText(w, h));
    const size_t need = r.in == from && r.rgb ? YuvFrameBytes(YuvFormat(lf.rgb), w, h) : Bytes(lf, w, h);
    std::vector<uint8_t> data = ReadFileBytes(in, need);
    if (data.size() != need)
        throw DataError(DisplayName(in) + (data.size() > need ? " has more than " + std::to_string(need) + " bytes"
                                                              : " has " + std::to_string(data.size()) + " bytes") +
                        ", but " + lf.name + " at " + SizeText(w, h) + " needs " + std::to_string(need));
    WarnRawOutputName(out, std::string("raw ") + lt.name + " data");
    if (r.in != from) data = Step(lf, li, data, w, h, verbose);
    if (r.rgb) {
        if (verbose) std::cerr << "zilcc convert: " << li.name << " -> " << lo.name << " through RGB (no direct call)\n";
        const Image rgb = YuvToRgb(data, w, h, YuvFormat(li.rgb), 0, nullptr);
        data = RgbToYuv(rgb, YuvFormat(lo.rgb), 0, nullptr);
    } else if (r.in != r.to || r.in == from) {
        data = Step(li, lt, data, w, h, verbose);
    }
    if (r.rgb && r.out != to) data = Step(lo, lt, data, w, h, verbose);
    WriteBytes(out, data);
    return 0;
}

// For the demo: one direct relayout between two named layouts of a dense frame.
std::vector<uint8_t> RelayoutFrame(const std::string& from, const std::string& to, std::vector<uint8_t>& in, int w,
                                   int h) {
    return Step(kLayouts[Index("from", from)], kLayouts[Index("to", to)], in, w, h, false);
}

}  // namespace zt
