#include "common.hpp"

#include <unistd.h>

#include <cstdio>

namespace zt {

std::string StatusName(ZilStatus s) {
    switch (s) {
        case zilStatusOk: return "zilStatusOk";
        case zilStatusNegativeMaximum: return "zilStatusNegativeMaximum";
        case zilStatusOddSize: return "zilStatusOddSize";
        case zilStatusBadArgument: return "zilStatusBadArgument";
        case zilStatusBadSize: return "zilStatusBadSize";
        case zilStatusNullPointer: return "zilStatusNullPointer";
        case zilStatusBadStep: return "zilStatusBadStep";
        case zilStatusBadContext: return "zilStatusBadContext";
        case zilStatusBadChannelCount: return "zilStatusBadChannelCount";
        case zilStatusBadRange: return "zilStatusBadRange";
        case zilStatusBadLevels: return "zilStatusBadLevels";
        case zilStatusBadNoise: return "zilStatusBadNoise";
        case zilStatusBadDitherType: return "zilStatusBadDitherType";
    }
    return "status " + std::to_string(s);
}

ZilStatus CheckStatus(ZilStatus s, const char* fn, const std::string& context) {
    if (s < 0) {
        std::string msg = std::string(fn) + " returned " + StatusName(s) + " (" + std::to_string(s) + ")";
        if (!context.empty()) msg += ": " + context;
        throw DataError(msg);
    }
    return s;
}

void Image::Allocate(int w, int h, int ch, int bits) {
    Reserve(w, h, ch, bits);
    data.resize(TotalBytes(), 0);
}

void Image::Reserve(int w, int h, int ch, int bits) {
    if (w < 1 || h < 1) throw DataError("image size " + SizeText(w, h) + " is empty");
    const uint64_t row = uint64_t(w) * uint64_t(ch) * (bits == 32 ? 4u : bits == 16 ? 2u : 1u);
    if (row > 0x7fffffffu) throw DataError("image rows of " + std::to_string(w) + " pixels are too wide");
    const uint64_t total = row * uint64_t(h);
    // A header can claim any extent; refuse what could not fit in memory rather
    // than let the system run out of it.
    const long pages = sysconf(_SC_PHYS_PAGES), pageSize = sysconf(_SC_PAGE_SIZE);
    const uint64_t limit = pages > 0 && pageSize > 0 ? uint64_t(pages) * uint64_t(pageSize) / 2 : uint64_t(1) << 34;
    if (total > limit)
        throw DataError("image size " + SizeText(w, h) + " needs " + std::to_string(total >> 20) +
                        " MiB, more than half of this machine's memory");
    width = w;
    height = h;
    channels = ch;
    depth = bits;
    maxval = 0;
    data.clear();  // grown by the reader as samples arrive (doubling, so no up-front touch of memory)
}

std::string SizeText(int w, int h) { return std::to_string(w) + "x" + std::to_string(h); }

int BandRows(size_t rowBytes, int multipleOf, size_t bytes) {
    size_t rows = rowBytes ? bytes / rowBytes : 1;
    if (rows < size_t(multipleOf)) rows = size_t(multipleOf);
    if (rows > 1u << 20) rows = 1u << 20;
    rows -= rows % size_t(multipleOf);
    return int(rows);
}

}  // namespace zt
