// Subsampled YCbCr throughput at 1920x1080, one thread: 4:2:0 as three planes
// and as two planes, and packed 4:2:2, each direction. When the optional peer
// library for planar YUV is installed (ZIL_HAVE_PEER_YUV), its nearest
// conversions (studio-range BT.601 as well) run side by side.
#include <vector>

#include "bench_util.h"
#include "zilcc.h"

#ifdef ZIL_HAVE_PEER_YUV
#include <libyuv.h>
#endif

namespace {

using zilbench::kH;
using zilbench::kW;

// Runs one conversion per iteration and counts the frame's megapixels.
template <class F>
void Loop(benchmark::State& st, F call) {
    for (auto _ : st) benchmark::DoNotOptimize(call());
    zilbench::CountMpix(st);
}

struct Frame {
    std::vector<uint8_t> rgb = zilbench::Mosaic<uint8_t>(1), rgb2 = zilbench::Mosaic<uint8_t>(2),
                         rgb3 = zilbench::Mosaic<uint8_t>(3);
    std::vector<uint8_t> px = std::vector<uint8_t>(size_t(kW) * kH * 4);  // interleaved pixels
    std::vector<uint8_t> y = zilbench::Mosaic<uint8_t>(4), cb = zilbench::Mosaic<uint8_t>(5),
                         cr = zilbench::Mosaic<uint8_t>(6), packed = std::vector<uint8_t>(size_t(kW) * kH * 2);
    Frame() {
        for (size_t i = 0; i < px.size(); ++i) px[i] = (i % 3 == 0 ? rgb : i % 3 == 1 ? rgb2 : rgb3)[i / 4];
        for (size_t i = 0; i < packed.size(); ++i) packed[i] = (i & 1 ? cb : y)[i / 2];
    }
};

void BM_RGBToYCbCr420_8u_C3P3R(benchmark::State& st) {
    Frame f;
    uint8_t* dst[3] = {f.y.data(), f.cb.data(), f.cr.data()};
    const int ds[3] = {kW, kW / 2, kW / 2};
    Loop(st, [&] { return ziliRGBToYCbCr420_8u_C3P3R(f.px.data(), 3 * kW, dst, ds, {kW, kH}); });
}
void BM_YCbCr420ToRGB_8u_P3C3R(benchmark::State& st) {
    Frame f;
    const uint8_t* src[3] = {f.y.data(), f.cb.data(), f.cr.data()};
    const int ss[3] = {kW, kW / 2, kW / 2};
    Loop(st, [&] { return ziliYCbCr420ToRGB_8u_P3C3R(src, ss, f.px.data(), 3 * kW, {kW, kH}); });
}
void BM_RGBToYCbCr420_8u_C3P2R(benchmark::State& st) {
    Frame f;
    Loop(st, [&] {
        return ziliRGBToYCbCr420_8u_C3P2R(f.px.data(), 3 * kW, f.y.data(), kW, f.cb.data(), kW, {kW, kH});
    });
}
void BM_YCbCr420ToRGB_8u_P2C3R(benchmark::State& st) {
    Frame f;
    Loop(st, [&] {
        return ziliYCbCr420ToRGB_8u_P2C3R(f.y.data(), kW, f.cb.data(), kW, f.px.data(), 3 * kW, {kW, kH});
    });
}
void BM_RGBToYCbCr422_8u_C3C2R(benchmark::State& st) {
    Frame f;
    Loop(st, [&] { return ziliRGBToYCbCr422_8u_C3C2R(f.px.data(), 3 * kW, f.packed.data(), 2 * kW, {kW, kH}); });
}
void BM_YCbCr422ToRGB_8u_C2C3R(benchmark::State& st) {
    Frame f;
    Loop(st, [&] { return ziliYCbCr422ToRGB_8u_C2C3R(f.packed.data(), 2 * kW, f.px.data(), 3 * kW, {kW, kH}); });
}
BENCHMARK(BM_RGBToYCbCr420_8u_C3P3R);
BENCHMARK(BM_YCbCr420ToRGB_8u_P3C3R);
BENCHMARK(BM_RGBToYCbCr420_8u_C3P2R);
BENCHMARK(BM_YCbCr420ToRGB_8u_P2C3R);
BENCHMARK(BM_RGBToYCbCr422_8u_C3C2R);
BENCHMARK(BM_YCbCr422ToRGB_8u_C2C3R);

#ifdef ZIL_HAVE_PEER_YUV
// The peer's nearest forms: three-byte pixels to and from I420 and NV12, and
// four-byte pixels to and from YUY2 (the peer has no three-byte packed form).
void BM_peer_RGB24ToI420(benchmark::State& st) {
    Frame f;
    Loop(st, [&] {
        return libyuv::RGB24ToI420(f.px.data(), 3 * kW, f.y.data(), kW, f.cb.data(), kW / 2, f.cr.data(), kW / 2, kW, kH);
    });
}
void BM_peer_I420ToRGB24(benchmark::State& st) {
    Frame f;
    Loop(st, [&] {
        return libyuv::I420ToRGB24(f.y.data(), kW, f.cb.data(), kW / 2, f.cr.data(), kW / 2, f.px.data(), 3 * kW, kW, kH);
    });
}
void BM_peer_NV12ToRGB24(benchmark::State& st) {
    Frame f;
    Loop(st, [&] { return libyuv::NV12ToRGB24(f.y.data(), kW, f.cb.data(), kW, f.px.data(), 3 * kW, kW, kH); });
}
void BM_peer_ARGBToYUY2(benchmark::State& st) {
    Frame f;
    Loop(st, [&] { return libyuv::ARGBToYUY2(f.px.data(), 4 * kW, f.packed.data(), 2 * kW, kW, kH); });
}
void BM_peer_YUY2ToARGB(benchmark::State& st) {
    Frame f;
    Loop(st, [&] { return libyuv::YUY2ToARGB(f.packed.data(), 2 * kW, f.px.data(), 4 * kW, kW, kH); });
}
BENCHMARK(BM_peer_RGB24ToI420);
BENCHMARK(BM_peer_I420ToRGB24);
BENCHMARK(BM_peer_NV12ToRGB24);
BENCHMARK(BM_peer_ARGBToYUY2);
BENCHMARK(BM_peer_YUY2ToARGB);
#endif

}  // namespace
