// ReduceBits throughput per dither kind, 8u C1 and C3, 1920x1080, one thread.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "bench_util.h"
#include "zilcc.h"

namespace {

using zilbench::kH;
using zilbench::kW;

template <int C>
void BM_ReduceBits8u(benchmark::State& state) {
    const ZilDither dither = ZilDither(state.range(0));
    const int noise = int(state.range(1));
    const int levels = int(state.range(2));
    std::vector<uint8_t> src(size_t(kW) * kH * C), dst(src.size());
    uint32_t s = 12345;
    for (size_t i = 0; i < src.size(); ++i) {  // a smooth ramp with some grain
        s = s * 1664525u + 1013904223u;
        const size_t x = (i / C) % kW, y = (i / C) / kW;
        src[i] = uint8_t((x * 255 / kW + y * 64 / kH + (s >> 29)) & 255);
    }
    int size = 0;
    ziliReduceBitsGetBufferSize(C == 1 ? 1 : 3, ZilSize{kW, kH}, noise, dither, &size);
    std::vector<uint8_t> buf(size_t(size) + 1);
    for (auto _ : state) {
        const ZilStatus st =
            C == 1 ? ziliReduceBits_8u_C1R(src.data(), kW * C, dst.data(), kW * C, {kW, kH}, noise, dither, levels, buf.data())
                   : ziliReduceBits_8u_C3R(src.data(), kW * C, dst.data(), kW * C, {kW, kH}, noise, dither, levels, buf.data());
        benchmark::DoNotOptimize(st);
        benchmark::ClobberMemory();
    }
    zilbench::CountMpix(state);
}

void Args(benchmark::internal::Benchmark* b) {
    b->ArgNames({"dither", "noise", "levels"});
    for (int d : {0, 4, 1, 2, 3})
        for (int noise : {0, 30}) b->Args({d, noise, 4});
    b->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_ReduceBits8u<1>)->Apply(Args);
BENCHMARK(BM_ReduceBits8u<3>)->Apply(Args);

void BM_ReduceBits8u1u(benchmark::State& state) {
    const ZilDither dither = ZilDither(state.range(0));
    std::vector<uint8_t> src(size_t(kW) * kH), dst(size_t(kW / 8) * kH);
    for (size_t i = 0; i < src.size(); ++i) src[i] = uint8_t(i * 31 >> 3);
    int size = 0;
    ziliReduceBitsGetBufferSize(1, ZilSize{kW, kH}, 0, zilDitherStucki, &size);
    std::vector<uint8_t> buf(static_cast<size_t>(size));
    for (auto _ : state) {
        benchmark::DoNotOptimize(ziliReduceBits_8u1u_C1R(src.data(), kW, dst.data(), kW / 8, 0, {kW, kH}, 0, 0,
                                                          dither, 128, buf.data()));
        benchmark::ClobberMemory();
    }
    zilbench::CountMpix(state);
}
BENCHMARK(BM_ReduceBits8u1u)->Arg(0)->Arg(3)->Unit(benchmark::kMillisecond);

}  // namespace
