// CFAToRGB throughput: a 1920 x 1080 mosaic of random samples, whole image,
// RGGB, one thread. Figures in megapixels per second.
#include <vector>

#include "bench_util.h"
#include "zilcc.h"

namespace {

using zilbench::kH;
using zilbench::kW;

template <class T, class F>
void Run(benchmark::State& state, F fn) {
    const std::vector<T> src = zilbench::Mosaic<T>(12345);
    std::vector<T> dst(size_t(3) * kW * kH);
    for (auto _ : state) {
        fn(src.data(), ZilRect{0, 0, kW, kH}, ZilSize{kW, kH}, int(kW * sizeof(T)), dst.data(),
           int(3 * kW * sizeof(T)), zilBayerRGGB);
        benchmark::DoNotOptimize(dst.data());
        benchmark::ClobberMemory();
    }
    zilbench::CountMpix(state);
}

void BM_CFAToRGB_8u(benchmark::State& state) { Run<uint8_t>(state, ziliCFAToRGB_8u_C1C3R); }
void BM_CFAToRGB_16u(benchmark::State& state) { Run<uint16_t>(state, ziliCFAToRGB_16u_C1C3R); }
BENCHMARK(BM_CFAToRGB_8u)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CFAToRGB_16u)->Unit(benchmark::kMillisecond);

}  // namespace
