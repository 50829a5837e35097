// Build-time generator of the 8-bit RGB to HSV tables.
//
// For byte inputs the saturation byte depends only on (v, d), v the largest
// channel and d = v - min, and the hue byte only on the channel that is v
// (blue wins every tie, then green, then red) and the other two channels'
// distances below v. Every entry is the library's own per-pixel formula run
// on one pixel of its class, with the member's rounding, so a table cannot
// disagree with the formula.
#include <cstdio>

#include "../../frame/zil_gen_file.h"
#include "hue_kernels.h"

namespace {

using zil::hue::RgbToHsv;
using zil::hue::Trunc;

// The member's rounding of H and S: the half add, then the byte store.
uint8_t Byte(float x) { return uint8_t(Trunc(x + 0.5f)); }

void Open(FILE* f, const char* name, int n) {
    std::fprintf(f, "extern \"C\" ZIL_HIDDEN const uint8_t %s[%d] = {", name, n);
}
void Entry(FILE* f, int i, uint8_t b) { std::fprintf(f, "%s%d,", i % 32 ? "" : "\n", b); }

}  // namespace

int main(int argc, char** argv) {
    return zil::GenerateFile(argc, argv, "hsv8_tables_gen.cpp", "#include \"hsv8_tables.h\"", [](FILE* f) {
        // Saturation by v << 8 | d; entries with d > v are never read.
        Open(f, "hsv8Sat", 65536);
        for (int i = 0; i < 65536; ++i) {
            const int v = i >> 8, d = i & 255;
            const float r = float(v), gb = float(d <= v ? v - d : 0);
            Entry(f, i, d <= v ? Byte(RgbToHsv<false>(r, gb, gb).c1) : 0);
        }
        std::fprintf(f, "\n};\n\n");
        // Hue by winner << 16 | x << 8 | y, all at v = 255: the winner red (0)
        // with x, y the distances of green and blue, green (1) with those of red
        // and blue, blue (2) with those of red and green.
        Open(f, "hsv8Hue", 3 * 65536);
        for (int i = 0; i < 3 * 65536; ++i) {
            const int w = i >> 16;
            const float x = float(255 - ((i >> 8) & 255)), y = float(255 - (i & 255));
            const float r = w == 0 ? 255.0f : x;
            const float g = w == 0 ? x : w == 1 ? 255.0f : y;
            const float b = w == 2 ? 255.0f : y;
            Entry(f, i, Byte(RgbToHsv<false>(r, g, b).c0));
        }
        std::fprintf(f, "\n};\n");
    });
}
