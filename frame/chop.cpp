// The library-wide clamp table and its base pointer.
#include "zil_common.h"

namespace {
struct Table1000 { uint8_t v[1000]; };
constexpr Table1000 MakeChop() {
    Table1000 t{};
    for (int i = 0; i < 1000; ++i) t.v[i] = static_cast<uint8_t>(zil::Clamp255(i - 370));
    return t;
}
constexpr Table1000 kChop = MakeChop();
static_assert(kChop.v[0] == 0 && kChop.v[370] == 0 && kChop.v[371] == 1 && kChop.v[625] == 255 &&
              kChop.v[626] == 255 && kChop.v[999] == 255, "clamp table shape");
}  // namespace

extern "C" {
const uint8_t chop[1000] = {
#define ZIL_CHOP_ROW(i) kChop.v[i], kChop.v[i + 1], kChop.v[i + 2], kChop.v[i + 3], kChop.v[i + 4]
#define ZIL_CHOP_25(i) ZIL_CHOP_ROW(i), ZIL_CHOP_ROW(i + 5), ZIL_CHOP_ROW(i + 10), ZIL_CHOP_ROW(i + 15), ZIL_CHOP_ROW(i + 20)
#define ZIL_CHOP_100(i) ZIL_CHOP_25(i), ZIL_CHOP_25(i + 25), ZIL_CHOP_25(i + 50), ZIL_CHOP_25(i + 75)
    ZIL_CHOP_100(0), ZIL_CHOP_100(100), ZIL_CHOP_100(200), ZIL_CHOP_100(300), ZIL_CHOP_100(400),
    ZIL_CHOP_100(500), ZIL_CHOP_100(600), ZIL_CHOP_100(700), ZIL_CHOP_100(800), ZIL_CHOP_100(900)
#undef ZIL_CHOP_100
#undef ZIL_CHOP_25
#undef ZIL_CHOP_ROW
};
// Kept although few kernels read it: it is part of the object's layout.
__attribute__((used)) const uint8_t* const CHOP_ARRAY = chop + 370;
}
