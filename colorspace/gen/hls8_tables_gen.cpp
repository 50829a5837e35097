// Build-time generator of the 8-bit HLS tables.
//
// Every byte entry is the library's own formula evaluated on one pixel that
// stands for all pixels with the same index, then rounded as the members round
// (+ 0.5f, truncation):
// - hue: by the tie winner w (red, green, blue) and the winner's leads
//   i, j over the two other channels, taken in the order r, g, b; the hue
//   depends on these alone (the differences and max - min are i, j, i - j
//   and max(i, j)). The pixel is the one with the winner at 255. A winner
//   that cannot lead by 0 (green over red, blue over red or green) leaves
//   entries no pixel reaches.
// - saturation: by max and min, from the pixel (max, min, min).
// The float tables of the inverse: (h x 360) / 255 and v / 255 for every byte,
// and by the hue byte one record per channel (red, green, blue: the hue
// + 120, the hue, the hue - 120, each wrapped into 0..360): the ramp's
// distance from its nearer end where the channel ramps, 0 where it is at
// the bottom, and a fourth word with bit c set where channel c is at the top.
#include <cstdint>
#include <cstdio>

#include "../../frame/zil_gen_file.h"
#include "hue_kernels.h"

namespace {

using namespace zil::hue;

uint8_t Byte(float v) { return uint8_t(Quant<Round::Half>(v)); }

uint8_t Hue(int w, int i, int j) {
    const float a = float(255 - i), b = float(255 - j), m = 255.0f;
    const Px<float> p = w == 0 ? RgbToHlsInt<k8u>(m, a, b) : w == 1 ? RgbToHlsInt<k8u>(a, m, b) : RgbToHlsInt<k8u>(a, b, m);
    return Byte(p.c0);
}

uint8_t Sat(int mx, int mn) { return Byte(RgbToHlsInt<k8u>(float(mx), float(mn), float(mn)).c2); }

void Bytes(FILE* f, const char* name, int n, uint8_t (*entry)(int)) {
    std::fprintf(f, "extern \"C\" ZIL_HIDDEN const uint8_t %s[%d] = {", name, n);
    for (int k = 0; k < n; ++k) std::fprintf(f, "%s%d,", k % 24 ? "" : "\n", entry(k));
    std::fprintf(f, "\n};\n\n");
}

void Floats(FILE* f, const char* name, float (*entry)(int)) {
    std::fprintf(f, "extern \"C\" ZIL_HIDDEN const float %s[256] = {", name);
    for (int k = 0; k < 256; ++k) std::fprintf(f, "%s%a,", k % 8 ? " " : "\n    ", double(entry(k)));
    std::fprintf(f, "\n};\n\n");
}

float Degrees(int k) { return (float(k) * 360.0f) / k8u.scale; }

void Ramps(FILE* f) {
    std::fprintf(f, "extern \"C\" ZIL_HIDDEN const uint32_t hls8Ramp[1024] = {\n");
    for (int k = 0; k < 256; ++k) {
        const float h = Degrees(k);
        float hr = h + 120.0f, hb = h - 120.0f;
        hr = hr > 360.0f ? hr - 360.0f : hr;
        hb = hb < 0.0f ? hb + 360.0f : hb;
        const float hh[3] = {hr, h, hb};
        uint32_t top = 0;
        std::fprintf(f, "   ");
        for (int c = 0; c < 3; ++c) {
            float x = 0.0f;
            if (60.0f > hh[c]) x = hh[c];
            else if (180.0f > hh[c]) top |= 1u << c;
            else if (240.0f > hh[c]) x = 240.0f - hh[c];
            std::fprintf(f, " 0x%08x,", __builtin_bit_cast(uint32_t, x));
        }
        std::fprintf(f, " %u,\n", top);
    }
    std::fprintf(f, "};\n");
}

}  // namespace

int main(int argc, char** argv) {
    return zil::GenerateFile(argc, argv, "hls8_tables_gen.cpp", "#include \"hls8_tables.h\"", [](FILE* f) {
        Bytes(f, "hls8Hue", 3 * 65536, [](int k) { return Hue(k >> 16, (k >> 8) & 255, k & 255); });
        Bytes(f, "hls8Sat", 65536, [](int k) { return Sat(k >> 8, k & 255); });
        Floats(f, "hls8Degrees", Degrees);
        Floats(f, "hls8Unit", [](int k) { return float(k) / k8u.scale; });
        Ramps(f);
    });
}
