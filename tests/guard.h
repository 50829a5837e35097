// Test buffers placed against inaccessible pages, so that a read or write of a
// single byte outside what a primitive may touch faults at once.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace ziltest {

// n usable bytes; by default the last one ends exactly at a PROT_NONE page,
// with `Before` the first one starts right after one. Filled with `fill`.
class GuardBuf {
public:
    enum Side { After, Before };
    explicit GuardBuf(size_t n, uint8_t fill = 0xA5, Side side = After) : n_(n) {
        const size_t pg = size_t(sysconf(_SC_PAGESIZE));
        const size_t body = (n + pg - 1) / pg * pg;
        total_ = body + 2 * pg;
        void* m = mmap(nullptr, total_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (m == MAP_FAILED) std::abort();
        base_ = static_cast<uint8_t*>(m);
        mprotect(base_, pg, PROT_NONE);
        mprotect(base_ + pg + body, pg, PROT_NONE);
        data_ = side == After ? base_ + pg + body - n : base_ + pg;
        std::memset(data_, fill, n);
    }
    ~GuardBuf() { munmap(base_, total_); }
    GuardBuf(const GuardBuf&) = delete;
    GuardBuf& operator=(const GuardBuf&) = delete;

    uint8_t* data() { return data_; }
    const uint8_t* data() const { return data_; }
    size_t size() const { return n_; }
    uint8_t& operator[](size_t i) { return data_[i]; }
    std::vector<uint8_t> copy() const { return std::vector<uint8_t>(data_, data_ + n_); }
    // True if every byte still holds `fill`.
    bool all(uint8_t fill) const {
        for (size_t i = 0; i < n_; ++i)
            if (data_[i] != fill) return false;
        return true;
    }

private:
    uint8_t* base_ = nullptr;
    uint8_t* data_ = nullptr;
    size_t n_ = 0, total_ = 0;
};

// Bytes an image of `rows` rows of `rowBytes` bytes occupies at step `step`
// (the last row is not padded).
inline size_t ImageBytes(int rows, int rowBytes, int step) {
    return rows <= 0 ? 0 : size_t(rows - 1) * size_t(step) + size_t(rowBytes);
}

// Deterministic pseudo-random bytes (xorshift), for inputs and pre-fills.
inline void FillRandom(uint8_t* p, size_t n, uint32_t seed) {
    uint32_t s = seed * 2654435761u + 1u;
    for (size_t i = 0; i < n; ++i) {
        s ^= s << 13, s ^= s >> 17, s ^= s << 5;
        p[i] = uint8_t(s >> 24);
    }
}

}  // namespace ziltest
