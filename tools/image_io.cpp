#include "image_io.hpp"

#include <fcntl.h>
#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cmath>
#include <csetjmp>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>

namespace zt {
namespace {

// ---------------------------------------------------------------------------
// A named temporary file (only where the system offers no unnamed one) is
// registered here so that a signal handler can remove it.
char g_tmpPath[4096];

extern "C" void RemoveTmpAndExit(int sig) {
    if (g_tmpPath[0]) unlink(g_tmpPath);
    signal(sig, SIG_DFL);
    raise(sig);
}

std::string Errno() { return std::strerror(errno); }

bool HostIsLittleEndian() {
    const uint16_t one = 1;
    uint8_t b;
    std::memcpy(&b, &one, 1);
    return b == 1;
}

void SwapBytes(uint8_t* p, size_t n, size_t width) {
    for (size_t i = 0; i + width <= n; i += width) std::reverse(p + i, p + i + width);
}

struct FileCloser {
    void operator()(FILE* f) const {
        if (f != stdin) std::fclose(f);
    }
};
using FilePtr = std::unique_ptr<FILE, FileCloser>;

FilePtr OpenForReading(const std::string& path) {
    if (path == "-") return FilePtr(stdin);
    struct stat st;
    if (stat(path.c_str(), &st) != 0) throw DataError("cannot open " + path + ": " + Errno());
    if (S_ISDIR(st.st_mode)) throw DataError("cannot read " + path + ": it is a directory");
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) throw DataError("cannot open " + path + ": " + Errno());
    return FilePtr(f);
}

std::string Lower(std::string s) {
    for (char& c : s) c = char(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

std::string Extension(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    const size_t dot = path.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return "";
    return Lower(path.substr(dot + 1));
}

// ---------------------------------------------------------------------------
// Input as a stream: the signature bytes already read, then the file. Nothing
// seeks, so pipes and FIFOs read like files.
struct Source {
    FILE* f;
    const unsigned char* pre;
    size_t preN;
    size_t preI = 0;
    size_t pos = 0;  // bytes consumed
    int back = EOF;  // one byte put back

    int Get() {
        int c;
        if (back != EOF) {
            c = back;
            back = EOF;
        } else {
            c = preI < preN ? pre[preI++] : std::getc(f);
        }
        if (c != EOF) ++pos;
        return c;
    }
    void Unget(int c) {
        if (c == EOF) return;
        back = c;
        --pos;
    }
    size_t Read(uint8_t* p, size_t n) {
        size_t got = 0;
        while (got < n && (back != EOF || preI < preN)) p[got++] = uint8_t(Get());
        const size_t r = std::fread(p + got, 1, n - got, f);
        pos += r;
        return got + r;
    }
};

// Bytes the file still holds after what was consumed, if it is a regular file.
bool RemainingBytes(const Source& s, uint64_t* left) {
    struct stat st;
    if (fstat(fileno(s.f), &st) != 0 || !S_ISREG(st.st_mode)) return false;
    const off_t at = ftello(s.f);
    if (at < 0) return false;
    *left = uint64_t(st.st_size) > uint64_t(at) ? uint64_t(st.st_size) - uint64_t(at) : 0;
    *left += s.preN - s.preI + (s.back != EOF ? 1 : 0);
    return true;
}

// Reads an image's samples, growing `img.data` (reserved) as they arrive.
void ReadSamples(Source& s, Image& img, const std::string& name, const char* kind) {
    const size_t need = img.TotalBytes();
    uint64_t left = 0;
    if (RemainingBytes(s, &left) && left < need)
        throw DataError(name + ": truncated " + kind + ": " + std::to_string(left) + " of " + std::to_string(need) +
                        " bytes of pixel data");
    size_t got = 0;
    while (got < need) {
        const size_t chunk = std::min(need - got, size_t(1) << 20);
        img.data.resize(got + chunk);
        const size_t n = s.Read(img.data.data() + got, chunk);
        got += n;
        if (n < chunk) break;
    }
    if (std::ferror(s.f)) throw DataError("cannot read " + name + ": " + Errno());
    if (got < need)
        throw DataError(name + ": truncated " + kind + ": " + std::to_string(got) + " of " + std::to_string(need) +
                        " bytes of pixel data");
}

// ---------------------------------------------------------------------------
// PNG reading. libpng reports errors by longjmp; the function that calls
// setjmp keeps everything it changes outside its own frame. Rows are read
// straight into the image, which grows row by row, so a small file claiming a
// huge extent fails at its first missing row without touching memory first.
constexpr png_uint_32 kPngMaxExtent = png_uint_32(1) << 24;

struct PngErr {
    char msg[256];
};

void PngError(png_structp png, png_const_charp m) {
    auto* e = static_cast<PngErr*>(png_get_error_ptr(png));
    std::snprintf(e->msg, sizeof e->msg, "%s", m);
    png_longjmp(png, 1);
}
void PngWarning(png_structp, png_const_charp) {}

struct PngReadState {
    Image* img;
    bool droppedAlpha;
    std::string* allocError;
    Progress* progress;
};

bool ReadPngInto(png_structp png, png_infop info, FILE* f, PngReadState* st) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_init_io(png, f);
    png_set_sig_bytes(png, 8);
    png_set_user_limits(png, kPngMaxExtent, kPngMaxExtent);
    png_read_info(png, info);
    const int colorType = png_get_color_type(png, info);
    const int bitDepth = png_get_bit_depth(png, info);
    if (colorType == PNG_COLOR_TYPE_PALETTE) png_set_palette_to_rgb(png);
    if (colorType == PNG_COLOR_TYPE_GRAY && bitDepth < 8) png_set_expand_gray_1_2_4_to_8(png);
    if (colorType & PNG_COLOR_MASK_ALPHA) {
        png_set_strip_alpha(png);
        st->droppedAlpha = true;
    }
    if (bitDepth == 16 && HostIsLittleEndian()) png_set_swap(png);
    const int passes = png_set_interlace_handling(png);
    png_read_update_info(png, info);
    const png_uint_32 w = png_get_image_width(png, info);
    const png_uint_32 h = png_get_image_height(png, info);
    const int ch = png_get_channels(png, info);
    const int depth = png_get_bit_depth(png, info);
    if ((ch != 1 && ch != 3) || (depth != 8 && depth != 16)) {
        std::snprintf(static_cast<PngErr*>(png_get_error_ptr(png))->msg, sizeof(PngErr::msg),
                      "unsupported PNG layout (%d channels of %d bits)", ch, depth);
        return false;
    }
    Image& img = *st->img;
    try {
        img.Reserve(int(w), int(h), ch, depth);
    } catch (const std::exception& e) {
        *st->allocError = e.what();
        return false;
    }
    const size_t rowBytes = img.RowBytes();
    if (st->progress) st->progress->SetTotal(int64_t(passes) * h);
    for (int pass = 0; pass < passes; ++pass)
        for (png_uint_32 y = 0; y < h; ++y) {
            if (pass == 0) img.data.resize(size_t(y + 1) * rowBytes);
            png_read_row(png, img.data.data() + size_t(y) * rowBytes, nullptr);
            if (st->progress && (y & 63) == 0) st->progress->Update(int64_t(pass) * h + y);
        }
    png_read_end(png, nullptr);
    return true;
}

Image ReadPng(FILE* f, const std::string& name, bool* droppedAlpha, Progress* progress) {
    Image img;
    std::string allocError;
    PngErr err{};
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &err, PngError, PngWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info) {
        png_destroy_read_struct(&png, nullptr, nullptr);
        throw DataError(name + ": out of memory");
    }
    PngReadState st{&img, false, &allocError, progress};
    const bool ok = ReadPngInto(png, info, f, &st);
    png_destroy_read_struct(&png, &info, nullptr);
    if (!allocError.empty()) throw DataError(name + ": " + allocError);
    if (!ok) throw DataError(name + ": malformed or truncated PNG (" + err.msg + ")");
    if (droppedAlpha) *droppedAlpha = st.droppedAlpha;
    return img;
}

// ---------------------------------------------------------------------------
// Binary PNM: "P5" or "P6", whitespace and comments (of any length), width,
// height, maxval, one whitespace byte, then the samples (big-endian when
// maxval > 255).
bool ReadPnmNumber(Source& s, long long* v, std::string* why) {
    int c = s.Get();
    for (;;) {
        if (c == EOF) {
            *why = "header ends early";
            return false;
        }
        if (c == '#') {
            while (c != '\n' && c != '\r' && c != EOF) c = s.Get();
        } else if (std::isspace(c)) {
            c = s.Get();
        } else {
            break;
        }
    }
    if (!std::isdigit(c)) {
        *why = "expected a number in the header";
        return false;
    }
    long long x = 0;
    for (; c != EOF && std::isdigit(c); c = s.Get()) {
        x = x * 10 + (c - '0');
        if (x > 0x7fffffffLL) {
            *why = "a number in the header is too large";
            return false;
        }
    }
    s.Unget(c);
    *v = x;
    return true;
}

Image ReadPnm(Source& s, const std::string& name, int magic) {
    const char* kind = magic == 5 ? "PGM" : "PPM";
    long long fields[3] = {0, 0, 0};
    std::string why;
    bool ok = true;
    for (long long& f : fields) ok = ok && ReadPnmNumber(s, &f, &why);
    if (ok && !std::isspace(s.Get())) ok = false, why = "no whitespace after the maximum value";
    if (ok && (fields[0] < 1 || fields[1] < 1)) ok = false, why = "zero width or height";
    if (ok && (fields[2] < 1 || fields[2] > 65535))
        ok = false, why = "maximum value " + std::to_string(fields[2]) + " is outside 1..65535";
    if (!ok) throw DataError(name + ": malformed " + kind + " header (" + why + ")");
    const int maxval = int(fields[2]);
    Image img;
    try {
        img.Reserve(int(fields[0]), int(fields[1]), magic == 5 ? 1 : 3, maxval > 255 ? 16 : 8);
    } catch (const DataError& e) {
        throw DataError(name + ": " + e.what());
    }
    ReadSamples(s, img, name, kind);
    if (img.depth == 16 && HostIsLittleEndian()) SwapBytes(img.data.data(), img.data.size(), 2);
    const size_t n = img.data.size() / img.SampleBytes();
    for (size_t i = 0; i < n; ++i) {
        const int v = img.depth == 16 ? reinterpret_cast<const uint16_t*>(img.data.data())[i] : img.data[i];
        if (v > maxval) {
            const size_t px = i / size_t(img.channels);
            throw DataError(name + ": sample " + std::to_string(v) + " at (" + std::to_string(px % size_t(img.width)) +
                            "," + std::to_string(px / size_t(img.width)) + ") is above the maximum value " +
                            std::to_string(maxval));
        }
    }
    if (maxval != (img.depth == 16 ? 65535 : 255)) img.maxval = maxval;
    return img;
}

// Scales samples of a maximum value below the full range to the full range,
// rounding to nearest (for 2^n - 1 this repeats the top bits, as PNG does).
void ExpandRange(Image& img) {
    if (!img.maxval) return;
    const uint32_t m = uint32_t(img.maxval), full = img.depth == 16 ? 65535u : 255u;
    if (img.depth == 16) {
        auto* p = reinterpret_cast<uint16_t*>(img.data.data());
        for (size_t i = 0; i < img.data.size() / 2; ++i) p[i] = uint16_t((p[i] * full + m / 2) / m);
    } else {
        for (uint8_t& v : img.data) v = uint8_t((v * full + m / 2) / m);
    }
    img.maxval = 0;
}

// ---------------------------------------------------------------------------
// PFM: "PF" (RGB) or "Pf" (grey), whitespace, width, height, a scale whose
// sign gives the byte order (negative: little endian), one whitespace byte,
// then 32-bit floats, rows from the bottom of the image to the top.
bool ReadPfmToken(Source& s, std::string* tok) {
    int c = s.Get();
    while (c != EOF && std::isspace(c)) c = s.Get();
    tok->clear();
    while (c != EOF && !std::isspace(c) && tok->size() < 64) {
        tok->push_back(char(c));
        c = s.Get();
    }
    return !tok->empty() && c != EOF && std::isspace(c);
}

Image ReadPfm(Source& s, const std::string& name, bool grey) {
    std::string tok[3];
    long long extent[2] = {0, 0};
    double scale = 0;
    std::string why;
    for (int k = 0; k < 3 && why.empty(); ++k)
        if (!ReadPfmToken(s, &tok[k])) why = "header ends early or a field is too long";
    for (int k = 0; k < 2 && why.empty(); ++k) {
        char* end = nullptr;
        errno = 0;
        extent[k] = std::strtoll(tok[k].c_str(), &end, 10);
        if (*end || errno || !std::isdigit(static_cast<unsigned char>(tok[k][0])) || extent[k] < 1 ||
            extent[k] > INT_MAX)
            why = std::string(k ? "height" : "width") + " '" + tok[k] + "' is not a number from 1 to 2147483647";
    }
    if (why.empty()) {
        char* end = nullptr;
        scale = std::strtod(tok[2].c_str(), &end);
        if (*end || !std::isfinite(scale) || scale == 0) why = "scale '" + tok[2] + "' is not a finite non-zero number";
    }
    if (!why.empty()) throw DataError(name + ": malformed PFM header (" + why + ")");
    Image img;
    try {
        img.Reserve(int(extent[0]), int(extent[1]), grey ? 1 : 3, 32);
    } catch (const DataError& e) {
        throw DataError(name + ": " + e.what());
    }
    ReadSamples(s, img, name, "PFM");
    if ((scale < 0) != HostIsLittleEndian()) SwapBytes(img.data.data(), img.data.size(), 4);
    const size_t rb = img.RowBytes();
    for (int y = 0, z = img.height - 1; y < z; ++y, --z) std::swap_ranges(img.Row(y), img.Row(y) + rb, img.Row(z));
    return img;
}

// ---------------------------------------------------------------------------
// PNG writing.
struct PngWriteState {
    const Image* img;
    int level;
    int bitDepth;            // 1, 8 or 16
    const uint8_t* bits;     // rows of a one-bit image, or null
    size_t bitsStep;
    int width, height;
    Progress* progress;
};

int SignificantBits(int maxval) {
    int b = 0;
    while (maxval >> b) ++b;
    return b;
}

bool WritePngFrom(png_structp png, png_infop info, FILE* f, const PngWriteState* st, std::vector<uint8_t>* row) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_init_io(png, f);
    png_set_compression_level(png, st->level);
    const Image* img = st->img;
    const int colorType = img && img->channels == 3 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_GRAY;
    png_set_IHDR(png, info, png_uint_32(st->width), png_uint_32(st->height), st->bitDepth, colorType,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    const uint32_t m = img && img->maxval ? uint32_t(img->maxval) : 0;
    if (m) {  // samples scaled from 0..m to the full range: record their true precision
        png_color_8 sbit{};
        const png_byte b = png_byte(SignificantBits(int(m)));
        sbit.red = sbit.green = sbit.blue = sbit.gray = b;
        png_set_sBIT(png, info, &sbit);
    }
    png_write_info(png, info);
    if (st->bitDepth == 16 && HostIsLittleEndian()) png_set_swap(png);
    for (int y = 0; y < st->height; ++y) {
        const uint8_t* r = st->bits ? st->bits + size_t(y) * st->bitsStep : img->Row(y);
        if (m) {
            const uint32_t full = img->depth == 16 ? 65535u : 255u;
            const size_t n = size_t(img->width) * size_t(img->channels);
            for (size_t i = 0; i < n; ++i) {
                const uint32_t v = std::min(img->depth == 16 ? uint32_t(img->Row16(y)[i]) : uint32_t(img->Row(y)[i]), m);
                const uint32_t s = (v * full + m / 2) / m;
                if (img->depth == 16) {
                    const uint16_t s16 = uint16_t(s);
                    std::memcpy(row->data() + 2 * i, &s16, 2);
                } else {
                    (*row)[i] = uint8_t(s);
                }
            }
            r = row->data();
        }
        png_write_row(png, const_cast<png_bytep>(r));
        if (st->progress && (y & 63) == 0) st->progress->Update(y);
    }
    png_write_end(png, nullptr);
    return true;
}

void WritePng(FILE* f, const std::string& name, const PngWriteState& st) {
    std::vector<uint8_t> row(st.img && st.img->maxval ? st.img->RowBytes() : 0);
    PngErr err{};
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &err, PngError, PngWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info) {
        png_destroy_write_struct(&png, nullptr);
        throw DataError("cannot write " + name + ": out of memory");
    }
    const bool ok = WritePngFrom(png, info, f, &st, &row);
    png_destroy_write_struct(&png, &info);
    if (!ok) throw DataError("cannot write " + name + ": " + err.msg);
}

// PGM/PPM with the image's maximum value; samples above it (which an
// interpolation may produce) are clipped to it.
void WritePnm(AtomicFile& out, const Image& img) {
    const uint32_t m = uint32_t(img.MaxValue());
    const std::string head = std::string(img.channels == 1 ? "P5" : "P6") + "\n" + std::to_string(img.width) + " " +
                             std::to_string(img.height) + "\n" + std::to_string(m) + "\n";
    out.Write(head.data(), head.size());
    std::vector<uint8_t> row(img.RowBytes());
    const size_t n = size_t(img.width) * size_t(img.channels);
    for (int y = 0; y < img.height; ++y) {
        for (size_t i = 0; i < n; ++i) {
            if (img.depth == 16) {
                const uint32_t v = std::min(uint32_t(img.Row16(y)[i]), m);
                row[2 * i] = uint8_t(v >> 8);
                row[2 * i + 1] = uint8_t(v);
            } else {
                row[i] = uint8_t(std::min(uint32_t(img.Row(y)[i]), m));
            }
        }
        out.Write(row.data(), row.size());
    }
}

// PFM in the machine's byte order; 8- and 16-bit samples as fractions of the
// maximum value.
void WritePfm(AtomicFile& out, const Image& img) {
    const std::string head = std::string(img.channels == 1 ? "Pf" : "PF") + "\n" + std::to_string(img.width) + " " +
                             std::to_string(img.height) + "\n" + (HostIsLittleEndian() ? "-1.0" : "1.0") + "\n";
    out.Write(head.data(), head.size());
    const size_t n = size_t(img.width) * size_t(img.channels);
    std::vector<float> row(n);
    const float m = float(img.MaxValue());
    for (int y = img.height - 1; y >= 0; --y) {
        for (size_t i = 0; i < n; ++i)
            row[i] = img.depth == 32 ? img.RowF(y)[i] : float(img.depth == 16 ? img.Row16(y)[i] : img.Row(y)[i]) / m;
        out.Write(row.data(), n * sizeof(float));
    }
}

const char* const kImageExtensions[] = {"png", "ppm", "pgm", "pbm", "pfm", "pnm", "jpg", "jpeg",
                                        "tif", "tiff", "bmp", "gif", "webp"};

// Follows symbolic links (also one whose target does not exist yet) to the
// path that is finally written.
std::string ResolveLinks(std::string p) {
    for (int hops = 0; hops < 40; ++hops) {
        struct stat st;
        if (lstat(p.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) return p;
        std::vector<char> buf(size_t(st.st_size > 0 ? st.st_size : 255) + 2);
        const ssize_t n = readlink(p.c_str(), buf.data(), buf.size() - 1);
        if (n < 0) return p;
        std::string t(buf.data(), size_t(n));
        if (t.empty()) return p;
        if (t[0] != '/') {
            const size_t slash = p.find_last_of('/');
            if (slash != std::string::npos) t = p.substr(0, slash + 1) + t;
        }
        p = t;
    }
    throw DataError("cannot write " + p + ": too many levels of symbolic links");
}

std::string DirOf(const std::string& p) {
    const size_t slash = p.find_last_of('/');
    return slash == std::string::npos ? "." : p.substr(0, slash == 0 ? 1 : slash);
}

}  // namespace

// ---------------------------------------------------------------------------
std::string DisplayName(const std::string& path, bool output) {
    return path == "-" ? (output ? "standard output" : "standard input") : path;
}

Image ReadImage(const std::string& path, bool* droppedAlpha, bool showProgress, bool keepRange) {
    if (droppedAlpha) *droppedAlpha = false;
    const std::string name = DisplayName(path);
    FilePtr f = OpenForReading(path);
    unsigned char sig[8];
    const size_t n = std::fread(sig, 1, sizeof sig, f.get());
    if (n == 0) {
        if (std::ferror(f.get())) throw DataError("cannot read " + name + ": " + Errno());
        throw DataError(name + ": empty file");
    }
    if (n == 8 && png_sig_cmp(sig, 0, 8) == 0) {
        Progress progress("reading " + name, 0);
        return ReadPng(f.get(), name, droppedAlpha, showProgress ? &progress : nullptr);
    }
    Source src{f.get(), sig, n};
    if (n >= 3 && sig[0] == 'P' && (sig[1] == 'F' || sig[1] == 'f') && std::isspace(sig[2])) {
        src.preI = 2;
        return ReadPfm(src, name, sig[1] == 'f');
    }
    if (n >= 2 && sig[0] == 'P' && sig[1] >= '1' && sig[1] <= '7') {
        const int magic = sig[1] - '0';
        if (magic == 5 || magic == 6) {
            src.preI = 2;
            Image img = ReadPnm(src, name, magic);
            if (!keepRange) ExpandRange(img);
            return img;
        }
        if (magic == 2 || magic == 3) throw DataError(name + ": plain-text PNM (P" + std::to_string(magic) +
                                                      ") is not supported; use binary P5 or P6");
        throw DataError(name + ": P" + std::to_string(magic) + " images are not supported as input; use PNG, PGM, PPM or PFM");
    }
    if (n >= 2 && sig[0] == 'P' && (sig[1] == 'F' || sig[1] == 'f'))
        throw DataError(name + ": malformed PFM header (no whitespace after the magic)");
    if (n >= 4 && sig[0] == 0x89 && sig[1] == 'P' && sig[2] == 'N' && sig[3] == 'G')
        throw DataError(name + ": malformed or truncated PNG (bad signature)");
    throw DataError(name + ": not a PNG, PGM, PPM or PFM file");
}

std::vector<uint8_t> ReadFileBytes(const std::string& path, size_t limit) {
    FilePtr f = OpenForReading(path);
    std::vector<uint8_t> bytes;
    uint8_t buf[1 << 16];
    const size_t cap = limit == SIZE_MAX ? SIZE_MAX : limit + 1;
    while (bytes.size() < cap) {
        const size_t want = std::min(sizeof buf, cap - bytes.size());
        const size_t n = std::fread(buf, 1, want, f.get());
        bytes.insert(bytes.end(), buf, buf + n);
        if (n < want) break;
    }
    if (std::ferror(f.get())) throw DataError("cannot read " + DisplayName(path) + ": " + Errno());
    return bytes;
}

OutFormat OutputFormatFor(const std::string& path) {
    if (path == "-") return OutFormat::Pnm;
    const std::string ext = Extension(path);
    if (ext == "png") return OutFormat::Png;
    if (ext == "ppm") return OutFormat::Ppm;
    if (ext == "pnm") return OutFormat::Pnm;
    if (ext == "pgm") return OutFormat::Pgm;
    if (ext == "pbm") return OutFormat::Pbm;
    if (ext == "pfm") return OutFormat::Pfm;
    throw UsageError("cannot tell the output format of '" + path +
                     "' (use .png, .ppm, .pgm, .pbm, .pfm, .pnm, or - for PNM on standard output)");
}

void CheckImageOutput(const std::string& path, int channels, int depth) {
    const OutFormat fmt = OutputFormatFor(path);
    if (fmt == OutFormat::Pbm) throw UsageError("'" + path + "': .pbm holds one-bit images only (use .png, .ppm or .pgm)");
    if (fmt == OutFormat::Pgm && channels != 1)
        throw UsageError("'" + path + "': .pgm holds grey images but the result is RGB (use .png or .ppm)");
    if (fmt == OutFormat::Ppm && channels != 3)
        throw UsageError("'" + path + "': .ppm holds RGB images but the result is grey (use .png or .pgm)");
    if (depth == 32 && fmt != OutFormat::Pfm && fmt != OutFormat::Pnm)
        throw UsageError("'" + path + "': the result is a float image; write it to .pfm");
}

void WarnRawOutputName(const std::string& path, const std::string& what) {
    const std::string ext = Extension(path);
    for (const char* e : kImageExtensions)
        if (ext == e)
            std::fprintf(stderr, "zilcc: warning: %s is named like a .%s image but will hold %s\n", path.c_str(),
                         ext.c_str(), what.c_str());
}

void WriteImage(const std::string& path, const Image& img, int pngLevel, bool showProgress) {
    CheckImageOutput(path, img.channels, img.depth);
    const OutFormat fmt = OutputFormatFor(path);
    AtomicFile out(path);
    if (fmt == OutFormat::Png) {
        Progress progress("writing " + path, img.height);
        PngWriteState st{&img, pngLevel, img.depth, nullptr, 0, img.width, img.height,
                         showProgress ? &progress : nullptr};
        WritePng(out.file(), path, st);
    } else if (fmt == OutFormat::Pfm || img.depth == 32) {
        WritePfm(out, img);
    } else {
        WritePnm(out, img);
    }
    out.Commit();
}

void WriteBitmap(const std::string& path, int width, int height, const std::vector<uint8_t>& bits, size_t bitsStep) {
    const OutFormat fmt = OutputFormatFor(path);
    if (fmt != OutFormat::Png && fmt != OutFormat::Pbm && fmt != OutFormat::Pnm)
        throw UsageError("'" + path + "': a one-bit image goes to .pbm, .pnm or .png");
    AtomicFile out(path);
    if (fmt == OutFormat::Png) {
        PngWriteState st{nullptr, 6, 1, bits.data(), bitsStep, width, height, nullptr};
        WritePng(out.file(), path, st);
    } else {
        const std::string head = "P4\n" + std::to_string(width) + " " + std::to_string(height) + "\n";
        out.Write(head.data(), head.size());
        const size_t rowBytes = (size_t(width) + 7) / 8;
        std::vector<uint8_t> row(rowBytes);
        const int spare = int(rowBytes * 8) - width;
        const uint8_t lastMask = uint8_t(0xff << spare);
        for (int y = 0; y < height; ++y) {
            const uint8_t* s = bits.data() + size_t(y) * bitsStep;
            for (size_t i = 0; i < rowBytes; ++i) row[i] = uint8_t(~s[i]);
            row[rowBytes - 1] &= lastMask;
            out.Write(row.data(), rowBytes);
        }
    }
    out.Commit();
}

void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
    AtomicFile out(path);
    out.Write(bytes.data(), bytes.size());
    out.Commit();
}

// ---------------------------------------------------------------------------
AtomicFile::AtomicFile(const std::string& path) : path_(path) {
    if (path == "-") {
        kind_ = Kind::Stream;
        file_ = stdout;
        return;
    }
    if (path.empty() || path.back() == '/') throw UsageError("output '" + path + "' names a directory, not a file");
    target_ = ResolveLinks(path);
    struct stat st;
    if (stat(target_.c_str(), &st) == 0) {
        if (S_ISDIR(st.st_mode)) throw DataError("cannot write " + path + ": it is a directory");
        if (!S_ISREG(st.st_mode)) {  // a device, FIFO or socket: write through it
            kind_ = Kind::Stream;
            fd_ = open(target_.c_str(), O_WRONLY | O_CLOEXEC);
            if (fd_ < 0) throw DataError("cannot write " + path + ": " + Errno());
            file_ = fdopen(fd_, "wb");
            if (!file_) {
                close(fd_);
                throw DataError("cannot write " + path + ": " + Errno());
            }
            return;
        }
        mode_ = int(st.st_mode & 0777);
        uid_ = int(st.st_uid);
        gid_ = int(st.st_gid);
        kind_ = st.st_nlink > 1 ? Kind::Rewrite : Kind::Replace;
    } else {
        const mode_t mask = umask(0);
        umask(mask);
        mode_ = int(0666 & ~mask);
        kind_ = Kind::Replace;
    }
    const std::string dir = DirOf(target_);
#ifdef O_TMPFILE
    fd_ = open(dir.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (fd_ < 0 && errno != EISDIR && errno != EOPNOTSUPP && errno != EINVAL)
        throw DataError("cannot write " + path + ": " + Errno());
#endif
    if (fd_ < 0) {
        const size_t slash = target_.find_last_of('/');
        const std::string base = slash == std::string::npos ? target_ : target_.substr(slash + 1);
        std::string tmpl = dir + "/." + base + ".zilcc-XXXXXX";
        if (tmpl.size() >= sizeof g_tmpPath) throw DataError("cannot write " + path + ": path too long");
        std::vector<char> buf(tmpl.begin(), tmpl.end());
        buf.push_back(0);
        fd_ = mkstemp(buf.data());
        if (fd_ < 0) throw DataError("cannot write " + path + ": " + Errno());
        tmp_ = buf.data();
        std::snprintf(g_tmpPath, sizeof g_tmpPath, "%s", tmp_.c_str());
        signal(SIGINT, RemoveTmpAndExit);
        signal(SIGTERM, RemoveTmpAndExit);
        signal(SIGHUP, RemoveTmpAndExit);
    }
    file_ = fdopen(fd_, kind_ == Kind::Rewrite ? "w+b" : "wb");
    if (!file_) {
        const std::string e = Errno();
        close(fd_);
        if (!tmp_.empty()) unlink(tmp_.c_str());
        tmp_.clear();
        g_tmpPath[0] = 0;
        throw DataError("cannot write " + path + ": " + e);
    }
}

AtomicFile::~AtomicFile() {
    if (file_ && file_ != stdout) std::fclose(file_);
    if (!tmp_.empty()) unlink(tmp_.c_str());
    g_tmpPath[0] = 0;
}

void AtomicFile::Write(const void* p, size_t n) {
    if (n && std::fwrite(p, 1, n, file_) != n) throw DataError("cannot write " + DisplayName(path_, true) + ": " + Errno());
}

void AtomicFile::Commit() {
    const std::string fail = "cannot write " + DisplayName(path_, true) + ": ";
    if (std::fflush(file_) != 0 || std::ferror(file_)) throw DataError(fail + Errno());
    if (kind_ == Kind::Stream) {
        FILE* f = file_;
        file_ = nullptr;
        if (f != stdout && std::fclose(f) != 0) throw DataError(fail + Errno());
        return;
    }
    if (kind_ == Kind::Rewrite) {
        // Other names share this file: rewrite its contents in place.
        std::rewind(file_);
        FILE* t = std::fopen(target_.c_str(), "r+b");
        if (!t || ftruncate(fileno(t), 0) != 0) {
            const std::string e = Errno();
            if (t) std::fclose(t);
            throw DataError(fail + e);
        }
        uint8_t buf[1 << 16];
        size_t n;
        bool ok = true;
        while (ok && (n = std::fread(buf, 1, sizeof buf, file_)) > 0) ok = std::fwrite(buf, 1, n, t) == n;
        ok = ok && !std::ferror(file_);
        if (std::fclose(t) != 0) ok = false;
        if (!ok) throw DataError(fail + Errno());
        return;
    }
    fchmod(fd_, mode_t(mode_));
    if (uid_ >= 0 && fchown(fd_, uid_t(uid_), gid_t(gid_)) != 0) {
        // Only the owner's group may be lost to a user who cannot give it away.
    }
    if (tmp_.empty()) {
        // Give the unnamed file a name beside the target, then move it over.
        const std::string link = "/proc/self/fd/" + std::to_string(fd_);
        std::string name;
        for (int attempt = 0;; ++attempt) {
            name = DirOf(target_) + "/.zilcc-" + std::to_string(getpid()) + "-" +
                   std::to_string(unsigned(std::rand()) ^ unsigned(std::time(nullptr)) ^ unsigned(attempt * 7919));
            if (linkat(AT_FDCWD, link.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0 ||
                linkat(fd_, "", AT_FDCWD, name.c_str(), AT_EMPTY_PATH) == 0)
                break;
            if (errno != EEXIST || attempt > 100) throw DataError(fail + Errno());
        }
        tmp_ = name;
        std::snprintf(g_tmpPath, sizeof g_tmpPath, "%s", tmp_.c_str());
    }
    FILE* f = file_;
    file_ = nullptr;
    if (std::fclose(f) != 0) throw DataError(fail + Errno());
    if (std::rename(tmp_.c_str(), target_.c_str()) != 0) throw DataError(fail + Errno());
    tmp_.clear();
    g_tmpPath[0] = 0;
}

}  // namespace zt
