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
    ZilRect rc{};
    template <class T>
    T as() const {
        if constexpr (std::is_pointer_v<T>) return static_cast<T>(p);
        else if constexpr (std::is_same_v<T, ZilSize>) return sz;
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
//   z ZilSize (roi; the whole plane for the demosaicing entries)
//   r ZilRect          g grid             b work buffer     B work buffer step
//   a alpha            n noise            t dither          l levels
//   o bit offset       x reserved int     h threshold       c channel code
//   p result cell (int*), a destination of one int
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

    // Gamma
    // (end of Gamma)

    // Colour twist and tone mapping
    // (end of Colour twist and tone mapping)

    // Full-resolution YCbCr and gray
    // (end of Full-resolution YCbCr and gray)

    // Subsampled YCbCr and BT.709
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
    ZROW(ziliYCbCr420ToYCrCb420_Filter_8u_P2P3R, "sSsSdDzm", ZRF_NV420, [] { Img m = ZRF_420; return m.sharedStep = true, m; }(), kNone),
    ZROW(ziliYCbCr420ToYCbCr422_Filter_8u_P2C2R, "sSsSdDzm", ZRF_NV420, kC2, kNone),
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
    // (end of XYZ, LUV, Lab and YCC)

    // HLS, HSV and YCoCg
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
