// Internal uniform random generator (see random.h).
#include "random.h"

#include <emmintrin.h>

namespace zil::rnd {
namespace {

constexpr uint32_t kMul = 69069u;
constexpr uint32_t kInc = 1013904243u;      // 0x3C6EF373
constexpr uint32_t kLcgStart = 1131199209u;  // 0x436CBAE9, the same for every seed
constexpr uint32_t kBorrow = 18u;            // taken off a negative difference
constexpr double kCnst2in32 = 2.3283064365386963e-10;  // 2^-32 exactly
static_assert(kCnst2in32 * 4294967296.0 == 1.0, "2^-32");

void Seed(State* s, uint32_t seed) {
    s->seed = seed;
    s->lcg = kLcgStart;
    s->carry = -1;
    s->x0 = seed;
    s->x1 = s->x0 * kMul + kInc;
    s->x2 = s->x1 * kMul + kInc;
}

// Runs `count` steps on local copies of the state and hands each raw value
// r (a signed 32-bit number) to `out`; writes the state back once.
template <class Out>
void Generate(State* s, int32_t count, Out out) {
    uint32_t lcg = s->lcg, x0 = s->x0, x1 = s->x1, x2 = s->x2;
    uint32_t carry = uint32_t(s->carry);
    for (int32_t i = 0; i < count; ++i) {
        const uint32_t t = x1 - x2 + carry;
        // The sign is taken from the difference before the borrow correction.
        uint32_t u;
        if (int32_t(t) < 0) {
            u = t - kBorrow;
            carry = 0xFFFFFFFFu;
        } else {
            u = t;
            carry = 0;
        }
        x2 = x1, x1 = x0, x0 = u;
        lcg = lcg * kMul + kInc;
        out(i, int32_t(u + lcg));
    }
    s->lcg = lcg, s->x0 = x0, s->x1 = x1, s->x2 = x2;
    s->carry = int32_t(carry);
}

ZilStatus CheckRun(const void* dst, int32_t count, const State* s, int32_t tag) {
    if (dst == nullptr || s == nullptr) return zilStatusNullPointer;
    if (count < 1) return zilStatusBadSize;
    if (s->tag != tag) return zilStatusBadContext;
    return zilStatusOk;
}

}  // namespace
}  // namespace zil::rnd

using zil::rnd::State;

ZIL_IMPL ZilStatus mx_zilsRandUniformGetSize_16s(int32_t* size) {
    if (size == nullptr) return zilStatusNullPointer;
    *size = int32_t(sizeof(State));
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_zilsRandUniformGetSize_32f(int32_t* size) {
    if (size == nullptr) return zilStatusNullPointer;
    *size = int32_t(sizeof(State));
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_zilsRandUniformInit_16s(void* state, int16_t low, int16_t high, uint32_t seed) {
    if (state == nullptr) return zilStatusNullPointer;
    State* s = static_cast<State*>(state);
    s->tag = zil::rnd::kTag16s;
    s->range.i16.low = low, s->range.i16.high = high;
    // Sum and difference as 32-bit integers, then widened.
    s->scale = double(int32_t(high) - int32_t(low)) * zil::rnd::kCnst2in32;
    s->mean = double(int32_t(low) + int32_t(high)) * 0.5;
    zil::rnd::Seed(s, seed);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_zilsRandUniformInit_32f(void* state, float low, float high, uint32_t seed) {
    if (state == nullptr) return zilStatusNullPointer;
    State* s = static_cast<State*>(state);
    s->tag = zil::rnd::kTag32f;
    s->range.f32.low = low, s->range.f32.high = high;
    // Sum and difference in single precision, then widened.
    const float diff = high - low;
    const float sum = low + high;
    s->scale = double(diff) * zil::rnd::kCnst2in32;
    s->mean = double(sum) * 0.5;
    zil::rnd::Seed(s, seed);
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_zilsRandUniform_16s(int16_t* dst, int32_t count, void* state) {
    State* s = static_cast<State*>(state);
    if (ZilStatus st = zil::rnd::CheckRun(dst, count, s, zil::rnd::kTag16s)) return st;
    const double scale = s->scale, mean = s->mean;
    zil::rnd::Generate(s, count, [&](int32_t i, int32_t r) {
        const double v = double(r) * scale + mean;
        // Nearest, ties to even (the default rounding mode of the conversion);
        // the low 16 bits of the 32-bit result are kept.
        dst[i] = int16_t(_mm_cvtsd_si32(_mm_set_sd(v)));
    });
    return zilStatusOk;
}

ZIL_IMPL ZilStatus mx_zilsRandUniform_32f(float* dst, int32_t count, void* state) {
    State* s = static_cast<State*>(state);
    if (ZilStatus st = zil::rnd::CheckRun(dst, count, s, zil::rnd::kTag32f)) return st;
    const double scale = s->scale, mean = s->mean;
    zil::rnd::Generate(s, count, [&](int32_t i, int32_t r) { dst[i] = float(double(r) * scale + mean); });
    return zilStatusOk;
}
