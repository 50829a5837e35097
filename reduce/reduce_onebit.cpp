// 8-bit gray to one bit a pixel, by threshold or by integer error diffusion
// over twelve neighbours (weights 8, 4, 2, 1).
#include "reduce_members.h"

namespace zil::reduce {
namespace {

// Packs the decisions of one row, most significant bit first, starting at bit
// `o` of dst[0]. decide(x) is called once per pixel, left to right.
template <class Decide>
inline void PackRow(uint8_t* dst, int o, int width, Decide&& decide) {
    const int h = (8 - o) & 7;  // pixels that fill up the first byte
    int head, body;
    if (h < width) {
        head = h, body = width - h;
    } else {
        head = width, body = 0;
    }
    int x = 0;
    uint8_t* p = dst;
    if (head != 0) {
        // The bits before the row are kept; every bit after the new ones is
        // cleared, also when the row ends inside this byte.
        uint32_t byte = dst[0] & (0xFF00u >> o);
        uint32_t mask = 0x80u >> o;
        for (; x < head; ++x, mask >>= 1)
            if (decide(x)) byte |= mask;
        *p++ = uint8_t(byte);
    }
    const int whole = body >> 3;
    for (int b = 0; b < whole; ++b) {
        uint32_t byte = 0;
        for (uint32_t mask = 0x80u; mask != 0; mask >>= 1, ++x)
            if (decide(x)) byte |= mask;
        *p++ = uint8_t(byte);
    }
    const int rest = body & 7;
    if (rest != 0) {
        // A last partial byte keeps its bits behind the row's end.
        uint32_t byte = *p & (0xFFu >> rest);
        uint32_t mask = 0x80u;
        for (int i = 0; i < rest; ++i, ++x, mask >>= 1)
            if (decide(x)) byte |= mask;
        *p = uint8_t(byte);
    }
}

}  // namespace

ZIL_IMPL ZilStatus mx_ziliReduceBits_8u1u_C1R(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep,
                                             int dstBitOffset, ZilSize roi, int /*reserved1*/, int /*reserved2*/,
                                             ZilDither dither, uint8_t threshold, uint8_t* buffer) {
    if (AnyNull(src, static_cast<const uint8_t*>(dst))) return zilStatusNullPointer;
    if (TooSmall(roi) || dstBitOffset < 0) return zilStatusBadSize;
    if (dither != zilDitherNone && dither != zilDitherStucki) return zilStatusBadDitherType;
    if (dither == zilDitherStucki && buffer == nullptr) return zilStatusNullPointer;
    const int o = dstBitOffset & 7;
    const int w = roi.width;

    if (dither == zilDitherNone) {
        for (int y = 0; y < roi.height; ++y) {
            const uint8_t* s = src + ptrdiff_t(y) * srcStep;
            PackRow(dst + ptrdiff_t(y) * dstStep, o, w, [&](int x) { return s[x] > threshold; });
        }
        return zilStatusOk;
    }

    // Error rows in eighths of a grey level, with two zero margins each side.
    int32_t* E = reinterpret_cast<int32_t*>(Align64(buffer));
    for (int i = 0; i < 3 * w + 12; ++i) E[i] = 0;
    int32_t* p2 = E + 2;
    int32_t* p1 = E + w + 6;
    int32_t* cur = E + 2 * w + 10;
    const int32_t limit = int32_t(threshold) * 8192;
    for (int y = 0; y < roi.height; ++y) {
        const uint8_t* s = src + ptrdiff_t(y) * srcStep;
        PackRow(dst + ptrdiff_t(y) * dstStep, o, w, [&](int x) {
            const int32_t S = p2[x - 2] + p2[x + 2] + (p1[x] + cur[x - 1]) * 8 +
                              (p2[x] + p1[x - 1] + p1[x + 1] + cur[x - 2]) * 4 +
                              (p2[x - 1] + p2[x + 1] + p1[x - 2] + p1[x + 2]) * 2;
            // v: 8192 per grey level; the weight sum 42 times 23 is 966 of
            // 1024, so about 6 percent of the error fades at each step.
            const int32_t v = (int32_t(s[x]) << 13) + S * 23;
            int32_t e = v >> 10;
            const bool bit = v > limit;
            if (bit) e -= 2047;  // white is 2040 eighths; a set bit takes 2047
            cur[x] = e;
            return bit;
        });
        int32_t* old = p2;
        p2 = p1, p1 = cur, cur = old;
    }
    return zilStatusOk;
}

}  // namespace zil::reduce
