// DemosaicAHD throughput: a 1920 x 1080 mosaic of random samples, whole image,
// RGGB, one thread, work buffer of 30 lines. Figures in megapixels per second.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "zilcc.h"

namespace {

constexpr int kW = 1920, kH = 1080;
constexpr int kLine = kW + 6;  // samples per work line for an even width

template <class T>
std::vector<T> Mosaic() {
    std::vector<T> p(size_t(kW) * kH);
    uint32_t s = 2024;
    for (auto& v : p) {
        s ^= s << 13, s ^= s >> 17, s ^= s << 5;
        v = T(s >> (sizeof(T) == 1 ? 24 : 16));
    }
    return p;
}

template <class T, class F>
void Run(benchmark::State& state, F fn) {
    const std::vector<T> src = Mosaic<T>();
    std::vector<T> dst(size_t(3) * kW * kH), buf(size_t(30) * kLine);
    for (auto _ : state) {
        const ZilStatus st = fn(src.data(), ZilRect{0, 0, kW, kH}, ZilSize{kW, kH}, int(kW * sizeof(T)), dst.data(),
                                int(3 * kW * sizeof(T)), zilBayerRGGB, buf.data(), int(kLine * sizeof(T)));
        if (st != zilStatusOk) state.SkipWithError("call failed");
        benchmark::DoNotOptimize(dst.data());
        benchmark::ClobberMemory();
    }
    state.counters["Mpix/s"] =
        benchmark::Counter(double(kW) * kH * double(state.iterations()) / 1e6, benchmark::Counter::kIsRate);
}

void BM_DemosaicAHD_8u(benchmark::State& state) { Run<uint8_t>(state, ziliDemosaicAHD_8u_C1C3R); }
void BM_DemosaicAHD_16u(benchmark::State& state) { Run<uint16_t>(state, ziliDemosaicAHD_16u_C1C3R); }
BENCHMARK(BM_DemosaicAHD_8u)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DemosaicAHD_16u)->Unit(benchmark::kMillisecond);

}  // namespace
