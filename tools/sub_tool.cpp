// Raw frames of `zilcc convert --to/--from LAYOUT --matrix bt601|bt709|yuv`:
// which export serves each layout and matrix, and the padding that lets the
// tool write and read every extent a layout can hold. The library converts
// whole chroma cells; where a frame ends in half a cell, the tool hands it a
// band whose last column (and, for 4:2:0, last row) is repeated, and keeps
// only the pixels the frame has. The chroma of such a cell is then that of
// the pixels that exist. The demo section with the subsampled round trips is
// at the end.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "registry.hpp"
#include "ycbcr_tool.hpp"

namespace zt {

namespace {

bool Is420(YuvFormat f) { return f == YuvFormat::I420 || f == YuvFormat::NV12; }
bool IsPacked(YuvFormat f) { return f == YuvFormat::YUY2 || f == YuvFormat::UYVY; }

std::string UpperName(YuvFormat f) {
    std::string s = YuvInfo(f).name;
    for (char& c : s) c = char(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    return s;
}

// A frame of w x h pixels as the library sees it: W2 x H2 whole cells'
// worth of pixels, chroma planes of cW x cH samples (NV12: pairs), and the
// luma plane's bytes (packed layouts: the whole frame).
struct Frame {
    int W2, H2;
    size_t cW, cH, yBytes;
    size_t Bytes() const { return yBytes + 2 * cW * cH; }
};

Frame Geometry(YuvFormat f, int w, int h) {
    const int W2 = f == YuvFormat::YUV444P ? w : w + (w & 1);
    const int H2 = Is420(f) ? h + (h & 1) : h;
    const size_t n = size_t(w) * size_t(h);
    switch (f) {
        case YuvFormat::I420:
        case YuvFormat::NV12: return {W2, H2, size_t(W2 / 2), size_t(H2 / 2), n};
        case YuvFormat::YUV422P: return {W2, H2, size_t(W2 / 2), size_t(h), n};
        case YuvFormat::YUY2:
        case YuvFormat::UYVY: return {W2, H2, 0, 0, size_t(2) * size_t(W2) * size_t(h)};
        case YuvFormat::YUV444P: break;
    }
    return {W2, H2, size_t(w), size_t(h), n};
}

// `rows` rows of `w` pixels of `bpp` bytes into `buf` as `rows2` rows of
// `w2` pixels, the last column and row repeated; `swap` exchanges bytes 0
// and 2 of each pixel (RGB <-> BGR). Returns the buffer; its step is w2 * bpp.
const uint8_t* Pad(const uint8_t* src, size_t step, int w, int rows, int bpp, int w2, int rows2, bool swap,
                   std::vector<uint8_t>& buf) {
    const size_t rb = size_t(w2) * size_t(bpp);
    buf.resize(rb * size_t(rows2));
    for (int y = 0; y < rows2; ++y) {
        const uint8_t* s = src + size_t(std::min(y, rows - 1)) * step;
        uint8_t* d = buf.data() + size_t(y) * rb;
        std::memcpy(d, s, size_t(w) * size_t(bpp));
        for (int x = w; x < w2; ++x) std::memcpy(d + size_t(x) * bpp, s + size_t(w - 1) * bpp, size_t(bpp));
        if (swap)
            for (int x = 0; x < w2; ++x) std::swap(d[size_t(x) * 3], d[size_t(x) * 3 + 2]);
    }
    return buf.data();
}

// The first `bytes` of `rows` rows; `swap` as in Pad.
void Crop(const uint8_t* src, size_t srcStep, uint8_t* dst, size_t dstStep, size_t bytes, int rows, bool swap) {
    for (int y = 0; y < rows; ++y) {
        uint8_t* d = dst + size_t(y) * dstStep;
        std::memcpy(d, src + size_t(y) * srcStep, bytes);
        if (swap)
            for (size_t x = 0; x + 2 < bytes; x += 3) std::swap(d[x], d[x + 2]);
    }
}

#define ZT_CALL(fn, ...) CheckStatus(fn(__VA_ARGS__), #fn)

}  // namespace

Matrix ParseMatrix(const std::string* value, YuvFormat f, bool toRaw) {
    if (value && (*value == "yuv" || *value == "analog")) return Matrix::Yuv;
    // The layouts this file knows; another one goes through the analog path
    // until it has its YCbCr exports here.
    const bool known = Is420(f) || IsPacked(f) || f == YuvFormat::YUV422P || f == YuvFormat::YUV444P;
    if (!known) {
        if (value) throw UsageError("--matrix " + *value + " is not available for " + UpperName(f));
        return Matrix::Yuv;
    }
    if (!value || *value == "bt601") return Matrix::Bt601;
    if (*value != "bt709") throw UsageError("--matrix takes bt601, bt709 or yuv, not '" + *value + "'");
    if (!Is420(f) && !(f == YuvFormat::YUV444P && !toRaw))
        throw UsageError("--matrix bt709 has no " + UpperName(f) + " form " + (toRaw ? "for --to" : "for --from") +
                         ": the library's BT.709 video-range exports are 4:2:0 (both ways) and 4:4:4 to RGB; "
                         "use --matrix bt601 or yuv");
    return Matrix::Bt709;
}

size_t RawFrameBytes(YuvFormat f, Matrix m, int w, int h) {
    if (m == Matrix::Yuv) return YuvFrameBytes(f, w, h);
    if (size_t(w) * 4 > 0x7fffffffu) throw DataError("rows of " + std::to_string(w) + " pixels are too wide");
    return Geometry(f, w, h).Bytes();
}

std::vector<uint8_t> EncodeRaw(const Image& rgb, YuvFormat f, Matrix m, int bandRows, Progress* progress) {
    if (m == Matrix::Yuv) return RgbToYuv(rgb, f, bandRows, progress);
    if (f == YuvFormat::YUV444P) return RgbToYcbcr444(rgb, bandRows, progress);  // bt709 is refused
    if (rgb.channels != 3 || rgb.depth != 8) throw DataError("RGB to YCbCr takes 8-bit RGB");
    const int w = rgb.width, h = rgb.height;
    const Frame g = Geometry(f, w, h);
    std::vector<uint8_t> out(RawFrameBytes(f, m, w, h));
    uint8_t* Y = out.data();
    uint8_t* U = Y + g.yBytes;
    uint8_t* V = U + g.cW * g.cH;
    const bool bgr = m == Matrix::Bt709;
    if (bandRows < 1) bandRows = BandRows(rgb.RowBytes(), 2);
    bandRows += bandRows & 1;
    std::vector<uint8_t> tin, ty;
    for (int by = 0; by < h; by += bandRows) {
        const int bh = std::min(bandRows, h - by), bh2 = Is420(f) ? bh + (bh & 1) : bh;
        const uint8_t* s = rgb.Row(by);
        int ss = rgb.Step();
        if (g.W2 != w || bh2 != bh || bgr) {
            s = Pad(s, size_t(ss), w, bh, 3, g.W2, bh2, bgr, tin);
            ss = 3 * g.W2;
        }
        const ZilSize sz{g.W2, bh2};
        if (IsPacked(f)) {
            // UYVY holds the samples of YUY2 with each byte pair exchanged.
            uint8_t* d = Y + size_t(by) * 2 * size_t(g.W2);
            ZT_CALL(ziliRGBToYCbCr422_8u_C3C2R, s, ss, d, 2 * g.W2, sz);
            if (f == YuvFormat::UYVY)
                for (size_t i = 0; i < size_t(2) * size_t(g.W2) * size_t(bh); i += 2) std::swap(d[i], d[i + 1]);
        } else {
            uint8_t* const yAt = Y + size_t(by) * size_t(w);
            uint8_t* y = yAt;
            int ys = w;
            if (g.W2 != w || bh2 != bh) {  // luma of the padding goes to a scratch band
                ty.resize(size_t(g.W2) * size_t(bh2));
                y = ty.data();
                ys = g.W2;
            }
            const size_t cr = Is420(f) ? size_t(by) / 2 : size_t(by);
            const int cs = int(g.cW);
            if (f == YuvFormat::NV12) {
                uint8_t* uv = U + cr * 2 * g.cW;
                if (bgr)
                    ZT_CALL(ziliBGRToYCbCr420_709CSC_8u_C3P2R, s, ss, y, ys, uv, 2 * cs, sz);
                else
                    ZT_CALL(ziliRGBToYCbCr420_8u_C3P2R, s, ss, y, ys, uv, 2 * cs, sz);
            } else {
                uint8_t* const d[3] = {y, U + cr * g.cW, V + cr * g.cW};
                const int steps[3] = {ys, cs, cs};
                if (f == YuvFormat::YUV422P)
                    ZT_CALL(ziliRGBToYCbCr422_8u_C3P3R, s, ss, d, steps, sz);
                else if (bgr)
                    ZT_CALL(ziliBGRToYCbCr420_709CSC_8u_C3P3R, s, ss, d, steps, sz);
                else
                    ZT_CALL(ziliRGBToYCbCr420_8u_C3P3R, s, ss, d, steps, sz);
            }
            if (y != yAt) Crop(y, size_t(ys), yAt, size_t(w), size_t(w), bh, false);
        }
        if (progress) progress->Update(by + bh);
    }
    return out;
}

Image DecodeRaw(const std::vector<uint8_t>& raw, int w, int h, YuvFormat f, Matrix m, int bandRows,
                Progress* progress) {
    if (m == Matrix::Yuv) return YuvToRgb(raw, w, h, f, bandRows, progress);
    if (f == YuvFormat::YUV444P && m == Matrix::Bt601) return Ycbcr444ToRgb(raw, w, h, bandRows, progress);
    const size_t need = RawFrameBytes(f, m, w, h);
    if (raw.size() != need)
        throw DataError("a " + UpperName(f) + " frame of " + SizeText(w, h) + " needs " + std::to_string(need) +
                        " bytes, not " + std::to_string(raw.size()));
    const Frame g = Geometry(f, w, h);
    Image out;
    out.Allocate(w, h, 3, 8);
    const uint8_t* Y = raw.data();
    const uint8_t* U = Y + g.yBytes;
    const uint8_t* V = U + g.cW * g.cH;
    const bool bgr = m == Matrix::Bt709;
    if (bandRows < 1) bandRows = BandRows(out.RowBytes(), 2);
    bandRows += bandRows & 1;
    std::vector<uint8_t> tout, ty, tu, tv;
    for (int by = 0; by < h; by += bandRows) {
        const int bh = std::min(bandRows, h - by), bh2 = Is420(f) ? bh + (bh & 1) : bh;
        const bool crop = g.W2 != w || bh2 != bh || bgr;
        uint8_t* d = out.Row(by);
        int ds = out.Step();
        if (crop) {
            tout.resize(size_t(3) * size_t(g.W2) * size_t(bh2));
            d = tout.data();
            ds = 3 * g.W2;
        }
        const ZilSize sz{g.W2, bh2};
        const size_t cr = Is420(f) ? size_t(by) / 2 : size_t(by);
        const int cs = int(g.cW);
        if (IsPacked(f)) {
            const uint8_t* s = Y + size_t(by) * 2 * size_t(g.W2);
            if (f == YuvFormat::YUY2)
                ZT_CALL(ziliYCbCr422ToRGB_8u_C2C3R, s, 2 * g.W2, d, ds, sz);
            else
                ZT_CALL(ziliCbYCr422ToRGB_8u_C2C3R, s, 2 * g.W2, d, ds, sz);
        } else if (f == YuvFormat::YUV444P) {  // bt709
            const size_t at = size_t(by) * size_t(w);
            const uint8_t* const s[3] = {Y + at, U + at, V + at};
            ZT_CALL(ziliYCbCrToBGR_709CSC_8u_P3C3R, s, w, d, ds, sz);
        } else {
            const uint8_t* y = Y + size_t(by) * size_t(w);
            int ys = w;
            if (g.W2 != w || bh2 != bh) {
                y = Pad(y, size_t(w), w, bh, 1, g.W2, bh2, false, ty);
                ys = g.W2;
            }
            if (f == YuvFormat::NV12 && !bgr) {
                ZT_CALL(ziliYCbCr420ToRGB_8u_P2C3R, y, ys, U + cr * 2 * g.cW, 2 * cs, d, ds, sz);
            } else {
                const uint8_t* u = U + cr * g.cW;
                const uint8_t* v = V + cr * g.cW;
                if (f == YuvFormat::NV12) {  // BT.709 comes for planes only: split the pairs
                    const size_t n = g.cW * size_t(bh2 / 2);
                    const uint8_t* uv = U + cr * 2 * g.cW;
                    tu.resize(n);
                    tv.resize(n);
                    for (size_t i = 0; i < n; ++i) {
                        tu[i] = uv[2 * i];
                        tv[i] = uv[2 * i + 1];
                    }
                    u = tu.data();
                    v = tv.data();
                }
                const uint8_t* const s[3] = {y, u, v};
                const int steps[3] = {ys, cs, cs};
                if (f == YuvFormat::YUV422P)
                    ZT_CALL(ziliYCbCr422ToRGB_8u_P3C3R, s, steps, d, ds, sz);
                else if (bgr)
                    ZT_CALL(ziliYCbCr420ToBGR_709CSC_8u_P3C3R, s, steps, d, ds, sz);
                else
                    ZT_CALL(ziliYCbCr420ToRGB_8u_P3C3R, s, steps, d, ds, sz);
            }
        }
        if (crop) Crop(d, size_t(ds), out.Row(by), size_t(out.Step()), size_t(3) * size_t(w), bh, bgr);
        if (progress) progress->Update(by + bh);
    }
    return out;
}

// ---- demo ---------------------------------------------------------------------------
namespace {

void DemoSubsampled(DemoKit& kit) {
    DemoSection s{"Subsampled YCbCr, BT.601 and BT.709",
                  "The scene through the raw video layouts of 'zilcc convert' in video-range YCbCr and back: "
                  "4:2:0 as three planes (I420) and as luma plus Cb,Cr pairs (NV12), 4:2:2 packed (YUY2) and "
                  "as planes, each with the BT.601 and, where the library has it, the BT.709 weights. BT.709 "
                  "4:2:2 has only a unit-gain form (luma 1..254, Cb Y0 Cr Y1 from BGR), shown last. PSNR per "
                  "channel against the scene; time per megapixel for both directions.",
                  {}};
    struct Row {
        const char* label;
        const char* file;
        YuvFormat f;
        Matrix m;
    };
    const Row rows[] = {
        {"4:2:0 I420, BT.601", "i420-601.png", YuvFormat::I420, Matrix::Bt601},
        {"4:2:0 I420, BT.709", "i420-709.png", YuvFormat::I420, Matrix::Bt709},
        {"4:2:0 NV12, BT.601", "nv12-601.png", YuvFormat::NV12, Matrix::Bt601},
        {"4:2:0 NV12, BT.709", "nv12-709.png", YuvFormat::NV12, Matrix::Bt709},
        {"4:2:2 YUY2, BT.601", "yuy2-601.png", YuvFormat::YUY2, Matrix::Bt601},
        {"4:2:2 planes, BT.601", "yuv422p-601.png", YuvFormat::YUV422P, Matrix::Bt601},
    };
    kit.summary << "RGB -> subsampled YCbCr -> RGB, PSNR dB    R      G      B     ms/MP\n";
    auto report = [&](const char* label, const char* file, const Image& back, double ms) {
        double p[3];
        for (int c = 0; c < 3; ++c) p[c] = Psnr(back, kit.scene8, c);
        s.figures.push_back({kit.write(file, back), label,
                             "PSNR R " + DemoDb(p[0]) + ", G " + DemoDb(p[1]) + ", B " + DemoDb(p[2]) + " dB; " +
                                 DemoFmt("%.2f", ms / kit.mp) + " ms/MP"});
        char line[160];
        std::snprintf(line, sizeof line, "  %-38s %6s %6s %6s %8.2f\n", label, DemoDb(p[0]).c_str(),
                      DemoDb(p[1]).c_str(), DemoDb(p[2]).c_str(), ms / kit.mp);
        kit.summary << line;
    };
    for (const Row& r : rows) {
        Image back;
        const double ms = DemoBestMs([&] {
            back = DecodeRaw(EncodeRaw(kit.scene8, r.f, r.m, 0, nullptr), kit.w, kit.h, r.f, r.m, 0, nullptr);
        });
        report(r.label, r.file, back, ms);
    }
    // BT.709 4:2:2, unit gain, through BGR.
    const int w = kit.w, h = kit.h;
    std::vector<uint8_t> bgr;
    Pad(kit.scene8.Row(0), kit.scene8.RowBytes(), w, h, 3, w, h, true, bgr);
    const int ps = 4 * ((w + 1) / 2);
    std::vector<uint8_t> packed(size_t(ps) * size_t(h));
    Image back;
    back.Allocate(w, h, 3, 8);
    const double ms = DemoBestMs([&] {
        ZT_CALL(ziliBGRToCbYCr422_709HDTV_8u_C3C2R, bgr.data(), 3 * w, packed.data(), ps, ZilSize{w, h});
        ZT_CALL(ziliCbYCr422ToBGR_709HDTV_8u_C2C3R, packed.data(), ps, back.Row(0), back.Step(), ZilSize{w, h});
    });
    Crop(back.Row(0), back.RowBytes(), back.Row(0), back.RowBytes(), back.RowBytes(), h, true);
    report("4:2:2 CbYCr, BT.709 unit gain", "cbycr-709hdtv.png", back, ms);
    kit.add(std::move(s));
}

}  // namespace

ZT_REGISTER(DemoDef{"subsampled YCbCr", 115, DemoSubsampled})

}  // namespace zt
