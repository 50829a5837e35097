// Test images of the chroma reformatting families in any packing, each plane
// against a guard page, with accessors by sample position.
#pragma once

#include <memory>
#include <vector>

#include "guard.h"
#include "zilcc.h"

namespace reftest {

using ziltest::GuardBuf;

// ---- images in any of the layouts, each plane against a guard page ----------------------
// pack 'P': planes, cb/cr plane indices; '2': luma + pairs, cb/cr byte of a pair;
// 'C': packed, y/cb/cr bytes of a four-byte group. cw x ch pixels per chroma sample.
struct Fmt { char pack; int y, cb, cr, cw, ch; };
constexpr Fmt P422{'P', 0, 1, 2, 2, 1}, P420{'P', 0, 1, 2, 2, 2}, P411{'P', 0, 1, 2, 4, 1};
constexpr Fmt P420CrCb{'P', 0, 2, 1, 2, 2}, P422CrCb{'P', 0, 2, 1, 2, 1}, P1620{'P', 0, 1, 2, 4, 4};
constexpr Fmt N420{'2', 0, 0, 1, 2, 2}, N420CrCb{'2', 0, 1, 0, 2, 2}, N411{'2', 0, 0, 1, 4, 1};
constexpr Fmt YUYV{'C', 0, 1, 3, 2, 1}, YVYU{'C', 0, 3, 1, 2, 1}, UYVY{'C', 1, 0, 2, 2, 1};

struct Img {
    Fmt f;
    std::unique_ptr<GuardBuf> b[3];
    uint8_t* p[3] = {};
    int s[3] = {};
    bool nullArr = false;
    Img(Fmt fmt, int w, int h, int pad = 3, bool sameSteps = false) : f(fmt) {
        const int cw = (w + f.cw - 1) / f.cw, ch = (h + f.ch - 1) / f.ch;
        const int n = f.pack == 'C' ? 1 : f.pack == '2' ? 2 : 3;
        for (int k = 0; k < n; ++k) {
            const int bytes = k == 0 ? (f.pack == 'C' ? 2 * (w + 1) : w) : (f.pack == '2' ? 2 * cw : cw);
            const int rows = k == 0 ? h : ch;
            s[k] = bytes + pad + (sameSteps ? 0 : k);
            b[k] = std::make_unique<GuardBuf>(ziltest::ImageBytes(rows, bytes, s[k]), 0xE5);
            p[k] = b[k]->data();
        }
    }
    uint8_t* const* arr() const { return nullArr ? nullptr : p; }
    uint8_t& Y(int x, int r) { return p[0][r * s[0] + (f.pack == 'C' ? 2 * x + f.y : x)]; }
    uint8_t& C(int comp, int i, int j) {  // comp 0 Cb, 1 Cr
        const int o = comp ? f.cr : f.cb;
        if (f.pack == 'P') return p[o][i * s[o] + j];
        const uint8_t* base = f.pack == '2' ? p[1] : p[0];
        return const_cast<uint8_t&>(base[i * s[f.pack == '2' ? 1 : 0] + (f.pack == '2' ? 2 : 4) * j + o]);
    }
    std::vector<uint8_t> Bytes() const {
        std::vector<uint8_t> v;
        for (auto& g : b)
            if (g) v.insert(v.end(), g->data(), g->data() + g->size());
        return v;
    }
};
inline void Fill(Img& m, int w, int h) {
    for (int r = 0; r < h; ++r)
        for (int x = 0; x < w; ++x) m.Y(x, r) = uint8_t(7 * x + 31 * r);
    for (int i = 0; i < (h + m.f.ch - 1) / m.f.ch; ++i)
        for (int j = 0; j < (w + m.f.cw - 1) / m.f.cw; ++j)
            m.C(0, i, j) = uint8_t(16 * i + 3 * j + 1), m.C(1, i, j) = uint8_t(200 - 13 * i + 5 * j);
}

}  // namespace reftest
