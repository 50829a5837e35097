// A progress bar on stderr: drawn only when stderr is a terminal and the work
// has already taken more than a second, and wiped when the work ends.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace zt {

class Progress {
public:
    Progress(std::string label, int64_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void SetTotal(int64_t total) { total_ = total > 0 ? total : 1; }
    void Update(int64_t done);
    void Finish();

private:
    std::string label_;
    int64_t total_;
    bool tty_;
    bool drawn_ = false;
    std::chrono::steady_clock::time_point start_;
};

}  // namespace zt
