// Prints one line per export: its name and a hash of the statuses and of every
// destination byte (padding and guard-adjacent bytes included) over the valid
// calls of the harness at several extents, each with two source fillings. Two
// builds of the library print the same lines exactly when they compute the
// same bits on these calls, so comparing the output of differently built
// trees (optimisation level, target processor, compiler) checks that the
// build does not change results.
//   zilcc_digest [NAME-SUBSTRING]
#include <cstdio>
#include <cstring>
#include <vector>

#include "../guard.h"
#include "harness.h"

using namespace zilfuzz;

namespace {

struct Fnv {
    uint64_t h = 1469598103934665603ull;
    void Add(const void* p, size_t n) {
        for (size_t i = 0; i < n; ++i) h = (h ^ static_cast<const uint8_t*>(p)[i]) * 1099511628211ull;
    }
};

const int32_t kExtents[][2] = {{1, 1}, {2, 3}, {5, 4}, {8, 8}, {17, 6}, {37, 23}, {259, 33}};

}  // namespace

int main(int argc, char** argv) {
    const char* filter = argc > 1 ? argv[1] : "";
    std::vector<Fnv> sums(kRowCount);
    std::vector<long> calls(kRowCount);
    for (const auto& ext : kExtents) {
        for (const Case& c0 : ValidCases(ext[0], ext[1])) {
            const size_t row = size_t(c0.row - kRows);
            if (!std::strstr(c0.row->name, filter)) continue;
            for (uint32_t fill = 0; fill < 2; ++fill) {
                Case c = c0;
                c.src.seed += 7919 * fill;
                const Extents e = ExtentsOf(c);
                ImgBuf src, dst, work;
                BuildImg(c, e, 0, src);
                BuildImg(c, e, 1, dst);
                BuildImg(c, e, 2, work);
                const ZilStatus st = Call(c, src, dst, work);
                sums[row].Add(&st, sizeof st);
                for (int i = 0; i < dst.n; ++i) {
                    const std::vector<uint8_t> bytes = dst.pl[i].buf->copy();
                    sums[row].Add(bytes.data(), bytes.size());
                }
                ++calls[row];
            }
        }
    }
    for (size_t r = 0; r < kRowCount; ++r)
        if (calls[r]) std::printf("%-44s %016llx %ld\n", kRows[r].name, (unsigned long long)sums[r].h, calls[r]);
    return 0;
}
