// Chroma reformatting: how one side of a conversion lies in memory.
//
// Every side is one of three packings, with the chroma components in one of
// two orders:
//   P3  three planes Y, Cb, Cr (under a YCrCb name Y, Cr, Cb), steps in an array
//   P2  a luma plane and a plane of interleaved chroma pairs (Cb Cr or Cr Cb)
//   C2  a packed 4:2:2 stream, four bytes per pixel pair
// A Pack names where luma and each chroma component sit. Kernels take the
// Pack as a constant, so every offset and stride folds into the addressing.
#pragma once

#include "zil_common.h"

namespace zil::refmt {

enum class Pk : uint8_t { P3, P2, C2 };

// P3: cb and cr are plane indices. P2: byte of the pair. C2: byte within the
// four-byte group, y being the first luma byte (the second sits two further).
struct Pack {
    Pk kind;
    int8_t y, cb, cr;
};
inline constexpr Pack kPlanes{Pk::P3, 0, 1, 2};      // Y, Cb, Cr
inline constexpr Pack kPlanesCrCb{Pk::P3, 0, 2, 1};  // Y, Cr, Cb
inline constexpr Pack kPairs{Pk::P2, 0, 0, 1};       // pairs Cb Cr
inline constexpr Pack kPairsCrCb{Pk::P2, 0, 1, 0};   // pairs Cr Cb
inline constexpr Pack kYCbCr422{Pk::C2, 0, 1, 3};    // Y0 Cb Y1 Cr
inline constexpr Pack kYCrCb422{Pk::C2, 0, 3, 1};    // Y0 Cr Y1 Cb
inline constexpr Pack kCbYCr422{Pk::C2, 1, 0, 2};    // Cb Y0 Cr Y1

// Distance between successive luma samples and successive chroma samples of
// one component, and the byte offset of each component.
constexpr int YStride(Pack p) { return p.kind == Pk::C2 ? 2 : 1; }
constexpr int CStride(Pack p) { return p.kind == Pk::C2 ? 4 : p.kind == Pk::P2 ? 2 : 1; }
constexpr int YOff(Pack p) { return p.kind == Pk::C2 ? p.y : 0; }
constexpr int CbOff(Pack p) { return p.kind == Pk::P3 ? 0 : p.cb; }
constexpr int CrOff(Pack p) { return p.kind == Pk::P3 ? 0 : p.cr; }
// Which base pointer holds the rows of each component.
constexpr int CbBase(Pack p) { return p.kind == Pk::P3 ? p.cb : p.kind == Pk::P2 ? 1 : 0; }
constexpr int CrBase(Pack p) { return p.kind == Pk::P3 ? p.cr : p.kind == Pk::P2 ? 1 : 0; }

// The base pointers and byte steps as the caller gave them: P3 the planes in
// array order, P2 luma then the pair plane, C2 the stream alone.
template <class T>
struct Side {
    T* p[3];
    ptrdiff_t s[3];
    T* Row(int base, ptrdiff_t r) const { return p[base] + r * s[base]; }
};
using SrcSide = Side<const uint8_t>;
using DstSide = Side<uint8_t>;

inline SrcSide FromP3(const uint8_t* const* p, const int* s) {
    return {{p[0], p[1], p[2]}, {s[0], s[1], s[2]}};
}
inline DstSide FromP3(uint8_t* const* p, const int* s) { return {{p[0], p[1], p[2]}, {s[0], s[1], s[2]}}; }
template <class T>
Side<T> FromP2(T* y, int ys, T* c, int cs) { return {{y, c, nullptr}, {ys, cs, 0}}; }
template <class T>
Side<T> FromC2(T* p, int s) { return {{p, nullptr, nullptr}, {s, 0, 0}}; }

// Null tests of a plane array: the array itself and its three entries.
template <class T>
bool NullArr3(T* const* a) { return a == nullptr || AnyNull(a[0], a[1], a[2]); }
template <class T>
bool NullEntries3(T* const* a) { return AnyNull(a[0], a[1], a[2]); }

constexpr uint8_t Min255(int v) { return uint8_t(v > 255 ? 255 : v); }

}  // namespace zil::refmt
