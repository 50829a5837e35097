// Gamma correction with the Rec. 709 transfer curve, forward and inverse, on
// 8-bit, 16-bit and float images in C3, AC4 and planar layouts, in place or not.
//
// Integer forms look every colour sample up in a table. Float forms compute on
// the caller's value range [vMin, vMax]; their members differ in where the
// reciprocal of the range is single or double, whether the test of the lower
// branch is made in double, which power routine serves them, and in two more
// details of the upper branch. Each difference is a column of kFloatRows.
#include "gamma_pow.h"
#include "gamma_tables.h"
#include "primitives/power_core.h"
#include "primitives/utils.h"
#include <type_traits>

// Four-lane double vectors are 32 bytes; every function taking them is inlined,
// so the note on how they would be passed without AVX does not apply.
#pragma GCC diagnostic ignored "-Wpsabi"

namespace zil::gamma {
namespace {

enum class Lay : uint8_t { C3, AC4, P3 };

// ---------------------------------------------------------------------------
// Argument checks, in order: (float forms) the range, any image pointer, the
// extent, any step.
template <class T>
bool AnyNullPlanes(T* const* planes) {
    return planes == nullptr || planes[0] == nullptr || planes[1] == nullptr || planes[2] == nullptr;
}
inline ZilStatus CheckRest(bool anyNull, ZilSize roi, int step1, int step2) {
    if (anyNull) return zilStatusNullPointer;
    if (TooSmall(roi)) return zilStatusBadSize;
    if (step1 < 1 || step2 < 1) return zilStatusBadStep;
    return zilStatusOk;
}
inline bool BadRange(float vMin, float vMax) { return 0.0f >= vMax - vMin; }

// One image as the kernels walk it: up to three planes of `rows` rows.
template <class T>
struct Job {
    const T* src[3];
    T* dst[3];
    int planes;
    int srcStep, dstStep;
    int units;  // per row: samples (C3: 3 * width; P3: width) or pixels (AC4)
    int rows;
};

template <class T>
Job<T> PackedJob(const T* src, int srcStep, T* dst, int dstStep, ZilSize roi, Lay lay) {
    return {{src}, {dst}, 1, srcStep, dstStep, lay == Lay::C3 ? 3 * roi.width : roi.width, roi.height};
}
template <class T>
Job<T> PlanarJob(const T* const src[3], int srcStep, T* const dst[3], int dstStep, ZilSize roi) {
    return {{src[0], src[1], src[2]}, {dst[0], dst[1], dst[2]}, 3, srcStep, dstStep, roi.width, roi.height};
}

template <class T, class Row>
void ForEachRow(const Job<T>& j, Row&& row) {
    for (int p = 0; p < j.planes; ++p) {
        const T* s = j.src[p];
        T* d = j.dst[p];
        for (int y = 0; y < j.rows; ++y, s = AdvanceT(s, j.srcStep), d = AdvanceT(d, j.dstStep)) row(s, d);
    }
}

// ---------------------------------------------------------------------------
// Integer forms.

// A run of samples through the table. 8-bit runs go eight samples a word, so
// that a row costs one load and one store per eight look-ups; in place is fine
// since each word is read before it is written.
inline void LutRun(const uint8_t* s, uint8_t* d, int n, const uint8_t* tab) {
    int i = 0;
    for (; i + 8 <= n; i += 8) {
        uint64_t v;
        __builtin_memcpy(&v, s + i, 8);
        // Written out, so that -O2 needs no unrolling to keep the look-ups apart.
        const uint64_t o = uint64_t(tab[v & 0xFF]) | uint64_t(tab[(v >> 8) & 0xFF]) << 8 |
                           uint64_t(tab[(v >> 16) & 0xFF]) << 16 | uint64_t(tab[(v >> 24) & 0xFF]) << 24 |
                           uint64_t(tab[(v >> 32) & 0xFF]) << 32 | uint64_t(tab[(v >> 40) & 0xFF]) << 40 |
                           uint64_t(tab[(v >> 48) & 0xFF]) << 48 | uint64_t(tab[v >> 56]) << 56;
        __builtin_memcpy(d + i, &o, 8);
    }
    for (; i < n; ++i) d[i] = tab[s[i]];
}
inline void LutRun(const uint16_t* s, uint16_t* d, int n, const uint16_t* tab) {
    for (int i = 0; i < n; ++i) d[i] = tab[s[i]];
}

template <class T>
ZilStatus LutImage(const Job<T>& j, Lay lay, const T* tab) {
    if (lay == Lay::AC4) {
        ForEachRow(j, [&](const T* s, T* d) {
            for (int x = 0; x < j.units; ++x) {  // the fourth sample is neither read nor written
                d[4 * x] = tab[s[4 * x]];
                d[4 * x + 1] = tab[s[4 * x + 1]];
                d[4 * x + 2] = tab[s[4 * x + 2]];
            }
        });
    } else {
        ForEachRow(j, [&](const T* s, T* d) { LutRun(s, d, j.units, tab); });
    }
    return zilStatusOk;
}

// ---------------------------------------------------------------------------
// Float forms.

struct FloatRow {
    bool inverse;
    Lay lay;         // AC4: blocks of 128 pixels through the vector power, in both directions
    bool dblInv;     // reciprocal of the range in double; the normalised sample from double(x) * inv
    bool dblTest;    // the lower-branch test compares in double
    bool twiceMin;   // forward upper branch: vMin added a second time
    bool scaleRange; // inverse upper branch: the power times the range
};

// Forward C3 and planar use the scalar power sample by sample; inverse C3 and
// planar run the row flow with the vector power on blocks of 384.
//                                    inverse lay       dblInv dblTest twice  scale
constexpr FloatRow kFwdC3     {false, Lay::C3,  false, false, false, false};
constexpr FloatRow kFwdP3     {false, Lay::P3,  true,  false, false, false};
constexpr FloatRow kFwdAC4R   {false, Lay::AC4, false, false, true,  false};
constexpr FloatRow kFwdAC4IR  {false, Lay::AC4, true,  true,  true,  false};
constexpr FloatRow kInvC3R    {true,  Lay::C3,  false, false, false, false};
constexpr FloatRow kInvC3IR   {true,  Lay::C3,  false, false, false, true};
constexpr FloatRow kInvP3     {true,  Lay::P3,  true,  true,  false, false};
constexpr FloatRow kInvAC4    {true,  Lay::AC4, true,  true,  false, true};
static_assert(kInvP3.dblInv == kInvP3.dblTest && kInvAC4.dblInv == kInvAC4.dblTest && !kInvC3R.dblTest,
              "the inverse compares in the precision of its reciprocal");

constexpr int kBlock = 384;  // samples a block of the vector power; 128 pixels of AC4
constexpr float kFwdPower = 0.45f, kInvPower = 2.2222223f;
static_assert(kFwdY == kFwdPower, "the fast forward power is laid down for this exponent");

struct Range {
    float vMin, range, inv;
    double invd;
};

// Scalars and four-lane vectors alike: the double type of a float type, a
// conversion, and a double-width mask narrowed to the float lanes.
template <class F> struct WideOf { using type = double; };
template <> struct WideOf<pw::F4> { using type = pw::D4; };
template <class To> inline To Cvt(float v) { return static_cast<To>(v); }
template <class To> inline To Cvt(double v) { return static_cast<To>(v); }
template <class To> inline To Cvt(pw::F4 v) { return __builtin_convertvector(v, To); }
template <class To> inline To Cvt(pw::D4 v) { return __builtin_convertvector(v, To); }
inline bool Narrow(bool m) { return m; }
using pw::Narrow;

// Forward: the normalised sample t and the lower-branch test.
template <const FloatRow& M, class F, class Mask>
inline F FwdT(F x, const Range& r, Mask& lower) {
    if constexpr (M.dblInv) {
        const auto td = Cvt<typename WideOf<F>::type>(x) * r.invd;
        if constexpr (M.dblTest) lower = Narrow(static_cast<double>(0.018f) > td);
        else lower = 0.018f > Cvt<F>(td);
        return Cvt<F>(td);
    } else {
        const F t = r.inv * x;
        lower = 0.018f > t;
        return t;
    }
}
template <const FloatRow& M, class F>
inline F FwdUpper(F p, const Range& r) {
    const F v = (1.099f * p - 0.099f) * r.range + r.vMin;
    return M.twiceMin ? v + r.vMin : v;
}

// Inverse: the base of the power, and the lower-branch test.
template <const FloatRow& M>
inline float InvBase(float x, const Range& r) {
    if constexpr (M.dblTest) {
        const double xd = static_cast<double>(x) * r.invd;
        return static_cast<float>((xd + static_cast<double>(0.099f)) * static_cast<double>(0.9099181f));
    } else {
        return (x * r.inv + 0.099f) * 0.9099181f;
    }
}
template <const FloatRow& M, class F>
inline auto InvLower(F x, const Range& r) {
    if constexpr (M.dblTest) return Narrow(static_cast<double>(0.0812f) > Cvt<typename WideOf<F>::type>(x) * r.invd);
    else return 0.0812f > r.inv * x;
}
// Both branches are plain products, so four lanes compute both and select.
template <const FloatRow& M, class F>
inline F InvChoice(F x, F p, const Range& r) {
    const F upper = M.scaleRange ? p * r.range : p;
    if constexpr (std::is_same_v<F, float>) return InvLower<M>(x, r) ? 0.22222222f * x : upper;
    else return pw::Select(InvLower<M>(x, r), 0.22222222f * x, upper);
}

// Forward, C3 and planar: the float power sample by sample, four samples at a
// time where none of them needs the power's special cases.
template <const FloatRow& M>
inline float FwdOne(float s, const Range& r) {
    const float x = s - r.vMin;
    bool lower;
    const float t = FwdT<M>(x, r, lower);
    if (lower) return 4.5f * x + r.vMin;
    // A positive finite t needs none of the power's special cases.
    const uint32_t bt = pw::FBits(t);
    return FwdUpper<M>(bt - 1u < 0x7F7FFFFFu ? pw::LogExpF(bt, kFwdPower, false) : mx_zilsPowOneF(t, kFwdPower), r);
}
// Four samples by the estimate of the power, with no branch; `bad` marks the
// lanes that need FwdSlow4 (lanes of the lower branch need no power at all).
template <const FloatRow& M>
inline pw::F4 FwdFast4(pw::F4 v, const Range& r, pw::I4& bad) {
    const pw::F4 x = v - r.vMin;
    pw::I4 lower;
    const pw::F4 t = FwdT<M>(x, r, lower);
    const pw::F4 p = FwdPow4(pw::Bits<pw::U4>(t), bad);
    bad &= ~lower;
    return pw::Select(lower, 4.5f * x + r.vMin, FwdUpper<M>(p, r));
}
// Four samples by the four-lane power, or one by one where that declines.
template <const FloatRow& M>
inline void FwdSlow4(pw::F4 v, float* d, const Range& r) {
    const pw::F4 x = v - r.vMin;
    pw::I4 lower;
    const pw::F4 t = FwdT<M>(x, r, lower);
    pw::F4 p;  // lanes of the lower branch take the power of 0.5, unused
    if (pw::LogExpF4(pw::Select(lower, pw::F4{} + 0.5f, t), kFwdPower, p)) {
        const pw::F4 out = pw::Select(lower, 4.5f * x + r.vMin, FwdUpper<M>(p, r));
        __builtin_memcpy(d, &out, 16);
    } else {
        for (int k = 0; k < 4; ++k) d[k] = FwdOne<M>(v[k], r);
    }
}
// Eight samples an iteration, two groups of four whose chains overlap; a pair
// with a marked lane, rare, goes by FwdSlow4 before anything is written, so
// that in place its source is still there.
template <const FloatRow& M>
void FwdRowScalar(const float* s, float* d, int n, const Range& r) {
    const Range lr = r;  // a copy no store can alias, so it stays in registers
    int i = 0;
    for (; i + 8 <= n; i += 8) {
        pw::F4 v0, v1;
        __builtin_memcpy(&v0, s + i, 16);
        __builtin_memcpy(&v1, s + i + 4, 16);
        pw::I4 bad0, bad1;
        const pw::F4 o0 = FwdFast4<M>(v0, lr, bad0), o1 = FwdFast4<M>(v1, lr, bad1);
        if (__builtin_expect(pw::Any(bad0 | bad1), 0)) {
            FwdSlow4<M>(v0, d + i, r);
            FwdSlow4<M>(v1, d + i + 4, r);
        } else {
            __builtin_memcpy(d + i, &o0, 16);
            __builtin_memcpy(d + i + 4, &o1, 16);
        }
    }
    if (i + 4 <= n) {
        pw::F4 v;
        __builtin_memcpy(&v, s + i, 16);
        FwdSlow4<M>(v, d + i, r);
        i += 4;
    }
    for (; i < n; ++i) d[i] = FwdOne<M>(s[i], r);
}

// Inverse, C3 and planar: blocks of 384 from the start of the row, each
// sample through x := s - vMin, the base, the vector power on the block, the
// choice and vMin added back. A zero vMin takes x as the source sample itself
// instead of adding or subtracting it, which keeps the sign of a zero and a
// NaN's payload; in place, each x is read before its output is written.
template <const FloatRow& M>
void InvRow(const float* s, float* d, int n, const Range& r) {
    const bool shift = r.vMin != 0.0f;
    float shifted[kBlock], buf[kBlock];
    for (int b = 0; b < n; b += kBlock) {
        const int len = n - b < kBlock ? n - b : kBlock;
        const float* xs = s + b;
        if (shift) {
            for (int i = 0; i < len; ++i) shifted[i] = s[b + i] - r.vMin;
            xs = shifted;
        }
        for (int i = 0; i < len; ++i) buf[i] = InvBase<M>(xs[i], r);
        mx_zilsPowx_32f_A21(buf, buf, len, kInvPower);
        int i = 0;
        for (; i + 4 <= len; i += 4) {
            pw::F4 x, p;
            __builtin_memcpy(&x, xs + i, 16);
            __builtin_memcpy(&p, buf + i, 16);
            pw::F4 out = InvChoice<M>(x, p, r);
            if (shift) out = out + r.vMin;
            __builtin_memcpy(d + b + i, &out, 16);
        }
        for (; i < len; ++i) d[b + i] = shift ? InvChoice<M>(xs[i], buf[i], r) + r.vMin : InvChoice<M>(xs[i], buf[i], r);
    }
}

// AC4, both directions: blocks of 128 pixels whose 384 colour samples the
// buffer holds packed; alpha is neither read nor written.
template <const FloatRow& M>
void Ac4Row(const float* s, float* d, int w, const Range& r) {
    float buf[kBlock];
    for (int b = 0; b < w; b += kBlock / 3) {
        const int px = w - b < kBlock / 3 ? w - b : kBlock / 3;
        const float* sb = s + 4 * b;
        float* db = d + 4 * b;
        bool lower;
        for (int i = 0; i < px; ++i)
            for (int c = 0; c < 3; ++c) {
                const float x = sb[4 * i + c] - r.vMin;
                if constexpr (M.inverse) buf[3 * i + c] = InvBase<M>(x, r);
                else buf[3 * i + c] = FwdT<M>(x, r, lower);
            }
        mx_zilsPowx_32f_A21(buf, buf, 3 * px, M.inverse ? kInvPower : kFwdPower);
        for (int i = 0; i < px; ++i)
            for (int c = 0; c < 3; ++c) {
                const float x = sb[4 * i + c] - r.vMin;
                const float p = buf[3 * i + c];
                float out;
                if constexpr (M.inverse) {
                    out = InvChoice<M>(x, p, r) + r.vMin;
                } else {
                    FwdT<M>(x, r, lower);
                    out = lower ? 4.5f * x + r.vMin : FwdUpper<M>(p, r);
                }
                db[4 * i + c] = out;
            }
    }
}

template <const FloatRow& M>
ZilStatus FloatImage(const Job<float>& j, float vMin, float vMax) {
    const float range = vMax - vMin;
    const Range r{vMin, range, 1.0f / range, 1.0 / static_cast<double>(range)};
    ForEachRow(j, [&](const float* s, float* d) {
        if constexpr (M.lay == Lay::AC4) Ac4Row<M>(s, d, j.units, r);
        else if constexpr (M.inverse) InvRow<M>(s, d, j.units, r);
        else FwdRowScalar<M>(s, d, j.units, r);
    });
    return zilStatusOk;
}

// ---------------------------------------------------------------------------
// Check layers, one per argument shape.

template <class T>
ZilStatus Packed(const T* src, int srcStep, T* dst, int dstStep, ZilSize roi, Lay lay, const T* tab) {
    if (const ZilStatus st = CheckRest(AnyNull(src, dst), roi, srcStep, dstStep)) return st;
    return LutImage(PackedJob(src, srcStep, dst, dstStep, roi, lay), lay, tab);
}
template <class T>
ZilStatus Planes(const T* const src[3], int srcStep, T* const dst[3], int dstStep, ZilSize roi, const T* tab) {
    if (const ZilStatus st = CheckRest(AnyNullPlanes(src) || AnyNullPlanes(dst), roi, srcStep, dstStep)) return st;
    return LutImage(PlanarJob(src, srcStep, dst, dstStep, roi), Lay::P3, tab);
}

template <const FloatRow& M>
ZilStatus PackedF(const float* src, int srcStep, float* dst, int dstStep, ZilSize roi, float vMin, float vMax) {
    if (BadRange(vMin, vMax)) return zilStatusBadRange;
    if (const ZilStatus st = CheckRest(AnyNull(src, dst), roi, srcStep, dstStep)) return st;
    return FloatImage<M>(PackedJob(src, srcStep, dst, dstStep, roi, M.lay), vMin, vMax);
}
template <const FloatRow& M>
ZilStatus PlanesF(const float* const src[3], int srcStep, float* const dst[3], int dstStep, ZilSize roi, float vMin,
                  float vMax) {
    if (BadRange(vMin, vMax)) return zilStatusBadRange;
    if (const ZilStatus st = CheckRest(AnyNullPlanes(src) || AnyNullPlanes(dst), roi, srcStep, dstStep)) return st;
    return FloatImage<M>(PlanarJob(src, srcStep, dst, dstStep, roi), vMin, vMax);
}

}  // namespace
}  // namespace zil::gamma

using namespace zil::gamma;

// Integer forms: table and layout.
#define ZIL_GAMMA_INT(Dir, code, T, tab)                                                                            \
    ZIL_IMPL ZilStatus mx_ziliGamma##Dir##_##code##_C3R(const T* s, int ss, T* d, int ds, ZilSize r) {             \
        return Packed<T>(s, ss, d, ds, r, Lay::C3, tab);                                                            \
    }                                                                                                               \
    ZIL_IMPL ZilStatus mx_ziliGamma##Dir##_##code##_C3IR(T* sd, int st, ZilSize r) {                               \
        return Packed<T>(sd, st, sd, st, r, Lay::C3, tab);                                                          \
    }                                                                                                               \
    ZIL_IMPL ZilStatus mx_ziliGamma##Dir##_##code##_AC4R(const T* s, int ss, T* d, int ds, ZilSize r) {            \
        return Packed<T>(s, ss, d, ds, r, Lay::AC4, tab);                                                           \
    }                                                                                                               \
    ZIL_IMPL ZilStatus mx_ziliGamma##Dir##_##code##_AC4IR(T* sd, int st, ZilSize r) {                              \
        return Packed<T>(sd, st, sd, st, r, Lay::AC4, tab);                                                         \
    }                                                                                                               \
    ZIL_IMPL ZilStatus mx_ziliGamma##Dir##_##code##_P3R(const T* const s[3], int ss, T* const d[3], int ds,        \
                                                        ZilSize r) {                                                \
        return Planes<T>(s, ss, d, ds, r, tab);                                                                     \
    }                                                                                                               \
    ZIL_IMPL ZilStatus mx_ziliGamma##Dir##_##code##_IP3R(T* const sd[3], int st, ZilSize r) {                      \
        return Planes<T>(sd, st, sd, st, r, tab);                                                                   \
    }

ZIL_GAMMA_INT(Fwd, 8u, uint8_t, tableFwd8u)
ZIL_GAMMA_INT(Inv, 8u, uint8_t, tableInv8u)
ZIL_GAMMA_INT(Fwd, 16u, uint16_t, tableFwd16u)
ZIL_GAMMA_INT(Inv, 16u, uint16_t, tableInv16u)
#undef ZIL_GAMMA_INT

// Float forms: one member row each.
#define ZIL_GAMMA_32F(name, row)                                                                                  \
    ZIL_IMPL ZilStatus mx_ziliGamma##name##R(const float* s, int ss, float* d, int ds, ZilSize r, float lo,        \
                                            float hi) {                                                            \
        return PackedF<row>(s, ss, d, ds, r, lo, hi);                                                              \
    }
#define ZIL_GAMMA_32F_I(name, row)                                                                                \
    ZIL_IMPL ZilStatus mx_ziliGamma##name##IR(float* sd, int st, ZilSize r, float lo, float hi) {                  \
        return PackedF<row>(sd, st, sd, st, r, lo, hi);                                                            \
    }
ZIL_GAMMA_32F(Fwd_32f_C3, kFwdC3)
ZIL_GAMMA_32F_I(Fwd_32f_C3, kFwdC3)
ZIL_GAMMA_32F(Fwd_32f_AC4, kFwdAC4R)
ZIL_GAMMA_32F_I(Fwd_32f_AC4, kFwdAC4IR)
ZIL_GAMMA_32F(Inv_32f_C3, kInvC3R)
ZIL_GAMMA_32F_I(Inv_32f_C3, kInvC3IR)
ZIL_GAMMA_32F(Inv_32f_AC4, kInvAC4)
ZIL_GAMMA_32F_I(Inv_32f_AC4, kInvAC4)
#undef ZIL_GAMMA_32F
#undef ZIL_GAMMA_32F_I

ZIL_IMPL ZilStatus mx_ziliGammaFwd_32f_P3R(const float* const s[3], int ss, float* const d[3], int ds, ZilSize r,
                                           float lo, float hi) {
    return PlanesF<kFwdP3>(s, ss, d, ds, r, lo, hi);
}
ZIL_IMPL ZilStatus mx_ziliGammaFwd_32f_IP3R(float* const sd[3], int st, ZilSize r, float lo, float hi) {
    return PlanesF<kFwdP3>(sd, st, sd, st, r, lo, hi);
}
ZIL_IMPL ZilStatus mx_ziliGammaInv_32f_P3R(const float* const s[3], int ss, float* const d[3], int ds, ZilSize r,
                                           float lo, float hi) {
    return PlanesF<kInvP3>(s, ss, d, ds, r, lo, hi);
}
ZIL_IMPL ZilStatus mx_ziliGammaInv_32f_IP3R(float* const sd[3], int st, ZilSize r, float lo, float hi) {
    return PlanesF<kInvP3>(sd, st, sd, st, r, lo, hi);
}
