// Many threads call every export at once, each on its own destination and work
// buffer, all reading the same sources; every result must equal the result of a
// single-threaded run. Meant to run under ThreadSanitizer as well.
//   zilcc_concurrency [THREADS [ROUNDS]]
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "../guard.h"
#include "harness.h"

using namespace zilfuzz;

namespace {

struct Prepared {
    Case c;
    Extents e;
    ImgBuf src;                 // shared by all threads, read only
    ZilStatus status = 0;       // single-threaded result
    std::vector<std::vector<uint8_t>> result;
};

struct PerThread {
    std::vector<ImgBuf> dst, work;
};

}  // namespace

int main(int argc, char** argv) {
    const int threads = argc > 1 ? std::atoi(argv[1]) : 8;
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 4;
    const std::vector<Case> cases = ValidCases(37, 23);
    std::vector<Prepared> prep(cases.size());

    // Reference: one thread, one call each.
    for (size_t k = 0; k < cases.size(); ++k) {
        Prepared& p = prep[k];
        p.c = cases[k];
        p.e = ExtentsOf(p.c);
        BuildImg(p.c, p.e, 0, p.src);
        ImgBuf dst, work;
        BuildImg(p.c, p.e, 1, dst);
        BuildImg(p.c, p.e, 2, work);
        p.status = Call(p.c, p.src, dst, work);
        if (p.status == zilStatusBadSize) {  // members that take whole 4x4 cells only
            p.c.w &= ~3, p.c.h &= ~3;
            p.e = ExtentsOf(p.c);
            p.src = ImgBuf{}, dst = ImgBuf{}, work = ImgBuf{};
            BuildImg(p.c, p.e, 0, p.src);
            BuildImg(p.c, p.e, 1, dst);
            BuildImg(p.c, p.e, 2, work);
            p.status = Call(p.c, p.src, dst, work);
        }
        if (p.status < 0) {
            std::fprintf(stderr, "reference call failed with %d:\n  %s\n", int(p.status), p.c.Describe().c_str());
            return 1;
        }
        for (int i = 0; i < dst.n; ++i) p.result.push_back(dst.pl[i].buf->copy());
    }

    // Every thread builds its own destinations and work buffers first.
    std::vector<PerThread> mine(threads);
    for (auto& t : mine) {
        t.dst.resize(prep.size());
        t.work.resize(prep.size());
        for (size_t k = 0; k < prep.size(); ++k) {
            BuildImg(prep[k].c, prep[k].e, 1, t.dst[k]);
            BuildImg(prep[k].c, prep[k].e, 2, t.work[k]);
        }
    }

    std::atomic<int> ready{0};
    std::atomic<long> mismatches{0}, calls{0};
    std::vector<std::thread> pool;
    for (int t = 0; t < threads; ++t) {
        pool.emplace_back([&, t] {
            ready.fetch_add(1);
            while (ready.load() < threads) std::this_thread::yield();
            PerThread& me = mine[t];
            for (int r = 0; r < rounds; ++r) {
                for (size_t j = 0; j < prep.size(); ++j) {
                    // Each thread walks the exports from its own starting point.
                    const size_t k = (j + size_t(t) * 7 + size_t(r) * 3) % prep.size();
                    Prepared& p = prep[k];
                    if (r > 0) FillImg(p.c, 1, me.dst[k], p.c.dst.seed);  // back to the pre-fill
                    const ZilStatus st = Call(p.c, p.src, me.dst[k], me.work[k]);
                    calls.fetch_add(1, std::memory_order_relaxed);
                    bool same = st == p.status;
                    for (int i = 0; same && i < me.dst[k].n; ++i) same = me.dst[k].pl[i].buf->copy() == p.result[i];
                    if (!same && mismatches.fetch_add(1) < 10)
                        std::fprintf(stderr, "thread %d: result differs from the single-threaded run:\n  %s\n", t,
                                     p.c.Describe().c_str());
                }
            }
        });
    }
    for (auto& th : pool) th.join();
    std::printf("%d threads x %d rounds x %zu calls (%zu exports): %ld calls, %ld mismatches\n", threads, rounds,
                prep.size(), kRowCount, calls.load(), mismatches.load());
    return mismatches.load() == 0 && calls.load() == long(threads) * rounds * long(prep.size()) ? 0 : 1;
}
