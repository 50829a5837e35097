// Sixteen three-byte pixels a step for the fixed-point 8u kernels of XYZ and
// YCC, on the RGB <-> YCbCr sixteen-pixel walker.
//
// A functor with a static Four(c02, c1x, sum) forms the three integer
// results of four pixels from the 16-bit lanes byte0 | byte2 << 16 and
// byte1 | x << 16 (x, the next pixel's first byte, must meet a zero weight)
// with exactly the sums of its Px, and a static Narrow packs two quartets to
// 16-bit lanes, which the store clamps to 0..255. Rows of three-byte pixels
// in channel order go through the walker; the rest of such a row and every
// other row go pixel by pixel.
#pragma once

#include "cie_common.h"
#include "lumachroma/ycbcr_kernels.h"

namespace zil::cie {

template <class F>
inline void RowBy16(const uint8_t* s, uint8_t* d, int width, int stride, int swap) {
    if (stride == 3 && !swap) {
        // Through lambdas, not function pointers: a walker of its own for F,
        // with F's arithmetic inlined rather than called per quartet.
        const int x = ycbcr::Walk16x3(
            s, d, 0, width, [](__m128i c02, __m128i c1x, __m128i* sum) { F::Four(c02, c1x, sum); },
            [](__m128i a, __m128i b) { return F::Narrow(a, b); });
        Row<F, 3, false>(s + 3 * ptrdiff_t(x), d + 3 * ptrdiff_t(x), width - x);
    } else if (stride == 3) {
        Row<F, 3, true>(s, d, width);
    } else {
        swap ? Row<F, 4, true>(s, d, width) : Row<F, 4, false>(s, d, width);
    }
}

// Sums narrowed as they are, for results that already fit 16 bits.
inline __m128i Pack32(__m128i a, __m128i b) { return _mm_packs_epi32(a, b); }

}  // namespace zil::cie

// The row kernel of the 8u functor F takes the sixteen-pixel walk.
#define ZIL_CIE_ROW16(F)                                                                         \
    namespace zil::cie {                                                                         \
    template <>                                                                                  \
    inline void RowBy<F>(const uint8_t* s, uint8_t* d, int width, int stride, int swap) {        \
        RowBy16<F>(s, d, width, stride, swap);                                                   \
    }                                                                                            \
    }
