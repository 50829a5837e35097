// XYZ, LUV, Lab and YCC throughput at 1920x1080, one thread: the 8u forms of
// each conversion and RGB to Lab 32f. With the optional peer (ZIL_HAVE_PEER_CV,
// an installed OpenCV) its colour conversions of the same spaces run beside.
#include <vector>

#include "bench_util.h"
#include "zilcc.h"

#ifdef ZIL_HAVE_PEER_CV
#include <opencv2/imgproc.hpp>
#endif

namespace {

using zilbench::kH;
using zilbench::kW;

using F8 = ZilStatus (*)(const uint8_t*, int, uint8_t*, int, ZilSize);

// Random 8-bit RGB, and its image in the space (the inverse's source).
struct Frame8 {
    std::vector<uint8_t> rgb = std::vector<uint8_t>(size_t(kW) * kH * 3), enc = rgb, out = rgb;
    explicit Frame8(F8 fwd) {
        uint32_t s = 7;
        for (auto& b : rgb) s = s * 1664525u + 1013904223u, b = uint8_t(s >> 24);
        fwd(rgb.data(), 3 * kW, enc.data(), 3 * kW, {kW, kH});
    }
};

template <F8 Fwd, F8 Run, bool Inverse>
void BM_8u(benchmark::State& st) {
    Frame8 f(Fwd);
    const uint8_t* src = Inverse ? f.enc.data() : f.rgb.data();
    for (auto _ : st) benchmark::DoNotOptimize(Run(src, 3 * kW, f.out.data(), 3 * kW, {kW, kH}));
    zilbench::CountMpix(st);
}
#define PAIR(fwd, inv)                                                       \
    BENCHMARK(BM_8u<fwd, fwd, false>)->Name(#fwd)->Unit(benchmark::kMillisecond); \
    BENCHMARK(BM_8u<fwd, inv, true>)->Name(#inv)->Unit(benchmark::kMillisecond);
PAIR(ziliRGBToXYZ_8u_C3R, ziliXYZToRGB_8u_C3R)
PAIR(ziliRGBToLUV_8u_C3R, ziliLUVToRGB_8u_C3R)
PAIR(ziliRGBToLab_8u_C3R, ziliLabToRGB_8u_C3R)
PAIR(ziliRGBToYCC_8u_C3R, ziliYCCToRGB_8u_C3R)

void BM_RGBToLab_32f_C3R(benchmark::State& st) {
    Frame8 f(ziliRGBToXYZ_8u_C3R);
    std::vector<float> rgb(f.rgb.size()), lab(f.rgb.size());
    for (size_t i = 0; i < rgb.size(); ++i) rgb[i] = float(f.rgb[i]) / 255.f;
    for (auto _ : st)
        benchmark::DoNotOptimize(ziliRGBToLab_32f_C3R(rgb.data(), 12 * kW, lab.data(), 12 * kW, {kW, kH}));
    zilbench::CountMpix(st);
}
BENCHMARK(BM_RGBToLab_32f_C3R)->Unit(benchmark::kMillisecond);

#ifdef ZIL_HAVE_PEER_CV
void BM_peer(benchmark::State& st, int code, bool isFloat) {
    Frame8 f(ziliRGBToXYZ_8u_C3R);
    cv::Mat src(kH, kW, CV_8UC3, f.rgb.data()), dst;
    if (isFloat) src.convertTo(src, CV_32FC3, 1.0 / 255);
    for (auto _ : st) cv::cvtColor(src, dst, code);
    zilbench::CountMpix(st);
}
BENCHMARK_CAPTURE(BM_peer, peer_RGB2XYZ_8u, cv::COLOR_RGB2XYZ, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_peer, peer_XYZ2RGB_8u, cv::COLOR_XYZ2RGB, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_peer, peer_RGB2Luv_8u, cv::COLOR_RGB2Luv, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_peer, peer_Luv2RGB_8u, cv::COLOR_Luv2RGB, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_peer, peer_RGB2Lab_8u, cv::COLOR_RGB2Lab, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_peer, peer_Lab2RGB_8u, cv::COLOR_Lab2RGB, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_peer, peer_RGB2Lab_32f, cv::COLOR_RGB2Lab, true)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
