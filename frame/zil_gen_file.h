// The common frame of the build-time table generators: the one argument names
// the file to write, which starts with a line naming its generator and the
// line `head`. The exit status is 2 for a wrong call and 1 when the file
// cannot be written.
#pragma once

#include <cstdio>

namespace zil {

template <class Body>
int GenerateFile(int argc, char** argv, const char* generator, const char* head, Body&& body) {
    if (argc != 2) return 2;
    FILE* f = std::fopen(argv[1], "w");
    if (!f) return 1;
    std::fprintf(f, "// Generated at build time by %s; do not edit.\n%s\n\n", generator, head);
    body(f);
    return std::fclose(f) == 0 ? 0 : 1;
}

}  // namespace zil
