// HLS, HSV and YCoCg throughput at 1920x1080, one thread. When OpenCV is
// installed (ZIL_HAVE_PEER_CV), its RGB <-> HSV and HLS conversions of 8-bit
// images run side by side (its own scaling of H, so the bytes differ).
#include <vector>

#include "bench_util.h"
#include "zilcc.h"

#ifdef ZIL_HAVE_PEER_CV
#include <opencv2/imgproc.hpp>
#endif

namespace {

using zilbench::kH;
using zilbench::kW;

std::vector<uint8_t> Frame3() {
    std::vector<uint8_t> f(size_t(kW) * kH * 3);
    uint32_t s = 7;
    for (auto& b : f) s = s * 1664525u + 1013904223u, b = uint8_t(s >> 24);
    return f;
}

using Conv8 = ZilStatus (*)(const uint8_t*, int, uint8_t*, int, ZilSize);
template <Conv8 F>
void BM_Packed8(benchmark::State& st) {
    const std::vector<uint8_t> src = Frame3();
    std::vector<uint8_t> dst(src.size());
    for (auto _ : st) benchmark::DoNotOptimize(F(src.data(), 3 * kW, dst.data(), 3 * kW, {kW, kH}));
    zilbench::CountMpix(st);
}
BENCHMARK(BM_Packed8<ziliRGBToHSV_8u_C3R>)->Name("RGBToHSV_8u_C3R")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Packed8<ziliHSVToRGB_8u_C3R>)->Name("HSVToRGB_8u_C3R")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Packed8<ziliRGBToHLS_8u_C3R>)->Name("RGBToHLS_8u_C3R")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Packed8<ziliHLSToRGB_8u_C3R>)->Name("HLSToRGB_8u_C3R")->Unit(benchmark::kMillisecond);

void BM_BGRToHLS_8u_C3P3R(benchmark::State& st) {
    const std::vector<uint8_t> src = Frame3();
    std::vector<uint8_t> dst(src.size());
    uint8_t* pl[3] = {dst.data(), dst.data() + size_t(kW) * kH, dst.data() + 2 * size_t(kW) * kH};
    for (auto _ : st) benchmark::DoNotOptimize(ziliBGRToHLS_8u_C3P3R(src.data(), 3 * kW, pl, kW, {kW, kH}));
    zilbench::CountMpix(st);
}
BENCHMARK(BM_BGRToHLS_8u_C3P3R)->Name("BGRToHLS_8u_C3P3R")->Unit(benchmark::kMillisecond);

// YCoCg 8-bit forms: forward to 16-bit planes (lossy and reversible), back,
// and the biased 8-bit pair.
template <class TP, ZilStatus (*F)(const uint8_t*, int, TP* const*, int, ZilSize)>
void BM_YcocgFwd(benchmark::State& st) {
    const std::vector<uint8_t> src = Frame3();
    std::vector<TP> planes(size_t(kW) * kH * 3);
    TP* pl[3] = {planes.data(), planes.data() + size_t(kW) * kH, planes.data() + 2 * size_t(kW) * kH};
    for (auto _ : st) benchmark::DoNotOptimize(F(src.data(), 3 * kW, pl, int(sizeof(TP)) * kW, {kW, kH}));
    zilbench::CountMpix(st);
}
template <class TP, ZilStatus (*F)(const TP* const*, int, uint8_t*, int, ZilSize)>
void BM_YcocgInv(benchmark::State& st) {
    std::vector<TP> planes(size_t(kW) * kH * 3);
    for (size_t i = 0; i < planes.size(); ++i) planes[i] = TP(i * 37 % 200);
    const TP* pl[3] = {planes.data(), planes.data() + size_t(kW) * kH, planes.data() + 2 * size_t(kW) * kH};
    std::vector<uint8_t> dst(size_t(kW) * kH * 3);
    for (auto _ : st) benchmark::DoNotOptimize(F(pl, int(sizeof(TP)) * kW, dst.data(), 3 * kW, {kW, kH}));
    zilbench::CountMpix(st);
}
BENCHMARK(BM_YcocgFwd<int16_t, ziliBGRToYCoCg_8u16s_C3P3R>)->Name("BGRToYCoCg_8u16s_C3P3R")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_YcocgFwd<int16_t, ziliBGRToYCoCg_Rev_8u16s_C3P3R>)->Name("BGRToYCoCg_Rev_8u16s_C3P3R")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_YcocgFwd<uint8_t, ziliRGBToYCoCg_8u_C3P3R>)->Name("RGBToYCoCg_8u_C3P3R")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_YcocgInv<int16_t, ziliYCoCgToBGR_16s8u_P3C3R>)->Name("YCoCgToBGR_16s8u_P3C3R")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_YcocgInv<int16_t, ziliYCoCgToBGR_Rev_16s8u_P3C3R>)->Name("YCoCgToBGR_Rev_16s8u_P3C3R")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_YcocgInv<uint8_t, ziliYCoCgToRGB_8u_P3C3R>)->Name("YCoCgToRGB_8u_P3C3R")->Unit(benchmark::kMillisecond);

#ifdef ZIL_HAVE_PEER_CV
template <int Code>
void BM_Peer(benchmark::State& st) {
    std::vector<uint8_t> src = Frame3();
    std::vector<uint8_t> dst(src.size());
    cv::setNumThreads(0);
    const cv::Mat a(kH, kW, CV_8UC3, src.data());
    cv::Mat b(kH, kW, CV_8UC3, dst.data());
    for (auto _ : st) cv::cvtColor(a, b, Code);
    zilbench::CountMpix(st);
}
BENCHMARK(BM_Peer<cv::COLOR_RGB2HSV>)->Name("peer_cvtColor_RGB2HSV")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Peer<cv::COLOR_HSV2RGB>)->Name("peer_cvtColor_HSV2RGB")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Peer<cv::COLOR_RGB2HLS>)->Name("peer_cvtColor_RGB2HLS")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Peer<cv::COLOR_HLS2RGB>)->Name("peer_cvtColor_HLS2RGB")->Unit(benchmark::kMillisecond);
#endif

}  // namespace
