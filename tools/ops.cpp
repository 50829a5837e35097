#include "ops.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zt {

void NotAvailable(const std::string& what) {
    throw DataError(what + " is not available in this build of the library");
}

// ---------------------------------------------------------------------------
// Demosaicing.
//
// A band of output rows [y0, y0 + bh) is computed from a sub-plane that holds
// the band and six more rows above and below it (fewer at the image's own
// edges). The adaptive method extends a region by three rows and interpolates
// each of those from two rows further, so it reads five rows beyond a pixel's
// own (the gradient method three); both fold or fill borders only at the
// sub-plane's edges, so a margin of six rows keeps every output pixel the same
// as in a whole-image call. The sub-plane starts on an even row, so the
// pattern at its sample (0,0) is still `grid`.
namespace {

template <class T>
T* At(Image& img, int x, int y) {
    return reinterpret_cast<T*>(img.Row(y)) + size_t(x) * size_t(img.channels);
}
template <class T>
const T* At(const Image& img, int x, int y) {
    return reinterpret_cast<const T*>(img.Row(y)) + size_t(x) * size_t(img.channels);
}

#if defined(ZIL_HAVE_CFA)
ZilStatus CallCfa(const uint8_t* s, ZilRect r, ZilSize sz, int ss, uint8_t* d, int ds, ZilBayerGrid g) {
    return ziliCFAToRGB_8u_C1C3R(s, r, sz, ss, d, ds, g);
}
ZilStatus CallCfa(const uint16_t* s, ZilRect r, ZilSize sz, int ss, uint16_t* d, int ds, ZilBayerGrid g) {
    return ziliCFAToRGB_16u_C1C3R(s, r, sz, ss, d, ds, g);
}
#endif
#if defined(ZIL_HAVE_AHD)
ZilStatus CallAhd(const uint8_t* s, ZilRect r, ZilSize sz, int ss, uint8_t* d, int ds, ZilBayerGrid g, void* buf,
                  int bs) {
    return ziliDemosaicAHD_8u_C1C3R(s, r, sz, ss, d, ds, g, static_cast<uint8_t*>(buf), bs);
}
ZilStatus CallAhd(const uint16_t* s, ZilRect r, ZilSize sz, int ss, uint16_t* d, int ds, ZilBayerGrid g, void* buf,
                  int bs) {
    return ziliDemosaicAHD_16u_C1C3R(s, r, sz, ss, d, ds, g, static_cast<uint16_t*>(buf), bs);
}
#endif

constexpr int kBandMargin = 6;

template <class T>
void DemosaicT(const Image& cfa, const uint8_t* plane, ZilBayerGrid grid, DemosaicMethod method, Rect r, int bandRows,
               Image& out, Progress* progress) {
    const int W = cfa.width, H = cfa.height;
    // Work area of the adaptive method: 30 lines of at least w + 8 samples.
    std::vector<uint8_t> work;
    int workStep = 0;
    if (method == DemosaicMethod::Ahd) {
        workStep = int((size_t(r.w + 8) * sizeof(T) + 63) / 64 * 64);
        work.resize(size_t(workStep) * 30);
    }
    const bool is16 = sizeof(T) == 2;
    for (int by = 0; by < r.h; by += bandRows) {
        const int bh = std::min(bandRows, r.h - by);
        const int y0 = r.y + by;
        const int s0 = std::max(0, y0 - kBandMargin) & ~1;
        const int s1 = std::min(H, y0 + bh + kBandMargin);
        const T* sub = reinterpret_cast<const T*>(plane + size_t(s0) * cfa.RowBytes());
        const ZilSize subSize{W, s1 - s0};
        const ZilRect rect{r.x, y0 - s0, r.w, bh};
        T* dst = At<T>(out, 0, by);
        const std::string ctx = "the library rejected the " + SizeText(W, H) + " mosaic";
        if (method == DemosaicMethod::Gradient) {
#if defined(ZIL_HAVE_CFA)
            CheckStatus(CallCfa(sub, rect, subSize, cfa.Step(), dst, out.Step(), grid),
                        is16 ? "ziliCFAToRGB_16u_C1C3R" : "ziliCFAToRGB_8u_C1C3R", ctx);
#else
            (void)sub, (void)subSize, (void)rect, (void)dst, (void)ctx, (void)is16, (void)grid;
            NotAvailable("the gradient demosaicing method");
#endif
        } else {
#if defined(ZIL_HAVE_AHD)
            CheckStatus(CallAhd(sub, rect, subSize, cfa.Step(), dst, out.Step(), grid, work.data(), workStep),
                        is16 ? "ziliDemosaicAHD_16u_C1C3R" : "ziliDemosaicAHD_8u_C1C3R", ctx);
#else
            (void)sub, (void)subSize, (void)rect, (void)dst, (void)ctx, (void)is16, (void)grid;
            NotAvailable("the AHD demosaicing method");
#endif
        }
        if (progress) progress->Update(by + bh);
    }
}

}  // namespace

// The adaptive method, on an image 5 samples wide or high, folds a coordinate
// to one place outside the image (column or row -1 or 5) and reads the sample
// there. Such an image is copied into a plane with a row and a sample to spare
// on each side, so that the read stays inside memory of the tool's own.
namespace {
Image PadForAhd(const Image& cfa, size_t* offset) {
    Image p;
    p.Allocate(cfa.width, cfa.height + 4, 1, cfa.depth);
    *offset = 2 * cfa.RowBytes();
    std::copy(cfa.data.begin(), cfa.data.end(), p.data.begin() + std::ptrdiff_t(*offset));
    return p;
}
}  // namespace

Image Demosaic(const Image& cfa, ZilBayerGrid grid, DemosaicMethod method, Rect rect, int bandRows,
               Progress* progress) {
    if (method == DemosaicMethod::Gradient && !kHaveCfa) NotAvailable("the gradient demosaicing method");
    if (method == DemosaicMethod::Ahd && !kHaveAhd) NotAvailable("the AHD demosaicing method");
    // A region is computed with a margin of up to kRegionMargin samples (an
    // even number, so the pattern keeps its phase) on every side that is not
    // the image's edge, and cut out afterwards: a pixel then sees the same
    // neighbourhood as in a whole-image call, whatever the method's reach.
    constexpr int kRegionMargin = 8;
    const int x0 = std::max(0, rect.x - kRegionMargin) & ~1, y0 = std::max(0, rect.y - kRegionMargin) & ~1;
    const int x1 = std::min(cfa.width, rect.x + rect.w + kRegionMargin);
    const int y1 = std::min(cfa.height, rect.y + rect.h + kRegionMargin);
    const Rect work{x0, y0, x1 - x0, y1 - y0};
    Image padded;
    size_t offset = 0;
    const bool pad = method == DemosaicMethod::Ahd && (cfa.width == 5 || cfa.height == 5);
    if (pad) padded = PadForAhd(cfa, &offset);
    const Image& src = pad ? padded : cfa;
    Image full;
    full.Allocate(work.w, work.h, 3, cfa.depth);
    if (bandRows < 1) bandRows = BandRows(cfa.RowBytes(), 2);
    if (cfa.depth == 16)
        DemosaicT<uint16_t>(cfa, src.data.data() + offset, grid, method, work, bandRows, full, progress);
    else
        DemosaicT<uint8_t>(cfa, src.data.data() + offset, grid, method, work, bandRows, full, progress);
    full.maxval = cfa.maxval;
    if (work.x == rect.x && work.y == rect.y && work.w == rect.w && work.h == rect.h) return full;
    Image out;
    out.Allocate(rect.w, rect.h, 3, cfa.depth);
    out.maxval = cfa.maxval;
    const size_t px = 3 * out.SampleBytes();
    for (int y = 0; y < rect.h; ++y)
        std::copy_n(full.Row(rect.y - work.y + y) + size_t(rect.x - work.x) * px, out.RowBytes(), out.Row(y));
    return out;
}

Image Mosaic(const Image& rgb, ZilBayerGrid grid) {
    // Channel of each place of the 2x2 cell: top-left, top-right, bottom-left, bottom-right.
    static const int kCell[4][4] = {
        {2, 1, 1, 0},  // BGGR
        {0, 1, 1, 2},  // RGGB
        {1, 2, 0, 1},  // GBRG
        {1, 0, 2, 1},  // GRBG
    };
    Image m;
    m.Allocate(rgb.width, rgb.height, 1, rgb.depth);
    for (int y = 0; y < rgb.height; ++y)
        for (int x = 0; x < rgb.width; ++x) {
            const int c = kCell[grid & 3][(y & 1) * 2 + (x & 1)];
            if (rgb.depth == 16)
                m.Row16(y)[x] = rgb.Row16(y)[size_t(x) * 3 + size_t(c)];
            else
                m.Row(y)[x] = rgb.Row(y)[size_t(x) * 3 + size_t(c)];
        }
    return m;
}

// ---------------------------------------------------------------------------
// RGB <-> YUV. Raw frames are dense: planes one after another, chroma planes
// of 4:2:2 (w+1)/2 wide, of 4:2:0 w/2 by h/2; packed 4:2:2 rows hold whole
// cells, 4 * ceil(w/2) bytes: at an odd width the last pixel is repeated to
// fill its cell, as video files lay it out.
const std::vector<YuvFormatInfo>& YuvFormats() {
    static const std::vector<YuvFormatInfo> kFormats = {
        {YuvFormat::I420, "i420", "4:2:0, three planes Y, U, V", true, true},
        {YuvFormat::NV12, "nv12", "4:2:0, plane Y then one plane of U,V pairs", true, true},
        {YuvFormat::YUY2, "yuy2", "4:2:2 packed, bytes Y0 U Y1 V", false, false},
        {YuvFormat::UYVY, "uyvy", "4:2:2 packed, bytes U Y0 V Y1", false, false},
        {YuvFormat::YUV422P, "yuv422p", "4:2:2, three planes, chroma (w+1)/2 wide", false, false},
        {YuvFormat::YUV444P, "yuv444p", "4:4:4, three planes", false, false},
    };
    return kFormats;
}

const YuvFormatInfo& YuvInfo(YuvFormat f) {
    for (const auto& i : YuvFormats())
        if (i.format == f) return i;
    return YuvFormats().front();
}

namespace {

struct Planes {
    size_t yBytes, cW, cH;  // luma plane bytes, chroma plane extent
};

Planes PlaneGeometry(YuvFormat f, int w, int h) {
    const size_t W = size_t(w), H = size_t(h);
    switch (f) {
        case YuvFormat::I420:
        case YuvFormat::NV12: return {W * H, W / 2, H / 2};
        case YuvFormat::YUV422P: return {W * H, (W + 1) / 2, H};
        case YuvFormat::YUV444P: return {W * H, W, H};
        case YuvFormat::YUY2:
        case YuvFormat::UYVY: return {4 * ((W + 1) / 2) * H, 0, 0};
    }
    return {0, 0, 0};
}

void CheckYuvExtent(YuvFormat f, int w, int h) {
    const YuvFormatInfo& info = YuvInfo(f);
    if ((info.evenWidth && (w & 1)) || (info.evenHeight && (h & 1))) {
        std::string name = info.name;
        for (char& c : name) c = char(std::toupper(static_cast<unsigned char>(c)));
        throw DataError(name + " needs an even width and height, " + SizeText(w, h) +
                        " is not (4:2:0 cells are 2x2; the library leaves an odd last column or row "
                        "unconverted and returns zilStatusOddSize)");
    }
    if (size_t(w) * 3 > 0x7fffffffu) throw DataError("rows of " + std::to_string(w) + " pixels are too wide");
}

void SwapPairs(uint8_t* p, size_t n) {
    for (size_t i = 0; i + 1 < n; i += 2) std::swap(p[i], p[i + 1]);
}

}  // namespace

size_t YuvFrameBytes(YuvFormat f, int w, int h) {
    CheckYuvExtent(f, w, h);
    const Planes g = PlaneGeometry(f, w, h);
    return g.yBytes + 2 * g.cW * g.cH;
}

std::vector<uint8_t> RgbToYuv(const Image& rgb, YuvFormat f, int bandRows, Progress* progress) {
    if (rgb.channels != 3 || rgb.depth != 8) throw DataError("RGB to YUV takes 8-bit RGB");
    const int w = rgb.width, h = rgb.height;
    std::vector<uint8_t> out(YuvFrameBytes(f, w, h));
    const Planes g = PlaneGeometry(f, w, h);
    uint8_t* Y = out.data();
    uint8_t* U = Y + g.yBytes;
    uint8_t* V = U + g.cW * g.cH;
    if (bandRows < 1) bandRows = BandRows(rgb.RowBytes(), 2);
    bandRows += bandRows & 1;
    // NV12 goes through I420 planes of one band, then interleaves the chroma.
    std::vector<uint8_t> u2, v2, t;
    for (int by = 0; by < h; by += bandRows) {
        const int bh = std::min(bandRows, h - by);
        const ZilSize sz{w, bh};
        const uint8_t* src = rgb.Row(by);
        const size_t yr = size_t(by);
        switch (f) {
            case YuvFormat::YUV444P: {
                uint8_t* const d[3] = {Y + yr * w, U + yr * w, V + yr * w};
                CheckStatus(ziliRGBToYUV_8u_C3P3R(src, rgb.Step(), d, w, sz), "ziliRGBToYUV_8u_C3P3R");
                break;
            }
            case YuvFormat::YUV422P: {
                uint8_t* const d[3] = {Y + yr * w, U + yr * g.cW, V + yr * g.cW};
                const int steps[3] = {w, int(g.cW), int(g.cW)};
                CheckStatus(ziliRGBToYUV422_8u_C3P3R(src, rgb.Step(), d, steps, sz), "ziliRGBToYUV422_8u_C3P3R");
                break;
            }
            case YuvFormat::YUY2:
            case YuvFormat::UYVY: {
                const int cw = (w + 1) & ~1;  // whole cells
                uint8_t* d = Y + yr * 2 * size_t(cw);
                const uint8_t* s = src;
                int ss = rgb.Step();
                if (cw != w) {  // the band with its last pixel repeated
                    t.resize(size_t(cw) * 3 * size_t(bh));
                    for (int y = 0; y < bh; ++y) {
                        uint8_t* r = t.data() + size_t(y) * 3 * size_t(cw);
                        std::copy_n(rgb.Row(by + y), size_t(w) * 3, r);
                        std::copy_n(r + size_t(w - 1) * 3, 3, r + size_t(w) * 3);
                    }
                    s = t.data();
                    ss = 3 * cw;
                }
                CheckStatus(ziliRGBToYUV422_8u_C3C2R(s, ss, d, 2 * cw, ZilSize{cw, bh}), "ziliRGBToYUV422_8u_C3C2R");
                if (f == YuvFormat::UYVY) SwapPairs(d, size_t(2) * cw * bh);
                break;
            }
            case YuvFormat::I420: {
                uint8_t* const d[3] = {Y + yr * w, U + yr / 2 * g.cW, V + yr / 2 * g.cW};
                const int steps[3] = {w, int(g.cW), int(g.cW)};
                CheckStatus(ziliRGBToYUV420_8u_C3P3R(src, rgb.Step(), d, steps, sz), "ziliRGBToYUV420_8u_C3P3R");
                break;
            }
            case YuvFormat::NV12: {
                const size_t cn = g.cW * size_t(bh / 2);
                u2.resize(cn);
                v2.resize(cn);
                uint8_t* const d[3] = {Y + yr * w, u2.data(), v2.data()};
                const int steps[3] = {w, int(g.cW), int(g.cW)};
                CheckStatus(ziliRGBToYUV420_8u_C3P3R(src, rgb.Step(), d, steps, sz), "ziliRGBToYUV420_8u_C3P3R");
                uint8_t* uv = U + yr / 2 * 2 * g.cW;
                for (size_t i = 0; i < cn; ++i) {
                    uv[2 * i] = u2[i];
                    uv[2 * i + 1] = v2[i];
                }
                break;
            }
        }
        if (progress) progress->Update(by + bh);
    }
    return out;
}

Image YuvToRgb(const std::vector<uint8_t>& yuv, int w, int h, YuvFormat f, int bandRows, Progress* progress) {
    const size_t need = YuvFrameBytes(f, w, h);
    if (yuv.size() != need) throw DataError("a YUV frame has " + std::to_string(yuv.size()) + " bytes, needs " +
                                            std::to_string(need));
    Image out;
    out.Allocate(w, h, 3, 8);
    const Planes g = PlaneGeometry(f, w, h);
    const uint8_t* Y = yuv.data();
    const uint8_t* U = Y + g.yBytes;
    const uint8_t* V = U + g.cW * g.cH;
    if (bandRows < 1) bandRows = BandRows(out.RowBytes(), 2);
    bandRows += bandRows & 1;
    std::vector<uint8_t> t1, t2;
    for (int by = 0; by < h; by += bandRows) {
        const int bh = std::min(bandRows, h - by);
        const ZilSize sz{w, bh};
        uint8_t* dst = out.Row(by);
        const size_t yr = size_t(by);
        switch (f) {
            case YuvFormat::YUV444P: {
                const uint8_t* const s[3] = {Y + yr * w, U + yr * w, V + yr * w};
                CheckStatus(ziliYUVToRGB_8u_P3C3R(s, w, dst, out.Step(), sz), "ziliYUVToRGB_8u_P3C3R");
                break;
            }
            case YuvFormat::YUV422P: {
                const uint8_t* const s[3] = {Y + yr * w, U + yr * g.cW, V + yr * g.cW};
                const int steps[3] = {w, int(g.cW), int(g.cW)};
                CheckStatus(ziliYUV422ToRGB_8u_P3C3R(s, steps, dst, out.Step(), sz), "ziliYUV422ToRGB_8u_P3C3R");
                break;
            }
            case YuvFormat::YUY2:
            case YuvFormat::UYVY: {
                const int cw = (w + 1) & ~1;  // whole cells; at an odd width the last pixel is dropped
                const uint8_t* s = Y + yr * 2 * size_t(cw);
                if (f == YuvFormat::UYVY) {
                    t1.assign(s, s + size_t(2) * cw * bh);
                    SwapPairs(t1.data(), t1.size());
                    s = t1.data();
                }
                uint8_t* d = dst;
                int ds = out.Step();
                if (cw != w) {
                    t2.resize(size_t(cw) * 3 * size_t(bh));
                    d = t2.data();
                    ds = 3 * cw;
                }
                CheckStatus(ziliYUV422ToRGB_8u_C2C3R(s, 2 * cw, d, ds, ZilSize{cw, bh}), "ziliYUV422ToRGB_8u_C2C3R");
                if (cw != w)
                    for (int y = 0; y < bh; ++y) std::copy_n(t2.data() + size_t(y) * 3 * size_t(cw), size_t(w) * 3, out.Row(by + y));
                break;
            }
            case YuvFormat::I420: {
                const uint8_t* const s[3] = {Y + yr * w, U + yr / 2 * g.cW, V + yr / 2 * g.cW};
                const int steps[3] = {w, int(g.cW), int(g.cW)};
                CheckStatus(ziliYUV420ToRGB_8u_P3C3R(s, steps, dst, out.Step(), sz), "ziliYUV420ToRGB_8u_P3C3R");
                break;
            }
            case YuvFormat::NV12: {
                const size_t cn = g.cW * size_t(bh / 2);
                t1.resize(cn);
                t2.resize(cn);
                const uint8_t* uv = U + yr / 2 * 2 * g.cW;
                for (size_t i = 0; i < cn; ++i) {
                    t1[i] = uv[2 * i];
                    t2[i] = uv[2 * i + 1];
                }
                const uint8_t* const s[3] = {Y + yr * w, t1.data(), t2.data()};
                const int steps[3] = {w, int(g.cW), int(g.cW)};
                CheckStatus(ziliYUV420ToRGB_8u_P3C3R(s, steps, dst, out.Step(), sz), "ziliYUV420ToRGB_8u_P3C3R");
                break;
            }
        }
        if (progress) progress->Update(by + bh);
    }
    return out;
}

// ---------------------------------------------------------------------------
// Bit-depth reduction. Plain quantising is per pixel and the ordered dither
// depends on a pixel's place modulo 4 within the region, so these run in bands
// (of a multiple of 4 rows). Error diffusion carries errors from row to row and
// the noise table is laid over the region, so those run as one call.
#if defined(ZIL_HAVE_REDUCE)
namespace {

ZilStatus CallReduce(const Image& s, Image& d, int y0, int rows, int noise, ZilDither dither, int levels,
                     uint8_t* buf, const char** name) {
    const ZilSize sz{s.width, rows};
#define ZIL_TOOL_REDUCE(fn, ST, DT)                                                                          \
    do {                                                                                                     \
        *name = #fn;                                                                                         \
        return fn(reinterpret_cast<const ST*>(s.Row(y0)), s.Step(), reinterpret_cast<DT*>(d.Row(y0)), d.Step(), \
                  sz, noise, dither, levels, buf);                                                           \
    } while (0)
    if (s.depth == 32) {
        if (s.channels == 1) ZIL_TOOL_REDUCE(ziliReduceBits_32f8u_C1R, float, uint8_t);
        ZIL_TOOL_REDUCE(ziliReduceBits_32f8u_C3R, float, uint8_t);
    }
    if (s.channels == 1) ZIL_TOOL_REDUCE(ziliReduceBits_16u_C1R, uint16_t, uint16_t);
    ZIL_TOOL_REDUCE(ziliReduceBits_16u_C3R, uint16_t, uint16_t);
#undef ZIL_TOOL_REDUCE
}

// 8-bit output goes through the float-to-8-bit pair, whose levels are
// trunc(k / L * 255 + 0.5) for every method. (The 8-bit pair's dithering forms
// derive their levels from a truncated multiplier, so their top level can be
// 254 or wrap; the 16-to-8-bit pair's dithering forms truncate a 16-bit level
// to its high byte where its plain form rounds.) The value s / 255 (or
// s / 65535) is the one those pairs' plain forms work on.
uint32_t Sample(const Image& img, size_t i) {
    return img.depth == 16 ? reinterpret_cast<const uint16_t*>(img.data.data())[i] : img.data[i];
}

Image ToUnitFloat(const Image& src) {
    Image f;
    f.Allocate(src.width, src.height, src.channels, 32);
    auto* p = reinterpret_cast<float*>(f.data.data());
    const float top = src.depth == 16 ? 65535.0f : 255.0f;
    for (size_t i = 0; i < size_t(src.width) * src.height * src.channels; ++i) p[i] = float(Sample(src, i)) / top;
    return f;
}

// A stored float product can land a tie on either side (k / L * 255 = m + 1/2
// gives m or m + 1 by method), so each byte is put back on its level's exact
// value trunc(k * 255 / L + 1/2), with k recovered by rounding o * L / 255,
// which is exact for levels at least one apart. The ordered dither lifts an
// element whose remainder exceeds its threshold, and at white the remainder
// 1 - L * (1 / L) can be a rounding error above a threshold of 0 (or noise
// makes the threshold negative): white would go past the top level and wrap.
// Only a white source is at the top level, so white is kept white.
void SnapLevels(const Image& src, Image& out, int levels, bool liftsPastTop) {
    const uint32_t L = uint32_t(levels - 1);
    uint8_t lut[256];
    for (uint32_t o = 0; o < 256; ++o) {
        const uint32_t k = std::min((o * 2 * L + 255) / 510, L);
        lut[o] = uint8_t((k * 510 + L) / (2 * L));
    }
    const uint32_t white = src.depth == 16 ? 65535 : 255;
    for (size_t i = 0; i < out.data.size(); ++i)
        out.data[i] = liftsPastTop && Sample(src, i) == white ? 255 : lut[out.data[i]];
}

}  // namespace
#endif

Image Reduce(const Image& src8or16, int levels, ZilDither dither, int noise, int outBits, int bandRows,
             Progress* progress) {
#if defined(ZIL_HAVE_REDUCE)
    if (src8or16.depth == 8) outBits = 8;
    const bool eight = outBits == 8;
    const Image unit = eight ? ToUnitFloat(src8or16) : Image();
    const Image& src = eight ? unit : src8or16;
    Image out;
    out.Allocate(src.width, src.height, src.channels, outBits);
    const ZilSize whole{src.width, src.height};
    int32_t bufBytes = 0;
    CheckStatus(ziliReduceBitsGetBufferSize(src.channels, whole, noise, dither, &bufBytes),
                "ziliReduceBitsGetBufferSize");
    std::vector<uint8_t> buf(size_t(bufBytes) + 64);
    const bool banded = dither == zilDitherNone || (dither == zilDitherBayer && noise == 0);
    if (!banded || bandRows < 1) bandRows = banded ? BandRows(src.RowBytes(), 4) : src.height;
    bandRows = (bandRows + 3) / 4 * 4;
    for (int by = 0; by < src.height; by += bandRows) {
        const int bh = std::min(bandRows, src.height - by);
        const char* name = "";
        const ZilStatus s = CallReduce(src, out, by, bh, noise, dither, levels, buf.data(), &name);
        CheckStatus(s, name);
        if (progress) progress->Update(by + bh);
    }
    if (eight) SnapLevels(src8or16, out, levels, dither == zilDitherBayer);
    return out;
#else
    (void)src8or16, (void)levels, (void)dither, (void)noise, (void)outBits, (void)bandRows, (void)progress;
    NotAvailable("bit-depth reduction");
#endif
}

std::vector<uint8_t> ReduceToBits(const Image& grey, bool stucki, int threshold, int bandRows, size_t* step,
                                  Progress* progress) {
#if defined(ZIL_HAVE_REDUCE1U)
    if (grey.channels != 1 || grey.depth != 8) throw DataError("one-bit output takes an 8-bit grey image");
    *step = (size_t(grey.width) + 7) / 8;
    std::vector<uint8_t> bits(*step * size_t(grey.height));
    const ZilSize whole{grey.width, grey.height};
    int32_t bufBytes = 0;
    CheckStatus(ziliReduceBitsGetBufferSize(1, whole, 0, zilDitherStucki, &bufBytes), "ziliReduceBitsGetBufferSize");
    std::vector<uint8_t> buf(size_t(bufBytes) + 64);
    if (stucki || bandRows < 1) bandRows = stucki ? grey.height : BandRows(grey.RowBytes(), 1);
    for (int by = 0; by < grey.height; by += bandRows) {
        const int bh = std::min(bandRows, grey.height - by);
        const ZilSize sz{grey.width, bh};
        CheckStatus(ziliReduceBits_8u1u_C1R(grey.Row(by), grey.Step(), bits.data() + size_t(by) * *step,
                                            int(*step), 0, sz, 0, 0, stucki ? zilDitherStucki : zilDitherNone,
                                            uint8_t(threshold), buf.data()),
                    "ziliReduceBits_8u1u_C1R");
        if (progress) progress->Update(by + bh);
    }
    return bits;
#else
    (void)grey, (void)stucki, (void)threshold, (void)bandRows, (void)step, (void)progress;
    NotAvailable("one-bit reduction");
#endif
}

// ---------------------------------------------------------------------------
double Psnr(const Image& a, const Image& b, int c) {
    double sum = 0;
    const double peak = a.depth == 16 ? 65535.0 : 255.0;
    for (int y = 0; y < a.height; ++y)
        for (int x = 0; x < a.width; ++x) {
            const size_t i = size_t(x) * size_t(a.channels) + size_t(c);
            const double d = a.depth == 16 ? double(a.Row16(y)[i]) - double(b.Row16(y)[i])
                                           : double(a.Row(y)[i]) - double(b.Row(y)[i]);
            sum += d * d;
        }
    if (sum == 0) return std::numeric_limits<double>::infinity();
    const double mse = sum / (double(a.width) * double(a.height));
    return 10.0 * std::log10(peak * peak / mse);
}

}  // namespace zt
