#include "harness.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "../guard.h"

namespace zilfuzz {

ZilStatus InvokeVersion(const Slot*) {
    const ZilLibVersion* v = zilccGetLibVersion();
    if (v == nullptr || v != zilccGetLibVersion() || v->name == nullptr || v->version == nullptr) {
        std::fprintf(stderr, "zilccGetLibVersion: no record, or not the same record twice\n");
        std::abort();
    }
    return zilStatusOk;
}

PlaneBuf::PlaneBuf() = default;
PlaneBuf::~PlaneBuf() = default;
PlaneBuf::PlaneBuf(PlaneBuf&&) noexcept = default;
PlaneBuf& PlaneBuf::operator=(PlaneBuf&&) noexcept = default;

namespace {

int64_t Cols(uint8_t x, int64_t w, int64_t bitOffset) {
    int64_t v = 0;
    switch (x) {
        case XW: v = w; break;
        case XHalfUp: v = w < 1 ? 0 : (w + 1) / 2; break;
        case XHalf: v = w / 2; break;
        case XEven: v = w & ~int64_t(1); break;
        case XBits: v = (w < 1 || bitOffset < 0) ? 0 : ((bitOffset & 7) + w + 7) / 8; break;
        case XAhd: v = w < 1 ? 0 : w + ((w & 1) ? 8 : 6); break;
        case XOne: v = 1; break;
        case XQuarter: v = w / 4; break;
        case XEvenUp: v = w < 1 ? 0 : (w + 1) & ~int64_t(1); break;
    }
    return v < 0 ? 0 : v;
}
// Width in units of a dense plane: the full extent, also where an odd column is not touched.
int64_t DenseCols(uint8_t x, int64_t w) { return x == XEven ? w : Cols(x, w, 0); }
int64_t Rows(uint8_t y, int64_t h) {
    int64_t v = 0;
    switch (y) {
        case YH: v = h; break;
        case YHalf: v = h / 2; break;
        case YEven: v = h & ~int64_t(1); break;
        case Y30: v = 30; break;
        case YOne: v = 1; break;
        case YQuarter: v = h / 4; break;
    }
    return v < 0 ? 0 : v;
}

const Img& ImgOf(const Row& r, int which) { return which == 0 ? r.src : which == 1 ? r.dst : r.work; }
const ImgParams& ParamsOf(const Case& c, int which) { return which == 0 ? c.src : which == 1 ? c.dst : c.work; }

uint32_t Mix(uint32_t s) {
    s ^= s >> 16, s *= 0x7feb352du, s ^= s >> 15, s *= 0x846ca68bu, s ^= s >> 16;
    return s;
}

// Colour twist matrix (16 floats serve the 3x4 and the 4x4 forms): mixes,
// offsets and a saturating row.
const float kTwistMatrix[16] = {0.9f, 0.3f, -0.4f, 20.5f, -0.2f, 1.1f, 0.3f, -10.0f,
                                0.5f, 0.5f, 0.5f, 300.0f, 0.25f, 0.0f, 0.0f, 0.5f};

// Size selector: mostly 1..33, sometimes an edge value.
int32_t PickSize(uint8_t b) {
    static const int32_t special[16] = {INT_MIN, -65536, -1, 0, 0, 1, 1, 2, 2, 3, 4, 5, 6, 64, 65, 128};
    return b >= 240 ? special[b - 240] : int32_t(b % 33) + 1;
}

struct Reader {
    const uint8_t* d;
    size_t n, i = 0;
    uint8_t u8() { return i < n ? d[i++] : 0; }
    uint32_t u32() { uint32_t v = u8(); v |= uint32_t(u8()) << 8; v |= uint32_t(u8()) << 16; return v | uint32_t(u8()) << 24; }
};

}  // namespace

std::string Case::Describe() const {
    char b[640];
    auto img = [](const ImgParams& p) {
        static const char* const modes[] = {"dense", "padded", "zero", "negative", "negative+pad", "short"};
        char s[96];
        std::snprintf(s, sizeof s, "%s pad %d/%d/%d/%d %s seed %u", modes[p.mode % ModeCount], p.pad[0], p.pad[1],
                      p.pad[2], p.pad[3], p.guardBefore ? "guard-before" : "guard-after", unsigned(p.seed));
        return std::string(s);
    };
    std::snprintf(b, sizeof b,
                  "%s size %dx%d rect (%d,%d %dx%d) null %d alpha %lld grid %lld noise %lld dither %lld levels %lld "
                  "bitOffset %lld channels %lld threshold %lld reserved %lld,%lld pixels %zu bytes",
                  row ? row->name : "?", w, h, rect.x, rect.y, rect.width, rect.height, nullTarget, (long long)alpha,
                  (long long)grid, (long long)noise, (long long)dither, (long long)levels, (long long)bitOffset,
                  (long long)channels, (long long)threshold, (long long)reserved1, (long long)reserved2, pixels.size());
    return std::string(b) + "\n  src: " + img(src) + "\n  dst: " + img(dst) + "\n  work: " + img(work);
}

Case Decode(const uint8_t* data, size_t size) {
    Reader r{data, size};
    Case c;
    // Rows are only ever appended, so a selector keeps naming the same export as
    // families are added. A first byte of 255 takes a second one, for the rows
    // from 255 on; selectors past the last row wrap.
    const size_t rb = r.u8();
    c.row = &kRows[(rb < 255 ? rb : 255 + size_t(r.u8())) % kRowCount];
    c.w = PickSize(r.u8());
    c.h = PickSize(r.u8());
    // Region of the demosaicing entries, in the coordinates of the w by h plane.
    const int32_t W = c.w > 0 && c.w < 1000 ? c.w : 4, H = c.h > 0 && c.h < 1000 ? c.h : 4;
    const uint8_t rx = r.u8(), ry = r.u8(), rw = r.u8(), rh = r.u8();
    if (c.row->clip == ClipAhd) {
        // A negative origin is read as 0 by the frame; any width is clipped.
        c.rect = {int32_t(rx % (W + 6)) - 3, int32_t(ry % (H + 6)) - 3, int32_t(rw % (W + 7)) - 2,
                  int32_t(rh % (H + 7)) - 2};
    } else {
        // A negative origin or extent is outside the contract of the gradient demosaic.
        c.rect = {int32_t(rx % (W + 2)), int32_t(ry % (H + 2)), int32_t(rw % (W + 3)), int32_t(rh % (H + 3))};
    }
    for (ImgParams* p : {&c.src, &c.dst, &c.work}) {
        const uint8_t m = r.u8();
        p->mode = uint8_t(m % ModeCount);
        p->guardBefore = (m & 0x80) != 0;
        const uint8_t pad = r.u8();
        for (int i = 0; i < 4; ++i) p->pad[i] = uint8_t((pad >> (2 * i) & 3) * 7 + (pad & 3));
        p->seed = r.u8() + 1;
    }
    // Null injection: sometimes one of the pointers the call tests.
    const uint8_t nsel = r.u8(), nwhich = r.u8();
    if (nsel % 6 == 0) {
        int targets[16], n = 0;
        for (int which = 0; which < 3; ++which) {
            const Img& m = ImgOf(*c.row, which);
            if (m.planes == 0) continue;
            if (m.nullable & 0x80) targets[n++] = 8 * which + 7;
            for (int e = 0; e < 4; ++e)
                if (m.planes > 1 && (m.nullable >> e & 1)) targets[n++] = 8 * which + e;
        }
        if (n) c.nullTarget = targets[nwhich % n];
    }
    c.alpha = r.u8();
    c.threshold = c.alpha;
    {
        static const int64_t odd[] = {-1, 4, 5, INT_MIN, INT_MAX, 0x100000000LL + 1};
        const uint8_t g = r.u8();
        c.grid = g < 224 ? g % 4 : odd[g % 6];
    }
    {
        static const int64_t odd[] = {0, 100, 101, -1, INT_MAX, 1, 255, 50};
        const uint8_t nb = r.u8();
        c.noise = nb < 200 ? (nb < 100 ? 0 : nb - 100) : odd[nb % 8];
    }
    {
        static const int64_t odd[] = {-1, 5, 6, INT_MIN, 1000, 0x7fffffff};
        const uint8_t d = r.u8();
        c.dither = d < 230 ? d % 5 : odd[d % 6];
    }
    {
        static const int64_t pick[] = {2, 3, 4, 7, 16, 255, 256, 257, 65535, 65536, 65537, 0, 1, -1, INT_MIN, 128};
        const uint8_t lb = r.u8(), lh = r.u8();
        c.levels = lb < 128 ? pick[lb % 16] : int64_t(lb) + 256 * int64_t(lh) + 2;
        if (lb >= 128 && (lh & 0x80)) c.levels &= 0xff;
    }
    {
        static const int64_t odd[] = {-1, INT_MIN, 8, 9, 11, 15, 64, INT_MAX};
        const uint8_t o = r.u8();
        c.bitOffset = o < 200 ? o % 8 : odd[o % 8];
    }
    {
        static const int64_t ch[] = {1, 3, 4, 9, 1, 3, 4, 9, 0, 2, 5, 8, -1, 10, INT_MIN, 16};
        c.channels = ch[r.u8() % 16];
    }
    c.reserved1 = int32_t(r.u32());
    c.reserved2 = int32_t(r.u32());
    // What is left is pixel data.
    if (r.i < size) c.pixels.assign(data + r.i, data + size);
    return c;
}

Extents ExtentsOf(const Case& c) {
    const Row& row = *c.row;
    Extents e{c.w, c.h, c.w, c.h, 0};
    if (row.clip == ClipCfa) {
        int64_t w = c.rect.width, h = c.rect.height;
        if (int64_t(c.rect.x) + w > c.w) w = int64_t(c.w) - c.rect.x;
        if (int64_t(c.rect.y) + h > c.h) h = int64_t(c.h) - c.rect.y;
        e.dstW = w, e.dstH = h;
    } else if (row.clip == ClipAhd) {
        const int64_t x = c.rect.x < 0 ? 0 : c.rect.x, y = c.rect.y < 0 ? 0 : c.rect.y;
        int64_t w = c.rect.width, h = c.rect.height;
        w += (int64_t(c.w) - x - w < 0) ? int64_t(c.w) - x - w : 0;
        h += (int64_t(c.h) - y - h < 0) ? int64_t(c.h) - y - h : 0;
        e.dstW = w, e.dstH = h;
    }
#ifdef ZIL_HAVE_REDUCE
    if (row.query == QueryReduce) {
        int32_t sz = 0;
        if (ziliReduceBitsGetBufferSize(row.aux, ZilSize{c.w, c.h}, int32_t(c.noise), ZilDither(c.dither), &sz) == 0)
            e.workBytes = uint32_t(sz);
    } else if (row.query == QueryReduce1u && c.dither == zilDitherStucki) {
        int32_t sz = 0;
        if (ziliReduceBitsGetBufferSize(1, ZilSize{c.w, c.h}, 0, zilDitherStucki, &sz) == 0) e.workBytes = uint32_t(sz);
    }
#endif
    return e;
}

void FillImg(const Case& c, int which, ImgBuf& b, uint32_t seed) {
    const Img& m = ImgOf(*c.row, which);
    for (int i = 0; i < b.n; ++i) {
        ziltest::GuardBuf& g = *b.pl[i].buf;
        uint8_t* p = g.data();
        const size_t n = g.size();
        if (which == 0 && !c.pixels.empty()) {
            for (size_t k = 0; k < n; ++k) p[k] = c.pixels[(k + 131 * size_t(i)) % c.pixels.size()];
        } else {
            ziltest::FillRandom(p, n, Mix(seed * 8 + uint32_t(i)));
        }
        if (which == 0 && m.isFloat) {
            // Finite samples in [-1, 3): the float quantisers' range and somewhat beyond.
            for (size_t k = 0; k + 4 <= n; k += 4) {
                const float f = float(int32_t(p[k] | p[k + 1] << 8) - 16384) / 16384.0f;
                std::memcpy(p + k, &f, 4);
            }
        }
    }
}

void BuildImg(const Case& c, const Extents& e, int which, ImgBuf& out) {
    const Img& m = ImgOf(*c.row, which);
    const ImgParams& ip = ParamsOf(c, which);
    out.n = m.planes;
    if (m.planes == 0) return;
    const int64_t w = which == 0 ? e.srcW : e.dstW, h = which == 0 ? e.srcH : e.dstH;
    const int64_t elem = m.elem ? m.elem : 1;
    for (int i = 0; i < m.planes; ++i) {
        PlaneBuf& pb = out.pl[i];
        const Plane& pl = m.p[i];
        int64_t mx = 0, my = 0;
        if (m.foldMargin) mx = (w == 5), my = (h == 5);
        if (m.ext == ExtQuery) {
            pb.rows = e.workBytes ? 1 : 0, pb.rowBytes = e.workBytes;
        } else {
            pb.rowBytes = Cols(pl.x, w, c.bitOffset) * pl.bpp, pb.rows = Rows(pl.y, h);
            if (pb.rowBytes == 0 || pb.rows == 0) pb.rowBytes = pb.rows = 0;
            else pb.rowBytes += 2 * mx * elem, pb.rows += 2 * my;
        }
        // The step.
        int64_t step = 0;
        const int64_t B = pb.rowBytes;
        const int64_t pad = (ip.pad[i] / elem) * elem;
        uint8_t mode = ip.mode;
        if (which == 2) mode = mode % 2;  // work lines: dense or padded
        if (m.steps == StepDense) {
            step = DenseCols(pl.x, w) * pl.bpp;
            if (step < 0) step = 0;
        } else if ((m.steps == StepOne && i > 0) || (m.sharedStep && i == 2)) {
            step = out.steps[m.sharedStep ? 1 : 0];
        } else {
            switch (mode) {
                case ModeDense: step = B ? B : elem; break;
                case ModePadded: step = B + (pad ? pad : elem); break;
                case ModeZero: step = 0; break;
                case ModeNegative: step = -(B ? B : elem); break;
                case ModeNegPadded: step = -(B + (pad ? pad : elem)); break;
                case ModeShort: step = B - pad > elem ? B - pad : elem; break;
            }
        }
        pb.step = out.steps[i] = int32_t(step);
        const int64_t as = step < 0 ? -step : step;
        const size_t span = pb.rows ? size_t((pb.rows - 1) * as + B) + m.lead : 0;
        pb.buf = std::make_unique<ziltest::GuardBuf>(span, 0, ip.guardBefore ? ziltest::GuardBuf::Before
                                                                                 : ziltest::GuardBuf::After);
        uint8_t* first = pb.buf->data() + (pb.rows ? m.lead : 0) + (step < 0 && pb.rows ? (pb.rows - 1) * as : 0);
        pb.origin = first + my * step + mx * elem;
        out.arr[i] = pb.origin;
    }
    FillImg(c, which, out, ip.seed);
}

// Weights of the gray conversions, chosen by the alpha parameter: none (the
// defaults), a plain set, weights summing above one, negative ones.
template <class F>
const F* GrayWeights(int64_t pick) {
    static const F kSets[3][3] = {{F(0.25), F(0.5), F(0.25)}, {F(1), F(1.5), F(2)}, {F(-0.75), F(0.5), F(3)}};
    const int k = int(pick & 3);
    return k == 3 ? nullptr : kSets[k];
}

ZilStatus Call(const Case& c, const ImgBuf& src, ImgBuf& dst, ImgBuf& work) {
    const Row& row = *c.row;
    Slot a[16];
    const uint8_t* roles = reinterpret_cast<const uint8_t*>(row.roles);
    // Plane arrays are copied, so that a shared source's buffers are only read.
    uint8_t* arrs[3][4];
    int pairAt[2] = {0, 0}, pairStepAt[2] = {0, 0};  // next plane of a two-pointer image
    auto ptrOf = [&](int which, const ImgBuf& b) -> void* {
        const Img& m = ImgOf(row, which);
        if (m.steps == StepPair) {
            const int e = pairAt[which]++ & 1;
            return c.nullTarget == 8 * which + e ? nullptr : b.arr[e];
        }
        if (c.nullTarget == 8 * which + 7) return nullptr;
        if (m.planes <= 1) return b.arr[0];
        if (m.planes == 2) return c.nullTarget == 8 * which ? nullptr : b.arr[0];
        for (int e = 0; e < 4; ++e) arrs[which][e] = c.nullTarget == 8 * which + e ? nullptr : b.arr[e];
        return arrs[which];
    };
    auto stepOf = [&](int which, const ImgBuf& b, Slot& s) {
        if (ImgOf(row, which).steps == StepPair) s.i = b.steps[pairStepAt[which]++ & 1];
        else if (ImgOf(row, which).steps == StepArr && ImgOf(row, which).planes != 2) s.p = const_cast<int32_t*>(b.steps);
        else s.i = b.steps[0];
    };
    int reserved = 0;
    for (size_t k = 0; k < row.arity; ++k) {
        Slot& s = a[k];
        switch (roles[k]) {
            case 's': s.p = ptrOf(0, src); break;
            case 'S': stepOf(0, src, s); break;
            case 'd': case 'p': s.p = ptrOf(1, dst); break;
            case 'D': stepOf(1, dst, s); break;
            case 'b': s.p = ptrOf(2, work); break;
            case 'B': s.i = work.steps[0]; break;
            case 'z': s.sz = ZilSize{c.w, c.h}, s.szl = ZilSizeL{c.w, c.h}; break;
            case 'u': s.p = c.nullTarget == 1 ? nullptr : src.arr[1]; break;
            case 'U': s.i = src.steps[1]; break;
            case 'v': s.p = c.nullTarget == 9 ? nullptr : dst.arr[1]; break;
            case 'V': s.i = dst.steps[1]; break;
            case 'r': s.rc = c.rect; break;
            case 'g': s.i = c.grid; break;
            case 'a': s.i = c.alpha; break;
            case 'n': s.i = c.noise; break;
            case 't': s.i = c.dither; break;
            case 'l': s.i = c.levels; break;
            case 'o': s.i = c.bitOffset; break;
            case 'x': s.i = reserved++ ? c.reserved2 : c.reserved1; break;
            case 'h': s.i = c.threshold; break;
            case 'c': s.i = c.channels; break;
            case 'm': s.p = const_cast<float*>(kTwistMatrix); break;
            case 'e': s.i = c.alpha % 4 - 1; break;     // vMin -1..2
            case 'E': s.i = c.reserved1 & 3; break;     // vMax 0..3: at times not above vMin
            case 'k': s.p = const_cast<float*>(GrayWeights<float>(c.alpha)); break;
            case 'K': s.p = const_cast<double*>(GrayWeights<double>(c.alpha)); break;
            case 'y': {  // slice layout: whole image or values that do nothing (the slices
                         // read and write rows outside the region by contract)
                static const int64_t layouts[4] = {21, 0, 2, 17};
                s.i = layouts[c.grid & 3];
                break;
            }
            default: std::fprintf(stderr, "%s: unknown role '%c'\n", row.name, roles[k]); std::abort();
        }
    }
    return row.call(a);
}

bool SameContents(const ImgBuf& a, const ImgBuf& b) {
    if (a.n != b.n) return false;
    for (int i = 0; i < a.n; ++i) {
        const auto& x = *a.pl[i].buf;
        const auto& y = *b.pl[i].buf;
        if (x.size() != y.size() || std::memcmp(x.data(), y.data(), x.size()) != 0) return false;
    }
    return true;
}

namespace {

[[noreturn]] void Fail(const Case& c, const char* what, ZilStatus st, int plane = -1, size_t at = 0) {
    std::fprintf(stderr, "FUZZ CHECK FAILED: %s (status %d", what, int(st));
    if (plane >= 0) std::fprintf(stderr, ", plane %d, byte %zu", plane, at);
    std::fprintf(stderr, ")\n  %s\n", c.Describe().c_str());
    std::abort();
}

void Snapshot(ImgBuf& b) {
    for (int i = 0; i < b.n; ++i) b.pl[i].before = b.pl[i].buf->copy();
}
void Restore(ImgBuf& b) {
    for (int i = 0; i < b.n; ++i)
        if (!b.pl[i].before.empty()) std::memcpy(b.pl[i].buf->data(), b.pl[i].before.data(), b.pl[i].before.size());
}
// First byte of a plane that differs from its snapshot; SIZE_MAX if none. With
// `rowsOnly`, bytes within the rows the call may write are skipped.
size_t FirstChange(const PlaneBuf& p, bool skipRows) {
    const auto& g = *p.buf;
    const size_t n = g.size();
    std::vector<bool> inRow;
    if (skipRows && p.rows) {
        inRow.assign(n, false);
        const int64_t as = p.step < 0 ? -int64_t(p.step) : p.step;
        for (int64_t r = 0; r < p.rows; ++r) {
            const int64_t start = (p.step < 0 ? p.rows - 1 - r : r) * as;
            for (int64_t k = 0; k < p.rowBytes; ++k) inRow[size_t(start + k)] = true;
        }
    }
    for (size_t k = 0; k < n; ++k)
        if (g.data()[k] != p.before[k] && (inRow.empty() || !inRow[k])) return k;
    return SIZE_MAX;
}

bool KnownStatus(ZilStatus s) {
    switch (s) {
        case zilStatusOk: case zilStatusNegativeMaximum: case zilStatusOddSize: case zilStatusBadArgument:
        case zilStatusBadSize: case zilStatusNullPointer: case zilStatusBadStep: case zilStatusBadContext:
        case zilStatusBadChannelCount: case zilStatusBadRange: case zilStatusBadLevels: case zilStatusBadNoise:
        case zilStatusBadDitherType:
            return true;
    }
    return false;
}

}  // namespace

Tally gTally[kRowCount];

void RunOne(const Case& c) {
    const Extents e = ExtentsOf(c);
    ImgBuf src, dst, work;
    BuildImg(c, e, 0, src);
    BuildImg(c, e, 1, dst);
    BuildImg(c, e, 2, work);
    Snapshot(src);
    Snapshot(dst);

    const ZilStatus st = Call(c, src, dst, work);
    if (!KnownStatus(st)) Fail(c, "status outside the status table", st);
    if (c.row >= kRows && c.row < kRows + kRowCount) {
        Tally& t = gTally[c.row - kRows];
        (st == 0 ? t.ok : st > 0 ? t.warn : t.fail)++;
    }
    for (int i = 0; i < src.n; ++i) {
        const size_t at = FirstChange(src.pl[i], false);
        if (at != SIZE_MAX) Fail(c, "a source byte changed", st, i, at);
    }
    for (int i = 0; i < dst.n; ++i) {
        const size_t at = FirstChange(dst.pl[i], st >= 0);
        if (at != SIZE_MAX)
            Fail(c, st < 0 ? "a destination byte changed on a failure status"
                           : "a destination byte outside its rows changed", st, i, at);
    }
    if (c.nullTarget >= 0 && c.nullTarget < 16 && st != zilStatusNullPointer && st != zilStatusBadSize &&
        st != zilStatusBadRange)
        Fail(c, "a null pointer in a tested place did not give NullPointer (or BadSize, where sizes come first)", st);

    // Again, with the destination as before and other work-buffer contents: the
    // same status and the same bytes (no state, no read of unwritten work space).
    std::vector<std::vector<uint8_t>> after(dst.n);
    for (int i = 0; i < dst.n; ++i) after[i] = dst.pl[i].buf->copy();
    Restore(dst);
    FillImg(c, 2, work, c.work.seed * 977u + 13u);
    const ZilStatus st2 = Call(c, src, dst, work);
    if (st2 != st) Fail(c, "a second identical call gave another status", st2);
    for (int i = 0; i < dst.n; ++i)
        if (dst.pl[i].buf->copy() != after[i]) Fail(c, "a second identical call wrote other bytes", st2, i);
}

namespace {
bool HasRole(const Row& r, char role) { return std::strchr(r.roles, role) != nullptr; }
}  // namespace

std::vector<Case> ValidCases(int32_t w, int32_t h) {
    std::vector<Case> out;
    for (size_t i = 0; i < kRowCount; ++i) {
        Case c;
        c.row = &kRows[i];
        c.w = w, c.h = h;
        c.src.mode = c.dst.mode = c.work.mode = ModePadded;
        c.src.pad[0] = c.src.pad[1] = c.src.pad[2] = c.src.pad[3] = 12;
        c.dst.pad[0] = c.dst.pad[1] = c.dst.pad[2] = c.dst.pad[3] = 8;
        c.work.pad[0] = 16;
        c.src.seed = uint32_t(3 * i + 1), c.dst.seed = uint32_t(3 * i + 2), c.work.seed = uint32_t(3 * i + 3);
        c.alpha = 200, c.levels = 7, c.threshold = 100, c.bitOffset = 3, c.channels = 1;
        if (HasRole(*c.row, 'g')) {  // demosaicing: each grid, a region inside and one touching the edges
            for (int g = 0; g < 4; ++g) {
                c.grid = g;
                c.rect = {1, 2, w > 8 ? w - 7 : 1, h > 5 ? h - 4 : 1};
                out.push_back(c);
                c.rect = {0, 0, w, h};
                out.push_back(c);
            }
        } else if (HasRole(*c.row, 'l') || HasRole(*c.row, 'c')) {  // quantisers and their size query
            static const int64_t kDitherNoise[][2] = {{0, 0}, {4, 0}, {4, 40}, {1, 0}, {1, 25}, {2, 0}, {3, 60}};
            for (const auto& dn : kDitherNoise) {
                c.dither = dn[0], c.noise = dn[1];
                out.push_back(c);
            }
        } else if (HasRole(*c.row, 'o')) {  // one-bit: plain and diffused
            c.dither = 0;
            out.push_back(c);
            c.dither = 3;
            out.push_back(c);
        } else if (HasRole(*c.row, 'k') || HasRole(*c.row, 'K')) {  // gray weights: each set and none
            for (int k = 0; k < 4; ++k) {
                c.alpha = 200 + k;
                out.push_back(c);
            }
        } else {
            out.push_back(c);
        }
    }
    return out;
}

}  // namespace zilfuzz
