// Internal uniform random generator: a 32-bit congruential sequence added to a
// lag-3 subtract-with-borrow sequence, mapped linearly onto [low, high].
//
// Not exported. The state lives in caller memory (56 bytes); the stream of a
// seed is fixed and every noise-dithered pixel depends on it.
#pragma once

#include "zil_common.h"

namespace zil::rnd {

inline constexpr int32_t kTag16s = 36;
inline constexpr int32_t kTag32f = 37;

struct State {
    int32_t tag;    // 36: 16-bit form, 37: float form
    uint32_t seed;  // as passed to the initialiser
    union {         // range as passed; kept for information only
        struct { int16_t low, high; } i16;
        struct { float low, high; } f32;
    } range;
    double mean;    // (low + high) / 2
    double scale;   // (high - low) / 2^32
    uint32_t lcg;   // congruential state
    uint32_t x0;    // latest subtract-with-borrow value
    uint32_t x1;    // the one before
    uint32_t x2;    // the one before that
    int32_t carry;  // 0 or -1
};
static_assert(sizeof(State) == 56, "the state record is 56 bytes");

}  // namespace zil::rnd

extern "C" {
ZIL_HIDDEN ZilStatus mx_zilsRandUniformGetSize_16s(int32_t* size);
ZIL_HIDDEN ZilStatus mx_zilsRandUniformGetSize_32f(int32_t* size);
ZIL_HIDDEN ZilStatus mx_zilsRandUniformInit_16s(void* state, int16_t low, int16_t high, uint32_t seed);
ZIL_HIDDEN ZilStatus mx_zilsRandUniformInit_32f(void* state, float low, float high, uint32_t seed);
ZIL_HIDDEN ZilStatus mx_zilsRandUniform_16s(int16_t* dst, int32_t count, void* state);
ZIL_HIDDEN ZilStatus mx_zilsRandUniform_32f(float* dst, int32_t count, void* state);
}
