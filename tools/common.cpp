#include "common.hpp"

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
    if (w < 1 || h < 1) throw DataError("image size " + SizeText(w, h) + " is empty");
    const uint64_t row = uint64_t(w) * uint64_t(ch) * (bits == 16 ? 2u : 1u);
    if (row > 0x7fffffffu) throw DataError("image rows of " + std::to_string(w) + " pixels are too wide");
    const uint64_t total = row * uint64_t(h);
    if (total > (uint64_t(1) << 40)) throw DataError("image size " + SizeText(w, h) + " is too large");
    width = w;
    height = h;
    channels = ch;
    depth = bits;
    data.assign(size_t(total), 0);
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
