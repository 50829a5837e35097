// Packed byte pixels of three or four bytes, moved between memory and one
// 32-bit lane per pixel, four pixels to a register (baseline instructions).
// A three-byte pixel k sits at bytes 3k..3k+2 and its lane at 4k..4k+3, so
// spreading shifts pixel k up by k bytes and squeezing shifts it back down.
#pragma once

#include <emmintrin.h>

#include <cstdint>

namespace zil::pack {

inline __m128i Ld(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
inline void St(void* p, __m128i v) { _mm_storeu_si128(static_cast<__m128i*>(p), v); }
// The low three bytes of 32-bit lane k.
inline __m128i Lane3(int k) {
    return _mm_setr_epi32(k == 0 ? 0xFFFFFF : 0, k == 1 ? 0xFFFFFF : 0, k == 2 ? 0xFFFFFF : 0, k == 3 ? 0xFFFFFF : 0);
}
// Four three-byte pixels at bytes 0..11 to one 32-bit lane each, fourth byte 0.
inline __m128i Spread(__m128i v) {
    const __m128i a = _mm_or_si128(_mm_and_si128(v, Lane3(0)), _mm_and_si128(_mm_slli_si128(v, 1), Lane3(1)));
    const __m128i b = _mm_or_si128(_mm_and_si128(_mm_slli_si128(v, 2), Lane3(2)), _mm_and_si128(_mm_slli_si128(v, 3), Lane3(3)));
    return _mm_or_si128(a, b);
}
// The reverse: the low three bytes of each 32-bit lane to bytes 0..11, bytes 12..15 zero.
inline __m128i Squeeze(__m128i v) {
    const __m128i a = _mm_or_si128(_mm_and_si128(v, Lane3(0)), _mm_srli_si128(_mm_and_si128(v, Lane3(1)), 1));
    const __m128i b = _mm_or_si128(_mm_srli_si128(_mm_and_si128(v, Lane3(2)), 2), _mm_srli_si128(_mm_and_si128(v, Lane3(3)), 3));
    return _mm_or_si128(a, b);
}
// Eight pixels of PS bytes at s to two registers of four lanes. Three-byte
// pixels read bytes 0..15 and 8..23: nothing past the eighth pixel.
template <int PS>
inline void Load8(const uint8_t* s, __m128i& lo, __m128i& hi) {
    if constexpr (PS == 4) {
        lo = Ld(s), hi = Ld(s + 16);
    } else {
        lo = Spread(Ld(s)), hi = Spread(_mm_srli_si128(Ld(s + 8), 4));
    }
}
// Eight three-byte pixels from the low three bytes of the lanes of two
// registers: exactly 24 bytes are written.
inline void Store8x3(uint8_t* d, __m128i lo, __m128i hi) {
    const __m128i a = Squeeze(lo), b = Squeeze(hi);
    St(d, _mm_or_si128(a, _mm_slli_si128(b, 12)));
    _mm_storel_epi64(static_cast<__m128i*>(static_cast<void*>(d + 16)), _mm_srli_si128(b, 4));
}

}  // namespace zil::pack
