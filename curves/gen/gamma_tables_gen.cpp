// Build-time generator of the four gamma look-up tables.
//
// Entry i of a table with top value N (255 or 65535): x := i / N, y := N times
// the curve at x, all in double precision (the power correctly rounded, from
// 113-bit host arithmetic); y is rounded to single precision, and that to the
// nearest integer, ties to even. Both roundings decide entries.
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "../../frame/zil_gen_file.h"

typedef __float128 quad;
extern "C" quad powq(quad, quad);
extern "C" quad exp2q(quad);

namespace {

double Pow(double x, double y) { return static_cast<double>(powq(x, y)); }

// Forward curve: linear below 0.018, else 1.099 x^0.45 - 0.099.
double Fwd(double x) { return x < 0.018 ? 4.5 * x : 1.099 * Pow(x, 0.45) - 0.099; }
// Inverse curve: linear below 0.0812, else ((x + 0.099) / 1.099)^(1 / 0.45).
double Inv(double x) { return x < 0.0812 ? x / 4.5 : Pow((x + 0.099) / 1.099, 1.0 / 0.45); }

long Entry(double (*curve)(double), int i, int n) {
    const double x = static_cast<double>(i) / n;
    const float y = static_cast<float>(n * curve(x));
    return std::lrint(y);  // default rounding: nearest, ties to even
}

void Table(FILE* f, const char* type, const char* name, double (*curve)(double), int n) {
    std::fprintf(f, "extern \"C\" ZIL_HIDDEN const %s %s[%d] = {", type, name, n + 1);
    for (int i = 0; i <= n; ++i) std::fprintf(f, "%s%ld,", i % 16 ? " " : "\n    ", Entry(curve, i, n));
    std::fprintf(f, "\n};\n\n");
}

// The forward power's table, one pair a float of [2^-6, 2) by its exponent e
// (-6 to 0) and its top eight mantissa bits i: r, the double nearest
// 1 / (1 + (i + 0.5) / 256), and 2^(y e) r^-y correctly rounded to double, y
// the float exponent 0.45f. A float 2^e m of the pair has the power
// 2^(y e) r^-y (m r)^y, and m r is within 2^-9 of 1.
void FwdPowTable(FILE* f) {
    const quad y = static_cast<quad>(0.45f);
    std::fprintf(f, "extern \"C\" ZIL_HIDDEN const GammaPowPair gammaFwdPow[%d] = {\n", 7 * 256);
    for (int e = -6; e <= 0; ++e)
        for (int i = 0; i < 256; ++i) {
            const double rcp = static_cast<double>(1 / (1 + (i + quad(0.5)) / 256));
            const double scale = static_cast<double>(exp2q(y * e) * powq(rcp, -y));
            std::fprintf(f, "    {%a, %a},\n", rcp, scale);
        }
    std::fprintf(f, "};\n");
}

}  // namespace

int main(int argc, char** argv) {
    return zil::GenerateFile(argc, argv, "gamma_tables_gen.cpp", "#include \"gamma_tables.h\"", [](FILE* f) {
        Table(f, "uint8_t", "tableFwd8u", Fwd, 255);
        Table(f, "uint8_t", "tableInv8u", Inv, 255);
        Table(f, "uint16_t", "tableFwd16u", Fwd, 65535);
        Table(f, "uint16_t", "tableInv16u", Inv, 65535);
        FwdPowTable(f);
    });
}
