// Gamma throughput, 1920x1080, one thread: the 8-bit table look-up and the
// float forms (scalar power sample by sample forward, block power inverse).
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "bench_util.h"
#include "zilcc.h"

namespace {

using zilbench::kH;
using zilbench::kW;

template <ZilStatus (*F)(const uint8_t*, int, uint8_t*, int, ZilSize)>
void BM_Gamma8u(benchmark::State& state) {
    const std::vector<uint8_t> src = [] {
        std::vector<uint8_t> v;
        for (int c = 0; c < 3; ++c) {
            const auto m = zilbench::Mosaic<uint8_t>(11 + c);
            v.insert(v.end(), m.begin(), m.end());
        }
        return v;
    }();
    std::vector<uint8_t> dst(src.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(F(src.data(), 3 * kW, dst.data(), 3 * kW, {kW, kH}));
        benchmark::ClobberMemory();
    }
    zilbench::CountMpix(state);
}

template <ZilStatus (*F)(const float*, int, float*, int, ZilSize, float, float)>
void BM_Gamma32f(benchmark::State& state) {
    std::vector<float> src(size_t(3) * kW * kH), dst(src.size());
    const auto m = zilbench::Mosaic<uint16_t>(5);
    for (size_t i = 0; i < src.size(); ++i) src[i] = float(m[i % m.size()] ^ (i >> 7 & 0xFFFF)) / 65535.0f;
    for (auto _ : state) {
        benchmark::DoNotOptimize(F(src.data(), 12 * kW, dst.data(), 12 * kW, {kW, kH}, 0.0f, 1.0f));
        benchmark::ClobberMemory();
    }
    zilbench::CountMpix(state);
}

BENCHMARK(BM_Gamma8u<ziliGammaFwd_8u_C3R>)->Name("GammaFwd_8u_C3R")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Gamma8u<ziliGammaInv_8u_C3R>)->Name("GammaInv_8u_C3R")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Gamma32f<ziliGammaFwd_32f_C3R>)->Name("GammaFwd_32f_C3R")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Gamma32f<ziliGammaInv_32f_C3R>)->Name("GammaInv_32f_C3R")->Unit(benchmark::kMillisecond);

}  // namespace
