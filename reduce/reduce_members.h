// ReduceBits: the element pairs as table rows.
//
// One worker template per dither kind serves all eight pairs. What differs
// between pairs is data: the source element and how it becomes a working value
// on the source's own scale, the destination element, the level bound, the
// scale constants of the quantiser and the rule that turns a level into the
// destination value. 8u alone goes through an integer level index and its
// truncated multiplier `levelMul`; the others through the level's value.
#pragma once

#include <type_traits>

#include "zil_common.h"

namespace zil::reduce {

// How a source element becomes the working value v, and the scale it lies on.
enum class Src : uint8_t {
    U8,   // v = s, on 0..255
    U16,  // v = s, on 0..65535
    S16,  // v = s + 32768, on 0..65535
    F32,  // v = s, on 0..1 (not enforced: values outside wrap)
};

// How a level becomes the destination element.
enum class Dst : uint8_t {
    U8Mul,   // 8-bit: bits 8..15 of (level index times levelMul)
    U16,     // 16-bit: trunc(b + 0.5)
    S16,     // 16-bit signed: trunc(b + 0.5) - 32768
    U8Shr,   // 8-bit: trunc(b + 0.5) >> 8
    F8,      // 8-bit: trunc(b * 255 + 0.5)
    F16,     // 16-bit: trunc(b * 65535 + 0.5)
    F16S,    // 16-bit signed: trunc(b * 65535 + 0.5) - 32768
};

struct Pair {
    Src src;
    Dst dst;
    bool dst8;  // 8-bit destination: levels up to 256, plain top 255
};

//                                     source      level rule   8-bit dst
inline constexpr Pair k8u       {Src::U8,  Dst::U8Mul, true};
inline constexpr Pair k16u      {Src::U16, Dst::U16,   false};
inline constexpr Pair k16s      {Src::S16, Dst::S16,   false};
inline constexpr Pair k32f8u    {Src::F32, Dst::F8,    true};
inline constexpr Pair k32f16u   {Src::F32, Dst::F16,   false};
inline constexpr Pair k32f16s   {Src::F32, Dst::F16S,  false};
inline constexpr Pair k16u8u    {Src::U16, Dst::U8Shr, true};
inline constexpr Pair k16s8u    {Src::S16, Dst::U8Shr, true};

template <Src> struct SrcElem;
template <> struct SrcElem<Src::U8> { using T = uint8_t; };
template <> struct SrcElem<Src::U16> { using T = uint16_t; };
template <> struct SrcElem<Src::S16> { using T = int16_t; };
template <> struct SrcElem<Src::F32> { using T = float; };
template <const Pair& P>
using SrcT = typename SrcElem<P.src>::T;
template <const Pair& P>
using DstT = std::conditional_t<P.dst8, uint8_t,
             std::conditional_t<P.dst == Dst::U16 || P.dst == Dst::F16, uint16_t, int16_t>>;

// Element access. Steps are byte distances that need not be multiples of the
// element size, so a row may start at any address: loads and stores go
// through byte copies, which compile to plain unaligned moves.
template <class T>
inline T Ld(const T* p) {
    T v;
    __builtin_memcpy(&v, p, sizeof(T));
    return v;
}
template <class T>
inline void St(T* p, int32_t v) {
    const T t = T(v);
    __builtin_memcpy(p, &t, sizeof(T));
}

// Layouts, as the check layer passes them on to the workers.
inline constexpr int32_t kCodeC1 = 1, kCodeC3 = 3, kCodeAC4 = 4, kCodeC4 = 5;

// Channels processed and pixel stride in elements of a layout code.
struct Walk { int channels, stride; };
constexpr Walk WalkOf(int32_t code) {
    return code == kCodeC1 ? Walk{1, 1} : code == kCodeC3 ? Walk{3, 3} : code == kCodeAC4 ? Walk{3, 4} : Walk{4, 4};
}

// ---- the ordered-dither matrix -------------------------------------------------
// Thresholds k / 15 in single precision: the closed range 0..1, both ends present.
inline constexpr int kBayerK[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
struct Matrix { float v[4][4]; };
constexpr Matrix MakeBayer() {
    Matrix m{};
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) m.v[y][x] = float(kBayerK[y][x]) / 15.0f;
    return m;
}
inline constexpr Matrix bayer_thresh = MakeBayer();
static_assert(bayer_thresh.v[3][0] == 1.0f && bayer_thresh.v[0][0] == 0.0f, "matrix ends");

// ---- error-diffusion weights ------------------------------------------------------
struct Weights12 { float w5, w7, w3, wInv; };
inline constexpr Weights12 kStucki{4.0f, 8.0f, 2.0f, 0.023809524f};   // sum 42
inline constexpr Weights12 kJarvis{5.0f, 7.0f, 3.0f, 0.020833334f};   // sum 48
static_assert(kStucki.wInv == 1.0f / 42.0f && kJarvis.wInv == 1.0f / 48.0f, "reciprocals of the weight sums");

// ---- work buffer ----------------------------------------------------------------
// Offsets from the buffer rounded up to 64 bytes.
inline constexpr uint32_t kRandStateSize = 56;
inline constexpr uint32_t kOffThreshold = 0;     // 1024 floats
inline constexpr uint32_t kOffIndex = 4096;      // 1024 int16
inline constexpr uint32_t kOffState16 = 6144;
inline constexpr uint32_t kOffState32 = 6144 + kRandStateSize;
inline constexpr uint32_t kOffRowsNoise = 6144 + 2 * kRandStateSize;  // 6256
inline uint8_t* Align64(uint8_t* p) {
    return reinterpret_cast<uint8_t*>((reinterpret_cast<uintptr_t>(p) + 63u) & ~uintptr_t(63));
}

}  // namespace zil::reduce
