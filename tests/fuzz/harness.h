// Builds a call from the shape table and a few parameters, places every image
// against guard pages, runs it and checks what it did.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "shapes.h"

namespace ziltest { class GuardBuf; }

namespace zilfuzz {

// How a step is chosen.
enum StepMode : uint8_t { ModeDense, ModePadded, ModeZero, ModeNegative, ModeNegPadded, ModeShort, ModeCount };

struct ImgParams {
    uint8_t mode = ModeDense;
    uint8_t pad[4] = {};      // bytes of padding per plane (rounded to the element size)
    bool guardBefore = false; // put the guard page before the buffer instead of after it
    uint32_t seed = 1;        // contents
};

// Everything that decides one call.
struct Case {
    const Row* row = nullptr;
    int32_t w = 0, h = 0;                  // ZilSize (roi, or whole plane)
    ZilRect rect{};                        // demosaicing region
    ImgParams src, dst, work;
    int nullTarget = -1;                   // -1 none; else 8*image + (entry 0..3, or 7 for the pointer)
    int64_t alpha = 0, grid = 0, noise = 0, dither = 0, levels = 2, bitOffset = 0, channels = 1;
    int64_t reserved1 = 0, reserved2 = 0, threshold = 0;
    std::vector<uint8_t> pixels;           // source contents (cycled); empty: from src.seed
    std::string Describe() const;
};

// Decodes a fuzz input into a case. Every input decodes to some case.
Case Decode(const uint8_t* data, size_t size);

// One image's buffers, each plane against a guard page.
struct PlaneBuf {
    std::unique_ptr<ziltest::GuardBuf> buf;
    uint8_t* origin = nullptr;  // what the call receives
    int32_t step = 0;
    int64_t rows = 0, rowBytes = 0;
    std::vector<uint8_t> before; // contents before the call
    PlaneBuf();
    ~PlaneBuf();
    PlaneBuf(PlaneBuf&&) noexcept;
    PlaneBuf& operator=(PlaneBuf&&) noexcept;
};
struct ImgBuf {
    PlaneBuf pl[4];
    int n = 0;
    uint8_t* arr[4] = {};       // the plane array passed to the call
    int32_t steps[4] = {};
};

// The extents of each role for a case (after any clipping).
struct Extents {
    int64_t srcW, srcH, dstW, dstH;
    uint32_t workBytes;
};
Extents ExtentsOf(const Case& c);

// Allocates and fills one image of a case. which: 0 source, 1 destination, 2 work.
void BuildImg(const Case& c, const Extents& e, int which, ImgBuf& out);
// Refills a built image with the bytes of a seed (or of the case's pixels for a source).
void FillImg(const Case& c, int which, ImgBuf& b, uint32_t seed);

// Runs the call on the given images (null injected as the case says).
ZilStatus Call(const Case& c, const ImgBuf& src, ImgBuf& dst, ImgBuf& work);

// The whole check of one case: builds, calls twice (the second time with
// different work-buffer contents) and checks statuses and bytes. Aborts with a
// description on any violation.
void RunOne(const Case& c);

// Counts of RunOne's outcomes per export (successes, warnings, failures), for
// the replayer's summary.
struct Tally { long ok = 0, warn = 0, fail = 0; };
extern Tally gTally[kRowCount];

// A few valid calls per export at the given extent: padded steps, and for the
// parameterised families the parameter values that choose different code.
std::vector<Case> ValidCases(int32_t w, int32_t h);

// Compare helpers for other drivers.
bool SameContents(const ImgBuf& a, const ImgBuf& b);

}  // namespace zilfuzz
