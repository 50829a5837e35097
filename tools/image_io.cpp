#include "image_io.hpp"

#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <csetjmp>
#include <csignal>
#include <cstring>
#include <memory>

namespace zt {
namespace {

// ---------------------------------------------------------------------------
// Temporary files are registered here so that a signal handler can remove them.
char g_tmpPath[4096];

extern "C" void RemoveTmpAndExit(int sig) {
    if (g_tmpPath[0]) unlink(g_tmpPath);
    signal(sig, SIG_DFL);
    raise(sig);
}

std::string Errno() { return std::strerror(errno); }

struct FileCloser {
    void operator()(FILE* f) const { std::fclose(f); }
};
using FilePtr = std::unique_ptr<FILE, FileCloser>;

FilePtr OpenForReading(const std::string& path) {
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
// PNG reading. libpng reports errors by longjmp; the function that calls
// setjmp keeps everything it changes outside its own frame.
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
    std::vector<png_bytep>* rows;
    bool droppedAlpha;
    bool tooLarge;
    std::string* allocError;
    Progress* progress;
};

bool ReadPngInto(png_structp png, png_infop info, FILE* f, PngReadState* st) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_init_io(png, f);
    png_set_user_limits(png, 0x7fffffff, 0x7fffffff);
    png_read_info(png, info);
    const int colorType = png_get_color_type(png, info);
    const int bitDepth = png_get_bit_depth(png, info);
    if (colorType == PNG_COLOR_TYPE_PALETTE) png_set_palette_to_rgb(png);
    if (colorType == PNG_COLOR_TYPE_GRAY && bitDepth < 8) png_set_expand_gray_1_2_4_to_8(png);
    if (colorType & PNG_COLOR_MASK_ALPHA) {
        png_set_strip_alpha(png);
        st->droppedAlpha = true;
    }
    if (bitDepth == 16) png_set_swap(png);
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
    try {
        st->img->Allocate(int(w), int(h), ch, depth);
        st->rows->resize(h);
    } catch (const std::exception& e) {
        *st->allocError = e.what();
        return false;
    }
    for (png_uint_32 y = 0; y < h; ++y) (*st->rows)[y] = st->img->Row(int(y));
    if (st->progress) st->progress->SetTotal(int64_t(passes) * h);
    for (int pass = 0; pass < passes; ++pass)
        for (png_uint_32 y = 0; y < h; ++y) {
            png_read_row(png, (*st->rows)[y], nullptr);
            if (st->progress && (y & 63) == 0) st->progress->Update(int64_t(pass) * h + y);
        }
    png_read_end(png, nullptr);
    return true;
}

Image ReadPng(FILE* f, const std::string& path, bool* droppedAlpha, Progress* progress) {
    Image img;
    std::vector<png_bytep> rows;
    std::string allocError;
    PngErr err{};
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &err, PngError, PngWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info) {
        png_destroy_read_struct(&png, nullptr, nullptr);
        throw DataError(path + ": out of memory");
    }
    PngReadState st{&img, &rows, false, false, &allocError, progress};
    const bool ok = ReadPngInto(png, info, f, &st);
    png_destroy_read_struct(&png, &info, nullptr);
    if (!allocError.empty()) throw DataError(path + ": " + allocError);
    if (!ok) throw DataError(path + ": malformed or truncated PNG (" + err.msg + ")");
    if (droppedAlpha) *droppedAlpha = st.droppedAlpha;
    return img;
}

// ---------------------------------------------------------------------------
// Binary PNM: "P5" or "P6", whitespace and comments, width, height, maxval,
// one whitespace byte, then the samples (big-endian when maxval > 255).
struct PnmHeader {
    int magic = 0;
    long long width = 0, height = 0, maxval = 0;
    size_t dataOffset = 0;
};

bool ParsePnmHeader(const unsigned char* p, size_t n, PnmHeader* h, std::string* why) {
    size_t i = 2;
    long long* fields[3] = {&h->width, &h->height, &h->maxval};
    for (int k = 0; k < 3; ++k) {
        for (;;) {
            if (i >= n) {
                *why = "header ends early";
                return false;
            }
            if (p[i] == '#') {
                while (i < n && p[i] != '\n') ++i;
            } else if (std::isspace(p[i])) {
                ++i;
            } else {
                break;
            }
        }
        if (!std::isdigit(p[i])) {
            *why = "expected a number in the header";
            return false;
        }
        long long v = 0;
        while (i < n && std::isdigit(p[i])) {
            v = v * 10 + (p[i] - '0');
            if (v > 0x7fffffffLL) {
                *why = "a number in the header is too large";
                return false;
            }
            ++i;
        }
        *fields[k] = v;
    }
    if (i >= n || !std::isspace(p[i])) {
        *why = "header ends early";
        return false;
    }
    h->dataOffset = i + 1;
    if (h->width < 1 || h->height < 1) {
        *why = "zero width or height";
        return false;
    }
    if (h->maxval < 1 || h->maxval > 65535) {
        *why = "maximum value " + std::to_string(h->maxval) + " is outside 1..65535";
        return false;
    }
    return true;
}

Image ReadPnm(FILE* f, const std::string& path, int magic) {
    const char* kind = magic == 5 ? "PGM" : "PPM";
    unsigned char head[4096];
    const size_t n = std::fread(head, 1, sizeof head, f);
    PnmHeader h;
    std::string why;
    if (!ParsePnmHeader(head, n, &h, &why)) throw DataError(path + ": malformed " + kind + " header (" + why + ")");
    // Compare the claimed extent with the file's length before allocating for it.
    const uint64_t need = uint64_t(h.width) * uint64_t(h.height) * (magic == 5 ? 1u : 3u) * (h.maxval > 255 ? 2u : 1u);
    struct stat st;
    if (fstat(fileno(f), &st) == 0 && S_ISREG(st.st_mode)) {
        const uint64_t have = uint64_t(st.st_size) > h.dataOffset ? uint64_t(st.st_size) - h.dataOffset : 0;
        if (have < need)
            throw DataError(path + ": truncated " + kind + ": " + std::to_string(have) + " of " + std::to_string(need) +
                            " bytes of pixel data");
    }
    Image img;
    try {
        img.Allocate(int(h.width), int(h.height), magic == 5 ? 1 : 3, h.maxval > 255 ? 16 : 8);
    } catch (const DataError& e) {
        throw DataError(path + ": " + e.what());
    }
    if (std::fseek(f, long(h.dataOffset), SEEK_SET) != 0) throw DataError("cannot read " + path + ": " + Errno());
    const size_t got = std::fread(img.data.data(), 1, img.data.size(), f);
    if (got < img.data.size())
        throw DataError(path + ": truncated " + kind + ": " + std::to_string(got) + " of " +
                        std::to_string(img.data.size()) + " bytes of pixel data");
    if (img.depth == 16) {
        uint8_t* d = img.data.data();
        for (size_t i = 0; i + 1 < img.data.size(); i += 2) std::swap(d[i], d[i + 1]);
    }
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

bool WritePngFrom(png_structp png, png_infop info, FILE* f, const PngWriteState* st) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_init_io(png, f);
    png_set_compression_level(png, st->level);
    const int colorType = st->img && st->img->channels == 3 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_GRAY;
    png_set_IHDR(png, info, png_uint_32(st->width), png_uint_32(st->height), st->bitDepth, colorType,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    if (st->bitDepth == 16) png_set_swap(png);
    for (int y = 0; y < st->height; ++y) {
        const uint8_t* row = st->bits ? st->bits + size_t(y) * st->bitsStep : st->img->Row(y);
        png_write_row(png, const_cast<png_bytep>(row));
        if (st->progress && (y & 63) == 0) st->progress->Update(y);
    }
    png_write_end(png, nullptr);
    return true;
}

void WritePng(FILE* f, const std::string& path, const PngWriteState& st) {
    PngErr err{};
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &err, PngError, PngWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info) {
        png_destroy_write_struct(&png, nullptr);
        throw DataError("cannot write " + path + ": out of memory");
    }
    const bool ok = WritePngFrom(png, info, f, &st);
    png_destroy_write_struct(&png, &info);
    if (!ok) throw DataError("cannot write " + path + ": " + err.msg);
}

}  // namespace

// ---------------------------------------------------------------------------
Image ReadImage(const std::string& path, bool* droppedAlpha, bool showProgress) {
    if (droppedAlpha) *droppedAlpha = false;
    FilePtr f = OpenForReading(path);
    unsigned char sig[8];
    const size_t n = std::fread(sig, 1, sizeof sig, f.get());
    if (n == 0) {
        if (std::ferror(f.get())) throw DataError("cannot read " + path + ": " + Errno());
        throw DataError(path + ": empty file");
    }
    if (n == 8 && png_sig_cmp(sig, 0, 8) == 0) {
        std::rewind(f.get());
        Progress progress("reading " + path, 0);
        Image img = ReadPng(f.get(), path, droppedAlpha, showProgress ? &progress : nullptr);
        return img;
    }
    if (n >= 2 && sig[0] == 'P' && sig[1] >= '1' && sig[1] <= '7') {
        const int magic = sig[1] - '0';
        if (magic == 5 || magic == 6) {
            std::rewind(f.get());
            return ReadPnm(f.get(), path, magic);
        }
        if (magic == 2 || magic == 3) throw DataError(path + ": plain-text PNM (P" + std::to_string(magic) +
                                                      ") is not supported; use binary P5 or P6");
        throw DataError(path + ": P" + std::to_string(magic) + " images are not supported as input; use PNG, PGM or PPM");
    }
    if (n >= 4 && sig[0] == 0x89 && sig[1] == 'P' && sig[2] == 'N' && sig[3] == 'G')
        throw DataError(path + ": malformed or truncated PNG (bad signature)");
    throw DataError(path + ": not a PNG, PGM or PPM file");
}

std::vector<uint8_t> ReadFileBytes(const std::string& path) {
    FilePtr f = OpenForReading(path);
    std::vector<uint8_t> bytes;
    uint8_t buf[1 << 16];
    for (;;) {
        const size_t n = std::fread(buf, 1, sizeof buf, f.get());
        bytes.insert(bytes.end(), buf, buf + n);
        if (n < sizeof buf) break;
    }
    if (std::ferror(f.get())) throw DataError("cannot read " + path + ": " + Errno());
    return bytes;
}

OutFormat OutputFormatFor(const std::string& path) {
    const std::string ext = Extension(path);
    if (ext == "png") return OutFormat::Png;
    if (ext == "ppm" || ext == "pnm") return OutFormat::Ppm;
    if (ext == "pgm") return OutFormat::Pgm;
    if (ext == "pbm") return OutFormat::Pbm;
    throw UsageError("cannot tell the output format of '" + path + "' (use .png, .ppm, .pgm or .pbm)");
}

void CheckImageOutput(const std::string& path, int channels) {
    const OutFormat fmt = OutputFormatFor(path);
    if (fmt == OutFormat::Pbm) throw UsageError("'" + path + "': .pbm holds one-bit images only (use .png, .ppm or .pgm)");
    if (fmt == OutFormat::Pgm && channels != 1)
        throw UsageError("'" + path + "': .pgm holds grey images but the result is RGB (use .png or .ppm)");
    if (fmt == OutFormat::Ppm && channels != 3 && Extension(path) == "ppm")
        throw UsageError("'" + path + "': .ppm holds RGB images but the result is grey (use .png or .pgm)");
}

void WriteImage(const std::string& path, const Image& img, int pngLevel, bool showProgress) {
    CheckImageOutput(path, img.channels);
    AtomicFile out(path);
    if (OutputFormatFor(path) == OutFormat::Png) {
        Progress progress("writing " + path, img.height);
        PngWriteState st{&img, pngLevel, img.depth, nullptr, 0, img.width, img.height,
                         showProgress ? &progress : nullptr};
        WritePng(out.file(), path, st);
    } else {
        const std::string head = std::string(img.channels == 1 ? "P5" : "P6") + "\n" + std::to_string(img.width) +
                                 " " + std::to_string(img.height) + "\n" + (img.depth == 16 ? "65535" : "255") + "\n";
        out.Write(head.data(), head.size());
        if (img.depth == 8) {
            out.Write(img.data.data(), img.data.size());
        } else {
            std::vector<uint8_t> row(img.RowBytes());
            for (int y = 0; y < img.height; ++y) {
                const uint8_t* s = img.Row(y);
                for (size_t i = 0; i < row.size(); i += 2) {
                    row[i] = s[i + 1];
                    row[i + 1] = s[i];
                }
                out.Write(row.data(), row.size());
            }
        }
    }
    out.Commit();
}

void WriteBitmap(const std::string& path, int width, int height, const std::vector<uint8_t>& bits, size_t bitsStep) {
    const OutFormat fmt = OutputFormatFor(path);
    AtomicFile out(path);
    if (fmt == OutFormat::Png) {
        PngWriteState st{nullptr, 6, 1, bits.data(), bitsStep, width, height, nullptr};
        WritePng(out.file(), path, st);
    } else if (fmt == OutFormat::Pbm) {
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
    } else {
        throw UsageError("'" + path + "': a one-bit image goes to .pbm or .png");
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
    const size_t slash = path.find_last_of('/');
    const std::string dir = slash == std::string::npos ? "." : path.substr(0, slash == 0 ? 1 : slash);
    const std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
    if (base.empty()) throw UsageError("output '" + path + "' names a directory, not a file");
    struct stat st;
    if (stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode))
        throw DataError("cannot write " + path + ": it is a directory");
    std::string tmpl = dir + "/." + base + ".zilcc-XXXXXX";
    if (tmpl.size() >= sizeof g_tmpPath) throw DataError("cannot write " + path + ": path too long");
    std::vector<char> buf(tmpl.begin(), tmpl.end());
    buf.push_back(0);
    const int fd = mkstemp(buf.data());
    if (fd < 0) throw DataError("cannot write " + path + ": " + Errno());
    tmp_ = buf.data();
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(fd, 0666 & ~mask);
    std::snprintf(g_tmpPath, sizeof g_tmpPath, "%s", tmp_.c_str());
    signal(SIGINT, RemoveTmpAndExit);
    signal(SIGTERM, RemoveTmpAndExit);
    signal(SIGHUP, RemoveTmpAndExit);
    file_ = fdopen(fd, "wb");
    if (!file_) {
        close(fd);
        unlink(tmp_.c_str());
        g_tmpPath[0] = 0;
        throw DataError("cannot write " + path + ": " + Errno());
    }
}

AtomicFile::~AtomicFile() {
    if (file_) std::fclose(file_);
    if (!tmp_.empty()) unlink(tmp_.c_str());
    g_tmpPath[0] = 0;
}

void AtomicFile::Write(const void* p, size_t n) {
    if (n && std::fwrite(p, 1, n, file_) != n) throw DataError("cannot write " + path_ + ": " + Errno());
}

void AtomicFile::Commit() {
    FILE* f = file_;
    file_ = nullptr;
    if (std::fclose(f) != 0) throw DataError("cannot write " + path_ + ": " + Errno());
    if (std::rename(tmp_.c_str(), path_.c_str()) != 0) throw DataError("cannot write " + path_ + ": " + Errno());
    tmp_.clear();
    g_tmpPath[0] = 0;
}

}  // namespace zt
