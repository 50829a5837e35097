// Gray family: statuses and extents over all 25 exports, hand-worked sums per
// element formula (weights, rounding, wrap), the defaults, the step remainder
// of the 16- and 32-bit members, and the bit-exact expansions.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "guard.h"
#include "zilcc.h"

namespace {

using ziltest::GuardBuf;
using Call = std::function<ZilStatus(const void*, int, void*, int, ZilSize, const void*)>;

// Any export of the family as one signature; the optional last argument
// (weights or alpha) comes from `extra` (null: no weights, alpha 0).
template <class S, class D, class... X>
Call Adapt(ZilStatus (*f)(const S*, int, D*, int, ZilSize, X...)) {
    return [f](const void* s, int ss, void* d, int ds, ZilSize z, const void* extra) {
        if constexpr (sizeof...(X) == 0) {
            return f(static_cast<const S*>(s), ss, static_cast<D*>(d), ds, z);
        } else if constexpr ((std::is_pointer_v<X> && ...)) {
            return f(static_cast<const S*>(s), ss, static_cast<D*>(d), ds, z, static_cast<X>(extra)...);
        } else {
            return f(static_cast<const S*>(s), ss, static_cast<D*>(d), ds, z,
                     (extra ? *static_cast<const X*>(extra) : X{})...);
        }
    };
}

struct Member {
    const char* name;
    Call call;
    int elem, sch, dch;  // element size, source and destination channels
};
#define ZIL_G(fn, elem, sch, dch) Member{#fn, Adapt(&fn), elem, sch, dch}
const Member kMembers[] = {
    ZIL_G(ziliRGBToGray_8u_C3C1R, 1, 3, 1),     ZIL_G(ziliRGBToGray_8u_AC4C1R, 1, 4, 1),
    ZIL_G(ziliRGBToGray_16u_C3C1R, 2, 3, 1),    ZIL_G(ziliRGBToGray_16u_AC4C1R, 2, 4, 1),
    ZIL_G(ziliRGBToGray_16s_C3C1R, 2, 3, 1),    ZIL_G(ziliRGBToGray_16s_AC4C1R, 2, 4, 1),
    ZIL_G(ziliRGBToGray_32f_C3C1R, 4, 3, 1),    ZIL_G(ziliRGBToGray_32f_AC4C1R, 4, 4, 1),
    ZIL_G(ziliColorToGray_8u_C3C1R, 1, 3, 1),   ZIL_G(ziliColorToGray_8u_AC4C1R, 1, 4, 1),
    ZIL_G(ziliColorToGray_16u_C3C1R, 2, 3, 1),  ZIL_G(ziliColorToGray_16u_AC4C1R, 2, 4, 1),
    ZIL_G(ziliColorToGray_16s_C3C1R, 2, 3, 1),  ZIL_G(ziliColorToGray_16s_AC4C1R, 2, 4, 1),
    ZIL_G(ziliColorToGray_32f_C3C1R, 4, 3, 1),  ZIL_G(ziliColorToGray_32f_AC4C1R, 4, 4, 1),
    ZIL_G(ziliColorToGray_64f_C3C1R, 8, 3, 1),  ZIL_G(ziliColorToGray_64f_AC4C1R, 8, 4, 1),
    ZIL_G(ziliGrayToRGB_8u_C1C3R, 1, 1, 3),     ZIL_G(ziliGrayToRGB_16u_C1C3R, 2, 1, 3),
    ZIL_G(ziliGrayToRGB_32f_C1C3R, 4, 1, 3),    ZIL_G(ziliGrayToRGB_8u_C1C4R, 1, 1, 4),
    ZIL_G(ziliGrayToRGB_16u_C1C4R, 2, 1, 4),    ZIL_G(ziliGrayToRGB_32f_C1C4R, 4, 1, 4),
    ZIL_G(ziliYCbCr422ToGray_8u_C2C1R, 1, 2, 1),  // two bytes a pixel
};
#undef ZIL_G
void PrintTo(const Member& m, std::ostream* os) { *os << m.name; }
const Member& Find(const std::string& n) {
    for (const Member& m : kMembers)
        if (n == m.name) return m;
    throw std::runtime_error(n);
}

// Source and destination of w x h pixels, `pad` bytes between rows, each
// ending at a guard page; random source, destination filled with 0x5A.
struct Bufs {
    std::unique_ptr<GuardBuf> s, d;
    int ss, ds;
    Bufs(const Member& m, int w, int h, int pad = 0, GuardBuf::Side side = GuardBuf::After, uint32_t seed = 3) {
        ss = w * m.elem * m.sch + pad, ds = w * m.elem * m.dch + pad;
        s = std::make_unique<GuardBuf>(ziltest::ImageBytes(h, w * m.elem * m.sch, ss), 0, side);
        d = std::make_unique<GuardBuf>(ziltest::ImageBytes(h, w * m.elem * m.dch, ds), 0x5A, side);
        ziltest::FillRandom(s->data(), s->size(), seed);
        if (m.elem >= 4)  // finite floats
            for (size_t i = 0; i + m.elem <= s->size(); i += m.elem) {
                const double v = double(s->data()[i]) - 60.5;
                if (m.elem == 4) { const float f = float(v); std::memcpy(s->data() + i, &f, 4); }
                else std::memcpy(s->data() + i, &v, 8);
            }
    }
};

class GrayMember : public ::testing::TestWithParam<Member> {};

TEST_P(GrayMember, NullPointersOutrankTheSizeAndNothingIsWritten) {
    const Member& m = GetParam();
    for (ZilSize bad : {ZilSize{0, 2}, ZilSize{2, 0}, ZilSize{-1, 2}, ZilSize{2, -5}, ZilSize{2, 2}})
        for (int nul = 0; nul < 3; ++nul) {
            Bufs b(m, 2, 2);
            const bool good = bad.width == 2 && bad.height == 2;
            if (good && nul == 0) continue;
            const ZilStatus st = m.call(nul == 1 ? nullptr : b.s->data(), b.ss, nul == 2 ? nullptr : b.d->data(),
                                        b.ds, bad, nullptr);
            EXPECT_EQ(st, nul ? zilStatusNullPointer : zilStatusBadSize) << bad.width << "x" << bad.height;
            EXPECT_TRUE(b.d->all(0x5A));
        }
}

// Exact buffers against guard pages on both sides, and padding left alone.
TEST_P(GrayMember, ExtentsStayInsideTheirRows) {
    const Member& m = GetParam();
    for (auto side : {GuardBuf::After, GuardBuf::Before})
        for (int w : {1, 2, 3, 5, 67, 130})
            for (int h : {1, 3}) {
                Bufs b(m, w, h, 0, side);
                ASSERT_EQ(m.call(b.s->data(), b.ss, b.d->data(), b.ds, {w, h}, nullptr), zilStatusOk) << w;
            }
    const int w = 5, pad = 3 * m.elem;
    Bufs b(m, w, 3, pad);
    ASSERT_EQ(m.call(b.s->data(), b.ss, b.d->data(), b.ds, {w, 3}, nullptr), zilStatusOk);
    for (int y = 0; y < 2; ++y)
        for (int k = 0; k < pad; ++k) EXPECT_EQ((*b.d)[size_t(y) * b.ds + b.ds - pad + k], 0x5A);
}

// 16u, 16s and 32f count steps in elements: a step's remainder is dropped, so
// steps of n elements plus up to elem - 1 bytes give the image at n elements.
TEST_P(GrayMember, StepRemainderIsDroppedIn16And32BitMembers) {
    const Member& m = GetParam();
    if (m.elem != 2 && m.elem != 4) GTEST_SKIP() << "steps in bytes";
    Bufs ref(m, 4, 3, m.elem), odd(m, 4, 3, 2 * m.elem);
    for (int y = 0; y < 3; ++y) std::memcpy(odd.s->data() + y * ref.ss, ref.s->data() + y * ref.ss, ref.ss - m.elem);
    ASSERT_EQ(m.call(ref.s->data(), ref.ss, ref.d->data(), ref.ds, {4, 3}, nullptr), zilStatusOk);
    ASSERT_EQ(m.call(odd.s->data(), ref.ss + m.elem - 1, odd.d->data(), ref.ds + m.elem - 1, {4, 3}, nullptr),
              zilStatusOk);
    EXPECT_EQ(0, std::memcmp(ref.d->data(), odd.d->data(), ref.d->size()));
}

INSTANTIATE_TEST_SUITE_P(Gray, GrayMember, ::testing::ValuesIn(kMembers),
                         [](const auto& info) { return std::string(info.param.name).substr(4); });

// One pixel through a member; the source's fourth channel is noise.
template <class T, class X = void>
T OnePixel(const char* name, std::initializer_list<T> in, const X* extra = nullptr) {
    const Member& m = Find(name);
    Bufs b(m, 1, 1);
    std::memcpy(b.s->data(), in.begin(), in.size() * sizeof(T));
    EXPECT_EQ(m.call(b.s->data(), b.ss, b.d->data(), b.ds, {1, 1}, extra), zilStatusOk) << name;
    T out;
    std::memcpy(&out, b.d->data(), sizeof(T));
    return out;
}

// 8u: (255 x 32769 + 16384) >> 15 = 255.5 -> 255; (255 x 9798 + 16384) >> 15 = 76.7 -> 76.
// Weight 0.1f -> 3276.80005 + 0.5 -> 3277: (255 x 3277 + 16384) >> 15 = 26.001 -> 26 (3276 gives 25).
// Weights 1, 1, 1 -> 32768 each: 765 wraps to 253; 4, 4, 4: 3060 wraps to 244; -1 -> -32767:
// (-8355585 + 16384) >> 15 = -255 -> 1.
TEST(GraySums, Q15Weights) {
    EXPECT_EQ(OnePixel<uint8_t>("ziliRGBToGray_8u_C3C1R", {255, 255, 255}), 255);
    EXPECT_EQ(OnePixel<uint8_t>("ziliRGBToGray_8u_AC4C1R", {255, 0, 0, 99}), 76);
    const float tenth[3] = {0.1f, 0, 0}, ones[3] = {1, 1, 1}, fours[3] = {4, 4, 4}, neg[3] = {-1, 0, 0};
    EXPECT_EQ(OnePixel<uint8_t>("ziliColorToGray_8u_C3C1R", {255, 7, 9}, tenth), 26);
    EXPECT_EQ(OnePixel<uint8_t>("ziliColorToGray_8u_C3C1R", {255, 255, 255}, ones), 253);
    EXPECT_EQ(OnePixel<uint8_t>("ziliColorToGray_8u_AC4C1R", {255, 255, 255, 1}, fours), 244);
    EXPECT_EQ(OnePixel<uint8_t>("ziliColorToGray_8u_C3C1R", {255, 0, 0}, neg), 1);
}

// Weights 0.5, 0.25, 0.125 are exact in float. (3, 5, 8): ((1.5 + 0.5) + 1.25) + 1 = 4.25 -> 4
// (without the 0.5: 3). 16s biases by 32768 first: (-32765, -32763, -32760) is (3, 5, 8), giving
// 4 - 32768. Weights 1, 1, 1 on 65535 (16s: 32767) give 196605.5 -> 196605, low 16 bits 0xFFFD;
// 16s: 196605 - 32768 = 163837, low 16 bits 32765.
TEST(GraySums, RoundedFloatWeights) {
    const float w[3] = {0.5f, 0.25f, 0.125f}, ones[3] = {1, 1, 1};
    EXPECT_EQ(OnePixel<uint16_t>("ziliColorToGray_16u_C3C1R", {3, 5, 8}, w), 4);
    EXPECT_EQ(OnePixel<int16_t>("ziliColorToGray_16s_AC4C1R", {-32765, -32763, -32760, 5}, w), -32764);
    EXPECT_EQ(OnePixel<uint16_t>("ziliColorToGray_16u_AC4C1R", {65535, 65535, 65535, 0}, ones), 0xFFFD);
    EXPECT_EQ(OnePixel<int16_t>("ziliColorToGray_16s_C3C1R", {32767, 32767, 32767}, ones), 32765);
    EXPECT_EQ(OnePixel<int16_t>("ziliRGBToGray_16s_C3C1R", {-32768, -32768, -32768}), -32768);
}

// Linear: (0.5 x 3 + 0.25 x 5) + 0.125 x 8 = 3.75 exactly. The defaults are the
// float constants: one in the first channel gives 0.299f, widened for 64f.
TEST(GraySums, LinearWeightsAndFloatDefaults) {
    const float w[3] = {0.5f, 0.25f, 0.125f};
    const double wd[3] = {0.5, 0.25, 0.125};
    EXPECT_EQ(OnePixel<float>("ziliColorToGray_32f_C3C1R", {3, 5, 8}, w), 3.75f);
    EXPECT_EQ(OnePixel<double>("ziliColorToGray_64f_AC4C1R", {3, 5, 8, 1e300}, wd), 3.75);
    EXPECT_EQ(OnePixel<float>("ziliRGBToGray_32f_AC4C1R", {1, 0, 0, NAN}), 0.299f);
    EXPECT_EQ(OnePixel<double>("ziliColorToGray_64f_C3C1R", {1, 0, 0}, static_cast<const double*>(nullptr)),
              double(0.299f));
    EXPECT_EQ(OnePixel<uint16_t>("ziliRGBToGray_16u_C3C1R", {0, 0, 0}), 0);
}

// Null weights are the fixed-weight member, on any input; AC4 ignores its fourth channel.
TEST(GrayProperties, NullWeightsAndTheFourthChannel) {
    const std::pair<const char*, const char*> same[] = {
        {"ziliColorToGray_8u_C3C1R", "ziliRGBToGray_8u_C3C1R"},    {"ziliColorToGray_16u_C3C1R", "ziliRGBToGray_16u_C3C1R"},
        {"ziliColorToGray_16s_AC4C1R", "ziliRGBToGray_16s_AC4C1R"}, {"ziliColorToGray_32f_AC4C1R", "ziliRGBToGray_32f_AC4C1R"},
    };
    for (auto [a, b] : same) {
        Bufs x(Find(a), 70, 2, 0, GuardBuf::After, 8), y(Find(b), 70, 2, 0, GuardBuf::After, 8);
        if (Find(a).sch == 4)
            for (size_t i = 3 * Find(a).elem; i < y.s->size(); i += 4 * Find(a).elem) (*y.s)[i] ^= 0x5C;
        ASSERT_EQ(Find(a).call(x.s->data(), x.ss, x.d->data(), x.ds, {70, 2}, nullptr), zilStatusOk);
        ASSERT_EQ(Find(b).call(y.s->data(), y.ss, y.d->data(), y.ds, {70, 2}, nullptr), zilStatusOk);
        EXPECT_EQ(0, std::memcmp(x.d->data(), y.d->data(), x.d->size())) << a;
    }
}

// GrayToRGB copies bit patterns (a signalling NaN too) and sets alpha;
// YCbCr422ToGray takes the even bytes.
TEST(GrayExpand, BitsAlphaAndLuma) {
    const uint32_t nan = 0x7F800001u;
    float f;
    std::memcpy(&f, &nan, 4);
    const float alpha = -2.5f;
    for (const char* name : {"ziliGrayToRGB_32f_C1C3R", "ziliGrayToRGB_32f_C1C4R"}) {
        const Member& m = Find(name);
        Bufs b(m, 1, 1);
        std::memcpy(b.s->data(), &f, 4);
        ASSERT_EQ(m.call(b.s->data(), b.ss, b.d->data(), b.ds, {1, 1}, &alpha), zilStatusOk);
        uint32_t out[4];
        std::memcpy(out, b.d->data(), 4 * m.dch);
        for (int c = 0; c < 3; ++c) EXPECT_EQ(out[c], nan) << name;
        if (m.dch == 4) EXPECT_EQ(std::memcmp(&out[3], &alpha, 4), 0);
    }
    const uint16_t a16 = 0xBEEF;
    Bufs b(Find("ziliGrayToRGB_16u_C1C4R"), 2, 1);
    const uint16_t in[2] = {0xABCD, 7}, want[8] = {0xABCD, 0xABCD, 0xABCD, 0xBEEF, 7, 7, 7, 0xBEEF};
    std::memcpy(b.s->data(), in, 4);
    ASSERT_EQ(Find("ziliGrayToRGB_16u_C1C4R").call(b.s->data(), b.ss, b.d->data(), b.ds, {2, 1}, &a16), zilStatusOk);
    EXPECT_EQ(0, std::memcmp(b.d->data(), want, 16));

    const Member& m = Find("ziliYCbCr422ToGray_8u_C2C1R");
    for (int w : {1, 3}) {
        Bufs p(m, w, 2);
        ASSERT_EQ(m.call(p.s->data(), p.ss, p.d->data(), p.ds, {w, 2}, nullptr), zilStatusOk);
        for (int y = 0; y < 2; ++y)
            for (int x = 0; x < w; ++x) EXPECT_EQ((*p.d)[y * p.ds + x], (*p.s)[y * p.ss + 2 * x]) << w;
    }
}

}  // namespace
