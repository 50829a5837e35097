// Full-resolution YCbCr and gray throughput at 1920x1080, one thread. When the
// optional peer library for planar YUV is installed (ZIL_HAVE_PEER_YUV), its
// nearest conversions (four-byte pixels to and from 4:4:4, and to full-range
// gray) run side by side.
#include <vector>

#include "bench_util.h"
#include "zilcc.h"

#ifdef ZIL_HAVE_PEER_YUV
#include <libyuv/convert_argb.h>
#include <libyuv/convert_from_argb.h>
#endif

namespace {

using zilbench::kH;
using zilbench::kW;

struct Frame {
    std::vector<uint8_t> rgb = zilbench::Mosaic<uint8_t>(1), rgb2 = zilbench::Mosaic<uint8_t>(2),
                         rgb3 = zilbench::Mosaic<uint8_t>(3), rgb4 = zilbench::Mosaic<uint8_t>(4);
    std::vector<uint8_t> packed = std::vector<uint8_t>(size_t(kW) * kH * 4), out = std::vector<uint8_t>(size_t(kW) * kH * 4);
    std::vector<uint8_t> y = std::vector<uint8_t>(size_t(kW) * kH), u = y, v = y;
    Frame() {
        for (size_t i = 0; i < rgb.size(); ++i)
            packed[4 * i] = rgb[i], packed[4 * i + 1] = rgb2[i], packed[4 * i + 2] = rgb3[i], packed[4 * i + 3] = rgb4[i];
    }
};

// Runs `call` once per iteration over the frame and reports Mpix/s.
template <class F>
void Measure(benchmark::State& st, F call) {
    for (auto _ : st) benchmark::DoNotOptimize(call());
    zilbench::CountMpix(st);
}

void BM_RGBToYCbCr_8u_C3R(benchmark::State& st) {
    Frame f;
    Measure(st, [&] { return ziliRGBToYCbCr_8u_C3R(f.packed.data(), 3 * kW, f.out.data(), 3 * kW, {kW, kH}); });
}

void BM_YCbCrToRGB_8u_C3R(benchmark::State& st) {
    Frame f;
    Measure(st, [&] { return ziliYCbCrToRGB_8u_C3R(f.packed.data(), 3 * kW, f.out.data(), 3 * kW, {kW, kH}); });
}

void BM_RGBToYCbCr_8u_C3P3R(benchmark::State& st) {
    Frame f;
    uint8_t* dst[3] = {f.y.data(), f.u.data(), f.v.data()};
    Measure(st, [&] { return ziliRGBToYCbCr_8u_C3P3R(f.packed.data(), 3 * kW, dst, kW, {kW, kH}); });
}

void BM_YCbCrToRGB_8u_P3C3R(benchmark::State& st) {
    Frame f;
    const uint8_t* src[3] = {f.rgb.data(), f.rgb2.data(), f.rgb3.data()};
    Measure(st, [&] { return ziliYCbCrToRGB_8u_P3C3R(src, kW, f.out.data(), 3 * kW, {kW, kH}); });
}

void BM_RGBToGray_8u_C3C1R(benchmark::State& st) {
    Frame f;
    Measure(st, [&] { return ziliRGBToGray_8u_C3C1R(f.packed.data(), 3 * kW, f.y.data(), kW, {kW, kH}); });
}

void BM_RGBToGray_8u_AC4C1R(benchmark::State& st) {
    Frame f;
    Measure(st, [&] { return ziliRGBToGray_8u_AC4C1R(f.packed.data(), 4 * kW, f.y.data(), kW, {kW, kH}); });
}

void BM_RGBToGray_32f_C3C1R(benchmark::State& st) {
    std::vector<float> src(size_t(kW) * kH * 3, 0.25f), dst(size_t(kW) * kH);
    Measure(st, [&] { return ziliRGBToGray_32f_C3C1R(src.data(), 12 * kW, dst.data(), 4 * kW, {kW, kH}); });
}

#ifdef ZIL_HAVE_PEER_YUV
void BM_peer_ARGBToI444(benchmark::State& st) {
    Frame f;
    Measure(st, [&] { return libyuv::ARGBToI444(f.packed.data(), 4 * kW, f.y.data(), kW, f.u.data(), kW, f.v.data(), kW, kW, kH); });
}
void BM_peer_I444ToARGB(benchmark::State& st) {
    Frame f;
    Measure(st, [&] { return libyuv::I444ToARGB(f.rgb.data(), kW, f.rgb2.data(), kW, f.rgb3.data(), kW, f.out.data(), 4 * kW, kW, kH); });
}
void BM_peer_ARGBToJ400(benchmark::State& st) {
    Frame f;
    Measure(st, [&] { return libyuv::ARGBToJ400(f.packed.data(), 4 * kW, f.y.data(), kW, kW, kH); });
}
BENCHMARK(BM_peer_ARGBToI444)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_peer_I444ToARGB)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_peer_ARGBToJ400)->Unit(benchmark::kMillisecond);
#endif

BENCHMARK(BM_RGBToYCbCr_8u_C3R)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_YCbCrToRGB_8u_C3R)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RGBToYCbCr_8u_C3P3R)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_YCbCrToRGB_8u_P3C3R)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RGBToGray_8u_C3C1R)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RGBToGray_8u_AC4C1R)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RGBToGray_32f_C3C1R)->Unit(benchmark::kMillisecond);

}  // namespace
