// Load hooks and the few runtime routines a freestanding object must carry.
//
// The compiler may turn a copy or fill loop into a call of memcpy/memset (and
// aggregate copies into memcpy); the object imports nothing, so it defines its
// own hidden versions. This file is compiled with -fno-builtin and without
// loop-to-library-call idiom recognition, so these bodies stay plain loops.
#include "zil_common.h"

extern "C" {

// The loader calls _init after relocation and _fini at unload; both do nothing.
ZIL_HIDDEN int _init(void) { return 1; }
ZIL_HIDDEN void _fini(void) {}

ZIL_HIDDEN void* memcpy(void* __restrict d, const void* __restrict s, size_t n) {
    auto* dp = static_cast<uint8_t*>(d);
    const auto* sp = static_cast<const uint8_t*>(s);
    for (size_t i = 0; i < n; ++i) dp[i] = sp[i];
    return d;
}

ZIL_HIDDEN void* memmove(void* d, const void* s, size_t n) {
    auto* dp = static_cast<uint8_t*>(d);
    const auto* sp = static_cast<const uint8_t*>(s);
    if (dp < sp) {
        for (size_t i = 0; i < n; ++i) dp[i] = sp[i];
    } else {
        for (size_t i = n; i > 0; --i) dp[i - 1] = sp[i - 1];
    }
    return d;
}

ZIL_HIDDEN void* memset(void* d, int c, size_t n) {
    auto* dp = static_cast<uint8_t*>(d);
    for (size_t i = 0; i < n; ++i) dp[i] = static_cast<uint8_t>(c);
    return d;
}

ZIL_HIDDEN int memcmp(const void* a, const void* b, size_t n) {
    const auto* ap = static_cast<const uint8_t*>(a);
    const auto* bp = static_cast<const uint8_t*>(b);
    for (size_t i = 0; i < n; ++i)
        if (ap[i] != bp[i]) return ap[i] < bp[i] ? -1 : 1;
    return 0;
}

}  // extern "C"
