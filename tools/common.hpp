// Shared pieces of the zilcc tool: the two kinds of failure, the image type,
// and naming of library statuses.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "zilcc.h"

namespace zt {

// A mistake on the command line: exit status 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};
// Input the tool cannot use, a library status below zero, an I/O failure: exit status 1.
struct DataError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Name of a library status, such as "zilStatusBadSize"; "status N" if unknown.
std::string StatusName(ZilStatus s);

// Throws DataError("FN returned NAME (N)" + context) for a negative status.
// Warnings (positive) are returned to the caller to decide on.
ZilStatus CheckStatus(ZilStatus s, const char* fn, const std::string& context = "");

// A dense image of 1 or 3 channels, 8 or 16 bits a sample, or 32-bit floats
// (depth 32), in the machine's byte order.
struct Image {
    int width = 0;
    int height = 0;
    int channels = 0;
    int depth = 8;
    // 0: samples span the depth's full range. Otherwise their largest value,
    // as a PNM file's maximum value (kept only where a caller asks for it).
    int maxval = 0;
    std::vector<uint8_t> data;

    int MaxValue() const { return maxval ? maxval : depth == 16 ? 65535 : depth == 8 ? 255 : 1; }

    size_t SampleBytes() const { return depth == 32 ? 4 : depth == 16 ? 2 : 1; }
    size_t RowBytes() const { return size_t(width) * size_t(channels) * SampleBytes(); }
    int Step() const { return int(RowBytes()); }
    uint8_t* Row(int y) { return data.data() + size_t(y) * RowBytes(); }
    const uint8_t* Row(int y) const { return data.data() + size_t(y) * RowBytes(); }
    uint16_t* Row16(int y) { return reinterpret_cast<uint16_t*>(Row(y)); }
    const uint16_t* Row16(int y) const { return reinterpret_cast<const uint16_t*>(Row(y)); }
    float* RowF(int y) { return reinterpret_cast<float*>(Row(y)); }
    const float* RowF(int y) const { return reinterpret_cast<const float*>(Row(y)); }

    // Allocates zeroed samples; throws DataError when the extent is absurd or a
    // row would not fit a 32-bit step.
    void Allocate(int w, int h, int ch, int bits);
    // The same checks and fields, but `data` stays empty: a reader grows it as
    // samples arrive, so a header that claims a huge extent costs no memory
    // until its data is there.
    void Reserve(int w, int h, int ch, int bits);
    size_t TotalBytes() const { return RowBytes() * size_t(height); }
};

std::string SizeText(int w, int h);

// Rows a band holds so that one band is about `bytes` of source.
int BandRows(size_t rowBytes, int multipleOf, size_t bytes = size_t(8) << 20);

}  // namespace zt
