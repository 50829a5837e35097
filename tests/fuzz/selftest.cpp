// The fuzz harness's checks must be able to fail: each faulty stand-in below
// breaks one promise, and the harness has to stop on it (abort or fault), in a
// child process. Two well-behaved stand-ins must pass.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "harness.h"

using namespace zilfuzz;

namespace {

// A correct C3 -> C3 copy with the library's checks.
ZilStatus Good(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize s) {
    if (!src || !dst) return zilStatusNullPointer;
    if (s.width < 1 || s.height < 1) return zilStatusBadSize;
    for (int y = 0; y < s.height; ++y) std::memcpy(dst + ptrdiff_t(y) * dstStep, src + ptrdiff_t(y) * srcStep, 3 * size_t(s.width));
    return zilStatusOk;
}
ZilStatus WritesOnError(const uint8_t*, int, uint8_t* dst, int, ZilSize) {
    if (dst) dst[0] ^= 1;
    return zilStatusBadSize;
}
ZilStatus WritesPastLastRow(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize s) {
    const ZilStatus st = Good(src, srcStep, dst, dstStep, s);
    if (st == 0) dst[ptrdiff_t(s.height - 1) * dstStep + 3 * s.width] = 0;
    return st;
}
ZilStatus ReadsBeforeFirstRow(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize s) {
    const ZilStatus st = Good(src, srcStep, dst, dstStep, s);
    if (st == 0) dst[0] = *(volatile const uint8_t*)(src - 1);
    return st;
}
ZilStatus WritesPadding(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize s) {
    const ZilStatus st = Good(src, srcStep, dst, dstStep, s);
    if (st == 0) dst[3 * s.width] ^= 0x5a;
    return st;
}
ZilStatus IgnoresNull(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize s) {
    if (!src || !dst) return zilStatusOk;
    return Good(src, srcStep, dst, dstStep, s);
}
ZilStatus KeepsState(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize s) {
    static int calls = 0;
    const ZilStatus st = Good(src, srcStep, dst, dstStep, s);
    if (st == 0) dst[0] = uint8_t(++calls);
    return st;
}
ZilStatus WritesSource(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize s) {
    const ZilStatus st = Good(src, srcStep, dst, dstStep, s);
    if (st == 0) const_cast<uint8_t*>(src)[0] ^= 1;
    return st;
}
ZilStatus UnknownStatus(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, ZilSize s) {
    return Good(src, srcStep, dst, dstStep, s) == 0 ? 7 : zilStatusBadSize;
}

struct Probe {
    const char* what;
    Row row;
    uint8_t dstMode;
    bool guardBefore;
    int nullTarget;
    bool mustPass;
};

#define PROBE_ROW(f) Row{#f, &Invoke<&f>, "sSdDz", 5, kC3, kC3, kNone}

const Probe kProbes[] = {
    {"a correct call", PROBE_ROW(Good), ModePadded, false, -1, true},
    {"a correct call given a null", PROBE_ROW(Good), ModeNegative, false, 15, true},
    {"a write on a failure status", PROBE_ROW(WritesOnError), ModeDense, false, -1, false},
    {"a write past the last row", PROBE_ROW(WritesPastLastRow), ModeDense, false, -1, false},
    {"a read before the first row", PROBE_ROW(ReadsBeforeFirstRow), ModeDense, true, -1, false},
    {"a write into a row's padding", PROBE_ROW(WritesPadding), ModePadded, false, -1, false},
    {"success with a null pointer", PROBE_ROW(IgnoresNull), ModeDense, false, 7, false},
    {"state kept between calls", PROBE_ROW(KeepsState), ModeDense, false, -1, false},
    {"a write to the source", PROBE_ROW(WritesSource), ModeDense, false, -1, false},
    {"a status outside the table", PROBE_ROW(UnknownStatus), ModeDense, false, -1, false},
};

}  // namespace

int main() {
    int wrong = 0;
    for (const Probe& p : kProbes) {
        Case c;
        c.row = &p.row;
        c.w = 5, c.h = 3;
        c.src.guardBefore = p.guardBefore;
        c.dst.mode = p.dstMode;
        c.dst.pad[0] = 4;
        c.nullTarget = p.nullTarget;
        std::fflush(stdout);
        const pid_t pid = fork();
        if (pid == 0) {
            // The child's report of a caught fault is expected; keep the log short.
            if (!p.mustPass) (void)!freopen("/dev/null", "w", stderr);
            RunOne(c);
            _exit(0);
        }
        int status = 0;
        waitpid(pid, &status, 0);
        const bool passed = WIFEXITED(status) && WEXITSTATUS(status) == 0;
        const bool ok = passed == p.mustPass;
        std::printf("%-32s %s: %s\n", p.what, p.mustPass ? "must pass" : "must be caught", ok ? "yes" : "NO");
        wrong += !ok;
    }
    return wrong ? 1 : 0;
}
