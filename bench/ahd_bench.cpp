// DemosaicAHD throughput: a 1920 x 1080 mosaic of random samples, whole image,
// RGGB, one thread, work buffer of 30 lines. Figures in megapixels per second.
#include <vector>

#include "bench_util.h"
#include "zilcc.h"

namespace {

using zilbench::kH;
using zilbench::kW;
constexpr int kLine = kW + 6;  // samples per work line for an even width

template <class T, class F>
void Run(benchmark::State& state, F fn) {
    const std::vector<T> src = zilbench::Mosaic<T>(2024);
    std::vector<T> dst(size_t(3) * kW * kH), buf(size_t(30) * kLine);
    for (auto _ : state) {
        const ZilStatus st = fn(src.data(), ZilRect{0, 0, kW, kH}, ZilSize{kW, kH}, int(kW * sizeof(T)), dst.data(),
                                int(3 * kW * sizeof(T)), zilBayerRGGB, buf.data(), int(kLine * sizeof(T)));
        if (st != zilStatusOk) state.SkipWithError("call failed");
        benchmark::DoNotOptimize(dst.data());
        benchmark::ClobberMemory();
    }
    zilbench::CountMpix(state);
}

void BM_DemosaicAHD_8u(benchmark::State& state) { Run<uint8_t>(state, ziliDemosaicAHD_8u_C1C3R); }
void BM_DemosaicAHD_16u(benchmark::State& state) { Run<uint16_t>(state, ziliDemosaicAHD_16u_C1C3R); }
BENCHMARK(BM_DemosaicAHD_8u)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DemosaicAHD_16u)->Unit(benchmark::kMillisecond);

}  // namespace
