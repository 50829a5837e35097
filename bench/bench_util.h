// Shared pieces of the benchmark programs: the 1920 x 1080 frame, a mosaic of
// random samples and the megapixels-per-second counter.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

namespace zilbench {

constexpr int kW = 1920, kH = 1080;

// A kW x kH plane of xorshift samples spanning the element's whole range.
template <class T>
std::vector<T> Mosaic(uint32_t seed) {
    std::vector<T> p(size_t(kW) * kH);
    uint32_t s = seed;
    for (auto& v : p) {
        s ^= s << 13, s ^= s >> 17, s ^= s << 5;
        v = T(s >> (sizeof(T) == 1 ? 24 : 16));
    }
    return p;
}

// Reports a kW x kH frame per iteration as megapixels per second.
inline void CountMpix(benchmark::State& st) {
    st.counters["Mpix/s"] = benchmark::Counter(double(kW) * kH / 1e6, benchmark::Counter::kIsIterationInvariantRate);
}

}  // namespace zilbench
