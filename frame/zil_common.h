// Internal helpers shared by every family of libzilccmx.so.
//
// The library is built freestanding: no libc, no libm, no exceptions, no static
// constructors and no writable globals. Everything here is constexpr or inline.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "zilcc.h"

// Hidden linkage for everything but the generated export stubs.
#define ZIL_HIDDEN __attribute__((visibility("hidden")))
// The implementation of export X is the hidden, unmangled function mx_X.
#define ZIL_IMPL extern "C" ZIL_HIDDEN

// The clamp table: chop[i] = 0 for i <= 370, i - 370 for 371..625, 255 above.
// chop[370 + x] clamps x to 0..255 for x in -370..629; chop[498 + x] also adds
// the chroma offset 128. CHOP_ARRAY points at chop[370].
extern "C" ZIL_HIDDEN const uint8_t chop[1000];
extern "C" ZIL_HIDDEN const uint8_t* const CHOP_ARRAY;

// The address of a hidden extern "C" object, read from the global offset
// table. Two objects are reached this way: the version record, which the
// version query hands out, and the forward gamma table, which the luma-chroma
// family borrows from the gamma family. Each has one entry in the offset
// table, filled at load by a relative relocation like the slots. The address
// is added to zero rather than moved: the linker rewrites a move from the
// offset table into a direct address and drops the entry, an add it keeps.
#define ZIL_GOT_ADDRESS(T, sym)                                                       \
    ([] {                                                                            \
        T* p_;                                                                       \
        __asm__("xorl %k0, %k0\n\taddq " #sym "@GOTPCREL(%%rip), %0" : "=r"(p_) : : "cc"); \
        return p_;                                                                   \
    }())

// Two-vector lane shuffle of generic vectors: lanes of a are 0..N-1, of b N..2N-1.
#if defined(__clang__)
#define ZIL_SHUFFLE(a, b, V, ...) __builtin_shufflevector(a, b, __VA_ARGS__)
#else
#define ZIL_SHUFFLE(a, b, V, ...) __builtin_shuffle(a, b, V{__VA_ARGS__})
#endif

namespace zil {

// The value of chop[370 + x], computed with compares so that row loops
// vectorise. Identical to the look-up over the table's whole index range.
constexpr inline int32_t Clamp255(int32_t x) { return x < 0 ? 0 : (x > 255 ? 255 : x); }

// Byte-step pointer arithmetic. Steps are signed byte distances and are never
// validated: zero repeats a row, negative walks upwards.
inline const uint8_t* Advance(const uint8_t* p, ptrdiff_t bytes) { return p + bytes; }
inline uint8_t* Advance(uint8_t* p, ptrdiff_t bytes) { return p + bytes; }
template <class T>
inline T* AdvanceT(T* p, ptrdiff_t bytes) {
    return reinterpret_cast<T*>(reinterpret_cast<uintptr_t>(p) + static_cast<uintptr_t>(bytes));
}

// Argument checks shared by the check layers.
template <class... P>
constexpr bool AnyNull(const P*... p) { return ((p == nullptr) || ...); }
constexpr bool TooSmall(ZilSize s, int32_t minW = 1, int32_t minH = 1) {
    return s.width < minW || s.height < minH;
}

}  // namespace zil
