// RGB <-> YUV throughput at 1920x1080, one thread, beside a memcpy of the same
// bytes. When the optional peer library for planar YUV is installed
// (ZIL_HAVE_PEER_YUV), its nearest conversions run side by side.
#include <cstring>
#include <vector>

#include "bench_util.h"
#include "zilcc.h"

#ifdef ZIL_HAVE_PEER_YUV
#include <libyuv/convert.h>
#include <libyuv/convert_from.h>
#endif

namespace {

using zilbench::kH;
using zilbench::kW;

struct Frame {
    std::vector<uint8_t> rgb = std::vector<uint8_t>(size_t(kW) * kH * 4);
    std::vector<uint8_t> y = std::vector<uint8_t>(size_t(kW) * kH * 3), u = std::vector<uint8_t>(size_t(kW) * kH),
                         v = std::vector<uint8_t>(size_t(kW) * kH);
    Frame() {
        uint32_t s = 1;
        for (auto& b : rgb) s = s * 1664525u + 1013904223u, b = uint8_t(s >> 24);
        for (size_t i = 0; i < y.size(); ++i) y[i] = uint8_t(i * 7);
        for (size_t i = 0; i < u.size(); ++i) u[i] = uint8_t(64 + i % 128), v[i] = uint8_t(200 - i % 150);
    }
};

void BM_memcpy_C3(benchmark::State& st) {  // the bytes of one C3 frame
    Frame f;
    for (auto _ : st) {
        std::memcpy(f.y.data(), f.rgb.data(), size_t(kW) * kH * 3);
        benchmark::ClobberMemory();
    }
    zilbench::CountMpix(st);
    st.SetBytesProcessed(int64_t(st.iterations()) * kW * kH * 3);
}

void BM_RGBToYUV420_8u_C3P3R(benchmark::State& st) {
    Frame f;
    uint8_t* dst[3] = {f.y.data(), f.u.data(), f.v.data()};
    const int ds[3] = {kW, kW / 2, kW / 2};
    for (auto _ : st) benchmark::DoNotOptimize(ziliRGBToYUV420_8u_C3P3R(f.rgb.data(), 3 * kW, dst, ds, {kW, kH}));
    zilbench::CountMpix(st);
}

void BM_YUV420ToRGB_8u_P3C3R(benchmark::State& st) {
    Frame f;
    const uint8_t* src[3] = {f.y.data(), f.u.data(), f.v.data()};
    const int ss[3] = {kW, kW / 2, kW / 2};
    for (auto _ : st) benchmark::DoNotOptimize(ziliYUV420ToRGB_8u_P3C3R(src, ss, f.rgb.data(), 3 * kW, {kW, kH}));
    zilbench::CountMpix(st);
}

void BM_RGBToYUV_8u_C3R(benchmark::State& st) {
    Frame f;
    for (auto _ : st) benchmark::DoNotOptimize(ziliRGBToYUV_8u_C3R(f.rgb.data(), 3 * kW, f.y.data(), 3 * kW, {kW, kH}));
    zilbench::CountMpix(st);
}

void BM_YUVToRGB_8u_C3R(benchmark::State& st) {
    Frame f;
    for (auto _ : st) benchmark::DoNotOptimize(ziliYUVToRGB_8u_C3R(f.y.data(), 3 * kW, f.rgb.data(), 3 * kW, {kW, kH}));
    zilbench::CountMpix(st);
}

void BM_RGBToYUV422_8u_C3C2R(benchmark::State& st) {
    Frame f;
    for (auto _ : st)
        benchmark::DoNotOptimize(ziliRGBToYUV422_8u_C3C2R(f.rgb.data(), 3 * kW, f.y.data(), 2 * kW, {kW, kH}));
    zilbench::CountMpix(st);
}

void BM_YUV422ToRGB_8u_P3C3(benchmark::State& st) {
    Frame f;
    const uint8_t* src[3] = {f.y.data(), f.u.data(), f.v.data()};
    for (auto _ : st) benchmark::DoNotOptimize(ziliYUV422ToRGB_8u_P3C3(src, f.rgb.data(), {kW, kH}));
    zilbench::CountMpix(st);
}

BENCHMARK(BM_memcpy_C3);
BENCHMARK(BM_RGBToYUV420_8u_C3P3R);
BENCHMARK(BM_YUV420ToRGB_8u_P3C3R);
BENCHMARK(BM_RGBToYUV_8u_C3R);
BENCHMARK(BM_YUVToRGB_8u_C3R);
BENCHMARK(BM_RGBToYUV422_8u_C3C2R);
BENCHMARK(BM_YUV422ToRGB_8u_P3C3);

#ifdef ZIL_HAVE_PEER_YUV
void BM_peer_RAWToI420(benchmark::State& st) {
    Frame f;
    for (auto _ : st)
        benchmark::DoNotOptimize(libyuv::RAWToI420(f.rgb.data(), 3 * kW, f.y.data(), kW, f.u.data(), kW / 2,
                                                   f.v.data(), kW / 2, kW, kH));
    zilbench::CountMpix(st);
}
void BM_peer_I420ToRAW(benchmark::State& st) {
    Frame f;
    for (auto _ : st)
        benchmark::DoNotOptimize(libyuv::I420ToRAW(f.y.data(), kW, f.u.data(), kW / 2, f.v.data(), kW / 2,
                                                   f.rgb.data(), 3 * kW, kW, kH));
    zilbench::CountMpix(st);
}
BENCHMARK(BM_peer_RAWToI420);
BENCHMARK(BM_peer_I420ToRAW);
#endif

}  // namespace
