// The subcommands. Each takes the whole argv and the index of its first own
// argument, returns the exit status, and throws UsageError or DataError.
#pragma once

#include <string>
#include <vector>

namespace zt {

int RunDemo(int argc, char** argv, int first);
int RunDemosaic(int argc, char** argv, int first);
int RunConvert(int argc, char** argv, int first);
int RunDither(int argc, char** argv, int first);
int RunVersion(int argc, char** argv, int first);
int RunList(int argc, char** argv, int first);

// The names of the library's exported functions, read from the dynamic symbol
// table of the shared object that is loaded, and that object's path.
std::vector<std::string> LibraryExports(std::string* libraryPath);

}  // namespace zt
