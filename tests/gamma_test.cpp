// Gamma: table entries, check order, untouched alpha and padding, hand-worked
// float values per member difference, in place against out of place, guards.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "guard.h"
#include "zilcc.h"

namespace {

using ziltest::FillRandom;
using ziltest::GuardBuf;

enum Lay { C3, AC4, P3 };
// All 36 members behind one signature. Planar members take arrays of three
// plane pointers as src and dst; in-place members use dst as srcDst.
using GammaFn = ZilStatus (*)(const void* src, int ss, void* dst, int ds, ZilSize r, float lo, float hi);
struct Member {
    std::string name;
    GammaFn fn;
    int elem;  // bytes a sample
    Lay lay;
    bool inPlace, inverse;
};
void PrintTo(const Member& m, std::ostream* os) { *os << m.name; }

template <class T> using Pk = ZilStatus (*)(const T*, int, T*, int, ZilSize);
template <class T> using PkI = ZilStatus (*)(T*, int, ZilSize);
template <class T> using Pl = ZilStatus (*)(const T* const*, int, T* const*, int, ZilSize);
template <class T> using PlI = ZilStatus (*)(T* const*, int, ZilSize);
template <class T> using PkF = ZilStatus (*)(const T*, int, T*, int, ZilSize, float, float);
template <class T> using PkIF = ZilStatus (*)(T*, int, ZilSize, float, float);
template <class T> using PlF = ZilStatus (*)(const T* const*, int, T* const*, int, ZilSize, float, float);
template <class T> using PlIF = ZilStatus (*)(T* const*, int, ZilSize, float, float);

template <class T, auto F>
ZilStatus Thunk(const void* s, int ss, void* d, int ds, ZilSize r, float lo, float hi) {
    using Fn = decltype(F);
    auto* ts = static_cast<const T*>(s);
    auto* td = static_cast<T*>(d);
    auto* as = static_cast<const T* const*>(s);
    auto* ad = static_cast<T* const*>(d);
    if constexpr (std::is_same_v<Fn, Pk<T>>) return F(ts, ss, td, ds, r);
    else if constexpr (std::is_same_v<Fn, PkI<T>>) return F(td, ds, r);
    else if constexpr (std::is_same_v<Fn, Pl<T>>) return F(as, ss, ad, ds, r);
    else if constexpr (std::is_same_v<Fn, PlI<T>>) return F(ad, ds, r);
    else if constexpr (std::is_same_v<Fn, PkF<T>>) return F(ts, ss, td, ds, r, lo, hi);
    else if constexpr (std::is_same_v<Fn, PkIF<T>>) return F(td, ds, r, lo, hi);
    else if constexpr (std::is_same_v<Fn, PlF<T>>) return F(as, ss, ad, ds, r, lo, hi);
    else return F(ad, ds, r, lo, hi);
}

#define ZT_GAMMA(Dir, code, T, inv)                                                                            \
    Member{#Dir "_" #code "_C3R", Thunk<T, ziliGamma##Dir##_##code##_C3R>, int(sizeof(T)), C3, false, inv},     \
    Member{#Dir "_" #code "_C3IR", Thunk<T, ziliGamma##Dir##_##code##_C3IR>, int(sizeof(T)), C3, true, inv},    \
    Member{#Dir "_" #code "_AC4R", Thunk<T, ziliGamma##Dir##_##code##_AC4R>, int(sizeof(T)), AC4, false, inv},  \
    Member{#Dir "_" #code "_AC4IR", Thunk<T, ziliGamma##Dir##_##code##_AC4IR>, int(sizeof(T)), AC4, true, inv}, \
    Member{#Dir "_" #code "_P3R", Thunk<T, ziliGamma##Dir##_##code##_P3R>, int(sizeof(T)), P3, false, inv},     \
    Member{#Dir "_" #code "_IP3R", Thunk<T, ziliGamma##Dir##_##code##_IP3R>, int(sizeof(T)), P3, true, inv}

const std::vector<Member> kMembers = {
    ZT_GAMMA(Fwd, 8u, uint8_t, false),  ZT_GAMMA(Inv, 8u, uint8_t, true),  ZT_GAMMA(Fwd, 16u, uint16_t, false),
    ZT_GAMMA(Inv, 16u, uint16_t, true), ZT_GAMMA(Fwd, 32f, float, false), ZT_GAMMA(Inv, 32f, float, true),
};

// An image of one member's layout: its planes (one, or three), each against a
// guard page, `pad` bytes after each row.
struct Image {
    const Member& m;
    int w, h, step;
    std::vector<std::unique_ptr<GuardBuf>> planes;
    uint8_t* ptr[3] = {};
    Image(const Member& mem, int width, int height, int pad, uint32_t seed) : m(mem), w(width), h(height) {
        const int rowBytes = w * m.elem * (m.lay == C3 ? 3 : m.lay == AC4 ? 4 : 1);
        step = rowBytes + pad;
        for (int p = 0; p < (m.lay == P3 ? 3 : 1); ++p) {
            planes.push_back(std::make_unique<GuardBuf>(ziltest::ImageBytes(h, rowBytes, step)));
            FillRandom(planes.back()->data(), planes.back()->size(), seed + p);
            ptr[p] = planes.back()->data();
        }
    }
    int samples() const { return w * (m.lay == C3 ? 3 : m.lay == AC4 ? 4 : 1); }  // a row of a plane
    void* arg() { return m.lay == P3 ? static_cast<void*>(ptr) : ptr[0]; }
    std::vector<uint8_t> bytes() const {
        std::vector<uint8_t> all;
        for (const auto& p : planes) all.insert(all.end(), p->data(), p->data() + p->size());
        return all;
    }
    template <class T> T& at(int plane, int y, int i) { return *reinterpret_cast<T*>(ptr[plane] + y * step + i * sizeof(T)); }
};

// Runs a member: out of place from `src` into `dst`, or in place on `dst`.
ZilStatus Apply(const Member& m, Image* src, Image& dst, float lo = 0.0f, float hi = 1.0f) {
    return m.fn(src && !m.inPlace ? src->arg() : nullptr, src ? src->step : 0, dst.arg(), dst.step, {dst.w, dst.h}, lo,
                hi);
}

class GammaMember : public ::testing::TestWithParam<Member> {};

// Statuses in their order: range first (32f), then pointers, size, steps; a
// failing call writes nothing.
TEST_P(GammaMember, ChecksInOrderAndWriteNothing) {
    const Member& m = GetParam();
    const bool f32 = m.elem == 4;
    Image src(m, 3, 2, 0, 1), dst(m, 3, 2, 0, 2);
    const auto before = dst.bytes();
    auto call = [&](void* s, int ss, void* d, int ds, ZilSize r, float lo, float hi) {
        return m.fn(m.inPlace ? nullptr : s, ss, d, ds, r, lo, hi);
    };
    void* S = src.arg();
    void* D = dst.arg();
    if (f32) {
        EXPECT_EQ(call(nullptr, 0, nullptr, 0, {0, 0}, 1.0f, 1.0f), zilStatusBadRange);
        EXPECT_EQ(call(S, 12, D, 12, {3, 2}, 2.0f, 1.0f), zilStatusBadRange);
    }
    EXPECT_EQ(call(S, -1, nullptr, -1, {0, 0}, 0.0f, 1.0f), zilStatusNullPointer);
    if (!m.inPlace) EXPECT_EQ(call(nullptr, 12, D, 12, {3, 2}, 0.0f, 1.0f), zilStatusNullPointer);
    if (m.lay == P3) {
        for (int p = 0; p < 3; ++p) {
            uint8_t* holed[3] = {dst.ptr[0], dst.ptr[1], dst.ptr[2]};
            holed[p] = nullptr;
            EXPECT_EQ(call(S, 12, holed, 12, {3, 2}, 0.0f, 1.0f), zilStatusNullPointer) << p;
        }
    }
    EXPECT_EQ(call(S, 0, D, 0, {0, 2}, 0.0f, 1.0f), zilStatusBadSize);
    EXPECT_EQ(call(S, 0, D, 0, {3, -1}, 0.0f, 1.0f), zilStatusBadSize);
    EXPECT_EQ(call(S, src.step, D, 0, {3, 2}, 0.0f, 1.0f), zilStatusBadStep);
    EXPECT_EQ(call(S, src.step, D, -dst.step, {3, 2}, 0.0f, 1.0f), zilStatusBadStep);
    if (!m.inPlace) EXPECT_EQ(call(S, 0, D, dst.step, {3, 2}, 0.0f, 1.0f), zilStatusBadStep);
    EXPECT_EQ(dst.bytes(), before);
}

// Alpha and row padding keep their bytes; in place gives the bytes of out of
// place. Widths cross the 128-pixel and 384-sample blocks of the float forms.
TEST_P(GammaMember, AlphaPaddingAndInPlace) {
    const Member& m = GetParam();
    for (int w : {1, 5, 129, 131}) {
        Image src(m, w, 3, 0, 7), out(m, w, 3, 12, 9);
        if (m.elem == 4)  // floats of about -0.1..1.1 in the range 0..1
            for (int p = 0; p < (m.lay == P3 ? 3 : 1); ++p)
                for (int y = 0; y < 3; ++y)
                    for (int i = 0; i < src.samples(); ++i) src.at<float>(p, y, i) = float((i * 37 + y * 11) % 120) / 100 - 0.1f;
        const auto before = out.bytes();
        Image* from = &src;
        if (m.inPlace) {  // in place on a copy of the source with padded rows
            for (int p = 0; p < (m.lay == P3 ? 3 : 1); ++p)
                for (int y = 0; y < 3; ++y) std::memcpy(&out.at<uint8_t>(p, y, 0), &src.at<uint8_t>(p, y, 0), src.samples() * m.elem);
            from = nullptr;
        }
        ASSERT_EQ(Apply(m, from, out), zilStatusOk) << w;
        const auto after = out.bytes();
        const size_t rowBytes = size_t(out.samples()) * m.elem, planeBytes = out.planes[0]->size();
        for (size_t k = 0; k < after.size(); ++k) {
            const size_t inPlane = k % planeBytes, col = inPlane % out.step;
            const bool alpha = m.lay == AC4 && (col / m.elem) % 4 == 3;
            if (col >= rowBytes || (alpha && !m.inPlace)) ASSERT_EQ(after[k], before[k]) << w << " byte " << k;
        }
        // The out-of-place twin of an in-place member writes the same samples.
        if (m.inPlace) {
            std::string twinName = m.name;
            twinName.erase(twinName.rfind(m.lay == P3 ? "IP3R" : "IR"), 1);
            const Member& twin = *std::find_if(kMembers.begin(), kMembers.end(), [&](const Member& x) { return x.name == twinName; });
            Image out2(twin, w, 3, 12, 9);
            ASSERT_EQ(Apply(twin, &src, out2), zilStatusOk);
            for (int p = 0; p < (m.lay == P3 ? 3 : 1); ++p)
                for (int y = 0; y < 3; ++y)
                    for (int i = 0; i < out.samples(); ++i) {
                        if (m.lay == AC4 && i % 4 == 3) continue;
                        ASSERT_EQ(std::memcmp(&out.at<uint8_t>(p, y, i * m.elem), &out2.at<uint8_t>(p, y, i * m.elem), m.elem), 0)
                            << m.name << " w " << w << " sample " << i;
                    }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Gamma, GammaMember, ::testing::ValuesIn(kMembers),
                         [](const auto& info) { return info.param.name; });

// The stated entries of the four tables, through every integer member.
TEST(GammaTables, StatedEntriesInEveryLayout) {
    struct Want { int elem; bool inverse; std::vector<std::pair<int, int>> entries; };
    const Want wants[] = {
        {1, false, {{0, 0}, {1, 4}, {2, 9}, {3, 14}, {4, 18}, {5, 23}, {6, 27}, {7, 30}, {252, 254}, {253, 254}, {254, 255}, {255, 255}}},
        {1, true, {{0, 0}, {1, 0}, {2, 0}, {3, 1}, {4, 1}, {5, 1}, {6, 1}, {7, 2}, {252, 249}, {253, 251}, {254, 253}, {255, 255}}},
        {2, false, {{0, 0}, {1, 4}, {2, 9}, {3, 14}, {4, 18}, {5, 22}, {6, 27}, {7, 32}, {41, 184}, {65532, 65534}, {65533, 65534}, {65534, 65535}, {65535, 65535}}},
        {2, true, {{0, 0}, {1, 0}, {2, 0}, {3, 1}, {4, 1}, {5, 1}, {6, 1}, {7, 2}, {12009, 3196}, {65532, 65529}, {65533, 65531}, {65534, 65533}, {65535, 65535}}},
    };
    for (const Member& m : kMembers) {
        if (m.elem == 4) continue;
        const Want& want = *std::find_if(std::begin(wants), std::end(wants),
                                         [&](const Want& x) { return x.elem == m.elem && x.inverse == m.inverse; });
        const int n = int(want.entries.size());
        Image src(m, n, 1, 0, 3), dst(m, n, 1, 0, 4);
        for (int p = 0; p < (m.lay == P3 ? 3 : 1); ++p)
            for (int k = 0; k < src.samples(); ++k) {
                const int v = want.entries[k / (m.lay == P3 ? 1 : m.lay == C3 ? 3 : 4)].first;
                if (m.elem == 1) src.at<uint8_t>(p, 0, k) = dst.at<uint8_t>(p, 0, k) = uint8_t(v);
                else src.at<uint16_t>(p, 0, k) = dst.at<uint16_t>(p, 0, k) = uint16_t(v);
            }
        ASSERT_EQ(Apply(m, &src, dst), zilStatusOk);
        for (int p = 0; p < (m.lay == P3 ? 3 : 1); ++p)
            for (int k = 0; k < dst.samples(); ++k) {
                if (m.lay == AC4 && k % 4 == 3) continue;
                const auto& e = want.entries[k / (m.lay == P3 ? 1 : m.lay == C3 ? 3 : 4)];
                const int got = m.elem == 1 ? dst.at<uint8_t>(p, 0, k) : dst.at<uint16_t>(p, 0, k);
                EXPECT_EQ(got, e.second) << m.name << " entry " << e.first;
            }
    }
}

// Float members by name, on a one-pixel C3/AC4 image or three one-sample planes
// holding the same sample s; returns the first colour sample's result.
float One(const std::string& name, float s, float lo, float hi) {
    const Member& m = *std::find_if(kMembers.begin(), kMembers.end(), [&](const Member& x) { return x.name == name; });
    Image src(m, 1, 1, 0, 1), dst(m, 1, 1, 0, 2);
    for (int p = 0; p < (m.lay == P3 ? 3 : 1); ++p)
        for (int c = 0; c < (m.lay == P3 ? 1 : 3); ++c) src.at<float>(p, 0, c) = dst.at<float>(p, 0, c) = s;
    EXPECT_EQ(Apply(m, &src, dst, lo, hi), zilStatusOk);
    return dst.at<float>(0, 0, 0);
}

TEST(GammaFloat, MemberDifferencesByHand) {
    // vMin 1, vMax 2, sample 2: x = 1, t = 1, p = 1; 1.099f - 0.099f rounds to 1.
    // The AC4 forms add vMin twice on the upper branch.
    for (const char* n : {"Fwd_32f_C3R", "Fwd_32f_C3IR", "Fwd_32f_P3R", "Fwd_32f_IP3R"}) EXPECT_EQ(One(n, 2.0f, 1.0f, 2.0f), 2.0f) << n;
    for (const char* n : {"Fwd_32f_AC4R", "Fwd_32f_AC4IR"}) EXPECT_EQ(One(n, 2.0f, 1.0f, 2.0f), 3.0f) << n;
    // Lower branch: 4.5 x + vMin, once, in every form.
    for (const char* n : {"Fwd_32f_C3R", "Fwd_32f_P3R", "Fwd_32f_AC4R", "Fwd_32f_AC4IR"}) {
        EXPECT_EQ(One(n, 1.0f + 0x1p-8f, 1.0f, 2.0f), 1.0f + 4.5f * 0x1p-8f) << n;
        EXPECT_EQ(One(n, -0.5f, 0.0f, 1.0f), -2.25f) << n;  // below the range: no clamp
    }
    // Inverse, range 2, sample 2: the unscaled forms give about 1, the others 2.
    for (const char* n : {"Inv_32f_C3R", "Inv_32f_P3R", "Inv_32f_IP3R"}) EXPECT_NEAR(One(n, 2.0f, 0.0f, 2.0f), 1.0f, 2e-6f) << n;
    for (const char* n : {"Inv_32f_C3IR", "Inv_32f_AC4R", "Inv_32f_AC4IR"}) EXPECT_NEAR(One(n, 2.0f, 0.0f, 2.0f), 2.0f, 4e-6f) << n;
    // Inverse lower branch: 0.22222222 x, then vMin once.
    for (const char* n : {"Inv_32f_C3R", "Inv_32f_C3IR", "Inv_32f_P3R", "Inv_32f_AC4R"})
        EXPECT_EQ(One(n, 1.0625f, 1.0f, 2.0f), 0.22222222f * 0.0625f + 1.0f) << n;
    // NaN stays NaN; the top of the range maps to the top; beyond it no clamp.
    for (const char* n : {"Fwd_32f_C3R", "Fwd_32f_AC4R", "Inv_32f_C3R", "Inv_32f_AC4IR"}) {
        EXPECT_TRUE(std::isnan(One(n, NAN, 0.0f, 1.0f))) << n;
        EXPECT_NEAR(One(n, 1.0f, 0.0f, 1.0f), 1.0f, 2e-6f) << n;
        EXPECT_GT(One(n, 4.0f, 0.0f, 1.0f), 1.5f) << n;
    }
}

// The forward threshold: 0.018 itself takes the power branch, one float below
// it the linear one, and the curve's small step there straddles 0.0812.
TEST(GammaFloat, ForwardThresholdStep) {
    const float below = std::nextafter(0.018f, 0.0f);
    for (const char* n : {"Fwd_32f_C3R", "Fwd_32f_P3R", "Fwd_32f_AC4R"}) {
        EXPECT_EQ(One(n, below, 0.0f, 1.0f), 4.5f * below) << n;
        EXPECT_GT(One(n, 0.018f, 0.0f, 1.0f), 0.0812f) << n;
        EXPECT_LT(4.5f * below, 0.0812f);
    }
}

}  // namespace
