// CFAToRGB throughput: a 1920 x 1080 mosaic of random samples, whole image,
// RGGB, one thread. Figures in megapixels per second. When the optional peer
// computer-vision library is installed (ZIL_HAVE_PEER_CV), its bilinear and
// edge-aware conversions of the same mosaic run side by side, on one thread.
#include <vector>

#include "bench_util.h"
#include "zilcc.h"

#ifdef ZIL_HAVE_PEER_CV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

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

#ifdef ZIL_HAVE_PEER_CV
// The peer's code for this mosaic (red at the first sample) and its output
// order (blue first) differ from ours in name only; the work is the same.
template <class T>
void Peer(benchmark::State& state, int code) {
    cv::setNumThreads(1);
    std::vector<T> src = zilbench::Mosaic<T>(12345);
    std::vector<T> dst(size_t(3) * kW * kH);
    constexpr int kIn = sizeof(T) == 1 ? CV_8UC1 : CV_16UC1, kOut = sizeof(T) == 1 ? CV_8UC3 : CV_16UC3;
    const cv::Mat in(kH, kW, kIn, src.data());
    cv::Mat out(kH, kW, kOut, dst.data());
    try {
        for (auto _ : state) {
            cv::cvtColor(in, out, code);
            benchmark::DoNotOptimize(out.data);
            benchmark::ClobberMemory();
        }
    } catch (const cv::Exception&) {
        state.SkipWithError("conversion not supported at this depth");
        return;
    }
    zilbench::CountMpix(state);
}
void BM_peer_BayerBG2BGR_8u(benchmark::State& st) { Peer<uint8_t>(st, cv::COLOR_BayerBG2BGR); }
void BM_peer_BayerBG2BGR_16u(benchmark::State& st) { Peer<uint16_t>(st, cv::COLOR_BayerBG2BGR); }
void BM_peer_BayerBG2BGR_EA_8u(benchmark::State& st) { Peer<uint8_t>(st, cv::COLOR_BayerBG2BGR_EA); }
void BM_peer_BayerBG2BGR_EA_16u(benchmark::State& st) { Peer<uint16_t>(st, cv::COLOR_BayerBG2BGR_EA); }
BENCHMARK(BM_peer_BayerBG2BGR_8u)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_peer_BayerBG2BGR_16u)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_peer_BayerBG2BGR_EA_8u)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_peer_BayerBG2BGR_EA_16u)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
