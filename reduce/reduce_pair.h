// ReduceBits exports of one element pair: its named workers and row kernels
// (thin layers over the generic templates) and its four check layers. The
// pairs are spread over a few translation units, because instantiating the
// generic workers for all eight in one unit made it by far the slowest file to
// build (minutes under the sanitizers) with nothing to build beside it.
#pragma once
#include "reduce_workers.h"

// One layout's check layer of a pair: the layout code picks the route's pixel walk.
#define ZIL_REDUCE_LAYOUT(PAIR, M, ST, DT, LAYOUT, CODE)                                                         \
    ZIL_IMPL ZilStatus mx_ziliReduceBits_##PAIR##_##LAYOUT(const ST* src, int srcStep, DT* dst, int dstStep,     \
                                                           ZilSize roi, int noise, ZilDither dither, int levels, \
                                                           uint8_t* buffer) {                                    \
        return ReduceBits<M, kWorkers_##PAIR, CODE>(src, srcStep, dst, dstStep, roi, noise, dither, levels,      \
                                                    buffer);                                                     \
    }

// Steps of the element-step routes come in elements; the walkers want bytes.
#define ZIL_REDUCE_PAIR(PAIR, M, ST, DT)                                                                            \
    /* ---- row kernels ---- */                                                                                    \
    ZIL_IMPL void mx_innerReduceBits_bayer_##PAIR##_C1(const SrcT<M>* s, DstT<M>* d, int w, const float* thr,       \
                                                      const Scales& k, int32_t) {                                  \
        BayerRow<M, 1, 1>(s, d, w, thr, k);                                                                        \
    }                                                                                                              \
    ZIL_IMPL void mx_innerReduceBits_bayer_##PAIR(const SrcT<M>* s, DstT<M>* d, int w, const float* thr,            \
                                                  const Scales& k, int32_t code) {                                 \
        if (code == kCodeC3)                                                                                       \
            BayerRow<M, 3, 3>(s, d, w, thr, k);                                                                    \
        else                                                                                                       \
            BayerRow<M, 3, 4>(s, d, w, thr, k);                                                                    \
    }                                                                                                              \
    ZIL_IMPL void mx_innerReduceBits_bayer_##PAIR##_c4(const SrcT<M>* s, DstT<M>* d, int w, const float* thr,       \
                                                      const Scales& k, int32_t) {                                  \
        BayerRow<M, 4, 4>(s, d, w, thr, k);                                                                        \
    }                                                                                                              \
    ZIL_IMPL void mx_innerReduceBits_bayer_noise_##PAIR##_C1(const SrcT<M>* s, DstT<M>* d, int w,                   \
                                                            const NoiseTab& nz, int y, const Scales& k, int32_t) { \
        BayerNoiseRow<M, 1, 1>(s, d, w, nz, y, k);                                                                 \
    }                                                                                                              \
    ZIL_IMPL void mx_innerReduceBits_bayer_noise_##PAIR(const SrcT<M>* s, DstT<M>* d, int w, const NoiseTab& nz,    \
                                                        int y, const Scales& k, int32_t code) {                    \
        if (code == kCodeC3)                                                                                       \
            BayerNoiseRow<M, 3, 3>(s, d, w, nz, y, k);                                                             \
        else                                                                                                       \
            BayerNoiseRow<M, 3, 4>(s, d, w, nz, y, k);                                                             \
    }                                                                                                              \
    ZIL_IMPL void mx_innerReduceBits_bayer_noise_##PAIR##_c4(const SrcT<M>* s, DstT<M>* d, int w,                   \
                                                            const NoiseTab& nz, int y, const Scales& k, int32_t) { \
        BayerNoiseRow<M, 4, 4>(s, d, w, nz, y, k);                                                                 \
    }                                                                                                              \
    ZIL_IMPL void mx_innerReduceBits_fs_##PAIR(const RowGroup<M>& g, float* prev, int w, int stride,                \
                                               const Scales& k, const BaseTabs* t, const NoiseTab& nz) {           \
        FsKernelBody<M, false>(g, prev, w, stride, k, t, nz);                                                      \
    }                                                                                                              \
    ZIL_IMPL void mx_innerReduceBits_fs_noise_##PAIR(const RowGroup<M>& g, float* prev, int w, int stride,          \
                                                     const Scales& k, const BaseTabs* t, const NoiseTab& nz) {     \
        FsKernelBody<M, true>(g, prev, w, stride, k, t, nz);                                                       \
    }                                                                                                              \
    ZIL_IMPL void mx_innerReduceBits_st_jj_##PAIR(const RowGroup<M>& g, StBufs b, int w, int stride,                \
                                                  const Scales& k, const BaseTabs* t, int32_t dither,              \
                                                  const NoiseTab& nz) {                                            \
        StKernelBody<M, false>(g, b, w, stride, k, t, dither, nz);                                                 \
    }                                                                                                              \
    ZIL_IMPL void mx_innerReduceBits_st_jj_noise_##PAIR(const RowGroup<M>& g, StBufs b, int w, int stride,          \
                                                        const Scales& k, const BaseTabs* t, int32_t dither,        \
                                                        const NoiseTab& nz) {                                      \
        StKernelBody<M, true>(g, b, w, stride, k, t, dither, nz);                                                  \
    }                                                                                                              \
    /* ---- workers ---- */                                                                                        \
    ZIL_IMPL ZilStatus mx_ownNo_##PAIR##_PX(const SrcT<M>* s, int ss, DstT<M>* d, int ds, ZilSize r, uint32_t lm,  \
                                           int32_t code) {                                                         \
        return OwnNo<M>(s, ss, d, ds, r, lm, code);                                                                \
    }                                                                                                              \
    ZIL_IMPL ZilStatus mx_ownReduceBits_bayer_##PAIR(const SrcT<M>* s, int ss, DstT<M>* d, int ds, ZilSize r,      \
                                                     uint32_t lm, int32_t code) {                                  \
        constexpr int us = sizeof(SrcT<M>), ud = sizeof(DstT<M>);                                                  \
        return code == kCodeC1                                                                                     \
                   ? OwnBayer<M, mx_innerReduceBits_bayer_##PAIR##_C1, us, ud>(s, ss, d, ds, r, lm, code)          \
                   : OwnBayer<M, mx_innerReduceBits_bayer_##PAIR, us, ud>(s, ss, d, ds, r, lm, code);              \
    }                                                                                                              \
    ZIL_IMPL ZilStatus mx_ownReduceBits_bayer_noise_##PAIR(const SrcT<M>* s, int ss, DstT<M>* d, int ds,           \
                                                           ZilSize r, uint32_t lm, uint32_t noise, int32_t code,   \
                                                           uint8_t* buf) {                                         \
        constexpr int us = sizeof(SrcT<M>), ud = sizeof(DstT<M>);                                                  \
        return code == kCodeC1                                                                                     \
                   ? OwnBayerNoise<M, mx_innerReduceBits_bayer_noise_##PAIR##_C1, us, ud>(s, ss, d, ds, r, lm,     \
                                                                                          noise, code, buf)        \
                   : OwnBayerNoise<M, mx_innerReduceBits_bayer_noise_##PAIR, us, ud>(s, ss, d, ds, r, lm, noise,   \
                                                                                     code, buf);                   \
    }                                                                                                              \
    ZIL_IMPL ZilStatus mx_ownReduceBits_bayer_##PAIR##_c4(const SrcT<M>* s, int ss, DstT<M>* d, int ds, ZilSize r, \
                                                         uint32_t lm) {                                            \
        return OwnBayer<M, mx_innerReduceBits_bayer_##PAIR##_c4, 1, 1>(s, ss, d, ds, r, lm, kCodeC4);              \
    }                                                                                                              \
    ZIL_IMPL ZilStatus mx_ownReduceBits_bayer_noise_##PAIR##_c4(const SrcT<M>* s, int ss, DstT<M>* d, int ds,      \
                                                               ZilSize r, uint32_t lm, uint32_t noise,             \
                                                               uint8_t* buf) {                                     \
        return OwnBayerNoise<M, mx_innerReduceBits_bayer_noise_##PAIR##_c4, 1, 1>(s, ss, d, ds, r, lm, noise,      \
                                                                                  kCodeC4, buf);                   \
    }                                                                                                              \
    ZIL_IMPL ZilStatus mx_ownReduceBits_fs_##PAIR(const SrcT<M>* s, int ss, DstT<M>* d, int ds, ZilSize r,         \
                                                  uint32_t lm, int32_t code, uint8_t* buf) {                       \
        return OwnFs<M, false, mx_innerReduceBits_fs_##PAIR>(s, ss, d, ds, r, lm, 0, code, buf);                   \
    }                                                                                                              \
    ZIL_IMPL ZilStatus mx_ownReduceBits_fs_noise_##PAIR(const SrcT<M>* s, int ss, DstT<M>* d, int ds, ZilSize r,   \
                                                        uint32_t lm, uint32_t noise, int32_t code, uint8_t* buf) { \
        return OwnFs<M, true, mx_innerReduceBits_fs_noise_##PAIR>(s, ss, d, ds, r, lm, noise, code, buf);          \
    }                                                                                                              \
    ZIL_IMPL ZilStatus mx_ownReduceBits_st_jj_##PAIR(const SrcT<M>* s, int ss, DstT<M>* d, int ds, ZilSize r,      \
                                                     uint32_t lm, int32_t code, int32_t dither, uint8_t* buf) {    \
        return OwnSt<M, false, mx_innerReduceBits_st_jj_##PAIR>(s, ss, d, ds, r, lm, 0, code, dither, buf);        \
    }                                                                                                              \
    ZIL_IMPL ZilStatus mx_ownReduceBits_st_jj_noise_##PAIR(const SrcT<M>* s, int ss, DstT<M>* d, int ds,           \
                                                           ZilSize r, uint32_t lm, uint32_t noise, int32_t code,   \
                                                           int32_t dither, uint8_t* buf) {                         \
        return OwnSt<M, true, mx_innerReduceBits_st_jj_noise_##PAIR>(s, ss, d, ds, r, lm, noise, code, dither,     \
                                                                     buf);                                         \
    }                                                                                                              \
    inline constexpr WorkerSet<M> kWorkers_##PAIR{                                                                 \
        mx_ownNo_##PAIR##_PX,                   mx_ownReduceBits_bayer_##PAIR,                                     \
        mx_ownReduceBits_bayer_noise_##PAIR,    mx_ownReduceBits_bayer_##PAIR##_c4,                                \
        mx_ownReduceBits_bayer_noise_##PAIR##_c4, mx_ownReduceBits_fs_##PAIR,                                      \
        mx_ownReduceBits_fs_noise_##PAIR,       mx_ownReduceBits_st_jj_##PAIR,                                     \
        mx_ownReduceBits_st_jj_noise_##PAIR};                                                                      \
    }                                                                                                              \
    /* ---- check layers ---- */                                                                                   \
    ZIL_REDUCE_LAYOUT(PAIR, M, ST, DT, C1R, kCodeC1)                                                                \
    ZIL_REDUCE_LAYOUT(PAIR, M, ST, DT, C3R, kCodeC3)                                                                \
    ZIL_REDUCE_LAYOUT(PAIR, M, ST, DT, AC4R, kCodeAC4)                                                              \
    ZIL_REDUCE_LAYOUT(PAIR, M, ST, DT, C4R, kCodeC4)                                                                \
    namespace {
