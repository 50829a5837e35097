// Reading and writing the tool's files: PNG (through libpng), binary PGM, PPM
// and PBM, PFM (float), and raw bytes. "-" names standard input or output;
// pipes, FIFOs and devices work for every format, as input is read as a stream.
//
// Output to a regular file (or through a symbolic link to one) is written to
// a temporary file beside it that replaces it only once complete, so a failure
// never leaves a partial file; the new file keeps the old one's mode. A file
// with other hard links is rewritten in place once the result is complete.
// Devices, FIFOs and standard output are written straight through.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "common.hpp"
#include "progress.hpp"

namespace zt {

// Pnm: ".pnm" or "-": PGM, PPM, PBM or PFM, as the image's kind says.
enum class OutFormat { Png, Pgm, Ppm, Pbm, Pfm, Pnm };

// Reads a PNG, PGM (P5), PPM (P6) of 8 or 16 bits or a PFM (PF colour, Pf
// grey; depth 32). Palette and low-depth PNGs are expanded to 8 bits; an alpha
// channel is dropped (reported through `droppedAlpha`). A PNM whose maximum
// value is not 255 or 65535 is scaled to the full range of its depth unless
// `keepRange`, in which case the samples are kept and Image::maxval says the
// range. Throws DataError naming the file and the problem.
Image ReadImage(const std::string& path, bool* droppedAlpha = nullptr, bool showProgress = false,
                bool keepRange = false);

// Reads a whole file (raw input). With `limit`, reads at most limit + 1 bytes,
// so that a longer input (or an endless one) is seen without reading it all.
std::vector<uint8_t> ReadFileBytes(const std::string& path, size_t limit = SIZE_MAX);

// The name of a path in messages: "standard input/output" for "-".
std::string DisplayName(const std::string& path, bool output = false);

// The format of an output path from its extension: .png, .ppm, .pgm, .pbm,
// .pfm, .pnm; "-" is Pnm. Throws UsageError for anything else.
OutFormat OutputFormatFor(const std::string& path);

// Checks that an image of `channels` (and `depth`, if known) can go to `path`,
// before any work is done.
void CheckImageOutput(const std::string& path, int channels, int depth = 0);

// Warns on standard error when raw (non-image) output goes to a name with an
// image file's extension.
void WarnRawOutputName(const std::string& path, const std::string& what);

// Writes an image as the extension says: 8 or 16 bits as PNG or PNM (a
// maximum value below the depth's full range goes to PNM as it is and to PNG
// scaled to the full range with an sBIT chunk), float images as PFM; 8- and
// 16-bit images to .pfm are stored as fractions of their maximum value.
void WriteImage(const std::string& path, const Image& img, int pngLevel = 6, bool showProgress = false);

// Writes a one-bit image given as rows of packed bits, the first pixel in the
// top bit of a byte and a set bit meaning bright. As .pbm (where 1 is black,
// so bits are inverted) or as a one-bit grey .png.
void WriteBitmap(const std::string& path, int width, int height, const std::vector<uint8_t>& bits,
                 size_t bitsStep);

// Writes raw bytes.
void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes);

// An output as described at the top of this file; Commit() makes it final.
// Destroyed uncommitted, or on SIGINT/SIGTERM/SIGHUP, it leaves the target as
// it was. The temporary file has no name until Commit() where the system
// allows, so not even SIGKILL leaves it behind.
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
    enum class Kind { Stream, Replace, Rewrite };
    std::string path_;    // as given, for messages
    std::string target_;  // the file that is replaced or rewritten (links resolved)
    std::string tmp_;     // a named temporary file, if the system gave no unnamed one
    Kind kind_ = Kind::Replace;
    int mode_ = 0;        // permissions for the new file
    int uid_ = -1, gid_ = -1;  // owner of the file replaced, if any
    int fd_ = -1;
    FILE* file_ = nullptr;
};

}  // namespace zt
