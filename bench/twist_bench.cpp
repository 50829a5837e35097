// Colour twist and tone mapping throughput, 1920x1080, one thread.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "bench_util.h"
#include "zilcc.h"

namespace {

using zilbench::kH;
using zilbench::kW;

// A sepia-like matrix with offsets: every output lands partly in range, partly
// saturated, so all of the store's cases run.
const float kSepia[12] = {0.393f, 0.769f, 0.189f, 4.0f, 0.349f, 0.686f, 0.168f, -2.5f, 0.272f, 0.534f, 0.131f, 0.0f};

void BM_Twist8uC3R(benchmark::State& state) {
    const std::vector<uint8_t> src = zilbench::Mosaic<uint8_t>(7), more = zilbench::Mosaic<uint8_t>(8),
                               last = zilbench::Mosaic<uint8_t>(9);
    std::vector<uint8_t> img(size_t(kW) * kH * 3), dst(img.size());
    for (size_t i = 0; i < src.size(); ++i) img[3 * i] = src[i], img[3 * i + 1] = more[i], img[3 * i + 2] = last[i];
    for (auto _ : state) {
        benchmark::DoNotOptimize(ziliColorTwist32f_8u_C3R(img.data(), 3 * kW, dst.data(), 3 * kW, {kW, kH}, kSepia));
        benchmark::ClobberMemory();
    }
    zilbench::CountMpix(state);
}
BENCHMARK(BM_Twist8uC3R)->Unit(benchmark::kMillisecond);

void BM_Twist32fC3R(benchmark::State& state) {
    std::vector<float> img(size_t(kW) * kH * 3), dst(img.size());
    for (size_t i = 0; i < img.size(); ++i) img[i] = float(i % 1021) * 0.25f;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ziliColorTwist_32f_C3R(img.data(), 12 * kW, dst.data(), 12 * kW, {kW, kH}, kSepia));
        benchmark::ClobberMemory();
    }
    zilbench::CountMpix(state);
}
BENCHMARK(BM_Twist32fC3R)->Unit(benchmark::kMillisecond);

// A high-range image: a ramp with a few bright spots.
std::vector<float> HighRange() {
    std::vector<float> img(size_t(kW) * kH);
    for (size_t i = 0; i < img.size(); ++i) img[i] = float(i % kW) * 0.01f + ((i % 9973) == 0 ? 5000.0f : 0.0f);
    return img;
}

template <ZilStatus (*F)(const float*, int, uint8_t*, int, ZilSize)>
void BM_ToneMap(benchmark::State& state) {
    const std::vector<float> img = HighRange();
    std::vector<uint8_t> dst(img.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(F(img.data(), 4 * kW, dst.data(), kW, {kW, kH}));
        benchmark::ClobberMemory();
    }
    zilbench::CountMpix(state);
}
BENCHMARK(BM_ToneMap<ziliToneMapLinear_32f8u_C1R>)->Name("BM_ToneMapLinear")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToneMap<ziliToneMapMean_32f8u_C1R>)->Name("BM_ToneMapMean")->Unit(benchmark::kMillisecond);

}  // namespace
