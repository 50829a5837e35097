// Reading and writing the tool's files: PNG (through libpng), binary PGM, PPM
// and PBM, and raw bytes. Every output goes to a temporary file beside the
// target that is renamed over it only once complete, so a failure never
// leaves a partial file behind.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "common.hpp"
#include "progress.hpp"

namespace zt {

enum class OutFormat { Png, Pgm, Ppm, Pbm };

// Reads a PNG, PGM (P5) or PPM (P6) of 8 or 16 bits. Palette and low-depth
// PNGs are expanded to 8 bits; an alpha channel is dropped (reported through
// `droppedAlpha`). Throws DataError naming the file and the problem.
Image ReadImage(const std::string& path, bool* droppedAlpha = nullptr, bool showProgress = false);

// Reads a whole file (raw YUV input).
std::vector<uint8_t> ReadFileBytes(const std::string& path);

// The format of an output path from its extension: .png, .ppm/.pnm, .pgm, .pbm.
// Throws UsageError for anything else.
OutFormat OutputFormatFor(const std::string& path);

// Checks that an image of `channels` can go to `path`, before any work is done.
void CheckImageOutput(const std::string& path, int channels);

// Writes an 8- or 16-bit image as PNG or PNM as the extension says.
void WriteImage(const std::string& path, const Image& img, int pngLevel = 6, bool showProgress = false);

// Writes a one-bit image given as rows of packed bits, the first pixel in the
// top bit of a byte and a set bit meaning bright. As .pbm (where 1 is black,
// so bits are inverted) or as a one-bit grey .png.
void WriteBitmap(const std::string& path, int width, int height, const std::vector<uint8_t>& bits,
                 size_t bitsStep);

// Writes raw bytes.
void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes);

// A temporary file beside `path`; Commit() renames it to `path`. Destroyed
// uncommitted, or on SIGINT/SIGTERM, it removes itself.
class AtomicFile {
public:
    explicit AtomicFile(const std::string& path);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;
    FILE* file() const { return file_; }
    void Write(const void* p, size_t n);
    void Commit();

private:
    std::string path_;
    std::string tmp_;
    FILE* file_ = nullptr;
};

}  // namespace zt
