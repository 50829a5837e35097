// CFAToRGB throughput: a 1920 x 1080 mosaic of random samples, whole image,
// RGGB, one thread. Figures in megapixels per second.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "zilcc.h"

namespace {

constexpr int kW = 1920, kH = 1080;

template <class T>
std::vector<T> Mosaic() {
    std::vector<T> p(size_t(kW) * kH);
    uint32_t s = 12345;
    for (auto& v : p) {
        s ^= s << 13, s ^= s >> 17, s ^= s << 5;
        v = T(s >> (sizeof(T) == 1 ? 24 : 16));
    }
    return p;
}

template <class T, class F>
void Run(benchmark::State& state, F fn) {
    const std::vector<T> src = Mosaic<T>();
    std::vector<T> dst(size_t(3) * kW * kH);
    for (auto _ : state) {
        fn(src.data(), ZilRect{0, 0, kW, kH}, ZilSize{kW, kH}, int(kW * sizeof(T)), dst.data(),
           int(3 * kW * sizeof(T)), zilBayerRGGB);
        benchmark::DoNotOptimize(dst.data());
        benchmark::ClobberMemory();
    }
    state.counters["Mpix/s"] =
        benchmark::Counter(double(kW) * kH * double(state.iterations()) / 1e6, benchmark::Counter::kIsRate);
}

void BM_CFAToRGB_8u(benchmark::State& state) { Run<uint8_t>(state, ziliCFAToRGB_8u_C1C3R); }
void BM_CFAToRGB_16u(benchmark::State& state) { Run<uint16_t>(state, ziliCFAToRGB_16u_C1C3R); }
BENCHMARK(BM_CFAToRGB_8u)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CFAToRGB_16u)->Unit(benchmark::kMillisecond);

}  // namespace
