// ReduceBits: one generic worker per dither kind (row and channel loops, the
// work buffer), and the check layer that routes a call to them.
//
// Plain workers and the four-channel ordered workers take steps in bytes; all
// other workers take steps in elements, which the check layer gets by an
// arithmetic shift of the byte step (a byte step that is no multiple of the
// element size loses its low bits on those routes).
#pragma once

#include "reduce_kernels.h"

namespace zil::reduce {

template <class T>
inline constexpr int kShift = sizeof(T) == 1 ? 0 : sizeof(T) == 2 ? 1 : 2;

// Byte distance of `e` elements of T.
template <class T>
inline ptrdiff_t Bytes(int e) { return ptrdiff_t(e) * ptrdiff_t(sizeof(T)); }

// ---- plain ---------------------------------------------------------------------------
template <const Pair& P>
ZilStatus OwnNo(const SrcT<P>* src, int srcStep, DstT<P>* dst, int dstStep, ZilSize roi, uint32_t levelsMax,
                int32_t code) {
    const PlainK k = MakePlain(levelsMax);
    const int perPixel = code > 4 ? 4 : code;
    const int n = roi.width * perPixel;
    // An 8-bit source has 256 possible results; a large image looks them up.
    uint8_t lut[256];
    const bool useLut = P.src == Src::U8 && int64_t(n) * roi.height >= 4096;
    if (useLut)
        for (int s = 0; s < 256; ++s) lut[s] = uint8_t(PlainOne<P>(SrcT<P>(s), k));
    for (int y = 0; y < roi.height; ++y) {
        const SrcT<P>* __restrict s = AdvanceT(src, ptrdiff_t(y) * srcStep);
        DstT<P>* __restrict d = AdvanceT(dst, ptrdiff_t(y) * dstStep);
        if (code == kCodeAC4) {
            // The fourth element of each pixel keeps the destination's value.
            for (int i = 0; i < n; i += 4)
                for (int c = 0; c < 3; ++c)
                    St(d + i + c, useLut ? lut[uint8_t(Ld(s + i + c))] : PlainOne<P>(Ld(s + i + c), k));
        } else if (useLut) {
            for (int i = 0; i < n; ++i) St(d + i, lut[uint8_t(Ld(s + i))]);
        } else {
            for (int i = 0; i < n; ++i) St(d + i, PlainOne<P>(Ld(s + i), k));
        }
    }
    return zilStatusOk;
}

// ---- ordered dither --------------------------------------------------------------------
template <const Pair& P>
using BayerKernel = void (*)(const SrcT<P>*, DstT<P>*, int, const float*, const Scales&, int32_t);
template <const Pair& P>
using BayerNoiseKernel = void (*)(const SrcT<P>*, DstT<P>*, int, const NoiseTab&, int, const Scales&, int32_t);

// Rows of the matrix scaled by quantStep once per call.
inline void ScaledMatrix(float (&m)[4][4], float step) {
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) m[y][x] = bayer_thresh.v[y][x] * step;
}

// Noise-free ordered dither; `stepBytes` scales the steps as passed into bytes.
template <const Pair& P, BayerKernel<P> K, int StepUnitS, int StepUnitD>
ZilStatus OwnBayer(const SrcT<P>* src, int srcStep, DstT<P>* dst, int dstStep, ZilSize roi, uint32_t levelsMax,
                   int32_t code) {
    const Scales k = MakeScales<P>(levelsMax);
    float m[4][4];
    ScaledMatrix(m, k.step);
    const ptrdiff_t ss = ptrdiff_t(srcStep) * StepUnitS, ds = ptrdiff_t(dstStep) * StepUnitD;
    if constexpr (P.src == Src::U8) {
        const Walk wk = WalkOf(code);
        if (int64_t(roi.width) * wk.channels * roi.height >= 8192) {
            ByteLut lut;
            BuildBayerLut<P>(lut, m, k);
            for (int y = 0; y < roi.height; ++y) {
                const uint8_t* s = AdvanceT(src, ptrdiff_t(y) * ss);
                uint8_t* d = AdvanceT(dst, ptrdiff_t(y) * ds);
                switch (code) {
                    case kCodeC1: BayerLutRow<1, 1>(s, d, roi.width, lut, y); break;
                    case kCodeC3: BayerLutRow<3, 3>(s, d, roi.width, lut, y); break;
                    case kCodeAC4: BayerLutRow<3, 4>(s, d, roi.width, lut, y); break;
                    default: BayerLutRow<4, 4>(s, d, roi.width, lut, y); break;
                }
            }
            return zilStatusOk;
        }
    }
    for (int y = 0; y < roi.height; ++y)
        K(AdvanceT(src, ptrdiff_t(y) * ss), AdvanceT(dst, ptrdiff_t(y) * ds), roi.width, m[y & 3], k, code);
    return zilStatusOk;
}

template <const Pair& P, BayerNoiseKernel<P> K, int StepUnitS, int StepUnitD>
ZilStatus OwnBayerNoise(const SrcT<P>* src, int srcStep, DstT<P>* dst, int dstStep, ZilSize roi,
                        uint32_t levelsMax, uint32_t noise, int32_t code, uint8_t* buffer) {
    if (buffer == nullptr) return zilStatusNullPointer;
    uint8_t* A = Align64(buffer);
    const Scales k = MakeScales<P>(levelsMax);
    // Fractions of a step, added to the matrix entry.
    const NoiseTab nz = SetupNoise(A, float(-int32_t(noise)) / 100.0f, float(int32_t(noise)) / 100.0f);
    const ptrdiff_t ss = ptrdiff_t(srcStep) * StepUnitS, ds = ptrdiff_t(dstStep) * StepUnitD;
    for (int y = 0; y < roi.height; ++y)
        K(AdvanceT(src, ptrdiff_t(y) * ss), AdvanceT(dst, ptrdiff_t(y) * ds), roi.width, nz, y, k, code);
    return zilStatusOk;
}

// ---- error diffusion ---------------------------------------------------------------
template <const Pair& P>
using FsKernel = void (*)(const RowGroup<P>&, float*, int, int, const Scales&, const BaseTabs*, const NoiseTab&);
template <const Pair& P>
using StKernel = void (*)(const RowGroup<P>&, StBufs, int, int, const Scales&, const BaseTabs*, int32_t,
                          const NoiseTab&);

// The error rows start at the aligned buffer, or after the noise tables and
// the two generator states. Noise tables hold limits of (50 -+ noise) percent
// of a step, centred on the plain half step.
template <const Pair& P, bool Noise>
inline float* DiffusionSetup(uint8_t* buffer, uint32_t noise, const Scales& k, NoiseTab& nz) {
    uint8_t* A = Align64(buffer);
    if constexpr (Noise) {
        const float low = float(50 - int32_t(noise)) * k.step / 100.0f;
        const float high = float(50 + int32_t(noise)) * k.step / 100.0f;
        nz = SetupNoise(A, low, high);
        return reinterpret_cast<float*>(A + kOffRowsNoise);
    } else {
        return reinterpret_cast<float*>(A);
    }
}

// What both diffusions share: the walk, the scales, the noise tables, the
// base tables and the error rows (rowFloats of them, cleared once per call).
template <const Pair& P, bool Noise>
struct Diffusion {
    Walk wk;
    Scales k;
    NoiseTab nz{};
    BaseTabs tabs;
    float* E;
    Diffusion(uint8_t* buffer, uint32_t levelsMax, uint32_t noise, int32_t code, int rowFloats)
        : wk(WalkOf(code)), k(MakeScales<P>(levelsMax)) {
        E = DiffusionSetup<P, Noise>(buffer, noise, k, nz);
        if constexpr (kBaseTables<P>) BuildBaseTabs(tabs, levelsMax, k.step);
        for (int i = 0; i < rowFloats; ++i) E[i] = 0.0f;
    }
    // Channels one after another, rows top down, handed out in groups of up
    // to maxRows consecutive rows of this walk. The errors keep flowing
    // across channels, so the first row of a channel takes in the errors of
    // the last rows of the channel before.
    template <class Group>
    void Run(const SrcT<P>* src, int srcStep, DstT<P>* dst, int dstStep, int height, int maxRows,
             Group&& group) const {
        const ptrdiff_t ss = Bytes<SrcT<P>>(srcStep), ds = Bytes<DstT<P>>(dstStep);
        RowGroup<P> g{};
        for (int c = 0; c < wk.channels; ++c)
            for (int y = 0; y < height; ++y) {
                g.s[g.n] = AdvanceT(src, ptrdiff_t(y) * ss) + c;
                g.d[g.n] = AdvanceT(dst, ptrdiff_t(y) * ds) + c;
                g.y[g.n] = y;
                if (++g.n == maxRows) group(g), g.n = 0;
            }
        if (g.n > 0) group(g);
    }
};

template <const Pair& P, bool Noise, FsKernel<P> K>
ZilStatus OwnFs(const SrcT<P>* src, int srcStep, DstT<P>* dst, int dstStep, ZilSize roi, uint32_t levelsMax,
                uint32_t noise, int32_t code, uint8_t* buffer) {
    if (buffer == nullptr) return zilStatusNullPointer;
    const int w = roi.width;
    const Diffusion<P, Noise> df(buffer, levelsMax, noise, code, 2 * w + 4);
    float* prev = df.E + 1;
    df.Run(src, srcStep, dst, dstStep, roi.height, kFsRows,
           [&](const RowGroup<P>& g) { K(g, prev, w, df.wk.stride, df.k, &df.tabs, df.nz); });
    return zilStatusOk;
}

template <const Pair& P, bool Noise, StKernel<P> K>
ZilStatus OwnSt(const SrcT<P>* src, int srcStep, DstT<P>* dst, int dstStep, ZilSize roi, uint32_t levelsMax,
                uint32_t noise, int32_t code, int32_t dither, uint8_t* buffer) {
    if (buffer == nullptr) return zilStatusNullPointer;
    const int w = roi.width;
    const Diffusion<P, Noise> df(buffer, levelsMax, noise, code, 3 * w + 12);
    StBufs b{df.E + 2, df.E + w + 6, df.E + 2 * w + 10};
    df.Run(src, srcStep, dst, dstStep, roi.height, kStRows, [&](const RowGroup<P>& g) {
        K(g, b, w, df.wk.stride, df.k, &df.tabs, dither, df.nz);
        // The next-to-last row of the group went to the spare row, the last to prev2.
        b = StBufs{b.spare, b.prev2, b.prev1};
    });
    return zilStatusOk;
}

// Group kernels dispatch on the pixel stride and the group's size once per
// group; f(RowIx<n>) runs the kernel for a group of n rows.
template <int K, class F>
inline void BySize(int n, F&& f) {
    if constexpr (K >= 1) {
        if (n == K)
            f(RowIx<K>{});
        else
            BySize<K - 1>(n, f);
    }
}
template <const Pair& P, bool Noise>
inline void FsKernelBody(const RowGroup<P>& g, float* prev, int w, int stride, const Scales& k,
                         const BaseTabs* tabs, const NoiseTab& nz) {
    BySize<kFsRows>(g.n, [&](auto size) {
        constexpr int n = decltype(size)::r;
        switch (stride) {
            case 1: FsGroup<P, 1, Noise, n>(g, prev, w, k, tabs, nz); break;
            case 3: FsGroup<P, 3, Noise, n>(g, prev, w, k, tabs, nz); break;
            default: FsGroup<P, 4, Noise, n>(g, prev, w, k, tabs, nz); break;
        }
    });
}
template <const Pair& P, bool Noise>
inline void StKernelBody(const RowGroup<P>& g, StBufs b, int w, int stride, const Scales& k, const BaseTabs* tabs,
                         int32_t dither, const NoiseTab& nz) {
    const Weights12& wt = dither == zilDitherStucki ? kStucki : kJarvis;
    BySize<kStRows>(g.n, [&](auto size) {
        constexpr int n = decltype(size)::r;
        switch (stride) {
            case 1: StGroup<P, 1, Noise, n>(g, b, w, k, tabs, wt, nz); break;
            case 3: StGroup<P, 3, Noise, n>(g, b, w, k, tabs, wt, nz); break;
            default: StGroup<P, 4, Noise, n>(g, b, w, k, tabs, wt, nz); break;
        }
    });
}

// ---- check layer ------------------------------------------------------------------------
// The workers of one pair, as the check layer routes to them.
template <const Pair& P>
struct WorkerSet {
    using S = SrcT<P>;
    using D = DstT<P>;
    ZilStatus (*no)(const S*, int, D*, int, ZilSize, uint32_t, int32_t);
    ZilStatus (*bayer)(const S*, int, D*, int, ZilSize, uint32_t, int32_t);
    ZilStatus (*bayerNoise)(const S*, int, D*, int, ZilSize, uint32_t, uint32_t, int32_t, uint8_t*);
    ZilStatus (*bayerC4)(const S*, int, D*, int, ZilSize, uint32_t);
    ZilStatus (*bayerNoiseC4)(const S*, int, D*, int, ZilSize, uint32_t, uint32_t, uint8_t*);
    ZilStatus (*fs)(const S*, int, D*, int, ZilSize, uint32_t, int32_t, uint8_t*);
    ZilStatus (*fsNoise)(const S*, int, D*, int, ZilSize, uint32_t, uint32_t, int32_t, uint8_t*);
    ZilStatus (*st)(const S*, int, D*, int, ZilSize, uint32_t, int32_t, int32_t, uint8_t*);
    ZilStatus (*stNoise)(const S*, int, D*, int, ZilSize, uint32_t, uint32_t, int32_t, int32_t, uint8_t*);
};

// Checks in order: pointers, size, noise, levels; then the dither selects the
// route, an unknown one being found only after the others.
template <const Pair& P, const WorkerSet<P>& W, int32_t Code>
ZilStatus ReduceBits(const void* srcV, int srcStep, void* dstV, int dstStep, ZilSize roi, int32_t noiseArg,
                     int32_t dither, int32_t levelsArg, uint8_t* buffer) {
    const auto* src = static_cast<const SrcT<P>*>(srcV);
    auto* dst = static_cast<DstT<P>*>(dstV);
    if (AnyNull(srcV, static_cast<const void*>(dstV))) return zilStatusNullPointer;
    if (TooSmall(roi)) return zilStatusBadSize;
    const uint32_t noise = uint32_t(noiseArg);
    if (noise > 100u) return zilStatusBadNoise;
    const uint32_t levels = uint32_t(levelsArg);
    if (levels - 2u > (P.dst8 ? 254u : 65534u)) return zilStatusBadLevels;
    const uint32_t levelsMax = levels - 1u;
    // Element steps for the routes that take them.
    const int ssE = srcStep >> kShift<SrcT<P>>, dsE = dstStep >> kShift<DstT<P>>;
    switch (dither) {
        case zilDitherNone:
            return W.no(src, srcStep, dst, dstStep, roi, levelsMax, Code);
        case zilDitherBayer:
            if constexpr (Code == kCodeC4) {
                return noise == 0 ? W.bayerC4(src, srcStep, dst, dstStep, roi, levelsMax)
                                  : W.bayerNoiseC4(src, srcStep, dst, dstStep, roi, levelsMax, noise, buffer);
            } else {
                return noise == 0 ? W.bayer(src, ssE, dst, dsE, roi, levelsMax, Code)
                                  : W.bayerNoise(src, ssE, dst, dsE, roi, levelsMax, noise, Code, buffer);
            }
        case zilDitherFloydSteinberg:
            return noise == 0 ? W.fs(src, ssE, dst, dsE, roi, levelsMax, Code, buffer)
                              : W.fsNoise(src, ssE, dst, dsE, roi, levelsMax, noise, Code, buffer);
        case zilDitherJarvisJudiceNinke:
        case zilDitherStucki:
            return noise == 0 ? W.st(src, ssE, dst, dsE, roi, levelsMax, Code, dither, buffer)
                              : W.stNoise(src, ssE, dst, dsE, roi, levelsMax, noise, Code, dither, buffer);
        default:
            return zilStatusBadDitherType;
    }
}

}  // namespace zil::reduce
