#include "progress.hpp"

#include <unistd.h>

#include <cstdio>

namespace zt {

Progress::Progress(std::string label, int64_t total)
    : label_(std::move(label)), total_(total > 0 ? total : 1), tty_(isatty(2) == 1),
      start_(std::chrono::steady_clock::now()) {}

Progress::~Progress() { Finish(); }

void Progress::Update(int64_t done) {
    if (!tty_) return;
    const double secs = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    if (secs < 1.0 && !drawn_) return;
    const int width = 30;
    if (done > total_) done = total_;
    const int filled = int(done * width / total_);
    char bar[width + 1];
    for (int i = 0; i < width; ++i) bar[i] = i < filled ? '#' : '.';
    bar[width] = 0;
    std::fprintf(stderr, "\r%s [%s] %3d%%  %.1fs", label_.c_str(), bar, int(done * 100 / total_), secs);
    std::fflush(stderr);
    drawn_ = true;
}

void Progress::Finish() {
    if (drawn_) {
        std::fprintf(stderr, "\r\033[K");
        std::fflush(stderr);
        drawn_ = false;
    }
}

}  // namespace zt
