// Gamma: table entries, check order, untouched alpha and padding, hand-worked
// float values per member difference, in place against out of place, guards.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <type_traits>
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

template <class T, auto F>
ZilStatus Thunk(const void* s, int ss, void* d, int ds, ZilSize r, float lo, float hi) {
    using S = const T*;
    using D = T*;
    using SP = const T* const*;
    using DP = T* const*;
    auto go = [&](auto... range) {  // the value range of the float forms, or nothing
        if constexpr (std::is_invocable_v<decltype(F), S, int, D, int, ZilSize, decltype(range)...>) return F(S(s), ss, D(d), ds, r, range...);
        else if constexpr (std::is_invocable_v<decltype(F), D, int, ZilSize, decltype(range)...>) return F(D(d), ds, r, range...);
        else if constexpr (std::is_invocable_v<decltype(F), SP, int, DP, int, ZilSize, decltype(range)...>) return F(SP(s), ss, DP(d), ds, r, range...);
        else return F(DP(d), ds, r, range...);
    };
    if constexpr (sizeof(T) == 4) return go(lo, hi);
    else return go();
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

const Member& Find(const std::string& name) {
    return *std::find_if(kMembers.begin(), kMembers.end(), [&](const Member& x) { return x.name == name; });
}

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
        std::vector<uint8_t> twin;  // an in-place member against its out-of-place twin
        if (m.inPlace) {
            std::string name = m.name;
            Image out2(Find(name.erase(name.rfind(m.lay == P3 ? "IP3R" : "IR"), 1)), w, 3, 12, 9);
            ASSERT_EQ(Apply(out2.m, &src, out2), zilStatusOk);
            twin = out2.bytes();
        }
        const auto after = out.bytes();
        const size_t rowBytes = size_t(out.samples()) * m.elem, planeBytes = out.planes[0]->size();
        for (size_t k = 0; k < after.size(); ++k) {
            const size_t col = k % planeBytes % out.step;
            const bool alpha = m.lay == AC4 && (col / m.elem) % 4 == 3;
            if (col >= rowBytes || (alpha && !m.inPlace)) ASSERT_EQ(after[k], before[k]) << w << " byte " << k;
            else if (m.inPlace && !alpha) ASSERT_EQ(after[k], twin[k]) << w << " byte " << k;
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

// Float members by name, on `n` pixels of a C3/AC4 image or of three planes,
// colour sample k of each plane holding v[k % size]; plane 0's results.
std::vector<float> Row(const std::string& name, const std::vector<float>& v, float lo, float hi, int n = 1) {
    const Member& m = Find(name);
    const int samples = m.lay == P3 ? n : 3 * n;
    auto at = [&](Image& im, int p, int k) -> float& { return im.at<float>(p, 0, m.lay == AC4 ? k / 3 * 4 + k % 3 : k); };
    Image src(m, n, 1, 0, 1), dst(m, n, 1, 0, 2);
    for (int p = 0; p < (m.lay == P3 ? 3 : 1); ++p)
        for (int k = 0; k < samples; ++k) at(src, p, k) = at(dst, p, k) = v[k % v.size()];
    EXPECT_EQ(Apply(m, &src, dst, lo, hi), zilStatusOk) << name;
    std::vector<float> out;
    for (int k = 0; k < samples; ++k) out.push_back(at(dst, 0, k));
    return out;
}
float One(const std::string& name, float s, float lo, float hi) { return Row(name, {s}, lo, hi)[0]; }

TEST(GammaFloat, MemberDifferencesByHand) {
    // vMin 1, vMax 2, sample 2: x = 1, t = 1, p = 1; 1.099f - 0.099f rounds to 1.
    // The AC4 forms add vMin twice on the upper branch.
    for (const char* n : {"Fwd_32f_C3R", "Fwd_32f_C3IR", "Fwd_32f_P3R", "Fwd_32f_IP3R"}) EXPECT_EQ(One(n, 2.0f, 1.0f, 2.0f), 2.0f) << n;
    for (const char* n : {"Fwd_32f_AC4R", "Fwd_32f_AC4IR"}) EXPECT_EQ(One(n, 2.0f, 1.0f, 2.0f), 3.0f) << n;
    // Lower branch: 4.5 x + vMin, once, in every form; 0.018 itself takes the
    // power branch, whose step there straddles the inverse's 0.0812.
    const float below = std::nextafter(0.018f, 0.0f);
    for (const char* n : {"Fwd_32f_C3R", "Fwd_32f_P3R", "Fwd_32f_AC4R", "Fwd_32f_AC4IR"}) {
        EXPECT_EQ(One(n, 1.0f + 0x1p-8f, 1.0f, 2.0f), 1.0f + 4.5f * 0x1p-8f) << n;
        EXPECT_EQ(One(n, -0.5f, 0.0f, 1.0f), -2.25f) << n;  // below the range: no clamp
        EXPECT_EQ(One(n, below, 0.0f, 1.0f), 4.5f * below) << n;
        EXPECT_GT(One(n, 0.018f, 0.0f, 1.0f), 0.0812f) << n;
    }
    EXPECT_LT(4.5f * below, 0.0812f);
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

// The forward C3 and planar forms take the float power four samples at a time
// where no sample needs a special case: a row mixing both branches, the top of
// the range, specials and samples near 1 gives, sample for sample, what each
// sample gives alone. (The block forms need not: their power routine treats a
// group of four with a special element apart.)
TEST(GammaFloat, MixedRowsAsSamplesAlone) {
    const std::vector<float> v = {0.5f, 0.01f, 1.0f, NAN,  0.99f,  0.018f,   -0.25f,   0.3f,  INFINITY, 1.02f, 0.75f, 1.011f,
                                  0.0f, 2.0f,  0.6f, 0.985f, 1.026f, 0x1p-140f, 0.9921f, 0.07f, 1.0051f,  0.9f,  1.03f, 0.9863f};
    for (const char* n : {"Fwd_32f_C3R", "Fwd_32f_IP3R"}) {
        const std::vector<float> row = Row(n, v, 0.0f, 1.0f, 24);
        for (size_t k = 0; k < row.size(); ++k) {
            const float alone = One(n, v[k % v.size()], 0.0f, 1.0f);
            EXPECT_TRUE(std::memcmp(&row[k], &alone, 4) == 0) << n << " sample " << k << ": " << row[k] << " " << alone;
        }
    }
}

}  // namespace
