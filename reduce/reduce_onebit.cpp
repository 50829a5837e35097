// 8-bit gray to one bit a pixel, by threshold or by integer error diffusion
// over twelve neighbours (weights 8, 4, 2, 1).
#include <emmintrin.h>

#include "reduce_members.h"

namespace zil::reduce {
namespace {

// Packs the decisions of one row, most significant bit first, starting at bit
// `o` of dst[0]. bulk(x, p, n) may first write up to n whole bytes at p for
// the pixels from x on and returns how many it wrote; decide(x) is then
// called once per remaining pixel, left to right.
template <class Decide, class Bulk>
inline void PackRow(uint8_t* dst, int o, int width, Decide&& decide, Bulk&& bulk) {
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
    const int done = bulk(x, p, whole);
    x += 8 * done, p += done;
    for (int b = done; b < whole; ++b) {
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

// Threshold bytes two at a time from 16 pixels: the compare (unsigned, by
// flipping the top bits) gives 0xFF or 0 a pixel, each keeps its bit's place
// value (128 for the first pixel of eight, 1 for the last), and the sum of
// each eight is the packed byte. Returns the bytes written, an even number.
inline int ThresholdBytes(const uint8_t* s, uint8_t* p, int bytes, uint8_t threshold) {
    const __m128i flip = _mm_set1_epi8(char(0x80)), t = _mm_set1_epi8(char(threshold ^ 0x80u));
    const __m128i place = _mm_set_epi8(1, 2, 4, 8, 16, 32, 64, char(128), 1, 2, 4, 8, 16, 32, 64, char(128));
    int b = 0;
    for (; b + 2 <= bytes; b += 2, s += 16) {
        const __m128i v = _mm_xor_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s)), flip);
        const __m128i sum = _mm_sad_epu8(_mm_and_si128(_mm_cmpgt_epi8(v, t), place), _mm_setzero_si128());
        p[b] = uint8_t(_mm_cvtsi128_si32(sum));
        p[b + 1] = uint8_t(_mm_extract_epi16(sum, 4));
    }
    return b;
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
            PackRow(dst + ptrdiff_t(y) * dstStep, o, w, [&](int x) { return s[x] > threshold; },
                    [&](int x, uint8_t* p, int n) { return ThresholdBytes(s + x, p, n, threshold); });
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
        }, [](int, uint8_t*, int) { return 0; });
        int32_t* old = p2;
        p2 = p1, p1 = cur, cur = old;
    }
    return zilStatusOk;
}

}  // namespace zil::reduce
