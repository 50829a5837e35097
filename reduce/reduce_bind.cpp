// ReduceBits: the work-buffer size query. The exports of each element pair are
// in reduce_pairs_*.cpp.
#include "reduce_workers.h"

namespace zil::reduce {

// Work buffer size: error rows of one channel row (2 or 3 rows with margins)
// plus, under noise, the two noise tables and two generator states; 64 bytes
// more pay for aligning the buffer. 32-bit unsigned arithmetic throughout.
ZIL_IMPL ZilStatus mx_ziliReduceBitsGetBufferSize(int channels, ZilSize roiSize, int noise, ZilDither dither,
                                                  int* size) {
    if (size == nullptr) return zilStatusNullPointer;
    if (roiSize.width < 1) return zilStatusBadSize;
    if (channels != 1 && channels != 3 && channels != 4 && channels != 9) return zilStatusBadChannelCount;
    if (uint32_t(noise) > 100u) return zilStatusBadNoise;
    if (uint32_t(dither) > 4u) return zilStatusBadDitherType;
    const uint32_t w = uint32_t(roiSize.width);
    uint32_t rows = 0;
    if (dither == zilDitherFloydSteinberg) rows = (2u * w + 4u) * 4u;
    if (dither == zilDitherJarvisJudiceNinke || dither == zilDitherStucki) rows = (3u * w + 12u) * 4u;
    uint32_t noiseBytes = 0;
    if (noise != 0) {
        const uint32_t r16 = (kRandStateSize + 15u) & ~15u;
        noiseBytes = r16 + r16 + 6144u;
    }
    uint32_t total = 0;
    if (dither != zilDitherNone) {
        total = rows + noiseBytes;
        if (total != 0) total += 64u;
    }
    *size = int(total);
    return zilStatusOk;
}

}  // namespace zil::reduce
