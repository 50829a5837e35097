// Chroma reformatting at 1920 x 1080: relayouts of each group beside memcpy of
// the bytes they write, and the nearest peer calls when installed.
#include <cstring>
#include <vector>

#include "bench_util.h"
#include "zilcc.h"

#ifdef ZIL_HAVE_PEER_YUV
#include <libyuv/convert.h>
#include <libyuv/convert_from.h>
#endif

namespace {

using zilbench::CountMpix;
using zilbench::kH;
using zilbench::kW;

// One frame in every layout the benchmarks touch, filled with noise.
struct Frames {
    std::vector<uint8_t> packed = zilbench::Mosaic<uint8_t>(1), packed2 = zilbench::Mosaic<uint8_t>(2);
    std::vector<uint8_t> y = zilbench::Mosaic<uint8_t>(3), y2 = zilbench::Mosaic<uint8_t>(4);
    std::vector<uint8_t> u = zilbench::Mosaic<uint8_t>(5), v = zilbench::Mosaic<uint8_t>(6);
    std::vector<uint8_t> u2 = zilbench::Mosaic<uint8_t>(7), v2 = zilbench::Mosaic<uint8_t>(8);
    Frames() {
        packed.resize(size_t(2) * kW * kH), packed2.resize(size_t(2) * kW * kH);
        for (size_t k = size_t(kW) * kH; k < packed.size(); ++k) packed[k] = uint8_t(k * 13), packed2[k] = uint8_t(k);
    }
};
Frames& F() {
    static Frames f;
    return f;
}

// Byte count written per frame, for the memcpy beside each.
constexpr size_t k420 = size_t(kW) * kH * 3 / 2, k422 = size_t(kW) * kH * 2;

void Memcpy(benchmark::State& st, size_t bytes) {
    Frames& f = F();
    for (auto _ : st) {
        std::memcpy(f.packed2.data(), f.packed.data(), bytes);
        benchmark::ClobberMemory();
    }
    CountMpix(st);
}
void BM_Memcpy420Bytes(benchmark::State& st) { Memcpy(st, k420); }
void BM_Memcpy422Bytes(benchmark::State& st) { Memcpy(st, k422); }
BENCHMARK(BM_Memcpy420Bytes);
BENCHMARK(BM_Memcpy422Bytes);

#define ZB(NAME, BODY)                                             \
    void BM_##NAME(benchmark::State& st) {                         \
        Frames& f = F();                                           \
        (void)f;                                                   \
        for (auto _ : st) benchmark::DoNotOptimize(BODY);          \
        CountMpix(st);                                             \
    }                                                              \
    BENCHMARK(BM_##NAME);

constexpr int s420[3] = {kW, kW / 2, kW / 2}, s411[3] = {kW, kW / 4, kW / 4};
inline const uint8_t* const* In(std::vector<uint8_t>& y, std::vector<uint8_t>& u, std::vector<uint8_t>& v) {
    static const uint8_t* p[3];
    p[0] = y.data(), p[1] = u.data(), p[2] = v.data();
    return p;
}
inline uint8_t* const* Out(std::vector<uint8_t>& y, std::vector<uint8_t>& u, std::vector<uint8_t>& v) {
    static uint8_t* p[3];
    p[0] = y.data(), p[1] = u.data(), p[2] = v.data();
    return p;
}

// The three of the issue: packed 4:2:2 -> planar 4:2:0, planar 4:2:0 -> packed
// 4:2:2 (the planes given as Y, V, U to the YCrCb member), NV12 -> I420.
ZB(YUY2ToI420, ziliYCbCr422ToYCbCr420_8u_C2P3R(f.packed.data(), 2 * kW, Out(f.y2, f.u2, f.v2), s420, {kW, kH}))
ZB(I420ToYUY2, ziliYCrCb420ToYCbCr422_8u_P3C2R(In(f.y, f.v, f.u), s420, f.packed2.data(), 2 * kW, {kW, kH}))
ZB(NV12ToI420, ziliYCbCr420_8u_P2P3R(f.y.data(), kW, f.u.data(), kW, Out(f.y2, f.u2, f.v2), s420, {kW, kH}))
// One more per group.
ZB(A_YUY2ToUYVY, ziliYCbCr422ToCbYCr422_8u_C2R(f.packed.data(), 2 * kW, f.packed2.data(), 2 * kW, {kW, kH}))
ZB(A_I420ToNV12, ziliYCbCr420_8u_P3P2R(In(f.y, f.u, f.v), s420, f.y2.data(), kW, f.u2.data(), kW, {kW, kH}))
ZB(A_YUY2To422P, ziliYCbCr422_8u_C2P3R(f.packed.data(), 2 * kW, Out(f.y2, f.u2, f.v2), s420, {kW, kH}))
ZB(B_UYVYToNV12, ziliCbYCr422ToYCbCr420_8u_C2P2R(f.packed.data(), 2 * kW, f.y2.data(), kW, f.u2.data(), kW, {kW, kH}))
ZB(C_NV12ToYUY2, ziliYCbCr420ToYCbCr422_8u_P2C2R(f.y.data(), kW, f.u.data(), kW, f.packed2.data(), 2 * kW, {kW, kH}))
ZB(D_YUY2To411P, ziliYCbCr422ToYCbCr411_8u_C2P3R(f.packed.data(), 2 * kW, Out(f.y2, f.u2, f.v2), s411, {kW, kH}))
ZB(E_411PToYUY2, ziliYCbCr411ToYCbCr422_8u_P3C2R(In(f.y, f.u, f.v), s411, f.packed2.data(), 2 * kW, {kW, kH}))
ZB(F_411PTo420P, ziliYCbCr411ToYCbCr420_8u_P3R(In(f.y, f.u, f.v), s411, Out(f.y2, f.u2, f.v2), s420, {kW, kH}))
ZB(F_420PTo411NV, ziliYCbCr420ToYCbCr411_8u_P3P2R(In(f.y, f.u, f.v), s420, f.y2.data(), kW, f.u2.data(), kW, {kW, kH}))
ZB(Interlace420To422, ziliYCbCr420To422_Interlace_8u_P3R(In(f.y, f.u, f.v), s420, Out(f.y2, f.u2, f.v2), s420, {kW, kH}))
ZB(Filter420To422FourTap, ziliYCbCr420ToYCbCr422_Filter_8u_P3R(In(f.y, f.u, f.v), s420, Out(f.y2, f.u2, f.v2), s420, {kW, kH}))

#ifdef ZIL_HAVE_PEER_YUV
ZB(Peer_YUY2ToI420, libyuv::YUY2ToI420(f.packed.data(), 2 * kW, f.y2.data(), kW, f.u2.data(), kW / 2, f.v2.data(),
                                       kW / 2, kW, kH))
ZB(Peer_I420ToYUY2, libyuv::I420ToYUY2(f.y.data(), kW, f.u.data(), kW / 2, f.v.data(), kW / 2, f.packed2.data(),
                                       2 * kW, kW, kH))
ZB(Peer_NV12ToI420, libyuv::NV12ToI420(f.y.data(), kW, f.u.data(), kW, f.y2.data(), kW, f.u2.data(), kW / 2,
                                       f.v2.data(), kW / 2, kW, kH))
#endif

}  // namespace
