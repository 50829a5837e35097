// Eight pixels at a time for the 8-bit LUV and Lab kernels.
//
// A block body does, lane by lane, the very operations of its pixel functor
// in the same order and precision: vector add, multiply, divide and the
// conversions between single, double and integer lanes round exactly as
// their scalar forms do. Branches become selects; both sides are computed on
// every lane and the chosen one kept. Truncation to integer uses the
// processor's truncating conversion directly, which gives 0x80000000 for a
// value outside the 32-bit range just as Trunc does.
#pragma once

#include "cie_common.h"

// The lane types only pass between inlined functions of the including file,
// never across the library's interface: their calling convention is moot.
#pragma GCC diagnostic ignored "-Wpsabi"

namespace zil::cie {

inline constexpr int kLanes = 8;
using VF = float __attribute__((vector_size(4 * kLanes)));
using VD = double __attribute__((vector_size(8 * kLanes)));
using VI = int32_t __attribute__((vector_size(4 * kLanes)));
using VU = uint32_t __attribute__((vector_size(4 * kLanes)));

// For the baseline processor the compiler splits eight-lane arithmetic into
// four-lane halves, but comparisons and division by a constant it does lane
// by lane in scalar code. Those go through On4, which applies them to the
// two halves.
template <class V, class Op>
inline auto On4(V a, V b, Op op) {
    const auto r0 = op(__builtin_shufflevector(a, a, 0, 1, 2, 3), __builtin_shufflevector(b, b, 0, 1, 2, 3));
    const auto r1 = op(__builtin_shufflevector(a, a, 4, 5, 6, 7), __builtin_shufflevector(b, b, 4, 5, 6, 7));
    return __builtin_shufflevector(r0, r1, 0, 1, 2, 3, 4, 5, 6, 7);
}
template <class V>
inline VI Lt(V a, V b) { return On4(a, b, [](auto x, auto y) { return x < y; }); }
template <class V>
inline VI Ge(V a, V b) { return On4(a, b, [](auto x, auto y) { return x >= y; }); }
template <class V>
inline VI Eq(V a, V b) { return On4(a, b, [](auto x, auto y) { return x == y; }); }
template <class V>
inline VI Ne(V a, V b) { return On4(a, b, [](auto x, auto y) { return x != y; }); }

// m ? a : b lane by lane, m all ones or all zeros.
inline VI Sel(VI m, VI a, VI b) { return (m & a) | (~m & b); }
inline VF Sel(VI m, VF a, VF b) { return (VF)Sel(m, (VI)a, (VI)b); }
inline bool Any(VI m) {
    uint64_t w[4];
    __builtin_memcpy(w, &m, sizeof m);
    return (w[0] | w[1] | w[2] | w[3]) != 0;
}
inline VD Wide(VF v) { return __builtin_convertvector(v, VD); }
inline VF Float(VI v) { return __builtin_convertvector(v, VF); }
inline VI TruncV(VF v) { return __builtin_convertvector(v, VI); }
inline VI TruncV(VD v) { return __builtin_convertvector(v, VI); }
inline VI ClampV(VI v, int32_t lo, int32_t hi) {
    v = Sel(Lt(v, VI{} + lo), VI{} + lo, v);
    return Sel(Lt(VI{} + hi, v), VI{} + hi, v);
}

// The cube-root estimate of the lanes, for lanes below 2^120 (the 8-bit
// kernels pass at most 1.1). Halley's step r (r^3 + 2v) / (2 r^3 + v) turns
// a relative error e into e^3 (2 + e) / (3 + 6e + 6e^2 + 2e^3), about 2e^3/3.
// The first step runs in single lanes, twice as many a vector: from the 3.2%
// start it leaves 2.3e-5, plus under 2^-21 of rounding; the second, in
// double, leaves (2/3) (2.4e-5)^3 < 2^-46, plus a few units in 2^-53. That
// is inside the 2^-40 that CubeRootF's interval test needs.
inline VD CbrtEstimateV(VF v) {
    VF s = (VF)(On4((VU)v, (VU)v, [](auto x, auto) { return x / 3u; }) + 0x2A5137A0u);
    const VF s3 = s * s * s;
    s = s * (s3 + 2.f * v) / (2.f * s3 + v);
    const VD y = Wide(v), r = Wide(s), r3 = r * r * r;
    return r * (r3 + 2.0 * y) / (2.0 * r3 + y);
}

// CubeRootF on the lanes in `use` (the others give an unused value): the
// interval test of CubeRootF on the lanes' estimate, the power routine for the
// lanes whose interval straddles a rounding boundary.
inline VF CubeRootFV(VF v, VI use) {
    const VD r = CbrtEstimateV(v);
    VF lo = __builtin_convertvector(r * (1.0 - 0x1p-40), VF);
    const VF hi = __builtin_convertvector(r * (1.0 + 0x1p-40), VF);
    const VI bad = use & Ne(lo, hi);
    if (Any(bad))
        for (int j = 0; j < kLanes; ++j)
            if (bad[j]) lo[j] = float(CubeRoot(v[j]));
    return lo;
}

// Entries of a 256-entry table at the lanes' indices (0..255).
inline VF Look(const float* t, VI i) {
    int32_t k[kLanes];
    float o[kLanes];
    __builtin_memcpy(k, &i, sizeof i);
    for (int j = 0; j < kLanes; ++j) o[j] = t[k[j]];
    VF v;
    __builtin_memcpy(&v, o, sizeof v);
    return v;
}

// Samples of eight pixels (stride PS) into integer lanes, channel I0 first,
// and low bytes of integer lanes back out.
// (Through arrays: element-wise lane access compiles to slow lane inserts.)
template <int PS, int I0, class S>
inline void Gather(const S* s, VI& a, VI& b, VI& c) {
    int32_t t[3][kLanes];
    for (int j = 0; j < kLanes; ++j)
        t[0][j] = Ld(s + j * PS + I0), t[1][j] = Ld(s + j * PS + 1), t[2][j] = Ld(s + j * PS + 2 - I0);
    __builtin_memcpy(&a, t[0], sizeof a), __builtin_memcpy(&b, t[1], sizeof b), __builtin_memcpy(&c, t[2], sizeof c);
}
template <int PS, int O0>
inline void Scatter(uint8_t* d, VI a, VI b, VI c) {
    int32_t t[3][kLanes];
    __builtin_memcpy(t[0], &a, sizeof a), __builtin_memcpy(t[1], &b, sizeof b), __builtin_memcpy(t[2], &c, sizeof c);
    for (int j = 0; j < kLanes; ++j)
        d[j * PS + O0] = uint8_t(t[0][j]), d[j * PS + 1] = uint8_t(t[1][j]), d[j * PS + 2 - O0] = uint8_t(t[2][j]);
}

}  // namespace zil::cie

namespace zil::cie {

template <class F, int PS, int I0, int O0, class S, class D>
int RunBlocks(const S* s, D* d, int width) {
    int x = 0;
    for (; x + kLanes <= width; x += kLanes, s += kLanes * PS, d += kLanes * PS) {
        VI a, b, c, o[3];
        Gather<PS, I0>(s, a, b, c);
        F::Block(a, b, c, o);
        Scatter<PS, O0>(d, o[0], o[1], o[2]);
    }
    return x;
}

}  // namespace zil::cie
