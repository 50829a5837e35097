// Build-time generator of the power kernels' constant tables.
//
// Runs on the build host and writes a header of hexadecimal floating literals
// that the library compiles in as read-only data. The values are computed in
// 113-bit precision and rounded once to their stored format, so every entry is
// the correctly rounded value of its rule.
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "../../frame/zil_gen_file.h"

typedef __float128 quad;
extern "C" quad logq(quad);
extern "C" quad exp2q(quad);

namespace {

// The reciprocal table shared by both scalar routines: 2048 / (1 + (i + 0.5) / 256)
// rounded to an integer, over 2048. The same rule is restated in power.h as a
// constexpr table; the generator uses it only as the argument of the logarithms.
double Rcp(int i) {
    const double q = 2048.0 / (1.0 + (i + 0.5) / 256.0);
    const double k = static_cast<double>(static_cast<int64_t>(q + 0.5));
    return k / 2048.0;
}

// High part with the low `cut` bits of the 53-bit significand cleared, so that
// sums of high parts with e times the high part of ln 2 stay exact.
double CutLow(double v, int cut) {
    uint64_t b;
    std::memcpy(&b, &v, 8);
    b &= ~((uint64_t(1) << cut) - 1);
    std::memcpy(&v, &b, 8);
    return v;
}

void Pair(FILE* f, quad v, int cut) {
    const double hi = CutLow(static_cast<double>(v), cut);
    const double lo = static_cast<double>(v - hi);
    std::fprintf(f, "    {%a, %a},\n", lo, hi);  // low part first
}

}  // namespace

int main(int argc, char** argv) {
    return zil::GenerateFile(argc, argv, "power_tables_gen.cpp", "#pragma once", [](FILE* f) {

        std::fprintf(f, "alignas(16) inline constexpr double logf_table_256[256] = {\n");
        for (int i = 0; i < 256; ++i) std::fprintf(f, "    %a,\n", static_cast<double>(-logq(Rcp(i))));
        std::fprintf(f, "};\n\n");

        std::fprintf(f, "alignas(16) inline constexpr double expf_table_64[65] = {\n");
        for (int i = 0; i <= 64; ++i) std::fprintf(f, "    %a,\n", static_cast<double>(exp2q(quad(i - 32) / 64)));
        std::fprintf(f, "};\n\n");

        std::fprintf(f, "struct LoHi { double lo, hi; };\n\n");
        std::fprintf(f, "alignas(16) inline constexpr LoHi log_table_256[256] = {\n");
        for (int i = 0; i < 256; ++i) Pair(f, -logq(Rcp(i)), 21);
        std::fprintf(f, "};\n\n");

        std::fprintf(f, "alignas(16) inline constexpr LoHi exp_table_128[129] = {\n");
        for (int i = 0; i <= 128; ++i) Pair(f, exp2q(quad(i - 64) / 128), 0);
        std::fprintf(f, "};\n\n");

        std::fprintf(f, "struct LnRcp { double ln, rcp; };\n\n");
        std::fprintf(f, "alignas(16) inline constexpr LnRcp Table[257] = {\n");
        for (int i = 0; i <= 256; ++i) {
            const quad a = 1 + quad(i) / 256;
            std::fprintf(f, "    {%a, %a},\n", static_cast<double>(logq(a)), static_cast<double>(1 / a));
        }
        std::fprintf(f, "};\n\n");

        std::fprintf(f, "alignas(16) inline constexpr uint64_t s_dwExp2[128] = {\n");
        for (int i = 0; i < 128; ++i) {
            const double v = static_cast<double>(exp2q(quad(i) / 128));
            uint64_t b;
            std::memcpy(&b, &v, 8);
            std::fprintf(f, "    0x%013llxull,\n", static_cast<unsigned long long>(b & 0xFFFFFFFFFFFFFull));
        }
        std::fprintf(f, "};\n\n");

        std::fprintf(f, "struct HiLoF { float hi, lo; };\n\n");
        std::fprintf(f, "alignas(16) inline constexpr HiLoF exp2f_table[128] = {\n");
        for (int i = 0; i < 128; ++i) {
            const quad v = exp2q(quad(i) / 128);
            const float hi = static_cast<float>(v);
            const float lo = static_cast<float>(v - hi);
            std::fprintf(f, "    {%a, %a},\n", static_cast<double>(hi), static_cast<double>(lo));
        }
        std::fprintf(f, "};\n");
    });
}
