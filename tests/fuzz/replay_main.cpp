// The fuzz target as a plain program, for CI:
//   zilcc_fuzz_replay FILE|DIR...          runs every input file (directories: their files)
//   zilcc_fuzz_replay --generate N SEED    runs N inputs made by a fixed generator
//   zilcc_fuzz_replay --print FILE...      prints the case each file decodes to
// A failed check aborts with a description of the call.
#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

std::vector<uint8_t> ReadFile(const std::string& path) {
    std::vector<uint8_t> v;
    if (FILE* f = std::fopen(path.c_str(), "rb")) {
        uint8_t b[4096];
        size_t n;
        while ((n = std::fread(b, 1, sizeof b, f)) > 0) v.insert(v.end(), b, b + n);
        std::fclose(f);
    } else {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        std::exit(2);
    }
    return v;
}

void Collect(const std::string& path, std::vector<std::string>& out) {
    struct stat st;
    if (stat(path.c_str(), &st) != 0) {
        std::fprintf(stderr, "no such input: %s\n", path.c_str());
        std::exit(2);
    }
    if (!S_ISDIR(st.st_mode)) {
        out.push_back(path);
        return;
    }
    DIR* d = opendir(path.c_str());
    std::vector<std::string> names;
    while (dirent* e = readdir(d))
        if (e->d_name[0] != '.') names.push_back(e->d_name);
    closedir(d);
    std::sort(names.begin(), names.end());
    for (const auto& n : names) Collect(path + "/" + n, out);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc >= 4 && std::strcmp(argv[1], "--generate") == 0) {
        const long n = std::atol(argv[2]);
        uint64_t s = std::strtoull(argv[3], nullptr, 0) * 0x9E3779B97F4A7C15ull + 1;
        auto next = [&s] { s ^= s << 13, s ^= s >> 7, s ^= s << 17; return s; };
        std::vector<uint8_t> in;
        for (long k = 0; k < n; ++k) {
            // Header of 34 bytes, then up to 96 bytes of pixel data.
            in.resize(34 + next() % 97);
            for (auto& b : in) b = uint8_t(next() >> 56);
            const size_t row = size_t(k) % zilfuzz::kRowCount;  // every export in turn
            in[0] = uint8_t(row < 255 ? row : 255);
            if (row >= 255) in[1] = uint8_t(row - 255);
            LLVMFuzzerTestOneInput(in.data(), in.size());
        }
        std::printf("%ld generated cases over %zu exports: no finding\n", n, zilfuzz::kRowCount);
        if (std::getenv("ZIL_FUZZ_TALLY"))
            for (size_t i = 0; i < zilfuzz::kRowCount; ++i)
                std::printf("  %-34s ok %6ld  warning %6ld  failure %6ld\n", zilfuzz::kRows[i].name,
                            zilfuzz::gTally[i].ok, zilfuzz::gTally[i].warn, zilfuzz::gTally[i].fail);
        return 0;
    }
    const bool print = argc >= 2 && std::strcmp(argv[1], "--print") == 0;
    std::vector<std::string> files;
    for (int i = print ? 2 : 1; i < argc; ++i) Collect(argv[i], files);
    if (files.empty()) {
        std::fprintf(stderr, "usage: %s FILE|DIR... | --generate N SEED | --print FILE...\n", argv[0]);
        return 2;
    }
    for (const auto& f : files) {
        const auto v = ReadFile(f);
        if (print) std::printf("%s: %s\n", f.c_str(), zilfuzz::Decode(v.data(), v.size()).Describe().c_str());
        else LLVMFuzzerTestOneInput(v.data(), v.size());
    }
    if (!print) std::printf("%zu inputs replayed: no finding\n", files.size());
    return 0;
}
