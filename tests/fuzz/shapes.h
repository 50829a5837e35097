// The argument shape of every export, in one table: which arguments a call
// takes, in which order, and how much of each image it may touch. The fuzz
// target, the corpus replayer and the concurrency test all build their calls
// from it. A family adds itself with a few rows once its names are in the
// export list (the build defines ZIL_HAVE_CFA, ZIL_HAVE_AHD, ZIL_HAVE_REDUCE).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include "zilcc.h"

namespace zilfuzz {

// ---------------------------------------------------------------------------
// Extent rules. A plane of an image spans rows(h) rows of cols(w) * bpp bytes,
// where w, h are the extent that the image follows (Ext below).
enum XRule : uint8_t {
    XW,      // w
    XHalfUp, // (w + 1) / 2: 4:2:2 chroma
    XHalf,   // w / 2: 4:2:0 chroma
    XEven,   // w & ~1: luma and pixels of 4:2:0 forms (an odd last column is not touched)
    XBits,   // bytes holding w bits from bit (offset & 7) on: one-bit destinations
    XAhd,    // w + 6 if w is even, w + 8 if odd: a line of the demosaicing work buffer
    XOne,    // one unit, whatever the extent
    XQuarter,// w / 4: 4:1:1 and 1620 chroma
    XEvenUp  // (w + 1) & ~1: a last block written whole
};
enum YRule : uint8_t {
    YH,      // h
    YHalf,   // h / 2
    YEven,   // h & ~1
    Y30,     // 30 lines
    YOne,    // one row
    YQuarter // h / 4
};
// Which extent an image follows.
enum Ext : uint8_t {
    ExtRoi,   // the call's ZilSize
    ExtClip,  // the region after the demosaicing frame has clipped it
    ExtQuery, // a work buffer sized by the library's own size query
};
// How its steps are passed.
enum Steps : uint8_t {
    StepOne,   // one int for all planes
    StepArr,   // an int[3], one per plane
    StepDense, // no step: every plane dense, step = its own width in bytes
    StepNone,  // not an image (a work area or a result cell)
    StepPair,  // two planes, each its own pointer and step argument ('s' 'S' twice)
};

struct Plane {
    uint8_t bpp;  // bytes per unit of XRule (pixel, sample or byte)
    uint8_t x, y;
};

struct Img {
    uint8_t planes;   // 0: absent; 1: one pointer; 3 or 4: an array of plane pointers
    uint8_t steps;    // Steps
    uint8_t ext;      // Ext
    // Pointers the call tests for null, so that the fuzz target may pass null
    // there: bit 7 the pointer argument itself (single pointer or the array),
    // bits 0..3 entries of the array.
    uint8_t nullable;
    uint8_t elem;     // sample size: steps are kept multiples of it
    bool isFloat;     // samples are 32-bit floats
    bool foldMargin;  // demosaicing source: one sample beyond the image on an axis of 5
    uint8_t lead;     // bytes before each row's start that the call may read
    bool sharedStep;  // planes 1 and 2 take one step (a call that crosses the two)
    Plane p[4];
};

constexpr Img kNone{};

constexpr Img One(uint8_t bpp, XRule x = XW, YRule y = YH, uint8_t elem = 1, Ext ext = ExtRoi) {
    Img m{};
    m.planes = 1, m.steps = StepOne, m.ext = ext, m.nullable = 0x80, m.elem = elem;
    m.p[0] = {bpp, uint8_t(x), uint8_t(y)};
    return m;
}
constexpr Img Planes(uint8_t n, Steps s, Plane a, Plane b, Plane c, Plane d = {}, uint8_t nullable = 0x87) {
    Img m{};
    m.planes = n, m.steps = s, m.ext = ExtRoi, m.nullable = nullable, m.elem = 1;
    m.p[0] = a, m.p[1] = b, m.p[2] = c, m.p[3] = d;
    return m;
}
// Two planes passed as separate pointer-and-step pairs (roles s/S and u/U,
// or d/D and v/V); each pointer is tested.
constexpr Img TwoPlanes(Plane a, Plane b) {
    Img m{};
    m.planes = 2, m.steps = StepArr, m.ext = ExtRoi, m.nullable = 0x03, m.elem = 1;
    m.p[0] = a, m.p[1] = b;
    return m;
}
constexpr Img Lead(Img m) { return m.lead = 1, m; }  // sources only
constexpr Img Dense(Img m) { return m.steps = StepDense, m; }
constexpr Img Float(Img m) { return m.isFloat = true, m; }
constexpr Img Margin(Img m) { return m.foldMargin = true, m; }
constexpr Img Work(Img m, uint8_t nullable) { return m.nullable = nullable, m; }
constexpr Img Int(Img m) { return m; }
// A work buffer of the size the library's query gives; may be null (the call
// tests it where it uses it).
constexpr Img kQueryWork = [] { Img m = One(1); m.steps = StepNone, m.ext = ExtQuery; return m; }();
// One int written by the call.
constexpr Img kResultCell = [] { Img m = One(4, XOne, YOne, 4); m.steps = StepNone; return m; }();

// Post-processing of the extents before the destination is sized.
enum Clip : uint8_t { ClipNone, ClipCfa, ClipAhd };
// How the work buffer is sized.
enum Query : uint8_t { QueryNone, QueryReduce, QueryReduce1u };

// ---------------------------------------------------------------------------
// One argument slot of a call; converts itself to the parameter's type.
struct Slot {
    int64_t i = 0;
    void* p = nullptr;
    ZilSize sz{};
    ZilSizeL szl{};
    ZilRect rc{};
    template <class T>
    T as() const {
        if constexpr (std::is_pointer_v<T>) return static_cast<T>(p);
        else if constexpr (std::is_same_v<T, ZilSize>) return sz;
        else if constexpr (std::is_same_v<T, ZilSizeL>) return szl;
        else if constexpr (std::is_same_v<T, ZilRect>) return rc;
        else return static_cast<T>(i);
    }
};

template <class... P>
constexpr size_t Arity(ZilStatus (*)(P...)) { return sizeof...(P); }
template <class... P, size_t... I>
ZilStatus ApplyIdx(ZilStatus (*f)(P...), const Slot* a, std::index_sequence<I...>) {
    return f(a[I].template as<P>()...);
}
template <class... P>
ZilStatus Apply(ZilStatus (*f)(P...), const Slot* a) {
    return ApplyIdx(f, a, std::index_sequence_for<P...>{});
}
template <auto F>
ZilStatus Invoke(const Slot* a) { return Apply(F, a); }

// The version query takes nothing and must always give the same record.
ZilStatus InvokeVersion(const Slot*);

// Roles, one character per argument in order:
//   s source image     S source step(s)   d destination     D destination step(s)
//   z ZilSize (roi; the whole plane for the demosaicing entries), or ZilSizeL
//   u U second source plane and its step   v V second destination plane and its step
//   r ZilRect          g grid             b work buffer     B work buffer step
//   a alpha            n noise            t dither          l levels
//   o bit offset       x reserved int     h threshold       c channel code
//   p result cell (int*), a destination of one int
//   m the twist matrix   y the filter slice layout   e E the gamma range vMin, vMax   k K gray weights (float, double)
struct Row {
    const char* name;
    ZilStatus (*call)(const Slot*);
    const char* roles;
    size_t arity;
    Img src, dst, work;
    uint8_t clip = ClipNone;
    uint8_t query = QueryNone;
    uint8_t aux = 0;  // channel code passed to the size query
};

#define ZROW(f, roles, ...) ::zilfuzz::Row{#f, &::zilfuzz::Invoke<&f>, roles, ::zilfuzz::Arity(&f), __VA_ARGS__}

// ---------------------------------------------------------------------------
// Image shapes of the RGB-YUV family.
constexpr Plane kFull{1, XW, YH}, kEven{1, XEven, YEven}, kHalfUp{1, XHalfUp, YH}, kHalf{1, XHalf, YHalf};
constexpr Img kC3 = One(3), kAC4 = One(4), kC2 = One(2);
constexpr Img kC3Even = One(3, XEven, YEven), kAC4Even = One(4, XEven, YEven);
constexpr Img kP3 = Planes(3, StepOne, kFull, kFull, kFull);
constexpr Img kP3Even = Planes(3, StepOne, kEven, kEven, kEven);
constexpr Img kP4Alpha = Planes(4, StepOne, kFull, kFull, kFull, kFull, 0x87);  // dst[3] not tested
constexpr Img k422 = Planes(3, StepArr, kFull, kHalfUp, kHalfUp);
constexpr Img k420 = Planes(3, StepArr, kEven, kHalf, kHalf);

inline constexpr Row kRows[] = {
    Row{"zilccGetLibVersion", &InvokeVersion, "", 0, kNone, kNone, kNone},

    // RGB <-> YUV
    ZROW(ziliRGBToYUV_8u_C3R, "sSdDz", kC3, kC3, kNone),
    ZROW(ziliRGBToYUV_8u_AC4R, "sSdDz", kAC4, kAC4, kNone),
    ZROW(ziliRGBToYUV_8u_C3P3R, "sSdDz", kC3, kP3, kNone),
    ZROW(ziliRGBToYUV_8u_P3R, "sSdDz", kP3, kP3, kNone),
    ZROW(ziliRGBToYUV_8u_AC4P4R, "sSdDz", kAC4, kP4Alpha, kNone),
    ZROW(ziliYUVToRGB_8u_C3R, "sSdDz", kC3, kC3, kNone),
    ZROW(ziliYUVToRGB_8u_AC4R, "sSdDz", kAC4, kAC4, kNone),
    ZROW(ziliYUVToRGB_8u_C3C4R, "sSdDza", kC3, kAC4, kNone),
    ZROW(ziliYUVToRGB_8u_P3C3R, "sSdDz", kP3, kC3, kNone),
    ZROW(ziliYUVToRGB_8u_P3R, "sSdDz", kP3, kP3, kNone),
    ZROW(ziliRGBToYUV422_8u_C3C2R, "sSdDz", kC3, kC2, kNone),
    ZROW(ziliRGBToYUV422_8u_C3P3R, "sSdDz", kC3, k422, kNone),
    ZROW(ziliRGBToYUV422_8u_P3R, "sSdDz", kP3, k422, kNone),
    ZROW(ziliRGBToYUV422_8u_C3P3, "sdz", Dense(kC3), Dense(k422), kNone),
    ZROW(ziliRGBToYUV422_8u_P3, "sdz", Dense(kP3), Dense(k422), kNone),
    ZROW(ziliYUV422ToRGB_8u_C2C3R, "sSdDz", kC2, kC3, kNone),
    ZROW(ziliYUV422ToRGB_8u_P3C3R, "sSdDz", k422, kC3, kNone),
    ZROW(ziliYUV422ToRGB_8u_P3R, "sSdDz", k422, kP3, kNone),
    ZROW(ziliYUV422ToRGB_8u_P3AC4R, "sSdDz", k422, kAC4, kNone),
    ZROW(ziliYUV422ToRGB_8u_P3C3, "sdz", Dense(k422), Dense(kC3), kNone),
    ZROW(ziliYUV422ToRGB_8u_P3, "sdz", Dense(k422), Dense(kP3), kNone),
    ZROW(ziliRGBToYUV420_8u_C3P3R, "sSdDz", kC3Even, k420, kNone),
    ZROW(ziliRGBToYUV420_8u_P3R, "sSdDz", kP3Even, k420, kNone),
    ZROW(ziliRGBToYUV420_8u_C3P3, "sdz", Dense(kC3Even), Dense(k420), kNone),
    ZROW(ziliRGBToYUV420_8u_P3, "sdz", Dense(kP3Even), Dense(k420), kNone),
    ZROW(ziliBGRToYUV420_8u_AC4P3R, "sSdDz", kAC4Even, k420, kNone),
    ZROW(ziliYUV420ToRGB_8u_P3C3R, "sSdDz", k420, kC3Even, kNone),
    ZROW(ziliYUV420ToRGB_8u_P3R, "sSdDz", k420, kP3Even, kNone),
    ZROW(ziliYUV420ToRGB_8u_P3AC4R, "sSdDz", k420, kAC4Even, kNone),
    ZROW(ziliYUV420ToRGB_8u_P3C3, "sdz", Dense(k420), Dense(kC3Even), kNone),
    ZROW(ziliYUV420ToRGB_8u_P3, "sdz", Dense(k420), Dense(kP3Even), kNone),
    ZROW(ziliYUV420ToBGR_8u_P3C3R, "sSdDz", k420, kC3Even, kNone),

    // Demosaicing. The ZilSize is the whole plane, which the source spans; the
    // destination (and the work lines) follow the region after the frame's cut.
#ifdef ZIL_HAVE_CFA
    ZROW(ziliCFAToRGB_8u_C1C3R, "srzSdDg", One(1), One(3, XW, YH, 1, ExtClip), kNone, ClipCfa),
    ZROW(ziliCFAToRGB_16u_C1C3R, "srzSdDg", One(2, XW, YH, 2), One(6, XW, YH, 2, ExtClip), kNone, ClipCfa),
#endif
#ifdef ZIL_HAVE_AHD
    ZROW(ziliDemosaicAHD_8u_C1C3R, "srzSdDgbB", Margin(One(1)), One(3, XW, YH, 1, ExtClip),
         Work(One(1, XAhd, Y30, 1, ExtClip), 0), ClipAhd),
    ZROW(ziliDemosaicAHD_16u_C1C3R, "srzSdDgbB", Margin(One(2, XW, YH, 2)), One(6, XW, YH, 2, ExtClip),
         Work(One(2, XAhd, Y30, 2, ExtClip), 0), ClipAhd),
#endif

    // Bit-depth reduction: eight element pairs in four layouts, the one-bit form
    // and the size query. The work buffer is sized by the query, as callers do.
#ifdef ZIL_HAVE_REDUCE
#define ZIL_RB_ROW(pair, layout, ch, code, se, de, fl)                                                           \
    ZROW(ziliReduceBits_##pair##_##layout##R, "sSdDzntlb", fl(One(ch * se, XW, YH, se)), One(ch * de, XW, YH, de), \
         kQueryWork, ClipNone, QueryReduce, code)
#define ZIL_RB_PAIR(pair, se, de, fl)                                                                     \
    ZIL_RB_ROW(pair, C1, 1, 1, se, de, fl), ZIL_RB_ROW(pair, C3, 3, 3, se, de, fl),                       \
        ZIL_RB_ROW(pair, AC4, 4, 9, se, de, fl), ZIL_RB_ROW(pair, C4, 4, 4, se, de, fl)
    ZIL_RB_PAIR(8u, 1, 1, Int), ZIL_RB_PAIR(16u, 2, 2, Int), ZIL_RB_PAIR(16s, 2, 2, Int),
    ZIL_RB_PAIR(32f8u, 4, 1, Float), ZIL_RB_PAIR(32f16u, 4, 2, Float), ZIL_RB_PAIR(32f16s, 4, 2, Float),
    ZIL_RB_PAIR(16u8u, 2, 1, Int), ZIL_RB_PAIR(16s8u, 2, 1, Int),
#undef ZIL_RB_PAIR
#undef ZIL_RB_ROW
    ZROW(ziliReduceBits_8u1u_C1R, "sSdDozxxthb", One(1), One(1, XBits, YH), kQueryWork, ClipNone, QueryReduce1u),
    ZROW(ziliReduceBitsGetBufferSize, "czntp", kNone, kResultCell, kNone),
#endif

    // Gamma. In-place forms pass their one image as the destination; the 32f
    // forms take the roles e (vMin) and E (vMax) last. Planes of es-byte samples
    // share one step.
#define ZIL_GAMMA_P3(es) \
    [] { Img m = Planes(3, StepOne, {es, XW, YH}, {es, XW, YH}, {es, XW, YH}); return m.elem = es, m; }()
#define ZIL_GAMMA_ROWS(Dir, code, es, fl, ex)                                                                   \
    ZROW(ziliGamma##Dir##_##code##_C3R, "sSdDz" ex, fl(One(3 * es, XW, YH, es)), One(3 * es, XW, YH, es), kNone), \
        ZROW(ziliGamma##Dir##_##code##_C3IR, "dDz" ex, kNone, One(3 * es, XW, YH, es), kNone),                    \
        ZROW(ziliGamma##Dir##_##code##_AC4R, "sSdDz" ex, fl(One(4 * es, XW, YH, es)), One(4 * es, XW, YH, es),    \
             kNone),                                                                                              \
        ZROW(ziliGamma##Dir##_##code##_AC4IR, "dDz" ex, kNone, One(4 * es, XW, YH, es), kNone),                   \
        ZROW(ziliGamma##Dir##_##code##_P3R, "sSdDz" ex, fl(ZIL_GAMMA_P3(es)), ZIL_GAMMA_P3(es), kNone),                   \
        ZROW(ziliGamma##Dir##_##code##_IP3R, "dDz" ex, kNone, ZIL_GAMMA_P3(es), kNone)
    ZIL_GAMMA_ROWS(Fwd, 8u, 1, Int, ""), ZIL_GAMMA_ROWS(Inv, 8u, 1, Int, ""),
    ZIL_GAMMA_ROWS(Fwd, 16u, 2, Int, ""), ZIL_GAMMA_ROWS(Inv, 16u, 2, Int, ""),
    ZIL_GAMMA_ROWS(Fwd, 32f, 4, Float, "eE"), ZIL_GAMMA_ROWS(Inv, 32f, 4, Float, "eE"),
#undef ZIL_GAMMA_ROWS
#undef ZIL_GAMMA_P3
    // (end of Gamma)

    // Colour twist and tone mapping
    // (roles: m the twist matrix; in-place forms have only a destination image)
#define TwistPlanes(bpp) [] { Img m = Planes(3, StepOne, {bpp, XW, YH}, {bpp, XW, YH}, {bpp, XW, YH}); return m.elem = bpp, m; }()
#define ZIL_TW_TYPE(pfx, bpp, fl)                                                                                \
    ZROW(ziliColorTwist##pfx##_C3R, "sSdDzm", fl(One(3 * bpp, XW, YH, bpp)), One(3 * bpp, XW, YH, bpp), kNone),   \
    ZROW(ziliColorTwist##pfx##_AC4R, "sSdDzm", fl(One(4 * bpp, XW, YH, bpp)), One(4 * bpp, XW, YH, bpp), kNone), \
    ZROW(ziliColorTwist##pfx##_P3R, "sSdDzm", fl(TwistPlanes(bpp)), TwistPlanes(bpp), kNone),                  \
    ZROW(ziliColorTwist##pfx##_C3IR, "dDzm", kNone, One(3 * bpp, XW, YH, bpp), kNone),                           \
    ZROW(ziliColorTwist##pfx##_AC4IR, "dDzm", kNone, One(4 * bpp, XW, YH, bpp), kNone),                          \
    ZROW(ziliColorTwist##pfx##_IP3R, "dDzm", kNone, TwistPlanes(bpp), kNone)
    ZIL_TW_TYPE(_32f, 4, Float), ZIL_TW_TYPE(32f_8u, 1, Int), ZIL_TW_TYPE(32f_16u, 2, Int),
    ZIL_TW_TYPE(32f_16s, 2, Int),
#undef ZIL_TW_TYPE
#undef TwistPlanes
    ZROW(ziliColorTwist_32f_C4R, "sSdDzm", Float(One(16, XW, YH, 4)), One(16, XW, YH, 4), kNone),
    ZROW(ziliToneMapLinear_32f8u_C1R, "sSdDz", Float(One(4, XW, YH, 4)), One(1), kNone),
    ZROW(ziliToneMapMean_32f8u_C1R, "sSdDz", Float(One(4, XW, YH, 4)), One(1), kNone),
    // (end of Colour twist and tone mapping)

    // Full-resolution YCbCr and gray
    ZROW(ziliRGBToYCbCr_8u_C3R, "sSdDz", kC3, kC3, kNone),
    ZROW(ziliRGBToYCbCr_8u_AC4R, "sSdDz", kAC4, kAC4, kNone),
    ZROW(ziliRGBToYCbCr_8u_C3P3R, "sSdDz", kC3, kP3, kNone),
    ZROW(ziliRGBToYCbCr_8u_AC4P3R, "sSdDz", kAC4, Planes(3, StepOne, kFull, kFull, kFull, {}, 0x07), kNone),
    ZROW(ziliRGBToYCbCr_8u_P3R, "sSdDz", kP3, kP3, kNone),
    ZROW(ziliYCbCrToRGB_8u_C3R, "sSdDz", kC3, kC3, kNone),
    ZROW(ziliYCbCrToRGB_8u_AC4R, "sSdDz", kAC4, kAC4, kNone),
    ZROW(ziliYCbCrToRGB_8u_P3C3R, "sSdDz", kP3, kC3, kNone),
    ZROW(ziliYCbCrToBGR_8u_P3C3R, "sSdDz", kP3, kC3, kNone),
    ZROW(ziliYCbCrToRGB_8u_P3C4R, "sSdDza", kP3, kAC4, kNone),
    ZROW(ziliYCbCrToBGR_8u_P3C4R, "sSdDza", kP3, kAC4, kNone),
    ZROW(ziliYCbCrToRGB_8u_P3R, "sSdDz", kP3, kP3, kNone),
    ZROW(ziliRGBToGray_8u_C3C1R, "sSdDz", One(3, XW, YH, 1), One(1, XW, YH, 1), kNone),
    ZROW(ziliRGBToGray_8u_AC4C1R, "sSdDz", One(4, XW, YH, 1), One(1, XW, YH, 1), kNone),
    ZROW(ziliRGBToGray_16u_C3C1R, "sSdDz", One(6, XW, YH, 2), One(2, XW, YH, 2), kNone),
    ZROW(ziliRGBToGray_16u_AC4C1R, "sSdDz", One(8, XW, YH, 2), One(2, XW, YH, 2), kNone),
    ZROW(ziliRGBToGray_16s_C3C1R, "sSdDz", One(6, XW, YH, 2), One(2, XW, YH, 2), kNone),
    ZROW(ziliRGBToGray_16s_AC4C1R, "sSdDz", One(8, XW, YH, 2), One(2, XW, YH, 2), kNone),
    ZROW(ziliRGBToGray_32f_C3C1R, "sSdDz", Float(One(12, XW, YH, 4)), One(4, XW, YH, 4), kNone),
    ZROW(ziliRGBToGray_32f_AC4C1R, "sSdDz", Float(One(16, XW, YH, 4)), One(4, XW, YH, 4), kNone),
    ZROW(ziliColorToGray_8u_C3C1R, "sSdDzk", One(3, XW, YH, 1), One(1, XW, YH, 1), kNone),
    ZROW(ziliColorToGray_8u_AC4C1R, "sSdDzk", One(4, XW, YH, 1), One(1, XW, YH, 1), kNone),
    ZROW(ziliColorToGray_16u_C3C1R, "sSdDzk", One(6, XW, YH, 2), One(2, XW, YH, 2), kNone),
    ZROW(ziliColorToGray_16u_AC4C1R, "sSdDzk", One(8, XW, YH, 2), One(2, XW, YH, 2), kNone),
    ZROW(ziliColorToGray_16s_C3C1R, "sSdDzk", One(6, XW, YH, 2), One(2, XW, YH, 2), kNone),
    ZROW(ziliColorToGray_16s_AC4C1R, "sSdDzk", One(8, XW, YH, 2), One(2, XW, YH, 2), kNone),
    ZROW(ziliColorToGray_32f_C3C1R, "sSdDzk", Float(One(12, XW, YH, 4)), One(4, XW, YH, 4), kNone),
    ZROW(ziliColorToGray_32f_AC4C1R, "sSdDzk", Float(One(16, XW, YH, 4)), One(4, XW, YH, 4), kNone),
    ZROW(ziliColorToGray_64f_C3C1R, "sSdDzK", One(24, XW, YH, 8), One(8, XW, YH, 8), kNone),
    ZROW(ziliColorToGray_64f_AC4C1R, "sSdDzK", One(32, XW, YH, 8), One(8, XW, YH, 8), kNone),
    ZROW(ziliGrayToRGB_8u_C1C3R, "sSdDz", One(1, XW, YH, 1), One(3, XW, YH, 1), kNone),
    ZROW(ziliGrayToRGB_16u_C1C3R, "sSdDz", One(2, XW, YH, 2), One(6, XW, YH, 2), kNone),
    ZROW(ziliGrayToRGB_32f_C1C3R, "sSdDz", One(4, XW, YH, 4), One(12, XW, YH, 4), kNone),
    ZROW(ziliGrayToRGB_8u_C1C4R, "sSdDza", One(1, XW, YH, 1), One(4, XW, YH, 1), kNone),
    ZROW(ziliGrayToRGB_16u_C1C4R, "sSdDza", One(2, XW, YH, 2), One(8, XW, YH, 2), kNone),
    ZROW(ziliGrayToRGB_32f_C1C4R, "sSdDza", One(4, XW, YH, 4), One(16, XW, YH, 4), kNone),
    ZROW(ziliYCbCr422ToGray_8u_C2C1R, "sSdDz", kC2, One(1), kNone),
    // (end of Full-resolution YCbCr and gray)

    // Subsampled YCbCr and BT.709. 4:2:2 chroma planes w/2 a row, 4:1:1 w/4,
    // two-plane 4:2:0: luma and w/2 Cb, Cr pairs by h/2.
#define ZS_422 Planes(3, StepArr, kFull, Plane{1, XHalf, YH}, Plane{1, XHalf, YH})
#define ZS_411 Planes(3, StepArr, kFull, Plane{1, XQuarter, YH}, Plane{1, XQuarter, YH})
#define ZS_P2 TwoPlanes(kEven, Plane{2, XHalf, YHalf})
    ZROW(ziliRGBToYCbCr422_8u_C3C2R, "sSdDz", kC3, kC2, kNone),
    ZROW(ziliRGBToYCrCb422_8u_C3C2R, "sSdDz", kC3, kC2, kNone),
    ZROW(ziliBGRToYCbCr422_8u_C3C2R, "sSdDz", kC3, kC2, kNone),
    ZROW(ziliBGRToYCbCr422_8u_AC4C2R, "sSdDz", kAC4, kC2, kNone),
    ZROW(ziliRGBToYCbCr422_8u_P3C2R, "sSdDz", kP3, kC2, kNone),
    ZROW(ziliRGBToYCrCb422_8u_P3C2R, "sSdDz", kP3, kC2, kNone),
    ZROW(ziliBGRToYCbCr422_8u_C3P3R, "sSdDz", kC3, ZS_422, kNone),
    ZROW(ziliBGRToYCbCr422_8u_AC4P3R, "sSdDz", kAC4, ZS_422, kNone),
    ZROW(ziliRGBToYCbCr422_8u_C3P3R, "sSdDz", kC3, ZS_422, kNone),
    ZROW(ziliBGRToCbYCr422_8u_AC4C2R, "sSdDz", kAC4, kC2, kNone),
    ZROW(ziliRGBToCbYCr422_8u_C3C2R, "sSdDz", kC3, kC2, kNone),
    ZROW(ziliRGBToCbYCr422Gamma_8u_C3C2R, "sSdDz", kC3, kC2, kNone),
    ZROW(ziliYCbCr422ToRGB_8u_C2C3R, "sSdDz", kC2, kC3, kNone),
    ZROW(ziliYCbCr422ToRGB_8u_C2C4R, "sSdDza", kC2, kAC4, kNone),
    ZROW(ziliYCbCr422ToBGR_8u_C2C3R, "sSdDz", kC2, kC3, kNone),
    ZROW(ziliYCbCr422ToBGR_8u_C2C4R, "sSdDza", kC2, kAC4, kNone),
    ZROW(ziliYCrCb422ToRGB_8u_C2C3R, "sSdDz", kC2, kC3, kNone),
    ZROW(ziliYCrCb422ToRGB_8u_C2C4R, "sSdDza", kC2, kAC4, kNone),
    ZROW(ziliYCrCb422ToBGR_8u_C2C3R, "sSdDz", kC2, kC3, kNone),
    ZROW(ziliYCrCb422ToBGR_8u_C2C4R, "sSdDza", kC2, kAC4, kNone),
    ZROW(ziliCbYCr422ToRGB_8u_C2C3R, "sSdDz", kC2, kC3, kNone),
    ZROW(ziliCbYCr422ToBGR_8u_C2C4R, "sSdDza", kC2, kAC4, kNone),
    ZROW(ziliYCbCr422ToRGB_8u_C2P3R, "sSdDz", kC2, kP3, kNone),
    ZROW(ziliYCrCb422ToRGB_8u_C2P3R, "sSdDz", Lead(kC2), kP3, kNone),  // width 1 reads the byte before a row
    ZROW(ziliYCbCr422ToRGB_8u_P3C3R, "sSdDz", ZS_422, kC3, kNone),
    ZROW(ziliYCbCr422ToBGR_8u_P3C3R, "sSdDz", ZS_422, kC3, kNone),
    ZROW(ziliRGBToYCbCr420_8u_C3P3R, "sSdDz", kC3Even, k420, kNone),
    ZROW(ziliBGRToYCbCr420_8u_C3P3R, "sSdDz", kC3Even, k420, kNone),
    ZROW(ziliBGRToYCbCr420_8u_AC4P3R, "sSdDz", kAC4Even, k420, kNone),
    ZROW(ziliBGRToYCrCb420_8u_C3P3R, "sSdDz", kC3Even, k420, kNone),
    ZROW(ziliBGRToYCrCb420_8u_AC4P3R, "sSdDz", kAC4Even, k420, kNone),
    ZROW(ziliRGBToYCrCb420_8u_AC4P3R, "sSdDz", kAC4Even, k420, kNone),
    ZROW(ziliRGBToYCbCr420_8u_C3P2R, "sSdDvVz", kC3Even, ZS_P2, kNone),
    ZROW(ziliRGBToYCbCr420_8u_C4P2R, "sSdDvVz", kAC4Even, ZS_P2, kNone),
    ZROW(ziliBGRToYCbCr420_8u_C3P2R, "sSdDvVz", kC3Even, ZS_P2, kNone),
    ZROW(ziliBGRToYCbCr420_8u_AC4P2R, "sSdDvVz", kAC4Even, ZS_P2, kNone),
    ZROW(ziliYCbCr420ToRGB_8u_P3C3R, "sSdDz", k420, kC3Even, kNone),
    ZROW(ziliYCbCr420ToBGR_8u_P3C3R, "sSdDz", k420, kC3Even, kNone),
    ZROW(ziliYCbCr420ToBGR_8u_P3C4R, "sSdDza", k420, kAC4Even, kNone),
    ZROW(ziliYCrCb420ToRGB_8u_P3C4R, "sSdDza", k420, kAC4Even, kNone),
    ZROW(ziliYCbCr420ToRGB_8u_P2C3R, "sSuUdDz", ZS_P2, kC3Even, kNone),
    ZROW(ziliYCbCr420ToRGB_8u_P2C4R, "sSuUdDza", ZS_P2, kAC4Even, kNone),
    ZROW(ziliYCbCr420ToBGR_8u_P2C3R, "sSuUdDz", ZS_P2, kC3Even, kNone),
    ZROW(ziliYCbCr420ToBGR_8u_P2C4R, "sSuUdDza", ZS_P2, kAC4Even, kNone),
    ZROW(ziliYCrCb420ToRGB_8u_P2C3R, "sSuUdDz", ZS_P2, kC3Even, kNone),
    ZROW(ziliYCrCb420ToBGR_8u_P2C3R, "sSuUdDz", ZS_P2, kC3Even, kNone),
    ZROW(ziliYCrCb420ToRGB_8u_P2C4R, "sSuUdDza", ZS_P2, kAC4Even, kNone),
    ZROW(ziliYCrCb420ToBGR_8u_P2C4R, "sSuUdDza", ZS_P2, kAC4Even, kNone),
    ZROW(ziliBGRToYCbCr411_8u_C3P3R, "sSdDz", kC3, ZS_411, kNone),
    ZROW(ziliBGRToYCbCr411_8u_AC4P3R, "sSdDz", kAC4, ZS_411, kNone),
    ZROW(ziliYCbCr411ToBGR_8u_P3C3R, "sSdDz", ZS_411, kC3, kNone),
    ZROW(ziliYCbCr411ToBGR_8u_P3C4R, "sSdDza", ZS_411, kAC4, kNone),
    ZROW(ziliBGRToYCbCr420_709CSC_8u_C3P3R, "sSdDz", kC3Even, k420, kNone),
    ZROW(ziliBGRToYCbCr420_709CSC_8u_AC4P3R, "sSdDz", kAC4Even, k420, kNone),
    ZROW(ziliBGRToYCrCb420_709CSC_8u_C3P3R, "sSdDz", kC3Even, k420, kNone),
    ZROW(ziliBGRToYCrCb420_709CSC_8u_AC4P3R, "sSdDz", kAC4Even, k420, kNone),
    ZROW(ziliBGRToYCbCr420_709CSC_8u_C3P2R, "sSdDvVz", kC3Even, ZS_P2, kNone),
    ZROW(ziliBGRToYCbCr420_709CSC_8u_AC4P2R, "sSdDvVz", kAC4Even, ZS_P2, kNone),
    ZROW(ziliYCbCrToBGR_709CSC_8u_P3C3R, "sSdDz", kP3, kC3, kNone),
    ZROW(ziliYCbCrToBGR_709CSC_8u_P3C4R, "sSdDza", kP3, kAC4, kNone),
    ZROW(ziliYCbCr420ToBGR_709CSC_8u_P3C3R, "sSdDz", k420, kC3Even, kNone),
    ZROW(ziliBGRToYCbCr420_709HDTV_8u_AC4P3R, "sSdDz", kAC4Even, k420, kNone),
    ZROW(ziliYCbCr420ToBGR_709HDTV_8u_P3C4R, "sSdDza", k420, kAC4Even, kNone),
    ZROW(ziliBGRToCbYCr422_709HDTV_8u_C3C2R, "sSdDz", kC3, kC2, kNone),
    ZROW(ziliBGRToCbYCr422_709HDTV_8u_AC4C2R, "sSdDz", kAC4, kC2, kNone),
    ZROW(ziliCbYCr422ToBGR_709HDTV_8u_C2C3R, "sSdDz", kC2, kC3, kNone),
    ZROW(ziliCbYCr422ToBGR_709HDTV_8u_C2C4R, "sSdDza", kC2, kAC4, kNone),
    ZROW(ziliRGBToYCbCr420_HDTV709r6_8u_C3P2R_L, "sSdDvVz", kC3Even, ZS_P2, kNone),
#undef ZS_P2
#undef ZS_411
#undef ZS_422
    // (end of Subsampled YCbCr and BT.709)

    // Chroma reformatting, filters and interlace. P3 sides take an array of
    // steps, P2 sides two pointer-and-step pairs (roles "sS" twice), C2 streams.
#define ZRF_P3(c) Planes(3, StepArr, kFull, c, c)
#define ZRF_422 ZRF_P3((Plane{1, XHalf, YH}))
#define ZRF_420 ZRF_P3((Plane{1, XHalf, YHalf}))
#define ZRF_411 ZRF_P3((Plane{1, XQuarter, YH}))
#define ZRF_1620 ZRF_P3((Plane{1, XQuarter, YQuarter}))
#define ZRF_NV420 Planes(2, StepPair, kFull, Plane{2, XHalf, YHalf}, Plane{}, Plane{}, 0x03)
#define ZRF_NV411 Planes(2, StepPair, kFull, Plane{2, XQuarter, YH}, Plane{}, Plane{}, 0x03)
#define ZRF_ENTRIES(m) Work(m, 0x07)  /* the plane array itself is not tested */
#define ZRF(f, S, D) ZROW(f, "sSdDz", S, D, kNone)
#define ZRF_FROM_P2(f, S, D) ZROW(f, "sSsSdDz", S, D, kNone)
#define ZRF_TO_P2(f, S, D) ZROW(f, "sSdDdDz", S, D, kNone)
    ZRF(ziliYCbCr422_8u_P3C2R, ZRF_422, kC2),
    ZRF(ziliYCbCr422_8u_C2P3R, kC2, ZRF_422),
    ZRF(ziliYCbCr422ToCbYCr422_8u_P3C2R, ZRF_422, kC2),
    ZRF(ziliYCbCr422ToCbYCr422_8u_C2R, kC2, kC2),
    ZRF(ziliCbYCr422ToYCbCr422_8u_C2R, kC2, kC2),
    ZRF(ziliCbYCr422ToYCbCr422_8u_C2P3R, kC2, ZRF_422),
    ZRF(ziliYCbCr422ToYCrCb422_8u_C2R, kC2, kC2),
    ZRF(ziliYCbCr422ToYCrCb422_8u_P3C2R, ZRF_422, kC2),
    ZRF(ziliYCrCb422ToYCbCr422_8u_C2P3R, kC2, ZRF_422),
    ZRF_TO_P2(ziliYCbCr420_8u_P3P2R, ZRF_420, ZRF_NV420),
    ZRF_FROM_P2(ziliYCbCr420_8u_P2P3R, ZRF_NV420, ZRF_420),
    ZRF_TO_P2(ziliYCrCb420ToYCbCr420_8u_P3P2R, ZRF_420, ZRF_NV420),
    ZRF_FROM_P2(ziliYCbCr420ToYCrCb420_8u_P2P3R, ZRF_NV420, ZRF_420),
    ZRF_TO_P2(ziliYCbCr411_8u_P3P2R, ZRF_411, ZRF_NV411),
    ZRF_FROM_P2(ziliYCbCr411_8u_P2P3R, ZRF_NV411, ZRF_ENTRIES(ZRF_411)),
    ZRF(ziliYCbCr422ToYCbCr420_8u_P3R, ZRF_422, ZRF_420),
    ZRF_TO_P2(ziliYCbCr422ToYCbCr420_8u_P3P2R, ZRF_422, ZRF_NV420),
    ZRF(ziliYCbCr422ToYCbCr420_8u_C2P3R, kC2, ZRF_420),
    ZRF_TO_P2(ziliYCbCr422ToYCbCr420_8u_C2P2R, kC2, ZRF_NV420),
    ZRF(ziliYCbCr422ToYCrCb420_8u_C2P3R, kC2, ZRF_420),
    ZRF_TO_P2(ziliYCbCr422ToYCrCb420_8u_C2P2R, kC2, ZRF_NV420),
    ZRF(ziliCbYCr422ToYCbCr420_8u_C2P3R, kC2, ZRF_420),
    ZRF_TO_P2(ziliCbYCr422ToYCbCr420_8u_C2P2R, kC2, ZRF_NV420),
    ZRF(ziliCbYCr422ToYCrCb420_8u_C2P3R, kC2, ZRF_420),
    ZRF(ziliYCrCb422ToYCbCr420_8u_C2P3R, kC2, ZRF_420),
    ZRF(ziliYCbCr420ToYCbCr422_8u_P3R, ZRF_420, ZRF_422),
    ZRF_FROM_P2(ziliYCbCr420ToYCbCr422_8u_P2P3R, ZRF_NV420, ZRF_422),
    ZRF_FROM_P2(ziliYCbCr420ToYCbCr422_8u_P2C2R, ZRF_NV420, kC2),
    ZRF_FROM_P2(ziliYCbCr420ToCbYCr422_8u_P2C2R, ZRF_NV420, kC2),
    ZRF(ziliYCrCb420ToYCbCr422_8u_P3R, ZRF_420, ZRF_422),
    ZRF(ziliYCrCb420ToYCbCr422_8u_P3C2R, ZRF_420, kC2),
    ZRF(ziliYCrCb420ToCbYCr422_8u_P3C2R, ZRF_420, kC2),
    ZRF(ziliYCbCr422ToYCbCr411_8u_P3R, ZRF_422, ZRF_411),
    ZRF_TO_P2(ziliYCbCr422ToYCbCr411_8u_P3P2R, ZRF_422, ZRF_NV411),
    ZRF(ziliYCbCr422ToYCbCr411_8u_C2P3R, kC2, ZRF_411),
    ZRF_TO_P2(ziliYCbCr422ToYCbCr411_8u_C2P2R, kC2, ZRF_NV411),
    ZRF(ziliYCrCb422ToYCbCr411_8u_C2P3R, kC2, ZRF_411),
    ZRF(ziliCbYCr422ToYCbCr411_8u_C2P3R, kC2, ZRF_411),
    ZRF(ziliYCbCr411ToYCbCr422_8u_P3R, ZRF_411, ZRF_422),
    ZRF_FROM_P2(ziliYCbCr411ToYCbCr422_8u_P2P3R, ZRF_NV411, ZRF_ENTRIES(ZRF_422)),
    ZRF_FROM_P2(ziliYCbCr411ToYCbCr422_8u_P2C2R, ZRF_NV411, kC2),
    ZRF(ziliYCbCr411ToYCbCr422_8u_P3C2R, ZRF_411, kC2),
    ZRF(ziliYCbCr411ToYCrCb422_8u_P3R, ZRF_411, ZRF_422),
    ZRF(ziliYCbCr411ToYCrCb422_8u_P3C2R, ZRF_411, kC2),
    ZRF(ziliYCbCr411ToYCbCr420_8u_P3R, ZRF_411, ZRF_420),
    ZRF_TO_P2(ziliYCbCr411ToYCbCr420_8u_P3P2R, ZRF_411, ZRF_NV420),
    ZRF_FROM_P2(ziliYCbCr411ToYCbCr420_8u_P2P3R, ZRF_NV411, ZRF_ENTRIES(ZRF_420)),
    ZRF_FROM_P2(ziliYCbCr411ToYCrCb420_8u_P2P3R, ZRF_NV411, ZRF_ENTRIES(ZRF_420)),
    ZRF_TO_P2(ziliYCbCr420ToYCbCr411_8u_P3P2R, ZRF_420, ZRF_NV411),
    ZRF_FROM_P2(ziliYCbCr420ToYCbCr411_8u_P2P3R, ZRF_NV420, ZRF_411),
    ZRF_TO_P2(ziliYCrCb420ToYCbCr411_8u_P3P2R, ZRF_420, ZRF_NV411),
    ZRF(ziliYCbCr411To420_8u_P3R, ZRF_411, ZRF_420),
    ZRF(ziliYCbCr420To411_8u_P3R, ZRF_420, ZRF_411),
    ZRF(ziliYCbCr420To1620_8u_P3R, ZRF_420, ZRF_1620),
    ZRF(ziliYCbCr1620To420_8u_P3R, ZRF_1620, ZRF_420),
    ZROW(ziliYCbCr420ToYCrCb420_Filter_8u_P2P3R, "sSsSdDzy", ZRF_NV420, [] { Img m = ZRF_420; return m.sharedStep = true, m; }(), kNone),
    ZROW(ziliYCbCr420ToYCbCr422_Filter_8u_P2C2R, "sSsSdDzy", ZRF_NV420, kC2, kNone),
    ZRF(ziliYCbCr420ToYCbCr422_Filter_8u_P3R, ZRF_420, ZRF_422),
    ZRF_FROM_P2(ziliYCbCr420ToYCbCr422_Filter_8u_P2P3R, ZRF_NV420, ZRF_422),
    ZRF(ziliYCrCb420ToYCbCr422_Filter_8u_P3R, ZRF_420, ZRF_422),
    ZROW(ziliYCrCb420ToBGR_Filter_8u_P3C4R, "sSdDza", Planes(3, StepArr, Plane{1, XEvenUp, YH}, Plane{1, XHalfUp, YHalf}, Plane{1, XHalfUp, YHalf}), One(4, XEvenUp, YH), kNone),
    ZRF(ziliYCbCr420To422_Interlace_8u_P3R, ZRF_420, ZRF_422),
    ZRF(ziliYCbCr420ToCbYCr422_Interlace_8u_P3C2R, ZRF_420, kC2),
    ZRF(ziliYCbCr422To420_Interlace_8u_P3R, ZRF_422, ZRF_420),
    ZRF(ziliCbYCr422ToYCbCr420_Interlace_8u_C2P3R, kC2, ZRF_420),
#undef ZRF_P3
#undef ZRF_422
#undef ZRF_420
#undef ZRF_411
#undef ZRF_1620
#undef ZRF_NV420
#undef ZRF_NV411
#undef ZRF_ENTRIES
#undef ZRF
#undef ZRF_FROM_P2
#undef ZRF_TO_P2
    // (end of Chroma reformatting, filters and interlace)

    // XYZ, LUV, Lab and YCC
    // Three-sample pixels (C3) and four (AC4, the fourth untouched), of one
    // element type on both sides but for the two mixed Lab forms.
#define ZIL_CIE_C3(f, se, de, fl) ZROW(f, "sSdDz", fl(One(3 * se, XW, YH, se)), fl(One(3 * de, XW, YH, de)), kNone)
#define ZIL_CIE_AC4(f, e, fl) ZROW(f, "sSdDz", fl(One(4 * e, XW, YH, e)), fl(One(4 * e, XW, YH, e)), kNone)
#define ZIL_CIE_PAIR(stem, e, fl) ZIL_CIE_C3(stem##_C3R, e, e, fl), ZIL_CIE_AC4(stem##_AC4R, e, fl)
#define ZIL_CIE_DEPTHS(conv)                                                                           \
    ZIL_CIE_PAIR(zili##conv##_8u, 1, Int), ZIL_CIE_PAIR(zili##conv##_16u, 2, Int),                      \
        ZIL_CIE_PAIR(zili##conv##_16s, 2, Int), ZIL_CIE_PAIR(zili##conv##_32f, 4, Float)
    ZIL_CIE_DEPTHS(RGBToXYZ), ZIL_CIE_DEPTHS(XYZToRGB), ZIL_CIE_DEPTHS(RGBToLUV), ZIL_CIE_DEPTHS(LUVToRGB),
    ZIL_CIE_DEPTHS(RGBToYCC), ZIL_CIE_DEPTHS(YCCToRGB),
    ZIL_CIE_C3(ziliBGRToLUV_8u_C3R, 1, 1, Int), ZIL_CIE_C3(ziliLUVToBGR_8u_C3R, 1, 1, Int),
    ZIL_CIE_C3(ziliBGRToLUV_32f_C3R, 4, 4, Float), ZIL_CIE_C3(ziliLUVToBGR_32f_C3R, 4, 4, Float),
    ZIL_CIE_C3(ziliRGBToLab_8u_C3R, 1, 1, Int), ZIL_CIE_C3(ziliBGRToLab_8u_C3R, 1, 1, Int),
    ZIL_CIE_C3(ziliLabToRGB_8u_C3R, 1, 1, Int), ZIL_CIE_C3(ziliLabToBGR_8u_C3R, 1, 1, Int),
    ZIL_CIE_C3(ziliRGBToLab_32f_C3R, 4, 4, Float), ZIL_CIE_C3(ziliBGRToLab_32f_C3R, 4, 4, Float),
    ZIL_CIE_C3(ziliLabToRGB_32f_C3R, 4, 4, Float), ZIL_CIE_C3(ziliLabToBGR_32f_C3R, 4, 4, Float),
    ZIL_CIE_C3(ziliBGRToLab_8u16u_C3R, 1, 2, Int), ZIL_CIE_C3(ziliLabToBGR_16u8u_C3R, 2, 1, Int),
#undef ZIL_CIE_DEPTHS
#undef ZIL_CIE_PAIR
#undef ZIL_CIE_AC4
#undef ZIL_CIE_C3
    // (end of XYZ, LUV, Lab and YCC)

    // HLS, HSV and YCoCg
#define ZIL_HUE_PK(ch, e) One(ch * e, XW, YH, e)
#define ZIL_HUE_PL(n, e, nullable)                                                                        \
    [] {                                                                                                  \
        Img m = Planes(n, StepOne, {e, XW, YH}, {e, XW, YH}, {e, XW, YH}, {uint8_t(n == 4 ? e : 0), XW, YH}, \
                       nullable);                                                                         \
        m.elem = e;                                                                                       \
        return m;                                                                                         \
    }()
    ZROW(ziliRGBToHLS_8u_C3R, "sSdDz", kC3, kC3, kNone),
    ZROW(ziliRGBToHLS_8u_AC4R, "sSdDz", kAC4, kAC4, kNone),
    ZROW(ziliRGBToHLS_16u_C3R, "sSdDz", ZIL_HUE_PK(3, 2), ZIL_HUE_PK(3, 2), kNone),
    ZROW(ziliRGBToHLS_16u_AC4R, "sSdDz", ZIL_HUE_PK(4, 2), ZIL_HUE_PK(4, 2), kNone),
    ZROW(ziliRGBToHLS_16s_C3R, "sSdDz", ZIL_HUE_PK(3, 2), ZIL_HUE_PK(3, 2), kNone),
    ZROW(ziliRGBToHLS_16s_AC4R, "sSdDz", ZIL_HUE_PK(4, 2), ZIL_HUE_PK(4, 2), kNone),
    ZROW(ziliRGBToHLS_32f_C3R, "sSdDz", Float(ZIL_HUE_PK(3, 4)), ZIL_HUE_PK(3, 4), kNone),
    ZROW(ziliRGBToHLS_32f_AC4R, "sSdDz", Float(ZIL_HUE_PK(4, 4)), ZIL_HUE_PK(4, 4), kNone),
    ZROW(ziliHLSToRGB_8u_C3R, "sSdDz", kC3, kC3, kNone),
    ZROW(ziliHLSToRGB_8u_AC4R, "sSdDz", kAC4, kAC4, kNone),
    ZROW(ziliHLSToRGB_16u_C3R, "sSdDz", ZIL_HUE_PK(3, 2), ZIL_HUE_PK(3, 2), kNone),
    ZROW(ziliHLSToRGB_16u_AC4R, "sSdDz", ZIL_HUE_PK(4, 2), ZIL_HUE_PK(4, 2), kNone),
    ZROW(ziliHLSToRGB_16s_C3R, "sSdDz", ZIL_HUE_PK(3, 2), ZIL_HUE_PK(3, 2), kNone),
    ZROW(ziliHLSToRGB_16s_AC4R, "sSdDz", ZIL_HUE_PK(4, 2), ZIL_HUE_PK(4, 2), kNone),
    ZROW(ziliHLSToRGB_32f_C3R, "sSdDz", Float(ZIL_HUE_PK(3, 4)), ZIL_HUE_PK(3, 4), kNone),
    ZROW(ziliHLSToRGB_32f_AC4R, "sSdDz", Float(ZIL_HUE_PK(4, 4)), ZIL_HUE_PK(4, 4), kNone),
    ZROW(ziliRGBToHSV_8u_C3R, "sSdDz", kC3, kC3, kNone),
    ZROW(ziliRGBToHSV_8u_AC4R, "sSdDz", kAC4, kAC4, kNone),
    ZROW(ziliRGBToHSV_16u_C3R, "sSdDz", ZIL_HUE_PK(3, 2), ZIL_HUE_PK(3, 2), kNone),
    ZROW(ziliRGBToHSV_16u_AC4R, "sSdDz", ZIL_HUE_PK(4, 2), ZIL_HUE_PK(4, 2), kNone),
    ZROW(ziliHSVToRGB_8u_C3R, "sSdDz", kC3, kC3, kNone),
    ZROW(ziliHSVToRGB_8u_AC4R, "sSdDz", kAC4, kAC4, kNone),
    ZROW(ziliHSVToRGB_16u_C3R, "sSdDz", ZIL_HUE_PK(3, 2), ZIL_HUE_PK(3, 2), kNone),
    ZROW(ziliHSVToRGB_16u_AC4R, "sSdDz", ZIL_HUE_PK(4, 2), ZIL_HUE_PK(4, 2), kNone),
    ZROW(ziliBGRToHLS_8u_AC4R, "sSdDz", kAC4, kAC4, kNone),
    ZROW(ziliBGRToHLS_8u_C3P3R, "sSdDz", kC3, kP3, kNone),
    ZROW(ziliBGRToHLS_8u_AC4P4R, "sSdDz", kAC4, ZIL_HUE_PL(4, 1, 0x8F), kNone),
    ZROW(ziliBGRToHLS_8u_P3R, "sSdDz", kP3, kP3, kNone),
    ZROW(ziliBGRToHLS_8u_AP4R, "sSdDz", ZIL_HUE_PL(4, 1, 0x8F), ZIL_HUE_PL(4, 1, 0x8F), kNone),
    ZROW(ziliBGRToHLS_8u_P3C3R, "sSdDz", kP3, kC3, kNone),
    ZROW(ziliBGRToHLS_8u_AP4C4R, "sSdDz", ZIL_HUE_PL(4, 1, 0x8F), kAC4, kNone),
    ZROW(ziliHLSToBGR_8u_C3P3R, "sSdDz", kC3, kP3, kNone),
    ZROW(ziliHLSToBGR_8u_AC4P4R, "sSdDz", kAC4, ZIL_HUE_PL(4, 1, 0x8F), kNone),
    ZROW(ziliHLSToBGR_8u_P3R, "sSdDz", kP3, kP3, kNone),
    ZROW(ziliHLSToBGR_8u_AP4R, "sSdDz", ZIL_HUE_PL(4, 1, 0x8F), ZIL_HUE_PL(4, 1, 0x8F), kNone),
    ZROW(ziliHLSToBGR_8u_P3C3R, "sSdDz", kP3, kC3, kNone),
    ZROW(ziliHLSToBGR_8u_AP4C4R, "sSdDz", ZIL_HUE_PL(4, 1, 0x8F), kAC4, kNone),
    ZROW(ziliBGRToYCoCg_8u16s_C3P3R, "sSdDz", kC3, ZIL_HUE_PL(3, 2, 0x87), kNone),
    ZROW(ziliBGRToYCoCg_8u16s_C4P3R, "sSdDz", kAC4, ZIL_HUE_PL(3, 2, 0x87), kNone),
    ZROW(ziliSBGRToYCoCg_16s_C3P3R, "sSdDz", ZIL_HUE_PK(3, 2), ZIL_HUE_PL(3, 2, 0x87), kNone),
    ZROW(ziliSBGRToYCoCg_16s_C4P3R, "sSdDz", ZIL_HUE_PK(4, 2), ZIL_HUE_PL(3, 2, 0x87), kNone),
    ZROW(ziliSBGRToYCoCg_16s32s_C3P3R, "sSdDz", ZIL_HUE_PK(3, 2), ZIL_HUE_PL(3, 4, 0x87), kNone),
    ZROW(ziliSBGRToYCoCg_16s32s_C4P3R, "sSdDz", ZIL_HUE_PK(4, 2), ZIL_HUE_PL(3, 4, 0x87), kNone),
    ZROW(ziliBGRToYCoCg_Rev_8u16s_C3P3R, "sSdDz", kC3, ZIL_HUE_PL(3, 2, 0x87), kNone),
    ZROW(ziliBGRToYCoCg_Rev_8u16s_C4P3R, "sSdDz", kAC4, ZIL_HUE_PL(3, 2, 0x87), kNone),
    ZROW(ziliSBGRToYCoCg_Rev_16s_C3P3R, "sSdDz", ZIL_HUE_PK(3, 2), ZIL_HUE_PL(3, 2, 0x87), kNone),
    ZROW(ziliSBGRToYCoCg_Rev_16s_C4P3R, "sSdDz", ZIL_HUE_PK(4, 2), ZIL_HUE_PL(3, 2, 0x87), kNone),
    ZROW(ziliSBGRToYCoCg_Rev_16s32s_C3P3R, "sSdDz", ZIL_HUE_PK(3, 2), ZIL_HUE_PL(3, 4, 0x87), kNone),
    ZROW(ziliSBGRToYCoCg_Rev_16s32s_C4P3R, "sSdDz", ZIL_HUE_PK(4, 2), ZIL_HUE_PL(3, 4, 0x87), kNone),
    ZROW(ziliRGBToYCoCg_8u_C3P3R, "sSdDz", kC3, kP3, kNone),
    ZROW(ziliYCoCgToBGR_16s8u_P3C3R, "sSdDz", ZIL_HUE_PL(3, 2, 0x87), kC3, kNone),
    ZROW(ziliYCoCgToBGR_16s8u_P3C4R, "sSdDza", ZIL_HUE_PL(3, 2, 0x87), kAC4, kNone),
    ZROW(ziliYCoCgToSBGR_16s_P3C3R, "sSdDz", ZIL_HUE_PL(3, 2, 0x87), ZIL_HUE_PK(3, 2), kNone),
    ZROW(ziliYCoCgToSBGR_16s_P3C4R, "sSdDza", ZIL_HUE_PL(3, 2, 0x87), ZIL_HUE_PK(4, 2), kNone),
    ZROW(ziliYCoCgToSBGR_32s16s_P3C3R, "sSdDz", ZIL_HUE_PL(3, 4, 0x87), ZIL_HUE_PK(3, 2), kNone),
    ZROW(ziliYCoCgToSBGR_32s16s_P3C4R, "sSdDza", ZIL_HUE_PL(3, 4, 0x87), ZIL_HUE_PK(4, 2), kNone),
    ZROW(ziliYCoCgToBGR_Rev_16s8u_P3C3R, "sSdDz", ZIL_HUE_PL(3, 2, 0x87), kC3, kNone),
    ZROW(ziliYCoCgToBGR_Rev_16s8u_P3C4R, "sSdDza", ZIL_HUE_PL(3, 2, 0x87), kAC4, kNone),
    ZROW(ziliYCoCgToSBGR_Rev_16s_P3C3R, "sSdDz", ZIL_HUE_PL(3, 2, 0x87), ZIL_HUE_PK(3, 2), kNone),
    ZROW(ziliYCoCgToSBGR_Rev_16s_P3C4R, "sSdDza", ZIL_HUE_PL(3, 2, 0x87), ZIL_HUE_PK(4, 2), kNone),
    ZROW(ziliYCoCgToSBGR_Rev_32s16s_P3C3R, "sSdDz", ZIL_HUE_PL(3, 4, 0x87), ZIL_HUE_PK(3, 2), kNone),
    ZROW(ziliYCoCgToSBGR_Rev_32s16s_P3C4R, "sSdDza", ZIL_HUE_PL(3, 4, 0x87), ZIL_HUE_PK(4, 2), kNone),
    ZROW(ziliYCoCgToRGB_8u_P3C3R, "sSdDz", kP3, kC3, kNone),
#undef ZIL_HUE_PL
#undef ZIL_HUE_PK
    // (end of HLS, HSV and YCoCg)
};

constexpr size_t kRowCount = sizeof kRows / sizeof kRows[0];

constexpr bool RolesMatchArity() {
    for (const Row& r : kRows) {
        size_t n = 0;
        while (r.roles[n]) ++n;
        if (n != r.arity) return false;
    }
    return true;
}
static_assert(RolesMatchArity(), "a row's roles do not match its export's parameter count");

}  // namespace zilfuzz
